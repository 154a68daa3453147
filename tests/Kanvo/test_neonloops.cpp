// Tests of the loops of neonloops.h, at every level of this machine, against the blends as one would explain them
// (NaiveMix.h): all widths, alignments, pitches and positions against protected pages; random rectangles; every triple of
// source, destination and alpha; overlapping rectangles.
#include "neonloops.h"

#include <algorithm>
#include <cstdio>
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
#include "Reference_Blit.h"
#include "Speed.h"
#include "Sweep.h"

namespace
{

using support::Arena;
using support::Dice;
using support::Fence;
using support::Lies;

//! Arguments of any loop; a loop takes those it has.
struct Arguments
{
    std::uint8_t* dst      = nullptr;
    std::uint8_t* src      = nullptr;
    std::uint32_t dstPitch = 0;
    std::uint32_t srcPitch = 0;
    std::uint32_t width    = 0;
    std::uint32_t height   = 0;
    std::uint32_t color    = 0;
    std::uint8_t  alpha    = 0;

    Kanvo_OffsetARGB32 Dst() const { return reinterpret_cast<Kanvo_OffsetARGB32>(dst); }
    template <class Pixel>
    const Pixel* Src() const
    {
        return reinterpret_cast<const Pixel*>(src);
    }
};

//! A loop, how to call it, and what one pixel is to become. source: the source's pixel as it is stored.
struct Loop
{
    const char*   name;
    std::uint32_t sourceBytes;  // of one pixel, 0 for a loop without source
    bool          hasAlpha;
    void (*run)(const Arguments& with);
    std::uint32_t (*expect)(std::uint32_t under, std::uint32_t source, std::uint32_t color, int alpha);

    friend std::ostream& operator<<(std::ostream& stream, const Loop& loop) { return stream << loop.name; }
};

const Loop FILL{"fill_argb32", 0, false,
                [](const Arguments& with)
                { neonloops_fill_argb32(with.Dst(), with.dstPitch, with.color, with.width, with.height); },
                [](std::uint32_t, std::uint32_t, std::uint32_t color, int) { return color; }};

const Loop FILL_AG{
    "fill_argb32_ag", 0, true,
    [](const Arguments& with)
    { neonloops_fill_argb32_ag(with.Dst(), with.dstPitch, with.color, with.width, with.height, with.alpha); },
    [](std::uint32_t under, std::uint32_t, std::uint32_t color, int alpha)
    { return support::BlitMixLinear(under, color, alpha); }};

const Loop COPY{"blit_argb32_argb32", 4, false,
                [](const Arguments& with)
                {
                    neonloops_blit_argb32_argb32(with.Dst(), with.Src<Kanvo_PixelARGB32>(), with.dstPitch,
                                                 with.srcPitch, with.width, with.height);
                },
                [](std::uint32_t, std::uint32_t source, std::uint32_t, int) { return source; }};

const Loop OVER{"blit_argb32_argb32_as_ag", 4, true,
                [](const Arguments& with)
                {
                    neonloops_blit_argb32_argb32_as_ag(with.Dst(), with.Src<Kanvo_PixelARGB32>(), with.dstPitch,
                                                       with.srcPitch, with.width, with.height, with.alpha);
                },
                [](std::uint32_t under, std::uint32_t source, std::uint32_t, int alpha)
                { return support::MixLinearSrcAlpha(under, source, alpha); }};

const Loop OVER_AT_255{"blit_argb32_argb32_as", 4, false,
                       [](const Arguments& with)
                       {
                           neonloops_blit_argb32_argb32_as(with.Dst(), with.Src<Kanvo_PixelARGB32>(), with.dstPitch,
                                                           with.srcPitch, with.width, with.height);
                       },
                       [](std::uint32_t under, std::uint32_t source, std::uint32_t, int)
                       { return support::MixLinearSrcAlpha(under, source, 255); }};

const Loop CONVERT_565{"blit_argb32_rgb565", 2, false,
                       [](const Arguments& with)
                       {
                           neonloops_blit_argb32_rgb565(with.Dst(), with.Src<Kanvo_PixelRGB565>(), with.dstPitch,
                                                        with.srcPitch, with.width, with.height);
                       },
                       [](std::uint32_t, std::uint32_t source, std::uint32_t, int)
                       { return reference::WordOfRgb565(source); }};

const Loop OVER_565{"blit_argb32_rgb565_ag", 2, true,
                    [](const Arguments& with)
                    {
                        neonloops_blit_argb32_rgb565_ag(with.Dst(), with.Src<Kanvo_PixelRGB565>(), with.dstPitch,
                                                        with.srcPitch, with.width, with.height, with.alpha);
                    },
                    [](std::uint32_t under, std::uint32_t source, std::uint32_t, int alpha)
                    { return support::MixLinearSrcAlpha(under, reference::WordOfRgb565(source), alpha); }};

const Loop MASK{"blitcolor_argb32_a8", 1, false,
                [](const Arguments& with)
                {
                    neonloops_blitcolor_argb32_a8(with.Dst(), with.Src<Kanvo_PixelA8>(), with.dstPitch, with.srcPitch,
                                                  with.color, with.width, with.height);
                },
                [](std::uint32_t under, std::uint32_t source, std::uint32_t color, int)
                { return support::BlitMixLinear(under, color, static_cast<int>(source)); }};

const Loop MASK_AG{"blitcolor_argb32_a8_ag", 1, true,
                   [](const Arguments& with)
                   {
                       neonloops_blitcolor_argb32_a8_ag(with.Dst(), with.Src<Kanvo_PixelA8>(), with.dstPitch,
                                                        with.srcPitch, with.color, with.width, with.height, with.alpha);
                   },
                   [](std::uint32_t under, std::uint32_t source, std::uint32_t color, int alpha)
                   { return support::BlitMixLinear(under, color, support::MulByte(static_cast<int>(source), alpha)); }};

std::uint32_t ReadPixel(const std::uint8_t* at, std::uint32_t bytes)
{
    std::uint16_t half = 0;
    std::uint32_t word = 0;
    switch (bytes)
    {
    case 1: return *at;
    case 2: std::memcpy(&half, at, sizeof half); return half;
    case 4: std::memcpy(&word, at, sizeof word); return word;
    default: return 0;
    }
}

//! Draws the rectangle into expected, which stands for the memory that starts at with.dst.
void DrawExpected(const Loop& loop, const Arguments& with, std::uint8_t* expected)
{
    for (std::size_t y = 0; y < with.height; ++y)
    {
        for (std::size_t x = 0; x < with.width; ++x)
        {
            std::uint8_t* const at     = expected + y * with.dstPitch + x * 4;
            const auto          source = with.src + y * with.srcPitch + x * loop.sourceBytes;
            const std::uint32_t word =
                loop.expect(ReadPixel(at, 4), ReadPixel(source, loop.sourceBytes), with.color, with.alpha);
            std::memcpy(at, &word, sizeof word);
        }
    }
}

//! Runs a loop on random pixels between fences and compares all memory around the rectangle.
class LoopBench
{
public:
    //! How a rectangle lies and what is drawn through it.
    struct Setting
    {
        std::uint32_t width;
        std::uint32_t height;
        std::uint32_t dstPadding;
        std::uint32_t srcPadding;
        Lies          dstLies;
        Lies          srcLies;
        std::size_t   dstOffset;  // for Between
        std::size_t   srcOffset;
        std::uint32_t color;
        std::uint8_t  alpha;
    };

    //! Empty where all is well, else the first difference.
    std::string Run(const Loop& loop, const Setting& setting, Dice& dice)
    {
        Arguments with;
        with.width                       = setting.width;
        with.height                      = setting.height;
        with.color                       = setting.color;
        with.alpha                       = setting.alpha;
        with.dstPitch                    = setting.width * 4 + setting.dstPadding;
        with.srcPitch                    = setting.width * loop.sourceBytes + setting.srcPadding;
        const std::size_t dstBytes       = Fence::BytesFor(with.width, with.height, with.dstPitch, 4);
        const std::size_t srcBytes       = Fence::BytesFor(with.width, with.height, with.srcPitch, loop.sourceBytes);
        with.dst                         = m_dst.Place(setting.dstLies, dstBytes, setting.dstOffset);
        with.src                         = m_src.Place(setting.srcLies, srcBytes, setting.srcOffset);
        std::uint8_t* const       from   = m_dst.Before(with.dst);
        const auto                all    = static_cast<std::size_t>(m_dst.Behind(with.dst + dstBytes) - from);
        const std::uint8_t* const before = m_stock.Pixels(all, dice);
        const std::uint8_t* const source =
            loop.sourceBytes == 1 ? m_stock.Coverage(srcBytes, dice) : m_stock.Pixels(srcBytes, dice);
        std::memcpy(from, before, all);
        std::memcpy(m_expected.data(), before, all);
        m_src.Put(with.src, source, srcBytes);
        DrawExpected(loop, with, m_expected.data() + (with.dst - from));
        loop.run(with);
        if (std::memcmp(with.src, source, srcBytes) != 0) return Described(loop, setting) + "the source changed";
        if (std::memcmp(from, m_expected.data(), all) == 0) return {};
        return Described(loop, setting) + FirstDifference(with, from);
    }

private:
    static std::string Described(const Loop& loop, const Setting& setting)
    {
        const auto lies = [](Lies where) {
            return where == Lies::AtFrontFence ? "front" : where == Lies::AtBackFence ? "back" : "between";
        };
        char text[240];
        std::snprintf(
            text, sizeof text,
            "neonloops_%s, width %u, height %u, pitches +%u +%u, %s %s, offsets %zu %zu, colour %08X, alpha %u: ",
            loop.name, setting.width, setting.height, setting.dstPadding, setting.srcPadding, lies(setting.dstLies),
            lies(setting.srcLies), setting.dstOffset, setting.srcOffset, setting.color, setting.alpha);
        return text;
    }

    std::string FirstDifference(const Arguments& with, const std::uint8_t* from) const
    {
        std::size_t index = 0;
        while (from[index] == m_expected[index]) ++index;
        const std::ptrdiff_t offset = from + index - with.dst;
        char                 text[120];
        if (offset < 0)
        {
            std::snprintf(text, sizeof text, "the byte %td before the rectangle changed", -offset);
            return text;
        }
        const std::size_t y = with.dstPitch == 0 ? 0 : static_cast<std::size_t>(offset) / with.dstPitch;
        const std::size_t x = static_cast<std::size_t>(offset) - y * with.dstPitch;
        if (x >= with.width * 4 || y >= with.height)
        {
            std::snprintf(text, sizeof text, "byte %zu of row %zu, outside the rectangle, changed", x, y);
            return text;
        }
        const std::uint8_t* const pixel = with.dst + y * with.dstPitch + x / 4 * 4;
        std::snprintf(text, sizeof text, "pixel (%zu, %zu) expected %08X, got %08X", x / 4, y,
                      ReadPixel(m_expected.data() + (pixel - from), 4), ReadPixel(pixel, 4));
        return text;
    }

    support::Stock            m_stock;
    Arena                     m_dst;
    Arena                     m_src;
    std::vector<std::uint8_t> m_expected = std::vector<std::uint8_t>(support::Stock::BYTES);
};

class Neonloops : public testing::TestWithParam<std::tuple<Kanvo_Level, Loop>>
{
protected:
    static const Loop& LoopOf() { return std::get<Loop>(GetParam()); }

private:
    support::AtLevel m_level{std::get<Kanvo_Level>(GetParam())};
};

std::string NameOf(const testing::TestParamInfo<Neonloops::ParamType>& info)
{
    return std::string(std::get<Loop>(info.param).name) + "_" + Kanvo_LevelName(std::get<Kanvo_Level>(info.param));
}

std::string NameOfLevel(const testing::TestParamInfo<Kanvo_Level>& info)
{
    return Kanvo_LevelName(info.param);
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(All, Neonloops,
                         testing::Combine(testing::ValuesIn(support::LevelsHere()),
                                          testing::Values(FILL, FILL_AG, COPY, OVER, OVER_AT_255, CONVERT_565, OVER_565,
                                                          MASK, MASK_AG)),
                         NameOf);

TEST_P(Neonloops, EveryWidthAtEveryAlignment)
{
    const Loop&        loop       = LoopOf();
    const std::size_t  sourceStep = std::max<std::size_t>(1, loop.sourceBytes);
    LoopBench          bench;
    Dice               dice(1);
    support::CrashNote note(loop.name);
    for (std::uint32_t width = 0; width <= 129; ++width)
    {
        note.InCase(width);
        for (std::size_t dstOffset = 0; dstOffset < support::ALIGNMENTS; dstOffset += 4)
        {
            for (std::size_t srcOffset = 0; srcOffset < support::ALIGNMENTS; srcOffset += sourceStep)
            {
                const std::uint8_t alpha   = dice.NextByte();
                const auto         color   = dice.NextHostileWord();
                const std::string  failure = bench.Run(
                     loop, {width, 1, 0, 0, Lies::Between, Lies::Between, dstOffset, srcOffset, color, alpha}, dice);
                ASSERT_EQ(failure, "");
                if (loop.sourceBytes == 0) break;
            }
        }
    }
}

TEST_P(Neonloops, EveryWidthAndOddHeightsAgainstTheFences)
{
    const Loop&        loop = LoopOf();
    LoopBench          bench;
    Dice               dice(2);
    support::CrashNote note(loop.name);
    for (std::uint32_t width = 0; width <= 129; ++width)
    {
        note.InCase(width);
        for (const std::uint32_t height : {1U, 2U, 3U, 7U})
        {
            for (const Lies dstLies : {Lies::AtFrontFence, Lies::AtBackFence, Lies::Between})
            {
                for (const Lies srcLies : {Lies::AtFrontFence, Lies::AtBackFence, Lies::Between})
                {
                    const std::uint32_t dstPadding = dice.Of({0U, 0U, 4U, 12U, 64U});
                    // pitches of whole pixels: the smallest for each format, and those of other tests
                    const std::uint32_t srcPadding =
                        dice.Of<std::uint32_t>({0U, 0U, std::max<std::uint32_t>(1, loop.sourceBytes), 4U, 12U, 64U});
                    const std::uint8_t alpha   = dice.NextByte();
                    const auto         color   = dice.NextHostileWord();
                    const std::string  failure = bench.Run(
                         loop, {width, height, dstPadding, srcPadding, dstLies, srcLies, 4, 0, color, alpha}, dice);
                    ASSERT_EQ(failure, "");
                }
            }
        }
    }
}

TEST_P(Neonloops, RandomRectangles)
{
    // Mostly small ones. Each to be replayed by its seed as in Dice.h.
    const Loop&          loop = LoopOf();
    const support::Seeds seeds(support::CasesOf(2000000));
    LoopBench            bench;
    support::CrashNote   note(loop.name);
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        const std::uint64_t seed = seeds.first + index;
        Dice                dice(seed);
        LoopBench::Setting  setting{};
        note.InCase(seed);
        setting.width             = dice.Below(dice.OneIn(8) ? 130 : 20);
        setting.height            = dice.Below(4);
        setting.dstPadding        = dice.Of({0U, 4U, 12U, 64U, 68U});
        setting.srcPadding        = dice.Of({0U, 1U, 2U, 3U, 17U}) * loop.sourceBytes;
        setting.dstLies           = support::AnyLies(dice);
        setting.srcLies           = support::AnyLies(dice);
        setting.dstOffset         = dice.Below(16) * 4;
        setting.srcOffset         = dice.Below(64) * loop.sourceBytes;
        setting.color             = dice.NextHostileWord();
        const auto any            = dice.NextByte();
        setting.alpha             = dice.Of<std::uint8_t>({0, 1, 127, 128, 254, 255, any, any, any});
        const std::string failure = bench.Run(loop, setting, dice);
        ASSERT_EQ(failure, "") << "seed " << seed;
    }
}

TEST_P(Neonloops, RectanglesWithoutPixelsTouchNothing)
{
    Fence nowhere(0);
    for (const std::uint32_t count : {1U, 3U, 17U, 0x7FFFFFFFU, 0xFFFFFFFFU})
    {
        Arguments with;
        with.dst      = nowhere.Data();
        with.src      = nowhere.Data();
        with.dstPitch = 64;
        with.srcPitch = 64;
        with.alpha    = 128;
        with.color    = 0x80808080;
        with.width    = 0;
        with.height   = std::min<std::uint32_t>(count, 1000);
        LoopOf().run(with);
        with.width  = count;
        with.height = 0;
        LoopOf().run(with);
    }
}

TEST_P(Neonloops, AtEachAlphaRandomPixels)
{
    const Loop& loop = LoopOf();
    LoopBench   bench;
    Dice        dice(3);
    for (unsigned alpha = 0; alpha < 256; ++alpha)
    {
        const auto        color   = dice.NextHostileWord();
        const std::string failure = bench.Run(loop,
                                              {33, 5, 4, 2 * loop.sourceBytes, Lies::Between, Lies::Between, 0, 0,
                                               color, static_cast<std::uint8_t>(alpha)},
                                              dice);
        ASSERT_EQ(failure, "");
    }
}

// ---- every triple of source, destination and alpha ------------------------------------------------------------------
// One picture of 256 x 256 pixels per value of the third. The channels run against each other, so that one that leaks into
// its neighbour is seen, and each of them meets every pair.

namespace
{

constexpr unsigned SIDE = 256;

class Square
{
public:
    //! pixel(x, y) for every pixel.
    template <class PixelAt>
    explicit Square(PixelAt pixel) : words(SIDE * SIDE)
    {
        for (unsigned y = 0; y < SIDE; ++y)
        {
            for (unsigned x = 0; x < SIDE; ++x) words[y * SIDE + x] = pixel(x, y);
        }
    }

    std::uint8_t* Bytes() { return reinterpret_cast<std::uint8_t*>(words.data()); }

    std::vector<std::uint32_t> words;
};

//! A word whose channels are one value, its complement, and the value again.
std::uint32_t Against(unsigned alpha, unsigned value)
{
    return alpha << 24 | value << 16 | (255 - value) << 8 | value;
}

//! Runs the loop on a fresh copy of under and compares with expect(x, y).
template <class ExpectAt>
void Check(const Loop& loop, Square& target, const Square& under, Arguments with, ExpectAt expect,
           support::Differences& differences)
{
    std::copy(under.words.begin(), under.words.end(), target.words.begin());
    with.dst      = target.Bytes();
    with.dstPitch = SIDE * 4;
    with.srcPitch = SIDE * loop.sourceBytes;
    with.width    = SIDE;
    with.height   = SIDE;
    loop.run(with);
    for (unsigned y = 0; y < SIDE; ++y)
    {
        for (unsigned x = 0; x < SIDE; ++x)
        {
            const std::uint32_t expected = expect(x, y);
            const std::uint32_t got      = target.words[y * SIDE + x];
            if (got != expected)
            {
                differences.Note("neonloops_%s at (%u, %u), colour %08X, alpha %u, over %08X: expected %08X, got %08X",
                                 loop.name, x, y, with.color, with.alpha, under.words[y * SIDE + x], expected, got);
            }
        }
    }
}

//! The colour of Against mixed by a table.
std::uint32_t MixedAgainst(const support::MixTable& mix, unsigned under, unsigned over, unsigned alpha)
{
    return alpha << 24 | mix(under, over) << 16 | mix(255 - under, 255 - over) << 8 | mix(under, over);
}

}  // namespace

class NeonloopsTriples : public testing::TestWithParam<Kanvo_Level>
{
private:
    support::AtLevel m_level{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(All, NeonloopsTriples, testing::ValuesIn(support::LevelsHere()), NameOfLevel);

TEST_P(NeonloopsTriples, FillOfEachColourOverEachPixelAtEachAlpha)
{
    const Square         under([](unsigned x, unsigned) { return Against(x, x); });
    Square               target = under;
    support::Differences differences;
    for (int alpha = 0; alpha < 256; ++alpha)
    {
        const support::MixTable mix(alpha == 255 ? 256 : alpha, 256);
        for (unsigned color = 0; color < 256; ++color)
        {
            Arguments with;
            with.dst      = target.Bytes();
            with.dstPitch = SIDE * 4;
            with.width    = SIDE;
            with.height   = 1;
            with.color    = Against(255, color);
            with.alpha    = static_cast<std::uint8_t>(alpha);
            std::copy_n(under.words.begin(), SIDE, target.words.begin());
            FILL_AG.run(with);
            for (unsigned x = 0; x < SIDE; ++x)
            {
                const auto opacity  = static_cast<unsigned>(support::OverAlpha(static_cast<int>(x), alpha));
                const auto expected = MixedAgainst(mix, x, color, opacity);
                if (target.words[x] != expected)
                {
                    differences.Note("over %u, colour %u, alpha %d: expected %08X, got %08X", x, color, alpha, expected,
                                     target.words[x]);
                }
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST_P(NeonloopsTriples, OpaqueSourceOverOpaquePixelAtEachAlpha)
{
    const Square         under([](unsigned x, unsigned) { return Against(255, x); });
    Square               source([](unsigned, unsigned y) { return Against(255, y); });
    Square               target = under;
    support::Differences differences;
    Arguments            with;
    with.src = source.Bytes();
    for (int alpha = 0; alpha < 256; ++alpha)
    {
        const support::MixTable mix(alpha / 2, 128);
        with.alpha = static_cast<std::uint8_t>(alpha);
        Check(
            OVER, target, under, with, [&](unsigned x, unsigned y) { return MixedAgainst(mix, x, y, 255); },
            differences);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST_P(NeonloopsTriples, SourceOfEachAlphaOverOpaquePixel)
{
    const Square         under([](unsigned x, unsigned) { return Against(255, x); });
    Square               target = under;
    support::Differences differences;
    Arguments            with;
    with.alpha = 255;
    for (int alpha = 0; alpha < 256; ++alpha)
    {
        const support::MixTable mix(alpha / 2, 128);
        Square                  source([&](unsigned, unsigned y) { return Against(static_cast<unsigned>(alpha), y); });
        with.src = source.Bytes();
        Check(
            OVER, target, under, with, [&](unsigned x, unsigned y) { return MixedAgainst(mix, x, y, 255); },
            differences);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST_P(NeonloopsTriples, EachSourceAlphaOverEachPixelAlphaAtEachAlpha)
{
    const auto   scattered = [](unsigned x, unsigned y) { return ((x * 73 + y * 3259 + 17) * 2654435761U) >> 8; };
    const Square under([&](unsigned x, unsigned y) { return x << 24 | scattered(x, y); });
    Square       source([&](unsigned x, unsigned y) { return y << 24 | scattered(y + 5, x); });
    Square       target = under;
    support::Differences differences;
    Arguments            with;
    with.src = source.Bytes();
    for (int alpha = 0; alpha < 256; ++alpha)
    {
        with.alpha = static_cast<std::uint8_t>(alpha);
        Check(
            OVER, target, under, with,
            [&](unsigned x, unsigned y)
            { return support::MixLinearSrcAlpha(under.words[y * SIDE + x], source.words[y * SIDE + x], alpha); },
            differences);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST_P(NeonloopsTriples, EachRgb565ChannelOverEachPixelAtEachAlpha)
{
    const Square               opaque([](unsigned x, unsigned) { return Against(255, x); });
    const Square               translucent([](unsigned x, unsigned y) { return Against((x + 7 * y) & 255, x); });
    Square                     target = opaque;
    std::vector<std::uint16_t> source(SIDE * SIDE);
    for (unsigned y = 0; y < SIDE; ++y)
    {
        // rows: red and blue run up and down in 32 steps, green in 64
        const unsigned pixel = (y & 31) << 11 | (y & 63) << 5 | (31 - (y & 31));
        std::fill_n(source.begin() + y * SIDE, SIDE, static_cast<std::uint16_t>(pixel));
    }
    support::Differences differences;
    Arguments            with;
    with.src = reinterpret_cast<std::uint8_t*>(source.data());
    for (int alpha = 0; alpha < 256; ++alpha)
    {
        with.alpha = static_cast<std::uint8_t>(alpha);
        for (const Square* const under : {&opaque, &translucent})
        {
            Check(
                OVER_565, target, *under, with,
                [&](unsigned x, unsigned y) {
                    return support::MixLinearSrcAlpha(under->words[y * SIDE + x],
                                                      reference::WordOfRgb565(source[y * SIDE]), alpha);
                },
                differences);
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST_P(NeonloopsTriples, EveryRgb565Pixel)
{
    std::vector<std::uint16_t> source(SIDE * SIDE);
    for (unsigned pixel = 0; pixel < SIDE * SIDE; ++pixel) source[pixel] = static_cast<std::uint16_t>(pixel);
    const Square         under([](unsigned x, unsigned y) { return (x * 73 + y * 3259 + 17) * 2654435761U; });
    Square               target = under;
    support::Differences differences;
    Arguments            with;
    with.src = reinterpret_cast<std::uint8_t*>(source.data());
    Check(
        CONVERT_565, target, under, with, [](unsigned x, unsigned y) { return reference::WordOfRgb565(y * SIDE + x); },
        differences);
    for (const int alpha : {0, 1, 2, 127, 128, 254, 255})
    {
        with.alpha = static_cast<std::uint8_t>(alpha);
        Check(
            OVER_565, target, under, with,
            [&](unsigned x, unsigned y) {
                return support::MixLinearSrcAlpha(under.words[y * SIDE + x], reference::WordOfRgb565(y * SIDE + x),
                                                  alpha);
            },
            differences);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST_P(NeonloopsTriples, EachColourOverEachPixelThroughEachCoverage)
{
    const Square              under([](unsigned x, unsigned y) { return Against((x + y) & 255, x); });
    Square                    target = under;
    std::vector<std::uint8_t> mask(SIDE * SIDE);
    for (unsigned y = 0; y < SIDE; ++y) std::fill_n(mask.begin() + y * SIDE, SIDE, static_cast<std::uint8_t>(y));
    std::vector<support::MixTable> mixes;
    for (int coverage = 0; coverage < 256; ++coverage) mixes.emplace_back(coverage == 255 ? 256 : coverage, 256);
    support::Differences differences;
    Arguments            with;
    with.src   = mask.data();
    with.alpha = 255;
    for (unsigned color = 0; color < 256; ++color)
    {
        with.color       = Against(255, color);
        const auto mixed = [&](unsigned x, unsigned y)
        {
            const int opacity = support::OverAlpha(static_cast<int>((x + y) & 255), static_cast<int>(y));
            return MixedAgainst(mixes[y], x, color, static_cast<unsigned>(opacity));
        };
        Check(MASK, target, under, with, mixed, differences);
        Check(MASK_AG, target, under, with, mixed, differences);
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST_P(NeonloopsTriples, EachPixelThroughEachCoverageAtEachAlpha)
{
    const Square              under([](unsigned x, unsigned) { return Against(x, x); });
    Square                    target = under;
    std::vector<std::uint8_t> mask(SIDE * SIDE);
    for (unsigned y = 0; y < SIDE; ++y) std::fill_n(mask.begin() + y * SIDE, SIDE, static_cast<std::uint8_t>(y));
    support::Differences differences;
    Arguments            with;
    with.src = mask.data();
    for (const std::uint32_t color : {0xFFC03FFFU, 0x00FF0180U})
    {
        with.color = color;
        for (int alpha = 0; alpha < 256; ++alpha)
        {
            with.alpha = static_cast<std::uint8_t>(alpha);
            Check(
                MASK_AG, target, under, with,
                [&](unsigned x, unsigned y)
                { return support::BlitMixLinear(Against(x, x), color, support::MulByte(static_cast<int>(y), alpha)); },
                differences);
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

// ---- overlapping rectangles -----------------------------------------------------------------------------------------

using NeonloopsOverlap = NeonloopsTriples;

INSTANTIATE_TEST_SUITE_P(All, NeonloopsOverlap, testing::ValuesIn(support::LevelsHere()), NameOfLevel);

TEST_P(NeonloopsOverlap, PixelsDrawnAlreadyAreReadAsTheyAreByThen)
{
    constexpr std::uint32_t PITCH = 160 * 4, WIDTH = 67, HEIGHT = 3;
    constexpr std::size_t   ORIGIN = 40 + 6 * 160;
    for (const Loop& loop : {COPY, OVER})
    {
        for (int dy = -2; dy <= 2; ++dy)
        {
            for (int dx = -36; dx <= 36; ++dx)
            {
                std::vector<std::uint32_t> pixels(15 * 160);
                Dice                       dice(9);
                for (std::uint32_t& pixel : pixels) pixel = dice.NextHostileWord();
                std::vector<std::uint32_t> expected = pixels;
                const auto                 moved = static_cast<std::size_t>(static_cast<int>(ORIGIN) + dy * 160 + dx);
                for (std::size_t y = 0; y < HEIGHT; ++y)
                {
                    for (std::size_t x = 0; x < WIDTH; ++x)
                    {
                        std::uint32_t& at = expected[moved + y * 160 + x];
                        at                = loop.expect(at, expected[ORIGIN + y * 160 + x], 0, 200);
                    }
                }
                Arguments with;
                with.dst      = reinterpret_cast<std::uint8_t*>(&pixels[moved]);
                with.src      = reinterpret_cast<std::uint8_t*>(&pixels[ORIGIN]);
                with.dstPitch = PITCH;
                with.srcPitch = PITCH;
                with.width    = WIDTH;
                with.height   = HEIGHT;
                with.alpha    = 200;
                loop.run(with);
                ASSERT_EQ(pixels, expected) << loop.name << ", moved by " << dx << ", " << dy;
            }
        }
    }
}
