// Image_Bleed: gives fully transparent texels the colours of the visible ones beside them. Scaling and rotating with a
// bilinear filter mix straight-alpha colours also across an edge; where the hidden colour is an unlucky one (mostly
// black) the picture gets a fringe.
#ifndef IMAGE_BLEED_H
#define IMAGE_BLEED_H

#include <cstdint>

#include "Image_Picture.h"

namespace image
{

//! Spreads colours `texels` pixels far into the fully transparent area, one pixel per round: a texel gets the mean of
//! its coloured neighbours (eight of them; in the first round, where they are visible, weighted by their alpha),
//! rounded. Alpha stays, texels further away keep their colour. Drops palette and indices if anything changes.
void Bleed(Picture& picture, std::uint32_t texels);

//! Where a filter would show fringes.
struct Fringe
{
    std::uint64_t texels = 0;  //!< fully transparent texels beside visible ones, of a strongly different colour
    std::uint32_t x      = 0;  //!< the first of them
    std::uint32_t y      = 0;
};

//! A texel counts when its colour is so far from what Bleed would put there that halfway between it and its visible
//! neighbours a channel is wrong by more than FringeLimit levels as it is drawn, in other words when
//! difference * mean alpha of the visible neighbours / 255 / 4 > FringeLimit. After Bleed none does.
constexpr std::uint32_t FringeLimit = 8;
Fringe                  FindFringe(const Picture& picture);

inline bool NeedsBleed(const Picture& picture)
{
    return FindFringe(picture).texels != 0;
}

}  // namespace image

#endif
