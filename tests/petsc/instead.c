/* SPDX-License-Identifier: BSD-3-Clause */
/* Puts tovbla in the place of PETSc's own LU and Cholesky, or of the solver that -instead names: examples
 * that choose no solver, or cannot, then run with ours. PETSc loads this behind the plug-in. */
#include <petscmat.h>

PETSC_EXTERN PetscErrorCode PetscDLLibraryRegister_petsc_tovbla_instead(void);
PetscErrorCode PetscDLLibraryRegister_petsc_tovbla_instead(void)
{
    static const char* const matrices[] = {MATSEQAIJ, MATSEQBAIJ, MATSEQSBAIJ};
    static const MatFactorType factors[] = {MAT_FACTOR_LU, MAT_FACTOR_CHOLESKY};

    char name[64] = MATSOLVERPETSC;

    PetscFunctionBegin;
    PetscCall(PetscOptionsGetString(NULL, NULL, "-instead", name, sizeof name, NULL));
    for (size_t m = 0; m < PETSC_STATIC_ARRAY_LENGTH(matrices); ++m)
        for (size_t f = 0; f < PETSC_STATIC_ARRAY_LENGTH(factors); ++f) {
            PetscErrorCode (*make)(Mat, MatFactorType, Mat*);
            PetscBool type, matrix;
            PetscCall(MatSolverTypeGet("tovbla", matrices[m], factors[f], &type, &matrix, &make));
            PetscCheck(type, PETSC_COMM_SELF, PETSC_ERR_PLIB, "tovbla is not registered");
            if (make)
                PetscCall(MatSolverTypeRegister(name, matrices[m], factors[f], make));
        }
    PetscFunctionReturn(0);
}
