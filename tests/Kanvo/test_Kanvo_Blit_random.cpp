// Random fills and blits against the naive reference: pixels, padding, messages, who did the work and with which arguments,
// and that nothing but the target's pixels changes. Source and target lie between protected pages. A million calls:
// 600,000 Blit, 250,000 BlitColor, 150,000 FillRect; every case has a seed of its own and can be replayed alone (Dice.h).
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BlitStage.h"
#include "RandomCalls.h"

namespace
{

using reference::Format;
using reference::Worker;
using support::Area;
using support::Dice;
using support::Known;
using support::NOT_A_MAP;
using support::NOT_INSIDE;
using support::NOT_LOCKED;
using support::NOT_SUPPORTED;
using support::Role;
using support::ThrowSourcePosition;

constexpr int MOST_PIXELS = 32;  // per side, but for some long rows

enum class Operation
{
    Blit,
    BlitColor,
    FillRect
};

const char* NameOf(Operation operation)
{
    return operation == Operation::Blit ? "Blit" : operation == Operation::BlitColor ? "BlitColor" : "FillRect";
}

struct Case : support::RandomCall
{
    Operation        operation;
    reference::Where where;
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

Known ThrowSourceFormat(Dice& dice, Operation operation)
{
    using namespace support;
    const Known other = ThrowOther(dice);
    if (operation != Operation::Blit) return ThrowColorMapFormat(dice);
    return dice.Of({KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_RGB32,
                    KNOWN_RGB32, KNOWN_RGB32, KNOWN_RGB565, KNOWN_RGB565, KNOWN_RGB565, KNOWN_RGB565, KNOWN_A8,
                    KNOWN_A8, KNOWN_A8, KNOWN_A8, KNOWN_ALPHA52, other});
}

Case ThrowCase(std::uint64_t seed, Operation operation)
{
    Dice dice(seed);
    Case thrown{};
    thrown.seed      = seed;
    thrown.operation = operation;
    thrown.source    = ThrowPicture(dice, ThrowSourceFormat(dice, operation), MOST_PIXELS);
    thrown.target    = ThrowPicture(dice, support::KNOWN_ARGB32, MOST_PIXELS);
    thrown.mapRole   = Role::Nobody;
    if (thrown.source.known.format == Format::Argb32 && dice.OneIn(5))
    {
        thrown.sourceRole = Role::TheTarget;
        thrown.source     = thrown.target;
    }
    if (dice.OneIn(2)) thrown.clip = ThrowClip(dice, thrown.target);
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
        thrown.where.dstX = ThrowPositionNear(dice, thrown.target.width, thrown.clip.value_or(reference::Clip{}).minX);
        thrown.where.dstY = ThrowPositionNear(dice, thrown.target.height, thrown.clip.value_or(reference::Clip{}).minY);
    }
    thrown.alpha = support::ThrowAlpha(dice);
    thrown.keyed = operation == Operation::Blit && (thrown.flags & BLIT_COLORKEY) != 0;
    thrown.color =
        operation == Operation::Blit ? support::ThrowKey(dice, thrown.source.known.format) : dice.NextHostileWord();
    if (operation == Operation::FillRect && dice.OneIn(4)) thrown.color |= 0xFF000000;
    ThrowTarget(dice, thrown);
    return thrown;
}

std::string Described(const Case& thrown)
{
    const auto& where = thrown.where;
    char        text[200];
    std::snprintf(text, sizeof text, "seed %llu: %s %ux%u from (%u, %u) to (%d, %d), ",
                  static_cast<unsigned long long>(thrown.seed), NameOf(thrown.operation), where.width, where.height,
                  where.srcX, where.srcY, where.dstX, where.dstY);
    return text + DescribedCall(thrown);
}

// ---- running a case -------------------------------------------------------------------------------------------------

class RandomBlits : public support::RandomCalls<RandomBlits, Worker>
{
public:
    static reference::Outcome Expect(const Case& thrown, const reference::Target& target,
                                     const reference::Picture& source, const reference::Picture* /*map*/)
    {
        switch (thrown.operation)
        {
        case Operation::Blit:
            return reference::Blit(target, source, thrown.where, thrown.flags, thrown.alpha, thrown.color);
        case Operation::BlitColor:
            return reference::BlitColor(target, source, thrown.where, thrown.color, thrown.flags, thrown.alpha);
        case Operation::FillRect: break;
        }
        return reference::FillRect(target, thrown.where, thrown.color, thrown.flags);
    }

    static void Call(const Case& thrown, Kanvo_Bitmap& target, Kanvo_Bitmap* source, Kanvo_Bitmap* /*map*/)
    {
        const reference::Where& where = thrown.where;
        switch (thrown.operation)
        {
        case Operation::Blit:
            target.Blit(source, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY, thrown.flags,
                        static_cast<Tov_UByte>(thrown.alpha), thrown.color);
            break;
        case Operation::BlitColor:
            target.BlitColor(source, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY,
                             thrown.color, thrown.flags, static_cast<Tov_UByte>(thrown.alpha));
            break;
        case Operation::FillRect:
            target.FillRect(where.width, where.height, where.dstX, where.dstY, thrown.color, thrown.flags);
            break;
        }
    }

    static Worker        WorkOf(const Case&, const reference::Outcome& outcome) { return outcome.worker; }
    static std::uint64_t PixelsOf(const reference::Outcome& outcome) { return outcome.Pixels(); }

    std::string WrongCalls(const Case& thrown, const Kanvo_Bitmap&, const reference::Outcome& outcome) const
    {
        const bool loop = reference::IsLoop(outcome.worker);
        if (loop ? m_loops.Calls().size() != 1 || !(m_loops.Calls()[0] == ExpectedCall(thrown, outcome))
                 : !m_loops.Calls().empty())
        {
            return "loops: expected " + (loop ? testing::PrintToString(ExpectedCall(thrown, outcome)) : "none") +
                   ", got " + testing::PrintToString(m_loops.Calls());
        }
        const char* const counter = loop ? "" : reference::NameOf(outcome.worker);
        return m_counters.OnlyCounted(counter)
                   ? ""
                   : std::string("counters: expected one start and stop of \"") + counter + "\"";
    }

private:
    //! The one call that a loop is expected to get.
    support::LoopCall ExpectedCall(const Case& thrown, const reference::Outcome& outcome) const
    {
        const auto        pixelBytes = reference::BytesPerPixel(thrown.source.known.format);
        support::LoopCall call;
        call.loop     = reference::NameOf(outcome.worker);
        call.dst      = TargetPixels() + outcome.dstY * thrown.target.pitch + outcome.dstX * 4;
        call.dstPitch = thrown.target.pitch;
        call.width    = static_cast<std::uint32_t>(outcome.width);
        call.height   = static_cast<std::uint32_t>(outcome.height);
        if (thrown.operation != Operation::FillRect)
        {
            call.src      = SourcePixels() + outcome.srcY * thrown.source.pitch + outcome.srcX * pixelBytes;
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
};

void RunAll(Operation operation, std::uint64_t cases, const std::vector<Worker>& workers,
            const std::vector<std::string>& messages)
{
    support::RunCases<RandomBlits, Worker>(NameOf(operation), cases, {workers, 200, messages, 200},
                                           [=](std::uint64_t seed) { return ThrowCase(seed, operation); });
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
