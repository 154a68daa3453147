// scaled_rows_avx2: rows of samples for x86-64 processors with AVX2, eight samples a turn. The bytes are those of
// Kanvo_ScaledRowsReference, which also has what is not here, and the rows of less than eight.
//
// Compiled for AVX2, as rows_avx2: everything has internal linkage, and nothing inline from elsewhere is called that is
// not forced inline (CMakeLists.txt).
#include <cstring>

#include <immintrin.h>

#include "scaled_rows.h"

namespace
{

using Pixels = __m256i;  // eight pixels, the first one lowest, or eight 32-bit numbers

constexpr Tov_UInt LANES = 8;

KANVO_INLINE Pixels Load(const Kanvo_PixelARGB32* kFrom)
{
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(kFrom));
}

KANVO_INLINE void Store(Kanvo_PixelARGB32* kTo, Pixels kPixels)
{
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(kTo), kPixels);
}

KANVO_INLINE Pixels Splat(Tov_UInt uiWord)
{
    return _mm256_set1_epi32(static_cast<int>(uiWord));
}

//! Eight positions from the first one on.
KANVO_INLINE Pixels Ramp(Tov_UInt uiFirst, Tov_UInt uiStep)
{
    return _mm256_add_epi32(Splat(uiFirst),
                            _mm256_mullo_epi32(Splat(uiStep), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7)));
}

template <class Src = Kanvo_PixelARGB32_Access>
KANVO_INLINE const typename Src::Pixel* RowOf(const Kanvo_SampleLine& kLine, Tov_UInt uiY)
{
    typename Src::Offset kRow;
    Src::GetOffset(&kLine.kSource, 0, uiY, kRow);
    return kRow;
}

//! Calls kEight(first sample) for turns of eight samples that cover uiCount, 8 or more; the last turn may repeat some.
template <class Eight>
KANVO_INLINE void InEights(Tov_UInt uiCount, Eight kEight)
{
    const Tov_UInt uiLast = uiCount - LANES;
    for (Tov_UInt uiFirst = 0; uiFirst < uiCount; uiFirst += LANES)
    {
        kEight(uiFirst < uiLast ? uiFirst : uiLast);  // called in one place, to be inlined
    }
}

//! Picks pixels from a row: eight at a time by one permutation of eight neighbours, or, where the steps are up to two
//! pixels, by two. No window reaches behind the last sample.
class Windows
{
public:
    //! Whether a line can be read this way: along a row, forwards by up to two pixels, over eight pixels or more.
    static KANVO_INLINE Tov_Bool CanRead(const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
    {
        return kLine.uiStepY == 0 && kLine.uiStepX <= 0x20000U && uiCount >= LANES &&
               LastOf(kLine, uiCount) - (kLine.uiX >> 16) >= LANES - 1;
    }

    KANVO_INLINE Windows(const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
        : m_uiX(kLine.uiX),
          m_uiStep(kLine.uiStepX),
          m_uiLastWindow(LastOf(kLine, uiCount) - (LANES - 1)),
          m_kPositions(Ramp(kLine.uiX, kLine.uiStepX))
    {
    }

    //! Where samples lie, from one on.
    KANVO_INLINE Pixels Positions(Tov_UInt uiFirst) const
    {
        return _mm256_add_epi32(m_kPositions, Splat(uiFirst * m_uiStep));
    }

    //! Their pixels. WIDE: whether the step is above one pixel.
    template <bool WIDE>
    KANVO_INLINE Pixels Pick(const Kanvo_PixelARGB32* kRow, Pixels kPositions, Tov_UInt uiFirst) const
    {
        const Pixels   kColumns = _mm256_srli_epi32(kPositions, 16);
        const Tov_UInt uiLow    = Window(uiFirst);
        const Pixels   kLow = _mm256_permutevar8x32_epi32(Load(kRow + uiLow), _mm256_sub_epi32(kColumns, Splat(uiLow)));
        if (!WIDE)
        {
            return kLow;
        }
        const Tov_UInt uiHigh = Window(uiFirst + LANES / 2);
        const Pixels   kHigh =
            _mm256_permutevar8x32_epi32(Load(kRow + uiHigh), _mm256_sub_epi32(kColumns, Splat(uiHigh)));
        return _mm256_blend_epi32(kLow, kHigh, 0xF0);
    }

private:
    static KANVO_INLINE Tov_UInt LastOf(const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
    {
        return (kLine.uiX + (uiCount - 1) * kLine.uiStepX) >> 16;
    }

    KANVO_INLINE Tov_UInt Window(Tov_UInt uiSample) const
    {
        const Tov_UInt uiColumn = (m_uiX + uiSample * m_uiStep) >> 16;
        return uiColumn < m_uiLastWindow ? uiColumn : m_uiLastWindow;
    }

    Tov_UInt m_uiX;
    Tov_UInt m_uiStep;
    Tov_UInt m_uiLastWindow;
    Pixels   m_kPositions;
};

template <bool WIDE>
KANVO_INLINE void PickRow(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount, Tov_UInt uiSet)
{
    const Windows                  kWindows(kLine, uiCount);
    const Kanvo_PixelARGB32* const kRow = RowOf(kLine, kLine.uiY >> 16);
    const Pixels                   kSet = Splat(uiSet);
    InEights(uiCount,
             [=](Tov_UInt uiFirst)
             {
                 const Pixels kPixels = kWindows.Pick<WIDE>(kRow, kWindows.Positions(uiFirst), uiFirst);
                 Store(kTo + uiFirst, _mm256_or_si256(kPixels, kSet));
             });
}

//! Brings the quarters of a register into the order of the pixels, after two registers were taken together by halves.
KANVO_INLINE Pixels InOrder(Pixels kPixels)
{
    return _mm256_permute4x64_epi64(kPixels, 0xD8);
}

KANVO_INLINE void HalveRow(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount, Tov_UInt uiSet)
{
    const Kanvo_PixelARGB32* const kRow = RowOf(kLine, kLine.uiY >> 16) + (kLine.uiX >> 16);
    const Pixels                   kSet = Splat(uiSet);
    InEights(uiCount,
             [=](Tov_UInt uiFirst)
             {
                 const __m256 kLow = _mm256_castsi256_ps(Load(kRow + std::size_t{2} * uiFirst));
                 const __m256 kHigh =
                     _mm256_castsi256_ps(Load(kRow + std::size_t{2} * uiFirst + 7));  // ends with the last sample
                 const Pixels kBoth = _mm256_castps_si256(_mm256_shuffle_ps(kLow, kHigh, _MM_SHUFFLE(3, 1, 2, 0)));
                 Store(kTo + uiFirst, _mm256_or_si256(InOrder(kBoth), kSet));
             });
}

//! Whether the offsets of a line's pixels from the bitmap's first one fit signed 32 bits, as gathering wants them.
KANVO_INLINE Tov_Bool IsNear(const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
{
    const Tov_UInt uiY1 = kLine.uiY >> 16;
    const Tov_UInt uiY2 = (kLine.uiY + (uiCount - 1) * kLine.uiStepY) >> 16;
    return (std::uint64_t{uiY1 > uiY2 ? uiY1 : uiY2} + 2) * kLine.kSource.uiPitch < 0x80000000U;
}

//! Along any line that is near.
KANVO_INLINE void GatherRow(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount, Tov_UInt uiSet)
{
    const Pixels      kX0    = Ramp(kLine.uiX, kLine.uiStepX);
    const Pixels      kY0    = Ramp(kLine.uiY, kLine.uiStepY);
    const Pixels      kPitch = Splat(kLine.kSource.uiPitch);
    const Pixels      kSet   = Splat(uiSet);
    const auto* const piFrom = static_cast<const int*>(kLine.kSource.pBuffer);
    InEights(uiCount,
             [=](Tov_UInt uiFirst)
             {
                 const Pixels kX       = _mm256_add_epi32(kX0, Splat(uiFirst * kLine.uiStepX));
                 const Pixels kY       = _mm256_add_epi32(kY0, Splat(uiFirst * kLine.uiStepY));
                 const Pixels kOffsets = _mm256_add_epi32(_mm256_mullo_epi32(_mm256_srli_epi32(kY, 16), kPitch),
                                                          _mm256_slli_epi32(_mm256_srli_epi32(kX, 16), 2));
                 Store(kTo + uiFirst, _mm256_or_si256(_mm256_i32gather_epi32(piFrom, kOffsets, 1), kSet));
             });
}

// ---- filtering ------------------------------------------------------------------------------------------------------

//! Left and right neighbours of eight pixels, byte beside byte. Unpacking goes by halves of registers, and packing undoes
//! it:  kLow is of the pixels 0, 1, 4 and 5, kHigh of 2, 3, 6 and 7.
struct Pairs
{
    Pixels kLow;
    Pixels kHigh;
};

KANVO_INLINE Pixels Pack(const Pairs& kLanes)
{
    return _mm256_packus_epi16(kLanes.kLow, kLanes.kHigh);
}

//! Neighbours, byte beside byte.
KANVO_INLINE Pairs Unpack(Pixels kFirst, Pixels kSecond)
{
    return {_mm256_unpacklo_epi8(kFirst, kSecond), _mm256_unpackhi_epi8(kFirst, kSecond)};
}

//! The same of four pairs of neighbours that lie behind each other.
KANVO_INLINE Pixels Beside(Pixels kPairs)
{
    return _mm256_shuffle_epi8(kPairs, _mm256_setr_epi8(0, 4, 1, 5, 2, 6, 3, 7, 8, 12, 9, 13, 10, 14, 11, 15, 0, 4, 1,
                                                        5, 2, 6, 3, 7, 8, 12, 9, 13, 10, 14, 11, 15));
}

//! Numbers below 32768, one for each pixel, copied to the 16-bit lanes of Pairs.
KANVO_INLINE Pairs ToLanes(Pixels kNumbers)
{
    const Pixels kLow  = _mm256_setr_epi8(0, 1, 0, 1, 0, 1, 0, 1, 4, 5, 4, 5, 4, 5, 4, 5, 0, 1, 0, 1, 0, 1, 0, 1, 4, 5,
                                          4, 5, 4, 5, 4, 5);
    const Pixels kHigh = _mm256_setr_epi8(8, 9, 8, 9, 8, 9, 8, 9, 12, 13, 12, 13, 12, 13, 12, 13, 8, 9, 8, 9, 8, 9, 8,
                                          9, 12, 13, 12, 13, 12, 13, 12, 13);
    return {_mm256_shuffle_epi8(kNumbers, kLow), _mm256_shuffle_epi8(kNumbers, kHigh)};
}

//! Seven bits of the positions' fractions.
KANVO_INLINE Pixels WeightsOf(Pixels kPositions)
{
    return _mm256_and_si256(_mm256_srli_epi32(kPositions, 9), Splat(127));
}

//! The weights of left and right, 128 - w and w, as bytes taken negative: those fit. See MixRow.
KANVO_INLINE Pairs NegativeWeights(Pixels kPositions)
{
    const Pixels kWeights = WeightsOf(kPositions);
    const Pixels kRight   = _mm256_slli_epi32(_mm256_sub_epi8(_mm256_setzero_si256(), kWeights), 8);
    return ToLanes(_mm256_or_si256(kRight, _mm256_or_si256(kWeights, Splat(128))));
}

//! Mixes left with right: (l (128 - w) + r w) / 128, at most 32640 before the division. Multiplying the negative sum by
//! -512 and keeping the high half turns the sign back and shifts by 7.
KANVO_INLINE Pairs MixRow(const Pairs& kRow, const Pairs& kNegative)
{
    const Pixels kBack = _mm256_set1_epi16(-512);
    return {_mm256_mulhi_epi16(_mm256_maddubs_epi16(kRow.kLow, kNegative.kLow), kBack),
            _mm256_mulhi_epi16(_mm256_maddubs_epi16(kRow.kHigh, kNegative.kHigh), kBack)};
}

//! t + (b - t) w / 128 rounded down, in signed 16-bit lanes.
KANVO_INLINE Pixels MixBetween(Pixels kTop, Pixels kBottom, Pixels kWeights)
{
    const Pixels kProduct = _mm256_mullo_epi16(_mm256_sub_epi16(kBottom, kTop), kWeights);
    return _mm256_add_epi16(kTop, _mm256_srai_epi16(kProduct, 7));
}

//! MixBilinear of eight blocks.
KANVO_INLINE Pixels MixBlocks(const Pairs& kTop, const Pairs& kBottom, const Pairs& kNegativeX, const Pairs& kWeightsY)
{
    const Pairs kAbove = MixRow(kTop, kNegativeX);
    const Pairs kBelow = MixRow(kBottom, kNegativeX);
    return _mm256_packus_epi16(MixBetween(kAbove.kLow, kBelow.kLow, kWeightsY.kLow),
                               MixBetween(kAbove.kHigh, kBelow.kHigh, kWeightsY.kHigh));
}

template <bool WIDE>
KANVO_INLINE void FilterRow(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount, Tov_UInt uiKeep)
{
    const Windows                  kWindows(kLine, uiCount);
    const Kanvo_PixelARGB32* const kTop      = RowOf(kLine, kLine.uiY >> 16);
    const Kanvo_PixelARGB32* const kBottom   = RowOf(kLine, (kLine.uiY >> 16) + 1);
    const Pairs                    kWeightsY = ToLanes(WeightsOf(Splat(kLine.uiY)));
    const Pixels                   kKeep     = Splat(uiKeep);
    InEights(uiCount,
             [&](Tov_UInt uiFirst)
             {
                 const Pixels kPositions = kWindows.Positions(uiFirst);
                 const auto   kRead      = [&](const Kanvo_PixelARGB32* kRow) -> Pairs
                 {
                     const Pixels kLeft  = kWindows.Pick<WIDE>(kRow, kPositions, uiFirst);
                     const Pixels kRight = kWindows.Pick<WIDE>(kRow + 1, kPositions, uiFirst);
                     return Unpack(kLeft, kRight);
                 };
                 const Pixels kMixed = MixBlocks(kRead(kTop), kRead(kBottom), NegativeWeights(kPositions), kWeightsY);
                 Store(kTo + uiFirst, _mm256_and_si256(kMixed, kKeep));
             });
}

//! The same where each block begins right behind the one before it: all have the same weights, and lie in memory as they
//! are mixed.
KANVO_INLINE void FilterHalvedRow(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount,
                                  Tov_UInt uiKeep)
{
    const Kanvo_PixelARGB32* const kTop       = RowOf(kLine, kLine.uiY >> 16) + (kLine.uiX >> 16);
    const Kanvo_PixelARGB32* const kBottom    = RowOf(kLine, (kLine.uiY >> 16) + 1) + (kLine.uiX >> 16);
    const Pairs                    kNegativeX = NegativeWeights(Splat(kLine.uiX));
    const Pairs                    kWeightsY  = ToLanes(WeightsOf(Splat(kLine.uiY)));
    const Pixels                   kKeep      = Splat(uiKeep);
    InEights(uiCount,
             [&](Tov_UInt uiFirst)  // by value gcc would take the weights through memory, eight bytes at a time
             {
                 const Kanvo_PixelARGB32* const kAbove = kTop + std::size_t{2} * uiFirst;
                 const Kanvo_PixelARGB32* const kBelow = kBottom + std::size_t{2} * uiFirst;
                 const Pairs                    kUpper{Beside(Load(kAbove)), Beside(Load(kAbove + LANES))};
                 const Pairs                    kLower{Beside(Load(kBelow)), Beside(Load(kBelow + LANES))};
                 const Pixels                   kMixed = MixBlocks(kUpper, kLower, kNegativeX, kWeightsY);
                 Store(kTo + uiFirst, _mm256_and_si256(InOrder(kMixed), kKeep));
             });
}

template <bool WIDE>
KANVO_INLINE void MixRowAlong(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
{
    const Windows                  kWindows(kLine, uiCount);
    const Kanvo_PixelARGB32* const kRow = RowOf(kLine, kLine.uiY >> 16);
    InEights(uiCount,
             [=](Tov_UInt uiFirst)
             {
                 const Pixels kPositions = kWindows.Positions(uiFirst);
                 const Pairs  kRead      = Unpack(kWindows.Pick<WIDE>(kRow, kPositions, uiFirst),
                                                  kWindows.Pick<WIDE>(kRow + 1, kPositions, uiFirst));
                 Store(kTo + uiFirst, Pack(MixRow(kRead, NegativeWeights(kPositions))));
             });
}

//! Two neighbours as they lie in memory.
KANVO_INLINE __m128i LoadPair(const Kanvo_PixelARGB32* kFrom)
{
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(kFrom));
}

//! Four such pairs, byte beside byte.
KANVO_INLINE Pixels JoinPairs(__m128i k0, __m128i k1, __m128i k2, __m128i k3)
{
    const Pixels kLower = _mm256_castsi128_si256(_mm_unpacklo_epi64(k0, k1));
    return Beside(_mm256_inserti128_si256(kLower, _mm_unpacklo_epi64(k2, k3), 1));
}

//! Along any line, each block read for itself.
KANVO_INLINE void FilterAnywhere(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount,
                                 Tov_UInt uiKeep)
{
    const Pixels kX0 = Ramp(kLine.uiX, kLine.uiStepX);
    const Pixels kY0 = Ramp(kLine.uiY, kLine.uiStepY);
    InEights(uiCount,
             [&](Tov_UInt uiFirst)
             {
                 __m128i  akTop[LANES];
                 __m128i  akBottom[LANES];
                 Tov_UInt uiX = kLine.uiX + uiFirst * kLine.uiStepX;
                 Tov_UInt uiY = kLine.uiY + uiFirst * kLine.uiStepY;
#pragma GCC unroll 8
                 for (Tov_UInt uiPixel = 0; uiPixel < LANES; ++uiPixel)
                 {
                     Kanvo_OffsetARGB32 kFrom;
                     Kanvo_PixelARGB32_Access::GetOffset(&kLine.kSource, uiX >> 16, uiY >> 16, kFrom);
                     akTop[uiPixel] = LoadPair(kFrom);
                     Kanvo_PixelARGB32_Access::IncY(&kLine.kSource, kFrom);
                     akBottom[uiPixel] = LoadPair(kFrom);
                     uiX += kLine.uiStepX;
                     uiY += kLine.uiStepY;
                 }
                 const Pixels kX = _mm256_add_epi32(kX0, Splat(uiFirst * kLine.uiStepX));
                 const Pixels kY = _mm256_add_epi32(kY0, Splat(uiFirst * kLine.uiStepY));
                 const Pairs  kAbove{JoinPairs(akTop[0], akTop[1], akTop[4], akTop[5]),
                                    JoinPairs(akTop[2], akTop[3], akTop[6], akTop[7])};
                 const Pairs  kBelow{JoinPairs(akBottom[0], akBottom[1], akBottom[4], akBottom[5]),
                                    JoinPairs(akBottom[2], akBottom[3], akBottom[6], akBottom[7])};
                 const Pixels kMixed = MixBlocks(kAbove, kBelow, NegativeWeights(kX), ToLanes(WeightsOf(kY)));
                 Store(kTo + uiFirst, _mm256_and_si256(kMixed, Splat(uiKeep)));
             });
}

// ---- filtering of narrower pixels, along a row ------------------------------------------------------------------------

//! Pixels of a row with their right neighbours, from a position on. Pair: a number as wide as two pixels.
template <class Pair, class Pixel>
struct Neighbours
{
    const Pixel* kRow;
    Tov_UInt     uiX;
    Tov_UInt     uiStep;

    KANVO_INLINE Pair operator[](Tov_UInt uiSample) const
    {
        Pair kPair;
        std::memcpy(&kPair, kRow + ((uiX + uiSample * uiStep) >> 16), sizeof kPair);
        return kPair;
    }
};

KANVO_INLINE Pixels EightOf(const Neighbours<int, Kanvo_PixelRGB565>& k)
{
    return _mm256_setr_epi32(k[0], k[1], k[2], k[3], k[4], k[5], k[6], k[7]);
}

KANVO_INLINE __m128i EightOf(const Neighbours<Tov_Short, Kanvo_PixelA8>& k)
{
    return _mm_setr_epi16(k[0], k[1], k[2], k[3], k[4], k[5], k[6], k[7]);
}

//! Eight bits of the positions' fractions.
KANVO_INLINE Pixels FractionsOf(Pixels kPositions)
{
    return _mm256_and_si256(_mm256_srli_epi32(kPositions, 8), Splat(255));
}

//! 32-bit numbers below 65536 as 16-bit ones.
KANVO_INLINE __m128i Narrowed(Pixels kNumbers)
{
    return _mm_packus_epi32(_mm256_castsi256_si128(kNumbers), _mm256_extracti128_si256(kNumbers, 1));
}

//! Kanvo_MixByte of the two halves of each 32-bit lane: a + (b - a) w / 256 as (a (256 - w) + b w) / 256.
KANVO_INLINE Pixels MixHalves(Pixels kPairs, Pixels kWeights)
{
    return _mm256_srli_epi32(_mm256_madd_epi16(kPairs, kWeights), 8);
}

//! The weights of both, those of RGB565: rounded to even, 0 .. 256.
KANVO_INLINE Pixels EvenWeights(Pixels kPositions)
{
    const Pixels kSecond = _mm256_and_si256(_mm256_add_epi32(FractionsOf(kPositions), Splat(1)), Splat(~1U));
    return _mm256_or_si256(_mm256_sub_epi32(Splat(256), kSecond), _mm256_slli_epi32(kSecond, 16));
}

//! Bits of 16-bit lanes.
KANVO_INLINE Pixels Masked(Pixels kLanes, Tov_Short sMask)
{
    return _mm256_and_si256(kLanes, _mm256_set1_epi16(sMask));
}

//! Eight blocks of RGB565: pairs of a row.
struct Blocks565
{
    Pixels kTop;
    Pixels kBottom;
    Pixels kWeightsX;
    Pixels kWeightsY;

    //! Mixes one channel. kExpand: makes bytes of it, as the pixel policy does, in 16-bit lanes.
    template <class Expand>
    KANVO_INLINE Pixels Mix(Expand kExpand) const
    {
        const Pixels kAbove = MixHalves(kExpand(kTop), kWeightsX);
        const Pixels kBelow = MixHalves(kExpand(kBottom), kWeightsX);
        return MixHalves(_mm256_or_si256(kAbove, _mm256_slli_epi32(kBelow, 16)), kWeightsY);
    }
};

//! MixBilinear of them.
KANVO_INLINE __m128i MixBlocks565(const Blocks565& kBlocks)
{
    const Pixels kRed = kBlocks.Mix(
        [](Pixels k) { return _mm256_or_si256(Masked(_mm256_srli_epi16(k, 8), 0xF8), _mm256_srli_epi16(k, 13)); });
    const Pixels kGreen = kBlocks.Mix(
        [](Pixels k)
        { return _mm256_or_si256(Masked(_mm256_srli_epi16(k, 3), 0xFC), Masked(_mm256_srli_epi16(k, 9), 3)); });
    const Pixels kBlue = kBlocks.Mix(
        [](Pixels k)
        { return _mm256_or_si256(Masked(_mm256_slli_epi16(k, 3), 0xF8), Masked(_mm256_srli_epi16(k, 2), 7)); });
    const Pixels kRedGreen =
        _mm256_or_si256(_mm256_slli_epi32(Masked(kRed, 0xF8), 8), _mm256_slli_epi32(Masked(kGreen, 0xFC), 3));
    return Narrowed(_mm256_or_si256(kRedGreen, _mm256_srli_epi32(kBlue, 3)));
}

KANVO_INLINE void FilterRow565(Kanvo_PixelRGB565* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
{
    const Kanvo_PixelRGB565* const kTop      = RowOf<Kanvo_PixelRGB565_Access>(kLine, kLine.uiY >> 16);
    const Kanvo_PixelRGB565* const kBottom   = RowOf<Kanvo_PixelRGB565_Access>(kLine, (kLine.uiY >> 16) + 1);
    const Pixels                   kWeightsY = EvenWeights(Splat(kLine.uiY));
    InEights(
        uiCount,
        [&](Tov_UInt uiFirst)
        {
            const Tov_UInt                           uiX = kLine.uiX + uiFirst * kLine.uiStepX;
            const Neighbours<int, Kanvo_PixelRGB565> kUpper{kTop, uiX, kLine.uiStepX};
            const Neighbours<int, Kanvo_PixelRGB565> kLower{kBottom, uiX, kLine.uiStepX};
            const Blocks565 kBlocks{EightOf(kUpper), EightOf(kLower), EvenWeights(Ramp(uiX, kLine.uiStepX)), kWeightsY};
            _mm_storeu_si128(reinterpret_cast<__m128i*>(kTo + uiFirst), MixBlocks565(kBlocks));
        });
}

//! Kanvo_MixByte in unsigned 16-bit lanes.
KANVO_INLINE __m128i MixBytes(__m128i kFirst, __m128i kSecond, __m128i kWeights)
{
    const __m128i kRest = _mm_sub_epi16(_mm_set1_epi16(256), kWeights);
    return _mm_srli_epi16(_mm_add_epi16(_mm_mullo_epi16(kFirst, kRest), _mm_mullo_epi16(kSecond, kWeights)), 8);
}

KANVO_INLINE __m128i MixPairsA8(__m128i kPairs, __m128i kWeights)
{
    return MixBytes(_mm_and_si128(kPairs, _mm_set1_epi16(255)), _mm_srli_epi16(kPairs, 8), kWeights);
}

KANVO_INLINE void FilterRowA8(Kanvo_PixelA8* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
{
    const Kanvo_PixelA8* const kTop      = RowOf<Kanvo_PixelA8_Access>(kLine, kLine.uiY >> 16);
    const Kanvo_PixelA8* const kBottom   = RowOf<Kanvo_PixelA8_Access>(kLine, (kLine.uiY >> 16) + 1);
    const __m128i              kWeightsY = Narrowed(FractionsOf(Splat(kLine.uiY)));
    InEights(uiCount,
             [&](Tov_UInt uiFirst)
             {
                 const Tov_UInt                             uiX = kLine.uiX + uiFirst * kLine.uiStepX;
                 const Neighbours<Tov_Short, Kanvo_PixelA8> kUpper{kTop, uiX, kLine.uiStepX};
                 const Neighbours<Tov_Short, Kanvo_PixelA8> kLower{kBottom, uiX, kLine.uiStepX};
                 const __m128i                              kWeightsX = Narrowed(FractionsOf(Ramp(uiX, kLine.uiStepX)));
                 const __m128i                              kMixed    = MixBytes(MixPairsA8(EightOf(kUpper), kWeightsX),
                                                                                 MixPairsA8(EightOf(kLower), kWeightsX), kWeightsY);
                 _mm_storel_epi64(reinterpret_cast<__m128i*>(kTo + uiFirst), _mm_packus_epi16(kMixed, kMixed));
             });
}

// ---- the functions --------------------------------------------------------------------------------------------------

struct ScaledRowsAVX2 : Kanvo_ScaledRowsReference
{
    static void NearestWords(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount, Tov_UInt uiSet)
    {
        if (!Windows::CanRead(kLine, uiCount))
        {
            if (uiCount < LANES || !IsNear(kLine, uiCount))
            {
                Kanvo_ScaledRowsReference::NearestWords(kTo, kLine, uiCount, uiSet);
            }
            else
            {
                GatherRow(kTo, kLine, uiCount, uiSet);
            }
        }
        else if (kLine.IsHalving())
        {
            HalveRow(kTo, kLine, uiCount, uiSet);
        }
        else if (kLine.uiStepX > 0x10000U)
        {
            PickRow<true>(kTo, kLine, uiCount, uiSet);
        }
        else
        {
            PickRow<false>(kTo, kLine, uiCount, uiSet);
        }
    }

    static void FilterWords(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount, Tov_UInt uiKeep)
    {
        if (uiCount < LANES)
        {
            Kanvo_ScaledRowsReference::FilterWords(kTo, kLine, uiCount, uiKeep);
        }
        else if (!Windows::CanRead(kLine, uiCount))
        {
            FilterAnywhere(kTo, kLine, uiCount, uiKeep);
        }
        else if (kLine.IsHalving())
        {
            FilterHalvedRow(kTo, kLine, uiCount, uiKeep);
        }
        else if (kLine.uiStepX > 0x10000U)
        {
            FilterRow<true>(kTo, kLine, uiCount, uiKeep);
        }
        else
        {
            FilterRow<false>(kTo, kLine, uiCount, uiKeep);
        }
    }

    static void Filter565(Kanvo_PixelRGB565* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
    {
        if (uiCount < LANES || kLine.uiStepY != 0)
        {
            Kanvo_ScaledRowsReference::Filter565(kTo, kLine, uiCount);
        }
        else
        {
            FilterRow565(kTo, kLine, uiCount);
        }
    }

    static void FilterA8(Kanvo_PixelA8* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
    {
        if (uiCount < LANES || kLine.uiStepY != 0)
        {
            Kanvo_ScaledRowsReference::FilterA8(kTo, kLine, uiCount);
        }
        else
        {
            FilterRowA8(kTo, kLine, uiCount);
        }
    }

    static void MixAlong(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
    {
        if (!Windows::CanRead(kLine, uiCount))
        {
            Kanvo_ScaledRowsReference::MixAlong(kTo, kLine, uiCount);
        }
        else if (kLine.uiStepX > 0x10000U)
        {
            MixRowAlong<true>(kTo, kLine, uiCount);
        }
        else
        {
            MixRowAlong<false>(kTo, kLine, uiCount);
        }
    }

    static void MixBetween(Kanvo_PixelARGB32* kTo, const Kanvo_PixelARGB32* kTop, const Kanvo_PixelARGB32* kBottom,
                           Tov_UInt uiCount, Tov_UByte ubFracY, Tov_UInt uiKeep)
    {
        if (uiCount < LANES)
        {
            Kanvo_ScaledRowsReference::MixBetween(kTo, kTop, kBottom, uiCount, ubFracY, uiKeep);
            return;
        }
        const Pairs  kNegative = NegativeWeights(Splat(Tov_UInt{ubFracY} << 8));
        const Pixels kKeep     = Splat(uiKeep);
        InEights(uiCount,
                 [=](Tov_UInt uiFirst)
                 {
                     const Pairs kBoth = Unpack(Load(kTop + uiFirst), Load(kBottom + uiFirst));
                     Store(kTo + uiFirst, _mm256_and_si256(Pack(MixRow(kBoth, kNegative)), kKeep));
                 });
    }
};

}  // namespace

constexpr Kanvo_ScaledRowFunctions g_Kanvo_kScaledRowsAVX2 = Kanvo_ScaledRowFunctions::Of<ScaledRowsAVX2>();
