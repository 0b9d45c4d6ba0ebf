# SPDX-License-Identifier: BSD-3-Clause
# Debian packages: `cpack -G DEB` in a build directory that was configured for the prefix /usr, which is what
# gives the distribution's directories. scripts/package.sh does all of it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zeftovblamodule)
set(CPACK_PACKAGE_CONTACT "ZEFTOVBlaModule developers <zeftovblamodule@packages.debian.org>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development tools)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE zeftovblamodule)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
set(CPACK_COMPONENT_TOOLS_DEPENDS runtime)

# What the binaries load is found by dpkg-shlibdeps: the BLAS by its virtual names, as its packages have it.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libzeftovblamodule${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/debian/triggers)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "Elimination of dense fronts, scaled products, block assembly, Cholesky
modification, sparse products, and a facade over BLAS and LAPACK. The
kernels give the same bits on every processor.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzeftovblamodule-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "gfortran-mod-${format}, pkg-config")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "Development files: header for C and C++, interface module for Fortran,
CMake package, pkg-config file, and the manual as HTML and man pages.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME zeftovblamodule-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION math)
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS libopenblas0)
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "bla_solve, a sparse direct solver for Matrix Market files on top of the
library, and bla_info, which tells what the library runs on.")

file(READ LICENSE license_text)
string(STRIP "${license_text}" license_text)
string(FIND "${license_text}" "\n" first_line) # the copyright line
string(SUBSTRING "${license_text}" ${first_line} -1 license_text)
string(STRIP "${license_text}" license_text)
string(REPLACE "\n\n" "\n.\n" license_text "${license_text}")
string(REPLACE "\n" "\n " license_text " ${license_text}")
configure_file(packaging/debian/copyright.in ${PROJECT_BINARY_DIR}/debian/copyright @ONLY)
configure_file(packaging/debian/changelog.in ${PROJECT_BINARY_DIR}/debian/changelog @ONLY)
set(CPACK_BLA_SOURCE_DIR ${PROJECT_SOURCE_DIR})
set(CPACK_BLA_DEBIAN_DIR ${PROJECT_BINARY_DIR}/debian)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/debian/finish.cmake)
include(CPack)
