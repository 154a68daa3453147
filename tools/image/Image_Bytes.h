// Image_Bytes: little-endian numbers in and out of byte arrays, for the files of this folder.
#ifndef IMAGE_BYTES_H
#define IMAGE_BYTES_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace image
{

//! Bytes to read from, wherever they lie. Offsets must be inside.
struct Bytes
{
    const std::uint8_t* data;
    std::size_t         size;

    std::uint16_t Half(std::size_t offset) const
    {
        return static_cast<std::uint16_t>(data[offset] | data[offset + 1] << 8);
    }
    std::uint32_t Word(std::size_t offset) const
    {
        return std::uint32_t{Half(offset)} | std::uint32_t{Half(offset + 2)} << 16;
    }
};

//! Appends the lowest `count` bytes of a number.
inline void Append(std::vector<std::uint8_t>& bytes, std::uint32_t number, std::uint32_t count)
{
    for (; count != 0; --count, number >>= 8)
    {
        bytes.push_back(static_cast<std::uint8_t>(number));
    }
}

}  // namespace image

#endif
