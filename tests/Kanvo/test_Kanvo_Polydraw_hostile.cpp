// Polygons that are meant to hurt: coordinates that are no numbers or far away, none or very many corners, broken promises
// of POLY_NOCLIP. Nothing outside the clip rectangle may change, nothing beyond the pixels be touched, and the time is that
// of what can be seen. With every renderer; and meshes, which must not leave gaps.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CrashNote.h"
#include "Kanvo_PolyBuffers.h"
#include "Kanvo_Texture.h"
#include "PolyStage.h"
#include "RandomPolygons.h"
#include "Reference_PolygonRule.h"

namespace
{

using reference::Corner;
using reference::Outline;
using support::Dice;
using support::PolyStage;

constexpr std::uint32_t WHITE = 0xFFFFFFFFU, BLACK = 0xFF000000U;
constexpr float         INF       = std::numeric_limits<float>::infinity();
constexpr float         NAN_VALUE = std::numeric_limits<float>::quiet_NaN();
constexpr float         LARGEST   = std::numeric_limits<float>::max();
constexpr float         SMALLEST  = std::numeric_limits<float>::denorm_min();

// Under sanitizers and on an emulated processor everything takes longer.
const double MOST_SECONDS = support::Slow() ? 20.0 : 1.0;

constexpr Tov_Flag RENDERERS[] = {POLY_NONE, POLY_ANTIALIAS, POLY_USE_RENDERSTATE};

//! A stage with a small clip rectangle and a texture that POLY_USE_RENDERSTATE draws with.
class HostileStage : public PolyStage
{
public:
    explicit HostileStage(support::Against end = support::Against::BackFence) : PolyStage(40, 32, BLACK, end)
    {
        m_green.assign(64, 0xFF00FF00U);
        m_picture.Lock();
        m_texture.SetBitmap(&m_picture);
        m_texture.Use(State());
        State().Set(TEXTUREENABLE, true);
    }

    //! How long the polygon takes, in seconds of this program.
    double Draw(const Outline& outline, Tov_Flag flags)
    {
        std::vector<Kanvo_Coord2D> vertices = support::Vertices(outline);
        const std::clock_t         start    = std::clock();
        Bitmap().DrawPolygon(vertices.data(), static_cast<Tov_UInt>(vertices.size()), WHITE, flags);
        return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    }

    //! Pixels outside the clip rectangle that are not black.
    int OutsideClip()
    {
        int count = 0;
        for (int y = 0; y < 32; ++y)
        {
            for (int x = 0; x < 40; ++x)
            {
                const bool inside =
                    x >= static_cast<int>(Bitmap().GetClipMinX()) && x <= static_cast<int>(Bitmap().GetClipMaxX()) &&
                    y >= static_cast<int>(Bitmap().GetClipMinY()) && y <= static_cast<int>(Bitmap().GetClipMaxY());
                count += !inside && At(x, y) != BLACK;
            }
        }
        return count;
    }

private:
    std::vector<std::uint32_t> m_green;
    Kanvo_BitmapARGB32         m_picture{nullptr, 8, 8, BBT_RAM, (m_green.assign(64, 0xFF00FF00U), m_green.data())};
    Kanvo_Texture              m_texture;
};

std::vector<float> Values()
{
    return {NAN_VALUE, INF,      -INF,      LARGEST, -LARGEST,  1e30F,     -1e30F,    2147483648.0F, -2147483904.0F,
            1e9F,      -1e9F,    1e6F,      -1e6F,   32768.0F,  -32769.0F, 32767.0F,  65536.0F,      0.0F,
            -0.0F,     SMALLEST, -SMALLEST, 0.5F,    39.99999F, 40.0F,     31.99999F, 32.0F,         20.0F};
}

}  // namespace

TEST(PolydrawHostile, AnyTwoCoordinatesOfATriangleMayBeAnything)
{
    support::CrashNote       crash("AnyTwoCoordinatesOfATriangleMayBeAnything");
    support::AssertCapture   asserts;
    HostileStage             stage;
    const std::vector<float> values = Values();
    std::uint64_t            number = 0;
    double                   most   = 0.0;
    for (const bool narrow : {false, true})
    {
        if (narrow) stage.Bitmap().SetCliprect(7, 5, 30, 21);
        for (const Tov_Flag renderer : RENDERERS)
        {
            for (const Tov_Flag more :
                 {Tov_Flag{0}, Tov_Flag{POLY_NOCLIP}, Tov_Flag{POLY_EXTRUDE}, POLY_NOCLIP | POLY_EXTRUDE})
            {
                for (const float one : values)
                {
                    for (const float other : values)
                    {
                        const Outline outlines[] = {{{one, 3}, {other, 28}, {20, 15}},
                                                    {{3, one}, {36, other}, {20, 15}},
                                                    {{one, other}, {36, 4}, {20, 25}},
                                                    {{one, one}, {other, other}, {20, 5}}};
                        for (const Outline& outline : outlines)
                        {
                            crash.InCase(++number);
                            stage.Fill(BLACK);
                            asserts.Clear();
                            most = std::max(most, stage.Draw(outline, renderer | more));
                            if ((more & POLY_NOCLIP) == 0)
                            {
                                ASSERT_EQ(stage.OutsideClip(), 0)
                                    << support::Described(outline) << std::hex << (renderer | more);
                                ASSERT_EQ(asserts.Count(), 0U) << asserts.Reports()[0].message;
                            }
                            bool finite = true;
                            for (const Corner& corner : outline)
                                finite = finite && std::isfinite(corner.x) && std::isfinite(corner.y);
                            if (!finite)
                            {
                                ASSERT_EQ(stage.Count(), 0)
                                    << support::Described(outline) << std::hex << (renderer | more);
                            }
                        }
                    }
                }
            }
        }
    }
    EXPECT_TRUE(stage.IsSlackUntouched());
    EXPECT_LT(most, MOST_SECONDS);
}

TEST(PolydrawHostile, BrokenPromisesStayInsideTheBitmap)
{
    const support::Seeds   seeds(support::CasesOf(100000));
    support::CrashNote     crash("BrokenPromisesStayInsideTheBitmap");
    support::AssertCapture asserts;
    HostileStage           front(support::Against::FrontFence);
    HostileStage           back;
    double                 most = 0.0;
    std::uint64_t          slow = 0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        crash.InCase(seed);
        Dice           dice(seed);
        const Outline  outline = support::ThrowOutline(dice, {40, 32, false});
        const Tov_Flag flags   = dice.Of({POLY_NONE, POLY_ANTIALIAS, POLY_USE_RENDERSTATE}) | POLY_NOCLIP |
                               (dice.OneIn(4) ? POLY_EXTRUDE : 0U);
        const double seconds = (dice.OneIn(2) ? front : back).Draw(outline, flags);
        if (seconds > most)
        {
            most = seconds;
            slow = seed;
        }
        Kanvo_AAEdgeBucket** const list = Kanvo_PolyGetScanBuffer(34);
        for (int row = 0; row < 34; ++row) ASSERT_EQ(list[row], nullptr) << "seed " << seed << ": left in row " << row;
    }
    EXPECT_TRUE(front.IsSlackUntouched());
    EXPECT_TRUE(back.IsSlackUntouched());
    EXPECT_GT(front.Count(), 100);
    EXPECT_LT(most, MOST_SECONDS) << "seed " << slow;
}

TEST(PolydrawHostile, ClippedPolygonsFromAnywhereStayInsideTheClipRectangle)
{
    const support::Seeds   seeds(support::CasesOf(150000));
    support::CrashNote     crash("ClippedPolygonsFromAnywhereStayInsideTheClipRectangle");
    support::AssertCapture asserts;
    HostileStage           stage;
    stage.Bitmap().SetCliprect(7, 5, 30, 21);
    double most = 0.0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        crash.InCase(seed);
        Dice          dice(seed);
        const Outline outline = support::ThrowOutline(dice, {40, 32, false});
        const auto    flags   = dice.Of({POLY_NONE, POLY_ANTIALIAS, POLY_USE_RENDERSTATE});
        most                  = std::max(most, stage.Draw(outline, flags));
        if (seed % 64 == 0)
        {
            ASSERT_EQ(stage.OutsideClip(), 0) << "seed " << seed - 63 << " to " << seed;
        }
    }
    EXPECT_EQ(stage.OutsideClip(), 0);
    EXPECT_TRUE(stage.IsSlackUntouched());
    EXPECT_EQ(asserts.Count(), 0U);
    EXPECT_LT(most, MOST_SECONDS);
}

TEST(PolydrawHostile, WhatCannotBeSeenTakesNoTime)
{
    // the same visible part, a million times as large
    HostileStage stage;
    for (const Tov_Flag renderer : RENDERERS)
    {
        double total = 0.0;
        for (int count = 0; count < 20; ++count)
        {
            total += stage.Draw({{-1e9F, -3e9F}, {2e9F, 15}, {-1e9F, 3e9F}}, renderer);
            total += stage.Draw({{20, -1e30F}, {1e30F, 1e30F}, {-1e30F, 1e30F}}, renderer);
        }
        EXPECT_LT(total, MOST_SECONDS) << std::hex << renderer;
        EXPECT_GT(stage.Count(), 100);
    }
}

// ---- corners without end --------------------------------------------------------------------------------------------

namespace
{

//! A circle of many corners, or, from the middle and back, a star.
Outline Round(int count, bool star)
{
    Outline outline;
    for (int index = 0; index < count; ++index)
    {
        const double angle = 6.283185307179586 * index / count;
        const double away  = star && index % 2 == 0 ? 2.0 : 15.0;
        outline.push_back(
            {static_cast<float>(20.0 + away * std::cos(angle)), static_cast<float>(16.0 + away * std::sin(angle))});
    }
    return outline;
}

}  // namespace

TEST(PolydrawHostile, AHundredThousandCornersWithoutRoomAssertAndDrawNothing)
{
    const Outline          round = Round(100000, false);
    support::AssertCapture asserts;
    for (const Tov_Flag renderer : RENDERERS)
    {
        for (const Tov_Flag more : {Tov_Flag{0}, Tov_Flag{POLY_NOCLIP}, Tov_Flag{POLY_EXTRUDE}})
        {
            HostileStage stage;
            EXPECT_LT(stage.Draw(round, renderer | more), MOST_SECONDS);
            EXPECT_EQ(asserts.Take(), support::Messages{"polygon too large"}) << std::hex << (renderer | more);
            EXPECT_EQ(stage.Count(), 0);
        }
    }
}

TEST(PolydrawHostile, AHundredThousandCornersAreDrawnInBoundedTime)
{
    Kanvo                  library;
    support::AssertCapture asserts;
    ASSERT_TRUE(library.ReservePolygons(500000, 64));
    // A square, walked around 25,001 times: 50,002 sides across each row, and by the even-odd rule filled. Sides that start
    // together are put in order one by one, which takes the square of their number: in full only once.
    const auto squares = [](int rounds)
    {
        Outline outline;
        for (int round = 0; round < rounds; ++round)
            outline.insert(outline.end(), {{9, 7}, {25, 7}, {25, 17}, {9, 17}});
        return outline;
    };
    for (const Tov_Flag renderer : RENDERERS)
    {
        for (const Tov_Flag more : {Tov_Flag{0}, Tov_Flag{POLY_NOCLIP}})
        {
            HostileStage stage;
            const bool   all = renderer == POLY_NONE && more == 0 && !support::Slow();
            EXPECT_LT(stage.Draw(squares(all ? 25001 : 2501), renderer | more), 10 * MOST_SECONDS);
            EXPECT_EQ(stage.Count(), 160) << std::hex << (renderer | more);
            EXPECT_LT(stage.Draw(Round(20000, true), renderer | more), 10 * MOST_SECONDS);
            EXPECT_TRUE(stage.IsSlackUntouched());
        }
    }
    HostileStage stage;
    stage.Draw(Round(100000, false), POLY_ANTIALIAS);
    EXPECT_NEAR(stage.Count(), 707, 80) << "a circle of radius 15 and its rim";
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(PolydrawHostile, ManySidesInDisorderAcrossTheSameRowsTakeBoundedTime)
{
    Kanvo library;
    ASSERT_TRUE(library.ReservePolygons(40000, 64));
    Dice    dice(3);
    Outline chaos;
    for (int corner = 0; corner < 8000; ++corner)
    {
        const float x = support::Uniform(dice, -10, 50);
        chaos.push_back({x, corner % 2 == 0 ? support::Uniform(dice, 10, 12) : support::Uniform(dice, 12, 14)});
    }
    for (const Tov_Flag renderer : RENDERERS)
    {
        HostileStage stage;
        stage.Bitmap().SetCliprect(7, 5, 30, 21);
        EXPECT_LT(stage.Draw(chaos, renderer), 10 * MOST_SECONDS);
        EXPECT_EQ(stage.OutsideClip(), 0);
        EXPECT_TRUE(stage.IsSlackUntouched());
    }
}

TEST(PolydrawHostile, CornersThatAllLieOnOnePointOrOneLineDrawNothing)
{
    for (const Tov_Flag renderer : RENDERERS)
    {
        for (const Tov_Flag more : {Tov_Flag{0}, Tov_Flag{POLY_NOCLIP}})
        {
            HostileStage stage;
            for (const std::size_t count :
                 {std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{40}, std::size_t{500}})
            {
                stage.Draw(Outline(count, Corner{12.3F, 9.7F}), renderer | more);
                Outline level;
                Outline upright;
                Outline there;
                for (std::size_t index = 0; index < count; ++index)
                {
                    const float at = static_cast<float>(index % 30);
                    level.push_back({at, 9.6F});
                    upright.push_back({9.6F, at});
                    there.push_back({at, at});
                }
                stage.Draw(level, renderer | more);
                stage.Draw(upright, renderer | more);
                stage.Draw(there, renderer | more);
            }
            EXPECT_EQ(stage.Count(), 0) << std::hex << (renderer | more);
            EXPECT_TRUE(stage.IsSlackUntouched());
        }
    }
}

// ---- sides that shapes have in common -------------------------------------------------------------------------------

namespace
{

//! Crossings of the spokes with the middle of a row, in order; empty where a spoke is nearly level there.
std::vector<double> CrossingsOf(const Corner& middle, const Outline& rim, int row)
{
    std::vector<double> crossings;
    for (const Corner& corner : rim)
    {
        const double top    = std::min(static_cast<double>(middle.y), static_cast<double>(corner.y));
        const double bottom = std::max(static_cast<double>(middle.y), static_cast<double>(corner.y));
        const double y      = row + 0.5;
        if (y < top || y > bottom || bottom == top) continue;
        crossings.push_back(static_cast<double>(middle.x) +
                            (y - static_cast<double>(middle.y)) *
                                (static_cast<double>(corner.x) - static_cast<double>(middle.x)) /
                                (static_cast<double>(corner.y) - static_cast<double>(middle.y)));
    }
    std::sort(crossings.begin(), crossings.end());
    return crossings;
}

}  // namespace

// What clipping leaves of a side is dropped by the scan where it is no higher than a hundredth, and where it crosses a row
// the sides next to it are off by one row then: meshes in which this happens are counted and left out.
//
// Triangles around a point tile the whole picture and more. Where each of them is more than a pixel wide, every pixel is
// painted by one of them, at sides in common by one or both.
TEST(PolydrawHostile, ShapesThatShareASideLeaveNoGap)
{
    const support::Seeds seeds(support::CasesOf(15000));
    support::Differences gaps;
    std::uint64_t        looked = 0;
    std::uint64_t        twice  = 0;
    std::uint64_t        flats  = 0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice         dice(seed);
        const Corner middle = {support::Uniform(dice, 2, 38), support::Uniform(dice, 2, 30)};
        const bool   grid   = dice.OneIn(3);
        const Corner centre = grid ? Corner{std::floor(middle.x), std::floor(middle.y * 2) / 2} : middle;
        const int    count  = dice.Between(4, 12);
        // a rim that contains the picture: directions in order, far enough
        Outline rim;
        for (int spoke = 0; spoke < count; ++spoke)
        {
            const float turn =
                (static_cast<float>(spoke) + support::Uniform(dice, 0.0F, 0.4F)) * 4.0F / static_cast<float>(count);
            const float part = turn - std::floor(turn);
            Corner      way{1.0F - part, part};
            for (int quarter = static_cast<int>(turn); quarter > 0; --quarter) way = {-way.y, way.x};
            const float away = dice.Of({300.0F, 1000.0F, 12345.0F});
            rim.push_back({centre.x + away * way.x, centre.y + away * way.y});
        }
        PolyStage  stage(40, 32);
        const bool narrowed = dice.OneIn(2);
        if (narrowed) stage.Bitmap().SetCliprect(5, 4, 33, 28);
        bool flat = false;
        stage.Fill(0xFF000001U);
        // every triangle adds one to what it paints, so that the paint tells how often: through a texture of ones
        std::vector<std::uint32_t> one(1, 0x00000001U);
        Kanvo_BitmapARGB32         picture(nullptr, 1, 1, BBT_RAM, one.data());
        Kanvo_Texture              texture(&picture);
        texture.Use(stage.State());
        stage.State().Set(TEXTUREENABLE, true);
        stage.State().Set(TEXTUREBLENDING, TB_ADD);
        for (int spoke = 0; spoke < count; ++spoke)
        {
            const Corner& next = rim[static_cast<std::size_t>((spoke + 1) % count)];
            Outline       triangle{centre, rim[static_cast<std::size_t>(spoke)], next};
            if (dice.OneIn(2)) std::reverse(triangle.begin(), triangle.end());
            std::rotate(triangle.begin(), triangle.begin() + dice.Between(0, 2), triangle.end());
            stage.Polygon(triangle, WHITE, POLY_USE_RENDERSTATE);
            Kanvo_Clipper::InitRegion(narrowed ? 5.0F : 0.0F, narrowed ? 4.0F : 0.0F, narrowed ? 34.0F : 40.0F,
                                      narrowed ? 29.0F : 32.0F, 0.0001F);
            flat = flat || reference::HasFlatCrossing(support::Clipped(triangle), 32);
        }
        flats += flat;
        if (flat) continue;
        const int left  = static_cast<int>(stage.Bitmap().GetClipMinX());
        const int right = static_cast<int>(stage.Bitmap().GetClipMaxX());
        for (int y = static_cast<int>(stage.Bitmap().GetClipMinY());
             y <= static_cast<int>(stage.Bitmap().GetClipMaxY()); ++y)
        {
            std::vector<double> crossings = CrossingsOf(centre, rim, y);
            crossings.insert(crossings.begin(), left);
            crossings.push_back(right + 1.0);
            std::sort(crossings.begin(), crossings.end());
            bool narrow = std::fabs(y + 0.5 - static_cast<double>(centre.y)) < 0.02;
            for (std::size_t at = 0; at + 1 < crossings.size(); ++at)
            {
                const double inside =
                    std::min(crossings[at + 1], right + 1.0) - std::max(crossings[at], static_cast<double>(left));
                narrow = narrow || (inside > 0.0 && inside <= 1.0);
            }
            if (narrow) continue;
            for (int x = left; x <= right; ++x)
            {
                ++looked;
                const std::uint32_t times = (stage.At(x, y) & 0xFFU) - 1;
                twice += times == 2;
                if (times < 1 || times > 2)
                    gaps.Note("seed %llu: pixel (%d, %d) painted %u times, centre (%.9g, %.9g)",
                              static_cast<unsigned long long>(seed), x, y, times, static_cast<double>(centre.x),
                              static_cast<double>(centre.y));
            }
        }
    }
    EXPECT_EQ(gaps.Count(), 0U) << gaps.First();
    EXPECT_GT(looked, seeds.count * 100);
    EXPECT_LT(flats * 20, seeds.count);
    std::printf(
        "[ mesh     ] %llu pixels, each painted once but %llu painted by both neighbours; %llu meshes left out\n",
        static_cast<unsigned long long>(looked), static_cast<unsigned long long>(twice),
        static_cast<unsigned long long>(flats));
}
