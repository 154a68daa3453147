// Tests of Kanvo_Geometry: vectors, matrices, vertex, and the one sine.
#include "Kanvo_Geometry.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include <gtest/gtest.h>

#include "Sweep.h"

namespace
{

using support::Differences;
using support::Numbers;

constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr float INF          = std::numeric_limits<float>::infinity();

const Kanvo_Matrix3 COUNTED(1, 2, 3, 4, 5, 6, 7, 8, 9);

//! A whole number from -range to range.
float Whole(Numbers& numbers, int range)
{
    return static_cast<float>(static_cast<int>(numbers.Next32() % static_cast<unsigned>(2 * range + 1)) - range);
}

Kanvo_Matrix3 WholeMatrix(Numbers& numbers, int range)
{
    Kanvo_Matrix3 matrix;
    for (auto& row : matrix.m_aafEntry)
        for (Tov_Value& entry : row) entry = Whole(numbers, range);
    return matrix;
}

bool AreEqual(const Kanvo_Matrix3& one, const Kanvo_Matrix3& other)
{
    return std::memcmp(&one, &other, sizeof one) == 0;
}

// ---- vectors --------------------------------------------------------------------------------------------------------

TEST(Vector2, IsXThenYAndNothingElse)
{
    EXPECT_EQ(sizeof(Kanvo_Vector2), 2 * sizeof(Tov_Value));
    EXPECT_EQ(offsetof(Kanvo_Vector2, x), 0U);
    EXPECT_EQ(offsetof(Kanvo_Vector2, y), sizeof(Tov_Value));
    const Kanvo_Vector2 v(1.5F, -2.0F);
    EXPECT_EQ(v.x, 1.5F);
    EXPECT_EQ(v.y, -2.0F);
}

TEST(Vector2, AssignmentCopiesBothMembersAndReturnsItself)
{
    Kanvo_Vector2       a(0, 0);
    const Kanvo_Vector2 b(3, 4);
    EXPECT_EQ(&(a = b), &a);
    EXPECT_EQ(a.x, 3.0F);
    EXPECT_EQ(a.y, 4.0F);
    EXPECT_EQ(b.x, 3.0F);
    EXPECT_TRUE((std::is_same_v<decltype(a = b), Kanvo_Vector2&>));
}

TEST(Vector2, CrossIsTheZComponentOfTheProductInSpace)
{
    EXPECT_EQ(Kanvo_Vector2(1, 0).Cross(Kanvo_Vector2(0, 1)), 1.0F);  // counter-clockwise where y grows upwards
    EXPECT_EQ(Kanvo_Vector2(0, 1).Cross(Kanvo_Vector2(1, 0)), -1.0F);
    EXPECT_EQ(Kanvo_Vector2(2, 3).Cross(Kanvo_Vector2(5, 7)), -1.0F);  // 14 - 15
    EXPECT_EQ(Kanvo_Vector2(2, 3).Cross(Kanvo_Vector2(4, 6)), 0.0F);
}

TEST(Vector2, ConstantsAreZeroAndTheTwoAxes)
{
    EXPECT_EQ(Kanvo_Vector2::ZERO.x, 0.0F);
    EXPECT_EQ(Kanvo_Vector2::ZERO.y, 0.0F);
    EXPECT_EQ(Kanvo_Vector2::UNIT_X.x, 1.0F);
    EXPECT_EQ(Kanvo_Vector2::UNIT_X.y, 0.0F);
    EXPECT_EQ(Kanvo_Vector2::UNIT_Y.x, 0.0F);
    EXPECT_EQ(Kanvo_Vector2::UNIT_Y.y, 1.0F);
}

TEST(Vector3, IsXYZAndNothingElse)
{
    EXPECT_EQ(sizeof(Kanvo_Vector3), 3 * sizeof(Tov_Value));
    const Kanvo_Vector3 v(1, 2, 3);
    EXPECT_EQ(v.x, 1.0F);
    EXPECT_EQ(v.y, 2.0F);
    EXPECT_EQ(v.z, 3.0F);
    EXPECT_EQ(offsetof(Kanvo_Vector3, x), 0U);
    EXPECT_EQ(offsetof(Kanvo_Vector3, y), 4U);
    EXPECT_EQ(offsetof(Kanvo_Vector3, z), 8U);
}

TEST(Coord2D, IsEightBytesOfXThenYSoThatArraysCanBePassed)
{
    EXPECT_EQ(sizeof(Kanvo_Coord2D), 8U);
    EXPECT_EQ(offsetof(Kanvo_Coord2D, x), 0U);
    EXPECT_EQ(offsetof(Kanvo_Coord2D, y), 4U);
    EXPECT_TRUE((std::is_same_v<decltype(Kanvo_Coord2D::x), Tov_Value>));
    EXPECT_TRUE(std::is_trivially_copyable_v<Kanvo_Coord2D>);
}

// ---- matrices -------------------------------------------------------------------------------------------------------

TEST(Matrix3, IsNineFloatsRowByRowAndNothingElse)
{
    EXPECT_EQ(sizeof(Kanvo_Matrix3), 36U);
    float entries[9];
    std::memcpy(entries, &COUNTED, sizeof entries);
    for (int index = 0; index < 9; ++index) EXPECT_EQ(entries[index], static_cast<float>(index + 1));
}

TEST(Matrix3, CopyingCopiesAllNineEntriesAsTheyAre)
{
    Kanvo_Matrix3 odd(COUNTED);
    odd[1][1] = NOT_A_NUMBER;
    odd[2][0] = -0.0F;
    const Kanvo_Matrix3 copy(odd);
    EXPECT_TRUE(AreEqual(copy, odd));
    EXPECT_NE(&copy.m_aafEntry[0][0], &odd.m_aafEntry[0][0]);
}

TEST(Matrix3, IndexingGivesTheFirstEntryOfTheRow)
{
    Kanvo_Matrix3 matrix(COUNTED);
    for (int row = 0; row < 3; ++row)
    {
        EXPECT_EQ(matrix[row], &matrix.m_aafEntry[row][0]);
        EXPECT_EQ(COUNTED[row][2], static_cast<float>(row * 3 + 3));
    }
    matrix[2][1] = 42;
    EXPECT_EQ(matrix.m_aafEntry[2][1], 42.0F);
}

TEST(Matrix3, ConstantsAreZeroIdentityAndASmallTolerance)
{
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 3; ++column)
        {
            EXPECT_EQ(Kanvo_Matrix3::ZERO[row][column], 0.0F);
            EXPECT_EQ(Kanvo_Matrix3::IDENTITY[row][column], row == column ? 1.0F : 0.0F);
        }
    }
    EXPECT_GT(Kanvo_Matrix3::EPSILON, 0.0F);
    EXPECT_LT(Kanvo_Matrix3::EPSILON, 0.001F);
}

TEST(Matrix3, ProductAppliesTheRightFactorFirst)
{
    const Kanvo_Matrix3 product = COUNTED * Kanvo_Matrix3(1, 0, 2, 0, 1, 0, 3, 0, 1);
    EXPECT_TRUE(AreEqual(product, Kanvo_Matrix3(10, 2, 5, 22, 5, 14, 34, 8, 23)));
    Numbers numbers(21);
    for (int turn = 0; turn < 2000; ++turn)
    {
        const Kanvo_Matrix3 a = WholeMatrix(numbers, 30);
        const Kanvo_Matrix3 b = WholeMatrix(numbers, 30);
        const float         x = Whole(numbers, 30);
        const float         y = Whole(numbers, 30);
        const float         z = Whole(numbers, 30);
        // Whole numbers this small are exact in single precision, in any order of summing.
        const Kanvo_Vector3 once  = (a * b) * Kanvo_Vector3(x, y, z);
        const Kanvo_Vector3 twice = a * (b * Kanvo_Vector3(x, y, z));
        ASSERT_EQ(once.x, twice.x);
        ASSERT_EQ(once.y, twice.y);
        ASSERT_EQ(once.z, twice.z);
        ASSERT_TRUE(AreEqual((a * b).Transpose(), b.Transpose() * a.Transpose()));
    }
}

TEST(Matrix3, TimesAVectorAndAPointAreTheRowsTimesTheColumn)
{
    const Kanvo_Vector3 vector = COUNTED * Kanvo_Vector3(1, 10, 100);
    EXPECT_EQ(vector.x, 321.0F);
    EXPECT_EQ(vector.y, 654.0F);
    EXPECT_EQ(vector.z, 987.0F);
    const Kanvo_Vector2 point = COUNTED.TransformPoint(Kanvo_Vector2(1, 10));
    EXPECT_EQ(point.x, 24.0F);
    EXPECT_EQ(point.y, 60.0F);
    const Kanvo_Vector2 small = Kanvo_Matrix2(1, 2, 3, 4) * Kanvo_Vector2(5, 6);
    EXPECT_EQ(small.x, 17.0F);
    EXPECT_EQ(small.y, 39.0F);
}

TEST(Matrix2, IsFourFloatsRowByRow)
{
    EXPECT_EQ(sizeof(Kanvo_Matrix2), 16U);
    Kanvo_Matrix2 matrix(1, 2, 3, 4);
    EXPECT_EQ(matrix[0][1], 2.0F);
    EXPECT_EQ(matrix[1][0], 3.0F);
    EXPECT_EQ(matrix[1], &matrix.m_aafEntry[1][0]);
    const Kanvo_Vector2 same = Kanvo_Matrix2::IDENTITY * Kanvo_Vector2(7, 8);
    EXPECT_EQ(same.x, 7.0F);
    EXPECT_EQ(same.y, 8.0F);
}

TEST(Matrix3, DeterminantIsThatOfSchool)
{
    EXPECT_EQ(COUNTED.Determinant(), 0.0F);
    EXPECT_EQ(Kanvo_Matrix3::IDENTITY.Determinant(), 1.0F);
    EXPECT_EQ(Kanvo_Matrix3(2, 0, 0, 0, 3, 0, 0, 0, 4).Determinant(), 24.0F);
    EXPECT_EQ(Kanvo_Matrix3(0, 1, 0, 1, 0, 0, 0, 0, 1).Determinant(), -1.0F);
    EXPECT_EQ(Kanvo_Matrix3(3, 1, 4, 1, 5, 9, 2, 6, 5).Determinant(), -90.0F);
}

TEST(Matrix3, InverseTimesItselfIsTheIdentity)
{
    Numbers numbers(22);
    int     inverted = 0;
    for (int turn = 0; turn < 2000; ++turn)
    {
        const Kanvo_Matrix3 matrix = WholeMatrix(numbers, 9);
        Kanvo_Matrix3       inverse(Kanvo_Matrix3::ZERO);
        ASSERT_EQ(matrix.Inverse(inverse), matrix.Determinant() != 0.0F);
        if (matrix.Determinant() == 0.0F) continue;
        ++inverted;
        const Kanvo_Matrix3 product = matrix * inverse;
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column)
                ASSERT_NEAR(product[row][column], row == column ? 1.0F : 0.0F, 0.001F);
    }
    EXPECT_GT(inverted, 1000);
}

TEST(Matrix3, AMatrixWithoutInverseGivesFalseAndLeavesTheResultAlone)
{
    Kanvo_Matrix3 result(COUNTED);
    EXPECT_FALSE(COUNTED.Inverse(result));
    EXPECT_FALSE(Kanvo_Matrix3::ZERO.Inverse(result));
    Kanvo_Matrix3 odd(Kanvo_Matrix3::IDENTITY);
    odd[0][0] = NOT_A_NUMBER;
    EXPECT_FALSE(odd.Inverse(result));
    EXPECT_FALSE(Kanvo_Matrix3::IDENTITY.Inverse(result, 1.0F));  // the determinant must be above the tolerance
    EXPECT_TRUE(AreEqual(result, COUNTED));
    EXPECT_TRUE(Kanvo_Matrix3::IDENTITY.Inverse(result, 0.999F));
}

TEST(Matrix3, MayBeInvertedInPlace)
{
    Kanvo_Matrix3 matrix(2, 0, 6, 0, 4, 8, 0, 0, 1);
    EXPECT_TRUE(matrix.Inverse(matrix));
    EXPECT_TRUE(matrix[0][0] == 0.5F && matrix[0][2] == -3.0F && matrix[1][1] == 0.25F && matrix[1][2] == -2.0F &&
                matrix[2][2] == 1.0F);
}

TEST(Matrix3, ScaleRotateMoveScalesFirstThenTurnsClockwiseThenMoves)
{
    const Kanvo_Matrix3 map = Kanvo_Matrix3::ScaleRotateMove({2, 3}, 90.0F, {100, 200});
    // (5, 7) scaled is (10, 21); a quarter turn clockwise, where y grows downwards, takes x to y and y to -x.
    const Kanvo_Vector2 point = map.TransformPoint({5, 7});
    EXPECT_EQ(point.x, 79.0F);
    EXPECT_EQ(point.y, 210.0F);
    EXPECT_EQ(map[2][0], 0.0F);
    EXPECT_EQ(map[2][1], 0.0F);
    EXPECT_EQ(map[2][2], 1.0F);
    for (const float odd : {NOT_A_NUMBER, INF, -INF})
    {
        const Kanvo_Vector2 unturned = Kanvo_Matrix3::ScaleRotateMove({2, 3}, odd, {100, 200}).TransformPoint({5, 7});
        EXPECT_EQ(unturned.x, 110.0F);
        EXPECT_EQ(unturned.y, 221.0F);
    }
}

// ---- sine and cosine ------------------------------------------------------------------------------------------------

void ExpectSinCos(float angle, double sine, double cosine)
{
    double gotSine   = 9;
    double gotCosine = 9;
    Kanvo_SinCosDegrees(angle, gotSine, gotCosine);
    EXPECT_EQ(gotSine, sine) << angle;
    EXPECT_EQ(gotCosine, cosine) << angle;
}

TEST(SinCos, AreExactAtEveryMultipleOfNinety)
{
    for (int turns = -8; turns <= 8; ++turns)
    {
        const float base = static_cast<float>(turns) * 360.0F;
        ExpectSinCos(base, 0.0, 1.0);
        ExpectSinCos(base + 90.0F, 1.0, 0.0);
        ExpectSinCos(base + 180.0F, 0.0, -1.0);
        ExpectSinCos(base + 270.0F, -1.0, 0.0);
    }
}

TEST(SinCos, AnAngleThatIsNotFiniteCountsAsZero)
{
    for (const float odd : {NOT_A_NUMBER, INF, -INF}) ExpectSinCos(odd, 0.0, 1.0);
}

//! Sine and cosine by the C library in the widest type there is, of an angle reduced without loss.
void ExpectClose(float angle, double& worst)
{
    const long double radians = static_cast<long double>(std::fmod(static_cast<double>(angle), 360.0)) *
                                3.141592653589793238462643383279502884L / 180.0L;
    double sine   = 9;
    double cosine = 9;
    Kanvo_SinCosDegrees(angle, sine, cosine);
    worst = std::max(worst, std::fabs(sine - static_cast<double>(std::sin(radians))));
    worst = std::max(worst, std::fabs(cosine - static_cast<double>(std::cos(radians))));
}

TEST(SinCos, StayWithinATrillionthOfAThousandthOfTheTruth)
{
    double worst = 0.0;
    for (int tenth = -7200; tenth <= 7200; ++tenth) ExpectClose(static_cast<float>(tenth) * 0.1F, worst);
    Numbers numbers(23);
    for (int turn = 0; turn < 100000; ++turn)
    {
        const float base = static_cast<float>(numbers.Next32()) / 4294967296.0F;
        ExpectClose((base - 0.5F) * 1440.0F, worst);
        ExpectClose((base - 0.5F) * 4.0e9F, worst);  // whole degrees, many turns
        ExpectClose(base * 1.0e-6F, worst);
    }
    // Where long double is no wider than double the yardstick itself is off by as much.
    EXPECT_LT(worst, std::numeric_limits<long double>::digits > 53 ? 1.0e-15 : 2.0e-15);
}

TEST(SinCos, ChangeSignWithTheAngle)
{
    Numbers numbers(24);
    for (int turn = 0; turn < 10000; ++turn)
    {
        const float angle = (static_cast<float>(numbers.Next32()) / 4294967296.0F) * 720.0F;
        double      sine[2];
        double      cosine[2];
        Kanvo_SinCosDegrees(angle, sine[0], cosine[0]);
        Kanvo_SinCosDegrees(-angle, sine[1], cosine[1]);
        ASSERT_EQ(sine[0], -sine[1]) << angle;
        ASSERT_EQ(cosine[0], cosine[1]) << angle;
    }
}

}  // namespace
