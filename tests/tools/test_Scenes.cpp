// Tests of what every scene promises, whatever it shows. The pictures are made here.
#include <algorithm>
#include <cctype>
#include <cstring>
#include <set>

#include <gtest/gtest.h>

#include "Levels.h"
#include "Png_Bitmap.h"
#include "Scene.h"

namespace
{

class Scenes : public testing::Test
{
protected:
    Scenes()
    {
        for (const scenes::PictureFile& file : scenes::PictureFiles())
        {
            m_input.*file.slot = Made(file.width, file.height);
        }
        m_input.own = Made(33, 300);
        s_messages.clear();
        m_handlerBefore = Trak_SetAssertHandler(NoteMessage);
    }

    ~Scenes() override { Trak_SetAssertHandler(m_handlerBefore); }

    //! A picture with every alpha.
    scenes::Picture Made(std::uint32_t width, std::uint32_t height)
    {
        png::Image image{width, height, {}, true, {}, {}};
        for (std::uint32_t pixel = 0; pixel < width * height; ++pixel)
        {
            image.argb.push_back(pixel * 2654435761U ^ pixel << 22);
        }
        return {Kept(image, BM_ARGB32), Kept(image, BM_RGB32), Kept(image, BM_RGB565), Kept(image, BM_ALPHA8)};
    }

    Kanvo_Bitmap* Kept(const png::Image& image, BitmapType format)
    {
        m_bitmaps.push_back(png::MakeBitmap(image, format, m_screen));
        return m_bitmaps.back().get();
    }

    //! The pixels of a scene drawn onto a buffer filled with `before`, between rows of `fence`.
    std::vector<std::uint32_t> Drawn(const scenes::Scene& scene, Optimized_Blit setting, std::uint32_t before)
    {
        constexpr std::uint32_t    Fence     = 0x5AFE5AFEU;
        const std::size_t          fenceSize = scene.width * 4;
        std::vector<std::uint32_t> buffer(fenceSize, Fence);
        buffer.resize(fenceSize + scene.width * scene.height, before);
        buffer.resize(buffer.size() + fenceSize, Fence);
        {
            Kanvo_BitmapARGB32 target(&m_screen, scene.width, scene.height, BBT_RAM, buffer.data() + fenceSize);
            target.SetCliprect(5, 5, 9, 9);
            m_screen.GetRenderState().Set(OPTIMIZED_BLIT, setting);
            scenes::Draw(scene, target, m_input);
            EXPECT_EQ(target.GetClipMinX(), 0U);
            EXPECT_EQ(target.GetClipMinY(), 0U);
            EXPECT_EQ(target.GetClipMaxX(), scene.width - 1);
            EXPECT_EQ(target.GetClipMaxY(), scene.height - 1);
        }
        const auto isFence = [](std::uint32_t word) { return word == Fence; };
        const auto first   = buffer.begin() + static_cast<std::ptrdiff_t>(fenceSize);
        const auto last    = buffer.end() - static_cast<std::ptrdiff_t>(fenceSize);
        EXPECT_TRUE(std::all_of(buffer.begin(), first, isFence)) << scene.name << " drew above the target";
        EXPECT_TRUE(std::all_of(last, buffer.end(), isFence)) << scene.name << " drew below the target";
        return {first, last};
    }

    static void NoteMessage(const char*, unsigned int, const char* message) { s_messages.emplace_back(message); }

    static std::vector<std::string> s_messages;

    Kanvo                                      m_library;
    Kanvo_Screen                               m_screen{&m_library};
    std::vector<std::unique_ptr<Kanvo_Bitmap>> m_bitmaps;
    scenes::Input                              m_input = {};
    Trak_AssertHandler                         m_handlerBefore;
};

std::vector<std::string> Scenes::s_messages;

TEST_F(Scenes, NamesAreGoodFileNamesAndDiffer)
{
    std::set<std::string> names;
    for (const scenes::Scene& scene : scenes::All())
    {
        const std::string name = scene.name;
        EXPECT_TRUE(names.insert(name).second) << name;
        EXPECT_TRUE(std::all_of(name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) || c == '_'; }))
            << name;
        EXPECT_NE(std::string(scene.about), "") << name;
    }
}

TEST_F(Scenes, NothingInputHoldsIsLeftUnset)
{
    Kanvo_Bitmap* bitmaps[sizeof m_input / sizeof(Kanvo_Bitmap*)];
    std::memcpy(bitmaps, &m_input, sizeof m_input);
    for (const Kanvo_Bitmap* bitmap : bitmaps)
    {
        EXPECT_NE(bitmap, nullptr) << "PictureFiles misses a member of Input";
    }
}

TEST_F(Scenes, WhatTheTargetHeldBeforeLeavesNoTrace)
{
    for (const scenes::Scene& scene : scenes::All())
    {
        EXPECT_EQ(Drawn(scene, OB_NONE, 0), Drawn(scene, OB_NONE, 0xC3A55A3CU)) << scene.name;
    }
}

TEST_F(Scenes, BothPathsDrawTheSameExceptWhereTheSceneSaysSo)
{
    for (const scenes::Scene& scene : scenes::All())
    {
        EXPECT_EQ(Drawn(scene, OB_NONE, 0) == Drawn(scene, OB_NEON, 0), !scene.pathsDiffer) << scene.name;
    }
}

TEST_F(Scenes, EveryLevelDrawsTheSame)
{
    for (const Kanvo_Level level : support::FastLevelsHere())
    {
        for (const scenes::Scene& scene : scenes::All())
        {
            for (const Optimized_Blit setting : {OB_NONE, OB_NEON})
            {
                const auto drawnAt = [&](Kanvo_Level here)
                {
                    const support::AtLevel atLevel(here);
                    return Drawn(scene, setting, 0);
                };
                EXPECT_EQ(drawnAt(level), drawnAt(KL_PORTABLE)) << scene.name << ", " << Kanvo_LevelName(level);
            }
        }
    }
}

TEST_F(Scenes, NoSceneMisusesTheLibrary)
{
    for (const scenes::Scene& scene : scenes::All())
    {
        Drawn(scene, OB_NONE, 0);
        Drawn(scene, OB_NEON, 0);
        EXPECT_TRUE(s_messages.empty()) << scene.name << ": " << s_messages.front();
        s_messages.clear();
    }
}

TEST_F(Scenes, AnOwnPictureMayHaveAnySize)
{
    for (const auto& [width, height] :
         {std::pair{1U, 1U}, {1U, 1000U}, {1000U, 1U}, {94U, 53U}, {95U, 54U}, {401U, 241U}})
    {
        m_input.own = Made(width, height);
        Drawn(scenes::Own(), OB_NONE, 0);
        Drawn(scenes::Own(), OB_NEON, 0);
        EXPECT_TRUE(s_messages.empty()) << width << " x " << height << ": " << s_messages.front();
        s_messages.clear();
    }
}

TEST_F(Scenes, TheChecksumIsThatOfTheBytesOfLittleEndianWords)
{
    std::uint32_t      words[] = {0x34333231U, 0x38373635U};  // the bytes "12345678"
    Kanvo_BitmapARGB32 target(&m_screen, 1, 2, BBT_RAM, words);
    EXPECT_EQ(scenes::Checksum(target), 0x9AE0DAAFU);
}

}  // namespace
