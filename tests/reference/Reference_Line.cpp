// Reference_Line: see the header. All floats are single precision, one rounding per operation; nothing is meant to be
// fast.
#include "Reference_Line.h"

#include <algorithm>
#include <cmath>

#include "NaiveMix.h"

namespace reference
{

namespace
{

constexpr std::uint32_t ROUND_START = 0x00000001;
constexpr std::uint32_t ROUND_END   = 0x00000002;
constexpr std::uint32_t SOFT        = 0x00010000;
constexpr std::uint32_t FILTERED    = 0x00020000;
constexpr std::uint32_t UNCLIPPED   = 0x00100000;
constexpr std::uint32_t WIDE_S      = 0x01000000;
constexpr std::uint32_t WIDE_2      = 0x04000000;
constexpr std::uint32_t PATTERN     = 0x08000000;
constexpr std::uint32_t ADVANCE     = 0x10000000;
constexpr std::uint32_t RESCALE     = 0x20000000;
constexpr std::uint32_t CORRECTION  = 0x40000000;

constexpr unsigned OUT_OF_BOUND = 4;

// ---- fixed point ----------------------------------------------------------------------------------------------------

using Fix = std::int64_t;  // 16.16, with room

constexpr Fix ONE  = 65536;
constexpr Fix HALF = 32768;

Fix Low32(Fix value)
{
    const Fix low = value & 0xFFFFFFFF;
    return low >= 0x80000000 ? low - 0x100000000 : low;
}

//! Truncated towards zero, saturated.
Fix ToInt(float value)
{
    if (value >= 2147483648.0F) return INT32_MAX;
    if (value < -2147483648.0F) return INT32_MIN;
    return value == value ? static_cast<Fix>(value) : 0;
}

Fix ToFix(float value)
{
    return ToInt(value * 65536.0F);
}

//! The same for a target without negative numbers.
std::uint32_t ToUnsigned(float value)
{
    if (!(value > 0.0F)) return 0;
    return value >= 4294967296.0F ? UINT32_MAX : static_cast<std::uint32_t>(value);
}

Fix Floor(Fix numerator, Fix denominator)
{
    const Fix quotient = numerator / denominator;
    return numerator % denominator < 0 ? quotient - 1 : quotient;
}

Fix Shift(Fix value, int bits)
{
    return Floor(value, Fix{1} << bits);
}

Fix Mul(Fix a, Fix b)
{
    return Low32(Shift(a * b, 16));
}

Fix Pixel(Fix coordinate)
{
    return Shift(coordinate, 16);
}

Fix WholePixels(Fix coordinate)
{
    return Pixel(coordinate) * ONE;
}

int Fraction(Fix coordinate)
{
    return static_cast<int>(Shift(coordinate - WholePixels(coordinate), 8));
}

//! To the nearest pixel, a half downwards.
Fix NearestPixel(Fix coordinate)
{
    return WholePixels(coordinate + HALF - 1);
}

// ---- painting -------------------------------------------------------------------------------------------------------

enum class Quality
{
    Plain,
    Soft,
    Filtered
};

struct Range
{
    Fix min = 0;
    Fix max = 0;
};

//! Where clipped points and spans may paint.
struct Bounds
{
    Range major;
    Range minor;
};

//! The colours of a pattern line; texture coordinates have the period ONE.
struct Texture
{
    const std::uint32_t* base   = nullptr;
    const std::uint32_t* colors = nullptr;
    Fix                  start  = 0;
    Fix                  inc    = 0;
    Fix                  mul    = 0;
    Fix                  offset = 0;
    bool                 flip   = false;
    float                lineX  = 0.0F;
    float                lineY  = 0.0F;
};

struct Brush
{
    std::uint32_t color   = 0;
    Texture*      texture = nullptr;
};

class Painter
{
public:
    Painter(const Canvas& canvas, bool majorIsX, Quality quality)
        : m_canvas(canvas),
          m_majorIsX(majorIsX),
          m_quality(quality)
    {
    }

    Quality Grade() const { return m_quality; }
    bool    MajorIsX() const { return m_majorIsX; }

    bool SeesMajor(Fix major) const
    {
        const Fix at = Pixel(major);
        return at >= 0 && at < (m_majorIsX ? m_canvas.width : m_canvas.height);
    }

    //! One point of a thin line.
    void Point(Fix major, Fix minor, std::uint32_t color, const Bounds* bounds) const
    {
        const Fix first = Pixel(minor);
        if (bounds != nullptr)
        {
            if (Pixel(major) < Pixel(bounds->major.min) || Pixel(major) > Pixel(bounds->major.max)) return;
        }
        int alphas[4] = {};
        int count     = 1;
        if (m_quality == Quality::Soft)
        {
            alphas[0] = 255 - Fraction(minor);
            alphas[1] = Fraction(minor);
            count     = 2;
        }
        if (m_quality == Quality::Filtered)
        {
            const int phase = Fraction(minor) / 8;
            alphas[0]       = FilterTap(phase + 32);
            alphas[1]       = FilterTap(phase);
            alphas[2]       = FilterTap(32 - phase);
            alphas[3]       = FilterTap(64 - phase);
            count           = 4;
        }
        for (int tap = 0; tap < count; ++tap)
        {
            const Fix at = first + tap;
            if (bounds != nullptr && at > Pixel(bounds->minor.max)) return;
            if (bounds != nullptr && at < Pixel(bounds->minor.min)) continue;
            if (m_quality == Quality::Plain)
                Put(Pixel(major), at, color);
            else
                Blend(Pixel(major), at, color, alphas[tap]);
        }
    }

    //! A span without distances.
    void Span(Fix major, Fix x1, Fix x2, std::uint32_t color) const
    {
        const Fix row = Pixel(major);
        const Fix s   = Pixel(x1);
        const Fix e   = Pixel(x2);
        switch (m_quality)
        {
        case Quality::Plain:
            for (Fix at = s; at <= e; ++at) Put(row, at, color);
            break;
        case Quality::Soft:
            if (e <= s) break;
            Blend(row, s, color, 255 - Fraction(x1));
            for (Fix at = s + 1; at < e; ++at) Put(row, at, color);
            Blend(row, e, color, Fraction(x2));
            break;
        case Quality::Filtered:
        {
            if (e < s) break;
            const int phase = Fraction(x1) / 8;
            Blend(row, s, color, FilterTap(phase + 32));
            if (s + 1 <= e) Blend(row, s + 1, color, FilterTap(phase));
            if (s + 2 > e) break;
            for (Fix at = s + 2; at < e; ++at) Put(row, at, color);
            const int last = (255 - Fraction(x2)) / 8;
            Blend(row, e, color, FilterTap(last));
            Blend(row, e + 1, color, FilterTap(last + 32));
            break;
        }
        }
    }

    //! A span with one soft edge.
    void SpanEdge(Fix major, Fix x1, Fix x2, Fix dist, Fix distInc, std::uint32_t color) const
    {
        const Fix row = Pixel(major);
        const Fix s   = Pixel(x1);
        const Fix e   = Pixel(x2);
        Fix       d   = dist - Mul(x1 - WholePixels(x1), distInc);
        switch (m_quality)
        {
        case Quality::Plain:
            for (Fix at = s; at <= e; ++at, d += distInc)
            {
                if (d > 0) Put(row, at, color);
            }
            break;
        case Quality::Soft:
            if (e <= s) break;
            for (Fix at = s; at <= e; ++at, d += distInc)
            {
                const int limit = at == s ? 255 - Fraction(x1) : at == e ? Fraction(x2) : 255;
                if (d > 0) Blend(row, at, color, std::min(limit, Coverage(d)));
            }
            break;
        case Quality::Filtered:
        {
            if (e < s) break;
            const int phase = Fraction(x1) / 8;
            const int last  = (255 - Fraction(x2)) / 8;
            const Fix end   = s + 2 <= e ? e + 1 : s + 1;
            for (Fix at = s; at <= end; ++at, d += distInc)
            {
                int limit = 255;
                if (at == s)
                    limit = FilterTap(phase + 32);
                else if (at == s + 1)
                    limit = FilterTap(phase);
                else if (at == e)
                    limit = FilterTap(last);
                else if (at == e + 1)
                    limit = FilterTap(last + 32);
                if (d > 0) Blend(row, at, color, std::min(limit, Coverage(d)));
            }
            break;
        }
        }
    }

    //! A span between two soft edges.
    void SpanTwoEdges(Fix major, Fix x1, Fix x2, Fix dist, Fix distInc, Fix dist2, Fix clip, const Brush& brush,
                      const Bounds* bounds) const
    {
        const Fix row = Pixel(major);
        const Fix s   = Pixel(x1);
        const Fix e   = Pixel(x2);
        if (bounds != nullptr && (row < Pixel(bounds->major.min) || row > Pixel(bounds->major.max))) return;
        Fix d       = dist - Mul(x1 - WholePixels(x1) + clip, distInc);
        Fix texture = brush.texture != nullptr ? brush.texture->start + Mul(d, brush.texture->mul) : 0;
        if (m_quality != Quality::Plain && e <= s) return;
        Fix coordinate = x1;
        for (Fix at = s; at <= e; ++at)
        {
            const Fix d2     = dist2 - d;
            bool      inside = d > 0 && d <= dist2;
            int       alpha  = 255;
            if (m_quality != Quality::Plain)
            {
                const int cover = d < ONE    ? static_cast<int>(Shift(d, 8) & 255)
                                  : d2 < ONE ? static_cast<int>(Shift(d2, 8) & 255)
                                             : 255;
                alpha           = cover;
                inside          = d >= 1 && d2 >= 0;
                if (at == s) alpha = std::min(255 - Fraction(x1), cover);
                if (at == e)
                {
                    alpha  = std::min(Fraction(x2), cover);
                    inside = inside && Fraction(x2) != 0;
                }
            }
            if (bounds != nullptr) inside = inside && coordinate >= bounds->minor.min && coordinate < bounds->minor.max;
            if (inside)
            {
                const std::uint32_t color =
                    brush.texture != nullptr ? brush.texture->colors[Shift(texture, 8) & 255] : brush.color;
                if (m_quality == Quality::Plain)
                    Put(row, at, color);
                else
                    Blend(row, at, color, alpha);
            }
            coordinate += ONE;
            d += distInc;
            if (brush.texture != nullptr) texture += brush.texture->inc;
        }
    }

private:
    static int Coverage(Fix d) { return d >= ONE ? 255 : static_cast<int>(Shift(d, 8) & 255); }

    std::uint32_t* At(Fix major, Fix minor) const
    {
        const Fix x = m_majorIsX ? major : minor;
        const Fix y = m_majorIsX ? minor : major;
        if (x < 0 || y < 0 || x >= m_canvas.width || y >= m_canvas.height) return nullptr;
        return m_canvas.pixels + y * m_canvas.pitch + x;
    }
    void Put(Fix major, Fix minor, std::uint32_t color) const
    {
        if (std::uint32_t* const pixel = At(major, minor)) *pixel = color;
    }
    void Blend(Fix major, Fix minor, std::uint32_t color, int alpha) const
    {
        if (std::uint32_t* const pixel = At(major, minor)) *pixel = support::MixLinearSrcAlpha(*pixel, color, alpha);
    }

    const Canvas& m_canvas;
    bool          m_majorIsX;
    Quality       m_quality;
};

// ---- thin lines -----------------------------------------------------------------------------------------------------

struct Thin
{
    float startMaj;
    float startMin;
    float deltaMaj;
    float deltaMin;
    float maxMaj;
    float maxMin;
    float minMaj;
    float minMin;
};

void ThinLine(const Painter& painter, const Thin& line, std::uint32_t color, std::uint32_t flags, unsigned code,
              LineOutcome& outcome)
{
    const Fix    inc      = line.deltaMaj > 0.001F ? ToInt(line.deltaMin / line.deltaMaj * 65536.0F) : 0;
    const Fix    startMaj = ToFix(line.startMaj);
    const Fix    startMin = ToFix(line.startMin);
    const Fix    deltaMaj = ToFix(line.deltaMaj);
    const Bounds bounds{{ToFix(line.minMaj), ToFix(line.maxMaj)}, {ToFix(line.minMin), ToFix(line.maxMin)}};

    outcome.lineLength += static_cast<double>(deltaMaj) / 65536.0;
    Fix major = NearestPixel(startMaj);
    Fix minor = startMin + Shift(major - startMaj, 8) * Shift(inc, 8);
    if ((flags & SOFT) == 0) minor += HALF;
    if ((flags & FILTERED) != 0)
    {
        minor -= 95027;
        if (minor < bounds.minor.min) code |= OUT_OF_BOUND;
    }
    const bool clipped = (code & (LINE_CLIPPED | OUT_OF_BOUND | LINE_OVERFLOW)) != 0;
    const Fix  end     = std::min(startMaj + deltaMaj + (clipped ? HALF : 0), bounds.major.max);
    outcome.clipped    = clipped;
    for (; major <= end; major += ONE, minor += inc)
    {
        if (painter.SeesMajor(major)) painter.Point(major, minor, color, clipped ? &bounds : nullptr);
    }
}

// ---- wide lines -----------------------------------------------------------------------------------------------------

struct Octant
{
    Fix   startMaj  = 0;
    Fix   startMin  = 0;
    Fix   deltaMaj  = 0;
    Fix   deltaMin  = 0;
    Fix   normalMaj = 0;
    Fix   normalMin = 0;
    Fix   len       = 0;
    Range majClip;
    Range minClip;
};

struct Raster
{
    Fix posMaj  = 0;
    Fix mid1Maj = 0;
    Fix mid2Maj = 0;
    Fix endMaj  = 0;
    Fix posMin  = 0;
    Fix incMin  = 0;
    Fix span    = 0;
    Fix spanInc = 0;

    void Step()
    {
        posMin += incMin;
        span += spanInc;
        posMaj += ONE;
    }
};

Fix FirstDistance(const Raster& raster, const Octant& octant)
{
    return Mul(WholePixels(raster.posMaj) - octant.startMaj, octant.normalMaj) +
           Mul(raster.posMin - raster.span - octant.startMin, octant.normalMin);
}

Fix DistanceStep(const Raster& raster, const Octant& octant)
{
    return octant.normalMaj + Mul(raster.incMin - raster.spanInc, octant.normalMin);
}

//! All bodies between two soft ends: short lines, pattern lines, and clipped ones. bounds: none for unclipped lines.
void ShortBody(const Painter& painter, Raster raster, const Octant& octant, const Brush& brush, const Bounds* bounds)
{
    Fix       d    = FirstDistance(raster, octant);
    const Fix step = DistanceStep(raster, octant);
    for (; raster.endMaj >= raster.posMaj; raster.Step(), d += step)
    {
        if (!painter.SeesMajor(raster.posMaj)) continue;
        painter.SpanTwoEdges(raster.posMaj, raster.posMin - raster.span, raster.posMin + raster.span, d,
                             octant.normalMin, octant.len + ONE, 0, brush, bounds);
    }
}

void PlainClippedBody(const Painter& painter, Raster raster, const Octant& octant, const Brush& brush)
{
    Fix       d    = FirstDistance(raster, octant);
    const Fix step = DistanceStep(raster, octant);
    const Fix end  = std::min(raster.endMaj, octant.majClip.max);
    for (; end >= raster.posMaj; raster.Step(), d += step)
    {
        const Fix lo = raster.posMin - raster.span;
        const Fix hi = raster.posMin + raster.span;
        if (octant.minClip.min > hi || octant.minClip.max + ONE < lo || raster.posMaj < octant.majClip.min) continue;
        Fix       last  = std::min(hi, octant.minClip.max);
        const Fix cut   = std::min<Fix>(lo - octant.minClip.min, 0);
        Fix       first = lo - cut;
        if (first > last) first = last = std::max(last, octant.minClip.min);
        painter.SpanTwoEdges(raster.posMaj, first, last, d, octant.normalMin, octant.len + ONE, cut, brush, nullptr);
    }
}

void LongBody(const Painter& painter, Raster raster, const Octant& octant, std::uint32_t color)
{
    Fix       d    = FirstDistance(raster, octant);
    const Fix step = DistanceStep(raster, octant);
    for (; raster.mid1Maj >= raster.posMaj; raster.Step(), d += step)
    {
        if (!painter.SeesMajor(raster.posMaj)) continue;
        painter.SpanEdge(raster.posMaj, raster.posMin - raster.span, raster.posMin + raster.span, d, octant.normalMin,
                         color);
    }
    for (; raster.mid2Maj > raster.posMaj; raster.Step())
    {
        if (!painter.SeesMajor(raster.posMaj)) continue;
        painter.Span(raster.posMaj, raster.posMin - raster.span, raster.posMin + raster.span, color);
    }
    Fix e = Mul(WholePixels(raster.posMaj) - (octant.startMaj + octant.deltaMaj), -octant.normalMaj) +
            Mul(raster.posMin - raster.span - (octant.startMin + octant.deltaMin), -octant.normalMin);
    for (; raster.endMaj > raster.posMaj; raster.Step(), e -= step)
    {
        if (!painter.SeesMajor(raster.posMaj)) continue;
        painter.SpanEdge(raster.posMaj, raster.posMin - raster.span, raster.posMin + raster.span, e, -octant.normalMin,
                         color);
    }
}

void PatternBody(const Painter& painter, const Raster& raster, const Octant& octant, const Brush& brush,
                 const Bounds* bounds)
{
    Texture&    texture = *brush.texture;
    const Fix   incMin  = Mul(DistanceStep(raster, octant), texture.mul);
    const float from    = painter.MajorIsX() ? texture.lineX : texture.lineY;
    const Fix   whole   = WholePixels(octant.startMaj - ToFix(from));
    texture.inc         = Mul(octant.normalMin, texture.mul);
    texture.colors      = texture.flip ? texture.base + 256 : texture.base;
    texture.start       = Mul(whole, incMin) + (texture.flip ? 0x1000000 - texture.offset : texture.offset);
    ShortBody(painter, raster, octant, brush, bounds);
}

struct Wide
{
    float startMaj;
    float startMin;
    float deltaMaj;
    float deltaMin;
    float startWidth;
    float deltaWidth;
};

void WideLine(const Painter& painter, const Wide& line, const Brush& brush, std::uint32_t flags, const Bounds* clip,
              LineOutcome& outcome)
{
    const float startWidth  = line.startWidth < 1.0F ? 1.0F : line.startWidth;
    const float widthFactor = line.deltaWidth != 0.0F ? line.deltaWidth / startWidth : 0.0F;
    const float len         = std::sqrt(line.deltaMaj * line.deltaMaj + line.deltaMin * line.deltaMin);
    if (len <= 0.0001F) return;
    const float reciprocal = 1.0F / len;
    const float incMin     = line.deltaMaj > 0.1F ? line.deltaMin / line.deltaMaj : 0.0F;

    Octant octant;
    octant.startMaj  = ToFix(line.startMaj);
    octant.startMin  = ToFix(line.startMin);
    octant.deltaMaj  = ToFix(line.deltaMaj);
    octant.deltaMin  = ToFix(line.deltaMin);
    octant.normalMaj = ToFix(line.deltaMaj * reciprocal);
    octant.normalMin = ToFix(line.deltaMin * reciprocal);
    octant.len       = ToFix(len);
    if (clip != nullptr)
    {
        octant.majClip = clip->major;
        octant.minClip = clip->minor;
    }
    const Fix inc    = ToFix(incMin);
    const Fix width  = ToFix(startWidth);
    const Fix factor = ToFix(widthFactor);

    outcome.lineLength += static_cast<double>(octant.deltaMaj) / 65536.0;
    const Fix half   = width / 2;
    const Fix outMaj = Mul(half, octant.normalMaj);
    const Fix outMin = Mul(half, octant.normalMin);
    Fix       absMin = outMin < 0 ? -outMin : outMin;

    // ends
    const Fix taper = Shift(factor, 8);
    if ((flags & WIDE_S) != 0)
    {
        const int bits = (flags & WIDE_2) != 0 ? 2 : 1;
        octant.startMaj -= Shift(outMaj, bits);
        octant.startMin -= Shift(outMin, bits);
        octant.deltaMaj += Shift(outMaj, bits - 1);
        octant.deltaMin += Shift(outMin, bits - 1);
        octant.len += Shift(width, bits);
        if (factor != 0)
        {
            octant.deltaMaj += taper * Shift(outMaj, 8 + bits);
            octant.len += taper * Shift(width, 9 + bits);
        }
    }
    else
    {
        octant.deltaMaj += octant.normalMaj;
        octant.deltaMin += octant.normalMin;
    }

    Raster raster;
    raster.endMaj = octant.startMaj + octant.deltaMaj;
    raster.span   = Shift(outMin, 8) * Shift(inc, 8) + outMaj;
    if (factor != 0 && octant.deltaMaj > 0)
    {
        raster.spanInc = Low32(Mul(factor, raster.span) * ONE / octant.deltaMaj);
    }
    const Fix edgeMaj = octant.startMaj - absMin;
    const Fix edgeMin = octant.startMin - Shift(absMin, 8) * Shift(inc, 8);
    raster.posMaj     = NearestPixel(edgeMaj);
    raster.posMin     = edgeMin;
    raster.mid1Maj    = WholePixels(octant.startMaj + absMin) + ONE;
    if (factor != 0) absMin += Mul(factor, absMin);
    raster.incMin  = inc;
    raster.mid2Maj = WholePixels(raster.endMaj - absMin);
    raster.endMaj += absMin;
    raster.posMin += Mul(inc, raster.posMaj - edgeMaj);
    if ((flags & FILTERED) == 0) raster.posMin += HALF;
    if ((flags & FILTERED) != 0 && (flags & CORRECTION) != 0) raster.posMin += HALF;

    outcome.path    = "wide";
    outcome.clipped = clip != nullptr;
    outcome.tapered = factor != 0;
    if (brush.texture != nullptr)
    {
        PatternBody(painter, raster, octant, brush, clip);
    }
    else if (clip == nullptr)
    {
        outcome.longBody = !(startWidth > len);
        if (outcome.longBody)
            LongBody(painter, raster, octant, brush.color);
        else
            ShortBody(painter, raster, octant, brush, nullptr);
    }
    else if (painter.Grade() == Quality::Plain)
    {
        PlainClippedBody(painter, raster, octant, brush);
    }
    else
    {
        raster.endMaj = std::min(raster.endMaj, octant.majClip.max);
        ShortBody(painter, raster, octant, brush, clip);
    }
}

Quality QualityOf(std::uint32_t flags)
{
    if ((flags & FILTERED) != 0) return Quality::Filtered;
    return (flags & SOFT) != 0 ? Quality::Soft : Quality::Plain;
}

//! A line as its ends and widths are after clipping.
struct Body
{
    Segment ends;
    float   startWidth;
    float   endWidth;
};

void DrawThin(const Canvas& canvas, const Segment& ends, std::uint32_t color, std::uint32_t flags, Region limits,
              unsigned code, LineOutcome& outcome)
{
    float dx = ends.bx - ends.ax;
    float dy = ends.by - ends.ay;
    if ((ToUnsigned(dx) & ToUnsigned(dy)) == 0) (dx == 0.0F ? limits.maxX : limits.maxY) += 0.5F;
    const bool majorIsX = std::fabs(dx) > std::fabs(dy);
    const bool turned   = (majorIsX ? dx : dy) < 0.0F;
    if (turned)
    {
        dx = -dx;
        dy = -dy;
    }
    const float   x = turned ? ends.bx : ends.ax;
    const float   y = turned ? ends.by : ends.ay;
    const Painter painter(canvas, majorIsX, QualityOf(flags));
    outcome.path     = "thin";
    outcome.spansInY = majorIsX;
    outcome.thinLines += 1;
    if (majorIsX)
        ThinLine(painter, {x, y, dx, dy, limits.maxX, limits.maxY, limits.minX, limits.minY}, color, flags, code,
                 outcome);
    else
        ThinLine(painter, {y, x, dy, dx, limits.maxY, limits.maxX, limits.minY, limits.minX}, color, flags, code,
                 outcome);
}

void DrawWide(const Canvas& canvas, const Body& body, Brush brush, std::uint32_t flags, bool clipped,
              LineOutcome& outcome)
{
    const Segment& ends       = body.ends;
    const float    thinner    = clipped ? 0.5F : 0.0F;
    float          startWidth = body.startWidth - thinner;
    const float    endWidth   = body.endWidth - thinner;
    float          dx         = ends.bx - ends.ax;
    float          dy         = ends.by - ends.ay;
    float          dw         = endWidth - startWidth;
    const bool     majorIsX   = std::fabs(dx) > std::fabs(dy);
    const bool     turned     = (majorIsX ? dx : dy) < 0.0F;
    if (turned)
    {
        dx         = -dx;
        dy         = -dy;
        dw         = -dw;
        startWidth = endWidth;
        if (brush.texture != nullptr) brush.texture->flip = true;
        outcome.flipped = true;
    }
    const float x = turned ? ends.bx : ends.ax;
    const float y = turned ? ends.by : ends.ay;
    Range       rangeX{canvas.clipMinX * ONE, canvas.clipMaxX * ONE};
    Range       rangeY{canvas.clipMinY * ONE, canvas.clipMaxY * ONE};
    if (QualityOf(flags) != Quality::Plain) (majorIsX ? rangeY : rangeX).max += ONE;
    const Painter painter(canvas, majorIsX, QualityOf(flags));
    const Bounds  bounds{majorIsX ? rangeX : rangeY, majorIsX ? rangeY : rangeX};
    outcome.spansInY = majorIsX;
    if (!clipped) outcome.wideLines += 1;
    WideLine(painter, majorIsX ? Wide{x, y, dx, dy, startWidth, dw} : Wide{y, x, dy, dx, startWidth, dw}, brush, flags,
             clipped ? &bounds : nullptr, outcome);
}

void DrawCaps(const Canvas& canvas, const LineCall& call, std::uint32_t flags, float startWidth, float endWidth,
              LineOutcome& outcome)
{
    const auto draw = [&](float x, float y, float width)
    {
        const LineOutcome dot = DrawDot(canvas, {x, y, width / 2.0F, call.color, flags & 0x000F0000});
        outcome.numberOfDots += dot.numberOfDots;
        outcome.rejectedDots += dot.rejectedDots;
        outcome.dotRadius += dot.dotRadius;
        outcome.dots += dot.dots;
        outcome.roundCaps = true;
    };
    if ((flags & ROUND_START) != 0) draw(call.startX, call.startY, startWidth);
    if ((flags & ROUND_END) != 0) draw(call.endX, call.endY, endWidth);
}

}  // namespace

// ---- lines ----------------------------------------------------------------------------------------------------------

unsigned ClipSegment(Segment& segment, const Region& wide, const Region& region, float margin, float& ta, float& tb)
{
    ta = 0.0F;
    tb = 1.0F;
    if (!std::isfinite(segment.ax) || !std::isfinite(segment.ay) || !std::isfinite(segment.bx) ||
        !std::isfinite(segment.by))
        return 0;
    const auto holds = [](const Region& r, float x, float y)
    { return x >= r.minX && x <= r.maxX && y >= r.minY && y <= r.maxY; };
    unsigned code = LINE_VISIBLE;
    if (!holds(wide, segment.ax, segment.ay) || !holds(wide, segment.bx, segment.by))
    {
        const double ax    = segment.ax;
        const double ay    = segment.ay;
        const double dx    = static_cast<double>(segment.bx) - ax;
        const double dy    = static_cast<double>(segment.by) - ay;
        double       t0    = 0.0;
        double       t1    = 1.0;
        int          side0 = 0;  // that cuts the start, where one does
        int          side1 = 0;
        // what is inside a side satisfies p t <= q
        const double p[] = {-dx, dx, -dy, dy};
        const double q[] = {ax - static_cast<double>(wide.minX), static_cast<double>(wide.maxX) - ax,
                            ay - static_cast<double>(wide.minY), static_cast<double>(wide.maxY) - ay};
        for (int side = 0; side < 4; ++side)
        {
            if (p[side] == 0.0 && q[side] < 0.0) return 0;
            if (p[side] < 0.0 && q[side] / p[side] >= t0)
            {
                t0    = q[side] / p[side];
                side0 = side;
            }
            if (p[side] > 0.0 && q[side] / p[side] <= t1)
            {
                t1    = q[side] / p[side];
                side1 = side;
            }
        }
        if (t0 > t1) return 0;
        const auto  x = [&](double t) { return std::clamp(static_cast<float>(ax + t * dx), wide.minX, wide.maxX); };
        const auto  y = [&](double t) { return std::clamp(static_cast<float>(ay + t * dy), wide.minY, wide.maxY); };
        const float bounds[] = {wide.minX, wide.maxX, wide.minY, wide.maxY};
        const bool  moveA    = !holds(wide, segment.ax, segment.ay);
        const bool  moveB    = !holds(wide, segment.bx, segment.by);
        if (moveB)
        {
            segment.bx                            = x(t1);
            segment.by                            = y(t1);
            (side1 < 2 ? segment.bx : segment.by) = bounds[side1];
            tb                                    = static_cast<float>(t1);
            code |= LINE_CLIPPED;
        }
        if (moveA)
        {
            segment.ax                            = x(t0);
            segment.ay                            = y(t0);
            (side0 < 2 ? segment.ax : segment.ay) = bounds[side0];
            ta                                    = static_cast<float>(t0);
            code |= LINE_CLIPPED;
        }
    }
    const Region well{region.minX + margin, region.minY + margin, region.maxX - margin, region.maxY - margin};
    if (!holds(well, segment.ax, segment.ay) || !holds(well, segment.bx, segment.by)) code |= LINE_OVERFLOW;
    return code;
}

LineOutcome DrawLine(const Canvas& canvas, const LineCall& call, const PatternState& state)
{
    LineOutcome outcome;
    outcome.offset        = state.offset;
    outcome.numberOfLines = 1.0;
    std::uint32_t flags   = call.flags;
    const float   asked[] = {call.startX, call.startY, call.endX, call.endY, call.startWidth, call.endWidth};
    for (const float value : asked)
    {
        if (!std::isfinite(value)) return outcome;
    }

    float startWidth = std::clamp(call.startWidth, 0.0F, 16384.0F);
    float endWidth   = std::clamp(call.endWidth != 0.0F ? call.endWidth : call.startWidth, 0.0F, 16384.0F);
    if ((flags & (SOFT | FILTERED)) == 0)
    {
        startWidth = std::ceil(startWidth - 0.5F) - 0.5F;
        endWidth   = std::ceil(endWidth - 0.5F) - 0.5F;
    }
    float lineWidth = endWidth > startWidth ? endWidth : startWidth;
    if (lineWidth < 1.0F) lineWidth = startWidth = endWidth = 1.0F;
    if (lineWidth < 3.0F)
    {
        flags &= ~(ROUND_START | ROUND_END);
        flags |= WIDE_S;
    }
    const bool thin   = lineWidth <= 1.0F && (flags & PATTERN) == 0;
    outcome.lineWidth = static_cast<double>(lineWidth);
    outcome.quality   = static_cast<int>(QualityOf(flags));
    outcome.pattern   = (flags & PATTERN) != 0;

    Texture texture;
    Brush   brush{call.color, nullptr};
    if ((flags & PATTERN) != 0)
    {
        if (state.colors == nullptr)
        {
            outcome.message = "no line pattern set";
            return outcome;
        }
        float scale = state.factor;
        if ((flags & (ADVANCE | RESCALE)) != 0)
        {
            const float dx  = call.endX - call.startX;
            const float dy  = call.endY - call.startY;
            const float len = std::sqrt(dx * dx + dy * dy);
            if (len > 0.0F)
            {
                const float shown = (flags & RESCALE) != 0 ? state.refLength : len;
                if ((flags & ADVANCE) != 0) outcome.offset = scale * shown + state.offset;
                if (shown != len) scale = shown / len * scale;
            }
        }
        texture.mul    = ToFix(scale);
        texture.offset = ToFix(state.offset) & 0xFFFF;
        texture.base   = state.colors;
        texture.lineX  = call.startX;
        texture.lineY  = call.startY;
        brush.texture  = &texture;
    }

    Segment ends{call.startX, call.startY, call.endX, call.endY};
    if ((flags & UNCLIPPED) != 0)
    {
        if (thin)
        {
            DrawThin(canvas, ends, call.color, flags, {0.0F, 0.0F, 2048.0F, 2048.0F}, 0, outcome);
            return outcome;
        }
        DrawWide(canvas, {ends, startWidth, endWidth}, brush, flags, false, outcome);
        DrawCaps(canvas, call, flags, startWidth, endWidth, outcome);
        return outcome;
    }

    Region region{static_cast<float>(canvas.clipMinX), static_cast<float>(canvas.clipMinY),
                  static_cast<float>(canvas.clipMaxX), static_cast<float>(canvas.clipMaxY)};
    if (!thin)
    {
        const float border = std::ceil(lineWidth * 0.708F);
        region = {region.minX - border, region.minY - border, region.maxX + border - 1.0F, region.maxY + border - 1.0F};
    }
    outcome.clippings = 1;
    unsigned code     = 0;
    float    ta       = 0.0F;
    float    tb       = 1.0F;
    if (startWidth == endWidth)
    {
        const float margin = (flags & FILTERED) != 0 ? 5.0F : (flags & SOFT) != 0 ? 3.0F : 1.0F;
        const float d      = (flags & FILTERED) != 0 ? 4.0F : (flags & SOFT) != 0 ? 2.0F : 1.0F;
        code = ClipSegment(ends, {region.minX - d, region.minY - d, region.maxX + d, region.maxY + d}, region, margin,
                           ta, tb);
    }
    else
    {
        code = ClipSegment(ends, region, region, 5.0F, ta, tb);
        if ((code & LINE_CLIPPED) != 0)
        {
            const float delta = endWidth - startWidth;
            if (tb < 1.0F) endWidth = tb * delta + startWidth;
            if (ta > 0.0F) startWidth = ta * delta + startWidth;
        }
    }
    if ((code & LINE_VISIBLE) == 0)
    {
        outcome.rejectedLines = 1.0;
        return outcome;
    }
    if (thin)
    {
        DrawThin(canvas, ends, call.color, flags, region, code, outcome);
        return outcome;
    }
    DrawWide(canvas, {ends, startWidth, endWidth}, brush, flags | WIDE_S | WIDE_2 | CORRECTION, true, outcome);
    DrawCaps(canvas, call, flags, startWidth, endWidth, outcome);
    return outcome;
}

// ---- dots -----------------------------------------------------------------------------------------------------------

namespace
{

void DrawPoint(const Canvas& canvas, const DotCall& call, LineOutcome& outcome)
{
    const Fix  fxX    = ToFix(call.x);
    const Fix  fxY    = ToFix(call.y);
    const Fix  x      = Pixel(fxX);
    const Fix  y      = Pixel(fxY);
    const auto inside = [&](Fix atX, Fix atY)
    { return atX >= canvas.clipMinX && atX <= canvas.clipMaxX && atY >= canvas.clipMinY && atY <= canvas.clipMaxY; };
    if (!inside(x, y))
    {
        outcome.rejectedDots = 1.0;
        return;
    }
    outcome.numberOfDots = 1.0;
    if ((call.flags & SOFT) == 0)
    {
        canvas.pixels[y * canvas.pitch + x] = call.color;
        return;
    }
    const int  a     = Fraction(fxX);
    const int  b     = Fraction(fxY);
    const auto blend = [&](Fix atX, Fix atY, int weight)
    {
        if (!inside(atX, atY)) return;
        std::uint32_t& pixel = canvas.pixels[atY * canvas.pitch + atX];
        pixel                = support::MixLinearSrcAlpha(pixel, call.color, Gamma(weight / 255));
    };
    blend(x, y, (255 - a) * (255 - b));
    blend(x + 1, y, a * (255 - b));
    blend(x, y + 1, (255 - a) * b);
    blend(x + 1, y + 1, a * b);
}

void DrawDisc(const Canvas& canvas, const DotCall& call, LineOutcome& outcome)
{
    const bool  filtered = (call.flags & FILTERED) != 0 && call.radius >= 6.0F;
    const bool  soft     = (call.flags & (SOFT | FILTERED)) != 0;
    const float r        = soft ? call.radius + (filtered ? 0.5F : 0.25F) : std::max(call.radius + 0.5F, 1.5F);

    const float whole = std::ceil(r);
    const float boxX  = std::trunc(call.x - whole);
    const float boxY  = std::trunc(call.y - whole);
    const auto  left  = static_cast<Fix>(boxX);
    const auto  top   = static_cast<Fix>(boxY);
    const auto  size  = static_cast<Fix>(whole) * 2 + 1;
    const Fix   first = std::max(left, canvas.clipMinX);
    const Fix   last  = std::min(left + size - 1, canvas.clipMaxX);
    const Fix   upper = std::max(top, canvas.clipMinY);
    const Fix   lower = std::min(top + size - 1, canvas.clipMaxY);
    outcome.dots      = 1;
    if (first > last || upper > lower)
    {
        outcome.rejectedDots = 1.0;
        return;
    }
    outcome.numberOfDots = 1.0;

    // one rounded factor and multiples of it; evaluated in double, so that only the roundings stated here are made
    const auto   round  = [](double value) { return static_cast<Fix>(std::floor(value + 0.5)); };
    const double radius = static_cast<double>(r);
    const double ux     = static_cast<double>(call.x) - static_cast<double>(boxX);
    const double uy     = static_cast<double>(call.y) - static_cast<double>(boxY);
    const Fix    k      = std::max<Fix>(1, round(32768.0 / radius));
    const auto   exactK = static_cast<double>(k);
    const Fix    ax     = round(exactK * (2.0 * ux - 1.0));
    const Fix    ay     = round(exactK * (2.0 * uy - 1.0));
    Fix          c      = round(exactK * ((radius - 0.5 - ux) * (radius - 0.5 + ux) - uy * uy)) + HALF;
    const auto   at     = [&](Fix nx, Fix ny) { return c + nx * ax - nx * (nx - 1) * k + ny * ay - ny * (ny - 1) * k; };
    if (soft && whole >= 5.0F && whole <= 9.0F)
    {
        // the disc's area, less what the pixels of the unclipped dot hold, shared out among those of the rim
        constexpr double Pi      = 3.14159265358979323846;
        Fix              covered = 0;
        Fix              rim     = 0;
        for (Fix cell = 0; cell < size * size; ++cell)
        {
            const Fix f = at(cell % size, cell / size);
            covered += std::clamp<Fix>(f, 0, ONE);
            if (f > 0 && f < ONE) ++rim;
        }
        if (rim > 0) c += (round(65536.0 * Pi * (radius - 0.5) * (radius - 0.5)) - covered) / rim;
    }
    for (Fix y = upper; y <= lower; ++y)
    {
        for (Fix x = first; x <= last; ++x)
        {
            const Fix      f     = at(x - left, y - top);
            std::uint32_t& pixel = canvas.pixels[y * canvas.pitch + x];
            if (!soft)
            {
                if (f > HALF) pixel = call.color;
            }
            else if (f > 0)
            {
                pixel = support::MixLinearSrcAlpha(pixel, call.color, f >= ONE ? 255 : static_cast<int>(f / 256));
            }
        }
    }
}

}  // namespace

LineOutcome DrawDot(const Canvas& canvas, const DotCall& call)
{
    LineOutcome outcome;
    outcome.dotRadius = static_cast<double>(call.radius);
    if (!std::isfinite(call.x) || !std::isfinite(call.y) || !std::isfinite(call.radius)) return outcome;
    if (call.radius > 1.0F)
        DrawDisc(canvas, call, outcome);
    else
        DrawPoint(canvas, call, outcome);
    return outcome;
}

// ---- tables ---------------------------------------------------------------------------------------------------------

int FilterTap(std::int64_t index)
{
    static const int TAPS[65] = {175, 174, 173, 172, 170, 168, 166, 163, 159, 156, 152, 147, 143, 137, 132, 127, 122,
                                 116, 111, 105, 99,  93,  88,  82,  77,  72,  67,  62,  57,  52,  48,  44,  40,  37,
                                 33,  30,  27,  24,  21,  19,  17,  15,  13,  12,  10,  9,   8,   7,   6,   5,   4,
                                 4,   3,   3,   2,   2,   2,   1,   1,   1,   1,   1,   1,   0,   0};
    return TAPS[index];
}

int Gamma(int coverage)
{
    static const auto* const ramp = []
    {
        static int values[256];
        for (int i = 0; i < 256; ++i)
            values[i] = static_cast<int>(std::floor(255.0 * std::pow(i / 255.0, 1.0 / 1.4) + 0.5));
        return values;
    }();
    return ramp[coverage];
}

}  // namespace reference
