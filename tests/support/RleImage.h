// RleImage: stored run-length-encoded images put together by hand, byte by byte, and streams thrown at random.
#ifndef RLEIMAGE_H
#define RLEIMAGE_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Dice.h"

namespace support
{

//! A stored image in parts.
struct RleImage
{
    int                        unitBits = 8;
    std::uint32_t              width    = 0;
    std::uint32_t              height   = 0;
    std::vector<std::uint32_t> palette;
    std::vector<unsigned>      units;         // the tokens, unit by unit
    std::size_t                gap      = 0;  // bytes between the palette and the tokens
    std::size_t                trailing = 0;  // bytes behind the tokens
    bool                       opaque   = false;

    std::size_t TokenStart() const { return 40 + 4 * palette.size() + gap; }
    std::size_t UnitBytes() const { return static_cast<std::size_t>(unitBits / 8); }
    std::size_t OffsetOf(std::size_t unit) const { return TokenStart() + unit * UnitBytes(); }

    //! Makes the size a multiple of four, so that an aligned image can end flush against a fence.
    void FillGap();

    std::vector<std::uint8_t> Bytes() const;
};

//! Writes a number into stored bytes, lowest byte first.
void Store(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint32_t value, std::size_t count = 4);

//! Tokens for exactly this many pixels, without an end token: runs and literals of all lengths, from one pixel to
//! as many as fit, cut where the pixels are complete.
std::vector<unsigned> ThrowTokens(Dice& dice, int unitBits, std::uint32_t pixels, unsigned colors);

//! Colours, a good part of them opaque, fully transparent, and half way.
std::vector<std::uint32_t> ThrowPalette(Dice& dice, unsigned colors);

}  // namespace support

#endif
