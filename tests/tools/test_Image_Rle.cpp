// Tests of Image_Rle. Optimality is judged by the definition of a token stream, walked through completely; the reader
// also by the library's check, which was written without it.
#include "Image_Rle.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>

#include "Dice.h"
#include "Kanvo_ImageCheck.h"

namespace
{

using image::Index;
using image::Unit;
using Bytes   = std::vector<std::uint8_t>;
using Indices = std::vector<Index>;
using Units   = std::vector<std::uint16_t>;
using support::Dice;

//! Fewest units, then fewest tokens, of all streams there are for the indices from `from` on: every run and every
//! literal is tried. Best is filled from the back.
using Cost = std::pair<std::size_t, std::size_t>;

Cost BestOfAll(const Indices& indices, std::size_t longest)
{
    std::vector<Cost> best(indices.size() + 1);
    best.back() = {2, 0};
    for (std::size_t from = indices.size(); from-- > 0;)
    {
        best[from] = {SIZE_MAX, 0};
        bool equal = true;
        for (std::size_t count = 1; count <= longest && from + count <= indices.size(); ++count)
        {
            equal = equal && indices[from + count - 1] == indices[from];
            if (equal)
            {
                best[from] = std::min(best[from], {best[from + count].first + 2, best[from + count].second + 1});
            }
            best[from] = std::min(best[from], {best[from + count].first + 2 + count, best[from + count].second + 1});
        }
    }
    return best.front();
}

struct Read
{
    Indices     indices;
    std::size_t tokens  = 0;
    std::size_t longest = 0;
    bool        ended   = false;  //!< with the end token, and nothing behind it
};

//! Straight from the description of the stream.
Read ReadUnits(const Units& units)
{
    Read        read;
    std::size_t at = 0;
    while (at + 1 < units.size())
    {
        std::size_t count = units[at++];
        if (count != 0)
        {
            read.indices.insert(read.indices.end(), count, units[at++]);
        }
        else
        {
            count = units[at++];
            if (count == 0)
            {
                read.ended = at == units.size();
                return read;
            }
            for (std::size_t left = count; left > 0 && at < units.size(); --left)
            {
                read.indices.push_back(units[at++]);
            }
        }
        ++read.tokens;
        read.longest = std::max(read.longest, count);
    }
    return read;
}

//! Empty when the encoder's tokens say what they should with tokens of the allowed length.
std::string Complaint(const Indices& indices, const Units& units, std::size_t longest)
{
    const Read read = ReadUnits(units);
    if (!read.ended) return "no end token at the end";
    if (read.indices != indices) return "other indices";
    if (read.longest > longest) return "a token is too long";
    return {};
}

std::size_t Bound(std::size_t pixels, std::size_t longest)
{
    return pixels + 2 * ((pixels + longest - 1) / longest) + 2;
}

Indices FromDigits(unsigned number, unsigned base, unsigned length)
{
    Indices indices(length);
    for (Index& index : indices)
    {
        index = static_cast<Index>(number % base);
        number /= base;
    }
    return indices;
}

std::string Text(const Indices& indices)
{
    std::string text;
    for (const Index index : indices)
    {
        text += std::to_string(index) + " ";
    }
    return text;
}

Indices RandomIndices(Dice& dice, std::size_t length, unsigned colours, unsigned repeat)
{
    Indices indices(length);
    Index   last = 0;
    for (Index& index : indices)
    {
        last  = dice.OneIn(repeat) ? static_cast<Index>(dice.Below(colours)) : last;
        index = last;
    }
    return indices;
}

// ---- tokens --------------------------------------------------------------------------------------------------------

TEST(ImageRle, RunAndLiteralAndEnd)
{
    EXPECT_EQ(image::EncodeTokens({7, 7, 7, 1, 2}, 255), (Units{3, 7, 0, 2, 1, 2, 0, 0}));
}

TEST(ImageRle, OnePixelIsARun)
{
    EXPECT_EQ(image::EncodeTokens({9}, 255), (Units{1, 9, 0, 0}));
}

TEST(ImageRle, TwoDifferentPixelsAreTwoRunsOrALiteralAndTheLiteralIsOneToken)
{
    EXPECT_EQ(image::EncodeTokens({4, 5}, 255), (Units{0, 2, 4, 5, 0, 0}));
}

TEST(ImageRle, APairInsideALiteralStaysInIt)
{
    EXPECT_EQ(image::EncodeTokens({1, 2, 3, 3, 4, 5}, 255), (Units{0, 6, 1, 2, 3, 3, 4, 5, 0, 0}));
}

TEST(ImageRle, ThreeEqualPixelsInsideALiteralStayInItFourLeaveAndFiveDo)
{
    EXPECT_EQ(image::EncodeTokens({1, 2, 3, 3, 3, 4, 5}, 255), (Units{0, 7, 1, 2, 3, 3, 3, 4, 5, 0, 0}));
    // Four: 2 + 2 + 2 + 2 + 2 = 10 units apart, 2 + 8 = 10 together; together is one token instead of three.
    EXPECT_EQ(image::EncodeTokens({1, 2, 3, 3, 3, 3, 4, 5}, 255), (Units{0, 8, 1, 2, 3, 3, 3, 3, 4, 5, 0, 0}));
    EXPECT_EQ(image::EncodeTokens({1, 2, 3, 3, 3, 3, 3, 4, 5}, 255), (Units{0, 2, 1, 2, 5, 3, 0, 2, 4, 5, 0, 0}));
}

TEST(ImageRle, ARunOfOneMoreThanTheLimitLendsItsRestToTheLiteral)
{
    Indices indices(256, 6);
    indices.insert(indices.end(), {1, 2, 3});
    // The 256th pixel costs 1 unit inside the literal and 2 as a run of its own; at which end of the run it is cut off
    // is the encoder's choice, the literal follows behind.
    EXPECT_EQ(image::EncodeTokens(indices, 255), (Units{255, 6, 0, 4, 6, 1, 2, 3, 0, 0}));
}

TEST(ImageRle, OfEquallyGoodStreamsTheOneWithTheRunOrTheLongestLiteralFirst)
{
    EXPECT_EQ(image::EncodeTokens({1, 2, 1, 2}, 3), (Units{1, 1, 0, 3, 2, 1, 2, 0, 0}));           // not 3 and 1
    EXPECT_EQ(image::EncodeTokens({1, 2, 1, 2, 1}, 3), (Units{0, 3, 1, 2, 1, 0, 2, 2, 1, 0, 0}));  // not 2 and 3
}

TEST(ImageRle, LimitsOfBothUnits)
{
    EXPECT_EQ(image::EncodeTokens(Indices(255, 3), 255), (Units{255, 3, 0, 0}));
    EXPECT_EQ(image::EncodeTokens(Indices(256, 3), 255).size(), 6U);
    EXPECT_EQ(image::EncodeTokens(Indices(65535, 3), 65535), (Units{65535, 3, 0, 0}));
    EXPECT_EQ(image::EncodeTokens(Indices(65536, 3), 65535).size(), 6U);
}

TEST(ImageRle, NoPixelsAreAnEndToken)
{
    EXPECT_EQ(image::EncodeTokens({}, 255), (Units{0, 0}));
}

TEST(ImageRle, RefusesALimitOfNothing)
{
    EXPECT_THROW(image::EncodeTokens({1}, 0), std::invalid_argument);
    EXPECT_THROW(image::EncodeTokens({1}, 65536), std::invalid_argument);
}

TEST(ImageRle, NoEncodingOfAnyShortStringIsSmaller)
{
    struct Family
    {
        unsigned colours;
        unsigned length;
    };
    support::Differences differences;
    std::size_t          strings = 0;
    for (const Family family : {Family{1, 16}, Family{2, 14}, Family{3, 9}, Family{4, 7}})
    {
        for (unsigned length = 1; length <= family.length; ++length)
        {
            unsigned count = 1;
            for (unsigned digit = 0; digit < length; ++digit)
            {
                count *= family.colours;
            }
            for (unsigned number = 0; number < count; ++number)
            {
                const Indices indices = FromDigits(number, family.colours, length);
                for (const unsigned longest : {1U, 2U, 3U, 4U, 5U, 255U})
                {
                    const Units       units     = image::EncodeTokens(indices, longest);
                    const Cost        best      = BestOfAll(indices, longest);
                    const std::string complaint = Complaint(indices, units, longest);
                    ++strings;
                    if (units.size() != best.first || ReadUnits(units).tokens != best.second || !complaint.empty())
                    {
                        differences.Note("%s, tokens up to %u: %zu units, best %zu in %zu tokens; %s",
                                         Text(indices).c_str(), longest, units.size(), best.first, best.second,
                                         complaint.c_str());
                    }
                }
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
    EXPECT_GT(strings, 500000U);
}

TEST(ImageRle, NoEncodingOfLongerRandomStringsIsSmaller)
{
    support::Differences differences;
    const support::Seeds seeds(3000);
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice           dice(seed);
        const auto     length  = dice.Between(1, 1500);
        const auto     repeat  = dice.Of({1U, 2U, 3U, 4U, 50U, 300U});
        const unsigned colours = dice.Of({2U, 3U, 200U});
        const unsigned longest = dice.Of({2U, 3U, 4U, 7U, 255U, 255U, 255U, 65535U});
        const Indices  indices = RandomIndices(dice, static_cast<std::size_t>(length), colours, repeat);
        const Units    units   = image::EncodeTokens(indices, longest);
        const Cost     best    = BestOfAll(indices, longest);
        if (units.size() != best.first || ReadUnits(units).tokens != best.second ||
            !Complaint(indices, units, longest).empty())
        {
            differences.Note("seed %llu", static_cast<unsigned long long>(seed));
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(ImageRle, NeverMoreThanTwoUnitsPerFullTokenBeyondTheIndices)
{
    Dice dice(7);
    for (const unsigned longest : {1U, 2U, 3U, 4U, 255U, 65535U})
    {
        for (const std::size_t length : {1U, 2U, 254U, 255U, 256U, 510U, 511U, 5000U, 140000U})
        {
            std::vector<Indices> patterns(7, Indices(length));
            for (std::size_t i = 0; i < length; ++i)
            {
                patterns[0][i] = static_cast<Index>(i);
                patterns[1][i] = static_cast<Index>(i % 2);
                patterns[2][i] = static_cast<Index>(i / 2);        // pairs
                patterns[3][i] = static_cast<Index>(i / 3);        // threes
                patterns[4][i] = static_cast<Index>(i % 5 < 2);    // pairs and threes
                patterns[5][i] = static_cast<Index>(i * i % 251);  // few repetitions
            }
            patterns[6] = RandomIndices(dice, length, 3, 1);
            for (const Indices& indices : patterns)
            {
                const Units units = image::EncodeTokens(indices, longest);
                EXPECT_LE(units.size(), Bound(length, longest)) << length << " pixels, tokens up to " << longest;
                EXPECT_EQ(Complaint(indices, units, longest), "");
            }
        }
    }
}

TEST(ImageRle, AllDifferentPixelsReachTheBoundExactly)
{
    Indices indices(1000);
    for (std::size_t i = 0; i < indices.size(); ++i)
    {
        indices[i] = static_cast<Index>(i);
    }
    EXPECT_EQ(image::EncodeTokens(indices, 255).size(), 1000U + 2 * 4 + 2);
    EXPECT_EQ(image::CountUnits(indices, Unit::Bits8), 1010U);
    EXPECT_EQ(image::CountUnits(indices, Unit::Bits16), 1004U);
}

TEST(ImageRle, CountUnitsIsTheLengthOfTheTokens)
{
    Dice dice(3);
    for (int turn = 0; turn < 200; ++turn)
    {
        const std::size_t length  = dice.Below(2000);
        const unsigned    repeat  = dice.Of({1U, 5U, 300U});
        const Indices     indices = RandomIndices(dice, length, 4, repeat);
        EXPECT_EQ(image::CountUnits(indices, Unit::Bits8), image::EncodeTokens(indices, 255).size());
        EXPECT_EQ(image::CountUnits(indices, Unit::Bits16), image::EncodeTokens(indices, 65535).size());
    }
}

// ---- the stored image ----------------------------------------------------------------------------------------------

const std::vector<std::uint32_t> EightColours{0xFF000000u, 0xFF112233u, 0x80445566u, 0xFF000003u,
                                              0xFF000004u, 0xFF000005u, 0xFF000006u, 0x01778899u};

TEST(ImageRle, StoredImageOfBytesIsExactlyThis)
{
    const Bytes expected{
        0x4B, 0x4E, 0x56, 0x4F, 0x52, 0x4C, 0x45, 0x20,  // KNVO, RLE
        8,    1,    0,    0,    8,    8,    8,    8,     // unit, version, not opaque only, -, bits of a r g b
        5,    0,    0,    0,    1,    0,    0,    0,     // 5 x 1
        8,    0,    0,    0,    0,    0,    0,    0,     // palette of 8, -
        0,    0,    0,    0,    72,   0,    0,    0,     // -, tokens at 40 + 8 * 4
        0x00, 0x00, 0x00, 0xFF, 0x33, 0x22, 0x11, 0xFF, 0x66, 0x55, 0x44, 0x80, 0x03, 0x00,
        0x00, 0xFF, 0x04, 0x00, 0x00, 0xFF, 0x05, 0x00, 0x00, 0xFF, 0x06, 0x00, 0x00, 0xFF,
        0x99, 0x88, 0x77, 0x01, 0x03, 0x07, 0x00, 0x02, 0x01, 0x02, 0x00, 0x00};
    EXPECT_EQ(image::BuildImage(EightColours, {7, 7, 7, 1, 2}, 5, 1, Unit::Bits8), expected);
}

TEST(ImageRle, StoredImageOfWordsIsLittleEndianAndSaysWhenItIsOpaque)
{
    const Bytes expected{
        0x4B, 0x4E, 0x56, 0x4F, 0x52, 0x4C, 0x45, 0x20,             //
        16,   1,    1,    0,    0,    8,    8,    8,                // opaque only: no bits of alpha
        1,    0,    0,    0,    0x2C, 1,    0,    0,                // 1 x 300
        1,    0,    0,    0,    0,    0,    0,    0,                //
        0,    0,    0,    0,    44,   0,    0,    0,                //
        0x30, 0x20, 0x10, 0xFF, 0x2C, 0x01, 0x00, 0x00, 0, 0, 0, 0  // one run of 300
    };
    EXPECT_EQ(image::BuildImage({0xFF102030u}, Indices(300, 0), 1, 300, Unit::Bits16), expected);
}

TEST(ImageRle, RunsCrossTheEndsOfRows)
{
    const Bytes stored = image::BuildImage({0, 1}, {0, 1, 1, 1, 1, 0}, 3, 2, Unit::Bits8);
    EXPECT_EQ(Bytes(stored.begin() + 48, stored.end()), (Bytes{1, 0, 4, 1, 1, 0, 0, 0}));
}

TEST(ImageRle, RefusesWhatDoesNotFitTogether)
{
    EXPECT_THROW(image::BuildImage({1}, {0, 0}, 1, 1, Unit::Bits8), std::invalid_argument);
    EXPECT_THROW(image::BuildImage({1}, {}, 0, 5, Unit::Bits8), std::invalid_argument);
    EXPECT_THROW(image::BuildImage({1}, Indices(32768), 32768, 1, Unit::Bits8), std::invalid_argument);
    EXPECT_THROW(image::BuildImage({}, {0}, 1, 1, Unit::Bits8), std::invalid_argument);
    EXPECT_THROW(image::BuildImage({1, 2}, {2}, 1, 1, Unit::Bits8), std::invalid_argument);
    EXPECT_THROW(image::BuildImage(std::vector<std::uint32_t>(257), {0}, 1, 1, Unit::Bits8), std::invalid_argument);
    EXPECT_NO_THROW(image::BuildImage(std::vector<std::uint32_t>(257), {256}, 1, 1, Unit::Bits16));
    EXPECT_THROW(image::BuildImage(std::vector<std::uint32_t>(65537), {0}, 1, 1, Unit::Bits16), std::invalid_argument);
}

// ---- reading -------------------------------------------------------------------------------------------------------

TEST(ImageRle, ReadsHeaderPaletteAndIndices)
{
    const image::StoredImage stored =
        image::ReadImage(image::BuildImage(EightColours, {7, 7, 7, 1, 2, 2}, 2, 3, Unit::Bits16));
    ASSERT_TRUE(stored) << stored.fault.message;
    EXPECT_EQ(stored.header.unit, Unit::Bits16);
    EXPECT_EQ(stored.header.width, 2U);
    EXPECT_EQ(stored.header.height, 3U);
    EXPECT_FALSE(stored.header.opaqueOnly);
    EXPECT_EQ(stored.header.alphaBits, 8);
    EXPECT_EQ(stored.palette, EightColours);
    EXPECT_EQ(stored.indices, (Indices{7, 7, 7, 1, 2, 2}));
    EXPECT_FALSE(stored.endsEarly);

    const image::Picture picture = image::ToPicture(stored);
    EXPECT_EQ(picture.argb, (std::vector<std::uint32_t>{0x01778899u, 0x01778899u, 0x01778899u, 0xFF112233u, 0x80445566u,
                                                        0x80445566u}));
    EXPECT_EQ(picture.palette, EightColours);
    EXPECT_EQ(picture.indices, stored.indices);
}

//! An image of 3 x 2 pixels and 2 colours with these tokens.
Bytes WithTokens(const Bytes& tokens)
{
    Bytes bytes = image::BuildImage({0xFF000001u, 0xFF000002u}, Indices(6, 0), 3, 2, Unit::Bits8);
    bytes.resize(48);
    bytes.insert(bytes.end(), tokens.begin(), tokens.end());
    return bytes;
}

TEST(ImageRle, AnEarlyEndLeavesPixelsWithoutColour)
{
    const image::StoredImage stored = image::ReadImage(WithTokens({4, 1, 0, 0, 9, 9}));
    ASSERT_TRUE(stored) << stored.fault.message;
    EXPECT_TRUE(stored.endsEarly);
    EXPECT_EQ(stored.indices, Indices(4, 1));
    EXPECT_EQ(stored.bytes, 52U);

    const image::Picture picture = image::ToPicture(stored);
    EXPECT_EQ(picture.argb, (std::vector<std::uint32_t>{0xFF000002u, 0xFF000002u, 0xFF000002u, 0xFF000002u, 0, 0}));
    EXPECT_FALSE(picture.IsIndexed());
}

struct BadTokens
{
    Bytes       tokens;
    std::size_t offset;
    const char* words;
};

TEST(ImageRle, TellsWhatIsWrongWithTokensAndWhere)
{
    for (const BadTokens& bad :
         {BadTokens{{6, 0}, 50, "end token is missing"}, BadTokens{{6, 0, 0}, 50, "end token is missing"},
          BadTokens{{6, 0, 1, 0, 0, 0}, 50, "follow the last"}, BadTokens{{5, 0}, 50, "before the image"},
          BadTokens{{5}, 48, "before the image"}, BadTokens{{}, 48, "before the image"},
          BadTokens{{7, 0, 0, 0}, 48, "7 pixels where 6 are left"},
          BadTokens{{2, 0, 0, 5, 0, 0, 0, 0, 0}, 50, "5 pixels"},
          BadTokens{{0, 6, 0, 0, 0, 0, 0}, 48, "beyond the data"}, BadTokens{{6, 2, 0, 0}, 49, "index 2"},
          BadTokens{{0, 6, 0, 1, 0, 1, 0, 255, 0, 0}, 55, "index 255 in a palette of 2"}})
    {
        const image::StoredImage stored = image::ReadImage(WithTokens(bad.tokens));
        EXPECT_FALSE(stored) << bad.words;
        EXPECT_NE(stored.fault.message.find(bad.words), std::string::npos) << stored.fault.message;
        EXPECT_EQ(stored.fault.offset, bad.offset) << bad.words;
    }
}

TEST(ImageRle, RefusesSidesBeyondTheCallersLimit)
{
    const Bytes stored = image::BuildImage({1}, Indices(70, 0), 7, 10, Unit::Bits8);
    EXPECT_TRUE(image::ReadImage(stored, 10));
    const image::StoredImage refused = image::ReadImage(stored, 9);
    EXPECT_EQ(refused.fault.offset, 20U);
    EXPECT_EQ(refused.fault.message, "height 10, not 1 to 9");
}

TEST(ImageRle, NothingAtAllIsNotAnImage)
{
    EXPECT_FALSE(image::ReadImage(nullptr, 0));
    EXPECT_FALSE(image::ReadImage(Bytes(39, 0)));
}

//! The library's opinion of the same bytes, which it wants at a multiple of four.
Kanvo_ImageReport LibraryOn(const Bytes& bytes)
{
    std::vector<std::uint32_t> words(bytes.size() / 4 + 1);
    std::copy(bytes.begin(), bytes.end(), reinterpret_cast<std::uint8_t*>(words.data()));
    return Kanvo_CheckImage(words.data(), bytes.size());
}

//! Empty when reader and library agree.
std::string Disagreement(const Bytes& bytes)
{
    const image::StoredImage stored = image::ReadImage(bytes);
    const Kanvo_ImageReport  report = LibraryOn(bytes);
    const bool               usable = static_cast<bool>(stored);
    if (usable != report.IsUsable() || stored.endsEarly != (report.eFault == IMAGE_ENDS_EARLY) ||
        (!usable && stored.fault.offset != report.uiOffset))
    {
        return stored.fault.message + " at " + std::to_string(stored.fault.offset) +
               ", library: " + Kanvo_ImageFaultText(report.eFault) + " at " + std::to_string(report.uiOffset);
    }
    return {};
}

Bytes RandomImage(Dice& dice)
{
    const Unit                 unit   = dice.OneIn(2) ? Unit::Bits8 : Unit::Bits16;
    const auto                 width  = 1 + dice.Below(30);
    const auto                 height = 1 + dice.Below(30);
    std::vector<std::uint32_t> palette(1 + dice.Below(dice.OneIn(2) ? 4 : 200));
    dice.Fill(palette.data(), palette.size() * 4);
    const auto    repeat = dice.Of({1U, 3U, 20U});
    const Indices indices =
        RandomIndices(dice, std::size_t{width} * height, static_cast<unsigned>(palette.size()), repeat);
    return image::BuildImage(palette, indices, width, height, unit);
}

TEST(ImageRle, ReaderAndLibraryAgreeOnDamagedImages)
{
    support::Differences differences;
    const support::Seeds seeds(20000);
    std::size_t          refused = 0;
    for (std::uint64_t seed = seeds.first; seed < seeds.first + seeds.count; ++seed)
    {
        Dice  dice(seed);
        Bytes bytes = RandomImage(dice);
        if (const std::string words = Disagreement(bytes); !words.empty() || LibraryOn(bytes).eFault != IMAGE_GOOD)
        {
            differences.Note("seed %llu, whole: %s", static_cast<unsigned long long>(seed), words.c_str());
        }
        for (unsigned damages = 1 + dice.Below(3); damages > 0; --damages)
        {
            const unsigned reach = dice.OneIn(2) ? 40 : static_cast<unsigned>(bytes.size());
            const unsigned at    = dice.Below(reach);
            bytes[at]            = dice.OneIn(3) ? dice.NextByte() : static_cast<std::uint8_t>(dice.Below(4));
        }
        if (dice.OneIn(3))
        {
            bytes.resize(dice.Below(static_cast<unsigned>(bytes.size()) + 1));
        }
        if (const std::string words = Disagreement(bytes); !words.empty())
        {
            differences.Note("seed %llu, damaged: %s", static_cast<unsigned long long>(seed), words.c_str());
        }
        refused += LibraryOn(bytes).IsUsable() ? 0 : 1;
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
    EXPECT_GT(refused, seeds.count / 4);
}

TEST(ImageRle, ReaderAndLibraryAgreeOnEveryTruncation)
{
    Dice dice(11);
    for (int picture = 0; picture < 10; ++picture)
    {
        const Bytes bytes = RandomImage(dice);
        for (std::size_t size = 0; size <= bytes.size(); ++size)
        {
            EXPECT_EQ(Disagreement(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size))), "")
                << size;
        }
    }
}

// ---- statistics ----------------------------------------------------------------------------------------------------

TEST(ImageRle, StatisticsOfASmallStream)
{
    // Rows of 3: [1 1 0] [1 0 0] [0 0 0] [0 0 0]. Tokens: run 2, literal 2, run 8, end.
    Bytes bytes = image::BuildImage({0xFF000001u, 0xFF000002u, 5}, Indices(12, 0), 3, 4, Unit::Bits8);
    bytes.resize(52);
    for (const std::uint8_t unit : Bytes{2, 1, 0, 2, 0, 1, 8, 0, 0, 0})
    {
        bytes.push_back(unit);
    }
    const image::StoredImage stored = image::ReadImage(bytes);
    ASSERT_TRUE(stored) << stored.fault.message;
    const image::TokenStatistics& tokens = stored.tokens;
    EXPECT_EQ(tokens.runs, 2U);
    EXPECT_EQ(tokens.literals, 1U);
    EXPECT_EQ(tokens.runPixels, 10U);
    EXPECT_EQ(tokens.literalPixels, 2U);
    EXPECT_EQ(tokens.longestRun, 8U);
    EXPECT_EQ(tokens.longestLiteral, 2U);
    EXPECT_EQ(tokens.units, 10U);
    EXPECT_EQ(tokens.usedEntries, 2U);
    EXPECT_EQ(tokens.runsByLength[1], 1U);      // 2
    EXPECT_EQ(tokens.runsByLength[3], 1U);      // 5 to 8
    EXPECT_EQ(tokens.literalsByLength[1], 1U);  // 2
    // Row 0 reads the run (2) and one pixel of the literal (2 + 1), row 1 the other (3) and the run (2), the others 2.
    EXPECT_EQ(tokens.worstRow, 0U);
    EXPECT_EQ(tokens.worstRowUnits, 5U);
    EXPECT_EQ(stored.bytes, 62U);
}

TEST(ImageRle, WorstRowIsTheOneWithTheMostUnits)
{
    Indices indices(50, 0);
    for (std::size_t x = 0; x < 10; ++x)
    {
        indices[30 + x] = static_cast<Index>(x);
    }
    const std::vector<std::uint32_t> palette(10, 0xFF000000u);
    const image::TokenStatistics     tokens =
        image::ReadImage(image::BuildImage(palette, indices, 10, 5, Unit::Bits8)).tokens;
    EXPECT_EQ(tokens.worstRow, 3U);
    // A run of 31 zeros, a literal 1 .. 9 (and the run of the last row): 2 + 2 + 9.
    EXPECT_EQ(tokens.worstRowUnits, 13U);
}

TEST(ImageRle, LengthClassesDoubleTheirReach)
{
    EXPECT_EQ(image::FirstOfClass(0), 1U);
    EXPECT_EQ(image::LastOfClass(0), 1U);
    EXPECT_EQ(image::FirstOfClass(1), 2U);
    EXPECT_EQ(image::LastOfClass(1), 2U);
    EXPECT_EQ(image::FirstOfClass(4), 9U);
    EXPECT_EQ(image::LastOfClass(4), 16U);
    EXPECT_EQ(image::FirstOfClass(image::TokenStatistics::Classes - 1), 32769U);
    const image::TokenStatistics tokens =
        image::ReadImage(image::BuildImage({1}, Indices(65535, 0), 65535 / 5, 5, Unit::Bits16)).tokens;
    EXPECT_EQ(tokens.runsByLength[image::TokenStatistics::Classes - 1], 1U);
}

}  // namespace
