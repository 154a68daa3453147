// neonloops: the rectangle loops of the optimised path, one function pointer each. The entries of Kanvo_BitmapARGB32 call
// them where the render state OPTIMIZED_BLIT is OB_NEON. Each starts at its portable body; what a processor does better
// replaces it at start-up, with the same bytes.
//
// Common to all: kDst and kSrc point at the first pixel of rectangles that are already clipped; pitches are in bytes from
// row to row; a width or height of 0 draws nothing; rows run from top to bottom, pixels from left to right.
#ifndef KANVO_NEONLOOPS_H
#define KANVO_NEONLOOPS_H

#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapRGB565.h"
#include "Kanvo_PixelARGB32_Access.h"

// ---- fills ----------------------------------------------------------------------------------------------------------

//! Stores the pixel.
extern void (*neonloops_fill_argb32)(Kanvo_OffsetARGB32 kDst, Tov_UInt uiDstPitch, Kanvo_PixelARGB32 pxPixel,
                                     Tov_UInt uiWidth, Tov_UInt uiHeight);

//! Mixes the pixel in by ubAlpha, as KanvoBlit_MixLinear.
extern void (*neonloops_fill_argb32_ag)(Kanvo_OffsetARGB32 kDst, Tov_UInt uiDstPitch, Kanvo_PixelARGB32 pxPixel,
                                        Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubAlpha);

// ---- blits ----------------------------------------------------------------------------------------------------------

//! Copies ARGB32 pixels unchanged.
extern void (*neonloops_blit_argb32_argb32)(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiDstPitch,
                                            Tov_UInt uiSrcPitch, Tov_UInt uiWidth, Tov_UInt uiHeight);

//! Blends by the source's alpha times ubAlpha, as BlendPixelSrcAlpha.
extern void (*neonloops_blit_argb32_argb32_as_ag)(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc,
                                                  Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch, Tov_UInt uiWidth,
                                                  Tov_UInt uiHeight, Tov_UByte ubAlpha);

//! Blends by the source's own alpha, as BlendPixelSrcAlpha at 255.
extern void (*neonloops_blit_argb32_argb32_as)(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc,
                                               Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch, Tov_UInt uiWidth,
                                               Tov_UInt uiHeight);

//! Converts to opaque ARGB32 and stores.
extern void (*neonloops_blit_argb32_rgb565)(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiDstPitch,
                                            Tov_UInt uiSrcPitch, Tov_UInt uiWidth, Tov_UInt uiHeight);

//! Converts and blends by ubAlpha, as BlendPixelSrcAlpha, also at 255.
extern void (*neonloops_blit_argb32_rgb565_ag)(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc,
                                               Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch, Tov_UInt uiWidth,
                                               Tov_UInt uiHeight, Tov_UByte ubAlpha);

//! Mixes the colour in by the coverage, as KanvoBlit_MixLinear.
extern void (*neonloops_blitcolor_argb32_a8)(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kMask, Tov_UInt uiDstPitch,
                                             Tov_UInt uiMaskPitch, Kanvo_ColorARGB32 clColor, Tov_UInt uiWidth,
                                             Tov_UInt uiHeight);

//! Mixes the colour in by the coverage times ubAlpha, as KanvoBlit_MixLinear.
extern void (*neonloops_blitcolor_argb32_a8_ag)(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kMask,
                                                Tov_UInt uiDstPitch, Tov_UInt uiMaskPitch, Kanvo_ColorARGB32 clColor,
                                                Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubAlpha);

// ---- blits through an alpha map -------------------------------------------------------------------------------------

//! Stores the converted colour with the map's value as its alpha; where that is 0 the pixel stays.
extern void (*neonloops_blit_argb32_rgb565a8)(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc,
                                              const Kanvo_PixelA8* kMask, Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch,
                                              Tov_UInt uiMaskPitch, Tov_UInt uiWidth, Tov_UInt uiHeight);

//! Blends the converted colour by the map's value, as BlendPixel.
extern void (*neonloops_blit_argb32_rgb565a8_as)(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc,
                                                 const Kanvo_PixelA8* kMask, Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch,
                                                 Tov_UInt uiMaskPitch, Tov_UInt uiWidth, Tov_UInt uiHeight);

//! Blends the converted colour by the map's value times ubAlpha, as BlendPixel.
extern void (*neonloops_blit_argb32_rgb565a8_as_ag)(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc,
                                                    const Kanvo_PixelA8* kMask, Tov_UInt uiDstPitch,
                                                    Tov_UInt uiSrcPitch, Tov_UInt uiMaskPitch, Tov_UInt uiWidth,
                                                    Tov_UInt uiHeight, Tov_UByte ubAlpha);

#endif
