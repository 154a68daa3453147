// Reference_Polygon: the spans of plain polygons a second time, as plainly as they can be described: arrays with indices
// instead of linked records, one function per step, no buffers to reuse. Shares nothing with the library: neither types
// nor code. The random tests of polygons compare with it; Reference_PolygonRule.h states the same polygons without any
// scan conversion, Reference_PolygonTex.h paints the same spans from a texture.
#ifndef REFERENCE_POLYGON_H
#define REFERENCE_POLYGON_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Reference_Line.h"

namespace reference
{

struct Corner
{
    float x;
    float y;
};
using Outline = std::vector<Corner>;

//! What a span renderer receives: a row, and where the span starts and ends in 16.16.
struct Span
{
    std::int64_t row;
    std::int64_t start;
    std::int64_t end;

    friend bool operator==(const Span& one, const Span& other)
    {
        return one.row == other.row && one.start == other.start && one.end == other.end;
    }
};

//! The spans of a polygon in the order in which they are painted, and what its statistics receive.
struct PlainOutcome
{
    std::vector<Span> spans;
    int               polygons  = 0;
    int               rejected  = 0;
    int               edges     = 0;
    int               buckets   = 0;
    int               crossings = 0;
};

//! The spans of the outline, which is not clipped. Every corner must be finite; the time is that of its height.
void PlainSpans(const Outline& outline, PlainOutcome& outcome);

//! Paints the spans into the picture: stored where alpha is 255, else blended by it. What lies outside the picture is
//! dropped; the clip rectangle is none of its business.
void PaintSpans(const Canvas& canvas, const std::vector<Span>& spans, std::uint32_t color, int alpha);

//! A real number as an integer: truncated towards zero, saturated, 0 for what is no number.
std::int64_t Truncated(float value);

}  // namespace reference

#endif
