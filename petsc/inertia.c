/* SPDX-License-Identifier: BSD-3-Clause */
/* The signs of the eigenvalues, from those of the pivots. */
#include "factor.h"

/* With shifted pivots M = A + E was factorised. If e := e - M⁻¹·A·e = M⁻¹·E·e contracts, A + t·E is regular
 * for t from 0 to 1, and A has the inertia of M. A small residual would not show that: it may be one of a
 * huge x. */
static PetscErrorCode Contracts(Mat F, PetscBool* contracts)
{
    TOVBla* data = (TOVBla*)F->data;
    PetscReal before, after;
    PetscScalar* array;
    Vec e, change;

    PetscFunctionBegin;
    *contracts = PETSC_FALSE;
    if (!data->checked)
        PetscFunctionReturn(0);
    PetscCall(MatCreateVecs(data->checked, &e, &change));
    PetscCall(VecSetRandom(e, NULL));
    PetscCall(VecNorm(e, NORM_2, &after));
    *contracts = PETSC_TRUE;
    for (int step = 0; *contracts && step < 6; ++step) {
        before = after;
        PetscCall(MatMult(data->checked, e, change));
        PetscCall(VecGetArray(change, &array));
        TOVBlaCall(data->solver, bla_solver_solve(data->solver, 0, 1, array, F->rmap->n));
        PetscCall(VecRestoreArray(change, &array));
        PetscCall(VecAXPY(e, -1.0, change));
        PetscCall(VecNorm(e, NORM_2, &after));
        *contracts = (PetscBool)(after <= before / 2.0);
    }
    PetscCall(VecDestroy(&e));
    PetscCall(VecDestroy(&change));
    PetscFunctionReturn(0);
}

/* Shifted pivots have signs that count where refinement shows that no eigenvalue crossed zero on the way;
 * replaced ones, and others, are eigenvalues that cannot be told from zero. */
PetscErrorCode MatGetInertia_TOVBla(Mat F, PetscInt* negative, PetscInt* zero, PetscInt* positive)
{
    TOVBla* data = (TOVBla*)F->data;
    PetscInt below = (PetscInt)MatTOVBlaQuantity(F, "negative_pivots"),
             above = (PetscInt)MatTOVBlaQuantity(F, "positive_pivots");
    PetscBool counted = PETSC_FALSE;
    double* pivot;

    PetscFunctionBegin;
    PetscCheck(!F->factorerrortype || F->factorerrortype == MAT_FACTOR_NUMERIC_ZEROPIVOT, PETSC_COMM_SELF,
               PETSC_ERR_ORDER, "tovbla: there is no factor to count in");
    if (MatTOVBlaQuantity(F, "shifted_pivots") > 0.0)
        PetscCall(Contracts(F, &counted));
    if (counted) {
        PetscCall(PetscMalloc1(F->rmap->n, &pivot));
        TOVBlaCall(data->solver, bla_solver_pivots(data->solver, pivot));
        below = 0;
        for (PetscInt i = 0; i < F->rmap->n; ++i)
            below += pivot[i] < 0.0;
        above = F->rmap->n - below;
        PetscCall(PetscFree(pivot));
    }
    if (negative)
        *negative = below;
    if (zero)
        *zero = F->rmap->n - below - above;
    if (positive)
        *positive = above;
    PetscFunctionReturn(0);
}
