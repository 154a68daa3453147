#include "Bench_Check.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace bench
{
namespace
{

using Color = std::array<double, 4>;  // alpha, red, green, blue: 0 .. 255

Color FromWord(std::uint32_t argb)
{
    return {static_cast<double>(argb >> 24), static_cast<double>(Channel(argb, 16)),
            static_cast<double>(Channel(argb, 8)), static_cast<double>(Channel(argb, 0))};
}

//! Straight alpha over an opaque colour.
Color Over(const Color& below, const Color& above, double opacity)
{
    const double share = above[0] / 255 * opacity;
    Color        mixed{255, 0, 0, 0};
    for (std::size_t i = 1; i < 4; ++i) mixed[i] = below[i] + (above[i] - below[i]) * share;
    return mixed;
}

Color SourceAt(const Input& input, int x, int y)
{
    const Picture& source = *input.source;
    return FromWord(*source.At(std::clamp(x, 0, source.width - 1), std::clamp(y, 0, source.height - 1)));
}

//! At a point whose pixel centres are at halves. Colours are weighted by their alpha.
Color Sample(const Input& input, Point p)
{
    if (!input.kind.bilinear)
    {
        return SourceAt(input, static_cast<int>(std::floor(p.x)), static_cast<int>(std::floor(p.y)));
    }
    const double left = std::floor(p.x - 0.5), top = std::floor(p.y - 0.5);
    Color        sum{0, 0, 0, 0};
    for (const int dy : {0, 1})
    {
        for (const int dx : {0, 1})
        {
            const double weight = (1 - std::fabs(p.x - 0.5 - left - dx)) * (1 - std::fabs(p.y - 0.5 - top - dy));
            const Color  c      = SourceAt(input, static_cast<int>(left) + dx, static_cast<int>(top) + dy);
            sum[0] += c[0] * weight;
            for (std::size_t i = 1; i < 4; ++i) sum[i] += c[i] * c[0] * weight;
        }
    }
    for (std::size_t i = 1; i < 4; ++i) sum[i] = sum[0] > 0 ? sum[i] / sum[0] : 0;
    return sum;
}

//! Even-odd, at a pixel's centre.
bool IsInside(const std::vector<Point>& polygon, Point p)
{
    bool inside = false;
    for (std::size_t i = 0; i < polygon.size(); ++i)
    {
        const Point &a = polygon[i], &b = polygon[(i + 1) % polygon.size()];
        if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (p.y - a.y) * (b.x - a.x) / (b.y - a.y)) inside = !inside;
    }
    return inside;
}

Color From565(const Input& input, int x, int y)
{
    const auto* row = reinterpret_cast<const std::uint16_t*>(input.rgb565->Bytes() + y * input.Pitch565());
    return {255, (row[x] >> 11) * 255.0 / 31, (row[x] >> 5 & 63) * 255.0 / 63, (row[x] & 31) * 255.0 / 31};
}

double MaskAt(const Input& input, int x, int y)
{
    return input.mask->Bytes()[y * input.PitchMask() + x] / 255.0;
}

//! What the first operation makes of pixel (x, y), which was `below`.
Color Expected(const Input& input, int x, int y, const Color& below)
{
    const Case&  kind = input.kind;
    const Point  p{x + 0.5, y + 0.5};
    const Point& place = input.Place(0);

    if (kind.operation == Operation::Polygon)  // a textured one: texels repeat
    {
        if (!IsInside(input.polygons[0], p)) return below;
        const Point texel = input.TextureFrame().Inverse().Map(p);
        const auto  wrap  = [](double value, int size)
        { return static_cast<int>(value - std::floor(value / size) * size) % size; };
        return SourceAt(input, wrap(texel.x, kind.sourceWidth), wrap(texel.y, kind.sourceHeight));
    }
    if (kind.operation == Operation::Rotate)
    {
        const Point q = input.Turned(place).Inverse().Map(p);
        if (q.x < 0 || q.y < 0 || q.x >= kind.sourceWidth || q.y >= kind.sourceHeight) return below;
        return Over(below, Sample(input, q), 1);
    }

    const int u = x - static_cast<int>(place.x), v = y - static_cast<int>(place.y);
    if (u < 0 || v < 0 || u >= kind.width || v >= kind.height) return below;
    const double opacity = GLOBAL_ALPHA / 255.0;
    switch (kind.operation)
    {
    case Operation::FillOpaque:
    case Operation::FillBlend: return Over(below, FromWord(kind.color), 1);
    case Operation::Copy: return SourceAt(input, u, v);
    case Operation::Over:
    case Operation::Rle: return Over(below, SourceAt(input, u, v), 1);
    case Operation::OverAlpha: return Over(below, SourceAt(input, u, v), opacity);
    case Operation::Convert565: return From565(input, u, v);
    case Operation::Blend565: return Over(below, From565(input, u, v), opacity);
    case Operation::ColorByMask: return Over(below, FromWord(kind.color), MaskAt(input, u, v));
    case Operation::PictureByMask: return Over(below, SourceAt(input, u, v), MaskAt(input, u, v));
    case Operation::Picture565ByMask: return Over(below, From565(input, u, v), MaskAt(input, u, v));
    default:
        const Point q{(u + 0.5) * kind.sourceWidth / kind.width, (v + 0.5) * kind.sourceHeight / kind.height};
        const Color sample = Sample(input, q);
        return kind.over ? Over(below, sample, 1) : sample;
    }
}

std::string Text(const char* format, double value)
{
    char text[80];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

//! Area by the red of a shape on black.
Finding CheckArea(const Input& input, const Job& job)
{
    FillWithBlack(*job.target);
    job.run(1);
    double      red = 0, deviation = 0;
    const Color color = FromWord(input.kind.color);
    for (std::size_t i = 0; i < job.target->Count(); ++i)
    {
        const Color pixel = FromWord(job.target->Pixels()[i]);
        red += pixel[1];
        // Of one hue: green and blue go with red, and nothing is brighter than the colour.
        for (std::size_t c = 2; c < 4; ++c)
            deviation = std::max(deviation, std::fabs(pixel[c] - pixel[1] * color[c] / color[1]));
    }
    const double error = red / color[1] / input.areas[0] - 1;
    // An outline may be taken one way or another, by half a pixel where it is that of a polygon or dot and by a quarter
    // on both sides of a wide line. A line may have a pixel more at its end, and a pattern begin anywhere in a dash.
    double tolerance = 0.03;
    if (input.kind.operation == Operation::Line)
    {
        const Segment& line   = input.lines[0];
        const double   length = std::hypot(line.to.x - line.from.x, line.to.y - line.from.y);
        tolerance += (input.kind.dashed ? DASH : 1.2) / length;
        if (input.kind.lineWidth > 1) tolerance += 0.5 / input.kind.lineWidth;
    }
    else
    {
        tolerance += 1 / input.kind.radius;
    }
    if (error < -0.6 || error > (input.kind.dashed ? 2 : 1) || deviation > 16)
        return {Verdict::Wrong, Text("area off by %.0f %%", error * 100)};
    if (std::fabs(error) > tolerance) return {Verdict::Inexact, Text("area off by %+.1f %%", error * 100)};
    return {};
}

//! Every pixel, or the mean of all where samples may be chosen.
Finding CheckColors(const Input& input, const Job& job)
{
    const Case& kind     = input.kind;
    const bool  isChoice = kind.operation == Operation::Stretch || kind.operation == Operation::Rotate ||
                          kind.operation == Operation::Polygon;

    // Pixel by pixel a gradient shows more; for the mean, white is further from every source.
    Picture before(job.target->width, job.target->height);
    FillWithGradient(before);
    if (isChoice) std::fill_n(before.Pixels(), before.Count(), 0xFFFFFFFF);
    std::copy_n(before.Pixels(), before.Count(), job.target->Pixels());
    job.run(1);

    double largest = 0, alpha = 0, distance = 0;
    Color  sum{0, 0, 0, 0};
    for (int y = 0; y < before.height; ++y)
    {
        for (int x = 0; x < before.width; ++x)
        {
            const Color is = FromWord(*job.target->At(x, y)), be = Expected(input, x, y, FromWord(*before.At(x, y)));
            alpha = std::max(alpha, std::fabs(is[0] - be[0]));
            for (std::size_t i = 1; i < 4; ++i)
            {
                largest = std::max(largest, std::fabs(is[i] - be[i]));
                sum[i] += is[i] - be[i];
            }
            // Red and green of a source hardly change from pixel to pixel, whatever sample is taken; blue does.
            distance += (std::fabs(is[1] - be[1]) + std::fabs(is[2] - be[2])) / 2;
        }
    }
    distance /= input.areas[0];
    double mean = 0;
    for (std::size_t i = 1; i < 4; ++i) mean = std::max(mean, std::fabs(sum[i]) / input.areas[0]);

    // A ring of pixels at the border may be drawn or not: of a small picture it is much.
    const double border = isChoice ? 200 / std::sqrt(input.areas[0]) : 0;
    if (mean > 24 + border || distance > 16 + border || (!isChoice && largest > 40))
    {
        return {Verdict::Wrong, Text("colours off by %.1f in the mean", std::max(mean, distance))};
    }
    if (mean > (isChoice ? 10 : 3) + border) return {Verdict::Inexact, Text("mean colour off by %.1f", mean)};
    if (!isChoice && largest > 5) return {Verdict::Inexact, Text("single pixels off by %.0f", largest)};
    if (alpha > 1) return {Verdict::Inexact, Text("alpha off by %.0f", alpha)};
    return {};
}

}  // namespace

Finding Check(const Input& input, const Job& job)
{
    const Finding finding =
        input.kind.IsShape() && !input.kind.textured ? CheckArea(input, job) : CheckColors(input, job);
    FillWithGradient(*job.target);
    return finding;
}

}  // namespace bench
