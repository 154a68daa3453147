// Kanvo_PixelAndMap: a source bitmap and its alpha map as one thing that the walks can address, both with the same
// coordinates.
#ifndef KANVO_PIXELANDMAP_H
#define KANVO_PIXELANDMAP_H

#include "Kanvo_PixelAddress.h"

//! A source and its alpha map, which are walked in step.
struct Kanvo_BitmapAndMap
{
    const Kanvo_Bitmap* pkBitmap;
    const Kanvo_Bitmap* pkMap;
};

//! The addressing half of a pixel policy for such a pair.
template <class Src, class Map>
struct Kanvo_PixelAndMap
{
    struct Offset
    {
        typename Src::Offset kSrc;
        typename Map::Offset kMap;
    };

    static KANVO_INLINE void GetOffset(const Kanvo_BitmapAndMap* pkPair, Tov_UInt uiX, Tov_UInt uiY, Offset& kOffset)
    {
        Src::GetOffset(pkPair->pkBitmap, uiX, uiY, kOffset.kSrc);
        Map::GetOffset(pkPair->pkMap, uiX, uiY, kOffset.kMap);
    }
    static KANVO_INLINE void AddOffset(const Kanvo_BitmapAndMap* pkPair, const Offset& kBase, Tov_UInt uiX,
                                       Tov_UInt uiY, Offset& kOffset)
    {
        Src::AddOffset(pkPair->pkBitmap, kBase.kSrc, uiX, uiY, kOffset.kSrc);
        Map::AddOffset(pkPair->pkMap, kBase.kMap, uiX, uiY, kOffset.kMap);
    }
    static KANVO_INLINE void IncX(const Kanvo_BitmapAndMap* pkPair, Offset& kOffset)
    {
        Src::IncX(pkPair->pkBitmap, kOffset.kSrc);
        Map::IncX(pkPair->pkMap, kOffset.kMap);
    }
    static KANVO_INLINE void IncY(const Kanvo_BitmapAndMap* pkPair, Offset& kOffset)
    {
        Src::IncY(pkPair->pkBitmap, kOffset.kSrc);
        Map::IncY(pkPair->pkMap, kOffset.kMap);
    }
};

#endif
