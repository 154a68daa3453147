// Scene_Stretch: what scaled blits do: smaller and larger, nearest and filtered, keyed, through maps, in their aspect; and
// which pixel of the source each pixel of the target takes.
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{
namespace
{

//! StretchBlit with what rarely changes left out.
void Scale(Kanvo_BitmapARGB32& target, Kanvo_Bitmap* source, const Box& part, const Box& to, Tov_Flag flags,
           Tov_UByte alpha = Blended, Kanvo_Color key = 0)
{
    target.StretchBlit(source, part.width, part.height, static_cast<Tov_UInt>(part.x), static_cast<Tov_UInt>(part.y),
                       to.width, to.height, to.x, to.y, flags, alpha, key);
}

constexpr NamedFlags Filters[] = {{"nearest", 0}, {"filtered", BLIT_BILINEAR}};

}  // namespace

void StretchScales(Kanvo_BitmapARGB32& target, const Input& input)
{
    struct Step
    {
        const char* name;
        Box         part;  // of the landscape, around the sun
        Tov_UInt    width;
        Tov_UInt    height;
        Tov_Int     lookX;  // where to look closely: an edge of the sun
        Tov_Int     lookY;
    };
    constexpr Step Steps[] = {{"0.37 x", {0, 0, 240, 160}, 89, 59, 24, 20},
                              {"1 x", {60, 26, 96, 64}, 96, 64, 32, 36},
                              {"1.5 x", {72, 40, 64, 42}, 96, 63, 36, 34},
                              {"4 x", {88, 54, 24, 16}, 96, 64, 48, 44}};

    Stage(target, "StretchBlit: one picture, four scales", "below each: 4 x");
    for (int row = 0; row < 2; ++row)
    {
        const NamedFlags& filter = Filters[row];
        const Tov_Int     y      = 30 + 108 * row;
        for (int column = 0; column < 4; ++column)
        {
            const Step&   step = Steps[column];
            const Tov_Int x    = 4 + 99 * column;
            Caption(target, x, y - 10, column == 0 ? filter.name : step.name, column == 0 ? Ink : Quiet);
            if (column == 0)
            {
                Caption(target, x + 95, y - 10, step.name, Quiet, Align::Right);
            }
            Scale(target, input.landscape.argb32, step.part, {x, y, step.width, step.height}, filter.flags);
            Look(target, {x + step.lookX, y + step.lookY, 24, 7}, x, y + 67, 4);
        }
    }
}

void StretchKeyed(Kanvo_BitmapARGB32& target, const Input& input)
{
    constexpr Box Head = {4, 2, 56, 48};  // of the figure

    struct Column
    {
        const char*   name;
        Kanvo_Bitmap* Picture::*bitmap;
        Tov_Flag                flags;
    };
    constexpr Column Columns[] = {{"key, nearest", &Picture::rgb32, BLIT_COLORKEY},
                                  {"key, filtered", &Picture::rgb32, BLIT_COLORKEY | BLIT_BILINEAR},
                                  {"no key, filtered", &Picture::rgb32, BLIT_BILINEAR}};

    Stage(target, "StretchBlit: keyed edges", "2.3 x, then 4 x of that");
    for (int column = 0; column < 3; ++column)
    {
        const Column& kind = Columns[column];
        const Tov_Int x    = 4 + 132 * column;
        const Box     to   = {x, 33, 128, 110};
        Caption(target, x + 64, 21, kind.name, Ink, Align::Centre);
        Put(target, input.landscape.rgb32, {40, 20, to.width, to.height}, to.x, to.y);
        Scale(target, input.spriteKey.*kind.bitmap, Head, to, kind.flags, 255, MagentaKey);
        Look(target, {x + 10, 60, 32, 20}, x, 146, 4);
    }
    Caption(target, 200, 229, "filtered, one key among the four neighbours leaves a pixel out", Quiet, Align::Centre);
}

void StretchMaps(Kanvo_BitmapARGB32& target, const Input& input)
{
    Stage(target, "Scaled maps, and BLIT_ASPECT", "all BLIT_BILINEAR");

    // One word in one colour, at four sizes.
    struct Word
    {
        Tov_Int           x;
        Tov_UInt          width;
        Kanvo_ColorARGB32 colour;
    };
    constexpr Word Words[] = {{4, 40, Amber}, {48, 64, Teal}, {116, 96, Rose}, {216, 176, Sky}};
    for (const Word& word : Words)
    {
        target.StretchBlitColor(input.maskGlyph.a8, 128, 32, 0, 0, word.width, word.width / 4, word.x, 24, word.colour,
                                BLIT_BILINEAR, 255);
    }

    // A picture through a disc, which is stretched with it.
    struct Hole
    {
        Box       to;
        Tov_UByte alpha;
    };
    constexpr Hole Holes[] = {{{4, 72, 96, 96}, 255},
                              {{104, 72, 48, 96}, 255},
                              {{156, 72, 96, 48}, 255},
                              {{156, 124, 44, 44}, 160},
                              {{208, 124, 44, 44}, 80}};
    for (const Hole& hole : Holes)
    {
        target.StretchBlitAlpha(input.landscape.argb32, input.maskDisc.a8, 64, 64, 0, 0, hole.to.width, hole.to.height,
                                hole.to.x, hole.to.y, BLIT_BILINEAR, hole.alpha);
    }
    Caption(target, 128, 172, "landscape through a disc", Quiet, Align::Centre);

    Caption(target, 128, 188, "opacity 255, then 160 and 80 of", Quiet, Align::Centre);
    Caption(target, 128, 198, "what the map lets through", Quiet, Align::Centre);

    // A picture into a wide and into a high box.
    struct Fit
    {
        const char* name;
        Tov_Flag    flags;
    };
    constexpr Fit Fits[] = {{"no flag", 0}, {"BLIT_ASPECT", BLIT_ASPECT}};
    for (int column = 0; column < 2; ++column)
    {
        const Tov_Int x       = 262 + 69 * column;
        const Box     boxes[] = {{x, 84, 65, 30}, {x + 10, 122, 44, 110}};
        Caption(target, x + 32, 72, Fits[column].name, Ink, Align::Centre);
        for (const Box& box : boxes)
        {
            Checkerboard(target, box);
            Outline(target, box, Edge);
            Scale(target, input.landscape.rgb32, {0, 0, 240, 160}, box, BLIT_BILINEAR | Fits[column].flags, 255);
        }
    }
}

void StretchPixels(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    constexpr Tov_UInt Count = 8;  // source pixels
    constexpr Tov_UInt Room  = 240;
    constexpr Tov_Int  Left  = 150;

    // Two rows alike: a filter needs two.
    static Tov_UInt    buffer[2 * Count] = {Rose, Amber, Teal, Sky, 0xFF8C5CFFU, Ink, 0xFF50607AU, 0xFFB8E04AU,
                                            Rose, Amber, Teal, Sky, 0xFF8C5CFFU, Ink, 0xFF50607AU, 0xFFB8E04AU};
    Kanvo_BitmapARGB32 source(target.GetScreen(), Count, 2, BBT_RAM, buffer);

    struct Row
    {
        const char* name;
        Tov_UInt    width;
        Tov_Flag    flags;
    };
    constexpr Row Rows[] = {{"8 to 8", 8, 0},
                            {"8 to 16", 16, 0},
                            {"8 to 12", 12, 0},
                            {"8 to 5", 5, 0},
                            {"8 to 24, filtered", 24, BLIT_BILINEAR},
                            {"8 to 5, filtered", 5, BLIT_BILINEAR}};

    Stage(target, "StretchBlit: which pixel is taken", "at centres");
    Caption(target, Left - 6, 26, "the source", Ink, Align::Right);
    for (Tov_UInt column = 0; column < Count; ++column)
    {
        Fill(target, {Left + static_cast<Tov_Int>(column * Room / Count), 22, Room / Count - 1, 16}, buffer[column]);
    }
    for (int index = 0; index < 6; ++index)
    {
        const Row&    row = Rows[index];
        const Tov_Int y   = 50 + 32 * index;
        // Drawn once small, then shown pixel by pixel as wide as it stands for.
        Scale(target, &source, {0, 0, Count, 2}, {Left, y, row.width, 1}, row.flags, 255);
        Tov_UInt colours[24];
        for (Tov_UInt pixel = 0; pixel < row.width; ++pixel)
        {
            colours[pixel] = PixelAt(target, Left + static_cast<Tov_Int>(pixel), y);
        }
        Caption(target, Left - 6, y + 7, row.name, Quiet, Align::Right);
        for (Tov_UInt pixel = 0; pixel < row.width; ++pixel)
        {
            const Tov_UInt width  = Room / row.width;
            const Tov_Int  x      = Left + static_cast<Tov_Int>(pixel * width);
            const Tov_Int  centre = x + static_cast<Tov_Int>(width / 2);
            Fill(target, {x, y + 5, width - 1, 13}, colours[pixel]);
            Fill(target, {centre, y, 1, 5}, Ink);  // where it looks
        }
        for (Tov_UInt column = 0; column < Count; ++column)  // what it looks at
        {
            const Tov_UInt width = Room / Count;
            Fill(target, {Left + static_cast<Tov_Int>(column * width), y - 3, width - 1, 4}, buffer[column]);
        }
    }
}

}  // namespace scenes
