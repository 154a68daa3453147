// Png_Writer: writes PNG files of the kinds a loader has to cope with: grey of 8 and 16 bits, palettes with
// transparency, RGB, RGBA, interlaced or not. Nothing about time or place goes into a file.
#ifndef PNG_WRITER_H
#define PNG_WRITER_H

#include <cstdint>
#include <string>
#include <vector>

namespace pictures
{

enum class Kind
{
    Grey8,
    Grey16,  //!< two bytes per sample, the high one first
    Rgb8,
    Rgba8,
    Palette8  //!< one index per pixel
};

struct Png
{
    int                       width  = 0;
    int                       height = 0;
    Kind                      kind   = Kind::Rgba8;
    std::vector<std::uint8_t> samples;             //!< row by row, without padding
    std::vector<std::uint8_t> palette;             //!< red, green, blue, alpha of each entry
    bool                      interlaced = false;  //!< Adam7
};

//! Ends the program with a message when the file cannot be written.
void Write(const std::string& path, const Png& png);

}  // namespace pictures

#endif
