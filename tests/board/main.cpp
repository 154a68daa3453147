// The main program of a test program on the bare board. Arguments of the form NAME=VALUE become its environment, in front of
// everything that asks for it; the others are GoogleTest's.
//
//   board/qemu-a9 test_Kanvo KANVO_TEST_EMULATED=500 --gtest_filter=Blit*
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/time.h>

#include "Board.h"
#include "Board_Semihosting.h"
#include "Kanvo.h"
#include "Kanvo_Level.h"

namespace
{

//! Before the constructors of tests, some of which ask how many cases to run.
[[gnu::constructor(101)]] void SetEnvironment()
{
    static char line[512];
    const struct
    {
        char*         text;
        std::uint32_t size;
    } block = {line, sizeof line - 1};
    if (board::Semihosting(board::SYS_GET_CMDLINE, &block) != 0) return;
    for (char* word = std::strtok(line, " "); word != nullptr; word = std::strtok(nullptr, " "))
    {
        char* const sign = std::strchr(word, '=');
        if (*word == '-' || sign == nullptr) continue;
        *sign = '\0';
        setenv(word, sign + 1, 1);
    }
}

}  // namespace

// Semihosting knows no folders. GoogleTest looks for those of a report and makes what is missing, for ever if there is none.
extern "C"
{
    int stat(const char*, struct stat* result)
    {
        std::memset(result, 0, sizeof *result);
        result->st_mode = S_IFDIR;
        return 0;
    }
    int mkdir(const char*, mode_t)
    {
        return -1;
    }
    //! Semihosting's clock counts seconds.
    int gettimeofday(timeval* now, void*)
    {
        const auto ticks = board::Ticks();
        now->tv_sec      = static_cast<std::time_t>(ticks / board::TicksPerSecond);
        now->tv_usec     = static_cast<suseconds_t>(ticks % board::TicksPerSecond / (board::TicksPerSecond / 1000000));
        return 0;
    }
}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    {
        const Kanvo library;  // the first, which chooses the level
    }
    std::printf("[  LEVEL   ] %s\n", Kanvo_LevelName(Kanvo_SelectedRows()));
    return RUN_ALL_TESTS();
}
