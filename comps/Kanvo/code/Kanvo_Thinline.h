// Kanvo_Thinline: one point per major step. Fed by Kanvo_Linedraw, calls the point methods of one span renderer.
#ifndef KANVO_THINLINE_H
#define KANVO_THINLINE_H

#include "Kanvo_Linedraw_Octant.h"

template <class Style, class SpanRender>
void Kanvo_Linedraw_Octant<Style, SpanRender>::ThinLineOctant(Kanvo_Bitmap* pBitmap, Tov_Value vStartMaj,
                                                              Tov_Value vStartMin, Tov_Value vDeltaMaj,
                                                              Tov_Value vDeltaMin, const Style& kStyle,
                                                              Tov_Flag ulFlags, Tov_Value vMajmax, Tov_Value vMinmax,
                                                              Tov_Value vMajMin, Tov_Value vMinMin, Tov_Flag uiCode)
{
    const Tov_Fixed fxIncMin = vDeltaMaj > 0.001F ? Tov_FltToFix(vDeltaMin / vDeltaMaj) : 0;
    ThinLineInner(pBitmap, Tov_FltToFix(vStartMaj), Tov_FltToFix(vStartMin), fxIncMin, Tov_FltToFix(vDeltaMaj),
                  Tov_FltToFix(vDeltaMin), kStyle, ulFlags, Tov_FltToFix(vMajmax), Tov_FltToFix(vMinmax),
                  Tov_FltToFix(vMajMin), Tov_FltToFix(vMinMin), uiCode);
}

template <class Style, class SpanRender>
void Kanvo_Linedraw_Octant<Style, SpanRender>::ThinLineInner(Kanvo_Bitmap* pBitmap, Tov_Fixed fxStartMaj,
                                                             Tov_Fixed fxStartMin, Tov_Fixed fxIncMin,
                                                             Tov_Fixed    fxDeltaMaj, Tov_Fixed /*fxDeltaMin*/,
                                                             const Style& kStyle, Tov_Flag ulFlags, Tov_Fixed fxMaxMaj,
                                                             Tov_Fixed fxMaxMin, Tov_Fixed fxMinMaj, Tov_Fixed fxMinMin,
                                                             Tov_Flag uiCode)
{
    Trak_Count(g_kStat_LineLength, static_cast<Tov_Value>(fxDeltaMaj) / 65536.0F);

    Tov_Fixed fxPosMaj = Tov_FixAdd(fxStartMaj, 32767) & ~0xFFFF;  // nearest pixel, a half rounds down
    Tov_Fixed fxPosMin = Tov_FixAdd(fxStartMin, Tov_IntMul(Tov_FixSub(fxPosMaj, fxStartMaj) >> 8, fxIncMin >> 8));
    if ((ulFlags & Kanvo_LF_ANTIALIAS) == 0)
    {
        fxPosMin = Tov_FixAdd(fxPosMin, 32768);  // nearest pixel here too; an anti-aliased point is split exactly
    }
    if ((ulFlags & Kanvo_LF_HQ_AA) != 0)
    {
        fxPosMin = Tov_FixSub(fxPosMin, 95027);  // 1.45 pixels: to the first tap of the filter
        if (fxPosMin < fxMinMin)
        {
            uiCode |= CB_OUTOFBOUND;
        }
    }
    const std::int64_t iEndMaj = std::int64_t{fxStartMaj} + fxDeltaMaj;  // may lie beyond the upper end of 16.16
    if ((uiCode & (CF_CLIPPED | CB_OUTOFBOUND | CF_OVERFLOW)) != 0)
    {
        // KEPT: a clipped line goes on for half a pixel, so that it reaches the border it was clipped at; others do not.
        // Test: AClippedThinLineGoesOnForHalfAPixel.
        const std::int64_t iEnd = std::min<std::int64_t>(iEndMaj + 32768, fxMaxMaj);
        for (std::int64_t iStep = Kanvo_StepsUpTo(fxPosMaj, iEnd); iStep > 0; --iStep)
        {
            SpanRender::RenderPixel(pBitmap, fxPosMaj, fxPosMin, kStyle, fxMaxMin, fxMinMin, fxMaxMaj, fxMinMaj);
            fxPosMaj = Tov_FixAdd(fxPosMaj, 0x10000);
            fxPosMin = Tov_FixAdd(fxPosMin, fxIncMin);
        }
    }
    else
    {
        for (std::int64_t iStep = Kanvo_StepsUpTo(fxPosMaj, std::min<std::int64_t>(iEndMaj, fxMaxMaj)); iStep > 0;
             --iStep)
        {
            SpanRender::RenderPixel(pBitmap, fxPosMaj, fxPosMin, kStyle);
            fxPosMaj = Tov_FixAdd(fxPosMaj, 0x10000);
            fxPosMin = Tov_FixAdd(fxPosMin, fxIncMin);
        }
    }
}

#endif
