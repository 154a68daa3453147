// Tests of the platform layer: scalar types, fixed point, float helpers, conversions, block copy and fill.
// Expected values are written out, or calculated by schoolbook methods on the bits.
#include "Tov_Math.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "Sweep.h"
#include "Tov_Memory.h"

namespace
{

using support::Differences;
using support::Numbers;

constexpr Tov_Int INT_LOWEST  = std::numeric_limits<Tov_Int>::min();
constexpr Tov_Int INT_HIGHEST = std::numeric_limits<Tov_Int>::max();

float FromBits(std::uint32_t bits)
{
    float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

std::uint32_t Bits(float value)
{
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

//! The two's complement number that the low 32 bits of bits stand for.
Tov_Int Wrap(std::uint64_t bits)
{
    const std::int64_t low = static_cast<std::int64_t>(bits & 0xFFFFFFFFU);
    return static_cast<Tov_Int>(low < 0x80000000LL ? low : low - 0x100000000LL);
}

//! Values at which arithmetic of 32 bits goes wrong first.
std::vector<Tov_Int> Extremes()
{
    std::vector<Tov_Int> values{0, INT_LOWEST, INT_HIGHEST};
    for (int bit = 0; bit < 31; ++bit)
    {
        const Tov_Int power = static_cast<Tov_Int>(1U << bit);
        for (const Tov_Int value : {power - 1, power, power + (power < INT_HIGHEST ? 1 : 0)})
        {
            values.push_back(value);
            values.push_back(-value);
        }
    }
    values.push_back(INT_LOWEST + 1);
    values.push_back(0x30000);
    values.push_back(-0x30000);
    return values;
}

// ---- types ----------------------------------------------------------------------------------------------------------

template <class Type, class Expected>
constexpr bool IsExactly = std::is_same_v<Type, Expected>;

TEST(TovTypes, HaveTheWidthAndSignThatPixelArithmeticReliesOn)
{
    EXPECT_TRUE((IsExactly<Tov_Int, std::int32_t>));
    EXPECT_TRUE((IsExactly<Tov_UInt, std::uint32_t>));
    EXPECT_TRUE((IsExactly<Tov_Short, std::int16_t>));
    EXPECT_TRUE((IsExactly<Tov_UShort, std::uint16_t>));
    EXPECT_TRUE((IsExactly<Tov_UByte, std::uint8_t>));
    EXPECT_TRUE((IsExactly<Tov_Bool, bool>));
    EXPECT_TRUE((IsExactly<Tov_Flag, std::uint32_t>));
    EXPECT_TRUE((IsExactly<Tov_Float, float>));
    EXPECT_TRUE((IsExactly<Tov_Value, Tov_Float>));
    EXPECT_TRUE((IsExactly<Tov_Fixed, std::int32_t>));
    EXPECT_TRUE((IsExactly<Kanvo_Color, Tov_UInt>));
    EXPECT_TRUE((IsExactly<Kanvo_ColorARGB32, Tov_UInt>));
    EXPECT_EQ(sizeof(Tov_Bool), 1U);
    EXPECT_TRUE(std::numeric_limits<Tov_Float>::is_iec559);
}

TEST(TovTypes, AMixedSlotHasSevenMembersAtOneAddressAndRoomForAPointer)
{
    Tov_MixedType     slot;
    const void* const address = &slot;
    EXPECT_EQ(static_cast<const void*>(&slot.uiValue), address);
    EXPECT_EQ(static_cast<const void*>(&slot.iValue), address);
    EXPECT_EQ(static_cast<const void*>(&slot.vValue), address);
    EXPECT_EQ(static_cast<const void*>(&slot.fxValue), address);
    EXPECT_EQ(static_cast<const void*>(&slot.kValue), address);
    EXPECT_EQ(static_cast<const void*>(&slot.bValue), address);
    EXPECT_EQ(static_cast<const void*>(&slot.pvValue), address);
    EXPECT_TRUE((IsExactly<decltype(slot.uiValue), Tov_UInt> && IsExactly<decltype(slot.iValue), Tov_Int> &&
                 IsExactly<decltype(slot.vValue), Tov_Value> && IsExactly<decltype(slot.fxValue), Tov_Fixed> &&
                 IsExactly<decltype(slot.kValue), Tov_UInt> && IsExactly<decltype(slot.bValue), Tov_Bool> &&
                 IsExactly<decltype(slot.pvValue), void*>));
    EXPECT_EQ(sizeof(Tov_MixedType), sizeof(void*) > 4 ? sizeof(void*) : 4U);
}

// ---- products and quotients -----------------------------------------------------------------------------------------

//! floor(a * b / 65536) in the low 32 bits. a = 65536 * high + low with 0 <= low < 65536, so that
//! floor(a * b / 65536) = high * b + floor(low * b / 65536), and no product needs more than 48 bits.
Tov_Fixed SchoolbookMul(Tov_Fixed a, Tov_Fixed b)
{
    const std::int64_t low     = static_cast<std::int64_t>(static_cast<std::uint32_t>(a) % 65536U);
    const std::int64_t high    = (static_cast<std::int64_t>(a) - low) / 65536;
    const std::int64_t product = low * b;
    const std::int64_t floored = product >= 0 ? product / 65536 : -((-product + 65535) / 65536);
    return Wrap(static_cast<std::uint64_t>(high * b + floored));
}

//! a * 65536 / b truncated, by long division of the magnitudes, bit for bit, in the low 32 bits.
Tov_Fixed SchoolbookDiv(Tov_Fixed a, Tov_Fixed b)
{
    const std::uint64_t dividend  = static_cast<std::uint64_t>(std::llabs(a)) * 65536U;
    const std::uint64_t divisor   = static_cast<std::uint64_t>(std::llabs(b));
    std::uint64_t       quotient  = 0;
    std::uint64_t       remainder = 0;
    for (int bit = 47; bit >= 0; --bit)
    {
        remainder = remainder * 2 + ((dividend >> bit) & 1U);
        quotient *= 2;
        if (remainder >= divisor)
        {
            remainder -= divisor;
            quotient += 1;
        }
    }
    return Wrap((a < 0) != (b < 0) ? ~quotient + 1 : quotient);
}

TEST(FixMul, OneTimesAnythingIsThatAndAHalfTimesAHalfIsAQuarter)
{
    for (const Tov_Int x : Extremes())
    {
        EXPECT_EQ(Tov_FixMul(0x10000, x), x);
        EXPECT_EQ(Tov_FixMul(x, 0x10000), x);
    }
    EXPECT_EQ(Tov_FixMul(-0x10000, 0x10000), -0x10000);
    EXPECT_EQ(Tov_FixMul(0x8000, 0x8000), 0x4000);
}

TEST(FixMul, TinyNegativeProductsRoundTowardsMinusInfinity)
{
    EXPECT_EQ(Tov_FixMul(-1, 1), -1);
    EXPECT_EQ(Tov_FixMul(1, -1), -1);
    EXPECT_EQ(Tov_FixMul(1, 1), 0);
    EXPECT_EQ(Tov_FixMul(-1, 0xFFFF), -1);
    EXPECT_EQ(Tov_FixMul(-1, 0x10001), -2);
}

TEST(FixMul, KeepsTheFullProductAndWrapsOnlyAtTheEnd)
{
    EXPECT_EQ(Tov_FixMul(800 * 65536, 32768), 400 * 65536);
    EXPECT_EQ(Tov_FixMul(INT_HIGHEST, INT_HIGHEST), -65536);        // 0x3FFFFFFF00000001 >> 16 = 0x3FFFFFFF0000
    EXPECT_EQ(Tov_FixMul(INT_LOWEST, INT_LOWEST), 0);               // 2^62 >> 16 = 2^46
    EXPECT_EQ(Tov_FixMul(INT_LOWEST, INT_HIGHEST), 32768);          // -(2^62 - 2^31) >> 16 = -2^46 + 2^15
    EXPECT_EQ(Tov_FixMul(0x7FFF0000, 0x20000), Tov_Int{-0x20000});  // 2 * 32767 wraps
}

TEST(FixMul, EqualsTheSchoolbookProductForExtremeAndRandomValues)
{
    Differences differences;
    for (const Tov_Int a : Extremes())
    {
        for (const Tov_Int b : Extremes())
        {
            const Tov_Int got = Tov_FixMul(a, b);
            if (got != SchoolbookMul(a, b))
                differences.Note("%d * %d gives %d, not %d", a, b, got, SchoolbookMul(a, b));
        }
    }
    Numbers numbers(11);
    for (int turn = 0; turn < 2000000; ++turn)
    {
        const auto    a   = static_cast<Tov_Int>(numbers.Next32());
        const auto    b   = static_cast<Tov_Int>(numbers.Next32()) >> (numbers.Next32() % 32);
        const Tov_Int got = Tov_FixMul(a, b);
        if (got != SchoolbookMul(a, b)) differences.Note("%d * %d gives %d, not %d", a, b, got, SchoolbookMul(a, b));
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(FixDiv, TruncatesTowardsZeroUnlikeTheProduct)
{
    EXPECT_EQ(Tov_FixDiv(0x10000, 0x30000), 0x5555);
    EXPECT_EQ(Tov_FixDiv(-0x10000, 0x30000), -0x5555);
    EXPECT_EQ(Tov_FixDiv(0x10000, -0x30000), -0x5555);
    EXPECT_EQ(Tov_FixDiv(-0x10000, -0x30000), 0x5555);
    EXPECT_EQ(Tov_FixDiv(-1, 0x20000), 0);
}

TEST(FixDiv, ReturnsTheLowWordOfAQuotientThatDoesNotFit)
{
    EXPECT_EQ(Tov_FixDiv(INT_LOWEST, -1), 0);  // 2^47
    EXPECT_EQ(Tov_FixDiv(INT_LOWEST, 1), 0);   // -2^47
    EXPECT_EQ(Tov_FixDiv(INT_LOWEST, INT_LOWEST), 65536);
    EXPECT_EQ(Tov_FixDiv(INT_LOWEST, -65536), INT_LOWEST);  // 2^31
    EXPECT_EQ(Tov_FixDiv(INT_HIGHEST, 1), -65536);          // 0x7FFFFFFF0000
    EXPECT_EQ(Tov_FixDiv(0, -1), 0);
}

TEST(FixDiv, EqualsTheSchoolbookQuotientForExtremeAndRandomValues)
{
    Differences differences;
    const auto  check = [&](Tov_Int a, Tov_Int b)
    {
        if (b == 0) return;
        const Tov_Int expected = SchoolbookDiv(a, b);
        const Tov_Int got      = Tov_FixDiv(a, b);
        if (got != expected) differences.Note("%d / %d gives %d, not %d", a, b, got, expected);
    };
    for (const Tov_Int a : Extremes())
        for (const Tov_Int b : Extremes()) check(a, b);
    Numbers numbers(12);
    for (int turn = 0; turn < 300000; ++turn)
    {
        const auto a     = static_cast<Tov_Int>(numbers.Next32());
        const auto b     = static_cast<Tov_Int>(numbers.Next32());
        const auto shift = numbers.Next32() % 32;
        check(a, b >> shift);
        check(a >> shift, b);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(FixAbs, TheMostNegativeValueMapsToItself)
{
    EXPECT_EQ(Tov_FixAbs(INT_LOWEST), INT_LOWEST);
    for (const Tov_Int x : Extremes())
    {
        if (x == INT_LOWEST) continue;
        EXPECT_EQ(Tov_FixAbs(x), std::llabs(x));
    }
}

TEST(FixMin, IsTheSmallerOneAndEitherOfTwoEqualOnes)
{
    for (const Tov_Int a : Extremes())
    {
        EXPECT_EQ(Tov_FixMin(a, a), a);
        EXPECT_EQ(Tov_FixMin(a, INT_LOWEST), INT_LOWEST);
        EXPECT_EQ(Tov_FixMin(INT_HIGHEST, a), a);
    }
    EXPECT_EQ(Tov_FixMin(-1, 1), -1);
    EXPECT_EQ(Tov_FixMin(1, -1), -1);
}

TEST(ShortNames, StandForTheVariantsOfThisTarget)
{
    Numbers numbers(13);
    for (int turn = 0; turn < 1000; ++turn)
    {
        const auto  a = static_cast<Tov_Int>(numbers.Next32());
        const auto  b = static_cast<Tov_Int>(numbers.Next32() | 1U);
        const float x = static_cast<float>(a) / 65536.0F;
        const float y = static_cast<float>(b) / 65536.0F;
        ASSERT_EQ(Tov_FixMul(a, b), Tov_FixMul_RZA1H(a, b));
        ASSERT_EQ(Tov_FixDiv(a, b), Tov_FixDiv_RZA1H(a, b));
        ASSERT_EQ(Tov_FixAbs(a), Tov_FixAbs_Default(a));
        ASSERT_EQ(Tov_FixMin(a, b), Tov_FixMin_Default(a, b));
        ASSERT_EQ(Tov_FltAbs(x), Tov_FltAbs_Default(x));
        ASSERT_EQ(Tov_FltSqrt(x * x), Tov_FltSqrt_Default(x * x));
        ASSERT_EQ(Tov_FltLen2(x, y), Tov_FltLen2_Default(x, y));
    }
}

// ---- integer and fixed ----------------------------------------------------------------------------------------------

TEST(IntToFix, IsTimes65536AndWrapsOutsideSixteenBits)
{
    for (int i = -32768; i <= 32767; ++i) ASSERT_EQ(Tov_IntToFix(i), i * 65536);
    EXPECT_EQ(Tov_IntToFix(32768), INT_LOWEST);
    EXPECT_EQ(Tov_IntToFix(-32769), 0x7FFF0000);
    EXPECT_EQ(Tov_IntToFix(65536), 0);
    EXPECT_EQ(Tov_IntToFix(INT_LOWEST), 0);
    EXPECT_EQ(Tov_IntToFix(-1), -65536);
}

TEST(FixToInt, RoundsTowardsMinusInfinity)
{
    EXPECT_EQ(Tov_FixToInt(0xFFFF), 0);
    EXPECT_EQ(Tov_FixToInt(0x10000), 1);
    EXPECT_EQ(Tov_FixToInt(-1), -1);
    EXPECT_EQ(Tov_FixToInt(-65536), -1);
    EXPECT_EQ(Tov_FixToInt(-65537), -2);
    EXPECT_EQ(Tov_FixToInt(INT_LOWEST), -32768);
    EXPECT_EQ(Tov_FixToInt(INT_HIGHEST), 32767);
    for (const Tov_Int x : Extremes()) EXPECT_EQ(Tov_FixToInt(x), std::floor(static_cast<double>(x) / 65536.0)) << x;
}

TEST(FixToFlt, IsTheNearestFloatToThe65536thPart)
{
    EXPECT_EQ(Tov_FixToFlt(0x10000), 1.0F);
    EXPECT_EQ(Tov_FixToFlt(-0x8000), -0.5F);
    EXPECT_EQ(Tov_FixToFlt(1), 1.0F / 65536.0F);
    EXPECT_EQ(Tov_FixToFlt(INT_LOWEST), -32768.0F);
    EXPECT_EQ(Tov_FixToFlt(INT_HIGHEST), 32768.0F);
    Numbers numbers(14);
    for (int turn = 0; turn < 100000; ++turn)
    {
        const auto fixed = static_cast<Tov_Fixed>(numbers.Next32()) >> (numbers.Next32() % 16);
        ASSERT_EQ(Tov_FixToFlt(fixed), static_cast<float>(static_cast<double>(fixed) / 65536.0)) << fixed;
    }
}

// ---- float to integer -----------------------------------------------------------------------------------------------

constexpr std::int64_t HUGE_MAGNITUDE = std::int64_t{1} << 62;

//! The value of a float times 2^scale, truncated towards zero, read off its bits. NaN is 0; what is too large for the
//! 63 bits, and infinity, is 2^62 with its sign.
std::int64_t Truncated(std::uint32_t bits, int scale)
{
    const int           exponent    = static_cast<int>((bits >> 23) & 0xFFU);
    const std::uint32_t fraction    = bits & 0x007FFFFFU;
    const std::uint64_t significand = exponent > 0 ? fraction + 0x00800000U : fraction;
    const int           shift       = (exponent > 0 ? exponent : 1) - 150 + scale;
    if (exponent == 255 && fraction != 0) return 0;
    std::int64_t magnitude = 0;
    if (exponent == 255 || shift > 38)
    {
        magnitude = HUGE_MAGNITUDE;
    }
    else if (shift >= 0)
    {
        magnitude = static_cast<std::int64_t>(significand << shift);
    }
    else if (shift > -24)
    {
        magnitude = static_cast<std::int64_t>(significand >> -shift);
    }
    return (bits & 0x80000000U) != 0 ? -magnitude : magnitude;
}

std::int64_t Limited(std::int64_t value, std::int64_t lowest, std::int64_t highest)
{
    return value < lowest ? lowest : value > highest ? highest : value;
}

void CheckConversions(std::uint32_t bits, Differences& differences)
{
    const float        value    = FromBits(bits);
    const std::int64_t whole    = Truncated(bits, 0);
    const std::int64_t asInt    = Limited(whole, INT_LOWEST, INT_HIGHEST);
    const std::int64_t asUInt   = Limited(whole, 0, 0xFFFFFFFFLL);
    const std::int64_t asFixed  = Limited(Truncated(bits, 16), INT_LOWEST, INT_HIGHEST);
    const Tov_Int      gotInt   = Tov_FltToInt(value);
    const Tov_UInt     gotUInt  = Tov_FltToUInt(value);
    const Tov_Fixed    gotFixed = Tov_FltToFix(value);
    if (gotInt != asInt)
        differences.Note("float %08X as int: %d, not %lld", bits, gotInt, static_cast<long long>(asInt));
    if (gotUInt != asUInt)
        differences.Note("float %08X as unsigned: %u, not %lld", bits, gotUInt, static_cast<long long>(asUInt));
    if (gotFixed != asFixed)
        differences.Note("float %08X as 16.16: %d, not %lld", bits, gotFixed, static_cast<long long>(asFixed));
}

TEST(Conversions, NaNGivesZeroAndInfinitySaturates)
{
    constexpr float INF = std::numeric_limits<float>::infinity();
    for (const std::uint32_t nan : {0x7FC00000U, 0xFFC00000U, 0x7F800001U, 0xFF800001U, 0x7FFFFFFFU, 0xFFFFFFFFU})
    {
        EXPECT_EQ(Tov_FltToInt(FromBits(nan)), 0);
        EXPECT_EQ(Tov_FltToUInt(FromBits(nan)), 0U);
        EXPECT_EQ(Tov_FltToFix(FromBits(nan)), 0);
    }
    EXPECT_EQ(Tov_FltToInt(INF), INT_HIGHEST);
    EXPECT_EQ(Tov_FltToInt(-INF), INT_LOWEST);
    EXPECT_EQ(Tov_FltToUInt(INF), 0xFFFFFFFFU);
    EXPECT_EQ(Tov_FltToUInt(-INF), 0U);
    EXPECT_EQ(Tov_FltToFix(INF), INT_HIGHEST);
    EXPECT_EQ(Tov_FltToFix(-INF), INT_LOWEST);
}

TEST(Conversions, TruncateTowardsZeroAndSaturateAtTheBounds)
{
    EXPECT_EQ(Tov_FltToInt(2.9F), 2);
    EXPECT_EQ(Tov_FltToInt(-2.9F), -2);
    EXPECT_EQ(Tov_FltToInt(-0.9F), 0);
    EXPECT_EQ(Tov_FltToInt(-0.0F), 0);
    EXPECT_EQ(Tov_FltToInt(2147483520.0F), 2147483520);  // the last float below 2^31
    EXPECT_EQ(Tov_FltToInt(2147483648.0F), INT_HIGHEST);
    EXPECT_EQ(Tov_FltToInt(-2147483648.0F), INT_LOWEST);
    EXPECT_EQ(Tov_FltToInt(-2147483904.0F), INT_LOWEST);

    EXPECT_EQ(Tov_FltToUInt(-1.0F), 0U);
    EXPECT_EQ(Tov_FltToUInt(0.99F), 0U);
    EXPECT_EQ(Tov_FltToUInt(2147483648.0F), 0x80000000U);
    EXPECT_EQ(Tov_FltToUInt(4294967040.0F), 0xFFFFFF00U);  // the last float below 2^32
    EXPECT_EQ(Tov_FltToUInt(4294967296.0F), 0xFFFFFFFFU);

    EXPECT_EQ(Tov_FltToFix(1.5F), 0x18000);
    EXPECT_EQ(Tov_FltToFix(-1.5F), -0x18000);
    EXPECT_EQ(Tov_FltToFix(0.99999F / 65536.0F), 0);
    EXPECT_EQ(Tov_FltToFix(-1.99999F / 65536.0F), -1);
    EXPECT_EQ(Tov_FltToFix(32767.998F), 2147483520);
    EXPECT_EQ(Tov_FltToFix(32768.0F), INT_HIGHEST);
    EXPECT_EQ(Tov_FltToFix(-32768.0F), INT_LOWEST);
    EXPECT_EQ(Tov_FltToFix(1.0e38F), INT_HIGHEST);  // the product is infinite
    EXPECT_EQ(Tov_FltToFix(-3.4e38F), INT_LOWEST);
}

TEST(Conversions, AreRightAtEveryPowerOfTwoAndEveryHalfAndOneStepBesideThem)
{
    Differences differences;
    for (std::uint32_t sign : {0U, 0x80000000U})
    {
        for (std::uint32_t exponent = 0; exponent <= 255; ++exponent)
        {
            // 1.0, 1.5, 1.25 and 1.75 times the power of two, and the neighbours of each.
            for (const std::uint32_t fraction : {0U, 0x400000U, 0x200000U, 0x600000U})
            {
                const std::uint32_t bits = sign + (exponent << 23) + fraction;
                for (const std::uint32_t step : {0xFFFFFFFFU, 0U, 1U}) CheckConversions(bits + step, differences);
            }
        }
        for (std::uint32_t half = 1; half <= 70000; ++half)
        {
            const std::uint32_t bits = sign | Bits(static_cast<float>(half) * 0.5F);
            for (const std::uint32_t step : {0xFFFFFFFFU, 0U, 1U}) CheckConversions(bits + step, differences);
        }
        // Denormals: the smallest, the largest, and a few between.
        for (std::uint32_t fraction = 1; fraction < 0x800000U; fraction = fraction * 2 + 1)
        {
            CheckConversions(sign | fraction, differences);
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(Conversions, AreRightForTenMillionRandomBitPatterns)
{
    Differences differences;
    Numbers     numbers(15);
    for (int turn = 0; turn < 5000000; ++turn)
    {
        // Any pattern, and one whose exponent lies where the results are not all 0 or saturated: 2^-17 .. 2^33.
        const std::uint32_t any = numbers.Next32();
        CheckConversions(any, differences);
        CheckConversions((any & 0x807FFFFFU) | ((110 + numbers.Next32() % 51) << 23), differences);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

// ---- float helpers --------------------------------------------------------------------------------------------------

TEST(FltAbs, NegatesWhatIsNegativeAndLeavesNegativeZeroAlone)
{
    constexpr float INF = std::numeric_limits<float>::infinity();
    EXPECT_EQ(Tov_FltAbs(2.5F), 2.5F);
    EXPECT_EQ(Tov_FltAbs(-2.5F), 2.5F);
    EXPECT_EQ(Tov_FltAbs(-INF), INF);
    EXPECT_EQ(Bits(Tov_FltAbs(-0.0F)), 0x80000000U);
    EXPECT_EQ(Bits(Tov_FltAbs(0.0F)), 0U);
    EXPECT_EQ(Bits(Tov_FltAbs(FromBits(0x80000001U))), 1U);  // the smallest denormal
    EXPECT_TRUE(std::isnan(Tov_FltAbs(std::numeric_limits<float>::quiet_NaN())));
}

TEST(FltSqrt, IsTheCorrectlyRoundedRoot)
{
    EXPECT_EQ(Tov_FltSqrt(4.0F), 2.0F);
    EXPECT_EQ(Tov_FltSqrt(0.0F), 0.0F);
    EXPECT_EQ(Bits(Tov_FltSqrt(-0.0F)), 0x80000000U);
    EXPECT_TRUE(std::isnan(Tov_FltSqrt(-1.0F)));
    EXPECT_TRUE(std::isinf(Tov_FltSqrt(std::numeric_limits<float>::infinity())));
    Differences differences;
    Numbers     numbers(16);
    for (int turn = 0; turn < 500000; ++turn)
    {
        const std::uint32_t bits = numbers.Next32() % 0x7F800000U;
        // The root in double precision, rounded to single, is the correctly rounded root.
        const auto expected = static_cast<float>(std::sqrt(static_cast<double>(FromBits(bits))));
        if (Tov_FltSqrt(FromBits(bits)) != expected) differences.Note("root of float %08X", bits);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(FltLen2, ComputesInSinglePrecisionWithoutProtection)
{
    EXPECT_EQ(Tov_FltLen2(3.0F, 4.0F), 5.0F);
    EXPECT_EQ(Tov_FltLen2(-3.0F, 4.0F), 5.0F);
    EXPECT_EQ(Tov_FltLen2(0.0F, 0.0F), 0.0F);
    EXPECT_TRUE(std::isinf(Tov_FltLen2(1.0e20F, 0.0F)));  // 1e40 is beyond single precision
    EXPECT_EQ(Tov_FltLen2(1.0e-30F, 0.0F), 0.0F);         // and 1e-60 below it
    EXPECT_TRUE(std::isnan(Tov_FltLen2(std::numeric_limits<float>::quiet_NaN(), 1.0F)));
    // Each product and the sum are rounded on their own: 4097^2 = 2^24 + 8193 loses its last bit, and so does the sum.
    const volatile float square = 4097.0F * 4097.0F;
    const volatile float sum    = square + 1.0F;
    EXPECT_EQ(Tov_FltLen2(4097.0F, 1.0F), std::sqrt(sum));
}

TEST(FltLen2, DoesNotMeltProductAndSumIntoOneRounding)
{
    Differences differences;
    Numbers     numbers(17);
    for (int turn = 0; turn < 500000; ++turn)
    {
        const float x = FromBits((numbers.Next32() & 0x807FFFFFU) | ((120 + numbers.Next32() % 16) << 23));
        const float y = FromBits((numbers.Next32() & 0x807FFFFFU) | ((120 + numbers.Next32() % 16) << 23));
        // Products of two floats are exact in double precision; each rounding to single is made visible.
        const auto xx  = static_cast<float>(static_cast<double>(x) * static_cast<double>(x));
        const auto yy  = static_cast<float>(static_cast<double>(y) * static_cast<double>(y));
        const auto sum = static_cast<float>(static_cast<double>(xx) + static_cast<double>(yy));
        const auto len = static_cast<float>(std::sqrt(static_cast<double>(sum)));
        if (Tov_FltLen2(x, y) != len) differences.Note("length of (%08X, %08X)", Bits(x), Bits(y));
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

// ---- memory ---------------------------------------------------------------------------------------------------------

TEST(Memory, CopyAndFillTouchExactlyTheirBytesAndReturnTheDestination)
{
    std::uint8_t       to[8]   = {9, 9, 9, 9, 9, 9, 9, 9};
    const std::uint8_t from[6] = {1, 2, 3, 4, 5, 6};
    EXPECT_EQ(Tov_Memcpy(to + 1, from, 6), to + 1);
    EXPECT_EQ(std::vector<int>(to, to + 8), (std::vector<int>{9, 1, 2, 3, 4, 5, 6, 9}));
    EXPECT_EQ(Tov_Memset(to + 2, 0x1FE, 3), to + 2);  // the low byte counts
    EXPECT_EQ(std::vector<int>(to, to + 8), (std::vector<int>{9, 1, 0xFE, 0xFE, 0xFE, 5, 6, 9}));
    EXPECT_EQ(Tov_Memcpy(to, from, 0), to);
    EXPECT_EQ(Tov_Memset(to, 0, 0), to);
    EXPECT_EQ(to[0], 9);
}

}  // namespace
