// RleImage: the stored layout from its description: a header of 40 bytes, the palette, the tokens.
#include "RleImage.h"

#include <algorithm>
#include <initializer_list>

namespace support
{

void Store(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint32_t value, std::size_t count)
{
    for (std::size_t byte = 0; byte < count; ++byte, value /= 256) bytes[at + byte] = static_cast<std::uint8_t>(value);
}

void RleImage::FillGap()
{
    gap = 0;
    gap = (4 - (OffsetOf(units.size()) + trailing) % 4) % 4;
}

std::vector<std::uint8_t> RleImage::Bytes() const
{
    constexpr char            words[] = "KNVORLE ";
    std::vector<std::uint8_t> bytes(words, words + 8);
    bytes.resize(OffsetOf(units.size()) + trailing, 0xEE);
    std::fill(bytes.begin() + 8, bytes.begin() + 40, std::uint8_t{0});
    bytes[8]  = static_cast<std::uint8_t>(unitBits);
    bytes[9]  = 1;
    bytes[10] = opaque ? 1 : 0;
    for (const std::size_t channel : {12U, 13U, 14U, 15U}) bytes[channel] = 8;
    Store(bytes, 16, width);
    Store(bytes, 20, height);
    Store(bytes, 24, static_cast<std::uint32_t>(palette.size()));
    Store(bytes, 36, static_cast<std::uint32_t>(TokenStart()));
    for (std::size_t entry = 0; entry < palette.size(); ++entry) Store(bytes, 40 + 4 * entry, palette[entry]);
    for (std::size_t unit = 0; unit < units.size(); ++unit) Store(bytes, OffsetOf(unit), units[unit], UnitBytes());
    return bytes;
}

std::vector<unsigned> ThrowTokens(Dice& dice, int unitBits, std::uint32_t pixels, unsigned colors)
{
    const unsigned        most    = unitBits == 8 ? 255 : 65535;
    const unsigned        usual   = dice.Of({3U, 20U, 80U, most});
    const unsigned        literal = dice.Of({2U, 2U, 3U, 8U, 1000U});  // one token in so many
    std::vector<unsigned> units;
    while (pixels > 0)
    {
        const unsigned bound = dice.OneIn(4) ? most : usual;
        const unsigned count = std::min<std::uint32_t>(pixels, 1 + dice.Below(bound));
        pixels -= count;
        if (dice.OneIn(literal))
        {
            units.push_back(0);
            units.push_back(count);
            for (unsigned pixel = 0; pixel < count; ++pixel) units.push_back(dice.Below(colors));
        }
        else
        {
            units.push_back(count);
            units.push_back(dice.Below(colors));
        }
    }
    return units;
}

std::vector<std::uint32_t> ThrowPalette(Dice& dice, unsigned colors)
{
    std::vector<std::uint32_t> palette;
    const bool                 opaque = dice.OneIn(3);
    while (palette.size() < colors)
    {
        std::uint32_t color = dice.NextHostileWord();
        if (opaque || dice.OneIn(4)) color |= 0xFF000000U;
        palette.push_back(color);
    }
    return palette;
}

}  // namespace support
