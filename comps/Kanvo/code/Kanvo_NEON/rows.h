// rows: one row of pixels at a time, the arithmetic of the pixel policies applied to many pixels side by side.
// Kanvo_RowsReference is the portable body of every row function and the truth that any faster one is held to, byte for
// byte. neonloops_rects.h puts rows together to rectangles.
//
// Pixels are drawn from left to right, each read after the one before it was written, so that a bitmap may be its own
// source. A count of 0 draws nothing.
#ifndef KANVO_ROWS_H
#define KANVO_ROWS_H

#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapRGB565.h"
#include "Kanvo_PixelARGB32_Access.h"

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

    //! Blends the source pixels by their own alpha times ubAlpha, as BlendPixelSrcAlpha.
    static void Over(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount, Tov_UByte ubAlpha);

    //! Blends one colour in by ubAlpha, as BlendPixel; the colour's own alpha is not read.
    static void BlendColor(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_ColorARGB32 clColor, Tov_UByte ubAlpha);

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

    //! Mixes one colour in with KanvoBlit_MixLinear by each coverage times ubAlpha.
    static void ColorMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kMask, Tov_UInt uiCount,
                          Kanvo_ColorARGB32 clColor, Tov_UByte ubAlpha);
};

#endif
