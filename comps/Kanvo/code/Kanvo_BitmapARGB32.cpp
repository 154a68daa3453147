// Kanvo_BitmapARGB32: life cycle, lock, clearing and filling, colours, and the entries that only forward.
#include "Kanvo_BitmapARGB32.h"

#include "Kanvo_BitmapARGB32_Entry.h"
#include "Kanvo_Blit.h"
#include "Kanvo_Print.h"
#include "neonloops.h"
#include "neonloops_rects.h"
#include "Trak_Counters.h"

using Access = Kanvo_PixelARGB32_Access;

Kanvo_BitmapARGB32::Kanvo_BitmapARGB32(Kanvo_Screen* pkScreen, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubBBT,
                                       void* pBitmapBuffer)
    : Kanvo_Bitmap(uiWidth, uiHeight, ubBBT),
      m_bHasAlpha(true)
{
    AttachBuffer(BM_ARGB32, pkScreen, pBitmapBuffer, 0);
}

Kanvo_BitmapARGB32::~Kanvo_BitmapARGB32()
{
    DetachBuffer();
}

// ---- lock -----------------------------------------------------------------------------------------------------------

void* Kanvo_BitmapARGB32::Lock()
{
    return LockBuffer();
}

void Kanvo_BitmapARGB32::Unlock(Tov_UInt /*uiX1*/, Tov_UInt /*uiY1*/, Tov_UInt /*uiX2*/, Tov_UInt /*uiY2*/)
{
    m_bLocked   = false;
    m_bHasAlpha = false;
    if (m_pBuffer == nullptr)
    {
        return;
    }
    Kanvo_OffsetARGB32 kLine;
    Access::GetOffset(this, 0, 0, kLine);
    for (Tov_UInt uiY = 0; uiY < m_uiHeight; ++uiY)
    {
        if (!g_Kanvo_pkRows->pfnIsOpaque(kLine, m_uiWidth))
        {
            m_bHasAlpha = true;
            return;
        }
        Access::IncY(this, kLine);
    }
}

Tov_Bool Kanvo_BitmapARGB32::HasAlpha() const
{
    return m_bHasAlpha;
}

// ---- clear and fill -------------------------------------------------------------------------------------------------

void Kanvo_BitmapARGB32::Clear(Tov_UInt uiColor)
{
    if (!BeginDraw())
    {
        return;
    }
    const Trak_PerfScope kScope(g_kPerf_BitmapClear);
    Kanvo_OffsetARGB32   kLine;
    Access::GetOffset(this, 0, 0, kLine);
    g_Kanvo_pkBodies->pfnFill(kLine, m_uiPitch, uiColor, m_uiWidth, m_uiHeight);
}

void Kanvo_BitmapARGB32::FillRect(Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_Int iX1, Tov_Int iY1,
                                  Kanvo_ColorARGB32 clColor, Tov_Flag ulFlags)
{
    if (!BeginDraw() || !Kanvo_PrepareFill(this, ulFlags, uiWidth, uiHeight, iX1, iY1))
    {
        return;
    }
    const auto uiX = static_cast<Tov_UInt>(iX1);
    const auto uiY = static_cast<Tov_UInt>(iY1);
    if (!Kanvo_NeonAllowed(this, ulFlags))
    {
        Kanvo_BlitARGB32::Fill_Color(this, uiWidth, uiHeight, uiX, uiY, clColor);
        return;
    }
    const Kanvo_PixelARGB32 pxColor = Access::PixelFromColorARGB32(clColor);
    const auto              ubAlpha = static_cast<Tov_UByte>(clColor >> 24);
    Kanvo_OffsetARGB32      kDst;
    Access::GetOffset(this, uiX, uiY, kDst);
    if (ubAlpha < 255)
    {
        neonloops_fill_argb32_ag(kDst, m_uiPitch, pxColor, uiWidth, uiHeight, ubAlpha);
    }
    else
    {
        neonloops_fill_argb32(kDst, m_uiPitch, pxColor, uiWidth, uiHeight);
    }
}

// ---- colours --------------------------------------------------------------------------------------------------------

Kanvo_Color Kanvo_BitmapARGB32::ColorFromRGB(Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const
{
    return Access::PixelFromRGB(ubR, ubG, ubB);
}

Kanvo_Color Kanvo_BitmapARGB32::ColorFromARGB(Tov_UByte ubA, Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const
{
    return Access::ColorAndAlphaToPixel(Access::PixelFromRGB(ubR, ubG, ubB), ubA);
}

Tov_Bool Kanvo_BitmapARGB32::ColorToRGB(Kanvo_Color cColor, Tov_UByte& ubR, Tov_UByte& ubG, Tov_UByte& ubB) const
{
    ubR = Access::RedFromPixel(cColor);
    ubG = Access::GreenFromPixel(cColor);
    ubB = Access::BlueFromPixel(cColor);
    return true;
}

Kanvo_Color Kanvo_BitmapARGB32::Premultiply(Kanvo_Color clColorAndAlpha)
{
    const Tov_UByte   ubAlpha  = Access::AlphaFromPixel(clColorAndAlpha);
    const Kanvo_Color clScaled = Access::PixelFromRGB(Kanvo_MulByte(Access::RedFromPixel(clColorAndAlpha), ubAlpha),
                                                      Kanvo_MulByte(Access::GreenFromPixel(clColorAndAlpha), ubAlpha),
                                                      Kanvo_MulByte(Access::BlueFromPixel(clColorAndAlpha), ubAlpha));
    return Access::ColorAndAlphaToPixel(clScaled, ubAlpha);
}

// ---- forwarded ------------------------------------------------------------------------------------------------------

Tov_Int Kanvo_BitmapARGB32::DebugFontChar(Tov_UByte ubChar, Tov_UInt uiX, Tov_UInt uiY, Kanvo_Color kColor)
{
    return Kanvo_DebugFont_Print::Blit_Char(ubChar, this, uiX, uiY, kColor);
}
