// Tests of Image_Encode: which palette it takes, and that pictures of all kinds come back from all formats that promise
// it.
#include "Image_Encode.h"

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include "Dice.h"
#include "Kanvo.h"
#include "Png_Image.h"

namespace
{

using image::Dither;
using image::Encoded;
using image::EncodeOptions;
using image::Format;
using image::Hidden;
using image::PaletteOrigin;
using image::Picture;
using support::Dice;
using Argbs = std::vector<std::uint32_t>;
using Bytes = std::vector<std::uint8_t>;

Picture Of(std::uint32_t width, Argbs argb)
{
    Picture picture;
    picture.width  = width;
    picture.height = static_cast<std::uint32_t>(argb.size() / width);
    picture.argb   = std::move(argb);
    return picture;
}

//! The palette of an encoded RLE image.
Argbs PaletteIn(const Encoded& encoded)
{
    return image::ReadImage(encoded.data).palette;
}

TEST(ImageEncode, AFilesOwnPaletteIsKeptAsItIsUnlessToldOtherwise)
{
    Picture picture = Of(2, {0xFF000002u, 0xFF000001u});
    picture.palette = {0xFF000009u, 0xFF000001u, 0xFF000002u, 0xFF000001u};
    picture.indices = {2, 3};

    const Encoded kept = image::Encode(picture, Format::Rle8);
    EXPECT_EQ(kept.origin, PaletteOrigin::File);
    EXPECT_EQ(PaletteIn(kept), picture.palette);
    EXPECT_EQ(image::ReadImage(kept.data).indices, picture.indices);

    EncodeOptions options;
    options.keepFilePalette = false;
    const Encoded exact     = image::Encode(picture, Format::Rle8, options);
    EXPECT_EQ(exact.origin, PaletteOrigin::Exact);
    EXPECT_EQ(PaletteIn(exact), (Argbs{0xFF000002u, 0xFF000001u}));

    options.keepFilePalette = true;
    options.mostColours     = 3;  // too few for the file's palette, enough for the colours in use
    EXPECT_EQ(image::Encode(picture, Format::Rle8, options).origin, PaletteOrigin::Exact);
}

TEST(ImageEncode, HiddenColoursAreMergedWhenAskedOrWhereItHelps)
{
    const Picture picture = Of(4, {0x00000001u, 0x00000002u, 0xFF000003u, 0x00000001u});
    EXPECT_EQ(image::Encode(picture, Format::Rle8).origin, PaletteOrigin::Exact);
    EXPECT_TRUE(image::Encode(picture, Format::Rle8).IsLossless());

    EncodeOptions options;
    options.hidden       = Hidden::Merge;
    const Encoded merged = image::Encode(picture, Format::Rle8, options);
    EXPECT_EQ(merged.origin, PaletteOrigin::ExactMerged);
    EXPECT_EQ(PaletteIn(merged), (Argbs{0, 0xFF000003u}));
    EXPECT_EQ(merged.error.differing, 3U);
    EXPECT_EQ(merged.error.largestSeen, 0U);

    options.hidden      = Hidden::Keep;
    options.mostColours = 2;
    EXPECT_EQ(image::Encode(picture, Format::Rle8, options).data, merged.data);
    EXPECT_EQ(image::Encode(picture, Format::Rle8, options).origin, PaletteOrigin::ExactMerged);
}

TEST(ImageEncode, TooManyColoursAreQuantisedAndTheErrorIsTold)
{
    Argbs argb;
    for (std::uint32_t level = 0; level < 256; ++level)
    {
        argb.push_back(0xFF000000u | level << 8);
    }
    EncodeOptions options;
    options.mostColours   = 16;
    const Encoded encoded = image::Encode(Of(16, argb), Format::Rle8, options);
    EXPECT_EQ(encoded.origin, PaletteOrigin::Quantised);
    EXPECT_EQ(encoded.colours, 16U);
    EXPECT_EQ(PaletteIn(encoded).size(), 16U);
    const Picture decoded = image::Decode(image::FileBytes(encoded)).picture;
    EXPECT_EQ(encoded.error.sumSeen, image::Compare(Of(16, argb), decoded).sumSeen);
    EXPECT_GE(encoded.error.LargestSeenMilli(), 7000U);  // sixteen levels share an entry
    EXPECT_LE(encoded.error.LargestSeenMilli(), 10000U);

    options.dither         = Dither::FloydSteinberg;
    const Encoded dithered = image::Encode(Of(16, argb), Format::Rle8, options);
    EXPECT_EQ(PaletteIn(dithered), PaletteIn(encoded));
    EXPECT_NE(dithered.data, encoded.data);
}

TEST(ImageEncode, RawFormatsTellTheirError)
{
    const Encoded encoded = image::Encode(Of(2, {0xFF000007u, 0x80FFFFFFu}), Format::Rgb32);
    EXPECT_EQ(encoded.origin, PaletteOrigin::None);
    EXPECT_EQ(encoded.Pitch(), 8U);
    EXPECT_EQ(encoded.error.differing, 1U);
    EXPECT_EQ(encoded.error.largest[0], 127U);
    EXPECT_EQ(image::Encode(Of(2, {0xFF000007u, 0x80FFFFFFu}), Format::Argb32).error.differing, 0U);
}

TEST(ImageEncode, DitherReachesRgb565)
{
    EncodeOptions options;
    options.dither        = Dither::Ordered;
    const Picture picture = Of(8, Argbs(64, 0xFF040404u));
    EXPECT_NE(image::Encode(picture, Format::Rgb565, options).data, image::Encode(picture, Format::Rgb565).data);
}

TEST(ImageEncode, DecodesBothKindsOfFilesAndRefusesOthers)
{
    EXPECT_EQ(image::Decode(image::BuildRaw({7}, 1, 1, Format::A8)).format, Format::A8);
    EXPECT_EQ(image::Decode(image::BuildImage({7}, {0}, 1, 1, image::Unit::Bits16)).format, Format::Rle16);
    const Bytes          text{'h', 'e', 'l', 'l', 'o'};
    const image::Decoded decoded = image::Decode(text);
    EXPECT_FALSE(decoded);
    EXPECT_TRUE(decoded.picture.argb.empty());
}

// ---- there and back ------------------------------------------------------------------------------------------------

Picture RandomPicture(Dice& dice)
{
    enum
    {
        Anything,
        Few,
        Greys,
        Opaque,
        Rgb565,
        Hidden,
        Kinds
    };
    const auto          width  = 1 + dice.Below(dice.OneIn(20) ? 300 : 40);
    const auto          height = 1 + dice.Below(30);
    const unsigned      kind   = dice.Below(Kinds);
    const unsigned      repeat = dice.Of({1U, 2U, 6U, 40U, 700U});
    const unsigned      few    = dice.Of({1U, 2U, 16U, 256U});
    const std::uint32_t salt   = dice.Next32();
    Argbs               argb(std::size_t{width} * height);
    std::uint32_t       pixel = 0;
    for (std::uint32_t& to : argb)
    {
        if (&to == &argb.front() || dice.OneIn(repeat))
        {
            pixel = dice.NextHostileWord();
            switch (kind)
            {
            case Few: pixel = (pixel % few + 1) * (salt | 1); break;
            case Greys: pixel = 0xFF000000u | (pixel & 255) * 0x010101u; break;
            case Opaque: pixel |= 0xFF000000u; break;
            case Rgb565: pixel = image::ArgbFromRgb565(static_cast<std::uint16_t>(pixel)); break;
            case Hidden: pixel &= dice.OneIn(2) ? 0x00FFFFFFu : 0xFFFFFFFFu; break;
            default: break;
            }
        }
        to = pixel;
    }
    return Of(width, argb);
}

//! Bytes at a multiple of four, as the library wants them.
Kanvo_ImageFault LibraryOn(const Bytes& bytes, Format format)
{
    std::vector<std::uint32_t> words(bytes.size() / 4 + 1);
    std::copy(bytes.begin(), bytes.end(), reinterpret_cast<std::uint8_t*>(words.data()));
    return Kanvo_CheckImage(words.data(), bytes.size(), static_cast<BitmapType>(format)).eFault;
}

TEST(ImageEncode, TenThousandPicturesComeBackFromEveryFormatThatPromisesIt)
{
    support::Differences differences;
    const support::Seeds seeds(10000);
    std::size_t          lossless[7] = {};
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice          dice(seed);
        const Picture picture = RandomPicture(dice);
        for (const Format format : image::AllFormats())
        {
            const Encoded        encoded  = image::Encode(picture, format);
            const Bytes          bytes    = image::FileBytes(encoded);
            const image::Decoded decoded  = image::Decode(bytes);
            const bool           promised = image::IsLossless(picture, format);
            const bool           returned = decoded.picture.argb == picture.argb;
            const bool           fits = decoded && decoded.format == format && decoded.picture.width == picture.width &&
                              decoded.picture.height == picture.height && !decoded.endsEarly;
            const bool legal = !image::IsRle(format) || LibraryOn(bytes, format) == IMAGE_GOOD;
            if (!fits || !legal || promised != returned || promised != encoded.IsLossless())
            {
                differences.Note("seed %llu, %s: fits %d, legal %d, promised %d, returned %d",
                                 static_cast<unsigned long long>(seed), image::FormatName(format), fits, legal,
                                 promised, returned);
            }
            lossless[static_cast<std::size_t>(format)] += promised ? 1 : 0;
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
    for (const Format format : image::AllFormats())
    {
        EXPECT_GT(lossless[static_cast<std::size_t>(format)], seeds.count / 10) << image::FormatName(format);
    }
}

TEST(ImageEncode, TheChosenFormatIsTheSmallestThatComesBack)
{
    const support::Seeds seeds(500);
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice          dice(seed);
        const Picture picture  = RandomPicture(dice);
        const Format  chosen   = image::ChooseFormat(picture).format;
        std::size_t   smallest = SIZE_MAX;
        for (const Format format : image::AllFormats())
        {
            const Encoded encoded = image::Encode(picture, format);
            if (encoded.IsLossless())
            {
                smallest = std::min(smallest, image::FileBytes(encoded).size());
            }
        }
        const Encoded best = image::Encode(picture, chosen);
        ASSERT_TRUE(best.IsLossless()) << "seed " << seed;
        ASSERT_EQ(image::FileBytes(best).size(), smallest) << "seed " << seed;
    }
}

TEST(ImageEncode, QuantisedPicturesAreLegalToo)
{
    const support::Seeds seeds(300);
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice          dice(seed);
        const Picture picture = RandomPicture(dice);
        EncodeOptions options;
        options.mostColours   = 1 + dice.Below(12);
        options.dither        = dice.Of({Dither::None, Dither::Ordered, Dither::FloydSteinberg});
        const Format  format  = dice.OneIn(2) ? Format::Rle8 : Format::Rle16;
        const Encoded encoded = image::Encode(picture, format, options);
        ASSERT_EQ(LibraryOn(encoded.data, format), IMAGE_GOOD) << "seed " << seed;
        ASSERT_LE(encoded.colours, options.mostColours) << "seed " << seed;
        ASSERT_EQ(encoded.data, image::Encode(picture, format, options).data) << "seed " << seed;
    }
}

// ---- drawn ---------------------------------------------------------------------------------------------------------

constexpr Tov_UInt Backgrounds[] = {0xFF336699U, 0x80FFFFFFU, 0x00000000U};

//! Draws an RLE image over a background, weighted by alpha (BlitAlpha) or not (Blit).
Argbs Drawn(const Bytes& bytes, Tov_UInt background, Tov_UByte opacity, bool weighted)
{
    constexpr Tov_UByte Any = 255;
    Kanvo_Screen        screen(nullptr);
    Kanvo_BitmapRLE     image(&screen, bytes.data(), bytes.size());
    Kanvo_BitmapA8      map(&screen, 1, 1, &Any);  // must be given, and is ignored
    const Tov_UInt      width  = image.GetWidth();
    const Tov_UInt      height = image.GetHeight();
    Argbs               pixels(std::size_t{width} * height, background);
    Kanvo_BitmapARGB32  target(&screen, width, height, BBT_RAM, pixels.data());
    target.Lock();
    if (weighted)
    {
        target.BlitAlpha(&image, &map, width, height, 0, 0, 0, 0, 0, opacity);
    }
    else
    {
        target.Blit(&image, width, height, 0, 0, 0, 0, 0, opacity, 0);
    }
    target.Unlock(0, 0, 0, 0);
    return pixels;
}

//! What BlitAlpha is to do with the decoded picture: store what is opaque, leave out what is transparent, blend the rest.
Argbs Blended(const Picture& picture, Tov_UInt background, Tov_UByte opacity)
{
    Argbs pixels(picture.argb.size(), background);
    for (std::size_t at = 0; at < pixels.size(); ++at)
    {
        const Tov_UInt own    = picture.argb[at] >> 24;
        const Tov_UInt scaled = own * opacity;
        const auto     alpha  = static_cast<Tov_UByte>(opacity == 255 ? own : (scaled + (scaled >> 8) + 1) >> 8);
        const Tov_UInt colour = picture.argb[at] | 0xFF000000U;
        if (alpha == 255)
        {
            pixels[at] = colour;
        }
        else if (alpha != 0)
        {
            Kanvo_PixelARGB32_Access::BlendPixel(&pixels[at], colour, alpha);
        }
    }
    return pixels;
}

//! The decoded picture drawn by the blit of its own format.
Argbs Blitted(const Picture& picture, Tov_UInt background)
{
    Kanvo_Screen       screen(nullptr);
    Argbs              source = picture.argb;
    Argbs              pixels(source.size(), background);
    Kanvo_BitmapARGB32 image(&screen, picture.width, picture.height, BBT_RAM, source.data());
    Kanvo_BitmapARGB32 target(&screen, picture.width, picture.height, BBT_RAM, pixels.data());
    target.Lock();
    target.Blit(&image, picture.width, picture.height, 0, 0, 0, 0, 0, 255, 0);
    target.Unlock(0, 0, 0, 0);
    return pixels;
}

//! Whether a picture that went through an RLE format is drawn as its decoded form is.
bool IsDrawnAsDecoded(const Picture& picture, Format format, Tov_UInt background, Tov_UByte opacity)
{
    const Bytes   bytes   = image::FileBytes(image::Encode(picture, format));
    const Picture decoded = image::Decode(bytes).picture;
    const bool    opaque =
        std::all_of(decoded.argb.begin(), decoded.argb.end(), [](std::uint32_t pixel) { return pixel >> 24 == 255; });
    return Drawn(bytes, background, opacity, true) == Blended(decoded, background, opacity) &&
           (!opaque || Drawn(bytes, background, 255, false) == Blitted(decoded, background));
}

TEST(ImageEncode, TenThousandPicturesAreDrawnAsTheirDecodedFormIs)
{
    support::Differences differences;
    const support::Seeds seeds(10000);
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice          dice(seed);
        const Picture picture    = RandomPicture(dice);
        const Format  format     = dice.OneIn(2) ? Format::Rle8 : Format::Rle16;
        const auto    background = dice.Of({Backgrounds[0], Backgrounds[1], Backgrounds[2]});
        const auto    opacity    = dice.OneIn(2) ? Tov_UByte{255} : dice.NextByte();
        if (!IsDrawnAsDecoded(picture, format, background, opacity))
        {
            differences.Note("seed %llu", static_cast<unsigned long long>(seed));
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(ImageEncode, ThePicturesOfTheScenesAreDrawnAsTheirDecodedFormIs)
{
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(KANVO_SOURCE_DIR "/scenes/pictures"))
    {
        if (entry.path().extension() != ".png") continue;
        const png::LoadResult loaded = png::Load(entry.path().string());
        ASSERT_TRUE(loaded) << loaded.error;
        const Picture picture = Of(loaded.image.width, loaded.image.argb);
        for (const Format format : {Format::Rle8, Format::Rle16})
        {
            for (const Tov_UInt background : Backgrounds)
            {
                EXPECT_TRUE(IsDrawnAsDecoded(picture, format, background, 255)) << entry.path();
                EXPECT_TRUE(IsDrawnAsDecoded(picture, format, background, 100)) << entry.path();
            }
        }
        ++count;
    }
    EXPECT_GE(count, 10);
}

}  // namespace
