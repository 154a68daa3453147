// Kanvo_RotBlitParam: in double precision, with sums, products, quotients and floor only, so that every machine turns
// alike.
//
// What the scan does with the numbers decides the design. It draws columns floor(lx) to floor(rx) - 1 of a row, one at
// least; it samples column c at (lv, lu) plus c - lx steps, but the row's first pixel at (lv, lu) itself. So lx serves the
// set of pixels: lx = xl + 1/2 - 1 unit makes the first column the first whose centre is inside; and (lv, lu) belongs to
// the point one pixel inside the edge, xl + 1, which makes every column but the first sampled at its exact centre.
#include "Kanvo_RotBlitParam.h"

#include <algorithm>
#include <cmath>

#include "Kanvo_Enums.h"
#include "Kanvo_Geometry.h"
#include "Tov_Math.h"

namespace
{

constexpr double  UNIT       = 1.0 / 65536.0;
constexpr double  LIMIT      = 1.0e6;
constexpr Tov_Int MAX_COLUMN = 32766;  // the last column whose right neighbour 16.16 can name

struct Point
{
    double dX;
    double dY;
};

//! A value that is linear in the destination: d0 + dX * x + dY * y.
struct Plane
{
    double d0;
    double dX;
    double dY;

    double At(double dAtX, double dAtY) const { return d0 + dX * dAtX + dY * dAtY; }
};

//! Rows iTop to iEnd - 1 and columns iLeft to iEnd - 1 that may be drawn.
struct Clip
{
    Tov_Int iLeft;
    Tov_Int iTop;
    Tov_Int iRightEnd;
    Tov_Int iBottomEnd;
};

Tov_Bool IsUsable(Tov_Value vValue)
{
    return static_cast<double>(vValue) >= -LIMIT && static_cast<double>(vValue) <= LIMIT;  // false for NaN
}

//! The callers' values are bounded: no result leaves 32 bits.
Tov_Fixed ToFixed(double dValue)
{
    return static_cast<Tov_Fixed>(Tov_DblFloor(dValue * 65536.0 + 0.5));
}

Tov_Int FirstCentre(double dEdge)  // first pixel whose centre is not before the edge
{
    constexpr std::int64_t iFar = 1 << 24;  // beyond every clip rectangle
    return static_cast<Tov_Int>(std::max(-iFar, std::min(iFar, -Tov_DblFloor(0.5 - dEdge))));
}

//! The turned rectangle: where source points land and where destination points come from.
struct Turn
{
    double dCos;
    double dSin;
    double dStretchX;
    double dStretchY;
    Point  kOrigin;  // where (0, 0) of the source rectangle lands

    Point Land(double dP, double dQ) const
    {
        return {kOrigin.dX + dCos * dStretchX * dP - dSin * dStretchY * dQ,
                kOrigin.dY + dSin * dStretchX * dP + dCos * dStretchY * dQ};
    }
    Plane P() const
    {
        const double dPX = dCos / dStretchX;
        const double dPY = dSin / dStretchX;
        return {-dPX * kOrigin.dX - dPY * kOrigin.dY, dPX, dPY};
    }
    Plane Q() const
    {
        const double dQX = -dSin / dStretchY;
        const double dQY = dCos / dStretchY;
        return {-dQX * kOrigin.dX - dQY * kOrigin.dY, dQX, dQY};
    }
};

//! What RotBlitCalc fills in.
struct Result
{
    Kanvo_RotBlitEdgeLeft*  akLeft;
    Kanvo_RotBlitEdgeRight* akRight;
    Tov_Int                 iLeftCount;
    Tov_Int                 iRightCount;
    Tov_Int                 iEndRow;
    Tov_Int                 au;
    Tov_Int                 av;

    void AddLeft(const Kanvo_RotBlitEdgeLeft& kEdge)
    {
        if (iLeftCount < Kanvo_RotBlitParam::MAX_EDGES)
        {
            akLeft[iLeftCount++] = kEdge;
        }
    }
    void AddRight(const Kanvo_RotBlitEdgeRight& kEdge)
    {
        if (iRightCount < Kanvo_RotBlitParam::MAX_EDGES)
        {
            akRight[iRightCount++] = kEdge;
        }
    }
};

// ---- multiples of 90 degrees ----------------------------------------------------------------------------------------

//! Source positions along one destination axis.
struct AxisRamp
{
    Tov_Int iStart;
    Tov_Int iStep;
};

//! From the source position dFirst of the first of iCount pixel centres to dLast of the last, kept inside the source; what
//! the step cannot divide evenly is shared by both ends.
AxisRamp MakeAxisRamp(double dFirst, double dLast, Tov_Int iCount, Tov_UInt uiLength, Tov_Bool bBilinear)
{
    const double dShift = bBilinear ? 0.5 : 0.0;
    const double dEnd   = static_cast<double>(bBilinear ? uiLength - 1 : uiLength) * 65536.0 - 1.0;
    const auto   kInto  = [&](double dPosition)
    { return static_cast<Tov_Int>(Tov_DblFloor(std::max(0.0, std::min(dEnd, (dPosition - dShift) * 65536.0)))); };
    const Tov_Int iFirst = kInto(dFirst);
    const Tov_Int iLast  = kInto(dLast);
    const Tov_Int iStep  = iCount > 1 ? (iLast - iFirst) / (iCount - 1) : 0;
    return {iFirst + (iLast - iFirst - iStep * (iCount - 1)) / 2, iStep};
}

Tov_Bool CalcUpright(const Turn& kTurn, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY,
                     Tov_Bool bBilinear, const Clip& kClip, Result& kResult)
{
    const Point   kA      = kTurn.Land(0, 0);
    const Point   kB      = kTurn.Land(uiWidth, uiHeight);
    const Tov_Int iLeft   = std::max(FirstCentre(std::min(kA.dX, kB.dX)), kClip.iLeft);
    const Tov_Int iRight  = std::min(FirstCentre(std::max(kA.dX, kB.dX)), kClip.iRightEnd);
    const Tov_Int iTop    = std::max(FirstCentre(std::min(kA.dY, kB.dY)), kClip.iTop);
    const Tov_Int iBottom = std::min(FirstCentre(std::max(kA.dY, kB.dY)), kClip.iBottomEnd);
    if (iLeft >= iRight || iTop >= iBottom)
    {
        return false;
    }
    const Plane     kP        = kTurn.P();
    const Plane     kQ        = kTurn.Q();
    const Point     kFirst    = {iLeft + 0.5, iTop + 0.5};
    const Point     kLast     = {iRight - 0.5, iBottom - 0.5};
    const Tov_Bool  bSideways = kTurn.dCos == 0.0;  // source columns run down the destination
    const AxisRamp  kV        = MakeAxisRamp(kP.At(kFirst.dX, kFirst.dY), kP.At(kLast.dX, kLast.dY),
                                     bSideways ? iBottom - iTop : iRight - iLeft, uiWidth, bBilinear);
    const AxisRamp  kU        = MakeAxisRamp(kQ.At(kFirst.dX, kFirst.dY), kQ.At(kLast.dX, kLast.dY),
                                     bSideways ? iRight - iLeft : iBottom - iTop, uiHeight, bBilinear);
    const Tov_Fixed fxV       = static_cast<Tov_Fixed>(uiSrcX) * 65536 + kV.iStart;
    const Tov_Fixed fxU       = static_cast<Tov_Fixed>(uiSrcY) * 65536 + kU.iStart;
    kResult.AddLeft({iTop, 0, iLeft * 65536, fxV, fxU, bSideways ? kV.iStep : 0, bSideways ? 0 : kU.iStep});
    kResult.AddRight({iTop, 0, iRight * 65536});
    kResult.iEndRow = iBottom;
    kResult.av      = bSideways ? 0 : kV.iStep;
    kResult.au      = bSideways ? kU.iStep : 0;
    return true;
}

// ---- every other angle ----------------------------------------------------------------------------------------------

//! One side of the quad, from its upper to its lower end.
struct Side
{
    Point kUpper;
    Point kLower;

    //! x at a row, never beyond the side's own ends.
    double At(double dY) const
    {
        const double dHeight = kLower.dY - kUpper.dY;
        if (dHeight <= 0.0 || dY <= kUpper.dY)
        {
            return kUpper.dX;
        }
        return dY >= kLower.dY ? kLower.dX : kUpper.dX + (kLower.dX - kUpper.dX) * ((dY - kUpper.dY) / dHeight);
    }
};

//! The two sides that bound the quad on the left, or on the right, joined at the vertex between top and bottom.
struct Chain
{
    Side kAbove;
    Side kBelow;

    double Corner() const { return kAbove.kLower.dY; }
    double At(double dY) const { return dY < Corner() ? kAbove.At(dY) : kBelow.At(dY); }
};

struct Quad
{
    Chain kLeft;
    Chain kRight;

    double Chord(double dY) const { return kRight.At(dY) - kLeft.At(dY); }
};

Quad MakeQuad(const Turn& kTurn, double dWidth, double dHeight)
{
    const Point akCorner[4] = {kTurn.Land(0, 0), kTurn.Land(dWidth, 0), kTurn.Land(dWidth, dHeight),
                               kTurn.Land(0, dHeight)};
    int         iTop        = 0;
    for (int iCorner = 1; iCorner < 4; ++iCorner)
    {
        iTop = akCorner[iCorner].dY < akCorner[iTop].dY ? iCorner : iTop;
    }
    const Point& kTop    = akCorner[iTop];
    const Point& kBottom = akCorner[(iTop + 2) % 4];
    const Point& kOne    = akCorner[(iTop + 1) % 4];
    const Point& kOther  = akCorner[(iTop + 3) % 4];
    const Point& kLeft   = kOne.dX < kOther.dX ? kOne : kOther;
    const Point& kRight  = kOne.dX < kOther.dX ? kOther : kOne;
    return {{{kTop, kLeft}, {kLeft, kBottom}}, {{kTop, kRight}, {kRight, kBottom}}};
}

//! Source coordinate in 16.16 bitmap pixels as a plane over the destination, drawn in by a margin at both ends that
//! covers all that the scan's additions may round.
struct SourcePlane
{
    Plane  kPlane;
    double dOffset;
    double dScale;

    SourcePlane(const Plane& kSource, Tov_UInt uiSrc, Tov_UInt uiLength, Tov_Bool bBilinear, Tov_Int iRows,
                Tov_Int iColumns)
        : kPlane(kSource)
    {
        const double dLength = static_cast<double>(bBilinear ? uiLength - 1 : uiLength);
        const double dSlope  = std::fabs(kSource.dX) + std::fabs(kSource.dY);
        const double dMargin =
            std::min((iRows + iColumns + 16) / 131072.0 + ((iRows + 4) * UNIT + UNIT) * dSlope, dLength / 4);
        dOffset = static_cast<double>(uiSrc) + dMargin;
        dScale  = (dLength - 2 * dMargin - UNIT) / static_cast<double>(uiLength);
    }
    double At(double dX, double dY) const { return dOffset + kPlane.At(dX, dY) * dScale; }
    double Step() const { return kPlane.dX * dScale; }
};

//! A line through the rows of one piece of a side: the value on the first row and its change per row.
struct Piece
{
    Tov_Fixed fxFirst;
    Tov_Fixed fxStep;

    Piece(double dFirst, double dLast, Tov_Int iRows)
        : fxFirst(ToFixed(dFirst)),
          fxStep(iRows > 1 ? ToFixed((dLast - dFirst) / (iRows - 1)) : 0)
    {
    }
};

//! Calls kPiece(kind, first row, last row) for each stretch of rows in which kKind(row) stays the same. Kinds come in at
//! most three stretches, because the quad is convex.
template <class Kind, class Use>
void ForPieces(Tov_Int iTop, Tov_Int iEnd, Kind kKind, Use kPiece)
{
    for (Tov_Int iRow = iTop; iRow < iEnd;)
    {
        const int iKind  = kKind(iRow);
        Tov_Int   iAfter = iRow + 1;
        while (iAfter < iEnd && kKind(iAfter) == iKind)
        {
            ++iAfter;
        }
        kPiece(iKind, iRow, iAfter - 1);
        iRow = iAfter;
    }
}

double Centre(Tov_Int iPixel)
{
    return iPixel + 0.5;
}

//! A needle, under a pixel wide: one pixel in every row, on the line halfway between the sides.
void CalcThin(const Quad& kQuad, const SourcePlane& kV, const SourcePlane& kU, Tov_Int iTop, Result& kResult)
{
    const auto kKind = [&](Tov_Int iRow)
    { return (Centre(iRow) < kQuad.kLeft.Corner() ? 0 : 1) + (Centre(iRow) < kQuad.kRight.Corner() ? 0 : 2); };
    const auto kMiddle = [&](Tov_Int iRow)
    { return (kQuad.kLeft.At(Centre(iRow)) + kQuad.kRight.At(Centre(iRow))) / 2; };
    ForPieces(iTop, kResult.iEndRow, kKind,
              [&](int /*iKind*/, Tov_Int iFirst, Tov_Int iLast)
              {
                  const Tov_Int iRows = iLast - iFirst + 1;
                  const Point   kA    = {kMiddle(iFirst), Centre(iFirst)};
                  const Point   kB    = {kMiddle(iLast), Centre(iLast)};
                  const Piece   kX(kA.dX, kB.dX, iRows);
                  const Piece   kPieceV(kV.At(kA.dX, kA.dY), kV.At(kB.dX, kB.dY), iRows);
                  const Piece   kPieceU(kU.At(kA.dX, kA.dY), kU.At(kB.dX, kB.dY), iRows);
                  kResult.AddLeft({iFirst, kX.fxStep, kX.fxFirst, kPieceV.fxFirst, kPieceU.fxFirst, kPieceV.fxStep,
                                   kPieceU.fxStep});
                  kResult.AddRight({iFirst, kX.fxStep, kX.fxFirst + 65536});
              });
}

// Where a side lies beyond the clip rectangle, the clip's own border is the edge: its values stay on the screen however
// large the quad is, and the first pixel of a row is sampled at its own centre.
enum PieceKind
{
    ABOVE_CORNER,
    BELOW_CORNER,
    BORDER
};

void CalcLeft(const Chain& kChain, const SourcePlane& kV, const SourcePlane& kU, const Clip& kClip, Tov_Int iTop,
              Result& kResult)
{
    const auto kKind = [&](Tov_Int iRow)
    {
        return kChain.At(Centre(iRow)) + 0.5 < kClip.iLeft + 1.0 / 64 ? BORDER
               : Centre(iRow) < kChain.Corner()                       ? ABOVE_CORNER
                                                                      : BELOW_CORNER;
    };
    ForPieces(iTop, kResult.iEndRow, kKind,
              [&](int iKind, Tov_Int iFirst, Tov_Int iLast)
              {
                  const Tov_Int iRows    = iLast - iFirst + 1;
                  const auto    kEdge    = [&](Tov_Int iRow) { return kChain.At(Centre(iRow)); };
                  const bool    bBorder  = iKind == BORDER;
                  const double  dSampleA = bBorder ? Centre(kClip.iLeft) : kEdge(iFirst) + 1.0;
                  const double  dSampleB = bBorder ? Centre(kClip.iLeft) : kEdge(iLast) + 1.0;
                  const double  dXA      = bBorder ? kClip.iLeft : kEdge(iFirst) + 0.5 - UNIT;
                  const double  dXB      = bBorder ? kClip.iLeft : kEdge(iLast) + 0.5 - UNIT;
                  const Piece   kX(dXA, dXB, iRows);
                  const Piece   kPieceV(kV.At(dSampleA, Centre(iFirst)), kV.At(dSampleB, Centre(iLast)), iRows);
                  const Piece   kPieceU(kU.At(dSampleA, Centre(iFirst)), kU.At(dSampleB, Centre(iLast)), iRows);
                  kResult.AddLeft({iFirst, kX.fxStep, kX.fxFirst, kPieceV.fxFirst, kPieceU.fxFirst, kPieceV.fxStep,
                                   kPieceU.fxStep});
              });
}

void CalcRight(const Chain& kChain, const Clip& kClip, Tov_Int iTop, Result& kResult)
{
    const auto kKind = [&](Tov_Int iRow)
    {
        return kChain.At(Centre(iRow)) + 0.5 > kClip.iRightEnd ? BORDER
               : Centre(iRow) < kChain.Corner()                ? ABOVE_CORNER
                                                               : BELOW_CORNER;
    };
    ForPieces(iTop, kResult.iEndRow, kKind,
              [&](int iKind, Tov_Int iFirst, Tov_Int iLast)
              {
                  const auto kEdge = [&](Tov_Int iRow)
                  { return iKind == BORDER ? kClip.iRightEnd : kChain.At(Centre(iRow)) + 0.5 - UNIT; };
                  const Piece kX(kEdge(iFirst), kEdge(iLast), iLast - iFirst + 1);
                  kResult.AddRight({iFirst, kX.fxStep, kX.fxFirst});
              });
}

Tov_Bool CalcTurned(const Turn& kTurn, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY,
                    Tov_Bool bBilinear, const Clip& kClip, Result& kResult)
{
    const Quad   kQuad = MakeQuad(kTurn, uiWidth, uiHeight);
    const double dLong = std::min(std::fabs(kTurn.dStretchX) * uiWidth / std::fabs(kTurn.dCos),
                                  std::fabs(kTurn.dStretchY) * uiHeight / std::fabs(kTurn.dSin));
    // One pixel inside the edge must still be inside the quad. Corners being right angles, a chord grows by at least two
    // pixels per row, so the rows that are too short are the first and the last at most.
    const bool bThin = dLong < 1.0 + 1.0 / 64;
    Tov_Int    iTop  = std::max(FirstCentre(kQuad.kLeft.kAbove.kUpper.dY), kClip.iTop);
    Tov_Int    iEnd  = std::min(FirstCentre(kQuad.kLeft.kBelow.kLower.dY), kClip.iBottomEnd);
    const auto kSeen = [&](Tov_Int iRow)
    {
        const double dY = Centre(iRow);
        return (bThin || kQuad.Chord(dY) >= 1.0 + 1.0 / 128) && kQuad.kRight.At(dY) > kClip.iLeft + 0.5 &&
               kQuad.kLeft.At(dY) <= kClip.iRightEnd - 0.5;
    };
    while (iTop < iEnd && !kSeen(iTop))
    {
        ++iTop;
    }
    while (iTop < iEnd && !kSeen(iEnd - 1))
    {
        --iEnd;
    }
    const Tov_Int     iRows    = iEnd - iTop;
    const Tov_Int     iColumns = kClip.iRightEnd - kClip.iLeft;
    const SourcePlane kV(kTurn.P(), uiSrcX, uiWidth, bBilinear, iRows, iColumns);
    const SourcePlane kU(kTurn.Q(), uiSrcY, uiHeight, bBilinear, iRows, iColumns);
    if (iRows <= 0 || std::fabs(kV.Step()) >= 16384.0 || std::fabs(kU.Step()) >= 16384.0)
    {
        return false;
    }
    kResult.iEndRow = iEnd;
    kResult.av      = ToFixed(kV.Step());
    kResult.au      = ToFixed(kU.Step());
    if (bThin)
    {
        CalcThin(kQuad, kV, kU, iTop, kResult);
    }
    else
    {
        CalcLeft(kQuad.kLeft, kV, kU, kClip, iTop, kResult);
        CalcRight(kQuad.kRight, kClip, iTop, kResult);
    }
    return true;
}

}  // namespace

Tov_Bool Kanvo_RotBlitParam::RotBlitCalc(const Kanvo_Bitmap* pkDest, Tov_UInt uiWidth, Tov_UInt uiHeight,
                                         Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Value vDstX, Tov_Value vDstY,
                                         Tov_Value vAngle, Tov_Flag ulFlags, Tov_Value vStretchX, Tov_Value vStretchY,
                                         Tov_Value vRotPosX, Tov_Value vRotPosY, Kanvo_RotBlitEdgeLeft* akLeft,
                                         Kanvo_RotBlitEdgeRight* akRight, Tov_Int& iEdgeCntLeft, Tov_Int& iEdgeCntRight,
                                         Tov_Int& iEy, Tov_Int& au, Tov_Int& av)
{
    const Tov_Bool bBilinear = (ulFlags & BLIT_BILINEAR) != 0;
    const Tov_UInt uiLeast   = bBilinear ? 2 : 1;
    const Tov_Bool bUsable   = IsUsable(vDstX) && IsUsable(vDstY) && IsUsable(vAngle) && IsUsable(vStretchX) &&
                             IsUsable(vStretchY) && IsUsable(vRotPosX) && IsUsable(vRotPosY) && vStretchX != 0.0F &&
                             vStretchY != 0.0F;
    if (!bUsable || uiWidth < uiLeast || uiHeight < uiLeast || uiWidth > 32767 || uiHeight > 32767 ||
        uiSrcX > 32767 - uiWidth || uiSrcY > 32767 - uiHeight || pkDest->GetClipMinX() > MAX_COLUMN ||
        pkDest->GetClipMinX() > pkDest->GetClipMaxX())
    {
        return false;
    }
    Turn kTurn{1.0, 0.0, static_cast<double>(vStretchX), static_cast<double>(vStretchY), {0.0, 0.0}};
    Kanvo_SinCosDegrees(vAngle, kTurn.dSin, kTurn.dCos);
    const Point kCentre = kTurn.Land(static_cast<double>(vRotPosX), static_cast<double>(vRotPosY));
    kTurn.kOrigin       = {static_cast<double>(vDstX) - kCentre.dX, static_cast<double>(vDstY) - kCentre.dY};

    const Clip kClip{static_cast<Tov_Int>(pkDest->GetClipMinX()), static_cast<Tov_Int>(pkDest->GetClipMinY()),
                     static_cast<Tov_Int>(std::min<Tov_UInt>(pkDest->GetClipMaxX(), MAX_COLUMN)) + 1,
                     static_cast<Tov_Int>(std::min<Tov_UInt>(pkDest->GetClipMaxY(), MAX_COLUMN)) + 1};
    Result     kResult{akLeft, akRight, 0, 0, 0, 0, 0};
    const auto pfnCalc = kTurn.dCos == 0.0 || kTurn.dSin == 0.0 ? &CalcUpright : &CalcTurned;
    if (!pfnCalc(kTurn, uiWidth, uiHeight, uiSrcX, uiSrcY, bBilinear, kClip, kResult))
    {
        return false;
    }
    iEdgeCntLeft  = kResult.iLeftCount;
    iEdgeCntRight = kResult.iRightCount;
    iEy           = kResult.iEndRow;
    au            = kResult.au;
    av            = kResult.av;
    return true;
}
