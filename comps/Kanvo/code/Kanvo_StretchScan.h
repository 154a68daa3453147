// Kanvo_StretchScan: the walk of every scaled blit, written once: destination rows from top to bottom, pixels from left to
// right, the source position stepped in 16.16. What is read and written is the rule's business.
#ifndef KANVO_STRETCHSCAN_H
#define KANVO_STRETCHSCAN_H

#include "Kanvo_PixelAddress.h"
#include "Kanvo_StretchBlitParam.h"

//! Calls kRule(first destination pixel of a row, source row in 16.16) for each row. Dst is a pixel policy.
template <class Dst, class Dest, class RowRule>
KANVO_INLINE void Kanvo_StretchRows(const Dest* pkDest, const Kanvo_StretchAxis& kX, const Kanvo_StretchAxis& kY,
                                    RowRule kRule)
{
    // Positions are never negative. They are stepped unsigned, because the step behind the last pixel may leave 16.16.
    auto                 uiSrcY = static_cast<Tov_UInt>(kY.fxSrcFirst);
    typename Dst::Offset kDstLine;
    Dst::GetOffset(pkDest, static_cast<Tov_UInt>(kX.iDstFirst), static_cast<Tov_UInt>(kY.iDstFirst), kDstLine);
    for (Tov_Int iRow = 0; iRow < kY.iCount; ++iRow)
    {
        kRule(kDstLine, uiSrcY);
        uiSrcY += static_cast<Tov_UInt>(kY.fxStep);
        Dst::IncY(pkDest, kDstLine);
    }
}

//! The same for each pixel: calls kRule(source offset, destination offset, fraction x, fraction y). Src and Dst are pixel
//! policies.
template <class Src, class Dst, class Source, class Dest, class Rule>
KANVO_INLINE void Kanvo_StretchScan(const Source* pkSource, const Dest* pkDest, const Kanvo_StretchAxis& kX,
                                    const Kanvo_StretchAxis& kY, Rule kRule)
{
    Kanvo_StretchRows<Dst>(pkDest, kX, kY,
                           [pkSource, pkDest, kX, kRule](typename Dst::Offset kDst, Tov_UInt uiSrcY)
                           {
                               typename Src::Offset kSrcLine;
                               auto                 uiSrcX  = static_cast<Tov_UInt>(kX.fxSrcFirst);
                               const auto           ubFracY = static_cast<Tov_UByte>(uiSrcY >> 8);
                               Src::GetOffset(pkSource, 0, uiSrcY >> 16, kSrcLine);
                               for (Tov_Int iColumn = 0; iColumn < kX.iCount; ++iColumn)
                               {
                                   typename Src::Offset kSrc;
                                   Src::AddOffset(pkSource, kSrcLine, uiSrcX >> 16, 0, kSrc);
                                   kRule(kSrc, kDst, static_cast<Tov_UByte>(uiSrcX >> 8), ubFracY);
                                   uiSrcX += static_cast<Tov_UInt>(kX.fxStep);
                                   Dst::IncX(pkDest, kDst);
                               }
                           });
}

#endif
