// Image_Encode: a picture in any format with one call. Puts Image_Palette, Image_Dither, Image_Rle and Image_Formats
// together the way `kanvo-image encode` wants them.
#ifndef IMAGE_ENCODE_H
#define IMAGE_ENCODE_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Image_Difference.h"
#include "Image_Dither.h"
#include "Image_Formats.h"
#include "Image_Palette.h"
#include "Image_Picture.h"

namespace image
{

struct EncodeOptions
{
    std::size_t mostColours     = 65536;  //!< of an RLE palette; the format's own limit also holds
    bool        keepFilePalette = true;   //!< an indexed picture keeps its palette as it is, if it is not too long
    Hidden      hidden          = Hidden::Keep;  //!< Keep gives way where merging makes the colours fit
    Dither      dither          = Dither::None;  //!< where colours are lost
};

//! How the palette came about.
enum class PaletteOrigin
{
    None,         //!< a raw format
    File,         //!< the file's own, in its order, with entries nobody uses
    Exact,        //!< every colour of the picture
    ExactMerged,  //!< every visible colour; hidden ones became 0x00000000
    Quantised     //!< fewer colours than the picture
};

struct Encoded
{
    Format                    format = Format::Argb32;
    std::uint32_t             width  = 0;
    std::uint32_t             height = 0;
    std::vector<std::uint8_t> data;  //!< for C sources: the stored image of an RLE format, the pixels of a raw one
    PaletteOrigin             origin  = PaletteOrigin::None;
    std::size_t               colours = 0;  //!< entries in the palette
    Difference                error;        //!< between the picture and what the data show

    //! Bytes from one row to the next of a raw format, else 0.
    std::uint32_t Pitch() const { return width * PixelBytes(format); }
    bool          IsLossless() const { return error.IsNone(); }
};

Encoded Encode(const Picture& picture, Format format, const EncodeOptions& options = {});

//! The bytes for a file: data, in the container of Image_Formats if it is a raw format.
std::vector<std::uint8_t> FileBytes(const Encoded& encoded);

//! A file of either kind taken apart into the picture it shows.
struct Decoded
{
    Format  format = Format::Argb32;
    Picture picture;
    bool    endsEarly = false;  //!< an RLE image that leaves pixels out; they are 0x00000000
    Fault   fault;

    explicit operator bool() const { return !fault; }
};
Decoded Decode(const void* data, std::size_t size, std::uint32_t longestSide = LongestSide);
Decoded Decode(const std::vector<std::uint8_t>& data, std::uint32_t longestSide = LongestSide);

//! The part of Encode before the tokens: palette and indices.
struct PaletteChoice
{
    Indexed       indexed;
    PaletteOrigin origin = PaletteOrigin::None;
};
PaletteChoice MakeIndexed(const Picture& picture, std::size_t mostColours, const EncodeOptions& options);

}  // namespace image

#endif
