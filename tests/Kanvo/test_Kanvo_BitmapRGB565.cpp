// Tests of the RGB565 format: its policy, through all 65,536 values, and the colours of its source bitmap.
#include "Kanvo_BitmapRGB565.h"

#include <array>
#include <cstdint>
#include <type_traits>

#include <gtest/gtest.h>

#include "NaiveMix.h"
#include "Sweep.h"

namespace
{

using Access = Kanvo_PixelRGB565_Access;
using support::Differences;
using support::Numbers;

Tov_UByte Byte(unsigned value)
{
    return static_cast<Tov_UByte>(value);
}

//! Red, green and blue of a pixel as 8-bit channels: the bits repeated from the top.
std::array<int, 3> Expanded(unsigned pixel)
{
    const unsigned red   = pixel / 2048U;
    const unsigned green = pixel / 32U % 64U;
    const unsigned blue  = pixel % 32U;
    return {static_cast<int>(red * 8U + red / 4U), static_cast<int>(green * 4U + green / 16U),
            static_cast<int>(blue * 8U + blue / 4U)};
}

Kanvo_PixelRGB565 Packed(int red, int green, int blue)
{
    return static_cast<Kanvo_PixelRGB565>(red / 8 * 2048 + green / 4 * 32 + blue / 8);
}

TEST(PixelRGB565, IsSixteenBitsReachedThroughAPointerToThem)
{
    EXPECT_TRUE((std::is_same_v<Kanvo_PixelRGB565, Tov_UShort>));
    EXPECT_TRUE((std::is_same_v<Kanvo_OffsetRGB565, Kanvo_PixelRGB565*>));
    EXPECT_TRUE(std::is_empty_v<Access>);
}

TEST(PixelRGB565, FullChannelsExpandToFullChannels)
{
    EXPECT_EQ(Access::RedFromPixel(0xF800), 0xFF);
    EXPECT_EQ(Access::GreenFromPixel(0x07E0), 0xFF);
    EXPECT_EQ(Access::BlueFromPixel(0x001F), 0xFF);
    EXPECT_EQ(Access::RedFromPixel(0x07FF), 0);
    EXPECT_EQ(Access::GreenFromPixel(0xF81F), 0);
    EXPECT_EQ(Access::BlueFromPixel(0xFFE0), 0);
    EXPECT_EQ(Access::PixelFromRGB(255, 255, 255), 0xFFFF);
    EXPECT_EQ(Access::PixelFromRGB(0x08, 0x04, 0x08), 0x0821);
    EXPECT_EQ(Access::PixelFromRGB(0x07, 0x03, 0x07), 0);
}

TEST(PixelRGB565, AllValuesExpandByRepeatingTheirTopBitsAndPackToThemselves)
{
    Differences differences;
    for (unsigned value = 0; value < 65536; ++value)
    {
        const auto               pixel    = static_cast<Kanvo_PixelRGB565>(value);
        const std::array<int, 3> expected = Expanded(value);
        const int                red      = Access::RedFromPixel(pixel);
        const int                green    = Access::GreenFromPixel(pixel);
        const int                blue     = Access::BlueFromPixel(pixel);
        const unsigned           r5       = value / 2048U;
        const unsigned           g6       = value / 32U % 64U;
        const unsigned           b5       = value % 32U;
        if (red != expected[0] || green != expected[1] || blue != expected[2])
            differences.Note("%04X is (%d, %d, %d)", value, red, green, blue);
        // The forms with one product and one shift.
        if (red != static_cast<int>((33 * r5) >> 2) || green != static_cast<int>((65 * g6) >> 4) ||
            blue != static_cast<int>((33 * b5) >> 2))
            differences.Note("%04X differs from the product", value);
        if (Access::PixelFromRGB(Access::RedFromPixel(pixel), Access::GreenFromPixel(pixel),
                                 Access::BlueFromPixel(pixel)) != pixel)
            differences.Note("%04X does not come back", value);
        if (Access::AlphaFromPixel(pixel) != 255) differences.Note("alpha of %04X", value);
        if (Access::PixelToColor(pixel) != value) differences.Note("colour of %04X", value);
        if (Access::ColorToPixel(value) != pixel || Access::ColorToPixel(value | 0xABCD0000U) != pixel)
            differences.Note("pixel of colour %04X", value);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(PixelRGB565, FromRGBDropsTheLowBitsForAllColours)
{
    Differences differences;
    for (unsigned rgb = 0; rgb < 0x1000000U; ++rgb)
    {
        const unsigned red   = rgb / 65536U;
        const unsigned green = rgb / 256U % 256U;
        const unsigned blue  = rgb % 256U;
        if (Access::PixelFromRGB(Byte(red), Byte(green), Byte(blue)) != red / 8 * 2048 + green / 4 * 32 + blue / 8)
            differences.Note("%06X", rgb);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

//! The weight of MixBilinear: rounded up to even, 0 .. 256.
int EvenWeight(int alpha)
{
    return alpha % 2 == 0 ? alpha : alpha + 1;
}

TEST(PixelRGB565, MixBilinearWeighsEachChannelByItselfWithAnEvenWeightThatReaches256)
{
    // Along x with any vertical weight that is 0, and along y; each channel through all its pairs while the other two
    // fall and rise over their whole range.
    Differences differences;
    for (int alpha = 0; alpha < 256; ++alpha)
    {
        const int  weight = EvenWeight(alpha);
        const int  half   = (alpha + 1) / 2;  // the same weight in 128ths
        const auto check  = [&](unsigned one, unsigned two)
        {
            const std::array<int, 3> a = Expanded(one);
            const std::array<int, 3> b = Expanded(two);
            std::array<int, 3>       mixed{};
            for (std::size_t channel = 0; channel < 3; ++channel)
            {
                mixed[channel] = support::MixChannel(a[channel], b[channel], weight, 256);
                if (mixed[channel] != (a[channel] * (128 - half) + b[channel] * half) >> 7)
                    differences.Note("the form in 128ths of %d, %d by %d", a[channel], b[channel], alpha);
            }
            const Kanvo_PixelRGB565 expected = Packed(mixed[0], mixed[1], mixed[2]);
            const auto              p        = static_cast<Kanvo_PixelRGB565>(one);
            const auto              q        = static_cast<Kanvo_PixelRGB565>(two);
            const auto              other    = static_cast<Kanvo_PixelRGB565>(~one & 0xFFFFU);
            const unsigned          alongX = Access::MixBilinear(p, q, other, p, Byte(static_cast<unsigned>(alpha)), 0);
            const unsigned          alongY = Access::MixBilinear(p, other, q, p, 0, Byte(static_cast<unsigned>(alpha)));
            if (alongX != expected || alongY != expected)
                differences.Note("%04X and %04X by %d: %04X along x, %04X along y, not %04X", one, two, alpha, alongX,
                                 alongY, expected);
        };
        for (unsigned one = 0; one < 64; ++one)
        {
            for (unsigned two = 0; two < 64; ++two)
            {
                check(one * 32 + 31, two * 32 + 31 * 2048);  // green, beside falling blue and rising red
                if (one < 32 && two < 32)
                {
                    check(one * 2048 + 63 * 32, two * 2048 + 31);         // red
                    check(one + 31 * 2048, two + 63 * 32);                // blue
                    check(one * 2048 + two, two * 2048 + one + 63 * 32);  // both
                }
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(PixelRGB565, MixBilinearAt255ReachesTheNeighbour)
{
    Numbers numbers(71);
    for (int turn = 0; turn < 10000; ++turn)
    {
        std::array<Kanvo_PixelRGB565, 4> p{};
        for (auto& pixel : p) pixel = static_cast<Kanvo_PixelRGB565>(numbers.Next32() >> 16);
        ASSERT_EQ(Access::MixBilinear(p[0], p[1], p[2], p[3], 0, 0), p[0]);
        ASSERT_EQ(Access::MixBilinear(p[0], p[1], p[2], p[3], 255, 0), p[1]);
        ASSERT_EQ(Access::MixBilinear(p[0], p[1], p[2], p[3], 0, 255), p[2]);
        ASSERT_EQ(Access::MixBilinear(p[0], p[1], p[2], p[3], 255, 255), p[3]);
    }
}

TEST(PixelRGB565, MixBilinearInTwoStepsIsTheFloorOfTheFloorsInEveryChannel)
{
    Differences differences;
    Numbers     numbers(72);
    for (int turn = 0; turn < 500000; ++turn)
    {
        std::array<Kanvo_PixelRGB565, 4> p{};
        for (auto& pixel : p)
        {
            // Channels that are empty or full as often as anything else.
            const std::uint32_t word = numbers.NextHostileWord();
            pixel                    = Packed(static_cast<int>(word >> 24), static_cast<int>(word >> 16 & 0xFFU),
                                              static_cast<int>(word & 0xFFU));
        }
        const int          x = numbers.NextByte();
        const int          y = numbers.NextByte();
        std::array<int, 3> mixed{};
        for (std::size_t channel = 0; channel < 3; ++channel)
        {
            mixed[channel] =
                support::MixBlock(Expanded(p[0])[channel], Expanded(p[1])[channel], Expanded(p[2])[channel],
                                  Expanded(p[3])[channel], EvenWeight(x), EvenWeight(y), 256);
        }
        const unsigned got =
            Access::MixBilinear(p[0], p[1], p[2], p[3], Byte(static_cast<unsigned>(x)), Byte(static_cast<unsigned>(y)));
        if (got != Packed(mixed[0], mixed[1], mixed[2]))
            differences.Note("%04X %04X / %04X %04X by %d, %d gives %04X", p[0], p[1], p[2], p[3], x, y, got);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(BitmapRGB565, ColoursAreRawPixelValues)
{
    std::uint16_t            pixel = 0;
    const Kanvo_BitmapRGB565 bitmap(nullptr, 1, 1, BBT_RAM, &pixel);
    EXPECT_EQ(bitmap.GetType(), Tov_UInt{BM_RGB565});
    EXPECT_FALSE(bitmap.HasAlpha());
    EXPECT_EQ(bitmap.ColorFromRGB(255, 255, 255), 0xFFFFU);
    EXPECT_EQ(bitmap.ColorFromRGB(0x0F, 0x07, 0x0F), 0x0821U);
    EXPECT_EQ(bitmap.ColorFromARGB(0x80, 255, 0, 0), 0xF800U);
    EXPECT_EQ(bitmap.PremulColorFromARGB(0x80, 255, 128, 0), 16U * 2048U + 16U * 32U);
    Tov_UByte red = 9, green = 9, blue = 9;
    EXPECT_TRUE(bitmap.ColorToRGB(0xABCD07E0U, red, green, blue));
    EXPECT_EQ(red, 0);
    EXPECT_EQ(green, 255);
    EXPECT_EQ(blue, 0);
    EXPECT_TRUE(bitmap.ColorToRGB(0x0821U, red, green, blue));
    EXPECT_EQ(red, 8);
    EXPECT_EQ(green, 4);
    EXPECT_EQ(blue, 8);
}

}  // namespace
