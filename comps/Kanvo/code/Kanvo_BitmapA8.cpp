// Kanvo_BitmapA8: the source bitmap of its format.
#include "Kanvo_BitmapA8.h"

template class Kanvo_SourceBitmapOf<Kanvo_PixelA8, BM_ALPHA8>;

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
