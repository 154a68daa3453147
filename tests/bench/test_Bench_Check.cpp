// The check that every contender of kanvo-bench passes before its time is taken: it must see what is not drawn as it
// should be. That it lets the library pass is tested by running kanvo-bench.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "Bench_Case.h"
#include "Bench_Check.h"

namespace
{

//! Cases that are drawn fast and large enough for something to be seen.
std::vector<bench::Case> Cases()
{
    std::vector<bench::Case> cases = bench::AllCases();
    cases.erase(std::remove_if(cases.begin(), cases.end(),
                               [](const bench::Case& c)
                               { return c.targetWidth > 1000 || (c.width > 0 && c.width < 64); }),
                cases.end());
    return cases;
}

bench::Job JobOf(const bench::Input& input, const std::function<void(bench::Picture&)>& draw)
{
    bench::Job job;
    job.target = bench::MakeTarget(input);
    job.run    = [target = job.target, draw](int) { draw(*target); };
    return job;
}

TEST(BenchCheck, NothingDrawnIsWrong)
{
    for (const bench::Case& kind : Cases())
    {
        const bench::Input input = bench::MakeInput(kind);
        const bench::Job   job   = JobOf(input, [](bench::Picture&) {});
        EXPECT_EQ(bench::Check(input, job).verdict, bench::Verdict::Wrong) << kind.name;
    }
}

TEST(BenchCheck, TheWholeTargetInOneColorIsWrong)
{
    for (const bench::Case& kind : Cases())
    {
        // Of these it is what is asked for.
        if (kind.name == "fill_opaque/480x272" || kind.name == "mask_a8_opaque/480x272") continue;
        const bench::Input input = bench::MakeInput(kind);
        const bench::Job   job   = JobOf(input, [&](bench::Picture& target)
                                         { std::fill_n(target.Pixels(), target.Count(), kind.color | 0xFF000000); });
        EXPECT_EQ(bench::Check(input, job).verdict, bench::Verdict::Wrong) << kind.name;
    }
}

//! The first opaque fill of 64 x 64, with one channel of every pixel changed.
bench::Finding FillOff(std::uint32_t change)
{
    const std::vector<bench::Case> cases = Cases();
    const auto                     kind =
        std::find_if(cases.begin(), cases.end(), [](const bench::Case& c) { return c.name == "fill_opaque/64"; });
    const bench::Input input = bench::MakeInput(*kind);
    const bench::Job   job   = JobOf(input,
                                     [&](bench::Picture& target)
                                     {
                                     const int x = static_cast<int>(input.Place(0).x),
                                               y = static_cast<int>(input.Place(0).y);
                                     for (int row = 0; row < 64; ++row)
                                         std::fill_n(target.At(x, y + row), 64, kind->color + change);
                                 });
    return bench::Check(input, job);
}

TEST(BenchCheck, RoundingIsRightAndMoreIsNot)
{
    EXPECT_EQ(FillOff(0).verdict, bench::Verdict::Right);
    EXPECT_EQ(FillOff(0x00000002).verdict, bench::Verdict::Right);
    EXPECT_EQ(FillOff(0x00000006).verdict, bench::Verdict::Inexact);
    EXPECT_EQ(FillOff(0xFE000000).verdict, bench::Verdict::Inexact) << "alpha two too low";
    EXPECT_EQ(FillOff(0x00400000).verdict, bench::Verdict::Wrong);
}

TEST(BenchCheck, TheTargetIsLeftAsItWas)
{
    const bench::Input input = bench::MakeInput(Cases().front());
    const bench::Job   job =
        JobOf(input, [](bench::Picture& target) { std::fill_n(target.Pixels(), target.Count(), 0u); });
    bench::Check(input, job);
    bench::Picture gradient(input.kind.targetWidth, input.kind.targetHeight);
    bench::FillWithGradient(gradient);
    EXPECT_TRUE(std::equal(gradient.Pixels(), gradient.Pixels() + gradient.Count(), job.target->Pixels()));
}

TEST(BenchCase, NamesAreUnique)
{
    std::vector<std::string> names;
    for (const bench::Case& c : bench::AllCases()) names.push_back(c.name);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
}

}  // namespace
