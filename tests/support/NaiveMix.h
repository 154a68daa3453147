// NaiveMix: the blends as one would explain them, channel by channel, with division that rounds towards minus infinity.
// No lanes, no masks, no shifts of negative numbers; what the library's arithmetic is held to.
#ifndef NAIVEMIX_H
#define NAIVEMIX_H

#include <array>
#include <cstdint>

namespace support
{

//! numerator / denominator, rounded towards minus infinity; denominator > 0.
constexpr int FloorDiv(int numerator, int denominator)
{
    const int quotient = numerator / denominator;
    return numerator % denominator < 0 ? quotient - 1 : quotient;
}

//! The way from dst to src by weight / full.
constexpr int MixChannel(int dst, int src, int weight, int full)
{
    return dst + FloorDiv((src - dst) * weight, full);
}

//! An ARGB32 word taken apart: alpha, red, green, blue.
using Channels = std::array<int, 4>;

constexpr Channels Split(std::uint32_t word)
{
    return {static_cast<int>(word / 16777216U), static_cast<int>(word / 65536U % 256U),
            static_cast<int>(word / 256U % 256U), static_cast<int>(word % 256U)};
}

constexpr std::uint32_t Join(int alpha, int red, int green, int blue)
{
    return static_cast<std::uint32_t>(alpha) * 16777216U + static_cast<std::uint32_t>(red) * 65536U +
           static_cast<std::uint32_t>(green) * 256U + static_cast<std::uint32_t>(blue);
}

//! a * b / 255, truncated.
constexpr int MulByte(int a, int b)
{
    return a * b / 255;
}

//! Alpha of a source of alpha src over a destination of alpha dst.
constexpr int OverAlpha(int dst, int src)
{
    return src + MulByte(255 - src, dst);
}

constexpr std::uint32_t MixColor(std::uint32_t dst, std::uint32_t src, int weight, int full, int alpha)
{
    const Channels d = Split(dst);
    const Channels s = Split(src);
    return Join(alpha, MixChannel(d[1], s[1], weight, full), MixChannel(d[2], s[2], weight, full),
                MixChannel(d[3], s[3], weight, full));
}

//! The blend of BlendPixel: seven bits of weight, no shortcut for 255.
constexpr std::uint32_t MixLinear(std::uint32_t dst, std::uint32_t src, int alpha)
{
    return MixColor(dst, src, alpha / 2, 128, OverAlpha(Split(dst)[0], alpha));
}

//! The blend of fills and coverage blits: eight bits of weight, and 255 gives the source.
constexpr std::uint32_t BlitMixLinear(std::uint32_t dst, std::uint32_t src, int alpha)
{
    return alpha == 255 ? src : MixColor(dst, src, alpha, 256, OverAlpha(Split(dst)[0], alpha));
}

//! The blend of BlendPixelSrcAlpha. The colour weight is the effective alpha where the result is opaque, else alpha.
constexpr std::uint32_t MixLinearSrcAlpha(std::uint32_t dst, std::uint32_t src, int alpha)
{
    const int effective = MulByte(alpha, Split(src)[0]);
    const int over      = OverAlpha(Split(dst)[0], effective);
    return MixColor(dst, src, (over == 255 ? effective : alpha) / 2, 128, over);
}

//! One channel of a 2x2 block: both rows, then between them.
constexpr int MixBlock(int topLeft, int topRight, int bottomLeft, int bottomRight, int weightX, int weightY, int full)
{
    return MixChannel(MixChannel(topLeft, topRight, weightX, full), MixChannel(bottomLeft, bottomRight, weightX, full),
                      weightY, full);
}

//! All four channels of a 2x2 block with seven bits of weight.
constexpr std::uint32_t MixBilinear(const std::array<std::uint32_t, 4>& block, int alphaX, int alphaY)
{
    Channels result{};
    for (std::size_t channel = 0; channel < 4; ++channel)
    {
        result[channel] = MixBlock(Split(block[0])[channel], Split(block[1])[channel], Split(block[2])[channel],
                                   Split(block[3])[channel], alphaX / 2, alphaY / 2, 128);
    }
    return Join(result[0], result[1], result[2], result[3]);
}

//! Every mix of two bytes by one weight: a table, so that a sweep over all triples looks results up.
class MixTable
{
public:
    MixTable(int weight, int full)
    {
        for (int dst = 0; dst < 256; ++dst)
        {
            for (int src = 0; src < 256; ++src)
            {
                m_result[static_cast<std::size_t>(dst * 256 + src)] =
                    static_cast<std::uint8_t>(MixChannel(dst, src, weight, full));
            }
        }
    }
    std::uint32_t operator()(unsigned dst, unsigned src) const { return m_result[dst * 256 + src]; }

private:
    std::array<std::uint8_t, 65536> m_result{};
};

}  // namespace support

#endif
