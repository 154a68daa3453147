// Tests of lines as a user draws them: shapes that can be drawn by hand, every cell of the dispatch against the naive
// reference, messages, counters, what happens at the border of the bitmap and of 16.16, and numbers that are none.
// Which octant gets which numbers is tested in test_Kanvo_Linedraw_Octant.cpp, random lines in
// test_Kanvo_Line_random.cpp.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Kanvo_Pattern.h"
#include "LineStage.h"

namespace
{

using Picture = std::vector<std::string>;

constexpr Tov_Flag AA = Kanvo_LF_ANTIALIAS, HQ = Kanvo_LF_HQ_AA, OPEN = Kanvo_LF_DO_NOT_CLIP, PAT = Kanvo_LF_PATTERN;
constexpr Tov_Flag CAPS        = Kanvo_LF_ROUND_START | Kanvo_LF_ROUND_END;
constexpr Tov_Flag QUALITIES[] = {0, AA, HQ, AA | HQ};

constexpr std::uint32_t WHITE = 0xFFFFFFFFU, BLACK = 0xFF000000U;

constexpr float INF       = std::numeric_limits<float>::infinity();
constexpr float NAN_VALUE = std::numeric_limits<float>::quiet_NaN();
constexpr float MAX       = std::numeric_limits<float>::max();
constexpr float TINY      = std::numeric_limits<float>::denorm_min();

constexpr const char* OUTSIDE = "unclipped line outside the bitmap";

//! A bitmap of 96 x 80 whose lines are compared with the reference, at both fences.
struct Wanted
{
    unsigned width  = 96;
    unsigned height = 80;
    unsigned clip[4]{0, 0, 10000, 10000};
};

//! Draws at both fences, expects the pixels, counts and pattern offset of the reference and nothing beside the bitmap.
//! Returns the pixels.
std::vector<std::uint32_t> ExpectAsReference(const reference::LineCall& call, const Wanted& wanted = {},
                                             Kanvo_Pattern* pattern = nullptr)
{
    std::vector<std::uint32_t> pixels;
    for (const support::Against end : {support::Against::FrontFence, support::Against::BackFence})
    {
        support::AssertCapture asserts;  // unclipped lines outside are told; others have nothing to tell
        support::LineSpies     spies;
        support::LineStage     stage(wanted.width, wanted.height, 0xFF204060U, end);
        stage.Bitmap().SetCliprect(wanted.clip[0], wanted.clip[1], wanted.clip[2], wanted.clip[3]);
        reference::PatternState state;
        if (pattern != nullptr)
        {
            pattern->Use(stage.State());
            state = {pattern->GetColors(), stage.State().GetValue(I_LINPATFACTOR), 0.0F,
                     stage.State().GetValue(I_LINPATREFLEN)};
        }
        std::vector<std::uint32_t>   expected = stage.Pixels();
        const reference::LineOutcome outcome  = reference::DrawLine(stage.CanvasOver(expected.data()), call, state);
        stage.Line(call.startX, call.startY, call.endX, call.endY, call.color, call.flags, call.startWidth,
                   call.endWidth);
        pixels = stage.Pixels();
        EXPECT_EQ(pixels, expected);
        EXPECT_EQ(spies.Differences(outcome), "");
        EXPECT_TRUE(stage.IsSlackUntouched());
        if ((call.flags & OPEN) == 0)
        {
            EXPECT_EQ(asserts.Texts(), support::Messages{});
        }
    }
    return pixels;
}

int CountChanged(const std::vector<std::uint32_t>& pixels)
{
    return static_cast<int>(
        std::count_if(pixels.begin(), pixels.end(), [](std::uint32_t p) { return p != 0xFF204060U; }));
}

Picture Drawn(unsigned width, unsigned height, const std::function<void(support::LineStage&)>& draw)
{
    support::LineStage stage(width, height);
    draw(stage);
    return stage.Picture();
}

//! Processor time of an action in nanoseconds, the least of a few tries.
double Time(const std::function<void()>& action)
{
    double least = 1e18;
    for (int attempt = 0; attempt < 9; ++attempt)
    {
        timespec before{};
        timespec after{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &before);
        for (int turn = 0; turn < 40; ++turn) action();
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &after);
        least = std::min(least, static_cast<double>(after.tv_sec - before.tv_sec) * 1e9 +
                                    static_cast<double>(after.tv_nsec - before.tv_nsec));
    }
    return least;
}

}  // namespace

// ---- shapes by hand -------------------------------------------------------------------------------------------------

TEST(Linedraw, APlainThinLineHoldsBothItsEnds)
{
    EXPECT_EQ(Drawn(9, 5, [](auto& s) { s.Line(1, 2, 7, 2, WHITE); }),
              (Picture{".........", ".........", ".#######.", ".........", "........."}));
    EXPECT_EQ(Drawn(5, 6, [](auto& s) { s.Line(2, 1, 2, 4, WHITE); }),
              (Picture{".....", "..#..", "..#..", "..#..", "..#..", "....."}));
    EXPECT_EQ(Drawn(6, 6, [](auto& s) { s.Line(1, 1, 4, 4, WHITE); }),
              (Picture{"......", ".#....", "..#...", "...#..", "....#.", "......"}));
    EXPECT_EQ(Drawn(6, 6, [](auto& s) { s.Line(1, 4, 4, 1, WHITE); }),
              (Picture{"......", "....#.", "...#..", "..#...", ".#....", "......"}));
    EXPECT_EQ(Drawn(9, 5, [](auto& s) { s.Line(0, 1, 8, 3, WHITE); }),
              (Picture{".........", "##.......", "..####...", "......###", "........."}));
}

TEST(Linedraw, ALineWithoutLengthIsAPixel)
{
    EXPECT_EQ(Drawn(5, 5, [](auto& s) { s.Line(2, 2, 2, 2, WHITE); }),
              (Picture{".....", ".....", "..#..", ".....", "....."}));
    for (const Tov_Flag quality : QUALITIES)
    {
        for (const Tov_Flag clip : {Tov_Flag{0}, OPEN})
        {
            support::LineStage stage(30, 30);
            stage.Line(15, 15, 15, 15, WHITE, quality | clip);
            EXPECT_GE(stage.Count(), 1) << quality << ' ' << clip;
            EXPECT_LE(stage.Count(), 4) << quality << ' ' << clip;
            stage.Fill(BLACK);
            stage.Line(15, 15, 15, 15, WHITE, quality | clip, 8.0F);
            EXPECT_EQ(stage.Count(), 0) << "a wide line has no body";
            stage.Line(15, 15, 15, 15, WHITE, quality | clip | CAPS, 8.0F);
            EXPECT_GT(stage.Count(), 40) << "but caps";
        }
    }
}

TEST(Linedraw, AnEndWidthOfZeroIsTheStartWidth)
{
    for (const Tov_Flag quality : QUALITIES)
    {
        support::LineStage one(60, 40);
        support::LineStage other(60, 40);
        one.Line(10, 10, 50, 25, WHITE, quality, 7.3F, 0.0F);
        other.Line(10, 10, 50, 25, WHITE, quality, 7.3F, 7.3F);
        EXPECT_EQ(one.Pixels(), other.Pixels());
        one.Fill(BLACK);
        one.Line(10, 10, 50, 25, WHITE, quality, 7.3F, -0.0F);
        EXPECT_EQ(one.Pixels(), other.Pixels());
        one.Fill(BLACK);
        one.Line(10, 10, 50, 25, WHITE, quality, 7.3F, TINY);
        EXPECT_NE(one.Pixels(), other.Pixels());
    }
}

TEST(Linedraw, ThinWidthsAreOneLine)
{
    for (const Tov_Flag clip : {Tov_Flag{0}, OPEN})
    {
        const auto pixels = [&](Tov_Flag flags, float width)
        {
            support::LineStage stage(60, 40);
            stage.Line(10, 10.4F, 50, 25, WHITE, flags | clip, width);
            return stage.Pixels();
        };
        for (const float width : {0.0F, 0.3F, -4.0F, 0.999F})
        {
            EXPECT_EQ(pixels(AA, width), pixels(AA, 1.0F));
            EXPECT_EQ(pixels(HQ, width), pixels(HQ, 1.0F));
            EXPECT_EQ(pixels(0, width), pixels(0, 1.0F));
        }
        EXPECT_EQ(pixels(0, 1.5F), pixels(0, 1.0F));
        EXPECT_NE(pixels(0, 1.6F), pixels(0, 1.0F));
        EXPECT_EQ(pixels(0, 1.6F), pixels(0, 2.5F));  // both 1.5
        EXPECT_NE(pixels(AA, 1.1F), pixels(AA, 1.0F));
    }
}

TEST(Linedraw, APatternLineOfWidthOneIsWide)
{
    Kanvo_Pattern             pattern;
    const Kanvo_Pattern::Stop stop{0.0F, WHITE};
    ASSERT_TRUE(pattern.SetStops(&stop, 1, 8.0F));
    support::LineSpies spies;
    support::LineStage stage(60, 40);
    pattern.Use(stage.State());
    stage.Line(10, 10, 50, 25, 0, PAT, 1.0F);
    EXPECT_EQ(spies.thinLines.starts, 0);
    EXPECT_GT(stage.Count(), 30);
    stage.Line(10, 10, 50, 25, 0, PAT | OPEN, 1.0F);
    EXPECT_EQ(spies.wideLines.starts, 1);
}

TEST(Linedraw, CapsAreDotsAtTheEnds)
{
    for (const Tov_Flag quality : QUALITIES)
    {
        for (const Tov_Flag caps : {Tov_Flag{Kanvo_LF_ROUND_START}, Tov_Flag{Kanvo_LF_ROUND_END}, CAPS})
        {
            for (const Tov_Flag clip : {Tov_Flag{0}, OPEN})
            {
                SCOPED_TRACE(testing::Message() << quality << ' ' << caps << ' ' << clip);
                support::LineStage with(70, 50);
                support::LineStage by(70, 50);
                with.Line(20.3F, 20.6F, 50.1F, 28.4F, 0xC0FFFFFFU, quality | caps | clip, 12.0F, 9.0F);
                by.Line(20.3F, 20.6F, 50.1F, 28.4F, 0xC0FFFFFFU, quality | clip, 12.0F, 9.0F);
                const float start = quality == 0 ? 11.5F : 12.0F;
                const float end   = quality == 0 ? 8.5F : 9.0F;
                if ((caps & Kanvo_LF_ROUND_START) != 0) by.Dot(20.3F, 20.6F, start / 2.0F, 0xC0FFFFFFU, quality);
                if ((caps & Kanvo_LF_ROUND_END) != 0) by.Dot(50.1F, 28.4F, end / 2.0F, 0xC0FFFFFFU, quality);
                EXPECT_EQ(with.Pixels(), by.Pixels());
            }
        }
    }
}

TEST(Linedraw, CapsLieAtTheUnclippedEnds)
{
    support::LineStage stage(60, 40);
    stage.Line(-60, 20, 30, 20, WHITE, Kanvo_LF_ROUND_START, 12.0F);
    support::LineStage without(60, 40);
    without.Line(-60, 20, 30, 20, WHITE, 0, 12.0F);
    EXPECT_EQ(stage.Pixels(), without.Pixels());
}

TEST(Linedraw, AClippedFilteredWideLineIsShiftedByHalfAPixel)
{
    // Clipped, a filtered body is the anti-aliased one, half a pixel included. Width 7.5 around 30.5 starts at 26.75: a
    // quarter of pixel 26; without the shift it would be three quarters.
    const auto row = [](Tov_Flag flags)
    {
        support::LineStage stage(61, 60);
        stage.Line(30, 10, 30, 50, WHITE, flags, 8.0F);
        std::vector<std::uint32_t> levels;
        for (int x = 0; x < 61; ++x) levels.push_back(stage.At(x, 30) & 255U);
        return levels;
    };
    EXPECT_EQ(row(HQ), row(AA));
    EXPECT_EQ(row(HQ | AA), row(AA));
    EXPECT_EQ(row(HQ)[25], 0U);
    EXPECT_EQ(row(HQ)[26], 255U * 31U / 128U);  // alpha 63
    // Unclipped, width 8 around 30 starts at 26.0 with the first two taps of phase 0, 40 and 175; an anti-aliased one
    // at 26.5 with half a pixel.
    EXPECT_EQ(row(HQ | OPEN)[26], 255U * 20U / 128U);
    EXPECT_EQ(row(HQ | OPEN)[27], 255U * 87U / 128U);
    EXPECT_EQ(row(AA | OPEN)[26], 255U * 63U / 128U);
}

// ---- every cell -----------------------------------------------------------------------------------------------------

TEST(Linedraw, EveryCellDrawsWhatTheReferenceDraws)
{
    Kanvo_Pattern             pattern;
    const Kanvo_Pattern::Stop stops[] = {{0.0F, 0xFFFF8000U}, {1.0F, 0x800080FFU}};
    ASSERT_TRUE(pattern.SetStops(stops, 2, 16.0F));
    for (const Tov_Flag quality : QUALITIES)
    {
        for (const bool majorIsX : {false, true})
        {
            for (const float width : {1.0F, 2.0F, 3.0F, 5.0F, 12.0F, 60.0F})
            {
                for (const Tov_Flag style : {Tov_Flag{0}, PAT})
                {
                    for (const Tov_Flag clip : {Tov_Flag{0}, OPEN})
                    {
                        for (const bool backwards : {false, true})
                        {
                            SCOPED_TRACE(testing::Message() << "flags " << (quality | style | clip) << ", width "
                                                            << width << (majorIsX ? ", X" : ", Y") << backwards);
                            reference::LineCall call{30.25F,
                                                     22.5F,
                                                     majorIsX ? 71.0F : 38.5F,
                                                     majorIsX ? 31.75F : 61.5F,
                                                     0xE0FFFFFFU,
                                                     quality | style | clip | CAPS,
                                                     width,
                                                     0.0F};
                            if (backwards)
                            {
                                std::swap(call.startX, call.endX);
                                std::swap(call.startY, call.endY);
                            }
                            EXPECT_GT(CountChanged(ExpectAsReference(call, {}, &pattern)), 30);
                            call.endWidth = width / 3.0F;
                            ExpectAsReference(call, {}, &pattern);
                            if (clip == 0)
                            {
                                const auto cut = ExpectAsReference(call, {96, 80, {33, 25, 36, 30}}, &pattern);
                                EXPECT_LE(CountChanged(cut), 4 * 6);
                            }
                        }
                    }
                }
            }
        }
    }
}

TEST(Linedraw, TheLineStatesOfTheTargetDoNotChange)
{
    support::LineStage stage(60, 40);
    Kanvo_Pattern      pattern;
    pattern.Use(stage.State());
    stage.Bitmap().SetCliprect(5, 5, 50, 30);
    std::vector<unsigned char> before(sizeof(support::PitchedTarget));
    std::vector<unsigned char> state(sizeof(Kanvo_RenderState));
    std::memcpy(before.data(), static_cast<const void*>(&stage.Bitmap()), before.size());
    std::memcpy(state.data(), static_cast<const void*>(&stage.State()), state.size());
    for (const Tov_Flag flags : {Tov_Flag{0}, AA, HQ, PAT, PAT | Kanvo_LF_RESCALEPATTERN | HQ, CAPS | AA})
    {
        stage.Line(-30, 10, 70, 25, WHITE, flags, 6.0F, 2.0F);
        stage.Dot(10, 10, 8, WHITE, flags);
    }
    EXPECT_EQ(std::memcmp(before.data(), static_cast<const void*>(&stage.Bitmap()), before.size()), 0);
    EXPECT_EQ(std::memcmp(state.data(), static_cast<const void*>(&stage.State()), state.size()), 0);
}

// ---- messages and counters ------------------------------------------------------------------------------------------

TEST(Linedraw, TheLockIsAsserted)
{
    support::LineStage stage(20, 20);
    stage.Bitmap().Unlock(0, 0, 19, 19);
    EXPECT_EQ(support::MessagesOf([&] { stage.Line(2, 10, 17, 10, WHITE); }), support::Messages{"bitmap not locked"});
    EXPECT_EQ(stage.Count(), 16) << "drawing goes on";
}

TEST(Linedraw, APatternLineWithoutPatternAssertsAndDrawsNothing)
{
    support::LineStage stage(20, 20);
    for (const Tov_Flag flags : {PAT, PAT | OPEN, PAT | AA | Kanvo_LF_ADVANCEPATTERN, PAT | CAPS})
    {
        EXPECT_EQ(support::MessagesOf([&] { stage.Line(2, 10, 17, 10, WHITE, flags, 6.0F); }),
                  support::Messages{"no line pattern set"});
    }
    EXPECT_EQ(stage.Count(), 0);
    EXPECT_EQ(stage.State().GetValue(LINEPATTERNOFFSET), 0.0F);
    std::uint32_t      pixels[16 * 16] = {};
    Kanvo_BitmapARGB32 bare(nullptr, 16, 16, BBT_RAM, pixels);  // no screen, so no state
    bare.Lock();
    EXPECT_EQ(support::MessagesOf([&] { bare.DrawLine(Kanvo_Vector2(2, 8), Kanvo_Vector2(12, 8), WHITE, PAT, 3, 3); }),
              support::Messages{"no line pattern set"});
    bare.DrawLine(Kanvo_Vector2(2, 8), Kanvo_Vector2(12, 8), WHITE, 0, 1, 0);
    EXPECT_EQ(pixels[8 * 16 + 5], WHITE);
}

TEST(Linedraw, AnUnclippedLineOutsideIsAsserted)
{
    support::LineStage stage(96, 80);
    const auto         messages = [&](float x0, float y0, float x1, float y1, Tov_Flag flags = OPEN, float width = 1.0F)
    { return support::MessagesOf([&] { stage.Line(x0, y0, x1, y1, WHITE, flags, width); }); };
    for (const Tov_Flag quality : QUALITIES)
    {
        EXPECT_EQ(messages(10, 10, 60, 40, OPEN | quality), support::Messages{});
        EXPECT_EQ(messages(20, 20, 60, 40, OPEN | quality, 8), support::Messages{});
        EXPECT_EQ(messages(-20, 20, 60, 40, OPEN | quality), support::Messages{OUTSIDE});
        EXPECT_EQ(messages(20, 20, 60, 400, OPEN | quality), support::Messages{OUTSIDE});
        EXPECT_EQ(messages(20, -2, 60, 40, OPEN | quality, 8), support::Messages{OUTSIDE});
        EXPECT_EQ(messages(20, 20, 97, 40, OPEN | quality, 8), support::Messages{OUTSIDE});
        EXPECT_EQ(messages(-20, 20, 60, 400, quality, 8), support::Messages{}) << "clipped ones may lie anywhere";
    }
}

TEST(Linedraw, RejectedLinesAreCountedAndDrawNothing)
{
    support::LineSpies spies;
    support::LineStage stage(40, 30);
    for (const Tov_Flag quality : QUALITIES)
    {
        spies.Clear();
        for (const float width : {1.0F, 9.0F})
        {
            stage.Line(-60, 10, -30, 20, WHITE, quality | CAPS, width);
            stage.Line(80, 10, 80, 20, WHITE, quality, width);
            stage.Line(-30, 15, 20, -50, WHITE, quality, width, width / 2.0F);
        }
        EXPECT_EQ(spies.numberOfLines.sum, 6.0);
        EXPECT_EQ(spies.rejectedLines.sum, 6.0);
        EXPECT_EQ(spies.lineWidth.count, 6);
        EXPECT_EQ(spies.lineLength.count, 0);
        EXPECT_EQ(spies.numberOfDots.count + spies.rejectedDots.count, 0) << "no caps either";
        EXPECT_EQ(spies.clipping.starts, 6);
        EXPECT_EQ(spies.thinLines.starts, 0);
    }
    EXPECT_EQ(stage.Count(), 0);
}

TEST(Linedraw, WidthsAreCountedAsTheyAreDrawn)
{
    support::LineSpies spies;
    support::LineStage stage(40, 30);
    stage.Line(10, 10, 30, 10, WHITE, 0, 0.2F);
    EXPECT_EQ(spies.lineWidth.last, 1.0F);
    stage.Line(10, 10, 30, 10, WHITE, 0, 3.0F);
    EXPECT_EQ(spies.lineWidth.last, 2.5F);
    stage.Line(10, 10, 30, 10, WHITE, AA, 3.0F, 7.25F);
    EXPECT_EQ(spies.lineWidth.last, 7.25F);
    EXPECT_EQ(spies.lineLength.count, 3);
}

// ---- hazards: the border of the bitmap ------------------------------------------------------------------------------

TEST(LineHazards, ThinLinesNearTheBorderTakeTheClippedPath)
{
    ExpectAsReference({95.5F, 10, 95.5F, 79, WHITE, AA, 1, 0});
    ExpectAsReference({94, 10, 94, 79, WHITE, HQ, 1, 0});
    ExpectAsReference({-0.6F, 10, -0.6F, 60, WHITE, 0, 1, 0});
    support::LineStage stage(96, 80);
    stage.Line(95.5F, 10, 95.5F, 79, WHITE, AA);
    stage.Line(94, 10, 94, 79, WHITE, HQ);
    for (int y = 0; y < 80; ++y) EXPECT_EQ(stage.At(0, y), BLACK) << "the next row";
    stage.Fill(BLACK);
    stage.Line(-0.6F, 10, -0.6F, 60, WHITE, 0);
    for (int y = 0; y < 80; ++y) EXPECT_EQ(stage.At(95, y), BLACK) << "the row before";
}

TEST(LineHazards, ThinLinesOfTwoWidthsNearTheBorderDoToo)
{
    for (const Tov_Flag quality : QUALITIES)
    {
        ExpectAsReference({50, 10, 50, 60, WHITE, quality, 1, 0});  // leaves the small margin behind
        ExpectAsReference({95, 10, 95, 79, WHITE, quality, 1.0F, 0.5F});
        ExpectAsReference({0, 10, 0, 79, WHITE, quality, 0.5F, 1.0F});
    }
}

TEST(LineHazards, FilteredUnclippedLinesThatEndAtTheBorder)
{
    for (const Tov_Flag quality : {HQ, HQ | AA})
    {
        ExpectAsReference({3, 0, 0.4F, 79, WHITE, OPEN | quality, 1, 0});
        ExpectAsReference({94, 0, 94, 79, WHITE, OPEN | quality, 1, 0});
        ExpectAsReference({95, 0, 95, 79, WHITE, OPEN | quality, 1, 0});
        ExpectAsReference({0, 78.6F, 95, 78.6F, WHITE, OPEN | quality, 1, 0});
    }
}

TEST(LineHazards, UnclippedThinLinesThatBreakTheirPromise)
{
    for (const Tov_Flag quality : QUALITIES)
    {
        ExpectAsReference({10, -20, 10, 50, WHITE, OPEN | quality, 1, 0});
        ExpectAsReference({10, 10, 10, 3000, WHITE, OPEN | quality, 1, 0});
        ExpectAsReference({10, 40000, 60, 40000, WHITE, OPEN | quality, 1, 0});
        ExpectAsReference({-40000, 40, 40000, 41, WHITE, OPEN | quality, 1, 0});
        ExpectAsReference({-500, -500, 900, 1000, WHITE, OPEN | quality, 1, 0});
    }
}

TEST(LineHazards, UnclippedThinLinesEndAt2048)
{
    // bitmaps larger than that are the only place where it can be seen
    for (const Tov_Flag quality : QUALITIES)
    {
        const auto pixels = ExpectAsReference({2000, 4, 2100, 4, WHITE, OPEN | quality, 1, 0}, {2200, 9});
        for (unsigned x = 2049 + 4; x < 2200; ++x) ASSERT_EQ(pixels[4 * 2200 + x], 0xFF204060U) << x;
        EXPECT_NE(pixels[4 * 2200 + 2047], 0xFF204060U);
    }
}

TEST(LineHazards, BlendsOfAlphaZeroBesideTheBitmapAreLeftOut)
{
    ExpectAsReference({95, 0, 95, 79, WHITE, OPEN | AA, 1, 0});
    ExpectAsReference({91.5F, 10, 91.5F, 75, WHITE, OPEN | AA, 8, 0});
    ExpectAsReference({0, 79, 95, 79, WHITE, OPEN | AA, 1, 0});
    ExpectAsReference({10, 75.5F, 80, 75.5F, WHITE, OPEN | AA, 8, 0});
}

TEST(LineHazards, FilteredWideBodiesReachOnePixelFurther)
{
    for (const Tov_Flag quality : {HQ, HQ | AA})
    {
        ExpectAsReference({91, 10, 91, 70, WHITE, OPEN | quality, 8, 0});
        ExpectAsReference({10, 75, 80, 75, WHITE, OPEN | quality, 8, 0});
        ExpectAsReference({92, 10, 92, 14, WHITE, OPEN | quality, 8, 0});
    }
}

TEST(LineHazards, UnclippedWideLinesThatBreakTheirPromise)
{
    for (const Tov_Flag quality : QUALITIES)
    {
        ExpectAsReference({20, 40, 70, 40, WHITE, OPEN | quality, 8, 90});
        ExpectAsReference({20, 40, 70, 40, WHITE, OPEN | quality | CAPS, 90, 8});
        ExpectAsReference({-300, 40, 700, -20, WHITE, OPEN | quality, 30, 0});
        ExpectAsReference({40, -3000, 45, 2000, WHITE, OPEN | quality | CAPS, 30, 3});
    }
}

TEST(LineHazards, LoopsEndAtTheTopOfTheRange)
{
    Kanvo_Pattern pattern;
    for (const Tov_Flag quality : QUALITIES)
    {
        for (const Tov_Flag style : {Tov_Flag{0}, PAT})
        {
            ExpectAsReference({32700, 10, 32766.5F, 10, WHITE, OPEN | quality | style, 100, 0}, {}, &pattern);
            ExpectAsReference({32600, 10, 32766.5F, 10, WHITE, OPEN | quality | style, 10, 0}, {}, &pattern);
            ExpectAsReference({10, 32600, 10, 32767, WHITE, OPEN | quality | style, 10, 0}, {}, &pattern);
        }
        ExpectAsReference({32700, 10, 32767, 10, WHITE, OPEN | quality, 1, 0});
    }
}

TEST(LineHazards, BitmapsAsWideAs16Bits)
{
    for (const Tov_Flag quality : QUALITIES)
    {
        support::LineStage stage(32767, 4);
        stage.Line(32700, 1, 32766, 1, WHITE, quality);
        EXPECT_NE(stage.At(32765, 1), BLACK);
        stage.Line(32600, 2, 32755, 2, WHITE, quality, 3);
        EXPECT_NE(stage.At(32753, 2), BLACK);
        stage.Line(32600, 2, 40000, 2, WHITE, quality, 3);
        EXPECT_TRUE(stage.IsSlackUntouched());
    }
    // one pixel more than 16.16 can name: whatever is drawn, it ends and stays inside
    for (const Tov_Flag quality : QUALITIES)
    {
        support::AssertCapture asserts;
        support::LineStage     stage(40000, 8);
        stage.Line(32700, 3, 32767, 3, WHITE, quality);
        stage.Line(32000, 3, 39999, 4, WHITE, quality, 5);
        stage.Line(0, 0, 39999, 7, WHITE, quality | OPEN, 5);
        stage.Line(39000, 3, 39999, 3, WHITE, quality | OPEN);
        stage.Dot(39990, 4, 3, WHITE, quality);
        EXPECT_TRUE(stage.IsSlackUntouched());
    }
}

TEST(LineHazards, ANegativeEndWidthIsNone)
{
    for (const Tov_Flag quality : QUALITIES)
    {
        for (const Tov_Flag clip : {Tov_Flag{0}, OPEN})
        {
            ExpectAsReference({20, 50, 30, 50, WHITE, quality | clip, 8.5F, -87.5F});
            ExpectAsReference({20, 50, 30, 50, WHITE, quality | clip, -87.5F, 8.5F});
            ExpectAsReference({20, 50, 60, 55, WHITE, quality | clip, -3.0F, -4.0F});
            ExpectAsReference({20, 50, 60, 55, WHITE, quality | clip, 12.0F, 0.1F});
        }
    }
}

TEST(LineHazards, AVeryWideLineCostsWhatIsVisible)
{
    for (const Tov_Flag quality : {AA, HQ})
    {
        support::LineStage stage(96, 80);
        const double       narrow = Time([&] { stage.Line(-200, 0, 300, 79, WHITE, quality, 400); });
        const double       wide   = Time([&] { stage.Line(-20000, -8000, 20000, 8079, WHITE, quality, 16000); });
        EXPECT_GE(stage.At(48, 40) & 255U, 253U);
        EXPECT_LT(wide, 3.0 * narrow);
        EXPECT_LT(wide, 40 * 5e6) << "nanoseconds for forty";
    }
}

TEST(LineHazards, NumbersThatAreNotFiniteDrawNothing)
{
    Kanvo_Pattern             pattern;
    const Kanvo_Pattern::Stop stop{0.0F, WHITE};
    ASSERT_TRUE(pattern.SetStops(&stop, 1, 8.0F));
    support::AssertCapture asserts;
    support::LineStage     stage(96, 80);
    pattern.Use(stage.State());
    for (const float bad : {NAN_VALUE, -NAN_VALUE, INF, -INF})
    {
        for (int argument = 0; argument < 6; ++argument)
        {
            for (const Tov_Flag quality : QUALITIES)
            {
                for (const Tov_Flag more : {Tov_Flag{0}, OPEN, PAT, PAT | OPEN, CAPS, OPEN | CAPS})
                {
                    for (const float width : {1.0F, 8.0F})
                    {
                        float numbers[]   = {10, 20, 60, 40, width, width};
                        numbers[argument] = bad;
                        stage.Line(numbers[0], numbers[1], numbers[2], numbers[3], WHITE, quality | more, numbers[4],
                                   numbers[5]);
                    }
                }
            }
        }
    }
    EXPECT_EQ(stage.Count(), 0);
    EXPECT_TRUE(stage.IsSlackUntouched());
    stage.Line(NAN_VALUE, 20, 60, 40, WHITE, PAT | Kanvo_LF_ADVANCEPATTERN, 4);
    stage.Line(INF, 20, 60, 40, WHITE, PAT | Kanvo_LF_ADVANCEPATTERN, 4);
    EXPECT_EQ(stage.State().GetValue(LINEPATTERNOFFSET), 0.0F);
}

TEST(LineHazards, SumsBeyond16BitsWrapAndStayInside)
{
    for (const Tov_Flag quality : QUALITIES)
    {
        for (const Tov_Flag clip : {Tov_Flag{0}, OPEN})
        {
            for (const float width : {16384.0F, 30000.0F, 1.0e9F, MAX})
            {
                support::AssertCapture asserts;
                support::LineStage     stage(96, 80);
                stage.Bitmap().SetCliprect(20, 20, 70, 60);
                stage.Line(-20000, -20001, 9000, 9000, WHITE, quality | clip | CAPS, width);
                stage.Line(-30000, 40, 30000, 50, WHITE, quality | clip, width, 1.0F);
                stage.Line(40, 40, 41, 40, WHITE, quality | clip | CAPS, width);
                EXPECT_TRUE(stage.IsSlackUntouched());
                if (clip != 0) continue;
                for (int y = 0; y < 80; ++y)
                {
                    for (int x = 0; x < 96; ++x)
                    {
                        const bool inside = x >= 20 && x <= 70 && y >= 20 && y <= 60;
                        ASSERT_TRUE(inside || stage.At(x, y) == BLACK) << x << ' ' << y;
                    }
                }
            }
        }
    }
}

TEST(LineHazards, NegativeCoordinatesOfUnclippedLinesAreNotAddresses)
{
    for (const Tov_Flag quality : QUALITIES)
    {
        for (const float width : {1.0F, 7.0F})
        {
            ExpectAsReference({-5, -5, 3, 2, WHITE, OPEN | quality, width, 0});
            ExpectAsReference({-50, -1, 40, -1, WHITE, OPEN | quality, width, 0});
            ExpectAsReference({-1, -50, -1, 40, WHITE, OPEN | quality, width, 0});
            ExpectAsReference({-1.0F, -1.0F, -1.0F, -1.0F, WHITE, OPEN | quality, width, 0});
        }
    }
}

TEST(LineHazards, CapsFarAwayAndHugeOnes)
{
    for (const Tov_Flag quality : QUALITIES)
    {
        for (const Tov_Flag clip : {Tov_Flag{0}, OPEN})
        {
            support::AssertCapture asserts;
            support::LineStage     stage(96, 80);
            stage.Line(-3.0e9F, 40, 48, 40, WHITE, quality | clip | CAPS, 9000);
            stage.Line(48, 40, 3.0e9F, 3.0e9F, WHITE, quality | clip | CAPS, 16384, 2);
            stage.Line(1.0e30F, 40, -1.0e30F, 41, WHITE, quality | clip | CAPS, 10, 20);
            EXPECT_TRUE(stage.IsSlackUntouched());
        }
    }
}

TEST(LineHazards, APatternThatStartsBeyond16BitsIsDrawn)
{
    Kanvo_Pattern             pattern;
    const Kanvo_Pattern::Stop stops[] = {{0.0F, WHITE}, {1.0F, 0xFFFF0000U}};
    ASSERT_TRUE(pattern.SetStops(stops, 2, 10.0F));
    for (const Tov_Flag quality : QUALITIES)
    {
        support::LineStage stage(96, 80);
        pattern.Use(stage.State());
        stage.Line(-1.0e6F, 40, 200, 40, 0, PAT | quality, 5);
        for (int x = 5; x < 90; ++x) EXPECT_NE(stage.At(x, 40), BLACK) << x;
    }
}

TEST(LineHazards, AClipRectangleLargerThanTheBitmapIsTheBitmap)
{
    for (const Tov_Flag quality : QUALITIES)
    {
        for (const float width : {1.0F, 9.0F})
        {
            ExpectAsReference({-50, -20, 150, 100, WHITE, quality | CAPS, width, 0}, {96, 80, {0, 0, 500, 500}});
            ExpectAsReference({90, 5, 130, 5, WHITE, quality | CAPS, width, 0},
                              {96, 80, {0, 0, 0xFFFFFFFFU, 0x80000000U}});
            const auto none = ExpectAsReference({5, 5, 60, 60, WHITE, OPEN, width, 0}, {96, 80, {90, 70, 10, 10}});
            EXPECT_GT(CountChanged(none), 10) << "unclipped lines do not ask";
        }
        support::LineStage stage(96, 80);
        for (const auto& clip : {std::vector<unsigned>{96, 0, 200, 79}, {10, 10, 5, 70}, {0, 80, 95, 90}})
        {
            stage.Bitmap().SetCliprect(clip[0], clip[1], clip[2], clip[3]);
            stage.Line(-50, -20, 150, 100, WHITE, quality | CAPS, 1);
            stage.Line(-50, -20, 150, 100, WHITE, quality | CAPS, 30);
        }
        EXPECT_EQ(stage.Count(), 0);
    }
}

TEST(LineHazards, EveryEdgeAndCornerOfTheClipRectangle)
{
    const Wanted wanted{40, 32, {9, 7, 30, 24}};
    for (const Tov_Flag quality : QUALITIES)
    {
        for (const float width : {1.0F, 2.5F, 9.0F})
        {
            for (int step = -12; step <= 12; ++step)
            {
                const float at = static_cast<float>(step) / 4.0F;
                for (const float edge : {9.0F, 30.0F})
                {
                    ExpectAsReference({edge + at, 2, edge + at, 29, WHITE, quality, width, 0}, wanted);
                    ExpectAsReference({edge + at, 12.3F, 20, 15.7F, WHITE, quality, width, 0}, wanted);
                }
                for (const float edge : {7.0F, 24.0F})
                {
                    ExpectAsReference({2, edge + at, 37, edge + at, WHITE, quality, width, 0}, wanted);
                    ExpectAsReference({20.2F, edge + at, 22.6F, 15, WHITE, quality, width, 0}, wanted);
                }
                ExpectAsReference({5 + at, 5 - at, 12 + at, 12 - at, WHITE, quality, width, 0}, wanted);
                ExpectAsReference({34 + at, 28 - at, 26 + at, 20 - at, WHITE, quality, width, 0}, wanted);
            }
        }
    }
}

// ---- far away, and bounded time -------------------------------------------------------------------------------------

TEST(LineHazards, EndPointsAtTheLimitsOfIntegers)
{
    for (const float far : {32768.0F, 1048576.0F, 1073741824.0F, 2147483648.0F})
    {
        for (const Tov_Flag quality : QUALITIES)
        {
            for (const float width : {1.0F, 6.0F})
            {
                SCOPED_TRACE(testing::Message() << far << ' ' << quality << ' ' << width);
                ExpectAsReference({-far, 40, far, 40, WHITE, quality, width, 0});
                ExpectAsReference({48, far, 48, -far, WHITE, quality, width, 0});
                ExpectAsReference({-far, -far, far, far, WHITE, quality, width, 0});
                ExpectAsReference({far, -far, 20, 30, WHITE, quality, width, 0});
                ExpectAsReference({far, 40, far, 60, WHITE, quality, width, 0});
                support::LineStage stage(96, 80);
                stage.Line(-far, 40, far, 40, WHITE, quality, width);
                for (int x = 0; x < 96; ++x) EXPECT_NE(stage.At(x, 40), BLACK) << x;
            }
        }
    }
}

TEST(LineHazards, EveryFloatStaysInsideTheClipRectangle)
{
    constexpr float    VALUES[] = {0.0F,  -0.0F,  TINY,   -TINY,   1.0e-38F, 0.5F,     40.0F, 95.9999F,
                                   -1.0F, 1.0e4F, 1.0e9F, -1.0e9F, 1.0e30F,  -1.0e30F, MAX,   -MAX};
    support::LineStage stage(96, 80);
    stage.Bitmap().SetCliprect(20, 20, 70, 60);
    for (const Tov_Flag quality : QUALITIES)
    {
        for (const float x0 : VALUES)
        {
            for (const float y0 : VALUES)
            {
                for (const float x1 : VALUES)
                {
                    for (const float y1 : {40.0F, -1.0e30F, MAX, TINY})
                    {
                        stage.Line(x0, y0, x1, y1, WHITE, quality);
                        stage.Line(x0, y0, x1, y1, WHITE, quality | CAPS, 5, 3);
                    }
                }
            }
        }
    }
    for (int y = 0; y < 80; ++y)
    {
        for (int x = 0; x < 96; ++x)
        {
            const bool inside = x >= 20 && x <= 70 && y >= 20 && y <= 60;
            ASSERT_TRUE(inside || stage.At(x, y) == BLACK) << x << ' ' << y;
        }
    }
    EXPECT_TRUE(stage.IsSlackUntouched());
}

TEST(LineHazards, TheCostIsThatOfTheVisiblePart)
{
    support::LineStage stage(96, 80);
    Kanvo_Pattern      pattern;
    pattern.Use(stage.State());
    for (const Tov_Flag quality : QUALITIES)
    {
        for (const Tov_Flag style : {Tov_Flag{0}, PAT})
        {
            for (const float width : {1.0F, 6.0F})
            {
                SCOPED_TRACE(testing::Message() << quality << ' ' << style << ' ' << width);
                double ratio = 9.0;
                for (int attempt = 0; attempt < 6 && ratio > 2.0; ++attempt)
                {
                    const double near = Time([&] { stage.Line(-20, 30, 120, 50, WHITE, quality | style, width); });
                    const double far =
                        Time([&] { stage.Line(-7.0e7F, -1.0e7F, 7.0e7F, 1.0e7F, WHITE, quality | style, width); });
                    ratio = std::min(ratio, far / near);
                }
                EXPECT_LE(ratio, 2.0);
            }
        }
    }
}
