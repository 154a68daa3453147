// Tests of Kanvo_Print: one character of the debug font, unblended, drawn whole or not at all. What the characters
// look like is the font's business (test_Kanvo_DebugFont.cpp); here its bytes are taken as given.
#include "Kanvo_Print.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/mman.h>

#include "AssertCapture.h"
#include "Fence.h"
#include "Kanvo_BitmapARGB32.h"
#include "Kanvo_DebugFont.h"
#include "Trak_Counters.h"

namespace
{

using support::AssertCapture;
using support::Fence;

constexpr std::uint32_t PAPER = 0x11223344U;
constexpr std::uint32_t INK   = 0x7FABCDEFU;

//! A bitmap of paper between fences.
class Sheet
{
public:
    Sheet(Tov_UInt width, Tov_UInt height, support::Against end = support::Against::BackFence)
        : m_fence(std::size_t{width} * height * 4, end),
          m_bitmap(nullptr, width, height, BBT_RAM, m_fence.Data())
    {
        Wipe();
        m_bitmap.Lock();
    }

    Kanvo_BitmapARGB32& Bitmap() { return m_bitmap; }
    void                Wipe()
    {
        for (Tov_UInt index = 0; index < m_bitmap.GetWidth() * m_bitmap.GetHeight(); ++index)
        {
            m_fence.As<std::uint32_t>()[index] = PAPER;
        }
    }

    //! Whether the sheet shows the glyph at (x, y) in a colour, and paper everywhere else.
    bool ShowsOnly(int character, Tov_UInt atX, Tov_UInt atY, std::uint32_t color)
    {
        const Tov_UByte* glyph = nullptr;
        Tov_Int          width = 0, height = 0;
        if (!DebugFont_GetChar(static_cast<unsigned char>(character), glyph, width, height)) return false;
        const auto glyphWidth  = static_cast<Tov_UInt>(width);
        const auto glyphHeight = static_cast<Tov_UInt>(height);
        for (Tov_UInt y = 0; y < m_bitmap.GetHeight(); ++y)
        {
            for (Tov_UInt x = 0; x < m_bitmap.GetWidth(); ++x)
            {
                const bool inCell = x >= atX && x - atX < glyphWidth && y >= atY && y - atY < glyphHeight;
                const bool ink    = inCell && glyph[(y - atY) * glyphWidth + (x - atX)] != 0;
                if (At(x, y) != (ink ? color : PAPER)) return false;
            }
        }
        return m_fence.IsSlackUntouched();
    }

    bool IsBlank()
    {
        for (Tov_UInt index = 0; index < m_bitmap.GetWidth() * m_bitmap.GetHeight(); ++index)
        {
            if (m_fence.As<std::uint32_t>()[index] != PAPER) return false;
        }
        return m_fence.IsSlackUntouched();
    }

    std::uint32_t At(Tov_UInt x, Tov_UInt y) { return m_fence.As<std::uint32_t>()[y * m_bitmap.GetWidth() + x]; }

private:
    Fence              m_fence;
    Kanvo_BitmapARGB32 m_bitmap;
};

constexpr Tov_UInt CELL_WIDTH  = 6;
constexpr Tov_UInt CELL_HEIGHT = 10;

TEST(DebugFontChar, WritesTheColourWhereTheGlyphIsSetAndReturnsItsWidth)
{
    Sheet sheet(20, 20);
    for (int character = 0; character < 256; ++character)
    {
        sheet.Wipe();
        const Tov_Int advance = sheet.Bitmap().DebugFontChar(static_cast<Tov_UByte>(character), 4, 5, INK);
        const bool    known =
            (character >= 32 && character <= 126) || (character >= 0x18 && character <= 0x1B) || character == 0xB0;
        EXPECT_EQ(advance, known ? 6 : 0) << character;
        EXPECT_TRUE(known ? sheet.ShowsOnly(character, 4, 5, INK) : sheet.IsBlank()) << character;
    }
    sheet.Wipe();
    sheet.Bitmap().DebugFontChar('8', 4, 5, INK);
    EXPECT_FALSE(sheet.IsBlank());  // something is drawn at all
}

TEST(DebugFontChar, ForwardsToBlitChar)
{
    Sheet sheet(20, 20);
    EXPECT_EQ(Kanvo_DebugFont_Print::Blit_Char('Q', &sheet.Bitmap(), 1, 2, INK), 6);
    EXPECT_TRUE(sheet.ShowsOnly('Q', 1, 2, INK));
    EXPECT_EQ(Kanvo_DebugFont_Print::Blit_Char(7, &sheet.Bitmap(), 1, 2, INK), 0);
}

TEST(DebugFontChar, WritesTheColoursAlphaAsItIsWithoutBlending)
{
    for (const std::uint32_t color : {0x00000000U, 0x00FFFFFFU, 0x01000000U, 0x80FF0000U, 0xFFFFFFFFU})
    {
        Sheet sheet(20, 20);
        sheet.Bitmap().DebugFontChar('A', 3, 3, color);
        EXPECT_TRUE(sheet.ShowsOnly('A', 3, 3, color)) << color;
    }
}

TEST(DebugFontChar, AGlyphThatEndsOnTheLastClipColumnOrRowIsLeftOut)
{
    // On a bitmap of 7 x 11 the cell at (0, 0) ends one pixel before the last column and row: drawn. Any closer: not.
    Sheet roomy(CELL_WIDTH + 1, CELL_HEIGHT + 1);
    EXPECT_EQ(roomy.Bitmap().DebugFontChar('M', 0, 0, INK), 6);
    EXPECT_TRUE(roomy.ShowsOnly('M', 0, 0, INK));
    Sheet narrow(CELL_WIDTH, CELL_HEIGHT + 1);
    EXPECT_EQ(narrow.Bitmap().DebugFontChar('M', 0, 0, INK), 6);
    EXPECT_TRUE(narrow.IsBlank());
    Sheet low(CELL_WIDTH + 1, CELL_HEIGHT);
    EXPECT_EQ(low.Bitmap().DebugFontChar('M', 0, 0, INK), 6);
    EXPECT_TRUE(low.IsBlank());
}

TEST(DebugFontChar, IsDrawnWholeOrNotAtAllAtEveryPlaceAroundTheClipRectangle)
{
    constexpr Tov_UInt MIN_X = 3, MIN_Y = 4, MAX_X = 17, MAX_Y = 20;
    for (const support::Against end : {support::Against::FrontFence, support::Against::BackFence})
    {
        Sheet sheet(25, 27, end);
        sheet.Bitmap().SetCliprect(MIN_X, MIN_Y, MAX_X, MAX_Y);
        int drawn = 0;
        for (Tov_UInt y = 0; y < 40; ++y)
        {
            for (Tov_UInt x = 0; x < 40; ++x)
            {
                sheet.Wipe();
                const bool inside = x >= MIN_X && y >= MIN_Y && x + CELL_WIDTH <= MAX_X && y + CELL_HEIGHT <= MAX_Y;
                ASSERT_EQ(sheet.Bitmap().DebugFontChar('#', x, y, INK), 6);
                ASSERT_TRUE(inside ? sheet.ShowsOnly('#', x, y, INK) : sheet.IsBlank()) << x << ", " << y;
                drawn += inside ? 1 : 0;
            }
        }
        EXPECT_EQ(drawn, 9 * 7);
    }
}

TEST(DebugFontChar, DrawsNothingThroughAClipRectangleThatIsEmptyInvertedOrOutside)
{
    Sheet sheet(40, 40);
    for (const auto& clip : {std::vector<Tov_UInt>{1, 1, 0, 0},
                             {30, 0, 10, 39},
                             {0, 30, 39, 10},
                             {40, 40, 80, 80},
                             {0xFFFFFFFFU, 0, 0xFFFFFFFFU, 39}})
    {
        sheet.Bitmap().SetCliprect(clip[0], clip[1], clip[2], clip[3]);
        for (Tov_UInt place = 0; place < 40; place += 3)
        {
            EXPECT_EQ(sheet.Bitmap().DebugFontChar('#', place, place, INK), 6);
        }
        EXPECT_TRUE(sheet.IsBlank());
    }
}

TEST(DebugFontChar, AClipRectangleLargerThanTheBitmapIsTheBitmap)
{
    Sheet sheet(10, 14);
    sheet.Bitmap().SetCliprect(0, 0, 0xFFFFFFFFU, 0xFFFFFFFFU);
    for (Tov_UInt y = 0; y < 20; ++y)
    {
        for (Tov_UInt x = 0; x < 20; ++x)
        {
            sheet.Wipe();
            sheet.Bitmap().DebugFontChar('#', x, y, INK);
            ASSERT_TRUE(x + 6 <= 9 && y + 10 <= 13 ? sheet.ShowsOnly('#', x, y, INK) : sheet.IsBlank())
                << x << ", " << y;
        }
    }
}

TEST(DebugFontChar, APositionWhoseEndWouldWrapIsOutside)
{
    Sheet sheet(20, 20);
    for (Tov_UInt back = 1; back < 30; ++back)
    {
        EXPECT_EQ(sheet.Bitmap().DebugFontChar('W', 0U - back, 2, INK), 6);
        EXPECT_EQ(sheet.Bitmap().DebugFontChar('W', 2, 0U - back, INK), 6);
        EXPECT_EQ(sheet.Bitmap().DebugFontChar('W', 0U - back, 0U - back, INK), 6);
    }
    for (const Tov_UInt far : {0x7FFFFFFAU, 0x7FFFFFFFU, 0x80000000U})
    {
        EXPECT_EQ(sheet.Bitmap().DebugFontChar('W', far, 2, INK), 6);
        EXPECT_EQ(sheet.Bitmap().DebugFontChar('W', 2, far, INK), 6);
    }
    EXPECT_TRUE(sheet.IsBlank());
}

TEST(DebugFontChar, FindsColumnsThatNeedMoreThanSixteenBits)
{
    Sheet sheet(70000, 11);
    for (const Tov_UInt x : {32766U, 32767U, 32768U, 65534U, 65535U, 65536U, 69993U})
    {
        sheet.Wipe();
        EXPECT_EQ(sheet.Bitmap().DebugFontChar('W', x, 0, INK), 6);
        EXPECT_TRUE(sheet.ShowsOnly('W', x, 0, INK)) << x;
    }
}

TEST(DebugFontChar, DoesNotAssertTheLock)
{
    Sheet sheet(20, 20);
    sheet.Bitmap().Unlock(0, 0, 0, 0);
    AssertCapture asserts;
    EXPECT_EQ(sheet.Bitmap().DebugFontChar('A', 0, 0, INK), 6);
    EXPECT_TRUE(sheet.ShowsOnly('A', 0, 0, INK));
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(DebugFontChar, ABitmapWithoutBufferStillReturnsTheWidth)
{
    AssertCapture      asserts;
    Kanvo_BitmapARGB32 bitmap(nullptr, 100, 100);
    EXPECT_EQ(bitmap.GetBuffer(), nullptr);
    bitmap.Lock();
    EXPECT_EQ(bitmap.DebugFontChar('A', 10, 10, INK), 6);
    EXPECT_EQ(bitmap.DebugFontChar(1, 10, 10, INK), 0);
    bitmap.DebugText("text\n\tmore", 0, 0, INK);
}

TEST(DebugFontChar, FindsARowBeyondFourGigabytes)
{
    if (sizeof(void*) < 8) GTEST_SKIP() << "needs 64-bit addresses";
    constexpr Tov_UInt      WIDTH = 16384, HEIGHT = 70000, ROW = 65600;
    constexpr std::uint64_t PITCH = 65536;
    constexpr auto          BYTES = static_cast<std::size_t>(PITCH * HEIGHT);
    void* const desert            = mmap(nullptr, BYTES, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (desert == MAP_FAILED) GTEST_SKIP() << "no address space to reserve";
    auto* const rows = static_cast<std::uint8_t*>(desert) + ROW * PITCH;
    ASSERT_EQ(mprotect(rows, PITCH * 10, PROT_READ | PROT_WRITE), 0);  // the ten rows of the glyph and no other
    {
        Kanvo_BitmapARGB32 bitmap(nullptr, WIDTH, HEIGHT, BBT_RAM, desert);
        bitmap.Lock();
        EXPECT_EQ(bitmap.DebugFontChar('|', 16370, ROW, INK), 6);
    }
    int inked = 0;
    for (std::uint64_t index = 0; index < 10 * PITCH / 4; ++index)
        inked += reinterpret_cast<std::uint32_t*>(rows)[index] == INK ? 1 : 0;
    EXPECT_GT(inked, 3);
    munmap(desert, BYTES);
}

// ---- counter --------------------------------------------------------------------------------------------------------

//! Notes the calls, and whether anything was drawn by then.
class Witness : public Trak_PerfCounter
{
public:
    explicit Witness(Sheet& sheet) : m_sheet(sheet), m_before(g_kPerf_DebugText) { g_kPerf_DebugText = this; }
    ~Witness() override { g_kPerf_DebugText = m_before; }
    Witness(const Witness&)            = delete;
    Witness& operator=(const Witness&) = delete;

    void Start(Tov_Value vValue) override { Note("start ", vValue); }
    void Stop(Tov_Value vValue) override { Note("stop ", vValue); }

    std::string calls;

private:
    void Note(const char* what, Tov_Value value)
    {
        calls += what + std::to_string(value).substr(0, 3) + (m_sheet.IsBlank() ? " blank; " : " drawn; ");
    }

    Sheet&            m_sheet;
    Trak_PerfCounter* m_before;
};

TEST(DebugFontChar, IsBracketedByItsCounterOnlyWhereItIsDrawn)
{
    Sheet   sheet(20, 20);
    Witness witness(sheet);
    sheet.Bitmap().DebugFontChar('A', 15, 3, INK);  // left out
    sheet.Bitmap().DebugFontChar(3, 3, 3, INK);     // unknown
    EXPECT_EQ(witness.calls, "");
    sheet.Bitmap().DebugFontChar('A', 3, 3, INK);
    EXPECT_EQ(witness.calls, "start 0.0 blank; stop 1.0 drawn; ");
}

}  // namespace
