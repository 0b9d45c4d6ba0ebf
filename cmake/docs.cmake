# SPDX-License-Identifier: BSD-3-Clause
# The reference manual, from the header and docs/. With BLA_WERROR a warning of the generator fails the build.
if(NOT BLA_BUILD_MANUAL)
    return()
endif()
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
    message(STATUS "Without the reference manual: doxygen is not installed")
    return()
endif()
set(manual_dir ${PROJECT_BINARY_DIR}/manual)
set(manual_warnings NO)
if(BLA_WERROR)
    set(manual_warnings FAIL_ON_WARNINGS)
endif()
configure_file(docs/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
add_custom_command(OUTPUT ${manual_dir}/done
    DEPENDS ${PROJECT_BINARY_DIR}/Doxyfile ${module}/TOVBlaModule.h solver/TOVBlaSolver.h examples/eliminations.cpp cmake/manual_pages.cmake
        docs/getting-started.md docs/guide.md docs/bit-identity.md docs/backends.md docs/adding-a-kernel.md
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${manual_dir}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${manual_dir}
    COMMAND Doxygen::doxygen ${PROJECT_BINARY_DIR}/Doxyfile
    COMMAND ${CMAKE_COMMAND} -DPAGES=${manual_dir}/man/man3 -P ${PROJECT_SOURCE_DIR}/cmake/manual_pages.cmake
    COMMAND ${CMAKE_COMMAND} -E touch ${manual_dir}/done
    COMMENT "Generating the reference manual" VERBATIM)
add_custom_target(manual ALL DEPENDS ${manual_dir}/done)

if(BLA_INSTALL)
    install(DIRECTORY ${manual_dir}/html DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
    install(DIRECTORY ${manual_dir}/man/man3 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT development)
endif()
