// Scene_BlitAlpha: pictures drawn through a separate map. A photograph becomes round, an icon dissolves, and a picture
// without alpha is given one.
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{
namespace
{

//! Draws a part of a picture through the same part of a map.
void PutThrough(Kanvo_BitmapARGB32& target, Kanvo_Bitmap* source, Kanvo_Bitmap* map, const Box& part, Tov_Int x,
                Tov_Int y, Tov_UByte alpha = 255, Tov_Flag flags = 0)
{
    target.BlitAlpha(source, map, part.width, part.height, static_cast<Tov_UInt>(part.x), static_cast<Tov_UInt>(part.y),
                     x, y, flags, alpha);
}

}  // namespace

void AlphaMaps(Kanvo_BitmapARGB32& target, const Input& input)
{
    constexpr Box Disc = {0, 0, 64, 64};

    Stage(target, "BlitAlpha: through a separate map", "opacity 255, 160, 80");

    // A photograph through a disc, weaker and weaker.
    Gradient(target, {4, 36, 194, 68}, 0xFF24506EU, 0xFF132333U);
    for (Tov_Int index = 0; index < 3; ++index)
    {
        constexpr Tov_UByte Opacities[] = {255, 160, 80};
        PutThrough(target, input.landscape.rgb32, input.maskDisc.a8, Disc, 5 + 64 * index, 38, Opacities[index]);
    }
    Caption(target, 101, 24, "RGB32 through A8", Quiet, Align::Centre);

    // Icons: the map takes the place of their own alpha, unless it is left out.
    Gradient(target, {202, 36, 194, 68}, 0xFF6E4B24U, 0xFF332313U);
    for (Tov_Int index = 0; index < 4; ++index)
    {
        PutThrough(target, input.icons.argb32, index < 2 ? nullptr : input.maskFade.a8, {index % 2 * 48, 0, 48, 48},
                   203 + 48 * index, 46);
    }
    Caption(target, 299, 24, "ARGB32: no map, then a fade", Quiet, Align::Centre);

    // One map over many colours: the alpha of an icon cuts a grey picture and a photograph.
    const Box icons = {0, 0, 192, 48};
    Checkerboard(target, {4, 122, 194, 50}, 8, 0xFF3B4C66U, 0xFF2F3D54U);
    PutThrough(target, input.landscape.rgb32, input.icons.argb32, icons, 5, 123);
    Caption(target, 101, 110, "RGB32 through ARGB32", Quiet, Align::Centre);
    Checkerboard(target, {202, 122, 194, 50}, 8, 0xFF3B4C66U, 0xFF2F3D54U);
    PutThrough(target, input.landscape.a8, input.icons.argb32, icons, 203, 123);
    Caption(target, 299, 110, "A8 through ARGB32", Quiet, Align::Centre);

    // RGB565 and A8, written as ARGB32: what is opaque stays a picture, what is not becomes see-through.
    Fill(target, {4, 190, 128, 48}, 0x00000000U);
    PutThrough(target, input.landscape.rgb565, input.maskFade.a8, {0, 0, 128, 48}, 4, 190, 255, BLIT_COPY_ONLY_ALPHA);
    Outline(target, {4, 190, 128, 48}, Edge);
    ShowAlpha(target, target, {4, 190, 128, 48}, 136, 190);
    Outline(target, {136, 190, 128, 48}, Edge);
    Caption(target, 4, 178, "RGB565 + A8 copied, and its alpha", Quiet);
    Caption(target, 270, 194, "BLIT_COPY_ONLY_ALPHA", Ink);
    Caption(target, 270, 208, "makes one ARGB32", Quiet);
    Caption(target, 270, 220, "picture of the two", Quiet);
}

}  // namespace scenes
