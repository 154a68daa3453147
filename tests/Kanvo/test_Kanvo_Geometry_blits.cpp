// Tests of where scaled and rotated blits put and take their pixels: Kanvo_StretchBlitParam, Kanvo_StretchAxis and
// Kanvo_RotBlitParam, and what follows from them for whole calls. Every sample lies inside its source, a clipped draw shows
// a part of the whole one, positions err no more than the figures here; hostile numbers draw nothing or clipped, in bounded
// time. Properties are tried on random cases, each with a seed of its own (Dice.h).
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BlitStage.h"
#include "CrashNote.h"
#include "Dice.h"
#include "Fence.h"
#include "Kanvo_RotBlitParam.h"
#include "Kanvo_StretchBlitParam.h"
#include "Reference_Rot.h"
#include "Reference_Stretch.h"
#include "RotEdges.h"

namespace
{

using reference::Clip;
using reference::RotGeometry;
using reference::RotPixel;
using reference::RotWhere;
using support::BOTH_PATHS;
using support::Dice;
using support::Messages;
using support::MessagesOf;
using support::NOT_INSIDE;
using support::Seeds;
using support::Stage;
using support::Words;

constexpr Tov_Flag KEY = BLIT_COLORKEY, BILINEAR = BLIT_BILINEAR, NOCLIP = BLIT_NOCLIP, ASPECT = BLIT_ASPECT;

constexpr std::int64_t ONE = 65536;

//! From 0 to 1, in steps of 1 / 2^24.
float ThrowUnit(Dice& dice)
{
    return static_cast<float>(dice.Below(1U << 24)) / 16777216.0F;
}

}  // namespace

// =====================================================================================================================
// Scaled blits, one axis
// =====================================================================================================================

namespace
{

using Request = Kanvo_StretchAxis::Request;

//! Drawn whole, wherever that is.
constexpr std::int64_t NO_CLIP_MIN = -100000, NO_CLIP_MAX = 100000;

std::optional<Kanvo_StretchAxis> Calculated(const Request& request)
{
    Kanvo_StretchAxis axis{};
    if (!axis.Calc(request)) return {};
    return axis;
}

std::int64_t PositionOf(const Kanvo_StretchAxis& axis, std::int64_t pixel)
{
    return axis.fxSrcFirst + pixel * axis.fxStep;
}

std::string Described(const Request& request)
{
    char text[200];
    std::snprintf(text, sizeof text, "%lld from %lld of %lld to %lld from %lld, clip %lld to %lld, %s",
                  static_cast<long long>(request.iSrcLength), static_cast<long long>(request.iSrc),
                  static_cast<long long>(request.iBound), static_cast<long long>(request.iDstLength),
                  static_cast<long long>(request.iDst), static_cast<long long>(request.iClipMin),
                  static_cast<long long>(request.iClipMax), request.bBilinear ? "filtered" : "nearest");
    return text;
}

//! What must be true of any axis: the clip kept, every sample (and its neighbour, filtered) inside the bitmap, and inside
//! the rectangle but for a filtered single pixel.
std::string WrongAxis(const Request& request, const Kanvo_StretchAxis& axis)
{
    if (axis.iCount < 1) return "no pixels";
    if (axis.iDstFirst < std::max(request.iDst, request.iClipMin)) return "a pixel before the clip";
    if (axis.iDstFirst + axis.iCount - 1 > std::min(request.iDst + request.iDstLength - 1, request.iClipMax))
    {
        return "a pixel behind the clip";
    }
    if (axis.fxStep < 0 || (request.iDstLength == 1 && axis.fxStep != 0)) return "a wrong step";
    const std::int64_t first = PositionOf(axis, 0);
    const std::int64_t last  = PositionOf(axis, axis.iCount - 1);
    if (first < 0 || last >= (request.iBound - (request.bBilinear ? 1 : 0)) * ONE) return "a sample outside the bitmap";
    if (request.bBilinear && request.iSrcLength == 1) return {};
    if (first < request.iSrc * ONE || last >= (request.iSrc + request.iSrcLength - (request.bBilinear ? 1 : 0)) * ONE)
    {
        return "a sample outside the rectangle";
    }
    return {};
}

bool AreEqual(const Kanvo_StretchAxis& axis, const reference::Axis& expected)
{
    return axis.fxSrcFirst == expected.srcFirst && axis.iDstFirst == expected.dstFirst &&
           axis.iCount == expected.count && (axis.fxStep == expected.step || axis.iCount == 1);
}

}  // namespace

TEST(StretchAxis, EverySampleOfEverySmallSizeLiesInsideTheSource)
{
    support::Differences differences;
    for (std::int64_t source = 1; source <= 96; ++source)
    {
        for (std::int64_t destination = 1; destination <= 192; ++destination)
        {
            for (const std::int64_t from : {0, 1, 7})
            {
                for (const std::int64_t behind : {0, 1})
                {
                    for (const bool filtered : {false, true})
                    {
                        const Request request{
                            from, source, from + source + behind, -3, destination, NO_CLIP_MIN, NO_CLIP_MAX, filtered};
                        const auto axis     = Calculated(request);
                        const auto expected = reference::StretchAxis(
                            {from, source, request.iBound, -3, destination, NO_CLIP_MIN, NO_CLIP_MAX, filtered});
                        const bool none = filtered && source == 1 && from == 0 && behind == 0;
                        if (axis.has_value() == none || expected.has_value() == none)
                        {
                            differences.Note("%s: drawn or not", Described(request).c_str());
                            continue;
                        }
                        if (none) continue;
                        const std::string wrong = WrongAxis(request, *axis);
                        if (!wrong.empty()) differences.Note("%s: %s", Described(request).c_str(), wrong.c_str());
                        if (axis->iCount != destination || !AreEqual(*axis, *expected))
                        {
                            differences.Note("%s: not as the reference", Described(request).c_str());
                        }
                    }
                }
            }
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(StretchAxis, EverySampleOfAnySizeLiesInsideTheSource)
{
    const Seeds          seeds(4000000);
    support::Differences differences;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice          dice(seeds.first + index);
        constexpr int MOST     = 32767;
        const auto    length   = [&] { return dice.Between(1, dice.Of({3, 60, 1300, MOST, MOST})); };
        const int     source   = length();
        const int     dst      = length();
        const int     from     = dice.OneIn(2) ? 0 : dice.Between(0, MOST - source);
        const int     behind   = dice.Between(0, 2);
        const bool    filtered = dice.OneIn(2);
        const Request request{from, source, from + source + behind, 0, dst, NO_CLIP_MIN, NO_CLIP_MAX, filtered};
        const auto    axis = Calculated(request);
        if (!axis)
        {
            if (source > 1)
                differences.Note("seed %llu: %s: not drawn", static_cast<unsigned long long>(seeds.first + index),
                                 Described(request).c_str());
            continue;
        }
        const std::string wrong = axis->iCount != dst ? "pixels are missing" : WrongAxis(request, *axis);
        if (!wrong.empty())
        {
            differences.Note("seed %llu: %s: %s", static_cast<unsigned long long>(seeds.first + index),
                             Described(request).c_str(), wrong.c_str());
        }
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
}

TEST(StretchAxis, AClippedRequestPicksThePositionsOfTheWholeOne)
{
    const Seeds          seeds(400000);
    support::Differences differences;
    std::uint64_t        drawn = 0;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice      dice(seeds.first + index);
        const int most = dice.Of({4, 40, 400, 20000});
        Request   whole{};
        whole.iSrcLength = dice.Between(1, most);
        whole.iDstLength = dice.Between(1, dice.Of({4, 40, 400, 20000}));
        whole.iSrc       = dice.Between(0, 20);
        whole.iBound     = whole.iSrc + whole.iSrcLength;
        whole.iDst       = dice.Between(-300, 300);
        whole.iClipMin   = NO_CLIP_MIN;
        whole.iClipMax   = NO_CLIP_MAX;
        whole.bBilinear  = dice.OneIn(2);
        Request part     = whole;
        part.iClipMin    = dice.Between(-100, 400);
        part.iClipMax    = part.iClipMin + dice.Between(0, 300);
        if (dice.OneIn(3)) part.iBound -= dice.Between(0, static_cast<int>(whole.iSrcLength));  // leaves its bitmap
        const auto all  = Calculated(whole);
        const auto some = Calculated(part);
        if (!some) continue;
        ++drawn;
        const auto note = [&](const char* wrong)
        {
            differences.Note("seed %llu: %s: %s", static_cast<unsigned long long>(seeds.first + index),
                             Described(part).c_str(), wrong);
        };
        if (whole.bBilinear && whole.iSrcLength == 1) continue;  // depends on its neighbours
        if (!all)
        {
            note("drawn in part and not as a whole");
            continue;
        }
        const std::int64_t skipped = some->iDstFirst - all->iDstFirst;
        if (some->fxSrcFirst != PositionOf(*all, skipped)) note("another first position");
        if (some->iCount > 1 && some->fxStep != all->fxStep) note("another step");
        const std::int64_t end  = (part.iBound - (part.bBilinear ? 1 : 0)) * ONE;
        const std::int64_t next = skipped + some->iCount;
        if (some->iDstFirst > part.iClipMin && skipped > 0) note("begins too late");
        if (next < all->iCount && all->iDstFirst + next <= part.iClipMax && PositionOf(*all, next) < end)
            note("ends early");
    }
    EXPECT_EQ(differences.Count(), 0U) << differences.First();
    EXPECT_GT(drawn, seeds.count / 5);
}

TEST(StretchAxis, WhatLiesBeforeTheBitmapIsNotDrawnEither)
{
    // Ten columns from -4 on, to twenty pixels: the first eight would be sampled before the bitmap begins.
    const auto nearest = Calculated({-4, 10, 100, 50, 20, NO_CLIP_MIN, NO_CLIP_MAX, false});
    ASSERT_TRUE(nearest);
    EXPECT_EQ(nearest->iDstFirst, 58);
    EXPECT_EQ(nearest->iCount, 12);
    EXPECT_EQ(nearest->fxSrcFirst, ONE / 4);
    const auto both = Calculated({-4, 10, 3, 50, 20, NO_CLIP_MIN, NO_CLIP_MAX, false});
    ASSERT_TRUE(both);
    EXPECT_EQ(both->iDstFirst, 58);
    EXPECT_EQ(both->iCount, 6);
    EXPECT_FALSE(Calculated({-10, 10, 100, 50, 20, NO_CLIP_MIN, NO_CLIP_MAX, false}));
    EXPECT_FALSE(Calculated({100, 10, 100, 50, 20, NO_CLIP_MIN, NO_CLIP_MAX, false}));
}

TEST(StretchAxis, EqualLengthsSampleTheCentresOfThePixels)
{
    for (std::int64_t length = 1; length <= 32767; ++length)
    {
        const auto axis = Calculated({0, length, length, 0, length, NO_CLIP_MIN, NO_CLIP_MAX, false});
        ASSERT_TRUE(axis);
        ASSERT_EQ(axis->fxSrcFirst, ONE / 2) << length;
        ASSERT_TRUE(length == 1 || axis->fxStep == ONE) << length;
    }
}

TEST(StretchAxis, WholeFactorsRepeatEachColumnOrTakeTheMiddleOne)
{
    for (std::int64_t length = 1; length <= 400; ++length)
    {
        for (std::int64_t factor = 1; factor <= 20; ++factor)
        {
            const auto larger = Calculated({0, length, length, 0, length * factor, NO_CLIP_MIN, NO_CLIP_MAX, false});
            ASSERT_TRUE(larger);
            for (std::int64_t pixel = 0; pixel < length * factor; ++pixel)
            {
                ASSERT_EQ(PositionOf(*larger, pixel) / ONE, pixel / factor) << length << " times " << factor;
            }
            const auto smaller =
                Calculated({0, length * factor, length * factor, 0, length, NO_CLIP_MIN, NO_CLIP_MAX, false});
            ASSERT_TRUE(smaller);
            for (std::int64_t pixel = 0; pixel < length; ++pixel)
            {
                // of an even number either of the two middle ones
                const std::int64_t column = PositionOf(*smaller, pixel) / ONE - pixel * factor;
                ASSERT_TRUE(column == factor / 2 || (factor % 2 == 0 && column == factor / 2 - 1))
                    << length << " by " << factor;
            }
        }
    }
}

TEST(StretchAxis, AMirroredImageStaysMirrored)
{
    const Seeds seeds(300000);
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice               dice(seeds.first + index);
        const int          most     = dice.Of({9, 300, 32767});
        const std::int64_t source   = dice.Between(2, most);
        const std::int64_t dst      = dice.Between(1, dice.Of({9, 300, 32767}));
        const bool         filtered = dice.OneIn(2);
        const auto         axis     = Calculated({0, source, source, 0, dst, NO_CLIP_MIN, NO_CLIP_MAX, filtered});
        ASSERT_TRUE(axis);
        // first and last lie as far from the ends, to the unit; filtered the ends are the outer pixels' centres
        const std::int64_t sum   = PositionOf(*axis, 0) + PositionOf(*axis, dst - 1);
        const std::int64_t whole = filtered ? (source - 1) * ONE : source * ONE;
        ASSERT_TRUE(sum <= whole && sum >= whole - 2) << source << " to " << dst << (filtered ? " filtered" : "");
    }
}

TEST(StretchAxis, PositionsErrNoMoreThanAThirtiethOfAPixel)
{
    // Up to 4096 pixels, against the exact position (i + 1/2) * source / destination, and half a pixel less filtered.
    const Seeds   seeds(60000);
    double        worstNearest   = 0;
    double        worstReduced   = 0;
    double        worstMagnified = 0;
    std::uint64_t pixels         = 0;
    std::uint64_t otherColumn    = 0;
    std::uint64_t onTheBorder    = 0;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice               dice(seeds.first + index);
        const bool         small    = dice.OneIn(2);
        const std::int64_t source   = dice.Between(2, small ? 1280 : 4096);
        const std::int64_t dst      = dice.Between(1, small ? 1280 : 4096);
        const bool         filtered = dice.OneIn(2);
        const auto         axis     = Calculated({0, source, source, 0, dst, NO_CLIP_MIN, NO_CLIP_MAX, filtered});
        ASSERT_TRUE(axis);
        const auto errorAt = [&](std::int64_t pixel)
        {
            const double exact =
                (static_cast<double>(pixel) + 0.5) * static_cast<double>(source) / static_cast<double>(dst);
            return static_cast<double>(PositionOf(*axis, pixel)) / 65536 - (filtered ? exact - 0.5 : exact);
        };
        // the error is linear in the pixel: its worst is at one of the ends
        const double worst = std::max(std::fabs(errorAt(0)), std::fabs(errorAt(dst - 1)));
        if (filtered)
        {
            double& kept = dst < source ? worstReduced : worstMagnified;
            // a reduction by less than half a pixel in all is spread as a magnification is
            if (dst >= source || errorAt(0) < 0.2) kept = std::max(kept, worst);
            continue;
        }
        worstNearest = std::max(worstNearest, worst);
        if (!small || index % 8 != 0) continue;
        for (std::int64_t pixel = 0; pixel < dst; ++pixel)
        {
            const std::int64_t twice = (2 * pixel + 1) * source;
            if (PositionOf(*axis, pixel) / ONE == twice / (2 * dst)) continue;
            // exactly between two columns either is right
            ++(twice % (2 * dst) == 0 ? onTheBorder : otherColumn);
        }
        pixels += static_cast<std::uint64_t>(dst);
    }
    std::printf(
        "    nearest %.4f, filtered reduced %.4f, magnified %.4f px; of %llu pixels %llu take another column than the "
        "exact one, and %llu on a border the one before\n",
        worstNearest, worstReduced, worstMagnified, static_cast<unsigned long long>(pixels),
        static_cast<unsigned long long>(otherColumn), static_cast<unsigned long long>(onTheBorder));
    EXPECT_LE(worstNearest, 0.030);
    EXPECT_LE(worstReduced, 0.030);
    EXPECT_LE(worstMagnified, 0.530);
    EXPECT_LE(static_cast<double>(otherColumn), 0.0008 * static_cast<double>(pixels));
    EXPECT_LE(static_cast<double>(onTheBorder), 0.0015 * static_cast<double>(pixels));
}

TEST(StretchAxis, ASingleFilteredPixelBorrowsItsNeighbour)
{
    const auto inside = Calculated({3, 1, 5, 0, 9, NO_CLIP_MIN, NO_CLIP_MAX, true});
    ASSERT_TRUE(inside);
    EXPECT_EQ(inside->fxSrcFirst, 3 * ONE);  // all of it, nothing of the next
    EXPECT_EQ(inside->fxStep, 0);
    EXPECT_EQ(inside->iCount, 9);
    const auto last = Calculated({4, 1, 5, 0, 9, NO_CLIP_MIN, NO_CLIP_MAX, true});
    ASSERT_TRUE(last);
    EXPECT_EQ(last->fxSrcFirst, 4 * ONE - 1);  // all but nothing of the one before
    EXPECT_EQ(last->iCount, 9);
    EXPECT_FALSE(Calculated({0, 1, 1, 0, 9, NO_CLIP_MIN, NO_CLIP_MAX, true}));
    EXPECT_FALSE(Calculated({0, 5, 1, 0, 9, NO_CLIP_MIN, NO_CLIP_MAX, true}));  // of a bitmap of one
    EXPECT_FALSE(Calculated({-1, 1, 5, 0, 9, NO_CLIP_MIN, NO_CLIP_MAX, true}));
    EXPECT_FALSE(Calculated({5, 1, 5, 0, 9, NO_CLIP_MIN, NO_CLIP_MAX, true}));
}

TEST(StretchAxis, WhatSixteenBitsCannotHoldIsNotDrawn)
{
    const auto draws = [](std::int64_t src, std::int64_t srcLength, std::int64_t dst, std::int64_t dstLength)
    {
        bool drawn[2];
        for (const bool filtered : {false, true})
        {
            Kanvo_StretchAxis axis{};
            const Request     request{src, srcLength, 40000, dst, dstLength, 0, 32766, filtered};
            drawn[filtered ? 1 : 0] = axis.Calc(request);
            if (!drawn[filtered ? 1 : 0]) continue;
            EXPECT_EQ(WrongAxis(request, axis), "") << Described(request);
        }
        EXPECT_EQ(drawn[0], drawn[1]);
        return drawn[0];
    };
    constexpr std::int64_t FAR = std::int64_t{1} << 40;
    EXPECT_TRUE(draws(0, 32767, 0, 32767));
    EXPECT_TRUE(draws(0, 32767, 0, 2));
    EXPECT_TRUE(draws(32765, 2, 0, 32767));
    EXPECT_TRUE(draws(-16384, 49151, 0, 100));
    EXPECT_TRUE(draws(0, 2, -32768, 65535));
    EXPECT_FALSE(draws(0, 32768, 0, 100));
    EXPECT_FALSE(draws(1, 32767, 0, 100));
    EXPECT_FALSE(draws(-16385, 49151, 0, 100));
    EXPECT_FALSE(draws(0, 100, 0, 32768));
    EXPECT_FALSE(draws(0, 100, 1, 32767));
    EXPECT_FALSE(draws(0, 100, -32769, 40000));
    EXPECT_FALSE(draws(0, 0, 0, 100));
    EXPECT_FALSE(draws(0, 100, 0, 0));
    EXPECT_FALSE(draws(0, FAR, 0, 100));
    EXPECT_FALSE(draws(0, 100, 0, FAR));
    EXPECT_FALSE(draws(FAR, 100, 0, 100));
    EXPECT_FALSE(draws(-FAR, 100, 0, 100));
    EXPECT_FALSE(draws(0, 100, FAR, 100));
    EXPECT_FALSE(draws(0, 100, -FAR, 100));
}

TEST(StretchAxis, ExtremeRatiosStayInsideAndDoNotOverflow)
{
    for (const std::int64_t source : {1, 2, 3, 32766, 32767})
    {
        for (const std::int64_t dst : {1, 2, 3, 32766, 32767, 65534, 65535})
        {
            for (const bool filtered : {false, true})
            {
                for (const std::int64_t at : {-32768, -16000, 0})
                {
                    if (at + dst > 32767) continue;
                    for (std::int64_t clip : {-32768, -1, 0, 5, 32765})
                    {
                        const Request request{32767 - source, source, 32767, at, dst, clip, clip + 1, filtered};
                        const auto    axis = Calculated(request);
                        if (!axis) continue;
                        EXPECT_EQ(WrongAxis(request, *axis), "") << Described(request);
                        EXPECT_TRUE(axis->iCount > 1 || axis->fxStep == 0) << Described(request);
                    }
                }
            }
        }
    }
}

// =====================================================================================================================
// Scaled blits, both axes
// =====================================================================================================================

namespace
{

//! CalcParams with its results under their names; filled with a number that is none of them before.
struct Params
{
    Tov_Int left = UNTOUCHED, top = UNTOUCHED, right = UNTOUCHED, bottom = UNTOUCHED;
    Tov_Int dstLeft = UNTOUCHED, dstTop = UNTOUCHED, dstRight = UNTOUCHED, dstBottom = UNTOUCHED;
    Tov_Int dx = UNTOUCHED, dy = UNTOUCHED, width = UNTOUCHED, height = UNTOUCHED;

    static constexpr Tov_Int UNTOUCHED = 0x5A5A5A5A;

    bool Calc(const Kanvo_Bitmap& source, const Kanvo_Bitmap* map, const Kanvo_Bitmap& target,
              const reference::StretchWhere& at, Tov_Flag flags)
    {
        return Kanvo_StretchBlitParam::CalcParams(&source, map, &target, at.srcWidth, at.srcHeight,
                                                  static_cast<Tov_Int>(at.srcX), static_cast<Tov_Int>(at.srcY),
                                                  at.dstWidth, at.dstHeight, at.dstX, at.dstY, flags, left, top, right,
                                                  bottom, dstLeft, dstTop, dstRight, dstBottom, dx, dy, width, height);
    }
};

}  // namespace

TEST(StretchBlitParam, ResultsComeInTheGivenOrder)
{
    Words  source(BM_ARGB32, 20, std::vector<std::uint32_t>(20 * 10));
    Stage  stage(OB_NONE, 100, 50, 0);
    Params params;
    // 8 columns from 4 on to 32 pixels from 10 on: a quarter of a column per pixel; 6 rows from 2 on to 3 pixels from 20 on
    ASSERT_TRUE(params.Calc(source.bitmap, nullptr, stage.target, {8, 6, 4, 2, 32, 3, 10, 20}, 0));
    EXPECT_EQ(params.left, 4 * ONE + ONE / 8);
    EXPECT_EQ(params.dx, ONE / 4);
    EXPECT_EQ(params.width, 32);
    EXPECT_EQ(params.right, 12 * ONE - ONE / 8);
    EXPECT_EQ(params.dstLeft, 10 * ONE);
    EXPECT_EQ(params.dstRight, 41 * ONE);
    EXPECT_EQ(params.top, 3 * ONE);
    EXPECT_EQ(params.dy, 2 * ONE);
    EXPECT_EQ(params.height, 3);
    EXPECT_EQ(params.bottom, 7 * ONE);
    EXPECT_EQ(params.dstTop, 20 * ONE);
    EXPECT_EQ(params.dstBottom, 22 * ONE);
    // clipped to 14..20 and 21..21
    stage.target.SetCliprect(14, 21, 20, 21);
    ASSERT_TRUE(params.Calc(source.bitmap, nullptr, stage.target, {8, 6, 4, 2, 32, 3, 10, 20}, 0));
    EXPECT_EQ(params.left, 5 * ONE + ONE / 8);
    EXPECT_EQ(params.width, 7);
    EXPECT_EQ(params.dstLeft, 14 * ONE);
    EXPECT_EQ(params.dstRight, 20 * ONE);
    EXPECT_EQ(params.top, 5 * ONE);
    EXPECT_EQ(params.height, 1);
    EXPECT_EQ(params.dstTop, 21 * ONE);
    // not clipped
    ASSERT_TRUE(params.Calc(source.bitmap, nullptr, stage.target, {8, 6, 4, 2, 32, 3, 10, 20}, NOCLIP));
    EXPECT_EQ(params.width, 32);
    EXPECT_EQ(params.dstTop, 20 * ONE);
}

TEST(StretchBlitParam, WhereNothingIsDrawnTheResultsAreLeftAlone)
{
    Words                         source(BM_ARGB32, 20, std::vector<std::uint32_t>(20 * 10));
    Stage                         stage(OB_NONE, 100, 50, 0);
    const reference::StretchWhere NOTHING[] = {
        {0, 6, 4, 2, 32, 3, 10, 20},  {8, 0, 4, 2, 32, 3, 10, 20},   {8, 6, 4, 2, 0, 3, 10, 20},
        {8, 6, 4, 2, 32, 0, 10, 20},  {8, 6, 20, 2, 32, 3, 10, 20},  {8, 6, 4, 10, 32, 3, 10, 20},
        {8, 6, 4, 2, 32, 3, 100, 20}, {8, 6, 4, 2, 32, 3, 10, 50},   {8, 6, 4, 2, 32, 3, -32, 20},
        {8, 6, 4, 2, 32, 3, 10, -3},  {8, 6, 4, 2, 32768, 3, 0, 20}, {32768, 6, 0, 2, 32, 3, 10, 20}};
    for (const auto& at : NOTHING)
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, BILINEAR, ASPECT})
        {
            if (flags == ASPECT && (at.dstWidth == 32 || at.dstWidth == 32768)) continue;  // another place
            Params params;
            EXPECT_FALSE(params.Calc(source.bitmap, nullptr, stage.target, at, flags));
            EXPECT_EQ(params.left, Params::UNTOUCHED);
            EXPECT_EQ(params.height, Params::UNTOUCHED);
            EXPECT_EQ(params.dstBottom, Params::UNTOUCHED);
        }
    }
    stage.target.SetCliprect(5, 5, 4, 4);
    Params params;
    EXPECT_FALSE(params.Calc(source.bitmap, nullptr, stage.target, {8, 6, 4, 2, 100, 50, 0, 0}, 0));
    EXPECT_EQ(params.width, Params::UNTOUCHED);
}

TEST(StretchBlitParam, TheSmallerOfSourceAndMapBounds)
{
    Words  wide(BM_ARGB32, 20, std::vector<std::uint32_t>(20 * 4));
    Words  tall(BM_ARGB32, 4, std::vector<std::uint32_t>(20 * 4));
    Stage  stage(OB_NONE, 100, 50, 0);
    Params params;
    ASSERT_TRUE(params.Calc(wide.bitmap, &tall.bitmap, stage.target, {20, 20, 0, 0, 40, 40, 0, 0}, 0));
    EXPECT_EQ(params.width, 8);
    EXPECT_EQ(params.height, 8);
    ASSERT_TRUE(params.Calc(tall.bitmap, &wide.bitmap, stage.target, {20, 20, 0, 0, 40, 40, 0, 0}, 0));
    EXPECT_EQ(params.width, 8);
    EXPECT_EQ(params.height, 8);
}

TEST(StretchBlitParam, AspectIsKeptInTheMiddleOfTheRectangle)
{
    struct Known
    {
        Tov_UInt srcWidth, srcHeight, dstWidth, dstHeight;
        Tov_Int  x, y, width, height;  // drawn, from (10, 10) on
    };
    constexpr Known KNOWN[] = {
        {8, 8, 40, 20, 10, 0, 20, 20}, {8, 8, 20, 40, 0, 10, 20, 20}, {8, 4, 40, 40, 0, 10, 40, 20},
        {4, 8, 40, 40, 10, 0, 20, 40}, {8, 4, 40, 20, 0, 0, 40, 20},  {8, 1, 4, 40, 0, 19, 4, 1},
        {1, 8, 40, 4, 19, 0, 1, 4},    {8, 1, 1, 40, 0, 19, 1, 1},   // half a pixel is rounded up to one
        {3, 2, 10, 10, 0, 1, 10, 7},   {2, 3, 10, 10, 1, 0, 7, 10},  // 6.67, and the odd pixel below
    };
    for (const Known& known : KNOWN)
    {
        Words  source(BM_ARGB32, 8, std::vector<std::uint32_t>(64));
        Stage  stage(OB_NONE, 100, 100, 0);
        Params params;
        ASSERT_TRUE(params.Calc(source.bitmap, nullptr, stage.target,
                                {known.srcWidth, known.srcHeight, 0, 0, known.dstWidth, known.dstHeight, 10, 10},
                                ASPECT));
        EXPECT_EQ(params.dstLeft / ONE - 10, known.x) << known.srcWidth << "x" << known.srcHeight;
        EXPECT_EQ(params.dstTop / ONE - 10, known.y) << known.srcWidth << "x" << known.srcHeight;
        EXPECT_EQ(params.width, known.width) << known.srcWidth << "x" << known.srcHeight;
        EXPECT_EQ(params.height, known.height) << known.srcWidth << "x" << known.srcHeight;
    }
}

TEST(StretchBlitParam, AspectIsTheLargestRectangleInsideAndCentred)
{
    const Seeds                seeds(100000);
    std::vector<std::uint32_t> pixels(std::size_t{300} * 300);
    support::AnySource         source(nullptr, BM_ARGB32, 300, 300, pixels.data(), 0, false);
    std::vector<std::uint32_t> under(std::size_t{2000} * 2000);
    support::PitchedTarget     target(nullptr, 2000, 2000, under.data());
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice                    dice(seeds.first + index);
        reference::StretchWhere at;
        at.srcWidth  = static_cast<std::uint32_t>(dice.Between(1, dice.Of({5, 300})));
        at.srcHeight = static_cast<std::uint32_t>(dice.Between(1, dice.Of({5, 300})));
        at.dstWidth  = static_cast<std::uint32_t>(dice.Between(1, dice.Of({9, 1000})));
        at.dstHeight = static_cast<std::uint32_t>(dice.Between(1, dice.Of({9, 1000})));
        at.dstX      = dice.Between(0, 900);
        at.dstY      = dice.Between(0, 900);
        Params params;
        ASSERT_TRUE(params.Calc(source, nullptr, target, at, ASPECT));
        const std::int64_t width  = params.width;
        const std::int64_t height = params.height;
        const std::int64_t x      = params.dstLeft / ONE - at.dstX;
        const std::int64_t y      = params.dstTop / ONE - at.dstY;
        const auto         where  = [&] { return "seed " + std::to_string(seeds.first + index); };
        ASSERT_TRUE(x >= 0 && x + width <= at.dstWidth && y >= 0 && y + height <= at.dstHeight) << where();
        ASSERT_TRUE(width == at.dstWidth || height == at.dstHeight) << where();
        const std::int64_t restX = at.dstWidth - width - 2 * x;
        const std::int64_t restY = at.dstHeight - height - 2 * y;
        ASSERT_TRUE(restX >= 0 && restX <= 1 && restY >= 0 && restY <= 1) << where();
        // the shrunk side is the other times the aspect, rounded to nearest, one at least
        if (width == 1 || height == 1) continue;
        const std::int64_t unit = width < at.dstWidth     ? at.srcHeight
                                  : height < at.dstHeight ? at.srcWidth
                                                          : std::max(at.srcWidth, at.srcHeight);
        ASSERT_LE(std::llabs(2 * (height * at.srcWidth - width * at.srcHeight)), unit) << where();
    }
}

TEST(StretchBlitParam, NoClippingIsAPromiseAboutTheDestination)
{
    Words source(BM_ARGB32, 8, std::vector<std::uint32_t>(64));
    Stage stage(OB_NONE, 100, 50, 0);
    for (const auto& [x, y, width, height] : {std::array<int, 4>{-1, 0, 10, 10},
                                              {0, -1, 10, 10},
                                              {91, 0, 10, 10},
                                              {0, 41, 10, 10},
                                              {0, 0, 101, 10},
                                              {0, 0, 10, 51}})
    {
        Params params;
        bool   drawn = true;
        EXPECT_EQ(MessagesOf(
                      [&, x = x, y = y, width = width, height = height]
                      {
                          drawn = params.Calc(
                              source.bitmap, nullptr, stage.target,
                              {8, 8, 0, 0, static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), x, y},
                              NOCLIP);
                      }),
                  Messages{NOT_INSIDE});
        EXPECT_FALSE(drawn);
        EXPECT_EQ(params.left, Params::UNTOUCHED);
    }
}

// =====================================================================================================================
// Scaled blits, drawn
// =====================================================================================================================

namespace
{

constexpr unsigned CANVAS_WIDTH = 36, CANVAS_HEIGHT = 26;

//! A random scaled call, drawn again and again onto the same pixels under different clip rectangles.
class StretchDrawing
{
public:
    explicit StretchDrawing(Dice& dice)
    {
        m_type      = dice.Of<unsigned>({BM_ARGB32, BM_ARGB32, BM_RGB32, BM_RGB565, BM_RGB565, BM_ALPHA8});
        m_optimized = dice.Below(2);
        m_operation = dice.Below(m_type == BM_ARGB32 || m_type == BM_ALPHA8 ? 3 : 1);
        m_size[0]   = 1 + dice.Below(16);
        m_size[1]   = 1 + dice.Below(16);
        dice.Fill(m_source.data(), sizeof m_source);
        dice.Fill(under.data(), sizeof under);
        m_flags = 0;
        if (dice.OneIn(2)) m_flags |= BILINEAR;
        if (dice.OneIn(3)) m_flags |= KEY;
        if (dice.OneIn(4)) m_flags |= ASPECT;
        m_alpha        = dice.OneIn(2) ? 255 : dice.Below(256);
        m_at.srcWidth  = 1 + dice.Below(m_size[0]);
        m_at.srcHeight = 1 + dice.Below(m_size[1]);
        m_at.srcX      = dice.Below(m_size[0] - m_at.srcWidth + 1);
        m_at.srcY      = dice.Below(m_size[1] - m_at.srcHeight + 1);
        if (dice.OneIn(8)) m_at.srcX += 2;
        if (dice.OneIn(8)) m_at.srcY -= 1;
        m_at.dstWidth  = 1 + dice.Below(60);
        m_at.dstHeight = 1 + dice.Below(60);
        m_at.dstX      = dice.Between(-30, 20);
        m_at.dstY      = dice.Between(-30, 15);
        m_key          = m_source[0] & 0xFFFFFF;
        if (m_type == BM_RGB565) m_key &= 0xFFFF;
        if (m_type == BM_ALPHA8) m_key &= 0xFF;
    }

    //! The fill of a single pixel has rules of its own, which are no rules of geometry.
    bool IsFill() const
    {
        return m_optimized == OB_NEON && m_operation == 0 && m_type == BM_ARGB32 && (m_flags & (BILINEAR | KEY)) == 0 &&
               m_at.srcWidth <= 1 && m_at.srcHeight <= 1;
    }

    void DrawOn(std::vector<std::uint32_t>& pixels, const Clip& clip)
    {
        Kanvo_Screen           screen(nullptr);
        support::PitchedTarget target(&screen, CANVAS_WIDTH, CANVAS_HEIGHT, pixels.data());
        support::AnySource     source(nullptr, m_type, m_size[0], m_size[1], m_source.data(), 0, true);
        screen.GetRenderState().Set(OPTIMIZED_BLIT, m_optimized);
        target.Lock();
        target.SetCliprect(static_cast<Tov_UInt>(clip.minX), static_cast<Tov_UInt>(clip.minY),
                           static_cast<Tov_UInt>(clip.maxX), static_cast<Tov_UInt>(clip.maxY));
        const auto alpha = static_cast<Tov_UByte>(m_alpha);
        switch (m_operation)
        {
        case 0:
            target.StretchBlit(&source, m_at.srcWidth, m_at.srcHeight, m_at.srcX, m_at.srcY, m_at.dstWidth,
                               m_at.dstHeight, m_at.dstX, m_at.dstY, m_flags, alpha, m_key);
            break;
        case 1:
            target.StretchBlitColor(&source, m_at.srcWidth, m_at.srcHeight, m_at.srcX, m_at.srcY, m_at.dstWidth,
                                    m_at.dstHeight, m_at.dstX, m_at.dstY, 0xC0FF8040, m_flags, alpha);
            break;
        default:
            target.StretchBlitAlpha(&source, &source, m_at.srcWidth, m_at.srcHeight, m_at.srcX, m_at.srcY,
                                    m_at.dstWidth, m_at.dstHeight, m_at.dstX, m_at.dstY, m_flags, alpha);
            break;
        }
    }

    std::array<std::uint32_t, CANVAS_WIDTH * CANVAS_HEIGHT> under{};

private:
    unsigned                       m_type      = 0;
    unsigned                       m_optimized = 0;
    unsigned                       m_operation = 0;
    unsigned                       m_size[2]   = {};
    std::array<std::uint32_t, 256> m_source{};
    reference::StretchWhere        m_at;
    Tov_Flag                       m_flags = 0;
    unsigned                       m_alpha = 255;
    Kanvo_Color                    m_key   = 0;
};

constexpr Clip WHOLE_CANVAS{0, 0, CANVAS_WIDTH - 1, CANVAS_HEIGHT - 1};

}  // namespace

TEST(StretchBlitGeometry, AClippedDrawIsThatPartOfTheWholeOne)
{
    const Seeds   seeds(100000);
    std::uint64_t cut = 0;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice           dice(seeds.first + index);
        StretchDrawing drawing(dice);
        if (drawing.IsFill()) continue;
        std::vector<std::uint32_t> whole(drawing.under.begin(), drawing.under.end());
        std::vector<std::uint32_t> part = whole;
        drawing.DrawOn(whole, WHOLE_CANVAS);
        Clip clip;
        clip.minX = dice.Below(CANVAS_WIDTH);
        clip.minY = dice.Below(CANVAS_HEIGHT);
        clip.maxX = dice.Between(static_cast<int>(clip.minX), CANVAS_WIDTH - 1);
        clip.maxY = dice.Between(static_cast<int>(clip.minY), CANVAS_HEIGHT - 1);
        drawing.DrawOn(part, clip);
        for (unsigned at = 0; at < whole.size(); ++at)
        {
            const unsigned x      = at % CANVAS_WIDTH;
            const unsigned y      = at / CANVAS_WIDTH;
            const bool     inside = x >= clip.minX && x <= clip.maxX && y >= clip.minY && y <= clip.maxY;
            if (!inside && whole[at] != drawing.under[at]) ++cut;
            ASSERT_EQ(part[at], inside ? whole[at] : drawing.under[at])
                << "seed " << seeds.first + index << ", pixel (" << x << ", " << y << ")";
        }
    }
    EXPECT_GT(cut, seeds.count * 20);
}

TEST(StretchBlitGeometry, DrawnInStripsItIsDrawnWhole)
{
    const Seeds seeds(100000);
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice           dice(seeds.first + index);
        StretchDrawing drawing(dice);
        if (drawing.IsFill()) continue;
        std::vector<std::uint32_t> whole(drawing.under.begin(), drawing.under.end());
        std::vector<std::uint32_t> strips = whole;
        drawing.DrawOn(whole, WHOLE_CANVAS);
        const bool     upright = dice.OneIn(2);
        const unsigned end     = upright ? CANVAS_WIDTH : CANVAS_HEIGHT;
        for (unsigned from = 0; from < end;)
        {
            const unsigned to                 = std::min(end - 1, from + dice.Below(9));
            Clip           clip               = WHOLE_CANVAS;
            (upright ? clip.minX : clip.minY) = from;
            (upright ? clip.maxX : clip.maxY) = to;
            drawing.DrawOn(strips, clip);
            from = to + 1;
        }
        ASSERT_TRUE(strips == whole) << "seed " << seeds.first + index;
    }
}

TEST(StretchBlitGeometry, AScreenfulFromALargerPictureReadsNothingBehindIt)
{
    // 800x600 scaled to 1280x720, most of it above and left of the target; and the same the other way round.
    support::Fence             pixels(std::size_t{800} * 600 * 4);
    std::vector<std::uint32_t> canvas(std::size_t{640} * 375);
    for (std::size_t at = 0; at < pixels.Size() / 4; ++at)
    {
        pixels.As<std::uint32_t>()[at] = 0xFF000000U | static_cast<std::uint32_t>(at);
    }
    pixels.MakeReadOnly();
    for (const unsigned optimized : BOTH_PATHS)
    {
        for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
        {
            Kanvo_Screen           screen(nullptr);
            support::PitchedTarget target(&screen, 640, 375, canvas.data());
            support::AnySource     source(nullptr, BM_ARGB32, 800, 600, pixels.Data(), 0, false);
            screen.GetRenderState().Set(OPTIMIZED_BLIT, optimized);
            target.Lock();
            std::fill(canvas.begin(), canvas.end(), 0U);
            target.StretchBlit(&source, 800, 600, 0, 0, 1280, 720, -640, -345, filter, 255, 0);
            EXPECT_EQ(std::count(canvas.begin(), canvas.end(), 0U), 0);
            if (filter == 0)
            {
                // pixel (0, 0) is 640 and 345 pixels inside: column 640.5 * 800 / 1280, row 345.5 * 600 / 720
                EXPECT_EQ(canvas.front(), 0xFF000000U | (287 * 800 + 400));
                EXPECT_EQ(canvas.back(), 0xFF000000U | (599 * 800 + 799));
            }
            target.StretchBlit(&source, 800, 600, 0, 0, 333, 177, 320, 200, filter, 255, 0);
        }
    }
}

TEST(StretchBlitGeometry, HostileNumbersDrawNothingOrClippedInBoundedTime)
{
    const Seeds                                seeds(10000);
    support::Fence                             pixels(std::size_t{32} * 32 * 4);
    support::Fence                             canvas(std::size_t{64} * 48 * 4);
    const auto                                 start = std::chrono::steady_clock::now();
    const std::initializer_list<std::uint32_t> sizes{
        0, 1, 2, 3, 31, 32, 33, 32766, 32767, 32768, 65535, 65536, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    const std::initializer_list<std::int32_t> places{0,      1,     -1,    47,    63,        64,        -32767, -32768,
                                                     -32769, 32766, 32767, 32768, INT32_MIN, INT32_MAX, -30000};
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice                   dice(seeds.first + index);
        Kanvo_Screen           screen(nullptr);
        support::PitchedTarget target(&screen, 64, 48, canvas.Data());
        const unsigned         type = dice.Of<unsigned>({BM_ARGB32, BM_RGB32, BM_RGB565, BM_ALPHA8});
        const std::size_t      room = type == BM_ALPHA8 ? 1 : type == BM_RGB565 ? 2 : 4;
        // flush with the page behind, whatever a pixel takes
        support::AnySource source(nullptr, type, 32, 32, pixels.Data() + pixels.Size() - 1024 * room, 0, true);
        screen.GetRenderState().Set(OPTIMIZED_BLIT, dice.Below(2));
        target.Lock();
        reference::StretchWhere at;
        at.srcWidth  = dice.Of(sizes);
        at.srcHeight = dice.Of(sizes);
        at.srcX      = static_cast<std::uint32_t>(dice.Of(places));
        at.srcY      = static_cast<std::uint32_t>(dice.Of(places));
        at.dstWidth  = dice.Of(sizes);
        at.dstHeight = dice.Of(sizes);
        at.dstX      = dice.Of(places);
        at.dstY      = dice.Of(places);
        const Tov_Flag flags =
            dice.Of<Tov_Flag>({0, BILINEAR, ASPECT, ASPECT | BILINEAR, NOCLIP, NOCLIP | BILINEAR | ASPECT});
        const Tov_UByte        alpha = dice.NextByte();
        support::AssertCapture asserts;
        target.StretchBlit(&source, at.srcWidth, at.srcHeight, at.srcX, at.srcY, at.dstWidth, at.dstHeight, at.dstX,
                           at.dstY, flags, alpha, 0);
        if (type != BM_ARGB32 && type != BM_ALPHA8) continue;
        target.StretchBlitColor(&source, at.srcWidth, at.srcHeight, at.srcX, at.srcY, at.dstWidth, at.dstHeight,
                                at.dstX, at.dstY, 0xFF00FF00, flags, alpha);
        target.StretchBlitAlpha(&source, &source, at.srcWidth, at.srcHeight, at.srcX, at.srcY, at.dstWidth,
                                at.dstHeight, at.dstX, at.dstY, flags, alpha);
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_LT(taken.count(), 5.0) << "seconds for " << seeds.count << " calls of each kind";
    EXPECT_TRUE(canvas.IsSlackUntouched());
}

// =====================================================================================================================
// Rotated blits
// =====================================================================================================================

namespace
{

//! A target without much behind it: edges are all that is asked for.
class Field
{
public:
    Field(unsigned width, unsigned height)
        : m_pixels(std::size_t{width} * height),
          target(nullptr, width, height, m_pixels.data())
    {
    }

    void SetClip(const Clip& clip)
    {
        target.SetCliprect(static_cast<Tov_UInt>(clip.minX), static_cast<Tov_UInt>(clip.minY),
                           static_cast<Tov_UInt>(clip.maxX), static_cast<Tov_UInt>(clip.maxY));
    }

    //! What the scan draws, and what is wrong with it.
    struct Drawn
    {
        std::vector<RotPixel> pixels;
        std::string           wrong;
    };
    Drawn Draw(const RotWhere& where, Tov_Flag flags)
    {
        Drawn      drawn;
        const auto edges = support::EdgesOf(target, where, flags);
        if (!edges) return drawn;
        const Clip clip = support::ClipOf(target);
        if (edges->left.empty() || edges->right.empty())
        {
            drawn.wrong = "no edges, or more than three";
            return drawn;
        }
        drawn.pixels = ScanRot(*edges, clip);
        drawn.wrong  = support::WrongEdges(*edges, drawn.pixels, clip, where, (flags & BILINEAR) != 0);
        return drawn;
    }

private:
    std::vector<std::uint32_t> m_pixels;

public:
    support::PitchedTarget target;
};

struct Range
{
    float low;
    float high;
};

//! An image of 2 to most pixels somewhere on a field of width x height, its pivot inside it, turned anyhow.
RotWhere ThrowTurn(Dice& dice, int most, unsigned width, unsigned height, Range stretch)
{
    RotWhere where;
    where.width  = static_cast<std::uint32_t>(dice.Between(2, most));
    where.height = static_cast<std::uint32_t>(dice.Between(2, most));
    where.srcX   = dice.Below(4);
    where.srcY   = dice.Below(4);
    float units[7];
    for (float& unit : units) unit = ThrowUnit(dice);
    where.dstX     = units[0] * static_cast<float>(width);
    where.dstY     = units[1] * static_cast<float>(height);
    where.angle    = units[2] * 360.0F;
    where.stretchX = stretch.low + units[3] * (stretch.high - stretch.low);
    where.stretchY = stretch.low + units[4] * (stretch.high - stretch.low);
    if (dice.OneIn(4)) where.stretchX = -where.stretchX;
    if (dice.OneIn(4)) where.stretchY = -where.stretchY;
    where.rotPosX = units[5] * static_cast<float>(where.width);
    where.rotPosY = units[6] * static_cast<float>(where.height);
    return where;
}

Clip ThrowClip(Dice& dice, unsigned width, unsigned height)
{
    Clip clip;
    clip.minX = dice.Below(width);
    clip.minY = dice.Below(height);
    clip.maxX = dice.Between(static_cast<int>(clip.minX), static_cast<int>(width) - 1);
    clip.maxY = dice.Between(static_cast<int>(clip.minY), static_cast<int>(height) - 1);
    return clip;
}

bool IsInside(const Clip& clip, int x, int y)
{
    return x >= clip.minX && x <= clip.maxX && y >= clip.minY && y <= clip.maxY;
}

//! The longest horizontal line inside the turned rectangle, where its sides allow one: below a pixel it is a needle.
double LongestChord(const RotWhere& where)
{
    const double radians = static_cast<double>(where.angle) * std::acos(-1.0) / 180;
    return std::min(std::fabs(static_cast<double>(where.stretchX)) * where.width / std::fabs(std::cos(radians)),
                    std::fabs(static_cast<double>(where.stretchY)) * where.height / std::fabs(std::sin(radians)));
}

std::string Described(const RotWhere& where)
{
    char text[300];
    std::snprintf(text, sizeof text,
                  "%ux%u at (%u, %u) to (%.9gF, %.9gF), angle %.9gF, stretch %.9gF %.9gF, centre (%.9gF, %.9gF)",
                  where.width, where.height, where.srcX, where.srcY, static_cast<double>(where.dstX),
                  static_cast<double>(where.dstY), static_cast<double>(where.angle),
                  static_cast<double>(where.stretchX), static_cast<double>(where.stretchY),
                  static_cast<double>(where.rotPosX), static_cast<double>(where.rotPosY));
    return text;
}

//! How far two samples of a pixel are apart, in 1/65536 of a source pixel.
int Apart(const RotPixel& one, const RotPixel& other)
{
    return std::max(std::abs(one.v - other.v), std::abs(one.u - other.u));
}

}  // namespace

// ---- clipped and whole ----------------------------------------------------------------------------------------------

namespace
{

//! Pairs of the pixels that a clipped and a whole draw have in common, and how they agree.
struct Agreement
{
    std::uint64_t pixels     = 0;
    std::uint64_t onlyOne    = 0;  // drawn whole and not clipped, or the other way round
    std::uint64_t apart      = 0;  // not sampled at the same position
    std::uint64_t otherPixel = 0;  // in another source pixel
    std::uint64_t firstApart = 0;  // first of its row in the whole draw
    int           furthest   = 0;
    std::string   example;

    void Compare(const std::vector<RotPixel>& whole, const std::vector<RotPixel>& part, const Clip& clip,
                 const std::string& name)
    {
        // both are in the order of drawing
        auto at = part.begin();
        for (const RotPixel& pixel : whole)
        {
            if (!IsInside(clip, pixel.x, pixel.y)) continue;
            while (at != part.end() && (at->y < pixel.y || (at->y == pixel.y && at->x < pixel.x)))
            {
                Miss(*at++, name + " is drawn clipped only");
            }
            if (at == part.end() || at->x != pixel.x || at->y != pixel.y)
            {
                Miss(pixel, name + " is drawn whole only");
                continue;
            }
            Meet(pixel, *at++);
        }
        for (; at != part.end(); ++at) Miss(*at, name + " is drawn clipped only");
    }

private:
    void Miss(const RotPixel& pixel, const std::string& what)
    {
        if (onlyOne++ == 0) example = "(" + std::to_string(pixel.x) + ", " + std::to_string(pixel.y) + ") of " + what;
    }

    void Meet(const RotPixel& whole, const RotPixel& part)
    {
        ++pixels;
        const int distance = Apart(whole, part);
        if (distance == 0) return;
        if (whole.firstOfRow) ++firstApart;
        ++apart;
        furthest = std::max(furthest, distance);
        if (whole.v >> 16 != part.v >> 16 || whole.u >> 16 != part.u >> 16) ++otherPixel;
    }
};

constexpr unsigned WIDE_FIELD = 160, HIGH_FIELD = 120;

//! How far whole and clipped draws of turned pictures may be apart, in 1/65536 px: the source position of a row that begins on
//! a side, and its way to the next whole column, are rounded, where one that begins on the clip's border is not.
constexpr int AT_ANY_ANGLE = 2;

void ExpectAgreement(const char* what, const Agreement& agreement, int furthest, std::uint64_t cases)
{
    std::printf("    %s: %llu pixels, %llu apart by at most %d/65536 px, %llu of them in another source pixel\n", what,
                static_cast<unsigned long long>(agreement.pixels), static_cast<unsigned long long>(agreement.apart),
                agreement.furthest, static_cast<unsigned long long>(agreement.otherPixel));
    EXPECT_EQ(agreement.onlyOne, 0U) << what << ": " << agreement.example;
    EXPECT_EQ(agreement.firstApart, 0U) << what;  // what begins a row in both is one and the same
    EXPECT_LE(agreement.furthest, furthest) << what << ", in 1/65536 px";
    EXPECT_LE(agreement.otherPixel * 10000, agreement.pixels + 10000) << what;  // one may be met in however few
    EXPECT_GT(agreement.pixels, cases * 2) << what;
}

//! Draws, whole and clipped. throwTurn(dice) returns where to.
template <class Throw>
void CompareClipped(const char* what, std::uint64_t cases, Tov_Flag flags, int furthest, Throw throwTurn)
{
    const Seeds seeds(cases);
    Field       field(WIDE_FIELD, HIGH_FIELD);
    Agreement   agreement;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice           dice(seeds.first + index);
        const RotWhere where = throwTurn(dice);
        field.SetClip({0, 0, WIDE_FIELD - 1, HIGH_FIELD - 1});
        const auto whole = field.Draw(where, flags);
        const Clip clip  = ThrowClip(dice, WIDE_FIELD, HIGH_FIELD);
        field.SetClip(clip);
        const auto        part = field.Draw(where, flags);
        const std::string name = "seed " + std::to_string(seeds.first + index) + ": " + Described(where);
        ASSERT_EQ(whole.wrong, "") << name;
        ASSERT_EQ(part.wrong, "") << name;
        agreement.Compare(whole.pixels, part.pixels, clip, name);
    }
    ExpectAgreement(what, agreement, furthest, seeds.count);
}

constexpr Range USUAL_STRETCH{0.5F, 3.5F};

}  // namespace

TEST(RotBlitGeometry, AClippedDrawHasTheSilhouetteAndTheSamplesOfTheWholeOne)
{
    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
    {
        CompareClipped(filter != 0 ? "any angle, filtered" : "any angle, nearest", 50000, filter, AT_ANY_ANGLE,
                       [](Dice& dice) { return ThrowTurn(dice, 60, WIDE_FIELD, HIGH_FIELD, USUAL_STRETCH); });
    }
}

TEST(RotBlitGeometry, UprightAClippedDrawIsThatPartOfTheWholeOne)
{
    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
    {
        CompareClipped(filter != 0 ? "upright, filtered" : "upright, nearest", 50000, filter, 0,
                       [](Dice& dice)
                       {
                           RotWhere where = ThrowTurn(dice, 60, WIDE_FIELD, HIGH_FIELD, USUAL_STRETCH);
                           where.angle    = static_cast<float>(90 * dice.Between(-4, 4));
                           return where;
                       });
    }
}

TEST(RotBlitGeometry, ANeedleUnderAPixelWideIsDrawnInPartsAsItIsDrawnWhole)
{
    // a gap would show where one part of the screen ends and the next begins
    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
    {
        CompareClipped(filter != 0 ? "needles, filtered" : "needles, nearest", 100000, filter, 0,
                       [](Dice& dice)
                       {
                           RotWhere where = ThrowTurn(dice, 60, WIDE_FIELD, HIGH_FIELD, {0.8F, 3.0F});
                           where.height   = 2;
                           where.rotPosY  = 1;
                           where.stretchY = 0.05F + 0.4F * ThrowUnit(dice);
                           // steep enough to be under a pixel wide in every row
                           where.angle = 70.0F + 40.0F * ThrowUnit(dice);
                           return where;
                       });
    }
}

TEST(RotBlitGeometry, OnLargeScreensEverySampleOfAnySizeLiesInside)
{
    // What is rounded adds up over rows and columns: long ones, and scales from 1/55 to 400.
    struct Size
    {
        unsigned width;
        unsigned height;
    };
    const Seeds   seeds(300);
    std::uint64_t pixels = 0;
    for (const auto& [width, height] : {Size{800, 480}, Size{40, 6000}, Size{6000, 40}})
    {
        Field field(width, height);
        for (std::uint64_t index = 0; index < seeds.count; ++index)
        {
            Dice        dice(seeds.first + index);
            const Range ranges[] = {{0.018F, 0.2F}, {0.2F, 2.0F}, {2.0F, 30.0F}, {30.0F, 400.0F}};
            const Range range    = ranges[dice.Below(4)];
            RotWhere    where    = ThrowTurn(dice, dice.Of({3, 40, 400, 8000}), width, height, range);
            if (dice.OneIn(3)) where.angle = static_cast<float>(90 * dice.Below(4)) + (ThrowUnit(dice) - 0.5F) / 8;
            const auto drawn = field.Draw(where, dice.OneIn(2) ? BILINEAR : 0);
            ASSERT_EQ(drawn.wrong, "") << "seed " << seeds.first + index << ": " << Described(where);
            pixels += drawn.pixels.size();
        }
    }
    EXPECT_GT(pixels, seeds.count * 50000);
}

TEST(RotBlitGeometry, AHairIsSampledInsideHoweverLongItIs)
{
    // Thousands of rows high and far narrower than the steps of 16.16 are exact over them.
    const Seeds   seeds(2000);
    Field         field(64, 3000);
    std::uint64_t pixels = 0;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice     dice(seeds.first + index);
        RotWhere where;
        where.width      = 2 + dice.Below(3);
        where.height     = static_cast<std::uint32_t>(dice.Between(100, 400));
        where.dstX       = 32 + ThrowUnit(dice);
        where.dstY       = 1500;
        where.angle      = (ThrowUnit(dice) - 0.5F) * 1.0F + (dice.OneIn(2) ? 180.0F : 0.0F);
        where.stretchX   = 0.0001F + 0.01F * ThrowUnit(dice);
        where.stretchY   = 7.5F;
        where.rotPosX    = static_cast<float>(where.width) / 2;
        where.rotPosY    = static_cast<float>(where.height) / 2;
        const auto drawn = field.Draw(where, dice.OneIn(2) ? BILINEAR : 0);
        ASSERT_EQ(drawn.wrong, "") << "seed " << seeds.first + index << ": " << Described(where);
        pixels += drawn.pixels.size();  // none where it stands upright between two columns
    }
    EXPECT_GT(pixels, seeds.count * 1000);
}

TEST(RotBlitGeometry, DrawnInBandsOfRowsOrCutOnTheRightItIsDrawnWhole)
{
    // Rows and right ends are chosen from what the whole draw does: not a bit is another one.
    const Seeds   seeds(support::CasesOf(100000));
    Field         field(WIDE_FIELD, HIGH_FIELD);
    std::uint64_t pixels = 0;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice           dice(seeds.first + index);
        const Tov_Flag filter = dice.OneIn(2) ? BILINEAR : 0;
        RotWhere       where  = ThrowTurn(dice, 60, WIDE_FIELD, HIGH_FIELD, {0.05F, 3.5F});
        if (dice.OneIn(8)) where.angle = static_cast<float>(90 * dice.Between(0, 3));
        field.SetClip({0, 0, WIDE_FIELD - 1, HIGH_FIELD - 1});
        const auto            whole = field.Draw(where, filter).pixels;
        std::vector<RotPixel> bands;
        const int             right = dice.OneIn(2) ? int{WIDE_FIELD} - 1 : dice.Between(0, WIDE_FIELD - 1);
        for (int from = 0; from < int{HIGH_FIELD};)
        {
            const int to = std::min(int{HIGH_FIELD} - 1, from + dice.Between(0, 40));
            field.SetClip({0, from, right, to});
            const auto band = field.Draw(where, filter).pixels;
            bands.insert(bands.end(), band.begin(), band.end());
            from = to + 1;
        }
        std::size_t at = 0;
        for (const RotPixel& pixel : whole)
        {
            if (pixel.x > right) continue;
            ASSERT_LT(at, bands.size()) << "seed " << seeds.first + index << ": " << Described(where);
            const RotPixel& other = bands[at++];
            ASSERT_TRUE(pixel.x == other.x && pixel.y == other.y && pixel.v == other.v && pixel.u == other.u)
                << "seed " << seeds.first + index << ", pixel (" << pixel.x << ", " << pixel.y
                << "): " << Described(where);
        }
        ASSERT_EQ(at, bands.size()) << "seed " << seeds.first + index << ": " << Described(where);
        pixels += at;
    }
    EXPECT_GT(pixels, seeds.count * 100);
}

// ---- upright --------------------------------------------------------------------------------------------------------

TEST(RotBlitGeometry, ByZeroDegreesUnstretchedItEqualsTheUnscaledBlit)
{
    const Seeds                        seeds(support::CasesOf(100000));
    std::array<std::uint32_t, 16 * 16> pixels{};
    std::array<std::uint32_t, 24 * 18> turned{};
    std::array<std::uint32_t, 24 * 18> plain{};
    Dice(1).Fill(pixels.data(), sizeof pixels);
    support::AnySource     source(nullptr, BM_ARGB32, 16, 16, pixels.data(), 0, true);
    support::PitchedTarget onTurned(nullptr, 24, 18, turned.data());
    support::PitchedTarget onPlain(nullptr, 24, 18, plain.data());
    onTurned.Lock();
    onPlain.Lock();
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice           dice(seeds.first + index);
        const unsigned width  = 1 + dice.Below(16);
        const unsigned height = 1 + dice.Below(16);
        const unsigned srcX   = dice.Below(17 - width);
        const unsigned srcY   = dice.Below(17 - height);
        const int      x      = dice.Between(-18, 26);
        const int      y      = dice.Between(-18, 20);
        // the pivot anywhere on whole or half pixels: what counts is where it puts the corner
        const float pivotX = static_cast<float>(dice.Between(-40, 40)) / 2;
        const float pivotY = static_cast<float>(dice.Between(-40, 40)) / 2;
        const float turns  = static_cast<float>(360 * dice.Between(-3, 3));
        const Clip  clip   = ThrowClip(dice, 24, 18);
        const int   alpha  = dice.OneIn(2) ? 255 : dice.NextByte();
        for (auto* const target : {&onTurned, &onPlain})
        {
            target->SetCliprect(static_cast<Tov_UInt>(clip.minX), static_cast<Tov_UInt>(clip.minY),
                                static_cast<Tov_UInt>(clip.maxX), static_cast<Tov_UInt>(clip.maxY));
        }
        turned.fill(0x80123456);
        plain.fill(0x80123456);
        onPlain.Blit(&source, width, height, srcX, srcY, x, y, 0, static_cast<Tov_UByte>(alpha), 0);
        onTurned.RotBlit(&source, width, height, srcX, srcY, static_cast<float>(x) + pivotX,
                         static_cast<float>(y) + pivotY, turns, 0, 1, 1, pivotX, pivotY, static_cast<Tov_UByte>(alpha),
                         0);
        ASSERT_TRUE(turned == plain) << "seed " << seeds.first + index;
    }
}

TEST(RotBlitGeometry, QuarterTurnsAndMirrorsPermuteThePixels)
{
    const Seeds                        seeds(support::CasesOf(100000));
    std::array<std::uint32_t, 12 * 12> pixels{};
    std::array<std::uint32_t, 24 * 18> drawn{};
    Dice(2).Fill(pixels.data(), sizeof pixels);
    support::AnySource     source(nullptr, BM_ARGB32, 12, 12, pixels.data(), 0, true);
    support::PitchedTarget target(nullptr, 24, 18, drawn.data());
    target.Lock();
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice       dice(seeds.first + index);
        const int  width    = dice.Between(1, 12);
        const int  height   = dice.Between(1, 12);
        const int  srcX     = dice.Between(0, 12 - width);
        const int  srcY     = dice.Between(0, 12 - height);
        const int  x        = dice.Between(-2, 26);
        const int  y        = dice.Between(-2, 20);
        const int  pivotX   = dice.Between(0, width);
        const int  pivotY   = dice.Between(0, height);
        const int  quarters = dice.Between(-7, 7);
        const int  mirrorX  = dice.OneIn(3) ? -1 : 1;
        const int  mirrorY  = dice.OneIn(3) ? -1 : 1;
        const Clip clip     = ThrowClip(dice, 24, 18);
        target.SetCliprect(static_cast<Tov_UInt>(clip.minX), static_cast<Tov_UInt>(clip.minY),
                           static_cast<Tov_UInt>(clip.maxX), static_cast<Tov_UInt>(clip.maxY));
        std::array<std::uint32_t, 24 * 18> expected{};
        drawn.fill(0);
        // Twice the centre of each source pixel, seen from the pivot, mirrored, turned clockwise by quarters.
        for (int q = 0; q < height; ++q)
        {
            for (int p = 0; p < width; ++p)
            {
                int right = mirrorX * (2 * p + 1 - 2 * pivotX);
                int down  = mirrorY * (2 * q + 1 - 2 * pivotY);
                for (int quarter = 0; quarter < (quarters + 8) % 4; ++quarter)
                {
                    const int before = right;
                    right            = -down;
                    down             = before;
                }
                const int toX = (2 * x + right - 1) / 2;
                const int toY = (2 * y + down - 1) / 2;
                if (2 * x + right < 0 || 2 * y + down < 0 || !IsInside(clip, toX, toY)) continue;
                expected[static_cast<unsigned>(toY * 24 + toX)] =
                    pixels[static_cast<unsigned>((srcY + q) * 12 + srcX + p)];
            }
        }
        target.RotBlit(&source, static_cast<Tov_UInt>(width), static_cast<Tov_UInt>(height),
                       static_cast<Tov_UInt>(srcX), static_cast<Tov_UInt>(srcY), static_cast<float>(x),
                       static_cast<float>(y), static_cast<float>(90 * quarters), 0, static_cast<float>(mirrorX),
                       static_cast<float>(mirrorY), static_cast<float>(pivotX), static_cast<float>(pivotY), 255, 0);
        ASSERT_TRUE(drawn == expected) << "seed " << seeds.first + index << ": " << quarters << " quarters, mirrors "
                                       << mirrorX << " " << mirrorY;
    }
}

TEST(RotBlitGeometry, FilteredUprightAndUnstretchedItSamplesAllButTheCentres)
{
    const Seeds seeds(20000);
    Field       field(64, 64);
    int         worst = 0;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice     dice(seeds.first + index);
        RotWhere where              = ThrowTurn(dice, 24, 64, 64, {1, 1});
        where.angle                 = static_cast<float>(90 * dice.Between(0, 3));
        where.dstX                  = std::floor(where.dstX);
        where.dstY                  = std::floor(where.dstY);
        where.rotPosX               = std::floor(where.rotPosX);
        where.rotPosY               = std::floor(where.rotPosY);
        const auto            drawn = field.Draw(where, BILINEAR);
        const reference::Turn turn(where);
        ASSERT_EQ(drawn.wrong, "") << Described(where);
        for (const RotPixel& pixel : drawn.pixels)
        {
            const auto at = turn.ToSource({pixel.x + 0.5, pixel.y + 0.5});
            const int  v  = static_cast<int>(std::lround((at.x - 0.5 + where.srcX) * 65536));
            const int  u  = static_cast<int>(std::lround((at.y - 0.5 + where.srcY) * 65536));
            worst = std::max({worst, static_cast<int>(std::abs(pixel.v - v)), static_cast<int>(std::abs(pixel.u - u))});
        }
    }
    EXPECT_LE(worst, 65536 / 4096) << "in 1/65536 px";
}

// ---- silhouettes ----------------------------------------------------------------------------------------------------

namespace
{

//! Which pixels of a field are drawn how often.
class Silhouette
{
public:
    Silhouette(unsigned width, unsigned height) : m_width(width), m_count(std::size_t{width} * height) {}

    void Clear() { std::fill(m_count.begin(), m_count.end(), std::uint8_t{0}); }
    void Add(const std::vector<RotPixel>& pixels)
    {
        for (const RotPixel& pixel : pixels) ++m_count[Index(pixel.x, pixel.y)];
    }
    int At(int x, int y) const { return m_count[Index(x, y)]; }

private:
    std::size_t Index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * m_width + static_cast<std::size_t>(x);
    }

    std::size_t               m_width;
    std::vector<std::uint8_t> m_count;
};

//! The pixels of a field that a turned rectangle may touch.
Clip BoxAround(const RotWhere& where, unsigned width, unsigned height)
{
    const reference::Turn turn(where);
    double                minX = 1e9, minY = 1e9, maxX = -1e9, maxY = -1e9;
    for (const double p : {0.0, static_cast<double>(where.width)})
    {
        for (const double q : {0.0, static_cast<double>(where.height)})
        {
            const auto at = turn.ToTarget({p, q});
            minX          = std::min(minX, at.x);
            minY          = std::min(minY, at.y);
            maxX          = std::max(maxX, at.x);
            maxY          = std::max(maxY, at.y);
        }
    }
    return {std::max<std::int64_t>(0, std::llround(std::floor(minX)) - 1),
            std::max<std::int64_t>(0, std::llround(std::floor(minY)) - 1),
            std::min<std::int64_t>(width - 1, std::llround(std::ceil(maxX)) + 1),
            std::min<std::int64_t>(height - 1, std::llround(std::ceil(maxY)) + 1)};
}

//! The rounding of 16.16 edges over the rows of a field: closer to the outline nobody can tell.
constexpr double NEAR_OUTLINE = 1.0 / 512;

}  // namespace

TEST(RotBlitGeometry, APixelIsDrawnWhereItsCentreLiesInside)
{
    constexpr unsigned WIDTH = 96, HEIGHT = 72;
    const Seeds        seeds(support::CasesOf(100000));
    Field              field(WIDTH, HEIGHT);
    Silhouette         silhouette(WIDTH, HEIGHT);
    std::uint64_t      pixels    = 0;
    std::uint64_t      missing   = 0;
    int                worstCase = 0;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice     dice(seeds.first + index);
        RotWhere where = ThrowTurn(dice, 40, WIDTH, HEIGHT, {0.3F, 3.0F});
        if (dice.OneIn(8)) where.angle = static_cast<float>(90 * dice.Between(0, 3));
        if (LongestChord(where) < 1.0 + 1.0 / 32) continue;  // a needle, which has rules of its own
        const auto drawn = field.Draw(where, 0);
        ASSERT_EQ(drawn.wrong, "") << Described(where);
        silhouette.Clear();
        silhouette.Add(drawn.pixels);
        pixels += drawn.pixels.size();
        const reference::Turn turn(where);
        const Clip            box    = BoxAround(where, WIDTH, HEIGHT);
        int                   absent = 0;
        for (int y = static_cast<int>(box.minY); y <= box.maxY; ++y)
        {
            for (int x = static_cast<int>(box.minX); x <= box.maxX; ++x)
            {
                const double depth = turn.Depth({x + 0.5, y + 0.5});
                const bool   here  = silhouette.At(x, y) != 0;
                ASSERT_FALSE(here && depth < -NEAR_OUTLINE)
                    << "(" << x << ", " << y << ") lies " << -depth << " px outside: " << Described(where);
                if (!here && depth > NEAR_OUTLINE) ++absent;
            }
        }
        missing += static_cast<std::uint64_t>(absent);
        worstCase = std::max(worstCase, absent);
    }
    std::printf("    %llu of %llu pixels missing (%.4f %%), at most %d of one picture\n",
                static_cast<unsigned long long>(missing), static_cast<unsigned long long>(pixels),
                100.0 * static_cast<double>(missing) / static_cast<double>(pixels), worstCase);
    // A row that is shorter than a pixel at the top or bottom corner is left out.
    EXPECT_LE(worstCase, 2);
    EXPECT_LE(static_cast<double>(missing), 0.0005 * static_cast<double>(pixels));
}

TEST(RotBlitGeometry, PartsThatAbutNeitherOverlapNorLeaveAGap)
{
    constexpr unsigned WIDTH = 96, HEIGHT = 72;
    const Seeds        seeds(support::CasesOf(100000));
    Field              field(WIDTH, HEIGHT);
    Silhouette         whole(WIDTH, HEIGHT);
    Silhouette         parts(WIDTH, HEIGHT);
    std::uint64_t      pixels   = 0;
    std::uint64_t      overlaps = 0;
    std::uint64_t      gaps     = 0;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice     dice(seeds.first + index);
        RotWhere where                     = ThrowTurn(dice, 40, WIDTH, HEIGHT, {0.3F, 3.0F});
        where.rotPosX                      = std::floor(where.rotPosX * 16) / 16;  // exact after the cut
        where.rotPosY                      = std::floor(where.rotPosY * 16) / 16;
        RotWhere       one                 = where;
        RotWhere       other               = where;
        const bool     columns             = dice.OneIn(2);
        const unsigned cut                 = 1 + dice.Below((columns ? where.width : where.height) - 1);
        (columns ? one.width : one.height) = cut;
        (columns ? other.width : other.height) -= cut;
        (columns ? other.srcX : other.srcY) += cut;
        (columns ? other.rotPosX : other.rotPosY) -= static_cast<float>(cut);
        if (LongestChord(one) < 1.0 + 1.0 / 32 || LongestChord(other) < 1.0 + 1.0 / 32) continue;
        whole.Clear();
        parts.Clear();
        whole.Add(field.Draw(where, 0).pixels);
        parts.Add(field.Draw(one, 0).pixels);
        parts.Add(field.Draw(other, 0).pixels);
        const Clip box = BoxAround(where, WIDTH, HEIGHT);
        for (int y = static_cast<int>(box.minY); y <= box.maxY; ++y)
        {
            for (int x = static_cast<int>(box.minX); x <= box.maxX; ++x)
            {
                pixels += static_cast<unsigned>(whole.At(x, y));
                if (parts.At(x, y) > 1) ++overlaps;
                if (parts.At(x, y) == 0 && whole.At(x, y) != 0) ++gaps;
            }
        }
    }
    std::printf("    %llu overlaps and %llu gaps in %llu pixels\n", static_cast<unsigned long long>(overlaps),
                static_cast<unsigned long long>(gaps), static_cast<unsigned long long>(pixels));
    // Overlaps come from edges rounded to 16.16 next to a pixel's centre, gaps from corner rows shorter than a pixel too.
    EXPECT_LE(static_cast<double>(overlaps), 0.00002 * static_cast<double>(pixels));
    EXPECT_LE(static_cast<double>(gaps), 0.0005 * static_cast<double>(pixels));
}

TEST(RotBlitGeometry, QuartersOfABoardMeetInTheMiddleAtEveryEighthTurn)
{
    // On whole pixels, where four corners meet in one point: not even the pixels around it are lost or drawn twice.
    constexpr int EXTENT = 96, MIDDLE = 48;
    Field         field(EXTENT, EXTENT);
    Silhouette    parts(EXTENT, EXTENT);
    for (unsigned half = 2; half <= 32; ++half)
    {
        for (int eighth = -8; eighth <= 8; ++eighth)
        {
            parts.Clear();
            for (unsigned quarter = 0; quarter < 4; ++quarter)
            {
                RotWhere where{half, half, quarter % 2 * half, quarter / 2 * half, MIDDLE, MIDDLE, 0, 1, 1, 0, 0};
                where.angle   = static_cast<float>(45 * eighth);
                where.rotPosX = quarter % 2 == 0 ? static_cast<float>(half) : 0;
                where.rotPosY = quarter / 2 == 0 ? static_cast<float>(half) : 0;
                parts.Add(field.Draw(where, 0).pixels);
            }
            for (int y = MIDDLE - 2; y < MIDDLE + 2; ++y)
            {
                for (int x = MIDDLE - 2; x < MIDDLE + 2; ++x)
                {
                    const bool corner = std::abs(2 * x + 1 - 2 * MIDDLE) + std::abs(2 * y + 1 - 2 * MIDDLE) > 4;
                    if (half == 2 && corner) continue;  // a diamond of two pixels ends here
                    EXPECT_EQ(parts.At(x, y), 1) << "(" << x << ", " << y << "), quarters of " << half << " pixels at "
                                                 << 45 * eighth << " degrees";
                }
            }
        }
    }
}

TEST(RotBlitGeometry, ThePixelCountBarelyDependsOnTheAngle)
{
    // What a draw costs is what it draws: 64x64 pixels, whatever the angle, in steps of a tenth of a degree.
    Field       field(120, 120);
    std::size_t least = 1000000;
    std::size_t most  = 0;
    for (int tenth = 0; tenth < 3600; ++tenth)
    {
        const RotWhere where{64, 64, 0, 0, 60, 60, static_cast<float>(tenth) / 10.0F, 1, 1, 32, 32};
        const auto     drawn = field.Draw(where, BILINEAR);
        ASSERT_EQ(drawn.wrong, "") << Described(where);
        least = std::min(least, drawn.pixels.size());
        most  = std::max(most, drawn.pixels.size());
    }
    EXPECT_GE(least, 4096U - 64);
    EXPECT_LE(most, 4096U + 64);
}

TEST(RotBlitGeometry, InStepsOfATenthOfADegreeNothingBehindTheSourceIsRead)
{
    for (const unsigned type : {unsigned{BM_ARGB32}, unsigned{BM_ALPHA8}})
    {
        const std::size_t  bytes = type == BM_ARGB32 ? 4 : 1;
        support::Fence     back(17 * 13 * bytes, support::Against::BackFence);
        support::Fence     front(17 * 13 * bytes, support::Against::FrontFence);
        support::AnySource atBack(nullptr, type, 17, 13, back.Data(), 0, true);
        support::AnySource atFront(nullptr, type, 17, 13, front.Data(), 0, true);
        support::CrashNote note("rotation in steps of a tenth of a degree");
        for (int tenth = 0; tenth < 3600; ++tenth)
        {
            note.InCase(static_cast<std::uint64_t>(tenth));
            for (Kanvo_Bitmap* const source :
                 {static_cast<Kanvo_Bitmap*>(&atBack), static_cast<Kanvo_Bitmap*>(&atFront)})
            {
                for (const float stretch : {0.4F, 1.0F, 2.5F})
                {
                    Stage stage(OB_NONE, 40, 40, 0xFF000000);
                    stage.target.RotBlit(source, 17, 13, 0, 0, 20.3F, 19.6F, static_cast<float>(tenth) / 10.0F,
                                         BILINEAR, stretch, stretch, 8.5F, 6.5F, 255, 0);
                }
            }
        }
    }
}

// ---- positions ------------------------------------------------------------------------------------------------------

namespace
{

//! How far samples are from where they belong, in pixels of the coarser of source and target.
struct Errors
{
    double        sum   = 0;
    double        worst = 0;
    std::uint64_t count = 0;
    std::string   example;

    void Add(double error, const RotWhere& where)
    {
        sum += error;
        ++count;
        if (error <= worst) return;
        worst   = error;
        example = Described(where);
    }
    double Mean() const { return sum / static_cast<double>(count); }
};

}  // namespace

TEST(RotBlitGeometry, PositionsErrNoMoreThanAHundredthOfAPixel)
{
    constexpr unsigned WIDTH = 320, HEIGHT = 240;
    const Seeds        seeds(4000);
    Field              field(WIDTH, HEIGHT);
    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
    {
        Errors inner;
        Errors first;
        for (std::uint64_t index = 0; index < seeds.count; ++index)
        {
            Dice     dice(seeds.first + index);
            RotWhere where = ThrowTurn(dice, 120, WIDTH, HEIGHT, dice.OneIn(2) ? Range{0.1F, 1.0F} : Range{1.0F, 5.0F});
            if (LongestChord(where) < 1.0 + 1.0 / 32) continue;
            const auto drawn = field.Draw(where, filter);
            ASSERT_EQ(drawn.wrong, "") << Described(where);
            const reference::Turn turn(where);
            const double          stretchX = std::fabs(static_cast<double>(where.stretchX));
            const double          stretchY = std::fabs(static_cast<double>(where.stretchY));
            // filtered, the rectangle is mapped onto the centres of its pixels
            const double shrinkX = filter != 0 ? (where.width - 1.0) / where.width : 1.0;
            const double shrinkY = filter != 0 ? (where.height - 1.0) / where.height : 1.0;
            for (const RotPixel& pixel : drawn.pixels)
            {
                const auto   at     = turn.ToSource({pixel.x + 0.5, pixel.y + 0.5});
                const double errorX = std::fabs(pixel.v / 65536.0 - where.srcX - at.x * shrinkX);
                const double errorY = std::fabs(pixel.u / 65536.0 - where.srcY - at.y * shrinkY);
                const double error  = std::max(errorX * std::min(1.0, stretchX), errorY * std::min(1.0, stretchY));
                if (pixel.firstOfRow)
                {
                    first.Add(std::max(errorX * stretchX, errorY * stretchY), where);
                }
                else
                {
                    inner.Add(error, where);
                }
            }
        }
        std::printf("    %s: inner mean %.4f, worst %.4f px; first of a row mean %.4f, worst %.4f px of the target\n",
                    filter != 0 ? "filtered" : "nearest", inner.Mean(), inner.worst, first.Mean(), first.worst);
        EXPECT_LE(inner.Mean(), 0.003);
        EXPECT_LE(inner.worst, 0.010) << inner.example;
        // a row's first sample lies one pixel inside its edge: up to a pixel right of the pixel's own centre
        EXPECT_LE(first.Mean(), 0.37);
        EXPECT_LE(first.worst, 1.04) << first.example;
    }
}

TEST(RotBlitGeometry, UprightAndFilteredTheContentIsHalfAPixelOffAtMost)
{
    const Seeds seeds(20000);
    Field       field(96, 72);
    double      worst = 0;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice     dice(seeds.first + index);
        RotWhere where              = ThrowTurn(dice, 40, 96, 72, {0.3F, 3.0F});
        where.angle                 = static_cast<float>(90 * dice.Between(0, 3));
        const auto            drawn = field.Draw(where, BILINEAR);
        const reference::Turn turn(where);
        ASSERT_EQ(drawn.wrong, "") << Described(where);
        for (const RotPixel& pixel : drawn.pixels)
        {
            const auto at = turn.ToSource({pixel.x + 0.5, pixel.y + 0.5});
            worst         = std::max({worst, std::fabs(pixel.v / 65536.0 - where.srcX - (at.x - 0.5)),
                                      std::fabs(pixel.u / 65536.0 - where.srcY - (at.y - 0.5))});
        }
    }
    EXPECT_LE(worst, 0.5 + 0.01);
}

TEST(RotBlitGeometry, AnglesAreDegreesWithoutEnd)
{
    Field      field(64, 64);
    const auto drawnAt = [&](float angle, Tov_Flag flags) {
        return field.Draw({20, 10, 0, 0, 30, 30, angle, 1.5F, 1.5F, 10, 5}, flags).pixels;
    };
    const auto areSame = [](const std::vector<RotPixel>& one, const std::vector<RotPixel>& other)
    {
        return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                          [](const RotPixel& a, const RotPixel& b)
                          { return a.x == b.x && a.y == b.y && a.v == b.v && a.u == b.u; });
    };
    for (const Tov_Flag filter : {Tov_Flag{0}, BILINEAR})
    {
        for (int degrees = 0; degrees < 360; degrees += 15)
        {
            for (const int turns : {-100, -2, -1, 1, 2, 2000})
            {
                EXPECT_TRUE(areSame(drawnAt(static_cast<float>(degrees), filter),
                                    drawnAt(static_cast<float>(degrees + 360 * turns), filter)))
                    << degrees << " degrees and " << turns << " turns";
            }
        }
        EXPECT_TRUE(areSame(drawnAt(-90, filter), drawnAt(270, filter)));
        EXPECT_FALSE(areSame(drawnAt(89.9F, filter), drawnAt(90, filter)));
    }
}

// ---- hostile --------------------------------------------------------------------------------------------------------

namespace
{

using Limits = std::numeric_limits<float>;

const std::initializer_list<float> HOSTILE{Limits::quiet_NaN(),
                                           Limits::infinity(),
                                           -Limits::infinity(),
                                           Limits::max(),
                                           -Limits::max(),
                                           Limits::denorm_min(),
                                           -Limits::denorm_min(),
                                           Limits::min(),
                                           0.0F,
                                           -0.0F,
                                           1e30F,
                                           -1e30F,
                                           1e6F,
                                           -1e6F,
                                           1000001.0F,
                                           32767.0F,
                                           -32768.0F,
                                           2147483648.0F,
                                           1e-10F,
                                           0.001F,
                                           1.0F,
                                           -1.0F,
                                           16.0F,
                                           45.0F,
                                           90.0F};

float ThrowHostile(Dice& dice)
{
    return dice.Of(HOSTILE);
}

//! Most numbers as they should be, one to four of them hostile.
RotWhere ThrowHostileTurn(Dice& dice)
{
    RotWhere  where   = ThrowTurn(dice, 32, 64, 48, {0.5F, 3.0F});
    float*    all[]   = {&where.dstX,     &where.dstY,    &where.angle,  &where.stretchX,
                         &where.stretchY, &where.rotPosX, &where.rotPosY};
    const int hostile = dice.Between(1, 4);
    for (int count = 0; count < hostile; ++count)
    {
        const unsigned which = dice.Below(7);
        *all[which]          = ThrowHostile(dice);
    }
    const std::initializer_list<std::uint32_t> sizes{0,     1,     2,          32766,      32767,
                                                     32768, 65536, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    if (dice.OneIn(4)) where.width = dice.Of(sizes);
    if (dice.OneIn(4)) where.height = dice.Of(sizes);
    if (dice.OneIn(8)) where.srcX = dice.Of(sizes);
    if (dice.OneIn(8)) where.srcY = dice.Of(sizes);
    return where;
}

}  // namespace

TEST(RotBlitGeometry, HostileNumbersGiveNoEdgesOrGoodOnes)
{
    const Seeds   seeds(200000);
    Field         field(64, 48);
    std::uint64_t drawn = 0;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice           dice(seeds.first + index);
        const RotWhere where = ThrowHostileTurn(dice);
        const Clip     clip  = ThrowClip(dice, 64, 48);
        field.SetClip(clip);
        const auto result = field.Draw(where, dice.OneIn(2) ? BILINEAR : 0);
        ASSERT_EQ(result.wrong, "") << "seed " << seeds.first + index << ": " << Described(where);
        if (!result.pixels.empty()) ++drawn;
        for (const float value :
             {where.dstX, where.dstY, where.angle, where.stretchX, where.stretchY, where.rotPosX, where.rotPosY})
        {
            ASSERT_TRUE(std::isfinite(value) || result.pixels.empty()) << Described(where);
        }
        if (where.stretchX == 0 || where.stretchY == 0 || where.width == 0 || where.height == 0)
        {
            ASSERT_TRUE(result.pixels.empty()) << Described(where);
        }
    }
    EXPECT_GT(drawn, seeds.count / 100);
}

TEST(RotBlitGeometry, HostileNumbersDrawNothingOrClippedInBoundedTime)
{
    const Seeds    seeds(10000);
    support::Fence pixels(32 * 32 * 4);
    support::Fence canvas(64 * 48 * 4);
    const auto     start = std::chrono::steady_clock::now();
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        Dice                   dice(seeds.first + index);
        const RotWhere         at     = ThrowHostileTurn(dice);
        const unsigned         type   = dice.Of<unsigned>({BM_ARGB32, BM_ALPHA8});
        const std::size_t      room   = type == BM_ALPHA8 ? 1 : 4;
        const Tov_Flag         filter = dice.OneIn(2) ? BILINEAR : 0;
        const Clip             clip   = ThrowClip(dice, 64, 48);
        support::PitchedTarget target(nullptr, 64, 48, canvas.Data());
        support::AnySource     source(nullptr, type, 32, 32, pixels.Data() + pixels.Size() - 1024 * room, 0, true);
        target.Lock();
        target.SetCliprect(static_cast<Tov_UInt>(clip.minX), static_cast<Tov_UInt>(clip.minY),
                           static_cast<Tov_UInt>(clip.maxX), static_cast<Tov_UInt>(clip.maxY));
        target.RotBlit(&source, at.width, at.height, at.srcX, at.srcY, at.dstX, at.dstY, at.angle, filter, at.stretchX,
                       at.stretchY, at.rotPosX, at.rotPosY, 200, 0);
        target.RotBlitColor(&source, at.width, at.height, at.srcX, at.srcY, at.dstX, at.dstY, 0xFF00FF00, at.angle,
                            filter, at.stretchX, at.stretchY, at.rotPosX, at.rotPosY, 200);
        target.RotBlitAlpha(&source, &source, at.width, at.height, at.srcX, at.srcY, at.dstX, at.dstY, at.angle, filter,
                            at.stretchX, at.stretchY, at.rotPosX, at.rotPosY, 200);
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_LT(taken.count(), 5.0) << "seconds for " << seeds.count << " calls of each kind";
    EXPECT_TRUE(canvas.IsSlackUntouched());
}

TEST(RotBlitGeometry, TheLimitsAreWhereTheySay)
{
    Field      field(64, 48);
    const auto draws = [&](const RotWhere& where, Tov_Flag flags = 0)
    { return !field.Draw(where, flags).pixels.empty(); };
    EXPECT_TRUE(draws({32767, 4, 0, 0, 30, 20, 30, 1, 1, 16000, 2}));
    EXPECT_TRUE(draws({4, 32767, 0, 0, 30, 20, 30, 1, 1, 2, 16000}));
    EXPECT_FALSE(draws({32768, 4, 0, 0, 30, 20, 30, 1, 1, 16000, 2}));
    EXPECT_FALSE(draws({32767, 4, 1, 0, 30, 20, 30, 1, 1, 16000, 2}));
    EXPECT_FALSE(draws({4, 4, 32764, 0, 30, 20, 30, 1, 1, 2, 2}));
    EXPECT_TRUE(draws({4, 4, 32763, 0, 30, 20, 30, 1, 1, 2, 2}));
    EXPECT_FALSE(draws({4, 4, 0, 32764, 30, 20, 30, 1, 1, 2, 2}));
    EXPECT_FALSE(draws({1, 4, 0, 0, 30, 20, 30, 3, 3, 0, 2}, BILINEAR));
    EXPECT_FALSE(draws({4, 1, 0, 0, 30, 20, 30, 3, 3, 2, 0}, BILINEAR));
    EXPECT_TRUE(draws({1, 1, 0, 0, 30, 20, 30, 3, 3, 0.5F, 0.5F}));
    EXPECT_TRUE(draws({4, 4, 0, 0, 30, 20, 30, 1e6F, 1e6F, 2, 2}));
    EXPECT_FALSE(draws({4, 4, 0, 0, 30, 20, 30, 1.1e6F, 1, 2, 2}));
    EXPECT_FALSE(draws({4, 4, 0, 0, 30, 20, 30, 1, -1.1e6F, 2, 2}));
    EXPECT_FALSE(draws({4, 4, 0, 0, 1.1e6F, 20, 30, 1e6F, 1e6F, 2, 2}));
    EXPECT_FALSE(draws({4, 4, 0, 0, 30, 20, 1e30F, 1, 1, 2, 2}));
}
