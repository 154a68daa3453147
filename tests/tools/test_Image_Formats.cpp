// Tests of Image_Formats.
#include "Image_Formats.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "Dice.h"
#include "Image_Palette.h"
#include "Kanvo_Enums.h"

namespace
{

using image::Choice;
using image::Dither;
using image::Format;
using image::Picture;
using support::Dice;
using Argbs = std::vector<std::uint32_t>;
using Bytes = std::vector<std::uint8_t>;

static_assert(static_cast<int>(Format::Rgb32) == BM_RGB32 && static_cast<int>(Format::Rle8) == BM_RGB32RLE8 &&
              static_cast<int>(Format::Rle16) == BM_RGB32RLE16 && static_cast<int>(Format::Argb32) == BM_ARGB32 &&
              static_cast<int>(Format::A8) == BM_ALPHA8 && static_cast<int>(Format::Rgb565) == BM_RGB565);

Picture Of(std::uint32_t width, Argbs argb)
{
    Picture picture;
    picture.width  = width;
    picture.height = static_cast<std::uint32_t>(argb.size() / width);
    picture.argb   = std::move(argb);
    return picture;
}

//! Pixels that no run-length encoding makes smaller: `colours` different opaque ones, no neighbours equal.
Picture Busy(std::size_t pixels, std::uint32_t colours, std::uint32_t step)
{
    Argbs argb(pixels);
    for (std::size_t i = 0; i < pixels; ++i)
    {
        argb[i] = 0xFF000000u | static_cast<std::uint32_t>(i * 7919 % colours) * step;
    }
    return Of(static_cast<std::uint32_t>(pixels), argb);
}

// ---- names ---------------------------------------------------------------------------------------------------------

TEST(ImageFormats, NamesLeadThereAndBack)
{
    ASSERT_EQ(image::AllFormats().size(), 6U);
    for (const Format format : image::AllFormats())
    {
        EXPECT_EQ(image::FormatFromName(image::FormatName(format)), format);
    }
    EXPECT_STREQ(image::FormatName(Format::Rle16), "rle16");
    EXPECT_EQ(image::FormatFromName("rgb565"), Format::Rgb565);
    EXPECT_FALSE(image::FormatFromName("RGB565"));
    EXPECT_FALSE(image::FormatFromName(""));
}

// ---- raw pixels ----------------------------------------------------------------------------------------------------

TEST(ImageFormats, PixelsAreLittleEndian)
{
    const Picture picture = Of(2, {0x12345678u, 0x00FF8040u});
    EXPECT_EQ(image::EncodePixels(picture, Format::Argb32), (Bytes{0x78, 0x56, 0x34, 0x12, 0x40, 0x80, 0xFF, 0x00}));
    EXPECT_EQ(image::EncodePixels(picture, Format::Rgb32), (Bytes{0x78, 0x56, 0x34, 0xFF, 0x40, 0x80, 0xFF, 0xFF}));
    EXPECT_EQ(image::EncodePixels(picture, Format::A8), (Bytes{0x12, 0x00}));
    // 0x34: 6.3 of 31, 0x56: 21.25 of 63, 0x78: 14.6 of 31; 0xFF, 0x80: 31.6 of 63, 0x40: 7.8 of 31.
    EXPECT_EQ(image::EncodePixels(picture, Format::Rgb565),
              (Bytes{(21 << 5 & 0xFF) | 15, 6 << 3 | 21 >> 3, (32 << 5 & 0xFF) | 8, 31 << 3 | 32 >> 3}));
}

TEST(ImageFormats, A8OfAnOpaquePictureIsItsBrightness)
{
    EXPECT_EQ(image::EncodePixels(Of(5, {0xFFFF0000u, 0xFF00FF00u, 0xFF0000FFu, 0xFF646464u, 0xFFFFFFFFu}), Format::A8),
              (Bytes{76, 150, 29, 100, 255}));
}

TEST(ImageFormats, PixelsShowWhatTheLibraryShows)
{
    EXPECT_EQ(image::DecodePixels({1, 2, 3, 4}, 1, 1, Format::Argb32).argb, (Argbs{0x04030201u}));
    EXPECT_EQ(image::DecodePixels({1, 2, 3, 4}, 1, 1, Format::Rgb32).argb, (Argbs{0xFF030201u}));
    EXPECT_EQ(image::DecodePixels({0x00, 0xF8, 0x1F, 0x00}, 2, 1, Format::Rgb565).argb,
              (Argbs{0xFFFF0000u, 0xFF0000FFu}));
    EXPECT_EQ(image::DecodePixels({0x40, 0}, 1, 2, Format::A8).argb, (Argbs{0xFF404040u, 0xFF000000u}));
    EXPECT_THROW(image::DecodePixels({1, 2, 3}, 1, 1, Format::Argb32), std::invalid_argument);
    EXPECT_THROW(image::DecodePixels({1, 2}, 1, 1, Format::A8), std::invalid_argument);
    EXPECT_THROW(image::DecodePixels({1}, 1, 1, Format::Rle8), std::invalid_argument);
    EXPECT_THROW(image::EncodePixels(Of(1, {1}), Format::Rle8), std::invalid_argument);
}

// ---- losslessness and choice ---------------------------------------------------------------------------------------

TEST(ImageFormats, LosslessWhereEveryPixelComesBack)
{
    struct Case
    {
        Argbs argb;
        bool  rgb32;
        bool  rgb565;
        bool  a8;
    };
    for (const Case& one :
         {Case{{0xFF010203u}, true, false, false}, Case{{0xFEFFFFFFu}, false, false, false},
          Case{{0xFFFF0000u, 0xFF080408u}, true, true, false}, Case{{0xFF404040u, 0xFF010101u}, true, false, true},
          Case{{0xFFFFFFFFu, 0xFF000000u}, true, true, true}, Case{{0xFFFFFFFFu, 0x00000000u}, false, false, false}})
    {
        const Picture picture = Of(1, one.argb);
        EXPECT_TRUE(image::IsLossless(picture, Format::Argb32));
        EXPECT_EQ(image::IsLossless(picture, Format::Rgb32), one.rgb32) << std::hex << one.argb[0];
        EXPECT_EQ(image::IsLossless(picture, Format::Rgb565), one.rgb565) << std::hex << one.argb[0];
        EXPECT_EQ(image::IsLossless(picture, Format::A8), one.a8) << std::hex << one.argb[0];
        EXPECT_TRUE(image::IsLossless(picture, Format::Rle8));
        EXPECT_TRUE(image::IsLossless(picture, Format::Rle16));
    }
    EXPECT_TRUE(image::IsLossless(Busy(256, 256, 1), Format::Rle8));
    EXPECT_FALSE(image::IsLossless(Busy(257, 257, 1), Format::Rle8));
    EXPECT_TRUE(image::IsLossless(Busy(257, 257, 1), Format::Rle16));
}

TEST(ImageFormats, ChoosesTheSmallestAndSaysWhy)
{
    const auto chosen = [](const Picture& picture) { return image::ChooseFormat(picture); };

    // One colour, 100 x 10: 40 + 4 + 4 runs of 2 + 2 = 54 bytes; rle16: 40 + 4 + (2 + 2) * 2 = 52.
    const Choice flat = chosen(Of(100, Argbs(1000, 0x80123456u)));
    EXPECT_EQ(flat.format, Format::Rle16);
    EXPECT_EQ(flat.reason, "rle16: one colour, 52 bytes; next is rle8 with 54 bytes");

    // 12 colours without repetition: 40 + 48 + 12,000 + 2 * 48 + 2, and 40 + 48 + 2 * (12,000 + 2 + 2).
    Picture few = Busy(12000, 12, 0x10101);
    for (std::uint32_t& pixel : few.argb)
    {
        pixel += 3;  // blue is no longer grey
    }
    const Choice busy = chosen(few);
    EXPECT_EQ(busy.format, Format::Rle8);
    EXPECT_EQ(busy.reason, "rle8: 12 colours, 12,186 bytes; next is rle16 with 24,096 bytes");

    EXPECT_EQ(chosen(Busy(2000, 2000, 1)).reason,
              "rgb32: the picture is opaque, 8,032 bytes; next is argb32 with 8,032 bytes");
    Picture alpha = Busy(2000, 2000, 1);
    alpha.argb[7] = 5;  // rle16: 40 + 4 * 2,000 + 2 * (2,000 + 2 + 2)
    EXPECT_EQ(chosen(alpha).reason, "argb32: keeps the alpha channel, 8,032 bytes; next is rle16 with 12,048 bytes");

    Picture grey = Busy(4000, 256, 0x10101);
    EXPECT_EQ(chosen(grey).reason, "a8: the picture is opaque and grey, 4,032 bytes; next is rle8 with 5,098 bytes");

    Argbs high(2000);
    for (std::size_t i = 0; i < high.size(); ++i)
    {
        high[i] = image::ArgbFromRgb565(static_cast<std::uint16_t>(i * 31));
    }
    EXPECT_EQ(chosen(Of(2000, high)).reason,
              "rgb565: the picture is opaque and every colour is one of RGB565, 4,032 bytes; next is rgb32 with 8,032 "
              "bytes");
}

TEST(ImageFormats, CandidatesHaveTheSizesOfTheFiles)
{
    Dice          dice(4);
    const Picture picture = Busy(300, 40, 0x10101);
    for (const image::Candidate& candidate : image::Candidates(picture))
    {
        if (!image::IsRle(candidate.format))
        {
            const Bytes pixels = image::EncodePixels(picture, candidate.format);
            EXPECT_EQ(candidate.bytes, image::BuildRaw(pixels, 300, 1, candidate.format).size());
            continue;
        }
        const image::Indexed exact = *image::ExactPalette(picture.argb, 256, image::Hidden::Keep);
        EXPECT_EQ(candidate.bytes, image::BuildImage(exact, 300, 1, image::UnitOf(candidate.format)).size());
        EXPECT_EQ(candidate.colours, 40U);
    }
}

// ---- files of raw pixels -------------------------------------------------------------------------------------------

TEST(ImageFormats, RawFileIsExactlyThis)
{
    const Bytes expected{0x4B, 0x4E, 0x56, 0x4F, 0x52, 0x41, 0x57, 0x20,  // KNVO, RAW
                         6,    1,    0,    0,    2,    0,    0,    0,     // rgb565, version, -, width
                         1,    0,    0,    0,    4,    0,    0,    0,     // height, pitch
                         32,   0,    0,    0,    0,    0,    0,    0,     // pixels from here on, -
                         0x12, 0x34, 0x56, 0x78};
    EXPECT_EQ(image::BuildRaw({0x12, 0x34, 0x56, 0x78}, 2, 1, Format::Rgb565), expected);
    const image::RawImage raw = image::ReadRaw(expected);
    ASSERT_TRUE(raw) << raw.fault.message;
    EXPECT_EQ(raw.header.format, Format::Rgb565);
    EXPECT_EQ(raw.header.width, 2U);
    EXPECT_EQ(raw.header.height, 1U);
    EXPECT_EQ(raw.pixels, (Bytes{0x12, 0x34, 0x56, 0x78}));
    EXPECT_THROW(image::BuildRaw({1, 2, 3}, 2, 1, Format::Rgb565), std::invalid_argument);
    EXPECT_THROW(image::BuildRaw({1, 2}, 2, 1, Format::Rgb565), std::invalid_argument);
    EXPECT_THROW(image::BuildRaw({1, 2}, 2, 1, Format::Rle8), std::invalid_argument);
}

TEST(ImageFormats, RowsMayBePaddedAndPixelsMayStartLater)
{
    Bytes bytes = image::BuildRaw({1, 2, 3, 4}, 2, 2, Format::A8);
    bytes.resize(32);
    bytes[20] = 5;   // pitch
    bytes[24] = 36;  // start
    for (const std::uint8_t byte : Bytes{0, 0, 0, 0, 1, 2, 99, 99, 99, 3, 4})
    {
        bytes.push_back(byte);
    }
    const image::RawImage raw = image::ReadRaw(bytes);
    ASSERT_TRUE(raw) << raw.fault.message;
    EXPECT_EQ(raw.pixels, (Bytes{1, 2, 3, 4}));
    bytes.push_back(77);
    EXPECT_TRUE(image::ReadRaw(bytes));
}

TEST(ImageFormats, TellsWhatIsWrongWithARawFileAndWhere)
{
    struct Damage
    {
        std::size_t  at;
        std::uint8_t value;
        std::size_t  offset;
        const char*  words;
    };
    const Bytes good = image::BuildRaw(Bytes(24, 9), 2, 3, Format::Argb32);
    ASSERT_TRUE(image::ReadRaw(good));
    for (const Damage& damage :
         {Damage{0, 'k', 0, "KNVO"}, Damage{7, 0, 4, "RAW"}, Damage{8, 2, 8, "unknown format 2"},
          Damage{8, 0, 8, "unknown format 0"}, Damage{8, 7, 8, "unknown format 7"}, Damage{9, 2, 9, "version 2"},
          Damage{12, 0, 12, "width 0"}, Damage{13, 0x80, 12, "width 32770"}, Damage{16, 0, 16, "height 0"},
          Damage{18, 1, 16, "height 65539"}, Damage{20, 7, 20, "pitch 7 for rows of 8"}, Damage{20, 10, 20, "pitch 10"},
          Damage{20, 4, 20, "pitch 4"}, Damage{24, 28, 24, "start at 28"}, Damage{24, 34, 24, "start at 34"},
          Damage{24, 60, 24, "start at 60"}, Damage{24, 36, 56, "before the last pixel"},
          Damage{20, 12, 56, "before the last pixel"}, Damage{23, 0xFC, 56, "before the last pixel"}})
    {
        Bytes bytes                 = good;
        bytes[damage.at]            = damage.value;
        const image::RawImage image = image::ReadRaw(bytes);
        EXPECT_FALSE(image) << damage.words;
        EXPECT_NE(image.fault.message.find(damage.words), std::string::npos) << image.fault.message;
        EXPECT_EQ(image.fault.offset, damage.offset) << damage.words;
        EXPECT_TRUE(image.pixels.empty());
    }
    for (std::size_t size = 0; size < good.size(); ++size)
    {
        EXPECT_FALSE(image::ReadRaw(Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size)))) << size;
    }
    EXPECT_FALSE(image::ReadRaw(good, 2));
    EXPECT_TRUE(image::ReadRaw(good, 3));
    EXPECT_FALSE(image::ReadRaw(nullptr, 0));
}

TEST(ImageFormats, SurvivesDamage)
{
    const support::Seeds seeds(20000);
    std::size_t          accepted = 0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice         dice(seed);
        const Format format = dice.Of({Format::Argb32, Format::Rgb32, Format::Rgb565, Format::A8});
        const auto   width  = 1 + dice.Below(9);
        const auto   height = 1 + dice.Below(9);
        Bytes        pixels(std::size_t{width} * height * image::PixelBytes(format));
        Bytes        bytes = image::BuildRaw(pixels, width, height, format);
        const auto   at    = dice.Below(32);
        bytes[at]          = dice.OneIn(2) ? dice.NextByte() : static_cast<std::uint8_t>(dice.Below(40));
        // What is accepted has all its pixels; reading them from beyond the data is for the sanitizers to see.
        const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());
        if (const image::RawImage image = image::ReadRaw(exact))
        {
            ++accepted;
            ASSERT_EQ(image.pixels.size(),
                      std::size_t{image.header.width} * image.header.height * image::PixelBytes(image.header.format));
        }
    }
    EXPECT_GT(accepted, seeds.count / 20);
    EXPECT_LT(accepted, seeds.count);
}

TEST(ImageFormats, TellsFilesApart)
{
    const Bytes raw = image::BuildRaw({1}, 1, 1, Format::A8);
    const Bytes rle = image::BuildImage({1}, {0}, 1, 1, image::Unit::Bits8);
    EXPECT_EQ(image::KindOf(raw.data(), raw.size()), image::FileKind::Raw);
    EXPECT_EQ(image::KindOf(rle.data(), rle.size()), image::FileKind::Rle);
    EXPECT_EQ(image::KindOf(rle.data(), 7), image::FileKind::Unknown);
    EXPECT_EQ(image::KindOf("\x89PNG\r\n\x1A\n", 8), image::FileKind::Unknown);
}

}  // namespace
