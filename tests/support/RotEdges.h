// RotEdges: the library's edges of a rotated blit in the reference's words, and what must be true of any of them.
#ifndef ROTEDGES_H
#define ROTEDGES_H

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "Kanvo_RotBlitParam.h"
#include "Reference_Rot.h"

namespace support
{

//! What RotBlitCalc says, nothing where it says no. A count beyond the arrays is cut and then found by WrongEdges.
inline std::optional<reference::RotGeometry> EdgesOf(const Kanvo_Bitmap& target, const reference::RotWhere& where,
                                                     Tov_Flag flags)
{
    constexpr int          ROOM = Kanvo_RotBlitParam::MAX_EDGES;
    Kanvo_RotBlitEdgeLeft  left[ROOM];
    Kanvo_RotBlitEdgeRight right[ROOM];
    Tov_Int                leftCount  = 0;
    Tov_Int                rightCount = 0;
    reference::RotGeometry geometry;
    if (!Kanvo_RotBlitParam::RotBlitCalc(&target, where.width, where.height, where.srcX, where.srcY, where.dstX,
                                         where.dstY, where.angle, flags, where.stretchX, where.stretchY, where.rotPosX,
                                         where.rotPosY, left, right, leftCount, rightCount, geometry.endY, geometry.au,
                                         geometry.av))
    {
        return {};
    }
    for (int index = 0; index < leftCount && index < ROOM; ++index)
    {
        const Kanvo_RotBlitEdgeLeft& edge = left[index];
        geometry.left.push_back({edge.y1, edge.dx, edge.sx, edge.v, edge.u, edge.dv, edge.du, edge.usFineV,
                                 edge.usFineU, edge.usFineDV, edge.usFineDU});
    }
    for (int index = 0; index < rightCount && index < ROOM; ++index)
    {
        geometry.right.push_back({right[index].y1, right[index].dx, right[index].sx});
    }
    if (leftCount > ROOM || rightCount > ROOM || leftCount < 1 || rightCount < 1) geometry.left.clear();
    return geometry;
}

//! The clip rectangle as the target has it.
inline reference::Clip ClipOf(const Kanvo_Bitmap& target)
{
    return {target.GetClipMinX(), target.GetClipMinY(), target.GetClipMaxX(), target.GetClipMaxY()};
}

//! An empty text, or what is wrong with the edges or with a pixel that they let the scan draw.
inline std::string WrongEdges(const reference::RotGeometry& geometry, const std::vector<reference::RotPixel>& pixels,
                              const reference::Clip& clip, const reference::RotWhere& where, bool filtered)
{
    if (geometry.left.empty() || geometry.right.empty()) return "no edges, or more than three";
    if (geometry.left[0].y1 != geometry.right[0].y1) return "the lists begin with different rows";
    for (std::size_t index = 1; index < geometry.left.size(); ++index)
    {
        if (geometry.left[index].y1 <= geometry.left[index - 1].y1) return "left edges that do not follow each other";
    }
    for (std::size_t index = 1; index < geometry.right.size(); ++index)
    {
        if (geometry.right[index].y1 <= geometry.right[index - 1].y1)
            return "right edges that do not follow each other";
    }
    if (geometry.left.back().y1 >= geometry.endY || geometry.right.back().y1 >= geometry.endY)
        return "an edge without rows";
    if (geometry.left[0].y1 < clip.minY || geometry.endY > clip.maxY + 1) return "rows outside the clip rectangle";
    // Positions from the source rectangle's first pixel on; a filtered one mixes its pixel with the next.
    const std::int64_t one       = 65536;
    const std::int64_t widthEnd  = (std::int64_t{where.width} - (filtered ? 1 : 0)) * one;
    const std::int64_t heightEnd = (std::int64_t{where.height} - (filtered ? 1 : 0)) * one;
    const std::int64_t beginV    = std::int64_t{where.srcX} * one;
    const std::int64_t beginU    = std::int64_t{where.srcY} * one;
    std::int32_t       lastX     = 0;
    std::int32_t       lastY     = -1;
    char               text[200];
    for (const reference::RotPixel& pixel : pixels)
    {
        const std::int64_t v = pixel.v - beginV;
        const std::int64_t u = pixel.u - beginU;
        if (v < 0 || v >= widthEnd || u < 0 || u >= heightEnd)
        {
            std::snprintf(text, sizeof text, "pixel (%d, %d)%s samples (%.6f, %.6f) of the source rectangle", pixel.x,
                          pixel.y, pixel.firstOfRow ? ", first of its row," : "", static_cast<double>(v) / 65536,
                          static_cast<double>(u) / 65536);
            return text;
        }
        if (pixel.x < clip.minX || pixel.x > clip.maxX || pixel.y < clip.minY || pixel.y > clip.maxY)
        {
            std::snprintf(text, sizeof text, "pixel (%d, %d) lies outside the clip rectangle", pixel.x, pixel.y);
            return text;
        }
        if (pixel.y < lastY || (pixel.y == lastY && pixel.x <= lastX)) return "a pixel is drawn twice";
        lastX = pixel.x;
        lastY = pixel.y;
    }
    return {};
}

}  // namespace support

#endif
