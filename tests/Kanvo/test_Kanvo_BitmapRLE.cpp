// The bitmap over a stored image: borrowed and copied data, what it says of itself, its palette, and what becomes of data
// that does not pass the check.
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "BlitBitmaps.h"
#include "CountingLibrary.h"
#include "Fence.h"
#include "Kanvo.h"
#include "Kanvo_RLECompressedBlits.h"
#include "RleImage.h"

namespace
{

using support::AssertCapture;
using support::CountingLibrary;
using support::Messages;
using support::MessagesOf;
using support::RleImage;

using Bytes = std::vector<std::uint8_t>;

//! 3x2 pixels: 0 0 0 0 1 2.
RleImage Sample(int unitBits)
{
    return {unitBits, 3, 2, {0xFF0000FF, 0x8000FF00, 0x00FF0000}, {4, 0, 0, 2, 1, 2, 0, 0}};
}

class BitmapRLE : public testing::TestWithParam<int>
{
protected:
    static BitmapType Type() { return GetParam() == 8 ? BM_RGB32RLE8 : BM_RGB32RLE16; }

    //! The 3x2 words that the source draws over 0 at full opacity.
    static std::vector<std::uint32_t> Drawn(Kanvo_Bitmap& source, Tov_Flag flags = 0)
    {
        std::vector<std::uint32_t> words(6, 0);
        Kanvo_Screen               screen(nullptr);
        Kanvo_BitmapARGB32         target(&screen, 3, 2, BBT_RAM, words.data());
        target.Lock();
        target.Blit(&source, 3, 2, 0, 0, 0, 0, flags, 255, 0);
        return words;
    }
    static std::vector<std::uint32_t> SampleDrawn()
    {
        return {0xFF0000FF, 0xFF0000FF, 0xFF0000FF, 0xFF0000FF, 0xFF00FD00, 0};
    }

    CountingLibrary library;
    Kanvo_Screen    screen{&library};
    const Bytes     good = Sample(GetParam()).Bytes();
};

INSTANTIATE_TEST_SUITE_P(Units, BitmapRLE, testing::Values(8, 16),
                         [](const auto& parameter) { return "RLE" + std::to_string(parameter.param); });

// ---- good data ------------------------------------------------------------------------------------------------------

TEST_P(BitmapRLE, IsWhatItsHeaderSays)
{
    for (const bool copy : {false, true})
    {
        const Kanvo_BitmapRLE bitmap(&screen, good.data(), good.size(), copy);
        EXPECT_EQ(bitmap.GetReport().eFault, IMAGE_GOOD);
        EXPECT_TRUE(bitmap.GetReport().IsUsable());
        EXPECT_EQ(bitmap.GetType(), unsigned{Type()});
        EXPECT_EQ(bitmap.GetWidth(), 3U);
        EXPECT_EQ(bitmap.GetHeight(), 2U);
        EXPECT_EQ(bitmap.GetScreen(), &screen);
    }
}

TEST_P(BitmapRLE, LockYieldsTheHeader)
{
    Kanvo_BitmapRLE bitmap(&screen, good.data(), good.size());
    EXPECT_EQ(bitmap.Lock(), good.data());
    bitmap.Unlock(0, 0, 0, 0);
    const auto* const info = static_cast<const Kanvo_PrecompiledImageInfo*>(bitmap.Lock());
    EXPECT_EQ(info->uiWidth, 3U);
    EXPECT_EQ(info->uiHeight, 2U);
    EXPECT_EQ(info->uiPaletteColorCount, 3U);
    EXPECT_EQ(info->acolColorPalette[1], 0x8000FF00U);
}

TEST_P(BitmapRLE, LockingTwiceAsserts)
{
    Kanvo_BitmapRLE bitmap(&screen, good.data(), good.size());
    AssertCapture   asserts;
    bitmap.Lock();
    EXPECT_EQ(asserts.Count(), 0U);
    EXPECT_EQ(bitmap.Lock(), good.data());
    EXPECT_EQ(asserts.Take(), Messages{"bitmap already locked"});
    bitmap.Unlock(0, 0, 0, 0);
    bitmap.Unlock(1, 2, 3, 4);
    bitmap.Lock();
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST_P(BitmapRLE, IsDrawnAndLeftUnlocked)
{
    for (const bool copy : {false, true})
    {
        Kanvo_BitmapRLE bitmap(&screen, good.data(), good.size(), copy);
        AssertCapture   asserts;
        EXPECT_EQ(Drawn(bitmap), SampleDrawn());
        EXPECT_EQ(Drawn(bitmap, BLIT_NOCLIP), SampleDrawn());
        bitmap.Lock();
        EXPECT_EQ(asserts.Count(), 0U);
    }
}

TEST_P(BitmapRLE, DrawingALockedOneAssertsAndDraws)
{
    Kanvo_BitmapRLE bitmap(&screen, good.data(), good.size());
    AssertCapture   asserts;
    bitmap.Lock();
    EXPECT_EQ(Drawn(bitmap), SampleDrawn());
    EXPECT_EQ(asserts.Take(), Messages{"bitmap already locked"});
}

TEST_P(BitmapRLE, AnEarlyEndIsUsableAndSaysSo)
{
    RleImage image        = Sample(GetParam());
    image.units           = {2, 0, 0, 0};
    const Bytes     bytes = image.Bytes();
    AssertCapture   asserts;
    Kanvo_BitmapRLE bitmap(&screen, bytes.data(), bytes.size());
    EXPECT_EQ(bitmap.GetReport().eFault, IMAGE_ENDS_EARLY);
    EXPECT_EQ(bitmap.GetReport().uiOffset, image.OffsetOf(2));
    EXPECT_EQ(bitmap.GetType(), unsigned{Type()});
    EXPECT_EQ(Drawn(bitmap), (std::vector<std::uint32_t>{0xFF0000FF, 0xFF0000FF, 0, 0, 0, 0}));
    EXPECT_EQ(asserts.Texts(), Messages{}) << "a warning is not misuse";
}

TEST_P(BitmapRLE, TrailingPaddingIsAccepted)
{
    RleImage image        = Sample(GetParam());
    image.trailing        = 13;
    const Bytes     bytes = image.Bytes();
    Kanvo_BitmapRLE bitmap(&screen, bytes.data(), bytes.size());
    EXPECT_EQ(bitmap.GetReport().eFault, IMAGE_GOOD);
    EXPECT_EQ(Drawn(bitmap), SampleDrawn());
}

TEST_P(BitmapRLE, NeedsNoScreenForBorrowedData)
{
    Kanvo_BitmapRLE bitmap(nullptr, good.data(), good.size());
    EXPECT_EQ(bitmap.GetReport().eFault, IMAGE_GOOD);
    EXPECT_EQ(bitmap.GetScreen(), nullptr);
    EXPECT_EQ(Drawn(bitmap), SampleDrawn());
}

TEST_P(BitmapRLE, ReadOnlyDataIsEnough)
{
    RleImage image = Sample(GetParam());
    image.FillGap();
    const Bytes    bytes = image.Bytes();
    support::Fence fence(bytes.size());
    std::memcpy(fence.Data(), bytes.data(), bytes.size());
    fence.MakeReadOnly();
    for (const bool copy : {false, true})
    {
        Kanvo_BitmapRLE bitmap(&screen, fence.Data(), fence.Size(), copy);
        EXPECT_EQ(Drawn(bitmap), SampleDrawn());
    }
}

TEST_P(BitmapRLE, HasAlphaUnlessTheImageSaysThatAllColoursAreOpaque)
{
    RleImage image = Sample(GetParam());
    for (const bool opaque : {false, true})
    {
        image.opaque      = opaque;
        const Bytes bytes = image.Bytes();
        EXPECT_EQ(Kanvo_BitmapRLE(&screen, bytes.data(), bytes.size()).HasAlpha(), !opaque);
    }
}

TEST_P(BitmapRLE, ThePaletteCanBeReadAndNotSet)
{
    for (const bool copy : {false, true})
    {
        Kanvo_BitmapRLE bitmap(&screen, good.data(), good.size(), copy);
        AssertCapture   asserts;
        EXPECT_EQ(bitmap.GetPalette(0), 0xFF0000FFU);
        EXPECT_EQ(bitmap.GetPalette(1), 0x8000FF00U);
        EXPECT_EQ(bitmap.GetPalette(2), 0x00FF0000U);
        for (const Tov_UInt beyond : {3U, 4U, 255U, 65535U, 0x40000000U, 0x7FFFFFFFU, 0xFFFFFFFFU})
        {
            EXPECT_EQ(bitmap.GetPalette(beyond), 0U) << beyond;
        }
        EXPECT_EQ(asserts.Count(), 0U);
        bitmap.SetPalette(1, 0x12345678);
        EXPECT_EQ(asserts.Count(), 1U);
        EXPECT_EQ(bitmap.GetPalette(1), 0x8000FF00U);
    }
}

TEST_P(BitmapRLE, ColoursAreARGB32Words)
{
    const Kanvo_BitmapRLE bitmap(&screen, good.data(), good.size());
    EXPECT_EQ(bitmap.ColorFromRGB(1, 2, 3), 0xFF010203U);
    EXPECT_EQ(bitmap.ColorFromARGB(0x80, 1, 2, 3), 0x80010203U);
    EXPECT_EQ(bitmap.ColorFromARGB(0, 255, 255, 255), 0x00FFFFFFU);
    Tov_UByte r = 9;
    Tov_UByte g = 9;
    Tov_UByte b = 9;
    EXPECT_TRUE(bitmap.ColorToRGB(0x80010203, r, g, b));
    EXPECT_EQ(r, 1);
    EXPECT_EQ(g, 2);
    EXPECT_EQ(b, 3);
}

TEST_P(BitmapRLE, CannotBeDrawnInto)
{
    const Bytes        before = good;
    Kanvo_BitmapRLE    bitmap(&screen, good.data(), good.size());
    std::uint32_t      word = 0xFFFFFFFF;
    Kanvo_BitmapARGB32 source(&screen, 1, 1, BBT_RAM, &word);
    const Messages     refusal{"bitmap cannot be drawn into"};
    bitmap.Lock();
    EXPECT_EQ(MessagesOf([&] { bitmap.Blit(&source, 1, 1, 0, 0, 0, 0, 0, 255, 0); }), refusal);
    EXPECT_EQ(MessagesOf([&] { bitmap.FillRect(3, 2, 0, 0, 0xFFFFFFFF, 0); }), refusal);
    EXPECT_EQ(MessagesOf([&] { bitmap.Clear(0); }), refusal);
    EXPECT_TRUE(good == before);
}

TEST_P(BitmapRLE, IsNoAlphaMap)
{
    Kanvo_BitmapRLE    bitmap(&screen, good.data(), good.size());
    std::uint32_t      words[6]  = {1, 2, 3, 4, 5, 6};
    std::uint32_t      pixels[6] = {};
    Kanvo_BitmapARGB32 target(&screen, 3, 2, BBT_RAM, words);
    Kanvo_BitmapRGB32  source(&screen, 3, 2, BBT_RAM, pixels);
    target.Lock();
    EXPECT_EQ(MessagesOf([&] { target.BlitColor(&bitmap, 3, 2, 0, 0, 0, 0, 0xFFFFFFFF, 0, 255); }),
              Messages{"alpha bitmap is not the right type"});
    EXPECT_EQ(MessagesOf([&] { target.BlitAlpha(&source, &bitmap, 3, 2, 0, 0, 0, 0, 0, 255); }),
              (Messages{"alpha bitmap is not the right type", "RGB32->ARGB32 BlitAlpha, alpha format not supported"}));
    for (std::uint32_t at = 0; at < 6; ++at) EXPECT_EQ(words[at], at + 1);
}

// ---- copies ---------------------------------------------------------------------------------------------------------

TEST_P(BitmapRLE, BorrowedDataIsUsedWhereItIsAndAsksForNoMemory)
{
    {
        Kanvo_BitmapRLE bitmap(&screen, good.data(), good.size());
        EXPECT_EQ(bitmap.Lock(), good.data());
    }
    EXPECT_TRUE(library.allocations.empty());
    for (const auto& returned : library.returns) EXPECT_NE(returned.buffer, nullptr);
    EXPECT_EQ(good, Sample(GetParam()).Bytes());
}

TEST_P(BitmapRLE, ACopyLivesInTheLibrarysMemoryAndOutlivesItsData)
{
    Bytes           data = good;
    Kanvo_BitmapRLE bitmap(&screen, data.data(), data.size(), true);
    ASSERT_EQ(library.allocations.size(), 1U);
    const void* const copy = bitmap.Lock();
    bitmap.Unlock(0, 0, 0, 0);
    EXPECT_EQ(copy, library.allocations[0].buffer);
    EXPECT_NE(copy, data.data());
    EXPECT_EQ(std::memcmp(copy, good.data(), good.size()), 0);
    std::fill(data.begin(), data.end(), std::uint8_t{0xFF});
    data = Bytes();
    EXPECT_EQ(Drawn(bitmap), SampleDrawn());
    EXPECT_EQ(bitmap.GetPalette(1), 0x8000FF00U);
}

TEST_P(BitmapRLE, TheMemoryOfACopyIsGivenBackOnce)
{
    {
        const Kanvo_BitmapRLE bitmap(&screen, good.data(), good.size(), true);
    }
    ASSERT_EQ(library.allocations.size(), 1U);
    std::size_t given = 0;
    for (const auto& returned : library.returns)
    {
        if (returned.buffer != library.allocations[0].buffer) continue;
        ++given;
        EXPECT_EQ(returned.bufferType, library.allocations[0].bufferType);
    }
    EXPECT_EQ(given, 1U);
}

TEST_P(BitmapRLE, ReleaseGivesTheCopyBack)
{
    Kanvo_Bitmap* const bitmap = new Kanvo_BitmapRLE(&screen, good.data(), good.size(), true);
    bitmap->Release();
    ASSERT_EQ(library.allocations.size(), 1U);
    ASSERT_FALSE(library.returns.empty());
    EXPECT_EQ(library.returns.back().buffer, library.allocations[0].buffer);
}

TEST_P(BitmapRLE, MisalignedDataIsRefusedAndItsCopyIsNot)
{
    for (const std::size_t shift : {1U, 2U, 3U})
    {
        support::Fence arena(4096);
        std::memcpy(arena.Data() + arena.Size() - good.size() - (4 - shift), good.data(), good.size());
        const std::uint8_t* const at = arena.Data() + arena.Size() - good.size() - (4 - shift);
        ASSERT_NE(reinterpret_cast<std::uintptr_t>(at) % 4, 0U);
        AssertCapture   asserts;
        Kanvo_BitmapRLE borrowed(&screen, at, good.size());
        EXPECT_EQ(borrowed.GetReport().eFault, IMAGE_MISALIGNED);
        EXPECT_EQ(asserts.Take(), Messages{Kanvo_ImageFaultText(IMAGE_MISALIGNED)});
        Kanvo_BitmapRLE copied(&screen, at, good.size(), true);
        EXPECT_EQ(copied.GetReport().eFault, IMAGE_GOOD);
        EXPECT_EQ(asserts.Take(), Messages{});
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(copied.Lock()) % 4, 0U);
        copied.Unlock(0, 0, 0, 0);
        EXPECT_EQ(Drawn(copied), SampleDrawn());
    }
}

//! The data ends at the fence: a copy of a byte more stops the test. Sizes that are no multiple of four included.
TEST_P(BitmapRLE, ACopyReadsTheDataAndNotMore)
{
    for (std::size_t trailing = 0; trailing < 8; ++trailing)
    {
        RleImage image       = Sample(GetParam());
        image.trailing       = trailing;
        const Bytes    bytes = image.Bytes();
        support::Fence fence(bytes.size());
        std::memcpy(fence.Data(), bytes.data(), bytes.size());
        fence.MakeReadOnly();
        Kanvo_BitmapRLE bitmap(&screen, fence.Data(), fence.Size(), true);
        EXPECT_EQ(bitmap.GetReport().eFault, IMAGE_GOOD);
        EXPECT_EQ(std::memcmp(bitmap.Lock(), bytes.data(), bytes.size()), 0);
    }
}

// ---- refused data ---------------------------------------------------------------------------------------------------

//! Has no type, no size and no image, cannot be drawn in any way, and harms nobody.
void ExpectUseless(Kanvo_BitmapRLE& bitmap)
{
    EXPECT_EQ(bitmap.GetType(), unsigned{BM_UNKNWON});
    EXPECT_EQ(bitmap.GetWidth(), 0U);
    EXPECT_EQ(bitmap.GetHeight(), 0U);
    EXPECT_FALSE(bitmap.GetReport().IsUsable());
    EXPECT_EQ(bitmap.GetPalette(0), 0U);
    EXPECT_EQ(bitmap.GetPalette(0xFFFFFFFF), 0U);
    bitmap.HasAlpha();

    AssertCapture              asserts;  // a refused image may be complained about again; it may not be drawn
    std::vector<std::uint32_t> words(12, 0x12345678);
    std::uint8_t               cover[12] = {255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255};
    Kanvo_Screen               plain(nullptr);
    Kanvo_Screen               optimised(nullptr);
    optimised.GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON);
    Kanvo_BitmapA8 map(&plain, 4, 3, BBT_RAM, cover);
    for (Kanvo_Screen* const screen : {&plain, &optimised})
    {
        Kanvo_BitmapARGB32 target(screen, 4, 3, BBT_RAM, words.data());
        target.Lock();
        for (const Tov_Flag flags : {0U, unsigned{BLIT_NOCLIP}, unsigned{BLIT_COLORKEY}})
        {
            target.Blit(&bitmap, 3, 2, 0, 0, 0, 0, flags, 255, 0);
            target.Blit(&bitmap, 0, 0, 0, 0, 0, 0, flags, 255, 0);
            target.Blit(&bitmap, 1, 1, 0, 0, -1, 3, flags, 100, 0);
            target.BlitAlpha(&bitmap, &map, 3, 2, 0, 0, 0, 0, flags, 255);
            target.BlitAlpha(&bitmap, nullptr, 3, 2, 0, 0, 0, 0, flags, 255);
            target.BlitAlpha(&map, &bitmap, 3, 2, 0, 0, 0, 0, flags, 255);
            target.BlitColor(&bitmap, 3, 2, 0, 0, 0, 0, 0xFFFFFFFF, flags, 255);
        }
    }
    EXPECT_EQ(words, std::vector<std::uint32_t>(12, 0x12345678));
    asserts.Clear();
    EXPECT_EQ(bitmap.Lock(), nullptr);
    bitmap.Unlock(0, 0, 0, 0);
}

TEST_P(BitmapRLE, RefusedDataAssertsItsReasonAndDrawsNothing)
{
    struct Damage
    {
        Kanvo_ImageFault                 fault;
        std::size_t                      offset;
        std::function<void(Bytes& data)> damage;
    };
    const RleImage image   = Sample(GetParam());
    const unsigned bits    = static_cast<unsigned>(GetParam());
    const Damage   cases[] = {
          {IMAGE_NOT_KANVO, 0, [](Bytes& data) { data[0] = 'X'; }},
          {IMAGE_NOT_RLE, 4, [](Bytes& data) { data[7] = 0; }},
          {IMAGE_UNKNOWN_VERSION, 9, [](Bytes& data) { data[9] = 2; }},
          {IMAGE_WRONG_UNIT, 8, [](Bytes& data) { data[8] = 32; }},
          {IMAGE_BAD_SIZE, 16, [](Bytes& data) { support::Store(data, 16, 0); }},
          {IMAGE_BAD_SIZE, 20, [](Bytes& data) { support::Store(data, 20, 32768); }},
          {IMAGE_BAD_PALETTE, 24, [](Bytes& data) { support::Store(data, 24, 0xFFFFFFFF); }},
          {IMAGE_BAD_START, 36, [](Bytes& data) { support::Store(data, 36, 40); }},
          {IMAGE_TOKEN_CUT_OFF, image.OffsetOf(2), [&](Bytes& data) { data.resize(image.OffsetOf(5)); }},
          {IMAGE_INDEX_TOO_LARGE, image.OffsetOf(1),
           [&](Bytes& data) { support::Store(data, image.OffsetOf(1), 3, bits / 8); }},
          {IMAGE_TOO_MANY_PIXELS, image.OffsetOf(2),
           [&](Bytes& data) { support::Store(data, image.OffsetOf(0), 5, bits / 8); }},
          {IMAGE_NO_END, image.OffsetOf(6), [&](Bytes& data) { data.resize(image.OffsetOf(6)); }},
    };
    for (const Damage& damaged : cases)
    {
        for (const bool copy : {false, true})
        {
            SCOPED_TRACE(Kanvo_ImageFaultText(damaged.fault));
            Bytes data = good;
            damaged.damage(data);
            const Bytes     before = data;
            AssertCapture   asserts;
            Kanvo_BitmapRLE bitmap(&screen, data.data(), data.size(), copy);
            EXPECT_EQ(asserts.Take(), Messages{Kanvo_ImageFaultText(damaged.fault)});
            EXPECT_EQ(bitmap.GetReport().eFault, damaged.fault);
            EXPECT_EQ(bitmap.GetReport().uiOffset, damaged.offset);
            ExpectUseless(bitmap);
            EXPECT_TRUE(data == before);
        }
    }
    // nothing is kept of what was refused
    std::size_t open = library.allocations.size();
    for (const auto& allocation : library.allocations)
    {
        for (const auto& returned : library.returns)
        {
            if (returned.buffer == allocation.buffer)
            {
                --open;
                break;
            }
        }
    }
    EXPECT_EQ(open, 0U);
}

TEST_P(BitmapRLE, NoDataIsRefused)
{
    for (const bool copy : {false, true})
    {
        for (const std::size_t size : {std::size_t{0}, std::size_t{1000}})
        {
            AssertCapture   asserts;
            Kanvo_BitmapRLE bitmap(&screen, nullptr, size, copy);
            EXPECT_EQ(asserts.Take(), Messages{Kanvo_ImageFaultText(IMAGE_TOO_SHORT)});
            EXPECT_EQ(bitmap.GetReport().eFault, IMAGE_TOO_SHORT);
            ExpectUseless(bitmap);
        }
        for (const std::size_t size : {0U, 1U, 39U})
        {
            AssertCapture   asserts;
            Kanvo_BitmapRLE bitmap(&screen, good.data(), size, copy);
            EXPECT_EQ(bitmap.GetReport().eFault, IMAGE_TOO_SHORT) << size;
            ExpectUseless(bitmap);
        }
    }
}

TEST_P(BitmapRLE, ACopyThatCannotBeMadeSaysSo)
{
    library.refuse = true;
    AssertCapture   asserts;
    Kanvo_BitmapRLE bitmap(&screen, good.data(), good.size(), true);
    EXPECT_EQ(bitmap.GetReport().eFault, IMAGE_NO_MEMORY);
    EXPECT_EQ(asserts.Take(), Messages{Kanvo_ImageFaultText(IMAGE_NO_MEMORY)});
    ExpectUseless(bitmap);
}

TEST_P(BitmapRLE, ACopyWithoutALibraryObjectSaysSo)
{
    Kanvo_Screen orphan(nullptr);
    for (Kanvo_Screen* const without : {&orphan, static_cast<Kanvo_Screen*>(nullptr)})
    {
        AssertCapture   asserts;
        Kanvo_BitmapRLE bitmap(without, good.data(), good.size(), true);
        EXPECT_EQ(bitmap.GetReport().eFault, IMAGE_NO_MEMORY);
        EXPECT_EQ(asserts.Take(), Messages{Kanvo_ImageFaultText(IMAGE_NO_MEMORY)});
        ExpectUseless(bitmap);
    }
}

TEST_P(BitmapRLE, AHugeSizeWithACopyIsRefusedWithoutReadingIt)
{
    support::Fence fence(good.size() + (4 - good.size() % 4) % 4);
    std::memcpy(fence.Data(), good.data(), good.size());
    AssertCapture            asserts;
    std::vector<std::size_t> sizes = {0x80000000U, SIZE_MAX, SIZE_MAX - 3};
    if (SIZE_MAX > UINT32_MAX) sizes.push_back(static_cast<std::size_t>(0x100000040U));  // 64, if it is cut to a word
    for (const std::size_t size : sizes)
    {
        Kanvo_BitmapRLE bitmap(&screen, fence.Data(), size, true);
        EXPECT_EQ(bitmap.GetReport().eFault, IMAGE_NO_MEMORY) << size;
        ExpectUseless(bitmap);
    }
}

//! Also called directly, where no bitmap's blit has looked at the type.
TEST_P(BitmapRLE, TheEntriesDrawNothingOfRefusedData)
{
    AssertCapture      asserts;
    Kanvo_BitmapRLE    bitmap(&screen, good.data(), 39);
    std::uint32_t      word = 0x12345678;
    Kanvo_BitmapARGB32 target(&screen, 1, 1, BBT_RAM, &word);
    target.Lock();
    if (GetParam() == 8)
    {
        Kanvo_RLECompressedBlits::Blit_ARGB32RLE8(&bitmap, &target, 1, 1, 0, 0, 0, 0, 255);
        Kanvo_RLECompressedBlits::BlitAlpha_ARGB32RLE8(&bitmap, &target, 1, 1, 0, 0, 0, 0, 255);
        Kanvo_RLECompressedBlits::BlitMag_ARGB32RLE8(&bitmap, &target, 1, 1, 0, 0, 0, 0, 255, 1, 1);
    }
    else
    {
        Kanvo_RLECompressedBlits::Blit_ARGB32RLE16(&bitmap, &target, 1, 1, 0, 0, 0, 0, 255);
        Kanvo_RLECompressedBlits::BlitAlpha_ARGB32RLE16(&bitmap, &target, 1, 1, 0, 0, 0, 0, 255);
        Kanvo_RLECompressedBlits::BlitMag_ARGB32RLE16(&bitmap, &target, 1, 1, 0, 0, 0, 0, 255, 1, 1);
    }
    EXPECT_EQ(word, 0x12345678U);
}

}  // namespace
