/* SPDX-License-Identifier: BSD-3-Clause */
/* The signs of the eigenvalues, from those of the pivots. */
#include "factor.h"

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
        PetscCall(MatTOVBlaContracts(F, &counted));
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
