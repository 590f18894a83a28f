# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

# The Debian packages that `cpack` makes, one of each component; the preset "debian" builds what they
# hold, for the folders that Debian has.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The OvCustomControl developers <developers@ovcustomcontrol.example>"
    CACHE STRING "Maintainer of the Debian packages")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
if(OVCC_BUILD_VIEWER)
    list(APPEND CPACK_COMPONENTS_ALL viewer)
endif()

# A library is called after its file and its SOVERSION: libname1, or libname6-1.
string(TOLOWER lib${OVCC_PACKAGE} name)
string(REGEX REPLACE "([0-9])$" "\\1-" runtime ${name})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime}${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "widgets for the user interface of a CAD application
A layer manager for drawings with up to 100,000 layers, a compact layer combo
box, property pickers, galleries and chrome for a ribbon, and the dialogs that
go with them; and a drawing database over DXF files.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${name}-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(qt qtbase5-dev)
if(OVCC_QT_MAJOR EQUAL 6)
    set(qt qt6-base-dev)
endif()
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${qt} (>= ${OVCC_QT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "widgets for a CAD application - development files
Headers, pictures and what CMake and pkg-config need to build programs with
${OVCC_PACKAGE}, and a plugin that has Qt Designer offer its widgets.")
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)

set(CPACK_DEBIAN_VIEWER_PACKAGE_NAME tessa-viewer)
set(CPACK_DEBIAN_VIEWER_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_VIEWER_DESCRIPTION "viewer for DXF drawings with a layer manager
Opens DXF drawings from R12 to R2018, shows them in several viewports and
switches their layers; colour, lineweight and linetype of entities can be
changed and saved, and the rest of the file stays as it is.")
set(CPACK_COMPONENT_VIEWER_DEPENDS runtime)

# Debian's tools find out what the programs depend on.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR} ${PROJECT_BINARY_DIR}/host)

# They note what depends on the libraries. The trigger has the loader find them; CPack would add two
# scripts that do so once more, were they not named here, where they need not be there.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(folder ${CMAKE_CURRENT_LIST_DIR}/debian)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${folder}/triggers ${folder}/postinst ${folder}/postrm)

set(CPACK_OVCC_SOURCE_DIR ${PROJECT_SOURCE_DIR})
set(CPACK_OVCC_DOCDIR ${OVCC_INSTALL_DOCDIR})
set(CPACK_PRE_BUILD_SCRIPTS ${folder}/documents.cmake)
include(CPack)
