// RandomPictures: what random tests of blits are made of beyond RandomAreas.h: areas that know their
// format, bitmaps of every format over them, opacities and colour keys, and padding that is forbidden under the address
// sanitizer.
#ifndef RANDOMPICTURES_H
#define RANDOMPICTURES_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "BlitBitmaps.h"
#include "Dice.h"
#include "RandomAreas.h"
#include "Reference_Blit.h"
#include "Snapshot.h"

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

//! An area that holds a picture of a format.
struct PictureArea : Area
{
    Known known{Format::Other, BM_UNKNWON};
    bool  realClass = false;  // the library's own class instead of one that says what the test wants
    bool  saysAlpha = false;

    std::int64_t PixelBytes() const { return reference::BytesPerPixel(known.format); }
    std::size_t  Count() const { return Bytes(PixelBytes()); }

    reference::Picture Over(std::uint8_t* bytes) const
    {
        return {known.format, width, height, pitch, bytes, saysAlpha};
    }
};

//! A picture in that area.
inline PictureArea ThrowPictureIn(Dice& dice, Known known, const Area& where)
{
    PictureArea area;
    static_cast<Area&>(area) = where;
    area.known               = known;
    area.realClass           = known.format < Format::Alpha5_2 && dice.OneIn(4);
    area.saysAlpha = area.realClass ? known.format == Format::Argb32 || known.format == Format::A8 : dice.OneIn(2);
    return area;
}

inline PictureArea ThrowPicture(Dice& dice, Known known, std::uint32_t width, std::uint32_t height)
{
    return ThrowPictureIn(dice, known, ThrowAreaOf(dice, reference::BytesPerPixel(known.format), width, height));
}

//! 1x1 to most x most pixels, some long rows.
inline PictureArea ThrowPicture(Dice& dice, Known known, int most)
{
    return ThrowPictureIn(dice, known, ThrowArea(dice, reference::BytesPerPixel(known.format), most));
}

//! Most of them not all too small.
inline PictureArea ThrowPicture(Dice& dice, Known known)
{
    const Area size   = ThrowArea(dice, reference::BytesPerPixel(known.format), 24);
    const bool larger = !dice.OneIn(4);
    return ThrowPicture(dice, known, larger ? std::max<std::uint32_t>(size.width, 10) : size.width,
                        larger ? std::max<std::uint32_t>(size.height, 10) : size.height);
}

//! Nothing for none set, in most cases.
inline std::optional<reference::Clip> ThrowAnyClip(Dice& dice, const Area& target)
{
    if (!dice.OneIn(3)) return {};
    return ThrowClip(dice, target);
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

//! As the area's content says. With a key, one pixel in keyOneIn has its colour.
inline void FillPicture(Dice& dice, std::uint8_t* bytes, const PictureArea& area, std::optional<std::uint32_t> key = {},
                        unsigned keyOneIn = 3)
{
    const std::size_t count      = area.Count();
    const auto        pixelBytes = static_cast<std::size_t>(area.PixelBytes());
    FillContent(dice, bytes, count, area.content, area.known.format);
    if (!key) return;
    for (std::size_t at = 0; at + pixelBytes <= count; at += pixelBytes)
    {
        if (!dice.OneIn(keyOneIn)) continue;
        std::memcpy(bytes + at, &*key, std::min<std::size_t>(pixelBytes, 3));  // the top byte stays what it is
    }
}

// ---- memory ---------------------------------------------------------------------------------------------------------

constexpr std::size_t ARENA_BYTES = 65536;  // whole pages: the fences are flush with both ends

//! Nobody may read the bytes between the rows of a picture, to the end of the scope. What the address sanitizer alone can
//! watch: without it nothing happens.
class ForbiddenPadding
{
public:
    ForbiddenPadding([[maybe_unused]] const PictureArea& area, [[maybe_unused]] std::uint8_t* bytes)
        : m_bytes(bytes),
          m_count(area.Count())
    {
#if KANVO_TEST_POISONS
        const std::size_t row = area.width * static_cast<std::size_t>(area.PixelBytes());
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
    AnyBitmap(Kanvo_Screen* screen, const PictureArea& area, std::uint8_t* bytes)
    {
        if (!area.realClass)
        {
            m_bitmap =
                &m_any.emplace(screen, area.known.type, area.width, area.height, bytes, area.pitch, area.saysAlpha);
            return;
        }
        switch (area.known.format)
        {
        case Format::Argb32: m_bitmap = &m_argb32.emplace(screen, area.width, area.height, bytes, area.pitch); break;
        case Format::Rgb32:
            m_bitmap = &m_rgb32.emplace(screen, area.width, area.height, BBT_RAM, bytes, area.pitch);
            break;
        case Format::Rgb565:
            m_bitmap = &m_rgb565.emplace(screen, area.width, area.height, BBT_RAM, bytes, area.pitch);
            break;
        default: m_bitmap = &m_a8.emplace(screen, area.width, area.height, BBT_RAM, bytes, area.pitch); break;
        }
    }

    Kanvo_Bitmap* Get() { return m_bitmap; }

    //! Takes the object of whatever class.
    void TakeInto(Snapshot& snapshot) const
    {
        if (m_any) snapshot.Take(*m_any);
        if (m_argb32) snapshot.Take(*m_argb32);
        if (m_rgb32) snapshot.Take(*m_rgb32);
        if (m_rgb565) snapshot.Take(*m_rgb565);
        if (m_a8) snapshot.Take(*m_a8);
    }

private:
    std::optional<AnySource>          m_any;
    std::optional<PitchedTarget>      m_argb32;
    std::optional<Kanvo_BitmapRGB32>  m_rgb32;
    std::optional<Kanvo_BitmapRGB565> m_rgb565;
    std::optional<Kanvo_BitmapA8>     m_a8;
    Kanvo_Bitmap*                     m_bitmap = nullptr;
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

inline std::string Described(const PictureArea& area)
{
    return NameOf(area.known.format) + (" (type " + std::to_string(area.known.type) + ")") +
           (area.realClass ? " real class" : "") + (area.saysAlpha ? " says alpha " : " ") +
           Described(static_cast<const Area&>(area));
}

inline std::string Described(const std::optional<reference::Clip>& clip)
{
    return clip ? "clip " + Described(*clip) : "clip none";
}

}  // namespace support

#endif
