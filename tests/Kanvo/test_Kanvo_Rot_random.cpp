// Random rotated blits against the naive reference: pixels, padding, messages, that every sample lies inside the source
// rectangle, and that nothing but the target's pixels changes. Source, map and target lie between protected pages. 500,000
// calls: 250,000 RotBlit, 100,000 RotBlitColor, 150,000 RotBlitAlpha; every case has a seed of its own and can be replayed
// alone (Dice.h).
#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "CrashNote.h"
#include "DrawSpies.h"
#include "RandomPictures.h"
#include "Reference_Rot.h"
#include "RotEdges.h"
#include "StretchSpies.h"

namespace
{

using reference::Format;
using support::Dice;
using support::Known;
using support::PictureArea;

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

//! Everything that one random call is made of.
struct Case
{
    std::uint64_t                  seed;
    Operation                      operation;
    PictureArea                    source;  // or the map of RotBlitColor
    PictureArea                    map;
    PictureArea                    target;
    bool                           self;       // the target is its own source
    bool                           sourceMap;  // the source is its own map
    std::optional<reference::Clip> clip;
    reference::RotWhere            where;
    std::uint32_t                  flags;
    int                            alpha;
    std::uint32_t                  color;  // or colour key
    unsigned                       renderState;
    bool                           locked;
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

Known ThrowOther(Dice& dice)
{
    const unsigned type = dice.Of<unsigned>({BM_UNKNWON, BM_RGB555, BM_ALPHA1, BM_QUANTITY, 255, 0x104});
    return {Format::Other, type};
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
    case Operation::Color:
        return dice.Of({KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_A8, KNOWN_A8, KNOWN_A8, KNOWN_A8, KNOWN_A8,
                        KNOWN_A8, KNOWN_ALPHA52, KNOWN_RGB565, other});
    case Operation::Alpha: break;
    }
    return dice.Of({KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_RGB565, KNOWN_RGB565, KNOWN_RGB565, KNOWN_A8,
                    KNOWN_A8, KNOWN_A8, KNOWN_RGB32, other});
}

Known ThrowMapFormat(Dice& dice)
{
    using namespace support;
    const Known other = ThrowOther(dice);
    return dice.Of({KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_A8, KNOWN_A8, KNOWN_A8, KNOWN_A8,
                    KNOWN_ALPHA52, KNOWN_RGB32, other});
}

Case ThrowCase(std::uint64_t seed, Operation operation)
{
    Dice dice(seed);
    Case thrown{};
    thrown.seed        = seed;
    thrown.operation   = operation;
    thrown.source      = support::ThrowPicture(dice, ThrowSourceFormat(dice, operation));
    const auto through = ThrowMapFormat(dice);
    thrown.map         = dice.OneIn(2) ? support::ThrowPicture(dice, through)
                                       : support::ThrowPicture(dice, through, thrown.source.width, thrown.source.height);
    thrown.target      = support::ThrowPicture(dice, support::KNOWN_ARGB32);
    const bool isWords = thrown.source.known.format == Format::Argb32;
    thrown.self        = isWords && dice.OneIn(8);
    if (thrown.self) thrown.source = thrown.target;
    thrown.sourceMap = dice.OneIn(10);
    if (thrown.sourceMap) thrown.map = thrown.source;
    thrown.clip    = support::ThrowAnyClip(dice, thrown.target);
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
    thrown.color =
        operation == Operation::Rot ? support::ThrowKey(dice, thrown.source.known.format) : dice.NextHostileWord();
    thrown.renderState = dice.Of<unsigned>({OB_NONE, OB_NEON});
    thrown.locked      = !dice.OneIn(64);
    return thrown;
}

std::string Described(const Case& thrown)
{
    const auto& where = thrown.where;
    char        text[900];
    std::snprintf(
        text, sizeof text,
        "seed %llu: %s %ux%u at (%u, %u) to (%.9g, %.9g), angle %.9g, stretch %.9g %.9g, centre (%.9g, %.9g), "
        "flags %X, alpha %d, %s %08X, OPTIMIZED_BLIT %u%s%s%s; source %s; map %s; target %s, ",
        static_cast<unsigned long long>(thrown.seed), NameOf(thrown.operation), where.width, where.height, where.srcX,
        where.srcY, static_cast<double>(where.dstX), static_cast<double>(where.dstY), static_cast<double>(where.angle),
        static_cast<double>(where.stretchX), static_cast<double>(where.stretchY), static_cast<double>(where.rotPosX),
        static_cast<double>(where.rotPosY), thrown.flags, thrown.alpha,
        thrown.operation == Operation::Rot ? "key" : "colour", thrown.color, thrown.renderState,
        thrown.self ? ", onto itself" : "", thrown.sourceMap ? ", its own map" : "",
        thrown.locked ? "" : ", not locked", support::Described(thrown.source).c_str(),
        support::Described(thrown.map).c_str(), support::Described(thrown.target).c_str());
    return text + support::Described(thrown.clip) + ": ";
}

// ---- running a case -------------------------------------------------------------------------------------------------

class RandomTurns
{
public:
    RandomTurns() { m_screens[OB_NEON].GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON); }

    //! An empty text, or what is wrong.
    std::string Run(const Case& thrown)
    {
        Prepare(thrown);
        const std::string failure = RunOn(thrown);
        return failure.empty() ? failure : Described(thrown) + failure;
    }

    //! How many calls had something to draw by format of source, how often a message was due, how many pixels were drawn.
    struct Seen
    {
        std::map<Format, std::uint64_t>      drawn;
        std::map<std::string, std::uint64_t> messages;
        std::uint64_t                        pixels = 0;
    };
    const Seen& WhatWasSeen() const { return m_seen; }

private:
    void Prepare(const Case& thrown)
    {
        Dice           dice(thrown.seed ^ 0x5EED);
        const bool     keyed = thrown.operation == Operation::Rot && (thrown.flags & BLIT_COLORKEY) != 0;
        const auto     key   = keyed ? std::optional<std::uint32_t>(thrown.color) : std::nullopt;
        const unsigned oneIn = dice.Of({1U, 3U, 30U});
        m_targetPixels       = thrown.target.In(m_targetArena, thrown.target.PixelBytes());
        m_sourcePixels = thrown.self ? m_targetPixels : thrown.source.In(m_sourceArena, thrown.source.PixelBytes());
        m_mapPixels    = thrown.sourceMap ? m_sourcePixels : thrown.map.In(m_mapArena, thrown.map.PixelBytes());
        FillPicture(dice, m_targetPixels, thrown.target);
        if (!thrown.self) FillPicture(dice, m_sourcePixels, thrown.source, key, oneIn);
        if (!thrown.sourceMap) FillPicture(dice, m_mapPixels, thrown.map);
        m_expected.assign(m_targetPixels, m_targetPixels + thrown.target.Count());
        m_sourceBefore.assign(m_sourcePixels, m_sourcePixels + thrown.source.Count());
        m_mapBefore.assign(m_mapPixels, m_mapPixels + thrown.map.Count());
    }

    reference::RotOutcome Expect(const Case& thrown, const reference::Target& target, const reference::Picture& source,
                                 const reference::Picture& map, const std::optional<reference::RotGeometry>& geometry)
    {
        switch (thrown.operation)
        {
        case Operation::Rot:
            return reference::RotBlit(target, source, geometry, thrown.flags, thrown.alpha, thrown.color);
        case Operation::Color:
            return reference::RotBlitColor(target, source, geometry, thrown.color, thrown.flags, thrown.alpha);
        case Operation::Alpha: break;
        }
        return reference::RotBlitAlpha(target, source, map, geometry, thrown.flags, thrown.alpha);
    }

    void Call(const Case& thrown, Kanvo_Bitmap& target, Kanvo_Bitmap* source, Kanvo_Bitmap* map)
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

    std::string RunOn(const Case& thrown)
    {
        Kanvo_Screen* const    screen = &m_screens[thrown.renderState];
        const PictureArea&     area   = thrown.target;
        support::PitchedTarget target(screen, area.width, area.height, m_targetPixels, area.pitch);
        if (thrown.clip)
        {
            target.SetCliprect(static_cast<Tov_UInt>(thrown.clip->minX), static_cast<Tov_UInt>(thrown.clip->minY),
                               static_cast<Tov_UInt>(thrown.clip->maxX), static_cast<Tov_UInt>(thrown.clip->maxY));
        }
        if (thrown.locked) target.Lock();
        support::AnyBitmap  otherSource(screen, thrown.source, m_sourcePixels);
        support::AnyBitmap  otherMap(screen, thrown.map, m_mapPixels);
        Kanvo_Bitmap* const source = thrown.self ? &target : otherSource.Get();
        Kanvo_Bitmap* const map    = thrown.sourceMap ? source : otherMap.Get();

        reference::Target onto;
        onto.picture       = area.Over(m_expected.data());
        onto.clip          = support::ClipOf(target);
        onto.locked        = thrown.locked;
        const auto from    = thrown.self ? onto.picture : thrown.source.Over(m_sourcePixels);
        const auto through = thrown.sourceMap ? from : thrown.map.Over(m_mapPixels);
        const auto cut     = CutToSource(thrown.where, from, thrown.operation == Operation::Alpha ? through : from);
        const auto edges   = support::EdgesOf(target, cut, thrown.flags);
        if (edges)
        {
            const auto wrong = support::WrongEdges(*edges, ScanRot(*edges, onto.clip), onto.clip, cut,
                                                   (thrown.flags & BLIT_BILINEAR) != 0);
            if (!wrong.empty()) return wrong;
        }
        const auto outcome = Expect(thrown, onto, from, through, edges);
        m_seen.pixels += static_cast<std::uint64_t>(outcome.pixels);
        if (outcome.pixels > 0) ++m_seen.drawn[from.format];
        for (const std::string& message : outcome.messages) ++m_seen.messages[message];

        m_asserts.Clear();
        m_loops.Clear();
        m_fills.Clear();
        m_counters.Clear();
        m_targetObject.Take(target);
        otherSource.TakeInto(m_sourceObject);
        otherMap.TakeInto(m_mapObject);
        m_screenObject.Take(*screen);
        {
            support::ForbiddenPadding sourcePadding(thrown.source, m_sourcePixels);
            support::ForbiddenPadding mapPadding(thrown.map, m_mapPixels);
            Call(thrown, target, source, map);
        }
        return Compare(thrown, outcome);
    }

    std::string Compare(const Case& thrown, const reference::RotOutcome& outcome)
    {
        if (std::memcmp(m_expected.data(), m_targetPixels, m_expected.size()) != 0)
        {
            return FirstDifference(m_expected.data(), m_targetPixels, thrown.target);
        }
        if (m_asserts.Count() != outcome.messages.size() || m_asserts.Texts() != outcome.messages)
        {
            return "messages: expected " + testing::PrintToString(outcome.messages) + ", got " +
                   testing::PrintToString(m_asserts.Texts());
        }
        if (!m_loops.Calls().empty() || !m_fills.Calls().empty()) return "a loop ran";
        if (!m_counters.Events().empty()) return "a counter ran";
        if (!thrown.self && std::memcmp(m_sourceBefore.data(), m_sourcePixels, m_sourceBefore.size()) != 0)
        {
            return "the source's pixels changed";
        }
        if (!(thrown.self && thrown.sourceMap) && std::memcmp(m_mapBefore.data(), m_mapPixels, m_mapBefore.size()) != 0)
        {
            return "the map's pixels changed";
        }
        if (!m_targetObject.IsUnchanged()) return "the target object changed";
        if (!m_sourceObject.IsUnchanged()) return "the source object changed";
        if (!m_mapObject.IsUnchanged()) return "the map object changed";
        if (!m_screenObject.IsUnchanged()) return "the screen or its render state changed";
        return {};
    }

    Seen                      m_seen;
    Kanvo                     m_library;
    Kanvo_Screen              m_screens[2] = {Kanvo_Screen(&m_library), Kanvo_Screen(&m_library)};
    support::Fence            m_sourceArena{support::ARENA_BYTES};
    support::Fence            m_mapArena{support::ARENA_BYTES};
    support::Fence            m_targetArena{support::ARENA_BYTES};
    std::uint8_t*             m_sourcePixels = nullptr;
    std::uint8_t*             m_mapPixels    = nullptr;
    std::uint8_t*             m_targetPixels = nullptr;
    std::vector<std::uint8_t> m_expected;
    std::vector<std::uint8_t> m_sourceBefore;
    std::vector<std::uint8_t> m_mapBefore;
    support::Snapshot         m_targetObject;
    support::Snapshot         m_sourceObject;
    support::Snapshot         m_mapObject;
    support::Snapshot         m_screenObject;
    support::AssertCapture    m_asserts;
    support::LoopSpies        m_fills;
    support::StretchSpies     m_loops;
    support::PerfSpies        m_counters;
};

//! Also expects each of the formats and messages now and then, that the test may not run idle.
void RunAll(Operation operation, std::uint64_t cases, const std::vector<Format>& formats,
            const std::vector<std::string>& messages)
{
    const support::Seeds seeds(cases);
    support::CrashNote   note(NameOf(operation));
    RandomTurns          turns;
    int                  failures = 0;
    for (std::uint64_t index = 0; index < seeds.count && failures < 3; ++index)
    {
        note.InCase(seeds.first + index);
        const std::string failure = turns.Run(ThrowCase(seeds.first + index, operation));
        if (failure.empty()) continue;
        ++failures;
        ADD_FAILURE() << failure;
    }
    if (failures > 0 || seeds.count < 10000) return;
    RandomTurns::Seen seen = turns.WhatWasSeen();
    for (const Format format : formats) EXPECT_GT(seen.drawn[format], seeds.count / 20) << support::NameOf(format);
    for (const std::string& message : messages) EXPECT_GT(seen.messages[message], seeds.count / 200) << message;
    EXPECT_GT(seen.pixels, seeds.count * 10);
}

constexpr const char* NOT_LOCKED    = "bitmap not locked";
constexpr const char* NOT_SUPPORTED = "blit not supported";
constexpr const char* NOT_A_MAP     = "alpha bitmap is not the right type";

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
