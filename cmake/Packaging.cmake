# Debian packages and the tarball of the sources:
#   cmake -B build/debian -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_BUILD_TYPE=Release
#   cmake --build build/debian && (cd build/debian && cpack -G DEB)
#   cpack --config build/debian/CPackSourceConfig.cmake
set(CPACK_PACKAGE_NAME kestrix)
set(CPACK_PACKAGE_VENDOR "Kestrix")
set(CPACK_PACKAGE_CONTACT "The developers of Kestrix <developers@kestrix.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "tool and library for packages of texture graphs")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_INSTALL_DIRECTORY kestrix)

# What people who run the tool need is one package: tool, libraries, modules.
set(CPACK_COMPONENTS_ALL tool runtime development)
if(TARGET kestrix_python)
    list(APPEND CPACK_COMPONENTS_ALL python)
endif()
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_COMPONENT_TOOL_GROUP kestrix)
set(CPACK_COMPONENT_RUNTIME_GROUP kestrix)
set(CPACK_COMPONENT_DEVELOPMENT_GROUP libksx-dev)
set(CPACK_COMPONENT_PYTHON_GROUP python3-kestrix)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The libraries are part of the package that is being made.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/installed")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)

set(CPACK_DEBIAN_KESTRIX_PACKAGE_NAME kestrix)
set(CPACK_DEBIAN_KESTRIX_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_KESTRIX_DESCRIPTION "Brings the package files of a procedural texture-graph authoring system to
the current format, changes or freezes their inputs, and makes ready graphs
of filters. Runs without a user, and never leaves a file half written. The tool ksx lists
what is in packages.")

set(CPACK_DEBIAN_KESTRIX_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/debian/triggers")

set(CPACK_DEBIAN_LIBKSX-DEV_PACKAGE_NAME libksx-dev)
set(CPACK_DEBIAN_LIBKSX-DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_LIBKSX-DEV_PACKAGE_DEPENDS
    "kestrix (= ${PROJECT_VERSION}), qtbase5-dev, libboost-dev, libboost-program-options-dev")
set(CPACK_DEBIAN_LIBKSX-DEV_DESCRIPTION "Headers and links for programs that open, edit and save the package files
of a procedural texture-graph authoring system, with undo. Read by
find_package(Kestrix) of CMake and by pkg-config.")

set(CPACK_DEBIAN_PYTHON3-KESTRIX_PACKAGE_NAME python3-kestrix)
set(CPACK_DEBIAN_PYTHON3-KESTRIX_PACKAGE_SECTION python)
# The compiled part is for one minor version of Python.
set(CPACK_DEBIAN_PYTHON3-KESTRIX_PACKAGE_DEPENDS "kestrix (= ${PROJECT_VERSION}), python3")
if(TARGET kestrix_python)
    math(EXPR next_python "${KESTRIX_PYTHON_MINOR} + 1")
    string(APPEND CPACK_DEBIAN_PYTHON3-KESTRIX_PACKAGE_DEPENDS
        " (>= 3.${KESTRIX_PYTHON_MINOR}~), python3 (<< 3.${next_python}~)")
endif()
set(CPACK_DEBIAN_PYTHON3-KESTRIX_DESCRIPTION "A module for programs that open, edit and save the package files of a
procedural texture-graph authoring system, with undo, and that run the
commands of the tool.")

# Each package has its changes and its terms.
file(WRITE "${PROJECT_BINARY_DIR}/debian/triggers" "activate-noawait ldconfig\n")
file(WRITE "${PROJECT_BINARY_DIR}/debian/changelog"
"kestrix (${PROJECT_VERSION}) unstable; urgency=medium

  * See CHANGELOG.md of the sources.

 -- The developers of Kestrix <developers@kestrix.invalid>  Sun, 22 Nov 2026 12:00:00 +0000
")
file(ARCHIVE_CREATE OUTPUT "${PROJECT_BINARY_DIR}/debian/changelog.raw"
    PATHS "${PROJECT_BINARY_DIR}/debian/changelog" FORMAT raw COMPRESSION GZip COMPRESSION_LEVEL 9)
foreach(pair kestrix:tool libksx-dev:development python3-kestrix:python)
    string(REPLACE ":" ";" pair "${pair}")
    list(POP_FRONT pair package component)
    if(NOT component IN_LIST CPACK_COMPONENTS_ALL)
        continue()
    endif()
    set(folder "${CMAKE_INSTALL_DATADIR}/doc/${package}")
    install(FILES "${PROJECT_SOURCE_DIR}/cmake/debian/copyright"
        DESTINATION "${folder}" COMPONENT ${component})
    install(FILES "${PROJECT_BINARY_DIR}/debian/changelog.raw" RENAME changelog.gz
        DESTINATION "${folder}" COMPONENT ${component})
endforeach()

set(CPACK_SOURCE_GENERATOR TXZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME "kestrix-${PROJECT_VERSION}")
set(CPACK_SOURCE_IGNORE_FILES "/\\.git" "/build/" "~$")
include(CPack)
