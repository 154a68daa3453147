// Blits through an alpha map: who does the work of every combination of formats on both settings of OPTIMIZED_BLIT, what
// is said about combinations that do not exist, which pixels come out, and what maps may not do: be read where they do
// not exist.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "BlitBitmaps.h"
#include "DrawSpies.h"
#include "Fence.h"
#include "Kanvo_Blit.h"
#include "MapLoopSpies.h"
#include "NaiveMix.h"
#include "Reference_BlitAlpha.h"
#include "Reference_Rle.h"
#include "RleImage.h"
#include "RleSources.h"
#include "Sweep.h"

namespace
{

using support::AnySource;
using support::AssertCapture;
using support::Messages;
using support::MessagesOf;
using support::PitchedTarget;

using Opacities = std::initializer_list<Tov_UByte>;

constexpr const char* NOT_LOCKED    = "bitmap not locked";
constexpr const char* NOT_INSIDE    = "unclipped rectangle outside the bitmap";
constexpr const char* NOT_SUPPORTED = "blit not supported";
constexpr const char* NOT_A_MAP     = "alpha bitmap is not the right type";

reference::Format FormatOf(unsigned type)
{
    switch (type)
    {
    case BM_ARGB32: return reference::Format::Argb32;
    case BM_RGB32: return reference::Format::Rgb32;
    case BM_RGB565: return reference::Format::Rgb565;
    case BM_ALPHA8: return reference::Format::A8;
    case BM_ALPHA5_2: return reference::Format::Alpha5_2;
    default: return reference::Format::Other;
    }
}

//! Pixels in memory of a format, with rows a little further apart than they need to be. Contents are the same in every
//! run, with all extremes.
struct Pixels
{
    Pixels(unsigned ofType, unsigned ofWidth, unsigned ofHeight, std::uint64_t seed = 1)
        : type(ofType),
          width(ofWidth),
          height(ofHeight),
          pitch(ofWidth * static_cast<unsigned>(reference::BytesPerPixel(FormatOf(ofType))) + 8),
          bytes(std::size_t{pitch} * height)
    {
        support::Numbers numbers(seed * 100 + type);
        for (std::size_t at = 0; at < bytes.size(); at += 4)
        {
            support::Store(bytes, at, numbers.NextHostileWord(), std::min<std::size_t>(4, bytes.size() - at));
        }
    }

    std::uint8_t* At(unsigned x, unsigned y)
    {
        return bytes.data() + std::size_t{y} * pitch +
               x * static_cast<std::size_t>(reference::BytesPerPixel(FormatOf(type)));
    }
    std::uint32_t Word(unsigned x, unsigned y)
    {
        std::uint32_t word = 0;
        std::memcpy(&word, At(x, y), sizeof word);
        return word;
    }
    void Set(unsigned x, unsigned y, std::uint32_t value)
    {
        const auto size = static_cast<std::size_t>(reference::BytesPerPixel(FormatOf(type)));
        for (std::size_t byte = 0; byte < size; ++byte, value /= 256) At(x, y)[byte] = static_cast<std::uint8_t>(value);
    }
    void SetAll(std::uint32_t value)
    {
        for (unsigned y = 0; y < height; ++y)
        {
            for (unsigned x = 0; x < width; ++x) Set(x, y, value);
        }
    }
    reference::Picture Picture(bool hasAlpha) { return {FormatOf(type), width, height, pitch, bytes.data(), hasAlpha}; }

    unsigned                  type;
    unsigned                  width;
    unsigned                  height;
    unsigned                  pitch;
    std::vector<std::uint8_t> bytes;
};

class BlitAlpha : public testing::Test
{
protected:
    BlitAlpha() { optimised.GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON); }

    Kanvo_Screen& ScreenOf(bool loops) { return loops ? optimised : plain; }

    //! The word that one pixel becomes: a source pixel through a map pixel over a target pixel.
    std::uint32_t One(bool loops, unsigned sourceType, std::uint32_t source, unsigned mapType, std::uint32_t map,
                      std::uint32_t target, Tov_Flag flags, Tov_UByte alpha, bool hasAlpha = false)
    {
        Pixels from(sourceType, 1, 1);
        Pixels through(mapType, 1, 1);
        from.Set(0, 0, source);
        through.Set(0, 0, map);
        AnySource     sourceBitmap(&ScreenOf(loops), sourceType, 1, 1, from.bytes.data(), from.pitch, hasAlpha);
        AnySource     mapBitmap(&ScreenOf(loops), mapType, 1, 1, through.bytes.data(), through.pitch, true);
        PitchedTarget bitmap(&ScreenOf(loops), 1, 1, &target);
        bitmap.Lock();
        bitmap.BlitAlpha(&sourceBitmap, &mapBitmap, 1, 1, 0, 0, 0, 0, flags, alpha);
        return target;
    }

    Kanvo        library;
    Kanvo_Screen plain{&library};
    Kanvo_Screen optimised{&library};
};

// ---- the table ------------------------------------------------------------------------------------------------------

//! One cell: a source type and a map type. Workers are the names of counters (Blit_...) or loops (neonloops_...).
struct Cell
{
    unsigned    source;
    unsigned    map;
    const char* portable;
    const char* loopOpaque;       // optimised, full opacity, and a source that says it has no alpha
    const char* loopTranslucent;  // optimised, otherwise
    const char* copyPortable;     // with BLIT_COPY_ONLY_ALPHA
    const char* copyLoop;
};

constexpr const char* INT       = "Blit_ALPHAINT";
constexpr const char* RGB       = "Blit_ALPHARGB";
constexpr const char* COPY      = "Blit_RGB";
constexpr const char* OVER      = "neonloops_blit_argb32_argb32_as";
constexpr const char* OVER_AG   = "neonloops_blit_argb32_argb32_as_ag";
constexpr const char* STORE     = "neonloops_blit_argb32_rgb565a8";
constexpr const char* RGB565    = "neonloops_blit_argb32_rgb565a8_as";
constexpr const char* RGB565_AG = "neonloops_blit_argb32_rgb565a8_as_ag";

// clang-format off
constexpr Cell CELLS[] = {
    {BM_RGB32,  BM_ALPHA8, INT, INT,    INT,       INT,  INT},
    {BM_RGB32,  BM_ARGB32, INT, INT,    INT,       INT,  INT},
    {BM_ARGB32, BM_ALPHA8, INT, OVER,   OVER_AG,   INT,  nullptr},  // as without the flag
    {BM_ARGB32, BM_ARGB32, INT, OVER,   OVER_AG,   INT,  nullptr},
    {BM_ALPHA8, BM_ALPHA8, RGB, RGB,    RGB,       RGB,  RGB},
    {BM_ALPHA8, BM_ARGB32, RGB, RGB,    RGB,       RGB,  RGB},
    {BM_RGB565, BM_ALPHA8, INT, RGB565, RGB565_AG, COPY, STORE},
    {BM_RGB565, BM_ARGB32, INT, INT,    INT,       INT,  INT},
};
// clang-format on

const char* ExpectedWorker(const Cell& cell, bool loops, bool opaquePlain, bool copyOnlyAlpha)
{
    if (copyOnlyAlpha && (!loops || cell.copyLoop != nullptr)) return loops ? cell.copyLoop : cell.copyPortable;
    return !loops ? cell.portable : opaquePlain ? cell.loopOpaque : cell.loopTranslucent;
}

//! The names of the loops that were called, and of the counters that ran properly.
std::string WhoWorked(const support::LoopSpies& loops, const support::MapLoopSpies& mapLoops,
                      const support::PerfSpies& counters)
{
    std::string names;
    for (const auto& call : loops.Calls()) names += call.loop;
    for (const auto& call : mapLoops.Calls()) names += call.loop;
    if (counters.Events().empty()) return names;
    const std::string counter = counters.Events().front().counter;
    return names + (counters.OnlyCounted(counter) ? counter : counter + " not counted properly");
}

TEST_F(BlitAlpha, EveryCellOfTheTableHasItsWorkerOnBothSettings)
{
    for (const Cell& cell : CELLS)
    {
        for (int bits = 0; bits < 32; ++bits)
        {
            const bool     permitted = (bits & 1) != 0;
            const bool     hasAlpha  = (bits & 2) != 0;
            const bool     copy      = (bits & 4) != 0;
            const bool     keyed     = (bits & 8) != 0;
            const int      alpha     = (bits & 16) != 0 ? 255 : 200;
            const Tov_Flag flags = (copy ? Tov_Flag{BLIT_COPY_ONLY_ALPHA} : 0) | (keyed ? Tov_Flag{BLIT_COLORKEY} : 0);
            SCOPED_TRACE(testing::Message() << "type " << cell.source << " through type " << cell.map
                                            << (permitted ? ", loops permitted" : "") << (hasAlpha ? ", alpha" : "")
                                            << ", flags " << flags << ", opacity " << alpha);
            Pixels            source(cell.source, 11, 7);
            Pixels            map(cell.map, 11, 7, 2);
            Pixels            target(BM_ARGB32, 12, 8, 3);
            Pixels            expected(BM_ARGB32, 12, 8, 3);
            AnySource         from(&plain, cell.source, 11, 7, source.bytes.data(), source.pitch, hasAlpha);
            AnySource         through(&plain, cell.map, 11, 7, map.bytes.data(), map.pitch, !hasAlpha);
            PitchedTarget     bitmap(&ScreenOf(permitted), 12, 8, target.bytes.data(), target.pitch);
            reference::Target wanted;
            wanted.picture                  = expected.Picture(true);
            wanted.optimised                = permitted;
            const reference::Picture mapped = map.Picture(!hasAlpha);
            const auto               outcome =
                reference::BlitAlpha(wanted, source.Picture(hasAlpha), &mapped, {9, 6, 1, 1, 2, 1}, flags, alpha);
            bitmap.Lock();
            AssertCapture         asserts;
            support::LoopSpies    loops;
            support::MapLoopSpies mapLoops;
            support::PerfSpies    counters;
            bitmap.BlitAlpha(&from, &through, 9, 6, 1, 1, 2, 1, flags, static_cast<Tov_UByte>(alpha));

            const char* const worker = ExpectedWorker(cell, permitted && !keyed, alpha == 255 && !hasAlpha, copy);
            EXPECT_EQ(WhoWorked(loops, mapLoops, counters), worker);
            EXPECT_EQ(asserts.Texts(), Messages{});
            EXPECT_STREQ(reference::NameOf(outcome.worker), worker);
            EXPECT_TRUE(target.bytes == expected.bytes);
        }
    }
}

TEST_F(BlitAlpha, MapsOfOtherTypesAreNamedAndDrawNothing)
{
    struct Row
    {
        unsigned    source;
        const char* message;
    };
    constexpr Row rows[] = {{BM_RGB32, "RGB32->ARGB32 BlitAlpha, alpha format not supported"},
                            {BM_ARGB32, "ARGB32->ARGB32 BlitAlpha, alpha format not supported"},
                            {BM_ALPHA8, "A8->ARGB32 BlitAlpha, alpha format not supported"},
                            {BM_RGB565, "RGB565->ARGB32 BlitAlpha, alpha format not supported"}};
    for (const Row& row : rows)
    {
        for (const unsigned mapType : {BM_UNKNWON, BM_RGB32, BM_RGB32RLE8, BM_RGB32RLE16, BM_RGB565, BM_RGB555,
                                       BM_ALPHA5_2, BM_ALPHA1, BM_QUANTITY})
        {
            for (const bool loops : {false, true})
            {
                for (const Tov_Flag flags : {0U, unsigned{BLIT_COPY_ONLY_ALPHA}, unsigned{BLIT_NOCLIP}})
                {
                    SCOPED_TRACE(testing::Message() << "type " << row.source << " through type " << mapType);
                    Pixels             source(row.source, 4, 4);
                    Pixels             map(mapType, 4, 4);
                    Pixels             target(BM_ARGB32, 4, 4, 3);
                    const auto         before = target.bytes;
                    AnySource          from(&plain, row.source, 4, 4, source.bytes.data(), source.pitch, true);
                    AnySource          through(&plain, mapType, 4, 4, map.bytes.data(), map.pitch, true);
                    PitchedTarget      bitmap(&ScreenOf(loops), 4, 4, target.bytes.data(), target.pitch);
                    support::PerfSpies counters;
                    bitmap.Lock();
                    const Messages expected =
                        mapType == BM_ALPHA5_2 ? Messages{row.message} : Messages{NOT_A_MAP, row.message};
                    EXPECT_EQ(MessagesOf([&] { bitmap.BlitAlpha(&from, &through, 4, 4, 0, 0, 0, 0, flags, 255); }),
                              expected);
                    EXPECT_TRUE(counters.OnlyCounted(""));
                    EXPECT_TRUE(target.bytes == before);
                }
            }
        }
    }
}

TEST_F(BlitAlpha, SourcesOfOtherTypesAreNotSupported)
{
    for (const unsigned sourceType : {BM_UNKNWON, BM_RGB555, BM_ALPHA5_2, BM_ALPHA1, BM_QUANTITY})
    {
        for (const unsigned mapType : {BM_ALPHA8, BM_ARGB32, BM_ALPHA5_2, BM_RGB32})
        {
            for (const bool loops : {false, true})
            {
                SCOPED_TRACE(testing::Message() << "type " << sourceType << " through type " << mapType);
                Pixels        source(sourceType, 4, 4);
                Pixels        map(mapType, 4, 4);
                Pixels        target(BM_ARGB32, 4, 4, 3);
                const auto    before = target.bytes;
                AnySource     from(&plain, sourceType, 4, 4, source.bytes.data(), source.pitch, true);
                AnySource     through(&plain, mapType, 4, 4, map.bytes.data(), map.pitch, true);
                PitchedTarget bitmap(&ScreenOf(loops), 4, 4, target.bytes.data(), target.pitch);
                bitmap.Lock();
                const Messages expected =
                    mapType == BM_RGB32 ? Messages{NOT_A_MAP, NOT_SUPPORTED} : Messages{NOT_SUPPORTED};
                EXPECT_EQ(MessagesOf([&] { bitmap.BlitAlpha(&from, &through, 4, 4, 0, 0, 0, 0, 0, 255); }), expected);
                EXPECT_TRUE(target.bytes == before);
            }
        }
    }
}

TEST_F(BlitAlpha, TheMapsTypeIsCheckedBeforeClippingAndTheSourcesTypeBehind)
{
    Pixels        source(BM_RGB555, 4, 4);
    Pixels        map(BM_RGB32, 4, 4);
    Pixels        target(BM_ARGB32, 4, 4);
    AnySource     from(&plain, BM_RGB555, 4, 4, source.bytes.data(), source.pitch, true);
    AnySource     through(&plain, BM_RGB32, 4, 4, map.bytes.data(), map.pitch, true);
    PitchedTarget bitmap(&plain, 4, 4, target.bytes.data(), target.pitch);
    EXPECT_EQ(MessagesOf([&] { bitmap.BlitAlpha(&from, &through, 4, 4, 0, 0, 4, 0, 0, 255); }),
              (Messages{NOT_LOCKED, NOT_A_MAP}));
    EXPECT_EQ(MessagesOf([&] { bitmap.BlitAlpha(&from, &through, 4, 4, 0, 0, 3, 0, 0, 255); }),
              (Messages{NOT_LOCKED, NOT_A_MAP, NOT_SUPPORTED}));
}

TEST_F(BlitAlpha, ATargetThatIsNotLockedAssertsAndIsDrawnInto)
{
    Pixels        source(BM_RGB32, 1, 1);
    Pixels        map(BM_ALPHA8, 1, 1);
    std::uint32_t target = 0xFF000000;
    source.Set(0, 0, 0x00FFFFFF);
    map.Set(0, 0, 255);
    AnySource     from(&plain, BM_RGB32, 1, 1, source.bytes.data(), source.pitch, true);
    AnySource     through(&plain, BM_ALPHA8, 1, 1, map.bytes.data(), map.pitch, true);
    PitchedTarget bitmap(&plain, 1, 1, &target);
    EXPECT_EQ(MessagesOf([&] { bitmap.BlitAlpha(&from, &through, 1, 1, 0, 0, 0, 0, 0, 255); }), Messages{NOT_LOCKED});
    EXPECT_EQ(target, 0xFFFDFDFDU);
}

TEST_F(BlitAlpha, ATargetWithoutBufferDrawsNothing)
{
    Pixels             source(BM_RGB32, 1, 1);
    Pixels             map(BM_ALPHA8, 1, 1);
    AnySource          from(&plain, BM_RGB32, 1, 1, source.bytes.data(), source.pitch, true);
    AnySource          through(&plain, BM_ALPHA8, 1, 1, map.bytes.data(), map.pitch, true);
    AssertCapture      asserts;
    Kanvo_BitmapARGB32 bitmap(&plain, 1, 1, BBT_ROM);
    bitmap.Lock();
    asserts.Clear();
    bitmap.BlitAlpha(&from, &through, 1, 1, 0, 0, 0, 0, 0, 255);
    EXPECT_EQ(asserts.Texts(), Messages{"bitmap has no buffer"});
}

TEST_F(BlitAlpha, NothingIsCountedWhereEverythingIsClippedAway)
{
    Pixels        source(BM_RGB32, 4, 4);
    Pixels        map(BM_ALPHA8, 4, 4);
    Pixels        target(BM_ARGB32, 4, 4, 3);
    const auto    before = target.bytes;
    AnySource     from(&plain, BM_RGB32, 4, 4, source.bytes.data(), source.pitch, true);
    AnySource     through(&plain, BM_ALPHA8, 4, 4, map.bytes.data(), map.pitch, true);
    PitchedTarget bitmap(&plain, 4, 4, target.bytes.data(), target.pitch);
    bitmap.Lock();
    AssertCapture      asserts;
    support::PerfSpies counters;
    bitmap.BlitAlpha(&from, &through, 4, 4, 0, 0, 4, 0, 0, 255);
    bitmap.BlitAlpha(&from, &through, 4, 4, 4, 0, 0, 0, 0, 255);
    bitmap.BlitAlpha(&from, &through, 4, 4, 0, 0, 0, -4, 0, 255);
    bitmap.BlitAlpha(&from, &through, 0, 4, 0, 0, 0, 0, 0, 255);
    bitmap.BlitAlpha(&from, &through, 4, 4, 0xFFFFFFFF, 0, 0, 0, 0, 255);
    bitmap.SetCliprect(2, 2, 1, 1);
    bitmap.BlitAlpha(&from, &through, 4, 4, 0, 0, 0, 0, 0, 255);
    EXPECT_TRUE(counters.OnlyCounted(""));
    EXPECT_EQ(asserts.Texts(), Messages{});
    EXPECT_TRUE(target.bytes == before);
}

TEST_F(BlitAlpha, WithoutClippingTheRectangleIsTakenAsItIs)
{
    Pixels        source(BM_RGB32, 4, 4);
    Pixels        map(BM_ALPHA8, 4, 4);
    Pixels        target(BM_ARGB32, 4, 4, 3);
    AnySource     from(&plain, BM_RGB32, 4, 4, source.bytes.data(), source.pitch, true);
    AnySource     through(&plain, BM_ALPHA8, 4, 4, map.bytes.data(), map.pitch, true);
    PitchedTarget bitmap(&plain, 4, 4, target.bytes.data(), target.pitch);
    bitmap.Lock();
    bitmap.SetCliprect(1, 1, 1, 1);
    map.SetAll(255);
    target.SetAll(0xFF000000);
    source.SetAll(0x00FFFFFF);
    EXPECT_EQ(MessagesOf([&] { bitmap.BlitAlpha(&from, &through, 3, 2, 1, 0, 0, 2, BLIT_NOCLIP, 255); }), Messages{});
    for (unsigned y = 0; y < 4; ++y)
    {
        for (unsigned x = 0; x < 4; ++x)
        {
            EXPECT_EQ(target.Word(x, y), x < 3 && y >= 2 ? 0xFFFDFDFDU : 0xFF000000U) << x << ", " << y;
        }
    }
}

TEST_F(BlitAlpha, ABrokenPromiseOfNoClippingAssertsAndDrawsNothing)
{
    Pixels        source(BM_RGB32, 4, 4);
    Pixels        map(BM_ALPHA8, 3, 3);
    Pixels        target(BM_ARGB32, 4, 4, 3);
    const auto    before = target.bytes;
    AnySource     from(&plain, BM_RGB32, 4, 4, source.bytes.data(), source.pitch, true);
    AnySource     through(&plain, BM_ALPHA8, 3, 3, map.bytes.data(), map.pitch, true);
    PitchedTarget bitmap(&plain, 4, 4, target.bytes.data(), target.pitch);
    bitmap.Lock();
    const auto messages = [&](Tov_UInt width, Tov_UInt height, Tov_UInt srcX, Tov_UInt srcY, Tov_Int dstX, Tov_Int dstY)
    {
        return MessagesOf(
            [&] { bitmap.BlitAlpha(&from, &through, width, height, srcX, srcY, dstX, dstY, BLIT_NOCLIP, 255); });
    };
    EXPECT_EQ(messages(3, 3, 0, 0, -1, 0), Messages{NOT_INSIDE});
    EXPECT_EQ(messages(3, 3, 0, 0, 0, 2), Messages{NOT_INSIDE});
    EXPECT_EQ(messages(5, 1, 0, 0, 0, 0), Messages{NOT_INSIDE});
    EXPECT_EQ(messages(3, 3, 1, 0, 0, 0), Messages{NOT_INSIDE}) << "beyond the map alone";
    EXPECT_EQ(messages(3, 3, 0, 1, 0, 0), Messages{NOT_INSIDE}) << "beyond the map alone";
    EXPECT_EQ(messages(1, 1, 0xFFFFFFFF, 0, 0, 0), Messages{NOT_INSIDE});
    EXPECT_EQ(messages(0xFFFFFFFF, 1, 1, 0, 0, 0), Messages{NOT_INSIDE});
    EXPECT_TRUE(target.bytes == before);
}

// ---- the loops ------------------------------------------------------------------------------------------------------

TEST_F(BlitAlpha, EachLoopGetsTheClippedRectangleAndAllPitches)
{
    struct Expected
    {
        const char* loop;
        unsigned    source;
        unsigned    map;
        bool        hasAlpha;
        Tov_Flag    flags;
        Tov_UByte   opacity;
        bool        passesMap;
        int         alpha;
    };
    constexpr Tov_Flag C      = BLIT_COPY_ONLY_ALPHA;
    constexpr Expected rows[] = {
        {OVER, BM_ARGB32, BM_ALPHA8, false, 0, 255, false, -1},
        {OVER, BM_ARGB32, BM_ARGB32, false, 0, 255, false, -1},
        {OVER_AG, BM_ARGB32, BM_ALPHA8, true, 0, 255, false, 255},
        {OVER_AG, BM_ARGB32, BM_ARGB32, false, 0, 9, false, 9},
        {OVER_AG, BM_ARGB32, BM_ALPHA8, true, C, 0, false, 0},
        {RGB565, BM_RGB565, BM_ALPHA8, false, 0, 255, true, -1},
        {RGB565_AG, BM_RGB565, BM_ALPHA8, true, 0, 255, true, 255},
        {RGB565_AG, BM_RGB565, BM_ALPHA8, false, 0, 7, true, 7},
        {STORE, BM_RGB565, BM_ALPHA8, false, C, 255, true, -1},
        {STORE, BM_RGB565, BM_ALPHA8, true, C, 255, true, -1},
        {STORE, BM_RGB565, BM_ALPHA8, false, C, 3, true, -1},
        {STORE, BM_RGB565, BM_ALPHA8, true, C, 3, true, -1},
    };
    for (const Expected& row : rows)
    {
        SCOPED_TRACE(testing::Message() << row.loop << " opacity " << int{row.opacity});
        Pixels        source(row.source, 9, 9);
        Pixels        map(row.map, 10, 8);
        Pixels        target(BM_ARGB32, 7, 6, 3);
        AnySource     from(&optimised, row.source, 9, 9, source.bytes.data(), source.pitch, row.hasAlpha);
        AnySource     through(&optimised, row.map, 10, 8, map.bytes.data(), map.pitch, !row.hasAlpha);
        PitchedTarget bitmap(&optimised, 7, 6, target.bytes.data(), target.pitch);
        bitmap.Lock();
        bitmap.SetCliprect(1, 2, 5, 4);
        support::LoopSpies    loops;
        support::MapLoopSpies mapLoops;
        // 8x8 from (1, 0) at (-1, 1): the clip leaves columns 1 to 5 and rows 2 to 4, which show columns 3 to 7 and
        // rows 1 to 3 of source and map
        bitmap.BlitAlpha(&from, &through, 8, 8, 1, 0, -1, 1, row.flags, row.opacity);
        if (row.loop == OVER_AG)
        {
            ASSERT_EQ(loops.Calls().size(), 1U);
            EXPECT_TRUE(mapLoops.Calls().empty());
            const support::LoopCall call{row.loop, target.At(1, 2), source.At(3, 1), target.pitch, source.pitch, 5, 3,
                                         0,        row.alpha};
            EXPECT_EQ(loops.Calls()[0], call);
            continue;
        }
        ASSERT_EQ(mapLoops.Calls().size(), 1U);
        EXPECT_TRUE(loops.Calls().empty());
        support::MapLoopCall call{row.loop, target.At(1, 2), source.At(3, 1), nullptr, target.pitch, source.pitch, 0, 5,
                                  3,        row.alpha};
        if (row.passesMap)
        {
            call.map      = map.At(3, 1);
            call.mapPitch = map.pitch;
        }
        EXPECT_EQ(mapLoops.Calls()[0], call);
    }
}

TEST_F(BlitAlpha, AColorKeyFlagForbidsTheLoopsAndKeysNothing)
{
    for (const Cell& cell : CELLS)
    {
        SCOPED_TRACE(testing::Message() << "type " << cell.source << " through type " << cell.map);
        const std::uint32_t keyed = One(true, cell.source, 0, cell.map, 0xFFFFFFFF, 0xFF808080, BLIT_COLORKEY, 255);
        EXPECT_EQ(keyed, One(false, cell.source, 0, cell.map, 0xFFFFFFFF, 0xFF808080, 0, 255));
        EXPECT_NE(keyed, 0xFF808080U) << "colour 0 is drawn, whatever a key could be";
    }
}

TEST_F(BlitAlpha, LoopsRunOnlyWhereTheRenderStateSaysExactlyThat)
{
    Kanvo_Screen other(&library);
    Pixels       source(BM_ARGB32, 2, 2);
    Pixels       map(BM_ALPHA8, 2, 2);
    for (const unsigned state : {0U, 2U, 3U, 0x101U, 0xFFFFFFFFU})
    {
        other.GetRenderState().Set(OPTIMIZED_BLIT, state);
        Pixels        target(BM_ARGB32, 2, 2, 3);
        AnySource     from(&other, BM_ARGB32, 2, 2, source.bytes.data(), source.pitch, false);
        AnySource     through(&other, BM_ALPHA8, 2, 2, map.bytes.data(), map.pitch, false);
        PitchedTarget bitmap(&other, 2, 2, target.bytes.data(), target.pitch);
        bitmap.Lock();
        support::MapLoopSpies mapLoops;
        support::PerfSpies    counters;
        bitmap.BlitAlpha(&from, &through, 2, 2, 0, 0, 0, 0, 0, 255);
        EXPECT_TRUE(mapLoops.Calls().empty()) << state;
        EXPECT_TRUE(counters.OnlyCounted(INT)) << state;
    }
}

// ---- RGB565 ---------------------------------------------------------------------------------------------------------

TEST_F(BlitAlpha, CopyingOnlyAlphaLeavesPixelsOfValueZero)
{
    for (const bool loops : {false, true})
    {
        for (const Tov_UByte alpha : Opacities{255, 254, 128, 0})
        {
            EXPECT_EQ(One(loops, BM_RGB565, 0xF81F, BM_ALPHA8, 0, 0x12345678, BLIT_COPY_ONLY_ALPHA, alpha),
                      0x12345678U);
        }
    }
}

TEST_F(BlitAlpha, CopyingOnlyAlphaStoresTheMapsValueWithTheSourcesColour)
{
    for (const bool loops : {false, true})
    {
        // red 16 of 31, green 32 of 63, blue 31 of 31
        EXPECT_EQ(One(loops, BM_RGB565, 0x841F, BM_ALPHA8, 200, 0x12345678, BLIT_COPY_ONLY_ALPHA, 255), 0xC88482FFU);
        EXPECT_EQ(One(loops, BM_RGB565, 0xFFFF, BM_ALPHA8, 1, 0xFF000000, BLIT_COPY_ONLY_ALPHA, 255), 0x01FFFFFFU);
        EXPECT_EQ(One(loops, BM_RGB565, 0x0000, BM_ALPHA8, 255, 0x00FFFFFF, BLIT_COPY_ONLY_ALPHA, 255), 0xFF000000U);
    }
}

TEST_F(BlitAlpha, CopyingOnlyAlphaIsScaledByTheWorkerAndNotByTheLoop)
{
    EXPECT_EQ(One(false, BM_RGB565, 0xF800, BM_ALPHA8, 200, 0, BLIT_COPY_ONLY_ALPHA, 128), 0x64FF0000U);  // 25600 / 255
    EXPECT_EQ(One(true, BM_RGB565, 0xF800, BM_ALPHA8, 200, 0, BLIT_COPY_ONLY_ALPHA, 128), 0xC8FF0000U);
    // what becomes 0 only by scaling is left untouched by the one and stored by the other
    EXPECT_EQ(One(false, BM_RGB565, 0xF800, BM_ALPHA8, 1, 0x12345678, BLIT_COPY_ONLY_ALPHA, 128), 0x12345678U);
    EXPECT_EQ(One(true, BM_RGB565, 0xF800, BM_ALPHA8, 1, 0x12345678, BLIT_COPY_ONLY_ALPHA, 128), 0x01FF0000U);
}

TEST_F(BlitAlpha, CopyingOnlyAlphaAsksTheTargetForItsColourOnThePortablePath)
{
    std::uint16_t source = 0xF800;
    std::uint8_t  map    = 200;
    for (const bool loops : {false, true})
    {
        std::uint32_t          target = 0;
        AnySource              from(&plain, BM_RGB565, 1, 1, &source, 0, false);
        AnySource              through(&plain, BM_ALPHA8, 1, 1, &map, 0, false);
        support::SwappedTarget bitmap(&ScreenOf(loops), 1, 1, &target);
        bitmap.Lock();
        bitmap.BlitAlpha(&from, &through, 1, 1, 0, 0, 0, 0, BLIT_COPY_ONLY_ALPHA, 255);
        EXPECT_EQ(target, loops ? 0xC8FF0000U : 0x640000FFU);
    }
}

TEST_F(BlitAlpha, CopyingOnlyAlphaMattersForRGB565ThroughA8Alone)
{
    for (const Cell& cell : CELLS)
    {
        if (cell.source == BM_RGB565 && cell.map == BM_ALPHA8) continue;
        for (const bool loops : {false, true})
        {
            for (const Tov_UByte alpha : Opacities{255, 77})
            {
                EXPECT_EQ(
                    One(loops, cell.source, 0x80C0FF40, cell.map, 0xA0B0C0A0, 0x70123456, BLIT_COPY_ONLY_ALPHA, alpha),
                    One(loops, cell.source, 0x80C0FF40, cell.map, 0xA0B0C0A0, 0x70123456, 0, alpha))
                    << "type " << cell.source << " through type " << cell.map;
            }
        }
    }
}

TEST_F(BlitAlpha, AnRGB565SourceThroughAMapIsBlendedAsItsRawWord)
{
    // pure red, stored as F800, is blended as the colour 00F800: green
    EXPECT_EQ(One(false, BM_RGB565, 0xF800, BM_ALPHA8, 255, 0xFF000000, 0, 255), 0xFF00F600U);  // 248 * 127 / 128
    EXPECT_EQ(One(false, BM_RGB565, 0xF800, BM_ARGB32, 0xFF000000, 0xFF000000, 0, 255), 0xFF00F600U);
    EXPECT_EQ(One(true, BM_RGB565, 0xF800, BM_ARGB32, 0xFF000000, 0xFF000000, 0, 255), 0xFF00F600U);
    EXPECT_EQ(One(true, BM_RGB565, 0xF800, BM_ALPHA8, 255, 0xFF000000, BLIT_COLORKEY, 255), 0xFF00F600U);
    // and the target's red is drawn towards 0
    EXPECT_EQ(One(false, BM_RGB565, 0xFFFF, BM_ALPHA8, 128, 0xFFFF0000, 0, 255), 0xFF7F7F7FU);
    for (unsigned pixel = 0; pixel < 65536; pixel += 37)
    {
        EXPECT_EQ(One(false, BM_RGB565, pixel, BM_ALPHA8, 200, 0x80403020, 0, 100),
                  support::MixLinear(0x80403020, pixel, support::MulByte(200, 100)))
            << pixel;
    }
}

TEST_F(BlitAlpha, TheLoopsBlendAnRGB565SourceConverted)
{
    EXPECT_EQ(One(true, BM_RGB565, 0xF800, BM_ALPHA8, 255, 0xFF000000, 0, 255), 0xFFFD0000U);
    EXPECT_EQ(One(true, BM_RGB565, 0xF800, BM_ALPHA8, 255, 0xFF000000, 0, 128), 0xFF7F0000U);
    EXPECT_EQ(One(true, BM_RGB565, 0xF800, BM_ALPHA8, 128, 0xFF000000, 0, 255, true), 0xFF7F0000U);
    EXPECT_EQ(One(true, BM_RGB565, 0xFFFF, BM_ALPHA8, 0, 0x12345678, 0, 255), 0x12345678U);
}

// ---- A8 -------------------------------------------------------------------------------------------------------------

TEST_F(BlitAlpha, AnA8SourceThroughAMapBlendsDifferentlyAtFullOpacityAndBelow)
{
    for (const bool loops : {false, true})
    {
        // the one stores where the map is full, the other stops two steps short
        EXPECT_EQ(One(loops, BM_ALPHA8, 255, BM_ALPHA8, 255, 0xFF000000, 0, 255), 0xFFFFFFFFU);
        EXPECT_EQ(One(loops, BM_ALPHA8, 255, BM_ALPHA8, 255, 0xFF000000, 0, 254), 0xFFFDFDFDU);
        // the same effective alpha of 129 by both ways: eight bits of weight against seven
        EXPECT_EQ(One(loops, BM_ALPHA8, 255, BM_ARGB32, 0x81000000, 0xFF000000, 0, 255), 0xFF808080U);
        EXPECT_EQ(One(loops, BM_ALPHA8, 255, BM_ARGB32, 0x82000000, 0xFF000000, 0, 254), 0xFF7F7F7FU);
        // a level is an opaque grey; alpha grows by the map
        EXPECT_EQ(One(loops, BM_ALPHA8, 0x40, BM_ALPHA8, 128, 0, 0, 255), 0x80202020U);
    }
}

TEST_F(BlitAlpha, AnA8SourceSkipsPixelsWithoutCoverage)
{
    for (const Tov_UByte alpha : Opacities{255, 254, 1, 0})
    {
        EXPECT_EQ(One(false, BM_ALPHA8, 255, BM_ALPHA8, 0, 0x12345678, 0, alpha), 0x12345678U);
        EXPECT_EQ(One(false, BM_ALPHA8, 255, BM_ARGB32, 0x00FFFFFF, 0x12345678, 0, alpha), 0x12345678U);
    }
    EXPECT_EQ(One(false, BM_ALPHA8, 255, BM_ALPHA8, 1, 0x12345678, 0, 254), 0x12345678U) << "scaled to 0";
}

// ---- 32-bit sources -------------------------------------------------------------------------------------------------

TEST_F(BlitAlpha, ThroughAMapTheSourcesOwnAlphaCountsForNothing)
{
    for (const unsigned type : {BM_RGB32, BM_ARGB32})
    {
        for (const std::uint32_t top : {0U, 1U, 0x80U, 0xFFU})
        {
            EXPECT_EQ(One(false, type, top << 24 | 0xFFFFFF, BM_ALPHA8, 255, 0xFF000000, 0, 255), 0xFFFDFDFDU);
            EXPECT_EQ(One(false, type, top << 24 | 0xFFFFFF, BM_ARGB32, 0x80123456, 0x00000000, 0, 255), 0x807F7F7FU);
        }
    }
}

TEST_F(BlitAlpha, TheMapsValueIsScaledByTheOpacity)
{
    for (const unsigned type : {BM_RGB32, BM_ARGB32, BM_ALPHA8})
    {
        for (unsigned cover = 0; cover < 256; ++cover)
        {
            const std::uint32_t white = type == BM_ALPHA8 ? 255 : 0x00FFFFFF;
            const int           half  = static_cast<int>(cover) * 128 / 255;
            EXPECT_EQ(One(false, type, white, BM_ALPHA8, cover, 0x40102030, 0, 128),
                      support::MixLinear(0x40102030, 0xFFFFFFFF, half))
                << "type " << type << ", cover " << cover;
        }
    }
    EXPECT_EQ(One(false, BM_RGB32, 0xFFFFFF, BM_ALPHA8, 255, 0, 0, 128) >> 24, 128U);
}

TEST_F(BlitAlpha, SourceAndMapAreAddressedAlike)
{
    for (const bool loops : {false, true})
    {
        Pixels source(BM_RGB565, 3, 3);
        Pixels map(BM_ALPHA8, 3, 3);
        Pixels target(BM_ARGB32, 3, 3);
        source.SetAll(0xFFFF);
        target.SetAll(0);
        map.SetAll(0);
        map.Set(2, 1, 77);
        AnySource     from(&plain, BM_RGB565, 3, 3, source.bytes.data(), source.pitch, false);
        AnySource     through(&plain, BM_ALPHA8, 3, 3, map.bytes.data(), map.pitch, false);
        PitchedTarget bitmap(&ScreenOf(loops), 3, 3, target.bytes.data(), target.pitch);
        bitmap.Lock();
        bitmap.BlitAlpha(&from, &through, 2, 2, 1, 1, 0, 1, BLIT_COPY_ONLY_ALPHA, 255);
        for (unsigned y = 0; y < 3; ++y)
        {
            for (unsigned x = 0; x < 3; ++x) EXPECT_EQ(target.Word(x, y), x == 1 && y == 1 ? 0x4DFFFFFFU : 0U);
        }
    }
}

// ---- no map, small maps, maps that do not matter --------------------------------------------------------------------

TEST_F(BlitAlpha, WithoutAMapAnARGB32SourceIsItsOwn)
{
    for (const bool loops : {false, true})
    {
        for (const bool hasAlpha : {false, true})
        {
            for (const Tov_UByte alpha : Opacities{255, 90})
            {
                Pixels        source(BM_ARGB32, 6, 5);
                Pixels        target(BM_ARGB32, 6, 5, 3);
                Pixels        before = target;
                AnySource     from(&plain, BM_ARGB32, 6, 5, source.bytes.data(), source.pitch, hasAlpha);
                PitchedTarget bitmap(&ScreenOf(loops), 6, 5, target.bytes.data(), target.pitch);
                bitmap.Lock();
                EXPECT_EQ(MessagesOf([&] { bitmap.BlitAlpha(&from, nullptr, 6, 5, 0, 0, 0, 0, 0, alpha); }),
                          Messages{});
                for (unsigned y = 0; y < 5; ++y)
                {
                    for (unsigned x = 0; x < 6; ++x)
                    {
                        const std::uint32_t pixel = source.Word(x, y);
                        const int           own   = static_cast<int>(pixel >> 24);
                        const std::uint32_t dst   = before.Word(x, y);
                        EXPECT_EQ(target.Word(x, y), loops ? support::MixLinearSrcAlpha(dst, pixel, alpha)
                                                           : support::MixLinear(dst, pixel, own * alpha / 255));
                    }
                }
            }
        }
    }
}

TEST_F(BlitAlpha, WithoutAMapOtherSourcesAssertAndDrawNothing)
{
    const std::vector<std::uint8_t> image = support::RleImage{8, 1, 1, {0xFFFFFFFF}, {1, 0, 0, 0}}.Bytes();
    for (const unsigned type : {BM_RGB32, BM_ALPHA8, BM_RGB565, BM_RGB555, BM_ALPHA5_2, BM_RGB32RLE8})
    {
        for (const bool loops : {false, true})
        {
            SCOPED_TRACE(testing::Message() << "type " << type);
            std::uint32_t         pixel = 0xFFFFFFFF;
            std::uint32_t         word  = 0x12345678;
            AnySource             from(&plain, type, 1, 1, &pixel, 0, false);
            support::UncheckedRle rle(type, 1, 1, image.data());
            Kanvo_Bitmap* const   source = type == BM_RGB32RLE8 ? static_cast<Kanvo_Bitmap*>(&rle) : &from;
            PitchedTarget         bitmap(&ScreenOf(loops), 1, 1, &word);
            support::PerfSpies    counters;
            bitmap.Lock();
            EXPECT_EQ(MessagesOf([&] { bitmap.BlitAlpha(source, nullptr, 1, 1, 0, 0, 0, 0, 0, 255); }),
                      Messages{NOT_A_MAP});
            EXPECT_EQ(word, 0x12345678U);
            EXPECT_TRUE(counters.OnlyCounted(""));
            EXPECT_TRUE(rle.log.empty());
        }
    }
}

//! The map ends at the back fence and begins at the front fence in turn: reading beside it stops the test.
TEST_F(BlitAlpha, AMapSmallerThanTheSourceIsNotReadBesideItsPixels)
{
    for (const unsigned type : {BM_RGB32, BM_ARGB32, BM_ALPHA8, BM_RGB565})
    {
        for (const unsigned mapType : {BM_ALPHA8, BM_ARGB32})
        {
            for (const bool loops : {false, true})
            {
                if (type == BM_ARGB32 && loops) continue;  // has no use for it
                for (const Tov_Flag flags : {0U, unsigned{BLIT_COPY_ONLY_ALPHA}})
                {
                    for (const auto end : {support::Against::FrontFence, support::Against::BackFence})
                    {
                        SCOPED_TRACE(testing::Message() << "type " << type << " through type " << mapType);
                        constexpr unsigned W     = 13;
                        constexpr unsigned H     = 9;
                        const std::size_t  size  = mapType == BM_ARGB32 ? 4 : 1;
                        const std::size_t  pitch = W * size + 4;
                        support::Fence     map(support::Fence::BytesFor(W, H, pitch, size), end);
                        Pixels             source(type, 20, 20);
                        Pixels             target(BM_ARGB32, 24, 24, 3);
                        Pixels             expected(BM_ARGB32, 24, 24, 3);
                        AnySource          from(&plain, type, 20, 20, source.bytes.data(), source.pitch, false);
                        AnySource     through(&plain, mapType, W, H, map.Data(), static_cast<Tov_UInt>(pitch), true);
                        PitchedTarget bitmap(&ScreenOf(loops), 24, 24, target.bytes.data(), target.pitch);
                        bitmap.Lock();
                        EXPECT_EQ(
                            MessagesOf([&] { bitmap.BlitAlpha(&from, &through, 18, 18, 2, 1, 3, 4, flags, 255); }),
                            Messages{});
                        // the map's columns 2 to 12 and rows 1 to 8 are drawn, which is what a smaller request draws
                        reference::Target wanted;
                        wanted.picture                  = expected.Picture(true);
                        wanted.optimised                = loops;
                        const reference::Picture mapped = {FormatOf(mapType), W,   H, static_cast<std::int64_t>(pitch),
                                                           map.Data(),        true};
                        reference::BlitAlpha(wanted, source.Picture(false), &mapped, {11, 8, 2, 1, 3, 4}, flags, 255);
                        EXPECT_TRUE(target.bytes == expected.bytes);
                        EXPECT_TRUE(map.IsSlackUntouched());
                    }
                }
            }
        }
    }
}

TEST_F(BlitAlpha, ARectangleBesideTheMapDrawsNothing)
{
    Pixels        source(BM_RGB32, 8, 8);
    Pixels        map(BM_ALPHA8, 3, 3);
    Pixels        target(BM_ARGB32, 8, 8, 3);
    const auto    before = target.bytes;
    AnySource     from(&plain, BM_RGB32, 8, 8, source.bytes.data(), source.pitch, false);
    AnySource     through(&plain, BM_ALPHA8, 3, 3, map.bytes.data(), map.pitch, false);
    PitchedTarget bitmap(&plain, 8, 8, target.bytes.data(), target.pitch);
    bitmap.Lock();
    EXPECT_EQ(MessagesOf(
                  [&]
                  {
                      bitmap.BlitAlpha(&from, &through, 4, 4, 3, 0, 0, 0, 0, 255);
                      bitmap.BlitAlpha(&from, &through, 4, 4, 0, 3, 0, 0, 0, 255);
                      bitmap.BlitAlpha(&from, &through, 8, 8, 0, 0, -3, 0, 0, 255);
                  }),
              Messages{});
    EXPECT_TRUE(target.bytes == before);
}

TEST_F(BlitAlpha, TheMapIsIgnoredByRLESourcesAndByTheOptimisedARGB32Path)
{
    const std::vector<std::uint8_t> image8 =
        support::RleImage{8, 3, 2, {0xFFFFFFFF, 0x80102030}, {5, 1, 1, 0, 0, 0}}.Bytes();
    const std::vector<std::uint8_t> image16 =
        support::RleImage{16, 3, 2, {0xFFFFFFFF, 0x80102030}, {5, 1, 1, 0, 0, 0}}.Bytes();
    std::uint8_t   pixelsOfMap[] = {0, 255, 7, 0, 1, 99};
    support::Fence nothing(0);
    AssertCapture  asserts;
    Kanvo_BitmapA8 bufferless(&plain, 3, 2, BBT_ROM);  // no memory: asserts, and says so
    AnySource      empty(&plain, BM_ALPHA8, 3, 2, pixelsOfMap, 0, false);
    AnySource      small(&plain, BM_ALPHA8, 1, 1, nothing.Data(), 0, true);
    AnySource      argb(&plain, BM_ARGB32, 1, 1, nothing.Data(), 0, true);
    ASSERT_EQ(bufferless.GetBuffer(), nullptr);
    asserts.Clear();

    Pixels                source(BM_ARGB32, 3, 2);
    AnySource             pixels(&plain, BM_ARGB32, 3, 2, source.bytes.data(), source.pitch, true);
    support::UncheckedRle rle8(BM_RGB32RLE8, 3, 2, image8.data());
    support::UncheckedRle rle16(BM_RGB32RLE16, 3, 2, image16.data());
    struct Drawer
    {
        Kanvo_Bitmap* source;
        bool          loops;
    };
    for (const Drawer drawer : {Drawer{&pixels, true}, Drawer{&rle8, false}, Drawer{&rle8, true}, Drawer{&rle16, false},
                                Drawer{&rle16, true}})
    {
        for (const Tov_UByte alpha : Opacities{255, 130})
        {
            std::vector<std::vector<std::uint8_t>> results;
            for (Kanvo_Bitmap* map : std::initializer_list<Kanvo_Bitmap*>{&empty, &small, &argb, &bufferless})
            {
                Pixels        target(BM_ARGB32, 5, 4, 3);
                const auto    before = target.bytes;
                PitchedTarget bitmap(&ScreenOf(drawer.loops), 5, 4, target.bytes.data(), target.pitch);
                bitmap.Lock();
                bitmap.BlitAlpha(drawer.source, map, 3, 2, 0, 0, 1, 1, 0, alpha);
                EXPECT_FALSE(target.bytes == before);
                results.push_back(target.bytes);
                bitmap.BlitAlpha(drawer.source, map, 3, 2, 0, 0, 1, 1, BLIT_NOCLIP, alpha);
            }
            for (const auto& result : results) EXPECT_TRUE(result == results.front());
        }
    }
    EXPECT_EQ(asserts.Texts(), Messages{});
}

TEST_F(BlitAlpha, AMapThatIsReadMustHaveABuffer)
{
    AssertCapture  asserts;
    Kanvo_BitmapA8 map(&plain, 3, 2, BBT_ROM);
    for (const unsigned type : {BM_RGB32, BM_ARGB32, BM_ALPHA8, BM_RGB565})
    {
        Pixels        source(type, 3, 2);
        Pixels        target(BM_ARGB32, 3, 2, 3);
        const auto    before = target.bytes;
        AnySource     from(&plain, type, 3, 2, source.bytes.data(), source.pitch, true);
        PitchedTarget bitmap(&plain, 3, 2, target.bytes.data(), target.pitch);
        bitmap.Lock();
        asserts.Clear();
        bitmap.BlitAlpha(&from, &map, 3, 2, 0, 0, 0, 0, 0, 255);
        bitmap.BlitAlpha(&from, &map, 3, 2, 0, 0, 0, 0, BLIT_NOCLIP, 255);
        EXPECT_EQ(asserts.Texts(), (Messages{"bitmap has no buffer", "bitmap has no buffer"})) << type;
        EXPECT_TRUE(target.bytes == before);
    }
}

TEST_F(BlitAlpha, ASourceWithoutBufferDrawsNothing)
{
    AssertCapture      asserts;
    Kanvo_BitmapRGB565 from(&plain, 3, 2, BBT_ROM);
    Pixels             map(BM_ALPHA8, 3, 2);
    AnySource          through(&plain, BM_ALPHA8, 3, 2, map.bytes.data(), map.pitch, true);
    for (const bool loops : {false, true})
    {
        Pixels        target(BM_ARGB32, 3, 2, 3);
        const auto    before = target.bytes;
        PitchedTarget bitmap(&ScreenOf(loops), 3, 2, target.bytes.data(), target.pitch);
        bitmap.Lock();
        asserts.Clear();
        bitmap.BlitAlpha(&from, &through, 3, 2, 0, 0, 0, 0, BLIT_COPY_ONLY_ALPHA, 255);
        EXPECT_EQ(asserts.Texts(), Messages{"bitmap has no buffer"});
        EXPECT_TRUE(target.bytes == before);
    }
}

TEST_F(BlitAlpha, ANullSourceAssertsAndDrawsNothing)
{
    std::uint8_t  cover = 255;
    std::uint32_t word  = 0x12345678;
    AnySource     map(&plain, BM_ALPHA8, 1, 1, &cover, 0, true);
    PitchedTarget bitmap(&plain, 1, 1, &word);
    bitmap.Lock();
    for (Kanvo_Bitmap* const through : {static_cast<Kanvo_Bitmap*>(&map), static_cast<Kanvo_Bitmap*>(nullptr)})
    {
        EXPECT_EQ(MessagesOf([&] { bitmap.BlitAlpha(nullptr, through, 1, 1, 0, 0, 0, 0, 0, 255); }).size(), 1U);
    }
    EXPECT_EQ(word, 0x12345678U);
}

// ---- RLE sources ----------------------------------------------------------------------------------------------------

TEST_F(BlitAlpha, RLESourcesAreDrawnThroughMapsOfAnyTypeAndUncounted)
{
    const support::RleImage image8{
        8, 4, 3, {0xFF102030, 0x80FFFFFF, 0x00AAAAAA, 0x01808080}, {0, 4, 0, 1, 2, 3, 5, 1, 3, 0, 0, 0}};
    support::RleImage image16 = image8;
    image16.unitBits          = 16;
    for (const support::RleImage& image : {image8, image16})
    {
        const auto     bytes = image.Bytes();
        const unsigned type  = image.unitBits == 8 ? BM_RGB32RLE8 : BM_RGB32RLE16;
        for (const unsigned mapType : {BM_ALPHA8, BM_ARGB32, BM_ALPHA5_2, BM_RGB32, BM_RGB32RLE8, BM_RGB565})
        {
            for (int bits = 0; bits < 16; ++bits)
            {
                const bool     loops = (bits & 1) != 0;
                const int      alpha = (bits & 2) != 0 ? 255 : 100;
                const Tov_Flag flags = ((bits & 4) != 0 ? Tov_Flag{BLIT_COLORKEY} : 0) |
                                       ((bits & 8) != 0 ? Tov_Flag{BLIT_COPY_ONLY_ALPHA} : 0);
                SCOPED_TRACE(testing::Message() << "type " << type << " through type " << mapType << ", " << bits);
                Pixels                map(mapType, 4, 3);
                Pixels                target(BM_ARGB32, 6, 5, 3);
                Pixels                expected(BM_ARGB32, 6, 5, 3);
                support::UncheckedRle from(type, 4, 3, bytes.data());
                AnySource             through(&plain, mapType, 4, 3, map.bytes.data(), map.pitch, true);
                PitchedTarget         bitmap(&ScreenOf(loops), 6, 5, target.bytes.data(), target.pitch);
                reference::Target     wanted;
                wanted.picture = expected.Picture(true);
                reference::DrawRle(wanted, reference::ExpandRle(bytes.data(), image.unitBits), {3, 3, 1, 0, -1, 2}, 1,
                                   1, {alpha != 255, true, alpha});
                bitmap.Lock();
                support::LoopSpies    loopSpies;
                support::MapLoopSpies mapLoopSpies;
                support::PerfSpies    counters;
                const bool            isMap = mapType == BM_ALPHA8 || mapType == BM_ARGB32 || mapType == BM_ALPHA5_2;
                // 4 columns from column 1 on are one too many; the source's size cuts them
                EXPECT_EQ(MessagesOf(
                              [&] {
                                  bitmap.BlitAlpha(&from, &through, 4, 3, 1, 0, -1, 2, flags,
                                                   static_cast<Tov_UByte>(alpha));
                              }),
                          isMap ? Messages{} : Messages{NOT_A_MAP});
                EXPECT_EQ(WhoWorked(loopSpies, mapLoopSpies, counters), "");
                EXPECT_EQ(from.log, (std::vector<std::string>{"Lock", "Unlock(0, 0, 0, 0)"}));
                EXPECT_TRUE(target.bytes == expected.bytes);
            }
        }
    }
}

// ---- the workers themselves -----------------------------------------------------------------------------------------

template <class Worker>
std::vector<std::uint8_t> DrawnBy(Worker worker, unsigned sourceType, unsigned mapType)
{
    Pixels        source(sourceType, 5, 4);
    Pixels        map(mapType, 5, 4, 2);
    Pixels        target(BM_ARGB32, 6, 5, 3);
    Kanvo_Screen  screen(nullptr);
    AnySource     from(&screen, sourceType, 5, 4, source.bytes.data(), source.pitch, true);
    AnySource     through(&screen, mapType, 5, 4, map.bytes.data(), map.pitch, true);
    PitchedTarget bitmap(&screen, 6, 5, target.bytes.data(), target.pitch);
    worker(&from, &through, &bitmap);
    return target.bytes;
}

template <class Source, class Map>
void ExpectFlagsAreDropped(unsigned sourceType, unsigned mapType)
{
    using Blit = Kanvo_AlphaBlitToARGB32<Source, Map>;
    for (const Tov_UByte alpha : Opacities{255, 100})
    {
        const auto without = DrawnBy([&](Kanvo_Bitmap* from, Kanvo_Bitmap* through, Kanvo_Bitmap* target)
                                     { Blit::Blit_Int(from, through, target, 4, 3, 1, 1, 2, 1, alpha); },
                                     sourceType, mapType);
        for (const Tov_Flag flags : {0U, unsigned{BLIT_COLORKEY}, unsigned{BLIT_COPY_ONLY_ALPHA}, 0xFFFFFFFFU})
        {
            const auto with = DrawnBy([&](Kanvo_Bitmap* from, Kanvo_Bitmap* through, Kanvo_Bitmap* target)
                                      { Blit::Blit_Int(from, through, target, 4, 3, 1, 1, 2, 1, flags, alpha); },
                                      sourceType, mapType);
            EXPECT_TRUE(with == without) << "type " << sourceType << " through type " << mapType;
        }
        EXPECT_FALSE(without == DrawnBy([](auto...) {}, sourceType, mapType));
    }
}

TEST(AlphaBlit, BlitIntDropsTheFlags)
{
    ExpectFlagsAreDropped<Kanvo_PixelRGB32_Access, Kanvo_PixelA8_Access>(BM_RGB32, BM_ALPHA8);
    ExpectFlagsAreDropped<Kanvo_PixelRGB32_Access, Kanvo_PixelARGB32_Access>(BM_RGB32, BM_ARGB32);
    ExpectFlagsAreDropped<Kanvo_PixelARGB32_Access, Kanvo_PixelA8_Access>(BM_ARGB32, BM_ALPHA8);
    ExpectFlagsAreDropped<Kanvo_PixelARGB32_Access, Kanvo_PixelARGB32_Access>(BM_ARGB32, BM_ARGB32);
    ExpectFlagsAreDropped<Kanvo_PixelRGB565_Access, Kanvo_PixelA8_Access>(BM_RGB565, BM_ALPHA8);
    ExpectFlagsAreDropped<Kanvo_PixelRGB565_Access, Kanvo_PixelARGB32_Access>(BM_RGB565, BM_ARGB32);
}

//! Rows of every width around the vectors' lengths, source, map and target with a fence behind and in front of them.
TEST_F(BlitAlpha, RowsOfEveryWidthStayInsideTheirFences)
{
    for (const Cell& cell : CELLS)
    {
        for (const Tov_Flag flags : {0U, unsigned{BLIT_COPY_ONLY_ALPHA}})
        {
            for (unsigned width = 1; width <= 129; ++width)
            {
                const auto        end = width % 2 == 0 ? support::Against::FrontFence : support::Against::BackFence;
                const std::size_t sourceSize =
                    static_cast<std::size_t>(reference::BytesPerPixel(FormatOf(cell.source)));
                const std::size_t mapSize = static_cast<std::size_t>(reference::BytesPerPixel(FormatOf(cell.map)));
                support::Fence    source(2 * width * sourceSize, end);
                support::Fence    map(2 * width * mapSize, end);
                support::Fence    target(2 * width * std::size_t{4}, end);
                source.MakeReadOnly();
                map.MakeReadOnly();
                for (const bool loops : {false, true})
                {
                    std::vector<std::uint8_t> expected(target.Data(), target.Data() + target.Size());
                    AnySource                 from(&plain, cell.source, width, 2, source.Data(), 0, false);
                    AnySource                 through(&plain, cell.map, width, 2, map.Data(), 0, false);
                    PitchedTarget             bitmap(&ScreenOf(loops), width, 2, target.Data());
                    reference::Target         wanted;
                    wanted.picture   = {reference::Format::Argb32, width, 2, width * 4, expected.data(), true};
                    wanted.optimised = loops;
                    const reference::Picture picture{
                        FormatOf(cell.source), width, 2, static_cast<std::int64_t>(width * sourceSize),
                        source.Data(),         false};
                    const reference::Picture mapped{
                        FormatOf(cell.map), width, 2, static_cast<std::int64_t>(width * mapSize), map.Data(), false};
                    reference::BlitAlpha(wanted, picture, &mapped, {width, 2, 0, 0, 0, 0}, flags, 200);
                    bitmap.Lock();
                    bitmap.BlitAlpha(&from, &through, width, 2, 0, 0, 0, 0, flags, 200);
                    ASSERT_EQ(std::memcmp(expected.data(), target.Data(), expected.size()), 0)
                        << "type " << cell.source << " through type " << cell.map << ", width " << width;
                }
                EXPECT_TRUE(target.IsSlackUntouched());
            }
        }
    }
}

}  // namespace
