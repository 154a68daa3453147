// Tests of the fences on the bare board, where no test may end the program: a data abort is caught, and the test goes on
// behind it.
#include <csetjmp>
#include <cstdint>

#include <gtest/gtest.h>

#include "Board.h"
#include "Fence.h"

namespace
{

std::jmp_buf g_before;

//! In the mode of the exception; the rest of the test belongs into that of the program (System), with aborts allowed.
void GoBack()
{
    asm volatile("cps #0x1F\n cpsie a" ::: "memory");
    std::longjmp(g_before, 1);
}

//! Whether an access ends in an exception.
template <class Access>
[[gnu::noinline]] bool IsStopped(Access access)
{
    board::SetExceptionHook(&GoBack);
    volatile bool isStopped = true;
    if (setjmp(g_before) == 0)
    {
        access();
        isStopped = false;
    }
    board::SetExceptionHook(nullptr);
    return isStopped;
}

std::uint8_t Read(const std::uint8_t* at)
{
    return *static_cast<const volatile std::uint8_t*>(at);
}
void Write(std::uint8_t* at)
{
    *static_cast<volatile std::uint8_t*>(at) = 1;
}

}  // namespace

TEST(BoardFence, StopsTheFirstByteBeyondEitherEndAndNoneInside)
{
    for (const std::size_t bytes : {1U, 40U, 4096U, 5000U, 1048576U})
    {
        support::Fence front(bytes, support::Against::FrontFence);
        support::Fence back(bytes, support::Against::BackFence);
        for (support::Fence* const fence : {&front, &back})
        {
            EXPECT_FALSE(IsStopped([&] { Write(fence->Data()); }));
            EXPECT_FALSE(IsStopped([&] { Write(fence->Data() + bytes - 1); }));
            EXPECT_EQ(Read(fence->Data() + bytes - 1), 1);
        }
        EXPECT_TRUE(IsStopped([&] { Read(front.Data() - 1); })) << bytes;
        EXPECT_TRUE(IsStopped([&] { Write(front.Data() - 1); })) << bytes;
        EXPECT_TRUE(IsStopped([&] { Read(back.Data() + bytes); })) << bytes;
        EXPECT_TRUE(IsStopped([&] { Write(back.Data() + bytes); })) << bytes;
    }
}

TEST(BoardFence, StopsWritingWhatIsReadOnlyAndAnyAccessToWhatIsGone)
{
    std::uint8_t* gone = nullptr;
    {
        support::Fence fence(100);
        gone = fence.Data();
        fence.MakeReadOnly();
        EXPECT_EQ(Read(gone), 0xA5);
        EXPECT_TRUE(IsStopped([&] { Write(gone); }));
    }
    EXPECT_TRUE(IsStopped([&] { Read(gone); }));
}

TEST(BoardFence, ManyAtOnceAndOneAfterTheOtherKeepTheirOwnMemory)
{
    std::uint8_t* first = nullptr;
    for (int round = 0; round < 50; ++round)
    {
        support::Fence one(20000);
        support::Fence two(3000000, support::Against::FrontFence);
        support::Fence three(8192);
        if (first == nullptr) first = one.Data();
        EXPECT_EQ(one.Data(), first);  // or the addresses would run out
        one.Data()[0] = two.Data()[2999999] = three.Data()[8191] = static_cast<std::uint8_t>(round);
        EXPECT_EQ(one.Data()[1], 0xA5);
        EXPECT_EQ(two.Data()[2999998], 0xA5);
        EXPECT_EQ(three.Data()[0], 0xA5);
        EXPECT_EQ(one.Data()[0] + two.Data()[2999999] + three.Data()[8191], 3 * round);
    }
}
