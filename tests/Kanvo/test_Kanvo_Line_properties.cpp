// Properties of lines and dots that hold whatever the details of their arithmetic: what may change, symmetry, how wide
// a line really is, how large a dot, and that polylines are whole. Figures are stated where they are measured.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Dice.h"
#include "Kanvo_Pattern.h"
#include "LineStage.h"

namespace
{

using support::Dice;

constexpr Tov_Flag AA = Kanvo_LF_ANTIALIAS, HQ = Kanvo_LF_HQ_AA, OPEN = Kanvo_LF_DO_NOT_CLIP, PAT = Kanvo_LF_PATTERN;
constexpr Tov_Flag CAPS = Kanvo_LF_ROUND_START | Kanvo_LF_ROUND_END;

constexpr std::uint32_t WHITE = 0xFFFFFFFFU, BLACK = 0xFF000000U;

float Uniform(Dice& dice, float low, float high)
{
    return low + (high - low) * (static_cast<float>(dice.Next32() >> 8) / 16777216.0F);
}

//! Sum of the alphas of a transparent target, in pixels: what was drawn onto nothing is what covers.
double Covered(support::LineStage& stage)
{
    double sum = 0.0;
    for (std::size_t at = 0; at < std::size_t{stage.Width()} * stage.Height(); ++at) sum += stage.Words()[at] >> 24;
    return sum / 255.0;
}

double CoveredInRow(support::LineStage& stage, int y)
{
    double sum = 0.0;
    for (int x = 0; x < static_cast<int>(stage.Width()); ++x) sum += stage.At(x, y) >> 24;
    return sum / 255.0;
}

}  // namespace

// ---- what may change ------------------------------------------------------------------------------------------------

TEST(LineProperties, NothingOutsideTheClipRectangleChanges)
{
    // every set of the flags that mean something, 2^11, each with lines of all kinds
    constexpr Tov_Flag        BITS[] = {Kanvo_LF_ROUND_START,
                                        Kanvo_LF_ROUND_END,
                                        AA,
                                        HQ,
                                        Kanvo_LF_WIDE_S,
                                        Kanvo_LF_WIDE_T,
                                        Kanvo_LF_WIDE_2,
                                        PAT,
                                        Kanvo_LF_ADVANCEPATTERN,
                                        Kanvo_LF_RESCALEPATTERN,
                                        Kanvo_LF_AA_CLIP_END_PART_CORRECTION};
    Dice                      dice(8);
    Kanvo_Pattern             pattern;
    const Kanvo_Pattern::Stop stop{0.0F, WHITE};
    ASSERT_TRUE(pattern.SetStops(&stop, 1, 8.0F));
    support::LineStage stage(48, 40);
    pattern.Use(stage.State());
    stage.Bitmap().SetCliprect(13, 11, 33, 27);
    std::uint64_t changed = 0;
    for (unsigned set = 0; set < 2048; ++set)
    {
        Tov_Flag flags = 0;
        for (unsigned bit = 0; bit < 11; ++bit) flags |= (set >> bit & 1U) != 0 ? BITS[bit] : 0U;
        for (int count = 0; count < 12; ++count)
        {
            const float x0 = Uniform(dice, -20, 68);
            const float y0 = Uniform(dice, -20, 60);
            const float x1 = Uniform(dice, -20, 68);
            const float y1 = Uniform(dice, -20, 60);
            const float w0 = Uniform(dice, 0, 12);
            const float w1 = dice.OneIn(2) ? 0.0F : Uniform(dice, 0, 12);
            stage.Line(x0, y0, x1, y1, WHITE, flags, w0, w1);
            stage.Dot(x0, y1, w0, WHITE, flags);
        }
        for (int y = 0; y < 40; ++y)
        {
            for (int x = 0; x < 48; ++x)
            {
                const bool inside = x >= 13 && x <= 33 && y >= 11 && y <= 27;
                if (inside) changed += stage.At(x, y) != BLACK;
                ASSERT_TRUE(inside || stage.At(x, y) == BLACK) << "flags " << flags << " at " << x << ' ' << y;
            }
        }
        stage.Fill(BLACK);
    }
    EXPECT_GT(changed, 2048U * 100U);
}

// ---- direction ------------------------------------------------------------------------------------------------------

TEST(LineProperties, SwappedEndsOfAnUnclippedOrInnerLineChangeNothing)
{
    // A line that clipping leaves alone is turned to run forwards, and then is the same line: no pixel changes, in any
    // quality, at any width, tapered or not. Equal deltas of both signs are negated exactly.
    Dice dice(9);
    for (int count = 0; count < 10000; ++count)
    {
        const Tov_Flag quality = dice.Of<Tov_Flag>({0, AA, HQ, AA | HQ});
        const Tov_Flag clip    = dice.Of<Tov_Flag>({0, OPEN});
        const float    x0      = Uniform(dice, 16, 44);
        const float    y0      = Uniform(dice, 16, 34);
        const float    x1      = dice.OneIn(5) ? x0 : Uniform(dice, 16, 44);
        const float    y1      = dice.OneIn(5) ? y0 : Uniform(dice, 16, 34);
        const float    w0      = dice.OneIn(2) ? 1.0F : Uniform(dice, 0, 14);
        const float    w1      = dice.OneIn(2) ? w0 : Uniform(dice, 0.1F, 14);
        if (w0 == 0.0F || (x0 == x1 && y0 == y1)) continue;
        support::LineStage one(60, 50);
        support::LineStage other(60, 50);
        one.Line(x0, y0, x1, y1, WHITE, quality | clip, w0, w1);
        other.Line(x1, y1, x0, y0, WHITE, quality | clip, w1, w0);
        ASSERT_EQ(one.Pixels(), other.Pixels()) << x0 << ' ' << y0 << " to " << x1 << ' ' << y1 << ", flags "
                                                << (quality | clip) << ", " << w0 << ' ' << w1;
    }
}

TEST(LineProperties, SwappedEndsOfAClippedLineMoveItByOnePixelAtMost)
{
    // Where an end is moved the two directions cut at parameters that are rounded differently. The cut end may then lie
    // a little elsewhere: a pixel may change to its neighbour across the line, and few do.
    Dice dice(10);
    int  lines   = 0;
    int  pixels  = 0;
    int  changed = 0;
    for (int count = 0; count < 10000; ++count)
    {
        const float        x0 = Uniform(dice, -300, 360);
        const float        y0 = Uniform(dice, -300, 350);
        const float        x1 = Uniform(dice, -300, 360);
        const float        y1 = Uniform(dice, -300, 350);
        support::LineStage one(60, 50);
        support::LineStage other(60, 50);
        one.Line(x0, y0, x1, y1, WHITE);
        other.Line(x1, y1, x0, y0, WHITE);
        if (one.Count() == 0) continue;
        ++lines;
        pixels += one.Count();
        for (int y = 0; y < 50; ++y)
        {
            for (int x = 0; x < 60; ++x)
            {
                if (one.At(x, y) == BLACK || other.At(x, y) != BLACK) continue;
                ++changed;
                bool beside = x == 0 || y == 0 || x == 59 || y == 49;
                for (int dy = -1; dy <= 1; ++dy)
                {
                    for (int dx = -1; dx <= 1; ++dx)
                    {
                        const int atX = std::clamp(x + dx, 0, 59);
                        const int atY = std::clamp(y + dy, 0, 49);
                        beside        = beside || other.At(atX, atY) != BLACK;
                    }
                }
                ASSERT_TRUE(beside) << x0 << ' ' << y0 << " to " << x1 << ' ' << y1;
            }
        }
    }
    EXPECT_GT(lines, 1000);
    EXPECT_LT(changed, pixels / 200) << "half a percent";
}

// ---- how wide -------------------------------------------------------------------------------------------------------

TEST(LineProperties, ThinLinesAreOnePixelWide)
{
    // the alphas of a row sum to one pixel at every phase: exactly for AA, within a percent for HQ
    for (int phase = 0; phase < 256; ++phase)
    {
        const float x = 20.0F + static_cast<float>(phase) / 256.0F;
        for (const Tov_Flag clip : {Tov_Flag{0}, OPEN})
        {
            support::LineStage soft(50, 9, 0);
            soft.Line(x, 0, x, 8, WHITE, AA | clip);
            EXPECT_EQ(CoveredInRow(soft, 4), 1.0) << phase;
            for (const Tov_Flag quality : {HQ, HQ | AA})
            {
                support::LineStage filtered(50, 9, 0);
                filtered.Line(x, 0, x, 8, WHITE, quality | clip);
                EXPECT_NEAR(CoveredInRow(filtered, 4), 1.0, 0.01) << phase;
            }
        }
    }
}

TEST(LineProperties, SlantedThinLinesCoverOnePixelPerStep)
{
    for (int angle = 0; angle <= 45; angle += 3)
    {
        const double radians = angle * 3.14159265358979 / 180.0;
        const auto   dx      = static_cast<float>(80.0 * std::cos(radians));
        const auto   dy      = static_cast<float>(80.0 * std::sin(radians));
        for (const Tov_Flag quality : {AA, HQ, AA | HQ})
        {
            support::LineStage stage(120, 100, 0);
            stage.Line(20, 20, 20 + dx, 20 + dy, WHITE, quality);
            const double steps = std::floor(static_cast<double>(dx)) + 1.0;
            EXPECT_NEAR(Covered(stage) / steps, 1.0, 0.02) << angle << ' ' << quality;
        }
    }
}

TEST(LineProperties, WideLinesHaveTheWidthThatTheRulesGiveThem)
{
    // Across a row of a long vertical line the alphas sum to
    //   AA, unclipped                the width
    //   AA and HQ, clipped           the width less half a pixel: the dispatcher takes it off, and HQ spans are AA's
    //   HQ, unclipped                the width less 0.96: both ends are filter taps, which sum to that much less
    for (const float width : {3.0F, 4.5F, 6.0F, 8.25F, 12.0F, 17.3F, 30.0F})
    {
        double sums[4] = {};
        for (int phase = 0; phase < 64; ++phase)
        {
            const float    x       = 40.0F + static_cast<float>(phase) / 64.0F;
            const Tov_Flag kinds[] = {AA | OPEN, AA, HQ, HQ | OPEN};
            for (int kind = 0; kind < 4; ++kind)
            {
                support::LineStage stage(90, 120, 0);
                stage.Line(x, 20, x, 100, WHITE, kinds[kind], width);
                sums[kind] += CoveredInRow(stage, 60) / 64.0;
            }
        }
        const auto exact = static_cast<double>(width);
        EXPECT_NEAR(sums[0] / exact, 1.0, 0.02) << width;
        EXPECT_NEAR(sums[1] / (exact - 0.5), 1.0, 0.02) << width;
        EXPECT_NEAR(sums[2] / (exact - 0.5), 1.0, 0.02) << width;
        EXPECT_NEAR(sums[3] / (exact - 0.96), 1.0, 0.02) << width;
    }
}

TEST(LineProperties, SlantedWideLinesHaveThatWidthAcross)
{
    // the cover of the middle part, by its length: rows (or columns) far from the ends
    for (int angle = 0; angle < 180; angle += 7)
    {
        const double radians = angle * 3.14159265358979 / 180.0;
        const double c       = std::cos(radians);
        const double s       = std::sin(radians);
        for (const Tov_Flag quality : {AA, HQ})
        {
            constexpr float    WIDTH = 10.0F;
            support::LineStage stage(200, 200, 0);
            stage.Line(static_cast<float>(100 - 80 * c), static_cast<float>(100 - 80 * s),
                       static_cast<float>(100 + 80 * c), static_cast<float>(100 + 80 * s), WHITE, quality, WIDTH);
            const bool majorIsX = std::fabs(c) > std::fabs(s);
            double     sum      = 0.0;
            for (int at = 80; at < 120; ++at)
            {
                for (int across = 0; across < 200; ++across)
                    sum += (majorIsX ? stage.At(at, across) : stage.At(across, at)) >> 24;
            }
            const double width = sum / 255.0 / 40.0 * std::max(std::fabs(c), std::fabs(s));
            EXPECT_NEAR(width / 9.5, 1.0, 0.02) << angle << ' ' << quality;
        }
    }
}

// ---- how large ------------------------------------------------------------------------------------------------------

namespace
{

//! Area of a dot drawn onto nothing, by the area of the disc of radius aimed: mean and largest deviation.
struct AreaError
{
    double mean  = 0.0;
    double worst = 0.0;
};

AreaError MeasureArea(Tov_Flag flags, float from, float to, float aim, int count)
{
    Dice      dice(11);
    AreaError error;
    for (int dot = 0; dot < count; ++dot)
    {
        const float        radius = Uniform(dice, from, to);
        const float        x      = 60.0F + Uniform(dice, 0, 1);
        const float        y      = 60.0F + Uniform(dice, 0, 1);
        support::LineStage stage(122, 122, 0);
        stage.Dot(x, y, radius, WHITE, flags);
        const auto   r     = static_cast<double>(radius + aim);
        const double ratio = Covered(stage) / (3.14159265358979 * r * r) - 1.0;
        error.mean += ratio / count;
        error.worst = std::max(error.worst, std::fabs(ratio));
    }
    return error;
}

}  // namespace

TEST(DotProperties, PlainDotsHaveTheAreaOfTheirDiscOnAverage)
{
    for (const auto& [from, to] : {std::pair{4.0F, 6.0F}, {6.0F, 10.0F}, {10.0F, 25.0F}, {25.0F, 50.0F}})
    {
        EXPECT_LE(std::fabs(MeasureArea(0, from, to, 0.0F, 1500).mean), 0.005) << from;
    }
}

TEST(DotProperties, FilteredDotsHaveTheAreaOfTheirDisc)
{
    for (const auto& [from, to] : {std::pair{6.0F, 8.0F}, {8.0F, 10.0F}, {10.0F, 25.0F}, {25.0F, 50.0F}})
    {
        EXPECT_LE(MeasureArea(HQ, from, to, 0.0F, from < 10 ? 3000 : 700).worst, 0.005) << from;
        EXPECT_LE(MeasureArea(HQ | AA, from, to, 0.0F, 100).worst, 0.005) << from;
    }
}

TEST(DotProperties, AntialiasedDotsHaveTheAreaOfADiscAQuarterPixelSmaller)
{
    for (const auto& [from, to] : {std::pair{4.0F, 5.0F}, {5.0F, 6.0F}, {6.0F, 10.0F}, {10.0F, 25.0F}, {25.0F, 50.0F}})
    {
        EXPECT_LE(MeasureArea(AA, from, to, -0.25F, from < 10 ? 3000 : 700).worst, 0.01) << from;
    }
}

// ---- joints ---------------------------------------------------------------------------------------------------------

TEST(LineProperties, APolylineWithCapsHasNoHoleAtAnyJoint)
{
    // Two arms of 30 pixels that meet at 720 angles. Every pixel whose centre lies well inside the shape - nearer to
    // one of the arms' axes than half the width less a margin - must be full. Half a pixel is what the dispatcher takes
    // off a clipped line's width, a quarter of a pixel what plain widths are snapped by, and one pixel is the soft rim
    // and the half pixel that bodies lie beside their axis.
    struct Kind
    {
        Tov_Flag flags;
        float    width;
        double   margin;
    };
    for (const Kind& kind : {Kind{0, 8, 1.5}, Kind{AA, 8, 1.75}, Kind{HQ, 8, 2.25}, Kind{OPEN, 8, 1.5},
                             Kind{OPEN | AA, 8, 1.75}, Kind{OPEN | HQ, 8, 2.25}, Kind{AA, 14, 1.75}, Kind{0, 5, 1.5}})
    {
        support::LineStage stage(90, 90);
        int                holes = 0;
        std::string        first;
        for (int step = 0; step < 720; ++step)
        {
            const double radians = step * 3.14159265358979 / 360.0;
            const double endX    = 45.0 + 30.0 * std::cos(radians);
            const double endY    = 45.0 + 30.0 * std::sin(radians);
            stage.Fill(BLACK);
            stage.Line(15, 45, 45, 45, WHITE, kind.flags | CAPS, kind.width);
            stage.Line(45, 45, static_cast<float>(endX), static_cast<float>(endY), WHITE, kind.flags | CAPS,
                       kind.width);
            const auto distance = [](double x, double y, double ax, double ay, double bx, double by)
            {
                const double t = std::clamp(((x - ax) * (bx - ax) + (y - ay) * (by - ay)) / 900.0, 0.0, 1.0);
                return std::hypot(x - ax - t * (bx - ax), y - ay - t * (by - ay));
            };
            const double within = static_cast<double>(kind.width) / 2.0 - kind.margin;
            for (int y = 0; y < 90; ++y)
            {
                for (int x = 0; x < 90; ++x)
                {
                    const double away = std::min(distance(x, y, 15, 45, 45, 45), distance(x, y, 45, 45, endX, endY));
                    if (away > within || (stage.At(x, y) & 255U) >= 200U) continue;
                    if (holes++ > 0) continue;
                    char text[120];
                    std::snprintf(text, sizeof text, "first at (%d, %d), angle %g, level %u, %g from the axis", x, y,
                                  step / 2.0, stage.At(x, y) & 255U, away);
                    first = text;
                }
            }
        }
        EXPECT_EQ(holes, 0) << "flags " << kind.flags << ", width " << kind.width << ": " << first;
    }
}
