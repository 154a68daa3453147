// Tests of the rows of samples at every level of this machine: random lines through fenced pictures against the portable
// bodies, and against the naive samples; every width with every alignment; and whole blits of a bitmap onto itself, whose
// rows are longer than the strips that they are drawn in.
#include "scaled_rows.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "BlitStage.h"
#include "CrashNote.h"
#include "Dice.h"
#include "Fence.h"
#include "Levels.h"
#include "Reference_Sample.h"
#include "Reference_Stretch.h"

namespace
{

using reference::Format;
using support::Dice;

//! A function of the table: of which format, and whether it filters.
struct Function
{
    const char* name;
    Format      format;
    unsigned    bytes;  // of one pixel
    bool        filtered;
    void (*run)(void* to, const Kanvo_SampleLine& line, Tov_UInt count, Tov_UInt bits);
    //! What becomes of a naive sample.
    std::uint32_t (*expect)(const reference::Sample& sample, Tov_UInt bits);
};

std::uint32_t AsStored(const reference::Sample& sample, Tov_UInt /*bits*/)
{
    return sample.stored;
}

//! Without a way to another row: where the lower row has no weight.
Kanvo_SampleLine OnWholeRow(Kanvo_SampleLine line)
{
    line.uiY &= 0xFFFF0000U;
    line.uiStepY = 0;
    return line;
}

const Function FUNCTIONS[] = {
    {"NearestWords", Format::Argb32, 4, false,
     [](void* to, const Kanvo_SampleLine& line, Tov_UInt count, Tov_UInt bits)
     { g_Kanvo_pkScaledRows->pfnNearestWords(static_cast<Tov_UInt*>(to), line, count, bits); },
     [](const reference::Sample& sample, Tov_UInt bits) { return sample.stored | bits; }},
    {"FilterWords", Format::Argb32, 4, true,
     [](void* to, const Kanvo_SampleLine& line, Tov_UInt count, Tov_UInt bits)
     { g_Kanvo_pkScaledRows->pfnFilterWords(static_cast<Tov_UInt*>(to), line, count, bits); },
     [](const reference::Sample& sample, Tov_UInt bits) { return sample.stored & bits; }},
    {"Nearest565", Format::Rgb565, 2, false,
     [](void* to, const Kanvo_SampleLine& line, Tov_UInt count, Tov_UInt)
     { g_Kanvo_pkScaledRows->pfnNearest565(static_cast<Tov_UShort*>(to), line, count); },
     AsStored},
    {"Filter565", Format::Rgb565, 2, true,
     [](void* to, const Kanvo_SampleLine& line, Tov_UInt count, Tov_UInt)
     { g_Kanvo_pkScaledRows->pfnFilter565(static_cast<Tov_UShort*>(to), line, count); },
     AsStored},
    {"NearestA8", Format::A8, 1, false,
     [](void* to, const Kanvo_SampleLine& line, Tov_UInt count, Tov_UInt)
     { g_Kanvo_pkScaledRows->pfnNearestA8(static_cast<Tov_UByte*>(to), line, count); },
     AsStored},
    {"FilterA8", Format::A8, 1, true,
     [](void* to, const Kanvo_SampleLine& line, Tov_UInt count, Tov_UInt)
     { g_Kanvo_pkScaledRows->pfnFilterA8(static_cast<Tov_UByte*>(to), line, count); },
     AsStored},
    {"MixAlong", Format::Argb32, 4, true,
     [](void* to, const Kanvo_SampleLine& line, Tov_UInt count, Tov_UInt)
     { g_Kanvo_pkScaledRows->pfnMixAlong(static_cast<Tov_UInt*>(to), OnWholeRow(line), count); },
     AsStored},
};

//! A picture between fences: behind its last pixel, or before its first one, nothing may be read.
class FencedPicture
{
public:
    FencedPicture(const Function& function, unsigned width, unsigned height, unsigned padding, support::Against end,
                  Dice& dice)
        : m_width(width),
          m_height(height),
          m_pitch((width + padding) * function.bytes),
          m_format(function.format),
          m_fence(support::Fence::BytesFor(width, height, m_pitch, function.bytes), end)
    {
        dice.Fill(m_fence.Data(), m_fence.Size());
        m_fence.MakeReadOnly();
    }

    reference::Picture AsPicture() { return {m_format, m_width, m_height, m_pitch, m_fence.Data(), false}; }

    Kanvo_SampleLine LineFrom(unsigned x, unsigned y, int stepX, int stepY)
    {
        return {{m_fence.Data(), m_pitch}, x, y, static_cast<Tov_UInt>(stepX), static_cast<Tov_UInt>(stepY)};
    }

    //! A line whose samples, and blocks where it is filtered, lie inside.
    Kanvo_SampleLine AnyLine(unsigned count, bool filtered, Dice& dice)
    {
        const unsigned edge = filtered ? 1 : 0;
        const auto     axis = [&](unsigned length, bool moves)
        {
            const unsigned end   = (length - edge) << 16;
            const unsigned first = dice.OneIn(4) ? 0 : dice.Below(end);
            const unsigned last  = !moves ? first : dice.OneIn(4) ? end - 1 : dice.Below(end);
            int            step  = count < 2 ? dice.Between(-70000, 70000)
                                             : (static_cast<int>(last) - static_cast<int>(first)) / static_cast<int>(count - 1);
            // steps of whole and half pixels, where they fit
            const int  even = dice.Of({0x8000, 0x10000, 0x20000, 0x18000, 0x8001, 0x7FFF, 0x20001, -0x10000});
            const auto far  = static_cast<std::int64_t>(first) + std::int64_t{even} * (count - 1);
            if (moves && dice.OneIn(3) && far >= 0 && far < end) step = even;
            return std::pair<unsigned, int>(first, moves ? step : 0);
        };
        const auto x = axis(m_width, true);
        const auto y = axis(m_height, dice.OneIn(2));
        return LineFrom(x.first, y.first, x.second, y.second);
    }

private:
    unsigned       m_width;
    unsigned       m_height;
    unsigned       m_pitch;
    Format         m_format;
    support::Fence m_fence;
};

std::unique_ptr<FencedPicture> AnyPicture(const Function& function, Dice& dice)
{
    return std::make_unique<FencedPicture>(function, 2 + dice.Below(dice.OneIn(2) ? 12 : 200), 2 + dice.Below(9),
                                           dice.Of({0U, 0U, 1U, 5U}),
                                           dice.Of({support::Against::BackFence, support::Against::FrontFence}), dice);
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
    if (std::string(function.name) == "MixAlong") line = OnWholeRow(line);
    for (unsigned index = 0; index < count; ++index, line.Advance(1))
    {
        const reference::Sample sample = reference::SampleAt(picture, line.uiX, line.uiY, function.filtered);
        const std::uint32_t     value  = function.expect(sample, bits);
        for (unsigned byte = 0; byte < function.bytes; ++byte)
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

}  // namespace

INSTANTIATE_TEST_SUITE_P(All, ScaledRows,
                         testing::Combine(testing::ValuesIn(support::LevelsHere()), testing::ValuesIn(FUNCTIONS)),
                         NameOf);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ScaledRowsFast);
INSTANTIATE_TEST_SUITE_P(All, ScaledRowsFast,
                         testing::Combine(testing::ValuesIn(support::FastLevelsHere()), testing::ValuesIn(FUNCTIONS)),
                         NameOf);

TEST_P(ScaledRowsFast, RandomLinesAreThoseOfThePortableBody)
{
    // Over all functions two million lines, a hundred through each picture.
    const Function&      function = Of();
    const support::Seeds seeds(2000000 / std::size(FUNCTIONS) / 100 + 1);
    support::CrashNote   note(function.name);
    support::Fence       row(260 * function.bytes, support::Against::BackFence);
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        note.InCase(seeds.first + index);
        Dice                           dice(seeds.first + index);
        std::unique_ptr<FencedPicture> picture = AnyPicture(function, dice);
        for (int turn = 0; turn < 100; ++turn)
        {
            const unsigned          count = 1 + dice.Below(dice.OneIn(8) ? 200 : 30);
            const Kanvo_SampleLine  line  = picture->AnyLine(count, function.filtered, dice);
            const Tov_UInt          bits  = AnyBits(dice);
            alignas(8) std::uint8_t expected[260 * 4];
            const std::size_t       size = row.Size();
            std::uint8_t* const     to   = row.Data() + size - count * function.bytes;
            std::memset(row.Data(), 0x5A, size);
            std::memset(expected, 0x5A, size);
            {
                const support::AtLevel portable(KL_PORTABLE);
                function.run(expected + size - count * function.bytes, line, count, bits);
            }
            {
                const support::AtLevel fast(Level());
                function.run(to, line, count, bits);
            }
            ASSERT_EQ(std::memcmp(expected, row.Data(), size), 0)
                << "seed " << seeds.first + index << ", turn " << turn << ": " << Described(line, count);
        }
    }
}

TEST_P(ScaledRows, RandomLinesAreThoseOfTheNaiveSamples)
{
    const Function&        function = Of();
    const support::AtLevel level(Level());
    const support::Seeds   seeds(200);
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice                           dice(seeds.first + index);
        std::unique_ptr<FencedPicture> picture = AnyPicture(function, dice);
        for (int turn = 0; turn < 50; ++turn)
        {
            const unsigned            count = 1 + dice.Below(60);
            const Kanvo_SampleLine    line  = picture->AnyLine(count, function.filtered, dice);
            const Tov_UInt            bits  = AnyBits(dice);
            std::vector<std::uint8_t> drawn(count * function.bytes);
            function.run(drawn.data(), line, count, bits);
            ASSERT_EQ(drawn, Naive(function, picture->AsPicture(), line, count, bits))
                << "seed " << seeds.first + index << ", turn " << turn << ": " << Described(line, count);
        }
    }
}

TEST_P(ScaledRows, EveryWidthAtEveryAlignmentBetweenFences)
{
    const Function&        function = Of();
    const support::AtLevel level(Level());
    Dice                   dice(3);
    for (unsigned count = 0; count <= 129; ++count)
    {
        for (const unsigned step : {0x5555U, 0x8000U, 0x10000U, 0x18000U, 0x20000U})
        {
            // as wide as the samples need it, and not a pixel more
            const unsigned reach = function.filtered ? 2 : 1;
            const unsigned width = std::max((count > 0 ? ((count - 1) * step) >> 16 : 0) + reach, 2U);
            const auto     end   = count % 2 == 0 ? support::Against::BackFence : support::Against::FrontFence;
            const unsigned spare = count % 16;
            FencedPicture  picture(function, width, 2, spare, end, dice);
            support::Fence row((count + spare) * function.bytes, end);
            std::uint8_t*  to = row.Data() + (end == support::Against::BackFence ? spare * function.bytes : 0);
            std::vector<std::uint8_t> expected(row.Data(), row.Data() + row.Size());
            const Kanvo_SampleLine    line =
                picture.LineFrom(0, function.filtered ? 0x8123 : 0x10000, static_cast<int>(step), 0);
            const std::vector<std::uint8_t> naive = Naive(function, picture.AsPicture(), line, count, 0xFF00FF00U);
            std::copy(naive.begin(), naive.end(), expected.begin() + (to - row.Data()));
            function.run(to, line, count, 0xFF00FF00U);
            ASSERT_TRUE(std::equal(expected.begin(), expected.end(), row.Data())) << Described(line, count);
        }
    }
}

TEST(ScaledRowsBetween, EveryFractionAndEveryWidthMixAsTheNaiveBlock)
{
    for (const Kanvo_Level level : support::LevelsHere())
    {
        const support::AtLevel at(level);
        Dice                   dice(23);
        for (unsigned width = 0; width <= 129; ++width)
        {
            const auto     end = width % 2 == 0 ? support::Against::BackFence : support::Against::FrontFence;
            support::Fence top(width * 4, end), bottom(width * 4, end), to(width * 4, end);
            for (unsigned turn = 0; turn < (width == 129 ? 256U : 8U); ++turn)
            {
                const auto     fraction = static_cast<std::uint8_t>(width == 129 ? turn : width * 37 + turn * 51);
                const Tov_UInt keep     = AnyBits(dice);
                for (unsigned x = 0; x < width; ++x)
                {
                    top.As<std::uint32_t>()[x]    = dice.NextHostileWord();
                    bottom.As<std::uint32_t>()[x] = dice.NextHostileWord();
                }
                g_Kanvo_pkScaledRows->pfnMixBetween(to.As<std::uint32_t>(), top.As<std::uint32_t>(),
                                                    bottom.As<std::uint32_t>(), width, fraction, keep);
                ASSERT_TRUE(to.IsSlackUntouched());
                for (unsigned x = 0; x < width; ++x)
                {
                    const reference::Sample above{Format::Argb32, top.As<std::uint32_t>()[x]};
                    const reference::Sample below{Format::Argb32, bottom.As<std::uint32_t>()[x]};
                    ASSERT_EQ(to.As<std::uint32_t>()[x],
                              reference::MixOf({above, above, below, below}, 0, fraction).stored & keep)
                        << Kanvo_LevelName(level) << ", width " << width << ", fraction " << unsigned{fraction};
                }
            }
        }
    }
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
