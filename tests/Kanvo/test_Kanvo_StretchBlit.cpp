// Tests of StretchBlit, StretchBlitColor and StretchBlit2Color: who does the work and with which arguments, every way in
// which a sample is written, the worked examples, the kept oddities, misuse, and what a call must leave alone. Expected
// pixels are calculated by hand or by the naive reference; test_Kanvo_Stretch_random.cpp has the breadth,
// test_Kanvo_Geometry_blits.cpp where pixels go, test_Kanvo_StretchBlitAlpha.cpp the alpha maps, test_neonloops_stretch.cpp
// the loops alone.
#include "Kanvo_StretchBlit.h"

#include <array>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BlitStage.h"
#include "DrawSpies.h"
#include "Fence.h"
#include "NaiveMix.h"
#include "PoorBitmaps.h"
#include "Reference_Sample.h"
#include "Reference_Stretch.h"
#include "StoredImage.h"
#include "StretchSpies.h"
#include "Sweep.h"

namespace
{

using support::BOTH_PATHS;
using support::Coverage;
using support::Halves;
using support::LoopCall;
using support::Messages;
using support::MessagesOf;
using support::NO_BUFFER;
using support::NOT_A_MAP;
using support::NOT_INSIDE;
using support::NOT_LOCKED;
using support::NOT_SUPPORTED;
using support::Same;
using support::Stage;
using support::StageOf;
using support::StretchCall;
using support::SwappedTarget;
using support::Words;

constexpr Tov_Flag KEY = BLIT_COLORKEY, BILINEAR = BLIT_BILINEAR, NOCLIP = BLIT_NOCLIP, ASPECT = BLIT_ASPECT;

constexpr const char* DIV_BY_ZERO = "DIV by 0!";

constexpr const char* COPY          = "neonloops_stretchblit_nearest_argb32_argb32_clip";
constexpr const char* COPY_FILTERED = "neonloops_stretchblit_bilinear_argb32_argb32_clip";
constexpr const char* OVER          = "neonloops_stretchblit_nearest_argb32_argb32_as_ag_clip";
constexpr const char* OVER_FILTERED = "neonloops_stretchblit_bilinear_argb32_argb32_as_ag_clip";
constexpr const char* HALF          = "neonloops_stretchblit_nearest_argb32_rgb565_ag_clip";
constexpr const char* HALF_FILTERED = "neonloops_stretchblit_bilinear_argb32_rgb565_ag_clip";
constexpr const char* MASK          = "neonloops_stretchblitcolor_nearest_argb32_a8_ag_clip";
constexpr const char* MASK_FILTERED = "neonloops_stretchblitcolor_bilinear_argb32_a8_ag_clip";
constexpr const char* FILL          = "neonloops_fill_argb32";
constexpr const char* FILL_MIX      = "neonloops_fill_argb32_ag";
constexpr const char* PORTABLE      = "portable";
constexpr const char* NOBODY        = "nobody";

//! The whole of a source, to a rectangle.
struct To
{
    Tov_UInt width;
    Tov_UInt height;
    Tov_Int  x = 0;
    Tov_Int  y = 0;
};

void Stretch(Kanvo_Bitmap& target, Kanvo_Bitmap& source, const To& to, Tov_Flag flags = 0, int alpha = 255,
             Kanvo_Color key = 0)
{
    target.StretchBlit(&source, source.GetWidth(), source.GetHeight(), 0, 0, to.width, to.height, to.x, to.y, flags,
                       static_cast<Tov_UByte>(alpha), key);
}

void StretchColor(Kanvo_Bitmap& target, Kanvo_Bitmap& map, const To& to, Kanvo_Color color, Tov_Flag flags = 0,
                  int alpha = 255)
{
    target.StretchBlitColor(&map, map.GetWidth(), map.GetHeight(), 0, 0, to.width, to.height, to.x, to.y, color, flags,
                            static_cast<Tov_UByte>(alpha));
}

// ---- dispatch -------------------------------------------------------------------------------------------------------

//! Who drew: a loop, the portable worker (told by changed pixels), nobody, or several.
std::string WhoDrew(const support::StretchSpies& loops, const support::LoopSpies& fills, bool changed)
{
    if (loops.Calls().size() + fills.Calls().size() > 1) return "several";
    if (!loops.Calls().empty()) return loops.Calls()[0].loop;
    if (!fills.Calls().empty()) return fills.Calls()[0].loop;
    return changed ? PORTABLE : NOBODY;
}

//! A row of the dispatch table: what does the work nearest and filtered where the render state permits the loops.
struct Row
{
    unsigned    type;
    bool        atFull;
    const char* nearest;
    const char* filtered;
};

//! All flags but BLIT_BILINEAR that a call may have.
constexpr Tov_Flag OTHER_FLAGS[] = {0, KEY, NOCLIP, ASPECT, KEY | NOCLIP | ASPECT, 0x2, 0x80000000};

//! Draws with every combination of flags, opacity and what the bitmaps say of their alpha, on each render state, and
//! compares who did the work. call(target, source, flags, alpha).
template <class Call>
void ExpectRows(const std::vector<Row>& rows, Call call)
{
    for (const Row& row : rows)
    {
        for (const unsigned state : {0U, 1U, 2U, 0x101U, 0x80000001U})
        {
            for (const int alpha : row.atFull ? std::vector<int>{255} : std::vector<int>{0, 128, 254})
            {
                for (const Tov_Flag other : OTHER_FLAGS)
                {
                    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
                    {
                        for (const int says : {0, 1, 2, 3})
                        {
                            Stage stage(state, 8, 6, 0x10123456);
                            stage.target.SayAlpha((says & 1) != 0);
                            std::vector<std::uint32_t> pixels(12, 0x80402010);
                            support::AnySource    source(nullptr, row.type, 4, 3, pixels.data(), 0, (says & 2) != 0);
                            support::StretchSpies loops;
                            support::LoopSpies    fills;
                            support::PerfSpies    counters;
                            const Messages        messages =
                                MessagesOf([&] { call(stage.target, source, other | filter, alpha); });
                            const bool        changed   = stage.pixels != Same(48, 0x10123456);
                            const char* const optimised = filter != 0 ? row.filtered : row.nearest;
                            // at opacity 0 the portable worker leaves no trace
                            const char* const portable =
                                optimised == std::string(NOBODY) || alpha < 2 ? NOBODY : PORTABLE;
                            const bool        permitted = state == OB_NEON;
                            const std::string expected =
                                permitted && optimised != std::string(PORTABLE) ? optimised : portable;
                            EXPECT_EQ(WhoDrew(loops, fills, changed), expected)
                                << "type " << row.type << ", flags " << (other | filter) << ", alpha " << alpha
                                << ", OPTIMIZED_BLIT " << state << ", says " << says;
                            EXPECT_EQ(messages, Messages{});
                            EXPECT_TRUE(counters.Events().empty());
                        }
                    }
                }
            }
        }
    }
}

}  // namespace

TEST(StretchBlit, EachFormatFlagsOpacityAndRenderStateHaveTheirWorker)
{
    ExpectRows({{BM_ARGB32, true, COPY, COPY_FILTERED},
                {BM_ARGB32, false, OVER, OVER_FILTERED},
                {BM_RGB565, true, HALF, HALF_FILTERED},
                {BM_RGB565, false, HALF, HALF_FILTERED},
                {BM_RGB32, true, PORTABLE, PORTABLE},
                {BM_RGB32, false, PORTABLE, PORTABLE},
                {BM_ALPHA8, true, PORTABLE, PORTABLE},
                {BM_ALPHA8, false, PORTABLE, PORTABLE}},
               [](Kanvo_Bitmap& target, Kanvo_Bitmap& source, Tov_Flag flags, int alpha) {
                   Stretch(target, source, {7, 5, 1, 1}, flags, alpha, 0x999999);
               });
}

TEST(StretchBlitColor, EachFormatFlagsOpacityAndRenderStateHaveTheirWorker)
{
    ExpectRows({{BM_ARGB32, true, PORTABLE, PORTABLE},
                {BM_ARGB32, false, PORTABLE, PORTABLE},
                {BM_ALPHA8, true, MASK, MASK_FILTERED},
                {BM_ALPHA8, false, MASK, MASK_FILTERED},
                {BM_ALPHA5_2, true, NOBODY, NOBODY},
                {BM_ALPHA5_2, false, NOBODY, NOBODY}},
               [](Kanvo_Bitmap& target, Kanvo_Bitmap& source, Tov_Flag flags, int alpha) {
                   StretchColor(target, source, {7, 5, 1, 1}, 0xFFFFFFFF, flags, alpha);
               });
}

TEST(StretchBlit, TheTargetsRenderStateCountsAndNotTheSources)
{
    Stage                 onPlain(OB_NONE, 2, 2, 0);
    Stage                 onNeon(OB_NEON, 2, 2, 0);
    support::StretchSpies loops;
    Stretch(onPlain.target, onNeon.target, {2, 2});
    EXPECT_TRUE(loops.Calls().empty());
    Stretch(onNeon.target, onPlain.target, {2, 2});
    EXPECT_EQ(loops.Calls().size(), 1U);
}

TEST(StretchBlit, ATargetWithoutScreenDrawsPortably)
{
    std::uint32_t          pixels[4] = {};
    support::PitchedTarget target(nullptr, 2, 2, pixels);
    Words                  source(BM_ARGB32, 1, {0xFF112233});
    support::StretchSpies  loops;
    target.Lock();
    Stretch(target, source.bitmap, {2, 2});
    EXPECT_TRUE(loops.Calls().empty());
    for (const std::uint32_t pixel : pixels) EXPECT_EQ(pixel, 0xFF112233U);
}

TEST(StretchBlit, LoopsStartAtTheSourcesFirstPixelAndTheClipsCorner)
{
    constexpr Tov_UInt DST_PITCH = 20 * 4 + 12;
    struct Expected
    {
        unsigned    type;
        Tov_Flag    flags;
        int         alpha;
        const char* loop;
        int         alphaPassed;
    };
    constexpr Expected EXPECTED[] = {
        {BM_ARGB32, 0, 255, COPY, -1},         {BM_ARGB32, BILINEAR, 255, COPY_FILTERED, -1},
        {BM_ARGB32, 0, 77, OVER, 77},          {BM_ARGB32, BILINEAR, 0, OVER_FILTERED, 0},
        {BM_RGB565, 0, 255, HALF, 255},        {BM_RGB565, BILINEAR, 255, HALF_FILTERED, 255},
        {BM_RGB565, NOCLIP | KEY, 9, HALF, 9}, {BM_RGB565, BILINEAR | ASPECT, 254, HALF_FILTERED, 254},
    };
    for (const Expected& expected : EXPECTED)
    {
        Kanvo_Screen               screen(nullptr);
        std::vector<std::uint32_t> under(DST_PITCH / 4 * 15, 0xFF000000);
        support::PitchedTarget     target(&screen, 20, 15, under.data(), DST_PITCH);
        std::vector<std::uint32_t> pixels(9 * 9, 0xFF808080);
        const Tov_UInt             pitch = expected.type == BM_ARGB32 ? 32 : 20;
        support::AnySource         source(nullptr, expected.type, 7, 7, pixels.data(), pitch, false);
        screen.GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON);
        target.Lock();
        target.SetCliprect(3, 2, 14, 12);
        support::StretchSpies loops;
        target.StretchBlit(&source, 3, 4, 2, 1, 9, 10, -5, 6, expected.flags, static_cast<Tov_UByte>(expected.alpha),
                           0x123456);
        const StretchCall call{expected.loop,
                               under.data() + 2 * DST_PITCH / 4 + 3,
                               pixels.data(),
                               DST_PITCH,
                               pitch,
                               -5 - 3,
                               6 - 2,
                               9,
                               10,
                               3,
                               4,
                               2,
                               1,
                               12,
                               11,
                               0,
                               expected.alphaPassed};
        EXPECT_EQ(loops.Calls(), std::vector<StretchCall>{call});
    }
}

TEST(StretchBlitColor, LoopsGetTheTargetsOwnColourBehindTheClip)
{
    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
    {
        for (const int alpha : {0, 128, 255})
        {
            StageOf<SwappedTarget> stage(OB_NEON, 16, 12, 0xFF000000);
            Coverage               map(BM_ALPHA8, 5, std::vector<std::uint8_t>(25, 200));
            stage.target.SetCliprect(1, 3, 9, 9);
            support::StretchSpies loops;
            stage.target.StretchBlitColor(&map.bitmap, 2, 3, 1, 2, 8, 9, 10, 11, 0x80FF7F01, filter,
                                          static_cast<Tov_UByte>(alpha));
            const StretchCall call{filter != 0 ? MASK_FILTERED : MASK,
                                   stage.pixels.data() + 3 * 16 + 1,
                                   map.pixels.data(),
                                   64,
                                   5,
                                   9,
                                   8,
                                   8,
                                   9,
                                   2,
                                   3,
                                   1,
                                   2,
                                   9,
                                   7,
                                   0x40017FFF,
                                   alpha};
            EXPECT_EQ(loops.Calls(), std::vector<StretchCall>{call});
        }
    }
}

TEST(StretchBlitColor, TheColourIsConvertedByTheTargetForTheLoopsOnly)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const bool words : {false, true})
        {
            StageOf<SwappedTarget> stage(optimized, 2, 2, 0xFF000000);
            Coverage               map(BM_ALPHA8, 1, {255});
            Words                  wordMap(BM_ARGB32, 1, {0xFF000000});
            StretchColor(stage.target, words ? wordMap.bitmap : map.bitmap, {2, 2}, 0xFF0000FE);
            // 127 / 128 of blue, or of red where the target has them the other way round
            EXPECT_EQ(stage.pixels, Same(4, optimized == OB_NEON && !words ? 0xFFFC0000 : 0xFF0000FC));
        }
    }
}

// ---- every way in which a sample is written -------------------------------------------------------------------------

namespace
{

using reference::Format;
using reference::Sample;

//! One cell of the tables: what becomes of a pixel under a sample. Written as one would say it, with the naive blends.
struct Cell
{
    const char* name;
    unsigned    type;
    Format      format;
    Tov_Flag    flags;
    bool        full;
    std::uint32_t (*result)(std::uint32_t under, const Sample& sample, int alpha);
};

using support::MixLinear;
using support::MixLinearSrcAlpha;

std::uint32_t StoreStored(std::uint32_t, const Sample& sample, int)
{
    return sample.stored;
}
std::uint32_t BlendStored(std::uint32_t under, const Sample& sample, int alpha)
{
    return MixLinearSrcAlpha(under, sample.stored, alpha);
}
std::uint32_t BlendStoredAt255(std::uint32_t under, const Sample& sample, int)
{
    return MixLinearSrcAlpha(under, sample.stored, 255);
}
std::uint32_t StoreOpaque(std::uint32_t, const Sample& sample, int)
{
    return sample.Opaque();
}
std::uint32_t MixOpaque(std::uint32_t under, const Sample& sample, int alpha)
{
    return MixLinear(under, sample.Opaque(), alpha);
}
std::uint32_t StoreWithAlpha(std::uint32_t, const Sample& sample, int)
{
    return sample.WithOwnAlpha();
}
std::uint32_t BlendWithAlpha(std::uint32_t under, const Sample& sample, int alpha)
{
    return MixLinearSrcAlpha(under, sample.WithOwnAlpha(), alpha);
}
std::uint32_t MixWithAlpha(std::uint32_t under, const Sample& sample, int alpha)
{
    return MixLinear(under, sample.WithOwnAlpha(), alpha);
}

// clang-format off
constexpr Cell CELLS[] = {
    // a source with its own alpha
    {"filtered, below",        BM_ARGB32, Format::Argb32, BILINEAR,       false, BlendStored},
    {"filtered, full",         BM_ARGB32, Format::Argb32, BILINEAR,       true,  StoreStored},
    {"nearest, below",         BM_ARGB32, Format::Argb32, 0,              false, BlendStored},
    {"nearest, full",          BM_ARGB32, Format::Argb32, 0,              true,  StoreStored},
    {"keyed, filtered, below", BM_ARGB32, Format::Argb32, BILINEAR | KEY, false, BlendStored},
    {"keyed, filtered, full",  BM_ARGB32, Format::Argb32, BILINEAR | KEY, true,  BlendStoredAt255},
    {"keyed, nearest, below",  BM_ARGB32, Format::Argb32, KEY,            false, BlendStored},
    {"keyed, nearest, full",   BM_ARGB32, Format::Argb32, KEY,            true,  StoreStored},
    // converted sources
#define KANVO_TEST_CONVERTED(type, format)                                                    \
    {"filtered, below",        type, format, BILINEAR,       false, BlendWithAlpha},          \
    {"filtered, full",         type, format, BILINEAR,       true,  StoreWithAlpha},          \
    {"nearest, below",         type, format, 0,              false, MixOpaque},               \
    {"nearest, full",          type, format, 0,              true,  StoreOpaque},             \
    {"keyed, filtered, below", type, format, BILINEAR | KEY, false, MixWithAlpha},            \
    {"keyed, filtered, full",  type, format, BILINEAR | KEY, true,  StoreWithAlpha},          \
    {"keyed, nearest, below",  type, format, KEY,            false, MixOpaque},               \
    {"keyed, nearest, full",   type, format, KEY,            true,  StoreOpaque}
    KANVO_TEST_CONVERTED(BM_RGB32, Format::Rgb32),
    KANVO_TEST_CONVERTED(BM_RGB565, Format::Rgb565),
    KANVO_TEST_CONVERTED(BM_ALPHA8, Format::A8),
#undef KANVO_TEST_CONVERTED
};
// clang-format on

//! A source of 2x2 equal pixels: whatever is sampled, filtered or not, it is that pixel.
class Uniform
{
public:
    Uniform(unsigned type, Format format, std::uint32_t word) : m_format(format)
    {
        const auto bytes = reference::BytesPerPixel(format);
        for (int pixel = 0; pixel < 4; ++pixel)
        {
            std::memcpy(reinterpret_cast<std::uint8_t*>(m_pixels) + pixel * bytes, &word,
                        static_cast<std::size_t>(bytes));
        }
        m_source.emplace(nullptr, type, 2, 2, m_pixels, 0, false);
    }

    Kanvo_Bitmap& Bitmap() { return *m_source; }

    //! Nearest it is the pixel as it is stored; filtered RGB32 loses its top byte.
    Sample Expected(bool filtered) const
    {
        std::uint32_t stored = 0;
        std::memcpy(&stored, m_pixels, static_cast<std::size_t>(reference::BytesPerPixel(m_format)));
        if (filtered && m_format == Format::Rgb32) stored %= 0x1000000;
        return {m_format, stored};
    }

private:
    Format                            m_format;
    std::uint32_t                     m_pixels[4] = {};
    std::optional<support::AnySource> m_source;
};

//! One stretched pixel over one pixel.
std::uint32_t Stretched(unsigned optimized, std::uint32_t under, Kanvo_Bitmap& source, Tov_Flag flags, int alpha,
                        Kanvo_Color key = 0)
{
    Stage stage(optimized, 1, 1, under);
    Stretch(stage.target, source, {1, 1}, flags, alpha, key);
    return stage.pixels[0];
}

std::uint32_t StretchColoured(unsigned optimized, std::uint32_t under, Kanvo_Bitmap& map, Kanvo_Color color,
                              Tov_Flag flags, int alpha)
{
    Stage stage(optimized, 1, 1, under);
    StretchColor(stage.target, map, {1, 1}, color, flags, alpha);
    return stage.pixels[0];
}

}  // namespace

TEST(StretchBlit, EachFormatKeyFilterAndOpacityHasItsOwnBlend)
{
    support::Numbers numbers(31);
    for (const Cell& cell : CELLS)
    {
        const bool           filtered = (cell.flags & BILINEAR) != 0;
        support::Differences differences;
        for (int turn = 0; turn < 1500; ++turn)
        {
            const std::uint32_t under = numbers.NextHostileWord();
            const std::uint32_t word  = numbers.NextHostileWord();
            const int           below = static_cast<int>(numbers.Next32() % 255);
            const int           alpha = cell.full ? 255 : below;
            Uniform             source(cell.type, cell.format, word);
            const Sample        sample   = source.Expected(filtered);
            const std::uint32_t key      = sample.Color() ^ 0x1;  // not met
            const std::uint32_t expected = cell.result(under, sample, alpha);
            const std::uint32_t got      = Stretched(OB_NONE, under, source.Bitmap(), cell.flags, alpha, key);
            if (got != expected)
            {
                differences.Note("%08X over %08X at %d: expected %08X, got %08X", sample.stored, under, alpha, expected,
                                 got);
            }
            const std::uint32_t met = Stretched(OB_NONE, under, source.Bitmap(), cell.flags, alpha, sample.Color());
            if ((cell.flags & KEY) != 0 && met != under) differences.Note("the key %08X is drawn", sample.Color());
        }
        EXPECT_EQ(differences.Count(), 0U) << "type " << cell.type << ", " << cell.name << ": " << differences.First();
    }
}

TEST(StretchBlit, TheLoopsBlendAsThePortableWorkersWithoutAKey)
{
    support::Numbers numbers(32);
    for (const Cell& cell : CELLS)
    {
        if ((cell.type != BM_ARGB32 && cell.type != BM_RGB565) || (cell.flags & KEY) != 0) continue;
        const bool           filtered = (cell.flags & BILINEAR) != 0;
        support::Differences differences;
        for (int turn = 0; turn < 1500; ++turn)
        {
            const std::uint32_t under = numbers.NextHostileWord();
            const std::uint32_t word  = numbers.NextHostileWord();
            const int           below = static_cast<int>(numbers.Next32() % 255);
            const int           alpha = cell.full ? 255 : below;
            Uniform             source(cell.type, cell.format, word);
            const Sample        sample   = source.Expected(filtered);
            const std::uint32_t expected = cell.result(under, sample, alpha);
            const std::uint32_t got      = Stretched(OB_NEON, under, source.Bitmap(), cell.flags, alpha);
            const std::uint32_t keyed =
                Stretched(OB_NEON, under, source.Bitmap(), cell.flags | KEY, alpha, sample.Color());
            if (got != expected || keyed != expected)
            {
                differences.Note("%08X over %08X at %d: expected %08X, got %08X and with a key %08X", sample.stored,
                                 under, alpha, expected, got, keyed);
            }
        }
        EXPECT_EQ(differences.Count(), 0U) << "type " << cell.type << ", " << cell.name << ": " << differences.First();
    }
}

TEST(StretchBlitColor, EachFilterAndOpacityHasItsOwnBlendOnBothPaths)
{
    support::Numbers numbers(33);
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const unsigned type : {unsigned{BM_ALPHA8}, unsigned{BM_ARGB32}})
        {
            for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR, KEY, BILINEAR | KEY})
            {
                support::Differences differences;
                for (int turn = 0; turn < 3000; ++turn)
                {
                    const std::uint32_t under = numbers.NextHostileWord();
                    const std::uint32_t word  = numbers.NextHostileWord();
                    const std::uint32_t color = numbers.NextHostileWord();
                    const int           below = static_cast<int>(numbers.Next32() % 255);
                    const int           alpha = turn % 2 == 0 ? 255 : below;
                    Uniform             map(type, type == BM_ALPHA8 ? Format::A8 : Format::Argb32, word);
                    const int           coverage = map.Expected(false).Alpha();
                    const int           scaled   = alpha * coverage / 255;
                    const bool          special  = (filter & BILINEAR) != 0 && alpha == 255;
                    const std::uint32_t expected =
                        special ? MixLinearSrcAlpha(under, color, coverage) : MixLinear(under, color, scaled);
                    const std::uint32_t got = StretchColoured(optimized, under, map.Bitmap(), color, filter, alpha);
                    if (got != expected)
                    {
                        differences.Note("%08X through %d at %d over %08X: expected %08X, got %08X", color, coverage,
                                         alpha, under, expected, got);
                    }
                }
                EXPECT_EQ(differences.Count(), 0U) << "type " << type << ", flags " << filter << ", OPTIMIZED_BLIT "
                                                   << optimized << ": " << differences.First();
            }
        }
    }
}

// ---- the filter -----------------------------------------------------------------------------------------------------

namespace
{

//! Two pixels in a row, below each other once more, to five: the filter's weights are then 0, 64, 127, 191 and 255.
constexpr int WEIGHTS[] = {0, 64, 127, 191, 255};

template <class Pixel>
std::vector<std::uint32_t> FilteredRow(unsigned type, Pixel left, Pixel right)
{
    std::vector<Pixel> pixels{left, right, left, right};
    support::AnySource source(nullptr, type, 2, 2, pixels.data(), 0, false);
    Stage              stage(OB_NONE, 5, 1, 0xFFFFFFFF);
    Stretch(stage.target, source, {5, 1}, BILINEAR);
    return stage.pixels;
}

}  // namespace

TEST(StretchBlit, AFilteredArgb32SampleMixesAllFourChannelsBySevenBits)
{
    // 0 to 255 by 0, 32, 63, 95 and 127 of 128
    EXPECT_EQ(FilteredRow<std::uint32_t>(BM_ARGB32, 0x00FF00FF, 0xFF00FF00),
              (std::vector<std::uint32_t>{0x00FF00FF, 0x3FBF3FBF, 0x7D817D81, 0xBD41BD41, 0xFD01FD01}));
}

TEST(StretchBlit, AFilteredRgb32SampleHasNoAlpha)
{
    EXPECT_EQ(FilteredRow<std::uint32_t>(BM_RGB32, 0xFFFF0000, 0xFF0000FF),
              (std::vector<std::uint32_t>{0x00FF0000, 0x00BF003F, 0x0081007D, 0x004100BD, 0x000100FD}));
}

TEST(StretchBlit, AFilteredA8SampleMixesByAllEightBitsAndKeepsTheLevelAsAlpha)
{
    // 255 * weight / 256, rounded down
    EXPECT_EQ(FilteredRow<std::uint8_t>(BM_ALPHA8, 0, 255),
              (std::vector<std::uint32_t>{0x00000000, 0x3F3F3F3F, 0x7E7E7E7E, 0xBEBEBEBE, 0xFEFEFEFE}));
}

TEST(StretchBlit, AFilteredRgb565SampleMixesExpandedChannelsByEvenWeightsAndIsPackedAgain)
{
    // weights 0, 64, 128, 192 and 256 of 256: the last one is the right pixel itself. 255 * 64 / 256 = 63 is packed to
    // 7 of 31 and 15 of 63, which expand to 57 and 60.
    EXPECT_EQ(FilteredRow<std::uint16_t>(BM_RGB565, 0x0000, 0xFFFF),
              (std::vector<std::uint32_t>{0xFF000000, 0xFF393C39, 0xFF7B7D7B, 0xFFBDBEBD, 0xFFFFFFFF}));
}

TEST(StretchBlit, TheFilterMixesAlongRowsFirstThenBetweenThem)
{
    support::Numbers     numbers(34);
    support::Differences differences;
    for (int turn = 0; turn < 4000; ++turn)
    {
        std::array<std::uint32_t, 4> block{};
        for (auto& word : block) word = numbers.NextHostileWord();
        std::vector<std::uint32_t> pixels(block.begin(), block.end());
        Words                      source(BM_ARGB32, 2, pixels);
        Stage                      stage(OB_NONE, 5, 5, 0xFFFFFFFF);
        Stretch(stage.target, source.bitmap, {5, 5}, BILINEAR);
        for (unsigned y = 0; y < 5; ++y)
        {
            for (unsigned x = 0; x < 5; ++x)
            {
                const std::uint32_t expected = support::MixBilinear(block, WEIGHTS[x], WEIGHTS[y]);
                if (stage.At(x, y) != expected)
                {
                    differences.Note("(%u, %u): expected %08X, got %08X", x, y, expected, stage.At(x, y));
                }
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

// ---- worked examples ------------------------------------------------------------------------------------------------

TEST(StretchBlit, EqualSizesCopyEveryFormat)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        std::vector<std::uint32_t> content;
        support::Numbers           numbers(35);
        for (int pixel = 0; pixel < 35; ++pixel) content.push_back(numbers.Next32());
        Words source(BM_ARGB32, 7, content);
        Stage stage(optimized, 7, 5, 0xFF000000);
        Stretch(stage.target, source.bitmap, {7, 5});
        EXPECT_EQ(stage.pixels, content) << "the alpha is copied too";

        Words plain(BM_RGB32, 7, content);
        Stage opaque(optimized, 7, 5, 0);
        Stretch(opaque.target, plain.bitmap, {7, 5});
        for (auto& word : content) word |= 0xFF000000;
        EXPECT_EQ(opaque.pixels, content);
    }
}

TEST(StretchBlit, TwiceTheSizeRepeatsEachColumnAndRowTwice)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Words source(BM_ARGB32, 3, {1, 2, 3, 4, 5, 6});
        Stage stage(optimized, 6, 4, 0xFF000000);
        Stretch(stage.target, source.bitmap, {6, 4});
        EXPECT_EQ(stage.pixels, (std::vector<std::uint32_t>{1, 1, 2, 2, 3, 3, 1, 1, 2, 2, 3, 3,  //
                                                            4, 4, 5, 5, 6, 6, 4, 4, 5, 5, 6, 6}));
    }
}

TEST(StretchBlit, APartOfTheSourceIsScaledToWhereItIsAskedFor)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Words source(BM_ARGB32, 4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
        Stage stage(optimized, 6, 4, 0);
        stage.target.StretchBlit(&source.bitmap, 2, 1, 1, 1, 4, 2, 1, 1, 0, 255, 0);
        EXPECT_EQ(stage.pixels, (std::vector<std::uint32_t>{0, 0, 0, 0, 0, 0, 0, 6, 6, 7, 7, 0,  //
                                                            0, 6, 6, 7, 7, 0, 0, 0, 0, 0, 0, 0}));
    }
}

TEST(StretchBlit, AtFullOpacityAnArgb32SourceIsCopiedWithItsAlpha)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
        {
            Uniform source(BM_ARGB32, Format::Argb32, 0x80402010);
            EXPECT_EQ(Stretched(optimized, 0xFF123456, source.Bitmap(), filter, 255), 0x80402010U);
            Uniform clear(BM_ARGB32, Format::Argb32, 0x00402010);
            EXPECT_EQ(Stretched(optimized, 0xFF123456, clear.Bitmap(), filter, 255), 0x00402010U);
        }
    }
}

// ---- the colour key -------------------------------------------------------------------------------------------------

TEST(StretchBlit, APixelWhoseBlockHoldsTheKeyStaysUntouchedInEveryFormat)
{
    // The key in one of 3x3 pixels; filtered to 2x2, each pixel's block has one corner in the middle.
    struct Known
    {
        unsigned      type;
        std::uint32_t key;
        std::uint32_t other;
    };
    for (const Known& known : {Known{BM_ARGB32, 0x00FF00FF, 0xFF204060}, Known{BM_RGB32, 0x00FF00FF, 0xFF204060},
                               Known{BM_RGB565, 0xF81F, 0x1234}, Known{BM_ALPHA8, 0x7F, 0x40}})
    {
        for (const int alpha : {128, 255})
        {
            for (unsigned at = 0; at < 9; ++at)
            {
                std::uint32_t      words[9] = {};
                const std::size_t  bytes    = known.type == BM_ALPHA8 ? 1 : known.type == BM_RGB565 ? 2 : 4;
                std::uint8_t*      to       = reinterpret_cast<std::uint8_t*>(words);
                support::AnySource source(nullptr, known.type, 3, 3, words, 0, false);
                for (unsigned pixel = 0; pixel < 9; ++pixel, to += bytes)
                {
                    const std::uint32_t word = pixel == at ? known.key | 0xAA000000 : known.other;
                    std::memcpy(to, &word, bytes);  // the top byte of the key's pixel does not count
                }
                Stage stage(OB_NONE, 2, 2, 0xFF123456);
                Stretch(stage.target, source, {2, 2}, BILINEAR | KEY, alpha, known.key);
                for (unsigned y = 0; y < 2; ++y)
                {
                    for (unsigned x = 0; x < 2; ++x)
                    {
                        const bool inBlock = (at % 3 == x || at % 3 == x + 1) && (at / 3 == y || at / 3 == y + 1);
                        EXPECT_EQ(stage.At(x, y) == 0xFF123456, inBlock)
                            << "type " << known.type << ", alpha " << alpha << ", key at " << at << ", pixel (" << x
                            << ", " << y << ")";
                    }
                }
            }
        }
    }
}

TEST(StretchBlit, ANearestSampleOfTheKeyLeavesTheTargetAsItWas)
{
    Words source(BM_ARGB32, 2, {0x12FF00FF, 0xFF0000FF});
    for (const int alpha : {100, 255})
    {
        Stage stage(OB_NONE, 4, 1, 0xFF000000);
        Stretch(stage.target, source.bitmap, {4, 1}, KEY, alpha, 0x00FF00FF);
        const std::uint32_t drawn = alpha == 255 ? 0xFF0000FFU : MixLinearSrcAlpha(0xFF000000, 0xFF0000FF, 100);
        EXPECT_EQ(stage.pixels, (std::vector<std::uint32_t>{0xFF000000, 0xFF000000, drawn, drawn}));
    }
}

TEST(StretchBlit, AKeyWithBitsThatThePixelsLackIsMetByFilteredSamplesOnly)
{
    // Filtered, the key is cut to a pixel of the source; nearest, colours are compared with the key as it is.
    struct Known
    {
        unsigned      type;
        Format        format;
        std::uint32_t word;
        std::uint32_t key;
        bool          metFiltered;
    };
    for (const Known& known : {Known{BM_RGB565, Format::Rgb565, 0xF81F, 0x0001F81F, true},
                               Known{BM_ALPHA8, Format::A8, 0x7F, 0x0000017F, true},
                               Known{BM_RGB32, Format::Rgb32, 0x00FF00FF, 0x01FF00FF, false},
                               Known{BM_ARGB32, Format::Argb32, 0xFFFF00FF, 0x01FF00FF, false}})
    {
        for (const int alpha : {128, 255})
        {
            Uniform source(known.type, known.format, known.word);
            EXPECT_NE(Stretched(OB_NONE, 0xFF123456, source.Bitmap(), KEY, alpha, known.key), 0xFF123456U)
                << "type " << known.type;
            EXPECT_EQ(Stretched(OB_NONE, 0xFF123456, source.Bitmap(), KEY | BILINEAR, alpha, known.key) == 0xFF123456U,
                      known.metFiltered)
                << "type " << known.type;
        }
    }
}

TEST(StretchBlit, WithoutItsFlagTheColourKeyIsNotLookedAt)
{
    for (const Cell& cell : CELLS)
    {
        if ((cell.flags & KEY) != 0) continue;
        Uniform       source(cell.type, cell.format, 0xFF7F7F7F);
        const Sample  sample   = source.Expected((cell.flags & BILINEAR) != 0);
        const int     alpha    = cell.full ? 255 : 200;
        std::uint32_t expected = cell.result(0x10203040, sample, alpha);
        ASSERT_NE(expected, 0x10203040U);
        for (const Kanvo_Color key : {sample.Color(), sample.stored, Kanvo_Color{0}})
        {
            EXPECT_EQ(Stretched(OB_NONE, 0x10203040, source.Bitmap(), cell.flags, alpha, key), expected) << cell.name;
        }
    }
}

// ---- kept oddities --------------------------------------------------------------------------------------------------

TEST(StretchBlit, AKeyedBilinearARGB32StretchBlendsAtFullOpacity)
{
    Uniform source(BM_ARGB32, Format::Argb32, 0x80FFFFFF);
    EXPECT_EQ(Stretched(OB_NONE, 0xFF000000, source.Bitmap(), BILINEAR, 255), 0x80FFFFFFU);
    EXPECT_EQ(Stretched(OB_NONE, 0xFF000000, source.Bitmap(), KEY, 255, 1), 0x80FFFFFFU);
    EXPECT_EQ(Stretched(OB_NONE, 0xFF000000, source.Bitmap(), BILINEAR | KEY, 255, 1), 0xFF7F7F7FU);
}

TEST(StretchBlit, AKeyedBilinearConvertedStretchIgnoresTheSamplesAlpha)
{
    // A8 at a level of 128: unkeyed its alpha halves the opacity, keyed the opacity alone counts.
    Uniform grey(BM_ALPHA8, Format::A8, 128);
    EXPECT_EQ(Stretched(OB_NONE, 0xFF000000, grey.Bitmap(), BILINEAR, 128),
              MixLinearSrcAlpha(0xFF000000, 0x80808080, 128));
    EXPECT_EQ(Stretched(OB_NONE, 0xFF000000, grey.Bitmap(), BILINEAR | KEY, 128, 1),
              MixLinear(0xFF000000, 0x80808080, 128));
    // RGB32 filtered has alpha 0: unkeyed it is nothing over an opaque target, keyed it is drawn.
    Uniform plain(BM_RGB32, Format::Rgb32, 0xFFFFFFFF);
    EXPECT_EQ(Stretched(OB_NONE, 0xFF000000, plain.Bitmap(), BILINEAR, 128), 0xFF000000U);
    EXPECT_EQ(Stretched(OB_NONE, 0xFF000000, plain.Bitmap(), BILINEAR | KEY, 128, 1), 0xFF7F7F7FU);
}

TEST(StretchBlitColor, AColourThroughAFilteredMapAtFullOpacityIsWeightedByItsOwnAlpha)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const unsigned type : {unsigned{BM_ALPHA8}, unsigned{BM_ARGB32}})
        {
            Uniform map(type, type == BM_ALPHA8 ? Format::A8 : Format::Argb32, type == BM_ALPHA8 ? 255 : 0xFF000000);
            EXPECT_EQ(StretchColoured(optimized, 0xFF000000, map.Bitmap(), 0x80FFFFFF, 0, 255), 0xFFFDFDFDU);
            EXPECT_EQ(StretchColoured(optimized, 0xFF000000, map.Bitmap(), 0x80FFFFFF, 0, 254), 0xFFFDFDFDU);
            EXPECT_EQ(StretchColoured(optimized, 0xFF000000, map.Bitmap(), 0x80FFFFFF, BILINEAR, 254), 0xFFFDFDFDU);
            EXPECT_EQ(StretchColoured(optimized, 0xFF000000, map.Bitmap(), 0x80FFFFFF, BILINEAR, 255), 0xFF7F7F7FU);
            EXPECT_EQ(StretchColoured(optimized, 0xFF000000, map.Bitmap(), 0x00FFFFFF, BILINEAR, 255), 0xFF000000U);
        }
    }
}

TEST(StretchBlit, StretchedRGB565AndMapsAlwaysTakeTheLoopsWithGlobalAlpha)
{
    for (const bool targetSays : {false, true})
    {
        for (const bool sourceSays : {false, true})
        {
            for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
            {
                for (const int alpha : {0, 254, 255})
                {
                    Stage stage(OB_NEON, 4, 4, 0xFF000000);
                    stage.target.SayAlpha(targetSays);
                    Halves                halves(BM_RGB565, 2, {1, 2, 3, 4}, sourceSays);
                    Coverage              map(BM_ALPHA8, 2, {1, 2, 3, 4}, sourceSays);
                    support::StretchSpies loops;
                    Stretch(stage.target, halves.bitmap, {4, 4}, filter, alpha);
                    StretchColor(stage.target, map.bitmap, {4, 4}, 0xFFFFFFFF, filter, alpha);
                    ASSERT_EQ(loops.Calls().size(), 2U);
                    EXPECT_STREQ(loops.Calls()[0].loop, filter != 0 ? HALF_FILTERED : HALF);
                    EXPECT_STREQ(loops.Calls()[1].loop, filter != 0 ? MASK_FILTERED : MASK);
                    EXPECT_EQ(loops.Calls()[0].alpha, alpha);
                    EXPECT_EQ(loops.Calls()[1].alpha, alpha);
                }
            }
        }
    }
}

TEST(StretchBlit, TheOptimisedStretchIgnoresTheColourKey)
{
    Words  words(BM_ARGB32, 2, {0xFF0000FF, 0xFFFF00FF, 0xFFFF00FF, 0xFF0000FF});
    Halves halves(BM_RGB565, 2, {0x001F, 0xF81F, 0xF81F, 0x001F});
    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
    {
        for (const int alpha : {128, 255})
        {
            for (const bool half : {false, true})
            {
                Kanvo_Bitmap&     source = half ? static_cast<Kanvo_Bitmap&>(halves.bitmap) : words.bitmap;
                const Kanvo_Color key    = half ? 0xF81F : 0x00FF00FF;
                Stage             plain(OB_NONE, 4, 4, 0xFF000000);
                Stage             keyed(OB_NONE, 4, 4, 0xFF000000);
                Stage             loops(OB_NEON, 4, 4, 0xFF000000);
                Stretch(plain.target, source, {4, 4}, filter, alpha, key);
                Stretch(keyed.target, source, {4, 4}, filter | KEY, alpha, key);
                Stretch(loops.target, source, {4, 4}, filter | KEY, alpha, key);
                EXPECT_EQ(loops.pixels, plain.pixels);
                EXPECT_NE(loops.pixels, keyed.pixels);
            }
        }
    }
}

TEST(StretchBlit, AStretchedSinglePixelFillsFromTheClipOrigin)
{
    for (const int alpha : {0, 128, 255})
    {
        // Of the source pixel (0, 0), whichever pixel is asked for; also of sizes of 0.
        for (const auto& [width, height] : {std::pair<Tov_UInt, Tov_UInt>{1, 1}, {0, 1}, {1, 0}, {0, 0}})
        {
            for (const Tov_Flag flags : {Tov_Flag{0}, NOCLIP, ASPECT, Tov_Flag{0x2}})
            {
                Stage stage(OB_NEON, 8, 6, 0xFF112233);
                Words source(BM_ARGB32, 2, {0xC0405060, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF});
                stage.target.SetCliprect(2, 1, 4, 2);
                support::LoopSpies    fills;
                support::StretchSpies loops;
                stage.target.StretchBlit(&source.bitmap, width, height, 1, 1, 5, 4, 6, 0, flags,
                                         static_cast<Tov_UByte>(alpha), 0);
                LoopCall call;  // 5 x 4 pixels from (2, 1) on: beyond the clip, and not where it was asked for
                call.loop     = alpha == 255 ? FILL : FILL_MIX;
                call.dst      = stage.pixels.data() + 8 + 2;
                call.dstPitch = 32;
                call.width    = 5;
                call.height   = 4;
                call.color    = 0x00405060;
                if (alpha != 255) call.alpha = alpha;
                EXPECT_EQ(fills.Calls(), std::vector<LoopCall>{call});
                EXPECT_TRUE(loops.Calls().empty());
                const std::uint32_t filled =
                    alpha == 255 ? 0x00405060U : support::BlitMixLinear(0xFF112233, 0x00405060, alpha);
                for (unsigned y = 0; y < 6; ++y)
                {
                    for (unsigned x = 0; x < 8; ++x)
                    {
                        const bool inside = x >= 2 && x < 7 && y >= 1 && y < 5;
                        EXPECT_EQ(stage.At(x, y), inside ? filled : 0xFF112233U) << x << ", " << y;
                    }
                }
            }
        }
    }
}

TEST(StretchBlit, OnlyAnUnkeyedUnfilteredSinglePixelOfArgb32Fills)
{
    const auto fills = [](unsigned state, unsigned type, Tov_UInt width, Tov_UInt height, Tov_Flag flags, int alpha)
    {
        Stage                      stage(state, 8, 6, 0xFF112233);
        std::vector<std::uint32_t> pixels(9, 0xFF777777);
        support::AnySource         source(nullptr, type, 3, 3, pixels.data(), 0, false);
        support::LoopSpies         spies;
        stage.target.StretchBlit(&source, width, height, 0, 0, 5, 4, 1, 1, flags, static_cast<Tov_UByte>(alpha), 1);
        return !spies.Calls().empty();
    };
    for (const int alpha : {3, 255})
    {
        EXPECT_TRUE(fills(OB_NEON, BM_ARGB32, 1, 1, 0, alpha));
        EXPECT_FALSE(fills(OB_NEON, BM_ARGB32, 1, 1, KEY, alpha));
        EXPECT_FALSE(fills(OB_NEON, BM_ARGB32, 1, 1, BILINEAR, alpha));
        EXPECT_FALSE(fills(OB_NEON, BM_ARGB32, 2, 1, 0, alpha));
        EXPECT_FALSE(fills(OB_NEON, BM_ARGB32, 1, 2, 0, alpha));
        EXPECT_FALSE(fills(OB_NEON, BM_RGB565, 1, 1, 0, alpha));
        EXPECT_FALSE(fills(OB_NEON, BM_RGB32, 1, 1, 0, alpha));
        EXPECT_FALSE(fills(OB_NEON, BM_ALPHA8, 1, 1, 0, alpha));
        EXPECT_FALSE(fills(OB_NONE, BM_ARGB32, 1, 1, 0, alpha));
    }
}

TEST(StretchBlit, TheFillOfASinglePixelStopsAtTheBitmapsEdge)
{
    for (const int alpha : {128, 255})
    {
        for (const Tov_UInt size : {4U, 7U, 100U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
        {
            Kanvo_Screen           screen(nullptr);
            support::Fence         fence(8 * 6 * 4);
            support::PitchedTarget target(&screen, 8, 6, fence.Data());
            std::fill_n(fence.As<std::uint32_t>(), 48, 0xFF112233);
            screen.GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON);
            target.Lock();
            target.SetCliprect(5, 4, 6, 4);
            Words source(BM_ARGB32, 1, {0xFF405060});
            Stretch(target, source.bitmap, {size, size}, 0, alpha);
            const std::uint32_t filled =
                alpha == 255 ? 0x00405060U : support::BlitMixLinear(0xFF112233, 0x00405060, alpha);
            for (unsigned y = 0; y < 6; ++y)
            {
                for (unsigned x = 0; x < 8; ++x)
                {
                    const bool inside = x >= 5 && y >= 4;
                    EXPECT_EQ(fence.As<std::uint32_t>()[y * 8 + x], inside ? filled : 0xFF112233U) << x << ", " << y;
                }
            }
        }
    }
}

TEST(StretchBlit, TheFillOfASinglePixelKeepsAnEmptyClipRectangleEmpty)
{
    for (const int alpha : {128, 255})
    {
        Stage stage(OB_NEON, 4, 4, 0xFF112233);
        Words source(BM_ARGB32, 1, {0xFF405060});
        stage.target.SetCliprect(3, 3, 2, 3);
        Stretch(stage.target, source.bitmap, {4, 4}, 0, alpha);
        stage.target.SetCliprect(9, 9, 12, 12);
        Stretch(stage.target, source.bitmap, {4, 4}, 0, alpha);
        EXPECT_EQ(stage.pixels, Same(16, 0xFF112233));
    }
}

TEST(StretchBlit, ABitmapWithoutASinglePixelHasNoneToFillWith)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const auto& [width, height] : {std::pair<Tov_UInt, Tov_UInt>{0, 0}, {0, 3}, {3, 0}})
        {
            for (const unsigned type :
                 {unsigned{BM_ARGB32}, unsigned{BM_RGB32}, unsigned{BM_RGB565}, unsigned{BM_ALPHA8}})
            {
                for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
                {
                    Stage                  stage(optimized, 4, 4, 0xFF112233);
                    support::Fence         nothing(0);
                    support::AssertCapture asserts;
                    support::AnySource     source(nullptr, type, width, height, nothing.Data(), 0, false);
                    for (const Tov_UInt size : {0U, 1U, 2U})
                    {
                        stage.target.StretchBlit(&source, size, size, 0, 0, 4, 4, 0, 0, filter, 255, 0);
                        stage.target.StretchBlitColor(&source, size, size, 0, 0, 4, 4, 0, 0, 0xFFFFFFFF, filter, 255);
                    }
                    EXPECT_EQ(stage.pixels, Same(16, 0xFF112233));
                }
            }
        }
    }
}

// ---- our own promises -----------------------------------------------------------------------------------------------

TEST(StretchBlit, ASourceRectangleThatLeavesItsBitmapNeverReachesTheLoops)
{
    // What lies inside is drawn as the loops would, the key off; the rest of the rectangle is not drawn.
    struct Leaving
    {
        Tov_UInt width;
        Tov_UInt height;
        Tov_UInt x;
        Tov_UInt y;
    };
    for (const Leaving& from :
         {Leaving{3, 2, 2, 0}, Leaving{2, 3, 0, 2}, Leaving{5, 4, 0, 0}, Leaving{4, 2, 0xFFFFFFFF, 0},
          Leaving{2, 4, 0, 0xFFFFFFFE}, Leaving{8, 8, 0xFFFFFFFE, 0xFFFFFFFE}})
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, KEY, BILINEAR, BILINEAR | KEY})
        {
            for (const int alpha : {100, 255})
            {
                for (const unsigned type : {unsigned{BM_ARGB32}, unsigned{BM_RGB565}})
                {
                    support::Fence   pixels(type == BM_ARGB32 ? 64 : 32);
                    support::Numbers numbers(36);
                    for (std::size_t at = 0; at < pixels.Size(); ++at) pixels.Data()[at] = numbers.NextByte();
                    support::AnySource    source(nullptr, type, 4, 4, pixels.Data(), 0, false);
                    Stage                 plain(OB_NONE, 9, 9, 0xFF112233);
                    Stage                 safe(OB_NEON, 9, 9, 0xFF112233);
                    support::StretchSpies loops;
                    plain.target.StretchBlit(&source, from.width, from.height, from.x, from.y, 9, 9, 0, 0, flags & ~KEY,
                                             static_cast<Tov_UByte>(alpha), 0);
                    safe.target.StretchBlit(&source, from.width, from.height, from.x, from.y, 9, 9, 0, 0, flags,
                                            static_cast<Tov_UByte>(alpha), pixels.As<std::uint32_t>()[0] & 0xFFFFFF);
                    EXPECT_EQ(safe.pixels, plain.pixels);
                    EXPECT_NE(safe.pixels, Same(81, 0xFF112233)) << from.x << " " << from.y << " " << flags;
                    EXPECT_TRUE(loops.Calls().empty());
                }
            }
        }
    }
}

TEST(StretchBlitColor, AMapRectangleThatLeavesItsBitmapNeverReachesTheLoops)
{
    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
    {
        for (const int alpha : {100, 255})
        {
            support::Fence pixels(16);
            std::memset(pixels.Data(), 0x99, 16);
            support::AnySource    map(nullptr, BM_ALPHA8, 4, 4, pixels.Data(), 0, false);
            Stage                 plain(OB_NONE, 9, 9, 0xFF112233);
            Stage                 safe(OB_NEON, 9, 9, 0xFF112233);
            support::StretchSpies loops;
            for (Stage* const stage : {&plain, &safe})
            {
                stage->target.StretchBlitColor(&map, 4, 4, 2, 1, 9, 9, 0, 0, 0xFFFFFFFF, filter,
                                               static_cast<Tov_UByte>(alpha));
            }
            EXPECT_EQ(safe.pixels, plain.pixels);
            EXPECT_NE(safe.pixels, Same(81, 0xFF112233));
            EXPECT_TRUE(loops.Calls().empty());
        }
    }
}

TEST(StretchBlit, AFilteredSourceOfOneRowOrColumnReadsItsNeighbourOrNothing)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        // a column inside its bitmap, with a neighbour to the right, and the last one, with one to the left
        Words source(BM_ARGB32, 3, {0xFF000000, 0xFF808080, 0xFFFFFFFF, 0xFF000000, 0xFF808080, 0xFFFFFFFF});
        Stage stage(optimized, 3, 2, 0xFF112233);
        stage.target.StretchBlit(&source.bitmap, 1, 2, 1, 0, 3, 2, 0, 0, BILINEAR, 255, 0);
        EXPECT_EQ(stage.pixels, Same(6, 0xFF808080));
        stage.target.StretchBlit(&source.bitmap, 1, 2, 2, 0, 3, 2, 0, 0, BILINEAR, 255, 0);
        EXPECT_EQ(stage.pixels, Same(6, 0xFFFEFEFE));  // 127 / 128 of the way from 0x80 to 0xFF
        // a bitmap that has but one column or row cannot be filtered
        support::Fence     fence(8);
        support::AnySource column(nullptr, BM_ARGB32, 1, 2, fence.Data(), 0, false);
        support::AnySource row(nullptr, BM_ARGB32, 2, 1, fence.Data(), 0, false);
        Stage              empty(optimized, 3, 3, 0xFF112233);
        Stretch(empty.target, column, {3, 3}, BILINEAR);
        Stretch(empty.target, row, {3, 3}, BILINEAR);
        EXPECT_EQ(empty.pixels, Same(9, 0xFF112233));
    }
}

TEST(StretchBlit, ABrokenPromiseOfNoClippingIsReportedAndDrawsNothing)
{
    constexpr To OUTSIDE[] = {{2, 2, -1, 0},
                              {2, 2, 0, -1},
                              {2, 2, 3, 0},
                              {2, 2, 0, 3},
                              {1, 1, 4, 0},
                              {1, 1, INT32_MIN, 0},
                              {1, 1, 0, INT32_MAX},
                              {5, 1, 0, 0},
                              {1, 5, 0, 0},
                              {0xFFFFFFFF, 1, 0, 0},
                              {1, 0xFFFFFFFF, 0, 0},
                              {0x80000000, 0x80000000, 0, 0},
                              {0x80000002, 1, INT32_MIN, 0},
                              {0xFFFFFFFF, 1, 2, 0},
                              {32767, 32767, -10, -10}};
    for (const To& to : OUTSIDE)
    {
        for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR, KEY})
        {
            Stage    stage(OB_NONE, 4, 4, 0xFF112233);
            Words    words(BM_ARGB32, 3, Same(9, 0xFFFFFFFF));
            Words    plain(BM_RGB32, 3, Same(9, 0xFFFFFFFF));
            Halves   halves(BM_RGB565, 3, std::vector<std::uint16_t>(9, 0xFFFF));
            Coverage map(BM_ALPHA8, 3, std::vector<std::uint8_t>(9, 255));
            for (Kanvo_Bitmap* const source :
                 {static_cast<Kanvo_Bitmap*>(&words.bitmap), static_cast<Kanvo_Bitmap*>(&plain.bitmap),
                  static_cast<Kanvo_Bitmap*>(&halves.bitmap), static_cast<Kanvo_Bitmap*>(&map.bitmap)})
            {
                EXPECT_EQ(MessagesOf([&] { Stretch(stage.target, *source, to, NOCLIP | filter); }),
                          Messages{NOT_INSIDE})
                    << to.width << "x" << to.height << " at " << to.x << ", " << to.y;
            }
            EXPECT_EQ(MessagesOf([&] { StretchColor(stage.target, map.bitmap, to, 0xFFFFFFFF, NOCLIP | filter); }),
                      Messages{NOT_INSIDE});
            EXPECT_EQ(stage.pixels, Same(16, 0xFF112233));
        }
    }
}

TEST(StretchBlit, WithoutClippingTheClipRectangleIsNotLookedAt)
{
    for (const auto& [minX, maxX] : {std::pair<Tov_UInt, Tov_UInt>{1, 1}, {2, 1}, {3, 0}})
    {
        Stage    stage(OB_NONE, 4, 2, 0xFF000000);
        Words    source(BM_ARGB32, 2, {0xFF000001, 0xFF000002});
        Coverage map(BM_ALPHA8, 1, {255});
        stage.target.SetCliprect(minX, 0, maxX, 1);
        Stretch(stage.target, source.bitmap, {4, 2}, NOCLIP);
        EXPECT_EQ(stage.pixels, (std::vector<std::uint32_t>{0xFF000001, 0xFF000001, 0xFF000002, 0xFF000002,  //
                                                            0xFF000001, 0xFF000001, 0xFF000002, 0xFF000002}));
        StretchColor(stage.target, map.bitmap, {4, 2}, 0xFFFFFFFF, NOCLIP);
        EXPECT_NE(stage.pixels[0], 0xFF000001U);
        EXPECT_NE(stage.pixels[7], 0xFF000002U);
    }
}

TEST(StretchBlit, TheLoopsClipEvenWhereNoClippingIsPromised)
{
    for (const unsigned type : {unsigned{BM_ARGB32}, unsigned{BM_RGB565}})
    {
        Stage                      stage(OB_NEON, 4, 4, 0xFF112233);
        std::vector<std::uint32_t> pixels(4, 0xFFFFFFFF);
        support::AnySource         source(nullptr, type, 2, 2, pixels.data(), 0, false);
        stage.target.SetCliprect(1, 1, 2, 2);
        EXPECT_EQ(MessagesOf([&] { Stretch(stage.target, source, {40, 40, -5, -5}, NOCLIP); }), Messages{});
        for (unsigned at = 0; at < 16; ++at)
        {
            const bool inside = at == 5 || at == 6 || at == 9 || at == 10;
            EXPECT_EQ(stage.pixels[at], inside ? 0xFFFFFFFFU : 0xFF112233U);
        }
    }
}

TEST(StretchBlit, BothPathsRefuseTheSameDestinations)
{
    // Where 16 bits end for the portable path they end for the loops, wherever the clip rectangle begins.
    struct Known
    {
        To   to;
        bool drawn;
    };
    constexpr Known KNOWN[] = {
        {{32767, 9, 0, 0}, true},       {{32767, 9, 1, 0}, false},     {{32768, 9, -1, 0}, true},
        {{32768, 9, 0, 0}, false},      {{65535, 9, -32768, 0}, true}, {{32800, 9, -32768, 0}, true},
        {{32800, 9, -32769, 0}, false}, {{12, 32767, 0, 0}, true},     {{12, 32767, 0, 1}, false},
        {{12, 32770, 0, -3}, true},     {{12, 32770, 0, -2}, false},   {{12, 32800, 0, -32768}, true},
    };
    for (const unsigned type : {unsigned{BM_ARGB32}, unsigned{BM_RGB565}, unsigned{BM_ALPHA8}})
    {
        for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
        {
            for (const auto& [to, drawn] : KNOWN)
            {
                for (const unsigned optimized : BOTH_PATHS)
                {
                    Stage                      stage(optimized, 12, 9, 0xFF112233);
                    std::vector<std::uint32_t> pixels(6, 0xFFEEDDCC);
                    support::AnySource         source(nullptr, type, 3, 2, pixels.data(), 0, false);
                    stage.target.SetCliprect(4, 3, 9, 7);
                    if (type == BM_ALPHA8)
                    {
                        StretchColor(stage.target, source, to, 0xFFFFFFFF, filter);
                    }
                    else
                    {
                        Stretch(stage.target, source, to, filter);
                    }
                    EXPECT_EQ(stage.At(9, 7) != 0xFF112233, drawn)
                        << "type " << type << ", OPTIMIZED_BLIT " << optimized << ", " << to.width << "x" << to.height
                        << " at " << to.x << ", " << to.y;
                }
            }
        }
    }
}

// ---- stored images --------------------------------------------------------------------------------------------------

namespace
{

//! Four rows of four: a run over one and a half rows, then single pixels.
const std::vector<std::uint32_t> PALETTE{0xFF0000AA, 0xFF00BB00, 0xFFCC0000, 0x00DDDDDD};

template <class Unit>
support::StoredImage<Unit> Picture4x4()
{
    return {4, 4, PALETTE, {6, 0, 0, 6, 1, 2, 1, 2, 1, 3, 4, 2, 0, 0}};
}

//! The picture's palette indices, row after row.
constexpr unsigned PICTURE_4X4[16] = {0, 0, 0, 0, 0, 0, 1, 2, 1, 2, 1, 3, 2, 2, 2, 2};

//! Draws with a loop over magnified pixels; transparent ones stay.
std::vector<std::uint32_t> Magnified(unsigned width, unsigned height, std::uint32_t under, int left, int top,
                                     int factorX, int factorY)
{
    std::vector<std::uint32_t> pixels(std::size_t{width} * height, under);
    for (int y = 0; y < 4 * factorY; ++y)
    {
        for (int x = 0; x < 4 * factorX; ++x)
        {
            const std::uint32_t color = PALETTE[PICTURE_4X4[y / factorY * 4 + x / factorX]];
            const int           toX   = left + x;
            const int           toY   = top + y;
            if (color >> 24 == 0 || toX < 0 || toY < 0 || toX >= static_cast<int>(width) ||
                toY >= static_cast<int>(height))
            {
                continue;
            }
            pixels[static_cast<unsigned>(toY) * width + static_cast<unsigned>(toX)] = color;
        }
    }
    return pixels;
}

template <class Unit>
void ExpectStoredImagesToGrowByWholeFactors()
{
    const auto image = Picture4x4<Unit>();
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, BILINEAR, KEY, ASPECT, BILINEAR | KEY | ASPECT})
        {
            Kanvo_BitmapRLE source(nullptr, image.Data(), image.Size());
            ASSERT_TRUE(source.GetReport().IsUsable());
            struct Size
            {
                Tov_UInt width;
                Tov_UInt height;
                int      factorX;
                int      factorY;
            };
            for (const Size& size :
                 {Size{10, 10, 2, 2}, Size{8, 8, 2, 2}, Size{11, 4, 2, 1}, Size{4, 15, 1, 3}, Size{3, 10, 0, 2},
                  Size{10, 3, 2, 0}, Size{0, 0, 0, 0}, Size{4 * 65537 + 3, 8, 1, 2},  // the factor is cut to 16 bits
                  Size{4 * 65536, 8, 0, 2}})
            {
                Stage stage(optimized, 14, 13, 0xFF112233);
                EXPECT_EQ(MessagesOf(
                              [&] {
                                  Stretch(stage.target, source, {size.width, size.height, 1, 2}, flags, 255, 0x0000AA);
                              }),
                          Messages{});
                const int factorY = size.factorX == 0 ? 0 : size.factorY;
                const int factorX = size.factorY == 0 ? 0 : size.factorX;
                EXPECT_EQ(stage.pixels, Magnified(14, 13, 0xFF112233, 1, 2, factorX, factorY))
                    << size.width << "x" << size.height << ", flags " << flags;
            }
        }
    }
}

}  // namespace

TEST(StretchBlit, Rle8ImagesGrowByWholeFactorsWhateverTheFlags)
{
    ExpectStoredImagesToGrowByWholeFactors<std::uint8_t>();
}

TEST(StretchBlit, Rle16ImagesGrowByWholeFactorsWhateverTheFlags)
{
    ExpectStoredImagesToGrowByWholeFactors<std::uint16_t>();
}

TEST(StretchBlit, AStoredImageIsClippedAndBlendedByTheOpacity)
{
    const auto      image = Picture4x4<std::uint8_t>();
    Kanvo_BitmapRLE source(nullptr, image.Data(), image.Size());
    Stage           stage(OB_NONE, 6, 5, 0xFF112233);
    Stretch(stage.target, source, {12, 12, -4, -5});
    EXPECT_EQ(stage.pixels, Magnified(6, 5, 0xFF112233, -4, -5, 3, 3));
    Stage faded(OB_NONE, 8, 8, 0xFF000000);
    Stretch(faded.target, source, {8, 8}, 0, 128);
    EXPECT_EQ(faded.At(0, 0), MixLinear(0xFF000000, PALETTE[0], 128));
    EXPECT_EQ(faded.At(7, 4), 0xFF000000U);
}

TEST(StretchBlit, AStoredImageWithoutSizeReportsADivisionByZero)
{
    const auto      bytes  = Picture4x4<std::uint8_t>();
    const auto      halves = Picture4x4<std::uint16_t>();
    Kanvo_BitmapRLE rle8(nullptr, bytes.Data(), bytes.Size());
    Kanvo_BitmapRLE rle16(nullptr, halves.Data(), halves.Size());
    for (Kanvo_BitmapRLE* const source : {&rle8, &rle16})
    {
        for (const unsigned optimized : BOTH_PATHS)
        {
            for (const auto& size : {std::pair<Tov_UInt, Tov_UInt>{0, 4}, {4, 0}, {0, 0}})
            {
                Stage stage(optimized, 4, 4, 0xFF112233);
                EXPECT_EQ(
                    MessagesOf(
                        [&]
                        { stage.target.StretchBlit(source, size.first, size.second, 0, 0, 10, 10, 0, 0, 0, 255, 0); }),
                    Messages{DIV_BY_ZERO});
                EXPECT_EQ(stage.pixels, Same(16, 0xFF112233));
            }
        }
    }
}

TEST(StretchBlit, OtherSourcesWithoutSizeDrawNothingInSilence)
{
    for (const unsigned type : {unsigned{BM_ARGB32}, unsigned{BM_RGB32}, unsigned{BM_RGB565}, unsigned{BM_ALPHA8}})
    {
        for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR, KEY, ASPECT, ASPECT | BILINEAR})
        {
            for (const unsigned optimized : BOTH_PATHS)
            {
                for (const auto& size :
                     {std::array<Tov_UInt, 4>{0, 2, 4, 4}, {2, 0, 4, 4}, {2, 2, 0, 4}, {2, 2, 4, 0}, {0, 0, 0, 0}})
                {
                    // on the optimised path sizes of 0 and 1 are a single pixel, which has its own test
                    if (size[0] < 2 && size[1] < 2 && optimized == OB_NEON && type == BM_ARGB32) continue;
                    Stage                      stage(optimized, 4, 4, 0xFF112233);
                    std::vector<std::uint32_t> pixels(9, 0xFFEEDDCC);
                    support::AnySource         source(nullptr, type, 3, 3, pixels.data(), 0, false);
                    EXPECT_EQ(MessagesOf(
                                  [&] {
                                      stage.target.StretchBlit(&source, size[0], size[1], 0, 0, size[2], size[3], 0, 0,
                                                               filter, 255, 0);
                                  }),
                              Messages{});
                    EXPECT_EQ(stage.pixels, Same(16, 0xFF112233));
                }
            }
        }
    }
}

// ---- misuse ---------------------------------------------------------------------------------------------------------

TEST(StretchBlit, AnUnlockedTargetIsReportedAndDrawnInto)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage    stage(optimized, 2, 2, 0xFF112233);
        Words    source(BM_ARGB32, 2, Same(4, 0xFF445566));
        Coverage map(BM_ALPHA8, 2, {255, 255, 255, 255});
        Coverage twoColours(BM_ALPHA5_2, 2, {255, 255, 255, 255});
        stage.target.Unlock(0, 0, 0, 0);
        EXPECT_EQ(MessagesOf([&] { Stretch(stage.target, source.bitmap, {2, 2}); }), Messages{NOT_LOCKED});
        EXPECT_EQ(stage.pixels, Same(4, 0xFF445566));
        EXPECT_EQ(MessagesOf(
                      [&] {
                          StretchColor(stage.target, map.bitmap, {2, 2}, 0xFF0000FE);
                      }),
                  Messages{NOT_LOCKED});
        EXPECT_EQ(stage.pixels, Same(4, MixLinear(0xFF445566, 0xFF0000FE, 255)));
        EXPECT_EQ(
            MessagesOf([&]
                       { stage.target.StretchBlit2Color(&twoColours.bitmap, 2, 2, 0, 0, 2, 2, 0, 0, 1, 2, 0, 255); }),
            Messages{NOT_LOCKED});
    }
}

TEST(StretchBlit, UnsupportedTypesAreReportedAndDrawNothing)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const unsigned type : {unsigned{BM_UNKNWON}, unsigned{BM_RGB555}, unsigned{BM_ALPHA5_2},
                                    unsigned{BM_ALPHA1}, unsigned{BM_QUANTITY}, 255U, 0x104U, 0x80000004U})
        {
            for (const Tov_Flag flags : {Tov_Flag{0}, KEY, BILINEAR, NOCLIP})
            {
                Stage    stage(optimized, 2, 2, 0xFF112233);
                Coverage source(type, 2, {255, 255, 255, 255});
                EXPECT_EQ(MessagesOf(
                              [&] {
                                  Stretch(stage.target, source.bitmap, {2, 2}, flags);
                              }),
                          Messages{NOT_SUPPORTED})
                    << type;
                stage.target.Unlock(0, 0, 0, 0);
                EXPECT_EQ(MessagesOf(
                              [&] {
                                  Stretch(stage.target, source.bitmap, {2, 2}, flags);
                              }),
                          (Messages{NOT_LOCKED, NOT_SUPPORTED}));
                EXPECT_EQ(stage.pixels, Same(4, 0xFF112233));
            }
        }
    }
}

TEST(StretchBlitColor, AMapOfTheWrongTypeIsReportedAndDrawsNothing)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const unsigned type : {unsigned{BM_UNKNWON}, unsigned{BM_RGB32}, unsigned{BM_RGB565}, unsigned{BM_RGB555},
                                    unsigned{BM_ALPHA1}, unsigned{BM_QUANTITY}, 255U, 0x105U})
        {
            Stage                      stage(optimized, 2, 2, 0xFF112233);
            std::vector<std::uint32_t> pixels(4, 0xFFFFFFFF);
            support::AnySource         map(nullptr, type, 2, 2, pixels.data(), 0, false);
            EXPECT_EQ(MessagesOf([&] { StretchColor(stage.target, map, {2, 2}, 0xFFFFFFFF); }), Messages{NOT_A_MAP});
            EXPECT_EQ(stage.pixels, Same(4, 0xFF112233));
        }
    }
}

TEST(StretchBlitColor, AnAlpha52MapPassesTheCheckAndDrawsNothing)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage    stage(optimized, 2, 2, 0xFF112233);
        Coverage map(BM_ALPHA5_2, 2, {255, 255, 255, 255});
        EXPECT_EQ(MessagesOf([&] { StretchColor(stage.target, map.bitmap, {2, 2}, 0xFFFFFFFF); }), Messages{});
        EXPECT_EQ(stage.pixels, Same(4, 0xFF112233));
    }
}

TEST(StretchBlit2Color, WantsAnAlpha52MapAndNeverDraws)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (unsigned type = 0; type <= BM_QUANTITY; ++type)
        {
            Stage                      stage(optimized, 2, 2, 0xFF112233);
            std::vector<std::uint32_t> pixels(4, 0xFFFFFFFF);
            support::AnySource         map(nullptr, type, 2, 2, pixels.data(), 0, false);
            const Messages             messages = MessagesOf(
                [&] { stage.target.StretchBlit2Color(&map, 2, 2, 0, 0, 2, 2, 0, 0, 0xFFFFFFFF, 0xFFFFFFFF, 0, 255); });
            EXPECT_EQ(messages, type == BM_ALPHA5_2 ? Messages{} : Messages{NOT_A_MAP}) << type;
            EXPECT_EQ(stage.pixels, Same(4, 0xFF112233));
        }
    }
}

TEST(StretchBlit, NullSourcesAreReportedOnceAndDrawNothing)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, KEY, BILINEAR, NOCLIP})
        {
            Stage stage(optimized, 2, 2, 0xFF112233);
            auto& to = stage.target;
            EXPECT_EQ(MessagesOf([&] { to.StretchBlit(nullptr, 1, 1, 0, 0, 2, 2, 0, 0, flags, 255, 0); }).size(), 1U);
            EXPECT_EQ(MessagesOf([&] { to.StretchBlitColor(nullptr, 1, 1, 0, 0, 2, 2, 0, 0, 7, flags, 255); }).size(),
                      1U);
            EXPECT_EQ(
                MessagesOf([&] { to.StretchBlit2Color(nullptr, 1, 1, 0, 0, 2, 2, 0, 0, 7, 8, flags, 255); }).size(),
                1U);
            EXPECT_EQ(stage.pixels, Same(4, 0xFF112233));
        }
    }
}

TEST(StretchBlit, SourcesWithoutPixelsAreReportedAndDrawNothing)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage                stage(optimized, 2, 2, 0xFF112233);
        support::PoorBitmaps poor(2);
        for (Kanvo_Bitmap* const source : std::vector<Kanvo_Bitmap*>{&poor.argb32, &poor.rgb32, &poor.rgb565, &poor.a8})
        {
            ASSERT_EQ(source->GetBuffer(), nullptr);
            for (const Tov_Flag flags : {Tov_Flag{0}, KEY, BILINEAR, NOCLIP})
            {
                for (const int alpha : {128, 255})
                {
                    for (const Tov_UInt size : {0U, 1U, 2U})
                    {
                        EXPECT_EQ(MessagesOf(
                                      [&] {
                                          stage.target.StretchBlit(source, size, size, 0, 0, 2, 2, 0, 0, flags,
                                                                   static_cast<Tov_UByte>(alpha), 0);
                                      }),
                                  Messages{NO_BUFFER});
                        if (source != &poor.argb32 && source != &poor.a8) continue;
                        EXPECT_EQ(MessagesOf(
                                      [&] {
                                          stage.target.StretchBlitColor(source, size, size, 0, 0, 2, 2, 0, 0, 7, flags,
                                                                        static_cast<Tov_UByte>(alpha));
                                      }),
                                  Messages{NO_BUFFER});
                    }
                }
            }
        }
        EXPECT_EQ(stage.pixels, Same(4, 0xFF112233));
    }
}

TEST(StretchBlit, ATargetWithoutPixelsReportsIt)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        support::PoorBitmaps poor(2, optimized);
        Kanvo_Bitmap&        target = poor.argb32;
        Words                source(BM_ARGB32, 1, {0xFF123456});
        Coverage             map(BM_ALPHA8, 1, {255});
        for (const Tov_Flag flags : {Tov_Flag{0}, BILINEAR, NOCLIP})
        {
            EXPECT_EQ(MessagesOf([&] { Stretch(target, source.bitmap, {2, 2}, flags); }), Messages{NO_BUFFER});
            EXPECT_EQ(MessagesOf([&] { StretchColor(target, map.bitmap, {2, 2}, 7, flags); }), Messages{NO_BUFFER});
        }
    }
}

TEST(StretchBlit, EachReportNamesTheLineThatChecks)
{
    Stage                  stage(OB_NONE, 2, 2, 0);
    Coverage               unsupported(BM_RGB555, 1, {255});
    support::AssertCapture asserts;
    stage.target.Unlock(0, 0, 0, 0);
    Stretch(stage.target, unsupported.bitmap, {1, 1});
    StretchColor(stage.target, unsupported.bitmap, {1, 1}, 0);
    ASSERT_EQ(asserts.Texts(), (Messages{NOT_LOCKED, NOT_SUPPORTED, NOT_LOCKED, NOT_A_MAP}));
    for (const auto& report : asserts.Reports())
    {
        EXPECT_NE(report.file.find("Kanvo_Bitmap"), std::string::npos) << report.file;
        EXPECT_GT(report.line, 0U);
    }
}

// ---- what a call leaves alone ---------------------------------------------------------------------------------------

TEST(StretchBlit, OntoItselfPixelsDrawnAlreadyAreReadAsTheyAreByThen)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
        {
            Stage            stage(optimized, 9, 7, 0);
            support::Numbers numbers(38);
            for (auto& word : stage.pixels) word = numbers.Next32();
            auto              expected = stage.pixels;
            reference::Target onto;
            onto.picture   = {Format::Argb32, 9, 7, 36, reinterpret_cast<std::uint8_t*>(expected.data()), true};
            onto.optimised = optimized == OB_NEON;
            reference::StretchBlit(onto, onto.picture, {4, 3, 1, 1, 8, 6, 0, 1}, filter, 200, 0);
            stage.target.StretchBlit(&stage.target, 4, 3, 1, 1, 8, 6, 0, 1, filter, 200, 0);
            EXPECT_EQ(stage.pixels, expected);
        }
    }
}

TEST(Kanvo_StretchBlit, WorkersTakeTheirArgumentsInTheGivenOrder)
{
    using Argb32 = Kanvo_PixelARGB32_Access;
    using A8     = Kanvo_PixelA8_Access;
    Stage    stage(OB_NONE, 8, 8, 0xFF000000);
    Words    words(BM_ARGB32, 4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    Words    plain(BM_RGB32, 4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    Coverage map(BM_ALPHA8, 4, {0, 0, 0, 0, 0, 0, 255, 0, 0, 0, 0, 0});
    Kanvo_StretchToARGB32<Argb32>::StretchBlit_Int(&words.bitmap, &stage.target, 2, 1, 1, 2, 2, 3, 4, 5, 0, 255, 0);
    EXPECT_EQ(stage.At(4, 5), 10U);
    EXPECT_EQ(stage.At(5, 7), 11U);
    EXPECT_EQ(stage.At(6, 5), 0xFF000000U);
    Kanvo_StretchToARGB32<Kanvo_PixelRGB32_Access>::StretchBlit_RGB(&plain.bitmap, &stage.target, 2, 1, 2, 1, 2, 2, 0,
                                                                    1, KEY, 255, 7);
    EXPECT_EQ(stage.At(0, 1), 0xFF000000U);  // the key
    EXPECT_EQ(stage.At(1, 2), 0xFF000008U);
    Kanvo_StretchToARGB32<A8>::StretchBlit_IntCol(&map.bitmap, &stage.target, 1, 1, 2, 1, 3, 1, 3, 0, 0xFF8040FE, 0,
                                                  255);
    EXPECT_EQ(stage.At(3, 0), MixLinear(0xFF000000, 0xFF8040FE, 255));
    EXPECT_EQ(stage.At(5, 0), MixLinear(0xFF000000, 0xFF8040FE, 255));
    EXPECT_EQ(stage.At(6, 0), 0xFF000000U);
}

TEST(Kanvo_StretchBlit, TheBodiesWithAndWithoutKeyCanBeCalledAlone)
{
    // whatever the flags say of the key
    using Argb32 = Kanvo_StretchToARGB32<Kanvo_PixelARGB32_Access>;
    using Rgb32  = Kanvo_StretchToARGB32<Kanvo_PixelRGB32_Access>;
    Words words(BM_ARGB32, 2, {0xFF000011, 0xFF000022});
    Words plain(BM_RGB32, 2, {0x11, 0x22});
    for (const Tov_Flag flags : {Tov_Flag{0}, KEY})
    {
        Stage stage(OB_NONE, 4, 4, 0xFF000000);
        Argb32::StretchBlit_Int<true>(&words.bitmap, &stage.target, 2, 1, 0, 0, 4, 1, 0, 0, flags, 255, 0x22);
        Argb32::StretchBlit_Int<false>(&words.bitmap, &stage.target, 2, 1, 0, 0, 4, 1, 0, 1, flags, 255, 0x22);
        Rgb32::StretchBlit_RGB<true>(&plain.bitmap, &stage.target, 2, 1, 0, 0, 4, 1, 0, 2, flags, 255, 0x22);
        Rgb32::StretchBlit_RGB<false>(&plain.bitmap, &stage.target, 2, 1, 0, 0, 4, 1, 0, 3, flags, 255, 0x22);
        for (unsigned y = 0; y < 4; ++y)
        {
            EXPECT_EQ(stage.At(1, y), 0xFF000011U) << "row " << y;
            EXPECT_EQ(stage.At(2, y), y % 2 == 0 ? 0xFF000000U : 0xFF000022U) << "row " << y;
        }
    }
}
