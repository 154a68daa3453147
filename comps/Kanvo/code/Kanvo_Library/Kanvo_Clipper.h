// Kanvo_Clipper: cuts line segments and outlines to a rectangle. Used by Kanvo_Linedraw and Kanvo_Polydraw. The regions and
// the margin are static: one thread draws at a time.
#ifndef KANVO_CLIPPER_H
#define KANVO_CLIPPER_H

#include "Kanvo_Geometry.h"
#include "Tov_Types.h"

//! What the clipper found out; bits.
enum ClipFlags : Tov_Flag
{
    CF_NOTVIS     = 0,  //!< nothing of the line is inside, or a coordinate is not finite
    CF_VIS        = 1,  //!< a part is, possibly a single point
    CF_CLIPPED    = 2,  //!< an end point was moved
    CB_OUTOFBOUND = 4,  //!< set by the thin-line loop where its footprint leaves the region
    CF_OVERFLOW   = 8   //!< an end point lies so near the border that its footprint may leave the region
};

class Kanvo_Clipper
{
public:
    //! Sets the region for lines. Bounds are coordinates of pixel centres and belong to the region; a region whose maximum
    //! is below its minimum shows nothing. vEpsilon is not needed here.
    static void InitRegionV(Tov_Value vMinX, Tov_Value vMinY, Tov_Value vMaxX, Tov_Value vMaxY, Tov_Value vEpsilon);

    //! How far inside the region both ends must lie for CF_OVERFLOW not to be set, in pixels.
    static void SetOverFlowMargin(Tov_Value vMargin);

    //! Cuts the line to the region with its bounds moved by vLeft, vTop, vRight, vBottom, in place. bOverflow: whether to
    //! find out about CF_OVERFLOW, which is measured from the region itself. A line that lies inside keeps its points
    //! bit for bit; an invisible one, too.
    static Tov_Flag ClipLine(Kanvo_Vector2& kA, Kanvo_Vector2& kB, bool bOverflow, Tov_Value vLeft, Tov_Value vTop,
                             Tov_Value vRight, Tov_Value vBottom);

    //! Cuts the line to the region itself and stores where on the uncut line the ends lie now, 0 at its start, 1 at its
    //! end. CF_OVERFLOW is measured with the largest margin a line needs, 5 pixels.
    static Tov_Flag ClipLinePara(Kanvo_Vector2& kA, Kanvo_Vector2& kB, Tov_Value& vTa, Tov_Value& vTb);

    //! Sets the region for polygons. The upper bounds do not belong to it: what is clipped ends at least vEpsilon before
    //! them, and before them in any case. A region without extent shows nothing.
    static void InitRegion(Tov_Value vMinX, Tov_Value vMinY, Tov_Value vMaxX, Tov_Value vMaxY, Tov_Value vEpsilon);

    //! Cuts an outline to the region of InitRegion: pvValues has uiCount vertices, uiPitch bytes from one to the next, each
    //! starting with x and y as Tov_Value at any alignment; the last is joined to the first, and so is the result. Returns
    //! uiOutCount vertices, all inside the region and in the same sense of rotation, which belong to the clipper and are
    //! good until its next call. Vertices that lie inside come out bit for bit. Where a concave outline leaves and comes
    //! back, sides that run along the border join the pieces; the even-odd rule does not see them. Both directions of a
    //! side are cut at the same point.
    //!
    //! uiOutCount is 0, and nothing to be drawn, where less than three vertices are left, where a coordinate is not
    //! finite, for null, and where the result would not fit: that asserts "polygon too large" (Kanvo_PolyBuffers.h).
    static const Kanvo_Coord2D* ClipPolygon(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch,
                                            Tov_UInt& uiOutCount);

private:
    struct Region
    {
        Tov_Value vMinX;
        Tov_Value vMinY;
        Tov_Value vMaxX;
        Tov_Value vMaxY;

        Tov_Bool Holds(const Kanvo_Vector2& kPoint) const
        {
            return kPoint.x >= vMinX && kPoint.x <= vMaxX && kPoint.y >= vMinY && kPoint.y <= vMaxY;
        }
        //! With its bounds moved.
        Region Moved(Tov_Value vLeft, Tov_Value vTop, Tov_Value vRight, Tov_Value vBottom) const
        {
            return {vMinX + vLeft, vMinY + vTop, vMaxX + vRight, vMaxY + vBottom};
        }
    };

    static const Kanvo_Coord2D* CopyInside(const Region& kRegion, const void* pvValues, Tov_UInt uiCount,
                                           Tov_UInt uiPitch);

    static Tov_Flag Clip(const Region& kRegion, Kanvo_Vector2& kA, Kanvo_Vector2& kB, Tov_Value& vTa, Tov_Value& vTb);
    static Tov_Flag OverflowFlag(const Kanvo_Vector2& kA, const Kanvo_Vector2& kB, Tov_Value vMargin)
    {
        const Region kInner = s_kRegion.Moved(vMargin, vMargin, -vMargin, -vMargin);
        return kInner.Holds(kA) && kInner.Holds(kB) ? Tov_Flag{0} : Tov_Flag{CF_OVERFLOW};
    }

    static Region    s_kRegion;
    static Region    s_kPolygonRegion;
    static Tov_Value s_vMargin;
};

// Most lines lie well inside: what these need stands here, where it costs no calls.

inline void Kanvo_Clipper::InitRegionV(Tov_Value vMinX, Tov_Value vMinY, Tov_Value vMaxX, Tov_Value vMaxY,
                                       Tov_Value /*vEpsilon*/)
{
    s_kRegion = {vMinX, vMinY, vMaxX, vMaxY};
}

inline void Kanvo_Clipper::SetOverFlowMargin(Tov_Value vMargin)
{
    s_vMargin = vMargin;
}

inline Tov_Flag Kanvo_Clipper::ClipLine(Kanvo_Vector2& kA, Kanvo_Vector2& kB, bool bOverflow, Tov_Value vLeft,
                                        Tov_Value vTop, Tov_Value vRight, Tov_Value vBottom)
{
    const Region kWidened = s_kRegion.Moved(vLeft, vTop, vRight, vBottom);
    Tov_Flag     ulCode   = CF_VIS;
    if (!kWidened.Holds(kA) || !kWidened.Holds(kB))
    {
        Tov_Value vTa = 0.0F;
        Tov_Value vTb = 1.0F;
        ulCode        = Clip(kWidened, kA, kB, vTa, vTb);
    }
    return ulCode != CF_NOTVIS && bOverflow ? ulCode | OverflowFlag(kA, kB, s_vMargin) : ulCode;
}

#endif
