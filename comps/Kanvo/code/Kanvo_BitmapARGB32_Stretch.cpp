// Kanvo_BitmapARGB32_Stretch: the entries of the scaled blits. Check, choose by source format, flags, opacity and render
// state; Kanvo_StretchBlit and the loops of neonloops_stretch clip for themselves.
#include <algorithm>

#include "Kanvo_BitmapARGB32.h"
#include "Kanvo_BitmapARGB32_Entry.h"
#include "Kanvo_RLECompressedBlits.h"
#include "Kanvo_StretchBlit.h"
#include "neonloops.h"
#include "neonloops_stretch.h"

namespace
{

//! A scaled blit as it was asked for.
struct StretchRequest
{
    Kanvo_Bitmap* pkSource;
    Kanvo_Bitmap* pkDest;
    Tov_UInt      uiSrcWidth;
    Tov_UInt      uiSrcHeight;
    Tov_UInt      uiSrcX;
    Tov_UInt      uiSrcY;
    Tov_UInt      uiDstWidth;
    Tov_UInt      uiDstHeight;
    Tov_Int       iDstX;
    Tov_Int       iDstY;
    Tov_Flag      ulFlags;
    Tov_UByte     ubAlpha;

    Tov_Bool IsBilinear() const { return (ulFlags & BLIT_BILINEAR) != 0; }

    //! A worker: what all of them begin with, and what one takes beyond.
    template <class... Further>
    using Worker = void (*)(const Kanvo_Bitmap*, const Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_Int, Tov_Int, Tov_UInt,
                            Tov_UInt, Tov_Int, Tov_Int, Further...);

    template <class... Further>
    void Run(Worker<Further...> pfnWorker, Further... kFurther) const
    {
        pfnWorker(pkSource, pkDest, uiSrcWidth, uiSrcHeight, static_cast<Tov_Int>(uiSrcX), static_cast<Tov_Int>(uiSrcY),
                  uiDstWidth, uiDstHeight, iDstX, iDstY, kFurther...);
    }

    //! Calls a loop, on the source's first pixel and the clip rectangle's.
    template <class Src, class Loop, class... Further>
    void RunLoop(Loop pfnLoop, Further... kFurther) const
    {
        typename Src::Offset kSrc;
        Kanvo_OffsetARGB32   kDst;
        const Tov_UInt       uiClipX = pkDest->GetClipMinX();
        const Tov_UInt       uiClipY = pkDest->GetClipMinY();
        Src::GetOffset(pkSource, 0, 0, kSrc);
        Kanvo_PixelARGB32_Access::GetOffset(pkDest, uiClipX, uiClipY, kDst);
        pfnLoop(kDst, kSrc, pkDest->GetPitch(), pkSource->GetPitch(), Relative(iDstX, uiClipX),
                Relative(iDstY, uiClipY), uiDstWidth, uiDstHeight, uiSrcWidth, uiSrcHeight, uiSrcX & 0xFFFFU,
                uiSrcY & 0xFFFFU, pkDest->GetClipMaxX() - uiClipX + 1, pkDest->GetClipMaxY() - uiClipY + 1,
                kFurther...);
    }

    //! Whether the loops may have it: they do not know where the source bitmap ends, nor an empty clip rectangle, and
    //! count destinations from the clip rectangle on, which must not change what 16.16 can hold of them.
    Tov_Bool SuitsLoops() const
    {
        const Tov_UInt uiLeast = IsBilinear() ? 2 : 1;
        return pkDest->GetClipMinX() <= pkDest->GetClipMaxX() && uiSrcWidth >= uiLeast && uiSrcHeight >= uiLeast &&
               uiSrcX <= 0xFFFF && uiSrcY <= 0xFFFF &&
               Kanvo_IsInside(pkSource, uiSrcX, uiSrcY, uiSrcWidth, uiSrcHeight) &&
               HoldsBoth(iDstX, pkDest->GetClipMinX(), uiDstWidth) &&
               HoldsBoth(iDstY, pkDest->GetClipMinY(), uiDstHeight);
    }

private:
    //! Whether a destination is in the range of Kanvo_StretchAxis counted from the bitmap on and from the clip on.
    static Tov_Bool HoldsBoth(Tov_Int iPosition, Tov_UInt uiOrigin, Tov_UInt uiLength)
    {
        const std::int64_t iAbsolute = iPosition;
        return iAbsolute - uiOrigin >= -32768 && iAbsolute + uiLength <= 32767;
    }

    //! In range: see HoldsBoth.
    static Tov_Int Relative(Tov_Int iPosition, Tov_UInt uiOrigin)
    {
        return static_cast<Tov_Int>(std::int64_t{iPosition} - uiOrigin);
    }
};

Tov_Bool IsOptimised(const Kanvo_Bitmap* pkDest)
{
    return pkDest->GetState(OPTIMIZED_BLIT).uiValue == OB_NEON;
}

//! Flags for a call that the loops cannot take: they know only about filtering, so its stand-in may know no more.
Tov_Flag LoopFlags(const StretchRequest& kRequest)
{
    return kRequest.ulFlags & BLIT_BILINEAR;
}

//! What the plain RGB565 and A8 loops ask for before they run.
// KEPT: the test compares "the source has no pixels" with "the destination has alpha", so that no valid call passes it and
// the loops with global alpha always run. Test: StretchedRGB565AndMapsAlwaysTakeTheLoopsWithGlobalAlpha.
Tov_Bool WantsPlainLoop(const StretchRequest& kRequest)
{
    const int iNoSource = kRequest.pkSource->GetBuffer() == nullptr ? 1 : 0;
    const int iHasAlpha = kRequest.pkDest->HasAlpha() ? 1 : 0;
    return kRequest.ubAlpha == 255 && iNoSource > iHasAlpha;
}

//! A source of one pixel fills.
// KEPT: the fill starts at the clip rectangle's corner, not at the destination, is as large as the destination and not
// cut to the clip, and its colour has no alpha. Test: AStretchedSinglePixelFillsFromTheClipOrigin.
void FillSinglePixel(const StretchRequest& kRequest)
{
    using Access                     = Kanvo_PixelARGB32_Access;
    const Kanvo_Bitmap* const pkDest = kRequest.pkDest;
    const Tov_UInt            uiX    = pkDest->GetClipMinX();
    const Tov_UInt            uiY    = pkDest->GetClipMinY();
    if (uiX > pkDest->GetClipMaxX() || !Kanvo_IsInside(kRequest.pkSource, 0, 0, 1, 1))
    {
        return;
    }
    const Tov_UInt     uiWidth  = std::min(kRequest.uiDstWidth, pkDest->GetWidth() - uiX);  // the bitmap is the limit
    const Tov_UInt     uiHeight = std::min(kRequest.uiDstHeight, pkDest->GetHeight() - uiY);
    Kanvo_OffsetARGB32 kSrc;
    Kanvo_OffsetARGB32 kDst;
    Access::GetOffset(kRequest.pkSource, 0, 0, kSrc);
    Access::GetOffset(pkDest, uiX, uiY, kDst);
    const Kanvo_PixelARGB32 pxColor = Access::PixelFromColorARGB32(Access::PixelToColor(Access::GetPixel(kSrc)));
    if (kRequest.ubAlpha == 255)
    {
        neonloops_fill_argb32(kDst, pkDest->GetPitch(), pxColor, uiWidth, uiHeight);
    }
    else
    {
        neonloops_fill_argb32_ag(kDst, pkDest->GetPitch(), pxColor, uiWidth, uiHeight, kRequest.ubAlpha);
    }
}

void StretchARGB32Loops(const StretchRequest& kRequest)
{
    using Access                = Kanvo_PixelARGB32_Access;
    const Tov_Bool bSinglePixel = kRequest.uiSrcWidth <= 1 && kRequest.uiSrcHeight <= 1 &&
                                  (kRequest.ulFlags & (BLIT_COLORKEY | BLIT_BILINEAR)) == 0;
    if (bSinglePixel)
    {
        FillSinglePixel(kRequest);
    }
    else if (!kRequest.SuitsLoops())
    {
        kRequest.Run(&Kanvo_StretchToARGB32<Access>::StretchBlit_Int, LoopFlags(kRequest), kRequest.ubAlpha,
                     Kanvo_Color{0});
    }
    else if (kRequest.ubAlpha == 255)
    {
        kRequest.RunLoop<Access>(kRequest.IsBilinear() ? neonloops_stretchblit_bilinear_argb32_argb32_clip
                                                       : neonloops_stretchblit_nearest_argb32_argb32_clip);
    }
    else
    {
        kRequest.RunLoop<Access>(kRequest.IsBilinear() ? neonloops_stretchblit_bilinear_argb32_argb32_as_ag_clip
                                                       : neonloops_stretchblit_nearest_argb32_argb32_as_ag_clip,
                                 kRequest.ubAlpha);
    }
}

void StretchRGB565Loops(const StretchRequest& kRequest)
{
    using Access = Kanvo_PixelRGB565_Access;
    if (!kRequest.SuitsLoops())
    {
        kRequest.Run(&Kanvo_StretchToARGB32<Access>::StretchBlit_RGB, LoopFlags(kRequest), kRequest.ubAlpha,
                     Kanvo_Color{0});
    }
    else if (WantsPlainLoop(kRequest))
    {
        kRequest.RunLoop<Access>(kRequest.IsBilinear() ? neonloops_stretchblit_bilinear_argb32_rgb565_clip
                                                       : neonloops_stretchblit_nearest_argb32_rgb565_clip);
    }
    else
    {
        kRequest.RunLoop<Access>(kRequest.IsBilinear() ? neonloops_stretchblit_bilinear_argb32_rgb565_ag_clip
                                                       : neonloops_stretchblit_nearest_argb32_rgb565_ag_clip,
                                 kRequest.ubAlpha);
    }
}

void StretchColorA8Loops(const StretchRequest& kRequest, Kanvo_Color clColor)
{
    using Access = Kanvo_PixelA8_Access;
    if (!kRequest.SuitsLoops())
    {
        kRequest.Run(&Kanvo_StretchToARGB32<Access>::StretchBlit_IntCol, clColor, LoopFlags(kRequest),
                     kRequest.ubAlpha);
    }
    else if (WantsPlainLoop(kRequest))
    {
        kRequest.RunLoop<Access>(kRequest.IsBilinear() ? neonloops_stretchblitcolor_bilinear_argb32_a8_clip
                                                       : neonloops_stretchblitcolor_nearest_argb32_a8_clip,
                                 clColor);
    }
    else
    {
        kRequest.RunLoop<Access>(kRequest.IsBilinear() ? neonloops_stretchblitcolor_bilinear_argb32_a8_ag_clip
                                                       : neonloops_stretchblitcolor_nearest_argb32_a8_ag_clip,
                                 clColor, kRequest.ubAlpha);
    }
}

using RLEMagnifier = decltype(&Kanvo_RLECompressedBlits::BlitMag_ARGB32RLE8);

//! Stored images grow by whole factors only; flags and colour key do not concern them.
void StretchRLE(const StretchRequest& k, RLEMagnifier pfnMagnify)
{
    const Tov_Bool bDivisible = k.uiSrcWidth != 0 && k.uiSrcHeight != 0;
    TRAK_CHECK(bDivisible, "DIV by 0!");
    if (bDivisible)
    {
        pfnMagnify(k.pkSource, k.pkDest, k.uiSrcWidth, k.uiSrcHeight, k.uiSrcX, k.uiSrcY, k.iDstX, k.iDstY, k.ubAlpha,
                   static_cast<Tov_UShort>(k.uiDstWidth / k.uiSrcWidth),
                   static_cast<Tov_UShort>(k.uiDstHeight / k.uiSrcHeight));
    }
}

//! A source or map that can be read; one without pixels asserts.
Tov_Bool IsReadable(const Kanvo_Bitmap* pkBitmap)
{
    TRAK_CHECK(pkBitmap->GetBuffer() != nullptr, "bitmap has no buffer");
    return pkBitmap->GetBuffer() != nullptr;
}

}  // namespace

void Kanvo_BitmapARGB32::StretchBlit(Kanvo_Bitmap* pkSource, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight, Tov_UInt uiSrcX,
                                     Tov_UInt uiSrcY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX,
                                     Tov_Int iDstY, Tov_Flag ulFlags, Tov_UByte ubAlpha, Kanvo_Color cColorKey)
{
    const Tov_Bool bDraw = BeginDraw();
    TRAK_CHECK(pkSource != nullptr, "blit not supported");
    if (!bDraw || pkSource == nullptr || !IsReadable(pkSource))
    {
        return;
    }
    const StretchRequest kRequest{pkSource,   this,        uiSrcWidth, uiSrcHeight, uiSrcX,  uiSrcY,
                                  uiDstWidth, uiDstHeight, iDstX,      iDstY,       ulFlags, ubAlpha};
    switch (pkSource->GetType())
    {
    case BM_RGB32:
        kRequest.Run(&Kanvo_StretchToARGB32<Kanvo_PixelRGB32_Access>::StretchBlit_RGB, ulFlags, ubAlpha, cColorKey);
        break;

    case BM_RGB32RLE8: StretchRLE(kRequest, &Kanvo_RLECompressedBlits::BlitMag_ARGB32RLE8); break;

    case BM_RGB32RLE16: StretchRLE(kRequest, &Kanvo_RLECompressedBlits::BlitMag_ARGB32RLE16); break;

    case BM_ARGB32:
        // KEPT: the optimised path runs with BLIT_COLORKEY too, and ignores the key.
        // Test: TheOptimisedStretchIgnoresTheColourKey.
        if (IsOptimised(this))
        {
            StretchARGB32Loops(kRequest);
        }
        else
        {
            kRequest.Run(&Kanvo_StretchToARGB32<Kanvo_PixelARGB32_Access>::StretchBlit_Int, ulFlags, ubAlpha,
                         cColorKey);
        }
        break;

    case BM_ALPHA8:
        kRequest.Run(&Kanvo_StretchToARGB32<Kanvo_PixelA8_Access>::StretchBlit_RGB, ulFlags, ubAlpha, cColorKey);
        break;

    case BM_RGB565:
        if (IsOptimised(this))
        {
            StretchRGB565Loops(kRequest);
        }
        else
        {
            kRequest.Run(&Kanvo_StretchToARGB32<Kanvo_PixelRGB565_Access>::StretchBlit_RGB, ulFlags, ubAlpha,
                         cColorKey);
        }
        break;

    default: TRAK_CHECK(false, "blit not supported"); break;
    }
}

void Kanvo_BitmapARGB32::StretchBlitColor(Kanvo_Bitmap* pkAlpha, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight,
                                          Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight,
                                          Tov_Int iDstX, Tov_Int iDstY, Kanvo_Color clColor, Tov_Flag ulFlags,
                                          Tov_UByte ubAlpha)
{
    const Tov_Bool bDraw = BeginDraw();
    Kanvo_CheckAlphaMap(pkAlpha);
    if (!bDraw || pkAlpha == nullptr || !IsReadable(pkAlpha))
    {
        return;
    }
    const StretchRequest kRequest{pkAlpha,    this,        uiSrcWidth, uiSrcHeight, uiSrcX,  uiSrcY,
                                  uiDstWidth, uiDstHeight, iDstX,      iDstY,       ulFlags, ubAlpha};
    using Access = Kanvo_PixelARGB32_Access;
    switch (pkAlpha->GetType())
    {
    case BM_ARGB32: kRequest.Run(&Kanvo_StretchToARGB32<Access>::StretchBlit_IntCol, clColor, ulFlags, ubAlpha); break;

    case BM_ALPHA8:
        if (IsOptimised(this))
        {
            StretchColorA8Loops(kRequest,
                                ColorFromARGB(Access::AlphaFromPixel(clColor), Access::RedFromPixel(clColor),
                                              Access::GreenFromPixel(clColor), Access::BlueFromPixel(clColor)));
        }
        else
        {
            kRequest.Run(&Kanvo_StretchToARGB32<Kanvo_PixelA8_Access>::StretchBlit_IntCol, clColor, ulFlags, ubAlpha);
        }
        break;

    default: break;  // a map of type BM_ALPHA5_2 passes the check and draws nothing
    }
}

void Kanvo_BitmapARGB32::StretchBlit2Color(Kanvo_Bitmap* pkAlpha, Tov_UInt /*uiSrcWidth*/, Tov_UInt /*uiSrcHeight*/,
                                           Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_UInt /*uiDstWidth*/,
                                           Tov_UInt /*uiDstHeight*/, Tov_Int /*iDstX*/, Tov_Int /*iDstY*/,
                                           Kanvo_Color /*clCol1*/, Kanvo_Color /*clCol2*/, Tov_Flag /*ulFlags*/,
                                           Tov_UByte /*ubAlpha*/)
{
    BeginDraw();
    Kanvo_CheckTwoColorMap(pkAlpha);
}

void Kanvo_BitmapARGB32::StretchBlitAlpha(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkAlpha, Tov_UInt uiSrcWidth,
                                          Tov_UInt uiSrcHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_UInt uiDstWidth,
                                          Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags,
                                          Tov_UByte ubAlpha)
{
    using ARGB32 = Kanvo_PixelARGB32_Access;
    using A8     = Kanvo_PixelA8_Access;

    const Tov_Bool bDraw = BeginDraw();
    Kanvo_CheckAlphaMap(pkAlpha);
    const Tov_UInt uiType = pkSource != nullptr ? pkSource->GetType() : Tov_UInt{BM_UNKNWON};
    TRAK_CHECK(uiType == BM_ARGB32 || uiType == BM_ALPHA8, "blit not supported");
    if (!bDraw || pkAlpha == nullptr || (uiType != BM_ARGB32 && uiType != BM_ALPHA8) || !IsReadable(pkSource) ||
        !IsReadable(pkAlpha))
    {
        return;
    }
    const StretchRequest kRequest{pkSource,   this,        uiSrcWidth, uiSrcHeight, uiSrcX,  uiSrcY,
                                  uiDstWidth, uiDstHeight, iDstX,      iDstY,       ulFlags, ubAlpha};
    const auto           kRunThroughMap = [&](auto pfnWorker)
    {
        pfnWorker(pkSource, pkAlpha, this, uiSrcWidth, uiSrcHeight, static_cast<Tov_Int>(uiSrcX),
                  static_cast<Tov_Int>(uiSrcY), uiDstWidth, uiDstHeight, iDstX, iDstY, ulFlags, ubAlpha);
    };
    const Tov_UInt uiMap = pkAlpha->GetType();
    if (uiType == BM_ARGB32 && uiMap == BM_ARGB32 && IsOptimised(this))
    {
        // KEPT: the loops blend by the source's own alpha; the map is not passed.
        // Test: TheOptimisedStretchThroughAnARGB32MapIgnoresTheMap.
        if (kRequest.SuitsLoops())
        {
            kRequest.RunLoop<ARGB32>(kRequest.IsBilinear() ? neonloops_stretchblit_bilinear_argb32_argb32_as_ag_clip
                                                           : neonloops_stretchblit_nearest_argb32_argb32_as_ag_clip,
                                     ubAlpha);
        }
        else
        {
            Kanvo_StretchCall kCall{};
            if (kCall.Prepare(pkSource, this, uiSrcWidth, uiSrcHeight, static_cast<Tov_Int>(uiSrcX),
                              static_cast<Tov_Int>(uiSrcY), uiDstWidth, uiDstHeight, iDstX, iDstY, LoopFlags(kRequest)))
            {
                Kanvo_StretchBody<ARGB32, ARGB32>::Over(kCall, ubAlpha);
            }
        }
    }
    else if (uiType == BM_ARGB32 && uiMap == BM_ARGB32)
    {
        kRunThroughMap(&Kanvo_StretchAlphaToARGB32<ARGB32, ARGB32>::StretchBlit_IntAlpha);
    }
    else if (uiType == BM_ARGB32 && uiMap == BM_ALPHA8)
    {
        kRunThroughMap(&Kanvo_StretchAlphaToARGB32<ARGB32, A8>::StretchBlit_IntAlpha);
    }
    else if (uiType == BM_ALPHA8 && uiMap == BM_ARGB32)
    {
        kRunThroughMap(&Kanvo_StretchAlphaToARGB32<A8, ARGB32>::StretchBlit_RGBAlpha);
    }
    else if (uiType == BM_ALPHA8 && uiMap == BM_ALPHA8)
    {
        kRunThroughMap(&Kanvo_StretchAlphaToARGB32<A8, A8>::StretchBlit_RGBAlpha);
    }
}
