// Image_Difference: how far two pictures of one size are apart, as numbers and as a picture to look at.
// Used by the conversions to report their error, and by kanvo-image diff.
#ifndef IMAGE_DIFFERENCE_H
#define IMAGE_DIFFERENCE_H

#include <cstdint>
#include <string>
#include <vector>

#include "Image_Picture.h"

namespace image
{

//! A picture with alpha is never seen by itself but over something. The visible figures compare a pixel's three colour
//! channels as they look over black and as they look over white, six comparisons per pixel: colour hidden under little
//! alpha counts little, under none not at all.
struct Difference
{
    std::uint64_t pixels      = 0;
    std::uint64_t differing   = 0;   //!< pixels that are not the same word
    std::uint32_t largest[4]  = {};  //!< per stored channel a, r, g, b: 0 .. 255
    std::uint64_t sum[4]      = {};  //!< per stored channel: of the absolute differences
    std::uint32_t largestSeen = 0;   //!< visible, in 1/255 of a level: 0 .. 65025
    std::uint64_t sumSeen     = 0;   //!< visible, in 1/255 of a level, over all six comparisons
    std::uint32_t worstX      = 0;   //!< where largestSeen is, the first such pixel
    std::uint32_t worstY      = 0;

    bool IsNone() const { return differing == 0; }

    //! In thousandths of a level (a level is 1 of 255), rounded.
    std::uint64_t LargestSeenMilli() const;
    std::uint64_t MeanSeenMilli() const;
    std::uint64_t MeanMilli(int channel) const;
};

//! Both pictures as rows of the given width, equally many pixels.
Difference Compare(const std::vector<std::uint32_t>& first, const std::vector<std::uint32_t>& second,
                   std::uint32_t width);
Difference Compare(const Picture& first, const Picture& second);

//! "mean error 0.412, largest 17.5 of 255": the visible figures, one or no digits more than they deserve.
std::string DifferenceText(const Difference& difference);

//! An opaque picture of the visible difference: equal pixels as a faint grey of the first picture, others from blue
//! (the smallest) over green and yellow to red (the largest that occurs).
Picture HeatMap(const Picture& first, const Picture& second);

}  // namespace image

#endif
