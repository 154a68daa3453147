// Tests of Kanvo_Bitmap: the order of its virtual operations and fields, clipping, view, and text layout. The expected
// rectangles come from an intersection in numbers so wide that nothing can wrap.
#include "Kanvo_Bitmap.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapARGB32.h"
#include "Kanvo_BitmapRGB32.h"
#include "Kanvo_DebugFont.h"
#include "Kanvo_Object.h"
#include "Kanvo_Screen.h"
#include "Sweep.h"

namespace
{

using support::AssertCapture;
using support::Differences;
using support::Messages;
using support::Numbers;

// ---- order of the virtual operations --------------------------------------------------------------------------------

// How a pointer to a virtual member looks in the ABI of all targets: one word of offset in the virtual table, which is
// marked as such in its own lowest bit or, where code addresses may be odd, in that of the second word.
#if defined(__arm__) || defined(__aarch64__)
constexpr std::ptrdiff_t MARK_IN_FIRST  = 0;
constexpr std::ptrdiff_t MARK_IN_SECOND = 1;
#else
constexpr std::ptrdiff_t MARK_IN_FIRST  = 1;
constexpr std::ptrdiff_t MARK_IN_SECOND = 0;
#endif

//! The number of a virtual operation in its table, the first being 1; 0 for one that is not virtual.
template <class Signature, class Class>
int Order(Signature Class::*member)
{
    std::ptrdiff_t words[2];
    static_assert(sizeof member == sizeof words);
    std::memcpy(words, &member, sizeof words);
    if ((words[0] & 1) != MARK_IN_FIRST || (words[1] & 1) != MARK_IN_SECOND) return 0;
    return static_cast<int>((words[0] - MARK_IN_FIRST) / static_cast<std::ptrdiff_t>(sizeof(void*))) + 1;
}

//! Calls the operation of a number, which takes nothing and returns nothing.
void CallByOrder(Kanvo_Bitmap* bitmap, int order)
{
    const std::ptrdiff_t words[2]  = {(order - 1) * static_cast<std::ptrdiff_t>(sizeof(void*)) + MARK_IN_FIRST,
                                      MARK_IN_SECOND};
    void (Kanvo_Bitmap::*member)() = nullptr;
    std::memcpy(&member, words, sizeof member);
    (bitmap->*member)();
}

using UI = Tov_UInt;
using I  = Tov_Int;
using F  = Tov_Flag;
using UB = Tov_UByte;
using V  = Tov_Value;
using C  = Kanvo_Color;
using B  = Kanvo_Bitmap;

TEST(VirtualTable, OperationsHaveTheirOrderAndTheirSignatures)
{
    // Each line states the whole signature: a pointer of another type does not convert.
    using P = const Kanvo_Primitive&;
    EXPECT_EQ((Order<void(), B>(&B::Release)), 1);
    EXPECT_EQ((Order<void*(), B>(&B::Lock)), 2);
    EXPECT_EQ((Order<void(UI, UI, UI, UI), B>(&B::Unlock)), 3);
    EXPECT_EQ((Order<void(B*, UI, UI, UI, UI, I, I, F, UB, C), B>(&B::Blit)), 4);
    EXPECT_EQ((Order<void(B*, B*, UI, UI, UI, UI, I, I, F, UB), B>(&B::BlitAlpha)), 5);
    EXPECT_EQ((Order<void(B*, UI, UI, UI, UI, I, I, C, F, UB), B>(&B::BlitColor)), 6);
    EXPECT_EQ((Order<void(B*, UI, UI, UI, UI, I, I, C, C, F, UB), B>(&B::Blit2Color)), 7);
    EXPECT_EQ((Order<void(B*, UI, UI, UI, UI, UI, UI, I, I, F, UB, C), B>(&B::StretchBlit)), 8);
    EXPECT_EQ((Order<void(B*, B*, UI, UI, UI, UI, UI, UI, I, I, F, UB), B>(&B::StretchBlitAlpha)), 9);
    EXPECT_EQ((Order<void(B*, UI, UI, UI, UI, UI, UI, I, I, C, F, UB), B>(&B::StretchBlitColor)), 10);
    EXPECT_EQ((Order<void(B*, UI, UI, UI, UI, UI, UI, I, I, C, C, F, UB), B>(&B::StretchBlit2Color)), 11);
    EXPECT_EQ((Order<void(B*, UI, UI, UI, UI, V, V, V, F, V, V, V, V, UB, C), B>(&B::RotBlit)), 12);
    EXPECT_EQ((Order<void(B*, B*, UI, UI, UI, UI, V, V, V, F, V, V, V, V, UB), B>(&B::RotBlitAlpha)), 13);
    EXPECT_EQ((Order<void(B*, UI, UI, UI, UI, V, V, C, V, F, V, V, V, V, UB), B>(&B::RotBlitColor)), 14);
    EXPECT_EQ((Order<void(B*, UI, UI, UI, UI, V, V, C, C, V, F, V, V, V, V, UB), B>(&B::RotBlit2Color)), 15);
    EXPECT_EQ((Order<void(const Kanvo_Vector2&, const Kanvo_Vector2&, C, F, V, V), B>(&B::DrawLine)), 16);
    EXPECT_EQ((Order<void(const Kanvo_Coord2D*, UI, C, F), B>(&B::DrawPolygon)), 17);
    EXPECT_EQ((Order<void(P, F), B>(&B::DrawPrimitive)), 18);
    EXPECT_EQ((Order<void(P, const Kanvo_Matrix2&, const Kanvo_Vector2&, F), B>(&B::DrawPrimitive)), 19);
    EXPECT_EQ((Order<void(P, const Kanvo_Matrix3&, const Kanvo_Vector3&, F), B>(&B::DrawPrimitive)), 20);
    EXPECT_EQ((Order<void(V, V, V, C, F), B>(&B::DrawDot)), 21);
    EXPECT_EQ((Order<void(UI), B>(&B::Clear)), 22);
    EXPECT_EQ((Order<void(UI, UI, I, I, C, F), B>(&B::FillRect)), 23);
    EXPECT_EQ((Order<void(UI, UI, UI, UI), B>(&B::SetCliprect)), 24);
    EXPECT_EQ((Order<void(UI, UI), B>(&B::SetPalette)), 25);
    EXPECT_EQ((Order<UI(UI), B>(&B::GetPalette)), 26);
    EXPECT_EQ((Order<C(UB, UB, UB) const, B>(&B::ColorFromRGB)), 27);
    EXPECT_EQ((Order<C(UB, UB, UB, UB) const, B>(&B::ColorFromARGB)), 28);
    EXPECT_EQ((Order<C(UB, UB, UB, UB) const, B>(&B::PremulColorFromARGB)), 29);
    EXPECT_EQ((Order<Tov_Bool(C, UB&, UB&, UB&) const, B>(&B::ColorToRGB)), 30);
    EXPECT_EQ((Order<Tov_Bool() const, B>(&B::HasAlpha)), 31);
    EXPECT_EQ((Order<void(V, const Kanvo_Vector2&, const Kanvo_Vector2&, V, V, V), B>(&B::SetView)), 32);
    EXPECT_EQ((Order<void(const char*, UI, UI, UI), B>(&B::DebugText)), 33);
    EXPECT_EQ((Order<void(const char*, UI, UI, UI&, UI&), B>(&B::DebugTextMeasure)), 34);
    EXPECT_EQ((Order<Kanvo_Screen*() const, B>(&B::GetScreen)), 35);
    EXPECT_EQ((Order<void(UI, UI, V, V, V, V), B>(&B::RecalculatePrescaleMatrix)), 36);
    // 37 and 38 are the destructors.
    EXPECT_EQ((Order<I(UB, UI, UI, C), B>(&B::DebugFontChar)), 39);
    EXPECT_EQ((Order<void(const void*, UI, UI, F, C), B>(&B::RenderPrimitivePoly)), 40);
}

TEST(VirtualTable, AccessorsAreNotInIt)
{
    EXPECT_EQ((Order<UI() const, B>(&B::GetWidth)), 0);
    EXPECT_EQ((Order<UI() const, B>(&B::GetClipMaxY)), 0);
    EXPECT_EQ((Order<Tov_Bool(UI&, UI&, I&, I&) const, B>(&B::ClipFillrect)), 0);
    EXPECT_EQ((Order<Tov_MixedType(RenderStates) const, B>(&B::GetState)), 0);
}

class OneMore : public Kanvo_BitmapARGB32
{
public:
    using Kanvo_BitmapARGB32::Kanvo_BitmapARGB32;
    ~OneMore() override { ++s_destroyed; }

    virtual void Added() {}

    static void operator delete(void* memory)
    {
        ++s_deleted;
        ::operator delete(memory);
    }

    inline static int s_destroyed = 0;
    inline static int s_deleted   = 0;
};

TEST(VirtualTable, HasFortySlotsSoThatTheFirstAddedOperationIsTheFortyFirst)
{
    EXPECT_EQ((Order<void(), OneMore>(&OneMore::Added)), 41);
    EXPECT_EQ((Order<void*(Tov_UInt, Tov_UByte, Tov_UInt, Tov_UInt), Kanvo>(&Kanvo::AllocBitmapBuffer)) + 1,
              (Order<void(void*, Tov_UByte), Kanvo>(&Kanvo::FreeBitmapBuffer)));
}

TEST(VirtualTable, SlotThirtySevenDestroysAndThirtyEightAlsoDeletes)
{
    std::uint32_t pixels[4] = {};
    OneMore::s_destroyed = OneMore::s_deleted = 0;
    alignas(OneMore) unsigned char memory[sizeof(OneMore)];
    CallByOrder(::new (memory) OneMore(nullptr, 2, 2, BBT_RAM, pixels), 37);
    EXPECT_EQ(OneMore::s_destroyed, 1);
    EXPECT_EQ(OneMore::s_deleted, 0);
    CallByOrder(new OneMore(nullptr, 2, 2, BBT_RAM, pixels), 38);
    EXPECT_EQ(OneMore::s_destroyed, 2);
    EXPECT_EQ(OneMore::s_deleted, 1);
}

TEST(VirtualTable, ReleaseDeletes)
{
    std::uint32_t pixels[4] = {};
    OneMore::s_destroyed = OneMore::s_deleted = 0;
    Kanvo_Bitmap* const bitmap                = new OneMore(nullptr, 2, 2, BBT_RAM, pixels);
    bitmap->Release();
    EXPECT_EQ(OneMore::s_destroyed, 1);
    EXPECT_EQ(OneMore::s_deleted, 1);
}

TEST(VirtualTable, TheTargetOverridesItsOwnOperationsAndTakesTheBasesForTheRest)
{
    std::uint32_t            pixels[4] = {};
    const Kanvo_BitmapARGB32 target(nullptr, 2, 2, BBT_RAM, pixels);
    const Kanvo_BitmapRGB32  source(nullptr, 2, 2, BBT_RAM, pixels);
    void* const*             targetTable = nullptr;
    void* const*             sourceTable = nullptr;
    std::memcpy(&targetTable, static_cast<const void*>(&target), sizeof targetTable);
    std::memcpy(&sourceTable, static_cast<const void*>(&source), sizeof sourceTable);
    for (int order = 1; order <= 40; ++order)
    {
        const bool base = order == 1 || (order >= 18 && order <= 20) || (order >= 24 && order <= 26) || order == 29 ||
                          (order >= 32 && order <= 36);
        EXPECT_NE(targetTable[order - 1], nullptr) << order;
        EXPECT_EQ(targetTable[order - 1] == sourceTable[order - 1], base) << order;
    }
}

// ---- fields ---------------------------------------------------------------------------------------------------------

//! Looks at the fields that derived classes and the pixel policies rely on.
class Fields : public Kanvo_BitmapARGB32
{
public:
    using Kanvo_BitmapARGB32::Kanvo_BitmapARGB32;

    std::vector<const void*> InDeclaredOrder() const
    {
        return {&m_uiType,     &m_uiWidth,    &m_uiHeight,   &m_pkScreen,        &m_pBuffer,
                &m_uiPitch,    &m_bLocked,    &m_ubBBT,      &m_kPrescaleMatrix, &m_uiClipMinX,
                &m_uiClipMinY, &m_uiClipMaxX, &m_uiClipMaxY, &m_kViewCenter};
    }
    bool     IsLocked() const { return m_bLocked; }
    Tov_UInt BufferType() const { return m_ubBBT; }
};

TEST(BitmapFields, LieInTheirDeclaredOrder)
{
    std::uint32_t                  pixels[6] = {};
    const Fields                   bitmap(nullptr, 3, 2, BBT_RAM, pixels);
    const std::vector<const void*> fields = bitmap.InDeclaredOrder();
    for (std::size_t index = 1; index < fields.size(); ++index) EXPECT_LT(fields[index - 1], fields[index]) << index;
    EXPECT_GT(fields.front(), static_cast<const void*>(&bitmap));
    EXPECT_LT(static_cast<const char*>(fields.back()), reinterpret_cast<const char*>(&bitmap) + sizeof(Kanvo_Bitmap));
}

TEST(BitmapFields, TheTargetAddsOneByte)
{
    EXPECT_LE(sizeof(Kanvo_BitmapARGB32), sizeof(Kanvo_Bitmap) + alignof(Kanvo_Bitmap));
    EXPECT_EQ(sizeof(Kanvo_BitmapRGB32), sizeof(Kanvo_Bitmap));
}

TEST(BitmapFields, AccessorsReturnTheFieldsOfTheSameName)
{
    Kanvo         library;
    Kanvo_Screen  screen(&library);
    std::uint32_t pixels[6] = {};
    Fields        bitmap(&screen, 3, 2, BBT_RAM, pixels);
    EXPECT_EQ(bitmap.GetType(), Tov_UInt{BM_ARGB32});
    EXPECT_EQ(bitmap.GetWidth(), 3U);
    EXPECT_EQ(bitmap.GetHeight(), 2U);
    EXPECT_EQ(bitmap.GetScreen(), &screen);
    EXPECT_EQ(bitmap.GetBuffer(), pixels);
    EXPECT_EQ(bitmap.GetPitch(), 12U);
    EXPECT_EQ(bitmap.BufferType(), Tov_UInt{BBT_RAM});
    EXPECT_FALSE(bitmap.IsLocked());
    EXPECT_EQ(bitmap.GetClipMinX(), 0U);
    EXPECT_EQ(bitmap.GetClipMinY(), 0U);
    EXPECT_EQ(bitmap.GetClipMaxX(), 2U);
    EXPECT_EQ(bitmap.GetClipMaxY(), 1U);
    EXPECT_EQ(std::memcmp(&bitmap.GetPrescaleMatrix(), &Kanvo_Matrix3::IDENTITY, sizeof(Kanvo_Matrix3)), 0);
    EXPECT_EQ(bitmap.GetViewCenter().x, 0.0F);
    EXPECT_EQ(bitmap.GetViewCenter().y, 0.0F);
}

// ---- render state and palette ---------------------------------------------------------------------------------------

TEST(Bitmap, StatesAreThoseOfItsScreenAndZeroWithoutOne)
{
    Kanvo              library;
    Kanvo_Screen       screen(&library);
    std::uint32_t      pixel = 0;
    Kanvo_BitmapARGB32 bitmap(&screen, 1, 1, BBT_RAM, &pixel);
    Kanvo_BitmapARGB32 lonely(nullptr, 1, 1, BBT_RAM, &pixel);
    screen.GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON);
    for (int slot = 0; slot < 34; ++slot)
    {
        const auto state = static_cast<RenderStates>(slot);
        EXPECT_EQ(bitmap.GetState(state).pvValue, screen.GetRenderState().GetState(state).pvValue);
        EXPECT_EQ(lonely.GetState(state).pvValue, nullptr);
    }
    EXPECT_EQ(bitmap.GetState(OPTIMIZED_BLIT).uiValue, Tov_UInt{OB_NEON});
    EXPECT_EQ(lonely.GetScreen(), nullptr);
}

TEST(Bitmap, HasNoPalette)
{
    std::uint32_t      pixel = 5;
    Kanvo_BitmapARGB32 bitmap(nullptr, 1, 1, BBT_RAM, &pixel);
    AssertCapture      asserts;
    bitmap.SetPalette(0, 0xFFFFFFFFU);
    EXPECT_EQ(asserts.Take(), Messages{"bitmap has no palette"});
    EXPECT_EQ(bitmap.GetPalette(0), 0U);
    EXPECT_EQ(asserts.Take(), Messages{"bitmap has no palette"});
    EXPECT_EQ(pixel, 5U);
}

// ---- clip rectangle -------------------------------------------------------------------------------------------------

#if defined(__SIZEOF_INT128__)
__extension__ using Wide = __int128;
#else
using Wide                              = std::int64_t;
#endif

constexpr Tov_UInt WIDTH  = 23;
constexpr Tov_UInt HEIGHT = 17;

struct Clip
{
    Tov_UInt minX, minY, maxX, maxY;
};

bool operator==(const Clip& one, const Clip& other)
{
    return one.minX == other.minX && one.minY == other.minY && one.maxX == other.maxX && one.maxY == other.maxY;
}

Clip ClipOf(const Kanvo_Bitmap& bitmap)
{
    return {bitmap.GetClipMinX(), bitmap.GetClipMinY(), bitmap.GetClipMaxX(), bitmap.GetClipMaxY()};
}

//! What is left of a wanted clip rectangle inside the bitmap.
Clip KeptInside(const Clip& wanted, Wide width, Wide height)
{
    const Wide right  = std::min<Wide>(wanted.maxX, width - 1);
    const Wide bottom = std::min<Wide>(wanted.maxY, height - 1);
    if (wanted.minX > right || wanted.minY > bottom) return {1, 1, 0, 0};
    return {wanted.minX, wanted.minY, static_cast<Tov_UInt>(right), static_cast<Tov_UInt>(bottom)};
}

//! A bitmap of any size, which never has pixels.
class Sized : public Kanvo_BitmapA8
{
public:
    Sized(Tov_UInt width, Tov_UInt height) : Kanvo_BitmapA8(nullptr, width, height) {}
};

TEST(Cliprect, IsTheWholeBitmapAtFirst)
{
    AssertCapture asserts;
    EXPECT_TRUE(ClipOf(Sized(WIDTH, HEIGHT)) == (Clip{0, 0, WIDTH - 1, HEIGHT - 1}));
    EXPECT_TRUE(ClipOf(Sized(1, 1)) == (Clip{0, 0, 0, 0}));
    for (const auto& [width, height] : {std::pair<Tov_UInt, Tov_UInt>{0, 0}, {0, 5}, {5, 0}})
    {
        EXPECT_TRUE(ClipOf(Sized(width, height)) == (Clip{1, 1, 0, 0}));
    }
}

TEST(Cliprect, IsKeptInsideTheBitmapAndEmptyWhereNothingIsLeft)
{
    using Values = std::initializer_list<Tov_UInt>;
    AssertCapture asserts;
    Differences   differences;
    for (const auto& [width, height] : {std::pair<Tov_UInt, Tov_UInt>{WIDTH, HEIGHT}, {1, 1}, {1, HEIGHT}, {0, HEIGHT}})
    {
        Sized bitmap(width, height);
        for (const Tov_UInt minX : Values{0U, 1U, WIDTH - 1, WIDTH, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
            for (const Tov_UInt minY : Values{0U, 1U, HEIGHT - 1, HEIGHT, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
                for (const Tov_UInt maxX :
                     Values{0U, 1U, WIDTH - 2, WIDTH - 1, WIDTH, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
                    for (const Tov_UInt maxY :
                         Values{0U, 1U, HEIGHT - 2, HEIGHT - 1, HEIGHT, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
                    {
                        bitmap.SetCliprect(minX, minY, maxX, maxY);
                        if (!(ClipOf(bitmap) == KeptInside({minX, minY, maxX, maxY}, width, height)))
                            differences.Note("%u x %u: (%u, %u) to (%u, %u)", width, height, minX, minY, maxX, maxY);
                    }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

//! Clip rectangles of every kind: whole, part, single pixels in corners, a row, a column, larger than the bitmap; and
//! empty, inverted, and outside.
constexpr std::array<Clip, 12> CLIPS{{{0, 0, WIDTH - 1, HEIGHT - 1},
                                      {3, 4, 15, 9},
                                      {0, 0, 0, 0},
                                      {WIDTH - 1, HEIGHT - 1, WIDTH - 1, HEIGHT - 1},
                                      {1, 0, 1, HEIGHT - 1},
                                      {0, 8, WIDTH - 1, 8},
                                      {0, 0, 0xFFFFFFFFU, 0xFFFFFFFFU},
                                      {5, 5, 0x7FFFFFFFU, 0x80000000U},
                                      {1, 1, 0, 0},
                                      {9, 3, 8, 12},
                                      {WIDTH, 0, WIDTH + 5, HEIGHT - 1},
                                      {0xFFFFFFF0U, 0xFFFFFFF0U, 0xFFFFFFFFU, 0xFFFFFFFFU}}};

constexpr Tov_Int LOWEST  = std::numeric_limits<Tov_Int>::min();
constexpr Tov_Int HIGHEST = std::numeric_limits<Tov_Int>::max();

std::vector<Tov_Int> Positions(Tov_UInt extent)
{
    const auto last = static_cast<Tov_Int>(extent);
    return {LOWEST, LOWEST + 1, -last, -1, 0, 1, last - 1, last, HIGHEST - 1, HIGHEST};
}

std::vector<Tov_UInt> Lengths(Tov_UInt extent)
{
    return {0, 1, extent - 1, extent, 0x7FFFFFFEU, 0x7FFFFFFFU, 0x80000000U, 0x80000001U, 0xFFFFFFFFU};
}

//! One axis of a clipped rectangle: what is left of length pixels at dst, which show the source from src on.
struct Axis
{
    Wide length, src, dst;
};

//! The pixels of [dst, dst + length) inside [min, max] that show source pixels below extent; a length of 0 for none.
Axis Intersect(Wide length, Wide src, Wide dst, Wide extent, Wide min, Wide max)
{
    const Wide first = std::max(dst, min);
    const Wide end   = std::min(std::min(dst + length, max + 1), dst + (extent - src));
    if (end <= first) return {0, 0, 0};
    return {end - first, src + (first - dst), first};
}

TEST(ClipFillrect, IsTheIntersectionForEveryCombinationOfExtremesAndElseChangesNothing)
{
    AssertCapture asserts;
    Differences   differences;
    Sized         bitmap(WIDTH, HEIGHT);
    asserts.Clear();
    for (const Clip& wanted : CLIPS)
    {
        bitmap.SetCliprect(wanted.minX, wanted.minY, wanted.maxX, wanted.maxY);
        const Clip clip = KeptInside(wanted, WIDTH, HEIGHT);
        for (const Tov_UInt width : Lengths(WIDTH))
            for (const Tov_UInt height : Lengths(HEIGHT))
                for (const Tov_Int x : Positions(WIDTH))
                    for (const Tov_Int y : Positions(HEIGHT))
                    {
                        constexpr Wide NO_END = Wide{1} << 60;
                        const Axis     axisX  = Intersect(width, 0, x, NO_END, clip.minX, clip.maxX);
                        const Axis     axisY  = Intersect(height, 0, y, NO_END, clip.minY, clip.maxY);
                        const bool     left   = axisX.length > 0 && axisY.length > 0;
                        Tov_UInt       w = width, h = height;
                        Tov_Int        atX = x, atY = y;
                        const Tov_Bool got = bitmap.ClipFillrect(w, h, atX, atY);
                        const bool     right =
                            left ? w == axisX.length && h == axisY.length && atX == axisX.dst && atY == axisY.dst
                                     : w == width && h == height && atX == x && atY == y;
                        if (got != left || !right)
                            differences.Note("clip (%u, %u) to (%u, %u), %u x %u at (%d, %d): %d, %u x %u at (%d, %d)",
                                             clip.minX, clip.minY, clip.maxX, clip.maxY, width, height, x, y, got, w, h,
                                             atX, atY);
                    }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
    EXPECT_EQ(asserts.Count(), 0U);  // nothing left is no mistake
}

//! A blit's rectangle: width, source x and destination x, and the same for y.
struct Rect
{
    std::array<Tov_UInt, 2> length, src;
    std::array<Tov_Int, 2>  dst;
};

void CheckClipBlitrect(const Kanvo_Bitmap& bitmap, const Kanvo_Bitmap& source, const Clip& clip, const Rect& rect,
                       Differences& differences)
{
    const Axis axisX = Intersect(rect.length[0], rect.src[0], rect.dst[0], source.GetWidth(), clip.minX, clip.maxX);
    const Axis axisY = Intersect(rect.length[1], rect.src[1], rect.dst[1], source.GetHeight(), clip.minY, clip.maxY);
    const bool left  = axisX.length > 0 && axisY.length > 0;
    Rect       got   = rect;
    const bool result =
        bitmap.ClipBlitrect(&source, got.length[0], got.length[1], got.src[0], got.src[1], got.dst[0], got.dst[1]);
    const bool right = left ? got.length[0] == axisX.length && got.src[0] == axisX.src && got.dst[0] == axisX.dst &&
                                  got.length[1] == axisY.length && got.src[1] == axisY.src && got.dst[1] == axisY.dst
                            : got.length == rect.length && got.src == rect.src && got.dst == rect.dst;
    if (result != left || !right)
    {
        differences.Note(
            "source %u x %u, clip (%u, %u) to (%u, %u), %u x %u from (%u, %u) to (%d, %d): %d, %u x %u from "
            "(%u, %u) to (%d, %d)",
            source.GetWidth(), source.GetHeight(), clip.minX, clip.minY, clip.maxX, clip.maxY, rect.length[0],
            rect.length[1], rect.src[0], rect.src[1], rect.dst[0], rect.dst[1], result, got.length[0], got.length[1],
            got.src[0], got.src[1], got.dst[0], got.dst[1]);
    }
}

TEST(ClipBlitrect, IsTheIntersectionForEveryCombinationOfExtremesAndElseChangesNothing)
{
    AssertCapture asserts;
    Differences   differences;
    Sized         bitmap(WIDTH, HEIGHT);
    const Sized   source(WIDTH, HEIGHT);
    const Clip&   clip = CLIPS[1];
    bitmap.SetCliprect(clip.minX, clip.minY, clip.maxX, clip.maxY);
    for (const Tov_UInt width : Lengths(WIDTH))
        for (const Tov_UInt srcX : Lengths(WIDTH))
            for (const Tov_Int dstX : Positions(WIDTH))
                for (const Tov_UInt height : Lengths(HEIGHT))
                    for (const Tov_UInt srcY : Lengths(HEIGHT))
                        for (const Tov_Int dstY : Positions(HEIGHT))
                            CheckClipBlitrect(bitmap, source, clip, {{width, height}, {srcX, srcY}, {dstX, dstY}},
                                              differences);
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(ClipBlitrect, IsTheIntersectionForEveryClipAndSourceOfEverySize)
{
    AssertCapture asserts;
    Differences   differences;
    Sized         bitmap(WIDTH, HEIGHT);
    Numbers       numbers(101);
    const auto    pick = [&](const auto& values) { return values[numbers.Next32() % values.size()]; };
    for (const auto& [srcWidth, srcHeight] : {std::pair<Tov_UInt, Tov_UInt>{1, 1},
                                              {7, 31},
                                              {0, 0},
                                              {0, 5},
                                              {5, 0},
                                              {0x7FFFFFFFU, 0x80000000U},
                                              {0xFFFFFFFFU, 0xFFFFFFFFU}})
    {
        const Sized source(srcWidth, srcHeight);
        for (const Clip& wanted : CLIPS)
        {
            bitmap.SetCliprect(wanted.minX, wanted.minY, wanted.maxX, wanted.maxY);
            const Clip clip = KeptInside(wanted, WIDTH, HEIGHT);
            for (int turn = 0; turn < 8000; ++turn)
            {
                Rect rect{};
                for (std::size_t axis = 0; axis < 2; ++axis)
                {
                    const Tov_UInt extent = axis == 0 ? srcWidth : srcHeight;
                    rect.length[axis]     = pick(Lengths(turn % 2 == 0 ? WIDTH : extent));
                    rect.src[axis]        = turn % 4 == 0 ? numbers.Next32() % 40 : pick(Lengths(extent));
                    rect.dst[axis] =
                        turn % 4 == 1 ? static_cast<Tov_Int>(numbers.Next32() % 80) - 40 : pick(Positions(WIDTH));
                }
                CheckClipBlitrect(bitmap, source, clip, rect, differences);
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(ClipBlitrect, ASourcePositionBelowZeroLeavesNothing)
{
    AssertCapture asserts;
    const Sized   bitmap(WIDTH, HEIGHT);
    const Sized   source(WIDTH, HEIGHT);
    Tov_UInt      width = WIDTH, height = HEIGHT, srcX = static_cast<Tov_UInt>(-1), srcY = 0;
    Tov_Int       dstX = 0, dstY = 0;
    EXPECT_FALSE(bitmap.ClipBlitrect(&source, width, height, srcX, srcY, dstX, dstY));
    EXPECT_EQ(srcX, 0xFFFFFFFFU);
}

// ---- view -----------------------------------------------------------------------------------------------------------

void ExpectMapped(const Kanvo_Bitmap& bitmap, float fromX, float fromY, float toX, float toY)
{
    const Kanvo_Vector2 point = bitmap.GetPrescaleMatrix().TransformPoint({fromX, fromY});
    EXPECT_NEAR(point.x, toX, 1.0e-4F * (1.0F + std::fabs(toX))) << fromX << ", " << fromY;
    EXPECT_NEAR(point.y, toY, 1.0e-4F * (1.0F + std::fabs(toY))) << fromX << ", " << fromY;
}

TEST(View, ThePointOfTheDrawingAppearsAtThePixelMagnifiedAndTurnedClockwise)
{
    AssertCapture asserts;
    Sized         bitmap(WIDTH, HEIGHT);
    bitmap.SetView(2.0F, {10, 20}, {100, 200}, 0.0F, 3.0F, 0.5F);
    EXPECT_EQ(bitmap.GetViewCenter().x, 10.0F);
    EXPECT_EQ(bitmap.GetViewCenter().y, 20.0F);
    ExpectMapped(bitmap, 10, 20, 100, 200);
    ExpectMapped(bitmap, 11, 20, 106, 200);
    ExpectMapped(bitmap, 10, 21, 100, 201);

    bitmap.SetView(1.0F, {10, 20}, {100, 200}, 90.0F, 1.0F, 1.0F);
    ExpectMapped(bitmap, 10, 20, 100, 200);
    ExpectMapped(bitmap, 11, 20, 100, 201);  // right becomes down
    ExpectMapped(bitmap, 10, 21, 99, 200);   // down becomes left

    bitmap.SetView(1.0F, {0, 0}, {0, 0}, std::numeric_limits<float>::quiet_NaN(), 1.0F, 1.0F);
    ExpectMapped(bitmap, 3, 4, 3, 4);  // an angle that is not a number does not turn
}

TEST(View, AWindowFillsTheGivenSize)
{
    AssertCapture asserts;
    Sized         bitmap(WIDTH, HEIGHT);
    asserts.Clear();
    bitmap.RecalculatePrescaleMatrix(320, 200, -1.0F, -2.0F, 3.0F, 8.0F);
    ExpectMapped(bitmap, -1, -2, 0, 0);
    ExpectMapped(bitmap, 3, 8, 320, 200);
    ExpectMapped(bitmap, 1, 3, 160, 100);
    bitmap.RecalculatePrescaleMatrix(320, 200, 3.0F, 8.0F, -1.0F, -2.0F);  // mirrored
    ExpectMapped(bitmap, -1, -2, 320, 200);
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(View, AWindowWithoutExtentAssertsAndChangesNothing)
{
    constexpr float ODD = std::numeric_limits<float>::quiet_NaN();
    AssertCapture   asserts;
    Sized           bitmap(WIDTH, HEIGHT);
    bitmap.RecalculatePrescaleMatrix(320, 200, -1.0F, -2.0F, 3.0F, 8.0F);
    const Kanvo_Matrix3 before(bitmap.GetPrescaleMatrix());
    asserts.Clear();
    const float windows[][4] = {{1, 0, 1, 8},   {0, 5, 4, 5},   {ODD, 0, 4, 4},
                                {0, 0, 4, ODD}, {0, ODD, 4, 4}, {0, -0.0F, 4, 0}};
    for (const auto& window : windows)
    {
        bitmap.RecalculatePrescaleMatrix(320, 200, window[0], window[1], window[2], window[3]);
        EXPECT_EQ(asserts.Take(), Messages{"view has no extent"});
    }
    EXPECT_EQ(std::memcmp(&before, &bitmap.GetPrescaleMatrix(), sizeof before), 0);
}

// ---- text -----------------------------------------------------------------------------------------------------------

constexpr Tov_UInt CELL_WIDTH  = 6;
constexpr Tov_UInt CELL_HEIGHT = 10;

//! Notes which characters are asked for, and draws them.
class TextTarget : public Kanvo_BitmapARGB32
{
public:
    struct Cell
    {
        int         character;
        Tov_UInt    x, y;
        Kanvo_Color color;
    };

    TextTarget(Tov_UInt width, Tov_UInt height) : TextTarget(width, height, std::vector<std::uint32_t>(width * height))
    {
    }

    Tov_Int DebugFontChar(Tov_UByte ubChar, Tov_UInt uiX, Tov_UInt uiY, Kanvo_Color kColor) override
    {
        cells.push_back({ubChar, uiX, uiY, kColor});
        return Kanvo_BitmapARGB32::DebugFontChar(ubChar, uiX, uiY, kColor);
    }

    //! The cells as text: "A(0, 0) ".
    std::string Drawn(const char* text, Tov_UInt x, Tov_UInt y)
    {
        cells.clear();
        DebugText(text, x, y, 0xFFFFFFFFU);
        std::string result;
        for (const Cell& cell : cells)
        {
            result += static_cast<char>(cell.character);
            result += "(" + std::to_string(cell.x) + ", " + std::to_string(cell.y) + ") ";
        }
        return result;
    }

    //! Width and height as DebugTextMeasure gives them.
    std::pair<Tov_UInt, Tov_UInt> Measured(const char* text, Tov_UInt x, Tov_UInt y)
    {
        std::pair<Tov_UInt, Tov_UInt> size{999, 999};
        DebugTextMeasure(text, x, y, size.first, size.second);
        return size;
    }

    std::vector<Cell> cells;

private:
    TextTarget(Tov_UInt width, Tov_UInt height, std::vector<std::uint32_t> memory)
        : Kanvo_BitmapARGB32(nullptr, width, height, BBT_RAM, memory.data()),
          m_memory(std::move(memory))
    {
        Lock();
    }

    std::vector<std::uint32_t> m_memory;
};

using Size = std::pair<Tov_UInt, Tov_UInt>;

TEST(DebugText, SetsCellsSideBySideInTheGivenColour)
{
    TextTarget target(200, 100);
    EXPECT_EQ(target.Drawn("Abc", 5, 7), "A(5, 7) b(11, 7) c(17, 7) ");
    target.cells.clear();
    target.DebugText("xy", 0, 0, 0x12345678U);
    ASSERT_EQ(target.cells.size(), 2U);
    EXPECT_EQ(target.cells[1].color, 0x12345678U);
}

TEST(DebugText, ANewLineStartsUnderTheFirstCell)
{
    TextTarget target(200, 100);
    EXPECT_EQ(target.Drawn("ab\ncd\n\ne", 5, 7), "a(5, 7) b(11, 7) c(5, 17) d(11, 17) e(5, 37) ");
}

TEST(DebugText, ATabGoesToTheNextMultipleOfEightCellsFromTheLeftEdge)
{
    TextTarget target(400, 100);
    EXPECT_EQ(target.Drawn("a\tb", 0, 0), "a(0, 0) b(48, 0) ");
    EXPECT_EQ(target.Drawn("\tb\tc", 0, 0), "b(48, 0) c(96, 0) ");
    EXPECT_EQ(target.Drawn("\t\tb", 0, 0), "b(96, 0) ");
    EXPECT_EQ(target.Drawn("a\tb", 41, 0), "a(41, 0) b(48, 0) ");
    EXPECT_EQ(target.Drawn("a\tb", 42, 0), "a(42, 0) b(96, 0) ");  // already on one: the next
    EXPECT_EQ(target.Drawn("1234567\t8", 0, 0),
              "1(0, 0) 2(6, 0) 3(12, 0) 4(18, 0) 5(24, 0) 6(30, 0) 7(36, 0) 8(48, 0) ");
    EXPECT_EQ(target.Drawn("a\n\tb", 50, 0), "a(50, 0) b(96, 10) ");
}

TEST(DebugText, APercentSignIsACharacter)
{
    TextTarget target(200, 100);
    EXPECT_EQ(target.Drawn("%s%n", 0, 0), "%(0, 0) s(6, 0) %(12, 0) n(18, 0) ");
}

TEST(DebugText, ACharacterThatTheFontLacksTakesNoRoom)
{
    TextTarget target(200, 100);
    target.Drawn("a\x01z", 0, 0);
    ASSERT_EQ(target.cells.size(), 3U);
    EXPECT_EQ(target.cells[2].character, 'z');
    EXPECT_EQ(target.cells[2].x, 6U);
    EXPECT_EQ(target.Measured("a\x01z", 0, 0), Size(12, 10));
}

TEST(DebugText, CharactersBeyondAsciiArePassedAsBytes)
{
    TextTarget target(200, 100);
    target.Drawn("\xB0\xFF", 0, 0);
    ASSERT_EQ(target.cells.size(), 2U);
    EXPECT_EQ(target.cells[0].character, 0xB0);
    EXPECT_EQ(target.cells[1].character, 0xFF);
    EXPECT_EQ(target.cells[1].x, 6U);
    EXPECT_EQ(target.Measured("\xB0\xFF", 0, 0), Size(6, 10));
}

TEST(DebugText, NullAndEmptyTextDrawNothingAndAreOneLineHigh)
{
    TextTarget target(200, 100);
    EXPECT_EQ(target.Drawn(nullptr, 0, 0), "");
    EXPECT_EQ(target.Drawn("", 0, 0), "");
    EXPECT_EQ(target.Measured(nullptr, 3, 4), Size(0, 10));
    EXPECT_EQ(target.Measured("", 3, 4), Size(0, 10));
}

TEST(DebugText, GoesOnOverACharacterThatTheClipRectangleLeavesOut)
{
    TextTarget target(200, 100);
    target.SetCliprect(6, 0, 199, 99);
    EXPECT_EQ(target.Drawn("ab", 5, 0), "a(5, 0) b(11, 0) ");
}

TEST(DebugText, PositionsNearTheEndOfTheCoordinatesDoNotComeBackRound)
{
    constexpr Tov_UInt LAST = 0xFFFFFFFFU;
    TextTarget         target(200, 100);
    for (const Tov_UInt back : {0U, 1U, 3U, 5U, 6U, 7U, 11U, 47U, 48U, 100U})
    {
        for (const char* const text : {"AB", "A\tB", "A\nB", "A\n\tB", "\n\n\n\nA"})
        {
            target.Drawn(text, LAST - back, LAST - back);
            for (const TextTarget::Cell& cell : target.cells)
            {
                ASSERT_GE(cell.x, LAST - back) << text;
                ASSERT_GE(cell.y, LAST - back) << text;
            }
        }
        EXPECT_EQ(target.Measured("AB", LAST - back, LAST - back), Size(12, 10));
        EXPECT_EQ(target.Measured("A\nB", LAST - back, LAST - back), Size(6, 20));
    }
    const auto* const pixels = static_cast<const std::uint32_t*>(target.GetBuffer());
    EXPECT_EQ(std::count(pixels, pixels + 200 * 100, 0U), 200 * 100);
}

TEST(DebugTextMeasure, IsTheBoundingBoxOfTheCellsThatAreDrawn)
{
    TextTarget target(600, 200);
    for (const char* const text : {"A", "Hello", "two\nlines", "first is longer\nthan", "short\nthan the second",
                                   "a\tb", "a\tb\nlonger than that one", "1234567\t8\t9", "x\n\ty", "\n\nA", "%d\t%s"})
    {
        for (const auto& [x, y] : {Size{0, 0}, {5, 7}, {41, 0}, {48, 100}})
        {
            target.Drawn(text, x, y);
            Tov_UInt right = 0, bottom = 0;
            for (const TextTarget::Cell& cell : target.cells)
            {
                right  = std::max(right, cell.x + CELL_WIDTH);
                bottom = std::max(bottom, cell.y + CELL_HEIGHT);
            }
            EXPECT_EQ(target.Measured(text, x, y), Size(right - x, bottom - y)) << text << " at " << x << ", " << y;
        }
    }
}

TEST(DebugTextMeasure, NeedsNeitherLockNorBuffer)
{
    AssertCapture asserts;
    Sized         bitmap(4, 4);
    asserts.Clear();
    Tov_UInt width = 0, height = 0;
    bitmap.DebugTextMeasure("abc\nd", 100, 100, width, height);
    EXPECT_EQ(width, 18U);
    EXPECT_EQ(height, 20U);
    EXPECT_EQ(asserts.Count(), 0U);
}

}  // namespace
