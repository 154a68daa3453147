// MapLoopSpies: loops are plain function pointers and so the spies are plain functions; what they share lies in statics.
#include "MapLoopSpies.h"

#include "neonloops.h"

namespace support
{

namespace
{

struct Loops
{
    decltype(neonloops_blit_argb32_argb32_as)      over;
    decltype(neonloops_blit_argb32_rgb565a8)       store565;
    decltype(neonloops_blit_argb32_rgb565a8_as)    over565;
    decltype(neonloops_blit_argb32_rgb565a8_as_ag) over565Scaled;
};

Loops                    g_real;
std::vector<MapLoopCall> g_calls;

void Install(const Loops& loops)
{
    neonloops_blit_argb32_argb32_as      = loops.over;
    neonloops_blit_argb32_rgb565a8       = loops.store565;
    neonloops_blit_argb32_rgb565a8_as    = loops.over565;
    neonloops_blit_argb32_rgb565a8_as_ag = loops.over565Scaled;
}

void SpyOver(Kanvo_OffsetARGB32 dst, const Kanvo_PixelARGB32* src, Tov_UInt dstPitch, Tov_UInt srcPitch, Tov_UInt width,
             Tov_UInt height)
{
    g_calls.push_back({"neonloops_blit_argb32_argb32_as", dst, src, nullptr, dstPitch, srcPitch, 0, width, height, -1});
    g_real.over(dst, src, dstPitch, srcPitch, width, height);
}

void SpyStore565(Kanvo_OffsetARGB32 dst, const Kanvo_PixelRGB565* src, const Kanvo_PixelA8* map, Tov_UInt dstPitch,
                 Tov_UInt srcPitch, Tov_UInt mapPitch, Tov_UInt width, Tov_UInt height)
{
    g_calls.push_back(
        {"neonloops_blit_argb32_rgb565a8", dst, src, map, dstPitch, srcPitch, mapPitch, width, height, -1});
    g_real.store565(dst, src, map, dstPitch, srcPitch, mapPitch, width, height);
}

void SpyOver565(Kanvo_OffsetARGB32 dst, const Kanvo_PixelRGB565* src, const Kanvo_PixelA8* map, Tov_UInt dstPitch,
                Tov_UInt srcPitch, Tov_UInt mapPitch, Tov_UInt width, Tov_UInt height)
{
    g_calls.push_back(
        {"neonloops_blit_argb32_rgb565a8_as", dst, src, map, dstPitch, srcPitch, mapPitch, width, height, -1});
    g_real.over565(dst, src, map, dstPitch, srcPitch, mapPitch, width, height);
}

void SpyOver565Scaled(Kanvo_OffsetARGB32 dst, const Kanvo_PixelRGB565* src, const Kanvo_PixelA8* map, Tov_UInt dstPitch,
                      Tov_UInt srcPitch, Tov_UInt mapPitch, Tov_UInt width, Tov_UInt height, Tov_UByte alpha)
{
    g_calls.push_back(
        {"neonloops_blit_argb32_rgb565a8_as_ag", dst, src, map, dstPitch, srcPitch, mapPitch, width, height, alpha});
    g_real.over565Scaled(dst, src, map, dstPitch, srcPitch, mapPitch, width, height, alpha);
}

}  // namespace

MapLoopSpies::MapLoopSpies()
{
    g_real = {neonloops_blit_argb32_argb32_as, neonloops_blit_argb32_rgb565a8, neonloops_blit_argb32_rgb565a8_as,
              neonloops_blit_argb32_rgb565a8_as_ag};
    g_calls.clear();
    Install({&SpyOver, &SpyStore565, &SpyOver565, &SpyOver565Scaled});
}

MapLoopSpies::~MapLoopSpies()
{
    Install(g_real);
}

const std::vector<MapLoopCall>& MapLoopSpies::Calls() const
{
    return g_calls;
}

void MapLoopSpies::Clear()
{
    g_calls.clear();
}

}  // namespace support
