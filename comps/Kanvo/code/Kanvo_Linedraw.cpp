// Kanvo_Linedraw: the entry, the three dispatchers, and the one instance, for ARGB32.
#include "Kanvo_Linedraw.h"

#include <algorithm>
#include <cmath>

#include "Kanvo_Clipper.h"
#include "Kanvo_Dotdraw.h"
#include "Kanvo_HSpanRender.h"
#include "Kanvo_HSpanRender_AA.h"
#include "Kanvo_HSpanRender_HQ_AA.h"
#include "Kanvo_Screen.h"
#include "Kanvo_Thinline.h"
#include "Kanvo_VSpanRender.h"
#include "Kanvo_VSpanRender_AA.h"
#include "Kanvo_VSpanRender_HQ_AA.h"
#include "Kanvo_Wideline.h"
#include "Trak_Assert.h"

namespace
{

constexpr Tov_Value MAX_WIDTH = 16384.0F;  // beyond, the sums of 16.16 would wrap
constexpr Tov_UInt  MAX_PIXEL = 32766;     // the last pixel whose far edge 16.16 can name

Tov_Bool IsFinite(Tov_Value vValue)
{
    return vValue - vValue == 0.0F;
}

Tov_Value UsableWidth(Tov_Value vWidth)
{
    return std::max(0.0F, std::min(MAX_WIDTH, vWidth));
}

//! A plain line is as wide as whole pixels and a half make it.
Tov_Value SnappedWidth(Tov_Value vWidth)
{
    return std::ceil(vWidth - 0.5F) - 0.5F;
}

Tov_Value LastPixel(Tov_UInt uiClipMax)
{
    return static_cast<Tov_Value>(std::min(uiClipMax, MAX_PIXEL));
}

Kanvo_Line_clipRange PixelRange(Tov_UInt uiMin, Tov_UInt uiMax)
{
    return {Tov_IntToFix(static_cast<Tov_Int>(std::min(uiMin, MAX_PIXEL))),
            Tov_IntToFix(static_cast<Tov_Int>(std::min(uiMax, MAX_PIXEL)))};
}

//! A line turned so that it runs forwards along its major axis.
struct OrientedLine
{
    Tov_Bool  bMajorX;
    Tov_Bool  bSwapped;  //!< it starts at what was its end
    Tov_Value vStartMaj;
    Tov_Value vStartMin;
    Tov_Value vDeltaMaj;
    Tov_Value vDeltaMin;

    OrientedLine(const Kanvo_Vector2& kStart, const Kanvo_Vector2& kEnd)
    {
        Tov_Value vDX = kEnd.x - kStart.x;
        Tov_Value vDY = kEnd.y - kStart.y;
        bMajorX       = Tov_FltAbs(vDX) > Tov_FltAbs(vDY);  // 45 degrees run along y
        bSwapped      = (bMajorX ? vDX : vDY) < 0.0F;

        const Kanvo_Vector2& kFrom = bSwapped ? kEnd : kStart;
        if (bSwapped)
        {
            vDX = -vDX;
            vDY = -vDY;
        }
        vStartMaj = bMajorX ? kFrom.x : kFrom.y;
        vStartMin = bMajorX ? kFrom.y : kFrom.x;
        vDeltaMaj = bMajorX ? vDX : vDY;
        vDeltaMin = bMajorX ? vDY : vDX;
    }
};

//! The span renderers along rows, for lines that run along y, and along columns.
template <class PixelType, class OffsetType, class Access, class Style>
struct RowSpans
{
    using Plain    = Kanvo_HSpanRender<PixelType, OffsetType, Style, Access>;
    using Soft     = Kanvo_HSpanRender_AA<PixelType, OffsetType, Style, Access>;
    using Filtered = Kanvo_HSpanRender_HQAA<PixelType, OffsetType, Style, Access>;
};
template <class PixelType, class OffsetType, class Access, class Style>
struct ColumnSpans
{
    using Plain    = Kanvo_VSpanRender<PixelType, OffsetType, Style, Access>;
    using Soft     = Kanvo_VSpanRender_AA<PixelType, OffsetType, Style, Access>;
    using Filtered = Kanvo_VSpanRender_HQAA<PixelType, OffsetType, Style, Access>;
};

template <class Spans, class Use>
void WithQuality(Tov_Flag ulFlags, Use kUse)
{
    if ((ulFlags & Kanvo_LF_HQ_AA) != 0)
    {
        kUse(typename Spans::Filtered());
    }
    else if ((ulFlags & Kanvo_LF_ANTIALIAS) != 0)
    {
        kUse(typename Spans::Soft());
    }
    else
    {
        kUse(typename Spans::Plain());
    }
}

//! Calls kUse with the span renderer for an axis, a quality and a style.
template <class PixelType, class OffsetType, class Access, class Style, class Use>
void WithSpans(Tov_Bool bMajorX, Tov_Flag ulFlags, Use kUse)
{
    if (bMajorX)
    {
        WithQuality<ColumnSpans<PixelType, OffsetType, Access, Style>>(ulFlags, kUse);
    }
    else
    {
        WithQuality<RowSpans<PixelType, OffsetType, Access, Style>>(ulFlags, kUse);
    }
}

//! Calls kUse with the octant class for them.
template <class PixelType, class OffsetType, class Access, class Style, class Use>
void WithOctant(Tov_Bool bMajorX, Tov_Flag ulFlags, Use kUse)
{
    WithSpans<PixelType, OffsetType, Access, Style>(
        bMajorX, ulFlags, [&](auto kSpans) { kUse(Kanvo_Linedraw_Octant<Style, decltype(kSpans)>()); });
}

//! Calls kDraw with the octant class for a line and what it is drawn with: its pattern, or a pixel of its colour.
template <class PixelType, class OffsetType, class Access, Tov_Bool PATTERNS, class Draw>
void WithStyle(const OrientedLine& kLine, Tov_Flag ulFlags, Kanvo_Color kColor, Kanvo_Line_patternStyle* pkPattern,
               Draw kDraw)
{
    if (PATTERNS && (ulFlags & Kanvo_LF_PATTERN) != 0)
    {
        pkPattern->bFlip = kLine.bSwapped;
        WithOctant<PixelType, OffsetType, Access, Kanvo_Line_patternStyle*>(
            kLine.bMajorX, ulFlags, [&](auto kOctant) { kDraw(kOctant, pkPattern); });
    }
    else
    {
        const PixelType pxColor = Access::ColorToPixel(kColor);
        WithOctant<PixelType, OffsetType, Access, PixelType>(kLine.bMajorX, ulFlags,
                                                             [&](auto kOctant) { kDraw(kOctant, pxColor); });
    }
}

//! Reads the line pattern of a render state, and moves its offset on for the next line. False, with an assertion, where
//! no pattern is set.
Tov_Bool SetUpPattern(Kanvo_Line_patternStyle& kPattern, Kanvo_Screen* pkScreen, const Kanvo_Vector2& kStart,
                      const Kanvo_Vector2& kEnd, Tov_Flag ulFlags)
{
    Kanvo_RenderState* const pkState = pkScreen != nullptr ? &pkScreen->GetRenderState() : nullptr;
    kPattern.pkPattern = pkState != nullptr ? static_cast<Kanvo_Pattern*>(pkState->GetPtr(LINEPATTERN)) : nullptr;
    TRAK_CHECK(kPattern.pkPattern != nullptr, "no line pattern set");
    if (kPattern.pkPattern == nullptr)
    {
        return false;
    }
    Tov_Value       vScale  = pkState->GetValue(I_LINPATFACTOR);
    const Tov_Value vOffset = pkState->GetValue(LINEPATTERNOFFSET);
    const Tov_Value vLen    = Tov_FltLen2(kEnd.x - kStart.x, kEnd.y - kStart.y);
    if ((ulFlags & (Kanvo_LF_ADVANCEPATTERN | Kanvo_LF_RESCALEPATTERN)) != 0 && vLen > 0.0F)
    {
        const Tov_Bool  bRescale = (ulFlags & Kanvo_LF_RESCALEPATTERN) != 0;
        const Tov_Value vRefLen  = bRescale ? pkState->GetValue(I_LINPATREFLEN) : vLen;
        if ((ulFlags & Kanvo_LF_ADVANCEPATTERN) != 0)
        {
            pkState->Set(LINEPATTERNOFFSET, vScale * vRefLen + vOffset);
        }
        if (bRescale && vRefLen != vLen)
        {
            vScale = (vRefLen / vLen) * vScale;
        }
    }
    kPattern.fxTexMul     = Tov_FltToFix(vScale);
    kPattern.fxTexOffset  = Tov_FltToFix(vOffset) & 0xFFFF;
    kPattern.aclColorBase = kPattern.pkPattern->GetColors();
    kPattern.bFlip        = false;
    return true;
}

//! How far inside the clip rectangle a thin line must lie, in pixels, for its footprint to need no test.
Tov_Int MarginOf(Tov_Flag ulFlags)
{
    return (ulFlags & Kanvo_LF_HQ_AA) != 0 ? 5 : (ulFlags & Kanvo_LF_ANTIALIAS) != 0 ? 3 : 1;
}

//! Clips a line against the region, with room for what its quality draws beside it; interpolates widths that differ.
Tov_Flag ClipByWidth(Kanvo_Vector2& kA, Kanvo_Vector2& kB, Tov_Flag ulFlags, Tov_Value& vStartWidth,
                     Tov_Value& vEndWidth)
{
    if (vStartWidth == vEndWidth)
    {
        const Tov_Bool  bHQ   = (ulFlags & Kanvo_LF_HQ_AA) != 0;
        const Tov_Bool  bAA   = (ulFlags & Kanvo_LF_ANTIALIAS) != 0;
        const Tov_Value vRoom = bHQ ? 4.0F : bAA ? 2.0F : 1.0F;
        Kanvo_Clipper::SetOverFlowMargin(static_cast<Tov_Value>(MarginOf(ulFlags)));
        return Kanvo_Clipper::ClipLine(kA, kB, true, -vRoom, -vRoom, vRoom, vRoom);
    }
    Tov_Value      vTa    = 0.0F;
    Tov_Value      vTb    = 1.0F;
    const Tov_Flag uiCode = Kanvo_Clipper::ClipLinePara(kA, kB, vTa, vTb);
    if ((uiCode & CF_CLIPPED) != 0)
    {
        const Tov_Value vDeltaWidth = vEndWidth - vStartWidth;
        if (vTb < 1.0F)
        {
            vEndWidth = vTb * vDeltaWidth + vStartWidth;
        }
        if (vTa > 0.0F)
        {
            vStartWidth = vTa * vDeltaWidth + vStartWidth;
        }
    }
    return uiCode;
}

Tov_Bool LiesInside(const Kanvo_Bitmap* pBitmap, const Kanvo_Vector2& kPoint)
{
    return kPoint.x >= 0.0F && kPoint.y >= 0.0F && kPoint.x < static_cast<Tov_Value>(pBitmap->GetWidth()) &&
           kPoint.y < static_cast<Tov_Value>(pBitmap->GetHeight());
}

//! The coordinates on one axis that lie iMargin inside the clip rectangle, in 16.16. None lies beyond INNER_END, from where
//! unclipped thin lines draw nothing; nor, therefore, do those that 16.16 cannot hold. Not a number becomes 0, which lies
//! outside.
class InnerRange
{
public:
    InnerRange(Tov_UInt uiClipMin, Tov_UInt uiClipMax, Tov_Int iMargin)
    {
        const Tov_Int iFirst = static_cast<Tov_Int>(std::min(uiClipMin, INNER_END)) + iMargin;
        const Tov_Int iEnd   = static_cast<Tov_Int>(std::min(uiClipMax, INNER_END)) - iMargin;

        m_uiFirst = static_cast<Tov_UInt>(iFirst) << 16;
        m_uiRoom  = static_cast<Tov_UInt>(std::max(iEnd - iFirst, Tov_Int{0})) << 16;
    }
    Tov_Bool Holds(Tov_Fixed fxValue) const { return static_cast<Tov_UInt>(fxValue) - m_uiFirst < m_uiRoom; }

private:
    static constexpr Tov_UInt INNER_END = 2047;

    Tov_UInt m_uiFirst;
    Tov_UInt m_uiRoom;
};

}  // namespace

// Random lines run in any direction, and a branch taken wrongly costs as much as five pixels: so ends and axes are chosen by
// index here.
template <class PixelType, class OffsetType, class Access, Tov_Bool PATTERNS>
void Kanvo_Linedraw<PixelType, OffsetType, Access, PATTERNS>::Draw(Kanvo_Bitmap* pBitmap, const Kanvo_Vector2& kStart,
                                                                   const Kanvo_Vector2& kEnd, Kanvo_Color kColor,
                                                                   Tov_Flag ulFlags, Tov_Value vStartWidth,
                                                                   Tov_Value vEndWidth)
{
    if ((PATTERNS && (ulFlags & Kanvo_LF_PATTERN) != 0) ||
        !(vStartWidth >= 0.0F && vStartWidth <= 1.0F && vEndWidth == vStartWidth))
    {
        return DrawLine(pBitmap, kStart, kEnd, kColor, ulFlags, vStartWidth, vEndWidth);
    }
    const Tov_Int    iMargin = MarginOf(ulFlags);
    const InnerRange kX(pBitmap->GetClipMinX(), pBitmap->GetClipMaxX(), iMargin);
    const InnerRange kY(pBitmap->GetClipMinY(), pBitmap->GetClipMaxY(), iMargin);
    const Tov_Fixed  afxEnds[2][2] = {{Tov_FltToFix(kStart.x), Tov_FltToFix(kStart.y)},
                                      {Tov_FltToFix(kEnd.x), Tov_FltToFix(kEnd.y)}};
    if (!kX.Holds(afxEnds[0][0]) || !kY.Holds(afxEnds[0][1]) || !kX.Holds(afxEnds[1][0]) || !kY.Holds(afxEnds[1][1]))
    {
        return DrawLine(pBitmap, kStart, kEnd, kColor, ulFlags, vStartWidth, vEndWidth);
    }
    Trak_Count(g_kStat_NumberOfLines, 1.0F);
    Trak_Count(g_kStat_LineWidth, 1.0F);
    if ((ulFlags & Kanvo_LF_DO_NOT_CLIP) == 0)
    {
        const Trak_PerfScope kScope(g_kPerf_LineClipping);  // that was it
    }
    const Trak_PerfScope kScope(g_kPerf_ThinLines);
    const Tov_Value      avDelta[2] = {kEnd.x - kStart.x, kEnd.y - kStart.y};
    const Tov_UInt       uiMajor    = std::fabs(avDelta[0]) > std::fabs(avDelta[1]) ? 0 : 1;  // 45 degrees run along y
    const Tov_UInt       uiFrom     = avDelta[uiMajor] < 0.0F ? 1 : 0;
    const Tov_Value      vDeltaMaj  = std::fabs(avDelta[uiMajor]);
    // The same whichever end it starts from.
    const Tov_Fixed fxIncMin   = vDeltaMaj > 0.001F ? Tov_FltToFix(avDelta[1 - uiMajor] / avDelta[uiMajor]) : 0;
    const Tov_Fixed fxDeltaMaj = Tov_FltToFix(vDeltaMaj);
    const Tov_Fixed fxStartMaj = afxEnds[uiFrom][uiMajor];
    Trak_Count(g_kStat_LineLength, static_cast<Tov_Value>(fxDeltaMaj) / 65536.0F);

    const Kanvo_ThinWalk kWalk(fxStartMaj, afxEnds[uiFrom][1 - uiMajor], fxIncMin, ulFlags);
    const Tov_Int        iSteps  = ((fxStartMaj + fxDeltaMaj - kWalk.fxPosMaj) >> 16) + 1;
    const PixelType      pxColor = Access::ColorToPixel(kColor);
    if ((ulFlags & (Kanvo_LF_ANTIALIAS | Kanvo_LF_HQ_AA)) == 0)
    {
        Kanvo_DrawHardPoints<Access>(Kanvo_PixelView{pBitmap->GetBuffer(), pBitmap->GetPitch()}, uiMajor == 0,
                                     kWalk.fxPosMaj >> 16, kWalk.fxPosMin, fxIncMin, iSteps, pxColor);
        return;
    }
    WithSpans<PixelType, OffsetType, Access, PixelType>(
        uiMajor == 0, ulFlags,
        [&](auto kSpans) { kWalk.template DrawInside<decltype(kSpans)>(pBitmap, iSteps, pxColor); });
}

template <class PixelType, class OffsetType, class Access, Tov_Bool PATTERNS>
void Kanvo_Linedraw<PixelType, OffsetType, Access, PATTERNS>::DrawLine(Kanvo_Bitmap*        pBitmap,
                                                                       const Kanvo_Vector2& kStart,
                                                                       const Kanvo_Vector2& kEnd, Kanvo_Color kColor,
                                                                       Tov_Flag ulFlags, Tov_Value vStartWidth,
                                                                       Tov_Value vEndWidth)
{
    Kanvo_Line_patternStyle kPattern(kStart);
    Trak_Count(g_kStat_NumberOfLines, 1.0F);
    if (!IsFinite(kStart.x) || !IsFinite(kStart.y) || !IsFinite(kEnd.x) || !IsFinite(kEnd.y) ||
        !IsFinite(vStartWidth) || !IsFinite(vEndWidth))
    {
        Trak_Count(g_kStat_RejectedLines, 1.0F);
        return;
    }
    vStartWidth = UsableWidth(vStartWidth);
    vEndWidth   = UsableWidth(vEndWidth);
    // KEPT: plain widths are snapped downwards to a half, each by itself: 1 is thin, 2 becomes 1.5.
    // Test: PlainWidthsAreSnappedToHalvesEachByItself.
    if ((ulFlags & (Kanvo_LF_ANTIALIAS | Kanvo_LF_HQ_AA)) == 0)
    {
        const Tov_Bool bEqual = vStartWidth == vEndWidth;

        vStartWidth = SnappedWidth(vStartWidth);
        vEndWidth   = bEqual ? vStartWidth : SnappedWidth(vEndWidth);
    }
    Tov_Value vLineWidth = std::max(vStartWidth, vEndWidth);
    if (vLineWidth < 1.0F)
    {
        vLineWidth = vStartWidth = vEndWidth = 1.0F;
    }
    if (vLineWidth < 3.0F)
    {
        ulFlags = (ulFlags & ~static_cast<Tov_Flag>(Kanvo_LF_ROUND_START | Kanvo_LF_ROUND_END)) | Kanvo_LF_WIDE_S;
    }
    if (!PATTERNS)
    {
        ulFlags &= ~static_cast<Tov_Flag>(Kanvo_LF_PATTERN);
    }
    const Tov_Bool bPattern = (ulFlags & Kanvo_LF_PATTERN) != 0;
    const Tov_Bool bThin    = vLineWidth <= 1.0F && !bPattern;
    Trak_Count(g_kStat_LineWidth, vLineWidth);
    if (bPattern && !SetUpPattern(kPattern, pBitmap->GetScreen(), kStart, kEnd, ulFlags))
    {
        return;
    }

    if ((ulFlags & Kanvo_LF_DO_NOT_CLIP) != 0)
    {
        TRAK_CHECK(LiesInside(pBitmap, kStart) && LiesInside(pBitmap, kEnd), "unclipped line outside the bitmap");
        if (bThin)
        {
            ThinLineClipped(pBitmap, kStart, kEnd, kColor, ulFlags, 2048.0F, 2048.0F, 0.0F, 0.0F, 0);
        }
        else
        {
            WideLineClipped(pBitmap, kStart, kEnd, kColor, vStartWidth, vEndWidth, ulFlags, &kPattern);
            DrawCaps(pBitmap, kStart, kEnd, kColor, ulFlags, vStartWidth, vEndWidth);
        }
        return;
    }

    // A wide line's body reaches over its axis by half the width; on a diagonal that is 0.708 of it along the axes.
    const Tov_Value vBorder = bThin ? 0.0F : std::ceil(vLineWidth * 0.708F);
    const Tov_Value vShrink = bThin ? 0.0F : 1.0F;
    const Tov_Value vXmin   = LastPixel(pBitmap->GetClipMinX()) - vBorder;
    const Tov_Value vYmin   = LastPixel(pBitmap->GetClipMinY()) - vBorder;
    const Tov_Value vXmax   = LastPixel(pBitmap->GetClipMaxX()) + vBorder - vShrink;
    const Tov_Value vYmax   = LastPixel(pBitmap->GetClipMaxY()) + vBorder - vShrink;
    Kanvo_Vector2   kA      = kStart;
    Kanvo_Vector2   kB      = kEnd;
    Tov_Flag        uiCode  = CF_NOTVIS;
    if (pBitmap->GetClipMinX() <= pBitmap->GetClipMaxX())
    {
        const Trak_PerfScope kScope(g_kPerf_LineClipping);
        Kanvo_Clipper::InitRegionV(vXmin, vYmin, vXmax, vYmax, 0.0001F);
        uiCode = ClipByWidth(kA, kB, ulFlags, vStartWidth, vEndWidth);
    }
    if ((uiCode & CF_VIS) == 0)
    {
        Trak_Count(g_kStat_RejectedLines, 1.0F);
    }
    else if (bThin)
    {
        ThinLineClipped(pBitmap, kA, kB, kColor, ulFlags, vXmax, vYmax, vXmin, vYmin, uiCode);
    }
    else
    {
        WideLineOnEdge(pBitmap, kA, kB, kColor, vStartWidth, vEndWidth,
                       ulFlags | Kanvo_LF_WIDE_S | Kanvo_LF_WIDE_2 | Kanvo_LF_AA_CLIP_END_PART_CORRECTION, &kPattern);
        DrawCaps(pBitmap, kStart, kEnd, kColor, ulFlags, vStartWidth, vEndWidth);
    }
}

template <class PixelType, class OffsetType, class Access, Tov_Bool PATTERNS>
void Kanvo_Linedraw<PixelType, OffsetType, Access, PATTERNS>::DrawCaps(Kanvo_Bitmap*        pBitmap,
                                                                       const Kanvo_Vector2& kStart,
                                                                       const Kanvo_Vector2& kEnd, Kanvo_Color kColor,
                                                                       Tov_Flag ulFlags, Tov_Value vStartWidth,
                                                                       Tov_Value vEndWidth)
{
    const Tov_Flag ulQuality = ulFlags & 0x000F0000U;
    if ((ulFlags & Kanvo_LF_ROUND_START) != 0)
    {
        DrawDot(pBitmap, kStart.x, kStart.y, vStartWidth / 2.0F, kColor, ulQuality);
    }
    if ((ulFlags & Kanvo_LF_ROUND_END) != 0)
    {
        DrawDot(pBitmap, kEnd.x, kEnd.y, vEndWidth / 2.0F, kColor, ulQuality);
    }
}

template <class PixelType, class OffsetType, class Access, Tov_Bool PATTERNS>
void Kanvo_Linedraw<PixelType, OffsetType, Access, PATTERNS>::ThinLineClipped(
    Kanvo_Bitmap* pBitmap, const Kanvo_Vector2& kStart, const Kanvo_Vector2& kEnd, Kanvo_Color kColor, Tov_Flag ulFlags,
    Tov_Value vXmax, Tov_Value vYmax, Tov_Value vXmin, Tov_Value vYmin, Tov_Flag uiCode)
{
    const Trak_PerfScope kScope(g_kPerf_ThinLines);
    const PixelType      pxColor = Access::ColorToPixel(kColor);
    const Tov_Value      vDX     = kEnd.x - kStart.x;
    const Tov_Value      vDY     = kEnd.y - kStart.y;
    // KEPT: a bit test of both deltas, not a test for an axis-parallel line, grants the half pixel that keeps the last
    // pixel of near-axis lines. Test: TheAxisGuardIsABitTest.
    if ((Tov_FltToUInt(vDX) & Tov_FltToUInt(vDY)) == 0)
    {
        (vDX == 0.0F ? vXmax : vYmax) += 0.5F;
    }
    const OrientedLine kLine(kStart, kEnd);
    WithOctant<PixelType, OffsetType, Access, PixelType>(
        kLine.bMajorX, ulFlags,
        [&](auto kOctant)
        {
            if (kLine.bMajorX)
            {
                kOctant.ThinLineOctant(pBitmap, kLine.vStartMaj, kLine.vStartMin, kLine.vDeltaMaj, kLine.vDeltaMin,
                                       pxColor, ulFlags, vXmax, vYmax, vXmin, vYmin, uiCode);
            }
            else
            {
                kOctant.ThinLineOctant(pBitmap, kLine.vStartMaj, kLine.vStartMin, kLine.vDeltaMaj, kLine.vDeltaMin,
                                       pxColor, ulFlags, vYmax, vXmax, vYmin, vXmin, uiCode);
            }
        });
}

template <class PixelType, class OffsetType, class Access, Tov_Bool PATTERNS>
void Kanvo_Linedraw<PixelType, OffsetType, Access, PATTERNS>::WideLineOnEdge(
    Kanvo_Bitmap* pBitmap, const Kanvo_Vector2& kStart, const Kanvo_Vector2& kEnd, Kanvo_Color kColor,
    Tov_Value vStartWidth, Tov_Value vEndWidth, Tov_Flag ulFlags, Kanvo_Line_patternStyle* pkPattern)
{
    vStartWidth -= 0.5F;
    vEndWidth -= 0.5F;
    const OrientedLine   kLine(kStart, kEnd);
    const Tov_Value      vDeltaWidth = kLine.bSwapped ? vStartWidth - vEndWidth : vEndWidth - vStartWidth;
    Kanvo_Line_clipRange kXclip      = PixelRange(pBitmap->GetClipMinX(), pBitmap->GetClipMaxX());
    Kanvo_Line_clipRange kYclip      = PixelRange(pBitmap->GetClipMinY(), pBitmap->GetClipMaxY());
    if ((ulFlags & (Kanvo_LF_ANTIALIAS | Kanvo_LF_HQ_AA)) != 0)
    {
        (kLine.bMajorX ? kYclip : kXclip).fxMax += 0x10000;  // blended spans touch one pixel more
    }
    const Kanvo_Line_clipRange& kMajClip = kLine.bMajorX ? kXclip : kYclip;
    const Kanvo_Line_clipRange& kMinClip = kLine.bMajorX ? kYclip : kXclip;
    const auto                  kDraw    = [&](auto kOctant, const auto& kStyle)
    {
        kOctant.WideLineOctantClip(pBitmap, kLine.vStartMaj, kLine.vStartMin, kLine.vDeltaMaj, kLine.vDeltaMin, kStyle,
                                   kLine.bSwapped ? vEndWidth : vStartWidth, vDeltaWidth, ulFlags, kMajClip, kMinClip);
    };
    WithStyle<PixelType, OffsetType, Access, PATTERNS>(kLine, ulFlags, kColor, pkPattern, kDraw);
}

template <class PixelType, class OffsetType, class Access, Tov_Bool PATTERNS>
void Kanvo_Linedraw<PixelType, OffsetType, Access, PATTERNS>::WideLineClipped(
    Kanvo_Bitmap* pBitmap, const Kanvo_Vector2& kStart, const Kanvo_Vector2& kEnd, Kanvo_Color kColor,
    Tov_Value vStartWidth, Tov_Value vEndWidth, Tov_Flag ulFlags, Kanvo_Line_patternStyle* pkPattern)
{
    const Trak_PerfScope kScope(g_kPerf_WideLines);
    const OrientedLine   kLine(kStart, kEnd);
    const Tov_Value      vDeltaWidth = kLine.bSwapped ? vStartWidth - vEndWidth : vEndWidth - vStartWidth;
    const auto           kDraw       = [&](auto kOctant, const auto& kStyle)
    {
        kOctant.WideLineOctant(pBitmap, kLine.vStartMaj, kLine.vStartMin, kLine.vDeltaMaj, kLine.vDeltaMin, kStyle,
                               kLine.bSwapped ? vEndWidth : vStartWidth, vDeltaWidth, ulFlags);
    };
    WithStyle<PixelType, OffsetType, Access, PATTERNS>(kLine, ulFlags, kColor, pkPattern, kDraw);
}

template class Kanvo_Linedraw<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access, true>;
