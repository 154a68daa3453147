// Kanvo_PolyBuffers: one area of memory, cut into the buffers of one polygon.
#include "Kanvo_PolyBuffers.h"

#include <cstring>

#include "Kanvo_Object.h"
#include "Trak_Assert.h"

namespace
{

// The scan takes one entry more than the outline has corners, and a list head on either side of the rows.
constexpr Tov_UInt SPARE_CORNERS = 1;
constexpr Tov_UInt SPARE_ROWS    = 2;

constexpr std::uint64_t EDGES_BYTES  = sizeof(Kanvo_Polygon_Edge);
constexpr std::uint64_t BUCKET_BYTES = sizeof(Kanvo_Polygon_EdgeBucket);
constexpr std::uint64_t ACTIVE_BYTES = sizeof(Kanvo_Polygon_ActiveEdge);
constexpr std::uint64_t ROW_BYTES    = sizeof(void*);  // a list head
constexpr std::uint64_t CORNER_BYTES = EDGES_BYTES + BUCKET_BYTES + ACTIVE_BYTES + 2 * sizeof(Kanvo_Coord2D);

// Every buffer starts where the one before it ends.
static_assert(EDGES_BYTES % alignof(void*) == 0 && sizeof(Kanvo_Coord2D) % alignof(void*) == 0);
static_assert(sizeof(Kanvo_AAEdgeBucket) <= EDGES_BYTES + BUCKET_BYTES + ACTIVE_BYTES);

constexpr std::uint64_t AreaBytes(std::uint64_t uiCorners, std::uint64_t uiRows)
{
    return (uiCorners + SPARE_CORNERS) * CORNER_BYTES + (uiRows + SPARE_ROWS) * ROW_BYTES;
}

alignas(void*) unsigned char s_acBuiltIn[AreaBytes(KANVO_POLY_CORNERS, KANVO_POLY_ROWS)];

//! The present area. Without a polygon in work the list heads, which lie at its end, are all null.
struct Area
{
    unsigned char* pcMemory;
    Tov_UInt       uiCorners;
    Tov_UInt       uiRows;

    std::size_t Corners() const { return static_cast<std::size_t>(uiCorners) + SPARE_CORNERS; }

    //! The buffer that begins after uiBytes bytes per corner, null where uiCount records are too many.
    template <class Record>
    Record* Get(std::uint64_t uiBytes, Tov_UInt uiCount) const
    {
        const Tov_Bool bFits = uiCount <= Corners();
        TRAK_CHECK(bFits, "polygon too large");
        return bFits ? reinterpret_cast<Record*>(pcMemory + Corners() * static_cast<std::size_t>(uiBytes)) : nullptr;
    }
    Kanvo_AAEdgeBucket** Rows() const
    {
        return reinterpret_cast<Kanvo_AAEdgeBucket**>(pcMemory + Corners() * static_cast<std::size_t>(CORNER_BYTES));
    }
};

Area s_kArea = {s_acBuiltIn, KANVO_POLY_CORNERS, KANVO_POLY_ROWS};

}  // namespace

Kanvo_Polygon_Edge* Kanvo_PolyGetEdgeBuffer(Tov_UInt uiCount)
{
    return s_kArea.Get<Kanvo_Polygon_Edge>(0, uiCount);
}

Kanvo_Polygon_EdgeBucket* Kanvo_PolyGetBucketBuffer(Tov_UInt uiCount)
{
    return s_kArea.Get<Kanvo_Polygon_EdgeBucket>(EDGES_BYTES, uiCount);
}

Kanvo_Polygon_ActiveEdge* Kanvo_PolyGetAETBuffer(Tov_UInt uiCount)
{
    return s_kArea.Get<Kanvo_Polygon_ActiveEdge>(EDGES_BYTES + BUCKET_BYTES, uiCount);
}

Kanvo_AAEdgeBucket* Kanvo_PolyGetAABucketBuffer(Tov_UInt uiCount)
{
    return s_kArea.Get<Kanvo_AAEdgeBucket>(0, uiCount);
}

Kanvo_Coord2D* Kanvo_PolyGetClipBuffer(Tov_UInt uiCount)
{
    return s_kArea.Get<Kanvo_Coord2D>(EDGES_BYTES + BUCKET_BYTES + ACTIVE_BYTES, uiCount);
}

Kanvo_Coord2D* Kanvo_PolyGetVertexBuffer(Tov_UInt uiCount)
{
    return s_kArea.Get<Kanvo_Coord2D>(CORNER_BYTES - sizeof(Kanvo_Coord2D), uiCount);
}

Kanvo_AAEdgeBucket** Kanvo_PolyGetScanBuffer(Tov_UInt uiRows)
{
    const Tov_Bool bFits = uiRows <= s_kArea.uiRows + SPARE_ROWS;
    TRAK_CHECK(bFits, "bitmap too high for anti-aliased polygons");
    return bFits ? s_kArea.Rows() : nullptr;
}

Tov_UInt Kanvo_PolyGetCorners()
{
    return s_kArea.uiCorners;
}

Tov_UInt Kanvo_PolyGetRows()
{
    return s_kArea.uiRows;
}

std::size_t Kanvo_PolyAreaBytes(Tov_UInt uiCorners, Tov_UInt uiRows)
{
    const std::uint64_t uiBytes = AreaBytes(uiCorners, uiRows);  // below 2^40
    return uiBytes <= Kanvo::MAX_BUFFER_BYTES ? static_cast<std::size_t>(uiBytes) : 0;
}

void Kanvo_PolyAttachArea(void* pMemory, Tov_UInt uiCorners, Tov_UInt uiRows)
{
    s_kArea = {static_cast<unsigned char*>(pMemory), uiCorners, uiRows};
    std::memset(s_kArea.Rows(), 0,
                (static_cast<std::size_t>(uiRows) + SPARE_ROWS) * static_cast<std::size_t>(ROW_BYTES));
}

void Kanvo_PolyDetachArea(const void* pMemory)
{
    if (pMemory == s_kArea.pcMemory)
    {
        s_kArea = {s_acBuiltIn, KANVO_POLY_CORNERS, KANVO_POLY_ROWS};
    }
}
