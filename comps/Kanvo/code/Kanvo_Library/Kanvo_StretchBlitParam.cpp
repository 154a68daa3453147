// Kanvo_StretchBlitParam: see the header for the conventions; here is why the numbers come out inside.
#include "Kanvo_StretchBlitParam.h"

#include <algorithm>

#include "Kanvo_Enums.h"
#include "Tov_Math.h"
#include "Trak_Assert.h"

namespace
{

constexpr std::int64_t ONE = 65536;

//! Position of pixel i: iStart + i * iStep, in 16.16 from the start of the source rectangle.
struct Ramp
{
    std::int64_t iStart;
    std::int64_t iStep;
};

//! The step is rounded to nearest, the start chosen so that the samples lie symmetrically in the source: the rounding error
//! is zero in the middle, and a mirrored image stays mirrored. The second bound of the step leaves at least two units,
//! so that first and last sample lie inside.
Ramp NearestRamp(std::int64_t iSrcLength, std::int64_t iDstLength)
{
    const std::int64_t iWhole = iSrcLength * ONE;
    const std::int64_t iStep =
        iDstLength > 1 ? std::min((iWhole + iDstLength / 2) / iDstLength, (iWhole - 2) / (iDstLength - 1)) : 0;
    return {(iWhole - (iDstLength - 1) * iStep) / 2, iStep};
}

//! A filtered sample at s mixes the columns floor(s) and floor(s) + 1, so pixel centres are the whole numbers: half a
//! pixel less than for nearest. Where that leaves the range of centres, as in every magnification, the range is
//! stretched over the destination instead.
Ramp BilinearRamp(std::int64_t iSrcLength, std::int64_t iDstLength)
{
    Ramp               kRamp = NearestRamp(iSrcLength, iDstLength);
    const std::int64_t iLast = (iSrcLength - 1) * ONE - 1;
    kRamp.iStart -= ONE / 2;
    if (kRamp.iStart < 0 || kRamp.iStart + (iDstLength - 1) * kRamp.iStep > iLast)
    {
        kRamp.iStep  = iDstLength > 1 ? iLast / (iDstLength - 1) : 0;
        kRamp.iStart = (iLast - (iDstLength - 1) * kRamp.iStep) / 2;
    }
    return kRamp;
}

//! floor(iA / iB) for iB > 0.
std::int64_t FloorDiv(std::int64_t iA, std::int64_t iB)
{
    return iA >= 0 ? iA / iB : -((-iA + iB - 1) / iB);
}

//! Shrinks a destination rectangle around its middle to the aspect of the source.
void KeepAspect(std::int64_t iSrcWidth, std::int64_t iSrcHeight, std::int64_t& iWidth, std::int64_t& iHeight,
                std::int64_t& iX, std::int64_t& iY)
{
    if (iWidth * iSrcHeight <= iHeight * iSrcWidth)
    {
        const std::int64_t iFit = std::max<std::int64_t>(1, (iWidth * iSrcHeight + iSrcWidth / 2) / iSrcWidth);
        iY += (iHeight - iFit) / 2;
        iHeight = iFit;
    }
    else
    {
        const std::int64_t iFit = std::max<std::int64_t>(1, (iHeight * iSrcWidth + iSrcHeight / 2) / iSrcHeight);
        iX += (iWidth - iFit) / 2;
        iWidth = iFit;
    }
}

}  // namespace

Tov_Bool Kanvo_StretchAxis::Calc(const Request& k)
{
    if (k.iSrcLength < 1 || k.iDstLength < 1 || k.iSrc < -16384 || k.iSrc + k.iSrcLength > 32767 || k.iDst < -32768 ||
        k.iDst + k.iDstLength > 32767)
    {
        return false;
    }
    Ramp kRamp{0, 0};
    if (!k.bBilinear)
    {
        kRamp = NearestRamp(k.iSrcLength, k.iDstLength);
    }
    else if (k.iSrcLength > 1)
    {
        kRamp = BilinearRamp(k.iSrcLength, k.iDstLength);
    }
    else if (k.iSrc + 1 >= k.iBound)
    {
        kRamp.iStart =
            -1;  // no column to the right: all but all of the weight goes to the right one of the pair before
    }
    const std::int64_t iOrigin = k.iSrc * ONE + kRamp.iStart;
    const std::int64_t iLimit  = (k.bBilinear ? k.iBound - 1 : k.iBound) * ONE - 1;

    std::int64_t iFirst = std::max<std::int64_t>(0, k.iClipMin - k.iDst);
    std::int64_t iLast  = std::min(k.iDstLength - 1, k.iClipMax - k.iDst);
    if (kRamp.iStep > 0)
    {
        iFirst = std::max(iFirst, -FloorDiv(iOrigin, kRamp.iStep));
        iLast  = std::min(iLast, FloorDiv(iLimit - iOrigin, kRamp.iStep));
    }
    else if (iOrigin < 0 || iOrigin > iLimit)
    {
        return false;
    }
    if (iFirst > iLast)
    {
        return false;
    }
    fxSrcFirst = static_cast<Tov_Fixed>(iOrigin + iFirst * kRamp.iStep);
    fxStep     = iFirst < iLast ? static_cast<Tov_Fixed>(kRamp.iStep) : 0;
    iDstFirst  = static_cast<Tov_Int>(k.iDst + iFirst);
    iCount     = static_cast<Tov_Int>(iLast - iFirst + 1);
    return true;
}

Tov_Bool Kanvo_StretchBlitParam::Calc(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkAlpha,
                                      const Kanvo_Bitmap* pkDest, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight,
                                      Tov_Int iSrcX, Tov_Int iSrcY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight,
                                      Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags, Kanvo_StretchAxis& kX,
                                      Kanvo_StretchAxis& kY)
{
    std::int64_t iW = uiDstWidth;
    std::int64_t iH = uiDstHeight;
    std::int64_t iX = iDstX;
    std::int64_t iY = iDstY;
    if ((ulFlags & BLIT_ASPECT) != 0 && uiSrcWidth != 0 && uiSrcHeight != 0 && iW <= 65535 && iH <= 65535)
    {
        KeepAspect(uiSrcWidth, uiSrcHeight, iW, iH, iX, iY);
    }
    Tov_UInt uiBoundX = pkSrc->GetWidth();
    Tov_UInt uiBoundY = pkSrc->GetHeight();
    if (pkAlpha != nullptr)
    {
        uiBoundX = std::min(uiBoundX, pkAlpha->GetWidth());
        uiBoundY = std::min(uiBoundY, pkAlpha->GetHeight());
    }
    std::int64_t aiClip[4] = {pkDest->GetClipMinX(), pkDest->GetClipMinY(), pkDest->GetClipMaxX(),
                              pkDest->GetClipMaxY()};
    if ((ulFlags & BLIT_NOCLIP) != 0)
    {
        const Tov_Bool bInside = iX >= 0 && iY >= 0 && iX + iW <= pkDest->GetWidth() && iY + iH <= pkDest->GetHeight();
        TRAK_CHECK(bInside, "unclipped rectangle outside the bitmap");
        if (!bInside)
        {
            return false;
        }
        aiClip[0] = aiClip[1] = 0;
        aiClip[2]             = std::int64_t{pkDest->GetWidth()} - 1;
        aiClip[3]             = std::int64_t{pkDest->GetHeight()} - 1;
    }
    const Tov_Bool bBilinear = (ulFlags & BLIT_BILINEAR) != 0;
    return kX.Calc({iSrcX, uiSrcWidth, uiBoundX, iX, iW, aiClip[0], aiClip[2], bBilinear}) &&
           kY.Calc({iSrcY, uiSrcHeight, uiBoundY, iY, iH, aiClip[1], aiClip[3], bBilinear});
}

Tov_Bool Kanvo_StretchBlitParam::CalcParams(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkAlpha,
                                            const Kanvo_Bitmap* pkDest, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight,
                                            Tov_Int iSrcX, Tov_Int iSrcY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight,
                                            Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags, Tov_Int& src_left,
                                            Tov_Int& src_top, Tov_Int& src_right, Tov_Int& src_bottom,
                                            Tov_Int& dst_left, Tov_Int& dst_top, Tov_Int& dst_right,
                                            Tov_Int& dst_bottom, Tov_Int& dx, Tov_Int& dy, Tov_Int& iWidth,
                                            Tov_Int& iHeight)
{
    Kanvo_StretchAxis kX{};
    Kanvo_StretchAxis kY{};
    if (!Calc(pkSrc, pkAlpha, pkDest, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY, uiDstWidth, uiDstHeight, iDstX, iDstY,
              ulFlags, kX, kY))
    {
        return false;
    }
    src_left   = kX.fxSrcFirst;
    src_top    = kY.fxSrcFirst;
    dx         = kX.fxStep;
    dy         = kY.fxStep;
    iWidth     = kX.iCount;
    iHeight    = kY.iCount;
    src_right  = src_left + dx * (iWidth - 1);
    src_bottom = src_top + dy * (iHeight - 1);
    dst_left   = Tov_IntToFix(kX.iDstFirst);
    dst_top    = Tov_IntToFix(kY.iDstFirst);
    dst_right  = Tov_IntToFix(kX.iDstFirst + iWidth - 1);
    dst_bottom = Tov_IntToFix(kY.iDstFirst + iHeight - 1);
    return true;
}
