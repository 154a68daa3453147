// Reference_PolygonAA: the scan of anti-aliased polygons a second time: a vector instead of a linked table, and blends
// that are written down instead of painted. It starts from finished edges and from the tables, which are the caller's:
// whether these are good is the business of ExactArea (Reference_PolygonRule.h). Shares no code with the library.
#ifndef REFERENCE_POLYGONAA_H
#define REFERENCE_POLYGONAA_H

#include <cstdint>
#include <vector>

namespace reference
{

struct SoftEdge
{
    std::int64_t  firstRow;
    std::int64_t  lastRow;
    float         lowerX;
    std::int64_t  tableBase;
    std::int64_t  distance;  // of the pixel from the edge; bits 22 to 26 are the index into the tables
    std::int64_t  perPixel;
    std::int64_t  perRow;
    float         slope;
    float         x;
    std::int64_t  left;  // first and last pixel in this row
    std::int64_t  right;
    std::uint32_t topMask;
    std::uint32_t bottomMask;
    unsigned      flags;
};

struct SoftTables
{
    const std::uint32_t* masks;
    const std::uint8_t*  areas;
    const std::uint8_t*  ofCount;
};

struct SoftBlend
{
    std::int64_t x;
    std::int64_t y;
    int          alpha;

    friend bool operator==(const SoftBlend& one, const SoftBlend& other)
    {
        return one.x == other.x && one.y == other.y && one.alpha == other.alpha;
    }
};

//! Every blend of the polygon in the order of the scan. edges: those that start on the same row in the order in which
//! they are found there. lastRow: of the clip rectangle.
std::vector<SoftBlend> SoftBlends(std::vector<SoftEdge> edges, const SoftTables& tables, std::int64_t lastRow,
                                  int alpha);

}  // namespace reference

#endif
