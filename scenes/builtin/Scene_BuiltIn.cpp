// Scene_BuiltIn: see the header.
#include "Scene_BuiltIn.h"

#include <cstdio>
#include <cstring>

#include "Png_Bitmap.h"

#include "pixels_gauge.h"
#include "pixels_glass.h"
#include "pixels_grey16.h"
#include "pixels_icons.h"
#include "pixels_interlaced.h"
#include "pixels_landscape.h"
#include "pixels_mask_disc.h"
#include "pixels_mask_fade.h"
#include "pixels_mask_glyph.h"
#include "pixels_palette.h"
#include "pixels_sprite_key.h"

namespace scenes
{
namespace
{

struct Array
{
    const char*          file;
    const unsigned char* bytes;  // ARGB words, little-endian, without padding
    std::size_t          size;
};

constexpr Array Arrays[] = {
    {"gauge.png", pixels_gauge, PIXELS_GAUGE_SIZE},
    {"glass.png", pixels_glass, PIXELS_GLASS_SIZE},
    {"grey16.png", pixels_grey16, PIXELS_GREY16_SIZE},
    {"icons.png", pixels_icons, PIXELS_ICONS_SIZE},
    {"interlaced.png", pixels_interlaced, PIXELS_INTERLACED_SIZE},
    {"landscape.png", pixels_landscape, PIXELS_LANDSCAPE_SIZE},
    {"mask_disc.png", pixels_mask_disc, PIXELS_MASK_DISC_SIZE},
    {"mask_fade.png", pixels_mask_fade, PIXELS_MASK_FADE_SIZE},
    {"mask_glyph.png", pixels_mask_glyph, PIXELS_MASK_GLYPH_SIZE},
    {"palette.png", pixels_palette, PIXELS_PALETTE_SIZE},
    {"sprite_key.png", pixels_sprite_key, PIXELS_SPRITE_KEY_SIZE},
};

//! The array of a file, null where there is none of the right size.
const unsigned char* BytesOf(const PictureFile& file)
{
    for (const Array& array : Arrays)
    {
        if (std::strcmp(array.file, file.file) == 0 && array.size == std::size_t{file.width} * file.height * 4)
        {
            return array.bytes;
        }
    }
    return nullptr;
}

//! The picture that reading the file would give.
png::Image ImageOf(const unsigned char* bytes, Tov_UInt width, Tov_UInt height)
{
    png::Image image;
    image.width  = width;
    image.height = height;
    image.argb.resize(std::size_t{width} * height);
    for (std::uint32_t& word : image.argb)
    {
        word = std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 |
               std::uint32_t{bytes[3]} << 24;
        image.hasAlpha = image.hasAlpha || bytes[3] != 255;
        bytes += 4;
    }
    return image;
}

}  // namespace

BuiltIn::BuiltIn(Kanvo_Screen& screen)
{
    for (const PictureFile& file : PictureFiles())
    {
        m_input.*file.slot = Made(file, screen);
    }
    m_input.own = m_input.*PictureFiles().begin()->slot;
}

Picture BuiltIn::Made(const PictureFile& file, Kanvo_Screen& screen)
{
    const unsigned char* const bytes = BytesOf(file);
    if (bytes == nullptr)
    {
        m_error += std::string(file.file) + ": no array, or one of another size\n";
        return {};
    }
    const png::Image image = ImageOf(bytes, file.width, file.height);
    const auto       kept  = [&](BitmapType format)
    {
        m_bitmaps.push_back(png::MakeBitmap(image, format, screen));
        if (m_bitmaps.back() == nullptr)
        {
            m_error += std::string(file.file) + ": not enough memory\n";
        }
        return m_bitmaps.back().get();
    };
    return {kept(BM_ARGB32), kept(BM_RGB32), kept(BM_RGB565), kept(BM_ALPHA8)};
}

bool BuiltIn::AreThere() const
{
    std::fputs(m_error.c_str(), stderr);
    return m_error.empty();
}

Tov_UInt Drawn(const Scene& scene, Kanvo_BitmapARGB32& target, const Input& input, Kanvo_Screen& screen,
               Optimized_Blit setting)
{
    screen.GetRenderState().Set(OPTIMIZED_BLIT, setting);
    Draw(scene, target, input);
    return Checksum(target);
}

std::string ChecksumLine(const Scene& scene, Kanvo_BitmapARGB32& target, const Input& input, Kanvo_Screen& screen)
{
    char text[128];
    if (target.GetBuffer() == nullptr)
    {
        std::snprintf(text, sizeof text, "%s  %u x %u  does not fit into memory", scene.name,
                      static_cast<unsigned>(scene.width), static_cast<unsigned>(scene.height));
        return text;
    }
    const Tov_UInt portable  = Drawn(scene, target, input, screen, OB_NONE);
    const Tov_UInt optimised = Drawn(scene, target, input, screen, OB_NEON);
    std::snprintf(text, sizeof text, "%s  %u x %u  %08X  %08X", scene.name, static_cast<unsigned>(scene.width),
                  static_cast<unsigned>(scene.height), static_cast<unsigned>(portable),
                  static_cast<unsigned>(optimised));
    return text;
}

}  // namespace scenes
