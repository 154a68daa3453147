// Kanvo_ColorMath: the arithmetic of every blend, written once, on bytes and on ARGB32 words. The pixel policies give it
// its names; the row functions of Kanvo_NEON are held to its bytes. Unsigned 32-bit arithmetic throughout, wrap-around
// intended where it happens. Includes the scalar types only.
#ifndef KANVO_COLORMATH_H
#define KANVO_COLORMATH_H

#include "Tov_Types.h"

#define KANVO_INLINE inline __attribute__((always_inline))

//! Red and blue of an ARGB32 word: two lanes with eight spare bits between them.
constexpr Tov_UInt KANVO_LANES = 0x00FF00FFU;

//! uiA * uiB / 255, truncated, without a division. Exact for every pair of bytes. This is also the global-alpha rule:
//! a coverage times an opacity, where an opacity of 255 changes nothing.
KANVO_INLINE Tov_UByte Kanvo_MulByte(Tov_UInt uiA, Tov_UInt uiB)
{
    const Tov_UInt uiProduct = uiA * uiB;  // 0 .. 65025
    return static_cast<Tov_UByte>((uiProduct + (uiProduct >> 8) + 1) >> 8);
}

//! Alpha of a source of alpha ubSrc laid over a destination of alpha ubDst. Never above 255.
KANVO_INLINE Tov_UByte Kanvo_OverAlpha(Tov_UByte ubDst, Tov_UByte ubSrc)
{
    return static_cast<Tov_UByte>(Kanvo_MulByte(255U - ubSrc, ubDst) + ubSrc);
}

//! d + floor((s - d) * uiWeight / 2^SHIFT) in both lanes at once, for uiWeight 0 .. 2^SHIFT. A lane whose difference is
//! negative borrows from above and pays it back in the sum; what the shift leaves over falls to the mask.
template <int SHIFT>
KANVO_INLINE Tov_UInt Kanvo_MixLanes(Tov_UInt uiDst, Tov_UInt uiSrc, Tov_UInt uiWeight)
{
    return (uiDst + (((uiSrc - uiDst) * uiWeight) >> SHIFT)) & KANVO_LANES;
}

//! The three colour channels of two ARGB32 words mixed with a weight of 2^-SHIFT steps; the alpha byte of the result is 0.
template <int SHIFT>
KANVO_INLINE Tov_UInt Kanvo_MixColor(Tov_UInt uiDst, Tov_UInt uiSrc, Tov_UInt uiWeight)
{
    const Tov_UInt uiRedBlue = Kanvo_MixLanes<SHIFT>(uiDst & KANVO_LANES, uiSrc & KANVO_LANES, uiWeight);
    const Tov_UInt uiGreen   = Kanvo_MixLanes<SHIFT>((uiDst >> 8) & 0xFFU, (uiSrc >> 8) & 0xFFU, uiWeight) & 0xFFU;
    return uiRedBlue | (uiGreen << 8);
}

//! All four channels of two ARGB32 words mixed alike, with a weight of 0 .. 128.
KANVO_INLINE Tov_UInt Kanvo_MixWord(Tov_UInt uiDst, Tov_UInt uiSrc, Tov_UInt uiWeight)
{
    const Tov_UInt uiRedBlue    = Kanvo_MixLanes<7>(uiDst & KANVO_LANES, uiSrc & KANVO_LANES, uiWeight);
    const Tov_UInt uiAlphaGreen = Kanvo_MixLanes<7>((uiDst >> 8) & KANVO_LANES, (uiSrc >> 8) & KANVO_LANES, uiWeight);
    return uiRedBlue | (uiAlphaGreen << 8);
}

//! d + floor((s - d) * iWeight / 256) of one channel, for iWeight 0 .. 256.
KANVO_INLINE Tov_Int Kanvo_MixByte(Tov_Int iDst, Tov_Int iSrc, Tov_Int iWeight)
{
    return iDst + (((iSrc - iDst) * iWeight) >> 8);
}

//! The mix of coverage blits and fills: as the ARGB32 policy's MixLinear, but ubAlpha 255 gives clSrc itself, alpha
//! included, and the weight keeps all eight bits of ubAlpha.
KANVO_INLINE Kanvo_ColorARGB32 KanvoBlit_MixLinear(Kanvo_ColorARGB32 clDst, Kanvo_ColorARGB32 clSrc, Tov_UByte ubAlpha)
{
    if (ubAlpha == 255)
    {
        return clSrc;
    }
    const Tov_UInt uiAlpha = Kanvo_OverAlpha(static_cast<Tov_UByte>(clDst >> 24), ubAlpha);
    return Kanvo_MixColor<8>(clDst, clSrc, ubAlpha) | (uiAlpha << 24);
}

#endif
