// CrashNote: what to say if the processor stops the program at a fence: a random test names the case it is in, and a crash
// prints that name before it takes its course.
#ifndef CRASHNOTE_H
#define CRASHNOTE_H

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <unistd.h>

namespace support
{

//! In force to the end of the scope. One at a time.
class CrashNote
{
public:
    explicit CrashNote(const char* test)
    {
        s_test                  = test;
        struct sigaction action = {};
        action.sa_handler       = &Print;
        sigaction(SIGSEGV, &action, &s_before[0]);
        sigaction(SIGBUS, &action, &s_before[1]);
    }
    ~CrashNote() { PutBack(); }
    CrashNote(const CrashNote&)            = delete;
    CrashNote& operator=(const CrashNote&) = delete;

    void InCase(std::uint64_t seed) { s_seed = seed; }

private:
    static void Print(int)
    {
        char      text[200];
        const int length = std::snprintf(text, sizeof text, "\nseed %llu: %s: touched memory beyond its pixels\n",
                                         static_cast<unsigned long long>(s_seed), s_test);
        if (length > 0 && write(STDERR_FILENO, text, static_cast<std::size_t>(length)) < 0) _exit(1);
        PutBack();  // the access is tried again, and then is the business of whoever was there before
    }
    static void PutBack()
    {
        sigaction(SIGSEGV, &s_before[0], nullptr);
        sigaction(SIGBUS, &s_before[1], nullptr);
    }

    inline static const char*            s_test = "";
    inline static volatile std::uint64_t s_seed = 0;
    inline static struct sigaction       s_before[2];
};

}  // namespace support

#endif
