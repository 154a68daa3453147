// Trak_Profiler: switches the counters of Trak_Counters.h on and off and reports what they saw, as a table or as a trace
// that chrome://tracing and Perfetto open. Uses the heap and the C file functions; drawing code never includes it.
#ifndef TRAK_PROFILER_H
#define TRAK_PROFILER_H

#include <cstdint>
#include <cstdio>

#include "Tov_Types.h"

//! Monotonic time in nanoseconds from any origin.
using Trak_Clock = std::uint64_t (*)();

//! The profiler of the whole program; there is one set of counters, so everything here is static. Not thread-safe, as
//! drawing is not.
class Trak
{
public:
    //! What one counter saw since profiling was switched on.
    struct Summary
    {
        std::uint64_t uiCalls;    //!< timed scopes finished, or values added
        std::uint64_t uiTotalNs;  //!< nanoseconds inside the scopes; 0 for a statistic
        double        dSum;  //!< sum of the values: the stop values of a timed counter, the added ones of a statistic
    };

    //! Allocates every counter and installs it. pfnClock: the time source, null for the host's steady clock.
    //! uiTraceEvents: how many finished scopes the trace keeps (memory is taken now; later scopes are counted but leave
    //! no event). Switching on twice starts afresh. Returns false, with profiling off, where memory does not suffice.
    static Tov_Bool EnableProfiling(Trak_Clock pfnClock = nullptr, Tov_UInt uiTraceEvents = 16384);

    //! Sets every counter pointer back to null and frees the counters and the trace. Must not be called between the
    //! start and the stop of a scope.
    static void DisableProfiling();

    static Tov_Bool IsProfiling();

    //! Looks a counter up by its name without prefix, "Blit_RGB" for g_kPerf_Blit_RGB. Returns false, leaving kSummary
    //! alone, where there is no such counter or profiling is off.
    static Tov_Bool GetSummary(const char* pcName, Summary& kSummary);

    //! Prints one line per counter that was used (calls, total, mean; sum and mean for statistics), or one line saying
    //! that profiling is off.
    static void PrintTable(std::FILE* pkFile);

    //! Writes the recorded scopes as trace events (JSON, microseconds). The file is written beside its final name and
    //! then renamed. Returns false, with no file left behind, where profiling is off or the disk refuses.
    static Tov_Bool WriteTrace(const char* pcPath);
};

#endif
