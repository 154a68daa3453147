// Kanvo_PixelARGB32_Access: the policy of the ARGB32 format, the destination of all drawing and one of the sources.
// Reads and writes pixels and blends them by the arithmetic of Kanvo_ColorMath. Straight alpha throughout.
#ifndef KANVO_PIXELARGB32_ACCESS_H
#define KANVO_PIXELARGB32_ACCESS_H

#include "Kanvo_PixelAddress.h"

using Kanvo_PixelARGB32  = Tov_UInt;  //!< bits 31-24 alpha, 23-16 red, 15-8 green, 7-0 blue
using Kanvo_OffsetARGB32 = Kanvo_PixelARGB32*;

class Kanvo_PixelARGB32_Access : public Kanvo_PixelWord<Kanvo_PixelARGB32_Access>
{
public:
    static KANVO_INLINE Kanvo_PixelARGB32 ColorAndAlphaToPixel(Kanvo_Color cColor, Tov_UByte ubAlpha)
    {
        return (cColor & 0x00FFFFFFU) | (static_cast<Tov_UInt>(ubAlpha) << 24);
    }

    //! Always opaque.
    static KANVO_INLINE Kanvo_PixelARGB32 PixelFromRGB(Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB)
    {
        return 0xFF000000U | (static_cast<Tov_UInt>(ubR) << 16) | (static_cast<Tov_UInt>(ubG) << 8) | ubB;
    }

    static KANVO_INLINE Kanvo_PixelARGB32 PixelFromColorARGB32(Kanvo_ColorARGB32 clColor) { return clColor; }
    static KANVO_INLINE Kanvo_ColorARGB32 ColorARGB32FromPixel(Kanvo_PixelARGB32 pxPixel) { return pxPixel; }

    static KANVO_INLINE void PutPixel(Kanvo_OffsetARGB32 kOffset, Kanvo_PixelARGB32 pxPixel) { *kOffset = pxPixel; }

    //! Writes the pixel iCount times and moves kOffset behind the span; a count of 0 or less writes nothing.
    static KANVO_INLINE void PutSpan(Kanvo_OffsetARGB32& kOffset, Kanvo_PixelARGB32 pxPixel, Tov_Int iCount)
    {
        for (; iCount > 0; --iCount)
        {
            *kOffset++ = pxPixel;
        }
    }

    static KANVO_INLINE void BlendPixel(Kanvo_OffsetARGB32 kOffset, Kanvo_PixelARGB32 pxSrc, Tov_UByte ubAlpha)
    {
        *kOffset = MixLinear(*kOffset, pxSrc, ubAlpha);
    }
    static KANVO_INLINE void BlendPixelSrcAlpha(Kanvo_OffsetARGB32 kOffset, Kanvo_PixelARGB32 pxSrc, Tov_UByte ubAlpha)
    {
        *kOffset = MixLinearSrcAlpha(*kOffset, pxSrc, ubAlpha);
    }
    static KANVO_INLINE void AddPixel(Kanvo_OffsetARGB32 kOffset, Kanvo_PixelARGB32 pxSrc)
    {
        *kOffset = MixAdditive(*kOffset, pxSrc);
    }

    //! Sum per colour channel, saturated; the result is opaque whatever the inputs are.
    static KANVO_INLINE Kanvo_PixelARGB32 MixAdditive(Kanvo_PixelARGB32 pxA, Kanvo_PixelARGB32 pxB)
    {
        const Tov_UInt uiRedBlue = RedBlueFromPixel(pxA) + RedBlueFromPixel(pxB);
        const Tov_UInt uiGreen   = static_cast<Tov_UInt>(GreenFromPixel(pxA)) + GreenFromPixel(pxB);
        return PixelFromRGB(Saturate(uiRedBlue >> 16), Saturate(uiGreen), Saturate(uiRedBlue & 0x1FFU));
    }

    //! Blends pxSrc over pxDst by ubAlpha alone; pxSrc's own alpha is not read.
    // KEPT: the colour weight is alpha >> 1 without a shortcut for 255, so an opaque blend stops up to two steps short.
    // Test: MixLinearAtAlpha255StopsTwoStepsShortOfWhite.
    static KANVO_INLINE Kanvo_PixelARGB32 MixLinear(Kanvo_PixelARGB32 pxDst, Kanvo_PixelARGB32 pxSrc, Tov_UByte ubAlpha)
    {
        const Tov_UInt uiAlpha = Kanvo_OverAlpha(AlphaFromPixel(pxDst), ubAlpha);
        return Kanvo_MixColor<7>(pxDst, pxSrc, ubAlpha >> 1) | (uiAlpha << 24);
    }

    //! Blends pxSrc over pxDst by its own alpha times ubAlpha.
    // KEPT: over a destination that does not become opaque the colour is weighted by the global alpha alone.
    // Test: ColourOverATranslucentDestinationIsWeightedByTheGlobalAlpha.
    static KANVO_INLINE Kanvo_PixelARGB32 MixLinearSrcAlpha(Kanvo_PixelARGB32 pxDst, Kanvo_PixelARGB32 pxSrc,
                                                            Tov_UByte ubAlpha)
    {
        const Tov_UByte ubEffective = Kanvo_MulByte(ubAlpha, AlphaFromPixel(pxSrc));
        const Tov_UInt  uiAlpha     = Kanvo_OverAlpha(AlphaFromPixel(pxDst), ubEffective);
        const Tov_UByte ubWeight    = uiAlpha == 255 ? ubEffective : ubAlpha;
        return Kanvo_MixColor<7>(pxDst, pxSrc, ubWeight >> 1) | (uiAlpha << 24);
    }

    //! Bilinear mix of a 2x2 block, first along the rows, then between them; weights of seven bits.
    static KANVO_INLINE Kanvo_PixelARGB32 MixBilinear(Kanvo_PixelARGB32 pxTopLeft, Kanvo_PixelARGB32 pxTopRight,
                                                      Kanvo_PixelARGB32 pxBottomLeft, Kanvo_PixelARGB32 pxBottomRight,
                                                      Tov_UByte ubAlphaX, Tov_UByte ubAlphaY)
    {
        const Tov_UInt uiWeightX = ubAlphaX >> 1;
        return Kanvo_MixWord(Kanvo_MixWord(pxTopLeft, pxTopRight, uiWeightX),
                             Kanvo_MixWord(pxBottomLeft, pxBottomRight, uiWeightX), ubAlphaY >> 1);
    }

private:
    static KANVO_INLINE Tov_UByte Saturate(Tov_UInt uiSum)
    {
        return static_cast<Tov_UByte>((uiSum & 0x100U) != 0 ? 255U : uiSum);
    }
};

#endif
