// Kanvo_Spandraw: what the six span renderers share: the axis they paint along, the limits that keep a span inside the
// bitmap, the colours of a pattern line, and the walk along a span whose edges are given by distances. And, for dots and
// polygons too, how one colour is blended over opaque pixels, of which most destinations are made, and in runs.
//
// A span lies across a line's major axis. Its pixels are counted from the one that holds its start:
//
//     x1                                x2          s = x1 >> 16, e = x2 >> 16, n = e - s
//     |.....|.......|.......|.......|...|           pixel i of the span is at minor position s + i
//     s (i = 0)                         e (i = n)
#ifndef KANVO_SPANDRAW_H
#define KANVO_SPANDRAW_H

#include <algorithm>
#include <type_traits>

#include "Kanvo_Geometry.h"
#include "Kanvo_Pattern.h"
#include "Kanvo_PixelARGB32_Access.h"
#include "Kanvo_Tables.h"
#include "rows.h"
#include "Tov_Math.h"

//! The style of a pattern line, filled by Kanvo_Linedraw and, per line, by the raster loops.
struct Kanvo_Line_patternStyle
{
    Kanvo_Pattern*       pkPattern;
    const Kanvo_Color*   aclColorBase;  //!< the pattern's table
    const Kanvo_Color*   aclColors;     //!< the half of it in use: forwards, or backwards for a flipped line
    Tov_Fixed            fxTex;         //!< texture coordinate at distance 0; one period is 0x10000
    Tov_Fixed            fxTexInc;      //!< its change per pixel along a span
    Tov_Fixed            fxTexMul;      //!< its change per pixel of distance along the line
    Tov_Fixed            fxTexOffset;   //!< where in the period the line starts, 0 .. 0xFFFF
    bool                 bFlip;         //!< drawn from its end towards its start
    const Kanvo_Vector2& kStart;        //!< start of the line before clipping

    explicit Kanvo_Line_patternStyle(const Kanvo_Vector2& kLineStart)
        : pkPattern(nullptr),
          aclColorBase(nullptr),
          aclColors(nullptr),
          fxTex(0),
          fxTexInc(0),
          fxTexMul(0),
          fxTexOffset(0),
          bFlip(false),
          kStart(kLineStart)
    {
    }
};

//! Blends a long run of one colour, each pixel as BlendPixelSrcAlpha does.
inline void Kanvo_BlendLongRun(Kanvo_OffsetARGB32 kOffset, Tov_UInt uiCount, Kanvo_PixelARGB32 pxColor,
                               Tov_UByte ubAlpha)
{
    if (Kanvo_PixelARGB32_Access::AlphaFromPixel(pxColor) == 255)
    {
        g_Kanvo_pkRows->pfnBlendColor(kOffset, uiCount, pxColor, ubAlpha);
        return;
    }
    // What a translucent colour makes of a pixel depends on the pixel's alpha too. That is the rule of source pixels, so
    // some are made up.
    constexpr Tov_UInt MADE_UP = 64;
    Kanvo_PixelARGB32  apxColor[MADE_UP];
    std::fill_n(apxColor, std::min(uiCount, MADE_UP), pxColor);
    while (uiCount > 0)
    {
        const Tov_UInt uiPart = std::min(uiCount, MADE_UP);
        g_Kanvo_pkRows->pfnOver(kOffset, apxColor, uiPart, ubAlpha);
        kOffset += uiPart;
        uiCount -= uiPart;
    }
}

//! Access::BlendPixelSrcAlpha, to be called.
template <class Access>
__attribute__((noinline)) void Kanvo_BlendTranslucent(typename Access::Offset kOffset, typename Access::Pixel pxColor,
                                                      Tov_UByte ubAlpha)
{
    Access::BlendPixelSrcAlpha(kOffset, pxColor, ubAlpha);
}

//! Access::BlendPixelSrcAlpha. Of an opaque colour on an opaque pixel, which is what lines and shapes mostly are, little is
//! left of it.
template <class Access>
KANVO_INLINE void Kanvo_BlendSrcAlpha(typename Access::Offset kOffset, typename Access::Pixel pxColor,
                                      Tov_UByte ubAlpha)
{
    const typename Access::Pixel pxDst = Access::GetPixel(kOffset);
    if (Access::AlphaFromPixel(pxDst & pxColor) == 255)
    {
        Access::PutPixel(kOffset, Kanvo_MixColor<7>(pxDst, pxColor, ubAlpha >> 1) | 0xFF000000U);
    }
    else
    {
        Kanvo_BlendTranslucent<Access>(kOffset, pxColor, ubAlpha);
    }
}

//! What is left of BlendPixelSrcAlpha for opaque pixels and one colour at one alpha:
//! d + floor((s - d) w / 128) is (d (128 - w) + s w) >> 7, four channels in two words of two lanes. The pixels stay opaque.
struct Kanvo_OpaqueMix
{
    Tov_UInt uiRedBlue;
    Tov_UInt uiAlphaGreen;
    Tov_UInt uiRest;

    KANVO_INLINE Kanvo_OpaqueMix(Kanvo_PixelARGB32 pxColor, Tov_UByte ubAlpha)
    {
        const Tov_UInt uiWeight = Kanvo_MulByte(ubAlpha, Kanvo_PixelARGB32_Access::AlphaFromPixel(pxColor)) >> 1;

        uiRedBlue    = (pxColor & KANVO_LANES) * uiWeight;
        uiAlphaGreen = (((pxColor | 0xFF000000U) >> 8) & KANVO_LANES) * uiWeight;
        uiRest       = 128U - uiWeight;
    }
    KANVO_INLINE Kanvo_PixelARGB32 operator()(Kanvo_PixelARGB32 pxDst) const
    {
        return ((((pxDst & KANVO_LANES) * uiRest + uiRedBlue) >> 7) & KANVO_LANES) |
               (((((pxDst >> 8) & KANVO_LANES) * uiRest + uiAlphaGreen) << 1) & (KANVO_LANES << 8));
    }
};

//! Blends iCount pixels of one colour at one alpha, each as BlendPixelSrcAlpha does. kStep(offset) goes to the next.
template <class Access, class Step>
KANVO_INLINE void Kanvo_BlendPixels(typename Access::Offset kOffset, typename Access::Pixel pxColor, Tov_Int iCount,
                                    Tov_UByte ubAlpha, Step kStep)
{
    const Kanvo_OpaqueMix kMix(pxColor, ubAlpha);
    for (; iCount > 0; --iCount)
    {
        const typename Access::Pixel pxDst = Access::GetPixel(kOffset);
        if (Access::AlphaFromPixel(pxDst) == 255)
        {
            Access::PutPixel(kOffset, kMix(pxDst));
        }
        else
        {
            Kanvo_BlendTranslucent<Access>(kOffset, pxColor, ubAlpha);
        }
        kStep(kOffset);
    }
}

//! Blends a run of one colour, each pixel as BlendPixelSrcAlpha does; a count of 0 or less blends nothing.
template <class Access>
KANVO_INLINE void Kanvo_BlendRunSrcAlpha(typename Access::Offset kOffset, typename Access::Pixel pxColor,
                                         Tov_Int iCount, Tov_UByte ubAlpha)
{
    if constexpr (std::is_same_v<Access, Kanvo_PixelARGB32_Access>)
    {
        if (iCount >= static_cast<Tov_Int>(KANVO_FEW_PIXELS))
        {
            Kanvo_BlendLongRun(kOffset, static_cast<Tov_UInt>(iCount), pxColor, ubAlpha);
            return;
        }
    }
    Kanvo_BlendPixels<Access>(kOffset, pxColor, iCount, ubAlpha, [](typename Access::Offset& kAt) { ++kAt; });
}

//! Pixels iFirst to iLast of a span, counted from its start.
struct Kanvo_SpanRange
{
    Tov_Int iFirst;
    Tov_Int iLast;

    void Limit(Tov_Int iFrom, Tov_Int iTo)
    {
        iFirst = std::max(iFirst, iFrom);
        iLast  = std::min(iLast, iTo);
    }
};

//! Spans along rows: major is y, minor is x.
template <class Access>
struct Kanvo_AxisH
{
    using Pixel  = typename Access::Pixel;
    using Offset = typename Access::Offset;

    static constexpr Tov_Bool MAJOR_IN_ROW = false;  //!< whether steps along the major axis stay in a row

    static Tov_Value Maj(const Kanvo_Vector2& kVector) { return kVector.y; }
    static Tov_Value Min(const Kanvo_Vector2& kVector) { return kVector.x; }
    static Tov_Int   MajorEnd(const Kanvo_Bitmap* pBitmap) { return static_cast<Tov_Int>(pBitmap->GetHeight()); }
    static Tov_Int   MinorEnd(const Kanvo_Bitmap* pBitmap) { return static_cast<Tov_Int>(pBitmap->GetWidth()); }
    static KANVO_INLINE Offset At(const Kanvo_PixelView& kView, Tov_Int iMajor, Tov_Int iMinor)
    {
        Offset kOffset;
        Access::GetOffset(&kView, static_cast<Tov_UInt>(iMinor), static_cast<Tov_UInt>(iMajor), kOffset);
        return kOffset;
    }
    static KANVO_INLINE void Step(const Kanvo_PixelView& kView, Offset& kOffset) { Access::IncX(&kView, kOffset); }
    static KANVO_INLINE void PutRun(const Kanvo_PixelView& /*kView*/, Offset kOffset, Pixel px, Tov_Int iCount)
    {
        Kanvo_PutRun<Access>(kOffset, px, iCount);
    }
    static KANVO_INLINE void BlendRun(const Kanvo_PixelView& /*kView*/, Offset kOffset, Pixel px, Tov_Int iCount,
                                      Tov_UByte ubAlpha)
    {
        Kanvo_BlendRunSrcAlpha<Access>(kOffset, px, iCount, ubAlpha);
    }
};

//! Spans along columns: major is x, minor is y. Runs are written pixel by pixel.
template <class Access>
struct Kanvo_AxisV
{
    using Pixel  = typename Access::Pixel;
    using Offset = typename Access::Offset;

    static constexpr Tov_Bool MAJOR_IN_ROW = true;

    static Tov_Value Maj(const Kanvo_Vector2& kVector) { return kVector.x; }
    static Tov_Value Min(const Kanvo_Vector2& kVector) { return kVector.y; }
    static Tov_Int   MajorEnd(const Kanvo_Bitmap* pBitmap) { return static_cast<Tov_Int>(pBitmap->GetWidth()); }
    static Tov_Int   MinorEnd(const Kanvo_Bitmap* pBitmap) { return static_cast<Tov_Int>(pBitmap->GetHeight()); }
    static KANVO_INLINE Offset At(const Kanvo_PixelView& kView, Tov_Int iMajor, Tov_Int iMinor)
    {
        Offset kOffset;
        Access::GetOffset(&kView, static_cast<Tov_UInt>(iMajor), static_cast<Tov_UInt>(iMinor), kOffset);
        return kOffset;
    }
    static KANVO_INLINE void Step(const Kanvo_PixelView& kView, Offset& kOffset) { Access::IncY(&kView, kOffset); }
    static KANVO_INLINE void PutRun(const Kanvo_PixelView& kView, Offset kOffset, Pixel px, Tov_Int iCount)
    {
        for (; iCount > 0; --iCount)
        {
            Access::PutPixel(kOffset, px);
            Step(kView, kOffset);
        }
    }
    static KANVO_INLINE void BlendRun(const Kanvo_PixelView& kView, Offset kOffset, Pixel px, Tov_Int iCount,
                                      Tov_UByte ubAlpha)
    {
        Kanvo_BlendPixels<Access>(kOffset, px, iCount, ubAlpha, [&kView](Offset& kAt) { Step(kView, kAt); });
    }
};

//! A span on its way to the bitmap, of which no pixel lies outside.
template <class Axis, class Access>
class Kanvo_FreePen
{
public:
    using Pixel  = typename Axis::Pixel;
    using Offset = typename Axis::Offset;

    KANVO_INLINE Kanvo_FreePen(const Kanvo_PixelView& kView, Tov_Fixed fxMajor, Tov_Fixed fxMinor)
        : m_kView(kView),
          m_iMajor(Tov_FixToInt(fxMajor)),
          m_iStart(Tov_FixToInt(fxMinor))
    {
    }

    KANVO_INLINE Offset At(Tov_Int iPixel) const { return Axis::At(m_kView, m_iMajor, m_iStart + iPixel); }
    KANVO_INLINE void   Step(Offset& kOffset) const { Axis::Step(m_kView, kOffset); }

    KANVO_INLINE void Blend(Tov_Int iPixel, Pixel px, Tov_UByte ubAlpha) const
    {
        Kanvo_BlendSrcAlpha<Access>(At(iPixel), px, ubAlpha);
    }
    //! Writes pixels iFirst to iLast, if there are any.
    KANVO_INLINE void PutRun(Tov_Int iFirst, Tov_Int iLast, Pixel px) const
    {
        Axis::PutRun(m_kView, At(iFirst), px, iLast - iFirst + 1);
    }
    //! Blends them by one alpha.
    KANVO_INLINE void BlendRun(Tov_Int iFirst, Tov_Int iLast, Pixel px, Tov_UByte ubAlpha) const
    {
        Axis::BlendRun(m_kView, At(iFirst), px, iLast - iFirst + 1, ubAlpha);
    }

protected:
    Kanvo_PixelView m_kView;  // a copy, which writing pixels cannot change
    Tov_Int         m_iMajor;
    Tov_Int         m_iStart;
};

//! A span that knows which of its pixels lie inside the bitmap, and writes only those. A line that lies inside the bitmap,
//! as the callers promise or the clipper sees to, loses nothing; its footprint may still reach over the edge.
template <class Axis, class Access>
class Kanvo_SpanPen : public Kanvo_FreePen<Axis, Access>
{
public:
    using Free  = Kanvo_FreePen<Axis, Access>;
    using Pixel = typename Axis::Pixel;

    KANVO_INLINE Kanvo_SpanPen(const Kanvo_Bitmap* pBitmap, Tov_Fixed fxMajor, Tov_Fixed fxMinor)
        : Free(Kanvo_PixelView{pBitmap->GetBuffer(), pBitmap->GetPitch()}, fxMajor, fxMinor),
          m_kInside{-this->m_iStart, Axis::MinorEnd(pBitmap) - 1 - this->m_iStart}
    {
        if (this->m_iMajor < 0 || this->m_iMajor >= Axis::MajorEnd(pBitmap))
        {
            m_kInside = {0, -1};
        }
    }

    //! Cuts a range to the bitmap; an empty one where the whole row is outside.
    KANVO_INLINE Kanvo_SpanRange Inside(Kanvo_SpanRange kRange) const
    {
        kRange.Limit(m_kInside.iFirst, m_kInside.iLast);
        return kRange;
    }

    KANVO_INLINE void Put(Tov_Int iPixel, Pixel px) const
    {
        if (IsInside(iPixel))
        {
            Access::PutPixel(this->At(iPixel), px);
        }
    }

    //! Blending by 0 changes nothing, so it touches nothing.
    KANVO_INLINE void Blend(Tov_Int iPixel, Pixel px, Tov_UByte ubAlpha) const
    {
        if (ubAlpha != 0 && IsInside(iPixel))
        {
            Free::Blend(iPixel, px, ubAlpha);
        }
    }

    KANVO_INLINE void PutRun(Tov_Int iFirst, Tov_Int iLast, Pixel px) const
    {
        const Kanvo_SpanRange kRange = Inside({iFirst, iLast});
        if (kRange.iFirst <= kRange.iLast)
        {
            Free::PutRun(kRange.iFirst, kRange.iLast, px);
        }
    }

    KANVO_INLINE void BlendRun(Tov_Int iFirst, Tov_Int iLast, Pixel px, Tov_UByte ubAlpha) const
    {
        const Kanvo_SpanRange kRange = Inside({iFirst, iLast});
        if (kRange.iFirst <= kRange.iLast)
        {
            Free::BlendRun(kRange.iFirst, kRange.iLast, px, ubAlpha);
        }
    }

private:
    KANVO_INLINE Tov_Bool IsInside(Tov_Int iPixel) const
    {
        return iPixel >= m_kInside.iFirst && iPixel <= m_kInside.iLast;
    }

    Kanvo_SpanRange m_kInside;
};

//! Coverage of a fraction of a pixel, in 1/256.
KANVO_INLINE Tov_UByte Kanvo_Fraction(Tov_Fixed fxValue)
{
    return static_cast<Tov_UByte>(fxValue >> 8);
}

//! Coverage at a positive distance inside an edge: full from one pixel on.
KANVO_INLINE Tov_UByte Kanvo_DistanceCover(Tov_Fixed fxDist)
{
    return fxDist >= 0x10000 ? Tov_UByte{255} : Kanvo_Fraction(fxDist);
}

//! Coverage between a near and a far edge. Where both are partial the near one counts.
KANVO_INLINE Tov_UByte Kanvo_TwoEdgeCover(Tov_Fixed fxNear, Tov_Fixed fxFar)
{
    return fxNear < 0x10000 ? Kanvo_Fraction(fxNear) : fxFar < 0x10000 ? Kanvo_Fraction(fxFar) : Tov_UByte{255};
}

//! The distance that a span's first pixel has at its left border.
KANVO_INLINE Tov_Fixed Kanvo_DistanceAtStart(Tov_Fixed x1, Tov_Fixed fxDist, Tov_Fixed fxDistInc, Tov_Fixed fxClip)
{
    return Tov_FixSub(fxDist, Tov_FixMul_RZA1H(Tov_FixAdd(x1 & 0xFFFF, fxClip), fxDistInc));
}

//! The pixels of a span that a clip allows: rows between the major bounds, and pixels whose coordinate, x1 plus a whole
//! number, is at least min_Minor and below max_Minor.
inline Kanvo_SpanRange Kanvo_ClipSpan(Tov_Fixed y, Tov_Fixed x1, Tov_Int iLast, Tov_Fixed max_Minor,
                                      Tov_Fixed min_Minor, Tov_Fixed max_Major, Tov_Fixed min_Major)
{
    if ((y >> 16) < (min_Major >> 16) || (y >> 16) > (max_Major >> 16))
    {
        return {0, -1};
    }
    const std::int64_t iBefore = std::int64_t{min_Minor} - x1 + 0xFFFF;  // the first pixel not before min_Minor
    const std::int64_t iBehind = std::int64_t{max_Minor} - x1 - 1;       // the last pixel before max_Minor
    Kanvo_SpanRange    kRange{0, iLast};
    kRange.Limit(static_cast<Tov_Int>(iBefore >> 16), static_cast<Tov_Int>(iBehind >> 16));
    return kRange;
}

//! The one colour of a span, or the colours of a pattern, pixel by pixel.
struct Kanvo_PaintColor
{
    Kanvo_PixelARGB32 pxColor;

    KANVO_INLINE Kanvo_PixelARGB32 Color() const { return pxColor; }
    KANVO_INLINE void              Skip(Tov_Int /*iPixels*/) {}
};

struct Kanvo_PaintPattern
{
    const Kanvo_Color* aclColors;
    Tov_Fixed          fxTex;
    Tov_Fixed          fxTexInc;

    Kanvo_PaintPattern(const Kanvo_Line_patternStyle& kStyle, Tov_Fixed fxDist)
        : aclColors(kStyle.aclColors),
          fxTex(Tov_FixAdd(kStyle.fxTex, Tov_FixMul_RZA1H(fxDist, kStyle.fxTexMul))),
          fxTexInc(kStyle.fxTexInc)
    {
    }
    KANVO_INLINE Kanvo_PixelARGB32 Color() const
    {
        return Kanvo_PixelARGB32_Access::ColorToPixel(aclColors[(fxTex >> 8) & 255]);
    }
    KANVO_INLINE void Skip(Tov_Int iPixels) { fxTex = Tov_FixAdd(fxTex, Tov_IntMul(fxTexInc, iPixels)); }
};

//! Walks the pixels of a span that lie in kRange and in the bitmap, and calls kRule(pixel index, offset, distance, colour)
//! for each. The distance and the paint are those of pixel 0; what comes before the range is skipped, not stepped.
template <class Pen, class Paint, class Rule>
KANVO_INLINE void Kanvo_WalkDistances(const Pen& kPen, Kanvo_SpanRange kRange, Tov_Fixed fxDist, Tov_Fixed fxDistInc,
                                      Paint kPaint, Rule kRule)
{
    kRange = kPen.Inside(kRange);
    if (kRange.iFirst > kRange.iLast)
    {
        return;
    }
    auto kOffset = kPen.At(kRange.iFirst);
    fxDist       = Tov_FixAdd(fxDist, Tov_IntMul(fxDistInc, kRange.iFirst));
    kPaint.Skip(kRange.iFirst);
    for (Tov_Int iPixel = kRange.iFirst; iPixel <= kRange.iLast; ++iPixel)
    {
        kRule(iPixel, kOffset, fxDist, kPaint.Color());
        kPen.Step(kOffset);
        fxDist = Tov_FixAdd(fxDist, fxDistInc);
        kPaint.Skip(1);
    }
}

//! Goes over iSteps steps of a line: those that kLies(step), counted from where the line stands, allows, all at once by
//! kInside(count), those before and behind, of which there are few, one by one by kCareful(). Both draw and move on. What
//! kLies allows must be one run of steps.
template <class Lies, class Inside, class Careful>
KANVO_INLINE void Kanvo_DrawSteps(std::int64_t iSteps, Lies kLies, Inside kInside, Careful kCareful)
{
    for (Tov_Bool bBefore = true; iSteps > 0;)
    {
        if (bBefore && kLies(0))
        {
            std::int64_t iInside = iSteps;
            while (!kLies(iInside - 1))
            {
                --iInside;
            }
            kInside(static_cast<Tov_Int>(iInside));
            iSteps -= iInside;
            bBefore = false;
        }
        else
        {
            kCareful();
            --iSteps;
        }
    }
}

//! Points along a line, POINT pixels each, which lie inside the bitmap: point i at (iMajor + i, fxMinor + i fxInc). kWeight
//! (fxMinor, pixel of the point) is what a pixel is blended by.
template <class Axis, class Access, Tov_Int POINT, class Weight>
KANVO_INLINE void Kanvo_DrawSoftPoints(const Kanvo_PixelView& kView, Tov_Int iMajor, Tov_Fixed fxMinor, Tov_Fixed fxInc,
                                       Tov_Int iCount, typename Access::Pixel px, Weight kWeight)
{
    if constexpr (Axis::MAJOR_IN_ROW)
    {
        if (fxInc == 0)
        {
            for (Tov_Int iPixel = 0; iPixel < POINT; ++iPixel)
            {
                if (const Tov_UByte ubAlpha = kWeight(fxMinor, iPixel); ubAlpha != 0)
                {
                    Kanvo_BlendRunSrcAlpha<Access>(Axis::At(kView, iMajor, (fxMinor >> 16) + iPixel), px, iCount,
                                                   ubAlpha);
                }
            }
            return;
        }
    }
    for (; iCount > 0; --iCount)
    {
        auto kOffset = Axis::At(kView, iMajor, fxMinor >> 16);
#pragma GCC unroll 4
        for (Tov_Int iPixel = 0; iPixel < POINT; ++iPixel)
        {
            Kanvo_BlendSrcAlpha<Access>(kOffset, px, kWeight(fxMinor, iPixel));
            Axis::Step(kView, kOffset);
        }
        ++iMajor;
        fxMinor = Tov_FixAdd(fxMinor, fxInc);
    }
}

//! How many steps from fxValue on stay in one pixel, the first included.
KANVO_INLINE Tov_Int Kanvo_StepsInPixel(Tov_Fixed fxValue, Tov_Fixed fxInc)
{
    const Tov_Fixed fxFraction = fxValue & 0xFFFF;
    return fxInc > 0 ? (0xFFFF - fxFraction) / fxInc + 1 : fxInc < 0 ? fxFraction / -fxInc + 1 : INT32_MAX;
}

//! Whether all pixels of a range have a distance of fxLeast to iMost. fxDist is that of pixel 0.
KANVO_INLINE Tov_Bool Kanvo_DistancesLie(Kanvo_SpanRange kRange, Tov_Fixed fxDist, Tov_Fixed fxDistInc,
                                         Tov_Fixed fxLeast, std::int64_t iMost)
{
    const std::int64_t iFirst = fxDist + std::int64_t{fxDistInc} * kRange.iFirst;
    const std::int64_t iLast  = fxDist + std::int64_t{fxDistInc} * kRange.iLast;
    return std::min(iFirst, iLast) >= fxLeast && std::max(iFirst, iLast) <= std::min<std::int64_t>(iMost, INT32_MAX);
}

//! Spans between two edges given by distances, in one colour or in those of a pattern, and the axis' vectors: what all
//! renderers have in common. Edges decides what a pixel at a near and a far distance gets; it is made from x1 and x2. From a
//! near distance of Edges::FULL up to Edges::FAR_FULL before the far edge, a pixel is touched by neither.
//! Coordinates and distances are 16.16; y is the major coordinate, x1 and x2 the ends along the minor axis. fxDist:
//! distance at x1; fxDistInc: its change per pixel; fxDist2: distance of the far edge; fxClip: how far x1 was moved by
//! clipping. The overloads with bounds draw inside them only; max_Minor is exclusive.
template <class Axis, class Access, class Edges>
class Kanvo_SpanTwoEdges
{
public:
    using Pen    = Kanvo_SpanPen<Axis, Access>;
    using Limits = Edges;

    //! RenderSpan2Edge or RenderSpanPattern2Edge of a span that lies inside the bitmap and meets neither edge. fxDist: the
    //! distance at x1.
    template <class Style>
    static KANVO_INLINE void DrawBody(const Kanvo_PixelView& kView, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                      Tov_Fixed fxDist, Tov_Fixed fxDistInc, const Style& kStyle)
    {
        const Edges           kEdges(x1, x2);
        const Kanvo_SpanRange kRange = Whole(x1, x2);
        if (!kEdges.HasPixels())
        {
            return;
        }
        const Kanvo_FreePen<Axis, Access> kPen(kView, y, x1);
        if constexpr (std::is_pointer_v<Style>)
        {
            Kanvo_PaintPattern kPaint(*kStyle, Kanvo_DistanceAtStart(x1, fxDist, fxDistInc, 0));
            auto               kOffset = kPen.At(0);
            for (Tov_Int iPixel = 0; iPixel <= kRange.iLast; ++iPixel)
            {
                kEdges.Draw(kOffset, kPaint.Color(), iPixel, 0x10000, 0x20000);  // a pixel from either edge
                kPen.Step(kOffset);
                kPaint.Skip(1);
            }
        }
        else
        {
            kEdges.DrawWhole(kPen, kRange, kStyle);
        }
    }

    //! The pixels that there are.
    static Kanvo_SpanRange Majors(const Kanvo_Bitmap* pBitmap) { return {0, Axis::MajorEnd(pBitmap) - 1}; }
    static Kanvo_SpanRange Minors(const Kanvo_Bitmap* pBitmap) { return {0, Axis::MinorEnd(pBitmap) - 1}; }

    static Tov_Value GetMajFromVector(const Kanvo_Vector2& kVector) { return Axis::Maj(kVector); }
    static Tov_Value GetMinFromVector(const Kanvo_Vector2& kVector) { return Axis::Min(kVector); }

    static KANVO_INLINE void RenderSpan2Edge(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                             Tov_Fixed fxDist, Tov_Fixed fxDistInc, Tov_Fixed fxDist2, Tov_Fixed fxClip,
                                             Kanvo_PixelARGB32 pxColor)
    {
        Draw(pBitmap, y, x1, x2, Whole(x1, x2), Kanvo_DistanceAtStart(x1, fxDist, fxDistInc, fxClip), fxDistInc,
             fxDist2, Kanvo_PaintColor{pxColor});
    }

    static KANVO_INLINE void RenderSpan2Edge(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                             Tov_Fixed fxDist, Tov_Fixed fxDistInc, Tov_Fixed fxDist2, Tov_Fixed fxClip,
                                             Kanvo_PixelARGB32 pxColor, Tov_Fixed max_Minor, Tov_Fixed min_Minor,
                                             Tov_Fixed max_Major, Tov_Fixed min_Major)
    {
        Draw(pBitmap, y, x1, x2, Kanvo_ClipSpan(y, x1, Whole(x1, x2).iLast, max_Minor, min_Minor, max_Major, min_Major),
             Kanvo_DistanceAtStart(x1, fxDist, fxDistInc, fxClip), fxDistInc, fxDist2, Kanvo_PaintColor{pxColor});
    }

    static KANVO_INLINE void RenderSpanPattern2Edge(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                                    Tov_Fixed fxDist, Tov_Fixed fxDistInc, Tov_Fixed fxDist2,
                                                    Tov_Fixed fxClip, const Kanvo_Line_patternStyle* pkStyle)
    {
        const Tov_Fixed fxAtStart = Kanvo_DistanceAtStart(x1, fxDist, fxDistInc, fxClip);
        Draw(pBitmap, y, x1, x2, Whole(x1, x2), fxAtStart, fxDistInc, fxDist2, Kanvo_PaintPattern(*pkStyle, fxAtStart));
    }

    static KANVO_INLINE void RenderSpanPattern2Edge(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                                    Tov_Fixed fxDist, Tov_Fixed fxDistInc, Tov_Fixed fxDist2,
                                                    Tov_Fixed fxClip, const Kanvo_Line_patternStyle* pkStyle,
                                                    Tov_Fixed max_Minor, Tov_Fixed min_Minor, Tov_Fixed max_Major,
                                                    Tov_Fixed min_Major)
    {
        const Tov_Fixed fxAtStart = Kanvo_DistanceAtStart(x1, fxDist, fxDistInc, fxClip);
        Draw(pBitmap, y, x1, x2, Kanvo_ClipSpan(y, x1, Whole(x1, x2).iLast, max_Minor, min_Minor, max_Major, min_Major),
             fxAtStart, fxDistInc, fxDist2, Kanvo_PaintPattern(*pkStyle, fxAtStart));
    }

protected:
    static KANVO_INLINE Kanvo_SpanRange Whole(Tov_Fixed x1, Tov_Fixed x2) { return {0, (x2 >> 16) - (x1 >> 16)}; }

private:
    template <class Paint>
    static KANVO_INLINE void Draw(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                  Kanvo_SpanRange kRange, Tov_Fixed fxDist, Tov_Fixed fxDistInc, Tov_Fixed fxDist2,
                                  Paint kPaint)
    {
        const Edges kEdges(x1, x2);
        if (!kEdges.HasPixels() || kRange.iFirst > kRange.iLast)
        {
            return;
        }
        const Pen kPen(pBitmap, y, x1);
        if constexpr (std::is_same_v<Paint, Kanvo_PaintColor>)
        {
            // Of a long line most spans meet neither edge.
            if (Kanvo_DistancesLie(kRange, fxDist, fxDistInc, Edges::FULL, std::int64_t{fxDist2} - Edges::FAR_FULL))
            {
                kEdges.DrawWhole(kPen, kRange, kPaint.pxColor);
                return;
            }
        }
        Kanvo_WalkDistances(kPen, kRange, fxDist, fxDistInc, kPaint,
                            [=](Tov_Int iPixel, typename Pen::Offset kOffset, Tov_Fixed fxNear, Kanvo_PixelARGB32 px)
                            { kEdges.Draw(kOffset, px, iPixel, fxNear, fxDist2); });
    }
};

#endif
