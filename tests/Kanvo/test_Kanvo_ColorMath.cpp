// Tests of Kanvo_ColorMath, through every input where there are few enough, against division channel by channel.
#include "Kanvo_ColorMath.h"

#include <cstdint>

#include <gtest/gtest.h>

#include "MixSweep.h"
#include "NaiveMix.h"
#include "Sweep.h"

namespace
{

using support::Differences;
using support::Numbers;

// ---- bytes ----------------------------------------------------------------------------------------------------------

TEST(MulByte, IsTheTruncated255thPartOfTheProductForEveryPair)
{
    Differences differences;
    for (unsigned a = 0; a < 256; ++a)
    {
        for (unsigned b = 0; b < 256; ++b)
        {
            if (Kanvo_MulByte(a, b) != a * b / 255) differences.Note("%u x %u gives %u", a, b, Kanvo_MulByte(a, b));
        }
        EXPECT_EQ(Kanvo_MulByte(a, 255), a);
        EXPECT_EQ(Kanvo_MulByte(255, a), a);
        EXPECT_EQ(Kanvo_MulByte(a, 0), 0);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
    EXPECT_EQ(Kanvo_MulByte(128, 255), 128);
    EXPECT_EQ(Kanvo_MulByte(255, 128), 128);  // (32640 + 127 + 1) >> 8
}

TEST(OverAlpha, HasTheSameValueInEveryFormAndNeverExceeds255)
{
    Differences differences;
    for (int dst = 0; dst < 256; ++dst)
    {
        for (int src = 0; src < 256; ++src)
        {
            const int got     = Kanvo_OverAlpha(static_cast<Tov_UByte>(dst), static_cast<Tov_UByte>(src));
            const int t       = (255 - src) * dst;
            const int shifted = ((t + (t >> 8) + 1) >> 8) + src;
            const int floored = src + (255 - src) * dst / 255;
            const int ceiled  = dst + src - (src * dst + 254) / 255;
            if (got != shifted || got != floored || got != ceiled || floored > 255)
            {
                differences.Note("%d under %d: %d, expected %d = %d = %d", dst, src, got, shifted, floored, ceiled);
            }
        }
        const auto byte = static_cast<Tov_UByte>(dst);
        EXPECT_EQ(Kanvo_OverAlpha(255, byte), 255);
        EXPECT_EQ(Kanvo_OverAlpha(0, byte), byte);
        EXPECT_EQ(Kanvo_OverAlpha(byte, 0), byte);
        EXPECT_EQ(Kanvo_OverAlpha(byte, 255), 255);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(MixByte, IsTheFloorOfTheWayForEveryTripleAndReachesTheSourceAt256)
{
    Differences differences;
    for (int weight = 0; weight <= 256; ++weight)
    {
        const support::MixTable table(weight, 256);
        for (unsigned dst = 0; dst < 256; ++dst)
        {
            for (unsigned src = 0; src < 256; ++src)
            {
                const int got = Kanvo_MixByte(static_cast<Tov_Int>(dst), static_cast<Tov_Int>(src), weight);
                if (got != static_cast<int>(table(dst, src)))
                {
                    differences.Note("%u to %u by %d gives %d", dst, src, weight, got);
                }
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
    EXPECT_EQ(Kanvo_MixByte(255, 0, 1), 254);  // the floor of -255 / 256 is -1
    EXPECT_EQ(Kanvo_MixByte(0, 255, 1), 0);
    EXPECT_EQ(Kanvo_MixByte(17, 203, 256), 203);
}

TEST(MixByte, TheFormsWithASingleShiftAreTheSame)
{
    Differences differences;
    for (int weight = 0; weight <= 256; ++weight)
    {
        for (int dst = 0; dst < 256; ++dst)
        {
            for (int src = 0; src < 256; ++src)
            {
                const int got = Kanvo_MixByte(dst, src, weight);
                if (got != (dst * (256 - weight) + src * weight) >> 8)
                {
                    differences.Note("%d to %d by %d gives %d", dst, src, weight, got);
                }
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

// ---- words ----------------------------------------------------------------------------------------------------------

TEST(MixLanes, NeitherLaneFeelsTheOtherForAnyTripleAndFullWeightReachesTheSource)
{
    Differences differences;
    const auto  sameWeight = [](std::uint32_t weight) { return static_cast<int>(weight); };
    support::SweepMix(differences, {{0x010000, 0x000001, 0}, {0x000001, 0, 0x010000}}, 0x00FF00FF, 128, 128, sameWeight,
                      [](std::uint32_t dst, std::uint32_t src, std::uint32_t weight)
                      { return Kanvo_MixLanes<7>(dst & 0x00FF00FFU, src & 0x00FF00FFU, weight); });
    EXPECT_EQ(differences.Count(), 0U) << "in 128ths: " << differences.First();
    support::SweepMix(differences, {{0x010000, 0x000001, 0}, {0x000001, 0, 0x010000}}, 0x00FF00FF, 256, 256, sameWeight,
                      [](std::uint32_t dst, std::uint32_t src, std::uint32_t weight)
                      { return Kanvo_MixLanes<8>(dst & 0x00FF00FFU, src & 0x00FF00FFU, weight); });
    EXPECT_EQ(differences.Count(), 0U) << "in 256ths: " << differences.First();
}

TEST(MixColor, LeavesTheAlphaByteZeroAndDoesNotReadIt)
{
    Differences differences;
    Numbers     numbers(41);
    for (int turn = 0; turn < 1000000; ++turn)
    {
        const std::uint32_t dst     = numbers.NextHostileWord();
        const std::uint32_t src     = numbers.NextHostileWord();
        const std::uint32_t weight7 = numbers.Next32() % 129;
        const std::uint32_t weight8 = numbers.Next32() % 257;
        if (Kanvo_MixColor<7>(dst, src, weight7) != support::MixColor(dst, src, static_cast<int>(weight7), 128, 0))
            differences.Note("dst %08X, src %08X, %u of 128", dst, src, weight7);
        if (Kanvo_MixColor<8>(dst, src, weight8) != support::MixColor(dst, src, static_cast<int>(weight8), 256, 0))
            differences.Note("dst %08X, src %08X, %u of 256", dst, src, weight8);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(MixWord, MixesAllFourChannelsAlikeUpToFullWeight)
{
    Differences differences;
    Numbers     numbers(42);
    for (int turn = 0; turn < 1000000; ++turn)
    {
        const std::uint32_t     dst    = numbers.NextHostileWord();
        const std::uint32_t     src    = numbers.NextHostileWord();
        const int               weight = static_cast<int>(numbers.Next32() % 129);
        const support::Channels d      = support::Split(dst);
        const support::Channels s      = support::Split(src);
        const std::uint32_t     expected =
            support::MixColor(dst, src, weight, 128, support::MixChannel(d[0], s[0], weight, 128));
        const std::uint32_t got = Kanvo_MixWord(dst, src, static_cast<Tov_UInt>(weight));
        if (got != expected)
            differences.Note("dst %08X, src %08X, %d: %08X, not %08X", dst, src, weight, got, expected);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
    EXPECT_EQ(Kanvo_MixWord(0x12345678U, 0x9ABCDEF0U, 128), 0x9ABCDEF0U);
    EXPECT_EQ(Kanvo_MixWord(0x12345678U, 0x9ABCDEF0U, 0), 0x12345678U);
}

// ---- the mix of fills and coverage blits ----------------------------------------------------------------------------

TEST(BlitMixLinear, ColourIsTheFloorForEveryTripleInEveryChannelWhateverTheNeighbours)
{
    Differences differences;
    support::SweepMix(
        differences, support::COLOR_PATTERNS, 0x00FFFFFF, 254, 256,
        [](std::uint32_t alpha) { return static_cast<int>(alpha); },
        [](std::uint32_t dst, std::uint32_t src, std::uint32_t alpha)
        {
            // The alpha bytes must not matter to the colour: both are busy.
            return KanvoBlit_MixLinear(dst | (src << 24), src | (dst << 24), static_cast<Tov_UByte>(alpha));
        });
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(BlitMixLinear, AlphaIsThatOfASourceLaidOverForEveryPairWhateverTheSourcesOwn)
{
    Differences differences;
    for (unsigned dst = 0; dst < 256; ++dst)
    {
        for (unsigned alpha = 0; alpha < 255; ++alpha)
        {
            const auto expected =
                static_cast<unsigned>(support::OverAlpha(static_cast<int>(dst), static_cast<int>(alpha)));
            for (const std::uint32_t colours : {0U, 0x00FFFFFFU, 0x0000FF00U, 0x00FF00FFU})
            {
                for (const std::uint32_t sourceAlpha : {0U, 0x80U, 0xFFU})
                {
                    const std::uint32_t got =
                        KanvoBlit_MixLinear((dst << 24) | colours, (sourceAlpha << 24) | ~(colours | 0xFF000000U),
                                            static_cast<Tov_UByte>(alpha));
                    if (got >> 24 != expected) differences.Note("alpha %u under %u gives %u", dst, alpha, got >> 24);
                }
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(BlitMixLinear, At255ReturnsTheSourceWordAndAt0TheDestination)
{
    Numbers numbers(43);
    for (int turn = 0; turn < 100000; ++turn)
    {
        const std::uint32_t dst = numbers.NextHostileWord();
        const std::uint32_t src = numbers.NextHostileWord();
        ASSERT_EQ(KanvoBlit_MixLinear(dst, src, 255), src);
        ASSERT_EQ(KanvoBlit_MixLinear(dst, src, 0), dst);
    }
    EXPECT_EQ(KanvoBlit_MixLinear(0xFF102030U, 0x00ABCDEFU, 255), 0x00ABCDEFU);
    EXPECT_EQ(KanvoBlit_MixLinear(0xFFFFFFFFU, 0xFF000000U, 128), 0xFF7F7F7FU);
    EXPECT_EQ(KanvoBlit_MixLinear(0xFF000000U, 0xFFFFFFFFU, 254), 0xFFFDFDFDU);  // 254 x 255 / 256 = 253.008
}

//! The wording of the rule, step by step: two lanes in one unsigned word, wrap-around, logical shifts.
std::uint32_t BlitMixAsWorded(std::uint32_t dst, std::uint32_t src, std::uint32_t alpha)
{
    if (alpha == 255) return src;
    const std::uint32_t dstRedBlue = dst & 0x00FF00FFU;
    const std::uint32_t srcRedBlue = src & 0x00FF00FFU;
    const std::uint32_t dstGreen   = (dst >> 8) & 0xFFU;
    const std::uint32_t srcGreen   = (src >> 8) & 0xFFU;
    const std::uint32_t redBlue    = (dstRedBlue + (((srcRedBlue - dstRedBlue) * alpha) >> 8)) & 0x00FF00FFU;
    const std::uint32_t green      = (dstGreen + (((srcGreen - dstGreen) * alpha) >> 8))
                                << 8;  // not masked: a carry leaves at the top
    const std::uint32_t t        = (255 - alpha) * (dst >> 24);
    const std::uint32_t outAlpha = (((t + (t >> 8) + 1) >> 8) + alpha) & 0xFFU;
    return (redBlue | green) | (outAlpha << 24);
}

TEST(BlitMixLinear, EqualsTheRuleAsWorded)
{
    Differences differences;
    Numbers     numbers(44);
    for (int turn = 0; turn < 3000000; ++turn)
    {
        const std::uint32_t dst    = numbers.NextHostileWord();
        const std::uint32_t src    = numbers.NextHostileWord();
        const std::uint32_t alpha  = numbers.Next32() >> 24;
        const std::uint32_t got    = KanvoBlit_MixLinear(dst, src, static_cast<Tov_UByte>(alpha));
        const std::uint32_t worded = BlitMixAsWorded(dst, src, alpha);
        if (got != worded)
            differences.Note("dst %08X, src %08X, alpha %u: %08X, not %08X", dst, src, alpha, got, worded);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

}  // namespace
