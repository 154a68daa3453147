// rows_reference: the portable bodies of the row functions.
#include "scaled_rows.h"
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

//! Stores or blends by the source's alpha times ubAlpha.
KANVO_INLINE void BlendOwn(Kanvo_OffsetARGB32 kDst, Kanvo_PixelARGB32 pxSrc, Tov_UByte ubAlpha)
{
    const Tov_UByte ubWeight = Kanvo_MulByte(Access::AlphaFromPixel(pxSrc), ubAlpha);
    StoreOrBlend(kDst, pxSrc, ubWeight, ubWeight);
}

//! Takes the decoded pixels of a row and draws them from kDst to the right. Long runs are drawn at once; what lies between
//! them is gathered, as entries of the palette, and drawn together. STAMP: as Stamp, else as BlendOrStore.
template <bool STAMP>
class TokenSink
{
public:
    static constexpr Tov_UInt ROOM = KANVO_STRIP + 3;  //!< for a strip, and what short runs write beyond their end

    //! pclGathered: room for ROOM pixels.
    TokenSink(const Kanvo_ColorARGB32* pclPalette, Tov_UByte ubAlpha, Kanvo_ColorARGB32* pclGathered)
        : m_kDst(nullptr),
          m_pclPalette(pclPalette),
          m_pclGathered(pclGathered),
          m_uiGathered(0),
          m_ubAlpha(ubAlpha)
    {
    }

    KANVO_INLINE void BeginRow(Kanvo_OffsetARGB32 kRow) { m_kDst = kRow; }
    KANVO_INLINE void EndRow() { Flush(); }

    template <class Unit>
    KANVO_INLINE void Run(Unit uEntry, Tov_UInt uiCount)
    {
        const Kanvo_ColorARGB32 clEntry = m_pclPalette[uEntry];
        if (uiCount >= KANVO_FEW_PIXELS)
        {
            LongRun(clEntry, uiCount);
            return;
        }
        if (m_uiGathered + uiCount > KANVO_STRIP)
        {
            Flush();
        }
        for (Tov_UInt uiPixel = 0; uiPixel < uiCount; uiPixel += 4)  // by four: fewer turns, fewer branches
        {
            Kanvo_ColorARGB32* const pclTo = m_pclGathered + m_uiGathered + uiPixel;
            pclTo[0]                       = clEntry;
            pclTo[1]                       = clEntry;
            pclTo[2]                       = clEntry;
            pclTo[3]                       = clEntry;
        }
        m_uiGathered += uiCount;
    }
    template <class Unit>
    KANVO_INLINE void Literal(const Unit* puIndices, Tov_UInt uiCount)
    {
        while (uiCount > 0)
        {
            const Tov_UInt           uiTake = std::min(uiCount, KANVO_STRIP - m_uiGathered);
            Kanvo_ColorARGB32* const pclTo  = m_pclGathered + m_uiGathered;
#pragma GCC unroll 4
            for (Tov_UInt uiPixel = 0; uiPixel < uiTake; ++uiPixel)
            {
                pclTo[uiPixel] = m_pclPalette[puIndices[uiPixel]];
            }
            m_uiGathered += uiTake;
            puIndices += uiTake;
            uiCount -= uiTake;
            if (m_uiGathered == KANVO_STRIP)
            {
                Flush();
            }
        }
    }

private:
    //! Draws what is gathered.
    [[gnu::noinline]] void Flush()
    {
        if (m_uiGathered != 0)
        {
            const Kanvo_RowFunctions& kRows = *g_Kanvo_pkRows;
            (STAMP ? kRows.pfnStamp : kRows.pfnBlendOrStore)(m_kDst, m_pclGathered, m_uiGathered, m_ubAlpha);
            m_kDst += m_uiGathered;
            m_uiGathered = 0;
        }
    }

    [[gnu::noinline]] void LongRun(Kanvo_ColorARGB32 clEntry, Tov_UInt uiCount)
    {
        Flush();
        const Tov_UByte ubEntry = Access::AlphaFromPixel(clEntry);
        const Tov_UByte ubOwn   = STAMP ? ubEntry : Kanvo_MulByte(ubEntry, m_ubAlpha);
        if (ubOwn == 255)
        {
            g_Kanvo_pkRows->pfnFill(m_kDst, uiCount, clEntry);
        }
        else if (ubOwn != 0)
        {
            g_Kanvo_pkRows->pfnBlendColor(m_kDst, uiCount, clEntry, STAMP ? m_ubAlpha : ubOwn);
        }
        m_kDst += uiCount;
    }

    Kanvo_OffsetARGB32       m_kDst;
    const Kanvo_ColorARGB32* m_pclPalette;
    Kanvo_ColorARGB32*       m_pclGathered;
    Tov_UInt                 m_uiGathered;
    Tov_UByte                m_ubAlpha;
};

template <class Tokens>
[[gnu::noinline]] void Skip(Tokens& kTokens, Tov_UInt uiPixels)
{
    kTokens.Skip(uiPixels);
}

template <bool STAMP, class Tokens>
void DrawTokens(const Kanvo_TokenRows& kRows, Tokens& kTokens)
{
    Kanvo_ColorARGB32 aclGathered[TokenSink<STAMP>::ROOM];
    TokenSink<STAMP>  kSink(kRows.pclPalette, kRows.ubAlpha, aclGathered);
    kRows.Walk(kTokens, kSink, [&]() { Skip(kTokens, kRows.uiSkip); });
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

void Kanvo_RowsReference::OverSamples(Kanvo_OffsetARGB32 kDst, const Kanvo_SampleLine& kLine, Tov_UInt uiFirstX,
                                      Tov_UInt uiFirstY, Tov_UInt uiCount, Tov_UByte ubAlpha)
{
    Kanvo_PixelARGB32  aSamples[KANVO_STRIP];
    Kanvo_SampleLine   kRest = kLine;
    Kanvo_OffsetARGB32 kFirst;
    Access::GetOffset(&kLine.kSource, uiFirstX >> 16, uiFirstY >> 16, kFirst);
    aSamples[0] = *kFirst;
    for (Tov_UInt uiOld = 1; uiCount > 0; uiOld = 0)
    {
        const Tov_UInt uiNew = std::min(uiCount, KANVO_STRIP) - uiOld;
        g_Kanvo_pkScaledRows->pfnNearestWords(aSamples + uiOld, kRest, uiNew, 0);
        g_Kanvo_pkRows->pfnOver(kDst, aSamples, uiOld + uiNew, ubAlpha);
        kRest.Advance(uiNew);
        kDst += uiOld + uiNew;
        uiCount -= uiOld + uiNew;
    }
}

void Kanvo_RowsReference::BlendOrStore(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount,
                                       Tov_UByte ubAlpha)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        BlendOwn(kDst + uiX, kSrc[uiX], ubAlpha);
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

void Kanvo_RowsReference::DrawTokens8(const Kanvo_TokenRows& kRows, RLE8CurDecompressInfo& kTokens)
{
    kRows.bStamp ? DrawTokens<true>(kRows, kTokens) : DrawTokens<false>(kRows, kTokens);
}

void Kanvo_RowsReference::DrawTokens16(const Kanvo_TokenRows& kRows, RLE16CurDecompressInfo& kTokens)
{
    kRows.bStamp ? DrawTokens<true>(kRows, kTokens) : DrawTokens<false>(kRows, kTokens);
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
