// Tests of patterns: the table and its reversed twin, stops and dashes, what lines then read, and what must be refused.
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "Kanvo_Pattern.h"
#include "LineStage.h"

namespace
{

using Stop = Kanvo_Pattern::Stop;

constexpr float INF       = std::numeric_limits<float>::infinity();
constexpr float NAN_VALUE = std::numeric_limits<float>::quiet_NaN();
constexpr float MAX       = std::numeric_limits<float>::max();
constexpr float TINY      = std::numeric_limits<float>::denorm_min();

constexpr Tov_Flag PAT = Kanvo_LF_PATTERN, OPEN = Kanvo_LF_DO_NOT_CLIP, AA = Kanvo_LF_ANTIALIAS;

std::vector<std::uint32_t> ColorsOf(const Kanvo_Pattern& pattern)
{
    return {pattern.GetColors(), pattern.GetColors() + 512};
}

void ExpectMirrored(const Kanvo_Pattern& pattern)
{
    for (int index = 0; index < 256; ++index)
        ASSERT_EQ(pattern.GetColors()[256 + index], pattern.GetColors()[255 - index]) << index;
}

//! A pattern whose entry i is blue i, of 256 pixels, so that a line shows the distance.
void Number(Kanvo_Pattern& pattern)
{
    std::vector<Stop> stops;
    for (unsigned index = 0; index < 256; ++index)
    {
        stops.push_back({static_cast<float>(index) / 256.0F, 0xFF808000U | index});
        stops.push_back({static_cast<float>(index + 1) / 256.0F, 0xFF808000U | index});
    }
    ASSERT_TRUE(pattern.SetStops(stops.data(), 512, 256.0F));
    for (unsigned index = 0; index < 256; ++index) ASSERT_EQ(pattern.GetColors()[index], 0xFF808000U | index);
    ExpectMirrored(pattern);
}

//! A plain line of the numbered pattern on the middle row, and the entries read there.
class NumberedLine : public testing::Test
{
protected:
    NumberedLine()
    {
        Number(pattern);
        pattern.Use(stage.State());
    }
    int Entry(int x, int y = 20)
    {
        const std::uint32_t pixel = stage.At(x, y);
        return pixel == 0xFF000000U ? -1 : static_cast<int>(pixel & 255U);
    }

    support::LineStage stage{80, 41};
    Kanvo_Pattern      pattern;
};

}  // namespace

// ---- the table ------------------------------------------------------------------------------------------------------

TEST(Pattern, TheColoursFollowOneLeadingWord)
{
    const Kanvo_Pattern pattern;
    EXPECT_EQ(reinterpret_cast<const char*>(pattern.GetColors()) - reinterpret_cast<const char*>(&pattern), 4);
    EXPECT_EQ(sizeof pattern, 4U + 512U * 4U);
}

TEST(Pattern, ANewOneIsTransparentAndOnePixelLong)
{
    const Kanvo_Pattern pattern;
    EXPECT_EQ(pattern.GetPeriod(), 1.0F);
    for (const std::uint32_t color : ColorsOf(pattern)) EXPECT_EQ(color >> 24, 0U);
}

TEST(Pattern, StopsMakeAGradientOfAllChannels)
{
    Kanvo_Pattern pattern;
    const Stop    stops[] = {{0.0F, 0x00FF0040U}, {1.0F, 0xFF00FF80U}};
    ASSERT_TRUE(pattern.SetStops(stops, 2, 40.0F));
    EXPECT_EQ(pattern.GetPeriod(), 40.0F);
    ExpectMirrored(pattern);
    for (unsigned index = 0; index < 256; ++index)
    {
        const std::uint32_t color = pattern.GetColors()[index];
        const double        t     = (index + 0.5) / 256.0;
        EXPECT_NEAR(color >> 24, 255.0 * t, 1.0) << index;
        EXPECT_NEAR(color >> 16 & 255, 255.0 * (1.0 - t), 1.0) << index;
        EXPECT_NEAR(color >> 8 & 255, 255.0 * t, 1.0) << index;
        EXPECT_NEAR(color & 255, 64.0 + 64.0 * t, 1.0) << index;
    }
}

TEST(Pattern, BeforeTheFirstAndBehindTheLastStopTheColourGoesOn)
{
    Kanvo_Pattern pattern;
    const Stop    stops[] = {{0.25F, 0xFF102030U}, {0.75F, 0xFF405060U}};
    ASSERT_TRUE(pattern.SetStops(stops, 2, 1.0F));
    for (int index = 0; index < 63; ++index) EXPECT_EQ(pattern.GetColors()[index], 0xFF102030U) << index;
    for (int index = 193; index < 256; ++index) EXPECT_EQ(pattern.GetColors()[index], 0xFF405060U) << index;
    const Stop one[] = {{0.5F, 0x80123456U}};
    ASSERT_TRUE(pattern.SetStops(one, 1, 1.0F));
    for (const std::uint32_t color : ColorsOf(pattern)) EXPECT_EQ(color, 0x80123456U);
}

TEST(Pattern, TwoStopsAtOnePlaceAreAStep)
{
    Kanvo_Pattern pattern;
    const Stop    stops[] = {{0.0F, 0xFFFF0000U}, {0.5F, 0xFFFF0000U}, {0.5F, 0xFF0000FFU}, {1.0F, 0xFF0000FFU}};
    ASSERT_TRUE(pattern.SetStops(stops, 4, 8.0F));
    for (int index = 0; index < 256; ++index)
        EXPECT_EQ(pattern.GetColors()[index], index < 128 ? 0xFFFF0000U : 0xFF0000FFU) << index;
}

TEST(Pattern, DashesHaveTheirShareOfThePeriod)
{
    Kanvo_Pattern pattern;
    const float   lengths[] = {12.0F, 4.0F};
    ASSERT_TRUE(pattern.SetDashes(lengths, 2, 0xFFFFFFFFU, 0x00000000U));
    EXPECT_EQ(pattern.GetPeriod(), 16.0F);
    ExpectMirrored(pattern);
    for (int index = 0; index < 256; ++index)
        EXPECT_EQ(pattern.GetColors()[index], index < 192 ? 0xFFFFFFFFU : 0U) << index;
    const float four[] = {4.0F, 4.0F, 2.0F, 6.0F};
    ASSERT_TRUE(pattern.SetDashes(four, 4, 0xFFFFFFFFU, 0xFF000000U));
    for (int index = 0; index < 256; ++index)
    {
        const bool dash = index < 64 || (index >= 128 && index < 160);
        EXPECT_EQ(pattern.GetColors()[index], dash ? 0xFFFFFFFFU : 0xFF000000U) << index;
    }
}

TEST(Pattern, AnOddCountOfDashesIsGoneThroughTwice)
{
    Kanvo_Pattern pattern;
    const float   lengths[] = {4.0F, 2.0F, 2.0F};
    ASSERT_TRUE(pattern.SetDashes(lengths, 3, 0xFFFFFFFFU, 0xFF000000U));
    EXPECT_EQ(pattern.GetPeriod(), 16.0F);
    for (int index = 0; index < 256; ++index)
    {
        const int  at   = index / 16;  // dash 0-3, gap 4-5, dash 6-7, gap 8-11, dash 12-13, gap 14-15
        const bool dash = at < 4 || at == 6 || at == 7 || at == 12 || at == 13;
        EXPECT_EQ(pattern.GetColors()[index], dash ? 0xFFFFFFFFU : 0xFF000000U) << index;
    }
}

TEST(Pattern, WhatMakesNoPatternIsRefusedAndChangesNothing)
{
    Kanvo_Pattern pattern;
    const Stop    good[] = {{0.0F, 0xFF112233U}, {1.0F, 0xFF445566U}};
    ASSERT_TRUE(pattern.SetStops(good, 2, 7.0F));
    const std::vector<std::uint32_t> before  = ColorsOf(pattern);
    const auto                       refused = [&](bool made)
    {
        EXPECT_FALSE(made);
        EXPECT_EQ(pattern.GetPeriod(), 7.0F);
        EXPECT_EQ(ColorsOf(pattern), before);
    };
    refused(pattern.SetStops(nullptr, 0, 7.0F));
    refused(pattern.SetStops(good, 0, 7.0F));
    for (const float period : {0.0F, -0.0F, -1.0F, NAN_VALUE, INF, -INF}) refused(pattern.SetStops(good, 2, period));
    const Stop backwards[] = {{0.6F, 0xFF112233U}, {0.4F, 0xFF445566U}};
    refused(pattern.SetStops(backwards, 2, 7.0F));
    const Stop nowhere[] = {{0.0F, 0xFF112233U}, {NAN_VALUE, 0xFF445566U}, {1.0F, 0xFF445566U}};
    refused(pattern.SetStops(nowhere, 3, 7.0F));
    const float none[] = {0.0F, 0.0F};
    refused(pattern.SetDashes(none, 2, 1, 2));
    refused(pattern.SetDashes(none, 0, 1, 2));
    refused(pattern.SetDashes(nullptr, 0, 1, 2));
    for (const float bad : {-1.0F, NAN_VALUE, INF, -INF})
    {
        const float lengths[] = {4.0F, bad};
        refused(pattern.SetDashes(lengths, 2, 1, 2));
    }
    const float sum[] = {MAX, MAX};
    refused(pattern.SetDashes(sum, 2, 1, 2));
}

TEST(Pattern, TinyAndHugeDashesEndInBoundedTime)
{
    Kanvo_Pattern            pattern;
    const std::vector<float> many(100000, 0.001F);
    EXPECT_TRUE(pattern.SetDashes(many.data(), 100000, 0xFFFFFFFFU, 0));
    EXPECT_NEAR(pattern.GetPeriod(), 100.0F, 0.2F);
    const float tiny[] = {TINY, TINY};
    pattern.SetDashes(tiny, 2, 0xFFFFFFFFU, 0);
    const float uneven[] = {1.0e-30F, 1.0e5F};
    EXPECT_TRUE(pattern.SetDashes(uneven, 2, 0xFFFFFFFFU, 0));
    for (int index = 1; index < 256; ++index) EXPECT_EQ(pattern.GetColors()[index], 0U);
    support::LineStage stage(60, 20);
    for (const float period : {1.0e-30F, 1.0e-6F, 1.0e6F})
    {
        const Stop stops[] = {{0.0F, 0xFFFFFFFFU}};
        ASSERT_TRUE(pattern.SetStops(stops, 1, period));
        pattern.Use(stage.State());
        for (const float offset : {-1.0e30F, -0.3F, 0.0F, 1.0e9F, INF, NAN_VALUE})
        {
            stage.State().Set(LINEPATTERNOFFSET, offset);
            stage.Fill(0xFF000000U);
            stage.Line(5, 10, 50, 12, 0, PAT, 4.0F);
            EXPECT_GT(stage.Count(), 100) << period << ' ' << offset;
        }
    }
}

TEST(Pattern, UseTellsTheRenderStateItsScale)
{
    Kanvo_Pattern     pattern;
    Kanvo_RenderState state(nullptr);
    const float       lengths[] = {12.0F, 4.0F};
    ASSERT_TRUE(pattern.SetDashes(lengths, 2, 0xFFFFFFFFU, 0));
    state.Set(LINEPATTERNOFFSET, 0.5F);
    pattern.Use(state);
    EXPECT_EQ(state.GetPtr(LINEPATTERN), &pattern);
    EXPECT_EQ(state.GetValue(I_LINPATFACTOR), 1.0F / 16.0F);
    EXPECT_EQ(state.GetValue(I_LINPATREFLEN), 16.0F);
    EXPECT_EQ(state.GetValue(LINEPATTERNOFFSET), 0.5F);
    state.Set(LINEPATTERNSCALE, 2.0F);  // twice as long
    pattern.Use(state);
    EXPECT_EQ(state.GetValue(I_LINPATFACTOR), 1.0F / 32.0F);
    EXPECT_EQ(state.GetValue(I_LINPATREFLEN), 32.0F);
    for (const float scale : {0.0F, NAN_VALUE, INF, -1.0F})
    {
        state.Set(LINEPATTERNSCALE, scale);
        pattern.Use(state);
        EXPECT_TRUE(std::isfinite(state.GetValue(I_LINPATFACTOR))) << scale;
        EXPECT_EQ(state.GetPtr(LINEPATTERN), &pattern) << scale;
    }
}

// ---- lines ----------------------------------------------------------------------------------------------------------

TEST_F(NumberedLine, AFactorOfOneIn256IsOneEntryPerPixel)
{
    for (const Tov_Flag clip : {Tov_Flag{0}, OPEN})
    {
        stage.Fill(0xFF000000U);
        stage.Line(10, 20, 60, 20, 0, PAT | clip, 4.0F);
        for (int x = 12; x <= 58; ++x) EXPECT_EQ(Entry(x), Entry(x - 1) + 1) << x;
        EXPECT_NEAR(Entry(20), 10, 2);
    }
}

TEST_F(NumberedLine, AFactorOfOneRunsThroughTheTableInOnePixel)
{
    stage.State().Set(I_LINPATFACTOR, 1.0F);
    stage.Line(10, 20, 60, 20, 0, PAT | OPEN, 4.0F);
    for (int x = 12; x <= 59; ++x) EXPECT_EQ(Entry(x), Entry(12)) << x;  // one period further each time
    stage.Fill(0xFF000000U);
    stage.State().Set(I_LINPATFACTOR, 0.5F);
    stage.Line(10, 20, 60, 20, 0, PAT | OPEN, 4.0F);
    for (int x = 12; x <= 59; ++x) EXPECT_EQ((Entry(x) - Entry(x - 1)) & 255, 128) << x;
}

TEST_F(NumberedLine, TheOffsetIsAddedToTheTexture)
{
    stage.Line(10, 20, 60, 20, 0, PAT | OPEN, 4.0F);
    const int at = Entry(30);
    stage.State().Set(LINEPATTERNOFFSET, 0.25F);
    stage.Line(10, 20, 60, 20, 0, PAT | OPEN, 4.0F);
    EXPECT_EQ(Entry(30), (at + 64) & 255);
    stage.State().Set(LINEPATTERNOFFSET, 7.25F);  // whole periods are no change
    stage.Line(10, 20, 60, 20, 0, PAT | OPEN, 4.0F);
    EXPECT_EQ(Entry(30), (at + 64) & 255);
}

TEST_F(NumberedLine, AFlippedLineReadsTheReversedTable)
{
    // Drawn from (60, 20) to (10, 20) the octant starts at x = 10, wide style bit S moves that start to 9 (a quarter of
    // the width of 4), and the texture at distance d is 256 - offset + (9 - 60) / 256 + d / 256, read backwards.
    stage.State().Set(LINEPATTERNOFFSET, 0.25F);
    stage.Line(60, 20, 10, 20, 0, PAT | OPEN | Kanvo_LF_WIDE_S, 4.5F);
    for (int x = 12; x <= 58; ++x) EXPECT_EQ(Entry(x), Entry(x - 1) - 1) << x;
    // entry 192 of the reversed table is 63: that is where distance 0 would be, 51 pixels before the unclipped start
    const int distance = 30 - 9;
    EXPECT_NEAR(Entry(30), 255 - ((192 - 51 + distance) & 255), 1);
}

TEST_F(NumberedLine, ThePatternLiesAtTheUnclippedStart)
{
    stage.Line(-100, 20, 200, 20, 0, PAT, 4.0F);
    const int far = Entry(40);
    EXPECT_NEAR(far, 140, 3);
    for (int x = 1; x < 79; ++x) EXPECT_EQ((Entry(x) - Entry(x - 1)) & 255, 1) << x;
    stage.Fill(0xFF000000U);
    stage.Bitmap().SetCliprect(30, 10, 60, 30);
    stage.Line(-100, 20, 200, 20, 0, PAT, 4.0F);
    EXPECT_NEAR(Entry(40), far, 1) << "a smaller clip rectangle does not move it";
    EXPECT_EQ(Entry(29), -1);
}

TEST_F(NumberedLine, AVerticalLineMeasuresAlongY)
{
    stage.Line(40, 2, 40, 38, 0, PAT | AA, 6.0F);
    for (int y = 6; y <= 34; ++y) EXPECT_NEAR(Entry(40, y), y - 2, 3) << y;
}

TEST_F(NumberedLine, AdvanceContinuesAcrossAPolyline)
{
    const auto gap = [&](Tov_Flag flags)
    {
        stage.State().Set(LINEPATTERNOFFSET, 0.0F);
        stage.Fill(0xFF000000U);
        stage.Line(5, 20, 35, 20, 0, PAT | flags, 4.0F);
        stage.Line(35, 20, 70, 20, 0, PAT | flags, 4.0F);
        return Entry(60) - Entry(20);
    };
    EXPECT_NEAR(gap(Kanvo_LF_ADVANCEPATTERN), 40, 2);
    EXPECT_NEAR(gap(0), 10, 2);
    EXPECT_NEAR(gap(Kanvo_LF_ADVANCEPATTERN | AA), 40, 2);
}

TEST_F(NumberedLine, RescaleFitsOnePeriodIntoTheLine)
{
    stage.Line(10, 20, 74, 20, 0, PAT | OPEN | Kanvo_LF_RESCALEPATTERN, 4.0F);  // 256 entries on 64 pixels
    for (int x = 13; x <= 72; ++x) EXPECT_EQ((Entry(x) - Entry(x - 1)) & 255, 4) << x;
}
