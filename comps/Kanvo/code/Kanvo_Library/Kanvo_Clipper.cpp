// Kanvo_Clipper: the parametric cut of Liang and Barsky. The cut points are calculated in double precision from the uncut
// start, which keeps the line's pixels however far away its ends are, and then held inside the region, so that no rounding
// puts them outside.
#include "Kanvo_Clipper.h"

#include <algorithm>

Kanvo_Clipper::Region Kanvo_Clipper::s_kRegion = {0.0F, 0.0F, -1.0F, -1.0F};
Tov_Value             Kanvo_Clipper::s_vMargin = 1.0F;

namespace
{

Tov_Bool IsFinite(const Kanvo_Vector2& kPoint)
{
    return kPoint.x - kPoint.x == 0.0F && kPoint.y - kPoint.y == 0.0F;
}

//! The part of a line, in parameters of the uncut one, that is left after cutting at one half plane after the other.
struct Part
{
    double dFrom = 0.0;
    double dTo   = 1.0;

    //! Keeps the t with t * dTowards <= dRoom; false where none is left.
    Tov_Bool Cut(double dTowards, double dRoom)
    {
        if (dTowards == 0.0)
        {
            return dRoom >= 0.0;
        }
        const double dCrossing = dRoom / dTowards;
        if (dTowards < 0.0)
        {
            dFrom = std::max(dFrom, dCrossing);
        }
        else
        {
            dTo = std::min(dTo, dCrossing);
        }
        return dFrom <= dTo;
    }
};

Tov_Value Between(double dValue, Tov_Value vMin, Tov_Value vMax)
{
    return static_cast<Tov_Value>(std::max(static_cast<double>(vMin), std::min(static_cast<double>(vMax), dValue)));
}

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
    const double dX  = static_cast<double>(kA.x);
    const double dY  = static_cast<double>(kA.y);
    const double dDX = static_cast<double>(kB.x) - dX;
    const double dDY = static_cast<double>(kB.y) - dY;
    Part         kPart;
    if (!kPart.Cut(-dDX, dX - static_cast<double>(kRegion.vMinX)) ||
        !kPart.Cut(dDX, static_cast<double>(kRegion.vMaxX) - dX) ||
        !kPart.Cut(-dDY, dY - static_cast<double>(kRegion.vMinY)) ||
        !kPart.Cut(dDY, static_cast<double>(kRegion.vMaxY) - dY))
    {
        return CF_NOTVIS;
    }
    const auto kAt = [&](double dT)
    {
        return Kanvo_Vector2(Between(dX + dT * dDX, kRegion.vMinX, kRegion.vMaxX),
                             Between(dY + dT * dDY, kRegion.vMinY, kRegion.vMaxY));
    };
    if (kPart.dFrom > 0.0)
    {
        kA  = kAt(kPart.dFrom);
        vTa = static_cast<Tov_Value>(kPart.dFrom);
    }
    if (kPart.dTo < 1.0)
    {
        kB  = kAt(kPart.dTo);
        vTb = static_cast<Tov_Value>(kPart.dTo);
    }
    return CF_VIS | CF_CLIPPED;
}

Tov_Flag Kanvo_Clipper::OverflowFlag(const Kanvo_Vector2& kA, const Kanvo_Vector2& kB, Tov_Value vMargin)
{
    const Region kInner = {s_kRegion.vMinX + vMargin, s_kRegion.vMinY + vMargin, s_kRegion.vMaxX - vMargin,
                           s_kRegion.vMaxY - vMargin};
    return kInner.Holds(kA) && kInner.Holds(kB) ? 0U : CF_OVERFLOW;
}
