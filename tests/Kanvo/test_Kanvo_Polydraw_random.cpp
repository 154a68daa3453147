// Random plain polygons against two references: the spans, pixels and statistics of a second scan conversion, and the
// rule that says without any which pixels are painted. Half a million outlines of 3 to 40 corners and more, crossing
// themselves, collinear, with repeated corners, up to 1e30 away; every case has a seed of its own and can be replayed
// alone (Dice.h).
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CrashNote.h"
#include "Kanvo_Polydraw.h"
#include "Kanvo_PolyScan.h"
#include "PolyStage.h"
#include "RandomPolygons.h"
#include "Reference_PolygonRule.h"
#include "RunSeeds.h"

namespace
{

using reference::Outline;
using reference::Span;
using support::Dice;

std::string Text(const char* format, const Span& span)
{
    char text[120];
    std::snprintf(text, sizeof text, format, static_cast<long long>(span.row), static_cast<double>(span.start) / 65536,
                  static_cast<double>(span.end) / 65536);
    return text;
}

std::string FirstDifference(const std::vector<Span>& expected, const std::vector<Span>& got)
{
    for (std::size_t at = 0; at < expected.size() || at < got.size(); ++at)
    {
        if (at < expected.size() && at < got.size() && expected[at] == got[at]) continue;
        std::string text = "span " + std::to_string(at) + " of " + std::to_string(expected.size());
        text += at < expected.size() ? Text(": expected row %lld, %.6f to %.6f", expected[at]) : ": expected none";
        text += at < got.size() ? Text(", got row %lld, %.6f to %.6f", got[at]) : ", got none";
        return text;
    }
    return {};
}

//! How a case reaches the scan.
enum class Way
{
    Clipped,    // the bitmap's DrawPolygon
    Unclipped,  // the same with POLY_NOCLIP, all corners inside
    Direct      // the renderer itself, corners outside too
};

class RandomPolygons
{
public:
    //! Empty, or what is wrong.
    std::string Run(std::uint64_t seed)
    {
        Dice                dice(seed);
        support::PolyTarget target(&m_screen, m_arena, dice, 40);
        const Way           way = dice.Of({Way::Clipped, Way::Clipped, Way::Unclipped, Way::Direct});
        const Outline       outline =
            support::ThrowOutline(dice, {target.Size().width, target.Size().height, way == Way::Unclipped});
        const std::uint32_t color = dice.NextHostileWord();
        const std::uint8_t  soft  = dice.NextByte();
        const std::uint8_t  alpha = dice.OneIn(2) ? std::uint8_t{255} : soft;
        if (way == Way::Direct)
        {
            for (const reference::Corner& corner : outline)
                if (!(std::abs(corner.x) < 32767.0F && std::abs(corner.y) < 2000.0F)) return {};
        }

        Outline drawn = outline;
        bool    empty = false;
        if (way == Way::Clipped)
        {
            drawn.clear();
            if (target.InitRegion()) drawn = support::Clipped(outline);
            empty = drawn.empty();
        }
        if (empty)
            m_outcome = {};
        else
            reference::PlainSpans(drawn, m_outcome);

        std::string wrong = empty ? std::string() : Walk(drawn);
        if (wrong.empty())
        {
            reference::PaintSpans(target.Expected(), m_outcome.spans, color, alpha);
            wrong = Draw(target, way, outline, color, alpha);
        }
        if (wrong.empty()) return wrong;
        char start[120];
        std::snprintf(start, sizeof start, "seed %llu: way %d, colour %08X, alpha %d, on ",
                      static_cast<unsigned long long>(seed), static_cast<int>(way), color, alpha);
        return start + target.Described() + ": " + wrong + "\n  outline " + support::Described(outline) +
               (way == Way::Clipped ? "\n  clipped " + support::Described(drawn) : "");
    }

    const reference::PlainOutcome& Outcome() const { return m_outcome; }

private:
    std::string Walk(const Outline& drawn)
    {
        const std::vector<Kanvo_Coord2D> vertices = support::Vertices(drawn);
        m_spies.Clear();
        m_got.clear();
        Kanvo_PolyScan::Walk(vertices.data(), static_cast<Tov_UInt>(vertices.size()), sizeof(Kanvo_Coord2D),
                             [this](Tov_Int row, Tov_Fixed start, Tov_Fixed end) {
                                 m_got.push_back({row, start, end});
                             });
        const std::string wrong = FirstDifference(m_outcome.spans, m_got);
        return wrong.empty() ? m_spies.Differences(m_outcome) : wrong;
    }

    std::string Draw(support::PolyTarget& target, Way way, const Outline& outline, std::uint32_t color,
                     std::uint8_t alpha)
    {
        const std::vector<Kanvo_Coord2D> vertices = support::Vertices(outline);
        const auto                       count    = static_cast<Tov_UInt>(vertices.size());
        Kanvo_RenderState&               state    = m_screen.GetRenderState();
        state.Set(ALPHAENABLE, alpha != 255);
        state.Set(ALPHA, 0x7700U | alpha);
        m_spies.Clear();
        m_asserts.Clear();
        const Tov_Flag flags = (way == Way::Unclipped ? POLY_NOCLIP : 0U) | (alpha != 255 ? POLY_USE_RENDERSTATE : 0U);
        if (way == Way::Direct)
            Kanvo_Polydraw_NoAA_ARGB32::Polygon(&target.Bitmap(), vertices.data(), count, sizeof(Kanvo_Coord2D), color,
                                                alpha);
        else
            target.Bitmap().DrawPolygon(vertices.data(), count, color, flags);

        std::string wrong = target.Difference();
        if (wrong.empty()) wrong = m_spies.Differences(m_outcome);
        if (wrong.empty() && !m_spies.Ran(way == Way::Direct ? 0 : 1)) wrong = "the performance counter";
        if (wrong.empty() && m_asserts.Count() != 0) wrong = "asserted " + m_asserts.Reports()[0].message;
        if (wrong.empty() && !Holds(vertices, outline)) wrong = "the vertices were written to";
        return wrong;
    }

    static bool Holds(const std::vector<Kanvo_Coord2D>& vertices, const Outline& outline)
    {
        for (std::size_t index = 0; index < outline.size(); ++index)
            if (vertices[index].x != outline[index].x || vertices[index].y != outline[index].y) return false;
        return true;
    }

    Kanvo                   m_library;
    Kanvo_Screen            m_screen{&m_library};
    support::Fence          m_arena{support::PolyTarget::ARENA_BYTES};
    support::AssertCapture  m_asserts;
    support::PolySpies      m_spies;
    reference::PlainOutcome m_outcome;
    std::vector<Span>       m_got;
};

//! Whether a side no higher than a hundredth crosses the middle of a row: as it was, or as clipping leaves it.
bool HasFlatCrossing(const Outline& outline, const support::PolyTarget& target)
{
    const int height = static_cast<int>(target.Size().height);
    return reference::HasFlatCrossing(outline, height) ||
           (target.InitRegion() && reference::HasFlatCrossing(support::Clipped(outline), height));
}

}  // namespace

TEST(PolydrawRandom, SpansPixelsAndStatisticsAreThoseOfTheNaiveReference)
{
    const support::Seeds seeds(support::CasesOf(500000));
    RandomPolygons       polygons;
    std::uint64_t        painted   = 0;
    std::uint64_t        rejected  = 0;
    std::uint64_t        crossings = 0;
    std::uint64_t        manyTops  = 0;
    const auto           run       = [&](std::uint64_t seed)
    {
        std::string                    wrong   = polygons.Run(seed);
        const reference::PlainOutcome& outcome = polygons.Outcome();
        painted += !outcome.spans.empty();
        rejected += static_cast<std::uint64_t>(outcome.rejected);
        crossings += outcome.crossings > 0;
        manyTops += outcome.buckets > 2;
        return wrong;
    };
    const bool good = support::RunSeeds("SpansPixelsAndStatisticsAreThoseOfTheNaiveReference", seeds, run);
    if (!good || seeds.count < 10000) return;
    EXPECT_GT(painted, seeds.count / 3);
    EXPECT_GT(rejected, seeds.count / 100);
    EXPECT_GT(crossings, seeds.count / 10);
    EXPECT_GT(manyTops, seeds.count / 20);
}

// The rule leaves open what lies nearer to one of its limits than single precision can tell; what it decides, holds.
TEST(PolydrawRandom, PixelsAreThoseOfTheRule)
{
    constexpr std::uint32_t WHITE = 0xFFFFFFFFU;
    const support::Seeds    seeds(support::CasesOf(150000));
    support::CrashNote      crash("PixelsAreThoseOfTheRule");
    Kanvo                   library;
    Kanvo_Screen            screen(&library);
    support::Fence          arena(support::PolyTarget::ARENA_BYTES);
    support::Differences    differences;

    std::vector<reference::Rule> rule;
    std::uint64_t                painted = 0;
    std::uint64_t                doubts  = 0;
    std::uint64_t                other   = 0;
    std::uint64_t                flat    = 0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        crash.InCase(seed);
        Dice                dice(seed);
        support::PolyTarget target(&screen, arena, dice, 40);
        const int           width  = static_cast<int>(target.Size().width);
        const int           height = static_cast<int>(target.Size().height);
        const Outline outline = support::ThrowOutline(dice, {target.Size().width, target.Size().height, dice.OneIn(2)});
        // Cut sides end where single precision lets them: of a side from 1e30 away nothing can be asked.
        bool far = false;
        for (const reference::Corner& corner : outline)
            far = far || std::abs(corner.x) > 1e5F || std::abs(corner.y) > 1e5F;
        if (far) continue;
        if (target.Bitmap().GetClipMinX() > target.Bitmap().GetClipMaxX())
            continue;  // how empty that is, is tested above
        if (HasFlatCrossing(outline, target))
        {
            ++flat;
            continue;
        }
        const reference::Canvas clip = target.Expected();
        reference::PlainRule(outline, width, height, {static_cast<int>(clip.clipMinX), static_cast<int>(clip.clipMaxX)},
                             rule);
        std::uint32_t* const pixels = static_cast<std::uint32_t*>(target.Bitmap().GetBuffer());
        const std::size_t    pitch  = target.Size().pitch / 4;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                pixels[static_cast<std::size_t>(y) * pitch + static_cast<std::size_t>(x)] = 0;

        const std::vector<Kanvo_Coord2D> vertices = support::Vertices(outline);
        target.Bitmap().DrawPolygon(vertices.data(), static_cast<Tov_UInt>(vertices.size()), WHITE, POLY_NONE);

        for (int y = 0; y < height; ++y)
        {
            for (int x = 0; x < width; ++x)
            {
                const bool got = pixels[static_cast<std::size_t>(y) * pitch + static_cast<std::size_t>(x)] != 0;
                const bool inClip =
                    x >= clip.clipMinX && x <= clip.clipMaxX && y >= clip.clipMinY && y <= clip.clipMaxY;
                const auto says = inClip ? rule[static_cast<std::size_t>(y * width + x)] : reference::Rule::Empty;
                painted += got;
                switch (says)
                {
                case reference::Rule::DoubtfulEmpty:
                    ++doubts;
                    other += got;
                    break;
                case reference::Rule::DoubtfulPainted:
                    ++doubts;
                    other += !got;
                    break;
                default:
                    if (got != (says == reference::Rule::Painted))
                        differences.Note("seed %llu: pixel (%d, %d) is %s on %s: %.120s",
                                         static_cast<unsigned long long>(seed), x, y, got ? "painted" : "empty",
                                         target.Described().c_str(), support::Described(outline).c_str());
                }
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
    std::printf("[ rule     ] %llu pixels painted, %llu within rounding of a limit, of these %llu on its other side; "
                "%llu outlines with a level side across a row left out\n",
                static_cast<unsigned long long>(painted), static_cast<unsigned long long>(doubts),
                static_cast<unsigned long long>(other), static_cast<unsigned long long>(flat));
    if (seeds.count < 1000) return;
    EXPECT_GT(painted, seeds.count * 10);
    EXPECT_LT(doubts, painted / 10) << "the rule hardly decides anything";
}
