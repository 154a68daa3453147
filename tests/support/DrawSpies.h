// DrawSpies: who did the work of a drawing call. LoopSpies stand in front of the loops of neonloops.h, PerfSpies in place
// of the performance counters; both put back what was there before at the end of their scope.
#ifndef DRAWSPIES_H
#define DRAWSPIES_H

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "neonloops.h"
#include "Trak_Counters.h"

namespace support
{

//! One call of a loop, with everything that was passed. What a loop does not have stays as it is here.
struct LoopCall
{
    const char*   loop     = "";
    const void*   dst      = nullptr;
    const void*   src      = nullptr;
    std::uint32_t dstPitch = 0;
    std::uint32_t srcPitch = 0;
    std::uint32_t width    = 0;
    std::uint32_t height   = 0;
    std::uint32_t color    = 0;
    int           alpha    = -1;

    friend bool operator==(const LoopCall& one, const LoopCall& other)
    {
        return std::string(one.loop) == other.loop && one.dst == other.dst && one.src == other.src &&
               one.dstPitch == other.dstPitch && one.srcPitch == other.srcPitch && one.width == other.width &&
               one.height == other.height && one.color == other.color && one.alpha == other.alpha;
    }
    friend std::ostream& operator<<(std::ostream& stream, const LoopCall& call)
    {
        return stream << call.loop << "(dst " << call.dst << ", src " << call.src << ", pitches " << call.dstPitch
                      << " " << call.srcPitch << ", " << call.width << "x" << call.height << ", colour " << std::hex
                      << call.color << std::dec << ", alpha " << call.alpha << ")";
    }
};

//! Records the calls and passes them on. One at a time.
class LoopSpies
{
public:
    LoopSpies();
    ~LoopSpies();
    LoopSpies(const LoopSpies&)            = delete;
    LoopSpies& operator=(const LoopSpies&) = delete;

    const std::vector<LoopCall>& Calls() const;
    void                         Clear();
};

struct PerfEvent
{
    const char* counter;
    bool        starts;
    float       value;
};

//! Records the starts and stops of all performance counters. One at a time.
class PerfSpies
{
public:
    PerfSpies();
    ~PerfSpies();
    PerfSpies(const PerfSpies&)            = delete;
    PerfSpies& operator=(const PerfSpies&) = delete;

    const std::vector<PerfEvent>& Events() const;
    void                          Clear();

    //! Called at every event, for tests that look at what has been drawn by then.
    std::function<void(const PerfEvent&)> onEvent;

    //! Whether this counter alone was started once, with 0, and then stopped once, with 1. "" for none at all.
    bool OnlyCounted(const std::string& counter) const;
};

}  // namespace support

#endif
