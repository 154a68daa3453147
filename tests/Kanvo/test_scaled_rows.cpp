// Tests of the rows of samples at every level of this machine: random lines through fenced pictures against the portable
// bodies, and against the naive samples; every width with every alignment; every mix of two bytes; and whole blits of a
// bitmap onto itself, whose rows are longer than the strips that they are drawn in.
#include "scaled_rows.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "BlitStage.h"
#include "CrashNote.h"
#include "Dice.h"
#include "Fence.h"
#include "FencedPicture.h"
#include "Levels.h"
#include "NaiveMix.h"
#include "RandomRows.h"
#include "Reference_Sample.h"
#include "Reference_Stretch.h"
#include "Speed.h"
#include "Sweep.h"

namespace
{

using reference::Format;
using support::Arena;
using support::Dice;
using support::Lies;

using Line = const Kanvo_SampleLine&;

//! Which lines a function takes.
enum class Lines
{
    Any,
    OfOneRow,      // that do not leave it, and whose samples have no weight between rows
    OfWholePixels  // one after the other, whose samples have no weight along the row
};

//! A function of the table: of which format, whether it filters, and what becomes of a naive sample.
struct Function
{
    const char* name;
    Format      format;
    bool        filtered;
    Lines       lines;
    void (*run)(std::uint8_t* to, Line line, Tov_UInt count, Tov_UInt bits);
    std::uint32_t (*expect)(const reference::Sample& sample, Tov_UInt bits) = [](const reference::Sample& sample,
                                                                                 Tov_UInt) { return sample.stored; };

    //! Of one pixel.
    unsigned Bytes() const { return support::FencedPicture::BytesOf(format); }
    //! Pixels beside each other, and above each other, that a sample is made of.
    unsigned Across() const { return filtered && lines != Lines::OfWholePixels ? 2 : 1; }
    unsigned Down() const { return filtered && lines != Lines::OfOneRow ? 2 : 1; }
};

std::uint32_t KeptBits(const reference::Sample& sample, Tov_UInt bits)
{
    return sample.stored & bits;
}

template <class Pixel>
void Call(void (*function)(Pixel*, Line, Tov_UInt), std::uint8_t* to, Line line, Tov_UInt count, Tov_UInt /*bits*/)
{
    function(reinterpret_cast<Pixel*>(to), line, count);
}

template <class Pixel>
void Call(void (*function)(Pixel*, Line, Tov_UInt, Tov_UInt), std::uint8_t* to, Line line, Tov_UInt count,
          Tov_UInt bits)
{
    function(reinterpret_cast<Pixel*>(to), line, count, bits);
}

//! Calls a function of the level in force.
template <auto MEMBER>
void Run(std::uint8_t* to, Line line, Tov_UInt count, Tov_UInt bits)
{
    Call(g_Kanvo_pkScaledRows->*MEMBER, to, line, count, bits);
}

//! Mixes the row that the line begins in with the one below.
void RunMixBetween(std::uint8_t* to, Line line, Tov_UInt count, Tov_UInt bits)
{
    const auto* const pixels = static_cast<const std::uint8_t*>(line.kSource.pBuffer);
    const auto* const top    = pixels + (line.uiY >> 16) * line.kSource.uiPitch + (line.uiX >> 16) * 4;
    g_Kanvo_pkScaledRows->pfnMixBetween(reinterpret_cast<Kanvo_PixelARGB32*>(to),
                                        reinterpret_cast<const Kanvo_PixelARGB32*>(top),
                                        reinterpret_cast<const Kanvo_PixelARGB32*>(top + line.kSource.uiPitch), count,
                                        static_cast<Tov_UByte>(line.uiY >> 8), bits);
}

using Table = Kanvo_ScaledRowFunctions;

const Function FUNCTIONS[] = {
    {"NearestWords", Format::Argb32, false, Lines::Any, Run<&Table::pfnNearestWords>,
     [](const reference::Sample& sample, Tov_UInt bits) { return sample.stored | bits; }},
    {"FilterWords", Format::Argb32, true, Lines::Any, Run<&Table::pfnFilterWords>, KeptBits},
    {"Nearest565", Format::Rgb565, false, Lines::Any, Run<&Table::pfnNearest565>},
    {"Filter565", Format::Rgb565, true, Lines::Any, Run<&Table::pfnFilter565>},
    {"NearestA8", Format::A8, false, Lines::Any, Run<&Table::pfnNearestA8>},
    {"FilterA8", Format::A8, true, Lines::Any, Run<&Table::pfnFilterA8>},
    {"MixAlong", Format::Argb32, true, Lines::OfOneRow, Run<&Table::pfnMixAlong>},
    {"MixBetween", Format::Argb32, true, Lines::OfWholePixels, RunMixBetween, KeptBits},
};

//! A line that the function takes and whose samples lie inside. Of whole pixels there may be fewer than count.
Kanvo_SampleLine AnyLine(const Function& function, support::FencedPicture& picture, unsigned& count, Dice& dice)
{
    if (function.lines == Lines::OfWholePixels) count = std::min(count, picture.Width());
    const auto axis = [&](unsigned length, bool moves)
    {
        const unsigned end   = length << 16;
        const unsigned first = dice.OneIn(4) ? 0 : dice.OneIn(4) ? end - 1 : dice.Below(end);
        const unsigned last  = !moves ? first : dice.OneIn(4) ? end - 1 : dice.Below(end);
        int            step  = count < 2 ? dice.Between(-70000, 70000)
                                         : (static_cast<int>(last) - static_cast<int>(first)) / static_cast<int>(count - 1);
        // steps of whole and half pixels, where they fit
        const int  even = dice.Of({0x8000, 0x10000, 0x20000, 0x18000, 0x8001, 0x7FFF, 0x20001, -0x10000});
        const auto far  = static_cast<std::int64_t>(first) + std::int64_t{even} * (count == 0 ? 0 : count - 1);
        if (moves && dice.OneIn(3) && far >= 0 && far < end) step = even;
        return std::pair<unsigned, int>(first, moves ? step : 0);
    };
    auto x = axis(picture.Width() + 1 - function.Across(), true);
    auto y = axis(picture.Height() + 1 - function.Down(), function.lines == Lines::Any && dice.OneIn(2));
    if (function.lines == Lines::OfOneRow) y.first &= 0xFFFF0000U;
    if (function.lines == Lines::OfWholePixels)
        x = {(dice.OneIn(3) ? picture.Width() - count : dice.Below(picture.Width() - count + 1)) << 16, 0x10000};
    return {{picture.Data(), picture.Pitch()},
            x.first,
            y.first,
            static_cast<Tov_UInt>(x.second),
            static_cast<Tov_UInt>(y.second)};
}

//! One that is wide where the line cannot be bent to it.
support::FencedPicture& AnyPicture(const Function& function, support::FencedPictures& pictures, Dice& dice)
{
    return function.lines == Lines::OfWholePixels ? pictures.AnyWide(dice) : pictures.Any(dice);
}

Tov_UInt AnyBits(Dice& dice)
{
    return dice.Of({0U, 0xFF000000U, 0x00FFFFFFU, 0xFFFFFFFFU});
}

std::string Described(const Kanvo_SampleLine& line, unsigned count)
{
    char text[120];
    std::snprintf(text, sizeof text, "%u samples from %X %X, steps %X %X", count, line.uiX, line.uiY, line.uiStepX,
                  line.uiStepY);
    return text;
}

//! The naive samples, as bytes of the format.
std::vector<std::uint8_t> Naive(const Function& function, const reference::Picture& picture, Kanvo_SampleLine line,
                                unsigned count, Tov_UInt bits)
{
    std::vector<std::uint8_t> bytes;
    for (unsigned index = 0; index < count; ++index, line.Advance(1))
    {
        const std::int64_t x = line.uiX >> 16, y = line.uiY >> 16;
        // no pixel is looked at that the function may not look at
        const std::int64_t      right = x + function.Across() - 1, below = y + function.Down() - 1;
        const reference::Block  block{reference::PixelAt(picture, x, y), reference::PixelAt(picture, right, y),
                                     reference::PixelAt(picture, x, below), reference::PixelAt(picture, right, below)};
        const reference::Sample sample =
            !function.filtered ? block[0]
                               : reference::MixOf(block, reference::WeightOf(line.uiX), reference::WeightOf(line.uiY));
        const std::uint32_t value = function.expect(sample, bits);
        for (unsigned byte = 0; byte < function.Bytes(); ++byte)
            bytes.push_back(static_cast<std::uint8_t>(value >> (8 * byte)));
    }
    return bytes;
}

using Parameters = std::tuple<Kanvo_Level, Function>;

std::string NameOf(const testing::TestParamInfo<Parameters>& info)
{
    return std::string(std::get<Function>(info.param).name) + "_" + Kanvo_LevelName(std::get<Kanvo_Level>(info.param));
}

class ScaledRows : public testing::TestWithParam<Parameters>
{
protected:
    static const Function& Of() { return std::get<Function>(GetParam()); }
    static Kanvo_Level     Level() { return std::get<Kanvo_Level>(GetParam()); }
};

//! At the levels that are not the portable one.
class ScaledRowsFast : public ScaledRows
{
};

class ScaledRowsBetween : public testing::TestWithParam<Kanvo_Level>
{
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(All, ScaledRows,
                         testing::Combine(testing::ValuesIn(support::LevelsHere()), testing::ValuesIn(FUNCTIONS)),
                         NameOf);
INSTANTIATE_TEST_SUITE_P(All, ScaledRowsBetween, testing::ValuesIn(support::LevelsHere()),
                         [](const auto& tested) { return std::string(Kanvo_LevelName(tested.param)); });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ScaledRowsFast);  // on a machine that has the portable level only
INSTANTIATE_TEST_SUITE_P(All, ScaledRowsFast,
                         testing::Combine(testing::ValuesIn(support::FastLevelsHere()), testing::ValuesIn(FUNCTIONS)),
                         NameOf);

TEST_P(ScaledRowsFast, RandomLinesAreThoseOfThePortableBody)
{
    // Each to be replayed by its seed as in Dice.h.
    const Function&         function = Of();
    const support::AtLevel  level(Level());
    const support::Seeds    seeds(support::CasesOf(2000000));
    support::CrashNote      note(function.name);
    support::FencedPictures pictures(function.format);
    Arena                   arena;
    const support::Stock    stock;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        note.InCase(seeds.first + index);
        Dice                   dice(seeds.first + index);
        unsigned               count  = dice.Below(dice.OneIn(64) ? 1000 : 130);
        const Kanvo_SampleLine line   = AnyLine(function, AnyPicture(function, pictures, dice), count, dice);
        const Tov_UInt         bits   = AnyBits(dice);
        const std::size_t      bytes  = count * function.Bytes();
        std::uint8_t* const    to     = arena.AnyPlace(bytes, function.Bytes(), dice);
        std::uint8_t* const    from   = arena.Before(to);
        const auto             before = static_cast<std::size_t>(to - from);
        const auto             all    = static_cast<std::size_t>(arena.Behind(to + bytes) - from);

        alignas(64) std::uint8_t  expected[64 + 1000 * 4 + 64];
        const std::uint8_t* const was = stock.Pixels(all, dice);
        std::memcpy(from, was, all);
        std::memcpy(expected, was, all);
        Kanvo_SelectRows(KL_PORTABLE);
        function.run(expected + before, line, count, bits);
        Kanvo_SelectRows(Level());
        function.run(to, line, count, bits);
        ASSERT_EQ(std::memcmp(expected, from, all), 0)
            << "seed " << seeds.first + index << ": " << Described(line, count);
    }
}

TEST_P(ScaledRows, RandomLinesAreThoseOfTheNaiveSamples)
{
    const Function&         function = Of();
    const support::AtLevel  level(Level());
    const support::Seeds    seeds(10000);
    support::CrashNote      note(function.name);
    support::FencedPictures pictures(function.format);
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        note.InCase(seeds.first + index);
        Dice                      dice(seeds.first + index);
        support::FencedPicture&   picture = AnyPicture(function, pictures, dice);
        unsigned                  count   = dice.Below(130);
        const Kanvo_SampleLine    line    = AnyLine(function, picture, count, dice);
        const Tov_UInt            bits    = AnyBits(dice);
        std::vector<std::uint8_t> drawn(count * function.Bytes());
        function.run(drawn.data(), line, count, bits);
        ASSERT_EQ(drawn, Naive(function, picture.AsPicture(), line, count, bits))
            << "seed " << seeds.first + index << ": " << Described(line, count);
    }
}

TEST_P(ScaledRows, EveryWidthAtEveryAlignmentBetweenFences)
{
    // A line at a step: the picture is as wide and as high as the samples need it, and not a pixel more.
    struct Task
    {
        std::vector<std::uint8_t> pixels;
        Kanvo_SampleLine          line;
        std::vector<std::uint8_t> expected;
    };
    const Function&        function = Of();
    const support::AtLevel level(Level());
    Dice                   dice(3);
    support::CrashNote     note(function.name);
    Arena                  sources, targets;
    const support::Stock   stock;
    const auto             places = support::EveryPosition(function.Bytes());
    constexpr Tov_UInt     BITS   = 0xFF00FF00U;
    for (unsigned count = 0; count <= 129; ++count)
    {
        note.InCase(count);
        const std::size_t         bytes  = count * function.Bytes();
        const std::uint8_t* const before = stock.Pixels(64 + bytes + 64, dice);
        std::vector<Task>         tasks;
        for (const int step : {0x5555, 0x8000, 0x10000, 0x18000, 0x20000, -0x5555, -0x10000})
        {
            if (function.lines == Lines::OfWholePixels && step != 0x10000) continue;
            const unsigned way    = count > 0 ? (count - 1) * static_cast<unsigned>(std::abs(step)) : 0;
            const unsigned offset = function.lines == Lines::OfWholePixels ? 0 : dice.Below(0x10000);
            const unsigned width  = ((way + offset) >> 16) + function.Across();
            const unsigned pitch  = (width + dice.Of({0U, 1U, 5U})) * function.Bytes();
            Task           task;
            task.pixels.resize(support::Fence::BytesFor(width, function.Down(), pitch, function.Bytes()));
            dice.Fill(task.pixels.data(), task.pixels.size());
            task.line = {{task.pixels.data(), pitch},
                         offset + (step < 0 ? way : 0),
                         function.lines == Lines::OfOneRow ? 0 : dice.Below(0x10000),
                         static_cast<Tov_UInt>(step),
                         0};
            task.expected.assign(before, before + 64 + bytes + 64);
            const std::vector<std::uint8_t> naive =
                Naive(function, {function.format, width, function.Down(), pitch, task.pixels.data(), false}, task.line,
                      count, BITS);
            std::copy(naive.begin(), naive.end(), task.expected.begin() + 64);
            tasks.push_back(std::move(task));
        }
        // each place of the target with each of the source, the steps in turn
        std::size_t turn = count;
        for (const auto& [toLies, toOffset] : places)
        {
            std::uint8_t* const to   = targets.Place(toLies, bytes, toOffset);
            std::uint8_t* const from = targets.Before(to);
            const auto          head = static_cast<std::size_t>(to - from);
            const auto          all  = static_cast<std::size_t>(targets.Behind(to + bytes) - from);
            for (const auto& [lies, offset] : places)
            {
                Task&               task   = tasks[turn++ % tasks.size()];
                std::uint8_t* const source = sources.Place(lies, task.pixels.size(), offset);
                sources.Put(source, task.pixels.data(), task.pixels.size());
                std::memcpy(from, before + 64 - head, all);
                task.line.kSource.pBuffer = source;
                function.run(to, task.line, count, BITS);
                ASSERT_EQ(std::memcmp(from, &task.expected[64 - head], all), 0)
                    << Described(task.line, count) << ", bytes from the fence in front " << to - targets.Begin() << " "
                    << source - sources.Begin();
            }
        }
    }
}

TEST_P(ScaledRowsBetween, EveryTwoBytesMixAtEveryFractionAsTheNaiveBlock)
{
    // The channels run against each other, so that one that leaks into its neighbour is seen.
    constexpr unsigned     SIDE = 256;
    const support::AtLevel level(GetParam());
    const auto against = [](unsigned value) { return value << 24 | (255 - value) << 16 | value << 8 | (255 - value); };
    std::vector<std::uint32_t> tops(SIDE), bottoms(SIDE), drawn(SIDE);
    support::Differences       differences;
    for (unsigned x = 0; x < SIDE; ++x) tops[x] = against(x);
    for (unsigned fraction = 0; fraction < SIDE; ++fraction)
    {
        const support::MixTable mix(static_cast<int>(fraction) / 2, 128);
        for (unsigned bottom = 0; bottom < SIDE; ++bottom)
        {
            std::fill(bottoms.begin(), bottoms.end(), against(bottom));
            g_Kanvo_pkScaledRows->pfnMixBetween(drawn.data(), tops.data(), bottoms.data(), SIDE,
                                                static_cast<Tov_UByte>(fraction), 0xFFFFFFFFU);
            for (unsigned x = 0; x < SIDE; ++x)
            {
                const std::uint32_t up = mix(x, bottom), down = mix(255 - x, 255 - bottom);
                const std::uint32_t expected = up << 24 | down << 16 | up << 8 | down;
                if (drawn[x] != expected)
                    differences.Note("%08X above %08X, fraction %u: expected %08X, got %08X", tops[x], bottoms[x],
                                     fraction, expected, drawn[x]);
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

// ---- onto itself ----------------------------------------------------------------------------------------------------

TEST(ScaledRowsOntoThemselves, LongRowsAreDrawnPixelByPixelWhereTheySampleWhatIsDrawn)
{
    constexpr unsigned WIDTH = 400, HEIGHT = 14;
    for (const Kanvo_Level level : support::LevelsHere())
    {
        const support::AtLevel at(level);
        Dice                   dice(11);
        for (int turn = 0; turn < 400; ++turn)
        {
            std::vector<std::uint32_t> pixels(WIDTH * HEIGHT);
            dice.Fill(pixels.data(), pixels.size() * 4);
            std::vector<std::uint32_t> expected = pixels;
            const unsigned             path     = dice.Of({0U, 1U});
            support::Stage             stage(path == 0 ? OB_NONE : OB_NEON, WIDTH, std::move(pixels));

            reference::StretchWhere where;
            where.srcWidth       = 2 + dice.Below(WIDTH - 2);
            where.srcHeight      = 2 + dice.Below(HEIGHT - 2);
            where.srcX           = dice.Below(WIDTH - where.srcWidth + 1);
            where.srcY           = dice.Below(HEIGHT - where.srcHeight + 1);
            where.dstWidth       = 1 + dice.Below(WIDTH + 100);
            where.dstHeight      = 1 + dice.Below(HEIGHT + 4);
            where.dstX           = dice.Between(-50, 200);
            where.dstY           = dice.Between(-4, 8);
            const Tov_Flag flags = dice.Of({0U, static_cast<unsigned>(BLIT_BILINEAR)});
            const int      alpha = dice.Of({255, 255, 254, 100});

            reference::Target target;
            target.picture = {
                Format::Argb32, WIDTH, HEIGHT, WIDTH * 4, reinterpret_cast<std::uint8_t*>(expected.data()), true};
            target.clip      = {0, 0, WIDTH - 1, HEIGHT - 1};
            target.optimised = path != 0;
            reference::StretchBlit(target, target.picture, where, flags, alpha, 0);
            stage.target.StretchBlit(&stage.target, where.srcWidth, where.srcHeight, where.srcX, where.srcY,
                                     where.dstWidth, where.dstHeight, where.dstX, where.dstY, flags,
                                     static_cast<Tov_UByte>(alpha), 0);
            ASSERT_EQ(std::memcmp(expected.data(), stage.pixels.data(), expected.size() * 4), 0)
                << Kanvo_LevelName(level) << ", turn " << turn;
        }
    }
}
