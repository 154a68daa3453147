// Reference_BlitAlpha: blits through an alpha map a second time, as plainly as they can be described: a pixel of the target
// is drawn if it, its source pixel and its map pixel all exist. Shares nothing with the library; pictures and targets are
// those of Reference_Blit.h, the blends those of NaiveMix.h.
#ifndef REFERENCE_BLITALPHA_H
#define REFERENCE_BLITALPHA_H

#include <cstdint>
#include <string>
#include <vector>

#include "Reference_Blit.h"

namespace reference
{

//! Who does the work of a blit through a map.
enum class MapWorker
{
    Nobody,
    // portable, each with a performance counter
    Int,
    Rgb,
    CopyAlpha,
    // loops
    Over,
    OverScaled,
    Store565,
    Over565,
    Over565Scaled
};

//! "Blit_ALPHAINT" for the portable workers, "neonloops_blit_argb32_argb32_as" for the loops, "" for nobody.
const char* NameOf(MapWorker worker);
bool        IsLoop(MapWorker worker);

//! Whether this worker looks at the map at all.
bool ReadsMap(MapWorker worker);

//! What a call is expected to do besides changing the target's pixels.
using MapOutcome = OutcomeOf<MapWorker>;

//! Draws into target.picture.bytes. map: null for a call without one. Source and map may be the target itself.
MapOutcome BlitAlpha(const Target& target, const Picture& source, const Picture* map, const Where& where,
                     std::uint32_t flags, int alpha);

}  // namespace reference

#endif
