// Sweep: what tests need that walk a whole domain: a count of differences that costs nothing while there are none, and
// numbers that look random and are the same in every run.
#ifndef SWEEP_H
#define SWEEP_H

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <string>

namespace support
{

//! Counts differences and describes the first. Used inside loops of millions of turns, where an EXPECT would be too
//! slow and would print too much:
//!
//!   if (got != expected) differences.Note("alpha %u: expected %u, got %u", alpha, expected, got);
//!   ...
//!   EXPECT_EQ(differences.Count(), 0U) << differences.First();
class Differences
{
public:
    __attribute__((cold, noinline, format(printf, 2, 3))) void Note(const char* format, ...)
    {
        if (m_count++ > 0) return;
        char         text[256];
        std::va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(text, sizeof text, format, arguments);
        va_end(arguments);
        m_first = text;
    }

    std::uint64_t      Count() const { return m_count; }
    const std::string& First() const { return m_first; }

private:
    std::uint64_t m_count = 0;
    std::string   m_first;
};

//! The same numbers on every machine (splitmix64).
class Numbers
{
public:
    explicit Numbers(std::uint64_t seed) : m_state(seed) {}

    std::uint64_t Next64()
    {
        m_state += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = m_state;
        mixed               = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
        mixed               = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31);
    }
    std::uint32_t Next32() { return static_cast<std::uint32_t>(Next64() >> 32); }
    std::uint8_t  NextByte() { return static_cast<std::uint8_t>(Next64() >> 56); }

    //! A word of four bytes, each of them 0 or 255 as often as anything else.
    std::uint32_t NextHostileWord()
    {
        const std::uint64_t bits  = Next64();
        auto                word  = static_cast<std::uint32_t>(bits);
        std::uint64_t       fates = bits >> 32;
        for (int shift = 0; shift < 32; shift += 8, fates >>= 2)
        {
            if ((fates & 3U) == 0) word &= ~(0xFFU << shift);
            if ((fates & 3U) == 1) word |= 0xFFU << shift;
        }
        return word;
    }

private:
    std::uint64_t m_state;
};

}  // namespace support

#endif
