// Picture_Files: pictures in files of either kind, PNG and stored images. Stands between Program_Files, the PNG reader
// and the core of the tool, and holds the limits. Failures name file, reason and, in stored images, the byte.
#ifndef PICTURE_FILES_H
#define PICTURE_FILES_H

#include <string>

#include "Image_Formats.h"
#include "Image_Picture.h"
#include "Program_Files.h"

namespace kanvo_image
{

//! The message of a fault in a stored image.
std::string FaultText(const std::string& path, const std::string& message, std::size_t offset);

//! Pictures and stored images with longer sides are refused, before a few bytes of them ask for gigabytes.
constexpr std::uint32_t LongestSide = 8192;

bool IsPng(const Bytes& bytes);

//! A PNG file, or standard input for "-".
image::Picture LoadPng(const std::string& path);
image::Picture DecodePng(const std::string& path, const Bytes& bytes);

//! A file of any kind and what it turned out to be.
struct AnyPicture
{
    image::Picture picture;
    std::string    kind;  //!< "png", "rle8" and so on
};

//! Says so when an image ends early.
AnyPicture LoadAny(const std::string& path);

//! Without an alpha channel for opaque pictures.
void  SavePng(const std::string& path, const image::Picture& picture);
Bytes EncodePng(const image::Picture& picture);

}  // namespace kanvo_image

#endif
