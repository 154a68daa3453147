// Image_Trim: cuts off what is fully transparent all around.
#ifndef IMAGE_TRIM_H
#define IMAGE_TRIM_H

#include <cstdint>

#include "Image_Picture.h"

namespace image
{

struct Trimmed
{
    Picture       picture;  //!< palette and indices are kept
    std::uint32_t x = 0;    //!< its upper left pixel in the picture it was cut from
    std::uint32_t y = 0;
};

//! The smallest rectangle with all pixels of alpha > 0. Of a picture without any, the upper left pixel remains: there
//! are no empty images.
Trimmed Trim(const Picture& picture);

}  // namespace image

#endif
