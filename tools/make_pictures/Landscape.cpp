// Landscape: a mountain lake at sunrise, from back to front: sky, clouds, three ranges, mist, water, pines, reeds.
// Every part is a colour as a function of the place, so that the water can look up what it mirrors.
#include <algorithm>
#include <cmath>

#include "Canvas.h"
#include "Pictures.h"

namespace pictures
{

namespace
{

constexpr int    WIDTH   = 240;
constexpr int    HEIGHT  = 160;
constexpr double HORIZON = 102;  // the far shore
constexpr Point  SUN{96, 63};

constexpr Colour HAZE = Rgb(0xFBD3A8);

//! Bright at the sun, half as bright at distance, never quite dark.
double Glow(Point p, double distance)
{
    const Point  offset = p - SUN;
    const double ratio  = Dot(offset, offset) / (distance * distance);
    return 1 / (1 + ratio);
}

Colour Sky(Point p)
{
    Colour colour = Ramp({{0.00, Rgb(0x274A86)},
                          {0.30, Rgb(0x5478B4)},
                          {0.52, Rgb(0x9C9CC6)},
                          {0.68, Rgb(0xE0AFB4)},
                          {0.80, Rgb(0xFAC59B)},
                          {1.00, Rgb(0xFFE3B0)}},
                         p.y / HORIZON);
    colour        = Mix(colour, Rgb(0xFFB070), 0.62 * Glow(p, 44));
    colour        = Mix(colour, Rgb(0xFFE09A), 0.85 * Glow(p, 19));

    // Clouds: stretched noise, warm on the side of the sun and where thin, cool in the middle.
    const auto density = [](Point q)
    {
        const double bend = 9 * Fractal(q.x / 60, q.y / 40, 31, 2);
        const double band = SmoothStep(4, 20, q.y) * (1 - SmoothStep(44, 74, q.y));
        return SmoothStep(0.50, 0.78, Fractal(q.x / 42 + 3, (q.y + bend) / 10, 37, 5)) * band;
    };
    const double here  = density(p);
    const double light = Clamp(0.55 + 1.3 * (here - density({p.x + 3, p.y + 3.5})));
    const Colour cloud =
        Mix(Mix(Rgb(0x8E8FB8), Rgb(0xB79BB4), p.y / 70), Mix(Rgb(0xFFE9DC), Rgb(0xFFC79A), Clamp(p.y / 60)), light);
    colour = Mix(colour, cloud, 0.82 * here);

    return Mix(colour, Rgb(0xFFFBE8), 1 - SmoothStep(7.2, 8.4, Length(p - SUN)));
}

//! One range: where its ridge runs, what its slopes look like, how far away it is.
struct Range
{
    int    seed;
    double ridge;     //!< mean height of the ridge line in rows
    double relief;    //!< how far it rises and falls
    double wave;      //!< columns per peak
    double distance;  //!< 0 in the haze of the far side, 1 near
    Colour lit;
    Colour shaded;
    double snow;  //!< rows below the ridge that are white; 0 for none
};

double RidgeLine(const Range& range, double x)
{
    // Folded noise has sharp crests and round valleys, as mountains do.
    const auto   fold   = [](double value) { return 1 - std::fabs(2 * value - 1); };
    const double u      = x / range.wave;
    const double height = 0.62 * fold(Noise(u, 0.5, range.seed)) + 0.26 * fold(Noise(2.3 * u, 7.5, range.seed + 1)) +
                          0.12 * fold(Noise(5.1 * u, 3.5, range.seed + 2)) + 0.05 * Noise(13 * u, 1.5, range.seed + 3);
    return range.ridge - range.relief * (height - 0.5);
}

//! Faces that look towards the sun are lit. Two surfaces decide: the ridge itself, carried downwards, and a wrinkled
//! one of spurs and gullies.
Colour Slope(const Range& range, Point p, double ridge)
{
    const double depth  = p.y - ridge;
    const double sunny  = Clamp((SUN.x - p.x) / 25, -1, 1);  // which way the sun is; straight ahead nothing is lit
    const auto   relief = [&](double dx, double dy)
    {
        const Point  q{p.x + dx, p.y + dy};
        const double size = 0.17 * range.wave;
        const double u    = (q.x + 7 * Noise(q.x / 13, q.y / 11, range.seed + 4)) / size;
        const double v    = (q.y + 5 * Noise(q.x / 11, q.y / 13, range.seed + 6)) / (1.9 * size);
        const double fold = 1 - std::fabs(2 * Noise(u, v, range.seed + 5) - 1);
        return fold + 0.42 * (1 - std::fabs(2 * Noise(2.3 * u + v, 2.1 * v, range.seed + 7) - 1)) +
               0.20 * Noise(5.7 * u, 4.3 * v, range.seed + 8);
    };
    const double large = (RidgeLine(range, p.x + 2.5) - RidgeLine(range, p.x - 2.5)) / 5;
    const double small = (relief(-0.7, 0) - relief(0.7, 0)) + 0.5 * (relief(0, 0.7) - relief(0, -0.7));
    const double light = Clamp(0.38 + sunny * (0.30 * large / (1 + depth / 18) + 1.25 * small));

    Colour colour = Mix(range.shaded, range.lit, light);
    if (range.snow > 0)
    {
        // Snow reaches down in the gullies and leaves the spurs free; high peaks carry more of it.
        const double altitude = Clamp(0.20 + 1.15 * (range.ridge - ridge) / range.relief, 0, 1);
        const double rough    = 12 * (0.80 - relief(0, 0)) + 7 * (Fractal(p.x / 5, p.y / 4, range.seed + 9, 2) - 0.5);
        const double edge     = (range.snow + rough) * altitude - 2;
        const double white    = 1 - SmoothStep(edge - 1.6, edge + 1.6, depth);
        colour                = Mix(colour, Mix(Rgb(0x7F93C4), Rgb(0xFFF0E0), SmoothStep(0.22, 0.72, light)), white);
    }
    const double air = (1 - range.distance) * (0.50 + 0.50 * SmoothStep(ridge, HORIZON, p.y));
    colour           = Mix(colour, Mix(Rgb(0xB4B0D0), HAZE, Clamp(0.15 + 0.95 * Glow(p, 70))), air);
    return Mix(colour, Rgb(0xFFB878), 0.55 * (1 - range.distance * 0.5) * Glow(p, 34));
}

//! The wood on the far shore: a row of small tree tops.
double TreeTops(double x, double base, int seed)
{
    double    top    = base;
    const int column = static_cast<int>(std::floor(x / 2.6));
    for (int tree = column - 2; tree <= column + 2; ++tree)
    {
        const double centre = (tree + 0.2 + 0.6 * Hash(tree, 1, seed)) * 2.6;
        const double height = 3 + 4.5 * Hash(tree, 2, seed);
        top                 = std::min(top, base - height + std::fabs(x - centre) * (height / 2.1));
    }
    return top;
}

//! Everything above the water line.
Colour Land(Point p)
{
    static const Range ranges[] = {
        {11, 75, 30, 34, 0.32, Rgb(0xB58FA8), Rgb(0x6F7CA8), 9},
        {77, 66, 66, 74, 0.80, Rgb(0xCC9A8C), Rgb(0x24366E), 22},
        {53, 91, 22, 47, 0.76, Rgb(0x86884C), Rgb(0x2B4B5C), 0},
    };
    Colour colour = Sky(p);
    for (const Range& range : ranges)
    {
        const double ridge = RidgeLine(range, p.x);
        if (p.y > ridge) colour = Slope(range, p, ridge);
    }

    const double woodBase = HORIZON - 1 - 3.5 * Noise(p.x / 33, 0.5, 91);
    const double wood     = TreeTops(p.x, woodBase, 17);
    if (p.y > wood)
    {
        const double shade = Noise(p.x / 1.3, p.y / 1.6, 23);
        colour             = Mix(Mix(Rgb(0x1F3A3F), Rgb(0x4B5F45), shade), HAZE, 0.10 + 0.30 * Glow(p, 45));
    }

    // Mist on the water, in two thin layers.
    const double wisp = Fractal(p.x / 37, p.y / 5, 61, 3);
    const double mist = SmoothStep(HORIZON - 13, HORIZON - 1, p.y) * SmoothStep(0.32, 0.75, wisp);
    return Mix(colour, Mix(Rgb(0xD9CBDD), Rgb(0xFFE2BE), Glow(p, 90)), 0.62 * mist);
}

Colour Water(Point p)
{
    const double near = (p.y - HORIZON) / (HEIGHT - HORIZON);  // 0 at the far shore, 1 in front
    // Ripples lie flat and grow towards the viewer; they shift the mirrored point mostly up and down.
    const double size   = 0.9 + 3.2 * near;
    const double ripple = Fractal(p.x / (7 * size), p.y / size, 41, 3) - 0.5;
    const double chop   = Noise(p.x / (2.6 * size), p.y / (0.45 * size), 43) - 0.5;
    const Point  mirrored{p.x + 5 * near * chop,
                         HORIZON - (p.y - HORIZON) * 1.28 - (2.5 + 20 * near) * ripple - (1 + 7 * near) * chop};
    const Colour image  = Land({mirrored.x, Clamp(mirrored.y, 0, HORIZON - 0.5)});
    Colour       colour = Mix(image, Rgb(0x1D3F63), 0.16 + 0.36 * near + 0.12 * ripple);

    // The path of the sun: glints, the wider the nearer.
    const double reach = 5 + 20 * near;
    const double side  = (p.x - SUN.x) / reach;
    const double path  = 1 / (1 + side * side * side * side);
    const double glint = SmoothStep(0.52, 0.86, Noise(p.x / (3.2 * size), p.y / (0.55 * size), 47));
    colour             = Add(colour, Rgb(0xFFC274), path * (0.20 + 0.75 * glint) * (1 - 0.55 * near));

    const double shore = 1 - SmoothStep(0, 1.6, p.y - HORIZON);
    return Mix(colour, Rgb(0x33484F), 0.55 * shore);
}

//! A pine with drooping branches; the border of its outline is a saw of branch tips.
double Pine(Point p, Point foot, double height, int seed)
{
    const double t = (p.y - (foot.y - height)) / height;  // 0 at the tip, 1 at the foot
    if (t < 0 || t > 1) return 0;
    const double side    = p.x < foot.x ? 1 : 0;
    const double storeys = 5 + height / 6.5;
    const double phase   = t * storeys + 0.37 * side + 0.3 * Noise(t * storeys, side, seed);
    const double tooth   = phase - std::floor(phase);
    const double jitter  = 0.75 + 0.5 * Hash(static_cast<int>(std::floor(phase)), static_cast<int>(side), seed);
    const double half    = height * 0.23 * t * jitter * (0.42 + 0.58 * tooth) + 0.3;
    const double trunk   = t > 0.93 ? height * 0.018 : 0;
    const double reach   = t > 0.95 ? trunk : half;
    return std::fabs(p.x - foot.x) < reach ? 1 : 0;
}

struct PineAt
{
    Point  foot;
    double height;
};

//! The near bank with its pines and reeds, over whatever lies behind.
Colour Foreground(Point p, Colour behind)
{
    static const PineAt pines[] = {{{9, 152}, 92},  {{27, 154}, 70},  {{44, 156}, 45},  {{-4, 153}, 70},
                                   {{59, 158}, 24}, {{229, 156}, 58}, {{243, 156}, 80}, {{214, 158}, 28}};
    for (const PineAt& pine : pines)
    {
        const int seed = static_cast<int>(pine.foot.x) + 400;
        if (Pine(p, pine.foot, pine.height, seed) == 0) continue;
        const double toSun  = pine.foot.x < SUN.x ? p.x - pine.foot.x : pine.foot.x - p.x;
        const double bright = SmoothStep(-2, 0.20 * pine.height, toSun) * Noise(p.x / 1.7, p.y / 1.4, 83);
        behind              = Mix(Rgb(0x10242E), Rgb(0x5C5A3E), 0.75 * bright);
    }

    const double middle = (p.x - 135) / 135;
    const double bank   = 157.5 - 9 * middle * middle - 3 * Noise(p.x / 17, 0.5, 97);
    double       edge   = bank;
    for (int blade = static_cast<int>(p.x / 1.5) - 4; blade <= static_cast<int>(p.x / 1.5) + 4; ++blade)
    {
        const double height = 2 + 9 * Hash(blade, 4, 5) * Noise(blade / 9.0, 0.5, 6);
        const double t      = (bank - p.y) / height;  // 0 at the ground, 1 at the tip
        if (t < 0 || t > 1) continue;
        const double lean = (Hash(blade, 3, 5) - 0.4) * 4 * t * t;
        if (std::fabs(p.x - blade * 1.5 - lean) < 0.55 * (1 - t)) edge = p.y - 1;
    }
    if (p.y > edge)
    {
        const double tint = Noise(p.x / 3.1, p.y / 1.7, 71) * 0.6 + 0.4 * Clamp((bank + 3 - p.y) / 6);
        behind            = Mix(Rgb(0x121F24), Rgb(0x4A4A30), tint * (0.35 + 0.5 * Glow({p.x, SUN.y}, 70)));
    }
    return behind;
}

Colour Scene(Point p)
{
    return Foreground(p, p.y < HORIZON ? Land(p) : Water(p));
}

}  // namespace

Png Landscape()
{
    Canvas canvas(WIDTH, HEIGHT);
    canvas.Render(Scene, 4);

    Png        png{WIDTH, HEIGHT, Kind::Rgb8, {}, {}, false};
    const auto bytes = ToBytes(canvas);
    for (std::size_t index = 0; index < bytes.size(); ++index)
    {
        if (index % 4 != 3) png.samples.push_back(bytes[index]);
    }
    return png;
}

}  // namespace pictures
