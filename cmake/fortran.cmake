# SPDX-License-Identifier: BSD-3-Clause
# The interface modules for Fortran callers: no code of their own; compiled, each is a file NAME.mod. Within a project
# that does not speak Fortran there are none.
if(PROJECT_IS_TOP_LEVEL)
    include(CheckLanguage)
    check_language(Fortran)
    if(CMAKE_Fortran_COMPILER)
        enable_language(Fortran)
    endif()
endif()

# bla_add_fortran_module(NAME LIBRARY): fortran/NAME.f90, for those who link LIBRARY.
function(bla_add_fortran_module name library)
    if(NOT CMAKE_Fortran_COMPILER_LOADED)
        return()
    endif()
    set(source ${PROJECT_SOURCE_DIR}/fortran/${name}.f90)
    set(directory ${PROJECT_BINARY_DIR}/fortran)
    add_library(${name} OBJECT ${source})
    set_target_properties(${name} PROPERTIES Fortran_MODULE_DIRECTORY ${directory})
    target_include_directories(${name} INTERFACE ${directory})
    target_link_libraries(${library} INTERFACE $<BUILD_INTERFACE:${name}>)
endfunction()
