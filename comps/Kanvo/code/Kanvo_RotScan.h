// Kanvo_RotScan: the walk of every rotated blit, written once: row by row between the edges that Kanvo_RotBlitParam
// calculates, the source position stepped along the row in 16.16.
#ifndef KANVO_ROTSCAN_H
#define KANVO_ROTSCAN_H

#include <algorithm>

#include "Kanvo_PixelAndMap.h"
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

//! Calls kRule(source offset, destination offset, fraction v, fraction u, whether it is the row's first pixel) for each
//! destination pixel. Src and Dst are pixel policies, or for a source with a map a Kanvo_PixelAndMap.
template <class Src, class Dst, class Source, class Rule>
KANVO_INLINE void Kanvo_RotScan(const Source* pkSource, const Kanvo_Bitmap* pkDest, const Kanvo_RotRequest& k,
                                Rule kRule)
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
            const auto kDrawPixel = [&](Tov_Bool bFirst)
            {
                typename Src::Offset kTexOffset;
                Src::GetOffset(pkSource, static_cast<Tov_UInt>(v >> 16), static_cast<Tov_UInt>(u >> 16), kTexOffset);
                kRule(kTexOffset, kOffset, static_cast<Tov_UByte>(v >> 8), static_cast<Tov_UByte>(u >> 8), bFirst);
                Dst::IncX(pkDest, kOffset);
            };
            // KEPT: the first pixel of a row is drawn even where the row has no width. Test: ARowWithoutWidthGetsOnePixel.
            kDrawPixel(true);
            const Tov_Fixed fxRest = 0x10000 - (kLeft.sx & 0xFFFF);
            u                      = Tov_FixAdd(u, Tov_FixMul_RZA1H(au, fxRest));
            v                      = Tov_FixAdd(v, Tov_FixMul_RZA1H(av, fxRest));
            for (Tov_Int iX = iLeft + 1; iX < iRight; ++iX)
            {
                kDrawPixel(false);
                u = Tov_FixAdd(u, au);
                v = Tov_FixAdd(v, av);
            }
        }
        kRight.sx = Tov_FixAdd(kRight.sx, kRight.dx);
        kLeft.NextRow();
    }
}

#endif
