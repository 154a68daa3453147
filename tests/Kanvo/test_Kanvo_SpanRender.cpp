// Tests of the six span renderers, called directly. Every test runs on rows and on columns: a renderer of columns must
// be the exact transpose. Expected alphas are calculated by hand from the positions.
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Kanvo_HSpanRender.h"
#include "Kanvo_HSpanRender_AA.h"
#include "Kanvo_HSpanRender_HQ_AA.h"
#include "Kanvo_VSpanRender.h"
#include "Kanvo_VSpanRender_AA.h"
#include "Kanvo_VSpanRender_HQ_AA.h"
#include "LineStage.h"
#include "NaiveMix.h"

namespace
{

using P = Kanvo_PixelARGB32;
using O = Kanvo_OffsetARGB32;
using A = Kanvo_PixelARGB32_Access;
using S = Kanvo_Line_patternStyle*;

struct OnRows
{
    template <class Style>
    using Plain = Kanvo_HSpanRender<P, O, Style, A>;
    template <class Style>
    using Soft = Kanvo_HSpanRender_AA<P, O, Style, A>;
    template <class Style>
    using Filtered             = Kanvo_HSpanRender_HQAA<P, O, Style, A>;
    static constexpr bool ROWS = true;
};

struct OnColumns
{
    template <class Style>
    using Plain = Kanvo_VSpanRender<P, O, Style, A>;
    template <class Style>
    using Soft = Kanvo_VSpanRender_AA<P, O, Style, A>;
    template <class Style>
    using Filtered             = Kanvo_VSpanRender_HQAA<P, O, Style, A>;
    static constexpr bool ROWS = false;
};

constexpr P   WHITE  = 0xFFFFFFFFU;
constexpr int SIZE   = 40;
constexpr int MAJOR  = 7;
constexpr int STORED = 256;  // written, not blended

constexpr Tov_Fixed Fx(double value)
{
    return static_cast<Tov_Fixed>(value * 65536.0);
}

//! What became of each pixel of the span's row: the alpha it was blended with, or STORED.
using Alphas = std::map<int, int>;

template <class Axis>
class SpanRender : public testing::Test
{
protected:
    //! The ground is transparent black, so that the alpha of a blend becomes the pixel's.
    Alphas Exact()
    {
        Alphas found;
        for (int at = 0; at < SIZE; ++at)
        {
            const P pixel = Axis::ROWS ? stage.At(at, MAJOR) : stage.At(MAJOR, at);
            if (pixel != 0) found[at] = pixel == WHITE ? STORED : static_cast<int>(pixel >> 24);
        }
        return found;
    }
    void Clear() { stage.Fill(0); }
    int  Everywhere() { return stage.Count(0); }

    Kanvo_Bitmap* Bitmap() { return &stage.Bitmap(); }

    support::LineStage stage{SIZE, SIZE, 0};
};

using Axes = testing::Types<OnRows, OnColumns>;
TYPED_TEST_SUITE(SpanRender, Axes);

constexpr Tov_Fixed Y = Fx(MAJOR + 0.3);  // its fraction does not matter

int Tap(int index)
{
    return g_Kanvo_ubFilter[index];
}

}  // namespace

// ---- points ---------------------------------------------------------------------------------------------------------

TYPED_TEST(SpanRender, APlainPointIsOnePixel)
{
    TypeParam::template Plain<P>::RenderPixel(this->Bitmap(), Y, Fx(10.99), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, STORED}}));
    EXPECT_EQ(this->Everywhere(), 1);
}

TYPED_TEST(SpanRender, ASoftPointIsSplitByItsFraction)
{
    const auto point = [this](double x)
    {
        this->Clear();
        TypeParam::template Soft<P>::RenderPixel(this->Bitmap(), Y, Fx(x), WHITE);
        return this->Exact();
    };
    EXPECT_EQ(point(10.5), (Alphas{{10, 127}, {11, 128}}));
    EXPECT_EQ(point(10.0), (Alphas{{10, 255}}));
    EXPECT_EQ(point(10.0 + 255.0 / 256.0), (Alphas{{11, 255}}));
    EXPECT_EQ(point(10.25), (Alphas{{10, 191}, {11, 64}}));
}

TYPED_TEST(SpanRender, AFilteredPointIsFourTaps)
{
    for (const int phase : {0, 1, 15, 16, 31})
    {
        this->Clear();
        TypeParam::template Filtered<P>::RenderPixel(this->Bitmap(), Y, Fx(10.0 + phase / 32.0 + 0.01), WHITE);
        Alphas expected{{10, Tap(phase + 32)}, {11, Tap(phase)}, {12, Tap(32 - phase)}, {13, Tap(64 - phase)}};
        for (auto at = expected.begin(); at != expected.end();)
            at = at->second == 0 ? expected.erase(at) : std::next(at);
        EXPECT_EQ(this->Exact(), expected) << phase;
    }
}

TYPED_TEST(SpanRender, APointIsBlendedOverWhatIsThere)
{
    this->stage.Fill(0x80402010U);
    TypeParam::template Soft<P>::RenderPixel(this->Bitmap(), Y, Fx(10.5), 0xC0A06020U);
    const P first  = TypeParam::ROWS ? this->stage.At(10, MAJOR) : this->stage.At(MAJOR, 10);
    const P second = TypeParam::ROWS ? this->stage.At(11, MAJOR) : this->stage.At(MAJOR, 11);
    EXPECT_EQ(first, support::MixLinearSrcAlpha(0x80402010U, 0xC0A06020U, 127));
    EXPECT_EQ(second, support::MixLinearSrcAlpha(0x80402010U, 0xC0A06020U, 128));
}

TYPED_TEST(SpanRender, ClippedPointsKeepTheirBounds)
{
    // minor 8 to 12, major 5 to 9; arguments: maximum minor, minimum minor, maximum major, minimum major
    const auto plain = [this](double x, Tov_Fixed y = Y)
    {
        this->Clear();
        TypeParam::template Plain<P>::RenderPixel(this->Bitmap(), y, Fx(x), WHITE, Fx(12), Fx(8), Fx(9), Fx(5));
        return this->Everywhere();
    };
    EXPECT_EQ(plain(7.99), 0);
    EXPECT_EQ(plain(8.0), 1);
    EXPECT_EQ(plain(12.99), 1);
    EXPECT_EQ(plain(13.0), 0);
    EXPECT_EQ(plain(10.0, Fx(4.99)), 0);
    EXPECT_EQ(plain(10.0, Fx(5.0)), 1);
    EXPECT_EQ(plain(10.0, Fx(9.99)), 1);
    EXPECT_EQ(plain(10.0, Fx(10.0)), 0);

    const auto soft = [this](double x)
    {
        this->Clear();
        TypeParam::template Soft<P>::RenderPixel(this->Bitmap(), Y, Fx(x), WHITE, Fx(12), Fx(8), Fx(9), Fx(5));
        return this->Exact();
    };
    EXPECT_EQ(soft(7.25), (Alphas{{8, 64}}));  // one left of the minimum: only the right pixel
    EXPECT_EQ(soft(6.75), Alphas{});
    EXPECT_EQ(soft(8.25), (Alphas{{8, 191}, {9, 64}}));
    EXPECT_EQ(soft(12.25), (Alphas{{12, 191}}));
    EXPECT_EQ(soft(13.0), Alphas{});

    const auto filtered = [this](double x)
    {
        this->Clear();
        TypeParam::template Filtered<P>::RenderPixel(this->Bitmap(), Y, Fx(x), WHITE, Fx(12), Fx(8), Fx(9), Fx(5));
        return this->Exact();
    };
    EXPECT_EQ(filtered(5.5), (Alphas{{8, Tap(48)}}));
    EXPECT_EQ(filtered(6.5), (Alphas{{8, Tap(16)}, {9, Tap(48)}}));
    EXPECT_EQ(filtered(4.5), Alphas{});
    EXPECT_EQ(filtered(11.5), (Alphas{{11, Tap(48)}, {12, Tap(16)}}));
    EXPECT_EQ(filtered(12.5), (Alphas{{12, Tap(48)}}));
    EXPECT_EQ(filtered(13.5), Alphas{});
}

TYPED_TEST(SpanRender, ARangeOfOnePixelIsEnoughForTheRightHalfOfAPoint)
{
    TypeParam::template Soft<P>::RenderPixel(this->Bitmap(), Y, Fx(7.5), WHITE, Fx(8), Fx(8), Fx(9), Fx(5));
    EXPECT_EQ(this->Exact(), (Alphas{{8, 128}}));
    this->Clear();
    TypeParam::template Soft<P>::RenderPixel(this->Bitmap(), Y, Fx(7.5), WHITE, Fx(7), Fx(8), Fx(9), Fx(5));
    EXPECT_EQ(this->Exact(), Alphas{});
}

// ---- spans ----------------------------------------------------------------------------------------------------------

TYPED_TEST(SpanRender, APlainSpanHoldsEveryPixelItTouches)
{
    TypeParam::template Plain<P>::RenderSpan(this->Bitmap(), Y, Fx(10.9), Fx(13.1), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, STORED}, {11, STORED}, {12, STORED}, {13, STORED}}));
    this->Clear();
    TypeParam::template Plain<P>::RenderSpan(this->Bitmap(), Y, Fx(10.2), Fx(10.7), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, STORED}}));
    this->Clear();
    TypeParam::template Plain<P>::RenderSpan(this->Bitmap(), Y, Fx(10.2), Fx(9.7), WHITE);
    EXPECT_EQ(this->Exact(), Alphas{});
}

TYPED_TEST(SpanRender, ASoftSpanBlendsItsEndsAndStoresTheRest)
{
    TypeParam::template Soft<P>::RenderSpan(this->Bitmap(), Y, Fx(10.25), Fx(13.5), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, 191}, {11, STORED}, {12, STORED}, {13, 128}}));
    this->Clear();
    TypeParam::template Soft<P>::RenderSpan(this->Bitmap(), Y, Fx(10.25), Fx(11.5), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, 191}, {11, 128}}));
    this->Clear();
    TypeParam::template Soft<P>::RenderSpan(this->Bitmap(), Y, Fx(10.1), Fx(10.9), WHITE);  // inside one pixel
    EXPECT_EQ(this->Exact(), Alphas{});
}

TYPED_TEST(SpanRender, AFilteredSpanEndsOnePixelBeyond)
{
    TypeParam::template Filtered<P>::RenderSpan(this->Bitmap(), Y, Fx(10.0), Fx(20.0), WHITE);
    // phase 0 at the start; at the end 255 / 8 = 31
    Alphas expected{{10, Tap(32)}, {11, Tap(0)}, {20, Tap(31)}, {21, Tap(63)}};
    for (int at = 12; at <= 19; ++at) expected[at] = STORED;
    if (Tap(63) == 0) expected.erase(21);
    EXPECT_EQ(this->Exact(), expected);

    this->Clear();
    TypeParam::template Filtered<P>::RenderSpan(this->Bitmap(), Y, Fx(10.5), Fx(20.5), WHITE);
    expected = {{10, Tap(48)}, {11, Tap(16)}, {20, Tap(15)}, {21, Tap(47)}};
    for (int at = 12; at <= 19; ++at) expected[at] = STORED;
    EXPECT_EQ(this->Exact(), expected);
    this->Clear();
    TypeParam::template Filtered<P>::RenderSpan(this->Bitmap(), Y, Fx(10.5), Fx(10.6), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, Tap(48)}}));
    this->Clear();
    TypeParam::template Filtered<P>::RenderSpan(this->Bitmap(), Y, Fx(10.5), Fx(11.6), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, Tap(48)}, {11, Tap(16)}}));
    this->Clear();
    TypeParam::template Filtered<P>::RenderSpan(this->Bitmap(), Y, Fx(10.5), Fx(12.5), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, Tap(48)}, {11, Tap(16)}, {12, Tap(15)}, {13, Tap(47)}}));
    this->Clear();
    TypeParam::template Filtered<P>::RenderSpan(this->Bitmap(), Y, Fx(10.5), Fx(9.9), WHITE);
    EXPECT_EQ(this->Exact(), Alphas{});
}

TEST(SpanRenderAlpha, AHardSpanWithOneAlpha)
{
    support::LineStage stage(40, 40, 0x80402010U);
    OnRows::Plain<P>::RenderSpanAlpha(&stage.Bitmap(), Y, Fx(10.9), Fx(13.1), 0xC0A06020U, 100);
    for (int x = 10; x <= 13; ++x)
        EXPECT_EQ(stage.At(x, MAJOR), support::MixLinearSrcAlpha(0x80402010U, 0xC0A06020U, 100));
    EXPECT_EQ(stage.Count(0x80402010U), 4);
}

// Few pixels are blended one by one, more of them side by side, translucent colours in portions.
TEST(SpanRenderAlpha, SpansOfEveryLengthAreBlendedPixelByPixel)
{
    constexpr int      WIDTH = 150;
    support::LineStage stage(WIDTH, 4);
    const auto         ground = [](int x)
    {
        const P color = static_cast<P>(x) * 0x9E3779B9U;
        return x % 5 == 0 ? color : color | 0xFF000000U;
    };
    for (const P color : {0xFF40C080U, 0x9040C080U, 0x00FFFFFFU})
    {
        for (int length = 0; length <= 140; ++length)
        {
            for (const int alpha : {1, 128, 255})
            {
                for (int x = 0; x < WIDTH; ++x) stage.Words()[2 * WIDTH + x] = ground(x);
                OnRows::Plain<P>::RenderSpanAlpha(&stage.Bitmap(), Fx(2), Fx(5), Fx(4 + length), color,
                                                  static_cast<Tov_UByte>(alpha));
                for (int x = 0; x < WIDTH; ++x)
                {
                    const bool inside = x >= 5 && x < 5 + length;
                    ASSERT_EQ(stage.At(x, 2), inside ? support::MixLinearSrcAlpha(ground(x), color, alpha) : ground(x))
                        << "colour " << color << ", length " << length << ", alpha " << alpha << ", pixel " << x;
                }
            }
        }
    }
}

// ---- one soft edge --------------------------------------------------------------------------------------------------

TYPED_TEST(SpanRender, APlainEdgeDrawsWhereTheDistanceIsPositive)
{
    // at 10.5 the distance is -0.5, so it is -1 at 10, 0 at 11 and 1 at 12
    TypeParam::template Plain<P>::RenderSpanEdge(this->Bitmap(), Y, Fx(10.5), Fx(14.5), Fx(-0.5), Fx(1), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{12, STORED}, {13, STORED}, {14, STORED}}));
    this->Clear();
    TypeParam::template Plain<P>::RenderSpanEdge(this->Bitmap(), Y, Fx(10.0), Fx(13.0), Fx(2), Fx(-1), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, STORED}, {11, STORED}}));
}

TYPED_TEST(SpanRender, ASoftEdgeTakesTheSmallerOfCoverageAndEnd)
{
    // distances at 10 .. 14: 0.125, 0.625, 1.125, ...; ends 191 and 64
    TypeParam::template Soft<P>::RenderSpanEdge(this->Bitmap(), Y, Fx(10.25), Fx(14.25), Fx(0.25), Fx(0.5), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, 32}, {11, 160}, {12, 255}, {13, 255}, {14, 64}}));
    this->Clear();
    // falling: 2, 1, 0, -1: full coverage is blended at 255, not stored
    TypeParam::template Soft<P>::RenderSpanEdge(this->Bitmap(), Y, Fx(10.0), Fx(13.9), Fx(2), Fx(-1), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, 255}, {11, 255}}));
    this->Clear();
    TypeParam::template Soft<P>::RenderSpanEdge(this->Bitmap(), Y, Fx(10.0), Fx(10.9), Fx(2), Fx(0), WHITE);
    EXPECT_EQ(this->Exact(), Alphas{});
}

TYPED_TEST(SpanRender, AFilteredEdgePaintsTheSecondPixelWhereverTheSpanEnds)
{
    TypeParam::template Filtered<P>::RenderSpanEdge(this->Bitmap(), Y, Fx(10.5), Fx(10.6), Fx(5), Fx(0), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, Tap(48)}, {11, Tap(16)}}));
    this->Clear();
    TypeParam::template Filtered<P>::RenderSpanEdge(this->Bitmap(), Y, Fx(10.5), Fx(14.5), Fx(5), Fx(0), WHITE);
    EXPECT_EQ(this->Exact(),
              (Alphas{{10, Tap(48)}, {11, Tap(16)}, {12, 255}, {13, 255}, {14, Tap(15)}, {15, Tap(47)}}));
    this->Clear();
    // distances at 10 .. 15: 0.25, 0.125, 0, ...: nothing at 0 and below
    TypeParam::template Filtered<P>::RenderSpanEdge(this->Bitmap(), Y, Fx(10.0), Fx(14.0), Fx(0.25), Fx(-0.125), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, std::min(64, Tap(32))}, {11, 32}}));
    this->Clear();
    TypeParam::template Filtered<P>::RenderSpanEdge(this->Bitmap(), Y, Fx(10.5), Fx(9.5), Fx(5), Fx(0), WHITE);
    EXPECT_EQ(this->Exact(), Alphas{});
}

// ---- two soft edges -------------------------------------------------------------------------------------------------

TYPED_TEST(SpanRender, APlainSpanBetweenTwoEdges)
{
    // distances -1 .. 4, width 3: inside are those above 0 and up to 3
    TypeParam::template Plain<P>::RenderSpan2Edge(this->Bitmap(), Y, Fx(10.0), Fx(15.0), Fx(-1), Fx(1), Fx(3), 0,
                                                  WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{12, STORED}, {13, STORED}, {14, STORED}}));
    // the start was cut off by 2 pixels: the distance still refers to where it was
    this->Clear();
    TypeParam::template Plain<P>::RenderSpan2Edge(this->Bitmap(), Y, Fx(12.0), Fx(15.0), Fx(-1), Fx(1), Fx(3), Fx(-2),
                                                  WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{12, STORED}, {13, STORED}, {14, STORED}}));
}

TYPED_TEST(SpanRender, TheNearEdgeWinsWhereBothArePartial)
{
    // the middle pixel: near distance 0.5, far distance 0.25
    TypeParam::template Soft<P>::RenderSpan2Edge(this->Bitmap(), Y, Fx(10.0), Fx(12.0), Fx(0.5), Fx(0), Fx(0.75), 0,
                                                 WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, 128}, {11, 128}}));
}

TYPED_TEST(SpanRender, ASoftSpanBetweenTwoEdges)
{
    // distances at 10 .. 15: 0.25, 0.75, 1.25, 1.75, 2.25, 2.75; far ones 2.25, 1.75, 1.25, 0.75, 0.25, -0.25
    const auto draw = [this](double x1, double x2)
    {
        this->Clear();
        TypeParam::template Soft<P>::RenderSpan2Edge(this->Bitmap(), Y, Fx(x1), Fx(x2), Fx(0.25 + (x1 - 10.0) / 2.0),
                                                     Fx(0.5), Fx(2.5), 0, WHITE);
        return this->Exact();
    };
    EXPECT_EQ(draw(10.0, 15.5), (Alphas{{10, 64}, {11, 192}, {12, 255}, {13, 192}, {14, 64}}));
    EXPECT_EQ(draw(10.875, 12.5), (Alphas{{10, 31}, {11, 192}, {12, 128}}));
    EXPECT_EQ(draw(10.0, 12.0), (Alphas{{10, 64}, {11, 192}}));  // no fraction at the end: no pixel
    EXPECT_EQ(draw(12.1, 12.9), Alphas{});                       // inside one pixel
}

TYPED_TEST(SpanRender, AFilteredSpanBetweenTwoEdgesIsASoftOne)
{
    TypeParam::template Filtered<P>::RenderSpan2Edge(this->Bitmap(), Y, Fx(10.875), Fx(12.5), Fx(0.6875), Fx(0.5),
                                                     Fx(2.5), 0, WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{10, 31}, {11, 192}, {12, 128}}));
    this->Clear();
    TypeParam::template Filtered<P>::RenderSpan2Edge(this->Bitmap(), Y, Fx(10.875), Fx(12.5), Fx(0.6875), Fx(0.5),
                                                     Fx(2.5), 0, WHITE, Fx(12), Fx(11), Fx(9), Fx(5));
    EXPECT_EQ(this->Exact(), (Alphas{{11, 192}}));
}

TYPED_TEST(SpanRender, TheClippedSpanExcludesItsUpperBound)
{
    // positions 10.25, 11.25, ..: the pixel is drawn while its position lies in [11.5, 14.25)
    const auto soft = [this](double min, double max, Tov_Fixed y = Y)
    {
        this->Clear();
        TypeParam::template Soft<P>::RenderSpan2Edge(this->Bitmap(), y, Fx(10.25), Fx(16.5), Fx(5), Fx(0), Fx(20), 0,
                                                     WHITE, Fx(max), Fx(min), Fx(9), Fx(5));
        return this->Exact();
    };
    EXPECT_EQ(soft(11.5, 14.25), (Alphas{{12, 255}, {13, 255}}));
    EXPECT_EQ(soft(11.25, 14.26), (Alphas{{11, 255}, {12, 255}, {13, 255}, {14, 255}}));
    EXPECT_EQ(soft(0, 40), (Alphas{{10, 191}, {11, 255}, {12, 255}, {13, 255}, {14, 255}, {15, 255}, {16, 128}}));
    EXPECT_EQ(soft(20, 40), Alphas{});
    EXPECT_EQ(soft(0, 40, Fx(4.9)), Alphas{});
    EXPECT_EQ(soft(0, 40, Fx(10.0)), Alphas{});
    this->Clear();
    TypeParam::template Plain<P>::RenderSpan2Edge(this->Bitmap(), Y, Fx(10.25), Fx(16.5), Fx(5), Fx(0), Fx(20), 0,
                                                  WHITE, Fx(14), Fx(12), Fx(9), Fx(5));
    EXPECT_EQ(this->Exact(), (Alphas{{12, STORED}, {13, STORED}}));
}

TYPED_TEST(SpanRender, ASpanOfHugeLengthCostsWhatIsVisible)
{
    // from -32000 to 32000 inside ten pixels; the distance at them is that of pixel by pixel steps
    TypeParam::template Soft<P>::RenderSpan2Edge(this->Bitmap(), Y, Fx(-32000.0), Fx(32000.0), Fx(-16000.0), Fx(0.5),
                                                 Fx(10), 0, WHITE, Fx(20), Fx(0), Fx(9), Fx(5));
    Alphas expected;
    expected[1] = 128;
    for (int at = 2; at <= 18; ++at) expected[at] = 255;
    expected[19] = 128;
    EXPECT_EQ(this->Exact(), expected);
}

// ---- patterns -------------------------------------------------------------------------------------------------------

namespace
{

//! Colours that name their entry; the backward half is marked.
struct NumberedColors
{
    NumberedColors()
    {
        for (unsigned index = 0; index < 512; ++index)
            colors[index] = 0xFF000000U | (index < 256 ? 0U : 0x800000U) | (index % 256U + 1U);
    }
    P colors[512];
};

}  // namespace

TYPED_TEST(SpanRender, APatternIsReadAtTheDistance)
{
    const NumberedColors    numbered;
    const Kanvo_Vector2     start(0, 0);
    Kanvo_Line_patternStyle style(start);
    style.aclColors = numbered.colors;
    style.fxTexMul  = Fx(1.0 / 256.0);  // one entry per pixel of distance
    style.fxTexInc  = Fx(1.0 / 256.0);
    style.fxTex     = Fx(0.25);
    S pattern       = &style;
    TypeParam::template Plain<S>::RenderSpanPattern2Edge(this->Bitmap(), Y, Fx(10.0), Fx(14.0), Fx(3), Fx(1), Fx(100),
                                                         0, pattern);
    for (int at = 10; at <= 14; ++at)
    {
        const P pixel = TypeParam::ROWS ? this->stage.At(at, MAJOR) : this->stage.At(MAJOR, at);
        EXPECT_EQ(pixel & 0xFFFFU, 64U + 3U + static_cast<unsigned>(at - 10) + 1U) << at;
    }
    EXPECT_EQ(this->Everywhere(), 5);
    // a period wraps; negative texture coordinates count from the end
    this->Clear();
    style.fxTex = Fx(-3.0 / 256.0);
    TypeParam::template Plain<S>::RenderSpanPattern2Edge(this->Bitmap(), Y, Fx(10.0), Fx(13.0), Fx(1), Fx(1), Fx(100),
                                                         0, pattern);
    const unsigned entries[] = {255, 256, 1, 2};
    for (int at = 10; at <= 13; ++at)
    {
        const P pixel = TypeParam::ROWS ? this->stage.At(at, MAJOR) : this->stage.At(MAJOR, at);
        EXPECT_EQ(pixel & 0xFFFFU, entries[at - 10]) << at;
    }
}

TYPED_TEST(SpanRender, PatternSpansHaveTheEdgesOfColourSpans)
{
    P white[512];
    std::fill_n(white, 512, WHITE);
    const Kanvo_Vector2     start(0, 0);
    Kanvo_Line_patternStyle style(start);
    style.aclColors = white;
    style.fxTexMul  = Fx(0.3);
    style.fxTexInc  = Fx(0.3);
    S pattern       = &style;
    TypeParam::template Soft<S>::RenderSpanPattern2Edge(this->Bitmap(), Y, Fx(10.875), Fx(12.5), Fx(0.6875), Fx(0.5),
                                                        Fx(2.5), 0, pattern);
    EXPECT_EQ(this->Exact(), (Alphas{{10, 31}, {11, 192}, {12, 128}}));
    this->Clear();
    TypeParam::template Filtered<S>::RenderSpanPattern2Edge(this->Bitmap(), Y, Fx(10.875), Fx(12.5), Fx(0.6875),
                                                            Fx(0.5), Fx(2.5), 0, pattern, Fx(12), Fx(11), Fx(9), Fx(5));
    EXPECT_EQ(this->Exact(), (Alphas{{11, 192}}));
    this->Clear();
    TypeParam::template Plain<S>::RenderSpanPattern2Edge(this->Bitmap(), Y, Fx(10.0), Fx(15.0), Fx(-1), Fx(1), Fx(3), 0,
                                                         pattern, Fx(14), Fx(0), Fx(9), Fx(5));
    EXPECT_EQ(this->Exact(), (Alphas{{12, STORED}, {13, STORED}}));
}

// ---- the vector component and the border of the bitmap --------------------------------------------------------------

TYPED_TEST(SpanRender, MajorAndMinorOfAVector)
{
    const Kanvo_Vector2 vector(3.0F, 8.0F);
    EXPECT_EQ(TypeParam::template Plain<P>::GetMajFromVector(vector), TypeParam::ROWS ? 8.0F : 3.0F);
    EXPECT_EQ(TypeParam::template Plain<P>::GetMinFromVector(vector), TypeParam::ROWS ? 3.0F : 8.0F);
    EXPECT_EQ(TypeParam::template Soft<P>::GetMajFromVector(vector), TypeParam::ROWS ? 8.0F : 3.0F);
    EXPECT_EQ(TypeParam::template Filtered<S>::GetMinFromVector(vector), TypeParam::ROWS ? 3.0F : 8.0F);
}

TYPED_TEST(SpanRender, PixelsOutsideTheBitmapAreLeftOut)
{
    for (const Tov_Fixed y : {Fx(-0.01), Fx(-20000.0), Fx(SIZE), Fx(32767.0)})
    {
        TypeParam::template Plain<P>::RenderPixel(this->Bitmap(), y, Fx(10), WHITE);
        TypeParam::template Soft<P>::RenderPixel(this->Bitmap(), y, Fx(10.5), WHITE);
        TypeParam::template Filtered<P>::RenderPixel(this->Bitmap(), y, Fx(10.5), WHITE);
        TypeParam::template Plain<P>::RenderSpan(this->Bitmap(), y, Fx(5), Fx(20), WHITE);
        TypeParam::template Soft<P>::RenderSpanEdge(this->Bitmap(), y, Fx(5), Fx(20), Fx(9), 0, WHITE);
        TypeParam::template Filtered<P>::RenderSpan2Edge(this->Bitmap(), y, Fx(5), Fx(20), Fx(9), 0, Fx(99), 0, WHITE);
    }
    EXPECT_EQ(this->Everywhere(), 0);
    TypeParam::template Plain<P>::RenderPixel(this->Bitmap(), Y, Fx(-0.5), WHITE);
    TypeParam::template Plain<P>::RenderPixel(this->Bitmap(), Y, Fx(SIZE), WHITE);
    EXPECT_EQ(this->Everywhere(), 0);
    // spans that reach over a border are what they are elsewhere, cut
    TypeParam::template Soft<P>::RenderPixel(this->Bitmap(), Y, Fx(SIZE - 0.5), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{SIZE - 1, 127}}));
    this->Clear();
    TypeParam::template Soft<P>::RenderPixel(this->Bitmap(), Y, Fx(-0.5), WHITE);
    EXPECT_EQ(this->Exact(), (Alphas{{0, 128}}));
    this->Clear();
    TypeParam::template Filtered<P>::RenderSpan(this->Bitmap(), Y, Fx(30.5), Fx(SIZE - 0.5), WHITE);
    EXPECT_EQ(this->Exact().rbegin()->first, SIZE - 1);
    EXPECT_EQ(this->Exact().rbegin()->second, Tap(15));
    EXPECT_EQ(this->Everywhere(), SIZE - 30);
    this->Clear();
    TypeParam::template Plain<P>::RenderSpan(this->Bitmap(), Y, Fx(-5.0), Fx(100.0), WHITE);
    EXPECT_EQ(this->Everywhere(), SIZE);
    EXPECT_TRUE(this->stage.IsSlackUntouched());
}
