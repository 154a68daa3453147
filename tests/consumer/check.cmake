# cmake -D WAY=... -P check.cmake: uses Kanvo from outside, in one of several ways, and fails where that fails.
#   SOURCE, BUILD   Kanvo's sources, and the build folder that is installed from
#   WORK            a folder of our own
#   COMPILER, GENERATOR
set(consumer "${SOURCE}/tests/consumer")
set(prefix   "${WORK}/moved/prefix")
set(work     "${WORK}/${WAY}")
file(REMOVE_RECURSE "${work}")
file(MAKE_DIRECTORY "${work}")

# Runs a command, ends the test where it fails, and leaves what it printed in `output`.
function(run)
    execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${work}"
        RESULT_VARIABLE status OUTPUT_VARIABLE printed ERROR_VARIABLE printed OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT status EQUAL 0)
        list(JOIN ARGN " " line)
        message(FATAL_ERROR "failed (${status}): ${line}\n${printed}")
    endif()
    set(output "${printed}" PARENT_SCOPE)
endfunction()

# Configures, builds and runs the consumer project; further arguments are options of CMake.
function(build_and_run)
    run("${CMAKE_COMMAND}" -S "${consumer}" -B "${work}/build" -G "${GENERATOR}"
        "-DCMAKE_CXX_COMPILER=${COMPILER}" -DCMAKE_BUILD_TYPE=Release ${ARGN})
    run("${CMAKE_COMMAND}" --build "${work}/build")
    run("${work}/build/consumer")
endfunction()

if(WAY STREQUAL "Install")
    # The tree is moved after installing: nothing in it may depend on where it was.
    file(REMOVE_RECURSE "${prefix}")
    run("${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${work}/prefix")
    file(MAKE_DIRECTORY "${WORK}/moved")
    file(RENAME "${work}/prefix" "${prefix}")
    foreach(file IN ITEMS include/kanvo/Kanvo.h include/kanvo/Kanvo_Bitmap.h)
        if(NOT EXISTS "${prefix}/${file}")
            message(FATAL_ERROR "not installed: ${file}")
        endif()
    endforeach()

elseif(WAY STREQUAL "FindPackage")
    build_and_run("-DCMAKE_PREFIX_PATH=${prefix}")

elseif(WAY STREQUAL "PkgConfig")
    file(GLOB_RECURSE pc "${prefix}/kanvo.pc")
    get_filename_component(folder "${pc}" DIRECTORY)
    set(ENV{PKG_CONFIG_PATH} "${folder}")
    run(pkg-config --modversion kanvo)
    run(pkg-config --cflags --libs kanvo)
    if(NOT output MATCHES "-ffp-contract=off")
        message(FATAL_ERROR "kanvo.pc lacks -ffp-contract=off: ${output}")
    endif()
    separate_arguments(flags UNIX_COMMAND "${output}")
    run("${COMPILER}" -std=c++17 "${consumer}/main.cpp" ${flags} -o consumer)
    run("${work}/consumer")

elseif(WAY STREQUAL "EveryInstalledHeaderCompilesAlone")
    file(GLOB headers RELATIVE "${prefix}/include/kanvo" "${prefix}/include/kanvo/*.h")
    foreach(header IN LISTS headers)
        file(WRITE "${work}/alone.cpp" "#include <${header}>\n")
        run("${COMPILER}" -std=c++17 -Wall -Wextra -Werror -fsyntax-only "-I${prefix}/include/kanvo" alone.cpp)
    endforeach()

elseif(WAY STREQUAL "AddSubdirectory")
    # Without assertions, and without type information in the library, while the consumer itself has it: deriving from
    # Kanvo must link all the same.
    build_and_run("-DKANVO_SOURCE=${SOURCE}" -DKANVO_ASSERT=OFF -DKANVO_RTTI=OFF)
    run("${CMAKE_COMMAND}" --install "${work}/build" --prefix "${work}/prefix")
    file(GLOB_RECURSE installed "${work}/prefix/*")
    if(installed)
        message(FATAL_ERROR "as a subproject Kanvo must install nothing, but installed ${installed}")
    endif()
    # Neither programs nor tests of ours belong into a user's build.
    foreach(folder IN ITEMS scenes tools examples bench tests)
        if(EXISTS "${work}/build/kanvo/${folder}")
            message(FATAL_ERROR "as a subproject Kanvo must build the library alone, but entered ${folder}")
        endif()
    endforeach()

else()
    message(FATAL_ERROR "no such way: ${WAY}")
endif()
