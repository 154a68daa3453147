// Thumbnail: small versions of pictures for the page of `kanvo-image report`.
#ifndef THUMBNAIL_H
#define THUMBNAIL_H

#include <cstdint>

#include "Image_Picture.h"

namespace kanvo_image
{

//! The picture, made smaller where a side is longer than `longest`: every pixel is the mean of those it stands for.
image::Picture Thumbnail(const image::Picture& picture, std::uint32_t longest);

}  // namespace kanvo_image

#endif
