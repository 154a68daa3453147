// Tests of Image_Trim.
#include "Image_Trim.h"

#include <gtest/gtest.h>

#include "Dice.h"
#include "PictureOf.h"

namespace
{

using image::Picture;
using support::Of;

TEST(ImageTrim, CutsToWhatIsVisibleAndSaysWhereItWas)
{
    const image::Trimmed trimmed = image::Trim(Of(4, {0, 0, 0, 0,            //
                                                      0, 7, 0x01000001u, 0,  //
                                                      0, 8, 0, 0xFF000002u,  //
                                                      0, 0, 0x00FFFFFFu, 0}));
    EXPECT_EQ(trimmed.x, 2U);
    EXPECT_EQ(trimmed.y, 1U);
    EXPECT_EQ(trimmed.picture.width, 2U);
    EXPECT_EQ(trimmed.picture.height, 2U);
    EXPECT_EQ(trimmed.picture.argb, (std::vector<std::uint32_t>{0x01000001u, 0, 0, 0xFF000002u}));
    EXPECT_FALSE(trimmed.picture.IsIndexed());
}

TEST(ImageTrim, LeavesAPictureThatFillsItsFrame)
{
    const Picture        full    = Of(2, {0xFF000001u, 0, 0, 0xFF000002u});
    const image::Trimmed trimmed = image::Trim(full);
    EXPECT_EQ(trimmed.picture.argb, full.argb);
    EXPECT_EQ(trimmed.x, 0U);
    EXPECT_EQ(trimmed.y, 0U);
}

TEST(ImageTrim, OfNothingVisibleTheFirstPixelRemains)
{
    const image::Trimmed trimmed = image::Trim(Of(3, {5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(trimmed.picture.width, 1U);
    EXPECT_EQ(trimmed.picture.height, 1U);
    EXPECT_EQ(trimmed.picture.argb, (std::vector<std::uint32_t>{5}));
    EXPECT_EQ(trimmed.x + trimmed.y, 0U);
}

TEST(ImageTrim, KeepsThePaletteAndCutsTheIndices)
{
    Picture picture       = Of(3, {0, 0xFF000001u, 0, 0, 0xFF000002u, 0});
    picture.palette       = {0xFF000002u, 0, 0xFF000001u, 0xFF000009u};
    picture.indices       = {1, 2, 1, 1, 0, 1};
    const Picture trimmed = image::Trim(picture).picture;
    EXPECT_EQ(trimmed.palette, picture.palette);
    EXPECT_EQ(trimmed.indices, (std::vector<image::Index>{2, 0}));
    EXPECT_EQ(trimmed.width, 1U);
}

TEST(ImageTrim, PutBackItIsTheSamePicture)
{
    const support::Seeds seeds(500);
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        support::Dice              dice(seed);
        const auto                 width  = 1 + dice.Below(20);
        const auto                 height = 1 + dice.Below(20);
        const auto                 rarity = dice.Of({3U, 50U, 300U});
        std::vector<std::uint32_t> argb(std::size_t{width} * height, 0);
        bool                       visible = false;
        for (std::uint32_t& pixel : argb)
        {
            if (dice.OneIn(rarity))
            {
                pixel   = dice.Next32() | 0x01000000u;
                visible = true;
            }
        }
        const image::Trimmed       trimmed = image::Trim(Of(width, argb));
        const Picture&             cut     = trimmed.picture;
        std::vector<std::uint32_t> again(argb.size(), 0);
        bool                       edges[4] = {};  // something visible at the left, top, right, bottom
        ASSERT_EQ(cut.argb.size(), std::size_t{cut.width} * cut.height);
        for (std::uint32_t y = 0; y < cut.height; ++y)
        {
            for (std::uint32_t x = 0; x < cut.width; ++x)
            {
                const std::uint32_t pixel                                 = cut.argb[std::size_t{y} * cut.width + x];
                again[std::size_t{y + trimmed.y} * width + x + trimmed.x] = pixel;
                edges[0]                                                  = edges[0] || (pixel != 0 && x == 0);
                edges[1]                                                  = edges[1] || (pixel != 0 && y == 0);
                edges[2] = edges[2] || (pixel != 0 && x + 1 == cut.width);
                edges[3] = edges[3] || (pixel != 0 && y + 1 == cut.height);
            }
        }
        ASSERT_EQ(again, argb) << "seed " << seed;
        for (const bool edge : edges)
        {
            ASSERT_EQ(edge, visible) << "seed " << seed;
        }
    }
}

}  // namespace
