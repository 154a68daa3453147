// A user's program: draws a few rectangles into memory of its own and looks at some pixels. Knows Kanvo.h alone, and
// derives from a class of the library, which needs more of it than calling does.
#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

#include <Kanvo.h>

namespace
{

//! Memory of the program's own, as firmware with a fixed place for its frame buffer has it.
class FixedMemory : public Kanvo
{
public:
    void* AllocBitmapBuffer(Tov_UInt /*type*/, Tov_UByte /*bufferType*/, Tov_UInt width, Tov_UInt height) override
    {
        m_pixels.resize(static_cast<std::size_t>(width) * height);
        return m_pixels.data();
    }
    void FreeBitmapBuffer(void* /*buffer*/, Tov_UByte /*bufferType*/) override {}

    std::vector<std::uint32_t> m_pixels;
};

}  // namespace

int main()
{
    constexpr Tov_UInt width = 40, height = 30;

    FixedMemory                       memory;
    Kanvo_Screen                      screen(&memory);
    Kanvo_BitmapARGB32                target(&screen, width, height);
    const std::vector<std::uint32_t>& pixels = memory.m_pixels;

    target.Lock();
    target.Clear(0xFF000000u);
    target.FillRect(20, 10, 5, 5, 0xFFC02010u, 0);          // opaque
    target.FillRect(20, 10, 15, 10, 0x8000FF00u, 0);        // half of it lies on the first
    target.FillRect(1000, 1000, -990, 20, 0xFF0000FFu, 0);  // cut off on the left and below
    target.Unlock(0, 0, width - 1, height - 1);

    // At alpha 128 a channel is (old * 128 + new * 128) / 256: (192, 32, 16) and (0, 255, 0) give (96, 143, 8).
    struct Expectation
    {
        Tov_UInt      x, y;
        std::uint32_t color;
    };
    const Expectation expectations[] = {
        {4, 5, 0xFF000000u},   {5, 5, 0xFFC02010u},   {14, 14, 0xFFC02010u}, {25, 5, 0xFF000000u},
        {15, 10, 0xFF608F08u}, {24, 14, 0xFF608F08u}, {34, 19, 0xFF007F00u}, {35, 19, 0xFF000000u},
        {9, 20, 0xFF0000FFu},  {10, 20, 0xFF000000u}, {0, 29, 0xFF0000FFu},
    };
    // Sources on the heap, of every class: what that takes of the library is in it, whatever this program is compiled with.
    const std::uint8_t                         cover[4]   = {};
    const std::uint16_t                        colours[4] = {};
    const std::uint32_t                        words[4]   = {};
    std::vector<std::unique_ptr<Kanvo_Bitmap>> sources;
    sources.push_back(std::make_unique<Kanvo_BitmapA8>(&screen, 2, 2, cover));
    sources.push_back(std::make_unique<Kanvo_BitmapRGB32>(&screen, 2, 2, words));
    sources.push_back(std::make_unique<Kanvo_BitmapRGB565>(&screen, 2, 2, colours));

    int failures = 0;
    for (const std::unique_ptr<Kanvo_Bitmap>& source : sources)
    {
        failures += source->GetWidth() == 2 ? 0 : 1;
    }
    for (const Expectation& e : expectations)
    {
        const std::uint32_t color = pixels[e.y * width + e.x];
        if (color != e.color)
        {
            std::printf("pixel (%u, %u): expected %08X, got %08X\n", static_cast<unsigned>(e.x),
                        static_cast<unsigned>(e.y), static_cast<unsigned>(e.color), static_cast<unsigned>(color));
            ++failures;
        }
    }
    return failures == 0 ? 0 : 1;
}
