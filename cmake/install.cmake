# SPDX-License-Identifier: BSD-3-Clause
# What `cmake --install` puts where. Nothing below depends on the prefix: an installed tree may be moved.
#
# Components: runtime (the library), development (all that compiling against it takes), tools (the programs),
# petsc (the solver type of PETSc).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZEFTOVBlaModule)

# bla_install_fortran_module(NAME LIBRARY): its source for any compiler, and compiled. Compiled modules can be read by
# the compiler versions that share their format only, so each format has a directory of its own.
function(bla_install_fortran_module name library)
    if(NOT TARGET ${name})
        return()
    endif()
    install(FILES fortran/${name}.f90 DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
    if(NOT CMAKE_Fortran_COMPILER_ID STREQUAL GNU)
        return()
    endif()
    set(format 15)
    if(CMAKE_Fortran_COMPILER_VERSION VERSION_GREATER_EQUAL 15)
        set(format 16)
    endif()
    set(fortran_dir ${CMAKE_INSTALL_LIBDIR}/fortran/gfortran-mod-${format})
    set(fortran_dir ${fortran_dir} PARENT_SCOPE) # for pkg-config
    install(FILES ${PROJECT_BINARY_DIR}/fortran/${name}.mod DESTINATION ${fortran_dir} COMPONENT development)
    target_include_directories(${library} INTERFACE
        $<INSTALL_INTERFACE:$<$<COMPILE_LANGUAGE:Fortran>:$<INSTALL_PREFIX>/${fortran_dir}>>)
endfunction()

# bla_install_library(LIBRARY HEADER FORTRAN_MODULE PKG_CONFIG_NAME DESCRIPTION): a library, its header, its Fortran
# module, LIBRARY::LIBRARY of the CMake package, and its pkg-config file.
function(bla_install_library library header fortran_module name description)
    install(TARGETS ${library} EXPORT ${library}Targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
    target_include_directories(${library} INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    bla_install_fortran_module(${fortran_module} ${library})
    install(EXPORT ${library}Targets NAMESPACE ${library}:: DESTINATION ${package_dir} COMPONENT development)

    file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
    string(REGEX REPLACE "/$" "" prefix_from_pc ${prefix_from_pc})
    set(fortran_flags)
    if(fortran_dir)
        set(fortran_flags " -I\${fmoddir}")
    endif()
    configure_file(cmake/pkgconfig.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)
endfunction()
bla_install_library(ZEFTOVBlaModule ${module}/TOVBlaModule.h tovbla zeftovblamodule "${PROJECT_DESCRIPTION}")
if(TARGET ZEFTOVBlaSolver)
    bla_install_library(ZEFTOVBlaSolver solver/TOVBlaSolver.h tovbla_solver zeftovblasolver "Sparse direct solver")
    set_target_properties(ZEFTOVBlaSolver PROPERTIES INSTALL_RPATH $ORIGIN) # where the module is
endif()

# find_package(ZEFTOVBlaModule CONFIG): the targets of every library that is installed.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZEFTOVBlaModuleConfigVersion.cmake
    VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES cmake/ZEFTOVBlaModuleConfig.cmake ${PROJECT_BINARY_DIR}/ZEFTOVBlaModuleConfigVersion.cmake
    DESTINATION ${package_dir} COMPONENT development)

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

# The solver type of PETSc: one file for PETSc's loader and for programs that link it, and the header for these.
if(TARGET petsc_tovbla)
    set_target_properties(petsc_tovbla PROPERTIES INSTALL_RPATH $ORIGIN)
    install(TARGETS petsc_tovbla LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT petsc)
    install(FILES petsc/petsc_tovbla.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT petsc)
    install(FILES docs/petsc-tovbla.7 DESTINATION ${CMAKE_INSTALL_MANDIR}/man7 COMPONENT petsc)
endif()

install(FILES examples/first_call.cpp examples/first_call.f90 examples/eliminations.cpp
    examples/first_solve.c examples/first_solve.cpp examples/first_solve.f90
    DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT development)
install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
