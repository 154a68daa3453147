// Tests of extruding: every side half a pixel outwards, corners where the sides meet, sharp ones held, nothing else
// touched; and that shapes side by side then leave no seam.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "Kanvo_PolyExtrude.h"
#include "PolyStage.h"
#include "RandomPolygons.h"

namespace
{

using reference::Corner;
using reference::Outline;
using support::Dice;

Outline Extruded(const Outline& outline, Tov_Flag hints = 0)
{
    std::vector<Kanvo_Coord2D> vertices = support::Vertices(outline);
    Kanvo_Extrude_Polygon(vertices.data(), sizeof(Kanvo_Coord2D), static_cast<Tov_UInt>(vertices.size()), hints);
    Outline result;
    for (const Kanvo_Coord2D& vertex : vertices) result.push_back({vertex.x, vertex.y});
    return result;
}

bool Same(const Outline& one, const Outline& other)
{
    return one.size() == other.size() &&
           std::equal(one.begin(), one.end(), other.begin(),
                      [](const Corner& a, const Corner& b) { return std::memcmp(&a, &b, sizeof a) == 0; });
}

//! How far point lies outside the line from a to b of an outline that runs clockwise (turn 1) or the other way (-1).
double Outside(const Corner& a, const Corner& b, const Corner& point, double turn)
{
    const double dx     = static_cast<double>(b.x) - static_cast<double>(a.x);
    const double dy     = static_cast<double>(b.y) - static_cast<double>(a.y);
    const double length = std::hypot(dx, dy);
    return turn *
           ((static_cast<double>(point.x) - static_cast<double>(a.x)) * dy -
            (static_cast<double>(point.y) - static_cast<double>(a.y)) * dx) /
           length;
}

double Distance(const Corner& a, const Corner& b)
{
    return std::hypot(static_cast<double>(a.x) - static_cast<double>(b.x),
                      static_cast<double>(a.y) - static_cast<double>(b.y));
}

constexpr float INF       = std::numeric_limits<float>::infinity();
constexpr float NAN_VALUE = std::numeric_limits<float>::quiet_NaN();

}  // namespace

TEST(PolyExtrude, ASquareGrowsByHalfAPixelOnEverySide)
{
    const Outline grown = {{9.5F, 9.5F}, {20.5F, 9.5F}, {20.5F, 20.5F}, {9.5F, 20.5F}};
    EXPECT_TRUE(Same(Extruded({{10, 10}, {20, 10}, {20, 20}, {10, 20}}), grown));
    Outline other = grown;
    std::reverse(other.begin(), other.end());
    EXPECT_TRUE(Same(Extruded({{10, 20}, {20, 20}, {20, 10}, {10, 10}}), other));
}

TEST(PolyExtrude, EveryCornerLiesHalfAPixelOutsideBothItsSidesUnlessItIsSharp)
{
    const support::Seeds seeds(20000);
    std::uint64_t        sharp = 0;
    std::uint64_t        plain = 0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice          dice(seed);
        const Outline outline = dice.OneIn(2) ? support::ThrowConvex(dice, {400, 300, true})
                                              : support::ThrowConcave(dice, {400, 300, true});
        const double  area    = support::TwiceTheArea(outline);
        if (std::fabs(area) < 1.0) continue;
        const double      turn  = area > 0.0 ? 1.0 : -1.0;
        const Outline     grown = Extruded(outline);
        const std::size_t count = outline.size();
        ASSERT_EQ(grown.size(), count);
        for (std::size_t at = 0; at < count; ++at)
        {
            const Corner& before = outline[(at + count - 1) % count];
            const Corner& here   = outline[at];
            const Corner& after  = outline[(at + 1) % count];
            if (Distance(before, here) < 0.01 || Distance(here, after) < 0.01) continue;
            const double moved = Distance(here, grown[at]);
            ASSERT_LE(moved, 2.0 + 1e-3) << "seed " << seed << " corner " << at;
            if (moved < 1.99)
            {
                ++plain;
                ASSERT_NEAR(Outside(before, here, grown[at], turn), 0.5, 1e-3) << "seed " << seed << " corner " << at;
                ASSERT_NEAR(Outside(here, after, grown[at], turn), 0.5, 1e-3) << "seed " << seed << " corner " << at;
            }
            else
            {
                // held: on the line that halves the angle, so as far from one side as from the other, and no inward move
                ++sharp;
                const double one   = Outside(before, here, grown[at], turn);
                const double other = Outside(here, after, grown[at], turn);
                ASSERT_NEAR(one, other, 2e-3) << "seed " << seed << " corner " << at;
                ASSERT_GE(one, -1e-3) << "seed " << seed << " corner " << at;
                ASSERT_LE(one, 0.5 + 1e-3) << "seed " << seed << " corner " << at;
            }
        }
    }
    EXPECT_GT(plain, seeds.count);
    EXPECT_GT(sharp, seeds.count / 200);
}

TEST(PolyExtrude, ASpikeMovesForwardByTwoPixels)
{
    // a needle to the right: its tip must not run away, nor fall back
    const Outline needle = {{0, 9.99F}, {100, 10}, {0, 10.01F}};
    const Outline grown  = Extruded(needle);
    EXPECT_NEAR(grown[1].x, 102.0F, 0.01F);
    EXPECT_NEAR(grown[1].y, 10.0F, 0.01F);
    // and one without any width
    const Outline line = Extruded({{0, 10}, {100, 10}, {0, 10}, {-5, 30}});
    EXPECT_LE(Distance(line[1], {100, 10}), 2.001);
}

TEST(PolyExtrude, CornersOnALineMoveStraightOut)
{
    const Outline grown = Extruded({{10, 10}, {15, 10}, {20, 10}, {20, 20}, {10, 20}});
    EXPECT_TRUE(Same(grown, {{9.5F, 9.5F}, {15, 9.5F}, {20.5F, 9.5F}, {20.5F, 20.5F}, {9.5F, 20.5F}}));
}

TEST(PolyExtrude, CornersThatCoincideMoveAlike)
{
    const Outline single = Extruded({{10, 10}, {20, 12}, {17, 20}, {11, 18}});
    const Outline grown  = Extruded({{10, 10}, {10, 10}, {20, 12}, {17, 20}, {17, 20}, {17, 20}, {11, 18}, {10, 10}});
    EXPECT_TRUE(Same(grown, {single[0], single[0], single[1], single[2], single[2], single[2], single[3], single[0]}));
    for (const Outline& point : {Outline{{3, 4}, {3, 4}, {3, 4}}, Outline(40, Corner{1, 1})})
        EXPECT_TRUE(Same(Extruded(point), point));
}

TEST(PolyExtrude, HintsDecideTheSideAndAreaWithoutThem)
{
    const Outline clockwise = {{10, 10}, {20, 10}, {20, 20}, {10, 20}};
    const double  area      = support::TwiceTheArea(clockwise);
    EXPECT_GT(support::TwiceTheArea(Extruded(clockwise, POLY_HINT_CW)), area);
    EXPECT_LT(support::TwiceTheArea(Extruded(clockwise, POLY_HINT_CCW)), area);
    EXPECT_GT(support::TwiceTheArea(Extruded(clockwise, POLY_HINT_CW | POLY_HINT_CCW)), area);
    EXPECT_TRUE(Same(Extruded(clockwise, 0xFFFFFFFFU & ~Tov_Flag{POLY_HINT_CCW}), Extruded(clockwise, POLY_HINT_CW)));
    Outline other = clockwise;
    std::reverse(other.begin(), other.end());
    EXPECT_GT(-support::TwiceTheArea(Extruded(other, POLY_HINT_CCW)), area);
    EXPECT_LT(-support::TwiceTheArea(Extruded(other, POLY_HINT_CW)), area);
    EXPECT_GT(-support::TwiceTheArea(Extruded(other)), area);
}

TEST(PolyExtrude, OnlyXAndYAreRewritten)
{
    constexpr std::size_t     PITCH   = 19;
    const Outline             outline = {{10, 10}, {20, 11}, {18, 25}};
    const Outline             grown   = Extruded(outline);
    support::Fence            fence(2 * PITCH + 8);
    std::vector<std::uint8_t> before(fence.Size());
    for (std::size_t at = 0; at < 3; ++at) std::memcpy(fence.Data() + at * PITCH, &outline[at], 8);
    std::memcpy(before.data(), fence.Data(), fence.Size());
    Kanvo_Extrude_Polygon(fence.Data(), PITCH, 3, 0);
    for (std::size_t at = 0; at < fence.Size(); ++at)
    {
        if (at % PITCH >= 8)
        {
            EXPECT_EQ(fence.Data()[at], before[at]) << at;
        }
    }
    for (std::size_t at = 0; at < 3; ++at) EXPECT_EQ(std::memcmp(fence.Data() + at * PITCH, &grown[at], 8), 0) << at;
    EXPECT_TRUE(fence.IsSlackUntouched());
}

TEST(PolyExtrude, WhatIsNoOutlineIsLeftAlone)
{
    Kanvo_Extrude_Polygon(nullptr, 8, 0, 0);
    Kanvo_Extrude_Polygon(nullptr, 8, 3, 0);
    for (const Outline& outline : {Outline{}, Outline{{1, 2}}, Outline{{1, 2}, {30, 4}},
                                   Outline{{1, 2}, {30, NAN_VALUE}, {4, 40}}, Outline{{INF, 2}, {30, 4}, {4, 40}},
                                   Outline{{1, 2}, {30, 4}, {4, -INF}}, Outline{{1, 2}, {1e30F, 4}, {4, 40}}})
        EXPECT_TRUE(Same(Extruded(outline), outline)) << support::Described(outline);
}

TEST(PolyExtrude, ResultsStayFiniteForAnyFiniteOutline)
{
    const support::Seeds seeds(50000);
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice          dice(seed);
        const Outline outline = support::ThrowOutline(dice, {40, 32, false});
        const Outline grown   = Extruded(outline, dice.Of<Tov_Flag>({0, POLY_HINT_CW, POLY_HINT_CCW}));
        for (std::size_t at = 0; at < grown.size(); ++at)
        {
            ASSERT_TRUE(std::isfinite(grown[at].x) && std::isfinite(grown[at].y)) << "seed " << seed;
            // by 2 pixels, and what single precision adds to that far away
            const double reach = 2.001 + 3e-7 * (std::fabs(static_cast<double>(outline[at].x)) +
                                                 std::fabs(static_cast<double>(outline[at].y)));
            ASSERT_LE(Distance(grown[at], outline[at]), reach) << "seed " << seed << " corner " << at;
        }
    }
}

TEST(PolyExtrude, ShapesSideBySideOverlapInsteadOfLeavingASeam)
{
    Dice dice(9);
    for (int turn = 0; turn < 300; ++turn)
    {
        const float   top    = support::Uniform(dice, 8, 24);
        const float   bottom = support::Uniform(dice, 8, 24);
        const Outline left   = {{1, 2}, {top, 2}, {bottom, 30}, {1, 30}};
        const Outline right  = {{top, 2}, {31, 2}, {31, 30}, {bottom, 30}};
        const auto    seam   = [&](Tov_Flag flags)
        {
            support::PolyStage stage(32, 32, 0);
            stage.Polygon(left, 0xFFFFFFFFU, POLY_ANTIALIAS | flags);
            stage.Polygon(right, 0xFFFFFFFFU, POLY_ANTIALIAS | flags);
            unsigned least = 255;
            for (int y = 4; y < 28; ++y)
                for (int x = 3; x < 29; ++x) least = std::min<unsigned>(least, stage.At(x, y) >> 24);
            return least;
        };
        // of a slanted side's pixel half a pixel leaves out a corner, which the other shape covers all but whole
        EXPECT_LT(seam(0), 240U) << top << ' ' << bottom;
        EXPECT_GE(seam(POLY_EXTRUDE), 254U) << top << ' ' << bottom;
    }
}
