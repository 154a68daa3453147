// Random fills and blits against the naive reference: pixels, padding, messages, who did the work and with which arguments,
// and that nothing but the target's pixels changes. Source and target lie between protected pages. A million calls:
// 600,000 Blit, 250,000 BlitColor, 150,000 FillRect; every case has a seed of its own and can be replayed alone (Dice.h).
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BlitStage.h"
#include "CrashNote.h"
#include "Dice.h"
#include "DrawSpies.h"
#include "Fence.h"
#include "RandomAreas.h"
#include "Snapshot.h"

namespace
{

using reference::Format;
using reference::Worker;
using support::Area;
using support::Dice;
using support::FillContent;
using support::NOT_A_MAP;
using support::NOT_INSIDE;
using support::NOT_LOCKED;
using support::NOT_SUPPORTED;
using support::ThrowArea;
using support::ThrowClip;
using support::ThrowSourcePosition;

constexpr int         MOST_PIXELS = 32;     // per side, but for some long rows
constexpr std::size_t ARENA_BYTES = 65536;  // whole pages: the fences are flush with both ends

enum class Operation
{
    Blit,
    BlitColor,
    FillRect
};

//! Everything that one random call is made of.
struct Case
{
    std::uint64_t    seed;
    Operation        operation;
    Format           format;
    unsigned         type;       // the library's number of the format
    bool             realClass;  // the library's own source class instead of one that says what the test wants
    bool             hasAlpha;
    bool             self;  // the target is its own source
    Area             source;
    Area             target;
    bool             clipped;
    reference::Clip  clip;
    reference::Where where;
    std::uint32_t    flags;
    int              alpha;
    std::uint32_t    color;  // or colour key
    unsigned         renderState;
    bool             locked;
    bool             swapped;  // a target with an encoding of its own
};

// ---- throwing a case ------------------------------------------------------------------------------------------------

std::uint32_t ThrowSize(Dice& dice, std::uint32_t size, bool evenNothing)
{
    if (dice.OneIn(24))
    {
        return evenNothing ? dice.Of<std::uint32_t>({0, 0, 0x7FFFFFFF, 0x80000000, 0x80000001, 0xFFFFFFFF})
                           : dice.Of<std::uint32_t>({1, 0x7FFFFFFF, 0x80000000, 0x80000001, 0xFFFFFFFF});
    }
    if (dice.OneIn(3)) return static_cast<std::uint32_t>(dice.Between(1, static_cast<int>(size)));
    return size + dice.Below(4);
}

//! Mostly a little before what may be drawn into, or inside it.
std::int32_t ThrowPositionNear(Dice& dice, std::uint32_t size, std::int64_t clipMin)
{
    if (dice.OneIn(64)) return dice.Of<std::int32_t>({INT32_MIN, INT32_MIN + 1, INT32_MAX - 1, INT32_MAX});
    if (dice.OneIn(16)) return dice.Between(-30, static_cast<int>(size) + 10);
    const int from = clipMin < size && !dice.OneIn(4) ? static_cast<int>(clipMin) : 0;
    return dice.Between(from - 3, from + static_cast<int>(size) / 3);
}

//! A rectangle that keeps the promise of BLIT_NOCLIP.
reference::Where ThrowInside(Dice& dice, const Area& source, const Area& target)
{
    reference::Where where;
    const auto       width  = static_cast<int>(std::min(source.width, target.width));
    const auto       height = static_cast<int>(std::min(source.height, target.height));
    where.width             = static_cast<std::uint32_t>(dice.Between(1, width));
    where.height            = static_cast<std::uint32_t>(dice.Between(1, height));
    where.srcX              = dice.Below(source.width - where.width + 1);
    where.srcY              = dice.Below(source.height - where.height + 1);
    where.dstX              = static_cast<std::int32_t>(dice.Below(target.width - where.width + 1));
    where.dstY              = static_cast<std::int32_t>(dice.Below(target.height - where.height + 1));
    return where;
}

std::uint32_t ThrowFlags(Dice& dice)
{
    std::uint32_t flags =
        dice.Of<std::uint32_t>({0, 0, 0, 0, BLIT_COLORKEY, BLIT_NOCLIP, BLIT_NOCLIP, BLIT_COLORKEY | BLIT_NOCLIP});
    if (dice.OneIn(6))
    {
        flags |= dice.Of<std::uint32_t>({BLIT_BILINEAR, BLIT_ASPECT, BLIT_COPY_ONLY_ALPHA, 0x2, 0x80000000});
    }
    return flags;
}

int ThrowAlpha(Dice& dice)
{
    const int any = dice.NextByte();
    return dice.Of({0, 1, 127, 128, 254, 255, 255, 255, 255, 255, 255, any, any, any});
}

//! With a key that is met: 24 bits for 32-bit pixels. Sometimes with bits that no pixel has.
std::uint32_t ThrowKey(Dice& dice, Format format)
{
    std::uint32_t key = dice.Next32();
    if (format == Format::Argb32 || format == Format::Rgb32) key &= 0x00FFFFFF;
    if (format == Format::Rgb565) key &= 0xFFFF;
    if (format == Format::A8) key &= 0xFF;
    if (dice.OneIn(16)) key |= dice.Of<std::uint32_t>({0x01000000, 0xFF000000, 0x00010000, 0x00000100});
    return key;
}

Case ThrowCase(std::uint64_t seed, Operation operation)
{
    Dice dice(seed);
    Case thrown{};
    thrown.seed      = seed;
    thrown.operation = operation;
    struct Known
    {
        Format   format;
        unsigned type;
    };
    constexpr Known argb32{Format::Argb32, BM_ARGB32};
    constexpr Known rgb32{Format::Rgb32, BM_RGB32};
    constexpr Known rgb565{Format::Rgb565, BM_RGB565};
    constexpr Known a8{Format::A8, BM_ALPHA8};
    constexpr Known alpha52{Format::Alpha5_2, BM_ALPHA5_2};
    const unsigned  otherType = dice.Of<unsigned>({BM_UNKNWON, BM_RGB555, BM_ALPHA1, BM_QUANTITY, 255, 0x104});
    const Known     other{Format::Other, otherType};
    const Known     known = operation == Operation::Blit
                                ? dice.Of({argb32, argb32, argb32, argb32, argb32, argb32, rgb32, rgb32, rgb32, rgb565,
                                           rgb565, rgb565, rgb565, a8, a8, a8, a8, alpha52, other})
                                : dice.Of({argb32, argb32, argb32, argb32, a8, a8, a8, a8, a8, a8, alpha52, rgb565, other});
    thrown.format         = known.format;
    thrown.type           = known.type;
    thrown.realClass      = thrown.format < Format::Alpha5_2 && dice.OneIn(4);
    thrown.hasAlpha = thrown.realClass ? thrown.format == Format::Argb32 || thrown.format == Format::A8 : dice.OneIn(2);
    thrown.self     = thrown.format == Format::Argb32 && dice.OneIn(5);
    thrown.source   = ThrowArea(dice, reference::BytesPerPixel(thrown.format), MOST_PIXELS);
    thrown.target   = ThrowArea(dice, 4, MOST_PIXELS);
    if (thrown.self) thrown.source = thrown.target;
    thrown.clipped = dice.OneIn(2);
    if (thrown.clipped) thrown.clip = ThrowClip(dice, thrown.target);
    thrown.flags = ThrowFlags(dice);
    // Whether nothing at all lies inside a bitmap is nobody's question: promises are about one pixel or more.
    const bool promised = (thrown.flags & BLIT_NOCLIP) != 0;
    if (promised && !dice.OneIn(6))
    {
        thrown.where =
            ThrowInside(dice, operation == Operation::FillRect ? thrown.target : thrown.source, thrown.target);
    }
    else
    {
        const Area& size    = dice.OneIn(2) ? thrown.source : thrown.target;
        thrown.where.width  = ThrowSize(dice, size.width, !promised);
        thrown.where.height = ThrowSize(dice, size.height, !promised);
        thrown.where.srcX   = ThrowSourcePosition(dice, thrown.source.width);
        thrown.where.srcY   = ThrowSourcePosition(dice, thrown.source.height);
        thrown.where.dstX   = ThrowPositionNear(dice, thrown.target.width, thrown.clip.minX);
        thrown.where.dstY   = ThrowPositionNear(dice, thrown.target.height, thrown.clip.minY);
    }
    thrown.alpha = ThrowAlpha(dice);
    thrown.color = operation == Operation::Blit ? ThrowKey(dice, thrown.format) : dice.NextHostileWord();
    if (operation == Operation::FillRect && dice.OneIn(4)) thrown.color |= 0xFF000000;
    thrown.renderState = dice.Of<unsigned>({OB_NONE, OB_NONE, OB_NONE, OB_NEON, OB_NEON, OB_NEON, OB_NEON, OB_NEON, 2});
    thrown.locked      = !dice.OneIn(64);
    thrown.swapped     = dice.OneIn(8);
    return thrown;
}

//! Scatters the colour key over pixels; the top byte of a word stays what it is.
void ScatterKey(Dice& dice, std::uint8_t* bytes, std::size_t count, Format format, std::uint32_t key)
{
    const auto pixelBytes = static_cast<std::size_t>(reference::BytesPerPixel(format));
    for (std::size_t at = 0; at + pixelBytes <= count; at += pixelBytes)
    {
        if (dice.OneIn(3)) std::memcpy(bytes + at, &key, std::min<std::size_t>(pixelBytes, 3));
    }
}

// ---- saying what a case was -----------------------------------------------------------------------------------------

const char* NameOf(Format format)
{
    switch (format)
    {
    case Format::Argb32: return "argb32";
    case Format::Rgb32: return "rgb32";
    case Format::Rgb565: return "rgb565";
    case Format::A8: return "a8";
    case Format::Alpha5_2: return "alpha5_2";
    case Format::Other: break;
    }
    return "other";
}

const char* NameOf(Operation operation)
{
    return operation == Operation::Blit ? "Blit" : operation == Operation::BlitColor ? "BlitColor" : "FillRect";
}

std::string Described(const Case& thrown)
{
    const reference::Where& where = thrown.where;
    std::ostringstream      text;
    text << "seed " << thrown.seed << ": " << NameOf(thrown.operation) << " ";
    if (thrown.operation != Operation::FillRect)
    {
        text << NameOf(thrown.format) << " (type " << thrown.type << ") from (" << where.srcX << ", " << where.srcY
             << "), alpha " << thrown.alpha << (thrown.hasAlpha ? ", says alpha, " : ", ");
    }
    text << where.width << "x" << where.height << " to (" << where.dstX << ", " << where.dstY << "), flags " << std::hex
         << thrown.flags << (thrown.operation == Operation::Blit ? ", key " : ", colour ") << thrown.color << std::dec
         << ", OPTIMIZED_BLIT " << thrown.renderState << (thrown.locked ? "" : ", not locked") << "; target "
         << support::Described(thrown.target) << (thrown.swapped ? ", swapped" : "");
    if (thrown.clipped)
    {
        text << ", clip " << support::Described(thrown.clip);
    }
    if (thrown.operation != Operation::FillRect)
    {
        text << "; source ";
        if (thrown.self) text << "the target itself";
        if (!thrown.self) text << support::Described(thrown.source) << (thrown.realClass ? ", real class" : "");
    }
    text << ": ";
    return text.str();
}

//! As support::FirstDifference where some memory before and behind the pixels is included: offset is where they start.
std::string FirstDifferenceAround(const std::vector<std::uint8_t>& expected, const std::uint8_t* got,
                                  std::size_t offset, const Area& area)
{
    std::size_t index = 0;
    while (expected[index] == got[index]) ++index;
    if (index >= offset && index < offset + area.Bytes(4))
    {
        return support::FirstDifference(expected.data() + offset, got + offset, area);
    }
    char text[160];
    std::snprintf(text, sizeof text, "byte %td, outside the pixels, expected %02X, got %02X",
                  static_cast<std::ptrdiff_t>(index - offset), expected[index], got[index]);
    return text;
}

// ---- running a case -------------------------------------------------------------------------------------------------

class RandomBlits
{
public:
    RandomBlits()
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
        std::map<Worker, std::uint64_t>      workers;
        std::map<std::string, std::uint64_t> messages;
        std::uint64_t                        pixels = 0;
    };
    const Seen& WhatWasSeen() const { return m_seen; }

private:
    void Note(const reference::Outcome& outcome)
    {
        ++m_seen.workers[outcome.worker];
        for (const std::string& message : outcome.messages) ++m_seen.messages[message];
        if (outcome.worker != Worker::Nobody)
        {
            m_seen.pixels += static_cast<std::uint64_t>(outcome.width * outcome.height);
        }
    }

    void Prepare(const Case& thrown)
    {
        Dice              dice(thrown.seed ^ 0x5EED);
        const std::size_t targetBytes = thrown.target.Bytes(4);
        m_targetPixels                = thrown.target.In(m_targetArena, 4);
        m_sourceBytes                 = thrown.source.Bytes(reference::BytesPerPixel(thrown.format));
        m_sourcePixels                = thrown.source.In(m_sourceArena, reference::BytesPerPixel(thrown.format));
        const bool keyed              = thrown.operation == Operation::Blit && (thrown.flags & BLIT_COLORKEY) != 0;
        FillContent(dice, m_sourcePixels, m_sourceBytes, thrown.source.content, thrown.format);
        FillContent(dice, m_targetPixels, targetBytes, thrown.target.content, Format::Argb32);
        if (keyed) ScatterKey(dice, m_sourcePixels, m_sourceBytes, thrown.format, thrown.color);
        if (keyed && thrown.self) ScatterKey(dice, m_targetPixels, targetBytes, Format::Argb32, thrown.color);
        constexpr std::size_t around = 256;  // watched on both sides, where there is no fence
        m_watched                    = std::max(m_targetArena.Data(), m_targetPixels - around);
        m_expected.assign(m_watched,
                          std::min(m_targetArena.Data() + ARENA_BYTES, m_targetPixels + targetBytes + around));
        m_sourceBefore.assign(m_sourcePixels, m_sourcePixels + m_sourceBytes);
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
        if (thrown.self) return Compare(thrown, target, target);
        const Area&         area   = thrown.source;
        Kanvo_Screen* const screen = &m_screens[thrown.renderState];
        if (thrown.realClass)
        {
            switch (thrown.format)
            {
            case Format::Argb32:
            {
                support::PitchedTarget source(screen, area.width, area.height, m_sourcePixels, area.pitch);
                return Compare(thrown, target, source);
            }
            case Format::Rgb32:
            {
                Kanvo_BitmapRGB32 source(screen, area.width, area.height, BBT_RAM, m_sourcePixels, area.pitch);
                return Compare(thrown, target, source);
            }
            case Format::Rgb565:
            {
                Kanvo_BitmapRGB565 source(screen, area.width, area.height, BBT_RAM, m_sourcePixels, area.pitch);
                return Compare(thrown, target, source);
            }
            default:
            {
                Kanvo_BitmapA8 source(screen, area.width, area.height, BBT_RAM, m_sourcePixels, area.pitch);
                return Compare(thrown, target, source);
            }
            }
        }
        support::AnySource source(screen, thrown.type, area.width, area.height, m_sourcePixels, area.pitch,
                                  thrown.hasAlpha);
        return Compare(thrown, target, source);
    }

    reference::Outcome Expect(const Case& thrown)
    {
        const Area&       area = thrown.target;
        reference::Target target;
        target.picture = {
            Format::Argb32, area.width, area.height, area.pitch, m_expected.data() + (m_targetPixels - m_watched),
            thrown.hasAlpha};
        target.clip      = thrown.clip;
        target.locked    = thrown.locked;
        target.optimised = thrown.renderState == OB_NEON;
        if (thrown.swapped) target.compose = &support::SwappedTarget::Compose;
        const reference::Picture  source{thrown.format,       thrown.source.width, thrown.source.height,
                                        thrown.source.pitch, m_sourcePixels,      thrown.hasAlpha};
        const reference::Picture& from = thrown.self ? target.picture : source;
        switch (thrown.operation)
        {
        case Operation::Blit:
            return reference::Blit(target, from, thrown.where, thrown.flags, thrown.alpha, thrown.color);
        case Operation::BlitColor:
            return reference::BlitColor(target, from, thrown.where, thrown.color, thrown.flags, thrown.alpha);
        case Operation::FillRect: break;
        }
        return reference::FillRect(target, thrown.where, thrown.color, thrown.flags);
    }

    //! The one call that a loop is expected to get.
    support::LoopCall ExpectedCall(const Case& thrown, const reference::Outcome& outcome) const
    {
        const auto        pixelBytes = reference::BytesPerPixel(thrown.format);
        const auto* const source     = thrown.self ? m_targetPixels : m_sourcePixels;
        support::LoopCall call;
        call.loop     = reference::NameOf(outcome.worker);
        call.dst      = m_targetPixels + outcome.dstY * thrown.target.pitch + outcome.dstX * 4;
        call.dstPitch = thrown.target.pitch;
        call.width    = static_cast<std::uint32_t>(outcome.width);
        call.height   = static_cast<std::uint32_t>(outcome.height);
        if (thrown.operation != Operation::FillRect)
        {
            call.src      = source + outcome.srcY * thrown.source.pitch + outcome.srcX * pixelBytes;
            call.srcPitch = thrown.source.pitch;
        }
        const std::uint32_t color = thrown.color;
        switch (outcome.worker)
        {
        case Worker::OverScaled:
        case Worker::Over565: call.alpha = thrown.alpha; break;
        case Worker::ColorMaskScaled: call.alpha = thrown.alpha; [[fallthrough]];
        case Worker::ColorMask:
            call.color = thrown.swapped ? support::SwappedTarget::Compose(color >> 24, color >> 16 & 255,
                                                                          color >> 8 & 255, color & 255)
                                        : color;
            break;
        case Worker::FillMix: call.alpha = static_cast<int>(color >> 24); [[fallthrough]];
        case Worker::Fill: call.color = color; break;
        default: break;
        }
        return call;
    }

    void Call(const Case& thrown, Kanvo_Bitmap& target, Kanvo_Bitmap& source)
    {
        const reference::Where& where = thrown.where;
        switch (thrown.operation)
        {
        case Operation::Blit:
            target.Blit(&source, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY,
                        thrown.flags, static_cast<Tov_UByte>(thrown.alpha), thrown.color);
            break;
        case Operation::BlitColor:
            target.BlitColor(&source, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY,
                             thrown.color, thrown.flags, static_cast<Tov_UByte>(thrown.alpha));
            break;
        case Operation::FillRect:
            target.FillRect(where.width, where.height, where.dstX, where.dstY, thrown.color, thrown.flags);
            break;
        }
    }

    template <class Target, class Source>
    std::string Compare(const Case& thrown, Target& target, Source& source)
    {
        const reference::Outcome outcome = Expect(thrown);
        Note(outcome);
        m_asserts.Clear();
        m_loops.Clear();
        m_counters.Clear();
        m_targetObject.Take(target);
        m_sourceObject.Take(source);
        m_screenObject.Take(m_screens[thrown.renderState]);

        Call(thrown, target, source);

        if (std::memcmp(m_expected.data(), m_watched, m_expected.size()) != 0)
        {
            return FirstDifferenceAround(m_expected, m_watched, static_cast<std::size_t>(m_targetPixels - m_watched),
                                         thrown.target);
        }
        if (m_asserts.Count() != outcome.messages.size() || m_asserts.Texts() != outcome.messages)
        {
            return "messages: expected " + testing::PrintToString(outcome.messages) + ", got " +
                   testing::PrintToString(m_asserts.Texts());
        }
        const bool loop = reference::IsLoop(outcome.worker);
        if (loop ? m_loops.Calls().size() != 1 || !(m_loops.Calls()[0] == ExpectedCall(thrown, outcome))
                 : !m_loops.Calls().empty())
        {
            return "loops: expected " + (loop ? testing::PrintToString(ExpectedCall(thrown, outcome)) : "none") +
                   ", got " + testing::PrintToString(m_loops.Calls());
        }
        if (!m_counters.OnlyCounted(loop ? "" : reference::NameOf(outcome.worker)))
        {
            return std::string("counters: expected one start and stop of \"") +
                   (loop ? "" : reference::NameOf(outcome.worker)) + "\"";
        }
        if (std::memcmp(m_sourceBefore.data(), m_sourcePixels, m_sourceBytes) != 0) return "the source changed";
        if (!m_targetObject.IsUnchanged()) return "the target object changed";
        if (!m_sourceObject.IsUnchanged()) return "the source object changed";
        if (!m_screenObject.IsUnchanged()) return "the screen or its render state changed";
        return {};
    }

    Seen           m_seen;
    Kanvo          m_library;
    Kanvo_Screen   m_screens[3] = {Kanvo_Screen(&m_library), Kanvo_Screen(&m_library), Kanvo_Screen(&m_library)};
    support::Fence m_sourceArena{ARENA_BYTES};
    support::Fence m_targetArena{ARENA_BYTES};
    std::uint8_t*  m_sourcePixels = nullptr;
    std::uint8_t*  m_targetPixels = nullptr;
    std::uint8_t*  m_watched      = nullptr;  // the target's pixels and some memory around them
    std::size_t    m_sourceBytes  = 0;
    std::vector<std::uint8_t> m_expected;
    std::vector<std::uint8_t> m_sourceBefore;
    support::Snapshot         m_targetObject;
    support::Snapshot         m_sourceObject;
    support::Snapshot         m_screenObject;
    support::AssertCapture    m_asserts;
    support::LoopSpies        m_loops;
    support::PerfSpies        m_counters;
};

//! Also expects each of the workers and messages at least once in two hundred calls, that the test may not run idle.
void RunAll(Operation operation, std::uint64_t cases, const std::vector<Worker>& workers,
            const std::vector<std::string>& messages)
{
    const support::Seeds seeds(cases);
    support::CrashNote   note(NameOf(operation));
    RandomBlits          blits;
    int                  failures = 0;
    for (std::uint64_t index = 0; index < seeds.count && failures < 3; ++index)
    {
        note.InCase(seeds.first + index);
        const std::string failure = blits.Run(ThrowCase(seeds.first + index, operation));
        if (failure.empty()) continue;
        ++failures;
        ADD_FAILURE() << failure;
    }
    if (failures > 0 || seeds.count < 10000) return;
    RandomBlits::Seen seen = blits.WhatWasSeen();
    for (const auto worker : workers)
    {
        EXPECT_GT(seen.workers[worker], seeds.count / 200) << reference::NameOf(worker);
    }
    for (const std::string& message : messages) EXPECT_GT(seen.messages[message], seeds.count / 200) << message;
    EXPECT_GT(seen.pixels, seeds.count * 10);
}

}  // namespace

TEST(BlitRandom, BlitDrawsWhatTheNaiveReferenceDraws)
{
    RunAll(
        Operation::Blit, 600000,
        {Worker::Cpy, Worker::Int, Worker::Rgb, Worker::Copy, Worker::OverScaled, Worker::Convert565, Worker::Over565},
        {NOT_LOCKED, NOT_INSIDE, NOT_SUPPORTED});
}

TEST(BlitRandom, BlitColorDrawsWhatTheNaiveReferenceDraws)
{
    RunAll(Operation::BlitColor, 250000, {Worker::ColorInt, Worker::ColorMask, Worker::ColorMaskScaled},
           {NOT_LOCKED, NOT_INSIDE, NOT_A_MAP});
}

TEST(BlitRandom, FillRectDrawsWhatTheNaiveReferenceDraws)
{
    RunAll(Operation::FillRect, 150000, {Worker::FillColor, Worker::Fill, Worker::FillMix}, {NOT_LOCKED, NOT_INSIDE});
}
