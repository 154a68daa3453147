// Random anti-aliased polygons: their coverage against exact areas, 100,000 convex, concave and self-intersecting ones; and
// the scan against a second one that starts from the same sides and tables, blend by blend. Every case has a seed of its
// own and can be replayed alone (Dice.h).
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CrashNote.h"
#include "Kanvo_PolydrawAA.h"
#include "Kanvo_PolySetupAA.h"
#include "Kanvo_Tables.h"
#include "NaiveMix.h"
#include "PolyStage.h"
#include "RandomPolygons.h"
#include "Reference_PolygonAA.h"
#include "Reference_PolygonRule.h"

namespace
{

using reference::Outline;
using support::Dice;

constexpr std::uint32_t WHITE = 0xFFFFFFFFU;

enum class Family
{
    Convex,
    Concave,
    Crossing,
    OnGrid,
    Triangle
};
constexpr const char* FAMILIES[] = {"convex", "concave", "crossing", "on a grid", "triangles"};

//! Inside 40 x 40 and, where it is small, not below what its renderer is made for: areas of a few pixels, no hairlines.
Outline ThrowShape(Dice& dice, Family family)
{
    if (family == Family::Convex) return support::ThrowConvex(dice, {40, 40, true});
    if (family == Family::Concave) return support::ThrowConcave(dice, {40, 40, true});
    const int   count = family == Family::Triangle ? 3 : dice.Between(3, 7);
    const float steps = dice.Of({1.0F, 2.0F, 4.0F, 8.0F});
    const float size  = support::Uniform(dice, 12, 40);
    const float left  = support::Uniform(dice, 0, 40 - size);
    const float top   = support::Uniform(dice, 0, 40 - size);
    Outline     outline;
    for (int corner = 0; corner < count; ++corner)
    {
        const float x = left + support::Uniform(dice, 0, size);
        const float y = top + support::Uniform(dice, 0, size);
        if (family == Family::OnGrid)
            outline.push_back({std::floor(x * steps) / steps, std::floor(y * steps) / steps});
        else
            outline.push_back({x, y});
    }
    return outline;
}

struct Errors
{
    double        squares = 0.0;
    std::uint64_t pixels  = 0;
    double        most    = 0.0;
    std::uint64_t seed    = 0;

    double Rms() const { return pixels == 0 ? 0.0 : std::sqrt(squares / static_cast<double>(pixels)); }
    void   Add(double error, std::uint64_t ofSeed)
    {
        squares += error * error;
        ++pixels;
        if (std::fabs(error) > most)
        {
            most = std::fabs(error);
            seed = ofSeed;
        }
    }
};

}  // namespace

TEST(PolydrawAARandom, CoverageIsNearTheExactAreaAndExactInsideAndOutside)
{
    constexpr int        SIZE = 40;
    const support::Seeds seeds(support::CasesOf(100000));
    support::CrashNote   crash("CoverageIsNearTheExactAreaAndExactInsideAndOutside");
    support::PolyStage   stage(SIZE, SIZE, 0);
    reference::ExactArea exact(SIZE, SIZE);
    support::Differences streaks;
    Errors               all;
    Errors               of[5];
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        crash.InCase(seed);
        Dice          dice(seed);
        const auto    family  = static_cast<Family>(seed % 5);
        const Outline outline = ThrowShape(dice, family);
        stage.Fill(0);
        stage.Polygon(outline, WHITE, POLY_ANTIALIAS);
        exact.Cover(outline);
        exact.Touch(outline, 0.0);
        for (int y = 0; y < SIZE; ++y)
        {
            for (int x = 0; x < SIZE; ++x)
            {
                const int    got  = static_cast<int>(stage.At(x, y) >> 24);
                const double area = exact.At(x, y);
                if (area > 1e-9 && area < 1.0 - 1e-9)
                {
                    const double error = got - 255.0 * area;
                    all.Add(error, seed);
                    of[static_cast<int>(family)].Add(error, seed);
                }
                else if (!exact.IsTouched(x, y) && got != (area > 0.5 ? 255 : 0))
                {
                    streaks.Note("seed %llu: (%d, %d) is %d, not %d: %.160s", static_cast<unsigned long long>(seed), x,
                                 y, got, area > 0.5 ? 255 : 0, support::Described(outline).c_str());
                }
                else if (std::fabs(got - 255.0 * area) > 40.0)
                {
                    streaks.Note("seed %llu: (%d, %d) is %d, not %.0f: %.160s", static_cast<unsigned long long>(seed),
                                 x, y, got, 255.0 * area, support::Described(outline).c_str());
                }
            }
        }
    }
    EXPECT_EQ(streaks.Count(), 0U) << streaks.First();
    EXPECT_LE(all.most, 40.0) << "seed " << all.seed;
    if (seeds.count < 1000) return;
    EXPECT_LE(all.Rms(), 4.5);
    EXPECT_GT(all.pixels, seeds.count * 10);
    std::printf("[ coverage ] %llu partly covered pixels: rms %.2f, at most %.1f (seed %llu)\n",
                static_cast<unsigned long long>(all.pixels), all.Rms(), all.most,
                static_cast<unsigned long long>(all.seed));
    for (int family = 0; family < 5; ++family)
        std::printf("[ coverage ] %10s: rms %.2f, at most %.1f (seed %llu)\n", FAMILIES[family], of[family].Rms(),
                    of[family].most, static_cast<unsigned long long>(of[family].seed));
}

// ---- the scan -------------------------------------------------------------------------------------------------------

namespace
{

//! The sides as the library sets them up, in the order in which its scan finds them.
std::vector<reference::SoftEdge> SidesOf(const Outline& outline, Tov_Int clipMaxX, Tov_Int clipMaxY)
{
    const std::vector<Kanvo_Coord2D> vertices = support::Vertices(outline);
    std::vector<Kanvo_AAEdgeBucket>  buckets(vertices.size());
    std::vector<Kanvo_AAEdgeBucket*> list(static_cast<std::size_t>(clipMaxY) + 1, nullptr);
    std::vector<reference::SoftEdge> edges;
    Tov_Int                          first = 0;
    if (vertices.empty() || !SetupAAPolygon(clipMaxY, clipMaxX, buckets.data(), vertices.data(), sizeof(Kanvo_Coord2D),
                                            list.data(), first, static_cast<Tov_UInt>(vertices.size())))
        return edges;
    for (std::size_t row = 0; row < list.size(); ++row)
    {
        for (const Kanvo_AAEdgeBucket* side = list[row]; side != nullptr; side = side->next)
            edges.push_back({static_cast<std::int64_t>(row), side->ybot, side->X1, side->normalmask, side->dist,
                             side->nx, side->ny, side->xslope, side->xipol, side->xsleft, side->xsright,
                             static_cast<std::uint32_t>(side->cliptop), static_cast<std::uint32_t>(side->clipbot),
                             static_cast<unsigned>(side->edgeflags)});
    }
    return edges;
}

}  // namespace

TEST(PolydrawAARandom, TheScanBlendsWhatTheNaiveScanBlends)
{
    const support::Seeds        seeds(support::CasesOf(200000));
    support::CrashNote          crash("TheScanBlendsWhatTheNaiveScanBlends");
    Kanvo                       library;
    Kanvo_Screen                screen(&library);
    support::Fence              arena(support::PolyTarget::ARENA_BYTES);
    const reference::SoftTables tables   = {g_auiEdgemasks, g_aucEdgeArea, g_aucPoplookup};
    std::uint64_t               blends   = 0;
    int                         failures = 0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count && failures < 3; ++seed)
    {
        crash.InCase(seed);
        Dice                dice(seed);
        support::PolyTarget target(&screen, arena, dice, 40);
        const Outline outline = support::ThrowOutline(dice, {target.Size().width, target.Size().height, dice.OneIn(2)});
        const std::uint32_t color = dice.NextHostileWord();
        const std::uint8_t  soft  = dice.NextByte();
        const std::uint8_t  alpha = dice.OneIn(2) ? std::uint8_t{255} : soft;

        const reference::Canvas canvas = target.Expected();
        if (target.InitRegion())
        {
            const Outline clipped = support::Clipped(outline);
            const auto    edges =
                SidesOf(clipped, static_cast<Tov_Int>(canvas.clipMaxX), static_cast<Tov_Int>(canvas.clipMaxY));
            for (const reference::SoftBlend& blend : reference::SoftBlends(edges, tables, canvas.clipMaxY, alpha))
            {
                ++blends;
                if (blend.alpha == 0) continue;  // no change, wherever it is
                ASSERT_TRUE(blend.x >= canvas.clipMinX && blend.x <= canvas.clipMaxX && blend.y >= canvas.clipMinY)
                    << "seed " << seed << ": the sides lead to (" << blend.x << ", " << blend.y << ")";
                std::uint32_t& pixel = canvas.pixels[blend.y * canvas.pitch + blend.x];
                pixel                = support::MixLinearSrcAlpha(pixel, color, blend.alpha);
            }
        }
        screen.GetRenderState().Set(ALPHAENABLE, alpha != 255);
        screen.GetRenderState().Set(ALPHA, alpha);
        const std::vector<Kanvo_Coord2D> vertices = support::Vertices(outline);
        target.Bitmap().DrawPolygon(vertices.data(), static_cast<Tov_UInt>(vertices.size()), color,
                                    POLY_ANTIALIAS | POLY_USE_RENDERSTATE);
        const std::string wrong = target.Difference();
        if (wrong.empty()) continue;
        ++failures;
        ADD_FAILURE() << "seed " << seed << ": " << wrong << ", colour " << std::hex << color << std::dec << ", alpha "
                      << int{alpha} << " on " << target.Described() << "\n  outline " << support::Described(outline);
    }
    if (seeds.count >= 1000)
    {
        EXPECT_GT(blends, seeds.count * 10);
    }
}

// On a large bitmap x drifts while it is stepped down a long side, and the last row is where that is put right.
TEST(PolydrawAARandom, LongSidesOnALargeBitmapAreThoseOfTheNaiveScanAndOfTheExactArea)
{
    constexpr int               WIDTH  = 800;
    constexpr int               HEIGHT = 480;
    const support::Seeds        seeds(support::CasesOf(600));
    support::CrashNote          crash("LongSidesOnALargeBitmapAreThoseOfTheNaiveScanAndOfTheExactArea");
    support::PolyStage          stage(WIDTH, HEIGHT, 0);
    reference::ExactArea        exact(WIDTH, HEIGHT);
    const reference::SoftTables tables = {g_auiEdgemasks, g_aucEdgeArea, g_aucPoplookup};
    std::vector<int>            expected;
    Errors                      errors;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        crash.InCase(seed);
        Dice    dice(seed);
        Outline outline;
        for (int corner = dice.Between(3, 5); corner > 0; --corner)
        {
            const float x = support::Uniform(dice, 0, WIDTH);
            const float y = support::Uniform(dice, 0, HEIGHT);
            outline.push_back({dice.OneIn(6) ? 799.99F : x, y});
        }
        stage.Fill(0);
        stage.Polygon(outline, WHITE, POLY_ANTIALIAS | POLY_NOCLIP);
        expected.assign(WIDTH * HEIGHT, 0);
        for (const reference::SoftBlend& blend :
             reference::SoftBlends(SidesOf(outline, WIDTH - 1, HEIGHT - 1), tables, HEIGHT - 1, 255))
            expected[static_cast<std::size_t>(blend.y * WIDTH + blend.x)] = blend.alpha;
        for (std::size_t at = 0; at < expected.size(); ++at)
        {
            ASSERT_EQ(static_cast<int>(stage.Words()[at] >> 24), expected[at])
                << "seed " << seed << ": (" << at % WIDTH << ", " << at / WIDTH << ") of "
                << support::Described(outline);
        }
        if (seed % 8 != 0) continue;  // areas take their time
        exact.Cover(outline);
        for (int y = 0; y < HEIGHT; ++y)
        {
            for (int x = 0; x < WIDTH; ++x)
            {
                const double area = 255.0 * exact.At(x, y);
                const double got  = expected[static_cast<std::size_t>(y * WIDTH + x)];
                if (area > 1e-6 && area < 255.0 - 1e-6) errors.Add(got - area, seed);
                ASSERT_LE(std::fabs(got - area), 40.0)
                    << "seed " << seed << ": (" << x << ", " << y << ") of " << support::Described(outline);
            }
        }
    }
    if (seeds.count < 100) return;
    EXPECT_LE(errors.Rms(), 4.5);
    std::printf("[ large    ] %llu partly covered pixels: rms %.2f, at most %.1f\n",
                static_cast<unsigned long long>(errors.pixels), errors.Rms(), errors.most);
}
