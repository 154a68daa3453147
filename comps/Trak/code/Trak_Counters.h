// Trak_Counters: the profiling hooks of the drawing code. Every counter of the library stands once in the list below and
// is a global pointer, null while profiling is off. Workers bracket themselves with Trak_PerfScope and add to statistics
// with Trak_Count; both test for null. Trak_Profiler.h switches counting on and reports.
#ifndef TRAK_COUNTERS_H
#define TRAK_COUNTERS_H

#include "Tov_Types.h"

// clang-format off
//! The one list: PERF(name) is a timed counter g_kPerf_<name>, STAT(name) a summed value g_kStat_<name>.
#define TRAK_COUNTER_LIST(PERF, STAT)                                                                                  \
    PERF(BitmapClear) PERF(DebugText)                                                                                  \
    PERF(Blit_CPY) PERF(Blit_INT) PERF(Blit_RGB) PERF(Blit_COLORINT) PERF(Blit_FILLRECT)                               \
    PERF(Blit_ALPHAINT) PERF(Blit_ALPHARGB)                                                                            \
    PERF(LineClipping) PERF(ThinLines) PERF(WideLines) PERF(Dots) PERF(Polygons)                                       \
    STAT(NumberOfLines) STAT(RejectedLines) STAT(LineWidth) STAT(LineLength)                                           \
    STAT(NumberOfDots) STAT(RejectedDot) STAT(DotRadius)                                                               \
    STAT(NumberOfPolygons) STAT(RejectedPolygons) STAT(PolyEdges) STAT(EdgeBuckets) STAT(CrossingEdges)
// clang-format on

//! A timed counter. What starting and stopping mean is the installed object's business; drawing code only calls them
//! in pairs, on one thread.
class Trak_PerfCounter
{
public:
    virtual ~Trak_PerfCounter() = default;
    //! Called with 0.0 before the work.
    virtual void Start(Tov_Value vValue) = 0;
    //! Called with 1.0, the count to add, after the work.
    virtual void Stop(Tov_Value vValue) = 0;
};

//! A statistic: a sum of what is added to it.
class Trak_StatCounter
{
public:
    virtual ~Trak_StatCounter() = default;
    //! Called with a count, 1.0 for an event, or a width or length in pixels.
    virtual void Add(Tov_Value vValue) = 0;
};

#define TRAK_DECLARE_PERF(name) extern Trak_PerfCounter* g_kPerf_##name;
#define TRAK_DECLARE_STAT(name) extern Trak_StatCounter* g_kStat_##name;
TRAK_COUNTER_LIST(TRAK_DECLARE_PERF, TRAK_DECLARE_STAT)
#undef TRAK_DECLARE_PERF
#undef TRAK_DECLARE_STAT

//! Times a scope: starts the counter here and stops it at the closing brace; does nothing where the counter is null.
class Trak_PerfScope
{
public:
    explicit Trak_PerfScope(Trak_PerfCounter* pkCounter) : m_pkCounter(pkCounter)
    {
        if (m_pkCounter != nullptr)
        {
            m_pkCounter->Start(0.0F);
        }
    }
    ~Trak_PerfScope()
    {
        if (m_pkCounter != nullptr)
        {
            m_pkCounter->Stop(1.0F);
        }
    }
    Trak_PerfScope(const Trak_PerfScope&)            = delete;
    Trak_PerfScope& operator=(const Trak_PerfScope&) = delete;

private:
    Trak_PerfCounter* m_pkCounter;
};

//! Adds vValue to a statistic that may be null.
inline void Trak_Count(Trak_StatCounter* pkCounter, Tov_Value vValue)
{
    if (pkCounter != nullptr)
    {
        pkCounter->Add(vValue);
    }
}

#endif
