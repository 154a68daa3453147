// Scene_NightFlight: a sky full of small pictures. The moon's brightness serves as a map, so that it can be given a
// colour and be laid over the sky without its black ground.
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{
namespace
{

constexpr Box Whole = {0, 0, 64, 64};

//! Scattered by a fixed recurrence: the same on every machine.
class Scatter
{
public:
    explicit Scatter(Tov_UInt seed) : m_state(seed) {}

    //! 0 to below - 1
    Tov_Int Next(Tov_Int below)
    {
        m_state = m_state * 1664525U + 1013904223U;
        return static_cast<Tov_Int>((m_state >> 12) % static_cast<Tov_UInt>(below));
    }

private:
    Tov_UInt m_state;
};

constexpr Tov_Int MoonX      = 338;  // the centre
constexpr Tov_Int MoonY      = 54;
constexpr Tov_Int MoonRadius = 30;

bool IsOnMoon(Tov_Int x, Tov_Int y)
{
    return (x - MoonX) * (x - MoonX) + (y - MoonY) * (y - MoonY) <= MoonRadius * MoonRadius;
}

void DrawStars(Kanvo_BitmapARGB32& target)
{
    Scatter scatter(7);
    for (int star = 0; star < 180; ++star)
    {
        const Tov_Int x     = scatter.Next(400);
        const Tov_Int y     = scatter.Next(170);
        const auto    alpha = static_cast<Tov_UInt>(40 + scatter.Next(200));
        if (IsOnMoon(x, y))
        {
            continue;
        }
        Fill(target, {x, y, 1, 1}, alpha << 24 | 0xFFFFFFU);
        if (alpha > 222)
        {
            Fill(target, {x - 1, y, 3, 1}, 0x50FFFFFFU);
            Fill(target, {x, y - 1, 1, 3}, 0x50FFFFFFU);
        }
    }
}

//! The moon without the corners of its picture: row by row, as wide as the circle is there.
void DrawMoon(Kanvo_BitmapARGB32& target, const Input& input)
{
    for (Tov_Int row = -MoonRadius; row <= MoonRadius; ++row)
    {
        Tov_Int half = 0;
        while (IsOnMoon(MoonX + half + 1, MoonY + row))
        {
            ++half;
        }
        const Box part = {32 - half, 32 + row, static_cast<Tov_UInt>(2 * half + 1), 1};
        Paint(target, input.moon.a8, part, MoonX - half, MoonY + row, 0xFFFFF3D0U);
    }
}

//! A wave of straight lines, from 0 to height and back once per period.
Tov_Int Zigzag(Tov_Int x, Tov_Int period, Tov_Int height)
{
    const Tov_Int phase = x % period;
    return (phase * 2 < period ? phase : period - phase) * 2 * height / period;
}

//! Two ranges of hills in front of each other.
void DrawHills(Kanvo_BitmapARGB32& target, Tov_Int horizon)
{
    for (Tov_Int x = 0; x < 400; ++x)
    {
        const Tov_Int far  = 6 + Zigzag(x + 40, 180, 22) + Zigzag(x, 46, 6) + Zigzag(x, 13, 2);
        const Tov_Int near = 2 + Zigzag(x + 130, 260, 18) + Zigzag(x + 7, 38, 4) + Zigzag(x, 9, 2);
        Fill(target, {x, horizon - far, 1, static_cast<Tov_UInt>(far)}, 0xFF1E2A55U);
        Fill(target, {x, horizon - near, 1, static_cast<Tov_UInt>(near)}, 0xFF111A38U);
    }
}

//! Water, and on it the broken light of the moon, wider and fainter towards the viewer.
void DrawWater(Kanvo_BitmapARGB32& target, Tov_Int horizon)
{
    const Tov_Int depth = 240 - horizon;
    Gradient(target, {0, horizon, 400, static_cast<Tov_UInt>(depth)}, 0xFF22305FU, 0xFF070B1AU);
    Fill(target, {0, horizon, 400, 1}, 0x50A8C0FFU);
    Scatter scatter(77);
    for (Tov_Int row = 1; row < depth; ++row)
    {
        const Tov_Int reach = 10 + row / 2;
        for (int glint = 0; glint < 6; ++glint)
        {
            const Tov_Int aside  = scatter.Next(reach) + scatter.Next(reach) - reach;  // mostly near the middle
            const Tov_Int length = 2 + scatter.Next(8);
            const auto    alpha  = static_cast<Tov_UInt>(110 - row + scatter.Next(50));
            Fill(target, {MoonX + aside - length / 2, horizon + row, static_cast<Tov_UInt>(length), 1},
                 alpha << 24 | 0xFFF3D0U);
        }
    }
}

}  // namespace

void NightFlight(Kanvo_BitmapARGB32& target, const Input& input)
{
    constexpr Tov_Int Horizon = 184;

    Gradient(target, {0, 0, 400, Horizon}, 0xFF050816U, 0xFF3A4A86U);
    DrawStars(target);
    DrawMoon(target, input);
    Put(target, input.planet.argb32, Whole, 30, 24, Blended);
    DrawHills(target, Horizon);
    DrawWater(target, Horizon);

    struct Balloon
    {
        Tov_Int   x;
        Tov_Int   y;
        Tov_UByte alpha;
    };
    constexpr Balloon Balloons[] = {{168, 34, 70}, {228, 66, 110}, {120, 76, 150}, {252, 128, 200}, {60, 132, Blended}};
    for (const Balloon& balloon : Balloons)
    {
        Put(target, input.balloon.argb32, Whole, balloon.x, balloon.y, balloon.alpha);
    }

    Caption(target, 62, 92, "indexed", Quiet, Align::Centre);
    Caption(target, MoonX, 92, "16-bit grey", Quiet, Align::Centre);
    Caption(target, 90, 200, "interlaced", Ink, Align::Centre);
}

}  // namespace scenes
