// MapLoopSpies: who did the work of a blit through an alpha map. Stand in front of those loops of neonloops.h that only
// such blits call; the others have the LoopSpies of DrawSpies.h, which may be in force at the same time.
#ifndef MAPLOOPSPIES_H
#define MAPLOOPSPIES_H

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace support
{

//! One call of a loop, with everything that was passed. What a loop does not have stays as it is here.
struct MapLoopCall
{
    const char*   loop     = "";
    const void*   dst      = nullptr;
    const void*   src      = nullptr;
    const void*   map      = nullptr;
    std::uint32_t dstPitch = 0;
    std::uint32_t srcPitch = 0;
    std::uint32_t mapPitch = 0;
    std::uint32_t width    = 0;
    std::uint32_t height   = 0;
    int           alpha    = -1;

    friend bool operator==(const MapLoopCall& one, const MapLoopCall& other)
    {
        return std::string(one.loop) == other.loop && one.dst == other.dst && one.src == other.src &&
               one.map == other.map && one.dstPitch == other.dstPitch && one.srcPitch == other.srcPitch &&
               one.mapPitch == other.mapPitch && one.width == other.width && one.height == other.height &&
               one.alpha == other.alpha;
    }
    friend std::ostream& operator<<(std::ostream& stream, const MapLoopCall& call)
    {
        return stream << call.loop << "(dst " << call.dst << ", src " << call.src << ", map " << call.map
                      << ", pitches " << call.dstPitch << " " << call.srcPitch << " " << call.mapPitch << ", "
                      << call.width << "x" << call.height << ", alpha " << call.alpha << ")";
    }
};

//! Records the calls and passes them on. One at a time.
class MapLoopSpies
{
public:
    MapLoopSpies();
    ~MapLoopSpies();
    MapLoopSpies(const MapLoopSpies&)            = delete;
    MapLoopSpies& operator=(const MapLoopSpies&) = delete;

    const std::vector<MapLoopCall>& Calls() const;
    void                            Clear();
};

}  // namespace support

#endif
