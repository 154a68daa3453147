// Proves that drawing takes nothing from the heap: here every operation between Lock and Unlock, and that the watch works which
// is kept over all other tests (HeapWatch).
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "HeapWatch.h"
#include "Kanvo.h"
#include "RleImage.h"

using support::HeapCount;

namespace
{

void Ignore(const char*, unsigned int, const char*) {}

constexpr Tov_UInt SIDE       = 64;
constexpr Tov_UInt BACKGROUND = 0xFF102030;

//! Every drawing operation of a bitmap, with every source, at full and at half opacity, with and without flags. What a
//! bitmap refuses is asked for as well: a refusal takes nothing from the heap either.
void DrawEverything(Kanvo_Bitmap& target, const std::vector<Kanvo_Bitmap*>& sources)
{
    constexpr std::array<Kanvo_Coord2D, 4> corners{Kanvo_Coord2D{2.5F, 3.0F}, Kanvo_Coord2D{60.0F, 10.0F},
                                                   Kanvo_Coord2D{30.0F, 61.5F}, Kanvo_Coord2D{-9.0F, 40.0F}};
    target.Clear(BACKGROUND);
    for (const Tov_UByte alpha : {Tov_UByte{255}, Tov_UByte{128}})
    {
        const Tov_UInt color = static_cast<Tov_UInt>(alpha) << 24 | 0x00FF8000;
        for (const Tov_Flag flags : {Tov_Flag{0}, Tov_Flag{BLIT_COLORKEY}, Tov_Flag{BLIT_NOCLIP},
                                     Tov_Flag{BLIT_BILINEAR}, Tov_Flag{BLIT_COPY_ONLY_ALPHA}})
        {
            target.FillRect(20, 20, 5, 5, color, flags);
            target.FillRect(200, 200, -50, -50, color, flags);
            for (Kanvo_Bitmap* const source : sources)
            {
                target.Blit(source, 16, 16, 0, 0, 3, 4, flags, alpha, 0);
                target.Blit(source, 90, 90, 1, 1, -9, -9, flags, alpha, 0);
                target.BlitColor(source, 16, 16, 0, 0, 3, 4, color, flags, alpha);
                target.Blit2Color(source, 16, 16, 0, 0, 3, 4, color, color, flags, alpha);
                target.StretchBlit(source, 16, 16, 0, 0, 40, 30, 3, 4, flags, alpha, 0);
                target.StretchBlitColor(source, 16, 16, 0, 0, 40, 30, 3, 4, color, flags, alpha);
                target.StretchBlit2Color(source, 16, 16, 0, 0, 40, 30, 3, 4, color, color, flags, alpha);
                target.RotBlit(source, 16, 16, 0, 0, 30, 30, 33.0F, flags, 1.5F, 1.5F, 8, 8, alpha, 0);
                target.RotBlitColor(source, 16, 16, 0, 0, 30, 30, color, 33.0F, flags, 1.5F, 1.5F, 8, 8, alpha);
                target.RotBlit2Color(source, 16, 16, 0, 0, 30, 30, color, color, 33.0F, flags, 1.5F, 1.5F, 8, 8, alpha);
                for (Kanvo_Bitmap* const map : sources)
                {
                    target.BlitAlpha(source, map, 16, 16, 0, 0, 3, 4, flags, alpha);
                    target.StretchBlitAlpha(source, map, 16, 16, 0, 0, 40, 30, 3, 4, flags, alpha);
                    target.RotBlitAlpha(source, map, 16, 16, 0, 0, 30, 30, 33.0F, flags, 1.5F, 1.5F, 8, 8, alpha);
                }
            }
        }
        for (Tov_Flag flags = 1; flags != 0; flags <<= 1)
        {
            target.DrawLine(Kanvo_Vector2(3.5F, 4.0F), Kanvo_Vector2(70.0F, 33.0F), color, flags, 1, 1);
            target.DrawLine(Kanvo_Vector2(3.5F, 4.0F), Kanvo_Vector2(40.0F, 90.0F), color, flags, 7, 3);
            target.DrawDot(20.0F, 30.0F, 6.5F, color, flags);
            std::array<Kanvo_Coord2D, 4> polygon = corners;  // extruding rewrites it
            target.DrawPolygon(polygon.data(), 4, color, flags);
            target.RenderPrimitivePoly(polygon.data(), 4, sizeof(Kanvo_Coord2D), flags, color);
        }
        for (const Kanvo_PrimitiveType type : {PT_POINTS, PT_LINES, PT_LINESTRIP, PT_POLYGON})
        {
            const Kanvo_Primitive primitive(type, corners.data(), 4, color, 3.0F);
            for (const Tov_Flag flags : {Tov_Flag{0}, Tov_Flag{POLY_ANTIALIAS}, Tov_Flag{POLY_USE_RENDERSTATE}})
            {
                target.DrawPrimitive(primitive, flags);
                target.DrawPrimitive(primitive, Kanvo_Matrix2::IDENTITY, Kanvo_Vector2(3, 4), flags);
                target.DrawPrimitive(primitive, Kanvo_Matrix3::IDENTITY, Kanvo_Vector3(3, 4, 1), flags);
            }
        }
        target.DebugText("Kanvo\n0123\t!", 2, 2, color);
        target.DebugFontChar('K', 30, 30, color);
    }
}

}  // namespace

#define NEEDS_COUNT() \
    if (!support::CountsHeap()) GTEST_SKIP() << "the heap of this program is not ours to look at"
#define NEEDS_WATCH() \
    if (!support::WatchesHeap()) GTEST_SKIP() << "the library has no area of its own in this program"

TEST(NoHeap, TheCountSeesWhatTheLibraryTakes)
{
    NEEDS_COUNT();
    const HeapCount count;
    void* volatile block = std::malloc(100);  // volatile: or the pair may be left out
    std::free(block);
    EXPECT_EQ(count.Calls(), 2U);
    const HeapCount again;
    int* volatile number = new int(7);
    delete number;
    EXPECT_EQ(again.Calls(), 2U);
}

namespace
{

void* volatile g_block = nullptr;

// Code of this test in the area of the library's drawing code, see heap_watch.ld.
[[gnu::noinline, gnu::section(".text.as_if_drawing")]] void AsksForMemory()
{
    g_block = std::malloc(10);
}
[[gnu::noinline, gnu::section(".text.as_if_drawing")]] void GivesMemoryBack()
{
    std::free(g_block);
    g_block = nullptr;
}
[[gnu::noinline, gnu::section(".text.as_if_drawing")]] void MakesAnObject()
{
    g_block = new int(7);
    asm volatile("");
}
[[gnu::noinline, gnu::section(".text.as_if_drawing")]] void MakesABitmap(Kanvo_Screen& screen)
{
    const Kanvo_BitmapARGB32 bitmap(&screen, 4, 4);
    EXPECT_NE(bitmap.GetBuffer(), nullptr);
}
[[gnu::noinline, gnu::section(".text.as_if_drawing")]] void CopiesAText()
{
    g_block = strdup("text");
}
[[gnu::noinline, gnu::section(".text.as_if_drawing")]] void Calls(void (*action)())
{
    void (*volatile called)() = action;  // what is known at compile time might become part of this function
    called();
    asm volatile("");
}

}  // namespace

TEST(HeapWatch, HearsOfEveryCallFromDrawingCode)
{
    NEEDS_WATCH();
    EXPECT_EQ(support::TakeHeapComplaint(), "");
    AsksForMemory();
    EXPECT_EQ(support::TakeHeapComplaint().find("malloc, called by 0x"), 0U);
    GivesMemoryBack();
    EXPECT_EQ(support::TakeHeapComplaint().find("free, called by 0x"), 0U);
    MakesAnObject();
    EXPECT_EQ(support::TakeHeapComplaint().find("operator new, called by 0x"), 0U);
    GivesMemoryBack();
    EXPECT_NE(support::TakeHeapComplaint(), "");
}

TEST(HeapWatch, HearsOfMemoryThatDrawingCodeTakesThroughTheLibraryObject)
{
    NEEDS_WATCH();
    Kanvo             library;
    Kanvo_Screen      screen(&library);
    const std::size_t before = support::HeapCallsOfLibrary();
    MakesABitmap(screen);
    EXPECT_EQ(support::TakeHeapComplaint().find("malloc, called by 0x"), 0U);
    EXPECT_EQ(support::HeapCallsOfLibrary(), before);
}

TEST(HeapWatch, HearsOfMemoryThatDrawingCodeTakesThroughTheCLibrary)
{
    NEEDS_WATCH();
    CopiesAText();
    EXPECT_EQ(support::TakeHeapComplaint().find("malloc, called by 0x"), 0U);
    std::free(g_block);
    EXPECT_EQ(support::TakeHeapComplaint(), "");
}

TEST(HeapWatch, LeavesAloneWhatTestsDo)
{
    NEEDS_WATCH();
    const support::AssertCapture asserts;  // whose handler keeps the text, called by the library
    Kanvo_BitmapARGB32           bitmap(nullptr, 4, 4);
    bitmap.Clear(0);
    EXPECT_NE(asserts.Count(), 0U);
    Calls(
        []
        {
            g_block = std::malloc(1000);
            std::free(g_block);
            asm volatile("");  // or free might be jumped to and return to Calls
        });
    Calls(
        []
        {
            Kanvo                    library;
            Kanvo_Screen             screen(&library);
            const Kanvo_BitmapARGB32 made(&screen, 4, 4);
        });
    EXPECT_EQ(support::TakeHeapComplaint(), "");
}

TEST(HeapWatch, SeesTheLibraryWhereItMayAsk)
{
    NEEDS_WATCH();
    const std::size_t before = support::HeapCallsOfLibrary();
    {
        Kanvo                    library;
        Kanvo_Screen             screen(&library);
        const Kanvo_BitmapARGB32 bitmap(&screen, 4, 4);
        EXPECT_EQ(support::HeapCallsOfLibrary() - before, 1U);
    }
    EXPECT_EQ(support::HeapCallsOfLibrary() - before, 2U);
    EXPECT_EQ(support::TakeHeapComplaint(), "");
}

TEST(NoHeap, NoOperationTakesMemoryBetweenLockAndUnlock)
{
    const Trak_AssertHandler before = Trak_SetAssertHandler(&Ignore);
    for (const Optimized_Blit optimized : {OB_NONE, OB_NEON})
    {
        Kanvo        library;
        Kanvo_Screen screen(&library);
        screen.GetRenderState().Set(OPTIMIZED_BLIT, optimized);
        Kanvo_BitmapARGB32 target(&screen, SIDE, SIDE);
        Kanvo_BitmapARGB32 argb32(&screen, 32, 32);
        Kanvo_BitmapRGB32  rgb32(&screen, 32, 32);
        Kanvo_BitmapRGB565 rgb565(&screen, 32, 32);
        Kanvo_BitmapA8     a8(&screen, 32, 32);

        std::vector<Kanvo_Bitmap*> sources{&argb32, &rgb32, &rgb565, &a8};
        for (Kanvo_Bitmap* const source : sources)
        {
            auto* const pixels = static_cast<std::uint8_t*>(source->Lock());
            for (Tov_UInt at = 0; at < 32 * source->GetPitch(); ++at) pixels[at] = static_cast<std::uint8_t>(at * 41);
            source->Unlock(0, 0, 31, 31);
        }
        const support::RleImage stored{
            8, 32, 32, {0xFF123456, 0x80654321}, {255, 1, 255, 0, 255, 1, 255, 0, 4, 1, 0, 0}};
        const auto      bytes = stored.Bytes();
        Kanvo_BitmapRLE rle(&screen, bytes.data(), bytes.size());
        ASSERT_TRUE(rle.GetReport().IsUsable());
        sources.push_back(&rle);

        Kanvo_Texture picture(&argb32);
        Kanvo_Texture stencil(&a8);
        Kanvo_Pattern pattern;
        pattern.Use(screen.GetRenderState());

        const HeapCount count;
        target.Lock();
        for (Kanvo_Texture* const texture : {&picture, &stencil})
        {
            texture->Use(screen.GetRenderState());
            for (const bool textured : {false, true})
            {
                screen.GetRenderState().Set(TEXTUREENABLE, textured);
                DrawEverything(target, sources);
            }
        }
        target.SetCliprect(9, 9, 0, 0);
        DrawEverything(target, sources);
        target.SetCliprect(10, 10, 50, 40);
        DrawEverything(target, sources);
        target.SetCliprect(0, 0, SIDE - 1, SIDE - 1);
        DrawEverything(target, sources);
        target.Unlock(0, 0, SIDE - 1, SIDE - 1);
        EXPECT_EQ(count.Calls(), 0U);
        EXPECT_NE(static_cast<const Tov_UInt*>(target.GetBuffer())[5 * SIDE + 5], BACKGROUND);
    }
    Trak_SetAssertHandler(before);
    if (!support::CountsHeap()) GTEST_SKIP() << "drawn, but not counted: the heap is not ours to look at";
}
