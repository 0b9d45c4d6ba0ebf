/* SPDX-License-Identifier: BSD-3-Clause */
/* Is a definite matrix one? Rounding leaves small positive pivots where a singular matrix has none. */
#include "factor.h"

/* From above, the smallest eigenvalue of S = C⁻¹·A·C⁻¹ with a diagonal of ones, C² = diag(A), by two steps of
 * inverse iteration, x := S⁻¹·x = C·A⁻¹·C·x. */
static PetscErrorCode SmallestEigenvalue(Mat F, Mat A, PetscReal* smallest)
{
    TOVBla* data = (TOVBla*)F->data;
    PetscScalar* array;
    PetscReal size;
    Vec c, x;

    PetscFunctionBegin;
    *smallest = 1.0;
    PetscCall(MatCreateVecs(A, &x, &c));
    PetscCall(MatGetDiagonal(A, c));
    PetscCall(VecSqrtAbs(c));
    PetscCall(VecSetRandom(x, NULL));
    for (int step = 0; step < 2; ++step) {
        PetscCall(VecNormalize(x, NULL));
        PetscCall(VecPointwiseMult(x, x, c));
        PetscCall(VecGetArray(x, &array));
        TOVBlaCall(data->solver, bla_solver_solve(data->solver, 0, 1, array, F->rmap->n));
        PetscCall(VecRestoreArray(x, &array));
        PetscCall(VecPointwiseMult(x, x, c));
        PetscCall(VecNorm(x, NORM_2, &size));
        if (size > 0.0)
            *smallest = 1.0 / size;
    }
    PetscCall(VecDestroy(&c));
    PetscCall(VecDestroy(&x));
    PetscFunctionReturn(0);
}

/* The largest eigenvalue of S is 1 or more: with one below rounding S is singular. Nobody asks where pivots
 * are not all positive, because then the solver has tried the factor itself. */
PetscErrorCode MatTOVBlaIsSingular(Mat F, Mat A, PetscReal* smallest, PetscBool* singular)
{
    const TOVBla* data = (TOVBla*)F->data;
    const double n = (double)F->rmap->n;

    PetscFunctionBegin;
    *singular = PETSC_FALSE;
    if (n == 0.0 || data->kind == BLA_SOLVER_GENERAL || MatTOVBlaQuantity(F, "positive_pivots") < n ||
        !MatTOVBlaChecks(F))
        PetscFunctionReturn(0);
    PetscCall(SmallestEigenvalue(F, A, smallest));
    *singular = (PetscBool)(*smallest < PETSC_MACHINE_EPSILON);
    PetscFunctionReturn(0);
}
