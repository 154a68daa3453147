// Board_Posix: included in front of every test on the bare board, for what tests take for granted of a system: a clock; limits
// that cannot be set, and say so; and tests that end a process, which are skipped.
#ifndef BOARD_POSIX_H
#define BOARD_POSIX_H

#include <ctime>

#include <gtest/gtest.h>

#include "Board.h"

#define EXPECT_DEATH(...) GTEST_SKIP() << "there are no processes here"
#define EXPECT_EXIT(...)  GTEST_SKIP() << "there are no processes here"

constexpr int CLOCK_THREAD_CPUTIME_ID = 1;

inline int clock_gettime(int, timespec* now)
{
    const auto ticks = board::Ticks();
    now->tv_sec      = static_cast<std::time_t>(ticks / board::TicksPerSecond);
    now->tv_nsec     = static_cast<long>(ticks % board::TicksPerSecond * (1000000000 / board::TicksPerSecond));
    return 0;
}

constexpr int RLIMIT_AS = 1;

struct rlimit
{
    unsigned long rlim_cur;
    unsigned long rlim_max;
};

inline int getrlimit(int, rlimit*)
{
    return -1;
}
inline int setrlimit(int, const rlimit*)
{
    return -1;
}

#endif
