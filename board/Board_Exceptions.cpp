// Board_Exceptions: what is said when the processor gives up: what happened, where, and at which address. Called by start.S
// with the stack of the exception's mode; uses nothing that could fail again. The exit status is 100 and the kind.
#include "Board.h"
#include "Board_Semihosting.h"

extern "C" [[noreturn]] void Board_Exception(std::uint32_t kind, std::uint32_t address);

namespace
{

void (*g_hook)() = nullptr;

const char* NameOf(std::uint32_t kind)
{
    switch (kind)
    {
    case 1: return "undefined instruction";
    case 2: return "supervisor call";
    case 3: return "prefetch abort";
    case 4: return "data abort";
    default: return "unexpected exception";
    }
}

void PrintHex(const char* label, std::uint32_t value)
{
    char  text[9];
    char* at = text;
    for (int shift = 28; shift >= 0; shift -= 4)
    {
        *at++ = "0123456789abcdef"[value >> shift & 15];
    }
    *at = '\0';
    board::Print(label);
    board::Print(text);
}

}  // namespace

void Board_Exception(std::uint32_t kind, std::uint32_t address)
{
    std::uint32_t status = 0;
    std::uint32_t fault  = 0;
    board::Print("board: ");
    board::Print(NameOf(kind));
    PrintHex(" at ", address);
    if (kind == 4)
    {
        asm volatile("mrc p15, 0, %0, c5, c0, 0" : "=r"(status));
        asm volatile("mrc p15, 0, %0, c6, c0, 0" : "=r"(fault));
        PrintHex(", address ", fault);
        PrintHex(", status ", status);
    }
    board::Print("\n");
    if (g_hook != nullptr)
    {
        g_hook();
    }
    board::Exit(100 + static_cast<int>(kind));
}

void board::SetExceptionHook(void (*hook)())
{
    g_hook = hook;
}

void board::Print(const char* text)
{
    Semihosting(SYS_WRITE0, text);
}

void board::Exit(int status)
{
    const struct
    {
        std::uint32_t reason;
        std::int32_t  status;
    } block = {0x20026, status};  // ADP_Stopped_ApplicationExit
    for (;;)
    {
        Semihosting(SYS_EXIT_EXTENDED, &block);
    }
}
