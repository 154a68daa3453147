// Reference_PolygonAA: see the header.
#include "Reference_PolygonAA.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace reference
{

namespace
{

constexpr unsigned      CUT_TOP    = 1;
constexpr unsigned      CUT_BOTTOM = 2;
constexpr unsigned      COMBINED   = 4;
constexpr std::uint32_t LIVE       = 0x3FFFFFFF;  // 30 sub-samples

using Table = std::vector<SoftEdge>;

std::int64_t FloorOf(float value)
{
    return static_cast<std::int64_t>(std::floor(value));
}

unsigned IndexOf(const SoftEdge& edge)
{
    return static_cast<unsigned>(edge.distance >> 22) & 31U;
}

int CountOf(std::uint32_t mask)
{
    int count = 0;
    for (; mask != 0; mask >>= 1) count += (mask & 1U) != 0;
    return count;
}

//! Before the first edge that starts further right.
void Insert(Table& table, const SoftEdge& edge)
{
    std::size_t at = 0;
    while (at < table.size() && table[at].left <= edge.left) ++at;
    table.insert(table.begin() + static_cast<std::ptrdiff_t>(at), edge);
}

class Row
{
public:
    Row(Table& table, const SoftTables& tables, std::int64_t y, int alpha, std::vector<SoftBlend>& blends)
        : m_table(table),
          m_tables(tables),
          m_y(y),
          m_alpha(alpha),
          m_blends(blends),
          m_x(table.front().left)
    {
    }

    void Walk()
    {
        std::size_t at = 0;
        while (at < m_table.size())
        {
            FillUpTo(m_table[at].left);
            int coverage = CoverageAt(at);
            if (m_alpha < 255) coverage = m_alpha * coverage / 256;
            m_insideHere = m_insideNext;
            while (at < m_table.size() && m_table[at].right <= m_x) ++at;
            m_blends.push_back({m_x, m_y, coverage});
            ++m_x;
        }
    }

private:
    void FillUpTo(std::int64_t left)
    {
        if (left <= m_x) return;
        for (; m_insideNext != 0 && m_x < left; ++m_x) m_blends.push_back({m_x, m_y, m_alpha});
        m_x = left;
    }

    bool IsShared(std::size_t at) const
    {
        for (std::size_t other = at + 1; other < m_table.size() && m_table[other].left <= m_x; ++other)
            if (m_table[other].right >= m_x) return true;
        return false;
    }

    //! What lies inside right of the pixel, where the edge ends in it.
    void Cross(const SoftEdge& edge)
    {
        if (edge.right != m_x) return;
        switch (edge.flags & (CUT_TOP | CUT_BOTTOM))
        {
        case 0: m_insideNext ^= LIVE; break;
        case CUT_TOP: m_insideNext ^= edge.topMask; break;
        case CUT_BOTTOM: m_insideNext ^= edge.bottomMask; break;
        default: m_insideNext ^= edge.topMask & edge.bottomMask; break;
        }
    }

    std::uint32_t MaskOf(const SoftEdge& edge, unsigned index) const
    {
        std::uint32_t mask = m_tables.masks[edge.tableBase + index];
        if ((edge.flags & CUT_TOP) != 0) mask &= edge.topMask;
        if ((edge.flags & CUT_BOTTOM) != 0) mask &= edge.bottomMask;
        return mask;
    }

    //! The edge's index for this pixel; the edge goes on to the next.
    static unsigned Step(SoftEdge& edge)
    {
        const unsigned index = IndexOf(edge);
        edge.distance += edge.perPixel;
        return index;
    }

    int CoverageAt(std::size_t at)
    {
        SoftEdge&  edge   = m_table[at];
        const bool shared = IsShared(at);
        Cross(edge);
        const unsigned index = Step(edge);
        if (!shared && (edge.flags & COMBINED) == 0)
            return m_tables.areas[edge.tableBase + (m_insideHere != 0 ? (32U - index) & 31U : index)];

        std::uint32_t mask = MaskOf(edge, index);
        if (shared)
        {
            edge.flags |= COMBINED;
            for (std::size_t other = at + 1; other < m_table.size() && m_table[other].left <= m_x; ++other)
            {
                SoftEdge& too = m_table[other];
                if (too.right < m_x) continue;
                mask ^= MaskOf(too, Step(too));
                Cross(too);
                too.flags |= COMBINED;
            }
        }
        return m_tables.ofCount[CountOf(mask ^ m_insideHere)];
    }

    Table&                  m_table;
    const SoftTables&       m_tables;
    std::int64_t            m_y;
    int                     m_alpha;
    std::vector<SoftBlend>& m_blends;
    std::int64_t            m_x;
    std::uint32_t           m_insideHere = 0;  // at the left border of this pixel, of the next
    std::uint32_t           m_insideNext = 0;
};

//! The edge in the row below y.
void Descend(SoftEdge& edge, std::int64_t y)
{
    std::int64_t end = 0;
    if (edge.lastRow == y + 1)
    {
        edge.flags = CUT_BOTTOM;
        end        = FloorOf(edge.lowerX);
        if (edge.slope <= 0.0F && edge.left < end) ++edge.left;
        if (edge.slope > 0.0F && edge.right > end)
        {
            --edge.right;
            edge.distance -= edge.perPixel;
        }
    }
    else
    {
        edge.flags = 0;
        edge.x += edge.slope;
        end = std::max<std::int64_t>(FloorOf(edge.x), 0);
    }
    if (edge.slope > 0.0F)
    {
        edge.left  = edge.right;
        edge.right = end;
        edge.distance += edge.perRow - edge.perPixel;
    }
    else
    {
        const std::int64_t back = edge.right - end;
        edge.right              = edge.left;
        edge.left               = end;
        edge.distance += edge.perRow - (back + 1) * edge.perPixel;
    }
}

void RestoreOrder(Table& table)
{
    for (std::size_t at = 0; at + 1 < table.size();)
    {
        if (table[at + 1].left >= table[at].left)
        {
            ++at;
            continue;
        }
        const SoftEdge moved = table[at + 1];
        table.erase(table.begin() + static_cast<std::ptrdiff_t>(at + 1));
        Insert(table, moved);
        ++at;  // the same edge, one place further
    }
}

}  // namespace

std::vector<SoftBlend> SoftBlends(std::vector<SoftEdge> edges, const SoftTables& tables, std::int64_t lastRow,
                                  int alpha)
{
    std::vector<SoftBlend> blends;
    if (edges.empty()) return blends;
    std::int64_t row = edges.front().firstRow;
    for (const SoftEdge& edge : edges) row = std::min(row, edge.firstRow);

    Table table;
    for (; row <= lastRow; ++row)
    {
        for (const SoftEdge& edge : edges)
            if (edge.firstRow == row) Insert(table, edge);
        Row(table, tables, row, alpha, blends).Walk();

        table.erase(
            std::remove_if(table.begin(), table.end(), [&](const SoftEdge& edge) { return edge.lastRow == row; }),
            table.end());
        for (SoftEdge& edge : table) Descend(edge, row);
        if (table.empty()) break;
        RestoreOrder(table);
    }
    return blends;
}

}  // namespace reference
