// board-instructions: counts what drawing takes on the board, in instructions per pixel or per shape, on the portable and on the
// optimised path. Instructions are not cycles: this says whether a change costs, not how fast a product is. QEMU must be told to
// make each instruction one nanosecond (-icount shift=0), whereupon every run gives the same numbers; board/instructions.py
// does, and compares them with board/INSTRUCTIONS.
//
// Output: name, unit, portable, optimised.
#include <cstdio>

#include "Board.h"
#include "rle_landscape.h"
#include "Scene_BuiltIn.h"

namespace
{

constexpr unsigned InstructionsPerTick = 10;

struct Stage
{
    Kanvo_BitmapARGB32&  target;
    const scenes::Input& input;
    Kanvo_BitmapRLE&     rle;
};

//! An operation, and what it draws, counted in pixels or shapes.
struct Operation
{
    const char* name;
    const char* unit;
    unsigned    units;
    void (*run)(const Stage& stage);
};

constexpr unsigned Turns = 8;  // of operations that draw single shapes

//! The lines of a fan of Turns lines.
template <class Draw>
void Fan(const Draw& draw)
{
    for (unsigned turn = 0; turn < Turns; ++turn)
    {
        const auto step = static_cast<Tov_Value>(turn);
        draw(Kanvo_Vector2(20.3F, 12.7F + 3.0F * step), Kanvo_Vector2(379.6F, 30.2F + 27.0F * step));
    }
}

void Lines(const Stage& stage, Tov_Flag flags, Tov_Value width)
{
    Fan([&](const Kanvo_Vector2& from, const Kanvo_Vector2& to)
        { stage.target.DrawLine(from, to, 0xFFFFC000U, flags, width, width); });
}

void Polygon(const Stage& stage, Tov_Flag flags)
{
    // a bow: concave, and crossing itself
    const Kanvo_Coord2D corners[] = {
        {20.5F, 20.5F}, {380.2F, 219.7F}, {380.2F, 20.5F}, {200.0F, 60.3F}, {20.5F, 219.7F}};
    stage.target.DrawPolygon(corners, 5, 0xFF40C0A0U, flags);
}

const Operation Operations[] = {
    {"Clear", "pixel", 400 * 240, [](const Stage& s) { s.target.Clear(0xFF102030U); }},
    {"Fill", "pixel", 300 * 200, [](const Stage& s) { s.target.FillRect(300, 200, 11, 13, 0xFF102030U, 0); }},
    {"Fill_Translucent", "pixel", 300 * 200,
     [](const Stage& s) { s.target.FillRect(300, 200, 11, 13, 0x80E02030U, 0); }},
    {"Fill_16x16", "fill", 100,
     [](const Stage& s)
     {
         for (Tov_Int at = 0; at < 100; ++at) s.target.FillRect(16, 16, at * 3, at, 0xFF102030U, 0);
     }},
    {"Blit_ARGB32_Copied", "pixel", 240 * 160,
     [](const Stage& s) { s.target.Blit(s.input.landscape.argb32, 240, 160, 0, 0, 11, 13, 0, 255, 0); }},
    {"Blit_ARGB32_Blended", "pixel", 192 * 96,
     [](const Stage& s) { s.target.Blit(s.input.icons.argb32, 192, 96, 0, 0, 11, 13, 0, 254, 0); }},
    {"Blit_RGB32_Blended", "pixel", 240 * 160,
     [](const Stage& s) { s.target.Blit(s.input.landscape.rgb32, 240, 160, 0, 0, 11, 13, 0, 128, 0); }},
    {"Blit_RGB565_Copied", "pixel", 240 * 160,
     [](const Stage& s) { s.target.Blit(s.input.landscape.rgb565, 240, 160, 0, 0, 11, 13, 0, 255, 0); }},
    {"Blit_RGB565_Blended", "pixel", 240 * 160,
     [](const Stage& s) { s.target.Blit(s.input.landscape.rgb565, 240, 160, 0, 0, 11, 13, 0, 128, 0); }},
    {"BlitColor_A8", "pixel", 128 * 64,
     [](const Stage& s) { s.target.BlitColor(s.input.maskFade.a8, 128, 64, 0, 0, 11, 13, 0xFFE02030U, 0, 255); }},
    {"BlitAlpha_RGB565_A8", "pixel", 64 * 64,
     [](const Stage& s)
     { s.target.BlitAlpha(s.input.planet.rgb565, s.input.maskDisc.a8, 64, 64, 0, 0, 11, 13, 0, 255); }},
    {"Blit_RLE8", "pixel", 240 * 160, [](const Stage& s) { s.target.Blit(&s.rle, 240, 160, 0, 0, 11, 13, 0, 255, 0); }},
    {"Stretch_Nearest", "pixel", 360 * 220,
     [](const Stage& s)
     { s.target.StretchBlit(s.input.landscape.argb32, 240, 160, 0, 0, 360, 220, 11, 13, 0, 255, 0); }},
    {"Stretch_Bilinear", "pixel", 360 * 220,
     [](const Stage& s)
     { s.target.StretchBlit(s.input.landscape.argb32, 240, 160, 0, 0, 360, 220, 11, 13, BLIT_BILINEAR, 255, 0); }},
    {"Stretch_Bilinear_565", "pixel", 360 * 220,
     [](const Stage& s)
     { s.target.StretchBlit(s.input.landscape.rgb565, 240, 160, 0, 0, 360, 220, 11, 13, BLIT_BILINEAR, 128, 0); }},
    {"Rot_Nearest", "pixel", 128 * 128,
     [](const Stage& s)
     { s.target.RotBlit(s.input.gauge.argb32, 128, 128, 0, 0, 200, 120, 33, 0, 1, 1, 64, 64, 254, 0); }},
    {"Rot_Bilinear", "pixel", 128 * 128,
     [](const Stage& s)
     { s.target.RotBlit(s.input.gauge.argb32, 128, 128, 0, 0, 200, 120, 33, BLIT_BILINEAR, 1, 1, 64, 64, 254, 0); }},
    {"Line_Thin", "line", Turns, [](const Stage& s) { Lines(s, 0, 1); }},
    {"Line_Thin_AA", "line", Turns, [](const Stage& s) { Lines(s, Kanvo_LF_ANTIALIAS, 1); }},
    {"Line_Thin_HQ", "line", Turns, [](const Stage& s) { Lines(s, Kanvo_LF_HQ_AA, 1); }},
    {"Line_Wide", "line", Turns, [](const Stage& s) { Lines(s, 0, 7); }},
    {"Line_Wide_AA", "line", Turns, [](const Stage& s) { Lines(s, Kanvo_LF_ANTIALIAS, 7); }},
    {"Line_Wide_HQ", "line", Turns, [](const Stage& s) { Lines(s, Kanvo_LF_HQ_AA, 7); }},
    {"Dot_AA_Radius_3", "dot", 100,
     [](const Stage& s)
     {
         for (Tov_Int at = 0; at < 100; ++at)
             s.target.DrawDot(20.3F + 3.1F * static_cast<Tov_Value>(at), 120.7F, 3, 0xFF40C0A0U, Kanvo_LF_ANTIALIAS);
     }},
    {"Polygon", "polygon", 1, [](const Stage& s) { Polygon(s, POLY_NONE); }},
    {"Polygon_AA", "polygon", 1, [](const Stage& s) { Polygon(s, POLY_ANTIALIAS); }},
    {"DebugText", "character", 20,
     [](const Stage& s) { s.target.DebugText("twenty characters, 20", 10, 10, 0xFFFFFFFFU); }},
};

//! Tenths of instructions of one turn of a drawing.
template <class Draw>
std::uint64_t Tenths(const Draw& draw)
{
    const std::uint64_t before = board::Ticks();
    draw();
    return (board::Ticks() - before) * InstructionsPerTick * 10;
}

void PrintCount(std::uint64_t tenths, unsigned units)
{
    const auto each = static_cast<unsigned>(tenths / units);
    std::printf("  %u.%u", each / 10, each % 10);
}

}  // namespace

int main()
{
    Kanvo                 library;
    Kanvo_Screen          screen(&library);
    const scenes::BuiltIn pictures(screen);
    if (!pictures.AreThere())
    {
        return 1;
    }
    Kanvo_BitmapRLE    rle(&screen, rle_landscape, RLE_LANDSCAPE_SIZE);
    Kanvo_BitmapARGB32 target(&screen, 400, 240);
    const Stage        stage = {target, pictures.Get(), rle};
    for (const Operation& operation : Operations)
    {
        std::printf("%s  %s", operation.name, operation.unit);
        for (const Optimized_Blit setting : {OB_NONE, OB_NEON})
        {
            screen.GetRenderState().Set(OPTIMIZED_BLIT, setting);
            target.Lock();
            target.Clear(0xFF405060U);
            PrintCount(Tenths([&] { operation.run(stage); }), operation.units);
            target.Unlock(0, 0, 399, 239);
        }
        std::printf("\n");
    }
    for (const scenes::Scene& scene : scenes::All())
    {
        std::printf("Scene_%s  pixel", scene.name);
        for (const Optimized_Blit setting : {OB_NONE, OB_NEON})
        {
            screen.GetRenderState().Set(OPTIMIZED_BLIT, setting);
            PrintCount(Tenths([&] { scenes::Draw(scene, target, pictures.Get()); }), scene.width * scene.height);
        }
        std::printf("\n");
    }
    std::printf("# stack used by this program: %u bytes\n", static_cast<unsigned>(board::StackUsed()));
    return 0;
}
