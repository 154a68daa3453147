// Tests of clipped outlines: inside the region whatever came in, the same inside as before, and no more corners than
// promised. Lines are in test_Kanvo_Clipper.cpp.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "Kanvo_Clipper.h"
#include "Kanvo_PolyBuffers.h"
#include "PolyStage.h"
#include "RandomPolygons.h"

namespace
{

using reference::Corner;
using reference::Outline;
using support::Clipped;
using support::Dice;

constexpr float INF       = std::numeric_limits<float>::infinity();
constexpr float NAN_VALUE = std::numeric_limits<float>::quiet_NaN();

//! Whether the point lies inside by the even-odd rule, and how near in x the outline comes in its row.
struct Parity
{
    bool   inside;
    double nearest;
};
Parity ParityAt(const Outline& outline, double x, double y)
{
    Parity parity{false, 1e300};
    for (std::size_t at = 0; at < outline.size(); ++at)
    {
        const Corner& a  = outline[at];
        const Corner& b  = outline[(at + 1) % outline.size()];
        const double  ay = static_cast<double>(a.y);
        const double  by = static_cast<double>(b.y);
        if ((ay <= y) == (by <= y)) continue;
        const double crossing =
            static_cast<double>(a.x) + (y - ay) / (by - ay) * (static_cast<double>(b.x) - static_cast<double>(a.x));
        parity.inside  = parity.inside != (crossing > x);
        parity.nearest = std::min(parity.nearest, std::fabs(crossing - x));
    }
    return parity;
}

bool Same(const Outline& one, const Outline& other)
{
    return one.size() == other.size() &&
           std::equal(one.begin(), one.end(), other.begin(),
                      [](const Corner& a, const Corner& b) { return std::memcmp(&a, &b, sizeof a) == 0; });
}

void Region()
{
    Kanvo_Clipper::InitRegion(3, 2, 21, 17, 0.0001F);
}

}  // namespace

TEST(ClipperPolygon, AnOutlineInsideComesOutBitForBit)
{
    Region();
    for (const Outline& outline : {Outline{{3, 2}, {20.5F, 2.25F}, {20.999F, 16.999F}, {3, 16.9F}},
                                   Outline{{4, 4}, {4, 4}, {9, 4}, {7, 9}, {7, 9}}})
        EXPECT_TRUE(Same(Clipped(outline), outline)) << support::Described(Clipped(outline));
}

TEST(ClipperPolygon, AnOutlineAllAroundBecomesTheRegion)
{
    Region();
    const Outline clipped = Clipped({{-100, -100}, {100, -100}, {100, 100}, {-100, 100}});
    ASSERT_EQ(clipped.size(), 4U) << support::Described(clipped);
    for (const Corner& corner : clipped)
    {
        EXPECT_TRUE(corner.x == 3.0F || corner.x == 21.0F - 0.0001F) << corner.x;
        EXPECT_TRUE(corner.y == 2.0F || corner.y == 17.0F - 0.0001F) << corner.y;
    }
    EXPECT_NEAR(support::TwiceTheArea(clipped), 2 * 18 * 15, 0.01);
}

TEST(ClipperPolygon, WhatLiesOutsideIsGone)
{
    Region();
    for (const Outline& outline : {Outline{{-9, 3}, {2.9F, 5}, {-4, 9}}, Outline{{21, 3}, {29, 5}, {24, 9}},
                                   Outline{{4, -3}, {9, 1.99F}, {20, -9}}, Outline{{4, 17}, {9, 30}, {20, 17}},
                                   Outline{{4, 17}, {9, 30}, {20, 16.99995F}}})
    {
        const Outline clipped = Clipped(outline);
        double        area    = support::TwiceTheArea(clipped);
        EXPECT_NEAR(area, 0.0, 1e-3) << support::Described(clipped);
    }
    EXPECT_TRUE(Clipped({{-9, 3}, {2.9F, 5}, {-4, 9}}).empty());
    // beside a corner: no side is outside for all, and nothing is inside
    EXPECT_NEAR(support::TwiceTheArea(Clipped({{-10, 10}, {10, -10}, {-10, -10}})), 0.0, 1e-3);
}

TEST(ClipperPolygon, TheUpperBoundsAreNotReachedHoweverCoarseSinglePrecisionIs)
{
    for (const float bound : {16.0F, 4096.0F, 8192.0F, 32767.0F})
    {
        for (const float epsilon : {0.0001F, 0.0F, 0.5F})
        {
            Kanvo_Clipper::InitRegion(0, 0, bound, bound, epsilon);
            const Outline clipped = Clipped({{-1e6F, -1e6F}, {1e6F, -1e6F}, {1e6F, 1e6F}, {-1e6F, 1e6F}});
            ASSERT_EQ(clipped.size(), 4U);
            float most = 0.0F;
            for (const Corner& corner : clipped) most = std::max({most, corner.x, corner.y});
            EXPECT_LT(most, bound);
            EXPECT_LE(most, bound - epsilon);
            EXPECT_GE(most, std::min(std::nextafter(bound, 0.0F), bound - epsilon)) << "and no more is lost";
        }
    }
}

TEST(ClipperPolygon, RandomOutlinesStayInsideAndKeepTheirInside)
{
    const support::Seeds seeds(support::CasesOf(40000));
    support::Differences differences;
    std::uint64_t        points  = 0;
    std::size_t          longest = 0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice          dice(seed);
        const Outline outline = support::ThrowOutline(dice, {24, 20, dice.OneIn(2)});
        Region();
        const Outline clipped = Clipped(outline);
        longest               = std::max(longest, clipped.size());
        for (const Corner& corner : clipped)
            ASSERT_TRUE(corner.x >= 3.0F && corner.x <= 20.9999F && corner.y >= 2.0F && corner.y <= 16.9999F)
                << "seed " << seed << ' ' << support::Described(clipped);
        ASSERT_LE(clipped.size(), 4 * outline.size()) << "seed " << seed;
        ASSERT_TRUE(clipped.empty() || clipped.size() >= 3) << "seed " << seed;

        double far = 0.0;
        for (const Corner& corner : outline)
            far = std::max({far, std::fabs(static_cast<double>(corner.x)), std::fabs(static_cast<double>(corner.y))});
        if (far > 1e6) continue;  // there the points of a side are rounded to more than a pixel
        for (int count = 0; count < 60; ++count)
        {
            const double x      = 3.0 + dice.Next32() * (17.999 / 4294967296.0);
            const double y      = 2.0 + dice.Next32() * (14.999 / 4294967296.0);
            const Parity before = ParityAt(outline, x, y);
            const Parity after  = ParityAt(clipped, x, y);
            // single precision moves the corners on the border a little, and along level sides crossings by more
            if (before.nearest < 0.01 || after.nearest < 0.01) continue;
            ++points;
            if (before.inside != after.inside)
                differences.Note("seed %llu: (%.5f, %.5f) was %s", static_cast<unsigned long long>(seed), x, y,
                                 before.inside ? "inside" : "outside");
        }
    }
    EXPECT_LE(differences.Count() * 100000, points) << differences.First() << ", of " << points;
    EXPECT_GT(points, seeds.count * 20);
    std::printf("[ parity   ] %llu of %llu points on the other side of the clipped outline; at most %zu corners\n",
                static_cast<unsigned long long>(differences.Count()), static_cast<unsigned long long>(points), longest);
}

TEST(ClipperPolygon, AConvexOutlineGetsAtMostFourCornersAndKeepsItsSense)
{
    const support::Seeds seeds(support::CasesOf(50000));
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice          dice(seed);
        const Outline outline = support::ThrowConvex(dice, {24, 20, true});
        Region();
        const Outline clipped = Clipped(outline);
        ASSERT_LE(clipped.size(), outline.size() + 4) << "seed " << seed;
        const double before = support::TwiceTheArea(outline);
        const double after  = support::TwiceTheArea(clipped);
        ASSERT_LE(std::fabs(after), std::fabs(before) + 1e-3) << "seed " << seed;
        if (std::fabs(after) > 0.01)
        {
            ASSERT_EQ(before > 0, after > 0) << "seed " << seed;
        }
    }
}

TEST(ClipperPolygon, BothDirectionsOfASideAreCutAtTheSamePoints)
{
    Dice dice(6);
    for (int count = 0; count < 50000; ++count)
    {
        Corner a = {support::Uniform(dice, -30, 50), support::Uniform(dice, -30, 50)};
        Corner b = {support::Uniform(dice, -30, 50), support::Uniform(dice, -30, 50)};
        if (dice.OneIn(4)) b = {b.x * 1000.0F, b.y * 1000.0F};
        // the side in the first triangle forwards, in the second backwards; the third corner on either side of it
        Region();
        const Outline one   = Clipped({a, b, {100, -200}});
        const Outline other = Clipped({b, a, {-200, 100}});
        // both share the points where the side enters and leaves: on the line, and on the border
        const auto onLine = [&](const Outline& outline)
        {
            std::vector<std::pair<float, float>> points;
            for (const Corner& corner : outline)
            {
                const double dx   = static_cast<double>(b.x) - static_cast<double>(a.x);
                const double dy   = static_cast<double>(b.y) - static_cast<double>(a.y);
                const double away = ((static_cast<double>(corner.x) - static_cast<double>(a.x)) * dy -
                                     (static_cast<double>(corner.y) - static_cast<double>(a.y)) * dx) /
                                    std::hypot(dx, dy);
                if (std::fabs(away) < 2e-5) points.push_back({corner.x, corner.y});
            }
            std::sort(points.begin(), points.end());
            return points;
        };
        const auto pointsOne   = onLine(one);
        const auto pointsOther = onLine(other);
        if (pointsOne.size() < 2 || pointsOther.size() < 2) continue;  // one of them loses the corner of the region
        EXPECT_EQ(pointsOne, pointsOther) << support::Described({a, b});
        if (testing::Test::HasFailure()) break;
    }
}

TEST(ClipperPolygon, WhatIsNoOutlineOrNoRegionGivesNothing)
{
    const Outline good = {{4, 4}, {12, 4}, {8, 12}};
    Region();
    EXPECT_EQ(Clipped(good).size(), 3U);
    support::AssertCapture asserts;
    Tov_UInt               count = 7;
    Kanvo_Clipper::ClipPolygon(nullptr, 0, 8, count);
    EXPECT_EQ(count, 0U);
    count = 7;
    Kanvo_Clipper::ClipPolygon(nullptr, 5, 8, count);
    EXPECT_EQ(count, 0U);
    for (const Outline& outline : {Outline{{4, 4}}, Outline{{4, 4}, {9, 9}}, Outline{{4, NAN_VALUE}, {12, 4}, {8, 12}},
                                   Outline{{4, 4}, {INF, 4}, {8, 12}}, Outline{{4, 4}, {12, 4}, {8, -INF}}})
        EXPECT_TRUE(Clipped(outline).empty()) << support::Described(outline);
    for (const auto& [minX, minY, maxX, maxY] :
         {std::array<float, 4>{5, 5, 5, 9}, {5, 5, 9, 5}, {9, 5, 5, 9}, {5, 9, 9, 5}, {NAN_VALUE, 0, 9, 9}})
    {
        Kanvo_Clipper::InitRegion(minX, minY, maxX, maxY, 0.0001F);
        EXPECT_TRUE(Clipped(good).empty()) << minX << ' ' << minY << ' ' << maxX << ' ' << maxY;
    }
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(ClipperPolygon, FiniteCoordinatesOfAnySizeAreClipped)
{
    Region();
    constexpr float LARGEST = std::numeric_limits<float>::max();
    for (const float far : {1e6F, 1e20F, LARGEST})
    {
        const Outline clipped = Clipped({{-far, -far}, {far, -far}, {far, far}, {-far, far}});
        EXPECT_NEAR(support::TwiceTheArea(clipped), 2 * 18 * 15, 0.01) << far;
        // the diagonal through the region's middle
        const Outline half = Clipped({{12 - far, 9.5F - far}, {12 + far, 9.5F + far}, {-far, far}});
        EXPECT_GT(half.size(), 2U) << far;
        for (const Corner& corner : half) EXPECT_TRUE(corner.x >= 3 && corner.x < 21 && corner.y >= 2 && corner.y < 17);
    }
}

TEST(ClipperPolygon, AResultThatDoesNotFitAssertsAndIsNothing)
{
    // teeth that leave and come back, each with two more corners; the sides stick out above and below
    Region();
    const auto teeth = [](int count)
    {
        Outline outline;
        for (int tooth = 0; tooth < count; ++tooth)
        {
            const float x = 4.0F + 16.0F * static_cast<float>(tooth) / static_cast<float>(count);
            outline.push_back({x, tooth % 2 == 0 ? -5.0F : 25.0F});
        }
        return outline;
    };
    support::AssertCapture asserts;
    const Tov_UInt         room = Kanvo_PolyGetCorners();
    EXPECT_FALSE(Clipped(teeth(static_cast<int>(room) / 2 - 2)).empty());
    EXPECT_EQ(asserts.Count(), 0U);
    EXPECT_TRUE(Clipped(teeth(static_cast<int>(room))).empty());
    EXPECT_EQ(asserts.Take(), support::Messages{"polygon too large"});
    // what is counted is what is left: many corners outside are no trouble
    Outline far = {{4, 4}, {12, 4}};
    for (int index = 0; index < 5000; ++index)
        far.push_back({100.0F + static_cast<float>(index % 7), 10.0F + static_cast<float>(index % 11)});
    EXPECT_FALSE(Clipped(far).empty());
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(ClipperPolygon, VerticesAreReadAtAnyPitchAndAddressAndNotWritten)
{
    Region();
    const Outline         outline  = {{-3, 1}, {30, 3}, {12, 40}};
    const Outline         expected = Clipped(outline);
    constexpr std::size_t PITCH    = 13;
    support::Fence        fence(2 * PITCH + 8);
    for (std::size_t at = 0; at < 3; ++at) std::memcpy(fence.Data() + at * PITCH, &outline[at], 8);
    fence.MakeReadOnly();
    Tov_UInt                   count   = 0;
    const Kanvo_Coord2D* const clipped = Kanvo_Clipper::ClipPolygon(fence.Data(), 3, PITCH, count);
    ASSERT_EQ(count, expected.size());
    for (Tov_UInt at = 0; at < count; ++at)
    {
        EXPECT_EQ(clipped[at].x, expected[at].x);
        EXPECT_EQ(clipped[at].y, expected[at].y);
    }
}

TEST(ClipperPolygon, LinesAndPolygonsHaveRegionsOfTheirOwn)
{
    Region();
    Kanvo_Clipper::InitRegionV(0, 0, 5, 5, 0);
    EXPECT_EQ(Clipped({{4, 4}, {20, 4}, {8, 16}}).size(), 3U);
    Kanvo_Clipper::InitRegion(0, 0, 2, 2, 0);
    Kanvo_Vector2 a(1, 1);
    Kanvo_Vector2 b(5, 5);
    EXPECT_EQ(Kanvo_Clipper::ClipLine(a, b, false, 0, 0, 0, 0), Tov_Flag{CF_VIS});
}
