// MemoryLimit: a scope in which the whole program has half a gigabyte of address space, so that larger allocations fail
// as they would on a small device.
#ifndef MEMORYLIMIT_H
#define MEMORYLIMIT_H

#include <sys/resource.h>

namespace support
{

class MemoryLimit
{
public:
    static constexpr unsigned long BYTES = 512UL * 1024 * 1024;

    MemoryLimit()
    {
        m_isSet        = getrlimit(RLIMIT_AS, &m_before) == 0;
        rlimit small   = m_before;
        small.rlim_cur = BYTES;
        m_isSet        = m_isSet && setrlimit(RLIMIT_AS, &small) == 0;
        // QEMU's user mode says yes and sets nothing: only what can be read back is a limit.
        m_isSet = m_isSet && getrlimit(RLIMIT_AS, &small) == 0 && small.rlim_cur == BYTES;
    }
    ~MemoryLimit()
    {
        if (m_isSet) setrlimit(RLIMIT_AS, &m_before);
    }
    MemoryLimit(const MemoryLimit&)            = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;

    bool IsSet() const { return m_isSet; }

    //! Not under the address sanitizer, which takes terabytes of address space and gives up where it gets none;
    //! not where the processor is emulated.
    static bool IsPossible()
    {
#if defined(__SANITIZE_ADDRESS__)
        return false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
        return false;
#else
        return MemoryLimit().IsSet();
#endif
#else
        return MemoryLimit().IsSet();
#endif
    }

private:
    rlimit m_before{};
    bool   m_isSet = false;
};

}  // namespace support

#endif
