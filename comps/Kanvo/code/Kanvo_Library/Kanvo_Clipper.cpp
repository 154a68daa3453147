// Kanvo_Clipper: the parametric cut of Liang and Barsky. The cut points are calculated in double precision from the uncut
// start, which keeps the line's pixels however far away its ends are, and then held inside the region, so that no rounding
// puts them outside. Outlines go through the four half planes of Sutherland and Hodgman one vertex at a time, so that no list
// stands between them.
#include "Kanvo_Clipper.h"

#include <algorithm>
#include <cstring>

#include "Kanvo_PolyBuffers.h"
#include "Trak_Assert.h"

Kanvo_Clipper::Region Kanvo_Clipper::s_kRegion        = {0.0F, 0.0F, -1.0F, -1.0F};
Kanvo_Clipper::Region Kanvo_Clipper::s_kPolygonRegion = {0.0F, 0.0F, -1.0F, -1.0F};
Tov_Value             Kanvo_Clipper::s_vMargin        = 1.0F;

namespace
{

Tov_Bool IsFinite(const Kanvo_Vector2& kPoint)
{
    return kPoint.x - kPoint.x == 0.0F && kPoint.y - kPoint.y == 0.0F;
}

//! Where a line crosses a bound: the parameter on the uncut line, and the bound's coordinate.
struct Crossing
{
    enum Axis
    {
        AXIS_X,
        AXIS_Y
    };

    double    dT;
    Axis      eAxis;
    Tov_Value vBound;
};

//! The part of a line that is left after cutting at one half plane after the other.
struct Part
{
    Crossing kFrom = {0.0, Crossing::AXIS_X, 0.0F};
    Crossing kTo   = {1.0, Crossing::AXIS_X, 0.0F};

    //! Keeps what lies on the inner side of the lower (dSide -1) or upper (1) bound of an axis, on which the line starts at
    //! dStart and runs over dDelta. False where nothing is left.
    Tov_Bool Cut(double dSide, double dStart, double dDelta, Crossing::Axis eAxis, Tov_Value vBound)
    {
        const double dTowards = dSide * dDelta;
        const double dRoom    = dSide * (static_cast<double>(vBound) - dStart);
        if (dTowards == 0.0)
        {
            return dRoom >= 0.0;
        }
        const double dT = dRoom / dTowards;
        if (dTowards < 0.0 && dT >= kFrom.dT)
        {
            kFrom = {dT, eAxis, vBound};
        }
        if (dTowards > 0.0 && dT <= kTo.dT)
        {
            kTo = {dT, eAxis, vBound};
        }
        return kFrom.dT <= kTo.dT;
    }
};

Tov_Value Between(double dValue, Tov_Value vMin, Tov_Value vMax)
{
    return static_cast<Tov_Value>(std::max(static_cast<double>(vMin), std::min(static_cast<double>(vMax), dValue)));
}

//! The largest number below vValue.
Tov_Value NextBelow(Tov_Value vValue)
{
    std::int32_t iBits = 0;
    std::memcpy(&iBits, &vValue, sizeof iBits);
    iBits = vValue > 0.0F ? iBits - 1 : vValue < 0.0F ? iBits + 1 : INT32_MIN + 1;
    std::memcpy(&vValue, &iBits, sizeof iBits);
    return vValue;
}

//! Takes an outline vertex by vertex. The half planes are links of a chain that ends in the result; at four links the calls
//! cost less than four copies of the code.
class VertexSink
{
public:
    virtual void Put(const Kanvo_Coord2D& kVertex) = 0;
    //! The outline goes back to its first vertex.
    virtual void Close() = 0;

protected:
    ~VertexSink() = default;
};

//! Where a clipped outline goes: as much as fits is kept, and all is counted.
class OutlineBuffer final : public VertexSink
{
public:
    explicit OutlineBuffer(Tov_UInt uiRoom)
        : m_pkVertices(Kanvo_PolyGetClipBuffer(uiRoom)),
          m_uiRoom(m_pkVertices != nullptr ? uiRoom : 0),
          m_uiCount(0)
    {
    }
    void Put(const Kanvo_Coord2D& kVertex) override
    {
        if (m_uiCount < m_uiRoom)
        {
            m_pkVertices[m_uiCount] = kVertex;
        }
        ++m_uiCount;
    }
    void                 Close() override {}
    const Kanvo_Coord2D* Vertices() const { return m_pkVertices; }
    Tov_UInt             Count() const { return m_uiCount; }
    Tov_Bool             Fits() const { return m_uiCount <= m_uiRoom; }

private:
    Kanvo_Coord2D* m_pkVertices;
    Tov_UInt       m_uiRoom;
    Tov_UInt       m_uiCount;
};

//! One side of the region: hands on what of an outline lies at or inside vBound on one axis.
class HalfPlane final : public VertexSink
{
public:
    using Axis = Tov_Value Kanvo_Coord2D::*;

    //! eAxis: the coordinate that is bound; eOther: the other one. bUpper: the bound is the upper one.
    HalfPlane(VertexSink& kNext, Axis eAxis, Axis eOther, Tov_Value vBound, Tov_Bool bUpper)
        : m_kNext(kNext),
          m_eAxis(eAxis),
          m_eOther(eOther),
          m_vBound(vBound),
          m_bUpper(bUpper),
          m_bBegun(false),
          m_kFirst(),
          m_kPrevious()
    {
    }

    void Put(const Kanvo_Coord2D& kVertex) override
    {
        if (m_bBegun)
        {
            PutCrossing(kVertex);
        }
        else
        {
            m_kFirst = kVertex;
            m_bBegun = true;
        }
        if (IsInside(kVertex))
        {
            m_kNext.Put(kVertex);
        }
        m_kPrevious = kVertex;
    }

    void Close() override
    {
        if (m_bBegun)
        {
            PutCrossing(m_kFirst);
        }
        m_kNext.Close();
    }

private:
    Tov_Bool IsInside(const Kanvo_Coord2D& kVertex) const
    {
        return m_bUpper ? kVertex.*m_eAxis <= m_vBound : kVertex.*m_eAxis >= m_vBound;
    }

    //! Hands on where the side from the previous vertex to kVertex crosses the bound, if it does. Calculated from the inner
    //! end, so that both directions give the same point.
    void PutCrossing(const Kanvo_Coord2D& kVertex)
    {
        const Tov_Bool bFromInside = IsInside(m_kPrevious);
        if (bFromInside == IsInside(kVertex))
        {
            return;
        }
        const Kanvo_Coord2D& kInner = bFromInside ? m_kPrevious : kVertex;
        const Kanvo_Coord2D& kOuter = bFromInside ? kVertex : m_kPrevious;
        const auto           dAxis  = static_cast<double>(kInner.*m_eAxis);
        const auto           dOther = static_cast<double>(kInner.*m_eOther);
        const double dPart = (static_cast<double>(m_vBound) - dAxis) / (static_cast<double>(kOuter.*m_eAxis) - dAxis);

        Kanvo_Coord2D kPoint;
        kPoint.*m_eAxis  = m_vBound;
        kPoint.*m_eOther = static_cast<Tov_Value>(dOther + dPart * (static_cast<double>(kOuter.*m_eOther) - dOther));
        m_kNext.Put(kPoint);
    }

    VertexSink&   m_kNext;
    Axis          m_eAxis;
    Axis          m_eOther;
    Tov_Value     m_vBound;
    Tov_Bool      m_bUpper;
    Tov_Bool      m_bBegun;
    Kanvo_Coord2D m_kFirst;
    Kanvo_Coord2D m_kPrevious;
};

}  // namespace

void Kanvo_Clipper::InitRegionV(Tov_Value vMinX, Tov_Value vMinY, Tov_Value vMaxX, Tov_Value vMaxY,
                                Tov_Value /*vEpsilon*/)
{
    s_kRegion = {vMinX, vMinY, vMaxX, vMaxY};
}

void Kanvo_Clipper::SetOverFlowMargin(Tov_Value vMargin)
{
    s_vMargin = vMargin;
}

Tov_Flag Kanvo_Clipper::ClipLine(Kanvo_Vector2& kA, Kanvo_Vector2& kB, bool bOverflow, Tov_Value vLeft, Tov_Value vTop,
                                 Tov_Value vRight, Tov_Value vBottom)
{
    const Region   kWidened = {s_kRegion.vMinX + vLeft, s_kRegion.vMinY + vTop, s_kRegion.vMaxX + vRight,
                               s_kRegion.vMaxY + vBottom};
    Tov_Value      vTa      = 0.0F;
    Tov_Value      vTb      = 1.0F;
    const Tov_Flag ulCode   = Clip(kWidened, kA, kB, vTa, vTb);
    return ulCode != CF_NOTVIS && bOverflow ? ulCode | OverflowFlag(kA, kB, s_vMargin) : ulCode;
}

Tov_Flag Kanvo_Clipper::ClipLinePara(Kanvo_Vector2& kA, Kanvo_Vector2& kB, Tov_Value& vTa, Tov_Value& vTb)
{
    constexpr Tov_Value vMargin = 5.0F;

    vTa                   = 0.0F;
    vTb                   = 1.0F;
    const Tov_Flag ulCode = Clip(s_kRegion, kA, kB, vTa, vTb);
    return ulCode != CF_NOTVIS ? ulCode | OverflowFlag(kA, kB, vMargin) : ulCode;
}

Tov_Bool Kanvo_Clipper::Region::Holds(const Kanvo_Vector2& kPoint) const
{
    return kPoint.x >= vMinX && kPoint.x <= vMaxX && kPoint.y >= vMinY && kPoint.y <= vMaxY;
}

Tov_Flag Kanvo_Clipper::Clip(const Region& kRegion, Kanvo_Vector2& kA, Kanvo_Vector2& kB, Tov_Value& vTa,
                             Tov_Value& vTb)
{
    if (!IsFinite(kA) || !IsFinite(kB) || kRegion.vMaxX < kRegion.vMinX || kRegion.vMaxY < kRegion.vMinY)
    {
        return CF_NOTVIS;
    }
    if (kRegion.Holds(kA) && kRegion.Holds(kB))
    {
        return CF_VIS;
    }
    const auto   dX  = static_cast<double>(kA.x);
    const auto   dY  = static_cast<double>(kA.y);
    const double dDX = static_cast<double>(kB.x) - dX;
    const double dDY = static_cast<double>(kB.y) - dY;
    Part         kPart;
    if (!kPart.Cut(-1.0, dX, dDX, Crossing::AXIS_X, kRegion.vMinX) ||
        !kPart.Cut(1.0, dX, dDX, Crossing::AXIS_X, kRegion.vMaxX) ||
        !kPart.Cut(-1.0, dY, dDY, Crossing::AXIS_Y, kRegion.vMinY) ||
        !kPart.Cut(1.0, dY, dDY, Crossing::AXIS_Y, kRegion.vMaxY))
    {
        return CF_NOTVIS;
    }
    const auto kAt = [&](const Crossing& kCut)
    {
        Kanvo_Vector2 kPoint(Between(dX + kCut.dT * dDX, kRegion.vMinX, kRegion.vMaxX),
                             Between(dY + kCut.dT * dDY, kRegion.vMinY, kRegion.vMaxY));
        (kCut.eAxis == Crossing::AXIS_X ? kPoint.x : kPoint.y) = kCut.vBound;
        return kPoint;
    };
    // Which end moves is asked of the points: an end just outside a bound may have a parameter that rounds to 0 or 1.
    if (!kRegion.Holds(kA))
    {
        kA  = kAt(kPart.kFrom);
        vTa = static_cast<Tov_Value>(kPart.kFrom.dT);
    }
    if (!kRegion.Holds(kB))
    {
        kB  = kAt(kPart.kTo);
        vTb = static_cast<Tov_Value>(kPart.kTo.dT);
    }
    return CF_VIS | CF_CLIPPED;
}

Tov_Flag Kanvo_Clipper::OverflowFlag(const Kanvo_Vector2& kA, const Kanvo_Vector2& kB, Tov_Value vMargin)
{
    const Region kInner = {s_kRegion.vMinX + vMargin, s_kRegion.vMinY + vMargin, s_kRegion.vMaxX - vMargin,
                           s_kRegion.vMaxY - vMargin};
    return kInner.Holds(kA) && kInner.Holds(kB) ? Tov_Flag{0} : Tov_Flag{CF_OVERFLOW};
}

// ---- outlines -------------------------------------------------------------------------------------------------------

void Kanvo_Clipper::InitRegion(Tov_Value vMinX, Tov_Value vMinY, Tov_Value vMaxX, Tov_Value vMaxY, Tov_Value vEpsilon)
{
    // From 2048 on the epsilon alone is lost in the rounding of a bound.
    s_kPolygonRegion = {vMinX, vMinY, std::min(vMaxX - vEpsilon, NextBelow(vMaxX)),
                        std::min(vMaxY - vEpsilon, NextBelow(vMaxY))};
}

const Kanvo_Coord2D* Kanvo_Clipper::ClipPolygon(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch,
                                                Tov_UInt& uiOutCount)
{
    const Region& kRegion = s_kPolygonRegion;
    uiOutCount            = 0;
    if (pvValues == nullptr || uiCount < 3 || !(kRegion.vMinX <= kRegion.vMaxX && kRegion.vMinY <= kRegion.vMaxY))
    {
        return nullptr;
    }
    OutlineBuffer kResult(Kanvo_PolyGetCorners());
    HalfPlane     kRight(kResult, &Kanvo_Coord2D::x, &Kanvo_Coord2D::y, kRegion.vMaxX, true);
    HalfPlane     kLeft(kRight, &Kanvo_Coord2D::x, &Kanvo_Coord2D::y, kRegion.vMinX, false);
    HalfPlane     kBottom(kLeft, &Kanvo_Coord2D::y, &Kanvo_Coord2D::x, kRegion.vMaxY, true);
    HalfPlane     kTop(kBottom, &Kanvo_Coord2D::y, &Kanvo_Coord2D::x, kRegion.vMinY, false);
    for (Tov_UInt uiIndex = 0; uiIndex < uiCount; ++uiIndex)
    {
        const Kanvo_Coord2D kVertex = Kanvo_ReadVertex(pvValues, uiPitch, uiIndex);
        if (!IsFinite(Kanvo_Vector2(kVertex.x, kVertex.y)))
        {
            return nullptr;
        }
        kTop.Put(kVertex);
    }
    kTop.Close();
    TRAK_CHECK(kResult.Fits(), "polygon too large");
    if (!kResult.Fits() || kResult.Count() < 3)
    {
        return nullptr;
    }
    uiOutCount = kResult.Count();
    return kResult.Vertices();
}
