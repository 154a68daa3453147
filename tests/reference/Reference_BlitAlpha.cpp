// Reference_BlitAlpha: see the header. Nothing here is meant to be fast.
#include "Reference_BlitAlpha.h"

#include <algorithm>
#include <cstring>

#include "NaiveMix.h"

namespace reference
{

namespace
{

constexpr std::uint32_t FLAG_KEY        = 0x1;
constexpr std::uint32_t FLAG_NOCLIP     = 0x100000;
constexpr std::uint32_t FLAG_COPY_ALPHA = 0x200000;

// ---- pixels ---------------------------------------------------------------------------------------------------------

const std::uint8_t* At(const Picture& picture, std::int64_t x, std::int64_t y)
{
    return picture.bytes + y * picture.pitch + x * BytesPerPixel(picture.format);
}

//! The pixel as the number it is stored as.
std::uint32_t Raw(const Picture& picture, std::int64_t x, std::int64_t y)
{
    const std::uint8_t* const at    = At(picture, x, y);
    std::uint32_t             value = 0;
    for (std::int64_t byte = BytesPerPixel(picture.format) - 1; byte >= 0; --byte) value = value * 256 + at[byte];
    return value;
}

int Coverage(const Picture& map, std::int64_t x, std::int64_t y)
{
    const std::uint32_t raw = Raw(map, x, y);
    return static_cast<int>(map.format == Format::Argb32 ? raw / 0x1000000U : raw);
}

// ---- where ----------------------------------------------------------------------------------------------------------

//! Every position of one axis of the target that is drawn, in order.
struct Axis
{
    std::int64_t dst;      // where the rectangle starts
    std::int64_t src;      // the same in the source, and in the map
    std::int64_t count;    // its pixels
    std::int64_t dstSize;  // of the target
    std::int64_t srcSize;  // of the source
    std::int64_t mapSize;  // of the map; INT64_MAX for a map that is not looked at
    std::int64_t clipMin;  // inclusive
    std::int64_t clipMax;

    bool IsVisible(std::int64_t at) const
    {
        const std::int64_t offset = at - dst;
        return offset >= 0 && offset < count && at >= clipMin && at <= clipMax && src + offset < srcSize &&
               src + offset < mapSize;
    }
    std::vector<std::int64_t> Visible() const
    {
        std::vector<std::int64_t> visible;
        for (std::int64_t at = 0; at < dstSize; ++at)
        {
            if (IsVisible(at)) visible.push_back(at);
        }
        return visible;
    }
    bool IsPromiseKept() const
    {
        return dst >= 0 && dst + count <= dstSize && src + count <= srcSize && src + count <= mapSize;
    }
};

// ---- who ------------------------------------------------------------------------------------------------------------

bool IsReadable(const Picture* map)
{
    return map != nullptr && (map->format == Format::A8 || map->format == Format::Argb32);
}

MapWorker WorkerOf(Format source, Format map, bool loops, bool opaquePlain, std::uint32_t flags)
{
    switch (source)
    {
    case Format::Rgb32: return MapWorker::Int;
    case Format::Argb32: return !loops ? MapWorker::Int : opaquePlain ? MapWorker::Over : MapWorker::OverScaled;
    case Format::A8: return MapWorker::Rgb;
    case Format::Rgb565:
        if (map != Format::A8) return MapWorker::Int;
        if ((flags & FLAG_COPY_ALPHA) != 0) return loops ? MapWorker::Store565 : MapWorker::CopyAlpha;
        return !loops ? MapWorker::Int : opaquePlain ? MapWorker::Over565 : MapWorker::Over565Scaled;
    case Format::Alpha5_2:
    case Format::Other: break;
    }
    return MapWorker::Nobody;
}

std::string MapNotSupported(Format source)
{
    const char* name = source == Format::Rgb32    ? "RGB32"
                       : source == Format::Argb32 ? "ARGB32"
                       : source == Format::A8     ? "A8"
                                                  : "RGB565";
    return std::string(name) + "->ARGB32 BlitAlpha, alpha format not supported";
}

// ---- what -----------------------------------------------------------------------------------------------------------

//! The new word of one pixel. raw: the source pixel; cover: the map's value, not yet scaled.
std::uint32_t Drawn(MapWorker worker, std::uint32_t word, std::uint32_t raw, int cover, int alpha, Compose compose)
{
    const int scaled = alpha == 255 ? cover : support::MulByte(cover, alpha);
    switch (worker)
    {
    case MapWorker::Int: return support::MixLinear(word, raw, scaled);
    case MapWorker::Rgb:
        if (scaled == 0) return word;
        return alpha == 255 ? support::BlitMixLinear(word, WordOfA8(raw), scaled)
                            : support::MixLinear(word, WordOfA8(raw), scaled);
    case MapWorker::CopyAlpha:
    {
        const support::Channels channels = support::Split(WordOfRgb565(raw));
        return scaled == 0 ? word : compose(scaled, channels[1], channels[2], channels[3]);
    }
    case MapWorker::Over: return support::MixLinearSrcAlpha(word, raw, 255);
    case MapWorker::OverScaled: return support::MixLinearSrcAlpha(word, raw, alpha);
    case MapWorker::Store565:
    {
        const support::Channels channels = support::Split(WordOfRgb565(raw));
        return cover == 0 ? word : support::Join(cover, channels[1], channels[2], channels[3]);
    }
    case MapWorker::Over565: return support::MixLinear(word, WordOfRgb565(raw), cover);
    case MapWorker::Over565Scaled: return support::MixLinear(word, WordOfRgb565(raw), support::MulByte(cover, alpha));
    case MapWorker::Nobody: break;
    }
    return word;
}

}  // namespace

// ---- whole calls ----------------------------------------------------------------------------------------------------

const char* NameOf(MapWorker worker)
{
    switch (worker)
    {
    case MapWorker::Nobody: break;
    case MapWorker::Int: return "Blit_ALPHAINT";
    case MapWorker::Rgb: return "Blit_ALPHARGB";
    case MapWorker::CopyAlpha: return "Blit_RGB";
    case MapWorker::Over: return "neonloops_blit_argb32_argb32_as";
    case MapWorker::OverScaled: return "neonloops_blit_argb32_argb32_as_ag";
    case MapWorker::Store565: return "neonloops_blit_argb32_rgb565a8";
    case MapWorker::Over565: return "neonloops_blit_argb32_rgb565a8_as";
    case MapWorker::Over565Scaled: return "neonloops_blit_argb32_rgb565a8_as_ag";
    }
    return "";
}

bool IsLoop(MapWorker worker)
{
    return worker >= MapWorker::Over;
}

bool ReadsMap(MapWorker worker)
{
    return worker != MapWorker::Nobody && worker != MapWorker::Over && worker != MapWorker::OverScaled;
}

MapOutcome BlitAlpha(const Target& target, const Picture& source, const Picture* map, const Where& where,
                     std::uint32_t flags, int alpha)
{
    MapOutcome outcome;
    if (!target.locked) outcome.messages.emplace_back("bitmap not locked");
    if (map == nullptr && source.format == Format::Argb32) map = &source;
    if (!IsReadable(map) && (map == nullptr || map->format != Format::Alpha5_2))
    {
        outcome.messages.emplace_back("alpha bitmap is not the right type");
    }
    if (map == nullptr) return outcome;

    const bool loops   = target.optimised && (flags & FLAG_KEY) == 0;
    const bool matters = IsReadable(map) && !(source.format == Format::Argb32 && loops);
    const Axis x{where.dstX,           where.srcX,      where.width,
                 target.picture.width, source.width,    matters ? map->width : INT64_MAX,
                 target.clip.minX,     target.clip.maxX};
    const Axis y{where.dstY,       where.srcY,
                 where.height,     target.picture.height,
                 source.height,    matters ? map->height : INT64_MAX,
                 target.clip.minY, target.clip.maxY};

    std::vector<std::int64_t> columns;
    std::vector<std::int64_t> rows;
    if ((flags & FLAG_NOCLIP) != 0)
    {
        if (!x.IsPromiseKept() || !y.IsPromiseKept())
        {
            outcome.messages.emplace_back("unclipped rectangle outside the bitmap");
            return outcome;
        }
        for (std::int64_t at = 0; at < x.count; ++at) columns.push_back(x.dst + at);
        for (std::int64_t at = 0; at < y.count; ++at) rows.push_back(y.dst + at);
    }
    else
    {
        columns = x.Visible();
        rows    = y.Visible();
    }
    if (columns.empty() || rows.empty()) return outcome;

    const MapWorker worker = WorkerOf(source.format, map->format, loops, alpha == 255 && !source.hasAlpha, flags);
    if (worker == MapWorker::Nobody)
    {
        outcome.messages.emplace_back("blit not supported");
        return outcome;
    }
    if (!IsReadable(map))
    {
        outcome.messages.push_back(MapNotSupported(source.format));
        return outcome;
    }
    outcome.worker = worker;
    outcome.width  = static_cast<std::int64_t>(columns.size());
    outcome.height = static_cast<std::int64_t>(rows.size());
    outcome.dstX   = columns.front();
    outcome.dstY   = rows.front();
    outcome.srcX   = outcome.dstX - x.dst + x.src;
    outcome.srcY   = outcome.dstY - y.dst + y.src;
    for (const std::int64_t row : rows)
    {
        for (const std::int64_t column : columns)
        {
            const std::int64_t  fromX = column - x.dst + x.src;
            const std::int64_t  fromY = row - y.dst + y.src;
            std::uint8_t* const at    = target.picture.bytes + row * target.picture.pitch + column * 4;
            const std::uint32_t word  = Raw(target.picture, column, row);
            const int           cover = ReadsMap(worker) ? Coverage(*map, fromX, fromY) : 0;
            const std::uint32_t drawn = Drawn(worker, word, Raw(source, fromX, fromY), cover, alpha, target.compose);
            std::memcpy(at, &drawn, sizeof drawn);
        }
    }
    return outcome;
}

}  // namespace reference
