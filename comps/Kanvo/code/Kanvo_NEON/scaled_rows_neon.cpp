// scaled_rows_neon: rows of filtered samples for ARM with NEON, two samples a turn. The bytes are those of
// Kanvo_ScaledRowsReference, which also has what is not here: unfiltered samples are a load and a store each, with nothing
// for NEON to do, unless every second pixel is taken.
//
// A sample's block is two loads of two neighbours each. Two samples' left and right pixels are sorted into one register
// each, so that all eight channels are mixed by one multiplication of each side.
#include "scaled_rows.h"

#if KANVO_HAS_NEON

#include <arm_neon.h>

namespace
{

using Pair    = uint8x8_t;   // two pixels
using Numbers = uint32x2_t;  // one for each of them

constexpr Tov_UInt LANES = 2;

//! A pixel and its right neighbour.
KANVO_INLINE Pair LoadPair(const Kanvo_PixelARGB32* kFrom)
{
    return vreinterpret_u8_u32(vld1_u32(kFrom));
}

KANVO_INLINE void StorePair(Kanvo_PixelARGB32* kTo, Pair kPixels, Numbers kKeep)
{
    vst1_u32(kTo, vand_u32(vreinterpret_u32_u8(kPixels), kKeep));
}

//! Two positions, the second one a step further.
KANVO_INLINE Numbers Ramp(Tov_UInt uiFirst, Tov_UInt uiStep)
{
    return vset_lane_u32(uiFirst + uiStep, vdup_n_u32(uiFirst), 1);
}

//! The seven bits behind the point, in each channel.
KANVO_INLINE Pair WeightOf(Numbers kPositions)
{
    const Numbers kWeight = vand_u32(vshr_n_u32(kPositions, 9), vdup_n_u32(0x7F));
    return vreinterpret_u8_u32(vmul_n_u32(kWeight, 0x01010101U));
}

//! Kanvo_MixWord: a + (b - a) w / 128 as (b w + a (128 - w)) / 128, at most 32640 before the shift.
KANVO_INLINE Pair Mix(Pair kA, Pair kB, Pair kWeight, Pair kRest)
{
    return vshrn_n_u16(vmlal_u8(vmull_u8(kB, kWeight), kA, kRest), 7);
}

KANVO_INLINE Pair RestOf(Pair kWeight)
{
    return vsub_u8(vdup_n_u8(128), kWeight);
}

//! Two samples' mixes along a row, each from a pixel and its neighbour.
KANVO_INLINE Pair MixNeighbours(const Kanvo_PixelARGB32* kOne, const Kanvo_PixelARGB32* kOther, Pair kWeight,
                                Pair kRest)
{
    const uint32x2x2_t kSides = vtrn_u32(vreinterpret_u32_u8(LoadPair(kOne)), vreinterpret_u32_u8(LoadPair(kOther)));
    return Mix(vreinterpret_u8_u32(kSides.val[0]), vreinterpret_u8_u32(kSides.val[1]), kWeight, kRest);
}

KANVO_INLINE const Kanvo_PixelARGB32* PixelAt(const Kanvo_PixelView& kSource, Tov_UInt uiX, Tov_UInt uiY)
{
    Kanvo_OffsetARGB32 kPixel;
    Kanvo_PixelARGB32_Access::GetOffset(&kSource, uiX >> 16, uiY >> 16, kPixel);
    return kPixel;
}

//! A position moved on by a step. It stays in the core's registers, where addresses are made: left to itself gcc adds two
//! coordinates at once in a NEON register, and the Cortex-A9 waits for them to come back.
KANVO_INLINE Tov_UInt InCore(Tov_UInt uiPosition, Tov_UInt uiStep)
{
    uiPosition += uiStep;
    __asm__("" : "+r"(uiPosition));
    return uiPosition;
}

//! Of the pixel below.
KANVO_INLINE const Kanvo_PixelARGB32* Below(const Kanvo_PixelView& kSource, const Kanvo_PixelARGB32* kPixel)
{
    return reinterpret_cast<const Kanvo_PixelARGB32*>(reinterpret_cast<std::uintptr_t>(kPixel) + kSource.GetPitch());
}

//! Four samples' mixes along a row in which each block begins right behind the one before it.
KANVO_INLINE uint8x16_t MixFour(const Kanvo_PixelARGB32* kFrom, Pair kWeight, Pair kRest)
{
    const uint32x4x2_t kSides = vld2q_u32(kFrom);
    const uint8x16_t   kLeft  = vreinterpretq_u8_u32(kSides.val[0]);
    const uint8x16_t   kRight = vreinterpretq_u8_u32(kSides.val[1]);
    return vcombine_u8(Mix(vget_low_u8(kLeft), vget_low_u8(kRight), kWeight, kRest),
                       Mix(vget_high_u8(kLeft), vget_high_u8(kRight), kWeight, kRest));
}

//! Filters fours of such samples, all of the same weights: those of a picture drawn at half its size. Returns how many
//! samples that were.
KANVO_INLINE Tov_UInt FilterHalved(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount,
                                   Tov_UInt uiKeep)
{
    const Kanvo_PixelARGB32* kTop      = PixelAt(kLine.kSource, kLine.uiX, kLine.uiY);
    const Kanvo_PixelARGB32* kBottom   = Below(kLine.kSource, kTop);
    const Pair               kWeightX  = WeightOf(vdup_n_u32(kLine.uiX));
    const Pair               kWeightY  = WeightOf(vdup_n_u32(kLine.uiY));
    const Pair               kRestX    = RestOf(kWeightX);
    const Pair               kRestY    = RestOf(kWeightY);
    const Numbers            kKeep     = vdup_n_u32(uiKeep);
    const Tov_UInt           uiSamples = uiCount & ~3U;
    for (Tov_UInt uiX = 0; uiX < uiSamples; uiX += 4)
    {
        const uint8x16_t kAbove = MixFour(kTop + 2 * uiX, kWeightX, kRestX);
        const uint8x16_t kBelow = MixFour(kBottom + 2 * uiX, kWeightX, kRestX);
        StorePair(kTo + uiX, Mix(vget_low_u8(kAbove), vget_low_u8(kBelow), kWeightY, kRestY), kKeep);
        StorePair(kTo + uiX + 2, Mix(vget_high_u8(kAbove), vget_high_u8(kBelow), kWeightY, kRestY), kKeep);
    }
    return uiSamples;
}

struct ScaledRowsNEON : Kanvo_ScaledRowsReference
{
    static void NearestWords(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount, Tov_UInt uiSet)
    {
        Kanvo_SampleLine kRest = kLine;
        if (kLine.IsHalving())
        {
            const Kanvo_PixelARGB32* kFrom = PixelAt(kLine.kSource, kLine.uiX, kLine.uiY);
            const uint32x4_t         kSet  = vdupq_n_u32(uiSet);
            for (; uiCount > 4; uiCount -= 4)  // the pixel behind the fourth one is read
            {
                vst1q_u32(kTo, vorrq_u32(vld2q_u32(kFrom).val[0], kSet));
                kTo += 4;
                kFrom += 8;
                kRest.Advance(4);
            }
        }
        Kanvo_ScaledRowsReference::NearestWords(kTo, kRest, uiCount, uiSet);
    }

    static void FilterWords(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount, Tov_UInt uiKeep)
    {
        if (kLine.IsHalving())
        {
            const Tov_UInt   uiDone = FilterHalved(kTo, kLine, uiCount, uiKeep);
            Kanvo_SampleLine kRest  = kLine;
            kRest.Advance(uiDone);
            Kanvo_ScaledRowsReference::FilterWords(kTo + uiDone, kRest, uiCount - uiDone, uiKeep);
            return;
        }
        const Numbers         kKeep   = vdup_n_u32(uiKeep);
        const Numbers         kStepX  = vdup_n_u32(LANES * kLine.uiStepX);
        const Numbers         kStepY  = vdup_n_u32(LANES * kLine.uiStepY);
        Numbers               kX      = Ramp(kLine.uiX, kLine.uiStepX);
        Numbers               kY      = Ramp(kLine.uiY, kLine.uiStepY);
        const Kanvo_PixelView kSource = kLine.kSource;
        Tov_UInt              uiX     = kLine.uiX;
        Tov_UInt              uiY     = kLine.uiY;
        for (; uiCount >= LANES; uiCount -= LANES)
        {
            const Kanvo_PixelARGB32* const kOne   = PixelAt(kSource, uiX, uiY);
            uiX                                   = InCore(uiX, kLine.uiStepX);
            uiY                                   = InCore(uiY, kLine.uiStepY);
            const Kanvo_PixelARGB32* const kOther = PixelAt(kSource, uiX, uiY);
            uiX                                   = InCore(uiX, kLine.uiStepX);
            uiY                                   = InCore(uiY, kLine.uiStepY);

            const Pair kWeightX = WeightOf(kX);
            const Pair kRestX   = RestOf(kWeightX);
            const Pair kTop     = MixNeighbours(kOne, kOther, kWeightX, kRestX);
            const Pair kBottom  = MixNeighbours(Below(kSource, kOne), Below(kSource, kOther), kWeightX, kRestX);
            const Pair kWeightY = WeightOf(kY);
            StorePair(kTo, Mix(kTop, kBottom, kWeightY, RestOf(kWeightY)), kKeep);
            kX = vadd_u32(kX, kStepX);
            kY = vadd_u32(kY, kStepY);
            kTo += LANES;
        }
        Kanvo_ScaledRowsReference::FilterWords(kTo, {kSource, uiX, uiY, kLine.uiStepX, kLine.uiStepY}, uiCount, uiKeep);
    }

    static void MixAlong(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
    {
        const Kanvo_PixelARGB32* const kRow  = PixelAt(kLine.kSource, 0, kLine.uiY);
        const Numbers                  kStep = vdup_n_u32(LANES * kLine.uiStepX);
        Numbers                        kX    = Ramp(kLine.uiX, kLine.uiStepX);
        Tov_UInt                       uiX   = kLine.uiX;
        for (; uiCount >= LANES; uiCount -= LANES)
        {
            const Kanvo_PixelARGB32* const kOne   = kRow + (uiX >> 16);
            uiX                                   = InCore(uiX, kLine.uiStepX);
            const Kanvo_PixelARGB32* const kOther = kRow + (uiX >> 16);
            uiX                                   = InCore(uiX, kLine.uiStepX);
            const Pair kWeight                    = WeightOf(kX);
            StorePair(kTo, MixNeighbours(kOne, kOther, kWeight, RestOf(kWeight)), vdup_n_u32(0xFFFFFFFFU));
            kX = vadd_u32(kX, kStep);
            kTo += LANES;
        }
        Kanvo_ScaledRowsReference::MixAlong(kTo, {kLine.kSource, uiX, kLine.uiY, kLine.uiStepX, kLine.uiStepY},
                                            uiCount);
    }

    static void MixBetween(Kanvo_PixelARGB32* kTo, const Kanvo_PixelARGB32* kTop, const Kanvo_PixelARGB32* kBottom,
                           Tov_UInt uiCount, Tov_UByte ubFracY, Tov_UInt uiKeep)
    {
        const Pair    kWeight = vdup_n_u8(static_cast<Tov_UByte>(ubFracY >> 1));
        const Pair    kRest   = RestOf(kWeight);
        const Numbers kKeep   = vdup_n_u32(uiKeep);
        for (; uiCount >= LANES; uiCount -= LANES)
        {
            StorePair(kTo, Mix(LoadPair(kTop), LoadPair(kBottom), kWeight, kRest), kKeep);
            kTop += LANES;
            kBottom += LANES;
            kTo += LANES;
        }
        Kanvo_ScaledRowsReference::MixBetween(kTo, kTop, kBottom, uiCount, ubFracY, uiKeep);
    }
};

}  // namespace

constexpr Kanvo_ScaledRowFunctions g_Kanvo_kScaledRowsNEON = Kanvo_ScaledRowFunctions::Of<ScaledRowsNEON>();

#endif
