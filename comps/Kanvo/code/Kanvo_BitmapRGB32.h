// Kanvo_BitmapRGB32: the RGB32 format: its pixel policy, read by the blits, and its source bitmap.
#ifndef KANVO_BITMAPRGB32_H
#define KANVO_BITMAPRGB32_H

#include "Kanvo_PixelAddress.h"
#include "Kanvo_SourceBitmap.h"

using Kanvo_PixelRGB32  = Tov_UInt;  //!< as ARGB32; the top byte is carried along and means no coverage
using Kanvo_OffsetRGB32 = Kanvo_PixelRGB32*;

class Kanvo_PixelRGB32_Access : public Kanvo_PixelWord<Kanvo_PixelRGB32_Access>
{
public:
    //! As the ARGB32 policy's, but the top byte of the result is 0.
    static KANVO_INLINE Kanvo_PixelRGB32 MixBilinear(Kanvo_PixelRGB32 pxTopLeft, Kanvo_PixelRGB32 pxTopRight,
                                                     Kanvo_PixelRGB32 pxBottomLeft, Kanvo_PixelRGB32 pxBottomRight,
                                                     Tov_UByte ubAlphaX, Tov_UByte ubAlphaY)
    {
        const Tov_UInt uiWeightX = ubAlphaX >> 1;
        return Kanvo_MixColor<7>(Kanvo_MixColor<7>(pxTopLeft, pxTopRight, uiWeightX),
                                 Kanvo_MixColor<7>(pxBottomLeft, pxBottomRight, uiWeightX), ubAlphaY >> 1);
    }
};

// Its tables lie in the library, not in code that uses it and may be compiled with type information.
extern template class Kanvo_SourceBitmapOf<Kanvo_PixelRGB32, BM_RGB32>;

//! A source bitmap of RGB32 pixels.
class Kanvo_BitmapRGB32 : public Kanvo_SourceBitmapOf<Kanvo_PixelRGB32, BM_RGB32>
{
public:
    using Kanvo_SourceBitmapOf::Kanvo_SourceBitmapOf;

    //! 0x00RRGGBB, the form a colour key is compared in.
    Kanvo_Color ColorFromRGB(Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const override;
    Kanvo_Color ColorFromARGB(Tov_UByte ubA, Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const override;
    Tov_Bool    ColorToRGB(Kanvo_Color cColor, Tov_UByte& ubR, Tov_UByte& ubG, Tov_UByte& ubB) const override;
    //! False: the top byte means no coverage.
    Tov_Bool HasAlpha() const override;
};

#endif
