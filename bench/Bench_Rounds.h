// Bench_Rounds: times of several jobs, taken alternately in one thread, so that what disturbs one disturbs all.
#ifndef BENCH_ROUNDS_H
#define BENCH_ROUNDS_H

#include <functional>
#include <string>
#include <vector>

#include "Bench_Case.h"

namespace bench
{

struct Effort
{
    int    rounds       = 21;
    double milliseconds = 3;  //!< of one job in one round
};

//! A run and what it took: nanoseconds of one operation, thread CPU time.
struct Entry
{
    std::function<void(int count)> run;
    int                            cycle = 1;  //!< operations after which the input repeats

    double minimum = 0;
    double median  = 0;
};

//! Every entry is run in every round, in batches that are whole cycles.
void Measure(std::vector<Entry>& entries, const Effort& effort);

//! The yardstick of a case: memset or memcpy of its rectangle at its places, row by row; for shapes and rotations, of
//! the whole target or source. Where a rectangle is as wide as the target there is a second one, all in one call.
struct Yardstick
{
    std::vector<Entry> entries;
    double             pixels = 0;
};
Yardstick MakeYardstick(const Input& input);

}  // namespace bench

#endif
