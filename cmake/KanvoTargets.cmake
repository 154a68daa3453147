# Helpers that the CMakeLists.txt of every folder share.
include_guard(GLOBAL)

# The floor under all code of this repository, the library and what stands around it.
function(kanvo_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wconversion -Wshadow)
    set_target_properties(${target} PROPERTIES COMPILE_WARNING_AS_ERROR ${KANVO_WERROR})
endfunction()

# Settings of programs and helper libraries; the library itself is stricter (comps/CMakeLists.txt).
function(kanvo_defaults target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    kanvo_warnings(${target})
endfunction()

# find_package that says which Debian package is missing and how to do without it.
macro(kanvo_require package debian option)
    find_package(${package} QUIET)
    if(NOT ${package}_FOUND)
        message(FATAL_ERROR "${package} was not found: install the Debian package ${debian}, "
                            "or configure with -D${option}=OFF.")
    endif()
endmacro()
