// Widgets: parts of an instrument panel (glass, gauge) and the alpha maps that cut pictures and colours into shape.
#include <cmath>

#include "Canvas.h"
#include "Pictures.h"

namespace pictures
{

namespace
{

Colour White(double alpha)
{
    return Grey(1, alpha);
}
Colour Black(double alpha)
{
    return Rgb(0x060A16, alpha);
}

//! A digit of the dial, in a box of 4.2 x 7; only those that the dial needs.
Shape Digit(char digit)
{
    constexpr double PEN = 1.15;
    switch (digit)
    {
    case '0': return Outline(Box(0, 0, 4.2, 7, 2.1), PEN);
    case '1': return Stroke({{0.9, 1.4}, {2.6, 0}, {2.6, 7}}, PEN);
    case '2': return Union({Arc({2.1, 2.1}, 2.1, 190, 390, PEN), Stroke({{3.92, 3.15}, {0.1, 7}, {4.2, 7}}, PEN)});
    case '4': return Stroke({{3.2, 7}, {3.2, 0}, {0, 4.9}, {4.4, 4.9}}, PEN);
    case '6': return Union({Outline(Circle({2.1, 4.9}, 2.1), PEN), Stroke({{0.25, 4}, {2.9, 0}}, PEN)});
    case '8': return Union({Outline(Circle({2.1, 1.75}, 1.75), PEN), Outline(Circle({2.1, 5}, 2.05), PEN)});
    default: return Circle({0, 0}, -1);
    }
}

void DrawNumber(Canvas& canvas, const std::string& digits, Point centre, Colour colour)
{
    constexpr double ADVANCE = 6.2;
    double           left    = centre.x - (ADVANCE * static_cast<double>(digits.size()) - 2) / 2;
    for (const char digit : digits)
    {
        canvas.Fill(Moved(Digit(digit), {left, centre.y - 3.5}), colour);
        left += ADVANCE;
    }
}

Png ToGrey(const Canvas& canvas)
{
    Png        png{canvas.Width(), canvas.Height(), Kind::Grey8, {}, {}, false};
    const auto bytes = ToBytes(canvas);
    for (std::size_t alpha = 3; alpha < bytes.size(); alpha += 4) png.samples.push_back(bytes[alpha]);
    return png;
}

}  // namespace

Png Glass()
{
    constexpr int SIDE = 96;
    Canvas        canvas(SIDE, SIDE);
    const Shape   panel = Box(9, 7, 87, 83, 15);

    // The shadow falls beside the panel only: glass lets the light through.
    Canvas solid(SIDE, SIDE);
    solid.Fill(panel, Black(1));
    const Canvas shadow = solid.Shadow({0, 3.5}, 3.6, Black(0.50));
    canvas.Fill(Minus(Box(0, 0, SIDE, SIDE), panel),
                [&](Point p) { return shadow.At(static_cast<int>(p.x), static_cast<int>(p.y)); });

    canvas.Fill(panel, Linear({0, 7}, {0, 83},
                              {{0, Rgb(0xF4F9FF, 0.46)}, {0.45, Rgb(0xCFE2FA, 0.26)}, {1, Rgb(0xA9C8F2, 0.34)}}));
    const Shape inner = Grown(panel, -2.2);
    canvas.Fill(Both(inner, Ellipse({34, 2}, 78, 40)), Vertical(8, 42, White(0.42), White(0.07)));
    const Shape sheen = Both(HalfPlane({64, 84}, {1.0, 0.55}), HalfPlane({46, 84}, {-1.0, -0.55}));
    canvas.Fill(Both(inner, sheen), Vertical(8, 83, White(0.13), White(0.05)));
    canvas.Fill(Both(panel, Outline(Grown(panel, -0.9), 1.8)),
                Linear({9, 7}, {87, 83}, {{0, White(0.95)}, {0.5, White(0.35)}, {1, White(0.70)}}));
    canvas.Fill(Both(inner, Outline(inner, 1.4)), Vertical(8, 82, White(0.10), Rgb(0x23406E, 0.28)));
    canvas.Fill(Arc({24, 22}, 10.2, 214, 272, 2.0), White(0.85));
    canvas.Fill(Arc({24, 22}, 10.2, 184, 194, 2.0), White(0.70));
    return {SIDE, SIDE, Kind::Rgba8, ToBytes(canvas), {}, false};
}

Png Gauge()
{
    constexpr int    SIDE = 128;
    constexpr double FROM = 135;  // degrees; the scale runs clockwise from the lower left to the lower right
    constexpr double SPAN = 270;
    const Point      centre{64, 63};
    constexpr double BAND  = 48.6;                      // radius of the band
    constexpr double PIXEL = 180 / (PI * BAND * SPAN);  // one pixel along it, as a share of the scale
    Canvas           dial(SIDE, SIDE);

    dial.Fill(Circle(centre, 60.5), Vertical(2, 124, Rgb(0xF4F7FB), Rgb(0x6A7486)));
    dial.Fill(Circle(centre, 58.8), Vertical(4, 122, Rgb(0xB9C2D0), Rgb(0x8E98A8)));
    dial.Fill(Circle(centre, 55.6), Vertical(7, 119, Rgb(0x4A5364), Rgb(0xDCE3EC)));
    dial.Fill(Circle(centre, 54),
              Radial({64, 52}, 66, {{0, Rgb(0x39465E)}, {0.55, Rgb(0x222B3E)}, {1, Rgb(0x0D121E)}}));

    // The band: comfortable, watchful, too much. Along it the colours meet within a pixel.
    const auto share = [&](Point p)
    {
        const Point  offset = p - centre;
        const double turned = std::atan2(offset.y, offset.x) * 180 / PI - FROM;  // -315 .. 45
        return (turned < -(360 - SPAN) / 2 ? turned + 360 : turned) / SPAN;
    };
    const auto band = [&](Point p)
    {
        const double at   = share(p);
        const Colour warm = Mix(Rgb(0x3CC9A4), Rgb(0xF7B733), SmoothStep(0.6 - PIXEL / 2, 0.6 + PIXEL / 2, at));
        return Mix(warm, Rgb(0xF0483E), SmoothStep(0.8 - PIXEL / 2, 0.8 + PIXEL / 2, at));
    };
    dial.Fill(Arc(centre, BAND, FROM, FROM + SPAN, 3.8), band);

    for (int unit = 0; unit <= 100; unit += 2)
    {
        const double angle = FROM + SPAN * unit / 100;
        const bool   major = unit % 10 == 0;
        dial.Fill(
            Stroke({OnCircle(centre, 44, angle), OnCircle(centre, major ? 38.2 : 41.6, angle)}, major ? 1.7 : 0.9),
            major ? White(0.95) : White(0.55));
        if (unit % 20 == 0) DrawNumber(dial, std::to_string(unit), OnCircle(centre, 29.5, angle), Rgb(0xDCE6F4));
    }

    // A seat for the pointer.
    Canvas hub(SIDE, SIDE);
    hub.Fill(Circle(centre, 8), Vertical(55, 71, Rgb(0x9AA6B8), Rgb(0x3A4456)));
    hub.Fill(Circle(centre, 6.4), Vertical(56, 70, Rgb(0x4A5568), Rgb(0x7D899C)));
    hub.Fill(Circle(centre, 2.2), Rgb(0x161C28));
    dial.Draw(hub.Shadow({0, 1.8}, 2.2, Black(0.65))).Draw(hub);

    // Light on the cover glass.
    const Shape cover = Circle(centre, 53.2);
    dial.Fill(Minus(cover, Circle({64, 118}, 84)), Vertical(10, 42, White(0.20), White(0.02)));

    Canvas canvas = dial.Shadow({0, 1.4}, 1.3, Black(0.55));
    canvas.Draw(dial);
    return {SIDE, SIDE, Kind::Rgba8, ToBytes(canvas), {}, false};
}

Png DiscMask()
{
    Canvas canvas(64, 64);
    canvas.Fill(Outline(Circle({32, 32}, 27), 6), White(1)).Fill(Circle({32, 32}, 18), White(1));
    return ToGrey(canvas);
}

Png GlyphMask()
{
    constexpr double PEN = 4.8;
    Canvas           canvas(128, 32);
    const Shape      word = Union({
             Stroke({{8, 4.5}, {8, 27.5}}, PEN),  // K
             Stroke({{22.5, 4.5}, {9, 18}}, PEN), Stroke({{13.5, 14}, {24, 27.5}}, PEN),
             Outline(Circle({40, 19.7}, 7.8), PEN),                                                 // a
             Stroke({{47.8, 12.2}, {47.8, 27.5}}, PEN), Stroke({{57.5, 12.2}, {57.5, 27.5}}, PEN),  // n
             Arc({64.9, 19.3}, 7.4, 180, 360, PEN), Stroke({{72.3, 19.3}, {72.3, 27.5}}, PEN),
             Stroke({{81, 12.2}, {88.5, 27.5}, {96, 12.2}}, PEN),  // v
             Outline(Circle({111.6, 19.7}, 7.8), PEN),             // o
    });
    canvas.Fill(word, White(1));
    return ToGrey(canvas);
}

Png FadeMask()
{
    Png png{128, 64, Kind::Grey8, {}, {}, false};
    for (int y = 0; y < png.height; ++y)
    {
        for (int x = 0; x < png.width; ++x)
        {
            png.samples.push_back(static_cast<std::uint8_t>((x * 255 + 63) / 127));  // nearest
        }
    }
    return png;
}

}  // namespace pictures
