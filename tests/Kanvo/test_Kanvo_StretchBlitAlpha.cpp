// Tests of StretchBlitAlpha: which formats go together and who does the work, the weight that a map gives, the kept oddity
// of the optimised path, and misuse. test_Kanvo_Stretch_random.cpp has the breadth.
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BlitStage.h"
#include "DrawSpies.h"
#include "Fence.h"
#include "Kanvo_StretchBlit.h"
#include "NaiveMix.h"
#include "PoorBitmaps.h"
#include "StretchSpies.h"
#include "Sweep.h"

namespace
{

using support::BOTH_PATHS;
using support::Coverage;
using support::Halves;
using support::Messages;
using support::MessagesOf;
using support::MixLinear;
using support::MixLinearSrcAlpha;
using support::NO_BUFFER;
using support::NOT_A_MAP;
using support::NOT_INSIDE;
using support::NOT_LOCKED;
using support::NOT_SUPPORTED;
using support::Same;
using support::Stage;
using support::StretchCall;
using support::Words;

constexpr Tov_Flag KEY = BLIT_COLORKEY, BILINEAR = BLIT_BILINEAR, NOCLIP = BLIT_NOCLIP, ASPECT = BLIT_ASPECT;

constexpr const char* OVER          = "neonloops_stretchblit_nearest_argb32_argb32_as_ag_clip";
constexpr const char* OVER_FILTERED = "neonloops_stretchblit_bilinear_argb32_argb32_as_ag_clip";

//! The whole of a source through the same part of a map, to a rectangle at (x, y).
struct To
{
    Tov_UInt width;
    Tov_UInt height;
    Tov_Int  x = 0;
    Tov_Int  y = 0;
};

void StretchAlpha(Kanvo_Bitmap& target, Kanvo_Bitmap& source, Kanvo_Bitmap& map, const To& to, Tov_Flag flags = 0,
                  int alpha = 255)
{
    target.StretchBlitAlpha(&source, &map, source.GetWidth(), source.GetHeight(), 0, 0, to.width, to.height, to.x, to.y,
                            flags, static_cast<Tov_UByte>(alpha));
}

using Uniform = support::UniformOf<2>;

}  // namespace

// ---- dispatch -------------------------------------------------------------------------------------------------------

TEST(StretchBlitAlpha, EachPairOfFormatsHasItsWorker)
{
    for (unsigned sourceType = 0; sourceType <= BM_QUANTITY; ++sourceType)
    {
        // stored images are no bitmaps of pixels; here they are types like any other
        for (unsigned mapType = 0; mapType <= BM_QUANTITY; ++mapType)
        {
            for (const unsigned state : {0U, 1U, 2U, 0x101U})
            {
                for (const Tov_Flag flags : {Tov_Flag{0}, BILINEAR, KEY, KEY | BILINEAR, NOCLIP, ASPECT | BILINEAR})
                {
                    for (const int alpha : {0, 128, 255})
                    {
                        Stage                 stage(state, 4, 4, 0xFF112233);
                        Uniform               source(sourceType, 0xFFEEDDCC);
                        Uniform               map(mapType, 0xFFFFFFFF);
                        support::StretchSpies loops;
                        support::LoopSpies    fills;
                        support::PerfSpies    counters;
                        const Messages        messages = MessagesOf(
                            [&] {
                                StretchAlpha(stage.target, source.Bitmap(), map.Bitmap(), {4, 4}, flags, alpha);
                            });
                        const bool words = sourceType == BM_ARGB32;
                        const bool known = words || sourceType == BM_ALPHA8;
                        const bool draws = mapType == BM_ARGB32 || mapType == BM_ALPHA8;
                        Messages   expected;
                        if (!draws && mapType != BM_ALPHA5_2) expected.emplace_back(NOT_A_MAP);
                        if (!known) expected.emplace_back(NOT_SUPPORTED);
                        EXPECT_EQ(messages, expected) << sourceType << " through " << mapType;
                        EXPECT_EQ(stage.pixels != Same(16, 0xFF112233), known && draws && alpha != 0)
                            << sourceType << " through " << mapType;
                        const bool loop = words && mapType == BM_ARGB32 && state == OB_NEON;
                        ASSERT_EQ(loops.Calls().size(), loop ? 1U : 0U);
                        if (loop)
                        {
                            EXPECT_STREQ(loops.Calls()[0].loop, (flags & BILINEAR) != 0 ? OVER_FILTERED : OVER);
                        }
                        EXPECT_TRUE(fills.Calls().empty());
                        EXPECT_TRUE(counters.Events().empty());
                    }
                }
            }
        }
    }
}

TEST(StretchBlitAlpha, TheLoopStartsAtTheSourcesFirstPixelAndTheClipsCornerAndAlwaysGetsTheOpacity)
{
    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
    {
        for (const int alpha : {0, 77, 254, 255})
        {
            Stage stage(OB_NEON, 16, 12, 0xFF000000);
            Words source(BM_ARGB32, 6, Same(36, 0xFF808080), alpha == 77);
            Words map(BM_ARGB32, 7, Same(49, 0xFF808080));
            stage.target.SetCliprect(1, 3, 9, 9);
            support::StretchSpies loops;
            stage.target.StretchBlitAlpha(&source.bitmap, &map.bitmap, 2, 3, 1, 2, 8, 9, 10, 11, filter,
                                          static_cast<Tov_UByte>(alpha));
            const StretchCall call{filter != 0 ? OVER_FILTERED : OVER,
                                   stage.pixels.data() + 3 * 16 + 1,
                                   source.pixels.data(),
                                   64,
                                   24,
                                   9,
                                   8,
                                   8,
                                   9,
                                   2,
                                   3,
                                   1,
                                   2,
                                   9,
                                   7,
                                   0,
                                   alpha};
            EXPECT_EQ(loops.Calls(), std::vector<StretchCall>{call});
        }
    }
}

TEST(StretchBlitAlpha, ASinglePixelIsNoFillHere)
{
    for (const int alpha : {128, 255})
    {
        Stage                 stage(OB_NEON, 8, 6, 0xFF112233);
        Words                 source(BM_ARGB32, 1, {0xFFEEDDCC});
        support::LoopSpies    fills;
        support::StretchSpies loops;
        stage.target.SetCliprect(1, 1, 4, 4);
        StretchAlpha(stage.target, source.bitmap, source.bitmap, {2, 2, 2, 2}, 0, alpha);
        EXPECT_TRUE(fills.Calls().empty());
        ASSERT_EQ(loops.Calls().size(), 1U);
        EXPECT_STREQ(loops.Calls()[0].loop, OVER);
        EXPECT_EQ(stage.At(1, 1), 0xFF112233U);
        EXPECT_EQ(stage.At(2, 2), MixLinearSrcAlpha(0xFF112233, 0xFFEEDDCC, alpha));
        EXPECT_EQ(stage.At(4, 4), 0xFF112233U);
    }
}

// ---- the blend ------------------------------------------------------------------------------------------------------

TEST(StretchBlitAlpha, TheMapTimesTheOpacityIsTheWeightAndTheSourcesOwnAlphaDoesNotCount)
{
    support::Numbers numbers(51);
    for (const unsigned sourceType : {unsigned{BM_ARGB32}, unsigned{BM_ALPHA8}})
    {
        for (const unsigned mapType : {unsigned{BM_ARGB32}, unsigned{BM_ALPHA8}})
        {
            for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR, KEY, KEY | BILINEAR})
            {
                support::Differences differences;
                for (int turn = 0; turn < 3000; ++turn)
                {
                    const std::uint32_t under   = numbers.NextHostileWord();
                    const std::uint32_t word    = numbers.NextHostileWord();
                    const std::uint32_t mapWord = numbers.NextHostileWord();
                    const int           below   = static_cast<int>(numbers.Next32() % 255);
                    const int           alpha   = turn % 2 == 0 ? 255 : below;
                    Uniform             source(sourceType, word);
                    Uniform             map(mapType, mapWord);
                    const int coverage = mapType == BM_ARGB32 ? support::Split(mapWord)[0] : support::Split(mapWord)[3];
                    const int level    = support::Split(word)[3];
                    const std::uint32_t color =
                        sourceType == BM_ARGB32 ? word : support::Join(255, level, level, level);
                    const std::uint32_t expected = MixLinear(under, color, coverage * alpha / 255);
                    Stage               stage(OB_NONE, 1, {under});
                    StretchAlpha(stage.target, source.Bitmap(), map.Bitmap(), {1, 1}, filter, alpha);
                    if (stage.pixels[0] != expected)
                    {
                        differences.Note("%08X through %d at %d over %08X: expected %08X, got %08X", color, coverage,
                                         alpha, under, expected, stage.pixels[0]);
                    }
                }
                EXPECT_EQ(differences.Count(), 0U)
                    << sourceType << " through " << mapType << ", flags " << filter << ": " << differences.First();
            }
        }
    }
}

TEST(StretchBlitAlpha, AMapPixelOf0LeavesTheTargetAndOneOf255DrawsTheSource)
{
    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
    {
        for (const int alpha : {1, 128, 255})
        {
            Stage   stage(OB_NONE, 1, {0x80123456});
            Uniform source(BM_ARGB32, 0x40FFFFFF);
            Uniform nothing(BM_ALPHA8, 0);
            StretchAlpha(stage.target, source.Bitmap(), nothing.Bitmap(), {1, 1}, filter, alpha);
            EXPECT_EQ(stage.pixels[0], 0x80123456U);
        }
        Stage   stage(OB_NONE, 1, {0x80000000});
        Uniform source(BM_ARGB32, 0x40FFFFFF);
        Uniform full(BM_ALPHA8, 255);
        StretchAlpha(stage.target, source.Bitmap(), full.Bitmap(), {1, 1}, filter, 255);
        EXPECT_EQ(stage.pixels[0], 0xFFFDFDFDU);  // as near as the blend comes to white
    }
}

TEST(StretchBlitAlpha, AMapOf255AtHalfOpacityWeighs128)
{
    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
    {
        Stage   stage(OB_NONE, 1, {0x00000000});
        Uniform source(BM_ARGB32, 0xFFFFFFFF);
        Uniform map(BM_ALPHA8, 255);
        StretchAlpha(stage.target, source.Bitmap(), map.Bitmap(), {1, 1}, filter, 128);
        EXPECT_EQ(stage.pixels[0], 0x807F7F7FU);
    }
}

TEST(StretchBlitAlpha, TheMapIsReadAtTheSourcesCoordinates)
{
    Words    source(BM_ARGB32, 4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0xFFFFFF, 12});
    Coverage map(BM_ALPHA8, 5, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 0, 0});
    Stage    stage(OB_NONE, 4, 2, 0xFF000000);
    stage.target.StretchBlitAlpha(&source.bitmap, &map.bitmap, 2, 1, 1, 2, 4, 2, 0, 0, 0, 255);
    EXPECT_EQ(stage.pixels, (std::vector<std::uint32_t>{0xFF000000, 0xFF000000, 0xFFFDFDFD, 0xFFFDFDFD,  //
                                                        0xFF000000, 0xFF000000, 0xFFFDFDFD, 0xFFFDFDFD}));
}

TEST(StretchBlitAlpha, SourceAndMapAreFilteredAlikeEachByItsOwnFormat)
{
    // ARGB32 mixes by 7 bits of the weights 0, 64, 127, 191 and 255, A8 by all eight.
    Words    source(BM_ARGB32, 2, {0xFF000000, 0xFFFFFFFF, 0xFF000000, 0xFFFFFFFF});
    Coverage map(BM_ALPHA8, 2, {255, 0, 255, 0});
    Stage    stage(OB_NONE, 5, 1, 0xFF000000);
    StretchAlpha(stage.target, source.bitmap, map.bitmap, {5, 1}, BILINEAR);
    constexpr int GREY[]     = {0x00, 0x3F, 0x7D, 0xBD, 0xFD};
    constexpr int COVERAGE[] = {255, 191, 128, 64, 0};  // 255 - 255 * weight / 256, rounded down
    for (unsigned x = 0; x < 5; ++x)
    {
        EXPECT_EQ(stage.At(x, 0), MixLinear(0xFF000000, support::Join(255, GREY[x], GREY[x], GREY[x]), COVERAGE[x]))
            << x;
    }
}

// ---- kept -----------------------------------------------------------------------------------------------------------

TEST(StretchBlitAlpha, TheOptimisedStretchThroughAnARGB32MapIgnoresTheMap)
{
    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
    {
        for (const int alpha : {128, 255})
        {
            for (const std::uint32_t mapWord : {0x00000000U, 0xFFFFFFFFU})
            {
                Uniform source(BM_ARGB32, 0x80FF8040);
                Uniform map(BM_ARGB32, mapWord);
                Stage   optimised(OB_NEON, 1, {0xFF112233});
                StretchAlpha(optimised.target, source.Bitmap(), map.Bitmap(), {1, 1}, filter, alpha);
                EXPECT_EQ(optimised.pixels[0], MixLinearSrcAlpha(0xFF112233, 0x80FF8040, alpha));
                Stage portable(OB_NONE, 1, {0xFF112233});
                StretchAlpha(portable.target, source.Bitmap(), map.Bitmap(), {1, 1}, filter, alpha);
                EXPECT_EQ(portable.pixels[0],
                          MixLinear(0xFF112233, 0x80FF8040, static_cast<int>(mapWord >> 24) * alpha / 255));
            }
        }
    }
}

TEST(StretchBlitAlpha, AMapOfAnotherFormatCountsOnTheOptimisedPathToo)
{
    Uniform source(BM_ARGB32, 0xFFFFFFFF);
    Uniform grey(BM_ALPHA8, 0xFF);
    Uniform map(BM_ALPHA8, 0);
    Uniform wordMap(BM_ARGB32, 0x00FFFFFF);
    Stage   stage(OB_NEON, 1, {0xFF112233});
    StretchAlpha(stage.target, source.Bitmap(), map.Bitmap(), {1, 1});
    StretchAlpha(stage.target, grey.Bitmap(), map.Bitmap(), {1, 1});
    StretchAlpha(stage.target, grey.Bitmap(), wordMap.Bitmap(), {1, 1});
    EXPECT_EQ(stage.pixels[0], 0xFF112233U);
}

// ---- our own promises -----------------------------------------------------------------------------------------------

TEST(StretchBlitAlpha, TheSmallerOfSourceAndMapLimitsWhatIsDrawn)
{
    for (const bool smallMap : {false, true})
    {
        for (const unsigned sourceType : {unsigned{BM_ARGB32}, unsigned{BM_ALPHA8}})
        {
            for (const unsigned mapType : {unsigned{BM_ARGB32}, unsigned{BM_ALPHA8}})
            {
                for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
                {
                    const Tov_UInt size[2] = {smallMap ? 8U : 4U, smallMap ? 4U : 8U};
                    const auto     bytes   = [](unsigned type) { return type == BM_ARGB32 ? 4U : 1U; };
                    support::Fence sourcePixels(size[0] * size[0] * bytes(sourceType));
                    support::Fence mapPixels(size[1] * size[1] * bytes(mapType));
                    std::memset(sourcePixels.Data(), 0xFF, sourcePixels.Size());
                    std::memset(mapPixels.Data(), 0xFF, mapPixels.Size());
                    support::AnySource source(nullptr, sourceType, size[0], size[0], sourcePixels.Data(), 0, true);
                    support::AnySource map(nullptr, mapType, size[1], size[1], mapPixels.Data(), 0, true);
                    Stage              stage(OB_NONE, 16, 16, 0xFF112233);
                    stage.target.StretchBlitAlpha(&source, &map, 8, 8, 0, 0, 16, 16, 0, 0, filter, 255);
                    for (unsigned at = 0; at < 256; ++at)
                    {
                        // 2 x 2 destination pixels for one of the source; the filter ends with the last block
                        const unsigned end = filter != 0 ? 7 : 8;
                        EXPECT_EQ(stage.pixels[at] != 0xFF112233, at % 16 < end && at / 16 < end) << at;
                    }
                }
            }
        }
    }
}

TEST(StretchBlitAlpha, ASourceRectangleThatLeavesItsBitmapNeverReachesTheLoops)
{
    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
    {
        for (const int alpha : {100, 255})
        {
            support::Fence   pixels(64);
            support::Numbers numbers(52);
            for (std::size_t at = 0; at < 64; ++at) pixels.Data()[at] = numbers.NextByte() | 0x80;
            support::AnySource    source(nullptr, BM_ARGB32, 4, 4, pixels.Data(), 0, true);
            Words                 map(BM_ARGB32, 9, Same(81, 0));
            Stage                 stage(OB_NEON, 9, 9, 0xFF112233);
            support::StretchSpies loops;
            stage.target.StretchBlitAlpha(&source, &map.bitmap, 4, 4, 1, 1, 4, 4, 0, 0, filter,
                                          static_cast<Tov_UByte>(alpha));
            EXPECT_TRUE(loops.Calls().empty());
            for (unsigned y = 0; y < 9; ++y)
            {
                for (unsigned x = 0; x < 9; ++x)
                {
                    EXPECT_EQ(stage.At(x, y) == 0xFF112233, x >= 3 || y >= 3) << x << ", " << y;
                }
            }
            // drawn as the loop would: by the source's own alpha, whatever the map says
            if (filter == 0)
            {
                EXPECT_EQ(stage.At(0, 0), MixLinearSrcAlpha(0xFF112233, pixels.As<std::uint32_t>()[5], alpha));
                EXPECT_EQ(stage.At(2, 2), MixLinearSrcAlpha(0xFF112233, pixels.As<std::uint32_t>()[15], alpha));
            }
        }
    }
}

TEST(StretchBlitAlpha, ABrokenPromiseOfNoClippingIsReportedAndDrawsNothing)
{
    for (const To& to :
         {To{2, 2, -1, 0}, To{2, 2, 0, 3}, To{5, 1, 0, 0}, To{1, 1, INT32_MIN, 0}, To{0xFFFFFFFF, 1, 2, 0}})
    {
        for (const unsigned sourceType : {unsigned{BM_ARGB32}, unsigned{BM_ALPHA8}})
        {
            for (const unsigned mapType : {unsigned{BM_ARGB32}, unsigned{BM_ALPHA8}})
            {
                Stage   stage(OB_NONE, 4, 4, 0xFF112233);
                Uniform source(sourceType, 0xFFFFFFFF);
                Uniform map(mapType, 0xFFFFFFFF);
                EXPECT_EQ(MessagesOf([&] { StretchAlpha(stage.target, source.Bitmap(), map.Bitmap(), to, NOCLIP); }),
                          Messages{NOT_INSIDE});
                EXPECT_EQ(stage.pixels, Same(16, 0xFF112233));
            }
        }
    }
}

TEST(StretchBlitAlpha, WithoutClippingTheClipRectangleIsNotLookedAt)
{
    Stage   stage(OB_NONE, 2, 2, 0xFF000000);
    Uniform source(BM_ARGB32, 0xFFFFFFFF);
    Uniform map(BM_ALPHA8, 0xFF);
    stage.target.SetCliprect(1, 1, 0, 0);
    StretchAlpha(stage.target, source.Bitmap(), map.Bitmap(), {2, 2}, NOCLIP);
    EXPECT_EQ(stage.pixels, Same(4, 0xFFFDFDFD));
}

// ---- misuse ---------------------------------------------------------------------------------------------------------

TEST(StretchBlitAlpha, AnUnlockedTargetIsReportedFirstAndDrawnInto)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage   stage(optimized, 1, {0xFF000000});
        Uniform source(BM_ARGB32, 0xFFFFFFFF);
        Uniform map(BM_ARGB32, 0xFFFFFFFF);
        Uniform wrong(BM_RGB565, 0xFFFFFFFF);
        stage.target.Unlock(0, 0, 0, 0);
        EXPECT_EQ(MessagesOf(
                      [&] {
                          StretchAlpha(stage.target, source.Bitmap(), map.Bitmap(), {1, 1});
                      }),
                  Messages{NOT_LOCKED});
        EXPECT_EQ(stage.pixels[0], 0xFFFDFDFDU);
        EXPECT_EQ(MessagesOf(
                      [&] {
                          StretchAlpha(stage.target, wrong.Bitmap(), wrong.Bitmap(), {1, 1});
                      }),
                  (Messages{NOT_LOCKED, NOT_A_MAP, NOT_SUPPORTED}));
    }
}

TEST(StretchBlitAlpha, NullSourcesAndMapsAreReportedAndDrawNothing)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, KEY, BILINEAR, NOCLIP})
        {
            Stage   stage(optimized, 2, 2, 0xFF112233);
            Uniform source(BM_ARGB32, 0xFFFFFFFF);
            auto&   to = stage.target;
            auto*   it = &source.Bitmap();
            EXPECT_EQ(MessagesOf([&] { to.StretchBlitAlpha(it, nullptr, 2, 2, 0, 0, 2, 2, 0, 0, flags, 255); }),
                      Messages{NOT_A_MAP});
            EXPECT_EQ(MessagesOf([&] { to.StretchBlitAlpha(nullptr, it, 2, 2, 0, 0, 2, 2, 0, 0, flags, 255); }).size(),
                      1U);
            EXPECT_EQ(
                MessagesOf([&] { to.StretchBlitAlpha(nullptr, nullptr, 2, 2, 0, 0, 2, 2, 0, 0, flags, 255); }).size(),
                2U);
            EXPECT_EQ(stage.pixels, Same(4, 0xFF112233));
        }
    }
}

TEST(StretchBlitAlpha, SourcesAndMapsWithoutPixelsAreReportedAndDrawNothing)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage                stage(optimized, 2, 2, 0xFF112233);
        support::PoorBitmaps poor(2);
        Uniform              words(BM_ARGB32, 0xFFFFFFFF);
        Uniform              bytes(BM_ALPHA8, 0xFF);
        for (Kanvo_Bitmap* const empty : std::vector<Kanvo_Bitmap*>{&poor.argb32, &poor.a8})
        {
            for (Kanvo_Bitmap* const full : {&words.Bitmap(), &bytes.Bitmap()})
            {
                for (const Tov_Flag flags : {Tov_Flag{0}, BILINEAR, NOCLIP})
                {
                    EXPECT_EQ(MessagesOf(
                                  [&] {
                                      StretchAlpha(stage.target, *empty, *full, {2, 2}, flags);
                                  }),
                              Messages{NO_BUFFER});
                    EXPECT_EQ(MessagesOf(
                                  [&] {
                                      StretchAlpha(stage.target, *full, *empty, {2, 2}, flags);
                                  }),
                              Messages{NO_BUFFER});
                }
            }
        }
        EXPECT_EQ(stage.pixels, Same(4, 0xFF112233));
    }
}

TEST(StretchBlitAlpha, SizesOfZeroDrawNothingInSilence)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, BILINEAR, ASPECT})
        {
            for (int zero = 0; zero < 4; ++zero)
            {
                Stage          stage(optimized, 2, 2, 0xFF112233);
                Uniform        source(BM_ARGB32, 0xFFFFFFFF);
                const Tov_UInt size[4] = {zero == 0 ? 0U : 2U, zero == 1 ? 0U : 2U, zero == 2 ? 0U : 2U,
                                          zero == 3 ? 0U : 2U};
                auto* const it = &source.Bitmap();
                EXPECT_EQ(MessagesOf(
                              [&] {
                                  stage.target.StretchBlitAlpha(it, it, size[0], size[1], 0, 0, size[2], size[3], 0, 0,
                                                                flags, 255);
                              }),
                          Messages{});
                EXPECT_EQ(stage.pixels, Same(4, 0xFF112233));
            }
        }
    }
}

TEST(Kanvo_StretchBlitAlpha, WorkersTakeTheirArgumentsInTheGivenOrder)
{
    using Argb32 = Kanvo_PixelARGB32_Access;
    using A8     = Kanvo_PixelA8_Access;
    Words    source(BM_ARGB32, 4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0xFFFFFF, 12});
    Coverage grey(BM_ALPHA8, 4, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x80, 0});
    Coverage map(BM_ALPHA8, 4, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 0});
    Stage    stage(OB_NONE, 8, 8, 0xFF000000);
    Kanvo_StretchAlphaToARGB32<Argb32, A8>::StretchBlit_IntAlpha(&source.bitmap, &map.bitmap, &stage.target, 2, 1, 1, 2,
                                                                 2, 3, 4, 5, 0, 255);
    EXPECT_EQ(stage.At(4, 5), 0xFF000000U);
    EXPECT_EQ(stage.At(5, 5), 0xFFFDFDFDU);
    EXPECT_EQ(stage.At(5, 7), 0xFFFDFDFDU);
    EXPECT_EQ(stage.At(6, 5), 0xFF000000U);
    Kanvo_StretchAlphaToARGB32<A8, A8>::StretchBlit_RGBAlpha(&grey.bitmap, &map.bitmap, &stage.target, 1, 1, 2, 2, 1, 2,
                                                             0, 1, 0, 255);
    EXPECT_EQ(stage.At(0, 0), 0xFF000000U);
    EXPECT_EQ(stage.At(0, 2), MixLinear(0xFF000000, 0xFF808080, 255));
}
