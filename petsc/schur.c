/* SPDX-License-Identifier: BSD-3-Clause */
/* The Schur complement of the unknowns that MatFactorSetSchurIS() names; solutions are those of the whole
 * system all the same. */
#include "factor.h"

PetscErrorCode MatFactorSetSchurIS_TOVBla(Mat F, IS kept)
{
    TOVBla* data = (TOVBla*)F->data;
    const PetscInt* index;
    PetscInt count;
    int32_t* unknowns;

    PetscFunctionBegin;
    PetscCall(ISGetLocalSize(kept, &count));
    PetscCall(PetscMalloc1(count, &unknowns));
    PetscCall(ISGetIndices(kept, &index));
    for (PetscInt k = 0; k < count; ++k)
        unknowns[k] = (int32_t)index[k];
    PetscCall(ISRestoreIndices(kept, &index));
    TOVBlaCall(data->solver, bla_solver_set_schur(data->solver, (int32_t)count, unknowns));
    PetscCall(PetscFree(unknowns));
    PetscCall(PetscObjectReference((PetscObject)kept));
    PetscCall(ISDestroy(&data->kept));
    data->kept = kept;
    PetscCall(MatCreateSeqDense(PETSC_COMM_SELF, count, count, NULL, &F->schur));
    PetscFunctionReturn(0);
}

/* After a factorisation */
PetscErrorCode MatTOVBlaFetchSchur(Mat F)
{
    TOVBla* data = (TOVBla*)F->data;
    PetscScalar* array;
    PetscInt ld;

    PetscFunctionBegin;
    if (!data->kept || F->factorerrortype)
        PetscFunctionReturn(0);
    PetscCall(MatSetUnfactored(F->schur)); /* callers factorise it in place */
    PetscCall(MatDenseGetLDA(F->schur, &ld));
    PetscCall(MatDenseGetArrayWrite(F->schur, &array));
    TOVBlaCall(data->solver, bla_solver_schur(data->solver, array, ld));
    PetscCall(MatDenseRestoreArrayWrite(F->schur, &array));
    F->schur_status = MAT_FACTOR_SCHUR_UNFACTORED;
    PetscFunctionReturn(0);
}
