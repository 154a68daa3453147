// Kanvo_BitmapARGB32_Blit: the entries of the unscaled blits. Check, clip, choose by source format, flags, opacity and
// render state; the pixels are Kanvo_Blit's and neonloops' business.
#include "Kanvo_BitmapARGB32.h"
#include "Kanvo_BitmapARGB32_Entry.h"
#include "Kanvo_Blit.h"
#include "Kanvo_RLECompressedBlits.h"
#include "neonloops.h"

namespace
{

void LoopARGB32(const Kanvo_Bitmap* pkDest, const Kanvo_Bitmap* pkSource, const Kanvo_BlitRect& kRect, Tov_Bool bCopy,
                Tov_UByte ubAlpha)
{
    const Kanvo_BlitEnds<Kanvo_PixelARGB32_Access> kEnds(pkDest, pkSource, kRect);
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
    const Kanvo_BlitEnds<Kanvo_PixelRGB565_Access> kEnds(pkDest, pkSource, kRect);
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
    const Kanvo_BlitEnds<Kanvo_PixelA8_Access> kEnds(pkDest, pkAlpha, kRect);
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

//! The eight arguments that the loops through an A8 map begin with.
struct MapLoopEnds : Kanvo_BlitEnds<Kanvo_PixelRGB565_Access>
{
    Kanvo_OffsetA8 kMap;
    Tov_UInt       uiMapPitch;

    MapLoopEnds(const Kanvo_Bitmap* pkDest, const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkAlpha,
                const Kanvo_BlitRect& kRect)
        : Kanvo_BlitEnds(pkDest, pkSource, kRect),
          uiMapPitch(pkAlpha->GetPitch())
    {
        Kanvo_PixelA8_Access::GetOffset(pkAlpha, kRect.uiSrcX, kRect.uiSrcY, kMap);
    }
};

//! A blit through a map after clipping, with all that a worker wants to know.
struct MapBlit
{
    const Kanvo_Bitmap* pkSource;
    const Kanvo_Bitmap* pkAlpha;
    Kanvo_Bitmap*       pkDest;
    Kanvo_BlitRect      kRect;
    Tov_Flag            ulFlags;
    Tov_UByte           ubAlpha;

    template <class Worker>
    void Run(Worker pfnWorker) const
    {
        pfnWorker(pkSource, pkAlpha, pkDest, kRect.uiWidth, kRect.uiHeight, kRect.uiSrcX, kRect.uiSrcY, kRect.uiDstX,
                  kRect.uiDstY, ulFlags, ubAlpha);
    }
};

using MapWorker = void (*)(const Kanvo_Bitmap*, const Kanvo_Bitmap*, Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt,
                           Tov_UInt, Tov_UInt, Tov_UInt, Tov_Flag, Tov_UByte);

//! Chooses by the map's format between two workers; another format fails with the message.
void RunByMap(const MapBlit& kBlit, MapWorker pfnA8, MapWorker pfnARGB32, [[maybe_unused]] const char* pcOtherwise)
{
    switch (kBlit.pkAlpha->GetType())
    {
    case BM_ALPHA8: kBlit.Run(pfnA8); break;

    case BM_ARGB32: kBlit.Run(pfnARGB32); break;

    default: TRAK_CHECK(false, pcOtherwise); break;
    }
}

template <class Src>
void BlendByMap(const MapBlit& kBlit, const char* pcOtherwise)
{
    RunByMap(kBlit, &Kanvo_AlphaBlitToARGB32<Src, Kanvo_PixelA8_Access>::Blit_Int,
             &Kanvo_AlphaBlitToARGB32<Src, Kanvo_PixelARGB32_Access>::Blit_Int, pcOtherwise);
}

void LoopMapARGB32(const MapBlit& kBlit)
{
    const Kanvo_BlitEnds<Kanvo_PixelARGB32_Access> kEnds(kBlit.pkDest, kBlit.pkSource, kBlit.kRect);
    if (Kanvo_IsOpaquePlain(kBlit.pkSource, kBlit.ubAlpha))
    {
        neonloops_blit_argb32_argb32_as(kEnds.kDst, kEnds.kSrc, kEnds.uiDstPitch, kEnds.uiSrcPitch, kBlit.kRect.uiWidth,
                                        kBlit.kRect.uiHeight);
    }
    else
    {
        neonloops_blit_argb32_argb32_as_ag(kEnds.kDst, kEnds.kSrc, kEnds.uiDstPitch, kEnds.uiSrcPitch,
                                           kBlit.kRect.uiWidth, kBlit.kRect.uiHeight, kBlit.ubAlpha);
    }
}

void LoopMapRGB565(const MapBlit& kBlit)
{
    const MapLoopEnds kEnds(kBlit.pkDest, kBlit.pkSource, kBlit.pkAlpha, kBlit.kRect);
    const Tov_UInt    uiWidth  = kBlit.kRect.uiWidth;
    const Tov_UInt    uiHeight = kBlit.kRect.uiHeight;
    if ((kBlit.ulFlags & BLIT_COPY_ONLY_ALPHA) != 0)
    {
        neonloops_blit_argb32_rgb565a8(kEnds.kDst, kEnds.kSrc, kEnds.kMap, kEnds.uiDstPitch, kEnds.uiSrcPitch,
                                       kEnds.uiMapPitch, uiWidth, uiHeight);
    }
    else if (Kanvo_IsOpaquePlain(kBlit.pkSource, kBlit.ubAlpha))
    {
        neonloops_blit_argb32_rgb565a8_as(kEnds.kDst, kEnds.kSrc, kEnds.kMap, kEnds.uiDstPitch, kEnds.uiSrcPitch,
                                          kEnds.uiMapPitch, uiWidth, uiHeight);
    }
    else
    {
        neonloops_blit_argb32_rgb565a8_as_ag(kEnds.kDst, kEnds.kSrc, kEnds.kMap, kEnds.uiDstPitch, kEnds.uiSrcPitch,
                                             kEnds.uiMapPitch, uiWidth, uiHeight, kBlit.ubAlpha);
    }
}

//! RGB565 has more ways through a map than the other formats.
void BlitRGB565ByMap(const MapBlit& kBlit, Tov_Bool bNeon)
{
    if (kBlit.pkAlpha->GetType() == BM_ALPHA8 && bNeon)
    {
        LoopMapRGB565(kBlit);
    }
    else if (kBlit.pkAlpha->GetType() == BM_ALPHA8 && (kBlit.ulFlags & BLIT_COPY_ONLY_ALPHA) != 0)
    {
        kBlit.Run(&Kanvo_AlphaBlitToARGB32<Kanvo_PixelRGB565_Access, Kanvo_PixelA8_Access>::Blit_RGB_Cpy_Alpha);
    }
    else
    {
        BlendByMap<Kanvo_PixelRGB565_Access>(kBlit, "RGB565->ARGB32 BlitAlpha, alpha format not supported");
    }
}

//! Whether a map is a format some worker reads.
Tov_Bool IsReadableMap(const Kanvo_Bitmap* pkAlpha)
{
    return pkAlpha->GetType() == BM_ALPHA8 || pkAlpha->GetType() == BM_ARGB32;
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
        Kanvo_RLECompressedBlits::Blit_ARGB32RLE8(pkSource, this, uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY,
                                                  ubAlpha);
        break;

    case BM_RGB32RLE16:
        Kanvo_RLECompressedBlits::Blit_ARGB32RLE16(pkSource, this, uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY,
                                                   ubAlpha);
        break;

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

void Kanvo_BitmapARGB32::BlitAlpha(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight,
                                   Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags,
                                   Tov_UByte ubAlpha)
{
    const Tov_Bool bDraw = BeginDraw();
    TRAK_CHECK(pkSource != nullptr, "blit not supported");
    if (pkSource == nullptr)
    {
        return;
    }
    const Tov_UInt uiType = pkSource->GetType();
    if (pkAlpha == nullptr && uiType == BM_ARGB32)
    {
        pkAlpha = pkSource;  // the image's own alpha serves as map
    }
    Kanvo_CheckAlphaMap(pkAlpha);
    if (!bDraw || pkAlpha == nullptr ||
        !Kanvo_PrepareBlit(this, pkSource, ulFlags, uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY))
    {
        return;
    }
    const Tov_Bool bNeon = Kanvo_NeonAllowed(this, ulFlags);
    // Nominally the map has the source's size; one that is smaller must not be read beyond its end.
    // KEPT: RLE sources ignore the map, and so does the optimised path of ARGB32 sources.
    // Test: TheMapIsIgnoredByRLESourcesAndByTheOptimisedARGB32Path.
    const Tov_Bool bMapIsRead = IsReadableMap(pkAlpha) && !Kanvo_IsRLE(pkSource) && !(uiType == BM_ARGB32 && bNeon);
    if (bMapIsRead && !Kanvo_PrepareBlit(this, pkAlpha, ulFlags, uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY))
    {
        return;
    }
    const MapBlit kBlit{
        pkSource, pkAlpha,
        this,     {uiWidth, uiHeight, uiSrcX, uiSrcY, static_cast<Tov_UInt>(iDstX), static_cast<Tov_UInt>(iDstY)},
        ulFlags,  ubAlpha};
    switch (uiType)
    {
    case BM_RGB32:
        BlendByMap<Kanvo_PixelRGB32_Access>(kBlit, "RGB32->ARGB32 BlitAlpha, alpha format not supported");
        break;

    case BM_RGB32RLE8:
        Kanvo_RLECompressedBlits::BlitAlpha_ARGB32RLE8(pkSource, this, uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY,
                                                       ubAlpha);
        break;

    case BM_RGB32RLE16:
        Kanvo_RLECompressedBlits::BlitAlpha_ARGB32RLE16(pkSource, this, uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY,
                                                        ubAlpha);
        break;

    case BM_ARGB32:
        if (bNeon && IsReadableMap(pkAlpha))
        {
            LoopMapARGB32(kBlit);
        }
        else
        {
            BlendByMap<Kanvo_PixelARGB32_Access>(kBlit, "ARGB32->ARGB32 BlitAlpha, alpha format not supported");
        }
        break;

    case BM_ALPHA8:
        RunByMap(kBlit, &Kanvo_AlphaBlitToARGB32<Kanvo_PixelA8_Access, Kanvo_PixelA8_Access>::Blit_RGB,
                 &Kanvo_AlphaBlitToARGB32<Kanvo_PixelA8_Access, Kanvo_PixelARGB32_Access>::Blit_RGB,
                 "A8->ARGB32 BlitAlpha, alpha format not supported");
        break;

    case BM_RGB565: BlitRGB565ByMap(kBlit, bNeon); break;

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
