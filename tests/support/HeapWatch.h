// HeapWatch: stands in front of the heap of a test program: counts what is asked for, and fails every test in which the library
// asks for memory, or gives some back, while it draws.
//
// What counts is whose code asks: the nearest caller outside the C and C++ libraries. Is it the library, its callers are looked
// at until one is of the test: all of them have to be of those that may (heap_watch.ld): the library object, constructors and
// destructors of bitmaps, the profiler. A handler, counter or bitmap of a test that the library calls may do as it likes.
// (Should it jump to the heap's function as the last thing it does, it has left the stack by then and the library is blamed.)
//
// Counting works with glibc and without sanitizers, which have these functions themselves; the watch in addition where
// the program was linked with heap_watch.ld (preset gcc).
#ifndef HEAPWATCH_H
#define HEAPWATCH_H

#include <cstddef>
#include <string>

namespace support
{

//! Whether calls are counted in this program.
bool CountsHeap();

//! Whether the library is watched in this program.
bool WatchesHeap();

//! Counts calls, by whomever, from construction to destruction. One at a time.
class HeapCount
{
public:
    HeapCount();
    ~HeapCount();
    HeapCount(const HeapCount&)            = delete;
    HeapCount& operator=(const HeapCount&) = delete;

    //! Ends the counting.
    static std::size_t Calls();
};

//! What the watch has found since the last time, which is then forgotten: empty, or the callers of the first call.
//! Whoever takes it keeps the test from failing.
std::string TakeHeapComplaint();

//! How often the library asked for memory where it may: the proof that the watch sees the library at all.
std::size_t HeapCallsOfLibrary();

}  // namespace support

#endif
