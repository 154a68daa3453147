// Kanvo_PolyExtrude: offsets the sides of an outline and joins them again at the corners. One pass in place: what is
// needed of the vertices already moved, the direction of the side that led here, is carried along.
#include "Kanvo_PolyExtrude.h"

#include <cmath>

#include "Kanvo_Enums.h"
#include "Kanvo_Geometry.h"

namespace
{

constexpr double OFFSET      = 0.5;  // pixels
constexpr double MITRE_LIMIT = 4.0;  // a corner moves by at most so many offsets

// In double precision: an outline of large coordinates has directions all the same.
struct Direction
{
    double dX;
    double dY;

    Tov_Bool IsNone() const { return dX == 0.0 && dY == 0.0; }
};

//! Unit vector from one vertex to another; none where they coincide.
Direction Towards(const Kanvo_Coord2D& kFrom, const Kanvo_Coord2D& kTo)
{
    const double dX      = static_cast<double>(kTo.x) - static_cast<double>(kFrom.x);
    const double dY      = static_cast<double>(kTo.y) - static_cast<double>(kFrom.y);
    const double dLength = std::sqrt(dX * dX + dY * dY);
    return dLength > 0.0 ? Direction{dX / dLength, dY / dLength} : Direction{0.0, 0.0};
}

//! How far the corner between two sides moves. dTurn: 1 for an outline that runs clockwise, -1 for the other.
Direction Mitre(const Direction& kIn, const Direction& kOut, double dTurn)
{
    const Direction kNormals  = {(kIn.dY + kOut.dY) * dTurn, -(kIn.dX + kOut.dX) * dTurn};
    const double    dOnePlusC = 1.0 + kIn.dX * kOut.dX + kIn.dY * kOut.dY;  // length of the mitre: sqrt(2 / this)
    if (dOnePlusC >= 2.0 / (MITRE_LIMIT * MITRE_LIMIT))
    {
        return {kNormals.dX * (OFFSET / dOnePlusC), kNormals.dY * (OFFSET / dOnePlusC)};
    }
    // The sum of the normals fades where the sides double back; their difference has the same direction and does not.
    const double    dSide   = (kIn.dX * kOut.dY - kIn.dY * kOut.dX) * dTurn >= 0.0 ? 1.0 : -1.0;  // -1: a notch
    const Direction kAhead  = {kIn.dX - kOut.dX, kIn.dY - kOut.dY};
    const double    dLength = std::sqrt(kAhead.dX * kAhead.dX + kAhead.dY * kAhead.dY);  // close to 2 here
    const double    dScale  = dSide * OFFSET * MITRE_LIMIT / dLength;
    return {kAhead.dX * dScale, kAhead.dY * dScale};
}

class Outline
{
public:
    Outline(void* pvValues, Tov_UInt uiPitch, Tov_UInt uiCount)
        : m_pvValues(pvValues),
          m_uiPitch(uiPitch),
          m_uiCount(uiCount)
    {
    }

    Kanvo_Coord2D Get(Tov_UInt uiIndex) const { return Kanvo_ReadVertex(m_pvValues, m_uiPitch, uiIndex); }
    Tov_UInt      Next(Tov_UInt uiIndex) const { return uiIndex + 1 < m_uiCount ? uiIndex + 1 : 0; }

    void Move(Tov_UInt uiIndex, const Kanvo_Coord2D& kFrom, const Direction& kBy)
    {
        Kanvo_WriteVertex(m_pvValues, m_uiPitch, uiIndex,
                          {static_cast<Tov_Value>(static_cast<double>(kFrom.x) + kBy.dX),
                           static_cast<Tov_Value>(static_cast<double>(kFrom.y) + kBy.dY)});
    }

    Tov_Bool IsUsable() const
    {
        constexpr Tov_Value vLimit = 1.0e9F;
        for (Tov_UInt uiIndex = 0; uiIndex < m_uiCount; ++uiIndex)
        {
            const Kanvo_Coord2D kVertex = Get(uiIndex);
            if (!(kVertex.x >= -vLimit && kVertex.x <= vLimit && kVertex.y >= -vLimit && kVertex.y <= vLimit))
            {
                return false;
            }
        }
        return true;
    }

    //! Twice the area, positive where the outline runs clockwise on the screen. Relative to one corner, for accuracy.
    double SignedArea() const
    {
        const Kanvo_Coord2D kFirst = Get(0);
        const auto          kAt    = [&](Tov_UInt uiIndex)
        {
            const Kanvo_Coord2D kVertex = Get(uiIndex);
            return Direction{static_cast<double>(kVertex.x) - static_cast<double>(kFirst.x),
                             static_cast<double>(kVertex.y) - static_cast<double>(kFirst.y)};
        };
        double    dArea     = 0.0;
        Direction kPrevious = kAt(0);
        for (Tov_UInt uiIndex = 1; uiIndex < m_uiCount; ++uiIndex)
        {
            const Direction kHere = kAt(uiIndex);
            dArea += kPrevious.dX * kHere.dY - kPrevious.dY * kHere.dX;
            kPrevious = kHere;
        }
        return dArea;
    }

    void Extrude(double dTurn)
    {
        // Begin where a side with length ends. What follows up to the next side with length is one corner.
        Tov_UInt  uiStart = 0;
        Direction kIn     = Towards(Get(m_uiCount - 1), Get(0));
        while (kIn.IsNone() && ++uiStart < m_uiCount)
        {
            kIn = Towards(Get(uiStart - 1), Get(uiStart));
        }
        if (kIn.IsNone())
        {
            return;
        }
        const Kanvo_Coord2D kStart = Get(uiStart);
        Kanvo_Coord2D       kHere  = kStart;
        for (Tov_UInt uiFirst = uiStart, uiDone = 0; uiDone < m_uiCount;)
        {
            Tov_UInt      uiAlike = 1;
            Tov_UInt      uiNext  = Next(uiFirst);
            Direction     kOut    = {0.0, 0.0};
            Kanvo_Coord2D kThere  = kHere;
            for (;; ++uiAlike, uiNext = Next(uiNext))
            {
                kThere =
                    uiNext == uiStart ? kStart : Get(uiNext);  // the first corner has moved by the time we are back
                kOut = Towards(kHere, kThere);
                if (!kOut.IsNone() || uiNext == uiStart)
                {
                    break;
                }
            }
            const Direction kBy = Mitre(kIn, kOut.IsNone() ? kIn : kOut, dTurn);
            for (Tov_UInt uiOne = 0; uiOne < uiAlike; ++uiOne, uiFirst = Next(uiFirst))
            {
                Move(uiFirst, kHere, kBy);
            }
            uiDone += uiAlike;
            kIn   = kOut;
            kHere = kThere;
        }
    }

private:
    void*    m_pvValues;
    Tov_UInt m_uiPitch;
    Tov_UInt m_uiCount;
};

}  // namespace

void Kanvo_Extrude_Polygon(void* pvValues, Tov_UInt uiPitch, Tov_UInt uiCount, Tov_Flag ulHints)
{
    Outline kOutline(pvValues, uiPitch, uiCount);
    if (pvValues == nullptr || uiCount < 3 || !kOutline.IsUsable())
    {
        return;
    }
    const Tov_Flag ulWinding = ulHints & (POLY_HINT_CW | POLY_HINT_CCW);
    const Tov_Bool bClockwise =
        ulWinding == POLY_HINT_CW || (ulWinding != POLY_HINT_CCW && kOutline.SignedArea() >= 0.0);
    kOutline.Extrude(bClockwise ? 1.0 : -1.0);
}
