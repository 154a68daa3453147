// Tests of Kanvo_PixelAddress, for each of the four policies built on it: where a pixel lies, and which pixels the two
// operations on a 2x2 block read.
#include "Kanvo_PixelAddress.h"

#include <cstdint>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>
#include <sys/mman.h>

#include "Fence.h"
#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapRGB32.h"
#include "Kanvo_BitmapRGB565.h"
#include "Kanvo_PixelARGB32_Access.h"
#include "Sweep.h"

namespace
{

using support::Fence;

//! A policy, and a bitmap class of its pixel size that can have padded rows.
template <class PolicyType, class BitmapType>
struct Format
{
    using Policy                       = PolicyType;
    using Bitmap                       = BitmapType;
    using Pixel                        = typename Policy::Pixel;
    using Offset                       = typename Policy::Offset;
    static constexpr std::size_t BYTES = sizeof(Pixel);
};

using FormatARGB32 = Format<Kanvo_PixelARGB32_Access, Kanvo_BitmapRGB32>;
using FormatRGB32  = Format<Kanvo_PixelRGB32_Access, Kanvo_BitmapRGB32>;
using FormatRGB565 = Format<Kanvo_PixelRGB565_Access, Kanvo_BitmapRGB565>;
using FormatA8     = Format<Kanvo_PixelA8_Access, Kanvo_BitmapA8>;

static_assert(FormatARGB32::BYTES == 4 && FormatRGB32::BYTES == 4 && FormatRGB565::BYTES == 2 && FormatA8::BYTES == 1);

template <class FormatType>
class PixelAddress : public testing::Test
{
};

std::uintptr_t Address(const void* pointer)
{
    return reinterpret_cast<std::uintptr_t>(pointer);
}

using Formats = testing::Types<FormatARGB32, FormatRGB32, FormatRGB565, FormatA8>;
TYPED_TEST_SUITE(PixelAddress, Formats);

TYPED_TEST(PixelAddress, APixelLiesAtRowTimesPitchPlusColumnTimesSize)
{
    using Offset = typename TypeParam::Offset;
    alignas(4) static std::uint8_t memory[4096];
    for (const std::uint32_t padding : {0U, 4U, 12U, 64U})
    {
        const auto                       pitch = static_cast<Tov_UInt>(7 * TypeParam::BYTES + padding);
        const typename TypeParam::Bitmap bitmap(nullptr, 7, 5, BBT_RAM, memory, pitch);
        ASSERT_EQ(bitmap.GetPitch(), pitch);
        for (Tov_UInt y = 0; y <= 5; ++y)
        {
            for (Tov_UInt x = 0; x <= 8; ++x)
            {
                Offset offset = nullptr;
                TypeParam::Policy::GetOffset(&bitmap, x, y, offset);
                ASSERT_EQ(Address(offset), Address(memory) + y * pitch + x * TypeParam::BYTES);

                Offset       moved = nullptr;
                Offset const base  = reinterpret_cast<Offset>(memory + 1000);
                TypeParam::Policy::AddOffset(&bitmap, base, x, y, moved);
                ASSERT_EQ(Address(moved), Address(memory) + 1000 + y * pitch + x * TypeParam::BYTES);

                Offset stepped = offset;
                TypeParam::Policy::IncX(&bitmap, stepped);
                ASSERT_EQ(Address(stepped), Address(offset) + TypeParam::BYTES);
                TypeParam::Policy::IncY(&bitmap, stepped);
                ASSERT_EQ(Address(stepped), Address(offset) + TypeParam::BYTES + pitch);
            }
        }
    }
}

TYPED_TEST(PixelAddress, ATexelLiesAtRowTimesAPowerOfTwoPlusColumn)
{
    using Offset = typename TypeParam::Offset;
    alignas(4) static std::uint8_t memory[64 * 64 * 4];
    Offset const                   base = reinterpret_cast<Offset>(memory);
    for (Tov_UInt shift = 0; shift <= 6; ++shift)
    {
        for (Tov_UInt y = 0; y < 64; y += 7)
        {
            for (Tov_UInt x = 0; x < (1U << shift); x += 3)
            {
                Offset offset = nullptr;
                TypeParam::Policy::TextureOffset(base, x, y, shift, offset);
                ASSERT_EQ(Address(offset), Address(memory) + (y * (1U << shift) + x) * TypeParam::BYTES);
            }
        }
    }
}

TYPED_TEST(PixelAddress, ReadingTakesThePixelAndNothingBeside)
{
    using Pixel = typename TypeParam::Pixel;
    for (const support::Against end : {support::Against::FrontFence, support::Against::BackFence})
    {
        Fence fence(TypeParam::BYTES, end);
        *fence.As<Pixel>() = static_cast<Pixel>(0x89ABCDEFU);
        fence.MakeReadOnly();
        EXPECT_EQ(TypeParam::Policy::GetPixel(fence.As<Pixel>()), static_cast<Pixel>(0x89ABCDEFU));
    }
}

TYPED_TEST(PixelAddress, ABlockIsThePixelItsRightNeighbourAndTheTwoBelowAndNoMore)
{
    using Policy = typename TypeParam::Policy;
    using Pixel  = typename TypeParam::Pixel;
    support::Numbers numbers(91);
    for (const std::uint32_t padding : {0U, 4U, 12U, 64U})
    {
        for (const support::Against end : {support::Against::FrontFence, support::Against::BackFence})
        {
            const auto                       pitch = static_cast<Tov_UInt>(2 * TypeParam::BYTES + padding);
            Fence                            fence(Fence::BytesFor(2, 2, pitch, TypeParam::BYTES), end);
            const typename TypeParam::Bitmap bitmap(nullptr, 2, 2, BBT_RAM, fence.Data(), pitch);
            auto* const                      below = reinterpret_cast<Pixel*>(fence.Data() + pitch);
            for (int turn = 0; turn < 200; ++turn)
            {
                Pixel p[4];
                for (Pixel& pixel : p) pixel = static_cast<Pixel>(numbers.NextHostileWord());
                fence.As<Pixel>()[0] = p[0];
                fence.As<Pixel>()[1] = p[1];
                below[0]             = p[2];
                below[1]             = p[3];
                const Tov_UByte x    = numbers.NextByte();
                const Tov_UByte y    = numbers.NextByte();
                ASSERT_EQ(Policy::Blend4(&bitmap, fence.As<Pixel>(), x, y),
                          Policy::MixBilinear(p[0], p[1], p[2], p[3], x, y));

                Pixel out[4] = {};
                // A key that no pixel can have: its top byte is that of none of the four formats' colours.
                ASSERT_TRUE(
                    Policy::ColorKeyTest4(&bitmap, fence.As<Pixel>(), 0x7F000000U, out[0], out[1], out[2], out[3]));
                for (int index = 0; index < 4; ++index) ASSERT_EQ(out[index], p[index]);
            }
        }
    }
}

TYPED_TEST(PixelAddress, AKeyTestReadsColumnByColumnAndStopsAtTheFirstMatch)
{
    using Policy                               = typename TypeParam::Policy;
    using Pixel                                = typename TypeParam::Pixel;
    constexpr Pixel                  UNWRITTEN = 77;
    constexpr int                    ORDER[4]  = {0, 2, 1, 3};  // top-left, bottom-left, top-right, bottom-right
    const auto                       pitch     = static_cast<Tov_UInt>(2 * TypeParam::BYTES + 4);
    alignas(4) std::uint8_t          memory[64];
    const typename TypeParam::Bitmap bitmap(nullptr, 2, 2, BBT_RAM, memory, pitch);
    auto* const                      above = reinterpret_cast<Pixel*>(memory);
    auto* const                      below = reinterpret_cast<Pixel*>(memory + pitch);
    Pixel* const                     at[4] = {above, above + 1, below, below + 1};

    // Every subset of the four pixels has the key's colour.
    for (int subset = 0; subset < 16; ++subset)
    {
        for (int index = 0; index < 4; ++index)
        {
            *at[index] = static_cast<Pixel>((subset >> index) % 2 != 0 ? 5 : 10 + index);
        }
        Pixel          out[4] = {UNWRITTEN, UNWRITTEN, UNWRITTEN, UNWRITTEN};
        const Tov_Bool passed = Policy::ColorKeyTest4(&bitmap, above, 5, out[0], out[1], out[2], out[3]);
        EXPECT_EQ(passed, subset == 0);
        bool stopped = false;
        for (const int index : ORDER)
        {
            EXPECT_EQ(out[index], stopped ? UNWRITTEN : *at[index]) << "subset " << subset << ", pixel " << index;
            stopped = stopped || (subset >> index) % 2 != 0;
        }
    }
}

TYPED_TEST(PixelAddress, AKeyIsComparedWithTheFormatsOwnColour)
{
    using Policy = typename TypeParam::Policy;
    using Pixel  = typename TypeParam::Pixel;
    alignas(4) std::uint8_t          memory[16];
    const typename TypeParam::Bitmap bitmap(nullptr, 2, 2, BBT_RAM, memory);
    auto* const                      pixels = reinterpret_cast<Pixel*>(memory);
    for (int index = 0; index < 4; ++index) pixels[index] = static_cast<Pixel>(0x80123456U);
    const Kanvo_Color own = sizeof(Pixel) == 4 ? 0x00123456U : sizeof(Pixel) == 2 ? 0x3456U : 0x56U;
    Pixel             out[4];
    EXPECT_FALSE(Policy::ColorKeyTest4(&bitmap, pixels, own, out[0], out[1], out[2], out[3]));
    // With bits that a colour of the format never has, a key equals nothing: no alpha, no upper half.
    EXPECT_TRUE(Policy::ColorKeyTest4(&bitmap, pixels, 0x80123456U, out[0], out[1], out[2], out[3]));
    EXPECT_TRUE(Policy::ColorKeyTest4(&bitmap, pixels, own | 0x01000000U, out[0], out[1], out[2], out[3]));
}

//! Address space without memory behind it, every byte of it protected.
class Desert
{
public:
    explicit Desert(std::size_t bytes)
        : m_base(mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)),
          m_bytes(bytes)
    {
    }
    ~Desert()
    {
        if (IsThere()) munmap(m_base, m_bytes);
    }
    Desert(const Desert&)            = delete;
    Desert& operator=(const Desert&) = delete;

    bool          IsThere() const { return m_base != MAP_FAILED; }
    std::uint8_t* Base() const { return static_cast<std::uint8_t*>(m_base); }
    //! Makes 64 KiB at an offset, which is a multiple of that, readable and writable.
    bool Water(std::size_t offset) const { return mprotect(Base() + offset, 65536, PROT_READ | PROT_WRITE) == 0; }

private:
    void*       m_base;
    std::size_t m_bytes;
};

TYPED_TEST(PixelAddress, ARowBeyondTwoAndFourGigabytesIsFoundWhereItIs)
{
    using Policy = typename TypeParam::Policy;
    using Pixel  = typename TypeParam::Pixel;
    using Offset = typename TypeParam::Offset;
    if (sizeof(void*) < 8) GTEST_SKIP() << "needs 64-bit addresses";
    constexpr Tov_UInt PITCH  = 65536;
    constexpr Tov_UInt HEIGHT = 140000;
    const Desert       desert(static_cast<std::size_t>(std::uint64_t{PITCH} * HEIGHT));
    if (!desert.IsThere()) GTEST_SKIP() << "no address space to reserve";

    const typename TypeParam::Bitmap bitmap(nullptr, PITCH / TypeParam::BYTES, HEIGHT, BBT_RAM, desert.Base());
    ASSERT_EQ(bitmap.GetBuffer(), desert.Base());
    ASSERT_EQ(bitmap.GetPitch(), PITCH);
    for (const Tov_UInt y : {32767U, 32768U, 32769U, 65535U, 65536U, 65537U, 98304U, 131072U, 139999U})
    {
        const auto row = static_cast<std::size_t>(std::uint64_t{y} * PITCH);
        Offset     offset{};
        Policy::GetOffset(&bitmap, 3, y, offset);
        ASSERT_EQ(Address(offset), Address(desert.Base()) + row + 3 * TypeParam::BYTES);
        Policy::AddOffset(&bitmap, reinterpret_cast<Offset>(desert.Base()), 5, y, offset);
        ASSERT_EQ(Address(offset), Address(desert.Base()) + row + 5 * TypeParam::BYTES);
        Policy::TextureOffset(reinterpret_cast<Offset>(desert.Base()), 1, y, 16, offset);
        ASSERT_EQ(Address(offset), Address(desert.Base()) + row * TypeParam::BYTES + TypeParam::BYTES);
    }
    // Really read there: at any other row the desert would stop it.
    ASSERT_TRUE(desert.Water(std::size_t{131072} * 65536) && desert.Water(std::size_t{131073} * 65536));
    auto* const above = reinterpret_cast<Pixel*>(desert.Base() + std::size_t{131072} * 65536);
    auto* const below = reinterpret_cast<Pixel*>(desert.Base() + std::size_t{131073} * 65536);
    above[7] = above[8] = below[7] = below[8] = static_cast<Pixel>(0x11223344U);
    Offset offset{};
    Policy::GetOffset(&bitmap, 7, 131072, offset);
    EXPECT_EQ(Policy::GetPixel(offset), static_cast<Pixel>(0x11223344U));
    Pixel out[4] = {};
    EXPECT_TRUE(Policy::ColorKeyTest4(&bitmap, offset, 1, out[0], out[1], out[2], out[3]));
    EXPECT_EQ(out[3], static_cast<Pixel>(0x11223344U));
}

}  // namespace
