// Scenes: the tables of scenes and of their pictures.
#include "Scene.h"

#include <iterator>

#include "Scene_List.h"

namespace scenes
{
namespace
{

constexpr Tov_UInt Width  = 400;
constexpr Tov_UInt Height = 240;

constexpr Scene Scenes[] = {
    {"Dashboard", "A user interface out of everything below: blits, maps, fills and text.", Width, Height, Dashboard,
     false},
    {"Night_Flight", "Pictures that came as indexed, 16-bit grey and interlaced files, in one sky.", Width, Height,
     NightFlight, false},
    {"Polygon_Gauge", "A gauge face built from polygons alone, its marks one shape turned into place.", Width, Height,
     PolygonGauge, false},
    {"Fill_Steps", "FillRect with sixteen alphas, over light and dark; below, the value that comes out.", Width, Height,
     FillSteps, false},
    {"Fill_Overlap", "Translucent fills woven together: the order counts, and alpha gathers on an empty bitmap.", Width,
     Height, FillOverlap, false},
    {"Blit_Copy", "An ARGB32 picture drawn at full opacity is copied, its alpha included; below 255 it is blended.",
     Width, Height, BlitCopy, false},
    {"Blit_Alpha", "Global opacity, with and without alpha in the source.", Width, Height, BlitAlpha, false},
    {"Blit_ColorKey", "Leaving out one colour, for three formats, alone and together with opacity.", Width, Height,
     BlitColorKey, false},
    {"Blit_Formats", "One picture in four formats, and what each format keeps of it.", Width, Height, BlitFormats,
     false},
    {"Blit_Paths", "The one blit that the optimised path draws differently: full opacity and BLIT_NOCLIP alone.", Width,
     Height, BlitPaths, true},
    {"BlitColor_Maps", "One colour painted through the coverage of A8 and ARGB32 maps.", Width, Height, BlitColorMaps,
     false},
    {"Alpha_Maps", "Pictures drawn through a separate map, and a map written as the alpha of a picture.", Width, Height,
     AlphaMaps, true},
    {"Rle_Background", "Run-length-encoded pictures: a background, and icons with soft edges over it.", Width, Height,
     RleBackground, false},
    {"Rle_Magnified", "A magnified run-length-encoded sprite, cut by every edge of a clip rectangle.", Width, Height,
     RleMagnified, false},
    {"Rle_Formats", "One picture in six formats, with the bytes that each takes.", Width, Height, RleFormats, false},
    {"Stretch_Scales", "StretchBlit at four scales, nearest and filtered, with a look at the pixels.", Width, Height,
     StretchScales, false},
    {"Stretch_Keyed", "A scaled figure without its key colour: what filtering does to the edges.", Width, Height,
     StretchKeyed, false},
    {"Stretch_Maps", "Scaled colours and pictures through maps, and pictures that keep their aspect.", Width, Height,
     StretchMaps, false},
    {"Stretch_Pixels", "Which source pixel each pixel of a scaled row takes.", Width, Height, StretchPixels, false},
    {"Rot_Needles", "A needle in 24 steps over a dial: nearest, filtered, and in one colour each.", Width, Height,
     RotNeedles, false},
    {"Rot_Icons", "Icons in steps of 15 degrees, and a landscape in their shape.", Width, Height, RotIcons, false},
    {"Rot_Seams", "A board in four parts, turned one by one: neither gaps nor overlaps.", Width, Height, RotSeams,
     false},
    {"Rot_Pivot", "Angle, rotation centre, stretch and mirror: where a turned picture lands.", Width, Height, RotPivot,
     false},
    {"Rot_Pixels", "A turned picture drawn whole and in four clip rectangles, pixel by pixel.", Width, Height,
     RotPixels, false},
    {"Line_Fans", "Thin lines in every direction, plain, anti-aliased and filtered.", Width, Height, LineFans, false},
    {"Line_Widths", "Lines of four widths in three qualities.", Width, Height, LineWidths, false},
    {"Line_Caps", "Round ends, joints and lines that become thinner.", Width, Height, LineCaps, false},
    {"Line_Patterns", "Dashes and gradients that run on around corners, are stretched and turned round.", Width, Height,
     LinePatterns, false},
    {"Line_Clips", "Lines cut by every edge of a clip rectangle.", Width, Height, LineClips, false},
    {"Dot_Sizes", "Dots from less than a pixel to large, at positions between pixels.", Width, Height, DotSizes, false},
    {"Dot_Clips", "Dots cut by every edge of a clip rectangle.", Width, Height, DotClips, false},
    {"Polygon_Shapes", "Stars, a pentagram, a circle of 256 corners and a bow-tie in the three renderers.", Width,
     Height, PolygonShapes, false},
    {"Polygon_Outlines", "A comb, a spiral and slivers, where many sides cross one row.", Width, Height,
     PolygonOutlines, false},
    {"Polygon_Seams", "Triangles that share sides: no gaps, and what anti-aliasing and extruding do to the seams.",
     Width, Height, PolygonSeams, false},
    {"Polygon_Textures", "Textured polygons in the five write-backs, flat and in perspective.", Width, Height,
     PolygonTextures, false},
    {"Clip_Edges", "The same picture cut by every edge and corner of the clip rectangle.", Width, Height, ClipEdges,
     false},
    {"Debug_Font", "All characters of the built-in font, and how text is laid out.", Width, Height, DebugFont, false},
    {"Own_Picture", "Your own picture, in every format and through every kind of blit.", Width, Height, OwnPicture,
     false},
};

constexpr PictureFile Files[] = {
    {"landscape.png", &Input::landscape, 240, 160}, {"icons.png", &Input::icons, 192, 96},
    {"sprite_key.png", &Input::spriteKey, 64, 64},  {"glass.png", &Input::glass, 96, 96},
    {"gauge.png", &Input::gauge, 128, 128},         {"mask_disc.png", &Input::maskDisc, 64, 64},
    {"mask_glyph.png", &Input::maskGlyph, 128, 32}, {"mask_fade.png", &Input::maskFade, 128, 64},
    {"palette.png", &Input::planet, 64, 64},        {"grey16.png", &Input::moon, 64, 64},
    {"interlaced.png", &Input::balloon, 64, 64},
};

}  // namespace

Table<Scene> All()
{
    return {Scenes, std::size(Scenes)};
}

const Scene& Own()
{
    return Scenes[std::size(Scenes) - 1];
}

Table<PictureFile> PictureFiles()
{
    return {Files, std::size(Files)};
}

void Draw(const Scene& scene, Kanvo_BitmapARGB32& target, const Input& input)
{
    target.Lock();
    target.SetCliprect(0, 0, target.GetWidth() - 1, target.GetHeight() - 1);
    target.Clear(0xFF000000U);
    scene.draw(target, input);
    target.Unlock(0, 0, target.GetWidth() - 1, target.GetHeight() - 1);
}

Tov_UInt Checksum(const Kanvo_BitmapARGB32& target)
{
    Tov_UInt crc = 0xFFFFFFFFU;
    for (Tov_UInt y = 0; y < target.GetHeight(); ++y)
    {
        for (Tov_UInt x = 0; x < target.GetWidth(); ++x)
        {
            Kanvo_OffsetARGB32 offset;
            Kanvo_PixelARGB32_Access::GetOffset(&target, x, y, offset);
            crc ^= *offset;  // a word at once: its low byte is the next byte of the sum
            for (int bit = 0; bit < 32; ++bit)
            {
                crc = (crc >> 1) ^ (0xEDB88320U & (0U - (crc & 1U)));
            }
        }
    }
    return ~crc;
}

}  // namespace scenes
