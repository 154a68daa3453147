// Random lines and dots against the naive reference: pixels, padding, messages, statistics, counters, the pattern
// offset. The target lies flush between protected pages. A million lines and 300,000 dots (20,000 and 6,000 under
// sanitizers); every case has a seed of its own and can be replayed alone (Dice.h). Then, by the same reference, the
// places where a drawing loop changes from one way of going to another: ends of runs, first and last steps, clipped rows.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Dice.h"
#include "Kanvo_Pattern.h"
#include "LineStage.h"
#include "NaiveMix.h"
#include "RunSeeds.h"

namespace
{

using support::Dice;

constexpr std::uint64_t LINES = support::CasesOf(1000000);
constexpr std::uint64_t DOTS  = support::CasesOf(300000);

constexpr std::size_t ARENA_BYTES = 65536;

constexpr const char* OUTSIDE = "unclipped line outside the bitmap";

//! The bitmap that a case draws on.
struct Ground
{
    unsigned      width;
    unsigned      height;
    unsigned      pitch;  // words
    bool          atBackFence;
    bool          opaque;
    bool          clipped;
    std::uint32_t clip[4];  // as given: minimum x, y, maximum x, y
};

struct LineCase
{
    std::uint64_t       seed;
    Ground              ground;
    reference::LineCall call;
    bool                withPattern;
    float               factor;
    float               offset;
    float               refLength;
};

struct DotCase
{
    std::uint64_t      seed;
    Ground             ground;
    reference::DotCall call;
};

// ---- throwing a case ------------------------------------------------------------------------------------------------

float Uniform(Dice& dice, float low, float high)
{
    return low + (high - low) * (static_cast<float>(dice.Next32() >> 8) / 16777216.0F);
}

Ground ThrowGround(Dice& dice)
{
    Ground ground{};
    ground.width  = static_cast<unsigned>(dice.Between(8, 56));
    ground.height = static_cast<unsigned>(dice.Between(8, 48));
    if (dice.OneIn(10)) ground.width = static_cast<unsigned>(dice.Between(1, 3));
    if (dice.OneIn(10)) ground.height = static_cast<unsigned>(dice.Between(1, 3));
    ground.pitch       = ground.width + dice.Of<unsigned>({0, 0, 1, 3, 16});
    ground.atBackFence = dice.OneIn(2);
    ground.opaque      = !dice.OneIn(3);
    ground.clipped     = !dice.OneIn(3);
    ground.clip[2]     = ground.width - 1;
    ground.clip[3]     = ground.height - 1;
    if (!ground.clipped) return ground;
    ground.clip[0] = dice.Below(ground.width);
    ground.clip[1] = dice.Below(ground.height);
    ground.clip[2] = ground.clip[0] + dice.Below(ground.width - ground.clip[0]);
    ground.clip[3] = ground.clip[1] + dice.Below(ground.height - ground.clip[1]);
    if (dice.OneIn(40)) ground.clip[2] = dice.Of<std::uint32_t>({0, ground.width, ground.width + 9, 0xFFFFFFFFU});
    if (dice.OneIn(40)) ground.clip[3] = dice.Of<std::uint32_t>({0, ground.height, ground.height + 9, 0x80000000U});
    if (dice.OneIn(60)) ground.clip[0] = dice.Of<std::uint32_t>({ground.width, 0x7FFFFFFFU, 0xFFFFFFFFU});
    return ground;
}

//! Inside or a little outside mostly, up to 10,000 away at times; whole, half, quarter, 1/256 and any fraction.
float ThrowCoordinate(Dice& dice, unsigned size, bool promised)
{
    const auto extent = static_cast<float>(size);
    float      value  = 0.0F;
    const int  kind   = dice.Between(0, promised ? 63 : 15);
    if (kind == 0)
        value = Uniform(dice, -10000.0F, 10000.0F);
    else if (kind <= 2)
        value = Uniform(dice, -300.0F, 300.0F);
    else if (kind <= 7)
        value = Uniform(dice, -12.0F, extent + 12.0F);
    else
        value = Uniform(dice, 0.0F, extent - 1.0F);
    switch (dice.Between(0, 7))
    {
    case 0:
    case 1: return std::floor(value);
    case 2: return std::floor(value) + 0.5F;
    case 3: return std::floor(value * 4.0F) / 4.0F;
    case 4: return std::floor(value * 256.0F) / 256.0F;
    default: return value;
    }
}

float ThrowWidth(Dice& dice)
{
    switch (dice.Between(0, 7))
    {
    case 0:
    case 1: return static_cast<float>(dice.Between(0, 6)) / 2.0F;
    case 2: return static_cast<float>(dice.Between(0, 40));
    case 3: return Uniform(dice, 0.0F, 40.0F);
    case 4: return Uniform(dice, 0.9F, 3.1F);
    default: return Uniform(dice, 0.0F, 12.0F);
    }
}

std::uint32_t ThrowFlags(Dice& dice)
{
    std::uint32_t flags =
        dice.Of<std::uint32_t>({0, Kanvo_LF_ANTIALIAS, Kanvo_LF_HQ_AA, Kanvo_LF_ANTIALIAS | Kanvo_LF_HQ_AA});
    if (dice.OneIn(3)) flags |= Kanvo_LF_ROUND_START;
    if (dice.OneIn(3)) flags |= Kanvo_LF_ROUND_END;
    if (dice.OneIn(3)) flags |= Kanvo_LF_DO_NOT_CLIP;
    if (dice.OneIn(4)) flags |= Kanvo_LF_PATTERN;
    if (dice.OneIn(4)) flags |= Kanvo_LF_ADVANCEPATTERN;
    if (dice.OneIn(4)) flags |= Kanvo_LF_RESCALEPATTERN;
    if (dice.OneIn(6)) flags |= Kanvo_LF_WIDE_S;
    if (dice.OneIn(6)) flags |= Kanvo_LF_WIDE_T;
    if (dice.OneIn(6)) flags |= Kanvo_LF_WIDE_2;
    if (dice.OneIn(6)) flags |= Kanvo_LF_AA_CLIP_END_PART_CORRECTION;
    return flags;
}

std::uint32_t ThrowColor(Dice& dice)
{
    const std::uint32_t color = dice.Next32();
    return dice.OneIn(3) ? color : color | 0xFF000000U;
}

LineCase ThrowLine(std::uint64_t seed)
{
    Dice     dice(seed);
    LineCase thrown{};
    thrown.seed               = seed;
    thrown.ground             = ThrowGround(dice);
    reference::LineCall& call = thrown.call;
    call.flags                = ThrowFlags(dice);
    const bool promised       = (call.flags & Kanvo_LF_DO_NOT_CLIP) != 0;
    call.startX               = ThrowCoordinate(dice, thrown.ground.width, promised);
    call.startY               = ThrowCoordinate(dice, thrown.ground.height, promised);
    call.endX                 = ThrowCoordinate(dice, thrown.ground.width, promised);
    call.endY                 = ThrowCoordinate(dice, thrown.ground.height, promised);
    switch (dice.Between(0, 15))
    {
    case 0: call.endX = call.startX; break;
    case 1: call.endY = call.startY; break;
    case 2: call.endY = call.startY + (call.endX - call.startX); break;
    case 3: call.endY = call.startY - (call.endX - call.startX); break;
    case 4: call.endX = call.startX + Uniform(dice, -1.5F, 1.5F); break;
    case 5:
        call.endX = call.startX + Uniform(dice, -0.2F, 0.2F);
        call.endY = call.startY + Uniform(dice, -0.2F, 0.2F);
        break;
    default: break;
    }
    if (dice.OneIn(60))
    {
        call.endX = call.startX;
        call.endY = call.startY;
    }
    call.color      = ThrowColor(dice);
    call.startWidth = ThrowWidth(dice);
    call.endWidth   = dice.OneIn(2) ? 0.0F : dice.OneIn(3) ? call.startWidth : ThrowWidth(dice);
    if (dice.OneIn(100)) call.startWidth = -Uniform(dice, 0.0F, 40.0F);
    if (dice.OneIn(100)) call.endWidth = -Uniform(dice, 0.0F, 40.0F);
    thrown.withPattern = (call.flags & Kanvo_LF_PATTERN) == 0 || !dice.OneIn(50);
    thrown.factor      = dice.Of({1.0F, 1.0F / 256.0F, 1.0F / 16.0F, 0.1F, -0.05F, 0.0F, 3.75F, 1.0e6F});
    thrown.offset      = dice.Of({0.0F, 0.25F, 2.75F, -0.3F, 1000.1F, 1.0e9F});
    thrown.refLength   = dice.Of({1.0F, 20.0F, 64.0F, 0.0F, 1.0e-6F});
    return thrown;
}

DotCase ThrowDot(std::uint64_t seed)
{
    Dice    dice(seed);
    DotCase thrown{};
    thrown.seed   = seed;
    thrown.ground = ThrowGround(dice);
    auto& call    = thrown.call;
    call.x        = ThrowCoordinate(dice, thrown.ground.width, false);
    call.y        = ThrowCoordinate(dice, thrown.ground.height, false);
    switch (dice.Between(0, 9))
    {
    case 0: call.radius = Uniform(dice, -1.0F, 1.5F); break;
    case 1: call.radius = static_cast<float>(dice.Between(0, 12)) / 2.0F; break;
    case 2: call.radius = Uniform(dice, 30.0F, 200.0F); break;
    case 3: call.radius = Uniform(dice, 200.0F, 10000.0F); break;
    case 4: call.radius = Uniform(dice, 5.9F, 6.1F); break;
    default: call.radius = Uniform(dice, 0.5F, 20.0F); break;
    }
    if (call.radius > 100.0F && dice.OneIn(2))
    {
        // a rim that passes through the bitmap
        const float slant = Uniform(dice, -1.0F, 1.0F);
        call.x -= call.radius * std::sqrt(1.0F - slant * slant);
        call.y += call.radius * slant;
    }
    call.color = ThrowColor(dice);
    call.flags = dice.Of<std::uint32_t>(
        {0, 0, Kanvo_LF_ANTIALIAS, Kanvo_LF_ANTIALIAS, Kanvo_LF_HQ_AA, Kanvo_LF_ANTIALIAS | Kanvo_LF_HQ_AA});
    if (dice.OneIn(8)) call.flags |= dice.Of<std::uint32_t>({0x00100000U, 0x08000000U, 0xFFF0FFFFU});
    return thrown;
}

// ---- saying what a case was -----------------------------------------------------------------------------------------

std::string Described(const Ground& ground)
{
    char text[160];
    std::snprintf(text, sizeof text, "%ux%u pitch %u at the %s fence, clip (%u, %u) to (%u, %u)", ground.width,
                  ground.height, ground.pitch, ground.atBackFence ? "back" : "front", ground.clip[0], ground.clip[1],
                  ground.clip[2], ground.clip[3]);
    return text;
}

double D(float value)
{
    return static_cast<double>(value);
}

std::string Described(const LineCase& thrown)
{
    const reference::LineCall& call = thrown.call;
    char                       text[400];
    std::snprintf(text, sizeof text,
                  "seed %llu: line (%.9g, %.9g) to (%.9g, %.9g), colour %08X, flags %08X, widths %.9g %.9g, factor %g, "
                  "offset %g, reference %g, on ",
                  static_cast<unsigned long long>(thrown.seed), D(call.startX), D(call.startY), D(call.endX),
                  D(call.endY), call.color, call.flags, D(call.startWidth), D(call.endWidth), D(thrown.factor),
                  D(thrown.offset), D(thrown.refLength));
    return text + Described(thrown.ground) + ": ";
}

std::string Described(const DotCase& thrown)
{
    const reference::DotCall& call = thrown.call;
    char                      text[240];
    std::snprintf(text, sizeof text, "seed %llu: dot (%.9g, %.9g), radius %.9g, colour %08X, flags %08X, on ",
                  static_cast<unsigned long long>(thrown.seed), D(call.x), D(call.y), D(call.radius), call.color,
                  call.flags);
    return text + Described(thrown.ground) + ": ";
}

// ---- running a case -------------------------------------------------------------------------------------------------

class RandomDrawing
{
public:
    RandomDrawing()
    {
        Dice dice(77);
        for (std::uint32_t& color : m_colors) color = ThrowColor(dice);
        std::reverse_copy(m_colors, m_colors + 256, m_colors + 256);
        // The table goes into a pattern of the library stop by stop: each colour twice, at both ends of its entry.
        std::vector<Kanvo_Pattern::Stop> stops;
        for (unsigned index = 0; index < 256; ++index)
        {
            stops.push_back({static_cast<float>(index) / 256.0F, m_colors[index]});
            stops.push_back({static_cast<float>(index + 1) / 256.0F, m_colors[index]});
        }
        m_patternIsFaithful = m_pattern.SetStops(stops.data(), static_cast<Tov_UInt>(stops.size()), 64.0F) &&
                              std::memcmp(m_pattern.GetColors(), m_colors, sizeof m_colors) == 0;
    }

    bool IsPatternFaithful() const { return m_patternIsFaithful; }

    std::string Run(const LineCase& thrown)
    {
        Kanvo_RenderState& state = m_screen.GetRenderState();
        state.Set(LINEPATTERN, thrown.withPattern ? static_cast<void*>(&m_pattern) : nullptr);
        state.Set(I_LINPATFACTOR, thrown.factor);
        state.Set(LINEPATTERNOFFSET, thrown.offset);
        state.Set(I_LINPATREFLEN, thrown.refLength);
        const reference::LineCall& call    = thrown.call;
        const std::string          failure = OnGround(
                     thrown.seed, thrown.ground, call.flags,
                     [&](const reference::Canvas& canvas)
                     {
                return reference::DrawLine(
                             canvas, call,
                             {thrown.withPattern ? m_colors : nullptr, thrown.factor, thrown.offset, thrown.refLength});
            },
                     [&](Kanvo_Bitmap& bitmap)
                     {
                bitmap.DrawLine(Kanvo_Vector2(call.startX, call.startY), Kanvo_Vector2(call.endX, call.endY),
                                         call.color, call.flags, call.startWidth, call.endWidth);
            });
        if (!failure.empty()) return Described(thrown) + failure;
        const bool far = call.startX < -1.0F || call.startY < -1.0F || call.endX < -1.0F || call.endY < -1.0F ||
                         call.startX > static_cast<float>(thrown.ground.width) ||
                         call.startY > static_cast<float>(thrown.ground.height) ||
                         call.endX > static_cast<float>(thrown.ground.width) ||
                         call.endY > static_cast<float>(thrown.ground.height);
        if ((call.flags & Kanvo_LF_DO_NOT_CLIP) != 0 && far && m_outcome.message.empty() &&
            m_asserts.Count(OUTSIDE) != 1)
            return Described(thrown) + "not told that the line is outside";
        const float offset = state.GetValue(LINEPATTERNOFFSET);
        if (offset != m_outcome.offset)
            return Described(thrown) + "offset expected " + std::to_string(m_outcome.offset) + ", got " +
                   std::to_string(offset);
        return {};
    }

    std::string Run(const DotCase& thrown)
    {
        const std::string failure = OnGround(
            thrown.seed, thrown.ground, 0,
            [&](const reference::Canvas& canvas) { return reference::DrawDot(canvas, thrown.call); },
            [&](Kanvo_Bitmap& bitmap) {
                bitmap.DrawDot(thrown.call.x, thrown.call.y, thrown.call.radius, thrown.call.color, thrown.call.flags);
            });
        return failure.empty() ? failure : Described(thrown) + failure;
    }

    const reference::LineOutcome& Outcome() const { return m_outcome; }
    bool                          Changed() const { return m_changed; }

private:
    template <class Expect, class Draw>
    std::string OnGround(std::uint64_t seed, const Ground& ground, std::uint32_t flags, Expect&& expect, Draw&& draw)
    {
        const std::size_t    words  = std::size_t{ground.pitch} * (ground.height - 1) + ground.width;
        std::uint32_t* const pixels = m_arena.As<std::uint32_t>() + (ground.atBackFence ? ARENA_BYTES / 4 - words : 0);
        Dice                 dice(seed ^ 0x5EED);
        dice.Fill(pixels, words * 4);
        if (ground.opaque)
        {
            for (std::size_t at = 0; at < words; ++at) pixels[at] |= 0xFF000000U;
        }
        m_before.assign(pixels, pixels + words);
        m_expected = m_before;

        support::PitchedTarget bitmap(&m_screen, ground.width, ground.height, pixels, ground.pitch * 4);
        if (ground.clipped) bitmap.SetCliprect(ground.clip[0], ground.clip[1], ground.clip[2], ground.clip[3]);
        bitmap.Lock();

        reference::Canvas   canvas{m_expected.data(), ground.width, ground.height, ground.pitch, 1, 1, 0, 0};
        const std::uint32_t maxX = std::min<std::uint32_t>(ground.clip[2], ground.width - 1);
        const std::uint32_t maxY = std::min<std::uint32_t>(ground.clip[3], ground.height - 1);
        if (ground.clip[0] <= maxX && ground.clip[1] <= maxY)
        {
            canvas.clipMinX = ground.clip[0];
            canvas.clipMinY = ground.clip[1];
            canvas.clipMaxX = maxX;
            canvas.clipMaxY = maxY;
        }
        m_outcome = expect(static_cast<const reference::Canvas&>(canvas));
        m_spies.Clear();
        m_asserts.Clear();
        draw(bitmap);

        m_changed = m_expected != m_before;
        if (std::memcmp(m_expected.data(), pixels, words * 4) != 0) return FirstDifference(pixels, ground);
        const std::size_t told = m_asserts.Count(OUTSIDE);
        if (told > 1 || (told == 1 && (flags & Kanvo_LF_DO_NOT_CLIP) == 0)) return "told to be outside without reason";
        const std::size_t expected = m_outcome.message.empty() ? 0 : 1;
        if (m_asserts.Count() - told != expected || (expected == 1 && m_asserts.Count(m_outcome.message) != 1))
            return "messages: expected " + m_outcome.message + ", got " + testing::PrintToString(m_asserts.Texts());
        // Through an empty clip rectangle nothing is drawn; what is counted on the way there is nobody's business.
        const bool empty = canvas.clipMinX > canvas.clipMaxX && (flags & Kanvo_LF_DO_NOT_CLIP) == 0;
        if (m_outcome.message.empty() && !empty) return m_spies.Differences(m_outcome);
        return {};
    }

    std::string FirstDifference(const std::uint32_t* got, const Ground& ground) const
    {
        std::size_t at    = 0;
        std::size_t count = 0;
        for (std::size_t index = m_expected.size(); index-- > 0;)
        {
            if (m_expected[index] == got[index]) continue;
            at = index;
            ++count;
        }
        char text[200];
        std::snprintf(text, sizeof text,
                      "%zu pixels differ, first (%zu, %zu): was %08X, expected %08X, got %08X [%s%s%s]", count,
                      at % ground.pitch, at / ground.pitch, m_before[at], m_expected[at], got[at], m_outcome.path,
                      m_outcome.clipped ? " clipped" : "", m_outcome.spansInY ? " X-major" : " Y-major");
        return text;
    }

    Kanvo                      m_library;
    Kanvo_Screen               m_screen{&m_library};
    support::Fence             m_arena{ARENA_BYTES};
    support::AssertCapture     m_asserts;
    support::LineSpies         m_spies;
    Kanvo_Pattern              m_pattern;
    std::uint32_t              m_colors[512]{};
    bool                       m_patternIsFaithful = false;
    std::vector<std::uint32_t> m_before;
    std::vector<std::uint32_t> m_expected;
    reference::LineOutcome     m_outcome;
    bool                       m_changed = false;
};

//! Runs cases until three have failed; after each that did not, calls note.
template <class Throw, class Note>
bool RunAll(const char* name, RandomDrawing& drawing, const support::Seeds& seeds, Throw&& thrower, Note&& note)
{
    return support::RunSeeds(name, seeds,
                             [&](std::uint64_t seed)
                             {
                                 std::string failure = drawing.Run(thrower(seed));
                                 if (failure.empty()) note();
                                 return failure;
                             });
}

}  // namespace

TEST(LineRandom, LinesAreThoseOfTheNaiveReference)
{
    const support::Seeds seeds(LINES);
    RandomDrawing        drawing;
    ASSERT_TRUE(drawing.IsPatternFaithful()) << "a table of 256 stops is not what the pattern holds";
    std::map<std::string, std::uint64_t> cells;
    const auto                           note = [&]
    {
        const reference::LineOutcome& outcome = drawing.Outcome();
        if (*outcome.path == '\0' || !drawing.Changed()) return;
        std::string cell = std::string(outcome.path) + (outcome.spansInY ? " x" : " y") +
                           (outcome.quality == 0   ? " plain"
                            : outcome.quality == 1 ? " soft"
                                                   : " filtered") +
                           (outcome.pattern ? " pattern" : " colour") + (outcome.clipped ? " clipped" : " open");
        ++cells[cell];
        if (outcome.longBody) ++cells["long body"];
        if (outcome.flipped && outcome.pattern) ++cells["flipped pattern"];
        if (outcome.tapered) ++cells["tapered"];
        if (outcome.roundCaps) ++cells["caps"];
    };
    if (!RunAll("LinesAreThoseOfTheNaiveReference", drawing, seeds, ThrowLine, note) || seeds.count < 10000) return;
    // thin colour lines: 12 cells; wide: colour and pattern, 24; and four more that must not run idle
    EXPECT_EQ(cells.size(), 40U);
    for (const auto& [cell, count] : cells) EXPECT_GT(count, seeds.count / 1000) << cell;
}

TEST(LineRandom, DotsAreThoseOfTheNaiveReference)
{
    const support::Seeds seeds(DOTS);
    RandomDrawing        drawing;
    std::uint64_t        large = 0;
    std::uint64_t        small = 0;
    const auto           note  = [&]
    {
        if (drawing.Changed()) ++(drawing.Outcome().dots != 0 ? large : small);
    };
    if (!RunAll("DotsAreThoseOfTheNaiveReference", drawing, seeds, ThrowDot, note) || seeds.count < 5000) return;
    EXPECT_GT(large, seeds.count / 3);
    EXPECT_GT(small, seeds.count / 100);
}

// ---- where runs begin and end ---------------------------------------------------------------------------------------

namespace
{

//! A bitmap that is large enough for runs, and a window in it or none.
Ground WideGround(bool clipped)
{
    return {150,
            40,
            151,
            true,
            true,
            clipped,
            {clipped ? 20U : 0U, clipped ? 9U : 0U, clipped ? 121U : 149U, clipped ? 31U : 39U}};
}

//! Runs cases until three have failed.
class Sweep
{
public:
    template <class Case>
    void operator()(const Case& thrown)
    {
        if (m_failures >= 3) return;
        const std::string failure = m_drawing.Run(thrown);
        m_changed += m_drawing.Changed();
        ++m_count;
        if (failure.empty()) return;
        ++m_failures;
        ADD_FAILURE() << failure;
    }
    std::uint64_t Count() const { return m_count; }
    std::uint64_t Changed() const { return m_changed; }

private:
    RandomDrawing m_drawing;
    int           m_failures = 0;
    std::uint64_t m_count    = 0;
    std::uint64_t m_changed  = 0;
};

constexpr std::uint32_t QUALITIES[] = {0, Kanvo_LF_ANTIALIAS, Kanvo_LF_HQ_AA, Kanvo_LF_ANTIALIAS | Kanvo_LF_HQ_AA};

LineCase PlainCase(const Ground& ground, float x0, float y0, float x1, float y1, std::uint32_t color,
                   std::uint32_t flags, float width)
{
    LineCase thrown{};
    thrown.ground      = ground;
    thrown.call        = {x0, y0, x1, y1, color, flags, width, 0.0F};
    thrown.withPattern = true;
    thrown.factor      = 1.0F / 16.0F;
    thrown.refLength   = 16.0F;
    return thrown;
}

}  // namespace

// Rises around those below which steps are joined to runs, beginning and ending inside, at and beyond each border.
TEST(LineRuns, ShallowLinesAreThoseOfTheNaiveReference)
{
    Sweep sweep;
    for (const bool clipped : {false, true})
    {
        const Ground ground = WideGround(clipped);
        for (const float rise : {0.0F, 1.0F / 65536.0F, 0.01F, 0.3F, 1.0F, 2.75F, 8.9F, 9.3F, 10.6F, 12.0F})
        {
            for (const float length : {0.0F, 0.4F, 1.0F, 2.0F, 7.0F, 8.0F, 9.5F, 110.0F, 200.0F})
            {
                for (const float x : {-30.5F, 0.0F, 19.75F, 60.25F, 120.0F})
                {
                    for (const float y : {-0.75F, 0.0F, 8.5F, 9.0F, 20.3F, 31.0F, 31.5F, 39.0F})
                    {
                        const float slope = rise / 110.0F * length;
                        for (const std::uint32_t quality : QUALITIES)
                        {
                            sweep(PlainCase(ground, x, y, x + length, y + slope, 0xFF40A0E0U, quality, 1.0F));
                            sweep(PlainCase(ground, x + length, y - slope, x, y, 0x90FFA000U, quality, 1.0F));
                        }
                    }
                }
            }
        }
    }
    EXPECT_GT(sweep.Changed(), sweep.Count() / 4);
}

// Bodies of no step, one, and more between the ends, whole, cut along their length and cut across.
TEST(LineRuns, WideLinesOfEveryLengthAreThoseOfTheNaiveReference)
{
    Sweep sweep;
    for (const bool clipped : {false, true})
    {
        const Ground ground = WideGround(clipped);
        for (const float width : {1.0F, 1.5F, 2.5F, 3.0F, 5.0F, 9.0F})
        {
            for (float length = 0.0F; length <= 24.0F; length += 0.75F)
            {
                for (const float rise : {0.0F, 0.2F, -0.7F, 1.0F, 3.0F})
                {
                    for (const auto& [x, y] :
                         {std::pair{60.3F, 20.6F}, {19.0F, 12.0F}, {112.5F, 27.0F}, {140.0F, 33.0F}})
                    {
                        for (const std::uint32_t quality : {QUALITIES[0], QUALITIES[1], QUALITIES[2]})
                        {
                            const std::uint32_t pattern = width == 1.0F || length > 12.0F ? Kanvo_LF_PATTERN : 0U;
                            sweep(PlainCase(ground, x, y, x + length, y + rise * length, 0xFF40A0E0U, quality | pattern,
                                            width));
                            sweep(PlainCase(ground, x, y, x - rise * length, y - length, 0x7000FF80U, quality, width));
                        }
                    }
                }
            }
        }
    }
    EXPECT_GT(sweep.Changed(), sweep.Count() / 2);
}

// Windows of one, two and three columns or rows, and long ones, wandering over dots: their runs are cut on either side.
TEST(LineRuns, DotsBehindWindowsAreThoseOfTheNaiveReference)
{
    Sweep sweep;
    for (const float radius : {1.25F, 2.0F, 3.6F, 4.6F, 5.0F, 6.0F, 8.8F, 9.0F, 14.5F, 70.0F})
    {
        for (const auto& [x, y] : {std::pair{70.0F, 20.0F}, {70.5F, 20.25F}, {70.99F, 19.6F}})
        {
            for (unsigned at = 0; at <= 26; ++at)
            {
                for (const unsigned size : {1U, 2U, 3U, 30U})
                {
                    for (const std::uint32_t quality : {QUALITIES[0], QUALITIES[1], QUALITIES[2]})
                    {
                        DotCase columns{};
                        columns.ground = {150, 40, 151, true, at % 3 != 0, true, {57 + at, 0, 56 + at + size, 39}};
                        columns.call   = {x, y, radius, at % 2 != 0 ? 0xFF40A0E0U : 0x90FFA000U, quality};
                        sweep(columns);
                        DotCase rows = columns;
                        rows.ground  = {150, 40, 150, true, at % 3 != 0, true, {0, 7 + at, 149, 6 + at + size}};
                        sweep(rows);
                    }
                }
            }
        }
    }
    EXPECT_GT(sweep.Changed(), sweep.Count() / 4);
}
