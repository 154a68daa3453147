// Kanvo_RotBlit: the workers of the rotated blits, plain and through an alpha map. Called by the entries in
// Kanvo_BitmapARGB32_Rot.cpp; Kanvo_RotScan walks, Kanvo_Sampler reads; here is how a sample is written.
#ifndef KANVO_ROTBLIT_H
#define KANVO_ROTBLIT_H

#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapRGB32.h"
#include "Kanvo_BitmapRGB565.h"
#include "Kanvo_PixelARGB32_Access.h"
#include "Kanvo_RotScan.h"
#include "Kanvo_Sampler.h"

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
        Draw(pkSrc, pkDst, kRequest,
             [ubAlpha](DstOffset kDst, SrcPixel px)
             {
                 const DstPixel pxOpaque =
                     Dst::PixelFromRGB(Src::RedFromPixel(px), Src::GreenFromPixel(px), Src::BlueFromPixel(px));
                 Write(kDst, Dst::ColorAndAlphaToPixel(Dst::PixelToColor(pxOpaque), Src::AlphaFromPixel(px)), ubAlpha);
             });
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
        Draw(pkSrc, pkDst, kRequest, [ubAlpha](DstOffset kDst, SrcPixel px) { Write(kDst, px, ubAlpha); });
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
             [ubAlpha, cColorKey](DstOffset kDst, SrcPixel px)
             {
                 const Kanvo_Color cColor = Src::PixelToColor(px);
                 if (cColor != cColorKey)
                 {
                     Write(kDst, Dst::ColorToPixel(cColor), ubAlpha);
                 }
             });
    }

    //! One colour, with the samples' alpha times ubAlpha as coverage.
    static void RotBlit_IntCol(const Kanvo_Bitmap* pkAlpha, const Kanvo_Bitmap* pkDst, Tov_UInt uiWidth,
                               Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Value vDstX, Tov_Value vDstY,
                               Kanvo_ColorARGB32 cCol, Tov_Value vAngle, Tov_Flag ulFlags, Tov_Value vStretchX,
                               Tov_Value vStretchY, Tov_Value vRotPosX, Tov_Value vRotPosY, Tov_UByte ubAlpha)
    {
        const Kanvo_RotRequest kRequest{uiWidth, uiHeight, uiSrcX,    uiSrcY,    vDstX,    vDstY,
                                        vAngle,  ulFlags,  vStretchX, vStretchY, vRotPosX, vRotPosY};
        const DstPixel         pxColor = Dst::ColorToPixel(cCol);
        Draw(pkAlpha, pkDst, kRequest,
             [ubAlpha, pxColor](DstOffset kDst, SrcPixel px)
             { Dst::BlendPixel(kDst, pxColor, Kanvo_MulByte(Src::AlphaFromPixel(px), ubAlpha)); });
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

    template <class Writer>
    static KANVO_INLINE void Draw(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDst,
                                  const Kanvo_RotRequest& kRequest, Writer kWriter)
    {
        if ((kRequest.ulFlags & BLIT_BILINEAR) != 0)
        {
            Scan(pkSrc, pkDst, kRequest, Kanvo_SampleBilinear<Src>{}, kWriter);
        }
        else
        {
            Scan(pkSrc, pkDst, kRequest, Kanvo_SampleNearest<Src>{}, kWriter);
        }
    }

    template <class Sampler, class Writer>
    static KANVO_INLINE void Scan(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDst,
                                  const Kanvo_RotRequest& kRequest, Sampler kSampler, Writer kWriter)
    {
        Kanvo_RotScan<Src, Dst>(
            pkSrc, pkDst, kRequest,
            [=](SrcOffset kSrc, DstOffset kDst, Tov_UByte ubFracV, Tov_UByte ubFracU, Tov_Bool /*bFirst*/)
            {
                SrcPixel px;
                kSampler(pkSrc, kSrc, ubFracV, ubFracU, px);
                kWriter(kDst, px);
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
        const Kanvo_RotRequest   kRequest{uiWidth, uiHeight, uiSrcX,    uiSrcY,    vDstX,    vDstY,
                                        vAngle,  ulFlags,  vStretchX, vStretchY, vRotPosX, vRotPosY};
        const Kanvo_BitmapAndMap kBoth{pkSrc, pkAlpha};
        if ((kRequest.ulFlags & BLIT_BILINEAR) != 0)
        {
            // KEPT: filtered and below full opacity, the first pixel of a row is blended by its own alpha too.
            // Test: TheFirstPixelOfAFilteredRowThroughAMapIsBlendedByItsOwnAlphaToo.
            Scan(kBoth, pkDst, kRequest, ubAlpha, Kanvo_SampleBilinear<Src>{}, Kanvo_SampleBilinear<Map>{},
                 ubAlpha != 255);
        }
        else
        {
            Scan(kBoth, pkDst, kRequest, ubAlpha, Kanvo_SampleNearest<Src>{}, Kanvo_SampleNearest<Map>{}, false);
        }
    }

private:
    using Pair = Kanvo_PixelAndMap<Src, Map>;

    template <class SrcSampler, class MapSampler>
    static KANVO_INLINE void Scan(const Kanvo_BitmapAndMap& kBoth, const Kanvo_Bitmap* pkDst,
                                  const Kanvo_RotRequest& kRequest, Tov_UByte ubAlpha, SrcSampler kSrcSampler,
                                  MapSampler kMapSampler, Tov_Bool bFirstByOwnAlpha)
    {
        Kanvo_RotScan<Pair, Dst>(&kBoth, pkDst, kRequest,
                                 [=](const typename Pair::Offset& kFrom, DstOffset kDst, Tov_UByte ubFracV,
                                     Tov_UByte ubFracU, Tov_Bool bFirst)
                                 {
                                     SrcPixel pxSrc;
                                     MapPixel pxMap;
                                     kSrcSampler(kBoth.pkBitmap, kFrom.kSrc, ubFracV, ubFracU, pxSrc);
                                     kMapSampler(kBoth.pkMap, kFrom.kMap, ubFracV, ubFracU, pxMap);
                                     const Tov_UByte ubCover = Kanvo_MulByte(Map::AlphaFromPixel(pxMap), ubAlpha);
                                     if (bFirst && bFirstByOwnAlpha)
                                     {
                                         Dst::BlendPixelSrcAlpha(kDst, pxSrc, ubCover);
                                     }
                                     else
                                     {
                                         Dst::BlendPixel(kDst, pxSrc, ubCover);
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
