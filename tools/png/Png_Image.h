// Png_Image: PNG files in and out, as rows of straight-alpha ARGB words.
// Used by the gallery, the image tool and the tests; the only place that talks to libpng. Knows nothing of the drawing
// library: Png_Bitmap turns an Image into its source bitmaps.
//
// Nothing here throws on bad input and nothing is printed: a failure comes back as one line, "file: reason".
#ifndef PNG_IMAGE_H
#define PNG_IMAGE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace png
{

//! Larger pictures are refused before any memory is asked for: 8192 x 8192, which is 64 Mpixel.
constexpr std::uint32_t MaxSide = 8192;

struct Image
{
    std::uint32_t              width  = 0;
    std::uint32_t              height = 0;
    std::vector<std::uint32_t> argb;              //!< 0xAARRGGBB, straight alpha, row by row without padding
    bool                       hasAlpha = false;  //!< at least one pixel is not opaque

    //! Filled for an indexed file only: its colours in file order, transparency included, and one index per pixel.
    //! Every index is below the number of colours.
    std::vector<std::uint32_t> palette;
    std::vector<std::uint8_t>  indices;

    bool IsIndexed() const { return !palette.empty(); }
};

//! Either a picture or the reason why there is none.
struct LoadResult
{
    Image       image;
    std::string error;  //!< empty, or one line "file: reason"

    explicit operator bool() const { return error.empty(); }
};

//! Reads any PNG: all colour types and depths, palettes, transparent colours, interlacing. Samples of 16 bits become
//! round(v * 255 / 65535), of fewer than 8 bits v * 255 / (2^bits - 1). Gamma and colour profiles are not applied.
//! Strict: a damaged or missing chunk is an error, also behind the pixels.
LoadResult Load(const std::string& path);

//! The same from memory; name stands for the file in the error line.
LoadResult Decode(const void* data, std::size_t size, const std::string& name);

//! Writes RGBA, or RGB without keepAlpha, 8 bits each. pitchBytes leads from one row to the next.
//! Equal pixels give equal bytes. The file appears complete or not at all: a neighbour is written and renamed.
//! Returns an empty text, or the line "file: reason"; then a file that was there before is untouched.
[[nodiscard]] std::string Save(const std::string& path, const std::uint32_t* argb, std::uint32_t width,
                               std::uint32_t height, std::size_t pitchBytes, bool keepAlpha);

}  // namespace png

#endif
