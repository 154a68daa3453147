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
#include "RandomRows.h"
#include "Reference_Blit.h"
#include "Speed.h"
#include "Sweep.h"

namespace
{

using support::Arena;
using support::Content;
using support::Dice;
using support::Lies;

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
    Tov_Bool*           answer    = nullptr;  // of a function that draws nothing

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
    std::uint32_t (*expect)(const PixelInput& with);  // null where nothing is drawn, or others look at it
    std::uint32_t targetBytes = 4;                    // of one pixel, 0 where nothing is drawn

    friend std::ostream& operator<<(std::ostream& stream, const Function& function) { return stream << function.name; }
};

std::uint32_t Color565(const PixelInput& with)
{
    return reference::WordOfRgb565(with.source);
}

std::uint32_t StoredMask565(const PixelInput& with)
{
    const auto alpha = static_cast<std::uint32_t>(with.mask);
    return alpha == 0 ? with.under : Color565(with) % 0x1000000U + alpha * 0x1000000U;
}

std::uint32_t BlendedMask565(const PixelInput& with)
{
    return support::MixLinear(with.under, Color565(with), support::MulByte(with.mask, with.alpha));
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
     [](With w) { g_Kanvo_pkRows->pfnStoreMask565(w.Dst(), w.Rgb565(), w.mask, w.width); }, StoredMask565},
    {"BlendMask565", true, 2, true,
     [](With w) { g_Kanvo_pkRows->pfnBlendMask565(w.Dst(), w.Rgb565(), w.mask, w.width, w.alpha); }, BlendedMask565},
    {"BlendMask", true, 4, true,
     [](With w) { g_Kanvo_pkRows->pfnBlendMask(w.Dst(), w.Argb32(), w.mask, w.width, w.alpha); },
     [](From f) { return support::MixLinear(f.under, f.source, support::MulByte(f.mask, f.alpha)); }},
    {"MixMask", true, 4, true, [](With w) { g_Kanvo_pkRows->pfnMixMask(w.Dst(), w.Argb32(), w.mask, w.width); },
     [](From f) { return support::BlitMixLinear(f.under, f.source % 0x1000000U + 0xFF000000U, f.mask); }},
    {"ColorMask", true, 0, true,
     [](With w) { g_Kanvo_pkRows->pfnColorMask(w.Dst(), w.mask, w.width, w.color, w.alpha); },
     [](From f) { return support::BlitMixLinear(f.under, f.color, support::MulByte(f.mask, f.alpha)); }},
    {"TakeAlpha", true, 4, false, [](With w) { g_Kanvo_pkRows->pfnTakeAlpha(w.dst, w.Argb32(), w.width); },
     [](From f) { return f.source >> 24; }, 1},
    {"IsOpaque", true, 4, false, [](With w) { *w.answer = g_Kanvo_pkRows->pfnIsOpaque(w.Argb32(), w.width); }, nullptr,
     0},

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
     StoredMask565},
    {"neonloops_blit_argb32_rgb565a8_as", false, 2, true,
     [](With w)
     {
         neonloops_blit_argb32_rgb565a8_as(w.Dst(), w.Rgb565(), w.mask, w.dstPitch, w.srcPitch, w.maskPitch, w.width,
                                           w.height);
     },
     [](From f) { return support::MixLinear(f.under, Color565(f), f.mask); }},
    {"neonloops_blit_argb32_rgb565a8_as_ag", false, 2, true,
     [](With w)
     {
         neonloops_blit_argb32_rgb565a8_as_ag(w.Dst(), w.Rgb565(), w.mask, w.dstPitch, w.srcPitch, w.maskPitch, w.width,
                                              w.height, w.alpha);
     },
     BlendedMask565},
};

//! Those that test_neonloops.cpp does not hold to naive blends.
std::vector<Function> NaiveFunctions()
{
    std::vector<Function> all;
    std::copy_if(std::begin(FUNCTIONS), std::end(FUNCTIONS), std::back_inserter(all),
                 [](const Function& function) { return function.expect != nullptr; });
    return all;
}

//! A pixel of the target.
std::uint32_t ReadPixel(const Function& function, const std::uint8_t* at)
{
    std::uint32_t pixel = *at;
    if (function.targetBytes == 4) std::memcpy(&pixel, at, 4);
    return pixel;
}

//! Draws one row pixel by pixel as expected, each read after the one before it was written. dst: in place of with.dst.
void DrawExpected(const Function& function, const Arguments& with, std::uint8_t* dst)
{
    for (std::uint32_t x = 0; x < with.width; ++x, dst += function.targetBytes)
    {
        PixelInput input{ReadPixel(function, dst), 0, with.color, function.hasMask ? with.mask[x] : 0, with.alpha};
        std::memcpy(&input.source, with.src + x * function.sourceBytes, function.sourceBytes);
        const std::uint32_t pixel = function.expect(input);
        if (function.targetBytes == 4)
            std::memcpy(dst, &pixel, 4);
        else
            *dst = static_cast<std::uint8_t>(pixel);
    }
}

//! Runs a function at a level on random pixels, the portable body on the same, and compares all memory around the target.
class TwinBench
{
public:
    //! Empty where all is well, else the difference. Leaves the level in force.
    std::string Run(const Function& function, Kanvo_Level level, std::uint64_t seed)
    {
        Dice      dice(seed);
        Tov_Bool  answer = false;
        Arguments with;
        with.width     = dice.Below(dice.OneIn(64) ? 1000 : 130);  // a few that take many turns
        with.height    = function.isRow ? 1 : dice.Below(4);
        with.color     = dice.NextHostileWord();
        with.answer    = &answer;
        const auto any = dice.NextByte();
        with.alpha     = dice.Of<std::uint8_t>({0, 1, 2, 127, 128, 254, 255, 255, any, any, any});

        with.dstPitch              = (with.width + dice.Of({0U, 1U, 3U, 16U})) * function.targetBytes;
        const std::size_t dstBytes = BytesOf(with, with.dstPitch, function.targetBytes);
        with.dst                   = m_dst.AnyPlace(dstBytes, std::max<std::uint32_t>(1, function.targetBytes), dice);
        if (function.sourceBytes != 0)
        {
            with.srcPitch = (with.width + dice.Of({0U, 1U, 2U, 17U})) * function.sourceBytes;
            m_source.Put(m_src, BytesOf(with, with.srcPitch, function.sourceBytes), function.sourceBytes, dice,
                         [&](std::size_t bytes) { return m_stock.Pixels(bytes, dice); });
            with.src = m_source.at;
        }
        if (function.hasMask)
        {
            with.maskPitch = with.width + dice.Of({0U, 1U, 2U, 17U});
            m_coverage.Put(m_mask, BytesOf(with, with.maskPitch, 1), 1, dice,
                           [&](std::size_t bytes) { return m_stock.Coverage(bytes, dice); });
            with.mask = m_coverage.at;
        }
        std::uint8_t* const from   = m_dst.Before(with.dst);
        const auto          all    = static_cast<std::size_t>(m_dst.Behind(with.dst + dstBytes) - from);
        const auto          offset = static_cast<std::size_t>(with.dst - from);
        m_before                   = m_stock.Pixels(all, dice);
        std::memcpy(from, m_before, all);
        std::memcpy(m_expected.data(), m_before, all);

        Tov_Bool  expected = false;
        Arguments twin     = with;
        twin.dst           = m_expected.data() + offset;
        twin.answer        = &expected;
        Kanvo_SelectRows(KL_PORTABLE);
        function.run(twin);
        Kanvo_SelectRows(level);
        function.run(with);

        if (function.sourceBytes != 0 && m_source.Changed()) return Described(function, with) + "the source changed";
        if (function.hasMask && m_coverage.Changed()) return Described(function, with) + "the mask changed";
        if (answer != expected) return Described(function, with) + "another answer";
        if (std::memcmp(from, m_expected.data(), all) == 0) return {};
        return Described(function, with) + FirstDifference(with, from, all, offset);
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

    std::string FirstDifference(const Arguments& with, const std::uint8_t* from, std::size_t all,
                                std::size_t offset) const
    {
        std::size_t index = 0;
        while (from[index] == m_expected[index]) ++index;
        // whole pixels, counted from the target's first
        const auto          distance = static_cast<std::ptrdiff_t>(index) - static_cast<std::ptrdiff_t>(offset);
        const std::size_t   begin = distance < 0 ? index / 4 * 4 : offset + static_cast<std::size_t>(distance) / 4 * 4;
        std::uint32_t       words[3] = {};
        const std::uint8_t* sides[]  = {m_before, m_expected.data(), from};
        for (int side = 0; side < 3; ++side)
            std::memcpy(&words[side], sides[side] + begin, std::min<std::size_t>(4, all - begin));
        char text[160];
        std::snprintf(text, sizeof text, "byte %td of the target, pitch %u: %08X became %08X, expected %08X", distance,
                      with.dstPitch, words[0], words[2], words[1]);
        return text;
    }

    static std::size_t BytesOf(const Arguments& with, std::size_t pitch, std::size_t pixelBytes)
    {
        return support::Fence::BytesFor(with.width, with.height, pitch, pixelBytes);
    }

    //! Something to read: what it was copied from, and where to.
    struct Given
    {
        const std::uint8_t* from  = nullptr;
        std::uint8_t*       at    = nullptr;
        std::size_t         bytes = 0;

        template <class Cut>
        void Put(Arena& arena, std::size_t count, std::size_t step, Dice& dice, Cut cut)
        {
            bytes = count;
            from  = cut(bytes);
            at    = arena.AnyPlace(bytes, step, dice);
            arena.Put(at, from, bytes);
        }
        bool Changed() const { return std::memcmp(at, from, bytes) != 0; }
    };

    support::Stock            m_stock;
    Arena                     m_dst;
    Arena                     m_src;
    Arena                     m_mask;
    Given                     m_source;
    Given                     m_coverage;
    const std::uint8_t*       m_before   = nullptr;
    std::vector<std::uint8_t> m_expected = std::vector<std::uint8_t>(support::Stock::BYTES);
};

using FunctionAtLevel = testing::TestWithParam<std::tuple<Kanvo_Level, Function>>;

class Rows : public FunctionAtLevel
{
protected:
    static const Function& Of() { return std::get<Function>(GetParam()); }
    static Kanvo_Level     Level() { return std::get<Kanvo_Level>(GetParam()); }
};

//! The row functions, and loops, at every level.
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
                         testing::Combine(testing::ValuesIn(support::LevelsHere()),
                                          testing::ValuesIn(NaiveFunctions())),
                         NameOf);

// ---- against the portable bodies ------------------------------------------------------------------------------------

TEST_P(Rows, RandomRowsAreThoseOfThePortableBody)
{
    // Each to be replayed by its seed as in Dice.h.
    const support::AtLevel level(Level());
    const support::Seeds   seeds(support::CasesOf(2000000));
    TwinBench              bench;
    support::CrashNote     note(Of().name);
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
    const support::Stock   stock;
    Arena                  targets, sources, masks;
    const auto             targetPlaces = support::EveryPosition(function.targetBytes);
    const auto             sourcePlaces = support::EveryPosition(std::max<std::uint32_t>(1, function.sourceBytes));
    const auto             maskPlaces   = support::EveryPosition(1);
    const auto             readPlaces   = std::max<std::size_t>(function.sourceBytes != 0 ? sourcePlaces.size() : 1,
                                                  function.hasMask ? maskPlaces.size() : 1);
    for (std::uint32_t width = 0; width <= 129; ++width)
    {
        note.InCase(width);
        const std::size_t dstBytes = width * function.targetBytes, srcBytes = width * function.sourceBytes;
        Arguments         with;
        with.width = width;
        with.color = dice.NextHostileWord();
        with.alpha = dice.NextByte();
        with.src   = stock.Pixels(srcBytes, dice);
        with.mask  = stock.Coverage(width, dice);

        const std::uint8_t* const before = stock.Pixels(64 + dstBytes + 64, dice);
        std::vector<std::uint8_t> expected(before, before + 64 + dstBytes + 64);
        DrawExpected(function, with, &expected[64]);
        for (const auto& [dstLies, dstOffset] : targetPlaces)
        {
            std::uint8_t* const       dst  = targets.Place(dstLies, dstBytes, dstOffset);
            std::uint8_t* const       from = targets.Before(dst);
            const std::size_t         head = static_cast<std::size_t>(dst - from);
            const std::size_t         all  = static_cast<std::size_t>(targets.Behind(dst + dstBytes) - from);
            const std::uint8_t* const as   = &expected[64 - head];
            // each place of the target with each of the source and each of the mask
            for (std::size_t read = 0; read < readPlaces; ++read)
            {
                const auto& [srcLies, srcOffset]   = sourcePlaces[(read + width) % sourcePlaces.size()];
                const auto& [maskLies, maskOffset] = maskPlaces[read % maskPlaces.size()];
                std::uint8_t* const src            = sources.Place(srcLies, srcBytes, srcOffset);
                std::uint8_t* const mask           = masks.Place(maskLies, width, maskOffset);
                sources.Put(src, with.src, srcBytes);
                masks.Put(mask, with.mask, width);
                std::memcpy(from, before + 64 - head, all);
                Arguments placed = with;
                placed.dst       = dst;
                placed.src       = src;
                placed.mask      = mask;
                function.run(placed);
                ASSERT_EQ(std::memcmp(from, as, all), 0)
                    << "width " << width << ", bytes from the fence in front " << dst - targets.Begin() << " "
                    << src - sources.Begin() << " " << mask - masks.Begin() << ", alpha " << unsigned{with.alpha}
                    << ", colour " << with.color;
            }
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
    const unsigned         step = support::Sanitized ? 5 : 1;

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
                    const std::uint32_t got = ReadPixel(function, with.dst + x * function.targetBytes);
                    if (got != expected)
                        differences.Note("%s: %08X over %08X, alpha %u: expected %08X, got %08X", function.name, stored,
                                         under[x], alpha, expected, got);
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
            with.width     = WIDTH;
            with.color     = dice.NextHostileWord();
            with.alpha     = dice.NextByte();
            with.dst       = memory + ORIGIN;
            with.src       = maskShares ? apart : memory + shared;
            with.mask      = maskShares ? memory + shared : apart + 512;
            Arguments twin = with;  // the same in the copy
            twin.src       = maskShares ? apart : expected + shared;
            twin.mask      = maskShares ? expected + shared : apart + 512;
            DrawExpected(function, twin, expected + ORIGIN);
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

}  // namespace

INSTANTIATE_TEST_SUITE_P(All, RowsRead, testing::ValuesIn(support::LevelsHere()), NameOfLevel);

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
    Arena              arena;
    for (std::uint32_t width = 0; width <= 129; ++width)
    {
        note.InCase(width);
        for (const auto& [lies, offset] : support::EveryPosition(4))
        {
            std::uint8_t* const at    = arena.Place(lies, width * 4, offset);
            const auto* const   row   = reinterpret_cast<const Kanvo_PixelARGB32*>(at);
            std::uint8_t* const from  = arena.Before(at);
            std::uint8_t* const until = arena.Behind(at + width * 4);
            const auto          keep  = [&](std::uint32_t x, std::uint8_t alpha) { at[x * 4 + 3] = alpha; };
            dice.Fill(from, static_cast<std::size_t>(until - from));  // beside the row anything may lie
            for (std::uint32_t x = 0; x < width; ++x) keep(x, 255);
            ASSERT_TRUE(g_Kanvo_pkRows->pfnIsOpaque(row, width)) << "width " << width << ", offset " << offset;
            for (std::uint32_t x = 0; x < width; ++x)
            {
                keep(x, dice.Of<std::uint8_t>({0, 127, 254}));
                ASSERT_FALSE(g_Kanvo_pkRows->pfnIsOpaque(row, width)) << "width " << width << ", pixel " << x;
                keep(x, 255);
            }
        }
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
