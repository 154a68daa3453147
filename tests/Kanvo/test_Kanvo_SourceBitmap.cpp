// Tests of what all source bitmaps have in common: life of the buffer, pitch, lock, and the refusal to be drawn into.
#include "Kanvo_SourceBitmap.h"

#include <cstdint>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "CountingLibrary.h"
#include "DrawCalls.h"
#include "Fence.h"
#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapARGB32.h"
#include "Kanvo_BitmapRGB32.h"
#include "Kanvo_BitmapRGB565.h"
#include "Kanvo_Screen.h"

namespace
{

using support::AssertCapture;
using support::CountingLibrary;
using support::DrawCall;
using support::Messages;
using support::MessagesOf;

template <class BitmapClass>
struct Traits;
template <>
struct Traits<Kanvo_BitmapRGB32>
{
    using Pixel                    = Kanvo_PixelRGB32;
    static constexpr Tov_UInt TYPE = 1;
};
template <>
struct Traits<Kanvo_BitmapRGB565>
{
    using Pixel                    = Kanvo_PixelRGB565;
    static constexpr Tov_UInt TYPE = 6;
};
template <>
struct Traits<Kanvo_BitmapA8>
{
    using Pixel                    = Kanvo_PixelA8;
    static constexpr Tov_UInt TYPE = 5;
};

template <class BitmapClass>
class SourceBitmap : public testing::Test
{
};

using Classes = testing::Types<Kanvo_BitmapRGB32, Kanvo_BitmapRGB565, Kanvo_BitmapA8>;
TYPED_TEST_SUITE(SourceBitmap, Classes);

TYPED_TEST(SourceBitmap, AllocatesThroughTheLibraryObjectAndGivesBackOnce)
{
    using Pixel = typename Traits<TypeParam>::Pixel;
    CountingLibrary library;
    Kanvo_Screen    screen(&library);
    {
        TypeParam bitmap(&screen, 7, 5);
        EXPECT_EQ(bitmap.GetType(), Traits<TypeParam>::TYPE);
        EXPECT_EQ(bitmap.GetPitch(), 7 * sizeof(Pixel));
        EXPECT_EQ(bitmap.GetScreen(), &screen);
        ASSERT_NE(bitmap.GetBuffer(), nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bitmap.GetBuffer()) % 64, 0U);
        std::memset(bitmap.GetBuffer(), 1, 7 * 5 * sizeof(Pixel));
        ASSERT_EQ(library.allocations.size(), 1U);
        EXPECT_EQ(library.allocations[0].type, Traits<TypeParam>::TYPE);
        EXPECT_EQ(library.allocations[0].bufferType, BBT_KANVO);
        EXPECT_EQ(library.allocations[0].width, 7U);
        EXPECT_EQ(library.allocations[0].height, 5U);
        EXPECT_TRUE(library.returns.empty());
    }
    ASSERT_EQ(library.returns.size(), 1U);
    EXPECT_EQ(library.returns[0].buffer, library.allocations[0].buffer);
    EXPECT_EQ(library.returns[0].bufferType, BBT_KANVO);
}

TYPED_TEST(SourceBitmap, AllocatesPaddedRows)
{
    using Pixel = typename Traits<TypeParam>::Pixel;
    CountingLibrary library;
    Kanvo_Screen    screen(&library);
    const auto      pitch = static_cast<Tov_UInt>(16 * sizeof(Pixel));
    TypeParam       bitmap(&screen, 7, 5, BBT_RAM, nullptr, pitch);
    EXPECT_EQ(bitmap.GetPitch(), pitch);
    ASSERT_NE(bitmap.GetBuffer(), nullptr);
    std::memset(bitmap.GetBuffer(), 1, std::size_t{pitch} * 5);  // the padding is ours as well
}

TYPED_TEST(SourceBitmap, TheCallersPixelsAreAdoptedHandedBackAndNeverFreed)
{
    using Pixel = typename Traits<TypeParam>::Pixel;
    CountingLibrary library;
    Kanvo_Screen    screen(&library);
    Pixel           pixels[6] = {1, 2, 3, 4, 5, 6};
    for (const BitmapBufferType type : {BBT_KANVO, BBT_RAM, BBT_ROM})
    {
        library.returns.clear();
        {
            const TypeParam bitmap(&screen, 3, 2, type, pixels);
            EXPECT_EQ(bitmap.GetBuffer(), pixels);
        }
        ASSERT_EQ(library.returns.size(), 1U);
        EXPECT_EQ(library.returns[0].buffer, pixels);
        EXPECT_EQ(library.returns[0].bufferType, type);
    }
    {
        const Pixel* const readOnly = pixels;
        const TypeParam    bitmap(&screen, 3, 2, readOnly);
        EXPECT_EQ(bitmap.GetBuffer(), pixels);
        EXPECT_EQ(bitmap.GetPitch(), 3 * sizeof(Pixel));
    }
    EXPECT_EQ(library.returns.back().bufferType, BBT_ROM);
    EXPECT_TRUE(library.allocations.empty());
    EXPECT_EQ(pixels[5], 6);
}

TYPED_TEST(SourceBitmap, APitchTooSmallOrNotOfWholePixelsLeavesItWithoutPixels)
{
    using Pixel         = typename Traits<TypeParam>::Pixel;
    Pixel    pixels[64] = {};
    Tov_UInt bytes      = sizeof(Pixel);
    for (const Tov_UInt pitch : {1 * bytes, 6 * bytes, 7 * bytes - 1})
    {
        AssertCapture   asserts;
        const TypeParam bitmap(nullptr, 7, 5, BBT_RAM, pixels, pitch);
        EXPECT_EQ(bitmap.GetBuffer(), nullptr) << pitch;
        EXPECT_EQ(asserts.Take(), Messages{"bitmap pitch does not suit its width"}) << pitch;
    }
    if (bytes > 1)
    {
        AssertCapture   asserts;
        const TypeParam bitmap(nullptr, 7, 5, BBT_RAM, pixels, 7 * bytes + 1);
        EXPECT_EQ(bitmap.GetBuffer(), nullptr);
        EXPECT_EQ(asserts.Take(), Messages{"bitmap pitch does not suit its width"});
    }
    EXPECT_EQ(TypeParam(nullptr, 7, 5, BBT_RAM, pixels, 8 * bytes).GetBuffer(), pixels);
}

TYPED_TEST(SourceBitmap, ABufferThatIsNotAlignedToItsPixelsIsNotAdopted)
{
    using Pixel                        = typename Traits<TypeParam>::Pixel;
    alignas(8) std::uint8_t memory[64] = {};
    for (std::size_t shift = 1; shift < sizeof(Pixel); ++shift)
    {
        AssertCapture   asserts;
        const TypeParam bitmap(nullptr, 2, 2, BBT_RAM, memory + shift);
        EXPECT_EQ(bitmap.GetBuffer(), nullptr);
        EXPECT_EQ(asserts.Take(), Messages{"bitmap buffer is not aligned to its pixels"});
    }
}

TYPED_TEST(SourceBitmap, SizesThatDoNotFitAndMemoryThatIsNotToBeHadLeaveItWithoutPixels)
{
    CountingLibrary    library;
    Kanvo_Screen       screen(&library);
    constexpr Tov_UInt HIGHEST = 0xFFFFFFFFU;
    for (const auto& [width, height] : {std::pair<Tov_UInt, Tov_UInt>{65536, 65536},
                                        {HIGHEST, 1},
                                        {1, HIGHEST},
                                        {HIGHEST, HIGHEST},
                                        {46341, 46341},
                                        {1, 0x80000000U},
                                        {0, 0},
                                        {0, 1},
                                        {1, 0}})
    {
        AssertCapture asserts;
        TypeParam     bitmap(&screen, width, height);
        EXPECT_EQ(asserts.Take().size(), 1U) << width << " x " << height;
        EXPECT_EQ(bitmap.GetBuffer(), nullptr);
        EXPECT_EQ(bitmap.Lock(), nullptr);
        bitmap.Unlock(0, 0, 0, 0);
        EXPECT_EQ(asserts.Count(), 0U);
    }
    library.refuse = true;
    EXPECT_EQ(MessagesOf([&] { TypeParam(&screen, 4, 4); }), Messages{"no memory for the bitmap"});
    EXPECT_EQ(MessagesOf([&] { TypeParam(nullptr, 4, 4); }), Messages{"no memory for the bitmap"});
    Kanvo_Screen ownerless(nullptr);
    EXPECT_EQ(MessagesOf([&] { TypeParam(&ownerless, 4, 4); }), Messages{"no memory for the bitmap"});
    library.refuse = false;
    EXPECT_EQ(MessagesOf([&] { TypeParam(&screen, 4, 4, BBT_ROM); }), Messages{"no memory for the bitmap"});
}

TYPED_TEST(SourceBitmap, LockGrantsTheBufferOnceAtATime)
{
    using Pixel             = typename Traits<TypeParam>::Pixel;
    Pixel         pixels[4] = {};
    TypeParam     bitmap(nullptr, 2, 2, BBT_RAM, pixels);
    AssertCapture asserts;
    EXPECT_EQ(bitmap.Lock(), pixels);
    EXPECT_EQ(asserts.Count(), 0U);
    EXPECT_EQ(bitmap.Lock(), pixels);
    EXPECT_EQ(asserts.Take(), Messages{"bitmap already locked"});
    bitmap.Unlock(9, 9, 1, 0xFFFFFFFFU);
    bitmap.Unlock(0, 0, 0, 0);
    EXPECT_EQ(bitmap.Lock(), pixels);
    EXPECT_EQ(asserts.Count(), 0U);
}

TYPED_TEST(SourceBitmap, RefusesEveryDrawingOperationAndIsNotTouched)
{
    using Pixel = typename Traits<TypeParam>::Pixel;
    support::Fence pixels(8 * 8 * sizeof(Pixel));
    TypeParam      target(nullptr, 8, 8, BBT_RAM, pixels.Data());
    std::uint32_t  sourcePixels[16];
    for (std::uint32_t& pixel : sourcePixels) pixel = 0xFFFFFFFFU;
    Kanvo_BitmapARGB32 source(nullptr, 4, 4, BBT_RAM, sourcePixels);
    pixels.MakeReadOnly();
    for (const bool locked : {false, true})
    {
        if (locked) target.Lock();
        for (const DrawCall& call : support::DrawCalls())
        {
            const Messages messages = MessagesOf([&] { call.call(target, source); });
            EXPECT_EQ(messages, Messages{"bitmap cannot be drawn into"}) << call.name;
        }
    }
    EXPECT_EQ(MessagesOf([&] { EXPECT_EQ(target.DebugFontChar('A', 0, 0, 1), 0); }),
              Messages{"bitmap cannot be drawn into"});
    EXPECT_EQ(MessagesOf([&] { target.DebugText("ab\n\tc", 0, 0, 1); }), Messages(3, "bitmap cannot be drawn into"));
}

TYPED_TEST(SourceBitmap, KeepsItsClipRectangleLikeAnyBitmap)
{
    using Pixel          = typename Traits<TypeParam>::Pixel;
    Pixel     pixels[64] = {};
    TypeParam bitmap(nullptr, 8, 8, BBT_RAM, pixels);
    bitmap.SetCliprect(1, 2, 99, 5);
    EXPECT_EQ(bitmap.GetClipMinX(), 1U);
    EXPECT_EQ(bitmap.GetClipMinY(), 2U);
    EXPECT_EQ(bitmap.GetClipMaxX(), 7U);
    EXPECT_EQ(bitmap.GetClipMaxY(), 5U);
}

}  // namespace
