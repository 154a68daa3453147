// Tests of Image_Difference.
#include "Image_Difference.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "PictureOf.h"

namespace
{

using image::Difference;
using image::Picture;
using support::Of;

TEST(ImageDifference, EqualPicturesHaveNone)
{
    const Picture    picture    = Of(2, {1, 2, 3, 0xFFFFFFFFu});
    const Difference difference = image::Compare(picture, picture);
    EXPECT_TRUE(difference.IsNone());
    EXPECT_EQ(difference.pixels, 4U);
    EXPECT_EQ(difference.LargestSeenMilli() + difference.MeanSeenMilli(), 0U);
    EXPECT_EQ(image::DifferenceText(difference), "no difference");
}

TEST(ImageDifference, CountsChannelsAndWhatIsSeen)
{
    const Difference difference = image::Compare(Of(2, {0xFF102030u, 0xFF000000u, 0x00FFFFFFu, 0x80000000u}),
                                                 Of(2, {0xFF112033u, 0xFF000000u, 0x00000000u, 0x80000000u}));
    EXPECT_EQ(difference.differing, 2U);
    EXPECT_EQ(difference.largest[0], 0U);
    EXPECT_EQ(difference.largest[1], 255U);  // hidden, but stored
    EXPECT_EQ(difference.largest[2], 255U);
    EXPECT_EQ(difference.largest[3], 255U);
    EXPECT_EQ(difference.sum[1], 1U + 255);
    EXPECT_EQ(difference.sum[3], 3U + 255);
    EXPECT_EQ(difference.largestSeen, 3U * 255);  // the hidden one is not seen
    EXPECT_EQ(difference.sumSeen, 2U * 4 * 255);  // 1 and 3 levels, over black and over white
    EXPECT_EQ(difference.LargestSeenMilli(), 3000U);
    EXPECT_EQ(difference.MeanSeenMilli(), 333U);  // 8 levels in 24 comparisons
    EXPECT_EQ(difference.MeanMilli(3), 64500U);   // 258 levels in 4 pixels
    EXPECT_EQ(image::DifferenceText(difference), "mean error 0.333, largest 3.000 of 255");
}

TEST(ImageDifference, LostAlphaIsSeenOverAnotherBackground)
{
    const auto seen = [](std::uint32_t left, std::uint32_t right)
    {
        const Difference difference = image::Compare(Of(1, {left}), Of(1, {right}));
        return std::pair(difference.LargestSeenMilli(), difference.MeanSeenMilli());
    };
    EXPECT_EQ(seen(0x00000000u, 0xFFFFFFFFu), std::pair(std::uint64_t{255000}, std::uint64_t{127500}));  // over black
    EXPECT_EQ(seen(0x00000000u, 0xFF000000u), std::pair(std::uint64_t{255000}, std::uint64_t{127500}));  // over white
    EXPECT_EQ(seen(0x33FFFFFFu, 0x33000000u), std::pair(std::uint64_t{51000}, std::uint64_t{51000}));    // a fifth
}

TEST(ImageDifference, TellsWhereTheWorstPixelIs)
{
    const Difference difference = image::Compare(Of(3, {0, 0, 0xFF000001u, 0, 0, 0xFF000000u, 0, 0xFF000000u, 0}),
                                                 Of(3, {0, 0, 0xFF000000u, 0, 0, 0xFF000007u, 0, 0xFF000007u, 0}));
    EXPECT_EQ(difference.worstX, 2U);
    EXPECT_EQ(difference.worstY, 1U);
}

TEST(ImageDifference, RefusesPicturesOfDifferentSizes)
{
    EXPECT_THROW(image::Compare(Of(2, {1, 2}), Of(1, {1, 2})), std::invalid_argument);
    EXPECT_THROW(image::HeatMap(Of(2, {1, 2}), Of(2, {1, 2, 3, 4})), std::invalid_argument);
}

TEST(ImageDifference, HeatMapGoesFromBlueToRed)
{
    const Picture map = image::HeatMap(Of(4, {0xFF000000u, 0xFF000000u, 0xFFFFFFFFu, 0xFF000000u}),
                                       Of(4, {0xFF0000FFu, 0xFF000001u, 0xFFFFFFFFu, 0xFF000000u}));
    EXPECT_EQ(map.argb[0], 0xFFFF0000u);                // the largest
    EXPECT_EQ(map.argb[1] & 0xFFFF0000u, 0xFF000000u);  // next to nothing: blue
    EXPECT_GT(map.argb[1] & 0xFFu, 0xF0u);
    EXPECT_EQ(map.argb[2], 0xFF3F3F3Fu);  // equal: grey, faint
    EXPECT_EQ(map.argb[3], 0xFF000000u);
    EXPECT_EQ(map.width, 4U);
}

}  // namespace
