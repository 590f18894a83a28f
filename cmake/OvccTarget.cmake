# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

# What all targets of this project share, and the include tree that its users see.

set(OVCC_INCLUDE_DIR "${PROJECT_BINARY_DIR}/include")

set(OVCC_SYMBOL_MAP "${CMAKE_CURRENT_LIST_DIR}/own-symbols.map")

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# ovcc_harden(<target>): has it notice an overflowing buffer, and hold nothing that can be written and
# run, or written after it was loaded. Sanitizers notice more by themselves, and one's own choice of
# _FORTIFY_SOURCE goes first.
function(ovcc_harden target)
    get_target_property(type ${target} TYPE)
    if(NOT CMAKE_CXX_FLAGS MATCHES sanitize)
        target_compile_options(${target} PRIVATE -fstack-protector-strong)
        if(NOT CMAKE_CXX_FLAGS MATCHES _FORTIFY_SOURCE)
            # It needs an optimizing compiler.
            target_compile_options(${target} PRIVATE
                "$<$<CONFIG:Release>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>"
                "$<$<CONFIG:RelWithDebInfo>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>"
                "$<$<CONFIG:MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
        endif()
    endif()
    if(type STREQUAL EXECUTABLE)
        set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
        set(binding now)
    else()
        # The host's functions may come later than the library, whatever flags it is packaged with.
        set(binding lazy)
    endif()
    if(NOT type STREQUAL STATIC_LIBRARY)
        target_link_options(${target} PRIVATE
            LINKER:-z,relro LINKER:-z,noexecstack LINKER:-z,${binding})
    endif()
endfunction()

# ovcc_own_target(<target>): the language, warnings, visibility and hardening of this project's own code.
function(ovcc_own_target target)
    set_target_properties(${target} PROPERTIES
        AUTOMOC ON
        AUTOUIC ON
        CXX_STANDARD 17
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_features(${target} PUBLIC cxx_std_17)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic
        $<$<BOOL:${OVCC_WERROR}>:-Werror>)
    target_compile_definitions(${target} PRIVATE
        QT_DEPRECATED_WARNINGS QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
    ovcc_harden(${target})
    get_target_property(type ${target} TYPE)
    if(type STREQUAL SHARED_LIBRARY)
        target_link_options(${target} PRIVATE LINKER:--version-script=${OVCC_SYMBOL_MAP})
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${OVCC_SYMBOL_MAP})
        set_target_properties(${target} PROPERTIES
            VERSION ${PROJECT_VERSION}
            SOVERSION ${PROJECT_VERSION_MAJOR})
    endif()
endfunction()

# ovcc_check_host_sdk(): stops with one sentence if OVCC_HOST_SDK_DIR is not the folder to compile
# against, so that nobody has to find out from errors of the compiler. Tells in OVCC_HOST_SDK_IS_OWN
# whether it is that of the embedded host.
function(ovcc_check_host_sdk)
    set(headers KcDb.h KcEd.h OvHost.h)
    if(OVCC_BUILD_RIBBON)
        list(APPEND headers NsRc.h)
    endif()
    set(missing)
    foreach(header IN LISTS headers)
        if(NOT EXISTS "${OVCC_HOST_SDK_DIR}/${header}")
            list(APPEND missing ${header})
        endif()
    endforeach()
    if(missing)
        list(JOIN missing ", " missing)
        string(REPLACE NsRc.h "NsRc.h (not needed with -DOVCC_BUILD_RIBBON=OFF)" missing "${missing}")
        message(FATAL_ERROR "OVCC_HOST_SDK_DIR (${OVCC_HOST_SDK_DIR}) lacks ${missing}.")
    endif()
    get_filename_component(folder "${OVCC_HOST_SDK_DIR}" REALPATH)
    get_filename_component(own "${PROJECT_SOURCE_DIR}/host/sdk" REALPATH)
    set(OVCC_HOST_SDK_IS_OWN OFF)
    if(folder STREQUAL own)
        set(OVCC_HOST_SDK_IS_OWN ON)
    endif()
    set(OVCC_HOST_SDK_IS_OWN ${OVCC_HOST_SDK_IS_OWN} PARENT_SCOPE)
    if(OVCC_BUILD_HOST AND NOT OVCC_HOST_SDK_IS_OWN)
        message(FATAL_ERROR "OVCC_HOST_SDK_DIR (${OVCC_HOST_SDK_DIR}) is of another host than the "
            "embedded one: configure with -DOVCC_BUILD_HOST=OFF.")
    endif()
endfunction()

# ovcc_keep_header(<name> <header>): says that there is a header <name> in the include tree, and that
# users of an installation include <header> by that name.
function(ovcc_keep_header name header)
    set_property(GLOBAL APPEND PROPERTY OVCC_HEADERS "${OVCC_INCLUDE_DIR}/${name}")
    get_filename_component(folder "${name}" DIRECTORY)
    ovcc_install_files(development ${OVCC_INSTALL_INCLUDEDIR}/${folder} "${header}")
endfunction()

# ovcc_remove_other_headers(): removes what an earlier configuration left in the include tree.
function(ovcc_remove_other_headers)
    get_property(headers GLOBAL PROPERTY OVCC_HEADERS)
    file(GLOB present "${OVCC_INCLUDE_DIR}/*/*.h")
    foreach(header IN LISTS present)
        if(NOT header IN_LIST headers)
            file(REMOVE "${header}")
        endif()
    endforeach()
endfunction()

# ovcc_forward_header(<name> <header>): lets users of the build tree include <header> as <name>.
function(ovcc_forward_header name header)
    set(content "#include \"${header}\"\n")
    set(file "${OVCC_INCLUDE_DIR}/${name}")
    if(EXISTS "${file}")
        file(READ "${file}" present)
    endif()
    if(NOT "${present}" STREQUAL "${content}")
        file(WRITE "${file}" "${content}")
    endif()
    ovcc_keep_header("${name}" "${header}")
endfunction()

# ovcc_forward_public_headers(<umbrella> <header>...): forwards each header under its own name in
# the umbrella's folder, and makes the umbrella include them all.
function(ovcc_forward_public_headers umbrella)
    get_filename_component(folder "${umbrella}" DIRECTORY)
    set(includes "#pragma once\n\n")
    foreach(header IN LISTS ARGN)
        get_filename_component(name "${header}" NAME)
        get_filename_component(path "${header}" ABSOLUTE)
        ovcc_forward_header("${folder}/${name}" "${path}")
        string(APPEND includes "#include <${folder}/${name}>\n")
    endforeach()
    file(GENERATE OUTPUT "${OVCC_INCLUDE_DIR}/${umbrella}" CONTENT "${includes}")
    ovcc_keep_header("${umbrella}" "${OVCC_INCLUDE_DIR}/${umbrella}")
endfunction()
