# SPDX-License-Identifier: BSD-3-Clause
# PETSc of real scalars, with its private headers.
find_package(PkgConfig REQUIRED)
find_package(MPI REQUIRED COMPONENTS C)
pkg_check_modules(PETSC REQUIRED IMPORTED_TARGET PETSc>=3.18)
string(REGEX MATCH "^[0-9]+\\.[0-9]+" petsc_version ${PETSC_VERSION})
find_path(PETSC_PRIVATE_INCLUDE_DIR petsc/private/matimpl.h REQUIRED
    HINTS ${PETSC_INCLUDE_DIRS} /usr/share/petsc/${petsc_version}/include)
