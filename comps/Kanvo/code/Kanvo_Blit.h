// Kanvo_Blit: the portable workers of the unscaled blits and of the rectangle fill. Called by the entries in
// Kanvo_BitmapARGB32*.cpp with clipped rectangles; each brings a rule to the walk of Kanvo_BlitScan: one for whole rows
// where there are row functions for them (rows.h), otherwise one for a pixel. Formats that the row functions do not read
// are brought into one that they do, a piece of a row at a time.
#ifndef KANVO_BLIT_H
#define KANVO_BLIT_H

#include <algorithm>
#include <type_traits>

#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapRGB32.h"
#include "Kanvo_BitmapRGB565.h"
#include "Kanvo_BlitScan.h"
#include "Kanvo_PixelARGB32_Access.h"
#include "neonloops_rects.h"
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

//! Calls kDraw(first pixel, pixels) for pieces of a row that fit in memory of this many pixels.
constexpr Tov_UInt KANVO_PIECE = 256;

template <class Draw>
KANVO_INLINE void Kanvo_ForPieces(Tov_UInt uiCount, Draw kDraw)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; uiX += KANVO_PIECE)
    {
        kDraw(uiX, std::min(uiCount - uiX, KANVO_PIECE));
    }
}

//! Pixels of a source as words: where they lie, or a piece of them brought here. RGB565 is not converted.
template <class Src>
class Kanvo_PieceOfWords
{
public:
    static constexpr Tov_Bool IN_PLACE = Kanvo_IsWordToARGB32<Src, Kanvo_PixelARGB32_Access>();

    KANVO_INLINE const Kanvo_PixelARGB32* Bring(typename Src::Offset kSrc, Tov_UInt uiCount)
    {
        if constexpr (IN_PLACE)
        {
            return kSrc;
        }
        else
        {
            if constexpr (std::is_same_v<Src, Kanvo_PixelA8_Access>)
            {
                g_Kanvo_pkRows->pfnConvertA8(m_apxWords, kSrc, uiCount, 0xFF000000U);
            }
            else
            {
                for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
                {
                    m_apxWords[uiX] = Kanvo_ReadPixel<Src>(kSrc + uiX);
                }
            }
            return m_apxWords;
        }
    }

private:
    Kanvo_PixelARGB32 m_apxWords[IN_PLACE ? 1 : KANVO_PIECE];
};

//! The same of a map as coverage.
template <class Map>
class Kanvo_PieceOfMap
{
public:
    static constexpr Tov_Bool IN_PLACE = std::is_same_v<Map, Kanvo_PixelA8_Access>;

    KANVO_INLINE const Kanvo_PixelA8* Bring(typename Map::Offset kMap, Tov_UInt uiCount)
    {
        if constexpr (IN_PLACE)
        {
            return kMap;
        }
        else
        {
            g_Kanvo_pkRows->pfnTakeAlpha(m_aubCover, kMap, uiCount);
            return m_aubCover;
        }
    }

private:
    Kanvo_PixelA8 m_aubCover[IN_PLACE ? 1 : KANVO_PIECE];
};

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

        const Kanvo_BlitRect kRect{uiWidth, uiHeight, uiX1, uiY1, uiX2, uiY2};
        if constexpr (Kanvo_IsWordToARGB32<Src, Dst>())
        {
            if (uiBytesPerPixel == sizeof(SrcPixel))
            {
                DrawWords(pkSource, pkDest, kRect, 255);
                return;
            }
        }
        Rows(pkSource, pkDest, kRect,
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
                        { Dst::BlendPixelSrcAlpha(kDst, Kanvo_ReadPixel<Src>(kSrc), ubAlpha); });
        }
        else
        {
            Scan<KEYED>(pkSource, pkDest, kRect, cKey,
                        [](SrcOffset kSrc, DstOffset kDst) { Dst::PutPixel(kDst, Kanvo_ReadPixel<Src>(kSrc)); });
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
            const Kanvo_BlitEnds<Src> kEnds(pkDest, pkSource, kRect);
            if (ubAlpha != 255)
            {
                g_Kanvo_pkBodies->pfnOver565(kEnds.kDst, kEnds.kSrc, kEnds.uiDstPitch, kEnds.uiSrcPitch, uiWidth,
                                             uiHeight, ubAlpha);
            }
            else
            {
                g_Kanvo_pkBodies->pfnConvert565(kEnds.kDst, kEnds.kSrc, kEnds.uiDstPitch, kEnds.uiSrcPitch, uiWidth,
                                                uiHeight);
            }
        }
        else if constexpr (Kanvo_Is565ToARGB32<Src, Dst>())
        {
            const auto kRule = [ubAlpha](SrcOffset kSrc, DstOffset kDst)
            {
                // of an opaque source: at full opacity a copy
                const DstPixel pxNew = ConvertOpaque(Kanvo_ReadPixel<Src>(kSrc));
                Dst::PutPixel(kDst, ubAlpha != 255 ? Dst::MixLinear(Dst::GetPixel(kDst), pxNew, ubAlpha) : pxNew);
            };
            Pieces(pkSource, pkDest, kRect, Kanvo_UnlessKey<Src, decltype(kRule)>{kRule, cColorKeySrcFormat},
                   [ubAlpha, cColorKeySrcFormat](SrcOffset kSrc, DstOffset kDst, Tov_UInt uiCount)
                   {
                       Kanvo_PixelA8 aubCover[KANVO_PIECE];  // full but for the key
                       for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
                       {
                           aubCover[uiX] =
                               Src::PixelToColor(Kanvo_ReadPixel<Src>(kSrc + uiX)) != cColorKeySrcFormat ? 255 : 0;
                       }
                       if (ubAlpha != 255)
                       {
                           g_Kanvo_pkRows->pfnBlendMask565(kDst, kSrc, aubCover, uiCount, ubAlpha);
                       }
                       else
                       {
                           g_Kanvo_pkRows->pfnStoreMask565(kDst, kSrc, aubCover, uiCount);
                       }
                   });
        }
        else if (ubAlpha != 255)
        {
            // KEPT: below full opacity the stored top byte of an RGB32 pixel counts as its alpha.
            // Test: BelowFullOpacityTheTopByteOfRGB32CountsAsAlpha.
            const auto kRule = [ubAlpha](SrcOffset kSrc, DstOffset kDst)
            {
                const SrcPixel pxSrc = Kanvo_ReadPixel<Src>(kSrc);
                const DstPixel pxNew = Dst::ColorAndAlphaToPixel(ConvertOpaque(pxSrc), Src::AlphaFromPixel(pxSrc));
                Dst::BlendPixelSrcAlpha(kDst, pxNew, ubAlpha);
            };
            if constexpr (!KEYED && Kanvo_IsWordToARGB32<Src, Dst>())
            {
                DrawWords(pkSource, pkDest, kRect, ubAlpha);
            }
            else if constexpr (!KEYED && Kanvo_IsA8ToARGB32<Src, Dst>())
            {
                Pieces(pkSource, pkDest, kRect, kRule,
                       [ubAlpha](SrcOffset kSrc, DstOffset kDst, Tov_UInt uiCount)
                       {
                           Kanvo_PixelARGB32 apxGrey[KANVO_PIECE];  // its level is its alpha
                           g_Kanvo_pkRows->pfnConvertA8(apxGrey, kSrc, uiCount, 0);
                           g_Kanvo_pkRows->pfnOver(kDst, apxGrey, uiCount, ubAlpha);
                       });
            }
            else
            {
                Scan<KEYED>(pkSource, pkDest, kRect, cColorKeySrcFormat, kRule);
            }
        }
        else if constexpr (!KEYED && Kanvo_IsWordToARGB32<Src, Dst>())
        {
            Rows(pkSource, pkDest, kRect,
                 [](SrcOffset kSrc, DstOffset kDst, Tov_UInt uiCount)
                 { g_Kanvo_pkRows->pfnCopyOpaque(kDst, kSrc, uiCount); });
        }
        else if constexpr (!KEYED && Kanvo_IsA8ToARGB32<Src, Dst>())
        {
            Rows(pkSource, pkDest, kRect,
                 [](SrcOffset kSrc, DstOffset kDst, Tov_UInt uiCount)
                 { g_Kanvo_pkRows->pfnConvertA8(kDst, kSrc, uiCount, 0xFF000000U); });
        }
        else
        {
            Scan<KEYED>(pkSource, pkDest, kRect, cColorKeySrcFormat,
                        [](SrcOffset kSrc, DstOffset kDst)
                        { Dst::PutPixel(kDst, ConvertOpaque(Kanvo_ReadPixel<Src>(kSrc))); });
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
            const Kanvo_BlitEnds<Src> kEnds(pkDest, pkAlpha, kRect);
            g_Kanvo_pkBodies->pfnColorMaskScaled(kEnds.kDst, kEnds.kSrc, kEnds.uiDstPitch, kEnds.uiSrcPitch, cCol,
                                                 uiWidth, uiHeight, ubAlpha);
        }
        else
        {
            const auto kRule = [cCol, ubAlpha](SrcOffset kSrc, DstOffset kDst)
            { MixInto(kDst, cCol, Kanvo_MulByte(Src::AlphaFromPixel(Kanvo_ReadPixel<Src>(kSrc)), ubAlpha)); };
            if constexpr (Kanvo_IsWordToARGB32<Src, Dst>())
            {
                Pieces(pkAlpha, pkDest, kRect, kRule,
                       [cCol, ubAlpha](SrcOffset kSrc, DstOffset kDst, Tov_UInt uiCount)
                       {
                           Kanvo_PieceOfMap<Src>      kPiece;
                           const Kanvo_PixelA8* const kCover = kPiece.Bring(kSrc, uiCount);
                           g_Kanvo_pkRows->pfnColorMask(kDst, kCover, uiCount, cCol, ubAlpha);
                       });
            }
            else
            {
                Scan<false>(pkAlpha, pkDest, kRect, 0, kRule);
            }
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
        if constexpr (std::is_same_v<Dst, Kanvo_PixelARGB32_Access>)
        {
            g_Kanvo_pkBodies->pfnFillMix(kLine, pkDest->GetPitch(), pxColor, uiWidth, uiHeight, ubAlpha);  // 255 stores
        }
        else
        {
            for (Tov_UInt uiY = 0; uiY < uiHeight; ++uiY)
            {
                DstOffset kDst = kLine;
                for (Tov_UInt uiX = 0; uiX < uiWidth; ++uiX)
                {
                    MixInto(kDst, cCol, ubAlpha);
                    Dst::IncX(pkDest, kDst);
                }
                Dst::IncY(pkDest, kLine);
            }
        }
    }

private:
    //! Words as they are: stored, or below full opacity blended.
    static void DrawWords(const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkDest, const Kanvo_BlitRect& kRect,
                          Tov_UByte ubAlpha)
    {
        const Kanvo_BlitEnds<Src> kEnds(pkDest, pkSource, kRect);
        if (ubAlpha != 255)
        {
            g_Kanvo_pkBodies->pfnOver(kEnds.kDst, kEnds.kSrc, kEnds.uiDstPitch, kEnds.uiSrcPitch, kRect.uiWidth,
                                      kRect.uiHeight, ubAlpha);
        }
        else
        {
            g_Kanvo_pkBodies->pfnCopy(kEnds.kDst, kEnds.kSrc, kEnds.uiDstPitch, kEnds.uiSrcPitch, kRect.uiWidth,
                                      kRect.uiHeight);
        }
    }

    template <class Rule>
    static KANVO_INLINE void Rows(const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkDest, const Kanvo_BlitRect& kRect,
                                  Rule kRule)
    {
        Kanvo_BlitRows<Src, Dst>(pkSource, pkDest, kRect, kRule);
    }

    //! Calls kDraw(source offset, destination offset, pixels) for pieces of rows, or, where a row of the destination
    //! shares memory with its source, kRule for each pixel.
    template <class Rule, class Draw>
    static KANVO_INLINE void Pieces(const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkDest,
                                    const Kanvo_BlitRect& kRect, Rule kRule, Draw kDraw)
    {
        Rows(pkSource, pkDest, kRect,
             [pkSource, pkDest, kRule, kDraw](SrcOffset kSrc, DstOffset kDst, Tov_UInt uiCount)
             {
                 if (Kanvo_RowsOverlap(kDst, kSrc, uiCount))
                 {
                     Kanvo_BlitPixels<Src, Dst>(pkSource, pkDest, kSrc, kDst, uiCount, kRule);
                     return;
                 }
                 Kanvo_ForPieces(uiCount,
                                 [=](Tov_UInt uiX, Tov_UInt uiPixels) { kDraw(kSrc + uiX, kDst + uiX, uiPixels); });
             });
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
        Pieces(
            pkSource, pkAlpha, pkDest, kRect,
            [ubAlpha](Both kFrom, DstOffset kDst)
            { Dst::BlendPixel(kDst, Kanvo_ReadPixel<Src>(kFrom.kSrc), Cover(kFrom.kMap, ubAlpha)); },
            [ubAlpha](const Kanvo_PixelARGB32* kSrc, const Kanvo_PixelA8* kCover, DstOffset kDst, Tov_UInt uiCount)
            { g_Kanvo_pkRows->pfnBlendMask(kDst, kSrc, kCover, uiCount, ubAlpha); });
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
            Pieces(
                pkSource, pkAlpha, pkDest, kRect,
                [ubAlpha](Both kFrom, DstOffset kDst)
                {
                    const SrcPixel pxSrc = Kanvo_ReadPixel<Src>(kFrom.kSrc);
                    Dst::BlendPixel(kDst,
                                    Dst::PixelFromRGB(Src::RedFromPixel(pxSrc), Src::GreenFromPixel(pxSrc),
                                                      Src::BlueFromPixel(pxSrc)),
                                    Cover(kFrom.kMap, ubAlpha));
                },
                [ubAlpha](const Kanvo_PixelARGB32* kSrc, const Kanvo_PixelA8* kCover, DstOffset kDst, Tov_UInt uiCount)
                { g_Kanvo_pkRows->pfnBlendMask(kDst, kSrc, kCover, uiCount, ubAlpha); });
        }
        else
        {
            Pieces(
                pkSource, pkAlpha, pkDest, kRect,
                [](Both kFrom, DstOffset kDst)
                {
                    const Kanvo_ColorARGB32 clDst = Dst::ColorARGB32FromPixel(Dst::GetPixel(kDst));
                    const Kanvo_ColorARGB32 clSrc = Src::ColorARGB32FromPixel(Kanvo_ReadPixel<Src>(kFrom.kSrc));
                    const Kanvo_ColorARGB32 clNew = KanvoBlit_MixLinear(clDst, clSrc, Cover(kFrom.kMap, 255));
                    Dst::PutPixel(kDst, Dst::PixelFromColorARGB32(clNew));
                },
                [](const Kanvo_PixelARGB32* kSrc, const Kanvo_PixelA8* kCover, DstOffset kDst, Tov_UInt uiCount)
                { g_Kanvo_pkRows->pfnMixMask(kDst, kSrc, kCover, uiCount); });
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
                     const SrcPixel    pxSrc  = Kanvo_ReadPixel<Src>(kFrom.kSrc);
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

    //! Calls kDraw(words, coverage, destination offset, pixels) for pieces of rows, or, where a row of the destination
    //! shares memory with its source or map, kRule for each pixel.
    template <class Rule, class Draw>
    static KANVO_INLINE void Pieces(const Kanvo_Bitmap* pkSource, const Kanvo_Bitmap* pkAlpha,
                                    const Kanvo_Bitmap* pkDest, const Kanvo_BlitRect& kRect, Rule kRule, Draw kDraw)
    {
        const Kanvo_BitmapAndMap kPair{pkSource, pkAlpha};
        Kanvo_BlitRows<Pair, Dst>(
            &kPair, pkDest, kRect,
            [=](Both kFrom, DstOffset kDst, Tov_UInt uiCount)
            {
                if constexpr (Kanvo_PieceOfWords<Src>::IN_PLACE && Kanvo_PieceOfMap<Map>::IN_PLACE)
                {
                    kDraw(kFrom.kSrc, kFrom.kMap, kDst, uiCount);  // whole, and the row function sees to the rest
                }
                else if (Kanvo_RowsOverlap(kDst, kFrom.kSrc, uiCount) || Kanvo_RowsOverlap(kDst, kFrom.kMap, uiCount))
                {
                    Kanvo_BlitPixels<Pair, Dst>(&kPair, pkDest, kFrom, kDst, uiCount, kRule);
                }
                else
                {
                    Kanvo_ForPieces(uiCount,
                                    [=](Tov_UInt uiX, Tov_UInt uiPixels)
                                    {
                                        Kanvo_PieceOfWords<Src> kWords;
                                        Kanvo_PieceOfMap<Map>   kCover;
                                        kDraw(kWords.Bring(kFrom.kSrc + uiX, uiPixels),
                                              kCover.Bring(kFrom.kMap + uiX, uiPixels), kDst + uiX, uiPixels);
                                    });
                }
            });
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
