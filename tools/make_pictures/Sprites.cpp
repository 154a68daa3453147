// Sprites: single figures, each in a kind of file of its own: a robot on a key colour, a planet in palette colours, a
// moon in 16 bits of grey, a balloon that arrives interlaced.
#include <algorithm>
#include <cmath>

#include "Canvas.h"
#include "Pictures.h"

namespace pictures
{

namespace
{

constexpr int SIDE = 64;

//! Where a ball of radius 1 about the origin has its surface: x and y as given, z towards the viewer.
double BallDepth(Point p)
{
    return std::sqrt(std::max(0.0, 1 - Dot(p, p)));
}

Point Rotated(Point p, double degrees)
{
    const Point axis = OnCircle({}, 1, degrees);
    return {p.x * axis.x + p.y * axis.y, p.y * axis.x - p.x * axis.y};
}

// ---- Palette -------------------------------------------------------------------------------------------------------

struct Entry
{
    std::uint8_t part[4];
};

//! Median cut: the box of colours with the widest side is split at its median until there are enough.
//! Colours are boxed as they appear, that is premultiplied: what is hardly visible gets hardly any entries.
class Quantiser
{
public:
    explicit Quantiser(const std::vector<std::uint8_t>& rgba)
    {
        for (std::size_t pixel = 0; pixel < rgba.size(); pixel += 4)
        {
            const unsigned alpha = rgba[pixel + 3];
            const auto     seen  = [&](std::size_t part)
            { return static_cast<std::uint8_t>(rgba[pixel + part] * alpha / 255); };
            m_seen.push_back({{seen(0), seen(1), seen(2), rgba[pixel + 3]}});
        }
        m_boxOf.resize(m_seen.size());
        std::vector<std::size_t> all(m_seen.size());
        for (std::size_t pixel = 0; pixel < all.size(); ++pixel) all[pixel] = pixel;
        m_boxes.push_back(all);
        while (m_boxes.size() < 256 && Split())
        {
        }
        for (std::size_t box = 0; box < m_boxes.size(); ++box)
        {
            for (const std::size_t pixel : m_boxes[box]) m_boxOf[pixel] = static_cast<std::uint8_t>(box);
        }
    }

    const std::vector<std::uint8_t>& Indices() const { return m_boxOf; }

    //! Each entry the mean of its box, straight again.
    std::vector<std::uint8_t> Palette() const
    {
        std::vector<std::uint8_t> palette;
        for (const auto& box : m_boxes)
        {
            std::size_t sum[4] = {};
            for (const std::size_t pixel : box)
            {
                for (std::size_t part = 0; part < 4; ++part) sum[part] += m_seen[pixel].part[part];
            }
            for (std::size_t part = 0; part < 3; ++part)
            {
                const std::size_t straight = sum[3] != 0 ? (sum[part] * 255 + sum[3] / 2) / sum[3] : 0;
                palette.push_back(static_cast<std::uint8_t>(std::min<std::size_t>(straight, 255)));
            }
            palette.push_back(static_cast<std::uint8_t>((sum[3] + box.size() / 2) / box.size()));
        }
        return palette;
    }

private:
    bool Split()
    {
        std::size_t widest = 0;
        std::size_t axis   = 0;
        int         width  = 0;
        for (std::size_t box = 0; box < m_boxes.size(); ++box)
        {
            for (std::size_t part = 0; part < 4; ++part)
            {
                int low  = 255;
                int high = 0;
                for (const std::size_t pixel : m_boxes[box])
                {
                    low  = std::min<int>(low, m_seen[pixel].part[part]);
                    high = std::max<int>(high, m_seen[pixel].part[part]);
                }
                if (high - low <= width) continue;
                width  = high - low;
                widest = box;
                axis   = part;
            }
        }
        if (width == 0) return false;

        std::vector<std::size_t>& box = m_boxes[widest];
        std::stable_sort(box.begin(), box.end(),
                         [&](std::size_t a, std::size_t b) { return m_seen[a].part[axis] < m_seen[b].part[axis]; });
        // Equal values stay together: the cut moves to the nearest place where the value changes.
        const auto  value = [&](std::size_t place) { return m_seen[box[place]].part[axis]; };
        std::size_t cut   = box.size() / 2;
        std::size_t down  = cut;
        std::size_t up    = cut;
        while (down > 0 && (down == box.size() || value(down - 1) == value(down))) --down;
        while (up < box.size() && (up == 0 || value(up - 1) == value(up))) ++up;
        cut = down != 0 && (up == box.size() || cut - down <= up - cut) ? down : up;

        const auto               middle = box.begin() + static_cast<std::ptrdiff_t>(cut);
        std::vector<std::size_t> upper(middle, box.end());
        box.erase(middle, box.end());
        m_boxes.push_back(std::move(upper));
        return true;
    }

    std::vector<Entry>                    m_seen;   //!< premultiplied, one per pixel
    std::vector<std::vector<std::size_t>> m_boxes;  //!< the pixels of each palette entry
    std::vector<std::uint8_t>             m_boxOf;
};

// ---- Figures -------------------------------------------------------------------------------------------------------

Colour PlanetColour(Point p)
{
    const Point  centre{32, 32};
    const double radius = 17.5;
    const Point  light{-0.55, -0.50};  // with its share towards the viewer: 0.67
    const Point  ball = (p - centre) * (1 / radius);
    const double far  = Length(ball);

    Colour colour = Rgb(0x9CC4FF, 0.50 * (1 - SmoothStep(0.90, 1.35, far)) * Clamp(0.65 + Dot(ball, light)));
    if (far < 1)
    {
        const double z      = BallDepth(ball);
        const Point  turned = Rotated(ball, -18);
        const double around = turned.x / std::max(0.35, z);
        const double swirl  = 0.07 * (Fractal(around * 2.2 + 9, turned.y * 7, 3, 3) - 0.5);
        const double band   = turned.y + swirl;
        Colour       ground = Ramp({{-1.0, Rgb(0xB8876A)},
                                    {-0.72, Rgb(0xDDB48C)},
                                    {-0.55, Rgb(0xF3DDB4)},
                                    {-0.38, Rgb(0xC98A5C)},
                                    {-0.24, Rgb(0xF0CF9E)},
                                    {-0.02, Rgb(0xFBEBCB)},
                                    {0.12, Rgb(0xD99A66)},
                                    {0.24, Rgb(0xB5714A)},
                                    {0.40, Rgb(0xEBC596)},
                                    {0.62, Rgb(0xC9966E)},
                                    {1.0, Rgb(0x9A6E5A)}},
                                   band);
        const Point  storm{(turned.x - 0.30) / 0.22, (band - 0.30) / 0.11};
        ground           = Mix(ground, Rgb(0xD9583A), 0.8 * (1 - SmoothStep(0.6, 1.1, Length(storm))));
        const double day = Clamp(Dot(ball, light) + 0.67 * z);
        colour           = Mix(Rgb(0x2C2348), ground, SmoothStep(-0.30, 0.70, Dot(ball, light) + 0.67 * z));
        colour           = Add(colour, Rgb(0xBFD8FF), 0.16 * SmoothStep(0.75, 1, far) * day);
    }

    // The rings, seen from above: a disc, flattened and tilted; its near half passes in front of the ball.
    const Point  tilted = Rotated(p - centre, -18);
    const Point  flat{tilted.x, tilted.y / 0.28};
    const double ring = Length(flat);
    if (ring > 20.5 && ring < 31 && (tilted.y > 0 || far >= 1))
    {
        const double grain  = Noise(ring * 1.1, 0.5, 21);
        const double gap    = SmoothStep(0.3, 0.9, std::fabs(ring - 26.6));
        const double rim    = SmoothStep(20.5, 22, ring) * (1 - SmoothStep(29.8, 31, ring));
        const double behind = tilted.y < 0 && tilted.x > 0 ? SmoothStep(4, 9, tilted.x) : 1;  // the ball's own shadow
        const Colour dust   = Mix(Rgb(0xB79F86), Rgb(0xFFF0D2), grain);
        const double cover  = rim * gap * (0.45 + 0.5 * grain);
        const Colour lit    = Mix(Rgb(0x2A2238), dust, behind);
        const double total  = cover + colour.a * (1 - cover);
        if (total > 0)
        {
            const double share = cover / total;
            colour = {Mix(colour.r, lit.r, share), Mix(colour.g, lit.g, share), Mix(colour.b, lit.b, share), total};
        }
    }
    return colour;
}

struct Crater
{
    Point  centre;  //!< on the unit ball
    double radius;
};

//! How much a crater tilts the ground towards the light, and how it tints it.
double MoonLight(Point p)
{
    const Point  centre{32, 32};
    const Point  ball = (p - centre) * (1 / 27.0);
    const double far  = Length(ball);
    const double sky  = 0.012 + 0.05 * (1 - Clamp(p.y / 64)) + 0.10 / (1 + (far * far) * 2.2);
    if (far >= 1) return sky;

    static const Crater craters[] = {{{-0.30, -0.38}, 0.20}, {{0.22, -0.10}, 0.26},  {{-0.42, 0.22}, 0.17},
                                     {{0.10, 0.50}, 0.22},   {{0.45, -0.52}, 0.13},  {{-0.06, 0.06}, 0.09},
                                     {{0.52, 0.26}, 0.12},   {{-0.66, -0.12}, 0.10}, {{-0.20, 0.66}, 0.10},
                                     {{-0.02, -0.66}, 0.11}, {{0.30, 0.22}, 0.07},   {{-0.18, 0.36}, 0.06}};
    double              tiltX     = 0;
    double              tiltY     = 0;
    double              floor     = 0;
    for (const Crater& crater : craters)
    {
        const Point  offset = ball - crater.centre;
        const double ratio  = Length(offset) / crater.radius;
        if (ratio > 1.45) continue;
        // The wall falls inwards just inside the rim and outwards, more gently, outside it.
        const double slope = ratio < 1 ? -SmoothStep(0.45, 0.85, ratio) : 0.55 * (1 - SmoothStep(1.0, 1.45, ratio));
        const double unit  = std::max(Length(offset), 1e-9);
        tiltX += 0.55 * slope * offset.x / unit;
        tiltY += 0.55 * slope * offset.y / unit;
        floor += 0.16 * (1 - SmoothStep(0.5, 0.9, ratio));
    }
    const double maria  = SmoothStep(0.48, 0.66, Fractal(ball.x * 2.1 + 5, ball.y * 2.1 + 8, 13, 4));
    const double grain  = Fractal(ball.x * 11, ball.y * 11, 29, 3);
    const double albedo = 0.80 - 0.26 * maria - floor + 0.20 * (grain - 0.5);
    const double z      = BallDepth(ball);
    const double day    = Clamp((ball.x + tiltX) * -0.58 + (ball.y + tiltY) * -0.46 + z * 0.67);
    return Mix(0.035, 1.12, day) * albedo;
}

constexpr double BALLOON_X = 32;

//! Half the width of the envelope at a height: a ball above, a cone with a soft waist below.
double EnvelopeHalf(double y)
{
    const double t = (y - 22.5) / 19.5;
    if (t < -1) return -1;
    if (t < 0.25) return 19.5 * std::sqrt(1 - t * t);
    const double u = (y - 27.375) / (48 - 27.375);  // 0 where the ball ends, 1 at the mouth
    return u <= 1 ? Mix(18.88, 4.2, u + 0.30 * u * (1 - u) * (2 * u - 1) - 0.33 * u * (1 - u)) : -1;
}

Colour EnvelopeColour(Point p)
{
    const double half = EnvelopeHalf(p.y);
    if (std::fabs(p.x - BALLOON_X) > half) return {};
    const double side    = (p.x - BALLOON_X) / half;  // -1 .. 1 across
    const double around  = std::asin(Clamp(side, -1, 1)) * 180 / PI;
    const double gores   = (around + 90) / 180 * 7;  // seven strips of cloth are seen
    const int    gore    = std::min(static_cast<int>(gores), 6);
    const Colour cloth[] = {Rgb(0xF25C54), Rgb(0xFFF3DC), Rgb(0x2BA6A0), Rgb(0xFFC857)};
    Colour       colour  = cloth[gore % 4];
    // Each gore bulges a little; a zigzag belt goes round the middle.
    const double bulge = gores - gore;  // 0..1 across one
    const double belt  = p.y - 27.5 + 1.8 * side * side - 3.2 * std::fabs(bulge - 0.5);
    if (belt > -1.9 && belt < 1.9) colour = Rgb(0x24466E);
    const double shade = Clamp(0.5 - 0.42 * side - 0.012 * (p.y - 20)) + 0.10 * (bulge - 0.5) * (1 - bulge) * 4;
    colour             = Mix(Mix(Rgb(0x2A1A4A), colour, 0.62), colour, SmoothStep(-0.05, 0.55, shade));
    colour             = Mix(colour, Rgb(0x4A2A50), 0.38 * SmoothStep(0.80, 1, std::fabs(side)));
    return Mix(colour, Rgb(0xFFFFFF), 0.50 * (1 - SmoothStep(0.05, 0.55, Length({(p.x - 24) / 16, (p.y - 14) / 15}))));
}

}  // namespace

Png Robot()
{
    constexpr Colour DARK = Rgb(0x1B2436), BLUE = Rgb(0x58AEE0), DEEP = Rgb(0x3A82B8), PALE = Rgb(0xA6E0F7),
                     ORANGE = Rgb(0xF59A3C), RUST = Rgb(0xC46A22), STEEL = Rgb(0x9AA7BA), IRON = Rgb(0x66738A),
                     RED = Rgb(0xF0484E), ROSE = Rgb(0xFFA8A0), YELLOW = Rgb(0xFFE45E), SCREEN = Rgb(0x24324A);

    const Shape head   = Box(15, 10, 49, 34, 8);
    const Shape body   = Box(18, 36, 46, 54, 6);
    const Shape ears   = Union({Box(11, 17, 16, 28, 2), Box(48, 17, 53, 28, 2)});
    const Shape aerial = Box(31, 5, 33, 11);
    const Shape lamp   = Circle({32, 4}, 3);
    const Shape neck   = Box(27, 33, 37, 37);
    const Shape arms = Union({Stroke({{18, 41}, {11, 44}, {9, 49}}, 4.6), Stroke({{46, 41}, {53, 38}, {56, 32}}, 4.6)});
    const Shape hands =
        Union({Minus(Circle({9, 52}, 4), Circle({9, 55}, 1.8)), Minus(Circle({57, 29}, 4), Circle({57, 26}, 1.8))});
    const Shape legs   = Union({Box(22, 52, 29, 60), Box(35, 52, 42, 60)});
    const Shape feet   = Union({Box(19, 57, 31, 63, 3), Box(33, 57, 45, 63, 3)});
    const Shape figure = Union({head, body, ears, aerial, lamp, neck, arms, hands, legs, feet});

    Canvas     canvas(SIDE, SIDE);
    const auto part = [&](const Shape& shape, Colour light, Colour shade)
    {
        canvas.FillHard(Grown(shape, 1), DARK);
        canvas.FillHard(shape, shade);
        canvas.FillHard(Both(shape, Moved(shape, {-2, -2})), light);
    };
    canvas.FillHard(Box(-1, -1, SIDE + 1, SIDE + 1), Rgb(0xFF00FF));
    canvas.FillHard(Grown(figure, 1), DARK);
    part(aerial, STEEL, IRON);
    part(lamp, RED, Rgb(0xB02238));
    canvas.FillHard(Box(30, 2, 32, 4), ROSE);
    part(neck, STEEL, IRON);
    part(legs, STEEL, IRON);
    part(feet, ORANGE, RUST);
    part(arms, STEEL, IRON);
    part(hands, ORANGE, RUST);
    part(ears, ORANGE, RUST);
    part(body, BLUE, DEEP);
    canvas.FillHard(Box(22, 38, 40, 39), PALE);
    part(head, BLUE, DEEP);
    canvas.FillHard(Union({Box(22, 11, 40, 13), Box(19, 13, 21, 15)}), PALE);

    // The face: a screen with two eyes and a grin.
    canvas.FillHard(Box(19, 15, 45, 30, 5), DARK);
    canvas.FillHard(Box(20, 16, 44, 29, 4), SCREEN);
    for (const double eye : {26.0, 38.0})
    {
        canvas.FillHard(Circle({eye, 21}, 3.3), YELLOW);
        canvas.FillHard(Box(eye - 1, 20, eye + 1, 22), DARK);
        canvas.FillHard(Box(eye - 2, 19, eye - 1, 20), Rgb(0xFFFFFF));
    }
    canvas.FillHard(Box(28, 26, 36, 27), YELLOW);
    canvas.FillHard(Union({Box(27, 25, 28, 26), Box(36, 25, 37, 26)}), YELLOW);

    // The chest: a red lamp and three buttons.
    canvas.FillHard(Circle({28, 46}, 4.6), DARK);
    canvas.FillHard(Circle({28, 46}, 3.6), RED);
    canvas.FillHard(Box(26, 44, 28, 46), ROSE);
    const Colour buttons[] = {YELLOW, Rgb(0x7BE08A), PALE};
    for (int button = 0; button < 3; ++button)
    {
        canvas.FillHard(Box(36, 41 + button * 4, 42, 44 + button * 4), DARK);
        canvas.FillHard(Box(37, 41 + button * 4, 41, 43 + button * 4), buttons[button]);
    }

    Png        png{SIDE, SIDE, Kind::Rgb8, {}, {}, false};
    const auto bytes = ToBytes(canvas);
    for (std::size_t index = 0; index < bytes.size(); ++index)
    {
        if (index % 4 != 3) png.samples.push_back(bytes[index]);
    }
    return png;
}

Png Planet()
{
    Canvas canvas(SIDE, SIDE);
    canvas.Render(PlanetColour, 6);
    const Quantiser quantiser(ToBytes(canvas));
    return {SIDE, SIDE, Kind::Palette8, quantiser.Indices(), quantiser.Palette(), false};
}

Png Moon()
{
    Canvas canvas(SIDE, SIDE);
    canvas.Render([](Point p) { return Grey(MoonLight(p)); }, 6);
    Png png{SIDE, SIDE, Kind::Grey16, {}, {}, false};
    for (int y = 0; y < SIDE; ++y)
    {
        for (int x = 0; x < SIDE; ++x)
        {
            const auto level = static_cast<unsigned>(Clamp(canvas.At(x, y).r) * 65535 + 0.5);
            png.samples.push_back(static_cast<std::uint8_t>(level >> 8));
            png.samples.push_back(static_cast<std::uint8_t>(level & 255));
        }
    }
    return png;
}

Png Balloon()
{
    Canvas envelope(SIDE, SIDE);
    envelope.Render(EnvelopeColour, 8);

    Canvas canvas(SIDE, SIDE);
    // A translucent cloud behind it.
    const Shape cloud =
        Union({Circle({46, 47}, 6.5), Circle({54, 50}, 5), Circle({38, 50.5}, 4.5), Box(34, 49, 60, 55, 3)});
    canvas.Fill(cloud, Vertical(40, 55, Rgb(0xFFFFFF, 0.85), Rgb(0xCFE0F5, 0.45)));
    canvas.Fill(Stroke({{28.6, 47}, {29, 55}}, 0.8), Rgb(0x5A4632));
    canvas.Fill(Stroke({{35.4, 47}, {35, 55}}, 0.8), Rgb(0x5A4632));
    canvas.Fill(Stroke({{32, 47}, {32, 55}}, 0.5), Rgb(0x5A4632, 0.6));
    canvas.Draw(envelope);
    canvas.Fill(Box(27.6, 47.2, 36.4, 48.8, 0.6), Rgb(0x24466E));
    const Shape basket = Polygon({{27.4, 54.6}, {36.6, 54.6}, {35.6, 61.6}, {28.4, 61.6}});
    canvas.Fill(Grown(basket, 0.5),
                Linear({27, 0}, {37, 0}, {{0, Rgb(0xC98F52)}, {0.4, Rgb(0xB4763E)}, {1, Rgb(0x6E4322)}}));
    for (const double row : {57.2, 59.6}) canvas.Fill(Box(27.8, row, 36.2, row + 0.7), Rgb(0x5A3416, 0.55));
    canvas.Fill(Stroke({{27.2, 54.6}, {36.8, 54.6}}, 1.5), Rgb(0x8A5A2E));
    return {SIDE, SIDE, Kind::Rgba8, ToBytes(canvas), {}, true};
}

}  // namespace pictures
