// Tests of Kanvo_RenderState: 34 slots, their first values, change callbacks, and slots that do not exist.
#include "Kanvo_RenderState.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "Kanvo_Screen.h"

namespace
{

using support::AssertCapture;
using support::Messages;

RenderStates Slot(int number)
{
    return static_cast<RenderStates>(number);
}

Tov_UInt FloatWord(float value)
{
    Tov_UInt word = 0;
    std::memcpy(&word, &value, sizeof word);
    return word;
}

struct Change
{
    const Kanvo_RenderState* state;
    RenderStates             slot;
    Tov_UInt                 before;
    void*                    beforePointer;
    Tov_UInt                 now;
};

std::vector<Change> s_changes;

void RecordChange(Kanvo_RenderState& kState, RenderStates eSlot, Tov_MixedType kOld)
{
    s_changes.push_back({&kState, eSlot, kOld.uiValue, kOld.pvValue, kState.GetUInt(eSlot)});
}

void IgnoreChange(Kanvo_RenderState& /*kState*/, RenderStates /*eSlot*/, Tov_MixedType /*kOld*/) {}

TEST(RenderState, StartsWithItsDocumentedValues)
{
    const Kanvo_RenderState state(nullptr);
    for (int number = 0; number < 34; ++number)
    {
        Tov_UInt expected = 0;
        switch (number)
        {
        case 0: expected = 0xFFFFFFFFU; break;  // COLOR1
        case 1: expected = 0xFF000000U; break;  // COLOR2
        case 2: expected = 255; break;          // ALPHA
        case 4:
        case 5:
        case 23:
        case 13:
        case 17:
        case 32:
        case 33: expected = FloatWord(1.0F); break;  // factors
        case 9: expected = 1; break;                 // TM_PLANE2D
        case 26:
        case 27: expected = 1; break;  // wrapping
        default: break;
        }
        EXPECT_EQ(state.GetUInt(Slot(number)), expected) << "slot " << number;
        EXPECT_EQ(state.GetState(Slot(number)).uiValue, expected) << "slot " << number;
    }
    EXPECT_EQ(state.GetValue(LINEWIDTH), 1.0F);
    EXPECT_EQ(state.GetValue(TEXUAXISX), 1.0F);
    EXPECT_EQ(state.GetValue(TEXUAXISY), 0.0F);
    EXPECT_EQ(state.GetValue(TEXVAXISX), 0.0F);
    EXPECT_EQ(state.GetValue(TEXVAXISY), 1.0F);
    EXPECT_EQ(state.GetUInt(TEXTUREMODE), Tov_UInt{TM_PLANE2D});
    EXPECT_EQ(state.GetUInt(OPTIMIZED_BLIT), Tov_UInt{OB_NONE});
    EXPECT_TRUE(state.GetBool(TEXTUREWRAPU));
    EXPECT_FALSE(state.GetBool(TEXTUREENABLE));
    EXPECT_EQ(state.GetPtr(TEXTURE), nullptr);
    EXPECT_EQ(state.GetPtr(LINEPATTERN), nullptr);
    EXPECT_EQ(state.GetParent(), nullptr);
}

TEST(RenderState, IsItsParentThenTheSlotsThenTheCallbacks)
{
    Kanvo_Screen      screen(nullptr);
    Kanvo_RenderState state(&screen);
    ASSERT_EQ(sizeof state, sizeof(Kanvo_Screen*) + 34 * sizeof(Tov_MixedType) + 34 * sizeof(Kanvo_StateCallback));
    for (int number = 0; number < 34; ++number)
    {
        state.Set(Slot(number), number + 1000);
        state.SetCallback(Slot(number), number % 2 == 0 ? &RecordChange : &IgnoreChange);
    }
    const auto* const   bytes  = reinterpret_cast<const unsigned char*>(&state);
    const Kanvo_Screen* parent = nullptr;
    std::memcpy(&parent, bytes, sizeof parent);
    EXPECT_EQ(parent, &screen);
    for (std::size_t number = 0; number < 34; ++number)
    {
        Tov_MixedType       slot;
        Kanvo_StateCallback callback    = nullptr;
        const std::size_t   slotsBegin  = sizeof parent;
        const std::size_t   othersBegin = slotsBegin + 34 * sizeof slot;
        std::memcpy(&slot, bytes + slotsBegin + number * sizeof slot, sizeof slot);
        std::memcpy(&callback, bytes + othersBegin + number * sizeof callback, sizeof callback);
        EXPECT_EQ(slot.uiValue, number + 1000);
        EXPECT_EQ(callback, number % 2 == 0 ? &RecordChange : &IgnoreChange);
    }
}

TEST(RenderState, EverySlotIsKeptByItself)
{
    Kanvo_RenderState state(nullptr);
    for (int number = 0; number < 34; ++number) state.Set(Slot(number), 0xA0000000U + static_cast<Tov_UInt>(number));
    for (int number = 0; number < 34; ++number)
    {
        EXPECT_EQ(state.GetUInt(Slot(number)), 0xA0000000U + static_cast<Tov_UInt>(number));
    }
    EXPECT_EQ(state.GetParent(), nullptr);
}

TEST(RenderState, TakesEveryKindOfValueThatASlotCanHold)
{
    Kanvo_RenderState state(nullptr);
    int               target = 0;
    state.Set(COLOR1, 0x80FF0102U);
    state.Set(BASEDEPTH, -5);
    state.Set(LINEWIDTH, 2.5F);
    state.Set(ALPHAENABLE, true);
    state.Set(TEXTUREMODE, TM_UV);
    state.Set(ALPHA, static_cast<Tov_UByte>(200));
    state.Set(TEXTURE, &target);
    EXPECT_EQ(state.GetUInt(COLOR1), 0x80FF0102U);
    EXPECT_EQ(state.GetState(BASEDEPTH).iValue, -5);
    EXPECT_EQ(state.GetUInt(BASEDEPTH), 0xFFFFFFFBU);
    EXPECT_EQ(state.GetValue(LINEWIDTH), 2.5F);
    EXPECT_EQ(state.GetState(LINEWIDTH).uiValue, FloatWord(2.5F));
    EXPECT_TRUE(state.GetBool(ALPHAENABLE));
    EXPECT_EQ(state.GetUInt(TEXTUREMODE), Tov_UInt{TM_UV});
    EXPECT_EQ(state.GetUInt(ALPHA), 200U);
    EXPECT_EQ(state.GetPtr(TEXTURE), &target);
    state.Set(ALPHAENABLE, false);
    EXPECT_FALSE(state.GetBool(ALPHAENABLE));
}

TEST(RenderState, APointerIsKeptWholeAndANumberAfterItLeavesNothingOfIt)
{
    Kanvo_RenderState state(nullptr);
    auto* const       everyBit = reinterpret_cast<void*>(~std::uintptr_t{0});
    state.Set(LINEPATTERN, everyBit);
    EXPECT_EQ(state.GetPtr(LINEPATTERN), everyBit);
    state.Set(LINEPATTERN, 5);
    EXPECT_EQ(state.GetUInt(LINEPATTERN), 5U);
    EXPECT_EQ(state.GetPtr(LINEPATTERN), reinterpret_cast<void*>(std::uintptr_t{5}));
    state.Set(LINEPATTERN, everyBit);
    state.Set(LINEPATTERN, 0.0F);
    EXPECT_EQ(state.GetPtr(LINEPATTERN), nullptr);
    state.Set(LINEPATTERN, everyBit);
    state.Set(LINEPATTERN, nullptr);
    EXPECT_EQ(state.GetPtr(LINEPATTERN), nullptr);
}

TEST(RenderState, AnyNumberMayBeAskedForItsTruth)
{
    Kanvo_RenderState state(nullptr);
    for (Tov_UInt value = 0; value < 256; ++value)
    {
        state.Set(TEXTUREENABLE, value);
        EXPECT_EQ(state.GetBool(TEXTUREENABLE), value != 0) << value;
    }
    state.Set(TEXTUREENABLE, 0x100);  // the low byte is what a boolean occupies
    EXPECT_FALSE(state.GetBool(TEXTUREENABLE));
    state.Set(TEXTUREENABLE, 0xFFFFFF02U);
    EXPECT_TRUE(state.GetBool(TEXTUREENABLE));
}

TEST(RenderState, OnlyTheLowEightBitsOfASlotNumberCount)
{
    Kanvo_RenderState state(nullptr);
    state.Set(Slot(0x300 + ALPHA), 77);
    EXPECT_EQ(state.GetUInt(ALPHA), 77U);
    EXPECT_EQ(state.GetUInt(Slot(0x1200 + ALPHA)), 77U);
}

TEST(RenderState, ASlotBeyondTheLastAssertsAndReadsZeroAndIsNotSet)
{
    Kanvo_RenderState       state(nullptr);
    const Kanvo_RenderState fresh(nullptr);
    const Messages          once{"no such render state"};
    AssertCapture           asserts;
    for (const int number : {34, 35, 127, 128, 255})
    {
        state.Set(Slot(number), 0xFFFFFFFFU);
        EXPECT_EQ(asserts.Take(), once);
        state.Set(Slot(number), 1.0F);
        EXPECT_EQ(asserts.Take(), once);
        state.Set(Slot(number), &asserts);
        EXPECT_EQ(asserts.Take(), once);
        EXPECT_EQ(state.GetState(Slot(number)).pvValue, nullptr);
        EXPECT_EQ(asserts.Take(), once);
        EXPECT_EQ(state.GetUInt(Slot(number)), 0U);
        EXPECT_EQ(asserts.Take(), once);
        EXPECT_EQ(state.GetValue(Slot(number)), 0.0F);
        EXPECT_EQ(asserts.Take(), once);
        EXPECT_FALSE(state.GetBool(Slot(number)));
        EXPECT_EQ(asserts.Take(), once);
        EXPECT_EQ(state.GetPtr(Slot(number)), nullptr);
        EXPECT_EQ(asserts.Take(), once);
        EXPECT_EQ(state.SetCallback(Slot(number), &RecordChange), nullptr);
        EXPECT_EQ(asserts.Take(), once);
    }
    s_changes.clear();
    state.Reset();
    for (int number = 0; number < 34; ++number)
    {
        EXPECT_EQ(state.GetState(Slot(number)).pvValue, fresh.GetState(Slot(number)).pvValue) << number;
    }
    EXPECT_TRUE(s_changes.empty());
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(RenderState, ACallbackIsCalledAfterAChangeWithTheValueBefore)
{
    Kanvo_RenderState state(nullptr);
    s_changes.clear();
    EXPECT_EQ(state.SetCallback(ALPHA, &RecordChange), nullptr);
    state.Set(ALPHA, 128);
    ASSERT_EQ(s_changes.size(), 1U);
    EXPECT_EQ(s_changes[0].state, &state);
    EXPECT_EQ(s_changes[0].slot, ALPHA);
    EXPECT_EQ(s_changes[0].before, 255U);
    EXPECT_EQ(s_changes[0].now, 128U);
    state.Set(COLOR1, 0U);  // another slot
    EXPECT_EQ(s_changes.size(), 1U);
}

TEST(RenderState, SettingTheValueThatASlotHasCallsNothing)
{
    Kanvo_RenderState state(nullptr);
    s_changes.clear();
    for (int number = 0; number < 34; ++number) state.SetCallback(Slot(number), &RecordChange);
    for (int number = 0; number < 34; ++number) state.Set(Slot(number), state.GetUInt(Slot(number)));
    state.Set(LINEWIDTH, 1.0F);
    state.Set(TEXTUREWRAPU, true);
    state.Set(TEXTURE, nullptr);
    EXPECT_TRUE(s_changes.empty());
    state.Set(POINTSIZE, std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(s_changes.size(), 1U);
    state.Set(POINTSIZE, std::numeric_limits<float>::quiet_NaN());  // not equal to itself, and yet no change
    EXPECT_EQ(s_changes.size(), 1U);
}

TEST(RenderState, APointerThatDiffersInAnyBitIsAChange)
{
    Kanvo_RenderState state(nullptr);
    s_changes.clear();
    state.SetCallback(TEXTURE, &RecordChange);
    for (std::uintptr_t bit = 1; bit != 0; bit <<= 1)
    {
        s_changes.clear();
        state.Set(TEXTURE, reinterpret_cast<void*>(bit));
        ASSERT_EQ(s_changes.size(), 1U);
        EXPECT_EQ(s_changes[0].beforePointer, reinterpret_cast<void*>(bit >> 1));
    }
}

TEST(RenderState, InstallingACallbackReturnsTheOneBefore)
{
    Kanvo_RenderState state(nullptr);
    s_changes.clear();
    EXPECT_EQ(state.SetCallback(CULLING, &RecordChange), nullptr);
    EXPECT_EQ(state.SetCallback(CULLING, &IgnoreChange), &RecordChange);
    state.Set(CULLING, 1);
    EXPECT_EQ(state.SetCallback(CULLING, nullptr), &IgnoreChange);
    state.Set(CULLING, 2);
    EXPECT_EQ(state.SetCallback(CULLING, nullptr), nullptr);
    EXPECT_TRUE(s_changes.empty());
}

TEST(RenderState, ResetBringsTheFirstValuesBackAndCallsForWhatChanges)
{
    Kanvo_RenderState       state(nullptr);
    const Kanvo_RenderState fresh(nullptr);
    for (int number = 0; number < 34; ++number) state.Set(Slot(number), reinterpret_cast<void*>(~std::uintptr_t{0}));
    state.Set(LINEWIDTH, 1.0F);
    state.Set(TEXTURE, nullptr);
    s_changes.clear();
    for (int number = 0; number < 34; ++number) state.SetCallback(Slot(number), &RecordChange);
    state.Reset();
    for (int number = 0; number < 34; ++number)
    {
        EXPECT_EQ(state.GetState(Slot(number)).pvValue, fresh.GetState(Slot(number)).pvValue) << number;
    }
    // The two that had their first value are not among them. (COLOR1 is 0xFFFFFFFF, but not as wide as a pointer.)
    EXPECT_EQ(s_changes.size(), sizeof(void*) > 4 ? 32U : 31U);
    for (const Change& change : s_changes)
    {
        EXPECT_NE(change.slot, LINEWIDTH);
        EXPECT_NE(change.slot, TEXTURE);
    }
    state.Set(ALPHA, 1);  // callbacks stay
    EXPECT_EQ(s_changes.back().slot, ALPHA);
}

}  // namespace
