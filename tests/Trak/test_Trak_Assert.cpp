// Tests of Trak_Assert: mark, assert, handler, the checking idiom. The same with checks compiled out is in
// test_Trak_AssertOff.cpp.
#undef TRAK_ASSERTIONS
#define TRAK_ASSERTIONS 1
#include "Trak_Assert.h"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "AssertCapture.h"

namespace
{

using support::AssertCapture;
using support::Messages;

TEST(DebugMark, StoresItsTwoArgumentsAndNothingElse)
{
    AssertCapture     asserts;
    const char* const file = "somewhere.cpp";
    Trak_DebugMark(file, 4711);
    EXPECT_EQ(g_TrakL_acFile, file);  // the pointer itself, not a copy
    EXPECT_EQ(g_Trak_uiLine, 4711U);
    EXPECT_EQ(asserts.Count(), 0U);
    Trak_DebugMark("elsewhere.cpp", 0xFFFFFFFFU);
    EXPECT_STREQ(g_TrakL_acFile, "elsewhere.cpp");
    EXPECT_EQ(g_Trak_uiLine, 0xFFFFFFFFU);
}

TEST(Assert, ReportsAFailedConditionAtThePositionMarkedLast)
{
    AssertCapture asserts;
    Trak_DebugMark("first.cpp", 1);
    Trak_DebugMark("second.cpp", 2);
    Trak_Assert(false, "it went wrong");
    ASSERT_EQ(asserts.Count(), 1U);
    EXPECT_EQ(asserts.Reports()[0].file, "second.cpp");
    EXPECT_EQ(asserts.Reports()[0].line, 2U);
    EXPECT_EQ(asserts.Reports()[0].message, "it went wrong");
}

TEST(Assert, SaysNothingWhereTheConditionHolds)
{
    AssertCapture asserts;
    Trak_Assert(true, "never said");
    Trak_Assert(true, "never said %d", 1);
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(Assert, FillsFurtherArgumentsIn)
{
    AssertCapture asserts;
    Trak_Assert(false, "%d of %s, %5.2f", 3, "four", 5.678);
    EXPECT_EQ(asserts.Take(), Messages{"3 of four,  5.68"});
}

TEST(Assert, TakesAMessageWithoutArgumentsLiterally)
{
    AssertCapture asserts;
    Trak_Assert(false, "100 % sure %s %n");
    EXPECT_EQ(asserts.Take(), Messages{"100 % sure %s %n"});
}

TEST(Assert, CutsALongMessageInsteadOfOverrunning)
{
    AssertCapture     asserts;
    const std::string text(5000, 'x');
    Trak_Assert(false, text.c_str());
    Trak_Assert(false, "%s", text.c_str());
    ASSERT_EQ(asserts.Count(), 2U);
    for (const AssertCapture::Report& report : asserts.Reports())
    {
        EXPECT_GE(report.message.size(), 100U);
        EXPECT_EQ(report.message, text.substr(0, report.message.size()));
    }
}

int s_calls = 0;

void CountCall(const char* /*file*/, unsigned int /*line*/, const char* /*message*/)
{
    ++s_calls;
}

TEST(SetAssertHandler, ReturnsTheOneBeforeAndNullBringsTheDefaultBack)
{
    const Trak_AssertHandler found     = Trak_SetAssertHandler(nullptr);
    const Trak_AssertHandler byDefault = Trak_SetAssertHandler(&CountCall);
    EXPECT_NE(byDefault, nullptr);
    s_calls = 0;
    Trak_Assert(false, "counted");
    EXPECT_EQ(s_calls, 1);
    EXPECT_EQ(Trak_SetAssertHandler(nullptr), &CountCall);
    EXPECT_EQ(Trak_SetAssertHandler(byDefault), byDefault);
    Trak_SetAssertHandler(found);
}

#if GTEST_HAS_STREAM_REDIRECTION
TEST(SetAssertHandler, TheDefaultPrintsFileLineAndMessageToStderrAndGoesOn)
{
    const Trak_AssertHandler found = Trak_SetAssertHandler(nullptr);
    testing::internal::CaptureStderr();
    Trak_DebugMark("there.cpp", 12);
    Trak_Assert(false, "bitmap %s", "not locked");
    Trak_SetAssertHandler(found);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "there.cpp:12: bitmap not locked\n");
}
#endif

TEST(Check, MarksThenAssertsAndEvaluatesItsConditionOnce)
{
    AssertCapture asserts;
    int           evaluated = 0;
    TRAK_CHECK(++evaluated == 0, "says %d", 5);
    const unsigned int line = __LINE__ - 1;
    EXPECT_EQ(evaluated, 1);
    ASSERT_EQ(asserts.Count(), 1U);
    EXPECT_EQ(asserts.Reports()[0].message, "says 5");
    EXPECT_EQ(asserts.Reports()[0].file, __FILE__);
    EXPECT_EQ(asserts.Reports()[0].line, line);
}

TEST(Check, MarksItsPositionAlsoWhereTheConditionHolds)
{
    AssertCapture asserts;
    Trak_DebugMark("before.cpp", 1);
    TRAK_CHECK(true, "fine");
    EXPECT_STREQ(g_TrakL_acFile, __FILE__);
    EXPECT_EQ(g_Trak_uiLine, static_cast<unsigned int>(__LINE__ - 2));
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(Check, TakesAConditionOfSeveralOperatorsWhole)
{
    AssertCapture asserts;
    bool          flag = false;
    TRAK_CHECK(flag ? false : true, "a conditional expression");
    TRAK_CHECK(!flag && true, "a conjunction");
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(Check, IsOneStatementUnderAnIf)
{
    AssertCapture asserts;
    bool          other = false;
    if (asserts.Count() == 1)
        TRAK_CHECK(false, "not reached");
    else
        other = true;
    EXPECT_TRUE(other);
    EXPECT_EQ(asserts.Count(), 0U);
}

}  // namespace
