// Tests of the line clipper: codes, margins, exactness where nothing is cut, accuracy where something is, and every
// number that a float can be.
#include <cmath>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "Dice.h"
#include "Kanvo_Clipper.h"
#include "Reference_Line.h"

namespace
{

constexpr float INF       = std::numeric_limits<float>::infinity();
constexpr float NAN_VALUE = std::numeric_limits<float>::quiet_NaN();
constexpr float MAX       = std::numeric_limits<float>::max();
constexpr float TINY      = std::numeric_limits<float>::denorm_min();

struct Cut
{
    Kanvo_Vector2 a{0, 0};
    Kanvo_Vector2 b{0, 0};
    Tov_Flag      code = 0;
    float         ta   = -1.0F;
    float         tb   = -1.0F;
};

//! Against (0, 0) to (95, 79), widened by d on every side, with an overflow margin.
Cut Line(float ax, float ay, float bx, float by, float d = 0.0F, float margin = 1.0F, bool overflow = true)
{
    Kanvo_Clipper::InitRegionV(0, 0, 95, 79, 0.0001F);
    Kanvo_Clipper::SetOverFlowMargin(margin);
    Cut cut;
    cut.a    = Kanvo_Vector2(ax, ay);
    cut.b    = Kanvo_Vector2(bx, by);
    cut.code = Kanvo_Clipper::ClipLine(cut.a, cut.b, overflow, -d, -d, d, d);
    return cut;
}

Cut Para(float ax, float ay, float bx, float by)
{
    Kanvo_Clipper::InitRegionV(0, 0, 95, 79, 0.0001F);
    Kanvo_Clipper::SetOverFlowMargin(0.0F);  // must not matter
    Cut cut;
    cut.a    = Kanvo_Vector2(ax, ay);
    cut.b    = Kanvo_Vector2(bx, by);
    cut.code = Kanvo_Clipper::ClipLinePara(cut.a, cut.b, cut.ta, cut.tb);
    return cut;
}

bool SameBits(const Kanvo_Vector2& vector, float x, float y)
{
    return std::memcmp(&vector.x, &x, 4) == 0 && std::memcmp(&vector.y, &y, 4) == 0;
}

}  // namespace

TEST(Clipper, TheCodesAreBits)
{
    EXPECT_EQ(CF_NOTVIS, 0U);
    EXPECT_EQ(CF_VIS, 1U);
    EXPECT_EQ(CF_CLIPPED, 2U);
    EXPECT_EQ(CB_OUTOFBOUND, 4U);
    EXPECT_EQ(CF_OVERFLOW, 8U);
}

TEST(Clipper, ALineInsideKeepsItsPointsBitForBit)
{
    const Cut cut = Line(10.1F, 20.7F, 60.3F, 33.3F);
    EXPECT_EQ(cut.code, CF_VIS);
    EXPECT_TRUE(SameBits(cut.a, 10.1F, 20.7F));
    EXPECT_TRUE(SameBits(cut.b, 60.3F, 33.3F));
    // -0.0 is inside and stays what it is
    const Cut zero = Line(-0.0F, 20.0F, 50.0F, 20.0F);
    EXPECT_EQ(zero.code, CF_VIS | CF_OVERFLOW);
    EXPECT_TRUE(SameBits(zero.a, -0.0F, 20.0F));
}

TEST(Clipper, BoundsBelongToTheRegion)
{
    EXPECT_EQ(Line(95, 10, 95, 60).code & (CF_VIS | CF_CLIPPED), CF_VIS);
    EXPECT_EQ(Line(0, 0, 95, 79).code & (CF_VIS | CF_CLIPPED), CF_VIS);
    EXPECT_EQ(Line(95.001F, 10, 95.001F, 60).code, CF_NOTVIS);
    EXPECT_EQ(Line(-0.001F, 10, -0.001F, 60).code, CF_NOTVIS);
    EXPECT_EQ(Line(10, 79, 60, 79).code & CF_VIS, CF_VIS);
    EXPECT_EQ(Line(10, 79.001F, 60, 79.001F).code, CF_NOTVIS);
    EXPECT_EQ(Line(10, -0.001F, 60, -0.001F).code, CF_NOTVIS);
}

TEST(Clipper, TheMarginsOfACallWidenTheRegionSideBySide)
{
    Kanvo_Clipper::InitRegionV(0, 0, 95, 79, 0.0001F);
    Kanvo_Clipper::SetOverFlowMargin(1.0F);
    Kanvo_Vector2 a(-100, 40);
    Kanvo_Vector2 b(200, 40);
    EXPECT_EQ(Kanvo_Clipper::ClipLine(a, b, true, -1, -2, 3, 4), CF_VIS | CF_CLIPPED | CF_OVERFLOW);
    EXPECT_EQ(a.x, -1.0F);
    EXPECT_EQ(b.x, 98.0F);
    a = Kanvo_Vector2(40, -100);
    b = Kanvo_Vector2(40, 200);
    EXPECT_EQ(Kanvo_Clipper::ClipLine(a, b, true, -1, -2, 3, 4), CF_VIS | CF_CLIPPED | CF_OVERFLOW);
    EXPECT_EQ(a.y, -2.0F);
    EXPECT_EQ(b.y, 83.0F);
}

TEST(Clipper, AMovedPointLiesOnTheLineAndOnTheBorder)
{
    Cut cut = Line(-10, 10, 30, 30);
    EXPECT_EQ(cut.code, CF_VIS | CF_CLIPPED | CF_OVERFLOW);
    EXPECT_TRUE(SameBits(cut.a, 0, 15));
    EXPECT_TRUE(SameBits(cut.b, 30, 30));
    cut = Line(30, 30, -10, 10);
    EXPECT_TRUE(SameBits(cut.a, 30, 30));
    EXPECT_TRUE(SameBits(cut.b, 0, 15));
    cut = Line(85, 89, 105, 69);  // past the corner: y = 174 - x
    EXPECT_EQ(cut.code, CF_VIS | CF_CLIPPED | CF_OVERFLOW);
    EXPECT_TRUE(SameBits(cut.a, 95, 79));
    EXPECT_TRUE(SameBits(cut.b, 95, 79));
    EXPECT_EQ(Line(85.1F, 89, 105.1F, 69).code, CF_NOTVIS);
    EXPECT_EQ(Line(-10, 5, 5, -10).code, CF_NOTVIS);  // beyond no single side as a whole
}

TEST(Clipper, OverflowIsMeasuredFromTheRegionItself)
{
    for (const float margin : {0.0F, 1.0F, 3.0F, 5.0F})
    {
        for (const float d : {0.0F, 1.0F, 4.0F})
        {
            SCOPED_TRACE(testing::Message() << margin << ' ' << d);
            const auto code = [&](float x, float y) { return Line(x, y, 50, 40, d, margin).code; };
            EXPECT_EQ(code(margin, 40), CF_VIS);
            EXPECT_EQ(code(margin - 0.001F, 40) & CF_OVERFLOW, margin > 0 || d > 0 ? CF_OVERFLOW : 0U);
            EXPECT_EQ(code(95 - margin, 40), CF_VIS);
            EXPECT_EQ(code(50, margin), CF_VIS);
            EXPECT_EQ(code(50, 79 - margin), CF_VIS);
            if (d > 0)
            {
                EXPECT_EQ(code(95.01F - margin, 40), CF_VIS | CF_OVERFLOW);
                EXPECT_EQ(code(50, 79.01F - margin), CF_VIS | CF_OVERFLOW);
                EXPECT_EQ(code(50, margin - 0.01F), CF_VIS | CF_OVERFLOW);
            }
            EXPECT_EQ(Line(50, 40, margin - 0.01F, 40, d + 1, margin).code, CF_VIS | CF_OVERFLOW)
                << "the end counts too";
        }
    }
    EXPECT_EQ(Line(1, 40, 50, 40, 0, 5, false).code, CF_VIS) << "not asked for";
}

TEST(Clipper, ParametersTellWhereTheEndsLie)
{
    Cut cut = Para(10, 10, 60, 60);
    EXPECT_EQ(cut.code, CF_VIS);
    EXPECT_EQ(cut.ta, 0.0F);
    EXPECT_EQ(cut.tb, 1.0F);
    cut = Para(-100, 40, 100, 40);
    EXPECT_EQ(cut.code, CF_VIS | CF_CLIPPED | CF_OVERFLOW);
    EXPECT_EQ(cut.ta, 0.5F);
    EXPECT_FLOAT_EQ(cut.tb, 0.975F);
    EXPECT_TRUE(SameBits(cut.a, 0, 40));
    EXPECT_TRUE(SameBits(cut.b, 95, 40));
}

TEST(Clipper, ParametersComeWithTheLargestMargin)
{
    EXPECT_EQ(Para(5, 40, 50, 40).code, CF_VIS);
    EXPECT_EQ(Para(4.99F, 40, 50, 40).code, CF_VIS | CF_OVERFLOW);
    EXPECT_EQ(Para(50, 40, 90.01F, 40).code, CF_VIS | CF_OVERFLOW);
    EXPECT_EQ(Para(50, 74.01F, 50, 40).code, CF_VIS | CF_OVERFLOW);
    EXPECT_EQ(Para(50, 4.99F, 50, 40).code, CF_VIS | CF_OVERFLOW);
}

TEST(Clipper, PointsAreVisibleInside)
{
    EXPECT_EQ(Line(50, 40, 50, 40).code, CF_VIS);
    EXPECT_EQ(Line(95, 79, 95, 79).code, CF_VIS | CF_OVERFLOW);
    EXPECT_EQ(Line(96, 79, 96, 79).code, CF_NOTVIS);
    EXPECT_EQ(Line(MAX, MAX, MAX, MAX).code, CF_NOTVIS);
}

TEST(Clipper, WhatIsNotFiniteIsNotVisibleAndNotTouched)
{
    for (const float bad : {NAN_VALUE, -NAN_VALUE, INF, -INF})
    {
        for (int argument = 0; argument < 4; ++argument)
        {
            float numbers[]   = {10, 20, 30, 40};
            numbers[argument] = bad;
            const Cut cut     = Line(numbers[0], numbers[1], numbers[2], numbers[3]);
            EXPECT_EQ(cut.code, CF_NOTVIS);
            EXPECT_TRUE(SameBits(cut.a, numbers[0], numbers[1]));
            EXPECT_TRUE(SameBits(cut.b, numbers[2], numbers[3]));
            EXPECT_EQ(Para(numbers[0], numbers[1], numbers[2], numbers[3]).code, CF_NOTVIS);
        }
    }
}

TEST(Clipper, TheLargestAndSmallestNumbersAreCutLikeOthers)
{
    for (const float far : {32768.0F, 1.0e6F, 1.0e9F, 2147483648.0F, 1.0e11F})
    {
        Cut cut = Line(-far, 40, far, 40);
        EXPECT_EQ(cut.code, CF_VIS | CF_CLIPPED | CF_OVERFLOW);
        EXPECT_TRUE(SameBits(cut.a, 0, 40)) << far;
        EXPECT_TRUE(SameBits(cut.b, 95, 40)) << far;
        cut = Line(-far, -far, far, far);
        EXPECT_NEAR(cut.a.x, 0, 1e-3);
        EXPECT_NEAR(cut.a.y, 0, 1e-3);
        EXPECT_NEAR(cut.b.x, 79, 1e-3);
        EXPECT_EQ(cut.b.y, 79.0F);
        EXPECT_EQ(Line(-far, far, far, far).code, CF_NOTVIS);
    }
    for (const float far : {1.0e15F, 1.0e20F, 1.0e30F, MAX})
    {
        for (const Cut& cut : {Line(-far, 40, far, 40), Line(far, 40, -far, 40), Line(40, -far, 40, far),
                               Line(40, 40, far, 40), Line(-far, 40, 40, 40), Line(-far, -far, far, far)})
        {
            EXPECT_EQ(cut.code, CF_VIS | CF_CLIPPED | CF_OVERFLOW) << far;
            for (const Kanvo_Vector2& end : {cut.a, cut.b})
                EXPECT_TRUE(end.x >= 0 && end.x <= 95 && end.y >= 0 && end.y <= 79) << far;
        }
        EXPECT_EQ(Line(-far, far, far, far).code, CF_NOTVIS);
        EXPECT_EQ(Line(far, 40, far, 41).code, CF_NOTVIS);
    }
    const Cut cut = Line(TINY, TINY, -TINY, TINY);
    EXPECT_EQ(cut.code & CF_VIS, CF_VIS);
    EXPECT_GE(cut.b.x, 0.0F);
}

TEST(Clipper, AnEndJustOutsideOfALineFromVeryFarIsMovedInside)
{
    // the parameter of the crossing rounds to 1, although the end lies outside
    for (const float far : {1.0e18F, 1.0e30F, MAX})
    {
        for (const float end : {95.5F, 96.0F, 400.0F, 50000.0F})
        {
            SCOPED_TRACE(testing::Message() << far << ' ' << end);
            Cut cut = Line(-far, 40, end, 40);
            EXPECT_EQ(cut.code, CF_VIS | CF_CLIPPED | CF_OVERFLOW);
            EXPECT_LE(cut.b.x, 95.0F);
            EXPECT_GE(cut.a.x, 0.0F);
            cut = Para(-far, 40, end, 40);
            EXPECT_LE(cut.b.x, 95.0F);
        }
    }
}

TEST(Clipper, AnEmptyRegionShowsNothing)
{
    Kanvo_Clipper::InitRegionV(1, 1, 0, 0, 0.0001F);
    Kanvo_Vector2 a(-10, -10);
    Kanvo_Vector2 b(10, 10);
    EXPECT_EQ(Kanvo_Clipper::ClipLine(a, b, true, 0, 0, 0, 0), CF_NOTVIS);
    float ta = 0;
    float tb = 1;
    EXPECT_EQ(Kanvo_Clipper::ClipLinePara(a, b, ta, tb), CF_NOTVIS);
    a = b = Kanvo_Vector2(0.5F, 0.5F);
    EXPECT_EQ(Kanvo_Clipper::ClipLine(a, b, true, 0, 0, 0, 0), CF_NOTVIS);
    Kanvo_Clipper::InitRegionV(0, 1, 10, 0, 0.0001F);
    a = Kanvo_Vector2(5, -10);
    b = Kanvo_Vector2(5, 10);
    EXPECT_EQ(Kanvo_Clipper::ClipLine(a, b, true, 0, 0, 0, 0), CF_NOTVIS);
}

TEST(Clipper, RandomLinesStayInsideAndOnTheLine)
{
    support::Dice dice(4);
    const auto    number = [&]
    {
        const float scale = dice.Of({10.0F, 100.0F, 1.0e4F, 1.0e7F, 1.0e20F, 3.0e38F});
        return scale * (static_cast<float>(dice.Next32() >> 8) / 8388608.0F - 1.0F);
    };
    int visible = 0;
    for (int count = 0; count < 300000; ++count)
    {
        const float        ax  = number();
        const float        ay  = number();
        const float        bx  = number();
        const float        by  = number();
        const float        d   = dice.Of({0.0F, 1.0F, 4.0F});
        const Cut          cut = Line(ax, ay, bx, by, d);
        reference::Segment segment{ax, ay, bx, by};
        float              ta = 0;
        float              tb = 0;
        const unsigned     expected =
            reference::ClipSegment(segment, {-d, -d, 95 + d, 79 + d}, {0, 0, 95, 79}, 1.0F, ta, tb);
        ASSERT_EQ(cut.code, expected) << ax << ' ' << ay << ' ' << bx << ' ' << by;
        if ((cut.code & CF_VIS) == 0)
        {
            ASSERT_TRUE(SameBits(cut.a, ax, ay) && SameBits(cut.b, bx, by));
            continue;
        }
        ++visible;
        for (const Kanvo_Vector2& end : {cut.a, cut.b})
        {
            ASSERT_TRUE(end.x >= -d && end.x <= 95 + d && end.y >= -d && end.y <= 79 + d)
                << "from (" << ax << ", " << ay << ") to (" << bx << ", " << by << "): (" << end.x << ", " << end.y
                << ')';
            const double dx     = static_cast<double>(bx) - static_cast<double>(ax);
            const double dy     = static_cast<double>(by) - static_cast<double>(ay);
            const double length = std::hypot(dx, dy);
            const double cross  = dx / length * (static_cast<double>(end.y) - static_cast<double>(ay)) -
                                 dy / length * (static_cast<double>(end.x) - static_cast<double>(ax));
            ASSERT_FALSE(length > 0 && std::fabs(cross) > 1e-4 + length * 1e-12);
        }
    }
    EXPECT_GT(visible, 20000);
}
