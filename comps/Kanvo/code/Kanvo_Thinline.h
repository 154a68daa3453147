// Kanvo_Thinline: one point per major step. Fed by Kanvo_Linedraw, calls the point methods of one span renderer.
#ifndef KANVO_THINLINE_H
#define KANVO_THINLINE_H

#include "Kanvo_Linedraw_Octant.h"

//! Walks the major steps of a thin line.
struct Kanvo_ThinWalk
{
    Tov_Fixed fxPosMaj;
    Tov_Fixed fxPosMin;
    Tov_Fixed fxIncMin;

    //! The first point of a line.
    KANVO_INLINE Kanvo_ThinWalk(Tov_Fixed fxStartMaj, Tov_Fixed fxStartMin, Tov_Fixed fxInc, Tov_Flag ulFlags)
        : fxPosMaj(Tov_FixAdd(fxStartMaj, 32767) & ~0xFFFF),  // nearest pixel, a half rounds down
          fxPosMin(Tov_FixAdd(fxStartMin, Tov_IntMul(Tov_FixSub(fxPosMaj, fxStartMaj) >> 8, fxInc >> 8))),
          fxIncMin(fxInc)
    {
        if ((ulFlags & Kanvo_LF_ANTIALIAS) == 0)
        {
            fxPosMin = Tov_FixAdd(fxPosMin, 32768);  // nearest pixel here too; an anti-aliased point is split exactly
        }
        if ((ulFlags & Kanvo_LF_HQ_AA) != 0)
        {
            fxPosMin = Tov_FixSub(fxPosMin, 95027);  // 1.45 pixels: to the first tap of the filter
        }
    }

    //! Draws iSteps points: those that lie in both ranges with all their pixels at once, others by kPoint().
    template <class SpanRender, class Style, class Point>
    KANVO_INLINE void Draw(const Kanvo_Bitmap* pBitmap, std::int64_t iSteps, const Kanvo_SpanRange& kMajors,
                           Kanvo_SpanRange kMinors, const Style& kStyle, Point kPoint)
    {
        kMinors.iLast -= SpanRender::POINT_PIXELS - 1;
        Kanvo_DrawSteps(
            iSteps, [&](std::int64_t iStep) { return Lies(iStep, kMajors, kMinors); },
            [&](Tov_Int iInside)
            {
                DrawInside<SpanRender>(pBitmap, iInside, kStyle);
                Skip(iInside);
            },
            [&]
            {
                kPoint();
                Skip(1);
            });
    }

    //! Draws iSteps points that lie inside the bitmap with all their pixels.
    template <class SpanRender, class Style>
    KANVO_INLINE void DrawInside(const Kanvo_Bitmap* pBitmap, Tov_Int iSteps, const Style& kStyle) const
    {
        SpanRender::DrawPoints(Kanvo_PixelView{pBitmap->GetBuffer(), pBitmap->GetPitch()}, fxPosMaj >> 16, fxPosMin,
                               fxIncMin, iSteps, kStyle);
    }

private:
    __attribute__((noinline)) Tov_Bool Lies(std::int64_t iStep, const Kanvo_SpanRange& kMajors,
                                            const Kanvo_SpanRange& kMinors) const
    {
        const std::int64_t iMaj = (fxPosMaj >> 16) + iStep;
        const std::int64_t iMin = (fxPosMin + iStep * fxIncMin) >> 16;
        return iMaj >= kMajors.iFirst && iMaj <= kMajors.iLast && iMin >= kMinors.iFirst && iMin <= kMinors.iLast;
    }
    KANVO_INLINE void Skip(Tov_Int iSteps)
    {
        fxPosMaj = Tov_FixAdd(fxPosMaj, Tov_IntMul(0x10000, iSteps));
        fxPosMin = Tov_FixAdd(fxPosMin, Tov_IntMul(fxIncMin, iSteps));
    }
};

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

    Kanvo_ThinWalk kWalk(fxStartMaj, fxStartMin, fxIncMin, ulFlags);
    if ((ulFlags & Kanvo_LF_HQ_AA) != 0 && kWalk.fxPosMin < fxMinMin)
    {
        uiCode |= CB_OUTOFBOUND;
    }
    std::int64_t    iEndMaj  = std::int64_t{fxStartMaj} + fxDeltaMaj;  // may lie beyond the upper end of 16.16
    Kanvo_SpanRange kMajors  = SpanRender::Majors(pBitmap);
    Kanvo_SpanRange kMinors  = SpanRender::Minors(pBitmap);
    const Tov_Bool  bClipped = (uiCode & (CF_CLIPPED | CB_OUTOFBOUND | CF_OVERFLOW)) != 0;
    if (bClipped)
    {
        // KEPT: a clipped line goes on for half a pixel, so that it reaches the border it was clipped at; others do not.
        // Test: AClippedThinLineGoesOnForHalfAPixel.
        iEndMaj += 32768;
        kMajors.Limit(fxMinMaj >> 16, fxMaxMaj >> 16);
        kMinors.Limit(fxMinMin >> 16, fxMaxMin >> 16);
    }
    kWalk.template Draw<SpanRender>(pBitmap, Kanvo_StepsUpTo(kWalk.fxPosMaj, std::min<std::int64_t>(iEndMaj, fxMaxMaj)),
                                    kMajors, kMinors, kStyle,
                                    [&]
                                    {
                                        if (bClipped)
                                        {
                                            SpanRender::RenderPixel(pBitmap, kWalk.fxPosMaj, kWalk.fxPosMin, kStyle,
                                                                    fxMaxMin, fxMinMin, fxMaxMaj, fxMinMaj);
                                        }
                                        else
                                        {
                                            SpanRender::RenderPixel(pBitmap, kWalk.fxPosMaj, kWalk.fxPosMin, kStyle);
                                        }
                                    });
}

#endif
