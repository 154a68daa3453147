// Kanvo_PolydrawAA: the scan of anti-aliased polygons. Along a row it knows which of the sub-sample rows are inside; a side
// toggles those it crosses. In a pixel touched by one side alone the side's area is the coverage; where several sides meet
// their sub-sample masks are combined and counted.
//
//   inside from the left   #   | .   .   . |      rows of sub-samples, 30 bits: uiInside holds them at the pixel's
//   border of the pixel    #   |   /   .   |      right border, uiBefore at its left border. A mask has the samples right of
//                          .   | / #   #   |      its side, so "before XOR mask" is what lies inside the pixel.
#include "Kanvo_PolydrawAA.h"

#include <algorithm>

#include "Kanvo_PolySetupAA.h"
#include "Kanvo_Spandraw.h"
#include "Kanvo_Tables.h"
#include "Tov_Math.h"
#include "Tov_Memory.h"

namespace
{

using Side = Kanvo_AAEdgeBucket;

constexpr Tov_Int  CLIP_TOP  = 1;  // bits of edgeflags
constexpr Tov_Int  CLIP_BOT  = 2;
constexpr Tov_Int  COMBINED  = 4;
constexpr Tov_UInt KEPT_BITS = 0xC0000000U;  // no sub-samples: they must stay 0, or a gap would count as inside
constexpr Tov_UInt MAX_PIXEL = 32766;

//! What lies inside behind a side, from what lies inside before it.
Tov_UInt Cross(const Side& kSide, Tov_UInt uiInside)
{
    const auto uiTop = static_cast<Tov_UInt>(kSide.cliptop);
    const auto uiBot = static_cast<Tov_UInt>(kSide.clipbot);
    switch (kSide.edgeflags & (CLIP_TOP | CLIP_BOT))
    {
    case 0: return ~(uiInside ^ KEPT_BITS);
    case CLIP_TOP: return uiInside ^ uiTop;
    case CLIP_BOT: return uiInside ^ uiBot;
    default: return uiInside ^ (uiTop & uiBot);
    }
}

//! The table step at a distance.
KANVO_INLINE Tov_UInt StepAt(Tov_Int iDist)
{
    return static_cast<Tov_UInt>(iDist >> 22) & (KANVO_EDGE_STEPS - 1);
}

//! The table step of the pixel that a side stands at; moves on to the next pixel.
Tov_UInt TakeStep(Side& kSide)
{
    const Tov_UInt uiStep = StepAt(kSide.dist);
    kSide.dist            = Tov_FixAdd(kSide.dist, kSide.nx);
    return uiStep;
}

Tov_UInt Mask(const Side& kSide, Tov_UInt uiStep)
{
    Tov_UInt uiMask = g_auiEdgemasks[static_cast<Tov_UInt>(kSide.normalmask) + uiStep];
    if ((kSide.edgeflags & CLIP_TOP) != 0)
    {
        uiMask &= static_cast<Tov_UInt>(kSide.cliptop);
    }
    if ((kSide.edgeflags & CLIP_BOT) != 0)
    {
        uiMask &= static_cast<Tov_UInt>(kSide.clipbot);
    }
    return uiMask;
}

//! Whether a side behind kSide touches pixel iX too.
Tov_Bool IsShared(const Side& kSide, Tov_Int iX)
{
    for (const Side* pkOther = kSide.AEnext; pkOther != nullptr && pkOther->xsleft <= iX; pkOther = pkOther->AEnext)
    {
        if (pkOther->xsright >= iX)
        {
            return true;
        }
    }
    return false;
}

//! The areas that a side cuts off from pixels that it alone touches, by table step.
class Areas
{
public:
    Areas(const Side& kSide, Tov_UInt uiBefore)
        : m_pkubArea(g_aucEdgeArea + kSide.normalmask),
          m_uiMirror(uiBefore != 0 ? ~0U : 0U)
    {
    }
    //! Inside on the left, what counts is the area left of the side, that of the mirrored distance.
    KANVO_INLINE Tov_UInt operator[](Tov_UInt uiStep) const
    {
        return m_pkubArea[((uiStep ^ m_uiMirror) - m_uiMirror) & (KANVO_EDGE_STEPS - 1)];
    }

private:
    const Tov_UByte* m_pkubArea;
    Tov_UInt         m_uiMirror;
};

//! Coverage of pixel iX, the first that kSide has not passed yet. uiInside: what lies inside at its left border; changed
//! to that at its right border by every side that ends in the pixel.
Tov_UInt Cover(Side& kSide, Tov_Int iX, Tov_UInt& uiInside)
{
    const Tov_UInt uiBefore = uiInside;
    const Tov_Bool bShared  = IsShared(kSide, iX);
    if (kSide.xsright == iX)
    {
        uiInside = Cross(kSide, uiInside);
    }
    const Tov_UInt uiStep = TakeStep(kSide);
    if (!bShared && (kSide.edgeflags & COMBINED) == 0)
    {
        return Areas(kSide, uiBefore)[uiStep];
    }
    Tov_UInt uiMask = Mask(kSide, uiStep);
    if (bShared)
    {
        kSide.edgeflags |= COMBINED;
        for (Side* pkOther = kSide.AEnext; pkOther != nullptr && pkOther->xsleft <= iX; pkOther = pkOther->AEnext)
        {
            if (pkOther->xsright < iX)
            {
                continue;
            }
            const Tov_UInt uiOtherStep = TakeStep(*pkOther);
            uiMask ^= Mask(*pkOther, uiOtherStep);
            if (pkOther->xsright == iX)
            {
                uiInside = Cross(*pkOther, uiInside);
            }
            pkOther->edgeflags |= COMBINED;
        }
    }
    return g_aucPoplookup[int_ones(uiMask ^ uiBefore)];
}

//! The active sides, sorted by xsleft.
class ActiveSides
{
public:
    Side* First() const { return m_pkFirst; }

    //! Puts a chain of sides in, each behind those that start at the same pixel.
    void Insert(Side* pkChain)
    {
        while (pkChain != nullptr)
        {
            Side* const pkSide = pkChain;
            pkChain            = pkChain->next;
            Place(*pkSide);
        }
    }

    //! Takes every side on to the next row, those out that end in iRow, and restores the order.
    void Advance(Tov_Int iRow)
    {
        for (Side** ppkLink = &m_pkFirst; *ppkLink != nullptr;)
        {
            Side& kSide = **ppkLink;
            if (kSide.ybot == iRow)
            {
                *ppkLink = kSide.AEnext;
                continue;
            }
            Step(kSide, iRow);
            ppkLink = &kSide.AEnext;
        }
        for (Side* pkSide = m_pkFirst; pkSide != nullptr;)
        {
            Side* const pkNext = pkSide->AEnext;
            if (pkNext != nullptr && pkNext->xsleft < pkSide->xsleft)
            {
                pkSide->AEnext = pkNext->AEnext;
                Place(*pkNext);
            }
            else
            {
                pkSide = pkNext;
            }
        }
    }

private:
    void Place(Side& kSide)
    {
        Side** ppkLink = &m_pkFirst;
        while (*ppkLink != nullptr && (*ppkLink)->xsleft <= kSide.xsleft)
        {
            ppkLink = &(*ppkLink)->AEnext;
        }
        kSide.AEnext = *ppkLink;
        *ppkLink     = &kSide;
    }

    //! The pixels of the next row start where those of iRow ended.
    static void Step(Side& kSide, Tov_Int iRow)
    {
        Tov_Int iEnd = 0;
        if (kSide.ybot == iRow + 1)
        {
            kSide.edgeflags = CLIP_BOT;
            iEnd            = Tov_FltToInt(kSide.X1);
            // x was stepped in single precision and may have gone past the side's true end.
            if (kSide.xslope <= 0.0F && kSide.xsleft < iEnd)
            {
                ++kSide.xsleft;
            }
            if (kSide.xslope > 0.0F && kSide.xsright > iEnd)
            {
                --kSide.xsright;
                kSide.dist = Tov_FixSub(kSide.dist, kSide.nx);
            }
        }
        else
        {
            kSide.edgeflags = 0;
            kSide.xipol += kSide.xslope;
            iEnd = std::max<Tov_Int>(0, Tov_FltToInt(kSide.xipol));
        }
        if (kSide.xslope > 0.0F)
        {
            kSide.xsleft  = kSide.xsright;
            kSide.xsright = iEnd;
            kSide.dist    = Tov_FixAdd(kSide.dist, Tov_FixSub(kSide.ny, kSide.nx));
        }
        else
        {
            const Tov_Int iBack = Tov_FixSub(kSide.xsright, iEnd);
            kSide.xsright       = kSide.xsleft;
            kSide.xsleft        = iEnd;
            kSide.dist = Tov_FixAdd(kSide.dist, Tov_FixSub(kSide.ny, Tov_IntMul(Tov_FixAdd(iBack, 1), kSide.nx)));
        }
    }

    Side* m_pkFirst = nullptr;
};

//! The colour and the row that it is laid on.
template <class Access>
struct Row
{
    typename Access::Offset kStart;
    typename Access::Pixel  pxColor;
    Tov_UByte               ubAlpha;

    Row(const Kanvo_Bitmap* pkBitmap, Tov_Int iRow, typename Access::Pixel pxPolygon, Tov_UByte ubOpacity)
        : pxColor(pxPolygon),
          ubAlpha(ubOpacity)
    {
        Access::GetOffset(pkBitmap, 0, static_cast<Tov_UInt>(iRow), kStart);
    }

    KANVO_INLINE void Inside(Tov_Int iFirst, Tov_Int iEnd) const
    {
        Kanvo_BlendRunSrcAlpha<Access>(kStart + iFirst, pxColor, iEnd - iFirst, ubAlpha);
    }
    KANVO_INLINE void Outline(Tov_Int iX, Tov_UInt uiCover) const
    {
        // KEPT: below full opacity a pixel on the outline gets one step less than the pixels between. Test:
        // AtHalfOpacityFullCoverageAlongTheOutlineIsOneStepLess.
        if (ubAlpha < 255)
        {
            uiCover = (ubAlpha * uiCover) >> 8;
        }
        if (uiCover != 0)  // blending by 0 changes nothing
        {
            Kanvo_BlendSrcAlpha<Access>(kStart + iX, pxColor, static_cast<Tov_UByte>(uiCover));
        }
    }
};

//! Fills one row between and along the sides in it.
template <class Access>
void FillRow(const Row<Access>& kRow, Side* pkSide)
{
    Tov_Int  iX       = pkSide->xsleft;
    Tov_UInt uiInside = 0;
    while (pkSide != nullptr)
    {
        if (pkSide->xsleft > iX)
        {
            if (uiInside != 0)
            {
                kRow.Inside(iX, pkSide->xsleft);
            }
            iX = pkSide->xsleft;
        }
        // Up to where the next side begins no other side needs to be looked for.
        const Side* const pkNext = pkSide->AEnext;
        const Tov_Int     iAlone = pkNext != nullptr ? std::min(pkSide->xsright, pkNext->xsleft - 1) : pkSide->xsright;
        if (iX <= iAlone && (pkSide->edgeflags & COMBINED) == 0)
        {
            const Areas   kAreas(*pkSide, uiInside);
            const Tov_Int iStep = pkSide->nx;
            Tov_Int       iDist = pkSide->dist;
            for (; iX <= iAlone; ++iX)
            {
                kRow.Outline(iX, kAreas[StepAt(iDist)]);
                iDist = Tov_FixAdd(iDist, iStep);
            }
            pkSide->dist = iDist;
            if (pkSide->xsright == iAlone)
            {
                uiInside = Cross(*pkSide, uiInside);
            }
        }
        else
        {
            kRow.Outline(iX, Cover(*pkSide, iX, uiInside));
            ++iX;
        }
        while (pkSide != nullptr && pkSide->xsright < iX)
        {
            pkSide = pkSide->AEnext;
        }
    }
}

}  // namespace

template <class PixelType, class OffsetType, class Access>
void Kanvo_Polydraw_AA<PixelType, OffsetType, Access>::Polygon(Kanvo_Bitmap* pkBitmap, const void* pvValues,
                                                               Tov_UInt uiNb, Tov_UInt uiPitch, PixelType pxColor,
                                                               Tov_UByte ubAlpha)
{
    const Tov_UInt uiLines = pkBitmap->GetHeight() + 2;
    const auto     iMaxX   = static_cast<Tov_Int>(std::min(pkBitmap->GetClipMaxX(), MAX_PIXEL));
    const auto     iMaxY   = static_cast<Tov_Int>(std::min(pkBitmap->GetClipMaxY(), MAX_PIXEL));
    Side* const    pkSides = Kanvo_PolyGetAABucketBuffer(uiNb);
    Side** const   ppkRows = Kanvo_PolyGetScanBuffer(uiLines);
    if (pkSides == nullptr || ppkRows == nullptr || pkBitmap->GetClipMinX() > pkBitmap->GetClipMaxX())
    {
        return;
    }
    Tov_Int iRow = 0;
    if (!SetupAAPolygon(iMaxY, iMaxX, pkSides, pvValues, uiPitch, ppkRows, iRow, uiNb))
    {
        Tov_Memset(ppkRows, 0, static_cast<unsigned int>(uiLines * sizeof(Side*)));
        return;
    }
    ActiveSides kActive;
    for (; iRow <= iMaxY; ++iRow)
    {
        kActive.Insert(ppkRows[iRow]);
        ppkRows[iRow] = nullptr;
        FillRow(Row<Access>(pkBitmap, iRow, pxColor, ubAlpha), kActive.First());
        kActive.Advance(iRow);
        // A closed outline has a side in every row from its first to its last, so that no row behind has one.
        if (kActive.First() == nullptr)
        {
            break;
        }
    }
}

template class Kanvo_Polydraw_AA<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access>;
