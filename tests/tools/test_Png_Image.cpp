// Tests of Png_Image. The files come from Tiny_Png, the expected pixels from the samples that were put into them.
#include "Png_Image.h"

#include <cmath>
#include <csignal>
#include <filesystem>
#include <tuple>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "Scratch_Folder.h"
#include "Tiny_Png.h"

namespace
{

using tiny_png::Bytes;
using tiny_png::ColourType;
using tiny_png::Picture;

//! Scattered samples that differ between neighbours and channels and reach every value.
unsigned Scattered(std::uint32_t x, std::uint32_t y, int channel)
{
    const std::uint32_t mixed = (x * 73 + y * 3259 + static_cast<std::uint32_t>(channel) * 10007 + 17) * 2654435761U;
    return mixed >> 11;
}

Bytes ColoursOf(unsigned count)
{
    Bytes colours;
    for (unsigned index = 0; index < count; ++index)
    {
        for (const unsigned channel : {index * 37 + 5, index * 91 + 60, 255 - index})
        {
            colours.push_back(static_cast<std::uint8_t>(channel));
        }
    }
    return colours;
}

std::uint32_t Rounded(unsigned sample, unsigned maximum)
{
    return static_cast<std::uint32_t>(std::lround(sample * 255.0 / maximum));
}

//! What a reader must see at (x, y), straight from the format's definition.
std::uint32_t ExpectedAt(const Picture& picture, std::uint32_t x, std::uint32_t y)
{
    const unsigned maximum = (1U << picture.depth) - 1;
    const auto     raw     = [&](int channel) { return picture.sample(x, y, channel) & maximum; };
    const auto     level   = [&](int channel) { return Rounded(raw(channel), maximum); };
    const auto     hidden  = [&](int channel)  // equal to the transparent colour, stored in 16 bits
    {
        const auto at = static_cast<std::size_t>(channel) * 2;
        return picture.transparency.size() > at + 1 &&
               raw(channel) == (unsigned{picture.transparency[at]} << 8 | picture.transparency[at + 1]);
    };
    std::uint32_t a = 255;
    std::uint32_t r = 0;
    std::uint32_t g = 0;
    std::uint32_t b = 0;
    switch (picture.colourType)
    {
    case tiny_png::Grey:
        r = g = b = level(0);
        a         = hidden(0) ? 0 : 255;
        break;
    case tiny_png::GreyAlpha:
        r = g = b = level(0);
        a         = level(1);
        break;
    case tiny_png::Rgb:
        r = level(0);
        g = level(1);
        b = level(2);
        a = hidden(0) && hidden(1) && hidden(2) ? 0 : 255;
        break;
    case tiny_png::Rgba:
        r = level(0);
        g = level(1);
        b = level(2);
        a = level(3);
        break;
    case tiny_png::Palette:
        r = picture.palette[raw(0) * 3];
        g = picture.palette[raw(0) * 3 + 1];
        b = picture.palette[raw(0) * 3 + 2];
        a = raw(0) < picture.transparency.size() ? picture.transparency[raw(0)] : 255;
        break;
    }
    return a << 24 | r << 16 | g << 8 | b;
}

void ExpectPicture(const png::LoadResult& result, const Picture& picture)
{
    ASSERT_EQ(result.error, "");
    ASSERT_EQ(result.image.width, picture.width);
    ASSERT_EQ(result.image.height, picture.height);
    ASSERT_EQ(result.image.argb.size(), std::size_t{picture.width} * picture.height);
    bool anyAlpha = false;
    for (std::uint32_t y = 0; y < picture.height; ++y)
    {
        for (std::uint32_t x = 0; x < picture.width; ++x)
        {
            const std::uint32_t expected = ExpectedAt(picture, x, y);
            ASSERT_EQ(result.image.argb[y * picture.width + x], expected) << "at " << x << ", " << y;
            anyAlpha = anyAlpha || expected >> 24 != 255;
        }
    }
    EXPECT_EQ(result.image.hasAlpha, anyAlpha);
    EXPECT_EQ(result.image.IsIndexed(), picture.colourType == tiny_png::Palette);
}

png::LoadResult Decode(const Bytes& file)
{
    return png::Decode(file.data(), file.size(), "made.png");
}

//! The one form of every error: a line that starts with the file's name.
void ExpectErrorLine(const png::LoadResult& result, const std::string& name = "made.png")
{
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error.rfind(name + ": ", 0), 0U) << result.error;
    EXPECT_GT(result.error.size(), name.size() + 2);
    EXPECT_EQ(result.error.find('\n'), std::string::npos) << result.error;
    EXPECT_TRUE(result.image.argb.empty());
    EXPECT_TRUE(result.image.indices.empty());
}

// ---- every kind of file --------------------------------------------------------------------------------------------

struct Kind
{
    ColourType colourType;
    int        depth;
};

class PngKinds : public testing::TestWithParam<std::tuple<Kind, bool>>
{
protected:
    Picture Sized(std::uint32_t width, std::uint32_t height) const
    {
        const auto [kind, interlaced] = GetParam();
        Picture picture{width, height, kind.colourType, kind.depth, Scattered, interlaced};
        if (kind.colourType == tiny_png::Palette)
        {
            picture.palette = ColoursOf(1U << kind.depth);
        }
        return picture;
    }
};

TEST_P(PngKinds, PixelsAreTheStoredSamplesBroughtToEightBits)
{
    for (const auto& [width, height] :
         {std::pair{1U, 1U}, {1U, 9U}, {9U, 1U}, {2U, 2U}, {5U, 3U}, {8U, 8U}, {37U, 23U}})
    {
        SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
        const Picture picture = Sized(width, height);
        ExpectPicture(Decode(tiny_png::Encode(picture)), picture);
    }
}

class PngKindsWithoutAlphaChannel : public PngKinds
{
};

TEST_P(PngKindsWithoutAlphaChannel, ATransparentColourBecomesAlphaZero)
{
    Picture picture = Sized(37, 23);
    if (picture.colourType == tiny_png::Palette)
    {
        picture.transparency = {0};
        if (picture.depth > 1)
        {
            picture.transparency = {200, 0, 255};  // fewer entries than colours: the others are opaque
        }
    }
    else
    {
        const unsigned maximum = (1U << picture.depth) - 1;
        for (int channel = 0; channel < tiny_png::Channels(picture.colourType); ++channel)
        {
            const unsigned sample = picture.sample(11, 7, channel) & maximum;
            picture.transparency.push_back(static_cast<std::uint8_t>(sample >> 8));
            picture.transparency.push_back(static_cast<std::uint8_t>(sample));
        }
    }
    const png::LoadResult result = Decode(tiny_png::Encode(picture));
    ExpectPicture(result, picture);
    EXPECT_TRUE(result.image.hasAlpha);
}

constexpr Kind WithoutAlphaChannel[] = {
    {tiny_png::Grey, 1},    {tiny_png::Grey, 2},    {tiny_png::Grey, 4},    {tiny_png::Grey, 8},
    {tiny_png::Grey, 16},   {tiny_png::Rgb, 8},     {tiny_png::Rgb, 16},    {tiny_png::Palette, 1},
    {tiny_png::Palette, 2}, {tiny_png::Palette, 4}, {tiny_png::Palette, 8},
};
constexpr Kind WithAlphaChannel[] = {
    {tiny_png::GreyAlpha, 8}, {tiny_png::GreyAlpha, 16}, {tiny_png::Rgba, 8}, {tiny_png::Rgba, 16}};

std::string KindName(const testing::TestParamInfo<PngKinds::ParamType>& info)
{
    const auto [kind, interlaced] = info.param;
    const char* names[]           = {"Grey", "", "Rgb", "Palette", "GreyAlpha", "", "Rgba"};
    return names[kind.colourType] + std::to_string(kind.depth) + (interlaced ? "Interlaced" : "");
}

const auto AllOf = [](const auto& kinds) { return testing::Combine(testing::ValuesIn(kinds), testing::Bool()); };

INSTANTIATE_TEST_SUITE_P(Opaque, PngKinds, AllOf(WithoutAlphaChannel), KindName);
INSTANTIATE_TEST_SUITE_P(Alpha, PngKinds, AllOf(WithAlphaChannel), KindName);
INSTANTIATE_TEST_SUITE_P(All, PngKindsWithoutAlphaChannel, AllOf(WithoutAlphaChannel), KindName);

TEST(PngImage, SixteenBitsBecomeEightByRoundingToTheNearest)
{
    const Picture picture{256, 256, tiny_png::Grey, 16,
                          [](std::uint32_t x, std::uint32_t y, int) { return y << 8 | x; }};
    ExpectPicture(Decode(tiny_png::Encode(picture)), picture);
}

TEST(PngImage, ATransparentColourOfSixteenBitsIsComparedInAllSixteen)
{
    Picture picture{2, 1, tiny_png::Grey, 16, [](std::uint32_t x, std::uint32_t, int) { return 0x8000 + x; }};
    picture.transparency         = {0x80, 0x01};
    const png::LoadResult result = Decode(tiny_png::Encode(picture));
    ASSERT_EQ(result.error, "");
    EXPECT_EQ(result.image.argb, (std::vector<std::uint32_t>{0xFF808080U, 0x00808080U}));
}

TEST(PngImage, EveryFilterIsUndone)
{
    for (int filter = 0; filter < 5; ++filter)
    {
        SCOPED_TRACE(filter);
        Picture picture{19, 11, tiny_png::Rgba, 8, Scattered};
        picture.filter = filter;
        ExpectPicture(Decode(tiny_png::Encode(picture)), picture);
    }
}

// ---- indexed files -------------------------------------------------------------------------------------------------

TEST(PngImage, AnIndexedFileKeepsItsColoursInFileOrderAndItsIndices)
{
    for (const int depth : {1, 2, 4, 8})
    {
        SCOPED_TRACE(depth);
        const unsigned count = depth == 8 ? 200U : 1U << depth;
        Picture        picture{13, 7, tiny_png::Palette, depth,
                        [count](std::uint32_t x, std::uint32_t y, int) { return Scattered(x, y, 0) % count; }};
        picture.palette      = ColoursOf(count);
        picture.transparency = {17};

        const png::LoadResult result = Decode(tiny_png::Encode(picture));
        ASSERT_EQ(result.error, "");
        ASSERT_EQ(result.image.palette.size(), count);
        for (unsigned index = 0; index < count; ++index)
        {
            const std::uint8_t* colour = &picture.palette[index * 3];
            EXPECT_EQ(result.image.palette[index], (index == 0 ? 17U : 255U) << 24 | unsigned{colour[0]} << 16 |
                                                       unsigned{colour[1]} << 8 | colour[2]);
        }
        ASSERT_EQ(result.image.indices.size(), 13U * 7U);
        for (std::uint32_t pixel = 0; pixel < 13 * 7; ++pixel)
        {
            EXPECT_EQ(result.image.indices[pixel], picture.sample(pixel % 13, pixel / 13, 0));
        }
    }
}

TEST(PngImage, AnIndexBeyondThePaletteIsAnError)
{
    for (const unsigned index : {3U, 4U, 200U, 255U})
    {
        Picture picture{4, 4, tiny_png::Palette, 8,
                        [index](std::uint32_t x, std::uint32_t y, int) { return x == 3 && y == 3 ? index : 1U; }};
        picture.palette              = ColoursOf(3);
        const png::LoadResult result = Decode(tiny_png::Encode(picture));
        ExpectErrorLine(result);
        EXPECT_EQ(result.error, "made.png: a pixel has index " + std::to_string(index) + " in a palette of 3");
    }
}

// ---- broken files --------------------------------------------------------------------------------------------------

//! Small files of several kinds: plain, interlaced, indexed with transparency, with chunks nobody needs.
std::vector<Bytes> SmallFiles()
{
    std::vector<Bytes> files;
    files.push_back(tiny_png::Encode({5, 4, tiny_png::Rgba, 8, Scattered}));
    files.push_back(tiny_png::Encode({9, 9, tiny_png::Grey, 2, Scattered, true}));
    files.push_back(tiny_png::Encode({3, 3, tiny_png::Rgb, 16, Scattered, true, 4, {}, {0, 1, 0, 2, 0, 3}}));
    files.push_back(tiny_png::Encode({7, 5, tiny_png::Palette, 4, Scattered, false, 1, ColoursOf(16), {0, 100, 200}}));

    Scratch_Folder                   folder;  // one with real compression
    const std::vector<std::uint32_t> pixels(32 * 16, 0x80FF8040U);
    EXPECT_EQ(png::Save(folder.Path("saved.png"), pixels.data(), 32, 16, 32 * 4, true), "");
    files.push_back(folder.Read("saved.png"));

    const Bytes        plain = tiny_png::Encode({2, 2, tiny_png::Grey, 8, Scattered});
    const Bytes        text  = tiny_png::Chunk("tEXt", {'a', 0, 'b'});
    const Bytes        gamma = tiny_png::Chunk("gAMA", {0, 0, 0xB1, 0x8F});
    std::vector<Bytes> parts = {Bytes(plain.begin() + 8, plain.begin() + 33), gamma, text,
                                Bytes(plain.begin() + 33, plain.end())};
    files.push_back(tiny_png::Join(parts));
    return files;
}

TEST(PngImage, SmallFilesOfTheseTestsAreGood)
{
    for (const Bytes& file : SmallFiles())
    {
        EXPECT_EQ(Decode(file).error, "");
    }
}

TEST(PngImage, AFileCutAnywhereIsAnError)
{
    for (const Bytes& file : SmallFiles())
    {
        for (std::size_t size = 0; size < file.size(); ++size)
        {
            SCOPED_TRACE(size);
            const Bytes cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
            ExpectErrorLine(Decode(cut));
        }
    }
}

TEST(PngImage, AnyDamagedByteIsAnError)
{
    for (const Bytes& file : SmallFiles())
    {
        for (std::size_t at = 0; at < file.size(); ++at)
        {
            for (const unsigned flip : {0x01U, 0x20U, 0x80U, 0xFFU})
            {
                SCOPED_TRACE(testing::Message() << "byte " << at << " of " << file.size() << " flipped by " << flip);
                Bytes damaged = file;
                damaged[at]   = static_cast<std::uint8_t>(damaged[at] ^ flip);
                ExpectErrorLine(Decode(damaged));
            }
        }
    }
}

TEST(PngImage, ADamagedByteBehindARightChecksumGivesAnErrorOrAPictureOfTheDeclaredSize)
{
    int pictures = 0;
    int errors   = 0;
    for (const Bytes& file : SmallFiles())
    {
        for (std::size_t at = 8; at < file.size(); ++at)
        {
            for (const unsigned flip : {0x01U, 0x02U, 0x04U, 0x20U, 0x80U, 0xFFU})
            {
                SCOPED_TRACE(testing::Message() << "byte " << at << " of " << file.size() << " flipped by " << flip);
                Bytes damaged = file;
                damaged[at]   = static_cast<std::uint8_t>(damaged[at] ^ flip);
                tiny_png::RepairChecksums(damaged);
                const png::LoadResult result = Decode(damaged);
                if (!result)
                {
                    ++errors;
                    ExpectErrorLine(result);
                    continue;
                }
                ++pictures;
                const auto declared = [&](std::size_t from)
                { return static_cast<std::uint32_t>(damaged[from + 2] << 8 | damaged[from + 3]); };
                EXPECT_EQ(result.image.width, declared(16));
                EXPECT_EQ(result.image.height, declared(20));
                EXPECT_EQ(result.image.argb.size(), std::size_t{result.image.width} * result.image.height);
            }
        }
    }
    EXPECT_GT(pictures, 100) << "the damage no longer reaches the pixels";
    EXPECT_GT(errors, 100);
}

TEST(PngImage, WhatIsNotAPngIsSaidToBeNone)
{
    EXPECT_EQ(png::Decode("", 0, "a").error, "a: the file is empty");
    EXPECT_EQ(png::Decode("GIF89a......", 12, "a").error, "a: not a PNG file");
    EXPECT_EQ(png::Decode("x", 1, "a").error, "a: not a PNG file");
    EXPECT_EQ(png::Decode("\x89PNG", 4, "a").error, "a: the file is truncated");
}

TEST(PngImage, APictureBeyondTheLimitIsRefusedBeforeItsMemoryIsAsked)
{
    const auto header = [](std::uint32_t width, std::uint32_t height)
    {
        Picture picture{1, 1, tiny_png::Rgba, 16, Scattered};
        Bytes   file = tiny_png::Encode(picture);
        for (std::size_t index = 0; index < 4; ++index)
        {
            file[16 + index] = static_cast<std::uint8_t>(width >> (24 - 8 * index));
            file[20 + index] = static_cast<std::uint8_t>(height >> (24 - 8 * index));
        }
        tiny_png::RepairChecksums(file);
        return Decode(file);
    };
    EXPECT_EQ(header(8193, 1).error, "made.png: 8193 x 1 pixels exceed the limit of 8192 x 8192");
    EXPECT_EQ(header(1, 8193).error, "made.png: 1 x 8193 pixels exceed the limit of 8192 x 8192");
    EXPECT_EQ(header(65536, 65536).error, "made.png: 65536 x 65536 pixels exceed the limit of 8192 x 8192");
    for (const std::uint32_t side : {0U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
    {
        SCOPED_TRACE(side);
        ExpectErrorLine(header(side, 1));
        ExpectErrorLine(header(1, side));
        ExpectErrorLine(header(side, side));
    }
}

TEST(PngImage, APictureAtTheLimitIsRead)
{
    Picture wide{8192, 2, tiny_png::Grey, 1, Scattered};
    ExpectPicture(Decode(tiny_png::Encode(wide)), wide);
    Picture high{2, 8192, tiny_png::Grey, 1, Scattered, true};
    ExpectPicture(Decode(tiny_png::Encode(high)), high);
}

// ---- files on disk -------------------------------------------------------------------------------------------------

TEST(PngImage, LoadReadsAFile)
{
    Scratch_Folder folder;
    const Picture  picture{37, 23, tiny_png::Rgba, 8, Scattered, true};
    folder.Write("a.png", tiny_png::Encode(picture));
    ExpectPicture(png::Load(folder.Path("a.png")), picture);
}

TEST(PngImage, AFileThatCannotBeReadIsAnErrorLine)
{
    Scratch_Folder folder;
    const auto     expect = [&](const std::string& path)
    {
        SCOPED_TRACE(path);
        ExpectErrorLine(png::Load(path), path);
    };
    expect(folder.Path("missing.png"));
    expect(folder.Path());
    expect("/dev/null");
    expect("/dev/zero");
    EXPECT_EQ(png::Load(folder.Path("missing.png")).error, folder.Path("missing.png") + ": No such file or directory");
    EXPECT_EQ(png::Load(folder.Path()).error, folder.Path() + ": Is a directory");
}

TEST(PngImage, ANameWithALineBreakStillGivesOneLine)
{
    EXPECT_EQ(png::Load("/no\nsuch\x7F.png").error, "/no?such?.png: No such file or directory");
}

// ---- saving --------------------------------------------------------------------------------------------------------

TEST(PngSave, ASavedPictureIsReadBackUnchanged)
{
    Scratch_Folder             folder;
    std::vector<std::uint32_t> pixels;
    for (std::uint32_t index = 0; index < 37 * 23; ++index)
    {
        pixels.push_back(Scattered(index, 1, 0) << 16 ^ Scattered(index, 2, 1));
    }
    ASSERT_EQ(png::Save(folder.Path("a.png"), pixels.data(), 37, 23, 37 * 4, true), "");
    const png::LoadResult result = png::Load(folder.Path("a.png"));
    ASSERT_EQ(result.error, "");
    EXPECT_EQ(result.image.width, 37U);
    EXPECT_EQ(result.image.height, 23U);
    EXPECT_EQ(result.image.argb, pixels);
    EXPECT_TRUE(result.image.hasAlpha);
    EXPECT_FALSE(result.image.IsIndexed());
}

TEST(PngSave, WithoutAlphaTheColoursStayAndEveryPixelIsOpaque)
{
    Scratch_Folder      folder;
    const std::uint32_t pixels[] = {0x00123456U, 0x80FFFFFFU, 0xFF0000FFU};
    ASSERT_EQ(png::Save(folder.Path("a.png"), pixels, 3, 1, sizeof pixels, false), "");
    const png::LoadResult result = png::Load(folder.Path("a.png"));
    EXPECT_EQ(result.image.argb, (std::vector<std::uint32_t>{0xFF123456U, 0xFFFFFFFFU, 0xFF0000FFU}));
    EXPECT_FALSE(result.image.hasAlpha);
}

TEST(PngSave, ThePitchLeadsFromRowToRow)
{
    Scratch_Folder      folder;
    const std::uint32_t pixels[] = {1, 2, 99, 99, 99, 3, 4, 99, 99, 99};
    ASSERT_EQ(png::Save(folder.Path("a.png"), pixels, 2, 2, 5 * 4, true), "");
    EXPECT_EQ(png::Load(folder.Path("a.png")).image.argb, (std::vector<std::uint32_t>{1, 2, 3, 4}));
}

TEST(PngSave, EqualPixelsGiveEqualBytesAndNoChunkBesideThePicture)
{
    Scratch_Folder                   folder;
    const std::vector<std::uint32_t> pixels(64 * 64, 0xFF336699U);
    ASSERT_EQ(png::Save(folder.Path("a.png"), pixels.data(), 64, 64, 64 * 4, true), "");
    ASSERT_EQ(png::Save(folder.Path("b.png"), pixels.data(), 64, 64, 64 * 4, true), "");
    EXPECT_EQ(folder.Read("a.png"), folder.Read("b.png"));
    EXPECT_EQ(tiny_png::ChunkNames(folder.Read("a.png")), "IHDR IDAT IEND");
}

TEST(PngSave, AnOlderFileIsReplacedAndNothingElseIsLeft)
{
    Scratch_Folder      folder;
    const std::uint32_t pixel = 0xFF010203U;
    folder.Write("a.png", {1, 2, 3});
    ASSERT_EQ(png::Save(folder.Path("a.png"), &pixel, 1, 1, 4, true), "");
    EXPECT_EQ(png::Load(folder.Path("a.png")).image.argb.at(0), pixel);
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"a.png"});
}

TEST(PngSave, APathThatCannotBeWrittenIsAnErrorLine)
{
    Scratch_Folder      folder;
    const std::uint32_t pixel = 0;
    EXPECT_EQ(png::Save(folder.Path("no/a.png"), &pixel, 1, 1, 4, true),
              folder.Path("no/a.png") + ": No such file or directory");
    EXPECT_EQ(png::Save(folder.Path(), &pixel, 1, 1, 4, true), folder.Path() + ": not a regular file");
    EXPECT_EQ(png::Save("/dev/null", &pixel, 1, 1, 4, true), "/dev/null: not a regular file");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_TRUE(folder.Names().empty());
}

TEST(PngSave, ASizeThatCannotBeReadBackIsNotWritten)
{
    Scratch_Folder      folder;
    const std::uint32_t pixel = 0;
    for (const auto& [width, height] : {std::pair{0U, 1U}, {1U, 0U}, {8193U, 1U}, {1U, 8193U}})
    {
        EXPECT_NE(png::Save(folder.Path("a.png"), &pixel, width, height, 4, true), "");
    }
    EXPECT_TRUE(folder.Names().empty());
}

TEST(PngSave, WhenTheDiskIsFullTheOlderFileStays)
{
    Scratch_Folder folder;
    const Bytes    older = {1, 2, 3};
    folder.Write("a.png", older);
    std::vector<std::uint32_t> noise;
    for (std::uint32_t index = 0; index < 256 * 256; ++index)
    {
        noise.push_back(Scattered(index, 3, 0) << 16 ^ Scattered(index, 4, 1));
    }

    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto   signalBefore = std::signal(SIGXFSZ, SIG_IGN);  // a write beyond the limit fails as on a full disk
    const rlimit small        = {20000, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string error = png::Save(folder.Path("a.png"), noise.data(), 256, 256, 256 * 4, true);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, signalBefore);

    EXPECT_EQ(error, folder.Path("a.png") + ": File too large");
    EXPECT_EQ(folder.Read("a.png"), older);
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"a.png"});
}

}  // namespace
