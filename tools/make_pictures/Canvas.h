// Canvas: a small illustrator's kit for the pictures of the gallery: shapes, paints, and a canvas that they meet on.
// Everything is computed in double, with the four basic operations and sqrt, sine and cosine; speed does not matter.
// It shares nothing with the drawing library on purpose: the pictures are its input, not its output.
#ifndef CANVAS_H
#define CANVAS_H

#include <cstdint>
#include <functional>
#include <vector>

namespace pictures
{

constexpr double PI = 3.14159265358979323846;

struct Point
{
    double x = 0;
    double y = 0;
};

constexpr Point operator+(Point a, Point b)
{
    return {a.x + b.x, a.y + b.y};
}
constexpr Point operator-(Point a, Point b)
{
    return {a.x - b.x, a.y - b.y};
}
constexpr Point operator*(Point a, double factor)
{
    return {a.x * factor, a.y * factor};
}
constexpr double Dot(Point a, Point b)
{
    return a.x * b.x + a.y * b.y;
}
double Length(Point p);

double Clamp(double value, double low = 0, double high = 1);
double Mix(double a, double b, double share);                  //!< a at 0, b at 1
double SmoothStep(double low, double high, double value);      //!< 0 up to low, 1 from high on, an S between them
Point  OnCircle(Point centre, double radius, double degrees);  //!< 0 is to the right, 90 is down

//! Straight alpha, each part 0..1.
struct Colour
{
    double r = 0;
    double g = 0;
    double b = 0;
    double a = 0;
};

constexpr Colour Rgb(std::uint32_t rgb, double alpha = 1)
{
    return {(rgb >> 16 & 255) / 255.0, (rgb >> 8 & 255) / 255.0, (rgb & 255) / 255.0, alpha};
}

constexpr Colour Grey(double level, double alpha = 1)
{
    return {level, level, level, alpha};
}

Colour Mix(Colour a, Colour b, double share);         //!< part by part, alpha too
Colour Add(Colour base, Colour light, double share);  //!< light falls on it; alpha stays
Colour Faded(Colour colour, double opacity);

//! A value that runs through colours; the stops stand in ascending order.
struct Stop
{
    double at;
    Colour colour;
};
Colour Ramp(const std::vector<Stop>& stops, double at);

// ---- Noise ---------------------------------------------------------------------------------------------------------

double Hash(int x, int y, int seed);                        //!< 0..1, the same for ever
double Noise(double x, double y, int seed);                 //!< 0..1, smooth, one bump per unit
double Fractal(double x, double y, int seed, int octaves);  //!< 0..1, octaves of Noise, each half as strong

// ---- Shapes --------------------------------------------------------------------------------------------------------

//! The signed distance to an outline, negative inside. Away from it any smaller distance will do, a larger one not.
using Shape = std::function<double(Point)>;

Shape Circle(Point centre, double radius);
Shape Ellipse(Point centre, double radiusX, double radiusY);
Shape Box(double left, double top, double right, double bottom, double corner = 0);
Shape Polygon(std::vector<Point> corners);
Shape Stroke(std::vector<Point> points, double width);  //!< a polyline with round caps and joints
Shape Arc(Point centre, double radius, double fromDegrees, double toDegrees, double width);  //!< with round caps
Shape Sector(Point centre, double fromDegrees, double toDegrees);  //!< endless, up to 180 wide
Shape HalfPlane(Point through, Point outward);                     //!< endless

Shape Union(std::vector<Shape> shapes);
Shape Both(Shape a, Shape b);
Shape Minus(Shape a, Shape b);
Shape Grown(Shape shape, double by);       //!< with a negative number: shrunk
Shape Outline(Shape shape, double width);  //!< a line of that width along the edge, half of it outside
Shape Moved(Shape shape, Point by);
Shape Turned(Shape shape, Point about, double degrees);
Shape Scaled(Shape shape, double factor);  //!< about the origin

// ---- Paints --------------------------------------------------------------------------------------------------------

using Paint = std::function<Colour(Point)>;

Paint Flat(Colour colour);
Paint Linear(Point from, Point to, std::vector<Stop> stops);
Paint Vertical(double top, double bottom, Colour atTop, Colour atBottom);
Paint Radial(Point centre, double radius, std::vector<Stop> stops);

// ---- Canvas --------------------------------------------------------------------------------------------------------

class Canvas
{
public:
    Canvas(int width, int height);  //!< transparent

    int Width() const { return m_width; }
    int Height() const { return m_height; }

    //! Paints over what is there. The edge is smoothed with 16 x 16 samples per pixel, the paint taken at its centre.
    Canvas& Fill(const Shape& shape, const Paint& paint);
    Canvas& Fill(const Shape& shape, Colour colour);

    //! Paints every pixel whose centre lies inside, and only whole: for colour keys and pixel art.
    Canvas& FillHard(const Shape& shape, Colour colour);

    //! Replaces every pixel by the mean of samples x samples paint values.
    Canvas& Render(const Paint& paint, int samples);

    Canvas& Draw(const Canvas& layer, int x = 0, int y = 0, double opacity = 1);

    //! The silhouette in one colour, moved and softened: what lies under a thing that floats.
    Canvas Shadow(Point offset, double softness, Colour colour) const;

    Colour At(int x, int y) const;  //!< straight alpha; black where nothing is

private:
    std::size_t Index(int x, int y) const;
    void        Over(std::size_t index, Colour straight);

    int                 m_width;
    int                 m_height;
    std::vector<Colour> m_pixels;  //!< premultiplied
};

//! A canvas in bytes, red, green, blue, alpha, straight. Where alpha is 0 the nearest visible colours are continued,
//! so that a bilinear reader of straight alpha finds no foreign colour behind an edge.
std::vector<std::uint8_t> ToBytes(const Canvas& canvas);

//! The same for a sheet of cells: colours are not continued from one cell into another.
std::vector<std::uint8_t> ToBytes(const Canvas& canvas, int cellWidth, int cellHeight);

}  // namespace pictures

#endif
