// Tests of Image_Bleed.
#include "Image_Bleed.h"

#include <algorithm>
#include <cstdlib>

#include <gtest/gtest.h>

#include "Dice.h"
#include "PictureOf.h"

namespace
{

using image::Picture;
using support::Dice;
using support::Of;

Picture Bled(Picture picture, std::uint32_t texels)
{
    image::Bleed(picture, texels);
    return picture;
}

TEST(ImageBleed, OneTexelColoursTheEightAround)
{
    std::vector<std::uint32_t> argb(25, 0);
    argb[12] = 0xFF123456u;
    std::vector<std::uint32_t> expected(25, 0);
    for (const std::size_t place : {6U, 7U, 8U, 11U, 13U, 16U, 17U, 18U})
    {
        expected[place] = 0x00123456u;
    }
    expected[12] = 0xFF123456u;
    EXPECT_EQ(Bled(Of(5, argb), 1).argb, expected);

    std::vector<std::uint32_t> all(25, 0x00123456u);
    all[12] = 0xFF123456u;
    EXPECT_EQ(Bled(Of(5, argb), 2).argb, all);
    EXPECT_EQ(Bled(Of(5, argb), 1000).argb, all);
    EXPECT_EQ(Bled(Of(5, argb), 0).argb, argb);
}

TEST(ImageBleed, VisibleNeighboursCountByTheirAlpha)
{
    // Red 255 * 255 / 340 = 191.25, blue 255 * 85 / 340 = 63.75.
    EXPECT_EQ(Bled(Of(3, {0xFFFF0000u, 0, 0x550000FFu}), 1).argb[1], 0x00BF0040u);
}

TEST(ImageBleed, LaterRoundsTakePlainMeansOfEarlierOnes)
{
    //  A . . . B   and one below the middle: its neighbours of the first round are the second and the fourth.
    const Picture bled = Bled(Of(5, {0xFF000000u, 9, 9, 9, 0x01000064u}), 2);
    EXPECT_EQ(bled.argb, (std::vector<std::uint32_t>{0xFF000000u, 0, 0x00000032u, 0x00000064u, 0x01000064u}));
}

TEST(ImageBleed, AnEmptyPictureAndAFullOneStayAsTheyAre)
{
    const Picture empty = Of(2, {1, 2, 3, 4});
    const Picture full  = Of(2, {0x01000001u, 0xFF000002u, 0x80000003u, 0x01000004u});
    EXPECT_EQ(Bled(empty, 5).argb, empty.argb);
    EXPECT_EQ(Bled(full, 5).argb, full.argb);
}

TEST(ImageBleed, DropsThePaletteOnlyIfAPixelChanges)
{
    Picture picture = Of(2, {0xFF000007u, 0x00000007u});
    picture.palette = {0xFF000007u, 0x00000007u};
    picture.indices = {0, 1};
    EXPECT_TRUE(Bled(picture, 1).IsIndexed());
    picture.argb[1]    = 0x00000008u;
    picture.palette[1] = 0x00000008u;
    const Picture bled = Bled(picture, 1);
    EXPECT_FALSE(bled.IsIndexed());
    EXPECT_TRUE(bled.indices.empty());
    EXPECT_EQ(bled.argb[1], 0x00000007u);
}

Picture RandomPicture(Dice& dice)
{
    const auto width   = 1 + dice.Below(24);
    const auto height  = 1 + dice.Below(24);
    Picture    picture = Of(width, std::vector<std::uint32_t>(std::size_t{width} * height));
    const auto rarity  = dice.Of({2U, 10U, 200U});
    for (std::uint32_t& pixel : picture.argb)
    {
        const std::uint32_t colour  = dice.Next32();
        const bool          visible = dice.OneIn(rarity);
        pixel                       = visible ? colour : colour & 0x00FFFFFFu;
    }
    return picture;
}

Picture Mirrored(Picture picture)
{
    for (std::size_t y = 0; y < picture.height; ++y)
    {
        const auto row = picture.argb.begin() + static_cast<std::ptrdiff_t>(y * picture.width);
        std::reverse(row, row + picture.width);
    }
    return picture;
}

TEST(ImageBleed, ChangesNothingButHiddenColoursWithinReach)
{
    const support::Seeds seeds(300);
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice          dice(seed);
        const Picture before = RandomPicture(dice);
        const auto    texels = dice.Below(5);
        const Picture after  = Bled(before, texels);
        ASSERT_EQ(after.argb.size(), before.argb.size());
        for (std::size_t pixel = 0; pixel < before.argb.size(); ++pixel)
        {
            ASSERT_EQ(after.argb[pixel] >> 24, before.argb[pixel] >> 24) << "seed " << seed;
            std::size_t nearest = SIZE_MAX;  // steps, diagonal ones included, to a visible pixel
            for (std::size_t other = 0; other < before.argb.size(); ++other)
            {
                if (before.argb[other] >> 24 != 0)
                {
                    const auto along = [&](std::size_t place) {
                        return std::pair(static_cast<int>(place % before.width),
                                         static_cast<int>(place / before.width));
                    };
                    const int dx = std::abs(along(pixel).first - along(other).first);
                    const int dy = std::abs(along(pixel).second - along(other).second);
                    nearest      = std::min(nearest, static_cast<std::size_t>(std::max(dx, dy)));
                }
            }
            if (nearest == 0 || nearest > texels)
            {
                ASSERT_EQ(after.argb[pixel], before.argb[pixel]) << "seed " << seed << ", pixel " << pixel;
            }
        }
        ASSERT_EQ(Mirrored(Bled(Mirrored(before), texels)).argb, after.argb) << "seed " << seed;
    }
}

// ---- fringes -------------------------------------------------------------------------------------------------------

TEST(ImageBleed, BlackHiddenBesideWhiteNeedsIt)
{
    const Picture       picture = Of(4, {0, 0, 0, 0, 0, 0, 0, 0xFFFFFFFFu});
    const image::Fringe fringe  = image::FindFringe(picture);
    EXPECT_EQ(fringe.texels, 3U);
    EXPECT_EQ(fringe.x, 2U);
    EXPECT_EQ(fringe.y, 0U);
    EXPECT_TRUE(image::NeedsBleed(picture));
    EXPECT_FALSE(image::NeedsBleed(Bled(picture, 1)));
}

TEST(ImageBleed, MatchingHiddenColoursDoNotNeedIt)
{
    EXPECT_FALSE(image::NeedsBleed(Of(2, {0x00FFFFFFu, 0xFFFFFFFFu})));
    EXPECT_FALSE(image::NeedsBleed(Of(3, {0x00000000u, 0x00FFFFFFu, 0xFFFFFFFFu})));  // black, but out of reach
    EXPECT_FALSE(image::NeedsBleed(Of(2, {0xFF000000u, 0xFFFFFFFFu})));               // an ordinary edge
}

TEST(ImageBleed, SmallDifferencesAndFaintPixelsDoNotNeedIt)
{
    EXPECT_FALSE(image::NeedsBleed(Of(2, {0x00000000u, 0xFF200000u})));  // 32 * 255 / 255 / 4 = 8
    EXPECT_TRUE(image::NeedsBleed(Of(2, {0x00000000u, 0xFF210000u})));
    EXPECT_FALSE(image::NeedsBleed(Of(2, {0x00000000u, 0x20FFFFFFu})));  // 255 * 32 / 255 / 4 = 8
    EXPECT_TRUE(image::NeedsBleed(Of(2, {0x00000000u, 0x21FFFFFFu})));
}

TEST(ImageBleed, AfterwardsNothingNeedsIt)
{
    const support::Seeds seeds(300);
    std::size_t          needed = 0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice          dice(seed);
        const Picture picture = RandomPicture(dice);
        needed += image::NeedsBleed(picture) ? 1 : 0;
        ASSERT_FALSE(image::NeedsBleed(Bled(picture, 1))) << "seed " << seed;
        ASSERT_FALSE(image::NeedsBleed(Bled(picture, 3))) << "seed " << seed;
    }
    EXPECT_GT(needed, seeds.count / 2);
}

}  // namespace
