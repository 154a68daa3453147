// Tests of the counters and the profiler. Time comes from a clock that the tests turn, so that every figure is known.
#include "Trak_Profiler.h"

#include <cctype>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "MemoryLimit.h"
#include "Scratch_Folder.h"
#include "Trak_Counters.h"

namespace
{

// ---- helpers --------------------------------------------------------------------------------------------------------

std::uint64_t s_now = 0;

std::uint64_t FakeClock()
{
    return s_now;
}

#define ENTRY_PERF(name) {#name, &g_kPerf_##name},
#define ENTRY_STAT(name) {#name, &g_kStat_##name},
#define NO_ENTRY(name)
const std::vector<std::pair<std::string, Trak_PerfCounter**>> PERF_COUNTERS{TRAK_COUNTER_LIST(ENTRY_PERF, NO_ENTRY)};
const std::vector<std::pair<std::string, Trak_StatCounter**>> STAT_COUNTERS{TRAK_COUNTER_LIST(NO_ENTRY, ENTRY_STAT)};
#undef ENTRY_PERF
#undef ENTRY_STAT
#undef NO_ENTRY

//! Profiling off before and after each test, and a clock at an odd hour.
class Profiler : public testing::Test
{
protected:
    Profiler()
    {
        Trak::DisableProfiling();
        s_now = 5000000000000007U;
    }
    ~Profiler() override { Trak::DisableProfiling(); }

    static void Spend(Trak_PerfCounter* counter, std::uint64_t nanoseconds)
    {
        const Trak_PerfScope scope(counter);
        s_now += nanoseconds;
    }

    static Trak::Summary SummaryOf(const std::string& name)
    {
        Trak::Summary summary{99, 99, 99.0};
        EXPECT_TRUE(Trak::GetSummary(name.c_str(), summary)) << name;
        return summary;
    }
};

std::string TableText()
{
    std::FILE* const file = std::tmpfile();
    Trak::PrintTable(file);
    std::string text(static_cast<std::size_t>(std::ftell(file)), '\0');
    std::rewind(file);
    EXPECT_EQ(std::fread(text.data(), 1, text.size(), file), text.size());
    std::fclose(file);
    return text;
}

//! The lines of the table: first word to the numbers in the line.
std::map<std::string, std::vector<double>> TableRows()
{
    std::map<std::string, std::vector<double>> rows;
    std::istringstream                         text(TableText());
    for (std::string line; std::getline(text, line);)
    {
        std::istringstream words(line);
        std::string        word;
        words >> word;
        std::vector<double>& numbers = rows[word];
        while (words >> word)
        {
            if (std::isdigit(static_cast<unsigned char>(word[0])) != 0)
                numbers.push_back(std::strtod(word.c_str(), nullptr));
        }
    }
    return rows;
}

//! A JSON value. Read throws std::string, a complaint, where the text is not JSON.
struct Json
{
    std::string              text;  // of a string
    double                   number = 0.0;
    std::vector<Json>        items;  // of an array or object
    std::vector<std::string> names;  // of an object, beside items

    const Json& operator[](const std::string& name) const
    {
        for (std::size_t index = 0; index < names.size(); ++index)
        {
            if (names[index] == name) return items[index];
        }
        throw "no member " + name;
    }

    static Json Read(const std::string& text)
    {
        const char* at     = text.c_str();
        Json        result = ReadValue(at);
        if (Peek(at) != '\0') throw std::string("text behind the value: ") + at;
        return result;
    }

private:
    static char Peek(const char*& at)
    {
        while (*at == ' ' || *at == '\n' || *at == '\t' || *at == '\r') ++at;
        return *at;
    }
    static void Expect(const char*& at, char expected)
    {
        if (Peek(at) != expected) throw std::string("expected ") + expected + " at " + at;
        ++at;
    }
    static std::string ReadString(const char*& at)
    {
        Expect(at, '"');
        std::string result;
        for (; *at != '"'; ++at)
        {
            if (static_cast<unsigned char>(*at) < 0x20 || *at == '\\') throw std::string("odd character in a string");
            result += *at;
        }
        ++at;
        return result;
    }
    static double ReadNumber(const char*& at)
    {
        const char* const begin = at;
        if (*at == '-') ++at;
        const char* const digits = at;
        while (std::isdigit(static_cast<unsigned char>(*at)) != 0) ++at;
        if (at == digits || (digits[0] == '0' && at - digits > 1)) throw std::string("no number at ") + begin;
        if (*at == '.')
        {
            const char* const decimals = ++at;
            while (std::isdigit(static_cast<unsigned char>(*at)) != 0) ++at;
            if (at == decimals) throw std::string("no decimals at ") + begin;
        }
        return std::strtod(begin, nullptr);
    }
    static Json ReadValue(const char*& at)
    {
        Json       result;
        const char kind = Peek(at);
        if (kind == '"')
        {
            result.text = ReadString(at);
        }
        else if (kind == '{' || kind == '[')
        {
            const char end = kind == '{' ? '}' : ']';
            ++at;
            while (Peek(at) != end)
            {
                if (!result.items.empty()) Expect(at, ',');
                if (kind == '{')
                {
                    result.names.push_back(ReadString(at));
                    Expect(at, ':');
                }
                result.items.push_back(ReadValue(at));
            }
            ++at;
        }
        else
        {
            result.number = ReadNumber(at);
        }
        return result;
    }
};

//! The trace as written to a file in folder.
Json WrittenTrace(const Scratch_Folder& folder)
{
    EXPECT_TRUE(Trak::WriteTrace(folder.Path("trace.json").c_str()));
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"trace.json"});
    const std::vector<std::uint8_t> bytes = folder.Read("trace.json");
    try
    {
        return Json::Read(std::string(bytes.begin(), bytes.end()));
    }
    catch (const std::string& complaint)
    {
        ADD_FAILURE() << complaint;
        return Json();
    }
}

// ---- counters -------------------------------------------------------------------------------------------------------

TEST(TheJsonReaderOfThisTest, RefusesWhatIsNotJson)
{
    for (const char* const text :
         {"", "{", "{\"a\":1,}", "[1 2]", "[01]", "[1.]", "[.5]", "{a:1}", "[1]]", "[\"a]", "[--1]"})
    {
        EXPECT_THROW(Json::Read(text), std::string) << text;
    }
    const Json good = Json::Read("{\"a\":[1,-2.50],\"b\":\"c\"}");
    EXPECT_EQ(good["a"].items[1].number, -2.5);
    EXPECT_EQ(good["b"].text, "c");
}

TEST_F(Profiler, CountersAreNullWhileProfilingIsOff)
{
    EXPECT_FALSE(Trak::IsProfiling());
    for (const auto& [name, counter] : PERF_COUNTERS) EXPECT_EQ(*counter, nullptr) << name;
    for (const auto& [name, counter] : STAT_COUNTERS) EXPECT_EQ(*counter, nullptr) << name;
    EXPECT_EQ(g_kPerf_BitmapClear, nullptr);
    EXPECT_EQ(g_kPerf_DebugText, nullptr);
    EXPECT_EQ(g_kPerf_Blit_CPY, nullptr);
    EXPECT_EQ(g_kPerf_Blit_INT, nullptr);
    EXPECT_EQ(g_kPerf_Blit_RGB, nullptr);
    EXPECT_EQ(g_kPerf_Blit_COLORINT, nullptr);
    EXPECT_EQ(g_kPerf_Blit_FILLRECT, nullptr);
}

TEST_F(Profiler, SwitchingOnInstallsEveryCounterAndOffRemovesThemAll)
{
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock));
    EXPECT_TRUE(Trak::IsProfiling());
    std::vector<const void*> objects;
    for (const auto& [name, counter] : PERF_COUNTERS) objects.push_back(*counter);
    for (const auto& [name, counter] : STAT_COUNTERS) objects.push_back(*counter);
    for (std::size_t one = 0; one < objects.size(); ++one)
    {
        EXPECT_NE(objects[one], nullptr);
        for (std::size_t other = 0; other < one; ++other) EXPECT_NE(objects[one], objects[other]);
    }
    Trak::DisableProfiling();
    EXPECT_FALSE(Trak::IsProfiling());
    for (const auto& [name, counter] : PERF_COUNTERS) EXPECT_EQ(*counter, nullptr) << name;
    for (const auto& [name, counter] : STAT_COUNTERS) EXPECT_EQ(*counter, nullptr) << name;
    Trak::DisableProfiling();  // once more does no harm
}

class RecordingPerf : public Trak_PerfCounter
{
public:
    void Start(Tov_Value vValue) override { calls << "start " << vValue << " "; }
    void Stop(Tov_Value vValue) override { calls << "stop " << vValue << " "; }

    std::ostringstream calls;
};

class RecordingStat : public Trak_StatCounter
{
public:
    void Add(Tov_Value vValue) override { calls << "add " << vValue << " "; }

    std::ostringstream calls;
};

TEST_F(Profiler, AScopeStartsWithZeroAndStopsWithOneAtTheBrace)
{
    RecordingPerf counter;
    {
        const Trak_PerfScope scope(&counter);
        counter.calls << "work ";
    }
    EXPECT_EQ(counter.calls.str(), "start 0 work stop 1 ");
}

TEST_F(Profiler, AScopeStopsTheCounterThatItStarted)
{
    RecordingPerf     first;
    RecordingPerf     second;
    Trak_PerfCounter* installed = &first;
    {
        const Trak_PerfScope scope(installed);
        installed = &second;
    }
    EXPECT_EQ(first.calls.str(), "start 0 stop 1 ");
    EXPECT_EQ(second.calls.str(), "");
}

TEST_F(Profiler, NullCountersAreLeftAlone)
{
    {
        const Trak_PerfScope scope(nullptr);
        Trak_Count(nullptr, 1.0F);
    }
    RecordingStat statistic;
    Trak_Count(&statistic, 2.5F);
    EXPECT_EQ(statistic.calls.str(), "add 2.5 ");
}

// ---- summaries and table --------------------------------------------------------------------------------------------

TEST_F(Profiler, SumsCallsAndTimeOfEachCounterByItself)
{
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock));
    Spend(g_kPerf_Blit_RGB, 1500);
    s_now += 1000000;  // between the scopes
    Spend(g_kPerf_Blit_RGB, 2501);
    Spend(g_kPerf_BitmapClear, 7);
    Trak_Count(g_kStat_NumberOfLines, 1.0F);
    Trak_Count(g_kStat_NumberOfLines, 1.0F);
    Trak_Count(g_kStat_LineLength, 2.25F);
    Trak_Count(g_kStat_LineLength, -0.5F);

    const Trak::Summary blit = SummaryOf("Blit_RGB");
    EXPECT_EQ(blit.uiCalls, 2U);
    EXPECT_EQ(blit.uiTotalNs, 4001U);
    EXPECT_EQ(blit.dSum, 2.0);
    const Trak::Summary clear = SummaryOf("BitmapClear");
    EXPECT_EQ(clear.uiCalls, 1U);
    EXPECT_EQ(clear.uiTotalNs, 7U);
    EXPECT_EQ(clear.dSum, 1.0);
    const Trak::Summary lines = SummaryOf("NumberOfLines");
    EXPECT_EQ(lines.uiCalls, 2U);
    EXPECT_EQ(lines.uiTotalNs, 0U);
    EXPECT_EQ(lines.dSum, 2.0);
    const Trak::Summary length = SummaryOf("LineLength");
    EXPECT_EQ(length.uiCalls, 2U);
    EXPECT_EQ(length.dSum, 1.75);
    EXPECT_EQ(SummaryOf("DebugText").uiCalls, 0U);
}

TEST_F(Profiler, EveryCounterOfTheListIsFoundUnderItsOwnName)
{
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock));
    std::uint64_t amount = 1;
    for (const auto& [name, counter] : PERF_COUNTERS) Spend(*counter, amount++);
    for (const auto& [name, counter] : STAT_COUNTERS) Trak_Count(*counter, static_cast<Tov_Value>(amount++));
    amount = 1;
    for (const auto& [name, counter] : PERF_COUNTERS) EXPECT_EQ(SummaryOf(name).uiTotalNs, amount++) << name;
    for (const auto& [name, counter] : STAT_COUNTERS)
        EXPECT_EQ(SummaryOf(name).dSum, static_cast<double>(amount++)) << name;
}

TEST_F(Profiler, AnUnknownNameAndProfilingOffLeaveTheSummaryAlone)
{
    Trak::Summary summary{1, 2, 3.0};
    EXPECT_FALSE(Trak::GetSummary("Blit_RGB", summary));
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock));
    for (const char* const name : {"", "Blit", "Blit_RGB2", "g_kPerf_Blit_RGB", "blit_rgb"})
    {
        EXPECT_FALSE(Trak::GetSummary(name, summary)) << name;
    }
    EXPECT_EQ(summary.uiCalls, 1U);
    EXPECT_EQ(summary.uiTotalNs, 2U);
    EXPECT_EQ(summary.dSum, 3.0);
}

TEST_F(Profiler, SwitchingOnTwiceStartsAfresh)
{
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock));
    Spend(g_kPerf_Blit_CPY, 10);
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock));
    EXPECT_EQ(SummaryOf("Blit_CPY").uiCalls, 0U);
    const Scratch_Folder folder;
    EXPECT_TRUE(WrittenTrace(folder)["traceEvents"].items.empty());
}

TEST_F(Profiler, WithoutMemoryForTheTraceItIsOffAsIfItHadNeverBeenOn)
{
    if (!support::MemoryLimit::IsPossible()) GTEST_SKIP() << "no limit under this sanitizer";
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock));
    bool enabled = true;
    {
        const support::MemoryLimit limit;
        ASSERT_TRUE(limit.IsSet());
        enabled = Trak::EnableProfiling(&FakeClock, 100000000);
    }
    EXPECT_FALSE(enabled);
    EXPECT_FALSE(Trak::IsProfiling());
    for (const auto& [name, counter] : PERF_COUNTERS) EXPECT_EQ(*counter, nullptr) << name;
    for (const auto& [name, counter] : STAT_COUNTERS) EXPECT_EQ(*counter, nullptr) << name;
    EXPECT_TRUE(Trak::EnableProfiling(&FakeClock));
}

TEST_F(Profiler, TheTableListsWhatWasUsedWithExactFigures)
{
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock));
    Spend(g_kPerf_DebugText, 1000);
    Spend(g_kPerf_DebugText, 2500);
    Spend(g_kPerf_Blit_INT, 0);
    Trak_Count(g_kStat_DotRadius, 1.5F);
    Trak_Count(g_kStat_DotRadius, 3.0F);

    // Calls, total and mean: of times in microseconds, of statistics in their own unit.
    const std::map<std::string, std::vector<double>> rows = TableRows();
    EXPECT_EQ(rows.size(), 4U) << TableText();  // and a heading
    ASSERT_EQ(rows.count("DebugText"), 1U);
    EXPECT_EQ(rows.at("DebugText"), (std::vector<double>{2, 3.5, 1.75}));
    ASSERT_EQ(rows.count("Blit_INT"), 1U);
    EXPECT_EQ(rows.at("Blit_INT"), (std::vector<double>{1, 0, 0}));
    ASSERT_EQ(rows.count("DotRadius"), 1U);
    EXPECT_EQ(rows.at("DotRadius"), (std::vector<double>{2, 4.5, 2.25}));
}

TEST_F(Profiler, TheTableSaysInOneLineThatProfilingIsOff)
{
    const std::string text = TableText();
    EXPECT_NE(text.find("off"), std::string::npos);
    EXPECT_EQ(text.find('\n'), text.size() - 1);
}

TEST_F(Profiler, TheHostsOwnClockRunsForwards)
{
    ASSERT_TRUE(Trak::EnableProfiling());
    std::uint64_t total = 0;
    for (int turn = 0; turn < 1000000 && total == 0; ++turn)
    {
        {
            const Trak_PerfScope scope(g_kPerf_Dots);
        }
        total = SummaryOf("Dots").uiTotalNs;
    }
    EXPECT_GT(total, 0U);
    EXPECT_LT(total, 60000000000U);
}

// ---- trace ----------------------------------------------------------------------------------------------------------

TEST_F(Profiler, TheTraceIsValidJsonWithOneCompleteEventPerScope)
{
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock));
    Spend(g_kPerf_Blit_CPY, 1234);
    s_now += 1000000;
    Spend(g_kPerf_Blit_FILLRECT, 5);

    const Scratch_Folder folder;
    const Json           trace  = WrittenTrace(folder);
    const Json&          events = trace["traceEvents"];
    ASSERT_EQ(events.items.size(), 2U);
    for (const Json& event : events.items)
    {
        EXPECT_EQ(event["ph"].text, "X");
        EXPECT_EQ(event["pid"].number, events.items[0]["pid"].number);
        EXPECT_EQ(event["tid"].number, events.items[0]["tid"].number);
    }
    EXPECT_EQ(events.items[0]["name"].text, "Blit_CPY");
    EXPECT_DOUBLE_EQ(events.items[0]["dur"].number, 1.234);
    EXPECT_EQ(events.items[1]["name"].text, "Blit_FILLRECT");
    EXPECT_DOUBLE_EQ(events.items[1]["dur"].number, 0.005);
    EXPECT_DOUBLE_EQ(events.items[1]["ts"].number - events.items[0]["ts"].number, 1001.234);
    EXPECT_EQ(trace["otherData"]["droppedEvents"].number, 0.0);
}

TEST_F(Profiler, NestedScopesLieInsideEachOtherInTheTrace)
{
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock));
    {
        const Trak_PerfScope outer(g_kPerf_Polygons);
        s_now += 1001;
        {
            const Trak_PerfScope inner(g_kPerf_ThinLines);
            s_now += 2002;
        }
        s_now += 3003;
    }
    const Scratch_Folder folder;
    const Json           trace = WrittenTrace(folder);
    ASSERT_EQ(trace["traceEvents"].items.size(), 2U);
    const Json& inner = trace["traceEvents"].items[0];  // in the order in which they ended
    const Json& outer = trace["traceEvents"].items[1];
    EXPECT_EQ(inner["name"].text, "ThinLines");
    EXPECT_EQ(outer["name"].text, "Polygons");
    EXPECT_DOUBLE_EQ(inner["ts"].number - outer["ts"].number, 1.001);
    EXPECT_DOUBLE_EQ(inner["dur"].number, 2.002);
    EXPECT_DOUBLE_EQ(outer["dur"].number, 6.006);
    EXPECT_EQ(SummaryOf("Polygons").uiTotalNs, 6006U);
}

TEST_F(Profiler, EventsBeyondTheCapacityAreCountedAndLeaveNoTrace)
{
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock, 3));
    for (std::uint64_t turn = 1; turn <= 10; ++turn) Spend(g_kPerf_Dots, turn);
    const Scratch_Folder folder;
    const Json           trace = WrittenTrace(folder);
    ASSERT_EQ(trace["traceEvents"].items.size(), 3U);
    EXPECT_DOUBLE_EQ(trace["traceEvents"].items[2]["dur"].number, 0.003);
    EXPECT_EQ(trace["otherData"]["droppedEvents"].number, 7.0);
    EXPECT_EQ(SummaryOf("Dots").uiCalls, 10U);
    EXPECT_EQ(SummaryOf("Dots").uiTotalNs, 55U);
}

TEST_F(Profiler, ATraceWithoutRoomCountsAllTheSame)
{
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock, 0));
    Spend(g_kPerf_Dots, 4);
    const Scratch_Folder folder;
    const Json           trace = WrittenTrace(folder);
    EXPECT_TRUE(trace["traceEvents"].items.empty());
    EXPECT_EQ(trace["otherData"]["droppedEvents"].number, 1.0);
    EXPECT_EQ(SummaryOf("Dots").uiTotalNs, 4U);
}

TEST_F(Profiler, WritingReplacesAnOlderTrace)
{
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock));
    const Scratch_Folder folder;
    folder.Write("trace.json", std::vector<std::uint8_t>(10000, 'x'));
    Spend(g_kPerf_Dots, 4);
    EXPECT_EQ(WrittenTrace(folder)["traceEvents"].items.size(), 1U);
}

TEST_F(Profiler, WhereTheTraceCannotBeWrittenTheAnswerIsFalseAndNoFileIsLeft)
{
    const Scratch_Folder folder;
    EXPECT_FALSE(Trak::WriteTrace(folder.Path("off.json").c_str()));  // profiling is off

    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock));
    Spend(g_kPerf_Dots, 4);
    EXPECT_FALSE(Trak::WriteTrace(folder.Path("no/such/folder.json").c_str()));
    EXPECT_FALSE(Trak::WriteTrace(folder.Path(std::string(5000, 'n')).c_str()));
    EXPECT_FALSE(Trak::WriteTrace(""));
    EXPECT_TRUE(folder.Names().empty());

    std::filesystem::create_directory(folder.Path("taken"));  // a folder cannot be replaced by a file
    EXPECT_FALSE(Trak::WriteTrace(folder.Path("taken").c_str()));
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"taken"});
}

TEST_F(Profiler, AFullDiskGivesFalseAndLeavesNoFile)
{
    ASSERT_TRUE(Trak::EnableProfiling(&FakeClock));
    for (int turn = 0; turn < 5000; ++turn) Spend(g_kPerf_Dots, 4);
    const Scratch_Folder folder;

    // A limit on file sizes fails writes as a full disk does, once its signal is ignored.
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit small             = before;
    small.rlim_cur           = 1000;
    const auto signalHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool written = Trak::WriteTrace(folder.Path("trace.json").c_str());
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, signalHandler);

    EXPECT_FALSE(written);
    EXPECT_TRUE(folder.Names().empty());
}

}  // namespace
