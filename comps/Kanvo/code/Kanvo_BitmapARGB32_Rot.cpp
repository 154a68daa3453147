// Kanvo_BitmapARGB32_Rot: the entries of the rotated blits. Check, choose by source format; Kanvo_RotBlit clips for itself.
// There is no optimised path.
#include "Kanvo_BitmapARGB32.h"
#include "Kanvo_BitmapARGB32_Entry.h"
#include "Kanvo_RotBlit.h"

namespace
{

using ARGB32 = Kanvo_PixelARGB32_Access;
using RGB32  = Kanvo_PixelRGB32_Access;
using RGB565 = Kanvo_PixelRGB565_Access;
using A8     = Kanvo_PixelA8_Access;

//! Whether a source or map has pixels, and the request some inside it: what lies beyond its edges is cut off.
Tov_Bool FitToBitmap(Kanvo_RotRequest& kRequest, const Kanvo_Bitmap* pkBitmap)
{
    TRAK_CHECK(pkBitmap->GetBuffer() != nullptr, "bitmap has no buffer");
    return pkBitmap->GetBuffer() != nullptr && kRequest.CutTo(pkBitmap);
}

//! Calls a worker of a source: after the bitmaps the request's numbers, then what the worker takes beyond.
template <class Worker, class... Further>
void Rotate(Worker pfnWorker, const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkDest, const Kanvo_RotRequest& k,
            Further... kFurther)
{
    pfnWorker(pkSource, pkDest, k.uiWidth, k.uiHeight, k.uiSrcX, k.uiSrcY, k.vDstX, k.vDstY, k.vAngle, k.ulFlags,
              k.vStretchX, k.vStretchY, k.vRotPosX, k.vRotPosY, kFurther...);
}

template <class Map>
void RotateColor(const Kanvo_Bitmap* pkAlpha, const Kanvo_Bitmap* pkDest, const Kanvo_RotRequest& k,
                 Kanvo_ColorARGB32 cCol, Tov_UByte ubAlpha)
{
    Kanvo_RotToARGB32<Map>::RotBlit_IntCol(pkAlpha, pkDest, k.uiWidth, k.uiHeight, k.uiSrcX, k.uiSrcY, k.vDstX, k.vDstY,
                                           cCol, k.vAngle, k.ulFlags, k.vStretchX, k.vStretchY, k.vRotPosX, k.vRotPosY,
                                           ubAlpha);
}

template <class Src>
void RotateByMap(const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkAlpha, const Kanvo_Bitmap* pkDest,
                 const Kanvo_RotRequest& k, Tov_UByte ubAlpha)
{
    const auto kThrough = [&](auto pfnWorker)
    {
        pfnWorker(pkSource, pkAlpha, pkDest, k.uiWidth, k.uiHeight, k.uiSrcX, k.uiSrcY, k.vDstX, k.vDstY, k.vAngle,
                  k.ulFlags, k.vStretchX, k.vStretchY, k.vRotPosX, k.vRotPosY, ubAlpha);
    };
    if (pkAlpha->GetType() == BM_ARGB32)
    {
        kThrough(&Kanvo_RotAlphaToARGB32<Src, ARGB32>::RotBlit_IntAlpha);
    }
    else if (pkAlpha->GetType() == BM_ALPHA8)
    {
        kThrough(&Kanvo_RotAlphaToARGB32<Src, A8>::RotBlit_IntAlpha);
    }
}

}  // namespace

void Kanvo_BitmapARGB32::RotBlit(Kanvo_Bitmap* pkSource, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX,
                                 Tov_UInt uiSrcY, Tov_Value vDstX, Tov_Value vDstY, Tov_Value vAngle, Tov_Flag ulFlags,
                                 Tov_Value vStretchX, Tov_Value vStretchY, Tov_Value vRotPosX, Tov_Value vRotPosY,
                                 Tov_UByte ubAlpha, Kanvo_Color cColorKey)
{
    const Tov_Bool   bDraw  = BeginDraw();
    const Tov_UInt   uiType = pkSource != nullptr ? pkSource->GetType() : Tov_UInt{BM_UNKNWON};
    const Tov_Bool   bKnown = uiType == BM_ARGB32 || uiType == BM_ALPHA8 || uiType == BM_RGB32;
    Kanvo_RotRequest kRequest{uiWidth, uiHeight, uiSrcX,    uiSrcY,    vDstX,    vDstY,
                              vAngle,  ulFlags,  vStretchX, vStretchY, vRotPosX, vRotPosY};
    TRAK_CHECK(bKnown, "blit not supported");
    if (!bDraw || !bKnown || !FitToBitmap(kRequest, pkSource))
    {
        return;
    }
    switch (uiType)
    {
    case BM_ARGB32: Rotate(&Kanvo_RotToARGB32<ARGB32>::RotBlit_RGB, pkSource, this, kRequest, ubAlpha); break;

    case BM_ALPHA8: Rotate(&Kanvo_RotToARGB32<A8>::RotBlit_RGB, pkSource, this, kRequest, ubAlpha); break;

    default:
        if ((ulFlags & BLIT_COLORKEY) != 0)
        {
            Rotate(&Kanvo_RotToARGB32<RGB32>::RotBlit_Int_CK, pkSource, this, kRequest, ubAlpha, cColorKey);
        }
        else
        {
            Rotate(&Kanvo_RotToARGB32<RGB32>::RotBlit_Int, pkSource, this, kRequest, ubAlpha);
        }
        break;
    }
}

void Kanvo_BitmapARGB32::RotBlitColor(Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX,
                                      Tov_UInt uiSrcY, Tov_Value vDstX, Tov_Value vDstY, Kanvo_ColorARGB32 cCol,
                                      Tov_Value vAngle, Tov_Flag ulFlags, Tov_Value vStretchX, Tov_Value vStretchY,
                                      Tov_Value vRotPosX, Tov_Value vRotPosY, Tov_UByte ubAlpha)
{
    const Tov_Bool   bDraw = BeginDraw();
    Kanvo_RotRequest kRequest{uiWidth, uiHeight, uiSrcX,    uiSrcY,    vDstX,    vDstY,
                              vAngle,  ulFlags,  vStretchX, vStretchY, vRotPosX, vRotPosY};
    Kanvo_CheckAlphaMap(pkAlpha);
    if (!bDraw || pkAlpha == nullptr || !FitToBitmap(kRequest, pkAlpha))
    {
        return;
    }
    if (pkAlpha->GetType() == BM_ARGB32)
    {
        RotateColor<ARGB32>(pkAlpha, this, kRequest, cCol, ubAlpha);
    }
    else if (pkAlpha->GetType() == BM_ALPHA8)
    {
        RotateColor<A8>(pkAlpha, this, kRequest, cCol, ubAlpha);
    }
}

void Kanvo_BitmapARGB32::RotBlit2Color(Kanvo_Bitmap* pkAlpha, Tov_UInt /*uiWidth*/, Tov_UInt /*uiHeight*/,
                                       Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_Value /*vDstX*/,
                                       Tov_Value /*vDstY*/, Kanvo_ColorARGB32 /*cCol1*/, Kanvo_ColorARGB32 /*cCol2*/,
                                       Tov_Value /*vAngle*/, Tov_Flag /*ulFlags*/, Tov_Value /*vStretchX*/,
                                       Tov_Value /*vStretchY*/, Tov_Value /*vRotPosX*/, Tov_Value /*vRotPosY*/,
                                       Tov_UByte /*ubAlpha*/)
{
    BeginDraw();
    Kanvo_CheckTwoColorMap(pkAlpha);
}

void Kanvo_BitmapARGB32::RotBlitAlpha(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth,
                                      Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Value vDstX,
                                      Tov_Value vDstY, Tov_Value vAngle, Tov_Flag ulFlags, Tov_Value vStretchX,
                                      Tov_Value vStretchY, Tov_Value vRotPosX, Tov_Value vRotPosY, Tov_UByte ubAlpha)
{
    const Tov_Bool bDraw = BeginDraw();
    Kanvo_CheckAlphaMap(pkAlpha);
    const Tov_UInt   uiType = pkSource != nullptr ? pkSource->GetType() : Tov_UInt{BM_UNKNWON};
    const Tov_Bool   bKnown = uiType == BM_ARGB32 || uiType == BM_RGB565 || uiType == BM_ALPHA8;
    Kanvo_RotRequest kRequest{uiWidth, uiHeight, uiSrcX,    uiSrcY,    vDstX,    vDstY,
                              vAngle,  ulFlags,  vStretchX, vStretchY, vRotPosX, vRotPosY};
    TRAK_CHECK(bKnown, "blit not supported");
    if (!bDraw || !bKnown || pkAlpha == nullptr || !FitToBitmap(kRequest, pkSource) || !FitToBitmap(kRequest, pkAlpha))
    {
        return;
    }
    switch (uiType)
    {
    case BM_ARGB32: RotateByMap<RGB32>(pkSource, pkAlpha, this, kRequest, ubAlpha); break;  // read as RGB32

    case BM_RGB565: RotateByMap<RGB565>(pkSource, pkAlpha, this, kRequest, ubAlpha); break;

    default: RotateByMap<A8>(pkSource, pkAlpha, this, kRequest, ubAlpha); break;
    }
}
