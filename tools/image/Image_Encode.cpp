// Image_Encode: see the header.
#include "Image_Encode.h"

#include <algorithm>
#include <utility>

namespace image
{
namespace
{

PaletteChoice ChoosePalette(const Picture& picture, std::size_t most, const EncodeOptions& options)
{
    if (options.keepFilePalette && picture.IsIndexed() && picture.palette.size() <= most)
    {
        return {{picture.palette, picture.indices}, PaletteOrigin::File};
    }
    if (std::optional<Indexed> exact = ExactPalette(picture.argb, most, options.hidden))
    {
        return {*std::move(exact), options.hidden == Hidden::Keep ? PaletteOrigin::Exact : PaletteOrigin::ExactMerged};
    }
    if (std::optional<Indexed> merged = ExactPalette(picture.argb, most, Hidden::Merge))
    {
        return {*std::move(merged), PaletteOrigin::ExactMerged};
    }
    PaletteChoice choice;
    choice.origin          = PaletteOrigin::Quantised;
    choice.indexed.palette = Quantise(picture.argb, most);
    choice.indexed.indices = MapToPalette(picture, choice.indexed.palette, options.dither);
    return choice;
}

}  // namespace

PaletteChoice MakeIndexed(const Picture& picture, std::size_t mostColours, const EncodeOptions& options)
{
    CheckPicture(picture);
    return ChoosePalette(picture, std::min(mostColours, options.mostColours), options);
}

Encoded Encode(const Picture& picture, Format format, const EncodeOptions& options)
{
    CheckPicture(picture);
    Encoded encoded;
    encoded.format = format;
    encoded.width  = picture.width;
    encoded.height = picture.height;
    if (!IsRle(format))
    {
        encoded.data  = EncodePixels(picture, format, options.dither);
        encoded.error = Compare(picture, DecodePixels(encoded.data, picture.width, picture.height, format));
        return encoded;
    }
    const PaletteChoice choice = MakeIndexed(picture, LongestPalette(UnitOf(format)), options);
    encoded.origin             = choice.origin;
    encoded.colours            = choice.indexed.palette.size();
    encoded.data               = BuildImage(choice.indexed, picture.width, picture.height, UnitOf(format));
    encoded.error              = Compare(picture.argb, ColoursOf(choice.indexed), picture.width);
    return encoded;
}

std::vector<std::uint8_t> FileBytes(const Encoded& encoded)
{
    return IsRle(encoded.format) ? encoded.data : BuildRaw(encoded.data, encoded.width, encoded.height, encoded.format);
}

Decoded Decode(const void* data, std::size_t size, std::uint32_t longestSide)
{
    Decoded decoded;
    if (KindOf(data, size) == FileKind::Raw)
    {
        const RawImage raw = ReadRaw(data, size, longestSide);
        decoded.format     = raw.header.format;
        decoded.fault      = raw.fault;
        if (raw)
        {
            decoded.picture = DecodePixels(raw.pixels, raw.header.width, raw.header.height, raw.header.format);
        }
        return decoded;
    }
    const StoredImage stored = ReadImage(data, size, longestSide);  // says what is wrong with anything else
    decoded.format           = stored.header.unit == Unit::Bits8 ? Format::Rle8 : Format::Rle16;
    decoded.fault            = stored.fault;
    decoded.endsEarly        = stored.endsEarly;
    if (stored)
    {
        decoded.picture = ToPicture(stored);
    }
    return decoded;
}

Decoded Decode(const std::vector<std::uint8_t>& data, std::uint32_t longestSide)
{
    return Decode(data.data(), data.size(), longestSide);
}

}  // namespace image
