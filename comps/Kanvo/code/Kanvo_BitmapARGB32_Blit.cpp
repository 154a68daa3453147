// Kanvo_BitmapARGB32_Blit: the entries of the unscaled blits. Check, clip, choose by source format, flags, opacity and
// render state; the pixels are Kanvo_Blit's and neonloops' business.
#include "Kanvo_BitmapARGB32.h"
#include "Kanvo_BitmapARGB32_Entry.h"
#include "Kanvo_Blit.h"
#include "neonloops.h"

namespace
{

//! The first pixels of a clipped blit, for the loops that take plain pointers.
template <class Src>
struct LoopEnds
{
    typename Src::Offset kSrc;
    Kanvo_OffsetARGB32   kDst;
    Tov_UInt             uiDstPitch;
    Tov_UInt             uiSrcPitch;

    LoopEnds(const Kanvo_Bitmap* pkDest, const Kanvo_Bitmap* pkSource, const Kanvo_BlitRect& kRect)
        : uiDstPitch(pkDest->GetPitch()),
          uiSrcPitch(pkSource->GetPitch())
    {
        Src::GetOffset(pkSource, kRect.uiSrcX, kRect.uiSrcY, kSrc);
        Kanvo_PixelARGB32_Access::GetOffset(pkDest, kRect.uiDstX, kRect.uiDstY, kDst);
    }
};

void LoopARGB32(const Kanvo_Bitmap* pkDest, const Kanvo_Bitmap* pkSource, const Kanvo_BlitRect& kRect, Tov_Bool bCopy,
                Tov_UByte ubAlpha)
{
    const LoopEnds<Kanvo_PixelARGB32_Access> kEnds(pkDest, pkSource, kRect);
    if (bCopy)
    {
        neonloops_blit_argb32_argb32(kEnds.kDst, kEnds.kSrc, kEnds.uiDstPitch, kEnds.uiSrcPitch, kRect.uiWidth,
                                     kRect.uiHeight);
    }
    else
    {
        neonloops_blit_argb32_argb32_as_ag(kEnds.kDst, kEnds.kSrc, kEnds.uiDstPitch, kEnds.uiSrcPitch, kRect.uiWidth,
                                           kRect.uiHeight, ubAlpha);
    }
}

void LoopRGB565(const Kanvo_Bitmap* pkDest, const Kanvo_Bitmap* pkSource, const Kanvo_BlitRect& kRect,
                Tov_UByte ubAlpha)
{
    const LoopEnds<Kanvo_PixelRGB565_Access> kEnds(pkDest, pkSource, kRect);
    if (Kanvo_IsOpaquePlain(pkSource, ubAlpha))
    {
        neonloops_blit_argb32_rgb565(kEnds.kDst, kEnds.kSrc, kEnds.uiDstPitch, kEnds.uiSrcPitch, kRect.uiWidth,
                                     kRect.uiHeight);
    }
    else
    {
        neonloops_blit_argb32_rgb565_ag(kEnds.kDst, kEnds.kSrc, kEnds.uiDstPitch, kEnds.uiSrcPitch, kRect.uiWidth,
                                        kRect.uiHeight, ubAlpha);
    }
}

void LoopColorA8(const Kanvo_Bitmap* pkDest, const Kanvo_Bitmap* pkAlpha, const Kanvo_BlitRect& kRect,
                 Kanvo_ColorARGB32 clColor, Tov_UByte ubAlpha)
{
    const LoopEnds<Kanvo_PixelA8_Access> kEnds(pkDest, pkAlpha, kRect);
    if (Kanvo_IsOpaquePlain(pkAlpha, ubAlpha))
    {
        neonloops_blitcolor_argb32_a8(kEnds.kDst, kEnds.kSrc, kEnds.uiDstPitch, kEnds.uiSrcPitch, clColor,
                                      kRect.uiWidth, kRect.uiHeight);
    }
    else
    {
        neonloops_blitcolor_argb32_a8_ag(kEnds.kDst, kEnds.kSrc, kEnds.uiDstPitch, kEnds.uiSrcPitch, clColor,
                                         kRect.uiWidth, kRect.uiHeight, ubAlpha);
    }
}

}  // namespace

void Kanvo_BitmapARGB32::Blit(Kanvo_Bitmap* pkSource, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX,
                              Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags, Tov_UByte ubAlpha,
                              Kanvo_Color cColorKey)
{
    const Tov_Bool bDraw = BeginDraw();
    TRAK_CHECK(pkSource != nullptr, "blit not supported");
    if (!bDraw || pkSource == nullptr ||
        !Kanvo_PrepareBlit(this, pkSource, ulFlags, uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY))
    {
        return;
    }
    const auto           uiDstX = static_cast<Tov_UInt>(iDstX);
    const auto           uiDstY = static_cast<Tov_UInt>(iDstY);
    const Kanvo_BlitRect kRect{uiWidth, uiHeight, uiSrcX, uiSrcY, uiDstX, uiDstY};
    const Tov_Bool       bNeon = Kanvo_NeonAllowed(this, ulFlags);
    switch (pkSource->GetType())
    {
    case BM_RGB32:
        Kanvo_BlitRGB32::Blit_RGB(pkSource, this, m_pBuffer, uiWidth, uiHeight, uiSrcX, uiSrcY, uiDstX, uiDstY, ulFlags,
                                  ubAlpha, cColorKey);
        break;

    case BM_RGB32RLE8:
    case BM_RGB32RLE16: TRAK_CHECK(false, "not implemented yet"); break;

    case BM_ARGB32:
    {
        const Tov_Bool bPlainCopy = ulFlags == 0 && ubAlpha == 255;
        if (bNeon)
        {
            // KEPT: at full opacity an ARGB32 source is copied with flags 0 and blended with any other flag, where
            // the portable path copies. Test: UnclippedBlitOfATranslucentSourceIsBlendedByTheLoopAndCopiedPortably.
            LoopARGB32(this, pkSource, kRect, bPlainCopy || Kanvo_IsOpaquePlain(pkSource, ubAlpha), ubAlpha);
        }
        else if (bPlainCopy)
        {
            Kanvo_BlitARGB32::Blit_Cpy(pkSource, this, m_pBuffer, uiWidth, uiHeight, uiSrcX, uiSrcY, uiDstX, uiDstY,
                                       sizeof(Kanvo_PixelARGB32));
        }
        else
        {
            Kanvo_BlitARGB32::Blit_Int(pkSource, this, m_pBuffer, uiWidth, uiHeight, uiSrcX, uiSrcY, uiDstX, uiDstY,
                                       ulFlags, ubAlpha, cColorKey);
        }
        break;
    }

    case BM_ALPHA8:
        Kanvo_BlitA8::Blit_RGB(pkSource, this, m_pBuffer, uiWidth, uiHeight, uiSrcX, uiSrcY, uiDstX, uiDstY, ulFlags,
                               ubAlpha, cColorKey);
        break;

    case BM_RGB565:
        if (bNeon)
        {
            LoopRGB565(this, pkSource, kRect, ubAlpha);
        }
        else
        {
            Kanvo_BlitRGB565::Blit_RGB(pkSource, this, m_pBuffer, uiWidth, uiHeight, uiSrcX, uiSrcY, uiDstX, uiDstY,
                                       ulFlags, ubAlpha, cColorKey);
        }
        break;

    default: TRAK_CHECK(false, "blit not supported"); break;
    }
}

void Kanvo_BitmapARGB32::BlitColor(Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX,
                                   Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY, Kanvo_ColorARGB32 clCol,
                                   Tov_Flag ulFlags, Tov_UByte ubAlpha)
{
    const Tov_Bool bDraw = BeginDraw();
    Kanvo_CheckAlphaMap(pkAlpha);
    if (!bDraw || pkAlpha == nullptr ||
        !Kanvo_PrepareBlit(this, pkAlpha, ulFlags, uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY))
    {
        return;
    }
    const auto uiDstX = static_cast<Tov_UInt>(iDstX);
    const auto uiDstY = static_cast<Tov_UInt>(iDstY);
    switch (pkAlpha->GetType())
    {
    case BM_ARGB32:
        Kanvo_BlitARGB32::Blit_ColorInt(pkAlpha, this, m_pBuffer, uiWidth, uiHeight, uiSrcX, uiSrcY, uiDstX, uiDstY,
                                        clCol, ubAlpha);
        break;

    case BM_ALPHA8:
        if (Kanvo_NeonAllowed(this, ulFlags))
        {
            using Access              = Kanvo_PixelARGB32_Access;
            const Kanvo_Color clInOwn = ColorFromARGB(Access::AlphaFromPixel(clCol), Access::RedFromPixel(clCol),
                                                      Access::GreenFromPixel(clCol), Access::BlueFromPixel(clCol));
            LoopColorA8(this, pkAlpha, {uiWidth, uiHeight, uiSrcX, uiSrcY, uiDstX, uiDstY}, clInOwn, ubAlpha);
        }
        else
        {
            Kanvo_BlitA8::Blit_ColorInt(pkAlpha, this, m_pBuffer, uiWidth, uiHeight, uiSrcX, uiSrcY, uiDstX, uiDstY,
                                        clCol, ubAlpha);
        }
        break;

    default:
        // KEPT: a map of type BM_ALPHA5_2 passes the check and draws nothing. Test: BlitColorOfAnAlpha52MapDrawsNothing.
        break;
    }
}

void Kanvo_BitmapARGB32::Blit2Color(Kanvo_Bitmap* pkAlpha, Tov_UInt /*uiWidth*/, Tov_UInt /*uiHeight*/,
                                    Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_Int /*iDstX*/, Tov_Int /*iDstY*/,
                                    Kanvo_ColorARGB32 /*clCol1*/, Kanvo_ColorARGB32 /*clCol2*/, Tov_Flag /*ulFlags*/,
                                    Tov_UByte /*ubAlpha*/)
{
    // Clipping would change nothing that anybody sees.
    BeginDraw();
    Kanvo_CheckAlphaMap(pkAlpha);
}
