// Kanvo_SpanRender_HQ_AA: spans and points whose ends follow the four-tap filter of g_Kanvo_ubFilter. Base of
// Kanvo_HSpanRender_HQ_AA and Kanvo_VSpanRender_HQ_AA, which choose the axis. Spans between two distances are
// Kanvo_SpanRender_AA's.
#ifndef KANVO_SPANRENDER_HQ_AA_H
#define KANVO_SPANRENDER_HQ_AA_H

#include "Kanvo_SpanRender_AA.h"

template <class Axis, class Style, class Access>
class Kanvo_SpanRender_HQAA : public Kanvo_SpanRender_AA<Axis, Style, Access>
{
public:
    using Pen = Kanvo_SpanPen<Axis, Access>;

    static constexpr Tov_Int POINT_PIXELS = 4;

    //! Points of a line that lie inside the bitmap, as RenderPixel each.
    static void DrawPoints(const Kanvo_PixelView& kView, Tov_Int iMajor, Tov_Fixed fxMinor, Tov_Fixed fxInc,
                           Tov_Int iCount, Kanvo_PixelARGB32 pxColor)
    {
        Kanvo_DrawSoftPoints<Axis, Access, POINT_PIXELS>(kView, iMajor, fxMinor, fxInc, iCount, pxColor, &Tap);
    }

    //! The point spread over four pixels.
    static KANVO_INLINE void RenderPixel(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x, Kanvo_PixelARGB32 pxColor)
    {
        const Pen kPen(pBitmap, y, x);
        for (Tov_Int iTap = 0; iTap < 4; ++iTap)
        {
            kPen.Blend(iTap, pxColor, Tap(x, iTap));
        }
    }

    //! The same inside the pixel bounds.
    static KANVO_INLINE void RenderPixel(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x, Kanvo_PixelARGB32 pxColor,
                                         Tov_Fixed max_Minor, Tov_Fixed min_Minor, Tov_Fixed max_Major,
                                         Tov_Fixed min_Major)
    {
        if ((y >> 16) < (min_Major >> 16) || (y >> 16) > (max_Major >> 16) || (x >> 16) > (max_Minor >> 16))
        {
            return;
        }
        const Pen       kPen(pBitmap, y, x);
        Kanvo_SpanRange kTaps{0, 3};
        kTaps.Limit((min_Minor >> 16) - (x >> 16), (max_Minor >> 16) - (x >> 16));
        for (Tov_Int iTap = kTaps.iFirst; iTap <= kTaps.iLast; ++iTap)
        {
            kPen.Blend(iTap, pxColor, Tap(x, iTap));
        }
    }

    //! Two filtered pixels at either end; the last lies one beyond the pixel that holds x2.
    static KANVO_INLINE void RenderSpan(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                        Kanvo_PixelARGB32 pxColor)
    {
        const Pen     kPen(pBitmap, y, x1);
        const Tov_Int iLast = (x2 >> 16) - (x1 >> 16);
        if (iLast < 0)
        {
            return;
        }
        const Ends kEnds(x1, x2);
        kPen.Blend(0, pxColor, kEnds.ubHead0);
        if (iLast >= 1)
        {
            kPen.Blend(1, pxColor, kEnds.ubHead1);
        }
        if (iLast >= 2)
        {
            kPen.PutRun(2, iLast - 1, pxColor);
            kPen.Blend(iLast, pxColor, kEnds.ubTail0);
            kPen.Blend(iLast + 1, pxColor, kEnds.ubTail1);
        }
    }

    static KANVO_INLINE void RenderSpanEdge(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                            Tov_Fixed fxDist, Tov_Fixed fxDistInc, Kanvo_PixelARGB32 pxColor)
    {
        const Tov_Int iLast = (x2 >> 16) - (x1 >> 16);
        if (iLast < 0)
        {
            return;
        }
        const Ends kEnds(x1, x2);
        Kanvo_WalkDistances(Pen(pBitmap, y, x1), {0, iLast >= 2 ? iLast + 1 : 1},
                            Kanvo_DistanceAtStart(x1, fxDist, fxDistInc, 0), fxDistInc, Kanvo_PaintColor{pxColor},
                            [=](Tov_Int iPixel, typename Pen::Offset kOffset, Tov_Fixed fxD, Kanvo_PixelARGB32 px)
                            {
                                if (fxD > 0)
                                {
                                    const Tov_UByte ubLimit = iPixel == 0       ? kEnds.ubHead0
                                                              : iPixel == 1     ? kEnds.ubHead1
                                                              : iPixel < iLast  ? Tov_UByte{255}
                                                              : iPixel == iLast ? kEnds.ubTail0
                                                                                : kEnds.ubTail1;
                                    Kanvo_BlendSrcAlpha<Access>(kOffset, px,
                                                                std::min(ubLimit, Kanvo_DistanceCover(fxD)));
                                }
                            });
    }

private:
    //! Tap 0 to 3 of the profile at the phase of x.
    static KANVO_INLINE Tov_UByte Tap(Tov_Fixed x, Tov_Int iTap)
    {
        const int iPhase = Kanvo_Fraction(x) >> 3;
        switch (iTap)
        {
        case 0: return g_Kanvo_ubFilter[iPhase + 32];
        case 1: return g_Kanvo_ubFilter[iPhase];
        case 2: return g_Kanvo_ubFilter[32 - iPhase];
        default: return g_Kanvo_ubFilter[64 - iPhase];
        }
    }

    //! The four end pixels of a span: the profile's rise at the head, mirrored at the tail.
    struct Ends
    {
        Tov_UByte ubHead0;
        Tov_UByte ubHead1;
        Tov_UByte ubTail0;
        Tov_UByte ubTail1;

        Ends(Tov_Fixed x1, Tov_Fixed x2)
            : ubHead0(g_Kanvo_ubFilter[(Kanvo_Fraction(x1) >> 3) + 32]),
              ubHead1(g_Kanvo_ubFilter[Kanvo_Fraction(x1) >> 3]),
              ubTail0(g_Kanvo_ubFilter[(255 - Kanvo_Fraction(x2)) >> 3]),
              ubTail1(g_Kanvo_ubFilter[((255 - Kanvo_Fraction(x2)) >> 3) + 32])
        {
        }
    };
};

#endif
