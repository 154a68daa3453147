// Image_Difference: see the header.
#include "Image_Difference.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "Image_Palette.h"

namespace image
{
namespace
{

//! What two pixels look apart, in 1/255 of a level: the largest and the sum of six comparisons.
struct Seen
{
    std::uint32_t largest = 0;
    std::uint32_t sum     = 0;
};

Seen SeenBetween(std::uint32_t first, std::uint32_t second)
{
    const Point left  = PointOf(first);
    const Point right = PointOf(second);
    const int   cover = left[0] - right[0];
    Seen        seen;
    for (std::size_t channel = 1; channel < 4; ++channel)
    {
        const int overBlack = left[channel] - right[channel];
        const int overWhite = overBlack - cover;
        for (const int difference : {std::abs(overBlack), std::abs(overWhite)})
        {
            seen.largest = std::max(seen.largest, static_cast<std::uint32_t>(difference));
            seen.sum += static_cast<std::uint32_t>(difference);
        }
    }
    return seen;
}

//! count / (parts * pixels) in thousandths, rounded; parts is what a level is divided into.
std::uint64_t Milli(std::uint64_t sum, std::uint64_t parts, std::uint64_t pixels)
{
    const std::uint64_t divisor = parts * pixels;
    if (divisor == 0)
    {
        return 0;
    }
    return sum / divisor * 1000 + (sum % divisor * 1000 + divisor / 2) / divisor;
}

std::string Decimal(std::uint64_t milli)
{
    const std::string digits = std::to_string(1000 + milli % 1000);
    return std::to_string(milli / 1000) + "." + digits.substr(1);
}

void CheckAlike(const Picture& first, const Picture& second)
{
    CheckPicture(first);
    CheckPicture(second);
    if (first.width != second.width || first.height != second.height)
    {
        throw std::invalid_argument("pictures to compare have one size");
    }
}

//! Blue, green, yellow, red for 0 .. 767.
std::uint32_t Heat(std::uint32_t level)
{
    const std::uint32_t within = level % 256;
    switch (level / 256)
    {
    case 0: return Argb(255, 0, within, 255 - within);
    case 1: return Argb(255, within, 255, 0);
    default: return Argb(255, 255, 255 - within, 0);
    }
}

}  // namespace

std::uint64_t Difference::LargestSeenMilli() const
{
    return Milli(largestSeen, 255, 1);
}

std::uint64_t Difference::MeanSeenMilli() const
{
    return Milli(sumSeen, std::uint64_t{255} * 6, pixels);
}

std::uint64_t Difference::MeanMilli(int channel) const
{
    return Milli(sum[channel], 1, pixels);
}

Difference Compare(const std::vector<std::uint32_t>& first, const std::vector<std::uint32_t>& second,
                   std::uint32_t width)
{
    if (first.size() != second.size() || width == 0)
    {
        throw std::invalid_argument("pictures to compare have one size");
    }
    Difference difference;
    difference.pixels = first.size();
    for (std::size_t pixel = 0; pixel < first.size(); ++pixel)
    {
        if (first[pixel] == second[pixel])
        {
            continue;
        }
        ++difference.differing;
        for (std::uint32_t channel = 0; channel < 4; ++channel)
        {
            const std::uint32_t shift = 24 - 8 * channel;
            const auto          left  = static_cast<int>(first[pixel] >> shift & 255);
            const auto          right = static_cast<int>(second[pixel] >> shift & 255);
            const auto          apart = static_cast<std::uint32_t>(std::abs(left - right));

            difference.largest[channel] = std::max(difference.largest[channel], apart);
            difference.sum[channel] += apart;
        }
        const Seen seen = SeenBetween(first[pixel], second[pixel]);
        difference.sumSeen += seen.sum;
        if (seen.largest > difference.largestSeen)
        {
            difference.largestSeen = seen.largest;
            difference.worstX      = static_cast<std::uint32_t>(pixel % width);
            difference.worstY      = static_cast<std::uint32_t>(pixel / width);
        }
    }
    return difference;
}

Difference Compare(const Picture& first, const Picture& second)
{
    CheckAlike(first, second);
    return Compare(first.argb, second.argb, first.width);
}

std::string DifferenceText(const Difference& difference)
{
    if (difference.IsNone())
    {
        return "no difference";
    }
    return "mean error " + Decimal(difference.MeanSeenMilli()) + ", largest " + Decimal(difference.LargestSeenMilli()) +
           " of 255";
}

Picture HeatMap(const Picture& first, const Picture& second)
{
    const std::uint32_t largest = Compare(first, second).largestSeen;
    Picture             map;
    map.width  = first.width;
    map.height = first.height;
    map.argb.resize(first.argb.size());
    for (std::size_t pixel = 0; pixel < map.argb.size(); ++pixel)
    {
        const std::uint32_t seen = SeenBetween(first.argb[pixel], second.argb[pixel]).largest;
        if (seen != 0)
        {
            map.argb[pixel] = Heat(static_cast<std::uint32_t>(std::uint64_t{seen} * 767 / largest));
            continue;
        }
        const Point         point = PointOf(first.argb[pixel]);
        const std::int32_t  sum   = point[1] + point[2] + point[3];          // 0 .. 3 * 65025
        const std::uint32_t grey  = static_cast<std::uint32_t>(sum) / 3060;  // 0 .. 63
        map.argb[pixel]           = Argb(255, grey, grey, grey);
    }
    return map;
}

}  // namespace image
