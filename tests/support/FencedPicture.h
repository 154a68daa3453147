// FencedPicture: a picture to read from, flush with a fence: behind its last pixel, or before its first one, nothing may
// be read, and nothing written at all. A stock of them serves millions of calls.
#ifndef FENCEDPICTURE_H
#define FENCEDPICTURE_H

#include <memory>
#include <vector>

#include "Dice.h"
#include "Fence.h"
#include "RandomRows.h"
#include "Reference_Blit.h"

namespace support
{

class FencedPicture
{
public:
    FencedPicture(reference::Format format, unsigned width, unsigned height, unsigned padding, Against end, Dice& dice)
        : m_width(width),
          m_height(height),
          m_pitch((width + padding) * BytesOf(format)),
          m_format(format),
          m_fence(Fence::BytesFor(width, height, m_pitch, BytesOf(format)), end)
    {
        const Content content = dice.Of({Content::Random, Content::Hostile, Content::Runs});
        FillPixels(m_fence.Data(), m_fence.Size(), content, dice);
        m_fence.MakeReadOnly();
    }

    static constexpr unsigned BytesOf(reference::Format format)
    {
        return format == reference::Format::Argb32 ? 4 : format == reference::Format::Rgb565 ? 2 : 1;
    }

    reference::Picture AsPicture() { return {m_format, m_width, m_height, m_pitch, m_fence.Data(), false}; }

    unsigned      Width() const { return m_width; }
    unsigned      Height() const { return m_height; }
    unsigned      Pitch() const { return m_pitch; }
    std::uint8_t* Data() { return m_fence.Data(); }

private:
    unsigned          m_width;
    unsigned          m_height;
    unsigned          m_pitch;
    reference::Format m_format;
    Fence             m_fence;
};

//! Narrow ones and wide ones, the same in every run.
class FencedPictures
{
public:
    explicit FencedPictures(reference::Format format)
    {
        Dice dice(29);
        for (unsigned index = 0; index < COUNT; ++index)
        {
            const unsigned width   = index % 2 == 0 ? 2 + dice.Below(12) : 129 + dice.Below(100);
            const unsigned height  = 2 + dice.Below(9);
            const unsigned padding = dice.Of({0U, 0U, 1U, 5U});
            const auto     end     = dice.Of({Against::BackFence, Against::FrontFence});
            m_pictures.push_back(std::make_unique<FencedPicture>(format, width, height, padding, end, dice));
        }
    }

    FencedPicture& Any(Dice& dice) { return *m_pictures[dice.Below(COUNT)]; }
    FencedPicture& AnyWide(Dice& dice) { return *m_pictures[dice.Below(COUNT / 2) * 2 + 1]; }

private:
    static constexpr unsigned                   COUNT = 64;
    std::vector<std::unique_ptr<FencedPicture>> m_pictures;
};

}  // namespace support

#endif
