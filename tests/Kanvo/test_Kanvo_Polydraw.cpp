// Tests of plain polygons and of the entry of all polygons: which pixels, what is counted, what flags and render state
// choose, clipping, and the oddities of the scan that are kept. The random comparison with the naive reference is in
// test_Kanvo_Polydraw_random.cpp, input that is meant to hurt in test_Kanvo_Polydraw_hostile.cpp.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Kanvo_Polydraw.h"
#include "Kanvo_PolyScan.h"
#include "Kanvo_Texture.h"
#include "NaiveMix.h"
#include "PolyStage.h"
#include "RandomPolygons.h"

namespace
{

using reference::Outline;
using support::PolySpies;
using support::PolyStage;
using Picture = std::vector<std::string>;

constexpr std::uint32_t WHITE = 0xFFFFFFFFU, BLACK = 0xFF000000U;

const Outline SQUARE  = {{10, 10}, {20, 10}, {20, 20}, {10, 20}};
const Outline BOW_TIE = {{2, 2}, {18, 14}, {18, 2}, {2, 14}};
// five points of a circle around (16, 16), every second one
const Outline PENTAGRAM = {{16, 1}, {24.8F, 28.1F}, {1.7F, 11.4F}, {30.3F, 11.4F}, {7.2F, 28.1F}};

struct Sink
{
    std::vector<reference::Span>& spans;

    void operator()(Tov_Int row, Tov_Fixed start, Tov_Fixed end) const { spans.push_back({row, start, end}); }
};

std::vector<reference::Span> SpansOf(const Outline& outline)
{
    const std::vector<Kanvo_Coord2D> vertices = support::Vertices(outline);
    std::vector<reference::Span>     spans;
    Kanvo_PolyScan::Walk(vertices.data(), static_cast<Tov_UInt>(vertices.size()), sizeof(Kanvo_Coord2D), Sink{spans});
    return spans;
}

std::int64_t Fixed(double value)
{
    return static_cast<std::int64_t>(value * 65536.0);
}

//! A triangle's worth of pixels of the square (10, 10) to (20, 20).
bool IsSquare(PolyStage& stage, std::uint32_t color, std::uint32_t background)
{
    for (int y = 0; y < static_cast<int>(stage.Height()); ++y)
    {
        for (int x = 0; x < static_cast<int>(stage.Width()); ++x)
        {
            const bool inside = x >= 10 && x < 20 && y >= 10 && y < 20;
            if (stage.At(x, y) != (inside ? color : background)) return false;
        }
    }
    return true;
}

}  // namespace

// ---- which pixels ---------------------------------------------------------------------------------------------------

TEST(Polydraw, ARectangleIsTenSpansFrom10_1To19_6)
{
    const std::vector<reference::Span> spans = SpansOf(SQUARE);
    ASSERT_EQ(spans.size(), 10U);
    for (std::size_t at = 0; at < 10; ++at)
    {
        EXPECT_EQ(spans[at].row, static_cast<std::int64_t>(at) + 10);
        EXPECT_NEAR(static_cast<double>(spans[at].start), static_cast<double>(Fixed(10.1)), 1.0);
        EXPECT_NEAR(static_cast<double>(spans[at].end), static_cast<double>(Fixed(19.6)), 1.0);
    }
    // in either sense of rotation, from whichever corner, with repeated ones
    for (const Outline& same :
         {Outline{{10, 20}, {20, 20}, {20, 10}, {10, 10}}, Outline{{20, 20}, {10, 20}, {10, 10}, {20, 10}},
          Outline{{10, 10}, {10, 10}, {20, 10}, {20, 20}, {20, 20}, {10, 20}, {10, 10}},
          Outline{{10, 10}, {15, 10}, {20, 10}, {20, 15}, {20, 20}, {10, 20}}})
        EXPECT_EQ(SpansOf(same), spans) << support::Described(same);
}

TEST(Polydraw, ARectanglePaintsItsPixelsAndCountsTwoSidesAndOneTop)
{
    PolySpies spies;
    PolyStage stage(32, 32, BLACK);
    stage.Polygon(SQUARE, 0x80112233U);
    EXPECT_TRUE(IsSquare(stage, 0x80112233U, BLACK)) << testing::PrintToString(stage.Picture());
    EXPECT_EQ(spies.edges.sum, 2.0);
    EXPECT_EQ(spies.buckets.sum, 1.0);
    EXPECT_EQ(spies.polygons.sum, 1.0);
    EXPECT_EQ(spies.crossings.sum, 0.0);
    EXPECT_EQ(spies.rejected.sum, 0.0);
    EXPECT_TRUE(spies.Ran(1));
}

TEST(Polydraw, ATriangleInsideOneRowIsRejected)
{
    PolySpies spies;
    PolyStage stage(32, 32);
    for (const Outline& flat : {Outline{{3, 7}, {20, 7}, {11, 7}}, Outline{{3, 7.5F}, {20, 7.9F}, {11, 8.4F}},
                                Outline{{3, 7}, {20, 7.49F}, {9, 7.2F}}})
    {
        spies.Clear();
        stage.Polygon(flat, WHITE);
        EXPECT_EQ(spies.rejected.sum, 1.0) << support::Described(flat);
        EXPECT_EQ(spies.edges.sum, 0.0);
        EXPECT_EQ(spies.polygons.sum, 0.0);
        EXPECT_TRUE(spies.Ran(1));
    }
    EXPECT_EQ(stage.Count(), 0);
}

TEST(Polydraw, ABowTieFillsBothLobes)
{
    PolyStage stage(20, 16);
    stage.Polygon(BOW_TIE, WHITE);
    // the crossing is at (10, 8): lobes left and right of it, nothing above and below
    EXPECT_EQ(stage.At(3, 8), WHITE);
    EXPECT_EQ(stage.At(16, 8), WHITE);
    EXPECT_EQ(stage.At(10, 4), BLACK);
    EXPECT_EQ(stage.At(10, 12), BLACK);
    int left  = 0;
    int right = 0;
    for (int y = 0; y < 16; ++y)
    {
        for (int x = 0; x < 10; ++x)
        {
            left += stage.At(x, y) == WHITE;
            right += stage.At(x + 10, y) == WHITE;
        }
    }
    EXPECT_NEAR(left, 48, 6);
    EXPECT_NEAR(right, 48, 6);
}

TEST(Polydraw, APentagramLeavesItsCentreEmpty)
{
    PolyStage stage(32, 32);
    stage.Polygon(PENTAGRAM, WHITE);
    EXPECT_EQ(stage.At(16, 16), BLACK);
    EXPECT_EQ(stage.At(13, 15), BLACK);
    for (const auto& [x, y] : {std::pair{16, 6}, {25, 12}, {6, 12}, {10, 24}, {21, 24}})
        EXPECT_EQ(stage.At(x, y), WHITE) << x << ' ' << y;
    for (const auto& [x, y] : {std::pair{8, 4}, {24, 4}, {16, 27}, {2, 20}, {29, 20}})
        EXPECT_EQ(stage.At(x, y), BLACK) << x << ' ' << y;
}

TEST(Polydraw, WhereAnOutlineOverlapsItselfItIsEmpty)
{
    // one square twice: nothing; a square with another inside, joined by a side that is walked both ways: a frame
    PolyStage stage(32, 32);
    Outline   twice = SQUARE;
    twice.insert(twice.end(), SQUARE.begin(), SQUARE.end());
    stage.Polygon(twice, WHITE);
    EXPECT_EQ(stage.Count(), 0);
    stage.Polygon({{4, 4}, {24, 4}, {24, 24}, {4, 24}, {4, 4}, {10, 10}, {18, 10}, {18, 18}, {10, 18}, {10, 10}},
                  WHITE);
    EXPECT_EQ(stage.Count(), 20 * 20 - 8 * 8);
    EXPECT_EQ(stage.At(12, 12), BLACK);
    EXPECT_EQ(stage.At(7, 7), WHITE);
}

TEST(Polydraw, ARowIsCutThroughTheMiddleOfItsPixels)
{
    const auto rows = [](float top, float bottom)
    {
        PolyStage stage(8, 16);
        stage.Polygon({{2, top}, {6, top}, {6, bottom}, {2, bottom}}, WHITE);
        std::vector<int> painted;
        for (int y = 0; y < 16; ++y)
            if (stage.At(3, y) == WHITE) painted.push_back(y);
        return painted;
    };
    using Rows = std::vector<int>;
    EXPECT_EQ(rows(3.0F, 5.0F), (Rows{3, 4}));
    EXPECT_EQ(rows(3.4F, 5.4F), (Rows{3, 4}));
    EXPECT_EQ(rows(3.6F, 5.6F), (Rows{4, 5}));
    // an end in the very middle belongs to the shape above
    EXPECT_EQ(rows(3.5F, 5.5F), (Rows{4, 5}));
    EXPECT_EQ(rows(3.5F, 4.5F), (Rows{4}));
    EXPECT_EQ(rows(3.6F, 4.4F), (Rows{}));
}

TEST(Polydraw, ASpanRunsFromATenthPastItsStartToFourTenthsBeforeItsEnd)
{
    const auto columns = [](float left, float right)
    {
        PolyStage stage(16, 4);
        stage.Polygon({{left, 0}, {right, 0}, {right, 4}, {left, 4}}, WHITE);
        std::vector<int> painted;
        for (int x = 0; x < 16; ++x)
            if (stage.At(x, 2) == WHITE) painted.push_back(x);
        return painted;
    };
    using Columns = std::vector<int>;
    EXPECT_EQ(columns(3.0F, 5.0F), (Columns{3, 4}));
    EXPECT_EQ(columns(3.85F, 6.0F), (Columns{3, 4, 5}));
    EXPECT_EQ(columns(3.95F, 6.0F), (Columns{4, 5}));
    EXPECT_EQ(columns(3.0F, 5.35F), (Columns{3, 4}));
    EXPECT_EQ(columns(3.0F, 5.45F), (Columns{3, 4, 5}));
    // no more than half a pixel wide: nothing
    EXPECT_EQ(columns(3.0F, 3.5F), (Columns{}));
    EXPECT_EQ(columns(3.7F, 4.2F), (Columns{}));
    EXPECT_EQ(columns(3.0F, 3.51F), (Columns{3}));
    EXPECT_EQ(columns(3.7F, 4.45F), (Columns{3, 4}));
}

TEST(Polydraw, VerticesMayLieFartherApartAndAtAnyAddress)
{
    // x, y, and a tail that must not be read as a vertex; at an odd address
    constexpr std::size_t     PITCH = 23;
    std::vector<std::uint8_t> bytes(1 + PITCH * 4, 0xFF);
    for (std::size_t index = 0; index < 4; ++index)
    {
        std::memcpy(&bytes[1 + index * PITCH], &SQUARE[index].x, 4);
        std::memcpy(&bytes[1 + index * PITCH + 4], &SQUARE[index].y, 4);
    }
    const std::vector<std::uint8_t> before = bytes;
    for (const Tov_Flag flags :
         {Tov_Flag{POLY_NONE}, Tov_Flag{POLY_NOCLIP}, POLY_ANTIALIAS | POLY_NOCLIP, Tov_Flag{POLY_ANTIALIAS}})
    {
        PolyStage stage(32, 32);
        stage.Bitmap().RenderPrimitivePoly(&bytes[1], 4, PITCH, flags, WHITE);
        int painted = 0;
        for (int y = 10; y < 20; ++y)
            for (int x = 10; x < 20; ++x) painted += stage.At(x, y) != BLACK;
        EXPECT_EQ(painted, 100) << std::hex << flags;
        EXPECT_EQ(stage.Count(), 100) << std::hex << flags;
    }
    EXPECT_EQ(bytes, before);
}

TEST(Polydraw, TheLastVertexMayEndWhereMemoryEnds)
{
    support::Fence fence(4 * sizeof(Kanvo_Coord2D));
    std::memcpy(fence.Data(), SQUARE.data(), fence.Size());
    fence.MakeReadOnly();
    for (const Tov_Flag flags : {Tov_Flag{0}, Tov_Flag{POLY_NOCLIP}, Tov_Flag{POLY_ANTIALIAS}})
    {
        PolyStage stage(32, 32);
        stage.Bitmap().DrawPolygon(reinterpret_cast<const Kanvo_Coord2D*>(fence.Data()), 4, WHITE, flags);
        EXPECT_EQ(stage.Count(), 100);
    }
}

// ---- what is counted ------------------------------------------------------------------------------------------------

TEST(Polydraw, CrossingsAreCountedWhereAnEntryOfTheTableMoves)
{
    PolySpies spies;
    PolyStage stage(32, 32);
    stage.Polygon(BOW_TIE, WHITE);
    EXPECT_EQ(spies.edges.sum, 4.0 - 0.0);
    EXPECT_EQ(spies.buckets.sum, 2.0);
    EXPECT_GE(spies.crossings.sum, 1.0);
    EXPECT_EQ(spies.polygons.sum, 1.0);

    spies.Clear();
    stage.Polygon(PENTAGRAM, WHITE);
    EXPECT_EQ(spies.edges.sum, 4.0) << "the level side is none";
    EXPECT_GE(spies.crossings.sum, 1.0);
}

TEST(Polydraw, WhatIsClippedAwayIsNotCountedButTimed)
{
    PolySpies spies;
    PolyStage stage(32, 32);
    stage.Polygon({{-20, -20}, {-3, -20}, {-3, -2}}, WHITE);
    stage.Polygon({{40, 3}, {60, 3}, {50, 30}}, WHITE, POLY_ANTIALIAS);
    stage.Bitmap().SetCliprect(9, 9, 0, 0);
    stage.Polygon(SQUARE, WHITE);
    for (const support::StatSpy* const stat :
         {&spies.polygons, &spies.rejected, &spies.edges, &spies.buckets, &spies.crossings})
        EXPECT_EQ(stat->count, 0);
    EXPECT_TRUE(spies.Ran(3));
    EXPECT_EQ(stage.Count(), 0);
}

TEST(Polydraw, TwoCornersAreTwoSidesWithNothingBetween)
{
    PolySpies spies;
    PolyStage stage(32, 32);
    stage.Polygon({{4, 4}, {20, 25}}, WHITE, POLY_NOCLIP);
    EXPECT_EQ(stage.Count(), 0);
    EXPECT_TRUE(spies.Ran(1));
    // the renderer itself makes no difference between two corners and more
    const Kanvo_Coord2D line[] = {{4, 4}, {20, 25}};
    spies.Clear();
    Kanvo_Polydraw_NoAA_ARGB32::Polygon(&stage.Bitmap(), line, 2, sizeof line[0], WHITE, 255);
    EXPECT_EQ(spies.edges.sum, 2.0);
    EXPECT_EQ(spies.polygons.sum, 1.0);
    spies.Clear();
    Kanvo_Polydraw_NoAA_ARGB32::Polygon(&stage.Bitmap(), line, 1, sizeof line[0], WHITE, 255);
    EXPECT_EQ(spies.rejected.sum, 1.0);
    EXPECT_EQ(stage.Count(), 0);
}

TEST(Polydraw, DrawsTheSameWithoutAnybodyCounting)
{
    PolyStage counted(32, 32);
    PolyStage uncounted(32, 32);
    {
        PolySpies spies;
        counted.Polygon(PENTAGRAM, WHITE);
    }
    ASSERT_EQ(g_kStat_PolyEdges, nullptr);
    uncounted.Polygon(PENTAGRAM, WHITE);
    EXPECT_EQ(counted.Pixels(), uncounted.Pixels());
}

// ---- oddities of the scan -------------------------------------------------------------------------------------------

TEST(Polydraw, ASideNoHigherThanAHundredthIsLeftOutEvenWhereItCrossesARow)
{
    // from y 7.496 to 7.504 the shape is open on the right; the side below is entered a row early and stays a row ahead
    const Outline                      outline = {{4, 2}, {20, 2}, {20, 7.496F}, {24, 7.504F}, {14, 14}, {4, 14}};
    const std::vector<reference::Span> spans   = SpansOf(outline);
    reference::PlainOutcome            expected;
    reference::PlainSpans(outline, expected);
    EXPECT_EQ(expected.edges, 3);
    EXPECT_EQ(spans, expected.spans);
    ASSERT_EQ(spans.size(), 12U);
    EXPECT_EQ(spans[4].end >> 16, 19);  // row 6
    EXPECT_GT(spans[5].end >> 16, 19);  // row 7, though its middle lies above 7.504

    // a little more than a hundredth high it is a side like any other
    const Outline whole = {{4, 2}, {20, 2}, {20, 7.49F}, {24, 7.51F}, {14, 14}, {4, 14}};
    reference::PlainSpans(whole, expected);
    EXPECT_EQ(expected.edges, 4);
    EXPECT_EQ(SpansOf(whole), expected.spans);
}

// ---- colour and opacity ---------------------------------------------------------------------------------------------

TEST(Polydraw, APlainPolygonStoresATranslucentColourThatAnAntialiasedOneBlends)
{
    constexpr std::uint32_t COLOR = 0x40FF8000U, GROUND = 0xFF102030U;
    PolyStage               plain(32, 32, GROUND);
    plain.Polygon(SQUARE, COLOR);
    EXPECT_TRUE(IsSquare(plain, COLOR, GROUND));
    PolyStage soft(32, 32, GROUND);
    soft.Polygon(SQUARE, COLOR, POLY_ANTIALIAS);
    EXPECT_TRUE(IsSquare(soft, support::MixLinearSrcAlpha(GROUND, COLOR, 255), GROUND));
}

TEST(Polydraw, TheRenderStatesAlphaBlendsByItAndByTheColoursOwn)
{
    for (const std::uint32_t color : {0xFFFF8000U, 0x80FF8000U, 0x00FF8000U})
    {
        for (const std::uint32_t ground : {0xFF102030U, 0x00102030U, 0x80102030U})
        {
            for (const std::uint32_t alpha : {0U, 1U, 128U, 254U, 255U})
            {
                PolyStage stage(32, 32, ground);
                stage.State().Set(ALPHAENABLE, true);
                stage.State().Set(ALPHA, alpha);
                stage.Polygon(SQUARE, color, POLY_USE_RENDERSTATE);
                const std::uint32_t expected =
                    alpha == 255 ? color : support::MixLinearSrcAlpha(ground, color, static_cast<int>(alpha));
                EXPECT_TRUE(IsSquare(stage, expected, ground)) << std::hex << color << ' ' << ground << ' ' << alpha;
            }
        }
    }
}

TEST(Polydraw, OnlyTheLowByteOfAlphaCounts)
{
    PolyStage stage(32, 32, BLACK);
    stage.State().Set(ALPHAENABLE, true);
    stage.State().Set(ALPHA, 0x12345680U);
    stage.Polygon(SQUARE, WHITE, POLY_USE_RENDERSTATE);
    EXPECT_TRUE(IsSquare(stage, support::MixLinearSrcAlpha(BLACK, WHITE, 0x80), BLACK));
}

TEST(Polydraw, AlphaCountsOnlyWhereItIsEnabledAndTheFlagIsSet)
{
    for (const bool enabled : {false, true})
    {
        for (const Tov_Flag flags : {Tov_Flag{POLY_NONE}, Tov_Flag{POLY_USE_RENDERSTATE}})
        {
            PolyStage stage(32, 32, BLACK);
            stage.State().Set(ALPHAENABLE, enabled);
            stage.State().Set(ALPHA, 100);
            stage.Polygon(SQUARE, 0x80FF8000U, flags);
            const bool blends = enabled && flags != 0;
            EXPECT_TRUE(
                IsSquare(stage, blends ? support::MixLinearSrcAlpha(BLACK, 0x80FF8000U, 100) : 0x80FF8000U, BLACK))
                << enabled << flags;
        }
    }
}

// ---- which renderer -------------------------------------------------------------------------------------------------

namespace
{

//! What a triangle with soft edges where anti-aliased looks like, by renderer.
std::string RendererOf(PolyStage& stage, Tov_Flag flags)
{
    stage.Fill(BLACK);
    stage.Polygon({{4.3F, 3.2F}, {27.6F, 11.4F}, {9.1F, 28.3F}}, WHITE, flags);
    bool soft    = false;
    bool texture = false;
    for (const std::uint32_t pixel : stage.Pixels())
    {
        if (pixel == 0xFF00FF00U)
            texture = true;
        else if (pixel != BLACK && pixel != WHITE && pixel != 0xFFFDFDFDU)
            soft = true;
    }
    if (stage.Count() == 0) return "nothing";
    if (texture) return soft ? "soft texture" : "texture";
    return soft ? "soft" : "plain";
}

}  // namespace

TEST(Polydraw, FlagsAndRenderStateChooseTheRenderer)
{
    std::vector<std::uint32_t> green(16, 0xFF00FF00U);
    PolyStage                  stage(32, 32);
    Kanvo_BitmapARGB32         picture(nullptr, 4, 4, BBT_RAM, green.data());
    Kanvo_Texture              texture(&picture);
    texture.Use(stage.State());
    for (const bool enabled : {false, true})
    {
        stage.State().Set(TEXTUREENABLE, enabled);
        for (Tov_Flag bits = 0; bits < 32; ++bits)
        {
            const Tov_Flag flags = ((bits & 1U) != 0 ? POLY_USE_RENDERSTATE : 0U) |
                                   ((bits & 2U) != 0 ? POLY_ANTIALIAS : 0U) | ((bits & 4U) != 0 ? POLY_HQAA : 0U) |
                                   ((bits & 8U) != 0 ? POLY_NOCLIP : 0U) | ((bits & 16U) != 0 ? POLY_EXTRUDE : 0U);
            const bool  textured = enabled && (flags & POLY_USE_RENDERSTATE) != 0;
            const char* expected = textured ? "texture" : (flags & POLY_ANTIALIAS) != 0 ? "soft" : "plain";
            EXPECT_EQ(RendererOf(stage, flags), expected) << std::hex << flags << " texture enabled " << enabled;
        }
    }
}

TEST(Polydraw, OtherFlagsMeanNothing)
{
    PolyStage expected(32, 32);
    expected.Polygon(PENTAGRAM, WHITE);
    constexpr Tov_Flag KNOWN = POLY_USE_RENDERSTATE | POLY_EXTRUDE | POLY_ANTIALIAS | POLY_NOCLIP;
    for (Tov_Flag bit = 1; bit != 0; bit <<= 1)
    {
        if ((bit & KNOWN) != 0) continue;
        PolyStage stage(32, 32);
        stage.Polygon(PENTAGRAM, WHITE, bit);
        EXPECT_EQ(stage.Pixels(), expected.Pixels()) << std::hex << bit;
    }
}

TEST(Polydraw, ABitmapWithoutAScreenHasNothingEnabled)
{
    std::vector<std::uint32_t> pixels(32 * 32, BLACK);
    Kanvo_BitmapARGB32         bitmap(nullptr, 32, 32, BBT_RAM, pixels.data());
    bitmap.Lock();
    const std::vector<Kanvo_Coord2D> square = support::Vertices(SQUARE);
    support::AssertCapture           asserts;
    bitmap.DrawPolygon(square.data(), 4, 0x80FF8000U, POLY_USE_RENDERSTATE);
    EXPECT_EQ(asserts.Count(), 0U);
    EXPECT_EQ(pixels[15 * 32 + 15], 0x80FF8000U);
}

// ---- clipping -------------------------------------------------------------------------------------------------------

TEST(Polydraw, ClippedPolygonsStayInsideTheClipRectangleAndUnclippedOnesDoNotLookAtIt)
{
    const Outline large = {{1.2F, 1.3F}, {30.7F, 2.2F}, {29.1F, 30.4F}, {2.3F, 29.9F}};
    PolyStage     whole(32, 32);
    whole.Polygon(large, WHITE);
    PolyStage open(32, 32);
    open.Bitmap().SetCliprect(8, 9, 20, 22);
    open.Polygon(large, WHITE, POLY_NOCLIP);
    EXPECT_EQ(open.Pixels(), whole.Pixels());
    PolyStage clipped(32, 32);
    clipped.Bitmap().SetCliprect(8, 9, 20, 22);
    clipped.Polygon(large, WHITE);
    EXPECT_EQ(clipped.Count(), 13 * 14);
    EXPECT_EQ(clipped.At(8, 9), WHITE);
    EXPECT_EQ(clipped.At(20, 22), WHITE);
}

// Except at the left and right border, where of a row half a pixel or less may be left inside, which is not painted.
TEST(Polydraw, AClippedPictureIsTheCropOfTheUnclippedOne)
{
    const support::Seeds seeds(support::CasesOf(20000));
    support::Differences outside;
    support::Differences differences;
    std::uint64_t        compared = 0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        support::Dice dice(seed);
        const Outline outline = support::ThrowOutline(dice, {48, 40, true});
        PolyStage     whole(48, 40);
        whole.Polygon(outline, WHITE);
        PolyStage clipped(48, 40);
        const int left   = dice.Between(0, 47);
        const int top    = dice.Between(0, 39);
        const int right  = dice.Between(left, 47);
        const int bottom = dice.Between(top, 39);
        clipped.Bitmap().SetCliprect(static_cast<Tov_UInt>(left), static_cast<Tov_UInt>(top),
                                     static_cast<Tov_UInt>(right), static_cast<Tov_UInt>(bottom));
        clipped.Polygon(outline, WHITE);
        for (int y = 0; y < 40; ++y)
        {
            for (int x = 0; x < 48; ++x)
            {
                const bool inside = x >= left && x <= right && y >= top && y <= bottom;
                const bool got    = clipped.At(x, y) == WHITE;
                if (!inside && got) outside.Note("seed %llu: (%d, %d)", static_cast<unsigned long long>(seed), x, y);
                if (!inside || x == left || x == right) continue;
                ++compared;
                if (got != (whole.At(x, y) == WHITE))
                    differences.Note("seed %llu: (%d, %d), clip (%d, %d) to (%d, %d)",
                                     static_cast<unsigned long long>(seed), x, y, left, top, right, bottom);
            }
        }
    }
    EXPECT_EQ(outside.Count(), 0U) << outside.First();
    // Cut sides start at other numbers, which single precision may round to the other side of a limit; and what is left
    // of a side may be too low to count.
    EXPECT_LE(differences.Count() * 2000, compared + 10000) << differences.First();
    std::printf("[ crop     ] %llu of %llu pixels differ, first: %s\n",
                static_cast<unsigned long long>(differences.Count()), static_cast<unsigned long long>(compared),
                differences.First().c_str());
}

TEST(Polydraw, TheWholeBitmapCanBeFilled)
{
    for (const Tov_Flag flags :
         {Tov_Flag{POLY_NONE}, Tov_Flag{POLY_NOCLIP}, Tov_Flag{POLY_ANTIALIAS}, POLY_NOCLIP | POLY_ANTIALIAS})
    {
        PolyStage stage(37, 23, 0);
        stage.Polygon({{0, 0}, {37, 0}, {37, 23}, {0, 23}}, WHITE, flags);
        for (const std::uint32_t pixel : stage.Pixels()) ASSERT_EQ(pixel >> 24, 255U) << std::hex << flags;
        EXPECT_TRUE(stage.IsSlackUntouched());
    }
}

// ---- extruding ------------------------------------------------------------------------------------------------------

TEST(Polydraw, ExtrudeRewritesTheCallersVerticesEvenWhenClippedAway)
{
    for (const Tov_Flag flags : {Tov_Flag{POLY_EXTRUDE}, POLY_EXTRUDE | POLY_NOCLIP, POLY_EXTRUDE | POLY_ANTIALIAS})
    {
        PolyStage                  stage(32, 32);
        std::vector<Kanvo_Coord2D> vertices = support::Vertices(SQUARE);
        stage.Bitmap().DrawPolygon(vertices.data(), 4, WHITE, flags);
        EXPECT_EQ(vertices[0].x, 9.5F) << std::hex << flags;
        EXPECT_EQ(vertices[0].y, 9.5F);
        EXPECT_EQ(vertices[2].x, 20.5F);
        EXPECT_EQ(vertices[2].y, 20.5F);
        EXPECT_GT(stage.Count(), 100);
    }
    PolyStage                  stage(32, 32);
    std::vector<Kanvo_Coord2D> away = {{-30, -30}, {-20, -30}, {-20, -20}, {-30, -20}};
    stage.Bitmap().DrawPolygon(away.data(), 4, WHITE, POLY_EXTRUDE);
    EXPECT_EQ(away[0].x, -30.5F);
    EXPECT_EQ(away[2].y, -19.5F);
    EXPECT_EQ(stage.Count(), 0);
}

TEST(Polydraw, ExtrudeComesBeforeClipping)
{
    // outside by less than half a pixel: the extruded outline reaches in
    PolyStage     stage(32, 32);
    const Outline beside = {{-10, 4}, {-0.001F, 4}, {-0.001F, 20}, {-10, 20}};
    stage.Polygon(beside, WHITE, POLY_ANTIALIAS);
    EXPECT_EQ(stage.Count(), 0);
    stage.Polygon(beside, WHITE, POLY_ANTIALIAS | POLY_EXTRUDE);
    EXPECT_EQ(stage.Count(), 18);  // columns 0, rows 3 to 20
}

TEST(Polydraw, WindingHintsReachTheExtrusion)
{
    // SQUARE runs clockwise on the screen; told the contrary it shrinks
    for (const auto& [flags, corner] : {std::pair{Tov_Flag{POLY_EXTRUDE}, 9.5F},
                                        {POLY_EXTRUDE | POLY_HINT_CW, 9.5F},
                                        {POLY_EXTRUDE | POLY_HINT_CCW, 10.5F},
                                        {POLY_EXTRUDE | POLY_HINT_CW | POLY_HINT_CCW, 9.5F},
                                        {Tov_Flag{POLY_HINT_CCW}, 10.0F}})
    {
        PolyStage                  stage(32, 32);
        std::vector<Kanvo_Coord2D> vertices = support::Vertices(SQUARE);
        stage.Bitmap().DrawPolygon(vertices.data(), 4, WHITE, flags);
        EXPECT_EQ(vertices[0].x, corner) << std::hex << flags;
        EXPECT_EQ(vertices[0].y, corner) << std::hex << flags;
    }
}

// ---- messages -------------------------------------------------------------------------------------------------------

TEST(Polydraw, ABitmapThatIsNotLockedAssertsAndDrawsAllTheSame)
{
    PolyStage stage(32, 32);
    stage.Bitmap().Unlock(0, 0, 0, 0);
    support::AssertCapture asserts;
    stage.Polygon(SQUARE, WHITE);
    EXPECT_EQ(asserts.Take(), support::Messages{"bitmap not locked"});
    EXPECT_TRUE(IsSquare(stage, WHITE, BLACK));
}

TEST(Polydraw, NoVerticesDrawNothing)
{
    PolySpies spies;
    PolyStage stage(16, 16);
    for (const Tov_Flag flags : {Tov_Flag{0}, Tov_Flag{POLY_NOCLIP}, Tov_Flag{POLY_ANTIALIAS},
                                 POLY_ANTIALIAS | POLY_NOCLIP, Tov_Flag{POLY_EXTRUDE}, POLY_EXTRUDE | POLY_NOCLIP})
    {
        support::AssertCapture asserts;
        stage.Bitmap().DrawPolygon(nullptr, 0, WHITE, flags);
        stage.Bitmap().RenderPrimitivePoly(nullptr, 0, 0, flags, WHITE);
        EXPECT_EQ(asserts.Count(), 0U) << std::hex << flags;
        stage.Bitmap().DrawPolygon(nullptr, 3, WHITE, flags);
        EXPECT_EQ(asserts.Take(), support::Messages{"polygon has no vertices"}) << std::hex << flags;
        const Kanvo_Coord2D corner = {5, 5};
        stage.Bitmap().DrawPolygon(&corner, 1, WHITE, flags & ~Tov_Flag{POLY_EXTRUDE});
        EXPECT_EQ(asserts.Count(), 0U);
    }
    EXPECT_EQ(stage.Count(), 0);
}
