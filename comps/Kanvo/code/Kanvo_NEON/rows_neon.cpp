// rows_neon: the row functions for ARM with NEON, 32 and 64 bit, eight pixels a turn. The bytes are those of
// Kanvo_RowsReference; rows that overlap and rows of less than eight pixels are left to it.
//
// vld4 takes pixels apart into one register per channel, vst4 puts them together: then an alpha is a weight for three
// registers without being copied about. No turn asks what its pixels are: on the Cortex-A9 the answer's way from a NEON
// register to the core takes as long as eight pixels.
#include "neonloops_rects.h"

#if KANVO_HAS_NEON

#include <arm_neon.h>

namespace
{

using Channel  = uint8x8_t;    // of eight pixels
using Channels = uint8x8x4_t;  // blue, green, red, alpha

constexpr Tov_UInt LANES = 8;
constexpr int      ALPHA = 3;

KANVO_INLINE Channels Load(const Kanvo_PixelARGB32* kFrom)
{
    return vld4_u8(reinterpret_cast<const std::uint8_t*>(kFrom));
}

KANVO_INLINE void Store(Kanvo_OffsetARGB32 kTo, const Channels& kPixels)
{
    vst4_u8(reinterpret_cast<std::uint8_t*>(kTo), kPixels);
}

//! A word in all lanes.
KANVO_INLINE Channels Splat(Tov_UInt uiWord)
{
    Channels kPixels;
    for (int iChannel = 0; iChannel <= ALPHA; ++iChannel)
    {
        kPixels.val[iChannel] = vdup_n_u8(static_cast<Tov_UByte>(uiWord >> (8 * iChannel)));
    }
    return kPixels;
}

// ---- arithmetic -----------------------------------------------------------------------------------------------------

//! t / 255, truncated, for t of 0 .. 65025.
KANVO_INLINE Channel DivideBy255(uint16x8_t kProduct)
{
    return vaddhn_u16(vsraq_n_u16(kProduct, kProduct, 8), vdupq_n_u16(1));
}

KANVO_INLINE Channel MulByte(Channel kA, Channel kB)
{
    return DivideBy255(vmull_u8(kA, kB));
}

//! Kanvo_OverAlpha.
KANVO_INLINE Channel OverAlpha(Channel kDst, Channel kAlpha)
{
    return vadd_u8(MulByte(vmvn_u8(kAlpha), kDst), kAlpha);
}

//! Kanvo_MixColor<7> by half of kAlpha: d + (s - d) w / 128 as (s w + d (128 - w)) / 128, at most 32640 before the shift.
KANVO_INLINE void MixHalfWeight(Channels& kDst, const Channels& kSrc, Channel kAlpha)
{
    const Channel kWeight = vshr_n_u8(kAlpha, 1);
    const Channel kRest   = vsub_u8(vdup_n_u8(128), kWeight);
    kDst.val[0]           = vshrn_n_u16(vmlal_u8(vmull_u8(kSrc.val[0], kWeight), kDst.val[0], kRest), 7);
    kDst.val[1]           = vshrn_n_u16(vmlal_u8(vmull_u8(kSrc.val[1], kWeight), kDst.val[1], kRest), 7);
    kDst.val[2]           = vshrn_n_u16(vmlal_u8(vmull_u8(kSrc.val[2], kWeight), kDst.val[2], kRest), 7);
}

//! The source in the lanes that are set in kWhere.
KANVO_INLINE void StoreWhere(Channel kWhere, Channels& kDst, const Channels& kSrc)
{
    kDst.val[0]     = vbsl_u8(kWhere, kSrc.val[0], kDst.val[0]);
    kDst.val[1]     = vbsl_u8(kWhere, kSrc.val[1], kDst.val[1]);
    kDst.val[2]     = vbsl_u8(kWhere, kSrc.val[2], kDst.val[2]);
    kDst.val[ALPHA] = vbsl_u8(kWhere, kSrc.val[ALPHA], kDst.val[ALPHA]);
}

//! d + (s - d) w / 256 as (d (255 - w) + d + s w) / 256, 0 .. 65280, for w below 255.
KANVO_INLINE Channel Mix(Channel kDst, Channel kSrc, Channel kWeight)
{
    return vshrn_n_u16(vaddw_u8(vmlal_u8(vmull_u8(kDst, vmvn_u8(kWeight)), kSrc, kWeight), kDst), 8);
}

//! RGB565 pixels taken apart; the alpha stays unset. Five or six bits become eight by repeating the top bits below.
KANVO_INLINE void Expand565(Channels& kPixels, uint16x8_t kPacked)
{
    const Channel kRed   = vshrn_n_u16(kPacked, 8);
    const Channel kGreen = vshrn_n_u16(kPacked, 3);
    const Channel kBlue  = vmovn_u16(vshlq_n_u16(kPacked, 3));
    kPixels.val[0]       = vsri_n_u8(kBlue, kBlue, 5);
    kPixels.val[1]       = vsri_n_u8(kGreen, kGreen, 6);
    kPixels.val[2]       = vsri_n_u8(kRed, kRed, 5);
}

// ---- rules: eight pixels, drawn over kDst; a rule walks along its sources -------------------------------------------

//! Alphas or coverages times the global alpha. SCALED: whether that is below 255.
template <bool SCALED>
KANVO_INLINE Channel Scaled(Channel kAlpha, Channel kGlobalAlpha)
{
    return SCALED ? MulByte(kAlpha, kGlobalAlpha) : kAlpha;
}

//! BlendPixel by the source's own alpha. SCALED: whether the global alpha is below 255; at 255 opaque pixels are stored.
template <bool SCALED>
struct BlendOrStoreRule
{
    const Kanvo_PixelARGB32* kSrc;
    Channel                  kGlobalAlpha;

    KANVO_INLINE void operator()(Channels& kDst)
    {
        const Channels kSource = Load(kSrc);
        kSrc += LANES;
        const Channel kAlpha = Scaled<SCALED>(kSource.val[ALPHA], kGlobalAlpha);
        MixHalfWeight(kDst, kSource, kAlpha);
        kDst.val[ALPHA] = OverAlpha(kDst.val[ALPHA], kAlpha);
        if (!SCALED)
        {
            StoreWhere(vceq_u8(kAlpha, vdup_n_u8(255)), kDst, kSource);
        }
    }
    void Skip(Tov_UInt uiCount) { kSrc += uiCount; }
};

//! Opaque pixels are stored, those of alpha 0 left out, all others blended by one alpha.
struct StampRule
{
    const Kanvo_PixelARGB32* kSrc;
    Channel                  kAlpha;

    KANVO_INLINE void operator()(Channels& kDst)
    {
        const Channels kSource = Load(kSrc);
        kSrc += LANES;
        // a blend by 0 leaves the pixel as it is
        const Channel kWeight = vand_u8(vtst_u8(kSource.val[ALPHA], kSource.val[ALPHA]), kAlpha);
        MixHalfWeight(kDst, kSource, kWeight);
        kDst.val[ALPHA] = OverAlpha(kDst.val[ALPHA], kWeight);
        StoreWhere(vceq_u8(kSource.val[ALPHA], vdup_n_u8(255)), kDst, kSource);
    }
    void Skip(Tov_UInt uiCount) { kSrc += uiCount; }
};

//! BlendPixelSrcAlpha. SCALED: whether the global alpha is below 255.
template <bool SCALED>
struct OverRule
{
    const Kanvo_PixelARGB32* kSrc;
    Channel                  kGlobalAlpha;

    KANVO_INLINE void operator()(Channels& kDst)
    {
        const Channels kSource = Load(kSrc);
        kSrc += LANES;
        const Channel kAlpha = Scaled<SCALED>(kSource.val[ALPHA], kGlobalAlpha);
        // Over a translucent pixel the colour's weight is the global alpha. (Such a pixel becomes opaque under an
        // opaque one alone, and then both weights are equal: whether the destination is opaque decides, not the result.)
        const Channel kOpaque = vceq_u8(kDst.val[ALPHA], vdup_n_u8(255));
        MixHalfWeight(kDst, kSource, vbsl_u8(kOpaque, kAlpha, kGlobalAlpha));
        kDst.val[ALPHA] = OverAlpha(kDst.val[ALPHA], kAlpha);
    }
    void Skip(Tov_UInt uiCount) { kSrc += uiCount; }
};

//! BlendPixel of RGB565 pixels by one alpha for all.
struct Over565Rule
{
    const Kanvo_PixelRGB565* kSrc;
    Channel                  kAlpha;

    KANVO_INLINE void operator()(Channels& kDst)
    {
        Channels kSource = kDst;  // for the alpha, which is not read
        Expand565(kSource, vld1q_u16(kSrc));
        kSrc += LANES;
        MixHalfWeight(kDst, kSource, kAlpha);
        kDst.val[ALPHA] = OverAlpha(kDst.val[ALPHA], kAlpha);
    }
    void Skip(Tov_UInt uiCount) { kSrc += uiCount; }
};

//! BlendPixel of RGB565 pixels by coverages.
template <bool SCALED>
struct BlendMask565Rule
{
    const Kanvo_PixelRGB565* kSrc;
    const Kanvo_PixelA8*     kMask;
    Channel                  kGlobalAlpha;

    KANVO_INLINE void operator()(Channels& kDst)
    {
        Channels kSource = kDst;
        Expand565(kSource, vld1q_u16(kSrc));
        const Channel kAlpha = Scaled<SCALED>(vld1_u8(kMask), kGlobalAlpha);
        kSrc += LANES;
        kMask += LANES;
        MixHalfWeight(kDst, kSource, kAlpha);
        kDst.val[ALPHA] = OverAlpha(kDst.val[ALPHA], kAlpha);
    }
    void Skip(Tov_UInt uiCount)
    {
        kSrc += uiCount;
        kMask += uiCount;
    }
};

//! BlendPixel of ARGB32 pixels by coverages.
template <bool SCALED>
struct BlendMaskRule
{
    const Kanvo_PixelARGB32* kSrc;
    const Kanvo_PixelA8*     kMask;
    Channel                  kGlobalAlpha;

    KANVO_INLINE void operator()(Channels& kDst)
    {
        const Channels kSource = Load(kSrc);
        const Channel  kAlpha  = Scaled<SCALED>(vld1_u8(kMask), kGlobalAlpha);
        kSrc += LANES;
        kMask += LANES;
        MixHalfWeight(kDst, kSource, kAlpha);
        kDst.val[ALPHA] = OverAlpha(kDst.val[ALPHA], kAlpha);
    }
    void Skip(Tov_UInt uiCount)
    {
        kSrc += uiCount;
        kMask += uiCount;
    }
};

//! RGB565 pixels with the mask as their alpha, where that is not 0.
struct StoreMask565Rule
{
    const Kanvo_PixelRGB565* kSrc;
    const Kanvo_PixelA8*     kMask;

    KANVO_INLINE void operator()(Channels& kDst)
    {
        Channels kNew = kDst;
        Expand565(kNew, vld1q_u16(kSrc));
        kNew.val[ALPHA] = vld1_u8(kMask);
        kSrc += LANES;
        kMask += LANES;
        StoreWhere(vtst_u8(kNew.val[ALPHA], kNew.val[ALPHA]), kDst, kNew);
    }
    void Skip(Tov_UInt uiCount)
    {
        kSrc += uiCount;
        kMask += uiCount;
    }
};

//! One colour by one weight of eight bits, below 255: d + (s - d) w / 256 as (d (255 - w) + d + s w) / 256, 0 .. 65280.
class MixColorEvenlyRule
{
public:
    //! ubAlpha: what the alpha grows by.
    MixColorEvenlyRule(Kanvo_ColorARGB32 clColor, Tov_UByte ubWeight, Tov_UByte ubAlpha)
        : m_kRest(vdup_n_u8(static_cast<Tov_UByte>(255 - ubWeight))),
          m_kAlpha(vdup_n_u8(ubAlpha))
    {
        for (int iChannel = 0; iChannel < ALPHA; ++iChannel)
        {
            const Tov_UInt uiPart = (clColor >> (8 * iChannel) & 0xFFU) * ubWeight;
            m_akParts[iChannel]   = vdupq_n_u16(static_cast<Tov_UShort>(uiPart));
        }
    }

    KANVO_INLINE void operator()(Channels& kDst) const
    {
        kDst.val[0]     = Mixed(kDst.val[0], m_akParts[0]);
        kDst.val[1]     = Mixed(kDst.val[1], m_akParts[1]);
        kDst.val[2]     = Mixed(kDst.val[2], m_akParts[2]);
        kDst.val[ALPHA] = OverAlpha(kDst.val[ALPHA], m_kAlpha);
    }
    static void Skip(Tov_UInt /*uiCount*/) {}

private:
    KANVO_INLINE Channel Mixed(Channel kDst, uint16x8_t kPart) const
    {
        return vaddhn_u16(vaddw_u8(vmull_u8(kDst, m_kRest), kDst), kPart);
    }

    Channel    m_kRest;
    Channel    m_kAlpha;
    uint16x8_t m_akParts[ALPHA];
};

//! A colour by coverages, with KanvoBlit_MixLinear, where full coverage stores it.
KANVO_INLINE void MixByCover(Channels& kDst, const Channels& kColor, Channel kCover)
{
    const Channel kOver = OverAlpha(kDst.val[ALPHA], kCover);
    const Channel kFull = vceq_u8(kCover, vdup_n_u8(255));
    kDst.val[0]         = vbsl_u8(kFull, kColor.val[0], Mix(kDst.val[0], kColor.val[0], kCover));
    kDst.val[1]         = vbsl_u8(kFull, kColor.val[1], Mix(kDst.val[1], kColor.val[1], kCover));
    kDst.val[2]         = vbsl_u8(kFull, kColor.val[2], Mix(kDst.val[2], kColor.val[2], kCover));
    kDst.val[ALPHA]     = vbsl_u8(kFull, kColor.val[ALPHA], kOver);
}

//! The one colour.
template <bool SCALED>
struct MixColorRule
{
    Channels             kColor;
    const Kanvo_PixelA8* kMask;
    Channel              kGlobalAlpha;

    KANVO_INLINE void operator()(Channels& kDst)
    {
        MixByCover(kDst, kColor, Scaled<SCALED>(vld1_u8(kMask), kGlobalAlpha));
        kMask += LANES;
    }
    void Skip(Tov_UInt uiCount) { kMask += uiCount; }
};

//! A colour for each pixel, taken as opaque.
struct MixMaskRule
{
    const Kanvo_PixelARGB32* kSrc;
    const Kanvo_PixelA8*     kMask;

    KANVO_INLINE void operator()(Channels& kDst)
    {
        Channels kSource   = Load(kSrc);
        kSource.val[ALPHA] = vdup_n_u8(255);
        MixByCover(kDst, kSource, vld1_u8(kMask));
        kSrc += LANES;
        kMask += LANES;
    }
    void Skip(Tov_UInt uiCount)
    {
        kSrc += uiCount;
        kMask += uiCount;
    }
};

// ---- rows -----------------------------------------------------------------------------------------------------------

//! Draws a row of eight pixels or more that shares no memory with its source. The last eight are calculated before
//! anything is written and stored at the end, over some that are there already, with the same value: so there is no
//! remainder to be drawn singly.
template <class Rule>
KANVO_INLINE void DrawRow(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Rule kRule)
{
    const Kanvo_OffsetARGB32 kLast   = kDst + (uiCount - LANES);
    Rule                     kAtLast = kRule;
    kAtLast.Skip(uiCount - LANES);
    Channels kEnd = Load(kLast);
    kAtLast(kEnd);
    for (; kDst < kLast; kDst += LANES)
    {
        Channels kPixels = Load(kDst);
        kRule(kPixels);
        Store(kDst, kPixels);
    }
    Store(kLast, kEnd);
}

//! The same by a rule for a global alpha.
template <template <bool SCALED> class Rule, class... Sources>
KANVO_INLINE void DrawRowAt(Tov_UByte ubAlpha, Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, const Sources&... kSources)
{
    if (ubAlpha == 255)
    {
        DrawRow(kDst, uiCount, Rule<false>{kSources..., vdup_n_u8(255)});
    }
    else
    {
        DrawRow(kDst, uiCount, Rule<true>{kSources..., vdup_n_u8(ubAlpha)});
    }
}

//! Moves a row of eight pixels or more that shares no memory with its source: kMoveEight(to, from) does it for eight. The
//! last ones may be moved twice.
template <class DstPixel, class SrcPixel, class MoveEight>
KANVO_INLINE void MoveRow(DstPixel* kDst, const SrcPixel* kSrc, Tov_UInt uiCount, MoveEight kMoveEight)
{
    const Tov_UInt uiLast = uiCount - LANES;
    for (Tov_UInt uiX = 0; uiX < uiLast; uiX += LANES)
    {
        kMoveEight(kDst + uiX, kSrc + uiX);
    }
    kMoveEight(kDst + uiLast, kSrc + uiLast);
}

//! Whether a row must be left to the portable body.
template <class... SrcPixels>
KANVO_INLINE Tov_Bool IsOrdinary(Tov_UInt uiCount, [[maybe_unused]] const Kanvo_PixelARGB32* kDst,
                                 const SrcPixels*... kSrc)
{
    return uiCount >= LANES && !(Kanvo_RowsOverlap(kDst, kSrc, uiCount) || ...);
}

struct RowsNEON : Kanvo_RowsReference  // who has what is not here
{
    static KANVO_INLINE void Fill(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_PixelARGB32 pxPixel)
    {
        if (uiCount < LANES)
        {
            Kanvo_RowsReference::Fill(kDst, uiCount, pxPixel);
            return;
        }
        const uint32x4_t         kPixels = vdupq_n_u32(pxPixel);
        const Kanvo_OffsetARGB32 kLast   = kDst + (uiCount - LANES);
        for (; kDst < kLast; kDst += LANES)
        {
            StoreEight(kDst, kPixels);
        }
        StoreEight(kLast, kPixels);
    }

    static KANVO_INLINE void FillMix(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_ColorARGB32 clColor,
                                     Tov_UByte ubAlpha)
    {
        if (ubAlpha == 255)
        {
            Fill(kDst, uiCount, clColor);
        }
        else if (IsOrdinary(uiCount, kDst))
        {
            DrawRow(kDst, uiCount, MixColorEvenlyRule(clColor, ubAlpha, ubAlpha));
        }
        else
        {
            Kanvo_RowsReference::FillMix(kDst, uiCount, clColor, ubAlpha);
        }
    }

    static KANVO_INLINE void CopyBytes(void* pDst, const void* pSrc, Tov_UInt uiBytes)
    {
        Kanvo_RowsReference::CopyBytes(pDst, pSrc, uiBytes);
    }

    static KANVO_INLINE void Copy(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount)
    {
        if (!IsOrdinary(uiCount, kDst, kSrc))
        {
            Kanvo_RowsReference::Copy(kDst, kSrc, uiCount);
            return;
        }
        MoveRow(kDst, kSrc, uiCount,
                [](Kanvo_OffsetARGB32 kTo, const Kanvo_PixelARGB32* kFrom)
                {
                    const uint32x4_t kLow  = vld1q_u32(kFrom);
                    const uint32x4_t kHigh = vld1q_u32(kFrom + 4);
                    vst1q_u32(kTo, kLow);
                    vst1q_u32(kTo + 4, kHigh);
                });
    }

    static KANVO_INLINE void CopyOpaque(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount)
    {
        if (!IsOrdinary(uiCount, kDst, kSrc))
        {
            Kanvo_RowsReference::CopyOpaque(kDst, kSrc, uiCount);
            return;
        }
        const uint32x4_t kOpaque = vdupq_n_u32(0xFF000000U);
        MoveRow(kDst, kSrc, uiCount,
                [kOpaque](Kanvo_OffsetARGB32 kTo, const Kanvo_PixelARGB32* kFrom)
                {
                    const uint32x4_t kLow  = vorrq_u32(vld1q_u32(kFrom), kOpaque);
                    const uint32x4_t kHigh = vorrq_u32(vld1q_u32(kFrom + 4), kOpaque);
                    vst1q_u32(kTo, kLow);
                    vst1q_u32(kTo + 4, kHigh);
                });
    }

    static KANVO_INLINE Tov_Bool IsOpaque(const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount)
    {
        if (uiCount < LANES)
        {
            return Kanvo_RowsReference::IsOpaque(kSrc, uiCount);
        }
        const Kanvo_PixelARGB32* const kLast = kSrc + (uiCount - LANES);
        uint32x4_t                     kAll  = vandq_u32(vld1q_u32(kLast), vld1q_u32(kLast + 4));
        for (; kSrc < kLast; kSrc += LANES)
        {
            kAll = vandq_u32(kAll, vandq_u32(vld1q_u32(kSrc), vld1q_u32(kSrc + 4)));
        }
        const uint32x2_t kHalf = vand_u32(vget_low_u32(kAll), vget_high_u32(kAll));
        return (vget_lane_u32(kHalf, 0) & vget_lane_u32(kHalf, 1)) >= 0xFF000000U;
    }

    static KANVO_INLINE void TakeAlpha(Kanvo_PixelA8* kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount)
    {
        if (!IsOrdinary(uiCount, kSrc, kDst))
        {
            Kanvo_RowsReference::TakeAlpha(kDst, kSrc, uiCount);
            return;
        }
        MoveRow(kDst, kSrc, uiCount,
                [](Kanvo_PixelA8* kTo, const Kanvo_PixelARGB32* kFrom) { vst1_u8(kTo, Load(kFrom).val[ALPHA]); });
    }

    static KANVO_INLINE void Over(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount,
                                  Tov_UByte ubAlpha)
    {
        if (!IsOrdinary(uiCount, kDst, kSrc))
        {
            Kanvo_RowsReference::Over(kDst, kSrc, uiCount, ubAlpha);
        }
        else
        {
            DrawRowAt<OverRule>(ubAlpha, kDst, uiCount, kSrc);
        }
    }

    static KANVO_INLINE void BlendOrStore(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount,
                                          Tov_UByte ubAlpha)
    {
        if (!IsOrdinary(uiCount, kDst, kSrc))
        {
            Kanvo_RowsReference::BlendOrStore(kDst, kSrc, uiCount, ubAlpha);
        }
        else
        {
            DrawRowAt<BlendOrStoreRule>(ubAlpha, kDst, uiCount, kSrc);
        }
    }

    static KANVO_INLINE void Stamp(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiCount,
                                   Tov_UByte ubAlpha)
    {
        if (IsOrdinary(uiCount, kDst, kSrc))
        {
            DrawRow(kDst, uiCount, StampRule{kSrc, vdup_n_u8(ubAlpha)});
        }
        else
        {
            Kanvo_RowsReference::Stamp(kDst, kSrc, uiCount, ubAlpha);
        }
    }

    static KANVO_INLINE void BlendColor(Kanvo_OffsetARGB32 kDst, Tov_UInt uiCount, Kanvo_ColorARGB32 clColor,
                                        Tov_UByte ubAlpha)
    {
        if (IsOrdinary(uiCount, kDst))
        {
            // w / 128 as 2 w / 256
            DrawRow(kDst, uiCount, MixColorEvenlyRule(clColor, static_cast<Tov_UByte>(ubAlpha & 0xFEU), ubAlpha));
        }
        else
        {
            Kanvo_RowsReference::BlendColor(kDst, uiCount, clColor, ubAlpha);
        }
    }

    static KANVO_INLINE void ConvertA8(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kSrc, Tov_UInt uiCount,
                                       Kanvo_PixelARGB32 pxSet)
    {
        if (!IsOrdinary(uiCount, kDst, kSrc))
        {
            Kanvo_RowsReference::ConvertA8(kDst, kSrc, uiCount, pxSet);
            return;
        }
        const Channels kSet = Splat(pxSet);
        MoveRow(kDst, kSrc, uiCount,
                [kSet](Kanvo_OffsetARGB32 kTo, const Kanvo_PixelA8* kFrom)
                {
                    const Channel kGrey = vld1_u8(kFrom);
                    Channels      kPixels;
                    kPixels.val[0]     = vorr_u8(kGrey, kSet.val[0]);
                    kPixels.val[1]     = vorr_u8(kGrey, kSet.val[1]);
                    kPixels.val[2]     = vorr_u8(kGrey, kSet.val[2]);
                    kPixels.val[ALPHA] = vorr_u8(kGrey, kSet.val[ALPHA]);
                    Store(kTo, kPixels);
                });
    }

    static KANVO_INLINE void Convert565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiCount)
    {
        if (!IsOrdinary(uiCount, kDst, kSrc))
        {
            Kanvo_RowsReference::Convert565(kDst, kSrc, uiCount);
            return;
        }
        Channels kPixels;
        kPixels.val[ALPHA] = vdup_n_u8(255);
        MoveRow(kDst, kSrc, uiCount,
                [kPixels](Kanvo_OffsetARGB32 kTo, const Kanvo_PixelRGB565* kFrom) mutable
                {
                    Expand565(kPixels, vld1q_u16(kFrom));
                    Store(kTo, kPixels);
                });
    }

    static KANVO_INLINE void Over565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiCount,
                                     Tov_UByte ubAlpha)
    {
        if (IsOrdinary(uiCount, kDst, kSrc))
        {
            // of an opaque source both weights are the global alpha
            DrawRow(kDst, uiCount, Over565Rule{kSrc, vdup_n_u8(ubAlpha)});
        }
        else
        {
            Kanvo_RowsReference::Over565(kDst, kSrc, uiCount, ubAlpha);
        }
    }

    static KANVO_INLINE void StoreMask565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc,
                                          const Kanvo_PixelA8* kMask, Tov_UInt uiCount)
    {
        if (IsOrdinary(uiCount, kDst, kSrc, kMask))
        {
            DrawRow(kDst, uiCount, StoreMask565Rule{kSrc, kMask});
        }
        else
        {
            Kanvo_RowsReference::StoreMask565(kDst, kSrc, kMask, uiCount);
        }
    }

    static KANVO_INLINE void BlendMask565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc,
                                          const Kanvo_PixelA8* kMask, Tov_UInt uiCount, Tov_UByte ubAlpha)
    {
        if (!IsOrdinary(uiCount, kDst, kSrc, kMask))
        {
            Kanvo_RowsReference::BlendMask565(kDst, kSrc, kMask, uiCount, ubAlpha);
        }
        else
        {
            DrawRowAt<BlendMask565Rule>(ubAlpha, kDst, uiCount, kSrc, kMask);
        }
    }

    static KANVO_INLINE void BlendMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc,
                                       const Kanvo_PixelA8* kMask, Tov_UInt uiCount, Tov_UByte ubAlpha)
    {
        if (!IsOrdinary(uiCount, kDst, kSrc, kMask))
        {
            Kanvo_RowsReference::BlendMask(kDst, kSrc, kMask, uiCount, ubAlpha);
        }
        else
        {
            DrawRowAt<BlendMaskRule>(ubAlpha, kDst, uiCount, kSrc, kMask);
        }
    }

    static KANVO_INLINE void MixMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, const Kanvo_PixelA8* kMask,
                                     Tov_UInt uiCount)
    {
        if (IsOrdinary(uiCount, kDst, kSrc, kMask))
        {
            DrawRow(kDst, uiCount, MixMaskRule{kSrc, kMask});
        }
        else
        {
            Kanvo_RowsReference::MixMask(kDst, kSrc, kMask, uiCount);
        }
    }

    static KANVO_INLINE void ColorMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kMask, Tov_UInt uiCount,
                                       Kanvo_ColorARGB32 clColor, Tov_UByte ubAlpha)
    {
        if (!IsOrdinary(uiCount, kDst, kMask))
        {
            Kanvo_RowsReference::ColorMask(kDst, kMask, uiCount, clColor, ubAlpha);
        }
        else
        {
            DrawRowAt<MixColorRule>(ubAlpha, kDst, uiCount, Splat(clColor), kMask);
        }
    }

private:
    static KANVO_INLINE void StoreEight(Kanvo_OffsetARGB32 kTo, uint32x4_t kPixels)
    {
        vst1q_u32(kTo, kPixels);
        vst1q_u32(kTo + 4, kPixels);
    }
};

}  // namespace

constexpr Kanvo_LevelBodies g_Kanvo_kBodiesNEON = Kanvo_LevelBodies::Of<RowsNEON>(KL_NEON);

#endif
