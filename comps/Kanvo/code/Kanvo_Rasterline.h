// Kanvo_Rasterline: paints the body of a wide line, one span per major step. Fed by Kanvo_Wideline with a finished
// rasterData; calls one span renderer and never touches a pixel itself.
#ifndef KANVO_RASTERLINE_H
#define KANVO_RASTERLINE_H

#include <cstdlib>
#include <type_traits>

#include "Kanvo_Linedraw_Octant.h"

//! Walks the major steps of a raster loop: position, span and distance in step.
struct Kanvo_RasterWalk
{
    Tov_Fixed fxPosMaj;
    Tov_Fixed fxPosMin;
    Tov_Fixed fxSpan;
    Tov_Fixed fxDist;
    Tov_Fixed fxIncMin;
    Tov_Fixed fxSpanInc;
    Tov_Fixed fxDistStep;

    Kanvo_RasterWalk(const rasterData& kData, const octantData& kPos)
        : fxPosMaj(kData.fxPosMaj),
          fxPosMin(kData.fxPosMin),
          fxSpan(kData.fxSpan),
          fxDist(DistanceFrom(kPos.fxStartMaj, kPos.fxStartMin, kPos.fxNormalMaj, kPos.fxNormalMin)),
          fxIncMin(kData.fxIncMin),
          fxSpanInc(kData.fxSpanInc),
          fxDistStep(Tov_FixAdd(kPos.fxNormalMaj,
                                Tov_FixMul_RZA1H(Tov_FixSub(kData.fxIncMin, kData.fxSpanInc), kPos.fxNormalMin)))
    {
    }

    //! Distance of the span's start from a point, along a unit vector.
    Tov_Fixed DistanceFrom(Tov_Fixed fxMaj, Tov_Fixed fxMin, Tov_Fixed fxNormalMaj, Tov_Fixed fxNormalMin) const
    {
        return Tov_FixAdd(Tov_FixMul_RZA1H(Tov_FixSub(fxPosMaj & ~0xFFFF, fxMaj), fxNormalMaj),
                          Tov_FixMul_RZA1H(Tov_FixSub(Lo(), fxMin), fxNormalMin));
    }

    Tov_Fixed Lo() const { return Tov_FixSub(fxPosMin, fxSpan); }
    Tov_Fixed Hi() const { return Tov_FixAdd(fxPosMin, fxSpan); }

    //! Calls kSpan() for each of iSteps steps.
    template <class Span>
    KANVO_INLINE void Run(std::int64_t iSteps, Span kSpan)
    {
        for (; iSteps > 0; --iSteps)
        {
            kSpan();
            fxPosMin = Tov_FixAdd(fxPosMin, fxIncMin);
            fxSpan   = Tov_FixAdd(fxSpan, fxSpanInc);
            fxPosMaj = Tov_FixAdd(fxPosMaj, 0x10000);
            fxDist   = Tov_FixAdd(fxDist, fxDistStep);
        }
    }

    //! As Run, with those steps drawn all at once whose spans lie inside the clip range and the bitmap and meet neither the
    //! near edge nor, fxDist2 behind it, the far one.
    template <class SpanRender, class Style, class Span>
    KANVO_INLINE void RunInside(Kanvo_Bitmap* pBitmap, const Kanvo_Line_clipRange& kMaj,
                                const Kanvo_Line_clipRange& kMin, Tov_Fixed fxDistInc, Tov_Fixed fxDist2,
                                const Style& kStyle, std::int64_t iSteps, Span kSpan);

    //! Goes over the steps before a major position, as if they had been walked.
    void SkipTo(Tov_Fixed fxMaj)
    {
        if (fxPosMaj < fxMaj)
        {
            const auto iSteps = static_cast<Tov_Int>((std::int64_t{fxMaj} - fxPosMaj + 0xFFFF) >> 16);
            fxPosMin          = Tov_FixAdd(fxPosMin, Tov_IntMul(fxIncMin, iSteps));
            fxSpan            = Tov_FixAdd(fxSpan, Tov_IntMul(fxSpanInc, iSteps));
            fxPosMaj          = Tov_FixAdd(fxPosMaj, Tov_IntMul(0x10000, iSteps));
            fxDist            = Tov_FixAdd(fxDist, Tov_IntMul(fxDistStep, iSteps));
        }
    }
};

//! Which steps of a raster loop have spans that lie inside the clip range and the bitmap and meet neither edge.
struct Kanvo_RasterBody
{
    Kanvo_SpanRange      kMajors;
    Kanvo_Line_clipRange kMin;
    std::int64_t         iMost;  //!< the last minor position whose pixel and the one behind it are inside
    std::int64_t         iNear;
    std::int64_t         iFar;

    //! Finds them for a walk of iSteps steps. fxFull and fxFarFull: from which distance from either edge on a pixel is
    //! whole. Called, not copied into each of the loops.
    __attribute__((noinline)) void Find(const Kanvo_RasterWalk& kWalk, std::int64_t iSteps,
                                        Kanvo_SpanRange kBitmapMajors, Kanvo_SpanRange kBitmapMinors,
                                        const Kanvo_Line_clipRange& kMajClip, const Kanvo_Line_clipRange& kMinClip,
                                        Tov_Fixed fxDistInc, Tov_Fixed fxDist2, Tov_Fixed fxFull, Tov_Fixed fxFarFull)
    {
        kMajors = kBitmapMajors;
        kMajors.Limit(kMajClip.fxMin >> 16, kMajClip.fxMax >> 16);
        kMin  = kMinClip;
        iMost = std::min<std::int64_t>(kMin.fxMax, std::int64_t{kBitmapMinors.iLast + 1} * 0x10000) - 0x10000;

        // The distance changes from x1, whose pixel begins up to a pixel before, to x2, whose pixel ends up to one behind.
        const std::int64_t iSpanEnd = kWalk.fxSpan + iSteps * kWalk.fxSpanInc;
        const std::int64_t iPixels  = (std::max<std::int64_t>(kWalk.fxSpan, iSpanEnd) * 2 >> 16) + 2;
        const std::int64_t iAround  = std::abs(std::int64_t{fxDistInc}) + 1;
        const std::int64_t iAcross  = fxDistInc * iPixels;
        iNear                       = fxFull + iAround - std::min<std::int64_t>(iAcross, 0);
        iFar                        = std::int64_t{fxDist2} - fxFarFull - iAround - std::max<std::int64_t>(iAcross, 0);
    }

    //! Whether the step iStep from where the walk stands is one of them.
    __attribute__((noinline)) Tov_Bool Has(const Kanvo_RasterWalk& kWalk, std::int64_t iStep) const
    {
        const std::int64_t iMaj      = (kWalk.fxPosMaj >> 16) + iStep;
        const std::int64_t iMiddle   = kWalk.fxPosMin + iStep * kWalk.fxIncMin;
        const std::int64_t iSpan     = kWalk.fxSpan + iStep * kWalk.fxSpanInc;
        const std::int64_t iDistance = kWalk.fxDist + iStep * kWalk.fxDistStep;
        return iDistance >= iNear && iDistance <= iFar && iSpan >= 0 && iMiddle - iSpan >= kMin.fxMin &&
               iMiddle + iSpan <= iMost && iMaj >= kMajors.iFirst && iMaj <= kMajors.iLast;
    }
};

template <class SpanRender, class Style, class Span>
KANVO_INLINE void Kanvo_RasterWalk::RunInside(Kanvo_Bitmap* pBitmap, const Kanvo_Line_clipRange& kMaj,
                                              const Kanvo_Line_clipRange& kMin, Tov_Fixed fxDistInc, Tov_Fixed fxDist2,
                                              const Style& kStyle, std::int64_t iSteps, Span kSpan)
{
    using Edges = typename SpanRender::Limits;

    Kanvo_RasterBody kBody;
    kBody.Find(*this, iSteps, SpanRender::Majors(pBitmap), SpanRender::Minors(pBitmap), kMaj, kMin, fxDistInc, fxDist2,
               Edges::FULL, Edges::FAR_FULL);
    Kanvo_DrawSteps(
        iSteps, [&](std::int64_t iStep) { return kBody.Has(*this, iStep); },
        [&](Tov_Int iInside)
        {
            const Kanvo_PixelView kView{pBitmap->GetBuffer(), pBitmap->GetPitch()};
            Kanvo_RasterWalk      kWalk = *this;  // a copy, which writing pixels cannot change
            kWalk.Run(iInside,
                      [&] {
                          SpanRender::DrawBody(kView, kWalk.fxPosMaj, kWalk.Lo(), kWalk.Hi(), kWalk.fxDist, fxDistInc,
                                               kStyle);
                      });
            *this = kWalk;
        },
        [&] { Run(1, kSpan); });
}

//! A line shorter than wide: every span may meet both ends.
template <class Style, class SpanRender>
void Kanvo_Linedraw_Octant<Style, SpanRender>::rasterShort(Kanvo_Bitmap* pBitmap, const Style& kStyle,
                                                           const rasterData& kData, const octantData& kPos,
                                                           const Tov_Flag& /*flags*/)
{
    Kanvo_RasterWalk kWalk(kData, kPos);
    const Tov_Fixed  fxFar = Tov_FixAdd(kPos.fxLen, 0x10000);
    kWalk.Run(Kanvo_StepsUpTo(kWalk.fxPosMaj, kData.fxEndMaj),
              [&]
              {
                  SpanRender::RenderSpan2Edge(pBitmap, kWalk.fxPosMaj, kWalk.Lo(), kWalk.Hi(), kWalk.fxDist,
                                              kPos.fxNormalMin, fxFar, 0, kStyle);
              });
}

//! A line longer than wide: a start that meets the one end, a middle that meets none, an end.
template <class Style, class SpanRender>
void Kanvo_Linedraw_Octant<Style, SpanRender>::rasterLongV(Kanvo_Bitmap* pBitmap, const Style& kStyle,
                                                           const rasterData& kData, const octantData& kPos,
                                                           const Tov_Flag& /*flags*/)
{
    Kanvo_RasterWalk kWalk(kData, kPos);
    kWalk.Run(Kanvo_StepsUpTo(kWalk.fxPosMaj, kData.fxMid1Maj),
              [&]
              {
                  SpanRender::RenderSpanEdge(pBitmap, kWalk.fxPosMaj, kWalk.Lo(), kWalk.Hi(), kWalk.fxDist,
                                             kPos.fxNormalMin, kStyle);
              });
    kWalk.Run(Kanvo_StepsBelow(kWalk.fxPosMaj, kData.fxMid2Maj),
              [&] { SpanRender::RenderSpan(pBitmap, kWalk.fxPosMaj, kWalk.Lo(), kWalk.Hi(), kStyle); });

    // From the end point, looking back.
    const Tov_Fixed fxBackMin = Tov_FixSub(0, kPos.fxNormalMin);
    kWalk.fxDist =
        kWalk.DistanceFrom(Tov_FixAdd(kPos.fxStartMaj, kPos.fxDeltaMaj), Tov_FixAdd(kPos.fxStartMin, kPos.fxDeltaMin),
                           Tov_FixSub(0, kPos.fxNormalMaj), fxBackMin);
    kWalk.fxDistStep = Tov_FixSub(0, kWalk.fxDistStep);
    kWalk.Run(Kanvo_StepsBelow(kWalk.fxPosMaj, kData.fxEndMaj),
              [&] {
                  SpanRender::RenderSpanEdge(pBitmap, kWalk.fxPosMaj, kWalk.Lo(), kWalk.Hi(), kWalk.fxDist, fxBackMin,
                                             kStyle);
              });
}

//! A clipped line of any length.
template <class Style, class SpanRender>
void Kanvo_Linedraw_Octant<Style, SpanRender>::rasterShortClip(Kanvo_Bitmap* pBitmap, const Style& kStyle,
                                                               const rasterData& kData, const octantData& kPos,
                                                               const Tov_Flag& /*flags*/)
{
    const Kanvo_Line_clipRange& kMaj  = kPos.kMajClip;
    const Kanvo_Line_clipRange& kMin  = kPos.kMinClip;
    const Tov_Fixed             fxFar = Tov_FixAdd(kPos.fxLen, 0x10000);
    Kanvo_RasterWalk            kWalk(kData, kPos);
    kWalk.SkipTo(kMaj.fxMin);
    const std::int64_t iSteps = Kanvo_StepsUpTo(kWalk.fxPosMaj, std::min(kData.fxEndMaj, kMaj.fxMax));
    kWalk.template RunInside<SpanRender>(
        pBitmap, kMaj, kMin, kPos.fxNormalMin, fxFar, kStyle, iSteps,
        [&]
        {
            const Tov_Fixed fxLo = kWalk.Lo();
            const Tov_Fixed fxHi = kWalk.Hi();
            if constexpr (SpanRender::Limits::SOFT)
            {
                SpanRender::RenderSpan2Edge(pBitmap, kWalk.fxPosMaj, fxLo, fxHi, kWalk.fxDist, kPos.fxNormalMin, fxFar,
                                            0, kStyle, kMin.fxMax, kMin.fxMin, kMaj.fxMax, kMaj.fxMin);
            }
            else if (kMin.fxMin <= fxHi && Tov_FixAdd(kMin.fxMax, 0x10000) >= fxLo)
            {
                // The part cut off at the start goes along, so that the distance still refers to the whole span.
                const Tov_Fixed fxClip  = std::min(Tov_FixSub(fxLo, kMin.fxMin), Tov_Fixed{0});
                Tov_Fixed       fxFrom  = Tov_FixSub(fxLo, fxClip);
                Tov_Fixed       fxUntil = std::min(fxHi, kMin.fxMax);
                if (fxFrom > fxUntil)
                {
                    fxUntil = std::max(fxUntil, kMin.fxMin);
                    fxFrom  = fxUntil;
                }
                SpanRender::RenderSpan2Edge(pBitmap, kWalk.fxPosMaj, fxFrom, fxUntil, kWalk.fxDist, kPos.fxNormalMin,
                                            fxFar, fxClip, kStyle);
            }
        });
}

//! Sets the texture of a pattern line once, for all its spans: it advances through the distance.
template <class SpanRender>
inline void Kanvo_SetUpTexture(Kanvo_Line_patternStyle& kStyle, const Kanvo_RasterWalk& kWalk, const octantData& kPos)
{
    const Tov_Fixed fxTexIncMin = Tov_FixMul_RZA1H(kWalk.fxDistStep, kStyle.fxTexMul);
    const Tov_Fixed fxXO =
        Tov_FixSub(kPos.fxStartMaj, Tov_FltToFix(SpanRender::GetMajFromVector(kStyle.kStart))) & ~0xFFFF;
    const Tov_Fixed fxAhead = Tov_FixMul_RZA1H(fxXO, fxTexIncMin);

    kStyle.fxTexInc  = Tov_FixMul_RZA1H(kPos.fxNormalMin, kStyle.fxTexMul);
    kStyle.aclColors = kStyle.bFlip ? kStyle.aclColorBase + Kanvo_Pattern::COLORS : kStyle.aclColorBase;
    kStyle.fxTex     = Tov_FixAdd(fxAhead, kStyle.bFlip ? 0x1000000 - kStyle.fxTexOffset : kStyle.fxTexOffset);
}

template <class Style, class SpanRender>
void Kanvo_Linedraw_Octant<Style, SpanRender>::rasterPatternV(Kanvo_Bitmap* pBitmap, const Style& kStyle,
                                                              const rasterData& kData, const octantData& kPos,
                                                              const Tov_Flag& /*flags*/)
{
    if constexpr (std::is_pointer_v<Style>)
    {
        Kanvo_RasterWalk kWalk(kData, kPos);
        const Tov_Fixed  fxFar = Tov_FixAdd(kPos.fxLen, 0x10000);
        Kanvo_SetUpTexture<SpanRender>(*kStyle, kWalk, kPos);
        kWalk.Run(Kanvo_StepsUpTo(kWalk.fxPosMaj, kData.fxEndMaj),
                  [&]
                  {
                      SpanRender::RenderSpanPattern2Edge(pBitmap, kWalk.fxPosMaj, kWalk.Lo(), kWalk.Hi(), kWalk.fxDist,
                                                         kPos.fxNormalMin, fxFar, 0, kStyle);
                  });
    }
}

template <class Style, class SpanRender>
void Kanvo_Linedraw_Octant<Style, SpanRender>::rasterPatternClip(Kanvo_Bitmap* pBitmap, const Style& kStyle,
                                                                 const rasterData& kData, const octantData& kPos,
                                                                 const Tov_Flag& /*flags*/)
{
    if constexpr (std::is_pointer_v<Style>)
    {
        const Kanvo_Line_clipRange& kMaj  = kPos.kMajClip;
        const Kanvo_Line_clipRange& kMin  = kPos.kMinClip;
        const Tov_Fixed             fxFar = Tov_FixAdd(kPos.fxLen, 0x10000);
        Kanvo_RasterWalk            kWalk(kData, kPos);
        Kanvo_SetUpTexture<SpanRender>(*kStyle, kWalk, kPos);
        kWalk.SkipTo(kMaj.fxMin);
        kWalk.template RunInside<SpanRender>(
            pBitmap, kMaj, kMin, kPos.fxNormalMin, fxFar, kStyle,
            Kanvo_StepsUpTo(kWalk.fxPosMaj, std::min(kData.fxEndMaj, Tov_FixAdd(kMaj.fxMax, 0xFFFF))),
            [&]
            {
                SpanRender::RenderSpanPattern2Edge(pBitmap, kWalk.fxPosMaj, kWalk.Lo(), kWalk.Hi(), kWalk.fxDist,
                                                   kPos.fxNormalMin, fxFar, 0, kStyle, kMin.fxMax, kMin.fxMin,
                                                   kMaj.fxMax, kMaj.fxMin);
            });
    }
}

#endif
