// Board_Pages: mmap, mprotect and munmap on the bare board: addresses above the RAM are divided into pages of 4 KB, each of
// which the memory management unit opens, opens for reading, or closes. So the fences of the tests are as real here as under an
// operating system: who touches a closed page ends in a data abort (exit status 104).
//
// start.S has mapped the whole address space in sections of one megabyte. Those from Begin to End are taken from it: closed, or
// divided by a table of 256 pages. Pages lie in the RAM behind that of the program (board_pool_begin, board.ld).
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <map>
#include <new>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "Board.h"

extern "C"
{
    extern std::uint32_t board_map[];         // start.S
    extern std::uint8_t  board_pool_begin[];  // board.ld
    extern std::uint8_t  board_pool_end[];
}

namespace
{

constexpr std::uintptr_t Begin    = 0x80000000;
constexpr std::uintptr_t End      = 0xF0000000;
constexpr std::size_t    PageSize = 4096;
constexpr std::size_t    Section  = 1024 * 1024;
constexpr std::size_t    Pages    = Section / PageSize;

// Entries of the tables. A closed page keeps its memory: of an entry that ends in two zeros the processor reads no more.
constexpr std::uint32_t Divided  = 0x001;
constexpr std::uint32_t ReadOnly = 0x25F;  // normal, write-back, never executed
constexpr std::uint32_t Open     = 0x05F;
constexpr std::uint32_t Closed   = 0x000;
constexpr std::uint32_t Bits     = 0xFFF;

struct Table
{
    alignas(Pages * 4) std::uint32_t page[Pages];
};

std::map<std::uintptr_t, std::size_t> g_mappings;  // begin and bytes
std::vector<std::uint32_t>            g_returned;
std::uint8_t*                         g_fresh = board_pool_begin;

std::size_t Rounded(std::size_t bytes)
{
    return (bytes + PageSize - 1) & ~(PageSize - 1);
}

//! The processor reads the tables from memory, and keeps what it read.
void Tell(const std::uint32_t* entries, std::size_t count)
{
    board::CleanCache(entries, count * sizeof *entries);
    asm volatile("mcr p15, 0, %0, c8, c7, 0\n dsb\n isb" ::"r"(0) : "memory");
}

std::uint32_t& EntryOf(std::uintptr_t address)
{
    std::uint32_t& section = board_map[address / Section];
    if (section == Closed)
    {
        section = reinterpret_cast<std::uintptr_t>(new Table{}) | Divided;
        Tell(&section, 1);
    }
    return reinterpret_cast<Table*>(section & ~std::uint32_t{0x3FF})->page[address / PageSize % Pages];
}

//! The memory of a page, or 0 where there is none left.
std::uint32_t TakePage()
{
    std::uint8_t* page = g_fresh;
    if (!g_returned.empty())
    {
        page = reinterpret_cast<std::uint8_t*>(g_returned.back());
        g_returned.pop_back();
    }
    else if (g_fresh == board_pool_end)
    {
        return 0;
    }
    else
    {
        g_fresh += PageSize;
    }
    std::memset(page, 0, PageSize);
    return reinterpret_cast<std::uintptr_t>(page);
}

//! Where so many bytes are free: the first place that is large enough.
std::uintptr_t FindPlace(std::size_t bytes)
{
    std::uintptr_t place = Begin;
    for (const auto& [begin, size] : g_mappings)
    {
        if (begin - place >= bytes) return place;
        place = begin + size;
    }
    return End - place >= bytes ? place : 0;
}

int Fail(int number)
{
    errno = number;
    return -1;
}

struct sigaction g_actions[NSIG];

//! A data abort is what a system would call a segmentation fault.
void OnFault()
{
    const auto handler = g_actions[SIGSEGV].sa_handler;
    if (handler != SIG_DFL && handler != SIG_IGN) handler(SIGSEGV);
}

}  // namespace

void* mmap(void*, std::size_t bytes, int protection, int, int, long)
{
    if (g_mappings.empty() && g_fresh == board_pool_begin)
    {
        std::memset(&board_map[Begin / Section], 0, (End - Begin) / Section * sizeof *board_map);
        Tell(&board_map[Begin / Section], (End - Begin) / Section);
    }
    bytes                      = Rounded(bytes);
    const std::uintptr_t place = bytes != 0 && bytes < End - Begin ? FindPlace(bytes) : 0;
    if (place == 0)
    {
        errno = ENOMEM;
        return MAP_FAILED;
    }
    g_mappings[place]  = bytes;
    void* const result = reinterpret_cast<void*>(place);
    if (protection != PROT_NONE && mprotect(result, bytes, protection) != 0)
    {
        munmap(result, bytes);
        return MAP_FAILED;
    }
    return result;
}

int mprotect(void* begin, std::size_t bytes, int protection)
{
    const auto first = reinterpret_cast<std::uintptr_t>(begin);
    bytes            = Rounded(bytes);
    const auto after = g_mappings.upper_bound(first);
    if (first % PageSize != 0 || bytes == 0 || after == g_mappings.begin()) return Fail(EINVAL);
    const auto& [mapped, size] = *std::prev(after);
    if (first + bytes > mapped + size) return Fail(ENOMEM);

    const std::uint32_t kind = (protection & PROT_WRITE) != 0 ? Open : protection != PROT_NONE ? ReadOnly : Closed;
    for (std::uintptr_t page = first; page < first + bytes; page += PageSize)
    {
        std::uint32_t& entry  = EntryOf(page);
        std::uint32_t  memory = entry & ~Bits;
        if (memory == 0 && kind != Closed && (memory = TakePage()) == 0) return Fail(ENOMEM);
        entry = memory | kind;
        board::CleanCache(&entry, sizeof entry);
    }
    Tell(nullptr, 0);
    return 0;
}

int munmap(void* begin, std::size_t bytes)
{
    const auto found = g_mappings.find(reinterpret_cast<std::uintptr_t>(begin));
    if (found == g_mappings.end() || found->second != Rounded(bytes)) return Fail(EINVAL);
    for (std::uintptr_t page = found->first; page < found->first + found->second; page += PageSize)
    {
        if (board_map[page / Section] == Closed) continue;
        std::uint32_t& entry = EntryOf(page);
        if ((entry & ~Bits) != 0) g_returned.push_back(entry & ~Bits);
        entry = Closed;
        board::CleanCache(&entry, sizeof entry);
    }
    Tell(nullptr, 0);
    g_mappings.erase(found);
    return 0;
}

long sysconf(int name)
{
    return name == _SC_PAGESIZE ? static_cast<long>(PageSize) : -1;
}

int sigaction(int number, const struct sigaction* action, struct sigaction* before)
{
    if (number <= 0 || number >= NSIG) return Fail(EINVAL);
    if (before != nullptr) *before = g_actions[number];
    if (action != nullptr) g_actions[number] = *action;
    board::SetExceptionHook(&OnFault);
    return 0;
}
