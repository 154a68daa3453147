// Every scene draws what scenes/CHECKSUMS says, on every machine, compiler and setting, with the portable and with the
// optimised blits. The pictures are part of the program (Scene_BuiltIn.h), so that this runs where no PNG file can be read.
#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Levels.h"
#include "Scene_BuiltIn.h"

namespace
{

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
    std::uint32_t Drawn(const scenes::Scene& scene, Optimized_Blit setting)
    {
        Kanvo_BitmapARGB32 target(&m_screen, scene.width, scene.height);
        return scenes::Drawn(scene, target, m_pictures.Get(), m_screen, setting);
    }

    Kanvo           m_library;
    Kanvo_Screen    m_screen{&m_library};
    scenes::BuiltIn m_pictures{m_screen};
};

TEST_P(SceneChecksums, AreThoseOfTheListAtEveryLevel)
{
    ASSERT_EQ(m_pictures.Error(), "");  // without its pictures a scene cannot be drawn
    const scenes::Scene& scene = GetParam();
    unsigned             found = 0;
    for (const Entry& entry : ReadList())
    {
        if (entry.name != scene.name) continue;
        ++found;
        EXPECT_EQ(scene.width, entry.width);
        EXPECT_EQ(scene.height, entry.height);
        for (const Kanvo_Level level : support::LevelsHere())
        {
            SCOPED_TRACE(Kanvo_LevelName(level));
            const support::AtLevel selected(level);
            EXPECT_EQ(Drawn(scene, OB_NONE), entry.portable) << std::hex << entry.portable << " expected, portable";
            EXPECT_EQ(Drawn(scene, OB_NEON), entry.optimised) << std::hex << entry.optimised << " expected, optimised";
        }
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
