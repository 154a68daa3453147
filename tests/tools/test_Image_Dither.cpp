// Tests of Image_Dither. The property that makes it dithering: over an area of one colour the mean of what is shown is
// that colour.
#include "Image_Dither.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <set>

#include <gtest/gtest.h>

#include "Dice.h"
#include "Image_Palette.h"

namespace
{

using image::Dither;
using image::Index;
using image::Picture;
using support::Dice;
using Argbs = std::vector<std::uint32_t>;

Picture Flat(std::uint32_t argb, std::uint32_t width, std::uint32_t height)
{
    Picture picture;
    picture.width  = width;
    picture.height = height;
    picture.argb.assign(std::size_t{width} * height, argb);
    return picture;
}

std::uint32_t Grey(std::uint32_t level)
{
    return 0xFF000000u | level * 0x010101u;
}

//! The largest distance between the mean of shown pixels and a colour in any premultiplied channel, in 1/1000 of a
//! level.
std::int64_t MeanOff(const Argbs& shown, std::uint32_t argb)
{
    std::array<std::int64_t, 4> sums = {};
    for (const std::uint32_t pixel : shown)
    {
        const image::Point point = image::PointOf(pixel);
        for (std::size_t axis = 0; axis < 4; ++axis)
        {
            sums[axis] += point[axis] - image::PointOf(argb)[axis];
        }
    }
    std::int64_t off = 0;
    for (const std::int64_t sum : sums)
    {
        off = std::max<std::int64_t>(off, std::abs(sum) * 1000 / 255 / static_cast<std::int64_t>(shown.size()));
    }
    return off;
}

Argbs ShownWith(const Picture& picture, const Argbs& palette, Dither dither)
{
    return image::ColoursOf({palette, image::MapToPalette(picture, palette, dither)});
}

Argbs ShownIn565(const Picture& picture, Dither dither)
{
    Argbs shown;
    for (const std::uint16_t pixel : image::MapToRgb565(picture, dither))
    {
        shown.push_back(image::ArgbFromRgb565(pixel));
    }
    return shown;
}

// ---- the pattern ---------------------------------------------------------------------------------------------------

TEST(ImageDither, ThresholdsAreAPermutationThatHalvesAndHalves)
{
    std::set<std::uint32_t> all;
    for (std::uint32_t y = 0; y < 8; ++y)
    {
        for (std::uint32_t x = 0; x < 8; ++x)
        {
            all.insert(image::OrderedThreshold(x, y));
            EXPECT_EQ(image::OrderedThreshold(x + 8, y + 16), image::OrderedThreshold(x, y));
            // The lower half of the thresholds is a chess board, the lowest quarter every other place of every other
            // row.
            EXPECT_EQ(image::OrderedThreshold(x, y) < 32, (x + y) % 2 == 0);
            EXPECT_EQ(image::OrderedThreshold(x, y) < 16, x % 2 == 0 && y % 2 == 0);
        }
    }
    EXPECT_EQ(all.size(), 64U);
    EXPECT_EQ(*all.rbegin(), 63U);
}

TEST(ImageDither, HalfGreyOrderedIsAChessBoard)
{
    const std::vector<Index> indices =
        image::MapToPalette(Flat(Grey(128), 4, 2), {Grey(0), Grey(255)}, Dither::Ordered);
    EXPECT_EQ(indices, (std::vector<Index>{1, 0, 1, 0, 0, 1, 0, 1}));
}

// ---- means ---------------------------------------------------------------------------------------------------------

TEST(ImageDither, DiffusionKeepsTheMeanOfEveryGreyInBlackAndWhite)
{
    for (std::uint32_t level = 0; level < 256; ++level)
    {
        const Argbs shown = ShownWith(Flat(Grey(level), 64, 64), {Grey(0), Grey(255)}, Dither::FloydSteinberg);
        EXPECT_LE(MeanOff(shown, Grey(level)), 1000) << level;
    }
}

TEST(ImageDither, OrderedKeepsTheMeanOfEveryGreyInThreeGreys)
{
    for (std::uint32_t level = 0; level < 256; ++level)
    {
        const Argbs shown = ShownWith(Flat(Grey(level), 64, 64), {Grey(0), Grey(128), Grey(255)}, Dither::Ordered);
        EXPECT_LE(MeanOff(shown, Grey(level)), 1000) << level;
    }
}

TEST(ImageDither, BothKeepTheMeanOfColoursInsideThePalette)
{
    Argbs palette;  // 3 x 3 x 3 levels
    for (std::uint32_t number = 0; number < 27; ++number)
    {
        palette.push_back(image::Argb(255, number / 9 * 255 / 2, number / 3 % 3 * 255 / 2, number % 3 * 255 / 2));
    }
    Dice dice(3);
    for (int turn = 0; turn < 100; ++turn)
    {
        const std::uint32_t argb = 0xFF000000u | dice.Next32();
        EXPECT_LE(MeanOff(ShownWith(Flat(argb, 64, 64), palette, Dither::FloydSteinberg), argb), 1000);
        EXPECT_LE(MeanOff(ShownWith(Flat(argb, 64, 64), palette, Dither::Ordered), argb), 1000);
    }
}

TEST(ImageDither, BothKeepTheMeanOfAlpha)
{
    Argbs palette{0x00000000u};
    for (const std::uint32_t alpha : {64U, 128U, 192U, 255U})
    {
        palette.push_back(alpha << 24 | 0xFF8000);
    }
    for (std::uint32_t alpha = 1; alpha < 255; alpha += 3)
    {
        const std::uint32_t argb = alpha << 24 | 0xFF8000;
        EXPECT_LE(MeanOff(ShownWith(Flat(argb, 64, 64), palette, Dither::FloydSteinberg), argb), 1000) << alpha;
        EXPECT_LE(MeanOff(ShownWith(Flat(argb, 64, 64), palette, Dither::Ordered), argb), 1000) << alpha;
    }
}

TEST(ImageDither, BothKeepTheMeanOfEveryLevelInRgb565)
{
    for (std::uint32_t level = 0; level < 256; ++level)
    {
        const std::uint32_t argb = image::Argb(255, level, 255 - level, level * 7 & 255);
        EXPECT_LE(MeanOff(ShownIn565(Flat(argb, 64, 64), Dither::FloydSteinberg), argb), 100) << level;
        EXPECT_LE(MeanOff(ShownIn565(Flat(argb, 64, 64), Dither::Ordered), argb), 100) << level;
    }
}

TEST(ImageDither, WithoutDitheringTheMeanIsOff)
{
    EXPECT_GE(MeanOff(ShownWith(Flat(Grey(100), 64, 64), {Grey(0), Grey(255)}, Dither::None), Grey(100)), 99000);
    EXPECT_GE(MeanOff(ShownIn565(Flat(Grey(4), 64, 64), Dither::None), Grey(4)), 3000);
}

TEST(ImageDither, ASinglePixelAndASingleRowOrColumnWork)
{
    for (const auto& [width, height] : {std::pair(1U, 1U), std::pair(64U, 1U), std::pair(1U, 64U)})
    {
        const Argbs shown = ShownWith(Flat(Grey(64), width, height), {Grey(0), Grey(255)}, Dither::FloydSteinberg);
        EXPECT_EQ(std::count(shown.begin(), shown.end(), Grey(255)), width * height / 4);
    }
}

//! Floyd and Steinberg's rule for greys and a palette of black and white, written down once more: errors in 1/255 of a
//! level, rows in alternating directions, every error divided among those of its four neighbours that exist.
std::vector<bool> WhiteByRule(const std::vector<int>& levels, int width, int height)
{
    std::vector<int>  wanted(levels.size());
    std::vector<bool> white(levels.size());
    for (std::size_t i = 0; i < levels.size(); ++i)
    {
        wanted[i] = levels[i] * 255;
    }
    for (int y = 0; y < height; ++y)
    {
        const int forward = y % 2 == 0 ? 1 : -1;
        for (int i = 0; i < width; ++i)
        {
            const int  x    = y % 2 == 0 ? i : width - 1 - i;
            const auto at   = [&](int column, int row) { return static_cast<std::size_t>(row * width + column); };
            white[at(x, y)] = wanted[at(x, y)] > 65025 / 2;
            int error       = wanted[at(x, y)] - (white[at(x, y)] ? 65025 : 0);
            error           = std::clamp(error, -32513, 32513);

            const std::array<std::array<int, 3>, 4> all{
                {{x + forward, y, 7}, {x - forward, y + 1, 3}, {x, y + 1, 5}, {x + forward, y + 1, 1}}};
            std::vector<std::array<int, 3>> there;
            int                             parts = 0;
            for (const auto& one : all)
            {
                if (one[0] >= 0 && one[0] < width && one[1] < height)
                {
                    there.push_back(one);
                    parts += one[2];
                }
            }
            for (const auto& one : there)
            {
                const int share = error * one[2] / parts;
                wanted[at(one[0], one[1])] += share;
                error -= share;
                parts -= one[2];
            }
        }
    }
    return white;
}

TEST(ImageDither, DiffusionFollowsTheRule)
{
    Dice dice(31);
    for (int turn = 0; turn < 200; ++turn)
    {
        const auto       width   = 1 + dice.Below(12);
        const auto       height  = 1 + dice.Below(12);
        const int        centre  = dice.Between(0, 255);
        Picture          picture = Flat(0, width, height);
        std::vector<int> levels;
        for (std::uint32_t& pixel : picture.argb)
        {
            levels.push_back(std::clamp(centre + dice.Between(-60, 60), 0, 255));
            pixel = Grey(static_cast<std::uint32_t>(levels.back()));
        }
        const std::vector<bool>  white   = WhiteByRule(levels, static_cast<int>(width), static_cast<int>(height));
        const std::vector<Index> indices = image::MapToPalette(picture, {Grey(0), Grey(255)}, Dither::FloydSteinberg);
        for (std::size_t pixel = 0; pixel < white.size(); ++pixel)
        {
            ASSERT_EQ(indices[pixel], white[pixel] ? 1 : 0) << "turn " << turn << ", pixel " << pixel;
        }
    }
}

// ---- nearest -------------------------------------------------------------------------------------------------------

TEST(ImageDither, WithoutDitheringEveryPixelGetsItsNearestEntry)
{
    Picture picture = Flat(0, 3, 1);
    picture.argb    = {Grey(60), Grey(130), Grey(190)};
    EXPECT_EQ(image::MapToPalette(picture, {Grey(255), Grey(0), Grey(120)}, Dither::None),
              (std::vector<Index>{1, 2, 0}));  // 60 is as near to 0 as to 120: the first of them
}

TEST(ImageDither, Rgb565HasTheNearestLevelsAndTheDarkerOfTwo)
{
    // Levels of five bits: the bits and their upper three again; of six bits: the bits and their upper two again.
    const auto five = [](std::uint32_t number) { return number * 8 + number / 4; };
    const auto six  = [](std::uint32_t number) { return number * 4 + number / 16; };
    const auto best = [](std::uint32_t level, std::uint32_t count, const auto& shown)
    {
        std::uint32_t nearest = 0;
        for (std::uint32_t number = 1; number < count; ++number)
        {
            const int now    = std::abs(static_cast<int>(shown(number)) - static_cast<int>(level));
            const int before = std::abs(static_cast<int>(shown(nearest)) - static_cast<int>(level));
            nearest          = now < before ? number : nearest;
        }
        return nearest;
    };
    for (std::uint32_t level = 0; level < 256; ++level)
    {
        const std::uint32_t expected = best(level, 32, five) << 11 | best(level, 64, six) << 5 | best(level, 32, five);
        EXPECT_EQ(image::Rgb565From(Grey(level)), expected) << level;
        EXPECT_EQ(image::MapToRgb565(Flat(Grey(level), 1, 1), Dither::None).front(), expected) << level;
    }
}

TEST(ImageDither, EveryRgb565PixelSurvives)
{
    for (std::uint32_t pixel = 0; pixel < 65536; ++pixel)
    {
        const std::uint32_t argb = image::ArgbFromRgb565(static_cast<std::uint16_t>(pixel));
        ASSERT_EQ(image::Rgb565From(argb), pixel);
        ASSERT_EQ(argb >> 24, 255U);
    }
    EXPECT_EQ(image::ArgbFromRgb565(0xF800), 0xFFFF0000u);
    EXPECT_EQ(image::ArgbFromRgb565(0x0821), 0xFF080408u);
}

TEST(ImageDither, Rgb565LevelsThatExistAreNotDithered)
{
    Picture picture = Flat(0, 256, 256);
    for (std::uint32_t pixel = 0; pixel < 65536; ++pixel)
    {
        picture.argb[pixel] = image::ArgbFromRgb565(static_cast<std::uint16_t>(pixel * 40503));
    }
    for (const Dither dither : {Dither::None, Dither::Ordered, Dither::FloydSteinberg})
    {
        EXPECT_EQ(ShownIn565(picture, dither), picture.argb);
    }
}

// ---- alpha and exactness -------------------------------------------------------------------------------------------

Picture RandomPicture(Dice& dice)
{
    const auto width   = 1 + dice.Below(40);
    const auto height  = 1 + dice.Below(40);
    Picture    picture = Flat(0, width, height);
    for (std::uint32_t& pixel : picture.argb)
    {
        pixel = dice.NextHostileWord();
    }
    return picture;
}

TEST(ImageDither, TransparentPixelsStayTransparentAndOpaqueOnesOpaque)
{
    const support::Seeds seeds(200);
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice          dice(seed);
        const Picture picture = RandomPicture(dice);
        const auto    most    = 3 + dice.Below(20);
        const Argbs   palette = image::Quantise(picture.argb, most);
        for (const Dither dither : {Dither::None, Dither::Ordered, Dither::FloydSteinberg})
        {
            const Argbs shown = ShownWith(picture, palette, dither);
            for (std::size_t pixel = 0; pixel < shown.size(); ++pixel)
            {
                const std::uint32_t alpha = picture.argb[pixel] >> 24;
                if (alpha == 0 || alpha == 255)
                {
                    ASSERT_EQ(shown[pixel] >> 24, alpha) << "seed " << seed << ", pixel " << pixel;
                }
            }
        }
    }
}

TEST(ImageDither, APaletteWithAllColoursIsNeverDithered)
{
    Dice dice(9);
    for (int turn = 0; turn < 50; ++turn)
    {
        const Picture        picture = RandomPicture(dice);
        const image::Indexed exact   = *image::ExactPalette(picture.argb, 65536, image::Hidden::Keep);
        for (const Dither dither : {Dither::Ordered, Dither::FloydSteinberg})
        {
            const Argbs shown = ShownWith(picture, exact.palette, dither);
            for (std::size_t pixel = 0; pixel < shown.size(); ++pixel)
            {
                ASSERT_EQ(image::PointOf(shown[pixel]), image::PointOf(picture.argb[pixel]));
            }
        }
    }
}

TEST(ImageDither, ErrorsDoNotCrossTransparentPixels)
{
    Picture picture = Flat(Grey(100), 9, 40);
    Argbs   right;
    for (std::size_t y = 0; y < 40; ++y)
    {
        picture.argb[y * 9 + 4] = 0;
        for (std::size_t x = 5; x < 9; ++x)
        {
            picture.argb[y * 9 + x] = Grey(255);  // an entry itself: without errors from the left it stays
        }
    }
    const Argbs shown = ShownWith(picture, {0, Grey(0), Grey(255)}, Dither::FloydSteinberg);
    for (std::size_t y = 0; y < 40; ++y)
    {
        for (std::size_t x = 4; x < 9; ++x)
        {
            EXPECT_EQ(shown[y * 9 + x], picture.argb[y * 9 + x]);
        }
    }
    EXPECT_GT(std::count(shown.begin(), shown.end(), Grey(255)), 160 + 30);  // the left was dithered
}

TEST(ImageDither, HolesLoseNothing)
{
    Picture picture = Flat(Grey(100), 64, 64);
    Argbs   visible;
    for (std::size_t pixel = 0; pixel < picture.argb.size(); pixel += 1 + pixel % 3)
    {
        picture.argb[pixel] = 0;
    }
    const Argbs shown = ShownWith(picture, {0, Grey(0), Grey(255)}, Dither::FloydSteinberg);
    std::copy_if(shown.begin(), shown.end(), std::back_inserter(visible), [](std::uint32_t argb) { return argb != 0; });
    EXPECT_LT(visible.size(), 3000U);
    EXPECT_LE(MeanOff(visible, Grey(100)), 1000);
}

TEST(ImageDither, ErrorsInAlphaStayAwayFromOpaquePixels)
{
    // Left half translucent, between two entries; right half opaque and between two entries by itself: its pixels are
    // those of a picture without the left half.
    const Argbs palette{0x20FFFFFFu, 0xC0FFFFFFu, Grey(60), Grey(100)};
    Picture     picture = Flat(0x80FFFFFFu, 40, 20);
    for (std::size_t pixel = 0; pixel < picture.argb.size(); ++pixel)
    {
        picture.argb[pixel] = pixel % 40 < 20 ? 0x80FFFFFFu : Grey(70);
    }
    const Argbs both  = ShownWith(picture, palette, Dither::FloydSteinberg);
    const Argbs alone = ShownWith(Flat(Grey(70), 20, 20), palette, Dither::FloydSteinberg);
    EXPECT_GT(std::count(both.begin(), both.end(), 0xC0FFFFFFu), 100);
    for (std::size_t pixel = 0; pixel < alone.size(); ++pixel)
    {
        ASSERT_EQ(both[pixel / 20 * 40 + 20 + pixel % 20], alone[pixel]) << pixel;
    }
}

TEST(ImageDither, OrderedFindsWhatItNeedsBehindACrowdOfNearEntries)
{
    Argbs palette{Grey(255)};
    for (std::uint32_t level = 0; level < 30; ++level)
    {
        palette.push_back(Grey(level));
    }
    // The entries to mix are 226 levels apart, a 64th of that is 3.5.
    EXPECT_LE(MeanOff(ShownWith(Flat(Grey(60), 64, 64), palette, Dither::Ordered), Grey(60)), 1800);
}

TEST(ImageDither, AColourBeyondThePaletteDoesNotSmear)
{
    // Left a white that the palette lacks by one level, right a grey that it has: errors that nobody can make up for
    // must not pile up and spill into the grey.
    Picture picture = Flat(Grey(255), 80, 80);
    Argbs   palette;
    for (std::uint32_t level = 0; level < 255; level += 2)
    {
        palette.push_back(Grey(level));
    }
    for (std::size_t pixel = 0; pixel < picture.argb.size(); ++pixel)
    {
        picture.argb[pixel] = pixel % 80 < 40 ? Grey(255) : Grey(100);
    }
    const Argbs shown = ShownWith(picture, palette, Dither::FloydSteinberg);
    for (std::size_t pixel = 0; pixel < shown.size(); ++pixel)
    {
        const int expected = pixel % 80 < 40 ? 254 : 100;
        ASSERT_NEAR(static_cast<int>(shown[pixel] & 255), expected, 2) << pixel;
    }
}

TEST(ImageDither, SamePictureSameIndices)
{
    Dice          dice(21);
    const Picture picture = RandomPicture(dice);
    const Argbs   palette = image::Quantise(picture.argb, 12);
    for (const Dither dither : {Dither::None, Dither::Ordered, Dither::FloydSteinberg})
    {
        EXPECT_EQ(image::MapToPalette(picture, palette, dither), image::MapToPalette(picture, palette, dither));
    }
}

}  // namespace
