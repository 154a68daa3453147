// Tests of textured polygons: spans, write-backs, and what of the render state chooses them. Random spans and polygons are
// compared with a naive reference, coordinates in perspective with the exact quotient.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CrashNote.h"
#include "Kanvo_Polydraw.h"
#include "Kanvo_SpandrawTex.h"
#include "Kanvo_Texture.h"
#include "NaiveMix.h"
#include "PolyStage.h"
#include "RandomPolygons.h"
#include "Reference_PolygonTex.h"
#include "TextureImage.h"

namespace
{

using reference::Outline;
using reference::Writeback;
using support::Dice;
using support::PolyStage;
using support::TextureImage;

constexpr std::uint32_t BLACK = 0xFF000000U;

//! A write-back that writes down where it was asked for what.
template <class TextureAccess>
struct Spy
{
    struct Call
    {
        std::uint32_t* dest;
        Tov_Fixed      u;
        Tov_Fixed      v;
    };
    using Texture = TextureAccess;

    static void BlendTexel(typename TextureAccess::Offset, Kanvo_OffsetARGB32 dest, Tov_Fixed u, Tov_Fixed v, Tov_UInt,
                           Tov_UInt, Tov_UInt, const Kanvo_Polydraw_data&)
    {
        s_calls.push_back({dest, u, v});
    }
    inline static std::vector<Call> s_calls;
};
using WordSpy = Spy<Kanvo_PixelARGB32_Access>;

template <class Back>
using Spans = Kanvo_HSpanRenderTex<Kanvo_PixelARGB32_Access, Back>;

constexpr Tov_Fixed Fix(double value)
{
    return static_cast<Tov_Fixed>(value * 65536.0);
}

//! The columns that an affine span of the spy calls for.
std::vector<int> ColumnsOf(PolyStage& stage, double x1, double x2)
{
    WordSpy::s_calls.clear();
    std::uint32_t texel = 0;
    Spans<WordSpy>::RenderSpan(&stage.Bitmap(), Fix(3), Fix(x1), Fix(x2), &texel, 0, 0, 0x10000, 0, 0, 0xFFFF, 0xFFFF,
                               {0});
    std::vector<int> columns;
    for (const WordSpy::Call& call : WordSpy::s_calls)
        columns.push_back(static_cast<int>(call.dest - stage.Words()) - 3 * static_cast<int>(stage.Width()));
    return columns;
}

}  // namespace

// ---- spans ----------------------------------------------------------------------------------------------------------

TEST(PolydrawTex, ASpanCoversTheWholePixelsOfItsEndsOnce)
{
    PolyStage stage(32, 8);
    using Columns = std::vector<int>;
    EXPECT_EQ(ColumnsOf(stage, 3.9, 3.1), (Columns{3}));
    EXPECT_EQ(ColumnsOf(stage, 3.0, 5.99), (Columns{3, 4, 5}));
    EXPECT_EQ(ColumnsOf(stage, 4.2, 3.9), (Columns{}));
    EXPECT_EQ(ColumnsOf(stage, 3.5, 3.5), (Columns{3}));
    // what lies outside the bitmap is left out
    EXPECT_EQ(ColumnsOf(stage, -2.5, 1.0), (Columns{0, 1}));
    EXPECT_EQ(ColumnsOf(stage, 30.0, 40.0), (Columns{30, 31}));
    EXPECT_EQ(ColumnsOf(stage, 33.0, 40.0), (Columns{}));
}

TEST(PolydrawTex, CoordinatesCountFromTheFirstPixelOfTheRow)
{
    PolyStage stage(32, 8);
    WordSpy::s_calls.clear();
    std::uint32_t texel = 0;
    Spans<WordSpy>::RenderSpan(&stage.Bitmap(), Fix(3), Fix(5.7), Fix(7.2), &texel, Fix(1), Fix(2), Fix(0.5),
                               Fix(-0.25), 0, 0xFFFF, 0xFFFF, {0});
    ASSERT_EQ(WordSpy::s_calls.size(), 3U);
    EXPECT_EQ(WordSpy::s_calls[0].u, Fix(1 + 5 * 0.5));
    EXPECT_EQ(WordSpy::s_calls[0].v, Fix(2 - 5 * 0.25));
    EXPECT_EQ(WordSpy::s_calls[2].u, Fix(1 + 7 * 0.5));
    EXPECT_EQ(WordSpy::s_calls[2].v, Fix(2 - 7 * 0.25));
}

TEST(PolydrawTex, TwentyPixelsAreTwoSubdivisionsOfEightAndOneOfFour)
{
    // z grows with x: u = 100 x / (1 + x / 10) bends, and between the corrected points it is straight
    PolyStage stage(64, 8);
    WordSpy::s_calls.clear();
    std::uint32_t texel = 0;
    Spans<WordSpy>::RenderSpanSubdivision(&stage.Bitmap(), Fix(3), Fix(5), Fix(24.5), &texel, 0.0F, 0.0F, 1.0F, 100.0F,
                                          0.0F, 0.1F, 0, 0xFFFF, 0xFFFF, {0});
    const auto& calls = WordSpy::s_calls;
    ASSERT_EQ(calls.size(), 20U);
    std::vector<std::size_t> bends;
    for (std::size_t at = 1; at + 1 < calls.size(); ++at)
        if (calls[at + 1].u - calls[at].u != calls[at].u - calls[at - 1].u) bends.push_back(at);
    // the last step of a part takes up what division left over, so that it may be a bend of its own
    for (const std::size_t at : bends) EXPECT_TRUE(at == 7 || at == 8 || at == 15 || at == 16) << at;
    EXPECT_TRUE(std::count(bends.begin(), bends.end(), 8U) == 1 && std::count(bends.begin(), bends.end(), 16U) == 1);
    for (const std::size_t at : {std::size_t{0}, std::size_t{8}, std::size_t{16}})
    {
        const double x = 5.0 + static_cast<double>(at);
        EXPECT_NEAR(calls[at].u, 65536.0 * 100.0 * x / (1.0 + x / 10.0), 65536.0 * 0.001) << at;
    }
    WordSpy::s_calls.clear();
    Spans<WordSpy>::RenderSpanSubdivision(&stage.Bitmap(), Fix(3), Fix(5), Fix(4.5), &texel, 0.0F, 0.0F, 1.0F, 100.0F,
                                          0.0F, 0.1F, 0, 0xFFFF, 0xFFFF, {0});
    EXPECT_TRUE(calls.empty());
}

TEST(PolydrawTex, TexturesRepeatInBothDirections)
{
    // a texel says where it stands
    TextureImage picture(BM_ARGB32, 6, 4, 7, support::Against::BackFence);
    auto* const  words = reinterpret_cast<std::uint32_t*>(picture.Data());
    for (std::uint32_t y = 0; y < 16; ++y)
        for (std::uint32_t x = 0; x < 64; ++x) words[y * 128 + x] = BLACK | y << 8 | x;
    const auto texelAt = [&](double u, double v)
    {
        std::uint32_t pixel = 0;
        Kanvo_WritebackTex_Default::BlendTexel(words, &pixel, Fix(u), Fix(v), 63U << 16 | 0xFFFFU, 15U << 16 | 0xFFFFU,
                                               7, {0});
        return pixel & 0xFFFFU;
    };
    EXPECT_EQ(texelAt(-1.5, 0), 62U);
    EXPECT_EQ(texelAt(0, -1.5), 14U << 8);
    EXPECT_EQ(texelAt(64, 16), 0U);
    EXPECT_EQ(texelAt(63.99, 15.99), 15U << 8 | 63U);
    EXPECT_EQ(texelAt(-0.01, -0.01), 15U << 8 | 63U);
    EXPECT_EQ(texelAt(-32768, 32767), 15U << 8);
    EXPECT_EQ(texelAt(200.5, 33.5), 1U << 8 | 8U);
}

// ---- write-backs ----------------------------------------------------------------------------------------------------

namespace
{

template <class Back, class Texel>
std::uint32_t WriteBack(std::uint32_t before, Texel texel, std::uint32_t data)
{
    Back::BlendTexel(&texel, &before, 0, 0, 0xFFFF, 0xFFFF, 0, {data});
    return before;
}

std::uint32_t WriteBack(Writeback way, std::uint32_t before, std::uint32_t texel, std::uint32_t data)
{
    switch (way)
    {
    case Writeback::Default: return WriteBack<Kanvo_WritebackTex_Default>(before, texel, data);
    case Writeback::Alpha: return WriteBack<Kanvo_WritebackTex_Alpha>(before, texel, data);
    case Writeback::Additive: return WriteBack<Kanvo_WritebackTex_Additive>(before, texel, data);
    case Writeback::Color: return WriteBack<Kanvo_WritebackTex_Color>(before, static_cast<std::uint8_t>(texel), data);
    case Writeback::ColorAlpha:
        return WriteBack<Kanvo_WritebackTex_ColorAlpha>(before, static_cast<std::uint8_t>(texel), data);
    }
    return 0;
}

constexpr Writeback ALL_WAYS[] = {Writeback::Default, Writeback::Alpha, Writeback::Additive, Writeback::Color,
                                  Writeback::ColorAlpha};

bool IsOfBytes(Writeback way)
{
    return way == Writeback::Color || way == Writeback::ColorAlpha;
}

}  // namespace

TEST(PolydrawTex, WriteBacksAreThoseOfTheNaiveReference)
{
    support::Numbers     numbers(4);
    support::Differences differences;
    for (const Writeback way : ALL_WAYS)
    {
        for (int turn = 0; turn < 200000; ++turn)
        {
            const std::uint32_t before = numbers.NextHostileWord();
            const std::uint32_t texel  = numbers.NextHostileWord() & (IsOfBytes(way) ? 0xFFU : 0xFFFFFFFFU);
            const std::uint32_t data   = numbers.NextHostileWord();
            const std::uint32_t want   = reference::WriteTexel(before, texel, {way, data});
            const std::uint32_t got    = WriteBack(way, before, texel, data);
            if (got != want)
                differences.Note("way %d: %08X, texel %08X, data %08X: expected %08X, got %08X", static_cast<int>(way),
                                 before, texel, data, want, got);
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(PolydrawTex, TheDefaultStoresTheTexelAndItsAlpha)
{
    EXPECT_EQ(WriteBack(Writeback::Default, 0xFFAABBCCU, 0x00112233U, 0), 0x00112233U);
}

TEST(PolydrawTex, AlphaIsTheLowByteOfTheDataAndTheTexelsOwnIsNotRead)
{
    EXPECT_EQ(WriteBack(Writeback::Alpha, BLACK, 0x00FFFFFFU, 0xFFFFFF80U),
              support::MixLinear(BLACK, 0xFFFFFFFFU, 0x80));
    EXPECT_EQ(WriteBack(Writeback::Alpha, 0x12345678U, 0xFFFFFFFFU, 0xABCDEF00U), 0x12345678U);
    EXPECT_EQ(WriteBack(Writeback::Alpha, BLACK, 0xFFFFFFFFU, 255), 0xFFFDFDFDU);
}

TEST(PolydrawTex, AdditionSaturatesAndMakesOpaque)
{
    EXPECT_EQ(WriteBack(Writeback::Additive, 0x00800001U, 0x009000FFU, 0), 0xFFFF00FFU);
}

TEST(PolydrawTex, ATexelOfNoCoverageIsLeftUntouched)
{
    // even where a blend by 0 would write: the destination lies on a page that may not be written to
    support::Fence ground(4);
    *ground.As<std::uint32_t>() = 0x12345678U;
    ground.MakeReadOnly();
    std::uint8_t zero = 0;
    std::uint8_t one  = 1;
    Kanvo_WritebackTex_Color::BlendTexel(&zero, ground.As<std::uint32_t>(), 0, 0, 0xFFFF, 0xFFFF, 0, {0xFFFFFFFFU});
    Kanvo_WritebackTex_ColorAlpha::BlendTexel(&zero, ground.As<std::uint32_t>(), 0, 0, 0xFFFF, 0xFFFF, 0,
                                              {0xFFFFFFFFU});
    Kanvo_WritebackTex_ColorAlpha::BlendTexel(&one, ground.As<std::uint32_t>(), 0, 0, 0xFFFF, 0xFFFF, 0, {0xFFFFFFFFU});
    EXPECT_EQ(*ground.As<std::uint32_t>(), 0x12345678U);
}

TEST(PolydrawTex, AFullTexelAtFullAlphaCoversBy254)
{
    EXPECT_EQ(WriteBack(Writeback::ColorAlpha, 0x00000000U, 255, 0xFF112233U) >> 24, 254U);
    EXPECT_EQ(WriteBack(Writeback::Color, 0x00000000U, 255, 0xFF112233U) >> 24, 255U);
}

TEST(PolydrawTex, TheColoursOwnAlphaIsNotReadByColor)
{
    EXPECT_EQ(WriteBack(Writeback::Color, BLACK, 200, 0x00FF8040U),
              WriteBack(Writeback::Color, BLACK, 200, 0xFFFF8040U));
}

// ---- random spans ---------------------------------------------------------------------------------------------------

namespace
{

template <class Back, class Texel>
void Render(Kanvo_Bitmap* bitmap, const reference::Span& span, Texel* texels, const reference::Texels& texture,
            const reference::AffineFrame* affine, const reference::PerspectiveFrame& frame, std::uint32_t data)
{
    const Tov_UInt maskX = texture.widthMask << 16 | 0xFFFFU;
    const Tov_UInt maskY = texture.heightMask << 16 | 0xFFFFU;
    const auto     y     = static_cast<Tov_Fixed>(span.row * 65536);
    const auto     x1    = static_cast<Tov_Fixed>(span.start);
    const auto     x2    = static_cast<Tov_Fixed>(span.end);
    if (affine != nullptr)
        Spans<Back>::RenderSpan(bitmap, y, x1, x2, texels, static_cast<Tov_Fixed>(affine->u0),
                                static_cast<Tov_Fixed>(affine->v0), static_cast<Tov_Fixed>(affine->ux),
                                static_cast<Tov_Fixed>(affine->vx), texture.rowShift, maskX, maskY, {data});
    else
        Spans<Back>::RenderSpanSubdivision(bitmap, y, x1, x2, texels, frame.u0, frame.v0, frame.z0, frame.ux, frame.vx,
                                           frame.zx, texture.rowShift, maskX, maskY, {data});
}

void Render(Writeback way, Kanvo_Bitmap* bitmap, const reference::Span& span, TextureImage& image,
            const reference::AffineFrame* affine, const reference::PerspectiveFrame& frame, std::uint32_t data)
{
    const reference::Texels texels = image.Texels();
    auto* const             words  = reinterpret_cast<std::uint32_t*>(image.Data());
    switch (way)
    {
    case Writeback::Default:
        return Render<Kanvo_WritebackTex_Default>(bitmap, span, words, texels, affine, frame, data);
    case Writeback::Alpha: return Render<Kanvo_WritebackTex_Alpha>(bitmap, span, words, texels, affine, frame, data);
    case Writeback::Additive:
        return Render<Kanvo_WritebackTex_Additive>(bitmap, span, words, texels, affine, frame, data);
    case Writeback::Color:
        return Render<Kanvo_WritebackTex_Color>(bitmap, span, image.Data(), texels, affine, frame, data);
    case Writeback::ColorAlpha:
        return Render<Kanvo_WritebackTex_ColorAlpha>(bitmap, span, image.Data(), texels, affine, frame, data);
    }
}

//! Textures of both kinds and all shapes, made once.
std::vector<std::unique_ptr<TextureImage>> Textures(unsigned type)
{
    std::vector<std::unique_ptr<TextureImage>> images;
    Dice                                       dice(type);
    for (const unsigned widthBits : {0U, 1U, 3U, 6U})
    {
        for (const unsigned heightBits : {0U, 2U, 5U})
        {
            images.push_back(std::make_unique<TextureImage>(type, widthBits, heightBits, widthBits + heightBits % 3,
                                                            heightBits == 2 ? support::Against::FrontFence
                                                                            : support::Against::BackFence));
            images.back()->Throw(dice);
        }
    }
    return images;
}

float ThrowCoordinate(Dice& dice)
{
    switch (dice.Between(0, 9))
    {
    case 0: return 0.0F;
    case 1: return static_cast<float>(dice.Between(-64, 64));
    case 2: return support::Uniform(dice, -1.0e6F, 1.0e6F);
    case 3: return support::Uniform(dice, -1.0e-3F, 1.0e-3F);
    case 4: return dice.Of({1.0e30F, -1.0e30F, 1.0e-40F, 3.0e38F, -0.0F});
    default: return support::Uniform(dice, -100.0F, 100.0F);
    }
}

}  // namespace

TEST(PolydrawTex, SpansAreThoseOfTheNaiveReference)
{
    const support::Seeds seeds(support::CasesOf(200000));
    support::CrashNote   crash("SpansAreThoseOfTheNaiveReference");
    Kanvo                library;
    Kanvo_Screen         screen(&library);
    support::Fence       arena(support::PolyTarget::ARENA_BYTES);
    const auto           words    = Textures(BM_ARGB32);
    const auto           bytes    = Textures(BM_ALPHA8);
    int                  failures = 0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count && failures < 3; ++seed)
    {
        crash.InCase(seed);
        Dice                dice(seed);
        support::PolyTarget target(&screen, arena, dice, 24);
        const Writeback     way    = ALL_WAYS[dice.Below(5)];
        const auto&         images = IsOfBytes(way) ? bytes : words;
        TextureImage&       image  = *images[dice.Below(static_cast<unsigned>(images.size()))];
        const auto          width  = static_cast<int>(target.Size().width);
        const int           out    = dice.OneIn(4) ? 40 : 0;  // outside pixels are left out
        reference::Span     span{};
        span.row   = dice.Below(target.Size().height);
        span.start = dice.Between(-out * 65536, (width + out) * 65536 - 1);
        span.end   = dice.OneIn(8) ? span.start + dice.Between(-65536, 65536)
                                   : dice.Between(-out * 65536, (width + out) * 65536 - 1);
        span.end =
            std::clamp<std::int64_t>(span.end, -std::int64_t{out} * 65536, std::int64_t{width + out} * 65536 - 1);
        const std::uint32_t    data   = dice.NextHostileWord();
        const bool             bends  = dice.OneIn(2);
        reference::AffineFrame affine = {};
        for (std::int64_t* const value : {&affine.u0, &affine.ux, &affine.v0, &affine.vx})
        {
            const auto any   = static_cast<std::int32_t>(dice.Next32());
            const auto small = dice.Between(-0x30000, 0x30000);
            *value           = dice.OneIn(4) ? any : small;
        }
        reference::PerspectiveFrame frame = {};
        for (float* const value : {&frame.u0, &frame.ux, &frame.v0, &frame.vx, &frame.z0, &frame.zx})
            *value = ThrowCoordinate(dice);

        if (bends)
            reference::TextureSpan(target.Expected(), span, image.Texels(), frame, {way, data});
        else
            reference::TextureSpan(target.Expected(), span, image.Texels(), affine, {way, data});
        Render(way, &target.Bitmap(), span, image, bends ? nullptr : &affine, frame, data);
        const std::string wrong = target.Difference();
        if (wrong.empty()) continue;
        ++failures;
        char text[400];
        std::snprintf(text, sizeof text,
                      "seed %llu: way %d, data %08X, row %lld from %.5f to %.5f, %s: affine %lld %lld, %lld %lld; "
                      "perspective %.9g %.9g, %.9g %.9g, %.9g %.9g; ",
                      static_cast<unsigned long long>(seed), static_cast<int>(way), data,
                      static_cast<long long>(span.row), static_cast<double>(span.start) / 65536,
                      static_cast<double>(span.end) / 65536, bends ? "perspective" : "affine",
                      static_cast<long long>(affine.u0), static_cast<long long>(affine.ux),
                      static_cast<long long>(affine.v0), static_cast<long long>(affine.vx),
                      static_cast<double>(frame.u0), static_cast<double>(frame.ux), static_cast<double>(frame.v0),
                      static_cast<double>(frame.vx), static_cast<double>(frame.z0), static_cast<double>(frame.zx));
        ADD_FAILURE() << text << image.Described() << " on " << target.Described() << ": " << wrong;
    }
}

// Texels of long spans are gathered in portions, those of short ones are not.
TEST(PolydrawTex, SpansOfEveryLengthAreThoseOfTheNaiveReference)
{
    constexpr int WIDTH = 150;
    Dice          dice(12);
    TextureImage  words(BM_ARGB32, 5, 3, 6, support::Against::BackFence);
    TextureImage  bytes(BM_ALPHA8, 6, 2, 6, support::Against::FrontFence);
    words.Throw(dice);
    bytes.Throw(dice);
    PolyStage                    stage(WIDTH, 3);
    std::vector<std::uint32_t>   expected(std::size_t{WIDTH} * 3);
    const reference::AffineFrame affine{-0x3A000, 0x13456, 0, 0x1F0000, -0x4321, 0};
    for (const Writeback way : ALL_WAYS)
    {
        for (int length = 0; length <= 140; ++length)
        {
            for (std::size_t at = 0; at < expected.size(); ++at)
                stage.Words()[at] = expected[at] = dice.NextHostileWord();
            const reference::Span span{1, 6 * 65536, (5 + length) * 65536};
            TextureImage&         image = IsOfBytes(way) ? bytes : words;
            const std::uint32_t   data  = dice.NextHostileWord();
            reference::TextureSpan(stage.CanvasOver(expected.data()), span, image.Texels(), affine, {way, data});
            Render(way, &stage.Bitmap(), span, image, &affine, {}, data);
            ASSERT_EQ(stage.Pixels(), expected) << "way " << static_cast<int>(way) << ", length " << length;
        }
    }
}

// Each pixel is read after the one before it was drawn, also where that is what it is read from.
TEST(PolydrawTex, ATargetMayBeItsOwnTexture)
{
    constexpr int WIDTH = 64;
    PolyStage     stage(WIDTH, 4);
    Dice          dice(13);
    for (int at = 0; at < WIDTH * 4; ++at) stage.Words()[at] = BLACK | dice.Next32();
    std::vector<std::uint32_t> expected = stage.Pixels();
    for (std::size_t x = 1; x < WIDTH; ++x)
        expected[2 * WIDTH + x] = support::MixLinear(expected[2 * WIDTH + x], expected[2 * WIDTH + x - 1], 200);
    Spans<Kanvo_WritebackTex_Alpha>::RenderSpan(&stage.Bitmap(), Fix(2), Fix(1), Fix(63), stage.Words(), Fix(-1),
                                                Fix(2), Fix(1), 0, 6, 63U << 16 | 0xFFFFU, 3U << 16 | 0xFFFFU, {200});
    EXPECT_EQ(stage.Pixels(), expected);
}

TEST(PolydrawTex, AtTheCorrectedPointsPerspectiveIsTheExactQuotient)
{
    const support::Seeds seeds(support::CasesOf(50000));
    PolyStage            stage(1024, 4);
    double               worst   = 0.0;
    double               between = 0.0;
    std::uint64_t        points  = 0;
    std::uint32_t        texel   = 0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice dice(seed);
        // depth between 1/4 and 4 all along, texture positions of up to a few thousand
        const int   x1   = dice.Between(0, 1000);
        const int   x2   = dice.Between(x1, 1023);
        const float near = support::Uniform(dice, 0.25F, 4.0F);
        const float far  = support::Uniform(dice, 0.25F, 4.0F);
        const float zx   = (far - near) / 1024.0F;
        const float u0   = support::Uniform(dice, -500.0F, 500.0F);
        const float ux   = support::Uniform(dice, -2.0F, 2.0F);
        WordSpy::s_calls.clear();
        Spans<WordSpy>::RenderSpanSubdivision(&stage.Bitmap(), 0, x1 * 65536, x2 * 65536, &texel, u0, -u0, near, ux,
                                              -ux, zx, 0, 0xFFFF, 0xFFFF, {0});
        ASSERT_EQ(WordSpy::s_calls.size(), static_cast<std::size_t>(x2 - x1 + 1));
        for (std::size_t at = 0; at < WordSpy::s_calls.size(); ++at)
        {
            const double x     = x1 + static_cast<double>(at);
            const double exact = (static_cast<double>(u0) + x * static_cast<double>(ux)) /
                                 (static_cast<double>(near) + x * static_cast<double>(zx));
            const double got = WordSpy::s_calls[at].u / 65536.0;
            const double off = std::fabs(got - exact);
            if (at % 8 == 0)
            {
                ++points;
                worst = std::max(worst, off);
                ASSERT_LE(off, 1.0) << "seed " << seed << ", pixel " << at;
            }
            else
                between = std::max(between, off);
            ASSERT_LE(std::fabs(WordSpy::s_calls[at].u + static_cast<double>(WordSpy::s_calls[at].v)),
                      2.0 * 65536.0 * 0.02)
                << "v mirrors u";
        }
    }
    EXPECT_GT(points, seeds.count * 10);
    std::printf("[ quotient ] %llu corrected points: at most %.4f texels off; between them at most %.2f\n",
                static_cast<unsigned long long>(points), worst, between);
}

// ---- polygons -------------------------------------------------------------------------------------------------------

namespace
{

template <class Back>
void Fill(support::PolyTarget& target, const Outline& outline, Kanvo_Texture& texture,
          const Kanvo_Polygon_TextureFrame& frame, bool bends, std::uint32_t data)
{
    const std::vector<Kanvo_Coord2D> vertices = support::Vertices(outline);
    Kanvo_Polydraw_Tex_NoAA_ARGB32<Back>::Polygon(&target.Bitmap(), vertices.data(),
                                                  static_cast<Tov_UInt>(vertices.size()), sizeof(Kanvo_Coord2D),
                                                  &texture, frame, bends, {data});
}

}  // namespace

TEST(PolydrawTex, PolygonsAreThoseOfTheNaiveReference)
{
    const support::Seeds    seeds(support::CasesOf(60000));
    support::CrashNote      crash("PolygonsAreThoseOfTheNaiveReference");
    Kanvo                   library;
    Kanvo_Screen            screen(&library);
    support::Fence          arena(support::PolyTarget::ARENA_BYTES);
    const auto              words = Textures(BM_ARGB32);
    const auto              bytes = Textures(BM_ALPHA8);
    reference::PlainOutcome outcome;
    int                     failures = 0;
    std::uint64_t           painted  = 0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count && failures < 3; ++seed)
    {
        crash.InCase(seed);
        Dice                dice(seed);
        support::PolyTarget target(&screen, arena, dice, 32);
        const Writeback     way    = ALL_WAYS[dice.Below(5)];
        const auto&         images = IsOfBytes(way) ? bytes : words;
        TextureImage&       image  = *images[dice.Below(static_cast<unsigned>(images.size()))];
        Kanvo_Texture       texture;
        ASSERT_TRUE(texture.SetBitmap(&image.Bitmap())) << image.Described();
        const Outline       outline = support::ThrowOutline(dice, {target.Size().width, target.Size().height, true});
        const std::uint32_t data    = dice.NextHostileWord();
        const bool          bends   = dice.OneIn(2);

        reference::AffineFrame affine = {};
        for (std::int64_t* const value : {&affine.u0, &affine.ux, &affine.uy, &affine.v0, &affine.vx, &affine.vy})
        {
            const auto any   = static_cast<std::int32_t>(dice.Next32());
            const auto small = dice.Between(-0x30000, 0x30000);
            *value           = dice.OneIn(6) ? any : small;
        }
        reference::PerspectiveFrame floating = {};
        for (float* const value : {&floating.u0, &floating.ux, &floating.uy, &floating.v0, &floating.vx, &floating.vy})
            *value = support::Uniform(dice, -30.0F, 30.0F);
        floating.z0 = support::Uniform(dice, -1.0F, 3.0F);
        floating.zx = support::Uniform(dice, -0.1F, 0.1F);
        floating.zy = support::Uniform(dice, -0.1F, 0.1F);
        if (dice.OneIn(20)) floating.z0 = floating.zx = floating.zy = 0.0F;

        reference::PlainSpans(outline, outcome);
        painted += !outcome.spans.empty();
        Kanvo_Polygon_TextureFrame frame{};
        if (bends)
        {
            frame.kFloating = {floating.u0, floating.ux, floating.uy, floating.v0, floating.vx,
                               floating.vy, floating.z0, floating.zx, floating.zy};
            reference::TextureSpans(target.Expected(), outcome.spans, image.Texels(), floating, {way, data});
        }
        else
        {
            frame.kFixed = {static_cast<Tov_Fixed>(affine.u0),
                            static_cast<Tov_Fixed>(affine.ux),
                            static_cast<Tov_Fixed>(affine.uy),
                            static_cast<Tov_Fixed>(affine.v0),
                            static_cast<Tov_Fixed>(affine.vx),
                            static_cast<Tov_Fixed>(affine.vy),
                            7,
                            8,
                            9};
            reference::TextureSpans(target.Expected(), outcome.spans, image.Texels(), affine, {way, data});
        }
        switch (way)
        {
        case Writeback::Default: Fill<Kanvo_WritebackTex_Default>(target, outline, texture, frame, bends, data); break;
        case Writeback::Alpha: Fill<Kanvo_WritebackTex_Alpha>(target, outline, texture, frame, bends, data); break;
        case Writeback::Additive:
            Fill<Kanvo_WritebackTex_Additive>(target, outline, texture, frame, bends, data);
            break;
        case Writeback::Color: Fill<Kanvo_WritebackTex_Color>(target, outline, texture, frame, bends, data); break;
        case Writeback::ColorAlpha:
            Fill<Kanvo_WritebackTex_ColorAlpha>(target, outline, texture, frame, bends, data);
            break;
        }
        const std::string wrong = target.Difference();
        if (wrong.empty()) continue;
        ++failures;
        ADD_FAILURE() << "seed " << seed << ": way " << static_cast<int>(way)
                      << (bends ? ", perspective, " : ", affine, ") << image.Described() << " on " << target.Described()
                      << ": " << wrong << "\n  outline " << support::Described(outline);
    }
    if (seeds.count >= 1000)
    {
        EXPECT_GT(painted, seeds.count / 2);
    }
}

// ---- what the render state chooses ----------------------------------------------------------------------------------

namespace
{

constexpr std::uint32_t GROUND = 0xFF306090U;
const Outline           SQUARE = {{4, 4}, {20, 4}, {20, 20}, {4, 20}};

//! A stage with a texture of either type, whose texels lie on the pixels.
class TexturedStage : public PolyStage
{
public:
    explicit TexturedStage(unsigned type)
        : PolyStage(32, 32, GROUND),
          m_image(type, 4, 3, 4, support::Against::BackFence)
    {
        Dice dice(type + 100);
        m_image.Throw(dice);
        EXPECT_TRUE(m_texture.SetBitmap(&m_image.Bitmap()));
        m_texture.Use(State());
        State().Set(TEXTUREENABLE, true);
    }

    //! Whether the square is what a texture that lies on the pixels becomes by the write-back, and nothing else changed.
    testing::AssertionResult Shows(const reference::TexelUse& use)
    {
        const reference::Texels texels = m_image.Texels();
        for (unsigned y = 0; y < 32; ++y)
        {
            for (unsigned x = 0; x < 32; ++x)
            {
                const bool          inside   = x >= 4 && x < 20 && y >= 4 && y < 20;
                const std::size_t   at       = (std::size_t{y & 7U} << texels.rowShift) + (x & 15U);
                const std::uint32_t texel    = texels.words != nullptr ? texels.words[at] : texels.bytes[at];
                const std::uint32_t expected = inside ? reference::WriteTexel(GROUND, texel, use) : GROUND;
                const std::uint32_t got      = At(static_cast<int>(x), static_cast<int>(y));
                if (got != expected)
                    return testing::AssertionFailure() << x << ' ' << y << std::hex << " expected " << expected
                                                       << ", got " << got << ", texel " << texel;
            }
        }
        return testing::AssertionSuccess();
    }

    Kanvo_Texture& Texture() { return m_texture; }

private:
    TextureImage  m_image;
    Kanvo_Texture m_texture;
};

}  // namespace

TEST(PolydrawTex, BlendingAlphaAndTheTexturesTypeChooseAmongFiveWriteBacks)
{
    constexpr std::uint32_t COLOR = 0x80FF8040U;
    struct Choice
    {
        unsigned            type;
        std::uint32_t       blending;
        bool                alpha;
        bool                supported;
        reference::TexelUse use;
    };
    const Choice choices[] = {
        {BM_ARGB32, TB_NORMAL, false, true, {Writeback::Default, 0}},
        {BM_ARGB32, TB_NORMAL, true, true, {Writeback::Alpha, 100}},
        {BM_ARGB32, TB_ADD, false, true, {Writeback::Additive, 0}},
        {BM_ARGB32, TB_ADD, true, true, {Writeback::Additive, 0}},
        {BM_ARGB32, TB_MULTIPLY, false, false, {}},
        {BM_ARGB32, TB_MULTIPLY, true, false, {}},
        {BM_ARGB32, TB_COLOR, false, false, {}},
        {BM_ARGB32, TB_COLOR, true, false, {}},
        {BM_ARGB32, 77, false, false, {}},
        {BM_ALPHA8, TB_NORMAL, false, true, {Writeback::Color, COLOR}},
        {BM_ALPHA8, TB_COLOR, false, true, {Writeback::Color, COLOR}},
        // the colour's alpha times that of the render state: 128 * 100 / 255 = 50
        {BM_ALPHA8, TB_NORMAL, true, true, {Writeback::ColorAlpha, 50U << 24 | 0xFF8040U}},
        {BM_ALPHA8, TB_COLOR, true, true, {Writeback::ColorAlpha, 50U << 24 | 0xFF8040U}},
        {BM_ALPHA8, TB_ADD, false, false, {}},
        {BM_ALPHA8, TB_ADD, true, false, {}},
        {BM_ALPHA8, TB_MULTIPLY, false, false, {}},
        {BM_ALPHA8, TB_MULTIPLY, true, false, {}},
        {BM_ALPHA8, 0x80000001U, true, false, {}},
    };
    for (const Choice& choice : choices)
    {
        SCOPED_TRACE(testing::Message() << "type " << choice.type << " blending " << choice.blending << " alpha "
                                        << choice.alpha);
        TexturedStage stage(choice.type);
        stage.State().Set(TEXTUREBLENDING, choice.blending);
        stage.State().Set(ALPHAENABLE, choice.alpha);
        stage.State().Set(ALPHA, 0xABC00U + 100U);
        support::AssertCapture asserts;
        stage.Polygon(SQUARE, COLOR, POLY_USE_RENDERSTATE);
        if (choice.supported)
        {
            EXPECT_EQ(asserts.Count(), 0U);
            EXPECT_TRUE(stage.Shows(choice.use));
            EXPECT_GT(stage.Count(GROUND), 100);
        }
        else
        {
            EXPECT_EQ(asserts.Take(), support::Messages{"texture blending not supported"});
            EXPECT_EQ(stage.Count(GROUND), 0);
        }
    }
}

TEST(PolydrawTex, TexturingComesBeforeAntialiasing)
{
    for (const Tov_Flag flags : {Tov_Flag{POLY_USE_RENDERSTATE}, POLY_USE_RENDERSTATE | POLY_ANTIALIAS,
                                 POLY_USE_RENDERSTATE | POLY_ANTIALIAS | POLY_HQAA, POLY_USE_RENDERSTATE | POLY_NOCLIP})
    {
        TexturedStage stage(BM_ARGB32);
        stage.Polygon(SQUARE, 0xFFFFFFFFU, flags);
        EXPECT_TRUE(stage.Shows({Writeback::Default, 0})) << std::hex << flags;
    }
    // and the flag alone brings it about
    TexturedStage stage(BM_ARGB32);
    stage.Polygon(SQUARE, 0x12345678U);
    EXPECT_EQ(stage.At(10, 10), 0x12345678U);
}

TEST(PolydrawTex, WithoutATextureItAssertsAndDrawsNothing)
{
    PolyStage stage(32, 32, GROUND);
    stage.State().Set(TEXTUREENABLE, true);
    support::AssertCapture asserts;
    stage.Polygon(SQUARE, 0xFFFFFFFFU, POLY_USE_RENDERSTATE);
    EXPECT_EQ(asserts.Take(), support::Messages{"no texture set"});
    Kanvo_Texture empty;
    empty.Use(stage.State());
    stage.Polygon(SQUARE, 0xFFFFFFFFU, POLY_USE_RENDERSTATE);
    EXPECT_EQ(asserts.Take(), support::Messages{"texture has no bitmap"});
    EXPECT_EQ(stage.Count(GROUND), 0);
}

TEST(PolydrawTex, ModesAndAxesThatShowNothingAssert)
{
    TexturedStage          stage(BM_ARGB32);
    support::AssertCapture asserts;
    for (const std::uint32_t mode : std::initializer_list<std::uint32_t>{0U, 3U, TM_UV, TM_DIRECT, 0xFFFFFFFFU})
    {
        stage.State().Set(TEXTUREMODE, mode);
        stage.Polygon(SQUARE, 0xFFFFFFFFU, POLY_USE_RENDERSTATE);
        EXPECT_EQ(asserts.Take(), support::Messages{"texture mode not supported"}) << mode;
    }
    stage.State().Set(TEXTUREMODE, TM_PLANE2D);
    stage.State().Set(TEXUAXISX, 0.0F);
    stage.Polygon(SQUARE, 0xFFFFFFFFU, POLY_USE_RENDERSTATE);
    EXPECT_EQ(asserts.Take(), support::Messages{"texture axes span no plane"});
    EXPECT_EQ(stage.Count(GROUND), 0);
}

TEST(PolydrawTex, TheUnturnedPlaneInSpaceShowsThePictureOfTheFlatOne)
{
    TexturedStage stage(BM_ARGB32);
    stage.State().Set(TEXTUREMODE, TM_PLANE3D);
    stage.State().Set(TEXORIGINZ, 1.0F);
    stage.Polygon(SQUARE, 0xFFFFFFFFU, POLY_USE_RENDERSTATE);
    EXPECT_TRUE(stage.Shows({Writeback::Default, 0}));
}

TEST(PolydrawTex, APolygonClippedAtTheLeftShowsTheSameTexels)
{
    for (const bool space : {false, true})
    {
        TexturedStage whole(BM_ARGB32);
        TexturedStage clipped(BM_ARGB32);
        clipped.Bitmap().SetCliprect(8, 6, 17, 15);
        for (TexturedStage* const stage : {&whole, &clipped})
        {
            stage->State().Set(TEXUAXISX, 1.7F);
            stage->State().Set(TEXUAXISY, 0.3F);
            stage->State().Set(TEXORIGINX, 3.25F);
            if (space)
            {
                stage->State().Set(TEXTUREMODE, TM_PLANE3D);
                stage->State().Set(TEXORIGINZ, 1.0F);
            }
            stage->Polygon({{0, 0}, {32, 0}, {32, 32}, {0, 32}}, 0, POLY_USE_RENDERSTATE);
        }
        for (int y = 0; y < 32; ++y)
        {
            for (int x = 0; x < 32; ++x)
            {
                const bool inside = x >= 8 && x <= 17 && y >= 6 && y <= 15;
                EXPECT_EQ(clipped.At(x, y), inside ? whole.At(x, y) : GROUND) << x << ' ' << y << ' ' << space;
            }
        }
    }
}
