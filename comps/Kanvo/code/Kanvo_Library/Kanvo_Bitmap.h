// Kanvo_Bitmap: the abstract bitmap. Toolkits hold every bitmap through this class; what draws is a class derived from
// it (Kanvo_BitmapARGB32), what is only read is a Kanvo_SourceBitmap. Here: the fields, the clip rectangle, text layout.
#ifndef KANVO_BITMAP_H
#define KANVO_BITMAP_H

#include "Kanvo_Enums.h"
#include "Kanvo_Geometry.h"
#include "Tov_Types.h"

class Kanvo_Primitive;
class Kanvo_Screen;

//! A rectangle of pixels, its clip rectangle, and forty operations in a fixed order of the virtual table.
//!
//! Drawing operations return nothing. Misuse is reported through the assertion handler (Trak_Assert.h) and draws
//! nothing; drawing on a bitmap that is not locked asserts and draws all the same. What lies outside the clip rectangle
//! is not drawn. Widths and heights are in pixels, positions in pixels from the top-left corner, x to the right and y
//! downwards. All blending is with straight alpha: colour channels are never multiplied by alpha beforehand.
//!
//! Parameters that recur: pkSource, pkAlpha: a bitmap that is read during the call only; uiSrcX, uiSrcY: top-left
//! corner of the source rectangle; iDstX, iDstY: where it goes, may be negative; ulFlags: DrawBlit_Flags; ubAlpha: global
//! opacity, 255 draws at full strength and 0 leaves nothing of the source; cColorKey: a colour in the source's own
//! encoding, which is left out when ulFlags has BLIT_COLORKEY. With BLIT_NOCLIP the caller promises that both rectangles
//! lie inside their bitmaps; a broken promise asserts and draws nothing.
class Kanvo_Bitmap
{
public:
    Kanvo_Bitmap(const Kanvo_Bitmap&)            = delete;
    Kanvo_Bitmap& operator=(const Kanvo_Bitmap&) = delete;

    // ---- the forty virtual operations; their order is part of the interface -----------------------------------------

    //! Deletes the bitmap.
    virtual void Release();

    //! Grants access to the pixels: returns the buffer, null where there is none. Asserts "bitmap already locked".
    virtual void* Lock() = 0;

    //! Ends the access that Lock granted. The rectangle is that of the changed pixels.
    virtual void Unlock(Tov_UInt uiX1, Tov_UInt uiY1, Tov_UInt uiX2, Tov_UInt uiY2) = 0;

    //! Draws a rectangle of pkSource, copied or blended.
    virtual void Blit(Kanvo_Bitmap* pkSource, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY,
                      Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags, Tov_UByte ubAlpha, Kanvo_Color cColorKey) = 0;

    //! Draws a rectangle of pkSource through the alpha map pkAlpha, which is addressed with the same coordinates.
    virtual void BlitAlpha(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight,
                           Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags,
                           Tov_UByte ubAlpha) = 0;

    //! Paints clCol with the alpha of pkAlpha as coverage. The colour's own alpha byte does not weaken it.
    virtual void BlitColor(Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY,
                           Tov_Int iDstX, Tov_Int iDstY, Kanvo_ColorARGB32 clCol, Tov_Flag ulFlags,
                           Tov_UByte ubAlpha) = 0;

    //! As BlitColor with two colours, for bitmap classes that support it.
    virtual void Blit2Color(Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX,
                            Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY, Kanvo_ColorARGB32 clCol1,
                            Kanvo_ColorARGB32 clCol2, Tov_Flag ulFlags, Tov_UByte ubAlpha) = 0;

    //! Draws a rectangle of pkSource scaled to uiDstWidth x uiDstHeight.
    virtual void StretchBlit(Kanvo_Bitmap* pkSource, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight, Tov_UInt uiSrcX,
                             Tov_UInt uiSrcY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY,
                             Tov_Flag ulFlags, Tov_UByte ubAlpha, Kanvo_Color cColorKey) = 0;

    //! As StretchBlit, through an alpha map.
    virtual void StretchBlitAlpha(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkAlpha, Tov_UInt uiSrcWidth,
                                  Tov_UInt uiSrcHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_UInt uiDstWidth,
                                  Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags,
                                  Tov_UByte ubAlpha) = 0;

    //! Paints clColor through a scaled alpha map.
    virtual void StretchBlitColor(Kanvo_Bitmap* pkAlpha, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight, Tov_UInt uiSrcX,
                                  Tov_UInt uiSrcY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX,
                                  Tov_Int iDstY, Kanvo_Color clColor, Tov_Flag ulFlags, Tov_UByte ubAlpha) = 0;

    //! As StretchBlitColor with two colours.
    virtual void StretchBlit2Color(Kanvo_Bitmap* pkAlpha, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight, Tov_UInt uiSrcX,
                                   Tov_UInt uiSrcY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX,
                                   Tov_Int iDstY, Kanvo_Color clCol1, Kanvo_Color clCol2, Tov_Flag ulFlags,
                                   Tov_UByte ubAlpha) = 0;

    //! Draws a rectangle of pkSource scaled and rotated by vAngle degrees; the point (vRotPosX, vRotPosY) of the source
    //! rectangle lands on (vDstX, vDstY).
    virtual void RotBlit(Kanvo_Bitmap* pkSource, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY,
                         Tov_Value vDstX, Tov_Value vDstY, Tov_Value vAngle, Tov_Flag ulFlags, Tov_Value vStretchX,
                         Tov_Value vStretchY, Tov_Value vRotPosX, Tov_Value vRotPosY, Tov_UByte ubAlpha,
                         Kanvo_Color cColorKey) = 0;

    //! As RotBlit, through an alpha map.
    virtual void RotBlitAlpha(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight,
                              Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Value vDstX, Tov_Value vDstY, Tov_Value vAngle,
                              Tov_Flag ulFlags, Tov_Value vStretchX, Tov_Value vStretchY, Tov_Value vRotPosX,
                              Tov_Value vRotPosY, Tov_UByte ubAlpha) = 0;

    //! Paints cCol through a rotated alpha map.
    virtual void RotBlitColor(Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX,
                              Tov_UInt uiSrcY, Tov_Value vDstX, Tov_Value vDstY, Kanvo_ColorARGB32 cCol,
                              Tov_Value vAngle, Tov_Flag ulFlags, Tov_Value vStretchX, Tov_Value vStretchY,
                              Tov_Value vRotPosX, Tov_Value vRotPosY, Tov_UByte ubAlpha) = 0;

    //! As RotBlitColor with two colours.
    virtual void RotBlit2Color(Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX,
                               Tov_UInt uiSrcY, Tov_Value vDstX, Tov_Value vDstY, Kanvo_ColorARGB32 cCol1,
                               Kanvo_ColorARGB32 cCol2, Tov_Value vAngle, Tov_Flag ulFlags, Tov_Value vStretchX,
                               Tov_Value vStretchY, Tov_Value vRotPosX, Tov_Value vRotPosY, Tov_UByte ubAlpha) = 0;

    //! Draws a line whose width runs from vStartWidth to vEndWidth pixels.
    virtual void DrawLine(const Kanvo_Vector2& kStart, const Kanvo_Vector2& kEnd, Kanvo_Color kColor, Tov_Flag ulFlags,
                          Tov_Value vStartWidth, Tov_Value vEndWidth) = 0;

    //! Fills a polygon of uiCount vertices, closed from the last to the first, by the even-odd rule. ulFlags:
    //! DrawPolygon_Flags, explained in Kanvo_Polydraw.h; POLY_EXTRUDE rewrites the vertices, which must not be constants
    //! then. What is too large for the memory reserved is not drawn (Kanvo::ReservePolygons).
    virtual void DrawPolygon(const Kanvo_Coord2D* pkVertices, Tov_UInt uiCount, Kanvo_Color kColor,
                             Tov_Flag ulFlags) = 0;

    //! Draws a primitive as it is, or transformed: each vertex (x, y) becomes kMatrix (x, y) + kTranslation, or, with three
    //! components, the pixel (p.x / p.z, p.y / p.z) of the point p = kMatrix (x, y, 1) + kTranslation, so that an affine
    //! matrix of Kanvo_Matrix3 and a translation with z = 0 mean the same as its TransformPoint. A point whose p.z is not
    //! positive lies behind the viewer: dots and lines that need it are left out, a polygon that has one is not drawn.
    //! ulFlags: those of DrawDot, DrawLine or DrawPolygon, whichever draws it. Transformed polygons, and extruded ones,
    //! need room (Kanvo::ReservePolygons); the vertices of the primitive are never changed.
    virtual void DrawPrimitive(const Kanvo_Primitive& kPrimitive, Tov_Flag ulFlags);
    virtual void DrawPrimitive(const Kanvo_Primitive& kPrimitive, const Kanvo_Matrix2& kMatrix,
                               const Kanvo_Vector2& kTranslation, Tov_Flag ulFlags);
    virtual void DrawPrimitive(const Kanvo_Primitive& kPrimitive, const Kanvo_Matrix3& kMatrix,
                               const Kanvo_Vector3& kTranslation, Tov_Flag ulFlags);

    //! Draws a round dot.
    virtual void DrawDot(Tov_Value vCenterX, Tov_Value vCenterY, Tov_Value vRadius, Kanvo_Color kColor,
                         Tov_Flag uiFlags) = 0;

    //! Writes uiColor into every pixel, whatever the clip rectangle is, without blending.
    virtual void Clear(Tov_UInt uiColor) = 0;

    //! Fills the rectangle of uiWidth x uiHeight pixels at (iX1, iY1), blending by the colour's own alpha.
    virtual void FillRect(Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_Int iX1, Tov_Int iY1, Kanvo_ColorARGB32 clColor,
                          Tov_Flag ulFlags) = 0;

    //! Sets the clip rectangle by its inclusive corners. It is kept inside the bitmap; an empty or inverted one, or one
    //! outside the bitmap, lets nothing be drawn (all four bounds then read as an empty rectangle: 1, 1, 0, 0).
    virtual void SetCliprect(Tov_UInt uiMinX, Tov_UInt uiMinY, Tov_UInt uiMaxX, Tov_UInt uiMaxY);

    //! Changes and reads one palette entry. Bitmaps without a palette assert "bitmap has no palette"; reading gives 0.
    virtual void     SetPalette(Tov_UInt uiIndex, Tov_UInt uiColor);
    virtual Tov_UInt GetPalette(Tov_UInt uiIndex);

    //! A colour in this bitmap's own encoding, from channels of 0 to 255.
    virtual Kanvo_Color ColorFromRGB(Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const                 = 0;
    virtual Kanvo_Color ColorFromARGB(Tov_UByte ubA, Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const = 0;
    //! As ColorFromARGB with the colour channels multiplied by alpha; for data that leaves the library, as nothing in
    //! it expects premultiplied colours.
    virtual Kanvo_Color PremulColorFromARGB(Tov_UByte ubA, Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const;
    //! Takes a colour of this bitmap's encoding apart. False where the encoding has no colour channels.
    virtual Tov_Bool ColorToRGB(Kanvo_Color cColor, Tov_UByte& ubR, Tov_UByte& ubG, Tov_UByte& ubB) const = 0;

    //! Whether a pixel may be less than opaque.
    virtual Tov_Bool HasAlpha() const = 0;

    //! Sets the view that GetPrescaleMatrix describes: the point kViewCenter of the drawing appears at pixel
    //! kScreenCenter, magnified by vZoom * vScaleX and vZoom * vScaleY and turned by vAngle degrees, clockwise.
    virtual void SetView(Tov_Value vZoom, const Kanvo_Vector2& kViewCenter, const Kanvo_Vector2& kScreenCenter,
                         Tov_Value vAngle, Tov_Value vScaleX, Tov_Value vScaleY);

    //! Writes text in the debug font with its first cell at (uiX, uiY). '\n' starts a new line under the first, '\t'
    //! goes on to the next multiple of eight cells from the bitmap's left edge, everything else is a character;
    //! characters the font lacks take no room. A null text draws nothing.
    virtual void DebugText(const char* pcText, Tov_UInt uiX, Tov_UInt uiY, Tov_UInt uiColor);

    //! The size in pixels that DebugText would cover from (uiX, uiY) on; an empty text has the height of one line.
    virtual void DebugTextMeasure(const char* pcText, Tov_UInt uiX, Tov_UInt uiY, Tov_UInt& uiWidth,
                                  Tov_UInt& uiHeight);

    //! The screen this bitmap belongs to, null for none.
    virtual Kanvo_Screen* GetScreen() const;

    //! Sets the prescale matrix so that the window from (vLeft, vTop) to (vRight, vBottom) fills uiWidth x uiHeight
    //! pixels. A window without extent asserts "view has no extent" and changes nothing.
    virtual void RecalculatePrescaleMatrix(Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_Value vLeft, Tov_Value vTop,
                                           Tov_Value vRight, Tov_Value vBottom);

    virtual ~Kanvo_Bitmap();  // two slots: destroying and deleting

    //! Draws one character of the debug font, if it lies wholly inside the clip rectangle, and returns its width; 0 for
    //! a character the font lacks.
    virtual Tov_Int DebugFontChar(Tov_UByte ubChar, Tov_UInt uiX, Tov_UInt uiY, Kanvo_Color kColor) = 0;

    //! DrawPolygon for vertices that lie uiPitch bytes apart, each starting with a Kanvo_Coord2D.
    virtual void RenderPrimitivePoly(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch, Tov_Flag ulFlags,
                                     Kanvo_Color kColor) = 0;

    // ---- accessors --------------------------------------------------------------------------------------------------

    Tov_UInt GetType() const { return m_uiType; }
    Tov_UInt GetWidth() const { return m_uiWidth; }
    Tov_UInt GetHeight() const { return m_uiHeight; }
    //! First byte of the top-left pixel; null for a bitmap that could not get memory.
    void* GetBuffer() const { return m_pBuffer; }
    //! Bytes from one row to the next.
    Tov_UInt             GetPitch() const { return m_uiPitch; }
    Tov_UInt             GetClipMinX() const { return m_uiClipMinX; }
    Tov_UInt             GetClipMinY() const { return m_uiClipMinY; }
    Tov_UInt             GetClipMaxX() const { return m_uiClipMaxX; }
    Tov_UInt             GetClipMaxY() const { return m_uiClipMaxY; }
    const Kanvo_Matrix3& GetPrescaleMatrix() const { return m_kPrescaleMatrix; }
    Kanvo_Vector2        GetViewCenter() const { return m_kViewCenter; }

    //! A slot of the screen's render state; for a bitmap without a screen 0 in every slot.
    Tov_MixedType GetState(RenderStates eSlot) const;

    //! Intersects a rectangle with the clip rectangle, in place. False, changing nothing, where nothing is left.
    Tov_Bool ClipFillrect(Tov_UInt& uiWidth, Tov_UInt& uiHeight, Tov_Int& iX, Tov_Int& iY) const;

    //! Intersects the source rectangle with the bounds of pkSource and the destination rectangle with this bitmap's
    //! clip rectangle, moving both together, in place. False, changing nothing, where nothing is left.
    Tov_Bool ClipBlitrect(const Kanvo_Bitmap* pkSource, Tov_UInt& uiWidth, Tov_UInt& uiHeight, Tov_UInt& uiSrcX,
                          Tov_UInt& uiSrcY, Tov_Int& iDstX, Tov_Int& iDstY) const;

protected:
    //! A bitmap without a buffer, its clip rectangle the whole of it.
    Kanvo_Bitmap(Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubBBT);

    //! Gives the bitmap its pixels: pBuffer, or where that is null memory from the screen's library object. uiPitch:
    //! bytes per row, 0 for rows without padding. A pitch too small or not of whole pixels, a buffer that is not aligned
    //! to pixels, and memory that is not to be had leave the bitmap without a buffer, and assert.
    void AttachBuffer(BitmapType eType, Kanvo_Screen* pkScreen, void* pBuffer, Tov_UInt uiPitch);

    //! Hands the buffer back to the library object, which knows whether it has to be freed.
    void DetachBuffer();

    void* LockBuffer();

    //! What every drawing operation begins with: asserts the lock, and returns whether there are pixels to draw into.
    Tov_Bool BeginDraw() const;

    Tov_UInt      m_uiType;
    Tov_UInt      m_uiWidth;
    Tov_UInt      m_uiHeight;
    Kanvo_Screen* m_pkScreen;
    void*         m_pBuffer;
    Tov_UInt      m_uiPitch;
    Tov_Bool      m_bLocked;
    Tov_UByte     m_ubBBT;
    Kanvo_Matrix3 m_kPrescaleMatrix;
    Tov_UInt      m_uiClipMinX;
    Tov_UInt      m_uiClipMinY;
    Tov_UInt      m_uiClipMaxX;
    Tov_UInt      m_uiClipMaxY;
    Kanvo_Vector2 m_kViewCenter;
};

#endif
