// Kanvo_Polydraw: the entry, the choice of renderer and of write-back, and the sinks that turn spans into pixels. One
// instance, for ARGB32.
#include "Kanvo_Polydraw.h"

#include <algorithm>

#include "Kanvo_Clipper.h"
#include "Kanvo_HSpanRender.h"
#include "Kanvo_PolydrawAA.h"
#include "Kanvo_PolyExtrude.h"
#include "Kanvo_PolyScan.h"
#include "Kanvo_Screen.h"
#include "Trak_Assert.h"
#include "Trak_Counters.h"

namespace
{

constexpr Tov_UInt  MAX_PIXEL = 32766;     // the last pixel whose far edge 16.16 can name
constexpr Tov_Value MAX_COORD = 32767.0F;  // of an outline that is not clipped

Tov_Value Bound(Tov_UInt uiPixel)
{
    return static_cast<Tov_Value>(std::min(uiPixel, MAX_PIXEL + 1));
}

//! Whether an outline that is not clipped stays where 16.16 reaches. Not a number is nowhere.
Tov_Bool IsInReach(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch)
{
    for (Tov_UInt uiIndex = 0; uiIndex < uiCount; ++uiIndex)
    {
        const Kanvo_Coord2D kVertex = Kanvo_ReadVertex(pvValues, uiPitch, uiIndex);
        if (!(kVertex.x >= -MAX_COORD && kVertex.x <= MAX_COORD && kVertex.y >= -MAX_COORD && kVertex.y <= MAX_COORD))
        {
            return false;
        }
    }
    return true;
}

//! Kanvo_BlendRunSrcAlpha, to be called: the other spans shall not pay for the registers that it takes.
template <class Access>
__attribute__((noinline)) void BlendSpan(typename Access::Offset kOffset, typename Access::Pixel pxColor,
                                         Tov_Int iCount, Tov_UByte ubAlpha)
{
    Kanvo_BlendRunSrcAlpha<Access>(kOffset, pxColor, iCount, ubAlpha);
}

//! A texture's mask for coordinates in 16.16.
Tov_UInt FixedMask(Tov_UInt uiMask)
{
    return (uiMask << 16) | 0xFFFFU;
}

}  // namespace

// ---- entry ----------------------------------------------------------------------------------------------------------

template <class PixelType, class OffsetType, class Access>
void Kanvo_Polydraw<PixelType, OffsetType, Access>::DrawPolygon(Kanvo_Bitmap* pkBitmap, const void* pvValues,
                                                                Tov_UInt uiCount, Tov_UInt uiPitch, Tov_Flag ulFlags,
                                                                Kanvo_Color kColor)
{
    const Trak_PerfScope kScope(g_kPerf_Polygons);
    TRAK_CHECK(pvValues != nullptr || uiCount == 0, "polygon has no vertices");
    if (pvValues == nullptr)
    {
        return;
    }
    Tov_UByte ubAlpha   = 255;
    Tov_Bool  bTextured = false;
    if ((ulFlags & POLY_USE_RENDERSTATE) != 0 && pkBitmap->GetScreen() != nullptr)
    {
        const Kanvo_RenderState& kState = pkBitmap->GetScreen()->GetRenderState();
        bTextured                       = kState.GetBool(TEXTUREENABLE);
        if (kState.GetBool(ALPHAENABLE))
        {
            ubAlpha = static_cast<Tov_UByte>(kState.GetUInt(ALPHA));
        }
    }
    if ((ulFlags & POLY_EXTRUDE) != 0)
    {
        Kanvo_Extrude_Polygon(const_cast<void*>(pvValues), uiPitch, uiCount, ulFlags & (POLY_HINT_CW | POLY_HINT_CCW));
    }
    if ((ulFlags & POLY_NOCLIP) != 0)
    {
        if (uiCount >= 3 && IsInReach(pvValues, uiCount, uiPitch))
        {
            Render(pkBitmap, pvValues, uiCount, uiPitch, ulFlags, kColor, ubAlpha, bTextured);
        }
        return;
    }
    Kanvo_Clipper::InitRegion(Bound(pkBitmap->GetClipMinX()), Bound(pkBitmap->GetClipMinY()),
                              Bound(pkBitmap->GetClipMaxX() + 1), Bound(pkBitmap->GetClipMaxY() + 1), 0.0001F);
    const Kanvo_Coord2D* const pkClipped = Kanvo_Clipper::ClipPolygon(pvValues, uiCount, uiPitch, uiCount);
    if (uiCount != 0)
    {
        Render(pkBitmap, pkClipped, uiCount, sizeof(Kanvo_Coord2D), ulFlags, kColor, ubAlpha, bTextured);
    }
}

template <class PixelType, class OffsetType, class Access>
void Kanvo_Polydraw<PixelType, OffsetType, Access>::Render(Kanvo_Bitmap* pkBitmap, const void* pvValues,
                                                           Tov_UInt uiCount, Tov_UInt uiPitch, Tov_Flag ulFlags,
                                                           Kanvo_Color kColor, Tov_UByte ubAlpha, Tov_Bool bTextured)
{
    const PixelType pxColor = Access::ColorToPixel(kColor);
    // KEPT: a textured polygon is never anti-aliased, whatever the flags say. Test:
    // TexturingComesBeforeAntialiasing.
    if (bTextured)
    {
        renderTextured(pkBitmap, pvValues, uiCount, uiPitch, pxColor);
    }
    else if ((ulFlags & POLY_ANTIALIAS) != 0)
    {
        renderPlainAA(pkBitmap, pvValues, uiCount, uiPitch, pxColor, ubAlpha);
    }
    else
    {
        renderPlain(pkBitmap, pvValues, uiCount, uiPitch, pxColor, ubAlpha);
    }
}

template <class PixelType, class OffsetType, class Access>
void Kanvo_Polydraw<PixelType, OffsetType, Access>::renderPlain(Kanvo_Bitmap* pkBitmap, const void* pvValues,
                                                                Tov_UInt uiCount, Tov_UInt uiPitch, PixelType pxColor,
                                                                Tov_UByte ubAlpha)
{
    Kanvo_Polydraw_NoAA<PixelType, OffsetType, Access>::Polygon(pkBitmap, pvValues, uiCount, uiPitch, pxColor, ubAlpha);
}

template <class PixelType, class OffsetType, class Access>
void Kanvo_Polydraw<PixelType, OffsetType, Access>::renderPlainAA(Kanvo_Bitmap* pkBitmap, const void* pvValues,
                                                                  Tov_UInt uiCount, Tov_UInt uiPitch, PixelType pxColor,
                                                                  Tov_UByte ubAlpha)
{
    Kanvo_Polydraw_AA<PixelType, OffsetType, Access>::Polygon(pkBitmap, pvValues, uiCount, uiPitch, pxColor, ubAlpha);
}

template <class PixelType, class OffsetType, class Access>
void Kanvo_Polydraw<PixelType, OffsetType, Access>::renderTextured(Kanvo_Bitmap* pkBitmap, const void* pvValues,
                                                                   Tov_UInt uiCount, Tov_UInt uiPitch,
                                                                   PixelType pxColor)
{
    const Kanvo_RenderState& kState    = pkBitmap->GetScreen()->GetRenderState();  // it is what asked for a texture
    auto* const              pkTexture = static_cast<Kanvo_Texture*>(kState.GetPtr(TEXTURE));
    TRAK_CHECK(pkTexture != nullptr, "no texture set");
    if (pkTexture == nullptr)
    {
        return;
    }
    TRAK_CHECK(pkTexture->GetBitmap() != nullptr, "texture has no bitmap");
    Kanvo_Polygon_TextureFrame kFrame;
    Tov_Bool                   bPerspective = false;
    if (pkTexture->GetBitmap() == nullptr || !Kanvo_MakeTextureFrame(kState, kFrame, bPerspective))
    {
        return;
    }
    const auto kDraw = [&](auto kWriteback, Tov_UInt uiData)
    {
        Kanvo_Polydraw_Tex_NoAA<PixelType, OffsetType, Access, decltype(kWriteback)>::Polygon(
            pkBitmap, pvValues, uiCount, uiPitch, pkTexture, kFrame, bPerspective, Kanvo_Polydraw_data{uiData});
    };
    // The table of docs/TEXTURES.md.
    const Tov_UInt uiBlending = kState.GetUInt(TEXTUREBLENDING);
    const Tov_Bool bAlpha     = kState.GetBool(ALPHAENABLE);
    const Tov_UInt uiAlpha    = kState.GetUInt(ALPHA) & 0xFFU;
    if (pkTexture->GetType() == BM_ALPHA8)
    {
        if (uiBlending != TB_NORMAL && uiBlending != TB_COLOR)
        {
            TRAK_CHECK(false, "texture blending not supported");
        }
        else if (bAlpha)
        {
            const Tov_UInt uiOpacity = Kanvo_MulByte(Access::AlphaFromPixel(pxColor), uiAlpha);
            kDraw(Kanvo_WritebackTex_ColorAlpha(), (pxColor & 0x00FFFFFFU) | (uiOpacity << 24));
        }
        else
        {
            kDraw(Kanvo_WritebackTex_Color(), pxColor);
        }
        return;
    }
    switch (uiBlending)
    {
    case TB_NORMAL:
        if (bAlpha)
        {
            kDraw(Kanvo_WritebackTex_Alpha(), uiAlpha);
        }
        else
        {
            kDraw(Kanvo_WritebackTex_Default(), 0);
        }
        break;
    case TB_ADD: kDraw(Kanvo_WritebackTex_Additive(), 0); break;
    default: TRAK_CHECK(false, "texture blending not supported");
    }
}

// ---- plain ----------------------------------------------------------------------------------------------------------

template <class PixelType, class OffsetType, class Access>
void Kanvo_Polydraw_NoAA<PixelType, OffsetType, Access>::Polygon(Kanvo_Bitmap* pkBitmap, const void* pvValues,
                                                                 Tov_UInt uiCount, Tov_UInt uiPitch, PixelType pxColor,
                                                                 Tov_UByte ubAlpha)
{
    // Values, which writing pixels cannot change: there are more spans than there is to be done for one.
    const Kanvo_PixelView kView{pkBitmap->GetBuffer(), pkBitmap->GetPitch()};
    const auto            iLastX   = static_cast<Tov_Int>(std::min(pkBitmap->GetWidth(), MAX_PIXEL + 1)) - 1;
    const Tov_UInt        uiHeight = pkBitmap->GetHeight();
    Kanvo_PolyScan::Walk(pvValues, uiCount, uiPitch,
                         [=](Tov_Int iRow, Tov_Fixed fxStart, Tov_Fixed fxEnd)
                         {
                             const Tov_Int iFirst = std::max(fxStart >> 16, Tov_Int{0});
                             const Tov_Int iCount = std::min(fxEnd >> 16, iLastX) - iFirst + 1;
                             if (static_cast<Tov_UInt>(iRow) >= uiHeight || iCount <= 0)
                             {
                                 return;
                             }
                             const OffsetType kOffset = Kanvo_AxisH<Access>::At(kView, iRow, iFirst);
                             if (ubAlpha == 255)
                             {
                                 Kanvo_PutRun<Access>(kOffset, pxColor, iCount);
                             }
                             else
                             {
                                 BlendSpan<Access>(kOffset, pxColor, iCount, ubAlpha);
                             }
                         });
}

// ---- textured -------------------------------------------------------------------------------------------------------

template <class PixelType, class OffsetType, class Access, class Writeback>
void Kanvo_Polydraw_Tex_NoAA<PixelType, OffsetType, Access, Writeback>::Polygon(
    Kanvo_Bitmap* pBitmap, const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch, Kanvo_Texture* pkTexture,
    const Kanvo_Polygon_TextureFrame& kFrame, bool bPerspective, const Kanvo_Polydraw_data& rData)
{
    using Spans             = Kanvo_HSpanRenderTex<Access, Writeback>;
    const auto     rTexture = static_cast<typename Spans::Texture>(pkTexture->GetBitmap()->GetBuffer());
    const Tov_UInt uiN      = pkTexture->GetPitchShift();
    const Tov_UInt uiMaskX  = FixedMask(pkTexture->GetWidthMask());
    const Tov_UInt uiMaskY  = FixedMask(pkTexture->GetHeightMask());
    Kanvo_PolyScan::Walk(pvValues, uiCount, uiPitch,
                         [&](Tov_Int iRow, Tov_Fixed fxStart, Tov_Fixed fxEnd)
                         {
                             const Tov_Fixed fxRow = Tov_IntToFix(iRow);
                             if (bPerspective)
                             {
                                 const auto& kF   = kFrame.kFloating;
                                 const auto  vRow = static_cast<Tov_Float>(iRow);
                                 Spans::RenderSpanSubdivision(pBitmap, fxRow, fxStart, fxEnd, rTexture,
                                                              kF.m_fU0 + vRow * kF.m_fUY, kF.m_fV0 + vRow * kF.m_fVY,
                                                              kF.m_fZ0 + vRow * kF.m_fZY, kF.m_fUX, kF.m_fVX, kF.m_fZX,
                                                              uiN, uiMaskX, uiMaskY, rData);
                             }
                             else
                             {
                                 const auto& kF = kFrame.kFixed;
                                 Spans::RenderSpan(pBitmap, fxRow, fxStart, fxEnd, rTexture,
                                                   Tov_FixAdd(kF.m_fxU0, Tov_FixMul(fxRow, kF.m_fxUY)),
                                                   Tov_FixAdd(kF.m_fxV0, Tov_FixMul(fxRow, kF.m_fxVY)), kF.m_fxUX,
                                                   kF.m_fxVX, uiN, uiMaskX, uiMaskY, rData);
                             }
                         });
}

#define KANVO_FOR_ARGB32 Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access

template class Kanvo_Polydraw<KANVO_FOR_ARGB32>;
template class Kanvo_Polydraw_NoAA<KANVO_FOR_ARGB32>;
template class Kanvo_Polydraw_Tex_NoAA<KANVO_FOR_ARGB32, Kanvo_WritebackTex_Default>;
template class Kanvo_Polydraw_Tex_NoAA<KANVO_FOR_ARGB32, Kanvo_WritebackTex_Alpha>;
template class Kanvo_Polydraw_Tex_NoAA<KANVO_FOR_ARGB32, Kanvo_WritebackTex_Additive>;
template class Kanvo_Polydraw_Tex_NoAA<KANVO_FOR_ARGB32, Kanvo_WritebackTex_Color>;
template class Kanvo_Polydraw_Tex_NoAA<KANVO_FOR_ARGB32, Kanvo_WritebackTex_ColorAlpha>;
