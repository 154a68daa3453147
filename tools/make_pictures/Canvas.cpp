// Canvas: the geometry of the shapes, the noise, and the compositing of the canvas.
#include "Canvas.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pictures
{

namespace
{

double Radians(double degrees)
{
    return degrees * PI / 180;
}

double DistanceToSegment(Point p, Point a, Point b)
{
    const Point  along  = b - a;
    const double square = Dot(along, along);
    const double share  = square > 0 ? Clamp(Dot(p - a, along) / square) : 0;
    return Length(p - (a + along * share));
}

std::size_t Size(int count)
{
    return static_cast<std::size_t>(count);
}

std::uint8_t ToByte(double value)
{
    return static_cast<std::uint8_t>(Clamp(value) * 255 + 0.5);
}

}  // namespace

double Length(Point p)
{
    return std::sqrt(Dot(p, p));
}

double Clamp(double value, double low, double high)
{
    return std::min(std::max(value, low), high);
}

double Mix(double a, double b, double share)
{
    return a + (b - a) * share;
}

double SmoothStep(double low, double high, double value)
{
    const double t = Clamp((value - low) / (high - low));
    return t * t * (3 - 2 * t);
}

Point OnCircle(Point centre, double radius, double degrees)
{
    return {centre.x + radius * std::cos(Radians(degrees)), centre.y + radius * std::sin(Radians(degrees))};
}

Colour Mix(Colour a, Colour b, double share)
{
    return {Mix(a.r, b.r, share), Mix(a.g, b.g, share), Mix(a.b, b.b, share), Mix(a.a, b.a, share)};
}

Colour Add(Colour base, Colour light, double share)
{
    return {Clamp(base.r + light.r * share), Clamp(base.g + light.g * share), Clamp(base.b + light.b * share), base.a};
}

Colour Faded(Colour colour, double opacity)
{
    colour.a *= opacity;
    return colour;
}

Colour Ramp(const std::vector<Stop>& stops, double at)
{
    for (std::size_t next = 1; next < stops.size(); ++next)
    {
        const Stop& low  = stops[next - 1];
        const Stop& high = stops[next];
        if (at < high.at) return Mix(low.colour, high.colour, Clamp((at - low.at) / (high.at - low.at)));
    }
    return stops.back().colour;
}

double Hash(int x, int y, int seed)
{
    std::uint32_t bits = static_cast<std::uint32_t>(x) * 0x8DA6B343u ^ static_cast<std::uint32_t>(y) * 0xD8163841u ^
                         static_cast<std::uint32_t>(seed) * 0xCB1AB31Fu;
    bits = (bits ^ bits >> 15) * 0x2C1B3C6Du;
    bits = (bits ^ bits >> 12) * 0x297A2D39u;
    bits ^= bits >> 15;
    return bits / 4294967295.0;
}

double Noise(double x, double y, int seed)
{
    const double floorX = std::floor(x);
    const double floorY = std::floor(y);
    const int    ix     = static_cast<int>(floorX);
    const int    iy     = static_cast<int>(floorY);
    const double tx     = SmoothStep(0, 1, x - floorX);
    const double ty     = SmoothStep(0, 1, y - floorY);
    return Mix(Mix(Hash(ix, iy, seed), Hash(ix + 1, iy, seed), tx),
               Mix(Hash(ix, iy + 1, seed), Hash(ix + 1, iy + 1, seed), tx), ty);
}

double Fractal(double x, double y, int seed, int octaves)
{
    double sum    = 0;
    double weight = 0;
    for (double share = 1; octaves > 0; --octaves, share /= 2, x *= 2, y *= 2)
    {
        sum += share * Noise(x, y, seed + octaves);
        weight += share;
    }
    return sum / weight;
}

Shape Circle(Point centre, double radius)
{
    return [=](Point p) { return Length(p - centre) - radius; };
}

Shape Ellipse(Point centre, double radiusX, double radiusY)
{
    return [=](Point p)
    {
        const Point unit{(p.x - centre.x) / radiusX, (p.y - centre.y) / radiusY};
        return (Length(unit) - 1) * std::min(radiusX, radiusY);
    };
}

Shape Box(double left, double top, double right, double bottom, double corner)
{
    return [=](Point p)
    {
        const double dx = std::fabs(p.x - (left + right) / 2) - (right - left) / 2 + corner;
        const double dy = std::fabs(p.y - (top + bottom) / 2) - (bottom - top) / 2 + corner;
        return Length({std::max(dx, 0.0), std::max(dy, 0.0)}) + std::min(std::max(dx, dy), 0.0) - corner;
    };
}

Shape Polygon(std::vector<Point> corners)
{
    return [corners = std::move(corners)](Point p)
    {
        double distance = 1e9;
        bool   inside   = false;
        Point  previous = corners.back();
        for (const Point corner : corners)
        {
            distance = std::min(distance, DistanceToSegment(p, previous, corner));
            if ((corner.y > p.y) != (previous.y > p.y))
            {
                const double crossing = corner.x + (p.y - corner.y) / (previous.y - corner.y) * (previous.x - corner.x);
                if (p.x < crossing) inside = !inside;
            }
            previous = corner;
        }
        return inside ? -distance : distance;
    };
}

Shape Stroke(std::vector<Point> points, double width)
{
    return [points = std::move(points), width](Point p)
    {
        double distance = 1e9;
        for (std::size_t next = 1; next < points.size(); ++next)
        {
            distance = std::min(distance, DistanceToSegment(p, points[next - 1], points[next]));
        }
        return distance - width / 2;
    };
}

Shape Arc(Point centre, double radius, double fromDegrees, double toDegrees, double width)
{
    // Measured in a frame whose first axis points at the middle of the arc: the arc is symmetric there.
    const Point  axis = OnCircle({}, 1, (fromDegrees + toDegrees) / 2);
    const double half = Radians((toDegrees - fromDegrees) / 2);
    const Point  end{radius * std::cos(half), radius * std::sin(half)};
    return [=](Point p)
    {
        const Point  offset = p - centre;
        const Point  local{Dot(offset, axis), std::fabs(offset.y * axis.x - offset.x * axis.y)};
        const double angle = std::atan2(local.y, local.x);
        return (angle <= half ? std::fabs(Length(offset) - radius) : Length(local - end)) - width / 2;
    };
}

Shape HalfPlane(Point through, Point outward)
{
    const Point unit = outward * (1 / Length(outward));
    return [=](Point p) { return Dot(p - through, unit); };
}

Shape Sector(Point centre, double fromDegrees, double toDegrees)
{
    return Both(HalfPlane(centre, OnCircle({}, 1, fromDegrees - 90)),
                HalfPlane(centre, OnCircle({}, 1, toDegrees + 90)));
}

Shape Union(std::vector<Shape> shapes)
{
    return [shapes = std::move(shapes)](Point p)
    {
        double distance = 1e9;
        for (const Shape& shape : shapes) distance = std::min(distance, shape(p));
        return distance;
    };
}

Shape Both(Shape a, Shape b)
{
    return [a = std::move(a), b = std::move(b)](Point p) { return std::max(a(p), b(p)); };
}

Shape Minus(Shape a, Shape b)
{
    return [a = std::move(a), b = std::move(b)](Point p) { return std::max(a(p), -b(p)); };
}

Shape Grown(Shape shape, double by)
{
    return [shape = std::move(shape), by](Point p) { return shape(p) - by; };
}

Shape Outline(Shape shape, double width)
{
    return [shape = std::move(shape), width](Point p) { return std::fabs(shape(p)) - width / 2; };
}

Shape Moved(Shape shape, Point by)
{
    return [shape = std::move(shape), by](Point p) { return shape(p - by); };
}

Shape Turned(Shape shape, Point about, double degrees)
{
    const Point axis = OnCircle({}, 1, degrees);
    return [shape = std::move(shape), about, axis](Point p)
    {
        const Point offset = p - about;
        return shape(about + Point{Dot(offset, axis), offset.y * axis.x - offset.x * axis.y});
    };
}

Shape Scaled(Shape shape, double factor)
{
    return [shape = std::move(shape), factor](Point p) { return shape(p * (1 / factor)) * factor; };
}

Paint Flat(Colour colour)
{
    return [=](Point) { return colour; };
}

Paint Linear(Point from, Point to, std::vector<Stop> stops)
{
    const Point  along  = to - from;
    const double square = Dot(along, along);
    return [=, stops = std::move(stops)](Point p) { return Ramp(stops, Dot(p - from, along) / square); };
}

Paint Vertical(double top, double bottom, Colour atTop, Colour atBottom)
{
    return Linear({0, top}, {0, bottom}, {{0, atTop}, {1, atBottom}});
}

Paint Radial(Point centre, double radius, std::vector<Stop> stops)
{
    return [=, stops = std::move(stops)](Point p) { return Ramp(stops, Length(p - centre) / radius); };
}

Canvas::Canvas(int width, int height) : m_width(width), m_height(height), m_pixels(Size(width) * Size(height)) {}

std::size_t Canvas::Index(int x, int y) const
{
    return Size(y) * Size(m_width) + Size(x);
}

void Canvas::Over(std::size_t index, Colour straight)
{
    Colour&      pixel = m_pixels[index];
    const double keep  = 1 - straight.a;
    pixel              = {straight.r * straight.a + pixel.r * keep, straight.g * straight.a + pixel.g * keep,
                          straight.b * straight.a + pixel.b * keep, straight.a + pixel.a * keep};
}

Canvas& Canvas::Fill(const Shape& shape, const Paint& paint)
{
    constexpr int SAMPLES = 16;
    for (int y = 0; y < m_height; ++y)
    {
        for (int x = 0; x < m_width; ++x)
        {
            const Point  centre{x + 0.5, y + 0.5};
            const double distance = shape(centre);
            if (distance > 0.75) continue;  // a pixel's corner is 0.71 away from its centre
            int inside = distance < -0.75 ? SAMPLES * SAMPLES : 0;
            for (int sample = 0; inside < SAMPLES * SAMPLES && sample < SAMPLES * SAMPLES; ++sample)
            {
                const Point p{x + (sample % SAMPLES + 0.5) / SAMPLES, y + (sample / SAMPLES + 0.5) / SAMPLES};
                inside += shape(p) < 0;
            }
            if (inside != 0) Over(Index(x, y), Faded(paint(centre), inside / (SAMPLES * SAMPLES * 1.0)));
        }
    }
    return *this;
}

Canvas& Canvas::Fill(const Shape& shape, Colour colour)
{
    return Fill(shape, Flat(colour));
}

Canvas& Canvas::FillHard(const Shape& shape, Colour colour)
{
    for (int y = 0; y < m_height; ++y)
    {
        for (int x = 0; x < m_width; ++x)
        {
            if (shape({x + 0.5, y + 0.5}) < 0) Over(Index(x, y), colour);
        }
    }
    return *this;
}

Canvas& Canvas::Render(const Paint& paint, int samples)
{
    const double weight = 1.0 / (samples * samples);
    for (int y = 0; y < m_height; ++y)
    {
        for (int x = 0; x < m_width; ++x)
        {
            Colour& pixel = m_pixels[Index(x, y)];
            pixel         = {};
            for (int sample = 0; sample < samples * samples; ++sample)
            {
                const Colour colour =
                    paint({x + (sample % samples + 0.5) / samples, y + (sample / samples + 0.5) / samples});
                pixel.r += colour.r * colour.a * weight;
                pixel.g += colour.g * colour.a * weight;
                pixel.b += colour.b * colour.a * weight;
                pixel.a += colour.a * weight;
            }
        }
    }
    return *this;
}

Canvas& Canvas::Draw(const Canvas& layer, int x, int y, double opacity)
{
    for (int row = std::max(0, -y); row < std::min(layer.m_height, m_height - y); ++row)
    {
        for (int column = std::max(0, -x); column < std::min(layer.m_width, m_width - x); ++column)
        {
            Over(Index(column + x, row + y), Faded(layer.At(column, row), opacity));
        }
    }
    return *this;
}

Canvas Canvas::Shadow(Point offset, double softness, Colour colour) const
{
    // A bell of (1 - d^2 / r^2)^2, along rows and then along columns: as soft as a Gaussian, and it ends.
    const double shift = std::max(std::fabs(offset.x), std::fabs(offset.y));
    const int    reach = static_cast<int>(std::ceil(2.5 * softness + shift));
    const auto   bell  = [&](double distance)
    {
        const double t = Clamp(1 - distance * distance / (6.25 * softness * softness));
        return t * t;
    };
    const auto blurred = [&](const std::vector<double>& from, bool alongRows)
    {
        std::vector<double> to(from.size());
        for (int y = 0; y < m_height; ++y)
        {
            for (int x = 0; x < m_width; ++x)
            {
                double sum    = 0;
                double weight = 0;
                for (int step = -reach; step <= reach; ++step)
                {
                    const double part  = bell(step + (alongRows ? offset.x : offset.y));
                    const int    fromX = alongRows ? x + step : x;
                    const int    fromY = alongRows ? y : y + step;
                    weight += part;
                    if (fromX < 0 || fromX >= m_width || fromY < 0 || fromY >= m_height) continue;
                    sum += part * from[Index(fromX, fromY)];
                }
                to[Index(x, y)] = weight > 0 ? sum / weight : 0;
            }
        }
        return to;
    };

    std::vector<double> alpha;
    for (const Colour& pixel : m_pixels) alpha.push_back(pixel.a);
    alpha = blurred(blurred(alpha, true), false);

    Canvas shadow(m_width, m_height);
    for (std::size_t index = 0; index < alpha.size(); ++index) shadow.Over(index, Faded(colour, alpha[index]));
    return shadow;
}

Colour Canvas::At(int x, int y) const
{
    const Colour& pixel = m_pixels[Index(x, y)];
    if (pixel.a <= 0) return {};
    return {pixel.r / pixel.a, pixel.g / pixel.a, pixel.b / pixel.a, pixel.a};
}

std::vector<std::uint8_t> ToBytes(const Canvas& canvas)
{
    return ToBytes(canvas, canvas.Width(), canvas.Height());
}

std::vector<std::uint8_t> ToBytes(const Canvas& canvas, int cellWidth, int cellHeight)
{
    const int                 width  = canvas.Width();
    const int                 height = canvas.Height();
    std::vector<std::uint8_t> bytes;
    std::vector<bool>         known;
    for (int y = 0; y < height; ++y)
    {
        for (int x = 0; x < width; ++x)
        {
            const Colour colour = canvas.At(x, y);
            for (const double part : {colour.r, colour.g, colour.b, colour.a}) bytes.push_back(ToByte(part));
            known.push_back(bytes.back() != 0);
        }
    }

    // Ring by ring, every unknown pixel takes the mean of its known neighbours.
    for (bool grew = true; grew;)
    {
        grew            = false;
        const auto seen = known;
        for (int y = 0; y < height; ++y)
        {
            for (int x = 0; x < width; ++x)
            {
                const std::size_t here = Size(y) * Size(width) + Size(x);
                if (seen[here]) continue;
                unsigned sum[3] = {};
                unsigned count  = 0;
                for (int dy = -1; dy <= 1; ++dy)
                {
                    for (int dx = -1; dx <= 1; ++dx)
                    {
                        const int nx = x + dx;
                        const int ny = y + dy;
                        if (nx < 0 || ny < 0 || nx >= width || ny >= height) continue;
                        if (nx / cellWidth != x / cellWidth || ny / cellHeight != y / cellHeight) continue;
                        const std::size_t there = Size(ny) * Size(width) + Size(nx);
                        if (!seen[there]) continue;
                        for (std::size_t part = 0; part < 3; ++part) sum[part] += bytes[there * 4 + part];
                        ++count;
                    }
                }
                if (count == 0) continue;
                for (std::size_t part = 0; part < 3; ++part)
                {
                    bytes[here * 4 + part] = static_cast<std::uint8_t>((sum[part] + count / 2) / count);
                }
                known[here] = true;
                grew        = true;
            }
        }
    }
    return bytes;
}

}  // namespace pictures
