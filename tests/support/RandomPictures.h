// RandomPictures: what random tests of blits are made of: pictures thrown with Dice, their bytes between protected pages
// (and their padding forbidden under the address sanitizer), bitmaps of every format over them, and what to say of them.
#ifndef RANDOMPICTURES_H
#define RANDOMPICTURES_H

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "BlitBitmaps.h"
#include "Dice.h"
#include "Fence.h"
#include "Reference_Blit.h"

#if defined(__SANITIZE_ADDRESS__)
#define KANVO_TEST_POISONS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KANVO_TEST_POISONS 1
#endif
#endif
#ifndef KANVO_TEST_POISONS
#define KANVO_TEST_POISONS 0
#endif
#if KANVO_TEST_POISONS
#include <sanitizer/asan_interface.h>
#endif

namespace support
{

using reference::Format;

// ---- throwing -------------------------------------------------------------------------------------------------------

//! A format and the library's number of it.
struct Known
{
    Format   format;
    unsigned type;
};

inline constexpr Known KNOWN_ARGB32{Format::Argb32, BM_ARGB32};
inline constexpr Known KNOWN_RGB32{Format::Rgb32, BM_RGB32};
inline constexpr Known KNOWN_RGB565{Format::Rgb565, BM_RGB565};
inline constexpr Known KNOWN_A8{Format::A8, BM_ALPHA8};
inline constexpr Known KNOWN_ALPHA52{Format::Alpha5_2, BM_ALPHA5_2};

//! Where a picture lies and what it is filled with.
struct Area
{
    Known         known{Format::Other, BM_UNKNWON};
    std::uint32_t width       = 0;
    std::uint32_t height      = 0;
    std::uint32_t pitch       = 0;
    bool          atBackFence = false;
    bool          realClass   = false;  // the library's own class instead of one that says what the test wants
    bool          saysAlpha   = false;
    int           content     = 0;

    std::size_t PixelBytes() const { return static_cast<std::size_t>(reference::BytesPerPixel(known.format)); }
    std::size_t Bytes() const { return Fence::BytesFor(width, height, pitch, PixelBytes()); }

    reference::Picture Over(std::uint8_t* bytes) const
    {
        return {known.format, width, height, pitch, bytes, saysAlpha};
    }
};

inline Area ThrowArea(Dice& dice, Known known)
{
    Area      area;
    const int least = dice.OneIn(2) ? 1 : 10;
    area.known      = known;
    area.width      = static_cast<std::uint32_t>(dice.Between(least, 24));
    area.height     = static_cast<std::uint32_t>(dice.Between(least, 24));
    if (dice.OneIn(8)) area.width = static_cast<std::uint32_t>(dice.Between(1, 3));
    if (dice.OneIn(8)) area.height = static_cast<std::uint32_t>(dice.Between(1, 2));
    if (dice.OneIn(50))
    {
        area.width  = static_cast<std::uint32_t>(dice.Between(100, 130));
        area.height = static_cast<std::uint32_t>(dice.Between(1, 5));
    }
    area.pitch = area.width * static_cast<std::uint32_t>(area.PixelBytes()) + dice.Of<std::uint32_t>({0, 4, 12, 64});
    area.atBackFence = dice.OneIn(2);
    area.content     = dice.Between(0, 5);
    area.realClass   = known.format < Format::Alpha5_2 && dice.OneIn(4);
    area.saysAlpha   = area.realClass ? known.format == Format::Argb32 || known.format == Format::A8 : dice.OneIn(2);
    return area;
}

//! Inclusive bounds, mostly inside; sometimes inverted, empty, beyond the bitmap or outside. Nothing for none set.
inline std::optional<reference::Clip> ThrowClip(Dice& dice, const Area& target)
{
    if (dice.OneIn(2)) return {};
    const auto      width  = static_cast<int>(target.width);
    const auto      height = static_cast<int>(target.height);
    reference::Clip clip;
    const bool      narrow = dice.OneIn(3);
    clip.minX              = dice.Between(0, narrow ? width - 1 : (width - 1) / 4);
    clip.minY              = dice.Between(0, narrow ? height - 1 : (height - 1) / 4);
    clip.maxX              = dice.Between(static_cast<int>(narrow ? clip.minX : width / 2), width - 1);
    clip.maxY              = dice.Between(static_cast<int>(narrow ? clip.minY : height / 2), height - 1);
    switch (dice.Below(32))
    {
    case 0:
        clip.maxX = dice.Of<std::int64_t>({width, width + 7, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF});
        clip.maxY = dice.Of<std::int64_t>({height, height + 7, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF});
        break;
    case 1: clip.minX = clip.maxX + 1; break;
    case 2: clip.minY = clip.maxY + 1; break;
    case 3:
        clip.minX = width - 1;
        clip.maxX = 0;
        clip.minY = dice.Of<std::int64_t>({0, height - 1, 0xFFFFFFFF});
        clip.maxY = 0;
        break;
    case 4:
        clip.minX = dice.Of<std::int64_t>({width, width + 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF});
        clip.maxX = 0xFFFFFFFF;
        break;
    default: break;
    }
    return clip;
}

inline int ThrowAlpha(Dice& dice)
{
    const int any = dice.NextByte();
    return dice.Of({0, 1, 127, 128, 254, 255, 255, 255, 255, 255, 255, any, any, any});
}

//! With a key that is met: 24 bits for 32-bit pixels. Sometimes with bits that no pixel has.
inline std::uint32_t ThrowKey(Dice& dice, Format format)
{
    std::uint32_t key = dice.Next32();
    if (format == Format::Argb32 || format == Format::Rgb32) key &= 0x00FFFFFF;
    if (format == Format::Rgb565) key &= 0xFFFF;
    if (format == Format::A8) key &= 0xFF;
    if (dice.OneIn(16)) key |= dice.Of<std::uint32_t>({0x01000000, 0xFF000000, 0x00010000, 0x00000100});
    return key;
}

//! Scattered pixels, icons (runs of alpha 0 and 255 with soft pixels between), opaque ones, bytes of 0 and 255. With a
//! key, one pixel in keyOneIn has its colour.
inline void FillContent(Dice& dice, std::uint8_t* bytes, std::size_t count, const Area& area,
                        std::optional<std::uint32_t> key = {}, unsigned keyOneIn = 3)
{
    dice.Fill(bytes, count);
    const std::size_t pixelBytes = area.PixelBytes();
    const bool        words      = pixelBytes == 4;
    if (area.content == 1 || area.content == 2)
    {
        int          run   = 0;
        std::uint8_t alpha = 0;
        for (std::size_t at = words ? 3 : 0; at < count; at += pixelBytes)
        {
            if (run-- == 0)
            {
                const std::uint8_t soft = dice.NextByte();
                run                     = dice.Between(0, 6);
                alpha                   = dice.Of<std::uint8_t>({0, 255, 255, soft});
            }
            bytes[at] = alpha;
        }
    }
    if (area.content == 3)
    {
        for (std::size_t at = words ? 3 : 0; at < count; at += pixelBytes) bytes[at] = 255;
    }
    if (area.content == 4)
    {
        for (std::size_t at = 0; at < count; ++at)
        {
            bytes[at] = (bytes[at] & 2) != 0 ? bytes[at] : (bytes[at] & 1) != 0 ? 255 : 0;
        }
    }
    if (!key) return;
    for (std::size_t at = 0; at + pixelBytes <= count; at += pixelBytes)
    {
        if (!dice.OneIn(keyOneIn)) continue;
        std::memcpy(bytes + at, &*key, std::min<std::size_t>(pixelBytes, 3));  // the top byte stays what it is
    }
}

// ---- memory ---------------------------------------------------------------------------------------------------------

//! Room for one picture at a time, flush with a protected page.
class Arena
{
public:
    static constexpr std::size_t BYTES = 65536;  // whole pages: the fences are flush with both ends

    std::uint8_t* Place(const Area& area) { return m_fence.Data() + (area.atBackFence ? BYTES - area.Bytes() : 0); }

private:
    Fence m_fence{BYTES};
};

//! Nobody may read the bytes between the rows of a picture, to the end of the scope. What the address sanitizer alone can
//! watch: without it nothing happens.
class ForbiddenPadding
{
public:
    ForbiddenPadding([[maybe_unused]] const Area& area, [[maybe_unused]] std::uint8_t* bytes)
        : m_bytes(bytes),
          m_count(area.Bytes())
    {
#if KANVO_TEST_POISONS
        const std::size_t row = area.width * area.PixelBytes();
        for (std::uint32_t y = 0; y + 1 < area.height; ++y)
        {
            ASAN_POISON_MEMORY_REGION(bytes + y * area.pitch + row, area.pitch - row);
        }
#endif
    }
    ~ForbiddenPadding()
    {
#if KANVO_TEST_POISONS
        ASAN_UNPOISON_MEMORY_REGION(m_bytes, m_count);
#endif
    }
    ForbiddenPadding(const ForbiddenPadding&)            = delete;
    ForbiddenPadding& operator=(const ForbiddenPadding&) = delete;

private:
    [[maybe_unused]] std::uint8_t* m_bytes;
    [[maybe_unused]] std::size_t   m_count;
};

// ---- bitmaps --------------------------------------------------------------------------------------------------------

//! A source of any format over bytes.
class AnyBitmap
{
public:
    AnyBitmap(Kanvo_Screen* screen, const Area& area, std::uint8_t* bytes)
    {
        if (!area.realClass)
        {
            m_any.emplace(screen, area.known.type, area.width, area.height, bytes, area.pitch, area.saysAlpha);
            m_bitmap = &*m_any;
            m_bytes  = sizeof *m_any;
            return;
        }
        switch (area.known.format)
        {
        case Format::Argb32: Take(m_argb32.emplace(screen, area.width, area.height, bytes, area.pitch)); break;
        case Format::Rgb32: Take(m_rgb32.emplace(screen, area.width, area.height, BBT_RAM, bytes, area.pitch)); break;
        case Format::Rgb565: Take(m_rgb565.emplace(screen, area.width, area.height, BBT_RAM, bytes, area.pitch)); break;
        default: Take(m_a8.emplace(screen, area.width, area.height, BBT_RAM, bytes, area.pitch)); break;
        }
    }

    Kanvo_Bitmap* Get() { return m_bitmap; }
    std::size_t   ObjectBytes() const { return m_bytes; }

private:
    template <class Bitmap>
    void Take(Bitmap& bitmap)
    {
        m_bitmap = &bitmap;
        m_bytes  = sizeof bitmap;
    }

    std::optional<AnySource>          m_any;
    std::optional<PitchedTarget>      m_argb32;
    std::optional<Kanvo_BitmapRGB32>  m_rgb32;
    std::optional<Kanvo_BitmapRGB565> m_rgb565;
    std::optional<Kanvo_BitmapA8>     m_a8;
    Kanvo_Bitmap*                     m_bitmap = nullptr;
    std::size_t                       m_bytes  = 0;
};

//! The bytes of an object whose class the caller knows, at a moment.
class ObjectBytes
{
public:
    void Take(const void* object, std::size_t bytes)
    {
        m_object = object;
        m_bytes.resize(bytes);
        std::memcpy(m_bytes.data(), m_object, bytes);
    }
    bool AreUnchanged() const { return std::memcmp(m_bytes.data(), m_object, m_bytes.size()) == 0; }

private:
    const void*               m_object = nullptr;
    std::vector<std::uint8_t> m_bytes;
};

// ---- saying what a case was -----------------------------------------------------------------------------------------

inline const char* NameOf(Format format)
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

inline std::string Described(const Area& area)
{
    char text[120];
    std::snprintf(text, sizeof text, "%s (type %u)%s%s %ux%u pitch %u at the %s fence", NameOf(area.known.format),
                  area.known.type, area.realClass ? " real class" : "", area.saysAlpha ? " says alpha" : "", area.width,
                  area.height, area.pitch, area.atBackFence ? "back" : "front");
    return text;
}

inline std::string Described(const std::optional<reference::Clip>& clip)
{
    if (!clip) return "clip none";
    char text[120];
    std::snprintf(text, sizeof text, "clip (%lld, %lld) to (%lld, %lld)", static_cast<long long>(clip->minX),
                  static_cast<long long>(clip->minY), static_cast<long long>(clip->maxX),
                  static_cast<long long>(clip->maxY));
    return text;
}

//! Where two pictures of words with padding first differ.
inline std::string FirstDifference(const std::uint8_t* expected, const std::uint8_t* got, const Area& area)
{
    const std::size_t count = area.Bytes();
    std::size_t       at    = 0;
    while (at < count && expected[at] == got[at]) ++at;
    const std::size_t x = at % area.pitch / 4;
    const std::size_t y = at / area.pitch;
    char              text[160];
    if (x >= area.width)
    {
        std::snprintf(text, sizeof text, "padding byte %zu of row %zu expected %02X, got %02X",
                      at % area.pitch - area.width * 4, y, expected[at], got[at]);
        return text;
    }
    std::uint32_t words[2];
    std::memcpy(&words[0], expected + at / 4 * 4, 4);
    std::memcpy(&words[1], got + at / 4 * 4, 4);
    std::snprintf(text, sizeof text, "pixel (%zu, %zu) expected %08X, got %08X", x, y, words[0], words[1]);
    return text;
}

}  // namespace support

#endif
