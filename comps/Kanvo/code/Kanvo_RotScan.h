// Kanvo_RotScan: the walk of every rotated blit, written once: row by row between the edges that Kanvo_RotBlitParam
// calculates, the source position stepped along the row in 16.16.
#ifndef KANVO_ROTSCAN_H
#define KANVO_ROTSCAN_H

#include <algorithm>

#include "Kanvo_PixelAddress.h"
#include "Kanvo_RotBlitParam.h"
#include "Tov_Math.h"

//! What a rotated blit is asked for: the source rectangle and how it is turned.
struct Kanvo_RotRequest
{
    Tov_UInt  uiWidth;
    Tov_UInt  uiHeight;
    Tov_UInt  uiSrcX;
    Tov_UInt  uiSrcY;
    Tov_Value vDstX;
    Tov_Value vDstY;
    Tov_Value vAngle;
    Tov_Flag  ulFlags;
    Tov_Value vStretchX;
    Tov_Value vStretchY;
    Tov_Value vRotPosX;
    Tov_Value vRotPosY;

    //! Cuts the source rectangle where the bitmap ends. False where nothing is left.
    Tov_Bool CutTo(const Kanvo_Bitmap* pkBitmap)
    {
        if (uiSrcX >= pkBitmap->GetWidth() || uiSrcY >= pkBitmap->GetHeight())
        {
            return false;
        }
        uiWidth  = std::min(uiWidth, pkBitmap->GetWidth() - uiSrcX);
        uiHeight = std::min(uiHeight, pkBitmap->GetHeight() - uiSrcY);
        return true;
    }
};

//! Where the pixels of a row are sampled: v is the column and u the row in the source, in 16.16.
struct Kanvo_RotRow
{
    Tov_Fixed vFirst;  //!< of the first pixel
    Tov_Fixed uFirst;
    Tov_Fixed v;  //!< of the second one, and what is added from there to the next
    Tov_Fixed u;
    Tov_Fixed av;
    Tov_Fixed au;
    Tov_Int   iRest;  //!< pixels behind the first
};

//! Calls kRule(first destination pixel, Kanvo_RotRow) for each row. Dst is a pixel policy.
template <class Dst, class RowRule>
KANVO_INLINE void Kanvo_RotRows(const Kanvo_Bitmap* pkDest, const Kanvo_RotRequest& k, RowRule kRule)
{
    Kanvo_RotBlitEdgeLeft  aEdgesLeft[Kanvo_RotBlitParam::MAX_EDGES];
    Kanvo_RotBlitEdgeRight aEdgesRight[Kanvo_RotBlitParam::MAX_EDGES];
    Tov_Int                iEdgeCntLeft  = 0;
    Tov_Int                iEdgeCntRight = 0;
    Tov_Int                iEy           = 0;
    Tov_Int                au            = 0;
    Tov_Int                av            = 0;
    if (!Kanvo_RotBlitParam::RotBlitCalc(pkDest, k.uiWidth, k.uiHeight, k.uiSrcX, k.uiSrcY, k.vDstX, k.vDstY, k.vAngle,
                                         k.ulFlags, k.vStretchX, k.vStretchY, k.vRotPosX, k.vRotPosY, aEdgesLeft,
                                         aEdgesRight, iEdgeCntLeft, iEdgeCntRight, iEy, au, av))
    {
        return;
    }
    const auto iClipLeft  = static_cast<Tov_Int>(pkDest->GetClipMinX());
    const auto iClipRight = static_cast<Tov_Int>(pkDest->GetClipMaxX()) + 1;

    const Kanvo_RotBlitEdgeLeft*  pkNextLeft  = aEdgesLeft;
    const Kanvo_RotBlitEdgeRight* pkNextRight = aEdgesRight;
    Kanvo_RotBlitEdgeLeft         kLeft       = aEdgesLeft[0];
    Kanvo_RotBlitEdgeRight        kRight      = aEdgesRight[0];
    for (Tov_Int iY = aEdgesRight[0].y1; iY < iEy; ++iY)
    {
        if (pkNextRight < aEdgesRight + iEdgeCntRight && pkNextRight->y1 == iY)
        {
            kRight = *pkNextRight++;
        }
        if (pkNextLeft < aEdgesLeft + iEdgeCntLeft && pkNextLeft->y1 == iY)
        {
            kLeft = *pkNextLeft++;
        }
        Tov_Fixed u      = kLeft.u;
        Tov_Fixed v      = kLeft.v;
        Tov_Int   iLeft  = Tov_FixToInt(kLeft.sx);
        Tov_Int   iRight = Tov_FixToInt(kRight.sx);
        if (iLeft < iClipRight && iRight > iClipLeft)
        {
            if (iLeft < iClipLeft)
            {
                const Tov_Int iSkip = iClipLeft - iLeft;
                u                   = Tov_FixAdd(u, Tov_IntMul(au, iSkip));
                v                   = Tov_FixAdd(v, Tov_IntMul(av, iSkip));
                iLeft               = iClipLeft;
            }
            iRight = std::min(iRight, iClipRight);

            typename Dst::Offset kOffset;
            Dst::GetOffset(pkDest, static_cast<Tov_UInt>(iLeft), static_cast<Tov_UInt>(iY), kOffset);
            // KEPT: the first pixel of a row is drawn even where the row has no width. Test: ARowWithoutWidthGetsOnePixel.
            const Tov_Fixed fxRest = 0x10000 - (kLeft.sx & 0xFFFF);
            kRule(kOffset, Kanvo_RotRow{v, u, Tov_FixAdd(v, Tov_FixMul_RZA1H(av, fxRest)),
                                        Tov_FixAdd(u, Tov_FixMul_RZA1H(au, fxRest)), av, au,
                                        std::max(iRight - iLeft - 1, Tov_Int{0})});
        }
        kRight.sx = Tov_FixAdd(kRight.sx, kRight.dx);
        kLeft.NextRow();
    }
}

#endif
