// Proves that drawing takes nothing from the heap: this file stands in front of the C library's allocation functions, which
// everything else goes through, and counts what is asked for between Lock and Unlock. Not under sanitizers, which do the
// same, and only where the C library can be reached behind its own names (glibc).
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

#include "Kanvo.h"
#include "RleImage.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer) || __has_feature(thread_sanitizer)
#define KANVO_TEST_SANITIZED 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KANVO_TEST_SANITIZED 1
#endif

#if defined(__GLIBC__) && !defined(KANVO_TEST_SANITIZED)
#define KANVO_TEST_COUNTS_HEAP 1
#else
#define KANVO_TEST_COUNTS_HEAP 0
#endif

namespace
{

bool        g_counting = false;
std::size_t g_calls    = 0;

}  // namespace

#if KANVO_TEST_COUNTS_HEAP

// operator new and delete of the C++ library end here too.
extern "C"
{
    void* __libc_malloc(std::size_t bytes);
    void* __libc_calloc(std::size_t count, std::size_t bytes);
    void* __libc_realloc(void* block, std::size_t bytes);
    void* __libc_memalign(std::size_t alignment, std::size_t bytes);
    void  __libc_free(void* block);

    void* malloc(std::size_t bytes) noexcept
    {
        g_calls += g_counting;
        return __libc_malloc(bytes);
    }
    void* calloc(std::size_t count, std::size_t bytes) noexcept
    {
        g_calls += g_counting;
        return __libc_calloc(count, bytes);
    }
    void* realloc(void* block, std::size_t bytes) noexcept
    {
        g_calls += g_counting;
        return __libc_realloc(block, bytes);
    }
    void* aligned_alloc(std::size_t alignment, std::size_t bytes) noexcept
    {
        g_calls += g_counting;
        return __libc_memalign(alignment, bytes);
    }
    void* memalign(std::size_t alignment, std::size_t bytes) noexcept
    {
        g_calls += g_counting;
        return __libc_memalign(alignment, bytes);
    }
    int posix_memalign(void** block, std::size_t alignment, std::size_t bytes) noexcept
    {
        g_calls += g_counting;
        *block = __libc_memalign(alignment, bytes);
        return *block == nullptr ? 12 : 0;
    }
    void free(void* block) noexcept
    {
        g_calls += g_counting && block != nullptr;
        __libc_free(block);
    }
}

#endif

namespace
{

//! Counts from construction to destruction.
class HeapCount
{
public:
    HeapCount()
    {
        g_calls    = 0;
        g_counting = true;
    }
    ~HeapCount() { g_counting = false; }
    HeapCount(const HeapCount&)            = delete;
    HeapCount& operator=(const HeapCount&) = delete;

    //! Ends the counting.
    static std::size_t Calls()
    {
        g_counting = false;
        return g_calls;
    }
};

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

TEST(NoHeap, TheCountSeesWhatTheLibraryTakes)
{
#if KANVO_TEST_COUNTS_HEAP
    const HeapCount count;
    void* volatile block = std::malloc(100);  // volatile: or the pair may be left out
    std::free(block);
    EXPECT_EQ(count.Calls(), 2U);
    const HeapCount again;
    int* volatile number = new int(7);
    delete number;
    EXPECT_EQ(again.Calls(), 2U);
#else
    GTEST_SKIP() << "the sanitizer has these functions";
#endif
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
    if (!KANVO_TEST_COUNTS_HEAP) GTEST_SKIP() << "drawn, but not counted: the sanitizer has these functions";
}
