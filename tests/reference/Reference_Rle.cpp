// Reference_Rle: see the header. Nothing here is meant to be fast.
#include "Reference_Rle.h"

#include <algorithm>
#include <cstring>

#include "NaiveMix.h"

namespace reference
{

namespace
{

//! A number as it is stored, lowest byte first.
std::uint32_t Stored(const std::uint8_t* bytes, std::size_t count)
{
    std::uint32_t value = 0;
    for (std::size_t byte = count; byte-- > 0;) value = value * 256 + bytes[byte];
    return value;
}

constexpr std::size_t AT_VERSION   = 9;
constexpr std::size_t AT_UNIT      = 8;
constexpr std::size_t AT_WIDTH     = 16;
constexpr std::size_t AT_HEIGHT    = 20;
constexpr std::size_t AT_COUNT     = 24;
constexpr std::size_t AT_START     = 36;
constexpr std::size_t AT_PALETTE   = 40;
constexpr unsigned    MAX_SIZE     = 32767;
constexpr unsigned    VERSION      = 1;
constexpr char        WORD_KANVO[] = "KNVO";
constexpr char        WORD_RLE[]   = "RLE ";

}  // namespace

RlePicture ExpandRle(const std::uint8_t* bytes, int unitBits)
{
    RlePicture picture;
    picture.width  = Stored(bytes + AT_WIDTH, 4);
    picture.height = Stored(bytes + AT_HEIGHT, 4);
    for (std::size_t entry = 0; entry < Stored(bytes + AT_COUNT, 4); ++entry)
    {
        picture.palette.push_back(Stored(bytes + AT_PALETTE + 4 * entry, 4));
    }
    const auto          unitBytes = static_cast<std::size_t>(unitBits / 8);
    const std::uint8_t* at        = bytes + Stored(bytes + AT_START, 4);
    const auto          next      = [&]
    {
        const std::uint32_t unit = Stored(at, unitBytes);
        at += unitBytes;
        return static_cast<int>(unit);
    };
    const auto pixels = static_cast<std::size_t>(picture.width * picture.height);
    picture.indices.reserve(pixels);
    while (picture.indices.size() < pixels)
    {
        const std::size_t left = pixels - picture.indices.size();
        if (const int run = next(); run != 0)
        {
            picture.indices.insert(picture.indices.end(), std::min(left, static_cast<std::size_t>(run)), next());
        }
        else if (const int literal = next(); literal != 0)
        {
            const std::size_t count = std::min(left, static_cast<std::size_t>(literal));
            for (std::size_t pixel = 0; pixel < count; ++pixel) picture.indices.push_back(next());
        }
        else
        {
            picture.indices.resize(pixels, RlePicture::UNDRAWN);
        }
    }
    return picture;
}

std::uint32_t ComposeRle(const RleRule& rule, std::uint32_t word, std::uint32_t entry)
{
    const std::uint32_t color  = entry % 0x1000000U + 0xFF000000U;
    const int           own    = static_cast<int>(entry / 0x1000000U);
    const int           weight = rule.globalAlpha ? support::MulByte(own, rule.alpha) : own;
    if (weight == 0) return word;
    if (weight == 255) return color;
    if (!rule.globalAlpha && !rule.fromBlitAlpha) return support::MixLinearSrcAlpha(word, color, rule.alpha);
    return support::MixLinear(word, color, weight);
}

std::int64_t DrawRle(const Target& target, const RlePicture& image, const Where& where, std::int64_t magX,
                     std::int64_t magY, const RleRule& rule)
{
    std::int64_t       shown  = 0;
    const std::int64_t srcX   = where.srcX;
    const std::int64_t srcY   = where.srcY;
    const std::int64_t width  = where.width;
    const std::int64_t height = where.height;
    if (srcX + width > image.width || srcY + height > image.height || magX == 0 || magY == 0) return 0;
    const Picture& picture = target.picture;
    for (std::int64_t y = std::max<std::int64_t>(0, target.clip.minY); y < picture.height && y <= target.clip.maxY; ++y)
    {
        const std::int64_t below = y - where.dstY;
        if (below < 0 || below / magY >= height) continue;
        for (std::int64_t x = std::max<std::int64_t>(0, target.clip.minX); x < picture.width && x <= target.clip.maxX;
             ++x)
        {
            const std::int64_t right = x - where.dstX;
            if (right < 0 || right / magX >= width) continue;
            const int index = image.IndexAt(srcX + right / magX, srcY + below / magY);
            if (index == RlePicture::UNDRAWN) continue;
            std::uint8_t* const at   = picture.bytes + y * picture.pitch + x * 4;
            std::uint32_t       word = 0;
            std::memcpy(&word, at, sizeof word);
            word = ComposeRle(rule, word, image.palette[static_cast<std::size_t>(index)]);
            std::memcpy(at, &word, sizeof word);
            ++shown;
        }
    }
    return shown;
}

Where CutToSize(Where where, std::int64_t width, std::int64_t height)
{
    const auto cut = [](std::uint32_t count, std::int64_t from, std::int64_t size)
    { return static_cast<std::uint32_t>(std::clamp<std::int64_t>(size - from, 0, count)); };
    where.width  = cut(where.width, where.srcX, width);
    where.height = cut(where.height, where.srcY, height);
    return where;
}

RleFault JudgeRle(const std::uint8_t* bytes, std::size_t size, int unitBits, bool aligned)
{
    if (bytes == nullptr || size < AT_PALETTE) return RleFault::TooShort;
    if (!aligned) return RleFault::Misaligned;
    if (std::memcmp(bytes, WORD_KANVO, 4) != 0) return RleFault::NotKanvo;
    if (std::memcmp(bytes + 4, WORD_RLE, 4) != 0) return RleFault::NotRle;
    if (bytes[AT_VERSION] != VERSION) return RleFault::UnknownVersion;
    const unsigned unit = bytes[AT_UNIT];
    if ((unit != 8 && unit != 16) || (unitBits != 0 && unit != static_cast<unsigned>(unitBits)))
    {
        return RleFault::WrongUnit;
    }
    const std::uint64_t width  = Stored(bytes + AT_WIDTH, 4);
    const std::uint64_t height = Stored(bytes + AT_HEIGHT, 4);
    if (width < 1 || width > MAX_SIZE || height < 1 || height > MAX_SIZE) return RleFault::BadSize;
    const std::uint64_t colors = Stored(bytes + AT_COUNT, 4);
    if (colors < 1 || colors > (1ULL << unit) || AT_PALETTE + 4 * colors > size) return RleFault::BadPalette;
    const std::uint64_t start     = Stored(bytes + AT_START, 4);
    const std::size_t   unitBytes = unit / 8;
    if (start < AT_PALETTE + 4 * colors || start > size || start % unitBytes != 0) return RleFault::BadStart;

    std::uint64_t at     = start;
    std::uint64_t pixels = 0;
    const auto    next   = [&]
    {
        const std::uint32_t value = Stored(bytes + at, unitBytes);
        at += unitBytes;
        return value;
    };
    for (;;)
    {
        const bool complete = pixels == width * height;
        if (at + 2 * unitBytes > size) return complete ? RleFault::NoEnd : RleFault::TokenCutOff;
        const std::uint32_t run     = next();
        const std::uint32_t literal = run == 0 ? next() : 0;
        if (run == 0 && literal == 0) return complete ? RleFault::Good : RleFault::EndsEarly;
        if (complete) return RleFault::NoEnd;
        const std::uint32_t stored = run != 0 ? 1 : literal;  // indices
        if (at + std::uint64_t{stored} * unitBytes > size) return RleFault::TokenCutOff;
        for (std::uint32_t index = 0; index < stored; ++index)
        {
            if (next() >= colors) return RleFault::IndexTooLarge;
        }
        pixels += run + literal;
        if (pixels > width * height) return RleFault::TooManyPixels;
    }
}

}  // namespace reference
