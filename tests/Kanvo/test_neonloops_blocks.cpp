// Tests of rectangles without padding between their rows, which fills and copies draw as one long row: every size around
// those at which it is stored in another way, between fences, at every level; and copies of memory onto itself, where the
// order of pixels shows.
#include "neonloops.h"

#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "Dice.h"
#include "Fence.h"
#include "Levels.h"
#include "NaiveMix.h"
#include "rows.h"

namespace
{

using support::Dice;

struct Size
{
    unsigned width;
    unsigned height;

    unsigned    Count() const { return width * height; }
    std::size_t Bytes() const { return std::size_t{Count()} * 4; }
    unsigned    Pitch() const { return width * 4; }
};

//! Few pixels, and around a kilobyte, four kilobytes and a megabyte.
const Size SIZES[] = {{0, 3},     {3, 0},      {1, 1},      {1, 7},      {2, 4},      {3, 5},     {8, 1},
                      {5, 13},    {16, 16},    {33, 31},    {341, 3},    {1024, 1},   {41, 25},   {512, 4},
                      {683, 3},   {128, 257},  {511, 513},  {512, 512},  {87, 3013},  {37449, 7}, {1, 262145},
                      {600, 500}, {262144, 1}, {262145, 1}, {262151, 1}, {1000, 263}, {525, 499}};

std::vector<std::uint32_t> AnyPixels(unsigned count, Dice& dice)
{
    std::vector<std::uint32_t> pixels(count);
    for (std::uint32_t& pixel : pixels) pixel = dice.NextHostileWord();
    return pixels;
}

void PutPixels(support::Fence& fence, const std::vector<std::uint32_t>& pixels)
{
    if (!pixels.empty()) std::memcpy(fence.Data(), pixels.data(), pixels.size() * 4);
}

bool Holds(support::Fence& fence, const std::vector<std::uint32_t>& pixels)
{
    return fence.IsSlackUntouched() &&
           (pixels.empty() || std::memcmp(fence.Data(), pixels.data(), pixels.size() * 4) == 0);
}

//! Calls test(size, end of memory, dice) at every level for every size, flush with either fence.
template <class Test>
void ForBlocks(Test test)
{
    for (const Kanvo_Level level : support::LevelsHere())
    {
        const support::AtLevel at(level);
        Dice                   dice(31);
        for (const Size& size : SIZES)
        {
            for (const auto end : {support::Against::BackFence, support::Against::FrontFence})
            {
                SCOPED_TRACE(testing::Message()
                             << Kanvo_LevelName(level) << ", " << size.width << " x " << size.height);
                test(size, end, dice);
                if (testing::Test::HasFatalFailure()) return;
            }
        }
    }
}

}  // namespace

TEST(neonloopsBlocks, FillsStoreEveryPixelAndNoOther)
{
    ForBlocks(
        [](const Size& size, support::Against end, Dice& dice)
        {
            const std::uint32_t color = dice.NextHostileWord();
            for (const bool mixes : {false, true})
            {
                support::Fence fence(size.Bytes(), end);
                if (mixes)
                {
                    neonloops_fill_argb32_ag(fence.As<std::uint32_t>(), size.Pitch(), color, size.width, size.height,
                                             255);
                }
                else
                {
                    neonloops_fill_argb32(fence.As<std::uint32_t>(), size.Pitch(), color, size.width, size.height);
                }
                ASSERT_TRUE(Holds(fence, std::vector<std::uint32_t>(size.Count(), color))) << "mixes: " << mixes;
            }
        });
}

TEST(neonloopsBlocks, MixingFillsMixEveryPixel)
{
    ForBlocks(
        [](const Size& size, support::Against end, Dice& dice)
        {
            const std::uint32_t        color    = dice.NextHostileWord();
            const auto                 alpha    = static_cast<std::uint8_t>(dice.Below(255));
            std::vector<std::uint32_t> expected = AnyPixels(size.Count(), dice);
            support::Fence             fence(size.Bytes(), end);
            PutPixels(fence, expected);
            for (std::uint32_t& pixel : expected) pixel = support::BlitMixLinear(pixel, color, alpha);
            neonloops_fill_argb32_ag(fence.As<std::uint32_t>(), size.Pitch(), color, size.width, size.height, alpha);
            ASSERT_TRUE(Holds(fence, expected));
        });
}

TEST(neonloopsBlocks, CopiesStoreEveryPixelAndNoOther)
{
    ForBlocks(
        [](const Size& size, support::Against end, Dice& dice)
        {
            const std::vector<std::uint32_t> pixels = AnyPixels(size.Count(), dice);
            support::Fence                   source(size.Bytes(), end);
            support::Fence                   target(size.Bytes(), end);
            PutPixels(source, pixels);
            source.MakeReadOnly();
            neonloops_blit_argb32_argb32(target.As<std::uint32_t>(), source.As<std::uint32_t>(), size.Pitch(),
                                         size.Pitch(), size.width, size.height);
            ASSERT_TRUE(Holds(target, pixels));
        });
}

TEST(neonloopsBlocks, ABlockToRowsWithPaddingAndBackKeepsThePadding)
{
    ForBlocks(
        [](const Size& size, support::Against end, Dice& dice)
        {
            if (size.Count() == 0) return;
            const unsigned                   wide   = size.width + 1 + dice.Below(5);
            const std::vector<std::uint32_t> pixels = AnyPixels(size.Count(), dice);
            support::Fence                   block(size.Bytes(), end);
            support::Fence                   back(size.Bytes(), end);
            support::Fence padded(support::Fence::BytesFor(size.width, size.height, std::size_t{wide} * 4, 4), end);
            PutPixels(block, pixels);
            neonloops_blit_argb32_argb32(padded.As<std::uint32_t>(), block.As<std::uint32_t>(), wide * 4, size.Pitch(),
                                         size.width, size.height);
            neonloops_blit_argb32_argb32(back.As<std::uint32_t>(), padded.As<std::uint32_t>(), size.Pitch(), wide * 4,
                                         size.width, size.height);
            ASSERT_TRUE(Holds(back, pixels));
            for (std::size_t pixel = 0; pixel * 4 < padded.Size(); ++pixel)
            {
                const std::size_t x = pixel % wide, y = pixel / wide;
                ASSERT_EQ(padded.As<std::uint32_t>()[pixel], x < size.width ? pixels[y * size.width + x] : 0xA5A5A5A5U);
            }
        });
}

TEST(neonloopsBlocks, MemoryIsCopiedOntoItselfPixelByPixelFromTopToBottom)
{
    for (const Kanvo_Level level : support::LevelsHere())
    {
        const support::AtLevel at(level);
        Dice                   dice(37);
        for (const Size size : {Size{1, 9}, Size{7, 5}, Size{32, 8}, Size{129, 6}, Size{300, 11}})
        {
            for (const unsigned shift : {0U, 1U, 5U, 8U, size.width - 1, size.width, size.width + 1, 2 * size.width,
                                         2 * size.width + 3, size.Count() - 1, size.Count(), size.Count() + 1})
            {
                for (const bool down : {false, true})
                {
                    const std::vector<std::uint32_t> before   = AnyPixels(size.Count() + shift, dice);
                    std::vector<std::uint32_t>       expected = before;
                    support::Fence                   memory(before.size() * 4);
                    PutPixels(memory, before);
                    const unsigned to = down ? shift : 0, from = down ? 0 : shift;
                    for (unsigned pixel = 0; pixel < size.Count(); ++pixel)
                        expected[to + pixel] = expected[from + pixel];
                    neonloops_blit_argb32_argb32(memory.As<std::uint32_t>() + to, memory.As<std::uint32_t>() + from,
                                                 size.Pitch(), size.Pitch(), size.width, size.height);
                    ASSERT_TRUE(Holds(memory, expected)) << Kanvo_LevelName(level) << ", " << size.width << " x "
                                                         << size.height << " by " << shift << ", down: " << down;
                }
            }
        }
    }
}
