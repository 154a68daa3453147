// Draw_Time: see the header.
#include "Draw_Time.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <vector>

#include "Kanvo.h"

namespace kanvo_image
{
namespace
{

using Clock = std::chrono::steady_clock;

constexpr int    Series          = 5;
constexpr double SeriesLastsLong = 1000;  // microseconds; shorter ones are not measured but used to find how many blits

//! The library's bitmap over the encoded data, as a program on the device would have it.
std::unique_ptr<Kanvo_Bitmap> Source(const image::Encoded& encoded, Kanvo_Screen& screen)
{
    const void* data = encoded.data.data();
    switch (encoded.format)
    {
    case image::Format::Rgb32:
        return std::make_unique<Kanvo_BitmapRGB32>(&screen, encoded.width, encoded.height,
                                                   static_cast<const Kanvo_PixelRGB32*>(data));
    case image::Format::Rgb565:
        return std::make_unique<Kanvo_BitmapRGB565>(&screen, encoded.width, encoded.height,
                                                    static_cast<const Kanvo_PixelRGB565*>(data));
    case image::Format::A8:
        return std::make_unique<Kanvo_BitmapA8>(&screen, encoded.width, encoded.height,
                                                static_cast<const Kanvo_PixelA8*>(data));
    case image::Format::Argb32:
        return std::make_unique<Kanvo_BitmapARGB32>(&screen, encoded.width, encoded.height, BBT_ROM,
                                                    const_cast<void*>(data));
    default: return std::make_unique<Kanvo_BitmapRLE>(&screen, data, encoded.data.size());
    }
}

template <class Work>
double Microseconds(const Work& work)
{
    const Clock::time_point begin = Clock::now();
    work();
    return std::chrono::duration<double, std::micro>(Clock::now() - begin).count();
}

}  // namespace

double DrawTime(const image::Encoded& encoded)
{
    std::vector<Tov_UInt> pixels(std::size_t{encoded.width} * encoded.height, 0xFF808080u);

    Kanvo_Screen screen(nullptr);
    screen.GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON);
    Kanvo_BitmapARGB32                  target(&screen, encoded.width, encoded.height, BBT_RAM, pixels.data());
    const std::unique_ptr<Kanvo_Bitmap> source = Source(encoded, screen);
    if (encoded.format == image::Format::Argb32)
    {
        source->Lock();
        source->Unlock(0, 0, 0, 0);  // it finds out whether the pixels are opaque
    }
    const bool keepsAlpha = image::IsRle(encoded.format) || encoded.format == image::Format::Argb32;
    const bool blends     = keepsAlpha && source->HasAlpha();

    constexpr Kanvo_PixelA8 Opaque = 255;
    Kanvo_BitmapA8          map(&screen, 1, 1, &Opaque);  // wanted by BlitAlpha, and ignored for these sources

    target.Lock();
    const auto draw = [&]
    {
        if (blends)
        {
            target.BlitAlpha(source.get(), &map, encoded.width, encoded.height, 0, 0, 0, 0, 0, 255);
        }
        else
        {
            target.Blit(source.get(), encoded.width, encoded.height, 0, 0, 0, 0, 0, 255, 0);
        }
    };
    const auto blits = [&](int count)
    {
        return Microseconds(
            [&]
            {
                for (int blit = 0; blit < count; ++blit)
                {
                    draw();
                }
            });
    };
    int    count = 1;
    double best  = blits(count);
    while (best < SeriesLastsLong)
    {
        count *= 2;
        best = blits(count);
    }
    for (int series = 1; series < Series; ++series)
    {
        best = std::min(best, blits(count));
    }
    target.Unlock(0, 0, 0, 0);
    return best / count;
}

}  // namespace kanvo_image
