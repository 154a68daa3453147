// neonloops_stretch: the pointers, and their bodies, one for all levels: they run the workers' own rows on plain pointers,
// and those call the functions of the level in force.
#include "neonloops_stretch.h"

#include "Kanvo_StretchBlit.h"

namespace
{

//! Draws if anything is visible. Bounds of the source are those of its rectangle, which the caller has checked.
template <Tov_Bool BILINEAR, class SrcPixel, class Draw>
// NOLINTNEXTLINE(readability-non-const-parameter): kDraw writes there, through the view
KANVO_INLINE void Run(Draw kDraw, KANVO_STRETCH_ARGUMENTS(SrcPixel))
{
    Kanvo_StretchCall  kCall{{const_cast<SrcPixel*>(kSrc), uiSrcPitch}, {kDst, uiDstPitch}, {}, {}, BILINEAR};
    const std::int64_t iBoundX = std::int64_t{uiSrcX} + uiSrcWidth;
    const std::int64_t iBoundY = std::int64_t{uiSrcY} + uiSrcHeight;
    if (kCall.kX.Calc({uiSrcX, uiSrcWidth, iBoundX, iDstX, uiDstWidth, 0, std::int64_t{uiClipWidth} - 1, BILINEAR}) &&
        kCall.kY.Calc({uiSrcY, uiSrcHeight, iBoundY, iDstY, uiDstHeight, 0, std::int64_t{uiClipHeight} - 1, BILINEAR}))
    {
        kDraw(kCall);
    }
}

#define KANVO_STRETCH_PASS                                                                                      \
    kDst, kSrc, uiDstPitch, uiSrcPitch, iDstX, iDstY, uiDstWidth, uiDstHeight, uiSrcWidth, uiSrcHeight, uiSrcX, \
        uiSrcY, uiClipWidth, uiClipHeight

using Call       = Kanvo_StretchCall;
using BodyARGB32 = Kanvo_StretchBody<Kanvo_PixelARGB32_Access, Kanvo_PixelARGB32_Access>;
using BodyRGB565 = Kanvo_StretchBody<Kanvo_PixelRGB565_Access, Kanvo_PixelARGB32_Access>;
using BodyA8     = Kanvo_StretchBody<Kanvo_PixelA8_Access, Kanvo_PixelARGB32_Access>;

template <Tov_Bool BILINEAR>
void Copy(KANVO_STRETCH_ARGUMENTS(Kanvo_PixelARGB32))
{
    Run<BILINEAR, Kanvo_PixelARGB32>([](const Call& kCall) { BodyARGB32::Int(kCall, 255); }, KANVO_STRETCH_PASS);
}

template <Tov_Bool BILINEAR>
void Over(KANVO_STRETCH_ARGUMENTS(Kanvo_PixelARGB32), Tov_UByte ubAlpha)
{
    Run<BILINEAR, Kanvo_PixelARGB32>([=](const Call& kCall) { BodyARGB32::Over(kCall, ubAlpha); }, KANVO_STRETCH_PASS);
}

template <Tov_Bool BILINEAR>
void BlendRGB565(KANVO_STRETCH_ARGUMENTS(Kanvo_PixelRGB565), Tov_UByte ubAlpha)
{
    Run<BILINEAR, Kanvo_PixelRGB565>([=](const Call& kCall) { BodyRGB565::RGB(kCall, ubAlpha); }, KANVO_STRETCH_PASS);
}

template <Tov_Bool BILINEAR>
void StoreRGB565(KANVO_STRETCH_ARGUMENTS(Kanvo_PixelRGB565))
{
    BlendRGB565<BILINEAR>(KANVO_STRETCH_PASS, 255);
}

template <Tov_Bool BILINEAR>
void ColorScaled(KANVO_STRETCH_ARGUMENTS(Kanvo_PixelA8), Kanvo_ColorARGB32 clColor, Tov_UByte ubAlpha)
{
    Run<BILINEAR, Kanvo_PixelA8>([=](const Call& kCall) { BodyA8::IntCol(kCall, clColor, ubAlpha); },
                                 KANVO_STRETCH_PASS);
}

template <Tov_Bool BILINEAR>
void Color(KANVO_STRETCH_ARGUMENTS(Kanvo_PixelA8), Kanvo_ColorARGB32 clColor)
{
    ColorScaled<BILINEAR>(KANVO_STRETCH_PASS, clColor, 255);
}

}  // namespace

Kanvo_StretchLoop<Kanvo_PixelARGB32> neonloops_stretchblit_nearest_argb32_argb32_clip  = &Copy<false>;
Kanvo_StretchLoop<Kanvo_PixelARGB32> neonloops_stretchblit_bilinear_argb32_argb32_clip = &Copy<true>;

Kanvo_StretchLoopAlpha<Kanvo_PixelARGB32> neonloops_stretchblit_nearest_argb32_argb32_as_ag_clip  = &Over<false>;
Kanvo_StretchLoopAlpha<Kanvo_PixelARGB32> neonloops_stretchblit_bilinear_argb32_argb32_as_ag_clip = &Over<true>;

Kanvo_StretchLoop<Kanvo_PixelRGB565> neonloops_stretchblit_nearest_argb32_rgb565_clip  = &StoreRGB565<false>;
Kanvo_StretchLoop<Kanvo_PixelRGB565> neonloops_stretchblit_bilinear_argb32_rgb565_clip = &StoreRGB565<true>;

Kanvo_StretchLoopAlpha<Kanvo_PixelRGB565> neonloops_stretchblit_nearest_argb32_rgb565_ag_clip  = &BlendRGB565<false>;
Kanvo_StretchLoopAlpha<Kanvo_PixelRGB565> neonloops_stretchblit_bilinear_argb32_rgb565_ag_clip = &BlendRGB565<true>;

Kanvo_StretchLoopColor neonloops_stretchblitcolor_nearest_argb32_a8_clip  = &Color<false>;
Kanvo_StretchLoopColor neonloops_stretchblitcolor_bilinear_argb32_a8_clip = &Color<true>;

Kanvo_StretchLoopColorAlpha neonloops_stretchblitcolor_nearest_argb32_a8_ag_clip  = &ColorScaled<false>;
Kanvo_StretchLoopColorAlpha neonloops_stretchblitcolor_bilinear_argb32_a8_ag_clip = &ColorScaled<true>;
