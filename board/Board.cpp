// Board: see the header. Registers are those of the ARM parts on the board: PL111 display, PL011 serial line, and the Cortex-A9's
// own timers and interrupt controller.
#include "Board.h"

extern "C"
{
    extern board::TickHandler board_interrupt;      // start.S
    extern std::uint32_t      board_stack_limit[];  // board.ld
    extern std::uint32_t      board_stack[];
}

namespace board
{
namespace
{

constexpr std::uint32_t Display     = 0x10020000;
constexpr std::uint32_t Serial      = 0x10009000;
constexpr std::uint32_t Interrupts  = 0x1E000100;  // of this core
constexpr std::uint32_t GlobalTimer = 0x1E000200;
constexpr std::uint32_t OwnTimer    = 0x1E000600;
constexpr std::uint32_t Distributor = 0x1E001000;
constexpr std::uint32_t OwnTimerId  = 29;

constexpr std::uint32_t CacheLine = 32;

volatile std::uint32_t& Register(std::uint32_t base, std::uint32_t offset)
{
    return *reinterpret_cast<volatile std::uint32_t*>(base + offset);
}

alignas(64) std::uint32_t g_pixels[ScreenWidth * ScreenHeight];

TickHandler g_handler = nullptr;

std::uint32_t* OnInterrupt(std::uint32_t* stack)
{
    const std::uint32_t which  = Register(Interrupts, 0x0C);
    Register(OwnTimer, 0x0C)   = 1;
    std::uint32_t* const next  = (which & 0x3FF) == OwnTimerId && g_handler != nullptr ? g_handler(stack) : stack;
    Register(Interrupts, 0x10) = which;
    return next;
}

}  // namespace

std::uint32_t* Screen()
{
    return g_pixels;
}

void StartDisplay()
{
    Register(Display, 0x00) = (ScreenWidth / 16 - 1) << 2;
    Register(Display, 0x04) = ScreenHeight - 1;
    Register(Display, 0x10) = reinterpret_cast<std::uintptr_t>(g_pixels);
    // on; 24 bits per pixel; a TFT; blue in the low byte, which the controller calls BGR; power
    Register(Display, 0x18) = 1U | 5U << 1 | 1U << 5 | 1U << 8 | 1U << 11;
}

void CleanCache(const void* begin, std::size_t bytes)
{
    const std::uintptr_t end = reinterpret_cast<std::uintptr_t>(begin) + bytes;
    for (std::uintptr_t line = reinterpret_cast<std::uintptr_t>(begin) & ~std::uintptr_t{CacheLine - 1}; line < end;
         line += CacheLine)
    {
        asm volatile("mcr p15, 0, %0, c7, c10, 1" ::"r"(line) : "memory");
    }
    asm volatile("dsb" ::: "memory");
}

std::uint64_t Ticks()
{
    Register(GlobalTimer, 0x08) = 1;
    for (;;)
    {
        const std::uint32_t high = Register(GlobalTimer, 4);
        const std::uint32_t low  = Register(GlobalTimer, 0);
        if (Register(GlobalTimer, 4) == high)
        {
            return std::uint64_t{high} << 32 | low;
        }
    }
}

int ReadSerial()
{
    Register(Serial, 0x30) = 0x301;  // on, both ways
    while ((Register(Serial, 0x18) & 0x10) != 0)
    {
    }
    return static_cast<int>(Register(Serial, 0x00) & 0xFF);
}

std::size_t StackUsed()
{
    const std::uint32_t* at = board_stack_limit;
    while (at < board_stack && *at == 0x57AC57AC)
    {
        ++at;
    }
    return static_cast<std::size_t>(board_stack - at) * sizeof *at;
}

void StartTicking(TickHandler handler, std::uint32_t period)
{
    g_handler       = handler;
    board_interrupt = OnInterrupt;

    Register(Distributor, 0x000) = 1;
    Register(Distributor, 0x100) = 1U << OwnTimerId;
    Register(Interrupts, 0x04)   = 0xF0;  // every priority passes
    Register(Interrupts, 0x00)   = 1;
    Register(OwnTimer, 0x00)     = period;
    Register(OwnTimer, 0x08)     = 7;  // on, again and again, with interrupt
    asm volatile("cpsie i" ::: "memory");
}

void StopTicking()
{
    asm volatile("cpsid i" ::: "memory");
    Register(OwnTimer, 0x08) = 0;
    Register(OwnTimer, 0x0C) = 1;
}

}  // namespace board
