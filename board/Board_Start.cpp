// Board_Start: from start.S to main: opens newlib's semihosting files, runs constructors, takes the command line apart.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "Board_Semihosting.h"

int main(int argc, char** argv);

extern "C"
{
    void              initialise_monitor_handles();
    void              __libc_init_array();
    [[noreturn]] void Board_Run();

    void* __dso_handle =
        nullptr;  // asked for by static destructors; the compiler's start files, which have it, are left out

    void _init() {}  // called by newlib
    void _fini() {}
}

namespace
{

constexpr std::size_t LineSize     = 512;
constexpr int         ArgumentsMax = 16;

char  g_line[LineSize];
char* g_arguments[ArgumentsMax + 1];

//! Words are parted by spaces; there is no quoting.
int SplitLine()
{
    int  count  = 0;
    bool inWord = false;
    for (char* at = g_line; *at != '\0'; ++at)
    {
        if (*at == ' ')
        {
            *at    = '\0';
            inWord = false;
        }
        else if (!inWord && count < ArgumentsMax)
        {
            g_arguments[count++] = at;
            inWord               = true;
        }
    }
    return count;
}

}  // namespace

void Board_Run()
{
    initialise_monitor_handles();
    __libc_init_array();

    struct
    {
        char*         text;
        std::uint32_t size;
    } block = {g_line, LineSize - 1};
    if (board::Semihosting(board::SYS_GET_CMDLINE, &block) != 0)
    {
        g_line[0] = '\0';
    }
    std::exit(main(SplitLine(), g_arguments));
}
