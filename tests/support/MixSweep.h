// MixSweep: walks a mix of packed words through every pair of bytes and every weight, in every channel, while the other
// channels do their worst. A lane that borrows from its neighbour or spills into it shows.
#ifndef MIXSWEEP_H
#define MIXSWEEP_H

#include <cstdint>
#include <initializer_list>

#include "NaiveMix.h"
#include "Sweep.h"

namespace support
{

//! Which channels hold the pair under test, which fall from 255 to 0 and which rise from 0 to 255: a 1 in each.
struct MixPattern
{
    std::uint32_t pair;
    std::uint32_t fall;
    std::uint32_t rise;
};

//! For words of which red, green and blue are mixed.
constexpr std::initializer_list<MixPattern> COLOR_PATTERNS = {
    {0x010000, 0x000101, 0x000000}, {0x010000, 0x000000, 0x000101}, {0x000100, 0x010000, 0x000001},
    {0x000100, 0x000001, 0x010000}, {0x000001, 0x000000, 0x010100}, {0x000001, 0x010100, 0x000000}};

//! For words of which alpha is mixed like the others: red and alpha lie above blue and green in one register.
constexpr std::initializer_list<MixPattern> WORD_PATTERNS = {{0x01010000, 0x00000001, 0x00000100},
                                                             {0x01010000, 0x00000100, 0x00000001},
                                                             {0x00000101, 0x01000000, 0x00010000},
                                                             {0x00000101, 0x00010000, 0x01000000}};

//! Calls mix(dst, src, alpha), which returns a word, for every dst and src byte and every alpha up to lastAlpha, and
//! compares the bits of mask with dst + floor((src - dst) * weightOf(alpha) / full) in each channel.
template <class WeightOf, class Mix>
void SweepMix(Differences& differences, std::initializer_list<MixPattern> patterns, std::uint32_t mask,
              std::uint32_t lastAlpha, int full, WeightOf weightOf, Mix mix)
{
    const auto check = [&](std::uint32_t dst, std::uint32_t src, std::uint32_t alpha, std::uint32_t expected)
    {
        const std::uint32_t got = mix(dst, src, alpha);
        if (((got ^ expected) & mask) != 0)
        {
            differences.Note("dst %08X, src %08X, alpha %u: expected %08X, got %08X", dst, src, alpha, expected & mask,
                             got & mask);
        }
    };
    for (std::uint32_t alpha = 0; alpha <= lastAlpha; ++alpha)
    {
        const MixTable      table(weightOf(alpha), full);
        const std::uint32_t fallen = table(255, 0);
        const std::uint32_t risen  = table(0, 255);
        for (std::uint32_t d = 0; d < 256; ++d)
        {
            for (std::uint32_t s = 0; s < 256; ++s)
            {
                const std::uint32_t mixed = table(d, s);
                for (const MixPattern& pattern : patterns)
                {
                    check(pattern.pair * d + pattern.fall * 255, pattern.pair * s + pattern.rise * 255, alpha,
                          pattern.pair * mixed + pattern.fall * fallen + pattern.rise * risen);
                }
                // Every channel another pair, each of which runs through all pairs.
                check(((255 - s) << 24) + (d << 16) + (s << 8) + (255 - d),
                      ((255 - d) << 24) + (s << 16) + (d << 8) + (255 - s), alpha,
                      (table(255 - s, 255 - d) << 24) + (mixed << 16) + (table(s, d) << 8) + table(255 - d, 255 - s));
            }
        }
    }
}

}  // namespace support

#endif
