#include "Bench_Picture.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <sys/mman.h>

namespace bench
{

Buffer::Buffer(std::size_t bytes, std::size_t offset)
{
    constexpr std::size_t HUGE_PAGE = std::size_t{2} << 20;
    const std::size_t     pages     = (bytes + offset + 8192 + HUGE_PAGE - 1) & ~(HUGE_PAGE - 1);
    m_length                        = pages + HUGE_PAGE;
    m_mapping = mmap(nullptr, m_length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (m_mapping == MAP_FAILED)
    {
        std::perror("kanvo-bench: no memory");
        std::exit(1);
    }
    const std::uintptr_t start = (reinterpret_cast<std::uintptr_t>(m_mapping) + HUGE_PAGE - 1) & ~(HUGE_PAGE - 1);
    madvise(reinterpret_cast<void*>(start), pages, MADV_HUGEPAGE);  // refused is no harm
    m_bytes = reinterpret_cast<std::uint8_t*>(start) + offset;
    std::fill_n(m_bytes, bytes, std::uint8_t{0});  // now, not when it is first drawn into
}

Buffer::~Buffer()
{
    munmap(m_mapping, m_length);
}

void FillWithGradient(Picture& picture)
{
    for (int y = 0; y < picture.height; ++y)
    {
        for (int x = 0; x < picture.width; ++x)
        {
            const auto red    = static_cast<std::uint32_t>(x * 255 / picture.width),
                       green  = static_cast<std::uint32_t>(y * 255 / picture.height),
                       blue   = static_cast<std::uint32_t>(x + y) & 255;
            *picture.At(x, y) = 0xFF000000u | red << 16 | green << 8 | blue;
        }
    }
}

void FillWithBlack(Picture& picture)
{
    std::fill_n(picture.Pixels(), picture.Count(), 0xFF000000u);
}

std::uint32_t Premultiplied(std::uint32_t argb)
{
    const std::uint32_t alpha = argb >> 24;
    std::uint32_t       word  = alpha << 24;
    for (const int shift : {16, 8, 0})
    {
        const std::uint32_t product = Channel(argb, shift) * alpha + 128;
        word |= (product + (product >> 8)) >> 8 << shift;
    }
    return word;
}

}  // namespace bench
