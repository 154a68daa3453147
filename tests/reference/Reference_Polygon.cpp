// Reference_Polygon: see the header. All floats are single precision, one rounding per operation; nothing is meant to be
// fast.
#include "Reference_Polygon.h"

#include <algorithm>
#include <cmath>

#include "NaiveMix.h"

namespace reference
{

namespace
{

// Added to every corner: where in a pixel it is sampled.
constexpr float OFFSET_X = 0.1F;
constexpr float OFFSET_Y = 0.5F;

//! A side that crosses at least one row, from its upper end (1) to its lower (2).
struct Side
{
    bool  upwards;  // along the outline
    float x1;
    float y1;
    float dx;
    float dy;
    float step;  // per row
    float x2;
    float y2;
    float x;     // where it crosses the next row
    float span;  // where it crossed the last; its height before that
};

struct Top
{
    std::int64_t row;
    std::size_t  left;
    std::size_t  right;
};

struct Active
{
    std::size_t  side;
    std::int64_t bottom;
};

//! Not beyond the side's lower end.
float Held(const Side& side, float x)
{
    const bool beyond = side.dx >= 0.0F ? side.x2 < x : x < side.x2;
    return beyond ? side.x2 : x;
}

Corner Shifted(const Corner& corner)
{
    return {corner.x + OFFSET_X, corner.y + OFFSET_Y};
}

Side SideBetween(const Corner& previous, const Corner& current)
{
    Side side{};
    side.upwards       = previous.y > current.y;
    const Corner upper = side.upwards ? current : previous;
    const float  dx    = previous.x - current.x;
    const float  dy    = previous.y - current.y;
    side.x1            = upper.x;
    side.y1            = upper.y;
    side.dx            = side.upwards ? dx : -dx;
    side.dy            = side.upwards ? dy : -dy;
    side.span          = side.dy;
    side.step          = side.dx / side.dy;
    const float below  = 1.0F - (side.y1 - std::floor(side.y1));
    const float way    = side.step * below;
    side.x             = side.x1 + way;
    side.x2            = side.x1 + side.dx;
    side.y2            = side.y1 + side.dy;
    side.x             = Held(side, side.x);
    return side;
}

void SidesOf(const Outline& outline, std::vector<Side>& sides)
{
    sides.clear();
    if (outline.empty()) return;
    Corner previous = Shifted(outline.back());
    for (const Corner& corner : outline)
    {
        const Corner current = Shifted(corner);
        const float  dy      = previous.y - current.y;
        if (std::floor(previous.y) != std::floor(current.y) && std::fabs(dy) > 0.01F)
            sides.push_back(SideBetween(previous, current));
        previous = current;
    }
}

//! Where an upward side is followed by a downward one. Of equal rows the one found later comes first.
void TopsOf(const std::vector<Side>& sides, std::vector<Top>& tops)
{
    tops.clear();
    std::size_t previous = 0;
    for (std::size_t turn = 1; turn <= sides.size(); ++turn)
    {
        const std::size_t current = turn % sides.size();
        if (sides[previous].upwards && !sides[current].upwards)
        {
            const Top   top{Truncated(sides[current].y1), previous, current};
            std::size_t at = 0;
            while (at < tops.size() && tops[at].row < top.row) ++at;
            tops.insert(tops.begin() + static_cast<std::ptrdiff_t>(at), top);
        }
        previous = current;
    }
}

class Scan
{
public:
    Scan(std::vector<Side>& sides, PlainOutcome& outcome) : m_sides(sides), m_outcome(outcome) {}

    void Activate(const Top& top)
    {
        const Side& left      = m_sides[top.left];
        const Side& right     = m_sides[top.right];
        bool        leftFirst = left.x1 < right.x1;
        if (left.x1 == right.x1) leftFirst = left.step <= right.step;
        const std::size_t first  = leftFirst ? top.left : top.right;
        const std::size_t second = leftFirst ? top.right : top.left;
        std::size_t       at     = 0;
        for (; at < m_table.size(); ++at)
        {
            const Side& there = m_sides[m_table[at].side];
            if (there.x > m_sides[first].x) break;
            if (there.x == m_sides[first].x && there.step > m_sides[first].step) break;
        }
        m_table.insert(m_table.begin() + static_cast<std::ptrdiff_t>(at),
                       {Active{first, Truncated(m_sides[first].y2)}, Active{second, Truncated(m_sides[second].y2)}});
    }

    void Advance(std::int64_t row)
    {
        float       before = 0.0F;
        std::size_t at     = 0;
        while (at < m_table.size())
        {
            if (m_table[at].bottom <= row)
            {
                const std::size_t ended  = m_table[at].side;
                const std::size_t follow = FollowOn(ended);
                if (m_sides[follow].upwards != m_sides[ended].upwards)
                {
                    m_table.erase(m_table.begin() + static_cast<std::ptrdiff_t>(at));
                    continue;
                }
                m_table[at] = {follow, Truncated(m_sides[follow].y2)};
            }
            Side&       side = m_sides[m_table[at].side];
            const float x    = Held(side, side.x);
            side.span        = x;
            side.x += side.step;
            if (before <= x)
            {
                before = x;
                ++at;
                continue;
            }
            at     = MoveForward(at, x);
            before = at == 0 ? 0.0F : m_sides[m_table[at - 1].side].span;
        }
    }

    void Emit(std::int64_t row)
    {
        for (std::size_t at = 0; at + 1 < m_table.size(); at += 2)
        {
            const float start = m_sides[m_table[at].side].span;
            const float end   = m_sides[m_table[at + 1].side].span - 0.5F;
            if (end > start) m_outcome.spans.push_back({row, Truncated(start * 65536.0F), Truncated(end * 65536.0F)});
        }
    }

    bool IsEmpty() const { return m_table.empty(); }

private:
    std::size_t FollowOn(std::size_t ended) const
    {
        const std::size_t count = m_sides.size();
        return m_sides[ended].upwards ? (ended + count - 1) % count : (ended + 1) % count;
    }

    //! Puts an entry where its x belongs and returns where its follower stands now.
    std::size_t MoveForward(std::size_t at, float x)
    {
        const Active moved = m_table[at];
        m_table.erase(m_table.begin() + static_cast<std::ptrdiff_t>(at));
        std::size_t to = 0;
        while (to < m_table.size() && m_sides[m_table[to].side].span < x) ++to;
        m_table.insert(m_table.begin() + static_cast<std::ptrdiff_t>(to), moved);
        ++m_outcome.crossings;
        return to <= at ? at + 1 : at;
    }

    std::vector<Side>&  m_sides;
    PlainOutcome&       m_outcome;
    std::vector<Active> m_table;
};

}  // namespace

std::int64_t Truncated(float value)
{
    if (value >= 2147483648.0F) return INT32_MAX;
    if (value < -2147483648.0F) return INT32_MIN;
    return value == value ? static_cast<std::int64_t>(value) : 0;
}

void PlainSpans(const Outline& outline, PlainOutcome& outcome)
{
    outcome.spans.clear();
    outcome.polygons = outcome.rejected = outcome.edges = outcome.buckets = outcome.crossings = 0;

    std::vector<Side> sides;
    SidesOf(outline, sides);
    if (sides.size() < 2)
    {
        outcome.rejected = 1;
        return;
    }
    outcome.edges = static_cast<int>(sides.size());

    std::vector<Top> tops;
    TopsOf(sides, tops);
    if (tops.empty())
    {
        outcome.rejected = 1;
        return;
    }
    outcome.buckets  = static_cast<int>(tops.size());
    outcome.polygons = 1;

    Scan        scan(sides, outcome);
    std::size_t next = 0;
    for (std::int64_t row = tops.front().row;; ++row)
    {
        for (; next < tops.size() && tops[next].row <= row; ++next) scan.Activate(tops[next]);
        scan.Advance(row);
        scan.Emit(row);
        if (scan.IsEmpty()) break;
    }
}

void PaintSpans(const Canvas& canvas, const std::vector<Span>& spans, std::uint32_t color, int alpha)
{
    for (const Span& span : spans)
    {
        if (span.row < 0 || span.row >= canvas.height) continue;
        const std::int64_t first = std::max<std::int64_t>(span.start >> 16, 0);
        const std::int64_t last  = std::min<std::int64_t>(span.end >> 16, canvas.width - 1);
        for (std::int64_t x = first; x <= last; ++x)
        {
            std::uint32_t& pixel = canvas.pixels[span.row * canvas.pitch + x];
            pixel                = alpha == 255 ? color : support::MixLinearSrcAlpha(pixel, color, alpha);
        }
    }
}

}  // namespace reference
