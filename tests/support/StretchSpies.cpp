// StretchSpies: loops are plain function pointers and so the spies are plain functions; what they share lies in statics.
#include "StretchSpies.h"

#include <tuple>

#include "neonloops_stretch.h"

namespace support
{

namespace
{

std::vector<StretchCall> g_calls;

auto Everything(const StretchCall& call)
{
    return std::tie(call.dst, call.src, call.dstPitch, call.srcPitch, call.dstX, call.dstY, call.dstWidth,
                    call.dstHeight, call.srcWidth, call.srcHeight, call.srcX, call.srcY, call.clipWidth,
                    call.clipHeight, call.color, call.alpha);
}

void Note(StretchCall& call, Tov_UByte alpha)
{
    call.alpha = alpha;
}

void Note(StretchCall& call, Kanvo_ColorARGB32 color)
{
    call.color = color;
}

//! In front of one loop, which POINTER points at.
template <auto POINTER>
struct Spy;

template <class SrcPixel, class... Extra, void (**POINTER)(KANVO_STRETCH_ARGUMENTS(SrcPixel), Extra...)>
struct Spy<POINTER>
{
    static void Install(const char* name)
    {
        s_name   = name;
        s_real   = *POINTER;
        *POINTER = &Call;
    }
    static void Remove() { *POINTER = s_real; }

private:
    static void Call(KANVO_STRETCH_ARGUMENTS(SrcPixel), Extra... extra)
    {
        StretchCall call{s_name, kDst,        kSrc,         uiDstPitch, uiSrcPitch,  iDstX,
                         iDstY,  uiDstWidth,  uiDstHeight,  uiSrcWidth, uiSrcHeight, uiSrcX,
                         uiSrcY, uiClipWidth, uiClipHeight, 0,          -1};
        (Note(call, extra), ...);
        g_calls.push_back(call);
        s_real(kDst, kSrc, uiDstPitch, uiSrcPitch, iDstX, iDstY, uiDstWidth, uiDstHeight, uiSrcWidth, uiSrcHeight,
               uiSrcX, uiSrcY, uiClipWidth, uiClipHeight, extra...);
    }

    static inline const char* s_name                                          = "";
    static inline void (*s_real)(KANVO_STRETCH_ARGUMENTS(SrcPixel), Extra...) = nullptr;
};

struct Entry
{
    const char* name;
    void (*install)(const char* name);
    void (*remove)();
};

template <auto POINTER>
constexpr Entry EntryOf(const char* name)
{
    return {name, &Spy<POINTER>::Install, &Spy<POINTER>::Remove};
}

#define KANVO_TEST_LOOP(loop) EntryOf<&loop>(#loop)
const Entry g_entries[] = {
    KANVO_TEST_LOOP(neonloops_stretchblit_nearest_argb32_argb32_clip),
    KANVO_TEST_LOOP(neonloops_stretchblit_bilinear_argb32_argb32_clip),
    KANVO_TEST_LOOP(neonloops_stretchblit_nearest_argb32_argb32_as_ag_clip),
    KANVO_TEST_LOOP(neonloops_stretchblit_bilinear_argb32_argb32_as_ag_clip),
    KANVO_TEST_LOOP(neonloops_stretchblit_nearest_argb32_rgb565_clip),
    KANVO_TEST_LOOP(neonloops_stretchblit_bilinear_argb32_rgb565_clip),
    KANVO_TEST_LOOP(neonloops_stretchblit_nearest_argb32_rgb565_ag_clip),
    KANVO_TEST_LOOP(neonloops_stretchblit_bilinear_argb32_rgb565_ag_clip),
    KANVO_TEST_LOOP(neonloops_stretchblitcolor_nearest_argb32_a8_clip),
    KANVO_TEST_LOOP(neonloops_stretchblitcolor_bilinear_argb32_a8_clip),
    KANVO_TEST_LOOP(neonloops_stretchblitcolor_nearest_argb32_a8_ag_clip),
    KANVO_TEST_LOOP(neonloops_stretchblitcolor_bilinear_argb32_a8_ag_clip),
};
#undef KANVO_TEST_LOOP

}  // namespace

bool operator==(const StretchCall& one, const StretchCall& other)
{
    return std::string(one.loop) == other.loop && Everything(one) == Everything(other);
}

std::ostream& operator<<(std::ostream& stream, const StretchCall& call)
{
    return stream << call.loop << "(dst " << call.dst << ", src " << call.src << ", pitches " << call.dstPitch << " "
                  << call.srcPitch << ", to " << call.dstWidth << "x" << call.dstHeight << " at (" << call.dstX << ", "
                  << call.dstY << "), from " << call.srcWidth << "x" << call.srcHeight << " at (" << call.srcX << ", "
                  << call.srcY << "), clip " << call.clipWidth << "x" << call.clipHeight << ", colour " << std::hex
                  << call.color << std::dec << ", alpha " << call.alpha << ")";
}

StretchSpies::StretchSpies()
{
    g_calls.clear();
    for (const Entry& entry : g_entries) entry.install(entry.name);
}

StretchSpies::~StretchSpies()
{
    for (const Entry& entry : g_entries) entry.remove();
}

const std::vector<StretchCall>& StretchSpies::Calls() const
{
    return g_calls;
}

void StretchSpies::Clear()
{
    g_calls.clear();
}

}  // namespace support
