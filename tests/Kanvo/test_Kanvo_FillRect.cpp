// Tests of FillRect: path, arguments, arithmetic, clipping at every extreme, misuse. Expected pixels are calculated by hand
// or by the naive reference; test_Kanvo_Blit_random.cpp adds random calls.
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BlitStage.h"
#include "DrawSpies.h"
#include "Fence.h"
#include "NaiveMix.h"
#include "PoorBitmaps.h"

namespace
{

using support::BlitPair;
using support::BOTH_PATHS;
using support::LoopCall;
using support::Messages;
using support::MessagesOf;
using support::NO_BUFFER;
using support::NOT_INSIDE;
using support::NOT_LOCKED;
using support::Snapshot;
using support::Stage;
using support::StageOf;
using Pixels = std::vector<std::uint32_t>;

constexpr Tov_Flag KEY = BLIT_COLORKEY, NOCLIP = BLIT_NOCLIP;

//! What a fill of one pixel makes of it.
std::uint32_t Filled(unsigned optimized, std::uint32_t under, std::uint32_t color, Tov_Flag flags = 0)
{
    Stage stage(optimized, 1, 1, under);
    stage.FillRect(1, 1, 0, 0, color, flags);
    return stage.pixels[0];
}

}  // namespace

// ---- who fills ------------------------------------------------------------------------------------------------------

TEST(FillRect, ColourFlagsAndRenderStateChooseTheWorker)
{
    struct Cell
    {
        unsigned      optimized;
        Tov_Flag      flags;
        std::uint32_t color;
        const char*   worker;
    };
    constexpr const char* FILL = "neonloops_fill_argb32";
    constexpr const char* MIX  = "neonloops_fill_argb32_ag";
    constexpr const char* SLOW = "Blit_FILLRECT";
    // clang-format off
    constexpr Cell CELLS[] = {
        {OB_NEON, 0,                           0xFF112233, FILL},
        {OB_NEON, 0,                           0xFE112233, MIX},
        {OB_NEON, 0,                           0x01112233, MIX},
        {OB_NEON, 0,                           0x00112233, MIX},
        {OB_NEON, NOCLIP,                 0xFF112233, FILL},
        {OB_NEON, NOCLIP,                 0x80112233, MIX},
        {OB_NEON, 0xFFFFFFFE,                  0xFF112233, FILL},
        {OB_NEON, KEY,               0xFF112233, SLOW},
        {OB_NEON, KEY,               0x80112233, SLOW},
        {OB_NEON, KEY | NOCLIP, 0xFF112233, SLOW},
        {OB_NONE, 0,                           0xFF112233, SLOW},
        {OB_NONE, 0,                           0x80112233, SLOW},
        {OB_NONE, 0,                           0x00112233, SLOW},
        {OB_NONE, NOCLIP,                 0xFF112233, SLOW},
        {OB_NONE, KEY,               0xFF112233, SLOW},
        {2,       0,                           0xFF112233, SLOW},
        {0x101,   0,                           0xFF112233, SLOW},
    };
    // clang-format on
    for (const Cell& cell : CELLS)
    {
        Stage              stage(cell.optimized, 3, 2, 0xFF000000);
        support::LoopSpies loops;
        support::PerfSpies counters;
        stage.FillRect(2, 1, 1, 1, cell.color, cell.flags);
        const std::string worker = cell.worker;
        if (worker == SLOW)
        {
            EXPECT_TRUE(loops.Calls().empty()) << cell.optimized << " " << cell.flags << " " << cell.color;
            EXPECT_TRUE(counters.OnlyCounted(SLOW)) << cell.optimized << " " << cell.flags << " " << cell.color;
        }
        else
        {
            LoopCall expected;
            expected.loop     = cell.worker;
            expected.dst      = &stage.pixels[4];
            expected.dstPitch = 12;
            expected.width    = 2;
            expected.height   = 1;
            expected.color    = cell.color;
            expected.alpha    = worker == MIX ? static_cast<int>(cell.color >> 24) : -1;
            EXPECT_EQ(loops.Calls(), std::vector<LoopCall>{expected});
            EXPECT_TRUE(counters.OnlyCounted(""));
        }
    }
}

TEST(FillRect, LoopsGetTheClippedRectangleAndThePitchInBytes)
{
    Kanvo_Screen           screen(nullptr);
    Pixels                 pixels(16 * 6);
    support::PitchedTarget target(&screen, 9, 6, pixels.data(), 64);
    screen.GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON);
    target.SetCliprect(2, 1, 6, 3);
    target.Lock();
    support::LoopSpies loops;
    target.FillRect(8, 9, -1, -2, 0x40ABCDEF, 0);
    LoopCall expected;
    expected.loop     = "neonloops_fill_argb32_ag";
    expected.dst      = &pixels[16 + 2];
    expected.dstPitch = 64;
    expected.width    = 5;
    expected.height   = 3;
    expected.color    = 0x40ABCDEF;
    expected.alpha    = 0x40;
    EXPECT_EQ(loops.Calls(), std::vector<LoopCall>{expected});
}

TEST(FillRect, TheCounterStartsBeforeTheFirstPixelAndStopsAfterTheLast)
{
    for (const std::uint32_t color : {0xFFFFFFFFU, 0x80FFFFFFU})
    {
        Stage              stage(OB_NONE, 2, 2, 0xFF000000);
        support::PerfSpies counters;
        std::uint32_t      firstAtStart = 0;
        std::uint32_t      lastAtStop   = 0;
        counters.onEvent                = [&](const support::PerfEvent& event)
        {
            if (event.starts) firstAtStart = stage.pixels.front();
            if (!event.starts) lastAtStop = stage.pixels.back();
        };
        stage.FillRect(2, 2, 0, 0, color);
        EXPECT_EQ(firstAtStart, 0xFF000000);
        EXPECT_NE(lastAtStop, 0xFF000000);
    }
}

TEST(FillRect, TheColourIsNotConvertedByTheTarget)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        StageOf<support::SwappedTarget> stage(optimized, 1, 1, 0);
        stage.FillRect(1, 1, 0, 0, 0xFF123456);
        EXPECT_EQ(stage.pixels[0], 0xFF123456);
    }
}

// ---- arithmetic -----------------------------------------------------------------------------------------------------

TEST(FillRect, AnOpaqueColourIsStored)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        EXPECT_EQ(Filled(optimized, 0x12345678, 0xFFABCDEF), 0xFFABCDEF);
        EXPECT_EQ(Filled(optimized, 0x12345678, 0xFF000000, KEY), 0xFF000000);
        EXPECT_EQ(Filled(optimized, 0x12345678, 0xFFFFFFFF, NOCLIP), 0xFFFFFFFF);
    }
}

TEST(FillRect, ATranslucentColourIsMixedInByItsAlpha)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        EXPECT_EQ(Filled(optimized, 0xFFFFFFFF, 0x80000000), 0xFF7F7F7F);  // 255 - 127.5 rounded down
        EXPECT_EQ(Filled(optimized, 0xFF000000, 0x80FFFFFF), 0xFF7F7F7F);  // 127.5 rounded down
        EXPECT_EQ(Filled(optimized, 0x00000000, 0x80FFFFFF), 0x807F7F7F);
        EXPECT_EQ(Filled(optimized, 0xFF000000, 0xFEFFFFFF), 0xFFFDFDFD);  // 255 * 254 / 256 = 253.0
        EXPECT_EQ(Filled(optimized, 0x80000000, 0x80000000), 0xBF000000);  // 128 + 127 * 128 / 255 = 191.7
        EXPECT_EQ(Filled(optimized, 0xFF0A141E, 0x01FFFFFF), 0xFF0A141E);  // less than one step
        EXPECT_EQ(Filled(optimized, 0xFF0A141E, 0x01000000), 0xFF09131D);  // down, every fraction is a step
    }
}

TEST(FillRect, AtAlphaZeroNoPixelChangesButAllAreVisited)
{
    for (const std::uint32_t under : {0x00000000U, 0x00FFFFFFU, 0x12345678U, 0xFFFFFFFFU})
    {
        EXPECT_EQ(Filled(OB_NONE, under, 0x00ABCDEF), under);
        EXPECT_EQ(Filled(OB_NEON, under, 0x00ABCDEF), under);
    }
    // a fill of nothing is work all the same, for the counter and for the loop
    Stage              portable(OB_NONE, 2, 2, 7);
    Stage              optimised(OB_NEON, 2, 2, 7);
    support::LoopSpies loops;
    support::PerfSpies counters;
    portable.FillRect(2, 2, 0, 0, 0x00FFFFFF);
    EXPECT_TRUE(counters.OnlyCounted("Blit_FILLRECT"));
    EXPECT_TRUE(loops.Calls().empty());
    optimised.FillRect(2, 2, 0, 0, 0x00FFFFFF);
    ASSERT_EQ(loops.Calls().size(), 1U);
    EXPECT_EQ(loops.Calls()[0].alpha, 0);
    EXPECT_EQ(loops.Calls()[0].width, 2U);
}

TEST(FillRect, EveryAlphaOverEveryAlphaAndLevel)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage stage(optimized, 256, 1, 0);
        for (unsigned alpha = 0; alpha < 256; ++alpha)
        {
            for (const std::uint32_t color : {0x00000000U, 0x00FFFFFFU, 0x007F80C1U})
            {
                for (unsigned x = 0; x < 256; ++x) stage.pixels[x] = x << 24 | x << 16 | (255 - x) << 8 | (x ^ 0x55);
                const Pixels under = stage.pixels;
                stage.FillRect(256, 1, 0, 0, alpha << 24 | color);
                for (unsigned x = 0; x < 256; ++x)
                {
                    ASSERT_EQ(stage.pixels[x],
                              support::BlitMixLinear(under[x], alpha << 24 | color, static_cast<int>(alpha)))
                        << x << " " << alpha;
                }
            }
        }
    }
}

TEST(FillRect, AThousandFillsStopAtTheirFixedPoint)
{
    // One step goes floor((s - d) * a / 256). Downwards every fraction is a step, so the end is s itself; upwards it is
    // the first level with (s - d) * a < 256.
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const int alpha : {1, 2, 3, 64, 128, 254, 255})
        {
            const int gap = alpha == 255 ? 0 : (256 + alpha - 1) / alpha - 1;
            for (const int level : {0, 1, 100, 255})
            {
                const auto grey = [](int value) { return support::Join(255, value, value, value); };
                Stage      stage(optimized, 2, {grey(0), grey(255)});
                for (int turn = 0; turn < 1000; ++turn)
                {
                    stage.FillRect(2, 1, 0, 0, support::Join(alpha, level, level, level));
                }
                EXPECT_EQ(stage.pixels, (Pixels{grey(std::max(0, level - gap)), grey(level)}))
                    << alpha << " towards " << level;
            }
        }
    }
}

// ---- where ----------------------------------------------------------------------------------------------------------

TEST(FillRect, FillsTheRectangleAndNothingElse)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const std::uint32_t color : {0xFF00FF00U, 0x8000FF00U})
        {
            Stage stage(optimized, 6, 5, 0xFF000000);
            stage.FillRect(3, 2, 1, 2, color);
            const std::uint32_t drawn = color == 0xFF00FF00 ? 0xFF00FF00 : 0xFF007F00;
            for (unsigned y = 0; y < 5; ++y)
            {
                for (unsigned x = 0; x < 6; ++x)
                {
                    const bool inside = x >= 1 && x <= 3 && y >= 2 && y <= 3;
                    EXPECT_EQ(stage.At(x, y), inside ? drawn : 0xFF000000) << x << ", " << y;
                }
            }
        }
    }
}

TEST(FillRect, EveryExtremeOfPositionAndSizeDrawsWhatLiesInside)
{
    constexpr std::int32_t                W = 7;
    constexpr std::int32_t                H = 5;
    constexpr std::array<std::int32_t, 9> ALONG{INT32_MIN, INT32_MIN + 1, -1, 0, 1, W - 1, W, INT32_MAX - 1, INT32_MAX};
    constexpr std::array<std::int32_t, 9> DOWN{INT32_MIN, INT32_MIN + 1, -1, 0, 1, H - 1, H, INT32_MAX - 1, INT32_MAX};
    for (const unsigned optimized : BOTH_PATHS)
    {
        BlitPair whole(optimized, {W, H}, BM_ARGB32, {1, 1}, 8);
        BlitPair clipped(optimized, {W, H}, BM_ARGB32, {1, 1}, 8);
        clipped.Clip(1, 2, 5, 3);
        for (const std::int32_t x : ALONG)
        {
            for (const std::int32_t y : DOWN)
            {
                for (const std::int32_t w : ALONG)
                {
                    for (const std::int32_t h : DOWN)
                    {
                        const auto width  = static_cast<std::uint32_t>(w);  // a "negative" size is a huge one
                        const auto height = static_cast<std::uint32_t>(h);
                        for (const std::uint32_t color : {0xFF112233U, 0x7FFFEEDDU})
                        {
                            ASSERT_TRUE(whole.FillRect(width, height, x, y, color, 0));
                            ASSERT_TRUE(whole.FillRect(width, height, x, y, color, KEY));
                            ASSERT_TRUE(clipped.FillRect(width, height, x, y, color, 0));
                            if (w == 0 || h == 0) continue;  // whether nothing lies inside is nobody's question
                            ASSERT_TRUE(whole.FillRect(width, height, x, y, color, NOCLIP));
                            ASSERT_TRUE(clipped.FillRect(width, height, x, y, color, NOCLIP));
                        }
                    }
                }
            }
        }
    }
}

TEST(FillRect, EveryPositionUnderEveryKindOfClipRectangle)
{
    constexpr std::array<std::uint32_t, 4> CLIPS[] = {
        {0, 0, 6, 4},
        {2, 1, 4, 3},
        {3, 3, 3, 3},
        {0, 0, 0xFFFFFFFF, 0xFFFFFFFF},  // larger than the bitmap
        {5, 3, 0x7FFFFFFF, 0x80000000},  // beyond it
        {4, 0, 3, 4},                    // empty
        {6, 4, 0, 0},                    // inverted
        {7, 0, 9, 4},                    // outside
        {0, 5, 6, 5},
        {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF},
    };
    for (const unsigned optimized : BOTH_PATHS)
    {
        BlitPair pair(optimized, {7, 5}, BM_ARGB32, {1, 1}, 8);
        for (const auto& [minX, minY, maxX, maxY] : CLIPS)
        {
            pair.Clip(minX, minY, maxX, maxY);
            for (int y = -4; y <= 6; ++y)
            {
                for (int x = -4; x <= 8; ++x)
                {
                    for (unsigned size = 0; size <= 4; ++size)
                    {
                        ASSERT_TRUE(pair.FillRect(size, 3, x, y, 0xFF112233, 0));
                        ASSERT_TRUE(pair.FillRect(4, size, x, y, 0x80112233, 0));
                    }
                }
            }
        }
    }
}

TEST(FillRect, PicturesOfOnePixelOneRowAndOneColumnBetweenFences)
{
    constexpr BlitPair::Size SIZES[] = {{1, 1}, {1, 9}, {9, 1}, {2, 2}, {129, 3}};
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const BlitPair::Size& size : SIZES)
        {
            for (const auto against : {support::Against::FrontFence, support::Against::BackFence})
            {
                for (const unsigned padding : {0U, 4U, 12U, 64U})
                {
                    const unsigned         pitch = size.width * 4 + padding;
                    support::Fence         fence(support::Fence::BytesFor(size.width, size.height, pitch, 4), against);
                    Kanvo_Screen           screen(nullptr);
                    support::PitchedTarget target(&screen, size.width, size.height, fence.Data(), pitch);
                    screen.GetRenderState().Set(OPTIMIZED_BLIT, optimized);
                    target.Lock();
                    target.FillRect(0xFFFFFFFF, 0xFFFFFFFF, -5, -5, 0xFF112233, 0);
                    for (std::size_t at = 0; at < fence.Size(); ++at)
                    {
                        const std::uint8_t pixel[4] = {0x33, 0x22, 0x11, 0xFF};
                        const bool         inside   = at % pitch < size.width * 4;
                        ASSERT_EQ(fence.Data()[at], inside ? pixel[at % pitch % 4] : 0xA5) << at;
                    }
                    target.FillRect(size.width, size.height, 0, 0, 0x80112233, NOCLIP);
                    EXPECT_TRUE(fence.IsSlackUntouched());
                }
            }
        }
    }
}

TEST(FillRect, WithoutClippingTheClipRectangleIsNotLookedAt)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage stage(optimized, 3, 3, 0xFF000000);
        stage.target.SetCliprect(1, 1, 1, 1);
        stage.FillRect(3, 3, 0, 0, 0xFF00FF00, NOCLIP);
        EXPECT_TRUE(stage.IsAll(0xFF00FF00));
        stage.target.SetCliprect(2, 2, 0, 0);
        stage.FillRect(3, 3, 0, 0, 0xFF0000FF, NOCLIP);
        EXPECT_TRUE(stage.IsAll(0xFF0000FF));
    }
}

TEST(FillRect, SizesOfZeroDrawNothingInSilence)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, KEY, NOCLIP})
        {
            Stage stage(optimized, 2, 2, 0xFF123456);
            EXPECT_EQ(stage.FillRect(0, 2, 0, 0, 0xFFFFFFFF, flags), Messages{});
            EXPECT_EQ(stage.FillRect(2, 0, 0, 0, 0x80FFFFFF, flags), Messages{});
            EXPECT_EQ(stage.FillRect(0, 0, 1, 1, 0xFFFFFFFF, flags), Messages{});
            EXPECT_TRUE(stage.IsAll(0xFF123456));
        }
    }
}

// ---- misuse, and what a call leaves alone ---------------------------------------------------------------------------

TEST(FillRect, AnUnlockedTargetIsReportedAndFilled)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage stage(optimized, 1, 1, 0xFF000000);
        stage.target.Unlock(0, 0, 0, 0);
        EXPECT_EQ(stage.FillRect(1, 1, 0, 0, 0xFF123456), Messages{NOT_LOCKED});
        EXPECT_EQ(stage.pixels[0], 0xFF123456);
        EXPECT_EQ(stage.FillRect(1, 1, 5, 0, 0xFF654321), Messages{NOT_LOCKED});
        EXPECT_EQ(stage.pixels[0], 0xFF123456);
    }
}

TEST(FillRect, ABrokenPromiseOfNoClippingIsReportedAndDrawsNothing)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage stage(optimized, 3, 3, 0xFF000000);
        for (const std::int32_t at : std::initializer_list<std::int32_t>{-1, 1, 2, 3, INT32_MIN, INT32_MAX})
        {
            EXPECT_EQ(stage.FillRect(3, 1, at, 0, 0xFFFFFFFF, NOCLIP), Messages{NOT_INSIDE});
            EXPECT_EQ(stage.FillRect(1, 3, 0, at, 0x80FFFFFF, NOCLIP), Messages{NOT_INSIDE});
        }
        for (const std::uint32_t size : {4U, 0x80000000U, 0xFFFFFFFFU})
        {
            EXPECT_EQ(stage.FillRect(size, 1, 0, 0, 0xFFFFFFFF, NOCLIP), Messages{NOT_INSIDE});
            EXPECT_EQ(stage.FillRect(1, size, 1, 1, 0xFFFFFFFF, NOCLIP), Messages{NOT_INSIDE});
        }
        EXPECT_TRUE(stage.IsAll(0xFF000000));
    }
}

TEST(FillRect, ATargetWithoutPixelsReportsIt)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        support::PoorBitmaps poor(2, optimized);
        Kanvo_Bitmap&        target = poor.argb32;
        for (const Tov_Flag flags : {Tov_Flag{0}, KEY, NOCLIP})
        {
            EXPECT_EQ(MessagesOf([&] { target.FillRect(2, 2, 0, 0, 0xFFFFFFFF, flags); }), Messages{NO_BUFFER});
            EXPECT_EQ(MessagesOf([&] { target.FillRect(2, 2, 0, 0, 0x80FFFFFF, flags); }), Messages{NO_BUFFER});
        }
    }
}

TEST(FillRect, TargetScreenAndRenderStateStayAsTheyWere)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage stage(optimized, 4, 4, 0xFF000000);
        stage.target.Unlock(0, 0, 3, 3);
        ASSERT_FALSE(stage.target.HasAlpha());
        stage.target.Lock();
        stage.target.SetCliprect(1, 0, 2, 3);
        const Snapshot target(stage.target);
        const Snapshot screen(stage.screen);
        for (const Tov_Flag flags : {Tov_Flag{0}, KEY, NOCLIP})
        {
            for (const std::uint32_t color : {0x00000000U, 0x80FFFFFFU, 0xFFFFFFFFU})
            {
                stage.FillRect(2, 2, 1, 1, color, flags);
                stage.FillRect(9, 9, -1, -1, color, flags);
            }
        }
        EXPECT_TRUE(target.IsUnchanged());
        EXPECT_TRUE(screen.IsUnchanged());
        EXPECT_FALSE(stage.target.HasAlpha());  // until the next Unlock
    }
}
