// Tests of the row functions that are made of others, at every level of this machine, against naive pixels: samples of a
// line blended, and rows of an image of tokens. Sources and targets lie between fences.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "CrashNote.h"
#include "Dice.h"
#include "Fence.h"
#include "Levels.h"
#include "NaiveMix.h"
#include "RandomRows.h"
#include "RleImage.h"
#include "rows.h"
#include "RunSeeds.h"
#include "scaled_rows.h"

namespace
{

using support::Dice;

class CompoundRows : public testing::TestWithParam<Kanvo_Level>
{
};

std::string NameOf(const testing::TestParamInfo<Kanvo_Level>& tested)
{
    return Kanvo_LevelName(tested.param);
}

std::uint8_t AnyAlpha(Dice& dice)
{
    const auto any = dice.NextByte();
    return dice.Of<std::uint8_t>({0, 1, 128, 254, 255, 255, any, any});
}

//! Pixels of any alpha, or, as often, all of them opaque.
void FillPixels(std::uint32_t* at, std::size_t count, Dice& dice)
{
    const bool opaque = dice.OneIn(2);
    for (std::size_t index = 0; index < count; ++index)
    {
        at[index] = dice.NextHostileWord();
        if (opaque) at[index] |= 0xFF000000U;
        if (!opaque && dice.OneIn(4)) at[index] &= 0x00FFFFFFU;
    }
}

//! Random pixels to draw over, between fences, with bytes around them that must stay as they are.
class Target
{
public:
    Target(support::Arena& arena, std::size_t bytes, Dice& dice)
        : m_data(arena.AnyPlace(bytes, 4, dice)),
          m_end(m_data + bytes),
          m_before(arena.Before(m_data)),
          m_behind(arena.Behind(m_end))
    {
        std::fill(m_before, m_data, SLACK);
        std::fill(m_end, m_behind, SLACK);
        FillPixels(Pixels(), bytes / 4, dice);
    }

    std::uint32_t* Pixels() { return reinterpret_cast<std::uint32_t*>(m_data); }

    bool Holds(const std::vector<std::uint32_t>& expected) const
    {
        const auto isSlack = [](std::uint8_t byte) { return byte == SLACK; };
        return std::memcmp(expected.data(), m_data, static_cast<std::size_t>(m_end - m_data)) == 0 &&
               std::all_of(m_before, m_data, isSlack) && std::all_of(m_end, m_behind, isSlack);
    }

private:
    static constexpr std::uint8_t SLACK = 0xA5;

    std::uint8_t* m_data;
    std::uint8_t* m_end;
    std::uint8_t* m_before;
    std::uint8_t* m_behind;
};

//! What the cases of a test draw from and into.
struct Memory
{
    support::Arena            source;
    support::Arena            target;
    std::vector<std::uint8_t> drawn;  // before it is put into its place
};

// ---- samples --------------------------------------------------------------------------------------------------------

//! Random positions along one axis: those of a line of count - 1 samples, all inside, and one before them.
struct Axis
{
    std::uint32_t first;
    std::uint32_t line;
    std::int32_t  step;

    Axis(Dice& dice, unsigned length, unsigned count)
        : first(dice.Below(length << 16)),
          line(dice.Below(length << 16)),
          step(0)
    {
        const std::uint32_t last = dice.OneIn(4) ? (length << 16) - 1 : dice.Below(length << 16);
        if (count > 2)
            step = (static_cast<std::int32_t>(last) - static_cast<std::int32_t>(line)) / static_cast<int>(count - 2);
    }

    unsigned At(unsigned index) const
    {
        return (index == 0 ? first : line + (index - 1) * static_cast<std::uint32_t>(step)) >> 16;
    }
};

std::string RunSamples(Memory& memory, std::uint64_t seed)
{
    Dice           dice(seed);
    const unsigned width  = 1 + dice.Below(40);
    const bool     wide   = dice.OneIn(16);  // rows so far apart that sixteen bits do not hold it
    const unsigned height = 1 + dice.Below(wide ? 2 : 20);
    const unsigned pitch  = wide ? dice.Of({0x7FFCU, 0x8000U, 0x8004U}) : (width + dice.Below(3)) * 4;
    memory.drawn.resize(support::Fence::BytesFor(width, height, pitch, 4));
    for (unsigned y = 0; y < height; ++y)
        FillPixels(reinterpret_cast<std::uint32_t*>(&memory.drawn[std::size_t{y} * pitch]), width, dice);
    std::uint8_t* const source = memory.source.AnyPlace(memory.drawn.size(), 4, dice);
    memory.source.Put(source, memory.drawn.data(), memory.drawn.size());

    const unsigned             count = 1 + dice.Below(dice.OneIn(8) ? 200 : 40);
    Target                     target(memory.target, count * 4, dice);
    const Axis                 x(dice, width, count);
    const Axis                 y(dice, height, count);
    const std::uint8_t         alpha = AnyAlpha(dice);
    std::vector<std::uint32_t> expected(count);
    for (unsigned index = 0; index < count; ++index)
    {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, source + std::size_t{y.At(index)} * pitch + x.At(index) * 4, 4);
        expected[index] = support::MixLinearSrcAlpha(target.Pixels()[index], pixel, alpha);
    }
    const Kanvo_SampleLine line{
        {source, pitch}, x.line, y.line, static_cast<Tov_UInt>(x.step), static_cast<Tov_UInt>(y.step)};
    g_Kanvo_pkRows->pfnOverSamples(reinterpret_cast<Tov_UInt*>(target.Pixels()), line, x.first, y.first, count, alpha);
    return target.Holds(expected) ? "" : "seed " + std::to_string(seed) + ": " + std::to_string(count) + " samples";
}

// ---- tokens ---------------------------------------------------------------------------------------------------------

//! What tokens stand for, up to their end.
std::vector<std::uint32_t> Expanded(const support::RleImage& image)
{
    std::vector<std::uint32_t> pixels;
    for (std::size_t at = 0; image.units[at] != 0 || image.units[at + 1] != 0;)
    {
        const bool     literal = image.units[at] == 0;
        const unsigned count   = image.units[literal ? at + 1 : at];
        for (unsigned index = 0; index < count; ++index)
            pixels.push_back(image.palette[image.units[literal ? at + 2 + index : at + 1]]);
        at += literal ? 2 + count : 2;
    }
    return pixels;
}

std::uint32_t Drawn(std::uint32_t under, std::uint32_t entry, const Kanvo_TokenRows& rows)
{
    const int own    = static_cast<int>(entry >> 24);
    const int weight = rows.bStamp ? own : support::MulByte(own, rows.ubAlpha);
    if (weight == 0 || weight == 255) return weight == 0 ? under : entry;
    return support::MixLinear(under, entry, rows.bStamp ? rows.ubAlpha : weight);
}

template <class Unit, class DrawTokens>
std::string RunTokens(Memory& memory, std::uint64_t seed, DrawTokens draw)
{
    Dice           dice(seed);
    const unsigned width = 1 + dice.Below(dice.OneIn(16) ? 300 : 30), height = 1 + dice.Below(4);
    const unsigned skip = dice.OneIn(2) ? 0 : dice.Below(30), colors = 1 + dice.Below(dice.OneIn(16) ? 256 : 8);
    unsigned       pixels = (width + skip) * height;
    if (dice.OneIn(8)) pixels = dice.Below(pixels + 1);  // an early end

    support::RleImage image;
    image.unitBits = 8 * sizeof(Unit);
    image.width    = width + skip;
    image.height   = height;
    image.palette  = support::ThrowPalette(dice, colors);
    image.units    = support::ThrowTokens(dice, image.unitBits, pixels, colors);
    image.units.insert(image.units.end(), {0, 0});
    image.FillGap();
    const std::vector<std::uint8_t> bytes  = image.Bytes();
    std::uint8_t* const             stored = memory.source.AnyPlace(bytes.size(), 4, dice);
    memory.source.Put(stored, bytes.data(), bytes.size());
    const auto* const info = reinterpret_cast<const Kanvo_PrecompiledImageInfo*>(stored);

    const unsigned             pitch = (width + dice.Below(3)) * 4;
    Target                     target(memory.target, support::Fence::BytesFor(width, height, pitch, 4), dice);
    auto* const                pixel = target.Pixels();
    std::vector<std::uint32_t> expected(pixel, pixel + support::Fence::BytesFor(width, height, pitch, 4) / 4);

    // drawn by two calls, the second one going on where the first one stands
    Kanvo_TokenRows rows{pixel,          pitch,        width, dice.Below(height + 1), skip, info->acolColorPalette,
                         AnyAlpha(dice), dice.OneIn(2)};
    const std::vector<std::uint32_t> shown = Expanded(image);
    for (std::size_t y = 0; y < height; ++y)
    {
        for (std::size_t x = 0; x < width; ++x)
        {
            const std::size_t from = y * (width + skip) + x;
            const std::size_t to   = y * (pitch / 4) + x;
            if (from < shown.size()) expected[to] = Drawn(expected[to], shown[from], rows);
        }
    }
    Kanvo_RLECurDecompressInfo<Unit> state(info);
    draw(rows, state);
    rows.kDst += std::size_t{rows.uiHeight} * (pitch / 4);
    rows.uiHeight = height - rows.uiHeight;
    draw(rows, state);
    return target.Holds(expected) ? ""
                                  : "seed " + std::to_string(seed) + ": " + std::to_string(width) + "x" +
                                        std::to_string(height) + ", skip " + std::to_string(skip);
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(All, CompoundRows, testing::ValuesIn(support::LevelsHere()), NameOf);

namespace
{

//! A body of a level's own is compared as often as every row function is; the portable one is what all others draw by.
support::Seeds SeedsOf(Kanvo_Level level)
{
    return support::Seeds(support::CasesOf(level == KL_PORTABLE ? 100000 : 2000000));
}

}  // namespace

TEST_P(CompoundRows, OverSamplesBlendsTheFirstSampleAndThoseOfTheLine)
{
    const support::AtLevel level(GetParam());
    Memory                 memory;
    EXPECT_TRUE(support::RunSeeds("OverSamples", SeedsOf(GetParam()),
                                  [&](std::uint64_t seed) { return RunSamples(memory, seed); }));
}

TEST_P(CompoundRows, DrawTokens8DrawsWhatTheTokensStandFor)
{
    const support::AtLevel level(GetParam());
    Memory                 memory;
    EXPECT_TRUE(support::RunSeeds("DrawTokens8", SeedsOf(GetParam()),
                                  [&](std::uint64_t seed)
                                  { return RunTokens<Tov_UByte>(memory, seed, g_Kanvo_pkRows->pfnDrawTokens8); }));
}

TEST_P(CompoundRows, DrawTokens16DrawsWhatTheTokensStandFor)
{
    const support::AtLevel level(GetParam());
    Memory                 memory;
    EXPECT_TRUE(support::RunSeeds("DrawTokens16", SeedsOf(GetParam()),
                                  [&](std::uint64_t seed)
                                  { return RunTokens<Tov_UShort>(memory, seed, g_Kanvo_pkRows->pfnDrawTokens16); }));
}
