// Image_Dither: maps pictures to fewer colours: to the entries of a palette, or to the 65,536 colours of RGB565.
// Without dithering every pixel gets its nearest colour; with it, neighbours make up for each other's errors.
//
// Errors are carried in premultiplied form (see Point): what is preserved on average is the picture as it is drawn,
// over any background. Fully transparent pixels neither take nor give errors and stay fully transparent, opaque ones
// stay opaque, as long as the palette has such entries.
#ifndef IMAGE_DITHER_H
#define IMAGE_DITHER_H

#include <cstdint>
#include <vector>

#include "Image_Picture.h"

namespace image
{

enum class Dither
{
    None,
    Ordered,        //!< a fixed 8 x 8 pattern: calm in animations, and runs stay short but regular
    FloydSteinberg  //!< error diffusion, rows in alternating directions: the finest gradients
};

//! An index per pixel.
//! Ordered: the colours of an 8 x 8 block add up to the wanted one to within 1/64 of the palette's gaps there.
std::vector<Index> MapToPalette(const Picture& picture, const std::vector<std::uint32_t>& palette, Dither dither);

//! A 16-bit pixel, bits 15-11 red, 10-5 green, 4-0 blue, per pixel; alpha is dropped. Nearest in each channel, the
//! darker one when two are equally near.
std::vector<std::uint16_t> MapToRgb565(const Picture& picture, Dither dither);

//! The nearest RGB565 pixel, and the opaque colour that a pixel shows: the upper bits repeated below.
std::uint16_t Rgb565From(std::uint32_t argb);
std::uint32_t ArgbFromRgb565(std::uint16_t pixel);

//! The threshold of an ordered pattern: each of 0 .. 63 once in every 8 x 8 block, neighbours far apart.
std::uint32_t OrderedThreshold(std::uint32_t x, std::uint32_t y);

}  // namespace image

#endif
