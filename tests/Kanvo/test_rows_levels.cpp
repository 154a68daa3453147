// Tests of what selecting a level puts in force: at every fast level of this machine each pointer leads to that level's own
// body, none to the portable one, and on ARM with NEON nobody has to ask for it. That the bodies draw the same bytes is the
// business of test_rows.cpp.
#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Kanvo_Object.h"
#include "Levels.h"
#include "neonloops.h"
#include "neonloops_rects.h"
#include "rows.h"
#include "scaled_rows.h"

namespace
{

using Address = void (*)();

template <class Function>
Address AddressOf(Function* function)
{
    return reinterpret_cast<Address>(function);
}

//! All row functions of a table, in a fixed order.
std::vector<Address> RowsOf(const Kanvo_RowFunctions& rows)
{
#define KANVO_TEST_ADDRESS(name) AddressOf(rows.pfn##name),
    return {KANVO_ROW_LIST(KANVO_TEST_ADDRESS)};
#undef KANVO_TEST_ADDRESS
}

//! All loops, as they are now.
std::vector<Address> LoopsInForce()
{
    return {AddressOf(neonloops_fill_argb32),
            AddressOf(neonloops_fill_argb32_ag),
            AddressOf(neonloops_blit_argb32_argb32),
            AddressOf(neonloops_blit_argb32_argb32_as_ag),
            AddressOf(neonloops_blit_argb32_argb32_as),
            AddressOf(neonloops_blit_argb32_rgb565),
            AddressOf(neonloops_blit_argb32_rgb565_ag),
            AddressOf(neonloops_blitcolor_argb32_a8),
            AddressOf(neonloops_blitcolor_argb32_a8_ag),
            AddressOf(neonloops_blit_argb32_rgb565a8),
            AddressOf(neonloops_blit_argb32_rgb565a8_as),
            AddressOf(neonloops_blit_argb32_rgb565a8_as_ag)};
}

class RowsInForce : public testing::TestWithParam<Kanvo_Level>
{
};

}  // namespace

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RowsInForce);  // on a machine that has the portable level only
INSTANTIATE_TEST_SUITE_P(All, RowsInForce, testing::ValuesIn(support::FastLevelsHere()),
                         [](const auto& tested) { return std::string(Kanvo_LevelName(tested.param)); });

TEST_P(RowsInForce, NoPointerOfAFastLevelLeadsToAPortableBody)
{
    std::vector<Address> portable;
    std::vector<Address> portableLoops;
    {
        const support::AtLevel level(KL_PORTABLE);
        portable      = RowsOf(*g_Kanvo_pkRows);
        portableLoops = LoopsInForce();
    }
    const support::AtLevel level(GetParam());
    ASSERT_EQ(g_Kanvo_pkRows->eLevel, GetParam());
    const std::vector<Address> rows  = RowsOf(*g_Kanvo_pkRows);
    const std::vector<Address> loops = LoopsInForce();
    for (std::size_t index = 0; index < rows.size(); ++index)
        EXPECT_EQ(std::count(portable.begin(), portable.end(), rows[index]), 0) << "row function " << index;
    for (std::size_t index = 0; index < loops.size(); ++index)
        EXPECT_EQ(std::count(portableLoops.begin(), portableLoops.end(), loops[index]), 0) << "loop " << index;
}

#if defined(__ARM_NEON)
TEST(RowsOfNEON, AreInForceWithoutBeingAskedFor)
{
    unsetenv("KANVO_LEVEL");
    const Kanvo_Level before = Kanvo_SelectedRows();
    EXPECT_EQ(Kanvo_SelectRows(KL_BEST), KL_NEON);
    EXPECT_EQ(RowsOf(*g_Kanvo_pkRows), RowsOf(g_Kanvo_kBodiesNEON.kRows));
    EXPECT_EQ(AddressOf(neonloops_blit_argb32_argb32_as_ag), AddressOf(g_Kanvo_kBodiesNEON.pfnOver));
    EXPECT_EQ(g_Kanvo_pkScaledRows, &g_Kanvo_kScaledRowsNEON);
    EXPECT_NE(g_Kanvo_kScaledRowsNEON.pfnFilterWords, &Kanvo_ScaledRowsReference::FilterWords);
    Kanvo_SelectRows(before);
}
#endif
