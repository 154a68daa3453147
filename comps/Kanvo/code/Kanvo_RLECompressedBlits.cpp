// Kanvo_RLECompressedBlits: the six entries. Each locks the source, which yields its header, and chooses the worker's
// instance by opacity.
#include "Kanvo_RLECompressedBlits.h"

namespace
{

//! What an entry was asked for.
struct Request
{
    Tov_UInt   uiWidth;
    Tov_UInt   uiHeight;
    Tov_UInt   uiSrcX;
    Tov_UInt   uiSrcY;
    Tov_Int    iDstX;
    Tov_Int    iDstY;
    Tov_UByte  ubAlpha;
    Tov_UShort usXMag;
    Tov_UShort usYMag;
};

template <bool GLOBAL_ALPHA, bool FROM_BLIT_ALPHA, class DecompressInfo>
void Draw(const Kanvo_PrecompiledImageInfo* pstInfo, Kanvo_Bitmap* pkDest, const Request& k)
{
    Kanvo_RLECompressedBlits::Blit_ARGB32RLE<GLOBAL_ALPHA, FROM_BLIT_ALPHA, DecompressInfo>(
        pstInfo, pkDest, k.uiWidth, k.uiHeight, k.uiSrcX, k.uiSrcY, k.iDstX, k.iDstY, k.ubAlpha, k.usXMag, k.usYMag);
}

template <class DecompressInfo, bool FROM_BLIT_ALPHA>
void DrawLocked(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, const Request& kRequest)
{
    const auto* const pstInfo = static_cast<const Kanvo_PrecompiledImageInfo*>(pkSource->Lock());
    if (pstInfo != nullptr)
    {
        if (kRequest.ubAlpha != 255)
        {
            Draw<true, FROM_BLIT_ALPHA, DecompressInfo>(pstInfo, pkDest, kRequest);
        }
        else
        {
            Draw<false, FROM_BLIT_ALPHA, DecompressInfo>(pstInfo, pkDest, kRequest);
        }
    }
    pkSource->Unlock(0, 0, 0, 0);
}

}  // namespace

void Kanvo_RLECompressedBlits::Blit_ARGB32RLE8(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, Tov_UInt uiWidth,
                                               Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX,
                                               Tov_Int iDstY, Tov_UByte ubAlpha)
{
    DrawLocked<RLE8CurDecompressInfo, false>(pkSource, pkDest,
                                             {uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY, ubAlpha, 1, 1});
}

void Kanvo_RLECompressedBlits::Blit_ARGB32RLE16(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, Tov_UInt uiWidth,
                                                Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX,
                                                Tov_Int iDstY, Tov_UByte ubAlpha)
{
    DrawLocked<RLE16CurDecompressInfo, false>(pkSource, pkDest,
                                              {uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY, ubAlpha, 1, 1});
}

void Kanvo_RLECompressedBlits::BlitAlpha_ARGB32RLE8(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, Tov_UInt uiWidth,
                                                    Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX,
                                                    Tov_Int iDstY, Tov_UByte ubAlpha)
{
    DrawLocked<RLE8CurDecompressInfo, true>(pkSource, pkDest,
                                            {uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY, ubAlpha, 1, 1});
}

void Kanvo_RLECompressedBlits::BlitAlpha_ARGB32RLE16(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, Tov_UInt uiWidth,
                                                     Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX,
                                                     Tov_Int iDstY, Tov_UByte ubAlpha)
{
    DrawLocked<RLE16CurDecompressInfo, true>(pkSource, pkDest,
                                             {uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY, ubAlpha, 1, 1});
}

void Kanvo_RLECompressedBlits::BlitMag_ARGB32RLE8(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, Tov_UInt uiWidth,
                                                  Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX,
                                                  Tov_Int iDstY, Tov_UByte ubAlpha, Tov_UShort usXMag,
                                                  Tov_UShort usYMag)
{
    DrawLocked<RLE8CurDecompressInfo, false>(
        pkSource, pkDest, {uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY, ubAlpha, usXMag, usYMag});
}

void Kanvo_RLECompressedBlits::BlitMag_ARGB32RLE16(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkDest, Tov_UInt uiWidth,
                                                   Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX,
                                                   Tov_Int iDstY, Tov_UByte ubAlpha, Tov_UShort usXMag,
                                                   Tov_UShort usYMag)
{
    DrawLocked<RLE16CurDecompressInfo, false>(
        pkSource, pkDest, {uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY, ubAlpha, usXMag, usYMag});
}
