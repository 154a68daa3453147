// Kanvo_Sampler: the two ways in which scaled blits with a colour key read a source pixel; without one, samples are read
// in rows (Kanvo_SampleStrips). A sampler is called with the bitmap, the offset of the pixel that holds the position, and
// the position's fraction; it stores the sample and says whether there is one. Src is the source's pixel policy.
#ifndef KANVO_SAMPLER_H
#define KANVO_SAMPLER_H

#include "Kanvo_PixelAddress.h"

//! The pixel that holds the position, unless it is of the key's colour.
template <class Src>
struct Kanvo_SampleNearestKeyed
{
    Kanvo_Color cKey;

    template <class Bitmap>
    KANVO_INLINE Tov_Bool operator()(const Bitmap* /*pkBitmap*/, typename Src::Offset kOffset, Tov_UByte /*ubFracX*/,
                                     Tov_UByte /*ubFracY*/, typename Src::Pixel&      pxSample) const
    {
        pxSample = Src::GetPixel(kOffset);
        return Src::PixelToColor(pxSample) != cKey;
    }
};

//! The mix of the 2x2 block that starts at the pixel, weighted by the fraction, unless one of its pixels is of the key's
//! colour.
template <class Src>
struct Kanvo_SampleBilinearKeyed
{
    Kanvo_Color cKey;

    template <class Bitmap>
    KANVO_INLINE Tov_Bool operator()(const Bitmap* pkBitmap, typename Src::Offset kOffset, Tov_UByte ubFracX,
                                     Tov_UByte ubFracY, typename Src::Pixel& pxSample) const
    {
        typename Src::Pixel px1;
        typename Src::Pixel px2;
        typename Src::Pixel px3;
        typename Src::Pixel px4;
        if (!Src::ColorKeyTest4(pkBitmap, kOffset, cKey, px1, px2, px3, px4))
        {
            return false;
        }
        pxSample = Src::MixBilinear(px1, px2, px3, px4, ubFracX, ubFracY);
        return true;
    }
};

#endif
