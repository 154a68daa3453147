// Kanvo_BitmapRGB565: the source bitmap of its format.
#include "Kanvo_BitmapRGB565.h"

template class Kanvo_SourceBitmapOf<Kanvo_PixelRGB565, BM_RGB565>;

Kanvo_Color Kanvo_BitmapRGB565::ColorFromRGB(Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const
{
    return Kanvo_PixelRGB565_Access::PixelFromRGB(ubR, ubG, ubB);
}

Kanvo_Color Kanvo_BitmapRGB565::ColorFromARGB(Tov_UByte /*ubA*/, Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const
{
    return ColorFromRGB(ubR, ubG, ubB);
}

Tov_Bool Kanvo_BitmapRGB565::ColorToRGB(Kanvo_Color cColor, Tov_UByte& ubR, Tov_UByte& ubG, Tov_UByte& ubB) const
{
    const Kanvo_PixelRGB565 pxPixel = Kanvo_PixelRGB565_Access::ColorToPixel(cColor);

    ubR = Kanvo_PixelRGB565_Access::RedFromPixel(pxPixel);
    ubG = Kanvo_PixelRGB565_Access::GreenFromPixel(pxPixel);
    ubB = Kanvo_PixelRGB565_Access::BlueFromPixel(pxPixel);
    return true;
}

Tov_Bool Kanvo_BitmapRGB565::HasAlpha() const
{
    return false;
}
