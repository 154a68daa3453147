// Png_Bitmap: see the header.
#include "Png_Bitmap.h"

namespace png
{
namespace
{

//! A bitmap whose pixel at every place is convert(ARGB word of the picture there).
template <class Bitmap, class Pixel, class Convert>
std::unique_ptr<Kanvo_Bitmap> Converted(const Image& image, Kanvo_Screen& screen, const Convert& convert)
{
    auto  bitmap = std::make_unique<Bitmap>(&screen, image.width, image.height);
    auto* row    = static_cast<std::uint8_t*>(bitmap->Lock());
    if (row == nullptr)
    {
        return nullptr;
    }
    const std::uint32_t* source = image.argb.data();
    for (std::uint32_t y = 0; y < image.height; ++y, row += bitmap->GetPitch())
    {
        auto* target = reinterpret_cast<Pixel*>(row);
        for (std::uint32_t x = 0; x < image.width; ++x)
        {
            *target++ = convert(*source++);
        }
    }
    bitmap->Unlock(0, 0, image.width - 1, image.height - 1);
    return bitmap;
}

Kanvo_PixelRGB565 ToRgb565(std::uint32_t argb)
{
    return Kanvo_PixelRGB565_Access::PixelFromRGB(static_cast<Tov_UByte>(argb >> 16), static_cast<Tov_UByte>(argb >> 8),
                                                  static_cast<Tov_UByte>(argb));
}

Kanvo_PixelA8 AlphaOf(std::uint32_t argb)
{
    return static_cast<Kanvo_PixelA8>(argb >> 24);
}

}  // namespace

std::unique_ptr<Kanvo_Bitmap> MakeBitmap(const Image& image, BitmapType format, Kanvo_Screen& screen)
{
    switch (format)
    {
    case BM_ARGB32:
        return Converted<Kanvo_BitmapARGB32, Kanvo_PixelARGB32>(image, screen, [](std::uint32_t argb) { return argb; });
    case BM_RGB32:
        return Converted<Kanvo_BitmapRGB32, Kanvo_PixelRGB32>(image, screen,
                                                              [](std::uint32_t argb) { return 0xFF000000U | argb; });
    case BM_RGB565: return Converted<Kanvo_BitmapRGB565, Kanvo_PixelRGB565>(image, screen, ToRgb565);
    case BM_ALPHA8:
        return Converted<Kanvo_BitmapA8, Kanvo_PixelA8>(image, screen, image.hasAlpha ? AlphaOf : Luminance);
    default: return nullptr;
    }
}

}  // namespace png
