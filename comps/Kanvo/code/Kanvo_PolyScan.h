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

#include <algorithm>

#include "Kanvo_ColorMath.h"
#include "Kanvo_PolyBuffers.h"
#include "Tov_Math.h"

//! Where an edge crosses the row it stands at, not beyond its lower end.
KANVO_INLINE Tov_Value Kanvo_PolyCrossing(const Kanvo_Polygon_Edge& kEdge)
{
    return kEdge.m_vDx >= 0.0F ? std::min(kEdge.m_vX, kEdge.m_vX2) : std::max(kEdge.m_vX, kEdge.m_vX2);
}

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
            kScan.WalkPair(kSink);
            kScan.EnterRow();
            for (const Kanvo_Polygon_ActiveEdge *pkStart = kScan.m_pkActive, *pkEnd = nullptr;
                 pkStart != nullptr && (pkEnd = pkStart->m_pkNext) != nullptr; pkStart = pkEnd->m_pkNext)
            {
                Span(kSink, kScan.m_iRow, pkStart->m_pkEdge->m_vSpan, pkEnd->m_pkEdge->m_vSpan);
            }
        } while (kScan.LeaveRow());
    }

private:
    template <class Sink>
    static KANVO_INLINE void Span(Sink& kSink, Tov_Int iRow, Tov_Value vStart, Tov_Value vEnd)
    {
        vEnd -= 0.5F;
        if (vEnd > vStart)
        {
            kSink(iRow, Tov_FltToFix(vStart), Tov_FltToFix(vEnd));
        }
    }

    //! Two edges are all that most rows have. Does what EnterRow and the spans would do for the rows up to where another edge
    //! begins, or one of the two ends, crosses the other or comes left of x = 0, where the order has a rule of its own
    //! (Reinsert).
    template <class Sink>
    KANVO_INLINE void WalkPair(Sink& kSink)
    {
        if (m_pkActive == nullptr || m_pkActive->m_pkNext == nullptr || m_pkActive->m_pkNext->m_pkNext != nullptr)
        {
            return;
        }
        const Kanvo_Polygon_ActiveEdge& kLeft  = *m_pkActive;
        const Kanvo_Polygon_ActiveEdge& kRight = *m_pkActive->m_pkNext;
        Kanvo_Polygon_Edge&             kStart = *kLeft.m_pkEdge;
        Kanvo_Polygon_Edge&             kEnd   = *kRight.m_pkEdge;
        Tov_Int                         iUntil = std::min(kLeft.m_iBottom, kRight.m_iBottom);
        if (m_pkBuckets != nullptr)
        {
            iUntil = std::min(iUntil, m_pkBuckets->m_iTop);
        }
        for (; m_iRow < iUntil; ++m_iRow)
        {
            const Tov_Value vStart = Kanvo_PolyCrossing(kStart);
            const Tov_Value vEnd   = Kanvo_PolyCrossing(kEnd);
            if (!(vStart >= 0.0F && vEnd >= vStart))
            {
                return;
            }
            kStart.m_vSpan = vStart;
            kEnd.m_vSpan   = vEnd;
            kStart.m_vX += kStart.m_vIncX;
            kEnd.m_vX += kEnd.m_vIncX;
            Span(kSink, m_iRow, vStart, vEnd);
        }
    }

    Tov_Bool SetUp(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch);
    void     EnterRow()
    {
        for (; m_pkBuckets != nullptr && m_pkBuckets->m_iTop <= m_iRow; m_pkBuckets = m_pkBuckets->m_pkNext)
        {
            Activate(*m_pkBuckets);
        }
        Advance();
    }
    Tov_Bool LeaveRow()
    {
        ++m_iRow;
        return m_pkActive != nullptr;
    }

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
