// RandomPolygons: see the header.
#include "RandomPolygons.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace support
{

namespace
{

using reference::Corner;
using reference::Outline;

enum class Grid
{
    Any,
    Whole,
    Half,
    Quarter,
    Fine,       // 1 / 256
    NearWhole,  // a hair beside whole numbers
    OnSampling  // a little around x.9 and y.5, where plain polygons are sampled
};

Grid ThrowGrid(Dice& dice)
{
    switch (dice.Between(0, 10))
    {
    case 0: return Grid::Whole;
    case 1: return Grid::Half;
    case 2: return Grid::Quarter;
    case 3: return Grid::Fine;
    case 4: return Grid::OnSampling;
    case 5: return Grid::NearWhole;
    default: return Grid::Any;
    }
}

float OnGrid(float value, float steps)
{
    return std::floor(value * steps) / steps;
}

Corner OnGrid(Dice& dice, Grid grid, Corner corner)
{
    switch (grid)
    {
    case Grid::Any: break;
    case Grid::Whole: return {OnGrid(corner.x, 1.0F), OnGrid(corner.y, 1.0F)};
    case Grid::Half: return {OnGrid(corner.x, 2.0F), OnGrid(corner.y, 2.0F)};
    case Grid::Quarter: return {OnGrid(corner.x, 4.0F), OnGrid(corner.y, 4.0F)};
    case Grid::Fine: return {OnGrid(corner.x, 256.0F), OnGrid(corner.y, 256.0F)};
    case Grid::NearWhole:
    {
        const float x = dice.Of({1.0e-6F, -1.0e-6F, 3.0e-5F, -3.0e-5F, 0.0F});
        const float y = dice.Of({1.0e-6F, -1.0e-6F, 3.0e-5F, -3.0e-5F, 0.0F});
        return {OnGrid(corner.x, 1.0F) + x, OnGrid(corner.y, 1.0F) + y};
    }
    case Grid::OnSampling:
    {
        const float x = dice.Of({0.9F, 0.4F, 0.40001F, 0.89999F});
        const float y = dice.Of({0.5F, 0.5F, 0.49999F, 0.50001F, 0.505F});
        return {OnGrid(corner.x, 1.0F) + x, OnGrid(corner.y, 1.0F) + y};
    }
    }
    return corner;
}

//! Largest coordinate that lies inside.
float Last(unsigned size)
{
    return std::nextafter(static_cast<float>(size), 0.0F);
}

class Thrower
{
public:
    Thrower(Dice& dice, const PolygonSpace& space)
        : m_dice(dice),
          m_space(space),
          m_grid(ThrowGrid(dice)),
          m_reach(space.inside ? 0.0F : ThrowReach(dice))
    {
        // the part of the space in which the corners lie
        const float width  = static_cast<float>(space.width);
        const float height = static_cast<float>(space.height);
        m_low              = {0.0F, 0.0F};
        m_high             = {width, height};
        if (!dice.OneIn(4)) return;
        const float wide = Uniform(dice, 0.0F, width);
        const float high = Uniform(dice, 0.0F, height);
        m_low.x          = Uniform(dice, 0.0F, width - wide);
        m_low.y          = Uniform(dice, 0.0F, height - high);
        m_high           = {m_low.x + wide, m_low.y + high};
    }

    Corner Throw()
    {
        Corner corner{};
        corner.x = Uniform(m_dice, m_low.x - m_reach, m_high.x + m_reach);
        corner.y = Uniform(m_dice, m_low.y - m_reach, m_high.y + m_reach);
        return Kept(OnGrid(m_dice, m_grid, corner));
    }

    Corner Kept(Corner corner) const
    {
        if (!m_space.inside) return corner;
        return {std::clamp(corner.x, 0.0F, Last(m_space.width)), std::clamp(corner.y, 0.0F, Last(m_space.height))};
    }

private:
    static float ThrowReach(Dice& dice)
    {
        switch (dice.Between(0, 15))
        {
        case 0: return 1.0e3F;
        case 1: return 1.0e5F;
        case 2: return 1.0e8F;
        case 3: return 1.0e30F;
        case 4: return 300.0F;
        case 5:
        case 6: return 0.5F;
        default: return 20.0F;
        }
    }

    Dice&        m_dice;
    PolygonSpace m_space;
    Grid         m_grid;
    float        m_reach;
    Corner       m_low{};
    Corner       m_high{};
};

//! A direction of length one; turn: 0 to 4 quarters. Only of operations that are the same on every machine.
Corner DirectionOf(float turn)
{
    const float part = turn - std::floor(turn);
    Corner      corner{1.0F - part, part};
    for (int quarter = static_cast<int>(turn); quarter > 0; --quarter) corner = {-corner.y, corner.x};
    const float length = std::sqrt(corner.x * corner.x + corner.y * corner.y);
    return {corner.x / length, corner.y / length};
}

Outline AroundMiddle(Dice& dice, const PolygonSpace& space, float nearest)
{
    const float        width  = static_cast<float>(space.width);
    const float        height = static_cast<float>(space.height);
    const float        radius = Uniform(dice, 1.5F, std::max(2.0F, std::min(width, height) / 2.0F));
    const float        x      = Uniform(dice, std::min(radius, width / 2.0F), std::max(width - radius, width / 2.0F));
    const float        y = Uniform(dice, std::min(radius, height / 2.0F), std::max(height - radius, height / 2.0F));
    const float        squash = dice.OneIn(2) ? 1.0F : Uniform(dice, 0.3F, 1.0F);
    const int          count  = dice.Between(3, dice.OneIn(3) ? 40 : 12);
    std::vector<float> turns;
    for (int corner = 0; corner < count; ++corner) turns.push_back(Uniform(dice, 0.0F, 4.0F));
    std::sort(turns.begin(), turns.end());
    if (dice.OneIn(2)) std::reverse(turns.begin(), turns.end());

    const Thrower thrower(dice, {space.width, space.height, true});
    Outline       outline;
    for (const float turn : turns)
    {
        const Corner direction = DirectionOf(turn);
        const float  away      = radius * (nearest < 1.0F ? Uniform(dice, nearest, 1.0F) : 1.0F);
        outline.push_back(thrower.Kept({x + away * direction.x, y + away * squash * direction.y}));
    }
    return outline;
}

}  // namespace

Outline ThrowOutline(Dice& dice, const PolygonSpace& space)
{
    const int shape = dice.Between(0, 15);
    if (shape == 0) return ThrowConvex(dice, space);
    if (shape == 1) return ThrowConcave(dice, space);
    Thrower   thrower(dice, space);
    const int count = dice.Between(3, dice.OneIn(3) ? 40 : 9);
    Outline   outline{thrower.Throw()};
    while (static_cast<int>(outline.size()) < count)
    {
        const Corner before = outline.back();
        Corner       corner = thrower.Throw();
        switch (shape)
        {
        case 2:  // steps along rows and columns
            if (outline.size() % 2 == 1)
                corner.x = before.x;
            else
                corner.y = before.y;
            break;
        case 3:  // nearly level sides
            if (dice.OneIn(2)) corner.y = before.y + Uniform(dice, -0.06F, 0.06F);
            break;
        case 4:  // nearly upright ones
            if (dice.OneIn(2)) corner.x = before.x + Uniform(dice, -0.6F, 0.6F);
            break;
        case 5:  // on the line through the last two
            if (outline.size() >= 2 && dice.OneIn(2))
            {
                const Corner& first = outline[outline.size() - 2];
                const float   along = dice.Of({0.5F, 2.0F, -1.0F, 1.0F, 0.0F});
                corner              = {first.x + along * (before.x - first.x), first.y + along * (before.y - first.y)};
            }
            break;
        case 6:  // back to an earlier corner
            if (dice.OneIn(3)) corner = outline[dice.Below(static_cast<unsigned>(outline.size()))];
            break;
        case 7:  // a sliver: there and almost the same way back
            if (outline.size() % 2 == 0)
            {
                const Corner& first = outline[outline.size() - 2];
                corner              = {first.x + Uniform(dice, -0.9F, 0.9F), first.y + Uniform(dice, -0.9F, 0.9F)};
            }
            break;
        default: break;
        }
        outline.push_back(thrower.Kept(corner));
        if (dice.OneIn(20)) outline.push_back(outline.back());
    }
    if (dice.OneIn(20)) outline.push_back(outline.front());
    return outline;
}

Outline ThrowConvex(Dice& dice, const PolygonSpace& space)
{
    return AroundMiddle(dice, space, 1.0F);
}

Outline ThrowConcave(Dice& dice, const PolygonSpace& space)
{
    return AroundMiddle(dice, space, 0.15F);
}

double TwiceTheArea(const reference::Outline& outline)
{
    double area = 0.0;
    for (std::size_t at = 0; at < outline.size(); ++at)
    {
        const reference::Corner& a = outline[at];
        const reference::Corner& b = outline[(at + 1) % outline.size()];
        area +=
            static_cast<double>(a.x) * static_cast<double>(b.y) - static_cast<double>(a.y) * static_cast<double>(b.x);
    }
    return area;
}

std::string Described(const Outline& outline)
{
    std::string text;
    for (std::size_t index = 0; index < outline.size() && index < 100; ++index)
    {
        char corner[64];
        std::snprintf(corner, sizeof corner, "(%.9g, %.9g) ", static_cast<double>(outline[index].x),
                      static_cast<double>(outline[index].y));
        text += corner;
    }
    return text;
}

}  // namespace support
