// Tiny_Png: a second, deliberately plain PNG writer, so that the tests of the reader do not lean on the code they test.
// No compression (stored blocks), own checksums; every colour type, depth, filter and the interlaced order.
#ifndef TINY_PNG_H
#define TINY_PNG_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tiny_png
{

using Bytes = std::vector<std::uint8_t>;

enum ColourType
{
    Grey      = 0,
    Rgb       = 2,
    Palette   = 3,
    GreyAlpha = 4,
    Rgba      = 6
};

constexpr int EachRowItsOwnFilter = 5;

struct Picture
{
    std::uint32_t width;
    std::uint32_t height;
    ColourType    colourType;
    int           depth;
    //! The stored sample of one channel at (x, y); only the low `depth` bits are used.
    std::function<unsigned(std::uint32_t x, std::uint32_t y, int channel)> sample;

    bool  interlaced   = false;
    int   filter       = EachRowItsOwnFilter;  //!< 0 to 4, or rows take 0 to 4 in turn
    Bytes palette      = {};                   //!< PLTE: triples of red, green, blue
    Bytes transparency = {};                   //!< tRNS as stored
};

int Channels(ColourType colourType);

//! The whole file.
Bytes Encode(const Picture& picture);

//! One chunk: length, type, data, checksum.
Bytes Chunk(const std::string& type, const Bytes& data);

//! The file's signature, then the chunks given.
Bytes Join(const std::vector<Bytes>& chunks);

//! Zlib's wrapping around data, without compressing it.
Bytes Deflate(const Bytes& data);

//! The names of a file's chunks in order: "IHDR IDAT IEND".
std::string ChunkNames(const Bytes& file);

//! Makes the checksum of every chunk right again, as far as the lengths still lead from one chunk to the next.
void RepairChecksums(Bytes& file);

}  // namespace tiny_png

#endif
