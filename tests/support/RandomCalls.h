// RandomCalls: what the random tests of all blits have in common: the pictures of a call between protected pages, the call
// itself, what must be as the naive reference says afterwards and what must be as before, and the run over all cases.
#ifndef RANDOMCALLS_H
#define RANDOMCALLS_H

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "DrawSpies.h"
#include "RandomPictures.h"
#include "RunSeeds.h"

namespace support
{

// ---- a case ---------------------------------------------------------------------------------------------------------

//! Which bitmap a call is given as its source, or as its map.
enum class Role
{
    Itself,
    TheTarget,  // ARGB32 only
    TheSource,
    Nobody  // a null pointer
};

//! What every random call is made of. Tests add the numbers of theirs.
struct RandomCall
{
    std::uint64_t                  seed;
    PictureArea                    source;  // or the map of a colour blit
    PictureArea                    map;
    PictureArea                    target;
    Role                           sourceRole = Role::Itself;
    Role                           mapRole    = Role::Itself;
    std::optional<reference::Clip> clip;
    std::uint32_t                  flags;
    int                            alpha;
    std::uint32_t                  color;  // or colour key
    bool                           keyed;  // the colour is a key that is looked for
    unsigned                       renderState;
    bool                           locked;
    bool                           swapped;  // a target with an encoding of its own
};

//! A type that no call supports.
inline Known ThrowOther(Dice& dice)
{
    return {Format::Other, dice.Of<unsigned>({BM_UNKNWON, BM_RGB555, BM_ALPHA1, BM_QUANTITY, 255, 0x104})};
}

//! As the format of an alpha map.
inline Known ThrowMapFormat(Dice& dice)
{
    const Known other = ThrowOther(dice);
    return dice.Of({KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_A8, KNOWN_A8, KNOWN_A8, KNOWN_A8,
                    KNOWN_ALPHA52, KNOWN_RGB32, other});
}

//! As the format of the map that a colour is blitted through.
inline Known ThrowColorMapFormat(Dice& dice)
{
    const Known other = ThrowOther(dice);
    return dice.Of({KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_A8, KNOWN_A8, KNOWN_A8, KNOWN_A8, KNOWN_A8,
                    KNOWN_A8, KNOWN_ALPHA52, KNOWN_RGB565, other});
}

//! Source, map and target; the target now and then is its own source, the source its own map.
inline void ThrowPictures(Dice& dice, RandomCall& thrown, Known source)
{
    thrown.source      = ThrowPicture(dice, source);
    const auto through = ThrowMapFormat(dice);
    thrown.map         = dice.OneIn(2) ? ThrowPicture(dice, through)
                                       : ThrowPicture(dice, through, thrown.source.width, thrown.source.height);
    thrown.target      = ThrowPicture(dice, KNOWN_ARGB32);
    if (thrown.source.known.format == Format::Argb32 && dice.OneIn(8))
    {
        thrown.sourceRole = Role::TheTarget;
        thrown.source     = thrown.target;
    }
    if (dice.OneIn(10))
    {
        thrown.mapRole = Role::TheSource;
        thrown.map     = thrown.source;
    }
    thrown.clip = ThrowAnyClip(dice, thrown.target);
}

//! How the target stands; 2 is no setting of OPTIMIZED_BLIT.
inline void ThrowTarget(Dice& dice, RandomCall& thrown)
{
    thrown.renderState = dice.Of<unsigned>({OB_NONE, OB_NONE, OB_NONE, OB_NEON, OB_NEON, OB_NEON, OB_NEON, 2});
    thrown.locked      = !dice.OneIn(64);
    thrown.swapped     = dice.OneIn(8);
}

//! "flags 40000, alpha 255, key 00FF00FF, OPTIMIZED_BLIT 1, not locked; source ...; map ...; target ..., clip none: ".
inline std::string DescribedCall(const RandomCall& thrown)
{
    const auto who = [](Role role, const PictureArea& area)
    {
        return role == Role::Itself      ? Described(area)
               : role == Role::TheTarget ? "the target itself"
               : role == Role::TheSource ? "the source itself"
                                         : "null";
    };
    char text[160];
    std::snprintf(text, sizeof text, "flags %X, alpha %d, %s %08X, OPTIMIZED_BLIT %u%s%s", thrown.flags, thrown.alpha,
                  thrown.keyed ? "key" : "colour", thrown.color, thrown.renderState,
                  thrown.locked ? "" : ", not locked", thrown.swapped ? ", swapped" : "");
    return text + ("; source " + who(thrown.sourceRole, thrown.source)) + "; map " + who(thrown.mapRole, thrown.map) +
           "; target " + Described(thrown.target) + ", " + Described(thrown.clip) + ": ";
}

// ---- a call ---------------------------------------------------------------------------------------------------------

//! How often what did the work with something to draw, how often a message was due, how many pixels were drawn.
template <class Work>
struct Seen
{
    std::map<Work, std::uint64_t>        works;
    std::map<std::string, std::uint64_t> messages;
    std::uint64_t                        pixels = 0;
};

//! Runs cases. Test is a class made of it and has
//!
//!   using Case = ...;                                 // made of a RandomCall
//!   Outcome       Expect(thrown, onto, source, map)   // what the reference draws there; map is null for no map
//!   void          Call(thrown, target, source, map)   // the library's call
//!   Work          WorkOf(thrown, outcome)
//!   std::uint64_t PixelsOf(outcome)
//!   std::string   WrongCalls(thrown, target, outcome) // an empty text, or which loop or counter should not have run
//!
//! and may have `std::string WrongBefore(thrown, target, onto, source, map)`, asked before anything is drawn, and
//! `void ClearSpies()`.
template <class Test, class Work>
class RandomCalls
{
public:
    RandomCalls()
    {
        m_screens[OB_NEON].GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON);
        m_screens[2].GetRenderState().Set(OPTIMIZED_BLIT, 2);
    }

    //! An empty text, or what is wrong.
    template <class Case>
    std::string Run(const Case& thrown)
    {
        Prepare(thrown);
        const PictureArea&  area   = thrown.target;
        Kanvo_Screen* const screen = &m_screens[thrown.renderState];
        if (thrown.swapped)
        {
            SwappedTarget target(screen, area.width, area.height, m_targetPixels, area.pitch);
            return RunOn(thrown, target);
        }
        PitchedTarget target(screen, area.width, area.height, m_targetPixels, area.pitch);
        return RunOn(thrown, target);
    }

    const Seen<Work>& WhatWasSeen() const { return m_seen; }

protected:
    template <class... Arguments>
    std::string WrongBefore(const Arguments&...)
    {
        return {};
    }
    void ClearSpies() {}

    const std::uint8_t* SourcePixels() const { return m_sourcePixels; }
    const std::uint8_t* MapPixels() const { return m_mapPixels; }
    const std::uint8_t* TargetPixels() const { return m_targetPixels; }
    //! What the source held before the call.
    const std::uint8_t* SourceBefore() const { return m_sourceBefore.data(); }

    Kanvo     m_library;
    LoopSpies m_loops;
    PerfSpies m_counters;

private:
    static constexpr std::size_t AROUND = 256;  // bytes watched on both sides of the target, where there is no fence

    Test& Self() { return static_cast<Test&>(*this); }

    void Prepare(const RandomCall& thrown)
    {
        Dice           dice(thrown.seed ^ 0x5EED);
        const bool     self = thrown.sourceRole == Role::TheTarget;
        const auto     key  = thrown.keyed ? std::optional<std::uint32_t>(thrown.color) : std::nullopt;
        const unsigned oneIn =
            dice.Of({1U, 3U, 3U, 30U, 30U});  // one in three hides nearly every block, one in thirty few
        m_targetPixels = thrown.target.In(m_targetArena, thrown.target.PixelBytes());
        m_sourcePixels = self ? m_targetPixels : thrown.source.In(m_sourceArena, thrown.source.PixelBytes());
        m_mapPixels    = thrown.mapRole == Role::TheSource   ? m_sourcePixels
                         : thrown.mapRole == Role::TheTarget ? m_targetPixels
                                                             : thrown.map.In(m_mapArena, thrown.map.PixelBytes());
        FillPicture(dice, m_targetPixels, thrown.target, self ? key : std::nullopt, oneIn);
        if (!self) FillPicture(dice, m_sourcePixels, thrown.source, key, oneIn);
        if (m_mapPixels != m_sourcePixels && m_mapPixels != m_targetPixels)
        {
            FillPicture(dice, m_mapPixels, thrown.map);
        }
        m_watched      = std::max(m_targetArena.Data(), m_targetPixels - AROUND);
        const auto end = std::min(m_targetArena.Data() + ARENA_BYTES, m_targetPixels + thrown.target.Count() + AROUND);
        m_expected.assign(m_watched, end);
        m_sourceBefore.assign(m_sourcePixels, m_sourcePixels + thrown.source.Count());
        m_mapBefore.assign(m_mapPixels, m_mapPixels + thrown.map.Count());
    }

    template <class Case>
    std::string RunOn(const Case& thrown, PitchedTarget& target)
    {
        if (thrown.clip)
        {
            target.SetCliprect(static_cast<Tov_UInt>(thrown.clip->minX), static_cast<Tov_UInt>(thrown.clip->minY),
                               static_cast<Tov_UInt>(thrown.clip->maxX), static_cast<Tov_UInt>(thrown.clip->maxY));
        }
        if (thrown.locked) target.Lock();
        target.SayAlpha(thrown.target.saysAlpha);
        Kanvo_Screen* const screen = &m_screens[thrown.renderState];
        AnyBitmap           otherSource(screen, thrown.source, m_sourcePixels);
        AnyBitmap           otherMap(screen, thrown.map, m_mapPixels);
        Kanvo_Bitmap* const source = thrown.sourceRole == Role::TheTarget ? &target : otherSource.Get();
        Kanvo_Bitmap* const map    = thrown.mapRole == Role::TheTarget   ? &target
                                     : thrown.mapRole == Role::TheSource ? source
                                     : thrown.mapRole == Role::Nobody    ? nullptr
                                                                         : otherMap.Get();

        reference::Target onto;
        onto.picture   = thrown.target.Over(m_expected.data() + (m_targetPixels - m_watched));
        onto.locked    = thrown.locked;
        onto.optimised = thrown.renderState == OB_NEON;
        if (thrown.clip) onto.clip = *thrown.clip;
        if (thrown.swapped) onto.compose = &SwappedTarget::Compose;
        const auto  from   = source == &target ? onto.picture : thrown.source.Over(m_sourcePixels);
        const auto  cover  = map == source ? from : map == &target ? onto.picture : thrown.map.Over(m_mapPixels);
        const auto* covers = map != nullptr ? &cover : nullptr;

        std::string wrong = Self().WrongBefore(thrown, target, onto, from, covers);
        if (wrong.empty())
        {
            const auto outcome = Self().Expect(thrown, onto, from, covers);
            Note(thrown, outcome);
            ClearAll();
            m_objects[0].Take(target);
            otherSource.TakeInto(m_objects[1]);
            otherMap.TakeInto(m_objects[2]);
            m_objects[3].Take(*screen);
            {
                ForbiddenPadding sourcePadding(thrown.source, m_sourcePixels);
                ForbiddenPadding mapPadding(thrown.map, m_mapPixels);
                Self().Call(thrown, target, source, map);
            }
            wrong = Compare(thrown, target, outcome);
        }
        return wrong.empty() ? wrong : Described(thrown) + wrong;
    }

    template <class Case, class Outcome>
    void Note(const Case& thrown, const Outcome& outcome)
    {
        const std::uint64_t pixels = Self().PixelsOf(outcome);
        m_seen.pixels += pixels;
        if (pixels > 0) ++m_seen.works[Self().WorkOf(thrown, outcome)];
        for (const std::string& message : outcome.messages) ++m_seen.messages[message];
    }

    void ClearAll()
    {
        m_asserts.Clear();
        m_loops.Clear();
        m_counters.Clear();
        Self().ClearSpies();
    }

    template <class Case, class Outcome>
    std::string Compare(const Case& thrown, const Kanvo_Bitmap& target, const Outcome& outcome)
    {
        if (std::memcmp(m_expected.data(), m_watched, m_expected.size()) != 0) return WrongPixels(thrown);
        if (m_asserts.Count() != outcome.messages.size() || m_asserts.Texts() != outcome.messages)
        {
            return "messages: expected " + testing::PrintToString(outcome.messages) + ", got " +
                   testing::PrintToString(m_asserts.Texts());
        }
        const std::string calls = Self().WrongCalls(thrown, target, outcome);
        if (!calls.empty()) return calls;
        if (m_sourcePixels != m_targetPixels && Changed(m_sourceBefore, m_sourcePixels))
        {
            return "the source's pixels changed";
        }
        if (m_mapPixels != m_targetPixels && Changed(m_mapBefore, m_mapPixels)) return "the map's pixels changed";
        constexpr const char* names[] = {"target", "source", "map", "screen"};
        for (std::size_t at = 0; at < 4; ++at)
        {
            if (!m_objects[at].IsUnchanged()) return std::string("the object changed of the ") + names[at];
        }
        return {};
    }

    static bool Changed(const std::vector<std::uint8_t>& before, const std::uint8_t* now)
    {
        return !std::equal(before.begin(), before.end(), now);
    }

    std::string WrongPixels(const RandomCall& thrown) const
    {
        const auto offset = static_cast<std::size_t>(m_targetPixels - m_watched);
        const auto at = static_cast<std::size_t>(std::mismatch(m_expected.begin(), m_expected.end(), m_watched).first -
                                                 m_expected.begin());
        if (at >= offset && at < offset + thrown.target.Count())
        {
            return FirstDifference(m_expected.data() + offset, m_targetPixels, thrown.target);
        }
        char text[160];
        std::snprintf(text, sizeof text, "byte %td, outside the pixels, expected %02X, got %02X",
                      static_cast<std::ptrdiff_t>(at - offset), m_expected[at], m_watched[at]);
        return text;
    }

    Seen<Work>    m_seen;
    Kanvo_Screen  m_screens[3] = {Kanvo_Screen(&m_library), Kanvo_Screen(&m_library), Kanvo_Screen(&m_library)};
    Fence         m_sourceArena{ARENA_BYTES};
    Fence         m_mapArena{ARENA_BYTES};
    Fence         m_targetArena{ARENA_BYTES};
    std::uint8_t* m_sourcePixels = nullptr;
    std::uint8_t* m_mapPixels    = nullptr;
    std::uint8_t* m_targetPixels = nullptr;
    std::uint8_t* m_watched      = nullptr;  // the target's pixels and some memory around them
    std::vector<std::uint8_t> m_expected;
    std::vector<std::uint8_t> m_sourceBefore;
    std::vector<std::uint8_t> m_mapBefore;
    Snapshot                  m_objects[4];
    AssertCapture             m_asserts;
};

// ---- all cases ------------------------------------------------------------------------------------------------------

//! What must be seen now and then, that a test may not run idle.
template <class Work>
struct Due
{
    std::vector<Work>        works;
    std::uint64_t            workOneIn;  // each at least once in so many calls
    std::vector<std::string> messages;
    std::uint64_t            messageOneIn;
};

//! throwCase(seed) returns a case of Test's.
template <class Test, class Work, class Throw>
void RunCases(const char* name, std::uint64_t cases, const Due<Work>& due, Throw throwCase)
{
    const Seeds seeds(cases);
    Test        test;
    const bool  good = RunSeeds(name, seeds, [&](std::uint64_t seed) { return test.Run(throwCase(seed)); });
    if (!good || seeds.count < 10000) return;
    Seen<Work> seen = test.WhatWasSeen();
    for (const Work work : due.works)
    {
        EXPECT_GT(seen.works[work], seeds.count / due.workOneIn) << "work " << static_cast<int>(work);
    }
    for (const std::string& message : due.messages)
    {
        EXPECT_GT(seen.messages[message], seeds.count / due.messageOneIn) << message;
    }
    EXPECT_GT(seen.pixels, seeds.count * 10);
}

}  // namespace support

#endif
