// Tests of the ARGB32 policy: conversions, writing, and the blends through every input where there are few enough.
// Expected values are written out or computed channel by channel (NaiveMix.h). Addresses are tested for all policies in
// test_Kanvo_PixelAddress.cpp.
#include "Kanvo_PixelARGB32_Access.h"

#include <array>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "Fence.h"
#include "MixSweep.h"
#include "NaiveMix.h"
#include "Sweep.h"

namespace
{

using Access = Kanvo_PixelARGB32_Access;
using support::Differences;
using support::Numbers;

Tov_UByte Byte(std::uint32_t value)
{
    return static_cast<Tov_UByte>(value);
}

// ---- conversions ----------------------------------------------------------------------------------------------------

TEST(PixelARGB32, IsAWordReachedThroughAPointerToIt)
{
    EXPECT_TRUE((std::is_same_v<Kanvo_PixelARGB32, Tov_UInt>));
    EXPECT_TRUE((std::is_same_v<Kanvo_OffsetARGB32, Kanvo_PixelARGB32*>));
    EXPECT_TRUE(std::is_empty_v<Access>);
}

TEST(PixelARGB32, FromRGBIsOpaqueAndComesApartAgainForAllColours)
{
    Differences differences;
    for (std::uint32_t rgb = 0; rgb < 0x1000000U; ++rgb)
    {
        const Tov_UByte     red   = Byte(rgb / 65536U);
        const Tov_UByte     green = Byte(rgb / 256U);
        const Tov_UByte     blue  = Byte(rgb);
        const std::uint32_t pixel = Access::PixelFromRGB(red, green, blue);
        if (pixel != 0xFF000000U + rgb || Access::RedFromPixel(pixel) != red ||
            Access::GreenFromPixel(pixel) != green || Access::BlueFromPixel(pixel) != blue ||
            Access::AlphaFromPixel(pixel) != 255)
        {
            differences.Note("%06X became %08X", rgb, pixel);
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(PixelARGB32, ConversionsTouchExactlyTheirBits)
{
    Numbers                    numbers(51);
    std::vector<std::uint32_t> words{0, 0xFFFFFFFFU, 0x12345678U, 0x80000000U, 0x00FFFFFFU, 0xFF000000U};
    for (int bit = 0; bit < 32; ++bit) words.push_back(1U << bit);
    for (int turn = 0; turn < 10000; ++turn) words.push_back(numbers.Next32());
    for (const std::uint32_t word : words)
    {
        const support::Channels channel = support::Split(word);
        ASSERT_EQ(Access::ColorToPixel(word), word);
        ASSERT_EQ(Access::PixelFromColorARGB32(word), word);
        ASSERT_EQ(Access::ColorARGB32FromPixel(word), word);
        ASSERT_EQ(Access::PixelToColor(word), word % 0x1000000U);
        ASSERT_EQ(Access::AlphaFromPixel(word), channel[0]);
        ASSERT_EQ(Access::RedFromPixel(word), channel[1]);
        ASSERT_EQ(Access::GreenFromPixel(word), channel[2]);
        ASSERT_EQ(Access::BlueFromPixel(word), channel[3]);
        ASSERT_EQ(Access::RedBlueFromPixel(word), support::Join(0, channel[1], 0, channel[3]));
        ASSERT_EQ(Access::PixelFromParts(word, Byte(~word)),
                  support::Join(0, channel[1], 255 - channel[3], channel[3]));
        for (const unsigned alpha : {0U, 1U, 0x7FU, 0x80U, 0xFFU})
        {
            ASSERT_EQ(Access::ColorAndAlphaToPixel(word, Byte(alpha)), word % 0x1000000U + alpha * 0x1000000U);
        }
    }
}

// ---- writing --------------------------------------------------------------------------------------------------------

TEST(PixelARGB32, GetAndPutMoveOneWordAndNothingBeside)
{
    std::uint32_t row[3] = {1, 2, 3};
    EXPECT_EQ(Access::GetPixel(row + 1), 2U);
    Access::PutPixel(row + 1, 0xFEDCBA98U);
    EXPECT_EQ(row[0], 1U);
    EXPECT_EQ(row[1], 0xFEDCBA98U);
    EXPECT_EQ(row[2], 3U);
}

TEST(PixelARGB32, ASpanIsWrittenWholeAndTheOffsetStandsBehindIt)
{
    for (int count = 0; count <= 40; ++count)
    {
        for (const support::Against end : {support::Against::FrontFence, support::Against::BackFence})
        {
            support::Fence     fence(static_cast<std::size_t>(count) * 4, end);
            Kanvo_OffsetARGB32 offset = fence.As<Kanvo_PixelARGB32>();
            Access::PutSpan(offset, 0x80123456U, count);
            ASSERT_EQ(offset, fence.As<Kanvo_PixelARGB32>() + count);
            for (int index = 0; index < count; ++index)
            {
                ASSERT_EQ(fence.As<Kanvo_PixelARGB32>()[index], 0x80123456U);
            }
            ASSERT_TRUE(fence.IsSlackUntouched());
        }
    }
}

TEST(PixelARGB32, ASpanOfZeroOrLessWritesNothingAndLeavesTheOffset)
{
    support::Fence nothing(0);
    for (const Tov_Int count : std::initializer_list<Tov_Int>{0, -1, -2, -65536, std::numeric_limits<Tov_Int>::min()})
    {
        Kanvo_OffsetARGB32 offset = nothing.As<Kanvo_PixelARGB32>();
        Access::PutSpan(offset, 0xFFFFFFFFU, count);
        EXPECT_EQ(offset, nothing.As<Kanvo_PixelARGB32>()) << count;
    }
}

TEST(PixelARGB32DeathTest, ASpanOfOnePixelTooManyIsStoppedByTheFence)
{
    // The fences of these tests are worth something.
    support::Fence fence(40);
    EXPECT_DEATH(
        {
            Kanvo_OffsetARGB32 offset = fence.As<Kanvo_PixelARGB32>();
            Access::PutSpan(offset, 0, 11);
        },
        "");
}

TEST(PixelARGB32, BlendingWritesTheMixOfThePixelThatWasThere)
{
    Numbers numbers(52);
    for (int turn = 0; turn < 10000; ++turn)
    {
        const std::uint32_t dst    = numbers.NextHostileWord();
        const std::uint32_t src    = numbers.NextHostileWord();
        const std::uint8_t  alpha  = numbers.NextByte();
        std::uint32_t       row[3] = {7, dst, 9};
        Access::BlendPixel(row + 1, src, alpha);
        ASSERT_EQ(row[1], support::MixLinear(dst, src, alpha));
        row[1] = dst;
        Access::BlendPixelSrcAlpha(row + 1, src, alpha);
        ASSERT_EQ(row[1], support::MixLinearSrcAlpha(dst, src, alpha));
        row[1] = dst;
        Access::AddPixel(row + 1, src);
        ASSERT_EQ(row[1], Access::MixAdditive(dst, src));
        ASSERT_EQ(row[0], 7U);
        ASSERT_EQ(row[2], 9U);
    }
}

// ---- MixLinear ------------------------------------------------------------------------------------------------------

TEST(PixelARGB32, MixLinearAtAlpha255StopsTwoStepsShortOfWhite)
{
    EXPECT_EQ(Access::MixLinear(0xFF000000U, 0xFFFFFFFFU, 255), 0xFFFDFDFDU);
    EXPECT_EQ(Access::MixLinear(0xFFFFFFFFU, 0xFF000000U, 255), 0xFF010101U);
    EXPECT_EQ(Access::MixLinear(0xFF000000U, 0xFFFFFFFFU, 254), 0xFFFDFDFDU);  // the last bit of alpha has no weight
}

TEST(PixelARGB32, MixLinearWithAlpha0ReturnsTheDestination)
{
    EXPECT_EQ(Access::MixLinear(0xFF102030U, 0xFFFFFFFFU, 0), 0xFF102030U);
    Numbers numbers(53);
    for (int turn = 0; turn < 100000; ++turn)
    {
        const std::uint32_t dst = numbers.NextHostileWord();
        ASSERT_EQ(Access::MixLinear(dst, numbers.NextHostileWord(), 0), dst);
    }
}

TEST(PixelARGB32, MixLinearOverATransparentPixelTakesTheAlphaItself)
{
    EXPECT_EQ(Access::MixLinear(0x00123456U, 0xFF000000U, 128), 0x80091A2BU);
}

TEST(PixelARGB32, MixLinearIsTheFloorForEveryTripleInEveryChannelWhateverTheNeighbours)
{
    Differences differences;
    support::SweepMix(
        differences, support::COLOR_PATTERNS, 0x00FFFFFF, 255, 128,
        [](std::uint32_t alpha) { return static_cast<int>(alpha / 2); },
        [](std::uint32_t dst, std::uint32_t src, std::uint32_t alpha)
        { return Access::MixLinear(dst | (src << 24), src | (dst << 24), Byte(alpha)); });
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(PixelARGB32, TheFloorIsTheSameAsASingleShiftOfAWeightedSum)
{
    for (int weight = 0; weight <= 128; ++weight)
    {
        Differences differences;
        for (int dst = 0; dst < 256; ++dst)
        {
            for (int src = 0; src < 256; ++src)
            {
                const std::uint32_t got =
                    weight == 128
                        ? Kanvo_MixColor<7>(static_cast<Tov_UInt>(dst), static_cast<Tov_UInt>(src), 128)
                        : Access::MixLinear(0xFF000000U | static_cast<Tov_UInt>(dst), static_cast<Tov_UInt>(src),
                                            Byte(static_cast<unsigned>(weight * 2)));
                const int sum = dst * (128 - weight) + src * weight;
                if (static_cast<int>(got & 0xFFU) != sum >> 7 || sum > 32640)
                    differences.Note("%d to %d by %d", dst, src, weight);
            }
        }
        ASSERT_EQ(differences.Count(), 0U) << differences.First();
    }
}

TEST(PixelARGB32, MixLinearGivesTheOverAlphaForEveryPairWhateverTheSourcesOwn)
{
    Differences differences;
    for (int dst = 0; dst < 256; ++dst)
    {
        for (int alpha = 0; alpha < 256; ++alpha)
        {
            const auto expected = static_cast<unsigned>(support::OverAlpha(dst, alpha));
            for (const std::uint32_t colours : {0U, 0x00FFFFFFU, 0x0000FF00U, 0x00FF00FFU})
            {
                for (const std::uint32_t sourceAlpha : {0U, 0x80000000U, 0xFF000000U})
                {
                    const std::uint32_t got =
                        Access::MixLinear((static_cast<unsigned>(dst) << 24) | colours,
                                          sourceAlpha | (colours ^ 0x00FFFFFFU), Byte(static_cast<unsigned>(alpha)));
                    if (got >> 24 != expected) differences.Note("alpha %d under %d gives %u", dst, alpha, got >> 24);
                }
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

//! Steps 2 to 5 of the rule as worded: two lanes in one unsigned word, wrap-around, logical shifts.
std::uint32_t ColourAsWorded(std::uint32_t dst, std::uint32_t src, std::uint32_t weight, std::uint32_t outAlpha)
{
    const std::uint32_t dstRedBlue = dst & 0x00FF00FFU;
    const std::uint32_t srcRedBlue = src & 0x00FF00FFU;
    const std::uint32_t dstGreen   = (dst >> 8) & 0xFFU;
    const std::uint32_t srcGreen   = (src >> 8) & 0xFFU;
    const std::uint32_t redBlue    = dstRedBlue + (((srcRedBlue - dstRedBlue) * weight) >> 7);
    const std::uint32_t green      = (dstGreen + (((srcGreen - dstGreen) * weight) >> 7)) & 0xFFU;
    return (redBlue & 0x00FF00FFU) | (green << 8) | (outAlpha << 24);
}

std::uint32_t OverAsWorded(std::uint32_t dstAlpha, std::uint32_t alpha)
{
    const std::uint32_t t = (255 - alpha) * dstAlpha;
    return (((t + (t >> 8) + 1) >> 8) + alpha) & 0xFFU;
}

std::uint32_t MixSrcAlphaAsWorded(std::uint32_t dst, std::uint32_t src, std::uint32_t alpha)
{
    const std::uint32_t p         = alpha * (src >> 24);
    const std::uint32_t effective = (p + (p >> 8) + 1) >> 8;
    const std::uint32_t outAlpha  = OverAsWorded(dst >> 24, effective);
    return ColourAsWorded(dst, src, (outAlpha == 255 ? effective : alpha) >> 1, outAlpha);
}

TEST(PixelARGB32, BothLinearMixesEqualTheirRulesAsWorded)
{
    Differences differences;
    Numbers     numbers(54);
    for (int turn = 0; turn < 3000000; ++turn)
    {
        const std::uint32_t dst   = numbers.NextHostileWord();
        const std::uint32_t src   = numbers.NextHostileWord();
        const std::uint32_t alpha = numbers.Next32() >> 24;
        if (Access::MixLinear(dst, src, Byte(alpha)) !=
            ColourAsWorded(dst, src, alpha >> 1, OverAsWorded(dst >> 24, alpha)))
            differences.Note("MixLinear of %08X, %08X, %u", dst, src, alpha);
        if (Access::MixLinearSrcAlpha(dst, src, Byte(alpha)) != MixSrcAlphaAsWorded(dst, src, alpha))
            differences.Note("MixLinearSrcAlpha of %08X, %08X, %u", dst, src, alpha);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

// ---- MixLinearSrcAlpha ----------------------------------------------------------------------------------------------

TEST(PixelARGB32, ColourOverATranslucentDestinationIsWeightedByTheGlobalAlpha)
{
    EXPECT_EQ(Access::MixLinearSrcAlpha(0x00000000U, 0x80FFFFFFU, 255), 0x80FDFDFDU);
    // Over an opaque destination the source's own alpha counts: 255 x 64 / 128 is 127.
    EXPECT_EQ(Access::MixLinearSrcAlpha(0xFF000000U, 0x80FFFFFFU, 255), 0xFF7F7F7FU);
    // One step of alpha below opaque, and the colour jumps.
    EXPECT_EQ(Access::MixLinearSrcAlpha(0xFE000000U, 0x80FFFFFFU, 255), 0xFEFDFDFDU);
    // A source that is not there at all still moves the colour.
    EXPECT_EQ(Access::MixLinearSrcAlpha(0x80000000U, 0x00FFFFFFU, 255), 0x80FDFDFDU);
}

TEST(PixelARGB32, ASourceOfAlpha0LeavesAnOpaqueDestinationUnchanged)
{
    EXPECT_EQ(Access::MixLinearSrcAlpha(0xFF102030U, 0x00FFFFFFU, 255), 0xFF102030U);
    Numbers numbers(55);
    for (int turn = 0; turn < 100000; ++turn)
    {
        const std::uint32_t dst = numbers.NextHostileWord() | 0xFF000000U;
        ASSERT_EQ(Access::MixLinearSrcAlpha(dst, numbers.NextHostileWord() & 0x00FFFFFFU, numbers.NextByte()), dst);
    }
}

TEST(PixelARGB32, AGlobalAlphaOf0IsTheIdentityForEverySourceAndDestination)
{
    Differences differences;
    Numbers     numbers(56);
    for (std::uint32_t dst = 0; dst < 256; ++dst)
    {
        for (std::uint32_t src = 0; src < 256; ++src)
        {
            const std::uint32_t under = (dst << 24) | (numbers.NextHostileWord() & 0x00FFFFFFU);
            const std::uint32_t over  = (src << 24) | (numbers.NextHostileWord() & 0x00FFFFFFU);
            if (Access::MixLinearSrcAlpha(under, over, 0) != under) differences.Note("%08X over %08X", over, under);
            if (Access::MixLinear(under, over, 0) != under) differences.Note("%08X onto %08X", over, under);
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(PixelARGB32, MixLinearSrcAlphaChoosesAlphaAndWeightRightlyForEveryTripleOfAlphas)
{
    // Black to white shows the weight: 255 w / 128 is different for each.
    Differences differences;
    for (int dst = 0; dst < 256; ++dst)
    {
        const std::uint32_t under = static_cast<std::uint32_t>(dst) << 24;
        for (int src = 0; src < 256; ++src)
        {
            const std::uint32_t over = (static_cast<std::uint32_t>(src) << 24) | 0x00FFFFFFU;
            for (int alpha = 0; alpha < 256; ++alpha)
            {
                const int  effective = alpha * src / 255;
                const int  outAlpha  = effective + (255 - effective) * dst / 255;
                const int  weight    = (outAlpha == 255 ? effective : alpha) / 2;
                const int  level     = 255 * weight / 128;
                const auto expected  = support::Join(outAlpha, level, level, level);
                const auto got       = Access::MixLinearSrcAlpha(under, over, Byte(static_cast<unsigned>(alpha)));
                if (got != expected)
                    differences.Note("%08X over %08X by %d: %08X, not %08X", over, under, alpha, got, expected);
                // The choice is known before blending: it hangs on the destination alone, or both sides are opaque.
                if ((outAlpha == 255) != (dst == 255 || (alpha == 255 && src == 255)))
                    differences.Note("%d, %d, %d give an alpha of %d", dst, src, alpha, outAlpha);
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(PixelARGB32, MixLinearSrcAlphaOverAnOpaquePixelIsTheFloorForEveryTripleInEveryChannel)
{
    // The weight comes from the source's alpha at full opacity, and from the opacity of an opaque source.
    Differences differences;
    Differences disagreements;
    support::SweepMix(
        differences, support::COLOR_PATTERNS, 0x00FFFFFF, 255, 128,
        [](std::uint32_t alpha) { return static_cast<int>(alpha / 2); },
        [&](std::uint32_t dst, std::uint32_t src, std::uint32_t alpha)
        {
            const std::uint32_t under = dst | 0xFF000000U;
            const std::uint32_t one   = Access::MixLinearSrcAlpha(under, (src & 0x00FFFFFFU) | (alpha << 24), 255);
            const std::uint32_t other = Access::MixLinearSrcAlpha(under, src | 0xFF000000U, Byte(alpha));
            if (one != other || one >> 24 != 255)
                disagreements.Note("%08X over %08X by %u: %08X and %08X", src, under, alpha, one, other);
            return one;
        });
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
    EXPECT_EQ(disagreements.Count(), 0U) << disagreements.First();
}

TEST(PixelARGB32, MixLinearSrcAlphaOverATranslucentPixelIsTheFloorForEveryTripleInEveryChannel)
{
    Differences differences;
    support::SweepMix(
        differences, support::COLOR_PATTERNS, 0x00FFFFFF, 255, 128,
        [](std::uint32_t alpha) { return static_cast<int>(alpha / 2); },
        [](std::uint32_t dst, std::uint32_t src, std::uint32_t alpha)
        {
            // Whatever the two alphas are, each 0 to 254: the weight is the opacity's.
            const std::uint32_t under = (dst & 0x00FFFFFFU) | (((dst ^ src) % 255) << 24);
            const std::uint32_t over  = (src & 0x00FFFFFFU) | (((dst + src) % 255) << 24);
            return Access::MixLinearSrcAlpha(under, over, Byte(alpha));
        });
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(PixelARGB32, AnOpaqueSourceIsMixedAsByMixLinear)
{
    Differences differences;
    Numbers     numbers(57);
    for (std::uint32_t dstAlpha = 0; dstAlpha < 256; ++dstAlpha)
    {
        for (std::uint32_t alpha = 0; alpha < 256; ++alpha)
        {
            for (int turn = 0; turn < 8; ++turn)
            {
                const std::uint32_t dst = (dstAlpha << 24) | (numbers.NextHostileWord() & 0x00FFFFFFU);
                const std::uint32_t src = 0xFF000000U | numbers.NextHostileWord();
                if (Access::MixLinearSrcAlpha(dst, src, Byte(alpha)) != Access::MixLinear(dst, src, Byte(alpha)))
                    differences.Note("%08X over %08X by %u", src, dst, alpha);
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(PixelARGB32, AThousandBlendsEndAtTheFixedPointOfTheFloor)
{
    // Downwards the floor reaches the source; upwards it stops where the way times the weight is below one step.
    for (int alpha = 2; alpha < 256; ++alpha)
    {
        std::uint32_t fall  = 0xFFFFFFFFU;
        std::uint32_t rise  = 0xFF000000U;
        int           naive = 0;
        for (int turn = 0; turn < 1000; ++turn)
        {
            fall  = Access::MixLinear(fall, 0xFF000000U, Byte(static_cast<unsigned>(alpha)));
            rise  = Access::MixLinear(rise, 0xFFFFFFFFU, Byte(static_cast<unsigned>(alpha)));
            naive = naive + (255 - naive) * (alpha / 2) / 128;
        }
        ASSERT_EQ(fall, 0xFF000000U) << alpha;
        ASSERT_EQ(rise, support::Join(255, naive, naive, naive)) << alpha;
        ASSERT_LT((255 - naive) * (alpha / 2), 128);
    }
}

// ---- MixAdditive ----------------------------------------------------------------------------------------------------

TEST(PixelARGB32, MixAdditiveSaturatesEachChannelAndIsAlwaysOpaque)
{
    EXPECT_EQ(Access::MixAdditive(0x00800000U, 0x00900000U), 0xFFFF0000U);
    EXPECT_EQ(Access::MixAdditive(0U, 0U), 0xFF000000U);
    EXPECT_EQ(Access::MixAdditive(0x00FF00FFU, 0x00010001U), 0xFFFF00FFU);
    EXPECT_EQ(Access::MixAdditive(0x12800080U, 0x34800080U), 0xFFFF00FFU);  // sums of exactly 256
    EXPECT_EQ(Access::MixAdditive(0x007F7F7FU, 0x00808080U), 0xFFFFFFFFU);  // and of exactly 255
    Differences differences;
    for (std::uint32_t a = 0; a < 256; ++a)
    {
        for (std::uint32_t b = 0; b < 256; ++b)
        {
            const std::uint32_t sum = a + b > 255 ? 255 : a + b;
            for (const std::uint32_t channel : {0x010000U, 0x000100U, 0x000001U})
            {
                const std::uint32_t others = 0x010101U - channel;
                // The others at rest, one of them full, and overflowing.
                const std::uint32_t rest = Access::MixAdditive(channel * a, channel * b);
                const std::uint32_t full = Access::MixAdditive(channel * a + others * 255, channel * b + 0x80000000U);
                const std::uint32_t over =
                    Access::MixAdditive(channel * a + others * 255, channel * b + others * 255 + 0xFF000000U);
                if (rest != 0xFF000000U + channel * sum || full != 0xFF000000U + channel * sum + others * 255 ||
                    over != full)
                    differences.Note("%u + %u in %06X: %08X, %08X, %08X", a, b, channel, rest, full, over);
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

// ---- MixBilinear ----------------------------------------------------------------------------------------------------

TEST(PixelARGB32, MixBilinearAlongXIsTheFloorForEveryTripleInAllFourChannels)
{
    Differences differences;
    support::SweepMix(
        differences, support::WORD_PATTERNS, 0xFFFFFFFF, 255, 128,
        [](std::uint32_t alpha) { return static_cast<int>(alpha / 2); },
        [](std::uint32_t left, std::uint32_t right, std::uint32_t alpha)
        { return Access::MixBilinear(left, right, ~left, left ^ right, Byte(alpha), 1); });  // 1 is a weight of 0
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(PixelARGB32, MixBilinearAlongYIsTheFloorForEveryTripleInAllFourChannels)
{
    Differences differences;
    support::SweepMix(
        differences, support::WORD_PATTERNS, 0xFFFFFFFF, 255, 128,
        [](std::uint32_t alpha) { return static_cast<int>(alpha / 2); },
        [](std::uint32_t top, std::uint32_t bottom, std::uint32_t alpha)
        { return Access::MixBilinear(top, ~top, bottom, top ^ bottom, 0, Byte(alpha)); });
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

//! The rule as worded: signed arithmetic, arithmetic shifts, the rows first.
std::uint32_t BilinearAsWorded(const std::array<std::uint32_t, 4>& p, int alphaX, int alphaY)
{
    constexpr std::int32_t LANES = 0x00FF00FF;
    const int              wx    = alphaX >> 1;
    const int              wy    = alphaY >> 1;
    const auto             rb    = [&](int index)
    { return static_cast<std::int32_t>(p[static_cast<std::size_t>(index)] & 0x00FF00FFU); };
    const auto g = [&](int index)
    { return static_cast<std::int32_t>((p[static_cast<std::size_t>(index)] >> 8) & 0xFFU); };
    const auto a = [&](int index) { return static_cast<std::int32_t>(p[static_cast<std::size_t>(index)] >> 24); };
    // The products of lane pairs reach 127 x 0x00FF00FF and stay inside 32 bits.
    const std::int32_t rb12    = (rb(0) + ((wx * (rb(1) - rb(0))) >> 7)) & LANES;
    const std::int32_t rb34    = (rb(2) + ((wx * (rb(3) - rb(2))) >> 7)) & LANES;
    const std::int32_t g12     = g(0) + ((wx * (g(1) - g(0))) >> 7);
    const std::int32_t g34     = g(2) + ((wx * (g(3) - g(2))) >> 7);
    const auto         a12     = static_cast<std::int16_t>(a(0) + (((a(1) - a(0)) * wx) >> 7));
    const auto         a34     = static_cast<std::int16_t>(a(2) + (((a(3) - a(2)) * wx) >> 7));
    const std::int32_t redBlue = rb12 + ((wy * (rb34 - rb12)) >> 7);
    const std::int32_t green   = g12 + ((wy * (g34 - g12)) >> 7);
    const std::int32_t alpha   = a12 + (((a34 - a12) * wy) >> 7);
    return (static_cast<std::uint32_t>(redBlue) & 0x00FF00FFU) | ((static_cast<std::uint32_t>(green) & 0xFFU) << 8) |
           ((static_cast<std::uint32_t>(alpha) & 0xFFU) << 24);
}

TEST(PixelARGB32, MixBilinearInTwoStepsEqualsTheRuleAsWordedAndChannelByChannel)
{
    Differences differences;
    Numbers     numbers(58);
    for (int turn = 0; turn < 2000000; ++turn)
    {
        std::array<std::uint32_t, 4> p{};
        for (std::uint32_t& pixel : p) pixel = numbers.NextHostileWord();
        const std::uint64_t weights = numbers.Next64();
        const int           x       = (weights & 0xF0000U) == 0 ? 255 : static_cast<int>(weights & 0xFFU);
        const int           y       = (weights & 0xF00000U) == 0 ? 255 : static_cast<int>((weights >> 8) & 0xFFU);
        const std::uint32_t got =
            Access::MixBilinear(p[0], p[1], p[2], p[3], Byte(static_cast<unsigned>(x)), Byte(static_cast<unsigned>(y)));
        if (got != BilinearAsWorded(p, x, y))
            differences.Note("%08X %08X / %08X %08X by %d, %d gives %08X", p[0], p[1], p[2], p[3], x, y, got);
        if (turn % 8 == 0 && got != support::MixBilinear(p, x, y))
            differences.Note("by channels: %08X %08X / %08X %08X by %d, %d gives %08X", p[0], p[1], p[2], p[3], x, y,
                             got);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(PixelARGB32, MixBilinearOfFourEqualPixelsIsThatPixelAndStopsShortAtFullWeight)
{
    for (unsigned weight = 0; weight < 256; ++weight)
    {
        ASSERT_EQ(
            Access::MixBilinear(0x80FF00A5U, 0x80FF00A5U, 0x80FF00A5U, 0x80FF00A5U, Byte(weight), Byte(255 - weight)),
            0x80FF00A5U);
    }
    // 127 of 128 parts to the right: 253; then 127 parts of the way from 0 to 253: 251.
    EXPECT_EQ(Access::MixBilinear(0U, 0xFFFFFFFFU, 0U, 0xFFFFFFFFU, 255, 0), 0xFDFDFDFDU);
    EXPECT_EQ(Access::MixBilinear(0U, 0U, 0U, 0xFFFFFFFFU, 255, 255), 0xFBFBFBFBU);
}

}  // namespace
