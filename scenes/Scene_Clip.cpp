// Scene_Clip: nothing is drawn outside the clip rectangle.
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{
namespace
{

constexpr Box Window = {72, 52, 256, 150};

void DrawNine(Kanvo_BitmapARGB32& target, const Input& input, Tov_UByte alpha)
{
    constexpr Tov_Int Half = 32;
    for (Tov_Int row = 0; row < 3; ++row)
    {
        for (Tov_Int column = 0; column < 3; ++column)
        {
            const Tov_Int x = Window.x + column * static_cast<Tov_Int>(Window.width) / 2;
            const Tov_Int y = Window.y + row * static_cast<Tov_Int>(Window.height) / 2;
            target.Blit(input.spriteKey.rgb32, 64, 64, 0, 0, x - Half, y - Half, BLIT_COLORKEY, alpha, MagentaKey);
        }
    }
}

}  // namespace

void ClipEdges(Kanvo_BitmapARGB32& target, const Input& input)
{
    const auto right  = static_cast<Tov_UInt>(Window.x) + Window.width - 1;
    const auto bottom = static_cast<Tov_UInt>(Window.y) + Window.height - 1;

    Stage(target, "SetCliprect: cut at every edge", "both corners inclusive");
    Caption(target, 6, 24, "72,52", Amber);
    Caption(target, static_cast<Tov_Int>(target.GetWidth()) - 4, 228, "327,201", Amber, Align::Right);

    DrawNine(target, input, 48);  // what would be there without a clip rectangle
    Gradient(target, Window, 0xFF355C7DU, 0xFF1A2C40U);
    Outline(target, Window, Amber);

    target.SetCliprect(static_cast<Tov_UInt>(Window.x), static_cast<Tov_UInt>(Window.y), right, bottom);
    DrawNine(target, input, 255);
    Caption(target, 80, 85, "every pixel outside stays as it was", Ink);
    Caption(target, 80, 160, "a letter that does not fit whole is left out", Ink);
    target.SetCliprect(0, 0, target.GetWidth() - 1, target.GetHeight() - 1);
}

}  // namespace scenes
