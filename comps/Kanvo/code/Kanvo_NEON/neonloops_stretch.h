// neonloops_stretch: the scaled loops of the optimised path, one function pointer each; see neonloops.h for what is common
// to all loops.
//
// kDst points at the top-left pixel of the clip rectangle, kSrc at pixel (0, 0) of the source bitmap. The destination
// rectangle (iDstX, iDstY, uiDstWidth, uiDstHeight) is relative to the clip rectangle, which is uiClipWidth x uiClipHeight
// pixels; what lies outside is not drawn. The source rectangle lies inside its bitmap and, where the loop filters, is at
// least two pixels wide and high. Sampling is that of Kanvo_StretchBlitParam; bytes are those of Kanvo_StretchBlit
// without colour key.
#ifndef KANVO_NEONLOOPS_STRETCH_H
#define KANVO_NEONLOOPS_STRETCH_H

#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapRGB565.h"
#include "Kanvo_PixelARGB32_Access.h"

//! The arguments that every one of these loops begins with.
#define KANVO_STRETCH_ARGUMENTS(SrcPixel)                                                                    \
    Kanvo_OffsetARGB32 kDst, const SrcPixel *kSrc, Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch, Tov_Int iDstX,  \
        Tov_Int iDstY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight, \
        Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_UInt uiClipWidth, Tov_UInt uiClipHeight

template <class SrcPixel>
using Kanvo_StretchLoop = void (*)(KANVO_STRETCH_ARGUMENTS(SrcPixel));
template <class SrcPixel>
using Kanvo_StretchLoopAlpha      = void (*)(KANVO_STRETCH_ARGUMENTS(SrcPixel), Tov_UByte ubAlpha);
using Kanvo_StretchLoopColor      = void (*)(KANVO_STRETCH_ARGUMENTS(Kanvo_PixelA8), Kanvo_ColorARGB32 clColor);
using Kanvo_StretchLoopColorAlpha = void (*)(KANVO_STRETCH_ARGUMENTS(Kanvo_PixelA8), Kanvo_ColorARGB32 clColor,
                                             Tov_UByte ubAlpha);

//! Copy, alpha included.
extern Kanvo_StretchLoop<Kanvo_PixelARGB32> neonloops_stretchblit_nearest_argb32_argb32_clip;
extern Kanvo_StretchLoop<Kanvo_PixelARGB32> neonloops_stretchblit_bilinear_argb32_argb32_clip;

//! Blend by the samples' alpha times ubAlpha, as BlendPixelSrcAlpha, also at 255.
extern Kanvo_StretchLoopAlpha<Kanvo_PixelARGB32> neonloops_stretchblit_nearest_argb32_argb32_as_ag_clip;
extern Kanvo_StretchLoopAlpha<Kanvo_PixelARGB32> neonloops_stretchblit_bilinear_argb32_argb32_as_ag_clip;

//! Convert to opaque and store.
extern Kanvo_StretchLoop<Kanvo_PixelRGB565> neonloops_stretchblit_nearest_argb32_rgb565_clip;
extern Kanvo_StretchLoop<Kanvo_PixelRGB565> neonloops_stretchblit_bilinear_argb32_rgb565_clip;

//! Convert and blend by ubAlpha; store at 255.
extern Kanvo_StretchLoopAlpha<Kanvo_PixelRGB565> neonloops_stretchblit_nearest_argb32_rgb565_ag_clip;
extern Kanvo_StretchLoopAlpha<Kanvo_PixelRGB565> neonloops_stretchblit_bilinear_argb32_rgb565_ag_clip;

//! Blend one colour by the map's samples.
extern Kanvo_StretchLoopColor neonloops_stretchblitcolor_nearest_argb32_a8_clip;
extern Kanvo_StretchLoopColor neonloops_stretchblitcolor_bilinear_argb32_a8_clip;

//! Blend one colour by the map's samples times ubAlpha.
extern Kanvo_StretchLoopColorAlpha neonloops_stretchblitcolor_nearest_argb32_a8_ag_clip;
extern Kanvo_StretchLoopColorAlpha neonloops_stretchblitcolor_bilinear_argb32_a8_ag_clip;

#endif
