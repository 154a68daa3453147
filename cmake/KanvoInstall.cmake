# What `cmake --install` puts where. Included at top level only: as a subproject Kanvo installs nothing.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headers "${CMAKE_INSTALL_INCLUDEDIR}/kanvo")
set(package "${CMAKE_INSTALL_LIBDIR}/cmake/Kanvo")

# All public headers lie flat in one folder, whichever folder they come from.
install(TARGETS kanvo EXPORT KanvoTargets
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    FILE_SET HEADERS       DESTINATION "${headers}"
    FILE_SET kanvo_library DESTINATION "${headers}")
install(EXPORT KanvoTargets NAMESPACE Kanvo:: DESTINATION "${package}")

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/KanvoConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/KanvoConfig.cmake" INSTALL_DESTINATION "${package}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KanvoConfigVersion.cmake"
    VERSION "${PROJECT_VERSION}" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KanvoConfig.cmake" "${PROJECT_BINARY_DIR}/KanvoConfigVersion.cmake"
    DESTINATION "${package}")

# kanvo.pc finds its prefix from its own place, so that the installed tree may be moved as a whole.
# Folders given as absolute paths cannot move; they are written down as they are.
set(pc_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(pc_prefix "${CMAKE_INSTALL_PREFIX}")
    set(pc_libdir "${CMAKE_INSTALL_LIBDIR}")
else()
    file(RELATIVE_PATH pc_up "/${pc_folder}" "/")
    string(REGEX REPLACE "/$" "" pc_up "${pc_up}")
    set(pc_prefix "\${pcfiledir}/${pc_up}")
    set(pc_libdir "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
if(IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
    set(pc_includedir "${headers}")
else()
    set(pc_includedir "\${prefix}/${headers}")
endif()
set(pc_definitions "")
if(NOT KANVO_ASSERT)
    set(pc_definitions " -DTRAK_ASSERTIONS=0")
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/kanvo.pc.in" "${PROJECT_BINARY_DIR}/kanvo.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/kanvo.pc" DESTINATION "${pc_folder}")
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
