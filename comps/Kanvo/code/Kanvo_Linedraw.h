// Kanvo_Linedraw: where every line enters. Normalises widths, decides between thin and wide, prepares the pattern, clips,
// orients the line and chooses one of the octant rasterisers of Kanvo_Linedraw_Octant. Round caps are dots (Kanvo_Dotdraw).
// Called by Kanvo_BitmapARGB32_Draw.cpp.
#ifndef KANVO_LINEDRAW_H
#define KANVO_LINEDRAW_H

#include "Kanvo_Bitmap.h"
#include "Kanvo_PixelARGB32_Access.h"

struct Kanvo_Line_clipRange;
struct Kanvo_Line_patternStyle;

//! Static methods over a destination format. Floats up to the octant, 16.16 from there on. PATTERNS: whether lines may
//! take their colours from a pattern; without, the flag is ignored and its code left out.
template <class PixelType, class OffsetType, class Access, Tov_Bool PATTERNS>
class Kanvo_Linedraw
{
public:
    //! Draws a line whose width runs from vStartWidth to vEndWidth pixels; widths below 1 count as 1 and above 16384 as
    //! that. ulFlags: Kanvo_Lineflags. A coordinate or width that is not finite draws nothing. Bitmaps are drawn into up
    //! to column and row 32766.
    static void DrawLine(Kanvo_Bitmap* pBitmap, const Kanvo_Vector2& kStart, const Kanvo_Vector2& kEnd,
                         Kanvo_Color kColor, Tov_Flag ulFlags, Tov_Value vStartWidth, Tov_Value vEndWidth);

    //! As DrawLine, and sooner where the line is thin, of one colour, and lies so well inside the clip rectangle that
    //! nothing is left to be decided, as most lines do.
    static void Draw(Kanvo_Bitmap* pBitmap, const Kanvo_Vector2& kStart, const Kanvo_Vector2& kEnd, Kanvo_Color kColor,
                     Tov_Flag ulFlags, Tov_Value vStartWidth, Tov_Value vEndWidth);

    //! Draws a disc; a radius of up to 1 is a point. Read of uiFlag: the two quality bits. Numbers that are not finite or
    //! beyond a thousand million draw nothing.
    static void DrawDot(Kanvo_Bitmap* pkDest, Tov_Value vCenterX, Tov_Value vCenterY, Tov_Value vRadius,
                        Kanvo_Color kColor, Tov_Flag uiFlag);

private:
    static void ThinLineClipped(Kanvo_Bitmap* pBitmap, const Kanvo_Vector2& kStart, const Kanvo_Vector2& kEnd,
                                Kanvo_Color kColor, Tov_Flag ulFlags, Tov_Value vXmax, Tov_Value vYmax, Tov_Value vXmin,
                                Tov_Value vYmin, Tov_Flag uiCode);
    static void WideLineOnEdge(Kanvo_Bitmap* pBitmap, const Kanvo_Vector2& kStart, const Kanvo_Vector2& kEnd,
                               Kanvo_Color kColor, Tov_Value vStartWidth, Tov_Value vEndWidth, Tov_Flag ulFlags,
                               Kanvo_Line_patternStyle* pkPattern);
    static void WideLineClipped(Kanvo_Bitmap* pBitmap, const Kanvo_Vector2& kStart, const Kanvo_Vector2& kEnd,
                                Kanvo_Color kColor, Tov_Value vStartWidth, Tov_Value vEndWidth, Tov_Flag ulFlags,
                                Kanvo_Line_patternStyle* pkPattern);
    static void DrawCaps(Kanvo_Bitmap* pBitmap, const Kanvo_Vector2& kStart, const Kanvo_Vector2& kEnd,
                         Kanvo_Color kColor, Tov_Flag ulFlags, Tov_Value vStartWidth, Tov_Value vEndWidth);
    static void LargeDot(Kanvo_Bitmap* pkDest, Tov_Value vCenterX, Tov_Value vCenterY, Tov_Value vRadius,
                         PixelType pxColor, Tov_Flag uiFlag);
    static void SmallDot(Kanvo_Bitmap* pkDest, Tov_Value vCenterX, Tov_Value vCenterY, PixelType pxColor,
                         Tov_Flag uiFlag);
};

using Kanvo_LinedrawARGB32 = Kanvo_Linedraw<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access, true>;

extern template class Kanvo_Linedraw<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access, true>;

#endif
