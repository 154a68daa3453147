// Image_Palette: palettes for pictures: the exact one where the colours fit, else the best a quantiser finds, and the
// search for the nearest entry. Image_Dither maps pictures to a palette; Image_Encode decides what is wanted.
//
// Distance. A colour with alpha is seen over something else; two colours are compared as they look over black and over
// white: the squared difference of the three channels in both cases, summed. That is a Euclidean distance between six
// numbers, exact in integers (products of two bytes, 0 .. 65025), in which colour under little alpha counts little.
//
// Fully transparent and opaque colours are kinds of their own: a fully transparent pixel stays so, an opaque pixel
// stays opaque, whenever the palette has such entries, and a quantised palette has them when the picture does.
#ifndef IMAGE_PALETTE_H
#define IMAGE_PALETTE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "Image_Picture.h"

namespace image
{

//! What becomes of the colours of fully transparent pixels, which no blit shows. Lossless work keeps them; otherwise
//! they may all become 0x00000000, share one entry and join into longer runs.
enum class Hidden
{
    Keep,
    Merge
};

//! The distinct colours of a picture, in the order in which they first appear, with an index per pixel; nothing when
//! there are more than most (at most 65,536).
std::optional<Indexed> ExactPalette(const std::vector<std::uint32_t>& argb, std::size_t most, Hidden hidden);

//! At most `most` colours (1 .. 65,536) that stand for those of the picture, sorted. Exact where the colours fit once
//! hidden ones are merged. Two entries for all three kinds go to the transparent and the opaque; a single entry is the
//! mean of everything.
//!
//! Splits the set of colours with the largest error at its mean until there are enough sets, then moves every colour to
//! the nearest set's mean and computes the means again, a few times, and keeps the best.
std::vector<std::uint32_t> Quantise(const std::vector<std::uint32_t>& argb, std::size_t most);

//! A colour in premultiplied form, scaled by 255: what means are taken of and errors added to.
//! Of an ordinary colour: a * 255, r * a, g * a, b * a.
using Point = std::array<std::int32_t, 4>;

constexpr std::int32_t FullPoint = 65025;  //!< the largest number in an ordinary Point

inline Point PointOf(std::uint32_t argb)
{
    const auto alpha = static_cast<std::int32_t>(Alpha(argb));
    return {alpha * 255, alpha * static_cast<std::int32_t>(Red(argb)), alpha * static_cast<std::int32_t>(Green(argb)),
            alpha * static_cast<std::int32_t>(Blue(argb))};
}

//! The distance described above. The numbers may lie outside the ordinary range by a few times that range.
inline std::uint64_t Distance(const Point& first, const Point& second)
{
    const std::int64_t cover = first[0] - second[0];
    std::int64_t       sum   = 0;
    for (std::size_t channel = 1; channel < 4; ++channel)
    {
        const std::int64_t overBlack = first[channel] - second[channel];
        const std::int64_t overWhite = overBlack - cover;
        sum += overBlack * overBlack + overWhite * overWhite;
    }
    return static_cast<std::uint64_t>(sum);
}

//! Which entries a search may return.
enum class Kind
{
    Any,
    Opaque  //!< opaque ones only, when the palette has some
};

//! Finds nearest entries: a balanced tree over the palette. Among equally near entries the first in the palette wins.
class NearestEntry
{
public:
    //! 1 .. 65,536 entries.
    explicit NearestEntry(const std::vector<std::uint32_t>& palette);

    //! hint: an entry that is probably near; it makes the search faster and never changes its result.
    Index Find(const Point& wanted, Kind kind = Kind::Any, Index hint = 0) const;

    //! The `count` nearest entries (fewer if there are no more), in the order of the palette. count: at least 1.
    std::vector<Index> FindSeveral(const Point& wanted, Kind kind, std::size_t count) const;

    //! For a pixel: fully transparent ones get the first fully transparent entry if there is one, opaque ones an opaque
    //! entry if there is one, others what is nearest.
    Index FindPixel(std::uint32_t argb, Index hint = 0) const;

    //! The entries as points.
    const std::vector<Point>& Entries() const { return m_entries; }

private:
    //! A range's middle is its root: what is before it is not beyond it on its axis, what is behind it not before it.
    struct Node
    {
        Point        at;
        Index        entry;
        std::uint8_t axis;
    };
    using Tree = std::vector<Node>;

    static void Build(Node* first, Node* last);
    template <class Found>
    static void Visit(const Node* first, const Node* last, const Point& wanted, Found& found);
    const Tree& TreeOf(Kind kind) const;

    std::vector<Point>   m_entries;
    Tree                 m_all;
    Tree                 m_opaque;
    std::optional<Index> m_transparent;  //!< the first such entry
};

}  // namespace image

#endif
