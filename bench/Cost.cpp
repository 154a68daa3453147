// kanvo-cost: draws a fixed selection of the cases of kanvo-bench a fixed number of times, for valgrind to count the
// instructions. tools/check_costs.py runs it and compares the counts with the table COSTS beside this file: time needs
// a quiet machine, a count does not.
//
// Prints what the counts depend on, and what each of them must be divided by:
//
//     build <what was compiled how>
//     cost <level>/<case> <number> pixel|shape
#include <algorithm>
#include <cstdio>
#include <deque>
#include <string>

#include <gnu/libc-version.h>
#include <valgrind/callgrind.h>

#include "Bench_Contender.h"

namespace
{

//! By level: the portable code with its loops, which is the same on every machine, some of it without them, and what is
//! written for another instruction set.
struct Selection
{
    const char* contender;
    const char* level;
    const char* cases[40];
};

constexpr Selection SELECTIONS[] = {
    {"Kanvo portable",
     "portable",
     {"fill_opaque/1",
      "fill_opaque/64",
      "fill_blend/64",
      "copy/64",
      "cvt565/64",
      "blend565_ga128/64",
      "over_random/16",
      "over_random/64",
      "over_icon/64",
      "over_ga128/64",
      "mask_a8/64",
      "over565_mask/64",
      "rle/64",
      "stretch_nearest_2x/64",
      "stretch_nearest_1.37x/64",
      "stretch_nearest_1.37x_over/64",
      "stretch_bilinear_1.37x/64",
      "stretch_bilinear_1.37x_over/64",
      "rotate30_nearest/64",
      "rotate30_bilinear/64",
      "line1_aliased/long",
      "line1_aliased/short",
      "line1_aa/long",
      "line1_aa/short",
      "line5_aa/long",
      "line5_aa/short",
      "line1_dash/short",
      "line5_dash_aa/short",
      "poly_aliased/star10_r120",
      "poly_aliased/star200_r120",
      "poly_aliased/star10_r10",
      "poly_aa/star10_r120",
      "poly_aa/circle256_r120",
      "poly_aa/star10_r10",
      "poly_tex_nearest/star10_r120",
      "circle_aa/r2",
      "circle_aa/r10"}},
    {"Kanvo portable, no loops",
     "plain",
     {"fill_opaque/64", "over_random/64", "over_mask/64", "stretch_bilinear_1.37x/64"}},
    {"Kanvo avx2",
     "avx2",
     {"fill_opaque/1", "fill_blend/64", "copy/64", "over_random/16", "over_random/64", "over_icon/64", "over_ga128/64",
      "cvt565/64", "blend565_ga128/64", "mask_a8/64", "stretch_nearest_0.5x/64", "stretch_nearest_1.37x_over/64",
      "stretch_bilinear_0.5x/64", "stretch_bilinear_1.37x/64", "rotate30_nearest/64", "poly_aa/star10_r120"}},
};

//! Operations that are counted.
int CountOf(const bench::Case& kind)
{
    return kind.operation == bench::Operation::Line ? 100 : 16;
}

struct Counted
{
    std::string  name;
    bench::Input input;
    bench::Job   job;
    double       divisor = 0;
};

bool Prepare(const Selection& selection, bench::Contender& contender, std::deque<Counted>& all)
{
    const std::vector<bench::Case> cases = bench::AllCases();
    for (const char* name : selection.cases)
    {
        if (name == nullptr) break;
        const auto kind =
            std::find_if(cases.begin(), cases.end(), [=](const bench::Case& c) { return c.name == name; });
        if (kind == cases.end())
        {
            std::fprintf(stderr, "kanvo-cost: there is no case %s\n", name);
            return false;
        }
        Counted& counted = all.emplace_back();
        counted.name     = std::string(selection.level) + "/" + name;
        counted.input    = bench::MakeInput(*kind);
        counted.job      = contender.Prepare(counted.input);
        if (!counted.job)
        {
            std::fprintf(stderr, "kanvo-cost: %s does not draw %s\n", selection.contender, name);
            return false;
        }
        const int count = CountOf(*kind);
        if (kind->IsShape())
        {
            counted.divisor = count;
        }
        else
        {
            for (int i = 0; i < count; ++i)
            {
                counted.divisor += counted.input.areas[static_cast<std::size_t>(i) % counted.input.areas.size()];
            }
        }
    }
    return true;
}

}  // namespace

int main()
{
    if (RUNNING_ON_VALGRIND == 0)
    {
        std::fprintf(stderr, "kanvo-cost: run by tools/check_costs.py, under valgrind\n");
        return 2;
    }
    const bench::Contenders contenders = bench::KanvoContenders();
    std::deque<Counted>     all;  // inputs stay where they are: jobs refer to them
    for (const Selection& selection : SELECTIONS)
    {
        for (const auto& contender : contenders)
        {
            if (contender->Name() == selection.contender && !Prepare(selection, *contender, all)) return 1;
        }
    }

    std::printf("build %s, glibc %s\n", KANVO_COST_BUILD, gnu_get_libc_version());
    CALLGRIND_START_INSTRUMENTATION;
    for (Counted& counted : all)
    {
        const int count = CountOf(counted.input.kind);
        counted.job.run(count);  // what happens once only, like the linker's look-ups, is not counted
        CALLGRIND_ZERO_STATS;
        CALLGRIND_TOGGLE_COLLECT;
        counted.job.run(count);
        CALLGRIND_TOGGLE_COLLECT;
        CALLGRIND_DUMP_STATS_AT(counted.name.c_str());
        std::printf("cost %s %.0f %s\n", counted.name.c_str(), counted.divisor,
                    counted.input.kind.IsShape() ? "shape" : "pixel");
    }
    return 0;
}
