// Kanvo_Linedraw_Octant: the rasterisers of one octant, contents page. Kanvo_Linedraw chooses an instance by axis, quality
// and style and hands it a line whose major delta is positive; from here on all is 16.16. The bodies:
//
//     Kanvo_Thinline.h    one point per major step
//     Kanvo_Wideline.h    fits ends and span geometry of a wide line into a rasterData, chooses a raster loop
//     Kanvo_Rasterline.h  the raster loops: one span per major step
#ifndef KANVO_LINEDRAW_OCTANT_H
#define KANVO_LINEDRAW_OCTANT_H

#include <algorithm>

#include "Kanvo_Clipper.h"
#include "Kanvo_Enums.h"
#include "Kanvo_Spandraw.h"
#include "Trak_Counters.h"

//! A closed interval on one axis.
struct Kanvo_Line_clipRange
{
    Tov_Fixed fxMin;
    Tov_Fixed fxMax;
};

//! A wide line in major and minor coordinates.
struct octantData
{
    Tov_Fixed            fxStartMaj;
    Tov_Fixed            fxStartMin;
    Tov_Fixed            fxDeltaMaj;  //!< end minus start; not negative
    Tov_Fixed            fxDeltaMin;
    Tov_Fixed            fxNormalMaj;  //!< unit vector along the line
    Tov_Fixed            fxNormalMin;
    Tov_Fixed            fxLen;
    Kanvo_Line_clipRange kMajClip;
    Kanvo_Line_clipRange kMinClip;
};

//! What a raster loop walks:
//!
//!   fxPosMaj            fxMid1Maj                 fxMid2Maj             fxEndMaj
//!      |---- start, <= -----|------- middle, < -------|------ end, < ------|
//!       distance from start     no distance kept         distance from end
struct rasterData
{
    Tov_Fixed fxPosMaj;
    Tov_Fixed fxMid1Maj;
    Tov_Fixed fxMid2Maj;
    Tov_Fixed fxEndMaj;
    Tov_Fixed fxPosMin;   //!< middle of the span at fxPosMaj
    Tov_Fixed fxIncMin;   //!< its change per major step
    Tov_Fixed fxSpan;     //!< half the span at fxPosMaj
    Tov_Fixed fxSpanInc;  //!< its change per major step
};

//! The nearest value that 16.16 has.
KANVO_INLINE Tov_Fixed Kanvo_HeldInFixed(std::int64_t iValue)
{
    return static_cast<Tov_Fixed>(std::max<std::int64_t>(INT32_MIN, std::min<std::int64_t>(INT32_MAX, iValue)));
}

//! Whole steps from fxPos on while it is <= fxEnd, counted beforehand: at the upper end of 16.16 the position itself could
//! step past the end unseen.
KANVO_INLINE std::int64_t Kanvo_StepsUpTo(Tov_Fixed fxPos, std::int64_t iEnd)
{
    return iEnd < fxPos ? 0 : ((iEnd - fxPos) >> 16) + 1;
}

//! The same while it is < fxEnd.
KANVO_INLINE std::int64_t Kanvo_StepsBelow(Tov_Fixed fxPos, std::int64_t iEnd)
{
    return Kanvo_StepsUpTo(fxPos, iEnd - 1);
}

//! Style: Kanvo_PixelARGB32, a colour line, or Kanvo_Line_patternStyle*. SpanRender: one of the six renderers; its axes
//! are the major and the minor one.
template <class Style, class SpanRender>
class Kanvo_Linedraw_Octant
{
public:
    using rasterLoop = void (*)(Kanvo_Bitmap* pBitmap, const Style& kStyle, const rasterData& kData,
                                const octantData& kPos, const Tov_Flag& flags);

    // ---- Kanvo_Thinline.h ----

    //! A thin line, in pixels. Bounds are those of the pixels that may be drawn; uiCode: ClipFlags.
    static void ThinLineOctant(Kanvo_Bitmap* pBitmap, Tov_Value vStartMaj, Tov_Value vStartMin, Tov_Value vDeltaMaj,
                               Tov_Value vDeltaMin, const Style& kStyle, Tov_Flag ulFlags, Tov_Value vMajmax,
                               Tov_Value vMinmax, Tov_Value vMajMin, Tov_Value vMinMin, Tov_Flag uiCode);

    //! The same in 16.16, with the minor step per major step.
    static void ThinLineInner(Kanvo_Bitmap* pBitmap, Tov_Fixed fxStartMaj, Tov_Fixed fxStartMin, Tov_Fixed fxIncMin,
                              Tov_Fixed fxDeltaMaj, Tov_Fixed fxDeltaMin, const Style& kStyle, Tov_Flag ulFlags,
                              Tov_Fixed fxMaxMaj, Tov_Fixed fxMaxMin, Tov_Fixed fxMinMaj, Tov_Fixed fxMinMin,
                              Tov_Flag uiCode);

    // ---- Kanvo_Wideline.h ----

    //! A wide line, in pixels, inside the bitmap.
    static void WideLineOctant(Kanvo_Bitmap* pBitmap, Tov_Value vStartMaj, Tov_Value vStartMin, Tov_Value vDeltaMaj,
                               Tov_Value vDeltaMin, const Style& kStyle, Tov_Value vStartWidth, Tov_Value vDeltaWidth,
                               Tov_Flag ulFlags);

    //! The same, drawn inside the clip ranges only.
    static void WideLineOctantClip(Kanvo_Bitmap* pBitmap, Tov_Value vStartMaj, Tov_Value vStartMin, Tov_Value vDeltaMaj,
                                   Tov_Value vDeltaMin, const Style& kStyle, Tov_Value vStartWidth,
                                   Tov_Value vDeltaWidth, Tov_Flag ulFlags, const Kanvo_Line_clipRange& kMajClip,
                                   const Kanvo_Line_clipRange& kMinClip);

    static void WideLineInner(Kanvo_Bitmap* pBitmap, octantData& kPos, Tov_Fixed fxIncMin, const Style& kStyle,
                              Tov_Fixed fxLineWidth, Tov_Fixed fxWidthFactor, Tov_Flag ulFlags, rasterLoop pRaster);

    // ---- Kanvo_Rasterline.h ----

    static void rasterShort(Kanvo_Bitmap* pBitmap, const Style& kStyle, const rasterData& kData, const octantData& kPos,
                            const Tov_Flag& flags);
    static void rasterShortClip(Kanvo_Bitmap* pBitmap, const Style& kStyle, const rasterData& kData,
                                const octantData& kPos, const Tov_Flag& flags);
    static void rasterLongV(Kanvo_Bitmap* pBitmap, const Style& kStyle, const rasterData& kData, const octantData& kPos,
                            const Tov_Flag& flags);
    static void rasterPatternV(Kanvo_Bitmap* pBitmap, const Style& kStyle, const rasterData& kData,
                               const octantData& kPos, const Tov_Flag& flags);
    static void rasterPatternClip(Kanvo_Bitmap* pBitmap, const Style& kStyle, const rasterData& kData,
                                  const octantData& kPos, const Tov_Flag& flags);

private:
    //! The octant whose spans between two distances are those of this one.
    using TwoEdges = Kanvo_Linedraw_Octant<Style, typename SpanRender::TwoEdges>;
};

#endif
