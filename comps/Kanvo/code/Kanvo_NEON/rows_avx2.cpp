// rows_avx2: the row functions for x86-64 processors with AVX2, eight pixels to a register. The bytes are those of
// Kanvo_RowsReference; rows that overlap are left to it.
//
// This file alone is compiled for AVX2. Everything in it has internal linkage, and it calls nothing inline from elsewhere
// that is not forced inline: see CMakeLists.txt.
#include <cstring>

#include <immintrin.h>

#include "neonloops_rects.h"
#include "scaled_rows.h"

namespace
{

using Pixels = __m256i;  // eight pixels, the first one lowest

constexpr std::size_t LANES = 8;

// ---- loading and storing --------------------------------------------------------------------------------------------

KANVO_INLINE Pixels Load(const void* pFrom)
{
    return _mm256_loadu_si256(static_cast<const __m256i*>(pFrom));
}

KANVO_INLINE void Store(void* pTo, Pixels kPixels)
{
    _mm256_storeu_si256(static_cast<__m256i*>(pTo), kPixels);
}

KANVO_INLINE __m128i LoadHalf(const void* pFrom)
{
    return _mm_loadu_si128(static_cast<const __m128i*>(pFrom));
}

// One to seven pixels, so that nothing outside is touched and no lane goes through memory: loaded by a mask; stored in two
// parts at most, which may overlap, because stores by a mask are slow on many processors, and branches where counts vary.

//! All bits of the first uiCount lanes.
KANVO_INLINE Pixels FirstLanes(Tov_UInt uiCount)
{
    return _mm256_cmpgt_epi32(_mm256_set1_epi32(static_cast<int>(uiCount)), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
}

KANVO_INLINE Pixels LoadFew(const Kanvo_PixelARGB32* kFrom, Tov_UInt uiCount)
{
    return _mm256_maskload_epi32(reinterpret_cast<const int*>(kFrom), FirstLanes(uiCount));
}

//! Four pixels from one on.
KANVO_INLINE __m128i From(Pixels kPixels, Tov_UInt uiFirst)
{
    const Pixels kLanes = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
    const Pixels kFrom  = _mm256_add_epi32(_mm256_set1_epi32(static_cast<int>(uiFirst)), kLanes);
    return _mm256_castsi256_si128(_mm256_permutevar8x32_epi32(kPixels, kFrom));
}

KANVO_INLINE void StoreFew(Kanvo_OffsetARGB32 kTo, Pixels kPixels, Tov_UInt uiCount)
{
    const __m128i kFirst = _mm256_castsi256_si128(kPixels);
    if (uiCount >= 4)
    {
        const Tov_UInt uiRest = uiCount - 4;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(kTo), kFirst);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(kTo + uiRest), From(kPixels, uiRest));
        return;
    }
    if ((uiCount & 2U) != 0)
    {
        _mm_storel_epi64(reinterpret_cast<__m128i*>(kTo), kFirst);
    }
    if ((uiCount & 1U) != 0)
    {
        kTo[uiCount - 1] = static_cast<Tov_UInt>(_mm_cvtsi128_si32(From(kPixels, uiCount - 1)));
    }
}

template <class Word>
KANVO_INLINE Word LoadWord(const void* pFrom)
{
    Word uWord;
    std::memcpy(&uWord, pFrom, sizeof uWord);
    return uWord;
}

//! uiCount bytes, 1 to 7, as the low bytes of a word. Parts that overlap have the same bytes there.
KANVO_INLINE std::uint64_t LoadFewBytes(const Tov_UByte* pubFrom, Tov_UInt uiCount)
{
    if (uiCount >= 4)
    {
        const Tov_UInt uiRest = uiCount - 4;
        return LoadWord<std::uint32_t>(pubFrom) | std::uint64_t{LoadWord<std::uint32_t>(pubFrom + uiRest)}
                                                      << (8 * uiRest);
    }
    const Tov_UInt uiMiddle = uiCount / 2;
    const Tov_UInt uiLast   = uiCount - 1;
    return Tov_UInt{pubFrom[0]} | Tov_UInt{pubFrom[uiMiddle]} << (8 * uiMiddle) |
           Tov_UInt{pubFrom[uiLast]} << (8 * uiLast);
}

//! 64 bits as the low half of a register.
KANVO_INLINE __m128i FromWord(std::uint64_t uiWord)
{
    return _mm_cvtsi64_si128(static_cast<long long>(uiWord));
}

//! uiCount words of 16 bits, 0 to 7, as the low ones of a register.
KANVO_INLINE __m128i LoadFewWords(const Tov_UShort* pusFrom, Tov_UInt uiCount)
{
    const Tov_UInt          uiFour  = uiCount & 4U;
    const Tov_UShort* const pusRest = pusFrom + uiFour;  // behind the first four
    std::uint64_t           uiRest  = (uiCount & 1U) != 0 ? pusRest[uiCount & 2U] : 0;
    if ((uiCount & 2U) != 0)
    {
        uiRest = uiRest << 32 | LoadWord<std::uint32_t>(pusRest);
    }
    return uiFour != 0 ? _mm_unpacklo_epi64(FromWord(LoadWord<std::uint64_t>(pusFrom)), FromWord(uiRest))
                       : FromWord(uiRest);
}

//! Pixels at two offsets in bytes, each of 32 bits.
KANVO_INLINE __m128i GatherTwo(const char* pcFrom, std::uint64_t uiOffsets)
{
    return _mm_insert_epi32(_mm_cvtsi32_si128(LoadWord<int>(pcFrom + static_cast<Tov_UInt>(uiOffsets))),
                            LoadWord<int>(pcFrom + (uiOffsets >> 32)), 1);
}

KANVO_INLINE __m128i GatherFour(const char* pcFrom, __m128i kOffsets)
{
    return _mm_unpacklo_epi64(GatherTwo(pcFrom, static_cast<std::uint64_t>(_mm_cvtsi128_si64(kOffsets))),
                              GatherTwo(pcFrom, static_cast<std::uint64_t>(_mm_extract_epi64(kOffsets, 1))));
}

//! Pixels at eight offsets in bytes. Sooner than by the instruction for it, on many processors.
KANVO_INLINE Pixels Gather(const char* pcFrom, Pixels kOffsets)
{
    return _mm256_inserti128_si256(_mm256_castsi128_si256(GatherFour(pcFrom, _mm256_castsi256_si128(kOffsets))),
                                   GatherFour(pcFrom, _mm256_extracti128_si256(kOffsets, 1)), 1);
}

// ---- arithmetic -----------------------------------------------------------------------------------------------------

KANVO_INLINE Pixels AlphaBytes()
{
    return _mm256_set1_epi32(static_cast<int>(0xFF000000U));
}

KANVO_INLINE Pixels Splat(Tov_UInt uiWord)
{
    return _mm256_set1_epi32(static_cast<int>(uiWord));
}

KANVO_INLINE Tov_Bool AllOpaque(Pixels kPixels)
{
    return _mm256_testc_si256(kPixels, AlphaBytes()) != 0;
}

KANVO_INLINE Tov_Bool AllTransparent(Pixels kPixels)
{
    return _mm256_testz_si256(kPixels, AlphaBytes()) != 0;
}

//! All bits of each pixel whose alpha byte is 255.
KANVO_INLINE Pixels WhereOpaque(Pixels kPixels)
{
    const Pixels kOnes = _mm256_set1_epi32(-1);
    return _mm256_cmpeq_epi32(_mm256_or_si256(kPixels, _mm256_srli_epi32(kOnes, 8)), kOnes);
}

//! t / 255, truncated, in 32-bit lanes, for t of 0 .. 65025.
KANVO_INLINE Pixels DivideBy255(Pixels kProduct)
{
    return _mm256_srli_epi32(_mm256_mulhi_epu16(kProduct, Splat(0x8081)), 7);
}

//! Kanvo_MulByte in 32-bit lanes of one byte each.
KANVO_INLINE Pixels MulByte(Pixels kA, Pixels kB)
{
    return DivideBy255(_mm256_mullo_epi16(kA, kB));
}

//! The same in 16-bit lanes.
KANVO_INLINE Pixels MulByte16(Pixels kA, Pixels kB)
{
    return _mm256_srli_epi16(_mm256_mulhi_epu16(_mm256_mullo_epi16(kA, kB), _mm256_set1_epi16(-0x7F7F)), 7);
}

//! Kanvo_OverAlpha, in the alpha bytes; the other bytes are 0. kAlpha: in 32-bit lanes.
KANVO_INLINE Pixels OverAlpha(Pixels kDst, Pixels kAlpha)
{
    const Pixels kKept = MulByte(_mm256_sub_epi32(Splat(255), kAlpha), _mm256_srli_epi32(kDst, 24));
    return _mm256_slli_epi32(_mm256_add_epi32(kKept, kAlpha), 24);
}

//! The colour of kMixed with the alpha of kAlpha.
KANVO_INLINE Pixels WithAlpha(Pixels kMixed, Pixels kAlpha)
{
    return _mm256_or_si256(_mm256_andnot_si256(AlphaBytes(), kMixed), kAlpha);
}

//! Kanvo_MixColor<7> of each pixel by half of its alpha byte in kWeights; the alpha bytes of the result mean nothing.
//
// s w + d (128 - w), 0 .. 32640, is a sum of two products of an unsigned and a signed byte, if the weights are taken
// negative (-w and w - 128 both fit). Multiplying by -512 and keeping the high half turns the sign back and shifts by 7.
//
//     weights   ..  w-128 -w      one 16-bit lane for both channels of a pair
//     pixels    ..    d    s      bytes of source and destination, interleaved
KANVO_INLINE Pixels MixHalfWeight(Pixels kSrc, Pixels kDst, Pixels kWeights)
{
    const Pixels kLow  = _mm256_setr_epi8(0, 1, 0, 1, 0, 1, 0, 1, 4, 5, 4, 5, 4, 5, 4, 5, 0, 1, 0, 1, 0, 1, 0, 1, 4, 5,
                                          4, 5, 4, 5, 4, 5);
    const Pixels kHigh = _mm256_setr_epi8(8, 9, 8, 9, 8, 9, 8, 9, 12, 13, 12, 13, 12, 13, 12, 13, 8, 9, 8, 9, 8, 9, 8,
                                          9, 12, 13, 12, 13, 12, 13, 12, 13);
    const Pixels kBack = _mm256_set1_epi16(-512);

    const Pixels kWeight   = _mm256_srli_epi32(kWeights, 25);
    const Pixels kNegative = _mm256_sub_epi8(_mm256_or_si256(_mm256_slli_epi32(kWeight, 8), Splat(0x8000)), kWeight);
    const Pixels kSumLow = _mm256_maddubs_epi16(_mm256_unpacklo_epi8(kSrc, kDst), _mm256_shuffle_epi8(kNegative, kLow));
    const Pixels kSumHigh =
        _mm256_maddubs_epi16(_mm256_unpackhi_epi8(kSrc, kDst), _mm256_shuffle_epi8(kNegative, kHigh));
    return _mm256_packus_epi16(_mm256_mulhi_epi16(kSumLow, kBack), _mm256_mulhi_epi16(kSumHigh, kBack));
}

//! The same with one weight for all, ubAlpha / 2.
class MixByOneHalfWeight
{
public:
    explicit MixByOneHalfWeight(Tov_UByte ubAlpha)
    {
        const int iWeight = ubAlpha >> 1;
        m_kWeights        = _mm256_set1_epi16(static_cast<Tov_Short>((iWeight - 128) * 256 + (-iWeight & 0xFF)));
    }

    KANVO_INLINE Pixels operator()(Pixels kSrc, Pixels kDst) const
    {
        const Pixels kBack = _mm256_set1_epi16(-512);
        const Pixels kLow  = _mm256_maddubs_epi16(_mm256_unpacklo_epi8(kSrc, kDst), m_kWeights);
        const Pixels kHigh = _mm256_maddubs_epi16(_mm256_unpackhi_epi8(kSrc, kDst), m_kWeights);
        return _mm256_packus_epi16(_mm256_mulhi_epi16(kLow, kBack), _mm256_mulhi_epi16(kHigh, kBack));
    }

private:
    Pixels m_kWeights;
};

// One colour, mixed with a weight of eight bits: d + (s - d) w / 256, of which the sum before the division,
// 256 d + (s - d) w, is 0 .. 65280 and thus fits unsigned 16-bit lanes. One register takes red and blue, the other one
// alpha and green. The colour is taken as opaque, so that opaque stays opaque; other alpha bytes mean nothing.

KANVO_INLINE Pixels RedBlue(Kanvo_ColorARGB32 clColor)
{
    return Splat(clColor & KANVO_LANES);
}

KANVO_INLINE Pixels AlphaGreen(Kanvo_ColorARGB32 clColor)
{
    return Splat(0x00FF0000U | (clColor >> 8 & 0xFFU));
}

//! The high bytes of both.
KANVO_INLINE Pixels JoinSums(Pixels kRedBlue, Pixels kAlphaGreen)
{
    return _mm256_or_si256(_mm256_srli_epi16(kRedBlue, 8), _mm256_andnot_si256(Splat(KANVO_LANES), kAlphaGreen));
}

//! With a weight for each pixel, given in both of its 16-bit lanes.
class MixColor
{
public:
    explicit MixColor(Kanvo_ColorARGB32 clColor) : m_kRedBlue(RedBlue(clColor)), m_kAlphaGreen(AlphaGreen(clColor)) {}

    KANVO_INLINE Pixels operator()(Pixels kDst, Pixels kWeights) const
    {
        const Pixels kLanes        = Splat(KANVO_LANES);
        const Pixels kToRedBlue    = _mm256_sub_epi16(m_kRedBlue, _mm256_and_si256(kDst, kLanes));
        const Pixels kToAlphaGreen = _mm256_sub_epi16(m_kAlphaGreen, _mm256_srli_epi16(kDst, 8));
        return JoinSums(
            _mm256_add_epi16(_mm256_slli_epi16(kDst, 8), _mm256_mullo_epi16(kToRedBlue, kWeights)),
            _mm256_add_epi16(_mm256_andnot_si256(kLanes, kDst), _mm256_mullo_epi16(kToAlphaGreen, kWeights)));
    }

private:
    Pixels m_kRedBlue;
    Pixels m_kAlphaGreen;
};

//! With one weight for all: as d (256 - w) + s w, of which s w is constant.
class MixColorEvenly
{
public:
    MixColorEvenly(Kanvo_ColorARGB32 clColor, Tov_UByte ubWeight)
        : m_kRest(_mm256_set1_epi16(static_cast<Tov_Short>(256 - ubWeight))),
          m_kRedBlue(_mm256_mullo_epi16(RedBlue(clColor), _mm256_set1_epi16(ubWeight))),
          m_kAlphaGreen(_mm256_mullo_epi16(AlphaGreen(clColor), _mm256_set1_epi16(ubWeight)))
    {
    }

    KANVO_INLINE Pixels operator()(Pixels kDst) const
    {
        return JoinSums(
            _mm256_add_epi16(_mm256_mullo_epi16(_mm256_and_si256(kDst, Splat(KANVO_LANES)), m_kRest), m_kRedBlue),
            _mm256_add_epi16(_mm256_mullo_epi16(_mm256_srli_epi16(kDst, 8), m_kRest), m_kAlphaGreen));
    }

private:
    Pixels m_kRest;
    Pixels m_kRedBlue;
    Pixels m_kAlphaGreen;
};

//! BlendPixel of one colour at alpha 255, which leaves every pixel opaque: the alpha lane forgets what it was.
class BlendWholeColor
{
public:
    explicit BlendWholeColor(Kanvo_ColorARGB32 clColor)
        : m_kRest(_mm256_set1_epi16(256 - WEIGHT)),
          m_kRestGreen(Splat(256 - WEIGHT)),
          m_kRedBlue(_mm256_mullo_epi16(RedBlue(clColor), _mm256_set1_epi16(WEIGHT))),
          m_kAlphaGreen(Splat(0xFF000000U | (((clColor >> 8) & 0xFFU) * WEIGHT)))
    {
    }

    KANVO_INLINE Pixels operator()(Pixels kDst) const
    {
        return JoinSums(
            _mm256_add_epi16(_mm256_mullo_epi16(_mm256_and_si256(kDst, Splat(KANVO_LANES)), m_kRest), m_kRedBlue),
            _mm256_add_epi16(_mm256_mullo_epi16(_mm256_srli_epi16(kDst, 8), m_kRestGreen), m_kAlphaGreen));
    }

private:
    static constexpr Tov_Short WEIGHT = 254;  // 127 / 128

    Pixels m_kRest;
    Pixels m_kRestGreen;
    Pixels m_kRedBlue;
    Pixels m_kAlphaGreen;
};

//! Eight RGB565 pixels as ARGB32 of alpha 0. Bits are repeated by multiplication: r5 * 33 / 4 and g6 * 65 / 16 are the
//! high halves of (r5 << 11) * 264 and (g6 << 10) * 260.
KANVO_INLINE Pixels Expand565(__m128i kHalf)
{
    const Pixels kTwice   = _mm256_setr_epi8(0, 1, 0, 1, 2, 3, 2, 3, 4, 5, 4, 5, 6, 7, 6, 7, 8, 9, 8, 9, 10, 11, 10, 11,
                                             12, 13, 12, 13, 14, 15, 14, 15);
    const Pixels kBoth    = _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(kHalf), kTwice);
    const Pixels kTop     = _mm256_mullo_epi16(kBoth, Splat(0x00010800));  // blue, below, moves to the top of its lane
    const Pixels kRedBlue = _mm256_mulhi_epu16(_mm256_and_si256(kTop, Splat(0xF800F800U)), Splat(264U << 16 | 264U));
    const Pixels kGreen = _mm256_mulhi_epu16(_mm256_and_si256(_mm256_slli_epi32(kBoth, 5), Splat(0xFC00)), Splat(260));
    return _mm256_or_si256(kRedBlue, _mm256_slli_epi32(kGreen, 8));
}

// ---- what a row is drawn with: eight or sixteen pixels from a position on, or less than eight from the start ---------

struct TwoPixels
{
    Pixels kLow;
    Pixels kHigh;
};

KANVO_INLINE void StoreSixteen(Kanvo_OffsetARGB32 kTo, TwoPixels kPixels)
{
    Store(kTo, kPixels.kLow);
    Store(kTo + LANES, kPixels.kHigh);
}

//! For a source that has no better way to sixteen pixels.
template <class Source>
KANVO_INLINE TwoPixels SixteenOf(const Source& kSource, std::size_t uiX)
{
    return {kSource.Eight(uiX), kSource.Eight(uiX + LANES)};
}

struct FromARGB32
{
    const Kanvo_PixelARGB32* kSrc;

    KANVO_INLINE Pixels    Eight(std::size_t uiX) const { return Load(kSrc + uiX); }
    KANVO_INLINE TwoPixels Sixteen(std::size_t uiX) const { return SixteenOf(*this, uiX); }
    KANVO_INLINE Pixels    Few(Tov_UInt uiCount) const { return LoadFew(kSrc, uiCount); }
};

//! As opaque pixels.
struct FromRGB32
{
    FromARGB32 kSource;

    KANVO_INLINE Pixels    Eight(std::size_t uiX) const { return _mm256_or_si256(kSource.Eight(uiX), AlphaBytes()); }
    KANVO_INLINE TwoPixels Sixteen(std::size_t uiX) const { return SixteenOf(*this, uiX); }
    KANVO_INLINE Pixels    Few(Tov_UInt uiCount) const { return _mm256_or_si256(kSource.Few(uiCount), AlphaBytes()); }
};

//! Each value in all four bytes, with some bits set.
struct FromGrey
{
    const Kanvo_PixelA8* kSrc;
    Pixels               kSet;

    KANVO_INLINE Pixels Eight(std::size_t uiX) const
    {
        return Repeated<0>(FromWord(LoadWord<std::uint64_t>(kSrc + uiX)));
    }
    KANVO_INLINE TwoPixels Sixteen(std::size_t uiX) const
    {
        const __m128i kBytes = LoadHalf(kSrc + uiX);
        return {Repeated<0>(kBytes), Repeated<8>(kBytes)};
    }
    KANVO_INLINE Pixels Few(Tov_UInt uiCount) const { return Repeated<0>(FromWord(LoadFewBytes(kSrc, uiCount))); }

private:
    //! Eight bytes from FIRST on.
    template <int FIRST>
    KANVO_INLINE Pixels Repeated(__m128i kBytes) const
    {
        constexpr int F    = FIRST;
        const Pixels kFour = _mm256_setr_epi8(F, F, F, F, F + 1, F + 1, F + 1, F + 1, F + 2, F + 2, F + 2, F + 2, F + 3,
                                              F + 3, F + 3, F + 3, F + 4, F + 4, F + 4, F + 4, F + 5, F + 5, F + 5,
                                              F + 5, F + 6, F + 6, F + 6, F + 6, F + 7, F + 7, F + 7, F + 7);
        return _mm256_or_si256(_mm256_shuffle_epi8(_mm256_broadcastsi128_si256(kBytes), kFour), kSet);
    }
};

//! As opaque pixels.
struct From565
{
    const Kanvo_PixelRGB565* kSrc;

    KANVO_INLINE Pixels Eight(std::size_t uiX) const
    {
        return _mm256_or_si256(Expand565(LoadHalf(kSrc + uiX)), AlphaBytes());
    }
    KANVO_INLINE TwoPixels Sixteen(std::size_t uiX) const { return SixteenWith(_mm256_set1_epi16(-0x0100), uiX); }
    //! Sixteen pixels with other alpha, given in 16-bit lanes, shifted up, in the order of InQuarters.
    KANVO_INLINE TwoPixels SixteenWith(Pixels kAlpha, std::size_t uiX) const
    {
        // unpacking goes by halves of registers: the middle quarters change places beforehand
        const Pixels kPixels = _mm256_permute4x64_epi64(Load(kSrc + uiX), QUARTERS);
        const Pixels kRed =
            _mm256_mulhi_epu16(_mm256_and_si256(kPixels, _mm256_set1_epi16(-0x0800)), _mm256_set1_epi16(264));
        const Pixels kGreen = _mm256_mulhi_epu16(
            _mm256_and_si256(_mm256_slli_epi16(kPixels, 5), _mm256_set1_epi16(-0x0400)), _mm256_set1_epi16(260));
        const Pixels kBlue      = _mm256_mulhi_epu16(_mm256_slli_epi16(kPixels, 11), _mm256_set1_epi16(264));
        const Pixels kGreenBlue = _mm256_or_si256(_mm256_slli_epi16(kGreen, 8), kBlue);
        const Pixels kAlphaRed  = _mm256_or_si256(kAlpha, kRed);
        return {_mm256_unpacklo_epi16(kGreenBlue, kAlphaRed), _mm256_unpackhi_epi16(kGreenBlue, kAlphaRed)};
    }
    //! Sixteen bytes in 16-bit lanes, ordered for SixteenWith.
    static KANVO_INLINE Pixels InQuarters(__m128i kBytes)
    {
        return _mm256_cvtepu8_epi16(_mm_shuffle_epi32(kBytes, QUARTERS));
    }
    KANVO_INLINE Pixels Few(Tov_UInt uiCount) const
    {
        return _mm256_or_si256(Expand565(LoadFewWords(kSrc, uiCount)), AlphaBytes());
    }

private:
    static constexpr int QUARTERS = 0xD8;  //!< 0, 2, 1, 3
};

//! Coverage in 32-bit lanes.
struct FromA8
{
    const Kanvo_PixelA8* kMask;
    Tov_UByte            ubAlpha;

    KANVO_INLINE Pixels    Eight(std::size_t uiX) const { return Scaled(LoadWord<std::uint64_t>(kMask + uiX)); }
    KANVO_INLINE TwoPixels Sixteen(std::size_t uiX) const { return SixteenOf(*this, uiX); }
    KANVO_INLINE Pixels    Few(Tov_UInt uiCount) const { return Scaled(LoadFewBytes(kMask, uiCount)); }

private:
    KANVO_INLINE Pixels Scaled(std::uint64_t uiBytes) const
    {
        const Pixels kCover = _mm256_cvtepu8_epi32(FromWord(uiBytes));
        return ubAlpha == 255 ? kCover : MulByte(kCover, Splat(ubAlpha));
    }
};

//! Source pixels whose alpha is another one.
template <class Source>
struct FromSourceAndA8
{
    Source kSource;
    FromA8 kCover;

    KANVO_INLINE Pixels    Eight(std::size_t uiX) const { return Join(kSource.Eight(uiX), kCover.Eight(uiX)); }
    KANVO_INLINE TwoPixels Sixteen(std::size_t uiX) const
    {
        if constexpr (std::is_same_v<Source, From565>)
        {
            Pixels kAlpha = From565::InQuarters(LoadHalf(kCover.kMask + uiX));
            if (kCover.ubAlpha != 255)
            {
                kAlpha = MulByte16(kAlpha, _mm256_set1_epi16(kCover.ubAlpha));
            }
            return kSource.SixteenWith(_mm256_slli_epi16(kAlpha, 8), uiX);
        }
        else
        {
            return SixteenOf(*this, uiX);
        }
    }
    KANVO_INLINE Pixels Few(Tov_UInt uiCount) const { return Join(kSource.Few(uiCount), kCover.Few(uiCount)); }

private:
    static KANVO_INLINE Pixels Join(Pixels kPixels, Pixels kAlpha)
    {
        return WithAlpha(kPixels, _mm256_slli_epi32(kAlpha, 24));
    }
};

//! Entries of a palette, by indices of one or two bytes. Lanes behind the last of a few pixels get the first entry.
template <class Unit>
struct FromPalette
{
    const Unit*              puIndices;
    const Kanvo_ColorARGB32* pclPalette;

    KANVO_INLINE Pixels Eight(std::size_t uiX) const
    {
        if constexpr (sizeof(Unit) == 1)
        {
            return Entries(_mm256_cvtepu8_epi32(FromWord(LoadWord<std::uint64_t>(puIndices + uiX))));
        }
        else
        {
            return Entries(_mm256_cvtepu16_epi32(LoadHalf(puIndices + uiX)));
        }
    }
    KANVO_INLINE TwoPixels Sixteen(std::size_t uiX) const { return SixteenOf(*this, uiX); }
    KANVO_INLINE Pixels    Few(Tov_UInt uiCount) const
    {
        if constexpr (sizeof(Unit) == 1)
        {
            return Entries(_mm256_cvtepu8_epi32(FromWord(LoadFewBytes(puIndices, uiCount))));
        }
        else
        {
            return Entries(_mm256_cvtepu16_epi32(LoadFewWords(puIndices, uiCount)));
        }
    }

private:
    KANVO_INLINE Pixels Entries(Pixels kIndices) const
    {
        return Gather(reinterpret_cast<const char*>(pclPalette), _mm256_slli_epi32(kIndices, 2));
    }
};

//! Nearest samples, eight after eight: one that lies anywhere, and those of a line.
class Samples
{
public:
    static constexpr Tov_UInt MAX_PITCH = 0x7FFF;  //!< bytes, so that rows and pitch can be multiplied in 16-bit lanes

    KANVO_INLINE Samples(const Kanvo_SampleLine& kLine, Tov_UInt uiFirstX, Tov_UInt uiFirstY)
        : m_pcFrom(static_cast<const char*>(kLine.kSource.pBuffer)),
          m_kBytes(Splat(kLine.kSource.uiPitch << 16 | sizeof(Kanvo_PixelARGB32))),
          m_kX(kLine.uiX, kLine.uiStepX, uiFirstX),
          m_kY(kLine.uiY, kLine.uiStepY, uiFirstY)
    {
    }

    KANVO_INLINE Pixels Eight() { return Gather(m_pcFrom, Offsets()); }

    //! The last ones, of which the first one is repeated behind.
    KANVO_INLINE Pixels Few(Tov_UInt uiCount)
    {
        const Pixels kOffsets = Offsets();
        const Pixels kFirst   = _mm256_broadcastd_epi32(_mm256_castsi256_si128(kOffsets));
        return Gather(m_pcFrom, _mm256_blendv_epi8(kFirst, kOffsets, FirstLanes(uiCount)));
    }

private:
    //! One coordinate of eight samples, in 16.16.
    class Positions
    {
    public:
        KANVO_INLINE Positions(Tov_UInt uiLine, Tov_UInt uiStep, Tov_UInt uiFirst)
            : m_kOfLine(_mm256_add_epi32(
                  Splat(uiLine), _mm256_mullo_epi32(Splat(uiStep), _mm256_setr_epi32(-1, 0, 1, 2, 3, 4, 5, 6)))),
              m_kNow(_mm256_blend_epi32(m_kOfLine, Splat(uiFirst), 1)),
              m_kStep(Splat(static_cast<Tov_UInt>(LANES) * uiStep))
        {
        }

        KANVO_INLINE Pixels Next()
        {
            const Pixels kNow = m_kNow;
            m_kOfLine         = _mm256_add_epi32(m_kOfLine, m_kStep);
            m_kNow            = m_kOfLine;
            return kNow;
        }

    private:
        Pixels m_kOfLine;
        Pixels m_kNow;
        Pixels m_kStep;
    };

    //! Row times pitch plus column times four.
    KANVO_INLINE Pixels Offsets()
    {
        return _mm256_madd_epi16(_mm256_blend_epi16(_mm256_srli_epi32(m_kX.Next(), 16), m_kY.Next(), 0xAA), m_kBytes);
    }

    const char* m_pcFrom;
    Pixels      m_kBytes;
    Positions   m_kX;
    Positions   m_kY;
};

//! With each alpha byte multiplied by kAlpha, in 32-bit lanes.
KANVO_INLINE Pixels WithScaledAlpha(Pixels kPixels, Pixels kAlpha)
{
    return WithAlpha(kPixels, _mm256_slli_epi32(MulByte(_mm256_srli_epi32(kPixels, 24), kAlpha), 24));
}

//! With each alpha byte multiplied by the global alpha.
template <class Source>
struct Scaled
{
    Source kSource;
    Pixels kAlpha;  //!< in 32-bit lanes

    KANVO_INLINE Pixels    Eight(std::size_t uiX) const { return WithScaledAlpha(kSource.Eight(uiX), kAlpha); }
    KANVO_INLINE TwoPixels Sixteen(std::size_t uiX) const { return SixteenOf(*this, uiX); }
    KANVO_INLINE Pixels    Few(Tov_UInt uiCount) const { return WithScaledAlpha(kSource.Few(uiCount), kAlpha); }
};

//! Nothing is read: the rule knows its colour.
struct FromNowhere
{
    static KANVO_INLINE Pixels    Eight(std::size_t /*uiX*/) { return _mm256_setzero_si256(); }
    static KANVO_INLINE TwoPixels Sixteen(std::size_t /*uiX*/) { return {Eight(0), Eight(0)}; }
    static KANVO_INLINE Pixels    Few(Tov_UInt /*uiCount*/) { return _mm256_setzero_si256(); }
};

// ---- how it is drawn ------------------------------------------------------------------------------------------------
// A rule has
//   Any(s, d)      eight pixels drawn with s over d,
//   Opaque(s, d)   the same in fewer steps, if all of d are opaque,
//   Nothing(s)     whether s, which may be the union of several, leaves opaque pixels as they are.

//! BlendPixel by the source's alpha byte.
struct BlendRule
{
    static KANVO_INLINE Pixels Any(Pixels kSrc, Pixels kDst)
    {
        return WithAlpha(MixHalfWeight(kSrc, kDst, kSrc), OverAlpha(kDst, _mm256_srli_epi32(kSrc, 24)));
    }
    static KANVO_INLINE Pixels Opaque(Pixels kSrc, Pixels kDst)
    {
        return _mm256_or_si256(MixHalfWeight(kSrc, kDst, kSrc), AlphaBytes());
    }
    static KANVO_INLINE Tov_Bool Nothing(Pixels kSrc) { return AllTransparent(kSrc); }
};

//! The same, but opaque pixels are stored.
struct BlendOrStoreRule
{
    static KANVO_INLINE Pixels Any(Pixels kSrc, Pixels kDst)
    {
        return _mm256_blendv_epi8(BlendRule::Any(kSrc, kDst), kSrc, WhereOpaque(kSrc));
    }
    static KANVO_INLINE Pixels Opaque(Pixels kSrc, Pixels kDst)
    {
        return _mm256_blendv_epi8(BlendRule::Opaque(kSrc, kDst), kSrc, WhereOpaque(kSrc));
    }
    static KANVO_INLINE Tov_Bool Nothing(Pixels kSrc) { return AllTransparent(kSrc); }
};

//! BlendPixelSrcAlpha of a source whose alpha byte is already multiplied: as BlendPixel, but over a translucent pixel the
//! colour's weight is the global alpha. (A translucent pixel becomes opaque under an opaque one alone, and then both
//! weights are equal: whether the destination is opaque decides, not the result.)
struct OverRule
{
    Pixels kGlobalAlpha;  //!< in the alpha bytes

    KANVO_INLINE Pixels Any(Pixels kSrc, Pixels kDst) const
    {
        const Pixels kWeights = _mm256_blendv_epi8(kGlobalAlpha, kSrc, WhereOpaque(kDst));
        return WithAlpha(MixHalfWeight(kSrc, kDst, kWeights), OverAlpha(kDst, _mm256_srli_epi32(kSrc, 24)));
    }
    static KANVO_INLINE Pixels   Opaque(Pixels kSrc, Pixels kDst) { return BlendRule::Opaque(kSrc, kDst); }
    static KANVO_INLINE Tov_Bool Nothing(Pixels kSrc) { return AllTransparent(kSrc); }
};

//! BlendPixel by one alpha for all.
struct BlendEvenlyRule
{
    MixByOneHalfWeight kMix;
    Tov_UByte          ubAlpha;

    KANVO_INLINE Pixels Any(Pixels kSrc, Pixels kDst) const
    {
        return WithAlpha(kMix(kSrc, kDst), OverAlpha(kDst, Splat(ubAlpha)));
    }
    KANVO_INLINE Pixels Opaque(Pixels kSrc, Pixels kDst) const
    {
        return _mm256_or_si256(kMix(kSrc, kDst), AlphaBytes());
    }
    static KANVO_INLINE Tov_Bool Nothing(Pixels /*kSrc*/) { return false; }
};

//! Opaque pixels are stored, those of alpha 0 left out, all others blended by one alpha.
struct StampRule
{
    BlendEvenlyRule kBlend;

    KANVO_INLINE Pixels Any(Pixels kSrc, Pixels kDst) const { return Chosen(kSrc, kDst, kBlend.Any(kSrc, kDst)); }
    KANVO_INLINE Pixels Opaque(Pixels kSrc, Pixels kDst) const { return Chosen(kSrc, kDst, kBlend.Opaque(kSrc, kDst)); }
    static KANVO_INLINE Tov_Bool Nothing(Pixels kSrc) { return AllTransparent(kSrc); }

private:
    static KANVO_INLINE Pixels Chosen(Pixels kSrc, Pixels kDst, Pixels kBlended)
    {
        const Pixels kNothing = _mm256_cmpeq_epi32(_mm256_srli_epi32(kSrc, 24), _mm256_setzero_si256());
        return _mm256_blendv_epi8(_mm256_blendv_epi8(kBlended, kDst, kNothing), kSrc, WhereOpaque(kSrc));
    }
};

//! One colour by one weight of eight bits. ubAlpha: what the alpha byte grows by.
struct MixColorEvenlyRule
{
    MixColorEvenly kMix;
    Tov_UByte      ubAlpha;

    KANVO_INLINE Pixels Any(Pixels /*kSrc*/, Pixels kDst) const
    {
        return WithAlpha(kMix(kDst), OverAlpha(kDst, Splat(ubAlpha)));
    }
    KANVO_INLINE Pixels          Opaque(Pixels /*kSrc*/, Pixels kDst) const { return kMix(kDst); }
    static KANVO_INLINE Tov_Bool Nothing(Pixels /*kSrc*/) { return false; }
};

//! One colour by coverages, in 32-bit lanes, with KanvoBlit_MixLinear, where full coverage stores the colour.
struct MixColorRule
{
    MixColor kMix;
    Pixels   kColor;

    KANVO_INLINE Pixels Any(Pixels kCover, Pixels kDst) const
    {
        return StoreWhereFull(kCover, WithAlpha(Mixed(kCover, kDst), OverAlpha(kDst, kCover)));
    }
    KANVO_INLINE Pixels Opaque(Pixels kCover, Pixels kDst) const { return StoreWhereFull(kCover, Mixed(kCover, kDst)); }
    static KANVO_INLINE Tov_Bool Nothing(Pixels kCover) { return _mm256_testz_si256(kCover, kCover) != 0; }

private:
    KANVO_INLINE Pixels Mixed(Pixels kCover, Pixels kDst) const
    {
        return kMix(kDst, _mm256_or_si256(kCover, _mm256_slli_epi32(kCover, 16)));
    }
    KANVO_INLINE Pixels StoreWhereFull(Pixels kCover, Pixels kMixed) const
    {
        return _mm256_blendv_epi8(kMixed, kColor, _mm256_cmpeq_epi32(kCover, Splat(255)));
    }
};

//! Pixels by their alpha bytes, with KanvoBlit_MixLinear, where opaque ones are stored.
struct MixRule
{
    static KANVO_INLINE Pixels Any(Pixels kSrc, Pixels kDst)
    {
        return StoreWhereFull(kSrc, WithAlpha(Mixed(kSrc, kDst), OverAlpha(kDst, _mm256_srli_epi32(kSrc, 24))));
    }
    static KANVO_INLINE Pixels Opaque(Pixels kSrc, Pixels kDst)
    {
        return StoreWhereFull(kSrc, _mm256_or_si256(Mixed(kSrc, kDst), AlphaBytes()));
    }
    static KANVO_INLINE Tov_Bool Nothing(Pixels kSrc) { return AllTransparent(kSrc); }

private:
    //! As MixColor; the alpha bytes mean nothing.
    static KANVO_INLINE Pixels Mixed(Pixels kSrc, Pixels kDst)
    {
        const Pixels kLanes        = Splat(KANVO_LANES);
        const Pixels kAlpha        = _mm256_srli_epi32(kSrc, 24);
        const Pixels kWeights      = _mm256_or_si256(kAlpha, _mm256_slli_epi32(kAlpha, 16));
        const Pixels kToRedBlue    = _mm256_sub_epi16(_mm256_and_si256(kSrc, kLanes), _mm256_and_si256(kDst, kLanes));
        const Pixels kToAlphaGreen = _mm256_sub_epi16(_mm256_srli_epi16(kSrc, 8), _mm256_srli_epi16(kDst, 8));
        return JoinSums(
            _mm256_add_epi16(_mm256_slli_epi16(kDst, 8), _mm256_mullo_epi16(kToRedBlue, kWeights)),
            _mm256_add_epi16(_mm256_andnot_si256(kLanes, kDst), _mm256_mullo_epi16(kToAlphaGreen, kWeights)));
    }
    static KANVO_INLINE Pixels StoreWhereFull(Pixels kSrc, Pixels kMixed)
    {
        return _mm256_blendv_epi8(kMixed, kSrc, WhereOpaque(kSrc));
    }
};

//! Stores the source where its alpha is not 0.
struct StoreRule
{
    static KANVO_INLINE Pixels Any(Pixels kSrc, Pixels kDst)
    {
        const Pixels kNothing = _mm256_cmpeq_epi32(_mm256_srli_epi32(kSrc, 24), _mm256_setzero_si256());
        return _mm256_blendv_epi8(kSrc, kDst, kNothing);
    }
    static KANVO_INLINE Pixels   Opaque(Pixels kSrc, Pixels kDst) { return Any(kSrc, kDst); }
    static KANVO_INLINE Tov_Bool Nothing(Pixels kSrc) { return AllTransparent(kSrc); }
};

//! Draws a row that shares no memory with its source. The last eight pixels are calculated before anything is written and
//! stored at the end, over some that are there already, with the same value: so there is no remainder to be drawn singly.
template <class Source, class Rule>
KANVO_INLINE void DrawRow(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Source kSource, Rule kRule)
{
    if (uiCount < LANES)
    {
        if (uiCount > 0)
        {
            StoreFew(kDst, kRule.Any(kSource.Few(uiCount), LoadFew(kDst, uiCount)), uiCount);
        }
        return;
    }
    const std::size_t uiLast = uiCount - LANES;
    Pixels            kLast  = _mm256_setzero_si256();
    if (uiCount % LANES != 0)
    {
        kLast = kRule.Any(kSource.Eight(uiLast), Load(kDst + uiLast));
    }
    std::size_t uiX = 0;
    for (; uiCount - uiX >= 2 * LANES; uiX += 2 * LANES)
    {
        const TwoPixels kFrom = kSource.Sixteen(uiX);
        const Pixels    kDst0 = Load(kDst + uiX);
        const Pixels    kDst1 = Load(kDst + uiX + LANES);
        if (!AllOpaque(_mm256_and_si256(kDst0, kDst1)))
        {
            Store(kDst + uiX, kRule.Any(kFrom.kLow, kDst0));
            Store(kDst + uiX + LANES, kRule.Any(kFrom.kHigh, kDst1));
        }
        else if (!kRule.Nothing(_mm256_or_si256(kFrom.kLow, kFrom.kHigh)))
        {
            Store(kDst + uiX, kRule.Opaque(kFrom.kLow, kDst0));
            Store(kDst + uiX + LANES, kRule.Opaque(kFrom.kHigh, kDst1));
        }
    }
    if (uiX <= uiLast)
    {
        Store(kDst + uiX, kRule.Any(kSource.Eight(uiX), Load(kDst + uiX)));
    }
    if (uiCount % LANES != 0)
    {
        Store(kDst + uiLast, kLast);
    }
}

//! Replaces every pixel of a row by kRule(pixel). The last ones are calculated before anything is written, as above.
template <class Rule>
KANVO_INLINE void ChangeRow(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Rule kRule)
{
    if (uiCount < LANES)
    {
        StoreFew(kDst, kRule(LoadFew(kDst, uiCount)), uiCount);
        return;
    }
    const Kanvo_OffsetARGB32 kLast   = kDst + (uiCount - LANES);
    const Pixels             kResult = kRule(Load(kLast));
    if (uiCount < 2 * LANES)
    {
        Store(kDst, kRule(Load(kDst)));
    }
    else
    {
        const Kanvo_OffsetARGB32 kLastButOne   = kLast - LANES;
        const Pixels             kResultBefore = kRule(Load(kLastButOne));
        for (; kDst < kLastButOne; kDst += 2 * LANES)
        {
            const Pixels kLow  = kRule(Load(kDst));
            const Pixels kHigh = kRule(Load(kDst + LANES));
            Store(kDst, kLow);
            Store(kDst + LANES, kHigh);
        }
        Store(kLastButOne, kResultBefore);
    }
    Store(kLast, kResult);
}

//! Stores what the source gives, over a row that shares no memory with it.
template <class Source>
KANVO_INLINE void StoreRow(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Source kSource)
{
    if (uiCount < LANES)
    {
        if (uiCount > 0)
        {
            StoreFew(kDst, kSource.Few(uiCount), uiCount);
        }
    }
    else if (uiCount < 2 * LANES)
    {
        const std::size_t uiLast = uiCount - LANES;
        Store(kDst, kSource.Eight(0));
        Store(kDst + uiLast, kSource.Eight(uiLast));
    }
    else
    {
        const std::size_t uiLast = uiCount - 2 * LANES;
        for (std::size_t uiX = 0; uiX < uiLast; uiX += 2 * LANES)
        {
            StoreSixteen(kDst + uiX, kSource.Sixteen(uiX));
        }
        StoreSixteen(kDst + uiLast, kSource.Sixteen(uiLast));
    }
}

// ---- the row functions ----------------------------------------------------------------------------------------------

struct RowsAVX2
{
    static KANVO_INLINE void Fill(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_PixelARGB32 pxPixel)
    {
        const Pixels kPixels = Splat(pxPixel);
        if (uiCount < LANES)
        {
            StoreFew(kDst, kPixels, uiCount);
            return;
        }
        if (uiCount > FILLED_HERE)
        {
            std::size_t uiLeft = uiCount;  // all of the register counts
            __asm__ volatile("rep stosl" : "+D"(kDst), "+c"(uiLeft) : "a"(pxPixel) : "memory");
            return;
        }
        // By four registers at a time and the last four where the row ends: how long the next row is no processor foresees,
        // and the fewer rounds there are, the fewer are guessed wrongly.
        constexpr std::size_t    BLOCK = 4 * LANES;
        const Kanvo_OffsetARGB32 kLast = kDst + (uiCount - LANES);
        if (uiCount <= 2 * LANES)
        {
            Store(kDst, kPixels);
        }
        else if (uiCount < BLOCK)
        {
            Store(kDst, kPixels);
            Store(kDst + LANES, kPixels);
            Store(kLast - LANES, kPixels);
        }
        else
        {
            for (const Kanvo_OffsetARGB32 kEnd = kLast - 3 * LANES; kDst < kEnd; kDst += BLOCK)
            {
                Store(kDst, kPixels);
                Store(kDst + LANES, kPixels);
                Store(kDst + 2 * LANES, kPixels);
                Store(kDst + 3 * LANES, kPixels);
            }
            Store(kLast - 3 * LANES, kPixels);
            Store(kLast - 2 * LANES, kPixels);
            Store(kLast - LANES, kPixels);
        }
        Store(kLast, kPixels);
    }

    static KANVO_INLINE void FillMix(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_ColorARGB32 clColor,
                                     Tov_UByte ubAlpha)
    {
        if (ubAlpha == 255)
        {
            Fill(kDst, uiCount, clColor);
        }
        else
        {
            DrawRow(kDst, uiCount, FromNowhere{}, MixColorEvenlyRule{MixColorEvenly(clColor, ubAlpha), ubAlpha});
        }
    }

    static KANVO_INLINE void CopyBytes(void* pDst, const void* pSrc, Tov_UInt uiBytes)
    {
        Kanvo_RowsReference::CopyBytes(pDst, pSrc, uiBytes);
    }

    static KANVO_INLINE void Copy(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount)
    {
        if (Kanvo_RowsOverlap(kDst, kSrc, uiCount))
        {
            Kanvo_RowsReference::Copy(kDst, kSrc, uiCount);
        }
        else if (uiCount > COPIED_HERE)
        {
            std::memcpy(kDst, kSrc, uiCount * sizeof(Kanvo_PixelARGB32));
        }
        else
        {
            StoreRow(kDst, uiCount, FromARGB32{kSrc});
        }
    }

    static KANVO_INLINE void CopyOpaque(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount)
    {
        if (Kanvo_RowsOverlap(kDst, kSrc, uiCount))
        {
            Kanvo_RowsReference::CopyOpaque(kDst, kSrc, uiCount);
        }
        else
        {
            StoreRow(kDst, uiCount, FromRGB32{{kSrc}});
        }
    }

    static KANVO_INLINE Tov_Bool IsOpaque(const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount)
    {
        if (uiCount < 2 * LANES)
        {
            return Kanvo_RowsReference::IsOpaque(kSrc, uiCount);
        }
        const std::size_t uiLast = uiCount - 2 * LANES;
        Pixels            kLow   = Load(kSrc + uiLast);
        Pixels            kHigh  = Load(kSrc + uiLast + LANES);
        for (std::size_t uiX = 0; uiX < uiLast; uiX += 2 * LANES)
        {
            kLow  = _mm256_and_si256(kLow, Load(kSrc + uiX));
            kHigh = _mm256_and_si256(kHigh, Load(kSrc + uiX + LANES));
        }
        return AllOpaque(_mm256_and_si256(kLow, kHigh));
    }

    static KANVO_INLINE void TakeAlpha(Kanvo_PixelA8* kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount)
    {
        if (uiCount < 2 * LANES || Kanvo_RowsOverlap(kSrc, kDst, uiCount))
        {
            Kanvo_RowsReference::TakeAlpha(kDst, kSrc, uiCount);
            return;
        }
        const std::size_t uiLast = uiCount - 2 * LANES;
        for (std::size_t uiX = 0; uiX < uiLast; uiX += 2 * LANES)
        {
            TakeSixteen(kDst + uiX, kSrc + uiX);
        }
        TakeSixteen(kDst + uiLast, kSrc + uiLast);
    }

    static KANVO_INLINE void Over(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount,
                                  Tov_UByte ubAlpha)
    {
        const OverRule kRule{Splat(static_cast<Tov_UInt>(ubAlpha) << 24)};
        if (Kanvo_RowsOverlap(kDst, kSrc, uiCount))
        {
            Kanvo_RowsReference::Over(kDst, kSrc, uiCount, ubAlpha);
        }
        else if (ubAlpha == 255)
        {
            DrawRow(kDst, uiCount, FromARGB32{kSrc}, kRule);
        }
        else
        {
            DrawRow(kDst, uiCount, Scaled<FromARGB32>{{kSrc}, Splat(ubAlpha)}, kRule);
        }
    }

    static KANVO_INLINE void OverSamples(Kanvo_OffsetARGB32 kDst, const Kanvo_SampleLine& kLine, Tov_UInt uiFirstX,
                                         Tov_UInt uiFirstY, Tov_UInt uiCount, Tov_UByte ubAlpha)
    {
        if (kLine.kSource.uiPitch > Samples::MAX_PITCH)
        {
            Kanvo_RowsReference::OverSamples(kDst, kLine, uiFirstX, uiFirstY, uiCount, ubAlpha);
        }
        else
        {
            DrawSamples(kDst, uiCount, Samples(kLine, uiFirstX, uiFirstY), ubAlpha);
        }
    }

    static KANVO_INLINE void BlendOrStore(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount,
                                          Tov_UByte ubAlpha)
    {
        if (Kanvo_RowsOverlap(kDst, kSrc, uiCount))
        {
            Kanvo_RowsReference::BlendOrStore(kDst, kSrc, uiCount, ubAlpha);
        }
        else
        {
            BlendFrom(kDst, uiCount, FromARGB32{kSrc}, ubAlpha);
        }
    }

    static KANVO_INLINE void Stamp(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount,
                                   Tov_UByte ubAlpha)
    {
        if (Kanvo_RowsOverlap(kDst, kSrc, uiCount))
        {
            Kanvo_RowsReference::Stamp(kDst, kSrc, uiCount, ubAlpha);
        }
        else
        {
            DrawRow(kDst, uiCount, FromARGB32{kSrc}, StampRule{{MixByOneHalfWeight(ubAlpha), ubAlpha}});
        }
    }

    static KANVO_INLINE void BlendColor(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_ColorARGB32 clColor,
                                        Tov_UByte ubAlpha)
    {
        if (ubAlpha == 255)
        {
            ChangeRow(kDst, uiCount, BlendWholeColor(clColor));
            return;
        }
        // w / 128 as 2 w / 256
        const auto ubWeight = static_cast<Tov_UByte>(ubAlpha & 0xFEU);
        DrawRow(kDst, uiCount, FromNowhere{}, MixColorEvenlyRule{MixColorEvenly(clColor, ubWeight), ubAlpha});
    }

    static KANVO_INLINE void ConvertA8(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kSrc, Tov_UInt uiCount,
                                       Kanvo_PixelARGB32 pxSet)
    {
        if (Kanvo_RowsOverlap(kDst, kSrc, uiCount))
        {
            Kanvo_RowsReference::ConvertA8(kDst, kSrc, uiCount, pxSet);
        }
        else
        {
            StoreRow(kDst, uiCount, FromGrey{kSrc, Splat(pxSet)});
        }
    }

    static KANVO_INLINE void Convert565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiCount)
    {
        if (Kanvo_RowsOverlap(kDst, kSrc, uiCount))
        {
            Kanvo_RowsReference::Convert565(kDst, kSrc, uiCount);
        }
        else
        {
            StoreRow(kDst, uiCount, From565{kSrc});
        }
    }

    static KANVO_INLINE void Over565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiCount,
                                     Tov_UByte ubAlpha)
    {
        if (Kanvo_RowsOverlap(kDst, kSrc, uiCount))
        {
            Kanvo_RowsReference::Over565(kDst, kSrc, uiCount, ubAlpha);
        }
        else
        {
            // of an opaque source both weights are the global alpha
            DrawRow(kDst, uiCount, From565{kSrc}, BlendEvenlyRule{MixByOneHalfWeight(ubAlpha), ubAlpha});
        }
    }

    static KANVO_INLINE void StoreMask565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc,
                                          const Kanvo_PixelA8* kMask, Tov_UInt uiCount)
    {
        if (Kanvo_RowsOverlap(kDst, kSrc, uiCount) || Kanvo_RowsOverlap(kDst, kMask, uiCount))
        {
            Kanvo_RowsReference::StoreMask565(kDst, kSrc, kMask, uiCount);
        }
        else
        {
            DrawRow(kDst, uiCount, FromSourceAndA8<From565>{{kSrc}, {kMask, 255}}, StoreRule{});
        }
    }

    static KANVO_INLINE void BlendMask565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc,
                                          const Kanvo_PixelA8* kMask, Tov_UInt uiCount, Tov_UByte ubAlpha)
    {
        if (Kanvo_RowsOverlap(kDst, kSrc, uiCount) || Kanvo_RowsOverlap(kDst, kMask, uiCount))
        {
            Kanvo_RowsReference::BlendMask565(kDst, kSrc, kMask, uiCount, ubAlpha);
        }
        else
        {
            DrawRow(kDst, uiCount, FromSourceAndA8<From565>{{kSrc}, {kMask, ubAlpha}}, BlendRule{});
        }
    }

    static KANVO_INLINE void BlendMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc,
                                       const Kanvo_PixelA8* kMask, Tov_UInt uiCount, Tov_UByte ubAlpha)
    {
        if (Kanvo_RowsOverlap(kDst, kSrc, uiCount) || Kanvo_RowsOverlap(kDst, kMask, uiCount))
        {
            Kanvo_RowsReference::BlendMask(kDst, kSrc, kMask, uiCount, ubAlpha);
        }
        else
        {
            DrawRow(kDst, uiCount, FromSourceAndA8<FromARGB32>{{kSrc}, {kMask, ubAlpha}}, BlendRule{});
        }
    }

    static KANVO_INLINE void MixMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, const Kanvo_PixelA8* kMask,
                                     Tov_UInt uiCount)
    {
        if (Kanvo_RowsOverlap(kDst, kSrc, uiCount) || Kanvo_RowsOverlap(kDst, kMask, uiCount))
        {
            Kanvo_RowsReference::MixMask(kDst, kSrc, kMask, uiCount);
        }
        else
        {
            DrawRow(kDst, uiCount, FromSourceAndA8<FromARGB32>{{kSrc}, {kMask, 255}}, MixRule{});
        }
    }

    static KANVO_INLINE void ColorMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kMask, Tov_UInt uiCount,
                                       Kanvo_ColorARGB32 clColor, Tov_UByte ubAlpha)
    {
        if (Kanvo_RowsOverlap(kDst, kMask, uiCount))
        {
            Kanvo_RowsReference::ColorMask(kDst, kMask, uiCount, clColor, ubAlpha);
        }
        else
        {
            DrawRow(kDst, uiCount, FromA8{kMask, ubAlpha}, MixColorRule{MixColor(clColor), Splat(clColor)});
        }
    }

    static void DrawTokens8(const Kanvo_TokenRows& kRows, RLE8CurDecompressInfo& kTokens)
    {
        kRows.bStamp ? DrawTokens<true>(kRows, kTokens) : DrawTokens<false>(kRows, kTokens);
    }
    static void DrawTokens16(const Kanvo_TokenRows& kRows, RLE16CurDecompressInfo& kTokens)
    {
        kRows.bStamp ? DrawTokens<true>(kRows, kTokens) : DrawTokens<false>(kRows, kTokens);
    }

private:
    //! Takes decoded pixels and draws them from kDst to the right, each piece for itself: gathered in memory, in parts of
    //! all lengths, they could not be loaded by eights before all are written. STAMP: as Stamp, else as BlendOrStore.
    template <bool STAMP>
    struct TokenSink
    {
        Kanvo_OffsetARGB32       kDst;
        const Kanvo_ColorARGB32* pclPalette;
        Tov_UByte                ubAlpha;

        KANVO_INLINE void BeginRow(Kanvo_OffsetARGB32 kRow) { kDst = kRow; }
        KANVO_INLINE void EndRow() {}

        template <class Unit>
        KANVO_INLINE void Run(Unit uEntry, Tov_UInt uiCount)
        {
            const Kanvo_ColorARGB32 clEntry = pclPalette[uEntry];
            const Tov_UByte         ubEntry = Kanvo_PixelARGB32_Access::AlphaFromPixel(clEntry);
            const Tov_UByte         ubOwn   = STAMP ? ubEntry : Kanvo_MulByte(ubEntry, ubAlpha);
            if (ubOwn == 255)
            {
                Fill(kDst, uiCount, clEntry);
            }
            else if (ubOwn != 0)
            {
                BlendColor(kDst, uiCount, clEntry, STAMP ? ubAlpha : ubOwn);
            }
            kDst += uiCount;
        }
        template <class Unit>
        KANVO_INLINE void Literal(const Unit* puIndices, Tov_UInt uiCount)
        {
            const FromPalette<Unit> kSource{puIndices, pclPalette};
            if constexpr (STAMP)
            {
                DrawRow(kDst, uiCount, kSource, StampRule{{MixByOneHalfWeight(ubAlpha), ubAlpha}});
            }
            else
            {
                BlendFrom(kDst, uiCount, kSource, ubAlpha);
            }
            kDst += uiCount;
        }
    };

    template <bool STAMP, class Tokens>
    static KANVO_INLINE void DrawTokens(const Kanvo_TokenRows& kRows, Tokens& kState)
    {
        Tokens           kTokens = kState;  // a copy lives in registers
        TokenSink<STAMP> kSink{kRows.kDst, kRows.pclPalette, kRows.ubAlpha};
        kRows.Walk(kTokens, kSink, [&]() { kTokens.Skip(kRows.uiSkip); });
        kState = kTokens;
    }

    static KANVO_INLINE void DrawSamples(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Samples kSamples, Tov_UByte ubAlpha)
    {
        const OverRule kRule{Splat(Tov_UInt{ubAlpha} << 24)};
        const Pixels   kAlpha = Splat(ubAlpha);
        for (; uiCount >= LANES; uiCount -= static_cast<Tov_UInt>(LANES))
        {
            const Pixels kSrc   = WithScaledAlpha(kSamples.Eight(), kAlpha);
            const Pixels kUnder = Load(kDst);
            if (!AllOpaque(kUnder))
            {
                Store(kDst, kRule.Any(kSrc, kUnder));
            }
            else if (!OverRule::Nothing(kSrc))
            {
                Store(kDst, OverRule::Opaque(kSrc, kUnder));
            }
            kDst += LANES;
        }
        if (uiCount > 0)
        {
            const Pixels kSrc = WithScaledAlpha(kSamples.Few(uiCount), kAlpha);
            StoreFew(kDst, kRule.Any(kSrc, LoadFew(kDst, uiCount)), uiCount);
        }
    }

    static KANVO_INLINE void TakeSixteen(Kanvo_PixelA8* kTo, const Kanvo_PixelARGB32* kFrom)
    {
        const Pixels kLow   = _mm256_srli_epi32(Load(kFrom), 24);
        const Pixels kHigh  = _mm256_srli_epi32(Load(kFrom + LANES), 24);
        const Pixels kWords = _mm256_permute4x64_epi64(_mm256_packus_epi32(kLow, kHigh), 0xD8);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(kTo),
                         _mm_packus_epi16(_mm256_castsi256_si128(kWords), _mm256_extracti128_si256(kWords, 1)));
    }

    //! BlendOrStore from any source of pixels.
    template <class Source>
    static KANVO_INLINE void BlendFrom(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, const Source& kSource,
                                       Tov_UByte ubAlpha)
    {
        if (ubAlpha == 255)
        {
            DrawRow(kDst, uiCount, kSource, BlendOrStoreRule{});
        }
        else
        {
            DrawRow(kDst, uiCount, Scaled<Source>{kSource, Splat(ubAlpha)}, BlendRule{});
        }
    }

    //! Pixels; more are worth the processor's own instruction for filling, which does not read from memory what is
    //! overwritten: beyond the size of the second cache.
    static constexpr Tov_UInt FILLED_HERE = 0x40000;
    static constexpr Tov_UInt COPIED_HERE = 128;  //!< pixels; longer rows are worth a call of memcpy
};

}  // namespace

constexpr Kanvo_LevelBodies g_Kanvo_kBodiesAVX2 = Kanvo_LevelBodies::Of<RowsAVX2>(KL_AVX2);
