// Scene_DebugFont: the built-in font and its layout.
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{

void DebugFont(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    constexpr Tov_UInt Rows[] = {0x10, 0x20, 0x30, 0x40, 0x50, 0x60, 0x70, 0xB0};
    constexpr Tov_Int  Left   = 46;
    constexpr Tov_Int  First  = 36;
    constexpr Tov_Int  Pitch  = 14;

    Stage(target, "DebugText: the built-in font", "6 x 10");

    // The whole font, one row per sixteen codes.
    for (int column = 0; column < 16; ++column)
    {
        Caption(target, Left + Pitch * column, 23, Words().Hex(static_cast<Tov_UInt>(column), 1).Text(), Quiet);
    }
    Tov_Int y = First;
    for (const Tov_UInt row : Rows)
    {
        Caption(target, 10, y + 1, Words().Add("0x").Hex(row, 2).Text(), Quiet);
        Fill(target, {Left - 4, y - 1, 16 * Pitch, 12}, Panel);
        for (Tov_UInt column = 0; column < 16; ++column)
        {
            target.DebugFontChar(static_cast<Tov_UByte>(row + column), static_cast<Tov_UInt>(Left) + 14 * column,
                                 static_cast<Tov_UInt>(y) + 1, Ink);
        }
        y += Pitch;
    }

    // A word under the magnifying glass.
    constexpr Box Word = {282, 23, 13, 10};
    Caption(target, Word.x, Word.y, "Ag", Amber);
    Caption(target, 302, Word.y, "x 8", Quiet);
    Fill(target, {281, 36, 104, 80}, Panel);
    Magnify(target, Word, 281, 36, 8);
    Outline(target, {281, 36, 104, 80}, Edge);
    Caption(target, 281, 122, "column 5, row 9", Quiet);
    Caption(target, 281, 132, "stay empty", Quiet);

    // Lines and tabs.
    Fill(target, {6, 154, 388, 78}, Panel);
    Caption(target, 12, 160, "\\n starts a line under the first, \\t leads to every eighth cell", Quiet);
    Caption(target, 12, 176,
            "speed\t88 km/h\t\x18 rising\n"
            "oil\t94 \xB0"
            "C\t\x19 falling\n"
            "fuel\t31 %\t\x1A steady\n"
            "range\t412 km\t\x1B back",
            Teal);
    Caption(target, 232, 176, "0123456789 +-*/=%\n(parens) [brackets]\n{braces} <angles>\nPack my box: 5 dozen jugs!",
            Amber);
}

}  // namespace scenes
