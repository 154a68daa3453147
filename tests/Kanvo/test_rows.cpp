// Tests of the row functions, and of the loops made of them, at every level of this machine: each draws what the portable
// bodies draw, which in turn draw what the naive blends (NaiveMix.h) say; random rows between fences, every width at
// every alignment, every triple of channels, rows that overlap, and the selection of a level.
#include "rows.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "CrashNote.h"
#include "Dice.h"
#include "Fence.h"
#include "Kanvo_Object.h"
#include "Levels.h"
#include "NaiveMix.h"
#include "neonloops.h"
#include "Reference_Blit.h"
#include "Sweep.h"

#if defined(__SANITIZE_ADDRESS__)
#define KANVO_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer) || __has_feature(undefined_behavior_sanitizer)
#define KANVO_TEST_SANITIZED 1
#endif
#endif
#ifndef KANVO_TEST_SANITIZED
#define KANVO_TEST_SANITIZED 0
#endif

namespace
{

using support::Dice;

//! Arguments of any row function and any loop; each takes those it has.
struct Arguments
{
    std::uint8_t*       dst       = nullptr;
    const std::uint8_t* src       = nullptr;
    const std::uint8_t* mask      = nullptr;
    std::uint32_t       dstPitch  = 0;
    std::uint32_t       srcPitch  = 0;
    std::uint32_t       maskPitch = 0;
    std::uint32_t       width     = 0;
    std::uint32_t       height    = 1;
    std::uint32_t       color     = 0;
    std::uint8_t        alpha     = 0;

    Kanvo_OffsetARGB32       Dst() const { return reinterpret_cast<Kanvo_OffsetARGB32>(dst); }
    const Kanvo_PixelARGB32* Argb32() const { return reinterpret_cast<const Kanvo_PixelARGB32*>(src); }
    const Kanvo_PixelRGB565* Rgb565() const { return reinterpret_cast<const Kanvo_PixelRGB565*>(src); }
};

//! What one pixel is made of. source: as it is stored.
struct PixelInput
{
    std::uint32_t under;
    std::uint32_t source;
    std::uint32_t color;
    int           mask;
    int           alpha;
};

//! A row function or a loop: how to call it, what it reads, and what one pixel is to become.
struct Function
{
    const char*   name;
    bool          isRow;
    std::uint32_t sourceBytes;  // of one pixel, 0 where there is no source
    bool          hasMask;
    void (*run)(const Arguments& with);
    std::uint32_t (*expect)(const PixelInput& with);

    friend std::ostream& operator<<(std::ostream& stream, const Function& function) { return stream << function.name; }
};

std::uint32_t Color565(const PixelInput& with)
{
    return reference::WordOfRgb565(with.source);
}

using With = const Arguments&;
using From = const PixelInput&;

const Function FUNCTIONS[] = {
    {"Fill", true, 0, false, [](With w) { g_Kanvo_pkRows->pfnFill(w.Dst(), w.width, w.color); },
     [](From f) { return f.color; }},
    {"FillMix", true, 0, false, [](With w) { g_Kanvo_pkRows->pfnFillMix(w.Dst(), w.width, w.color, w.alpha); },
     [](From f) { return support::BlitMixLinear(f.under, f.color, f.alpha); }},
    {"CopyBytes", true, 4, false, [](With w) { g_Kanvo_pkRows->pfnCopyBytes(w.dst, w.src, w.width * 4); },
     [](From f) { return f.source; }},
    {"Copy", true, 4, false, [](With w) { g_Kanvo_pkRows->pfnCopy(w.Dst(), w.Argb32(), w.width); },
     [](From f) { return f.source; }},
    {"CopyOpaque", true, 4, false, [](With w) { g_Kanvo_pkRows->pfnCopyOpaque(w.Dst(), w.Argb32(), w.width); },
     [](From f) { return f.source % 0x1000000U + 0xFF000000U; }},
    {"Over", true, 4, false, [](With w) { g_Kanvo_pkRows->pfnOver(w.Dst(), w.Argb32(), w.width, w.alpha); },
     [](From f) { return support::MixLinearSrcAlpha(f.under, f.source, f.alpha); }},
    {"BlendOrStore", true, 4, false,
     [](With w) { g_Kanvo_pkRows->pfnBlendOrStore(w.Dst(), w.Argb32(), w.width, w.alpha); },
     [](From f)
     {
         const int weight = support::MulByte(static_cast<int>(f.source >> 24), f.alpha);
         return weight == 255 ? f.source : support::MixLinear(f.under, f.source, weight);
     }},
    {"Stamp", true, 4, false, [](With w) { g_Kanvo_pkRows->pfnStamp(w.Dst(), w.Argb32(), w.width, w.alpha); },
     [](From f)
     {
         const std::uint32_t own = f.source >> 24;
         return own == 0 ? f.under : own == 255 ? f.source : support::MixLinear(f.under, f.source, f.alpha);
     }},
    {"BlendColor", true, 0, false, [](With w) { g_Kanvo_pkRows->pfnBlendColor(w.Dst(), w.width, w.color, w.alpha); },
     [](From f) { return support::MixLinear(f.under, f.color, f.alpha); }},
    {"ConvertA8", true, 0, true, [](With w) { g_Kanvo_pkRows->pfnConvertA8(w.Dst(), w.mask, w.width, w.color); },
     [](From f)
     {
         const auto level = static_cast<std::uint32_t>(f.mask);
         return (level << 24 | level << 16 | level << 8 | level) | f.color;
     }},
    {"Convert565", true, 2, false, [](With w) { g_Kanvo_pkRows->pfnConvert565(w.Dst(), w.Rgb565(), w.width); },
     Color565},
    {"Over565", true, 2, false, [](With w) { g_Kanvo_pkRows->pfnOver565(w.Dst(), w.Rgb565(), w.width, w.alpha); },
     [](From f) { return support::MixLinearSrcAlpha(f.under, Color565(f), f.alpha); }},
    {"StoreMask565", true, 2, true,
     [](With w) { g_Kanvo_pkRows->pfnStoreMask565(w.Dst(), w.Rgb565(), w.mask, w.width); },
     [](From f)
     { return f.mask == 0 ? f.under : Color565(f) % 0x1000000U + static_cast<unsigned>(f.mask) * 0x1000000U; }},
    {"BlendMask565", true, 2, true,
     [](With w) { g_Kanvo_pkRows->pfnBlendMask565(w.Dst(), w.Rgb565(), w.mask, w.width, w.alpha); },
     [](From f) { return support::MixLinear(f.under, Color565(f), support::MulByte(f.mask, f.alpha)); }},
    {"BlendMask", true, 4, true,
     [](With w) { g_Kanvo_pkRows->pfnBlendMask(w.Dst(), w.Argb32(), w.mask, w.width, w.alpha); },
     [](From f) { return support::MixLinear(f.under, f.source, support::MulByte(f.mask, f.alpha)); }},
    {"MixMask", true, 4, true, [](With w) { g_Kanvo_pkRows->pfnMixMask(w.Dst(), w.Argb32(), w.mask, w.width); },
     [](From f) { return support::BlitMixLinear(f.under, f.source % 0x1000000U + 0xFF000000U, f.mask); }},
    {"ColorMask", true, 0, true,
     [](With w) { g_Kanvo_pkRows->pfnColorMask(w.Dst(), w.mask, w.width, w.color, w.alpha); },
     [](From f) { return support::BlitMixLinear(f.under, f.color, support::MulByte(f.mask, f.alpha)); }},

    {"neonloops_fill_argb32", false, 0, false,
     [](With w) { neonloops_fill_argb32(w.Dst(), w.dstPitch, w.color, w.width, w.height); }, nullptr},
    {"neonloops_fill_argb32_ag", false, 0, false,
     [](With w) { neonloops_fill_argb32_ag(w.Dst(), w.dstPitch, w.color, w.width, w.height, w.alpha); }, nullptr},
    {"neonloops_blit_argb32_argb32", false, 4, false,
     [](With w) { neonloops_blit_argb32_argb32(w.Dst(), w.Argb32(), w.dstPitch, w.srcPitch, w.width, w.height); },
     nullptr},
    {"neonloops_blit_argb32_argb32_as_ag", false, 4, false,
     [](With w)
     { neonloops_blit_argb32_argb32_as_ag(w.Dst(), w.Argb32(), w.dstPitch, w.srcPitch, w.width, w.height, w.alpha); },
     nullptr},
    {"neonloops_blit_argb32_argb32_as", false, 4, false,
     [](With w) { neonloops_blit_argb32_argb32_as(w.Dst(), w.Argb32(), w.dstPitch, w.srcPitch, w.width, w.height); },
     nullptr},
    {"neonloops_blit_argb32_rgb565", false, 2, false,
     [](With w) { neonloops_blit_argb32_rgb565(w.Dst(), w.Rgb565(), w.dstPitch, w.srcPitch, w.width, w.height); },
     nullptr},
    {"neonloops_blit_argb32_rgb565_ag", false, 2, false,
     [](With w)
     { neonloops_blit_argb32_rgb565_ag(w.Dst(), w.Rgb565(), w.dstPitch, w.srcPitch, w.width, w.height, w.alpha); },
     nullptr},
    {"neonloops_blitcolor_argb32_a8", false, 0, true,
     [](With w)
     { neonloops_blitcolor_argb32_a8(w.Dst(), w.mask, w.dstPitch, w.maskPitch, w.color, w.width, w.height); },
     nullptr},
    {"neonloops_blitcolor_argb32_a8_ag", false, 0, true,
     [](With w) {
         neonloops_blitcolor_argb32_a8_ag(w.Dst(), w.mask, w.dstPitch, w.maskPitch, w.color, w.width, w.height,
                                          w.alpha);
     },
     nullptr},
    {"neonloops_blit_argb32_rgb565a8", false, 2, true,
     [](With w)
     {
         neonloops_blit_argb32_rgb565a8(w.Dst(), w.Rgb565(), w.mask, w.dstPitch, w.srcPitch, w.maskPitch, w.width,
                                        w.height);
     },
     nullptr},
    {"neonloops_blit_argb32_rgb565a8_as", false, 2, true,
     [](With w)
     {
         neonloops_blit_argb32_rgb565a8_as(w.Dst(), w.Rgb565(), w.mask, w.dstPitch, w.srcPitch, w.maskPitch, w.width,
                                           w.height);
     },
     nullptr},
    {"neonloops_blit_argb32_rgb565a8_as_ag", false, 2, true,
     [](With w)
     {
         neonloops_blit_argb32_rgb565a8_as_ag(w.Dst(), w.Rgb565(), w.mask, w.dstPitch, w.srcPitch, w.maskPitch, w.width,
                                              w.height, w.alpha);
     },
     nullptr},
};

std::vector<Function> RowFunctions()
{
    std::vector<Function> rows;
    std::copy_if(std::begin(FUNCTIONS), std::end(FUNCTIONS), std::back_inserter(rows),
                 [](const Function& function) { return function.isRow; });
    return rows;
}

//! Memory between two fences, out of which rows are cut.
class Arena
{
public:
    static constexpr std::size_t BYTES = 65536;

    //! Flush with the front fence, flush with the back fence, or somewhere between them.
    std::uint8_t* Place(std::size_t bytes, std::size_t step, Dice& dice)
    {
        const unsigned where = dice.Below(3);
        if (where == 0) return Begin();
        if (where == 1) return End() - bytes;
        return Begin() + 256 + dice.Below(64) * step;
    }
    std::uint8_t* Begin() { return m_fence.Data(); }
    std::uint8_t* End() { return m_fence.Data() + BYTES; }

private:
    support::Fence m_fence{BYTES};
};

//! What pixels are like: the shortcuts of a body are taken where neighbours are alike.
enum class Content
{
    Random,
    Hostile,  // bytes of 0 and 255 as often as others
    Runs      // alpha of 0, 255 or any, constant over stretches
};

void FillPixels(std::uint8_t* at, std::size_t count, Content content, Dice& dice)
{
    if (content == Content::Random)
    {
        dice.Fill(at, count);
        return;
    }
    std::size_t   left = 0;
    std::uint32_t keep = 0xFFFFFFFFU, set = 0;
    for (std::size_t index = 0; index < count; index += 4)
    {
        std::uint32_t word = dice.NextHostileWord();
        if (content == Content::Runs)
        {
            if (left-- == 0)
            {
                left                = dice.Below(70);
                const unsigned kind = dice.Below(4);
                keep                = kind < 3 ? 0x00FFFFFFU : 0xFFFFFFFFU;
                set                 = kind < 2 ? 0xFF000000U : 0;
            }
            word = (word & keep) | set;
        }
        std::memcpy(at + index, &word, std::min<std::size_t>(4, count - index));
    }
}

void FillCoverage(std::uint8_t* at, std::size_t count, Content content, Dice& dice)
{
    std::size_t left = 0;
    unsigned    kind = 0;
    for (std::size_t index = 0; index < count; ++index)
    {
        if (left-- == 0)
        {
            left = content == Content::Runs ? dice.Below(50) : 0;
            kind = dice.Below(content == Content::Random ? 1 : 4);
        }
        at[index] = kind == 1 ? 0 : kind == 2 ? 255 : dice.NextByte();
    }
}

//! Runs a function at a level on random pixels, the portable body on the same, and compares all memory around the target.
class TwinBench
{
public:
    //! Empty where all is well, else the difference.
    std::string Run(const Function& function, Kanvo_Level level, std::uint64_t seed)
    {
        Dice       dice(seed);
        const auto contents = {Content::Random, Content::Hostile, Content::Runs};
        Arguments  with;
        // short rows as often as long ones, and a few that take many turns
        with.width = dice.Below(dice.OneIn(2) ? 40 : 130);
        if (dice.OneIn(64)) with.width = dice.Below(1000);
        with.height    = function.isRow ? 1 : dice.Below(4);
        with.color     = dice.NextHostileWord();
        const auto any = dice.NextByte();
        with.alpha     = dice.Of<std::uint8_t>({0, 1, 2, 127, 128, 254, 255, 255, any, any, any});

        const std::uint32_t pads   = dice.Of({0U, 1U, 3U, 16U});
        with.dstPitch              = (with.width + pads) * 4;
        with.srcPitch              = (with.width + dice.Of({0U, 1U, 2U, 17U})) * function.sourceBytes;
        with.maskPitch             = with.width + dice.Of({0U, 1U, 2U, 17U});
        const std::size_t dstBytes = support::Fence::BytesFor(with.width, with.height, with.dstPitch, 4);
        const std::size_t srcBytes =
            support::Fence::BytesFor(with.width, with.height, with.srcPitch, function.sourceBytes);
        const std::size_t   maskBytes = support::Fence::BytesFor(with.width, with.height, with.maskPitch, 1);
        std::uint8_t* const src       = m_src.Place(srcBytes, std::max<std::uint32_t>(1, function.sourceBytes), dice);
        std::uint8_t* const mask      = m_mask.Place(maskBytes, 1, dice);
        with.dst                      = m_dst.Place(dstBytes, 4, dice);
        with.src                      = src;
        with.mask                     = mask;

        // some bytes around the target, as far as there are any
        std::uint8_t* const from = std::max(m_dst.Begin(), with.dst - 64);
        std::uint8_t* const to   = std::min(m_dst.End(), with.dst + dstBytes + 64);
        FillPixels(from, static_cast<std::size_t>(to - from), dice.Of(contents), dice);
        if (function.sourceBytes != 0) FillPixels(src, srcBytes, dice.Of(contents), dice);
        if (function.hasMask) FillCoverage(mask, maskBytes, dice.Of(contents), dice);

        m_before.assign(from, to);
        m_expected.assign(from, to);
        m_source.assign(src, src + (function.sourceBytes != 0 ? srcBytes : 0));
        m_coverage.assign(mask, mask + (function.hasMask ? maskBytes : 0));
        const std::size_t offset = static_cast<std::size_t>(with.dst - from);
        {
            const support::AtLevel portable(KL_PORTABLE);
            Arguments              twin = with;
            twin.dst                    = m_expected.data() + offset;
            function.run(twin);
        }
        {
            const support::AtLevel fast(level);
            function.run(with);
        }
        if (!std::equal(m_source.begin(), m_source.end(), src)) return Described(function, with) + "the source changed";
        if (!std::equal(m_coverage.begin(), m_coverage.end(), mask))
            return Described(function, with) + "the mask changed";
        if (std::memcmp(from, m_expected.data(), m_expected.size()) == 0) return {};
        return Described(function, with) + FirstDifference(with, from, offset);
    }

private:
    static std::string Described(const Function& function, const Arguments& with)
    {
        char text[200];
        std::snprintf(text, sizeof text,
                      "%s, width %u, height %u, pitches %u %u %u, colour %08X, alpha %u: ", function.name, with.width,
                      with.height, with.dstPitch, with.srcPitch, with.maskPitch, with.color, with.alpha);
        return text;
    }

    std::string FirstDifference(const Arguments& with, const std::uint8_t* from, std::size_t offset) const
    {
        std::size_t index = 0;
        while (from[index] == m_expected[index]) ++index;
        // whole pixels, counted from the target's first
        const auto          distance = static_cast<std::ptrdiff_t>(index) - static_cast<std::ptrdiff_t>(offset);
        const std::size_t   begin = distance < 0 ? index / 4 * 4 : offset + static_cast<std::size_t>(distance) / 4 * 4;
        std::uint32_t       words[3] = {};
        const std::uint8_t* sides[]  = {m_before.data(), m_expected.data(), from};
        for (int side = 0; side < 3; ++side)
            std::memcpy(&words[side], sides[side] + begin, std::min<std::size_t>(4, m_expected.size() - begin));
        char text[160];
        std::snprintf(text, sizeof text, "byte %td of the target, pitch %u: %08X became %08X, expected %08X", distance,
                      with.dstPitch, words[0], words[2], words[1]);
        return text;
    }

    Arena                     m_dst;
    Arena                     m_src;
    Arena                     m_mask;
    std::vector<std::uint8_t> m_before;
    std::vector<std::uint8_t> m_expected;
    std::vector<std::uint8_t> m_source;
    std::vector<std::uint8_t> m_coverage;
};

using FunctionAtLevel = testing::TestWithParam<std::tuple<Kanvo_Level, Function>>;

class Rows : public FunctionAtLevel
{
protected:
    static const Function& Of() { return std::get<Function>(GetParam()); }
    static Kanvo_Level     Level() { return std::get<Kanvo_Level>(GetParam()); }
};

//! The row functions alone, at every level.
class RowsNaive : public Rows
{
};

std::string NameOf(const testing::TestParamInfo<Rows::ParamType>& info)
{
    return std::string(std::get<Function>(info.param).name) + "_" + Kanvo_LevelName(std::get<Kanvo_Level>(info.param));
}

}  // namespace

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Rows);  // on a machine that has the portable level only
INSTANTIATE_TEST_SUITE_P(All, Rows,
                         testing::Combine(testing::ValuesIn(support::FastLevelsHere()), testing::ValuesIn(FUNCTIONS)),
                         NameOf);
INSTANTIATE_TEST_SUITE_P(All, RowsNaive,
                         testing::Combine(testing::ValuesIn(support::LevelsHere()), testing::ValuesIn(RowFunctions())),
                         NameOf);

// ---- against the portable bodies ------------------------------------------------------------------------------------

TEST_P(Rows, RandomRowsAreThoseOfThePortableBody)
{
    // Over all functions two million cases, each to be replayed by its seed as in Dice.h.
    const support::Seeds seeds(KANVO_TEST_SANITIZED ? 10000 : 2000000 / std::size(FUNCTIONS) + 1);
    TwinBench            bench;
    support::CrashNote   note(Of().name);
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        note.InCase(seeds.first + index);
        const std::string failure = bench.Run(Of(), Level(), seeds.first + index);
        ASSERT_EQ(failure, "") << "seed " << seeds.first + index;
    }
}

// ---- against the naive blends ---------------------------------------------------------------------------------------

TEST_P(RowsNaive, EveryWidthAtEveryAlignmentBetweenFences)
{
    const Function&        function = Of();
    const support::AtLevel level(Level());
    Dice                   dice(5);
    support::CrashNote     note(function.name);
    for (std::uint32_t width = 0; width <= 129; ++width)
    {
        note.InCase(width);
        // all three flush with the same fence, then with the other one, or apart from it by all residues of 16 and more
        for (unsigned turn = 0; turn < 2 + 16; ++turn)
        {
            const auto     end = turn % 2 == 0 ? support::Against::BackFence : support::Against::FrontFence;
            const unsigned gap = turn < 2 ? 0 : turn - 2;
            // every gap against every other one in the course of the widths
            const unsigned gaps[] = {gap, gap == 0 ? 0 : (gap * 7 + width) % 16,
                                     gap == 0 ? 0 : (gap * 5 + width / 3) % 16};
            support::Fence dst((width + gaps[0]) * 4, end);
            support::Fence src((width + gaps[1]) * function.sourceBytes, end);
            support::Fence mask(function.hasMask ? width + gaps[2] : 0, end);
            const auto behind = [&](unsigned which) { return end == support::Against::FrontFence ? gaps[which] : 0; };

            Arguments with;
            with.width = width;
            with.dst   = dst.Data() + behind(0) * 4;
            with.src   = src.Data() + behind(1) * function.sourceBytes;
            with.mask  = mask.Data() + (function.hasMask ? behind(2) : 0);
            with.color = dice.NextHostileWord();
            with.alpha = dice.NextByte();
            FillPixels(dst.Data(), dst.Size(), dice.OneIn(2) ? Content::Runs : Content::Hostile, dice);
            FillPixels(src.Data(), src.Size(), Content::Hostile, dice);
            FillCoverage(mask.Data(), mask.Size(), Content::Hostile, dice);

            std::vector<std::uint8_t> expected(dst.Data(), dst.Data() + dst.Size());
            for (std::uint32_t x = 0; x < width; ++x)
            {
                PixelInput input{0, 0, with.color, function.hasMask ? with.mask[x] : 0, with.alpha};
                std::memcpy(&input.under, with.dst + x * 4, 4);
                std::memcpy(&input.source, with.src + x * function.sourceBytes, function.sourceBytes);
                const std::uint32_t word = function.expect(input);
                std::memcpy(&expected[static_cast<std::size_t>(with.dst - dst.Data()) + x * 4], &word, 4);
            }
            function.run(with);
            ASSERT_TRUE(std::equal(expected.begin(), expected.end(), dst.Data()))
                << "width " << width << ", gaps " << gaps[0] << " " << gaps[1] << " " << gaps[2] << ", alpha "
                << unsigned{with.alpha} << ", colour " << with.color;
            ASSERT_TRUE(dst.IsSlackUntouched());
        }
    }
}

TEST_P(RowsNaive, ChannelTriplesOfEachPixelUnderEachOneAtEachAlpha)
{
    // For each alpha 256 rows, one per value of what is drawn, over 256 pixels, one per value of what is there. Alpha, as
    // far as the function has any, is in turn that of the call, of the mask, and of the source's pixels.
    constexpr unsigned     SIDE     = 256;
    const Function&        function = Of();
    const support::AtLevel level(Level());
    const unsigned         rows = function.sourceBytes == 2 ? 64 : SIDE;  // 64 hold every value of an RGB565 channel
    const unsigned         step = KANVO_TEST_SANITIZED ? 5 : 1;

    std::vector<std::uint32_t> under(SIDE), target(SIDE), source(SIDE);
    std::vector<std::uint16_t> halves(SIDE);
    std::vector<std::uint8_t>  mask(SIDE);
    support::Differences       differences;
    for (unsigned pass = 0; pass < 2; ++pass)
    {
        // over opaque pixels, then over pixels of every alpha
        for (unsigned x = 0; x < SIDE; ++x)
            under[x] = (pass == 0 ? 0xFF000000U : x << 24) | x << 16 | (255 - x) << 8 | (x ^ 0x5AU);
        for (unsigned alpha = 0; alpha < SIDE; alpha += step)
        {
            for (unsigned row = 0; row < rows; row += step)
            {
                const std::uint32_t color = alpha << 24 | row << 16 | (255 - row) << 8 | row;
                const bool          full  = function.hasMask || function.sourceBytes == 4;  // alpha is elsewhere
                Arguments           with;
                with.width = SIDE;
                with.alpha = static_cast<std::uint8_t>(full ? 255 : alpha);
                with.color = color | (full ? 0xFF000000U : 0);
                with.dst   = reinterpret_cast<std::uint8_t*>(target.data());
                with.mask  = mask.data();
                std::fill(mask.begin(), mask.end(), static_cast<std::uint8_t>(alpha));
                std::fill(source.begin(), source.end(), color);
                std::fill(halves.begin(), halves.end(),
                          static_cast<std::uint16_t>((row & 31) << 11 | row << 5 | (31 - (row & 31))));
                with.src = function.sourceBytes == 2 ? reinterpret_cast<const std::uint8_t*>(halves.data())
                                                     : reinterpret_cast<const std::uint8_t*>(source.data());
                target   = under;
                function.run(with);
                const std::uint32_t stored = function.sourceBytes == 2 ? halves[0] : color;
                for (unsigned x = 0; x < SIDE; ++x)
                {
                    const std::uint32_t expected =
                        function.expect({under[x], stored, with.color, static_cast<int>(alpha), with.alpha});
                    if (target[x] != expected)
                        differences.Note("%s: %08X over %08X, alpha %u: expected %08X, got %08X", function.name, stored,
                                         under[x], alpha, expected, target[x]);
                }
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST_P(RowsNaive, EachPixelIsReadAfterTheOneBeforeItWasWritten)
{
    // Target, source and mask in one piece of memory, at every distance up to two rows either way.
    const Function& function = Of();
    if (function.sourceBytes == 0 && !function.hasMask) return;
    const support::AtLevel level(Level());
    constexpr int          WIDTH = 41, ORIGIN = 400;
    Dice                   dice(11);
    const unsigned         step = function.sourceBytes == 0 ? 1 : function.sourceBytes;
    for (int distance = -2 * WIDTH; distance <= 2 * WIDTH; ++distance)
    {
        // first the source shares memory with the target, then the mask
        for (const bool maskShares : {false, true})
        {
            if (maskShares ? !function.hasMask : function.sourceBytes == 0) continue;
            alignas(4) std::uint8_t memory[1024], expected[1024], apart[1024];
            FillPixels(memory, sizeof memory, dice.OneIn(2) ? Content::Runs : Content::Hostile, dice);
            FillPixels(apart, sizeof apart, Content::Hostile, dice);
            std::memcpy(expected, memory, sizeof memory);
            const std::ptrdiff_t shared = ORIGIN + distance * static_cast<int>(maskShares ? 1 : step);
            Arguments            with;
            with.width = WIDTH;
            with.color = dice.NextHostileWord();
            with.alpha = dice.NextByte();
            with.dst   = memory + ORIGIN;
            with.src   = maskShares ? apart : memory + shared;
            with.mask  = maskShares ? memory + shared : apart + 512;
            for (int x = 0; x < WIDTH; ++x)
            {
                const std::uint8_t* const src =
                    (maskShares ? apart : expected + shared) + x * static_cast<int>(function.sourceBytes);
                PixelInput input{0, 0, with.color, maskShares ? expected[shared + x] : apart[512 + x], with.alpha};
                std::memcpy(&input.under, expected + ORIGIN + x * 4, 4);
                std::memcpy(&input.source, src, function.sourceBytes);
                const std::uint32_t word = function.expect(input);
                std::memcpy(expected + ORIGIN + x * 4, &word, 4);
            }
            function.run(with);
            ASSERT_EQ(std::memcmp(memory, expected, sizeof memory), 0)
                << "distance " << distance << (maskShares ? ", mask" : ", source") << ", alpha "
                << unsigned{with.alpha};
        }
    }
}

// ---- row functions that do not draw ----------------------------------------------------------------------------------

namespace
{

class RowsRead : public testing::TestWithParam<Kanvo_Level>
{
private:
    support::AtLevel m_level{GetParam()};
};

std::string NameOfLevel(const testing::TestParamInfo<Kanvo_Level>& info)
{
    return Kanvo_LevelName(info.param);
}

//! Both ways to lie against a fence, at a distance of every residue of 16.
template <class Visit>
void ForEachPlace(Visit visit)
{
    for (const auto end : {support::Against::BackFence, support::Against::FrontFence})
    {
        for (unsigned gap = 0; gap < 16; ++gap) visit(end, gap);
    }
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(All, RowsRead, testing::ValuesIn(support::LevelsHere()), NameOfLevel);

TEST_P(RowsRead, TakeAlphaOfEveryWidthAtEveryAlignmentBetweenFences)
{
    Dice               dice(6);
    support::CrashNote note("TakeAlpha");
    for (std::uint32_t width = 0; width <= 129; ++width)
    {
        note.InCase(width);
        ForEachPlace(
            [&](support::Against end, unsigned gap)
            {
                const unsigned      srcGap = gap == 0 ? 0 : (gap * 7 + width) % 16;
                const bool          front  = end == support::Against::FrontFence;
                support::Fence      dst(width + gap, end), src((width + srcGap) * 4, end);
                std::uint8_t* const to   = dst.Data() + (front ? gap : 0);
                std::uint8_t* const from = src.Data() + (front ? srcGap * 4 : 0);
                dice.Fill(dst.Data(), dst.Size());
                FillPixels(src.Data(), src.Size(), Content::Hostile, dice);
                std::vector<std::uint8_t> expected(dst.Data(), dst.Data() + dst.Size());
                for (std::uint32_t x = 0; x < width; ++x)
                {
                    std::uint32_t word = 0;
                    std::memcpy(&word, from + x * 4, 4);
                    expected[static_cast<std::size_t>(to - dst.Data()) + x] = static_cast<std::uint8_t>(word >> 24);
                }
                g_Kanvo_pkRows->pfnTakeAlpha(to, reinterpret_cast<const Kanvo_PixelARGB32*>(from), width);
                ASSERT_TRUE(std::equal(expected.begin(), expected.end(), dst.Data()))
                    << "width " << width << ", gaps " << gap << " " << srcGap;
                ASSERT_TRUE(dst.IsSlackUntouched());
            });
    }
}

TEST_P(RowsRead, TakeAlphaReadsEachPixelAfterTheByteBeforeItWasWritten)
{
    constexpr int WIDTH = 41, ORIGIN = 400;
    Dice          dice(12);
    for (int distance = -4 * WIDTH; distance <= WIDTH; ++distance)
    {
        alignas(4) std::uint8_t memory[1024], expected[1024];
        dice.Fill(memory, sizeof memory);
        std::memcpy(expected, memory, sizeof memory);
        for (int x = 0; x < WIDTH; ++x)
        {
            std::uint32_t word = 0;
            std::memcpy(&word, expected + ORIGIN + x * 4, 4);
            expected[ORIGIN - distance + x] = static_cast<std::uint8_t>(word >> 24);
        }
        g_Kanvo_pkRows->pfnTakeAlpha(memory + ORIGIN - distance,
                                     reinterpret_cast<const Kanvo_PixelARGB32*>(memory + ORIGIN), WIDTH);
        ASSERT_EQ(std::memcmp(memory, expected, sizeof memory), 0) << "distance " << distance;
    }
}

TEST_P(RowsRead, IsOpaqueFindsTheOnePixelThatIsNot)
{
    Dice               dice(7);
    support::CrashNote note("IsOpaque");
    for (std::uint32_t width = 0; width <= 129; ++width)
    {
        note.InCase(width);
        ForEachPlace(
            [&](support::Against end, unsigned gap)
            {
                support::Fence      fence((width + gap) * 4, end);
                std::uint8_t* const at   = fence.Data() + (end == support::Against::FrontFence ? gap * 4 : 0);
                const auto* const   row  = reinterpret_cast<const Kanvo_PixelARGB32*>(at);
                const auto          keep = [&](std::uint32_t x, std::uint8_t alpha) { at[x * 4 + 3] = alpha; };
                dice.Fill(fence.Data(), fence.Size());  // beside the row anything may lie
                for (std::uint32_t x = 0; x < width; ++x) keep(x, 255);
                ASSERT_TRUE(g_Kanvo_pkRows->pfnIsOpaque(row, width)) << "width " << width << ", gap " << gap;
                for (std::uint32_t x = 0; x < width; ++x)
                {
                    keep(x, dice.Of<std::uint8_t>({0, 127, 254}));
                    ASSERT_FALSE(g_Kanvo_pkRows->pfnIsOpaque(row, width)) << "width " << width << ", pixel " << x;
                    keep(x, 255);
                }
            });
    }
}

// ---- selection ------------------------------------------------------------------------------------------------------

namespace
{

class Levels : public testing::Test
{
protected:
    ~Levels() override
    {
        unsetenv("KANVO_LEVEL");
        Kanvo_SelectRows(KL_BEST);
    }

    static Kanvo_Level Best() { return support::LevelsHere().back(); }
};

//! Tests of a program in which no level was selected yet, as each is that ctest starts.
class LevelsAtStart : public Levels
{
protected:
    void SetUp() override
    {
        if (g_Kanvo_pkRows->eLevel != KL_BEST) GTEST_SKIP() << "only in a program of its own";
    }

    //! The level after the first library object, as exit code.
    [[noreturn]] static void StartAndTell(const char* wanted)
    {
        if (wanted != nullptr)
            setenv("KANVO_LEVEL", wanted, 1);
        else
            unsetenv("KANVO_LEVEL");
        if (Kanvo_SelectedRows() != KL_PORTABLE) std::_Exit(100);
        const Kanvo library;
        std::_Exit(Kanvo_SelectedRows());
    }
};

}  // namespace

TEST_F(Levels, EachOfThisMachineCanBeSelected)
{
    for (const Kanvo_Level level : support::LevelsHere())
    {
        EXPECT_EQ(Kanvo_SelectRows(level), level);
        EXPECT_EQ(Kanvo_SelectedRows(), level);
    }
}

TEST_F(Levels, OneThatIsNotThereGivesTheBestThatIs)
{
    unsetenv("KANVO_LEVEL");
    const std::vector<Kanvo_Level> here = support::LevelsHere();
    for (unsigned number = 0; number < 256; ++number)
    {
        const auto level = static_cast<Kanvo_Level>(number);
        if (std::count(here.begin(), here.end(), level) != 0) continue;
        EXPECT_EQ(Kanvo_SelectRows(level), Best()) << number;
        EXPECT_EQ(Kanvo_SelectedRows(), Best()) << number;
    }
}

TEST_F(Levels, HaveNamesThatTheEnvironmentUses)
{
    EXPECT_STREQ(Kanvo_LevelName(KL_PORTABLE), "portable");
    EXPECT_STREQ(Kanvo_LevelName(KL_NEON), "neon");
    EXPECT_STREQ(Kanvo_LevelName(KL_AVX2), "avx2");
    EXPECT_EQ(Kanvo_LevelName(KL_QUANTITY), nullptr);
    EXPECT_EQ(Kanvo_LevelName(KL_BEST), nullptr);
}

TEST_F(Levels, ALaterLibraryObjectLeavesTheSelectionAlone)
{
    for (const Kanvo_Level level : support::LevelsHere())
    {
        Kanvo_SelectRows(level);
        const Kanvo library;
        EXPECT_EQ(Kanvo_SelectedRows(), level);
    }
}

TEST_F(Levels, AnExplicitLevelIsStrongerThanTheEnvironment)
{
#if !defined(__unix__) && !defined(__APPLE__)
    GTEST_SKIP() << "the library asks no environment here";
#endif
    setenv("KANVO_LEVEL", "portable", 1);
    EXPECT_EQ(Kanvo_SelectRows(Best()), Best());
    EXPECT_EQ(Kanvo_SelectRows(KL_BEST), KL_PORTABLE);
    unsetenv("KANVO_LEVEL");
    EXPECT_EQ(Kanvo_SelectRows(KL_BEST), Best());
}

TEST_F(LevelsAtStart, TheFirstLibraryObjectChoosesTheBest)
{
    EXPECT_EXIT(StartAndTell(nullptr), testing::ExitedWithCode(Best()), "");
}

TEST_F(LevelsAtStart, TheFirstLibraryObjectAsksTheEnvironment)
{
    for (const Kanvo_Level level : support::LevelsHere())
    {
        EXPECT_EXIT(StartAndTell(Kanvo_LevelName(level)), testing::ExitedWithCode(level), "");
    }
}

TEST_F(LevelsAtStart, AnEnvironmentThatNamesNoLevelOfThisMachineChangesNothing)
{
    for (const char* const name : {"", "AVX2", "avx", "best", "portable ", "sse9"})
    {
        EXPECT_EXIT(StartAndTell(name), testing::ExitedWithCode(Best()), "") << name;
    }
#if defined(__x86_64__)
    EXPECT_EXIT(StartAndTell("neon"), testing::ExitedWithCode(Best()), "");
#endif
}
