// Every scene draws what scenes/CHECKSUMS says, on every machine, compiler and setting, with the portable and with the
// optimised blits. The pictures are arrays that the machine which builds has made of the PNG files, so that this runs where
// no PNG file can be read.
#include <cstdint>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Png_Bitmap.h"
#include "Scene.h"

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

namespace
{

struct Pixels
{
    const unsigned char* bytes;  // ARGB words, little-endian, without padding
    std::size_t          size;
};

//! The arrays, by the names of their files.
const std::map<std::string, Pixels>& Arrays()
{
    static const std::map<std::string, Pixels> arrays = {
        {"gauge.png", {pixels_gauge, PIXELS_GAUGE_SIZE}},
        {"glass.png", {pixels_glass, PIXELS_GLASS_SIZE}},
        {"grey16.png", {pixels_grey16, PIXELS_GREY16_SIZE}},
        {"icons.png", {pixels_icons, PIXELS_ICONS_SIZE}},
        {"interlaced.png", {pixels_interlaced, PIXELS_INTERLACED_SIZE}},
        {"landscape.png", {pixels_landscape, PIXELS_LANDSCAPE_SIZE}},
        {"mask_disc.png", {pixels_mask_disc, PIXELS_MASK_DISC_SIZE}},
        {"mask_fade.png", {pixels_mask_fade, PIXELS_MASK_FADE_SIZE}},
        {"mask_glyph.png", {pixels_mask_glyph, PIXELS_MASK_GLYPH_SIZE}},
        {"palette.png", {pixels_palette, PIXELS_PALETTE_SIZE}},
        {"sprite_key.png", {pixels_sprite_key, PIXELS_SPRITE_KEY_SIZE}},
    };
    return arrays;
}

//! The picture that reading the file would give.
png::Image ImageOf(const Pixels& pixels, std::uint32_t width, std::uint32_t height)
{
    png::Image image;
    image.width  = width;
    image.height = height;
    for (std::size_t at = 0; at < pixels.size; at += 4)
    {
        const unsigned char* const byte = pixels.bytes + at;
        image.argb.push_back(std::uint32_t{byte[0]} | std::uint32_t{byte[1]} << 8 | std::uint32_t{byte[2]} << 16 |
                             std::uint32_t{byte[3]} << 24);
        image.hasAlpha = image.hasAlpha || byte[3] != 255;
    }
    return image;
}

//! A line of the list: name, width "x" height, checksum of the portable and of the optimised path.
struct Entry
{
    std::string   name;
    std::uint32_t width     = 0;
    std::uint32_t height    = 0;
    std::uint32_t portable  = 0;
    std::uint32_t optimised = 0;
};

std::vector<Entry> ReadList()
{
    std::ifstream      file(KANVO_SOURCE_DIR "/scenes/CHECKSUMS");
    std::vector<Entry> list;
    for (std::string line; std::getline(file, line);)
    {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream words(line);
        Entry              entry;
        std::string        by;
        words >> entry.name >> entry.width >> by >> entry.height >> std::hex >> entry.portable >> entry.optimised;
        EXPECT_TRUE(words && by == "x") << line;
        list.push_back(entry);
    }
    return list;
}

class SceneChecksums : public testing::TestWithParam<scenes::Scene>
{
protected:
    SceneChecksums()
    {
        for (const scenes::PictureFile& file : scenes::PictureFiles())
        {
            m_input.*file.slot = Made(file);
        }
        m_input.own = m_input.landscape;
    }

    scenes::Picture Made(const scenes::PictureFile& file)
    {
        const auto found = Arrays().find(file.file);
        if (found == Arrays().end() || found->second.size != std::size_t{file.width} * file.height * 4)
        {
            ADD_FAILURE() << file.file << ": no array, or one of another size";
            return {};
        }
        const png::Image image = ImageOf(found->second, file.width, file.height);
        return {Kept(image, BM_ARGB32), Kept(image, BM_RGB32), Kept(image, BM_RGB565), Kept(image, BM_ALPHA8)};
    }

    Kanvo_Bitmap* Kept(const png::Image& image, BitmapType format)
    {
        m_bitmaps.push_back(png::MakeBitmap(image, format, m_screen));
        return m_bitmaps.back().get();
    }

    std::uint32_t Drawn(const scenes::Scene& scene, Optimized_Blit setting)
    {
        Kanvo_BitmapARGB32 target(&m_screen, scene.width, scene.height);
        m_screen.GetRenderState().Set(OPTIMIZED_BLIT, setting);
        scenes::Draw(scene, target, m_input);
        return scenes::Checksum(target);
    }

    Kanvo                                      m_library;
    Kanvo_Screen                               m_screen{&m_library};
    std::vector<std::unique_ptr<Kanvo_Bitmap>> m_bitmaps;
    scenes::Input                              m_input = {};
};

TEST_P(SceneChecksums, AreThoseOfTheList)
{
    if (HasFailure()) return;  // without its pictures a scene cannot be drawn
    const scenes::Scene& scene = GetParam();
    unsigned             found = 0;
    for (const Entry& entry : ReadList())
    {
        if (entry.name != scene.name) continue;
        ++found;
        EXPECT_EQ(scene.width, entry.width);
        EXPECT_EQ(scene.height, entry.height);
        EXPECT_EQ(Drawn(scene, OB_NONE), entry.portable) << std::hex << entry.portable << " expected, portable";
        EXPECT_EQ(Drawn(scene, OB_NEON), entry.optimised) << std::hex << entry.optimised << " expected, optimised";
    }
    EXPECT_EQ(found, 1U) << "lines of the list with this name";
}

INSTANTIATE_TEST_SUITE_P(All, SceneChecksums, testing::ValuesIn(scenes::All().begin(), scenes::All().end()),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(SceneChecksumList, HasEverySceneInOrderAndNoOther)
{
    std::vector<std::string> listed;
    for (const Entry& entry : ReadList()) listed.push_back(entry.name);
    std::vector<std::string> drawn;
    for (const scenes::Scene& scene : scenes::All()) drawn.emplace_back(scene.name);
    EXPECT_EQ(listed, drawn);
}

}  // namespace
