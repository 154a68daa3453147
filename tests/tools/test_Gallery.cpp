// Tests of the program kanvo-gallery from outside: what it writes, prints and returns.
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "Png_Image.h"
#include "Scene.h"
#include "Scratch_Folder.h"
#include "Tiny_Png.h"

namespace
{

namespace fs = std::filesystem;

//! The program lies in the build folder's tools, beside the folder of this test.
std::string Program()
{
    return (fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "tools" / "kanvo-gallery").string();
}

std::vector<std::string> LinesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream       stream(text);
    for (std::string line; std::getline(stream, line);)
    {
        lines.push_back(line);
    }
    return lines;
}

//! CRC-32 of ARGB words as little-endian bytes.
std::string ChecksumOf(const std::vector<std::uint32_t>& pixels)
{
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const std::uint32_t pixel : pixels)
    {
        for (int shift = 0; shift < 32; shift += 8)
        {
            crc ^= pixel >> shift & 255;
            for (int bit = 0; bit < 8; ++bit)
            {
                crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320U : crc >> 1;
            }
        }
    }
    std::ostringstream text;
    text << std::uppercase << std::hex;
    text.width(8);
    text.fill('0');
    text << ~crc;
    return text.str();
}

class Gallery : public testing::Test
{
protected:
    struct Run
    {
        int                      exitCode;
        std::vector<std::string> output;
        std::vector<std::string> errors;
    };

    //! Runs the program with these words on pictures made for this test, or on those that ship with the scenes.
    Run Start(const std::vector<std::string>& words, bool ownPictures = true)
    {
        std::string command = "'" + Program() + "'";
        for (const std::string& word : words)
        {
            command += " '" + word + "'";
        }
        if (ownPictures)
        {
            command += " --pictures '" + m_pictures.Path() + "'";
        }
        command += " >'" + m_logs.Path("out") + "' 2>'" + m_logs.Path("err") + "'";
        const int  status = std::system(command.c_str());
        const auto text   = [&](const char* name)
        {
            const tiny_png::Bytes bytes = m_logs.Read(name);
            return LinesOf(std::string(bytes.begin(), bytes.end()));
        };
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text("out"), text("err")};
    }

    void SetUp() override
    {
        ASSERT_TRUE(fs::exists(Program())) << "build kanvo-gallery first: " << Program();
        unsigned shade = 50;
        for (const scenes::PictureFile& picture : scenes::PictureFiles())
        {
            WritePicture(m_pictures, picture.file, picture.width, picture.height, shade++);
        }
    }

    //! A picture with a gradient and alpha, both other ones for every shade.
    static void WritePicture(const Scratch_Folder& folder, const std::string& name, unsigned width, unsigned height,
                             unsigned shade)
    {
        folder.Write(name, tiny_png::Encode({width, height, tiny_png::Rgba, 8,
                                             [shade](std::uint32_t x, std::uint32_t y, int channel)
                                             { return channel == 3 ? 255 - (y + shade) % 256 : x * 2 + shade; }}));
    }

    //! The program must have stopped with one line about this and left nothing behind.
    void ExpectOneLine(const Run& run, int exitCode, const std::string& part)
    {
        EXPECT_EQ(run.exitCode, exitCode);
        ASSERT_EQ(run.errors.size(), 1U) << testing::PrintToString(run.errors);
        EXPECT_EQ(run.errors[0].rfind("kanvo-gallery: ", 0), 0U) << run.errors[0];
        EXPECT_NE(run.errors[0].find(part), std::string::npos) << run.errors[0];
    }

    std::string Page() const
    {
        std::ifstream stream(m_folder.Path("out/index.html"));
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

    png::Image Drawn(const std::string& file) const
    {
        png::LoadResult loaded = png::Load(m_folder.Path("out/" + file));
        EXPECT_EQ(loaded.error, "");
        return loaded.image;
    }

    std::set<std::string> Files() const
    {
        std::set<std::string> files;
        for (const auto& entry : fs::directory_iterator(m_folder.Path("out")))
        {
            files.insert(entry.path().filename().string());
        }
        return files;
    }

    Scratch_Folder m_folder;
    Scratch_Folder m_pictures;
    Scratch_Folder m_logs;
};

TEST_F(Gallery, WritesTwoPicturesPerSceneAndThePage)
{
    const Run run = Start({m_folder.Path("out")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.errors.empty()) << testing::PrintToString(run.errors);

    std::set<std::string> expected = {"index.html"};
    for (const scenes::Scene& scene : scenes::All())
    {
        for (const char* setting : {".portable.png", ".optimised.png"})
        {
            const std::string file = scene.name + std::string(setting);
            expected.insert(file);
            EXPECT_EQ(Drawn(file).width, scene.width);
            EXPECT_EQ(Drawn(file).height, scene.height);
        }
    }
    EXPECT_EQ(Files(), expected);
}

TEST_F(Gallery, PrintsOneLinePerSceneWithTheChecksumOfThePixels)
{
    const Run  run   = Start({m_folder.Path("out")});
    const auto count = scenes::All().size();
    ASSERT_EQ(run.output.size(), count + 1) << testing::PrintToString(run.output);
    std::size_t number = 0;
    for (const scenes::Scene& scene : scenes::All())
    {
        const std::string& line = run.output[number++];
        const std::regex   form(
              R"(\[ ?(\d+)/ ?(\d+)\] (\w+) +(\d+) x (\d+)  ([0-9A-F]{8})  portable +\d+\.\d\d ms  )"
                R"(optimised +\d+\.\d\d ms  (same bytes|differs as documented: \d+ pixels?, ([0-9A-F]{8})))");
        std::smatch match;
        ASSERT_TRUE(std::regex_match(line, match, form)) << line;
        EXPECT_EQ(match[1], std::to_string(number));
        EXPECT_EQ(match[2], std::to_string(count));
        EXPECT_EQ(match[3], scene.name);
        EXPECT_EQ(match[4], std::to_string(scene.width));
        EXPECT_EQ(match[5], std::to_string(scene.height));

        const std::string portable  = ChecksumOf(Drawn(scene.name + std::string(".portable.png")).argb);
        const std::string optimised = ChecksumOf(Drawn(scene.name + std::string(".optimised.png")).argb);
        EXPECT_EQ(match[6], portable) << line;
        EXPECT_EQ(portable == optimised, match[7] == "same bytes") << line;
        if (portable != optimised)
        {
            EXPECT_EQ(match[8], optimised) << line;
        }
        EXPECT_NE(Page().find(portable), std::string::npos);
        EXPECT_NE(Page().find(optimised), std::string::npos);
    }
}

TEST_F(Gallery, BothPathsDrawTheSameExceptWhereTheSceneSaysSo)
{
    Start({m_folder.Path("out")});
    for (const scenes::Scene& scene : scenes::All())
    {
        const std::string name = scene.name;
        const bool        same = Drawn(name + ".portable.png").argb == Drawn(name + ".optimised.png").argb;
        EXPECT_EQ(same, !scene.pathsDiffer) << name;
    }
}

//! The list was made on one machine, and its pictures were looked at; on every other one, with every compiler, the scenes
//! must come out the same. Where a scene was meant to change: kanvo-gallery OUT --checksums scenes/CHECKSUMS.
TEST_F(Gallery, EveryMachineDrawsTheScenesThatTheListKnows)
{
    ASSERT_EQ(Start({m_folder.Path("out"), "--checksums", m_logs.Path("list")}, false).exitCode, 0);
    const auto text = [](const std::string& path)
    {
        std::ifstream stream(path);
        return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    };
    EXPECT_EQ(text(m_logs.Path("list")), text(KANVO_SOURCE_DIR "/scenes/CHECKSUMS"));
}

TEST_F(Gallery, TwoRunsWriteTheSamePictures)
{
    ASSERT_EQ(Start({m_folder.Path("out")}).exitCode, 0);
    ASSERT_EQ(Start({m_folder.Path("again")}).exitCode, 0);
    for (const std::string& file : Files())
    {
        if (file != "index.html")  // holds times
        {
            EXPECT_EQ(m_folder.Read("out/" + file), m_folder.Read("again/" + file)) << file;
        }
    }
}

TEST_F(Gallery, ThePageShowsEveryPictureAndWhetherThePathsAgree)
{
    ASSERT_EQ(Start({m_folder.Path("out"), "--scale", "3"}).exitCode, 0);
    const std::string page  = Page();
    std::size_t       shown = 0;
    const std::regex  image(R"re(<img src="([^"]+)" width="(\d+)" height="(\d+)")re");
    for (auto at = std::sregex_iterator(page.begin(), page.end(), image); at != std::sregex_iterator(); ++at, ++shown)
    {
        const png::Image picture = Drawn((*at)[1]);
        EXPECT_EQ((*at)[2], std::to_string(3 * picture.width));
        EXPECT_EQ((*at)[3], std::to_string(3 * picture.height));
    }
    EXPECT_EQ(shown, 2 * scenes::All().size());
    EXPECT_NE(page.find("image-rendering: pixelated"), std::string::npos);
    EXPECT_NE(page.find("same bytes"), std::string::npos);
    EXPECT_TRUE(std::regex_search(page, std::regex("differs as documented: \\d+ pixels")));
    EXPECT_EQ(page.find("DIFFERS"), std::string::npos);
}

TEST_F(Gallery, AnOwnPictureChangesTheLastSceneAlone)
{
    ASSERT_EQ(Start({m_folder.Path("out")}).exitCode, 0);
    WritePicture(m_logs, "mine.png", 31, 300, 7);
    ASSERT_EQ(Start({m_folder.Path("mine"), m_logs.Path("mine.png")}).exitCode, 0);
    for (const scenes::Scene& scene : scenes::All())
    {
        const std::string file = scene.name + std::string(".portable.png");
        EXPECT_EQ(m_folder.Read("out/" + file) != m_folder.Read("mine/" + file), &scene == &scenes::Own()) << file;
    }
}

TEST_F(Gallery, EveryOwnPictureGetsASceneOfItsOwn)
{
    WritePicture(m_logs, "a.png", 1, 1, 7);
    WritePicture(m_logs, "b.png", 500, 2, 7);
    WritePicture(m_logs, "c.png", 2, 500, 7);
    const Run run = Start({m_folder.Path("out"), m_logs.Path("a.png"), m_logs.Path("b.png"), m_logs.Path("c.png"),
                           "--scene", scenes::Own().name});
    EXPECT_EQ(run.exitCode, 0);
    const std::string     own      = scenes::Own().name;
    std::set<std::string> expected = {"index.html"};
    for (const char* suffix : {".portable.png", ".optimised.png", "_2.portable.png", "_2.optimised.png",
                               "_3.portable.png", "_3.optimised.png"})
    {
        expected.insert(own + suffix);
    }
    EXPECT_EQ(Files(), expected);
    EXPECT_NE(Drawn(own + ".portable.png").argb, Drawn(own + "_2.portable.png").argb);
    EXPECT_NE(Drawn(own + "_2.portable.png").argb, Drawn(own + "_3.portable.png").argb);
}

TEST_F(Gallery, TheSheetHoldsTheChosenScenesInTwoColumns)
{
    const scenes::Scene& first  = *scenes::All().begin();
    const scenes::Scene& second = scenes::All().begin()[1];
    const scenes::Scene& third  = scenes::All().begin()[2];
    const Run run = Start({m_folder.Path("out"), "--sheet", m_folder.Path("sheet.png"), "--scene", first.name,
                           "--scene", second.name, "--scene", third.name});
    ASSERT_EQ(run.exitCode, 0) << testing::PrintToString(run.errors);
    EXPECT_EQ(Files().size(), 7U);
    const png::LoadResult sheet = png::Load(m_folder.Path("sheet.png"));
    ASSERT_EQ(sheet.error, "");
    EXPECT_EQ(sheet.image.width, 2 * 400U + 3 * 8);
    EXPECT_EQ(sheet.image.height, 2 * 240U + 3 * 8);

    const png::Image picture = Drawn(second.name + std::string(".portable.png"));
    for (std::uint32_t y = 0; y < picture.height; ++y)
    {
        for (std::uint32_t x = 0; x < picture.width; ++x)
        {
            const std::uint32_t shown = sheet.image.argb[(y + 8) * sheet.image.width + x + 400 + 16];
            ASSERT_EQ(shown, picture.argb[y * picture.width + x] | 0xFF000000U) << x << ", " << y;
        }
    }
}

TEST_F(Gallery, ThePicturesThatShipWithTheScenesAreFound)
{
    const Run run = Start({m_folder.Path("out")}, false);
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run.errors);
    EXPECT_TRUE(run.errors.empty());
    EXPECT_EQ(Files().size(), 2 * scenes::All().size() + 1);
}

// ---- what cannot be read -------------------------------------------------------------------------------------------

TEST_F(Gallery, AMissingOwnPictureIsOneLineAndNothingIsWritten)
{
    ExpectOneLine(Start({m_folder.Path("out"), m_logs.Path("none.png")}), 1, "none.png: No such file or directory");
    EXPECT_TRUE(m_folder.Names().empty());
}

TEST_F(Gallery, ABrokenOwnPictureIsOneLineAndNothingIsWritten)
{
    const tiny_png::Bytes good =
        tiny_png::Encode({20, 20, tiny_png::Rgb, 8, [](auto x, auto y, int) { return x * y; }});

    m_logs.Write("cut.png", tiny_png::Bytes(good.begin(), good.begin() + 200));
    ExpectOneLine(Start({m_folder.Path("out"), m_logs.Path("cut.png")}), 1, "cut.png: the file is truncated");

    tiny_png::Bytes damaged = good;
    damaged[100] ^= 0x40;
    m_logs.Write("damaged.png", damaged);
    ExpectOneLine(Start({m_folder.Path("out"), m_logs.Path("damaged.png")}), 1, "damaged.png: ");

    m_logs.Write("text.png", {'h', 'e', 'l', 'l', 'o'});
    ExpectOneLine(Start({m_folder.Path("out"), m_logs.Path("text.png")}), 1, "text.png: not a PNG file");

    m_logs.Write("empty.png", {});
    ExpectOneLine(Start({m_folder.Path("out"), m_logs.Path("empty.png")}), 1, "empty.png: the file is empty");

    ExpectOneLine(Start({m_folder.Path("out"), m_logs.Path()}), 1, "Is a directory");

    EXPECT_TRUE(m_folder.Names().empty());
}

TEST_F(Gallery, TheSecondOfTwoOwnPicturesIsCheckedToo)
{
    WritePicture(m_logs, "good.png", 3, 3, 0);
    ExpectOneLine(Start({m_folder.Path("out"), m_logs.Path("good.png"), m_logs.Path("none.png")}), 1, "none.png: ");
    EXPECT_TRUE(m_folder.Names().empty());
}

TEST_F(Gallery, AMissingOrBrokenPictureOfAnySceneIsOneLineAndNothingIsWritten)
{
    for (const scenes::PictureFile& picture : scenes::PictureFiles())
    {
        const tiny_png::Bytes good = m_pictures.Read(picture.file);
        fs::remove(m_pictures.Path(picture.file));
        ExpectOneLine(Start({m_folder.Path("out")}), 1, picture.file + std::string(": No such file or directory"));
        m_pictures.Write(picture.file, tiny_png::Bytes(good.begin(), good.end() - 1));
        ExpectOneLine(Start({m_folder.Path("out")}), 1, picture.file + std::string(": the file is truncated"));
        m_pictures.Write(picture.file, good);
    }
    EXPECT_TRUE(m_folder.Names().empty());
}

TEST_F(Gallery, APictureOfAnotherSizeThanTheScenesNeedIsOneLine)
{
    WritePicture(m_pictures, "glass.png", 96, 95, 0);
    ExpectOneLine(Start({m_folder.Path("out")}), 1, "glass.png: the scenes need 96 x 96 pixels");
    EXPECT_TRUE(m_folder.Names().empty());
}

// ---- what cannot be written ----------------------------------------------------------------------------------------

TEST_F(Gallery, AFolderThatCannotBeMadeIsOneLine)
{
    m_folder.Write("file", {1});
    ExpectOneLine(Start({m_folder.Path("file")}), 1, "/file: ");
    ExpectOneLine(Start({m_folder.Path("file/out")}), 1, "/file/out: ");
    EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"file"});
    EXPECT_EQ(m_folder.Read("file"), tiny_png::Bytes{1});
}

TEST_F(Gallery, AFileThatCannotBeWrittenIsOneLineAndNoPartOfItStays)
{
    fs::create_directories(m_folder.Path("out/index.html"));
    ExpectOneLine(Start({m_folder.Path("out")}), 1, "index.html: ");
    fs::remove(m_folder.Path("out/index.html"));

    const std::string first = scenes::All().begin()->name + std::string(".portable.png");
    fs::create_directories(m_folder.Path("other/" + first));
    ExpectOneLine(Start({m_folder.Path("other")}), 1, first + ": ");

    ExpectOneLine(Start({m_folder.Path("third"), "--sheet", m_folder.Path("none/sheet.png")}), 1, "none/sheet.png: ");

    for (const auto& entry : fs::recursive_directory_iterator(m_folder.Path()))
    {
        EXPECT_NE(entry.path().extension(), ".part") << entry.path();
    }
}

// ---- the command line ----------------------------------------------------------------------------------------------

TEST_F(Gallery, AWrongCommandLineIsOneLineAndItsOwnExitCode)
{
    ExpectOneLine(Start({}), 2, "OUTDIR");
    ExpectOneLine(Start({m_folder.Path("out"), "--scale", "9"}), 2, "--scale");
    ExpectOneLine(Start({m_folder.Path("out"), "--scale", "x"}), 2, "--scale");
    ExpectOneLine(Start({m_folder.Path("out"), "--scene", "Nonesuch"}), 2, "Nonesuch");
    ExpectOneLine(Start({m_folder.Path("out"), "--nonesuch"}), 2, "--nonesuch");
    EXPECT_TRUE(m_folder.Names().empty());
}

TEST_F(Gallery, HelpGoesToTheOutput)
{
    const Run run = Start({"--help"}, false);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.errors.empty());
    EXPECT_GT(run.output.size(), 5U);
}

}  // namespace
