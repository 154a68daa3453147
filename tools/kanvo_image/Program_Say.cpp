// Program_Say: see the header.
#include "Program_Say.h"

#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

#include "Program_Text.h"

namespace kanvo_image
{
namespace
{

constexpr const char* ClearLine = "\r\033[K";

bool s_lineOpen = false;  // a progress line without its end stands on the terminal

void SayLine(const std::string& line)
{
    std::fprintf(stderr, "%s%s\n", s_lineOpen ? ClearLine : "", line.c_str());
    s_lineOpen = false;
}

std::size_t TerminalPlaces()
{
    winsize size = {};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1 ? size.ws_col - 1u : 79u;
}

}  // namespace

void SayError(const std::string& line)
{
    SayLine("kanvo-image: " + OneLine(line));
}

void SayWarning(const std::string& line)
{
    SayLine("kanvo-image: warning: " + OneLine(line));
}

void SayNote(const std::string& line)
{
    SayLine(OneLine(line));
}

Progress::Progress(std::size_t count, bool quiet)
    : m_count(count),
      m_quiet(quiet),
      m_terminal(count > 1 && ::isatty(STDERR_FILENO) != 0)
{
}

void Progress::Begin(const std::string& name)
{
    ++m_number;
    if (!m_quiet && m_terminal)
    {
        Replace(Counter() + name);
    }
}

void Progress::Done(const std::string& name, const std::string& outcome)
{
    const std::string line = Counter() + name + "  " + outcome;
    if (m_quiet)
    {
        return;
    }
    if (m_terminal)
    {
        Replace(line);
    }
    else
    {
        SayLine(OneLine(line));
    }
}

void Progress::Finish()
{
    if (s_lineOpen)
    {
        std::fputc('\n', stderr);
        s_lineOpen = false;
    }
}

std::string Progress::Counter() const
{
    return m_count == 1 ? std::string() : "[" + std::to_string(m_number) + "/" + std::to_string(m_count) + "] ";
}

void Progress::Replace(const std::string& line)
{
    std::fprintf(stderr, "%s%s", ClearLine, Shortened(OneLine(line), TerminalPlaces()).c_str());
    s_lineOpen = true;
}

}  // namespace kanvo_image
