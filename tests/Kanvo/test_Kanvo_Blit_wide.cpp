// Rows longer than the pieces that workers bring a format into: every pair of source and map, grey pictures, colours
// through ARGB32 maps and run-length-encoded images, at every level of this machine, against the naive blends
// (NaiveMix.h); also where a piece's memory is the target's.
#include <cstring>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>
#include <Kanvo.h>

#include "Dice.h"
#include "Kanvo_BitmapRLE.h"
#include "Kanvo_Blit.h"
#include "Levels.h"
#include "NaiveMix.h"
#include "Reference_Blit.h"
#include "RleImage.h"

namespace
{

using support::Dice;

constexpr std::uint32_t HEIGHT = 2, SLACK = 16, MOST = 2 * KANVO_PIECE + 90;

//! Two rows of words with bytes of 0 and 255 as often as others.
std::vector<std::uint32_t> Words(Dice& dice)
{
    std::vector<std::uint32_t> words(MOST * HEIGHT + SLACK);
    for (std::uint32_t& word : words) word = dice.NextHostileWord();
    return words;
}

template <class Pixel>
Pixel* As(std::vector<std::uint32_t>& words, std::uint32_t offset = 0)
{
    return reinterpret_cast<Pixel*>(words.data()) + offset;
}

class BlitWide : public testing::TestWithParam<std::tuple<Kanvo_Level, std::uint32_t>>
{
protected:
    static std::uint32_t Width() { return std::get<std::uint32_t>(GetParam()); }

    //! The target's words; its rows touch each other.
    Kanvo_BitmapARGB32 Target() { return {&screen, Width(), HEIGHT, BBT_RAM, target.data()}; }

    //! Compares the target with what expect(index, word before) says of each of its pixels in turn.
    template <class Expect>
    void ExpectPixels(const std::vector<std::uint32_t>& before, Expect expect, const char* what)
    {
        for (std::uint32_t index = 0; index < before.size(); ++index)
        {
            const std::uint32_t expected = index < Width() * HEIGHT ? expect(index, before[index]) : before[index];
            ASSERT_EQ(target[index], expected) << what << ", pixel " << index;
        }
    }

    Kanvo                      library;
    Kanvo_Screen               screen{&library};
    Dice                       dice{31};
    std::vector<std::uint32_t> target = Words(dice);
    std::vector<std::uint32_t> words  = Words(dice);
    std::vector<std::uint32_t> more   = Words(dice);

private:
    support::AtLevel m_level{std::get<Kanvo_Level>(GetParam())};
};

std::string NameOf(const testing::TestParamInfo<BlitWide::ParamType>& info)
{
    return std::string(Kanvo_LevelName(std::get<Kanvo_Level>(info.param))) + "_" +
           std::to_string(std::get<std::uint32_t>(info.param));
}

std::uint32_t Grey(unsigned level)
{
    return 0xFF000000U | level << 16 | level << 8 | level;
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(All, BlitWide,
                         testing::Combine(testing::ValuesIn(support::LevelsHere()),
                                          testing::Values(KANVO_PIECE - 1, KANVO_PIECE, KANVO_PIECE + 1,
                                                          2 * KANVO_PIECE, 2 * KANVO_PIECE + 7, MOST)),
                         NameOf);

TEST_P(BlitWide, EachSourceThroughEachMap)
{
    Kanvo_BitmapARGB32 argb32(&screen, Width(), HEIGHT, BBT_RAM, words.data());
    Kanvo_BitmapRGB32  rgb32(&screen, Width(), HEIGHT, BBT_RAM, words.data());
    Kanvo_BitmapRGB565 rgb565(&screen, Width(), HEIGHT, BBT_RAM, As<Kanvo_PixelRGB565>(words));
    Kanvo_BitmapA8     grey(&screen, Width(), HEIGHT, BBT_RAM, As<Kanvo_PixelA8>(words));
    Kanvo_BitmapARGB32 mapWords(&screen, Width(), HEIGHT, BBT_RAM, more.data());
    Kanvo_BitmapA8     mapBytes(&screen, Width(), HEIGHT, BBT_RAM, As<Kanvo_PixelA8>(more, 3));
    for (Kanvo_Bitmap* const source : {static_cast<Kanvo_Bitmap*>(&argb32), static_cast<Kanvo_Bitmap*>(&rgb32),
                                       static_cast<Kanvo_Bitmap*>(&rgb565), static_cast<Kanvo_Bitmap*>(&grey)})
    {
        for (const bool bytes : {false, true})
        {
            for (const int alpha : {255, 128})
            {
                const auto         before = target;
                Kanvo_BitmapARGB32 onto   = Target();
                onto.Lock();
                onto.BlitAlpha(source, bytes ? static_cast<Kanvo_Bitmap*>(&mapBytes) : &mapWords, Width(), HEIGHT, 0, 0,
                               0, 0, 0, static_cast<Tov_UByte>(alpha));
                ExpectPixels(
                    before,
                    [&](std::uint32_t index, std::uint32_t under)
                    {
                        const int map = bytes ? As<Kanvo_PixelA8>(more, 3)[index] : static_cast<int>(more[index] >> 24);
                        const int cover = support::MulByte(map, alpha);
                        switch (source->GetType())
                        {
                        case BM_ALPHA8:
                        {
                            const std::uint32_t level = Grey(As<Kanvo_PixelA8>(words)[index]);
                            return alpha == 255 ? support::BlitMixLinear(under, level, cover)
                                                : support::MixLinear(under, level, cover);
                        }
                        case BM_RGB565: return support::MixLinear(under, As<Kanvo_PixelRGB565>(words)[index], cover);
                        default: return support::MixLinear(under, words[index], cover);
                        }
                    },
                    bytes ? "A8 map" : "ARGB32 map");
            }
        }
    }
}

TEST_P(BlitWide, GreyAndRGB32Pictures)
{
    Kanvo_BitmapRGB32 rgb32(&screen, Width(), HEIGHT, BBT_RAM, words.data());
    Kanvo_BitmapA8    grey(&screen, Width(), HEIGHT, BBT_RAM, As<Kanvo_PixelA8>(words, 1));
    for (const int alpha : {255, 254, 90})
    {
        for (const bool isGrey : {false, true})
        {
            const auto         before = target;
            Kanvo_BitmapARGB32 onto   = Target();
            onto.Lock();
            onto.Blit(isGrey ? static_cast<Kanvo_Bitmap*>(&grey) : &rgb32, Width(), HEIGHT, 0, 0, 0, 0, 0,
                      static_cast<Tov_UByte>(alpha), 0);
            ExpectPixels(
                before,
                [&](std::uint32_t index, std::uint32_t under)
                {
                    const std::uint32_t level = As<Kanvo_PixelA8>(words, 1)[index];
                    const std::uint32_t word  = isGrey ? level << 24 | (Grey(level) & 0xFFFFFFU) : words[index];
                    return alpha == 255 ? word | 0xFF000000U : support::MixLinearSrcAlpha(under, word, alpha);
                },
                isGrey ? "grey" : "RGB32");
        }
    }
}

TEST_P(BlitWide, KeyedRGB565Pictures)
{
    // few values, so that the key is met often; with a bit that no pixel has, never
    auto* const pixels = As<Kanvo_PixelRGB565>(words);
    for (std::uint32_t index = 0; index < Width() * HEIGHT; ++index)
        pixels[index] = static_cast<Kanvo_PixelRGB565>(dice.OneIn(3) ? 0xF81F : dice.NextByte() * 257U);
    Kanvo_BitmapRGB565 source(&screen, Width(), HEIGHT, BBT_RAM, pixels);
    for (const std::uint32_t key : {0xF81FU, 0x1F81FU})
    {
        for (const int alpha : {255, 200})
        {
            const auto         before = target;
            Kanvo_BitmapARGB32 onto   = Target();
            onto.Lock();
            onto.Blit(&source, Width(), HEIGHT, 0, 0, 0, 0, BLIT_COLORKEY, static_cast<Tov_UByte>(alpha), key);
            ExpectPixels(
                before,
                [&](std::uint32_t index, std::uint32_t under)
                {
                    const std::uint32_t word = reference::WordOfRgb565(pixels[index]);
                    if (pixels[index] == key) return under;
                    return alpha == 255 ? word : support::MixLinearSrcAlpha(under, word, alpha);
                },
                "keyed");
        }
    }
}

TEST_P(BlitWide, AColourThroughAnARGB32Map)
{
    Kanvo_BitmapARGB32 map(&screen, Width(), HEIGHT, BBT_RAM, more.data());
    for (const int alpha : {255, 77})
    {
        const auto         before = target;
        Kanvo_BitmapARGB32 onto   = Target();
        onto.Lock();
        onto.BlitColor(&map, Width(), HEIGHT, 0, 0, 0, 0, 0x80FF4001U, 0, static_cast<Tov_UByte>(alpha));
        ExpectPixels(
            before,
            [&](std::uint32_t index, std::uint32_t under) {
                return support::BlitMixLinear(under, 0x80FF4001U,
                                              support::MulByte(static_cast<int>(more[index] >> 24), alpha));
            },
            "colour");
    }
}

TEST_P(BlitWide, PixelsOfTheTargetThatServeAsMapAreReadAsTheyAreByThen)
{
    // The map's words are the target's, a few pixels on or back.
    for (const int moved : {-3, -1, 0, 1, 5})
    {
        std::vector<std::uint32_t> memory = Words(dice), expected = memory;
        const std::uint32_t        first = 8, mapFirst = static_cast<std::uint32_t>(8 + moved);
        Kanvo_BitmapARGB32         onto(&screen, Width(), HEIGHT, BBT_RAM, memory.data() + first);
        Kanvo_BitmapARGB32         map(&screen, Width(), HEIGHT, BBT_RAM, memory.data() + mapFirst);
        Kanvo_BitmapA8             grey(&screen, Width(), HEIGHT, BBT_RAM, As<Kanvo_PixelA8>(words));
        onto.Lock();
        onto.BlitAlpha(&grey, &map, Width(), HEIGHT, 0, 0, 0, 0, 0, 200);
        for (std::uint32_t index = 0; index < Width() * HEIGHT; ++index)
        {
            const int           cover = support::MulByte(static_cast<int>(expected[mapFirst + index] >> 24), 200);
            const std::uint32_t level = Grey(As<Kanvo_PixelA8>(words)[index]);
            expected[first + index]   = support::MixLinear(expected[first + index], level, cover);
        }
        ASSERT_EQ(memory, expected) << "moved by " << moved;
    }
}

TEST_P(BlitWide, StoredImagesOfRunsAndLiterals)
{
    for (unsigned turn = 0; turn < 40; ++turn)
    {
        support::RleImage image;
        image.unitBits = turn % 2 == 0 ? 8 : 16;
        image.width    = Width();
        image.height   = HEIGHT;
        image.palette  = support::ThrowPalette(dice, 200);
        image.units    = support::ThrowTokens(dice, image.unitBits, image.width * image.height, 200);
        std::vector<std::uint32_t> colors;
        for (std::size_t unit = 0; unit < image.units.size();)
        {
            const unsigned first = image.units[unit], second = image.units[unit + 1];
            if (first != 0) colors.insert(colors.end(), first, image.palette[second]);
            for (unsigned index = 0; first == 0 && index < second; ++index)
                colors.push_back(image.palette[image.units[unit + 2 + index]]);
            unit += first != 0 ? 2 : 2 + second;
        }
        ASSERT_EQ(colors.size(), image.width * image.height);
        image.units.insert(image.units.end(), 2, 0U);
        const std::vector<std::uint8_t> bytes = image.Bytes();
        Kanvo_BitmapRLE                 stored(&screen, bytes.data(), bytes.size(), true);
        Kanvo_BitmapA8                  ignored(&screen, Width(), HEIGHT, BBT_RAM, As<Kanvo_PixelA8>(more));
        const bool                      byMap  = turn % 3 == 0;
        const int                       alpha  = turn % 4 < 2 ? 255 : 100 + static_cast<int>(turn);
        const auto                      before = target;
        Kanvo_BitmapARGB32              onto   = Target();
        onto.Lock();
        if (byMap)
            onto.BlitAlpha(&stored, &ignored, Width(), HEIGHT, 0, 0, 0, 0, 0, static_cast<Tov_UByte>(alpha));
        else
            onto.Blit(&stored, Width(), HEIGHT, 0, 0, 0, 0, 0, static_cast<Tov_UByte>(alpha), 0);
        ExpectPixels(
            before,
            [&](std::uint32_t index, std::uint32_t under)
            {
                const std::uint32_t opaque = colors[index] | 0xFF000000U;
                const int           weight = support::MulByte(static_cast<int>(colors[index] >> 24), alpha);
                if (weight == 0 || weight == 255) return weight == 0 ? under : opaque;
                return support::MixLinear(under, opaque, byMap || alpha != 255 ? weight : 255);
            },
            "stored image");
    }
}
