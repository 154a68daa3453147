// Scene_Rle: run-length-encoded pictures, encoded when the scenes were built and linked into the program. They are drawn
// where they lie: no memory is taken, nothing is expanded.
#include "image_gauge_rle16.h"
#include "image_gauge_rle8.h"
#include "image_icons.h"
#include "image_landscape.h"
#include "image_planet.h"
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{
namespace
{

constexpr Box Planet = {0, 0, 64, 64};

//! Draws a part of a picture with the opacity that each palette entry has. The map is not looked at for these sources,
//! but must be there.
void PutTranslucent(Kanvo_BitmapARGB32& target, Kanvo_BitmapRLE& picture, Kanvo_Bitmap* map, const Box& part, Tov_Int x,
                    Tov_Int y, Tov_UByte alpha = 255)
{
    target.BlitAlpha(&picture, map, part.width, part.height, static_cast<Tov_UInt>(part.x),
                     static_cast<Tov_UInt>(part.y), x, y, 0, alpha);
}

void PutMagnified(Kanvo_BitmapARGB32& target, Kanvo_BitmapRLE& picture, const Box& part, Tov_Int x, Tov_Int y,
                  Tov_UInt factor)
{
    target.StretchBlit(&picture, part.width, part.height, static_cast<Tov_UInt>(part.x), static_cast<Tov_UInt>(part.y),
                       part.width * factor, part.height * factor, x, y, 0, 255, 0);
}

}  // namespace

void RleBackground(Kanvo_BitmapARGB32& target, const Input& input)
{
    Kanvo_BitmapRLE landscape(target.GetScreen(), image_landscape, IMAGE_LANDSCAPE_SIZE);
    Kanvo_BitmapRLE icons(target.GetScreen(), image_icons, IMAGE_ICONS_SIZE);

    Stage(target, "Blit, BlitAlpha: run-length-encoded", "48 and 256 colours");

    // The background, as large as it is and doubled; icons over both, the last ones leaving the picture.
    Put(target, &landscape, {0, 0, 240, 160}, 4, 22);
    target.SetCliprect(4, 22, 243, 181);
    for (Tov_Int icon = 0; icon < 8; ++icon)
    {
        const Box part = {icon % 4 * 48, icon / 4 * 48, 48, 48};
        PutTranslucent(target, icons, input.maskDisc.a8, part, -10 + 70 * (icon % 4), icon < 4 ? 40 : 110,
                       icon < 4 ? 255 : 144);
    }
    target.SetCliprect(250, 22, 395, 181);
    PutMagnified(target, landscape, {84, 40, 73, 80}, 250, 22, 2);
    PutTranslucent(target, icons, input.maskDisc.a8, {96, 0, 48, 48}, 299, 78);
    target.SetCliprect(0, 0, target.GetWidth() - 1, target.GetHeight() - 1);

    Outline(target, {4, 22, 240, 160}, Edge);
    Outline(target, {250, 22, 146, 160}, Edge);
    Caption(target, 124, 188, "upper row opaque, lower row at 144", Quiet, Align::Centre);
    Caption(target, 323, 188, "magnified twice", Quiet, Align::Centre);
    Caption(target, 4, 206, Words().Add("240 x 160 in ").Number(IMAGE_LANDSCAPE_SIZE).Add(" bytes").Text(), Ink);
    Caption(target, 4, 220, Words().Add("192 x 96, translucent, in ").Number(IMAGE_ICONS_SIZE).Add(" bytes").Text(),
            Ink);
}

void RleMagnified(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    Kanvo_BitmapRLE planet(target.GetScreen(), image_planet, IMAGE_PLANET_SIZE);

    Stage(target, "StretchBlit: a magnified sprite, clipped", "3 x, 5 x");

    // Left: one sprite magnified three times, drawn nine times, each time through another clip rectangle that cuts it within
    // a source pixel.
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 3; ++column)
        {
            const Tov_Int x = 4 + 66 * column;
            const Tov_Int y = 24 + 66 * row;
            Checkerboard(target, {x, y, 62, 62}, 6, 0xFF2A3850U, 0xFF1F2A3CU);
            target.SetCliprect(static_cast<Tov_UInt>(x), static_cast<Tov_UInt>(y), static_cast<Tov_UInt>(x + 61),
                               static_cast<Tov_UInt>(y + 61));
            PutMagnified(target, planet, Planet, x - 2 - 62 * column, y - 2 - 62 * row, 3);
            target.SetCliprect(0, 0, target.GetWidth() - 1, target.GetHeight() - 1);
            Outline(target, {x, y, 62, 62}, Edge);
        }
    }

    // Right: one pixel more of it from window to window, so that the partial column grows.
    for (int step = 0; step < 10; ++step)
    {
        const Tov_Int x = 212 + 18 * step;
        Fill(target, {x, 24, 14, 100}, Panel);
        target.SetCliprect(static_cast<Tov_UInt>(x), 24, static_cast<Tov_UInt>(x + 13), 123);
        PutMagnified(target, planet, {24, 22, 20, 20}, x + 13 - step, 24, 5);
        target.SetCliprect(0, 0, target.GetWidth() - 1, target.GetHeight() - 1);
    }
    Caption(target, 300, 130, "1 to 10 columns visible", Quiet, Align::Centre);
    PutMagnified(target, planet, {16, 24, 36, 16}, 212, 143, 5);
    Caption(target, 101, 227, "one sprite, nine windows", Quiet, Align::Centre);
    Caption(target, 300, 227, "whole pixels of 5 x 5", Quiet, Align::Centre);
}

void RleFormats(Kanvo_BitmapARGB32& target, const Input& input)
{
    constexpr Box      Part   = {0, 14, 128, 86};
    constexpr Tov_UInt Pixels = 128 * 128;

    Kanvo_BitmapRLE rle8(target.GetScreen(), image_gauge_rle8, IMAGE_GAUGE_RLE8_SIZE);
    Kanvo_BitmapRLE rle16(target.GetScreen(), image_gauge_rle16, IMAGE_GAUGE_RLE16_SIZE);

    struct Format
    {
        const char*   name;
        Kanvo_Bitmap* picture;
        Tov_UInt      bytes;
    };
    const Format formats[] = {{"ARGB32", input.gauge.argb32, Pixels * 4}, {"RGB32", input.gauge.rgb32, Pixels * 4},
                              {"RGB565", input.gauge.rgb565, Pixels * 2}, {"RLE16", &rle16, IMAGE_GAUGE_RLE16_SIZE},
                              {"RLE8", &rle8, IMAGE_GAUGE_RLE8_SIZE},     {"A8", input.gauge.a8, Pixels}};

    Stage(target, "One picture in six formats", "128 x 128, bytes");
    for (int index = 0; index < 6; ++index)
    {
        const Format& format = formats[index];
        const Tov_Int x      = 4 + 132 * (index % 3);
        const Tov_Int y      = 22 + 108 * (index / 3);
        Checkerboard(target, {x, y, 128, 86}, 8, 0xFF3B4C66U, 0xFF2F3D54U);
        if (format.picture == &rle8 || format.picture == &rle16)
        {
            PutTranslucent(target, static_cast<Kanvo_BitmapRLE&>(*format.picture), input.gauge.a8, Part, x, y);
        }
        else
        {
            Put(target, format.picture, Part, x, y, Blended);
        }
        Outline(target, {x, y, 128, 86}, Edge);
        Caption(target, x, y + 92, format.name, Ink);
        Caption(target, x + 128, y + 92, Words().Number(format.bytes).Text(), Quiet, Align::Right);
    }
}

}  // namespace scenes
