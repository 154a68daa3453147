// Trak_Assert: the report of a failed assertion and the handler it goes to.
#include "Trak_Assert.h"

#include <cstdarg>
#include <cstdio>

const char*  g_TrakL_acFile = "";
unsigned int g_Trak_uiLine  = 0;

namespace
{

void PrintToStderr(const char* pcFile, unsigned int uiLine, const char* pcMessage)
{
    std::fprintf(stderr, "%s:%u: %s\n", pcFile, uiLine, pcMessage);
}

Trak_AssertHandler g_pfnHandler = &PrintToStderr;

}  // namespace

Trak_AssertHandler Trak_SetAssertHandler(Trak_AssertHandler pfnHandler)
{
    const Trak_AssertHandler pfnBefore = g_pfnHandler;
    g_pfnHandler                       = pfnHandler != nullptr ? pfnHandler : &PrintToStderr;
    return pfnBefore;
}

void Trak_Report(const char* pcMessage, ...)
{
    char    acText[160];  // longer messages are cut, never overrun
    va_list kArguments;
    va_start(kArguments, pcMessage);
    std::vsnprintf(acText, sizeof acText, pcMessage, kArguments);
    va_end(kArguments);
    g_pfnHandler(g_TrakL_acFile, g_Trak_uiLine, acText);
}
