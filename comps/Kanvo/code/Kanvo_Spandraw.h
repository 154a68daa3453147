// Kanvo_Spandraw: what the six span renderers share: the axis they paint along, the limits that keep a span inside the
// bitmap, the colours of a pattern line, and the walk along a span whose edges are given by distances.
//
// A span lies across a line's major axis. Its pixels are counted from the one that holds its start:
//
//     x1                                x2          s = x1 >> 16, e = x2 >> 16, n = e - s
//     |.....|.......|.......|.......|...|           pixel i of the span is at minor position s + i
//     s (i = 0)                         e (i = n)
#ifndef KANVO_SPANDRAW_H
#define KANVO_SPANDRAW_H

#include <algorithm>

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

    static Tov_Value Maj(const Kanvo_Vector2& kVector) { return kVector.y; }
    static Tov_Value Min(const Kanvo_Vector2& kVector) { return kVector.x; }
    static Tov_Int   MajorEnd(const Kanvo_Bitmap* pBitmap) { return static_cast<Tov_Int>(pBitmap->GetHeight()); }
    static Tov_Int   MinorEnd(const Kanvo_Bitmap* pBitmap) { return static_cast<Tov_Int>(pBitmap->GetWidth()); }
    static KANVO_INLINE Offset At(const Kanvo_Bitmap* pBitmap, Tov_Int iMajor, Tov_Int iMinor)
    {
        Offset kOffset;
        Access::GetOffset(pBitmap, static_cast<Tov_UInt>(iMinor), static_cast<Tov_UInt>(iMajor), kOffset);
        return kOffset;
    }
    static KANVO_INLINE void Step(const Kanvo_Bitmap* pBitmap, Offset& kOffset) { Access::IncX(pBitmap, kOffset); }
    static KANVO_INLINE void PutRun(const Kanvo_Bitmap* /*pBitmap*/, Offset kOffset, Pixel px, Tov_Int iCount)
    {
        Kanvo_PutRun<Access>(kOffset, px, iCount);
    }
};

//! Spans along columns: major is x, minor is y. Runs are written pixel by pixel.
template <class Access>
struct Kanvo_AxisV
{
    using Pixel  = typename Access::Pixel;
    using Offset = typename Access::Offset;

    static Tov_Value Maj(const Kanvo_Vector2& kVector) { return kVector.x; }
    static Tov_Value Min(const Kanvo_Vector2& kVector) { return kVector.y; }
    static Tov_Int   MajorEnd(const Kanvo_Bitmap* pBitmap) { return static_cast<Tov_Int>(pBitmap->GetWidth()); }
    static Tov_Int   MinorEnd(const Kanvo_Bitmap* pBitmap) { return static_cast<Tov_Int>(pBitmap->GetHeight()); }
    static KANVO_INLINE Offset At(const Kanvo_Bitmap* pBitmap, Tov_Int iMajor, Tov_Int iMinor)
    {
        Offset kOffset;
        Access::GetOffset(pBitmap, static_cast<Tov_UInt>(iMajor), static_cast<Tov_UInt>(iMinor), kOffset);
        return kOffset;
    }
    static KANVO_INLINE void Step(const Kanvo_Bitmap* pBitmap, Offset& kOffset) { Access::IncY(pBitmap, kOffset); }
    static KANVO_INLINE void PutRun(const Kanvo_Bitmap* pBitmap, Offset kOffset, Pixel px, Tov_Int iCount)
    {
        for (; iCount > 0; --iCount)
        {
            Access::PutPixel(kOffset, px);
            Step(pBitmap, kOffset);
        }
    }
};

//! A span on its way to the bitmap: knows which of its pixels lie inside, and writes only those. A line that lies inside
//! the bitmap, as the callers promise or the clipper sees to, loses nothing; its footprint may still reach over the edge.
template <class Axis, class Access>
class Kanvo_SpanPen
{
public:
    using Pixel  = typename Axis::Pixel;
    using Offset = typename Axis::Offset;

    Kanvo_SpanPen(const Kanvo_Bitmap* pBitmap, Tov_Fixed fxMajor, Tov_Fixed fxMinor)
        : m_pBitmap(pBitmap),
          m_iMajor(Tov_FixToInt(fxMajor)),
          m_iStart(Tov_FixToInt(fxMinor))
    {
    }

    //! Cuts a range to the bitmap; an empty one where the whole row is outside.
    KANVO_INLINE Kanvo_SpanRange Inside(Kanvo_SpanRange kRange) const
    {
        if (m_iMajor < 0 || m_iMajor >= Axis::MajorEnd(m_pBitmap))
        {
            return {0, -1};
        }
        kRange.Limit(-m_iStart, Axis::MinorEnd(m_pBitmap) - 1 - m_iStart);
        return kRange;
    }

    KANVO_INLINE Offset At(Tov_Int iPixel) const { return Axis::At(m_pBitmap, m_iMajor, m_iStart + iPixel); }

    KANVO_INLINE void Put(Tov_Int iPixel, Pixel px) const
    {
        if (IsInside(iPixel))
        {
            Access::PutPixel(At(iPixel), px);
        }
    }

    //! Blending by 0 changes nothing, so it touches nothing.
    KANVO_INLINE void Blend(Tov_Int iPixel, Pixel px, Tov_UByte ubAlpha) const
    {
        if (ubAlpha != 0 && IsInside(iPixel))
        {
            Access::BlendPixelSrcAlpha(At(iPixel), px, ubAlpha);
        }
    }

    //! Writes pixels iFirst to iLast.
    KANVO_INLINE void PutRun(Tov_Int iFirst, Tov_Int iLast, Pixel px) const
    {
        const Kanvo_SpanRange kRange = Inside({iFirst, iLast});
        if (kRange.iFirst <= kRange.iLast)
        {
            Axis::PutRun(m_pBitmap, At(kRange.iFirst), px, kRange.iLast - kRange.iFirst + 1);
        }
    }

    KANVO_INLINE void Step(Offset& kOffset) const { Axis::Step(m_pBitmap, kOffset); }

private:
    KANVO_INLINE Tov_Bool IsInside(Tov_Int iPixel) const
    {
        const Tov_Int iMinor = m_iStart + iPixel;
        return m_iMajor >= 0 && m_iMajor < Axis::MajorEnd(m_pBitmap) && iMinor >= 0 &&
               iMinor < Axis::MinorEnd(m_pBitmap);
    }

    const Kanvo_Bitmap* m_pBitmap;
    Tov_Int             m_iMajor;
    Tov_Int             m_iStart;
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

//! Spans between two edges given by distances, in one colour or in those of a pattern, and the axis' vectors: what all
//! renderers have in common. Edges decides what a pixel at a near and a far distance gets; it is made from x1 and x2.
//! Coordinates and distances are 16.16; y is the major coordinate, x1 and x2 the ends along the minor axis. fxDist:
//! distance at x1; fxDistInc: its change per pixel; fxDist2: distance of the far edge; fxClip: how far x1 was moved by
//! clipping. The overloads with bounds draw inside them only; max_Minor is exclusive.
template <class Axis, class Access, class Edges>
class Kanvo_SpanTwoEdges
{
public:
    using Pen = Kanvo_SpanPen<Axis, Access>;

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
        if (kEdges.HasPixels())
        {
            Kanvo_WalkDistances(Pen(pBitmap, y, x1), kRange, fxDist, fxDistInc, kPaint,
                                [=](Tov_Int iPixel, typename Pen::Offset kOffset, Tov_Fixed fxNear,
                                    Kanvo_PixelARGB32 px) { kEdges.Draw(kOffset, px, iPixel, fxNear, fxDist2); });
        }
    }
};

#endif
