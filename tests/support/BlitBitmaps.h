// BlitBitmaps: bitmaps for tests of blits, over pixels that the test provides. They say of themselves what the test wants.
#ifndef BLITBITMAPS_H
#define BLITBITMAPS_H

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "Kanvo.h"
#include "Kanvo_SourceBitmap.h"

namespace support
{

//! A source of any type, also of those that blits do not support: these have one byte per pixel here.
class AnySource : public Kanvo_SourceBitmap
{
public:
    AnySource(Kanvo_Screen* screen, unsigned type, Tov_UInt width, Tov_UInt height, void* pixels, Tov_UInt pitch,
              bool hasAlpha)
        : Kanvo_SourceBitmap(StoredLike(type), screen, width, height, BBT_RAM, pixels, pitch),
          m_saysAlpha(hasAlpha)
    {
        m_uiType = type;
    }

    Kanvo_Color ColorFromRGB(Tov_UByte, Tov_UByte, Tov_UByte) const override { return 0; }
    Kanvo_Color ColorFromARGB(Tov_UByte, Tov_UByte, Tov_UByte, Tov_UByte) const override { return 0; }
    Tov_Bool    ColorToRGB(Kanvo_Color, Tov_UByte&, Tov_UByte&, Tov_UByte&) const override { return false; }
    Tov_Bool    HasAlpha() const override { return m_saysAlpha; }

private:
    static BitmapType StoredLike(unsigned type)
    {
        switch (type)
        {
        case BM_ARGB32: return BM_ARGB32;
        case BM_RGB32: return BM_RGB32;
        case BM_RGB565: return BM_RGB565;
        default: return BM_ALPHA8;
        }
    }

    bool m_saysAlpha;
};

//! A target with rows as far apart as wanted.
class PitchedTarget : public Kanvo_BitmapARGB32
{
public:
    //! pitch: bytes, 0 for rows without padding.
    PitchedTarget(Kanvo_Screen* screen, Tov_UInt width, Tov_UInt height, void* pixels, Tov_UInt pitch = 0)
        : Kanvo_BitmapARGB32(screen, width, height, BBT_RAM, pixels)
    {
        if (pitch != 0) m_uiPitch = pitch;
    }

    //! What HasAlpha answers from now on, whatever the pixels are.
    void SayAlpha(bool hasAlpha) { m_saysAlpha = hasAlpha; }

    Tov_Bool HasAlpha() const override { return m_saysAlpha.value_or(Kanvo_BitmapARGB32::HasAlpha()); }

private:
    std::optional<bool> m_saysAlpha;
};

//! A target whose own colours have red and blue the other way round and half the alpha.
class SwappedTarget : public PitchedTarget
{
public:
    using PitchedTarget::PitchedTarget;

    Kanvo_Color ColorFromARGB(Tov_UByte a, Tov_UByte r, Tov_UByte g, Tov_UByte b) const override
    {
        return Compose(a, r, g, b);
    }

    static std::uint32_t Compose(int a, int r, int g, int b)
    {
        return static_cast<std::uint32_t>(a / 2) << 24 | static_cast<std::uint32_t>(b) << 16 |
               static_cast<std::uint32_t>(g) << 8 | static_cast<std::uint32_t>(r);
    }
};

//! A source together with its pixels, row after row.
template <class Pixel>
class Image
{
public:
    Image(unsigned type, unsigned width, std::vector<Pixel> content, bool hasAlpha = false)
        : pixels(std::move(content)),
          bitmap(nullptr, type, width, static_cast<Tov_UInt>(pixels.size() / width), pixels.data(), 0, hasAlpha)
    {
    }

    std::vector<Pixel> pixels;
    AnySource          bitmap;
};
using Words    = Image<std::uint32_t>;  // BM_ARGB32, BM_RGB32
using Halves   = Image<std::uint16_t>;  // BM_RGB565
using Coverage = Image<std::uint8_t>;   // BM_ALPHA8 and all that is not supported

}  // namespace support

#endif
