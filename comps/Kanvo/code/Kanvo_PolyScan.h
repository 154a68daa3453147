// Kanvo_PolyScan: the walk over the rows of a polygon without anti-aliasing, shared by plain and textured polygons. Finds
// the spans by the even-odd rule and hands each to a sink; knows no pixel and no colour.
//
// A row y is cut at y + 1/2, through the middles of its pixels. The vertices are shifted by (0.1, 0.5), so that the cut of
// row y lies at y + 1, and the crossing with it is what the row's span starts or ends with:
//
//     y + 1/2 ----/-----------------\----      start:  x of the crossing + 0.1
//                /                   \         end:    x of the crossing + 0.1 - 0.5, and only where it lies behind the start
//
// The pixels of a span are floor(start) to floor(end). Shapes wider than a pixel that share a side leave no gap.
#ifndef KANVO_POLYSCAN_H
#define KANVO_POLYSCAN_H

#include "Kanvo_ColorMath.h"
#include "Kanvo_PolyBuffers.h"
#include "Tov_Math.h"

class Kanvo_PolyScan
{
public:
    //! Walks the outline of uiCount vertices that lie uiPitch bytes apart, each starting with x and y; it is closed from
    //! the last to the first. Calls kSink(row, start, end), row a pixel index and start < end 16.16, rows from top to bottom
    //! and spans from left to right. Adds to the polygon statistics; an outline without two sides that cross a row, or
    //! without a local top, counts as rejected.
    //!
    //! Coordinates must be finite and within +-32767. Spans are not clipped: a sink may be given what lies outside.
    template <class Sink>
    static KANVO_INLINE void Walk(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch, Sink kSink)
    {
        Kanvo_PolyScan kScan;
        if (!kScan.SetUp(pvValues, uiCount, uiPitch))
        {
            return;
        }
        do {
            kScan.EnterRow();
            for (const Kanvo_Polygon_ActiveEdge* pkEntry                     = kScan.m_pkActive;
                 pkEntry != nullptr && pkEntry->m_pkNext != nullptr; pkEntry = pkEntry->m_pkNext->m_pkNext)
            {
                const Tov_Value vStart = pkEntry->m_pkEdge->m_vSpan;
                const Tov_Value vEnd   = pkEntry->m_pkNext->m_pkEdge->m_vSpan - 0.5F;
                if (vEnd > vStart)
                {
                    kSink(kScan.m_iRow, Tov_FltToFix(vStart), Tov_FltToFix(vEnd));
                }
            }
        } while (kScan.LeaveRow());
    }

private:
    Tov_Bool SetUp(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch);
    void     EnterRow();
    Tov_Bool LeaveRow();

    Tov_UInt MakeEdges(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch);
    Tov_UInt MakeBuckets();
    void     Activate(const Kanvo_Polygon_EdgeBucket& kBucket);
    void     Advance();
    Tov_Bool FollowOn(Kanvo_Polygon_ActiveEdge& kEntry) const;
    void Insert(Kanvo_Polygon_ActiveEdge* pkFirst, Kanvo_Polygon_ActiveEdge* pkLast, Kanvo_Polygon_ActiveEdge* pkBefore,
                Kanvo_Polygon_ActiveEdge* pkBehind);
    void Unlink(Kanvo_Polygon_ActiveEdge& kEntry);
    void Reinsert(Kanvo_Polygon_ActiveEdge& kEntry);

    Kanvo_Polygon_Edge*       m_pkEdges     = nullptr;
    Kanvo_Polygon_Edge*       m_pkEdgesEnd  = nullptr;
    Kanvo_Polygon_EdgeBucket* m_pkBuckets   = nullptr;  //!< those not activated yet
    Kanvo_Polygon_ActiveEdge* m_pkActive    = nullptr;  //!< the active edge table
    Kanvo_Polygon_ActiveEdge* m_pkNextEntry = nullptr;  //!< free records
    Tov_Int                   m_iRow        = 0;
};

#endif
