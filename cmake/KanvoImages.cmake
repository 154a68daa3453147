# kanvo_add_images: pictures become part of a program at build time.
#
#   include(KanvoImages)
#   kanvo_add_images(my_program gear.png icons/bell.png FORMAT rle8)
#   kanvo_add_images(my_program photo.png FORMAT rle8 NAME background OPTIONS --palette-max 64 --dither fs)
#
# Every PNG file becomes a C source with a constant array and a header that declares it, both made by kanvo-image,
# compiled into the target, and made again when the picture or the tool changes. The header's folder is on the target's
# include path:
#
#   #include "image_gear.h"
#   Kanvo_BitmapRLE gear(&screen, image_gear, IMAGE_GEAR_SIZE);
#
#   FORMAT   as of `kanvo-image encode`, rle8 where it is left out
#   NAME     a name for each picture, in their order; otherwise image_<file name>
#   OPTIONS  further options of `kanvo-image encode`
#
# The tool is the target kanvo-image of this build, or the program named by the variable KANVO_IMAGE_PROGRAM: set that
# where the build is for another machine than the one that builds. Nothing is fetched from anywhere.
include_guard(GLOBAL)

function(kanvo_add_images target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "FORMAT" "NAME;OPTIONS")
    set(pictures ${arg_UNPARSED_ARGUMENTS})
    if(NOT TARGET ${target})
        message(FATAL_ERROR "kanvo_add_images: there is no target ${target}.")
    endif()
    # Only rules of the same folder know how to make a target's sources.
    get_target_property(home ${target} SOURCE_DIR)
    if(NOT home STREQUAL CMAKE_CURRENT_SOURCE_DIR)
        message(FATAL_ERROR "kanvo_add_images: call it where the target ${target} is made, in ${home}.")
    endif()
    if(NOT pictures)
        message(FATAL_ERROR "kanvo_add_images: no pictures for the target ${target}.")
    endif()
    list(LENGTH pictures picture_count)
    list(LENGTH arg_NAME name_count)
    if(name_count AND NOT name_count EQUAL picture_count)
        message(FATAL_ERROR "kanvo_add_images: ${picture_count} pictures and ${name_count} names.")
    endif()
    if(NOT arg_FORMAT)
        set(arg_FORMAT rle8)
    endif()
    kanvo_image_tool(tool)

    set(folder "${CMAKE_CURRENT_BINARY_DIR}/${target}_images")
    foreach(picture IN LISTS pictures)
        get_filename_component(picture "${picture}" ABSOLUTE)
        if(NOT EXISTS "${picture}")
            message(FATAL_ERROR "kanvo_add_images: ${picture} does not exist.")
        endif()
        if(name_count)
            list(POP_FRONT arg_NAME name)
        else()
            get_filename_component(name "${picture}" NAME_WLE)
            string(REGEX REPLACE "[^A-Za-z0-9]+" "_" name "image_${name}")
            string(REGEX REPLACE "_$" "" name "${name}")
        endif()
        get_target_property(names ${target} KANVO_IMAGE_NAMES)
        if(name IN_LIST names)
            message(FATAL_ERROR "kanvo_add_images: two pictures of the target ${target} are called ${name}.")
        endif()
        set_property(TARGET ${target} APPEND PROPERTY KANVO_IMAGE_NAMES "${name}")

        set(source "${folder}/${name}.c")
        set(header "${folder}/${name}.h")
        add_custom_command(
            OUTPUT "${source}" "${header}"
            COMMAND "${tool}" encode "${picture}" -o "${folder}" --format "${arg_FORMAT}" ${arg_OPTIONS}
                    --c --h --name "${name}" --force --quiet
            DEPENDS "${picture}" "${tool}"
            COMMENT "Encoding ${name} as ${arg_FORMAT}"
            VERBATIM)
        target_sources(${target} PRIVATE "${source}" "${header}")
        # Whether C can be compiled in this folder; a language may be enabled in other ones, by GoogleTest for instance.
        if(NOT CMAKE_C_COMPILE_OBJECT)
            set_source_files_properties("${source}" PROPERTIES LANGUAGE CXX)  # the sources are both C and C++
        endif()
    endforeach()
    target_include_directories(${target} PRIVATE "${folder}")
endfunction()

# Which program encodes. A target need not be there yet: it is looked up when the build system is written.
function(kanvo_image_tool result)
    if(KANVO_IMAGE_PROGRAM)
        if(NOT EXISTS "${KANVO_IMAGE_PROGRAM}")
            message(FATAL_ERROR "KANVO_IMAGE_PROGRAM: ${KANVO_IMAGE_PROGRAM} does not exist.")
        endif()
        set(tool "${KANVO_IMAGE_PROGRAM}")
    elseif(CMAKE_CROSSCOMPILING)
        message(FATAL_ERROR "kanvo_add_images: this build is for another machine. Build kanvo-image for this one, "
                            "and configure with -DKANVO_IMAGE_PROGRAM=<path of kanvo-image>.")
    elseif(TARGET kanvo-image OR KANVO_BUILD_TOOLS)
        set(tool kanvo-image)
    else()
        message(FATAL_ERROR "kanvo_add_images: kanvo-image is not part of this build. "
                            "Configure with -DKANVO_BUILD_TOOLS=ON or -DKANVO_IMAGE_PROGRAM=<path of kanvo-image>.")
    endif()
    set(${result} "${tool}" PARENT_SCOPE)
endfunction()
