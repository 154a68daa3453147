// Dice: random numbers that are the same on every machine, and the two environment variables that replay a random test:
//
//   KANVO_TEST_SEED=1431 KANVO_TEST_CASES=1 test_Kanvo --gtest_filter=...      // exactly the case that failed
#ifndef DICE_H
#define DICE_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "Speed.h"
#include "Sweep.h"

namespace support
{

//! Numbers with the throws that random tests are made of. Two throws never belong into one argument list: which comes
//! first is the compiler's choice.
class Dice : public Numbers
{
public:
    using Numbers::Numbers;

    //! 0 to count - 1.
    unsigned Below(unsigned count) { return static_cast<unsigned>((std::uint64_t{Next32()} * count) >> 32); }
    //! Both ends are possible.
    int  Between(int low, int high) { return low + static_cast<int>(Below(static_cast<unsigned>(high - low) + 1)); }
    bool OneIn(unsigned count) { return Below(count) == 0; }

    template <class Value>
    Value Of(std::initializer_list<Value> values)
    {
        return values.begin()[Below(static_cast<unsigned>(values.size()))];
    }

    void Fill(void* bytes, std::size_t count)
    {
        auto* at = static_cast<std::uint8_t*>(bytes);
        for (; count >= sizeof(std::uint64_t); count -= sizeof(std::uint64_t), at += sizeof(std::uint64_t))
        {
            const std::uint64_t value = Next64();
            std::memcpy(at, &value, sizeof value);
        }
        const std::uint64_t value = Next64();
        std::memcpy(at, &value, count);
    }
};

//! Seeds from first on, one for each case of a random test.
struct Seeds
{
    std::uint64_t first;
    std::uint64_t count;

    explicit Seeds(std::uint64_t cases)
        : first(FromEnvironment("KANVO_TEST_SEED", 1)),
          count(FromEnvironment("KANVO_TEST_CASES", (cases + OneCaseIn() - 1) / OneCaseIn()))
    {
        if (count < cases)  // never silently: `./dev target` adds these lines up
        {
            std::printf("[  CASES   ] %llu of %llu\n", static_cast<unsigned long long>(count),
                        static_cast<unsigned long long>(cases));
        }
    }
};

}  // namespace support

#endif
