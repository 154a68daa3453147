// Encoded_Text: what encode and report say of an encoded picture.
#ifndef ENCODED_TEXT_H
#define ENCODED_TEXT_H

#include <cstdint>
#include <string>

#include "Image_Encode.h"

namespace kanvo_image
{

//! The bytes of its file, without making it.
std::uint64_t FileSize(const image::Encoded& encoded);

//! What the picture would take as argb32, the measure of all others.
constexpr std::uint64_t Argb32Size(std::uint64_t pixels)
{
    return image::RawHeader::Size + 4 * pixels;
}

//! How faithful it is: "lossless", or the figures of what is lost.
std::string FidelityText(const image::Encoded& encoded);

//! How its palette came about; empty for a format that has none.
std::string PaletteText(const image::Encoded& encoded);

}  // namespace kanvo_image

#endif
