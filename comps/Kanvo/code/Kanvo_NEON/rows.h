// rows: one row of pixels at a time, the arithmetic of the pixel policies applied to many pixels side by side.
// Kanvo_RowsReference is the portable body of every row function and the truth that any faster one is held to, byte for
// byte; rows_neon and rows_avx2 hold bodies for one instruction set each. neonloops_rects.h puts rows together to
// rectangles. Whoever draws a single row calls through g_Kanvo_pkRows.
//
// Pixels are drawn from left to right, each read after the one before it was written, so that a bitmap may be its own
// source. A count of 0 draws nothing.
#ifndef KANVO_ROWS_H
#define KANVO_ROWS_H

#include <algorithm>
#include <type_traits>

#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapRGB565.h"
#include "Kanvo_Level.h"
#include "Kanvo_PixelARGB32_Access.h"
#include "Kanvo_PrecompiledImageInfo.h"

// Which levels the library has. NEON comes with the compiler's settings; of AVX2, which one file alone is compiled for,
// the build tells (CMakeLists.txt), and whether the processor has it is asked at start-up.
#if defined(__ARM_NEON) && !defined(__ARM_BIG_ENDIAN)
#define KANVO_HAS_NEON 1
#else
#define KANVO_HAS_NEON 0
#endif
#ifndef KANVO_HAS_AVX2
#define KANVO_HAS_AVX2 0
#endif

//! Rows of an image of tokens (Kanvo_PrecompiledImageInfo.h) that are drawn as they are.
struct Kanvo_TokenRows
{
    Kanvo_OffsetARGB32       kDst;
    Tov_UInt                 uiDstPitch;  //!< bytes from row to row
    Tov_UInt                 uiWidth;
    Tov_UInt                 uiHeight;
    Tov_UInt                 uiSkip;  //!< pixels of the image between the end of one row and the start of the next
    const Kanvo_ColorARGB32* pclPalette;
    Tov_UByte                ubAlpha;
    Tov_Bool                 bStamp;  //!< as Stamp, else as BlendOrStore

    //! Hands the pixels of each row to kSink, after kSink.BeginRow(first pixel) and before kSink.EndRow(). kSkip() leaves
    //! out what lies between rows.
    template <class Tokens, class Sink, class Skip>
    KANVO_INLINE void Walk(Tokens& kTokens, Sink& kSink, Skip kSkip) const
    {
        auto uiRow = reinterpret_cast<std::uintptr_t>(kDst);
        for (Tov_UInt uiRows = uiHeight; uiRows > 0; --uiRows)
        {
            kSink.BeginRow(reinterpret_cast<Kanvo_OffsetARGB32>(uiRow));
            kTokens.Consume(uiWidth, kSink);
            kSink.EndRow();
            if (uiSkip > 0)
            {
                kSkip();
            }
            uiRow += uiDstPitch;
        }
    }
};

struct Kanvo_SampleLine;  // scaled_rows.h

struct Kanvo_RowsReference
{
    //! Stores one pixel value.
    static void Fill(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_PixelARGB32 pxPixel);

    //! Mixes one colour in with KanvoBlit_MixLinear.
    static void FillMix(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_ColorARGB32 clColor, Tov_UByte ubAlpha);

    //! Stores uiBytes bytes of one row in another; rows that share memory are copied from left to right.
    static void CopyBytes(void* pDst, const void* pSrc, Tov_UInt uiBytes);

    //! Stores the source pixels.
    static void Copy(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount);

    //! Stores the source pixels as opaque ones.
    static void CopyOpaque(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount);

    //! Whether all pixels are opaque.
    static Tov_Bool IsOpaque(const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount);

    //! Stores the alpha bytes of the source pixels as a mask.
    static void TakeAlpha(Kanvo_PixelA8* kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount);

    //! Blends the source pixels by their own alpha times ubAlpha, as BlendPixelSrcAlpha.
    static void Over(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount, Tov_UByte ubAlpha);

    //! As Over, of uiCount nearest samples of words: one at (uiFirstX, uiFirstY), in 16.16, and then those of a line. At
    //! least the first. They share no memory with what is drawn.
    static void OverSamples(Kanvo_OffsetARGB32 kDst, const Kanvo_SampleLine& kLine, Tov_UInt uiFirstX,
                            Tov_UInt uiFirstY, Tov_UInt uiCount, Tov_UByte ubAlpha);

    //! Blends one colour in by ubAlpha, as BlendPixel; the colour's own alpha is not read.
    static void BlendColor(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_ColorARGB32 clColor, Tov_UByte ubAlpha);

    //! Blends the source pixels by their own alpha times ubAlpha, as BlendPixel; where that is 255 they are stored.
    static void BlendOrStore(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount,
                             Tov_UByte ubAlpha);

    //! Stores opaque source pixels and leaves out those of alpha 0; all others are blended by ubAlpha, as BlendPixel.
    static void Stamp(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount, Tov_UByte ubAlpha);

    //! Draw the pixels that follow in an image's tokens, of one byte or of two. The palette has at least one entry.
    static void DrawTokens8(const Kanvo_TokenRows& kRows, RLE8CurDecompressInfo& kTokens);
    static void DrawTokens16(const Kanvo_TokenRows& kRows, RLE16CurDecompressInfo& kTokens);

    //! Stores each value as all four bytes of a pixel, in which the bits of pxSet are set besides.
    static void ConvertA8(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kSrc, Tov_UInt uiCount,
                          Kanvo_PixelARGB32 pxSet);

    //! Stores the source pixels as opaque ARGB32.
    static void Convert565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiCount);

    //! Converts and blends by ubAlpha, as BlendPixelSrcAlpha of an opaque pixel.
    static void Over565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiCount, Tov_UByte ubAlpha);

    //! Stores the converted source with the mask as its alpha; where that is 0 the pixel stays.
    static void StoreMask565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, const Kanvo_PixelA8* kMask,
                             Tov_UInt uiCount);

    //! Blends the converted source by the mask times ubAlpha, as BlendPixel.
    static void BlendMask565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, const Kanvo_PixelA8* kMask,
                             Tov_UInt uiCount, Tov_UByte ubAlpha);

    //! Blends the source pixels by the mask times ubAlpha, as BlendPixel; their own alpha is not read.
    static void BlendMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, const Kanvo_PixelA8* kMask,
                          Tov_UInt uiCount, Tov_UByte ubAlpha);

    //! Mixes the source pixels, taken as opaque, in with KanvoBlit_MixLinear by the mask.
    static void MixMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, const Kanvo_PixelA8* kMask,
                        Tov_UInt uiCount);

    //! Mixes one colour in with KanvoBlit_MixLinear by each coverage times ubAlpha.
    static void ColorMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kMask, Tov_UInt uiCount,
                          Kanvo_ColorARGB32 clColor, Tov_UByte ubAlpha);
};

// clang-format off
//! The one list of them.
#define KANVO_ROW_LIST(ROW)                                                                                            \
    ROW(Fill) ROW(FillMix) ROW(CopyBytes) ROW(Copy) ROW(CopyOpaque) ROW(IsOpaque) ROW(TakeAlpha)                       \
    ROW(Over) ROW(BlendOrStore) ROW(Stamp) ROW(BlendColor)                                                             \
    ROW(ConvertA8) ROW(Convert565) ROW(Over565) ROW(StoreMask565) ROW(BlendMask565)                                    \
    ROW(BlendMask) ROW(MixMask) ROW(ColorMask)

//! Those that are made of others: the portable bodies draw with what is in force, and serve a level that has no own ones.
#define KANVO_COMPOUND_ROW_LIST(ROW) ROW(OverSamples) ROW(DrawTokens8) ROW(DrawTokens16)
// clang-format on

//! The row functions of one level as pointers: pfnFill and so on.
struct Kanvo_RowFunctions
{
    Kanvo_Level eLevel;  //!< KL_BEST: portable, because none was selected yet

#define KANVO_ROW_POINTER(name) decltype(&Kanvo_RowsReference::name) pfn##name;
    KANVO_ROW_LIST(KANVO_ROW_POINTER)
    KANVO_COMPOUND_ROW_LIST(KANVO_ROW_POINTER)
#undef KANVO_ROW_POINTER

    //! Rows: Kanvo_RowsReference, or a struct with the same functions.
    template <class Rows>
    static constexpr Kanvo_RowFunctions Of(Kanvo_Level eSelected)
    {
#define KANVO_ROW_ADDRESS(name) &Rows::name,
        return {eSelected, KANVO_ROW_LIST(KANVO_ROW_ADDRESS) KANVO_COMPOUND_ROW_LIST(KANVO_ROW_ADDRESS)};
#undef KANVO_ROW_ADDRESS
    }
};

//! The row functions of the level in force (Kanvo_Level.h). Never null.
extern const Kanvo_RowFunctions* g_Kanvo_pkRows;

//! Pixels or samples that are gathered in a buffer for a row function: a quarter of a kilobyte of the stack.
constexpr Tov_UInt KANVO_STRIP = 64;

// Runs of few pixels, of which there are many in lines and pictures, are drawn sooner than a row function is called.
constexpr Tov_UInt KANVO_FEW_PIXELS = 8;

//! Stores one pixel value uiCount times.
KANVO_INLINE void Kanvo_FillRun(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_PixelARGB32 pxPixel)
{
    if (uiCount >= KANVO_FEW_PIXELS)
    {
        g_Kanvo_pkRows->pfnFill(kDst, uiCount, pxPixel);
        return;
    }
    for (; uiCount > 0; --uiCount)
    {
        *kDst++ = pxPixel;
    }
}

//! Blends one colour in by ubAlpha, as BlendPixel.
KANVO_INLINE void Kanvo_BlendRun(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_ColorARGB32 clColor,
                                 Tov_UByte ubAlpha)
{
    if (uiCount >= KANVO_FEW_PIXELS)
    {
        g_Kanvo_pkRows->pfnBlendColor(kDst, uiCount, clColor, ubAlpha);
        return;
    }
    for (; uiCount > 0; --uiCount)
    {
        Kanvo_PixelARGB32_Access::BlendPixel(kDst++, clColor, ubAlpha);
    }
}

//! As Access::PutSpan, but kOffset stays: with the row function where Access is the ARGB32 policy.
template <class Access>
KANVO_INLINE void Kanvo_PutRun(typename Access::Offset kOffset, typename Access::Pixel pxPixel, Tov_Int iCount)
{
    if constexpr (std::is_same_v<Access, Kanvo_PixelARGB32_Access>)
    {
        Kanvo_FillRun(kOffset, static_cast<Tov_UInt>(std::max(iCount, Tov_Int{0})), pxPixel);
    }
    else
    {
        Access::PutSpan(kOffset, pxPixel, iCount);
    }
}

//! Whether two rows share memory. Then each pixel may depend on the one drawn before it, and there is nothing to be done
//! side by side.
KANVO_INLINE Tov_Bool Kanvo_RowsOverlap(const void* pA, Tov_UInt uiBytesA, const void* pB, Tov_UInt uiBytesB)
{
    const auto uiA = reinterpret_cast<std::uintptr_t>(pA);
    const auto uiB = reinterpret_cast<std::uintptr_t>(pB);
    return uiA < uiB ? uiB - uiA < uiBytesA : uiA - uiB < uiBytesB;
}

//! The same of a row of the destination and a row of any format, each of uiCount pixels.
template <class SrcPixel>
KANVO_INLINE Tov_Bool Kanvo_RowsOverlap(const Kanvo_PixelARGB32* kDst, const SrcPixel* kSrc, Tov_UInt uiCount)
{
    return Kanvo_RowsOverlap(kDst, uiCount * static_cast<Tov_UInt>(sizeof(Kanvo_PixelARGB32)), kSrc,
                             uiCount * static_cast<Tov_UInt>(sizeof(SrcPixel)));
}

#endif
