// Kanvo_RotBlitParam: in double precision, with sums, products, quotients and floor only, so that every machine turns
// alike.
//
// What the scan does with the numbers decides the design. It draws columns floor(lx) to floor(rx) - 1 of a row, one at
// least; it samples column c at (lv, lu) plus c - lx steps, but the row's first pixel at (lv, lu) itself. So lx serves the
// set of pixels: lx = xl + 1/2 - 1 unit makes the first column the first whose centre is inside; and (lv, lu) belongs to
// the point one pixel inside the edge, xl + 1, which makes every column but the first sampled at its exact centre.
//
// A clipped draw must be a part of the whole one. So everything that rounds depends on the turned rectangle and the bitmap
// alone: the steps from column to column and from row to row are whole numbers (Lattice), and so is x along a side (RowRamp).
// The clip rectangle then only chooses rows, and where it cuts a side off, its own border takes the side's place. From row to
// row of a slanted side the source position changes by no whole number: there it is kept with 32 binary places.
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

//! The shortest row. A row's first sample lies one pixel inside its left edge: in this one 1/1024 px beyond the right edge,
//! which the margins of Lattice allow, so that the corners of quads at 45 degrees on whole pixels are drawn.
constexpr double SHORTEST = 1.0 - 1.0 / 1024;

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

//! Rows iTop to iBottomEnd - 1 and columns iLeft to iRightEnd - 1.
struct Area
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

//! Rounded to 16.16, in 64 bits: a side may begin far outside the screen.
std::int64_t ToFixed(double dValue)
{
    return Tov_DblFloor(dValue * 65536.0 + 0.5);
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

//! The rectangle that is turned.
struct Source
{
    Tov_UInt uiX;
    Tov_UInt uiY;
    Tov_UInt uiWidth;
    Tov_UInt uiHeight;
    Tov_Bool bBilinear;
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

Tov_Bool CalcUpright(const Turn& kTurn, const Source& kSource, const Area& kBitmap, const Area& kClip, Result& kResult)
{
    const Point kA = kTurn.Land(0, 0);
    const Point kB = kTurn.Land(kSource.uiWidth, kSource.uiHeight);
    // Positions are fixed for the whole rectangle, or for as much of it as lies within reach: what is visible is a part.
    constexpr Tov_Int REACH = 1024;
    const Area        kAll{std::max(FirstCentre(std::min(kA.dX, kB.dX)), -REACH),
                    std::max(FirstCentre(std::min(kA.dY, kB.dY)), -REACH),
                    std::min(FirstCentre(std::max(kA.dX, kB.dX)), kBitmap.iRightEnd + REACH),
                    std::min(FirstCentre(std::max(kA.dY, kB.dY)), kBitmap.iBottomEnd + REACH)};
    const Area        kSeen{std::max(kAll.iLeft, kClip.iLeft), std::max(kAll.iTop, kClip.iTop),
                     std::min(kAll.iRightEnd, kClip.iRightEnd), std::min(kAll.iBottomEnd, kClip.iBottomEnd)};
    if (kSeen.iLeft >= kSeen.iRightEnd || kSeen.iTop >= kSeen.iBottomEnd)
    {
        return false;
    }
    const Plane    kP        = kTurn.P();
    const Plane    kQ        = kTurn.Q();
    const Point    kFirst    = {kAll.iLeft + 0.5, kAll.iTop + 0.5};
    const Point    kLast     = {kAll.iRightEnd - 0.5, kAll.iBottomEnd - 0.5};
    const Tov_Int  iColumns  = kAll.iRightEnd - kAll.iLeft;
    const Tov_Int  iRows     = kAll.iBottomEnd - kAll.iTop;
    const Tov_Bool bSideways = kTurn.dCos == 0.0;  // source columns run down the destination
    const AxisRamp kV        = MakeAxisRamp(kP.At(kFirst.dX, kFirst.dY), kP.At(kLast.dX, kLast.dY),
                                     bSideways ? iRows : iColumns, kSource.uiWidth, kSource.bBilinear);
    const AxisRamp kU        = MakeAxisRamp(kQ.At(kFirst.dX, kFirst.dY), kQ.At(kLast.dX, kLast.dY),
                                     bSideways ? iColumns : iRows, kSource.uiHeight, kSource.bBilinear);
    const Tov_Int  iRight    = kSeen.iLeft - kAll.iLeft;
    const Tov_Int  iDown     = kSeen.iTop - kAll.iTop;
    const auto     fxV       = static_cast<Tov_Fixed>(kSource.uiX) * 65536 + kV.iStart;
    const auto     fxU       = static_cast<Tov_Fixed>(kSource.uiY) * 65536 + kU.iStart;
    kResult.AddLeft({kSeen.iTop, 0, kSeen.iLeft * 65536, fxV + kV.iStep * (bSideways ? iDown : iRight),
                     fxU + kU.iStep * (bSideways ? iRight : iDown), bSideways ? kV.iStep : 0,
                     bSideways ? 0 : kU.iStep});
    kResult.AddRight({kSeen.iTop, 0, kSeen.iRightEnd * 65536});
    kResult.iEndRow = kSeen.iBottomEnd;
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

    double At(double dY) const { return dY < kAbove.kLower.dY ? kAbove.At(dY) : kBelow.At(dY); }

    //! The first row of the lower side.
    Tov_Int CornerRow(const Area& kRows) const
    {
        return std::max(kRows.iTop, std::min(kRows.iBottomEnd, FirstCentre(kAbove.kLower.dY)));
    }
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

double Centre(Tov_Int iPixel)
{
    return iPixel + 0.5;
}

//! A source coordinate in 16.16 bitmap pixels: the same whole step from each column to the next, and from each row to the
//! next, whatever part of it is drawn.
class Lattice
{
public:
    //! The coordinate is a plane over the destination, drawn in by a margin at both ends that covers all that is rounded
    //! on the area: half a unit of each step from the middle on; along a side a quarter of a unit per row in x; and what
    //! the shortest row needs.
    Lattice(const Plane& kPlane, Tov_UInt uiSrc, Tov_UInt uiLength, Tov_Bool bBilinear, const Area& kArea)
    {
        const Tov_Int iColumns = kArea.iRightEnd - kArea.iLeft;
        const Tov_Int iRows    = kArea.iBottomEnd - kArea.iTop;
        const auto    dLength  = static_cast<double>(bBilinear ? uiLength - 1 : uiLength);
        const double  dSlope   = std::fabs(kPlane.dX) + std::fabs(kPlane.dY);
        const double  dUnits   = 0.25 * iColumns + 0.25 * iRows + 8.0 + (0.25 * iRows + 72.0) * dSlope;
        const double  dMargin  = std::min(dUnits * UNIT, dLength / 4);
        const double  dScale   = (dLength - 2 * dMargin - UNIT) / static_cast<double>(uiLength);
        m_bHasSteps            = dSlope * dScale < MAX_STEP;
        m_iRight               = m_bHasSteps ? ToFixed(kPlane.dX * dScale) : 0;
        m_iDown                = m_bHasSteps ? ToFixed(kPlane.dY * dScale) : 0;
        m_iX                   = kArea.iLeft + iColumns / 2;
        m_iY                   = kArea.iTop + iRows / 2;
        m_iMiddle = ToFixed(static_cast<double>(uiSrc) + dMargin + kPlane.At(Centre(m_iX), Centre(m_iY)) * dScale);
    }

    //! Whether 16.16 can hold the steps.
    Tov_Bool HasSteps() const { return m_bHasSteps; }

    Tov_Fixed StepRight() const { return static_cast<Tov_Fixed>(m_iRight); }
    Tov_Fixed StepDown() const { return static_cast<Tov_Fixed>(m_iDown); }

    //! At a column in 16.16, where a whole number is the centre of its pixel. Exact, with 32 binary places.
    std::int64_t At(std::int64_t fxColumn, Tov_Int iRow) const
    {
        return (m_iMiddle + m_iDown * (iRow - m_iY)) * 65536 + m_iRight * (fxColumn - m_iX * std::int64_t{65536});
    }

private:
    static constexpr double MAX_STEP = 16384.0;

    Tov_Bool     m_bHasSteps;
    Tov_Int      m_iX;  // the middle of the area, from which rounding errors of the steps grow
    Tov_Int      m_iY;
    std::int64_t m_iMiddle;
    std::int64_t m_iRight;
    std::int64_t m_iDown;
};

//! A value on rows that changes by the same whole step from each to the next. What the step cannot divide evenly is shared
//! by both ends.
class RowRamp
{
public:
    //! kAt(row) is asked for the first and the last row.
    template <class At>
    RowRamp(Tov_Int iFirst, Tov_Int iLast, At kAt) : m_iTop(iFirst)
    {
        const std::int64_t iTop  = kAt(iFirst);
        const std::int64_t iRise = kAt(iLast) - iTop;
        const std::int64_t iRows = std::max(Tov_Int{0}, iLast - iFirst);
        m_iStep  = iRows == 0 ? 0 : iRise >= 0 ? (iRise + iRows / 2) / iRows : -((iRows / 2 - iRise) / iRows);
        m_iStart = iTop + (iRise - m_iStep * iRows) / 2;
    }

    std::int64_t At(Tov_Int iRow) const { return m_iStart + m_iStep * (iRow - m_iTop); }

    //! The step on a piece of these rows. On a single one it may be more than 16.16 can hold, and is not needed.
    std::int64_t Step(Tov_Int iFirst, Tov_Int iLast) const { return iFirst == iLast ? 0 : m_iStep; }

private:
    Tov_Int      m_iTop;
    std::int64_t m_iStart;
    std::int64_t m_iStep;
};

//! A line on which rows begin, with the source position of each row's first sample: a side, or the middle of a needle.
struct Line
{
    RowRamp kX;
    RowRamp kV;  // these two with 32 binary places
    RowRamp kU;

    Tov_Int Column(Tov_Int iRow) const { return static_cast<Tov_Int>(kX.At(iRow) >> 16); }

    void AddTo(Result& kResult, Tov_Int iFirst, Tov_Int iLast) const
    {
        const std::int64_t iV     = kV.At(iFirst);
        const std::int64_t iU     = kU.At(iFirst);
        const std::int64_t iStepV = kV.Step(iFirst, iLast);
        const std::int64_t iStepU = kU.Step(iFirst, iLast);
        kResult.AddLeft({iFirst, Tov_LowWord(kX.Step(iFirst, iLast)), Tov_LowWord(kX.At(iFirst)), Upper(iV), Upper(iU),
                         Upper(iStepV), Upper(iStepU), Lower(iV), Lower(iU), Lower(iStepV), Lower(iStepU)});
    }

private:
    static Tov_Fixed  Upper(std::int64_t iFine) { return Tov_LowWord(iFine >> 16); }
    static Tov_UShort Lower(std::int64_t iFine) { return static_cast<Tov_UShort>(iFine & 0xFFFF); }
};

//! The line with x as kX says, sampled along the columns kSample(row), which may lie right of it; both in 16.16.
template <class Sample>
Line MakeLine(const RowRamp& kX, Tov_Int iTop, Tov_Int iEnd, Sample kSample, const Lattice& kV, const Lattice& kU)
{
    Tov_Int iFirst = iTop;
    Tov_Int iLast  = iEnd - 1;
    // Left of the bitmap, where no row begins, it may go far: there it may be sampled anywhere.
    while (iFirst < iLast && kX.At(iFirst) < 0)
    {
        ++iFirst;
    }
    while (iFirst < iLast && kX.At(iLast) < 0)
    {
        --iLast;
    }
    const auto kOn = [&](const Lattice& kLattice)
    {
        return RowRamp(iFirst, iLast,
                       [&](Tov_Int iRow) { return kLattice.At(std::max<std::int64_t>(-65536, kSample(iRow)), iRow); });
    };
    return {kX, kOn(kV), kOn(kU)};
}

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

//! Leaves out rows at both ends of which nothing is visible. False where none is left.
template <class Seen>
Tov_Bool TrimRows(Tov_Int& iTop, Tov_Int& iEnd, Seen kSeen)
{
    while (iTop < iEnd && !kSeen(iTop))
    {
        ++iTop;
    }
    while (iTop < iEnd && !kSeen(iEnd - 1))
    {
        --iEnd;
    }
    return iTop < iEnd;
}

//! A needle, under a pixel wide: one pixel in every row, on the line halfway between the sides.
Tov_Bool CalcThin(const Quad& kQuad, const Lattice& kV, const Lattice& kU, const Area& kRows, const Area& kClip,
                  Result& kResult)
{
    const Tov_Int iLeftCorner  = kQuad.kLeft.CornerRow(kRows);
    const Tov_Int iRightCorner = kQuad.kRight.CornerRow(kRows);
    const Tov_Int iUpper       = std::min(iLeftCorner, iRightCorner);
    const Tov_Int iLower       = std::max(iLeftCorner, iRightCorner);
    const auto    kMiddle      = [&](Tov_Int iRow)
    { return ToFixed((kQuad.kLeft.At(Centre(iRow)) + kQuad.kRight.At(Centre(iRow))) / 2); };
    // Sampled on the very line, not on the one that 16.16 makes of it: a needle may be narrower than they are apart.
    const auto kPart = [&](Tov_Int iTop, Tov_Int iEnd)
    {
        return MakeLine(
            RowRamp(iTop, iEnd - 1, kMiddle), iTop, iEnd, [&](Tov_Int iRow) { return kMiddle(iRow) - 32768; }, kV, kU);
    };
    const Line akPart[3] = {kPart(kRows.iTop, iUpper), kPart(iUpper, iLower), kPart(iLower, kRows.iBottomEnd)};
    const auto kWhich    = [&](Tov_Int iRow) { return iRow < iUpper ? 0 : iRow < iLower ? 1 : 2; };

    Tov_Int iTop = std::max(kRows.iTop, kClip.iTop);
    Tov_Int iEnd = std::min(kRows.iBottomEnd, kClip.iBottomEnd);
    if (!TrimRows(iTop, iEnd,
                  [&](Tov_Int iRow)
                  {
                      const Tov_Int iColumn = akPart[kWhich(iRow)].Column(iRow);
                      return iColumn >= kClip.iLeft && iColumn < kClip.iRightEnd;
                  }))
    {
        return false;
    }
    ForPieces(iTop, iEnd, kWhich,
              [&](int iPart, Tov_Int iFirst, Tov_Int iLast)
              {
                  const RowRamp& kX = akPart[iPart].kX;
                  akPart[iPart].AddTo(kResult, iFirst, iLast);
                  kResult.AddRight({iFirst, Tov_LowWord(kX.Step(iFirst, iLast)), Tov_LowWord(kX.At(iFirst) + 65536)});
              });
    kResult.iEndRow = iEnd;
    return true;
}

//! Rows between two chains. Where the clip rectangle cuts a side off, its own border is the edge: values stay on the screen
//! however large the quad is, and no sample is moved, where the scan's own cut would take the pixel at the border from
//! elsewhere than the whole draw does.
Tov_Bool CalcWide(const Quad& kQuad, const Lattice& kV, const Lattice& kU, const Area& kRows, const Area& kClip,
                  Result& kResult)
{
    constexpr int BORDER       = 2;
    const Tov_Int iLeftCorner  = kQuad.kLeft.CornerRow(kRows);
    const Tov_Int iRightCorner = kQuad.kRight.CornerRow(kRows);
    const auto    kOn          = [](const Side& kSide)
    { return [&kSide](Tov_Int iRow) { return ToFixed(kSide.At(Centre(iRow)) + 0.5) - 1; }; };
    const auto kOnSide = [&](const Side& kSide, Tov_Int iTop, Tov_Int iEnd)
    {
        const RowRamp kX(iTop, iEnd - 1, kOn(kSide));
        return MakeLine(
            kX, iTop, iEnd, [&](Tov_Int iRow) { return kX.At(iRow); }, kV, kU);
    };
    const Line    akLeft[2]  = {kOnSide(kQuad.kLeft.kAbove, kRows.iTop, iLeftCorner),
                                kOnSide(kQuad.kLeft.kBelow, iLeftCorner, kRows.iBottomEnd)};
    const RowRamp akRight[2] = {RowRamp(kRows.iTop, iRightCorner - 1, kOn(kQuad.kRight.kAbove)),
                                RowRamp(iRightCorner, kRows.iBottomEnd - 1, kOn(kQuad.kRight.kBelow))};
    const auto    kLeftKind  = [&](Tov_Int iRow)
    {
        const int iSide = iRow < iLeftCorner ? 0 : 1;
        return akLeft[iSide].kX.At(iRow) < kClip.iLeft * std::int64_t{65536} ? BORDER : iSide;
    };
    const auto kRightKind = [&](Tov_Int iRow)
    {
        const int iSide = iRow < iRightCorner ? 0 : 1;
        return akRight[iSide].At(iRow) >= kClip.iRightEnd * std::int64_t{65536} ? BORDER : iSide;
    };

    Tov_Int iTop = std::max(kRows.iTop, kClip.iTop);
    Tov_Int iEnd = std::min(kRows.iBottomEnd, kClip.iBottomEnd);
    if (!TrimRows(iTop, iEnd,
                  [&](Tov_Int iRow)
                  {
                      const std::int64_t fxLeft  = akLeft[iRow < iLeftCorner ? 0 : 1].kX.At(iRow);
                      const std::int64_t fxRight = akRight[iRow < iRightCorner ? 0 : 1].At(iRow);
                      return fxLeft < kClip.iRightEnd * std::int64_t{65536} &&
                             fxRight >= (kClip.iLeft + 1) * std::int64_t{65536} && fxRight >> 16 > fxLeft >> 16;
                  }))
    {
        return false;
    }
    ForPieces(iTop, iEnd, kLeftKind,
              [&](int iKind, Tov_Int iFirst, Tov_Int iLast)
              {
                  const Tov_Fixed fxBorder = kClip.iLeft * 65536;
                  if (iKind != BORDER)
                  {
                      akLeft[iKind].AddTo(kResult, iFirst, iLast);
                      return;
                  }
                  kResult.AddLeft({iFirst, 0, fxBorder, Tov_LowWord(kV.At(fxBorder, iFirst) >> 16),
                                   Tov_LowWord(kU.At(fxBorder, iFirst) >> 16), kV.StepDown(), kU.StepDown()});
              });
    ForPieces(iTop, iEnd, kRightKind,
              [&](int iKind, Tov_Int iFirst, Tov_Int iLast)
              {
                  kResult.AddRight(iKind == BORDER
                                       ? Kanvo_RotBlitEdgeRight{iFirst, 0, kClip.iRightEnd * 65536}
                                       : Kanvo_RotBlitEdgeRight{iFirst, Tov_LowWord(akRight[iKind].Step(iFirst, iLast)),
                                                                Tov_LowWord(akRight[iKind].At(iFirst))});
              });
    kResult.iEndRow = iEnd;
    return true;
}

Tov_Bool CalcTurned(const Turn& kTurn, const Source& kSource, const Area& kBitmap, const Area& kClip, Result& kResult)
{
    const Quad   kQuad = MakeQuad(kTurn, kSource.uiWidth, kSource.uiHeight);
    const double dLong = std::min(std::fabs(kTurn.dStretchX) * kSource.uiWidth / std::fabs(kTurn.dCos),
                                  std::fabs(kTurn.dStretchY) * kSource.uiHeight / std::fabs(kTurn.dSin));
    // Corners being right angles, a chord grows by at least two pixels per row, so the rows that are too short are the first
    // and the last at most.
    const bool bThin = dLong < 1.0 + 1.0 / 64;
    Area       kArea{std::max(FirstCentre(kQuad.kLeft.kAbove.kLower.dX), kBitmap.iLeft),
               std::max(FirstCentre(kQuad.kLeft.kAbove.kUpper.dY), kBitmap.iTop),
               std::min(FirstCentre(kQuad.kRight.kAbove.kLower.dX) + 1, kBitmap.iRightEnd),
               std::min(FirstCentre(kQuad.kLeft.kBelow.kLower.dY), kBitmap.iBottomEnd)};
    if (!TrimRows(kArea.iTop, kArea.iBottomEnd,
                  [&](Tov_Int iRow)
                  {
                      const double dY = Centre(iRow);
                      return (bThin || kQuad.Chord(dY) >= SHORTEST) && kQuad.kRight.At(dY) > kBitmap.iLeft + 0.5 &&
                             kQuad.kLeft.At(dY) <= kBitmap.iRightEnd - 0.5;
                  }))
    {
        return false;
    }
    const Lattice kV(kTurn.P(), kSource.uiX, kSource.uiWidth, kSource.bBilinear, kArea);
    const Lattice kU(kTurn.Q(), kSource.uiY, kSource.uiHeight, kSource.bBilinear, kArea);
    if (!kV.HasSteps() || !kU.HasSteps())
    {
        return false;
    }
    kResult.av = kV.StepRight();
    kResult.au = kU.StepRight();
    return (bThin ? &CalcThin : &CalcWide)(kQuad, kV, kU, kArea, kClip, kResult);
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

    const auto kEnd = [](Tov_UInt uiLast) { return static_cast<Tov_Int>(std::min<Tov_UInt>(uiLast, MAX_COLUMN)) + 1; };
    const Area kBitmap{0, 0, kEnd(pkDest->GetWidth() - 1), kEnd(pkDest->GetHeight() - 1)};
    const Area kClip{static_cast<Tov_Int>(pkDest->GetClipMinX()), static_cast<Tov_Int>(pkDest->GetClipMinY()),
                     kEnd(pkDest->GetClipMaxX()), kEnd(pkDest->GetClipMaxY())};
    const Source kSource{uiSrcX, uiSrcY, uiWidth, uiHeight, bBilinear};
    Result       kResult{akLeft, akRight, 0, 0, 0, 0, 0};
    const auto   pfnCalc = kTurn.dCos == 0.0 || kTurn.dSin == 0.0 ? &CalcUpright : &CalcTurned;
    if (!pfnCalc(kTurn, kSource, kBitmap, kClip, kResult))
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
