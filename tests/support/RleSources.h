// RleSources: sources over stored images that say what the test wants of themselves, and remember who locked them.
#ifndef RLESOURCES_H
#define RLESOURCES_H

#include <string>
#include <vector>

#include "Kanvo.h"
#include "Kanvo_SourceBitmap.h"

namespace support
{

//! A bitmap of the wanted type and size whose Lock yields any bytes as they are. The image's own size may be another.
class UncheckedRle : public Kanvo_SourceBitmap
{
public:
    UncheckedRle(unsigned type, Tov_UInt width, Tov_UInt height, const void* image)
        : Kanvo_SourceBitmap(width, height, BBT_ROM),
          m_image(image)
    {
        m_uiType  = type;
        m_pBuffer = const_cast<void*>(image);
    }
    ~UncheckedRle() override { m_pBuffer = nullptr; }  // nobody's to free

    void* Lock() override
    {
        log.emplace_back("Lock");
        return const_cast<void*>(m_image);
    }
    void Unlock(Tov_UInt x1, Tov_UInt y1, Tov_UInt x2, Tov_UInt y2) override
    {
        log.push_back("Unlock(" + std::to_string(x1) + ", " + std::to_string(y1) + ", " + std::to_string(x2) + ", " +
                      std::to_string(y2) + ")");
    }

    Kanvo_Color ColorFromRGB(Tov_UByte, Tov_UByte, Tov_UByte) const override { return 0; }
    Kanvo_Color ColorFromARGB(Tov_UByte, Tov_UByte, Tov_UByte, Tov_UByte) const override { return 0; }
    Tov_Bool    ColorToRGB(Kanvo_Color, Tov_UByte&, Tov_UByte&, Tov_UByte&) const override { return false; }
    Tov_Bool    HasAlpha() const override { return true; }

    std::vector<std::string> log;

private:
    const void* m_image;
};

}  // namespace support

#endif
