// Tests of RotBlit, RotBlitColor, RotBlit2Color and RotBlitAlpha: which formats are drawn and how a sample is written, the
// worked examples, the kept oddities, misuse, and what a call must leave alone. test_Kanvo_Rot_random.cpp has the breadth,
// test_Kanvo_RotScan.cpp the walk, test_Kanvo_Geometry_blits.cpp where pixels go.
#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BlitStage.h"
#include "DrawSpies.h"
#include "Fence.h"
#include "Kanvo_RotBlit.h"
#include "NaiveMix.h"
#include "PoorBitmaps.h"
#include "Reference_Sample.h"
#include "StoredImage.h"
#include "StretchSpies.h"
#include "Sweep.h"

namespace
{

using reference::Format;
using reference::Sample;
using support::BOTH_PATHS;
using support::BytesOf;
using support::Coverage;
using support::Messages;
using support::MessagesOf;
using support::MixLinear;
using support::MixLinearSrcAlpha;
using support::NO_BUFFER;
using support::NOT_A_MAP;
using support::NOT_LOCKED;
using support::NOT_SUPPORTED;
using support::Same;
using support::Stage;
using support::Words;

constexpr Tov_Flag KEY = BLIT_COLORKEY, BILINEAR = BLIT_BILINEAR, NOCLIP = BLIT_NOCLIP, ASPECT = BLIT_ASPECT;

//! The whole of a source; its pivot, from its corner, lands on (x, y).
struct Turned
{
    float x        = 0;
    float y        = 0;
    float degrees  = 0;
    float stretchX = 1;
    float stretchY = 1;
    float pivotX   = 0;
    float pivotY   = 0;
};

void Turn(Kanvo_Bitmap& target, Kanvo_Bitmap& source, const Turned& to, Tov_Flag flags = 0, int alpha = 255,
          Kanvo_Color key = 0)
{
    target.RotBlit(&source, source.GetWidth(), source.GetHeight(), 0, 0, to.x, to.y, to.degrees, flags, to.stretchX,
                   to.stretchY, to.pivotX, to.pivotY, static_cast<Tov_UByte>(alpha), key);
}

void TurnColor(Kanvo_Bitmap& target, Kanvo_Bitmap& map, const Turned& to, std::uint32_t color, Tov_Flag flags = 0,
               int alpha = 255)
{
    target.RotBlitColor(&map, map.GetWidth(), map.GetHeight(), 0, 0, to.x, to.y, color, to.degrees, flags, to.stretchX,
                        to.stretchY, to.pivotX, to.pivotY, static_cast<Tov_UByte>(alpha));
}

void TurnAlpha(Kanvo_Bitmap& target, Kanvo_Bitmap& source, Kanvo_Bitmap& map, const Turned& to, Tov_Flag flags = 0,
               int alpha = 255)
{
    target.RotBlitAlpha(&source, &map, source.GetWidth(), source.GetHeight(), 0, 0, to.x, to.y, to.degrees, flags,
                        to.stretchX, to.stretchY, to.pivotX, to.pivotY, static_cast<Tov_UByte>(alpha));
}

using Uniform = support::UniformOf<3>;

//! What it is sampled as.
Sample SampleOf(unsigned type, std::uint32_t value, bool filtered)
{
    switch (type)
    {
    case BM_ARGB32: return {Format::Argb32, value};
    case BM_RGB32: return {Format::Rgb32, filtered ? value & 0xFFFFFF : value};
    case BM_RGB565: return {Format::Rgb565, value & 0xFFFF};
    default: return {Format::A8, value & 0xFF};
    }
}

//! A target of 3x3, drawn upright: in every row one first pixel and two that follow.
template <class Draw>
std::vector<std::uint32_t> DrawnOn(std::uint32_t under, Draw draw, unsigned optimized = OB_NONE)
{
    Stage stage(optimized, 3, 3, under);
    draw(stage.target);
    return stage.pixels;
}

}  // namespace

// ---- dispatch -------------------------------------------------------------------------------------------------------

TEST(RotBlit, EachFormatIsDrawnOrReportedOnEveryRenderState)
{
    for (unsigned type = 0; type <= BM_QUANTITY; ++type)
    {
        for (const unsigned state : {0U, 1U, 2U, 0x101U})
        {
            for (const Tov_Flag flags :
                 {Tov_Flag{0}, KEY, BILINEAR, KEY | BILINEAR, NOCLIP, ASPECT, Tov_Flag{0x80000002}})
            {
                for (const int alpha : {0, 128, 255})
                {
                    Stage                 stage(state, 3, 3, 0x10123456);
                    Uniform               source(type, 0xFFEEDDCC);
                    support::StretchSpies loops;
                    support::LoopSpies    fills;
                    support::PerfSpies    counters;
                    const Messages        messages =
                        MessagesOf([&] { Turn(stage.target, source.Bitmap(), {}, flags, alpha, 0x999999); });
                    const bool draws = type == BM_ARGB32 || type == BM_RGB32 || type == BM_ALPHA8;
                    EXPECT_EQ(messages, draws ? Messages{} : Messages{NOT_SUPPORTED}) << type;
                    EXPECT_EQ(stage.pixels != Same(9, 0x10123456), draws && alpha != 0) << type << ", flags " << flags;
                    EXPECT_TRUE(loops.Calls().empty());
                    EXPECT_TRUE(fills.Calls().empty());
                    EXPECT_TRUE(counters.Events().empty());
                }
            }
        }
    }
}

TEST(RotBlit, StoredImagesAreNotSupported)
{
    const support::StoredImage<std::uint8_t>  bytes(2, 2, {0xFFFFFFFF}, {4, 0, 0, 0});
    const support::StoredImage<std::uint16_t> halves(2, 2, {0xFFFFFFFF}, {4, 0, 0, 0});
    Kanvo_BitmapRLE                           rle8(nullptr, bytes.Data(), bytes.Size());
    Kanvo_BitmapRLE                           rle16(nullptr, halves.Data(), halves.Size());
    ASSERT_EQ(rle8.GetType(), unsigned{BM_RGB32RLE8});
    ASSERT_EQ(rle16.GetType(), unsigned{BM_RGB32RLE16});
    for (Kanvo_BitmapRLE* const source : {&rle8, &rle16})
    {
        Stage stage(OB_NONE, 3, 3, 0xFF112233);
        EXPECT_EQ(MessagesOf([&] { Turn(stage.target, *source, {}); }), Messages{NOT_SUPPORTED});
        EXPECT_EQ(stage.pixels, Same(9, 0xFF112233));
    }
}

TEST(RotBlitColor, EachMapIsDrawnOrReportedOnEveryRenderState)
{
    for (unsigned type = 0; type <= BM_QUANTITY; ++type)
    {
        for (const unsigned state : {0U, 1U, 2U})
        {
            for (const Tov_Flag flags : {Tov_Flag{0}, KEY, BILINEAR, KEY | BILINEAR, NOCLIP, ASPECT})
            {
                Stage                 stage(state, 3, 3, 0xFF112233);
                Uniform               map(type, 0xFFFFFFFF);
                support::StretchSpies loops;
                support::LoopSpies    fills;
                support::PerfSpies    counters;
                const Messages        messages =
                    MessagesOf([&] { TurnColor(stage.target, map.Bitmap(), {}, 0xFF00FF00, flags); });
                const bool draws = type == BM_ARGB32 || type == BM_ALPHA8;
                EXPECT_EQ(messages, draws || type == BM_ALPHA5_2 ? Messages{} : Messages{NOT_A_MAP}) << type;
                EXPECT_EQ(stage.pixels != Same(9, 0xFF112233), draws) << type;
                EXPECT_TRUE(loops.Calls().empty());
                EXPECT_TRUE(fills.Calls().empty());
                EXPECT_TRUE(counters.Events().empty());
            }
        }
    }
}

TEST(RotBlitAlpha, EachPairOfFormatsIsDrawnOrReportedOnEveryRenderState)
{
    for (unsigned sourceType = 0; sourceType <= BM_QUANTITY; ++sourceType)
    {
        for (unsigned mapType = 0; mapType <= BM_QUANTITY; ++mapType)
        {
            for (const unsigned state : {0U, 1U, 2U})
            {
                for (const Tov_Flag flags : {Tov_Flag{0}, KEY, BILINEAR, NOCLIP | BILINEAR})
                {
                    Stage                 stage(state, 3, 3, 0xFF112233);
                    Uniform               source(sourceType, 0xFFEEDDCC);
                    Uniform               map(mapType, 0xFFFFFFFF);
                    support::StretchSpies loops;
                    support::LoopSpies    fills;
                    support::PerfSpies    counters;
                    const Messages        messages =
                        MessagesOf([&] { TurnAlpha(stage.target, source.Bitmap(), map.Bitmap(), {}, flags); });
                    const bool known = sourceType == BM_ARGB32 || sourceType == BM_RGB565 || sourceType == BM_ALPHA8;
                    const bool draws = mapType == BM_ARGB32 || mapType == BM_ALPHA8;
                    Messages   expected;
                    if (!draws && mapType != BM_ALPHA5_2) expected.emplace_back(NOT_A_MAP);
                    if (!known) expected.emplace_back(NOT_SUPPORTED);
                    EXPECT_EQ(messages, expected) << sourceType << " through " << mapType;
                    EXPECT_EQ(stage.pixels != Same(9, 0xFF112233), known && draws)
                        << sourceType << " through " << mapType;
                    EXPECT_TRUE(loops.Calls().empty());
                    EXPECT_TRUE(fills.Calls().empty());
                    EXPECT_TRUE(counters.Events().empty());
                }
            }
        }
    }
}

TEST(RotBlit2Color, WantsAnAlpha52MapAndNeverDraws)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (unsigned type = 0; type <= BM_QUANTITY; ++type)
        {
            Stage          stage(optimized, 3, 3, 0xFF112233);
            Uniform        map(type, 0xFFFFFFFF);
            const Messages messages = MessagesOf(
                [&] {
                    stage.target.RotBlit2Color(&map.Bitmap(), 3, 3, 0, 0, 0, 0, 0xFFFFFFFF, 0xFFFFFFFF, 0, 0, 1, 1, 0,
                                               0, 255);
                });
            EXPECT_EQ(messages, type == BM_ALPHA5_2 ? Messages{} : Messages{NOT_A_MAP}) << type;
            EXPECT_EQ(stage.pixels, Same(9, 0xFF112233));
        }
    }
}

// ---- every way in which a sample is written -------------------------------------------------------------------------

namespace
{

//! One cell of the tables: what becomes of a pixel under a sample. Written as one would say it, with the naive blends.
struct Cell
{
    unsigned type;
    bool     keyed;
    std::uint32_t (*full)(std::uint32_t under, const Sample& sample, int alpha);
    std::uint32_t (*below)(std::uint32_t under, const Sample& sample, int alpha);
};

std::uint32_t StoreWithAlpha(std::uint32_t, const Sample& sample, int)
{
    return sample.WithOwnAlpha();
}
std::uint32_t BlendWithAlpha(std::uint32_t under, const Sample& sample, int alpha)
{
    return MixLinearSrcAlpha(under, sample.WithOwnAlpha(), alpha);
}
std::uint32_t StoreStored(std::uint32_t, const Sample& sample, int)
{
    return sample.stored;
}
std::uint32_t BlendStored(std::uint32_t under, const Sample& sample, int alpha)
{
    return MixLinearSrcAlpha(under, sample.stored, alpha);
}
std::uint32_t StoreColor(std::uint32_t, const Sample& sample, int)
{
    return sample.Color();
}
std::uint32_t BlendColor(std::uint32_t under, const Sample& sample, int alpha)
{
    return MixLinearSrcAlpha(under, sample.Color(), alpha);
}

constexpr Cell CELLS[] = {
    {BM_ARGB32, false, StoreWithAlpha, BlendWithAlpha}, {BM_ARGB32, true, StoreWithAlpha, BlendWithAlpha},
    {BM_ALPHA8, false, StoreWithAlpha, BlendWithAlpha}, {BM_ALPHA8, true, StoreWithAlpha, BlendWithAlpha},
    {BM_RGB32, false, StoreStored, BlendStored},        {BM_RGB32, true, StoreColor, BlendColor},
};

}  // namespace

TEST(RotBlit, EachFormatKeyFilterAndOpacityHasItsOwnBlend)
{
    support::Numbers numbers(61);
    for (const Cell& cell : CELLS)
    {
        for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
        {
            support::Differences differences;
            for (int turn = 0; turn < 1500; ++turn)
            {
                const std::uint32_t under  = numbers.NextHostileWord();
                const std::uint32_t word   = numbers.NextHostileWord();
                const int           below  = static_cast<int>(numbers.Next32() % 255);
                const int           alpha  = turn % 2 == 0 ? 255 : below;
                const Tov_Flag      flags  = filter | (cell.keyed ? KEY : 0);
                const Sample        sample = SampleOf(cell.type, word, filter != 0);
                Uniform             source(cell.type, word);
                const std::uint32_t expected =
                    alpha == 255 ? cell.full(under, sample, 255) : cell.below(under, sample, alpha);
                const auto got = DrawnOn(under, [&](Kanvo_Bitmap& target)
                                         { Turn(target, source.Bitmap(), {}, flags, alpha, sample.Color() ^ 0x10); });
                if (got != Same(9, expected))
                {
                    differences.Note("%08X over %08X at %d: expected %08X, got %08X, %08X", word, under, alpha,
                                     expected, got[0], got[1]);
                }
                // the key counts for RGB32 alone
                const auto met = DrawnOn(under, [&](Kanvo_Bitmap& target)
                                         { Turn(target, source.Bitmap(), {}, flags, alpha, sample.Color()); });
                if (met != Same(9, cell.keyed && cell.type == BM_RGB32 ? under : expected))
                {
                    differences.Note("a key of %08X: got %08X", sample.Color(), met[0]);
                }
            }
            EXPECT_EQ(differences.Count(), 0U) << "type " << cell.type << (cell.keyed ? ", keyed" : "") << ", filter "
                                               << filter << ": " << differences.First();
        }
    }
}

TEST(RotBlitColor, TheMapTimesTheOpacityIsTheWeightOfTheColour)
{
    support::Numbers numbers(62);
    for (const unsigned type : {unsigned{BM_ALPHA8}, unsigned{BM_ARGB32}})
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, BILINEAR, KEY, KEY | BILINEAR})
        {
            support::Differences differences;
            for (int turn = 0; turn < 1500; ++turn)
            {
                const std::uint32_t under = numbers.NextHostileWord();
                const std::uint32_t word  = numbers.NextHostileWord();
                const std::uint32_t color = numbers.NextHostileWord();
                const int           below = static_cast<int>(numbers.Next32() % 255);
                const int           alpha = turn % 2 == 0 ? 255 : below;
                Uniform             map(type, word);
                const int           coverage = SampleOf(type, word, false).Alpha();
                const std::uint32_t expected = MixLinear(under, color, coverage * alpha / 255);
                const auto          got      = DrawnOn(under, [&](Kanvo_Bitmap& target)
                                                       { TurnColor(target, map.Bitmap(), {}, color, flags, alpha); });
                if (got != Same(9, expected))
                {
                    differences.Note("%08X through %d at %d over %08X: expected %08X, got %08X", color, coverage, alpha,
                                     under, expected, got[0]);
                }
            }
            EXPECT_EQ(differences.Count(), 0U) << "type " << type << ", flags " << flags << ": " << differences.First();
        }
    }
}

TEST(RotBlitAlpha, SamplesAreBlendedUnconvertedByTheMapTimesTheOpacity)
{
    support::Numbers numbers(63);
    for (const unsigned sourceType : {unsigned{BM_ARGB32}, unsigned{BM_RGB565}, unsigned{BM_ALPHA8}})
    {
        for (const unsigned mapType : {unsigned{BM_ARGB32}, unsigned{BM_ALPHA8}})
        {
            for (const Tov_Flag flags : {Tov_Flag{0}, BILINEAR, KEY, KEY | BILINEAR})
            {
                const bool           filtered = (flags & BILINEAR) != 0;
                support::Differences differences;
                for (int turn = 0; turn < 1500; ++turn)
                {
                    const std::uint32_t under   = numbers.NextHostileWord();
                    const std::uint32_t word    = numbers.NextHostileWord();
                    const std::uint32_t mapWord = numbers.NextHostileWord();
                    const int           below   = static_cast<int>(numbers.Next32() % 255);
                    const int           alpha   = turn % 2 == 0 ? 255 : below;
                    Uniform             source(sourceType, word);
                    Uniform             map(mapType, mapWord);
                    // ARGB32 is read as if it were RGB32
                    const std::uint32_t stored =
                        SampleOf(sourceType == BM_ARGB32 ? unsigned{BM_RGB32} : sourceType, word, filtered).stored;
                    const int           weight = SampleOf(mapType, mapWord, false).Alpha() * alpha / 255;
                    const std::uint32_t later  = MixLinear(under, stored, weight);
                    const std::uint32_t first =
                        filtered && alpha != 255 ? MixLinearSrcAlpha(under, stored, weight) : later;
                    const auto got = DrawnOn(under, [&](Kanvo_Bitmap& target)
                                             { TurnAlpha(target, source.Bitmap(), map.Bitmap(), {}, flags, alpha); });
                    if (got !=
                        std::vector<std::uint32_t>{first, later, later, first, later, later, first, later, later})
                    {
                        differences.Note("%08X by %d at %d over %08X: expected %08X, %08X, got %08X, %08X", stored,
                                         weight, alpha, under, first, later, got[0], got[1]);
                    }
                }
                EXPECT_EQ(differences.Count(), 0U)
                    << sourceType << " through " << mapType << ", flags " << flags << ": " << differences.First();
            }
        }
    }
}

// ---- worked examples ------------------------------------------------------------------------------------------------

TEST(RotBlit, AngleZeroAndStretchOneOnWholePixelsCopyTheRectangle)
{
    Words source(BM_ARGB32, 4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    Stage stage(OB_NONE, 4, 4, 0xFF000000);
    stage.target.RotBlit(&source.bitmap, 3, 2, 1, 1, 1, 2, 0, 0, 1, 1, 0, 0, 255, 0);
    EXPECT_EQ(stage.pixels, (std::vector<std::uint32_t>{0xFF000000, 0xFF000000, 0xFF000000, 0xFF000000,  //
                                                        0xFF000000, 0xFF000000, 0xFF000000, 0xFF000000,  //
                                                        0xFF000000, 6, 7, 8,                             //
                                                        0xFF000000, 10, 11, 12}));
}

TEST(RotBlit, AQuarterTurnIsClockwiseAboutThePivot)
{
    Words source(BM_ARGB32, 3, {1, 2, 3, 4, 5, 6});
    Stage stage(OB_NONE, 4, 4, 0);
    // the corner between 1 and what is left of it stays at (3, 0): the row 1 2 3 then points down
    Turn(stage.target, source.bitmap, {3, 0, 90});
    EXPECT_EQ(stage.pixels, (std::vector<std::uint32_t>{0, 4, 1, 0,  //
                                                        0, 5, 2, 0,  //
                                                        0, 6, 3, 0,  //
                                                        0, 0, 0, 0}));
}

TEST(RotBlit, ThePivotLandsOnTheDestinationWhateverAngleAndStretchAre)
{
    // one bright pixel in the middle of a dark image, and the pivot in the middle of that pixel
    Words source(BM_ARGB32, 5, Same(25, 0xFF000001));
    source.pixels[12] = 0xFFFFFFFF;
    for (int degrees = 0; degrees < 720; degrees += 7)
    {
        for (const float stretch : {0.6F, 1.0F, 2.0F, 7.5F, -1.0F, -3.0F})
        {
            Stage stage(OB_NONE, 15, 11, 0);
            Turn(stage.target, source.bitmap, {7.5F, 5.5F, static_cast<float>(degrees), stretch, stretch, 2.5F, 2.5F});
            EXPECT_EQ(stage.At(7, 5), 0xFFFFFFFFU) << degrees << " degrees, stretch " << stretch;
        }
    }
}

TEST(RotBlit, NegativeStretchMirrors)
{
    Words source(BM_ARGB32, 3, {1, 2, 3, 4, 5, 6});
    Stage mirrored(OB_NONE, 3, 2, 0);
    Turn(mirrored.target, source.bitmap, {3, 0, 0, -1, 1});
    EXPECT_EQ(mirrored.pixels, (std::vector<std::uint32_t>{3, 2, 1, 6, 5, 4}));
    Stage upsideDown(OB_NONE, 3, 2, 0);
    Turn(upsideDown.target, source.bitmap, {0, 2, 0, 1, -1});
    EXPECT_EQ(upsideDown.pixels, (std::vector<std::uint32_t>{4, 5, 6, 1, 2, 3}));
}

TEST(RotBlit, AKeyedFilteredBlitDrawsTheBlendedBorderAndLeavesOutExactMatches)
{
    constexpr std::uint32_t KEYED = 0x00FF00FF, BLUE = 0x000000FF;
    Words                   source(BM_RGB32, 4, {KEYED, KEYED, BLUE, BLUE, KEYED, KEYED, BLUE, BLUE});
    Stage                   stage(OB_NONE, 16, 2, 0xFF123456);
    // four target pixels for one of the source: a ramp from the key to blue between their centres
    Turn(stage.target, source.bitmap, {0, 0, 0, 4, 1}, BILINEAR | KEY, 255, KEYED);
    EXPECT_EQ(stage.At(1, 0), 0xFF123456U);
    EXPECT_EQ(stage.At(14, 0), BLUE);  // without alpha, as the key wants it
    int blended = 0;
    for (unsigned x = 0; x < 16; ++x)
    {
        const std::uint32_t pixel = stage.At(x, 0);
        if (pixel == 0xFF123456 || pixel == BLUE) continue;
        ++blended;
        EXPECT_EQ(pixel >> 24, 0U);
        EXPECT_EQ(pixel & 0xFF, 0xFFU);
        EXPECT_NE(pixel, KEYED);
        EXPECT_TRUE((pixel >> 16 & 0xFF) > 0 && (pixel >> 16 & 0xFF) < 0xFF);
    }
    EXPECT_GE(blended, 3);
    EXPECT_LE(blended, 6);
}

TEST(RotBlitAlpha, AMapPixelOf0LeavesTheTargetUnchanged)
{
    for (const unsigned sourceType : {unsigned{BM_ARGB32}, unsigned{BM_RGB565}, unsigned{BM_ALPHA8}})
    {
        for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
        {
            for (const int alpha : {0, 1, 128, 255})
            {
                Uniform source(sourceType, 0xFFFFFFFF);
                Uniform map(BM_ALPHA8, 0);
                EXPECT_EQ(DrawnOn(0x80123456, [&](Kanvo_Bitmap& target)
                                  { TurnAlpha(target, source.Bitmap(), map.Bitmap(), {}, filter, alpha); }),
                          Same(9, 0x80123456));
            }
        }
    }
}

TEST(RotBlitAlpha, HalvesAndLevelsAreWrittenAsTheNumbersTheyAre)
{
    Uniform halves(BM_RGB565, 0xABCD);
    Uniform grey(BM_ALPHA8, 0xEF);
    Uniform map(BM_ALPHA8, 255);
    EXPECT_EQ(DrawnOn(0xFF000000, [&](Kanvo_Bitmap& target) { TurnAlpha(target, halves.Bitmap(), map.Bitmap(), {}); }),
              Same(9, MixLinear(0xFF000000, 0x0000ABCD, 255)));
    EXPECT_EQ(DrawnOn(0xFF000000, [&](Kanvo_Bitmap& target) { TurnAlpha(target, grey.Bitmap(), map.Bitmap(), {}); }),
              Same(9, MixLinear(0xFF000000, 0x000000EF, 255)));
}

TEST(RotBlit, ANeedleThinnerThanAPixelDrawsOnePixelInEveryRow)
{
    Words needle(BM_ARGB32, 40, Same(40, 0xFFFFFFFF));
    for (int degrees = 50; degrees <= 130; degrees += 5)
    {
        if (degrees == 90) continue;  // upright, it covers the centres of a column or of none
        for (const float width : {0.1F, 0.5F, 0.75F})
        {
            Stage stage(OB_NONE, 80, 60, 0xFF000000);
            Turn(stage.target, needle.bitmap, {40.3F, 5.2F, static_cast<float>(degrees), 1, width, 0, 0.5F});
            int first = 60;
            int last  = -1;
            int rows  = 0;
            for (unsigned y = 0; y < 60; ++y)
            {
                int pixels = 0;
                for (unsigned x = 0; x < 80; ++x) pixels += stage.At(x, y) == 0xFFFFFFFF ? 1 : 0;
                EXPECT_LE(pixels, 1) << degrees << " degrees, width " << width << ", row " << y;
                if (pixels == 0) continue;
                first = std::min(first, static_cast<int>(y));
                last  = static_cast<int>(y);
                ++rows;
            }
            EXPECT_EQ(last - first + 1, rows) << "a gap at " << degrees << " degrees, width " << width;
            EXPECT_GE(rows, 30) << degrees << " degrees, width " << width;
        }
    }
}

// ---- kept oddities --------------------------------------------------------------------------------------------------

TEST(RotBlit, ARotatedRGB32SourceWritesItsTopByte)
{
    Uniform source(BM_RGB32, 0x12345678);
    EXPECT_EQ(DrawnOn(0xFF000000, [&](Kanvo_Bitmap& target) { Turn(target, source.Bitmap(), {}); }),
              Same(9, 0x12345678));
    EXPECT_EQ(DrawnOn(0xFF000000, [&](Kanvo_Bitmap& target) { Turn(target, source.Bitmap(), {}, BILINEAR); }),
              Same(9, 0x00345678));
    EXPECT_EQ(DrawnOn(0xFF000000, [&](Kanvo_Bitmap& target) { Turn(target, source.Bitmap(), {}, 0, 128); }),
              Same(9, MixLinearSrcAlpha(0xFF000000, 0x12345678, 128)));
}

TEST(RotBlitAlpha, TheFirstPixelOfAFilteredRowThroughAMapIsBlendedByItsOwnAlphaToo)
{
    // None of the sources has alpha when it is read here: the first pixel of a row stays what it was on an opaque target.
    for (const auto& [type, word] : {std::pair<unsigned, std::uint32_t>{BM_ARGB32, 0xFFFFFFFF}, {BM_RGB565, 0xFFFF}})
    {
        Uniform             source(type, word);
        Uniform             map(BM_ALPHA8, 255);
        const std::uint32_t later = MixLinear(0xFF000000, word & 0xFFFFFF, 128);
        EXPECT_EQ(
            DrawnOn(0xFF000000,
                    [&](Kanvo_Bitmap& target) { TurnAlpha(target, source.Bitmap(), map.Bitmap(), {}, BILINEAR, 128); }),
            (std::vector<std::uint32_t>{0xFF000000, later, later, 0xFF000000, later, later, 0xFF000000, later, later}));
        EXPECT_EQ(DrawnOn(0xFF000000, [&](Kanvo_Bitmap& target)
                          { TurnAlpha(target, source.Bitmap(), map.Bitmap(), {}, BILINEAR, 255); }),
                  Same(9, MixLinear(0xFF000000, word & 0xFFFFFF, 255)));
        EXPECT_EQ(DrawnOn(0xFF000000,
                          [&](Kanvo_Bitmap& target) { TurnAlpha(target, source.Bitmap(), map.Bitmap(), {}, 0, 128); }),
                  Same(9, later));
    }
}

// ---- our own promises -----------------------------------------------------------------------------------------------

TEST(RotBlit, ARectangleIsCutWhereTheSourceEnds)
{
    for (const unsigned type : {unsigned{BM_ARGB32}, unsigned{BM_RGB32}, unsigned{BM_ALPHA8}})
    {
        for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
        {
            for (const auto& [x, y, size] : {std::array<Tov_UInt, 3>{2, 1, 4},
                                             {0, 0, 9},
                                             {0, 0, 0xFFFFFFFF},
                                             {2, 2, 0x80000000},
                                             {1, 0, 0x7FFFFFFF}})
            {
                support::Fence pixels(16 * BytesOf(type));
                std::memset(pixels.Data(), 0xE0, pixels.Size());
                support::AnySource source(nullptr, type, 4, 4, pixels.Data(), 0, false);
                for (const float degrees : {0.0F, 33.0F, 90.0F, 200.0F})
                {
                    Stage cut(OB_NONE, 12, 12, 0x10123456);
                    Stage asked(OB_NONE, 12, 12, 0x10123456);
                    asked.target.RotBlit(&source, size, size, x, y, 6, 6, degrees, filter, 1.5F, 1.5F, 1, 1, 255, 0);
                    cut.target.RotBlit(&source, 4 - x, 4 - y, x, y, 6, 6, degrees, filter, 1.5F, 1.5F, 1, 1, 255, 0);
                    EXPECT_EQ(asked.pixels, cut.pixels);
                    EXPECT_NE(asked.pixels, Same(144, 0x10123456));
                    if (type == BM_RGB32) continue;
                    Stage color(OB_NONE, 12, 12, 0x10123456);
                    color.target.RotBlitColor(&source, size, size, x, y, 6, 6, 0xFFFFFFFF, degrees, filter, 1.5F, 1.5F,
                                              1, 1, 255);
                    for (unsigned at = 0; at < 144; ++at)
                    {
                        EXPECT_EQ(color.pixels[at] == 0x10123456, cut.pixels[at] == 0x10123456);
                    }
                }
            }
        }
    }
}

TEST(RotBlitAlpha, ARectangleIsCutWhereSourceOrMapEnds)
{
    for (const unsigned sourceType : {unsigned{BM_ARGB32}, unsigned{BM_RGB565}, unsigned{BM_ALPHA8}})
    {
        for (const unsigned mapType : {unsigned{BM_ARGB32}, unsigned{BM_ALPHA8}})
        {
            for (const bool smallMap : {false, true})
            {
                for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
                {
                    const Tov_UInt sourceSize = smallMap ? 8 : 4;
                    const Tov_UInt mapSize    = smallMap ? 4 : 8;
                    support::Fence sourcePixels(sourceSize * sourceSize * BytesOf(sourceType));
                    support::Fence mapPixels(mapSize * mapSize * BytesOf(mapType));
                    std::memset(sourcePixels.Data(), 0xE0, sourcePixels.Size());
                    std::memset(mapPixels.Data(), 0xFF, mapPixels.Size());
                    support::AnySource source(nullptr, sourceType, sourceSize, sourceSize, sourcePixels.Data(), 0,
                                              false);
                    support::AnySource map(nullptr, mapType, mapSize, mapSize, mapPixels.Data(), 0, false);
                    for (const float degrees : {0.0F, 33.0F, 180.0F})
                    {
                        Stage cut(OB_NONE, 16, 16, 0xFF123456);
                        Stage asked(OB_NONE, 16, 16, 0xFF123456);
                        asked.target.RotBlitAlpha(&source, &map, 100, 100, 1, 1, 8, 8, degrees, filter, 2, 2, 1, 1,
                                                  255);
                        cut.target.RotBlitAlpha(&source, &map, 3, 3, 1, 1, 8, 8, degrees, filter, 2, 2, 1, 1, 255);
                        EXPECT_EQ(asked.pixels, cut.pixels);
                        EXPECT_NE(asked.pixels, Same(256, 0xFF123456));
                    }
                }
            }
        }
    }
}

TEST(RotBlit, ARectangleOutsideTheSourceDrawsNothingInSilence)
{
    for (const auto& [x, y] : {std::pair<Tov_UInt, Tov_UInt>{3, 0}, {0, 3}, {0xFFFFFFFF, 0}, {0, 0x80000000}})
    {
        Stage   stage(OB_NONE, 3, 3, 0xFF112233);
        Uniform source(BM_ARGB32, 0xFFFFFFFF);
        auto*   it = &source.Bitmap();
        EXPECT_EQ(MessagesOf(
                      [&, x = x, y = y]
                      {
                          stage.target.RotBlit(it, 3, 3, x, y, 0, 0, 0, 0, 1, 1, 0, 0, 255, 0);
                          stage.target.RotBlitColor(it, 3, 3, x, y, 0, 0, 0xFFFFFFFF, 0, 0, 1, 1, 0, 0, 255);
                          stage.target.RotBlitAlpha(it, it, 3, 3, x, y, 0, 0, 0, 0, 1, 1, 0, 0, 255);
                      }),
                  Messages{});
        EXPECT_EQ(stage.pixels, Same(9, 0xFF112233));
    }
}

TEST(RotBlit, AFilteredSourceOfOneRowOrColumnDrawsNothing)
{
    support::Fence fence(12);
    for (const auto& [width, height] : {std::pair<Tov_UInt, Tov_UInt>{1, 1}, {1, 3}, {3, 1}})
    {
        support::AnySource source(nullptr, BM_ARGB32, width, height, fence.Data(), 0, false);
        for (const float degrees : {0.0F, 45.0F, 90.0F})
        {
            Stage stage(OB_NONE, 6, 6, 0xFF112233);
            Turn(stage.target, source, {3, 3, degrees, 2, 2}, BILINEAR);
            EXPECT_EQ(stage.pixels, Same(36, 0xFF112233));
            Turn(stage.target, source, {3, 3, degrees, 2, 2});
            EXPECT_NE(stage.pixels, Same(36, 0xFF112233));
        }
    }
}

TEST(RotBlit, TheClipRectangleCountsEvenWhereNoClippingIsPromised)
{
    for (const Tov_Flag flags : {Tov_Flag{0}, NOCLIP})
    {
        Stage   stage(OB_NONE, 6, 6, 0xFF112233);
        Uniform source(BM_ARGB32, 0xFFFFFFFF);
        Uniform map(BM_ALPHA8, 0xFF);
        stage.target.SetCliprect(2, 1, 3, 4);
        EXPECT_EQ(
            MessagesOf(
                [&]
                {
                    for (const float degrees : {0.0F, 30.0F, 90.0F})
                    {
                        Turn(stage.target, source.Bitmap(), {3, 3, degrees, 9, 9, 1.5F, 1.5F}, flags);
                        TurnColor(stage.target, map.Bitmap(), {3, 3, degrees, 9, 9, 1.5F, 1.5F}, 0xFFFFFFFF, flags);
                        TurnAlpha(stage.target, source.Bitmap(), map.Bitmap(), {3, 3, degrees, 9, 9, 1.5F, 1.5F},
                                  flags);
                    }
                }),
            Messages{});
        for (unsigned at = 0; at < 36; ++at)
        {
            const bool inside = at % 6 >= 2 && at % 6 <= 3 && at / 6 >= 1 && at / 6 <= 4;
            EXPECT_EQ(stage.pixels[at] != 0xFF112233, inside);
        }
        for (const auto& [minX, maxX] : {std::pair<Tov_UInt, Tov_UInt>{3, 2}, {6, 8}})
        {
            Stage empty(OB_NONE, 6, 6, 0xFF112233);
            empty.target.SetCliprect(minX, 0, maxX, 5);
            for (const float degrees : {0.0F, 30.0F, 90.0F})
            {
                Turn(empty.target, source.Bitmap(), {3, 3, degrees, 9, 9, 1.5F, 1.5F}, flags);
            }
            EXPECT_EQ(empty.pixels, Same(36, 0xFF112233));
        }
    }
}

// ---- misuse ---------------------------------------------------------------------------------------------------------

TEST(RotBlit, AnUnlockedTargetIsReportedFirstAndDrawnInto)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage   stage(optimized, 3, 3, 0xFF000000);
        Uniform source(BM_ARGB32, 0xFFFFFFFF);
        Uniform wrong(BM_RGB32, 0xFFFFFFFF);
        Uniform twoColours(BM_ALPHA5_2, 0xFF);
        stage.target.Unlock(0, 0, 0, 0);
        EXPECT_EQ(MessagesOf([&] { Turn(stage.target, source.Bitmap(), {}); }), Messages{NOT_LOCKED});
        EXPECT_EQ(stage.pixels, Same(9, 0xFFFFFFFF));
        EXPECT_EQ(MessagesOf([&] { TurnColor(stage.target, source.Bitmap(), {}, 0xFF000000); }), Messages{NOT_LOCKED});
        EXPECT_EQ(stage.pixels, Same(9, 0xFF010101));
        EXPECT_EQ(MessagesOf([&] { TurnAlpha(stage.target, source.Bitmap(), source.Bitmap(), {}); }),
                  Messages{NOT_LOCKED});
        EXPECT_EQ(stage.pixels, Same(9, 0xFFFDFDFD));
        EXPECT_EQ(
            MessagesOf(
                [&]
                { stage.target.RotBlit2Color(&twoColours.Bitmap(), 3, 3, 0, 0, 0, 0, 1, 2, 0, 0, 1, 1, 0, 0, 255); }),
            Messages{NOT_LOCKED});
        EXPECT_EQ(MessagesOf([&] { TurnAlpha(stage.target, wrong.Bitmap(), wrong.Bitmap(), {}); }),
                  (Messages{NOT_LOCKED, NOT_A_MAP, NOT_SUPPORTED}));
    }
}

TEST(RotBlit, NullSourcesAndMapsAreReportedAndDrawNothing)
{
    for (const Tov_Flag flags : {Tov_Flag{0}, KEY, BILINEAR})
    {
        Stage   stage(OB_NONE, 3, 3, 0xFF112233);
        Uniform source(BM_ARGB32, 0xFFFFFFFF);
        auto*   it = &source.Bitmap();
        auto&   to = stage.target;
        EXPECT_EQ(MessagesOf([&] { to.RotBlit(nullptr, 3, 3, 0, 0, 0, 0, 0, flags, 1, 1, 0, 0, 255, 0); }).size(), 1U);
        EXPECT_EQ(MessagesOf([&] { to.RotBlitColor(nullptr, 3, 3, 0, 0, 0, 0, 7, 0, flags, 1, 1, 0, 0, 255); }).size(),
                  1U);
        EXPECT_EQ(
            MessagesOf([&] { to.RotBlit2Color(nullptr, 3, 3, 0, 0, 0, 0, 7, 8, 0, flags, 1, 1, 0, 0, 255); }).size(),
            1U);
        EXPECT_EQ(MessagesOf([&] { to.RotBlitAlpha(it, nullptr, 3, 3, 0, 0, 0, 0, 0, flags, 1, 1, 0, 0, 255); }),
                  Messages{NOT_A_MAP});
        EXPECT_EQ(MessagesOf([&] { to.RotBlitAlpha(nullptr, it, 3, 3, 0, 0, 0, 0, 0, flags, 1, 1, 0, 0, 255); }).size(),
                  1U);
        EXPECT_EQ(
            MessagesOf([&] { to.RotBlitAlpha(nullptr, nullptr, 3, 3, 0, 0, 0, 0, 0, flags, 1, 1, 0, 0, 255); }).size(),
            2U);
        EXPECT_EQ(stage.pixels, Same(9, 0xFF112233));
    }
}

TEST(RotBlit, SourcesAndMapsWithoutPixelsAreReportedAndDrawNothing)
{
    using Bitmaps = std::vector<Kanvo_Bitmap*>;
    Stage                stage(OB_NONE, 3, 3, 0xFF112233);
    support::PoorBitmaps poor(3);
    Uniform              full(BM_ARGB32, 0xFFFFFFFF);
    for (Kanvo_Bitmap* const source : Bitmaps{&poor.argb32, &poor.rgb32, &poor.a8})
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, KEY, BILINEAR})
        {
            EXPECT_EQ(MessagesOf([&] { Turn(stage.target, *source, {}, flags); }), Messages{NO_BUFFER});
        }
    }
    for (Kanvo_Bitmap* const map : Bitmaps{&poor.argb32, &poor.a8})
    {
        EXPECT_EQ(MessagesOf([&] { TurnColor(stage.target, *map, {}, 7); }), Messages{NO_BUFFER});
        EXPECT_EQ(MessagesOf([&] { TurnAlpha(stage.target, full.Bitmap(), *map, {}); }), Messages{NO_BUFFER});
    }
    for (Kanvo_Bitmap* const source : Bitmaps{&poor.argb32, &poor.rgb565, &poor.a8})
    {
        EXPECT_EQ(MessagesOf([&] { TurnAlpha(stage.target, *source, full.Bitmap(), {}); }), Messages{NO_BUFFER});
    }
    EXPECT_EQ(stage.pixels, Same(9, 0xFF112233));
}

TEST(RotBlit, ATargetWithoutPixelsReportsIt)
{
    support::PoorBitmaps poor(2);
    Kanvo_Bitmap&        target = poor.argb32;
    Uniform              source(BM_ARGB32, 0xFFFFFFFF);
    EXPECT_EQ(MessagesOf([&] { Turn(target, source.Bitmap(), {}); }), Messages{NO_BUFFER});
    EXPECT_EQ(MessagesOf([&] { TurnColor(target, source.Bitmap(), {}, 7); }), Messages{NO_BUFFER});
    EXPECT_EQ(MessagesOf([&] { TurnAlpha(target, source.Bitmap(), source.Bitmap(), {}); }), Messages{NO_BUFFER});
}

TEST(RotBlit, BitmapsWithoutASinglePixelDrawNothing)
{
    for (const auto& [width, height] : {std::pair<Tov_UInt, Tov_UInt>{0, 0}, {0, 3}, {3, 0}})
    {
        support::Fence         nothing(0);
        support::AssertCapture asserts;
        support::AnySource     source(nullptr, BM_ARGB32, width, height, nothing.Data(), 0, false);
        Stage                  stage(OB_NONE, 3, 3, 0xFF112233);
        for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
        {
            for (const float degrees : {0.0F, 45.0F})
            {
                stage.target.RotBlit(&source, 3, 3, 0, 0, 0, 0, degrees, filter, 1, 1, 0, 0, 255, 0);
                stage.target.RotBlitColor(&source, 3, 3, 0, 0, 0, 0, 7, degrees, filter, 1, 1, 0, 0, 255);
                stage.target.RotBlitAlpha(&source, &source, 3, 3, 0, 0, 0, 0, degrees, filter, 1, 1, 0, 0, 255);
            }
        }
        EXPECT_EQ(stage.pixels, Same(9, 0xFF112233));
        support::PitchedTarget target(nullptr, width, height, nothing.Data());
        Uniform                full(BM_ARGB32, 0xFFFFFFFF);
        target.Lock();
        Turn(target, full.Bitmap(), {});
        Turn(target, full.Bitmap(), {0, 0, 45});
    }
}

TEST(RotBlit, EachReportNamesTheLineThatChecks)
{
    Stage                  stage(OB_NONE, 2, 2, 0);
    Coverage               unsupported(BM_RGB555, 1, {255});
    support::AssertCapture asserts;
    stage.target.Unlock(0, 0, 0, 0);
    Turn(stage.target, unsupported.bitmap, {});
    TurnColor(stage.target, unsupported.bitmap, {}, 0);
    ASSERT_EQ(asserts.Texts(), (Messages{NOT_LOCKED, NOT_SUPPORTED, NOT_LOCKED, NOT_A_MAP}));
    for (const auto& report : asserts.Reports())
    {
        EXPECT_NE(report.file.find("Kanvo_Bitmap"), std::string::npos) << report.file;
        EXPECT_GT(report.line, 0U);
    }
}

TEST(Kanvo_RotBlit, WorkersTakeTheirArgumentsInTheGivenOrder)
{
    using Argb32 = Kanvo_PixelARGB32_Access;
    using Rgb32  = Kanvo_PixelRGB32_Access;
    using A8     = Kanvo_PixelA8_Access;
    // pixel (1, 1) of each, twice as wide and three times as high, its left top corner on (3, 1)
    Words      words(BM_ARGB32, 2, {1, 2, 3, 0x80FF4020});
    Words      plain(BM_RGB32, 2, {1, 2, 3, 0x22FF4020});
    Coverage   map(BM_ALPHA8, 2, {0, 0, 0, 255});
    const auto drawn = [](auto draw)
    {
        Stage stage(OB_NONE, 8, 5, 0xFF000000);
        draw(stage.target);
        for (unsigned at = 0; at < stage.pixels.size(); ++at)
        {
            const bool inside = at % 8 >= 3 && at % 8 < 5 && at / 8 >= 1 && at / 8 < 4;
            EXPECT_EQ(stage.pixels[at] == stage.At(3, 1), inside) << "pixel " << at;
        }
        return stage.At(3, 1);
    };
    const auto mixed = support::MixLinear(0xFF000000, 0xFF8040FE, 255);
    EXPECT_EQ(
        drawn([&](auto& to)
              { Kanvo_RotToARGB32<Argb32>::RotBlit_RGB(&words.bitmap, &to, 1, 1, 1, 1, 5, 1, 0, 0, 2, 3, 1, 0, 255); }),
        0x80FF4020U);
    EXPECT_EQ(
        drawn([&](auto& to)
              { Kanvo_RotToARGB32<Rgb32>::RotBlit_Int(&plain.bitmap, &to, 1, 1, 1, 1, 5, 1, 0, 0, 2, 3, 1, 0, 255); }),
        0x22FF4020U);
    EXPECT_EQ(drawn(
                  [&](auto& to) {
                      Kanvo_RotToARGB32<Rgb32>::RotBlit_Int_CK(&plain.bitmap, &to, 1, 1, 1, 1, 5, 1, 0, KEY, 2, 3, 1, 0,
                                                               255, 7);
                  }),
              0x00FF4020U);
    EXPECT_EQ(drawn(
                  [&](auto& to) {
                      Kanvo_RotToARGB32<A8>::RotBlit_IntCol(&map.bitmap, &to, 1, 1, 1, 1, 5, 1, 0xFF8040FE, 0, 0, 2, 3,
                                                            1, 0, 255);
                  }),
              mixed);
    EXPECT_EQ(drawn(
                  [&](auto& to)
                  {
                      Kanvo_RotAlphaToARGB32<Rgb32, A8>::RotBlit_IntAlpha(&plain.bitmap, &map.bitmap, &to, 1, 1, 1, 1,
                                                                          5, 1, 0, 0, 2, 3, 1, 0, 255);
                  }),
              support::MixLinear(0xFF000000, 0x22FF4020, 255));
}
