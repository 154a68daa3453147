// Image_Picture: the picture that everything in this folder reads or makes, and small helpers for its colours.
//
// The folder is the core of kanvo-image, the offline image tool, as a library without dependencies:
//
//   Picture ── Trim, Bleed ──> Picture ── Palette, Dither ──> Indexed ── Rle ─────> stored image ── CSource ──> C text
//                                  └───── Formats ──────────────────────────────> pixels ──────────┘
//
// Everything is computed in integers and in a fixed order: the same input gives the same bytes on every machine.
// Wrong arguments (sizes that do not fit together, a palette too long) throw std::invalid_argument; wrong data, which a
// reader must expect, comes back as an error with a byte offset.
#ifndef IMAGE_PICTURE_H
#define IMAGE_PICTURE_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace image
{

//! Neither reader nor writer handles longer sides: 16.16 coordinates cannot name more.
constexpr std::uint32_t LongestSide = 32767;

using Index = std::uint16_t;  //!< of a palette entry; wide enough for both token units

//! Rows from the top, without padding. 0xAARRGGBB, straight alpha.
struct Picture
{
    std::uint32_t              width  = 0;
    std::uint32_t              height = 0;
    std::vector<std::uint32_t> argb;

    //! Of a file that has them, else empty: its colours in file order, and one index per pixel. They always agree with
    //! argb: whatever changes pixels drops them.
    std::vector<std::uint32_t> palette;
    std::vector<Index>         indices;

    bool IsIndexed() const { return !palette.empty(); }
};

//! The picture in terms of a palette.
struct Indexed
{
    std::vector<std::uint32_t> palette;
    std::vector<Index>         indices;
};

constexpr std::uint32_t Alpha(std::uint32_t argb)
{
    return argb >> 24;
}
constexpr std::uint32_t Red(std::uint32_t argb)
{
    return argb >> 16 & 255;
}
constexpr std::uint32_t Green(std::uint32_t argb)
{
    return argb >> 8 & 255;
}
constexpr std::uint32_t Blue(std::uint32_t argb)
{
    return argb & 255;
}
constexpr std::uint32_t Argb(std::uint32_t a, std::uint32_t r, std::uint32_t g, std::uint32_t b)
{
    return a << 24 | r << 16 | g << 8 | b;
}

//! Whether no pixel lets anything through.
bool IsOpaque(const std::vector<std::uint32_t>& argb);

//! The colours of an indexed picture, pixel by pixel. Every index must be inside the palette.
std::vector<std::uint32_t> ColoursOf(const Indexed& indexed);

//! Throws std::invalid_argument unless both sides are 1 .. LongestSide and there is a pixel for every place.
void CheckSize(std::uint32_t width, std::uint32_t height, std::size_t pixels);
//! The same for argb and, if there is a palette, for the indices, which must also be inside it.
void CheckPicture(const Picture& picture);

}  // namespace image

#endif
