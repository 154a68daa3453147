// Kanvo_StretchBlit: the portable workers of the scaled blits, plain and through an alpha map. Called by the entries in
// Kanvo_BitmapARGB32_Stretch.cpp; Kanvo_StretchBlitParam brings the geometry, Kanvo_StretchScan walks, Kanvo_SampleStrips
// draws rows of samples. Where a colour key may deny some, Kanvo_Sampler reads them one by one.
#ifndef KANVO_STRETCHBLIT_H
#define KANVO_STRETCHBLIT_H

#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapRGB32.h"
#include "Kanvo_BitmapRGB565.h"
#include "Kanvo_PixelARGB32_Access.h"
#include "Kanvo_Sampler.h"
#include "Kanvo_SampleStrips.h"
#include "Kanvo_StretchScan.h"

//! Where a scaled blit reads and writes, once its geometry is known.
struct Kanvo_StretchCall
{
    Kanvo_PixelView   kSrc;
    Kanvo_PixelView   kDest;
    Kanvo_StretchAxis kX;
    Kanvo_StretchAxis kY;
    Tov_Bool          bBilinear;

    //! False where nothing is to be drawn.
    Tov_Bool Prepare(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkDest, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight,
                     Tov_Int iSrcX, Tov_Int iSrcY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX,
                     Tov_Int iDstY, Tov_Flag ulFlags)
    {
        kSrc      = {pkSrc->GetBuffer(), pkSrc->GetPitch()};
        kDest     = {pkDest->GetBuffer(), pkDest->GetPitch()};
        bBilinear = (ulFlags & BLIT_BILINEAR) != 0;
        return Kanvo_StretchBlitParam::Calc(pkSrc, nullptr, pkDest, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY, uiDstWidth,
                                            uiDstHeight, iDstX, iDstY, ulFlags, kX, kY);
    }
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
    static void Over(const Kanvo_StretchCall& kCall, Tov_UByte ubAlpha) { DrawWords(kCall, ubAlpha, false); }

    //! A source with its own alpha: copied at full opacity, blended below.
    static void Int(const Kanvo_StretchCall& kCall, Tov_UByte ubAlpha)
    {
        if (ubAlpha != 255)
        {
            Over(kCall, ubAlpha);
        }
        else
        {
            StoreWords(kCall, false);
        }
    }

    //! As Int, without the key's colour.
    // KEPT: a keyed and filtered ARGB32 sample is blended by its own alpha at full opacity too, where the unkeyed one is
    // copied. Test: AKeyedBilinearARGB32StretchBlendsAtFullOpacity.
    static void IntKeyed(const Kanvo_StretchCall& kCall, Tov_UByte ubAlpha, Kanvo_Color cColorKey)
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
    static void RGB(const Kanvo_StretchCall& kCall, Tov_UByte ubAlpha)
    {
        if constexpr (std::is_same_v<SrcPixel, Kanvo_PixelRGB565>)
        {
            StoreOrBlend(kCall, ubAlpha, Kanvo_Write565{ubAlpha});
        }
        else if constexpr (std::is_same_v<SrcPixel, Kanvo_PixelA8>)
        {
            StoreOrBlend(kCall, ubAlpha, Kanvo_WriteGrey{ubAlpha, !kCall.bBilinear});
        }
        else if (ubAlpha != 255)
        {
            DrawWords(kCall, ubAlpha, !kCall.bBilinear);
        }
        else
        {
            StoreWords(kCall, !kCall.bBilinear);
        }
    }

    //! As RGB, without the key's colour.
    // KEPT: below full opacity a keyed and filtered sample is blended by ubAlpha alone, where the unkeyed one is blended by
    // its own alpha as well. Test: AKeyedBilinearConvertedStretchIgnoresTheSamplesAlpha.
    static void RGBKeyed(const Kanvo_StretchCall& kCall, Tov_UByte ubAlpha, Kanvo_Color cColorKey)
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
    static void IntCol(const Kanvo_StretchCall& kCall, Kanvo_Color clColor, Tov_UByte ubAlpha)
    {
        const DstPixel pxColor = Dst::ColorToPixel(clColor);
        if (kCall.bBilinear && ubAlpha == 255 && Dst::AlphaFromPixel(pxColor) != 255)
        {
            DrawSamples(kCall, Kanvo_WriteEach{[pxColor](DstOffset kDst, SrcPixel px)
                                               { Dst::BlendPixelSrcAlpha(kDst, pxColor, Src::AlphaFromPixel(px)); }});
        }
        else
        {
            DrawSamples(kCall, Kanvo_WriteColor<Src>(pxColor, ubAlpha));  // of an opaque colour it is the same
        }
    }

private:
    //! Calls kRow(first destination pixel, sample line, samples) for each row.
    template <class Row>
    static KANVO_INLINE void Rows(const Kanvo_StretchCall& kCall, Row kRow)
    {
        const auto uiX    = static_cast<Tov_UInt>(kCall.kX.fxSrcFirst);
        const auto uiStep = static_cast<Tov_UInt>(kCall.kX.fxStep);
        Kanvo_StretchRows<Dst>(
            &kCall.kDest, kCall.kX, kCall.kY,
            [&](DstOffset kDst, Tov_UInt uiY) {
                kRow(kDst, Kanvo_SampleLine{kCall.kSrc, uiX, uiY, uiStep, 0}, static_cast<Tov_UInt>(kCall.kX.iCount));
            });
    }

    template <class Writer>
    static KANVO_INLINE void DrawSamples(const Kanvo_StretchCall& kCall, const Writer& kWriter,
                                         Tov_Bool bOpaque = false)
    {
        const Kanvo_SampleLines<Src> kSampler{kCall.bBilinear, bOpaque};
        Rows(kCall, [&](DstOffset kDst, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
             { Kanvo_DrawSamples(kDst, kLine, uiCount, kSampler, kWriter); });
    }

    //! Rows that do not depend on what they are drawn over: one that shows the same source row as the one above is a copy
    //! of it. kStore(first destination pixel, sample line, samples) draws one.
    template <class Store>
    static KANVO_INLINE void StoreRows(const Kanvo_StretchCall& kCall, const Kanvo_SampleLines<Src>& kSampler,
                                       Store kStore)
    {
        DstOffset kAbove   = nullptr;  // the row above, unless drawing it may have changed the source
        Tov_UInt  uiYAbove = 0;
        Rows(kCall,
             [&](DstOffset kDst, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
             {
                 const Tov_UInt uiY     = kCall.bBilinear ? kLine.uiY : kLine.uiY >> 16;
                 const Tov_Bool bShares = kSampler.Shares(kLine, uiCount, kDst);
                 if (kAbove != nullptr && uiY == uiYAbove && !bShares)
                 {
                     g_Kanvo_pkRows->pfnCopy(kDst, kAbove, uiCount);
                 }
                 else
                 {
                     kStore(kDst, kLine, uiCount);
                 }
                 kAbove   = bShares ? nullptr : kDst;
                 uiYAbove = uiY;
             });
    }

    //! Whether a word source is filtered and magnified from top to bottom, and shares no memory with what is drawn.
    static Tov_Bool IsMagnified(const Kanvo_StretchCall& kCall)
    {
        const Kanvo_StretchAxis& kX = kCall.kX;
        const Kanvo_StretchAxis& kY = kCall.kY;
        if (!kCall.bBilinear || kY.fxStep >= 0x10000)
        {
            return false;
        }
        const auto kLast = [](const Kanvo_StretchAxis& k)
        {
            return (static_cast<Tov_UInt>(k.fxSrcFirst) +
                    (static_cast<Tov_UInt>(k.iCount) - 1) * static_cast<Tov_UInt>(k.fxStep)) >>
                   16;
        };
        typename Src::Offset kSrcFirst;
        typename Src::Offset kSrcLast;
        DstOffset            kDstFirst;
        DstOffset            kDstLast;
        Src::GetOffset(&kCall.kSrc, static_cast<Tov_UInt>(kX.fxSrcFirst) >> 16,
                       static_cast<Tov_UInt>(kY.fxSrcFirst) >> 16, kSrcFirst);
        Src::GetOffset(&kCall.kSrc, kLast(kX) + 1, kLast(kY) + 1, kSrcLast);
        Dst::GetOffset(&kCall.kDest, static_cast<Tov_UInt>(kX.iDstFirst), static_cast<Tov_UInt>(kY.iDstFirst),
                       kDstFirst);
        Dst::GetOffset(&kCall.kDest, static_cast<Tov_UInt>(kX.iDstFirst + kX.iCount - 1),
                       static_cast<Tov_UInt>(kY.iDstFirst + kY.iCount - 1), kDstLast);
        return reinterpret_cast<std::uintptr_t>(kSrcLast) < reinterpret_cast<std::uintptr_t>(kDstFirst) ||
               reinterpret_cast<std::uintptr_t>(kDstLast) < reinterpret_cast<std::uintptr_t>(kSrcFirst);
    }

    //! Draws such a source by columns of half a strip, in which each source row is mixed along once. kDraw(first
    //! destination pixel, mixes of upper row, of lower row, samples, fraction y) mixes between the rows.
    template <class DrawMix>
    static KANVO_INLINE void Magnify(const Kanvo_StretchCall& kCall, DrawMix kDraw)
    {
        constexpr Tov_Int iWidest = KANVO_STRIP;
        Kanvo_PixelARGB32 aaMixed[2][iWidest];  // of an even and of an odd source row
        Kanvo_StretchCall kColumn = kCall;
        const Tov_Int     iEnd    = kCall.kX.iDstFirst + kCall.kX.iCount;
        for (; kColumn.kX.iDstFirst < iEnd; kColumn.kX.iDstFirst += iWidest)
        {
            Tov_UInt auiRow[2] = {~0U, ~0U};  // which those are
            kColumn.kX.iCount  = std::min(iWidest, iEnd - kColumn.kX.iDstFirst);
            Rows(kColumn,
                 [&](DstOffset kDst, Kanvo_SampleLine kLine, Tov_UInt uiCount)
                 {
                     const Tov_UInt uiTop   = kLine.uiY >> 16;
                     const auto     ubFracY = static_cast<Tov_UByte>(kLine.uiY >> 8);
                     for (Tov_UInt uiRow = uiTop; uiRow <= uiTop + 1; ++uiRow)
                     {
                         if (auiRow[uiRow & 1U] != uiRow)
                         {
                             auiRow[uiRow & 1U] = uiRow;
                             kLine.uiY          = uiRow << 16;
                             g_Kanvo_pkScaledRows->pfnMixAlong(aaMixed[uiRow & 1U], kLine, uiCount);
                         }
                     }
                     kDraw(kDst, aaMixed[uiTop & 1U], aaMixed[(uiTop + 1) & 1U], uiCount, ubFracY);
                 });
            kColumn.kX.fxSrcFirst =
                static_cast<Tov_Fixed>(static_cast<Tov_UInt>(kColumn.kX.fxSrcFirst) +
                                       static_cast<Tov_UInt>(iWidest) * static_cast<Tov_UInt>(kColumn.kX.fxStep));
        }
    }

    //! Words, blended by their own alpha times ubAlpha.
    static void DrawWords(const Kanvo_StretchCall& kCall, Tov_UByte ubAlpha, Tov_Bool bOpaque)
    {
        if (!IsMagnified(kCall))
        {
            DrawSamples(kCall, Kanvo_WriteOver{ubAlpha}, bOpaque);
            return;
        }
        Magnify(kCall,
                [ubAlpha](DstOffset kDst, const Kanvo_PixelARGB32* kTop, const Kanvo_PixelARGB32* kBottom,
                          Tov_UInt uiCount, Tov_UByte ubFracY)
                {
                    Kanvo_PixelARGB32 aSamples[KANVO_STRIP];
                    g_Kanvo_pkScaledRows->pfnMixBetween(aSamples, kTop, kBottom, uiCount, ubFracY,
                                                        Kanvo_SampleLines<Src>::KEPT_BITS);
                    g_Kanvo_pkRows->pfnOver(kDst, aSamples, uiCount, ubAlpha);
                });
    }

    static void StoreWords(const Kanvo_StretchCall& kCall, Tov_Bool bOpaque)
    {
        if (IsMagnified(kCall))
        {
            Magnify(kCall,
                    [](DstOffset kDst, const Kanvo_PixelARGB32* kTop, const Kanvo_PixelARGB32* kBottom,
                       Tov_UInt uiCount, Tov_UByte ubFracY) {
                        g_Kanvo_pkScaledRows->pfnMixBetween(kDst, kTop, kBottom, uiCount, ubFracY,
                                                            Kanvo_SampleLines<Src>::KEPT_BITS);
                    });
            return;
        }
        const Kanvo_SampleLines<Src> kSampler{kCall.bBilinear, bOpaque};
        StoreRows(kCall, kSampler,
                  [&](DstOffset kDst, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
                  { Kanvo_StoreSamples(kDst, kLine, uiCount, kSampler); });
    }

    //! A writer that stores at full opacity.
    template <class Writer>
    static KANVO_INLINE void StoreOrBlend(const Kanvo_StretchCall& kCall, Tov_UByte ubAlpha, const Writer& kWriter)
    {
        const Kanvo_SampleLines<Src> kSampler{kCall.bBilinear, false};
        const auto                   kDraw = [&](DstOffset kDst, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
        { Kanvo_DrawSamples(kDst, kLine, uiCount, kSampler, kWriter); };
        if (ubAlpha != 255)
        {
            Rows(kCall, kDraw);
        }
        else
        {
            StoreRows(kCall, kSampler, kDraw);
        }
    }

    //! Pixel by pixel, for samplers that may have no sample.
    template <class Sampler, class Writer>
    static KANVO_INLINE void Draw(const Kanvo_StretchCall& kCall, Sampler kSampler, Writer kWriter)
    {
        const Kanvo_PixelView* const pkSrc = &kCall.kSrc;
        Kanvo_StretchScan<Src, Dst>(pkSrc, &kCall.kDest, kCall.kX, kCall.kY,
                                    [=](typename Src::Offset kSrc, DstOffset kDst, Tov_UByte ubFracX, Tov_UByte ubFracY)
                                    {
                                        SrcPixel px;
                                        if (kSampler(pkSrc, kSrc, ubFracX, ubFracY, px))
                                        {
                                            kWriter(kDst, px);
                                        }
                                    });
    }

    template <class Sampler>
    static KANVO_INLINE void DrawNearestRGB(const Kanvo_StretchCall& kCall, Sampler kSampler, Tov_UByte ubAlpha)
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
        Kanvo_StretchCall kCall{};
        if (!kCall.Prepare(pkSrc, pkDest, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY, uiDstWidth, uiDstHeight, iDstX, iDstY,
                           ulFlags))
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
        Kanvo_StretchCall kCall{};
        if (!kCall.Prepare(pkSrc, pkDest, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY, uiDstWidth, uiDstHeight, iDstX, iDstY,
                           ulFlags))
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
        Kanvo_StretchCall kCall{};
        if (kCall.Prepare(pkSrc, pkDest, uiSrcWidth, uiSrcHeight, iSrcX, iSrcY, uiDstWidth, uiDstHeight, iDstX, iDstY,
                          ulFlags))
        {
            Body::IntCol(kCall, clColor, ubAlpha);
        }
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
        const Tov_Bool        bBilinear = (ulFlags & BLIT_BILINEAR) != 0;
        const Kanvo_PixelView kSource{pkSrc->GetBuffer(), pkSrc->GetPitch()};
        const Kanvo_PixelView kMap{pkAlpha->GetBuffer(), pkAlpha->GetPitch()};
        Kanvo_StretchRows<Dst>(pkDest, kX, kY,
                               [&](DstOffset kDst, Tov_UInt uiY)
                               {
                                   const Kanvo_SampleLine kLine{kSource, static_cast<Tov_UInt>(kX.fxSrcFirst), uiY,
                                                                static_cast<Tov_UInt>(kX.fxStep), 0};
                                   Kanvo_DrawThroughMap<Src, Map>(kDst, kLine, kMap, static_cast<Tov_UInt>(kX.iCount),
                                                                  bBilinear, ubAlpha, kConvert);
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
