// sys/mman.h for the bare board: what tests ask of an operating system's memory. The work is done in Board_Pages.cpp.
#ifndef SYS_MMAN_H
#define SYS_MMAN_H

#include <cstddef>

constexpr int PROT_NONE     = 0;
constexpr int PROT_READ     = 1;
constexpr int PROT_WRITE    = 2;
constexpr int MAP_PRIVATE   = 1;
constexpr int MAP_ANONYMOUS = 2;
constexpr int MAP_NORESERVE = 4;

inline void* const MAP_FAILED = reinterpret_cast<void*>(-1);

extern "C"
{
    //! Fresh addresses, zeroed where they are opened. The first argument, file and offset are of no account.
    void* mmap(void* where, std::size_t bytes, int protection, int flags, int file, long offset);
    int   mprotect(void* begin, std::size_t bytes, int protection);
    int   munmap(void* begin, std::size_t bytes);
}

#endif
