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

}  // namespace

void Kanvo_RowsReference::Fill(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_PixelARGB32 pxPixel)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        kDst[uiX] = pxPixel;
    }
}

void Kanvo_RowsReference::FillMix(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_ColorARGB32 clColor,
                                  Tov_UByte ubAlpha)
{
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

void Kanvo_RowsReference::Over(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount,
                               Tov_UByte ubAlpha)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        Access::BlendPixelSrcAlpha(kDst + uiX, kSrc[uiX], ubAlpha);
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

void Kanvo_RowsReference::ColorMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kMask, Tov_UInt uiCount,
                                    Kanvo_ColorARGB32 clColor, Tov_UByte ubAlpha)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        kDst[uiX] = KanvoBlit_MixLinear(kDst[uiX], clColor, Kanvo_MulByte(kMask[uiX], ubAlpha));
    }
}
