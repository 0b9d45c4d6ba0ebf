/* SPDX-License-Identifier: BSD-3-Clause */
/* What cannot be factorised: a MatFactorError, which solvers turn into a reason of theirs, or an error where
 * MatSetErrorIfFailure() asked for one. */
#include "factor.h"

static PetscErrorCode Declare(Mat F, Mat A, MatFactorError error, PetscErrorCode code, const char* sentence)
{
    PetscFunctionBegin;
    PetscCheck(!A->erroriffailure, PETSC_COMM_SELF, code, "tovbla: %s", sentence);
    PetscCall(PetscInfo(F, "tovbla: %s\n", sentence));
    F->factorerrortype = error;
    PetscFunctionReturn(0);
}

/* A call of the solver's returned `status`. The factor that was there before is still there, and not to be
 * used: factorerrortype keeps solutions away from it. */
PetscErrorCode MatTOVBlaFailed(Mat F, Mat A, int status)
{
    const char* sentence = bla_solver_message(((TOVBla*)F->data)->solver);

    PetscFunctionBegin;
    switch (status) {
    case BLA_SOLVER_OUT_OF_MEMORY:
    case BLA_SOLVER_TOO_LARGE:
        PetscCall(Declare(F, A, MAT_FACTOR_OUTMEMORY, PETSC_ERR_MEM, sentence));
        break;
    case BLA_SOLVER_BAD_MATRIX: /* not a number; PC forgets this error when new values come, and no other */
        PetscCall(Declare(F, A, MAT_FACTOR_NUMERIC_ZEROPIVOT, PETSC_ERR_FP, sentence));
        break;
    case BLA_SOLVER_CANCELLED:
        PetscCall(Declare(F, A, MAT_FACTOR_OTHER, PETSC_ERR_LIB, sentence));
        break;
    default:
        SETERRQ(PETSC_COMM_SELF, PETSC_ERR_LIB, "tovbla: %s", sentence);
    }
    PetscFunctionReturn(0);
}

/* Unknowns whose pivots were replaced: how many are eliminated, and the first of them. Those that are kept
 * make a Schur complement singular, which is nobody's fault. */
static PetscErrorCode CountReplaced(Mat F, PetscInt* count, PetscInt* first)
{
    TOVBla* data = (TOVBla*)F->data;
    const PetscInt replaced = (PetscInt)MatTOVBlaQuantity(F, "replaced_pivots");
    int32_t* unknowns;

    PetscFunctionBegin;
    *count = 0;
    *first = -1;
    data->singularKept = PETSC_FALSE;
    PetscCall(PetscMalloc1(replaced, &unknowns));
    TOVBlaCall(data->solver, bla_solver_replaced(data->solver, unknowns));
    for (PetscInt k = 0; k < replaced; ++k) {
        PetscInt place = -1;
        if (data->kept)
            PetscCall(ISLocate(data->kept, unknowns[k], &place));
        if (place >= 0)
            data->singularKept = PETSC_TRUE;
        else if ((*count)++ == 0)
            *first = unknowns[k];
    }
    PetscCall(PetscFree(unknowns));
    PetscFunctionReturn(0);
}

/* A factor was made: is the matrix regular? Whoever sets a shift (PCFactorSetShiftType(), as multigrid does
 * for its coarsest matrix) takes it as it is: pivots that are zero have left their unknowns out. */
PetscErrorCode MatTOVBlaJudge(Mat F, Mat A, PetscBool shifted)
{
    const double rank = MatTOVBlaQuantity(F, "structural_rank"), n = (double)A->rmap->n;
    const PetscErrorCode code =
        F->factortype == MAT_FACTOR_LU ? PETSC_ERR_MAT_LU_ZRPVT : PETSC_ERR_MAT_CH_ZRPVT;
    TOVBla* data = (TOVBla*)F->data;
    PetscInt count;
    PetscReal smallest;
    PetscBool singular;
    char sentence[160];

    PetscFunctionBegin;
    PetscCall(CountReplaced(F, &count, &F->factorerror_zeropivot_row));
    F->factorerror_zeropivot_value = 0.0;
    if (shifted)
        PetscFunctionReturn(0);
    if (rank < n) {
        PetscCall(PetscSNPrintf(
            sentence, sizeof sentence,
            "the matrix is singular whatever its values: %.0f of %.0f rows can be matched", rank, n));
        PetscCall(Declare(F, A, MAT_FACTOR_NUMERIC_ZEROPIVOT, code, sentence));
    } else if (count > 0) {
        PetscCall(PetscSNPrintf(sentence, sizeof sentence,
                                "the matrix is singular: %" PetscInt_FMT
                                " pivots are zero, one of them in row %" PetscInt_FMT,
                                count, F->factorerror_zeropivot_row));
        PetscCall(Declare(F, A, MAT_FACTOR_NUMERIC_ZEROPIVOT, code, sentence));
    } else if (MatTOVBlaQuantity(F, "unheld_motions") > 0.0) {
        PetscCall(PetscSNPrintf(sentence, sizeof sentence,
                                "the matrix is singular: its null space has %.0f dimensions",
                                MatTOVBlaQuantity(F, "unheld_motions")));
        PetscCall(Declare(F, A, MAT_FACTOR_NUMERIC_ZEROPIVOT, code, sentence));
    } else {
        PetscCall(MatTOVBlaIsSingular(F, A, &smallest, &singular));
        if (singular && data->kept) {
            data->singularKept = PETSC_TRUE;
        } else if (singular) {
            PetscCall(PetscSNPrintf(
                sentence, sizeof sentence,
                "the matrix is singular: scaled to a diagonal of ones, it has an eigenvalue below %.1e",
                (double)smallest));
            PetscCall(Declare(F, A, MAT_FACTOR_NUMERIC_ZEROPIVOT, code, sentence));
        }
    }
    PetscFunctionReturn(0);
}
