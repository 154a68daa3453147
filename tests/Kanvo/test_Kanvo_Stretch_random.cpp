// Random scaled blits against the naive reference: pixels, padding, messages, which loop did the work and with which
// arguments, and that nothing but the target's pixels changes. Source, map and target lie between protected pages. 500,000
// calls: 250,000 StretchBlit, 125,000 StretchBlitColor, 125,000 StretchBlitAlpha; every case has a seed of its own and can
// be replayed alone (Dice.h).
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "CrashNote.h"
#include "DrawSpies.h"
#include "RandomPictures.h"
#include "Reference_Stretch.h"
#include "StretchSpies.h"

namespace
{

using reference::Format;
using reference::StretchWorker;
using support::Dice;
using support::Known;
using support::PictureArea;

enum class Operation
{
    Stretch,
    Color,
    Alpha
};

const char* NameOf(Operation operation)
{
    return operation == Operation::Stretch ? "StretchBlit"
           : operation == Operation::Color ? "StretchBlitColor"
                                           : "StretchBlitAlpha";
}

//! Everything that one random call is made of.
struct Case
{
    std::uint64_t                  seed;
    Operation                      operation;
    PictureArea                    source;  // or the map of StretchBlitColor
    PictureArea                    map;
    PictureArea                    target;
    bool                           self;       // the target is its own source
    bool                           sourceMap;  // the source is its own map
    std::optional<reference::Clip> clip;
    reference::StretchWhere        where;
    std::uint32_t                  flags;
    int                            alpha;
    std::uint32_t                  color;  // or colour key
    unsigned                       renderState;
    bool                           locked;
    bool                           swapped;  // a target with an encoding of its own
};

// ---- throwing a case ------------------------------------------------------------------------------------------------

std::uint32_t ThrowSourceSize(Dice& dice, std::uint32_t size)
{
    if (dice.OneIn(80)) return dice.Of<std::uint32_t>({0, 0, 32767, 32768, 65536, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF});
    if (dice.OneIn(2)) return static_cast<std::uint32_t>(dice.Between(1, static_cast<int>(size)));
    if (dice.OneIn(8)) return size + dice.Below(4);
    if (dice.OneIn(6)) return static_cast<std::uint32_t>(dice.Between(1, 2));
    return size;
}

std::uint32_t ThrowSourcePosition(Dice& dice, std::uint32_t size, std::uint32_t length)
{
    if (dice.OneIn(64))
    {
        return dice.Of<std::uint32_t>({32767, 0x10000, 0x10001, 0x7FFFFFFF, 0x80000000, 0xFFFFC000, 0xFFFFBFFF});
    }
    if (dice.OneIn(32)) return static_cast<std::uint32_t>(dice.Between(-5, static_cast<int>(size) + 2));
    return length < size ? dice.Below(size - length + 1) : 0;
}

std::uint32_t ThrowDestinationSize(Dice& dice, std::uint32_t source)
{
    if (dice.OneIn(80)) return dice.Of<std::uint32_t>({0, 0, 32767, 32768, 65535, 0x7FFFFFFF, 0xFFFFFFFF});
    if (dice.OneIn(16)) return dice.Of<std::uint32_t>({100, 1000, 20000});
    if (dice.OneIn(8)) return source;
    if (dice.OneIn(12)) return source * 2;
    return static_cast<std::uint32_t>(dice.Between(1, dice.Of({3, 30, 60, 60})));
}

std::int32_t ThrowPosition(Dice& dice, std::uint32_t size, std::int64_t clipMin, std::uint32_t length)
{
    if (dice.OneIn(100)) return dice.Of<std::int32_t>({INT32_MIN, INT32_MIN + 1, -32768, -32769, 32767, INT32_MAX});
    if (length > 64 && length < 40000 && !dice.OneIn(4)) return -static_cast<std::int32_t>(dice.Below(length));
    if (dice.OneIn(10)) return dice.Between(-40, static_cast<int>(size) + 10);
    const int from = clipMin < size && !dice.OneIn(4) ? static_cast<int>(clipMin) : 0;
    if (dice.OneIn(2)) return dice.Between(from - 3, from);
    return dice.Between(from - 5, from + static_cast<int>(size) / 3);
}

std::uint32_t ThrowFlags(Dice& dice)
{
    std::uint32_t flags = 0;
    if (dice.OneIn(2)) flags |= BLIT_BILINEAR;
    if (dice.OneIn(3)) flags |= BLIT_COLORKEY;
    if (dice.OneIn(8)) flags |= BLIT_ASPECT;
    if (dice.OneIn(8)) flags |= BLIT_NOCLIP;
    if (dice.OneIn(24)) flags |= dice.Of<std::uint32_t>({0x2, 0x80000000, 0x10000});
    return flags;
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
    case Operation::Stretch:
        return dice.Of({KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_RGB32, KNOWN_RGB32, KNOWN_RGB565,
                        KNOWN_RGB565, KNOWN_RGB565, KNOWN_RGB565, KNOWN_A8, KNOWN_A8, KNOWN_A8, KNOWN_A8, KNOWN_ALPHA52,
                        other});
    case Operation::Color:
        return dice.Of({KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_A8, KNOWN_A8, KNOWN_A8, KNOWN_A8, KNOWN_A8,
                        KNOWN_A8, KNOWN_ALPHA52, KNOWN_RGB565, other});
    case Operation::Alpha: break;
    }
    return dice.Of({KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_A8, KNOWN_A8, KNOWN_A8,
                    KNOWN_A8, KNOWN_RGB32, KNOWN_RGB565, other});
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
    thrown.clip     = support::ThrowAnyClip(dice, thrown.target);
    thrown.flags    = ThrowFlags(dice);
    auto& where     = thrown.where;
    where.srcWidth  = ThrowSourceSize(dice, thrown.source.width);
    where.srcHeight = ThrowSourceSize(dice, thrown.source.height);
    if (dice.OneIn(32))
    {
        where.srcWidth  = dice.Below(2);
        where.srcHeight = dice.Below(2);
    }
    where.srcX      = ThrowSourcePosition(dice, thrown.source.width, where.srcWidth);
    where.srcY      = ThrowSourcePosition(dice, thrown.source.height, where.srcHeight);
    where.dstWidth  = ThrowDestinationSize(dice, where.srcWidth);
    where.dstHeight = ThrowDestinationSize(dice, where.srcHeight);
    const reference::Clip clip;
    where.dstX = ThrowPosition(dice, thrown.target.width, thrown.clip.value_or(clip).minX, where.dstWidth);
    where.dstY = ThrowPosition(dice, thrown.target.height, thrown.clip.value_or(clip).minY, where.dstHeight);
    if ((thrown.flags & BLIT_NOCLIP) != 0 && !dice.OneIn(6))
    {
        where.dstWidth  = static_cast<std::uint32_t>(dice.Between(1, static_cast<int>(thrown.target.width)));
        where.dstHeight = static_cast<std::uint32_t>(dice.Between(1, static_cast<int>(thrown.target.height)));
        where.dstX      = static_cast<std::int32_t>(dice.Below(thrown.target.width - where.dstWidth + 1));
        where.dstY      = static_cast<std::int32_t>(dice.Below(thrown.target.height - where.dstHeight + 1));
    }
    // Whether nothing at all lies inside a bitmap is nobody's question: promises are about one pixel or more.
    if ((thrown.flags & BLIT_NOCLIP) != 0 && (where.dstWidth == 0 || where.dstHeight == 0)) thrown.flags ^= BLIT_NOCLIP;
    thrown.alpha = support::ThrowAlpha(dice);
    thrown.color =
        operation == Operation::Stretch ? support::ThrowKey(dice, thrown.source.known.format) : dice.NextHostileWord();
    thrown.renderState = dice.Of<unsigned>({OB_NONE, OB_NONE, OB_NEON, OB_NEON, OB_NEON, OB_NEON, 2});
    thrown.locked      = !dice.OneIn(64);
    thrown.swapped     = dice.OneIn(8);
    return thrown;
}

std::string Described(const Case& thrown)
{
    const auto& where = thrown.where;
    char        text[700];
    std::snprintf(text, sizeof text,
                  "seed %llu: %s %ux%u at (%u, %u) to %ux%u at (%d, %d), flags %X, alpha %d, %s %08X, "
                  "OPTIMIZED_BLIT %u%s%s%s%s; source %s; map %s; target %s, ",
                  static_cast<unsigned long long>(thrown.seed), NameOf(thrown.operation), where.srcWidth,
                  where.srcHeight, where.srcX, where.srcY, where.dstWidth, where.dstHeight, where.dstX, where.dstY,
                  thrown.flags, thrown.alpha, thrown.operation == Operation::Stretch ? "key" : "colour", thrown.color,
                  thrown.renderState, thrown.self ? ", onto itself" : "", thrown.sourceMap ? ", its own map" : "",
                  thrown.locked ? "" : ", not locked", thrown.swapped ? ", swapped" : "",
                  support::Described(thrown.source).c_str(), support::Described(thrown.map).c_str(),
                  support::Described(thrown.target).c_str());
    return text + support::Described(thrown.clip) + ": ";
}

// ---- running a case -------------------------------------------------------------------------------------------------

class RandomStretches
{
public:
    RandomStretches()
    {
        m_screens[OB_NEON].GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON);
        m_screens[2].GetRenderState().Set(OPTIMIZED_BLIT, 2);
    }

    //! An empty text, or what is wrong.
    std::string Run(const Case& thrown)
    {
        Prepare(thrown);
        std::string        failure;
        const PictureArea& area   = thrown.target;
        const auto         screen = &m_screens[thrown.renderState];
        if (thrown.swapped)
        {
            support::SwappedTarget target(screen, area.width, area.height, m_targetPixels, area.pitch);
            failure = RunOn(thrown, target);
        }
        else
        {
            support::PitchedTarget target(screen, area.width, area.height, m_targetPixels, area.pitch);
            failure = RunOn(thrown, target);
        }
        return failure.empty() ? failure : Described(thrown) + failure;
    }

    //! How often each worker had something to draw, how often a message was due, and how many pixels were drawn.
    struct Seen
    {
        std::map<StretchWorker, std::uint64_t> workers;
        std::map<std::string, std::uint64_t>   messages;
        std::uint64_t                          pixels = 0;
    };
    const Seen& WhatWasSeen() const { return m_seen; }

private:
    void Prepare(const Case& thrown)
    {
        Dice       dice(thrown.seed ^ 0x5EED);
        const bool keyed = thrown.operation == Operation::Stretch && (thrown.flags & BLIT_COLORKEY) != 0;
        const auto key   = keyed ? std::optional<std::uint32_t>(thrown.color) : std::nullopt;
        // one pixel in three hides nearly every block, one in thirty few
        const unsigned oneIn = dice.OneIn(2) ? 3 : 30;
        m_targetPixels       = thrown.target.In(m_targetArena, thrown.target.PixelBytes());
        m_sourcePixels = thrown.self ? m_targetPixels : thrown.source.In(m_sourceArena, thrown.source.PixelBytes());
        m_mapPixels    = thrown.sourceMap ? m_sourcePixels : thrown.map.In(m_mapArena, thrown.map.PixelBytes());
        FillPicture(dice, m_targetPixels, thrown.target, thrown.self ? key : std::nullopt, oneIn);
        if (!thrown.self) FillPicture(dice, m_sourcePixels, thrown.source, key, oneIn);
        if (!thrown.sourceMap) FillPicture(dice, m_mapPixels, thrown.map);
        m_expected.assign(m_targetPixels, m_targetPixels + thrown.target.Count());
        m_sourceBefore.assign(m_sourcePixels, m_sourcePixels + thrown.source.Count());
        m_mapBefore.assign(m_mapPixels, m_mapPixels + thrown.map.Count());
    }

    reference::StretchOutcome Expect(const Case& thrown)
    {
        reference::Target target;
        target.picture   = thrown.target.Over(m_expected.data());
        target.locked    = thrown.locked;
        target.optimised = thrown.renderState == OB_NEON;
        if (thrown.clip) target.clip = *thrown.clip;
        if (thrown.swapped) target.compose = &support::SwappedTarget::Compose;
        const reference::Picture source = thrown.self ? target.picture : thrown.source.Over(m_sourcePixels);
        const reference::Picture map    = thrown.sourceMap ? source : thrown.map.Over(m_mapPixels);
        switch (thrown.operation)
        {
        case Operation::Stretch:
            return reference::StretchBlit(target, source, thrown.where, thrown.flags, thrown.alpha, thrown.color);
        case Operation::Color:
            return reference::StretchBlitColor(target, source, thrown.where, thrown.color, thrown.flags, thrown.alpha);
        case Operation::Alpha: break;
        }
        return reference::StretchBlitAlpha(target, source, map, thrown.where, thrown.flags, thrown.alpha);
    }

    static bool IsLoop(StretchWorker worker) { return worker >= StretchWorker::CopyNearest; }
    static bool IsFill(StretchWorker worker)
    {
        return worker == StretchWorker::Fill || worker == StretchWorker::FillMix;
    }

    //! The one call that a loop is expected to get.
    support::StretchCall ExpectedCall(const Case& thrown, const Kanvo_Bitmap& target, StretchWorker worker) const
    {
        const auto&          where = thrown.where;
        support::StretchCall call;
        call.loop       = reference::NameOf(worker);
        call.dst        = m_targetPixels + target.GetClipMinY() * thrown.target.pitch + target.GetClipMinX() * 4;
        call.src        = m_sourcePixels;
        call.dstPitch   = thrown.target.pitch;
        call.srcPitch   = thrown.source.pitch;
        call.dstX       = where.dstX - static_cast<std::int32_t>(target.GetClipMinX());
        call.dstY       = where.dstY - static_cast<std::int32_t>(target.GetClipMinY());
        call.dstWidth   = where.dstWidth;
        call.dstHeight  = where.dstHeight;
        call.srcWidth   = where.srcWidth;
        call.srcHeight  = where.srcHeight;
        call.srcX       = where.srcX & 0xFFFF;
        call.srcY       = where.srcY & 0xFFFF;
        call.clipWidth  = target.GetClipMaxX() - target.GetClipMinX() + 1;
        call.clipHeight = target.GetClipMaxY() - target.GetClipMinY() + 1;
        const std::uint32_t color = thrown.color;
        if (worker == StretchWorker::ColorNearest || worker == StretchWorker::ColorFiltered)
        {
            call.color = thrown.swapped ? support::SwappedTarget::Compose(
                                              static_cast<int>(color >> 24), static_cast<int>(color >> 16 & 255),
                                              static_cast<int>(color >> 8 & 255), static_cast<int>(color & 255))
                                        : color;
        }
        if (worker != StretchWorker::CopyNearest && worker != StretchWorker::CopyFiltered) call.alpha = thrown.alpha;
        return call;
    }

    //! The one call that a fill is expected to get: cut where the bitmap ends.
    support::LoopCall ExpectedFill(const Case& thrown, const Kanvo_Bitmap& target, StretchWorker worker) const
    {
        support::LoopCall call;
        call.loop     = reference::NameOf(worker);
        call.dst      = m_targetPixels + target.GetClipMinY() * thrown.target.pitch + target.GetClipMinX() * 4;
        call.dstPitch = thrown.target.pitch;
        call.width    = std::min(thrown.where.dstWidth, thrown.target.width - target.GetClipMinX());
        call.height   = std::min(thrown.where.dstHeight, thrown.target.height - target.GetClipMinY());
        std::memcpy(&call.color, m_sourceBefore.data(), 3);
        if (worker == StretchWorker::FillMix) call.alpha = thrown.alpha;
        return call;
    }

    void Call(const Case& thrown, Kanvo_Bitmap& target, Kanvo_Bitmap* source, Kanvo_Bitmap* map)
    {
        const auto& where = thrown.where;
        const auto  alpha = static_cast<Tov_UByte>(thrown.alpha);
        switch (thrown.operation)
        {
        case Operation::Stretch:
            target.StretchBlit(source, where.srcWidth, where.srcHeight, where.srcX, where.srcY, where.dstWidth,
                               where.dstHeight, where.dstX, where.dstY, thrown.flags, alpha, thrown.color);
            break;
        case Operation::Color:
            target.StretchBlitColor(source, where.srcWidth, where.srcHeight, where.srcX, where.srcY, where.dstWidth,
                                    where.dstHeight, where.dstX, where.dstY, thrown.color, thrown.flags, alpha);
            break;
        case Operation::Alpha:
            target.StretchBlitAlpha(source, map, where.srcWidth, where.srcHeight, where.srcX, where.srcY,
                                    where.dstWidth, where.dstHeight, where.dstX, where.dstY, thrown.flags, alpha);
            break;
        }
    }

    template <class Target>
    std::string RunOn(const Case& thrown, Target& target)
    {
        if (thrown.clip)
        {
            target.SetCliprect(static_cast<Tov_UInt>(thrown.clip->minX), static_cast<Tov_UInt>(thrown.clip->minY),
                               static_cast<Tov_UInt>(thrown.clip->maxX), static_cast<Tov_UInt>(thrown.clip->maxY));
        }
        if (thrown.locked) target.Lock();
        target.SayAlpha(thrown.target.saysAlpha);
        Kanvo_Screen* const screen = &m_screens[thrown.renderState];
        support::AnyBitmap  otherSource(screen, thrown.source, m_sourcePixels);
        support::AnyBitmap  otherMap(screen, thrown.map, m_mapPixels);
        Kanvo_Bitmap* const source  = thrown.self ? &target : otherSource.Get();
        Kanvo_Bitmap* const map     = thrown.sourceMap ? source : otherMap.Get();
        const auto          outcome = Expect(thrown);
        m_seen.pixels += static_cast<std::uint64_t>(outcome.pixels);
        if (outcome.pixels > 0) ++m_seen.workers[outcome.worker];
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
        if (std::memcmp(m_expected.data(), m_targetPixels, m_expected.size()) != 0)
        {
            return FirstDifference(m_expected.data(), m_targetPixels, thrown.target);
        }
        if (m_asserts.Count() != outcome.messages.size() || m_asserts.Texts() != outcome.messages)
        {
            return "messages: expected " + testing::PrintToString(outcome.messages) + ", got " +
                   testing::PrintToString(m_asserts.Texts());
        }
        const std::string wrongLoops = WrongLoops(thrown, target, outcome);
        if (!wrongLoops.empty()) return wrongLoops;
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

    std::string WrongLoops(const Case& thrown, const Kanvo_Bitmap& target, const reference::StretchOutcome& outcome)
    {
        // Where there is nothing to draw, whether a loop hears of it is nobody's business.
        if (outcome.pixels == 0) return {};
        // So far to the left or above that the position counted from the clip leaves 16 bits, either path may do it.
        const auto from = std::min(std::int64_t{thrown.where.dstX} - target.GetClipMinX(),
                                   std::int64_t{thrown.where.dstY} - target.GetClipMinY());
        if (from < INT16_MIN) return {};
        std::vector<support::StretchCall> loops;
        std::vector<support::LoopCall>    fills;
        if (IsLoop(outcome.worker)) loops.push_back(ExpectedCall(thrown, target, outcome.worker));
        if (IsFill(outcome.worker)) fills.push_back(ExpectedFill(thrown, target, outcome.worker));
        if (m_loops.Calls() != loops)
        {
            return "loops: expected " + testing::PrintToString(loops) + ", got " +
                   testing::PrintToString(m_loops.Calls());
        }
        if (!(m_fills.Calls() == fills))
        {
            return "fills: expected " + testing::PrintToString(fills) + ", got " +
                   testing::PrintToString(m_fills.Calls());
        }
        return {};
    }

    Seen           m_seen;
    Kanvo          m_library;
    Kanvo_Screen   m_screens[3] = {Kanvo_Screen(&m_library), Kanvo_Screen(&m_library), Kanvo_Screen(&m_library)};
    support::Fence m_sourceArena{support::ARENA_BYTES};
    support::Fence m_mapArena{support::ARENA_BYTES};
    support::Fence m_targetArena{support::ARENA_BYTES};
    std::uint8_t*  m_sourcePixels = nullptr;
    std::uint8_t*  m_mapPixels    = nullptr;
    std::uint8_t*  m_targetPixels = nullptr;
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

//! Also expects each of the workers and messages now and then, that the test may not run idle.
void RunAll(Operation operation, std::uint64_t cases, const std::vector<StretchWorker>& workers,
            const std::vector<std::string>& messages)
{
    const support::Seeds seeds(cases);
    support::CrashNote   note(NameOf(operation));
    RandomStretches      stretches;
    int                  failures = 0;
    for (std::uint64_t index = 0; index < seeds.count && failures < 3; ++index)
    {
        note.InCase(seeds.first + index);
        const std::string failure = stretches.Run(ThrowCase(seeds.first + index, operation));
        if (failure.empty()) continue;
        ++failures;
        ADD_FAILURE() << failure;
    }
    if (failures > 0 || seeds.count < 10000) return;
    RandomStretches::Seen seen = stretches.WhatWasSeen();
    for (const auto worker : workers)
    {
        EXPECT_GT(seen.workers[worker], seeds.count / 200) << "worker " << static_cast<int>(worker);
    }
    for (const std::string& message : messages) EXPECT_GT(seen.messages[message], seeds.count / 200) << message;
    EXPECT_GT(seen.pixels, seeds.count * 10);
}

constexpr const char* NOT_LOCKED    = "bitmap not locked";
constexpr const char* NOT_INSIDE    = "unclipped rectangle outside the bitmap";
constexpr const char* NOT_SUPPORTED = "blit not supported";
constexpr const char* NOT_A_MAP     = "alpha bitmap is not the right type";

}  // namespace

TEST(StretchRandom, StretchBlitDrawsWhatTheNaiveReferenceDraws)
{
    RunAll(Operation::Stretch, 250000,
           {StretchWorker::Portable, StretchWorker::CopyNearest, StretchWorker::CopyFiltered,
            StretchWorker::OverNearest, StretchWorker::OverFiltered, StretchWorker::Over565Nearest,
            StretchWorker::Over565Filtered},
           {NOT_LOCKED, NOT_INSIDE, NOT_SUPPORTED});
}

TEST(StretchRandom, StretchBlitColorDrawsWhatTheNaiveReferenceDraws)
{
    RunAll(Operation::Color, 125000,
           {StretchWorker::Portable, StretchWorker::ColorNearest, StretchWorker::ColorFiltered},
           {NOT_LOCKED, NOT_INSIDE, NOT_A_MAP});
}

TEST(StretchRandom, StretchBlitAlphaDrawsWhatTheNaiveReferenceDraws)
{
    RunAll(Operation::Alpha, 125000, {StretchWorker::Portable, StretchWorker::OverNearest, StretchWorker::OverFiltered},
           {NOT_LOCKED, NOT_INSIDE, NOT_SUPPORTED, NOT_A_MAP});
}
