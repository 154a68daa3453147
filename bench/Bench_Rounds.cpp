#include "Bench_Rounds.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <memory>

namespace bench
{
namespace
{

//! Of this thread, in nanoseconds.
double Now()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

double Time(const Entry& entry, int count)
{
    const double begin = Now();
    entry.run(count);
    return Now() - begin;
}

//! How many operations take the time of one round, after a first cycle that warms up.
int Calibrate(const Entry& entry, double nanoseconds)
{
    constexpr int MOST  = 1 << 26;
    int           count = entry.cycle;
    entry.run(count);
    for (;;)
    {
        const double time = Time(entry, count);
        if (time > nanoseconds * 0.6 || count > MOST) return std::max(entry.cycle, count / entry.cycle * entry.cycle);
        count = static_cast<int>(count * std::clamp(nanoseconds / std::max(time, 1.0), 2.0, 16.0));
    }
}

//! Keeps the compiler from leaving out stores that nobody reads.
void UseMemory()
{
    asm volatile("" ::: "memory");
}

}  // namespace

void Measure(std::vector<Entry>& entries, const Effort& effort)
{
    std::vector<int> counts;
    for (const Entry& entry : entries) counts.push_back(Calibrate(entry, effort.milliseconds * 1e6));

    std::vector<std::vector<double>> times(entries.size());
    for (int round = 0; round < effort.rounds; ++round)
    {
        for (std::size_t i = 0; i < entries.size(); ++i) times[i].push_back(Time(entries[i], counts[i]) / counts[i]);
    }
    for (std::size_t i = 0; i < entries.size(); ++i)
    {
        std::sort(times[i].begin(), times[i].end());
        entries[i].minimum = times[i].front();
        entries[i].median  = times[i][times[i].size() / 2];
    }
}

Yardstick MakeYardstick(const Input& input)
{
    const Case& kind     = input.kind;
    const bool  isFill   = kind.BesideMemset();
    const bool  atPlaces = !kind.IsShape() && kind.operation != Operation::Rotate;
    const int   width    = kind.IsShape() ? kind.targetWidth : kind.width;
    const int   height   = kind.IsShape() ? kind.targetHeight : kind.height;

    const auto target = std::make_shared<Picture>(kind.targetWidth, kind.targetHeight);
    const auto source = std::make_shared<Picture>(width, height, SOURCE_OFFSET);
    FillWithGradient(*source);

    const std::size_t bytes  = static_cast<std::size_t>(width) * 4;
    const auto        places = atPlaces ? input.places : std::vector<Point>{{0, 0}};
    const auto        draw   = [=](std::uint32_t* to, const std::uint32_t* from, std::size_t size)
    {
        if (isFill)
        {
            std::memset(to, 0x55, size);
        }
        else
        {
            std::memcpy(to, from, size);
        }
    };

    Yardstick yardstick;
    yardstick.pixels = static_cast<double>(width) * height;
    yardstick.entries.emplace_back();
    yardstick.entries.back().cycle = static_cast<int>(places.size());
    yardstick.entries.back().run   = [=](int count)
    {
        for (int i = 0; i < count; ++i)
        {
            const Point& place = places[static_cast<std::size_t>(i) % places.size()];
            const int    x = static_cast<int>(place.x), y = static_cast<int>(place.y);
            for (int row = 0; row < height; ++row) draw(target->At(x, y + row), source->At(0, row), bytes);
            UseMemory();
        }
    };
    if (width == kind.targetWidth)
    {
        yardstick.entries.emplace_back();
        yardstick.entries.back().run = [=](int count)
        {
            for (int i = 0; i < count; ++i)
            {
                draw(target->Pixels(), source->Pixels(), bytes * static_cast<std::size_t>(height));
                UseMemory();
            }
        };
    }
    return yardstick;
}

}  // namespace bench
