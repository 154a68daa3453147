// Trak_Profiler: counters that sum calls and time, the trace they record, and the two reports.
#include "Trak_Profiler.h"

#include <algorithm>
#include <chrono>
#include <cinttypes>
#include <cstring>
#include <new>

#include "Trak_Counters.h"

namespace
{

struct TraceEvent
{
    const char*   pcName;
    std::uint64_t uiStart;  // nanoseconds of the clock
    std::uint64_t uiDuration;
};

//! All that exists only while profiling is on.
struct TraceBuffer
{
    Trak_Clock    pfnClock   = nullptr;
    TraceEvent*   pkEvents   = nullptr;
    Tov_UInt      uiCapacity = 0;
    Tov_UInt      uiUsed     = 0;
    std::uint64_t uiDropped  = 0;
};

std::uint64_t SteadyClock()
{
    const auto kNow = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(kNow).count());
}

class TimedCounter final : public Trak_PerfCounter
{
public:
    void Attach(const char* pcName, TraceBuffer* pkTrace)
    {
        m_pcName  = pcName;
        m_pkTrace = pkTrace;
    }

    void Start(Tov_Value /*vValue*/) override { m_uiStart = m_pkTrace->pfnClock(); }

    void Stop(Tov_Value vValue) override
    {
        const std::uint64_t uiDuration = m_pkTrace->pfnClock() - m_uiStart;
        m_kSummary.uiCalls++;
        m_kSummary.uiTotalNs += uiDuration;
        m_kSummary.dSum += static_cast<double>(vValue);
        if (m_pkTrace->uiUsed < m_pkTrace->uiCapacity)
        {
            m_pkTrace->pkEvents[m_pkTrace->uiUsed++] = {m_pcName, m_uiStart, uiDuration};
        }
        else
        {
            m_pkTrace->uiDropped++;
        }
    }

    const Trak::Summary& GetSummary() const { return m_kSummary; }

private:
    const char*   m_pcName  = "";
    TraceBuffer*  m_pkTrace = nullptr;
    std::uint64_t m_uiStart = 0;
    Trak::Summary m_kSummary{};
};

class SumCounter final : public Trak_StatCounter
{
public:
    void Add(Tov_Value vValue) override
    {
        m_kSummary.uiCalls++;
        m_kSummary.dSum += static_cast<double>(vValue);
    }

    const Trak::Summary& GetSummary() const { return m_kSummary; }

private:
    Trak::Summary m_kSummary{};
};

//! One object per entry of the list, under the entry's own name.
struct CounterSet
{
    TraceBuffer kTrace;
#define TRAK_PERF_MEMBER(name) TimedCounter kPerf_##name;
#define TRAK_STAT_MEMBER(name) SumCounter kStat_##name;
    TRAK_COUNTER_LIST(TRAK_PERF_MEMBER, TRAK_STAT_MEMBER)
#undef TRAK_PERF_MEMBER
#undef TRAK_STAT_MEMBER
};

CounterSet* g_pkSet = nullptr;

//! Calls Visit(name, is timed, summary) for every counter, in the order of the list.
template <typename Visit>
void ForEachCounter(const CounterSet& kSet, Visit kVisit)
{
#define TRAK_VISIT_PERF(name) kVisit(#name, true, kSet.kPerf_##name.GetSummary());
#define TRAK_VISIT_STAT(name) kVisit(#name, false, kSet.kStat_##name.GetSummary());
    TRAK_COUNTER_LIST(TRAK_VISIT_PERF, TRAK_VISIT_STAT)
#undef TRAK_VISIT_PERF
#undef TRAK_VISIT_STAT
}

void WriteEvents(std::FILE* pkFile, const TraceBuffer& kTrace)
{
    // Events stand in the order of their ends; time counts from the first start.
    std::uint64_t uiOrigin = UINT64_MAX;
    for (Tov_UInt uiEvent = 0; uiEvent < kTrace.uiUsed; ++uiEvent)
    {
        uiOrigin = std::min(uiOrigin, kTrace.pkEvents[uiEvent].uiStart);
    }
    std::fprintf(pkFile, "{\"traceEvents\":[\n");
    for (Tov_UInt uiEvent = 0; uiEvent < kTrace.uiUsed; ++uiEvent)
    {
        const TraceEvent&   kEvent  = kTrace.pkEvents[uiEvent];
        const std::uint64_t uiStart = kEvent.uiStart - uiOrigin;  // nanoseconds, written as decimal microseconds
        std::fprintf(pkFile,
                     "{\"name\":\"%s\",\"cat\":\"draw\",\"ph\":\"X\",\"pid\":1,\"tid\":1,"
                     "\"ts\":%" PRIu64 ".%03d,\"dur\":%" PRIu64 ".%03d}%s\n",
                     kEvent.pcName, uiStart / 1000, static_cast<int>(uiStart % 1000), kEvent.uiDuration / 1000,
                     static_cast<int>(kEvent.uiDuration % 1000), uiEvent + 1 < kTrace.uiUsed ? "," : "");
    }
    std::fprintf(pkFile, "],\"displayTimeUnit\":\"ns\",\"otherData\":{\"droppedEvents\":%" PRIu64 "}}\n",
                 kTrace.uiDropped);
}

}  // namespace

Tov_Bool Trak::EnableProfiling(Trak_Clock pfnClock, Tov_UInt uiTraceEvents)
{
    DisableProfiling();
    auto* const pkSet    = new (std::nothrow) CounterSet;
    auto* const pkEvents = new (std::nothrow) TraceEvent[uiTraceEvents > 0 ? uiTraceEvents : 1];
    if (pkSet == nullptr || pkEvents == nullptr)
    {
        delete pkSet;
        delete[] pkEvents;
        return false;
    }
    pkSet->kTrace.pfnClock   = pfnClock != nullptr ? pfnClock : &SteadyClock;
    pkSet->kTrace.pkEvents   = pkEvents;
    pkSet->kTrace.uiCapacity = uiTraceEvents;
    g_pkSet                  = pkSet;
#define TRAK_INSTALL_PERF(name)                        \
    pkSet->kPerf_##name.Attach(#name, &pkSet->kTrace); \
    g_kPerf_##name = &pkSet->kPerf_##name;
#define TRAK_INSTALL_STAT(name) g_kStat_##name = &pkSet->kStat_##name;
    TRAK_COUNTER_LIST(TRAK_INSTALL_PERF, TRAK_INSTALL_STAT)
#undef TRAK_INSTALL_PERF
#undef TRAK_INSTALL_STAT
    return true;
}

void Trak::DisableProfiling()
{
    if (g_pkSet == nullptr)
    {
        return;
    }
#define TRAK_REMOVE_PERF(name) g_kPerf_##name = nullptr;
#define TRAK_REMOVE_STAT(name) g_kStat_##name = nullptr;
    TRAK_COUNTER_LIST(TRAK_REMOVE_PERF, TRAK_REMOVE_STAT)
#undef TRAK_REMOVE_PERF
#undef TRAK_REMOVE_STAT
    delete[] g_pkSet->kTrace.pkEvents;
    delete g_pkSet;
    g_pkSet = nullptr;
}

Tov_Bool Trak::IsProfiling()
{
    return g_pkSet != nullptr;
}

Tov_Bool Trak::GetSummary(const char* pcName, Summary& kSummary)
{
    Tov_Bool bFound = false;
    if (g_pkSet != nullptr)
    {
        ForEachCounter(*g_pkSet,
                       [&](const char* pcCounter, Tov_Bool /*bTimed*/, const Summary& kCounter)
                       {
                           if (std::strcmp(pcName, pcCounter) == 0)
                           {
                               kSummary = kCounter;
                               bFound   = true;
                           }
                       });
    }
    return bFound;
}

void Trak::PrintTable(std::FILE* pkFile)
{
    if (g_pkSet == nullptr)
    {
        std::fprintf(pkFile, "profiling is off\n");
        return;
    }
    std::fprintf(pkFile, "%-20s %12s %14s %14s\n", "counter", "calls", "total", "mean");
    ForEachCounter(*g_pkSet,
                   [&](const char* pcCounter, Tov_Bool bTimed, const Summary& kCounter)
                   {
                       if (kCounter.uiCalls == 0)
                       {
                           return;
                       }
                       const double dCalls = static_cast<double>(kCounter.uiCalls);
                       const double dTotal = bTimed ? static_cast<double>(kCounter.uiTotalNs) / 1000.0 : kCounter.dSum;
                       std::fprintf(pkFile, "%-20s %12" PRIu64 " %11.3f%s %11.3f%s\n", pcCounter, kCounter.uiCalls,
                                    dTotal, bTimed ? " us" : "   ", dTotal / dCalls, bTimed ? " us" : "   ");
                   });
}

Tov_Bool Trak::WriteTrace(const char* pcPath)
{
    char acTemporary[512];
    if (g_pkSet == nullptr ||
        std::snprintf(acTemporary, sizeof acTemporary, "%s.part", pcPath) >= static_cast<int>(sizeof acTemporary))
    {
        return false;
    }
    std::FILE* const pkFile = std::fopen(acTemporary, "w");
    if (pkFile == nullptr)
    {
        return false;
    }
    WriteEvents(pkFile, g_pkSet->kTrace);
    const bool bWritten = std::ferror(pkFile) == 0;
    if (std::fclose(pkFile) != 0 || !bWritten || std::rename(acTemporary, pcPath) != 0)
    {
        std::remove(acTemporary);
        return false;
    }
    return true;
}
