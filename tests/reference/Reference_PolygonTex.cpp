// Reference_PolygonTex: see the header. Coordinates are computed in 64 bits and cut to 32 where they are used; all floats
// are single precision, one rounding per operation.
#include "Reference_PolygonTex.h"

#include <algorithm>

#include "NaiveMix.h"

namespace reference
{

namespace
{

//! The texel's column or row: the whole part of the last 32 bits, repeated.
std::uint32_t Wrapped(std::int64_t coordinate, std::uint32_t mask)
{
    return (static_cast<std::uint32_t>(coordinate) >> 16) & mask;
}

std::uint32_t TexelAt(const Texels& texels, std::int64_t u, std::int64_t v)
{
    const std::size_t at =
        (std::size_t{Wrapped(v, texels.heightMask)} << texels.rowShift) + Wrapped(u, texels.widthMask);
    return texels.words != nullptr ? texels.words[at] : texels.bytes[at];
}

void PaintTexel(const Canvas& canvas, std::int64_t x, std::int64_t row, std::uint32_t texel, const TexelUse& use)
{
    if (x < 0 || x >= canvas.width || row < 0 || row >= canvas.height) return;
    std::uint32_t& pixel = canvas.pixels[row * canvas.pitch + x];
    pixel                = WriteTexel(pixel, texel, use);
}

//! What 32 bits make of a difference.
std::int64_t Low32(std::int64_t value)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

//! u / z as 16.16.
std::int64_t Quotient(float u, float inverse)
{
    const float texels = u * inverse;
    return Truncated(texels * 65536.0F);
}

}  // namespace

std::uint32_t WriteTexel(std::uint32_t before, std::uint32_t texel, const TexelUse& use)
{
    const auto byte = [](std::uint32_t value) { return static_cast<int>(value & 255U); };
    switch (use.writeback)
    {
    case Writeback::Default: return texel;
    case Writeback::Alpha: return support::MixLinear(before, texel, byte(use.data));
    case Writeback::Additive:
    {
        const support::Channels one   = support::Split(before);
        const support::Channels other = support::Split(texel);
        return support::Join(255, std::min(255, one[1] + other[1]), std::min(255, one[2] + other[2]),
                             std::min(255, one[3] + other[3]));
    }
    case Writeback::Color: return texel == 0 ? before : support::MixLinear(before, use.data, byte(texel));
    case Writeback::ColorAlpha:
    {
        const int alpha = byte(use.data >> 24) * byte(texel) / 256;
        return alpha == 0 ? before : support::MixLinear(before, use.data & 0xFFFFFFU, alpha);
    }
    }
    return before;
}

void TextureSpan(const Canvas& canvas, const Span& span, const Texels& texels, const AffineFrame& frame,
                 const TexelUse& use)
{
    for (std::int64_t x = span.start >> 16; x <= span.end >> 16; ++x)
        PaintTexel(canvas, x, span.row, TexelAt(texels, frame.u0 + x * frame.ux, frame.v0 + x * frame.vx), use);
}

std::vector<TexturePoint> PointsOf(const Span& span, const PerspectiveFrame& frame)
{
    std::vector<TexturePoint> points;
    const std::int64_t        first = span.start >> 16;
    std::int64_t              left  = (span.end >> 16) - first + 1;
    if (left <= 0) return points;

    const auto   toFirst = static_cast<float>(first);
    const float  offsetU = toFirst * frame.ux;
    const float  offsetV = toFirst * frame.vx;
    const float  offsetZ = toFirst * frame.zx;
    float        u       = frame.u0 + offsetU;
    float        v       = frame.v0 + offsetV;
    float        z       = frame.z0 + offsetZ;
    float        inverse = 1.0F / z;
    TexturePoint from{Quotient(u, inverse), Quotient(v, inverse)};
    while (left > 0)
    {
        const std::int64_t pixels = std::min<std::int64_t>(left, 8);
        const auto         width  = static_cast<float>(pixels);
        const float        stepU  = width * frame.ux;
        const float        stepV  = width * frame.vx;
        const float        stepZ  = width * frame.zx;
        u += stepU;
        v += stepV;
        z += stepZ;
        inverse = 1.0F / z;
        const TexturePoint to{Quotient(u, inverse), Quotient(v, inverse)};
        const std::int64_t du = Low32(to.u - from.u) / pixels;
        const std::int64_t dv = Low32(to.v - from.v) / pixels;
        for (std::int64_t pixel = 0; pixel < pixels; ++pixel)
            points.push_back({from.u + pixel * du, from.v + pixel * dv});
        from = to;
        left -= pixels;
    }
    return points;
}

void TextureSpan(const Canvas& canvas, const Span& span, const Texels& texels, const PerspectiveFrame& frame,
                 const TexelUse& use)
{
    std::int64_t x = span.start >> 16;
    for (const TexturePoint& point : PointsOf(span, frame))
        PaintTexel(canvas, x++, span.row, TexelAt(texels, point.u, point.v), use);
}

void TextureSpans(const Canvas& canvas, const std::vector<Span>& spans, const Texels& texels, const AffineFrame& frame,
                  const TexelUse& use)
{
    for (const Span& span : spans)
    {
        AffineFrame row = frame;
        row.u0 += span.row * frame.uy;
        row.v0 += span.row * frame.vy;
        TextureSpan(canvas, span, texels, row, use);
    }
}

void TextureSpans(const Canvas& canvas, const std::vector<Span>& spans, const Texels& texels,
                  const PerspectiveFrame& frame, const TexelUse& use)
{
    for (const Span& span : spans)
    {
        const auto       y    = static_cast<float>(span.row);
        const float      rowU = y * frame.uy;
        const float      rowV = y * frame.vy;
        const float      rowZ = y * frame.zy;
        PerspectiveFrame row  = frame;
        row.u0 += rowU;
        row.v0 += rowV;
        row.z0 += rowZ;
        TextureSpan(canvas, span, texels, row, use);
    }
}

}  // namespace reference
