# SPDX-License-Identifier: BSD-3-Clause
# What `cmake --install` puts where. Nothing below depends on the prefix: an installed tree may be moved.
#
# Components: runtime (the library), development (all that compiling against it takes), tools (the programs).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZEFTOVBlaModule)

install(TARGETS ZEFTOVBlaModule EXPORT ZEFTOVBlaModuleTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
install(FILES ${module}/TOVBlaModule.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
target_include_directories(ZEFTOVBlaModule INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

# The Fortran module: its source for any compiler, and compiled. Compiled modules can be read by the compiler
# versions that share their format only, so each format has a directory of its own.
if(TARGET tovbla)
    install(FILES fortran/tovbla.f90 DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
    if(CMAKE_Fortran_COMPILER_ID STREQUAL GNU)
        set(format 15)
        if(CMAKE_Fortran_COMPILER_VERSION VERSION_GREATER_EQUAL 15)
            set(format 16)
        endif()
        set(fortran_dir ${CMAKE_INSTALL_LIBDIR}/fortran/gfortran-mod-${format})
        install(FILES ${PROJECT_BINARY_DIR}/fortran/tovbla.mod DESTINATION ${fortran_dir} COMPONENT development)
        target_include_directories(ZEFTOVBlaModule INTERFACE
            $<INSTALL_INTERFACE:$<$<COMPILE_LANGUAGE:Fortran>:$<INSTALL_PREFIX>/${fortran_dir}>>)
    endif()
endif()

# find_package(ZEFTOVBlaModule CONFIG)
install(EXPORT ZEFTOVBlaModuleTargets NAMESPACE ZEFTOVBlaModule:: DESTINATION ${package_dir}
    FILE ZEFTOVBlaModuleConfig.cmake COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZEFTOVBlaModuleConfigVersion.cmake
    VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZEFTOVBlaModuleConfigVersion.cmake DESTINATION ${package_dir}
    COMPONENT development)

# pkg-config zeftovblamodule
file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" prefix_from_pc ${prefix_from_pc})
set(fortran_flags)
if(fortran_dir)
    set(fortran_flags " -I\${fmoddir}")
endif()
configure_file(cmake/zeftovblamodule.pc.in ${PROJECT_BINARY_DIR}/zeftovblamodule.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zeftovblamodule.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)

# The programs, each with its man page. They find the library of the tree they stand in, wherever that tree is.
file(RELATIVE_PATH lib_from_bin /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
function(bla_install_program program purpose)
    if(NOT TARGET ${program})
        return()
    endif()
    set_target_properties(${program} PROPERTIES INSTALL_RPATH $ORIGIN/${lib_from_bin})
    install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
    set(page ${PROJECT_BINARY_DIR}/man/${program}.1)
    add_custom_command(OUTPUT ${page} DEPENDS ${program} cmake/program_man.cmake
        COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:${program}> -DNAME=${program} -DPURPOSE=${purpose}
            -DVERSION=${PROJECT_VERSION} -DOUTPUT=${page} -P ${PROJECT_SOURCE_DIR}/cmake/program_man.cmake
        VERBATIM)
    add_custom_target(${program}_man ALL DEPENDS ${page})
    install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
endfunction()
bla_install_program(bla_solve "solve a sparse linear system front by front")
bla_install_program(bla_info "tell what the linear algebra module runs on")

install(FILES examples/first_call.cpp examples/first_call.f90 examples/eliminations.cpp
    DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT development)
install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
