// Kanvo_Level: the instruction set that pixels are drawn with. Every level draws the same bytes; a faster one only takes
// less time. The first library object chooses for the processor; this is for those who want to compare, or to find out
// whether one level is to blame for something.
#ifndef KANVO_LEVEL_H
#define KANVO_LEVEL_H

#include "Tov_Types.h"

enum Kanvo_Level : Tov_UByte
{
    KL_PORTABLE = 0,  //!< plain C++, everywhere
    KL_NEON     = 1,  //!< ARM, where the library was compiled for it
    KL_AVX2     = 2,  //!< x86-64, where the processor has it
    KL_QUANTITY = 3,
    KL_BEST     = 255  //!< what the environment variable KANVO_LEVEL names, otherwise the fastest of this machine
};

//! Draws with eLevel from now on, and returns the level that is in force. They differ where the machine does not have
//! eLevel, or there is no such level: then it is the fastest that it has. Not while anybody draws.
Kanvo_Level Kanvo_SelectRows(Kanvo_Level eLevel);

//! The level in force. KL_PORTABLE before the first library object.
Kanvo_Level Kanvo_SelectedRows();

//! "portable", "neon", "avx2", as KANVO_LEVEL names them; null for other values.
const char* Kanvo_LevelName(Kanvo_Level eLevel);

//! Kanvo_SelectRows(KL_BEST), unless a level was selected before. Called by every new library object.
void Kanvo_SelectRowsOnce();

#endif
