// Kanvo_BitmapA8: the source bitmap of its format.
#include "Kanvo_BitmapA8.h"

Kanvo_BitmapA8::Kanvo_BitmapA8(Kanvo_Screen* pkScreen, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubBBT,
                               void* pBuffer, Tov_UInt uiPitch)
    : Kanvo_SourceBitmap(BM_ALPHA8, pkScreen, uiWidth, uiHeight, ubBBT, pBuffer, uiPitch)
{
}

Kanvo_BitmapA8::Kanvo_BitmapA8(Kanvo_Screen* pkScreen, Tov_UInt uiWidth, Tov_UInt uiHeight,
                               const Kanvo_PixelA8* pxPixels, Tov_UInt uiPitch)
    : Kanvo_SourceBitmap(BM_ALPHA8, pkScreen, uiWidth, uiHeight, BBT_ROM, const_cast<Kanvo_PixelA8*>(pxPixels), uiPitch)
{
}

Kanvo_Color Kanvo_BitmapA8::ColorFromRGB(Tov_UByte /*ubR*/, Tov_UByte /*ubG*/, Tov_UByte /*ubB*/) const
{
    return 255;
}

Kanvo_Color Kanvo_BitmapA8::ColorFromARGB(Tov_UByte ubA, Tov_UByte /*ubR*/, Tov_UByte /*ubG*/, Tov_UByte /*ubB*/) const
{
    return ubA;
}

Tov_Bool Kanvo_BitmapA8::ColorToRGB(Kanvo_Color cColor, Tov_UByte& ubR, Tov_UByte& ubG, Tov_UByte& ubB) const
{
    ubR = ubG = ubB = Kanvo_PixelA8_Access::ColorToPixel(cColor);
    return false;
}

Tov_Bool Kanvo_BitmapA8::HasAlpha() const
{
    return true;
}
