// BlitStage: what tests of fills and blits draw on. A Stage is a screen, a target and its pixels, with calls as short as
// they can be; a BlitPair draws with the library and with the naive reference and compares.
#ifndef BLITSTAGE_H
#define BLITSTAGE_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "BlitBitmaps.h"
#include "Reference_Blit.h"
#include "Snapshot.h"

namespace support
{

// ---- words of the library -------------------------------------------------------------------------------------------

constexpr const char* NOT_LOCKED    = "bitmap not locked";
constexpr const char* NO_BUFFER     = "bitmap has no buffer";
constexpr const char* NOT_INSIDE    = "unclipped rectangle outside the bitmap";
constexpr const char* NOT_SUPPORTED = "blit not supported";
constexpr const char* NOT_A_MAP     = "alpha bitmap is not the right type";

constexpr std::array<unsigned, 2> BOTH_PATHS{OB_NONE, OB_NEON};
constexpr Tov_Flag                OTHER_BIT = 0x2;  // no flag of any operation

// ---- pixels that are all the same -----------------------------------------------------------------------------------

inline std::vector<std::uint32_t> Same(std::size_t count, std::uint32_t word)
{
    return std::vector<std::uint32_t>(count, word);
}

//! Of a pixel, 1 for types that have none.
inline std::size_t BytesOf(unsigned type)
{
    return type == BM_ARGB32 || type == BM_RGB32 ? 4 : type == BM_RGB565 ? 2 : 1;
}

//! SIZE x SIZE equal pixels of any type: whatever is sampled, filtered or not, it is that pixel.
template <Tov_UInt SIZE>
class UniformOf
{
public:
    UniformOf(unsigned type, std::uint32_t value) : m_source(nullptr, type, SIZE, SIZE, m_pixels, 0, true)
    {
        const std::size_t bytes = BytesOf(type);
        for (std::size_t pixel = 0; pixel < SIZE * SIZE; ++pixel)
        {
            std::memcpy(reinterpret_cast<std::uint8_t*>(m_pixels) + pixel * bytes, &value, bytes);
        }
    }

    Kanvo_Bitmap& Bitmap() { return m_source; }

private:
    std::uint32_t m_pixels[SIZE * SIZE] = {};
    AnySource     m_source;
};

// ---- a stage --------------------------------------------------------------------------------------------------------

//! A locked target. Calls return the messages they raised. {4, 3} as a place means 4x3 pixels from one origin to the other.
template <class Target = PitchedTarget>
class StageOf
{
public:
    using Where = reference::Where;

    StageOf(unsigned optimizedBlit, unsigned width, std::vector<std::uint32_t> content)
        : pixels(std::move(content)),
          target(&screen, width, static_cast<Tov_UInt>(pixels.size() / width), pixels.data())
    {
        screen.GetRenderState().Set(OPTIMIZED_BLIT, optimizedBlit);
        target.Lock();
    }
    StageOf(unsigned optimizedBlit, unsigned width, unsigned height, std::uint32_t color)
        : StageOf(optimizedBlit, width, std::vector<std::uint32_t>(std::size_t{width} * height, color))
    {
    }

    Messages Blit(Kanvo_Bitmap* source, const Where& at, Tov_Flag flags = 0, int alpha = 255, Kanvo_Color key = 0)
    {
        return MessagesOf(
            [&]
            {
                target.Blit(source, at.width, at.height, at.srcX, at.srcY, at.dstX, at.dstY, flags,
                            static_cast<Tov_UByte>(alpha), key);
            });
    }
    Messages Blit(Kanvo_Bitmap& source, const Where& at, Tov_Flag flags = 0, int alpha = 255, Kanvo_Color key = 0)
    {
        return Blit(&source, at, flags, alpha, key);
    }

    Messages BlitColor(Kanvo_Bitmap* map, const Where& at, std::uint32_t color, Tov_Flag flags = 0, int alpha = 255)
    {
        return MessagesOf(
            [&]
            {
                target.BlitColor(map, at.width, at.height, at.srcX, at.srcY, at.dstX, at.dstY, color, flags,
                                 static_cast<Tov_UByte>(alpha));
            });
    }
    Messages BlitColor(Kanvo_Bitmap& map, const Where& at, std::uint32_t color, Tov_Flag flags = 0, int alpha = 255)
    {
        return BlitColor(&map, at, color, flags, alpha);
    }

    Messages Blit2Color(Kanvo_Bitmap* map, const Where& at, Tov_Flag flags = 0, int alpha = 255)
    {
        return MessagesOf(
            [&]
            {
                target.Blit2Color(map, at.width, at.height, at.srcX, at.srcY, at.dstX, at.dstY, 0xFF00FF00, 0xFFFF0000,
                                  flags, static_cast<Tov_UByte>(alpha));
            });
    }

    Messages FillRect(Tov_UInt width, Tov_UInt height, Tov_Int x, Tov_Int y, std::uint32_t color, Tov_Flag flags = 0)
    {
        return MessagesOf([&] { target.FillRect(width, height, x, y, color, flags); });
    }

    std::uint32_t At(unsigned x, unsigned y) const { return pixels[y * target.GetWidth() + x]; }
    //! Whether every pixel is this one.
    bool IsAll(std::uint32_t color) const
    {
        return std::all_of(pixels.begin(), pixels.end(), [&](std::uint32_t pixel) { return pixel == color; });
    }

    std::vector<std::uint32_t> pixels;
    Kanvo                      library;
    Kanvo_Screen               screen{&library};
    Target                     target;
};
using Stage = StageOf<>;

// ---- library against reference --------------------------------------------------------------------------------------

//! A target and a source of which each pixel tells where it is. Every call starts from the same pixels and is compared
//! in all of the target's memory, padding included, and in its messages.
class BlitPair
{
public:
    struct Size
    {
        unsigned width;
        unsigned height;
    };

    BlitPair(unsigned optimized, Size target, unsigned type, Size source, unsigned padding)
        : m_format(FormatOf(type)),
          m_sourcePitch(source.width * static_cast<unsigned>(reference::BytesPerPixel(m_format)) + padding),
          m_targetPitch(target.width * 4 + padding),
          m_sourcePixels(source.height * m_sourcePitch / 4 + 1),
          m_targetPixels(target.height * m_targetPitch / 4 + 1),
          m_source(&m_screen, type, source.width, source.height, m_sourcePixels.data(), m_sourcePitch, true),
          m_target(&m_screen, target.width, target.height, m_targetPixels.data(), m_targetPitch),
          m_picture{m_format,
                    source.width,
                    source.height,
                    m_sourcePitch,
                    reinterpret_cast<std::uint8_t*>(m_sourcePixels.data()),
                    true}
    {
        for (std::size_t index = 0; index < m_sourcePixels.size(); ++index)
        {
            m_sourcePixels[index] = static_cast<std::uint32_t>(index + 1) * 0x9E3779B1U;
        }
        m_target.Lock();
        m_screen.GetRenderState().Set(OPTIMIZED_BLIT, optimized);
        m_expectation.optimised = optimized == OB_NEON;
    }

    void Clip(std::uint32_t minX, std::uint32_t minY, std::uint32_t maxX, std::uint32_t maxY)
    {
        m_target.SetCliprect(minX, minY, maxX, maxY);
        m_expectation.clip = {minX, minY, maxX, maxY};
    }

    testing::AssertionResult Blit(const reference::Where& at, std::uint32_t flags = 0, int alpha = 255,
                                  std::uint32_t key = 0)
    {
        return Both(
            at, [&] { return reference::Blit(m_expectation, m_picture, at, flags, alpha, key); },
            [&]
            {
                m_target.Blit(&m_source, at.width, at.height, at.srcX, at.srcY, at.dstX, at.dstY, flags,
                              static_cast<Tov_UByte>(alpha), key);
            });
    }

    testing::AssertionResult BlitColor(const reference::Where& at, std::uint32_t flags = 0, int alpha = 255)
    {
        constexpr std::uint32_t COLOR = 0xFF00FF00;
        return Both(
            at, [&] { return reference::BlitColor(m_expectation, m_picture, at, COLOR, flags, alpha); },
            [&]
            {
                m_target.BlitColor(&m_source, at.width, at.height, at.srcX, at.srcY, at.dstX, at.dstY, COLOR, flags,
                                   static_cast<Tov_UByte>(alpha));
            });
    }

    testing::AssertionResult FillRect(std::uint32_t width, std::uint32_t height, std::int32_t x, std::int32_t y,
                                      std::uint32_t color, std::uint32_t flags = 0)
    {
        const reference::Where at{width, height, 0, 0, x, y};
        return Both(
            at, [&] { return reference::FillRect(m_expectation, at, color, flags); },
            [&] { m_target.FillRect(width, height, x, y, color, flags); });
    }

private:
    static reference::Format FormatOf(unsigned type)
    {
        switch (type)
        {
        case BM_ARGB32: return reference::Format::Argb32;
        case BM_RGB32: return reference::Format::Rgb32;
        case BM_RGB565: return reference::Format::Rgb565;
        default: return reference::Format::A8;
        }
    }

    template <class Expect, class Draw>
    testing::AssertionResult Both(const reference::Where& at, Expect expect, Draw draw)
    {
        for (std::size_t index = 0; index < m_targetPixels.size(); ++index)
        {
            m_targetPixels[index] = 0xC0000000U + static_cast<std::uint32_t>(index) * 0x010305U;
        }
        m_expected                        = m_targetPixels;
        m_expectation.picture             = {reference::Format::Argb32,
                                             m_target.GetWidth(),
                                             m_target.GetHeight(),
                                             m_targetPitch,
                                             reinterpret_cast<std::uint8_t*>(m_expected.data()),
                                             true};
        const reference::Outcome outcome  = expect();
        const Messages           messages = MessagesOf(draw);
        if (messages == outcome.messages && m_targetPixels == m_expected) return testing::AssertionSuccess();
        auto failure = testing::AssertionFailure()
                       << static_cast<int>(at.width) << "x" << static_cast<int>(at.height) << " from ("
                       << static_cast<int>(at.srcX) << ", " << static_cast<int>(at.srcY) << ") to (" << at.dstX << ", "
                       << at.dstY << "): messages " << testing::PrintToString(messages);
        for (std::size_t index = 0; index < m_expected.size(); ++index)
        {
            if (m_targetPixels[index] == m_expected[index]) continue;
            return failure << ", byte " << index * 4 % m_targetPitch << " of row " << index * 4 / m_targetPitch
                           << " differs";
        }
        return failure;
    }

    Kanvo                      m_library;
    Kanvo_Screen               m_screen{&m_library};
    reference::Format          m_format;
    unsigned                   m_sourcePitch;
    unsigned                   m_targetPitch;
    std::vector<std::uint32_t> m_sourcePixels;
    std::vector<std::uint32_t> m_targetPixels;
    std::vector<std::uint32_t> m_expected;
    AnySource                  m_source;
    PitchedTarget              m_target;
    reference::Picture         m_picture;
    reference::Target          m_expectation;
};

}  // namespace support

#endif
