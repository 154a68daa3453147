// Reference_PolygonTex: spans painted from a texture a second time, one texel at a time: affine, and in perspective with
// a correct quotient every eight pixels. Shares nothing with the library. Where the spans of a polygon lie is told by
// Reference_Polygon.h.
#ifndef REFERENCE_POLYGONTEX_H
#define REFERENCE_POLYGONTEX_H

#include <cstdint>
#include <vector>

#include "Reference_Line.h"
#include "Reference_Polygon.h"

namespace reference
{

//! Words or bytes, rows of a power of two, repeated in both directions.
struct Texels
{
    const std::uint32_t* words      = nullptr;  // colours
    const std::uint8_t*  bytes      = nullptr;  // or coverage
    std::uint32_t        widthMask  = 0;
    std::uint32_t        heightMask = 0;
    unsigned             rowShift   = 0;  // log2 of the texels from row to row
};

//! What becomes of a texel. data is the alpha of Alpha, the colour of Color, colour and alpha of ColorAlpha.
enum class Writeback
{
    Default,
    Alpha,
    Additive,
    Color,
    ColorAlpha
};

struct TexelUse
{
    Writeback     writeback = Writeback::Default;
    std::uint32_t data      = 0;
};

std::uint32_t WriteTexel(std::uint32_t before, std::uint32_t texel, const TexelUse& use);

//! Texture coordinates of the pixel (x, y): u = u0 + x ux + y uy, likewise v, in 16.16.
struct AffineFrame
{
    std::int64_t u0;
    std::int64_t ux;
    std::int64_t uy;
    std::int64_t v0;
    std::int64_t vx;
    std::int64_t vy;
};

//! The same for u, v and z that are linear on screen; the texture coordinates are u / z and v / z, in texels.
struct PerspectiveFrame
{
    float u0;
    float ux;
    float uy;
    float v0;
    float vx;
    float vy;
    float z0;
    float zx;
    float zy;
};

//! One span; its frame is that of the row: uy, vy and zy are not read, u0, v0, z0 are those of the row's pixel 0.
void TextureSpan(const Canvas& canvas, const Span& span, const Texels& texels, const AffineFrame& frame,
                 const TexelUse& use);
void TextureSpan(const Canvas& canvas, const Span& span, const Texels& texels, const PerspectiveFrame& frame,
                 const TexelUse& use);

//! The texture coordinates, 16.16, that a span in perspective gives its pixels, first to last.
struct TexturePoint
{
    std::int64_t u;
    std::int64_t v;
};
std::vector<TexturePoint> PointsOf(const Span& span, const PerspectiveFrame& frame);

void TextureSpans(const Canvas& canvas, const std::vector<Span>& spans, const Texels& texels, const AffineFrame& frame,
                  const TexelUse& use);
void TextureSpans(const Canvas& canvas, const std::vector<Span>& spans, const Texels& texels,
                  const PerspectiveFrame& frame, const TexelUse& use);

}  // namespace reference

#endif
