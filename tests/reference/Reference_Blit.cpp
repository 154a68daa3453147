// Reference_Blit: see the header. Nothing here is meant to be fast.
#include "Reference_Blit.h"

#include <algorithm>
#include <cstring>

#include "NaiveMix.h"

namespace reference
{

namespace
{

constexpr std::uint32_t FLAG_KEY    = 0x1;
constexpr std::uint32_t FLAG_NOCLIP = 0x100000;

}  // namespace

// ---- one pixel ------------------------------------------------------------------------------------------------------

std::uint32_t WordOfRgb565(unsigned pixel)
{
    const int red   = static_cast<int>(pixel / 2048 % 32);
    const int green = static_cast<int>(pixel / 32 % 64);
    const int blue  = static_cast<int>(pixel % 32);
    // the top bits again below the others: 31 and 63 become 255
    return support::Join(255, red * 8 + red / 4, green * 4 + green / 16, blue * 8 + blue / 4);
}

std::uint32_t WordOfA8(unsigned level)
{
    const int grey = static_cast<int>(level);
    return support::Join(255, grey, grey, grey);
}

// ---- pictures -------------------------------------------------------------------------------------------------------

std::int64_t BytesPerPixel(Format format)
{
    switch (format)
    {
    case Format::Argb32:
    case Format::Rgb32: return 4;
    case Format::Rgb565: return 2;
    case Format::A8:
    case Format::Alpha5_2:
    case Format::Other: break;
    }
    return 1;
}

std::uint32_t ComposeArgb32(int a, int r, int g, int b)
{
    return support::Join(a, r, g, b);
}

namespace
{

std::uint8_t* At(const Picture& picture, std::int64_t x, std::int64_t y)
{
    return picture.bytes + y * picture.pitch + x * BytesPerPixel(picture.format);
}

//! A source pixel in every way that blits look at it.
struct Pixel
{
    std::uint32_t word;     // as stored for the 32-bit formats, else converted to an opaque word
    int           alpha;    // what the format says its alpha is
    std::uint32_t keyable;  // what a colour key is compared with
};

Pixel Read(const Picture& picture, std::int64_t x, std::int64_t y)
{
    const std::uint8_t* const at = At(picture, x, y);
    switch (picture.format)
    {
    case Format::Argb32:
    case Format::Rgb32:
    {
        std::uint32_t word = 0;
        std::memcpy(&word, at, sizeof word);
        return {word, static_cast<int>(word / 0x1000000U), word % 0x1000000U};
    }
    case Format::Rgb565:
    {
        std::uint16_t pixel = 0;
        std::memcpy(&pixel, at, sizeof pixel);
        return {WordOfRgb565(pixel), 255, pixel};
    }
    case Format::A8: return {WordOfA8(*at), *at, *at};
    case Format::Alpha5_2:
    case Format::Other: break;
    }
    return {0, 0, 0};
}

std::uint32_t WithAlpha(std::uint32_t word, int alpha)
{
    return word % 0x1000000U + static_cast<std::uint32_t>(alpha) * 0x1000000U;
}

// ---- where ----------------------------------------------------------------------------------------------------------

//! One axis of a rectangle: how many of its pixels are left out in front, and how many then remain.
struct Cut
{
    std::int64_t skipped;
    std::int64_t count;
};

Cut CutAxis(std::int64_t count, std::int64_t src, std::int64_t srcSize, std::int64_t dst, std::int64_t dstSize,
            std::int64_t clipMin, std::int64_t clipMax)
{
    const std::int64_t low   = std::max<std::int64_t>(0, clipMin);
    const std::int64_t high  = clipMax < dstSize - 1 ? clipMax : dstSize - 1;
    const std::int64_t first = std::max<std::int64_t>(0, low - dst);
    const std::int64_t end   = std::min({count, srcSize - src, high + 1 - dst});
    return {first, end - first};
}

bool IsInside(std::int64_t from, std::int64_t count, std::int64_t size)
{
    return from >= 0 && from + count <= size;
}

//! Clips, or checks the promise that this is not needed. False where nothing is to be drawn.
bool Place(Outcome& outcome, const Target& target, const Where& where, std::uint32_t flags, std::int64_t srcWidth,
           std::int64_t srcHeight)
{
    const Picture& picture = target.picture;
    if ((flags & FLAG_NOCLIP) != 0)
    {
        if (!IsInside(where.srcX, where.width, srcWidth) || !IsInside(where.srcY, where.height, srcHeight) ||
            !IsInside(where.dstX, where.width, picture.width) || !IsInside(where.dstY, where.height, picture.height))
        {
            outcome.messages.emplace_back("unclipped rectangle outside the bitmap");
            return false;
        }
        outcome.width  = where.width;
        outcome.height = where.height;
        outcome.srcX   = where.srcX;
        outcome.srcY   = where.srcY;
        outcome.dstX   = where.dstX;
        outcome.dstY   = where.dstY;
        return outcome.width > 0 && outcome.height > 0;
    }
    const Cut x =
        CutAxis(where.width, where.srcX, srcWidth, where.dstX, picture.width, target.clip.minX, target.clip.maxX);
    const Cut y =
        CutAxis(where.height, where.srcY, srcHeight, where.dstY, picture.height, target.clip.minY, target.clip.maxY);
    outcome.width  = x.count;
    outcome.height = y.count;
    outcome.srcX   = where.srcX + x.skipped;
    outcome.srcY   = where.srcY + y.skipped;
    outcome.dstX   = where.dstX + x.skipped;
    outcome.dstY   = where.dstY + y.skipped;
    return x.count > 0 && y.count > 0;
}

//! Rows from top to bottom, pixels from left to right. draw(destination word, x, y) returns the new word; x and y count
//! from the source's origin.
template <class Draw>
void Walk(const Outcome& outcome, const Target& target, Draw draw)
{
    for (std::int64_t y = 0; y < outcome.height; ++y)
    {
        for (std::int64_t x = 0; x < outcome.width; ++x)
        {
            std::uint8_t* const at   = At(target.picture, outcome.dstX + x, outcome.dstY + y);
            std::uint32_t       word = 0;
            std::memcpy(&word, at, sizeof word);
            word = draw(word, outcome.srcX + x, outcome.srcY + y);
            std::memcpy(at, &word, sizeof word);
        }
    }
}

void CheckLock(Outcome& outcome, const Target& target)
{
    if (!target.locked) outcome.messages.emplace_back("bitmap not locked");
}

Worker WorkerOfBlit(Format format, bool optimised, std::uint32_t flags, int alpha, bool hasAlpha)
{
    const bool loops       = optimised && (flags & FLAG_KEY) == 0;
    const bool opaquePlain = alpha == 255 && !hasAlpha;
    switch (format)
    {
    case Format::Argb32:
        if (flags == 0 && alpha == 255) return loops ? Worker::Copy : Worker::Cpy;
        if (loops) return opaquePlain ? Worker::Copy : Worker::OverScaled;
        return Worker::Int;
    case Format::Rgb565:
        if (loops) return opaquePlain ? Worker::Convert565 : Worker::Over565;
        return Worker::Rgb;
    case Format::Rgb32:
    case Format::A8: return Worker::Rgb;
    case Format::Alpha5_2:
    case Format::Other: break;
    }
    return Worker::Nobody;
}

}  // namespace

// ---- calls ----------------------------------------------------------------------------------------------------------

const char* NameOf(Worker worker)
{
    switch (worker)
    {
    case Worker::Nobody: break;
    case Worker::Cpy: return "Blit_CPY";
    case Worker::Int: return "Blit_INT";
    case Worker::Rgb: return "Blit_RGB";
    case Worker::ColorInt: return "Blit_COLORINT";
    case Worker::FillColor: return "Blit_FILLRECT";
    case Worker::Copy: return "neonloops_blit_argb32_argb32";
    case Worker::OverScaled: return "neonloops_blit_argb32_argb32_as_ag";
    case Worker::Convert565: return "neonloops_blit_argb32_rgb565";
    case Worker::Over565: return "neonloops_blit_argb32_rgb565_ag";
    case Worker::ColorMask: return "neonloops_blitcolor_argb32_a8";
    case Worker::ColorMaskScaled: return "neonloops_blitcolor_argb32_a8_ag";
    case Worker::Fill: return "neonloops_fill_argb32";
    case Worker::FillMix: return "neonloops_fill_argb32_ag";
    }
    return "";
}

bool IsLoop(Worker worker)
{
    return worker >= Worker::Copy;
}

Outcome Blit(const Target& target, const Picture& source, const Where& where, std::uint32_t flags, int alpha,
             std::uint32_t key)
{
    Outcome outcome;
    CheckLock(outcome, target);
    if (!Place(outcome, target, where, flags, source.width, source.height)) return outcome;
    outcome.worker = WorkerOfBlit(source.format, target.optimised, flags, alpha, source.hasAlpha);
    switch (outcome.worker)
    {
    case Worker::Cpy:
    case Worker::Copy:
        Walk(outcome, target, [&](std::uint32_t, std::int64_t x, std::int64_t y) { return Read(source, x, y).word; });
        break;
    case Worker::Int:
        Walk(outcome, target,
             [&](std::uint32_t destination, std::int64_t x, std::int64_t y)
             {
                 const Pixel pixel = Read(source, x, y);
                 if ((flags & FLAG_KEY) != 0 && pixel.keyable == key) return destination;
                 return alpha == 255 ? pixel.word : support::MixLinearSrcAlpha(destination, pixel.word, alpha);
             });
        break;
    case Worker::Rgb:
        Walk(outcome, target,
             [&](std::uint32_t destination, std::int64_t x, std::int64_t y)
             {
                 const Pixel pixel = Read(source, x, y);
                 if ((flags & FLAG_KEY) != 0 && pixel.keyable == key) return destination;
                 if (alpha == 255) return WithAlpha(pixel.word, 255);
                 return support::MixLinearSrcAlpha(destination, WithAlpha(pixel.word, pixel.alpha), alpha);
             });
        break;
    case Worker::OverScaled:
    case Worker::Over565:
        Walk(outcome, target,
             [&](std::uint32_t destination, std::int64_t x, std::int64_t y)
             { return support::MixLinearSrcAlpha(destination, Read(source, x, y).word, alpha); });
        break;
    case Worker::Convert565:
        Walk(outcome, target, [&](std::uint32_t, std::int64_t x, std::int64_t y) { return Read(source, x, y).word; });
        break;
    default: outcome.messages.emplace_back("blit not supported"); break;
    }
    return outcome;
}

Outcome BlitColor(const Target& target, const Picture& map, const Where& where, std::uint32_t color,
                  std::uint32_t flags, int alpha)
{
    Outcome outcome;
    CheckLock(outcome, target);
    if (map.format != Format::Argb32 && map.format != Format::A8 && map.format != Format::Alpha5_2)
    {
        outcome.messages.emplace_back("alpha bitmap is not the right type");
    }
    if (!Place(outcome, target, where, flags, map.width, map.height)) return outcome;
    const bool loops = target.optimised && (flags & FLAG_KEY) == 0;
    if (map.format == Format::Argb32) outcome.worker = Worker::ColorInt;
    if (map.format == Format::A8)
    {
        outcome.worker = !loops                            ? Worker::ColorInt
                         : (alpha == 255 && !map.hasAlpha) ? Worker::ColorMask
                                                           : Worker::ColorMaskScaled;
    }
    if (outcome.worker == Worker::Nobody) return outcome;
    if (IsLoop(outcome.worker))
    {
        const auto [a, r, g, b] = support::Split(color);
        color                   = target.compose(a, r, g, b);
    }
    Walk(outcome, target,
         [&](std::uint32_t destination, std::int64_t x, std::int64_t y)
         {
             const int coverage = Read(map, x, y).alpha;
             return support::BlitMixLinear(destination, color,
                                           alpha == 255 ? coverage : support::MulByte(coverage, alpha));
         });
    return outcome;
}

Outcome FillRect(const Target& target, const Where& where, std::uint32_t color, std::uint32_t flags)
{
    Outcome outcome;
    CheckLock(outcome, target);
    Where fill = where;
    fill.srcX  = 0;
    fill.srcY  = 0;
    if (!Place(outcome, target, fill, flags, INT64_MAX, INT64_MAX)) return outcome;
    const int  alpha = support::Split(color)[0];
    const bool loops = target.optimised && (flags & FLAG_KEY) == 0;
    outcome.worker   = !loops ? Worker::FillColor : alpha == 255 ? Worker::Fill : Worker::FillMix;
    Walk(outcome, target,
         [&](std::uint32_t destination, std::int64_t, std::int64_t)
         { return alpha == 255 ? color : support::BlitMixLinear(destination, color, alpha); });
    return outcome;
}

}  // namespace reference
