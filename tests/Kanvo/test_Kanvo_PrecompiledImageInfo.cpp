// The stored layout of run-length-encoded images and the decoder of their tokens: where every field lies, and where a
// decoder stands after every request.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "Dice.h"
#include "Fence.h"
#include "Kanvo_PrecompiledImageInfo.h"
#include "Kanvo_RLECompressedBlits.h"
#include "Reference_Rle.h"
#include "RleImage.h"

namespace
{

using support::Dice;
using support::RleImage;

using Bytes = std::vector<std::uint8_t>;

const Kanvo_PrecompiledImageInfo* HeaderOf(const Bytes& bytes)
{
    return reinterpret_cast<const Kanvo_PrecompiledImageInfo*>(bytes.data());
}

//! Where a decoder stands, with the pointer as a number of units from the first token.
struct Place
{
    std::ptrdiff_t        unit;
    RLECurDecompresstoken token;
    std::uint32_t         position;
    std::uint32_t         count;

    friend bool operator==(const Place& one, const Place& other)
    {
        return one.unit == other.unit && one.token == other.token && one.position == other.position &&
               one.count == other.count;
    }
    friend std::ostream& operator<<(std::ostream& stream, const Place& place)
    {
        return stream << "unit " << place.unit << ", token " << int{place.token} << ", " << place.position << " of "
                      << place.count;
    }
};

constexpr auto GETNEXT = RLECURDECOMPRESSTOKEN_GETNEXT;
constexpr auto ABS     = RLECURDECOMPRESSTOKEN_ABS;
constexpr auto RLE     = RLECURDECOMPRESSTOKEN_RLE;
constexpr auto END     = RLECURDECOMPRESSTOKEN_END;

template <class Unit>
Place PlaceOf(const Kanvo_RLECurDecompressInfo<Unit>& state, const Bytes& bytes)
{
    const auto* const first = static_cast<const Unit*>(HeaderOf(bytes)->GetRLEDataBytes());
    return {state.pubyCurRLEDataByte - first, state.eCurrentToken, state.CurrentTokenDataposition,
            state.CurrentTokenDatacount};
}

//! Takes decoded pixels and keeps them.
struct Collector
{
    template <class Unit>
    void Run(Unit entry, Tov_UInt count)
    {
        indices.insert(indices.end(), count, entry);
    }
    template <class Unit>
    void Literal(const Unit* first, Tov_UInt count)
    {
        indices.insert(indices.end(), first, first + count);
    }

    std::vector<int> indices;
};

template <class Unit>
constexpr int BITS = static_cast<int>(8 * sizeof(Unit));

template <class Unit>
class Decoder : public testing::Test
{
};

using Units = testing::Types<Tov_UByte, Tov_UShort>;
TYPED_TEST_SUITE(Decoder, Units);

// ---- the layout -----------------------------------------------------------------------------------------------------

TEST(PrecompiledImageInfo, EveryFieldLiesWhereTheFormatSays)
{
    Bytes bytes(52);
    for (std::size_t at = 0; at < bytes.size(); ++at) bytes[at] = static_cast<std::uint8_t>(at + 1);
    const Kanvo_PrecompiledImageInfo& info = *HeaderOf(bytes);
    EXPECT_EQ(sizeof info, 40U);
    EXPECT_EQ(info.uiKanvo, 0x04030201U);
    EXPECT_EQ(info.ui_RLE, 0x08070605U);
    EXPECT_EQ(info.ubRLEBits, 9U);
    EXPECT_EQ(info.ubVersion, 10U);
    EXPECT_EQ(info.bOpaqueColorsOnly, 11U);
    EXPECT_EQ(info.ubReserved, 12U);
    EXPECT_EQ(info.ubColorBitsA, 13U);
    EXPECT_EQ(info.ubColorBitsR, 14U);
    EXPECT_EQ(info.ubColorBitsG, 15U);
    EXPECT_EQ(info.ubColorBitsB, 16U);
    EXPECT_EQ(info.uiWidth, 0x14131211U);
    EXPECT_EQ(info.uiHeight, 0x18171615U);
    EXPECT_EQ(info.uiPaletteColorCount, 0x1C1B1A19U);
    EXPECT_EQ(info.uiReserved1, 0x201F1E1DU);
    EXPECT_EQ(info.uiReserved2, 0x24232221U);
    EXPECT_EQ(info.uiStartIndexOfColorIndices, 0x28272625U);
    EXPECT_EQ(info.acolColorPalette[0], 0x2C2B2A29U);
    EXPECT_EQ(info.acolColorPalette[1], 0x302F2E2DU);
    EXPECT_EQ(info.acolColorPalette[2], 0x34333231U);
}

TEST(PrecompiledImageInfo, TheTokensLieWhereTheHeaderSaysWhateverThePaletteHolds)
{
    Bytes bytes(60);
    for (const std::uint32_t start : {40U, 41U, 44U, 59U})
    {
        support::Store(bytes, 36, start);
        EXPECT_EQ(HeaderOf(bytes)->GetRLEDataBytes(), bytes.data() + start);
    }
}

TEST(PrecompiledImageInfo, TokenStatesHaveTheirNumbersAndOneByte)
{
    EXPECT_EQ(sizeof(RLECurDecompresstoken), 1U);
    EXPECT_EQ(int{GETNEXT}, 0);
    EXPECT_EQ(int{ABS}, 1);
    EXPECT_EQ(int{RLE}, 2);
    EXPECT_EQ(int{END}, 3);
}

// ---- states by hand -------------------------------------------------------------------------------------------------

TYPED_TEST(Decoder, BeginsBetweenTokensAtTheFirstUnit)
{
    const Bytes bytes = RleImage{BITS<TypeParam>, 5, 1, {0}, {3, 0, 2, 0, 0, 0}}.Bytes();
    const Kanvo_RLECurDecompressInfo<TypeParam> state(HeaderOf(bytes));
    EXPECT_EQ(PlaceOf(state, bytes), (Place{0, GETNEXT, 0, 0}));
}

TYPED_TEST(Decoder, ConsumingNothingReadsNothing)
{
    support::Fence                        fence(0);
    Bytes                                 bytes = RleImage{BITS<TypeParam>, 1, 1, {0}, {}}.Bytes();
    Kanvo_RLECurDecompressInfo<TypeParam> state(HeaderOf(bytes));
    state.pubyCurRLEDataByte = fence.As<TypeParam>();
    Kanvo_RLECompressedBlits::SkipPixels(0, state);
    EXPECT_EQ(state.pubyCurRLEDataByte, fence.As<TypeParam>());
    EXPECT_EQ(state.eCurrentToken, GETNEXT);
}

//! A request and where it leaves the decoder.
struct Step
{
    std::uint32_t pixels;
    Place         then;
};

template <class Unit>
void ExpectSteps(const std::vector<unsigned>& units, const std::vector<Step>& steps)
{
    const Bytes                      bytes = RleImage{BITS<Unit>, 1, 1, {0}, units}.Bytes();
    Kanvo_RLECurDecompressInfo<Unit> state(HeaderOf(bytes));
    for (std::size_t step = 0; step < steps.size(); ++step)
    {
        Kanvo_RLECompressedBlits::SkipPixels(steps[step].pixels, state);
        EXPECT_EQ(PlaceOf(state, bytes), steps[step].then) << "step " << step;
    }
}

TYPED_TEST(Decoder, InsideARunThePointerRestsOnItsValue)
{
    ExpectSteps<TypeParam>({7, 1, 0, 0},
                           {{1, {1, RLE, 1, 7}}, {2, {1, RLE, 3, 7}}, {0, {1, RLE, 3, 7}}, {3, {1, RLE, 6, 7}}});
}

TYPED_TEST(Decoder, SkippingExactlyToTheEndOfARunClosesIt)
{
    ExpectSteps<TypeParam>({7, 1, 4, 2, 0, 0}, {{7, {2, GETNEXT, 0, 0}}, {1, {3, RLE, 1, 4}}, {3, {4, GETNEXT, 0, 0}}});
    ExpectSteps<TypeParam>({7, 1, 4, 2, 0, 0}, {{6, {1, RLE, 6, 7}}, {1, {2, GETNEXT, 0, 0}}, {4, {4, GETNEXT, 0, 0}}});
    ExpectSteps<TypeParam>({1, 9, 1, 8, 0, 0}, {{1, {2, GETNEXT, 0, 0}}, {1, {4, GETNEXT, 0, 0}}});
}

TYPED_TEST(Decoder, InsideALiteralThePointerRestsOnItsFirstIndex)
{
    ExpectSteps<TypeParam>({0, 3, 7, 8, 9, 2, 5, 0, 0}, {{1, {2, ABS, 1, 3}},
                                                         {1, {2, ABS, 2, 3}},
                                                         {1, {5, GETNEXT, 0, 0}},
                                                         {1, {6, RLE, 1, 2}},
                                                         {1, {7, GETNEXT, 0, 0}}});
    ExpectSteps<TypeParam>({0, 3, 7, 8, 9, 2, 5, 0, 0}, {{3, {5, GETNEXT, 0, 0}}});
    ExpectSteps<TypeParam>({0, 3, 7, 8, 9, 2, 5, 0, 0}, {{4, {6, RLE, 1, 2}}});
    ExpectSteps<TypeParam>({0, 1, 0, 0, 0}, {{1, {3, GETNEXT, 0, 0}}, {1, {4, END, 0, 0}}});
}

TYPED_TEST(Decoder, TheEndIsReadOnlyWhenAPixelBehindItIsWanted)
{
    ExpectSteps<TypeParam>({2, 1, 0, 0}, {{2, {2, GETNEXT, 0, 0}}, {1, {3, END, 0, 0}}});
}

TYPED_TEST(Decoder, BehindTheEndNothingIsConsumed)
{
    // what would be tokens again follows; it is not looked at
    ExpectSteps<TypeParam>(
        {2, 1, 0, 0, 5, 1, 0, 0},
        {{5, {3, END, 0, 0}}, {0, {3, END, 0, 0}}, {1, {3, END, 0, 0}}, {0xFFFFFFFF, {3, END, 0, 0}}});
    ExpectSteps<TypeParam>({0, 0, 5, 1}, {{1, {1, END, 0, 0}}, {4, {1, END, 0, 0}}});
}

TYPED_TEST(Decoder, ARequestRunsOverManyTokens)
{
    ExpectSteps<TypeParam>({3, 7, 0, 2, 1, 2, 5, 3, 0, 0},
                           {{4, {4, ABS, 1, 2}}, {5, {7, RLE, 4, 5}}, {2, {9, END, 0, 0}}});
}

TYPED_TEST(Decoder, TokensOfTheLargestCountAreOneToken)
{
    constexpr unsigned MOST = sizeof(TypeParam) == 1 ? 255 : 65535;
    ExpectSteps<TypeParam>({MOST, 1, 0, 0},
                           {{MOST - 1, {1, RLE, MOST - 1, MOST}}, {1, {2, GETNEXT, 0, 0}}, {1, {3, END, 0, 0}}});
    std::vector<unsigned> literal(MOST + 4, 1);
    literal[0]        = 0;
    literal[1]        = MOST;
    literal[MOST + 2] = literal[MOST + 3] = 0;
    ExpectSteps<TypeParam>(
        literal, {{MOST - 1, {2, ABS, MOST - 1, MOST}}, {1, {MOST + 2, GETNEXT, 0, 0}}, {1, {MOST + 3, END, 0, 0}}});
}

//! The last unit of the stream is the last byte before the fence: what lies behind a token's last pixel is not read.
TYPED_TEST(Decoder, NothingBehindTheWantedPixelsIsRead)
{
    for (const std::vector<unsigned>& units : {std::vector<unsigned>{4, 0}, std::vector<unsigned>{0, 4, 1, 2, 3, 4}})
    {
        RleImage image{BITS<TypeParam>, 4, 1, {0}, units};
        image.FillGap();
        const Bytes    bytes = image.Bytes();
        support::Fence fence(bytes.size());
        std::memcpy(fence.Data(), bytes.data(), bytes.size());
        Kanvo_RLECurDecompressInfo<TypeParam> state(fence.As<Kanvo_PrecompiledImageInfo>());
        Kanvo_RLECompressedBlits::SkipPixels(3, state);
        Kanvo_RLECompressedBlits::SkipPixels(1, state);
        EXPECT_EQ(state.eCurrentToken, GETNEXT);
        EXPECT_EQ(reinterpret_cast<const std::uint8_t*>(state.pubyCurRLEDataByte), fence.Data() + fence.Size());
    }
}

// ---- states by definition -------------------------------------------------------------------------------------------

//! Where a decoder stands that has consumed this many pixels, worked out from the first unit without any state.
Place PlaceBehind(const std::vector<unsigned>& units, std::uint64_t pixels)
{
    std::ptrdiff_t at = 0;
    for (;;)
    {
        if (pixels == 0) return {at, GETNEXT, 0, 0};
        const unsigned run = units[static_cast<std::size_t>(at)];
        if (run != 0)
        {
            if (pixels < run) return {at + 1, RLE, static_cast<std::uint32_t>(pixels), run};
            pixels -= run;
            at += 2;
            continue;
        }
        const unsigned literal = units[static_cast<std::size_t>(at) + 1];
        if (literal == 0) return {at + 1, END, 0, 0};
        if (pixels < literal) return {at + 2, ABS, static_cast<std::uint32_t>(pixels), literal};
        pixels -= literal;
        at += 2 + static_cast<std::ptrdiff_t>(literal);
    }
}

TYPED_TEST(Decoder, AnySequenceOfRequestsEndsWhereOneRequestDoes)
{
    for (std::uint64_t seed = 1; seed <= 2000; ++seed)
    {
        Dice                  dice(seed);
        const std::uint32_t   pixels = 1 + dice.Below(400);
        std::vector<unsigned> units  = support::ThrowTokens(dice, BITS<TypeParam>, pixels, 200);
        units.insert(units.end(), {0, 0, 9, 9});
        const Bytes                           bytes = RleImage{BITS<TypeParam>, pixels, 1, {}, units}.Bytes();
        const auto                            whole = reference::ExpandRle(bytes.data(), BITS<TypeParam>);
        Kanvo_RLECurDecompressInfo<TypeParam> state(HeaderOf(bytes));
        Collector                             collector;
        std::uint64_t                         consumed = 0;
        while (consumed <= pixels)
        {
            const std::uint32_t request = dice.OneIn(4) ? 1 : dice.Below(dice.OneIn(4) ? 400 : 20);
            if (dice.OneIn(2))
            {
                state.Consume(request, collector);
            }
            else
            {
                Kanvo_RLECompressedBlits::SkipPixels(request, state);
                // what was not skipped by this request stays comparable
                for (std::uint64_t pixel = consumed; pixel < consumed + request && pixel < pixels; ++pixel)
                {
                    collector.indices.push_back(whole.indices[static_cast<std::size_t>(pixel)]);
                }
            }
            consumed += request;
            ASSERT_EQ(PlaceOf(state, bytes), PlaceBehind(units, consumed)) << "seed " << seed;
        }
        ASSERT_EQ(collector.indices, whole.indices) << "seed " << seed;
    }
}

// ---- what streams decode to -----------------------------------------------------------------------------------------

template <class Unit>
std::vector<int> Decoded(const RleImage& image, std::uint64_t pixels)
{
    const Bytes                      bytes = image.Bytes();
    Kanvo_RLECurDecompressInfo<Unit> state(HeaderOf(bytes));
    Collector                        collector;
    state.Consume(pixels, collector);
    return collector.indices;
}

TYPED_TEST(Decoder, TheExampleStreamDecodesToSevenSevenSevenOneTwoAndEnds)
{
    const RleImage image{BITS<TypeParam>, 5, 1, {}, {3, 7, 0, 2, 1, 2, 0, 0}};
    EXPECT_EQ(Decoded<TypeParam>(image, 5), (std::vector<int>{7, 7, 7, 1, 2}));
    EXPECT_EQ(Decoded<TypeParam>(image, 50), (std::vector<int>{7, 7, 7, 1, 2}));
}

TYPED_TEST(Decoder, TokensCrossRows)
{
    const RleImage         image{BITS<TypeParam>, 3, 3, {}, {4, 1, 0, 4, 2, 3, 4, 5, 1, 6, 0, 0}};
    const std::vector<int> expected{1, 1, 1, 1, 2, 3, 4, 5, 6};
    EXPECT_EQ(Decoded<TypeParam>(image, 9), expected);
    const Bytes                           bytes = image.Bytes();
    Kanvo_RLECurDecompressInfo<TypeParam> state(HeaderOf(bytes));
    Collector                             collector;
    for (int row = 0; row < 3; ++row) state.Consume(3, collector);
    EXPECT_EQ(collector.indices, expected);
}

TEST(Decoder16, OneRunCoversUpTo65535Pixels)
{
    const std::vector<int> pixels = Decoded<Tov_UShort>({16, 65535, 1, {}, {65535, 300, 1, 2, 0, 0}}, 65536);
    ASSERT_EQ(pixels.size(), 65536U);
    EXPECT_EQ(pixels[0], 300);
    EXPECT_EQ(pixels[65534], 300);
    EXPECT_EQ(pixels[65535], 2);
}

TEST(Decoder16, CountsAndIndicesUseBothBytesLowestFirst)
{
    RleImage          image{16, 300, 1, {}, {0x012C, 0x0203, 0, 0}};
    Bytes             bytes = image.Bytes();
    const std::size_t start = image.TokenStart();
    EXPECT_EQ(bytes[start], 0x2C);  // stored by hand, not by this machine's order
    EXPECT_EQ(bytes[start + 1], 0x01);
    const std::vector<int> pixels = Decoded<Tov_UShort>(image, 1000);
    ASSERT_EQ(pixels.size(), 300U);
    EXPECT_EQ(pixels[299], 0x0203);
}

}  // namespace
