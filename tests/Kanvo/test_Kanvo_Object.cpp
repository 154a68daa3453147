// Tests of the library object, which hands out the memory behind bitmaps, and of the screen.
#include "Kanvo_Object.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "Fence.h"
#include "Kanvo_Enums.h"
#include "Kanvo_Screen.h"
#include "MemoryLimit.h"
#include "Sweep.h"

namespace
{

using support::AssertCapture;
using support::Messages;

std::uintptr_t Address(const void* pointer)
{
    return reinterpret_cast<std::uintptr_t>(pointer);
}

TEST(Library, KnowsTheBytesOfEveryPixelFormat)
{
    EXPECT_EQ(Kanvo::BytesPerPixel(BM_ARGB32), 4U);
    EXPECT_EQ(Kanvo::BytesPerPixel(BM_RGB32), 4U);
    EXPECT_EQ(Kanvo::BytesPerPixel(BM_RGB565), 2U);
    EXPECT_EQ(Kanvo::BytesPerPixel(BM_RGB555), 2U);
    EXPECT_EQ(Kanvo::BytesPerPixel(BM_ALPHA8), 1U);
    for (const Tov_UInt type :
         {Tov_UInt{BM_UNKNWON}, Tov_UInt{BM_RGB32RLE8}, Tov_UInt{BM_RGB32RLE16}, Tov_UInt{BM_ALPHA1},
          Tov_UInt{BM_QUANTITY}, Tov_UInt{255}, Tov_UInt{256 + BM_ARGB32}, Tov_UInt{0xFFFFFFFF}})
    {
        EXPECT_EQ(Kanvo::BytesPerPixel(type), 0U) << type;
    }
}

TEST(Library, GivesBuffersThatAreAlignedAndWritableToTheLastByte)
{
    Kanvo              library;
    std::vector<void*> buffers;
    for (const BitmapType type : {BM_RGB32, BM_ARGB32, BM_ALPHA8, BM_RGB565, BM_RGB555, BM_ALPHA5_2})
    {
        for (Tov_UInt width = 1; width <= 70; width += 3)
        {
            for (const Tov_UInt height : {1U, 2U, 7U})
            {
                const auto  bufferType = static_cast<Tov_UByte>(width % 2 == 0 ? BBT_KANVO : BBT_RAM);
                void* const buffer     = library.AllocBitmapBuffer(type, bufferType, width, height);
                ASSERT_NE(buffer, nullptr);
                ASSERT_EQ(Address(buffer) % 64, 0U);
                std::memset(buffer, 0xEE, width * height * Kanvo::BytesPerPixel(type));
                buffers.push_back(buffer);
            }
        }
    }
    // Freed in an order that is neither that of allocation nor its reverse. What is lost or freed twice is the
    // sanitizers' find.
    support::Numbers numbers(31);
    while (!buffers.empty())
    {
        const std::size_t index = numbers.Next32() % buffers.size();
        library.FreeBitmapBuffer(buffers[index], static_cast<Tov_UByte>(index % 2 == 0 ? BBT_KANVO : BBT_RAM));
        buffers.erase(buffers.begin() + static_cast<std::ptrdiff_t>(index));
    }
}

TEST(Library, RefusesSizesWhoseProductDoesNotFit)
{
    Kanvo library;
    struct Size
    {
        Tov_UInt type;
        Tov_UInt width;
        Tov_UInt height;
    };
    constexpr Tov_UInt HIGHEST = 0xFFFFFFFFU;
    for (const Size& size :
         {Size{BM_ARGB32, 65536, 65536},  Size{BM_ALPHA8, 65536, 65536},     Size{BM_RGB565, 65536, 65536},
          Size{BM_ARGB32, 46341, 46341},  Size{BM_ALPHA8, 46341, 46341},     Size{BM_RGB565, 32768, 32768},
          Size{BM_ARGB32, 0x7FFFFFFF, 1}, Size{BM_ARGB32, 1, 0x7FFFFFFF},    Size{BM_RGB565, 0x7FFFFFFF, 1},
          Size{BM_ARGB32, HIGHEST, 1},    Size{BM_ARGB32, 1, HIGHEST},       Size{BM_ALPHA8, HIGHEST, 1},
          Size{BM_ALPHA8, 1, HIGHEST},    Size{BM_ALPHA8, HIGHEST, HIGHEST}, Size{BM_ARGB32, HIGHEST, HIGHEST},
          Size{BM_ARGB32, 0x40000000, 4},  // 4 bytes x 2^30 x 4 is 0 in 32 bits
          Size{BM_ARGB32, 0x40000001, 1},  // and this is 4
          Size{BM_RGB565, 0x80000001, 1}, Size{BM_ARGB32, 0x20000000, 1},    Size{BM_ALPHA8, 0x80000000, 1}})
    {
        EXPECT_EQ(library.AllocBitmapBuffer(size.type, BBT_KANVO, size.width, size.height), nullptr)
            << "type " << size.type << ", " << size.width << " x " << size.height;
    }
}

TEST(Library, RefusesEmptySizesReadOnlyMemoryAndTypesWithoutPixels)
{
    Kanvo library;
    EXPECT_EQ(library.AllocBitmapBuffer(BM_ARGB32, BBT_KANVO, 0, 1), nullptr);
    EXPECT_EQ(library.AllocBitmapBuffer(BM_ARGB32, BBT_KANVO, 1, 0), nullptr);
    EXPECT_EQ(library.AllocBitmapBuffer(BM_ARGB32, BBT_KANVO, 0, 0), nullptr);
    EXPECT_EQ(library.AllocBitmapBuffer(BM_ARGB32, BBT_ROM, 4, 4), nullptr);
    for (const Tov_UInt type : {Tov_UInt{BM_UNKNWON}, Tov_UInt{BM_RGB32RLE8}, Tov_UInt{BM_RGB32RLE16}, Tov_UInt{77}})
    {
        EXPECT_EQ(library.AllocBitmapBuffer(type, BBT_KANVO, 4, 4), nullptr) << type;
    }
}

TEST(Library, GivesNothingWhereMemoryIsExhaustedAndGoesOnAfterwards)
{
    if (!support::MemoryLimit::IsPossible()) GTEST_SKIP() << "no limit under this sanitizer or emulator";
    Kanvo         library;
    AssertCapture asserts;
    {
        const support::MemoryLimit limit;
        ASSERT_TRUE(limit.IsSet());
        EXPECT_EQ(library.AllocBitmapBuffer(BM_ALPHA8, BBT_KANVO, 0x7FFFFFFF, 1), nullptr);  // the largest there may be
        EXPECT_EQ(library.AllocBitmapBuffer(BM_ARGB32, BBT_RAM, 0x7FFF, 0x4000), nullptr);
    }
    void* const buffer = library.AllocBitmapBuffer(BM_ARGB32, BBT_KANVO, 4, 4);
    EXPECT_NE(buffer, nullptr);
    library.FreeBitmapBuffer(buffer, BBT_KANVO);
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(Library, TheLargestBufferThatMayBeGivenIsGivenOrRefusedButNotWrapped)
{
    if (!support::MemoryLimit::IsPossible()) GTEST_SKIP() << "takes two gigabytes of address space";
    Kanvo       library;
    auto* const buffer = static_cast<std::uint8_t*>(library.AllocBitmapBuffer(BM_ALPHA8, BBT_KANVO, 0x7FFFFFFF, 1));
    if (buffer == nullptr) GTEST_SKIP() << "no two gigabytes to be had";
    EXPECT_EQ(Address(buffer) % 64, 0U);
    buffer[0x7FFFFFFE] = 1;
    library.FreeBitmapBuffer(buffer, BBT_KANVO);
}

TEST(Library, LeavesBuffersAloneThatItDidNotGive)
{
    Kanvo         library;
    Kanvo         other;
    std::uint64_t foreign[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    library.FreeBitmapBuffer(foreign, BBT_KANVO);
    library.FreeBitmapBuffer(foreign, BBT_RAM);
    library.FreeBitmapBuffer(foreign, BBT_ROM);
    library.FreeBitmapBuffer(nullptr, BBT_KANVO);
    EXPECT_EQ(foreign[0], 1U);

    auto* const theirs = static_cast<std::uint8_t*>(other.AllocBitmapBuffer(BM_ALPHA8, BBT_KANVO, 100, 1));
    ASSERT_NE(theirs, nullptr);
    library.FreeBitmapBuffer(theirs, BBT_KANVO);
    other.FreeBitmapBuffer(theirs + 64, BBT_KANVO);  // inside a buffer is not a buffer
    other.FreeBitmapBuffer(theirs, BBT_ROM);         // and read-only memory is never freed
    void* const another = other.AllocBitmapBuffer(BM_ALPHA8, BBT_KANVO, 100, 1);
    EXPECT_NE(another, theirs);  // which is not free to be given again
    other.FreeBitmapBuffer(another, BBT_KANVO);
    theirs[99] = 7;
    other.FreeBitmapBuffer(theirs, BBT_KANVO);
    other.FreeBitmapBuffer(theirs, BBT_KANVO);  // gone already
}

TEST(Library, DoesNotReadAForeignBufferToFindOutThatItIsForeign)
{
    Kanvo          library;
    support::Fence unreadable(0);
    library.FreeBitmapBuffer(unreadable.Data(), BBT_KANVO);
    void* const own = library.AllocBitmapBuffer(BM_ARGB32, BBT_KANVO, 4, 4);
    library.FreeBitmapBuffer(unreadable.Data(), BBT_KANVO);
    library.FreeBitmapBuffer(own, BBT_KANVO);
}

void* s_outlived = nullptr;  // keeps what is leaked on purpose in reach of the leak checker

TEST(Library, AssertsWhenBitmapsOutliveIt)
{
    AssertCapture asserts;
    {
        Kanvo       library;
        void* const returned = library.AllocBitmapBuffer(BM_ARGB32, BBT_KANVO, 4, 4);
        s_outlived           = library.AllocBitmapBuffer(BM_ARGB32, BBT_KANVO, 4, 4);
        library.FreeBitmapBuffer(returned, BBT_KANVO);
    }
    EXPECT_EQ(asserts.Take(), Messages{"bitmaps outlive the library object"});
    std::memset(s_outlived, 1, 64);  // its pixels are still there
    {
        Kanvo library;
        library.FreeBitmapBuffer(library.AllocBitmapBuffer(BM_ARGB32, BBT_KANVO, 4, 4), BBT_KANVO);
    }
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(Screen, KnowsItsLibraryObjectAndIsTheParentOfItsRenderState)
{
    Kanvo               library;
    Kanvo_Screen        screen(&library);
    const Kanvo_Screen& constant = screen;
    EXPECT_EQ(screen.GetOwner(), &library);
    EXPECT_EQ(&screen.GetRenderState(), &constant.GetRenderState());
    EXPECT_EQ(screen.GetRenderState().GetParent(), &screen);
    EXPECT_EQ(Kanvo_Screen(nullptr).GetOwner(), nullptr);
}

}  // namespace
