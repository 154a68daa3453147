// Kanvo_Sampler: the four ways in which scaled and rotated blits read a source pixel. A sampler is called with the
// bitmap, the offset of the pixel that holds the position, and the position's fraction; it stores the sample and says
// whether there is one, which only a colour key denies. Src is the source's pixel policy.
#ifndef KANVO_SAMPLER_H
#define KANVO_SAMPLER_H

#include "Kanvo_PixelAddress.h"

//! The pixel that holds the position.
template <class Src>
struct Kanvo_SampleNearest
{
    template <class Bitmap>
    KANVO_INLINE Tov_Bool operator()(const Bitmap* /*pkBitmap*/, typename Src::Offset kOffset, Tov_UByte /*ubFracX*/,
                                     Tov_UByte /*ubFracY*/, typename Src::Pixel&      pxSample) const
    {
        pxSample = Src::GetPixel(kOffset);
        return true;
    }
};

//! The mix of the 2x2 block that starts at the pixel, weighted by the fraction.
template <class Src>
struct Kanvo_SampleBilinear
{
    template <class Bitmap>
    KANVO_INLINE Tov_Bool operator()(const Bitmap* pkBitmap, typename Src::Offset kOffset, Tov_UByte ubFracX,
                                     Tov_UByte ubFracY, typename Src::Pixel& pxSample) const
    {
        pxSample = Src::Blend4(pkBitmap, kOffset, ubFracX, ubFracY);
        return true;
    }
};

//! As Kanvo_SampleNearest, without the pixels of the key's colour.
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

//! As Kanvo_SampleBilinear, without the blocks that hold a pixel of the key's colour.
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
