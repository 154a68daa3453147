// Kanvo_BitmapARGB32: the render target. Keeps its buffer, the lock and the knowledge whether a pixel is translucent;
// clears, fills, converts colours; its other operations check, clip, choose a worker and leave the pixels to it.
// Kanvo_BitmapARGB32.cpp has the life cycle and fills, Kanvo_BitmapARGB32_Blit.cpp the unscaled blits, _Stretch.cpp and
// _Rot.cpp the scaled and rotated ones, _Draw.cpp lines, dots and polygons.
#ifndef KANVO_BITMAPARGB32_H
#define KANVO_BITMAPARGB32_H

#include "Kanvo_Bitmap.h"
#include "Kanvo_PixelARGB32_Access.h"

//! A bitmap of ARGB32 pixels that can be drawn into and be the source of a blit. See Kanvo_Bitmap for what the operations
//! and their parameters mean. A bitmap may be its own source: rows are drawn from top to bottom and pixels from left to
//! right, and a pixel that was drawn already is read as it is by then.
class Kanvo_BitmapARGB32 : public Kanvo_Bitmap
{
public:
    //! pkScreen: the screen whose render state and library object serve it; null only for a bitmap that brings its own
    //! buffer. ubBBT: BitmapBufferType. pBitmapBuffer: uiWidth x uiHeight words, aligned to 4 bytes, kept alive and freed
    //! by the caller, or null for memory of the library. The buffer is not cleared. Without memory the bitmap asserts
    //! "no memory for the bitmap", and every drawing operation but debug text "bitmap has no buffer".
    Kanvo_BitmapARGB32(Kanvo_Screen* pkScreen, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubBBT = BBT_KANVO,
                       void* pBitmapBuffer = nullptr);

    //! Hands the buffer back to the library object, which frees it if it gave it.
    ~Kanvo_BitmapARGB32() override;

    void* Lock() override;

    //! Finds out whether any pixel of the whole bitmap is less than opaque, for HasAlpha.
    // KEPT: the rectangle is accepted and ignored, the whole bitmap is scanned. Test: UnlockScansBeyondItsRectangle.
    void Unlock(Tov_UInt uiX1, Tov_UInt uiY1, Tov_UInt uiX2, Tov_UInt uiY2) override;

    //! ARGB32 sources are copied when ulFlags is 0 and ubAlpha 255, alpha included. Other sources are converted: stored
    //! opaque at full opacity, blended by their alpha times ubAlpha below. Asserts "blit not supported" for formats that
    //! have no conversion.
    void Blit(Kanvo_Bitmap* pkSource, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY,
              Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags, Tov_UByte ubAlpha, Kanvo_Color cColorKey) override;
    void BlitAlpha(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX,
                   Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags, Tov_UByte ubAlpha) override;
    //! pkAlpha: A8, or ARGB32 whose alpha counts; anything else asserts "alpha bitmap is not the right type".
    void BlitColor(Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY,
                   Tov_Int iDstX, Tov_Int iDstY, Kanvo_ColorARGB32 clCol, Tov_Flag ulFlags, Tov_UByte ubAlpha) override;
    //! Checks its arguments and draws nothing: two-coloured maps are not a format of this bitmap.
    void Blit2Color(Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY,
                    Tov_Int iDstX, Tov_Int iDstY, Kanvo_ColorARGB32 clCol1, Kanvo_ColorARGB32 clCol2, Tov_Flag ulFlags,
                    Tov_UByte ubAlpha) override;
    void StretchBlit(Kanvo_Bitmap* pkSource, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight, Tov_UInt uiSrcX,
                     Tov_UInt uiSrcY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY,
                     Tov_Flag ulFlags, Tov_UByte ubAlpha, Kanvo_Color cColorKey) override;
    void StretchBlitAlpha(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkAlpha, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight,
                          Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX,
                          Tov_Int iDstY, Tov_Flag ulFlags, Tov_UByte ubAlpha) override;
    void StretchBlitColor(Kanvo_Bitmap* pkAlpha, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight, Tov_UInt uiSrcX,
                          Tov_UInt uiSrcY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY,
                          Kanvo_Color clColor, Tov_Flag ulFlags, Tov_UByte ubAlpha) override;
    void StretchBlit2Color(Kanvo_Bitmap* pkAlpha, Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight, Tov_UInt uiSrcX,
                           Tov_UInt uiSrcY, Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY,
                           Kanvo_Color clCol1, Kanvo_Color clCol2, Tov_Flag ulFlags, Tov_UByte ubAlpha) override;
    void RotBlit(Kanvo_Bitmap* pkSource, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY,
                 Tov_Value vDstX, Tov_Value vDstY, Tov_Value vAngle, Tov_Flag ulFlags, Tov_Value vStretchX,
                 Tov_Value vStretchY, Tov_Value vRotPosX, Tov_Value vRotPosY, Tov_UByte ubAlpha,
                 Kanvo_Color cColorKey) override;
    void RotBlitAlpha(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight,
                      Tov_UInt uiSrcX, Tov_UInt uiSrcY, Tov_Value vDstX, Tov_Value vDstY, Tov_Value vAngle,
                      Tov_Flag ulFlags, Tov_Value vStretchX, Tov_Value vStretchY, Tov_Value vRotPosX,
                      Tov_Value vRotPosY, Tov_UByte ubAlpha) override;
    void RotBlitColor(Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY,
                      Tov_Value vDstX, Tov_Value vDstY, Kanvo_ColorARGB32 cCol, Tov_Value vAngle, Tov_Flag ulFlags,
                      Tov_Value vStretchX, Tov_Value vStretchY, Tov_Value vRotPosX, Tov_Value vRotPosY,
                      Tov_UByte ubAlpha) override;
    void RotBlit2Color(Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY,
                       Tov_Value vDstX, Tov_Value vDstY, Kanvo_ColorARGB32 cCol1, Kanvo_ColorARGB32 cCol2,
                       Tov_Value vAngle, Tov_Flag ulFlags, Tov_Value vStretchX, Tov_Value vStretchY, Tov_Value vRotPosX,
                       Tov_Value vRotPosY, Tov_UByte ubAlpha) override;
    void DrawLine(const Kanvo_Vector2& kStart, const Kanvo_Vector2& kEnd, Kanvo_Color kColor, Tov_Flag ulFlags,
                  Tov_Value vStartWidth, Tov_Value vEndWidth) override;
    void DrawPolygon(const Kanvo_Coord2D* pkVertices, Tov_UInt uiCount, Kanvo_Color kColor, Tov_Flag ulFlags) override;
    void DrawDot(Tov_Value vCenterX, Tov_Value vCenterY, Tov_Value vRadius, Kanvo_Color kColor,
                 Tov_Flag uiFlags) override;
    //! uiColor is a raw ARGB32 word. What HasAlpha answers does not change until Unlock.
    void Clear(Tov_UInt uiColor) override;
    //! An opaque colour is stored, any other mixed in by its alpha. BLIT_COLORKEY switches the optimised path off.
    void    FillRect(Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_Int iX1, Tov_Int iY1, Kanvo_ColorARGB32 clColor,
                     Tov_Flag ulFlags) override;
    Tov_Int DebugFontChar(Tov_UByte ubChar, Tov_UInt uiX, Tov_UInt uiY, Kanvo_Color kColor) override;
    void    RenderPrimitivePoly(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch, Tov_Flag ulFlags,
                                Kanvo_Color kColor) override;

    //! Opaque.
    Kanvo_Color ColorFromRGB(Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const override;
    Kanvo_Color ColorFromARGB(Tov_UByte ubA, Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const override;
    //! Always true; alpha is not reported.
    Tov_Bool ColorToRGB(Kanvo_Color cColor, Tov_UByte& ubR, Tov_UByte& ubG, Tov_UByte& ubB) const override;

    //! True until an Unlock has found every pixel opaque.
    Tov_Bool HasAlpha() const override;

    //! A colour with its channels multiplied by its alpha, which is kept. For data that leaves the library.
    static Kanvo_Color Premultiply(Kanvo_Color clColorAndAlpha);

private:
    Tov_Bool m_bHasAlpha;
};

#endif
