// Thumbnail: see the header.
#include "Thumbnail.h"

#include <algorithm>

namespace kanvo_image
{
namespace
{

//! The mean of a rectangle, colours weighted by their alpha.
std::uint32_t Mean(const image::Picture& picture, std::uint32_t left, std::uint32_t top, std::uint32_t right,
                   std::uint32_t bottom)
{
    std::uint64_t a = 0, r = 0, g = 0, b = 0;
    for (std::uint32_t y = top; y < bottom; ++y)
    {
        for (std::uint32_t x = left; x < right; ++x)
        {
            const std::uint32_t pixel = picture.argb[std::size_t{y} * picture.width + x];
            const std::uint64_t alpha = image::Alpha(pixel);
            a += alpha;
            r += alpha * image::Red(pixel);
            g += alpha * image::Green(pixel);
            b += alpha * image::Blue(pixel);
        }
    }
    const std::uint64_t pixels = std::uint64_t{right - left} * (bottom - top);
    const auto          over   = [](std::uint64_t sum, std::uint64_t count)
    { return static_cast<std::uint32_t>(count == 0 ? 0 : (sum + count / 2) / count); };
    return image::Argb(over(a, pixels), over(r, a), over(g, a), over(b, a));
}

}  // namespace

image::Picture Thumbnail(const image::Picture& picture, std::uint32_t longest)
{
    const std::uint32_t side = std::max(picture.width, picture.height);
    if (side <= longest)
    {
        return picture;
    }
    const auto shrunk = [&](std::uint32_t length)
    { return static_cast<std::uint32_t>(std::max<std::uint64_t>(1, std::uint64_t{length} * longest / side)); };

    image::Picture small;
    small.width  = shrunk(picture.width);
    small.height = shrunk(picture.height);
    const auto x = [&](std::uint32_t at)
    { return static_cast<std::uint32_t>(std::uint64_t{at} * picture.width / small.width); };
    const auto y = [&](std::uint32_t at)
    { return static_cast<std::uint32_t>(std::uint64_t{at} * picture.height / small.height); };
    for (std::uint32_t row = 0; row < small.height; ++row)
    {
        for (std::uint32_t column = 0; column < small.width; ++column)
        {
            small.argb.push_back(Mean(picture, x(column), y(row), x(column + 1), y(row + 1)));
        }
    }
    return small;
}

}  // namespace kanvo_image
