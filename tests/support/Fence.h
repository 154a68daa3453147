// Fence: memory between two pages that nobody may touch. Whoever reads or writes one byte beyond the flush end is
// stopped by the processor; what is written beyond the other end is found by IsSlackUntouched.
//
//   Against::FrontFence     |////////|data.......slack|////////|
//   Against::BackFence      |////////|slack.......data|////////|
#ifndef FENCE_H
#define FENCE_H

#include <cstddef>
#include <cstdint>

namespace support
{

enum class Against
{
    FrontFence,
    BackFence
};

class Fence
{
public:
    //! bytes of memory, each 0xA5, flush against one of the fences. 0 bytes are allowed: then any access is stopped.
    //! Against the back fence the data is aligned as its size is.
    explicit Fence(std::size_t bytes, Against end = Against::BackFence);
    ~Fence();
    Fence(const Fence&)            = delete;
    Fence& operator=(const Fence&) = delete;

    std::uint8_t* Data() { return m_data; }
    std::size_t   Size() const { return m_size; }

    //! The data as pixels: fence.As<std::uint32_t>()[5].
    template <class Pixel>
    Pixel* As()
    {
        return reinterpret_cast<Pixel*>(m_data);
    }

    //! From now on reading is all that is allowed.
    void MakeReadOnly();

    //! Whether the bytes between the data and the page's other end are as they were.
    bool IsSlackUntouched() const;

    //! Bytes that a picture needs: no padding behind its last row, so that the fence stands right behind the pixels.
    static constexpr std::size_t BytesFor(std::size_t width, std::size_t height, std::size_t pitch,
                                          std::size_t pixelBytes)
    {
        return height == 0 ? 0 : (height - 1) * pitch + width * pixelBytes;
    }

private:
    std::uint8_t* m_pages;       // the front fence
    std::uint8_t* m_usable;      // between the fences
    std::size_t   m_usableSize;  // whole pages
    std::uint8_t* m_data;
    std::size_t   m_size;
    std::size_t   m_pageSize;
};

}  // namespace support

#endif
