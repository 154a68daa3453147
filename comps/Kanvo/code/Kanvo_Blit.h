// Kanvo_Blit: the portable workers of the unscaled blits and of the rectangle fill. Called by the entries in
// Kanvo_BitmapARGB32*.cpp with clipped rectangles; each brings a rule to the walk of Kanvo_BlitScan: one for whole rows
// where there is a row function for them (rows.h), otherwise one for a pixel.
#ifndef KANVO_BLIT_H
#define KANVO_BLIT_H

#include <type_traits>

#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapRGB32.h"
#include "Kanvo_BitmapRGB565.h"
#include "Kanvo_BlitScan.h"
#include "Kanvo_PixelARGB32_Access.h"
#include "rows.h"
#include "Trak_Counters.h"

// Which pairs of formats there are row functions for.

//! Words onto ARGB32. RGB32 is read as ARGB32: what is blended takes its top byte for alpha.
template <class Src, class Dst>
constexpr Tov_Bool Kanvo_IsWordToARGB32()
{
    return std::is_same_v<Dst, Kanvo_PixelARGB32_Access> && std::is_same_v<typename Src::Pixel, Kanvo_PixelARGB32>;
}

template <class Src, class Dst>
constexpr Tov_Bool Kanvo_Is565ToARGB32()
{
    return std::is_same_v<Dst, Kanvo_PixelARGB32_Access> && std::is_same_v<Src, Kanvo_PixelRGB565_Access>;
}

template <class Src, class Dst>
constexpr Tov_Bool Kanvo_IsA8ToARGB32()
{
    return std::is_same_v<Dst, Kanvo_PixelARGB32_Access> && std::is_same_v<Src, Kanvo_PixelA8_Access>;
}

//! Static methods over a source and a destination format, each given as pixel type, pointer type and access policy.
//! (uiX1, uiY1) is the source origin, (uiX2, uiY2) the destination origin; both rectangles lie inside their bitmaps.
//! pvBase is the destination's buffer and not otherwise used.
template <class SrcPixel, class SrcOffset, class Src, class DstPixel, class DstOffset, class Dst>
class Kanvo_Blit
{
public:
    //! Copies rows of equal formats, whole.
    static void Blit_Cpy(const Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, void* /*pvBase*/, Tov_UInt uiWidth,
                         Tov_UInt uiHeight, Tov_UInt uiX1, Tov_UInt uiY1, Tov_UInt uiX2, Tov_UInt uiY2,
                         Tov_UInt uiBytesPerPixel)
    {
        const Trak_PerfScope kScope(g_kPerf_Blit_CPY);

        Rows(pkSource, pkDest, {uiWidth, uiHeight, uiX1, uiY1, uiX2, uiY2},
             [uiBytesPerPixel](SrcOffset kSrc, DstOffset kDst, Tov_UInt uiCount)
             { g_Kanvo_pkRows->pfnCopyBytes(kDst, kSrc, uiBytesPerPixel * uiCount); });
    }

    //! Copies, or below full opacity blends by the source's alpha times ubAlpha. With BLIT_COLORKEY pixels of the key's
    //! colour are left out.
    static void Blit_Int(const Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, void* pvBase, Tov_UInt uiWidth,
                         Tov_UInt uiHeight, Tov_UInt uiX1, Tov_UInt uiY1, Tov_UInt uiX2, Tov_UInt uiY2,
                         Tov_Flag ulFlags, Tov_UByte ubAlpha, Kanvo_Color cColorKey)
    {
        const auto pfnBlit = (ulFlags & BLIT_COLORKEY) != 0 ? &Blit_Int<true> : &Blit_Int<false>;
        pfnBlit(pkSource, pkDest, pvBase, uiWidth, uiHeight, uiX1, uiY1, uiX2, uiY2, ubAlpha, cColorKey);
    }

    template <bool KEYED>
    static void Blit_Int(const Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, void* /*pvBase*/, Tov_UInt uiWidth,
                         Tov_UInt uiHeight, Tov_UInt uiX1, Tov_UInt uiY1, Tov_UInt uiX2, Tov_UInt uiY2,
                         Tov_UByte ubAlpha, Kanvo_Color cColorKey)
    {
        const Trak_PerfScope kScope(g_kPerf_Blit_INT);
        const Kanvo_BlitRect kRect{uiWidth, uiHeight, uiX1, uiY1, uiX2, uiY2};
        const Kanvo_Color    cKey = Src::ColorToPixel(cColorKey);
        if constexpr (!KEYED && Kanvo_IsWordToARGB32<Src, Dst>())
        {
            DrawWords(pkSource, pkDest, kRect, ubAlpha);
        }
        else if (ubAlpha != 255)
        {
            Scan<KEYED>(pkSource, pkDest, kRect, cKey,
                        [ubAlpha](SrcOffset kSrc, DstOffset kDst)
                        { Dst::BlendPixelSrcAlpha(kDst, Src::GetPixel(kSrc), ubAlpha); });
        }
        else
        {
            Scan<KEYED>(pkSource, pkDest, kRect, cKey,
                        [](SrcOffset kSrc, DstOffset kDst) { Dst::PutPixel(kDst, Src::GetPixel(kSrc)); });
        }
    }

    //! Converts through red, green and blue: stores opaque pixels, or below full opacity blends by the source's alpha
    //! times ubAlpha. With BLIT_COLORKEY pixels whose colour equals the key, as it was passed, are left out.
    static void Blit_RGB(const Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, void* pvBase, Tov_UInt uiWidth,
                         Tov_UInt uiHeight, Tov_UInt uiX1, Tov_UInt uiY1, Tov_UInt uiX2, Tov_UInt uiY2,
                         Tov_Flag ulFlags, Tov_UByte ubAlpha, Kanvo_Color cColorKeySrcFormat)
    {
        const auto pfnBlit = (ulFlags & BLIT_COLORKEY) != 0 ? &Blit_RGB<true> : &Blit_RGB<false>;
        pfnBlit(pkSource, pkDest, pvBase, uiWidth, uiHeight, uiX1, uiY1, uiX2, uiY2, ubAlpha, cColorKeySrcFormat);
    }

    template <bool KEYED>
    static void Blit_RGB(const Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, void* /*pvBase*/, Tov_UInt uiWidth,
                         Tov_UInt uiHeight, Tov_UInt uiX1, Tov_UInt uiY1, Tov_UInt uiX2, Tov_UInt uiY2,
                         Tov_UByte ubAlpha, Kanvo_Color cColorKeySrcFormat)
    {
        const Trak_PerfScope kScope(g_kPerf_Blit_RGB);
        const Kanvo_BlitRect kRect{uiWidth, uiHeight, uiX1, uiY1, uiX2, uiY2};
        if constexpr (!KEYED && Kanvo_Is565ToARGB32<Src, Dst>())
        {
            Rows(pkSource, pkDest, kRect,
                 [ubAlpha](SrcOffset kSrc, DstOffset kDst, Tov_UInt uiCount)
                 {
                     if (ubAlpha != 255)
                     {
                         g_Kanvo_pkRows->pfnOver565(kDst, kSrc, uiCount, ubAlpha);
                     }
                     else
                     {
                         g_Kanvo_pkRows->pfnConvert565(kDst, kSrc, uiCount);
                     }
                 });
        }
        else if (ubAlpha != 255)
        {
            // KEPT: below full opacity the stored top byte of an RGB32 pixel counts as its alpha.
            // Test: BelowFullOpacityTheTopByteOfRGB32CountsAsAlpha.
            if constexpr (!KEYED && Kanvo_IsWordToARGB32<Src, Dst>())
            {
                DrawWords(pkSource, pkDest, kRect, ubAlpha);
            }
            else
            {
                Scan<KEYED>(pkSource, pkDest, kRect, cColorKeySrcFormat,
                            [ubAlpha](SrcOffset kSrc, DstOffset kDst)
                            {
                                const SrcPixel pxSrc = Src::GetPixel(kSrc);
                                const DstPixel pxNew =
                                    Dst::ColorAndAlphaToPixel(ConvertOpaque(pxSrc), Src::AlphaFromPixel(pxSrc));
                                Dst::BlendPixelSrcAlpha(kDst, pxNew, ubAlpha);
                            });
            }
        }
        else
        {
            Scan<KEYED>(pkSource, pkDest, kRect, cColorKeySrcFormat,
                        [](SrcOffset kSrc, DstOffset kDst)
                        { Dst::PutPixel(kDst, ConvertOpaque(Src::GetPixel(kSrc))); });
        }
    }

    //! Mixes one colour in, with the source's alpha times ubAlpha as coverage.
    static void Blit_ColorInt(const Kanvo_Bitmap* pkAlpha, Kanvo_Bitmap* pkDest, void* /*pvBase*/, Tov_UInt uiWidth,
                              Tov_UInt uiHeight, Tov_UInt uiX1, Tov_UInt uiY1, Tov_UInt uiX2, Tov_UInt uiY2,
                              Kanvo_ColorARGB32 cCol, Tov_UByte ubAlpha)
    {
        const Trak_PerfScope kScope(g_kPerf_Blit_COLORINT);
        const Kanvo_BlitRect kRect{uiWidth, uiHeight, uiX1, uiY1, uiX2, uiY2};
        if constexpr (Kanvo_IsA8ToARGB32<Src, Dst>())
        {
            Rows(pkAlpha, pkDest, kRect,
                 [cCol, ubAlpha](SrcOffset kSrc, DstOffset kDst, Tov_UInt uiCount)
                 { g_Kanvo_pkRows->pfnColorMask(kDst, kSrc, uiCount, cCol, ubAlpha); });
        }
        else
        {
            Scan<false>(pkAlpha, pkDest, kRect, 0,
                        [cCol, ubAlpha](SrcOffset kSrc, DstOffset kDst)
                        {
                            const Tov_UByte ubCover = Kanvo_MulByte(Src::AlphaFromPixel(Src::GetPixel(kSrc)), ubAlpha);
                            MixInto(kDst, cCol, ubCover);
                        });
        }
    }

    //! Fills a rectangle: an opaque colour is stored, any other mixed in by its own alpha, 0 included.
    static void Fill_Color(Kanvo_Bitmap* pkDest, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiX1, Tov_UInt uiY1,
                           Kanvo_ColorARGB32 cCol)
    {
        const Trak_PerfScope kScope(g_kPerf_Blit_FILLRECT);
        const auto           ubAlpha = static_cast<Tov_UByte>(cCol >> 24);
        const DstPixel       pxColor = Dst::PixelFromColorARGB32(cCol);

        DstOffset kLine;
        Dst::GetOffset(pkDest, uiX1, uiY1, kLine);
        for (Tov_UInt uiY = 0; uiY < uiHeight; ++uiY)
        {
            DstOffset kDst = kLine;
            if constexpr (std::is_same_v<Dst, Kanvo_PixelARGB32_Access>)
            {
                g_Kanvo_pkRows->pfnFillMix(kDst, uiWidth, cCol, ubAlpha);  // at 255 the colour itself
            }
            else if (ubAlpha == 255)
            {
                Dst::PutSpan(kDst, pxColor, static_cast<Tov_Int>(uiWidth));
            }
            else
            {
                for (Tov_UInt uiX = 0; uiX < uiWidth; ++uiX)
                {
                    MixInto(kDst, cCol, ubAlpha);
                    Dst::IncX(pkDest, kDst);
                }
            }
            Dst::IncY(pkDest, kLine);
        }
    }

private:
    //! Words as they are: stored, or below full opacity blended.
    static void DrawWords(const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkDest, const Kanvo_BlitRect& kRect,
                          Tov_UByte ubAlpha)
    {
        Rows(pkSource, pkDest, kRect,
             [ubAlpha](SrcOffset kSrc, DstOffset kDst, Tov_UInt uiCount)
             {
                 if (ubAlpha != 255)
                 {
                     g_Kanvo_pkRows->pfnOver(kDst, kSrc, uiCount, ubAlpha);
                 }
                 else
                 {
                     g_Kanvo_pkRows->pfnCopy(kDst, kSrc, uiCount);
                 }
             });
    }

    template <class Rule>
    static KANVO_INLINE void Rows(const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkDest, const Kanvo_BlitRect& kRect,
                                  Rule kRule)
    {
        Kanvo_BlitRows<Src, Dst>(pkSource, pkDest, kRect, kRule);
    }

    template <bool KEYED, class Rule>
    static KANVO_INLINE void Scan(const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkDest, const Kanvo_BlitRect& kRect,
                                  Kanvo_Color cKey, Rule kRule)
    {
        if constexpr (KEYED)
        {
            Kanvo_BlitScan<Src, Dst>(pkSource, pkDest, kRect, Kanvo_UnlessKey<Src, Rule>{kRule, cKey});
        }
        else
        {
            Kanvo_BlitScan<Src, Dst>(pkSource, pkDest, kRect, kRule);
        }
    }

    static KANVO_INLINE DstPixel ConvertOpaque(SrcPixel pxSrc)
    {
        return Dst::PixelFromRGB(Src::RedFromPixel(pxSrc), Src::GreenFromPixel(pxSrc), Src::BlueFromPixel(pxSrc));
    }

    static KANVO_INLINE void MixInto(DstOffset kDst, Kanvo_ColorARGB32 cCol, Tov_UByte ubAlpha)
    {
        const Kanvo_ColorARGB32 clDst = Dst::ColorARGB32FromPixel(Dst::GetPixel(kDst));
        Dst::PutPixel(kDst, Dst::PixelFromColorARGB32(KanvoBlit_MixLinear(clDst, cCol, ubAlpha)));
    }
};

//! Blits through an alpha map, which is addressed with the source's coordinates. Three formats: source, map,
//! destination. Otherwise as Kanvo_Blit.
template <class SrcPixel, class SrcOffset, class Src, class MapPixel, class MapOffset, class Map, class DstPixel,
          class DstOffset, class Dst>
class Kanvo_AlphaBlit
{
public:
    //! Blends the source's pixels as they are stored by the map times ubAlpha.
    static void Blit_Int(const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkAlpha, Kanvo_Bitmap* pkDest,
                         Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiX1, Tov_UInt uiY1, Tov_UInt uiX2,
                         Tov_UInt uiY2, Tov_Flag /*ulFlags*/, Tov_UByte ubAlpha)
    {
        Blit_Int(pkSource, pkAlpha, pkDest, uiWidth, uiHeight, uiX1, uiY1, uiX2, uiY2, ubAlpha);
    }

    static void Blit_Int(const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkAlpha, Kanvo_Bitmap* pkDest,
                         Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiX1, Tov_UInt uiY1, Tov_UInt uiX2,
                         Tov_UInt uiY2, Tov_UByte ubAlpha)
    {
        const Trak_PerfScope kScope(g_kPerf_Blit_ALPHAINT);
        // KEPT: an RGB565 pixel is blended as the word it is stored as, unconverted.
        // Test: AnRGB565SourceThroughAMapIsBlendedAsItsRawWord.
        const Kanvo_BlitRect kRect{uiWidth, uiHeight, uiX1, uiY1, uiX2, uiY2};
        if constexpr (Kanvo_IsWordToARGB32<Src, Dst>() && Kanvo_IsA8ToARGB32<Map, Dst>())
        {
            const Kanvo_BitmapAndMap kPair{pkSource, pkAlpha};
            Kanvo_BlitRows<Pair, Dst>(&kPair, pkDest, kRect,
                                      [ubAlpha](Both kFrom, DstOffset kDst, Tov_UInt uiCount) {
                                          g_Kanvo_pkRows->pfnBlendMask(kDst, kFrom.kSrc, kFrom.kMap, uiCount, ubAlpha);
                                      });
        }
        else
        {
            Scan(pkSource, pkAlpha, pkDest, kRect,
                 [ubAlpha](Both kFrom, DstOffset kDst)
                 { Dst::BlendPixel(kDst, Src::GetPixel(kFrom.kSrc), Cover(kFrom.kMap, ubAlpha)); });
        }
    }

    //! Draws the source's grey through the map; pixels without coverage are left alone.
    // KEPT: the blend is KanvoBlit_MixLinear at full opacity and BlendPixel below, which differ in the last bit.
    // Test: AnA8SourceThroughAMapBlendsDifferentlyAtFullOpacityAndBelow.
    static void Blit_RGB(const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkAlpha, Kanvo_Bitmap* pkDest,
                         Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiX1, Tov_UInt uiY1, Tov_UInt uiX2,
                         Tov_UInt uiY2, Tov_Flag /*ulFlags*/, Tov_UByte ubAlpha)
    {
        const Trak_PerfScope kScope(g_kPerf_Blit_ALPHARGB);
        const Kanvo_BlitRect kRect{uiWidth, uiHeight, uiX1, uiY1, uiX2, uiY2};
        if (ubAlpha != 255)
        {
            Scan(pkSource, pkAlpha, pkDest, kRect,
                 [ubAlpha](Both kFrom, DstOffset kDst)
                 {
                     const Tov_UByte ubCover = Cover(kFrom.kMap, ubAlpha);
                     if (ubCover != 0)
                     {
                         const SrcPixel pxSrc = Src::GetPixel(kFrom.kSrc);
                         Dst::BlendPixel(kDst,
                                         Dst::PixelFromRGB(Src::RedFromPixel(pxSrc), Src::GreenFromPixel(pxSrc),
                                                           Src::BlueFromPixel(pxSrc)),
                                         ubCover);
                     }
                 });
        }
        else
        {
            Scan(pkSource, pkAlpha, pkDest, kRect,
                 [](Both kFrom, DstOffset kDst)
                 {
                     const Tov_UByte ubCover = Cover(kFrom.kMap, 255);
                     if (ubCover != 0)
                     {
                         const Kanvo_ColorARGB32 clDst = Dst::ColorARGB32FromPixel(Dst::GetPixel(kDst));
                         const Kanvo_ColorARGB32 clSrc = Src::ColorARGB32FromPixel(Src::GetPixel(kFrom.kSrc));
                         Dst::PutPixel(kDst, Dst::PixelFromColorARGB32(KanvoBlit_MixLinear(clDst, clSrc, ubCover)));
                     }
                 });
        }
    }

    //! Stores the source's colour with the map times ubAlpha as its alpha; where that is 0 the pixel stays.
    static void Blit_RGB_Cpy_Alpha(const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkAlpha, Kanvo_Bitmap* pkDest,
                                   Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiX1, Tov_UInt uiY1, Tov_UInt uiX2,
                                   Tov_UInt uiY2, Tov_Flag /*ulFlags*/, Tov_UByte ubAlpha)
    {
        const Trak_PerfScope kScope(g_kPerf_Blit_RGB);
        Scan(pkSource, pkAlpha, pkDest, {uiWidth, uiHeight, uiX1, uiY1, uiX2, uiY2},
             [pkDest, ubAlpha](Both kFrom, DstOffset kDst)
             {
                 const Tov_UByte ubCover = Cover(kFrom.kMap, ubAlpha);
                 if (ubCover != 0)
                 {
                     const SrcPixel    pxSrc  = Src::GetPixel(kFrom.kSrc);
                     const Kanvo_Color clFull = pkDest->ColorFromARGB(
                         ubCover, Src::RedFromPixel(pxSrc), Src::GreenFromPixel(pxSrc), Src::BlueFromPixel(pxSrc));
                     Dst::PutPixel(kDst, Dst::PixelFromColorARGB32(clFull));
                 }
             });
    }

private:
    using Pair = Kanvo_PixelAndMap<Src, Map>;
    using Both = typename Pair::Offset;

    static KANVO_INLINE Tov_UByte Cover(MapOffset kMap, Tov_UByte ubAlpha)
    {
        return Kanvo_MulByte(Map::AlphaFromPixel(Map::GetPixel(kMap)), ubAlpha);
    }

    template <class Rule>
    static KANVO_INLINE void Scan(const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkAlpha, const Kanvo_Bitmap* pkDest,
                                  const Kanvo_BlitRect& kRect, Rule kRule)
    {
        const Kanvo_BitmapAndMap kPair{pkSource, pkAlpha};
        Kanvo_BlitScan<Pair, Dst>(&kPair, pkDest, kRect, kRule);
    }
};

template <class Src>
using Kanvo_BlitToARGB32 = Kanvo_Blit<typename Src::Pixel, typename Src::Offset, Src, Kanvo_PixelARGB32,
                                      Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access>;
using Kanvo_BlitARGB32   = Kanvo_BlitToARGB32<Kanvo_PixelARGB32_Access>;
using Kanvo_BlitRGB32    = Kanvo_BlitToARGB32<Kanvo_PixelRGB32_Access>;
using Kanvo_BlitRGB565   = Kanvo_BlitToARGB32<Kanvo_PixelRGB565_Access>;
using Kanvo_BlitA8       = Kanvo_BlitToARGB32<Kanvo_PixelA8_Access>;

template <class Src, class Map>
using Kanvo_AlphaBlitToARGB32 =
    Kanvo_AlphaBlit<typename Src::Pixel, typename Src::Offset, Src, typename Map::Pixel, typename Map::Offset, Map,
                    Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access>;

#endif
