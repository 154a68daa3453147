// Tests of the byte tables: that they are what tools/make_tables.py makes, and what is required of them.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "Kanvo_Tables.h"
#include "Reference_Line.h"

TEST(Tables, AreThoseOfTheirGenerator)
{
    if (std::system(nullptr) == 0) GTEST_SKIP() << "there are no processes here";
    const std::string command = std::string("python3 \"") + KANVO_SOURCE_DIR + "/tools/make_tables.py\" --check";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
}

TEST(Tables, TheFilterIsTheOneThatWasMeasured)
{
    for (int index = 0; index < 65; ++index) EXPECT_EQ(g_Kanvo_ubFilter[index], reference::FilterTap(index)) << index;
}

TEST(Tables, FourTapsOfAnyPhaseAreOnePixel)
{
    for (int phase = 0; phase < 32; ++phase)
    {
        const int sum = g_Kanvo_ubFilter[phase + 32] + g_Kanvo_ubFilter[phase] + g_Kanvo_ubFilter[32 - phase] +
                        g_Kanvo_ubFilter[64 - phase];
        EXPECT_EQ(sum, phase == 16 ? 256 : 255) << phase;
        // centred 1.5 pixels after the left border of the first tap, plus the phase
        const double centre = (0.5 * g_Kanvo_ubFilter[phase + 32] + 1.5 * g_Kanvo_ubFilter[phase] +
                               2.5 * g_Kanvo_ubFilter[32 - phase] + 3.5 * g_Kanvo_ubFilter[64 - phase]) /
                              sum;
        EXPECT_NEAR(centre, 1.5 + phase / 32.0, 0.02) << phase;
    }
}

TEST(Tables, TheFilterIsABoxUnderAGauss)
{
    for (int index = 0; index < 65; ++index)
    {
        const double u     = index / 32.0;
        const double scale = 0.5 * std::sqrt(2.0);
        const double exact = 255.0 * (std::erf((u + 0.5) / scale) - std::erf((u - 0.5) / scale)) / 2.0;
        EXPECT_NEAR(g_Kanvo_ubFilter[index], exact, 1.0) << index;
        EXPECT_LE(g_Kanvo_ubFilter[index], g_Kanvo_ubFilter[std::max(index - 1, 0)]) << index;
    }
}

TEST(Tables, TheSquaresOfTheTapsHardlyDependOnThePhase)
{
    double least = 1e9;
    double most  = 0.0;
    for (int phase = 0; phase < 32; ++phase)
    {
        double squares = 0.0;
        for (const int index : {phase + 32, phase, 32 - phase, 64 - phase})
            squares += static_cast<double>(g_Kanvo_ubFilter[index]) * g_Kanvo_ubFilter[index];
        least = std::min(least, squares);
        most  = std::max(most, squares);
    }
    EXPECT_LT(most / least, 1.15);  // 1.99 for a triangle: lines that bead
}

TEST(Tables, TheRampIsAPowerCurve)
{
    const int first[] = {0, 5, 8, 11, 13, 15, 18, 20};
    for (int index = 0; index < 8; ++index) EXPECT_EQ(g_Kanvo_ubGammaRamp[index], first[index]);
    const int last[] = {253, 254, 254, 255};
    for (int index = 0; index < 4; ++index) EXPECT_EQ(g_Kanvo_ubGammaRamp[252 + index], last[index]);
    for (int index = 0; index < 256; ++index)
    {
        EXPECT_NEAR(g_Kanvo_ubGammaRamp[index], 255.0 * std::pow(index / 255.0, 1.0 / 1.4), 0.5 + 1e-9) << index;
    }
}
