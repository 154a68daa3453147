// Reference_Rle: run-length-encoded images a second time: what a stored image means, what is wrong with one, and what
// drawing it does. Reads bytes one at a time, expands the whole image, and then asks of every pixel of the target which
// source pixel it shows. Shares nothing with the library; pictures and targets are those of Reference_Blit.h.
#ifndef REFERENCE_RLE_H
#define REFERENCE_RLE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Reference_Blit.h"

namespace reference
{

// ---- what an image means --------------------------------------------------------------------------------------------

//! An image expanded.
struct RlePicture
{
    static constexpr int UNDRAWN = -1;

    std::int64_t               width  = 0;
    std::int64_t               height = 0;
    std::vector<std::uint32_t> palette;
    std::vector<int>           indices;  // row by row; UNDRAWN behind an early end

    int IndexAt(std::int64_t x, std::int64_t y) const { return indices[static_cast<std::size_t>(y * width + x)]; }
};

//! Expands a stored image that holds all its pixels or ends early with an end token. unitBits: 8 or 16.
RlePicture ExpandRle(const std::uint8_t* bytes, int unitBits);

// ---- what drawing does ----------------------------------------------------------------------------------------------

//! How an entry composites. With both false the weight of the blend is not the palette entry's.
struct RleRule
{
    bool globalAlpha;    // scale the palette entry's alpha by the global one
    bool fromBlitAlpha;  // weigh by the palette entry's alpha
    int  alpha;          // global
};

//! What a palette entry makes of a pixel.
std::uint32_t ComposeRle(const RleRule& rule, std::uint32_t word, std::uint32_t entry);

//! Draws a source rectangle, each pixel a block of magX x magY, into target.picture.bytes. A rectangle that is not wholly
//! inside the image, and a factor of 0, draw nothing. Returns how many pixels of the target show one of the image.
std::int64_t DrawRle(const Target& target, const RlePicture& image, const Where& where, std::int64_t magX,
                     std::int64_t magY, const RleRule& rule);

//! What is left of a rectangle inside a picture of this size: where it begins stays, it only gets smaller.
Where CutToSize(Where where, std::int64_t width, std::int64_t height);

// ---- what is wrong with an image ------------------------------------------------------------------------------------

//! In the order in which they are looked for.
enum class RleFault
{
    Good,
    TooShort,
    Misaligned,
    NotKanvo,
    NotRle,
    UnknownVersion,
    WrongUnit,
    BadSize,
    BadPalette,
    BadStart,
    TokenCutOff,
    IndexTooLarge,
    TooManyPixels,
    NoEnd,
    EndsEarly
};

//! Looks at a stored image. unitBits: 8 or 16 to insist on, 0 for either. Whether it starts at a multiple of four is the
//! caller's to say.
RleFault JudgeRle(const std::uint8_t* bytes, std::size_t size, int unitBits, bool aligned);

}  // namespace reference

#endif
