// Kanvo_Wideline: fits a wide line's ends and span geometry into a rasterData and runs a raster loop of Kanvo_Rasterline.
// Fed by Kanvo_Linedraw. Nothing here depends on how a span is drawn until the loop is chosen, and is compiled once.
#ifndef KANVO_WIDELINE_H
#define KANVO_WIDELINE_H

#include <type_traits>

#include "Kanvo_Rasterline.h"

//! Lengthens a line at its ends, by the wide-style flags: clipped lines (WIDE_S and WIDE_2) by an eighth of the width at
//! each end, narrow ones (WIDE_S) by a quarter, others by one pixel at the end. fxOut: half the width along the line.
inline void Kanvo_ExtendWideLine(octantData& kPos, Tov_Fixed fxOutMaj, Tov_Fixed fxOutMin, Tov_Fixed fxLineWidth,
                                 Tov_Fixed fxWidthFactor, Tov_Flag ulFlags)
{
    if ((ulFlags & Kanvo_LF_WIDE_S) == 0)
    {
        kPos.fxDeltaMaj = Tov_FixAdd(kPos.fxDeltaMaj, kPos.fxNormalMaj);
        kPos.fxDeltaMin = Tov_FixAdd(kPos.fxDeltaMin, kPos.fxNormalMin);
        return;
    }
    const int       iShift = (ulFlags & Kanvo_LF_WIDE_2) != 0 ? 2 : 1;
    const Tov_Fixed fxWf   = fxWidthFactor >> 8;
    kPos.fxStartMaj        = Tov_FixSub(kPos.fxStartMaj, fxOutMaj >> iShift);
    kPos.fxStartMin        = Tov_FixSub(kPos.fxStartMin, fxOutMin >> iShift);
    kPos.fxDeltaMaj        = Tov_FixAdd(kPos.fxDeltaMaj, fxOutMaj >> (iShift - 1));
    kPos.fxDeltaMin        = Tov_FixAdd(kPos.fxDeltaMin, fxOutMin >> (iShift - 1));
    kPos.fxLen             = Tov_FixAdd(kPos.fxLen, fxLineWidth >> iShift);
    if (fxWidthFactor != 0)
    {
        kPos.fxDeltaMaj = Tov_FixAdd(kPos.fxDeltaMaj, Tov_IntMul(fxWf, fxOutMaj >> (iShift + 8)));
        kPos.fxLen      = Tov_FixAdd(kPos.fxLen, Tov_IntMul(fxWf, fxLineWidth >> (iShift + 9)));
    }
}

//! Lengthens a measured line and fits the ends and the spans of its body.
__attribute__((noinline)) inline rasterData Kanvo_FitWideLine(octantData& kPos, Tov_Fixed fxIncMin,
                                                              Tov_Fixed fxLineWidth, Tov_Fixed fxWidthFactor,
                                                              Tov_Flag ulFlags)
{
    rasterData      kData{};
    const Tov_Fixed fxHalf   = fxLineWidth / 2;
    const Tov_Fixed fxOutMaj = Tov_FixMul_RZA1H(fxHalf, kPos.fxNormalMaj);
    const Tov_Fixed fxOutMin = Tov_FixMul_RZA1H(fxHalf, kPos.fxNormalMin);
    Tov_Fixed       fxAbsMin = Tov_FixAbs(fxOutMin);
    Kanvo_ExtendWideLine(kPos, fxOutMaj, fxOutMin, fxLineWidth, fxWidthFactor, ulFlags);

    // Beyond the upper end of 16.16 there is nothing to draw, so the end is held there, not wrapped.
    const std::int64_t iEndMaj = std::int64_t{kPos.fxStartMaj} + kPos.fxDeltaMaj;
    kData.fxSpan               = Tov_FixAdd(Tov_IntMul(fxOutMin >> 8, fxIncMin >> 8), fxOutMaj);
    if (fxWidthFactor != 0 && kPos.fxDeltaMaj > 0)
    {
        kData.fxSpanInc = Tov_FixDiv(Tov_FixMul_RZA1H(fxWidthFactor, kData.fxSpan), kPos.fxDeltaMaj);
    }

    const Tov_Fixed fxEdgeMaj = Tov_FixSub(kPos.fxStartMaj, fxAbsMin);
    kData.fxPosMaj            = Tov_FixAdd(fxEdgeMaj, 32767) & ~0xFFFF;  // nearest pixel, a half rounds down
    kData.fxPosMin            = Tov_FixSub(kPos.fxStartMin, Tov_IntMul(fxAbsMin >> 8, fxIncMin >> 8));
    kData.fxPosMin = Tov_FixAdd(kData.fxPosMin, Tov_FixMul_RZA1H(fxIncMin, Tov_FixSub(kData.fxPosMaj, fxEdgeMaj)));

    kData.fxMid1Maj = Tov_FixAdd(Tov_FixAdd(kPos.fxStartMaj, fxAbsMin) & ~0xFFFF, 0x10000);
    if (fxWidthFactor != 0)
    {
        fxAbsMin = Tov_FixAdd(fxAbsMin, Tov_FixMul_RZA1H(fxWidthFactor, fxAbsMin));  // the end has the end's width
    }
    kData.fxIncMin  = fxIncMin;
    kData.fxMid2Maj = Kanvo_HeldInFixed(iEndMaj - fxAbsMin) & ~0xFFFF;
    kData.fxEndMaj  = Kanvo_HeldInFixed(iEndMaj + fxAbsMin);

    const Tov_Bool bFiltered  = (ulFlags & Kanvo_LF_HQ_AA) != 0;
    const Tov_Bool bCorrected = bFiltered && (ulFlags & Kanvo_LF_AA_CLIP_END_PART_CORRECTION) != 0;
    // KEPT: a clipped filtered line lies half a pixel further along the minor axis than an unclipped one.
    // Test: AClippedFilteredWideLineIsShiftedByHalfAPixel.
    if (!bFiltered || bCorrected)
    {
        kData.fxPosMin = Tov_FixAdd(kData.fxPosMin, 32768);
    }
    return kData;
}

//! A wide line as WideLineInner takes it.
struct Kanvo_WideLine
{
    octantData kPos;
    Tov_Fixed  fxIncMin;
    Tov_Fixed  fxLineWidth;
    Tov_Fixed  fxWidthFactor;
    Tov_Bool   bVisible;  //!< it has a length
    Tov_Bool   bShort;    //!< it is shorter than wide
};

//! Measures a line in pixels. Called, not copied into each of the octants.
__attribute__((noinline)) inline Kanvo_WideLine Kanvo_MeasureWideLine(Tov_Value vStartMaj, Tov_Value vStartMin,
                                                                      Tov_Value vDeltaMaj, Tov_Value vDeltaMin,
                                                                      Tov_Value vStartWidth, Tov_Value vDeltaWidth)
{
    vStartWidth          = std::max(1.0F, vStartWidth);
    const Tov_Value vLen = Tov_FltLen2(vDeltaMaj, vDeltaMin);
    Kanvo_WideLine  kLine{};
    kLine.bVisible = !(vLen <= 0.0001F);
    if (kLine.bVisible)
    {
        const Tov_Value vNr    = 1.0F / vLen;
        kLine.kPos.fxStartMaj  = Tov_FltToFix(vStartMaj);
        kLine.kPos.fxStartMin  = Tov_FltToFix(vStartMin);
        kLine.kPos.fxDeltaMaj  = Tov_FltToFix(vDeltaMaj);
        kLine.kPos.fxDeltaMin  = Tov_FltToFix(vDeltaMin);
        kLine.kPos.fxNormalMaj = Tov_FltToFix(vDeltaMaj * vNr);
        kLine.kPos.fxNormalMin = Tov_FltToFix(vDeltaMin * vNr);
        kLine.kPos.fxLen       = Tov_FltToFix(vLen);
        kLine.fxIncMin         = vDeltaMaj > 0.1F ? Tov_FltToFix(vDeltaMin / vDeltaMaj) : 0;
        kLine.fxLineWidth      = Tov_FltToFix(vStartWidth);
        kLine.fxWidthFactor    = vDeltaWidth != 0.0F ? Tov_FltToFix(vDeltaWidth / vStartWidth) : 0;
        kLine.bShort           = vStartWidth > vLen;
    }
    return kLine;
}

template <class Style, class SpanRender>
void Kanvo_Linedraw_Octant<Style, SpanRender>::WideLineInner(Kanvo_Bitmap* pBitmap, octantData& kPos,
                                                             Tov_Fixed fxIncMin, const Style& kStyle,
                                                             Tov_Fixed fxLineWidth, Tov_Fixed fxWidthFactor,
                                                             Tov_Flag ulFlags, rasterLoop pRaster)
{
    Trak_Count(g_kStat_LineLength, static_cast<Tov_Value>(kPos.fxDeltaMaj) / 65536.0F);
    const rasterData kData = Kanvo_FitWideLine(kPos, fxIncMin, fxLineWidth, fxWidthFactor, ulFlags);
    pRaster(pBitmap, kStyle, kData, kPos, ulFlags);
}

template <class Style, class SpanRender>
void Kanvo_Linedraw_Octant<Style, SpanRender>::WideLineOctant(Kanvo_Bitmap* pBitmap, Tov_Value vStartMaj,
                                                              Tov_Value vStartMin, Tov_Value vDeltaMaj,
                                                              Tov_Value vDeltaMin, const Style& kStyle,
                                                              Tov_Value vStartWidth, Tov_Value vDeltaWidth,
                                                              Tov_Flag ulFlags)
{
    Kanvo_WideLine kLine = Kanvo_MeasureWideLine(vStartMaj, vStartMin, vDeltaMaj, vDeltaMin, vStartWidth, vDeltaWidth);
    if (kLine.bVisible)
    {
        rasterLoop pRaster = nullptr;
        if constexpr (std::is_pointer_v<Style>)
        {
            pRaster = &TwoEdges::rasterPatternV;
        }
        else
        {
            pRaster = kLine.bShort ? &TwoEdges::rasterShort : &rasterLongV;
        }
        WideLineInner(pBitmap, kLine.kPos, kLine.fxIncMin, kStyle, kLine.fxLineWidth, kLine.fxWidthFactor, ulFlags,
                      pRaster);
    }
}

template <class Style, class SpanRender>
void Kanvo_Linedraw_Octant<Style, SpanRender>::WideLineOctantClip(
    Kanvo_Bitmap* pBitmap, Tov_Value vStartMaj, Tov_Value vStartMin, Tov_Value vDeltaMaj, Tov_Value vDeltaMin,
    const Style& kStyle, Tov_Value vStartWidth, Tov_Value vDeltaWidth, Tov_Flag ulFlags,
    const Kanvo_Line_clipRange& kMajClip, const Kanvo_Line_clipRange& kMinClip)
{
    Kanvo_WideLine kLine = Kanvo_MeasureWideLine(vStartMaj, vStartMin, vDeltaMaj, vDeltaMin, vStartWidth, vDeltaWidth);
    if (kLine.bVisible)
    {
        rasterLoop pRaster = nullptr;
        if constexpr (std::is_pointer_v<Style>)
        {
            pRaster = &TwoEdges::rasterPatternClip;
        }
        else
        {
            pRaster = &TwoEdges::rasterShortClip;
        }
        kLine.kPos.kMajClip = kMajClip;
        kLine.kPos.kMinClip = kMinClip;
        WideLineInner(pBitmap, kLine.kPos, kLine.fxIncMin, kStyle, kLine.fxLineWidth, kLine.fxWidthFactor, ulFlags,
                      pRaster);
    }
}

#endif
