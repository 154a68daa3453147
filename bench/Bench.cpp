// kanvo-bench: how fast the library draws, beside memset or memcpy of the same rectangle and, where asked for, beside
// its peers, all in one process and in the same rounds. Bench_Case says what is drawn, Bench_Kanvo and peers/ draw,
// Bench_Check looks at the results, Bench_Rounds takes the time; here is the command line, and the reports.
//
// Exit codes: 0 done; 1 the library drew something else than it should, or a file cannot be written; 2 the command line
// is wrong.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "Bench_Check.h"
#include "Bench_Contender.h"
#include "Bench_Rounds.h"

namespace
{

struct Options
{
    std::string   filter;
    std::string   json;
    bool          peers = false;
    bool          quick = false;
    bool          list  = false;
    bench::Effort effort;
};

//! One contender in one case.
struct Result
{
    std::string contender;
    double      minimum, median;  //!< nanoseconds per operation
    double      pixelsPerSecond;
    double      ratio;  //!< of its pixels per second to those of the yardstick
    std::string note;
    bool        isExact;
    bool        isLess;  //!< no measure of the case
};

struct Report
{
    bench::Case         kind;
    double              pixels;
    double              memory;  //!< pixels per second of the yardstick
    std::vector<Result> results;
};

bool Parse(int argc, char** argv, Options& options, int& exitCode)
{
    CLI::App app(
        "Measures drawing operations: million pixels per second or nanoseconds per shape, and how much that is\n"
        "of what memset or memcpy reach with the same rectangle in the same rounds.",
        "kanvo-bench");
    app.add_option("--filter", options.filter, "only cases whose name this regular expression is found in")
        ->type_name("REGEX");
    app.add_flag("--peers", options.peers, "measure other libraries too (configured with KANVO_BENCH_PEERS)");
    app.add_option("--json", options.json, "also write all figures into a file")->type_name("FILE");
    app.add_flag("--quick", options.quick, "one short round, small targets: whether it works, not how fast it is");
    app.add_flag("--list", options.list, "only print the names of the cases");
    app.add_option("--rounds", options.effort.rounds, "how often every contender has its turn")
        ->capture_default_str()
        ->check(CLI::Range(1, 1000));
    app.add_option("--ms", options.effort.milliseconds, "how long a turn takes")
        ->capture_default_str()
        ->check(CLI::Range(0.01, 1000.0));
    try
    {
        app.parse(argc, argv);
        const std::regex valid(options.filter);
    }
    catch (const CLI::ParseError& error)
    {
        exitCode = app.exit(error) == 0 ? 0 : 2;
        return false;
    }
    catch (const std::regex_error&)
    {
        std::fprintf(stderr, "kanvo-bench: no regular expression: %s\n", options.filter.c_str());
        exitCode = 2;
        return false;
    }
    if (options.quick) options.effort = {1, 0.05};
    return true;
}

std::vector<bench::Case> Chosen(const Options& options)
{
    const std::regex         filter(options.filter);
    std::vector<bench::Case> cases;
    for (bench::Case& c : bench::AllCases())
    {
        if (options.quick && c.targetWidth > 1000) continue;
        if (std::regex_search(c.name, filter)) cases.push_back(std::move(c));
    }
    return cases;
}

bool IsKanvo(const std::string& name)
{
    return name.rfind("Kanvo", 0) == 0;
}

//! Checks and times everybody in one case. `allRight` becomes false where the library itself is not.
Report Run(const bench::Case& kind, const bench::Contenders& contenders, const Options& options, bool& allRight)
{
    const bench::Input input     = bench::MakeInput(kind);
    bench::Yardstick   yardstick = bench::MakeYardstick(input);
    Report             report{kind, input.pixels, 0, {}};

    std::vector<bench::Job>   jobs;
    std::vector<bench::Entry> entries = yardstick.entries;
    for (const auto& contender : contenders)
    {
        bench::Job job = contender->Prepare(input);
        if (!job) continue;
        const bench::Finding finding = bench::Check(input, job);
        std::string          note    = job.note;
        if (finding.verdict != bench::Verdict::Right) note += (note.empty() ? "" : "; ") + finding.reason;
        if (finding.verdict == bench::Verdict::Wrong && !job.isLess)
        {
            std::fprintf(stderr, "kanvo-bench: %s: %s draws something else: %s\n", kind.name.c_str(),
                         contender->Name().c_str(), finding.reason.c_str());
            if (IsKanvo(contender->Name())) allRight = false;
            continue;
        }
        const bool isExact = finding.verdict == bench::Verdict::Right;
        report.results.push_back({contender->Name(), 0, 0, 0, 0, note, isExact, job.isLess});
        entries.push_back({job.run, kind.repeats, 0, 0});
        jobs.push_back(std::move(job));
    }

    bench::Measure(entries, options.effort);
    double memory = 0;
    for (std::size_t i = 0; i < yardstick.entries.size(); ++i)
    {
        memory = std::max(memory, yardstick.pixels / entries[i].minimum * 1e9);
    }
    report.memory = memory;
    for (std::size_t i = 0; i < report.results.size(); ++i)
    {
        const bench::Entry& entry = entries[yardstick.entries.size() + i];
        Result&             r     = report.results[i];
        r.minimum                 = entry.minimum;
        r.median                  = entry.median;
        r.pixelsPerSecond         = input.pixels / entry.minimum * 1e9;
        r.ratio                   = r.pixelsPerSecond / memory;
    }
    return report;
}

void Print(const Report& report)
{
    std::printf("%s   [%s %.0f Mpixel/s]\n", report.kind.name.c_str(), report.kind.BesideMemset() ? "memset" : "memcpy",
                report.memory / 1e6);
    for (const Result& r : report.results)
    {
        std::printf("    %-24s %12.1f ns %10.1f Mpixel/s   ratio %6.3g   median %12.1f ns  %s%s\n", r.contender.c_str(),
                    r.minimum, r.pixelsPerSecond / 1e6, r.ratio, r.median,
                    r.isLess    ? "(does less) "
                    : r.isExact ? ""
                                : "(inexact) ",
                    r.note.c_str());
    }
    std::fflush(stdout);
}

std::string Quoted(const std::string& text)
{
    std::string quoted = "\"";
    for (const char c : text)
    {
        if (c == '"' || c == '\\') quoted += '\\';
        if (static_cast<unsigned char>(c) >= 0x20) quoted += c;
    }
    return quoted + '"';
}

//! As /proc/cpuinfo names it; "unknown" elsewhere.
std::string Processor()
{
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);)
    {
        const std::size_t colon = line.find(": ");
        if (line.rfind("model name", 0) == 0 && colon != std::string::npos) return line.substr(colon + 2);
    }
    return "unknown";
}

std::string Number(double value)
{
    std::ostringstream text;
    text.precision(6);
    text << value;
    return text.str();
}

std::string Json(const std::vector<Report>& reports, const bench::Contenders& contenders, const Options& options)
{
    char              date[16] = "";
    const std::time_t now      = std::time(nullptr);
    std::strftime(date, sizeof date, "%Y-%m-%d", std::gmtime(&now));

    std::string text = "{\n  \"date\": " + Quoted(date) + ",\n  \"processor\": " + Quoted(Processor()) +
                       ",\n  \"compiler\": " + Quoted(KANVO_BENCH_COMPILER) +
                       ",\n  \"rounds\": " + std::to_string(options.effort.rounds) +
                       ",\n  \"milliseconds\": " + Number(options.effort.milliseconds) + ",\n  \"contenders\": [";
    const char* separator = "\n";
    for (const auto& contender : contenders)
    {
        text += separator;
        text += "    {\"name\": " + Quoted(contender->Name()) + ", \"version\": " + Quoted(contender->Version()) +
                ", \"peer\": " + (IsKanvo(contender->Name()) ? "false" : "true") + "}";
        separator = ",\n";
    }
    text += "\n  ],\n  \"cases\": [";
    separator = "\n";
    for (const Report& report : reports)
    {
        text += separator;
        text += "    {\"name\": " + Quoted(report.kind.name) + ", \"group\": " + Quoted(report.kind.group) +
                ", \"shape\": " + (report.kind.IsShape() ? "true" : "false") +
                ", \"pixels\": " + Number(report.pixels) +
                ", \"memory\": " + Quoted(report.kind.BesideMemset() ? "memset" : "memcpy") +
                ", \"memory_mpixels\": " + Number(report.memory / 1e6) + ", \"results\": [";
        const char* comma = "\n";
        for (const Result& r : report.results)
        {
            text += comma;
            text += "      {\"contender\": " + Quoted(r.contender) + ", \"ns_min\": " + Number(r.minimum) +
                    ", \"ns_median\": " + Number(r.median) + ", \"mpixels\": " + Number(r.pixelsPerSecond / 1e6) +
                    ", \"ratio\": " + Number(r.ratio) + ", \"exact\": " + (r.isExact ? "true" : "false") +
                    ", \"less\": " + (r.isLess ? "true" : "false") + ", \"note\": " + Quoted(r.note) + "}";
            comma = ",\n";
        }
        text += "\n    ]}";
        separator = ",\n";
    }
    return text + "\n  ]\n}\n";
}

}  // namespace

int main(int argc, char** argv)
{
    Options options;
    int     exitCode = 0;
    if (!Parse(argc, argv, options, exitCode)) return exitCode;

    const std::vector<bench::Case> cases = Chosen(options);
    if (options.list)
    {
        for (const bench::Case& c : cases) std::printf("%s\n", c.name.c_str());
        return 0;
    }
    if (cases.empty())
    {
        std::fprintf(stderr, "kanvo-bench: no case is named like %s\n", options.filter.c_str());
        return 2;
    }

    bench::Contenders contenders = bench::KanvoContenders();
    if (options.peers)
    {
        bench::Contenders peers = bench::PeerContenders();
        if (peers.empty())
        {
            std::fprintf(stderr, "kanvo-bench: built without peers: configure with -DKANVO_BENCH_PEERS=ON\n");
            return 2;
        }
        std::move(peers.begin(), peers.end(), std::back_inserter(contenders));
    }

    bool                allRight = true;
    std::vector<Report> reports;
    for (const bench::Case& c : cases)
    {
        reports.push_back(Run(c, contenders, options, allRight));
        Print(reports.back());
    }
    if (!options.json.empty())
    {
        std::ofstream file(options.json);
        if (!(file << Json(reports, contenders, options)) || !file.flush())
        {
            std::fprintf(stderr, "kanvo-bench: cannot write %s\n", options.json.c_str());
            return 1;
        }
    }
    return allRight ? 0 : 1;
}
