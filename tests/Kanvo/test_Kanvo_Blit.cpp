// Tests of Blit, BlitColor and Blit2Color: who does the work and with which arguments, the worked examples, the kept
// oddities, misuse, and what a call must leave alone. Expected pixels are calculated by hand or by the naive reference;
// test_Kanvo_Blit_random.cpp has the breadth, test_neonloops.cpp the loops alone.
#include "Kanvo_Blit.h"

#include <algorithm>
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

namespace
{

using support::BlitPair;
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
using support::OTHER_BIT;
using support::Snapshot;
using support::Stage;
using support::StageOf;
using support::SwappedTarget;
using support::Words;
using Pixels = std::vector<std::uint32_t>;

constexpr Tov_Flag KEY = BLIT_COLORKEY, NOCLIP = BLIT_NOCLIP, BITS = BLIT_COPY_ONLY_ALPHA;

constexpr unsigned ALL_TYPES[] = {BM_ARGB32, BM_RGB32, BM_RGB565, BM_ALPHA8};

constexpr bool IsMap(unsigned type)
{
    return type == BM_ARGB32 || type == BM_ALPHA8;
}

//! What a blit of one pixel makes of one pixel.
std::uint32_t Blitted(unsigned optimized, std::uint32_t under, Kanvo_Bitmap& source, Tov_Flag flags, int alpha,
                      Kanvo_Color key = 0)
{
    Stage stage(optimized, 1, {under});
    stage.Blit(source, {1, 1}, flags, alpha, key);
    return stage.pixels[0];
}

std::uint32_t Coloured(unsigned optimized, std::uint32_t under, Kanvo_Bitmap& map, std::uint32_t color, int alpha)
{
    Stage stage(optimized, 1, {under});
    stage.BlitColor(map, {1, 1}, color, 0, alpha);
    return stage.pixels[0];
}

//! Pixels that differ in all channels.
Pixels Scattered(std::size_t count)
{
    Pixels pixels(count);
    for (std::size_t index = 0; index < count; ++index)
    {
        pixels[index] = static_cast<std::uint32_t>(index + 3) * 0x9E3779B1U;
    }
    return pixels;
}

//! These pixels as what a reference call draws into.
reference::Target TargetOver(Pixels& pixels, unsigned width, unsigned optimized, bool saysAlpha)
{
    reference::Target target;
    target.picture   = {reference::Format::Argb32,
                        width,
                        static_cast<std::int64_t>(pixels.size() / width),
                        width * 4,
                        reinterpret_cast<std::uint8_t*>(pixels.data()),
                        saysAlpha};
    target.optimised = optimized == OB_NEON;
    return target;
}

//! "" where nobody did any work, "several" where it was not one alone.
std::string WhoWorked(const support::LoopSpies& loops, const support::PerfSpies& counters)
{
    if (loops.Calls().empty() && counters.Events().empty()) return "";
    if (loops.Calls().size() == 1 && counters.Events().empty()) return loops.Calls()[0].loop;
    if (!loops.Calls().empty()) return "several";
    const char* const first = counters.Events()[0].counter;
    return counters.OnlyCounted(first) ? first : "several";
}

}  // namespace

// ---- dispatch -------------------------------------------------------------------------------------------------------

namespace
{

constexpr const char* COPY        = "neonloops_blit_argb32_argb32";
constexpr const char* OVER_SCALED = "neonloops_blit_argb32_argb32_as_ag";
constexpr const char* CONVERT     = "neonloops_blit_argb32_rgb565";
constexpr const char* OVER_565    = "neonloops_blit_argb32_rgb565_ag";
constexpr const char* MASK        = "neonloops_blitcolor_argb32_a8";
constexpr const char* MASK_SCALED = "neonloops_blitcolor_argb32_a8_ag";

//! One cell of the dispatch tables: a source and how it is asked for, and who has to do it.
struct Cell
{
    unsigned    type;
    Tov_Flag    flags;
    int         alpha;
    bool        saysAlpha;
    const char* portable;
    const char* optimised;
};

// clang-format off
constexpr Cell BLIT_CELLS[] = {
    {BM_ARGB32, 0,            255, false, "Blit_CPY", COPY},
    {BM_ARGB32, 0,            255, true,  "Blit_CPY", COPY},         // flags 0: copied on either answer
    {BM_ARGB32, 0,            254, false, "Blit_INT", OVER_SCALED},
    {BM_ARGB32, 0,            254, true,  "Blit_INT", OVER_SCALED},
    {BM_ARGB32, 0,              0, false, "Blit_INT", OVER_SCALED},
    {BM_ARGB32, NOCLIP,       255, false, "Blit_INT", COPY},
    {BM_ARGB32, NOCLIP,       255, true,  "Blit_INT", OVER_SCALED},
    {BM_ARGB32, NOCLIP,       128, false, "Blit_INT", OVER_SCALED},
    {BM_ARGB32, NOCLIP,       128, true,  "Blit_INT", OVER_SCALED},
    {BM_ARGB32, BITS,         255, false, "Blit_INT", COPY},
    {BM_ARGB32, BITS,         255, true,  "Blit_INT", OVER_SCALED},
    {BM_ARGB32, OTHER_BIT,    255, true,  "Blit_INT", OVER_SCALED},
    {BM_ARGB32, KEY,          255, false, "Blit_INT", "Blit_INT"},
    {BM_ARGB32, KEY,          255, true,  "Blit_INT", "Blit_INT"},
    {BM_ARGB32, KEY,          128, false, "Blit_INT", "Blit_INT"},
    {BM_ARGB32, KEY | NOCLIP, 255, false, "Blit_INT", "Blit_INT"},
    {BM_RGB32,  0,            255, false, "Blit_RGB", "Blit_RGB"},
    {BM_RGB32,  0,            128, false, "Blit_RGB", "Blit_RGB"},
    {BM_RGB32,  NOCLIP,       255, true,  "Blit_RGB", "Blit_RGB"},
    {BM_RGB32,  KEY,          255, false, "Blit_RGB", "Blit_RGB"},
    {BM_ALPHA8, 0,            255, false, "Blit_RGB", "Blit_RGB"},
    {BM_ALPHA8, 0,            255, true,  "Blit_RGB", "Blit_RGB"},
    {BM_ALPHA8, 0,            128, true,  "Blit_RGB", "Blit_RGB"},
    {BM_ALPHA8, NOCLIP,       255, false, "Blit_RGB", "Blit_RGB"},
    {BM_ALPHA8, KEY,          128, true,  "Blit_RGB", "Blit_RGB"},
    {BM_RGB565, 0,            255, false, "Blit_RGB", CONVERT},
    {BM_RGB565, 0,            255, true,  "Blit_RGB", OVER_565},
    {BM_RGB565, 0,            254, false, "Blit_RGB", OVER_565},
    {BM_RGB565, 0,            254, true,  "Blit_RGB", OVER_565},
    {BM_RGB565, NOCLIP,       255, false, "Blit_RGB", CONVERT},
    {BM_RGB565, NOCLIP,       255, true,  "Blit_RGB", OVER_565},
    {BM_RGB565, BITS,         255, false, "Blit_RGB", CONVERT},
    {BM_RGB565, KEY,          255, false, "Blit_RGB", "Blit_RGB"},
    {BM_RGB565, KEY,          128, true,  "Blit_RGB", "Blit_RGB"},
    {BM_RGB565, KEY | NOCLIP, 255, false, "Blit_RGB", "Blit_RGB"},
};

constexpr Cell BLITCOLOR_CELLS[] = {
    {BM_ARGB32,   0,            255, false, "Blit_COLORINT", "Blit_COLORINT"},
    {BM_ARGB32,   0,            255, true,  "Blit_COLORINT", "Blit_COLORINT"},
    {BM_ARGB32,   0,            128, true,  "Blit_COLORINT", "Blit_COLORINT"},
    {BM_ARGB32,   KEY | NOCLIP, 255, true,  "Blit_COLORINT", "Blit_COLORINT"},
    {BM_ALPHA8,   0,            255, false, "Blit_COLORINT", MASK},
    {BM_ALPHA8,   0,            255, true,  "Blit_COLORINT", MASK_SCALED},
    {BM_ALPHA8,   0,            254, false, "Blit_COLORINT", MASK_SCALED},
    {BM_ALPHA8,   0,              0, true,  "Blit_COLORINT", MASK_SCALED},
    {BM_ALPHA8,   NOCLIP,       255, false, "Blit_COLORINT", MASK},
    {BM_ALPHA8,   BITS,         255, true,  "Blit_COLORINT", MASK_SCALED},
    {BM_ALPHA8,   KEY,          255, false, "Blit_COLORINT", "Blit_COLORINT"},
    {BM_ALPHA8,   KEY,          254, true,  "Blit_COLORINT", "Blit_COLORINT"},
    {BM_ALPHA5_2, 0,            255, false, "",              ""},
    {BM_ALPHA5_2, KEY,          128, true,  "",              ""},
};
// clang-format on

template <std::size_t Count, class Call>
void ExpectCells(const Cell (&cells)[Count], Call call)
{
    for (const Cell& cell : cells)
    {
        for (const unsigned optimized : BOTH_PATHS)
        {
            Stage              stage(optimized, 4, 3, 0xFF123456);
            Pixels             pixels(12, 0x80402010);
            support::AnySource source(nullptr, cell.type, 4, 3, pixels.data(), 0, cell.saysAlpha);
            support::LoopSpies loops;
            support::PerfSpies counters;
            EXPECT_EQ(call(stage, source, cell), Messages{});
            EXPECT_EQ(WhoWorked(loops, counters), optimized == OB_NEON ? cell.optimised : cell.portable)
                << "type " << cell.type << ", flags " << cell.flags << ", alpha " << cell.alpha
                << (cell.saysAlpha ? ", says alpha" : "") << ", OPTIMIZED_BLIT " << optimized;
        }
    }
}

}  // namespace

TEST(Blit, EachFormatFlagsOpacityAndRenderStateHaveTheirWorker)
{
    ExpectCells(BLIT_CELLS,
                [](Stage& stage, Kanvo_Bitmap& source, const Cell& cell) {
                    return stage.Blit(source, {3, 2, 1, 1}, cell.flags, cell.alpha, 0x999999);
                });
}

TEST(BlitColor, EachFormatFlagsOpacityAndRenderStateHaveTheirWorker)
{
    ExpectCells(BLITCOLOR_CELLS,
                [](Stage& stage, Kanvo_Bitmap& map, const Cell& cell) {
                    return stage.BlitColor(map, {3, 2, 1, 1}, 0xFF00FF00, cell.flags, cell.alpha);
                });
}

TEST(Blit, OnlyTheExactValueOfTheRenderStatePermitsTheLoops)
{
    for (const unsigned value : {0U, 2U, 3U, 0x100U, 0x101U, 0x80000001U, 0xFFFFFFFFU})
    {
        Stage              stage(value, 2, 1, 0);
        Words              words(BM_ARGB32, 2, {1, 2});
        Halves             halves(BM_RGB565, 2, {1, 2});
        Coverage           map(BM_ALPHA8, 2, {1, 2});
        support::LoopSpies loops;
        stage.Blit(words.bitmap, {2, 1});
        stage.Blit(halves.bitmap, {2, 1});
        stage.BlitColor(map.bitmap, {2, 1}, 0xFFFFFFFF);
        EXPECT_TRUE(loops.Calls().empty()) << value;
    }
}

TEST(Blit, TheTargetsRenderStateCountsAndNotTheSources)
{
    Stage              portable(OB_NONE, 2, 1, 0);
    Stage              optimised(OB_NEON, 2, 1, 0);
    support::LoopSpies loops;
    portable.Blit(optimised.target, {2, 1});
    EXPECT_TRUE(loops.Calls().empty());
    optimised.Blit(portable.target, {2, 1});
    EXPECT_EQ(loops.Calls().size(), 1U);
}

TEST(Blit, ATargetWithoutScreenDrawsPortably)
{
    Pixels                 pixels(2);
    support::PitchedTarget target(nullptr, 2, 1, pixels.data());
    Words                  source(BM_ARGB32, 2, {0x11223344, 0x55667788});
    support::LoopSpies     loops;
    target.Lock();
    target.Blit(&source.bitmap, 2, 1, 0, 0, 0, 0, 0, 255, 0);
    EXPECT_TRUE(loops.Calls().empty());
    EXPECT_EQ(pixels, source.pixels);
}

TEST(Blit, ATargetUsedAsSourceKnowsFromItsLastUnlockWhetherItHasAlpha)
{
    Pixels             pixels{0xFF102030, 0xFF405060};
    Stage              stage(OB_NEON, 2, 1, 0);
    Kanvo_BitmapARGB32 source(nullptr, 2, 1, BBT_RAM, pixels.data());
    support::LoopSpies loops;
    stage.Blit(source, {2, 1}, NOCLIP);  // never unlocked: may have alpha
    source.Lock();
    source.Unlock(0, 0, 1, 0);
    stage.Blit(source, {2, 1}, NOCLIP);
    pixels[1] = 0xFE405060;
    stage.Blit(source, {2, 1}, NOCLIP);  // nobody told it
    source.Lock();
    source.Unlock(0, 0, 0, 0);
    stage.Blit(source, {2, 1}, NOCLIP);
    ASSERT_EQ(loops.Calls().size(), 4U);
    EXPECT_STREQ(loops.Calls()[0].loop, OVER_SCALED);
    EXPECT_STREQ(loops.Calls()[1].loop, COPY);
    EXPECT_STREQ(loops.Calls()[2].loop, COPY);
    EXPECT_STREQ(loops.Calls()[3].loop, OVER_SCALED);
}

// ---- what loops and counters get ------------------------------------------------------------------------------------

namespace
{

//! A blit whose rectangle loses a column on the left, two on the right and rows above and below, in bitmaps with padding.
//! What is left: 5x3 pixels from (3, 2) of the source to (2, 1) of the target.
class ClippedBlit
{
public:
    ClippedBlit(unsigned type, unsigned pixelBytes, bool saysAlpha)
        : m_pixelBytes(pixelBytes),
          m_source(nullptr, type, 10, 8, m_sourceWords.data(), SourcePitch(), saysAlpha),
          m_target(&m_screen, 9, 6, m_targetWords.data(), 64)
    {
        m_screen.GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON);
        m_target.SetCliprect(2, 1, 6, 3);
        m_target.Lock();
    }

    void Blit(Tov_UByte alpha) { m_target.Blit(&m_source, 8, 4, 2, 1, 1, 0, 0, alpha, 0); }
    void BlitColor(std::uint32_t color, Tov_UByte alpha)
    {
        m_target.BlitColor(&m_source, 8, 4, 2, 1, 1, 0, color, 0, alpha);
    }

    std::vector<LoopCall> Expected(const char* loop, std::uint32_t color, int alpha) const
    {
        const auto* const dst = &m_targetWords[1 * 16 + 2];
        const auto* const src =
            reinterpret_cast<const std::uint8_t*>(m_sourceWords.data()) + 2 * SourcePitch() + 3 * m_pixelBytes;
        return {{loop, dst, src, 64, SourcePitch(), 5, 3, color, alpha}};
    }

private:
    unsigned SourcePitch() const { return 10 * m_pixelBytes + 12; }

    Kanvo                  m_library;
    Kanvo_Screen           m_screen{&m_library};
    Pixels                 m_targetWords = Pixels(16 * 6);
    Pixels                 m_sourceWords = Pixels(13 * 8);
    unsigned               m_pixelBytes;
    support::AnySource     m_source;
    support::PitchedTarget m_target;
};

}  // namespace

TEST(Blit, LoopsGetTheClippedRectangleAndThePitchesInBytes)
{
    const auto expect =
        [](unsigned type, unsigned pixelBytes, bool saysAlpha, Tov_UByte alpha, const char* loop, int passed)
    {
        ClippedBlit        blit(type, pixelBytes, saysAlpha);
        support::LoopSpies loops;
        blit.Blit(alpha);
        EXPECT_EQ(loops.Calls(), blit.Expected(loop, 0, passed));
    };
    expect(BM_ARGB32, 4, false, 255, COPY, -1);
    expect(BM_ARGB32, 4, true, 77, OVER_SCALED, 77);
    expect(BM_RGB565, 2, false, 255, CONVERT, -1);
    expect(BM_RGB565, 2, false, 77, OVER_565, 77);
    expect(BM_RGB565, 2, true, 255, OVER_565, 255);
}

TEST(BlitColor, LoopsGetTheClippedRectangleAndThePitchesInBytes)
{
    const auto expect = [](bool saysAlpha, Tov_UByte alpha, const char* loop, int passed)
    {
        ClippedBlit        blit(BM_ALPHA8, 1, saysAlpha);
        support::LoopSpies loops;
        blit.BlitColor(0x12345678, alpha);
        EXPECT_EQ(loops.Calls(), blit.Expected(loop, 0x12345678, passed));
    };
    expect(false, 255, MASK, -1);
    expect(true, 255, MASK_SCALED, 255);
    expect(false, 0, MASK_SCALED, 0);
    expect(true, 200, MASK_SCALED, 200);
}

TEST(Blit, CountersStartBeforeTheFirstPixelAndStopAfterTheLast)
{
    const auto expect = [](const char* counter, const std::function<void(Stage&)>& draw)
    {
        Stage              stage(OB_NONE, 2, 2, 0xFF000000);
        support::PerfSpies counters;
        std::uint32_t      firstAtStart = 0;
        std::uint32_t      lastAtStop   = 0;
        counters.onEvent                = [&](const support::PerfEvent& event)
        {
            if (event.starts) firstAtStart = stage.pixels.front();
            if (!event.starts) lastAtStop = stage.pixels.back();
        };
        draw(stage);
        EXPECT_TRUE(counters.OnlyCounted(counter)) << counter;
        EXPECT_EQ(firstAtStart, 0xFF000000) << counter;
        EXPECT_NE(lastAtStop, 0xFF000000) << counter;
    };
    Words words(BM_ARGB32, 2, Pixels(4, 0xFFFFFFFF));
    Words rgb(BM_RGB32, 2, Pixels(4, 0xFFFFFFFF));
    expect("Blit_CPY", [&](Stage& stage) { stage.Blit(words.bitmap, {2, 2}); });
    expect("Blit_INT", [&](Stage& stage) { stage.Blit(words.bitmap, {2, 2}, 0, 128); });
    expect("Blit_INT", [&](Stage& stage) { stage.Blit(words.bitmap, {2, 2}, KEY); });
    expect("Blit_RGB", [&](Stage& stage) { stage.Blit(rgb.bitmap, {2, 2}); });
    expect("Blit_RGB", [&](Stage& stage) { stage.Blit(rgb.bitmap, {2, 2}, KEY, 128); });
    expect("Blit_COLORINT", [&](Stage& stage) { stage.BlitColor(words.bitmap, {2, 2}, 0xFF00FF00); });
}

TEST(Blit, ACallThatIsClippedAwayReachesNobody)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage              stage(optimized, 4, 4, 0xFF000000);
        Words              source(BM_ARGB32, 2, {1, 2, 3, 4});
        Coverage           map(BM_ALPHA8, 2, {255, 255, 255, 255});
        support::LoopSpies loops;
        support::PerfSpies counters;
        for (const int at : {-2, 4})
        {
            EXPECT_EQ(stage.Blit(source.bitmap, {2, 2, 0, 0, at, 0}), Messages{});
            EXPECT_EQ(stage.Blit(source.bitmap, {2, 2, 0, 0, 0, at}, 0, 128), Messages{});
            EXPECT_EQ(stage.BlitColor(map.bitmap, {2, 2, 0, 0, at, 0}, 0xFFFFFFFF), Messages{});
            EXPECT_EQ(stage.BlitColor(map.bitmap, {2, 2, 0, 0, 0, at}, 0xFFFFFFFF, 0, 128), Messages{});
        }
        EXPECT_EQ(WhoWorked(loops, counters), "");
        EXPECT_TRUE(stage.IsAll(0xFF000000));
    }
}

// ---- ARGB32 sources -------------------------------------------------------------------------------------------------

TEST(Blit, AtFullOpacityWithoutFlagsAnArgb32SourceIsCopiedWithItsAlpha)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const bool saysAlpha : {false, true})
        {
            Stage stage(optimized, 4, 1, 0xFFAABBCC);
            Words source(BM_ARGB32, 4, {0x80123456, 0x00FFFFFF, 0xFF000000, 0x01020304}, saysAlpha);
            stage.Blit(source.bitmap, {4, 1});
            EXPECT_EQ(stage.pixels, source.pixels);
        }
    }
}

TEST(Blit, UnclippedBlitOfATranslucentSourceIsBlendedByTheLoopAndCopiedPortably)
{
    Words source(BM_ARGB32, 1, {0x80FFFFFF}, true);
    for (const Tov_Flag flags : {NOCLIP, OTHER_BIT})  // whatever the flag is
    {
        EXPECT_EQ(Blitted(OB_NONE, 0xFF000000, source.bitmap, flags, 255), 0x80FFFFFF);
        // effective alpha 128, result opaque, weight 64 of 128: 127.5 rounded down
        EXPECT_EQ(Blitted(OB_NEON, 0xFF000000, source.bitmap, flags, 255), 0xFF7F7F7F);
        // over nothing the colour is taken at the global alpha: 127 of 128
        EXPECT_EQ(Blitted(OB_NEON, 0x00000000, source.bitmap, flags, 255), 0x80FDFDFD);
    }
    // what the bitmap says counts, not what its pixels are
    Words silent(BM_ARGB32, 1, {0x80FFFFFF}, false);
    EXPECT_EQ(Blitted(OB_NEON, 0xFF000000, silent.bitmap, NOCLIP, 255), 0x80FFFFFF);
}

TEST(Blit, BelowFullOpacityAnArgb32SourceIsBlendedByItsAlphaTimesTheOpacity)
{
    Words half(BM_ARGB32, 1, {0x80FFFFFF});
    Words clear(BM_ARGB32, 1, {0x00FFFFFF});
    Words white(BM_ARGB32, 1, {0xFFFFFFFF});
    for (const unsigned optimized : BOTH_PATHS)
    {
        // 128 * 128 / 255 = 64, weight 32 of 128: 255 * 32 / 128 = 63.75
        EXPECT_EQ(Blitted(optimized, 0xFF000000, half.bitmap, 0, 128), 0xFF3F3F3F);
        // over nothing: alpha 64, colour weight 64 of 128
        EXPECT_EQ(Blitted(optimized, 0x00000000, half.bitmap, 0, 128), 0x407F7F7F);
        EXPECT_EQ(Blitted(optimized, 0xFF102030, clear.bitmap, 0, 254), 0xFF102030);
        // a source without alpha moves the colour of a translucent target all the same
        EXPECT_EQ(Blitted(optimized, 0x80000000, clear.bitmap, 0, 128), 0x807F7F7F);
        EXPECT_EQ(Blitted(optimized, 0xFF000000, white.bitmap, 0, 254), 0xFFFDFDFD);
        EXPECT_EQ(Blitted(optimized, 0xFF000000, white.bitmap, 0, 0), 0xFF000000);
        EXPECT_EQ(Blitted(optimized, 0x12345678, white.bitmap, 0, 0), 0x12345678);
    }
}

TEST(Blit, TheBitOfCopyOnlyAlphaIsNotReadButIsAFlag)
{
    Words source(BM_ARGB32, 1, {0x80FFFFFF}, true);
    EXPECT_EQ(Blitted(OB_NONE, 0xFF000000, source.bitmap, BITS, 255), 0x80FFFFFF);
    EXPECT_EQ(Blitted(OB_NEON, 0xFF000000, source.bitmap, BITS, 255), 0xFF7F7F7F);
    Halves white(BM_RGB565, 1, {0xFFFF});
    for (const unsigned optimized : BOTH_PATHS)
    {
        EXPECT_EQ(Blitted(optimized, 0xFF000000, white.bitmap, BITS, 255), 0xFFFFFFFF);
        EXPECT_EQ(Blitted(optimized, 0xFF000000, white.bitmap, BITS, 128), 0xFF7F7F7F);
    }
}

// ---- sources of other formats ---------------------------------------------------------------------------------------

TEST(Blit, AtFullOpacityRgb32IsStoredOpaqueWhateverItsTopByte)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const std::uint32_t top : {0x00000000U, 0x80000000U, 0xFF000000U})
        {
            Words source(BM_RGB32, 1, {top | 0x123456});
            EXPECT_EQ(Blitted(optimized, 0x40AABBCC, source.bitmap, 0, 255), 0xFF123456);
            EXPECT_EQ(Blitted(optimized, 0x40AABBCC, source.bitmap, NOCLIP, 255), 0xFF123456);
        }
    }
}

TEST(Blit, BelowFullOpacityTheTopByteOfRGB32CountsAsAlpha)
{
    Words none(BM_RGB32, 1, {0x00FF0000});
    Words half(BM_RGB32, 1, {0x80FF0000});
    Words full(BM_RGB32, 1, {0xFFFF0000});
    for (const unsigned optimized : BOTH_PATHS)
    {
        EXPECT_EQ(Blitted(optimized, 0xFF000000, none.bitmap, 0, 254), 0xFF000000);
        // 254 * 128 / 255 = 127, weight 63 of 128: 255 * 63 / 128 = 125.5
        EXPECT_EQ(Blitted(optimized, 0xFF000000, half.bitmap, 0, 254), 0xFF7D0000);
        // weight 127 of 128: 253.0
        EXPECT_EQ(Blitted(optimized, 0xFF000000, full.bitmap, 0, 254), 0xFFFD0000);
        // over nothing the alpha becomes 127
        EXPECT_EQ(Blitted(optimized, 0x00000000, half.bitmap, 0, 254), 0x7FFD0000);
    }
}

TEST(Blit, AtFullOpacityRgb565IsConvertedToOpaque)
{
    struct Sample
    {
        std::uint16_t pixel;
        std::uint32_t word;
    };
    // the top three bits of five, the top two of six, again below
    constexpr Sample SAMPLES[] = {{0xF800, 0xFFFF0000}, {0x07E0, 0xFF00FF00}, {0x001F, 0xFF0000FF},
                                  {0xFFFF, 0xFFFFFFFF}, {0x0000, 0xFF000000}, {0x0821, 0xFF080408},
                                  {0x8410, 0xFF848284}, {0x7BEF, 0xFF7B7D7B}};
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Sample& sample : SAMPLES)
        {
            Halves source(BM_RGB565, 1, {sample.pixel});
            EXPECT_EQ(Blitted(optimized, 0x40AABBCC, source.bitmap, 0, 255), sample.word);
        }
    }
}

TEST(Blit, EveryRgb565PixelIsConvertedAlikeOnBothPaths)
{
    std::vector<std::uint16_t> pixels(65536);
    Pixels                     expected(65536);
    for (unsigned pixel = 0; pixel < 65536; ++pixel)
    {
        pixels[pixel]   = static_cast<std::uint16_t>(pixel);
        expected[pixel] = reference::WordOfRgb565(pixel);
    }
    Halves source(BM_RGB565, 256, pixels);
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage stage(optimized, 256, 256, 0);
        stage.Blit(source.bitmap, {256, 256});
        EXPECT_EQ(stage.pixels, expected);
    }
}

TEST(Blit, BelowFullOpacityRgb565IsBlendedByTheOpacity)
{
    Halves red(BM_RGB565, 1, {0xF800});
    for (const unsigned optimized : BOTH_PATHS)
    {
        // weight 64 of 128 from 255 to 0: 127.5 rounded down
        EXPECT_EQ(Blitted(optimized, 0xFFFFFFFF, red.bitmap, 0, 128), 0xFFFF7F7F);
        EXPECT_EQ(Blitted(optimized, 0xFF102030, red.bitmap, 0, 0), 0xFF102030);
        EXPECT_EQ(Blitted(optimized, 0x00000000, red.bitmap, 0, 128), 0x807F0000);
    }
}

TEST(Blit, AnRgb565SourceThatSaysAlphaIsBlendedByTheLoopAndStoredPortably)
{
    Halves red(BM_RGB565, 1, {0xF800}, true);
    EXPECT_EQ(Blitted(OB_NONE, 0xFF000000, red.bitmap, 0, 255), 0xFFFF0000);
    EXPECT_EQ(Blitted(OB_NEON, 0xFF000000, red.bitmap, 0, 255), 0xFFFD0000);
}

TEST(Blit, AnA8SourceIsDrawnAsGreyWhichIsOpaqueAtFullOpacityOnly)
{
    Coverage grey(BM_ALPHA8, 1, {0x40});
    Coverage nothing(BM_ALPHA8, 1, {0});
    for (const unsigned optimized : BOTH_PATHS)
    {
        EXPECT_EQ(Blitted(optimized, 0x12345678, grey.bitmap, 0, 255), 0xFF404040);
        // 254 * 64 / 255 = 63, weight 31 of 128: 64 * 31 / 128 = 15.5
        EXPECT_EQ(Blitted(optimized, 0xFF000000, grey.bitmap, 0, 254), 0xFF0F0F0F);
        EXPECT_EQ(Blitted(optimized, 0xFF123456, nothing.bitmap, 0, 255), 0xFF000000);
        EXPECT_EQ(Blitted(optimized, 0xFF123456, nothing.bitmap, 0, 254), 0xFF123456);
    }
}

// ---- colour keys ----------------------------------------------------------------------------------------------------

TEST(Blit, PixelsOfTheColourKeyLeaveTheTargetAsItWas)
{
    Words    words(BM_ARGB32, 3, {0x80FF00FF, 0x80FF00FE, 0x00FF00FF});
    Words    rgb(BM_RGB32, 3, {0x80FF00FF, 0x80FF00FE, 0x00FF00FF});
    Halves   halves(BM_RGB565, 3, {0xF81F, 0xF81E, 0xF81F});
    Coverage bytes(BM_ALPHA8, 3, {0x40, 0x41, 0x40});
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag flags : {KEY, KEY | NOCLIP, KEY | OTHER_BIT})
        {
            const auto expectMiddleAlone = [&](Kanvo_Bitmap& source, Kanvo_Color key, std::uint32_t middle)
            {
                Stage stage(optimized, 3, 1, 0x11111111);
                stage.Blit(source, {3, 1}, flags, 255, key);
                EXPECT_EQ(stage.pixels, (Pixels{0x11111111, middle, 0x11111111}));
            };
            expectMiddleAlone(words.bitmap, 0x00FF00FF, 0x80FF00FE);
            expectMiddleAlone(rgb.bitmap, 0x00FF00FF, 0xFFFF00FE);
            expectMiddleAlone(halves.bitmap, 0xF81F, 0xFFFF00F7);
            expectMiddleAlone(bytes.bitmap, 0x40, 0xFF414141);
        }
    }
}

TEST(Blit, BelowFullOpacityTheOtherPixelsAreBlendedAroundTheKey)
{
    Words  words(BM_ARGB32, 2, {0xFFFF00FF, 0xFFFFFFFF});
    Words  rgb(BM_RGB32, 2, {0xFFFF00FF, 0xFFFFFFFF});
    Halves halves(BM_RGB565, 2, {0xF81F, 0xFFFF});
    for (const unsigned optimized : BOTH_PATHS)
    {
        const auto expectSecondAlone = [&](Kanvo_Bitmap& source, Kanvo_Color key)
        {
            Stage stage(optimized, 2, 1, 0xFF000000);
            stage.Blit(source, {2, 1}, KEY, 128, key);
            EXPECT_EQ(stage.pixels, (Pixels{0xFF000000, 0xFF7F7F7F}));
        };
        expectSecondAlone(words.bitmap, 0x00FF00FF);
        expectSecondAlone(rgb.bitmap, 0x00FF00FF);
        expectSecondAlone(halves.bitmap, 0xF81F);
    }
}

TEST(Blit, AKeyWithBitsThatNoPixelHasNeverMatches)
{
    Words    words(BM_ARGB32, 1, {0xFFFF00FF});
    Words    rgb(BM_RGB32, 1, {0xFFFF00FF});
    Halves   halves(BM_RGB565, 1, {0xF81F});
    Coverage bytes(BM_ALPHA8, 1, {0x40});
    for (const unsigned optimized : BOTH_PATHS)
    {
        const auto expectDrawn = [&](Kanvo_Bitmap& source, Kanvo_Color key, std::uint32_t stored)
        {
            EXPECT_EQ(Blitted(optimized, 0x11111111, source, KEY, 255, key), stored);
            EXPECT_NE(Blitted(optimized, 0x11111111, source, KEY, 128, key), 0x11111111);
        };
        expectDrawn(words.bitmap, 0xFFFF00FF, 0xFFFF00FF);
        expectDrawn(words.bitmap, 0x01FF00FF, 0xFFFF00FF);
        expectDrawn(rgb.bitmap, 0xFFFF00FF, 0xFFFF00FF);
        expectDrawn(rgb.bitmap, 0x01FF00FF, 0xFFFF00FF);
        expectDrawn(halves.bitmap, 0x0001F81F, 0xFFFF00FF);
        expectDrawn(halves.bitmap, 0xFFFFF81F, 0xFFFF00FF);
        expectDrawn(halves.bitmap, 0xFFFF00FF, 0xFFFF00FF);
        expectDrawn(bytes.bitmap, 0x00000140, 0xFF404040);
        expectDrawn(bytes.bitmap, 0x00404040, 0xFF404040);
    }
}

TEST(Blit, WithoutItsFlagTheColourKeyIsNotLookedAt)
{
    Words    words(BM_ARGB32, 1, {0xFFFF00FF});
    Words    rgb(BM_RGB32, 1, {0xFFFF00FF});
    Halves   halves(BM_RGB565, 1, {0xF81F});
    Coverage bytes(BM_ALPHA8, 1, {0x40});
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, NOCLIP, Tov_Flag{0xFFFFFFFE}})
        {
            EXPECT_EQ(Blitted(optimized, 0x11111111, words.bitmap, flags, 255, 0xFF00FF), 0xFFFF00FF);
            EXPECT_EQ(Blitted(optimized, 0x11111111, rgb.bitmap, flags, 255, 0xFF00FF), 0xFFFF00FF);
            EXPECT_EQ(Blitted(optimized, 0x11111111, halves.bitmap, flags, 255, 0xF81F), 0xFFFF00FF);
            EXPECT_EQ(Blitted(optimized, 0x11111111, bytes.bitmap, flags, 255, 0x40), 0xFF404040);
        }
    }
}

// ---- BlitColor ------------------------------------------------------------------------------------------------------

TEST(BlitColor, CoverageIsTheWeightAndScaledByTheOpacity)
{
    Coverage full(BM_ALPHA8, 1, {255}, true);
    Coverage half(BM_ALPHA8, 1, {128}, true);
    Coverage none(BM_ALPHA8, 1, {0}, true);
    for (const unsigned optimized : BOTH_PATHS)
    {
        // (32640 + 127 + 1) >> 8 = 128: 255 - 127.5 rounded down
        EXPECT_EQ(Coloured(optimized, 0xFFFFFFFF, full.bitmap, 0xFF000000, 128), 0xFF7F7F7F);
        EXPECT_EQ(Coloured(optimized, 0xFFFFFFFF, full.bitmap, 0xFF000000, 255), 0xFF000000);
        EXPECT_EQ(Coloured(optimized, 0xFFFFFFFF, half.bitmap, 0xFF000000, 255), 0xFF7F7F7F);
        // 128 * 128 / 255 = 64: 255 - 63.75 rounded down
        EXPECT_EQ(Coloured(optimized, 0xFFFFFFFF, half.bitmap, 0xFF000000, 128), 0xFFBFBFBF);
        EXPECT_EQ(Coloured(optimized, 0x00000000, half.bitmap, 0xFFFFFFFF, 255), 0x807F7F7F);
        EXPECT_EQ(Coloured(optimized, 0x12345678, none.bitmap, 0xFFFFFFFF, 255), 0x12345678);
        EXPECT_EQ(Coloured(optimized, 0x12345678, full.bitmap, 0xFFFFFFFF, 0), 0x12345678);
    }
}

TEST(BlitColor, TheColoursOwnAlphaDoesNotWeakenIt)
{
    Coverage half(BM_ALPHA8, 1, {128}, true);
    Words    halfWord(BM_ARGB32, 1, {0x80ABCDEF}, true);
    Coverage full(BM_ALPHA8, 1, {255}, true);
    Words    fullWord(BM_ARGB32, 1, {0xFF000000}, true);
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const std::uint32_t black : {0x00000000U, 0x01000000U, 0xFF000000U})
        {
            EXPECT_EQ(Coloured(optimized, 0xFFFFFFFF, half.bitmap, black, 255), 0xFF7F7F7F);
            EXPECT_EQ(Coloured(optimized, 0xFFFFFFFF, halfWord.bitmap, black, 255), 0xFF7F7F7F);
        }
        // full coverage stores the whole word
        EXPECT_EQ(Coloured(optimized, 0xFFFFFFFF, full.bitmap, 0x20123456, 255), 0x20123456);
        EXPECT_EQ(Coloured(optimized, 0xFFFFFFFF, fullWord.bitmap, 0x20123456, 255), 0x20123456);
    }
}

TEST(BlitColor, OfAnArgb32MapTheAlphaAloneCounts)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const int alpha : {1, 128, 254, 255})
        {
            for (const int coverage : {0, 1, 127, 128, 254, 255})
            {
                Words map(BM_ARGB32, 1, {static_cast<std::uint32_t>(coverage) << 24 | 0x00ABCDEF}, true);
                EXPECT_EQ(Coloured(optimized, 0xC0102030, map.bitmap, 0xFF998877, alpha),
                          support::BlitMixLinear(0xC0102030, 0xFF998877, coverage * alpha / 255));
            }
        }
    }
}

TEST(BlitColor, WhatAMapSaysOfItsAlphaChangesNoPixel)
{
    std::vector<std::uint8_t> levels(256);
    for (unsigned level = 0; level < 256; ++level) levels[level] = static_cast<std::uint8_t>(level);
    Coverage silent(BM_ALPHA8, 256, levels, false);
    Coverage says(BM_ALPHA8, 256, levels, true);
    for (int alpha = 0; alpha < 256; ++alpha)
    {
        Pixels expected;
        for (int coverage = 0; coverage < 256; ++coverage)
        {
            expected.push_back(support::BlitMixLinear(0xC0FF0080, 0xFF00FF7F, coverage * alpha / 255));
        }
        for (const unsigned optimized : BOTH_PATHS)
        {
            for (Coverage* const map : {&silent, &says})
            {
                Stage stage(optimized, 256, 1, 0xC0FF0080);
                stage.BlitColor(map->bitmap, {256, 1}, 0xFF00FF7F, 0, alpha);
                ASSERT_EQ(stage.pixels, expected) << alpha;
            }
        }
    }
}

TEST(BlitColor, BlitColorOfAnAlpha52MapDrawsNothing)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, KEY, NOCLIP})
        {
            Stage              stage(optimized, 2, 2, 0xFF123456);
            Coverage           map(BM_ALPHA5_2, 2, {255, 255, 255, 255}, true);
            support::LoopSpies loops;
            support::PerfSpies counters;
            EXPECT_EQ(stage.BlitColor(map.bitmap, {2, 2}, 0xFFFFFFFF, flags), Messages{});
            EXPECT_TRUE(stage.IsAll(0xFF123456));
            EXPECT_EQ(WhoWorked(loops, counters), "");
        }
    }
}

TEST(BlitColor, TheColourIsConvertedByTheTargetForTheLoopsOnly)
{
    const auto coloured = [](unsigned optimized, Kanvo_Bitmap& map, Tov_Flag flags, int alpha)
    {
        StageOf<SwappedTarget> stage(optimized, 1, 1, 0xFF000000);
        stage.BlitColor(map, {1, 1}, 0xC0123456, flags, alpha);
        return stage.pixels[0];
    };
    Coverage full(BM_ALPHA8, 1, {255}, false);
    Words    words(BM_ARGB32, 1, {0xFF000000}, false);
    EXPECT_EQ(coloured(OB_NEON, full.bitmap, 0, 255), 0x60563412);
    EXPECT_EQ(coloured(OB_NONE, full.bitmap, 0, 255), 0xC0123456);
    EXPECT_EQ(coloured(OB_NEON, full.bitmap, KEY, 255), 0xC0123456);
    EXPECT_EQ(coloured(OB_NEON, words.bitmap, 0, 255), 0xC0123456);
    EXPECT_EQ(coloured(OB_NONE, words.bitmap, 0, 255), 0xC0123456);
    // scaled: half way from black
    EXPECT_EQ(coloured(OB_NEON, full.bitmap, 0, 128), 0xFF2B1A09);
    EXPECT_EQ(coloured(OB_NONE, full.bitmap, 0, 128), 0xFF091A2B);
}

TEST(BlitColor, TheColourKeyFlagKeysNothing)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage    stage(optimized, 2, 1, 0xFF000000);
        Coverage map(BM_ALPHA8, 2, {0xFF, 0x80}, true);
        stage.BlitColor(map.bitmap, {2, 1}, 0xFF0000FF, KEY);
        EXPECT_EQ(stage.pixels, (Pixels{0xFF0000FF, 0xFF00007F}));
    }
}

// ---- Blit2Color -----------------------------------------------------------------------------------------------------

TEST(Blit2Color, NeverChangesTheTarget)
{
    Pixels                            pixels(9, 0xFFFFFFFF);
    constexpr std::array<Tov_Flag, 4> FLAGS{0, KEY, NOCLIP, OTHER_BIT};
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const unsigned type : {BM_ARGB32, BM_ALPHA8, BM_ALPHA5_2})
        {
            Stage              stage(optimized, 3, 3, 0x80123456);
            support::AnySource map(nullptr, type, 3, 3, pixels.data(), 0, true);
            support::LoopSpies loops;
            support::PerfSpies counters;
            for (const Tov_Flag flags : FLAGS)
            {
                for (const int alpha : {0, 128, 255})
                    EXPECT_EQ(stage.Blit2Color(&map, {3, 3}, flags, alpha), Messages{});
            }
            EXPECT_TRUE(stage.IsAll(0x80123456));
            EXPECT_EQ(WhoWorked(loops, counters), "");
        }
    }
}

TEST(Blit2Color, ClippedAwayOrPartlyOutsideIsAcceptedInSilence)
{
    Stage    stage(OB_NONE, 3, 3, 0x80123456);
    Coverage map(BM_ALPHA8, 3, std::vector<std::uint8_t>(9, 255));
    EXPECT_EQ(stage.Blit2Color(&map.bitmap, {3, 3, 0, 0, 9, 9}), Messages{});
    EXPECT_EQ(stage.Blit2Color(&map.bitmap, {3, 3, 1, 1, -1, -2}), Messages{});
    EXPECT_EQ(stage.Blit2Color(&map.bitmap, {0, 0}), Messages{});
    EXPECT_TRUE(stage.IsAll(0x80123456));
}

TEST(Blit2Color, ReportsWhatBlitColorReports)
{
    Stage  stage(OB_NONE, 2, 2, 0x80123456);
    Halves wrong(BM_RGB565, 2, {1, 2, 3, 4});
    stage.target.Unlock(0, 0, 1, 1);
    EXPECT_EQ(stage.Blit2Color(&wrong.bitmap, {2, 2}), (Messages{NOT_LOCKED, NOT_A_MAP}));
    EXPECT_TRUE(stage.IsAll(0x80123456));
}

// ---- misuse ---------------------------------------------------------------------------------------------------------

TEST(Blit, AnUnlockedTargetIsReportedAndDrawnInto)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage    stage(optimized, 1, {0xFF000000});
        Words    source(BM_ARGB32, 1, {0xFF123456});
        Coverage map(BM_ALPHA8, 1, {255});
        stage.target.Unlock(0, 0, 0, 0);
        EXPECT_EQ(stage.Blit(source.bitmap, {1, 1}), Messages{NOT_LOCKED});
        EXPECT_EQ(stage.pixels[0], 0xFF123456);
        EXPECT_EQ(stage.BlitColor(map.bitmap, {1, 1}, 0xFF654321), Messages{NOT_LOCKED});
        EXPECT_EQ(stage.pixels[0], 0xFF654321);
        // also where nothing is left to draw
        EXPECT_EQ(stage.Blit(source.bitmap, {1, 1, 0, 0, 5, 5}), Messages{NOT_LOCKED});
    }
}

TEST(Blit, ASourceNeedNotBeLocked)
{
    Stage stage(OB_NONE, 1, {0});
    Stage source(OB_NONE, 1, {0xFF123456});
    source.target.Unlock(0, 0, 0, 0);
    EXPECT_EQ(stage.Blit(source.target, {1, 1}), Messages{});
    EXPECT_EQ(stage.pixels[0], 0xFF123456);
}

TEST(Blit, UnsupportedTypesAreReportedAfterClippingAndDrawNothing)
{
    constexpr unsigned UNSUPPORTED[] = {BM_UNKNWON, BM_RGB555, BM_ALPHA5_2, BM_ALPHA1, BM_QUANTITY,
                                        11,         255,       0x104,       0xFFFFFFFF};
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const unsigned type : UNSUPPORTED)
        {
            Stage              stage(optimized, 2, 2, 0xFF123456);
            Coverage           source(type, 2, {255, 255, 255, 255}, true);
            support::LoopSpies loops;
            support::PerfSpies counters;
            for (const Tov_Flag flags : {Tov_Flag{0}, KEY, NOCLIP})
            {
                for (const int alpha : {128, 255})
                {
                    EXPECT_EQ(stage.Blit(source.bitmap, {2, 2}, flags, alpha), Messages{NOT_SUPPORTED}) << type;
                }
            }
            EXPECT_EQ(stage.Blit(source.bitmap, {2, 2, 0, 0, 2, 0}), Messages{}) << type;
            EXPECT_EQ(stage.Blit(source.bitmap, {2, 2, 0, 0, 2, 0}, KEY), Messages{}) << type;
            EXPECT_TRUE(stage.IsAll(0xFF123456));
            EXPECT_EQ(WhoWorked(loops, counters), "");
        }
    }
}

TEST(BlitColor, AMapOfTheWrongTypeIsReportedBeforeClipping)
{
    constexpr unsigned NO_MAPS[] = {BM_UNKNWON,   BM_RGB32,      BM_RGB565,   BM_RGB555, BM_ALPHA1,
                                    BM_RGB32RLE8, BM_RGB32RLE16, BM_QUANTITY, 0x105};
    Pixels             pixels(4, 0xFFFFFFFF);
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const unsigned type : NO_MAPS)
        {
            Stage              stage(optimized, 2, 2, 0xFF123456);
            support::AnySource map(nullptr, type, 2, 2, pixels.data(), 0, true);
            for (const int at : {0, 2})  // inside, clipped away
            {
                EXPECT_EQ(stage.BlitColor(map, {2, 2, 0, 0, at, 0}, 0xFFFFFFFF), Messages{NOT_A_MAP}) << type;
                EXPECT_EQ(stage.Blit2Color(&map, {2, 2, 0, 0, at, 0}), Messages{NOT_A_MAP}) << type;
            }
            EXPECT_TRUE(stage.IsAll(0xFF123456));
        }
    }
}

TEST(Blit, NullSourcesAreReportedOnceAndDrawNothing)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, KEY, NOCLIP})
        {
            Stage stage(optimized, 2, 2, 0xFF123456);
            EXPECT_EQ(stage.Blit(nullptr, {1, 1}, flags).size(), 1U);
            EXPECT_EQ(stage.BlitColor(nullptr, {1, 1}, 0xFFFFFFFF, flags).size(), 1U);
            EXPECT_EQ(stage.Blit2Color(nullptr, {1, 1}, flags).size(), 1U);
            EXPECT_TRUE(stage.IsAll(0xFF123456));
        }
    }
}

TEST(Blit, SourcesWithoutPixelsAreReportedOnceAndDrawNothing)
{
    support::PoorBitmaps             poor(2);
    const std::vector<Kanvo_Bitmap*> sources{&poor.argb32, &poor.rgb32, &poor.rgb565, &poor.a8};
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage stage(optimized, 2, 2, 0xFF123456);
        for (Kanvo_Bitmap* const source : sources)
        {
            ASSERT_EQ(source->GetBuffer(), nullptr);
            for (const Tov_Flag flags : {Tov_Flag{0}, KEY, NOCLIP})
            {
                for (const int alpha : {128, 255})
                {
                    EXPECT_EQ(stage.Blit(source, {2, 2}, flags, alpha).size(), 1U);
                    if (!IsMap(source->GetType())) continue;
                    EXPECT_EQ(stage.BlitColor(source, {2, 2}, 0xFFFFFFFF, flags, alpha).size(), 1U);
                }
            }
        }
        EXPECT_TRUE(stage.IsAll(0xFF123456));
    }
}

TEST(Blit, ATargetWithoutPixelsReportsIt)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        support::PoorBitmaps poor(2, optimized);
        Kanvo_Bitmap&        target = poor.argb32;
        Words                source(BM_ARGB32, 1, {0xFF123456});
        Coverage             map(BM_ALPHA8, 1, {255});
        for (const Tov_Flag flags : {Tov_Flag{0}, KEY, NOCLIP})
        {
            EXPECT_EQ(MessagesOf([&] { target.Blit(&source.bitmap, 1, 1, 0, 0, 0, 0, flags, 255, 0); }),
                      Messages{NO_BUFFER});
            EXPECT_EQ(MessagesOf([&] { target.BlitColor(&map.bitmap, 1, 1, 0, 0, 0, 0, 7, flags, 255); }),
                      Messages{NO_BUFFER});
        }
    }
}

TEST(Blit, ABrokenPromiseOfNoClippingIsReportedAndDrawsNothing)
{
    // target 4x4, sources 3x3
    // clang-format off
    constexpr reference::Where OUTSIDE[] = {
        {2, 2, 0, 0, -1, 0},
        {2, 2, 0, 0, 0, -1},
        {2, 2, 0, 0, 3, 0},
        {2, 2, 0, 0, 0, 3},
        {1, 1, 0, 0, 4, 0},
        {1, 1, 0, 0, INT32_MIN, 0},
        {1, 1, 0, 0, 0, INT32_MAX},
        {1, 1, 3, 0, 0, 0},
        {1, 1, 0, 3, 0, 0},
        {2, 1, 2, 0, 0, 0},
        {1, 2, 0, 2, 0, 0},
        {4, 1, 0, 0, 0, 0},                         // wider than the source
        {1, 4, 0, 0, 0, 0},
        {0xFFFFFFFF, 1, 0, 0, 0, 0},
        {1, 0xFFFFFFFF, 0, 0, 0, 0},
        {0x80000000, 0x80000000, 0, 0, 0, 0},
        {2, 1, 0xFFFFFFFF, 0, 0, 0},                // position + size is 1 in 32 bits
        {1, 2, 0, 0xFFFFFFFF, 0, 0},
        {0xFFFFFFFF, 1, 2, 0, 0, 0},
        {0xFFFFFFFF, 1, 0, 0, 2, 0},
        {0x80000002, 1, 0, 0, INT32_MIN, 0},
    };
    // clang-format on
    Words                            words(BM_ARGB32, 3, Pixels(9, 0xFFFFFFFF));
    Halves                           halves(BM_RGB565, 3, std::vector<std::uint16_t>(9, 0xFFFF));
    Coverage                         map(BM_ALPHA8, 3, std::vector<std::uint8_t>(9, 255));
    const std::vector<Kanvo_Bitmap*> sources{&words.bitmap, &halves.bitmap, &map.bitmap};
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage stage(optimized, 4, 4, 0xFF123456);
        for (const reference::Where& at : OUTSIDE)
        {
            for (Kanvo_Bitmap* const source : sources) EXPECT_EQ(stage.Blit(source, at, NOCLIP), Messages{NOT_INSIDE});
            EXPECT_EQ(stage.BlitColor(map.bitmap, at, 0xFFFFFFFF, NOCLIP), Messages{NOT_INSIDE});
            EXPECT_EQ(stage.BlitColor(words.bitmap, at, 0xFFFFFFFF, NOCLIP), Messages{NOT_INSIDE});
        }
        EXPECT_TRUE(stage.IsAll(0xFF123456));
    }
}

TEST(Blit, WithoutClippingTheClipRectangleIsNotLookedAt)
{
    Words    source(BM_ARGB32, 2, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
    Coverage map(BM_ALPHA8, 2, {255, 255, 255, 255});
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage stage(optimized, 2, 2, 0xFF000000);
        stage.target.SetCliprect(1, 1, 0, 0);
        stage.Blit(source.bitmap, {2, 2}, NOCLIP);
        EXPECT_EQ(stage.pixels, source.pixels);
        stage.BlitColor(map.bitmap, {2, 2}, 0xFF0000FF, NOCLIP);
        EXPECT_TRUE(stage.IsAll(0xFF0000FF));
    }
}

TEST(Blit, EachReportNamesTheLineThatChecks)
{
    Stage                  stage(OB_NONE, 2, 2, 0);
    Coverage               unsupported(BM_RGB555, 1, {255});
    support::AssertCapture asserts;
    stage.target.Unlock(0, 0, 0, 0);
    stage.target.Blit(&unsupported.bitmap, 1, 1, 0, 0, 0, 0, 0, 255, 0);
    stage.target.BlitColor(&unsupported.bitmap, 1, 1, 0, 0, 0, 0, 0, 0, 255);
    ASSERT_EQ(asserts.Texts(), (Messages{NOT_LOCKED, NOT_SUPPORTED, NOT_LOCKED, NOT_A_MAP}));
    const auto& reports = asserts.Reports();
    for (const auto& report : reports)
    {
        EXPECT_NE(report.file.find("Kanvo_Bitmap"), std::string::npos) << report.file;
        EXPECT_GT(report.line, 0U);
    }
    EXPECT_NE(reports[1].line, reports[3].line);
}

// ---- what a call leaves alone ---------------------------------------------------------------------------------------

TEST(Blit, TargetSourceScreenAndRenderStateStayAsTheyWere)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage    stage(optimized, 4, 4, 0x80000000);
        Words    words(BM_ARGB32, 2, {0x01020304, 2, 3, 4}, true);
        Words    rgb(BM_RGB32, 2, {0x01020304, 2, 3, 4});
        Halves   halves(BM_RGB565, 2, {1, 2, 3, 4});
        Coverage map(BM_ALPHA8, 2, {1, 2, 3, 4}, true);
        stage.target.SetCliprect(1, 0, 2, 3);
        const Snapshot target(stage.target);
        const Snapshot screen(stage.screen);
        for (support::AnySource* const source : {&words.bitmap, &rgb.bitmap, &halves.bitmap, &map.bitmap})
        {
            const Snapshot before(*source);
            for (const Tov_Flag flags : {Tov_Flag{0}, KEY, NOCLIP, OTHER_BIT})
            {
                for (const int alpha : {0, 128, 255})
                {
                    stage.Blit(source, {2, 2, 0, 0, 1, 1}, flags, alpha, 2);
                    stage.Blit(source, {3, 3, 1, 0, -1, -1}, flags, alpha, 2);
                    stage.BlitColor(source, {2, 2, 0, 0, 1, 1}, 0x80FFFFFF, flags, alpha);
                    stage.Blit2Color(source, {2, 2, 0, 0, 1, 1}, flags, alpha);
                }
            }
            EXPECT_TRUE(before.IsUnchanged());
        }
        EXPECT_TRUE(target.IsUnchanged());
        EXPECT_TRUE(screen.IsUnchanged());
        EXPECT_EQ(words.pixels, (Pixels{0x01020304, 2, 3, 4}));
        EXPECT_EQ(rgb.pixels, (Pixels{0x01020304, 2, 3, 4}));
        EXPECT_EQ(halves.pixels, (std::vector<std::uint16_t>{1, 2, 3, 4}));
        EXPECT_EQ(map.pixels, (std::vector<std::uint8_t>{1, 2, 3, 4}));
    }
}

// ---- sizes, positions, clip rectangles, pitches ---------------------------------------------------------------------

namespace
{

constexpr BlitPair::Size TARGET{7, 6};
constexpr BlitPair::Size SOURCE{5, 4};

//! Every combination of a size and a position on one axis, along which nothing may overflow.
template <class Use>
void ForHostileAxis(unsigned sourceSize, unsigned targetSize, Use use)
{
    const auto extremes = [](unsigned size)
    {
        const auto end = static_cast<std::int32_t>(size);
        return std::array<std::int32_t, 9>{INT32_MIN, INT32_MIN + 1, -1, 0, 1, end - 1, end, INT32_MAX - 1, INT32_MAX};
    };
    for (const std::int32_t size : extremes(targetSize))
    {
        for (const std::int32_t src : extremes(sourceSize))
        {
            for (const std::int32_t dst : extremes(targetSize))
            {
                if (testing::Test::HasFatalFailure()) return;
                use(static_cast<std::uint32_t>(size), static_cast<std::uint32_t>(src), dst);
            }
        }
    }
}

}  // namespace

TEST(Blit, HostileSizesAndPositionsDrawWhatLiesInside)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        BlitPair pair(optimized, TARGET, BM_ARGB32, SOURCE, 0);
        ForHostileAxis(SOURCE.width, TARGET.width,
                       [&](std::uint32_t width, std::uint32_t srcX, std::int32_t dstX)
                       {
                           ForHostileAxis(SOURCE.height, TARGET.height,
                                          [&](std::uint32_t height, std::uint32_t srcY, std::int32_t dstY) {
                                              ASSERT_TRUE(pair.Blit({width, height, srcX, srcY, dstX, dstY}));
                                          });
                       });
    }
}

TEST(Blit, HostileSizesAndPositionsDrawWhatLiesInsideForEachFormatAndWorker)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const unsigned type : ALL_TYPES)
        {
            BlitPair pair(optimized, TARGET, type, SOURCE, 0);
            pair.Clip(1, 1, 5, 3);
            const auto expectBoth = [&](std::uint32_t size, std::uint32_t src, std::int32_t dst)
            {
                for (const std::uint32_t flags : {Tov_Flag{0}, KEY, OTHER_BIT, NOCLIP})
                {
                    if (flags == NOCLIP && size == 0) continue;  // whether nothing lies inside is nobody's question
                    for (const int alpha : {255, 128})
                    {
                        ASSERT_TRUE(pair.Blit({size, 3, src, 1, dst, 2}, flags, alpha));
                        ASSERT_TRUE(pair.Blit({3, size, 1, src, 2, dst}, flags, alpha));
                        if (!IsMap(type)) continue;
                        ASSERT_TRUE(pair.BlitColor({size, 3, src, 1, dst, 2}, flags, alpha));
                        ASSERT_TRUE(pair.BlitColor({3, size, 1, src, 2, dst}, flags, alpha));
                    }
                }
            };
            ForHostileAxis(SOURCE.width, TARGET.width, expectBoth);
        }
    }
}

TEST(Blit, NegativePositionsCutTheSourceOnTheSameSide)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage stage(optimized, 3, 1, 0);
        Words source(BM_ARGB32, 4, {1, 2, 3, 4});
        stage.Blit(source.bitmap, {4, 1, 0, 0, -2, 0});
        EXPECT_EQ(stage.pixels, (Pixels{3, 4, 0}));
        stage.Blit(source.bitmap, {2, 1, 0, 0, -1, 0});
        EXPECT_EQ(stage.pixels, (Pixels{2, 4, 0}));
        stage.Blit(source.bitmap, {4, 1, 0, 0, 2, 0});
        EXPECT_EQ(stage.pixels, (Pixels{2, 4, 1}));
        // wider than the source: what the source does not have is not drawn
        stage.Blit(source.bitmap, {9, 1, 3, 0, 0, 0});
        EXPECT_EQ(stage.pixels, (Pixels{4, 4, 1}));
        // a source position is unsigned: a "negative" one leaves nothing
        stage.Blit(source.bitmap, {4, 1, 0xFFFFFFFF, 0, 0, 0});
        EXPECT_EQ(stage.pixels, (Pixels{4, 4, 1}));
    }
}

TEST(Blit, EveryPositionUnderEveryKindOfClipRectangle)
{
    constexpr std::array<std::uint32_t, 4> CLIPS[] = {
        {0, 0, 6, 5},
        {2, 1, 4, 3},
        {3, 3, 3, 3},
        {0, 0, 0, 0},
        {0, 0, 0xFFFFFFFF, 0xFFFFFFFF},  // larger than the bitmap
        {5, 4, 0x7FFFFFFF, 0x80000000},  // beyond it
        {4, 0, 3, 5},                    // empty
        {6, 5, 0, 0},                    // inverted
        {7, 0, 9, 5},                    // outside
        {0, 6, 6, 6},
        {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF},
    };
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const unsigned type : ALL_TYPES)
        {
            BlitPair pair(optimized, TARGET, type, SOURCE, 0);
            for (const auto& [minX, minY, maxX, maxY] : CLIPS)
            {
                pair.Clip(minX, minY, maxX, maxY);
                for (int y = -5; y <= 7; ++y)
                {
                    for (int x = -6; x <= 8; ++x)
                    {
                        ASSERT_TRUE(pair.Blit({5, 4, 0, 0, x, y}));
                        ASSERT_TRUE(pair.Blit({3, 2, 1, 1, x, y}, OTHER_BIT, 254));
                        if (!IsMap(type)) continue;
                        ASSERT_TRUE(pair.BlitColor({5, 4, 0, 0, x, y}));
                    }
                }
            }
        }
    }
}

TEST(Blit, PicturesOfOnePixelOneRowAndOneColumn)
{
    constexpr BlitPair::Size SIZES[] = {{1, 1}, {1, 9}, {9, 1}, {2, 2}};
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const unsigned type : ALL_TYPES)
        {
            for (const BlitPair::Size& source : SIZES)
            {
                for (const BlitPair::Size& target : SIZES)
                {
                    BlitPair pair(optimized, target, type, source, 0);
                    for (int offset = -9; offset <= 9; ++offset)
                    {
                        for (const int alpha : {255, 200})
                        {
                            ASSERT_TRUE(pair.Blit({source.width, source.height, 0, 0, offset, 0}, 0, alpha));
                            ASSERT_TRUE(pair.Blit({source.width, source.height, 0, 0, 0, offset}, KEY, alpha));
                            if (!IsMap(type)) continue;
                            ASSERT_TRUE(pair.BlitColor({source.width, source.height, 0, 0, offset, 0}, 0, alpha));
                        }
                    }
                }
            }
        }
    }
}

TEST(Blit, RowsLieAsFarApartAsThePitchesSay)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const unsigned type : ALL_TYPES)
        {
            for (const unsigned padding : {0U, 4U, 12U, 64U})
            {
                BlitPair pair(optimized, TARGET, type, SOURCE, padding);
                for (const int alpha : {255, 128})
                {
                    for (const std::uint32_t flags : {Tov_Flag{0}, KEY, NOCLIP})
                    {
                        ASSERT_TRUE(pair.Blit({4, 3, 1, 1, 2, 3}, flags, alpha)) << type << " " << padding;
                        if (!IsMap(type)) continue;
                        ASSERT_TRUE(pair.BlitColor({4, 3, 1, 1, 2, 3}, flags, alpha)) << type << " " << padding;
                    }
                }
            }
        }
    }
}

TEST(Blit, SizesOfZeroDrawNothingInSilence)
{
    Words    source(BM_ARGB32, 2, {1, 2, 3, 4});
    Coverage map(BM_ALPHA8, 2, {255, 255, 255, 255});
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage stage(optimized, 2, 2, 0xFF123456);
        for (const Tov_Flag flags : {Tov_Flag{0}, KEY, NOCLIP})
        {
            for (const int alpha : {128, 255})
            {
                EXPECT_EQ(stage.Blit(source.bitmap, {0, 2}, flags, alpha), Messages{});
                EXPECT_EQ(stage.Blit(source.bitmap, {2, 0}, flags, alpha), Messages{});
                EXPECT_EQ(stage.BlitColor(map.bitmap, {0, 2}, 0xFFFFFFFF, flags, alpha), Messages{});
                EXPECT_EQ(stage.BlitColor(map.bitmap, {2, 0}, 0xFFFFFFFF, flags, alpha), Messages{});
            }
        }
        EXPECT_TRUE(stage.IsAll(0xFF123456));
    }
}

TEST(Blit, BitmapsWithoutExtentAreNeitherReadNorDrawnInto)
{
    support::Fence nowhere(0);
    for (const unsigned optimized : BOTH_PATHS)
    {
        Stage stage(optimized, 2, 2, 0xFF123456);
        for (const BlitPair::Size& size : {BlitPair::Size{0, 0}, BlitPair::Size{0, 5}, BlitPair::Size{5, 0}})
        {
            support::AssertCapture
                               asserts;  // what constructors and calls have to say of such bitmaps is not asked here
            support::AnySource source(nullptr, BM_ARGB32, size.width, size.height, nowhere.Data(), 0, true);
            support::AnySource map(nullptr, BM_ALPHA8, size.width, size.height, nowhere.Data(), 0, true);
            Kanvo_BitmapARGB32 target(&stage.screen, size.width, size.height, BBT_RAM, nowhere.Data());
            target.Lock();
            for (const int alpha : {128, 255})
            {
                for (const Tov_Flag flags : {Tov_Flag{0}, KEY, NOCLIP})
                {
                    stage.Blit(source, {2, 2}, flags, alpha);
                    stage.BlitColor(map, {2, 2}, 0xFFFFFFFF, flags, alpha);
                    target.Blit(&stage.target, 2, 2, 0, 0, 0, 0, flags, static_cast<Tov_UByte>(alpha), 0);
                    target.FillRect(2, 2, 0, 0, 0xFFFFFFFF, flags);
                }
            }
        }
        EXPECT_TRUE(stage.IsAll(0xFF123456));
    }
}

// ---- a bitmap onto itself -------------------------------------------------------------------------------------------

TEST(Blit, OntoItselfPixelsDrawnAlreadyAreReadAsTheyAreByThen)
{
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, KEY, OTHER_BIT})
        {
            const auto moved = [&](unsigned width, const reference::Where& at)
            {
                Stage stage(optimized, width, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
                stage.target.SayAlpha(false);
                stage.Blit(stage.target, at, flags, 255, 99);
                Pixels blues;
                for (const std::uint32_t pixel : stage.pixels) blues.push_back(pixel & 255);
                return blues;
            };
            EXPECT_EQ(moved(4, {3, 1, 0, 0, 1, 0}), (Pixels{1, 1, 1, 1}));  // to the right
            EXPECT_EQ(moved(4, {3, 1, 1, 0, 0, 0}), (Pixels{2, 3, 4, 4}));  // to the left
            EXPECT_EQ(moved(1, {1, 3, 0, 0, 0, 1}), (Pixels{1, 1, 1, 1}));  // down
            EXPECT_EQ(moved(1, {1, 3, 0, 1, 0, 0}), (Pixels{2, 3, 4, 4}));  // up
        }
    }
}

TEST(Blit, OntoItselfInEightDirectionsAndAnyDistance)
{
    constexpr unsigned WIDTH = 37, HEIGHT = 11;  // rows long enough for wide copies
    const Pixels       before = Scattered(WIDTH * HEIGHT);
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, KEY, OTHER_BIT})
        {
            for (const int alpha : {255, 254, 128})
            {
                for (const bool saysAlpha : {false, true})
                {
                    for (int dy = -3; dy <= 3; ++dy)
                    {
                        for (int dx = -19; dx <= 19; ++dx)
                        {
                            const reference::Where at{30, 8, 4, 1, 4 + dx, 1 + dy};
                            Pixels                 expected = before;
                            const auto             target   = TargetOver(expected, WIDTH, optimized, saysAlpha);
                            reference::Blit(target, target.picture, at, flags, alpha, 5);
                            Stage stage(optimized, WIDTH, before);
                            stage.target.SayAlpha(saysAlpha);
                            stage.Blit(stage.target, at, flags, alpha, 5);
                            ASSERT_EQ(stage.pixels, expected) << dx << ", " << dy << " flags " << flags << " alpha "
                                                              << alpha << " path " << optimized;
                        }
                    }
                }
            }
        }
    }
}

TEST(Blit, OntoItselfBothPathsGiveTheSameBytesWhereBothPromiseTo)
{
    const Pixels before = Scattered(23 * 7);
    for (const int alpha : {255, 254, 128, 1, 0})
    {
        for (int dy = -2; dy <= 2; ++dy)
        {
            for (int dx = -9; dx <= 9; ++dx)
            {
                const reference::Where at{20, 6, 2, 1, 2 + dx, 1 + dy};
                Stage                  portable(OB_NONE, 23, before);
                Stage                  optimised(OB_NEON, 23, before);
                portable.Blit(portable.target, at, 0, alpha);
                optimised.Blit(optimised.target, at, 0, alpha);
                ASSERT_EQ(portable.pixels, optimised.pixels) << dx << ", " << dy << " alpha " << alpha;
            }
        }
    }
}

TEST(BlitColor, TheTargetsOwnAlphaMayBeTheMap)
{
    const Pixels before = Scattered(9 * 3);
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (int dx = -3; dx <= 3; ++dx)
        {
            const reference::Where at{9, 3, 0, 0, dx, 1};
            Pixels                 expected = before;
            const auto             target   = TargetOver(expected, 9, optimized, true);
            reference::BlitColor(target, target.picture, at, 0x40FFFFFF, 0, 200);
            Stage stage(optimized, 9, before);
            stage.BlitColor(stage.target, at, 0x40FFFFFF, 0, 200);
            EXPECT_EQ(stage.pixels, expected) << dx;
        }
    }
}

// ---- many times -----------------------------------------------------------------------------------------------------

TEST(Blit, AThousandBlendsStopAtTheirFixedPoint)
{
    // One step goes floor((s - d) * w / 128). Downwards every fraction is a step, so the end is s itself; upwards it is
    // the first level with (s - d) * w < 128.
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const int alpha : {2, 3, 64, 128, 254})
        {
            const int weight = alpha / 2;
            const int gap    = (128 + weight - 1) / weight - 1;
            for (const int level : {0, 1, 100, 255})
            {
                const auto grey = [](int value) { return support::Join(255, value, value, value); };
                Words      words(BM_ARGB32, 2, {grey(level), grey(level)});
                Stage      stage(optimized, 2, {grey(0), grey(255)});
                for (int turn = 0; turn < 1000; ++turn) stage.Blit(words.bitmap, {2, 1}, 0, alpha);
                EXPECT_EQ(stage.pixels, (Pixels{grey(std::max(0, level - gap)), grey(level)}))
                    << alpha << " towards " << level;
            }
        }
    }
}

TEST(BlitColor, AThousandBlendsStopAtTheirFixedPoint)
{
    // As above in 1/256. Alpha A grows by a - ceil(a * A / 255) and ends at the first A with a * A > 255 * (a - 1).
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const int alpha : {1, 2, 64, 128, 254, 255})
        {
            const int gap     = alpha == 255 ? 0 : (256 + alpha - 1) / alpha - 1;
            int       opacity = 0;
            while (alpha * opacity <= 255 * (alpha - 1)) ++opacity;
            for (const int level : {0, 1, 100, 255})
            {
                const auto grey = [](int value) { return support::Join(255, value, value, value); };
                Coverage   map(BM_ALPHA8, 3, std::vector<std::uint8_t>(3, static_cast<std::uint8_t>(alpha)));
                Stage      stage(optimized, 3, {grey(0), grey(255), grey(level) & 0x00FFFFFF});
                for (int turn = 0; turn < 1000; ++turn) stage.BlitColor(map.bitmap, {3, 1}, grey(level));
                EXPECT_EQ(stage.pixels, (Pixels{grey(std::max(0, level - gap)), grey(level),
                                                support::Join(opacity, level, level, level)}))
                    << alpha << " towards " << level;
            }
        }
    }
}

// ---- the workers by themselves --------------------------------------------------------------------------------------

TEST(Kanvo_Blit, ACopiedRowIsAsLongAsWidthTimesBytesPerPixel)
{
    Words source(BM_ARGB32, 3, {0x11111111, 0x22222222, 0x33333333, 0x44444444, 0x55555555, 0x66666666});
    for (const unsigned bytesPerPixel : {1U, 2U, 3U, 4U})
    {
        for (const unsigned width : {1U, 2U, 3U})
        {
            Stage  stage(OB_NONE, 3, 2, 0);
            Pixels expected(6);
            for (const std::size_t row : {0U, 3U})
            {
                std::memcpy(&expected[row], &source.pixels[row], std::size_t{width} * bytesPerPixel);
            }
            Kanvo_BlitARGB32::Blit_Cpy(&source.bitmap, &stage.target, stage.pixels.data(), width, 2, 0, 0, 0, 0,
                                       bytesPerPixel);
            EXPECT_EQ(stage.pixels, expected) << width << " of " << bytesPerPixel;
        }
    }
}

TEST(Kanvo_Blit, WorkersTakeTheirArgumentsInTheGivenOrder)
{
    Stage         stage(OB_NEON, 4, 4, 0xFF000000);  // the render state is not their business
    Words         words(BM_ARGB32, 3, {1, 2, 3, 4, 0x80FFFFFF, 0x80FF00FF, 7, 8, 9});
    Halves        halves(BM_RGB565, 2, {0xF800, 0x07E0});
    Coverage      map(BM_ALPHA8, 2, {0, 255});
    Kanvo_Bitmap* target = &stage.target;
    void* const   base   = stage.target.GetBuffer();

    // width 2, height 1, from (1, 1) to (2, 3)
    Kanvo_BlitARGB32::Blit_Cpy(&words.bitmap, target, base, 2, 1, 1, 1, 2, 3, 4);
    EXPECT_EQ(stage.At(2, 3), 0x80FFFFFF);
    EXPECT_EQ(stage.At(3, 3), 0x80FF00FF);
    EXPECT_EQ(stage.At(2, 2), 0xFF000000);

    Kanvo_BlitARGB32::Blit_Int(&words.bitmap, target, base, 2, 1, 1, 1, 0, 0, BLIT_COLORKEY, 255, 0xFF00FF);
    EXPECT_EQ(stage.At(0, 0), 0x80FFFFFF);
    EXPECT_EQ(stage.At(1, 0), 0xFF000000);
    Kanvo_BlitARGB32::Blit_Int<true>(&words.bitmap, target, base, 2, 1, 1, 1, 0, 1, 255, 0xFFFFFF);
    EXPECT_EQ(stage.At(0, 1), 0xFF000000);
    EXPECT_EQ(stage.At(1, 1), 0x80FF00FF);
    Kanvo_BlitARGB32::Blit_Int<false>(&words.bitmap, target, base, 1, 1, 1, 1, 2, 0, 128, 0xFFFFFF);
    EXPECT_EQ(stage.At(2, 0), 0xFF3F3F3F);

    Kanvo_BlitRGB565::Blit_RGB(&halves.bitmap, target, base, 2, 1, 0, 0, 0, 2, BLIT_COLORKEY, 255, 0xF800);
    EXPECT_EQ(stage.At(0, 2), 0xFF000000);
    EXPECT_EQ(stage.At(1, 2), 0xFF00FF00);
    Kanvo_BlitRGB565::Blit_RGB<false>(&halves.bitmap, target, base, 1, 1, 0, 0, 0, 2, 255, 0xF800);
    EXPECT_EQ(stage.At(0, 2), 0xFFFF0000);

    Kanvo_BlitA8::Blit_ColorInt(&map.bitmap, target, base, 2, 1, 0, 0, 0, 3, 0x40123456, 255);
    EXPECT_EQ(stage.At(0, 3), 0xFF000000);
    EXPECT_EQ(stage.At(1, 3), 0x40123456);

    Kanvo_BlitARGB32::Fill_Color(target, 1, 2, 3, 0, 0xFFABCDEF);
    EXPECT_EQ(stage.At(3, 0), 0xFFABCDEF);
    EXPECT_EQ(stage.At(3, 1), 0xFFABCDEF);
    EXPECT_EQ(stage.At(3, 2), 0xFF000000);
    EXPECT_EQ(stage.At(2, 1), 0xFF000000);
}
