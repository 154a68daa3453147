// Reference_Rot: see the header. Nothing here is meant to be fast.
#include "Reference_Rot.h"

#include <algorithm>
#include <cmath>

#include "NaiveMix.h"
#include "Reference_Sample.h"

namespace reference
{

namespace
{

constexpr std::uint32_t FLAG_KEY      = 0x1;
constexpr std::uint32_t FLAG_BILINEAR = 0x40000;

//! Sums and products of 32 bits, as they come out.
std::int32_t Wrapped(std::int64_t value)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

//! The integer part of a product of two numbers in 16.16, rounded towards minus infinity.
std::int32_t FixedProduct(std::int64_t one, std::int64_t other)
{
    return Wrapped(PixelOf(one * other));
}

//! A source coordinate of an edge, one row further down.
void StepDown(std::int32_t& whole, std::uint16_t& fine, std::int32_t step, std::uint16_t fineStep)
{
    const std::int64_t next = (std::int64_t{whole} * 65536 + fine) + (std::int64_t{step} * 65536 + fineStep);
    whole                   = Wrapped(PixelOf(next));
    fine                    = static_cast<std::uint16_t>(next - PixelOf(next) * 65536);
}

}  // namespace

// ---- geometry -------------------------------------------------------------------------------------------------------

std::vector<RotPixel> ScanRot(const RotGeometry& geometry, const Clip& clip)
{
    std::vector<RotPixel> pixels;
    const std::int64_t    clipLeft  = clip.minX;
    const std::int64_t    clipRight = clip.maxX + 1;
    std::size_t           nextLeft  = 0;
    std::size_t           nextRight = 0;
    RotEdgeLeft           left{};
    RotEdgeRight          right{};
    for (std::int32_t y = geometry.right.front().y1; y < geometry.endY; ++y)
    {
        if (nextRight < geometry.right.size() && geometry.right[nextRight].y1 == y) right = geometry.right[nextRight++];
        if (nextLeft < geometry.left.size() && geometry.left[nextLeft].y1 == y) left = geometry.left[nextLeft++];
        std::int32_t v     = left.v;
        std::int32_t u     = left.u;
        std::int64_t first = PixelOf(left.sx);
        std::int64_t end   = PixelOf(right.sx);
        if (first < clipRight && end > clipLeft)
        {
            if (first < clipLeft)
            {
                v     = Wrapped(v + std::int64_t{geometry.av} * (clipLeft - first));
                u     = Wrapped(u + std::int64_t{geometry.au} * (clipLeft - first));
                first = clipLeft;
            }
            end = std::min(end, clipRight);
            pixels.push_back({static_cast<std::int32_t>(first), y, v, u, true});
            const std::int64_t rest = 65536 - (left.sx - PixelOf(left.sx) * 65536);
            v                       = Wrapped(std::int64_t{v} + FixedProduct(geometry.av, rest));
            u                       = Wrapped(std::int64_t{u} + FixedProduct(geometry.au, rest));
            for (std::int64_t x = first + 1; x < end; ++x)
            {
                pixels.push_back({static_cast<std::int32_t>(x), y, v, u, false});
                v = Wrapped(std::int64_t{v} + geometry.av);
                u = Wrapped(std::int64_t{u} + geometry.au);
            }
        }
        right.sx = Wrapped(std::int64_t{right.sx} + right.dx);
        left.sx  = Wrapped(std::int64_t{left.sx} + left.dx);
        StepDown(left.v, left.fineV, left.dv, left.fineDv);
        StepDown(left.u, left.fineU, left.du, left.fineDu);
    }
    return pixels;
}

namespace
{

std::uint32_t CutLength(std::uint32_t length, std::uint32_t from, std::int64_t size)
{
    const std::int64_t room = std::max<std::int64_t>(0, size - from);
    return static_cast<std::uint32_t>(std::min<std::int64_t>(length, room));
}

}  // namespace

RotWhere CutToSource(const RotWhere& where, const Picture& source, const Picture& map)
{
    RotWhere cut = where;
    cut.width    = CutLength(where.width, where.srcX, std::min(source.width, map.width));
    cut.height   = CutLength(where.height, where.srcY, std::min(source.height, map.height));
    return cut;
}

Turn::Turn(const RotWhere& where)
    : m_stretchX(static_cast<double>(where.stretchX)),
      m_stretchY(static_cast<double>(where.stretchY)),
      m_pivot{static_cast<double>(where.rotPosX), static_cast<double>(where.rotPosY)},
      m_destination{static_cast<double>(where.dstX), static_cast<double>(where.dstY)},
      m_width(where.width),
      m_height(where.height)
{
    const double degrees = std::remainder(static_cast<double>(where.angle), 360.0);
    m_cos                = std::cos(degrees * std::acos(-1.0) / 180.0);
    m_sin                = std::sin(degrees * std::acos(-1.0) / 180.0);
    if (degrees == 90.0 || degrees == -90.0) m_cos = 0;
    if (degrees == 180.0 || degrees == -180.0) m_sin = 0;
}

Turn::Point Turn::ToTarget(Point source) const
{
    const double x = m_stretchX * (source.x - m_pivot.x);
    const double y = m_stretchY * (source.y - m_pivot.y);
    return {m_destination.x + m_cos * x - m_sin * y, m_destination.y + m_sin * x + m_cos * y};
}

Turn::Point Turn::ToSource(Point target) const
{
    const double x = target.x - m_destination.x;
    const double y = target.y - m_destination.y;
    return {m_pivot.x + (m_cos * x + m_sin * y) / m_stretchX, m_pivot.y + (m_cos * y - m_sin * x) / m_stretchY};
}

double Turn::Depth(Point target) const
{
    const Point  source = ToSource(target);
    const double x      = std::min(source.x, m_width - source.x) * std::fabs(m_stretchX);
    const double y      = std::min(source.y, m_height - source.y) * std::fabs(m_stretchY);
    return std::min(x, y);
}

// ---- calls ----------------------------------------------------------------------------------------------------------

namespace
{

int Scaled(int coverage, int alpha)
{
    return alpha == 255 ? coverage : support::MulByte(coverage, alpha);
}

//! draw(word, pixel) returns the new word.
template <class Draw>
void Walk(RotOutcome& outcome, const Target& target, const std::optional<RotGeometry>& geometry, Draw draw)
{
    if (!geometry) return;
    Clip clip = target.clip;
    clip.maxX = std::min(clip.maxX, target.picture.width - 1);
    clip.maxY = std::min(clip.maxY, target.picture.height - 1);
    for (const RotPixel& pixel : ScanRot(*geometry, clip))
    {
        const std::uint32_t word = WordAt(target.picture, pixel.x, pixel.y);
        SetWord(target.picture, pixel.x, pixel.y, draw(word, pixel));
        ++outcome.pixels;
    }
}

void CheckLock(RotOutcome& outcome, const Target& target)
{
    if (!target.locked) outcome.messages.emplace_back("bitmap not locked");
}

void CheckMap(RotOutcome& outcome, const Picture& map)
{
    if (map.format != Format::Argb32 && map.format != Format::A8 && map.format != Format::Alpha5_2)
    {
        outcome.messages.emplace_back("alpha bitmap is not the right type");
    }
}

}  // namespace

RotOutcome RotBlit(const Target& target, const Picture& source, const std::optional<RotGeometry>& geometry,
                   std::uint32_t flags, int alpha, std::uint32_t key)
{
    RotOutcome outcome;
    CheckLock(outcome, target);
    const bool filtered  = (flags & FLAG_BILINEAR) != 0;
    const bool keyed     = (flags & FLAG_KEY) != 0;
    const bool converted = source.format == Format::Argb32 || source.format == Format::A8;
    if (!converted && source.format != Format::Rgb32)
    {
        outcome.messages.emplace_back("blit not supported");
        return outcome;
    }
    Walk(outcome, target, geometry,
         [&](std::uint32_t under, const RotPixel& pixel)
         {
             const Sample sample = SampleAt(source, pixel.v, pixel.u, filtered);
             if (!converted && keyed && sample.Color() == key) return under;
             const std::uint32_t word = converted ? sample.WithOwnAlpha() : keyed ? sample.Color() : sample.stored;
             return alpha == 255 ? word : support::MixLinearSrcAlpha(under, word, alpha);
         });
    return outcome;
}

RotOutcome RotBlitColor(const Target& target, const Picture& map, const std::optional<RotGeometry>& geometry,
                        std::uint32_t color, std::uint32_t flags, int alpha)
{
    RotOutcome outcome;
    CheckLock(outcome, target);
    CheckMap(outcome, map);
    if (map.format != Format::Argb32 && map.format != Format::A8) return outcome;
    const bool filtered = (flags & FLAG_BILINEAR) != 0;
    Walk(outcome, target, geometry,
         [&](std::uint32_t under, const RotPixel& pixel)
         {
             const int coverage = SampleAt(map, pixel.v, pixel.u, filtered).Alpha();
             return support::MixLinear(under, color, Scaled(coverage, alpha));
         });
    return outcome;
}

RotOutcome RotBlitAlpha(const Target& target, const Picture& source, const Picture& map,
                        const std::optional<RotGeometry>& geometry, std::uint32_t flags, int alpha)
{
    RotOutcome outcome;
    CheckLock(outcome, target);
    CheckMap(outcome, map);
    if (source.format != Format::Argb32 && source.format != Format::Rgb565 && source.format != Format::A8)
    {
        outcome.messages.emplace_back("blit not supported");
        return outcome;
    }
    if (map.format != Format::Argb32 && map.format != Format::A8) return outcome;
    Picture plain = source;  // words are read without a thought for their alpha
    if (source.format == Format::Argb32) plain.format = Format::Rgb32;
    const bool filtered = (flags & FLAG_BILINEAR) != 0;
    Walk(outcome, target, geometry,
         [&](std::uint32_t under, const RotPixel& pixel)
         {
             const int    coverage = Scaled(SampleAt(map, pixel.v, pixel.u, filtered).Alpha(), alpha);
             const Sample sample   = SampleAt(plain, pixel.v, pixel.u, filtered);
             return filtered && alpha != 255 && pixel.firstOfRow
                        ? support::MixLinearSrcAlpha(under, sample.stored, coverage)
                        : support::MixLinear(under, sample.stored, coverage);
         });
    return outcome;
}

}  // namespace reference
