// TextureImage: texels between protected pages, as a bitmap for the library and as texels for the reference.
#ifndef TEXTUREIMAGE_H
#define TEXTUREIMAGE_H

#include <cstdint>
#include <string>

#include "BlitBitmaps.h"
#include "Dice.h"
#include "Fence.h"
#include "Kanvo_Texture.h"
#include "Reference_PolygonTex.h"

namespace support
{

//! 2^widthBits x 2^heightBits texels in rows of 2^rowBits, flush with a fence, read-only once thrown.
class TextureImage
{
public:
    TextureImage(unsigned type, unsigned widthBits, unsigned heightBits, unsigned rowBits, Against end)
        : m_words(type != BM_ALPHA8),
          m_rowBits(rowBits),
          m_width(1U << widthBits),
          m_height(1U << heightBits),
          m_fence(Fence::BytesFor(m_width, m_height, (std::size_t{m_words ? 4U : 1U} << rowBits), m_words ? 4 : 1),
                  end),
          m_bitmap(nullptr, type, m_width, m_height, m_fence.Data(), (m_words ? 4U : 1U) << rowBits, true)
    {
    }

    //! Texels at random, often 0 or 255 in each byte; from then on they may only be read.
    void Throw(Dice& dice)
    {
        for (std::size_t at = 0; at < m_fence.Size(); ++at)
        {
            const std::uint8_t byte = dice.NextByte();
            m_fence.Data()[at]      = dice.Of<std::uint8_t>({0, 255, byte, byte});
        }
        m_fence.MakeReadOnly();
    }

    bool          HasWords() const { return m_words; }
    Kanvo_Bitmap& Bitmap() { return m_bitmap; }
    std::uint8_t* Data() { return m_fence.Data(); }

    reference::Texels Texels()
    {
        return {m_words ? m_fence.As<std::uint32_t>() : nullptr, m_words ? nullptr : m_fence.Data(), m_width - 1,
                m_height - 1, m_rowBits};
    }

    std::string Described() const
    {
        return std::to_string(m_width) + "x" + std::to_string(m_height) + (m_words ? " words" : " bytes") +
               " in rows of " + std::to_string(1U << m_rowBits);
    }

private:
    bool      m_words;
    unsigned  m_rowBits;
    unsigned  m_width;
    unsigned  m_height;
    Fence     m_fence;
    AnySource m_bitmap;
};

}  // namespace support

#endif
