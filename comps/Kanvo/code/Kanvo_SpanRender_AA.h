// Kanvo_SpanRender_AA: spans and points whose ends are blended by the part of the pixel that they cover. Base of
// Kanvo_HSpanRender_AA and Kanvo_VSpanRender_AA, which choose the axis.
#ifndef KANVO_SPANRENDER_AA_H
#define KANVO_SPANRENDER_AA_H

#include "Kanvo_SpanRender.h"

//! A pixel is blended by the smaller of what its end of the span and its distances let it have. A span inside one pixel
//! has no pixels.
template <class Access>
struct Kanvo_SoftEdges
{
    static constexpr Tov_Bool  SOFT     = true;
    static constexpr Tov_Fixed FULL     = 0x10000;
    static constexpr Tov_Fixed FAR_FULL = 0x10000;

    Tov_Int   iLast;
    Tov_UByte ubHead;
    Tov_UByte ubTail;

    Kanvo_SoftEdges(Tov_Fixed x1, Tov_Fixed x2)
        : iLast((x2 >> 16) - (x1 >> 16)),
          ubHead(static_cast<Tov_UByte>(255 - Kanvo_Fraction(x1))),
          ubTail(Kanvo_Fraction(x2))
    {
    }
    KANVO_INLINE Tov_Bool  HasPixels() const { return iLast > 0; }
    KANVO_INLINE Tov_UByte Limit(Tov_Int iPixel) const
    {
        return iPixel == 0 ? ubHead : iPixel == iLast ? ubTail : Tov_UByte{255};
    }
    KANVO_INLINE void Draw(typename Access::Offset kOffset, Kanvo_PixelARGB32 px, Tov_Int iPixel, Tov_Fixed fxNear,
                           Tov_Fixed fxDist2) const
    {
        const Tov_Fixed fxFar = Tov_FixSub(fxDist2, fxNear);
        if (fxNear > 0 && fxFar >= 0)
        {
            Kanvo_BlendSrcAlpha<Access>(kOffset, px, std::min(Limit(iPixel), Kanvo_TwoEdgeCover(fxNear, fxFar)));
        }
    }
    template <class Pen>
    KANVO_INLINE void DrawWhole(const Pen& kPen, Kanvo_SpanRange kRange, Kanvo_PixelARGB32 px) const
    {
        if (kRange.iFirst == 0)
        {
            kPen.Blend(0, px, ubHead);
        }
        kPen.BlendRun(std::max<Tov_Int>(kRange.iFirst, 1), std::min(kRange.iLast, iLast - 1), px, 255);
        if (kRange.iLast == iLast)
        {
            kPen.Blend(iLast, px, ubTail);
        }
    }
};

//! As Kanvo_SpanRender, with coverage in 1/256 at both ends and along distances.
template <class Axis, class Style, class Access>
class Kanvo_SpanRender_AA : public Kanvo_SpanTwoEdges<Axis, Access, Kanvo_SoftEdges<Access>>
{
public:
    using Pen = Kanvo_SpanPen<Axis, Access>;

    static constexpr Tov_Int POINT_PIXELS = 2;

    //! Points of a line that lie inside the bitmap, as RenderPixel each.
    static void DrawPoints(const Kanvo_PixelView& kView, Tov_Int iMajor, Tov_Fixed fxMinor, Tov_Fixed fxInc,
                           Tov_Int iCount, Kanvo_PixelARGB32 pxColor)
    {
        Kanvo_DrawSoftPoints<Axis, Access, POINT_PIXELS>(
            kView, iMajor, fxMinor, fxInc, iCount, pxColor,
            [](Tov_Fixed x, Tov_Int iPixel)
            { return static_cast<Tov_UByte>(iPixel == 0 ? 255 - Kanvo_Fraction(x) : Kanvo_Fraction(x)); });
    }

    //! The point shared by the two pixels that it lies between.
    static KANVO_INLINE void RenderPixel(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x, Kanvo_PixelARGB32 pxColor)
    {
        const Pen       kPen(pBitmap, y, x);
        const Tov_UByte ubSecond = Kanvo_Fraction(x);
        kPen.Blend(0, pxColor, static_cast<Tov_UByte>(255 - ubSecond));
        kPen.Blend(1, pxColor, ubSecond);
    }

    //! The same inside the pixel bounds.
    static KANVO_INLINE void RenderPixel(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x, Kanvo_PixelARGB32 pxColor,
                                         Tov_Fixed max_Minor, Tov_Fixed min_Minor, Tov_Fixed max_Major,
                                         Tov_Fixed min_Major)
    {
        if ((y >> 16) < (min_Major >> 16) || (y >> 16) > (max_Major >> 16))
        {
            return;
        }
        const Pen       kPen(pBitmap, y, x);
        const Tov_Int   iFrom    = (min_Minor >> 16) - (x >> 16);
        const Tov_Int   iTo      = (max_Minor >> 16) - (x >> 16);
        const Tov_UByte ubSecond = Kanvo_Fraction(x);
        if (iFrom <= 0 && iTo >= 0)
        {
            kPen.Blend(0, pxColor, static_cast<Tov_UByte>(255 - ubSecond));
        }
        if (iFrom <= 1 && iTo >= 1)
        {
            kPen.Blend(1, pxColor, ubSecond);
        }
    }

    //! Nothing where both ends lie in one pixel.
    static KANVO_INLINE void RenderSpan(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                        Kanvo_PixelARGB32 pxColor)
    {
        const Pen     kPen(pBitmap, y, x1);
        const Tov_Int iLast = (x2 >> 16) - (x1 >> 16);
        if (iLast > 0)
        {
            kPen.Blend(0, pxColor, static_cast<Tov_UByte>(255 - Kanvo_Fraction(x1)));
            kPen.PutRun(1, iLast - 1, pxColor);
            kPen.Blend(iLast, pxColor, Kanvo_Fraction(x2));
        }
    }

    static KANVO_INLINE void RenderSpanEdge(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                            Tov_Fixed fxDist, Tov_Fixed fxDistInc, Kanvo_PixelARGB32 pxColor)
    {
        const Kanvo_SoftEdges<Access> kEdges(x1, x2);
        if (!kEdges.HasPixels())
        {
            return;
        }
        Kanvo_WalkDistances(Pen(pBitmap, y, x1), {0, kEdges.iLast}, Kanvo_DistanceAtStart(x1, fxDist, fxDistInc, 0),
                            fxDistInc, Kanvo_PaintColor{pxColor},
                            [=](Tov_Int iPixel, typename Pen::Offset kOffset, Tov_Fixed fxD, Kanvo_PixelARGB32 px)
                            {
                                if (fxD > 0)
                                {
                                    Kanvo_BlendSrcAlpha<Access>(
                                        kOffset, px, std::min(kEdges.Limit(iPixel), Kanvo_DistanceCover(fxD)));
                                }
                            });
    }
};

#endif
