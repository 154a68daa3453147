// Image_Formats: the stored formats by name, pixels in the raw ones and back, the choice of the smallest lossless one,
// and the container that makes a file of raw pixels describe itself.
//
//   argb32  4 bytes a pixel, 0xAARRGGBB
//   rgb32   4 bytes a pixel, 0xFFRRGGBB: blits at less than full opacity read the top byte as coverage
//   rgb565  2 bytes a pixel, bits 15-11 red, 10-5 green, 4-0 blue
//   a8      1 byte a pixel: coverage for a colour, or, drawn as a picture, an opaque grey of that level
//   rle8    palette of up to 256 colours and run-length tokens of bytes (Image_Rle)
//   rle16   palette of up to 65,536 colours and run-length tokens of 16-bit words
//
// Pixels are little-endian, rows without padding.
#ifndef IMAGE_FORMATS_H
#define IMAGE_FORMATS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Image_Dither.h"
#include "Image_Picture.h"
#include "Image_Rle.h"

namespace image
{

//! The numbers are those of the library's BitmapType.
enum class Format : std::uint8_t
{
    Rgb32  = 1,
    Rle8   = 2,
    Rle16  = 3,
    Argb32 = 4,
    A8     = 5,
    Rgb565 = 6
};

//! All of them, in the order in which tables list them: argb32, rgb32, rgb565, a8, rle8, rle16.
const std::vector<Format>& AllFormats();

//! "rle8" and so on; nothing for another word.
const char*           FormatName(Format format);
std::optional<Format> FormatFromName(std::string_view name);

constexpr bool IsRle(Format format)
{
    return format == Format::Rle8 || format == Format::Rle16;
}
//! Of an RLE format.
constexpr Unit UnitOf(Format format)
{
    return format == Format::Rle8 ? Unit::Bits8 : Unit::Bits16;
}
//! Bytes of one raw pixel: 4, 2 or 1; 0 for the RLE formats.
constexpr std::uint32_t PixelBytes(Format format)
{
    return IsRle(format) ? 0 : format == Format::A8 ? 1 : format == Format::Rgb565 ? 2 : 4;
}

// ---- raw pixels ----------------------------------------------------------------------------------------------------

//! width * height * PixelBytes bytes. Only rgb565 looks at dither. a8 takes the alpha of a picture that has some, else
//! its brightness (299 r + 587 g + 114 b + 500) / 1000; rgb32 and rgb565 take the colours also of transparent pixels.
std::vector<std::uint8_t> EncodePixels(const Picture& picture, Format format, Dither dither = Dither::None);

//! What the library shows for them: rgb32 with a top byte of 255, a8 as opaque grey. The bytes must be
//! width * height * PixelBytes.
Picture DecodePixels(const std::vector<std::uint8_t>& pixels, std::uint32_t width, std::uint32_t height, Format format);

// ---- the choice ----------------------------------------------------------------------------------------------------

//! Whether decoding gives back every pixel, colours of transparent pixels included. argb32: always. rgb32: opaque
//! pictures. rgb565: opaque pictures whose colours are all among its 65,536. a8: opaque grey pictures, drawn as
//! pictures. rle8, rle16: at most 256 or 65,536 colours.
bool IsLossless(const Picture& picture, Format format);

struct Candidate
{
    Format      format   = Format::Argb32;
    bool        lossless = false;
    std::size_t bytes    = 0;  //!< of the stored file, containers included; of an RLE format only when lossless
    std::size_t colours  = 0;  //!< of an RLE format when lossless: palette entries
};

//! The size in every format, in the order of AllFormats.
std::vector<Candidate> Candidates(const Picture& picture);

struct Choice
{
    Format                 format = Format::Argb32;
    std::string            reason;  //!< one sentence: "rle8: 12 colours, 1,204 bytes; next is rle16 with 2,340 bytes"
    std::vector<Candidate> candidates;
};

//! The lossless format with the smallest file. Equal sizes: the first of rgb32, argb32, rgb565, a8, rle8, rle16.
Choice ChooseFormat(const Picture& picture);

// ---- files of raw pixels -------------------------------------------------------------------------------------------

//! A container around raw pixels, little-endian, in the manner of the RLE header:
//!
//!   offset  bytes
//!        0  4  "KNVO"
//!        4  4  "RAW "
//!        8  1  format: 1 rgb32, 4 argb32, 5 a8, 6 rgb565
//!        9  1  version, 1
//!       10  2  0
//!       12  4  width,  1 .. 32767
//!       16  4  height, 1 .. 32767
//!       20  4  pitch, bytes from one row to the next: a multiple of the pixel's bytes, at least a row of pixels
//!       24  4  offset of the first pixel from the start: 32 or more, a multiple of 4
//!       28  4  0
//!
//! The writer puts the pixels at offset 32 without padding between rows. The last row needs no padding behind it.
struct RawHeader
{
    static constexpr std::size_t   Size    = 32;
    static constexpr std::uint32_t Kanvo   = Header::Kanvo;
    static constexpr std::uint32_t Raw     = 0x20574152u;  //!< second word: "RAW "
    static constexpr std::uint8_t  Version = 1;

    Format        format     = Format::Argb32;
    std::uint32_t width      = 0;
    std::uint32_t height     = 0;
    std::uint32_t pitch      = 0;
    std::uint32_t pixelStart = 0;
};

//! Header and pixels. pixels: from EncodePixels.
std::vector<std::uint8_t> BuildRaw(const std::vector<std::uint8_t>& pixels, std::uint32_t width, std::uint32_t height,
                                   Format format);

struct RawImage
{
    RawHeader                 header;
    std::vector<std::uint8_t> pixels;  //!< rows without padding
    Fault                     fault;

    explicit operator bool() const { return !fault; }
};

//! Reads any bytes; those behind the last pixel are not looked at.
RawImage ReadRaw(const void* data, std::size_t size, std::uint32_t longestSide = LongestSide);
RawImage ReadRaw(const std::vector<std::uint8_t>& data, std::uint32_t longestSide = LongestSide);

//! What a file claims to be by its first two words.
enum class FileKind
{
    Unknown,
    Rle,
    Raw
};
FileKind KindOf(const void* data, std::size_t size);

}  // namespace image

#endif
