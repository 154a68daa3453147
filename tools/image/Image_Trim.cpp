// Image_Trim: see the header.
#include "Image_Trim.h"

#include <algorithm>

namespace image
{
namespace
{

struct Box
{
    std::uint32_t left;
    std::uint32_t top;
    std::uint32_t right;  //!< inclusive, as is the bottom
    std::uint32_t bottom;
};

Box VisibleBox(const Picture& picture)
{
    Box         box{picture.width, picture.height, 0, 0};
    std::size_t pixel = 0;
    for (std::uint32_t y = 0; y < picture.height; ++y)
    {
        for (std::uint32_t x = 0; x < picture.width; ++x, ++pixel)
        {
            if (Alpha(picture.argb[pixel]) != 0)
            {
                box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x), y};
            }
        }
    }
    return box.left == picture.width ? Box{0, 0, 0, 0} : box;
}

template <class Pixel>
std::vector<Pixel> Cut(const std::vector<Pixel>& pixels, std::uint32_t width, const Box& box)
{
    std::vector<Pixel> cut;
    if (!pixels.empty())
    {
        for (std::size_t y = box.top; y <= box.bottom; ++y)
        {
            const auto row = pixels.begin() + static_cast<std::ptrdiff_t>(y * width);
            cut.insert(cut.end(), row + box.left, row + box.right + 1);
        }
    }
    return cut;
}

}  // namespace

Trimmed Trim(const Picture& picture)
{
    CheckPicture(picture);
    const Box box = VisibleBox(picture);
    Trimmed   trimmed;
    trimmed.x               = box.left;
    trimmed.y               = box.top;
    trimmed.picture.width   = box.right - box.left + 1;
    trimmed.picture.height  = box.bottom - box.top + 1;
    trimmed.picture.argb    = Cut(picture.argb, picture.width, box);
    trimmed.picture.palette = picture.palette;
    trimmed.picture.indices = Cut(picture.indices, picture.width, box);
    return trimmed;
}

}  // namespace image
