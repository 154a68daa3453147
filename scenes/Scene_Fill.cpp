// Scene_Fill: what FillRect does with alpha.
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{
namespace
{

struct NamedColour
{
    const char* name;
    Tov_UInt    rgb;
};

constexpr Tov_UInt Steps     = 16;
constexpr Tov_UInt StepAlpha = 255 / (Steps - 1);

//! One column per step, right of the names.
constexpr Tov_UInt CellWidth = 22;
constexpr Tov_Int  CellsLeft = 44;

Tov_Int CellX(Tov_UInt step)
{
    return CellsLeft + static_cast<Tov_Int>(step * CellWidth);
}

//! The green channel of a pixel, as a number under its column.
void ShowLevels(Kanvo_BitmapARGB32& target, Tov_Int sampleY, Tov_Int y)
{
    for (Tov_UInt step = 0; step < Steps; ++step)
    {
        const Tov_UInt level = PixelAt(target, CellX(step), sampleY) >> 8 & 255;
        Caption(target, CellX(step) + static_cast<Tov_Int>(CellWidth) / 2, y, Words().Number(level).Text(), Ink,
                Align::Centre);
    }
}

//! A set of stripes, repeated; drawn along both axes it makes a cloth.
struct Stripe
{
    Tov_UInt          from;
    Tov_UInt          width;
    Kanvo_ColorARGB32 colour;
};

constexpr Tov_UInt Period    = 62;
constexpr Stripe   Stripes[] = {
      {0, 12, 0xA0D2143CU},  {14, 2, 0xD0FFD166U}, {20, 4, 0x80FFFFFFU},
      {28, 16, 0x90061018U}, {48, 2, 0xC0FFFFFFU}, {52, 8, 0x8022C7B0U},
};

void Weave(Kanvo_BitmapARGB32& target, const Box& cloth)
{
    Fill(target, cloth, 0xFF1D4E63U);
    for (Tov_UInt from = 0; from < cloth.width; from += Period)
    {
        for (const Stripe& stripe : Stripes)
        {
            Fill(target, {cloth.x + static_cast<Tov_Int>(from + stripe.from), cloth.y, stripe.width, cloth.height},
                 stripe.colour);
        }
    }
    for (Tov_UInt from = 0; from < cloth.height; from += Period)
    {
        for (const Stripe& stripe : Stripes)
        {
            Fill(target, {cloth.x, cloth.y + static_cast<Tov_Int>(from + stripe.from), cloth.width, stripe.width},
                 stripe.colour);
        }
    }
}

//! Three squares that share a corner, painted in the order given.
void Squares(Kanvo_BitmapARGB32& target, Tov_Int x, Tov_Int y, const int (&order)[3])
{
    constexpr Box               Places[]  = {{8, 8, 46, 46}, {36, 16, 46, 46}, {20, 36, 46, 46}};
    constexpr Kanvo_ColorARGB32 Colours[] = {0xC0FF5C74U, 0xC04AA8FFU, 0xC0FFB224U};

    Checkerboard(target, {x, y, 90, 90});
    for (const int index : order)
    {
        const Box& place = Places[index];
        Fill(target, {x + place.x, y + place.y, place.width, place.height}, Colours[index]);
    }
    Outline(target, {x, y, 90, 90}, Edge);
}

//! Fills that start from nothing: each leaves more alpha, none ever more than 255.
void GatherAlpha(Kanvo_BitmapARGB32& target, Tov_Int x, Tov_Int y)
{
    constexpr Tov_UInt Columns = 8;
    constexpr Tov_UInt Width   = 24;
    constexpr Tov_UInt Height  = 28;
    static Tov_UInt    buffer[Columns * Width * Height];

    Kanvo_BitmapARGB32 empty(target.GetScreen(), Columns * Width, Height, BBT_RAM, buffer);
    empty.Lock();
    empty.Clear(0);
    for (Tov_UInt column = 1; column < Columns; ++column)
    {
        Fill(empty, {static_cast<Tov_Int>(column * Width), 0, (Columns - column) * Width, Height}, 0x604AA8FFU);
    }
    empty.Unlock(0, 0, 0, 0);

    ShowAlpha(target, empty, {0, 0, Columns * Width, Height}, x, y);
    Outline(target, {x, y, Columns * Width, Height}, Edge);
    for (Tov_UInt column = 0; column < Columns; ++column)
    {
        const auto left = static_cast<Tov_Int>(column * Width);
        Caption(target, x + left + static_cast<Tov_Int>(Width) / 2, y + 32,
                Words().Number(PixelAt(empty, left, 0) >> 24).Text(), Ink, Align::Centre);
    }
}

}  // namespace

void FillSteps(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    constexpr NamedColour Rows[] = {
        {"red", 0xFF2A40U}, {"green", 0x30D060U}, {"blue", 0x2A7BFFU}, {"white", 0xFFFFFFU}, {"black", 0x000000U}};
    constexpr Tov_Int RowHeight = 28;
    constexpr Tov_Int First     = 38;
    constexpr Tov_Int Numbers   = First + 5 * RowHeight + 4;

    Stage(target, "FillRect: from transparent to opaque", "alpha 0 .. 255");
    for (Tov_UInt step = 0; step < Steps; ++step)
    {
        Caption(target, CellX(step) + static_cast<Tov_Int>(CellWidth) / 2, 24, Words().Number(step * StepAlpha).Text(),
                Quiet, Align::Centre);
    }
    Tov_Int y = First;
    for (const NamedColour& row : Rows)
    {
        Caption(target, 6, y + 8, row.name, Ink);
        Fill(target, {CellsLeft, y, Steps * CellWidth, 12}, 0xFFFFFFFFU);
        Fill(target, {CellsLeft, y + 12, Steps * CellWidth, 12}, 0xFF000000U);
        for (Tov_UInt step = 0; step < Steps; ++step)
        {
            Fill(target, {CellX(step), y, CellWidth, 24}, step * StepAlpha << 24 | row.rgb);
        }
        Outline(target, {CellsLeft, y, Steps * CellWidth, 24}, Edge);
        y += RowHeight;
    }
    Caption(target, 6, Numbers, "w on b", Quiet);
    ShowLevels(target, First + 3 * RowHeight + 18, Numbers);
    Caption(target, 6, Numbers + 12, "b on w", Quiet);
    ShowLevels(target, First + 4 * RowHeight + 6, Numbers + 12);
    Caption(target, 6, Numbers + 34, "level = old + ((new - old) * alpha >> 8); an alpha of 255 stores", Quiet);
}

void FillOverlap(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    Stage(target, "FillRect: translucent over translucent", "no source bitmap");

    Weave(target, {8, 36, 3 * Period, 3 * Period});
    Outline(target, {8, 36, 3 * Period, 3 * Period}, Edge);
    Caption(target, 8, 24, "36 stripes, crossed", Quiet);

    Caption(target, 202, 24, "one way round", Quiet);
    Squares(target, 202, 36, {0, 1, 2});
    Caption(target, 304, 24, "and the other", Quiet);
    Squares(target, 304, 36, {2, 1, 0});

    Caption(target, 202, 142, "alpha 96 again and again, on", Quiet);
    Caption(target, 202, 152, "an empty bitmap: its alpha", Quiet);
    GatherAlpha(target, 202, 168);
}

}  // namespace scenes
