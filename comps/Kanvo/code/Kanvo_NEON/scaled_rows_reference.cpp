// scaled_rows_reference: the portable bodies of the rows of samples, and the pointer to those in force.
#include "scaled_rows.h"

namespace
{

//! Stores kSample(offset, fraction x, fraction y) for each sample of a line.
template <class Src, class Sample>
KANVO_INLINE void ForLine(typename Src::Pixel* kTo, Kanvo_SampleLine kLine, Tov_UInt uiCount, Sample kSample)
{
    typename Src::Offset kOffset;
    if (kLine.uiStepY == 0)
    {
        typename Src::Offset kRow;
        Src::GetOffset(&kLine.kSource, 0, kLine.uiY >> 16, kRow);
        const auto ubFracY = static_cast<Tov_UByte>(kLine.uiY >> 8);
        for (; uiCount > 0; --uiCount)
        {
            *kTo++ = kSample(kRow + (kLine.uiX >> 16), static_cast<Tov_UByte>(kLine.uiX >> 8), ubFracY);
            kLine.uiX += kLine.uiStepX;
        }
        return;
    }
    for (; uiCount > 0; --uiCount)
    {
        Src::GetOffset(&kLine.kSource, kLine.uiX >> 16, kLine.uiY >> 16, kOffset);
        *kTo++ = kSample(kOffset, static_cast<Tov_UByte>(kLine.uiX >> 8), static_cast<Tov_UByte>(kLine.uiY >> 8));
        kLine.Advance(1);
    }
}

template <class Src>
KANVO_INLINE void Nearest(typename Src::Pixel* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
{
    ForLine<Src>(kTo, kLine, uiCount,
                 [](typename Src::Offset kFrom, Tov_UByte /*ubFracX*/, Tov_UByte /*ubFracY*/)
                 { return Src::GetPixel(kFrom); });
}

template <class Src>
KANVO_INLINE void Filter(typename Src::Pixel* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
{
    const Kanvo_PixelView kSource = kLine.kSource;
    ForLine<Src>(kTo, kLine, uiCount,
                 [kSource](typename Src::Offset kFrom, Tov_UByte ubFracX, Tov_UByte ubFracY)
                 { return Src::Blend4(&kSource, kFrom, ubFracX, ubFracY); });
}

constexpr Kanvo_ScaledRowFunctions PORTABLE = Kanvo_ScaledRowFunctions::Of<Kanvo_ScaledRowsReference>();

}  // namespace

void Kanvo_ScaledRowsReference::NearestWords(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount,
                                             Tov_UInt uiSet)
{
    using Src = Kanvo_PixelARGB32_Access;
    ForLine<Src>(kTo, kLine, uiCount,
                 [uiSet](const Src::Pixel* kFrom, Tov_UByte /*ubFracX*/, Tov_UByte /*ubFracY*/)
                 { return *kFrom | uiSet; });
}

void Kanvo_ScaledRowsReference::Nearest565(Kanvo_PixelRGB565* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
{
    Nearest<Kanvo_PixelRGB565_Access>(kTo, kLine, uiCount);
}

void Kanvo_ScaledRowsReference::NearestA8(Kanvo_PixelA8* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
{
    Nearest<Kanvo_PixelA8_Access>(kTo, kLine, uiCount);
}

void Kanvo_ScaledRowsReference::FilterWords(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount,
                                            Tov_UInt uiKeep)
{
    using Src                     = Kanvo_PixelARGB32_Access;
    const Kanvo_PixelView kSource = kLine.kSource;
    ForLine<Src>(kTo, kLine, uiCount,
                 [kSource, uiKeep](Src::Offset kFrom, Tov_UByte ubFracX, Tov_UByte ubFracY)
                 { return Src::Blend4(&kSource, kFrom, ubFracX, ubFracY) & uiKeep; });
}

void Kanvo_ScaledRowsReference::Filter565(Kanvo_PixelRGB565* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
{
    Filter<Kanvo_PixelRGB565_Access>(kTo, kLine, uiCount);
}

void Kanvo_ScaledRowsReference::FilterA8(Kanvo_PixelA8* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
{
    Filter<Kanvo_PixelA8_Access>(kTo, kLine, uiCount);
}

void Kanvo_ScaledRowsReference::MixAlong(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount)
{
    using Src = Kanvo_PixelARGB32_Access;
    ForLine<Src>(kTo, kLine, uiCount,
                 [](Src::Offset kFrom, Tov_UByte ubFracX, Tov_UByte /*ubFracY*/)
                 { return Kanvo_MixWord(kFrom[0], kFrom[1], ubFracX >> 1); });
}

void Kanvo_ScaledRowsReference::MixBetween(Kanvo_PixelARGB32* kTo, const Kanvo_PixelARGB32* kTop,
                                           const Kanvo_PixelARGB32* kBottom, Tov_UInt uiCount, Tov_UByte ubFracY,
                                           Tov_UInt uiKeep)
{
    for (Tov_UInt uiX = 0; uiX < uiCount; ++uiX)
    {
        kTo[uiX] = Kanvo_MixWord(kTop[uiX], kBottom[uiX], ubFracY >> 1) & uiKeep;
    }
}

// Initialised before any code runs: addresses of functions are constants.
const Kanvo_ScaledRowFunctions* g_Kanvo_pkScaledRows = &PORTABLE;

void Kanvo_InstallScaledRows([[maybe_unused]] Kanvo_Level eLevel)
{
    g_Kanvo_pkScaledRows = &PORTABLE;
#if KANVO_HAS_NEON
    if (eLevel == KL_NEON)
    {
        g_Kanvo_pkScaledRows = &g_Kanvo_kScaledRowsNEON;
    }
#endif
#if KANVO_HAS_AVX2
    if (eLevel == KL_AVX2)
    {
        g_Kanvo_pkScaledRows = &g_Kanvo_kScaledRowsAVX2;
    }
#endif
}
