// Kanvo_Dotdraw: dots, for DrawDot and for the round caps of wide lines: the members of Kanvo_Linedraw that draw them.
// Writes pixels itself.
//
// Inside a disc of radius r around the centre,  f = ((r - 1/2)^2 - d^2) / (2 r) + 1/2  is, near the rim, the distance
// inside, r - d, with slope 1. It is a quadratic of the pixel position, stepped with first and second differences in
// 16.16. All coefficients are multiples of one rounded factor k = 1 / (2 r), so that rounding changes the slope at the rim
// a little and the radius not at all.
//
// How much of a small soft dot's rim falls on pixels depends on where its centre lies between them: its area, and so its
// brightness, would tremble by more than a percent while it moves. So the area of the whole dot is measured beforehand, and f
// shifted by what the disc lacks; large dots have rim enough to even it out, and tiny ones are no discs.
#ifndef KANVO_DOTDRAW_H
#define KANVO_DOTDRAW_H

#include <algorithm>
#include <cmath>

#include "Kanvo_Enums.h"
#include "Kanvo_Linedraw.h"
#include "Kanvo_Tables.h"
#include "rows.h"
#include "Tov_Math.h"
#include "Trak_Counters.h"

//! f of one row of a dot, pixel by pixel. 64 bits hold it for every radius.
struct Kanvo_DotRow
{
    std::int64_t iValue;
    std::int64_t iStep;    //!< first difference
    std::int64_t iChange;  //!< second difference

    KANVO_INLINE void Next()
    {
        iValue += iStep;
        iStep += iChange;
    }
    //! As iCount times Next.
    void Skip(std::int64_t iCount)
    {
        iValue += iCount * iStep + iCount * (iCount - 1) / 2 * iChange;
        iStep += iCount * iChange;
    }
};

//! The pixels that a dot may touch on one axis: from the first on, iOffset of them cut off before the clip rectangle.
struct Kanvo_DotSpan
{
    std::int64_t iFirst;
    std::int64_t iOffset;
    std::int64_t iCount;

    Kanvo_DotSpan(std::int64_t iBoxStart, std::int64_t iRadius, std::int64_t iClipMin, std::int64_t iClipMax)
        : iFirst(std::max(iBoxStart, iClipMin)),
          iOffset(iFirst - iBoxStart),
          iCount(std::min(iBoxStart + 2 * iRadius, iClipMax) - iFirst + 1)
    {
    }
};

//! What f lacks, per pixel of the rim, for the dot in a box of iSize x iSize pixels to cover iArea (16.16).
inline std::int64_t Kanvo_DotShift(Kanvo_DotRow kRows, std::int64_t iStepX, std::int64_t iSize, std::int64_t iArea)
{
    std::int64_t iRim = 0;
    for (std::int64_t iY = 0; iY < iSize; ++iY)
    {
        Kanvo_DotRow kPixels{kRows.iValue, iStepX, kRows.iChange};
        for (std::int64_t iX = 0; iX < iSize; ++iX)
        {
            iArea -= std::max<std::int64_t>(0, std::min<std::int64_t>(0x10000, kPixels.iValue));
            iRim += kPixels.iValue > 0 && kPixels.iValue < 0x10000 ? 1 : 0;
            kPixels.Next();
        }
        kRows.Next();
    }
    return iRim != 0 ? iArea / iRim : 0;
}

template <class PixelType, class OffsetType, class Access, Tov_Bool PATTERNS>
void Kanvo_Linedraw<PixelType, OffsetType, Access, PATTERNS>::DrawDot(Kanvo_Bitmap* pkDest, Tov_Value vCenterX,
                                                                      Tov_Value vCenterY, Tov_Value vRadius,
                                                                      Kanvo_Color kColor, Tov_Flag uiFlag)
{
    constexpr Tov_Value vLimit  = 1.0e9F;
    const auto          kUsable = [](Tov_Value vValue) { return vValue >= -vLimit && vValue <= vLimit; };
    Trak_Count(g_kStat_DotRadius, vRadius);
    if (!kUsable(vCenterX) || !kUsable(vCenterY) || !kUsable(vRadius))
    {
        Trak_Count(g_kStat_RejectedDot, 1.0F);
        return;
    }
    const PixelType pxColor = Access::ColorToPixel(kColor);
    if (vRadius > 1.0F)
    {
        LargeDot(pkDest, vCenterX, vCenterY, vRadius, pxColor, uiFlag);
    }
    else
    {
        SmallDot(pkDest, vCenterX, vCenterY, pxColor, uiFlag);
    }
}

template <class PixelType, class OffsetType, class Access, Tov_Bool PATTERNS>
void Kanvo_Linedraw<PixelType, OffsetType, Access, PATTERNS>::LargeDot(Kanvo_Bitmap* pkDest, Tov_Value vCenterX,
                                                                       Tov_Value vCenterY, Tov_Value vRadius,
                                                                       PixelType pxColor, Tov_Flag uiFlag)
{
    constexpr double       PI             = 3.14159265358979323846;
    constexpr std::int64_t LEAST_MEASURED = 5;  // pixels, rounded up, of the radius that f has
    constexpr std::int64_t MOST_MEASURED  = 9;

    const Trak_PerfScope kScope(g_kPerf_Dots);
    const Tov_Bool       bSoft = (uiFlag & (Kanvo_LF_ANTIALIAS | Kanvo_LF_HQ_AA)) != 0;
    // KEPT: a filtered dot of radius below 6 is an anti-aliased one. Test: AFilteredDotBelowRadiusSixIsAnAntialiasedOne.
    const Tov_Bool bHQ = (uiFlag & Kanvo_LF_HQ_AA) != 0 && vRadius >= 6.0F;
    vRadius += bSoft && !bHQ ? 0.25F : 0.5F;
    if (!bSoft)
    {
        vRadius = std::max(vRadius, 1.5F);
    }
    const auto          iRadius = static_cast<std::int64_t>(Tov_FltToUInt(std::ceil(vRadius)));
    const std::int64_t  iBoxX   = Tov_FltToInt(vCenterX - static_cast<Tov_Value>(iRadius));
    const std::int64_t  iBoxY   = Tov_FltToInt(vCenterY - static_cast<Tov_Value>(iRadius));
    const Kanvo_DotSpan kX(iBoxX, iRadius, pkDest->GetClipMinX(), pkDest->GetClipMaxX());
    const Kanvo_DotSpan kY(iBoxY, iRadius, pkDest->GetClipMinY(), pkDest->GetClipMaxY());
    if (kX.iCount <= 0 || kY.iCount <= 0)
    {
        Trak_Count(g_kStat_RejectedDot, 1.0F);
        return;
    }
    Trak_Count(g_kStat_NumberOfDots, 1.0F);

    const auto         dR  = static_cast<double>(vRadius);
    const double       dUX = static_cast<double>(vCenterX) - static_cast<double>(iBoxX);
    const double       dUY = static_cast<double>(vCenterY) - static_cast<double>(iBoxY);
    const std::int64_t iK  = std::max<std::int64_t>(1, Tov_DblFloor(32768.0 / dR + 0.5));
    const auto         dK  = static_cast<double>(iK);
    const double       dIn = dR - 0.5;
    Kanvo_DotRow       kRows{Tov_DblFloor(dK * ((dIn - dUX) * (dIn + dUX) - dUY * dUY) + 0.5) + 32768,
                       Tov_DblFloor(dK * (2.0 * dUY - 1.0) + 0.5), -2 * iK};
    const std::int64_t iStepX = Tov_DblFloor(dK * (2.0 * dUX - 1.0) + 0.5);
    if (bSoft && iRadius >= LEAST_MEASURED && iRadius <= MOST_MEASURED)
    {
        const std::int64_t iArea = Tov_DblFloor(65536.0 * PI * dIn * dIn + 0.5);
        kRows.iValue += Kanvo_DotShift(kRows, iStepX, 2 * iRadius + 1, iArea);
    }
    kRows.Skip(kY.iOffset);

    OffsetType kLine;
    Access::GetOffset(pkDest, static_cast<Tov_UInt>(kX.iFirst), static_cast<Tov_UInt>(kY.iFirst), kLine);
    for (std::int64_t iY = 0; iY < kY.iCount; ++iY)
    {
        Kanvo_DotRow kPixels{kRows.iValue, iStepX, -2 * iK};
        kPixels.Skip(kX.iOffset);
        if (bSoft)
        {
            for (std::int64_t iX = 0; iX < kX.iCount; ++iX)
            {
                if (kPixels.iValue > 0)
                {
                    const Tov_UByte ubCover =
                        kPixels.iValue >= 0x10000 ? Tov_UByte{255} : static_cast<Tov_UByte>(kPixels.iValue >> 8);
                    Access::BlendPixelSrcAlpha(kLine + iX, pxColor, ubCover);
                }
                kPixels.Next();
            }
        }
        else
        {
            std::int64_t iFrom = 0;  // the inside of a row is one run, because f is concave
            for (; iFrom < kX.iCount && kPixels.iValue <= 32768; ++iFrom)
            {
                kPixels.Next();
            }
            std::int64_t iUntil = iFrom;
            for (; iUntil < kX.iCount && kPixels.iValue > 32768; ++iUntil)
            {
                kPixels.Next();
            }
            Kanvo_PutRun<Access>(kLine + iFrom, pxColor, static_cast<Tov_Int>(iUntil - iFrom));
        }
        kRows.Next();
        Access::IncY(pkDest, kLine);
    }
}

template <class PixelType, class OffsetType, class Access, Tov_Bool PATTERNS>
void Kanvo_Linedraw<PixelType, OffsetType, Access, PATTERNS>::SmallDot(Kanvo_Bitmap* pkDest, Tov_Value vCenterX,
                                                                       Tov_Value vCenterY, PixelType pxColor,
                                                                       Tov_Flag uiFlag)
{
    const Tov_Fixed fxX     = Tov_FltToFix(vCenterX);
    const Tov_Fixed fxY     = Tov_FltToFix(vCenterY);
    const Tov_Int   iX      = fxX >> 16;
    const Tov_Int   iY      = fxY >> 16;
    const auto      kInside = [pkDest](Tov_Int iAtX, Tov_Int iAtY)
    {
        return iAtX >= static_cast<std::int64_t>(pkDest->GetClipMinX()) &&
               iAtX <= static_cast<std::int64_t>(pkDest->GetClipMaxX()) &&
               iAtY >= static_cast<std::int64_t>(pkDest->GetClipMinY()) &&
               iAtY <= static_cast<std::int64_t>(pkDest->GetClipMaxY());
    };
    if (!kInside(iX, iY))
    {
        Trak_Count(g_kStat_RejectedDot, 1.0F);
        return;
    }
    Trak_Count(g_kStat_NumberOfDots, 1.0F);
    OffsetType kOffset;
    Access::GetOffset(pkDest, static_cast<Tov_UInt>(iX), static_cast<Tov_UInt>(iY), kOffset);
    if ((uiFlag & Kanvo_LF_ANTIALIAS) == 0)
    {
        Access::PutPixel(kOffset, pxColor);
        return;
    }
    const auto ubRight = static_cast<Tov_UByte>(fxX >> 8);
    const auto ubBelow = static_cast<Tov_UByte>(fxY >> 8);
    for (Tov_Int iNeighbour = 0; iNeighbour < 4; ++iNeighbour)
    {
        const Tov_Int   iRight = iNeighbour & 1;
        const Tov_Int   iBelow = iNeighbour >> 1;
        const Tov_UByte ubWeight =
            Kanvo_MulByte(iRight != 0 ? ubRight : 255U - ubRight, iBelow != 0 ? ubBelow : 255U - ubBelow);
        if (ubWeight != 0 && kInside(iX + iRight, iY + iBelow))
        {
            OffsetType kNeighbour;
            Access::AddOffset(pkDest, kOffset, static_cast<Tov_UInt>(iRight), static_cast<Tov_UInt>(iBelow),
                              kNeighbour);
            Access::BlendPixelSrcAlpha(kNeighbour, pxColor, g_Kanvo_ubGammaRamp[ubWeight]);
        }
    }
}

#endif
