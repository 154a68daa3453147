// Kanvo_PolydrawAA: polygons with anti-aliased edges. Called by Kanvo_Polydraw with the clipped outline; Kanvo_PolySetupAA
// prepares the sides, Kanvo_Tables has what a side at some distance from a pixel covers of it. Writes pixels itself.
#ifndef KANVO_POLYDRAWAA_H
#define KANVO_POLYDRAWAA_H

#include "Kanvo_Bitmap.h"
#include "Kanvo_PixelARGB32_Access.h"

//! Number of bits set, 0 to 32.
constexpr Tov_UInt int_ones(Tov_UInt uiBits)
{
    uiBits -= (uiBits >> 1) & 0x55555555U;
    uiBits = (uiBits & 0x33333333U) + ((uiBits >> 2) & 0x33333333U);
    uiBits = (uiBits + (uiBits >> 4)) & 0x0F0F0F0FU;
    uiBits += uiBits >> 8;
    uiBits += uiBits >> 16;
    return uiBits & 0x3FU;
}

template <class PixelType, class OffsetType, class Access>
class Kanvo_Polydraw_AA
{
public:
    //! Fills an outline of uiNb vertices, uiPitch bytes apart, by the even-odd rule: every pixel is blended with pxColor
    //! by the colour's own alpha times ubAlpha times the part of the pixel that is inside, which is right to about 4/255
    //! where the outline crosses the pixel and exactly 0 or 255 elsewhere. Good for bitmaps up to 1280 x 800; on larger
    //! ones long sides drift, up to a tenth of a pixel at 2048.
    //!
    //! Vertices must be finite, and inside the clip rectangle: they are held to 0 .. right border and to y >= 0, and rows
    //! below the clip rectangle are not visited, so that nothing outside the bitmap is ever written.
    static void Polygon(Kanvo_Bitmap* pkBitmap, const void* pvValues, Tov_UInt uiNb, Tov_UInt uiPitch,
                        PixelType pxColor, Tov_UByte ubAlpha);
};

using Kanvo_Polydraw_AA_ARGB32 = Kanvo_Polydraw_AA<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access>;

extern template class Kanvo_Polydraw_AA<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access>;

#endif
