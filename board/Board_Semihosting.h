// Board_Semihosting: calls of the machine that emulates this one. Works in every mode, also when nothing else does any more.
#ifndef BOARD_SEMIHOSTING_H
#define BOARD_SEMIHOSTING_H

#include <cstdint>

namespace board
{

enum SemihostingCall : std::uint32_t
{
    SYS_WRITE0        = 0x04,
    SYS_GET_CMDLINE   = 0x15,
    SYS_EXIT_EXTENDED = 0x20
};

inline std::int32_t Semihosting(SemihostingCall call, const void* block)
{
    register std::uint32_t r0 asm("r0") = call;
    register const void*   r1 asm("r1") = block;
    asm volatile("svc 0x123456" : "+r"(r0) : "r"(r1) : "memory", "lr");
    return static_cast<std::int32_t>(r0);
}

}  // namespace board

#endif
