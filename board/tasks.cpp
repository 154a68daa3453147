// board-tasks: Kanvo under a pre-emptive scheduler. Two tasks draw all scenes, one forwards and one backwards; a third keeps a
// pattern in every floating-point register. The timer takes the processor away from them wherever they are, and every picture
// must still be the one that was drawn before there were tasks.
//
// What it shows, to be copied into a real system:
//
//   One task draws at a time     a lock around every drawing that shares a library object, here one scene at a time.
//   Registers belong to tasks    start.S stores all of d0 to d31 and FPSCR on each switch. Many systems do that only for tasks
//                                that were flagged for it: flag every one that draws.
//   Stack                        docs/FOOTPRINT.md says what a drawing call takes.
//
//   board-tasks            exit code 0: all pictures right, and tasks were interrupted while they drew
//   board-tasks --forget   hands the registers of one task to the next, as a switch that does not store them would:
//                          a picture is wrong, or there is an exception, or no end of it; never exit code 0
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <vector>

#include "Board.h"
#include "Scene_BuiltIn.h"

namespace
{

// ---- scheduler ------------------------------------------------------------------------------------------------------

constexpr std::uint32_t Period = 100000;  // ticks of the private timer
constexpr std::size_t Frame  = 82;  // words that start.S stores: d16-d31, d0-d15, FPSCR and one, r0-r12, lr, pc, status
constexpr std::size_t Floats = 64;  // the first of them
constexpr int         Tasks  = 4;   // with the one that is main

constexpr unsigned SwitchesMax =
    60000;  // several times as many as it takes: with wrong registers a drawing may never end

struct Task
{
    std::uint32_t* stack  = nullptr;
    bool           exists = false;
};

alignas(8) std::uint32_t g_stacks[Tasks][8192];
Task              g_tasks[Tasks];
volatile int      g_running  = 0;
bool              g_forget   = false;
volatile unsigned g_switches = 0;
volatile unsigned g_cut      = 0;  //!< switches in the middle of a drawing
std::atomic<bool> g_drawing{false};
volatile int      g_drawer = -1;

//! The next task in turn. See board::TickHandler.
std::uint32_t* SwitchTask(std::uint32_t* stack)
{
    const int before      = g_running;
    g_tasks[before].stack = stack;
    int next              = before;
    do {
        next = (next + 1) % Tasks;
    } while (!g_tasks[next].exists);
    g_running  = next;
    g_switches = g_switches + (next != before ? 1 : 0);
    g_cut      = g_cut + (g_drawer == before ? 1 : 0);
    if (g_forget && next != before)
    {
        std::memcpy(g_tasks[next].stack, stack, Floats * sizeof *stack);
    }
    return g_tasks[next].stack;
}

void StartTask(int number, void (*run)())
{
    std::uint32_t* const stack = g_stacks[number] + std::size(g_stacks[number]) - Frame;
    std::fill_n(stack, Frame, 0U);
    stack[Frame - 2]       = reinterpret_cast<std::uintptr_t>(run);
    stack[Frame - 1]       = 0x1F;  // system mode, interrupts on
    g_tasks[number].stack  = stack;
    g_tasks[number].exists = true;
}

void AwaitTick()
{
    asm volatile("wfi" ::: "memory");
}

[[noreturn]] void EndTask()
{
    g_tasks[g_running].exists = false;
    for (;;)
    {
        AwaitTick();
    }
}

//! Whoever draws holds it: the library has no locks of its own. Memory is handed out under it too, newlib has none either.
class DrawLock
{
public:
    DrawLock()
    {
        while (g_drawing.exchange(true))
        {
            AwaitTick();
        }
        g_drawer = g_running;
    }
    ~DrawLock()
    {
        g_drawer  = -1;
        g_drawing = false;
    }
    DrawLock(const DrawLock&)            = delete;
    DrawLock& operator=(const DrawLock&) = delete;
};

// ---- tasks ----------------------------------------------------------------------------------------------------------

struct Expected
{
    Tov_UInt portable  = 0;
    Tov_UInt optimised = 0;
};

Kanvo_Screen*         g_screen = nullptr;
const scenes::Input*  g_input  = nullptr;
std::vector<Expected> g_expected;  // by scene
Kanvo_BitmapARGB32*   g_targets[2] = {};
volatile unsigned     g_right      = 0;
volatile unsigned     g_wrong      = 0;

void DrawAll(Kanvo_BitmapARGB32& target, bool backwards)
{
    const scenes::Table<scenes::Scene> all = scenes::All();
    for (std::size_t turn = 0; turn < all.size(); ++turn)
    {
        const std::size_t index = backwards ? all.size() - 1 - turn : turn;
        for (const Optimized_Blit setting : {OB_NONE, OB_NEON})
        {
            const Tov_UInt expected = setting == OB_NONE ? g_expected[index].portable : g_expected[index].optimised;
            const DrawLock lock;
            const bool     right = scenes::Drawn(all.first[index], target, *g_input, *g_screen, setting) == expected;
            (right ? g_right : g_wrong) = (right ? g_right : g_wrong) + 1;
        }
    }
}

void DrawForwards()
{
    DrawAll(*g_targets[0], false);
    EndTask();
}

void DrawBackwards()
{
    DrawAll(*g_targets[1], true);
    EndTask();
}

volatile unsigned g_turns = 0;
volatile unsigned g_lost  = 0;  //!< registers that came back changed

//! Fills d0 to d31 with its own numbers, waits a little, and looks at them.
void KeepRegisters()
{
    for (;;)
    {
        alignas(8) std::uint32_t mine[Floats];
        alignas(8) std::uint32_t found[Floats];
        for (std::uint32_t index = 0; index < Floats; ++index)
        {
            mine[index] = 0xC0DE0000U + g_turns * 64 + index;
        }
        asm volatile("mov r2, %0\n vldm r2!, {d0-d15}\n vldm r2, {d16-d31}\n"
                     "mov r3, #2000\n 1: subs r3, r3, #1\n bne 1b\n"
                     "mov r2, %1\n vstm r2!, {d0-d15}\n vstm r2, {d16-d31}\n" ::"r"(mine),
                     "r"(found)
                     : "r2", "r3", "cc", "memory", "d0", "d1", "d2", "d3", "d4", "d5", "d6", "d7", "d8", "d9", "d10",
                       "d11", "d12", "d13", "d14", "d15", "d16", "d17", "d18", "d19", "d20", "d21", "d22", "d23", "d24",
                       "d25", "d26", "d27", "d28", "d29", "d30", "d31");
        for (std::size_t index = 0; index < Floats; ++index)
        {
            g_lost = g_lost + (mine[index] != found[index] ? 1 : 0);
        }
        g_turns = g_turns + 1;
    }
}

}  // namespace

int main(int argc, char** argv)
{
    g_forget = argc > 1 && std::strcmp(argv[1], "--forget") == 0;
    Kanvo                 library;
    Kanvo_Screen          screen(&library);
    const scenes::BuiltIn pictures(screen);
    if (!pictures.AreThere())
    {
        return 1;
    }
    const scenes::Scene& any = *scenes::All().begin();
    Kanvo_BitmapARGB32   one(&screen, any.width, any.height);
    Kanvo_BitmapARGB32   two(&screen, any.width, any.height);
    for (const scenes::Scene& scene : scenes::All())
    {
        g_expected.push_back({scenes::Drawn(scene, one, pictures.Get(), screen, OB_NONE),
                              scenes::Drawn(scene, one, pictures.Get(), screen, OB_NEON)});
    }
    g_screen     = &screen;
    g_input      = &pictures.Get();
    g_targets[0] = &one;
    g_targets[1] = &two;

    g_tasks[0].exists = true;
    StartTask(1, DrawForwards);
    StartTask(2, DrawBackwards);
    StartTask(3, KeepRegisters);
    board::StartTicking(SwitchTask, Period);
    while ((g_tasks[1].exists || g_tasks[2].exists) && g_switches < SwitchesMax)
    {
        AwaitTick();
    }
    board::StopTicking();

    std::printf(
        "%u pictures right, %u wrong; %u switches, %u in the middle of a drawing; %u turns of registers, %u lost\n",
        g_right, g_wrong, g_switches, g_cut, g_turns, g_lost);
    const bool all = g_right == 4 * scenes::All().size() && g_wrong == 0;
    return all && g_lost == 0 && g_cut > 0 && g_turns > 0 ? 0 : 1;
}
