// Random rotated blits against the naive reference: pixels, padding, messages, that every sample lies inside the source
// rectangle, and that nothing but the target's pixels changes. Source, map and target lie between protected pages. 500,000
// calls: 250,000 RotBlit, 100,000 RotBlitColor, 150,000 RotBlitAlpha; every case has a seed of its own and can be replayed
// alone (Dice.h).
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BlitStage.h"
#include "RandomCalls.h"
#include "Reference_Rot.h"
#include "RotEdges.h"
#include "StretchSpies.h"

namespace
{

using reference::Format;
using support::Dice;
using support::Known;
using support::NOT_A_MAP;
using support::NOT_LOCKED;
using support::NOT_SUPPORTED;

enum class Operation
{
    Rot,
    Color,
    Alpha
};

const char* NameOf(Operation operation)
{
    return operation == Operation::Rot ? "RotBlit" : operation == Operation::Color ? "RotBlitColor" : "RotBlitAlpha";
}

struct Case : support::RandomCall
{
    Operation           operation;
    reference::RotWhere where;
};

// ---- throwing a case ------------------------------------------------------------------------------------------------

//! From 0 to 1, in steps of 1 / 2^24.
float ThrowUnit(Dice& dice)
{
    return static_cast<float>(dice.Below(1U << 24)) / 16777216.0F;
}

float ThrowHostile(Dice& dice)
{
    using Limits = std::numeric_limits<float>;
    return dice.Of({Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), Limits::max(), -Limits::max(),
                    Limits::denorm_min(), -Limits::denorm_min(), Limits::min(), 0.0F, -0.0F, 1e30F, -1e30F, 1e6F,
                    1000001.0F, -1000001.0F, 32768.0F, 2147483648.0F, 1e-10F});
}

float ThrowAngle(Dice& dice)
{
    if (dice.OneIn(80)) return ThrowHostile(dice);
    const auto quarter = static_cast<float>(90 * dice.Between(-8, 8));
    if (dice.OneIn(4)) return quarter;
    const float tenth = static_cast<float>(dice.Between(-3600, 3600)) / 10.0F;
    if (dice.OneIn(3)) return tenth;
    const float unit = ThrowUnit(dice);
    if (dice.OneIn(6)) return quarter + (unit - 0.5F) * dice.Of({2.0F, 0.1F, 0.001F});
    return unit * 360.0F;
}

float ThrowStretch(Dice& dice)
{
    if (dice.OneIn(100)) return ThrowHostile(dice);
    const float sign = dice.OneIn(4) ? -1.0F : 1.0F;
    if (dice.OneIn(3)) return sign;
    if (dice.OneIn(6)) return sign * dice.Of({0.5F, 2.0F, 3.0F, 0.25F});
    const float unit = ThrowUnit(dice);
    if (dice.OneIn(20)) return sign * unit * dice.Of({0.01F, 100.0F, 2000.0F});
    return sign * (0.05F + unit * dice.Of({0.8F, 3.0F, 6.0F, 6.0F}));
}

float ThrowPivot(Dice& dice, std::uint32_t length)
{
    const auto size = static_cast<float>(length);
    if (dice.OneIn(100)) return ThrowHostile(dice);
    if (dice.OneIn(3)) return size / 2;
    if (dice.OneIn(3)) return 0;
    const float unit = ThrowUnit(dice);
    if (dice.OneIn(8)) return (unit - 0.5F) * 60.0F;
    return std::floor(unit * size);
}

float ThrowPoint(Dice& dice, std::uint32_t size)
{
    if (dice.OneIn(100)) return ThrowHostile(dice);
    const float unit = ThrowUnit(dice);
    const float point =
        dice.OneIn(4) ? unit * (static_cast<float>(size) + 8.0F) - 4.0F : (0.25F + unit / 2) * static_cast<float>(size);
    switch (dice.Below(4))
    {
    case 0: return std::floor(point);
    case 1: return std::floor(point) + 0.5F;
    default: return point;
    }
}

std::uint32_t ThrowSize(Dice& dice, std::uint32_t size)
{
    if (dice.OneIn(120)) return dice.Of<std::uint32_t>({0, 32767, 32768, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF});
    if (dice.OneIn(4)) return static_cast<std::uint32_t>(dice.Between(1, static_cast<int>(size)));
    if (dice.OneIn(12)) return size + dice.Below(4);
    return size;
}

std::uint32_t ThrowPosition(Dice& dice, std::uint32_t size, std::uint32_t length)
{
    if (dice.OneIn(64)) return dice.Of<std::uint32_t>({32767, 0x10000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF});
    if (dice.OneIn(16)) return dice.Below(size + 2);
    return length < size ? dice.Below(size - length + 1) : 0;
}

Known ThrowSourceFormat(Dice& dice, Operation operation)
{
    using namespace support;
    const Known other = ThrowOther(dice);
    switch (operation)
    {
    case Operation::Rot:
        return dice.Of({KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_RGB32, KNOWN_RGB32, KNOWN_RGB32,
                        KNOWN_RGB32, KNOWN_RGB32, KNOWN_RGB32, KNOWN_A8, KNOWN_A8, KNOWN_A8, KNOWN_A8, KNOWN_ALPHA52,
                        KNOWN_RGB565, other});
    case Operation::Color: return ThrowColorMapFormat(dice);
    case Operation::Alpha: break;
    }
    return dice.Of({KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_RGB565, KNOWN_RGB565, KNOWN_RGB565, KNOWN_A8,
                    KNOWN_A8, KNOWN_A8, KNOWN_RGB32, other});
}

Case ThrowCase(std::uint64_t seed, Operation operation)
{
    Dice dice(seed);
    Case thrown{};
    thrown.seed      = seed;
    thrown.operation = operation;
    ThrowPictures(dice, thrown, ThrowSourceFormat(dice, operation));
    auto& where    = thrown.where;
    where.width    = ThrowSize(dice, thrown.source.width);
    where.height   = ThrowSize(dice, thrown.source.height);
    where.srcX     = ThrowPosition(dice, thrown.source.width, where.width);
    where.srcY     = ThrowPosition(dice, thrown.source.height, where.height);
    where.dstX     = ThrowPoint(dice, thrown.target.width);
    where.dstY     = ThrowPoint(dice, thrown.target.height);
    where.angle    = ThrowAngle(dice);
    where.stretchX = ThrowStretch(dice);
    where.stretchY = dice.OneIn(3) ? where.stretchX : ThrowStretch(dice);
    where.rotPosX  = ThrowPivot(dice, where.width);
    where.rotPosY  = ThrowPivot(dice, where.height);
    thrown.flags   = 0;
    if (dice.OneIn(2)) thrown.flags |= BLIT_BILINEAR;
    if (dice.OneIn(3)) thrown.flags |= BLIT_COLORKEY;
    if (dice.OneIn(16)) thrown.flags |= dice.Of<std::uint32_t>({BLIT_NOCLIP, BLIT_ASPECT, 0x2, 0x80000000});
    thrown.alpha = support::ThrowAlpha(dice);
    thrown.keyed = operation == Operation::Rot && (thrown.flags & BLIT_COLORKEY) != 0;
    thrown.color =
        operation == Operation::Rot ? support::ThrowKey(dice, thrown.source.known.format) : dice.NextHostileWord();
    thrown.renderState = dice.Of<unsigned>({OB_NONE, OB_NEON});
    thrown.locked      = !dice.OneIn(64);
    return thrown;
}

std::string Described(const Case& thrown)
{
    const auto& where = thrown.where;
    char        text[300];
    std::snprintf(
        text, sizeof text,
        "seed %llu: %s %ux%u at (%u, %u) to (%.9g, %.9g), angle %.9g, stretch %.9g %.9g, centre (%.9g, %.9g), ",
        static_cast<unsigned long long>(thrown.seed), NameOf(thrown.operation), where.width, where.height, where.srcX,
        where.srcY, static_cast<double>(where.dstX), static_cast<double>(where.dstY), static_cast<double>(where.angle),
        static_cast<double>(where.stretchX), static_cast<double>(where.stretchY), static_cast<double>(where.rotPosX),
        static_cast<double>(where.rotPosY));
    return text + DescribedCall(thrown);
}

// ---- running a case -------------------------------------------------------------------------------------------------

//! Work is told apart by the source's format.
class RandomTurns : public support::RandomCalls<RandomTurns, Format>
{
public:
    std::string WrongBefore(const Case& thrown, const Kanvo_Bitmap& target, reference::Target& onto,
                            const reference::Picture& source, const reference::Picture* map)
    {
        onto.clip      = support::ClipOf(target);
        const auto cut = CutToSource(thrown.where, source, thrown.operation == Operation::Alpha ? *map : source);
        m_edges        = support::EdgesOf(target, cut, thrown.flags);
        return m_edges ? support::WrongEdges(*m_edges, ScanRot(*m_edges, onto.clip), onto.clip, cut,
                                             (thrown.flags & BLIT_BILINEAR) != 0)
                       : std::string();
    }

    reference::RotOutcome Expect(const Case& thrown, const reference::Target& target, const reference::Picture& source,
                                 const reference::Picture* map)
    {
        switch (thrown.operation)
        {
        case Operation::Rot:
            return reference::RotBlit(target, source, m_edges, thrown.flags, thrown.alpha, thrown.color);
        case Operation::Color:
            return reference::RotBlitColor(target, source, m_edges, thrown.color, thrown.flags, thrown.alpha);
        case Operation::Alpha: break;
        }
        return reference::RotBlitAlpha(target, source, *map, m_edges, thrown.flags, thrown.alpha);
    }

    static void Call(const Case& thrown, Kanvo_Bitmap& target, Kanvo_Bitmap* source, Kanvo_Bitmap* map)
    {
        const auto& at    = thrown.where;
        const auto  alpha = static_cast<Tov_UByte>(thrown.alpha);
        switch (thrown.operation)
        {
        case Operation::Rot:
            target.RotBlit(source, at.width, at.height, at.srcX, at.srcY, at.dstX, at.dstY, at.angle, thrown.flags,
                           at.stretchX, at.stretchY, at.rotPosX, at.rotPosY, alpha, thrown.color);
            break;
        case Operation::Color:
            target.RotBlitColor(source, at.width, at.height, at.srcX, at.srcY, at.dstX, at.dstY, thrown.color, at.angle,
                                thrown.flags, at.stretchX, at.stretchY, at.rotPosX, at.rotPosY, alpha);
            break;
        case Operation::Alpha:
            target.RotBlitAlpha(source, map, at.width, at.height, at.srcX, at.srcY, at.dstX, at.dstY, at.angle,
                                thrown.flags, at.stretchX, at.stretchY, at.rotPosX, at.rotPosY, alpha);
            break;
        }
    }

    static Format        WorkOf(const Case& thrown, const reference::RotOutcome&) { return thrown.source.known.format; }
    static std::uint64_t PixelsOf(const reference::RotOutcome& outcome)
    {
        return static_cast<std::uint64_t>(outcome.pixels);
    }

    std::string WrongCalls(const Case&, const Kanvo_Bitmap&, const reference::RotOutcome&) const
    {
        if (!m_stretches.Calls().empty() || !m_loops.Calls().empty()) return "a loop ran";
        return m_counters.Events().empty() ? "" : "a counter ran";
    }

    void ClearSpies() { m_stretches.Clear(); }

private:
    std::optional<reference::RotGeometry> m_edges;
    support::StretchSpies                 m_stretches;
};

void RunAll(Operation operation, std::uint64_t cases, const std::vector<Format>& formats,
            const std::vector<std::string>& messages)
{
    support::RunCases<RandomTurns, Format>(NameOf(operation), cases, {formats, 20, messages, 200},
                                           [=](std::uint64_t seed) { return ThrowCase(seed, operation); });
}

}  // namespace

TEST(RotRandom, RotBlitDrawsWhatTheNaiveReferenceDraws)
{
    RunAll(Operation::Rot, 250000, {Format::Argb32, Format::Rgb32, Format::A8}, {NOT_LOCKED, NOT_SUPPORTED});
}

TEST(RotRandom, RotBlitColorDrawsWhatTheNaiveReferenceDraws)
{
    RunAll(Operation::Color, 100000, {Format::Argb32, Format::A8}, {NOT_LOCKED, NOT_A_MAP});
}

TEST(RotRandom, RotBlitAlphaDrawsWhatTheNaiveReferenceDraws)
{
    RunAll(Operation::Alpha, 150000, {Format::Argb32, Format::Rgb565, Format::A8},
           {NOT_LOCKED, NOT_SUPPORTED, NOT_A_MAP});
}
