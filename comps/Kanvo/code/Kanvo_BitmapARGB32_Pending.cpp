// Kanvo_BitmapARGB32_Pending: the operations that have a slot but no worker yet. Each asserts "not implemented yet" and
// draws nothing.
#include "Kanvo_BitmapARGB32.h"
#include "Trak_Assert.h"

namespace
{

void NotImplementedYet()
{
    TRAK_CHECK(false, "not implemented yet");
}

}  // namespace

void Kanvo_BitmapARGB32::StretchBlit(Kanvo_Bitmap* /*pkSource*/, Tov_UInt /*uiSrcWidth*/, Tov_UInt /*uiSrcHeight*/,
                                     Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_UInt /*uiDstWidth*/,
                                     Tov_UInt /*uiDstHeight*/, Tov_Int /*iDstX*/, Tov_Int /*iDstY*/,
                                     Tov_Flag /*ulFlags*/, Tov_UByte /*ubAlpha*/, Kanvo_Color /*cColorKey*/)
{
    NotImplementedYet();
}

void Kanvo_BitmapARGB32::StretchBlitAlpha(Kanvo_Bitmap* /*pkSource*/, Kanvo_Bitmap* /*pkAlpha*/,
                                          Tov_UInt /*uiSrcWidth*/, Tov_UInt /*uiSrcHeight*/, Tov_UInt /*uiSrcX*/,
                                          Tov_UInt /*uiSrcY*/, Tov_UInt /*uiDstWidth*/, Tov_UInt /*uiDstHeight*/,
                                          Tov_Int /*iDstX*/, Tov_Int /*iDstY*/, Tov_Flag /*ulFlags*/,
                                          Tov_UByte /*ubAlpha*/)
{
    NotImplementedYet();
}

void Kanvo_BitmapARGB32::StretchBlitColor(Kanvo_Bitmap* /*pkAlpha*/, Tov_UInt /*uiSrcWidth*/, Tov_UInt /*uiSrcHeight*/,
                                          Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_UInt /*uiDstWidth*/,
                                          Tov_UInt /*uiDstHeight*/, Tov_Int /*iDstX*/, Tov_Int /*iDstY*/,
                                          Kanvo_Color /*clColor*/, Tov_Flag /*ulFlags*/, Tov_UByte /*ubAlpha*/)
{
    NotImplementedYet();
}

void Kanvo_BitmapARGB32::StretchBlit2Color(Kanvo_Bitmap* /*pkAlpha*/, Tov_UInt /*uiSrcWidth*/, Tov_UInt /*uiSrcHeight*/,
                                           Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_UInt /*uiDstWidth*/,
                                           Tov_UInt /*uiDstHeight*/, Tov_Int /*iDstX*/, Tov_Int /*iDstY*/,
                                           Kanvo_Color /*clCol1*/, Kanvo_Color /*clCol2*/, Tov_Flag /*ulFlags*/,
                                           Tov_UByte /*ubAlpha*/)
{
    NotImplementedYet();
}

void Kanvo_BitmapARGB32::RotBlit(Kanvo_Bitmap* /*pkSource*/, Tov_UInt /*uiWidth*/, Tov_UInt /*uiHeight*/,
                                 Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_Value /*vDstX*/, Tov_Value /*vDstY*/,
                                 Tov_Value /*vAngle*/, Tov_Flag /*ulFlags*/, Tov_Value /*vStretchX*/,
                                 Tov_Value /*vStretchY*/, Tov_Value /*vRotPosX*/, Tov_Value /*vRotPosY*/,
                                 Tov_UByte /*ubAlpha*/, Kanvo_Color /*cColorKey*/)
{
    NotImplementedYet();
}

void Kanvo_BitmapARGB32::RotBlitAlpha(Kanvo_Bitmap* /*pkSource*/, Kanvo_Bitmap* /*pkAlpha*/, Tov_UInt /*uiWidth*/,
                                      Tov_UInt /*uiHeight*/, Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/,
                                      Tov_Value /*vDstX*/, Tov_Value /*vDstY*/, Tov_Value /*vAngle*/,
                                      Tov_Flag /*ulFlags*/, Tov_Value /*vStretchX*/, Tov_Value /*vStretchY*/,
                                      Tov_Value /*vRotPosX*/, Tov_Value /*vRotPosY*/, Tov_UByte /*ubAlpha*/)
{
    NotImplementedYet();
}

void Kanvo_BitmapARGB32::RotBlitColor(Kanvo_Bitmap* /*pkAlpha*/, Tov_UInt /*uiWidth*/, Tov_UInt /*uiHeight*/,
                                      Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_Value /*vDstX*/,
                                      Tov_Value /*vDstY*/, Kanvo_ColorARGB32 /*cCol*/, Tov_Value /*vAngle*/,
                                      Tov_Flag /*ulFlags*/, Tov_Value /*vStretchX*/, Tov_Value /*vStretchY*/,
                                      Tov_Value /*vRotPosX*/, Tov_Value /*vRotPosY*/, Tov_UByte /*ubAlpha*/)
{
    NotImplementedYet();
}

void Kanvo_BitmapARGB32::RotBlit2Color(Kanvo_Bitmap* /*pkAlpha*/, Tov_UInt /*uiWidth*/, Tov_UInt /*uiHeight*/,
                                       Tov_UInt /*uiSrcX*/, Tov_UInt /*uiSrcY*/, Tov_Value /*vDstX*/,
                                       Tov_Value /*vDstY*/, Kanvo_ColorARGB32 /*cCol1*/, Kanvo_ColorARGB32 /*cCol2*/,
                                       Tov_Value /*vAngle*/, Tov_Flag /*ulFlags*/, Tov_Value /*vStretchX*/,
                                       Tov_Value /*vStretchY*/, Tov_Value /*vRotPosX*/, Tov_Value /*vRotPosY*/,
                                       Tov_UByte /*ubAlpha*/)
{
    NotImplementedYet();
}

void Kanvo_BitmapARGB32::DrawLine(const Kanvo_Vector2& /*kStart*/, const Kanvo_Vector2& /*kEnd*/,
                                  Kanvo_Color /*kColor*/, Tov_Flag /*ulFlags*/, Tov_Value /*vStartWidth*/,
                                  Tov_Value /*vEndWidth*/)
{
    NotImplementedYet();
}

void Kanvo_BitmapARGB32::DrawDot(Tov_Value /*vCenterX*/, Tov_Value /*vCenterY*/, Tov_Value /*vRadius*/,
                                 Kanvo_Color /*kColor*/, Tov_Flag /*uiFlags*/)
{
    NotImplementedYet();
}

void Kanvo_BitmapARGB32::RenderPrimitivePoly(const void* /*pvValues*/, Tov_UInt /*uiCount*/, Tov_UInt /*uiPitch*/,
                                             Tov_Flag /*ulFlags*/, Kanvo_Color /*kColor*/)
{
    NotImplementedYet();
}
