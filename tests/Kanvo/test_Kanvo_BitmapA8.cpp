// Tests of the A8 format: its policy, through every input, and the colours of its source bitmap.
#include "Kanvo_BitmapA8.h"

#include <cstdint>
#include <type_traits>

#include <gtest/gtest.h>

#include "NaiveMix.h"
#include "Sweep.h"

namespace
{

using Access = Kanvo_PixelA8_Access;
using support::Differences;
using support::Numbers;

Tov_UByte Byte(unsigned value)
{
    return static_cast<Tov_UByte>(value);
}

TEST(PixelA8, IsAByteReachedThroughAPointerToIt)
{
    EXPECT_TRUE((std::is_same_v<Kanvo_PixelA8, Tov_UByte>));
    EXPECT_TRUE((std::is_same_v<Kanvo_OffsetA8, Kanvo_PixelA8*>));
    EXPECT_TRUE(std::is_empty_v<Access>);
}

TEST(PixelA8, AllChannelsAreTheValueAndTheColourAnOpaqueGrey)
{
    for (unsigned value = 0; value < 256; ++value)
    {
        const Kanvo_PixelA8 pixel = Byte(value);
        EXPECT_EQ(Access::RedFromPixel(pixel), value);
        EXPECT_EQ(Access::GreenFromPixel(pixel), value);
        EXPECT_EQ(Access::BlueFromPixel(pixel), value);
        EXPECT_EQ(Access::AlphaFromPixel(pixel), value);
        EXPECT_EQ(Access::PixelToColor(pixel), value);
        EXPECT_EQ(Access::ColorToPixel(value), pixel);
        EXPECT_EQ(Access::ColorToPixel(value | 0xABCDEF00U), pixel);
        EXPECT_EQ(Access::ColorARGB32FromPixel(pixel), 0xFF000000U + value * 65536U + value * 256U + value);
    }
    EXPECT_EQ(Access::ColorARGB32FromPixel(0x40), 0xFF404040U);
}

TEST(PixelA8, MixBilinearIsTheFloorWithTheFullWeightForEveryTripleOnBothAxes)
{
    Differences differences;
    for (unsigned alpha = 0; alpha < 256; ++alpha)
    {
        const support::MixTable table(static_cast<int>(alpha), 256);
        for (unsigned one = 0; one < 256; ++one)
        {
            for (unsigned two = 0; two < 256; ++two)
            {
                const unsigned expected = table(one, two);
                const unsigned alongX =
                    Access::MixBilinear(Byte(one), Byte(two), Byte(255 - one), Byte(two ^ one), Byte(alpha), 0);
                const unsigned alongY =
                    Access::MixBilinear(Byte(one), Byte(255 - two), Byte(two), Byte(two ^ one), 0, Byte(alpha));
                if (alongX != expected || alongY != expected)
                    differences.Note("%u and %u by %u: %u along x, %u along y, not %u", one, two, alpha, alongX, alongY,
                                     expected);
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(PixelA8, MixBilinearInTwoStepsIsTheFloorOfTheFloors)
{
    Differences differences;
    Numbers     numbers(81);
    for (int turn = 0; turn < 2000000; ++turn)
    {
        const support::Channels p   = support::Split(numbers.NextHostileWord());
        const std::uint32_t     xy  = numbers.NextHostileWord();
        const int               x   = static_cast<int>(xy & 0xFFU);
        const int               y   = static_cast<int>(xy >> 24);
        const int               got = Access::MixBilinear(static_cast<Tov_UByte>(p[0]), static_cast<Tov_UByte>(p[1]),
                                                          static_cast<Tov_UByte>(p[2]), static_cast<Tov_UByte>(p[3]),
                                                          static_cast<Tov_UByte>(x), static_cast<Tov_UByte>(y));
        const int               expected = support::MixBlock(p[0], p[1], p[2], p[3], x, y, 256);
        if (got != expected)
            differences.Note("%d %d / %d %d by %d, %d: %d, not %d", p[0], p[1], p[2], p[3], x, y, got, expected);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
    EXPECT_EQ(Access::MixBilinear(0, 255, 0, 255, 255, 128), 254);  // the last 256th is never reached
    EXPECT_EQ(Access::MixBilinear(255, 0, 255, 0, 1, 0), 254);      // and the floor of -255 / 256 is -1
}

TEST(BitmapA8, AColourIsItsAlphaAndHasNoColourChannels)
{
    std::uint8_t         pixel = 0;
    const Kanvo_BitmapA8 bitmap(nullptr, 1, 1, BBT_RAM, &pixel);
    EXPECT_EQ(bitmap.GetType(), Tov_UInt{BM_ALPHA8});
    EXPECT_TRUE(bitmap.HasAlpha());
    EXPECT_EQ(bitmap.ColorFromRGB(1, 2, 3), 255U);
    EXPECT_EQ(bitmap.ColorFromARGB(0x80, 1, 2, 3), 0x80U);
    EXPECT_EQ(bitmap.PremulColorFromARGB(0x80, 1, 2, 3), 0x80U);
    Tov_UByte red = 9, green = 9, blue = 9;
    EXPECT_FALSE(bitmap.ColorToRGB(0x40, red, green, blue));
    EXPECT_EQ(red, 0x40);
    EXPECT_EQ(green, 0x40);
    EXPECT_EQ(blue, 0x40);
}

}  // namespace
