// make-pictures OUTDIR: draws the source pictures of the gallery, scenes/pictures/*.png, which are checked in.
// Whoever changes a picture changes the code beside this file and runs it again; the same code gives the same bytes.
#include <cstdio>

#include "Pictures.h"

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2)
    {
        std::fprintf(stderr, "usage: make-pictures OUTDIR\n");
        return 2;
    }

    const struct
    {
        const char* name;
        pictures::Png (*draw)();
    } pictureList[] = {
        {"landscape.png", pictures::Landscape}, {"icons.png", pictures::Icons},
        {"sprite_key.png", pictures::Robot},    {"palette.png", pictures::Planet},
        {"grey16.png", pictures::Moon},         {"interlaced.png", pictures::Balloon},
        {"glass.png", pictures::Glass},         {"gauge.png", pictures::Gauge},
        {"mask_disc.png", pictures::DiscMask},  {"mask_glyph.png", pictures::GlyphMask},
        {"mask_fade.png", pictures::FadeMask},
    };
    for (const auto& picture : pictureList)
    {
        pictures::Write(std::string(arguments[1]) + "/" + picture.name, picture.draw());
    }
    return 0;
}
