// Board: what programs on the bare Cortex-A9 use of the machine, QEMU's vexpress-a9: the LCD controller, a clock, the serial
// line, the timer interrupt. There is no operating system; output and exit status go through semihosting, by newlib.
// start.S and Board_Start.cpp lead to main.
#ifndef BOARD_H
#define BOARD_H

#include <cstddef>
#include <cstdint>

namespace board
{

// ---- display --------------------------------------------------------------------------------------------------------------

constexpr std::uint32_t ScreenWidth  = 480;
constexpr std::uint32_t ScreenHeight = 272;

//! The pixels on the screen, 0xAARRGGBB, rows of ScreenWidth without padding; the controller ignores alpha.
std::uint32_t* Screen();

//! Has the controller show Screen() from now on.
void StartDisplay();

//! Writes what the data cache holds of an area back to memory, where alone the display controller reads. After drawing.
void CleanCache(const void* begin, std::size_t bytes);

// ---- time and console -----------------------------------------------------------------------------------------------------

//! Ticks of the global timer, which was started by the first call. With -icount shift=0 QEMU ticks every ten instructions.
std::uint64_t Ticks();

//! Without -icount.
constexpr std::uint64_t TicksPerSecond = 100000000;

//! Waits for a byte from the serial line.
int ReadSerial();

//! Ends the program at once, from anywhere; status becomes QEMU's own.
[[noreturn]] void Exit(int status);

//! Called when an exception has been reported, before the program ends: for a last word. It may only print.
void SetExceptionHook(void (*hook)());

//! Writes text, from anywhere, without buffers or memory.
void Print(const char* text);

// ---- stack ----------------------------------------------------------------------------------------------------------------

//! Bytes of the program's stack that were used at most since the start.
std::size_t StackUsed();

// ---- timer interrupt ------------------------------------------------------------------------------------------------------

//! Called at every tick with the stack pointer of what was interrupted, below which start.S has stored all its registers.
//! Returns the one to go on with: its own argument, or that of another task. Runs on the interrupted stack.
using TickHandler = std::uint32_t* (*)(std::uint32_t* stack);

//! Calls handler periodically; period in ticks of the private timer, half the processor's clock.
void StartTicking(TickHandler handler, std::uint32_t period);
void StopTicking();

}  // namespace board

#endif
