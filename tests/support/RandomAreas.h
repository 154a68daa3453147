// RandomAreas: what random tests of drawing throw: rectangles of pixels in memory with unkind pitches and contents, clip
// rectangles of every kind, positions from far outside to far inside, and words for what went wrong where.
#ifndef RANDOMAREAS_H
#define RANDOMAREAS_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "Dice.h"
#include "Fence.h"
#include "Reference_Blit.h"

namespace support
{

//! Pixels somewhere in an arena between two fences, flush with one of them.
struct Area
{
    std::uint32_t width;
    std::uint32_t height;
    std::uint32_t pitch;
    bool          atBackFence;
    int           content;

    std::size_t Bytes(std::int64_t pixelBytes) const
    {
        return Fence::BytesFor(width, height, pitch, static_cast<std::size_t>(pixelBytes));
    }
    //! Where the area lies in an arena of whole pages.
    std::uint8_t* In(Fence& arena, std::int64_t pixelBytes) const
    {
        return arena.Data() + (atBackFence ? arena.Size() - Bytes(pixelBytes) : 0);
    }
};

//! 1x1 to most x most pixels, sometimes a single row or column, sometimes a long row (where most is 24 or more).
Area ThrowArea(Dice& dice, std::int64_t pixelBytes, int most);

//! The same content and pitch rules for a given size.
Area ThrowAreaOf(Dice& dice, std::int64_t pixelBytes, std::uint32_t width, std::uint32_t height);

//! Fills an area's bytes as its content says: scattered pixels, icons (runs of alpha 0 and 255 with soft pixels between),
//! opaque ones, bytes that are often 0 or 255.
void FillContent(Dice& dice, std::uint8_t* bytes, std::size_t count, int content, reference::Format format);

//! Inside the area; now and then beyond it, empty by one pixel, inverted, or outside.
reference::Clip ThrowClip(Dice& dice, const Area& area);

//! 1 to size + 3; now and then nothing (where evenNothing) or a number with the top bit set or all bits but that.
std::uint32_t ThrowLength(Dice& dice, std::uint32_t size, bool evenNothing);

std::uint32_t ThrowSourcePosition(Dice& dice, std::uint32_t size);

//! A target position for something of this length.
std::int32_t ThrowPosition(Dice& dice, std::uint32_t size, std::int64_t length);

//! "24x3 pitch 108 at the back fence".
std::string Described(const Area& area);

//! "(0, 0) to (3, 4)".
std::string Described(const reference::Clip& clip);

//! Where two pictures of 32-bit pixels with padding first differ, and how.
std::string FirstDifference(const std::uint8_t* expected, const std::uint8_t* got, const Area& area);

}  // namespace support

#endif
