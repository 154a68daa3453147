// neonloops: the pointers, and who sets them. They start at the portable bodies, as constants, and point there until the
// first library object selects a level. There is no other state: whether a level was selected is written in the table
// that g_Kanvo_pkRows points at.
#include "neonloops.h"

#include <cstring>

#include "Kanvo_Level.h"
#include "neonloops_rects.h"
#include "scaled_rows.h"

// Whether there is an environment to ask.
#if defined(__unix__) || defined(__APPLE__) || defined(_WIN32)
#define KANVO_HAS_ENVIRONMENT 1
#include <cstdlib>
#else
#define KANVO_HAS_ENVIRONMENT 0
#endif

namespace
{

constexpr Kanvo_LevelBodies BODIES_PORTABLE = Kanvo_LevelBodies::Of<Kanvo_RowsReference>(KL_PORTABLE);
// The same, in force until a level is selected.
constexpr Kanvo_LevelBodies BODIES_AT_START = Kanvo_LevelBodies::Of<Kanvo_RowsReference>(KL_BEST);

//! The bodies of a level, null where this machine cannot run them.
const Kanvo_LevelBodies* FindBodies(Kanvo_Level eLevel)
{
    switch (eLevel)
    {
    case KL_PORTABLE: return &BODIES_PORTABLE;

#if KANVO_HAS_NEON
    case KL_NEON: return &g_Kanvo_kBodiesNEON;
#endif

#if KANVO_HAS_AVX2
    case KL_AVX2:
        __builtin_cpu_init();  // the first library object may be older than the constructor that does this
        return __builtin_cpu_supports("avx2") != 0 ? &g_Kanvo_kBodiesAVX2 : nullptr;
#endif

    default: return nullptr;
    }
}

#if KANVO_HAS_ENVIRONMENT
//! The bodies that the environment names, null where it names none that can be run.
const Kanvo_LevelBodies* FindBodiesOfEnvironment()
{
    const char* const pcWanted = std::getenv("KANVO_LEVEL");
    for (Tov_UByte ubLevel = 0; pcWanted != nullptr && ubLevel < KL_QUANTITY; ++ubLevel)
    {
        const auto eLevel = static_cast<Kanvo_Level>(ubLevel);
        if (std::strcmp(pcWanted, Kanvo_LevelName(eLevel)) == 0)
        {
            return FindBodies(eLevel);
        }
    }
    return nullptr;
}
#endif

//! The fastest there is.
const Kanvo_LevelBodies* FindBestBodies()
{
    for (Tov_UByte ubLevel = KL_QUANTITY; ubLevel > 0; --ubLevel)
    {
        if (const Kanvo_LevelBodies* const pkBodies = FindBodies(static_cast<Kanvo_Level>(ubLevel - 1)))
        {
            return pkBodies;
        }
    }
    return &BODIES_PORTABLE;
}

void Install(const Kanvo_LevelBodies& kBodies)
{
    g_Kanvo_pkBodies = &kBodies;
    g_Kanvo_pkRows   = &kBodies.kRows;
    Kanvo_InstallScaledRows(kBodies.kRows.eLevel);

#define KANVO_LOOP_INSTALL(loop, name) loop = kBodies.pfn##name;
    KANVO_LOOP_LIST(KANVO_LOOP_INSTALL)
#undef KANVO_LOOP_INSTALL
}

}  // namespace

// Initialised before any code runs: addresses of functions are constants.
const Kanvo_LevelBodies*  g_Kanvo_pkBodies = &BODIES_AT_START;
const Kanvo_RowFunctions* g_Kanvo_pkRows   = &BODIES_AT_START.kRows;

// NOLINTNEXTLINE(bugprone-macro-parentheses): it is declared, and has to be a name
#define KANVO_LOOP_DEFINE(loop, name) decltype(loop) loop = BODIES_AT_START.pfn##name;
KANVO_LOOP_LIST(KANVO_LOOP_DEFINE)
#undef KANVO_LOOP_DEFINE

Kanvo_Level Kanvo_SelectRows(Kanvo_Level eLevel)
{
    const Kanvo_LevelBodies* pkBodies = FindBodies(eLevel);
#if KANVO_HAS_ENVIRONMENT
    if (eLevel == KL_BEST)
    {
        pkBodies = FindBodiesOfEnvironment();
    }
#endif
    Install(pkBodies != nullptr ? *pkBodies : *FindBestBodies());
    return Kanvo_SelectedRows();
}

void Kanvo_SelectRowsOnce()
{
    if (g_Kanvo_pkRows->eLevel == KL_BEST)
    {
        Kanvo_SelectRows(KL_BEST);
    }
}

Kanvo_Level Kanvo_SelectedRows()
{
    const Kanvo_Level eLevel = g_Kanvo_pkRows->eLevel;
    return eLevel == KL_BEST ? KL_PORTABLE : eLevel;
}

const char* Kanvo_LevelName(Kanvo_Level eLevel)
{
    switch (eLevel)
    {
    case KL_PORTABLE: return "portable";
    case KL_NEON: return "neon";
    case KL_AVX2: return "avx2";
    default: return nullptr;
    }
}
