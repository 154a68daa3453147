// scaled_rows: rows of samples: what scaled and rotated blits read of a source, many pixels side by side, nearest or
// filtered. Kanvo_ScaledRowsReference is the portable body and the truth that any faster one is held to, byte for byte;
// scaled_rows_avx2 and scaled_rows_neon hold those for which there is one. What becomes of the samples is the business of Kanvo_SampleStrips,
// who calls through g_Kanvo_pkScaledRows.
//
// All samples are read before any is promised to be written: kTo shares no memory with them, or the count is 1.
#ifndef KANVO_SCALED_ROWS_H
#define KANVO_SCALED_ROWS_H

#include "rows.h"

//! A straight line of samples through a bitmap. Positions and steps are 16.16 and wrap around, so that a step may go
//! backwards; the pixels sampled lie inside the bitmap, and where the samples are filtered their 2x2 blocks do.
struct Kanvo_SampleLine
{
    Kanvo_PixelView kSource;
    Tov_UInt        uiX;
    Tov_UInt        uiY;
    Tov_UInt        uiStepX;
    Tov_UInt        uiStepY;

    KANVO_INLINE void Advance(Tov_UInt uiSamples)
    {
        uiX += uiSamples * uiStepX;
        uiY += uiSamples * uiStepY;
    }

    //! Whether it goes along a row by two pixels exactly, as in a picture drawn at half its size: samples, and blocks, lie
    //! side by side then, and fractions are equal.
    KANVO_INLINE Tov_Bool IsHalving() const { return uiStepX == 0x20000U && uiStepY == 0; }
};

struct Kanvo_ScaledRowsReference
{
    //! Stores the pixels that hold the positions, the bits of uiSet set.
    static void NearestWords(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount, Tov_UInt uiSet);
    static void Nearest565(Kanvo_PixelRGB565* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount);
    static void NearestA8(Kanvo_PixelA8* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount);

    //! Stores Blend4 at the positions; of words the bits of uiKeep, and 0 in the others.
    static void FilterWords(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount, Tov_UInt uiKeep);
    static void Filter565(Kanvo_PixelRGB565* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount);
    static void FilterA8(Kanvo_PixelA8* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount);

    //! The two halves of FilterWords. A mix along a row is rounded before rows are mixed, and does not depend on where
    //! between the rows a sample lies: the first half of a row may serve several rows drawn.
    static void MixAlong(Kanvo_PixelARGB32* kTo, const Kanvo_SampleLine& kLine, Tov_UInt uiCount);
    static void MixBetween(Kanvo_PixelARGB32* kTo, const Kanvo_PixelARGB32* kTop, const Kanvo_PixelARGB32* kBottom,
                           Tov_UInt uiCount, Tov_UByte ubFracY, Tov_UInt uiKeep);
};

//! The functions of one level as pointers.
struct Kanvo_ScaledRowFunctions
{
    decltype(&Kanvo_ScaledRowsReference::NearestWords) pfnNearestWords;
    decltype(&Kanvo_ScaledRowsReference::Nearest565)   pfnNearest565;
    decltype(&Kanvo_ScaledRowsReference::NearestA8)    pfnNearestA8;
    decltype(&Kanvo_ScaledRowsReference::FilterWords)  pfnFilterWords;
    decltype(&Kanvo_ScaledRowsReference::Filter565)    pfnFilter565;
    decltype(&Kanvo_ScaledRowsReference::FilterA8)     pfnFilterA8;
    decltype(&Kanvo_ScaledRowsReference::MixAlong)     pfnMixAlong;
    decltype(&Kanvo_ScaledRowsReference::MixBetween)   pfnMixBetween;

    //! Rows: Kanvo_ScaledRowsReference, or a struct with the same functions.
    template <class Rows>
    static constexpr Kanvo_ScaledRowFunctions Of()
    {
        return {&Rows::NearestWords, &Rows::Nearest565, &Rows::NearestA8, &Rows::FilterWords,
                &Rows::Filter565,    &Rows::FilterA8,   &Rows::MixAlong,  &Rows::MixBetween};
    }
};

//! The functions of the level in force (Kanvo_Level.h). Never null.
extern const Kanvo_ScaledRowFunctions* g_Kanvo_pkScaledRows;

//! Puts those of a level in force, which this machine must be able to run. Called where a level is selected.
void Kanvo_InstallScaledRows(Kanvo_Level eLevel);

// Each exists where its KANVO_HAS_ is 1.
extern const Kanvo_ScaledRowFunctions g_Kanvo_kScaledRowsNEON;
extern const Kanvo_ScaledRowFunctions g_Kanvo_kScaledRowsAVX2;

#endif
