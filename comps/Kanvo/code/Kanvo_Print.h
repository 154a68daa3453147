// Kanvo_Print: draws one character of the debug font. Behind Kanvo_BitmapARGB32::DebugFontChar; the glyphs are those of
// Kanvo_DebugFont.
#ifndef KANVO_PRINT_H
#define KANVO_PRINT_H

#include "Kanvo_Bitmap.h"

class Kanvo_DebugFont_Print
{
public:
    //! Writes kColor as it is, alpha included, where the glyph is set. A character that does not lie wholly inside the
    //! clip rectangle is left out. Returns the character's width whether drawn or not, 0 where the font lacks it.
    static Tov_Int Blit_Char(Tov_UByte ubChar, Kanvo_Bitmap* pkDest, Tov_UInt uiX, Tov_UInt uiY, Kanvo_Color kColor);
};

#endif
