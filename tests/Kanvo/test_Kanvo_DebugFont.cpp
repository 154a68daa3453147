// Tests of Kanvo_DebugFont: the repertoire, the cell, and whether the characters can be told apart.
// The few shapes checked pixel by pixel are typed here from the eye, not taken from the font's source.
#include "Kanvo_DebugFont.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace
{

constexpr unsigned char UP = 0x18, DOWN = 0x19, RIGHT = 0x1A, LEFT = 0x1B, DEGREE = 0xB0;

constexpr int LAST_DESCENDER_ROW = 8;

std::set<int> Repertoire()
{
    std::set<int> characters{UP, DOWN, RIGHT, LEFT, DEGREE};
    for (int character = 32; character <= 126; ++character) characters.insert(character);
    return characters;
}

//! The glyph as rows of '#' and '.', or no rows at all for an unknown character.
std::vector<std::string> Rows(int character)
{
    const Tov_UByte* glyph  = nullptr;
    Tov_Int          width  = 0;
    Tov_Int          height = 0;
    if (!DebugFont_GetChar(static_cast<unsigned char>(character), glyph, width, height)) return {};
    std::vector<std::string> rows;
    for (Tov_Int row = 0; row < height; ++row)
    {
        std::string& text = rows.emplace_back();
        for (Tov_Int column = 0; column < width; ++column) text += *glyph++ != 0 ? '#' : '.';
    }
    return rows;
}

std::string Drawn(int character)
{
    std::string text;
    for (const std::string& row : Rows(character)) text += row + "\n";
    return text;
}

//! In how many pixels two glyphs differ.
int Distance(int one, int other)
{
    const std::string a = Drawn(one);
    const std::string b = Drawn(other);
    EXPECT_EQ(a.size(), b.size());
    int differing = 0;
    for (std::size_t index = 0; index < std::min(a.size(), b.size()); ++index) differing += a[index] != b[index];
    return differing;
}

//! First and last row with ink; {10, -1} for an empty glyph.
std::pair<int, int> InkRows(int character)
{
    const std::vector<std::string> rows = Rows(character);
    std::pair<int, int>            range{Kanvo_DebugFont_Height, -1};
    for (int row = 0; row < static_cast<int>(rows.size()); ++row)
    {
        if (rows[static_cast<std::size_t>(row)].find('#') == std::string::npos) continue;
        range.first  = std::min(range.first, row);
        range.second = row;
    }
    return range;
}

TEST(DebugFont, KnowsAsciiTheArrowsAndTheDegreeSignInOneFixedCell)
{
    ASSERT_EQ(Kanvo_DebugFont_Width, 6);
    ASSERT_EQ(Kanvo_DebugFont_Height, 10);
    ASSERT_EQ(Repertoire().size(), 100u);
    for (const int character : Repertoire())
    {
        const Tov_UByte* glyph  = nullptr;
        Tov_Int          width  = -1;
        Tov_Int          height = -1;
        EXPECT_TRUE(DebugFont_GetChar(static_cast<unsigned char>(character), glyph, width, height)) << character;
        EXPECT_NE(glyph, nullptr) << character;
        EXPECT_EQ(width, 6) << character;
        EXPECT_EQ(height, 10) << character;
    }
}

TEST(DebugFont, AnUnknownCharacterLeavesTheResultsAlone)
{
    const std::set<int> known = Repertoire();
    const Tov_UByte     marker{};
    for (int character = 0; character < 256; ++character)
    {
        if (known.count(character) != 0) continue;
        const Tov_UByte* glyph  = &marker;
        Tov_Int          width  = 1234;
        Tov_Int          height = -77;
        EXPECT_FALSE(DebugFont_GetChar(static_cast<unsigned char>(character), glyph, width, height)) << character;
        EXPECT_EQ(glyph, &marker) << character;
        EXPECT_EQ(width, 1234) << character;
        EXPECT_EQ(height, -77) << character;
    }
}

TEST(DebugFont, AGlyphStaysWhereItIs)
{
    for (const int character : Repertoire())
    {
        const Tov_UByte* first  = nullptr;
        const Tov_UByte* second = nullptr;
        Tov_Int          width  = 0;
        Tov_Int          height = 0;
        ASSERT_TRUE(DebugFont_GetChar(static_cast<unsigned char>(character), first, width, height));
        ASSERT_TRUE(DebugFont_GetChar('A', second, width, height));
        ASSERT_TRUE(DebugFont_GetChar(static_cast<unsigned char>(character), second, width, height));
        EXPECT_EQ(first, second) << character;
    }
}

TEST(DebugFont, NoTwoGlyphsAreEqual)
{
    std::set<std::string> drawings;
    for (const int character : Repertoire()) EXPECT_TRUE(drawings.insert(Drawn(character)).second) << character;
}

TEST(DebugFont, OnlySpaceIsEmpty)
{
    for (const int character : Repertoire())
    {
        EXPECT_EQ(Drawn(character).find('#') == std::string::npos, character == ' ') << character;
    }
}

TEST(DebugFont, LinesAndColumnsSetSolidNeverTouch)
{
    for (const int character : Repertoire())
    {
        for (const std::string& row : Rows(character)) EXPECT_EQ(row.at(5), '.') << character;
        EXPECT_LE(InkRows(character).second, LAST_DESCENDER_ROW) << character;
    }
}

TEST(DebugFont, CapitalsAndDigitsStandOnTheBaseLineSevenRowsHigh)
{
    for (const int character : Repertoire())
    {
        if (std::isupper(character) == 0 && std::isdigit(character) == 0) continue;
        EXPECT_EQ(InkRows(character), std::make_pair(0, 6)) << character;
    }
}

TEST(DebugFont, SmallLettersAreFiveRowsHighWithTwoRowsOfDescender)
{
    for (const char character : std::string("acemnorsuvwxz")) EXPECT_EQ(InkRows(character), std::make_pair(2, 6));
    for (const char character : std::string("bdfhikl")) EXPECT_EQ(InkRows(character), std::make_pair(0, 6));
    for (const char character : std::string("gpqy")) EXPECT_EQ(InkRows(character), std::make_pair(2, 8));
    EXPECT_EQ(InkRows('t'), std::make_pair(1, 6));
    EXPECT_EQ(InkRows('j'), std::make_pair(0, 8));
}

TEST(DebugFont, LookAlikesDifferInAtLeastThreePixels)
{
    for (const char* pair :
         {"0O", "0D", "08", "OQ", "OD", "OC", "CG", "1l", "1I", "lI", "I|", "l|", "1|", "il", "1i", "17",  "5S", "S8",
          "8B", "3B", "38", "68", "89", "69", "06", "2Z", "UV", "VY", "MN", "MW", "HN", "PR", "EF", "co",  "ce", "ao",
          "gq", "gy", "vy", "uv", "nr", "ft", "il", "ij", "({", "([", ")]", ")}", "-~", "-_", "'`", "'\"", "/1", "xX"})
    {
        EXPECT_GE(Distance(pair[0], pair[1]), 3) << pair;
    }
    EXPECT_GE(Distance(DEGREE, '0'), 3);
    EXPECT_GE(Distance(DEGREE, 'o'), 3);
}

TEST(DebugFont, PairedCharactersMirrorEachOther)
{
    const auto mirrored = [](int character)
    {
        std::string text;
        for (const std::string& row : Rows(character)) text += std::string(row.rbegin() + 1, row.rend()) + ".\n";
        return text;
    };
    for (const char* pair : {"()", "[]", "{}", "<>", "/\\", "bd", "pq"})
    {
        EXPECT_EQ(mirrored(pair[0]), Drawn(pair[1])) << pair;
    }
    EXPECT_EQ(mirrored(LEFT), Drawn(RIGHT));
    for (const char symmetric : std::string("!\"#'*+-=HIMOTUVWXY8^_|ovwx"))
    {
        EXPECT_EQ(mirrored(symmetric), Drawn(symmetric)) << symmetric;
    }
}

TEST(DebugFont, TheArrowsPointTheWayTheyAreNamed)
{
    // Two pixels behind its one-pixel tip the head is three wide; the shaft behind the head is one wide again.
    const auto columnInk = [](int character, std::size_t column)
    {
        const std::vector<std::string> rows = Rows(character);
        return std::count_if(rows.begin(), rows.end(), [&](const std::string& row) { return row[column] == '#'; });
    };
    const auto rowInk = [](int character, std::size_t row)
    {
        const std::string text = Rows(character)[row];
        return std::count(text.begin(), text.end(), '#');
    };
    EXPECT_EQ(rowInk(UP, 0), 1);
    EXPECT_EQ(rowInk(UP, 2), 3);
    EXPECT_EQ(rowInk(UP, 6), 1);
    EXPECT_EQ(rowInk(UP, 4), 1);
    EXPECT_EQ(rowInk(DOWN, 6), 1);
    EXPECT_EQ(rowInk(DOWN, 4), 3);
    EXPECT_EQ(rowInk(DOWN, 2), 1);
    EXPECT_EQ(columnInk(RIGHT, 4), 1);
    EXPECT_EQ(columnInk(RIGHT, 2), 3);
    EXPECT_EQ(columnInk(RIGHT, 1), 1);
    EXPECT_EQ(columnInk(LEFT, 0), 1);
    EXPECT_EQ(columnInk(LEFT, 2), 3);
    EXPECT_EQ(columnInk(LEFT, 3), 1);
}

TEST(DebugFont, AFewGlyphsHaveTheExpectedShape)
{
    EXPECT_EQ(Drawn('T'), "#####.\n"
                          "..#...\n"
                          "..#...\n"
                          "..#...\n"
                          "..#...\n"
                          "..#...\n"
                          "..#...\n"
                          "......\n"
                          "......\n"
                          "......\n");
    EXPECT_EQ(Drawn('0'), ".###..\n"
                          "#...#.\n"
                          "#..##.\n"
                          "#.#.#.\n"
                          "##..#.\n"
                          "#...#.\n"
                          ".###..\n"
                          "......\n"
                          "......\n"
                          "......\n");
    EXPECT_EQ(Drawn('g'), "......\n"
                          "......\n"
                          ".##.#.\n"
                          "#..##.\n"
                          "#...#.\n"
                          "#..##.\n"
                          ".##.#.\n"
                          "....#.\n"
                          ".###..\n"
                          "......\n");
    EXPECT_EQ(Drawn(','), "......\n"
                          "......\n"
                          "......\n"
                          "......\n"
                          "......\n"
                          ".##...\n"
                          ".##...\n"
                          "..#...\n"
                          ".#....\n"
                          "......\n");
    EXPECT_EQ(Drawn(DEGREE), ".##...\n"
                             "#..#..\n"
                             "#..#..\n"
                             ".##...\n"
                             "......\n"
                             "......\n"
                             "......\n"
                             "......\n"
                             "......\n"
                             "......\n");
    EXPECT_EQ(Drawn(RIGHT), "......\n"
                            "..#...\n"
                            "...#..\n"
                            "#####.\n"
                            "...#..\n"
                            "..#...\n"
                            "......\n"
                            "......\n"
                            "......\n"
                            "......\n");
}

}  // namespace
