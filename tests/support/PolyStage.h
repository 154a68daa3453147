// PolyStage: what tests of polygons draw on: a target between protected pages, a clip rectangle and a render state at
// hand, and spies in place of the statistics and of the performance counter that polygons use.
#ifndef POLYSTAGE_H
#define POLYSTAGE_H

#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "Kanvo_Clipper.h"
#include "LineStage.h"
#include "RandomAreas.h"
#include "Reference_Polygon.h"

namespace support
{

//! Every counter of polygons, installed to the end of the scope. One at a time.
class PolySpies
{
public:
    PolySpies() { Exchange(); }
    ~PolySpies() { Exchange(); }
    PolySpies(const PolySpies&)            = delete;
    PolySpies& operator=(const PolySpies&) = delete;

    void Clear()
    {
        for (StatSpy* const stat : {&polygons, &rejected, &edges, &buckets, &crossings}) *stat = StatSpy();
        perf = PerfSpy();
    }

    //! Empty, or what differs from what a polygon was expected to count.
    std::string Differences(const reference::PlainOutcome& expected) const
    {
        std::string text;
        const auto  check = [&](const char* name, int want, double got)
        {
            if (got != static_cast<double>(want))
                text += std::string(name) + " expected " + std::to_string(want) + ", got " + std::to_string(got) + "; ";
        };
        check("NumberOfPolygons", expected.polygons, polygons.sum);
        check("RejectedPolygons", expected.rejected, rejected.sum);
        check("PolyEdges", expected.edges, edges.sum);
        check("EdgeBuckets", expected.buckets, buckets.sum);
        check("CrossingEdges", expected.crossings, crossings.sum);
        return text;
    }

    //! Whether the performance counter ran the given number of times, each start with a stop.
    bool Ran(int times) const { return perf.starts == times && perf.wellFormed && !perf.running; }

    StatSpy polygons;
    StatSpy rejected;
    StatSpy edges;
    StatSpy buckets;
    StatSpy crossings;
    PerfSpy perf;

private:
    void Exchange()
    {
        std::swap(g_kStat_NumberOfPolygons, m_stats[0]);
        std::swap(g_kStat_RejectedPolygons, m_stats[1]);
        std::swap(g_kStat_PolyEdges, m_stats[2]);
        std::swap(g_kStat_EdgeBuckets, m_stats[3]);
        std::swap(g_kStat_CrossingEdges, m_stats[4]);
        std::swap(g_kPerf_Polygons, m_perf);
    }

    Trak_StatCounter* m_stats[5] = {&polygons, &rejected, &edges, &buckets, &crossings};
    Trak_PerfCounter* m_perf     = &perf;
};

//! The corners as the library takes them.
inline std::vector<Kanvo_Coord2D> Vertices(const reference::Outline& outline)
{
    std::vector<Kanvo_Coord2D> vertices;
    for (const reference::Corner& corner : outline) vertices.push_back({corner.x, corner.y});
    return vertices;
}

//! A LineStage with polygons.
class PolyStage : public LineStage
{
public:
    using LineStage::LineStage;

    void Polygon(const reference::Outline& outline, std::uint32_t color, Tov_Flag flags = POLY_NONE)
    {
        const std::vector<Kanvo_Coord2D> vertices = Vertices(outline);
        Bitmap().DrawPolygon(vertices.data(), static_cast<Tov_UInt>(vertices.size()), color, flags);
    }
};

//! A target as random tests throw them, somewhere in an arena between fences, with a clip rectangle at times unkind; and
//! a copy of it for the reference to draw on.
class PolyTarget
{
public:
    static constexpr std::size_t ARENA_BYTES = 65536;

    PolyTarget(Kanvo_Screen* screen, Fence& arena, Dice& dice, int most)
        : m_area(ThrowArea(dice, 4, most)),
          m_pixels(m_area.In(arena, 4)),
          m_bitmap(screen, m_area.width, m_area.height, m_pixels, m_area.pitch)
    {
        FillContent(dice, m_pixels, m_area.Bytes(4), m_area.content, reference::Format::Argb32);
        m_expected.resize(m_area.Bytes(4) / 4);
        std::memcpy(m_expected.data(), m_pixels, m_area.Bytes(4));
        if (!dice.OneIn(3))
        {
            m_clip = ThrowClip(dice, m_area);
            m_bitmap.SetCliprect(static_cast<Tov_UInt>(m_clip.minX), static_cast<Tov_UInt>(m_clip.minY),
                                 static_cast<Tov_UInt>(m_clip.maxX), static_cast<Tov_UInt>(m_clip.maxY));
        }
        m_bitmap.Lock();
    }

    PitchedTarget& Bitmap() { return m_bitmap; }
    const Area&    Size() const { return m_area; }

    //! Sets the clipper's region as polygons are clipped; false where the clip rectangle is empty.
    bool InitRegion() const
    {
        if (m_bitmap.GetClipMinX() > m_bitmap.GetClipMaxX() || m_bitmap.GetClipMinY() > m_bitmap.GetClipMaxY())
            return false;
        Kanvo_Clipper::InitRegion(
            static_cast<float>(m_bitmap.GetClipMinX()), static_cast<float>(m_bitmap.GetClipMinY()),
            static_cast<float>(m_bitmap.GetClipMaxX() + 1), static_cast<float>(m_bitmap.GetClipMaxY() + 1), 0.0001F);
        return true;
    }

    //! The copy.
    reference::Canvas Expected()
    {
        return {m_expected.data(),      m_area.width,           m_area.height,          m_area.pitch / 4,
                m_bitmap.GetClipMinX(), m_bitmap.GetClipMinY(), m_bitmap.GetClipMaxX(), m_bitmap.GetClipMaxY()};
    }

    //! Empty, or where the target, padding included, is not the copy.
    std::string Difference() const
    {
        const auto* const expected = reinterpret_cast<const std::uint8_t*>(m_expected.data());
        if (std::memcmp(expected, m_pixels, m_area.Bytes(4)) == 0) return {};
        return FirstDifference(expected, m_pixels, m_area);
    }

    std::string Described() const { return support::Described(m_area) + ", clip " + support::Described(m_clip); }

private:
    Area                       m_area;
    std::uint8_t*              m_pixels;
    PitchedTarget              m_bitmap;
    reference::Clip            m_clip;
    std::vector<std::uint32_t> m_expected;
};

//! The outline as the clipper leaves it in its present region.
inline reference::Outline Clipped(const reference::Outline& outline)
{
    const std::vector<Kanvo_Coord2D> vertices = Vertices(outline);
    Tov_UInt                         count    = 0;
    const Kanvo_Coord2D* const       clipped  = Kanvo_Clipper::ClipPolygon(
               vertices.data(), static_cast<Tov_UInt>(vertices.size()), sizeof(Kanvo_Coord2D), count);
    reference::Outline result;
    for (Tov_UInt index = 0; index < count; ++index) result.push_back({clipped[index].x, clipped[index].y});
    return result;
}

}  // namespace support

#endif
