// RandomPolygons: outlines of every kind that polygons are made of: convex and concave, crossing themselves, on whole,
// half and any coordinates, with repeated and collinear corners, slivers and nearly level sides, inside the picture or
// far outside.
#ifndef RANDOMPOLYGONS_H
#define RANDOMPOLYGONS_H

#include <cstdint>
#include <string>

#include "Dice.h"
#include "Reference_Polygon.h"

namespace support
{

//! low to high, high excluded but for rounding.
inline float Uniform(Dice& dice, float low, float high)
{
    return low + (high - low) * (static_cast<float>(dice.Next32() >> 8) / 16777216.0F);
}

struct PolygonSpace
{
    unsigned width;
    unsigned height;
    bool     inside;  // every corner lies in 0 <= x < width, 0 <= y < height
};

//! 3 to 40 corners, at times followed by copies of themselves; all finite.
reference::Outline ThrowOutline(Dice& dice, const PolygonSpace& space);

//! Corners on an ellipse in order, around a middle inside the space; none outside.
reference::Outline ThrowConvex(Dice& dice, const PolygonSpace& space);

//! Corners in order of their angle at any distance from a middle inside the space: concave, not crossing itself.
reference::Outline ThrowConcave(Dice& dice, const PolygonSpace& space);

//! Of an outline that does not cross itself; positive clockwise on the screen.
double TwiceTheArea(const reference::Outline& outline);

//! "(1, 2) (3, 4) ...", with enough digits to have the same polygon again; the first hundred corners.
std::string Described(const reference::Outline& outline);

}  // namespace support

#endif
