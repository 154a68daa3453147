// Image_Picture: see the header.
#include "Image_Picture.h"

#include <algorithm>
#include <stdexcept>

namespace image
{

bool IsOpaque(const std::vector<std::uint32_t>& argb)
{
    return std::all_of(argb.begin(), argb.end(), [](std::uint32_t pixel) { return Alpha(pixel) == 255; });
}

std::vector<std::uint32_t> ColoursOf(const Indexed& indexed)
{
    std::vector<std::uint32_t> argb(indexed.indices.size());
    std::transform(indexed.indices.begin(), indexed.indices.end(), argb.begin(),
                   [&](Index index) { return indexed.palette[index]; });
    return argb;
}

void CheckSize(std::uint32_t width, std::uint32_t height, std::size_t pixels)
{
    if (width == 0 || width > LongestSide || height == 0 || height > LongestSide)
    {
        throw std::invalid_argument("a picture's sides are between 1 and 32767");
    }
    if (pixels != std::size_t{width} * height)
    {
        throw std::invalid_argument("a picture has one pixel for every place");
    }
}

void CheckPicture(const Picture& picture)
{
    CheckSize(picture.width, picture.height, picture.argb.size());
    if (picture.IsIndexed())
    {
        CheckSize(picture.width, picture.height, picture.indices.size());
        if (*std::max_element(picture.indices.begin(), picture.indices.end()) >= picture.palette.size())
        {
            throw std::invalid_argument("every index is inside the palette");
        }
    }
}

}  // namespace image
