// neonloops: the pointers and what they point to.
#include "neonloops.h"

#include "neonloops_rects.h"

using Kanvo_LoopReference = Kanvo_LoopRects<Kanvo_RowsReference>;

// Initialised before any code runs: addresses of functions are constants.
decltype(neonloops_fill_argb32)    neonloops_fill_argb32    = &Kanvo_LoopReference::Fill;
decltype(neonloops_fill_argb32_ag) neonloops_fill_argb32_ag = &Kanvo_LoopReference::FillMix;

decltype(neonloops_blit_argb32_argb32)       neonloops_blit_argb32_argb32       = &Kanvo_LoopReference::Copy;
decltype(neonloops_blit_argb32_argb32_as_ag) neonloops_blit_argb32_argb32_as_ag = &Kanvo_LoopReference::Over;

decltype(neonloops_blit_argb32_argb32_as) neonloops_blit_argb32_argb32_as = &Kanvo_LoopReference::OverOpaque;

decltype(neonloops_blit_argb32_rgb565)    neonloops_blit_argb32_rgb565    = &Kanvo_LoopReference::Convert565;
decltype(neonloops_blit_argb32_rgb565_ag) neonloops_blit_argb32_rgb565_ag = &Kanvo_LoopReference::Over565;

decltype(neonloops_blitcolor_argb32_a8)    neonloops_blitcolor_argb32_a8    = &Kanvo_LoopReference::ColorMask;
decltype(neonloops_blitcolor_argb32_a8_ag) neonloops_blitcolor_argb32_a8_ag = &Kanvo_LoopReference::ColorMaskScaled;

decltype(neonloops_blit_argb32_rgb565a8)       neonloops_blit_argb32_rgb565a8    = &Kanvo_LoopReference::StoreMask565;
decltype(neonloops_blit_argb32_rgb565a8_as)    neonloops_blit_argb32_rgb565a8_as = &Kanvo_LoopReference::BlendMask565;
decltype(neonloops_blit_argb32_rgb565a8_as_ag) neonloops_blit_argb32_rgb565a8_as_ag =
    &Kanvo_LoopReference::BlendMask565Scaled;
