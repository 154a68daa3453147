// Tests of the program kanvo-image from outside: what it writes, prints and returns. Pictures are made by Tiny_Png, and
// stored images are put together and taken apart here by hand, so that nothing is judged by the code that it tests.
#include <cmath>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Dice.h"
#include "Kanvo.h"
#include "Png_Image.h"
#include "Scratch_Folder.h"
#include "Tiny_Png.h"

namespace
{

namespace fs = std::filesystem;

using Bytes = tiny_png::Bytes;
using Words = std::vector<std::string>;

// ---- pictures ------------------------------------------------------------------------------------------------------

struct Pixels
{
    std::uint32_t              width;
    std::uint32_t              height;
    std::vector<std::uint32_t> argb;
};

bool operator==(const Pixels& first, const Pixels& second)
{
    return first.width == second.width && first.height == second.height && first.argb == second.argb;
}

Pixels Make(std::uint32_t width, std::uint32_t height,
            const std::function<std::uint32_t(std::uint32_t x, std::uint32_t y)>& pixel)
{
    Pixels pixels{width, height, {}};
    for (std::uint32_t y = 0; y < height; ++y)
    {
        for (std::uint32_t x = 0; x < width; ++x)
        {
            pixels.argb.push_back(pixel(x, y));
        }
    }
    return pixels;
}

Bytes Png(const Pixels& pixels)
{
    return tiny_png::Encode({pixels.width, pixels.height, tiny_png::Rgba, 8,
                             [&](std::uint32_t x, std::uint32_t y, int channel)
                             {
                                 const std::uint32_t pixel = pixels.argb[y * pixels.width + x];
                                 return pixel >> (channel == 3 ? 24 : 16 - 8 * channel) & 255;
                             }});
}

//! Areas of few colours, some of them transparent and translucent: 20 x 12.
Pixels Icon()
{
    return Make(20, 12,
                [](std::uint32_t x, std::uint32_t y) -> std::uint32_t
                {
                    constexpr std::uint32_t Colours[] = {0x00000000, 0xFF203040, 0x80FF8000, 0xFFFFFFFF, 0xFF00A0F0};
                    return Colours[(x / 3 + y / 2 * 2) % 5];
                });
}

//! Opaque, every pixel another colour.
Pixels Photo(std::uint32_t width = 48, std::uint32_t height = 40)
{
    return Make(width, height,
                [](std::uint32_t x, std::uint32_t y) -> std::uint32_t
                { return 0xFF000000 | (x * 5 & 255) << 16 | (y * 6 & 255) << 8 | ((x * 3 + y * 2) & 255); });
}

//! Opaque, all grey.
Pixels Grey()
{
    return Make(30, 30,
                [](std::uint32_t x, std::uint32_t y) { return 0xFF000000 | ((x * 7 + y * 11) & 255) * 0x010101; });
}

//! A round, softly edged disc over transparent black: scaling it with a filter would show a dark fringe.
Pixels Fringed()
{
    return Make(16, 16,
                [](std::uint32_t x, std::uint32_t y) -> std::uint32_t
                {
                    const int dx = static_cast<int>(2 * x) - 15;
                    const int dy = static_cast<int>(2 * y) - 15;
                    const int d  = dx * dx + dy * dy;
                    return d < 100 ? 0xFFFFE0A0 : d < 130 ? 0x80FFE0A0 : 0;
                });
}

constexpr std::uint8_t Indices[] = {3, 3, 3, 0, 1, 3, 0, 0};

//! Indexed, 8 x 4, with an order of its own, an entry that occurs twice and one that no pixel uses.
Bytes IndexedPng()
{
    tiny_png::Picture picture{8, 4, tiny_png::Palette, 8, [](std::uint32_t x, std::uint32_t y, int) {
                                  return static_cast<unsigned>(Indices[(x + y) % 8]);
                              }};
    picture.palette      = {10, 20, 30, 200, 100, 0, 1, 2, 3, 255, 255, 255, 10, 20, 30};
    picture.transparency = {255, 128};
    return tiny_png::Encode(picture);
}

// ---- stored images by hand -----------------------------------------------------------------------------------------

void Append(Bytes& bytes, std::uint32_t value, int count)
{
    for (int shift = 0; shift < 8 * count; shift += 8)
    {
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

std::uint32_t At(const Bytes& bytes, std::size_t offset, int count)
{
    std::uint32_t value = 0;
    for (int index = count - 1; index >= 0; --index)
    {
        value = value << 8 | bytes.at(offset + static_cast<std::size_t>(index));
    }
    return value;
}

//! Header, palette and tokens, whatever they are.
Bytes Stored(int bits, std::uint32_t width, std::uint32_t height, const std::vector<std::uint32_t>& palette,
             const std::vector<std::uint32_t>& units)
{
    Bytes bytes;
    Append(bytes, 0x4F564E4B, 4);
    Append(bytes, 0x20454C52, 4);
    for (const int field : {bits, 1, 0, 0, 8, 8, 8, 8})
    {
        Append(bytes, static_cast<std::uint32_t>(field), 1);
    }
    const auto count = static_cast<std::uint32_t>(palette.size());
    for (const std::uint32_t field : {width, height, count, 0u, 0u, 40 + 4 * count})
    {
        Append(bytes, field, 4);
    }
    for (const std::uint32_t colour : palette)
    {
        Append(bytes, colour, 4);
    }
    for (const std::uint32_t unit : units)
    {
        Append(bytes, unit, bits / 8);
    }
    return bytes;
}

//! Reads a stored image that is known to be sound.
Pixels ReadStored(const Bytes& bytes)
{
    const int   size   = static_cast<int>(bytes.at(8)) / 8;
    Pixels      pixels = {At(bytes, 16, 4), At(bytes, 20, 4), {}};
    std::size_t at     = At(bytes, 36, 4);
    const auto  unit   = [&]
    {
        const std::uint32_t value = At(bytes, at, size);
        at += static_cast<std::size_t>(size);
        return value;
    };
    const auto colour = [&](std::uint32_t index) { return At(bytes, 40 + 4 * std::size_t{index}, 4); };
    for (;;)
    {
        std::uint32_t count = unit();
        if (count != 0)
        {
            pixels.argb.insert(pixels.argb.end(), count, colour(unit()));
            continue;
        }
        count = unit();
        if (count == 0)
        {
            return pixels;
        }
        for (; count != 0; --count)
        {
            pixels.argb.push_back(colour(unit()));
        }
    }
}

std::vector<std::uint32_t> PaletteOf(const Bytes& stored)
{
    std::vector<std::uint32_t> palette;
    for (std::uint32_t entry = 0; entry < At(stored, 24, 4); ++entry)
    {
        palette.push_back(At(stored, 40 + 4 * std::size_t{entry}, 4));
    }
    return palette;
}

// ---- running the program -------------------------------------------------------------------------------------------

std::string Quoted(const std::string& word)
{
    return "'" + std::regex_replace(word, std::regex("'"), "'\\''") + "'";
}

std::string TextOf(const Bytes& bytes)
{
    return {bytes.begin(), bytes.end()};
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

bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

struct Outcome
{
    int                      exitCode;  //!< -1: ended by a signal
    std::string              output;
    std::vector<std::string> errors;
};

class KanvoImage : public testing::Test
{
protected:
    //! Runs a line of shell in the scratch folder; "kanvo-image" there is the program under test.
    Outcome Shell(const std::string& line)
    {
        const std::string command = "cd " + Quoted(m_folder.Path()) + " && kanvo-image() { " +
                                    Quoted(KANVO_IMAGE_PROGRAM) + " \"$@\"; } && { " + line + "\n} >" +
                                    Quoted(m_logs.Path("out")) + " 2>" + Quoted(m_logs.Path("err"));
        return Collected(std::system(("bash -c " + Quoted(command)).c_str()));
    }

    Outcome Collected(int status) const
    {
        const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 255;
        return {code > 127 ? -1 : code, TextOf(m_logs.Read("out")), LinesOf(TextOf(m_logs.Read("err")))};
    }

    //! Runs the program with these words in the scratch folder.
    Outcome Start(const Words& words, const std::string& redirections = {})
    {
        if (redirections.empty())
        {
            return Spawn(words);
        }
        std::string line = "kanvo-image";
        for (const std::string& word : words)
        {
            line += " " + Quoted(word);
        }
        return Shell(line + redirections);
    }

    //! Without any shell, which takes longer to start than the program.
    Outcome Spawn(const Words& words)
    {
        std::vector<char*> arguments = {const_cast<char*>(KANVO_IMAGE_PROGRAM)};
        for (const std::string& word : words)
        {
            arguments.push_back(const_cast<char*>(word.c_str()));
        }
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, 1, m_logs.Path("out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        posix_spawn_file_actions_addopen(&actions, 2, m_logs.Path("err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        posix_spawn_file_actions_addchdir_np(&actions, m_folder.Path().c_str());
        pid_t process = 0;
        int   status  = 0;
        EXPECT_EQ(::posix_spawn(&process, KANVO_IMAGE_PROGRAM, &actions, nullptr, arguments.data(), environ), 0);
        EXPECT_EQ(::waitpid(process, &status, 0), process);
        posix_spawn_file_actions_destroy(&actions);
        return Collected(status);
    }

    //! Must work; warnings are allowed.
    Outcome Good(const Words& words, const std::string& redirections = {})
    {
        const Outcome run = Start(words, redirections);
        EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(words) << testing::PrintToString(run.errors);
        for (const std::string& line : run.errors)
        {
            EXPECT_FALSE(Has(line, "kanvo-image: ") && !Has(line, "kanvo-image: warning: ")) << line;
        }
        return run;
    }

    //! Must stop with one line about this.
    void ExpectOneLine(const Outcome& run, int exitCode, const std::string& part)
    {
        EXPECT_EQ(run.exitCode, exitCode) << part;
        ASSERT_EQ(run.errors.size(), 1u) << part << ": " << testing::PrintToString(run.errors);
        EXPECT_EQ(run.errors[0].rfind("kanvo-image: ", 0), 0u) << run.errors[0];
        EXPECT_TRUE(Has(run.errors[0], part)) << run.errors[0] << "\nshould say: " << part;
    }

    //! All files in and below the scratch folder.
    std::set<std::string> Files() const
    {
        std::set<std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(m_folder.Path()))
        {
            if (!entry.is_directory())
            {
                files.insert(fs::relative(entry.path(), m_folder.Path()).string());
            }
        }
        return files;
    }

    void Write(const std::string& name, const Bytes& bytes)
    {
        fs::create_directories(fs::path(m_folder.Path(name)).parent_path());
        m_folder.Write(name, bytes);
    }
    void Write(const std::string& name, const Pixels& pixels) { Write(name, Png(pixels)); }

    Bytes       Read(const std::string& name) const { return m_folder.Read(name); }
    std::string Text(const std::string& name) const { return TextOf(Read(name)); }

    Pixels LoadPng(const std::string& name) const
    {
        const png::LoadResult loaded = png::Load(m_folder.Path(name));
        EXPECT_EQ(loaded.error, "");
        return {loaded.image.width, loaded.image.height, loaded.image.argb};
    }

    //! What decode makes of a stored file.
    Pixels Decoded(const std::string& name)
    {
        Good({"decode", name, "-o", "decoded.png", "--force"});
        return LoadPng("decoded.png");
    }

    Scratch_Folder m_folder;
    Scratch_Folder m_logs;
};

const char* const LosslessFormats[] = {"argb32", "rle8", "rle16", "auto"};

// ---- encode and decode: pictures survive ---------------------------------------------------------------------------

TEST_F(KanvoImage, DecodingALosslessImageGivesThePictureBack)
{
    Write("icon.png", Icon());
    for (const std::string format : LosslessFormats)
    {
        const Outcome run = Good({"encode", "icon.png", "-o", format, "--format", format});
        EXPECT_EQ(run.output, "");
        EXPECT_TRUE(Decoded(format + "/icon.bin") == Icon()) << format;
    }
}

TEST_F(KanvoImage, WhatTheToolWritesAnIndependentReaderUnderstands)
{
    Write("icon.png", Icon());
    Write("photo.png", Photo());
    Good({"encode", "icon.png", "-o", "8", "--format", "rle8"});
    Good({"encode", "icon.png", "photo.png", "-o", "16", "--format", "rle16"});
    EXPECT_TRUE(ReadStored(Read("8/icon.bin")) == Icon());
    EXPECT_TRUE(ReadStored(Read("16/icon.bin")) == Icon());
    EXPECT_TRUE(ReadStored(Read("16/photo.bin")) == Photo());
}

TEST_F(KanvoImage, DecodeReadsWhatAnIndependentWriterWrote)
{
    const std::vector<std::uint32_t> palette = {0, 0xFF010203, 0x80FFFFFF};
    for (const int bits : {8, 16})
    {
        Write("hand.bin", Stored(bits, 3, 2, palette, {4, 1, 0, 2, 2, 0, 0, 0}));
        const Pixels expected = {3, 2, {palette[1], palette[1], palette[1], palette[1], palette[2], palette[0]}};
        EXPECT_TRUE(Decoded("hand.bin") == expected) << bits;
    }
}

TEST_F(KanvoImage, FormatsWithoutAlphaKeepTheColours)
{
    const Pixels photo = Photo();
    Write("photo.png", photo);
    Good({"encode", "photo.png", "-o", "rgb32", "--format", "rgb32"});
    EXPECT_TRUE(Decoded("rgb32/photo.bin") == photo);

    // Five, six and five bits, the upper ones repeated below: at most 4 levels away, which is half a step of five bits.
    Good({"encode", "photo.png", "-o", "rgb565", "--format", "rgb565"});
    const Pixels coarse = Decoded("rgb565/photo.bin");
    ASSERT_EQ(coarse.argb.size(), photo.argb.size());
    for (std::size_t at = 0; at < photo.argb.size(); ++at)
    {
        const std::uint32_t shown = coarse.argb[at];
        EXPECT_EQ(shown >> 24, 255u);
        for (const int shift : {0, 8, 16})
        {
            const int bits  = shift == 8 ? 6 : 5;
            const int level = static_cast<int>(shown >> shift & 255);
            EXPECT_EQ(level & ((1 << (8 - bits)) - 1), level >> bits);
            EXPECT_LE(std::abs(level - static_cast<int>(photo.argb[at] >> shift & 255)), shift == 8 ? 2 : 4);
        }
    }

    Write("grey.png", Grey());
    Good({"encode", "grey.png", "-o", "a8", "--format", "a8"});
    EXPECT_TRUE(Decoded("a8/grey.bin") == Grey());

    Write("fringed.png", Fringed());
    Good({"encode", "fringed.png", "-o", "a8", "--format", "a8"});
    const Pixels coverage = Make(16, 16,
                                 [](std::uint32_t x, std::uint32_t y)
                                 { return 0xFF000000 | (Fringed().argb[y * 16 + x] >> 24) * 0x010101; });
    EXPECT_TRUE(Decoded("a8/fringed.bin") == coverage);
}

TEST_F(KanvoImage, APictureOfOnePixelSurvivesEveryFormat)
{
    const Pixels dot = {1, 1, {0xFF7B7B7B}};
    Write("dot.png", dot);
    for (const std::string format : {"argb32", "rgb32", "a8", "rle8", "rle16", "auto"})
    {
        Good({"encode", "dot.png", "-o", format, "--format", format});
        EXPECT_TRUE(Decoded(format + "/dot.bin") == dot) << format;
        EXPECT_EQ(Good({"verify", format + "/dot.bin"}).exitCode, 0);
        EXPECT_EQ(Good({"diff", "dot.png", format + "/dot.bin"}).exitCode, 0);
        Good({"info", format + "/dot.bin"});
    }
    Good({"encode", "dot.png", "-o", "rgb565", "--format", "rgb565"});
    Good({"info", "dot.png"});
    Good({"report", "."});
}

//! Draws a stored image over a background, with Blit or with BlitAlpha.
std::vector<Tov_UInt> Drawn(const Bytes& file, Tov_UInt background, bool weighted)
{
    constexpr Tov_UByte   Any = 255;
    Kanvo_Screen          screen(nullptr);
    Kanvo_BitmapRLE       image(&screen, file.data(), file.size());
    Kanvo_BitmapA8        map(&screen, 1, 1, &Any);  // must be given, and is ignored
    std::vector<Tov_UInt> pixels(std::size_t{image.GetWidth()} * image.GetHeight(), background);
    Kanvo_BitmapARGB32    target(&screen, image.GetWidth(), image.GetHeight(), BBT_RAM, pixels.data());
    target.Lock();
    if (weighted)
    {
        target.BlitAlpha(&image, &map, image.GetWidth(), image.GetHeight(), 0, 0, 0, 0, 0, 255);
    }
    else
    {
        target.Blit(&image, image.GetWidth(), image.GetHeight(), 0, 0, 0, 0, 0, 255, 0);
    }
    target.Unlock(0, 0, 0, 0);
    return pixels;
}

//! Draws a picture by copying, transparent pixels left out by a colour key.
std::vector<Tov_UInt> Blitted(const Pixels& picture, Tov_UInt background)
{
    constexpr Tov_UInt    Key = 0x00FF00FF;  // a colour that the pictures of the test do not have
    Kanvo_Screen          screen(nullptr);
    std::vector<Tov_UInt> source(picture.argb.begin(), picture.argb.end());
    for (Tov_UInt& pixel : source)
    {
        pixel = pixel >> 24 == 0 ? Key : pixel;
    }
    std::vector<Tov_UInt> pixels(source.size(), background);
    Kanvo_BitmapARGB32    image(&screen, picture.width, picture.height, BBT_RAM, source.data());
    Kanvo_BitmapARGB32    target(&screen, picture.width, picture.height, BBT_RAM, pixels.data());
    target.Lock();
    target.Blit(&image, picture.width, picture.height, 0, 0, 0, 0, BLIT_COLORKEY, 255, Key);
    target.Unlock(0, 0, 0, 0);
    return pixels;
}

//! What BlitAlpha is to do: store opaque pixels, leave out transparent ones, blend the others by their alpha.
std::vector<Tov_UInt> Blended(const Pixels& picture, Tov_UInt background)
{
    std::vector<Tov_UInt> pixels(picture.argb.size(), background);
    for (std::size_t at = 0; at < pixels.size(); ++at)
    {
        const Tov_UInt pixel = picture.argb[at];
        if (pixel >> 24 == 255)
        {
            pixels[at] = pixel;
        }
        else
        {
            Kanvo_PixelARGB32_Access::BlendPixel(&pixels[at], pixel | 0xFF000000u, static_cast<Tov_UByte>(pixel >> 24));
        }
    }
    return pixels;
}

TEST_F(KanvoImage, DrawingTheImageEqualsBlittingTheDecodedPicture)
{
    constexpr Tov_UInt   Background = 0xFF336699;
    const support::Seeds seeds(60);
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        support::Dice       dice(seed);
        const std::uint32_t width    = 1 + dice.Below(70);
        const std::uint32_t height   = 1 + dice.Below(40);
        const std::uint32_t colours  = 1 + dice.Below(dice.OneIn(3) ? 2000 : 40);
        const std::uint32_t longest  = 1 + dice.Below(dice.OneIn(2) ? 3 : 90);
        const bool          weighted = dice.OneIn(2);  // colours with alpha between nothing and all
        std::uint32_t       colour   = 0;
        std::uint32_t       lasts    = 0;
        const auto          next     = [&](std::uint32_t, std::uint32_t)
        {
            if (lasts == 0)
            {
                lasts                     = 1 + dice.Below(longest);
                colour                    = (1 + dice.Below(colours)) * 0x9E3779B1u;
                const std::uint32_t alpha = dice.OneIn(3) ? 0 : weighted ? colour >> 24 : 255;
                colour                    = (colour & 0x00FFFFFF) | alpha << 24;
            }
            --lasts;
            return colour;
        };
        const Pixels      original = Make(width, height, next);
        const std::string format   = dice.OneIn(2) ? "rle8" : "rle16";
        Write("in.png", original);
        Good({"encode", "in.png", "-o", ".", "--format", format, "--force", "--quiet"});
        const Pixels decoded = Decoded("in.bin");
        EXPECT_TRUE(format == "rle8" || decoded == original) << "seed " << seed;

        const Bytes file = Read("in.bin");
        ASSERT_EQ(Drawn(file, Background, true), Blended(decoded, Background)) << "seed " << seed << ", " << format;
        if (!weighted)
        {
            ASSERT_EQ(Drawn(file, Background, false), Blitted(decoded, Background))
                << "seed " << seed << ", " << format;
        }
    }
}

// ---- encode: palettes ----------------------------------------------------------------------------------------------

TEST_F(KanvoImage, AnIndexedPictureKeepsItsPaletteEntryByEntry)
{
    Write("indexed.png", IndexedPng());
    const std::vector<std::uint32_t> order = {0xFF0A141E, 0x80C86400, 0xFF010203, 0xFFFFFFFF, 0xFF0A141E};
    for (const Words& more : {Words{}, Words{"--keep-palette"}})
    {
        Words words = {"encode", "indexed.png", "-o", ".", "--format", "rle8", "--force"};
        words.insert(words.end(), more.begin(), more.end());
        const Outcome run = Good(words);
        EXPECT_EQ(PaletteOf(Read("indexed.bin")), order);
        EXPECT_TRUE(Has(run.errors.at(0), "in the file's order")) << run.errors.at(0);
    }
    EXPECT_TRUE(ReadStored(Read("indexed.bin")) == LoadPng("indexed.png"));

    Good({"encode", "indexed.png", "-o", ".", "--format", "rle8", "--force", "--no-keep-palette"});
    const std::vector<std::uint32_t> byAppearance = {0xFFFFFFFF, 0xFF0A141E, 0x80C86400};
    EXPECT_EQ(PaletteOf(Read("indexed.bin")), byAppearance);
    EXPECT_TRUE(ReadStored(Read("indexed.bin")) == LoadPng("indexed.png"));
}

TEST_F(KanvoImage, AutoCountsTheEntriesThatAKeptPaletteHas)
{
    tiny_png::Picture picture{16, 16, tiny_png::Palette, 8,
                              [](std::uint32_t x, std::uint32_t, int) { return x / 4 % 3 * 80; }};
    for (unsigned entry = 0; entry < 256; ++entry)
    {
        for (const unsigned channel : {entry, 255 - entry, entry / 3})
        {
            picture.palette.push_back(static_cast<std::uint8_t>(channel));
        }
    }
    Write("few.png", tiny_png::Encode(picture));
    const auto encode = [&](const Words& more)
    {
        Words words = {"encode", "few.png", "-o", ".", "-f"};
        words.insert(words.end(), more.begin(), more.end());
        const Outcome run   = Good(words);
        std::string   bytes = std::to_string(fs::file_size(m_folder.Path("few.bin")));
        bytes = bytes.size() > 3 ? bytes.substr(0, bytes.size() - 3) + "," + bytes.substr(bytes.size() - 3) : bytes;
        EXPECT_TRUE(Has(run.errors.at(0), " " + bytes + " bytes; next is ")) << run.errors.at(0);
        EXPECT_TRUE(Decoded("few.bin") == LoadPng("few.png"));
        return run.errors.at(0);
    };
    EXPECT_TRUE(Has(encode({}), "rgb32: with the file's palette of 256 colours rle8 and rle16 are larger"));
    EXPECT_TRUE(Has(encode({"--no-keep-palette"}), "rle8: 3 colours"));
    EXPECT_TRUE(Has(encode({"--keep-palette"}), "rle8: the file's palette of 256 colours"));
    EXPECT_EQ(PaletteOf(Read("few.bin")).size(), 256u);
    EXPECT_TRUE(Has(Good({"info", "few.png"}).output, "rgb32: with the file's palette"));
}

TEST_F(KanvoImage, APaletteThatMustBeKeptAndCannotIsAnError)
{
    Write("indexed.png", IndexedPng());
    ExpectOneLine(
        Start({"encode", "indexed.png", "-o", "out", "--format", "rle8", "--palette-max", "3", "--keep-palette"}), 1,
        "indexed.png: its palette cannot be kept, it has 5 colours");
    EXPECT_FALSE(fs::exists(m_folder.Path("out")));
    Good({"encode", "indexed.png", "-o", "out", "--format", "rle8", "--palette-max", "3"});
    EXPECT_LE(PaletteOf(Read("out/indexed.bin")).size(), 3u);
    EXPECT_TRUE(ReadStored(Read("out/indexed.bin")) == LoadPng("indexed.png"));  // three are used
}

TEST_F(KanvoImage, ColoursThatFitAreExact)
{
    Write("few.png",
          Make(64, 64, [](std::uint32_t x, std::uint32_t y) { return 0xFF000000 | (x % 16 * 16 + y % 16); }));
    Good({"encode", "few.png", "-o", ".", "--format", "rle8"});
    EXPECT_EQ(PaletteOf(Read("few.bin")).size(), 256u);
    EXPECT_TRUE(ReadStored(Read("few.bin")) == LoadPng("few.png"));
}

TEST_F(KanvoImage, WhatTooFewColoursCostIsPrinted)
{
    Write("photo.png", Photo());
    double before = 1e9;
    for (const int most : {2, 16, 64, 256})
    {
        const Outcome run = Good(
            {"encode", "photo.png", "-o", ".", "--format", "rle8", "--palette-max", std::to_string(most), "--force"});
        EXPECT_LE(PaletteOf(Read("photo.bin")).size(), static_cast<std::size_t>(most));

        // An opaque picture is seen alike over black and white: the printed mean is that of the colour channels.
        const Pixels shown = ReadStored(Read("photo.bin"));
        double       sum   = 0;
        int          worst = 0;
        for (std::size_t at = 0; at < shown.argb.size(); ++at)
        {
            for (const int shift : {0, 8, 16})
            {
                const int error = std::abs(static_cast<int>(shown.argb[at] >> shift & 255) -
                                           static_cast<int>(Photo().argb[at] >> shift & 255));
                sum += error;
                worst = std::max(worst, error);
            }
        }
        const double mean = sum / (3.0 * static_cast<double>(shown.argb.size()));
        std::smatch  figures;
        ASSERT_TRUE(
            std::regex_search(run.errors.at(0), figures, std::regex("mean error ([0-9.]+), largest ([0-9.]+) of 255")))
            << run.errors.at(0);
        EXPECT_NEAR(std::stod(figures[1]), mean, 0.001);
        EXPECT_NEAR(std::stod(figures[2]), worst, 0.001);
        EXPECT_LT(mean, before) << "more colours, more error";
        before = mean;
    }
}

TEST_F(KanvoImage, DitheringChangesPixelsButNotTheMeanOfAnArea)
{
    // Between two palette entries lies what only a mixture shows.
    Write("flat.png", Make(64, 64,
                           [](std::uint32_t x, std::uint32_t) {
                               return x < 8 ? 0xFF000000u : x > 55 ? 0xFFC0C0C0u : 0xFF505050u + (x / 16) * 0x010101;
                           }));
    for (const std::string dither : {"none", "ordered", "fs"})
    {
        Good({"encode", "flat.png", "-o", dither, "--format", "rle8", "--palette-max", "2", "--dither", dither});
        const Pixels            shown = ReadStored(Read(dither + "/flat.bin"));
        std::set<std::uint32_t> colours;
        double                  sum = 0;
        for (std::uint32_t y = 16; y < 48; ++y)
        {
            for (std::uint32_t x = 16; x < 48; ++x)
            {
                colours.insert(shown.argb[y * 64 + x]);
                sum += shown.argb[y * 64 + x] & 255;
            }
        }
        EXPECT_EQ(colours.size(), dither == "none" ? 1u : 2u) << dither;
        if (dither != "none")
        {
            EXPECT_NEAR(sum / (32 * 32), 0x51 + 0.5, 4) << dither;
        }
    }
    Write("photo.png", Photo());
    Good({"encode", "photo.png", "-o", "plain", "--format", "rgb565"});
    Good({"encode", "photo.png", "-o", "dithered", "--format", "rgb565", "--dither", "ordered"});
    EXPECT_NE(Read("plain/photo.bin"), Read("dithered/photo.bin"));
}

// ---- encode: the other options -------------------------------------------------------------------------------------

TEST_F(KanvoImage, AutoTakesTheSmallestLosslessFormatAndSaysWhy)
{
    const std::map<std::string, Pixels> pictures = {
        {"icon", Icon()},
        {"photo", Photo()},
        {"grey", Grey()},
        {"fringed", Fringed()},
        {"plain", Make(40, 40, [](std::uint32_t, std::uint32_t) { return 0xFF102030u; })}};
    for (const auto& [name, pixels] : pictures)
    {
        Write(name + ".png", pixels);
        std::string    best;
        std::uintmax_t size = ~std::uintmax_t{0};
        for (const std::string format : {"argb32", "rgb32", "rgb565", "a8", "rle8", "rle16"})
        {
            Good({"encode", name + ".png", "-o", format, "--format", format}, " 2>/dev/null");
            const std::string file = format + "/" + name + ".bin";
            if (Decoded(file) == pixels)
            {
                size = std::min(size, fs::file_size(m_folder.Path(file)));
            }
        }
        const Outcome run = Good({"encode", name + ".png", "-o", "auto"});
        EXPECT_EQ(fs::file_size(m_folder.Path("auto/" + name + ".bin")), size) << name;
        EXPECT_TRUE(Decoded("auto/" + name + ".bin") == pixels) << name;
        EXPECT_TRUE(std::regex_search(run.errors.at(0), std::regex(": .*bytes; next is [a-z0-9]+ with [0-9,]+ bytes")))
            << run.errors.at(0);
    }
}

TEST_F(KanvoImage, AFringeIsWarnedOfWhereAFilterWouldShowIt)
{
    Write("fringed.png", Fringed());
    const Outcome run = Start({"encode", "fringed.png", "-o", "raw", "--format", "argb32"});
    EXPECT_EQ(run.exitCode, 0);
    ASSERT_EQ(run.errors.size(), 2u);
    EXPECT_EQ(run.errors[0].rfind("kanvo-image: warning: fringed.png: ", 0), 0u) << run.errors[0];
    EXPECT_TRUE(Has(run.errors[0], "--bleed")) << run.errors[0];

    const Outcome rle = Good({"encode", "fringed.png", "-o", "rle", "--format", "rle8"});
    ASSERT_GE(rle.errors.size(), 2u);
    EXPECT_TRUE(Has(rle.errors[1], "--bleed")) << rle.errors[1];

    for (const std::string format : {"argb32", "rle8"})
    {
        const Outcome bled = Good({"encode", "fringed.png", "-o", "bled" + format, "--format", format, "--bleed", "1"});
        for (const std::string& line : bled.errors)
        {
            EXPECT_FALSE(Has(line, "fringe ")) << line;
        }
    }
    Write("photo.png", Photo());
    EXPECT_EQ(Good({"encode", "photo.png", "-o", "raw", "--format", "argb32"}).errors.size(), 1u);
}

TEST_F(KanvoImage, BleedingChangesHiddenColoursOnlyAndOnlySoFar)
{
    const Pixels before = Fringed();
    Write("fringed.png", before);
    std::size_t changedBefore = 0;
    for (const int texels : {1, 2, 3})
    {
        Good({"encode", "fringed.png", "-o", ".", "--format", "argb32", "--bleed", std::to_string(texels), "--force"});
        const Pixels after   = Decoded("fringed.bin");
        std::size_t  changed = 0;
        for (std::uint32_t y = 0; y < 16; ++y)
        {
            for (std::uint32_t x = 0; x < 16; ++x)
            {
                const std::uint32_t was  = before.argb[y * 16 + x];
                const std::uint32_t is   = after.argb[y * 16 + x];
                bool                near = false;
                for (std::uint32_t other = 0; other < 256; ++other)
                {
                    const auto far = std::max(std::abs(static_cast<int>(other % 16) - static_cast<int>(x)),
                                              std::abs(static_cast<int>(other / 16) - static_cast<int>(y)));
                    near           = near || (before.argb[other] >> 24 != 0 && far <= texels);
                }
                EXPECT_EQ(is >> 24, was >> 24);
                EXPECT_EQ(is, was >> 24 != 0 ? was : near ? 0x00FFE0A0u : 0u) << x << ", " << y;  // one colour alone
                changed += is != was ? 1 : 0;
            }
        }
        EXPECT_GT(changed, changedBefore);
        changedBefore = changed;
    }
}

TEST_F(KanvoImage, TrimmingCutsOffTheTransparentBorderAndSaysWhereItWas)
{
    const Pixels inner = Icon();
    Write("framed.png", Make(40, 30,
                             [&](std::uint32_t x, std::uint32_t y) -> std::uint32_t
                             {
                                 const bool inside = x >= 7 && x < 27 && y >= 5 && y < 17;
                                 return inside ? inner.argb[(y - 5) * 20 + x - 7] | 0x01000000u : 0x00ABCDEF;
                             }));
    const Outcome run = Good({"encode", "framed.png", "-o", ".", "--trim"});
    EXPECT_TRUE(Has(run.errors.at(0), "trimmed at (7, 5) to 20 x 12")) << run.errors.at(0);
    const Pixels trimmed = Decoded("framed.bin");
    EXPECT_EQ(trimmed.width, 20u);
    EXPECT_EQ(trimmed.height, 12u);
    EXPECT_EQ(trimmed.argb[0], inner.argb[0] | 0x01000000u);

    Write("empty.png", Make(9, 9, [](std::uint32_t, std::uint32_t) { return 0u; }));
    Good({"encode", "empty.png", "-o", ".", "--trim"});
    EXPECT_EQ(Decoded("empty.bin").argb, std::vector<std::uint32_t>{0});
}

TEST_F(KanvoImage, TheFilesAreThoseAskedForAndABinaryOtherwise)
{
    Write("in.png", Icon());
    const std::string                            c = "image_in.c", h = "image_in.h", bin = "in.bin";
    const std::map<Words, std::set<std::string>> cases = {
        {{}, {bin}},
        {{"--bin"}, {bin}},
        {{"--c"}, {c}},
        {{"--h"}, {h}},
        {{"--c", "--h"}, {c, h}},
        {{"--bin", "--c", "--h"}, {bin, c, h}},
        {{"--name", "other"}, {"other.bin"}},
        {{"--name", "other", "--c", "--h", "--bin"}, {"other.bin", "other.c", "other.h"}},
    };
    for (const auto& [options, files] : cases)
    {
        Words words = {"encode", "in.png", "-o", "out"};
        words.insert(words.end(), options.begin(), options.end());
        Good(words);
        std::set<std::string> expected = {"in.png"};
        for (const std::string& file : files)
        {
            expected.insert("out/" + file);
        }
        EXPECT_EQ(Files(), expected) << testing::PrintToString(options);
        fs::remove_all(m_folder.Path("out"));
    }
}

// ---- encode: many pictures -----------------------------------------------------------------------------------------

TEST_F(KanvoImage, AFolderStandsForThePicturesBelowItSortedByName)
{
    for (const char* name : {"in/b.png", "in/a.png", "in/sub/d.PNG", "in/sub/c.png", "in/z.png", "in/sub-e/e.png"})
    {
        Write(name, Icon());
    }
    Write("in/notes.txt", Bytes{1});
    Write("in/png", Bytes{1});
    fs::create_directories(m_folder.Path("in/folder.png"));
    fs::create_directory_symlink("..", m_folder.Path("in/sub/loop"));
    const Outcome run = Good({"encode", "in", "-o", "out"});

    Words shown;
    for (const std::string& line : run.errors)
    {
        std::smatch found;
        if (std::regex_search(line, found, std::regex("^\\[([0-9])/6\\] (in/\\S+)  20 x 12, ")))
        {
            shown.push_back(std::string(found[1]) + " " + std::string(found[2]));
        }
    }
    EXPECT_EQ(shown, (Words{"1 in/a.png", "2 in/b.png", "3 in/sub/c.png", "4 in/sub/d.PNG", "5 in/sub-e/e.png",
                            "6 in/z.png"}));
    for (const std::string name : {"a", "b", "c", "d", "e", "z"})
    {
        EXPECT_TRUE(ReadStored(Read("out/" + name + ".bin")) == Icon()) << name;
    }
}

TEST_F(KanvoImage, AFolderWithoutAPictureIsAnError)
{
    fs::create_directories(m_folder.Path("empty/deeper"));
    ExpectOneLine(Start({"encode", "empty", "-o", "out"}), 1, "empty: no PNG file");
    ExpectOneLine(Start({"report", "empty"}), 1, "empty: no PNG file");
    EXPECT_TRUE(Files().empty());
}

TEST_F(KanvoImage, TwoPicturesOfOneNameAreAnErrorAndNothingIsWritten)
{
    Write("a/icon.png", Icon());
    Write("b/icon.png", Photo());
    const std::set<std::string> before = Files();
    ExpectOneLine(Start({"encode", "a", "b", "-o", "out"}), 1,
                  "a/icon.png and b/icon.png would both become out/icon.bin");
    Write("a-b.png", Icon());
    Write("a_b.png", Icon());
    ExpectOneLine(Start({"encode", "a-b.png", "a_b.png", "-o", "out", "--c"}), 1, "would both become out/image_a_b.c");
    EXPECT_FALSE(fs::exists(m_folder.Path("out")));
    Good({"encode", "a-b.png", "a_b.png", "-o", "out"});
    ExpectOneLine(Start({"encode", "a-b.png", "a-b.png", "-o", "other"}), 1, "would both become other/a-b.bin");
}

TEST_F(KanvoImage, ABrokenPictureCostsItselfAlone)
{
    Write("in/a.png", Icon());
    Write("in/b.png", Bytes{'n', 'o'});
    Write("in/c.png", Icon());
    const Outcome run = Start({"encode", "in", "-o", "out", "--quiet"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.errors, (Words{"kanvo-image: in/b.png: not a PNG file", "kanvo-image: 1 of 3 pictures failed"}));
    EXPECT_TRUE(ReadStored(Read("out/a.bin")) == Icon());
    EXPECT_TRUE(ReadStored(Read("out/c.bin")) == Icon());
    EXPECT_FALSE(fs::exists(m_folder.Path("out/b.bin")));
}

TEST_F(KanvoImage, QuietSaysNothingWhenAllIsWell)
{
    Write("in/a.png", Icon());
    Write("in/b.png", Photo());
    EXPECT_EQ(Good({"encode", "in", "-o", "out", "-q"}).errors, Words{});
    EXPECT_EQ(Good({"report", "in", "-q"}).errors, Words{});
    EXPECT_EQ(Good({"verify", "out/a.bin", "-q"}).output, "");
}

//! What a program prints on a terminal as its stderr.
std::string OnTerminal(const std::string& folder, const Words& words, int exitCode)
{
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0)
    {
        return {};
    }
    const std::string slave = ::ptsname(master);
    std::string       line  = "cd " + Quoted(folder) + " && exec " + Quoted(KANVO_IMAGE_PROGRAM);
    for (const std::string& word : words)
    {
        line += " " + Quoted(word);
    }
    const int keepOpen = ::open(slave.c_str(), O_RDWR | O_NOCTTY);
    EXPECT_EQ(WEXITSTATUS(std::system((line + " 2>" + Quoted(slave)).c_str())), exitCode);
    std::string text;
    pollfd      ready = {master, POLLIN, 0};
    while (::poll(&ready, 1, 200) > 0)
    {
        char          buffer[4096];
        const ssize_t count = ::read(master, buffer, sizeof buffer);
        if (count <= 0)
        {
            break;
        }
        text.append(buffer, static_cast<std::size_t>(count));
    }
    ::close(keepOpen);
    ::close(master);
    return text;
}

TEST_F(KanvoImage, OnATerminalProgressIsOneLineWrittenOverAndOver)
{
    Write("in/a.png", Photo());
    Write("in/b.png", Bytes{1});
    Write("in/c.png", Photo());
    const std::string text = OnTerminal(m_folder.Path(), {"encode", "in", "-o", "out"}, 1);
    ASSERT_NE(text, "");
    const std::vector<std::string> lines = LinesOf(text);
    ASSERT_EQ(lines.size(), 3u) << text;  // the error, the progress, the summary
    EXPECT_TRUE(Has(lines[0], "\r\033[K[1/3] in/a.png")) << text;
    EXPECT_TRUE(Has(lines[0], "\r\033[Kkanvo-image: in/b.png: ")) << text;
    EXPECT_TRUE(Has(lines[1], "[3/3] in/c.png")) << text;
    EXPECT_TRUE(Has(lines[2], "1 of 3 pictures failed")) << text;
}

// ---- what is there already -----------------------------------------------------------------------------------------

TEST_F(KanvoImage, NothingIsReplacedWithoutForce)
{
    Write("in/a.png", Icon());
    Write("in/b.png", Photo());
    Write("out/b.bin", Bytes{7});
    ExpectOneLine(Start({"encode", "in", "-o", "out"}), 1, "out/b.bin: exists already");
    EXPECT_FALSE(fs::exists(m_folder.Path("out/a.bin"))) << "all are looked for before the first is written";
    EXPECT_EQ(Read("out/b.bin"), Bytes{7});
    Good({"encode", "in", "-o", "out", "--force"});
    EXPECT_EQ(ReadStored(Read("out/a.bin")).argb, Icon().argb);
    EXPECT_NE(Read("out/b.bin"), Bytes{7});

    Write("back.png", Bytes{7});
    ExpectOneLine(Start({"decode", "out/a.bin", "-o", "back.png"}), 1, "back.png: exists already");
    ExpectOneLine(Start({"diff", "in/a.png", "in/a.png", "-o", "back.png"}), 2, "back.png: exists already");
    ExpectOneLine(Start({"report", "in", "--csv", "back.png"}), 1, "back.png: exists already");
    ExpectOneLine(Start({"report", "in", "--html", "back.png"}), 1, "back.png: exists already");
    EXPECT_EQ(Read("back.png"), Bytes{7});
    Good({"report", "in", "-q", "--csv", "back.png", "-f"});
    Good({"decode", "out/a.bin", "-o", "back.png", "-f"});
    EXPECT_TRUE(LoadPng("back.png") == Icon());

    fs::create_symlink("nowhere", m_folder.Path("out/c.bin"));
    Write("c.png", Icon());
    ExpectOneLine(Start({"encode", "c.png", "-o", "out"}), 1, "out/c.bin: exists already");
}

TEST_F(KanvoImage, OneFileForTwoResultsIsAnError)
{
    Write("in/a.png", Icon());
    ExpectOneLine(Start({"report", "in", "-q", "--csv", "x", "--html", "./x"}), 1, "would be written twice");
    EXPECT_FALSE(fs::exists(m_folder.Path("x")));
}

// ---- streams -------------------------------------------------------------------------------------------------------

TEST_F(KanvoImage, PicturesGoThroughStandardInputAndOutput)
{
    Write("icon.png", Icon());
    Good({"encode", "icon.png", "-o", "out", "--format", "rle8", "--bin", "--c", "--h", "--name", "icon"});
    const std::string bin = Text("out/icon.bin");

    EXPECT_EQ(Good({"encode", "-", "-o", "-", "--format", "rle8"}, " <icon.png").output, bin);
    EXPECT_EQ(Good({"encode", "icon.png", "-o", "-", "--format", "rle8", "--bin"}).output, bin);
    EXPECT_EQ(Good({"encode", "-", "-o", "-", "--format", "rle8", "--h", "--name", "icon"}, " <icon.png").output,
              Text("out/icon.h"));
    EXPECT_TRUE(Has(Good({"encode", "icon.png", "-o", "-", "--c"}).output, "image_icon["));
    Good({"encode", "-", "-o", "piped", "--format", "rle8", "--name", "icon"}, " <icon.png");
    EXPECT_EQ(Text("piped/icon.bin"), bin);

    Good({"decode", "-", "-o", "-"}, " <out/icon.bin >back.png");
    EXPECT_TRUE(LoadPng("back.png") == Icon());
    EXPECT_TRUE(Has(Good({"verify", "-"}, " <out/icon.bin").output, "standard input: good, rle8, 20 x 12"));
    EXPECT_TRUE(Has(Good({"info", "-"}, " <out/icon.bin").output, "rle8"));
    EXPECT_TRUE(Has(Good({"diff", "icon.png", "-"}, " <out/icon.bin").output, "equal"));
    Good({"diff", "icon.png", "out/icon.bin", "-o", "-"}, " >heat.png");
    EXPECT_EQ(LoadPng("heat.png").width, 20u);
    EXPECT_EQ(Good({"report", "icon.png", "-q", "--csv", "-"}).output.rfind("picture,width", 0), 0u);
}

TEST_F(KanvoImage, StreamsThatMakeNoSenseAreRefused)
{
    Write("a.png", Icon());
    Write("b.png", Icon());
    ExpectOneLine(Start({"encode", "a.png", "b.png", "-o", "-"}), 2, "-o -: only for a single picture");
    ExpectOneLine(Start({"encode", "a.png", "-o", "-", "--c", "--h"}), 2, "-o -: one result");
    ExpectOneLine(Start({"encode", "-", "-o", "out"}, " <a.png"), 2, "--name is needed");
    ExpectOneLine(Start({"encode", "-", "-o", "-", "--c"}, " <a.png"), 2, "--name is needed");
    ExpectOneLine(Start({"diff", "-", "-"}, " <a.png"), 2, "standard input holds one picture");
    ExpectOneLine(Start({"decode", "-", "-o", "x.png"}, " </dev/null"), 1, "standard input: the file is empty");
    ExpectOneLine(Start({"decode", "-", "-o", "x.png"}, " <&-"), 1, "standard input: ");
    EXPECT_FALSE(fs::exists(m_folder.Path("x.png")));
}

TEST_F(KanvoImage, AFullOutputIsAnError)
{
    if (!fs::exists("/dev/full"))
    {
        GTEST_SKIP() << "there is no /dev/full";
    }
    Write("a.png", Icon());
    Good({"encode", "a.png", "-o", "."});
    const std::vector<Words> commands = {{"encode", "a.png", "-o", "-", "-q"},
                                         {"decode", "a.bin", "-o", "-"},
                                         {"verify", "a.bin"},
                                         {"info", "a.bin"},
                                         {"report", "a.png", "-q"},
                                         {"--help"}};
    for (const Words& words : commands)
    {
        ExpectOneLine(Start(words, " >/dev/full"), 1, "standard output: No space left");
        ExpectOneLine(Start(words, " >&-"), 1, "standard output: ");
    }
    ExpectOneLine(Start({"diff", "a.png", "a.bin"}, " >/dev/full"), 2, "standard output: No space left");
}

// ---- bad files -----------------------------------------------------------------------------------------------------

TEST_F(KanvoImage, AMissingFileIsOneLineInEveryCommand)
{
    Write("good.png", Icon());
    const std::string reason = "none.png: No such file or directory";
    ExpectOneLine(Start({"encode", "none.png", "-o", "out"}), 1, reason);
    ExpectOneLine(Start({"decode", "none.png", "-o", "x.png"}), 1, reason);
    ExpectOneLine(Start({"verify", "none.png"}), 1, reason);
    ExpectOneLine(Start({"info", "none.png"}), 1, reason);
    ExpectOneLine(Start({"diff", "none.png", "good.png"}), 2, reason);
    ExpectOneLine(Start({"diff", "good.png", "none.png"}), 2, reason);
    ExpectOneLine(Start({"report", "none.png"}), 1, reason);
    ExpectOneLine(Start({"info", ""}), 1, "No such file or directory");
    ExpectOneLine(Start({"info", "."}), 1, "Is a directory");
    EXPECT_EQ(Files(), std::set<std::string>{"good.png"});
}

TEST_F(KanvoImage, ABrokenPngIsOneLineInEveryCommand)
{
    const Bytes good    = Png(Icon());
    Bytes       damaged = good;
    damaged[60] ^= 0x10;
    const std::vector<std::pair<Bytes, std::string>> cases = {
        {{}, "empty"}, {{'t', 'e', 'x', 't'}, ""}, {Bytes(good.begin(), good.end() - 20), "truncated"}, {damaged, ""}};
    for (const auto& [bytes, reason] : cases)
    {
        Write("bad.png", bytes);
        ExpectOneLine(Start({"encode", "bad.png", "-o", "out"}), 1, reason);
        ExpectOneLine(Start({"decode", "bad.png", "-o", "x.png"}), 1, "bad.png: ");
        ExpectOneLine(Start({"verify", "bad.png"}), 1, "bad.png: ");
        ExpectOneLine(Start({"info", "bad.png"}), 1, "bad.png: ");
        ExpectOneLine(Start({"diff", "bad.png", "bad.png"}), 2, "bad.png: ");
        ExpectOneLine(Start({"report", "bad.png", "-q"}), 1, reason);
    }
    EXPECT_EQ(Files(), std::set<std::string>{"bad.png"});
}

TEST_F(KanvoImage, APictureBeyondTheLimitIsOneLine)
{
    Write("wide.png", Make(9000, 1, [](std::uint32_t, std::uint32_t) { return 0xFFFFFFFFu; }));
    const std::string reason = "wide.png: 9000 x 1 pixels exceed the limit of 8192 x 8192";
    ExpectOneLine(Start({"encode", "wide.png", "-o", "out"}), 1, reason);
    ExpectOneLine(Start({"info", "wide.png"}), 1, reason);
    ExpectOneLine(Start({"diff", "wide.png", "wide.png"}), 2, reason);
    ExpectOneLine(Start({"report", "wide.png", "-q"}), 1, reason);

    // A few bytes that stand for a thousand million pixels.
    Write("huge.bin", Stored(8, 32767, 32767, {0xFF000000}, {255, 0, 0, 0}));
    ExpectOneLine(Start({"decode", "huge.bin", "-o", "x.png"}), 1, "8192, at byte 16");
    ExpectOneLine(Start({"info", "huge.bin"}), 1, "8192, at byte 16");
    ExpectOneLine(Start({"diff", "huge.bin", "huge.bin"}), 2, "8192, at byte 16");
    ExpectOneLine(Start({"verify", "huge.bin"}), 0, "warning: huge.bin: ");
    EXPECT_EQ(Files(), (std::set<std::string>{"huge.bin", "wide.png"}));

    Write("fits.png", Make(8192, 1, [](std::uint32_t x, std::uint32_t) { return 0xFF000000 | x; }));
    Good({"encode", "fits.png", "-o", "."});
    EXPECT_TRUE(Decoded("fits.bin") == LoadPng("fits.png"));
}

TEST_F(KanvoImage, AnImageCutOffAnywhereIsOneLineWithAByteOffset)
{
    Write("icon.png", Icon());
    const std::size_t step = support::Sanitized ? 37 : 11;  // starting a program with sanitizers takes long
    for (const std::string format : {"rle8", "rle16", "a8"})
    {
        Good({"encode", "icon.png", "-o", ".", "--format", format, "--force"});
        const Bytes whole = Read("icon.bin");
        for (std::size_t size = 0; size < whole.size(); size += size < 50 || size + 12 > whole.size() ? 1 : step)
        {
            Write("cut.bin", Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
            const Outcome verified = Start({"verify", "cut.bin"});
            ExpectOneLine(verified, 1, "cut.bin: ");
            std::smatch offset;
            ASSERT_TRUE(std::regex_search(verified.errors[0], offset, std::regex(", at byte ([0-9]+)$")));
            EXPECT_LE(std::stoul(offset[1]), size) << verified.errors[0];
            ExpectOneLine(Start({"info", "cut.bin"}), 1, ", at byte ");
            ExpectOneLine(Start({"decode", "cut.bin", "-o", "cut.png"}), 1, "cut.bin: ");
            EXPECT_FALSE(fs::exists(m_folder.Path("cut.png")));
            ExpectOneLine(Start({"diff", "icon.png", "cut.bin"}), 2, "cut.bin: ");
        }
    }
}

TEST_F(KanvoImage, DamagedImagesNeverCrashIt)
{
    const support::Seeds seeds(support::Sanitized ? 50 : 150);
    Write("icon.png", Icon());
    Write("photo.png", Photo());
    Good({"encode", "icon.png", "-o", ".", "--format", "rle8"});
    Good({"encode", "photo.png", "-o", ".", "--format", "rle16"});
    const Bytes good[] = {Read("icon.bin"), Read("photo.bin"), Png(Icon())};
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        support::Dice  dice(seed);
        Bytes          bytes = good[dice.Below(3)];
        const unsigned flips = 1 + dice.Below(4);
        for (unsigned flip = 0; flip < flips; ++flip)
        {
            const std::size_t near = dice.OneIn(2) ? std::min<std::size_t>(64, bytes.size()) : bytes.size();
            const unsigned    at   = dice.Below(static_cast<unsigned>(near));
            bytes[at]              = dice.NextByte();
        }
        Write("bad.bin", bytes);
        int verified = 0;
        for (const Words& words :
             {Words{"verify", "bad.bin"}, Words{"info", "bad.bin"}, Words{"decode", "bad.bin", "-o", "x.png", "-f"},
              Words{"diff", "icon.png", "bad.bin"}, Words{"encode", "bad.bin", "-o", "out", "-f", "-q"}})
        {
            const Outcome run = Start(words);
            ASSERT_GE(run.exitCode, 0) << "seed " << seed << ": " << words[0] << " ended by a signal";
            ASSERT_LE(run.exitCode, 2) << "seed " << seed << ": " << words[0];
            ASSERT_LE(run.errors.size(), 2u) << "seed " << seed << ": " << words[0];
            ASSERT_TRUE(run.exitCode == 0 || words[0] == "diff" || !run.errors.empty()) << "seed " << seed;
            verified = words[0] == "verify" ? run.exitCode : verified;
            if (words[0] == "info" && TextOf(bytes).substr(0, 4) == "KNVO")
            {
                EXPECT_EQ(run.exitCode, verified) << "seed " << seed << ": check and reader disagree";
            }
        }
    }
}

TEST_F(KanvoImage, DecodeRefusesWhatIsNoStoredImage)
{
    Write("icon.png", Icon());
    ExpectOneLine(Start({"decode", "icon.png", "-o", "x.png"}), 1, "icon.png: a PNG file already");
    Write("text", Bytes{'h', 'e', 'l', 'l', 'o'});
    ExpectOneLine(Start({"decode", "text", "-o", "x.png"}), 1, "text: neither a PNG file nor a stored image");
    ExpectOneLine(Start({"verify", "icon.png"}), 1, "icon.png: first identification word");
}

TEST_F(KanvoImage, ANameCannotBreakTheLine)
{
    Write("new\nline.png", Bytes{1});
    ExpectOneLine(Start({"encode", "new\nline.png", "-o", "out"}), 1, "new?line.png: not a PNG file");
    ExpectOneLine(Start({"info", "no\nsuch\033[2J"}), 1, "no?such?[2J: No such file");
    Write("new\nline.png", Icon());
    EXPECT_TRUE(Has(Good({"encode", "new\nline.png", "-o", "out", "--c"}).errors.at(0), "new?line.png  20 x 12"));
    EXPECT_TRUE(fs::exists(m_folder.Path("out/image_new_line.c")));
}

// ---- what cannot be written ----------------------------------------------------------------------------------------

TEST_F(KanvoImage, AResultThatCannotBeWrittenIsOneLineAndLeavesNothingBehind)
{
    Write("in/a.png", Icon());
    Write("in/b.png", Icon());
    Write("file", Bytes{1});
    Good({"encode", "in/a.png", "-o", "."});
    ExpectOneLine(Start({"encode", "in", "-o", "file", "-q"}), 1, "file: not a folder");
    ExpectOneLine(Start({"encode", "in", "-o", "file/out", "-q"}), 1, "file/out: ");
    ExpectOneLine(Start({"encode", "in", "-o", "/proc/none/out", "-q"}), 1, "/proc/none");
    ExpectOneLine(Start({"decode", "a.bin", "-o", "file/x.png"}), 1, "file/x.png: Not a directory");
    ExpectOneLine(Start({"decode", "a.bin", "-o", "none/x.png"}), 1, "none/x.png: No such file or directory");
    ExpectOneLine(Start({"decode", "a.bin", "-o", "in", "-f"}), 1, "in: not a regular file");
    ExpectOneLine(Start({"decode", "a.bin", "-o", "/dev/null", "-f"}), 1, "/dev/null: not a regular file");
    ExpectOneLine(Start({"diff", "a.bin", "a.bin", "-o", "none/x.png"}), 2, "none/x.png: No such file or directory");
    ExpectOneLine(Start({"report", "in", "-q", "--csv", "none/x.csv"}), 1, "none/x.csv: No such file or directory");
    ExpectOneLine(Start({"report", "in", "-q", "--html", "in", "-f"}), 1, "in: not a regular file");
    fs::create_directories(m_folder.Path("out/a.bin"));
    ExpectOneLine(Start({"encode", "in", "-o", "out", "-q", "-f"}), 1, "out/a.bin: not a regular file");
    EXPECT_EQ(Files(), (std::set<std::string>{"a.bin", "file", "in/a.png", "in/b.png"}));
}

TEST_F(KanvoImage, AFolderThatMustNotBeWrittenToIsOneLine)
{
    // Root may write anywhere, so it becomes somebody else for this.
    const std::string program = (::geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "") +
                                Quoted(KANVO_IMAGE_PROGRAM) + " ";
    fs::permissions(m_folder.Path(), fs::perms(0755));
    if (Shell(program + "--help").exitCode != 0)
    {
        GTEST_SKIP() << "only root may run this program here";
    }
    Write("a.png", Icon());
    fs::create_directories(m_folder.Path("locked"));
    fs::permissions(m_folder.Path("locked"), fs::perms(0555));
    ExpectOneLine(Shell(program + "encode a.png -o locked -q"), 1, "locked/a.bin: Permission denied");
    ExpectOneLine(Shell(program + "encode a.png -o locked/deeper -q"), 1, "locked/deeper: Permission denied");
    ExpectOneLine(Shell(program + "diff a.png a.png -o locked/x.png"), 2, "locked/x.png: Permission denied");
    fs::permissions(m_folder.Path("locked"), fs::perms(0755));
    EXPECT_EQ(Files(), std::set<std::string>{"a.png"});

    fs::permissions(m_folder.Path("a.png"), fs::perms(0));
    fs::permissions(m_folder.Path("locked"), fs::perms(0));
    ExpectOneLine(Shell(program + "info a.png"), 1, "a.png: Permission denied");
    ExpectOneLine(Shell(program + "encode locked -o out"), 1, "locked: Permission denied");
    fs::permissions(m_folder.Path("locked"), fs::perms(0755));
}

TEST_F(KanvoImage, ADiskThatIsFullLeavesNoHalfFile)
{
    Write("a.png", Photo());
    const Outcome run = Shell("trap '' XFSZ; ulimit -f 2; kanvo-image encode a.png -o out --format argb32 -q");
    ExpectOneLine(run, 1, "out/a.bin: File too large");
    EXPECT_EQ(Files(), std::set<std::string>{"a.png"});
    Write("out/a.bin", Bytes{7});
    ExpectOneLine(Shell("trap '' XFSZ; ulimit -f 2; kanvo-image encode a.png -o out --format argb32 -q -f"), 1,
                  "out/a.bin: File too large");
    EXPECT_EQ(Read("out/a.bin"), Bytes{7}) << "what was there stays";
}

// ---- the command line ----------------------------------------------------------------------------------------------

TEST_F(KanvoImage, AWrongCommandLineIsOneLineAndItsOwnExitCode)
{
    Write("a.png", Icon());
    Write("b.png", Icon());
    const std::vector<std::pair<Words, std::string>> cases = {
        {{}, "a command is needed"},
        {{"frobnicate"}, "no such command: frobnicate"},
        {{""}, "no such command: "},
        {{"--force"}, "--force"},
        {{"encode"}, "required"},
        {{"encode", "a.png"}, "--output is required"},
        {{"encode", "-o", "out"}, "IN is required"},
        {{"encode", "a.png", "-o"}, "-o"},
        {{"encode", "a.png", "-o", "out", "--format", "jpeg"}, "jpeg"},
        {{"encode", "a.png", "-o", "out", "--format"}, "--format"},
        {{"encode", "a.png", "-o", "out", "--dither", "loud"}, "loud"},
        {{"encode", "a.png", "-o", "out", "--palette-max", "0"}, "--palette-max"},
        {{"encode", "a.png", "-o", "out", "--palette-max", "65537"}, "--palette-max"},
        {{"encode", "a.png", "-o", "out", "--palette-max", "-1"}, "--palette-max"},
        {{"encode", "a.png", "-o", "out", "--palette-max", "many"}, "--palette-max"},
        {{"encode", "a.png", "-o", "out", "--palette-max", "99999999999999999999"}, "--palette-max"},
        {{"encode", "a.png", "-o", "out", "--palette-max", "16"}, "--palette-max: only rle8 and rle16"},
        {{"encode", "a.png", "-o", "out", "--format", "a8", "--palette-max", "16"},
         "--palette-max: only rle8 and rle16"},
        {{"encode", "a.png", "-o", "out", "--format", "argb32", "--dither", "fs"}, "--dither: only"},
        {{"encode", "a.png", "-o", "out", "--dither", "fs"}, "--dither: only"},
        {{"encode", "a.png", "-o", "out", "--bleed", "0"}, "--bleed"},
        {{"encode", "a.png", "-o", "out", "--bleed", "x"}, "--bleed"},
        {{"encode", "a.png", "-o", "out", "--keep-palette", "--no-keep-palette"}, "keep-palette"},
        {{"encode", "a.png", "-o", "out", "--keep-palette", "--format", "a8"}, "--keep-palette: only rle8 and rle16"},
        {{"encode", "a.png", "b.png", "-o", "out", "--name", "x"}, "--name: only for a single picture"},
        {{"encode", "a.png", "-o", "out", "--c", "--name", "no name"}, "--name: \"no name\" cannot be the name"},
        {{"encode", "a.png", "-o", "out", "--h", "--name", "int"}, "--name: \"int\" cannot be the name"},
        {{"encode", "a.png", "-o", "out", "--name", "../x"}, "--name: \"../x\" is no file name"},
        {{"encode", "a.png", "-o", "out", "--name", ""}, "--name"},
        {{"encode", "a.png", "-o", "out", "--nonesuch"}, "--nonesuch"},
        {{"decode", "a.png"}, "--output is required"},
        {{"decode", "-o", "x.png"}, "IN is required"},
        {{"decode", "a.png", "b.png", "-o", "x.png"}, "b.png"},
        {{"verify"}, "IN is required"},
        {{"info"}, "IN is required"},
        {{"info", "a.png", "b.png"}, "b.png"},
        {{"diff", "a.png"}, "B is required"},
        {{"diff", "a.png", "b.png", "a.png"}, "a.png"},
        {{"report"}, "DIR is required"},
        {{"report", "a.png", "--csv"}, "--csv"},
    };
    for (const auto& [words, part] : cases)
    {
        ExpectOneLine(Start(words), 2, part);
    }
    EXPECT_EQ(Files(), (std::set<std::string>{"a.png", "b.png"}));
}

TEST_F(KanvoImage, TheHelpIsAManualPage)
{
    const Outcome run = Good({"--help"});
    EXPECT_TRUE(run.errors.empty());
    std::size_t at = 0;
    for (const std::string section :
         {"NAME", "SYNOPSIS", "COMMANDS", "OPTIONS", "EXAMPLES", "EXIT STATUS", "NOTES", "LIMITS"})
    {
        const std::size_t found = ("\n" + run.output).find("\n" + section + "\n", at);
        ASSERT_NE(found, std::string::npos) << section;
        at = found;
    }
    EXPECT_TRUE(Has(run.output, "8192 x 8192"));
    for (const std::string& line : LinesOf(run.output))
    {
        EXPECT_LE(line.size(), Has(line, "$ ") ? 100u : 80u) << line;
        EXPECT_FALSE(!line.empty() && line.back() == ' ') << line;
    }
    const std::map<std::string, Words> options = {
        {"encode",
         {"--output", "--format", "--palette-max", "--keep-palette", "--no-keep-palette", "--dither", "--bleed",
          "--trim", "--bin", "--c", "--h", "--name", "--force", "--quiet"}},
        {"decode", {"--output", "--force"}},
        {"verify", {"--quiet"}},
        {"info", {"--palette"}},
        {"diff", {"--output", "--force"}},
        {"report", {"--csv", "--html", "--force", "--quiet"}}};
    for (const auto& [command, names] : options)
    {
        const std::string page = Good({command, "--help"}).output;
        EXPECT_TRUE(Has(page, "kanvo-image " + command + " - ")) << page;
        for (const std::string& name : names)
        {
            EXPECT_TRUE(Has(page, name)) << command << " " << name;
            EXPECT_TRUE(Has(run.output, name)) << command << " " << name;
        }
    }
}

TEST_F(KanvoImage, TheExamplesOfTheHelpWork)
{
    Write("photo.png", Photo());
    Write("icon.png", Fringed());
    Write("pictures/gear.png", Icon());
    Write("pictures/more/grey.png", Grey());
    const std::string page = Good({"--help"}).output;
    const std::size_t from = page.find("\nEXAMPLES\n");
    const std::size_t to   = page.find("\nEXIT STATUS\n");
    ASSERT_NE(from, std::string::npos);
    ASSERT_NE(to, std::string::npos);
    int                            examples = 0;
    int                            last     = 0;  // the exit status announced for the last command of a paragraph
    std::string                    paragraph;
    const std::vector<std::string> lines = LinesOf(page.substr(from, to - from));
    for (std::size_t index = 0; index < lines.size(); ++index)
    {
        const std::string& line = lines[index];
        const std::size_t  mark = line.find("$ ");
        std::smatch        status;
        if (mark == std::string::npos)
        {
            last = std::regex_search(line, status, std::regex("exit status ([0-9])")) ? std::stoi(status[1]) : 0;
            continue;
        }
        const bool    isLast = index + 1 == lines.size() || !Has(lines[index + 1], "$ ");
        const Outcome run    = Shell(line.substr(mark + 2));
        EXPECT_EQ(run.exitCode, isLast ? last : 0) << line << "\n" << testing::PrintToString(run.errors);
        ++examples;
    }
    EXPECT_GE(examples, 10);
    for (const char* file :
         {"out/gear.bin", "out/grey.bin", "out/photo.bin", "heat.png", "generated/gear.c", "generated/gear.h",
          "textures/icon.bin", "icon.bin", "again.png", "sizes.csv", "sizes.html"})
    {
        EXPECT_TRUE(fs::exists(m_folder.Path(file))) << file;
    }
}

// ---- verify --------------------------------------------------------------------------------------------------------

TEST_F(KanvoImage, VerifyNamesTheFirstWrongByte)
{
    const std::vector<std::uint32_t> two = {0xFF000000, 0xFFFFFFFF};
    struct Case
    {
        Bytes       bytes;
        std::size_t offset;
    };
    const auto patched = [&](std::size_t at, std::uint8_t value)
    {
        Bytes bytes = Stored(8, 2, 2, two, {4, 1, 0, 0});
        bytes[at]   = value;
        return bytes;
    };
    const Case cases[] = {
        {patched(0, 'X'), 0},                                  // first word
        {patched(5, 'X'), 4},                                  // second word
        {patched(8, 9), 8},                                    // unit
        {patched(9, 2), 9},                                    // version
        {patched(16, 0), 16},                                  // width
        {patched(23, 1), 20},                                  // height
        {patched(24, 0), 24},                                  // palette
        {patched(36, 41), 36},                                 // start
        {Stored(8, 2, 2, two, {4, 2, 0, 0}), 49},              // index, of a run
        {Stored(8, 2, 2, two, {0, 4, 0, 1, 0, 7, 0, 0}), 53},  // index, of a literal
        {Stored(8, 2, 2, two, {5, 1, 0, 0}), 48},              // one pixel too many
        {Stored(8, 2, 2, two, {2, 1, 3, 0, 0, 0}), 50},        // the same, later
        {Stored(8, 2, 2, two, {4, 1, 1, 1, 0, 0}), 50},        // no end where it belongs
        {Stored(8, 2, 2, two, {4, 1}), 50},                    // no end at all
        {Stored(8, 2, 2, two, {3, 1, 0, 2, 1}), 50},           // cut off
        {Stored(16, 2, 2, two, {4, 2, 0, 0}), 50},             // index, in words
    };
    Write("good.bin", Stored(8, 2, 2, two, {4, 1, 0, 0}));
    for (const Case& bad : cases)
    {
        Write("bad.bin", bad.bytes);
        const std::string offset = ", at byte " + std::to_string(bad.offset);
        const Outcome     run    = Start({"verify", "bad.bin", "good.bin"});
        ExpectOneLine(run, 1, offset);
        EXPECT_EQ(run.errors.at(0).substr(run.errors.at(0).size() - offset.size()), offset);
        EXPECT_EQ(run.output, "good.bin: good, rle8, 2 x 2, 2 colours\n");
    }
}

TEST_F(KanvoImage, AnEarlyEndIsAWarning)
{
    Write("early.bin", Stored(8, 2, 2, {0xFF000000, 0xFF112233}, {3, 1, 0, 0}));
    const Outcome run = Start({"verify", "early.bin"});
    ExpectOneLine(run, 0, "warning: early.bin: the image ends before its last pixel, at byte 50");
    EXPECT_TRUE(Has(run.output, "early.bin: good"));
    ExpectOneLine(Start({"decode", "early.bin", "-o", "early.png"}), 0,
                  "warning: early.bin: the image ends after 3 of 4");
    EXPECT_TRUE(LoadPng("early.png") == (Pixels{2, 2, {0xFF112233, 0xFF112233, 0xFF112233, 0}}));
    EXPECT_TRUE(Has(Good({"info", "early.bin"}).output, "ends early       after 3 of 4 pixels"));
}

TEST_F(KanvoImage, VerifyJudgesRawImagesToo)
{
    Write("photo.png", Photo());
    for (const std::string format : {"argb32", "rgb32", "rgb565", "a8"})
    {
        Good({"encode", "photo.png", "-o", ".", "--format", format, "--force"});
        EXPECT_EQ(Good({"verify", "photo.bin"}).output, "photo.bin: good, " + format + ", 48 x 40\n");
        Bytes bytes = Read("photo.bin");
        bytes.pop_back();
        Write("short.bin", bytes);
        ExpectOneLine(Start({"verify", "short.bin"}), 1, ", at byte ");
        bytes[8] = 77;
        Write("short.bin", bytes);
        ExpectOneLine(Start({"verify", "short.bin"}), 1, ", at byte 8");
    }
}

// ---- info ----------------------------------------------------------------------------------------------------------

TEST_F(KanvoImage, InfoCountsTokensPixelsAndBytes)
{
    // Rows of five: 7 7 7 1 2 | 2 2 2 2 2 | 1 0 3 3 3
    Write("hand.bin", Stored(8, 5, 3, {0xFF000000, 0x80FFFFFF, 0x00ABCDEF, 0xFF112233, 0xFF999999, 0, 0, 0xFF777777},
                             {3, 7, 0, 2, 1, 2, 5, 2, 0, 2, 1, 0, 3, 3, 0, 0}));
    const std::string text = Good({"info", "hand.bin"}).output;
    const auto        line = [&](const std::string& pattern) {
        EXPECT_TRUE(std::regex_search(text, std::regex("(^|\n)" + pattern + "\n"))) << pattern << "\nin\n" << text;
    };
    line("file +hand.bin, 88 bytes");
    line("format +rle8, version 1");
    line("size +5 x 3, 15 pixels");
    line("artwork +bits of alpha 8, red 8, green 8, blue 8");
    line("opaque only +no");
    line("palette +8 colours, 5 used; 4 opaque, 1 translucent, 3 transparent");
    line("tokens +bytes 72 to 87, 16 units of 1 byte");
    line("bytes per pixel +5.867, .*");
    line("runs +3 +11 +3.7 +5");
    line("literals +2 +4 +2.0 +2");
    line("2 +0 +2");
    line("3-4 +2 +0");
    line("5-8 +1 +0");
    line("worst row +0, 6 bytes read for 5 pixels");  // a run and a literal of two: 2 + 4
    EXPECT_TRUE(Has(text, "FF000000 80FFFFFF 00ABCDEF FF112233")) << text;

    Bytes padded = Read("hand.bin");
    padded.resize(padded.size() + 5);
    Write("padded.bin", padded);
    EXPECT_TRUE(Has(Good({"info", "padded.bin"}).output, "behind the end   5 bytes"));
}

TEST_F(KanvoImage, InfoListsALongPaletteOnRequest)
{
    Write("photo.png", Photo());
    Good({"encode", "photo.png", "-o", ".", "--format", "rle16"});
    const std::size_t count = PaletteOf(Read("photo.bin")).size();
    ASSERT_GT(count, 256u);
    const std::regex  colour("[ ][0-9A-F]{8}\\b");
    const std::string brief = Good({"info", "photo.bin"}).output;
    const std::string whole = Good({"info", "photo.bin", "--palette"}).output;
    const auto        shown = [&](const std::string& text)
    { return static_cast<std::size_t>(std::distance(std::sregex_iterator(text.begin(), text.end(), colour), {})); };
    EXPECT_EQ(shown(brief), 256u);
    EXPECT_TRUE(Has(brief, "--palette lists all"));
    EXPECT_EQ(shown(whole), count);
}

TEST_F(KanvoImage, InfoOfAPngTellsWhatItWouldBecome)
{
    Write("icon.png", Icon());
    const std::string text = Good({"info", "icon.png"}).output;
    EXPECT_TRUE(Has(text, "20 x 12, 240 pixels")) << text;
    for (const std::string format : {"argb32", "rgb32", "rgb565", "a8", "rle8", "rle16"})
    {
        Good({"encode", "icon.png", "-o", ".", "--format", format, "-f", "-q"}, " 2>/dev/null");
        const std::string bytes = std::to_string(fs::file_size(m_folder.Path("icon.bin")));
        const std::string shown =
            bytes.size() > 3 ? bytes.substr(0, bytes.size() - 3) + "," + bytes.substr(bytes.size() - 3) : bytes;
        EXPECT_TRUE(std::regex_search(text, std::regex("\n" + format + " +" + shown + " "))) << format << "\n" << text;
    }
}

// ---- diff ----------------------------------------------------------------------------------------------------------

TEST_F(KanvoImage, DiffTellsEqualFromDifferentInAnyMixture)
{
    Write("icon.png", Icon());
    Pixels changed = Icon();
    changed.argb[25] ^= 0x00000004;
    Write("changed.png", changed);
    for (const std::string name : {"icon", "changed"})
    {
        Good({"encode", name + ".png", "-o", "rle", "--format", "rle8"});
        Good({"encode", name + ".png", "-o", "raw", "--format", "argb32", "-q"});
    }
    const auto places = [](const std::string& name) {
        return Words{name + ".png", "rle/" + name + ".bin", "raw/" + name + ".bin"};
    };
    for (const std::string& first : places("icon"))
    {
        for (const std::string& second : places("icon"))
        {
            EXPECT_TRUE(Has(Good({"diff", first, second}).output, "equal, 240 pixels"));
        }
        for (const std::string& second : places("changed"))
        {
            for (const Words& words : {Words{"diff", first, second}, Words{"diff", second, first}})
            {
                const Outcome run = Start(words);
                EXPECT_EQ(run.exitCode, 1);
                EXPECT_TRUE(run.errors.empty());
                EXPECT_TRUE(Has(run.output, "1 of 240 pixels differ")) << run.output;
                EXPECT_TRUE(Has(run.output, "from (5, 1) to (5, 1)")) << run.output;
            }
        }
    }
}

TEST_F(KanvoImage, DiffMeasuresEveryChannel)
{
    Write("a.png", Pixels{2, 2, {0xFF102030, 0xFF102030, 0xFF102030, 0x00000000}});
    Write("b.png", Pixels{2, 2, {0xFF112030, 0xFF101630, 0xFF102034, 0x00000000}});
    const Outcome run = Start({"diff", "a.png", "b.png"});
    EXPECT_EQ(run.exitCode, 1);
    const auto line = [&](const std::string& pattern) {
        EXPECT_TRUE(std::regex_search(run.output, std::regex("\n" + pattern + "(\n|$)"))) << pattern << "\n"
                                                                                          << run.output;
    };
    line("3 of 4 pixels differ \\(75.0 %\\), from \\(0, 0\\) to \\(1, 1\\)");
    line("most at \\(1, 0\\)");
    line("alpha +0 +0.000");
    line("red +1 +0.250");
    line("green +10 +2.500");
    line("blue +4 +1.000");
    line("visible +10.000 +1.250");  // 15 levels in 12 channels

    Write("c.png", Pixels{2, 2, {0xFF102030, 0xFF102030, 0xFF102030, 0x00FFFFFF}});
    const Outcome hidden = Start({"diff", "a.png", "c.png"});
    EXPECT_EQ(hidden.exitCode, 1);
    EXPECT_TRUE(Has(hidden.output, "colours of fully transparent pixels only")) << hidden.output;
}

TEST_F(KanvoImage, DifferentSizesAreADifference)
{
    Write("a.png", Icon());
    Write("b.png", Photo());
    const Outcome run = Start({"diff", "a.png", "b.png", "-o", "heat.png"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(Has(run.output, "different sizes"));
    EXPECT_FALSE(fs::exists(m_folder.Path("heat.png")));
}

TEST_F(KanvoImage, TheHeatMapIsColouredExactlyWherePicturesDiffer)
{
    const Pixels photo   = Photo();
    Pixels       changed = photo;
    changed.argb[100] ^= 0x00200000;
    changed.argb[777] ^= 0x00000001;
    Write("a.png", photo);
    Write("b.png", changed);
    EXPECT_EQ(Start({"diff", "a.png", "b.png", "-o", "heat.png"}).exitCode, 1);
    const Pixels heat = LoadPng("heat.png");
    ASSERT_EQ(heat.argb.size(), photo.argb.size());
    for (std::size_t at = 0; at < heat.argb.size(); ++at)
    {
        const std::uint32_t pixel  = heat.argb[at];
        const bool          isGrey = (pixel >> 16 & 255) == (pixel & 255) && (pixel >> 8 & 255) == (pixel & 255);
        EXPECT_EQ(isGrey, photo.argb[at] == changed.argb[at]) << at;
    }
    EXPECT_GT(heat.argb[100] >> 16 & 255, heat.argb[100] & 255) << "the largest is red";
    EXPECT_GT(heat.argb[777] & 255, heat.argb[777] >> 16 & 255) << "the smallest is blue";
    Good({"diff", "a.png", "a.png", "-o", "equal.png"});
    EXPECT_TRUE(fs::exists(m_folder.Path("equal.png")));
}

// ---- report --------------------------------------------------------------------------------------------------------

TEST_F(KanvoImage, AReportMeasuresEveryPictureInEveryFormat)
{
    Write("in/icon.png", Icon());
    Write("in/sub/a,\"b\".png", Photo());
    const Outcome                  run = Good({"report", "in", "--csv", "r.csv", "--html", "r.html"});
    const std::vector<std::string> csv = LinesOf(Text("r.csv"));
    ASSERT_EQ(csv.size(), 1 + 2 * 6u);
    EXPECT_EQ(csv[0],
              "picture,width,height,format,bytes,ratio,draw_us,ns_per_pixel,lossless,mean_error,largest_error,auto");
    int chosen = 0;
    for (std::size_t line = 1; line < csv.size(); ++line)
    {
        const bool        isIcon = line <= 6;
        const Pixels      source = isIcon ? Icon() : Photo();
        const std::string name   = isIcon ? "icon.png" : "\"sub/a,\"\"b\"\".png\"";
        std::smatch       field;
        ASSERT_TRUE(std::regex_match(csv[line], field,
                                     std::regex("(.*),([0-9]+),([0-9]+),([a-z0-9]+),([0-9]+),([0-9.]+),([0-9.]+),"
                                                "([0-9.]+),([01]),([0-9.]+),([0-9.]+),([01])")))
            << csv[line];
        EXPECT_EQ(field[1], name);
        EXPECT_EQ(std::stoul(field[2]), source.width);
        EXPECT_EQ(std::stoul(field[3]), source.height);
        Good({"encode", isIcon ? "in/icon.png" : "in/sub/a,\"b\".png", "-o", ".", "--format", field[4], "--name", "one",
              "-f", "-q"},
             " 2>/dev/null");
        EXPECT_EQ(std::stoul(field[5]), fs::file_size(m_folder.Path("one.bin"))) << csv[line];
        EXPECT_EQ(field[9] == "1", Decoded("one.bin") == source) << csv[line];
        EXPECT_GT(std::stod(field[7]), 0) << csv[line];
        chosen += field[12] == "1" ? 1 : 0;
    }
    EXPECT_EQ(chosen, 2);

    for (const std::string format : {"argb32", "rgb32", "rgb565", "a8", "rle8", "rle16", "auto"})
    {
        EXPECT_TRUE(std::regex_search(run.output, std::regex("\\b" + format + "\\b"))) << run.output;
    }
    EXPECT_TRUE(Has(run.output, "icon.png "));
    EXPECT_TRUE(Has(run.output, "sub/a,\"b\".png "));

    const std::string html = Text("r.html");
    EXPECT_TRUE(Has(html, "sub/a,&quot;b&quot;.png"));
    EXPECT_FALSE(Has(html, m_folder.Path()));
    EXPECT_EQ(html.rfind("<!DOCTYPE html>", 0), 0u);
    const std::regex thumbnail("src=\"data:image/png;base64,([A-Za-z0-9+/]+=*)\"");
    EXPECT_EQ(std::distance(std::sregex_iterator(html.begin(), html.end(), thumbnail), {}), 2);
    std::smatch first;
    ASSERT_TRUE(std::regex_search(html, first, thumbnail));
    Write("thumbnail.base64", Bytes());
    std::ofstream(m_folder.Path("thumbnail.base64")) << first[1];
    EXPECT_EQ(Shell("base64 -d thumbnail.base64 >thumbnail.png").exitCode, 0);
    EXPECT_TRUE(LoadPng("thumbnail.png") == Icon()) << "small pictures are shown as they are";
}

TEST_F(KanvoImage, AReportGoesOnAfterABrokenPicture)
{
    Write("in/a.png", Icon());
    Write("in/b.png", Bytes{1});
    const Outcome run = Start({"report", "in", "-q"});
    ExpectOneLine(run, 1, "in/b.png: ");
    EXPECT_TRUE(Has(run.output, "a.png"));
}

// ---- the same bytes everywhere -------------------------------------------------------------------------------------

TEST_F(KanvoImage, NothingButTheInputDecidesTheBytes)
{
    Write("in/icon.png", Icon());
    Write("in/photo.png", Photo());
    Write("in/indexed.png", IndexedPng());
    Write("elsewhere/deep/nothing", Bytes{1});
    const std::string all = R"sh(
        kanvo-image encode $IN/in -o $OUT/auto --bin --c --h -q &&
        kanvo-image encode $IN/in -o $OUT/rle8 --format rle8 --palette-max 9 --dither fs --bin --c --h -q &&
        kanvo-image encode $IN/in -o $OUT/rle16 --format rle16 --palette-max 300 --dither ordered --bleed 3 --trim --c \
                           -q &&
        kanvo-image encode $IN/in -o $OUT/565 --format rgb565 --dither fs --bin --h -q &&
        kanvo-image decode $OUT/rle8/photo.bin -o $OUT/photo.png &&
        { kanvo-image diff $IN/in/photo.png $OUT/rle8/photo.bin -o $OUT/heat.png >$OUT/diff.txt || true; } &&
        (cd $OUT && kanvo-image info rle8/photo.bin >info.txt))sh";
    EXPECT_EQ(Shell("IN=. OUT=one; mkdir one;" + all).exitCode, 0);
    EXPECT_EQ(Shell("export LC_ALL=de_DE.UTF-8 LANG=tr_TR.UTF-8 TZ=Asia/Tokyo; sleep 1; cd elsewhere/deep;"
                    " IN=../.. OUT=$PWD/../../two; mkdir $OUT;" +
                    all)
                  .exitCode,
              0);
    std::size_t compared = 0;
    for (const std::string& file : Files())
    {
        if (file.rfind("one/", 0) != 0)
        {
            continue;
        }
        const std::string other = "two/" + file.substr(4);
        ASSERT_TRUE(fs::exists(m_folder.Path(other))) << other;
        if (file != "one/diff.txt")  // it names the files as the command line did
        {
            EXPECT_EQ(Read(file), Read(other)) << file;
        }
        for (const std::string& telltale : {m_folder.Path(), std::string("elsewhere"), std::string(__DATE__).substr(7)})
        {
            EXPECT_FALSE(file.find(".txt") == std::string::npos && Has(Text(file), telltale)) << file << telltale;
        }
        ++compared;
    }
    EXPECT_EQ(compared, 9u + 9u + 3u + 6u + 4u);
}

// ---- C sources -----------------------------------------------------------------------------------------------------

bool Exists(const std::string& program)
{
    return std::system(("command -v " + program + " >/dev/null 2>&1").c_str()) == 0;
}

TEST_F(KanvoImage, CSourcesCompileAsCAndAsCppWithoutAWarningAndHoldTheImage)
{
    Write("icon.png", Icon());
    const std::string warnings =
        " -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wundef -Wmissing-declarations -Werror ";
    struct Compiler
    {
        const char* program;
        const char* options;
    };
    const Compiler compilers[] = {
        {"gcc", "-std=c99 -Wmissing-prototypes -Wstrict-prototypes"},
        {"gcc", "-std=c11"},
        {"g++", "-std=c++11 -x c++ -Wold-style-cast"},
        {"clang", "-std=c99 -Weverything -Wno-unknown-warning-option -Wno-unsafe-buffer-usage"},
        {"clang++", "-std=c++11 -x c++ -Weverything -Wno-c++98-compat -Wno-c++98-compat-pedantic"}};
    int compiled = 0;
    for (const std::string format : {"rle8", "rle16", "argb32", "a8"})
    {
        Good({"encode", "icon.png", "-o", "one", "--format", format, "--bin", "--c", "--h", "--name", "icon", "-f"},
             " 2>&1");
        Good({"encode", "icon.png", "-o", "alone", "--format", format, "--c", "--name", "icon", "-f"}, " 2>&1");
        Bytes expected = Read("one/icon.bin");
        if (format == "argb32" || format == "a8")
        {
            expected.erase(expected.begin(), expected.begin() + 32);  // a C source holds the pixels, not their header
        }
        Write("expected", expected);
        std::ofstream(m_folder.Path("one/main.c")) << R"c(
            #include "icon.h"
            #include "icon.h"
            #include <stddef.h>
            #include <stdio.h>
            int main(void)
            {
                if (ICON_WIDTH != 20 || ICON_HEIGHT != 12 || sizeof icon != ICON_SIZE) return 2;
                if (((size_t)&icon[0] & 3u) != 0) return 3;
                return fwrite(icon, 1, ICON_SIZE, stdout) == ICON_SIZE ? 0 : 1;
            })c";
        for (const Compiler& compiler : compilers)
        {
            if (!Exists(compiler.program))
            {
                continue;
            }
            const std::string start = compiler.program + std::string(" ") + compiler.options + warnings;
            const Outcome     run =
                Shell("cd one && " + start + "-c icon.c -o icon.o && " + compiler.program + " " +
                      std::regex_replace(compiler.options, std::regex("-W\\S+"), "") + " -c main.c -o main.o && " +
                      compiler.program + " main.o icon.o -o main && ./main >../got && cd ../alone && " + start +
                      "-c icon.c -o icon.o");
            EXPECT_EQ(run.exitCode, 0) << format << ", " << start << "\n" << testing::PrintToString(run.errors);
            EXPECT_EQ(Read("got"), expected) << format << ", " << start;
            ++compiled;
        }
    }
    EXPECT_GT(compiled, 0) << "no compiler found";
}

// ---- pictures in a build -------------------------------------------------------------------------------------------

TEST_F(KanvoImage, KanvoAddImagesBuildsPicturesIntoAProgramAndFollowsTheirChanges)
{
    if (!Exists("cmake"))
    {
        GTEST_SKIP() << "there is no cmake";
    }
    Write("src/gear.png", Icon());
    Write("src/art/my bell-2.png", Photo());
    std::ofstream(m_folder.Path("src/CMakeLists.txt"))
        << "cmake_minimum_required(VERSION 3.25)\nproject(Trial LANGUAGES CXX)\n"
           "list(APPEND CMAKE_MODULE_PATH \"" KANVO_SOURCE_DIR "/cmake\")\ninclude(KanvoImages)\n"
           "add_executable(trial main.cpp)\n"
           "kanvo_add_images(trial gear.png \"art/my bell-2.png\" FORMAT rle16)\n"
           "kanvo_add_images(trial gear.png NAME small OPTIONS --palette-max 2 --dither ordered)\n";
    std::ofstream(m_folder.Path("src/main.cpp")) << R"cpp(
        #include <cstdio>
        #include "image_gear.h"
        #include "image_my_bell_2.h"
        #include "small.h"
        int main()
        {
            std::fwrite(image_gear, 1, IMAGE_GEAR_SIZE, stdout);
            std::fwrite(image_my_bell_2, 1, IMAGE_MY_BELL_2_SIZE, stdout);
            std::fwrite(small, 1, SMALL_SIZE, stdout);
        })cpp";
    const auto expected = [&]
    {
        return Shell("{ kanvo-image encode src/gear.png -o - --format rle16; "
                     "kanvo-image encode 'src/art/my bell-2.png' -o - --format rle16; "
                     "kanvo-image encode src/gear.png -o - --format rle8 --palette-max 2 --dither ordered; } 2>&-")
            .output;
    };
    const std::string build = "cmake --build build >build.log 2>&1 || { cat build.log >&2; false; }";
    const Outcome     first = Shell("cmake -S src -B build -DKANVO_IMAGE_PROGRAM=" + Quoted(KANVO_IMAGE_PROGRAM) +
                                    " >/dev/null && " + build + " && build/trial");
    ASSERT_EQ(first.exitCode, 0) << testing::PrintToString(first.errors);
    EXPECT_EQ(first.output, expected());

    Shell(build);
    EXPECT_FALSE(Has(Text("build.log"), "Encoding")) << "nothing has changed: " << Text("build.log");

    Shell("sleep 1");
    Pixels changed = Icon();
    changed.argb[3] ^= 0x00FFFFFF;
    Write("src/gear.png", changed);
    const Outcome second = Shell(build + " && build/trial");
    EXPECT_EQ(second.exitCode, 0) << testing::PrintToString(second.errors);
    EXPECT_EQ(second.output, expected());
    EXPECT_NE(second.output, first.output);
    EXPECT_TRUE(Has(Text("build.log"), "Encoding image_gear as rle16"));
    EXPECT_FALSE(Has(Text("build.log"), "Encoding image_my_bell_2"));
}

}  // namespace
