// Tests of the scaled loops alone: each draws what the naive reference draws, reads nothing behind the source's last pixel,
// and nothing outside the clip rectangle is touched. Two of them no entry ever takes.
#include "neonloops_stretch.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "BlitStage.h"
#include "Dice.h"
#include "Fence.h"
#include "Reference_Stretch.h"

namespace
{

using reference::Format;

//! A random rectangle of a source and one of a target, inside and beyond a clip rectangle.
struct LoopCase
{
    Tov_Int  dstX;
    Tov_Int  dstY;
    Tov_UInt dstWidth;
    Tov_UInt dstHeight;
    Tov_UInt srcWidth;
    Tov_UInt srcHeight;
    Tov_UInt srcX;
    Tov_UInt srcY;
    Tov_UInt clipX;
    Tov_UInt clipY;
    Tov_UInt clipWidth;
    Tov_UInt clipHeight;
};

constexpr Tov_UInt LOOP_SOURCE = 11, LOOP_TARGET_WIDTH = 19, LOOP_TARGET_HEIGHT = 13;

LoopCase ThrowLoopCase(support::Dice& dice)
{
    LoopCase thrown{};
    thrown.srcWidth   = 2 + dice.Below(LOOP_SOURCE - 1);
    thrown.srcHeight  = 2 + dice.Below(LOOP_SOURCE - 1);
    thrown.srcX       = dice.Below(LOOP_SOURCE - thrown.srcWidth + 1);
    thrown.srcY       = dice.Below(LOOP_SOURCE - thrown.srcHeight + 1);
    thrown.dstWidth   = 1 + dice.Below(40);
    thrown.dstHeight  = 1 + dice.Below(40);
    thrown.clipX      = dice.Below(LOOP_TARGET_WIDTH);
    thrown.clipY      = dice.Below(LOOP_TARGET_HEIGHT);
    thrown.clipWidth  = 1 + dice.Below(LOOP_TARGET_WIDTH - thrown.clipX);
    thrown.clipHeight = 1 + dice.Below(LOOP_TARGET_HEIGHT - thrown.clipY);
    thrown.dstX       = dice.Between(-20, 10);
    thrown.dstY       = dice.Between(-20, 10);
    return thrown;
}

//! Calls a loop and the naive reference 4,000 times. The source ends at a protected page.
template <class SrcPixel, class Loop, class Expect, class... Extra>
void ExpectLoop(Loop loop, Format format, Expect expect, Extra... extra)
{
    support::Dice              dice(37);
    support::Fence             pixels(LOOP_SOURCE * LOOP_SOURCE * sizeof(SrcPixel));
    support::Fence             target(LOOP_TARGET_WIDTH * LOOP_TARGET_HEIGHT * 4);
    std::vector<std::uint32_t> expected(LOOP_TARGET_WIDTH * LOOP_TARGET_HEIGHT);
    for (int turn = 0; turn < 4000; ++turn)
    {
        dice.Fill(pixels.Data(), pixels.Size());
        dice.Fill(target.Data(), target.Size());
        std::memcpy(expected.data(), target.Data(), target.Size());
        const LoopCase    at = ThrowLoopCase(dice);
        reference::Target onto;
        onto.picture = {Format::Argb32,
                        LOOP_TARGET_WIDTH,
                        LOOP_TARGET_HEIGHT,
                        LOOP_TARGET_WIDTH * 4,
                        reinterpret_cast<std::uint8_t*>(expected.data()),
                        false};
        onto.clip    = {at.clipX, at.clipY, at.clipX + at.clipWidth - 1, at.clipY + at.clipHeight - 1};
        const reference::Picture source{format,        LOOP_SOURCE, LOOP_SOURCE, LOOP_SOURCE * sizeof(SrcPixel),
                                        pixels.Data(), false};
        expect(onto, source,
               reference::StretchWhere{at.srcWidth, at.srcHeight, at.srcX, at.srcY, at.dstWidth, at.dstHeight,
                                       at.dstX + static_cast<Tov_Int>(at.clipX),
                                       at.dstY + static_cast<Tov_Int>(at.clipY)});
        loop(target.As<std::uint32_t>() + at.clipY * LOOP_TARGET_WIDTH + at.clipX,
             reinterpret_cast<const SrcPixel*>(pixels.Data()), LOOP_TARGET_WIDTH * 4,
             static_cast<Tov_UInt>(LOOP_SOURCE * sizeof(SrcPixel)), at.dstX, at.dstY, at.dstWidth, at.dstHeight,
             at.srcWidth, at.srcHeight, at.srcX, at.srcY, at.clipWidth, at.clipHeight, extra...);
        ASSERT_EQ(std::memcmp(expected.data(), target.Data(), target.Size()), 0) << "turn " << turn;
    }
}

//! The same for both filters. expect(target, source, where, flags) is called with 0 or BLIT_BILINEAR.
template <class SrcPixel, class Loop, class Expect, class... Extra>
void ExpectLoops(Loop nearest, Loop filtered, Format format, Expect expect, Extra... extra)
{
    using reference::Picture;
    using reference::StretchWhere;
    ExpectLoop<SrcPixel>(
        nearest, format,
        [=](const reference::Target& target, const Picture& source, const StretchWhere& where)
        { expect(target, source, where, Tov_Flag{0}); },
        extra...);
    ExpectLoop<SrcPixel>(
        filtered, format,
        [=](const reference::Target& target, const Picture& source, const StretchWhere& where)
        { expect(target, source, where, Tov_Flag{BLIT_BILINEAR}); },
        extra...);
}

}  // namespace

TEST(neonloops_stretch, CopiesWithAlpha)
{
    ExpectLoops<std::uint32_t>(neonloops_stretchblit_nearest_argb32_argb32_clip,
                               neonloops_stretchblit_bilinear_argb32_argb32_clip, Format::Argb32,
                               [](const auto& target, const auto& source, const auto& where, Tov_Flag flags)
                               { reference::StretchBlit(target, source, where, flags, 255, 0); });
}

TEST(neonloops_stretch, BlendsByTheSamplesAlphaTimesTheOpacityAlsoAtFull)
{
    for (const int alpha : {0, 1, 128, 254, 255})
    {
        ExpectLoops<std::uint32_t>(
            neonloops_stretchblit_nearest_argb32_argb32_as_ag_clip,
            neonloops_stretchblit_bilinear_argb32_argb32_as_ag_clip, Format::Argb32,
            [=](const reference::Target& target, const reference::Picture& source, const auto& where, Tov_Flag flags)
            {
                reference::Target optimised = target;  // whose path through a map is this blend at any opacity
                optimised.optimised         = true;
                reference::StretchBlitAlpha(optimised, source, source, where, flags, alpha);
            },
            static_cast<Tov_UByte>(alpha));
    }
}

TEST(neonloops_stretch, ConvertsRgb565AndStores)
{
    ExpectLoops<std::uint16_t>(neonloops_stretchblit_nearest_argb32_rgb565_clip,
                               neonloops_stretchblit_bilinear_argb32_rgb565_clip, Format::Rgb565,
                               [](const auto& target, const auto& source, const auto& where, Tov_Flag flags)
                               { reference::StretchBlit(target, source, where, flags, 255, 0); });
}

TEST(neonloops_stretch, ConvertsRgb565AndBlendsByTheOpacityOrStoresAtFull)
{
    for (const int alpha : {0, 1, 128, 254, 255})
    {
        ExpectLoops<std::uint16_t>(
            neonloops_stretchblit_nearest_argb32_rgb565_ag_clip, neonloops_stretchblit_bilinear_argb32_rgb565_ag_clip,
            Format::Rgb565,
            [=](const auto& target, const auto& source, const auto& where, Tov_Flag flags)
            { reference::StretchBlit(target, source, where, flags, alpha, 0); },
            static_cast<Tov_UByte>(alpha));
    }
}

TEST(neonloops_stretch, BlendsAColourThroughA8)
{
    for (const std::uint32_t color : {0xFFFF8001U, 0x80123456U, 0x00FFFFFFU})
    {
        ExpectLoops<std::uint8_t>(
            neonloops_stretchblitcolor_nearest_argb32_a8_clip, neonloops_stretchblitcolor_bilinear_argb32_a8_clip,
            Format::A8,
            [=](const auto& target, const auto& source, const auto& where, Tov_Flag flags)
            { reference::StretchBlitColor(target, source, where, color, flags, 255); },
            color);
        for (const int alpha : {0, 1, 128, 254, 255})
        {
            ExpectLoops<std::uint8_t>(
                neonloops_stretchblitcolor_nearest_argb32_a8_ag_clip,
                neonloops_stretchblitcolor_bilinear_argb32_a8_ag_clip, Format::A8,
                [=](const auto& target, const auto& source, const auto& where, Tov_Flag flags)
                { reference::StretchBlitColor(target, source, where, color, flags, alpha); },
                color, static_cast<Tov_UByte>(alpha));
        }
    }
}
