// Tests of anti-aliased polygons: tables, set-up, coverage of single shapes, opacity, and the oddities of the scan. Figures
// over many polygons are in test_Kanvo_PolydrawAA_random.cpp.
//
// Coverage is read off a target of transparent black that white is drawn on: what is blended onto nothing by a colour of
// full alpha has the coverage as its alpha.
#include <cmath>
#include <cstdint>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Kanvo_PolydrawAA.h"
#include "Kanvo_PolySetupAA.h"
#include "Kanvo_Tables.h"
#include "NaiveMix.h"
#include "PolyStage.h"
#include "RandomPolygons.h"
#include "Reference_PolygonRule.h"

namespace
{

using reference::Outline;
using support::PolyStage;

constexpr std::uint32_t WHITE = 0xFFFFFFFFU, BLACK = 0xFF000000U;
constexpr Tov_Flag      AA = POLY_ANTIALIAS;

const Outline SQUARE = {{10, 10}, {20, 10}, {20, 20}, {10, 20}};

//! Coverage of each pixel of a size x size target.
std::vector<int> CoverageOf(const Outline& outline, int size, Tov_Flag flags = AA)
{
    PolyStage stage(static_cast<unsigned>(size), static_cast<unsigned>(size), 0);
    stage.Polygon(outline, WHITE, flags);
    std::vector<int> coverage;
    for (const std::uint32_t pixel : stage.Pixels()) coverage.push_back(static_cast<int>(pixel >> 24));
    EXPECT_TRUE(stage.IsSlackUntouched());
    return coverage;
}

double Sum(const std::vector<int>& coverage)
{
    double sum = 0.0;
    for (const int value : coverage) sum += value;
    return sum / 255.0;
}

//! Area of the part of the unit square around the origin that lies right of the line n.p = -d, by counting.
double AreaRightOf(double nx, double ny, double d)
{
    constexpr int COUNT  = 400;
    double        inside = 0.0;
    for (int row = 0; row < COUNT; ++row)
    {
        const double y = (row + 0.5) / COUNT - 0.5;
        // n.x x + n.y y + d >= 0
        if (nx < 1e-9)
        {
            inside += ny * y + d >= 0.0 ? 1.0 : 0.0;
            continue;
        }
        const double from = (-d - ny * y) / nx;
        inside += std::min(1.0, std::max(0.0, 0.5 - from));
    }
    return inside / COUNT;
}

}  // namespace

// ---- tables ---------------------------------------------------------------------------------------------------------

TEST(PolydrawAA, CountingBits)
{
    EXPECT_EQ(int_ones(0), 0U);
    EXPECT_EQ(int_ones(0xFFFFFFFFU), 32U);
    support::Numbers numbers(1);
    for (int bit = 0; bit < 32; ++bit) EXPECT_EQ(int_ones(1U << bit), 1U);
    for (int turn = 0; turn < 100000; ++turn)
    {
        const std::uint32_t word  = numbers.Next32() & numbers.Next32();
        unsigned            count = 0;
        for (std::uint32_t rest = word; rest != 0; rest &= rest - 1) ++count;
        ASSERT_EQ(int_ones(word), count) << std::hex << word;
    }
}

TEST(PolydrawAA, TheEdgeTablesAgreeWithEachOtherAndWithGeometry)
{
    for (unsigned direction = 0; direction < KANVO_EDGE_DIRECTIONS; ++direction)
    {
        const double  ny      = -1.0 + 2.0 * direction / (KANVO_EDGE_DIRECTIONS - 1);
        const double  nx      = 1.0 - std::fabs(ny);
        unsigned      before  = 0;
        std::uint32_t samples = 0;
        for (int step = -15; step <= 15; ++step)
        {
            const unsigned      at     = direction * KANVO_EDGE_STEPS + (static_cast<unsigned>(step) & 31U);
            const unsigned      mirror = direction * KANVO_EDGE_STEPS + (static_cast<unsigned>(-step) & 31U);
            const std::uint32_t mask   = g_auiEdgemasks[at];
            const unsigned      area   = g_aucEdgeArea[at];
            const double        exact  = 255.0 * AreaRightOf(nx, ny, step / 24.0);
            EXPECT_EQ(mask >> 30, 0U) << "bits 30 and 31 never live";
            if (step != 0)
            {
                EXPECT_EQ(area + g_aucEdgeArea[mirror], 255U) << direction << ' ' << step;
            }
            EXPECT_NEAR(area, exact, 1.0) << direction << ' ' << step;
            EXPECT_NEAR(int_ones(mask) * 255.0 / 30.0, exact, 255.0 / 60.0 + 1.0) << direction << ' ' << step;
            EXPECT_GE(area, before) << "an edge that moves to the left covers more";
            EXPECT_EQ(mask & samples, samples) << "and loses no sample";
            before  = area;
            samples = mask;
        }
        EXPECT_EQ(g_aucEdgeArea[direction * KANVO_EDGE_STEPS + 12], 255) << "half a pixel away the pixel is whole";
        EXPECT_EQ(g_aucEdgeArea[direction * KANVO_EDGE_STEPS + 20], 0);
        EXPECT_EQ(g_auiEdgemasks[direction * KANVO_EDGE_STEPS + 12], 0x3FFFFFFFU);
        EXPECT_EQ(g_auiEdgemasks[direction * KANVO_EDGE_STEPS + 20], 0U);
    }
    for (unsigned count = 0; count <= 32; ++count)
    {
        const unsigned expected = count >= 30 ? 255U : static_cast<unsigned>(std::floor(255.0 * count / 30.0 + 0.5));
        EXPECT_EQ(g_aucPoplookup[count], expected);
    }
}

// ---- set-up ---------------------------------------------------------------------------------------------------------

namespace
{

struct Sides
{
    std::vector<Kanvo_AAEdgeBucket>  buckets;
    std::vector<Kanvo_AAEdgeBucket*> list;
    Tov_Int                          first = -7;
    bool                             drawn;

    Sides(const Outline& outline, Tov_Int clipMaxX, Tov_Int clipMaxY)
        : buckets(outline.size() + 1),
          list(static_cast<std::size_t>(clipMaxY) + 3, nullptr)
    {
        const std::vector<Kanvo_Coord2D> vertices = support::Vertices(outline);
        drawn = SetupAAPolygon(clipMaxY, clipMaxX, buckets.data(), vertices.data(), sizeof(Kanvo_Coord2D), list.data(),
                               first, static_cast<Tov_UInt>(vertices.size()));
    }

    int Chained() const
    {
        int count = 0;
        for (const Kanvo_AAEdgeBucket* head : list)
            for (; head != nullptr; head = head->next) ++count;
        return count;
    }
};

}  // namespace

TEST(PolydrawAA, SetupChainsEverySideAtItsFirstRow)
{
    const Sides square(SQUARE, 31, 31);
    EXPECT_TRUE(square.drawn);
    EXPECT_EQ(square.first, 10);
    EXPECT_EQ(square.Chained(), 4) << "level sides too";
    int from10 = 0;
    for (const Kanvo_AAEdgeBucket* side = square.list[10]; side != nullptr; side = side->next) ++from10;
    EXPECT_EQ(from10, 3);
    ASSERT_NE(square.list[20], nullptr);
    EXPECT_EQ(square.list[20]->ybot, 20);
    EXPECT_EQ(square.list[20]->edgeflags, 3);
}

TEST(PolydrawAA, SetupSkipsSidesWithoutLengthAndThoseBelowTheClipRectangle)
{
    const Sides doubled({{10, 10}, {10, 10}, {20, 10}, {20, 20}, {20, 20}, {10, 20}, {10, 10}}, 31, 31);
    EXPECT_EQ(doubled.Chained(), 4);
    const Sides below({{3, 12}, {9, 13}, {5, 18}}, 31, 11);
    EXPECT_FALSE(below.drawn);
    EXPECT_EQ(below.Chained(), 0);
    const Sides point({{3, 3}, {3, 3}, {3, 3}}, 31, 31);
    EXPECT_FALSE(point.drawn);
    EXPECT_EQ(point.Chained(), 0);
    const Sides none({}, 31, 31);
    EXPECT_FALSE(none.drawn);
    const Sides partly({{3, 4}, {9, 13}, {5, 18}}, 31, 11);
    EXPECT_TRUE(partly.drawn);
    EXPECT_EQ(partly.first, 4);
    EXPECT_EQ(partly.Chained(), 2) << "the side from row 13 to 18 is not visible";
}

TEST(PolydrawAA, WhereSetupFindsNothingTheScanListIsLeftClear)
{
    PolyStage stage(16, 16);
    Tov_UInt  rows = Kanvo_PolyGetRows();
    ASSERT_GE(rows, 18U);
    Kanvo_AAEdgeBucket** const list = Kanvo_PolyGetScanBuffer(18);
    ASSERT_NE(list, nullptr);
    const auto isClear = [&]
    {
        for (int row = 0; row < 18; ++row)
            if (list[row] != nullptr) return false;
        return true;
    };
    ASSERT_TRUE(isClear());
    Kanvo_AAEdgeBucket stale{};
    list[5] = list[17]            = &stale;
    const Kanvo_Coord2D nothing[] = {{4, 4}, {4, 4}, {4, 4}};
    Kanvo_Polydraw_AA_ARGB32::Polygon(&stage.Bitmap(), nothing, 3, sizeof nothing[0], WHITE, 255);
    EXPECT_TRUE(isClear());
    EXPECT_EQ(stage.Count(), 0);

    // and after polygons that are cut off below, too
    stage.Bitmap().SetCliprect(0, 0, 15, 9);
    for (const Outline& outline : {Outline{{2, 2}, {14, 3}, {8, 15}}, Outline{{1, 8}, {14, 9.5F}, {9, 15}},
                                   Outline{{2, 2}, {14, 2}, {14, 10}, {2, 10}}})
    {
        stage.Polygon(outline, WHITE, AA | POLY_NOCLIP);
        EXPECT_TRUE(isClear()) << support::Described(outline);
        stage.Polygon(outline, WHITE, AA);
        EXPECT_TRUE(isClear()) << support::Described(outline);
    }
}

// ---- coverage -------------------------------------------------------------------------------------------------------

TEST(PolydrawAA, ARectangleOnWholePixelsIsExact)
{
    const std::vector<int> coverage = CoverageOf(SQUARE, 32);
    for (int y = 0; y < 32; ++y)
    {
        for (int x = 0; x < 32; ++x)
        {
            const bool inside = x >= 10 && x < 20 && y >= 10 && y < 20;
            EXPECT_EQ(coverage[static_cast<std::size_t>(y * 32 + x)], inside ? 255 : 0) << x << ' ' << y;
        }
    }
}

TEST(PolydrawAA, RectanglesOfEveryWidthBlendEveryPixelOnce)
{
    constexpr int WIDTH = 150;
    for (const std::uint32_t color : {0xFF40C080U, 0x9040C080U})
    {
        for (int width = 1; width <= 140; ++width)
        {
            PolyStage stage(WIDTH, 3, BLACK);
            for (int x = 0; x < WIDTH; x += 3) stage.Words()[WIDTH + x] = 0x60A05020U + static_cast<std::uint32_t>(x);
            const std::vector<std::uint32_t> before = stage.Pixels();

            const float right = static_cast<float>(5 + width);
            stage.Polygon({{5, 1}, {right, 1}, {right, 2}, {5, 2}}, color, AA);
            for (int at = 0; at < WIDTH * 3; ++at)
            {
                const std::uint32_t ground = before[static_cast<std::size_t>(at)];
                const bool          inside = at >= WIDTH + 5 && at < WIDTH + 5 + width;
                ASSERT_EQ(stage.Words()[at], inside ? support::MixLinearSrcAlpha(ground, color, 255) : ground)
                    << "width " << width << ", pixel " << at % WIDTH;
            }
        }
    }
}

TEST(PolydrawAA, ARectangleBetweenPixelsCoversTheirParts)
{
    const std::vector<int> coverage =
        CoverageOf({{10.25F, 10.5F}, {20.75F, 10.5F}, {20.75F, 20.25F}, {10.25F, 20.25F}}, 32);
    const auto at = [&](int x, int y) { return coverage[static_cast<std::size_t>(y * 32 + x)]; };
    EXPECT_NEAR(at(10, 15), 255 * 0.75, 6);
    EXPECT_NEAR(at(20, 15), 255 * 0.75, 6);
    EXPECT_NEAR(at(15, 10), 255 * 0.5, 6);
    EXPECT_NEAR(at(15, 20), 255 * 0.25, 6);
    EXPECT_NEAR(at(10, 10), 255 * 0.375, 16);
    EXPECT_NEAR(at(20, 20), 255 * 0.1875, 16);
    EXPECT_EQ(at(15, 15), 255);
    EXPECT_EQ(at(9, 15), 0);
    EXPECT_EQ(at(21, 15), 0);
    EXPECT_EQ(at(15, 9), 0);
    EXPECT_EQ(at(15, 21), 0);
    EXPECT_NEAR(Sum(coverage), 10.5 * 9.75, 0.4);
}

TEST(PolydrawAA, AnEdgeAloneHasTheSameCoverageWhereverItsDistanceIsTheSame)
{
    // a side of slope 1 passes every pixel alike
    const std::vector<int> coverage = CoverageOf({{4, 2}, {28, 26}, {4, 26}}, 32);
    std::set<int>          diagonal;
    for (int at = 5; at < 25; ++at) diagonal.insert(coverage[static_cast<std::size_t>(at * 32 + at + 2)]);
    EXPECT_EQ(diagonal.size(), 1U);
    EXPECT_NEAR(*diagonal.begin(), 127.5, 1.0);
}

TEST(PolydrawAA, BothSensesOfRotationCoverAlike)
{
    support::Dice dice(11);
    for (int count = 0; count < 300; ++count)
    {
        Outline    outline = support::ThrowConvex(dice, {32, 32, true});
        const auto one     = CoverageOf(outline, 32);
        std::reverse(outline.begin(), outline.end());
        EXPECT_EQ(CoverageOf(outline, 32), one) << support::Described(outline);
        std::rotate(outline.begin(), outline.begin() + 1, outline.end());
        EXPECT_EQ(CoverageOf(outline, 32), one) << support::Described(outline);
    }
}

TEST(PolydrawAA, AlongASharedSideTheCoveragesOfBothShapesMakeAWhole)
{
    // the side from top to bottom is in common; away from its ends it is alone in its pixels
    support::Dice dice(12);
    std::uint64_t looked = 0;
    for (int count = 0; count < 2000; ++count)
    {
        const float            top    = support::Uniform(dice, 6, 26);
        const float            bottom = support::Uniform(dice, 6, 26);
        const std::vector<int> left   = CoverageOf({{1, 2}, {top, 2}, {bottom, 30}, {1, 30}}, 32);
        const std::vector<int> right  = CoverageOf({{top, 2}, {31, 2}, {31, 30}, {bottom, 30}}, 32);
        for (int y = 4; y < 28; ++y)
        {
            for (int x = 3; x < 29; ++x)
            {
                const std::size_t at  = static_cast<std::size_t>(y * 32 + x);
                const int         sum = left[at] + right[at];
                looked += left[at] != 0 && right[at] != 0;
                EXPECT_TRUE(sum == 255 || sum == 256)
                    << sum << " at " << x << ' ' << y << ", side " << top << ' ' << bottom;
            }
        }
        if (testing::Test::HasFailure()) break;
    }
    EXPECT_GT(looked, 20000U);
}

TEST(PolydrawAA, TrianglesThatTileASquareCoverItTogether)
{
    support::Dice dice(13);
    double        squares = 0.0;
    double        worst   = 0.0;
    std::uint64_t looked  = 0;
    for (int count = 0; count < 500; ++count)
    {
        const reference::Corner middle = {support::Uniform(dice, 8, 24), support::Uniform(dice, 8, 24)};
        const Outline           rim    = {{2, 2},   {support::Uniform(dice, 8, 24), 2},  {30, 2},
                                          {30, 30}, {support::Uniform(dice, 8, 24), 30}, {2, 30}};
        std::vector<int>        sum(32 * 32, 0);
        for (std::size_t corner = 0; corner < rim.size(); ++corner)
        {
            const std::vector<int> one = CoverageOf({middle, rim[corner], rim[(corner + 1) % rim.size()]}, 32);
            for (std::size_t at = 0; at < sum.size(); ++at) sum[at] += one[at];
        }
        for (int y = 2; y < 30; ++y)
        {
            for (int x = 2; x < 30; ++x)
            {
                const double off = sum[static_cast<std::size_t>(y * 32 + x)] - 255.0;
                squares += off * off;
                worst = std::max(worst, std::fabs(off));
                ++looked;
            }
        }
        for (int at = 0; at < 32; ++at)
            EXPECT_EQ(sum[static_cast<std::size_t>(at)] + sum[static_cast<std::size_t>(at * 32)], 0);
    }
    const double rms = std::sqrt(squares / static_cast<double>(looked));
    std::printf("[ tiling   ] sum of coverages 255 +- %.2f rms, at most %.0f off\n", rms, worst);
    EXPECT_LT(rms, 2.0);
    EXPECT_LE(worst, 40.0);
}

TEST(PolydrawAA, EvenOddHolds)
{
    std::vector<int> twice = CoverageOf({{4, 4}, {24, 4}, {24, 24}, {4, 24}, {4, 4}, {24, 4}, {24, 24}, {4, 24}}, 32);
    for (const int value : twice) EXPECT_EQ(value, 0);
    const std::vector<int> frame =
        CoverageOf({{4, 4}, {24, 4}, {24, 24}, {4, 24}, {4, 4}, {10, 10}, {18, 10}, {18, 18}, {10, 18}, {10, 10}}, 32);
    EXPECT_EQ(frame[14 * 32 + 14], 0);
    EXPECT_EQ(frame[7 * 32 + 7], 255);
    EXPECT_NEAR(Sum(frame), 20 * 20 - 8 * 8, 0.5);
}

// ---- opacity --------------------------------------------------------------------------------------------------------

TEST(PolydrawAA, AtHalfOpacityFullCoverageAlongTheOutlineIsOneStepLess)
{
    PolyStage stage(32, 32, 0);
    stage.State().Set(ALPHAENABLE, true);
    stage.State().Set(ALPHA, 128);
    stage.Polygon(SQUARE, WHITE, AA | POLY_USE_RENDERSTATE);
    // the side's own pixels: 128 * 255 / 256 = 127; between them the alpha itself
    EXPECT_EQ(stage.At(10, 15) >> 24, 127U);
    for (int x = 11; x < 20; ++x) EXPECT_EQ(stage.At(x, 15) >> 24, 128U) << x;
    EXPECT_EQ(stage.At(20, 15), 0U);

    const Outline          triangle = {{4.3F, 3.2F}, {27.6F, 11.4F}, {9.1F, 28.3F}};
    const std::vector<int> whole    = CoverageOf(triangle, 32);
    stage.Fill(0);
    stage.Polygon(triangle, WHITE, AA | POLY_USE_RENDERSTATE);
    for (int at = 0; at < 32 * 32; ++at)
    {
        const int full = whole[static_cast<std::size_t>(at)];
        const int got  = static_cast<int>(stage.Words()[at] >> 24);
        if (full == 255)
            EXPECT_TRUE(got == 127 || got == 128) << at;
        else
            EXPECT_EQ(got, full * 128 / 256) << at;
    }
}

TEST(PolydrawAA, AColourOfNoAlphaChangesNothingOnAnOpaqueTarget)
{
    PolyStage stage(32, 32, 0xFF123456U);
    stage.Polygon({{4.3F, 3.2F}, {27.6F, 11.4F}, {9.1F, 28.3F}}, 0x00FFFFFFU, AA);
    EXPECT_EQ(stage.Count(0xFF123456U), 0);
}

TEST(PolydrawAA, TheColoursOwnAlphaMultipliesTheCoverage)
{
    const Outline          triangle = {{4.3F, 3.2F}, {27.6F, 11.4F}, {9.1F, 28.3F}};
    const std::vector<int> coverage = CoverageOf(triangle, 32);
    for (const std::uint32_t ground : {0xFF102030U, 0x40102030U})
    {
        PolyStage stage(32, 32, ground);
        stage.Polygon(triangle, 0x9000FF80U, AA);
        for (int at = 0; at < 32 * 32; ++at)
        {
            const int cover = coverage[static_cast<std::size_t>(at)];
            // blending by nothing is no change, whether it happens or not
            ASSERT_EQ(stage.Words()[at], support::MixLinearSrcAlpha(ground, 0x9000FF80U, cover)) << at << ' ' << cover;
        }
    }
}

// ---- borders --------------------------------------------------------------------------------------------------------

TEST(PolydrawAA, UnclippedAntialiasedPolygonsEndAtTheClipRectanglesRightAndBottom)
{
    PolyStage stage(32, 32);
    stage.Bitmap().SetCliprect(8, 9, 20, 22);
    stage.Polygon({{2, 3}, {30, 3}, {30, 29}, {2, 29}}, WHITE, AA | POLY_NOCLIP);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x)
            EXPECT_EQ(stage.At(x, y) != BLACK, x >= 2 && x <= 20 && y >= 3 && y <= 22) << x << ' ' << y;
}

TEST(PolydrawAA, ShapesAgainstTheRightAndBottomBorderAreWhole)
{
    for (const float slant : {0.0F, 0.3F, 1.0F, 7.0F})
    {
        for (const Tov_Flag flags : {AA, AA | POLY_NOCLIP})
        {
            const std::vector<int> coverage = CoverageOf({{32, 0}, {32, 32}, {4, 32}, {4 + slant, 0}}, 32, flags);
            for (int y = 0; y < 32; ++y)
                for (int x = 12; x < 32; ++x)
                    EXPECT_EQ(coverage[static_cast<std::size_t>(y * 32 + x)], 255) << x << ' ' << y << ' ' << slant;
        }
    }
}

TEST(PolydrawAA, ClippingChangesCoverageAtItsBorderOnlyByALittle)
{
    support::Dice dice(14);
    double        squares = 0.0;
    int           looked  = 0;
    int           worst   = 0;
    for (int count = 0; count < 3000; ++count)
    {
        const Outline          outline = support::ThrowConcave(dice, {32, 32, true});
        const std::vector<int> whole   = CoverageOf(outline, 32);
        PolyStage              stage(32, 32, 0);
        stage.Bitmap().SetCliprect(9, 7, 22, 24);
        stage.Polygon(outline, WHITE, AA);
        for (int y = 0; y < 32; ++y)
        {
            for (int x = 0; x < 32; ++x)
            {
                const int got = static_cast<int>(stage.At(x, y) >> 24);
                if (x < 9 || x > 22 || y < 7 || y > 24)
                {
                    ASSERT_EQ(got, 0) << x << ' ' << y << ' ' << support::Described(outline);
                    continue;
                }
                const int off = got - whole[static_cast<std::size_t>(y * 32 + x)];
                squares += off * off;
                worst = std::max(worst, std::abs(off));
                ++looked;
            }
        }
    }
    std::printf("[ clipped  ] coverage off by %.2f rms, at most %d, of the crop of the whole\n",
                std::sqrt(squares / looked), worst);
    EXPECT_LE(worst, 60);
    EXPECT_LT(std::sqrt(squares / looked), 2.0);
}
