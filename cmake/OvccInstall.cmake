# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

# What an installation holds, and where. It has three components:
#
#   runtime      the shared libraries, the licence and the list of changes
#   development  the headers, what the linker needs, the CMake package, the files for pkg-config and the
#                plugin for Qt Designer
#   viewer       the viewer and what a desktop needs of it
#
# Nothing in it knows where it is: it can be moved as a whole.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# The CMake package, the library of widgets and its file for pkg-config go by this name. Packages with
# different suffixes share no file but those of the viewer.
set(OVCC_PACKAGE OvCustomControl${OVCC_PACKAGE_SUFFIX})

# From here headers are included as <OvCustomControl/Name.h> and <KcHost/Name.h>, and from the second
# folder the host's by their plain names.
set(OVCC_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR})
if(OVCC_PACKAGE_SUFFIX)
    string(APPEND OVCC_INSTALL_INCLUDEDIR /${OVCC_PACKAGE})
endif()
set(OVCC_INSTALL_SDKDIR ${OVCC_INSTALL_INCLUDEDIR}/KcSdk)

set(OVCC_INSTALL_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/${OVCC_PACKAGE})
set(OVCC_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/${OVCC_PACKAGE})
set(OVCC_PACKAGE_TEMPLATES ${CMAKE_CURRENT_LIST_DIR}/package)

# ovcc_install_files(<component> <folder> <file>...)
function(ovcc_install_files component folder)
    if(OVCC_INSTALL)
        install(FILES ${ARGN} DESTINATION ${folder} COMPONENT ${component})
    endif()
endfunction()

# ovcc_install_library(<target> <name>): makes the library OvCustomControl::<name> of the package, or
# OvCustomControlQt6::<name>; for a project around this one it goes by both.
function(ovcc_install_library target name)
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
    add_library(OvCustomControl::${name} ALIAS ${target})
    if(OVCC_PACKAGE_SUFFIX)
        add_library(${OVCC_PACKAGE}::${name} ALIAS ${target})
    endif()
    get_target_property(type ${target} TYPE)
    if(NOT type STREQUAL INTERFACE_LIBRARY)
        set_target_properties(${target} PROPERTIES OUTPUT_NAME ${target}${OVCC_PACKAGE_SUFFIX})
    endif()
    if(OVCC_INSTALL)
        install(TARGETS ${target} EXPORT ${OVCC_PACKAGE}
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime
                NAMELINK_COMPONENT development
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
    endif()
endfunction()

# ovcc_install_pkgconfig(<target> <description> <Qt module> [<linker flag>...]): lets programs that are
# not built by CMake find the library, which needs that module and those below it.
function(ovcc_install_pkgconfig target description module)
    set(name ${target}${OVCC_PACKAGE_SUFFIX})
    set(libs -l${name} ${ARGN})
    list(JOIN libs " " libs)
    set(cflags -I\${includedir})
    if(OVCC_HOST_SDK_IS_OWN)
        string(APPEND cflags " -I\${prefix}/${OVCC_INSTALL_SDKDIR}")
    endif()
    file(RELATIVE_PATH prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
    file(RELATIVE_PATH libdir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
    string(REGEX REPLACE "/$" "" prefix "${prefix}")
    configure_file(${OVCC_PACKAGE_TEMPLATES}/pkgconfig.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
    ovcc_install_files(development ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        ${PROJECT_BINARY_DIR}/${name}.pc)
endfunction()

# ovcc_install_program(<target> <component>): it finds the libraries from where it is.
function(ovcc_install_program target component)
    file(RELATIVE_PATH libdir ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(${target} PROPERTIES INSTALL_RPATH $ORIGIN/${libdir})
    if(OVCC_INSTALL)
        install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
            COMPONENT ${component})
    endif()
endfunction()

# ovcc_install_qt_plugin(<target> <component> <kind>): puts it where Qt looks for plugins of that kind,
# if Qt is in the same folder of libraries. It finds them from there.
function(ovcc_install_qt_plugin target component kind)
    set_target_properties(${target} PROPERTIES INSTALL_RPATH $ORIGIN/../../..)
    if(OVCC_INSTALL)
        install(TARGETS ${target} COMPONENT ${component}
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/qt${OVCC_QT_MAJOR}/plugins/${kind})
    endif()
endfunction()

# ovcc_install_package(): lets CMake find all of it by find_package().
function(ovcc_install_package)
    if(NOT OVCC_INSTALL)
        return()
    endif()
    set(config ${PROJECT_BINARY_DIR}/${OVCC_PACKAGE}Config.cmake)
    set(version ${PROJECT_BINARY_DIR}/${OVCC_PACKAGE}ConfigVersion.cmake)
    configure_package_config_file(${OVCC_PACKAGE_TEMPLATES}/Config.cmake.in ${config}
        INSTALL_DESTINATION ${OVCC_INSTALL_CMAKEDIR})
    write_basic_package_version_file(${version} COMPATIBILITY SameMajorVersion)
    ovcc_install_files(development ${OVCC_INSTALL_CMAKEDIR} ${config} ${version})
    install(EXPORT ${OVCC_PACKAGE} FILE ${OVCC_PACKAGE}Targets.cmake NAMESPACE ${OVCC_PACKAGE}::
        DESTINATION ${OVCC_INSTALL_CMAKEDIR} COMPONENT development)
    ovcc_install_files(runtime ${OVCC_INSTALL_DOCDIR} LICENSE CHANGELOG.md)
endfunction()
