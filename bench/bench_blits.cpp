// bench_blits: fills and blits at the size of an icon, of a button and of a whole small display, portable and optimised.
// Every figure stands beside memset (fills) or memcpy (the others) of the same rectangle of the same memory, measured in
// this process: the counter "times" is how many times as long Kanvo takes, "ratio" its reciprocal. Time is that of the
// thread, so that a busy machine disturbs less. KANVO_LEVEL=portable measures the other level.
#include <algorithm>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <Kanvo.h>

namespace
{

constexpr Tov_UInt DISPLAY_WIDTH = 480, DISPLAY_HEIGHT = 272;

struct Size
{
    Tov_UInt width, height;
};
constexpr Size SIZES[] = {{16, 16}, {64, 64}, {DISPLAY_WIDTH, DISPLAY_HEIGHT}};

//! A target and sources as large as the display; smaller operations take place in their top-left corner.
class Stage
{
public:
    explicit Stage(Optimized_Blit loops)
    {
        m_screen.GetRenderState().Set(OPTIMIZED_BLIT, loops);
        Scatter(m_target, 4);
        Scatter(m_argb32, 4);
        Scatter(m_rgb565, 2);
        DrawIcons();
        m_target.Lock();
    }

    Kanvo_BitmapARGB32& Target() { return m_target; }
    Kanvo_BitmapARGB32& Argb32() { return m_argb32; }
    Kanvo_BitmapRGB565& Rgb565() { return m_rgb565; }
    Kanvo_BitmapARGB32& Icons() { return m_icons; }
    Kanvo_BitmapA8&     Mask() { return m_mask; }

private:
    //! Every byte value occurs, alpha included, so that no branch on a pixel can be learned.
    static void Scatter(Kanvo_Bitmap& bitmap, Tov_UInt bytesPerPixel)
    {
        auto*         bytes = static_cast<Tov_UByte*>(bitmap.Lock());
        std::uint32_t state = 1;
        for (Tov_UInt i = 0; i < DISPLAY_WIDTH * DISPLAY_HEIGHT * bytesPerPixel; ++i)
        {
            state    = state * 1664525u + 1013904223u;
            bytes[i] = static_cast<Tov_UByte>(state >> 24);
        }
        bitmap.Unlock(0, 0, DISPLAY_WIDTH - 1, DISPLAY_HEIGHT - 1);
    }

    //! Soft discs, 64 pixels apart, in a picture and in a map: runs of transparent and of opaque pixels.
    void DrawIcons()
    {
        auto* pixels = static_cast<Kanvo_PixelARGB32*>(m_icons.Lock());
        auto* cover  = static_cast<Tov_UByte*>(m_mask.Lock());
        for (int i = 0; i < static_cast<int>(DISPLAY_WIDTH * DISPLAY_HEIGHT); ++i)
        {
            const int x      = i % static_cast<int>(DISPLAY_WIDTH) % 64 - 32,
                      y      = i / static_cast<int>(DISPLAY_WIDTH) % 64 - 32;
            const auto alpha = static_cast<Tov_UByte>(std::clamp((29 * 29 - x * x - y * y) * 5 / 8, 0, 255));
            pixels[i]        = static_cast<Tov_UInt>(alpha) << 24 | (0x336699u + static_cast<Tov_UInt>(i) % 16u);
            cover[i]         = alpha;
        }
        m_icons.Unlock(0, 0, DISPLAY_WIDTH - 1, DISPLAY_HEIGHT - 1);
        m_mask.Unlock(0, 0, DISPLAY_WIDTH - 1, DISPLAY_HEIGHT - 1);
    }

    Kanvo              m_library;
    Kanvo_Screen       m_screen{&m_library};
    Kanvo_BitmapARGB32 m_target{&m_screen, DISPLAY_WIDTH, DISPLAY_HEIGHT};
    Kanvo_BitmapARGB32 m_argb32{&m_screen, DISPLAY_WIDTH, DISPLAY_HEIGHT};
    Kanvo_BitmapRGB565 m_rgb565{&m_screen, DISPLAY_WIDTH, DISPLAY_HEIGHT};
    Kanvo_BitmapARGB32 m_icons{&m_screen, DISPLAY_WIDTH, DISPLAY_HEIGHT};
    Kanvo_BitmapA8     m_mask{&m_screen, DISPLAY_WIDTH, DISPLAY_HEIGHT};
};

struct Operation
{
    const char* name;
    bool        besideMemset;  //!< compared with memset, otherwise with memcpy
    void (*draw)(Stage& stage, Size size);
};

constexpr Operation OPERATIONS[] = {
    {"FillOpaque", true, [](Stage& s, Size z) { s.Target().FillRect(z.width, z.height, 0, 0, 0xFF336699u, 0); }},
    {"FillTranslucent", true, [](Stage& s, Size z) { s.Target().FillRect(z.width, z.height, 0, 0, 0x80336699u, 0); }},
    {"Copy", false, [](Stage& s, Size z) { s.Target().Blit(&s.Argb32(), z.width, z.height, 0, 0, 0, 0, 0, 255, 0); }},
    {"Over", false, [](Stage& s, Size z) { s.Target().Blit(&s.Argb32(), z.width, z.height, 0, 0, 0, 0, 0, 254, 0); }},
    {"OverIcons", false,
     [](Stage& s, Size z) { s.Target().Blit(&s.Icons(), z.width, z.height, 0, 0, 0, 0, 0, 254, 0); }},
    {"OverFull", false,
     [](Stage& s, Size z) { s.Target().BlitAlpha(&s.Argb32(), nullptr, z.width, z.height, 0, 0, 0, 0, 0, 255); }},
    {"OverFullIcons", false,
     [](Stage& s, Size z) { s.Target().BlitAlpha(&s.Icons(), nullptr, z.width, z.height, 0, 0, 0, 0, 0, 255); }},
    {"OverByMap", false,
     [](Stage& s, Size z) { s.Target().BlitAlpha(&s.Argb32(), &s.Mask(), z.width, z.height, 0, 0, 0, 0, 0, 255); }},
    {"ColorByMap", false,
     [](Stage& s, Size z) { s.Target().BlitColor(&s.Mask(), z.width, z.height, 0, 0, 0, 0, 0xFF3366CCu, 0, 255); }},
    {"ColorByMapHalf", false,
     [](Stage& s, Size z) { s.Target().BlitColor(&s.Mask(), z.width, z.height, 0, 0, 0, 0, 0xFF3366CCu, 0, 128); }},
    {"Convert565", false,
     [](Stage& s, Size z) { s.Target().Blit(&s.Rgb565(), z.width, z.height, 0, 0, 0, 0, 0, 255, 0); }},
    {"Over565Half", false,
     [](Stage& s, Size z) { s.Target().Blit(&s.Rgb565(), z.width, z.height, 0, 0, 0, 0, 0, 128, 0); }},
    {"Over565ByMap", false,
     [](Stage& s, Size z) { s.Target().BlitAlpha(&s.Rgb565(), &s.Mask(), z.width, z.height, 0, 0, 0, 0, 0, 255); }},
};

//! Of this thread, in nanoseconds.
double Now()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

void ByTheStandardLibrary(Stage& stage, Size size, bool memset)
{
    auto*       to   = static_cast<Tov_UByte*>(stage.Target().GetBuffer());
    const auto* from = static_cast<const Tov_UByte*>(stage.Argb32().GetBuffer());
    for (Tov_UInt y = 0; y < size.height; ++y)
    {
        const std::size_t row = static_cast<std::size_t>(y) * stage.Target().GetPitch();
        if (memset)
        {
            std::memset(to + row, 0x33, size.width * 4);
        }
        else
        {
            std::memcpy(to + row, from + row, size.width * 4);
        }
    }
    benchmark::ClobberMemory();
}

//! Nanoseconds of one rectangle by memset or memcpy: the best of a few runs, each long enough for the clock.
double Yardstick(Stage& stage, Size size, bool memset)
{
    double best = 1e300;
    for (int run = 0; run < 7; ++run)
    {
        const int    count = std::max(1, static_cast<int>(20'000'000 / (size.width * size.height)));
        const double begin = Now();
        for (int i = 0; i < count; ++i) ByTheStandardLibrary(stage, size, memset);
        best = std::min(best, (Now() - begin) / count);
    }
    return best;
}

void Measure(benchmark::State& state, const Operation& operation, Size size, Optimized_Blit loops)
{
    Stage        stage(loops);
    const double yardstick = Yardstick(stage, size, operation.besideMemset);
    stage.Target().Clear(0xFF808080U);  // as frame buffers are: what is drawn meets opaque pixels

    const double begin = Now();
    for ([[maybe_unused]] auto _ : state)
    {
        operation.draw(stage, size);
        benchmark::ClobberMemory();
    }
    const double each = (Now() - begin) / static_cast<double>(state.iterations());

    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(size.width) * size.height);
    state.counters["times"] = each / yardstick;
    state.counters["ratio"] = yardstick / each;
    state.SetLabel(std::string(operation.besideMemset ? "of memset, " : "of memcpy, ") +
                   Kanvo_LevelName(Kanvo_SelectedRows()));
}

}  // namespace

int main(int argc, char** argv)
{
    for (const Operation& operation : OPERATIONS)
    {
        for (const Size size : SIZES)
        {
            for (const Optimized_Blit loops : {OB_NONE, OB_NEON})
            {
                const std::string name = std::string(operation.name) + "/" + std::to_string(size.width) + "x" +
                                         std::to_string(size.height) + (loops == OB_NEON ? "/optimised" : "/portable");
                benchmark::RegisterBenchmark(name.c_str(), Measure, operation, size, loops)->MinTime(0.1);
            }
        }
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
