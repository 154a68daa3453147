// Tests of Image_Palette: exact palettes, the search against a plain loop, the quantiser against hand-made sets and
// against a palette without knowledge of the picture.
#include "Image_Palette.h"

#include <algorithm>
#include <set>
#include <stdexcept>

#include <gtest/gtest.h>

#include "Dice.h"
#include "Image_Difference.h"
#include "Image_Dither.h"

namespace
{

using image::Hidden;
using image::Index;
using image::Indexed;
using image::Kind;
using image::NearestEntry;
using image::Point;
using support::Dice;
using Argbs = std::vector<std::uint32_t>;

std::uint32_t Grey(std::uint32_t level)
{
    return 0xFF000000u | level * 0x010101u;
}

Argbs RandomColours(Dice& dice, std::size_t count)
{
    Argbs argb(count);
    for (std::uint32_t& pixel : argb)
    {
        pixel = dice.NextHostileWord();
    }
    return argb;
}

// ---- exact ---------------------------------------------------------------------------------------------------------

TEST(ImagePalette, ExactKeepsTheOrderOfFirstAppearance)
{
    const std::optional<Indexed> exact = image::ExactPalette({9, 9, 3, 9, 7, 3}, 3, Hidden::Keep);
    ASSERT_TRUE(exact);
    EXPECT_EQ(exact->palette, (Argbs{9, 3, 7}));
    EXPECT_EQ(exact->indices, (std::vector<Index>{0, 0, 1, 0, 2, 1}));
}

TEST(ImagePalette, ExactIsNothingWhenThereAreTooManyColours)
{
    EXPECT_FALSE(image::ExactPalette({9, 9, 3, 9, 7, 3}, 2, Hidden::Keep));
}

TEST(ImagePalette, HiddenColoursAreKeptOrBecomeOne)
{
    const Argbs argb{0x00FF0000u, 0xFF000000u, 0x0000FF00u, 0x00000000u};
    EXPECT_EQ(image::ExactPalette(argb, 256, Hidden::Keep)->palette, argb);
    const Indexed merged = *image::ExactPalette(argb, 256, Hidden::Merge);
    EXPECT_EQ(merged.palette, (Argbs{0x00000000u, 0xFF000000u}));
    EXPECT_EQ(merged.indices, (std::vector<Index>{0, 1, 0, 0}));
}

TEST(ImagePalette, ExactHoldsAsManyColoursAsIndicesCanName)
{
    Argbs argb(65536);
    for (std::size_t i = 0; i < argb.size(); ++i)
    {
        argb[i] = static_cast<std::uint32_t>(i * 48271 % 65536 + 5);  // all different, in no order
    }
    const std::optional<Indexed> exact = image::ExactPalette(argb, 70000, Hidden::Keep);
    ASSERT_TRUE(exact);
    EXPECT_EQ(exact->palette, argb);
    EXPECT_EQ(exact->indices.back(), 65535);
    argb.push_back(1);
    EXPECT_FALSE(image::ExactPalette(argb, 70000, Hidden::Keep));
}

// ---- distance and search -------------------------------------------------------------------------------------------

TEST(ImagePalette, DistanceIsWhatIsSeenOverBlackAndOverWhite)
{
    const auto apart = [](std::uint32_t left, std::uint32_t right)
    { return image::Distance(image::PointOf(left), image::PointOf(right)); };
    constexpr std::uint64_t full = std::uint64_t{65025} * 65025;

    EXPECT_EQ(apart(0xFF000000u, 0xFFFFFFFFu), 6 * full);        // over anything
    EXPECT_EQ(apart(0x00000000u, 0xFFFFFFFFu), 3 * full);        // only over black
    EXPECT_EQ(apart(0x00000000u, 0xFF000000u), 3 * full);        // only over white
    EXPECT_EQ(apart(0x00123456u, 0x00FEDCBAu), 0U);              // nothing to see
    EXPECT_EQ(apart(0xFF000000u, 0xFF000001u), 2U * 255 * 255);  // one level of blue, twice
    EXPECT_EQ(apart(0x01000000u, 0x01000001u), 2U);              // the same under next to no alpha
}

TEST(ImagePalette, PointOfIsThePremultipliedColour)
{
    EXPECT_EQ(image::PointOf(0x80FF4001u), (Point{128 * 255, 128 * 255, 128 * 64, 128}));
}

//! The search as a loop.
Index NearestByLoop(const Argbs& palette, const Point& wanted, bool onlyOpaque)
{
    std::size_t   best     = 0;
    std::uint64_t distance = UINT64_MAX;
    for (std::size_t entry = 0; entry < palette.size(); ++entry)
    {
        const Point         at    = image::PointOf(palette[entry]);
        const std::uint64_t apart = image::Distance(wanted, at);
        if (apart < distance && (!onlyOpaque || palette[entry] >> 24 == 255))
        {
            best     = entry;
            distance = apart;
        }
    }
    return static_cast<Index>(best);
}

TEST(ImagePalette, TheTreeFindsWhatALoopFinds)
{
    support::Differences differences;
    const support::Seeds seeds(3000);
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice       dice(seed);
        const auto length  = dice.Of({1U, 2U, 3U, 5U, 40U, 256U, 700U});
        Argbs      palette = RandomColours(dice, length);
        if (dice.OneIn(2))  // coarse colours: many equally near, many twice
        {
            for (std::uint32_t& colour : palette)
            {
                colour &= 0xC0C0C0C0u;
                colour |= dice.OneIn(2) ? 0xFF000000u : 0;
            }
        }
        const bool anyOpaque =
            std::any_of(palette.begin(), palette.end(), [](std::uint32_t colour) { return colour >> 24 == 255; });
        const NearestEntry nearest(palette);
        for (int turn = 0; turn < 60; ++turn)
        {
            Point wanted = image::PointOf(dice.NextHostileWord() & (dice.OneIn(2) ? 0xC0C0C0C0u : 0xFFFFFFFFu));
            if (dice.OneIn(3))  // as with errors added
            {
                for (std::int32_t& number : wanted)
                {
                    number += dice.Between(-65025, 65025);
                }
            }
            const auto  hint     = static_cast<Index>(dice.Below(length));
            const Index any      = nearest.Find(wanted, Kind::Any, hint);
            const Index opaque   = nearest.Find(wanted, Kind::Opaque, hint);
            const Index byLoop   = NearestByLoop(palette, wanted, false);
            const Index byOpaque = NearestByLoop(palette, wanted, anyOpaque);
            if (any != byLoop || opaque != byOpaque)
            {
                differences.Note("seed %llu: %u, %u instead of %u, %u", static_cast<unsigned long long>(seed), any,
                                 opaque, byLoop, byOpaque);
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(ImagePalette, TheTreeFindsTheNearestSeveral)
{
    Dice dice(17);
    for (int turn = 0; turn < 500; ++turn)
    {
        const auto  length  = 1 + dice.Below(300);
        const auto  count   = 1 + dice.Below(20);
        const auto  mask    = dice.Of({0xC0C0C0C0u, 0xFFFFFFFFu});  // with and without equally near ones
        Argbs       palette = RandomColours(dice, length);
        const Point wanted  = image::PointOf(dice.Next32() & mask);
        std::vector<std::pair<std::uint64_t, Index>> all;
        for (std::size_t entry = 0; entry < length; ++entry)
        {
            palette[entry] &= mask;
            all.emplace_back(image::Distance(wanted, image::PointOf(palette[entry])), static_cast<Index>(entry));
        }
        std::sort(all.begin(), all.end());
        all.resize(std::min<std::size_t>(count, length));
        std::vector<Index> expected;
        for (const auto& one : all)
        {
            expected.push_back(one.second);
        }
        std::sort(expected.begin(), expected.end());
        ASSERT_EQ(NearestEntry(palette).FindSeveral(wanted, Kind::Any, count), expected) << "turn " << turn;
    }
    EXPECT_EQ(NearestEntry({0, 0xFF000000u, 0xFF000001u}).FindSeveral({}, Kind::Opaque, 5), (std::vector<Index>{1, 2}));
}

TEST(ImagePalette, PixelsStayTransparentAndOpaque)
{
    const NearestEntry nearest({0x80FFFFFFu, 0xFF000000u, 0x00000000u, 0xFEFFFFFFu, 0x00FFFFFFu});
    EXPECT_EQ(nearest.FindPixel(0x00FFFFFFu), 2);  // the first transparent one
    EXPECT_EQ(nearest.FindPixel(0xFFFFFFFFu), 1);  // although 0xFEFFFFFF is nearer
    EXPECT_EQ(nearest.FindPixel(0xFDFFFFFFu), 3);
    EXPECT_EQ(nearest.FindPixel(0x10808080u), 2);  // translucent: whatever is nearest
    EXPECT_EQ(NearestEntry({0x80FFFFFFu, 0x40000000u}).FindPixel(0xFFFFFFFFu), 0);
}

TEST(ImagePalette, RefusesAPaletteWithoutEntries)
{
    EXPECT_THROW(NearestEntry({}), std::invalid_argument);
    EXPECT_THROW(image::Quantise({1}, 0), std::invalid_argument);
    EXPECT_THROW(image::Quantise({1}, 65537), std::invalid_argument);
}

// ---- the quantiser -------------------------------------------------------------------------------------------------

TEST(ImagePalette, QuantisedIsExactAndSortedWhereTheColoursFit)
{
    EXPECT_EQ(image::Quantise({0xFF000009u, 0x00000007u, 0x80000003u, 0xFF000009u, 0x00000008u}, 3),
              (Argbs{0, 0x80000003u, 0xFF000009u}));
}

TEST(ImagePalette, TwoSetsOfGreysBecomeTheirMeans)
{
    EXPECT_EQ(image::Quantise({Grey(10), Grey(12), Grey(200), Grey(204), Grey(199)}, 2), (Argbs{Grey(11), Grey(201)}));
}

TEST(ImagePalette, PixelsCountNotColours)
{
    Argbs argb(9, Grey(100));
    argb.push_back(Grey(110));
    argb.push_back(Grey(250));
    EXPECT_EQ(image::Quantise(argb, 2), (Argbs{Grey(101), Grey(250)}));
}

TEST(ImagePalette, ColoursMoveToTheNearerMean)
{
    // The mean of all is 20.9: {0} and {30, 100, 100}. But 30 is nearer to 0 than to that set's mean, 77.
    Argbs argb(8, Grey(0));
    argb.insert(argb.end(), {Grey(30), Grey(100), Grey(100)});
    EXPECT_EQ(image::Quantise(argb, 2), (Argbs{Grey(3), Grey(100)}));
}

TEST(ImagePalette, AMeanIsTakenOfPremultipliedColours)
{
    EXPECT_EQ(image::Quantise({0x80FF0000u, 0x800000FFu}, 1), (Argbs{0x80800080u}));
    // Alpha (200 + 40) / 2; the red counts five times as much as the blue: 255 * 200 / 240 and 255 * 40 / 240.
    EXPECT_EQ(image::Quantise({0xC8FF0000u, 0x280000FFu}, 1), (Argbs{0x78D5002Bu}));
}

TEST(ImagePalette, KindsKeepTheirEntries)
{
    const Argbs argb{0x00FFFFFFu, 0x01FFFFFFu, 0xFEFFFFFFu, 0xFFFFFFFFu, 0xFF000000u};
    const Argbs four = image::Quantise(argb, 4);
    EXPECT_EQ(four.size(), 4U);
    EXPECT_EQ(four.front(), 0U);
    EXPECT_EQ(four.back(), 0xFFFFFFFFu);
    const Argbs three = image::Quantise(argb, 3);  // one of each kind
    EXPECT_EQ(three, (Argbs{0, 0x80FFFFFFu, 0xFF808080u}));
    const Argbs two = image::Quantise(argb, 2);  // the translucent go without
    EXPECT_EQ(two, (Argbs{0, 0xFF808080u}));
    EXPECT_EQ(image::Quantise(argb, 1).size(), 1U);
}

TEST(ImagePalette, SixteenGreysForAGradientAreEvenlySpread)
{
    Argbs argb;
    for (std::uint32_t level = 0; level < 256; ++level)
    {
        argb.push_back(Grey(level));
    }
    const Argbs palette = image::Quantise(argb, 16);
    ASSERT_EQ(palette.size(), 16U);
    for (std::size_t entry = 0; entry < 16; ++entry)
    {
        const int centre = static_cast<int>(16 * entry + 8);  // of sixteen levels, the half level rounded up
        EXPECT_NEAR(static_cast<int>(palette[entry] & 255), centre, 1) << entry;
    }
}

TEST(ImagePalette, TheOrderOfPixelsDoesNotMatter)
{
    Dice        dice(5);
    Argbs       argb    = RandomColours(dice, 5000);
    const Argbs palette = image::Quantise(argb, 64);
    std::reverse(argb.begin(), argb.end());
    EXPECT_EQ(image::Quantise(argb, 64), palette);
    std::sort(argb.begin(), argb.end());
    EXPECT_EQ(image::Quantise(argb, 64), palette);
}

TEST(ImagePalette, NeverMoreThanAsked)
{
    const support::Seeds seeds(300);
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice        dice(seed);
        const auto  pixels  = 1 + dice.Below(3000);
        const auto  most    = 1 + dice.Below(dice.OneIn(2) ? 5 : 300);
        const Argbs argb    = RandomColours(dice, pixels);
        const Argbs palette = image::Quantise(argb, most);
        ASSERT_GE(palette.size(), 1U);
        ASSERT_LE(palette.size(), most) << "seed " << seed;
        ASSERT_TRUE(std::is_sorted(palette.begin(), palette.end()));
        ASSERT_EQ(std::set<std::uint32_t>(palette.begin(), palette.end()).size(), palette.size());
    }
}

image::Picture AsPicture(const Argbs& argb, std::uint32_t width)
{
    image::Picture picture;
    picture.width  = width;
    picture.height = static_cast<std::uint32_t>(argb.size() / width);
    picture.argb   = argb;
    return picture;
}

//! What is lost when a picture is reduced to a palette.
image::Difference Loss(const image::Picture& picture, const Argbs& palette)
{
    const std::vector<Index> indices = image::MapToPalette(picture, palette, image::Dither::None);
    return image::Compare(picture.argb, image::ColoursOf({palette, indices}), picture.width);
}

//! Smooth changes of all channels, and of alpha if asked for: what artwork looks like to a quantiser.
image::Picture Smooth(bool withAlpha)
{
    Argbs argb;
    for (std::uint32_t y = 0; y < 128; ++y)
    {
        for (std::uint32_t x = 0; x < 128; ++x)
        {
            const std::uint32_t alpha = withAlpha ? (x + y) : 255;
            argb.push_back(image::Argb(alpha, x * 2, y * 2, 128 + (x * y >> 7)));
        }
    }
    return AsPicture(argb, 128);
}

TEST(ImagePalette, BeatsAPaletteThatDoesNotKnowThePicture)
{
    Argbs even;  // 8 reds x 8 greens x 4 blues
    for (std::uint32_t number = 0; number < 256; ++number)
    {
        even.push_back(image::Argb(255, (number >> 5) * 255 / 7, (number >> 2 & 7) * 255 / 7, (number & 3) * 255 / 3));
    }
    const image::Picture    picture = Smooth(false);
    const image::Difference known   = Loss(picture, image::Quantise(picture.argb, 256));
    const image::Difference unknown = Loss(picture, even);
    EXPECT_LT(known.sumSeen * 2, unknown.sumSeen);
    EXPECT_LE(known.LargestSeenMilli(), 20000U);
    EXPECT_LE(known.MeanSeenMilli(), 4000U);
}

TEST(ImagePalette, ErrorFallsAsThePaletteGrows)
{
    const image::Picture picture = Smooth(true);
    std::uint64_t        last    = UINT64_MAX;
    for (const std::size_t most : {2U, 4U, 8U, 16U, 32U, 64U, 128U, 256U, 1024U, 4096U, 65536U})
    {
        const std::uint64_t now = Loss(picture, image::Quantise(picture.argb, most)).sumSeen;
        EXPECT_LT(now, last) << most;
        last = now;
    }
    EXPECT_EQ(last, 0U);  // 16,384 pixels at most
}

TEST(ImagePalette, ColourUnderLittleAlphaGetsFewEntries)
{
    Argbs argb;
    for (std::uint32_t i = 0; i < 4096; ++i)
    {
        argb.push_back(image::Argb(2, i & 255, i >> 4, i * 7 & 255));       // hardly visible, wildly coloured
        argb.push_back(image::Argb(200, i >> 4 & 255, 0, 255 - (i >> 4)));  // a visible gradient
    }
    const Argbs palette = image::Quantise(argb, 32);
    const auto  faint   = std::count_if(palette.begin(), palette.end(), [](std::uint32_t c) { return c >> 24 < 100; });
    EXPECT_GE(faint, 1);
    EXPECT_LE(faint, 2);
}

}  // namespace
