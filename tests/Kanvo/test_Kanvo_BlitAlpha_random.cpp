// Random blits through alpha maps against the naive reference: pixels, padding, messages, who did the work and with which
// arguments, and that nothing but the target's pixels changes. Source, map and target lie between protected pages. 300,000
// calls; every case has a seed of its own and can be replayed alone (Dice.h).
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BlitStage.h"
#include "MapLoopSpies.h"
#include "RandomCalls.h"
#include "Reference_BlitAlpha.h"

namespace
{

using reference::Format;
using reference::MapWorker;
using support::Area;
using support::Dice;
using support::Known;
using support::Role;

struct Case : support::RandomCall
{
    reference::Where where;
};

// ---- throwing a case ------------------------------------------------------------------------------------------------

Known ThrowSourceFormat(Dice& dice)
{
    using namespace support;
    const Known other = ThrowOther(dice);
    return dice.Of({KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_RGB32, KNOWN_RGB32, KNOWN_RGB32,
                    KNOWN_RGB565, KNOWN_RGB565, KNOWN_RGB565, KNOWN_RGB565, KNOWN_RGB565, KNOWN_A8, KNOWN_A8, KNOWN_A8,
                    KNOWN_ALPHA52, other});
}

//! A rectangle that keeps the promise of BLIT_NOCLIP.
reference::Where ThrowInside(Dice& dice, const Case& thrown)
{
    const auto common = [&](auto size) {
        return static_cast<int>(std::min({thrown.source.*size, thrown.map.*size, thrown.target.*size}));
    };
    reference::Where where;
    const int        width  = common(&Area::width);
    const int        height = common(&Area::height);
    where.width             = static_cast<std::uint32_t>(dice.Between((width + 1) / 2, width));
    where.height            = static_cast<std::uint32_t>(dice.Between((height + 1) / 2, height));
    where.srcX              = dice.Below(std::min(thrown.source.width, thrown.map.width) - where.width + 1);
    where.srcY              = dice.Below(std::min(thrown.source.height, thrown.map.height) - where.height + 1);
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

Case ThrowCase(std::uint64_t seed)
{
    Dice dice(seed);
    Case thrown{};
    thrown.seed        = seed;
    const Known source = ThrowSourceFormat(dice);
    const Known map    = support::ThrowMapFormat(dice);
    thrown.target      = ThrowPicture(dice, support::KNOWN_ARGB32, 40);
    thrown.source      = ThrowPicture(dice, source, 40);
    if (source.format == Format::Argb32 && dice.OneIn(6))
    {
        thrown.sourceRole = Role::TheTarget;
        thrown.source     = thrown.target;
    }
    thrown.map = dice.OneIn(2) ? ThrowPicture(dice, map, 40)
                               : ThrowPicture(dice, map, thrown.source.width, thrown.source.height);
    if (map.format == Format::Argb32 && dice.OneIn(8))
    {
        thrown.mapRole = Role::TheTarget;
        thrown.map     = thrown.target;
    }
    if (dice.OneIn(16)) thrown.mapRole = Role::Nobody;
    thrown.clip  = ThrowAnyClip(dice, thrown.target);
    thrown.flags = ThrowFlags(dice);
    // Whether nothing at all lies inside a bitmap is nobody's question: promises are about one pixel or more.
    const bool promised = (thrown.flags & BLIT_NOCLIP) != 0;
    if (promised ? !dice.OneIn(4) : dice.OneIn(2))
    {
        thrown.where = ThrowInside(dice, thrown);
    }
    else
    {
        const Area& size    = dice.OneIn(2) ? thrown.source : thrown.target;
        thrown.where.width  = support::ThrowLength(dice, size.width, !promised);
        thrown.where.height = support::ThrowLength(dice, size.height, !promised);
        thrown.where.srcX   = support::ThrowSourcePosition(dice, thrown.source.width);
        thrown.where.srcY   = support::ThrowSourcePosition(dice, thrown.source.height);
        thrown.where.dstX   = support::ThrowPosition(dice, thrown.target.width, 30);
        thrown.where.dstY   = support::ThrowPosition(dice, thrown.target.height, 30);
    }
    thrown.alpha = ThrowAlpha(dice);
    ThrowTarget(dice, thrown);
    return thrown;
}

std::string Described(const Case& thrown)
{
    const auto& where = thrown.where;
    char        text[200];
    std::snprintf(text, sizeof text, "seed %llu: BlitAlpha %ux%u from (%u, %u) to (%d, %d), ",
                  static_cast<unsigned long long>(thrown.seed), where.width, where.height, where.srcX, where.srcY,
                  where.dstX, where.dstY);
    return text + DescribedCall(thrown);
}

// ---- running a case -------------------------------------------------------------------------------------------------

class RandomMapBlits : public support::RandomCalls<RandomMapBlits, MapWorker>
{
public:
    static reference::MapOutcome Expect(const Case& thrown, const reference::Target& target,
                                        const reference::Picture& source, const reference::Picture* map)
    {
        return reference::BlitAlpha(target, source, map, thrown.where, thrown.flags, thrown.alpha);
    }

    static void Call(const Case& thrown, Kanvo_Bitmap& target, Kanvo_Bitmap* source, Kanvo_Bitmap* map)
    {
        const reference::Where& where = thrown.where;
        target.BlitAlpha(source, map, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY,
                         thrown.flags, static_cast<Tov_UByte>(thrown.alpha));
    }

    static MapWorker     WorkOf(const Case&, const reference::MapOutcome& outcome) { return outcome.worker; }
    static std::uint64_t PixelsOf(const reference::MapOutcome& outcome) { return outcome.Pixels(); }

    std::string WrongCalls(const Case& thrown, const Kanvo_Bitmap&, const reference::MapOutcome& outcome) const
    {
        const std::string expected = ExpectedLoops(thrown, outcome);
        const std::string got      = Printed(m_mapLoops.Calls(), m_loops.Calls());
        if (expected != got) return "loops: expected " + expected + ", got " + got;
        const char* const counter = reference::IsLoop(outcome.worker) ? "" : reference::NameOf(outcome.worker);
        return m_counters.OnlyCounted(counter)
                   ? ""
                   : std::string("counters: expected one start and stop of \"") + counter + "\"";
    }

    void ClearSpies() { m_mapLoops.Clear(); }

private:
    //! What the loop that a call ends in is expected to get. "as_ag" has a spy that does not know of maps.
    std::string ExpectedLoops(const Case& thrown, const reference::MapOutcome& outcome) const
    {
        if (!reference::IsLoop(outcome.worker)) return Printed({}, {});
        const auto at = [&](const std::uint8_t* pixels, const Area& area, std::int64_t pixelBytes)
        { return pixels + outcome.srcY * area.pitch + outcome.srcX * pixelBytes; };
        const auto* const from =
            at(SourcePixels(), thrown.source, reference::BytesPerPixel(thrown.source.known.format));
        const auto* const dst    = TargetPixels() + outcome.dstY * thrown.target.pitch + outcome.dstX * 4;
        const auto        width  = static_cast<std::uint32_t>(outcome.width);
        const auto        height = static_cast<std::uint32_t>(outcome.height);
        const char* const loop   = reference::NameOf(outcome.worker);
        if (outcome.worker == MapWorker::OverScaled)
        {
            return Printed(
                {}, {{loop, dst, from, thrown.target.pitch, thrown.source.pitch, width, height, 0, thrown.alpha}});
        }
        support::MapLoopCall call{loop, dst,   from,   nullptr, thrown.target.pitch, thrown.source.pitch,
                                  0,    width, height, -1};
        if (reference::ReadsMap(outcome.worker))
        {
            call.map      = at(MapPixels(), thrown.map, 1);
            call.mapPitch = thrown.map.pitch;
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

    support::MapLoopSpies m_mapLoops;
};

}  // namespace

TEST(BlitAlphaRandom, BlitAlphaDrawsWhatTheNaiveReferenceDraws)
{
    const std::vector<MapWorker>   workers{MapWorker::Int,     MapWorker::Rgb,          MapWorker::CopyAlpha,
                                         MapWorker::Over,    MapWorker::OverScaled,   MapWorker::Store565,
                                         MapWorker::Over565, MapWorker::Over565Scaled};
    const std::vector<std::string> messages{support::NOT_LOCKED,
                                            support::NOT_INSIDE,
                                            support::NOT_SUPPORTED,
                                            support::NOT_A_MAP,
                                            "RGB32->ARGB32 BlitAlpha, alpha format not supported",
                                            "ARGB32->ARGB32 BlitAlpha, alpha format not supported",
                                            "A8->ARGB32 BlitAlpha, alpha format not supported",
                                            "RGB565->ARGB32 BlitAlpha, alpha format not supported"};
    support::RunCases<RandomMapBlits, MapWorker>("BlitAlpha", 300000, {workers, 400, messages, 400}, &ThrowCase);
}
