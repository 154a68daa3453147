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
#include "Kanvo_Spandraw.h"
#include "Kanvo_Tables.h"
#include "Tov_Math.h"
#include "Trak_Counters.h"

//! f along a row of a dot, or along a column. 64 bits hold it for every radius.
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

//! A pixel of a row, and f there.
struct Kanvo_DotPlace
{
    std::int64_t iPixel;
    Kanvo_DotRow kF;

    KANVO_INLINE std::int64_t ValueRight() const { return kF.iValue + kF.iStep; }
    KANVO_INLINE std::int64_t ValueLeft() const { return kF.iValue - kF.iStep + kF.iChange; }
    KANVO_INLINE void         Right()
    {
        ++iPixel;
        kF.Next();
    }
    KANVO_INLINE void Left()
    {
        --iPixel;
        kF.iStep -= kF.iChange;
        kF.iValue -= kF.iStep;
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

//! Part of a dot: iColumns x iRows pixels. f is concave, so that the pixels of a row where it reaches some value are one
//! run. The ends of a run move little from one row to the next, and are followed.
struct Kanvo_DotArea
{
    Kanvo_DotRow kTop;   //!< f along the first column
    Kanvo_DotRow kLeft;  //!< f along the first row
    std::int64_t iColumns;
    std::int64_t iRows;

    //! Adds to f everywhere.
    void Lift(std::int64_t iShift)
    {
        kTop.iValue += iShift;
        kLeft.iValue += iShift;
    }
    //! Leaves the pixels of both spans.
    void Clip(const Kanvo_DotSpan& kX, const Kanvo_DotSpan& kY)
    {
        const std::int64_t iCorner = kTop.iValue;
        kTop.Skip(kY.iOffset);
        kLeft.Skip(kX.iOffset);
        const std::int64_t iDown = kTop.iValue - iCorner;
        kTop.iValue += kLeft.iValue - iCorner;
        kLeft.iValue += iDown;
        iColumns = kX.iCount;
        iRows    = kY.iCount;
    }

    //! Calls kRow(row, left, right) for every row where f reaches iLeast: left is the first pixel where it does, right the
    //! last where it reaches iMost, or, where none does, the pixel with the largest f.
    template <class Row>
    KANVO_INLINE void Walk(std::int64_t iLeast, std::int64_t iMost, Row kRow) const
    {
        // f is largest where its step turns negative.
        const std::int64_t iRise = kLeft.iStep > 0 ? (kLeft.iStep - kLeft.iChange - 1) / -kLeft.iChange : 0;
        Kanvo_DotPlace     kFirst{std::min(iRise, iColumns - 1), kLeft};
        kFirst.kF.Skip(kFirst.iPixel);
        const std::int64_t iPeak = kFirst.iPixel;
        Kanvo_DotPlace     kLast = kFirst;
        Kanvo_DotRow       kDown = kTop;
        for (std::int64_t iRow = 0; iRow < iRows; ++iRow)
        {
            while (kFirst.iPixel > 0 && kFirst.ValueLeft() >= iLeast)
            {
                kFirst.Left();
            }
            while (kFirst.iPixel < iPeak && kFirst.kF.iValue < iLeast)
            {
                kFirst.Right();
            }
            while (kLast.iPixel + 1 < iColumns && kLast.ValueRight() >= iMost)
            {
                kLast.Right();
            }
            while (kLast.iPixel > iPeak && kLast.kF.iValue < iMost)
            {
                kLast.Left();
            }
            if (kFirst.kF.iValue >= iLeast)
            {
                kRow(iRow, kFirst, kLast);
            }
            kFirst.kF.iValue += kDown.iStep;
            kLast.kF.iValue += kDown.iStep;
            kDown.Next();
        }
    }

    //! Calls kDraw(offset, alpha) for every soft pixel, and to find them looks at all there are. Of so few that this is
    //! soonest, f is so small that 32 bits hold it. kRowAt(row) is where a row starts.
    template <class RowAt, class Draw>
    KANVO_INLINE void LookAtAll(RowAt kRowAt, Draw kDraw) const
    {
        constexpr Tov_Int WHOLE   = 0x10000;
        const auto        iEnd    = static_cast<Tov_Int>(iColumns);
        const auto        iStart  = static_cast<Tov_Int>(kLeft.iStep);
        const auto        iChange = static_cast<Tov_Int>(kLeft.iChange);
        Kanvo_DotRow      kDown   = kTop;
        for (std::int64_t iRow = 0; iRow < iRows; ++iRow)
        {
            auto    kOffset = kRowAt(iRow);
            auto    iValue  = static_cast<Tov_Int>(kDown.iValue);
            Tov_Int iStep   = iStart;
            for (Tov_Int iPixel = iEnd; iPixel > 0; --iPixel)
            {
                if (iValue > 0)
                {
                    kDraw(kOffset, static_cast<Tov_UByte>(std::min(iValue, WHOLE - 1) >> 8));
                }
                ++kOffset;
                iValue += iStep;
                iStep += iChange;
            }
            kDown.Next();
        }
    }

    //! The soft pixels of every row, from left to right: calls kRim(row, pixel, f) for one on the rim, which has a part of
    //! its area inside, and kInside(row, first, count) for those inside.
    template <class Rim, class Inside>
    KANVO_INLINE void WalkSoft(Rim kRim, Inside kInside) const
    {
        constexpr std::int64_t WHOLE = 0x10000;
        Walk(1, WHOLE,
             [=](std::int64_t iRow, Kanvo_DotPlace kPlace, Kanvo_DotPlace kLastInside)
             {
                 for (; kPlace.iPixel < iColumns && kPlace.kF.iValue > 0 && kPlace.kF.iValue < WHOLE; kPlace.Right())
                 {
                     kRim(iRow, kPlace.iPixel, kPlace.kF.iValue);
                 }
                 if (kLastInside.kF.iValue < WHOLE)
                 {
                     return;
                 }
                 kInside(iRow, kPlace.iPixel, kLastInside.iPixel - kPlace.iPixel + 1);
                 for (kLastInside.Right(); kLastInside.iPixel < iColumns && kLastInside.kF.iValue > 0;
                      kLastInside.Right())
                 {
                     kRim(iRow, kLastInside.iPixel, kLastInside.kF.iValue);
                 }
             });
    }
};

//! What f lacks, per pixel of the rim, for a whole dot to cover iArea (16.16).
inline std::int64_t Kanvo_DotShift(const Kanvo_DotArea& kDot, std::int64_t iArea)
{
    std::int64_t iRim = 0;
    kDot.WalkSoft(
        [&](std::int64_t /*iRow*/, std::int64_t /*iPixel*/, std::int64_t iValue)
        {
            iArea -= iValue;
            ++iRim;
        },
        [&](std::int64_t /*iRow*/, std::int64_t /*iFirst*/, std::int64_t iCount) { iArea -= iCount * 0x10000; });
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

    const auto         dR   = static_cast<double>(vRadius);
    const double       dUX  = static_cast<double>(vCenterX) - static_cast<double>(iBoxX);
    const double       dUY  = static_cast<double>(vCenterY) - static_cast<double>(iBoxY);
    const std::int64_t iK   = std::max<std::int64_t>(1, Tov_DblFloor(32768.0 / dR + 0.5));
    const auto         dK   = static_cast<double>(iK);
    const double       dIn  = dR - 0.5;
    const std::int64_t iF   = Tov_DblFloor(dK * ((dIn - dUX) * (dIn + dUX) - dUY * dUY) + 0.5) + 32768;
    const std::int64_t iBox = 2 * iRadius + 1;
    Kanvo_DotArea      kDot{{iF, Tov_DblFloor(dK * (2.0 * dUY - 1.0) + 0.5), -2 * iK},
                       {iF, Tov_DblFloor(dK * (2.0 * dUX - 1.0) + 0.5), -2 * iK},
                       iBox,
                       iBox};
    if (bSoft && iRadius >= LEAST_MEASURED && iRadius <= MOST_MEASURED)
    {
        kDot.Lift(Kanvo_DotShift(kDot, Tov_DblFloor(65536.0 * PI * dIn * dIn + 0.5)));
    }
    kDot.Clip(kX, kY);

    OffsetType kOrigin;
    Access::GetOffset(pkDest, static_cast<Tov_UInt>(kX.iFirst), static_cast<Tov_UInt>(kY.iFirst), kOrigin);
    const auto kAt = [pkDest, kOrigin](std::int64_t iRow, std::int64_t iPixel)
    {
        OffsetType kOffset;
        Access::AddOffset(pkDest, kOrigin, static_cast<Tov_UInt>(iPixel), static_cast<Tov_UInt>(iRow), kOffset);
        return kOffset;
    };
    if (bSoft && iRadius < LEAST_MEASURED)
    {
        kDot.LookAtAll([=](std::int64_t iRow) { return kAt(iRow, 0); }, [=](OffsetType kOffset, Tov_UByte ubAlpha)
                       { Kanvo_BlendSrcAlpha<Access>(kOffset, pxColor, ubAlpha); });
        return;
    }
    if (bSoft)
    {
        kDot.WalkSoft([=](std::int64_t iRow, std::int64_t iPixel, std::int64_t iValue)
                      { Kanvo_BlendSrcAlpha<Access>(kAt(iRow, iPixel), pxColor, static_cast<Tov_UByte>(iValue >> 8)); },
                      [=](std::int64_t iRow, std::int64_t iFirst, std::int64_t iCount) {
                          Kanvo_BlendRunSrcAlpha<Access>(kAt(iRow, iFirst), pxColor, static_cast<Tov_Int>(iCount),
                                                         Tov_UByte{255});
                      });
        return;
    }
    constexpr std::int64_t INSIDE = 32769;
    kDot.Walk(INSIDE, INSIDE,
              [=](std::int64_t iRow, const Kanvo_DotPlace& kFirst, const Kanvo_DotPlace& kLast) {
                  Kanvo_PutRun<Access>(kAt(iRow, kFirst.iPixel), pxColor,
                                       static_cast<Tov_Int>(kLast.iPixel - kFirst.iPixel + 1));
              });
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
