// Fence: memory from mmap with a protected page on either side.
#include "Fence.h"

#include <cstring>
#include <new>

#include <sys/mman.h>
#include <unistd.h>

namespace support
{

namespace
{

constexpr std::uint8_t DATA_BYTE  = 0xA5;
constexpr std::uint8_t SLACK_BYTE = 0x5C;

}  // namespace

Fence::Fence(std::size_t bytes, Against end)
    : m_size(bytes),
      m_pageSize(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)))
{
    m_usableSize = (bytes + m_pageSize - 1) / m_pageSize * m_pageSize;  // nothing where bytes is 0
    void* const mapping =
        mmap(nullptr, m_usableSize + 2 * m_pageSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapping == MAP_FAILED) throw std::bad_alloc();
    m_pages  = static_cast<std::uint8_t*>(mapping);
    m_usable = m_pages + m_pageSize;
    // nothing to open where there is nothing: emulators refuse an empty range
    if (m_usableSize != 0 && mprotect(m_usable, m_usableSize, PROT_READ | PROT_WRITE) != 0)
    {
        munmap(m_pages, m_usableSize + 2 * m_pageSize);
        throw std::bad_alloc();
    }
    m_data = end == Against::FrontFence ? m_usable : m_usable + (m_usableSize - bytes);
    std::memset(m_usable, SLACK_BYTE, m_usableSize);
    std::memset(m_data, DATA_BYTE, bytes);
}

Fence::~Fence()
{
    munmap(m_pages, m_usableSize + 2 * m_pageSize);
}

void Fence::MakeReadOnly()
{
    if (m_usableSize != 0 && mprotect(m_usable, m_usableSize, PROT_READ) != 0) throw std::bad_alloc();
}

bool Fence::IsSlackUntouched() const
{
    for (std::size_t index = 0; index < m_usableSize; ++index)
    {
        const std::uint8_t* const at     = m_usable + index;
        const bool                inside = at >= m_data && at < m_data + m_size;
        if (!inside && *at != SLACK_BYTE) return false;
    }
    return true;
}

}  // namespace support
