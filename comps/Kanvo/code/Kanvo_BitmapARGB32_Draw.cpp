// Kanvo_BitmapARGB32_Draw: the entries of lines, dots and polygons.
#include "Kanvo_BitmapARGB32.h"
#include "Kanvo_Linedraw.h"
#include "Kanvo_Polydraw.h"

void Kanvo_BitmapARGB32::DrawLine(const Kanvo_Vector2& kStart, const Kanvo_Vector2& kEnd, Kanvo_Color kColor,
                                  Tov_Flag ulFlags, Tov_Value vStartWidth, Tov_Value vEndWidth)
{
    if (BeginDraw())
    {
        // An end width of exactly 0 is the start width.
        Kanvo_LinedrawARGB32::Draw(this, kStart, kEnd, kColor, ulFlags, vStartWidth,
                                   vEndWidth != 0.0F ? vEndWidth : vStartWidth);
    }
}

void Kanvo_BitmapARGB32::DrawDot(Tov_Value vCenterX, Tov_Value vCenterY, Tov_Value vRadius, Kanvo_Color kColor,
                                 Tov_Flag uiFlags)
{
    if (BeginDraw())
    {
        Kanvo_LinedrawARGB32::DrawDot(this, vCenterX, vCenterY, vRadius, kColor, uiFlags);
    }
}

void Kanvo_BitmapARGB32::DrawPolygon(const Kanvo_Coord2D* pkVertices, Tov_UInt uiCount, Kanvo_Color kColor,
                                     Tov_Flag ulFlags)
{
    RenderPrimitivePoly(pkVertices, uiCount, sizeof(Kanvo_Coord2D), ulFlags, kColor);
}

void Kanvo_BitmapARGB32::RenderPrimitivePoly(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch, Tov_Flag ulFlags,
                                             Kanvo_Color kColor)
{
    if (BeginDraw())
    {
        Kanvo_PolydrawARGB32::DrawPolygon(this, pvValues, uiCount, uiPitch, ulFlags, kColor);
    }
}
