// Random draws of run-length-encoded images against their definition: a pixel of the target shows the source pixel at
// (pixel - position) / factor. Images of 1 to 70 pixels a side, factors 0 to 5 and a few huge ones, positions from far
// outside to far inside, clip rectangles of every kind, both units, early ends, streams that go on behind the image. The
// last token ends at a protected page, and so do the target's pixels. 1,000,000 requests, sixteen to an image; every image
// has a seed of its own and can be replayed alone (Dice.h).
#include <cstdio>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "BlitBitmaps.h"
#include "Dice.h"
#include "DrawSpies.h"
#include "Fence.h"
#include "Kanvo_RLECompressedBlits.h"
#include "MapLoopSpies.h"
#include "RandomAreas.h"
#include "Reference_Rle.h"
#include "RleImage.h"
#include "RleSources.h"
#include "RunSeeds.h"
#include "Snapshot.h"

namespace
{

using reference::RleRule;
using support::Area;
using support::Dice;
using support::RleImage;

using Blits = Kanvo_RLECompressedBlits;

constexpr std::size_t ARENA_BYTES        = 65536;  // whole pages: the fences are flush with both ends
constexpr unsigned    REQUESTS_PER_IMAGE = 16;

//! How a request reaches the worker.
enum class Way
{
    Worker,     // the template itself, in any of its combinations
    Entry,      // Blit_..., BlitAlpha_...
    Magnify,    // BlitMag_...
    Blit,       // a bitmap's operation
    BlitAlpha,  // a bitmap's operation
    Count
};

constexpr unsigned WAYS = static_cast<unsigned>(Way::Count);

struct Request
{
    Way              way;
    RleRule          rule;
    reference::Where where;
    unsigned         magX;
    unsigned         magY;
    Tov_Flag         flags;  // of the bitmap's operations
    Kanvo_Color      key;
    bool             clipped;
    reference::Clip  clip;
};

struct Case
{
    std::uint64_t        seed;
    RleImage             image;
    bool                 checked;  // drawn from a Kanvo_BitmapRLE, which looked at it
    bool                 copied;   // into memory of the library
    Area                 target;
    bool                 optimised;
    std::vector<Request> requests;
};

// ---- throwing a case ------------------------------------------------------------------------------------------------

RleImage ThrowImage(Dice& dice, bool& wellFormed)
{
    RleImage image;
    image.unitBits        = dice.OneIn(2) ? 8 : 16;
    image.width           = static_cast<std::uint32_t>(dice.OneIn(2) ? dice.Between(1, 70) : dice.Between(1, 16));
    image.height          = static_cast<std::uint32_t>(dice.OneIn(2) ? dice.Between(1, 70) : dice.Between(1, 16));
    const unsigned most   = image.unitBits == 8 ? 256 : 700;
    const unsigned colors = 1 + dice.Below(dice.OneIn(8) ? most : 12);
    image.palette         = support::ThrowPalette(dice, colors);
    std::uint32_t pixels  = image.width * image.height;
    wellFormed            = true;
    if (dice.OneIn(6)) pixels = dice.Below(pixels + 1);  // an early end
    if (dice.OneIn(12))
    {
        pixels += 1 + dice.Below(300);  // nobody counts: what lies behind the image is not drawn
        wellFormed = false;
    }
    image.units = support::ThrowTokens(dice, image.unitBits, pixels, colors);
    image.units.insert(image.units.end(), {0, 0});
    image.opaque = dice.OneIn(2);  // nobody reads it
    image.FillGap();
    return image;
}

unsigned ThrowFactor(Dice& dice)
{
    if (dice.OneIn(100)) return dice.Of<unsigned>({16, 255, 256, 1000, 32768, 65535});
    return dice.OneIn(16) ? 0 : 1 + dice.Below(5);
}

//! Mostly inside the image, sometimes all of it, sometimes reaching out of it by one pixel or by far.
void ThrowSourceSpan(Dice& dice, std::uint32_t size, std::uint32_t& from, std::uint32_t& length)
{
    length = 1 + dice.Below(size);
    from   = dice.Below(size - length + 1);
    if (dice.OneIn(4))
    {
        from   = 0;
        length = size;
    }
    if (dice.OneIn(24)) length = size - from + 1;
    if (dice.OneIn(64)) length = dice.Of<std::uint32_t>({0, 0, 0x7FFFFFFF, 0x80000000, 0x80000001, 0xFFFFFFFF});
    if (dice.OneIn(96)) from = dice.Of<std::uint32_t>({size, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF});
}

//! Anything between one pixel before and one behind the target, for all that may be drawn; sometimes far away.
std::int32_t ThrowStart(Dice& dice, std::uint32_t size, std::int64_t length)
{
    if (dice.OneIn(48)) return dice.Of<std::int32_t>({INT32_MIN, INT32_MIN + 1, -1000000, 1000000, INT32_MAX});
    if (dice.OneIn(3)) return dice.Between(-4, 4);
    const auto before = static_cast<int>(std::min<std::int64_t>(length + 1, INT32_MAX - 1000));
    return dice.Between(-before, static_cast<int>(size) + 1);
}

Request ThrowRequest(Dice& dice, const Case& thrown)
{
    Request request{};
    request.way     = static_cast<Way>(dice.Below(WAYS));
    const int any   = dice.NextByte();
    const int alpha = dice.Of({255, 255, 255, 254, 128, 1, 0, any});
    request.rule    = {alpha != 255, request.way == Way::BlitAlpha, alpha};
    request.magX    = 1;
    request.magY    = 1;
    if (request.way == Way::Worker)
    {
        request.rule.globalAlpha   = dice.OneIn(2);
        request.rule.fromBlitAlpha = dice.OneIn(2);
    }
    if (request.way == Way::Entry) request.rule.fromBlitAlpha = dice.OneIn(2);
    if (request.way == Way::Worker || request.way == Way::Magnify)
    {
        request.magX = ThrowFactor(dice);
        request.magY = ThrowFactor(dice);
    }
    request.flags   = dice.Of<Tov_Flag>({0, 0, BLIT_NOCLIP, BLIT_COLORKEY, BLIT_COPY_ONLY_ALPHA});
    request.key     = thrown.image.palette[dice.Below(static_cast<unsigned>(thrown.image.palette.size()))];
    request.clipped = dice.OneIn(3);
    if (request.clipped) request.clip = support::ThrowClip(dice, thrown.target);
    reference::Where& where = request.where;
    ThrowSourceSpan(dice, thrown.image.width, where.srcX, where.width);
    ThrowSourceSpan(dice, thrown.image.height, where.srcY, where.height);
    where.dstX = ThrowStart(dice, thrown.target.width, std::int64_t{where.width} * request.magX);
    where.dstY = ThrowStart(dice, thrown.target.height, std::int64_t{where.height} * request.magY);
    return request;
}

Case ThrowCase(std::uint64_t seed)
{
    Dice dice(seed);
    Case thrown{};
    thrown.seed      = seed;
    bool wellFormed  = true;
    thrown.image     = ThrowImage(dice, wellFormed);
    thrown.checked   = wellFormed && dice.OneIn(2);
    thrown.copied    = dice.OneIn(4);
    thrown.target    = support::ThrowArea(dice, 4, 40);
    thrown.optimised = dice.OneIn(2);
    for (unsigned count = 0; count < REQUESTS_PER_IMAGE; ++count) thrown.requests.push_back(ThrowRequest(dice, thrown));
    return thrown;
}

// ---- saying what a case was -----------------------------------------------------------------------------------------

std::string Described(const Case& thrown, const Request& request)
{
    constexpr const char* ways[] = {"worker", "entry", "BlitMag", "Blit", "BlitAlpha"};
    char                  text[600];
    std::snprintf(
        text, sizeof text,
        "seed %llu: %s, %ux%u from (%u, %u) to (%d, %d), factors %u %u, flags %X, %s%sopacity %d; RLE%d image "
        "%ux%u%s; target %s, ",
        static_cast<unsigned long long>(thrown.seed), ways[static_cast<int>(request.way)], request.where.width,
        request.where.height, request.where.srcX, request.where.srcY, request.where.dstX, request.where.dstY,
        request.magX, request.magY, request.flags, request.rule.globalAlpha ? "global alpha, " : "",
        request.rule.fromBlitAlpha ? "from BlitAlpha, " : "", request.rule.alpha, thrown.image.unitBits,
        thrown.image.width, thrown.image.height, thrown.checked ? thrown.copied ? " copied" : " checked" : "",
        support::Described(thrown.target).c_str());
    return text + (request.clipped ? "clip " + support::Described(request.clip) : "no clip") + ": ";
}

// ---- running a case -------------------------------------------------------------------------------------------------

template <class State>
void CallWorker(const Kanvo_PrecompiledImageInfo* info, Kanvo_Bitmap& target, const Request& request)
{
    const RleRule&          rule    = request.rule;
    const reference::Where& where   = request.where;
    const auto              blended = rule.globalAlpha ? (rule.fromBlitAlpha ? &Blits::Blit_ARGB32RLE<true, true, State>
                                                                             : &Blits::Blit_ARGB32RLE<true, false, State>)
                                                       : (rule.fromBlitAlpha ? &Blits::Blit_ARGB32RLE<false, true, State>
                                                                             : &Blits::Blit_ARGB32RLE<false, false, State>);
    blended(info, &target, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY,
            static_cast<Tov_UByte>(rule.alpha), static_cast<Tov_UShort>(request.magX),
            static_cast<Tov_UShort>(request.magY));
}

class RandomImages
{
public:
    RandomImages() { m_screens[1].GetRenderState().Set(OPTIMIZED_BLIT, OB_NEON); }

    //! An empty text, or what is wrong.
    std::string Run(const Case& thrown)
    {
        Dice                      dice(thrown.seed ^ 0x5EED);
        std::vector<std::uint8_t> bytes = thrown.image.Bytes();
        for (const std::size_t unread : {11U, 12U, 15U, 28U, 32U}) bytes[unread] = dice.NextByte();
        m_image = m_imageArena.Data() + (ARENA_BYTES - bytes.size());
        std::memcpy(m_image, bytes.data(), bytes.size());
        m_picture = reference::ExpandRle(bytes.data(), thrown.image.unitBits);

        m_pixels = thrown.target.In(m_targetArena, 4);
        FillTarget(thrown, dice);

        Kanvo_Screen* const    screen = &m_screens[thrown.optimised ? 1 : 0];
        support::PitchedTarget target(screen, thrown.target.width, thrown.target.height, m_pixels, thrown.target.pitch);
        target.Lock();
        m_asserts.Clear();
        std::string failure;
        if (thrown.checked)
        {
            Kanvo_BitmapRLE source(screen, m_image, bytes.size(), thrown.copied);
            failure = RunOn(thrown, dice, target, source);
        }
        else
        {
            support::UncheckedRle source(thrown.image.unitBits == 8 ? BM_RGB32RLE8 : BM_RGB32RLE16, thrown.image.width,
                                         thrown.image.height, m_image);
            failure = RunOn(thrown, dice, target, source);
            if (failure.empty() && source.log.size() % 2 != 0) failure = "the source stays locked";
        }
        if (failure.empty() && m_asserts.Count() > 0)
            failure = "messages: " + testing::PrintToString(m_asserts.Texts());
        if (failure.empty() && std::memcmp(m_image, bytes.data(), bytes.size()) != 0) failure = "the image changed";
        return failure;
    }

    std::uint64_t ShownPixels() const { return m_shownPixels; }
    std::uint64_t ShowingRequests() const { return m_showingRequests; }

private:
    void FillTarget(const Case& thrown, Dice& dice)
    {
        const std::size_t bytes = thrown.target.Bytes(4);
        support::FillContent(dice, m_pixels, bytes, thrown.target.content, reference::Format::Argb32);
        m_expected.assign(m_pixels, m_pixels + bytes);
    }

    template <class Source>
    std::string RunOn(const Case& thrown, Dice& dice, support::PitchedTarget& target, Source& source)
    {
        for (const Request& request : thrown.requests)
        {
            target.SetCliprect(0, 0, thrown.target.width - 1, thrown.target.height - 1);
            if (request.clipped)
            {
                target.SetCliprect(static_cast<Tov_UInt>(request.clip.minX), static_cast<Tov_UInt>(request.clip.minY),
                                   static_cast<Tov_UInt>(request.clip.maxX), static_cast<Tov_UInt>(request.clip.maxY));
            }
            if (dice.OneIn(3)) FillTarget(thrown, dice);
            Expect(thrown, request);
            m_targetObject.Take(target);
            m_screenObject.Take(*target.GetScreen());
            Call(thrown, request, target, source);
            if (std::memcmp(m_expected.data(), m_pixels, m_expected.size()) != 0)
            {
                return Described(thrown, request) +
                       support::FirstDifference(m_expected.data(), m_pixels, thrown.target);
            }
            if (!m_targetObject.IsUnchanged() || !m_screenObject.IsUnchanged())
            {
                return Described(thrown, request) + "target or screen changed as an object";
            }
        }
        return {};
    }

    void Expect(const Case& thrown, const Request& request)
    {
        const Area&       area = thrown.target;
        reference::Target target;
        target.picture = {reference::Format::Argb32, area.width, area.height, area.pitch, m_expected.data(), true};
        if (request.clipped) target.clip = request.clip;
        reference::Where where = request.where;
        const bool       clipped =
            (request.way == Way::Blit || request.way == Way::BlitAlpha) && (request.flags & BLIT_NOCLIP) == 0;
        if (clipped) where = reference::CutToSize(where, m_picture.width, m_picture.height);
        const auto shown = static_cast<std::uint64_t>(
            reference::DrawRle(target, m_picture, where, request.magX, request.magY, request.rule));
        m_shownPixels += shown;
        m_showingRequests += shown > 0 ? 1 : 0;
    }

    void Call(const Case& thrown, const Request& request, support::PitchedTarget& target, Kanvo_Bitmap& source)
    {
        const reference::Where& where = request.where;
        const auto              alpha = static_cast<Tov_UByte>(request.rule.alpha);
        const bool              wide  = thrown.image.unitBits == 16;
        switch (request.way)
        {
        case Way::Worker:
        {
            const auto* const info = reinterpret_cast<const Kanvo_PrecompiledImageInfo*>(m_image);
            wide ? CallWorker<RLE16CurDecompressInfo>(info, target, request)
                 : CallWorker<RLE8CurDecompressInfo>(info, target, request);
            break;
        }
        case Way::Entry:
        {
            const auto entry = request.rule.fromBlitAlpha
                                   ? (wide ? &Blits::BlitAlpha_ARGB32RLE16 : &Blits::BlitAlpha_ARGB32RLE8)
                                   : (wide ? &Blits::Blit_ARGB32RLE16 : &Blits::Blit_ARGB32RLE8);
            entry(&source, &target, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY, alpha);
            break;
        }
        case Way::Magnify:
        {
            const auto entry = wide ? &Blits::BlitMag_ARGB32RLE16 : &Blits::BlitMag_ARGB32RLE8;
            entry(&source, &target, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY, alpha,
                  static_cast<Tov_UShort>(request.magX), static_cast<Tov_UShort>(request.magY));
            break;
        }
        case Way::Blit:
            target.Blit(&source, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY,
                        request.flags, alpha, request.key);
            break;
        case Way::BlitAlpha:
        case Way::Count:
            target.BlitAlpha(&source, &m_map, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY,
                             request.flags, alpha);
            break;
        }
    }

    Kanvo                     m_library;
    Kanvo_Screen              m_screens[2] = {Kanvo_Screen(&m_library), Kanvo_Screen(&m_library)};
    std::uint8_t              m_mapPixel   = 0;
    support::AnySource        m_map{&m_screens[0], BM_ALPHA8, 1, 1, &m_mapPixel, 0, true};
    support::Fence            m_imageArena{ARENA_BYTES};
    support::Fence            m_targetArena{ARENA_BYTES};
    std::uint8_t*             m_image  = nullptr;
    std::uint8_t*             m_pixels = nullptr;
    reference::RlePicture     m_picture;
    std::vector<std::uint8_t> m_expected;
    support::Snapshot         m_targetObject;
    support::Snapshot         m_screenObject;
    support::AssertCapture    m_asserts;
    std::uint64_t             m_shownPixels     = 0;
    std::uint64_t             m_showingRequests = 0;
};

}  // namespace

//! Also expects that a good part of the requests draws, that the test may not run idle.
TEST(RleRandom, ImagesAreDrawnAsTheirDefinitionSays)
{
    const support::Seeds  seeds(1000000 / REQUESTS_PER_IMAGE);
    support::LoopSpies    loops;
    support::MapLoopSpies mapLoops;
    support::PerfSpies    counters;
    RandomImages          images;
    const bool            good =
        support::RunSeeds("RLE images", seeds, [&](std::uint64_t seed) { return images.Run(ThrowCase(seed)); });
    EXPECT_TRUE(loops.Calls().empty());
    EXPECT_TRUE(mapLoops.Calls().empty());
    EXPECT_TRUE(counters.OnlyCounted(""));
    if (!good || seeds.count < 10000) return;
    EXPECT_GT(images.ShowingRequests(), seeds.count * REQUESTS_PER_IMAGE / 3);
    EXPECT_GT(images.ShownPixels(), seeds.count * REQUESTS_PER_IMAGE * 10);
}
