# What is compiled for instructions that not every processor has must offer nothing to the linker but its table: of an
# inline function that several files have, the linker keeps any one, and others would run into instructions they do not
# expect.
execute_process(COMMAND "${nm}" --defined-only --extern-only "${library}"
                OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
if(NOT symbols MATCHES "rows_reference[^\n]*:\n[^:]*Kanvo_RowsReference")
    message(FATAL_ERROR "the symbols of ${library} cannot be read:\n${symbols}")
endif()
# The part of the list that belongs to one object file goes up to an empty line.
foreach(table IN ITEMS rows_avx2:g_Kanvo_kBodiesAVX2 scaled_rows_avx2:g_Kanvo_kScaledRowsAVX2)
    string(REPLACE ":" ";" parts "${table}")
    list(GET parts 0 stem)
    list(GET parts 1 name)
    if(symbols MATCHES "\n(${stem}[^\n]*:\n([^\n]+\n)*)")
        set(avx2 "${CMAKE_MATCH_1}")
        string(REGEX MATCHALL "[0-9a-f]+ [A-Zu] [^\n]+" found "${avx2}")
        list(LENGTH found count)
        if(NOT count EQUAL 1 OR NOT found MATCHES " ${name}$")
            message(FATAL_ERROR "${stem} offers more than its table, or not even that:\n${avx2}")
        endif()
    endif()
endforeach()
