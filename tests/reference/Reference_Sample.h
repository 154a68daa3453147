// Reference_Sample: how scaled and rotated blits read a source a second time, as plainly as it can be described: one pixel
// or the mix of a 2x2 block, one channel at a time, through one reader for all formats. Shares nothing with the library.
// Reference_Stretch and Reference_Rot draw with it; formats and pictures are those of Reference_Blit.h.
#ifndef REFERENCE_SAMPLE_H
#define REFERENCE_SAMPLE_H

#include <array>
#include <cstdint>

#include "Reference_Blit.h"

namespace reference
{

//! A pixel, stored or filtered: the number that its format stores, and what the format makes of it.
struct Sample
{
    Format        format;
    std::uint32_t stored;

    int Red() const;
    int Green() const;
    int Blue() const;
    int Alpha() const;

    //! What a colour key is compared with: the number without any alpha.
    std::uint32_t Color() const;

    //! Red, green and blue as an opaque ARGB32 word, and as a word with the sample's own alpha.
    std::uint32_t Opaque() const;
    std::uint32_t WithOwnAlpha() const;
};

Sample PixelAt(const Picture& picture, std::int64_t x, std::int64_t y);

//! Four pixels: top left, top right, bottom left, bottom right.
using Block = std::array<Sample, 4>;

Block BlockAt(const Picture& picture, std::int64_t x, std::int64_t y);

//! The mix of a block by weights of 0 (left, top) to 255 (almost all right, bottom).
Sample MixOf(const Block& block, int weightX, int weightY);

//! Whether a pixel of the block has the colour, cut to the bits that the format has.
bool HoldsKey(const Block& block, std::uint32_t key);

//! Of a position in 16.16: the pixel it falls into, rounded towards minus infinity, and the first eight bits of what is
//! left.
std::int64_t PixelOf(std::int64_t position);
int          WeightOf(std::int64_t position);

//! The sample at a position: the pixel there, or filtered.
Sample SampleAt(const Picture& picture, std::int64_t positionX, std::int64_t positionY, bool filtered);

//! Words of an ARGB32 picture.
std::uint32_t WordAt(const Picture& picture, std::int64_t x, std::int64_t y);
void          SetWord(const Picture& picture, std::int64_t x, std::int64_t y, std::uint32_t word);

}  // namespace reference

#endif
