// Kanvo_RotBlit: the workers of the rotated blits, plain and through an alpha map. Called by the entries in
// Kanvo_BitmapARGB32_Rot.cpp; Kanvo_RotScan walks, Kanvo_SampleStrips reads and writes the samples of a row.
#ifndef KANVO_ROTBLIT_H
#define KANVO_ROTBLIT_H

#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapRGB32.h"
#include "Kanvo_BitmapRGB565.h"
#include "Kanvo_PixelARGB32_Access.h"
#include "Kanvo_RotScan.h"
#include "Kanvo_SampleStrips.h"

//! Static methods over a source and a destination format, each given as pixel type, pointer type and access policy. All
//! take the numbers as the entries do, but for the source rectangle, which has to lie inside its bitmap.
template <class SrcPixel, class SrcOffset, class Src, class DstPixel, class DstOffset, class Dst>
class Kanvo_RotBlit
{
public:
    //! Converts through red, green and blue and keeps the sample's alpha: stored, or below full opacity blended by it.
    static void RotBlit_RGB(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDst, Tov_UInt uiWidth, Tov_UInt uiHeight,
                            Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Value vDstX, Tov_Value vDstY, Tov_Value vAngle,
                            Tov_Flag ulFlags, Tov_Value vStretchX, Tov_Value vStretchY, Tov_Value vRotPosX,
                            Tov_Value vRotPosY, Tov_UByte ubAlpha)
    {
        const Kanvo_RotRequest kRequest{uiWidth, uiHeight, uiSrcX,    uiSrcY,    vDstX,    vDstY,
                                        vAngle,  ulFlags,  vStretchX, vStretchY, vRotPosX, vRotPosY};
        if constexpr (std::is_same_v<Src, Kanvo_PixelA8_Access>)
        {
            Draw(pkSrc, pkDst, kRequest, Kanvo_WriteGrey{ubAlpha, false});
        }
        else
        {
            DrawWords(pkSrc, pkDst, kRequest, ubAlpha);  // to ARGB32 nothing is to be converted
        }
    }

    //! Takes samples as they are, the top byte included.
    // KEPT: the top byte of an RGB32 source reaches the destination's alpha. Test: ARotatedRGB32SourceWritesItsTopByte.
    static void RotBlit_Int(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDst, Tov_UInt uiWidth, Tov_UInt uiHeight,
                            Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Value vDstX, Tov_Value vDstY, Tov_Value vAngle,
                            Tov_Flag ulFlags, Tov_Value vStretchX, Tov_Value vStretchY, Tov_Value vRotPosX,
                            Tov_Value vRotPosY, Tov_UByte ubAlpha)
    {
        const Kanvo_RotRequest kRequest{uiWidth, uiHeight, uiSrcX,    uiSrcY,    vDstX,    vDstY,
                                        vAngle,  ulFlags,  vStretchX, vStretchY, vRotPosX, vRotPosY};
        DrawWords(pkSrc, pkDst, kRequest, ubAlpha);
    }

    //! Takes the samples' colour, and leaves out samples that equal the key; filtered ones are compared filtered.
    static void RotBlit_Int_CK(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDst, Tov_UInt uiWidth,
                               Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Value vDstX, Tov_Value vDstY,
                               Tov_Value vAngle, Tov_Flag ulFlags, Tov_Value vStretchX, Tov_Value vStretchY,
                               Tov_Value vRotPosX, Tov_Value vRotPosY, Tov_UByte ubAlpha, Kanvo_Color cColorKey)
    {
        const Kanvo_RotRequest kRequest{uiWidth, uiHeight, uiSrcX,    uiSrcY,    vDstX,    vDstY,
                                        vAngle,  ulFlags,  vStretchX, vStretchY, vRotPosX, vRotPosY};
        Draw(pkSrc, pkDst, kRequest,
             Kanvo_WriteEach{[ubAlpha, cColorKey](DstOffset kDst, SrcPixel px)
                             {
                                 const Kanvo_Color cColor = Src::PixelToColor(px);
                                 if (cColor != cColorKey)
                                 {
                                     Write(kDst, Dst::ColorToPixel(cColor), ubAlpha);
                                 }
                             }});
    }

    //! One colour, with the samples' alpha times ubAlpha as coverage.
    static void RotBlit_IntCol(const Kanvo_Bitmap* pkAlpha, const Kanvo_Bitmap* pkDst, Tov_UInt uiWidth,
                               Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Value vDstX, Tov_Value vDstY,
                               Kanvo_ColorARGB32 cCol, Tov_Value vAngle, Tov_Flag ulFlags, Tov_Value vStretchX,
                               Tov_Value vStretchY, Tov_Value vRotPosX, Tov_Value vRotPosY, Tov_UByte ubAlpha)
    {
        const Kanvo_RotRequest kRequest{uiWidth, uiHeight, uiSrcX,    uiSrcY,    vDstX,    vDstY,
                                        vAngle,  ulFlags,  vStretchX, vStretchY, vRotPosX, vRotPosY};
        Draw(pkAlpha, pkDst, kRequest, Kanvo_WriteColor<Src>(Dst::ColorToPixel(cCol), ubAlpha));
    }

private:
    static KANVO_INLINE void Write(DstOffset kDst, DstPixel px, Tov_UByte ubAlpha)
    {
        if (ubAlpha == 255)
        {
            Dst::PutPixel(kDst, px);
        }
        else
        {
            Dst::BlendPixelSrcAlpha(kDst, px, ubAlpha);
        }
    }

    //! Calls kDraw(first destination pixel, first sample, line of the others, their number, whether there may be sampled
    //! what is drawn) for each row.
    template <class DrawRow>
    static KANVO_INLINE void Rows(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDst,
                                  const Kanvo_RotRequest& kRequest, const Kanvo_SampleLines<Src>& kSampler,
                                  DrawRow kDraw)
    {
        const Kanvo_PixelView kSource{pkSrc->GetBuffer(), pkSrc->GetPitch()};
        const Tov_Bool        bShares = Kanvo_BitmapsOverlap(pkSrc, pkDst);
        Kanvo_RotRows<Dst>(
            pkDst, kRequest,
            [&](DstOffset kDst, const Kanvo_RotRow& k)
            {
                kDraw(kDst, kSampler.One(kSource, static_cast<Tov_UInt>(k.vFirst), static_cast<Tov_UInt>(k.uFirst)),
                      Kanvo_SampleLine{kSource, static_cast<Tov_UInt>(k.v), static_cast<Tov_UInt>(k.u),
                                       static_cast<Tov_UInt>(k.av), static_cast<Tov_UInt>(k.au)},
                      static_cast<Tov_UInt>(k.iRest), bShares);
            });
    }

    template <class Writer>
    static KANVO_INLINE void Draw(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDst,
                                  const Kanvo_RotRequest& kRequest, const Writer& kWriter)
    {
        const Kanvo_SampleLines<Src> kSampler{(kRequest.ulFlags & BLIT_BILINEAR) != 0, false};
        Rows(pkSrc, pkDst, kRequest, kSampler,
             [&](DstOffset kDst, SrcPixel pxFirst, Kanvo_SampleLine kLine, Tov_UInt uiRest, Tov_Bool bShares)
             {
                 // the first pixel is drawn with the others' first strip
                 SrcPixel       aSamples[KANVO_STRIP];
                 const Tov_UInt uiWith = bShares ? 0 : std::min(uiRest, KANVO_STRIP - 1);
                 aSamples[0]           = pxFirst;
                 kSampler(aSamples + 1, kLine, uiWith);
                 kWriter(kDst, aSamples, uiWith + 1);
                 if (uiRest > uiWith)
                 {
                     kLine.Advance(uiWith);
                     Kanvo_DrawSamples(kDst + uiWith + 1, kLine, uiRest - uiWith, kSampler, kWriter);
                 }
             });
    }

    //! Words that share no memory with what is drawn, not filtered: sampled and blended by one function.
    static void DrawNearestOver(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDst, const Kanvo_RotRequest& kRequest,
                                Tov_UByte ubAlpha)
    {
        const Kanvo_PixelView kSource{pkSrc->GetBuffer(), pkSrc->GetPitch()};
        Kanvo_RotRows<Dst>(pkDst, kRequest,
                           [&](DstOffset kDst, const Kanvo_RotRow& k)
                           {
                               g_Kanvo_pkRows->pfnOverSamples(
                                   kDst,
                                   {kSource, static_cast<Tov_UInt>(k.v), static_cast<Tov_UInt>(k.u),
                                    static_cast<Tov_UInt>(k.av), static_cast<Tov_UInt>(k.au)},
                                   static_cast<Tov_UInt>(k.vFirst), static_cast<Tov_UInt>(k.uFirst),
                                   static_cast<Tov_UInt>(k.iRest) + 1, ubAlpha);
                           });
    }

    //! Words as they are: stored, or below full opacity blended.
    static void DrawWords(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDst, const Kanvo_RotRequest& kRequest,
                          Tov_UByte ubAlpha)
    {
        if (ubAlpha != 255)
        {
            if ((kRequest.ulFlags & BLIT_BILINEAR) == 0 && !Kanvo_BitmapsOverlap(pkSrc, pkDst))
            {
                DrawNearestOver(pkSrc, pkDst, kRequest, ubAlpha);
            }
            else
            {
                Draw(pkSrc, pkDst, kRequest, Kanvo_WriteOver{ubAlpha});
            }
            return;
        }
        const Kanvo_SampleLines<Src> kSampler{(kRequest.ulFlags & BLIT_BILINEAR) != 0, false};
        Rows(pkSrc, pkDst, kRequest, kSampler,
             [&](DstOffset kDst, SrcPixel pxFirst, const Kanvo_SampleLine& kLine, Tov_UInt uiRest, Tov_Bool bShares)
             {
                 *kDst = pxFirst;
                 if (bShares && uiRest > 0)
                 {
                     Kanvo_StoreSamples(kDst + 1, kLine, uiRest, kSampler);
                 }
                 else
                 {
                     kSampler(kDst + 1, kLine, uiRest);
                 }
             });
    }
};

//! Rotated blits through an alpha map, which is sampled at the source's positions. Three formats: source, destination, map.
template <class SrcPixel, class SrcOffset, class Src, class DstPixel, class DstOffset, class Dst, class MapPixel,
          class MapOffset, class Map>
class Kanvo_RotBlitAlpha
{
public:
    //! Blends the samples as they are, unconverted, by the map's samples times ubAlpha.
    static void RotBlit_IntAlpha(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkAlpha, const Kanvo_Bitmap* pkDst,
                                 Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Value vDstX,
                                 Tov_Value vDstY, Tov_Value vAngle, Tov_Flag ulFlags, Tov_Value vStretchX,
                                 Tov_Value vStretchY, Tov_Value vRotPosX, Tov_Value vRotPosY, Tov_UByte ubAlpha)
    {
        const Kanvo_RotRequest       kRequest{uiWidth, uiHeight, uiSrcX,    uiSrcY,    vDstX,    vDstY,
                                        vAngle,  ulFlags,  vStretchX, vStretchY, vRotPosX, vRotPosY};
        const Tov_Bool               bBilinear = (ulFlags & BLIT_BILINEAR) != 0;
        const Kanvo_SampleLines<Src> kSampler{bBilinear, false};
        const Kanvo_SampleLines<Map> kMapSampler{bBilinear, false};
        const Kanvo_PixelView        kSource{pkSrc->GetBuffer(), pkSrc->GetPitch()};
        const Kanvo_PixelView        kMap{pkAlpha->GetBuffer(), pkAlpha->GetPitch()};
        Kanvo_RotRows<Dst>(
            pkDst, kRequest,
            [&](DstOffset kDst, const Kanvo_RotRow& k)
            {
                const auto      uiX     = static_cast<Tov_UInt>(k.vFirst);
                const auto      uiY     = static_cast<Tov_UInt>(k.uFirst);
                const SrcPixel  pxSrc   = kSampler.One(kSource, uiX, uiY);
                const Tov_UByte ubCover = Kanvo_MulByte(Map::AlphaFromPixel(kMapSampler.One(kMap, uiX, uiY)), ubAlpha);
                // KEPT: filtered and below full opacity, the first pixel of a row is blended by its own alpha too.
                // Test: TheFirstPixelOfAFilteredRowThroughAMapIsBlendedByItsOwnAlphaToo.
                if (bBilinear && ubAlpha != 255)
                {
                    Dst::BlendPixelSrcAlpha(kDst, pxSrc, ubCover);
                }
                else
                {
                    Dst::BlendPixel(kDst, pxSrc, ubCover);
                }
                if (k.iRest > 0)
                {
                    const Kanvo_SampleLine kLine{kSource, static_cast<Tov_UInt>(k.v), static_cast<Tov_UInt>(k.u),
                                                 static_cast<Tov_UInt>(k.av), static_cast<Tov_UInt>(k.au)};
                    Kanvo_DrawThroughMap<Src, Map>(kDst + 1, kLine, kMap, static_cast<Tov_UInt>(k.iRest), bBilinear,
                                                   ubAlpha, [](SrcPixel px) -> DstPixel { return px; });
                }
            });
    }
};

template <class Src>
using Kanvo_RotToARGB32 = Kanvo_RotBlit<typename Src::Pixel, typename Src::Offset, Src, Kanvo_PixelARGB32,
                                        Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access>;

template <class Src, class Map>
using Kanvo_RotAlphaToARGB32 =
    Kanvo_RotBlitAlpha<typename Src::Pixel, typename Src::Offset, Src, Kanvo_PixelARGB32, Kanvo_OffsetARGB32,
                       Kanvo_PixelARGB32_Access, typename Map::Pixel, typename Map::Offset, Map>;

#endif
