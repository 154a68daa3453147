// Tests of Image_CSource. The texts are compiled with all warnings as errors, as C and as C++, linked into programs of
// both languages, and the programs asked for the bytes.
#include "Image_CSource.h"

#include <cstdlib>
#include <stdexcept>

#include <gtest/gtest.h>

#include "Scratch_Folder.h"

namespace
{

using image::Encoded;
using image::Format;
using Bytes = std::vector<std::uint8_t>;

Encoded Small(Format format)
{
    image::Picture picture;
    picture.width  = 7;
    picture.height = 5;
    for (std::uint32_t pixel = 0; pixel < 35; ++pixel)
    {
        picture.argb.push_back(0xFF000000u | (pixel / 3) * 0x1F0B07u);
    }
    return image::Encode(picture, format);
}

Bytes BytesOf(const std::string& text)
{
    return {text.begin(), text.end()};
}

// ---- names ---------------------------------------------------------------------------------------------------------

TEST(ImageCSource, NamesAreMadeOfAnyText)
{
    EXPECT_EQ(image::CNameFor("icon"), "image_icon");
    EXPECT_EQ(image::CNameFor("My Icon (2).v3"), "image_My_Icon_2_v3");
    EXPECT_EQ(image::CNameFor("__a__b__"), "image_a_b");
    EXPECT_EQ(image::CNameFor("7up"), "image_7up");
    EXPECT_EQ(image::CNameFor("gr\xC3\xBC\xC3\x9F"), "image_gr");
    EXPECT_EQ(image::CNameFor("int"), "image_int");
    EXPECT_EQ(image::CNameFor(""), "image");
    EXPECT_EQ(image::CNameFor("\"\n*/ /*"), "image");
    for (const char* text : {"icon", "", "__x", "7", "a.b.c", "\xFF\xFE", "int", "-"})
    {
        EXPECT_TRUE(image::IsCName(image::CNameFor(text))) << text;
    }
}

TEST(ImageCSource, OnlyIdentifiersThatNobodyReservesAreNames)
{
    for (const char* good : {"a", "Icon7", "two_words", "x_", "integer", "Class", "mains"})
    {
        EXPECT_TRUE(image::IsCName(good)) << good;
    }
    for (const char* bad : {"", "7a", "_a", "a__b", "a-b", "a b", "\xC3\xBC", "int", "class", "alignas", "xor_eq",
                            "restrict", "main", "while", "reinterpret_cast", "a\n"})
    {
        EXPECT_FALSE(image::IsCName(bad)) << bad;
    }
    EXPECT_THROW(image::CHeader(Small(Format::A8), "int"), std::invalid_argument);
    EXPECT_THROW(image::CSource(Small(Format::A8), "a b", true), std::invalid_argument);
}

// ---- the texts -----------------------------------------------------------------------------------------------------

TEST(ImageCSource, HeaderIsExactlyThis)
{
    image::Picture picture;
    picture.width  = 3;
    picture.height = 2;
    picture.argb.assign(6, 0xFF00FF00u);
    EXPECT_EQ(
        image::CHeader(image::Encode(picture, Format::Rgb565), "image_ok"),
        "/* image_ok: an image of 3 x 2 pixels, rgb565. Made by kanvo-image; to change it, change the picture. */\n"
        "#ifndef IMAGE_OK_H\n"
        "#define IMAGE_OK_H\n"
        "\n"
        "#define IMAGE_OK_TYPE 6 /* BM_RGB565 */\n"
        "#define IMAGE_OK_WIDTH 3\n"
        "#define IMAGE_OK_HEIGHT 2\n"
        "#define IMAGE_OK_PITCH 6 /* bytes from row to row */\n"
        "#define IMAGE_OK_SIZE 12 /* bytes */\n"
        "\n"
        "#ifdef __cplusplus\n"
        "extern \"C\"\n"
        "{\n"
        "#endif\n"
        "extern const unsigned char image_ok[IMAGE_OK_SIZE];\n"
        "#ifdef __cplusplus\n"
        "}\n"
        "#endif\n"
        "\n"
        "#endif\n");
}

TEST(ImageCSource, RleHasNoPitch)
{
    const std::string header = image::CHeader(Small(Format::Rle16), "x");
    EXPECT_EQ(header.find("PITCH"), std::string::npos);
    EXPECT_NE(header.find("#define X_TYPE 3 /* BM_RGB32RLE16 */\n"), std::string::npos);
}

TEST(ImageCSource, BytesStandInRowsOfSixteen)
{
    Encoded encoded = Small(Format::A8);
    encoded.data.resize(17);
    for (std::size_t i = 0; i < 17; ++i)
    {
        encoded.data[i] = static_cast<std::uint8_t>(i * 15);
    }
    const std::string text = image::CSource(encoded, "x", true);
    EXPECT_NE(text.find("#include \"x.h\"\n"), std::string::npos);
    EXPECT_EQ(text.substr(text.find("KANVO_ALIGN4 const")),
              "KANVO_ALIGN4 const unsigned char x[17] = {\n"
              "    0x00, 0x0F, 0x1E, 0x2D, 0x3C, 0x4B, 0x5A, 0x69, 0x78, 0x87, 0x96, 0xA5, 0xB4, 0xC3, 0xD2, 0xE1,\n"
              "    0xF0\n"
              "};\n");
}

// ---- compilers -----------------------------------------------------------------------------------------------------

const std::string Warnings = " -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wundef -Wmissing-declarations -Werror ";

//! Runs a command in a folder; its output goes to a file there, for the message of a failure.
testing::AssertionResult Runs(const Scratch_Folder& folder, const std::string& command)
{
    const std::string whole = "cd '" + folder.Path() + "' && " + command + " > said.txt 2>&1";
    if (std::system(whole.c_str()) == 0)
    {
        return testing::AssertionSuccess();
    }
    const Bytes said = folder.Read("said.txt");
    return testing::AssertionFailure() << command << "\n" << std::string(said.begin(), said.end());
}

//! A program, good C and C++, that writes size, alignment and bytes.
std::string Program(const std::string& name, const std::string& upper)
{
    return "#include <stdio.h>\n"
           "#include \"" +
           name +
           ".h\"\n"
           "#include \"" +
           name +
           ".h\"\n"
           "int main(void)\n"
           "{\n"
           "    FILE* const to = fopen(\"bytes\", \"wb\");\n"
           "    if (to == NULL || sizeof " +
           name + " != " + upper + "_SIZE || (size_t)" + name +
           " % 4 != 0)\n"
           "    {\n"
           "        return 1;\n"
           "    }\n"
           "    fwrite(" +
           name + ", 1, " + upper +
           "_SIZE, to);\n"
           "    return fclose(to);\n"
           "}\n";
}

struct Language
{
    const char* compiler;  //!< with the standard
    const char* ending;
};

TEST(ImageCSource, CompilesEverywhereWithoutAWarningAndCarriesTheBytes)
{
    constexpr Language languages[] = {{"gcc -x c -std=c99", "c99"},
                                      {"gcc -x c -std=c11", "c11"},
                                      {"g++ -x c++ -std=c++11", "cpp11"},
                                      {"g++ -x c++ -std=c++17", "cpp17"}};
    for (const Format format : image::AllFormats())
    {
        const Scratch_Folder folder;
        const Encoded        encoded = Small(format);
        folder.Write("image_x.h", BytesOf(image::CHeader(encoded, "image_x")));
        folder.Write("image_x.c", BytesOf(image::CSource(encoded, "image_x", true)));
        folder.Write("main.c", BytesOf(Program("image_x", "IMAGE_X")));
        for (const Language& language : languages)
        {
            for (const std::string file : {"image_x", "main"})
            {
                ASSERT_TRUE(Runs(folder, language.compiler + Warnings + "-c " + file + ".c -o " + file + "." +
                                             language.ending + ".o"));
            }
        }
        for (const char* linked :
             {"image_x.c99.o main.c11.o", "image_x.c11.o main.c99.o", "image_x.cpp11.o main.cpp17.o",
              "image_x.c99.o main.cpp11.o", "image_x.cpp17.o main.c99.o"})
        {
            ASSERT_TRUE(Runs(folder, std::string("rm -f bytes && g++ ") + linked + " -o main && ./main"));
            ASSERT_EQ(folder.Read("bytes"), encoded.data) << linked;
        }
    }
}

TEST(ImageCSource, StandsAloneWithoutItsHeader)
{
    const Scratch_Folder folder;
    const Encoded        encoded = Small(Format::Rle8);
    folder.Write("alone.c", BytesOf(image::CSource(encoded, "picture", false)));
    folder.Write("main.c", BytesOf("#include <string.h>\nextern const unsigned char picture[];\n"
                                   "int main(void) { return memcmp(picture, \"KNVORLE \", 8); }\n"));
    ASSERT_TRUE(Runs(folder, "g++ -x c++ -std=c++11" + Warnings + "-c alone.c -o alone.o"));
    ASSERT_TRUE(Runs(folder, "gcc -std=c99" + Warnings + "main.c alone.o -o main && ./main"));
    ASSERT_TRUE(Runs(folder, "gcc -std=c99" + Warnings + "main.c alone.c -o main && ./main"));
}

TEST(ImageCSource, TheArrayIsAlignedWhereverItComesToLie)
{
    // Three bytes, which no compiler aligns by itself, behind one byte.
    Encoded encoded = Small(Format::A8);
    encoded.data    = {1, 2, 3};
    const Scratch_Folder folder;
    folder.Write("image_x.h", BytesOf(image::CHeader(encoded, "image_x")));
    folder.Write("image_x.c", BytesOf(image::CSource(encoded, "image_x", true)));
    folder.Write("both.c", BytesOf("extern const unsigned char odd[1];\nconst unsigned char odd[1] = {1};\n"
                                   "#include \"image_x.c\"\n" +
                                   Program("image_x", "IMAGE_X")));
    for (const char* compiler : {"gcc -std=c99", "gcc -std=c11", "g++ -x c++ -std=c++11"})
    {
        EXPECT_TRUE(Runs(folder, std::string(compiler) + " -fno-toplevel-reorder both.c -o main && ./main"));
    }
    EXPECT_FALSE(Runs(folder, "gcc -std=c99 -DKANVO_ALIGN4= -fno-toplevel-reorder both.c -o main && ./main"));
}

}  // namespace
