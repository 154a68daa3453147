// Kanvo_PolyScan: sides, buckets and the active edge table. The arithmetic is single precision throughout, in the order
// written: the pictures depend on it.
#include "Kanvo_PolyScan.h"

#include <cmath>

#include "Trak_Counters.h"

namespace
{

constexpr Tov_Value OFFSET_X = 0.1F;
constexpr Tov_Value OFFSET_Y = 0.5F;
constexpr Tov_Value MIN_DY   = 0.01F;  // lower sides have no slope worth the name

void SetUpEdge(Kanvo_Polygon_Edge& kEdge, const Kanvo_Coord2D& kPrevious, const Kanvo_Coord2D& kCurrent)
{
    const Tov_Value vDx = kPrevious.x - kCurrent.x;
    const Tov_Value vDy = kPrevious.y - kCurrent.y;
    kEdge.m_bLeft       = kPrevious.y > kCurrent.y;

    const Kanvo_Coord2D& kUpper = kEdge.m_bLeft ? kCurrent : kPrevious;
    kEdge.m_vX1                 = kUpper.x;
    kEdge.m_vY1                 = kUpper.y;
    kEdge.m_vDx                 = kEdge.m_bLeft ? vDx : -vDx;
    kEdge.m_vDy                 = kEdge.m_bLeft ? vDy : -vDy;
    kEdge.m_vIncX               = kEdge.m_vDx / kEdge.m_vDy;

    const Tov_Value vToRow = 1.0F - (kEdge.m_vY1 - std::floor(kEdge.m_vY1));
    kEdge.m_vX             = kEdge.m_vX1 + kEdge.m_vIncX * vToRow;
    kEdge.m_vY             = kEdge.m_vY1 + vToRow;
    kEdge.m_vX2            = kEdge.m_vX1 + kEdge.m_vDx;
    kEdge.m_vY2            = kEdge.m_vY1 + kEdge.m_vDy;
    kEdge.m_vX             = Kanvo_PolyCrossing(kEdge);
}

using Bucket = Kanvo_Polygon_EdgeBucket;

//! Two sorted lists as one; of equals those of pkA come first.
Bucket* Merge(Bucket* pkA, Bucket* pkB)
{
    Bucket*  pkMerged = nullptr;
    Bucket** ppkEnd   = &pkMerged;
    while (pkA != nullptr && pkB != nullptr)
    {
        Bucket*& pkTaken = pkB->m_iTop < pkA->m_iTop ? pkB : pkA;
        *ppkEnd          = pkTaken;
        ppkEnd           = &pkTaken->m_pkNext;
        pkTaken          = pkTaken->m_pkNext;
    }
    *ppkEnd = pkA != nullptr ? pkA : pkB;
    return pkMerged;
}

//! Sorts by m_iTop; equals stay in their order. A comb has as many buckets as teeth, so not by insertion.
Bucket* Sorted(Bucket* pkBuckets)
{
    Bucket*  apkRuns[32] = {};  // number i holds 2^i buckets, or none; later numbers hold earlier buckets
    Tov_UInt uiTop       = 0;
    while (pkBuckets != nullptr)
    {
        Bucket* pkRun   = pkBuckets;
        pkBuckets       = pkBuckets->m_pkNext;
        pkRun->m_pkNext = nullptr;
        Tov_UInt uiRun  = 0;
        for (; apkRuns[uiRun] != nullptr; ++uiRun)
        {
            pkRun          = Merge(apkRuns[uiRun], pkRun);
            apkRuns[uiRun] = nullptr;
        }
        apkRuns[uiRun] = pkRun;
        uiTop          = uiRun > uiTop ? uiRun : uiTop;
    }
    Bucket* pkSorted = nullptr;
    for (Tov_UInt uiRun = 0; uiRun <= uiTop; ++uiRun)
    {
        pkSorted = Merge(apkRuns[uiRun], pkSorted);
    }
    return pkSorted;
}

}  // namespace

// ---- set-up ---------------------------------------------------------------------------------------------------------

Tov_Bool Kanvo_PolyScan::SetUp(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch)
{
    m_pkEdges = uiCount < UINT32_MAX ? Kanvo_PolyGetEdgeBuffer(uiCount + 1) : nullptr;
    if (m_pkEdges == nullptr)
    {
        return false;
    }
    const Tov_UInt uiEdges = MakeEdges(pvValues, uiCount, uiPitch);
    if (uiEdges < 2)
    {
        Trak_Count(g_kStat_RejectedPolygons, 1.0F);
        return false;
    }
    m_pkEdgesEnd = m_pkEdges + uiEdges;
    Trak_Count(g_kStat_PolyEdges, static_cast<Tov_Value>(uiEdges));

    const Tov_UInt uiBuckets = MakeBuckets();
    if (uiBuckets == 0)
    {
        Trak_Count(g_kStat_RejectedPolygons, 1.0F);
        return false;
    }
    Trak_Count(g_kStat_EdgeBuckets, static_cast<Tov_Value>(uiBuckets));
    Trak_Count(g_kStat_NumberOfPolygons, 1.0F);
    m_pkNextEntry = Kanvo_PolyGetAETBuffer(uiEdges);
    m_iRow        = m_pkBuckets->m_iTop;
    return true;
}

//! Makes an edge of every side that crosses a sample row, and returns their number.
Tov_UInt Kanvo_PolyScan::MakeEdges(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch)
{
    const auto kSample = [=](Tov_UInt uiIndex)
    {
        const Kanvo_Coord2D kVertex = Kanvo_ReadVertex(pvValues, uiPitch, uiIndex);
        return Kanvo_Coord2D{kVertex.x + OFFSET_X, kVertex.y + OFFSET_Y};
    };
    Tov_UInt      uiEdges   = 0;
    Kanvo_Coord2D kPrevious = uiCount > 0 ? kSample(uiCount - 1) : Kanvo_Coord2D{0.0F, 0.0F};
    for (Tov_UInt uiIndex = 0; uiIndex < uiCount; ++uiIndex)
    {
        const Kanvo_Coord2D kCurrent = kSample(uiIndex);
        if (std::floor(kPrevious.y) != std::floor(kCurrent.y) && Tov_FltAbs(kPrevious.y - kCurrent.y) > MIN_DY)
        {
            SetUpEdge(m_pkEdges[uiEdges++], kPrevious, kCurrent);
        }
        kPrevious = kCurrent;
    }
    return uiEdges;
}

//! Makes a bucket of every local top, where a side that runs upwards is followed by one that runs downwards, sorts them by
//! row and returns their number. Of two in one row the later comes first.
Tov_UInt Kanvo_PolyScan::MakeBuckets()
{
    Bucket* const       pkBuckets  = Kanvo_PolyGetBucketBuffer(static_cast<Tov_UInt>(m_pkEdgesEnd - m_pkEdges));
    Tov_UInt            uiBuckets  = 0;
    Bucket*             pkNewest   = nullptr;
    Kanvo_Polygon_Edge* pkPrevious = m_pkEdges;
    do {
        Kanvo_Polygon_Edge* const pkEdge = pkPrevious + 1 != m_pkEdgesEnd ? pkPrevious + 1 : m_pkEdges;
        if (pkPrevious->m_bLeft && !pkEdge->m_bLeft)
        {
            pkBuckets[uiBuckets] = {pkNewest, Tov_FltToInt(pkEdge->m_vY1), pkPrevious, pkEdge};
            pkNewest             = &pkBuckets[uiBuckets++];
        }
        pkPrevious = pkEdge;
    } while (pkPrevious != m_pkEdges);
    m_pkBuckets = Sorted(pkNewest);
    return uiBuckets;
}

// ---- one row --------------------------------------------------------------------------------------------------------

//! Puts the two edges of a bucket into the table, next to each other.
void Kanvo_PolyScan::Activate(const Kanvo_Polygon_EdgeBucket& kBucket)
{
    Kanvo_Polygon_Edge* const pkLeft  = kBucket.m_pkLeftEdge;
    Kanvo_Polygon_Edge* const pkRight = kBucket.m_pkRightEdge;
    const Tov_Bool            bInOrder =
        pkLeft->m_vX1 < pkRight->m_vX1 || (pkLeft->m_vX1 == pkRight->m_vX1 && pkLeft->m_vIncX <= pkRight->m_vIncX);

    Kanvo_Polygon_ActiveEdge* const pkFirst  = m_pkNextEntry++;
    Kanvo_Polygon_ActiveEdge* const pkSecond = m_pkNextEntry++;
    pkFirst->m_pkEdge                        = bInOrder ? pkLeft : pkRight;
    pkSecond->m_pkEdge                       = bInOrder ? pkRight : pkLeft;
    pkFirst->m_iBottom                       = Tov_FltToInt(pkFirst->m_pkEdge->m_vY2);
    pkSecond->m_iBottom                      = Tov_FltToInt(pkSecond->m_pkEdge->m_vY2);
    pkFirst->m_pkNext                        = pkSecond;
    pkSecond->m_pkPrevious                   = pkFirst;

    const Kanvo_Polygon_Edge& kEdge    = *pkFirst->m_pkEdge;
    Kanvo_Polygon_ActiveEdge* pkBefore = nullptr;
    Kanvo_Polygon_ActiveEdge* pkBehind = m_pkActive;
    while (pkBehind != nullptr &&
           !(pkBehind->m_pkEdge->m_vX > kEdge.m_vX ||
             (pkBehind->m_pkEdge->m_vX == kEdge.m_vX && pkBehind->m_pkEdge->m_vIncX > kEdge.m_vIncX)))
    {
        pkBefore = pkBehind;
        pkBehind = pkBehind->m_pkNext;
    }
    Insert(pkFirst, pkSecond, pkBefore, pkBehind);
}

//! Finds the crossing of every active edge with the row, replaces edges that end by those that follow them, and moves
//! edges that have crossed another back to where their crossing belongs.
void Kanvo_PolyScan::Advance()
{
    Tov_Value vPrevious = 0.0F;  // crossing of the entry before
    for (Kanvo_Polygon_ActiveEdge *pkEntry = m_pkActive, *pkNext = nullptr; pkEntry != nullptr; pkEntry = pkNext)
    {
        pkNext = pkEntry->m_pkNext;
        if (pkEntry->m_iBottom <= m_iRow && !FollowOn(*pkEntry))
        {
            Unlink(*pkEntry);
            continue;
        }
        Kanvo_Polygon_Edge& kEdge = *pkEntry->m_pkEdge;
        kEdge.m_vSpan             = Kanvo_PolyCrossing(kEdge);
        kEdge.m_vX += kEdge.m_vIncX;
        if (vPrevious <= kEdge.m_vSpan)
        {
            vPrevious = kEdge.m_vSpan;
        }
        else
        {
            Reinsert(*pkEntry);
            Trak_Count(g_kStat_CrossingEdges, 1.0F);
            const Kanvo_Polygon_ActiveEdge* const pkBefore = pkNext != nullptr ? pkNext->m_pkPrevious : nullptr;
            vPrevious                                      = pkBefore != nullptr ? pkBefore->m_pkEdge->m_vSpan : 0.0F;
        }
    }
}

//! Lets an entry go on with the next side of the outline. False at a local bottom, where that one turns up again.
Tov_Bool Kanvo_PolyScan::FollowOn(Kanvo_Polygon_ActiveEdge& kEntry) const
{
    Kanvo_Polygon_Edge* pkEdge = kEntry.m_pkEdge;
    if (pkEdge->m_bLeft)
    {
        pkEdge = (pkEdge != m_pkEdges ? pkEdge : m_pkEdgesEnd) - 1;
    }
    else
    {
        pkEdge = pkEdge + 1 != m_pkEdgesEnd ? pkEdge + 1 : m_pkEdges;
    }
    if (pkEdge->m_bLeft != kEntry.m_pkEdge->m_bLeft)
    {
        return false;
    }
    kEntry.m_pkEdge  = pkEdge;
    kEntry.m_iBottom = Tov_FltToInt(pkEdge->m_vY2);
    return true;
}

// ---- the table ------------------------------------------------------------------------------------------------------

void Kanvo_PolyScan::Insert(Kanvo_Polygon_ActiveEdge* pkFirst, Kanvo_Polygon_ActiveEdge* pkLast,
                            Kanvo_Polygon_ActiveEdge* pkBefore, Kanvo_Polygon_ActiveEdge* pkBehind)
{
    pkFirst->m_pkPrevious                                   = pkBefore;
    pkLast->m_pkNext                                        = pkBehind;
    (pkBefore != nullptr ? pkBefore->m_pkNext : m_pkActive) = pkFirst;
    if (pkBehind != nullptr)
    {
        pkBehind->m_pkPrevious = pkLast;
    }
}

void Kanvo_PolyScan::Unlink(Kanvo_Polygon_ActiveEdge& kEntry)
{
    (kEntry.m_pkPrevious != nullptr ? kEntry.m_pkPrevious->m_pkNext : m_pkActive) = kEntry.m_pkNext;
    if (kEntry.m_pkNext != nullptr)
    {
        kEntry.m_pkNext->m_pkPrevious = kEntry.m_pkPrevious;
    }
}

//! Moves an entry to before the first whose crossing is not left of its own. What has been walked is in order, so that the
//! place is found backwards, and is near. Only left of x = 0, where an unclipped outline may get, has nothing been walked
//! before it: then it is held against crossings of the row above, and may come behind the walk and be moved on twice. That
//! happens at most once per row that the edge has, because no edge is moved beyond its lower end.
void Kanvo_PolyScan::Reinsert(Kanvo_Polygon_ActiveEdge& kEntry)
{
    const Tov_Value           vX       = kEntry.m_pkEdge->m_vSpan;
    Kanvo_Polygon_ActiveEdge* pkBefore = kEntry.m_pkPrevious;
    Kanvo_Polygon_ActiveEdge* pkBehind = kEntry.m_pkNext;
    Unlink(kEntry);
    if (pkBefore != nullptr)
    {
        for (; pkBefore != nullptr && !(pkBefore->m_pkEdge->m_vSpan < vX); pkBefore = pkBefore->m_pkPrevious)
        {
            pkBehind = pkBefore;
        }
    }
    else
    {
        for (; pkBehind != nullptr && pkBehind->m_pkEdge->m_vSpan < vX; pkBehind = pkBehind->m_pkNext)
        {
            pkBefore = pkBehind;
        }
    }
    Insert(&kEntry, &kEntry, pkBefore, pkBehind);
}
