// Kanvo_PolyBuffers: the records that the polygon renderers work with, and the memory they lie in. One area serves all
// polygons, one after the other: a built-in one, or the larger one that Kanvo::ReservePolygons has put in its place. Used
// by Kanvo_Clipper, Kanvo_PolyScan, Kanvo_PolydrawAA and Kanvo_Primitive.
//
// What fits is counted in corners of an outline as it is drawn, that is after clipping. Clipping adds at most four corners
// to a convex outline; to any other at most four times as many as it has. Nothing is allocated here, and so nothing while
// drawing.
#ifndef KANVO_POLYBUFFERS_H
#define KANVO_POLYBUFFERS_H

#include <cstddef>

#include "Kanvo_Geometry.h"
#include "Tov_Types.h"

// Size of the built-in area; a build may define both.
#ifndef KANVO_POLY_CORNERS
#define KANVO_POLY_CORNERS 512
#endif
#ifndef KANVO_POLY_ROWS
#define KANVO_POLY_ROWS 2048
#endif

//! One side of a polygon that is not horizontal. Coordinates are shifted by the sampling offsets (Kanvo_PolyScan.h).
struct Kanvo_Polygon_Edge
{
    Tov_Value m_vX1;  //!< upper end, the smaller y
    Tov_Value m_vY1;
    Tov_Value m_vX2;  //!< lower end: upper end plus extent
    Tov_Value m_vY2;
    Tov_Value m_vDx;  //!< extent in x, from the upper to the lower end
    union             //!< one storage, two uses
    {
        Tov_Value m_vDy;    //!< while setting up: extent in y, positive
        Tov_Value m_vSpan;  //!< while scanning: where the current row's span starts or ends
    };
    Tov_Value m_vX;  //!< where the edge crosses the next sample row
    Tov_Value m_vY;
    Tov_Value m_vIncX;  //!< step of m_vX per row
    Tov_Bool  m_bLeft;  //!< the side runs upwards, towards smaller y, in the order of the vertices
};

//! Two sides that start at one local top of the outline.
struct Kanvo_Polygon_EdgeBucket
{
    Kanvo_Polygon_EdgeBucket* m_pkNext;  //!< the list is sorted by m_iTop
    Tov_Int                   m_iTop;    //!< first row
    Kanvo_Polygon_Edge*       m_pkLeftEdge;
    Kanvo_Polygon_Edge*       m_pkRightEdge;
};

//! A side that crosses the current row.
struct Kanvo_Polygon_ActiveEdge
{
    Kanvo_Polygon_ActiveEdge* m_pkNext;  //!< the table is sorted by x
    Kanvo_Polygon_ActiveEdge* m_pkPrevious;
    Kanvo_Polygon_Edge*       m_pkEdge;
    Tov_Int                   m_iBottom;  //!< row at which the side ends; it is not drawn there
};

//! One side of an anti-aliased polygon, and where it stands on the current row. Set up by SetupAAPolygon.
struct Kanvo_AAEdgeBucket
{
    Tov_Int             ybot;        //!< last row
    Tov_Value           X1;          //!< x of the lower end
    Tov_Int             normalmask;  //!< where the tables of this direction start: 32 times the direction's number
    Tov_Int             dist;    //!< distance of the current pixel's centre, positive to the right; bits 22..26 index
    Tov_Int             nx;      //!< change of dist per pixel
    Tov_Int             ny;      //!< change of dist per row
    Tov_Value           xslope;  //!< change of x per row
    Tov_Value           xipol;   //!< x at the bottom of the current row
    Tov_Int             xsleft;  //!< first and last pixel that the side touches in the current row
    Tov_Int             xsright;
    Kanvo_AAEdgeBucket* next;       //!< next side that starts in the same row
    Kanvo_AAEdgeBucket* AEnext;     //!< next active side
    Tov_Int             cliptop;    //!< sub-samples of the first row that lie below the upper end
    Tov_Int             clipbot;    //!< sub-samples of the last row that lie above the lower end
    Tov_Int             edgeflags;  //!< bit 0: apply cliptop, bit 1: apply clipbot, bit 2: was combined in this row
};

// The providers. Each gives memory for at least so many records, its contents undefined, to be used until the next polygon
// and never freed; or null, after asserting "polygon too large". Edges, buckets and active edges of one polygon do not
// overlap; anti-aliased polygons use the same memory for theirs.

Kanvo_Polygon_Edge*       Kanvo_PolyGetEdgeBuffer(Tov_UInt uiCount);
Kanvo_Polygon_EdgeBucket* Kanvo_PolyGetBucketBuffer(Tov_UInt uiCount);
Kanvo_Polygon_ActiveEdge* Kanvo_PolyGetAETBuffer(Tov_UInt uiCount);
Kanvo_AAEdgeBucket*       Kanvo_PolyGetAABucketBuffer(Tov_UInt uiCount);

//! One list head per row, all null between polygons; whoever fills it leaves it so. Asserts "bitmap too high for
//! anti-aliased polygons" where it gives null.
Kanvo_AAEdgeBucket** Kanvo_PolyGetScanBuffer(Tov_UInt uiRows);

//! Where the clipper leaves its result, and where a transformed primitive is put before it is drawn. They do not overlap
//! each other nor any of the above.
Kanvo_Coord2D* Kanvo_PolyGetClipBuffer(Tov_UInt uiCount);
Kanvo_Coord2D* Kanvo_PolyGetVertexBuffer(Tov_UInt uiCount);

//! How many corners and rows fit at present.
Tov_UInt Kanvo_PolyGetCorners();
Tov_UInt Kanvo_PolyGetRows();

//! Bytes of an area for so many corners and rows; 0 for one that no memory can hold.
std::size_t Kanvo_PolyAreaBytes(Tov_UInt uiCorners, Tov_UInt uiRows);

//! Puts an area of Kanvo_PolyAreaBytes(uiCorners, uiRows) bytes, aligned for any record, in place of the present one.
//! Called by Kanvo::ReservePolygons, which owns the memory.
void Kanvo_PolyAttachArea(void* pMemory, Tov_UInt uiCorners, Tov_UInt uiRows);

//! Goes back to the built-in area if pMemory is the present one.
void Kanvo_PolyDetachArea(const void* pMemory);

#endif
