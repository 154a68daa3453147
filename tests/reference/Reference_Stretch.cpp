// Reference_Stretch: see the header. Nothing here is meant to be fast.
#include "Reference_Stretch.h"

#include <algorithm>

#include "NaiveMix.h"
#include "Reference_Sample.h"

namespace reference
{

namespace
{

constexpr std::uint32_t FLAG_KEY      = 0x1;
constexpr std::uint32_t FLAG_BILINEAR = 0x40000;
constexpr std::uint32_t FLAG_NOCLIP   = 0x100000;
constexpr std::uint32_t FLAG_ASPECT   = 0x200000;

constexpr std::int64_t ONE = 65536;

}  // namespace

// ---- one axis -------------------------------------------------------------------------------------------------------

namespace
{

//! Where the first pixel of the whole, unclipped row is sampled, counted from the source rectangle, and the step.
struct Whole
{
    std::int64_t start;
    std::int64_t step;
};

//! Pixel i at the source position of its centre, rounded symmetrically about the middle.
Whole WholeNearest(std::int64_t srcLength, std::int64_t dstLength)
{
    if (dstLength == 1) return {srcLength * ONE / 2, 0};
    const std::int64_t rounded = (srcLength * ONE + dstLength / 2) / dstLength;
    const std::int64_t longest = (srcLength * ONE - 2) / (dstLength - 1);
    const std::int64_t step    = std::min(rounded, longest);
    return {(srcLength * ONE - (dstLength - 1) * step) / 2, step};
}

//! As nearest, half a pixel earlier; where that leaves the pixels' centres, the centres are spread over the row.
Whole WholeFiltered(std::int64_t srcLength, std::int64_t dstLength)
{
    const std::int64_t last  = (srcLength - 1) * ONE - 1;
    const Whole        exact = WholeNearest(srcLength, dstLength);
    const std::int64_t start = exact.start - ONE / 2;
    if (start >= 0 && start + (dstLength - 1) * exact.step <= last) return {start, exact.step};
    const std::int64_t step = dstLength > 1 ? last / (dstLength - 1) : 0;
    return {(last - (dstLength - 1) * step) / 2, step};
}

//! The single pixel itself: with weight 0 where it has a right neighbour, with nearly all weight where it is one.
std::optional<Whole> WholeFilteredOfOne(const AxisRequest& request)
{
    if (request.src + 1 < request.bound) return Whole{0, 0};
    if (request.src >= 1) return Whole{-1, 0};
    return {};
}

}  // namespace

std::optional<Axis> StretchAxis(const AxisRequest& request)
{
    if (request.srcLength <= 0 || request.dstLength <= 0) return {};
    if (request.src < -16384 || request.src + request.srcLength > 32767) return {};
    if (request.dst < -32768 || request.dst + request.dstLength > 32767) return {};
    std::optional<Whole> whole;
    if (!request.filtered)
    {
        whole = WholeNearest(request.srcLength, request.dstLength);
    }
    else if (request.srcLength > 1)
    {
        whole = WholeFiltered(request.srcLength, request.dstLength);
    }
    else
    {
        whole = WholeFilteredOfOne(request);
    }
    if (!whole) return {};

    // Those pixels that are inside the clip, and whose sample is inside the bitmap, one after the other.
    const std::int64_t first = request.src * ONE + whole->start;
    const std::int64_t end   = (request.filtered ? request.bound - 1 : request.bound) * ONE;
    Axis               axis;
    const std::int64_t from  = std::max<std::int64_t>(0, request.clipMin - request.dst);
    const std::int64_t until = std::min(request.dstLength - 1, request.clipMax - request.dst);
    for (std::int64_t pixel = from; pixel <= until; ++pixel)
    {
        const std::int64_t position = first + pixel * whole->step;
        if (position < 0 || position >= end) continue;
        if (axis.count == 0) axis = {position, whole->step, request.dst + pixel, 0};
        ++axis.count;
    }
    if (axis.count == 0) return {};
    return axis;
}

// ---- both axes ------------------------------------------------------------------------------------------------------

namespace
{

struct Plan
{
    Axis x;
    Axis y;
};

//! The source rectangle with signed positions, as scaled blits take them.
struct Rectangle
{
    std::int64_t srcWidth;
    std::int64_t srcHeight;
    std::int64_t srcX;
    std::int64_t srcY;
    std::int64_t dstWidth;
    std::int64_t dstHeight;
    std::int64_t dstX;
    std::int64_t dstY;
};

Rectangle RectangleOf(const StretchWhere& where)
{
    return {where.srcWidth,
            where.srcHeight,
            static_cast<std::int32_t>(where.srcX),
            static_cast<std::int32_t>(where.srcY),
            where.dstWidth,
            where.dstHeight,
            where.dstX,
            where.dstY};
}

//! The largest rectangle of the source's aspect inside the destination rectangle, centred.
void KeepAspect(Rectangle& at)
{
    if (at.dstWidth * at.srcHeight <= at.dstHeight * at.srcWidth)
    {
        const auto height = std::max<std::int64_t>(1, (at.dstWidth * at.srcHeight + at.srcWidth / 2) / at.srcWidth);
        at.dstY += (at.dstHeight - height) / 2;
        at.dstHeight = height;
    }
    else
    {
        const auto width = std::max<std::int64_t>(1, (at.dstHeight * at.srcWidth + at.srcHeight / 2) / at.srcHeight);
        at.dstX += (at.dstWidth - width) / 2;
        at.dstWidth = width;
    }
}

bool IsInside(std::int64_t from, std::int64_t count, std::int64_t size)
{
    return from >= 0 && from + count <= size;
}

std::optional<Plan> MakePlan(StretchOutcome& outcome, const Target& target, const Picture& source, const Picture& map,
                             const StretchWhere& where, std::uint32_t flags)
{
    Rectangle      at      = RectangleOf(where);
    const Picture& picture = target.picture;
    const bool     noClip  = (flags & FLAG_NOCLIP) != 0;
    const bool     nothing = at.srcWidth == 0 || at.srcHeight == 0 || at.dstWidth == 0 || at.dstHeight == 0;
    const bool     tooMuch = std::max({at.srcWidth, at.srcHeight, at.dstWidth, at.dstHeight}) > INT32_MAX;
    if ((flags & FLAG_ASPECT) != 0 && !nothing && !tooMuch) KeepAspect(at);
    if (noClip && (!IsInside(at.dstX, at.dstWidth, picture.width) || !IsInside(at.dstY, at.dstHeight, picture.height)))
    {
        outcome.messages.emplace_back("unclipped rectangle outside the bitmap");
        return {};
    }
    if (nothing || tooMuch) return {};
    const bool filtered = (flags & FLAG_BILINEAR) != 0;
    const Clip whole;
    const Clip clip = noClip ? whole : target.clip;

    AxisRequest x{at.srcX,
                  at.srcWidth,
                  std::min(source.width, map.width),
                  at.dstX,
                  at.dstWidth,
                  std::max<std::int64_t>(0, clip.minX),
                  std::min(picture.width - 1, clip.maxX),
                  filtered};
    AxisRequest y{at.srcY,
                  at.srcHeight,
                  std::min(source.height, map.height),
                  at.dstY,
                  at.dstHeight,
                  std::max<std::int64_t>(0, clip.minY),
                  std::min(picture.height - 1, clip.maxY),
                  filtered};
    const auto  axisX = StretchAxis(x);
    const auto  axisY = StretchAxis(y);
    if (!axisX || !axisY) return {};
    return Plan{*axisX, *axisY};
}

//! Rows from top to bottom, pixels from left to right. draw(word, x position, y position) returns the new word.
template <class Draw>
void Walk(StretchOutcome& outcome, const Target& target, const Plan& plan, Draw draw)
{
    for (std::int64_t row = 0; row < plan.y.count; ++row)
    {
        for (std::int64_t column = 0; column < plan.x.count; ++column)
        {
            const std::int64_t  x    = plan.x.dstFirst + column;
            const std::int64_t  y    = plan.y.dstFirst + row;
            const std::uint32_t word = WordAt(target.picture, x, y);
            SetWord(target.picture, x, y, draw(word, plan.x.PositionOf(column), plan.y.PositionOf(row)));
        }
    }
    outcome.pixels = plan.x.count * plan.y.count;
}

// ---- one pixel ------------------------------------------------------------------------------------------------------

int Scaled(int coverage, int alpha)
{
    return alpha == 255 ? coverage : support::MulByte(coverage, alpha);
}

//! A source that has alpha of its own, ARGB32.
std::uint32_t DrawInt(std::uint32_t under, const Sample& sample, int alpha)
{
    return alpha == 255 ? sample.stored : support::MixLinearSrcAlpha(under, sample.stored, alpha);
}

//! Any other source.
std::uint32_t DrawRgb(std::uint32_t under, const Sample& sample, int alpha, bool filtered)
{
    if (filtered)
    {
        return alpha == 255 ? sample.WithOwnAlpha() : support::MixLinearSrcAlpha(under, sample.WithOwnAlpha(), alpha);
    }
    return alpha == 255 ? sample.Opaque() : support::MixLinear(under, sample.Opaque(), alpha);
}

std::uint32_t DrawKeyed(std::uint32_t under, const Picture& source, std::int64_t x, std::int64_t y, int alpha,
                        std::uint32_t key, bool filtered)
{
    const bool own = source.format == Format::Argb32;
    if (filtered)
    {
        const Block block = BlockAt(source, PixelOf(x), PixelOf(y));
        if (HoldsKey(block, key)) return under;
        const Sample sample = MixOf(block, WeightOf(x), WeightOf(y));
        if (own) return support::MixLinearSrcAlpha(under, sample.stored, alpha);  // at 255 too
        return alpha == 255 ? sample.WithOwnAlpha() : support::MixLinear(under, sample.WithOwnAlpha(), alpha);
    }
    const Sample sample = PixelAt(source, PixelOf(x), PixelOf(y));
    if (sample.Color() == key) return under;
    return own ? DrawInt(under, sample, alpha) : DrawRgb(under, sample, alpha, false);
}

std::uint32_t DrawColor(std::uint32_t under, std::uint32_t color, int coverage, int alpha, bool filtered)
{
    if (filtered && alpha == 255) return support::MixLinearSrcAlpha(under, color, coverage);
    return support::MixLinear(under, color, Scaled(coverage, alpha));
}

// ---- the optimised path ---------------------------------------------------------------------------------------------

//! The source rectangle lies in its bitmap, and a filter that knows the rectangle alone finds a block in it.
bool SuitsLoops(const Picture& source, const StretchWhere& where, bool filtered)
{
    const std::uint32_t least = filtered ? 2 : 0;
    return where.srcX <= 0xFFFF && where.srcY <= 0xFFFF && IsInside(where.srcX, where.srcWidth, source.width) &&
           IsInside(where.srcY, where.srcHeight, source.height) && where.srcWidth >= least && where.srcHeight >= least;
}

void CheckLock(StretchOutcome& outcome, const Target& target)
{
    if (!target.locked) outcome.messages.emplace_back("bitmap not locked");
}

void CheckMap(StretchOutcome& outcome, const Picture& map)
{
    if (map.format != Format::Argb32 && map.format != Format::A8 && map.format != Format::Alpha5_2)
    {
        outcome.messages.emplace_back("alpha bitmap is not the right type");
    }
}

//! From the clip's corner on, the size of the destination, no further than the bitmap.
void FillSinglePixel(StretchOutcome& outcome, const Target& target, const Picture& source, const StretchWhere& where,
                     int alpha)
{
    const Picture& picture = target.picture;
    const Clip&    clip    = target.clip;
    outcome.worker         = alpha == 255 ? StretchWorker::Fill : StretchWorker::FillMix;
    if (clip.maxX < clip.minX || clip.maxY < clip.minY) return;
    const std::uint32_t color = PixelAt(source, 0, 0).Color();  // without alpha
    for (std::int64_t y = clip.minY; y < std::min(clip.minY + where.dstHeight, picture.height); ++y)
    {
        for (std::int64_t x = clip.minX; x < std::min(clip.minX + where.dstWidth, picture.width); ++x)
        {
            const std::uint32_t under = WordAt(picture, x, y);
            SetWord(picture, x, y, alpha == 255 ? color : support::BlitMixLinear(under, color, alpha));
            ++outcome.pixels;
        }
    }
}

}  // namespace

// ---- calls ----------------------------------------------------------------------------------------------------------

const char* NameOf(StretchWorker worker)
{
    switch (worker)
    {
    case StretchWorker::Nobody:
    case StretchWorker::Portable: break;
    case StretchWorker::Fill: return "neonloops_fill_argb32";
    case StretchWorker::FillMix: return "neonloops_fill_argb32_ag";
    case StretchWorker::CopyNearest: return "neonloops_stretchblit_nearest_argb32_argb32_clip";
    case StretchWorker::CopyFiltered: return "neonloops_stretchblit_bilinear_argb32_argb32_clip";
    case StretchWorker::OverNearest: return "neonloops_stretchblit_nearest_argb32_argb32_as_ag_clip";
    case StretchWorker::OverFiltered: return "neonloops_stretchblit_bilinear_argb32_argb32_as_ag_clip";
    case StretchWorker::Over565Nearest: return "neonloops_stretchblit_nearest_argb32_rgb565_ag_clip";
    case StretchWorker::Over565Filtered: return "neonloops_stretchblit_bilinear_argb32_rgb565_ag_clip";
    case StretchWorker::ColorNearest: return "neonloops_stretchblitcolor_nearest_argb32_a8_ag_clip";
    case StretchWorker::ColorFiltered: return "neonloops_stretchblitcolor_bilinear_argb32_a8_ag_clip";
    }
    return "";
}

StretchOutcome StretchBlit(const Target& target, const Picture& source, const StretchWhere& where, std::uint32_t flags,
                           int alpha, std::uint32_t key)
{
    StretchOutcome outcome;
    CheckLock(outcome, target);
    const bool own = source.format == Format::Argb32;
    if (source.format == Format::Alpha5_2 || source.format == Format::Other)
    {
        outcome.messages.emplace_back("blit not supported");
        return outcome;
    }
    const bool filtered = (flags & FLAG_BILINEAR) != 0;
    bool       keyed    = (flags & FLAG_KEY) != 0;
    if (target.optimised && (own || source.format == Format::Rgb565))
    {
        if (own && !filtered && !keyed && where.srcWidth <= 1 && where.srcHeight <= 1)
        {
            FillSinglePixel(outcome, target, source, where, alpha);
            return outcome;
        }
        if (SuitsLoops(source, where, filtered))
        {
            outcome.worker = !own           ? filtered ? StretchWorker::Over565Filtered : StretchWorker::Over565Nearest
                             : alpha == 255 ? filtered ? StretchWorker::CopyFiltered : StretchWorker::CopyNearest
                             : filtered     ? StretchWorker::OverFiltered
                                            : StretchWorker::OverNearest;
        }
        flags &= ~(FLAG_NOCLIP | FLAG_ASPECT);
        keyed = false;
    }
    const auto plan = MakePlan(outcome, target, source, source, where, flags);
    if (!plan) return outcome;
    if (outcome.worker == StretchWorker::Nobody) outcome.worker = StretchWorker::Portable;
    Walk(outcome, target, *plan,
         [&](std::uint32_t under, std::int64_t x, std::int64_t y)
         {
             if (keyed) return DrawKeyed(under, source, x, y, alpha, key, filtered);
             const Sample sample = SampleAt(source, x, y, filtered);
             return own ? DrawInt(under, sample, alpha) : DrawRgb(under, sample, alpha, filtered);
         });
    return outcome;
}

StretchOutcome StretchBlitColor(const Target& target, const Picture& map, const StretchWhere& where,
                                std::uint32_t color, std::uint32_t flags, int alpha)
{
    StretchOutcome outcome;
    CheckLock(outcome, target);
    CheckMap(outcome, map);
    if (map.format != Format::Argb32 && map.format != Format::A8) return outcome;
    const bool filtered = (flags & FLAG_BILINEAR) != 0;
    if (target.optimised && map.format == Format::A8)
    {
        if (SuitsLoops(map, where, filtered))
        {
            outcome.worker = filtered ? StretchWorker::ColorFiltered : StretchWorker::ColorNearest;
        }
        const auto [a, r, g, b] = support::Split(color);
        color                   = target.compose(a, r, g, b);
        flags &= ~(FLAG_NOCLIP | FLAG_ASPECT);
    }
    const auto plan = MakePlan(outcome, target, map, map, where, flags);
    if (!plan) return outcome;
    if (outcome.worker == StretchWorker::Nobody) outcome.worker = StretchWorker::Portable;
    Walk(outcome, target, *plan,
         [&](std::uint32_t under, std::int64_t x, std::int64_t y)
         { return DrawColor(under, color, SampleAt(map, x, y, filtered).Alpha(), alpha, filtered); });
    return outcome;
}

StretchOutcome StretchBlitAlpha(const Target& target, const Picture& source, const Picture& map,
                                const StretchWhere& where, std::uint32_t flags, int alpha)
{
    StretchOutcome outcome;
    CheckLock(outcome, target);
    CheckMap(outcome, map);
    const bool own = source.format == Format::Argb32;
    if (!own && source.format != Format::A8)
    {
        outcome.messages.emplace_back("blit not supported");
        return outcome;
    }
    if (map.format != Format::Argb32 && map.format != Format::A8) return outcome;
    const bool filtered = (flags & FLAG_BILINEAR) != 0;
    if (target.optimised && own && map.format == Format::Argb32)
    {
        outcome.worker  = !SuitsLoops(source, where, filtered) ? StretchWorker::Portable
                          : filtered                           ? StretchWorker::OverFiltered
                                                               : StretchWorker::OverNearest;
        const auto plan = MakePlan(outcome, target, source, source, where, flags & ~(FLAG_NOCLIP | FLAG_ASPECT));
        if (!plan) return outcome;
        Walk(outcome, target, *plan,
             [&](std::uint32_t under, std::int64_t x, std::int64_t y)
             { return support::MixLinearSrcAlpha(under, SampleAt(source, x, y, filtered).stored, alpha); });
        return outcome;
    }
    const auto plan = MakePlan(outcome, target, source, map, where, flags);
    if (!plan) return outcome;
    outcome.worker = StretchWorker::Portable;
    Walk(outcome, target, *plan,
         [&](std::uint32_t under, std::int64_t x, std::int64_t y)
         {
             const int    coverage = SampleAt(map, x, y, filtered).Alpha();
             const Sample sample   = SampleAt(source, x, y, filtered);
             return support::MixLinear(under, own ? sample.stored : sample.Opaque(), Scaled(coverage, alpha));
         });
    return outcome;
}

}  // namespace reference
