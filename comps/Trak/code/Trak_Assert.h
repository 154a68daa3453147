// Trak_Assert: how the library reports misuse. A checking site marks its file and line, then asserts; a failed
// assertion reaches the installed handler, and execution goes on. Build with TRAK_ASSERTIONS=0 to compile all checks out.
#ifndef TRAK_ASSERT_H
#define TRAK_ASSERT_H

#ifndef TRAK_ASSERTIONS
#define TRAK_ASSERTIONS 1
#endif

//! Position of the last checking site that was passed.
extern const char*  g_TrakL_acFile;
extern unsigned int g_Trak_uiLine;

//! Receives every failed assertion. pcFile, uiLine: the checking site; pcMessage: the message, formatted, valid during
//! the call only. A handler may halt, count, or throw the device into a debugger; if it returns, drawing goes on.
using Trak_AssertHandler = void (*)(const char* pcFile, unsigned int uiLine, const char* pcMessage);

//! Installs a handler and returns the one before it. Null brings back the default, which prints "file:line: message"
//! to stderr and continues.
Trak_AssertHandler Trak_SetAssertHandler(Trak_AssertHandler pfnHandler);

//! Formats the message (as printf does) and hands it to the handler. Called by Trak_Assert only.
void Trak_Report(const char* pcMessage, ...) __attribute__((format(printf, 1, 2)));

//! Stores the position of a checking site; nothing else.
inline void Trak_DebugMark(const char* pcFile, unsigned int uiLine)
{
    g_TrakL_acFile = pcFile;
    g_Trak_uiLine  = uiLine;
}

//! Reports pcMessage if bCondition is false, with the position marked last. Further arguments fill in the message's
//! printf directives.
template <typename... Arguments>
inline void Trak_Assert(bool bCondition, const char* pcMessage, Arguments... kArguments)
{
    if (__builtin_expect(!bCondition, 0))
    {
        if constexpr (sizeof...(kArguments) == 0)
        {
            Trak_Report("%s", pcMessage);
        }
        else
        {
            Trak_Report(pcMessage, kArguments...);
        }
    }
}

//! The checking idiom: mark, then assert. Evaluates the condition once, or not at all where checks are compiled out.
#if TRAK_ASSERTIONS
#define TRAK_CHECK(condition, ...) (Trak_DebugMark(__FILE__, __LINE__), Trak_Assert((condition), __VA_ARGS__))
#else
#define TRAK_CHECK(condition, ...) static_cast<void>(sizeof(!(condition)))
#endif

#endif
