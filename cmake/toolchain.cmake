# SPDX-License-Identifier: BSD-3-Clause
# What the library can be built for and with, said in one sentence before anything is compiled. (Where there is no uname,
# the processor's name is empty.)
if(NOT CMAKE_SYSTEM_NAME STREQUAL Linux OR NOT CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|amd64|AMD64|)$"
        OR NOT CMAKE_SIZEOF_VOID_P EQUAL 8)
    math(EXPR bits "8*${CMAKE_SIZEOF_VOID_P}")
    message(FATAL_ERROR "${PROJECT_NAME} is for 64-bit x86-64 Linux, not for ${bits}-bit "
        "${CMAKE_SYSTEM_PROCESSOR} ${CMAKE_SYSTEM_NAME}.")
endif()

# The oldest whose digest and instructions are tested; scripts/compilers.sh runs all of them.
set(oldest_GNU 11)
set(oldest_Clang 13)
if(NOT DEFINED oldest_${CMAKE_CXX_COMPILER_ID})
    message(FATAL_ERROR "${PROJECT_NAME} is compiled by GCC ${oldest_GNU} or clang ${oldest_Clang}, or newer, not by "
        "${CMAKE_CXX_COMPILER}: the bits of its kernels are known with these two.")
elseif(CMAKE_CXX_COMPILER_VERSION VERSION_LESS oldest_${CMAKE_CXX_COMPILER_ID})
    message(FATAL_ERROR "${PROJECT_NAME} needs GCC ${oldest_GNU} or clang ${oldest_Clang}, or newer; "
        "${CMAKE_CXX_COMPILER} is ${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}.")
endif()

# Flags that let the compiler round otherwise than written. Read as text: clang defines a macro for few of them.
get_directory_property(options COMPILE_OPTIONS)
string(TOUPPER "${CMAKE_BUILD_TYPE}" type)
foreach(flag ${options} "${CMAKE_CXX_FLAGS}" "${CMAKE_CXX_FLAGS_${type}}")
    string(REGEX MATCH "-(Ofast|ffast-math|funsafe-math-optimizations|fassociative-math|freciprocal-math|\
ffinite-math-only|fno-signed-zeros)" found "${flag}")
    if(found)
        message(FATAL_ERROR "${PROJECT_NAME} cannot be compiled with ${found}: its kernels give the same bits "
            "everywhere, which takes every operation as it is written.")
    endif()
endforeach()
