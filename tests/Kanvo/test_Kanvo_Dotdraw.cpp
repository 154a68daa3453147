// Tests of dots: one-point dots, discs in three qualities, clipping, counters, and numbers that are none. The random
// comparison with the naive reference is in test_Kanvo_Line_random.cpp, areas are in test_Kanvo_Line_properties.cpp.
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Kanvo_Tables.h"
#include "LineStage.h"
#include "NaiveMix.h"

namespace
{

constexpr Tov_Flag      AA = Kanvo_LF_ANTIALIAS, HQ = Kanvo_LF_HQ_AA;
constexpr std::uint32_t WHITE = 0xFFFFFFFFU, BLACK = 0xFF000000U;
constexpr float         INF       = std::numeric_limits<float>::infinity();
constexpr float         NAN_VALUE = std::numeric_limits<float>::quiet_NaN();

//! A dot on transparent black of size x size; the alphas tell the coverage.
std::vector<std::uint32_t> Dot(int size, float x, float y, float radius, Tov_Flag flags)
{
    support::LineStage stage(static_cast<unsigned>(size), static_cast<unsigned>(size), 0);
    stage.Dot(x, y, radius, WHITE, flags);
    return stage.Pixels();
}

int AlphaAt(const std::vector<std::uint32_t>& pixels, int size, int x, int y)
{
    return static_cast<int>(pixels[static_cast<std::size_t>(y * size + x)] >> 24);
}

}  // namespace

// ---- one-point dots -------------------------------------------------------------------------------------------------

TEST(Dotdraw, ARadiusUpToOneIsAPoint)
{
    for (const float radius : {1.0F, 0.3F, 0.0F, -0.0F, -5.0F, -1.0e8F})
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, HQ})
        {
            support::LineStage stage(9, 9, 0x40302010U);
            stage.Dot(4.9F, 3.2F, radius, 0x80112233U, flags);
            EXPECT_EQ(stage.At(4, 3), 0x80112233U) << "stored, not blended: only the anti-aliasing bit blends";
            EXPECT_EQ(stage.Count(0x40302010U), 1);
        }
    }
    support::LineStage stage(9, 9, 0);
    stage.Dot(4.0F, 4.0F, 1.0001F, WHITE);
    EXPECT_GT(stage.Count(0), 1);
}

TEST(Dotdraw, ASoftPointIsSpreadOverFourPixelsThroughTheRamp)
{
    for (const auto& [x, y] : {std::pair{4.0F, 4.0F}, {4.5F, 4.0F}, {4.5F, 4.5F}, {4.25F, 4.75F}, {4.99F, 4.01F}})
    {
        SCOPED_TRACE(testing::Message() << x << ' ' << y);
        support::LineStage stage(9, 9, 0x40302010U);
        stage.Dot(x, y, 0.8F, 0xC0112233U, AA);
        const int  a     = static_cast<int>((x - 4.0F) * 256.0F);
        const int  b     = static_cast<int>((y - 4.0F) * 256.0F);
        const auto check = [&](int px, int py, int product)
        {
            const std::uint32_t expected =
                support::MixLinearSrcAlpha(0x40302010U, 0xC0112233U, g_Kanvo_ubGammaRamp[product / 255]);
            EXPECT_EQ(stage.At(px, py), expected) << px << ' ' << py;
        };
        check(4, 4, (255 - a) * (255 - b));
        check(5, 4, a * (255 - b));
        check(4, 5, (255 - a) * b);
        check(5, 5, a * b);
    }
}

TEST(Dotdraw, ASoftPointLosesItsNeighboursBeyondTheClipRectangleOnly)
{
    support::LineStage stage(9, 9, BLACK);
    stage.Bitmap().SetCliprect(2, 2, 5, 6);
    const auto count = [&](float x, float y)
    {
        stage.Fill(BLACK);
        stage.Dot(x, y, 0.5F, WHITE, AA);
        return stage.Count();
    };
    EXPECT_EQ(count(3.5F, 3.5F), 4);
    EXPECT_EQ(count(5.5F, 3.5F), 2);
    EXPECT_EQ(count(3.5F, 6.5F), 2);
    EXPECT_EQ(count(5.5F, 6.5F), 1);
    EXPECT_EQ(count(1.9F, 3.5F), 0);  // its own pixel is outside, so all of it is
    EXPECT_EQ(count(3.5F, 1.9F), 0);
    EXPECT_EQ(count(6.0F, 3.5F), 0);
    EXPECT_EQ(count(3.5F, 7.0F), 0);
}

TEST(Dotdraw, PointsOutsideAreCountedAndDropped)
{
    support::LineSpies spies;
    support::LineStage stage(9, 9);
    for (const auto& [x, y] : {std::pair{-1.0F, 4.0F},
                               {-0.01F, 4.0F},
                               {9.0F, 4.0F},
                               {4.0F, 9.0F},
                               {4.0F, -3.0e8F},
                               {1.0e30F, 4.0F},
                               {4.0F, -1.0e30F}})
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, AA}) stage.Dot(x, y, 0.5F, WHITE, flags);
    }
    EXPECT_EQ(stage.Count(), 0);
    EXPECT_EQ(spies.numberOfDots.count, 0);
    EXPECT_EQ(spies.rejectedDots.count, 14);
}

// ---- discs ----------------------------------------------------------------------------------------------------------

TEST(Dotdraw, APlainDiscIsThePixelsNearerThanItsRadius)
{
    for (const float radius : {1.5F, 2.0F, 3.7F, 6.0F, 11.25F})
    {
        for (const float fraction : {0.0F, 0.25F, 0.5F, 0.9F})
        {
            constexpr int SIZE   = 40;
            const float   x      = 20.0F + fraction;
            const float   y      = 19.0F - fraction / 2.0F;
            const auto    pixels = Dot(SIZE, x, y, radius, 0);
            for (int py = 0; py < SIZE; ++py)
            {
                for (int px = 0; px < SIZE; ++px)
                {
                    const double distance = std::hypot(px - static_cast<double>(x), py - static_cast<double>(y));
                    if (std::fabs(distance - static_cast<double>(radius)) < 0.002) continue;  // on the rim
                    EXPECT_EQ(AlphaAt(pixels, SIZE, px, py), distance < static_cast<double>(radius) ? 255 : 0)
                        << radius << " at " << px << ' ' << py;
                }
            }
        }
    }
}

TEST(Dotdraw, APlainDiscOfASmallRadiusIsLiftedToOneAndAHalf)
{
    // radius 1.0001 + 0.5 is 1.5: a plus of five pixels less the four at distance 1, which are on its rim
    EXPECT_EQ(Dot(9, 4.0F, 4.0F, 1.01F, 0), Dot(9, 4.0F, 4.0F, 1.2F, 0));
}

TEST(Dotdraw, SoftDiscsCoverTheirRim)
{
    // the coverage of a pixel is the quadratic of its distance from the centre
    struct Kind
    {
        Tov_Flag flags;
        float    radius;
        double   adjusted;
    };
    for (const Kind& kind : {Kind{AA, 4.0F, 4.25}, Kind{AA, 9.5F, 9.75}, Kind{HQ, 9.5F, 10.0}, Kind{HQ | AA, 6.0F, 6.5},
                             Kind{HQ, 5.9F, 6.15}, Kind{HQ | AA, 2.0F, 2.25}})
    {
        constexpr int SIZE   = 40;
        const auto    pixels = Dot(SIZE, 20.25F, 19.5F, kind.radius, kind.flags);
        const double  r      = kind.adjusted;
        for (int py = 0; py < SIZE; ++py)
        {
            for (int px = 0; px < SIZE; ++px)
            {
                const double square = (px - 20.25) * (px - 20.25) + (py - 19.5) * (py - 19.5);
                const double f      = ((r - 0.5) * (r - 0.5) - square) / (2.0 * r) + 0.5;
                EXPECT_NEAR(AlphaAt(pixels, SIZE, px, py), std::min(255.0, std::max(0.0, std::floor(f * 256.0))), 1.0)
                    << kind.radius << " at " << px << ' ' << py;
            }
        }
    }
}

TEST(Dotdraw, AFilteredDotBelowRadiusSixIsAnAntialiasedOne)
{
    for (const float radius : {1.2F, 3.0F, 5.99F})
    {
        EXPECT_EQ(Dot(24, 12.3F, 11.6F, radius, HQ), Dot(24, 12.3F, 11.6F, radius, AA)) << radius;
        EXPECT_EQ(Dot(24, 12.3F, 11.6F, radius, HQ | AA), Dot(24, 12.3F, 11.6F, radius, AA)) << radius;
    }
    EXPECT_NE(Dot(24, 12.3F, 11.6F, 6.0F, HQ), Dot(24, 12.3F, 11.6F, 6.0F, AA));
    EXPECT_EQ(Dot(24, 12.3F, 11.6F, 6.0F, HQ), Dot(24, 12.3F, 11.6F, 6.0F, HQ | AA));
    EXPECT_EQ(Dot(24, 12.3F, 11.6F, 6.0F, HQ), Dot(24, 12.3F, 11.6F, 6.25F, AA));  // 6 + 0.5 = 6.25 + 0.25
}

TEST(Dotdraw, FullCoverageIsBlendedAndPlainPixelsAreStored)
{
    support::LineStage stage(24, 24, BLACK);
    stage.Dot(12, 12, 8, WHITE, AA);
    EXPECT_EQ(stage.At(12, 12), 0xFFFDFDFDU);
    stage.Dot(12, 12, 8, 0x40FFFFFFU, 0);
    EXPECT_EQ(stage.At(12, 12), 0x40FFFFFFU);
}

TEST(Dotdraw, OnlyTheTwoQualityBitsAreRead)
{
    for (const Tov_Flag flags : {Tov_Flag{0}, AA, HQ, AA | HQ})
    {
        for (const float radius : {0.5F, 4.0F, 8.0F})
        {
            EXPECT_EQ(Dot(24, 12.3F, 11.6F, radius, flags), Dot(24, 12.3F, 11.6F, radius, flags | 0xFFFCFFFFU));
        }
    }
}

TEST(Dotdraw, CentredDiscsAreSymmetric)
{
    for (const Tov_Flag flags : {Tov_Flag{0}, AA, HQ})
    {
        for (const float radius : {1.5F, 4.3F, 9.9F, 17.0F})
        {
            constexpr int SIZE   = 41;
            const auto    pixels = Dot(SIZE, 20, 20, radius, flags);
            for (int y = 0; y < SIZE; ++y)
            {
                for (int x = 0; x < SIZE; ++x)
                {
                    const int alpha = AlphaAt(pixels, SIZE, x, y);
                    ASSERT_EQ(alpha, AlphaAt(pixels, SIZE, 40 - x, y));
                    ASSERT_EQ(alpha, AlphaAt(pixels, SIZE, x, 40 - y));
                    ASSERT_EQ(alpha, AlphaAt(pixels, SIZE, y, x));
                }
            }
        }
    }
}

// ---- clipping -------------------------------------------------------------------------------------------------------

TEST(Dotdraw, AClippedDiscIsTheCropOfTheWhole)
{
    for (const Tov_Flag flags : {Tov_Flag{0}, AA, HQ})
    {
        support::LineStage whole(60, 50);
        whole.Dot(29.3F, 24.8F, 18.5F, 0xC0FFAA55U, flags);
        for (const auto& [x0, y0, x1, y1] : {std::array{0U, 0U, 20U, 49U},
                                             {40U, 0U, 59U, 49U},
                                             {0U, 0U, 59U, 15U},
                                             {0U, 35U, 59U, 49U},
                                             {25U, 20U, 30U, 28U},
                                             {29U, 24U, 29U, 24U},
                                             {15U, 10U, 18U, 12U}})
        {
            support::LineStage clipped(60, 50);
            clipped.Bitmap().SetCliprect(x0, y0, x1, y1);
            clipped.Dot(29.3F, 24.8F, 18.5F, 0xC0FFAA55U, flags);
            for (unsigned y = 0; y < 50; ++y)
            {
                for (unsigned x = 0; x < 60; ++x)
                {
                    const bool inside = x >= x0 && x <= x1 && y >= y0 && y <= y1;
                    ASSERT_EQ(clipped.At(static_cast<int>(x), static_cast<int>(y)),
                              inside ? whole.At(static_cast<int>(x), static_cast<int>(y)) : BLACK);
                }
            }
        }
    }
}

TEST(Dotdraw, DiscsOutsideAreCountedAndDropped)
{
    support::LineSpies spies;
    support::LineStage stage(40, 30);
    stage.Bitmap().SetCliprect(10, 10, 20, 20);
    for (const auto& [x, y] :
         {std::pair{-10.0F, 15.0F}, {40.0F, 15.0F}, {15.0F, -5.0F}, {15.0F, 35.0F}, {1.0e8F, 15.0F}, {15.0F, -1.0e8F}})
    {
        stage.Dot(x, y, 5.0F, WHITE);
    }
    EXPECT_EQ(stage.Count(), 0);
    EXPECT_EQ(spies.rejectedDots.count, 6);
    EXPECT_EQ(spies.rejectedDots.sum, 6.0);
    EXPECT_EQ(spies.numberOfDots.count, 0);
    stage.Dot(15, 15, 5, WHITE);
    EXPECT_EQ(spies.numberOfDots.sum, 1.0);
    EXPECT_EQ(spies.dotRadius.sum, 35.0) << "the radius as asked for";
    EXPECT_EQ(spies.dots.starts, 7);
    EXPECT_TRUE(spies.dots.wellFormed);
    stage.Dot(15, 15, 0.5F, WHITE);
    EXPECT_EQ(spies.dots.starts, 7) << "points are not timed";
}

TEST(Dotdraw, AnEmptyClipRectangleShowsNothing)
{
    support::LineStage stage(40, 30);
    stage.Bitmap().SetCliprect(20, 20, 10, 10);
    for (const Tov_Flag flags : {Tov_Flag{0}, AA, HQ})
    {
        stage.Dot(15, 15, 30, WHITE, flags);
        stage.Dot(1, 1, 0.5F, WHITE, flags);
    }
    EXPECT_EQ(stage.Count(), 0);
}

// ---- numbers that are none, and too many ----------------------------------------------------------------------------

TEST(Dotdraw, NumbersThatAreNotFiniteDrawNothing)
{
    support::LineStage stage(40, 30);
    for (const float bad : {NAN_VALUE, INF, -INF})
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, AA, HQ})
        {
            stage.Dot(bad, 15, 5, WHITE, flags);
            stage.Dot(15, bad, 5, WHITE, flags);
            stage.Dot(15, 15, bad, WHITE, flags);
            stage.Dot(bad, 15, 0.5F, WHITE, flags);
            stage.Dot(15, bad, 0.5F, WHITE, flags);
        }
    }
    EXPECT_EQ(stage.Count(), 0);
    EXPECT_TRUE(stage.IsSlackUntouched());
}

TEST(Dotdraw, CentresAndRadiiBeyondSixteenBitsKeepInside)
{
    for (const Tov_Flag flags : {Tov_Flag{0}, AA, HQ})
    {
        for (const float radius : {16000.0F, 32000.0F, 33000.0F, 1.0e6F, 1.0e9F, 1.0e20F})
        {
            support::LineStage stage(40, 30);
            stage.Bitmap().SetCliprect(5, 5, 30, 20);
            stage.Dot(15, 15, radius, WHITE, flags);
            for (const float far : {3.0e9F, -3.0e9F, 1.0e30F, 40000.0F, -40000.0F})
            {
                stage.Dot(far, 15, radius, 0xFF00FF00U, flags);
                stage.Dot(15, far, radius, 0xFF00FF00U, flags);
            }
            for (int y = 0; y < 30; ++y)
            {
                for (int x = 0; x < 40; ++x)
                {
                    const bool inside = x >= 5 && x <= 30 && y >= 5 && y <= 20;
                    ASSERT_TRUE(inside || stage.At(x, y) == BLACK);
                }
            }
            EXPECT_TRUE(stage.IsSlackUntouched());
        }
    }
}

TEST(Dotdraw, AHugeDotAroundTheBitmapFillsItAndItsRimIsStraight)
{
    for (const float radius : {5000.0F, 20000.0F, 31000.0F})
    {
        support::LineStage stage(40, 30);
        stage.Dot(20, 15, radius, WHITE);
        EXPECT_EQ(stage.Count(), 40 * 30) << radius;
        // the rim passes between columns 19 and 20
        stage.Fill(BLACK);
        stage.Dot(19.5F - radius, 15, radius, WHITE);
        for (int y = 0; y < 30; ++y)
        {
            EXPECT_EQ(stage.At(18, y), WHITE) << radius;
            EXPECT_EQ(stage.At(21, y), BLACK) << radius;
        }
    }
}

TEST(Dotdraw, ACentreThatIsTruncatedTowardsZeroDrawsTheSameDisc)
{
    // the box of a dot left of and above 0 starts nearer to 0; the disc must not move
    for (const Tov_Flag flags : {Tov_Flag{0}, AA, HQ})
    {
        support::LineStage here(40, 40);
        support::LineStage there(40, 40);
        here.Dot(20.3F, 20.7F, 9.0F, WHITE, flags);
        there.Dot(-0.7F, 0.7F, 9.0F, WHITE, flags);
        for (int y = 0; y < 12; ++y)
        {
            for (int x = 0; x < 12; ++x)
            {
                const auto expected = static_cast<int>(here.At(x + 21, y + 20) & 255);
                EXPECT_NEAR(static_cast<int>(there.At(x, y) & 255), expected, 2) << x << ' ' << y;
            }
        }
    }
}

TEST(Dotdraw, TheLockIsAsserted)
{
    support::LineStage stage(20, 20);
    stage.Bitmap().Unlock(0, 0, 19, 19);
    EXPECT_EQ(support::MessagesOf([&] { stage.Dot(10, 10, 4, WHITE); }), support::Messages{"bitmap not locked"});
    EXPECT_GT(stage.Count(), 0) << "drawing goes on";
}
