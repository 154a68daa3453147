// Kanvo_SourceBitmap: a bitmap that is read by blits and never drawn into. Base of the RGB32, RGB565 and A8 bitmaps,
// which add their format; here every drawing operation asserts "bitmap cannot be drawn into" and does nothing else.
#ifndef KANVO_SOURCEBITMAP_H
#define KANVO_SOURCEBITMAP_H

#include "Kanvo_Bitmap.h"

class Kanvo_SourceBitmap : public Kanvo_Bitmap
{
public:
    ~Kanvo_SourceBitmap() override;

    //! The buffer may be written until Unlock, unless the pixels were adopted as read-only.
    void* Lock() override;
    //! The rectangle is not looked at.
    void Unlock(Tov_UInt uiX1, Tov_UInt uiY1, Tov_UInt uiX2, Tov_UInt uiY2) override;

    void Blit(Kanvo_Bitmap* pkSource, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY,
              Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags, Tov_UByte ubAlpha, Kanvo_Color cColorKey) override;
    void BlitAlpha(Kanvo_Bitmap* pkSource, Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX,
                   Tov_UInt uiSrcY, Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags, Tov_UByte ubAlpha) override;
    void BlitColor(Kanvo_Bitmap* pkAlpha, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX, Tov_UInt uiSrcY,
                   Tov_Int iDstX, Tov_Int iDstY, Kanvo_ColorARGB32 clCol, Tov_Flag ulFlags, Tov_UByte ubAlpha) override;
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
    void Clear(Tov_UInt uiColor) override;
    void FillRect(Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_Int iX1, Tov_Int iY1, Kanvo_ColorARGB32 clColor,
                  Tov_Flag ulFlags) override;
    //! Asserts and returns 0, so that text drawn here takes no room.
    Tov_Int DebugFontChar(Tov_UByte ubChar, Tov_UInt uiX, Tov_UInt uiY, Kanvo_Color kColor) override;
    void    RenderPrimitivePoly(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch, Tov_Flag ulFlags,
                                Kanvo_Color kColor) override;

protected:
    //! A bitmap without pixels yet; the derived class brings them.
    Kanvo_SourceBitmap(Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubBBT);

    //! A bitmap with memory of its own (pBuffer null) or over pixels the caller keeps alive and frees. See AttachBuffer.
    Kanvo_SourceBitmap(BitmapType eType, Kanvo_Screen* pkScreen, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubBBT,
                       void* pBuffer, Tov_UInt uiPitch);
};

//! Adds the constructors of a source bitmap whose pixels have the C++ type Pixel.
template <class Pixel, BitmapType TYPE>
class Kanvo_SourceBitmapOf : public Kanvo_SourceBitmap
{
public:
    //! Memory of its own (pBuffer null; not cleared) or over pixels that the caller keeps alive, with uiPitch bytes from
    //! row to row (0: no padding). Misfits leave it without pixels and assert; see Kanvo_Bitmap::AttachBuffer.
    Kanvo_SourceBitmapOf(Kanvo_Screen* pkScreen, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubBBT = BBT_KANVO,
                         void* pBuffer = nullptr, Tov_UInt uiPitch = 0)
        : Kanvo_SourceBitmap(TYPE, pkScreen, uiWidth, uiHeight, ubBBT, pBuffer, uiPitch)
    {
    }

    //! Over pixels in read-only memory, which Lock must then not be used to change.
    Kanvo_SourceBitmapOf(Kanvo_Screen* pkScreen, Tov_UInt uiWidth, Tov_UInt uiHeight, const Pixel* pxPixels,
                         Tov_UInt uiPitch = 0)
        : Kanvo_SourceBitmap(TYPE, pkScreen, uiWidth, uiHeight, BBT_ROM, const_cast<Pixel*>(pxPixels), uiPitch)
    {
    }
};

#endif
