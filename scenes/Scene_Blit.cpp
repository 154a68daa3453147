// Scene_Blit: pictures drawn as they are, faded, with a colour left out, and out of every format.
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{
namespace
{

constexpr Box Glass = {0, 0, 96, 96};

//! The part of the landscape behind things: square, and rich in detail.
constexpr Box Scenery = {100, 40, 96, 96};

//! Four columns of 96 pixels.
Tov_Int ColumnX(int column)
{
    return 4 + 99 * column;
}

Tov_Int ColumnCentre(int column)
{
    return ColumnX(column) + 48;
}

//! A format to show side by side with the others.
struct Format
{
    const char*   name;
    const char*   bits;
    Kanvo_Bitmap* Picture::*bitmap;
    Kanvo_Color             magenta;
};

constexpr Format Formats[] = {
    {"ARGB32", "8 8 8 8", &Picture::argb32, MagentaKey},
    {"RGB32", "- 8 8 8", &Picture::rgb32, MagentaKey},
    {"RGB565", "5 6 5", &Picture::rgb565, MagentaKey565},
    {"A8", "8", &Picture::a8, 0},
};

}  // namespace

void BlitCopy(Kanvo_BitmapARGB32& target, const Input& input)
{
    constexpr Tov_Int Y = 38;

    Stage(target, "Blit: ARGB32 copied, alpha and all", "flags 0");

    Put(target, input.landscape.rgb32, Scenery, ColumnX(0), Y);
    Put(target, input.landscape.rgb32, Scenery, ColumnX(2), Y);
    Put(target, input.glass.argb32, Glass, ColumnX(0), Y);
    Put(target, input.glass.argb32, Glass, ColumnX(2), Y, Blended);
    ShowAlpha(target, target, {ColumnX(0), Y, 96, 96}, ColumnX(1), Y);
    ShowAlpha(target, target, {ColumnX(2), Y, 96, 96}, ColumnX(3), Y);

    const char* captions[] = {"255: copied", "alpha after it", "254: blended", "alpha after it"};
    for (int column = 0; column < 4; ++column)
    {
        Outline(target, {ColumnX(column), Y, 96, 96}, Edge);
        Caption(target, ColumnCentre(column), 24, captions[column], Quiet, Align::Centre);
    }

    Gradient(target, {4, 154, 194, 76}, 0xFF2F6D8EU, 0xFF173047U);
    Gradient(target, {202, 154, 194, 76}, 0xFF2F6D8EU, 0xFF173047U);
    for (Tov_Int icon = 0; icon < 4; ++icon)
    {
        const Box part = {icon * 48, 0, 48, 48};
        Put(target, input.icons.argb32, part, 5 + icon * 48, 168);
        Put(target, input.icons.argb32, part, 203 + icon * 48, 168, Blended);
    }
    Caption(target, 101, 142, "copied: the ground is gone", Quiet, Align::Centre);
    Caption(target, 299, 142, "blended: the ground shows", Quiet, Align::Centre);
}

void BlitAlpha(Kanvo_BitmapARGB32& target, const Input& input)
{
    struct Step
    {
        const char* name;
        Tov_UByte   alpha;
    };
    constexpr Step    Opacities[] = {{"64", 64}, {"128", 128}, {"192", 192}, {"254", 254}};
    constexpr Tov_Int FirstRow    = 36;
    constexpr Tov_Int SecondRow   = 140;

    Stage(target, "Blit: global opacity", "above ARGB32, below RGB565");
    for (int column = 0; column < 4; ++column)
    {
        const Step& opacity = Opacities[column];
        Caption(target, ColumnCentre(column), 24, opacity.name, Ink, Align::Centre);

        Put(target, input.landscape.rgb32, Scenery, ColumnX(column), FirstRow);
        Put(target, input.glass.argb32, Glass, ColumnX(column), FirstRow, opacity.alpha);
        Outline(target, {ColumnX(column), FirstRow, 96, 96}, Edge);

        Checkerboard(target, {ColumnX(column), SecondRow, 96, 96}, 12);
        Put(target, input.landscape.rgb565, Scenery, ColumnX(column), SecondRow, opacity.alpha);
        Outline(target, {ColumnX(column), SecondRow, 96, 96}, Edge);
    }
}

void BlitColorKey(Kanvo_BitmapARGB32& target, const Input& input)
{
    struct Row
    {
        const char* first;
        const char* second;
        Tov_Flag    flags;
        Tov_UByte   alpha;
    };
    constexpr Row     Rows[]  = {{"without", "a key", 0, 255},
                                 {"BLIT_", "COLORKEY", BLIT_COLORKEY, 255},
                                 {"and", "alpha 128", BLIT_COLORKEY, 128}};
    constexpr Tov_Int Left    = 70;
    constexpr Tov_Int Columns = 110;

    Stage(target, "Blit: one colour left out", "key: magenta");
    for (int row = 0; row < 3; ++row)
    {
        const Tov_Int y = 36 + 68 * row;
        Caption(target, 6, y + 20, Rows[row].first, Quiet);
        Caption(target, 6, y + 32, Rows[row].second, Quiet);
        for (int column = 0; column < 3; ++column)
        {
            const Format& format = Formats[column];
            const Tov_Int x      = Left + Columns * column;
            const Box     ground = {16 + 60 * column, 50, 104, 64};
            Put(target, input.landscape.rgb32, ground, x, y);
            target.Blit(input.spriteKey.*format.bitmap, 64, 64, 0, 0, x + 20, y, Rows[row].flags, Rows[row].alpha,
                        format.magenta);
            Outline(target, {x, y, 104, 64}, Edge);
        }
    }
    for (int column = 0; column < 3; ++column)
    {
        Caption(target, Left + Columns * column + 52, 24, Formats[column].name, Ink, Align::Centre);
    }
}

void BlitFormats(Kanvo_BitmapARGB32& target, const Input& input)
{
    constexpr Box     Part = {60, 22, 96, 80};
    constexpr Box     Look = {36, 28, 16, 12};  // inside Part: the edge of the sun
    constexpr Tov_Int Y    = 46;
    constexpr Tov_Int Zoom = 140;

    Stage(target, "Blit: one picture, four formats", "x 6 below");
    for (int column = 0; column < 4; ++column)
    {
        const Format& format = Formats[column];
        const Tov_Int x      = ColumnX(column);
        Caption(target, ColumnCentre(column), 23, format.name, Ink, Align::Centre);
        Caption(target, ColumnCentre(column), 33, format.bits, Quiet, Align::Centre);
        Put(target, input.landscape.*format.bitmap, Part, x, Y);

        const Box look = {x + Look.x, Y + Look.y, Look.width, Look.height};
        Magnify(target, look, x, Zoom, 6);
        Outline(target, {x, Zoom, 96, 72}, Edge);
        Outline(target, {x, Y, 96, 80}, Edge);
        Outline(target, look, Amber);
    }
    Caption(target, 200, 222, "A8 holds one value per pixel, here brightness: drawn as grey", Quiet, Align::Centre);
}

void BlitPaths(Kanvo_BitmapARGB32& target, const Input& input)
{
    struct Call
    {
        const char* first;
        const char* second;
        Tov_Flag    flags;
        Tov_UByte   alpha;
    };
    constexpr Call    Calls[] = {{"flags 0", "opacity 255", 0, 255},
                                 {"NOCLIP", "opacity 255", BLIT_NOCLIP, 255},
                                 {"NOCLIP", "opacity 254", BLIT_NOCLIP, 254},
                                 {"NOCLIP|KEY", "opacity 255", BLIT_NOCLIP | BLIT_COLORKEY, 255}};
    constexpr Tov_Int Y       = 48;
    constexpr Tov_Int AlphaY  = 148;

    Stage(target, "Blit: where the two paths part", "OPTIMIZED_BLIT");
    for (int column = 0; column < 4; ++column)
    {
        const Call&   call = Calls[column];
        const Tov_Int x    = ColumnX(column);
        Caption(target, ColumnCentre(column), 23, call.first, Ink, Align::Centre);
        Caption(target, ColumnCentre(column), 33, call.second, Quiet, Align::Centre);
        Put(target, input.landscape.rgb32, {Scenery.x, Scenery.y, 96, 80}, x, Y);
        target.Blit(input.glass.argb32, 96, 80, 0, 8, x, Y, call.flags, call.alpha, 0x00123456U);
        ShowAlpha(target, target, {x, Y, 96, 64}, x, AlphaY);
        Outline(target, {x, Y, 96, 80}, column == 1 ? Amber : Edge);
        Outline(target, {x, AlphaY, 96, 64}, Edge);
    }
    Caption(target, ColumnX(0), 135, "alpha afterwards:", Quiet);
    Caption(target, 200, 222, "the second: copied by the portable path, blended by the other", Quiet, Align::Centre);
}

}  // namespace scenes
