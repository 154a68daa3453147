// Bench_Picture: memory to draw in and from, laid out so that figures of one run can be compared.
#ifndef BENCH_PICTURE_H
#define BENCH_PICTURE_H

#include <cstddef>
#include <cstdint>
#include <memory>

namespace bench
{

//! Added to the start of every source. Source and destination then never agree in the low twelve bits of their
//! addresses, which processors mistake for the same place; with buffers wherever they happen to lie, memcpy itself
//! takes either its time or twice that.
constexpr std::size_t SOURCE_OFFSET = 2048 + 256 + 64;

//! Zeroed memory on huge pages, where the system has them. Starts `offset` bytes behind the start of one.
class Buffer
{
public:
    explicit Buffer(std::size_t bytes, std::size_t offset = 0);
    ~Buffer();
    Buffer(const Buffer&)            = delete;
    Buffer& operator=(const Buffer&) = delete;

    std::uint8_t* Bytes() const { return m_bytes; }

private:
    void*         m_mapping = nullptr;
    std::size_t   m_length  = 0;
    std::uint8_t* m_bytes   = nullptr;
};

//! Rows of 0xAARRGGBB without padding.
struct Picture
{
    int    width;
    int    height;
    Buffer buffer;

    Picture(int w, int h, std::size_t offset = 0)
        : width(w),
          height(h),
          buffer(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * 4, offset)
    {
    }

    std::uint32_t* Pixels() const { return reinterpret_cast<std::uint32_t*>(buffer.Bytes()); }
    std::uint8_t*  Bytes() const { return buffer.Bytes(); }
    std::size_t    Count() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }
    int            Pitch() const { return width * 4; }
    std::uint32_t* At(int x, int y) const { return Pixels() + static_cast<std::ptrdiff_t>(y) * width + x; }
};

//! Every pixel by which colour runs from one side to the other, all of them opaque, as frame buffers are: straight and
//! premultiplied alpha then mean the same.
void FillWithGradient(Picture& picture);
void FillWithBlack(Picture& picture);

//! A colour or channel times alpha, rounded.
std::uint32_t Premultiplied(std::uint32_t argb);

constexpr std::uint32_t Channel(std::uint32_t argb, int shift)
{
    return argb >> shift & 255;
}

}  // namespace bench

#endif
