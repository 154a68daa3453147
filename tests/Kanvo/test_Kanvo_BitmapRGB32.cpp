// Tests of the RGB32 format: its policy and the colours of its source bitmap. What all source bitmaps have in common is
// in test_Kanvo_SourceBitmap.cpp, addresses are in test_Kanvo_PixelAddress.cpp.
#include "Kanvo_BitmapRGB32.h"

#include <array>
#include <cstdint>
#include <type_traits>

#include <gtest/gtest.h>

#include "MixSweep.h"
#include "NaiveMix.h"
#include "Sweep.h"

namespace
{

using Access = Kanvo_PixelRGB32_Access;
using support::Differences;
using support::Numbers;

Tov_UByte Byte(std::uint32_t value)
{
    return static_cast<Tov_UByte>(value);
}

TEST(PixelRGB32, IsAWordReachedThroughAPointerToIt)
{
    EXPECT_TRUE((std::is_same_v<Kanvo_PixelRGB32, Tov_UInt>));
    EXPECT_TRUE((std::is_same_v<Kanvo_OffsetRGB32, Kanvo_PixelRGB32*>));
    EXPECT_TRUE(std::is_empty_v<Access>);
}

TEST(PixelRGB32, ConversionsTouchExactlyTheirBitsAndTheTopByteIsAlphaAsStored)
{
    Numbers numbers(61);
    for (int turn = 0; turn < 50000; ++turn)
    {
        const std::uint32_t     word    = numbers.NextHostileWord();
        const support::Channels channel = support::Split(word);
        ASSERT_EQ(Access::ColorToPixel(word), word);
        ASSERT_EQ(Access::PixelToColor(word), word % 0x1000000U);
        ASSERT_EQ(Access::AlphaFromPixel(word), channel[0]);
        ASSERT_EQ(Access::RedFromPixel(word), channel[1]);
        ASSERT_EQ(Access::GreenFromPixel(word), channel[2]);
        ASSERT_EQ(Access::BlueFromPixel(word), channel[3]);
        ASSERT_EQ(Access::RedBlueFromPixel(word), support::Join(0, channel[1], 0, channel[3]));
        ASSERT_EQ(Access::PixelFromParts(word, Byte(~word)),
                  support::Join(0, channel[1], 255 - channel[3], channel[3]));
    }
}

TEST(PixelRGB32, MixBilinearAlongXIsTheFloorForEveryTripleAndItsTopByteIsZero)
{
    Differences differences;
    Differences topBytes;
    support::SweepMix(
        differences, support::COLOR_PATTERNS, 0x00FFFFFF, 255, 128,
        [](std::uint32_t alpha) { return static_cast<int>(alpha / 2); },
        [&](std::uint32_t left, std::uint32_t right, std::uint32_t alpha)
        {
            const std::uint32_t l   = left | (right << 24);
            const std::uint32_t r   = right | (left << 24);
            const std::uint32_t got = Access::MixBilinear(l, r, ~l, l ^ r, Byte(alpha), 1);  // 1 is a weight of 0
            if (got >> 24 != 0) topBytes.Note("%08X and %08X by %u give %08X", l, r, alpha, got);
            return got;
        });
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
    EXPECT_EQ(topBytes.Count(), 0U) << topBytes.First();
}

TEST(PixelRGB32, MixBilinearAlongYIsTheFloorForEveryTripleInEveryChannel)
{
    Differences differences;
    support::SweepMix(
        differences, support::COLOR_PATTERNS, 0x00FFFFFF, 255, 128,
        [](std::uint32_t alpha) { return static_cast<int>(alpha / 2); },
        [](std::uint32_t top, std::uint32_t bottom, std::uint32_t alpha)
        { return Access::MixBilinear(top, ~top, bottom, top ^ bottom, 0, Byte(alpha)); });
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(PixelRGB32, MixBilinearInTwoStepsIsThatOfARGB32WithoutTheTopByte)
{
    Differences differences;
    Numbers     numbers(62);
    for (int turn = 0; turn < 500000; ++turn)
    {
        std::array<std::uint32_t, 4> p{};
        for (std::uint32_t& pixel : p) pixel = numbers.NextHostileWord();
        const std::uint8_t  x        = numbers.NextByte();
        const std::uint8_t  y        = numbers.NextByte();
        const std::uint32_t got      = Access::MixBilinear(p[0], p[1], p[2], p[3], x, y);
        const std::uint32_t expected = support::MixBilinear(p, x, y) & 0x00FFFFFFU;
        if (got != expected) differences.Note("%08X %08X / %08X %08X by %d, %d", p[0], p[1], p[2], p[3], x, y);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(BitmapRGB32, ColoursAreRedGreenBlueWithoutTopByte)
{
    std::uint32_t           pixel = 0;
    const Kanvo_BitmapRGB32 bitmap(nullptr, 1, 1, BBT_RAM, &pixel);
    EXPECT_EQ(bitmap.GetType(), Tov_UInt{BM_RGB32});
    EXPECT_FALSE(bitmap.HasAlpha());
    EXPECT_EQ(bitmap.ColorFromRGB(1, 2, 3), 0x00010203U);
    EXPECT_EQ(bitmap.ColorFromRGB(255, 254, 253), 0x00FFFEFDU);
    EXPECT_EQ(bitmap.ColorFromARGB(0x80, 1, 2, 3), 0x00010203U);
    EXPECT_EQ(bitmap.PremulColorFromARGB(0x80, 255, 128, 0), 0x00804000U);
    Tov_UByte red = 9, green = 9, blue = 9;
    EXPECT_TRUE(bitmap.ColorToRGB(0xFF102030U, red, green, blue));
    EXPECT_EQ(red, 0x10);
    EXPECT_EQ(green, 0x20);
    EXPECT_EQ(blue, 0x30);
}

}  // namespace
