// Reference_Stretch: scaled blits a second time, as slowly and plainly as they can be described. Positions are calculated
// afresh for every pixel in 64-bit integers, pixels one channel at a time (Reference_Sample). Shares nothing with the
// library. The tests of scaled blits, of their loops and of their geometry compare with it.
#ifndef REFERENCE_STRETCH_H
#define REFERENCE_STRETCH_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Reference_Blit.h"

namespace reference
{

// ---- one axis -------------------------------------------------------------------------------------------------------

//! Pixels, all of them: srcLength pixels from src on of a bitmap of bound, scaled to dstLength pixels from dst on.
struct AxisRequest
{
    std::int64_t src       = 0;
    std::int64_t srcLength = 0;
    std::int64_t bound     = 0;
    std::int64_t dst       = 0;
    std::int64_t dstLength = 0;
    std::int64_t clipMin   = 0;
    std::int64_t clipMax   = 0;
    bool         filtered  = false;
};

//! What is left of it. Positions in 16.16 from the bitmap's first pixel.
struct Axis
{
    std::int64_t srcFirst = 0;
    std::int64_t step     = 0;
    std::int64_t dstFirst = 0;
    std::int64_t count    = 0;

    std::int64_t PositionOf(std::int64_t pixel) const { return srcFirst + pixel * step; }
};

//! Nothing where nothing is to be drawn.
std::optional<Axis> StretchAxis(const AxisRequest& request);

// ---- whole calls ----------------------------------------------------------------------------------------------------

//! Where a call wants to draw, as the caller says it.
struct StretchWhere
{
    std::uint32_t srcWidth  = 0;
    std::uint32_t srcHeight = 0;
    std::uint32_t srcX      = 0;
    std::uint32_t srcY      = 0;
    std::uint32_t dstWidth  = 0;
    std::uint32_t dstHeight = 0;
    std::int32_t  dstX      = 0;
    std::int32_t  dstY      = 0;
};

//! Who does the work of a call.
enum class StretchWorker
{
    Nobody,
    Portable,
    // loops
    Fill,
    FillMix,
    CopyNearest,
    CopyFiltered,
    OverNearest,
    OverFiltered,
    Over565Nearest,
    Over565Filtered,
    ColorNearest,
    ColorFiltered
};

//! "neonloops_fill_argb32" and so on, "" for nobody and the portable workers.
const char* NameOf(StretchWorker worker);

//! What a call is expected to do besides changing the target's pixels.
struct StretchOutcome
{
    std::vector<std::string> messages;
    StretchWorker            worker = StretchWorker::Nobody;
    std::int64_t             pixels = 0;  // how many were looked at to be drawn
};

//! Each draws into target.picture.bytes. Sources and maps may be the target itself.
StretchOutcome StretchBlit(const Target& target, const Picture& source, const StretchWhere& where, std::uint32_t flags,
                           int alpha, std::uint32_t key);
StretchOutcome StretchBlitColor(const Target& target, const Picture& map, const StretchWhere& where,
                                std::uint32_t color, std::uint32_t flags, int alpha);
StretchOutcome StretchBlitAlpha(const Target& target, const Picture& source, const Picture& map,
                                const StretchWhere& where, std::uint32_t flags, int alpha);

}  // namespace reference

#endif
