// Kanvo_BitmapRGB32: the source bitmap of its format.
#include "Kanvo_BitmapRGB32.h"

template class Kanvo_SourceBitmapOf<Kanvo_PixelRGB32, BM_RGB32>;

Kanvo_Color Kanvo_BitmapRGB32::ColorFromRGB(Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const
{
    return (static_cast<Tov_UInt>(ubR) << 16) | (static_cast<Tov_UInt>(ubG) << 8) | ubB;
}

Kanvo_Color Kanvo_BitmapRGB32::ColorFromARGB(Tov_UByte /*ubA*/, Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const
{
    return ColorFromRGB(ubR, ubG, ubB);
}

Tov_Bool Kanvo_BitmapRGB32::ColorToRGB(Kanvo_Color cColor, Tov_UByte& ubR, Tov_UByte& ubG, Tov_UByte& ubB) const
{
    ubR = Kanvo_PixelRGB32_Access::RedFromPixel(cColor);
    ubG = Kanvo_PixelRGB32_Access::GreenFromPixel(cColor);
    ubB = Kanvo_PixelRGB32_Access::BlueFromPixel(cColor);
    return true;
}

Tov_Bool Kanvo_BitmapRGB32::HasAlpha() const
{
    return false;
}
