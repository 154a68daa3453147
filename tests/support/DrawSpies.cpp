// DrawSpies: loops are plain function pointers and so the spies are plain functions; what they share lies in statics.
#include "DrawSpies.h"

namespace support
{

// ---- loops ----------------------------------------------------------------------------------------------------------

namespace
{

struct Loops
{
    decltype(neonloops_fill_argb32)              fill;
    decltype(neonloops_fill_argb32_ag)           fillMix;
    decltype(neonloops_blit_argb32_argb32)       copy;
    decltype(neonloops_blit_argb32_argb32_as_ag) over;
    decltype(neonloops_blit_argb32_rgb565)       convert565;
    decltype(neonloops_blit_argb32_rgb565_ag)    over565;
    decltype(neonloops_blitcolor_argb32_a8)      colorMask;
    decltype(neonloops_blitcolor_argb32_a8_ag)   colorMaskScaled;
};

Loops                 g_real;
std::vector<LoopCall> g_calls;

Loops Installed()
{
    return {neonloops_fill_argb32,         neonloops_fill_argb32_ag,
            neonloops_blit_argb32_argb32,  neonloops_blit_argb32_argb32_as_ag,
            neonloops_blit_argb32_rgb565,  neonloops_blit_argb32_rgb565_ag,
            neonloops_blitcolor_argb32_a8, neonloops_blitcolor_argb32_a8_ag};
}

void Install(const Loops& loops)
{
    neonloops_fill_argb32              = loops.fill;
    neonloops_fill_argb32_ag           = loops.fillMix;
    neonloops_blit_argb32_argb32       = loops.copy;
    neonloops_blit_argb32_argb32_as_ag = loops.over;
    neonloops_blit_argb32_rgb565       = loops.convert565;
    neonloops_blit_argb32_rgb565_ag    = loops.over565;
    neonloops_blitcolor_argb32_a8      = loops.colorMask;
    neonloops_blitcolor_argb32_a8_ag   = loops.colorMaskScaled;
}

void SpyFill(Kanvo_OffsetARGB32 dst, Tov_UInt dstPitch, Kanvo_PixelARGB32 pixel, Tov_UInt width, Tov_UInt height)
{
    g_calls.push_back({"neonloops_fill_argb32", dst, nullptr, dstPitch, 0, width, height, pixel, -1});
    g_real.fill(dst, dstPitch, pixel, width, height);
}

void SpyFillMix(Kanvo_OffsetARGB32 dst, Tov_UInt dstPitch, Kanvo_PixelARGB32 pixel, Tov_UInt width, Tov_UInt height,
                Tov_UByte alpha)
{
    g_calls.push_back({"neonloops_fill_argb32_ag", dst, nullptr, dstPitch, 0, width, height, pixel, alpha});
    g_real.fillMix(dst, dstPitch, pixel, width, height, alpha);
}

void SpyCopy(Kanvo_OffsetARGB32 dst, const Kanvo_PixelARGB32* src, Tov_UInt dstPitch, Tov_UInt srcPitch, Tov_UInt width,
             Tov_UInt height)
{
    g_calls.push_back({"neonloops_blit_argb32_argb32", dst, src, dstPitch, srcPitch, width, height, 0, -1});
    g_real.copy(dst, src, dstPitch, srcPitch, width, height);
}

void SpyOver(Kanvo_OffsetARGB32 dst, const Kanvo_PixelARGB32* src, Tov_UInt dstPitch, Tov_UInt srcPitch, Tov_UInt width,
             Tov_UInt height, Tov_UByte alpha)
{
    g_calls.push_back({"neonloops_blit_argb32_argb32_as_ag", dst, src, dstPitch, srcPitch, width, height, 0, alpha});
    g_real.over(dst, src, dstPitch, srcPitch, width, height, alpha);
}

void SpyConvert565(Kanvo_OffsetARGB32 dst, const Kanvo_PixelRGB565* src, Tov_UInt dstPitch, Tov_UInt srcPitch,
                   Tov_UInt width, Tov_UInt height)
{
    g_calls.push_back({"neonloops_blit_argb32_rgb565", dst, src, dstPitch, srcPitch, width, height, 0, -1});
    g_real.convert565(dst, src, dstPitch, srcPitch, width, height);
}

void SpyOver565(Kanvo_OffsetARGB32 dst, const Kanvo_PixelRGB565* src, Tov_UInt dstPitch, Tov_UInt srcPitch,
                Tov_UInt width, Tov_UInt height, Tov_UByte alpha)
{
    g_calls.push_back({"neonloops_blit_argb32_rgb565_ag", dst, src, dstPitch, srcPitch, width, height, 0, alpha});
    g_real.over565(dst, src, dstPitch, srcPitch, width, height, alpha);
}

void SpyColorMask(Kanvo_OffsetARGB32 dst, const Kanvo_PixelA8* mask, Tov_UInt dstPitch, Tov_UInt maskPitch,
                  Kanvo_ColorARGB32 color, Tov_UInt width, Tov_UInt height)
{
    g_calls.push_back({"neonloops_blitcolor_argb32_a8", dst, mask, dstPitch, maskPitch, width, height, color, -1});
    g_real.colorMask(dst, mask, dstPitch, maskPitch, color, width, height);
}

void SpyColorMaskScaled(Kanvo_OffsetARGB32 dst, const Kanvo_PixelA8* mask, Tov_UInt dstPitch, Tov_UInt maskPitch,
                        Kanvo_ColorARGB32 color, Tov_UInt width, Tov_UInt height, Tov_UByte alpha)
{
    g_calls.push_back(
        {"neonloops_blitcolor_argb32_a8_ag", dst, mask, dstPitch, maskPitch, width, height, color, alpha});
    g_real.colorMaskScaled(dst, mask, dstPitch, maskPitch, color, width, height, alpha);
}

}  // namespace

LoopSpies::LoopSpies()
{
    g_real = Installed();
    g_calls.clear();
    Install(
        {&SpyFill, &SpyFillMix, &SpyCopy, &SpyOver, &SpyConvert565, &SpyOver565, &SpyColorMask, &SpyColorMaskScaled});
}

LoopSpies::~LoopSpies()
{
    Install(g_real);
}

const std::vector<LoopCall>& LoopSpies::Calls() const
{
    return g_calls;
}

void LoopSpies::Clear()
{
    g_calls.clear();
}

// ---- counters -------------------------------------------------------------------------------------------------------

namespace
{

PerfSpies*             g_spies = nullptr;
std::vector<PerfEvent> g_events;

class PerfSpy : public Trak_PerfCounter
{
public:
    explicit PerfSpy(const char* name) : m_name(name) {}
    void Start(Tov_Value value) override { Note({m_name, true, value}); }
    void Stop(Tov_Value value) override { Note({m_name, false, value}); }

private:
    static void Note(const PerfEvent& event)
    {
        g_events.push_back(event);
        if (g_spies->onEvent) g_spies->onEvent(event);
    }

    const char* m_name;
};

#define KANVO_TEST_SPY(name) PerfSpy g_spy_##name(#name);
#define KANVO_TEST_NO_SPY(name)
TRAK_COUNTER_LIST(KANVO_TEST_SPY, KANVO_TEST_NO_SPY)
#undef KANVO_TEST_SPY

std::vector<Trak_PerfCounter*> g_before;

}  // namespace

PerfSpies::PerfSpies()
{
    g_spies = this;
    g_events.clear();
    g_before.clear();
#define KANVO_TEST_INSTALL(name)        \
    g_before.push_back(g_kPerf_##name); \
    g_kPerf_##name = &g_spy_##name;
    TRAK_COUNTER_LIST(KANVO_TEST_INSTALL, KANVO_TEST_NO_SPY)
#undef KANVO_TEST_INSTALL
}

PerfSpies::~PerfSpies()
{
    std::size_t index = 0;
#define KANVO_TEST_PUT_BACK(name) g_kPerf_##name = g_before[index++];
    TRAK_COUNTER_LIST(KANVO_TEST_PUT_BACK, KANVO_TEST_NO_SPY)
#undef KANVO_TEST_PUT_BACK
    g_spies = nullptr;
}

const std::vector<PerfEvent>& PerfSpies::Events() const
{
    return g_events;
}

void PerfSpies::Clear()
{
    g_events.clear();
}

bool PerfSpies::OnlyCounted(const std::string& counter) const
{
    if (counter.empty()) return g_events.empty();
    return g_events.size() == 2 && counter == g_events[0].counter && g_events[0].starts && g_events[0].value == 0.0F &&
           counter == g_events[1].counter && !g_events[1].starts && g_events[1].value == 1.0F;
}

}  // namespace support
