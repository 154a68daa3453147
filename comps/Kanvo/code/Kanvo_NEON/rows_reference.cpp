// rows_reference: the portable bodies of the row functions.
#include "rows.h"
#include "Tov_Memory.h"

namespace
{

using Access = Kanvo_PixelARGB32_Access;

KANVO_INLINE Kanvo_PixelARGB32 Expand565(Kanvo_PixelRGB565 pxPixel)
{
    return Access::PixelFromRGB(Kanvo_PixelRGB565_Access::RedFromPixel(pxPixel),
                                Kanvo_PixelRGB565_Access::GreenFromPixel(pxPixel),
                                Kanvo_PixelRGB565_Access::BlueFromPixel(pxPixel));
}

//! Whether two rows share memory, that is, start less than a row apart.
KANVO_INLINE Tov_Bool Overlap(const void* pA, const void* pB, Tov_UInt uiBytes)
{
    const auto uiA = reinterpret_cast<std::uintptr_t>(pA);
    const auto uiB = reinterpret_cast<std::uintptr_t>(pB);
    return (uiA > uiB ? uiA - uiB : uiB - uiA) < uiBytes;
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
    if (!Overlap(pDst, pSrc, uiBytes))
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
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        kDst[uiX] = Expand565(kSrc[uiX]);
    }
}

void Kanvo_RowsReference::Over565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiCount,
                                  Tov_UByte ubAlpha)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        Access::BlendPixelSrcAlpha(kDst + uiX, Expand565(kSrc[uiX]), ubAlpha);
    }
}

void Kanvo_RowsReference::StoreMask565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc,
                                       const Kanvo_PixelA8* kMask, Tov_UInt uiCount)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        if (kMask[uiX] != 0)
        {
            kDst[uiX] = Access::ColorAndAlphaToPixel(Expand565(kSrc[uiX]), kMask[uiX]);
        }
    }
}

void Kanvo_RowsReference::BlendMask565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc,
                                       const Kanvo_PixelA8* kMask, Tov_UInt uiCount, Tov_UByte ubAlpha)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        Access::BlendPixel(kDst + uiX, Expand565(kSrc[uiX]), Kanvo_MulByte(kMask[uiX], ubAlpha));
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
