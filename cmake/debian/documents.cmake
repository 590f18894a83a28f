# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

# Called by CPack for each package that it is about to make: puts in place the documents that Debian's
# packages have, and compresses the manual pages.

if(NOT CPACK_GENERATOR STREQUAL DEB)
    return()
endif()

# compressed(<file> <archive>)
function(compressed file archive)
    execute_process(COMMAND gzip -9nc ${file} OUTPUT_FILE ${archive} COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE ${file})
endfunction()

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(READ ${CPACK_OVCC_SOURCE_DIR}/LICENSE licence)
string(REGEX MATCH "Copyright \\(c\\) ([^\n]*)" _ "${licence}")
set(holders ${CMAKE_MATCH_1})
string(REGEX REPLACE ".*\nCopyright[^\n]*\n\n" "" licence "${licence}")
string(STRIP "${licence}" licence)
string(REPLACE "\n\n" "\n.\n" licence "${licence}")
string(REPLACE "\n" "\n " licence "${licence}")

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    set(staged ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component}/usr)
    string(TOUPPER ${component} upper)
    set(name ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
    set(documents ${staged}/share/doc/${name})
    file(REMOVE_RECURSE ${staged}/${CPACK_OVCC_DOCDIR})
    configure_file(${CMAKE_CURRENT_LIST_DIR}/copyright.in ${documents}/copyright @ONLY)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.in ${documents}/changelog @ONLY)
    compressed(${documents}/changelog ${documents}/changelog.gz)
    file(COPY ${CPACK_OVCC_SOURCE_DIR}/CHANGELOG.md DESTINATION ${documents})
    file(GLOB pages ${staged}/share/man/man*/*.[1-9])
    foreach(page IN LISTS pages)
        compressed(${page} ${page}.gz)
    endforeach()
endforeach()
