// Trak_Counters: the counter pointers themselves, all null until profiling is switched on.
#include "Trak_Counters.h"

#define TRAK_DEFINE_PERF(name) Trak_PerfCounter* g_kPerf_##name = nullptr;
#define TRAK_DEFINE_STAT(name) Trak_StatCounter* g_kStat_##name = nullptr;
TRAK_COUNTER_LIST(TRAK_DEFINE_PERF, TRAK_DEFINE_STAT)
