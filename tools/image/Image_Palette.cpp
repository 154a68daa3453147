// Image_Palette: see the header.
#include "Image_Palette.h"

#include <algorithm>
#include <queue>
#include <stdexcept>
#include <utility>

namespace image
{
namespace
{

constexpr std::size_t MostEntries = 65536;

void CheckLength(std::size_t entries)
{
    if (entries == 0 || entries > MostEntries)
    {
        throw std::invalid_argument("a palette has 1 to 65536 entries");
    }
}

// ---- exact ---------------------------------------------------------------------------------------------------------

//! Numbers colours in the order in which they come. Open addressing, at most half full.
class ColourTable
{
public:
    explicit ColourTable(std::size_t most) : m_most(most), m_slots(16) {}

    //! The number of a colour; nothing when it would be one more than most.
    std::optional<Index> Number(std::uint32_t argb)
    {
        std::size_t slot = Slot(argb);
        if (m_slots[slot] == 0)
        {
            if (m_colours.size() == m_most)
            {
                return std::nullopt;
            }
            m_colours.push_back(argb);
            m_slots[slot] = static_cast<std::uint32_t>(m_colours.size());
            if (2 * m_colours.size() > m_slots.size())
            {
                Grow();
                slot = Slot(argb);
            }
        }
        return static_cast<Index>(m_slots[slot] - 1);
    }

    std::vector<std::uint32_t> Colours() && { return std::move(m_colours); }

private:
    //! Where the colour is, or the empty slot where it belongs.
    std::size_t Slot(std::uint32_t argb) const
    {
        std::size_t slot = (argb * 2654435761u >> 8) & (m_slots.size() - 1);
        while (m_slots[slot] != 0 && m_colours[m_slots[slot] - 1] != argb)
        {
            slot = (slot + 1) & (m_slots.size() - 1);
        }
        return slot;
    }

    void Grow()
    {
        m_slots.assign(2 * m_slots.size(), 0);
        for (std::size_t number = 0; number < m_colours.size(); ++number)
        {
            m_slots[Slot(m_colours[number])] = static_cast<std::uint32_t>(number + 1);
        }
    }

    std::size_t                m_most;
    std::vector<std::uint32_t> m_slots;  //!< number + 1 of a colour, 0: empty; a power of two of them
    std::vector<std::uint32_t> m_colours;
};

// ---- the quantiser -------------------------------------------------------------------------------------------------

struct Colour
{
    std::uint32_t argb;
    std::uint32_t count;
};
using Histogram = std::vector<Colour>;

//! The distinct colours, sorted; hidden ones merged. Sorted also means by kind: transparent, translucent, opaque.
Histogram Count(std::vector<std::uint32_t> argb)
{
    for (std::uint32_t& pixel : argb)
    {
        pixel = Alpha(pixel) == 0 ? 0 : pixel;
    }
    std::sort(argb.begin(), argb.end());

    Histogram colours;
    for (const std::uint32_t pixel : argb)
    {
        if (colours.empty() || colours.back().argb != pixel)
        {
            colours.push_back({pixel, 0});
        }
        ++colours.back().count;
    }
    return colours;
}

//! Sums over pixels, from which their mean follows. A picture has less than 2^30 pixels: the sums stay below 2^46.
struct Sums
{
    std::uint64_t count    = 0;
    std::uint64_t point[4] = {};

    void Add(const Colour& colour)
    {
        const Point at = PointOf(colour.argb);
        count += colour.count;
        for (std::size_t axis = 0; axis < 4; ++axis)
        {
            point[axis] += std::uint64_t{colour.count} * static_cast<std::uint64_t>(at[axis]);
        }
    }

    //! Rounded down.
    Point Mean() const
    {
        Point mean;
        for (std::size_t axis = 0; axis < 4; ++axis)
        {
            mean[axis] = static_cast<std::int32_t>(point[axis] / count);
        }
        return mean;
    }

    //! The mean as an ordinary colour, rounded.
    std::uint32_t MeanColour() const
    {
        const std::uint64_t cover = point[0] / 255;  // the sum of all alphas, exactly
        if (cover == 0)
        {
            return 0;
        }
        const auto rounded = [](std::uint64_t sum, std::uint64_t by)
        { return static_cast<std::uint32_t>((sum + by / 2) / by); };
        return Argb(rounded(cover, count), rounded(point[1], cover), rounded(point[2], cover),
                    rounded(point[3], cover));
    }
};

//! Part of a histogram.
struct Range
{
    std::size_t first;
    std::size_t last;  //!< the one behind it

    bool IsEmpty() const { return first == last; }
};

Sums SumsOf(const Histogram& colours, const Range& range)
{
    Sums sums;
    for (std::size_t colour = range.first; colour < range.last; ++colour)
    {
        sums.Add(colours[colour]);
    }
    return sums;
}

//! The kinds of colours that get entries of their own.
std::vector<Range> Kinds(const Histogram& colours, std::size_t most)
{
    if (most == 1)
    {
        return {{0, colours.size()}};
    }
    const auto below = [&](std::uint32_t limit)
    {
        const auto found =
            std::lower_bound(colours.begin(), colours.end(), limit,
                             [](const Colour& colour, std::uint32_t value) { return colour.argb < value; });
        return static_cast<std::size_t>(found - colours.begin());
    };
    const std::size_t  translucent = below(Argb(1, 0, 0, 0));
    const std::size_t  opaque      = below(Argb(255, 0, 0, 0));
    std::vector<Range> kinds{{0, translucent}, {opaque, colours.size()}, {translucent, opaque}};
    kinds.erase(std::remove_if(kinds.begin(), kinds.end(), [](const Range& kind) { return kind.IsEmpty(); }),
                kinds.end());
    kinds.resize(std::min(kinds.size(), most));  // the translucent are the last
    return kinds;
}

//! A set of colours that is to become one entry.
struct Box
{
    Range range;
    std::uint64_t
        error;         //!< pixels times squared distance from the mean, at most 2^30 * 6 * (65025 / 2)^2. 0: one colour
    std::size_t axis;  //!< along which most of it lies
    Point       mean;
};

Box MakeBox(const Histogram& colours, const Range& range)
{
    Box           box{range, 0, 0, SumsOf(colours, range).Mean()};
    std::uint64_t along[4] = {};
    for (std::size_t colour = range.first; colour < range.last; ++colour)
    {
        const std::uint64_t count = colours[colour].count;
        const Point         at    = PointOf(colours[colour].argb);
        box.error += count * Distance(at, box.mean);
        for (std::size_t axis = 0; axis < 4; ++axis)
        {
            const std::int64_t apart = at[axis] - box.mean[axis];
            along[axis] += count * static_cast<std::uint64_t>(apart * apart);
        }
    }
    box.axis = static_cast<std::size_t>(std::max_element(along, along + 4) - along);
    return box;
}

//! Splits the worst of the boxes until there are `most`, or nothing is left to split. Colours move inside their box.
std::vector<Box> Split(Histogram& colours, std::vector<Box> boxes, std::size_t most)
{
    const auto lessUrgent = [&](std::size_t left, std::size_t right)
    { return boxes[left].error != boxes[right].error ? boxes[left].error < boxes[right].error : left > right; };
    std::priority_queue<std::size_t, std::vector<std::size_t>, decltype(lessUrgent)> worst(lessUrgent);
    for (std::size_t box = 0; box < boxes.size(); ++box)
    {
        worst.push(box);
    }
    while (boxes.size() < most && boxes[worst.top()].error != 0)
    {
        const std::size_t number = worst.top();
        const Box         box    = boxes[number];
        worst.pop();

        // Never empty on either side: the least number is not above the mean rounded down, the largest is.
        const auto at     = [&](std::size_t place) { return colours.begin() + static_cast<std::ptrdiff_t>(place); };
        const auto upper  = std::stable_partition(at(box.range.first), at(box.range.last),
                                                  [&](const Colour& colour)
                                                  { return PointOf(colour.argb)[box.axis] <= box.mean[box.axis]; });
        const auto middle = static_cast<std::size_t>(upper - colours.begin());

        boxes[number] = MakeBox(colours, {box.range.first, middle});
        boxes.push_back(MakeBox(colours, {middle, box.range.last}));
        worst.push(number);
        worst.push(boxes.size() - 1);
    }
    return boxes;
}

//! Entries for a range: starts with the given ones and moves them to the means of what is nearest to them, as long as
//! that helps.
std::vector<std::uint32_t> Refine(const Histogram& colours, const Range& range, std::vector<std::uint32_t> entries)
{
    constexpr int              Rounds = 8;
    std::vector<Index>         owner(range.last - range.first);
    std::vector<std::uint32_t> best;
    std::uint64_t              bestError = UINT64_MAX;
    for (int round = 0; round <= Rounds; ++round)
    {
        const NearestEntry nearest(entries);
        std::vector<Sums>  sums(entries.size());
        std::uint64_t      error = 0;
        for (std::size_t colour = range.first; colour < range.last; ++colour)
        {
            const Point at = PointOf(colours[colour].argb);
            Index&      to = owner[colour - range.first];
            to             = nearest.Find(at, Kind::Any, to);
            error += colours[colour].count * Distance(at, nearest.Entries()[to]);
            sums[to].Add(colours[colour]);
        }
        if (error >= bestError)
        {
            break;
        }
        best      = entries;
        bestError = error;
        for (std::size_t entry = 0; entry < entries.size(); ++entry)
        {
            entries[entry] = sums[entry].count != 0 ? sums[entry].MeanColour() : entries[entry];
        }
    }
    return best;
}

}  // namespace

std::optional<Indexed> ExactPalette(const std::vector<std::uint32_t>& argb, std::size_t most, Hidden hidden)
{
    ColourTable table(std::min(most, MostEntries));
    Indexed     indexed;
    indexed.indices.reserve(argb.size());
    std::uint32_t last  = 0;
    bool          known = false;
    for (const std::uint32_t pixel : argb)
    {
        const std::uint32_t colour = hidden == Hidden::Merge && Alpha(pixel) == 0 ? 0 : pixel;
        if (!known || colour != last)
        {
            const std::optional<Index> number = table.Number(colour);
            if (!number)
            {
                return std::nullopt;
            }
            indexed.indices.push_back(*number);
        }
        else
        {
            indexed.indices.push_back(indexed.indices.back());
        }
        last  = colour;
        known = true;
    }
    indexed.palette = std::move(table).Colours();
    return indexed;
}

std::vector<std::uint32_t> Quantise(const std::vector<std::uint32_t>& argb, std::size_t most)
{
    CheckLength(most);
    Histogram                  colours = Count(argb);
    std::vector<std::uint32_t> entries;
    if (colours.size() <= most)
    {
        for (const Colour& colour : colours)
        {
            entries.push_back(colour.argb);
        }
        return entries;
    }

    const std::vector<Range> kinds = Kinds(colours, most);
    std::vector<Box>         boxes;
    for (const Range& kind : kinds)
    {
        boxes.push_back(MakeBox(colours, kind));
    }
    boxes = Split(colours, std::move(boxes), most);
    for (const Range& kind : kinds)
    {
        std::vector<std::uint32_t> means;
        for (const Box& box : boxes)
        {
            if (box.range.first >= kind.first && box.range.last <= kind.last)
            {
                means.push_back(SumsOf(colours, box.range).MeanColour());
            }
        }
        means = Refine(colours, kind, std::move(means));
        entries.insert(entries.end(), means.begin(), means.end());
    }
    std::sort(entries.begin(), entries.end());
    entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
    return entries;
}

// ---- distance and search -------------------------------------------------------------------------------------------

NearestEntry::NearestEntry(const std::vector<std::uint32_t>& palette)
{
    CheckLength(palette.size());
    for (std::size_t number = 0; number < palette.size(); ++number)
    {
        const Node node{PointOf(palette[number]), static_cast<Index>(number), 0};
        m_entries.push_back(node.at);
        m_all.push_back(node);
        if (Alpha(palette[number]) == 255)
        {
            m_opaque.push_back(node);
        }
        else if (Alpha(palette[number]) == 0 && !m_transparent)
        {
            m_transparent = node.entry;
        }
    }
    Build(m_all.data(), m_all.data() + m_all.size());
    Build(m_opaque.data(), m_opaque.data() + m_opaque.size());
}

void NearestEntry::Build(Node* first, Node* last)
{
    if (last - first < 2)
    {
        return;
    }
    std::int32_t widest = -1;
    std::uint8_t axis   = 0;
    for (std::uint8_t candidate = 0; candidate < 4; ++candidate)
    {
        const auto ends = std::minmax_element(
            first, last, [=](const Node& left, const Node& right) { return left.at[candidate] < right.at[candidate]; });
        const std::int32_t width = ends.second->at[candidate] - ends.first->at[candidate];
        if (width > widest)
        {
            widest = width;
            axis   = candidate;
        }
    }
    Node* const middle = first + (last - first) / 2;
    std::nth_element(first, middle, last,
                     [=](const Node& left, const Node& right) {
                         return left.at[axis] != right.at[axis] ? left.at[axis] < right.at[axis]
                                                                : left.entry < right.entry;
                     });
    middle->axis = axis;
    Build(first, middle);
    Build(middle + 1, last);
}

//! Offers everything that may be near enough to a collection. Entries `apart` away from the wanted point on one axis
//! are at least 3/2 apart^2 away: with t the difference on a colour axis and u on the alpha axis, that channel adds
//! t^2 + (t - u)^2 and the other two at least u^2 / 2 each, least at u = t / 2; on the alpha axis all three add at
//! least u^2 / 2.
template <class Found>
void NearestEntry::Visit(const Node* first, const Node* last, const Point& wanted, Found& found)
{
    while (first != last)
    {
        const Node* const middle = first + (last - first) / 2;
        found.Offer({Distance(wanted, middle->at), middle->entry});

        const std::int64_t apart   = wanted[middle->axis] - middle->at[middle->axis];
        const auto         beyond  = static_cast<std::uint64_t>(3 * apart * apart);
        const bool         upwards = apart > 0;
        Visit(upwards ? middle + 1 : first, upwards ? last : middle, wanted, found);
        if (beyond > 2 * found.Reach())  // what is as near may still have a smaller number
        {
            return;
        }
        (upwards ? last : first) = upwards ? middle : middle + 1;
    }
}

namespace
{

//! An entry by its distance; the nearer one is less, of equally near ones the first in the palette.
using Near = std::pair<std::uint64_t, Index>;

//! Keeps the nearest.
struct FoundOne
{
    Near best;

    void          Offer(const Near& near) { best = std::min(best, near); }
    std::uint64_t Reach() const { return best.first; }
};

//! Keeps the nearest ones, up to a count, as a heap with the furthest at its front.
struct FoundSeveral
{
    std::size_t       count;
    std::vector<Near> heap;

    void Offer(const Near& near)
    {
        if (heap.size() == count)
        {
            if (heap.front() < near)
            {
                return;
            }
            std::pop_heap(heap.begin(), heap.end());
            heap.pop_back();
        }
        heap.push_back(near);
        std::push_heap(heap.begin(), heap.end());
    }
    std::uint64_t Reach() const { return heap.size() < count ? UINT64_MAX / 2 : heap.front().first; }
};

}  // namespace

Index NearestEntry::Find(const Point& wanted, Kind kind, Index hint) const
{
    const Tree& tree  = TreeOf(kind);
    const Index start = &tree == &m_all || m_entries[hint][0] == FullPoint ? hint : tree.front().entry;
    FoundOne    found{{Distance(wanted, m_entries[start]), start}};
    Visit(tree.data(), tree.data() + tree.size(), wanted, found);
    return found.best.second;
}

std::vector<Index> NearestEntry::FindSeveral(const Point& wanted, Kind kind, std::size_t count) const
{
    const Tree&  tree = TreeOf(kind);
    FoundSeveral found{count, {}};
    Visit(tree.data(), tree.data() + tree.size(), wanted, found);
    std::vector<Index> entries;
    for (const Near& near : found.heap)
    {
        entries.push_back(near.second);
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

const NearestEntry::Tree& NearestEntry::TreeOf(Kind kind) const
{
    return kind == Kind::Opaque && !m_opaque.empty() ? m_opaque : m_all;
}

Index NearestEntry::FindPixel(std::uint32_t argb, Index hint) const
{
    if (Alpha(argb) == 0 && m_transparent)
    {
        return *m_transparent;
    }
    return Find(PointOf(argb), Alpha(argb) == 255 ? Kind::Opaque : Kind::Any, hint);
}

}  // namespace image
