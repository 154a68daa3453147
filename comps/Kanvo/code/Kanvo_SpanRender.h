// Kanvo_SpanRender: spans and points with hard edges. Base of Kanvo_HSpanRender and Kanvo_VSpanRender, which choose the
// axis.
#ifndef KANVO_SPANRENDER_H
#define KANVO_SPANRENDER_H

#include <cstddef>

#include "Kanvo_Spandraw.h"

//! A pixel is written whole or not at all.
template <class Access>
struct Kanvo_HardEdges
{
    static constexpr Tov_Bool  SOFT     = false;
    static constexpr Tov_Fixed FULL     = 1;
    static constexpr Tov_Fixed FAR_FULL = 0;

    Kanvo_HardEdges(Tov_Fixed /*x1*/, Tov_Fixed /*x2*/) {}

    KANVO_INLINE Tov_Bool HasPixels() const { return true; }
    KANVO_INLINE void Draw(typename Access::Offset kOffset, Kanvo_PixelARGB32 px, Tov_Int /*iPixel*/, Tov_Fixed fxNear,
                           Tov_Fixed fxDist2) const
    {
        if (fxNear > 0 && fxNear <= fxDist2)
        {
            Access::PutPixel(kOffset, px);
        }
    }
    template <class Pen>
    KANVO_INLINE void DrawWhole(const Pen& kPen, Kanvo_SpanRange kRange, Kanvo_PixelARGB32 px) const
    {
        kPen.PutRun(kRange.iFirst, kRange.iLast, px);
    }
};

//! Points of a line that lie inside the bitmap: point i at (iMajor + i, fxMinor + i fxInc). bMajorInRow: whether steps along
//! the major axis stay in a row. Asked here, not compiled twice: the loop is the same along both axes, and which way the next
//! line runs no processor foresees.
template <class Access>
void Kanvo_DrawHardPoints(const Kanvo_PixelView& kView, Tov_Bool bMajorInRow, Tov_Int iMajor, Tov_Fixed fxMinor,
                          Tov_Fixed fxInc, Tov_Int iCount, typename Access::Pixel pxColor)
{
    constexpr Tov_Fixed SHALLOW = 0x10000 / 12;  // runs of so many pixels are worth a division
    if (bMajorInRow && Tov_FixAbs(fxInc) <= SHALLOW)
    {
        while (iCount > 0)
        {
            const Tov_Int iRun = std::min(iCount, Kanvo_StepsInPixel(fxMinor, fxInc));
            Kanvo_PutRun<Access>(Kanvo_AxisV<Access>::At(kView, iMajor, fxMinor >> 16), pxColor, iRun);
            iMajor += iRun;
            iCount -= iRun;
            fxMinor = Tov_FixAdd(fxMinor, Tov_IntMul(fxInc, iRun));
        }
        return;
    }
    constexpr auto       PIXEL    = static_cast<std::ptrdiff_t>(sizeof(typename Access::Pixel));
    const auto           iPitch   = static_cast<std::ptrdiff_t>(kView.uiPitch);
    const std::ptrdiff_t iAlong   = bMajorInRow ? PIXEL : iPitch;
    const std::ptrdiff_t iAcross  = bMajorInRow ? iPitch : PIXEL;
    Tov_UByte*           pubMajor = static_cast<Tov_UByte*>(kView.pBuffer) + iMajor * iAlong;
    for (; iCount > 0; --iCount)
    {
        Access::PutPixel(reinterpret_cast<typename Access::Offset>(pubMajor + (fxMinor >> 16) * iAcross), pxColor);
        pubMajor += iAlong;
        fxMinor = Tov_FixAdd(fxMinor, fxInc);
    }
}

//! Static methods over an axis and a style: a pixel value for colour lines, a Kanvo_Line_patternStyle* for pattern
//! lines, whose only methods in use are RenderSpanPattern2Edge. Coordinates and distances are 16.16; y is the major
//! coordinate, x the minor one. Pixels outside the bitmap are left out.
template <class Axis, class Style, class Access>
class Kanvo_SpanRender : public Kanvo_SpanTwoEdges<Axis, Access, Kanvo_HardEdges<Access>>
{
public:
    using Pen = Kanvo_SpanPen<Axis, Access>;

    static constexpr Tov_Int POINT_PIXELS = 1;

    //! Points of a line that lie inside the bitmap, as RenderPixel each: point i at (iMajor + i, fxMinor + i fxInc).
    static void DrawPoints(const Kanvo_PixelView& kView, Tov_Int iMajor, Tov_Fixed fxMinor, Tov_Fixed fxInc,
                           Tov_Int iCount, Kanvo_PixelARGB32 pxColor)
    {
        Kanvo_DrawHardPoints<Access>(kView, Axis::MAJOR_IN_ROW, iMajor, fxMinor, fxInc, iCount, pxColor);
    }

    //! The pixel that holds the point.
    static KANVO_INLINE void RenderPixel(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x, Kanvo_PixelARGB32 pxColor)
    {
        Pen(pBitmap, y, x).Put(0, pxColor);
    }

    //! The same inside the pixel bounds.
    static KANVO_INLINE void RenderPixel(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x, Kanvo_PixelARGB32 pxColor,
                                         Tov_Fixed max_Minor, Tov_Fixed min_Minor, Tov_Fixed max_Major,
                                         Tov_Fixed min_Major)
    {
        if ((y >> 16) >= (min_Major >> 16) && (y >> 16) <= (max_Major >> 16) && (x >> 16) >= (min_Minor >> 16) &&
            (x >> 16) <= (max_Minor >> 16))
        {
            RenderPixel(pBitmap, y, x, pxColor);
        }
    }

    //! All pixels from the one that holds x1 to the one that holds x2.
    static KANVO_INLINE void RenderSpan(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                        Kanvo_PixelARGB32 pxColor)
    {
        Pen(pBitmap, y, x1).PutRun(0, (x2 >> 16) - (x1 >> 16), pxColor);
    }

    //! Those of them whose distance is positive. fxDist: distance at x1; fxDistInc: its change per pixel.
    static KANVO_INLINE void RenderSpanEdge(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                            Tov_Fixed fxDist, Tov_Fixed fxDistInc, Kanvo_PixelARGB32 pxColor)
    {
        Kanvo_WalkDistances(Pen(pBitmap, y, x1), {0, (x2 >> 16) - (x1 >> 16)},
                            Kanvo_DistanceAtStart(x1, fxDist, fxDistInc, 0), fxDistInc, Kanvo_PaintColor{pxColor},
                            [](Tov_Int /*iPixel*/, typename Pen::Offset kOffset, Tov_Fixed fxD, Kanvo_PixelARGB32 px)
                            {
                                if (fxD > 0)
                                {
                                    Access::PutPixel(kOffset, px);
                                }
                            });
    }
};

#endif
