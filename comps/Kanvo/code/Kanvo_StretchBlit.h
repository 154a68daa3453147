// Kanvo_StretchBlit: the portable workers of the scaled blits, plain and through an alpha map. Called by the entries in
// Kanvo_BitmapARGB32_Stretch.cpp; Kanvo_StretchBlitParam brings the geometry, Kanvo_StretchScan walks, Kanvo_Sampler
// reads; here is how a sample is written.
#ifndef KANVO_STRETCHBLIT_H
#define KANVO_STRETCHBLIT_H

#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapRGB32.h"
#include "Kanvo_BitmapRGB565.h"
#include "Kanvo_PixelARGB32_Access.h"
#include "Kanvo_Sampler.h"
#include "Kanvo_StretchScan.h"

//! Where a scaled blit reads and writes, once its geometry is known. Bitmap is Kanvo_Bitmap, or Kanvo_PixelView for the
//! optimised loops, which share the bodies below.
template <class Bitmap>
struct Kanvo_StretchCall
{
    const Bitmap*     pkSrc;
    const Bitmap*     pkDest;
    Kanvo_StretchAxis kX;
    Kanvo_StretchAxis kY;
    Tov_Bool          bBilinear;
};

//! How samples are written, by source format: one member per kind of worker.
template <class Src, class Dst>
class Kanvo_StretchBody
{
public:
    using SrcPixel  = typename Src::Pixel;
    using DstPixel  = typename Dst::Pixel;
    using DstOffset = typename Dst::Offset;

    //! Blends samples by their own alpha times ubAlpha.
    template <class Bitmap>
    static void Over(const Kanvo_StretchCall<Bitmap>& kCall, Tov_UByte ubAlpha)
    {
        const auto kBlend = [ubAlpha](DstOffset kDst, SrcPixel px) { Dst::BlendPixelSrcAlpha(kDst, px, ubAlpha); };
        if (kCall.bBilinear)
        {
            Draw(kCall, Kanvo_SampleBilinear<Src>{}, kBlend);
        }
        else
        {
            Draw(kCall, Kanvo_SampleNearest<Src>{}, kBlend);
        }
    }

    //! A source with its own alpha: copied at full opacity, blended below.
    template <class Bitmap>
    static void Int(const Kanvo_StretchCall<Bitmap>& kCall, Tov_UByte ubAlpha)
    {
        const auto kStore = [](DstOffset kDst, SrcPixel px) { Dst::PutPixel(kDst, px); };
        if (ubAlpha != 255)
        {
            Over(kCall, ubAlpha);
        }
        else if (kCall.bBilinear)
        {
            Draw(kCall, Kanvo_SampleBilinear<Src>{}, kStore);
        }
        else
        {
            Draw(kCall, Kanvo_SampleNearest<Src>{}, kStore);
        }
    }

    //! As Int, without the key's colour.
    // KEPT: a keyed and filtered ARGB32 sample is blended by its own alpha at full opacity too, where the unkeyed one is
    // copied. Test: AKeyedBilinearARGB32StretchBlendsAtFullOpacity.
    template <class Bitmap>
    static void IntKeyed(const Kanvo_StretchCall<Bitmap>& kCall, Tov_UByte ubAlpha, Kanvo_Color cColorKey)
    {
        const auto kBlend      = [ubAlpha](DstOffset kDst, SrcPixel px) { Dst::BlendPixelSrcAlpha(kDst, px, ubAlpha); };
        const Kanvo_Color cKey = Src::ColorToPixel(cColorKey);
        if (kCall.bBilinear)
        {
            Draw(kCall, Kanvo_SampleBilinearKeyed<Src>{cKey}, kBlend);
        }
        else if (ubAlpha != 255)
        {
            Draw(kCall, Kanvo_SampleNearestKeyed<Src>{cKey}, kBlend);
        }
        else
        {
            Draw(kCall, Kanvo_SampleNearestKeyed<Src>{cColorKey},
                 [](DstOffset kDst, SrcPixel px) { Dst::PutPixel(kDst, px); });
        }
    }

    //! A source converted through red, green and blue. Nearest samples become opaque; filtered ones keep their alpha.
    template <class Bitmap>
    static void RGB(const Kanvo_StretchCall<Bitmap>& kCall, Tov_UByte ubAlpha)
    {
        if (kCall.bBilinear && ubAlpha != 255)
        {
            Draw(kCall, Kanvo_SampleBilinear<Src>{},
                 [ubAlpha](DstOffset kDst, SrcPixel px)
                 { Dst::BlendPixelSrcAlpha(kDst, ConvertWithAlpha(px), ubAlpha); });
        }
        else if (kCall.bBilinear)
        {
            Draw(kCall, Kanvo_SampleBilinear<Src>{}, StoreFiltered);
        }
        else
        {
            DrawNearestRGB(kCall, Kanvo_SampleNearest<Src>{}, ubAlpha);
        }
    }

    //! As RGB, without the key's colour.
    // KEPT: below full opacity a keyed and filtered sample is blended by ubAlpha alone, where the unkeyed one is blended by
    // its own alpha as well. Test: AKeyedBilinearConvertedStretchIgnoresTheSamplesAlpha.
    template <class Bitmap>
    static void RGBKeyed(const Kanvo_StretchCall<Bitmap>& kCall, Tov_UByte ubAlpha, Kanvo_Color cColorKey)
    {
        const Kanvo_SampleBilinearKeyed<Src> kFiltered{Src::ColorToPixel(cColorKey)};
        if (kCall.bBilinear && ubAlpha != 255)
        {
            Draw(kCall, kFiltered,
                 [ubAlpha](DstOffset kDst, SrcPixel px) { Dst::BlendPixel(kDst, ConvertWithAlpha(px), ubAlpha); });
        }
        else if (kCall.bBilinear)
        {
            Draw(kCall, kFiltered, StoreFiltered);
        }
        else
        {
            DrawNearestRGB(kCall, Kanvo_SampleNearestKeyed<Src>{cColorKey}, ubAlpha);
        }
    }

    //! One colour, with the samples' alpha times ubAlpha as coverage.
    // KEPT: only the filtered map at full opacity blends by the colour's own alpha too.
    // Test: AColourThroughAFilteredMapAtFullOpacityIsWeightedByItsOwnAlpha.
    template <class Bitmap>
    static void IntCol(const Kanvo_StretchCall<Bitmap>& kCall, Kanvo_Color clColor, Tov_UByte ubAlpha)
    {
        const DstPixel pxColor = Dst::ColorToPixel(clColor);
        const auto     kBlend  = [pxColor, ubAlpha](DstOffset kDst, SrcPixel px)
        { Dst::BlendPixel(kDst, pxColor, Kanvo_MulByte(Src::AlphaFromPixel(px), ubAlpha)); };
        if (!kCall.bBilinear)
        {
            Draw(kCall, Kanvo_SampleNearest<Src>{}, kBlend);
        }
        else if (ubAlpha != 255)
        {
            Draw(kCall, Kanvo_SampleBilinear<Src>{}, kBlend);
        }
        else
        {
            Draw(kCall, Kanvo_SampleBilinear<Src>{},
                 [pxColor](DstOffset kDst, SrcPixel px)
                 { Dst::BlendPixelSrcAlpha(kDst, pxColor, Src::AlphaFromPixel(px)); });
        }
    }

private:
    template <class Bitmap, class Sampler, class Writer>
    static KANVO_INLINE void Draw(const Kanvo_StretchCall<Bitmap>& kCall, Sampler kSampler, Writer kWriter)
    {
        const Bitmap* const pkSrc = kCall.pkSrc;
        Kanvo_StretchScan<Src, Dst>(pkSrc, kCall.pkDest, kCall.kX, kCall.kY,
                                    [=](typename Src::Offset kSrc, DstOffset kDst, Tov_UByte ubFracX, Tov_UByte ubFracY)
                                    {
                                        SrcPixel px;
                                        if (kSampler(pkSrc, kSrc, ubFracX, ubFracY, px))
                                        {
                                            kWriter(kDst, px);
                                        }
                                    });
    }

    template <class Bitmap, class Sampler>
    static KANVO_INLINE void DrawNearestRGB(const Kanvo_StretchCall<Bitmap>& kCall, Sampler kSampler, Tov_UByte ubAlpha)
    {
        if (ubAlpha != 255)
        {
            Draw(kCall, kSampler,
                 [ubAlpha](DstOffset kDst, SrcPixel px) { Dst::BlendPixel(kDst, ConvertOpaque(px), ubAlpha); });
        }
        else
        {
            Draw(kCall, kSampler, [](DstOffset kDst, SrcPixel px) { Dst::PutPixel(kDst, ConvertOpaque(px)); });
        }
    }

    static KANVO_INLINE void StoreFiltered(DstOffset kDst, SrcPixel px) { Dst::PutPixel(kDst, ConvertWithAlpha(px)); }

    static KANVO_INLINE DstPixel ConvertOpaque(SrcPixel px)
    {
        return Dst::PixelFromRGB(Src::RedFromPixel(px), Src::GreenFromPixel(px), Src::BlueFromPixel(px));
    }

    static KANVO_INLINE DstPixel ConvertWithAlpha(SrcPixel px)
    {
        return Dst::ColorAndAlphaToPixel(Dst::PixelToColor(ConvertOpaque(px)), Src::AlphaFromPixel(px));
    }
};

//! Static methods over a source and a destination format, each given as pixel type, pointer type and access policy. All
//! take the rectangles as the caller gave them; flags are DrawBlit_Flags.
template <class SrcPixel, class SrcOffset, class Src, class DstPixel, class DstOffset, class Dst>
class Kanvo_StretchBlit
{
public:
    using Body = Kanvo_StretchBody<Src, Dst>;

    //! A source with its own alpha; with BLIT_COLORKEY without the key's colour.
    static void StretchBlit_Int(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDest, Tov_UInt uiSrcWidth,
                                Tov_UInt uiSrcHeight, Tov_Int iSrcX, Tov_Int iSrcY, Tov_UInt uiDstWidth,
                                Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags, Tov_UByte ubAlpha,
                                Kanvo_Color cColorKey)
    {
        const auto pfnBlit = (ulFlags & BLIT_COLORKEY) != 0 ? &StretchBlit_Int<true> : &StretchBlit_Int<false>;
        pfnBlit(pkSrc, pkDest, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY, uiDstWidth, uiDstHeight, iDstX, iDstY, ulFlags,
                ubAlpha, cColorKey);
    }

    template <bool KEYED>
    static void StretchBlit_Int(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDest, Tov_UInt uiSrcWidth,
                                Tov_UInt uiSrcHeight, Tov_Int iSrcX, Tov_Int iSrcY, Tov_UInt uiDstWidth,
                                Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags, Tov_UByte ubAlpha,
                                Kanvo_Color cColorKey)
    {
        Kanvo_StretchCall<Kanvo_Bitmap> kCall{pkSrc, pkDest, {}, {}, (ulFlags & BLIT_BILINEAR) != 0};
        if (!Calc(kCall, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY, uiDstWidth, uiDstHeight, iDstX, iDstY, ulFlags))
        {
            return;
        }
        if constexpr (KEYED)
        {
            Body::IntKeyed(kCall, ubAlpha, cColorKey);
        }
        else
        {
            Body::Int(kCall, ubAlpha);
        }
    }

    //! A source converted through red, green and blue; with BLIT_COLORKEY without the key's colour.
    static void StretchBlit_RGB(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDest, Tov_UInt uiSrcWidth,
                                Tov_UInt uiSrcHeight, Tov_Int iSrcX, Tov_Int iSrcY, Tov_UInt uiDstWidth,
                                Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags, Tov_UByte ubAlpha,
                                Kanvo_Color cColorKey)
    {
        const auto pfnBlit = (ulFlags & BLIT_COLORKEY) != 0 ? &StretchBlit_RGB<true> : &StretchBlit_RGB<false>;
        pfnBlit(pkSrc, pkDest, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY, uiDstWidth, uiDstHeight, iDstX, iDstY, ulFlags,
                ubAlpha, cColorKey);
    }

    template <bool KEYED>
    static void StretchBlit_RGB(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDest, Tov_UInt uiSrcWidth,
                                Tov_UInt uiSrcHeight, Tov_Int iSrcX, Tov_Int iSrcY, Tov_UInt uiDstWidth,
                                Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags, Tov_UByte ubAlpha,
                                Kanvo_Color cColorKey)
    {
        Kanvo_StretchCall<Kanvo_Bitmap> kCall{pkSrc, pkDest, {}, {}, (ulFlags & BLIT_BILINEAR) != 0};
        if (!Calc(kCall, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY, uiDstWidth, uiDstHeight, iDstX, iDstY, ulFlags))
        {
            return;
        }
        if constexpr (KEYED)
        {
            Body::RGBKeyed(kCall, ubAlpha, cColorKey);
        }
        else
        {
            Body::RGB(kCall, ubAlpha);
        }
    }

    //! pkSrc is an alpha map.
    static void StretchBlit_IntCol(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDest, Tov_UInt uiSrcWidth,
                                   Tov_UInt uiSrcHeight, Tov_Int iSrcX, Tov_Int iSrcY, Tov_UInt uiDstWidth,
                                   Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY, Kanvo_Color clColor,
                                   Tov_Flag ulFlags, Tov_UByte ubAlpha)
    {
        Kanvo_StretchCall<Kanvo_Bitmap> kCall{pkSrc, pkDest, {}, {}, (ulFlags & BLIT_BILINEAR) != 0};
        if (Calc(kCall, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY, uiDstWidth, uiDstHeight, iDstX, iDstY, ulFlags))
        {
            Body::IntCol(kCall, clColor, ubAlpha);
        }
    }

private:
    static Tov_Bool Calc(Kanvo_StretchCall<Kanvo_Bitmap>& kCall, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight,
                         Tov_Int iSrcX, Tov_Int iSrcY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX,
                         Tov_Int iDstY, Tov_Flag ulFlags)
    {
        return Kanvo_StretchBlitParam::Calc(kCall.pkSrc, nullptr, kCall.pkDest, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY,
                                            uiDstWidth, uiDstHeight, iDstX, iDstY, ulFlags, kCall.kX, kCall.kY);
    }
};

//! Scaled blits through an alpha map, which is sampled at the source's positions. Three formats: source, destination, map.
template <class SrcPixel, class SrcOffset, class Src, class DstPixel, class DstOffset, class Dst, class MapPixel,
          class MapOffset, class Map>
class Kanvo_StretchBlitAlpha
{
public:
    //! Blends the samples as they are by the map's samples times ubAlpha.
    static void StretchBlit_IntAlpha(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkAlpha, const Kanvo_Bitmap* pkDest,
                                     Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight, Tov_Int iSrcX, Tov_Int iSrcY,
                                     Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY,
                                     Tov_Flag ulFlags, Tov_UByte ubAlpha)
    {
        Draw(pkSrc, pkAlpha, pkDest, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY, uiDstWidth, uiDstHeight, iDstX, iDstY,
             ulFlags, ubAlpha, [](SrcPixel px) -> DstPixel { return px; });
    }

    //! Blends the samples, converted through red, green and blue.
    static void StretchBlit_RGBAlpha(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkAlpha, const Kanvo_Bitmap* pkDest,
                                     Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight, Tov_Int iSrcX, Tov_Int iSrcY,
                                     Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY,
                                     Tov_Flag ulFlags, Tov_UByte ubAlpha)
    {
        Draw(pkSrc, pkAlpha, pkDest, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY, uiDstWidth, uiDstHeight, iDstX, iDstY,
             ulFlags, ubAlpha,
             [](SrcPixel px) -> DstPixel
             { return Dst::PixelFromRGB(Src::RedFromPixel(px), Src::GreenFromPixel(px), Src::BlueFromPixel(px)); });
    }

private:
    using Pair = Kanvo_PixelAndMap<Src, Map>;

    template <class Convert>
    static KANVO_INLINE void Draw(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkAlpha, const Kanvo_Bitmap* pkDest,
                                  Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight, Tov_Int iSrcX, Tov_Int iSrcY,
                                  Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY,
                                  Tov_Flag ulFlags, Tov_UByte ubAlpha, Convert kConvert)
    {
        Kanvo_StretchAxis kX{};
        Kanvo_StretchAxis kY{};
        if (!Kanvo_StretchBlitParam::Calc(pkSrc, pkAlpha, pkDest, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY, uiDstWidth,
                                          uiDstHeight, iDstX, iDstY, ulFlags, kX, kY))
        {
            return;
        }
        const Kanvo_BitmapAndMap kBoth{pkSrc, pkAlpha};
        if ((ulFlags & BLIT_BILINEAR) != 0)
        {
            Scan(kBoth, pkDest, kX, kY, ubAlpha, Kanvo_SampleBilinear<Src>{}, Kanvo_SampleBilinear<Map>{}, kConvert);
        }
        else
        {
            Scan(kBoth, pkDest, kX, kY, ubAlpha, Kanvo_SampleNearest<Src>{}, Kanvo_SampleNearest<Map>{}, kConvert);
        }
    }

    template <class SrcSampler, class MapSampler, class Convert>
    static KANVO_INLINE void Scan(const Kanvo_BitmapAndMap& kBoth, const Kanvo_Bitmap* pkDest,
                                  const Kanvo_StretchAxis& kX, const Kanvo_StretchAxis& kY, Tov_UByte ubAlpha,
                                  SrcSampler kSrcSampler, MapSampler kMapSampler, Convert kConvert)
    {
        Kanvo_StretchScan<Pair, Dst>(
            &kBoth, pkDest, kX, kY,
            [=](const typename Pair::Offset& kFrom, DstOffset kDst, Tov_UByte ubFracX, Tov_UByte ubFracY)
            {
                SrcPixel pxSrc;
                MapPixel pxMap;
                kSrcSampler(kBoth.pkBitmap, kFrom.kSrc, ubFracX, ubFracY, pxSrc);
                kMapSampler(kBoth.pkMap, kFrom.kMap, ubFracX, ubFracY, pxMap);
                Dst::BlendPixel(kDst, kConvert(pxSrc), Kanvo_MulByte(Map::AlphaFromPixel(pxMap), ubAlpha));
            });
    }
};

template <class Src>
using Kanvo_StretchToARGB32 = Kanvo_StretchBlit<typename Src::Pixel, typename Src::Offset, Src, Kanvo_PixelARGB32,
                                                Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access>;

template <class Src, class Map>
using Kanvo_StretchAlphaToARGB32 =
    Kanvo_StretchBlitAlpha<typename Src::Pixel, typename Src::Offset, Src, Kanvo_PixelARGB32, Kanvo_OffsetARGB32,
                           Kanvo_PixelARGB32_Access, typename Map::Pixel, typename Map::Offset, Map>;

#endif
