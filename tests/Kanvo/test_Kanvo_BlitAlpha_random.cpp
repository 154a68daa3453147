// Random blits through alpha maps against the naive reference: pixels, padding, messages, who did the work and with which
// arguments, and that nothing but the target's pixels changes. Source, map and target lie between protected pages. 300,000
// calls; every case has a seed of its own and can be replayed alone (Dice.h).
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "BlitBitmaps.h"
#include "CrashNote.h"
#include "Dice.h"
#include "DrawSpies.h"
#include "Fence.h"
#include "MapLoopSpies.h"
#include "RandomAreas.h"
#include "Reference_BlitAlpha.h"
#include "Snapshot.h"

namespace
{

using reference::Format;
using reference::MapWorker;
using support::Area;
using support::Dice;

constexpr std::size_t ARENA_BYTES = 65536;  // whole pages: the fences are flush with both ends

struct Kind
{
    Format   format;
    unsigned type;  // the library's number of the format
};

//! Who stands in for a bitmap that a call reads.
enum class Role
{
    Itself,
    TheTarget,  // ARGB32 only
    Nobody      // a null pointer; maps only
};

//! Everything that one random call is made of.
struct Case
{
    std::uint64_t    seed;
    Kind             source;
    Kind             map;
    Role             sourceRole;
    Role             mapRole;
    bool             hasAlpha;
    Area             sourceArea;
    Area             mapArea;
    Area             target;
    reference::Clip  clip;
    bool             clipped;
    reference::Where where;
    std::uint32_t    flags;
    int              alpha;
    unsigned         renderState;
    bool             locked;
    bool             swapped;  // a target with an encoding of its own
};

// ---- throwing a case ------------------------------------------------------------------------------------------------

Kind ThrowOther(Dice& dice)
{
    return {Format::Other, dice.Of<unsigned>({BM_UNKNWON, BM_RGB555, BM_ALPHA1, BM_QUANTITY, 255, 0x104})};
}

Kind ThrowSource(Dice& dice)
{
    const Kind     other  = ThrowOther(dice);
    constexpr Kind argb32 = {Format::Argb32, BM_ARGB32};
    constexpr Kind rgb32  = {Format::Rgb32, BM_RGB32};
    constexpr Kind rgb565 = {Format::Rgb565, BM_RGB565};
    constexpr Kind a8     = {Format::A8, BM_ALPHA8};
    return dice.Of({argb32, argb32, argb32, argb32, rgb32, rgb32, rgb32, rgb565, rgb565, rgb565, rgb565, rgb565, a8, a8,
                    a8, Kind{Format::Alpha5_2, BM_ALPHA5_2}, other});
}

Kind ThrowMap(Dice& dice)
{
    const Kind     other  = ThrowOther(dice);
    constexpr Kind argb32 = {Format::Argb32, BM_ARGB32};
    constexpr Kind a8     = {Format::A8, BM_ALPHA8};
    return dice.Of({a8, a8, a8, a8, a8, a8, a8, a8, argb32, argb32, argb32, argb32, argb32,
                    Kind{Format::Alpha5_2, BM_ALPHA5_2}, Kind{Format::Rgb565, BM_RGB565}, Kind{Format::Rgb32, BM_RGB32},
                    other});
}

//! A rectangle that keeps the promise of BLIT_NOCLIP.
reference::Where ThrowInside(Dice& dice, const Case& thrown)
{
    const auto common = [&](auto size) {
        return static_cast<int>(std::min({thrown.sourceArea.*size, thrown.mapArea.*size, thrown.target.*size}));
    };
    reference::Where where;
    const int        width  = common(&Area::width);
    const int        height = common(&Area::height);
    where.width             = static_cast<std::uint32_t>(dice.Between((width + 1) / 2, width));
    where.height            = static_cast<std::uint32_t>(dice.Between((height + 1) / 2, height));
    where.srcX              = dice.Below(std::min(thrown.sourceArea.width, thrown.mapArea.width) - where.width + 1);
    where.srcY              = dice.Below(std::min(thrown.sourceArea.height, thrown.mapArea.height) - where.height + 1);
    where.dstX              = static_cast<std::int32_t>(dice.Below(thrown.target.width - where.width + 1));
    where.dstY              = static_cast<std::int32_t>(dice.Below(thrown.target.height - where.height + 1));
    return where;
}

std::uint32_t ThrowFlags(Dice& dice)
{
    std::uint32_t flags = dice.Of<std::uint32_t>({0, 0, 0, BLIT_NOCLIP});
    if (dice.OneIn(4)) flags |= BLIT_COLORKEY;
    if (dice.OneIn(3)) flags |= BLIT_COPY_ONLY_ALPHA;
    if (dice.OneIn(8)) flags |= dice.Of<std::uint32_t>({BLIT_BILINEAR, 0x2, 0x80000000});
    return flags;
}

int ThrowAlpha(Dice& dice)
{
    const int any = dice.NextByte();
    return dice.Of({0, 1, 127, 128, 254, 255, 255, 255, 255, any});
}

Case ThrowCase(std::uint64_t seed)
{
    Dice dice(seed);
    Case thrown{};
    thrown.seed       = seed;
    thrown.source     = ThrowSource(dice);
    thrown.map        = ThrowMap(dice);
    thrown.target     = support::ThrowArea(dice, 4, 40);
    thrown.sourceArea = support::ThrowArea(dice, reference::BytesPerPixel(thrown.source.format), 40);
    if (thrown.source.format == Format::Argb32 && dice.OneIn(6))
    {
        thrown.sourceRole = Role::TheTarget;
        thrown.sourceArea = thrown.target;
    }
    const auto mapBytes = reference::BytesPerPixel(thrown.map.format);
    thrown.mapArea      = dice.OneIn(2)
                              ? support::ThrowArea(dice, mapBytes, 40)
                              : support::ThrowAreaOf(dice, mapBytes, thrown.sourceArea.width, thrown.sourceArea.height);
    if (thrown.map.format == Format::Argb32 && dice.OneIn(8))
    {
        thrown.mapRole = Role::TheTarget;
        thrown.mapArea = thrown.target;
    }
    if (dice.OneIn(16)) thrown.mapRole = Role::Nobody;
    thrown.hasAlpha = dice.OneIn(2);
    thrown.clipped  = dice.OneIn(3);
    if (thrown.clipped) thrown.clip = support::ThrowClip(dice, thrown.target);
    thrown.flags = ThrowFlags(dice);
    // Whether nothing at all lies inside a bitmap is nobody's question: promises are about one pixel or more.
    const bool promised = (thrown.flags & BLIT_NOCLIP) != 0;
    if (promised ? !dice.OneIn(4) : dice.OneIn(2))
    {
        thrown.where = ThrowInside(dice, thrown);
    }
    else
    {
        const Area& size    = dice.OneIn(2) ? thrown.sourceArea : thrown.target;
        thrown.where.width  = support::ThrowLength(dice, size.width, !promised);
        thrown.where.height = support::ThrowLength(dice, size.height, !promised);
        thrown.where.srcX   = support::ThrowSourcePosition(dice, thrown.sourceArea.width);
        thrown.where.srcY   = support::ThrowSourcePosition(dice, thrown.sourceArea.height);
        thrown.where.dstX   = support::ThrowPosition(dice, thrown.target.width, 30);
        thrown.where.dstY   = support::ThrowPosition(dice, thrown.target.height, 30);
    }
    thrown.alpha       = ThrowAlpha(dice);
    thrown.renderState = dice.Of<unsigned>({OB_NONE, OB_NONE, OB_NONE, OB_NEON, OB_NEON, OB_NEON, OB_NEON, 2});
    thrown.locked      = !dice.OneIn(64);
    thrown.swapped     = dice.OneIn(8);
    return thrown;
}

// ---- saying what a case was -----------------------------------------------------------------------------------------

std::string Described(const Case& thrown)
{
    const auto who = [](Role role, const Area& area)
    {
        return role == Role::TheTarget ? std::string("the target itself")
               : role == Role::Nobody  ? std::string("null")
                                       : support::Described(area);
    };
    char text[600];
    std::snprintf(text, sizeof text,
                  "seed %llu: BlitAlpha type %u through type %u, %ux%u from (%u, %u) to (%d, %d), flags %X, alpha %d, "
                  "OPTIMIZED_BLIT %u%s%s; source %s; map %s; target %s%s, ",
                  static_cast<unsigned long long>(thrown.seed), thrown.source.type, thrown.map.type, thrown.where.width,
                  thrown.where.height, thrown.where.srcX, thrown.where.srcY, thrown.where.dstX, thrown.where.dstY,
                  thrown.flags, thrown.alpha, thrown.renderState, thrown.hasAlpha ? ", says alpha" : "",
                  thrown.locked ? "" : ", not locked", who(thrown.sourceRole, thrown.sourceArea).c_str(),
                  who(thrown.mapRole, thrown.mapArea).c_str(), support::Described(thrown.target).c_str(),
                  thrown.swapped ? " swapped" : "");
    return text + (thrown.clipped ? "clip " + support::Described(thrown.clip) : "no clip") + ": ";
}

// ---- running a case -------------------------------------------------------------------------------------------------

class RandomMapBlits
{
public:
    RandomMapBlits()
    {
        m_screens[OB_NEON].GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON);
        m_screens[2].GetRenderState().Set(OPTIMIZED_BLIT, 2);
    }

    //! An empty text, or what is wrong.
    std::string Run(const Case& thrown)
    {
        Prepare(thrown);
        std::string failure;
        if (thrown.swapped)
        {
            support::SwappedTarget target(&m_screens[thrown.renderState], thrown.target.width, thrown.target.height,
                                          m_targetPixels, thrown.target.pitch);
            failure = RunOn(thrown, target);
        }
        else
        {
            support::PitchedTarget target(&m_screens[thrown.renderState], thrown.target.width, thrown.target.height,
                                          m_targetPixels, thrown.target.pitch);
            failure = RunOn(thrown, target);
        }
        return failure.empty() ? failure : Described(thrown) + failure;
    }

    //! How often each worker had something to draw, how often a message was due, and how many pixels were drawn.
    struct Seen
    {
        std::map<MapWorker, std::uint64_t>   workers;
        std::map<std::string, std::uint64_t> messages;
        std::uint64_t                        pixels = 0;
    };
    const Seen& WhatWasSeen() const { return m_seen; }

private:
    void Note(const reference::MapOutcome& outcome)
    {
        ++m_seen.workers[outcome.worker];
        for (const std::string& message : outcome.messages) ++m_seen.messages[message];
        if (outcome.worker != MapWorker::Nobody)
        {
            m_seen.pixels += static_cast<std::uint64_t>(outcome.width * outcome.height);
        }
    }

    void Prepare(const Case& thrown)
    {
        Dice       dice(thrown.seed ^ 0x5EED);
        const auto place = [&dice](support::Fence& arena, const Area& area, Format format, std::uint8_t*& pixels,
                                   std::vector<std::uint8_t>& copy)
        {
            const auto pixelBytes = reference::BytesPerPixel(format);
            pixels                = area.In(arena, pixelBytes);
            support::FillContent(dice, pixels, area.Bytes(pixelBytes), area.content, format);
            copy.assign(pixels, pixels + area.Bytes(pixelBytes));
        };
        place(m_sourceArena, thrown.sourceArea, thrown.source.format, m_sourcePixels, m_sourceBefore);
        place(m_mapArena, thrown.mapArea, thrown.map.format, m_mapPixels, m_mapBefore);
        place(m_targetArena, thrown.target, Format::Argb32, m_targetPixels, m_expected);
    }

    template <class Target>
    std::string RunOn(const Case& thrown, Target& target)
    {
        if (thrown.clipped)
        {
            target.SetCliprect(static_cast<Tov_UInt>(thrown.clip.minX), static_cast<Tov_UInt>(thrown.clip.minY),
                               static_cast<Tov_UInt>(thrown.clip.maxX), static_cast<Tov_UInt>(thrown.clip.maxY));
        }
        if (thrown.locked) target.Lock();
        target.SayAlpha(thrown.hasAlpha);
        Kanvo_Screen* const screen = &m_screens[thrown.renderState];
        support::AnySource  source(screen, thrown.source.type, thrown.sourceArea.width, thrown.sourceArea.height,
                                   m_sourcePixels, thrown.sourceArea.pitch, thrown.hasAlpha);
        support::AnySource  map(screen, thrown.map.type, thrown.mapArea.width, thrown.mapArea.height, m_mapPixels,
                                thrown.mapArea.pitch, thrown.hasAlpha);
        Kanvo_Bitmap* const from = thrown.sourceRole == Role::TheTarget ? static_cast<Kanvo_Bitmap*>(&target) : &source;
        Kanvo_Bitmap*       through = &map;
        if (thrown.mapRole == Role::TheTarget) through = &target;
        if (thrown.mapRole == Role::Nobody) through = nullptr;

        const reference::MapOutcome outcome = Expect(thrown);
        Note(outcome);
        m_asserts.Clear();
        m_loops.Clear();
        m_mapLoops.Clear();
        m_counters.Clear();
        m_objects[0].Take(target);
        m_objects[1].Take(source);
        m_objects[2].Take(map);
        m_objects[3].Take(*screen);

        const reference::Where& where = thrown.where;
        target.BlitAlpha(from, through, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY,
                         thrown.flags, static_cast<Tov_UByte>(thrown.alpha));
        return Compare(thrown, outcome);
    }

    reference::MapOutcome Expect(const Case& thrown)
    {
        const auto picture = [&](Format format, const Area& area, std::uint8_t* bytes)
        { return reference::Picture{format, area.width, area.height, area.pitch, bytes, thrown.hasAlpha}; };
        reference::Target target;
        target.picture   = picture(Format::Argb32, thrown.target, m_expected.data());
        target.clip      = thrown.clip;
        target.locked    = thrown.locked;
        target.optimised = thrown.renderState == OB_NEON;
        if (thrown.swapped) target.compose = &support::SwappedTarget::Compose;
        const reference::Picture  source  = picture(thrown.source.format, thrown.sourceArea, m_sourcePixels);
        const reference::Picture  map     = picture(thrown.map.format, thrown.mapArea, m_mapPixels);
        const reference::Picture& from    = thrown.sourceRole == Role::TheTarget ? target.picture : source;
        const reference::Picture* through = thrown.mapRole == Role::TheTarget ? &target.picture : &map;
        if (thrown.mapRole == Role::Nobody) through = nullptr;
        return reference::BlitAlpha(target, from, through, thrown.where, thrown.flags, thrown.alpha);
    }

    //! What the loop that a call ends in is expected to get. "as_ag" has a spy that does not know of maps.
    std::string ExpectedLoops(const Case& thrown, const reference::MapOutcome& outcome) const
    {
        if (!reference::IsLoop(outcome.worker)) return Printed({}, {});
        const auto at = [&](const std::uint8_t* pixels, const Area& area, std::int64_t pixelBytes)
        { return pixels + outcome.srcY * area.pitch + outcome.srcX * pixelBytes; };
        const auto* const source = thrown.sourceRole == Role::TheTarget ? m_targetPixels : m_sourcePixels;
        const auto* const from   = at(source, thrown.sourceArea, reference::BytesPerPixel(thrown.source.format));
        const auto* const dst    = m_targetPixels + outcome.dstY * thrown.target.pitch + outcome.dstX * 4;
        const auto        width  = static_cast<std::uint32_t>(outcome.width);
        const auto        height = static_cast<std::uint32_t>(outcome.height);
        const char* const loop   = reference::NameOf(outcome.worker);
        if (outcome.worker == MapWorker::OverScaled)
        {
            return Printed(
                {}, {{loop, dst, from, thrown.target.pitch, thrown.sourceArea.pitch, width, height, 0, thrown.alpha}});
        }
        support::MapLoopCall call{loop, dst,   from,   nullptr, thrown.target.pitch, thrown.sourceArea.pitch,
                                  0,    width, height, -1};
        if (reference::ReadsMap(outcome.worker))
        {
            call.map      = at(m_mapPixels, thrown.mapArea, 1);
            call.mapPitch = thrown.mapArea.pitch;
        }
        if (outcome.worker == MapWorker::Over565Scaled) call.alpha = thrown.alpha;
        return Printed({call}, {});
    }

    static std::string Printed(const std::vector<support::MapLoopCall>& mapCalls,
                               const std::vector<support::LoopCall>&    calls)
    {
        if (mapCalls.empty() && calls.empty()) return {};
        return testing::PrintToString(mapCalls) + testing::PrintToString(calls);
    }

    std::string Compare(const Case& thrown, const reference::MapOutcome& outcome)
    {
        if (std::memcmp(m_expected.data(), m_targetPixels, m_expected.size()) != 0)
        {
            return support::FirstDifference(m_expected.data(), m_targetPixels, thrown.target);
        }
        if (m_asserts.Count() != outcome.messages.size() || m_asserts.Texts() != outcome.messages)
        {
            return "messages: expected " + testing::PrintToString(outcome.messages) + ", got " +
                   testing::PrintToString(m_asserts.Texts());
        }
        const std::string expected = ExpectedLoops(thrown, outcome);
        const std::string got      = Printed(m_mapLoops.Calls(), m_loops.Calls());
        if (expected != got) return "loops: expected " + expected + ", got " + got;
        const char* const counter = reference::IsLoop(outcome.worker) ? "" : reference::NameOf(outcome.worker);
        if (!m_counters.OnlyCounted(counter))
        {
            return std::string("counters: expected one start and stop of \"") + counter + "\"";
        }
        if (std::memcmp(m_sourceBefore.data(), m_sourcePixels, m_sourceBefore.size()) != 0)
            return "the source's pixels changed";
        if (std::memcmp(m_mapBefore.data(), m_mapPixels, m_mapBefore.size()) != 0) return "the map's pixels changed";
        for (const support::Snapshot& object : m_objects)
        {
            if (!object.IsUnchanged()) return "target, source, map or screen changed as an object";
        }
        return {};
    }

    Seen           m_seen;
    Kanvo          m_library;
    Kanvo_Screen   m_screens[3] = {Kanvo_Screen(&m_library), Kanvo_Screen(&m_library), Kanvo_Screen(&m_library)};
    support::Fence m_sourceArena{ARENA_BYTES};
    support::Fence m_mapArena{ARENA_BYTES};
    support::Fence m_targetArena{ARENA_BYTES};
    std::uint8_t*  m_sourcePixels = nullptr;
    std::uint8_t*  m_mapPixels    = nullptr;
    std::uint8_t*  m_targetPixels = nullptr;
    std::vector<std::uint8_t> m_expected;
    std::vector<std::uint8_t> m_sourceBefore;
    std::vector<std::uint8_t> m_mapBefore;
    support::Snapshot         m_objects[4];
    support::AssertCapture    m_asserts;
    support::LoopSpies        m_loops;
    support::MapLoopSpies     m_mapLoops;
    support::PerfSpies        m_counters;
};

}  // namespace

//! Also expects each worker and message at least once in four hundred calls, that the test may not run idle.
TEST(BlitAlphaRandom, BlitAlphaDrawsWhatTheNaiveReferenceDraws)
{
    const support::Seeds seeds(300000);
    support::CrashNote   note("BlitAlpha");
    RandomMapBlits       blits;
    int                  failures = 0;
    for (std::uint64_t index = 0; index < seeds.count && failures < 3; ++index)
    {
        note.InCase(seeds.first + index);
        const std::string failure = blits.Run(ThrowCase(seeds.first + index));
        if (failure.empty()) continue;
        ++failures;
        ADD_FAILURE() << failure;
    }
    if (failures > 0 || seeds.count < 10000) return;
    RandomMapBlits::Seen seen = blits.WhatWasSeen();
    for (const auto worker : {MapWorker::Int, MapWorker::Rgb, MapWorker::CopyAlpha, MapWorker::Over,
                              MapWorker::OverScaled, MapWorker::Store565, MapWorker::Over565, MapWorker::Over565Scaled})
    {
        EXPECT_GT(seen.workers[worker], seeds.count / 400) << reference::NameOf(worker);
    }
    for (const char* message :
         {"bitmap not locked", "unclipped rectangle outside the bitmap", "blit not supported",
          "alpha bitmap is not the right type", "RGB32->ARGB32 BlitAlpha, alpha format not supported",
          "ARGB32->ARGB32 BlitAlpha, alpha format not supported", "A8->ARGB32 BlitAlpha, alpha format not supported",
          "RGB565->ARGB32 BlitAlpha, alpha format not supported"})
    {
        EXPECT_GT(seen.messages[message], seeds.count / 400) << message;
    }
    EXPECT_GT(seen.pixels, seeds.count * 10);
}
