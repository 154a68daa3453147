// Image_Bleed: see the header. The coloured area grows by one texel per round; a round looks only at texels that were
// coloured before it, so that its order does not matter.
#include "Image_Bleed.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace image
{
namespace
{

//! The places around a pixel that are inside the picture.
class Neighbours
{
public:
    Neighbours(const Picture& picture, std::size_t pixel)
    {
        const std::size_t width = picture.width;
        const std::size_t x     = pixel % width;
        const std::size_t y     = pixel / width;
        for (std::size_t toY = y - (y > 0); toY <= std::min<std::size_t>(y + 1, picture.height - 1); ++toY)
        {
            for (std::size_t toX = x - (x > 0); toX <= std::min(x + 1, width - 1); ++toX)
            {
                if (toX != x || toY != y)
                {
                    m_places[m_count++] = toY * width + toX;
                }
            }
        }
    }

    const std::size_t* begin() const { return m_places.data(); }
    const std::size_t* end() const { return m_places.data() + m_count; }

private:
    std::array<std::size_t, 8> m_places;
    std::size_t                m_count = 0;
};

//! A weighted mean of colours.
class Mean
{
public:
    void Add(std::uint32_t argb, std::uint32_t weight)
    {
        m_red += weight * Red(argb);
        m_green += weight * Green(argb);
        m_blue += weight * Blue(argb);
        m_weight += weight;
        ++m_count;
    }

    bool IsEmpty() const { return m_count == 0; }
    //! Rounded, with alpha 0.
    std::uint32_t Colour() const { return Argb(0, Rounded(m_red), Rounded(m_green), Rounded(m_blue)); }
    //! The mean weight, as a sum and what to divide it by.
    std::uint32_t WeightSum() const { return m_weight; }
    std::uint32_t Count() const { return m_count; }

private:
    std::uint32_t Rounded(std::uint32_t sum) const { return (sum + m_weight / 2) / m_weight; }

    std::uint32_t m_red    = 0;
    std::uint32_t m_green  = 0;
    std::uint32_t m_blue   = 0;
    std::uint32_t m_weight = 0;
    std::uint32_t m_count  = 0;
};

//! Of the visible texels around a fully transparent one.
Mean VisibleAround(const Picture& picture, std::size_t pixel)
{
    Mean mean;
    for (const std::size_t place : Neighbours(picture, pixel))
    {
        if (const std::uint32_t alpha = Alpha(picture.argb[place]); alpha != 0)
        {
            mean.Add(picture.argb[place], alpha);
        }
    }
    return mean;
}

std::uint32_t LargestDifference(std::uint32_t left, std::uint32_t right)
{
    std::uint32_t largest = 0;
    for (const int shift : {0, 8, 16})
    {
        const auto from = static_cast<int>(left >> shift & 255);
        const auto to   = static_cast<int>(right >> shift & 255);
        largest         = std::max(largest, static_cast<std::uint32_t>(std::abs(from - to)));
    }
    return largest;
}

enum State : std::uint8_t
{
    Bare,      //!< fully transparent, not reached yet
    Reached,   //!< to be coloured in this round
    Coloured,  //!< in a round before
    Visible
};

}  // namespace

void Bleed(Picture& picture, std::uint32_t texels)
{
    CheckPicture(picture);
    std::vector<std::uint8_t> states(picture.argb.size(), Bare);
    std::vector<std::size_t>  edge;  // what this round colours
    for (std::size_t pixel = 0; pixel < states.size(); ++pixel)
    {
        if (Alpha(picture.argb[pixel]) != 0)
        {
            states[pixel] = Visible;
        }
        else if (texels != 0 && !VisibleAround(picture, pixel).IsEmpty())
        {
            edge.push_back(pixel);
            states[pixel] = Reached;
        }
    }

    bool changed = false;
    for (std::uint32_t round = 0; round < texels && !edge.empty(); ++round)
    {
        for (const std::size_t pixel : edge)
        {
            Mean mean;
            for (const std::size_t place : Neighbours(picture, pixel))
            {
                // Visible neighbours there are in the first round only.
                if (states[place] >= Coloured)
                {
                    mean.Add(picture.argb[place], states[place] == Visible ? Alpha(picture.argb[place]) : 1);
                }
            }
            changed             = changed || picture.argb[pixel] != mean.Colour();
            picture.argb[pixel] = mean.Colour();
        }
        std::vector<std::size_t> next;
        for (const std::size_t pixel : edge)
        {
            states[pixel] = Coloured;
        }
        for (const std::size_t pixel : edge)
        {
            for (const std::size_t place : Neighbours(picture, pixel))
            {
                if (states[place] == Bare)
                {
                    states[place] = Reached;
                    next.push_back(place);
                }
            }
        }
        edge = std::move(next);
    }
    if (changed)
    {
        picture.palette.clear();
        picture.indices.clear();
    }
}

Fringe FindFringe(const Picture& picture)
{
    CheckPicture(picture);
    Fringe fringe;
    for (std::size_t pixel = 0; pixel < picture.argb.size(); ++pixel)
    {
        if (Alpha(picture.argb[pixel]) != 0)
        {
            continue;
        }
        const Mean mean = VisibleAround(picture, pixel);
        if (!mean.IsEmpty() && LargestDifference(picture.argb[pixel], mean.Colour()) * mean.WeightSum() >
                                   FringeLimit * 4 * 255 * mean.Count())
        {
            if (fringe.texels++ == 0)
            {
                fringe.x = static_cast<std::uint32_t>(pixel % picture.width);
                fringe.y = static_cast<std::uint32_t>(pixel / picture.width);
            }
        }
    }
    return fringe;
}

}  // namespace image
