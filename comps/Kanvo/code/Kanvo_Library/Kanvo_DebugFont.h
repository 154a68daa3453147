// Kanvo_DebugFont: the built-in font of on-screen diagnostics. One size, one weight, no anti-aliasing, no files.
// Kanvo_Print draws its glyphs; the font itself knows no bitmap and includes nothing but the scalar types.
//
//          columns 0 .. 5
//            . # # # . .   0  top of capitals, digits and ascenders
//            # . . . # .   1
//            # . . . # .   2  top of the small letters
//            # . . . # .   3
//            # . # . # .   4
//            # . . # . .   5
//            . # # . # .   6  base line
//            . . . . . .   7  descenders, commas, feet of brackets
//            . . . . . .   8
//            . . . . . .   9  always empty, as is column 5: characters and lines set solid never touch
#ifndef KANVO_DEBUGFONT_H
#define KANVO_DEBUGFONT_H

#include "Tov_Types.h"

inline constexpr Tov_Int Kanvo_DebugFont_Width  = 6;   //!< pixels from one character to the next
inline constexpr Tov_Int Kanvo_DebugFont_Height = 10;  //!< pixels from one line to the next

//! The glyph of a character: iWidth x iHeight bytes, one per pixel, row after row from the top; non-zero is ink.
//! Known are ASCII 32..126, the arrows up, down, right, left (0x18..0x1B) and the degree sign (0xB0).
//! Returns false for every other character and then leaves the three results as they were.
Tov_Bool DebugFont_GetChar(unsigned char ubChar, const Tov_UByte*& pubGlyph, Tov_Int& iWidth, Tov_Int& iHeight);

#endif
