// Levels: the instruction sets that rows can be drawn with on this machine, and a scope in which one of them is in force.
#ifndef LEVELS_H
#define LEVELS_H

#include <string>
#include <vector>

#include "Kanvo_Level.h"

namespace support
{

//! Found out without asking the library.
inline std::vector<Kanvo_Level> LevelsHere()
{
    std::vector<Kanvo_Level> levels{KL_PORTABLE};
#if defined(__ARM_NEON)
    levels.push_back(KL_NEON);
#endif
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2")) levels.push_back(KL_AVX2);
#endif
    return levels;
}

//! Those that are not the portable one.
inline std::vector<Kanvo_Level> FastLevelsHere()
{
    std::vector<Kanvo_Level> levels = LevelsHere();
    levels.erase(levels.begin());
    return levels;
}

//! Draws at a level to the end of the scope.
class AtLevel
{
public:
    explicit AtLevel(Kanvo_Level level) : m_before(Kanvo_SelectedRows()) { Kanvo_SelectRows(level); }
    ~AtLevel() { Kanvo_SelectRows(m_before); }
    AtLevel(const AtLevel&)            = delete;
    AtLevel& operator=(const AtLevel&) = delete;

private:
    Kanvo_Level m_before;
};

}  // namespace support

#endif
