// HeapWatch: see the header. This file is in front of the C library's allocation functions, which operator new and delete of the
// C++ library call too; those are here as well, because who called them is what has to be known.
#include "HeapWatch.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <new>

#include <gtest/gtest.h>

#include "Speed.h"

#if defined(__GLIBC__) && !SPEED_SANITIZED
#define HEAPWATCH_COUNTS 1
#else
#define HEAPWATCH_COUNTS 0
#endif
#if HEAPWATCH_COUNTS && defined(KANVO_TEST_LIBRARY_HAS_AREA)
#define HEAPWATCH_WATCHES 1
#include <dlfcn.h>
#include <unwind.h>
#else
#define HEAPWATCH_WATCHES 0
#endif

namespace
{

bool        g_counting = false;
std::size_t g_calls    = 0;

char        g_complaint[2000] = "";
std::size_t g_librarys        = 0;

}  // namespace

#if HEAPWATCH_WATCHES

extern "C"
{
    extern const char __executable_start;  // the linker's
    extern const char etext;
    extern const char kanvo_setup_begin;  // heap_watch.ld
    extern const char kanvo_drawing_begin;
    extern const char kanvo_drawing_end;
}

namespace
{

thread_local bool g_looking = false;  // while the watch itself works

bool IsBetween(const void* address, const char& begin, const char& end)
{
    return address >= &begin && address < &end;
}
bool IsOfProgram(const void* address)
{
    return IsBetween(address, __executable_start, etext);
}
bool IsOfLibrary(const void* address)
{
    return IsBetween(address, kanvo_setup_begin, kanvo_drawing_end);
}

//! The callers of a call: those of the C and C++ libraries are passed over, then those of the library are kept.
struct Chain
{
    static constexpr int MOST = 32;

    const void* asker;  // whom the wrapper returns to; before it come the frames of this file
    bool        isReached = false;
    bool        isDrawing = false;
    int         count     = 0;
    const void* callers[MOST];
};

_Unwind_Reason_Code Walk(_Unwind_Context* context, void* argument)
{
    Chain&            chain  = *static_cast<Chain*>(argument);
    const auto* const caller = reinterpret_cast<const char*>(_Unwind_GetIP(context));
    chain.isReached          = chain.isReached || caller == chain.asker;
    if (!chain.isReached) return _URC_NO_REASON;
    if (!IsOfLibrary(caller)) return chain.count == 0 && !IsOfProgram(caller) ? _URC_NO_REASON : _URC_END_OF_STACK;
    chain.isDrawing = chain.isDrawing || caller >= &kanvo_drawing_begin;
    if (chain.count < Chain::MOST) chain.callers[chain.count++] = caller;
    return _URC_NO_REASON;
}

//! Names where the program shows them, and addresses in its file for addr2line.
std::string Told(const Chain& chain, const char* function)
{
    std::string text = std::string(function) + ", called by";
    for (int index = 0; index < chain.count; ++index)
    {
        Dl_info    symbol{};
        const bool isKnown = dladdr(chain.callers[index], &symbol) != 0 && symbol.dli_fbase != nullptr;
        char       place[40];
        std::snprintf(place, sizeof place, " 0x%zx",
                      static_cast<std::size_t>(static_cast<const char*>(chain.callers[index]) -
                                               static_cast<const char*>(isKnown ? symbol.dli_fbase : nullptr)));
        text += place;
        if (isKnown && symbol.dli_sname != nullptr) text += std::string(" ") + symbol.dli_sname;
    }
    return text;
}

void Look(const void* asker, const char* function)
{
    if (IsOfProgram(asker) && !IsOfLibrary(asker)) return;
    if (g_looking) return;
    g_looking = true;
    Chain chain{};
    chain.asker = asker;
    _Unwind_Backtrace(&Walk, &chain);
    g_librarys += chain.count != 0 && !chain.isDrawing;
    if (chain.isDrawing && *g_complaint == '\0')
    {
        std::snprintf(g_complaint, sizeof g_complaint, "%s", Told(chain, function).c_str());
    }
    g_looking = false;
}

//! Fails the test in which there was something to complain of.
class Listener : public testing::EmptyTestEventListener
{
    void OnTestEnd(const testing::TestInfo&) override
    {
        const std::string complaint = support::TakeHeapComplaint();
        if (!complaint.empty())
        {
            ADD_FAILURE() << "the library called the heap while it drew: " << complaint
                          << " (the numbers are for: addr2line -fipCe <this program>)";
        }
    }
};

[[maybe_unused]] const bool g_isListening = []
{
    testing::UnitTest::GetInstance()->listeners().Append(new Listener);
    return true;
}();

}  // namespace

#elif HEAPWATCH_COUNTS

namespace
{

void Look(const void*, const char*) {}

}  // namespace

#endif

#if HEAPWATCH_COUNTS

namespace
{

void Note(const void* asker, const char* function)
{
    g_calls += g_counting;
    Look(asker, function);
}

}  // namespace

#define NOTE(function) Note(__builtin_return_address(0), function)

extern "C"
{
    void* __libc_malloc(std::size_t bytes);
    void* __libc_calloc(std::size_t count, std::size_t bytes);
    void* __libc_realloc(void* block, std::size_t bytes);
    void* __libc_memalign(std::size_t alignment, std::size_t bytes);
    void  __libc_free(void* block);

    void* malloc(std::size_t bytes) noexcept
    {
        NOTE("malloc");
        return __libc_malloc(bytes);
    }
    void* calloc(std::size_t count, std::size_t bytes) noexcept
    {
        NOTE("calloc");
        return __libc_calloc(count, bytes);
    }
    void* realloc(void* block, std::size_t bytes) noexcept
    {
        NOTE("realloc");
        return __libc_realloc(block, bytes);
    }
    void* aligned_alloc(std::size_t alignment, std::size_t bytes) noexcept
    {
        NOTE("aligned_alloc");
        return __libc_memalign(alignment, bytes);
    }
    void* memalign(std::size_t alignment, std::size_t bytes) noexcept
    {
        NOTE("memalign");
        return __libc_memalign(alignment, bytes);
    }
    int posix_memalign(void** block, std::size_t alignment, std::size_t bytes) noexcept
    {
        NOTE("posix_memalign");
        *block = __libc_memalign(alignment, bytes);
        return *block == nullptr ? ENOMEM : 0;
    }
    void free(void* block) noexcept
    {
        if (block != nullptr) NOTE("free");
        __libc_free(block);
    }
}

void* operator new(std::size_t bytes)
{
    NOTE("operator new");
    void* const block = __libc_malloc(bytes != 0 ? bytes : 1);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
void* operator new[](std::size_t bytes)
{
    NOTE("operator new[]");
    void* const block = __libc_malloc(bytes != 0 ? bytes : 1);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
void operator delete(void* block) noexcept
{
    if (block != nullptr) NOTE("operator delete");
    __libc_free(block);
}
void operator delete[](void* block) noexcept
{
    if (block != nullptr) NOTE("operator delete[]");
    __libc_free(block);
}
void operator delete(void* block, std::size_t) noexcept
{
    if (block != nullptr) NOTE("operator delete");
    __libc_free(block);
}
void operator delete[](void* block, std::size_t) noexcept
{
    if (block != nullptr) NOTE("operator delete[]");
    __libc_free(block);
}

#endif

namespace support
{

bool CountsHeap()
{
    return HEAPWATCH_COUNTS != 0;
}

bool WatchesHeap()
{
    return HEAPWATCH_WATCHES != 0;
}

HeapCount::HeapCount()
{
    g_calls    = 0;
    g_counting = true;
}

HeapCount::~HeapCount()
{
    g_counting = false;
}

std::size_t HeapCount::Calls()
{
    g_counting = false;
    return g_calls;
}

std::string TakeHeapComplaint()
{
    std::string complaint = g_complaint;
    *g_complaint          = '\0';
    return complaint;
}

std::size_t HeapCallsOfLibrary()
{
    return g_librarys;
}

}  // namespace support
