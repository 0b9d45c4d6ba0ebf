# SPDX-License-Identifier: BSD-3-Clause
# PETSc of real scalars, with its private headers; integers of 32 or 64 bits.
find_package(PkgConfig REQUIRED)
find_package(MPI REQUIRED COMPONENTS C)
pkg_check_modules(PETSC REQUIRED IMPORTED_TARGET PETSc>=3.18)
string(REGEX MATCH "^[0-9]+\\.[0-9]+" petsc_version ${PETSC_VERSION})
find_file(petsc_configuration petscconf.h
    PATHS ${PETSC_INCLUDE_DIRS} ${PETSC_INCLUDEDIR} NO_DEFAULT_PATH NO_CACHE REQUIRED)
file(STRINGS ${petsc_configuration} petsc_scalars REGEX "define +PETSC_USE_(COMPLEX|REAL_DOUBLE)")
if(petsc_scalars MATCHES COMPLEX OR NOT petsc_scalars MATCHES REAL_DOUBLE)
    message(FATAL_ERROR "The solver type of PETSc solves real systems in double precision, and this PETSc has other "
        "scalars: ${petsc_configuration}. PKG_CONFIG_PATH chooses another PETSc.")
endif()
find_path(PETSC_PRIVATE_INCLUDE_DIR petsc/private/matimpl.h REQUIRED
    HINTS ${PETSC_INCLUDE_DIRS} /usr/share/petsc/${petsc_version}/include)
