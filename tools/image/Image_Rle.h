// Image_Rle: run-length encoding of indices, the stored image around it, and the way back.
// Used by kanvo-image; Image_Palette makes the indices, Image_Formats compares the sizes. The reader is independent of
// the drawing library and safe on any input.
//
// A stored image, little-endian: a header of 40 bytes, the palette (one ARGB word per entry), the tokens. The tokens'
// unit is one byte or a 16-bit word:
//
//     n, v               n pixels of palette entry v            (n not 0)
//     0, n, p1 ... pn    n pixels, one palette entry each       (n not 0)
//     0, 0               end of the image
//
// One stream covers the image row by row from the top; a token may run on into the next row.
#ifndef IMAGE_RLE_H
#define IMAGE_RLE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Image_Picture.h"

namespace image
{

enum class Unit : std::uint8_t
{
    Bits8  = 8,
    Bits16 = 16
};

constexpr std::uint32_t BytesOf(Unit unit)
{
    return static_cast<std::uint32_t>(unit) / 8;
}
//! The longest run or literal: 255 or 65,535 pixels.
constexpr std::uint32_t LongestToken(Unit unit)
{
    return unit == Unit::Bits8 ? 255 : 65535;
}
//! The longest palette: 256 or 65,536 entries.
constexpr std::size_t LongestPalette(Unit unit)
{
    return std::size_t{LongestToken(unit)} + 1;
}

//! The tokens of a row of indices, the end token included. Of all encodings with tokens up to longestToken pixels this
//! is one with the fewest units, and of those one with the fewest tokens; equal input gives equal tokens.
//!
//! Never more than count + 2 * ceil(count / longestToken) + 2 units.
//!
//! Time and memory are linear (one number of two bytes per pixel besides input and result).
//! longestToken: 1 .. 65,535. Every index and count is one number of the result, whatever the unit.
std::vector<std::uint16_t> EncodeTokens(const std::vector<Index>& indices, std::uint32_t longestToken);

//! The number of units of EncodeTokens, end token included.
std::size_t CountUnits(const std::vector<Index>& indices, Unit unit);

//! The stored image, ready to be written to a file: header, palette, padding up to the tokens' alignment, tokens.
//! Sides 1 .. LongestSide; 1 .. LongestPalette entries; width * height indices, all of them inside the palette.
std::vector<std::uint8_t> BuildImage(const std::vector<std::uint32_t>& palette, const std::vector<Index>& indices,
                                     std::uint32_t width, std::uint32_t height, Unit unit);
std::vector<std::uint8_t> BuildImage(const Indexed& indexed, std::uint32_t width, std::uint32_t height, Unit unit);

//! Bytes of what BuildImage would return.
std::size_t StoredSize(const Indexed& indexed, Unit unit);

//! The fields of a stored image's first 40 bytes that have a meaning.
struct Header
{
    static constexpr std::size_t   Size    = 40;
    static constexpr std::uint32_t Kanvo   = 0x4F564E4Bu;  //!< first word: "KNVO"
    static constexpr std::uint32_t Rle     = 0x20454C52u;  //!< second word: "RLE "
    static constexpr std::uint8_t  Version = 1;

    Unit          unit         = Unit::Bits8;
    std::uint8_t  version      = Version;
    bool          opaqueOnly   = false;  //!< says that every palette entry is opaque
    std::uint8_t  alphaBits    = 0;      //!< bits per channel of the artwork; no alpha: 0
    std::uint8_t  redBits      = 8;
    std::uint8_t  greenBits    = 8;
    std::uint8_t  blueBits     = 8;
    std::uint32_t width        = 0;
    std::uint32_t height       = 0;
    std::uint32_t paletteCount = 0;
    std::uint32_t tokenStart   = 0;  //!< bytes from the start of the header to the first token
};

//! What is wrong with data, and at which byte from its start. Good data: no message.
struct Fault
{
    std::string message;
    std::size_t offset = 0;

    explicit operator bool() const { return !message.empty(); }
};

//! How a stored image's tokens look.
struct TokenStatistics
{
    //! Number of tokens with 1, 2, 3-4, 5-8, 9-16 ... 32,769-65,536 pixels.
    static constexpr std::size_t Classes = 17;

    std::uint64_t runs                      = 0;
    std::uint64_t literals                  = 0;
    std::uint64_t runPixels                 = 0;
    std::uint64_t literalPixels             = 0;
    std::uint64_t runsByLength[Classes]     = {};
    std::uint64_t literalsByLength[Classes] = {};
    std::uint32_t longestRun                = 0;
    std::uint32_t longestLiteral            = 0;
    std::uint64_t units                     = 0;  //!< of all tokens, the end token included

    //! The row that makes a decoder read the most units, and how many: a run counts 2 in every row it reaches into, a
    //! literal 2 and its pixels there. The first such row.
    std::uint32_t worstRow      = 0;
    std::uint64_t worstRowUnits = 0;

    std::size_t usedEntries = 0;  //!< palette entries that some pixel has
};

//! Lengths in class c: FirstOfClass(c) .. LastOfClass(c).
constexpr std::uint32_t LastOfClass(std::size_t lengthClass)
{
    return std::uint32_t{1} << lengthClass;
}
constexpr std::uint32_t FirstOfClass(std::size_t lengthClass)
{
    return lengthClass == 0 ? 1 : LastOfClass(lengthClass - 1) + 1;
}

//! A stored image taken apart. With a fault only the fields read up to there mean something.
struct StoredImage
{
    Header                     header;
    std::vector<std::uint32_t> palette;
    std::vector<Index>         indices;  //!< fewer than width * height when the image ends early
    TokenStatistics            tokens;
    std::size_t                bytes     = 0;      //!< up to and with the end token
    bool                       endsEarly = false;  //!< a weakness, not a fault: the remaining pixels are not drawn
    Fault                      fault;

    explicit operator bool() const { return !fault; }
};

//! Reads any bytes. Accepts exactly what the library's own check accepts (at any alignment in memory), early ends
//! included; bytes behind the end token are not looked at. Sides beyond longestSide are a fault: a few bytes of runs
//! can stand for a very large picture, so who has a limit states it here.
StoredImage ReadImage(const void* data, std::size_t size, std::uint32_t longestSide = LongestSide);
StoredImage ReadImage(const std::vector<std::uint8_t>& data, std::uint32_t longestSide = LongestSide);

//! The picture a faultless stored image shows. Pixels that an early end leaves out become 0x00000000; such a picture
//! has no indices.
Picture ToPicture(const StoredImage& stored);

}  // namespace image

#endif
