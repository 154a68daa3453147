// Kanvo_Texture: a bitmap that polygons are filled from, and the frame that says which of its texels is seen at which
// pixel. Read by Kanvo_Polydraw; docs/TEXTURES.md shows how the render states work together.
#ifndef KANVO_TEXTURE_H
#define KANVO_TEXTURE_H

#include "Kanvo_Bitmap.h"
#include "Kanvo_RenderState.h"

//! Repeats a bitmap in both directions. The bitmap is not owned and not copied: it must live as long as polygons may use
//! the texture, and shows what it contains by then.
class Kanvo_Texture
{
public:
    static constexpr Tov_UInt MAX_SIZE = 32768;  //!< texels in a row or column

    //! No bitmap yet: polygons that use the texture assert "texture has no bitmap" and draw nothing.
    Kanvo_Texture() : Kanvo_Texture(nullptr) {}
    //! As SetBitmap.
    explicit Kanvo_Texture(Kanvo_Bitmap* pkBitmap);

    //! Takes pkBitmap, whose type must be BM_ARGB32 or BM_ALPHA8 and whose width, height and row length in pixels must
    //! each be a power of two, MAX_SIZE at most. False for any other or one without a buffer, which asserts "bitmap is no
    //! texture", and for null; the texture then has no bitmap.
    Tov_Bool SetBitmap(Kanvo_Bitmap* pkBitmap);

    //! Makes textured polygons of this render state use the texture: sets TEXTURE and nothing else.
    void Use(Kanvo_RenderState& kState);

    //! log2 of the row length in texels.
    Tov_UInt GetPitchShift() const { return m_uiPitchShift; }
    //! Width and height less one: what a column or row is masked with.
    Tov_UInt GetWidthMask() const { return m_uiWidthMask; }
    Tov_UInt GetHeightMask() const { return m_uiHeightMask; }
    //! Null where there is none.
    Kanvo_Bitmap* GetBitmap() const { return m_pkBitmap; }
    //! Of the bitmap; 0 and BM_UNKNWON without one.
    Tov_UInt GetWidth() const { return m_pkBitmap != nullptr ? m_pkBitmap->GetWidth() : 0; }
    Tov_UInt GetHeight() const { return m_pkBitmap != nullptr ? m_pkBitmap->GetHeight() : 0; }
    Tov_UInt GetType() const { return m_pkBitmap != nullptr ? m_pkBitmap->GetType() : Tov_UInt{BM_UNKNWON}; }

private:
    Tov_UInt      m_uiPitchShift;
    Tov_UInt      m_uiWidthMask;
    Tov_UInt      m_uiHeightMask;
    Kanvo_Bitmap* m_pkBitmap;
};

//! From pixels to texels. At pixel (x, y), U = U0 + x UX + y UY, and V and Z likewise. An affine frame is fixed: texel
//! coordinates are U and V, 16.16, which wrap as textures repeat. A perspective frame is floating: they are U / Z and V / Z,
//! in texels. One layout or the other is in use, never both.
union Kanvo_Polygon_TextureFrame
{
    struct Fixed
    {
        Tov_Fixed m_fxU0, m_fxUX, m_fxUY;
        Tov_Fixed m_fxV0, m_fxVX, m_fxVY;
        Tov_Fixed m_fxZ0, m_fxZX, m_fxZY;  //!< 0: not read
    } kFixed;
    struct Floating
    {
        Tov_Float m_fU0, m_fUX, m_fUY;
        Tov_Float m_fV0, m_fVX, m_fVY;
        Tov_Float m_fZ0, m_fZX, m_fZY;
    } kFloating;
};

//! Builds the frame from TEXTUREMODE, TEXORIGIN*, TEXUAXIS* and TEXVAXIS*. Origin O is where the texture's top-left corner
//! is seen, axis U how far one texel to the right leads from there, axis V one texel down.
//!
//! TM_PLANE2D: x and y of the three are pixels on the screen, z is not read; bPerspective comes back false.
//! TM_PLANE3D: texel position (u, v) is the point P = O + u U + v V in space, seen at pixel (P.x / P.z, P.y / P.z), so
//! that O.z = 1 and U.z = V.z = 0 is the plane of the screen; bPerspective comes back true.
//!
//! The frame is that of pixel centres: its value at (x, y) is the texel position seen at (x + 1/2, y + 1/2). False where
//! the axes span no plane, or one that is seen edge-on, or a number is not finite, which asserts "texture axes span no
//! plane"; and for every other mode, which asserts "texture mode not supported".
Tov_Bool Kanvo_MakeTextureFrame(const Kanvo_RenderState& kState, Kanvo_Polygon_TextureFrame& kFrame,
                                Tov_Bool& bPerspective);

#endif
