// Reference_Rot: rotated blits a second time, as plainly as they can be described: the scan between two lists of edges,
// written out, and the pixels one channel at a time (Reference_Sample). The edges are given: the tests of the scan take the
// library's, the tests of the geometry compare those with Turn, which says in double precision where a point belongs.
// Shares nothing with the library.
#ifndef REFERENCE_ROT_H
#define REFERENCE_ROT_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Reference_Blit.h"

namespace reference
{

// ---- geometry -------------------------------------------------------------------------------------------------------

//! An edge, from row y1 on: x and its change per row; on the left also the source column v and row u. All but y1 in 16.16;
//! the last four are further 16 binary places of those named like them.
struct RotEdgeLeft
{
    std::int32_t y1;
    std::int32_t dx;
    std::int32_t sx;
    std::int32_t v;
    std::int32_t u;
    std::int32_t dv;
    std::int32_t du;

    std::uint16_t fineV  = 0;
    std::uint16_t fineU  = 0;
    std::uint16_t fineDv = 0;
    std::uint16_t fineDu = 0;
};

struct RotEdgeRight
{
    std::int32_t y1;
    std::int32_t dx;
    std::int32_t sx;
};

struct RotGeometry
{
    std::vector<RotEdgeLeft>  left;
    std::vector<RotEdgeRight> right;
    std::int32_t              endY = 0;  // the row after the last
    std::int32_t              au   = 0;  // source step for one pixel to the right
    std::int32_t              av   = 0;
};

//! A pixel that the scan draws, and the position it samples there.
struct RotPixel
{
    std::int32_t x;
    std::int32_t y;
    std::int32_t v;
    std::int32_t u;
    bool         firstOfRow;
};

//! In the order of drawing. clip: bounds inside the target.
std::vector<RotPixel> ScanRot(const RotGeometry& geometry, const Clip& clip);

//! Where a call wants to draw, as the caller says it.
struct RotWhere
{
    std::uint32_t width    = 0;
    std::uint32_t height   = 0;
    std::uint32_t srcX     = 0;
    std::uint32_t srcY     = 0;
    float         dstX     = 0;
    float         dstY     = 0;
    float         angle    = 0;  // degrees
    float         stretchX = 1;
    float         stretchY = 1;
    float         rotPosX  = 0;
    float         rotPosY  = 0;
};

//! What is left of the source rectangle where the source or its map ends; the same picture twice for no map.
RotWhere CutToSource(const RotWhere& where, const Picture& source, const Picture& map);

//! The mapping between the source rectangle and the target, in double precision: (p, q) in pixels of the rectangle.
class Turn
{
public:
    explicit Turn(const RotWhere& where);

    struct Point
    {
        double x;
        double y;
    };
    Point ToTarget(Point source) const;
    Point ToSource(Point target) const;

    //! The least distance from a point of the target to the rectangle's border, positive inside, in pixels of the target.
    double Depth(Point target) const;

private:
    double m_cos;
    double m_sin;
    double m_stretchX;
    double m_stretchY;
    Point  m_pivot;
    Point  m_destination;
    double m_width;
    double m_height;
};

// ---- whole calls ----------------------------------------------------------------------------------------------------

//! What a call is expected to do besides changing the target's pixels.
struct RotOutcome
{
    std::vector<std::string> messages;
    std::int64_t             pixels = 0;  // how many were looked at to be drawn
};

//! Each draws into target.picture.bytes, what lies between the edges if there are any. Sources and maps may be the
//! target itself.
RotOutcome RotBlit(const Target& target, const Picture& source, const std::optional<RotGeometry>& geometry,
                   std::uint32_t flags, int alpha, std::uint32_t key);
RotOutcome RotBlitColor(const Target& target, const Picture& map, const std::optional<RotGeometry>& geometry,
                        std::uint32_t color, std::uint32_t flags, int alpha);
RotOutcome RotBlitAlpha(const Target& target, const Picture& source, const Picture& map,
                        const std::optional<RotGeometry>& geometry, std::uint32_t flags, int alpha);

}  // namespace reference

#endif
