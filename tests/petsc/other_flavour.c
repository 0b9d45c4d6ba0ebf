/* SPDX-License-Identifier: BSD-3-Clause */
/* Loaded before PETSc, this answers in its place what scalars and integers it has: FLAVOUR is "complex",
 * "long" (integers of 64 bits) or "real". */
#include <petscsys.h>

#include <stdlib.h>
#include <string.h>

static int flavour(const char* name)
{
    const char* wanted = getenv("FLAVOUR");
    return wanted && strcmp(wanted, name) == 0;
}

PetscErrorCode PetscDataTypeFromString(const char* name, PetscDataType* type, PetscBool* found)
{
    (void)name; /* only "scalar" is asked for */
    *type = flavour("complex") ? PETSC_COMPLEX : PETSC_DOUBLE;
    *found = PETSC_TRUE;
    return 0;
}

PetscErrorCode PetscDataTypeGetSize(PetscDataType type, size_t* bytes)
{
    (void)type; /* only PETSC_INT is asked for */
    *bytes = flavour("long") ? 2 * sizeof(PetscInt) : sizeof(PetscInt);
    return 0;
}
