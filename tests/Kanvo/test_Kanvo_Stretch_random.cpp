// Random scaled blits against the naive reference: pixels, padding, messages, which loop did the work and with which
// arguments, and that nothing but the target's pixels changes. Source, map and target lie between protected pages. 500,000
// calls: 250,000 StretchBlit, 125,000 StretchBlitColor, 125,000 StretchBlitAlpha; every case has a seed of its own and can
// be replayed alone (Dice.h).
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BlitStage.h"
#include "RandomCalls.h"
#include "Reference_Stretch.h"
#include "StretchSpies.h"

namespace
{

using reference::Format;
using reference::StretchWorker;
using support::Dice;
using support::Known;
using support::NOT_A_MAP;
using support::NOT_INSIDE;
using support::NOT_LOCKED;
using support::NOT_SUPPORTED;

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

struct Case : support::RandomCall
{
    Operation               operation;
    reference::StretchWhere where;
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
    case Operation::Color: return ThrowColorMapFormat(dice);
    case Operation::Alpha: break;
    }
    return dice.Of({KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_ARGB32, KNOWN_A8, KNOWN_A8, KNOWN_A8,
                    KNOWN_A8, KNOWN_RGB32, KNOWN_RGB565, other});
}

Case ThrowCase(std::uint64_t seed, Operation operation)
{
    Dice dice(seed);
    Case thrown{};
    thrown.seed      = seed;
    thrown.operation = operation;
    ThrowPictures(dice, thrown, ThrowSourceFormat(dice, operation));
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
    thrown.keyed = operation == Operation::Stretch && (thrown.flags & BLIT_COLORKEY) != 0;
    thrown.color =
        operation == Operation::Stretch ? support::ThrowKey(dice, thrown.source.known.format) : dice.NextHostileWord();
    ThrowTarget(dice, thrown);
    return thrown;
}

std::string Described(const Case& thrown)
{
    const auto& where = thrown.where;
    char        text[200];
    std::snprintf(text, sizeof text, "seed %llu: %s %ux%u at (%u, %u) to %ux%u at (%d, %d), ",
                  static_cast<unsigned long long>(thrown.seed), NameOf(thrown.operation), where.srcWidth,
                  where.srcHeight, where.srcX, where.srcY, where.dstWidth, where.dstHeight, where.dstX, where.dstY);
    return text + DescribedCall(thrown);
}

// ---- running a case -------------------------------------------------------------------------------------------------

class RandomStretches : public support::RandomCalls<RandomStretches, StretchWorker>
{
public:
    static reference::StretchOutcome Expect(const Case& thrown, const reference::Target& target,
                                            const reference::Picture& source, const reference::Picture* map)
    {
        switch (thrown.operation)
        {
        case Operation::Stretch:
            return reference::StretchBlit(target, source, thrown.where, thrown.flags, thrown.alpha, thrown.color);
        case Operation::Color:
            return reference::StretchBlitColor(target, source, thrown.where, thrown.color, thrown.flags, thrown.alpha);
        case Operation::Alpha: break;
        }
        return reference::StretchBlitAlpha(target, source, *map, thrown.where, thrown.flags, thrown.alpha);
    }

    static void Call(const Case& thrown, Kanvo_Bitmap& target, Kanvo_Bitmap* source, Kanvo_Bitmap* map)
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

    static StretchWorker WorkOf(const Case&, const reference::StretchOutcome& outcome) { return outcome.worker; }
    static std::uint64_t PixelsOf(const reference::StretchOutcome& outcome)
    {
        return static_cast<std::uint64_t>(outcome.pixels);
    }

    std::string WrongCalls(const Case& thrown, const Kanvo_Bitmap& target,
                           const reference::StretchOutcome& outcome) const
    {
        if (!m_counters.Events().empty()) return "a counter ran";
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
        if (m_stretches.Calls() != loops)
        {
            return "loops: expected " + testing::PrintToString(loops) + ", got " +
                   testing::PrintToString(m_stretches.Calls());
        }
        if (!(m_loops.Calls() == fills))
        {
            return "fills: expected " + testing::PrintToString(fills) + ", got " +
                   testing::PrintToString(m_loops.Calls());
        }
        return {};
    }

    void ClearSpies() { m_stretches.Clear(); }

private:
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
        call.dst        = TargetPixels() + target.GetClipMinY() * thrown.target.pitch + target.GetClipMinX() * 4;
        call.src        = SourcePixels();
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
        call.dst      = TargetPixels() + target.GetClipMinY() * thrown.target.pitch + target.GetClipMinX() * 4;
        call.dstPitch = thrown.target.pitch;
        call.width    = std::min(thrown.where.dstWidth, thrown.target.width - target.GetClipMinX());
        call.height   = std::min(thrown.where.dstHeight, thrown.target.height - target.GetClipMinY());
        std::memcpy(&call.color, SourceBefore(), 3);
        if (worker == StretchWorker::FillMix) call.alpha = thrown.alpha;
        return call;
    }

    support::StretchSpies m_stretches;
};

void RunAll(Operation operation, std::uint64_t cases, const std::vector<StretchWorker>& workers,
            const std::vector<std::string>& messages)
{
    support::RunCases<RandomStretches, StretchWorker>(NameOf(operation), cases, {workers, 200, messages, 200},
                                                      [=](std::uint64_t seed) { return ThrowCase(seed, operation); });
}

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
