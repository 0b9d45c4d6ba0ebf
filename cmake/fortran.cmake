# SPDX-License-Identifier: BSD-3-Clause
# The interface module for Fortran callers. It has no code of its own: compiled, it is the file tovbla.mod.
include(CheckLanguage)
check_language(Fortran)
if(CMAKE_Fortran_COMPILER)
    enable_language(Fortran)
    add_library(tovbla OBJECT fortran/tovbla.f90)
    set_target_properties(tovbla PROPERTIES Fortran_MODULE_DIRECTORY ${PROJECT_BINARY_DIR}/fortran)
    target_include_directories(tovbla INTERFACE ${PROJECT_BINARY_DIR}/fortran)
endif()
