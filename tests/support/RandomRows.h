// RandomRows: what the random tests of rows, of loops and of samples are made of: memory between fences to cut rows
// and rectangles out of, and a stock of pixels to be copied, because throwing each would take longer than drawing it.
#ifndef RANDOMROWS_H
#define RANDOMROWS_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "Dice.h"
#include "Fence.h"
#include "Speed.h"

#if SPEED_SANITIZED
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(at, bytes)   static_cast<void>(0)
#define ASAN_UNPOISON_MEMORY_REGION(at, bytes) static_cast<void>(0)
#endif

namespace support
{

//! Where pixels lie in their arena.
enum class Lies
{
    AtFrontFence,
    AtBackFence,
    Between
};

inline Lies AnyLies(Dice& dice)
{
    return dice.Of({Lies::AtFrontFence, Lies::AtBackFence, Lies::Between});
}

//! Bytes after which an alignment comes again: the widest registers there are.
constexpr unsigned ALIGNMENTS = 32;

//! Memory between two fences and flush with both.
class Arena
{
public:
    static constexpr std::size_t BYTES = 65536;

    Arena() = default;
    ~Arena() { ASAN_UNPOISON_MEMORY_REGION(Begin(), BYTES); }
    Arena(const Arena&)            = delete;
    Arena& operator=(const Arena&) = delete;

    //! offset: for Between, where offsets below ALIGNMENTS give each alignment once.
    std::uint8_t* Place(Lies lies, std::size_t bytes, std::size_t offset)
    {
        switch (lies)
        {
        case Lies::AtFrontFence: return Begin();
        case Lies::AtBackFence: return End() - bytes;
        case Lies::Between: break;
        }
        return Begin() + 256 + offset;
    }

    //! Anywhere of these, in steps of a pixel.
    std::uint8_t* AnyPlace(std::size_t bytes, std::size_t step, Dice& dice)
    {
        const Lies lies = AnyLies(dice);
        return Place(lies, bytes, dice.Below(64) * step);
    }

    //! Copies something to be read to a place. Beside it the address sanitizer, where it is there, lets nobody read,
    //! however far the fences are: words of eight bytes are its grain in front, single bytes behind.
    void Put(std::uint8_t* at, const std::uint8_t* from, std::size_t bytes)
    {
        ASAN_POISON_MEMORY_REGION(m_shown, m_shownBytes);
        m_shown      = Begin() + (at - Begin()) / 8 * 8;
        m_shownBytes = (static_cast<std::size_t>(at - m_shown) + bytes + 7) / 8 * 8;
        ASAN_UNPOISON_MEMORY_REGION(at, bytes);
        std::copy_n(from, bytes, at);
    }

    //! 64 bytes to either side of a place, as far as there are any: nobody may change them.
    std::uint8_t* Before(std::uint8_t* at) { return at - std::min<std::ptrdiff_t>(64, at - Begin()); }
    std::uint8_t* Behind(std::uint8_t* at) { return at + std::min<std::ptrdiff_t>(64, End() - at); }

    std::uint8_t* Begin() { return m_fence.Data(); }
    std::uint8_t* End() { return m_fence.Data() + BYTES; }

private:
    Fence         m_fence{BYTES};
    std::uint8_t* m_shown      = m_fence.Data();  // what of it was put there last
    std::size_t   m_shownBytes = BYTES;
};

struct Position
{
    Lies     lies;
    unsigned offset;
};

//! Flush with either fence, and at each alignment of pixels of so many bytes between them.
inline std::vector<Position> EveryPosition(unsigned pixelBytes)
{
    std::vector<Position> all{{Lies::AtFrontFence, 0}, {Lies::AtBackFence, 0}};
    for (unsigned offset = 0; offset < ALIGNMENTS; offset += pixelBytes) all.push_back({Lies::Between, offset});
    return all;
}

//! What pixels are like: the shortcuts of a body are taken where neighbours are alike.
enum class Content
{
    Random,
    Hostile,  // bytes of 0 and 255 as often as others
    Runs,     // alpha of 0, 255 or any, constant over stretches
    Opaque    // but for a pixel here and there
};

inline void FillPixels(std::uint8_t* at, std::size_t count, Content content, Dice& dice)
{
    if (content == Content::Random)
    {
        dice.Fill(at, count);
        return;
    }
    std::size_t   left = 0;
    std::uint32_t keep = 0xFFFFFFFFU, set = 0;
    for (std::size_t index = 0; index < count; index += 4)
    {
        std::uint32_t word = dice.NextHostileWord();
        if (content == Content::Runs)
        {
            if (left-- == 0)
            {
                left                = dice.Below(70);
                const unsigned kind = dice.Below(4);
                keep                = kind < 3 ? 0x00FFFFFFU : 0xFFFFFFFFU;
                set                 = kind < 2 ? 0xFF000000U : 0;
            }
            word = (word & keep) | set;
        }
        if (content == Content::Opaque && !dice.OneIn(100)) word |= 0xFF000000U;
        std::memcpy(at + index, &word, std::min<std::size_t>(4, count - index));
    }
}

inline void FillCoverage(std::uint8_t* at, std::size_t count, Content content, Dice& dice)
{
    std::size_t left = 0;
    unsigned    kind = 0;
    for (std::size_t index = 0; index < count; ++index)
    {
        if (left-- == 0)
        {
            left = content == Content::Runs ? dice.Below(50) : 0;
            kind = dice.Below(content == Content::Random ? 1 : 4);
        }
        at[index] = kind == 1 ? 0 : kind == 2 ? 255 : dice.NextByte();
    }
}

//! Pixels and coverage of every content. What is cut out of it begins anywhere.
class Stock
{
public:
    Stock()
    {
        Dice dice(71);
        for (unsigned content = 0; content < CONTENTS; ++content)
        {
            FillPixels(&m_pixels[content * BYTES], BYTES, static_cast<Content>(content), dice);
            FillCoverage(&m_coverage[content * BYTES], BYTES, static_cast<Content>(content), dice);
        }
    }

    //! At most BYTES of them.
    const std::uint8_t* Pixels(std::size_t bytes, Dice& dice) const { return Cut(m_pixels, bytes, 4, dice); }
    const std::uint8_t* Coverage(std::size_t bytes, Dice& dice) const { return Cut(m_coverage, bytes, 1, dice); }

    static constexpr std::size_t BYTES = 32768;

private:
    static constexpr unsigned CONTENTS = 4;

    static const std::uint8_t* Cut(const std::vector<std::uint8_t>& all, std::size_t bytes, std::size_t step,
                                   Dice& dice)
    {
        const std::size_t content = dice.Below(CONTENTS);
        return &all[content * BYTES + dice.Below(static_cast<unsigned>((BYTES - bytes) / step) + 1) * step];
    }

    std::vector<std::uint8_t> m_pixels   = std::vector<std::uint8_t>(CONTENTS * BYTES + 1);
    std::vector<std::uint8_t> m_coverage = std::vector<std::uint8_t>(CONTENTS * BYTES + 1);
};

}  // namespace support

#endif
