// Tests of Trak_Assert with the checks compiled out, which is a property of the including file.
#undef TRAK_ASSERTIONS
#define TRAK_ASSERTIONS 0
#include "Trak_Assert.h"

#include <gtest/gtest.h>

#include "AssertCapture.h"

namespace
{

TEST(CheckCompiledOut, NeitherEvaluatesItsConditionNorMarksNorReports)
{
    support::AssertCapture asserts;
    int                    evaluated = 0;
    Trak_DebugMark("before.cpp", 7);
    TRAK_CHECK(++evaluated == 0, "never said");
    TRAK_CHECK(++evaluated == 0, "never said %d", ++evaluated);
    EXPECT_EQ(evaluated, 0);
    EXPECT_STREQ(g_TrakL_acFile, "before.cpp");
    EXPECT_EQ(g_Trak_uiLine, 7U);
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(CheckCompiledOut, KeepsAVariableUsedThatOnlyTheCheckReads)
{
    const bool onlyForTheCheck = true;  // a warning here would stop the build
    TRAK_CHECK(onlyForTheCheck, "never said");
}

TEST(CheckCompiledOut, LeavesAssertItselfInForce)
{
    support::AssertCapture asserts;
    Trak_Assert(false, "called by hand");
    EXPECT_EQ(asserts.Take(), support::Messages{"called by hand"});
}

}  // namespace
