// The check of stored images that cannot be trusted: every fault with the byte at which it is seen, faults in their order,
// every truncation and every changed byte of ten sample images. Whatever passes is drawn between fences.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "BlitBitmaps.h"
#include "CrashNote.h"
#include "Dice.h"
#include "Fence.h"
#include "Kanvo.h"
#include "Kanvo_ImageCheck.h"
#include "Kanvo_RLECompressedBlits.h"
#include "Reference_Rle.h"
#include "RleImage.h"
#include "Sweep.h"

namespace
{

using support::RleImage;

using Bytes = std::vector<std::uint8_t>;

//! Fault and offset.
struct Verdict
{
    int         fault;
    std::size_t offset;

    friend bool operator==(const Verdict& one, const Verdict& other)
    {
        return one.fault == other.fault && one.offset == other.offset;
    }
    friend std::ostream& operator<<(std::ostream& stream, const Verdict& verdict)
    {
        return stream << "fault " << verdict.fault << " ("
                      << Kanvo_ImageFaultText(static_cast<Kanvo_ImageFault>(verdict.fault)) << ") at byte "
                      << verdict.offset;
    }
};

//! The data lies at a multiple of four and ends, give or take three bytes, at a fence.
Verdict Check(const Bytes& bytes, BitmapType type = BM_UNKNWON)
{
    const std::size_t room = (bytes.size() + 3) / 4 * 4;
    support::Fence    fence(room);
    std::copy(bytes.begin(), bytes.end(), fence.Data());
    const Kanvo_ImageReport report = Kanvo_CheckImage(fence.Data(), bytes.size(), type);
    return {report.eFault, report.uiOffset};
}

//! 3x2 pixels of three colours: 0 0 0 0 1 2.
RleImage Sample(int unitBits)
{
    return {unitBits, 3, 2, {0xFF0000FF, 0x8000FF00, 0x00FF0000}, {4, 0, 0, 2, 1, 2, 0, 0}};
}

class ImageCheck : public testing::TestWithParam<int>
{
protected:
    static RleImage Good() { return Sample(GetParam()); }

    //! The sample with a number of the header changed.
    static Bytes With(std::size_t at, std::uint32_t value, std::size_t count = 4)
    {
        Bytes bytes = Good().Bytes();
        support::Store(bytes, at, value, count);
        return bytes;
    }
    static BitmapType OwnType() { return GetParam() == 8 ? BM_RGB32RLE8 : BM_RGB32RLE16; }
    static BitmapType OtherType() { return GetParam() == 8 ? BM_RGB32RLE16 : BM_RGB32RLE8; }
};

INSTANTIATE_TEST_SUITE_P(Units, ImageCheck, testing::Values(8, 16),
                         [](const auto& parameter) { return "RLE" + std::to_string(parameter.param); });

// ---- good images ----------------------------------------------------------------------------------------------------

TEST_P(ImageCheck, AGoodImageIsGoodForItsTypeAndForEither)
{
    const Bytes bytes = Good().Bytes();
    EXPECT_EQ(Check(bytes).fault, IMAGE_GOOD);
    EXPECT_EQ(Check(bytes, OwnType()).fault, IMAGE_GOOD);
}

TEST_P(ImageCheck, BytesBehindTheEndAreNotLookedAt)
{
    for (std::size_t trailing = 0; trailing < 20; ++trailing)
    {
        RleImage image = Good();
        image.trailing = trailing;
        EXPECT_EQ(Check(image.Bytes()).fault, IMAGE_GOOD) << trailing;
    }
}

TEST_P(ImageCheck, TheTokensMayBeginAnywhereBehindThePalette)
{
    for (std::size_t gap = 0; gap < 16; gap += Good().UnitBytes())
    {
        RleImage image = Good();
        image.gap      = gap;
        EXPECT_EQ(Check(image.Bytes()).fault, IMAGE_GOOD) << gap;
    }
}

TEST_P(ImageCheck, ReservedBytesColourBitsAndFlagsAreNotLookedAt)
{
    for (const std::size_t at : {10U, 11U, 12U, 13U, 14U, 15U, 28U, 29U, 30U, 31U, 32U, 33U, 34U, 35U})
    {
        for (const std::uint32_t value : {0U, 1U, 0xFFU}) EXPECT_EQ(Check(With(at, value, 1)).fault, IMAGE_GOOD) << at;
    }
}

TEST_P(ImageCheck, TheLargestTokensAndPalettesAreGood)
{
    const unsigned most = GetParam() == 8 ? 255 : 65535;
    RleImage       image{GetParam(), most, 2, std::vector<std::uint32_t>(most + 1, 0xFF000000), {most, most, 0, most}};
    if (image.width > 32767)
    {
        image.width  = 65535 / 5;
        image.height = 10;
    }
    image.units.insert(image.units.end(), most, most);
    image.units.insert(image.units.end(), {0, 0});
    EXPECT_EQ(Check(image.Bytes()).fault, IMAGE_GOOD);
}

// ---- faults of the header -------------------------------------------------------------------------------------------

TEST_P(ImageCheck, NoDataIsTooShort)
{
    EXPECT_EQ(Kanvo_CheckImage(nullptr, 0).eFault, IMAGE_TOO_SHORT);
    EXPECT_EQ(Kanvo_CheckImage(nullptr, 1000).eFault, IMAGE_TOO_SHORT);
}

TEST_P(ImageCheck, LessThanAHeaderIsTooShort)
{
    for (std::size_t size = 0; size < 40; ++size)
    {
        Bytes bytes = Good().Bytes();
        bytes.resize(size);
        EXPECT_EQ(Check(bytes).fault, IMAGE_TOO_SHORT) << size;
    }
}

TEST_P(ImageCheck, DataThatDoesNotStartAtAMultipleOfFourIsMisaligned)
{
    const Bytes bytes = Good().Bytes();
    for (const std::size_t shift : {1U, 2U, 3U})
    {
        support::Fence arena(4096);
        std::memcpy(arena.Data() + shift, bytes.data(), bytes.size());
        const Kanvo_ImageReport report = Kanvo_CheckImage(arena.Data() + shift, bytes.size());
        EXPECT_EQ((Verdict{report.eFault, report.uiOffset}), (Verdict{IMAGE_MISALIGNED, 0}));
        EXPECT_FALSE(report.IsUsable());
    }
}

TEST_P(ImageCheck, BothIdentificationWordsMustBeThere)
{
    for (std::size_t at = 0; at < 8; ++at)
    {
        for (const unsigned value : {0x00U, 0x20U, 0xFFU, 0x6BU})
        {
            Bytes bytes = Good().Bytes();
            if (bytes[at] == value) continue;
            bytes[at] = static_cast<std::uint8_t>(value);
            EXPECT_EQ(Check(bytes), at < 4 ? (Verdict{IMAGE_NOT_KANVO, 0}) : (Verdict{IMAGE_NOT_RLE, 4})) << at;
        }
    }
}

TEST_P(ImageCheck, OnlyVersionOneIsKnown)
{
    for (std::uint32_t version = 0; version < 256; ++version)
    {
        if (version == 1) continue;
        EXPECT_EQ(Check(With(9, version, 1)), (Verdict{IMAGE_UNKNOWN_VERSION, 9}));
    }
}

TEST_P(ImageCheck, TheUnitMustBeEightOrSixteenBits)
{
    for (std::uint32_t bits = 0; bits < 256; ++bits)
    {
        if (bits == 8 || bits == 16) continue;
        EXPECT_EQ(Check(With(8, bits, 1)), (Verdict{IMAGE_WRONG_UNIT, 8})) << bits;
    }
}

TEST_P(ImageCheck, TheUnitMustBeThatOfTheTypeAskedFor)
{
    EXPECT_EQ(Check(Good().Bytes(), OtherType()), (Verdict{IMAGE_WRONG_UNIT, 8}));
}

TEST_P(ImageCheck, WidthAndHeightAreOneTo32767)
{
    for (const std::uint32_t size : {0U, 32768U, 65536U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
    {
        EXPECT_EQ(Check(With(16, size)), (Verdict{IMAGE_BAD_SIZE, 16})) << size;
        EXPECT_EQ(Check(With(20, size)), (Verdict{IMAGE_BAD_SIZE, 20})) << size;
    }
    EXPECT_EQ(Check(With(16, 32767)).fault, IMAGE_ENDS_EARLY);
    EXPECT_EQ(Check(With(20, 32767)).fault, IMAGE_ENDS_EARLY);
    // 46341 squared and 65536 squared wrap around; 32767 squared does not
    Bytes largest = With(16, 32767);
    support::Store(largest, 20, 32767);
    EXPECT_EQ(Check(largest).fault, IMAGE_ENDS_EARLY);
}

TEST_P(ImageCheck, ThePaletteHasOneToAsManyEntriesAsIndicesCanNameAndLiesInTheData)
{
    const std::uint32_t most = GetParam() == 8 ? 256 : 65536;
    for (const std::uint32_t count : std::initializer_list<std::uint32_t>{0U, most + 1, 0x3FFFFFFFU, 0x40000000U,
                                                                          0x40000001U, 0x80000000U, 0xFFFFFFFFU})
    {
        EXPECT_EQ(Check(With(24, count)), (Verdict{IMAGE_BAD_PALETTE, 24})) << count;
    }
    // by one entry beyond the data
    const auto entries = static_cast<std::uint32_t>((Good().Bytes().size() - 40) / 4);
    EXPECT_EQ(Check(With(24, entries + 1)), (Verdict{IMAGE_BAD_PALETTE, 24}));
    EXPECT_EQ(Check(With(24, entries)).fault, IMAGE_BAD_START) << "the tokens then begin inside the palette";
    // more entries than indices can name, although they are all there
    RleImage image = Good();
    image.palette.assign(most + 1, 0xFF000000);
    EXPECT_EQ(Check(image.Bytes()), (Verdict{IMAGE_BAD_PALETTE, 24}));
    image.palette.pop_back();
    EXPECT_EQ(Check(image.Bytes()).fault, IMAGE_GOOD);
}

TEST_P(ImageCheck, EveryStartIsJudged)
{
    const RleImage    image = Good();
    const std::size_t size  = image.Bytes().size();
    for (std::uint32_t start = 0; start <= size + 4; ++start)
    {
        const Bytes   bytes   = With(36, start);
        const Verdict verdict = Check(bytes);
        SCOPED_TRACE(testing::Message() << "start " << start << " of " << size);
        EXPECT_EQ(verdict.fault, static_cast<int>(reference::JudgeRle(bytes.data(), size, 0, true)));
        const bool inside = start >= 52 && start <= size && start % image.UnitBytes() == 0;
        EXPECT_EQ(verdict.fault == IMAGE_BAD_START, !inside);
        if (!inside)
        {
            EXPECT_EQ(verdict.offset, 36U);
        }
        if (start == size)
        {
            EXPECT_EQ(verdict, (Verdict{IMAGE_TOKEN_CUT_OFF, size})) << "a start, and nothing there";
        }
    }
    for (const std::uint32_t start : {0x7FFFFFFFU, 0x80000000U, 0xFFFFFFF0U, 0xFFFFFFFEU, 0xFFFFFFFFU})
    {
        EXPECT_EQ(Check(With(36, start)), (Verdict{IMAGE_BAD_START, 36}));
    }
}

// ---- faults of the tokens -------------------------------------------------------------------------------------------

//! A stream for the sample's 6 pixels and 3 colours, its fault, and the unit at which it is seen.
struct Stream
{
    std::vector<unsigned> units;
    int                   fault;
    std::size_t           unit;
};

TEST_P(ImageCheck, FaultsOfTokensAreSeenWhereTheyAre)
{
    const unsigned most      = GetParam() == 8 ? 255 : 65535;
    const Stream   streams[] = {
          // cut off: the token begins here
        {{4}, IMAGE_TOKEN_CUT_OFF, 0},
        {{0}, IMAGE_TOKEN_CUT_OFF, 0},
        {{4, 0, 2}, IMAGE_TOKEN_CUT_OFF, 2},
        {{4, 0, 0}, IMAGE_TOKEN_CUT_OFF, 2},
        {{4, 0}, IMAGE_TOKEN_CUT_OFF, 2},
        {{0, 6, 0, 1, 2, 0, 1}, IMAGE_TOKEN_CUT_OFF, 0},
        {{4, 0, 0, 2}, IMAGE_TOKEN_CUT_OFF, 2},
        {{4, 0, 0, 2, 1}, IMAGE_TOKEN_CUT_OFF, 2},
        {{0, most, 0, 0}, IMAGE_TOKEN_CUT_OFF, 0},
        // indices
        {{6, 3, 0, 0}, IMAGE_INDEX_TOO_LARGE, 1},
        {{6, 255, 0, 0}, IMAGE_INDEX_TOO_LARGE, 1},
        {{6, most, 0, 0}, IMAGE_INDEX_TOO_LARGE, 1},
        {{3, 2, 3, 3, 0, 0}, IMAGE_INDEX_TOO_LARGE, 3},
        {{0, 6, 3, 0, 0, 0, 0, 0, 0, 0}, IMAGE_INDEX_TOO_LARGE, 2},
        {{0, 6, 0, 0, 0, 0, 0, 3, 0, 0}, IMAGE_INDEX_TOO_LARGE, 7},
        {{0, 6, 0, 0, most, 0, 0, 0, 0, 0}, IMAGE_INDEX_TOO_LARGE, 4},
        // pixels
        {{7, 0, 0, 0}, IMAGE_TOO_MANY_PIXELS, 0},
        {{most, 0, 0, 0}, IMAGE_TOO_MANY_PIXELS, 0},
        {{4, 0, 3, 1, 0, 0}, IMAGE_TOO_MANY_PIXELS, 2},
        {{4, 0, 0, 3, 1, 1, 1, 0, 0}, IMAGE_TOO_MANY_PIXELS, 2},
        {{0, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0}, IMAGE_TOO_MANY_PIXELS, 0},
        // no end
        {{6, 0}, IMAGE_NO_END, 2},
        {{6, 0, 0}, IMAGE_NO_END, 2},
        {{6, 0, 1}, IMAGE_NO_END, 2},
        {{6, 0, 1, 0}, IMAGE_NO_END, 2},
        {{6, 0, 0, 1, 0, 0, 0}, IMAGE_NO_END, 2},
        {{4, 0, 2, 1, 5, 5, 0, 0}, IMAGE_NO_END, 4},
        // early
        {{0, 0}, IMAGE_ENDS_EARLY, 0},
        {{5, 2, 0, 0}, IMAGE_ENDS_EARLY, 2},
        {{0, 5, 1, 1, 1, 1, 1, 0, 0, 9, 9, 9}, IMAGE_ENDS_EARLY, 7},
    };
    for (const Stream& stream : streams)
    {
        for (const std::size_t gap : {0U, 6U})
        {
            RleImage image = Good();
            image.units    = stream.units;
            image.gap      = gap;
            EXPECT_EQ(Check(image.Bytes()), (Verdict{stream.fault, image.OffsetOf(stream.unit)}))
                << testing::PrintToString(stream.units);
        }
    }
}

TEST_P(ImageCheck, EveryCountBeyondThePictureIsTooMany)
{
    const unsigned most = GetParam() == 8 ? 255 : 65535;
    for (unsigned count = 5; count <= most; count += count < 300 ? 1 : 97)
    {
        RleImage image = Good();
        image.units    = {2, 0, count, 1, 0, 0};
        EXPECT_EQ(Check(image.Bytes()), (Verdict{IMAGE_TOO_MANY_PIXELS, image.OffsetOf(2)})) << count;
        image.units = {2, 0, 0, count, 1, 2, 1, 2, 0, 0};
        EXPECT_EQ(Check(image.Bytes()).fault, count <= 6 ? IMAGE_TOO_MANY_PIXELS : IMAGE_TOKEN_CUT_OFF) << count;
        image.units = {2, 0, 0, count};
        image.units.insert(image.units.end(), count, 1);
        image.units.insert(image.units.end(), {0, 0});
        EXPECT_EQ(Check(image.Bytes()), (Verdict{IMAGE_TOO_MANY_PIXELS, image.OffsetOf(2)})) << count;
    }
}

TEST_P(ImageCheck, EveryIndexIsHeldAgainstThePalettesCount)
{
    for (const unsigned colors : {1U, 2U, 3U, 200U, 255U, 256U})
    {
        for (const unsigned index : {0U, colors - 1, colors, colors + 1, 255U, 256U, 65535U})
        {
            if (index > 255 && GetParam() == 8) continue;
            RleImage image = Good();
            image.palette.assign(colors, 0xFF000000);
            const int expected = index < colors ? IMAGE_GOOD : IMAGE_INDEX_TOO_LARGE;
            image.units        = {6, index, 0, 0};
            EXPECT_EQ(Check(image.Bytes()).fault, expected) << index << " of " << colors;
            for (std::size_t at = 0; at < 6; ++at)
            {
                image.units         = {0, 6, 0, 0, 0, 0, 0, 0, 0, 0};
                image.units[2 + at] = index;
                EXPECT_EQ(Check(image.Bytes()).fault, expected) << index << " of " << colors;
            }
        }
    }
}

TEST(ImageCheck16, AnIndexOf65535NeedsTheWholePalette)
{
    RleImage image{16, 1, 1, std::vector<std::uint32_t>(65536, 0xFF000000), {1, 65535, 0, 0}};
    EXPECT_EQ(Check(image.Bytes()).fault, IMAGE_GOOD);
    image.palette.pop_back();
    EXPECT_EQ(Check(image.Bytes()), (Verdict{IMAGE_INDEX_TOO_LARGE, image.OffsetOf(1)}));
}

//! Half a unit at the end of the data belongs to no token.
TEST(ImageCheck16, HalfAUnitIsCutOff)
{
    const Bytes bytes = Sample(16).Bytes();
    for (std::size_t missing = 1; missing <= 8 * 2; ++missing)
    {
        Bytes shorter(bytes.begin(), bytes.end() - static_cast<std::ptrdiff_t>(missing));
        EXPECT_EQ(Check(shorter).fault, missing <= 4 ? IMAGE_NO_END : IMAGE_TOKEN_CUT_OFF) << missing;
    }
}

// ---- order ----------------------------------------------------------------------------------------------------------

//! Everything is wrong at once; mended one by one from the front, each fault is the next to be named.
TEST_P(ImageCheck, FaultsAreNamedInTheirOrder)
{
    Bytes bytes = Good().Bytes();
    support::Store(bytes, 0, 0);
    support::Store(bytes, 4, 0);
    support::Store(bytes, 8, 0, 2);
    support::Store(bytes, 16, 0);
    support::Store(bytes, 20, 0);
    support::Store(bytes, 24, 0);
    support::Store(bytes, 36, 0);
    support::Fence arena(4096, support::Against::FrontFence);
    std::memcpy(arena.Data() + 1, bytes.data(), bytes.size());
    EXPECT_EQ(Kanvo_CheckImage(arena.Data() + 1, 39).eFault, IMAGE_TOO_SHORT);
    EXPECT_EQ(Kanvo_CheckImage(arena.Data() + 1, bytes.size()).eFault, IMAGE_MISALIGNED);
    const Bytes good = Good().Bytes();
    const auto  mend = [&](std::size_t at, std::size_t count)
    {
        std::copy_n(good.begin() + static_cast<std::ptrdiff_t>(at), count,
                    bytes.begin() + static_cast<std::ptrdiff_t>(at));
    };
    EXPECT_EQ(Check(bytes).fault, IMAGE_NOT_KANVO);
    mend(0, 4);
    EXPECT_EQ(Check(bytes).fault, IMAGE_NOT_RLE);
    mend(4, 4);
    EXPECT_EQ(Check(bytes).fault, IMAGE_UNKNOWN_VERSION);
    mend(9, 1);
    EXPECT_EQ(Check(bytes).fault, IMAGE_WRONG_UNIT);
    mend(8, 1);
    EXPECT_EQ(Check(bytes), (Verdict{IMAGE_BAD_SIZE, 16}));
    mend(16, 4);
    EXPECT_EQ(Check(bytes), (Verdict{IMAGE_BAD_SIZE, 20}));
    mend(20, 4);
    EXPECT_EQ(Check(bytes).fault, IMAGE_BAD_PALETTE);
    mend(24, 4);
    EXPECT_EQ(Check(bytes).fault, IMAGE_BAD_START);
    mend(36, 4);
    EXPECT_EQ(Check(bytes).fault, IMAGE_GOOD);
}

// ---- words ----------------------------------------------------------------------------------------------------------

TEST(ImageCheckReport, GoodAndEarlyEndsAreUsableAndNothingElseIs)
{
    for (int fault = 0; fault < IMAGE_FAULT_QUANTITY; ++fault)
    {
        const Kanvo_ImageReport report{static_cast<Kanvo_ImageFault>(fault), 0};
        EXPECT_EQ(report.IsUsable(), fault == IMAGE_GOOD || fault == IMAGE_ENDS_EARLY) << fault;
    }
}

TEST(ImageCheckReport, EveryFaultHasItsOwnLineOfText)
{
    std::set<std::string> texts;
    for (int fault = 0; fault < IMAGE_FAULT_QUANTITY; ++fault)
    {
        const char* const text = Kanvo_ImageFaultText(static_cast<Kanvo_ImageFault>(fault));
        ASSERT_NE(text, nullptr);
        EXPECT_STRNE(text, "");
        EXPECT_EQ(std::string(text).find('\n'), std::string::npos);
        EXPECT_TRUE(texts.insert(text).second) << text;
    }
}

TEST(ImageCheckReport, AFaultThatDoesNotExistStillHasAText)
{
    for (const int fault : {int{IMAGE_FAULT_QUANTITY}, 255})
    {
        EXPECT_NE(Kanvo_ImageFaultText(static_cast<Kanvo_ImageFault>(fault)), nullptr);
    }
}

// ---- damaged images -------------------------------------------------------------------------------------------------

//! Ten small images, different in every way that the format knows.
std::vector<RleImage> TenSamples()
{
    std::vector<std::uint32_t> many;
    for (std::uint32_t entry = 0; entry < 20; ++entry) many.push_back(entry * 0x0D0B0907U);
    std::vector<RleImage> samples = {
        Sample(8),
        Sample(16),
        {8, 1, 1, {0xFFFFFFFF}, {1, 0, 0, 0}},
        {16, 1, 1, {0x7FFFFFFF}, {0, 1, 0, 0, 0}},
        {8, 40, 5, {0xFF112233, 0x80FFFFFF}, {100, 0, 100, 1, 0, 0}},
        {16, 30, 30, {0xFF112233, 0x01FFFFFF}, {899, 1, 0, 1, 0, 0, 0}},
        {8, 5, 5, many, {0, 10, 19, 18, 17, 16, 15, 14, 13, 12, 11, 10, 3, 9, 0, 4, 1, 2, 3, 4, 8, 5, 0, 0}},
        {16, 4, 4, many, {0, 3, 5, 6, 7, 10, 8, 0, 3, 19, 0, 1, 0, 0}},
        {8, 6, 6, {0xFF000000, 0xFFFFFFFF, 0x40404040}, {7, 2, 0, 3, 0, 1, 2, 0, 0}},  // an early end
        {16, 3, 3, {0, 0xFF00FF00}, {9, 1, 0, 0}, 0, 12},                              // trailing bytes
    };
    return samples;
}

//! A place for images that ends at a fence, and a target between fences, drawn into in every way there is.
class Drawer
{
public:
    Drawer() { m_bitmap.Lock(); }

    //! Puts the image into place. filler: what up to three bytes between it and the fence are.
    const std::uint8_t* Place(const std::uint8_t* bytes, std::size_t size, std::uint8_t filler)
    {
        const std::size_t   room = (size + 3) / 4 * 4;
        std::uint8_t* const at   = m_arena.Data() + (m_arena.Size() - room);
        std::memset(at, filler, room);
        std::copy_n(bytes, size, at);
        return at;
    }

    //! Draws the whole image and parts of it, plain and magnified, here and there. Whether the definition agrees is
    //! asked where the image is small enough to be expanded.
    void Draw(const std::uint8_t* image, std::size_t size)
    {
        Kanvo_BitmapRLE source(&m_screen, image, size);
        ASSERT_TRUE(source.GetReport().IsUsable());
        const auto          width  = source.GetWidth();
        const auto          height = source.GetHeight();
        const auto          bits   = source.GetType() == BM_RGB32RLE8 ? 8 : 16;
        const bool          known  = std::uint64_t{width} * height <= 40000;
        const auto          whole  = known ? reference::ExpandRle(image, bits) : reference::RlePicture{};
        reference::Target   target;
        support::Numbers    numbers(1);
        const std::uint32_t fill = numbers.Next32();
        const auto          mag =
            bits == 8 ? &Kanvo_RLECompressedBlits::BlitMag_ARGB32RLE8 : &Kanvo_RLECompressedBlits::BlitMag_ARGB32RLE16;
        for (const reference::Where& where :
             {reference::Where{width, height, 0, 0, 0, 0}, reference::Where{width, height, 0, 0, -2, -1},
              reference::Where{width, (height + 1) / 2, 0, height / 2, 3, 2},
              reference::Where{1, 1, width - 1, height - 1, 5, 5}})
        {
            for (const unsigned factor : {1U, 3U})
            {
                for (std::size_t pixel = 0; pixel < W * H; ++pixel) m_pixels.As<std::uint32_t>()[pixel] = fill;
                std::vector<std::uint8_t> expected(m_pixels.Data(), m_pixels.Data() + m_pixels.Size());
                if (factor == 1)
                {
                    m_bitmap.Blit(&source, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY, 0,
                                  255, 0);
                }
                else
                {
                    mag(&source, &m_bitmap, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY,
                        255, static_cast<Tov_UShort>(factor), static_cast<Tov_UShort>(factor));
                }
                if (!known) continue;
                target.picture = {reference::Format::Argb32, W, H, W * 4, expected.data(), true};
                reference::DrawRle(target, whole, where, factor, factor, {false, false, 255});
                ASSERT_EQ(std::memcmp(expected.data(), m_pixels.Data(), expected.size()), 0);
            }
        }
        ASSERT_TRUE(m_pixels.IsSlackUntouched());
    }

private:
    static constexpr unsigned W = 16;
    static constexpr unsigned H = 9;

    Kanvo                  m_library;
    Kanvo_Screen           m_screen{&m_library};
    support::Fence         m_arena{8192};
    support::Fence         m_pixels{std::size_t{W} * H * 4};
    support::PitchedTarget m_bitmap{&m_screen, W, H, m_pixels.Data()};
};

//! What the library says must be what the naive judge says, whatever lies behind the data, and what passes is drawn.
void ExpectJudgedAndDrawn(Drawer& drawer, const Bytes& bytes, const std::string& how, int& accepted)
{
    const reference::RleFault judged = reference::JudgeRle(bytes.data(), bytes.size(), 0, true);
    accepted += judged == reference::RleFault::Good || judged == reference::RleFault::EndsEarly ? 1 : 0;
    for (const std::uint8_t filler : std::initializer_list<std::uint8_t>{0x00, 0x01, 0xFF})
    {
        if (filler != 0 && bytes.size() % 4 == 0) break;  // there is nothing to fill
        const std::uint8_t* const image  = drawer.Place(bytes.data(), bytes.size(), filler);
        const Kanvo_ImageReport   report = Kanvo_CheckImage(image, bytes.size());
        ASSERT_EQ(int{report.eFault}, static_cast<int>(judged)) << how;
        ASSERT_LE(report.uiOffset, bytes.size()) << how;
        if (!report.IsUsable()) continue;
        drawer.Draw(image, bytes.size());
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << how;
    }
}

TEST(DamagedImages, TheSamplesAreUsable)
{
    Drawer drawer;
    int    accepted = 0;
    for (const RleImage& sample : TenSamples())
    {
        ExpectJudgedAndDrawn(drawer, sample.Bytes(), "undamaged", accepted);
        RleImage aligned = sample;
        aligned.FillGap();
        ExpectJudgedAndDrawn(drawer, aligned.Bytes(), "undamaged and aligned", accepted);
    }
    EXPECT_EQ(accepted, 20);
}

TEST(DamagedImages, EveryTruncationIsRefusedOrDrawn)
{
    support::CrashNote note("truncated images");
    Drawer             drawer;
    int                accepted = 0;
    std::size_t        index    = 0;
    for (const RleImage& sample : TenSamples())
    {
        const Bytes bytes = sample.Bytes();
        for (std::size_t size = 0; size < bytes.size(); ++size)
        {
            note.InCase(index * 1000 + size);
            const Bytes shorter(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
            ExpectJudgedAndDrawn(drawer, shorter, "sample " + std::to_string(index) + " cut to " + std::to_string(size),
                                 accepted);
            if (HasFatalFailure()) return;
        }
        ++index;
    }
    EXPECT_EQ(accepted, 12) << "the trailing bytes of the last sample, and nothing else, can be missed";
}

TEST(DamagedImages, EveryChangedByteIsRefusedOrDrawn)
{
    support::CrashNote     note("images with a changed byte");
    support::AssertCapture asserts;
    Drawer                 drawer;
    int                    accepted = 0;
    std::size_t            index    = 0;
    for (RleImage sample : TenSamples())
    {
        sample.FillGap();
        const Bytes good = sample.Bytes();
        for (std::size_t at = 0; at < good.size(); ++at)
        {
            for (unsigned change = 1; change < 256; ++change)
            {
                note.InCase(index * 100000000 + at * 1000 + change);
                Bytes bytes = good;
                bytes[at]   = static_cast<std::uint8_t>(bytes[at] ^ change);
                ExpectJudgedAndDrawn(drawer, bytes,
                                     "sample " + std::to_string(index) + ", byte " + std::to_string(at) + " is " +
                                         std::to_string(bytes[at]),
                                     accepted);
                if (HasFatalFailure()) return;
            }
        }
        ++index;
    }
    EXPECT_GT(accepted, 10000) << "changes of the palette, of reserved bytes and of indices do no harm";
    EXPECT_EQ(asserts.Count(), 0U);
}

//! Several bytes at once, most of them of the tokens.
TEST(DamagedImages, RandomDamageIsRefusedOrDrawn)
{
    const support::Seeds        seeds(100000);
    support::CrashNote          note("randomly damaged images");
    Drawer                      drawer;
    const std::vector<RleImage> samples  = TenSamples();
    int                         accepted = 0;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        const std::uint64_t seed = seeds.first + index;
        note.InCase(seed);
        support::Dice dice(seed);
        RleImage      sample = samples[dice.Below(static_cast<unsigned>(samples.size()))];
        if (dice.OneIn(2))
        {
            sample.unitBits = dice.OneIn(2) ? 8 : 16;
            sample.width    = 1 + dice.Below(30);
            sample.height   = 1 + dice.Below(30);
            sample.units    = support::ThrowTokens(dice, sample.unitBits, sample.width * sample.height, 3);
            sample.units.insert(sample.units.end(), {0, 0});
        }
        Bytes bytes = sample.Bytes();
        for (unsigned changes = dice.Below(4); changes > 0; --changes)
        {
            const std::size_t start = dice.OneIn(6) ? 0 : sample.TokenStart();
            const std::size_t at    = start + dice.Below(static_cast<unsigned>(bytes.size() - start));
            bytes[at]               = dice.OneIn(2) ? dice.NextByte() : dice.Of<std::uint8_t>({0, 0, 1, 2, 3, 255});
        }
        if (dice.OneIn(8)) bytes.resize(dice.Below(static_cast<unsigned>(bytes.size()) + 1));
        ExpectJudgedAndDrawn(drawer, bytes, "seed " + std::to_string(seed), accepted);
        if (HasFatalFailure()) return;
    }
    if (seeds.count >= 10000)
    {
        EXPECT_GT(accepted, static_cast<int>(seeds.count / 5));
    }
}

}  // namespace
