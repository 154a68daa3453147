// Scene_BlitColor: one colour through the coverage of a map. How text, icons and shadows get their colour.
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{

void BlitColorMaps(Kanvo_BitmapARGB32& target, const Input& input)
{
    constexpr Kanvo_ColorARGB32 Colours[] = {Amber, Teal, Rose, Sky};

    Stage(target, "BlitColor: coverage times colour", "A8, then ARGB32");

    // Discs that overlap, on light and on dark.
    Fill(target, {4, 24, 194, 68}, 0xFFE8EDF2U);
    Fill(target, {202, 24, 194, 68}, 0xFF080C12U);
    for (int index = 0; index < 4; ++index)
    {
        Paint(target, input.maskDisc.a8, {0, 0, 64, 64}, 5 + 43 * index, 26, Colours[index], 200);
        Paint(target, input.maskDisc.a8, {0, 0, 64, 64}, 203 + 43 * index, 26, Colours[index], 200);
    }

    // The same glyphs, weaker and weaker.
    for (Tov_Int index = 0; index < 3; ++index)
    {
        constexpr Tov_UByte Opacities[] = {255, 160, 80};
        const Tov_Int       x           = 4 + 132 * index;
        Gradient(target, {x, 108, 128, 34}, 0xFF24506EU, 0xFF132333U);
        Paint(target, input.maskGlyph.a8, {0, 0, 128, 32}, x, 109, Ink, Opacities[index]);
        Caption(target, x, 96, Words().Add("opacity ").Number(Opacities[index]).Text(), Quiet);
    }

    // A fade between two colours, and the alpha of a coloured picture as a map.
    Caption(target, 4, 148, "a fade: sky over rose", Quiet);
    Fill(target, {4, 160, 128, 64}, Rose);
    Paint(target, input.maskFade.a8, {0, 0, 128, 64}, 4, 160, Sky);
    Outline(target, {4, 160, 128, 64}, Edge);

    Caption(target, 140, 148, "a picture, and its alpha in four colours", Quiet);
    Gradient(target, {140, 160, 256, 64}, 0xFF24506EU, 0xFF132333U);
    const Box heart = {96, 0, 48, 48};
    Put(target, input.icons.argb32, heart, 143, 168, Blended);
    for (Tov_Int index = 0; index < 4; ++index)
    {
        Paint(target, input.icons.argb32, heart, 193 + 50 * index, 168, Colours[index]);
    }
    Outline(target, {140, 160, 256, 64}, Edge);
}

}  // namespace scenes
