// Kanvo_HSpanRender: horizontal spans with hard edges, for Y-major lines and polygons. The work is that of Kanvo_SpanRender.
#ifndef KANVO_HSPANRENDER_H
#define KANVO_HSPANRENDER_H

#include "Kanvo_SpanRender.h"

template <class PixelType, class OffsetType, class Style, class Access>
class Kanvo_HSpanRender : public Kanvo_SpanRender<Kanvo_AxisH<Access>, Style, Access>
{
public:
    //! Whose spans between two distances it draws.
    using TwoEdges = Kanvo_HSpanRender;

    //! All pixels from the one that holds x1 to the one that holds x2, blended by ubAlpha.
    static KANVO_INLINE void RenderSpanAlpha(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                             PixelType pxColor, Tov_UByte ubAlpha)
    {
        const Kanvo_SpanPen<Kanvo_AxisH<Access>, Access> kPen(pBitmap, y, x1);
        const Kanvo_SpanRange                            kRange = kPen.Inside({0, (x2 >> 16) - (x1 >> 16)});
        if (kRange.iFirst <= kRange.iLast)
        {
            Kanvo_BlendRunSrcAlpha<Access>(kPen.At(kRange.iFirst), pxColor, kRange.iLast - kRange.iFirst + 1, ubAlpha);
        }
    }
};

#endif
