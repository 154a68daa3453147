// Kanvo_PolySetupAA: one record per side. The measure of distance is the heart of it: the normal n = (dy, -dx) is scaled so
// that |n.x| + |n.y| = 1, and in this measure a line touches a pixel exactly while its distance from the pixel's centre is
// at most 1/2, whatever its direction. One scale of table indices so serves all directions, without a square root.
#include "Kanvo_PolySetupAA.h"

#include <algorithm>
#include <cmath>

#include "Kanvo_ColorMath.h"
#include "Kanvo_Tables.h"
#include "Tov_Math.h"

namespace
{

constexpr Tov_Value SCALE      = 24.0F * 4194304.0F;  // of dist: 12 table steps per half pixel, 22 bits of fraction
constexpr Tov_Int   HALF_STEP  = 1 << 21;             // the index is cut off, not rounded: this makes up for it
constexpr Tov_Value SUBSAMPLES = 30.0F;
constexpr Tov_Int   ALL        = 0x3FFFFFFF;  // the sub-samples of a pixel

// Pixel ranges keep this far from the right border: a corner may lie on the border, and x drifts while it is stepped.
constexpr Tov_Value BORDER = 1.0F / 16.0F;

//! floor(vValue), saturated.
KANVO_INLINE Tov_Int Floor(Tov_Value vValue)
{
    const Tov_Int iTruncated = Tov_FltToInt(vValue);
    return iTruncated - (static_cast<Tov_Value>(iTruncated) > vValue && iTruncated != INT32_MIN ? 1 : 0);
}

KANVO_INLINE Tov_Int Round(Tov_Value vValue)
{
    return Floor(vValue + 0.5F);
}

//! How many sub-sample rows of its pixel row lie above vY, which is not negative.
KANVO_INLINE Tov_Int RowsAbove(Tov_Value vY)
{
    const Tov_Value vFraction = vY - static_cast<Tov_Value>(Tov_FltToInt(vY));
    const Tov_Int   iRows     = -std::max<Tov_Int>(-30, Floor(0.5F - SUBSAMPLES * vFraction));
    return std::max<Tov_Int>(0, iRows);
}

//! Sets up one side from its upper to its lower end, which starts in row iTop.
void SetUpSide(Kanvo_AAEdgeBucket& kSide, const Kanvo_Coord2D& kA, const Kanvo_Coord2D& kB, Tov_Int iTop,
               Tov_Value vMaxX)
{
    const Tov_Value vDX    = kB.x - kA.x;
    const Tov_Value vDY    = kB.y - kA.y;
    const Tov_Value vLen   = std::fabs(vDX) + vDY;
    const Tov_Value vNX    = vDY / vLen;
    const Tov_Value vNY    = -vDX / vLen;
    const Tov_Value vLeft  = std::min(kA.x, vMaxX);
    const Tov_Value vRight = std::min(kB.x, vMaxX);

    kSide.ybot       = Floor(kB.y);
    kSide.nx         = Round(vNX * SCALE);
    kSide.ny         = Round(vNY * SCALE);
    kSide.normalmask = static_cast<Tov_Int>(KANVO_EDGE_STEPS) *
                       Round((vNY + 1.0F) * (static_cast<Tov_Value>(KANVO_EDGE_DIRECTIONS - 1) / 2.0F));
    kSide.X1     = vRight;
    kSide.xslope = vDY > 0.0F ? (vRight - vLeft) / vDY : 0.0F;
    if (iTop == kSide.ybot)
    {
        kSide.edgeflags = 3;
        kSide.xipol     = vRight;
        kSide.xsleft    = Floor(std::min(vLeft, vRight));
        kSide.xsright   = Floor(std::max(vLeft, vRight));
    }
    else
    {
        kSide.edgeflags      = 1;
        kSide.xipol          = vLeft + (static_cast<Tov_Value>(iTop + 1) - kA.y) * kSide.xslope;
        const Tov_Int iFirst = Floor(vLeft);
        const Tov_Int iLast  = std::max<Tov_Int>(0, std::min(Floor(vMaxX), Floor(kSide.xipol)));
        kSide.xsleft         = kSide.xslope > 0.0F ? iFirst : iLast;
        kSide.xsright        = kSide.xslope > 0.0F ? iLast : iFirst;
    }
    // The true ends count here: a side on the right border still covers the last pixel in full.
    const Tov_Value vDist =
        vNX * (static_cast<Tov_Value>(kSide.xsleft) + 0.5F - kA.x) + vNY * (static_cast<Tov_Value>(iTop) + 0.5F - kA.y);
    kSide.dist    = Tov_FixAdd(Round(vDist * SCALE), HALF_STEP);
    kSide.cliptop = ALL & ~((1 << RowsAbove(kA.y)) - 1);
    kSide.clipbot = (1 << RowsAbove(kB.y)) - 1;
    kSide.AEnext  = nullptr;
}

}  // namespace

Tov_Bool SetupAAPolygon(Tov_Int iClipMaxY, Tov_Int iClipMaxX, Kanvo_AAEdgeBucket* pkBuckets, const void* pvValues,
                        Tov_UInt uiPitch, Kanvo_AAEdgeBucket** ppkScanList, Tov_Int& iYStart, Tov_UInt uiCount)
{
    const auto vRight = static_cast<Tov_Value>(iClipMaxX + 1);
    const auto kHeld  = [=](Tov_UInt uiIndex)
    {
        const Kanvo_Coord2D kVertex = Kanvo_ReadVertex(pvValues, uiPitch, uiIndex);
        return Kanvo_Coord2D{std::max(0.0F, std::min(kVertex.x, vRight)), std::max(0.0F, kVertex.y)};
    };
    iYStart          = iClipMaxY + 1;
    Kanvo_Coord2D kA = uiCount > 0 ? kHeld(uiCount - 1) : Kanvo_Coord2D{0.0F, 0.0F};
    for (Tov_UInt uiIndex = 0; uiIndex < uiCount; ++uiIndex)
    {
        const Kanvo_Coord2D  kB     = kHeld(uiIndex);
        const Tov_Bool       bDown  = kA.y < kB.y || (kA.y == kB.y && kA.x < kB.x);
        const Kanvo_Coord2D& kUpper = bDown ? kA : kB;
        const Kanvo_Coord2D& kLower = bDown ? kB : kA;
        const Tov_Int        iTop   = Floor(kUpper.y);
        if ((kA.x != kB.x || kA.y != kB.y) && iTop <= iClipMaxY)
        {
            SetUpSide(*pkBuckets, kUpper, kLower, iTop, vRight - BORDER);
            pkBuckets->next   = ppkScanList[iTop];
            ppkScanList[iTop] = pkBuckets++;
            iYStart           = std::min(iYStart, iTop);
        }
        kA = kB;
    }
    return iYStart <= iClipMaxY;
}
