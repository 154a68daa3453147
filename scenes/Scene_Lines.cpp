// Scene_Lines: what DrawLine does: fans in three qualities, widths, tapers, caps, patterns, and lines cut at every
// edge.
#include "Kanvo_Pattern.h"
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{
namespace
{

//! The point at an angle and a distance from a centre.
Kanvo_Vector2 Around(Tov_Value x, Tov_Value y, Tov_Value degrees, Tov_Value distance)
{
    double sine   = 0.0;
    double cosine = 0.0;
    Kanvo_SinCosDegrees(degrees, sine, cosine);
    return {x + distance * static_cast<Tov_Value>(cosine), y + distance * static_cast<Tov_Value>(sine)};
}

//! Lines of one kind in all directions, leaving a hole in the middle where they would crowd.
void Fan(Kanvo_BitmapARGB32& target, Tov_Value x, Tov_Value y, Tov_Value inner, Tov_Value outer, Tov_UInt count,
         Tov_Flag flags, Tov_Value width, Kanvo_ColorARGB32 colour, Tov_Value endWidth = 0.0F)
{
    for (Tov_UInt index = 0; index < count; ++index)
    {
        const auto degrees = 360.0F * static_cast<Tov_Value>(index) / static_cast<Tov_Value>(count);
        target.DrawLine(Around(x, y, degrees, inner), Around(x, y, degrees, outer), colour, flags, width, endWidth);
    }
}

void Polyline(Kanvo_BitmapARGB32& target, const Kanvo_Vector2* points, Tov_UInt count, Tov_Flag flags, Tov_Value width,
              Kanvo_ColorARGB32 colour)
{
    for (Tov_UInt index = 1; index < count; ++index)
    {
        target.DrawLine(points[index - 1], points[index], colour, flags, width, 0.0F);
    }
}

constexpr Kanvo_ColorARGB32 Rainbow[] = {Rose, Amber, Teal, Sky};

}  // namespace

void LineFans(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    Stage(target, "DrawLine: 72 thin lines", "below: 4 x");
    for (Tov_Int column = 0; column < 3; ++column)
    {
        const NamedFlags& quality = Qualities[column];
        const Tov_Int     left    = 4 + column * 132;
        Caption(target, left + 64, 22, quality.name, Ink, Align::Centre);
        Fan(target, static_cast<Tov_Value>(left) + 64.25F, 94.25F, 9.0F, 60.0F, 72, quality.flags, 1.0F, Ink);
        Magnify(target, {left + 92, 74, 32, 18}, left, 162, 4);
        Outline(target, {left, 162, 128, 72}, Edge);
    }
}

void LineWidths(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    constexpr Tov_Value Widths[] = {2.0F, 3.0F, 5.0F, 12.0F};

    Stage(target, "DrawLine: widths 2, 3, 5, 12, tapered", "right: 4 x");
    for (Tov_Int row = 0; row < 3; ++row)
    {
        const NamedFlags& quality = Qualities[row];
        const Tov_Int     top     = 19 + row * 74;
        Caption(target, 4, top + 32, quality.name, Ink);
        for (Tov_Int column = 0; column < 4; ++column)
        {
            const auto x     = static_cast<Tov_Value>(88 + column * 53);
            const auto y     = static_cast<Tov_Value>(top) + 36.5F;
            const auto width = Widths[column];
            // fewer of the wider ones, so that none touch
            Fan(target, x, y, 5.0F + width, 26.0F,
                column < 2   ? 24
                : column < 3 ? 16
                             : 8,
                quality.flags, width, Rainbow[column]);
        }
        Fan(target, 303.0F, static_cast<Tov_Value>(top) + 36.5F, 25.0F, 6.0F, 12, quality.flags, 8.0F, Ink, 1.0F);
        Magnify(target, {147, top + 16, 16, 17}, 334, top + 3, 4);
        Outline(target, {334, top + 3, 64, 68}, Edge);
    }
}

void LineCaps(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    constexpr Tov_Flag Caps = Kanvo_LF_ROUND_START | Kanvo_LF_ROUND_END;

    Stage(target, "DrawLine: caps, tapers, joints", "right: 4 x");
    for (Tov_Int row = 0; row < 3; ++row)
    {
        const NamedFlags& quality = Qualities[row];
        const auto        top     = static_cast<Tov_Value>(20 + row * 73);
        Caption(target, 4, static_cast<Tov_Int>(top), quality.name, Ink);
        target.DrawLine({12, top + 22}, {60, top + 18}, Rose, quality.flags, 9, 0);
        target.DrawLine({12, top + 38}, {60, top + 34}, Amber, quality.flags | Kanvo_LF_ROUND_END, 9, 0);
        target.DrawLine({12, top + 56}, {60, top + 52}, Teal, quality.flags | Caps, 14, 5);
        const Kanvo_Vector2 zigzag[] = {{80, top + 58},  {92, top + 14},  {108, top + 54}, {128, top + 20},
                                        {152, top + 50}, {180, top + 26}, {216, top + 44}, {256, top + 34}};
        Polyline(target, zigzag, 8, quality.flags | Caps, 8.0F, Sky);
        // the first joint is where caps have to close the gap
        const Tov_Int y = static_cast<Tov_Int>(top) + 2;
        Magnify(target, {78, static_cast<Tov_Int>(top) + 5, 32, 17}, 268, y, 4);
        Outline(target, {268, y, 128, 68}, Edge);
    }
}

void LinePatterns(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    static Kanvo_Pattern          dashes;
    static Kanvo_Pattern          blend;
    constexpr Tov_Value           Lengths[] = {12.0F, 5.0F, 2.0F, 5.0F};
    constexpr Kanvo_Pattern::Stop Stops[]   = {{0.0F, Rose}, {0.25F, Amber}, {0.5F, Teal}, {0.75F, Sky}, {1.0F, Rose}};
    Kanvo_RenderState&            state     = target.GetScreen()->GetRenderState();
    const Tov_Value               before    = state.GetValue(LINEPATTERNOFFSET);
    void* const                   pattern   = state.GetPtr(LINEPATTERN);
    const Tov_Value               factor    = state.GetValue(I_LINPATFACTOR);
    const Tov_Value               length    = state.GetValue(I_LINPATREFLEN);
    dashes.SetDashes(Lengths, 4, Ink, Edge);
    blend.SetStops(Stops, 5, 40.0F);

    Stage(target, "DrawLine: patterns", "ADVANCE, RESCALE, flipped");
    for (Tov_Int row = 0; row < 3; ++row)
    {
        const NamedFlags& quality = Qualities[row];
        const auto        top     = static_cast<Tov_Value>(20 + row * 73);
        const Tov_Flag    flags   = quality.flags | Kanvo_LF_PATTERN;
        Caption(target, 4, static_cast<Tov_Int>(top), quality.name, Ink);

        // along a polyline, with and without going on
        const Kanvo_Vector2 wave[] = {{10, top + 30},  {40, top + 14},  {70, top + 30}, {100, top + 14},
                                      {130, top + 30}, {160, top + 14}, {190, top + 30}};
        Kanvo_Vector2       lower[7];
        for (int index = 0; index < 7; ++index) lower[index] = {wave[index].x, wave[index].y + 26};
        dashes.Use(state);
        state.Set(LINEPATTERNOFFSET, 0.0F);
        Polyline(target, wave, 7, flags | Kanvo_LF_ADVANCEPATTERN, 3.5F, Ink);
        blend.Use(state);
        state.Set(LINEPATTERNOFFSET, 0.0F);
        Polyline(target, lower, 7, flags | Kanvo_LF_ADVANCEPATTERN, 6.0F, Ink);

        // one period on each line, whatever its length; then both directions
        state.Set(LINEPATTERNOFFSET, 0.0F);
        for (int index = 0; index < 4; ++index)
        {
            const auto y = top + 14.0F + 9.0F * static_cast<Tov_Value>(index);
            target.DrawLine({206, y}, {240 + 20 * static_cast<Tov_Value>(index), y + 4}, Ink,
                            flags | Kanvo_LF_RESCALEPATTERN, 5, 0);
        }
        target.DrawLine({206, top + 54}, {300, top + 54}, Ink, flags, 5, 0);
        target.DrawLine({300, top + 64}, {206, top + 64}, Ink, flags, 5, 0);
        const Tov_Int y = static_cast<Tov_Int>(top) + 2;
        Magnify(target, {28, static_cast<Tov_Int>(top) + 8, 20, 17}, 316, y, 4);
        Outline(target, {316, y, 80, 68}, Edge);
    }
    state.Set(LINEPATTERN, pattern);
    state.Set(I_LINPATFACTOR, factor);
    state.Set(I_LINPATREFLEN, length);
    state.Set(LINEPATTERNOFFSET, before);
}

void LineClips(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    Stage(target, "DrawLine: cut at every edge", "below: 4 x");
    for (Tov_Int column = 0; column < 3; ++column)
    {
        const NamedFlags& quality = Qualities[column];
        const Tov_Int     left    = 4 + column * 132;
        const Box         window  = {left + 26, 52, 76, 76};
        const auto        x       = static_cast<Tov_Value>(left) + 64.3F;
        Caption(target, left + 64, 22, quality.name, Ink, Align::Centre);
        Fan(target, x, 90.3F, 12.0F, 62.0F, 24, quality.flags, 1.0F, Edge);  // what would be there
        Fill(target, window, Panel);
        Outline(target, window, Amber);
        target.SetCliprect(static_cast<Tov_UInt>(window.x), static_cast<Tov_UInt>(window.y),
                           static_cast<Tov_UInt>(window.x) + window.width - 1,
                           static_cast<Tov_UInt>(window.y) + window.height - 1);
        Fan(target, x, 90.3F, 12.0F, 62.0F, 24, quality.flags, 1.0F, Ink);
        Fan(target, x, 90.3F, 30.0F, 62.0F, 8, quality.flags | Kanvo_LF_ROUND_START, 7.0F, Teal);
        target.SetCliprect(0, 0, target.GetWidth() - 1, target.GetHeight() - 1);
        Magnify(target, {window.x + 50, window.y - 2, 32, 18}, left, 162, 4);
        Outline(target, {left, 162, 128, 72}, Edge);
    }
}

}  // namespace scenes
