// Kanvo_Polydraw: where every polygon enters. Reads flags and render state, extrudes and clips the outline and chooses one
// of three renderers: textured and plain, both here, on the walk of Kanvo_PolyScan, and anti-aliased (Kanvo_PolydrawAA).
// Called by Kanvo_BitmapARGB32_Draw.cpp.
#ifndef KANVO_POLYDRAW_H
#define KANVO_POLYDRAW_H

#include "Kanvo_Bitmap.h"
#include "Kanvo_PixelARGB32_Access.h"
#include "Kanvo_SpandrawTex.h"
#include "Kanvo_Texture.h"

//! Static methods over a destination format. An outline is uiCount vertices, uiPitch bytes from one to the next, each
//! starting with x and y as Tov_Value at any alignment; it is closed from the last to the first and filled by the even-odd
//! rule, so that where it overlaps itself it is empty.
template <class PixelType, class OffsetType, class Access>
class Kanvo_Polydraw
{
public:
    //! Fills an outline inside the clip rectangle. ulFlags: DrawPolygon_Flags.
    //!
    //! POLY_USE_RENDERSTATE: the screen's render state is consulted: where ALPHAENABLE is set the opacity is ALPHA, and
    //! where TEXTUREENABLE is set the polygon is filled from TEXTURE and never anti-aliased (docs/TEXTURES.md). Without
    //! the flag the opacity is 255. A bitmap without a screen has nothing enabled.
    //! POLY_ANTIALIAS: anti-aliased; POLY_HQAA is not read.
    //! POLY_EXTRUDE: makes the outline half a pixel larger first (Kanvo_PolyExtrude.h), with POLY_HINT_CW or _CCW.
    //! POLY_NOCLIP: the caller promises that the outline lies inside the bitmap, from 0 to its width and height, and the
    //! clip rectangle is not looked at, but for the right and bottom end of anti-aliased polygons. A broken promise may
    //! spoil the picture; it writes nothing outside the bitmap. An outline beyond +-32767 draws nothing then.
    //!
    //! A coordinate that is not finite, fewer than 3 vertices, null: nothing is drawn; null with a count asserts "polygon
    //! has no vertices". Too many corners for the memory reserved assert "polygon too large" and nothing is drawn
    //! (Kanvo::ReservePolygons). Bitmaps are drawn into up to column and row 32766. The time a polygon takes grows with
    //! its corners, its rows, and the square of the sides that cross one row.
    // KEPT: POLY_EXTRUDE rewrites the vertices that the caller passed, also where nothing is drawn in the end. Test:
    // ExtrudeRewritesTheCallersVerticesEvenWhenClippedAway.
    // KEPT: with POLY_NOCLIP anti-aliased polygons still end at the right and bottom border of the clip rectangle. Test:
    // UnclippedAntialiasedPolygonsEndAtTheClipRectanglesRightAndBottom.
    static void DrawPolygon(Kanvo_Bitmap* pkBitmap, const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch,
                            Tov_Flag ulFlags, Kanvo_Color kColor);

private:
    static void Render(Kanvo_Bitmap* pkBitmap, const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch,
                       Tov_Flag ulFlags, Kanvo_Color kColor, Tov_UByte ubAlpha, Tov_Bool bTextured);
    static void renderPlain(Kanvo_Bitmap* pkBitmap, const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch,
                            PixelType pxColor, Tov_UByte ubAlpha);
    static void renderPlainAA(Kanvo_Bitmap* pkBitmap, const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch,
                              PixelType pxColor, Tov_UByte ubAlpha);
    static void renderTextured(Kanvo_Bitmap* pkBitmap, const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch,
                               PixelType pxColor);
};

//! Polygons of one colour with hard edges.
template <class PixelType, class OffsetType, class Access>
class Kanvo_Polydraw_NoAA
{
public:
    //! Fills an outline whose coordinates are finite and within +-32767; pixels outside the bitmap are left out. ubAlpha:
    //! 255 writes pxColor as it is, anything below blends it by its own alpha times ubAlpha.
    // KEPT: at full opacity the colour is stored, alpha included, where an anti-aliased polygon blends it. Test:
    // APlainPolygonStoresATranslucentColourThatAnAntialiasedOneBlends.
    static void Polygon(Kanvo_Bitmap* pkBitmap, const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch,
                        PixelType pxColor, Tov_UByte ubAlpha);
};

//! Polygons filled from a texture, with hard edges. Writeback: one of the five of Kanvo_SpandrawTex.h, whose texel format
//! must be that of the texture.
template <class PixelType, class OffsetType, class Access, class Writeback>
class Kanvo_Polydraw_Tex_NoAA
{
public:
    //! As Kanvo_Polydraw_NoAA. kFrame: in its floating layout where bPerspective is set, else in its fixed one.
    static void Polygon(Kanvo_Bitmap* pBitmap, const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch,
                        Kanvo_Texture* pkTexture, const Kanvo_Polygon_TextureFrame& kFrame, bool bPerspective,
                        const Kanvo_Polydraw_data& rData);
};

using Kanvo_PolydrawARGB32       = Kanvo_Polydraw<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access>;
using Kanvo_Polydraw_NoAA_ARGB32 = Kanvo_Polydraw_NoAA<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access>;
template <class Writeback>
using Kanvo_Polydraw_Tex_NoAA_ARGB32 =
    Kanvo_Polydraw_Tex_NoAA<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access, Writeback>;

extern template class Kanvo_Polydraw<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access>;
extern template class Kanvo_Polydraw_NoAA<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access>;
extern template class Kanvo_Polydraw_Tex_NoAA<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access,
                                              Kanvo_WritebackTex_Default>;
extern template class Kanvo_Polydraw_Tex_NoAA<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access,
                                              Kanvo_WritebackTex_Alpha>;
extern template class Kanvo_Polydraw_Tex_NoAA<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access,
                                              Kanvo_WritebackTex_Additive>;
extern template class Kanvo_Polydraw_Tex_NoAA<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access,
                                              Kanvo_WritebackTex_Color>;
extern template class Kanvo_Polydraw_Tex_NoAA<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access,
                                              Kanvo_WritebackTex_ColorAlpha>;

#endif
