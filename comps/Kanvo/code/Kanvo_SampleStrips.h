// Kanvo_SampleStrips: draws lines of samples, strip by strip: sampled into a small buffer by a function of scaled_rows,
// drawn from there by a row function (rows.h). Scaled and rotated blits bring the lines; here is what is common to both.
//
// A bitmap may be its own source. Pixels are drawn from left to right, each sampled after the one before it was written;
// where a line's samples share memory with what is drawn, strips are therefore one pixel long.
#ifndef KANVO_SAMPLESTRIPS_H
#define KANVO_SAMPLESTRIPS_H

#include <algorithm>

#include "Kanvo_BitmapRGB32.h"
#include "rows.h"
#include "scaled_rows.h"

//! Samples of one format. bOpaque: words get an alpha of 255; for those that are not filtered.
template <class Src>
struct Kanvo_SampleLines
{
    using Pixel = typename Src::Pixel;

    //! Of a filtered word: the mix of RGB32 has no top byte.
    static constexpr Tov_UInt KEPT_BITS = std::is_same_v<Src, Kanvo_PixelRGB32_Access> ? 0x00FFFFFFU : 0xFFFFFFFFU;

    Tov_Bool bBilinear;
    Tov_Bool bOpaque;

    void operator()(Pixel* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount) const
    {
        const Kanvo_ScaledRowFunctions& kRows = *g_Kanvo_pkScaledRows;
        // NOLINTBEGIN(bugprone-branch-clone): what is no branch of this format looks empty
        if (uiCount < KANVO_FEW_PIXELS)
        {
            Few(kTo, kLine, uiCount);
        }
        else if constexpr (std::is_same_v<Pixel, Kanvo_PixelRGB565>)
        {
            (bBilinear ? kRows.pfnFilter565 : kRows.pfnNearest565)(kTo, kLine, uiCount);
        }
        else if constexpr (std::is_same_v<Pixel, Kanvo_PixelA8>)
        {
            (bBilinear ? kRows.pfnFilterA8 : kRows.pfnNearestA8)(kTo, kLine, uiCount);
        }
        else if (bBilinear)
        {
            kRows.pfnFilterWords(kTo, kLine, uiCount, KEPT_BITS);
        }
        else
        {
            kRows.pfnNearestWords(kTo, kLine, uiCount, bOpaque ? 0xFF000000U : 0U);
        }
        // NOLINTEND(bugprone-branch-clone)
    }

    //! One sample, without a call.
    KANVO_INLINE Pixel One(const Kanvo_PixelView& kSource, Tov_UInt uiX, Tov_UInt uiY) const
    {
        typename Src::Offset kFrom;
        Src::GetOffset(&kSource, uiX >> 16, uiY >> 16, kFrom);
        if (bBilinear)
        {
            return Src::Blend4(&kSource, kFrom, static_cast<Tov_UByte>(uiX >> 8), static_cast<Tov_UByte>(uiY >> 8));
        }
        if constexpr (std::is_same_v<Pixel, Kanvo_PixelARGB32>)
        {
            return Src::GetPixel(kFrom) | (bOpaque ? 0xFF000000U : 0U);
        }
        else
        {
            return Src::GetPixel(kFrom);
        }
    }

    //! How many samples of a line may be read before the first is drawn.
    KANVO_INLINE Tov_UInt MostAtOnce(const Kanvo_SampleLine& kLine, Tov_UInt uiCount,
                                     const Kanvo_PixelARGB32* kDst) const
    {
        return Shares(kLine, uiCount, kDst) ? 1 : uiCount;
    }

    //! Whether the bytes from the first to the last one that the samples are made of touch what is drawn.
    Tov_Bool Shares(const Kanvo_SampleLine& kLine, Tov_UInt uiCount, const Kanvo_PixelARGB32* kDst) const
    {
        const Tov_UInt uiReach = bBilinear ? 1 : 0;
        const Tov_UInt uiX1    = kLine.uiX >> 16;
        const Tov_UInt uiX2    = (kLine.uiX + (uiCount - 1) * kLine.uiStepX) >> 16;
        const Tov_UInt uiY1    = kLine.uiY >> 16;
        const Tov_UInt uiY2    = (kLine.uiY + (uiCount - 1) * kLine.uiStepY) >> 16;

        typename Src::Offset kFirst;
        typename Src::Offset kLast;
        Src::GetOffset(&kLine.kSource, std::min(uiX1, uiX2), std::min(uiY1, uiY2), kFirst);
        Src::GetOffset(&kLine.kSource, std::max(uiX1, uiX2) + uiReach, std::max(uiY1, uiY2) + uiReach, kLast);
        return reinterpret_cast<std::uintptr_t>(kFirst) < reinterpret_cast<std::uintptr_t>(kDst + uiCount) &&
               reinterpret_cast<std::uintptr_t>(kDst) < reinterpret_cast<std::uintptr_t>(kLast + 1);
    }

private:
    //! Sooner than a function is called.
    KANVO_INLINE void Few(Pixel* kTo, Kanvo_SampleLine kLine, Tov_UInt uiCount) const
    {
        for (; uiCount > 0; --uiCount)
        {
            *kTo++ = One(kLine.kSource, kLine.uiX, kLine.uiY);
            kLine.Advance(1);
        }
    }
};

//! Whether two bitmaps may share memory: then their lines do, or not.
inline Tov_Bool Kanvo_BitmapsOverlap(const Kanvo_Bitmap* pkA, const Kanvo_Bitmap* pkB)
{
    const auto kEnd = [](const Kanvo_Bitmap* pkBitmap)
    {
        return reinterpret_cast<std::uintptr_t>(pkBitmap->GetBuffer()) +
               static_cast<std::uintptr_t>(pkBitmap->GetHeight()) * pkBitmap->GetPitch();
    };
    return reinterpret_cast<std::uintptr_t>(pkA->GetBuffer()) < kEnd(pkB) &&
           reinterpret_cast<std::uintptr_t>(pkB->GetBuffer()) < kEnd(pkA);
}

//! Calls kStrip(first pixel drawn, sample line, samples) until a line of uiCount is through.
template <class Strip>
KANVO_INLINE void Kanvo_ForStrips(Kanvo_OffsetARGB32 kDst, Kanvo_SampleLine kLine, Tov_UInt uiCount, Tov_UInt uiMost,
                                  Strip kStrip)
{
    while (uiCount > 0)
    {
        const Tov_UInt uiStrip = std::min(uiCount, uiMost);
        kStrip(kDst, kLine, uiStrip);
        kDst += uiStrip;
        kLine.Advance(uiStrip);
        uiCount -= uiStrip;
    }
}

// ---- how strips are drawn: writers, called with (first pixel drawn, samples, number of samples) -----------------------

//! One pixel after the other by a rule for one: kRule(destination offset, sample).
template <class Rule>
struct Kanvo_WriteEach
{
    Rule kRule;

    template <class SrcPixel>
    KANVO_INLINE void operator()(Kanvo_OffsetARGB32 kDst, const SrcPixel* kSamples, Tov_UInt uiCount) const
    {
        for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
        {
            kRule(kDst + uiX, kSamples[uiX]);
        }
    }
};
template <class Rule>
Kanvo_WriteEach(Rule) -> Kanvo_WriteEach<Rule>;

//! Blends words by their own alpha times ubAlpha.
struct Kanvo_WriteOver
{
    Tov_UByte ubAlpha;

    KANVO_INLINE void operator()(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSamples, Tov_UInt uiCount) const
    {
        g_Kanvo_pkRows->pfnOver(kDst, kSamples, uiCount, ubAlpha);
    }
};

//! RGB565: stored, or below full opacity blended.
struct Kanvo_Write565
{
    Tov_UByte ubAlpha;

    KANVO_INLINE void operator()(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSamples, Tov_UInt uiCount) const
    {
        if (ubAlpha != 255)
        {
            g_Kanvo_pkRows->pfnOver565(kDst, kSamples, uiCount, ubAlpha);
        }
        else
        {
            g_Kanvo_pkRows->pfnConvert565(kDst, kSamples, uiCount);
        }
    }
};

//! Coverage as grey: stored, or below full opacity blended. bOpaque: with alpha 255, otherwise that of the coverage.
struct Kanvo_WriteGrey
{
    Tov_UByte ubAlpha;
    Tov_Bool  bOpaque;

    void operator()(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kSamples, Tov_UInt uiCount) const
    {
        Kanvo_PixelARGB32        aGrey[KANVO_STRIP];
        const Kanvo_OffsetARGB32 kTo   = ubAlpha != 255 ? aGrey : kDst;
        const Tov_UInt           uiSet = bOpaque ? 0xFF000000U : 0U;
        for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
        {
            kTo[uiX] = (kSamples[uiX] * 0x01010101U) | uiSet;
        }
        if (ubAlpha != 255)
        {
            g_Kanvo_pkRows->pfnOver(kDst, aGrey, uiCount, ubAlpha);
        }
    }
};

//! A strip of samples as coverages.
template <class Src>
class Kanvo_StripCover
{
public:
    KANVO_INLINE const Kanvo_PixelA8* Of(const typename Src::Pixel* kSamples, Tov_UInt uiCount)
    {
        if constexpr (std::is_same_v<Src, Kanvo_PixelA8_Access>)
        {
            return kSamples;
        }
        else
        {
            for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
            {
                m_aCover[uiX] = Src::AlphaFromPixel(kSamples[uiX]);
            }
            return m_aCover;
        }
    }

private:
    Kanvo_PixelA8 m_aCover[std::is_same_v<Src, Kanvo_PixelA8_Access> ? 1 : KANVO_STRIP];
};

//! One colour, blended by the samples' alpha times ubAlpha, as BlendPixel. Half a strip of it lies ready.
template <class Src>
class Kanvo_WriteColor
{
public:
    Kanvo_WriteColor(Kanvo_PixelARGB32 pxColor, Tov_UByte ubAlpha) : m_ubAlpha(ubAlpha)
    {
        std::fill_n(m_aColor, READY, pxColor);
    }

    void operator()(Kanvo_OffsetARGB32 kDst, const typename Src::Pixel* kSamples, Tov_UInt uiCount) const
    {
        Kanvo_StripCover<Src> kCover;
        const Kanvo_PixelA8*  kMask = kCover.Of(kSamples, uiCount);
        for (; uiCount > READY; uiCount -= READY, kDst += READY, kMask += READY)
        {
            g_Kanvo_pkRows->pfnBlendMask(kDst, m_aColor, kMask, READY, m_ubAlpha);
        }
        g_Kanvo_pkRows->pfnBlendMask(kDst, m_aColor, kMask, uiCount, m_ubAlpha);
    }

private:
    static constexpr Tov_UInt READY = KANVO_STRIP / 2;

    Kanvo_PixelARGB32 m_aColor[READY];
    Tov_UByte         m_ubAlpha;
};

// ---- a line of samples drawn ------------------------------------------------------------------------------------------

//! Words stored as they are sampled.
template <class Src>
KANVO_INLINE void Kanvo_StoreSamples(Kanvo_OffsetARGB32 kDst, const Kanvo_SampleLine& kLine, Tov_UInt uiCount,
                                     const Kanvo_SampleLines<Src>& kSampler)
{
    Kanvo_ForStrips(kDst, kLine, uiCount, kSampler.MostAtOnce(kLine, uiCount, kDst), kSampler);
}

//! Samples handed to a writer.
template <class Src, class Writer>
KANVO_INLINE void Kanvo_DrawSamples(Kanvo_OffsetARGB32 kDst, const Kanvo_SampleLine& kLine, Tov_UInt uiCount,
                                    const Kanvo_SampleLines<Src>& kSampler, const Writer& kWriter)
{
    const Tov_UInt uiMost = std::min(kSampler.MostAtOnce(kLine, uiCount, kDst), KANVO_STRIP);
    Kanvo_ForStrips(kDst, kLine, uiCount, uiMost,
                    [&](Kanvo_OffsetARGB32 kTo, const Kanvo_SampleLine& kFrom, Tov_UInt uiStrip)
                    {
                        typename Src::Pixel aSamples[KANVO_STRIP];
                        kSampler(aSamples, kFrom, uiStrip);
                        kWriter(kTo, aSamples, uiStrip);
                    });
}

//! Samples, converted by kConvert where they are no words, blended by those at the same places of a map, times ubAlpha,
//! as BlendPixel.
template <class Src, class Map, class Convert>
KANVO_INLINE void Kanvo_DrawThroughMap(Kanvo_OffsetARGB32 kDst, const Kanvo_SampleLine& kLine,
                                       const Kanvo_PixelView& kMap, Tov_UInt uiCount, Tov_Bool bBilinear,
                                       Tov_UByte ubAlpha, Convert kConvert)
{
    const auto kOnMap = [&kMap](Kanvo_SampleLine kOther)
    {
        kOther.kSource = kMap;
        return kOther;
    };
    const Kanvo_SampleLines<Src> kSampler{bBilinear, false};
    const Kanvo_SampleLines<Map> kMapSampler{bBilinear, false};
    const Tov_UInt               uiSource = kSampler.MostAtOnce(kLine, uiCount, kDst);
    const Tov_UInt               uiMap    = kMapSampler.MostAtOnce(kOnMap(kLine), uiCount, kDst);
    const Tov_UInt               uiMost   = std::min({uiSource, uiMap, KANVO_STRIP});
    Kanvo_ForStrips(kDst, kLine, uiCount, uiMost,
                    [&](Kanvo_OffsetARGB32 kTo, const Kanvo_SampleLine& kFrom, Tov_UInt uiStrip)
                    {
                        typename Src::Pixel   aSamples[KANVO_STRIP];
                        typename Map::Pixel   aMap[KANVO_STRIP];
                        Kanvo_StripCover<Map> kCover;
                        kSampler(aSamples, kFrom, uiStrip);
                        kMapSampler(aMap, kOnMap(kFrom), uiStrip);
                        const Kanvo_PixelA8* const kMask = kCover.Of(aMap, uiStrip);
                        if constexpr (std::is_same_v<typename Src::Pixel, Kanvo_PixelARGB32>)
                        {
                            g_Kanvo_pkRows->pfnBlendMask(kTo, aSamples, kMask, uiStrip, ubAlpha);
                        }
                        else
                        {
                            Kanvo_PixelARGB32 aWords[KANVO_STRIP];
                            for (Tov_UInt uiX = 0; uiX < uiStrip; ++uiX)
                            {
                                aWords[uiX] = kConvert(aSamples[uiX]);
                            }
                            g_Kanvo_pkRows->pfnBlendMask(kTo, aWords, kMask, uiStrip, ubAlpha);
                        }
                    });
}

#endif
