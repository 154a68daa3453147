// RandomAreas: see the header.
#include "RandomAreas.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace support
{

Area ThrowAreaOf(Dice& dice, std::int64_t pixelBytes, std::uint32_t width, std::uint32_t height)
{
    Area area{};
    area.width       = width;
    area.height      = height;
    area.pitch       = width * static_cast<std::uint32_t>(pixelBytes) + dice.Of<std::uint32_t>({0, 4, 12, 64});
    area.atBackFence = dice.OneIn(2);
    area.content     = dice.Between(0, 5);
    return area;
}

Area ThrowArea(Dice& dice, std::int64_t pixelBytes, int most)
{
    int width  = dice.Between(1, most);
    int height = dice.Between(1, most);
    if (dice.OneIn(8)) width = dice.Between(1, std::min(3, most));
    if (dice.OneIn(8)) height = 1;
    if (most >= 24 && dice.OneIn(50))
    {
        width  = dice.Between(100, 130);
        height = dice.Between(1, 5);
    }
    return ThrowAreaOf(dice, pixelBytes, static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height));
}

void FillContent(Dice& dice, std::uint8_t* bytes, std::size_t count, int content, reference::Format format)
{
    dice.Fill(bytes, count);
    const auto        pixelBytes = static_cast<std::size_t>(reference::BytesPerPixel(format));
    const std::size_t first      = pixelBytes == 4 ? 3 : 0;  // the byte that is, or could be, alpha
    if (content == 1 || content == 2)
    {
        int          run   = 0;
        std::uint8_t alpha = 0;
        for (std::size_t at = first; at < count; at += pixelBytes)
        {
            if (run-- == 0)
            {
                const std::uint8_t soft = dice.NextByte();
                run                     = dice.Between(0, 6);
                alpha                   = dice.Of<std::uint8_t>({0, 255, 255, soft});
            }
            bytes[at] = alpha;
        }
    }
    if (content == 3)
    {
        for (std::size_t at = first; at < count; at += pixelBytes) bytes[at] = 255;
    }
    if (content == 4)
    {
        for (std::size_t at = 0; at < count; ++at)
        {
            if ((bytes[at] & 2) == 0) bytes[at] = (bytes[at] & 1) != 0 ? 255 : 0;
        }
    }
}

reference::Clip ThrowClip(Dice& dice, const Area& area)
{
    const auto      width  = static_cast<int>(area.width);
    const auto      height = static_cast<int>(area.height);
    reference::Clip clip;
    clip.minX = dice.Between(0, width - 1);
    clip.minY = dice.Between(0, height - 1);
    clip.maxX = dice.Between(static_cast<int>(clip.minX), width - 1);
    clip.maxY = dice.Between(static_cast<int>(clip.minY), height - 1);
    switch (dice.Below(16))
    {
    case 0:  // beyond the bitmap
        clip.maxX = dice.Of<std::int64_t>({width, width + 7, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF});
        clip.maxY = dice.Of<std::int64_t>({height, height + 7, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF});
        break;
    case 1:  // one pixel short of existing
        clip.minX = clip.maxX + 1;
        break;
    case 2: clip.minY = clip.maxY + 1; break;
    case 3:  // inverted
        clip.minX = width - 1;
        clip.maxX = 0;
        clip.minY = dice.Of<std::int64_t>({0, height - 1, 0xFFFFFFFF});
        clip.maxY = 0;
        break;
    case 4:  // outside
        clip.minX = dice.Of<std::int64_t>({width, width + 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF});
        clip.maxX = 0xFFFFFFFF;
        break;
    default: break;
    }
    return clip;
}

std::uint32_t ThrowLength(Dice& dice, std::uint32_t size, bool evenNothing)
{
    if (dice.OneIn(16))
    {
        return evenNothing ? dice.Of<std::uint32_t>({0, 0, 0x7FFFFFFF, 0x80000000, 0x80000001, 0xFFFFFFFF})
                           : dice.Of<std::uint32_t>({1, 0x7FFFFFFF, 0x80000000, 0x80000001, 0xFFFFFFFF});
    }
    return static_cast<std::uint32_t>(dice.Between(1, static_cast<int>(size) + 3));
}

std::uint32_t ThrowSourcePosition(Dice& dice, std::uint32_t size)
{
    if (dice.OneIn(64)) return dice.Of<std::uint32_t>({0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF});
    if (dice.OneIn(3)) return 0;
    return static_cast<std::uint32_t>(dice.Between(0, static_cast<int>(size) + (dice.OneIn(8) ? 2 : -1)));
}

std::int32_t ThrowPosition(Dice& dice, std::uint32_t size, std::int64_t length)
{
    if (dice.OneIn(64)) return dice.Of<std::int32_t>({INT32_MIN, INT32_MIN + 1, INT32_MAX - 1, INT32_MAX});
    const auto most  = static_cast<int>(std::min<std::int64_t>(length, 1000));
    const int  reach = dice.OneIn(4) ? most : std::min(most, 6);
    return dice.Between(-reach - 1, static_cast<int>(size) + reach / 3);
}

std::string Described(const Area& area)
{
    char text[80];
    std::snprintf(text, sizeof text, "%ux%u pitch %u at the %s fence", area.width, area.height, area.pitch,
                  area.atBackFence ? "back" : "front");
    return text;
}

std::string Described(const reference::Clip& clip)
{
    char text[120];
    std::snprintf(text, sizeof text, "(%lld, %lld) to (%lld, %lld)", static_cast<long long>(clip.minX),
                  static_cast<long long>(clip.minY), static_cast<long long>(clip.maxX),
                  static_cast<long long>(clip.maxY));
    return text;
}

std::string FirstDifference(const std::uint8_t* expected, const std::uint8_t* got, const Area& area)
{
    const std::size_t count = area.Bytes(4);
    std::size_t       at    = 0;
    while (at < count && expected[at] == got[at]) ++at;
    const std::size_t x = at % area.pitch / 4;
    const std::size_t y = at / area.pitch;
    char              text[160];
    if (at == count) return "no difference";
    if (x >= area.width)
    {
        std::snprintf(text, sizeof text, "padding byte %zu of row %zu expected %02X, got %02X",
                      at % area.pitch - area.width * 4, y, expected[at], got[at]);
        return text;
    }
    std::uint32_t words[2];
    std::memcpy(&words[0], expected + at / 4 * 4, 4);
    std::memcpy(&words[1], got + at / 4 * 4, 4);
    std::snprintf(text, sizeof text, "pixel (%zu, %zu) expected %08X, got %08X", x, y, words[0], words[1]);
    return text;
}

}  // namespace support
