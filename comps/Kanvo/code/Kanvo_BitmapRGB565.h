// Kanvo_BitmapRGB565: the RGB565 format: its pixel policy, read by the blits, and its source bitmap.
#ifndef KANVO_BITMAPRGB565_H
#define KANVO_BITMAPRGB565_H

#include "Kanvo_PixelAddress.h"
#include "Kanvo_SourceBitmap.h"

using Kanvo_PixelRGB565  = Tov_UShort;  //!< bits 15-11 red, 10-5 green, 4-0 blue
using Kanvo_OffsetRGB565 = Kanvo_PixelRGB565*;

class Kanvo_PixelRGB565_Access : public Kanvo_PixelAddress<Kanvo_PixelRGB565_Access, Kanvo_PixelRGB565>
{
public:
    static KANVO_INLINE Kanvo_PixelRGB565 ColorToPixel(Kanvo_Color cColor)
    {
        return static_cast<Kanvo_PixelRGB565>(cColor);
    }
    static KANVO_INLINE Kanvo_Color       PixelToColor(Kanvo_PixelRGB565 pxPixel) { return pxPixel; }
    static KANVO_INLINE Kanvo_PixelRGB565 PixelFromRGB(Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB)
    {
        return static_cast<Kanvo_PixelRGB565>(((ubR & 0xF8U) << 8) | ((static_cast<Tov_UInt>(ubG) << 3) & 0x07E0U) |
                                              (ubB >> 3));
    }

    // Five or six bits become eight by repeating the top bits below, so that full stays full.
    static KANVO_INLINE Tov_UByte RedFromPixel(Kanvo_PixelRGB565 pxPixel)
    {
        return static_cast<Tov_UByte>(((pxPixel >> 8) & 0xF8U) | (pxPixel >> 13));
    }
    static KANVO_INLINE Tov_UByte GreenFromPixel(Kanvo_PixelRGB565 pxPixel)
    {
        return static_cast<Tov_UByte>(((pxPixel >> 3) & 0xFCU) | ((pxPixel >> 9) & 0x03U));
    }
    static KANVO_INLINE Tov_UByte BlueFromPixel(Kanvo_PixelRGB565 pxPixel)
    {
        return static_cast<Tov_UByte>(((static_cast<Tov_UInt>(pxPixel) << 3) & 0xF8U) | ((pxPixel >> 2) & 0x07U));
    }
    static KANVO_INLINE Tov_UByte AlphaFromPixel(Kanvo_PixelRGB565 /*pxPixel*/) { return 255; }

    //! Per expanded channel, rows first; weights rounded to even, 0 .. 256, so that 255 reaches the neighbour.
    static KANVO_INLINE Kanvo_PixelRGB565 MixBilinear(Kanvo_PixelRGB565 pxTopLeft, Kanvo_PixelRGB565 pxTopRight,
                                                      Kanvo_PixelRGB565 pxBottomLeft, Kanvo_PixelRGB565 pxBottomRight,
                                                      Tov_UByte ubAlphaX, Tov_UByte ubAlphaY)
    {
        const Tov_Int iX = (ubAlphaX + 1) & ~1;
        const Tov_Int iY = (ubAlphaY + 1) & ~1;
        return PixelFromRGB(MixBlock(RedFromPixel(pxTopLeft), RedFromPixel(pxTopRight), RedFromPixel(pxBottomLeft),
                                     RedFromPixel(pxBottomRight), iX, iY),
                            MixBlock(GreenFromPixel(pxTopLeft), GreenFromPixel(pxTopRight),
                                     GreenFromPixel(pxBottomLeft), GreenFromPixel(pxBottomRight), iX, iY),
                            MixBlock(BlueFromPixel(pxTopLeft), BlueFromPixel(pxTopRight), BlueFromPixel(pxBottomLeft),
                                     BlueFromPixel(pxBottomRight), iX, iY));
    }

private:
    //! One channel of a 2x2 block.
    static KANVO_INLINE Tov_UByte MixBlock(Tov_Int iTopLeft, Tov_Int iTopRight, Tov_Int iBottomLeft,
                                           Tov_Int iBottomRight, Tov_Int iWeightX, Tov_Int iWeightY)
    {
        return static_cast<Tov_UByte>(Kanvo_MixByte(Kanvo_MixByte(iTopLeft, iTopRight, iWeightX),
                                                    Kanvo_MixByte(iBottomLeft, iBottomRight, iWeightX), iWeightY));
    }
};

// Its tables lie in the library, not in code that uses it and may be compiled with type information.
extern template class Kanvo_SourceBitmapOf<Kanvo_PixelRGB565, BM_RGB565>;

//! A source bitmap of RGB565 pixels.
class Kanvo_BitmapRGB565 : public Kanvo_SourceBitmapOf<Kanvo_PixelRGB565, BM_RGB565>
{
public:
    using Kanvo_SourceBitmapOf::Kanvo_SourceBitmapOf;

    //! The 16-bit pixel value, the form a colour key is compared in; low bits are dropped.
    Kanvo_Color ColorFromRGB(Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const override;
    Kanvo_Color ColorFromARGB(Tov_UByte ubA, Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const override;
    Tov_Bool    ColorToRGB(Kanvo_Color cColor, Tov_UByte& ubR, Tov_UByte& ubG, Tov_UByte& ubB) const override;
    //! False: every pixel is opaque.
    Tov_Bool HasAlpha() const override;
};

#endif
