// Scene_Rot: what rotated blits do: needles over a dial, icons at all angles, pictures through maps; how parts of a picture
// meet; and where a turned picture lands.
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{
namespace
{

//! A picture to be turned, the point that it turns about, and its scale.
struct Turned
{
    Box       part;
    Tov_Value pivotX;
    Tov_Value pivotY;
    Tov_Value scale = 1.0F;
};

//! RotBlit with what rarely changes left out: the pivot lands on (x, y).
void Turn(Kanvo_BitmapARGB32& target, Kanvo_Bitmap* source, const Turned& from, Tov_Value x, Tov_Value y,
          Tov_Value degrees, Tov_Flag flags, Tov_UByte alpha = Blended)
{
    target.RotBlit(source, from.part.width, from.part.height, static_cast<Tov_UInt>(from.part.x),
                   static_cast<Tov_UInt>(from.part.y), x, y, degrees, flags, from.scale, from.scale, from.pivotX,
                   from.pivotY, alpha, 0);
}

constexpr NamedFlags Filters[] = {{"nearest", 0}, {"BLIT_BILINEAR", BLIT_BILINEAR}};

//! A needle that points up, with a transparent border around it: a filter needs something to fade into. It turns about
//! the middle of its lower end.
class Needle
{
public:
    static constexpr Tov_UInt Width  = 8;
    static constexpr Tov_UInt Length = 52;

    //! All of it, turned about its hub.
    static constexpr Turned Whole = {{0, 0, Width, Length}, 4.0F, 48.0F};

    Needle() : argb32(nullptr, Width, Length, BBT_RAM, m_words), a8(nullptr, Width, Length, BBT_RAM, m_bytes)
    {
        for (Tov_UInt at = 0; at < Width * Length; ++at)
        {
            const Tov_UInt x          = at % Width;
            const Tov_UInt y          = at / Width;
            const Tov_UInt fromMiddle = x < Width / 2 ? Width / 2 - 1 - x : x - Width / 2;
            const Tov_UInt reach      = 2 * y / Length;  // it gets wider towards the hub
            const bool     inside     = y > 0 && y + 1 < Length && fromMiddle <= reach + 1;
            m_words[at]               = !inside ? Rose & 0x00FFFFFFU : fromMiddle <= reach ? 0xFFFFE0D8U : Rose;
            m_bytes[at]               = inside ? 255 : 0;
        }
    }

private:
    Tov_UInt  m_words[Width * Length];
    Tov_UByte m_bytes[Width * Length];

public:
    Kanvo_BitmapARGB32 argb32;
    Kanvo_BitmapA8     a8;
};

constexpr Kanvo_ColorARGB32 Rainbow[] = {Rose, Amber, 0xFFB8E04AU, Teal, Sky, 0xFF8C5CFFU};

}  // namespace

void RotNeedles(Kanvo_BitmapARGB32& target, const Input& input)
{
    static Needle needle;

    Stage(target, "RotBlit: a needle, 24 steps", "below: 4 x");
    for (int column = 0; column < 3; ++column)
    {
        const Tov_Int left    = 4 + 132 * column;
        const auto    centreX = static_cast<Tov_Value>(left) + 64.0F;
        const bool    filled  = column == 2;
        Caption(target, left + 64, 21, filled ? "RotBlitColor" : Filters[column].name, Ink, Align::Centre);
        Put(target, input.gauge.argb32, {0, 0, 128, 128}, left, 30, Blended);
        for (int step = 0; step < 24; ++step)
        {
            const auto degrees = static_cast<Tov_Value>(15 * step);
            if (filled)
            {
                const Turned& from = Needle::Whole;
                target.RotBlitColor(&needle.a8, from.part.width, from.part.height, 0, 0, centreX, 94.0F,
                                    Rainbow[step / 4], degrees, BLIT_BILINEAR, 1.0F, 1.0F, from.pivotX, from.pivotY,
                                    255);
            }
            else
            {
                Turn(target, &needle.argb32, Needle::Whole, centreX, 94.0F, degrees, Filters[column].flags);
            }
        }
        Look(target, {left + 70, 42, 32, 18}, left, 162, 4);
    }
}

void RotIcons(Kanvo_BitmapARGB32& target, const Input& input)
{
    Stage(target, "Turned icons, and a picture through them", "15 degrees each");

    // Four icons, each at two angles and twice the filter.
    for (int row = 0; row < 2; ++row)
    {
        const Tov_Int y = 20 + 66 * row;
        Caption(target, 6, y + 2, Filters[row].name, Ink);
        for (int icon = 0; icon < 6; ++icon)
        {
            const Box    part = {48 * (icon % 4), 48 * (icon / 4), 48, 48};
            const Turned from = {part, 24.0F, 24.0F};
            Turn(target, input.icons.argb32, from, 36.0F + 66.0F * static_cast<Tov_Value>(icon),
                 static_cast<Tov_Value>(y) + 36.0F, 15.0F * static_cast<Tov_Value>(icon), Filters[row].flags);
        }
    }

    // The landscape where the icons' alpha lets it through: one place in both bitmaps.
    Caption(target, 6, 156, "RotBlitAlpha: a landscape in the shape of icons", Quiet);
    Checkerboard(target, {0, 166, 400, 74}, 8, Panel, Night);
    for (int icon = 0; icon < 6; ++icon)
    {
        const auto x       = static_cast<Tov_UInt>(48 * (icon % 4));
        const auto y       = static_cast<Tov_UInt>(48 * (icon / 4));
        const auto degrees = 15.0F * static_cast<Tov_Value>(icon);
        target.RotBlitAlpha(input.landscape.argb32, input.icons.argb32, 48, 48, x, y,
                            36.0F + 66.0F * static_cast<Tov_Value>(icon), 203.0F, degrees, BLIT_BILINEAR, 1.2F, 1.2F,
                            24.0F, 24.0F, static_cast<Tov_UByte>(255 - 15 * icon));
    }
}

void RotSeams(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    constexpr Tov_UInt  Size     = 48;
    constexpr Tov_Value Angles[] = {0.0F, 45.0F, 90.0F, 180.0F, 270.0F};

    // A board of 6 x 6 fields. Its quarters have colours of their own, so that a turn can be told from the next.
    static Tov_UInt buffer[Size * Size];
    for (Tov_UInt at = 0; at < Size * Size; ++at)
    {
        const Tov_UInt x    = at % Size;
        const Tov_UInt y    = at / Size;
        const bool     dark = (x / 8 + y / 8) % 2 != 0;
        const auto     tint = x < Size / 2 ? y < Size / 2 ? Amber : Teal : y < Size / 2 ? Sky : Quiet;
        buffer[at]          = dark ? Night : tint;
    }
    Kanvo_BitmapARGB32 board(target.GetScreen(), Size, Size, BBT_RAM, buffer);

    Stage(target, "RotBlit: four quarters make one board", "rose would shine through");
    for (int column = 0; column < 5; ++column)
    {
        const Tov_Int left   = 3 + 79 * column;
        const auto    middle = static_cast<Tov_Value>(left) + 39.0F;
        Caption(target, left + 39, 20, Words().Number(static_cast<Tov_UInt>(Angles[column])).Text(), Ink,
                Align::Centre);
        for (int row = 0; row < 2; ++row)
        {
            const Tov_Int top = 30 + 74 * row;
            Fill(target, {left, top, 78, 72}, Rose);
            for (int quarter = 0; quarter < 4; ++quarter)
            {
                const Box  part   = {24 * (quarter % 2), 24 * (quarter / 2), 24, 24};
                const auto pivotX = 24.0F - static_cast<Tov_Value>(part.x);  // the middle of the board, seen from here
                const auto pivotY = 24.0F - static_cast<Tov_Value>(part.y);
                Turn(target, &board, {part, pivotX, pivotY}, middle, static_cast<Tov_Value>(top) + 36.0F,
                     Angles[column], 0, row == 0 ? 255 : 128);
            }
        }
        Look(target, {left + 30, 60, 19, 15}, left + 1, 179, 4);
    }
}

void RotPivot(Kanvo_BitmapARGB32& target, const Input& input)
{
    struct Example
    {
        const char* first;
        const char* second;
        Tov_Value   degrees;
        Tov_Value   stretchX;
        Tov_Value   stretchY;
        Tov_Value   pivotX;
        Tov_Value   pivotY;
    };
    constexpr Example Examples[] = {{"0 degrees", "", 0.0F, 1.0F, 1.0F, 8.0F, 40.0F},
                                    {"30 degrees", "clockwise", 30.0F, 1.0F, 1.0F, 8.0F, 40.0F},
                                    {"-60 degrees", "", -60.0F, 1.0F, 1.0F, 8.0F, 40.0F},
                                    {"30 degrees", "pivot: middle", 30.0F, 1.0F, 1.0F, 24.0F, 24.0F},
                                    {"stretch", "1.5 and 1", 0.0F, 1.5F, 1.0F, 8.0F, 40.0F},
                                    {"30 degrees", "and stretch", 30.0F, 1.5F, 1.0F, 8.0F, 40.0F},
                                    {"stretch", "-1 and 1", 0.0F, -1.0F, 1.0F, 8.0F, 40.0F},
                                    {"90 degrees", "", 90.0F, 1.0F, 1.0F, 8.0F, 40.0F}};

    Stage(target, "RotBlit: the pivot lands on the cross", "x right, y down");
    for (int index = 0; index < 8; ++index)
    {
        const Example& example = Examples[index];
        const Tov_Int  left    = 4 + 99 * (index % 4);
        const Tov_Int  top     = 22 + 109 * (index / 4);
        const Tov_Int  crossX  = left + 40;
        const Tov_Int  crossY  = top + 64;
        Fill(target, {left, top, 96, 106}, Panel);
        Outline(target, {left, top, 96, 106}, Edge);
        target.SetCliprect(static_cast<Tov_UInt>(left), static_cast<Tov_UInt>(top), static_cast<Tov_UInt>(left) + 95,
                           static_cast<Tov_UInt>(top) + 105);
        // the bell, faint where it would be untouched and with its pivot on the cross
        Turn(target, input.icons.argb32, {{0, 48, 48, 48}, example.pivotX, example.pivotY},
             static_cast<Tov_Value>(crossX), static_cast<Tov_Value>(crossY), 0.0F, 0, 48);
        target.RotBlit(input.icons.argb32, 48, 48, 0, 48, static_cast<Tov_Value>(crossX),
                       static_cast<Tov_Value>(crossY), example.degrees, BLIT_BILINEAR, example.stretchX,
                       example.stretchY, example.pivotX, example.pivotY, Blended, 0);
        target.SetCliprect(0, 0, target.GetWidth() - 1, target.GetHeight() - 1);
        Fill(target, {crossX - 6, crossY, 13, 1}, Amber);
        Fill(target, {crossX, crossY - 6, 1, 13}, Amber);
        Caption(target, left + 4, top + 4, example.first, Ink);
        Caption(target, left + 4, top + 14, example.second, Quiet);
    }
}

void RotPixels(Kanvo_BitmapARGB32& target, const Input& input)
{
    constexpr Tov_Int  Top     = 40;
    constexpr Tov_Int  Lefts[] = {4, 204};
    constexpr Tov_UInt Size    = 48;
    constexpr Tov_UInt CutX    = 20;
    constexpr Tov_UInt CutY    = 29;
    const Turned       star    = {{144, 0, 48, 48}, 24.0F, 24.0F};

    Stage(target, "RotBlit: a clipped draw is a part of the whole", "3 x");
    const auto draw = [&](Tov_Int left)
    {
        Turn(target, input.icons.argb32, star, static_cast<Tov_Value>(left) + 24.0F,
             static_cast<Tov_Value>(Top) + 24.0F, 20.0F, BLIT_BILINEAR);
    };
    for (const Tov_Int left : Lefts)
    {
        Fill(target, {left, Top, Size, Size}, Panel);
    }
    draw(Lefts[0]);
    constexpr Box Pieces[] = {{0, 0, CutX, CutY},
                              {CutX, 0, Size - CutX, CutY},
                              {0, CutY, CutX, Size - CutY},
                              {CutX, CutY, Size - CutX, Size - CutY}};
    for (const Box& piece : Pieces)
    {
        const auto x = static_cast<Tov_UInt>(Lefts[1] + piece.x);
        const auto y = static_cast<Tov_UInt>(Top + piece.y);
        target.SetCliprect(x, y, x + piece.width - 1, y + piece.height - 1);
        draw(Lefts[1]);
    }
    target.SetCliprect(0, 0, target.GetWidth() - 1, target.GetHeight() - 1);

    Tov_UInt others = 0;
    Tov_UInt most   = 0;  // difference in one channel
    for (Tov_Int pixel = 0; pixel < static_cast<Tov_Int>(Size * Size); ++pixel)
    {
        const Tov_Int           x     = pixel % static_cast<Tov_Int>(Size);
        const Tov_Int           y     = Top + pixel / static_cast<Tov_Int>(Size);
        const Kanvo_PixelARGB32 one   = PixelAt(target, Lefts[0] + x, y);
        const Kanvo_PixelARGB32 other = PixelAt(target, Lefts[1] + x, y);
        others += one != other ? 1U : 0U;
        for (int shift = 0; shift < 32; shift += 8)
        {
            const Tov_UInt a     = one >> shift & 255;
            const Tov_UInt b     = other >> shift & 255;
            const Tov_UInt apart = a > b ? a - b : b - a;
            most                 = apart > most ? apart : most;
        }
    }
    Caption(target, Lefts[0], 24, "drawn whole", Ink);
    Caption(target, Lefts[1], 24, "drawn in four clip rectangles", Ink);
    for (const Tov_Int left : Lefts)
    {
        Magnify(target, {left, Top, Size, Size}, left + 50, Top, 3);
        Outline(target, {left + 50, Top, 3 * Size, 3 * Size}, Edge);
    }
    for (const Box& piece : Pieces)
    {
        Outline(target, {Lefts[1] + 50 + 3 * piece.x, Top + 3 * piece.y, 3 * piece.width - 1, 3 * piece.height - 1},
                Amber);
    }
    Caption(target, 200, 204,
            Words().Number(others).Add(" of 2304 pixels differ, by ").Number(most).Add(" of 255 at most").Text(), Ink,
            Align::Centre);
    Caption(target, 200, 218, "a pixel is drawn when its centre lies inside the turned rectangle", Quiet,
            Align::Centre);
}

}  // namespace scenes
