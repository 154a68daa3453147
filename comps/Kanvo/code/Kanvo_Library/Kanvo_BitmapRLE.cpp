// Kanvo_BitmapRLE: checks an image once and hands its header to the workers.
#include "Kanvo_BitmapRLE.h"

#include <cstring>

#include "Kanvo_Object.h"
#include "Kanvo_PrecompiledImageInfo.h"
#include "Kanvo_Screen.h"
#include "Trak_Assert.h"

Kanvo_BitmapRLE::Kanvo_BitmapRLE(Kanvo_Screen* pkScreen, const void* pvImage, std::size_t uiBytes, Tov_Bool bCopy)
    : Kanvo_SourceBitmap(0, 0, bCopy ? BBT_KANVO : BBT_ROM),
      m_kReport{IMAGE_NO_MEMORY, 0}
{
    m_pkScreen               = pkScreen;
    const void* const pvKept = Keep(pvImage, uiBytes, bCopy);
    if (pvKept != nullptr || !bCopy || pvImage == nullptr || uiBytes == 0)
    {
        m_kReport = Kanvo_CheckImage(pvKept, uiBytes);
    }
    TRAK_CHECK(m_kReport.IsUsable(), Kanvo_ImageFaultText(m_kReport.eFault));

    m_pBuffer = const_cast<void*>(pvKept);  // read only; the base knows one kind of pointer
    if (pvKept != nullptr && m_kReport.IsUsable())
    {
        const auto& kInfo = *static_cast<const Kanvo_PrecompiledImageInfo*>(pvKept);
        m_uiType          = kInfo.ubRLEBits == 8 ? BM_RGB32RLE8 : BM_RGB32RLE16;
        m_uiWidth         = kInfo.uiWidth;
        m_uiHeight        = kInfo.uiHeight;
        SetCliprect(0, 0, m_uiWidth, m_uiHeight);
    }
}

const void* Kanvo_BitmapRLE::Keep(const void* pvImage, std::size_t uiBytes, Tov_Bool bCopy)
{
    if (!bCopy || pvImage == nullptr || m_pkScreen == nullptr || m_pkScreen->GetOwner() == nullptr ||
        uiBytes > Kanvo::MAX_BUFFER_BYTES)
    {
        return bCopy ? nullptr : pvImage;
    }
    void* const pvCopy =
        m_pkScreen->GetOwner()->AllocBitmapBuffer(BM_ALPHA8, m_ubBBT, static_cast<Tov_UInt>(uiBytes), 1);
    return pvCopy != nullptr ? std::memcpy(pvCopy, pvImage, uiBytes) : nullptr;
}

void* Kanvo_BitmapRLE::Lock()
{
    void* const pvImage = LockBuffer();
    return m_kReport.IsUsable() ? pvImage : nullptr;
}

Tov_UInt Kanvo_BitmapRLE::GetPalette(Tov_UInt uiIndex)
{
    if (!m_kReport.IsUsable())
    {
        return 0;
    }
    const auto& kInfo = *static_cast<const Kanvo_PrecompiledImageInfo*>(m_pBuffer);
    return uiIndex < kInfo.uiPaletteColorCount ? kInfo.acolColorPalette[uiIndex] : 0;
}

Kanvo_Color Kanvo_BitmapRLE::ColorFromRGB(Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const
{
    return ColorFromARGB(255, ubR, ubG, ubB);
}

Kanvo_Color Kanvo_BitmapRLE::ColorFromARGB(Tov_UByte ubA, Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const
{
    return (static_cast<Tov_UInt>(ubA) << 24) | (static_cast<Tov_UInt>(ubR) << 16) | (static_cast<Tov_UInt>(ubG) << 8) |
           ubB;
}

Tov_Bool Kanvo_BitmapRLE::ColorToRGB(Kanvo_Color cColor, Tov_UByte& ubR, Tov_UByte& ubG, Tov_UByte& ubB) const
{
    ubR = static_cast<Tov_UByte>(cColor >> 16);
    ubG = static_cast<Tov_UByte>(cColor >> 8);
    ubB = static_cast<Tov_UByte>(cColor);
    return true;
}

Tov_Bool Kanvo_BitmapRLE::HasAlpha() const
{
    return !m_kReport.IsUsable() || static_cast<const Kanvo_PrecompiledImageInfo*>(m_pBuffer)->bOpaqueColorsOnly == 0;
}
