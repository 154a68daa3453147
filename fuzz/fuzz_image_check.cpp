// fuzz_image_check: any bytes as a stored image. The library's check and the naive judge must agree, and what passes is
// drawn: at several places, with several factors and opacities, into a target whose surroundings must stay as they were,
// and as the definition says wherever the image is small enough to be expanded.
//
//   clang++ -fsanitize=fuzzer,address,undefined,float-cast-overflow ... fuzz_image_check.cpp
//   fuzz_image_check -max_len=256 corpus/image_check
//
// tests/fuzz/test_corpus_replay.cpp runs the same function over the stored inputs.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "BlitBitmaps.h"
#include "Kanvo.h"
#include "Kanvo_RLECompressedBlits.h"
#include "Reference_Rle.h"
#include "Trak_Assert.h"

namespace
{

//! Ends the program with a word why, as a sanitizer would.
[[noreturn]] void Stop(const char* why)
{
    std::fprintf(stderr, "fuzz_image_check: %s\n", why);
    std::abort();
}

void Ignore(const char*, unsigned int, const char*) {}

// ---- the target -----------------------------------------------------------------------------------------------------

constexpr std::uint32_t WIDTH  = 13;
constexpr std::uint32_t HEIGHT = 9;
constexpr std::uint32_t MARGIN = 4;  // pixels on either side of each row, and rows above and below
constexpr std::uint32_t PITCH  = (WIDTH + 2 * MARGIN) * 4;
constexpr std::size_t   FIRST  = std::size_t{MARGIN} * PITCH + MARGIN * 4;
constexpr std::size_t   BYTES  = std::size_t{HEIGHT + 2 * MARGIN} * PITCH;

//! Pixels in the middle of others that nobody may touch, beside a twin for the definition.
class Field
{
public:
    Field()
        : m_before(BYTES),
          m_pixels(BYTES),
          m_expected(BYTES),
          m_bitmap(&m_screen, WIDTH, HEIGHT, m_pixels.data() + FIRST, PITCH)
    {
        for (std::size_t at = 0; at < BYTES; ++at) m_before[at] = static_cast<std::uint8_t>(at * 37);
        m_bitmap.Lock();
    }

    support::PitchedTarget& Bitmap() { return m_bitmap; }

    void Clear()
    {
        m_pixels   = m_before;
        m_expected = m_before;
    }

    reference::Target Expected(const reference::Clip& clip)
    {
        reference::Target target;
        target.picture = {reference::Format::Argb32, WIDTH, HEIGHT, PITCH, m_expected.data() + FIRST, true};
        target.clip    = clip;
        return target;
    }

    bool IsAsExpected() const { return m_pixels == m_expected; }

    //! Whether everything outside the clip is as it was.
    bool IsOutsideUntouched(const reference::Clip& clip) const
    {
        for (std::size_t at = 0; at < BYTES; ++at)
        {
            const std::int64_t x      = static_cast<std::int64_t>(at % PITCH / 4) - MARGIN;
            const std::int64_t y      = static_cast<std::int64_t>(at / PITCH) - MARGIN;
            const bool         inside = x >= clip.minX && x <= clip.maxX && y >= clip.minY && y <= clip.maxY;
            if (!inside && m_pixels[at] != m_before[at]) return false;
        }
        return true;
    }

private:
    std::vector<std::uint8_t> m_before;
    std::vector<std::uint8_t> m_pixels;
    std::vector<std::uint8_t> m_expected;
    Kanvo_Screen              m_screen{nullptr};
    support::PitchedTarget    m_bitmap;
};

// ---- drawing --------------------------------------------------------------------------------------------------------

struct Draw
{
    std::int32_t dstX;
    std::int32_t dstY;
    unsigned     magX;
    unsigned     magY;
    int          alpha;
    bool         bottomRight;  // only the last quarter of the image
};

constexpr Draw DRAWS[] = {{0, 0, 1, 1, 255, false},   {-3, -1, 1, 1, 200, false}, {5, 4, 1, 1, 255, true},
                          {-4, -5, 3, 2, 255, false}, {2, -7, 5, 4, 100, true},   {-40, -40, 16, 16, 255, false}};

constexpr reference::Clip CLIP{1, 1, WIDTH - 2, HEIGHT - 1};

void DrawEverywhere(Field& field, Kanvo_BitmapRLE& source, const std::uint8_t* bytes)
{
    const std::uint32_t width  = source.GetWidth();
    const std::uint32_t height = source.GetHeight();
    const bool          wide   = source.GetType() == BM_RGB32RLE16;
    const bool          known  = std::uint64_t{width} * height <= 10000;
    const auto          mag =
        wide ? &Kanvo_RLECompressedBlits::BlitMag_ARGB32RLE16 : &Kanvo_RLECompressedBlits::BlitMag_ARGB32RLE8;
    reference::RlePicture picture;
    if (known) picture = reference::ExpandRle(bytes, wide ? 16 : 8);
    field.Bitmap().SetCliprect(static_cast<Tov_UInt>(CLIP.minX), static_cast<Tov_UInt>(CLIP.minY),
                               static_cast<Tov_UInt>(CLIP.maxX), static_cast<Tov_UInt>(CLIP.maxY));
    for (const Draw& draw : DRAWS)
    {
        reference::Where where{width, height, 0, 0, draw.dstX, draw.dstY};
        if (draw.bottomRight)
        {
            where.srcX   = width / 2;
            where.srcY   = height / 2;
            where.width  = width - where.srcX;
            where.height = height - where.srcY;
        }
        field.Clear();
        const auto alpha = static_cast<Tov_UByte>(draw.alpha);
        if (draw.magX == 1)
        {
            field.Bitmap().Blit(&source, where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY, 0,
                                alpha, 0);
        }
        else
        {
            mag(&source, &field.Bitmap(), where.width, where.height, where.srcX, where.srcY, where.dstX, where.dstY,
                alpha, static_cast<Tov_UShort>(draw.magX), static_cast<Tov_UShort>(draw.magY));
        }
        if (!known)
        {
            if (!field.IsOutsideUntouched(CLIP)) Stop("drawn outside the clip rectangle");
            continue;
        }
        reference::DrawRle(field.Expected(CLIP), picture, where, draw.magX, draw.magY,
                           {draw.alpha != 255, false, draw.alpha});
        if (!field.IsAsExpected()) Stop("not drawn as the definition says");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Field field;
    // Memory of exactly this size, aligned as all memory is: the address sanitizer stands at both its ends.
    const std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[size]);
    if (size > 0) std::memcpy(bytes.get(), data, size);

    const Kanvo_ImageReport   report = Kanvo_CheckImage(bytes.get(), size);
    const reference::RleFault judged = reference::JudgeRle(bytes.get(), size, 0, true);
    if (static_cast<int>(report.eFault) != static_cast<int>(judged)) Stop("judged otherwise by the naive judge");
    if (report.uiOffset > size) Stop("a fault beyond the data");

    const Trak_AssertHandler before = Trak_SetAssertHandler(&Ignore);
    Kanvo_BitmapRLE          source(nullptr, bytes.get(), size);
    if (source.GetReport().eFault != report.eFault) Stop("the bitmap sees another fault");
    if (report.IsUsable()) DrawEverywhere(field, source, bytes.get());
    if (!report.IsUsable() && source.GetType() != BM_UNKNWON) Stop("refused data in a bitmap that can be drawn");
    Trak_SetAssertHandler(before);
    if (size > 0 && std::memcmp(bytes.get(), data, size) != 0) Stop("the image changed");
    return 0;
}
