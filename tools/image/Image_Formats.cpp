// Image_Formats: see the header.
#include "Image_Formats.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>

#include "Image_Bytes.h"
#include "Image_Palette.h"

namespace image
{
namespace
{

struct Name
{
    Format      format;
    const char* text;
};
constexpr std::array<Name, 6> Names{{{Format::Argb32, "argb32"},
                                     {Format::Rgb32, "rgb32"},
                                     {Format::Rgb565, "rgb565"},
                                     {Format::A8, "a8"},
                                     {Format::Rle8, "rle8"},
                                     {Format::Rle16, "rle16"}}};

constexpr std::uint32_t Opaque = 0xFF000000u;

bool IsRawFormat(std::uint32_t number)
{
    return std::any_of(Names.begin(), Names.end(),
                       [=](const Name& name)
                       { return static_cast<std::uint32_t>(name.format) == number && !IsRle(name.format); });
}

std::uint32_t Brightness(std::uint32_t argb)
{
    return (299 * Red(argb) + 587 * Green(argb) + 114 * Blue(argb) + 500) / 1000;
}

//! What a raw pixel shows.
std::uint32_t ArgbOf(std::uint32_t pixel, Format format)
{
    switch (format)
    {
    case Format::Argb32: return pixel;
    case Format::Rgb32: return Opaque | pixel;
    case Format::Rgb565: return ArgbFromRgb565(static_cast<std::uint16_t>(pixel));
    default: return Opaque | pixel * 0x010101u;
    }
}

std::string Thousands(std::size_t number)
{
    std::string text = std::to_string(number);
    for (std::size_t place = text.size(); place > 3;)
    {
        place -= 3;
        text.insert(place, ",");
    }
    return text;
}

//! What is special about a picture that a format without loss can store.
std::string WhyLossless(const Picture& picture, Format format, std::size_t colours)
{
    switch (format)
    {
    case Format::Argb32: return IsOpaque(picture.argb) ? "stores every pixel as it is" : "keeps the alpha channel";
    case Format::Rgb32: return "the picture is opaque";
    case Format::Rgb565: return "the picture is opaque and every colour is one of RGB565";
    case Format::A8: return "the picture is opaque and grey";
    default: return colours == 1 ? "one colour" : Thousands(colours) + " colours";
    }
}

Fault CheckRaw(const Bytes& bytes, std::uint32_t longestSide, RawHeader& header)
{
    if (bytes.size < RawHeader::Size)
    {
        return {std::to_string(bytes.size) + " bytes are less than a header", bytes.size};
    }
    if (bytes.Word(0) != RawHeader::Kanvo)
    {
        return {"does not start with KNVO", 0};
    }
    if (bytes.Word(4) != RawHeader::Raw)
    {
        return {"second word is not \"RAW \"", 4};
    }
    if (!IsRawFormat(bytes.data[8]))
    {
        return {"unknown format " + std::to_string(bytes.data[8]), 8};
    }
    if (bytes.data[9] != RawHeader::Version)
    {
        return {"version " + std::to_string(bytes.data[9]) + ", not 1", 9};
    }
    header.format     = static_cast<Format>(bytes.data[8]);
    header.width      = bytes.Word(12);
    header.height     = bytes.Word(16);
    header.pitch      = bytes.Word(20);
    header.pixelStart = bytes.Word(24);
    for (const std::size_t offset : {std::size_t{12}, std::size_t{16}})
    {
        if (const std::uint32_t side = bytes.Word(offset); side == 0 || side > longestSide)
        {
            return {(offset == 12 ? "width " : "height ") + std::to_string(side) + ", not 1 to " +
                        std::to_string(longestSide),
                    offset};
        }
    }
    const std::uint32_t row = header.width * PixelBytes(header.format);
    if (header.pitch < row || header.pitch % PixelBytes(header.format) != 0)
    {
        return {"pitch " + std::to_string(header.pitch) + " for rows of " + std::to_string(row) + " bytes", 20};
    }
    if (header.pixelStart < RawHeader::Size || header.pixelStart % 4 != 0 || header.pixelStart > bytes.size)
    {
        return {"pixels start at " + std::to_string(header.pixelStart) +
                    ", inside the header, misaligned or beyond the data",
                24};
    }
    if (header.pixelStart + std::uint64_t{header.pitch} * (header.height - 1) + row > bytes.size)
    {
        return {"the data end before the last pixel", bytes.size};
    }
    return {};
}

}  // namespace

const std::vector<Format>& AllFormats()
{
    static const std::vector<Format> formats = []
    {
        std::vector<Format> all;
        for (const Name& name : Names)
        {
            all.push_back(name.format);
        }
        return all;
    }();
    return formats;
}

const char* FormatName(Format format)
{
    for (const Name& name : Names)
    {
        if (name.format == format)
        {
            return name.text;
        }
    }
    return "?";
}

std::optional<Format> FormatFromName(std::string_view text)
{
    for (const Name& name : Names)
    {
        if (name.text == text)
        {
            return name.format;
        }
    }
    return std::nullopt;
}

// ---- raw pixels ----------------------------------------------------------------------------------------------------

std::vector<std::uint8_t> EncodePixels(const Picture& picture, Format format, Dither dither)
{
    CheckPicture(picture);
    if (IsRle(format))
    {
        throw std::invalid_argument("raw pixels need a raw format");
    }
    std::vector<std::uint8_t> bytes;
    bytes.reserve(picture.argb.size() * PixelBytes(format));
    if (format == Format::Rgb565)
    {
        for (const std::uint16_t pixel : MapToRgb565(picture, dither))
        {
            Append(bytes, pixel, 2);
        }
        return bytes;
    }
    const bool opaque = IsOpaque(picture.argb);
    for (const std::uint32_t argb : picture.argb)
    {
        switch (format)
        {
        case Format::Argb32: Append(bytes, argb, 4); break;
        case Format::Rgb32: Append(bytes, Opaque | argb, 4); break;
        default: Append(bytes, opaque ? Brightness(argb) : Alpha(argb), 1); break;
        }
    }
    return bytes;
}

Picture DecodePixels(const std::vector<std::uint8_t>& pixels, std::uint32_t width, std::uint32_t height, Format format)
{
    const std::uint32_t pixelBytes = PixelBytes(format);
    if (pixelBytes == 0 || pixels.size() % pixelBytes != 0)
    {
        throw std::invalid_argument("raw pixels need a raw format and whole pixels");
    }
    CheckSize(width, height, pixels.size() / pixelBytes);
    Picture picture;
    picture.width  = width;
    picture.height = height;
    picture.argb.reserve(pixels.size() / pixelBytes);
    for (std::size_t offset = 0; offset < pixels.size(); offset += pixelBytes)
    {
        std::uint32_t pixel = 0;
        for (std::uint32_t byte = 0; byte < pixelBytes; ++byte)
        {
            pixel |= std::uint32_t{pixels[offset + byte]} << (8 * byte);
        }
        picture.argb.push_back(ArgbOf(pixel, format));
    }
    return picture;
}

// ---- the choice ----------------------------------------------------------------------------------------------------

bool IsLossless(const Picture& picture, Format format)
{
    const auto allAre = [&](const auto& property)
    { return std::all_of(picture.argb.begin(), picture.argb.end(), property); };
    switch (format)
    {
    case Format::Argb32: return true;
    case Format::Rgb32: return IsOpaque(picture.argb);
    case Format::Rgb565: return allAre([](std::uint32_t argb) { return ArgbFromRgb565(Rgb565From(argb)) == argb; });
    case Format::A8: return allAre([](std::uint32_t argb) { return argb == (Opaque | Blue(argb) * 0x010101u); });
    default: return ExactPalette(picture.argb, LongestPalette(UnitOf(format)), Hidden::Keep).has_value();
    }
}

std::vector<Candidate> Candidates(const Picture& picture)
{
    CheckPicture(picture);
    const std::optional<Indexed> exact = ExactPalette(picture.argb, LongestPalette(Unit::Bits16), Hidden::Keep);
    std::vector<Candidate>       candidates;
    for (const Format format : AllFormats())
    {
        Candidate candidate{format, false, 0, 0};
        if (!IsRle(format))
        {
            candidate.lossless = IsLossless(picture, format);
            candidate.bytes    = RawHeader::Size + picture.argb.size() * PixelBytes(format);
        }
        else if (exact && exact->palette.size() <= LongestPalette(UnitOf(format)))
        {
            candidate.lossless = true;
            candidate.bytes    = StoredSize(*exact, UnitOf(format));
            candidate.colours  = exact->palette.size();
        }
        candidates.push_back(candidate);
    }
    return candidates;
}

Choice ChooseFormat(const Picture& picture)
{
    constexpr Format simplestFirst[] = {Format::Rgb32, Format::Argb32, Format::Rgb565,
                                        Format::A8,    Format::Rle8,   Format::Rle16};
    Choice           choice;
    choice.candidates      = Candidates(picture);
    const Candidate* best  = nullptr;
    const Candidate* other = nullptr;  // the second best
    for (const Format format : simplestFirst)
    {
        const auto candidate = std::find_if(choice.candidates.begin(), choice.candidates.end(),
                                            [=](const Candidate& one) { return one.format == format; });
        if (!candidate->lossless)
        {
            continue;
        }
        if (best == nullptr || candidate->bytes < best->bytes)
        {
            other = best;
            best  = &*candidate;
        }
        else if (other == nullptr || candidate->bytes < other->bytes)
        {
            other = &*candidate;
        }
    }
    choice.format = best->format;
    choice.reason = std::string(FormatName(best->format)) + ": " + WhyLossless(picture, best->format, best->colours) +
                    ", " + Thousands(best->bytes) + " bytes; ";
    choice.reason += other == nullptr ? "no other format is without loss"
                                      : "next is " + std::string(FormatName(other->format)) + " with " +
                                            Thousands(other->bytes) + " bytes";
    return choice;
}

// ---- files of raw pixels -------------------------------------------------------------------------------------------

std::vector<std::uint8_t> BuildRaw(const std::vector<std::uint8_t>& pixels, std::uint32_t width, std::uint32_t height,
                                   Format format)
{
    const std::uint32_t pixelBytes = PixelBytes(format);
    if (pixelBytes == 0 || pixels.size() % pixelBytes != 0)
    {
        throw std::invalid_argument("raw pixels need a raw format and whole pixels");
    }
    CheckSize(width, height, pixels.size() / pixelBytes);
    std::vector<std::uint8_t> bytes;
    bytes.reserve(RawHeader::Size + pixels.size());
    Append(bytes, RawHeader::Kanvo, 4);
    Append(bytes, RawHeader::Raw, 4);
    Append(bytes, static_cast<std::uint32_t>(format), 1);
    Append(bytes, RawHeader::Version, 1);
    Append(bytes, 0, 2);
    Append(bytes, width, 4);
    Append(bytes, height, 4);
    Append(bytes, width * pixelBytes, 4);
    Append(bytes, static_cast<std::uint32_t>(RawHeader::Size), 4);
    Append(bytes, 0, 4);
    bytes.insert(bytes.end(), pixels.begin(), pixels.end());
    return bytes;
}

RawImage ReadRaw(const void* data, std::size_t size, std::uint32_t longestSide)
{
    const Bytes bytes{static_cast<const std::uint8_t*>(data), size};
    RawImage    image;
    image.fault = CheckRaw(bytes, longestSide, image.header);
    if (!image.fault)
    {
        const RawHeader&  header = image.header;
        const std::size_t row    = std::size_t{header.width} * PixelBytes(header.format);
        image.pixels.reserve(row * header.height);
        for (std::size_t y = 0; y < header.height; ++y)
        {
            const std::uint8_t* const from = bytes.data + header.pixelStart + y * header.pitch;
            image.pixels.insert(image.pixels.end(), from, from + row);
        }
    }
    return image;
}

RawImage ReadRaw(const std::vector<std::uint8_t>& data, std::uint32_t longestSide)
{
    return ReadRaw(data.data(), data.size(), longestSide);
}

FileKind KindOf(const void* data, std::size_t size)
{
    const Bytes bytes{static_cast<const std::uint8_t*>(data), size};
    if (size < 8 || bytes.Word(0) != Header::Kanvo)
    {
        return FileKind::Unknown;
    }
    return bytes.Word(4) == Header::Rle      ? FileKind::Rle
           : bytes.Word(4) == RawHeader::Raw ? FileKind::Raw
                                             : FileKind::Unknown;
}

}  // namespace image
