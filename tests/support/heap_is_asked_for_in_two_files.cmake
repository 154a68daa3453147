# Of the library's files only that of the library object and that of the profiler may name a function that takes memory from the heap
# or gives it back. This holds for all code, also for what no test runs; HeapWatch.cpp looks at what runs. Destructors that
# are virtual name operator delete.
execute_process(COMMAND "${nm}" -A --undefined-only "${library}" OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
if(NOT symbols MATCHES "Kanvo_Object[^\n]* malloc\n")
    message(FATAL_ERROR "the symbols of ${library} cannot be read:\n${symbols}")
endif()
string(REGEX MATCHALL "[^\n]* ([a-z_]*alloc|free|_Zn[wa][^\n]*|str[n]?dup|posix_memalign|memalign)\n" found "${symbols}")
list(FILTER found EXCLUDE REGEX ":(Kanvo_Object|Trak_Profiler)\\.")
if(found)
    message(FATAL_ERROR "the heap is asked for elsewhere:\n${found}")
endif()
