// RunSeeds: the run of a random test over its cases.
#ifndef RUNSEEDS_H
#define RUNSEEDS_H

#include <string>

#include <gtest/gtest.h>

#include "CrashNote.h"
#include "Dice.h"

namespace support
{

//! Calls run(seed), which returns an empty text or what is wrong, for each case, until three have failed. Whether none did.
//! name: what a crash at a fence is said to belong to.
template <class Run>
bool RunSeeds(const char* name, const Seeds& seeds, Run run)
{
    CrashNote note(name);
    int       failures = 0;
    for (std::uint64_t index = 0; index < seeds.count && failures < 3; ++index)
    {
        note.InCase(seeds.first + index);
        const std::string failure = run(seeds.first + index);
        if (failure.empty()) continue;
        ++failures;
        ADD_FAILURE() << failure;
    }
    return failures == 0;
}

}  // namespace support

#endif
