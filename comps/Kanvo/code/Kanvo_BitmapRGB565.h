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
        const Tov_Int iWeightX = (ubAlphaX + 1) & ~1;
        const Tov_Int iWeightY = (ubAlphaY + 1) & ~1;
        const auto    kMix     = [=](Tov_UByte (*pfnChannel)(Kanvo_PixelRGB565))
        {
            const Tov_Int iTop    = Kanvo_MixByte(pfnChannel(pxTopLeft), pfnChannel(pxTopRight), iWeightX);
            const Tov_Int iBottom = Kanvo_MixByte(pfnChannel(pxBottomLeft), pfnChannel(pxBottomRight), iWeightX);
            return static_cast<Tov_UByte>(Kanvo_MixByte(iTop, iBottom, iWeightY));
        };
        return PixelFromRGB(kMix(&RedFromPixel), kMix(&GreenFromPixel), kMix(&BlueFromPixel));
    }
};

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
