// Kanvo_PolySetupAA: turns the sides of an outline into the records of the anti-aliased scan, which is Kanvo_PolydrawAA.
#ifndef KANVO_POLYSETUPAA_H
#define KANVO_POLYSETUPAA_H

#include "Kanvo_PolyBuffers.h"

//! Fills at most uiCount records of pkBuckets, one for each side that has length and starts at or above row iClipMaxY, and
//! chains each into ppkScanList at its first row. Returns the first row of all in iYStart; false where no side is left, and
//! then nothing is chained.
//!
//! iClipMaxX, iClipMaxY: the last pixel column and row, both inclusive and at most 32766. pvValues: uiCount vertices,
//! uiPitch bytes apart, which must be finite. They are held to 0 <= x <= iClipMaxX + 1 and y >= 0, so that no record leaves
//! columns 0 .. iClipMaxX: an outline that was clipped keeps its shape, one that was not is bent at these borders.
//! ppkScanList: rows 0 .. iClipMaxY, null where nothing is chained yet.
Tov_Bool SetupAAPolygon(Tov_Int iClipMaxY, Tov_Int iClipMaxX, Kanvo_AAEdgeBucket* pkBuckets, const void* pvValues,
                        Tov_UInt uiPitch, Kanvo_AAEdgeBucket** ppkScanList, Tov_Int& iYStart, Tov_UInt uiCount);

#endif
