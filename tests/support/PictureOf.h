// PictureOf: small pictures for the tests of the image tool.
#ifndef PICTUREOF_H
#define PICTUREOF_H

#include <cstdint>
#include <utility>
#include <vector>

#include "Image_Picture.h"

namespace support
{

//! Rows of width pixels each.
inline image::Picture Of(std::uint32_t width, std::vector<std::uint32_t> argb)
{
    image::Picture picture;
    picture.width  = width;
    picture.height = static_cast<std::uint32_t>(argb.size() / width);
    picture.argb   = std::move(argb);
    return picture;
}

}  // namespace support

#endif
