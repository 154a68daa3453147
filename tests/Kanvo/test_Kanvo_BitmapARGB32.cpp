// Tests of the render target: life cycle, lock, the knowledge of translucent pixels, Clear, colours, and what all
// drawing operations have in common. Fills and blits are in their own files.
#include "Kanvo_BitmapARGB32.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "CountingLibrary.h"
#include "DrawCalls.h"
#include "Fence.h"
#include "Kanvo.h"
#include "NaiveMix.h"
#include "Sweep.h"
#include "Trak_Counters.h"

namespace
{

using support::AssertCapture;
using support::CountingLibrary;
using support::Differences;
using support::DrawCall;
using support::Fence;
using support::Messages;
using support::MessagesOf;
using support::Numbers;

constexpr Tov_UInt HIGHEST = 0xFFFFFFFFU;

//! The bytes of an object, to see whether a call changed any.
template <class Object>
std::vector<unsigned char> BytesOf(const Object& object)
{
    const auto* const bytes = reinterpret_cast<const unsigned char*>(&object);
    return {bytes, bytes + sizeof object};
}

// ---- life -----------------------------------------------------------------------------------------------------------

TEST(BitmapARGB32, IsCreatedUnlockedOverMemoryOfTheLibraryObject)
{
    CountingLibrary library;
    Kanvo_Screen    screen(&library);
    for (const BitmapBufferType type : {BBT_KANVO, BBT_RAM})
    {
        library.allocations.clear();
        library.returns.clear();
        {
            Kanvo_BitmapARGB32 bitmap(&screen, 7, 5, type);
            EXPECT_EQ(bitmap.GetType(), Tov_UInt{BM_ARGB32});
            EXPECT_EQ(bitmap.GetWidth(), 7U);
            EXPECT_EQ(bitmap.GetHeight(), 5U);
            EXPECT_EQ(bitmap.GetPitch(), 28U);
            EXPECT_EQ(bitmap.GetScreen(), &screen);
            ASSERT_EQ(library.allocations.size(), 1U);
            EXPECT_EQ(library.allocations[0].type, Tov_UInt{BM_ARGB32});
            EXPECT_EQ(library.allocations[0].bufferType, type);
            EXPECT_EQ(library.allocations[0].width, 7U);
            EXPECT_EQ(library.allocations[0].height, 5U);
            EXPECT_EQ(bitmap.GetBuffer(), library.allocations[0].buffer);
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bitmap.GetBuffer()) % 64, 0U);
            EXPECT_TRUE(library.returns.empty());
            AssertCapture asserts;
            EXPECT_EQ(bitmap.Lock(), bitmap.GetBuffer());
            EXPECT_EQ(asserts.Count(), 0U);
        }
        ASSERT_EQ(library.returns.size(), 1U);
        EXPECT_EQ(library.returns[0].buffer, library.allocations[0].buffer);
        EXPECT_EQ(library.returns[0].bufferType, type);
    }
}

TEST(BitmapARGB32, TheCallersBufferIsAdoptedUnclearedHandedBackAndNeverFreed)
{
    CountingLibrary library;
    Kanvo_Screen    screen(&library);
    std::uint32_t   pixels[6] = {1, 2, 3, 4, 5, 6};
    for (const BitmapBufferType type : {BBT_KANVO, BBT_RAM, BBT_ROM})
    {
        library.returns.clear();
        {
            const Kanvo_BitmapARGB32 bitmap(&screen, 3, 2, type, pixels);
            EXPECT_EQ(bitmap.GetBuffer(), pixels);
            EXPECT_EQ(bitmap.GetPitch(), 12U);
        }
        ASSERT_EQ(library.returns.size(), 1U);  // whose buffer it is, the library object decides
        EXPECT_EQ(library.returns[0].buffer, pixels);
        EXPECT_EQ(library.returns[0].bufferType, type);
    }
    EXPECT_TRUE(library.allocations.empty());
    for (std::uint32_t index = 0; index < 6; ++index) EXPECT_EQ(pixels[index], index + 1);
}

TEST(BitmapARGB32, ReleaseHandsTheBufferBackToo)
{
    CountingLibrary library;
    Kanvo_Screen    screen(&library);
    auto* const     bitmap = new Kanvo_BitmapARGB32(&screen, 3, 2);
    void* const     buffer = bitmap->GetBuffer();
    bitmap->Release();
    ASSERT_EQ(library.returns.size(), 1U);
    EXPECT_EQ(library.returns[0].buffer, buffer);
}

TEST(BitmapARGB32, ABufferThatIsNotAlignedToWordsIsNotAdopted)
{
    alignas(8) std::uint8_t memory[64] = {};
    for (int shift = 1; shift < 4; ++shift)
    {
        AssertCapture            asserts;
        const Kanvo_BitmapARGB32 bitmap(nullptr, 2, 2, BBT_RAM, memory + shift);
        EXPECT_EQ(asserts.Take(), Messages{"bitmap buffer is not aligned to its pixels"});
        EXPECT_EQ(bitmap.GetBuffer(), nullptr);
    }
}

TEST(BitmapARGB32, WhereMemoryIsRefusedItAssertsOnceAndDrawsNothing)
{
    CountingLibrary library;
    Kanvo_Screen    screen(&library);
    library.refuse = true;
    AssertCapture asserts;
    {
        Kanvo_BitmapARGB32 bitmap(&screen, 8, 8);
        EXPECT_EQ(asserts.Take(), Messages{"no memory for the bitmap"});
        EXPECT_EQ(library.allocations.size(), 1U);
        EXPECT_EQ(bitmap.GetBuffer(), nullptr);
        EXPECT_EQ(bitmap.Lock(), nullptr);
        bitmap.Unlock(0, 0, 7, 7);
        EXPECT_EQ(asserts.Count(), 0U);
    }
    ASSERT_EQ(library.returns.size(), 1U);
    EXPECT_EQ(library.returns[0].buffer, nullptr);

    EXPECT_EQ(MessagesOf([&] { Kanvo_BitmapARGB32(nullptr, 8, 8); }), Messages{"no memory for the bitmap"});
    Kanvo_Screen ownerless(nullptr);
    EXPECT_EQ(MessagesOf([&] { Kanvo_BitmapARGB32(&ownerless, 8, 8); }), Messages{"no memory for the bitmap"});
    library.refuse = false;
    EXPECT_EQ(MessagesOf([&] { Kanvo_BitmapARGB32(&screen, 8, 8, BBT_ROM); }), Messages{"no memory for the bitmap"});
}

TEST(BitmapARGB32, SizesWhoseProductDoesNotFitAreRefusedNotWrapped)
{
    CountingLibrary    library;
    Kanvo_Screen       screen(&library);
    std::uint32_t      sourcePixels[16] = {};
    Kanvo_BitmapARGB32 source(&screen, 4, 4, BBT_RAM, sourcePixels);
    for (const auto& [width, height] : {std::pair<Tov_UInt, Tov_UInt>{65536, 65536},
                                        {46341, 46341},
                                        {0x7FFFFFFF, 1},
                                        {1, 0x7FFFFFFF},
                                        {HIGHEST, 1},
                                        {1, HIGHEST},
                                        {HIGHEST, HIGHEST},
                                        {0x40000000, 4},
                                        {0x40000001, 1},
                                        {0x20000000, 1},
                                        {32768, 16384},
                                        {0, 0},
                                        {0, 7},
                                        {7, 0},
                                        {0, HIGHEST}})
    {
        AssertCapture      asserts;
        Kanvo_BitmapARGB32 bitmap(&screen, width, height);
        EXPECT_EQ(asserts.Take().size(), 1U) << width << " x " << height;
        EXPECT_EQ(bitmap.GetBuffer(), nullptr);
        EXPECT_EQ(bitmap.Lock(), nullptr);
        for (const DrawCall& call : support::DrawCalls()) call.call(bitmap, source);
        bitmap.DebugText("text", 0, 0, 0xFFFFFFFFU);
        bitmap.Unlock(0, 0, HIGHEST, HIGHEST);
    }
}

TEST(BitmapARGB32, BitmapsOfOnePixelAndOfOneRowAreWholeBitmaps)
{
    for (const auto& [width, height] : {std::pair<Tov_UInt, Tov_UInt>{1, 1}, {1, 9}, {9, 1}, {2, 2}})
    {
        for (const support::Against end : {support::Against::FrontFence, support::Against::BackFence})
        {
            Fence              fence(std::size_t{width} * height * 4, end);
            Kanvo_BitmapARGB32 bitmap(nullptr, width, height, BBT_RAM, fence.Data());
            bitmap.Lock();
            bitmap.Clear(0xFF010203U);
            bitmap.DebugText("#", 0, 0, 0);
            bitmap.Unlock(0, 0, 0, 0);
            EXPECT_FALSE(bitmap.HasAlpha());
            for (Tov_UInt index = 0; index < width * height; ++index)
                EXPECT_EQ(fence.As<std::uint32_t>()[index], 0xFF010203U);
            EXPECT_TRUE(fence.IsSlackUntouched());
        }
    }
}

// ---- lock -----------------------------------------------------------------------------------------------------------

TEST(BitmapARGB32, LockingTwiceAssertsAndGrantsAllTheSame)
{
    std::uint32_t      pixels[4] = {};
    Kanvo_BitmapARGB32 bitmap(nullptr, 2, 2, BBT_RAM, pixels);
    AssertCapture      asserts;
    EXPECT_EQ(bitmap.Lock(), pixels);
    EXPECT_EQ(bitmap.Lock(), pixels);
    EXPECT_EQ(asserts.Take(), Messages{"bitmap already locked"});
    bitmap.Unlock(0, 0, 1, 1);  // one is enough
    EXPECT_EQ(bitmap.Lock(), pixels);
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(BitmapARGB32, UnlockingWhatIsNotLockedSaysNothing)
{
    std::uint32_t      pixels[4] = {};
    Kanvo_BitmapARGB32 bitmap(nullptr, 2, 2, BBT_RAM, pixels);
    AssertCapture      asserts;
    bitmap.Unlock(0, 0, 1, 1);
    bitmap.Unlock(5, 5, 0, HIGHEST);
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(BitmapARGB32, ChecksMarkTheirOwnFileAndLine)
{
    std::uint32_t      pixels[4] = {};
    Kanvo_BitmapARGB32 bitmap(nullptr, 2, 2, BBT_RAM, pixels);
    AssertCapture      asserts;
    bitmap.Clear(0);
    ASSERT_EQ(asserts.Count(), 1U);
    EXPECT_NE(asserts.Reports()[0].file.find("Kanvo_"), std::string::npos);
    EXPECT_GT(asserts.Reports()[0].line, 0U);
}

// ---- HasAlpha -------------------------------------------------------------------------------------------------------

TEST(BitmapARGB32, IsAssumedToHaveAlphaUntilItsFirstUnlock)
{
    std::uint32_t      pixels[4] = {HIGHEST, HIGHEST, HIGHEST, HIGHEST};
    Kanvo_BitmapARGB32 bitmap(nullptr, 2, 2, BBT_RAM, pixels);
    EXPECT_TRUE(bitmap.HasAlpha());
    bitmap.Lock();
    EXPECT_TRUE(bitmap.HasAlpha());
    bitmap.Clear(0xFF000000U);
    EXPECT_TRUE(bitmap.HasAlpha());
    bitmap.Unlock(0, 0, 1, 1);
    EXPECT_FALSE(bitmap.HasAlpha());
}

TEST(BitmapARGB32, UnlockScansBeyondItsRectangle)
{
    constexpr Tov_UInt         WIDTH = 7, HEIGHT = 5;
    std::vector<std::uint32_t> pixels(WIDTH * HEIGHT, 0xFF000000U);
    Kanvo_BitmapARGB32         bitmap(nullptr, WIDTH, HEIGHT, BBT_RAM, pixels.data());
    const Tov_UInt             rectangles[][4] = {
                    {0, 0, 0, 0}, {0, 0, 6, 4}, {3, 3, 2, 2}, {100, 100, 200, 200}, {9, 9, HIGHEST, HIGHEST}};
    for (const auto& rectangle : rectangles)
    {
        const auto unlock = [&]
        {
            bitmap.Lock();
            bitmap.Unlock(rectangle[0], rectangle[1], rectangle[2], rectangle[3]);
        };
        unlock();
        EXPECT_FALSE(bitmap.HasAlpha());
        for (std::uint32_t& pixel : pixels)
        {
            for (const std::uint32_t translucent : {0xFE000000U, 0x7FFFFFFFU, 0x00FFFFFFU, 0x00000000U})
            {
                pixel = translucent;
                unlock();
                ASSERT_TRUE(bitmap.HasAlpha()) << "pixel " << &pixel - pixels.data();
                pixel = 0xFFFFFFFFU;
                unlock();
                ASSERT_FALSE(bitmap.HasAlpha());
            }
        }
    }
}

TEST(BitmapARGB32, UnlockScansTheClippedPartsToo)
{
    std::vector<std::uint32_t> pixels(16, 0xFF000000U);
    Kanvo_BitmapARGB32         bitmap(nullptr, 4, 4, BBT_RAM, pixels.data());
    bitmap.SetCliprect(1, 1, 2, 2);
    pixels[15] = 0xFE000000U;
    bitmap.Lock();
    bitmap.Unlock(1, 1, 2, 2);
    EXPECT_TRUE(bitmap.HasAlpha());
}

TEST(BitmapARGB32, UnlockStopsAtTheFirstTranslucentPixel)
{
    // Of 1000 rows only the first has memory.
    Fence fence(8 * 4);
    std::fill_n(fence.As<std::uint32_t>(), 8, 0xFF000000U);
    fence.As<std::uint32_t>()[7] = 0xFE000000U;
    Kanvo_BitmapARGB32 bitmap(nullptr, 8, 1000, BBT_RAM, fence.Data());
    bitmap.Lock();
    bitmap.Unlock(0, 0, 7, 999);
    EXPECT_TRUE(bitmap.HasAlpha());
}

TEST(BitmapARGB32, UnlockReadsNothingBesideThePixels)
{
    for (const support::Against end : {support::Against::FrontFence, support::Against::BackFence})
    {
        Fence fence(13 * 11 * 4, end);
        std::fill_n(fence.As<std::uint32_t>(), 13 * 11, 0xFF000000U);
        fence.MakeReadOnly();  // and writes nothing at all
        Kanvo_BitmapARGB32 bitmap(nullptr, 13, 11, BBT_RAM, fence.Data());
        bitmap.Lock();
        bitmap.Unlock(0, 0, 12, 10);
        EXPECT_FALSE(bitmap.HasAlpha());
    }
}

// ---- Clear ----------------------------------------------------------------------------------------------------------

TEST(BitmapARGB32, ClearWritesTheRawWordIntoEveryPixelWhateverTheClipRectangle)
{
    for (const auto& [width, height] : {std::pair<Tov_UInt, Tov_UInt>{1, 1}, {1, 40}, {40, 1}, {17, 9}, {64, 3}})
    {
        for (const support::Against end : {support::Against::FrontFence, support::Against::BackFence})
        {
            Fence              fence(std::size_t{width} * height * 4, end);
            Kanvo_BitmapARGB32 bitmap(nullptr, width, height, BBT_RAM, fence.Data());
            bitmap.Lock();
            for (const auto& clip :
                 {std::vector<Tov_UInt>{0, 0, HIGHEST, HIGHEST}, {0, 0, 0, 0}, {1, 1, 0, 0}, {99, 99, 100, 100}})
            {
                bitmap.SetCliprect(clip[0], clip[1], clip[2], clip[3]);
                for (const std::uint32_t color : {0x00000000U, 0x80123456U, 0x00FFFFFFU, 0xFFFFFFFFU, 0x01000000U})
                {
                    bitmap.Clear(color);
                    const std::uint32_t* const pixels = fence.As<std::uint32_t>();
                    ASSERT_EQ(std::count(pixels, pixels + width * height, color),
                              static_cast<std::ptrdiff_t>(width * height));
                }
            }
            EXPECT_TRUE(fence.IsSlackUntouched());
        }
    }
}

TEST(BitmapARGB32, ClearDoesNotChangeWhatHasAlphaAnswers)
{
    std::uint32_t      pixels[4] = {};
    Kanvo_BitmapARGB32 bitmap(nullptr, 2, 2, BBT_RAM, pixels);
    bitmap.Lock();
    bitmap.Clear(0xFF000000U);
    EXPECT_TRUE(bitmap.HasAlpha());
    bitmap.Unlock(0, 0, 1, 1);
    bitmap.Lock();
    bitmap.Clear(0x00000000U);
    EXPECT_EQ(pixels[3], 0U);
    EXPECT_FALSE(bitmap.HasAlpha());
    bitmap.Unlock(0, 0, 1, 1);
    EXPECT_TRUE(bitmap.HasAlpha());
}

//! Notes the calls of the clear counter, and the last pixel at that time.
class ClearWitness : public Trak_PerfCounter
{
public:
    explicit ClearWitness(const std::uint32_t& pixel) : m_pixel(pixel), m_before(g_kPerf_BitmapClear)
    {
        g_kPerf_BitmapClear = this;
    }
    ~ClearWitness() override { g_kPerf_BitmapClear = m_before; }
    ClearWitness(const ClearWitness&)            = delete;
    ClearWitness& operator=(const ClearWitness&) = delete;

    void Start(Tov_Value vValue) override { Note("start", vValue); }
    void Stop(Tov_Value vValue) override { Note("stop", vValue); }

    std::vector<std::string> calls;

private:
    void Note(const char* what, Tov_Value value)
    {
        calls.push_back(what + std::string(" ") + std::to_string(value).substr(0, 3) + " at pixel " +
                        std::to_string(m_pixel));
    }

    const std::uint32_t& m_pixel;
    Trak_PerfCounter*    m_before;
};

TEST(BitmapARGB32, ClearIsBracketedByItsCounter)
{
    std::uint32_t      pixels[4] = {1, 1, 1, 1};
    Kanvo_BitmapARGB32 bitmap(nullptr, 2, 2, BBT_RAM, pixels);
    bitmap.Lock();
    ClearWitness witness(pixels[3]);
    bitmap.Clear(7);
    EXPECT_EQ(witness.calls, (std::vector<std::string>{"start 0.0 at pixel 1", "stop 1.0 at pixel 7"}));
}

// ---- colours --------------------------------------------------------------------------------------------------------

TEST(BitmapARGB32, ColoursAreMadeAndTakenApartInARGBOrder)
{
    std::uint32_t            pixel = 0;
    const Kanvo_BitmapARGB32 bitmap(nullptr, 1, 1, BBT_RAM, &pixel);
    EXPECT_EQ(bitmap.ColorFromARGB(0x80, 1, 2, 3), 0x80010203U);
    EXPECT_EQ(bitmap.ColorFromRGB(1, 2, 3), 0xFF010203U);
    Numbers numbers(111);
    for (int turn = 0; turn < 100000; ++turn)
    {
        const std::uint32_t     word = numbers.NextHostileWord();
        const support::Channels c    = support::Split(word);
        const auto              a = static_cast<Tov_UByte>(c[0]), r = static_cast<Tov_UByte>(c[1]);
        const auto              g = static_cast<Tov_UByte>(c[2]), b = static_cast<Tov_UByte>(c[3]);
        ASSERT_EQ(bitmap.ColorFromARGB(a, r, g, b), word);
        ASSERT_EQ(bitmap.ColorFromRGB(r, g, b), word | 0xFF000000U);
        Tov_UByte red = 0, green = 0, blue = 0;
        ASSERT_TRUE(bitmap.ColorToRGB(word, red, green, blue));
        ASSERT_TRUE(red == r && green == g && blue == b);
        ASSERT_EQ(bitmap.PremulColorFromARGB(a, r, g, b),
                  support::Join(c[0], c[0] * c[1] / 255, c[0] * c[2] / 255, c[0] * c[3] / 255));
    }
}

TEST(BitmapARGB32, PremultiplyKeepsAlphaAndMultipliesEveryChannelForAllPairs)
{
    EXPECT_EQ(Kanvo_BitmapARGB32::Premultiply(0x80FF8000U), 0x80804000U);
    EXPECT_EQ(Kanvo_BitmapARGB32::Premultiply(0xFF123456U), 0xFF123456U);
    EXPECT_EQ(Kanvo_BitmapARGB32::Premultiply(0x00FFFFFFU), 0x00000000U);
    Differences differences;
    for (int alpha = 0; alpha < 256; ++alpha)
    {
        for (int value = 0; value < 256; ++value)
        {
            const int  other    = 255 - value;
            const int  third    = value ^ 0x5A;
            const auto color    = support::Join(alpha, value, other, third);
            const auto expected = support::Join(alpha, alpha * value / 255, alpha * other / 255, alpha * third / 255);
            if (Kanvo_BitmapARGB32::Premultiply(color) != expected) differences.Note("%08X", color);
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

// ---- all drawing operations -----------------------------------------------------------------------------------------

class AllOperations : public testing::Test
{
protected:
    AllOperations() : m_source(&m_screen, 4, 4, BBT_RAM, m_sourcePixels)
    {
        std::fill_n(m_sourcePixels, 16, 0xFF00FFFFU);
        Wipe();
    }

    void Wipe() { std::fill_n(m_pixels, 64, 0x11223344U); }
    bool IsBlank() const { return std::count(m_pixels, m_pixels + 64, 0x11223344U) == 64; }
    //! Operations that change pixels once they may.
    static bool Draws(const DrawCall& call) { return std::string(call.name).find("Blit2Color") == std::string::npos; }

    Kanvo              m_library;
    Kanvo_Screen       m_screen{&m_library};
    std::uint32_t      m_sourcePixels[16];
    std::uint32_t      m_pixels[64];
    Kanvo_BitmapARGB32 m_source;
};

TEST_F(AllOperations, DrawWithoutComplaintOnALockedBitmap)
{
    Kanvo_BitmapARGB32 target(&m_screen, 8, 8, BBT_RAM, m_pixels);
    target.Lock();
    for (const DrawCall& call : support::DrawCalls())
    {
        Wipe();
        EXPECT_EQ(MessagesOf([&] { call.call(target, m_source); }), Messages{}) << call.name;
        EXPECT_NE(IsBlank(), Draws(call)) << call.name;
    }
}

TEST_F(AllOperations, AssertOnABitmapThatIsNotLockedAndDrawAllTheSame)
{
    Kanvo_BitmapARGB32 locked(&m_screen, 8, 8, BBT_RAM, m_pixels);
    locked.Lock();
    for (const DrawCall& call : support::DrawCalls())
    {
        Wipe();
        call.call(locked, m_source);
        const std::vector<std::uint32_t> expected(m_pixels, m_pixels + 64);
        Wipe();
        Kanvo_BitmapARGB32 target(&m_screen, 8, 8, BBT_RAM, m_pixels);
        EXPECT_EQ(MessagesOf([&] { call.call(target, m_source); }), Messages{"bitmap not locked"}) << call.name;
        EXPECT_EQ(std::vector<std::uint32_t>(m_pixels, m_pixels + 64), expected) << call.name;
        target.Lock();
        target.Unlock(0, 0, 7, 7);
        EXPECT_EQ(MessagesOf([&] { call.call(target, m_source); }), Messages{"bitmap not locked"}) << call.name;
    }
}

TEST_F(AllOperations, AssertOnABitmapWithoutBufferAndDrawNothing)
{
    AssertCapture      asserts;
    Kanvo_BitmapARGB32 target(&m_screen, 8, 8, BBT_ROM);
    EXPECT_EQ(asserts.Take(), Messages{"no memory for the bitmap"});
    for (const DrawCall& call : support::DrawCalls())
    {
        call.call(target, m_source);
        EXPECT_EQ(asserts.Take(), (Messages{"bitmap not locked", "bitmap has no buffer"})) << call.name;
        EXPECT_EQ(target.Lock(), nullptr);
        call.call(target, m_source);
        EXPECT_EQ(asserts.Take(), Messages{"bitmap has no buffer"}) << call.name;
        target.Unlock(0, 0, 7, 7);
    }
}

TEST_F(AllOperations, ChangeNothingButPixels)
{
    AssertCapture      asserts;  // for those without worker
    Kanvo_BitmapARGB32 target(&m_screen, 8, 8, BBT_RAM, m_pixels);
    target.Lock();
    target.SetCliprect(1, 1, 6, 6);
    const std::vector<unsigned char> targetBytes = BytesOf(target);
    const std::vector<unsigned char> sourceBytes = BytesOf(m_source);
    const std::vector<unsigned char> screenBytes = BytesOf(m_screen);
    for (const DrawCall& call : support::DrawCalls())
    {
        call.call(target, m_source);
        EXPECT_EQ(BytesOf(target), targetBytes) << call.name;
        EXPECT_EQ(BytesOf(m_source), sourceBytes) << call.name;
        EXPECT_EQ(BytesOf(m_screen), screenBytes) << call.name;
        EXPECT_EQ(std::count(m_sourcePixels, m_sourcePixels + 16, 0xFF00FFFFU), 16) << call.name;
    }
    target.DebugText("text\n\tmore", 1, 1, 5);
    EXPECT_EQ(BytesOf(target), targetBytes);
}

TEST_F(AllOperations, LeaveAloneWhatLiesOutsideTheClipRectangleExceptClear)
{
    AssertCapture      asserts;  // for those without worker
    Kanvo_BitmapARGB32 target(&m_screen, 8, 8, BBT_RAM, m_pixels);
    target.Lock();
    for (const auto& clip :
         {std::vector<Tov_UInt>{2, 2, 2, 2}, {1, 1, 0, 0}, {5, 0, 4, 7}, {8, 8, 9, 9}, {3, 0, HIGHEST, HIGHEST}})
    {
        target.SetCliprect(clip[0], clip[1], clip[2], clip[3]);
        for (const DrawCall& call : support::DrawCalls())
        {
            if (std::string(call.name) == "Clear") continue;
            Wipe();
            call.call(target, m_source);
            for (Tov_UInt index = 0; index < 64; ++index)
            {
                const Tov_UInt x = index % 8, y = index / 8;
                if (x >= clip[0] && x <= clip[2] && y >= clip[1] && y <= clip[3]) continue;
                ASSERT_EQ(m_pixels[index], 0x11223344U) << call.name << " at " << x << ", " << y;
            }
        }
    }
}

//! Notes what DrawPolygon passes on.
class PolygonTarget : public Kanvo_BitmapARGB32
{
public:
    using Kanvo_BitmapARGB32::Kanvo_BitmapARGB32;

    void RenderPrimitivePoly(const void* pvValues, Tov_UInt uiCount, Tov_UInt uiPitch, Tov_Flag ulFlags,
                             Kanvo_Color kColor) override
    {
        values = pvValues;
        rest   = {uiCount, uiPitch, ulFlags, kColor};
    }

    const void*           values = nullptr;
    std::vector<Tov_UInt> rest;
};

TEST_F(AllOperations, DrawPolygonPassesItsVerticesOnWithTheStrideOfAVertex)
{
    const Kanvo_Coord2D vertices[3] = {{0, 0}, {4, 0}, {0, 4}};
    PolygonTarget       target(&m_screen, 8, 8, BBT_RAM, m_pixels);
    target.Lock();
    target.DrawPolygon(vertices, 3, 0x12345678U, POLY_ANTIALIAS | POLY_HINT_CW);
    EXPECT_EQ(target.values, vertices);
    EXPECT_EQ(target.rest, (std::vector<Tov_UInt>{3, 8, 0x10100U, 0x12345678U}));
    target.DrawPolygon(nullptr, 0, 0, 0);
    EXPECT_EQ(target.values, nullptr);
    EXPECT_EQ(target.rest, (std::vector<Tov_UInt>{0, 8, 0, 0}));
}

TEST_F(AllOperations, TheWholeExampleOfTheHeaderRuns)
{
    AssertCapture      asserts;
    Kanvo_BitmapARGB32 target(&m_screen, 480, 272);
    target.Lock();
    target.Clear(0xFFFFFFFFU);
    target.FillRect(100, 50, 20, 20, 0x80FF0000U, 0);
    target.Unlock(0, 0, 479, 271);
    EXPECT_FALSE(target.HasAlpha());
    const auto* const pixels = static_cast<const std::uint32_t*>(target.GetBuffer());
    EXPECT_EQ(pixels[19 * 480 + 20], 0xFFFFFFFFU);
    // Half red over white: 255 + floor(-255 x 128 / 256) is 127.
    EXPECT_EQ(pixels[20 * 480 + 20], 0xFFFF7F7FU);
    EXPECT_EQ(pixels[69 * 480 + 119], 0xFFFF7F7FU);
    EXPECT_EQ(pixels[69 * 480 + 120], 0xFFFFFFFFU);
    EXPECT_EQ(asserts.Count(), 0U);
}

}  // namespace
