// Tests of the scaled loops alone, at every level of this machine: random rectangles draw what the portable level draws,
// and what the naive reference draws; nothing beyond the source is read, and nothing outside the clip rectangle is
// touched. Two of them no entry ever takes.
#include "neonloops_stretch.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "CrashNote.h"
#include "Dice.h"
#include "Fence.h"
#include "FencedPicture.h"
#include "Kanvo_Enums.h"
#include "Levels.h"
#include "RandomRows.h"
#include "Reference_Stretch.h"
#include "Speed.h"

namespace
{

using reference::Format;
using support::Dice;

//! Arguments of any loop; a loop takes those it has.
struct Arguments
{
    std::uint8_t*           dst      = nullptr;
    std::uint8_t*           src      = nullptr;
    Tov_UInt                dstPitch = 0;
    Tov_UInt                srcPitch = 0;
    reference::StretchWhere where;  // relative to the clip rectangle
    Tov_UInt                clipWidth  = 0;
    Tov_UInt                clipHeight = 0;
    Kanvo_ColorARGB32       color      = 0;
    Tov_UByte               alpha      = 255;

    std::size_t DstBytes() const { return support::Fence::BytesFor(clipWidth, clipHeight, dstPitch, 4); }
};

//! extra: what the loop takes besides.
template <class Pixel, class... Extra, class... Given>
void Call(void (*loop)(KANVO_STRETCH_ARGUMENTS(Pixel), Extra...), const Arguments& with, Given... extra)
{
    const reference::StretchWhere& at = with.where;
    loop(reinterpret_cast<Kanvo_OffsetARGB32>(with.dst), reinterpret_cast<const Pixel*>(with.src), with.dstPitch,
         with.srcPitch, static_cast<Tov_Int>(at.dstX), static_cast<Tov_Int>(at.dstY),
         static_cast<Tov_UInt>(at.dstWidth), static_cast<Tov_UInt>(at.dstHeight), static_cast<Tov_UInt>(at.srcWidth),
         static_cast<Tov_UInt>(at.srcHeight), static_cast<Tov_UInt>(at.srcX), static_cast<Tov_UInt>(at.srcY),
         with.clipWidth, with.clipHeight, extra...);
}

using With = const Arguments&;

//! A loop, how to call it, and who draws the same plainly.
struct Loop
{
    const char* name;
    Format      format;
    bool        filtered;
    bool        hasAlpha;
    void (*run)(With with);
    void (*expect)(const reference::Target& target, const reference::Picture& source, With with, Tov_Flag flags);
};

void ExpectBlit(const reference::Target& target, const reference::Picture& source, With with, Tov_Flag flags)
{
    reference::StretchBlit(target, source, with.where, flags, with.alpha, 0);
}

void ExpectOver(const reference::Target& target, const reference::Picture& source, With with, Tov_Flag flags)
{
    reference::Target optimised = target;  // whose path through a map is this blend at any opacity
    optimised.optimised         = true;
    reference::StretchBlitAlpha(optimised, source, source, with.where, flags, with.alpha);
}

void ExpectColor(const reference::Target& target, const reference::Picture& source, With with, Tov_Flag flags)
{
    reference::StretchBlitColor(target, source, with.where, with.color, flags, with.alpha);
}

const Loop LOOPS[] = {
    {"nearest_argb32_argb32", Format::Argb32, false, false,
     [](With w) { Call(neonloops_stretchblit_nearest_argb32_argb32_clip, w); }, ExpectBlit},
    {"bilinear_argb32_argb32", Format::Argb32, true, false,
     [](With w) { Call(neonloops_stretchblit_bilinear_argb32_argb32_clip, w); }, ExpectBlit},
    {"nearest_argb32_argb32_as_ag", Format::Argb32, false, true,
     [](With w) { Call(neonloops_stretchblit_nearest_argb32_argb32_as_ag_clip, w, w.alpha); }, ExpectOver},
    {"bilinear_argb32_argb32_as_ag", Format::Argb32, true, true,
     [](With w) { Call(neonloops_stretchblit_bilinear_argb32_argb32_as_ag_clip, w, w.alpha); }, ExpectOver},
    {"nearest_argb32_rgb565", Format::Rgb565, false, false,
     [](With w) { Call(neonloops_stretchblit_nearest_argb32_rgb565_clip, w); }, ExpectBlit},
    {"bilinear_argb32_rgb565", Format::Rgb565, true, false,
     [](With w) { Call(neonloops_stretchblit_bilinear_argb32_rgb565_clip, w); }, ExpectBlit},
    {"nearest_argb32_rgb565_ag", Format::Rgb565, false, true,
     [](With w) { Call(neonloops_stretchblit_nearest_argb32_rgb565_ag_clip, w, w.alpha); }, ExpectBlit},
    {"bilinear_argb32_rgb565_ag", Format::Rgb565, true, true,
     [](With w) { Call(neonloops_stretchblit_bilinear_argb32_rgb565_ag_clip, w, w.alpha); }, ExpectBlit},
    {"nearest_color_a8", Format::A8, false, false,
     [](With w) { Call(neonloops_stretchblitcolor_nearest_argb32_a8_clip, w, w.color); }, ExpectColor},
    {"bilinear_color_a8", Format::A8, true, false,
     [](With w) { Call(neonloops_stretchblitcolor_bilinear_argb32_a8_clip, w, w.color); }, ExpectColor},
    {"nearest_color_a8_ag", Format::A8, false, true,
     [](With w) { Call(neonloops_stretchblitcolor_nearest_argb32_a8_ag_clip, w, w.color, w.alpha); }, ExpectColor},
    {"bilinear_color_a8_ag", Format::A8, true, true,
     [](With w) { Call(neonloops_stretchblitcolor_bilinear_argb32_a8_ag_clip, w, w.color, w.alpha); }, ExpectColor},
};

//! Runs a loop on random rectangles of a stock of sources, and compares all memory around the clip rectangle.
class LoopBench
{
public:
    explicit LoopBench(const Loop& loop) : m_loop(loop), m_sources(loop.format) {}

    //! Against the portable level. Empty where all is well, else what was drawn. Leaves the level in force.
    std::string RunBeside(Kanvo_Level level, std::uint64_t seed)
    {
        return Run(seed,
                   [&](Arguments twin, support::FencedPicture& /*source*/)
                   {
                       Kanvo_SelectRows(KL_PORTABLE);
                       m_loop.run(twin);
                       Kanvo_SelectRows(level);
                   });
    }

    //! Against the naive reference, at the level in force.
    std::string RunNaively(std::uint64_t seed)
    {
        return Run(seed,
                   [&](const Arguments& twin, support::FencedPicture& source)
                   {
                       reference::Target target;
                       target.picture = {Format::Argb32, twin.clipWidth, twin.clipHeight,
                                         twin.dstPitch,  twin.dst,       false};
                       target.clip    = {0, 0, static_cast<std::int64_t>(twin.clipWidth) - 1,
                                         static_cast<std::int64_t>(twin.clipHeight) - 1};
                       m_loop.expect(target, source.AsPicture(), twin, m_loop.filtered ? Tov_Flag{BLIT_BILINEAR} : 0);
                   });
    }

private:
    //! expect(arguments, source) draws in the memory that they name what the loop is to draw in its own.
    template <class Expect>
    std::string Run(std::uint64_t seed, Expect expect)
    {
        Dice                    dice(seed);
        support::FencedPicture& source = m_sources.Any(dice);
        Arguments               with   = Throw(source, dice);
        const std::size_t       bytes  = with.DstBytes();
        with.dst                       = m_dst.AnyPlace(bytes, 4, dice);
        std::uint8_t* const       from = m_dst.Before(with.dst);
        const auto                all  = static_cast<std::size_t>(m_dst.Behind(with.dst + bytes) - from);
        const std::uint8_t* const was  = m_stock.Pixels(all, dice);
        std::memcpy(from, was, all);
        std::memcpy(m_expected.data(), was, all);
        Arguments twin = with;
        twin.dst       = m_expected.data() + (with.dst - from);
        expect(twin, source);
        m_loop.run(with);
        return std::memcmp(from, m_expected.data(), all) == 0 ? std::string() : Described(with);
    }

    //! Mostly small rectangles; wide ones are drawn in several strips.
    Arguments Throw(support::FencedPicture& source, Dice& dice) const
    {
        Arguments with;
        auto&     at    = with.where;
        const int least = m_loop.filtered ? 2 : 1;
        with.src        = source.Data();
        with.srcPitch   = source.Pitch();
        with.clipWidth  = dice.Below(dice.OneIn(8) ? 130 : 24);
        with.clipHeight = dice.OneIn(16) ? 0 : 1 + dice.Below(3);
        with.dstPitch   = (with.clipWidth + dice.Of({0U, 1U, 3U, 16U})) * 4;
        with.color      = dice.NextHostileWord();
        const auto any  = dice.NextByte();
        if (m_loop.hasAlpha) with.alpha = dice.Of<std::uint8_t>({0, 1, 2, 127, 128, 254, 255, 255, any, any, any});
        const auto from = [&](unsigned length, std::uint32_t& count, std::uint32_t& first)
        {
            count = dice.OneIn(4) ? length : static_cast<unsigned>(dice.Between(least, static_cast<int>(length)));
            first = dice.OneIn(4) ? length - count : dice.Below(length - count + 1);
        };
        const auto onto = [&](unsigned length, unsigned clip, std::uint32_t& count, std::int32_t& first)
        {
            count = dice.OneIn(4) ? length * dice.Of({1U, 2U, 3U, 4U}) : 1 + dice.Below(2 * clip + 20);
            first = dice.OneIn(2) ? 0 : dice.Between(-static_cast<int>(count) - 1, static_cast<int>(clip) + 1);
        };
        from(source.Width(), at.srcWidth, at.srcX);
        from(source.Height(), at.srcHeight, at.srcY);
        onto(at.srcWidth, with.clipWidth, at.dstWidth, at.dstX);
        onto(at.srcHeight, with.clipHeight, at.dstHeight, at.dstY);
        return with;
    }

    std::string Described(const Arguments& with) const
    {
        const auto& at = with.where;
        char        text[240];
        std::snprintf(
            text, sizeof text, "%s: %u x %u from (%u, %u) to %u x %u at (%d, %d), clip %u x %u, colour %08X, alpha %u",
            m_loop.name, at.srcWidth, at.srcHeight, at.srcX, at.srcY, at.dstWidth, at.dstHeight, at.dstX, at.dstY,
            unsigned{with.clipWidth}, unsigned{with.clipHeight}, unsigned{with.color}, unsigned{with.alpha});
        return text;
    }

    const Loop&               m_loop;
    support::FencedPictures   m_sources;
    support::Stock            m_stock;
    support::Arena            m_dst;
    std::vector<std::uint8_t> m_expected = std::vector<std::uint8_t>(support::Stock::BYTES);
};

using Parameters = std::tuple<Kanvo_Level, Loop>;

std::string NameOf(const testing::TestParamInfo<Parameters>& info)
{
    return std::string(std::get<Loop>(info.param).name) + "_" + Kanvo_LevelName(std::get<Kanvo_Level>(info.param));
}

class StretchLoops : public testing::TestWithParam<Parameters>
{
protected:
    static Kanvo_Level Level() { return std::get<Kanvo_Level>(GetParam()); }

    //! run(seed) for each, until one says what is wrong.
    template <class Run>
    static void RunAll(const support::Seeds& seeds, Run run)
    {
        const support::AtLevel level(Level());
        support::CrashNote     note(Of().name);
        for (std::uint64_t index = 0; index < seeds.count; ++index)
        {
            note.InCase(seeds.first + index);
            const std::string failure = run(seeds.first + index);
            ASSERT_EQ(failure, "") << "seed " << seeds.first + index;
        }
    }

    static const Loop& Of() { return std::get<Loop>(GetParam()); }

    LoopBench m_bench{Of()};
};

//! At the levels that are not the portable one.
class StretchLoopsFast : public StretchLoops
{
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(All, StretchLoops,
                         testing::Combine(testing::ValuesIn(support::LevelsHere()), testing::ValuesIn(LOOPS)), NameOf);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(StretchLoopsFast);  // on a machine that has the portable level only
INSTANTIATE_TEST_SUITE_P(All, StretchLoopsFast,
                         testing::Combine(testing::ValuesIn(support::FastLevelsHere()), testing::ValuesIn(LOOPS)),
                         NameOf);

TEST_P(StretchLoopsFast, RandomRectanglesAreThoseOfThePortableLevel)
{
    RunAll(support::Seeds(support::CasesOf(2000000)),
           [&](std::uint64_t seed) { return m_bench.RunBeside(Level(), seed); });
}

TEST_P(StretchLoops, RandomRectanglesAreThoseOfTheNaiveReference)
{
    RunAll(support::Seeds(support::CasesOf(100000)), [&](std::uint64_t seed) { return m_bench.RunNaively(seed); });
}
