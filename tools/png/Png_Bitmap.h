// Png_Bitmap: turns a loaded picture into a source bitmap of the library. Fed by Png_Image.
#ifndef PNG_BITMAP_H
#define PNG_BITMAP_H

#include <memory>

#include "Kanvo.h"
#include "Png_Image.h"

namespace png
{

//! A bitmap of the format, holding the picture; null for a format without such a conversion and when there is no memory.
//! screen must outlive it.
//!
//!   BM_ARGB32  the pixels as they are
//!   BM_RGB32   the colours, also of transparent pixels, with a top byte of 255: blends at less than full opacity read
//!              that byte as coverage
//!   BM_RGB565  the colours with their low bits cut off
//!   BM_ALPHA8  the alpha of a picture that has some, else its brightness (see Luminance)
std::unique_ptr<Kanvo_Bitmap> MakeBitmap(const Image& image, BitmapType format, Kanvo_Screen& screen);

//! The brightness of a colour, alpha aside: (299 r + 587 g + 114 b + 500) / 1000, so white is 255 and grey stays itself.
constexpr std::uint8_t Luminance(std::uint32_t argb)
{
    const std::uint32_t sum = 299 * (argb >> 16 & 255) + 587 * (argb >> 8 & 255) + 114 * (argb & 255);
    return static_cast<std::uint8_t>((sum + 500) / 1000);
}

}  // namespace png

#endif
