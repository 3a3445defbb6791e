# What `cmake --install` puts where.
#
#   bin/kestrix, bin/ksx                 the tools
#   lib/libksxkit.so, libksx.so, liborv.so   the libraries, with their versions
#   lib/kestrix/                         what they load or start at need
#   lib/cmake/Kestrix, lib/pkgconfig     for programs that use the libraries
#   include/kestrix/                     the public headers
#   share/man, share/bash-completion ... for people at a terminal
#
# The components are `tool` and `runtime` for people who run the tool, and `development`.
include(CMakePackageConfigHelpers)

option(KESTRIX_STATIC_LIBRARIES "Install static libraries in place of shared ones" OFF)

set(header_dir "${CMAKE_INSTALL_INCLUDEDIR}/kestrix")
set(config_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Kestrix")

# kestrix_installed_library(NAME): adds NAME_installed, a library of the objects of the static library
# NAME. The tool links the static one: a shared library costs each start thousands of relocations.
function(kestrix_installed_library name)
    set(target ${name}_installed)
    set(kind SHARED)
    if(KESTRIX_STATIC_LIBRARIES)
        set(kind STATIC)
    endif()
    add_library(${target} ${kind} $<TARGET_OBJECTS:${name}>)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME ${name}
        EXPORT_NAME ${name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "$ORIGIN"
        LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/installed"
        ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/installed"
        LINKER_LANGUAGE CXX)
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:kestrix_options>)
    install(TARGETS ${target} EXPORT KestrixTargets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime
                NAMELINK_COMPONENT development
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
        INCLUDES DESTINATION "${header_dir}")
endfunction()

kestrix_installed_library(orv)
if(KESTRIX_STATIC_LIBRARIES)
    set(program_options Boost::program_options)
else()
    # The static library, which the tool links, cannot be a part of a shared one.
    find_library(KESTRIX_SHARED_PROGRAM_OPTIONS boost_program_options REQUIRED)
    mark_as_advanced(KESTRIX_SHARED_PROGRAM_OPTIONS)
    set(program_options "${KESTRIX_SHARED_PROGRAM_OPTIONS}")
endif()
target_link_libraries(orv_installed
    PUBLIC Qt${QT_VERSION_MAJOR}::Core Boost::headers Threads::Threads
    PRIVATE ${program_options} ${CMAKE_DL_LIBS})
kestrix_installed_library(ksx)
target_link_libraries(ksx_installed
    PUBLIC orv_installed
    PRIVATE Qt${QT_VERSION_MAJOR}::Xml)

kestrix_installed_library(ksxkit)
target_link_libraries(ksxkit_installed PUBLIC ksx_installed PRIVATE "${NETTLE}")

install(TARGETS kestrix ksxtool RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tool)
install(TARGETS ksx_archives ksx_imageformats ksx_layout ksx_painter kestrix-decode
    RUNTIME DESTINATION "${KESTRIX_MODULE_DIR}" COMPONENT runtime
    LIBRARY DESTINATION "${KESTRIX_MODULE_DIR}" COMPONENT runtime)

find_program(GZIP gzip REQUIRED)
mark_as_advanced(GZIP)
set(completion_dir "${PROJECT_BINARY_DIR}/completion")
foreach(program kestrix ksx)
    set(page "${PROJECT_SOURCE_DIR}/docs/man/${program}.1")
    set(packed_page "${PROJECT_BINARY_DIR}/man/${program}.1.gz")
    add_custom_command(
        OUTPUT "${packed_page}"
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${PROJECT_BINARY_DIR}/man"
        COMMAND "${GZIP}" -9nc "${page}" > "${packed_page}"
        DEPENDS "${page}"
        VERBATIM)
    add_custom_target(${program}_man ALL DEPENDS "${packed_page}")
    install(FILES "${packed_page}"
        DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tool)
    install(FILES "${completion_dir}/${program}.bash" RENAME ${program}
        DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT tool)
    install(FILES "${completion_dir}/${program}.zsh" RENAME _${program}
        DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions" COMPONENT tool)
    install(FILES "${completion_dir}/${program}.fish"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT tool)
endforeach()

install(FILES "${PROJECT_SOURCE_DIR}/docs/ksx.schema.json"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/kestrix" COMPONENT tool)

# Headers that do the work of macros end with .inc, and tables of members with .members.
install(DIRECTORY
        "${PROJECT_SOURCE_DIR}/common/data/include/"
        "${PROJECT_SOURCE_DIR}/common/core/include/"
        "${PROJECT_SOURCE_DIR}/kestrix/common/include/"
    DESTINATION "${header_dir}" COMPONENT development)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/data/content" "${PROJECT_SOURCE_DIR}/data/desc"
    DESTINATION "${header_dir}/data" COMPONENT development
    FILES_MATCHING PATTERN "*.h" PATTERN "*.members")

install(EXPORT KestrixTargets NAMESPACE Kestrix::
    DESTINATION "${config_dir}" COMPONENT development)
configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/KestrixConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/installed/KestrixConfig.cmake"
    INSTALL_DESTINATION "${config_dir}")
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/installed/KestrixConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
# The libraries belong to the runtime, but pkg-config finds itself by the place of its file.
file(RELATIVE_PATH prefix_from_pkgconfig
    "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file("${PROJECT_SOURCE_DIR}/cmake/kestrix.pc.in"
    "${PROJECT_BINARY_DIR}/installed/kestrix.pc" @ONLY)
install(FILES
        "${PROJECT_BINARY_DIR}/installed/KestrixConfig.cmake"
        "${PROJECT_BINARY_DIR}/installed/KestrixConfigVersion.cmake"
    DESTINATION "${config_dir}" COMPONENT development)
install(FILES "${PROJECT_BINARY_DIR}/installed/kestrix.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
