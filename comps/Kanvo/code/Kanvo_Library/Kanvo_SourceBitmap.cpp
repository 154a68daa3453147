// Kanvo_SourceBitmap: life cycle and lock of source bitmaps, and the refusal of everything else.
#include "Kanvo_SourceBitmap.h"

#include "Trak_Assert.h"

namespace
{

void RefuseToDraw()
{
    TRAK_CHECK(false, "bitmap cannot be drawn into");
}

}  // namespace

Kanvo_SourceBitmap::Kanvo_SourceBitmap(Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubBBT)
    : Kanvo_Bitmap(uiWidth, uiHeight, ubBBT)
{
}

Kanvo_SourceBitmap::Kanvo_SourceBitmap(BitmapType eType, Kanvo_Screen* pkScreen, Tov_UInt uiWidth, Tov_UInt uiHeight,
                                       Tov_UByte ubBBT, void* pBuffer, Tov_UInt uiPitch)
    : Kanvo_SourceBitmap(uiWidth, uiHeight, ubBBT)
{
    AttachBuffer(eType, pkScreen, pBuffer, uiPitch);
}

Kanvo_SourceBitmap::~Kanvo_SourceBitmap()
{
    DetachBuffer();
}

void* Kanvo_SourceBitmap::Lock()
{
    return LockBuffer();
}

void Kanvo_SourceBitmap::Unlock(Tov_UInt /*uiX1*/, Tov_UInt /*uiY1*/, Tov_UInt /*uiX2*/, Tov_UInt /*uiY2*/)
{
    m_bLocked = false;
}

void Kanvo_SourceBitmap::Blit(Kanvo_Bitmap* /*pkSource*/, Tov_UInt /*uiWidth*/, Tov_UInt /*uiHeight*/,
                              Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_Int /*iDstX*/, Tov_Int /*iDstY*/,
                              Tov_Flag /*ulFlags*/, Tov_UByte /*ubAlpha*/, Kanvo_Color /*cColorKey*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::BlitAlpha(Kanvo_Bitmap* /*pkSource*/, Kanvo_Bitmap* /*pkAlpha*/, Tov_UInt /*uiWidth*/,
                                   Tov_UInt /*uiHeight*/, Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_Int /*iDstX*/,
                                   Tov_Int /*iDstY*/, Tov_Flag /*ulFlags*/, Tov_UByte /*ubAlpha*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::BlitColor(Kanvo_Bitmap* /*pkAlpha*/, Tov_UInt /*uiWidth*/, Tov_UInt /*uiHeight*/,
                                   Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_Int /*iDstX*/, Tov_Int /*iDstY*/,
                                   Kanvo_ColorARGB32 /*clCol*/, Tov_Flag /*ulFlags*/, Tov_UByte /*ubAlpha*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::Blit2Color(Kanvo_Bitmap* /*pkAlpha*/, Tov_UInt /*uiWidth*/, Tov_UInt /*uiHeight*/,
                                    Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_Int /*iDstX*/, Tov_Int /*iDstY*/,
                                    Kanvo_ColorARGB32 /*clCol1*/, Kanvo_ColorARGB32 /*clCol2*/, Tov_Flag /*ulFlags*/,
                                    Tov_UByte /*ubAlpha*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::StretchBlit(Kanvo_Bitmap* /*pkSource*/, Tov_UInt /*uiSrcWidth*/, Tov_UInt /*uiSrcHeight*/,
                                     Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_UInt /*uiDstWidth*/,
                                     Tov_UInt /*uiDstHeight*/, Tov_Int /*iDstX*/, Tov_Int /*iDstY*/,
                                     Tov_Flag /*ulFlags*/, Tov_UByte /*ubAlpha*/, Kanvo_Color /*cColorKey*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::StretchBlitAlpha(Kanvo_Bitmap* /*pkSource*/, Kanvo_Bitmap* /*pkAlpha*/,
                                          Tov_UInt /*uiSrcWidth*/, Tov_UInt /*uiSrcHeight*/, Tov_UInt /*uiSrcX*/,
                                          Tov_UInt /*uiSrcY*/, Tov_UInt /*uiDstWidth*/, Tov_UInt /*uiDstHeight*/,
                                          Tov_Int /*iDstX*/, Tov_Int /*iDstY*/, Tov_Flag /*ulFlags*/,
                                          Tov_UByte /*ubAlpha*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::StretchBlitColor(Kanvo_Bitmap* /*pkAlpha*/, Tov_UInt /*uiSrcWidth*/, Tov_UInt /*uiSrcHeight*/,
                                          Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_UInt /*uiDstWidth*/,
                                          Tov_UInt /*uiDstHeight*/, Tov_Int /*iDstX*/, Tov_Int /*iDstY*/,
                                          Kanvo_Color /*clColor*/, Tov_Flag /*ulFlags*/, Tov_UByte /*ubAlpha*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::StretchBlit2Color(Kanvo_Bitmap* /*pkAlpha*/, Tov_UInt /*uiSrcWidth*/, Tov_UInt /*uiSrcHeight*/,
                                           Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_UInt /*uiDstWidth*/,
                                           Tov_UInt /*uiDstHeight*/, Tov_Int /*iDstX*/, Tov_Int /*iDstY*/,
                                           Kanvo_Color /*clCol1*/, Kanvo_Color /*clCol2*/, Tov_Flag /*ulFlags*/,
                                           Tov_UByte /*ubAlpha*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::RotBlit(Kanvo_Bitmap* /*pkSource*/, Tov_UInt /*uiWidth*/, Tov_UInt /*uiHeight*/,
                                 Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_Value /*vDstX*/, Tov_Value /*vDstY*/,
                                 Tov_Value /*vAngle*/, Tov_Flag /*ulFlags*/, Tov_Value /*vStretchX*/,
                                 Tov_Value /*vStretchY*/, Tov_Value /*vRotPosX*/, Tov_Value /*vRotPosY*/,
                                 Tov_UByte /*ubAlpha*/, Kanvo_Color /*cColorKey*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::RotBlitAlpha(Kanvo_Bitmap* /*pkSource*/, Kanvo_Bitmap* /*pkAlpha*/, Tov_UInt /*uiWidth*/,
                                      Tov_UInt /*uiHeight*/, Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/,
                                      Tov_Value /*vDstX*/, Tov_Value /*vDstY*/, Tov_Value /*vAngle*/,
                                      Tov_Flag /*ulFlags*/, Tov_Value /*vStretchX*/, Tov_Value /*vStretchY*/,
                                      Tov_Value /*vRotPosX*/, Tov_Value /*vRotPosY*/, Tov_UByte /*ubAlpha*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::RotBlitColor(Kanvo_Bitmap* /*pkAlpha*/, Tov_UInt /*uiWidth*/, Tov_UInt /*uiHeight*/,
                                      Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_Value /*vDstX*/,
                                      Tov_Value /*vDstY*/, Kanvo_ColorARGB32 /*cCol*/, Tov_Value /*vAngle*/,
                                      Tov_Flag /*ulFlags*/, Tov_Value /*vStretchX*/, Tov_Value /*vStretchY*/,
                                      Tov_Value /*vRotPosX*/, Tov_Value /*vRotPosY*/, Tov_UByte /*ubAlpha*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::RotBlit2Color(Kanvo_Bitmap* /*pkAlpha*/, Tov_UInt /*uiWidth*/, Tov_UInt /*uiHeight*/,
                                       Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_Value /*vDstX*/,
                                       Tov_Value /*vDstY*/, Kanvo_ColorARGB32 /*cCol1*/, Kanvo_ColorARGB32 /*cCol2*/,
                                       Tov_Value /*vAngle*/, Tov_Flag /*ulFlags*/, Tov_Value /*vStretchX*/,
                                       Tov_Value /*vStretchY*/, Tov_Value /*vRotPosX*/, Tov_Value /*vRotPosY*/,
                                       Tov_UByte /*ubAlpha*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::DrawLine(const Kanvo_Vector2& /*kStart*/, const Kanvo_Vector2& /*kEnd*/,
                                  Kanvo_Color /*kColor*/, Tov_Flag /*ulFlags*/, Tov_Value /*vStartWidth*/,
                                  Tov_Value /*vEndWidth*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::DrawPolygon(const Kanvo_Coord2D* /*pkVertices*/, Tov_UInt /*uiCount*/, Kanvo_Color /*kColor*/,
                                     Tov_Flag /*ulFlags*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::DrawDot(Tov_Value /*vCenterX*/, Tov_Value /*vCenterY*/, Tov_Value /*vRadius*/,
                                 Kanvo_Color /*kColor*/, Tov_Flag /*uiFlags*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::Clear(Tov_UInt /*uiColor*/)
{
    RefuseToDraw();
}

void Kanvo_SourceBitmap::FillRect(Tov_UInt /*uiWidth*/, Tov_UInt /*uiHeight*/, Tov_Int /*iX1*/, Tov_Int /*iY1*/,
                                  Kanvo_ColorARGB32 /*clColor*/, Tov_Flag /*ulFlags*/)
{
    RefuseToDraw();
}

Tov_Int Kanvo_SourceBitmap::DebugFontChar(Tov_UByte /*ubChar*/, Tov_UInt /*uiX*/, Tov_UInt /*uiY*/,
                                          Kanvo_Color /*kColor*/)
{
    RefuseToDraw();
    return 0;
}

void Kanvo_SourceBitmap::RenderPrimitivePoly(const void* /*pvValues*/, Tov_UInt /*uiCount*/, Tov_UInt /*uiPitch*/,
                                             Tov_Flag /*ulFlags*/, Kanvo_Color /*kColor*/)
{
    RefuseToDraw();
}
