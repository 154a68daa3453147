// Gallery_Render: see the header.
#include "Gallery_Render.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>

namespace gallery
{
namespace
{

constexpr int Runs = 5;

//! Where the library's assertion handler, a plain function, leaves the first message.
std::string g_misuse;

void NoteMisuse(const char* file, unsigned int line, const char* message)
{
    if (g_misuse.empty())
    {
        g_misuse = std::string(message) + " (" + file + ":" + std::to_string(line) + ")";
    }
}

Rendering RenderWith(Optimized_Blit setting, const scenes::Scene& scene, const scenes::Input& input,
                     Kanvo_Screen& screen)
{
    using Clock = std::chrono::steady_clock;

    Rendering rendering;
    rendering.bitmap = std::make_unique<Kanvo_BitmapARGB32>(&screen, scene.width, scene.height);
    screen.GetRenderState().Set(OPTIMIZED_BLIT, setting);
    for (int run = 0; run < Runs; ++run)
    {
        const auto start = Clock::now();
        scenes::Draw(scene, *rendering.bitmap, input);
        const double elapsed   = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        rendering.milliseconds = run == 0 ? elapsed : std::min(rendering.milliseconds, elapsed);
    }
    rendering.checksum = scenes::Checksum(*rendering.bitmap);
    return rendering;
}

std::size_t CountDiffering(const Kanvo_BitmapARGB32& one, const Kanvo_BitmapARGB32& other)
{
    std::size_t differing = 0;
    for (Tov_UInt y = 0; y < one.GetHeight(); ++y)
    {
        Kanvo_OffsetARGB32 a;
        Kanvo_OffsetARGB32 b;
        Kanvo_PixelARGB32_Access::GetOffset(&one, 0, y, a);
        Kanvo_PixelARGB32_Access::GetOffset(&other, 0, y, b);
        for (Tov_UInt x = 0; x < one.GetWidth(); ++x)
        {
            differing += a[x] != b[x] ? 1 : 0;
        }
    }
    return differing;
}

template <class... Values>
std::string Format(const char* format, Values... values)
{
    char text[64];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

}  // namespace

std::string Result::Verdict() const
{
    if (differing == 0)
    {
        return "same bytes";
    }
    const std::string pixels = std::to_string(differing) + (differing == 1 ? " pixel" : " pixels");
    return (scene->pathsDiffer ? "differs as documented: " : "DIFFERS: ") + pixels;
}

std::string Render(const scenes::Scene& scene, const std::string& name, const scenes::Input& input,
                   Kanvo_Screen& screen, Result& result)
{
    g_misuse.clear();
    const Trak_AssertHandler before = Trak_SetAssertHandler(NoteMisuse);
    result.scene                    = &scene;
    result.name                     = name;
    result.portable                 = RenderWith(OB_NONE, scene, input, screen);
    result.optimised                = RenderWith(OB_NEON, scene, input, screen);
    Trak_SetAssertHandler(before);
    result.differing = CountDiffering(*result.portable.bitmap, *result.optimised.bitmap);
    return g_misuse.empty() ? std::string() : name + ": " + g_misuse;
}

std::string SizeText(const Kanvo_Bitmap& bitmap)
{
    return std::to_string(bitmap.GetWidth()) + " x " + std::to_string(bitmap.GetHeight());
}

std::string ChecksumText(Tov_UInt checksum)
{
    return Format("%08X", static_cast<unsigned>(checksum));
}

std::string MillisecondsText(double milliseconds)
{
    return Format("%.2f", milliseconds);
}

}  // namespace gallery
