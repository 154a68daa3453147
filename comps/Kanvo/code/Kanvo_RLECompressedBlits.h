// Kanvo_RLECompressedBlits: draws run-length-encoded images, unscaled or magnified by whole numbers. Called by the blit
// entries; decodes in step with the destination and never expands the image into memory. Clipping is done by skipping
// pixels of the stream. What is not magnified is drawn by a row function (rows.h), here are the blocks.
#ifndef KANVO_RLECOMPRESSEDBLITS_H
#define KANVO_RLECOMPRESSEDBLITS_H

#include <algorithm>
#include <type_traits>

#include "Kanvo_Bitmap.h"
#include "Kanvo_PixelARGB32_Access.h"
#include "Kanvo_PrecompiledImageInfo.h"
#include "rows.h"

//! One axis of a magnified blit, cut to the clip. Source pixels uiFirst to uiFirst + uiCount - 1 are visible, the first
//! as uiFirstSize destination pixels, the last as uiLastSize, those between whole; a single one is the first.
//!
//!          clip |                                  | clip
//!     [ . . . . | . . ][ . . . . . . ][ . . . . . .][ ...
//!               iDst     first                last
struct Kanvo_RLEAxis
{
    Tov_UInt uiFirst;
    Tov_UInt uiCount;
    Tov_UInt uiFirstSize;
    Tov_UInt uiLastSize;
    Tov_UInt uiDst;

    //! False where nothing is visible.
    Tov_Bool Cut(Tov_UInt uiLength, Tov_UInt uiSrc, Tov_Int iDst, Tov_UInt uiMag, Tov_UInt uiClipMin,
                 Tov_UInt uiClipMax)
    {
        const std::int64_t iStart = iDst;
        const std::int64_t iFrom  = std::max<std::int64_t>(iStart, uiClipMin);
        const std::int64_t iTo =
            std::min<std::int64_t>(iStart + static_cast<std::int64_t>(uiLength) * uiMag - 1, uiClipMax);
        if (iFrom > iTo)
        {
            return false;
        }
        const std::int64_t iFirst = (iFrom - iStart) / uiMag;
        const std::int64_t iLast  = (iTo - iStart) / uiMag;
        uiFirst                   = uiSrc + static_cast<Tov_UInt>(iFirst);
        uiCount                   = static_cast<Tov_UInt>(iLast - iFirst) + 1;
        uiFirstSize               = static_cast<Tov_UInt>(std::min(iStart + (iFirst + 1) * uiMag, iTo + 1) - iFrom);
        uiLastSize                = static_cast<Tov_UInt>(iTo + 1 - (iStart + iLast * uiMag));
        uiDst                     = static_cast<Tov_UInt>(iFrom);
        return true;
    }

    //! Destination pixels of the visible source pixel uiIndex, counted from the first.
    Tov_UInt SizeOf(Tov_UInt uiIndex, Tov_UInt uiMag) const
    {
        return uiIndex == 0 ? uiFirstSize : uiIndex + 1 == uiCount ? uiLastSize : uiMag;
    }
};

//! The entries take the source's header from its Lock and hand it back with Unlock(0, 0, 0, 0). The source rectangle must
//! lie wholly inside the image, else nothing is drawn; the destination is clipped to its clip rectangle.
class Kanvo_RLECompressedBlits
{
public:
    // KEPT: at full opacity Blit and BlitMag decide by a palette entry's alpha only between nothing, store and a blend
    // of full weight; BlitAlpha weighs the blend by it. Test: AtFullOpacityBlitIgnoresTheWeightOfATranslucentEntry.
    static void Blit_ARGB32RLE8(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, Tov_UInt uiWidth, Tov_UInt uiHeight,
                                Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY, Tov_UByte ubAlpha);
    static void Blit_ARGB32RLE16(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, Tov_UInt uiWidth, Tov_UInt uiHeight,
                                 Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY, Tov_UByte ubAlpha);

    static void BlitAlpha_ARGB32RLE8(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, Tov_UInt uiWidth, Tov_UInt uiHeight,
                                     Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY, Tov_UByte ubAlpha);
    static void BlitAlpha_ARGB32RLE16(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, Tov_UInt uiWidth, Tov_UInt uiHeight,
                                      Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY,
                                      Tov_UByte ubAlpha);

    //! Each source pixel becomes a block of usXMag x usYMag pixels; a factor of 0 draws nothing.
    static void BlitMag_ARGB32RLE8(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, Tov_UInt uiWidth, Tov_UInt uiHeight,
                                   Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY, Tov_UByte ubAlpha,
                                   Tov_UShort usXMag, Tov_UShort usYMag);
    static void BlitMag_ARGB32RLE16(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, Tov_UInt uiWidth, Tov_UInt uiHeight,
                                    Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY, Tov_UByte ubAlpha,
                                    Tov_UShort usXMag, Tov_UShort usYMag);

    // ---- the worker and its parts. GLOBAL_ALPHA: ubAlpha is below 255; FROM_BLIT_ALPHA: called for a BlitAlpha --------

    //! Draws a rectangle of a locked image. DecompressInfo: the decoder of the image's unit.
    template <bool GLOBAL_ALPHA, bool FROM_BLIT_ALPHA, class DecompressInfo>
    static void Blit_ARGB32RLE(const Kanvo_PrecompiledImageInfo* pstInfo, Kanvo_Bitmap* pkDest, Tov_UInt uiWidth,
                               Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY,
                               Tov_UByte ubAlpha, Tov_UShort usXMag, Tov_UShort usYMag)
    {
        Kanvo_RLEAxis  kX{};
        Kanvo_RLEAxis  kY{};
        const Tov_Bool bInside = uiSrcX + static_cast<std::uint64_t>(uiWidth) <= pstInfo->uiWidth &&
                                 uiSrcY + static_cast<std::uint64_t>(uiHeight) <= pstInfo->uiHeight;
        if (!bInside || usXMag == 0 || usYMag == 0 ||
            !kX.Cut(uiWidth, uiSrcX, iDstX, usXMag, pkDest->GetClipMinX(), pkDest->GetClipMaxX()) ||
            !kY.Cut(uiHeight, uiSrcY, iDstY, usYMag, pkDest->GetClipMinY(), pkDest->GetClipMaxY()))
        {
            return;
        }
        DecompressInfo kState(pstInfo);
        SkipPixels(static_cast<std::uint64_t>(kY.uiFirst) * pstInfo->uiWidth + kX.uiFirst, kState);
        const Tov_UInt uiSkip = pstInfo->uiWidth - kX.uiCount;
        if (usXMag == 1 && usYMag == 1)
        {
            DrawRows<GLOBAL_ALPHA, FROM_BLIT_ALPHA>(kState, pstInfo, pkDest, kX.uiDst, kY.uiDst, kX.uiCount, kY.uiCount,
                                                    uiSkip, ubAlpha);
            return;
        }
        Tov_UInt   uiY       = kY.uiDst;
        const auto kWriteRun = [&](Tov_UInt uiPixels, Tov_UInt uiX, Tov_UInt uiBlockWidth, Tov_UInt uiBlockHeight)
        {
            WritePixels<GLOBAL_ALPHA, FROM_BLIT_ALPHA>(uiPixels, kState, pstInfo, pkDest, uiX, uiY, ubAlpha,
                                                       uiBlockWidth, uiBlockHeight);
        };
        for (Tov_UInt uiRow = 0; uiRow < kY.uiCount; ++uiRow)
        {
            const Tov_UInt uiBlockHeight = kY.SizeOf(uiRow, usYMag);
            if (usXMag == 1)
            {
                kWriteRun(kX.uiCount, kX.uiDst, 1, uiBlockHeight);
            }
            else
            {
                kWriteRun(1, kX.uiDst, kX.uiFirstSize, uiBlockHeight);
                if (kX.uiCount > 1)
                {
                    const Tov_UInt uiWhole = kX.uiDst + kX.uiFirstSize;
                    kWriteRun(kX.uiCount - 2, uiWhole, usXMag, uiBlockHeight);
                    kWriteRun(1, uiWhole + (kX.uiCount - 2) * usXMag, kX.uiLastSize, uiBlockHeight);
                }
            }
            SkipPixels(uiSkip, kState);
            uiY += uiBlockHeight;
        }
    }

    //! Consumes pixels without looking at them.
    template <class DecompressInfo>
    [[gnu::noinline]] static void SkipPixels(std::uint64_t uiPixels, DecompressInfo& kState)
    {
        kState.Skip(uiPixels);
    }

    //! Consumes pixels and draws each as a block of uiXMag x uiYMag, from (uiX, uiY) to the right.
    template <bool GLOBAL_ALPHA, bool FROM_BLIT_ALPHA, class DecompressInfo>
    static void WritePixels(Tov_UInt uiPixels, DecompressInfo& kState, const Kanvo_PrecompiledImageInfo* pstInfo,
                            Kanvo_Bitmap* pkDest, Tov_UInt uiX, Tov_UInt uiY, Tov_UByte ubAlpha, Tov_UInt uiXMag,
                            Tov_UInt uiYMag)
    {
        if (uiXMag == 1 && uiYMag == 1)
        {
            DrawRows<GLOBAL_ALPHA, FROM_BLIT_ALPHA>(kState, pstInfo, pkDest, uiX, uiY, uiPixels, 1, 0, ubAlpha);
            return;
        }
        Kanvo_OffsetARGB32 kDst;
        Kanvo_PixelARGB32_Access::GetOffset(pkDest, uiX, uiY, kDst);
        WriteSink<GLOBAL_ALPHA, FROM_BLIT_ALPHA> kSink{
            pstInfo->acolColorPalette, pkDest, kDst, ubAlpha, uiXMag, uiYMag};
        kState.Consume(uiPixels, kSink);
    }

    //! Draws one block of uiXMag x uiYMag pixels of an entry's colour and alpha, and returns the offset behind its first
    //! row. A run of n pixels is a block n times as wide.
    template <bool GLOBAL_ALPHA, bool FROM_BLIT_ALPHA>
    static KANVO_INLINE Kanvo_OffsetARGB32 WritePixel(const Kanvo_Bitmap* pkDest, Kanvo_OffsetARGB32 kDstLine,
                                                      Kanvo_ColorARGB32 BlendColor, Tov_UByte ubPixelAlpha,
                                                      Tov_UByte ubGlobalAlpha, Tov_UInt uiXMag, Tov_UInt uiYMag)
    {
        Kanvo_OffsetARGB32 kRow = kDstLine;
        for (Tov_UInt uiRow = 0; uiRow < uiYMag; ++uiRow)
        {
            DrawRun<GLOBAL_ALPHA, FROM_BLIT_ALPHA>(kRow, uiXMag, BlendColor, ubPixelAlpha, ubGlobalAlpha);
            Kanvo_PixelARGB32_Access::IncY(pkDest, kRow);
        }
        return kDstLine + uiXMag;
    }

private:
    //! Consumes pixels and draws them as they are, in rows between which uiSkip pixels are left out.
    template <bool GLOBAL_ALPHA, bool FROM_BLIT_ALPHA, class DecompressInfo>
    static void DrawRows(DecompressInfo& kState, const Kanvo_PrecompiledImageInfo* pstInfo, const Kanvo_Bitmap* pkDest,
                         Tov_UInt uiX, Tov_UInt uiY, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSkip,
                         Tov_UByte ubAlpha)
    {
        constexpr Tov_Bool STAMP = !GLOBAL_ALPHA && !FROM_BLIT_ALPHA;
        Kanvo_OffsetARGB32 kDst;
        Kanvo_PixelARGB32_Access::GetOffset(pkDest, uiX, uiY, kDst);
        const Kanvo_TokenRows kRows{kDst,
                                    pkDest->GetPitch(),
                                    uiWidth,
                                    uiHeight,
                                    uiSkip,
                                    pstInfo->acolColorPalette,
                                    GLOBAL_ALPHA || STAMP ? ubAlpha : Tov_UByte{255},
                                    STAMP};
        if constexpr (std::is_same_v<DecompressInfo, RLE8CurDecompressInfo>)
        {
            g_Kanvo_pkRows->pfnDrawTokens8(kRows, kState);
        }
        else
        {
            g_Kanvo_pkRows->pfnDrawTokens16(kRows, kState);
        }
    }

    template <bool GLOBAL_ALPHA, bool FROM_BLIT_ALPHA>
    static KANVO_INLINE void DrawRun(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_ColorARGB32 BlendColor,
                                     Tov_UByte ubPixelAlpha, Tov_UByte ubGlobalAlpha)
    {
        const Tov_UByte ubAlpha = GLOBAL_ALPHA ? Kanvo_MulByte(ubPixelAlpha, ubGlobalAlpha) : ubPixelAlpha;
        if (ubAlpha == 255)
        {
            Kanvo_FillRun(kDst, uiCount, BlendColor);
        }
        else if (ubAlpha != 0)
        {
            // Without global alpha and map the blend is BlendPixelSrcAlpha at the global alpha, which for the opaque
            // BlendColor is BlendPixel at the global alpha.
            Kanvo_BlendRun(kDst, uiCount, BlendColor, GLOBAL_ALPHA || FROM_BLIT_ALPHA ? ubAlpha : ubGlobalAlpha);
        }
    }

    //! Takes decoded pixels and draws each as a block, from kDst to the right.
    template <bool GLOBAL_ALPHA, bool FROM_BLIT_ALPHA>
    struct WriteSink
    {
        const Kanvo_ColorARGB32* pclPalette;
        const Kanvo_Bitmap*      pkDest;
        Kanvo_OffsetARGB32       kDst;
        Tov_UByte                ubGlobalAlpha;
        Tov_UInt                 uiXMag;
        Tov_UInt                 uiYMag;

        template <class Unit>
        KANVO_INLINE void Run(Unit uEntry, Tov_UInt uiCount)
        {
            Draw(pclPalette[uEntry], uiCount * uiXMag);
        }
        template <class Unit>
        KANVO_INLINE void Literal(const Unit* puIndices, Tov_UInt uiCount)
        {
            for (Tov_UInt uiPixel = 0; uiPixel < uiCount; ++uiPixel)
            {
                Draw(pclPalette[puIndices[uiPixel]], uiXMag);
            }
        }
        [[gnu::noinline]] void Draw(Kanvo_ColorARGB32 clEntry, Tov_UInt uiColumns)
        {
            using Access                     = Kanvo_PixelARGB32_Access;
            const Kanvo_ColorARGB32 clOpaque = Access::PixelFromRGB(
                Access::RedFromPixel(clEntry), Access::GreenFromPixel(clEntry), Access::BlueFromPixel(clEntry));
            kDst = WritePixel<GLOBAL_ALPHA, FROM_BLIT_ALPHA>(pkDest, kDst, clOpaque, Access::AlphaFromPixel(clEntry),
                                                             ubGlobalAlpha, uiColumns, uiYMag);
        }
    };
};

#endif
