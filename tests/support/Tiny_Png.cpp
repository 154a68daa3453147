// Tiny_Png: see the header. Written along the file format, not along any library.
#include "Tiny_Png.h"

#include <algorithm>
#include <cstdlib>

namespace tiny_png
{
namespace
{

constexpr std::size_t SignatureSize = 8;

void AppendBig(Bytes& bytes, std::uint32_t value, int count)
{
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
    {
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

void Append(Bytes& bytes, const Bytes& more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

std::uint32_t BigAt(const Bytes& bytes, std::size_t at)
{
    return static_cast<std::uint32_t>(bytes[at]) << 24 | static_cast<std::uint32_t>(bytes[at + 1]) << 16 |
           static_cast<std::uint32_t>(bytes[at + 2]) << 8 | bytes[at + 3];
}

//! The chunk checksum, bit by bit.
std::uint32_t Crc(const std::uint8_t* data, std::size_t size)
{
    std::uint32_t crc = 0xFFFFFFFFU;
    for (std::size_t index = 0; index < size; ++index)
    {
        crc ^= data[index];
        for (int bit = 0; bit < 8; ++bit)
        {
            crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320U : crc >> 1;
        }
    }
    return ~crc;
}

//! The end of a stream of deflated data carries this sum.
std::uint32_t Adler(const Bytes& data)
{
    std::uint32_t a = 1;
    std::uint32_t b = 0;
    for (const std::uint8_t byte : data)
    {
        a = (a + byte) % 65521;
        b = (b + a) % 65521;
    }
    return b << 16 | a;
}

//! One filtered row: what the reader has to add back. above is the unfiltered row before, zeros for the first.
void AppendFiltered(Bytes& stream, int filter, const Bytes& row, const Bytes& above, std::size_t bytesPerPixel)
{
    stream.push_back(static_cast<std::uint8_t>(filter));
    for (std::size_t index = 0; index < row.size(); ++index)
    {
        const int left      = index >= bytesPerPixel ? row[index - bytesPerPixel] : 0;
        const int up        = above[index];
        const int upperLeft = index >= bytesPerPixel ? above[index - bytesPerPixel] : 0;
        int       predicted = 0;
        switch (filter)
        {
        case 1: predicted = left; break;
        case 2: predicted = up; break;
        case 3: predicted = (left + up) / 2; break;
        case 4:
        {
            const int guess    = left + up - upperLeft;
            const int byLeft   = std::abs(guess - left);
            const int byUp     = std::abs(guess - up);
            const int byCorner = std::abs(guess - upperLeft);
            predicted          = byLeft <= byUp && byLeft <= byCorner ? left : byUp <= byCorner ? up : upperLeft;
            break;
        }
        default: break;
        }
        stream.push_back(static_cast<std::uint8_t>(row[index] - predicted));
    }
}

//! The pixels (x0 + i * stepX, y0 + j * stepY) as filtered rows: a whole picture, or one pass of an interlaced one.
void AppendPass(Bytes& stream, const Picture& picture, std::uint32_t x0, std::uint32_t y0, std::uint32_t stepX,
                std::uint32_t stepY)
{
    if (x0 >= picture.width || y0 >= picture.height)
    {
        return;
    }
    const int           channels      = Channels(picture.colourType);
    const auto          bitsPerPixel  = static_cast<std::size_t>(channels * picture.depth);
    const std::size_t   bytesPerPixel = std::max<std::size_t>(1, bitsPerPixel / 8);
    const std::uint32_t columns       = (picture.width - x0 + stepX - 1) / stepX;
    const std::size_t   rowSize       = (columns * bitsPerPixel + 7) / 8;
    Bytes               above(rowSize, 0);
    int                 rowNumber = 0;
    for (std::uint32_t y = y0; y < picture.height; y += stepY, ++rowNumber)
    {
        Bytes       row(rowSize, 0);
        std::size_t bitAt = 0;
        for (std::uint32_t x = x0; x < picture.width; x += stepX)
        {
            for (int channel = 0; channel < channels; ++channel)
            {
                const unsigned sample = picture.sample(x, y, channel);
                for (int bit = picture.depth - 1; bit >= 0; --bit, ++bitAt)
                {
                    row[bitAt / 8] =
                        static_cast<std::uint8_t>(row[bitAt / 8] | (sample >> bit & 1U) << (7 - bitAt % 8));
                }
            }
        }
        const int filter = picture.filter == EachRowItsOwnFilter ? rowNumber % 5 : picture.filter;
        AppendFiltered(stream, filter, row, above, bytesPerPixel);
        above = row;
    }
}

//! Calls visit(position of the chunk, length of its data) for every complete chunk.
template <class Visit>
void ForEachChunk(const Bytes& file, const Visit& visit)
{
    for (std::size_t at = SignatureSize; at + 12 <= file.size();)
    {
        const std::size_t length = BigAt(file, at);
        if (length > file.size() - at - 12)
        {
            return;
        }
        visit(at, length);
        at += length + 12;
    }
}

}  // namespace

int Channels(ColourType colourType)
{
    switch (colourType)
    {
    case Rgb: return 3;
    case GreyAlpha: return 2;
    case Rgba: return 4;
    default: return 1;
    }
}

Bytes Chunk(const std::string& type, const Bytes& data)
{
    Bytes chunk;
    AppendBig(chunk, static_cast<std::uint32_t>(data.size()), 4);
    chunk.insert(chunk.end(), type.begin(), type.end());
    Append(chunk, data);
    AppendBig(chunk, Crc(chunk.data() + 4, data.size() + 4), 4);
    return chunk;
}

Bytes Join(const std::vector<Bytes>& chunks)
{
    Bytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    for (const Bytes& chunk : chunks)
    {
        Append(file, chunk);
    }
    return file;
}

Bytes Deflate(const Bytes& data)
{
    Bytes       stream = {0x78, 0x01};
    std::size_t at     = 0;
    do {
        const std::size_t size = std::min<std::size_t>(65535, data.size() - at);
        const bool        last = at + size == data.size();
        stream.push_back(last ? 1 : 0);
        for (const std::size_t field : {size, ~size})
        {
            stream.push_back(static_cast<std::uint8_t>(field));
            stream.push_back(static_cast<std::uint8_t>(field >> 8));
        }
        stream.insert(stream.end(), data.begin() + static_cast<std::ptrdiff_t>(at),
                      data.begin() + static_cast<std::ptrdiff_t>(at + size));
        at += size;
    } while (at < data.size());
    AppendBig(stream, Adler(data), 4);
    return stream;
}

Bytes Encode(const Picture& picture)
{
    Bytes header;
    AppendBig(header, picture.width, 4);
    AppendBig(header, picture.height, 4);
    AppendBig(header, static_cast<std::uint32_t>(picture.depth), 1);
    AppendBig(header, static_cast<std::uint32_t>(picture.colourType), 1);
    AppendBig(header, 0, 2);
    AppendBig(header, picture.interlaced ? 1 : 0, 1);

    Bytes rows;
    if (picture.interlaced)
    {
        AppendPass(rows, picture, 0, 0, 8, 8);
        AppendPass(rows, picture, 4, 0, 8, 8);
        AppendPass(rows, picture, 0, 4, 4, 8);
        AppendPass(rows, picture, 2, 0, 4, 4);
        AppendPass(rows, picture, 0, 2, 2, 4);
        AppendPass(rows, picture, 1, 0, 2, 2);
        AppendPass(rows, picture, 0, 1, 1, 2);
    }
    else
    {
        AppendPass(rows, picture, 0, 0, 1, 1);
    }

    std::vector<Bytes> chunks = {Chunk("IHDR", header)};
    if (!picture.palette.empty())
    {
        chunks.push_back(Chunk("PLTE", picture.palette));
    }
    if (!picture.transparency.empty())
    {
        chunks.push_back(Chunk("tRNS", picture.transparency));
    }
    chunks.push_back(Chunk("IDAT", Deflate(rows)));
    chunks.push_back(Chunk("IEND", {}));
    return Join(chunks);
}

std::string ChunkNames(const Bytes& file)
{
    std::string names;
    ForEachChunk(file,
                 [&](std::size_t at, std::size_t)
                 {
                     names += names.empty() ? "" : " ";
                     names.append(file.begin() + static_cast<std::ptrdiff_t>(at + 4),
                                  file.begin() + static_cast<std::ptrdiff_t>(at + 8));
                 });
    return names;
}

void RepairChecksums(Bytes& file)
{
    ForEachChunk(file,
                 [&](std::size_t at, std::size_t length)
                 {
                     Bytes crc;
                     AppendBig(crc, Crc(file.data() + at + 4, length + 4), 4);
                     std::copy(crc.begin(), crc.end(), file.begin() + static_cast<std::ptrdiff_t>(at + 8 + length));
                 });
}

}  // namespace tiny_png
