// Scene_Dashboard: what the drawing calls are for. Nothing here is special; the layers simply go from back to front.
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{
namespace
{

constexpr Box Photo = {152, 24, 240, 160};

void DrawGround(Kanvo_BitmapARGB32& target)
{
    Gradient(target, {0, 0, 400, 240}, 0xFF26395EU, 0xFF0A0F1CU);
    Fill(target, {0, 0, 400, 16}, 0x60000000U);
    Caption(target, 8, 4, "KANVO", Ink);
    Caption(target, 200, 4, "07:42", Ink, Align::Centre);
    Caption(target, 392, 4, "lake \x1B 12 km", Quiet, Align::Right);
}

//! A photograph with a soft shadow and a thin light border.
void DrawPhoto(Kanvo_BitmapARGB32& target, const Input& input)
{
    for (Tov_Int ring = 5; ring > 0; --ring)
    {
        const auto grown = static_cast<Tov_UInt>(2 * ring);
        Fill(target, {Photo.x - ring, Photo.y - ring + 2, Photo.width + grown, Photo.height + grown}, 0x18000000U);
    }
    Put(target, input.landscape.rgb565, {0, 0, Photo.width, Photo.height}, Photo.x, Photo.y);
    Outline(target, Photo, 0xFFDFE8F2U);
    Paint(target, input.maskGlyph.a8, {0, 0, 128, 32}, Photo.x + 105, Photo.y + 4, 0xFF000000U, 110);
    Paint(target, input.maskGlyph.a8, {0, 0, 128, 32}, Photo.x + 104, Photo.y + 2, 0xFFFFFFFFU, 235);
}

//! A glass panel that lies on the photograph.
void DrawWeather(Kanvo_BitmapARGB32& target, const Input& input)
{
    constexpr Tov_Int X = Photo.x + 8;
    constexpr Tov_Int Y = Photo.y + 60;
    Put(target, input.glass.argb32, {0, 0, 96, 96}, X, Y, Blended);
    Put(target, input.icons.argb32, {48, 48, 48, 48}, X + 12, Y + 8, Blended);
    Put(target, input.icons.argb32, {96, 48, 48, 48}, X + 32, Y + 16, Blended);
    Headline(target, X + 49, Y + 66, "21\xB0", 2, 0xB0102030U, Align::Centre);
    Headline(target, X + 48, Y + 65, "21\xB0", 2, Ink, Align::Centre);
}

void DrawBar(Kanvo_BitmapARGB32& target, Tov_Int y, const char* name, Tov_UInt percent, Kanvo_ColorARGB32 colour)
{
    Caption(target, 14, y, name, Quiet);
    Fill(target, {44, y + 1, 96, 6}, 0x80000000U);
    Fill(target, {44, y + 1, 96 * percent / 100, 6}, colour);
    Fill(target, {44, y + 1, 96 * percent / 100, 2}, 0x50FFFFFFU);
}

//! A slim pointer from the hub to 58, leaning right by 0.396 pixels per row. Its edges are as opaque as the part of the
//! pixel that they cover.
void DrawPointer(Kanvo_BitmapARGB32& target, Tov_Int centreX, Tov_Int centreY)
{
    constexpr Tov_Int  Lean = 101;  // 0.396 in 1/256 of a pixel
    constexpr Tov_UInt Rgb  = 0xFF5C74U;
    for (Tov_Int up = 9; up <= 42; ++up)
    {
        const Tov_Int half  = 420 - up * 7;  // thinner towards the tip, in 1/256
        const Tov_Int left  = centreX * 256 + up * Lean - half;
        const Tov_Int right = centreX * 256 + up * Lean + half;
        const Tov_Int first = left / 256;
        const Tov_Int last  = right / 256;
        const auto    row   = centreY - up;
        const auto    begin = static_cast<Tov_UInt>(255 - left % 256);
        const auto    end   = static_cast<Tov_UInt>(right % 256);
        Fill(target, {first, row, 1, 1}, begin << 24 | Rgb);
        Fill(target, {first + 1, row, static_cast<Tov_UInt>(last - first - 1), 1}, 0xFF000000U | Rgb);
        Fill(target, {last, row, 1, 1}, end << 24 | Rgb);
    }
}

void DrawGauge(Kanvo_BitmapARGB32& target, const Input& input)
{
    constexpr Tov_Int X = 12;
    constexpr Tov_Int Y = 24;
    Put(target, input.gauge.argb32, {0, 0, 128, 128}, X, Y, Blended);
    DrawPointer(target, X + 64, Y + 64);
    Headline(target, X + 65, Y + 89, "58", 2, Ink, Align::Centre);
    Caption(target, X + 65, Y + 105, "km/h", Quiet, Align::Centre);
    DrawBar(target, 158, "fuel", 72, Teal);
    DrawBar(target, 172, "oil", 46, Amber);
}

//! A number in a small red disc.
void DrawBadge(Kanvo_BitmapARGB32& target, Tov_Int x, Tov_Int y, const char* text)
{
    constexpr Tov_UInt Widths[] = {5, 9, 11, 11, 13, 13, 13, 13, 13, 11, 11, 9, 5};
    for (Tov_Int row = 0; row < 13; ++row)
    {
        Fill(target, {x - static_cast<Tov_Int>(Widths[row] / 2), y + row, Widths[row], 1}, 0xFFE8304AU);
    }
    Caption(target, x - 2, y + 3, text, Ink);
}

void DrawDock(Kanvo_BitmapARGB32& target, const Input& input)
{
    constexpr Tov_Int Top    = 190;
    constexpr Tov_Int Chosen = 2;
    Fill(target, {0, Top, 400, 50}, 0x28FFFFFFU);
    Fill(target, {0, Top, 400, 1}, 0x60FFFFFFU);
    for (Tov_Int icon = 0; icon < 8; ++icon)
    {
        const Tov_Int x = 8 + 48 * icon;
        if (icon == Chosen)
        {
            Gradient(target, {x, Top + 1, 48, 49}, 0x104AA8FFU, 0xA04AA8FFU);
        }
        Put(target, input.icons.argb32, {icon % 4 * 48, icon / 4 * 48, 48, 48}, x, Top + 1, Blended);
    }
    DrawBadge(target, 8 + 48 * 4 + 36, Top + 5, "3");
}

}  // namespace

void Dashboard(Kanvo_BitmapARGB32& target, const Input& input)
{
    DrawGround(target);
    DrawPhoto(target, input);
    DrawWeather(target, input);
    DrawGauge(target, input);
    DrawDock(target, input);
}

}  // namespace scenes
