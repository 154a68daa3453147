// Kanvo_BlitScan: the walk of every axis-aligned blit, written once: rows from top to bottom, pixels from left to right,
// source and destination in step. What happens to a row, or to each of its pixels, is the rule's business; Kanvo_Blit
// brings the rules.
#ifndef KANVO_BLITSCAN_H
#define KANVO_BLITSCAN_H

#include <cstring>

#include "Kanvo_Bitmap.h"
#include "Kanvo_ColorMath.h"
#include "Kanvo_PixelAndMap.h"
#include "Kanvo_PixelARGB32_Access.h"

//! A blit's rectangle, clipped: the same size at both ends.
struct Kanvo_BlitRect
{
    Tov_UInt uiWidth;
    Tov_UInt uiHeight;
    Tov_UInt uiSrcX;
    Tov_UInt uiSrcY;
    Tov_UInt uiDstX;
    Tov_UInt uiDstY;
};

//! A source's pixel. It may lie in the target's memory, where words are written: compilers that go by types must not take
//! it for unchanged.
template <class Src>
KANVO_INLINE typename Src::Pixel Kanvo_ReadPixel(typename Src::Offset kSrc)
{
    typename Src::Pixel pxSrc;
    std::memcpy(&pxSrc, kSrc, sizeof pxSrc);
    return pxSrc;
}

//! The first pixels of a blit, for loops over rectangles that take plain pointers.
template <class Src>
struct Kanvo_BlitEnds
{
    typename Src::Offset kSrc;
    Kanvo_OffsetARGB32   kDst;
    Tov_UInt             uiDstPitch;
    Tov_UInt             uiSrcPitch;

    KANVO_INLINE Kanvo_BlitEnds(const Kanvo_Bitmap* pkDest, const Kanvo_Bitmap* pkSource, const Kanvo_BlitRect& kRect)
        : uiDstPitch(pkDest->GetPitch()),
          uiSrcPitch(pkSource->GetPitch())
    {
        Src::GetOffset(pkSource, kRect.uiSrcX, kRect.uiSrcY, kSrc);
        Kanvo_PixelARGB32_Access::GetOffset(pkDest, kRect.uiDstX, kRect.uiDstY, kDst);
    }
};

//! Calls kRule(source offset, destination offset, pixels) for each row of the rectangle. Src and Dst are pixel policies,
//! or for a source with a map a Kanvo_PixelAndMap over a Kanvo_BitmapAndMap. The rule travels by value and the walk is
//! forced inline, so that the loop is the one a hand would write.
template <class Src, class Dst, class Source, class Rule>
KANVO_INLINE void Kanvo_BlitRows(const Source* pkSource, const Kanvo_Bitmap* pkDest, const Kanvo_BlitRect& kRect,
                                 Rule kRule)
{
    typename Src::Offset kSrcLine;
    typename Dst::Offset kDstLine;
    Src::GetOffset(pkSource, kRect.uiSrcX, kRect.uiSrcY, kSrcLine);
    Dst::GetOffset(pkDest, kRect.uiDstX, kRect.uiDstY, kDstLine);
    for (Tov_UInt uiY = 0; uiY < kRect.uiHeight; ++uiY)
    {
        kRule(kSrcLine, kDstLine, kRect.uiWidth);
        Src::IncY(pkSource, kSrcLine);
        Dst::IncY(pkDest, kDstLine);
    }
}

//! Calls kRule(source offset, destination offset) for each pixel of a row.
template <class Src, class Dst, class Source, class Rule>
KANVO_INLINE void Kanvo_BlitPixels(const Source* pkSource, const Kanvo_Bitmap* pkDest, typename Src::Offset kSrc,
                                   typename Dst::Offset kDst, Tov_UInt uiCount, Rule kRule)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        kRule(kSrc, kDst);
        Src::IncX(pkSource, kSrc);
        Dst::IncX(pkDest, kDst);
    }
}

//! The same for each pixel of a rectangle.
template <class Src, class Dst, class Source, class Rule>
KANVO_INLINE void Kanvo_BlitScan(const Source* pkSource, const Kanvo_Bitmap* pkDest, const Kanvo_BlitRect& kRect,
                                 Rule kRule)
{
    Kanvo_BlitRows<Src, Dst>(
        pkSource, pkDest, kRect,
        [pkSource, pkDest, kRule](typename Src::Offset kSrc, typename Dst::Offset kDst, Tov_UInt uiCount)
        { Kanvo_BlitPixels<Src, Dst>(pkSource, pkDest, kSrc, kDst, uiCount, kRule); });
}

//! Colour keying for any rule: the pixel is left out where the source's colour equals the key.
template <class Src, class Rule>
struct Kanvo_UnlessKey
{
    Rule        kRule;
    Kanvo_Color cKey;

    template <class DstOffset>
    KANVO_INLINE void operator()(typename Src::Offset kSrc, DstOffset kDst) const
    {
        if (Src::PixelToColor(Kanvo_ReadPixel<Src>(kSrc)) != cKey)
        {
            kRule(kSrc, kDst);
        }
    }
};

#endif
