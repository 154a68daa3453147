// Kanvo_BitmapA8: the A8 format, one byte of alpha or coverage per pixel: its pixel policy, read by the blits, and its
// source bitmap.
#ifndef KANVO_BITMAPA8_H
#define KANVO_BITMAPA8_H

#include "Kanvo_PixelAddress.h"
#include "Kanvo_SourceBitmap.h"

using Kanvo_PixelA8  = Tov_UByte;
using Kanvo_OffsetA8 = Kanvo_PixelA8*;

class Kanvo_PixelA8_Access : public Kanvo_PixelAddress<Kanvo_PixelA8_Access, Kanvo_PixelA8>
{
public:
    static KANVO_INLINE Kanvo_PixelA8 ColorToPixel(Kanvo_Color cColor) { return static_cast<Kanvo_PixelA8>(cColor); }
    static KANVO_INLINE Kanvo_Color   PixelToColor(Kanvo_PixelA8 pxPixel) { return pxPixel; }

    // Drawn as a picture, a map shows its values as grey.
    static KANVO_INLINE Tov_UByte RedFromPixel(Kanvo_PixelA8 pxPixel) { return pxPixel; }
    static KANVO_INLINE Tov_UByte GreenFromPixel(Kanvo_PixelA8 pxPixel) { return pxPixel; }
    static KANVO_INLINE Tov_UByte BlueFromPixel(Kanvo_PixelA8 pxPixel) { return pxPixel; }
    static KANVO_INLINE Tov_UByte AlphaFromPixel(Kanvo_PixelA8 pxPixel) { return pxPixel; }
    //! An opaque grey whose level is the alpha value.
    static KANVO_INLINE Kanvo_ColorARGB32 ColorARGB32FromPixel(Kanvo_PixelA8 pxPixel)
    {
        return 0xFF000000U | (pxPixel * 0x00010101U);
    }

    //! Rows first, with the full eight bits of both weights.
    static KANVO_INLINE Kanvo_PixelA8 MixBilinear(Kanvo_PixelA8 pxTopLeft, Kanvo_PixelA8 pxTopRight,
                                                  Kanvo_PixelA8 pxBottomLeft, Kanvo_PixelA8 pxBottomRight,
                                                  Tov_UByte ubAlphaX, Tov_UByte ubAlphaY)
    {
        return static_cast<Kanvo_PixelA8>(Kanvo_MixByte(Kanvo_MixByte(pxTopLeft, pxTopRight, ubAlphaX),
                                                        Kanvo_MixByte(pxBottomLeft, pxBottomRight, ubAlphaX),
                                                        ubAlphaY));
    }
};

// Its tables lie in the library, not in code that uses it and may be compiled with type information.
extern template class Kanvo_SourceBitmapOf<Kanvo_PixelA8, BM_ALPHA8>;

//! A source bitmap of A8 pixels.
class Kanvo_BitmapA8 : public Kanvo_SourceBitmapOf<Kanvo_PixelA8, BM_ALPHA8>
{
public:
    using Kanvo_SourceBitmapOf::Kanvo_SourceBitmapOf;

    //! A colour of this format is its alpha: 255 here, as an RGB colour is opaque.
    Kanvo_Color ColorFromRGB(Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const override;
    Kanvo_Color ColorFromARGB(Tov_UByte ubA, Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const override;
    //! False, and grey of the alpha's level: the format has no colour channels.
    Tov_Bool ColorToRGB(Kanvo_Color cColor, Tov_UByte& ubR, Tov_UByte& ubG, Tov_UByte& ubB) const override;
    //! True: that is all it has.
    Tov_Bool HasAlpha() const override;
};

#endif
