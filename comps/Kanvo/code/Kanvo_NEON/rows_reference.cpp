// rows_reference: the portable bodies of the row functions.
#include "rows.h"
#include "Tov_Memory.h"

namespace
{

using Access = Kanvo_PixelARGB32_Access;

//! RGB565 pixels that may lie in the memory of ARGB32 ones, and then change while these are drawn. (Bytes may anyway.)
using Pixel565 [[gnu::may_alias]] = Kanvo_PixelRGB565;

KANVO_INLINE Kanvo_PixelARGB32 Expand565(Kanvo_PixelRGB565 pxPixel)
{
    return Access::PixelFromRGB(Kanvo_PixelRGB565_Access::RedFromPixel(pxPixel),
                                Kanvo_PixelRGB565_Access::GreenFromPixel(pxPixel),
                                Kanvo_PixelRGB565_Access::BlueFromPixel(pxPixel));
}

//! Stores where ubOwn is 255, leaves the pixel where it is 0, and blends by ubAlpha otherwise. Rows of these are pictures
//! of few colours, where most pixels need no blend.
KANVO_INLINE void StoreOrBlend(Kanvo_OffsetARGB32 kDst, Kanvo_PixelARGB32 pxSrc, Tov_UByte ubOwn, Tov_UByte ubAlpha)
{
    if (ubOwn == 255)
    {
        *kDst = pxSrc;
    }
    else if (ubOwn != 0)
    {
        Access::BlendPixel(kDst, pxSrc, ubAlpha);
    }
}

KANVO_INLINE void StoreRow(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_PixelARGB32 pxPixel)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        kDst[uiX] = pxPixel;
    }
}

//! Longer rows are filled by copies of their first pixels: the C library knows best how a processor moves blocks, and so
//! few stay in the first cache.
constexpr Tov_UInt FILLED_HERE = 1024;

[[gnu::noinline]] void FillByCopies(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_PixelARGB32 pxPixel)
{
    StoreRow(kDst, FILLED_HERE, pxPixel);
    for (Tov_UInt uiX = FILLED_HERE; uiX < uiCount; uiX += FILLED_HERE)
    {
        const Tov_UInt uiPixels = std::min(uiCount - uiX, FILLED_HERE);
        Tov_Memcpy(kDst + uiX, kDst, uiPixels * static_cast<Tov_UInt>(sizeof(Kanvo_PixelARGB32)));
    }
}

}  // namespace

void Kanvo_RowsReference::Fill(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_PixelARGB32 pxPixel)
{
    if (uiCount > FILLED_HERE)
    {
        FillByCopies(kDst, uiCount, pxPixel);
        return;
    }
    StoreRow(kDst, uiCount, pxPixel);
}

void Kanvo_RowsReference::FillMix(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_ColorARGB32 clColor,
                                  Tov_UByte ubAlpha)
{
    if (ubAlpha == 255)
    {
        Fill(kDst, uiCount, clColor);
        return;
    }
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        kDst[uiX] = KanvoBlit_MixLinear(kDst[uiX], clColor, ubAlpha);
    }
}

void Kanvo_RowsReference::CopyBytes(void* pDst, const void* pSrc, Tov_UInt uiBytes)
{
    if (!Kanvo_RowsOverlap(pDst, uiBytes, pSrc, uiBytes))
    {
        Tov_Memcpy(pDst, pSrc, uiBytes);
        return;
    }
    auto* const       pubDst = static_cast<Tov_UByte*>(pDst);
    const auto* const pubSrc = static_cast<const Tov_UByte*>(pSrc);
    for (Tov_UInt uiByte = 0; uiByte < uiBytes; ++uiByte)
    {
        pubDst[uiByte] = pubSrc[uiByte];
    }
}

void Kanvo_RowsReference::Copy(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount)
{
    CopyBytes(kDst, kSrc, uiCount * static_cast<Tov_UInt>(sizeof(Kanvo_PixelARGB32)));
}

void Kanvo_RowsReference::CopyOpaque(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        kDst[uiX] = Access::ColorAndAlphaToPixel(kSrc[uiX], 255);
    }
}

Tov_Bool Kanvo_RowsReference::IsOpaque(const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount)
{
    Kanvo_PixelARGB32 pxAll = 0xFFFFFFFFU;  // without a branch on each pixel
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        pxAll &= kSrc[uiX];
    }
    return Access::AlphaFromPixel(pxAll) == 255;
}

void Kanvo_RowsReference::TakeAlpha(Kanvo_PixelA8* kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        kDst[uiX] = Access::AlphaFromPixel(kSrc[uiX]);
    }
}

void Kanvo_RowsReference::Over(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount,
                               Tov_UByte ubAlpha)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        Access::BlendPixelSrcAlpha(kDst + uiX, kSrc[uiX], ubAlpha);
    }
}

void Kanvo_RowsReference::BlendOrStore(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount,
                                       Tov_UByte ubAlpha)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        const Kanvo_PixelARGB32 pxSrc    = kSrc[uiX];
        const Tov_UByte         ubWeight = Kanvo_MulByte(Access::AlphaFromPixel(pxSrc), ubAlpha);
        StoreOrBlend(kDst + uiX, pxSrc, ubWeight, ubWeight);
    }
}

void Kanvo_RowsReference::Stamp(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount,
                                Tov_UByte ubAlpha)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        const Kanvo_PixelARGB32 pxSrc = kSrc[uiX];
        StoreOrBlend(kDst + uiX, pxSrc, Access::AlphaFromPixel(pxSrc), ubAlpha);
    }
}

void Kanvo_RowsReference::BlendColor(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_ColorARGB32 clColor,
                                     Tov_UByte ubAlpha)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        Access::BlendPixel(kDst + uiX, clColor, ubAlpha);
    }
}

void Kanvo_RowsReference::ConvertA8(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kSrc, Tov_UInt uiCount,
                                    Kanvo_PixelARGB32 pxSet)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        kDst[uiX] = kSrc[uiX] * 0x01010101U | pxSet;
    }
}

void Kanvo_RowsReference::Convert565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiCount)
{
    const Pixel565* const kFrom = kSrc;
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        kDst[uiX] = Expand565(kFrom[uiX]);
    }
}

void Kanvo_RowsReference::Over565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiCount,
                                  Tov_UByte ubAlpha)
{
    const Pixel565* const kFrom = kSrc;
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        Access::BlendPixelSrcAlpha(kDst + uiX, Expand565(kFrom[uiX]), ubAlpha);
    }
}

void Kanvo_RowsReference::StoreMask565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc,
                                       const Kanvo_PixelA8* kMask, Tov_UInt uiCount)
{
    const Pixel565* const kFrom = kSrc;
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        if (kMask[uiX] != 0)
        {
            kDst[uiX] = Access::ColorAndAlphaToPixel(Expand565(kFrom[uiX]), kMask[uiX]);
        }
    }
}

void Kanvo_RowsReference::BlendMask565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc,
                                       const Kanvo_PixelA8* kMask, Tov_UInt uiCount, Tov_UByte ubAlpha)
{
    const Pixel565* const kFrom = kSrc;
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        Access::BlendPixel(kDst + uiX, Expand565(kFrom[uiX]), Kanvo_MulByte(kMask[uiX], ubAlpha));
    }
}

void Kanvo_RowsReference::BlendMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, const Kanvo_PixelA8* kMask,
                                    Tov_UInt uiCount, Tov_UByte ubAlpha)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        Access::BlendPixel(kDst + uiX, kSrc[uiX], Kanvo_MulByte(kMask[uiX], ubAlpha));
    }
}

void Kanvo_RowsReference::MixMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, const Kanvo_PixelA8* kMask,
                                  Tov_UInt uiCount)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        kDst[uiX] = KanvoBlit_MixLinear(kDst[uiX], Access::ColorAndAlphaToPixel(kSrc[uiX], 255), kMask[uiX]);
    }
}

void Kanvo_RowsReference::ColorMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kMask, Tov_UInt uiCount,
                                    Kanvo_ColorARGB32 clColor, Tov_UByte ubAlpha)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        kDst[uiX] = KanvoBlit_MixLinear(kDst[uiX], clColor, Kanvo_MulByte(kMask[uiX], ubAlpha));
    }
}
