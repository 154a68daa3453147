// Reference_Sample: see the header. Nothing here is meant to be fast.
#include "Reference_Sample.h"

#include <cstring>

#include "NaiveMix.h"

namespace reference
{

namespace
{

constexpr std::int64_t ONE = 65536;

//! Which of alpha, red, green and blue.
enum Channel
{
    ALPHA,
    RED,
    GREEN,
    BLUE
};

int ChannelOf(const Sample& sample, Channel channel)
{
    switch (sample.format)
    {
    case Format::Argb32:
    case Format::Rgb32: return support::Split(sample.stored)[channel];
    case Format::Rgb565: return support::Split(WordOfRgb565(sample.stored))[channel];
    case Format::A8:
    case Format::Alpha5_2:
    case Format::Other: break;
    }
    return static_cast<int>(sample.stored);  // one level for everything
}

//! How many bits a number of this format has beside alpha.
std::uint32_t ColorMask(Format format)
{
    switch (format)
    {
    case Format::Argb32:
    case Format::Rgb32: return 0xFFFFFF;
    case Format::Rgb565: return 0xFFFF;
    case Format::A8:
    case Format::Alpha5_2:
    case Format::Other: break;
    }
    return 0xFF;
}

std::uint8_t* Address(const Picture& picture, std::int64_t x, std::int64_t y)
{
    return picture.bytes + y * picture.pitch + x * BytesPerPixel(picture.format);
}

//! 0 to 255 in steps of two, both ends rounded up: 0, 2, 2, 4, 4, ... 256.
int EvenWeight(int weight)
{
    return (weight + 1) / 2 * 2;
}

}  // namespace

int Sample::Red() const
{
    return ChannelOf(*this, RED);
}

int Sample::Green() const
{
    return ChannelOf(*this, GREEN);
}

int Sample::Blue() const
{
    return ChannelOf(*this, BLUE);
}

int Sample::Alpha() const
{
    return format == Format::Rgb565 ? 255 : ChannelOf(*this, ALPHA);
}

std::uint32_t Sample::Color() const
{
    return stored & ColorMask(format);
}

std::uint32_t Sample::Opaque() const
{
    return support::Join(255, Red(), Green(), Blue());
}

std::uint32_t Sample::WithOwnAlpha() const
{
    return support::Join(Alpha(), Red(), Green(), Blue());
}

Sample PixelAt(const Picture& picture, std::int64_t x, std::int64_t y)
{
    const std::uint8_t* const at = Address(picture, x, y);
    switch (BytesPerPixel(picture.format))
    {
    case 4:
    {
        std::uint32_t word = 0;
        std::memcpy(&word, at, sizeof word);
        return {picture.format, word};
    }
    case 2:
    {
        std::uint16_t half = 0;
        std::memcpy(&half, at, sizeof half);
        return {picture.format, half};
    }
    default: return {picture.format, *at};
    }
}

Block BlockAt(const Picture& picture, std::int64_t x, std::int64_t y)
{
    return {PixelAt(picture, x, y), PixelAt(picture, x + 1, y), PixelAt(picture, x, y + 1),
            PixelAt(picture, x + 1, y + 1)};
}

Sample MixOf(const Block& block, int weightX, int weightY)
{
    const auto mix = [&](Channel channel, int x, int y, int full)
    {
        return support::MixBlock(ChannelOf(block[0], channel), ChannelOf(block[1], channel),
                                 ChannelOf(block[2], channel), ChannelOf(block[3], channel), x, y, full);
    };
    const Format format = block[0].format;
    switch (format)
    {
    case Format::Argb32:
    case Format::Rgb32:
    {
        const int x     = weightX / 2;  // seven bits
        const int y     = weightY / 2;
        const int alpha = format == Format::Argb32 ? mix(ALPHA, x, y, 128) : 0;
        return {format, support::Join(alpha, mix(RED, x, y, 128), mix(GREEN, x, y, 128), mix(BLUE, x, y, 128))};
    }
    case Format::Rgb565:
    {
        const int x     = EvenWeight(weightX);
        const int y     = EvenWeight(weightY);
        const int red   = mix(RED, x, y, 256) / 8;
        const int green = mix(GREEN, x, y, 256) / 4;
        const int blue  = mix(BLUE, x, y, 256) / 8;
        return {format, static_cast<std::uint32_t>(red * 2048 + green * 32 + blue)};
    }
    case Format::A8:
    case Format::Alpha5_2:
    case Format::Other: break;
    }
    return {format, static_cast<std::uint32_t>(mix(ALPHA, weightX, weightY, 256))};
}

bool HoldsKey(const Block& block, std::uint32_t key)
{
    // A 32-bit key keeps its top byte, which no pixel's colour has: such a key never matches.
    const Format        format = block[0].format;
    const std::uint32_t cut    = BytesPerPixel(format) == 4 ? key : key & ColorMask(format);
    for (const Sample& sample : block)
    {
        if (sample.Color() == cut) return true;
    }
    return false;
}

std::int64_t PixelOf(std::int64_t position)
{
    return position >= 0 ? position / ONE : -((ONE - 1 - position) / ONE);
}

int WeightOf(std::int64_t position)
{
    return static_cast<int>((position - PixelOf(position) * ONE) / 256);
}

Sample SampleAt(const Picture& picture, std::int64_t positionX, std::int64_t positionY, bool filtered)
{
    const std::int64_t x = PixelOf(positionX);
    const std::int64_t y = PixelOf(positionY);
    if (!filtered) return PixelAt(picture, x, y);
    return MixOf(BlockAt(picture, x, y), WeightOf(positionX), WeightOf(positionY));
}

std::uint32_t WordAt(const Picture& picture, std::int64_t x, std::int64_t y)
{
    return PixelAt(picture, x, y).stored;
}

void SetWord(const Picture& picture, std::int64_t x, std::int64_t y, std::uint32_t word)
{
    std::memcpy(Address(picture, x, y), &word, sizeof word);
}

}  // namespace reference
