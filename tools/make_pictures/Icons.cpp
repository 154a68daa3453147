// Icons: a sheet of eight icons in one hand: soft light from above, rounded corners, one shadow for all.
#include <cmath>

#include "Canvas.h"
#include "Pictures.h"

namespace pictures
{

namespace
{

constexpr int CELL = 48;

Colour White(double alpha)
{
    return Grey(1, alpha);
}
Colour Black(double alpha)
{
    return Rgb(0x0A1024, alpha);
}

//! A circle and the two tangents from a point on the axis of the icon: half a heart.
Shape Lobe(Point centre, double radius, Point tip)
{
    const Point  toCentre = centre - tip;
    const double length   = Length(toCentre);
    const double tangent  = std::sqrt(length * length - radius * radius);
    const Point  along    = toCentre * (1 / length);
    const Point  across{-along.y, along.x};
    const double forward = tangent * tangent / length;
    const double aside   = tangent * radius / length;
    return Union({Circle(centre, radius), Polygon({tip, tip + along * forward + across * aside, centre,
                                                   tip + along * forward - across * aside})});
}

//! Tips and notches by turns, the first tip up.
std::vector<Point> StarCorners(Point centre, double outer, double inner)
{
    std::vector<Point> corners;
    for (int corner = 0; corner < 10; ++corner)
    {
        corners.push_back(OnCircle(centre, corner % 2 == 0 ? outer : inner, corner * 36 - 90));
    }
    return corners;
}

Canvas Home()
{
    Canvas      icon(CELL, CELL);
    const Shape roof = Grown(Polygon({{24, 8.5}, {40.5, 23}, {7.5, 23}}), 2.6);
    const Shape body = Box(11, 18, 37, 41, 2.5);
    const Shape door = Both(Box(20, 28.5, 28, 46, 4), HalfPlane({0, 41}, {0, 1}));
    icon.Fill(Box(31.5, 8, 36, 20, 1), Vertical(8, 20, Rgb(0xB9493F), Rgb(0x8C2E2C)));
    icon.Fill(body, Vertical(22, 41, Rgb(0xFFF7E8), Rgb(0xEBD2AB)));
    icon.Fill(Both(body, Moved(roof, {0, 2.2})), Rgb(0x7A4A28, 0.30));
    icon.Fill(door, Vertical(28, 41, Rgb(0x9A6440), Rgb(0x6F4128)));
    icon.Fill(Both(door, HalfPlane({21.4, 0}, {1, 0})), Black(0.18));
    icon.Fill(Circle({26, 35.5}, 0.95), Rgb(0xFFD97A));
    for (const double left : {13.4, 30.1})
    {
        icon.Fill(Box(left, 29, left + 4.6, 34.5, 1), Vertical(29, 34.5, Rgb(0x6FB6E8), Rgb(0xBFE6FA)));
    }
    icon.Fill(roof, Vertical(6, 26, Rgb(0xFF7C66), Rgb(0xD63B40)));
    icon.Fill(Both(roof, HalfPlane({0, 23.6}, {0, -1})), Rgb(0x8E1E30, 0.35));
    icon.Fill(Both(Grown(roof, -0.9), Stroke({{7, 22.2}, {24, 7.6}, {41, 22.2}}, 1.7)), White(0.38));
    return icon;
}

Canvas Gear()
{
    Canvas             icon(CELL, CELL);
    const Point        centre{24, 23.5};
    std::vector<Shape> parts{Circle(centre, 12.6)};
    for (int tooth = 0; tooth < 8; ++tooth)
    {
        const Shape blunt = Grown(Polygon({{20.6, 6.2}, {27.4, 6.2}, {29.2, 14}, {18.8, 14}}), 1.3);
        parts.push_back(Turned(blunt, centre, tooth * 45));
    }
    const Shape gear = Minus(Union(parts), Circle(centre, 5.6));
    icon.Fill(gear, Vertical(5, 42, Rgb(0xC9D4E4), Rgb(0x647492)));
    icon.Fill(Both(gear, Outline(Union(parts), 1.8)), Vertical(5, 42, White(0.75), Black(0.10)));
    const Shape hub = Minus(Circle(centre, 10), Circle(centre, 5.6));
    icon.Fill(hub, Vertical(13.5, 33.5, Rgb(0x7C8BA8), Rgb(0xAAB8CC)));
    icon.Fill(Outline(Circle(centre, 10), 0.9), Vertical(13.5, 33.5, Black(0.35), White(0.55)));
    icon.Fill(Both(gear, Outline(Circle(centre, 5.6), 2)), Vertical(18, 29, White(0.10), White(0.70)));
    return icon;
}

Canvas Heart()
{
    Canvas      icon(CELL, CELL);
    const Point tip{24, 39};
    const Shape heart = Grown(Union({Lobe({15.8, 17.2}, 7.9, tip), Lobe({32.2, 17.2}, 7.9, tip),
                                     Polygon({{15.8, 17.2}, {24, 14.5}, {32.2, 17.2}, {24, 34}})}),
                              1.6);
    icon.Fill(heart, Radial({16, 13}, 32, {{0, Rgb(0xFF8E9E)}, {0.4, Rgb(0xF2405F)}, {1, Rgb(0xA80F38)}}));
    icon.Fill(Minus(heart, Moved(Grown(heart, -1.0), {0, -1.2})), Rgb(0x6E0428, 0.28));
    const Shape gloss = Turned(Ellipse({15.6, 14.6}, 5.4, 3.3), {15.6, 14.6}, -34);
    icon.Fill(gloss, Linear({13, 11}, {18, 19}, {{0, White(0.78)}, {1, White(0.12)}}));
    return icon;
}

Canvas Star()
{
    Canvas      icon(CELL, CELL);
    const Point centre{24, 25};
    const Shape star    = Grown(Polygon(StarCorners(centre, 18.6, 8.1)), 1.5);
    const auto  corners = StarCorners(centre, 24, 9.9);
    icon.Fill(star, Vertical(6, 41, Rgb(0xFFE98C), Rgb(0xF7A621)));
    for (std::size_t arm = 0; arm < corners.size(); arm += 2)
    {
        const Point next = corners[(arm + 1) % corners.size()];
        icon.Fill(Both(star, Polygon({centre, corners[arm], next})), Rgb(0xC96A00, 0.22));
    }
    icon.Fill(Both(star, Outline(star, 2.0)), Vertical(6, 41, White(0.70), Rgb(0xB45A00, 0.30)));
    return icon;
}

Canvas Bell()
{
    Canvas icon(CELL, CELL);
    // The profile: a dome, straight shoulders, a flare.
    std::vector<Point> left;
    std::vector<Point> outline;
    for (double y = 9; y <= 35.01; y += 0.5)
    {
        const double dome  = y < 18.5 ? std::sqrt(9.5 * 9.5 - (18.5 - y) * (18.5 - y)) : 9.5;
        const double waist = y > 18.5 ? 1.6 * (y - 18.5) / 16.5 : 0;
        const double flare = y > 27 ? 3.6 * (y - 27) * (y - 27) / 64 : 0;
        outline.push_back({24 + dome + waist + flare, y});
        left.push_back({24 - dome - waist - flare, y});
    }
    outline.insert(outline.end(), left.rbegin(), left.rend());
    const Shape body  = Polygon(outline);
    const Paint brass = Linear({9, 20}, {39, 26},
                               {{0, Rgb(0xF7B52C)}, {0.30, Rgb(0xFFE48A)}, {0.62, Rgb(0xF7B731)}, {1, Rgb(0xC97A10)}});
    icon.Fill(Circle({24, 38.6}, 4), Vertical(35, 43, Rgb(0xA65E08), Rgb(0xE09A22)));
    icon.Fill(Circle({24, 8}, 2.9), brass);
    icon.Fill(body, brass);
    icon.Fill(Both(body, HalfPlane({0, 31.5}, {0, -1})), Rgb(0x9A5200, 0.22));
    icon.Fill(Stroke({{9.6, 35.4}, {38.4, 35.4}}, 4.6),
              Linear({8, 33}, {40, 38},
                     {{0, Rgb(0xFFC94A)}, {0.3, Rgb(0xFFEBA0)}, {0.7, Rgb(0xF2AC2A)}, {1, Rgb(0xC77810)}}));
    icon.Fill(Stroke({{18.6, 29}, {18.2, 21}, {19.6, 16.2}, {22, 13.6}}, 2.2), White(0.55));
    return icon;
}

Canvas Sun()
{
    Canvas      icon(CELL, CELL);
    const Point centre{24, 23.5};
    for (int ray = 0; ray < 8; ++ray)
    {
        const double angle = ray * 45;
        const double reach = ray % 2 == 0 ? 18.4 : 17.6;
        icon.Fill(Stroke({OnCircle(centre, 14, angle), OnCircle(centre, reach, angle)}, 3.8),
                  Vertical(4, 43, Rgb(0xFFC83A), Rgb(0xFA9320)));
    }
    icon.Fill(Circle(centre, 10.2),
              Radial({20.5, 19}, 17, {{0, Rgb(0xFFF6B8)}, {0.5, Rgb(0xFFD747)}, {1, Rgb(0xF99A1C)}}));
    icon.Fill(Both(Circle(centre, 10.2), Outline(Circle(centre, 9.6), 1.2)), Vertical(13, 34, White(0.65), White(0)));
    return icon;
}

Canvas Cloud()
{
    Canvas      icon(CELL, CELL);
    const Shape behind = Union({Circle({33.2, 19.2}, 7.6), Circle({40, 23.5}, 4.6), Box(25, 20, 44.4, 28, 3.5)});
    const Shape before =
        Union({Circle({13.2, 29.4}, 8), Circle({22.6, 24.2}, 9.8), Circle({32.6, 30}, 7.6), Box(5.6, 28, 40.2, 38, 5)});
    icon.Fill(behind, Vertical(11, 29, Rgb(0xB5CBF0), Rgb(0x7C9EDB)));
    icon.Fill(Both(behind, Grown(before, 1.6)), Rgb(0x3F63A8, 0.30));
    icon.Fill(before, Vertical(14, 38, Rgb(0xFFFFFF), Rgb(0xC2D7F3)));
    icon.Fill(Minus(before, Moved(Grown(before, -0.5), {0, -1.5})), Rgb(0x6F93CC, 0.42));
    icon.Fill(Arc({22.6, 24.2}, 6.6, 195, 265, 1.8), White(0.95));
    return icon;
}

Canvas Battery()
{
    Canvas      icon(CELL, CELL);
    const Shape shell = Box(4.5, 13.5, 40.5, 34.5, 5);
    const Shape well  = Box(7.2, 16.2, 37.8, 31.8, 2.6);
    icon.Fill(Box(39, 19.5, 44, 28.5, 2), Vertical(19, 29, Rgb(0x7A879E), Rgb(0x46536B)));
    icon.Fill(shell, Vertical(13, 35, Rgb(0x6E7C95), Rgb(0x38445A)));
    icon.Fill(Both(shell, Outline(shell, 1.8)), Vertical(13, 35, White(0.55), White(0.05)));
    icon.Fill(well, Vertical(16, 32, Rgb(0x1C2535), Rgb(0x2F3B50)));
    for (int bar = 0; bar < 4; ++bar)
    {
        const double left = 9.2 + bar * 6.95;
        const bool   full = bar < 3;
        icon.Fill(Box(left, 18.2, left + 5.75, 29.8, 1.4),
                  full ? Vertical(18, 30, Rgb(0x9BF07A), Rgb(0x2FA84A)) : Flat(Rgb(0x4C5A72, 0.55)));
    }
    icon.Fill(Both(well, HalfPlane({0, 22.6}, {0, 1})), Vertical(16, 22.6, White(0.38), White(0.12)));
    return icon;
}

}  // namespace

Png Icons()
{
    const Canvas icons[] = {Home(), Gear(), Heart(), Star(), Bell(), Sun(), Cloud(), Battery()};
    Canvas       sheet(4 * CELL, 2 * CELL);
    int          cell = 0;
    for (const Canvas& icon : icons)
    {
        Canvas shaded = icon.Shadow({0, 2}, 1.9, Black(0.42));
        shaded.Draw(icon);
        sheet.Draw(shaded, cell % 4 * CELL, cell / 4 * CELL);
        ++cell;
    }
    return {sheet.Width(), sheet.Height(), Kind::Rgba8, ToBytes(sheet, CELL, CELL), {}, false};
}

}  // namespace pictures
