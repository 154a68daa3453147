// Image_Dither: see the header. Two ways to spread errors (an ordered pattern, diffusion), each written once and handed
// what chooses a colour: the entries of a palette or the levels of RGB565.
#include "Image_Dither.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "Image_Palette.h"

namespace image
{
namespace
{

// ---- points --------------------------------------------------------------------------------------------------------

Point Plus(const Point& left, const Point& right)
{
    return {left[0] + right[0], left[1] + right[1], left[2] + right[2], left[3] + right[3]};
}

//! What `wanted` is more than `shown`, each number limited.
Point ErrorOf(const Point& wanted, const Point& shown, std::int32_t limit)
{
    Point error;
    for (std::size_t axis = 0; axis < 4; ++axis)
    {
        error[axis] = std::clamp(wanted[axis] - shown[axis], -limit, limit);
    }
    return error;
}

//! The largest difference on any axis.
std::int32_t Apart(const Point& left, const Point& right)
{
    std::int32_t apart = 0;
    for (std::size_t axis = 0; axis < 4; ++axis)
    {
        apart = std::max(apart, std::abs(left[axis] - right[axis]));
    }
    return apart;
}

// ---- diffusion -----------------------------------------------------------------------------------------------------

//! Pixels among which errors travel. Opaque pixels cannot make up for an error in alpha, so they keep to themselves.
enum Group : std::uint8_t
{
    Aside,  //!< neither takes nor gives
    Translucent,
    Opaque
};

Group GroupOf(std::uint32_t argb)
{
    return Alpha(argb) == 0 ? Aside : Alpha(argb) == 255 ? Opaque : Translucent;
}

//! Visits the pixels row by row in alternating directions. choose(pixel, wanted) is given what a pixel should show,
//! errors of its neighbours included, and returns what it does show. The error goes to those neighbours still to come
//! that are of the same group, 7 : 3 : 5 : 1 parts
//!
//!         x  7
//!      3  5  1      (mirrored in every other row)
//!
//! as far as they exist; all of it, so that borders and holes lose nothing. limits: of the error, per group.
template <class PixelAt, class Choose>
void Diffuse(std::uint32_t width, std::uint32_t height, const std::array<std::int32_t, 3>& limits,
             const PixelAt& pixelAt, const Choose& choose)
{
    struct Neighbour
    {
        int ahead;
        int below;
        int parts;
    };
    constexpr Neighbour neighbours[] = {{1, 0, 7}, {-1, 1, 3}, {0, 1, 5}, {1, 1, 1}};

    const auto         columns = static_cast<std::ptrdiff_t>(width);
    std::vector<Point> rows[2] = {std::vector<Point>(width), std::vector<Point>(width)};
    for (std::uint32_t y = 0; y < height; ++y)
    {
        const std::ptrdiff_t step = y % 2 == 0 ? 1 : -1;
        std::ptrdiff_t       x    = y % 2 == 0 ? 0 : columns - 1;
        for (; x >= 0 && x < columns; x += step)
        {
            const std::size_t   pixel = std::size_t{y} * width + static_cast<std::size_t>(x);
            const std::uint32_t argb  = pixelAt(pixel);
            const Group         group = GroupOf(argb);
            const Point wanted = Plus(PointOf(argb), std::exchange(rows[0][static_cast<std::size_t>(x)], Point{}));
            Point       error  = ErrorOf(wanted, choose(pixel, wanted), limits[group]);

            Point* takers[4];
            int    parts[4];
            int    count = 0;
            int    whole = 0;
            for (const Neighbour& neighbour : neighbours)
            {
                const std::ptrdiff_t toX = x + step * neighbour.ahead;
                if (group != Aside && toX >= 0 && toX < columns && (neighbour.below == 0 || y + 1 < height))
                {
                    const auto        column = static_cast<std::size_t>(toX);
                    const std::size_t row    = y + static_cast<std::uint32_t>(neighbour.below);
                    if (GroupOf(pixelAt(row * width + column)) == group)
                    {
                        takers[count] = &rows[neighbour.below][column];
                        parts[count]  = neighbour.parts;
                        whole += neighbour.parts;
                        ++count;
                    }
                }
            }
            for (int taker = 0; taker < count; ++taker)
            {
                for (std::size_t axis = 0; axis < 4; ++axis)
                {
                    const std::int32_t share =
                        error[axis] * parts[taker] / whole;  // the last one gets all that is left
                    (*takers[taker])[axis] += share;
                    error[axis] -= share;
                }
                whole -= parts[taker];
            }
        }
        std::swap(rows[0], rows[1]);
    }
}

// ---- palettes ------------------------------------------------------------------------------------------------------

//! The largest step, on any axis, that leads from entry to entry when every step is as short as possible: the longest
//! edge of the shortest tree that connects them all. Palettes of more than 1024 entries count as without gaps.
std::int32_t LargestGap(std::vector<Point> entries)
{
    if (entries.size() > 1024)
    {
        return 0;
    }
    std::int32_t              largest = 0;
    std::vector<std::int32_t> reach(entries.size(), INT32_MAX);
    while (entries.size() > 1)
    {
        const Point joined = entries.back();
        entries.pop_back();
        reach.pop_back();
        std::size_t next = 0;
        for (std::size_t entry = 0; entry < entries.size(); ++entry)
        {
            reach[entry] = std::min(reach[entry], Apart(entries[entry], joined));
            next         = reach[entry] < reach[next] ? entry : next;
        }
        largest = std::max(largest, reach[next]);
        std::swap(entries[next], entries.back());
        std::swap(reach[next], reach.back());
    }
    return largest;
}

//! Remembers what was computed for a colour, until another colour needs the place.
template <class Value>
class Cache
{
public:
    //! As many places as there are pixels, at most 2^mostBits.
    Cache(std::size_t pixels, int mostBits)
    {
        while (m_bits < mostBits && std::size_t{1} << m_bits < pixels)
        {
            ++m_bits;
        }
        m_places.resize(std::size_t{1} << m_bits);
    }

    template <class Compute>
    const Value& Of(std::uint32_t argb, const Compute& compute)
    {
        Place& place = m_places[argb * 2654435761u >> (32 - m_bits)];
        if (!place.filled || place.argb != argb)
        {
            place = {true, argb, compute(argb)};
        }
        return place.value;
    }

private:
    struct Place
    {
        bool          filled = false;
        std::uint32_t argb   = 0;
        Value         value  = {};
    };
    int                m_bits = 1;
    std::vector<Place> m_places;
};

//! Maps one picture to one palette.
class PaletteMapper
{
public:
    PaletteMapper(const Picture& picture, const std::vector<std::uint32_t>& palette)
        : m_picture(picture),
          m_nearest(palette),
          m_indices(picture.argb.size())
    {
    }

    std::vector<Index> Map(Dither dither) &&
    {
        MapNearest();
        const bool exact = m_furthest == std::array<std::int32_t, 3>{};
        if (!exact && dither != Dither::None)
        {
            SetLimits();
            if (dither == Dither::Ordered)
            {
                MapOrdered();
            }
            else
            {
                MapDiffused();
            }
        }
        return std::move(m_indices);
    }

private:
    using Pattern = std::array<Index, 64>;  //!< an entry for every threshold

    void MapNearest()
    {
        Cache<Index> cache(m_indices.size(), 16);
        Index        last = 0;
        for (std::size_t pixel = 0; pixel < m_indices.size(); ++pixel)
        {
            const std::uint32_t argb = m_picture.argb[pixel];
            last = cache.Of(argb, [&](std::uint32_t colour) { return m_nearest.FindPixel(colour, last); });

            std::int32_t& furthest = m_furthest[GroupOf(argb)];
            furthest               = std::max(furthest, Apart(PointOf(argb), m_nearest.Entries()[last]));
            m_indices[pixel]       = last;
        }
    }

    //! No error needs to be larger than half the largest gap to mix what lies between entries. Colours beyond all
    //! entries, or far from those around them, come with larger errors, but what is beyond the largest such distance
    //! nobody can make up for; carried on, it would smear into the next area.
    void SetLimits()
    {
        std::vector<Point> opaque;
        std::copy_if(m_nearest.Entries().begin(), m_nearest.Entries().end(), std::back_inserter(opaque),
                     [](const Point& entry) { return entry[0] == FullPoint; });
        m_limits[Translucent] = std::max(m_furthest[Translucent], LargestGap(m_nearest.Entries()) / 2 + 1);
        m_limits[Opaque]      = std::max(m_furthest[Opaque], LargestGap(std::move(opaque)) / 2 + 1);
    }

    void MapOrdered()
    {
        Cache<Pattern> cache(m_indices.size(), 16);
        std::size_t    pixel = 0;
        for (std::uint32_t y = 0; y < m_picture.height; ++y)
        {
            for (std::uint32_t x = 0; x < m_picture.width; ++x, ++pixel)
            {
                if (GroupOf(m_picture.argb[pixel]) != Aside)
                {
                    const Pattern& pattern =
                        cache.Of(m_picture.argb[pixel], [&](std::uint32_t argb) { return PatternFor(argb); });
                    m_indices[pixel] = pattern[OrderedThreshold(x, y)];
                }
            }
        }
    }

    //! 64 entries that make up a colour, from bright to dark. Mostly some of the nearest do; where they leave out half
    //! a level or more (all of them lie on one side, say) the search is for any.
    Pattern PatternFor(std::uint32_t argb) const
    {
        const Kind               kind   = GroupOf(argb) == Opaque ? Kind::Opaque : Kind::Any;
        const std::vector<Index> some   = m_nearest.FindSeveral(PointOf(argb), kind, 16);
        const auto               inSome = [&](const Point& wanted, Index)
        {
            Index         best     = some.front();
            std::uint64_t distance = UINT64_MAX;
            for (const Index entry : some)
            {
                const std::uint64_t apart = Distance(wanted, m_nearest.Entries()[entry]);
                best                      = apart < distance ? entry : best;
                distance                  = std::min(distance, apart);
            }
            return best;
        };
        const auto inAll = [&](const Point& wanted, Index hint) { return m_nearest.Find(wanted, kind, hint); };

        Pattern pattern;
        if (FillPattern(argb, inSome, pattern) > 64 * 255 / 2)
        {
            FillPattern(argb, inAll, pattern);
        }
        std::sort(pattern.begin(), pattern.end(),
                  [&](Index left, Index right)
                  {
                      const std::int32_t leftBrightness  = Brightness(m_nearest.Entries()[left]);
                      const std::int32_t rightBrightness = Brightness(m_nearest.Entries()[right]);
                      return leftBrightness != rightBrightness ? leftBrightness > rightBrightness : left < right;
                  });
        return pattern;
    }

    //! Every entry is nearest to what the ones before it leave to be shown. Returns what all of them together leave
    //! out, or bring too much, on any axis.
    template <class Find>
    std::int32_t FillPattern(std::uint32_t argb, const Find& find, Pattern& pattern) const
    {
        const Point  colour = PointOf(argb);
        std::int32_t limit  = m_limits[GroupOf(argb)];
        Point        error  = {};
        Point        left   = {};
        Index        last   = 0;
        for (Index& entry : pattern)
        {
            const Point wanted = Plus(colour, error);
            last               = find(wanted, last);
            entry              = last;
            error              = ErrorOf(wanted, m_nearest.Entries()[entry], limit);
            left               = Plus(left, ErrorOf(colour, m_nearest.Entries()[entry], FullPoint));
        }
        return Apart(left, Point{});
    }

    //! Over a middle grey, in some unit.
    static std::int32_t Brightness(const Point& point) { return 2 * (point[1] + point[2] + point[3]) - 3 * point[0]; }

    void MapDiffused()
    {
        Index last = 0;
        Diffuse(
            m_picture.width, m_picture.height, m_limits, [&](std::size_t pixel) { return m_picture.argb[pixel]; },
            [&](std::size_t pixel, const Point& wanted)
            {
                const Group group = GroupOf(m_picture.argb[pixel]);
                if (group != Aside)
                {
                    last             = m_nearest.Find(wanted, group == Opaque ? Kind::Opaque : Kind::Any, last);
                    m_indices[pixel] = last;
                }
                return m_nearest.Entries()[m_indices[pixel]];
            });
    }

    const Picture&              m_picture;
    NearestEntry                m_nearest;
    std::vector<Index>          m_indices;
    std::array<std::int32_t, 3> m_furthest = {};  //!< per group: from a pixel to its nearest entry
    std::array<std::int32_t, 3> m_limits   = {};
};

// ---- RGB565 --------------------------------------------------------------------------------------------------------

//! One channel of a few bits: the levels it can show are its bits with the upper ones repeated below.
struct Channel
{
    std::uint32_t bits;  //!< 5 or 6
    std::uint32_t shift;

    std::uint32_t Shown(std::uint32_t number) const { return number << (8 - bits) | number >> (2 * bits - 8); }

    //! The number of the highest level that is not above this one.
    std::uint32_t NotAbove(std::uint32_t level) const
    {
        const std::uint32_t number = level >> (8 - bits);
        return Shown(number) > level ? number - 1 : number;
    }

    //! What shows a level: a level between two possible ones becomes the upper one where isAbove(part, whole) says so.
    template <class Above>
    std::uint32_t Number(std::uint32_t level, const Above& isAbove) const
    {
        const std::uint32_t number = NotAbove(level);
        const std::uint32_t low    = Shown(number);
        return low != level && isAbove(level - low, Shown(number + 1) - low) ? number + 1 : number;
    }
};

constexpr Channel RedChannel{5, 11};
constexpr Channel GreenChannel{6, 5};
constexpr Channel BlueChannel{5, 0};

//! isAbove(part, whole): whether a level that is `part` above a possible one, which has the next one `whole` above it,
//! is to become that next one.
template <class Above>
std::uint16_t Packed(std::uint32_t argb, const Above& isAbove)
{
    return static_cast<std::uint16_t>(RedChannel.Number(Red(argb), isAbove) << RedChannel.shift |
                                      GreenChannel.Number(Green(argb), isAbove) << GreenChannel.shift |
                                      BlueChannel.Number(Blue(argb), isAbove) << BlueChannel.shift);
}

//! The nearest level to a number of a Point.
std::uint32_t LevelOf(std::int32_t number)
{
    return static_cast<std::uint32_t>((std::clamp(number, 0, FullPoint) + 127) / 255);
}

void DiffuseToRgb565(const Picture& picture, std::vector<std::uint16_t>& pixels)
{
    constexpr std::int32_t FiveBitGap = 9 * 255;  // the larger distance between two levels
    Diffuse(
        picture.width, picture.height, {0, 0, FiveBitGap},
        [&](std::size_t pixel) { return 0xFF000000u | picture.argb[pixel]; },
        [&](std::size_t pixel, const Point& wanted)
        {
            pixels[pixel] = Rgb565From(Argb(255, LevelOf(wanted[1]), LevelOf(wanted[2]), LevelOf(wanted[3])));
            return PointOf(ArgbFromRgb565(pixels[pixel]));
        });
}

}  // namespace

std::vector<Index> MapToPalette(const Picture& picture, const std::vector<std::uint32_t>& palette, Dither dither)
{
    CheckPicture(picture);
    return PaletteMapper(picture, palette).Map(dither);
}

std::vector<std::uint16_t> MapToRgb565(const Picture& picture, Dither dither)
{
    CheckPicture(picture);
    std::vector<std::uint16_t> pixels(picture.argb.size());
    if (dither == Dither::FloydSteinberg)
    {
        DiffuseToRgb565(picture, pixels);
        return pixels;
    }
    std::size_t pixel = 0;
    for (std::uint32_t y = 0; y < picture.height; ++y)
    {
        for (std::uint32_t x = 0; x < picture.width; ++x, ++pixel)
        {
            // Half the way up without dithering; with it, 1/128, 3/128 ... 127/128 of the way.
            const std::uint32_t limit = dither == Dither::Ordered ? 2 * OrderedThreshold(x, y) + 1 : 64;
            const auto isAbove = [=](std::uint32_t part, std::uint32_t whole) { return 128 * part > limit * whole; };
            pixels[pixel]      = Packed(picture.argb[pixel], isAbove);
        }
    }
    return pixels;
}

std::uint16_t Rgb565From(std::uint32_t argb)
{
    return Packed(argb, [](std::uint32_t part, std::uint32_t whole) { return 2 * part > whole; });
}

std::uint32_t ArgbFromRgb565(std::uint16_t pixel)
{
    const std::uint32_t bits = pixel;
    return Argb(255, RedChannel.Shown(bits >> 11), GreenChannel.Shown(bits >> 5 & 63), BlueChannel.Shown(bits & 31));
}

std::uint32_t OrderedThreshold(std::uint32_t x, std::uint32_t y)
{
    // Every halving of the block doubles the pattern's density: the lowest bits of the place decide most.
    std::uint32_t threshold = 0;
    for (int bit = 0; bit < 3; ++bit)
    {
        threshold = threshold << 2 | ((x ^ y) >> bit & 1) << 1 | (y >> bit & 1);
    }
    return threshold;
}

}  // namespace image
