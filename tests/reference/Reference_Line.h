// Reference_Line: lines and dots a second time, as plainly as they can be described: one painter with an orientation
// and a quality instead of twelve rasterisers, positions in 64 bits, one pixel at a time, every pixel outside the
// bitmap dropped. Shares nothing with the library: neither types nor tables nor code. The random tests of lines compare
// with it.
#ifndef REFERENCE_LINE_H
#define REFERENCE_LINE_H

#include <cstdint>
#include <string>

namespace reference
{

//! What is drawn into. The clip rectangle is inclusive and lies inside the picture, or is empty (maximum below
//! minimum).
struct Canvas
{
    std::uint32_t* pixels   = nullptr;
    std::int64_t   width    = 0;
    std::int64_t   height   = 0;
    std::int64_t   pitch    = 0;  // words
    std::int64_t   clipMinX = 0;
    std::int64_t   clipMinY = 0;
    std::int64_t   clipMaxX = 0;
    std::int64_t   clipMaxY = 0;
};

//! What a pattern line reads of the render state.
struct PatternState
{
    const std::uint32_t* colors    = nullptr;  // 256 forwards, then 256 backwards
    float                factor    = 1.0F;
    float                offset    = 0.0F;
    float                refLength = 1.0F;
};

struct LineCall
{
    float         startX     = 0.0F;
    float         startY     = 0.0F;
    float         endX       = 0.0F;
    float         endY       = 0.0F;
    std::uint32_t color      = 0;
    std::uint32_t flags      = 0;
    float         startWidth = 1.0F;
    float         endWidth   = 0.0F;
};

struct DotCall
{
    float         x      = 0.0F;
    float         y      = 0.0F;
    float         radius = 0.0F;
    std::uint32_t color  = 0;
    std::uint32_t flags  = 0;
};

//! What a call does besides drawing: the sums that statistics receive, how often each performance counter is started,
//! the render state's pattern offset after the call, and a message.
struct LineOutcome
{
    double      numberOfLines = 0.0;
    double      rejectedLines = 0.0;
    double      lineWidth     = 0.0;
    double      lineLength    = 0.0;
    double      numberOfDots  = 0.0;
    double      rejectedDots  = 0.0;
    double      dotRadius     = 0.0;
    int         clippings     = 0;
    int         thinLines     = 0;
    int         wideLines     = 0;  // unclipped ones
    int         dots          = 0;  // large ones
    float       offset        = 0.0F;
    std::string message;

    // Which cell of the dispatch drew: "thin", "wide", or "" for nothing; for coverage counts of the tests.
    const char* path      = "";
    bool        spansInY  = false;  // X-major
    int         quality   = 0;      // 0 plain, 1 anti-aliased, 2 filtered
    bool        pattern   = false;
    bool        clipped   = false;  // the clipped rasteriser, not the unclipped one
    bool        longBody  = false;  // the unclipped body in three parts
    bool        flipped   = false;
    bool        tapered   = false;
    bool        roundCaps = false;
};

LineOutcome DrawLine(const Canvas& canvas, const LineCall& call, const PatternState& pattern);
LineOutcome DrawDot(const Canvas& canvas, const DotCall& call);

// ---- pieces that tests of single functions use ----------------------------------------------------------------------

//! Codes of a clipped line.
enum : unsigned
{
    LINE_VISIBLE  = 1,
    LINE_CLIPPED  = 2,
    LINE_OVERFLOW = 8
};

struct Segment
{
    float ax;
    float ay;
    float bx;
    float by;
};

struct Region
{
    float minX;
    float minY;
    float maxX;
    float maxY;
};

//! Cuts the segment to wide; its ends are told to be near the border where they are not inside region shrunk by margin.
unsigned ClipSegment(Segment& segment, const Region& wide, const Region& region, float margin, float& ta, float& tb);

//! The alpha of a one-pixel line at i / 32 pixels from its middle.
int FilterTap(std::int64_t index);

//! The alpha of a small anti-aliased dot for a coverage.
int Gamma(int coverage);

}  // namespace reference

#endif
