// Drawing run-length-encoded images: the six entries, the worker in all its combinations, clipping by skipping,
// magnification with partial edges, and how the blits of a bitmap get there.
#include <algorithm>
#include <array>
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
#include "Kanvo_RLECompressedBlits.h"
#include "MapLoopSpies.h"
#include "NaiveMix.h"
#include "Reference_Rle.h"
#include "RleImage.h"
#include "RleSources.h"

namespace
{

using reference::RleRule;
using reference::Where;
using support::AssertCapture;
using support::Messages;
using support::MessagesOf;
using support::PitchedTarget;
using support::RleImage;
using support::UncheckedRle;

using Blits = Kanvo_RLECompressedBlits;
using Log   = std::vector<std::string>;

constexpr std::uint32_t PAPER = 0xC0305070;  // what targets are filled with

// ---- the ways to draw -----------------------------------------------------------------------------------------------

//! One of the six entries, with what the description says of it.
struct Entry
{
    const char* name;
    int         unitBits;
    bool        fromBlitAlpha;
    bool        magnifies;

    RleRule Rule(int alpha) const { return {alpha != 255, fromBlitAlpha, alpha}; }
};

constexpr Entry ENTRIES[] = {{"Blit_ARGB32RLE8", 8, false, false},     {"Blit_ARGB32RLE16", 16, false, false},
                             {"BlitAlpha_ARGB32RLE8", 8, true, false}, {"BlitAlpha_ARGB32RLE16", 16, true, false},
                             {"BlitMag_ARGB32RLE8", 8, false, true},   {"BlitMag_ARGB32RLE16", 16, false, true}};

//! Factors count for the entries that have them.
void Call(const Entry& entry, Kanvo_Bitmap& source, Kanvo_Bitmap& target, const Where& where, int opacity,
          unsigned magX = 1, unsigned magY = 1)
{
    const auto alpha = static_cast<Tov_UByte>(opacity);
    const auto plain = entry.fromBlitAlpha
                           ? (entry.unitBits == 8 ? &Blits::BlitAlpha_ARGB32RLE8 : &Blits::BlitAlpha_ARGB32RLE16)
                           : (entry.unitBits == 8 ? &Blits::Blit_ARGB32RLE8 : &Blits::Blit_ARGB32RLE16);
    const auto mag   = entry.unitBits == 8 ? &Blits::BlitMag_ARGB32RLE8 : &Blits::BlitMag_ARGB32RLE16;
    if (entry.magnifies)
    {
        mag(&source, &target, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY, alpha,
            static_cast<Tov_UShort>(magX), static_cast<Tov_UShort>(magY));
        return;
    }
    plain(&source, &target, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY, alpha);
}

//! One of the eight instances of the worker.
struct Worker
{
    bool globalAlpha;
    bool fromBlitAlpha;
    int  unitBits;
    void (*draw)(const Kanvo_PrecompiledImageInfo*, Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt, Tov_Int,
                 Tov_Int, Tov_UByte, Tov_UShort, Tov_UShort);
};

template <bool GLOBAL_ALPHA, bool FROM_BLIT_ALPHA, class State>
constexpr Worker TheWorker()
{
    return {GLOBAL_ALPHA, FROM_BLIT_ALPHA, std::is_same_v<State, RLE8CurDecompressInfo> ? 8 : 16,
            &Blits::Blit_ARGB32RLE<GLOBAL_ALPHA, FROM_BLIT_ALPHA, State>};
}

constexpr Worker WORKERS[] = {
    TheWorker<false, false, RLE8CurDecompressInfo>(),  TheWorker<false, true, RLE8CurDecompressInfo>(),
    TheWorker<true, false, RLE8CurDecompressInfo>(),   TheWorker<true, true, RLE8CurDecompressInfo>(),
    TheWorker<false, false, RLE16CurDecompressInfo>(), TheWorker<false, true, RLE16CurDecompressInfo>(),
    TheWorker<true, false, RLE16CurDecompressInfo>(),  TheWorker<true, true, RLE16CurDecompressInfo>()};

// ---- targets --------------------------------------------------------------------------------------------------------

//! A target of its own pixels, all paper, beside a twin that the reference draws into.
class Canvas
{
public:
    Canvas(unsigned width, unsigned height, bool loops = false)
        : m_width(width),
          m_height(height),
          m_pixels(std::size_t{width} * height, PAPER),
          m_expected(m_pixels),
          m_screen(nullptr),
          m_bitmap(&m_screen, width, height, m_pixels.data())
    {
        if (loops) m_screen.GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON);
        m_bitmap.Lock();
    }

    void Clip(unsigned minX, unsigned minY, unsigned maxX, unsigned maxY)
    {
        m_clip = {minX, minY, maxX, maxY};
        m_bitmap.SetCliprect(minX, minY, maxX, maxY);
    }

    PitchedTarget& Bitmap() { return m_bitmap; }
    std::uint32_t  At(unsigned x, unsigned y) const { return m_pixels[std::size_t{y} * m_width + x]; }
    bool           IsPaper() const { return IsAllPaper(m_pixels); }

    //! One row as text: a digit for every pixel that shows that colour of the list, "." for paper, "?" for others.
    std::string Row(unsigned y, const std::vector<std::uint32_t>& colors) const
    {
        std::string text;
        for (unsigned x = 0; x < m_width; ++x)
        {
            char letter = At(x, y) == PAPER ? '.' : '?';
            for (std::size_t color = 0; color < colors.size(); ++color)
            {
                if (At(x, y) == colors[color]) letter = static_cast<char>('0' + color);
            }
            text += letter;
        }
        return text;
    }

    void Expect(const RleImage& image, const Where& where, std::int64_t magX, std::int64_t magY, const RleRule& rule)
    {
        reference::Target target;
        target.picture    = {reference::Format::Argb32,
                             m_width,
                             m_height,
                             m_width * 4,
                             reinterpret_cast<std::uint8_t*>(m_expected.data()),
                             true};
        target.clip       = m_clip;
        const auto bytes  = image.Bytes();
        const auto expand = reference::ExpandRle(bytes.data(), image.unitBits);
        reference::DrawRle(target, expand, where, magX, magY, rule);
    }
    bool IsAsExpected() const { return m_pixels == m_expected; }
    bool IsExpectedPaper() const { return IsAllPaper(m_expected); }

private:
    static bool IsAllPaper(const std::vector<std::uint32_t>& pixels)
    {
        return std::all_of(pixels.begin(), pixels.end(), [](std::uint32_t pixel) { return pixel == PAPER; });
    }

    unsigned                   m_width;
    unsigned                   m_height;
    reference::Clip            m_clip;
    std::vector<std::uint32_t> m_pixels;
    std::vector<std::uint32_t> m_expected;
    Kanvo_Screen               m_screen;
    PitchedTarget              m_bitmap;
};

// ---- images ---------------------------------------------------------------------------------------------------------

const std::vector<std::uint32_t> OPAQUE{0xFF111111, 0xFF222222, 0xFF333333, 0xFF444444, 0xFF555555, 0xFF666666};
const std::vector<std::uint32_t> MIXED{0xFF102030, 0x00FFFFFF, 0x80FF8000, 0x01FFFFFF, 0xFE0080FF, 0x7F000000};

RleImage As(RleImage image, int unitBits)
{
    image.unitBits = unitBits;
    return image;
}

//! 6x1: every pixel another colour.
RleImage Stripe(const std::vector<std::uint32_t>& palette)
{
    return {8, 6, 1, palette, {0, 6, 0, 1, 2, 3, 4, 5, 0, 0}};
}

//! 6x4, runs and literals that cross rows.
RleImage Mosaic(const std::vector<std::uint32_t>& palette)
{
    return {8, 6, 4, palette, {4, 0, 0, 5, 1, 2, 3, 4, 5, 1, 4, 9, 2, 0, 1, 3, 4, 5, 0, 0}};
}

UncheckedRle SourceOf(const RleImage& image, const std::vector<std::uint8_t>& bytes)
{
    return UncheckedRle(image.unitBits == 8 ? BM_RGB32RLE8 : BM_RGB32RLE16, image.width, image.height, bytes.data());
}

// ---- magnification and its edges ------------------------------------------------------------------------------------

TEST(RleBlits, ThreeTimesAsWideFromFourPixelsLeftOfTheClipSkipsOneSourcePixelAndCutsTheNext)
{
    for (const int unitBits : {8, 16})
    {
        const RleImage image  = As(Stripe(OPAQUE), unitBits);
        const auto     bytes  = image.Bytes();
        UncheckedRle   source = SourceOf(image, bytes);
        Canvas         canvas(20, 1);
        canvas.Clip(3, 0, 19, 0);
        Call(ENTRIES[unitBits == 8 ? 4 : 5], source, canvas.Bitmap(), {6, 1, 0, 0, -1, 0}, 255, 3, 1);
        EXPECT_EQ(canvas.Row(0, OPAQUE), "...11222333444555...");
    }
}

struct Cut
{
    int         dst;
    unsigned    clipMin;
    unsigned    clipMax;
    const char* expected;
};

constexpr Cut CUTS[] = {
    // three pixels each, source pixels 1 to 4: whole, and cut on either side by none, one and two
    {0, 0, 13, "111222333444.."},
    {2, 0, 13, "..111222333444"},
    {-1, 0, 13, "11222333444..."},
    {-2, 0, 13, "1222333444...."},
    {-3, 0, 13, "222333444....."},
    {-11, 0, 13, "4............."},
    {-12, 0, 13, ".............."},
    {3, 0, 13, "...11122233344"},
    {4, 0, 13, "....1112223334"},
    {5, 0, 13, ".....111222333"},
    {13, 0, 13, ".............1"},
    {14, 0, 13, ".............."},
    // cut on both sides
    {-1, 0, 8, "112223334....."},
    {0, 1, 9, ".112223334...."},
    {0, 2, 10, "..122233344..."},
    // nothing but a part of one source pixel, or of two
    {0, 4, 4, "....2........."},
    {0, 3, 3, "...2.........."},
    {0, 5, 5, ".....2........"},
    {0, 3, 4, "...22........."},
    {0, 4, 5, "....22........"},
    {0, 3, 5, "...222........"},
    {0, 5, 6, ".....23......."},
    {0, 4, 6, "....223......."},
    {0, 5, 7, ".....233......"},
};

TEST(RleBlits, EdgeColumnsAreAsWideAsTheClipLeavesThem)
{
    for (const int unitBits : {8, 16})
    {
        const RleImage image  = As(Stripe(OPAQUE), unitBits);
        const auto     bytes  = image.Bytes();
        UncheckedRle   source = SourceOf(image, bytes);
        for (const Cut& cut : CUTS)
        {
            Canvas canvas(14, 3);
            canvas.Clip(cut.clipMin, 1, cut.clipMax, 1);
            Call(ENTRIES[unitBits == 8 ? 4 : 5], source, canvas.Bitmap(), {4, 1, 1, 0, cut.dst, -1}, 255, 3, 4);
            EXPECT_EQ(canvas.Row(0, OPAQUE), "..............");
            EXPECT_EQ(canvas.Row(1, OPAQUE), cut.expected)
                << "at " << cut.dst << ", clip " << cut.clipMin << " to " << cut.clipMax;
            EXPECT_EQ(canvas.Row(2, OPAQUE), "..............");
        }
    }
}

TEST(RleBlits, EdgeRowsAreAsHighAsTheClipLeavesThem)
{
    for (const int unitBits : {8, 16})
    {
        RleImage image      = As(Stripe(OPAQUE), unitBits);
        image.width         = 1;
        image.height        = 6;
        const auto   bytes  = image.Bytes();
        UncheckedRle source = SourceOf(image, bytes);
        for (const Cut& cut : CUTS)
        {
            Canvas canvas(3, 14);
            canvas.Clip(1, cut.clipMin, 1, cut.clipMax);
            Call(ENTRIES[unitBits == 8 ? 4 : 5], source, canvas.Bitmap(), {1, 4, 0, 1, -1, cut.dst}, 255, 4, 3);
            std::string columns[3];
            for (unsigned y = 0; y < 14; ++y)
            {
                const std::string row = canvas.Row(y, OPAQUE);
                for (std::size_t x = 0; x < 3; ++x) columns[x] += row[x];
            }
            EXPECT_EQ(columns[0], "..............");
            EXPECT_EQ(columns[1], cut.expected)
                << "at " << cut.dst << ", clip " << cut.clipMin << " to " << cut.clipMax;
            EXPECT_EQ(columns[2], "..............");
        }
    }
}

TEST(RleBlits, OnePixelLargerThanTheClipFillsIt)
{
    const RleImage image{8, 1, 1, OPAQUE, {1, 3, 0, 0}};
    const auto     bytes  = image.Bytes();
    UncheckedRle   source = SourceOf(image, bytes);
    for (const unsigned factor : {9U, 255U, 256U, 65535U})
    {
        Canvas canvas(9, 3);
        canvas.Clip(2, 1, 5, 1);
        Call(ENTRIES[4], source, canvas.Bitmap(), {1, 1, 0, 0, 0, 0}, 255, factor, factor);
        EXPECT_EQ(canvas.Row(0, OPAQUE), ".........");
        EXPECT_EQ(canvas.Row(1, OPAQUE), "..3333...");
        EXPECT_EQ(canvas.Row(2, OPAQUE), ".........");
    }
}

TEST(RleBlits, HugeFactorsAndFarPositionsAreExact)
{
    const RleImage image  = Mosaic(OPAQUE);
    const auto     bytes  = image.Bytes();
    UncheckedRle   source = SourceOf(image, bytes);
    for (const std::int64_t factor : {1000, 32768, 65535})
    {
        for (int pixel = 0; pixel < 6; ++pixel)
        {
            for (const int beside : {-10, -3, 0, 4})
            {
                Canvas      canvas(8, 8);
                const Where where{6,
                                  4,
                                  0,
                                  0,
                                  static_cast<std::int32_t>(-factor * pixel + beside),
                                  static_cast<std::int32_t>(-factor * 2 + beside)};
                canvas.Expect(image, where, factor, factor, {false, false, 255});
                Call(ENTRIES[4], source, canvas.Bitmap(), where, 255, static_cast<unsigned>(factor),
                     static_cast<unsigned>(factor));
                EXPECT_TRUE(canvas.IsAsExpected()) << factor << ", pixel " << pixel << ", " << beside;
                EXPECT_FALSE(canvas.IsExpectedPaper());
            }
        }
    }
}

//! Magnified, the image is wider than any number of 32 bits.
TEST(RleBlits, AnImageThatReachesFromOneEndOfTheNumbersBeyondTheOtherIsExact)
{
    const RleImage image{16, 60000, 1, OPAQUE, {32768, 1, 0, 2, 2, 3, 27230, 4, 0, 0}};
    const auto     bytes  = image.Bytes();
    UncheckedRle   source = SourceOf(image, bytes);
    for (const int beside : {0, 32760, 32767, 32768, 65535, 100000, 131070, 200000})
    {
        Canvas      canvas(12, 2);
        const Where where{60000, 1, 0, 0, INT32_MIN + beside, 0};
        canvas.Expect(image, where, 65535, 2, {false, false, 255});
        Call(ENTRIES[5], source, canvas.Bitmap(), where, 255, 65535, 2);
        EXPECT_TRUE(canvas.IsAsExpected()) << beside;
        EXPECT_FALSE(canvas.IsExpectedPaper());
    }
}

TEST(RleBlits, PositionsAtTheEndsOfTheNumbersDrawNothing)
{
    const RleImage image  = Mosaic(OPAQUE);
    const auto     bytes  = image.Bytes();
    UncheckedRle   source = SourceOf(image, bytes);
    for (const Entry& entry : {ENTRIES[0], ENTRIES[2], ENTRIES[4]})
    {
        for (const std::int32_t x :
             std::initializer_list<std::int32_t>{INT32_MIN, INT32_MIN + 1, -1, 0, 7, 8, INT32_MAX - 1, INT32_MAX})
        {
            for (const std::int32_t y :
                 std::initializer_list<std::int32_t>{INT32_MIN, INT32_MIN + 1, -1, 0, 7, 8, INT32_MAX - 1, INT32_MAX})
            {
                for (const unsigned factor : {1U, 65535U})
                {
                    Canvas      canvas(8, 8);
                    const Where where{6, 4, 0, 0, x, y};
                    const auto  mag = entry.magnifies ? factor : 1;
                    canvas.Expect(image, where, mag, mag, entry.Rule(255));
                    Call(entry, source, canvas.Bitmap(), where, 255, mag, mag);
                    EXPECT_TRUE(canvas.IsAsExpected()) << entry.name << " at " << x << ", " << y << ", " << factor;
                }
            }
        }
    }
}

TEST(RleBlits, AFactorOfZeroDrawsNothing)
{
    for (const Entry& entry : {ENTRIES[4], ENTRIES[5]})
    {
        const RleImage image  = As(Mosaic(OPAQUE), entry.unitBits);
        const auto     bytes  = image.Bytes();
        UncheckedRle   source = SourceOf(image, bytes);
        for (const Where& where : {Where{6, 4, 0, 0, 0, 0}, Where{6, 4, 0, 0, -3, -2}, Where{6, 4, 0, 0, 7, 7},
                                   Where{0, 0, 0, 0, 0, 0}, Where{6, 4, 0, 0, 100, -100}})
        {
            Canvas canvas(8, 8);
            canvas.Clip(1, 1, 6, 6);
            Call(entry, source, canvas.Bitmap(), where, 255, 0, 3);
            Call(entry, source, canvas.Bitmap(), where, 255, 3, 0);
            Call(entry, source, canvas.Bitmap(), where, 255, 0, 0);
            EXPECT_TRUE(canvas.IsPaper());
        }
        EXPECT_EQ(source.log.size(), 30U);
    }
}

// ---- the source rectangle -------------------------------------------------------------------------------------------

TEST(RleBlits, ASourceRectangleOnePixelWiderOrHigherThanTheImageDrawsNothing)
{
    for (const Entry& entry : ENTRIES)
    {
        const RleImage image  = As(Mosaic(OPAQUE), entry.unitBits);
        const auto     bytes  = image.Bytes();
        UncheckedRle   source = SourceOf(image, bytes);
        for (const Where& where :
             {Where{7, 4, 0, 0, 0, 0}, Where{6, 5, 0, 0, 0, 0}, Where{6, 4, 1, 0, 0, 0}, Where{6, 4, 0, 1, 0, 0},
              Where{1, 1, 6, 0, 0, 0}, Where{1, 1, 0, 4, 0, 0}, Where{7, 4, 0, 0, -3, 0},
              Where{1, 1, 0xFFFFFFFF, 0, 0, 0}, Where{2, 1, 0xFFFFFFFF, 0, 0, 0}, Where{1, 2, 0, 0xFFFFFFFF, 0, 0},
              Where{0xFFFFFFFF, 1, 2, 0, 0, 0}, Where{0xFFFFFFFF, 1, 2, 0, 2, 0}, Where{0x80000001, 1, 0, 0, 0, 0},
              Where{1, 0x80000001, 0, 0, 0, 0}, Where{0x80000001, 0x80000001, 0x7FFFFFFF, 0x7FFFFFFF, 0, 0},
              Where{0x40000001, 1, 0, 0, 0, 0}})
        {
            for (const unsigned factor : {1U, 2U, 4U})
            {
                Canvas canvas(10, 10);
                Call(entry, source, canvas.Bitmap(), where, 255, factor, factor);
                EXPECT_TRUE(canvas.IsPaper()) << entry.name << " " << where.width << "x" << where.height << " from "
                                              << where.srcX << ", " << where.srcY;
            }
        }
    }
}

TEST(RleBlits, AnEmptySourceRectangleDrawsNothing)
{
    for (const Entry& entry : ENTRIES)
    {
        const RleImage image  = As(Mosaic(OPAQUE), entry.unitBits);
        const auto     bytes  = image.Bytes();
        UncheckedRle   source = SourceOf(image, bytes);
        for (const Where& where : {Where{0, 4, 0, 0, 0, 0}, Where{6, 0, 0, 0, 0, 0}, Where{0, 0, 6, 4, 0, 0},
                                   Where{0, 4, 2, 0, 3, 0}, Where{6, 0, 0, 2, 0, -3}})
        {
            Canvas canvas(10, 10);
            Call(entry, source, canvas.Bitmap(), where, 255, 3, 3);
            EXPECT_TRUE(canvas.IsPaper()) << entry.name;
        }
    }
}

TEST(RleBlits, TheImagesBoundsAreThoseOfItsHeader)
{
    const RleImage image = Mosaic(OPAQUE);
    const auto     bytes = image.Bytes();
    UncheckedRle   small(BM_RGB32RLE8, 2, 1, bytes.data());
    UncheckedRle   large(BM_RGB32RLE8, 20, 20, bytes.data());
    for (UncheckedRle* source : {&small, &large})
    {
        Canvas canvas(8, 8);
        canvas.Expect(image, {6, 4, 0, 0, 1, 1}, 1, 1, {false, false, 255});
        Call(ENTRIES[0], *source, canvas.Bitmap(), {6, 4, 0, 0, 1, 1}, 255);
        EXPECT_TRUE(canvas.IsAsExpected());
        Canvas other(8, 8);
        Call(ENTRIES[0], *source, other.Bitmap(), {7, 4, 0, 0, 1, 1}, 255);
        EXPECT_TRUE(other.IsPaper());
    }
}

TEST(RleBlits, EverySourceRectangleShowsItsPixels)
{
    for (const Entry& entry : ENTRIES)
    {
        const RleImage image  = As(Mosaic(MIXED), entry.unitBits);
        const auto     bytes  = image.Bytes();
        UncheckedRle   source = SourceOf(image, bytes);
        for (unsigned srcX = 0; srcX < 6; ++srcX)
        {
            for (unsigned srcY = 0; srcY < 4; ++srcY)
            {
                for (unsigned width = 1; srcX + width <= 6; ++width)
                {
                    for (unsigned height = 1; srcY + height <= 4; ++height)
                    {
                        Canvas         canvas(16, 12);
                        const Where    where{width, height, srcX, srcY, 2, 1};
                        const unsigned factor = entry.magnifies ? 2 : 1;
                        canvas.Expect(image, where, factor, factor, entry.Rule(255));
                        Call(entry, source, canvas.Bitmap(), where, 255, 2, 2);
                        EXPECT_TRUE(canvas.IsAsExpected()) << entry.name;
                    }
                }
            }
        }
    }
}

// ---- the clip rectangle ---------------------------------------------------------------------------------------------

TEST(RleBlits, EveryClipRectangleCutsTheUnclippedPicture)
{
    for (const Entry& entry : ENTRIES)
    {
        const RleImage image  = As(Mosaic(MIXED), entry.unitBits);
        const auto     bytes  = image.Bytes();
        UncheckedRle   source = SourceOf(image, bytes);
        for (unsigned minX = 0; minX < 12; ++minX)
        {
            for (unsigned maxX = minX; maxX < 12; maxX += 1 + maxX % 3)
            {
                for (unsigned minY = 0; minY < 9; minY += 2)
                {
                    for (unsigned maxY = minY; maxY < 9; ++maxY)
                    {
                        Canvas      canvas(12, 9);
                        const Where where{6, 4, 0, 0, -2, -1};
                        canvas.Clip(minX, minY, maxX, maxY);
                        canvas.Expect(image, where, entry.magnifies ? 3 : 1, entry.magnifies ? 2 : 1, entry.Rule(200));
                        Call(entry, source, canvas.Bitmap(), where, 200, 3, 2);
                        ASSERT_TRUE(canvas.IsAsExpected()) << entry.name;
                    }
                }
            }
        }
    }
}

TEST(RleBlits, AnEmptyClipRectangleLetsNothingThrough)
{
    for (const Entry& entry : ENTRIES)
    {
        const RleImage image  = As(Mosaic(OPAQUE), entry.unitBits);
        const auto     bytes  = image.Bytes();
        UncheckedRle   source = SourceOf(image, bytes);
        Canvas         canvas(8, 8);
        for (const auto& [minX, minY, maxX, maxY] :
             {std::array<unsigned, 4>{3, 0, 2, 7}, std::array<unsigned, 4>{0, 3, 7, 2},
              std::array<unsigned, 4>{8, 0, 9, 7}, std::array<unsigned, 4>{1, 1, 0, 0},
              std::array<unsigned, 4>{0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF}})
        {
            canvas.Clip(minX, minY, maxX, maxY);
            Call(entry, source, canvas.Bitmap(), {6, 4, 0, 0, 0, 0}, 255, 2, 2);
            Call(entry, source, canvas.Bitmap(), {6, 4, 0, 0, -1, -1}, 255, 2, 2);
        }
        EXPECT_TRUE(canvas.IsPaper());
    }
}

// ---- colours --------------------------------------------------------------------------------------------------------

TEST(RleBlits, AFullyTransparentEntryLeavesTheTargetUntouched)
{
    for (const Worker& worker : WORKERS)
    {
        for (const unsigned factor : {1U, 2U, 7U})
        {
            for (const Tov_UByte alpha : std::initializer_list<Tov_UByte>{255, 254, 1, 0})
            {
                const RleImage image{worker.unitBits, 3, 2, {0x00FFFFFF, 0x00000000}, {4, 0, 0, 2, 1, 0, 0, 0}};
                const auto     bytes = image.Bytes();
                Canvas         canvas(30, 20);
                worker.draw(reinterpret_cast<const Kanvo_PrecompiledImageInfo*>(bytes.data()), &canvas.Bitmap(), 3, 2,
                            0, 0, -1, -1, alpha, static_cast<Tov_UShort>(factor), static_cast<Tov_UShort>(factor));
                EXPECT_TRUE(canvas.IsPaper());
            }
        }
    }
}

//! The word that one entry of one palette colour makes of a pixel.
std::uint32_t One(const Entry& entry, std::uint32_t color, int alpha, std::uint32_t word)
{
    const auto    bytes = RleImage{entry.unitBits, 1, 1, {color}, {1, 0, 0, 0}}.Bytes();
    UncheckedRle  source(entry.unitBits == 8 ? BM_RGB32RLE8 : BM_RGB32RLE16, 1, 1, bytes.data());
    Kanvo_Screen  screen(nullptr);
    PitchedTarget bitmap(&screen, 1, 1, &word);
    bitmap.Lock();
    Call(entry, source, bitmap, {1, 1, 0, 0, 0, 0}, alpha);
    return word;
}

TEST(RleBlits, AHalfOpaqueBlitOfAnOpaqueEntryBlendsWithAlpha128)
{
    for (const Entry& entry : ENTRIES)
    {
        EXPECT_EQ(One(entry, 0xFFFFFFFF, 128, 0x00000000), 0x807F7F7FU) << entry.name;  // 255 * 64 / 128
        EXPECT_EQ(One(entry, 0xFFFFFFFF, 128, 0xFF000000), 0xFF7F7F7FU) << entry.name;
    }
}

TEST(RleBlits, AnOpaqueEntryAtFullOpacityIsStored)
{
    for (const Entry& entry : ENTRIES) EXPECT_EQ(One(entry, 0xFF123456, 255, 0x00ABCDEF), 0xFF123456U) << entry.name;
}

TEST(RleBlits, AtFullOpacityBlitIgnoresTheWeightOfATranslucentEntry)
{
    for (const Entry& entry : ENTRIES)
    {
        // Blit blends at the opacity of the call, as far as blending goes; BlitAlpha at the entry's alpha
        EXPECT_EQ(One(entry, 0x01FFFFFF, 255, 0xFF000000), entry.fromBlitAlpha ? 0xFF000000U : 0xFFFDFDFDU)
            << entry.name;
        EXPECT_EQ(One(entry, 0x80FFFFFF, 255, 0xFF000000), entry.fromBlitAlpha ? 0xFF7F7F7FU : 0xFFFDFDFDU)
            << entry.name;
        EXPECT_EQ(One(entry, 0xFEFFFFFF, 255, 0xFF000000), 0xFFFDFDFDU) << entry.name;
        EXPECT_EQ(One(entry, 0x80FFFFFF, 255, 0x00000000), entry.fromBlitAlpha ? 0x807F7F7FU : 0xFFFDFDFDU)
            << entry.name;
        // below full opacity both weigh
        EXPECT_EQ(One(entry, 0x81FFFFFF, 254, 0x00000000), 0x807F7F7FU) << entry.name;
    }
}

TEST(RleBlits, EveryEntryAlphaAtEveryOpacityFollowsTheRule)
{
    for (const Entry& entry : ENTRIES)
    {
        if (entry.unitBits == 16) continue;
        for (int alpha = 0; alpha < 256; ++alpha)
        {
            RleImage image{8, 16, 16, {}, {0, 255}};
            for (unsigned own = 0; own < 256; ++own)
            {
                image.palette.push_back(own << 24 | 0x40C0FF);
                if (own == 255)
                    image.units.insert(image.units.end(), {1, 255, 0, 0});
                else
                    image.units.push_back(own);
            }
            const auto   bytes  = image.Bytes();
            UncheckedRle source = SourceOf(image, bytes);
            Canvas       canvas(16, 16);
            canvas.Expect(image, {16, 16, 0, 0, 0, 0}, 1, 1, entry.Rule(alpha));
            Call(entry, source, canvas.Bitmap(), {16, 16, 0, 0, 0, 0}, alpha);
            EXPECT_TRUE(canvas.IsAsExpected()) << entry.name << " " << alpha;
        }
    }
}

//! Also where no entry calls it so: an opacity below 255 without the template argument that says so.
TEST(RleBlits, AllEightWorkersFollowTheirRules)
{
    for (const Worker& worker : WORKERS)
    {
        const RleImage image = As(Mosaic(MIXED), worker.unitBits);
        const auto     bytes = image.Bytes();
        for (const int alpha : {255, 254, 128, 1, 0})
        {
            for (const unsigned magX : {1U, 2U, 5U})
            {
                for (const unsigned magY : {1U, 3U})
                {
                    Canvas      canvas(20, 10);
                    const Where where{5, 3, 1, 1, -2, -1};
                    canvas.Clip(0, 1, 17, 7);
                    canvas.Expect(image, where, magX, magY, {worker.globalAlpha, worker.fromBlitAlpha, alpha});
                    worker.draw(reinterpret_cast<const Kanvo_PrecompiledImageInfo*>(bytes.data()), &canvas.Bitmap(),
                                where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY,
                                static_cast<Tov_UByte>(alpha), static_cast<Tov_UShort>(magX),
                                static_cast<Tov_UShort>(magY));
                    EXPECT_TRUE(canvas.IsAsExpected())
                        << worker.globalAlpha << worker.fromBlitAlpha << " " << worker.unitBits << ", " << alpha;
                }
            }
        }
    }
}

// ---- streams --------------------------------------------------------------------------------------------------------

TEST(RleBlits, AnEarlyEndLeavesTheRestUndrawn)
{
    for (const Entry& entry : ENTRIES)
    {
        // 6x3, of which 8 pixels are there
        const RleImage image{entry.unitBits, 6, 3, OPAQUE, {5, 1, 0, 3, 2, 3, 4, 0, 0, 9, 5, 9, 5}};
        const auto     bytes  = image.Bytes();
        UncheckedRle   source = SourceOf(image, bytes);
        Canvas         canvas(6, 3);
        Call(entry, source, canvas.Bitmap(), {6, 3, 0, 0, 0, 0}, 255);
        EXPECT_EQ(canvas.Row(0, OPAQUE), "111112") << entry.name;
        EXPECT_EQ(canvas.Row(1, OPAQUE), "34....") << entry.name;
        EXPECT_EQ(canvas.Row(2, OPAQUE), "......") << entry.name;
        Canvas part(6, 3);
        Call(entry, source, part.Bitmap(), {4, 2, 1, 1, 0, 0}, 255);
        EXPECT_EQ(part.Row(0, OPAQUE), "4.....") << entry.name;
        EXPECT_EQ(part.Row(1, OPAQUE), "......") << entry.name;
        Canvas beyond(6, 3);
        Call(entry, source, beyond.Bitmap(), {6, 1, 0, 2, 0, 0}, 255);
        EXPECT_TRUE(beyond.IsPaper()) << entry.name;
    }
}

TEST(RleBlits, AnImageOfNothingButItsEndDrawsNothing)
{
    for (const Entry& entry : ENTRIES)
    {
        const RleImage image{entry.unitBits, 6, 3, OPAQUE, {0, 0}};
        const auto     bytes  = image.Bytes();
        UncheckedRle   source = SourceOf(image, bytes);
        Canvas         canvas(12, 12);
        Call(entry, source, canvas.Bitmap(), {6, 3, 0, 0, 0, 0}, 255, 2, 2);
        EXPECT_TRUE(canvas.IsPaper());
    }
}

//! The end token is the last thing in front of the fence, where it belongs or early.
TEST(RleBlits, NothingBehindTheEndIsRead)
{
    for (const Entry& entry : ENTRIES)
    {
        for (const std::vector<unsigned>& last :
             {std::vector<unsigned>{5, 3, 0, 0}, std::vector<unsigned>{0, 5, 1, 2, 3, 4, 5, 0, 0},
              std::vector<unsigned>{2, 3, 0, 0}, std::vector<unsigned>{0, 0}})
        {
            RleImage image{entry.unitBits, 5, 2, OPAQUE, {5, 1}};
            image.units.insert(image.units.end(), last.begin(), last.end());
            image.FillGap();
            const auto     bytes = image.Bytes();
            support::Fence fence(bytes.size());
            std::memcpy(fence.Data(), bytes.data(), bytes.size());
            fence.MakeReadOnly();
            UncheckedRle source(entry.unitBits == 8 ? BM_RGB32RLE8 : BM_RGB32RLE16, 5, 2, fence.Data());
            for (const Where& where : {Where{5, 2, 0, 0, 0, 0}, Where{5, 2, 0, 0, 9, 0}, Where{5, 2, 0, 0, 0, 19},
                                       Where{3, 1, 2, 1, 1, 1}, Where{1, 2, 0, 0, 0, 0}, Where{1, 2, 4, 0, -1, -1}})
            {
                Canvas         canvas(12, 20);
                const unsigned factor = entry.magnifies ? 2 : 1;
                canvas.Expect(image, where, factor, factor, entry.Rule(255));
                Call(entry, source, canvas.Bitmap(), where, 255, 2, 2);
                EXPECT_TRUE(canvas.IsAsExpected()) << entry.name;
            }
        }
    }
}

TEST(RleBlits, RunsOf65535PixelsCrossManyRows)
{
    RleImage     image{16, 700, 190, OPAQUE, {65535, 2, 65535, 4, 1930, 5, 0, 0}};  // 133,000 pixels
    const auto   bytes  = image.Bytes();
    UncheckedRle source = SourceOf(image, bytes);
    for (const Entry& entry : {ENTRIES[1], ENTRIES[3], ENTRIES[5]})
    {
        Canvas      canvas(40, 40);
        const Where where{400, 30, 420, 80, -200, -5};  // the first run ends in row 93, at column 435
        canvas.Expect(image, where, 1, 1, entry.Rule(255));
        Call(entry, source, canvas.Bitmap(), where, 255);
        EXPECT_TRUE(canvas.IsAsExpected()) << entry.name;
        Canvas      corner(40, 40);
        const Where last{40, 40, 660, 150, 0, 0};
        corner.Expect(image, last, 1, 1, entry.Rule(255));
        Call(entry, source, corner.Bitmap(), last, 255);
        EXPECT_TRUE(corner.IsAsExpected()) << entry.name;
        EXPECT_EQ(corner.At(39, 39), 0xFF666666U);
        EXPECT_EQ(corner.At(0, 36), 0xFF555555U);
    }
}

TEST(RleBlits, IndicesOfSixteenBitsReachTheWholePalette)
{
    RleImage image{16, 2, 1, std::vector<std::uint32_t>(65536, 0xFF000000), {0, 2, 256, 65535, 0, 0}};
    image.palette[256]   = 0xFF00FF00;
    image.palette[65535] = 0xFFFF0000;
    const auto   bytes   = image.Bytes();
    UncheckedRle source  = SourceOf(image, bytes);
    Canvas       canvas(2, 1);
    Call(ENTRIES[1], source, canvas.Bitmap(), {2, 1, 0, 0, 0, 0}, 255);
    EXPECT_EQ(canvas.At(0, 0), 0xFF00FF00U);
    EXPECT_EQ(canvas.At(1, 0), 0xFFFF0000U);
}

// ---- entries --------------------------------------------------------------------------------------------------------

TEST(RleBlits, EveryEntryLocksItsSourceOnceAndUnlocksIt)
{
    for (const Entry& entry : ENTRIES)
    {
        const RleImage image = As(Mosaic(MIXED), entry.unitBits);
        const auto     bytes = image.Bytes();
        for (const int alpha : {255, 254, 0})
        {
            for (const Where& where : {Where{6, 4, 0, 0, 0, 0}, Where{7, 4, 0, 0, 0, 0}, Where{6, 4, 0, 0, 99, 0}})
            {
                UncheckedRle source = SourceOf(image, bytes);
                Canvas       canvas(8, 8);
                Call(entry, source, canvas.Bitmap(), where, alpha, 2, 2);
                EXPECT_EQ(source.log, (Log{"Lock", "Unlock(0, 0, 0, 0)"})) << entry.name;
            }
        }
    }
}

TEST(RleBlits, EntriesAskNothingOfTheTargetsLock)
{
    for (const Entry& entry : ENTRIES)
    {
        const RleImage image  = As(Mosaic(MIXED), entry.unitBits);
        const auto     bytes  = image.Bytes();
        UncheckedRle   source = SourceOf(image, bytes);
        Canvas         canvas(8, 8);
        canvas.Bitmap().Unlock(0, 0, 0, 0);
        EXPECT_EQ(MessagesOf([&] { Call(entry, source, canvas.Bitmap(), {6, 4, 0, 0, 0, 0}, 255); }), Messages{});
        EXPECT_FALSE(canvas.IsPaper());
    }
}

// ---- parts of the worker --------------------------------------------------------------------------------------------

TEST(RleBlits, WritePixelDrawsABlockAndReturnsTheOffsetBehindItsFirstRow)
{
    std::array<std::uint32_t, 35> pixels;
    pixels.fill(PAPER);
    Kanvo_Screen         screen(nullptr);
    PitchedTarget        bitmap(&screen, 7, 5, pixels.data());
    std::uint32_t* const at = &pixels[7 + 2];
    EXPECT_EQ((Blits::WritePixel<false, false>(&bitmap, at, 0xFF123456, 255, 255, 3, 2)), at + 3);
    for (std::size_t y = 0; y < 5; ++y)
    {
        for (std::size_t x = 0; x < 7; ++x)
        {
            const bool inside = x >= 2 && x < 5 && y >= 1 && y < 3;
            EXPECT_EQ(pixels[y * 7 + x], inside ? 0xFF123456U : PAPER) << x << ", " << y;
        }
    }
}

TEST(RleBlits, WritePixelAdvancesAlsoWhereNothingIsDrawn)
{
    std::array<std::uint32_t, 20> pixels;
    pixels.fill(PAPER);
    Kanvo_Screen  screen(nullptr);
    PitchedTarget bitmap(&screen, 20, 1, pixels.data());
    EXPECT_EQ((Blits::WritePixel<false, false>(&bitmap, pixels.data(), 0xFF123456, 0, 255, 9, 1)), &pixels[9]);
    EXPECT_EQ((Blits::WritePixel<true, true>(&bitmap, pixels.data(), 0xFF123456, 255, 0, 4, 1)), &pixels[4]);
    EXPECT_EQ((Blits::WritePixel<true, false>(&bitmap, pixels.data(), 0xFF123456, 1, 254, 4, 1)), &pixels[4]);
    for (const std::uint32_t pixel : pixels) EXPECT_EQ(pixel, PAPER);
}

template <bool GLOBAL_ALPHA, bool FROM_BLIT_ALPHA>
std::uint32_t WrittenPixel(std::uint32_t word, std::uint32_t color, int own, int alpha)
{
    Kanvo_Screen  screen(nullptr);
    PitchedTarget bitmap(&screen, 1, 1, &word);
    Blits::WritePixel<GLOBAL_ALPHA, FROM_BLIT_ALPHA>(&bitmap, &word, color, static_cast<Tov_UByte>(own),
                                                     static_cast<Tov_UByte>(alpha), 1, 1);
    return word;
}

TEST(RleBlits, WritePixelFollowsTheRuleInAllFourCombinations)
{
    constexpr std::uint32_t COLOR = 0xFFA050F0;
    for (const std::uint32_t word : {0x00000000U, 0xFF204060U, 0x80FFFFFFU})
    {
        for (int own = 0; own < 256; own += 5)
        {
            for (int alpha = 0; alpha < 256; alpha += 3)
            {
                const int  scaled = own * alpha / 255;
                const auto blend  = [&](int weight) {
                    return weight == 0 ? word : weight == 255 ? COLOR : support::MixLinear(word, COLOR, weight);
                };
                EXPECT_EQ((WrittenPixel<true, false>(word, COLOR, own, alpha)), blend(scaled));
                EXPECT_EQ((WrittenPixel<true, true>(word, COLOR, own, alpha)), blend(scaled));
                EXPECT_EQ((WrittenPixel<false, true>(word, COLOR, own, alpha)), blend(own));
                EXPECT_EQ((WrittenPixel<false, false>(word, COLOR, own, alpha)),
                          own == 0 || own == 255 ? blend(own) : support::MixLinearSrcAlpha(word, COLOR, alpha));
            }
        }
    }
}

TEST(RleBlits, WritePixelsDrawsBlocksToTheRightAndConsumesTheirTokens)
{
    const RleImage        image = Mosaic(OPAQUE);  // 0000 12345 4 222222222 3 5555
    const auto            bytes = image.Bytes();
    const auto* const     info  = reinterpret_cast<const Kanvo_PrecompiledImageInfo*>(bytes.data());
    RLE8CurDecompressInfo state(info);
    Canvas                canvas(16, 4);
    Blits::WritePixels<false, false>(5, state, info, &canvas.Bitmap(), 1, 1, 255, 3U, 2U);
    EXPECT_EQ(canvas.Row(0, OPAQUE), "................");
    EXPECT_EQ(canvas.Row(1, OPAQUE), ".000000000000111");
    EXPECT_EQ(canvas.Row(2, OPAQUE), ".000000000000111");
    EXPECT_EQ(canvas.Row(3, OPAQUE), "................");
    EXPECT_EQ(state.eCurrentToken, RLECURDECOMPRESSTOKEN_ABS);
    EXPECT_EQ(state.CurrentTokenDataposition, 1U);
    EXPECT_EQ(state.CurrentTokenDatacount, 5U);
    Blits::WritePixels<false, false>(0, state, info, &canvas.Bitmap(), 0, 0, 255, 3U, 2U);
    EXPECT_EQ(canvas.Row(0, OPAQUE), "................");
    EXPECT_EQ(state.CurrentTokenDataposition, 1U);
    Blits::SkipPixels(3, state);
    Blits::WritePixels<true, true>(4, state, info, &canvas.Bitmap(), 2, 0, 255, 1U, 1U);
    EXPECT_EQ(canvas.Row(0, OPAQUE), "..5422..........");
    EXPECT_EQ(state.eCurrentToken, RLECURDECOMPRESSTOKEN_RLE);
    EXPECT_EQ(state.CurrentTokenDataposition, 2U);
    Blits::WritePixels<false, true>(100, state, info, &canvas.Bitmap(), 0, 3, 255, 1U, 1U);
    EXPECT_EQ(canvas.Row(3, OPAQUE), "222222235555....");
    EXPECT_EQ(state.eCurrentToken, RLECURDECOMPRESSTOKEN_END);
}

// ---- through a bitmap's blits ---------------------------------------------------------------------------------------

struct Through
{
    int  unitBits;
    bool map;    // BlitAlpha
    bool loops;  // OPTIMIZED_BLIT
};

class ThroughBlit : public testing::TestWithParam<Through>
{
protected:
    //! Draws with the parameter's operation; the rule that follows from it is in Rule.
    void Draw(Canvas& canvas, Kanvo_Bitmap& source, const Where& where, Tov_Flag flags, int opacity,
              Kanvo_Color key = 0)
    {
        const auto alpha = static_cast<Tov_UByte>(opacity);
        if (GetParam().map)
        {
            canvas.Bitmap().BlitAlpha(&source, &m_map, where.width, where.height, where.srcX, where.srcY, where.dstX,
                                      where.dstY, flags, alpha);
            return;
        }
        canvas.Bitmap().Blit(&source, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY, flags,
                             alpha, key);
    }
    static RleRule  Rule(int alpha) { return {alpha != 255, GetParam().map, alpha}; }
    static RleImage Image(const std::vector<std::uint32_t>& palette)
    {
        return As(Mosaic(palette), GetParam().unitBits);
    }

private:
    std::uint8_t       m_pixel = 0;
    Kanvo_Screen       m_screen{nullptr};
    support::AnySource m_map{&m_screen, BM_ALPHA8, 1, 1, &m_pixel, 0, true};
};

INSTANTIATE_TEST_SUITE_P(RleBlits, ThroughBlit,
                         testing::Values(Through{8, false, false}, Through{8, false, true}, Through{8, true, false},
                                         Through{8, true, true}, Through{16, false, false}, Through{16, false, true},
                                         Through{16, true, false}, Through{16, true, true}),
                         [](const auto& parameter)
                         {
                             const Through& through = parameter.param;
                             return std::string(through.map ? "BlitAlpha" : "Blit") + std::to_string(through.unitBits) +
                                    (through.loops ? "Optimised" : "Portable");
                         });

TEST_P(ThroughBlit, DrawsByItsRule)
{
    const RleImage image  = Image(MIXED);
    const auto     bytes  = image.Bytes();
    UncheckedRle   source = SourceOf(image, bytes);
    for (const int alpha : {255, 254, 128, 0})
    {
        Canvas      canvas(8, 8, GetParam().loops);
        const Where where{5, 3, 1, 1, 2, 3};
        canvas.Expect(image, where, 1, 1, Rule(alpha));
        EXPECT_EQ(MessagesOf([&] { Draw(canvas, source, where, 0, alpha); }), Messages{});
        EXPECT_TRUE(canvas.IsAsExpected()) << alpha;
    }
}

TEST_P(ThroughBlit, FlagsAndColourKeyAreNotPassed)
{
    const RleImage image  = Image(OPAQUE);
    const auto     bytes  = image.Bytes();
    UncheckedRle   source = SourceOf(image, bytes);
    for (const Tov_Flag flags : {unsigned{BLIT_COLORKEY}, unsigned{BLIT_COPY_ONLY_ALPHA}, unsigned{BLIT_BILINEAR},
                                 0xFFFFFFFFU & ~unsigned{BLIT_NOCLIP}})
    {
        for (const Kanvo_Color key : {0x111111U, 0xFF111111U, 0U, 4U})
        {
            Canvas      canvas(8, 8, GetParam().loops);
            const Where where{6, 4, 0, 0, 1, 1};
            canvas.Expect(image, where, 1, 1, Rule(255));
            Draw(canvas, source, where, flags, 255, key);
            EXPECT_TRUE(canvas.IsAsExpected()) << flags;
        }
    }
}

TEST_P(ThroughBlit, ClippingCutsTheSourceRectangleToTheImage)
{
    const RleImage image  = Image(OPAQUE);
    const auto     bytes  = image.Bytes();
    UncheckedRle   source = SourceOf(image, bytes);
    for (const Where& where : {Where{7, 4, 0, 0, 0, 0}, Where{100, 100, 2, 1, -1, 3}, Where{6, 4, 5, 3, 7, 7},
                               Where{0xFFFFFFFF, 0xFFFFFFFF, 0, 0, 0, 0}})
    {
        Canvas canvas(8, 8, GetParam().loops);
        canvas.Expect(image, reference::CutToSize(where, 6, 4), 1, 1, Rule(255));
        Draw(canvas, source, where, 0, 255);
        EXPECT_TRUE(canvas.IsAsExpected());
        EXPECT_FALSE(canvas.IsPaper());
    }
}

TEST_P(ThroughBlit, WithoutClippingTheRectangleIsPassedAsItIs)
{
    const RleImage image  = Image(OPAQUE);
    const auto     bytes  = image.Bytes();
    UncheckedRle   source = SourceOf(image, bytes);
    // a source rectangle that reaches outside is not cut, and so draws nothing
    for (const Where& where : {Where{7, 4, 0, 0, 0, 0}, Where{6, 5, 0, 0, 0, 0}, Where{6, 4, 1, 0, 0, 0},
                               Where{1, 1, 0xFFFFFFFF, 0, 0, 0}, Where{0xFFFFFFFF, 1, 0, 0, 0, 0}})
    {
        Canvas canvas(8, 8, GetParam().loops);
        EXPECT_EQ(MessagesOf([&] { Draw(canvas, source, where, BLIT_NOCLIP, 255); }), Messages{});
        EXPECT_TRUE(canvas.IsPaper());
    }
    // and the image is clipped where it is drawn
    for (const Where& where : {Where{6, 4, 0, 0, 0, 0}, Where{6, 4, 0, 0, -2, -1}, Where{6, 4, 0, 0, 5, 6},
                               Where{3, 2, 2, 1, 1, 1}, Where{6, 4, 0, 0, 100, 0}})
    {
        Canvas canvas(8, 8, GetParam().loops);
        canvas.Clip(1, 2, 6, 7);
        canvas.Expect(image, where, 1, 1, Rule(255));
        EXPECT_EQ(MessagesOf([&] { Draw(canvas, source, where, BLIT_NOCLIP, 255); }), Messages{});
        EXPECT_TRUE(canvas.IsAsExpected());
    }
}

TEST_P(ThroughBlit, TheSourceIsLockedOnceAndOnlyIfSomethingIsLeft)
{
    const RleImage image  = Image(OPAQUE);
    const auto     bytes  = image.Bytes();
    UncheckedRle   source = SourceOf(image, bytes);
    Canvas         canvas(8, 8, GetParam().loops);
    Draw(canvas, source, {6, 4, 0, 0, 8, 0}, 0, 255);
    EXPECT_EQ(source.log, Log{});
    Draw(canvas, source, {6, 4, 0, 0, 1, 0}, 0, 255);
    EXPECT_EQ(source.log, (Log{"Lock", "Unlock(0, 0, 0, 0)"}));
}

TEST_P(ThroughBlit, NoLoopAndNoCounterRuns)
{
    const RleImage        image  = Image(OPAQUE);
    const auto            bytes  = image.Bytes();
    UncheckedRle          source = SourceOf(image, bytes);
    Canvas                canvas(8, 8, GetParam().loops);
    support::LoopSpies    loops;
    support::MapLoopSpies mapLoops;
    support::PerfSpies    counters;
    Draw(canvas, source, {6, 4, 0, 0, 1, 0}, 0, 255);
    Draw(canvas, source, {6, 4, 0, 0, 1, 0}, 0, 100);
    EXPECT_TRUE(loops.Calls().empty());
    EXPECT_TRUE(mapLoops.Calls().empty());
    EXPECT_TRUE(counters.OnlyCounted(""));
}

TEST_P(ThroughBlit, ATargetThatIsNotLockedAssertsAndIsDrawnInto)
{
    const RleImage image  = Image(OPAQUE);
    const auto     bytes  = image.Bytes();
    UncheckedRle   source = SourceOf(image, bytes);
    Canvas         canvas(8, 8, GetParam().loops);
    canvas.Bitmap().Unlock(0, 0, 0, 0);
    EXPECT_EQ(MessagesOf([&] { Draw(canvas, source, {6, 4, 0, 0, 1, 0}, 0, 255); }), Messages{"bitmap not locked"});
    EXPECT_FALSE(canvas.IsPaper());
}

}  // namespace
