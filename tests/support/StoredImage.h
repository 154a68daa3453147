// StoredImage: run-length-encoded images for tests, put together word by word: header, palette, tokens.
#ifndef STOREDIMAGE_H
#define STOREDIMAGE_H

#include <cstdint>
#include <cstring>
#include <vector>

#include "Kanvo_BitmapRLE.h"

namespace support
{

//! Unit is the token unit, a byte or 16 bits. Tokens as they are stored, the end token included.
template <class Unit>
class StoredImage
{
public:
    StoredImage(std::uint32_t width, std::uint32_t height, const std::vector<std::uint32_t>& palette,
                const std::vector<Unit>& tokens)
    {
        Kanvo_PrecompiledImageInfo header{};
        header.uiKanvo                    = Kanvo_PrecompiledImageInfo::WORD_KANVO;
        header.ui_RLE                     = Kanvo_PrecompiledImageInfo::WORD_RLE;
        header.ubRLEBits                  = 8 * sizeof(Unit);
        header.ubVersion                  = Kanvo_PrecompiledImageInfo::VERSION;
        header.ubColorBitsA               = 8;
        header.ubColorBitsR               = 8;
        header.ubColorBitsG               = 8;
        header.ubColorBitsB               = 8;
        header.uiWidth                    = width;
        header.uiHeight                   = height;
        header.uiPaletteColorCount        = static_cast<std::uint32_t>(palette.size());
        header.uiStartIndexOfColorIndices = static_cast<std::uint32_t>(sizeof header + 4 * palette.size());
        m_bytes                           = header.uiStartIndexOfColorIndices + sizeof(Unit) * tokens.size();
        m_words.resize((m_bytes + 3) / 4);
        auto* const to = reinterpret_cast<std::uint8_t*>(m_words.data());
        std::memcpy(to, &header, sizeof header);
        std::memcpy(to + sizeof header, palette.data(), 4 * palette.size());
        std::memcpy(to + header.uiStartIndexOfColorIndices, tokens.data(), sizeof(Unit) * tokens.size());
    }

    const void* Data() const { return m_words.data(); }
    std::size_t Size() const { return m_bytes; }

private:
    std::vector<std::uint32_t> m_words;  // aligned as the header wants it
    std::size_t                m_bytes = 0;
};

}  // namespace support

#endif
