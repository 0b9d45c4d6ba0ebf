/* SPDX-License-Identifier: BSD-3-Clause */
/* The symbolic and the numeric phase. */
#include "factor.h"

/* A itself, or the same entry by entry where it is stored in blocks. Made anew each time: MAT_REUSE_MATRIX
 * spoils the columns when it converts from MATSEQSBAIJ (seen with PETSc 3.18.5). */
static PetscErrorCode Points(Mat F, Mat A, Mat* points)
{
    TOVBla* data = (TOVBla*)F->data;
    PetscBool blocked;

    PetscFunctionBegin;
    *points = A;
    PetscCall(PetscObjectTypeCompareAny((PetscObject)A, &blocked, MATSEQBAIJ, MATSEQSBAIJ, ""));
    if (!blocked)
        PetscFunctionReturn(0);
    PetscCall(MatDestroy(&data->points));
    PetscCall(MatConvert(A, MATSEQAIJ, MAT_INITIAL_MATRIX, &data->points));
    *points = data->points;
    PetscFunctionReturn(0);
}

/* A copy of what the solver wants in integers of its own. */
static PetscErrorCode CopyPattern(PetscInt n, const PetscInt* start, const PetscInt* column, int64_t** starts,
                                  int32_t** columns)
{
    PetscFunctionBegin;
    PetscCall(PetscMalloc2(n + 1, starts, start[n], columns));
    for (PetscInt i = 0; i <= n; ++i)
        (*starts)[i] = start[i];
    for (PetscInt k = 0; k < start[n]; ++k)
        (*columns)[k] = (int32_t)column[k];
    PetscFunctionReturn(0);
}

/* -mat_tovbla_ordering given */
static PetscErrorCode GiveOrder(TOVBla* data, PetscInt n, IS order)
{
    const PetscInt* index;
    int32_t* copy;

    PetscFunctionBegin;
    PetscCheck(order, PETSC_COMM_SELF, PETSC_ERR_ARG_WRONG,
               "-mat_tovbla_ordering given: -pc_factor_mat_ordering_type names no order");
    PetscCall(PetscMalloc1(n, &copy));
    PetscCall(ISGetIndices(order, &index));
    for (PetscInt k = 0; k < n; ++k)
        copy[k] = (int32_t)index[k];
    PetscCall(ISRestoreIndices(order, &index));
    TOVBlaCall(data->solver, bla_solver_set_order(data->solver, (int32_t)n, copy));
    PetscCall(PetscFree(copy));
    PetscFunctionReturn(0);
}

static PetscErrorCode Analyse(Mat F, Mat A, int kind)
{
    TOVBla* data = (TOVBla*)F->data;
    Mat points;
    PetscInt n;
    const PetscInt *start, *column;
    int64_t* starts;
    int32_t* columns;
    PetscBool done;
    int status;

    PetscFunctionBegin;
    F->factorerrortype = MAT_FACTOR_NOERROR;
    data->kind = kind;
    PetscCall(MatDestroy(&data->checked)); /* the pattern may be another one */
    PetscCall(Points(F, A, &points));
    PetscCall(MatGetRowIJ(points, 0, PETSC_FALSE, PETSC_FALSE, &n, &start, &column, &done));
    PetscCheck(done, PETSC_COMM_SELF, PETSC_ERR_LIB, "tovbla: the matrix shows no rows");
    PetscCall(CopyPattern(n, start, column, &starts, &columns));
    PetscCall(MatRestoreRowIJ(points, 0, PETSC_FALSE, PETSC_FALSE, &n, &start, &column, &done));
    data->entries = (PetscInt)starts[A->rmap->n];
    status = bla_solver_analyse(data->solver, kind, (int32_t)A->rmap->n, starts, columns);
    PetscCall(PetscFree2(starts, columns));
    if (status != BLA_SOLVER_OK)
        PetscCall(MatTOVBlaFailed(F, A, status));
    PetscFunctionReturn(0);
}

/* The symbolic phase: options, order, analysis. */
static PetscErrorCode Symbolic(Mat F, Mat A, IS order, int kind)
{
    TOVBla* data = (TOVBla*)F->data;
    double ordering;

    PetscFunctionBegin;
    PetscCheck(A->rmap->n <= INT32_MAX, PETSC_COMM_SELF, PETSC_ERR_ARG_OUTOFRANGE,
               "tovbla: more than 2^31 - 1 unknowns");
    PetscCall(MatTOVBlaSetFromOptions(F));
    TOVBlaCall(data->solver, bla_solver_get(data->solver, "ordering", &ordering));
    if (ordering == 3.0 && A->rmap->n > 0)
        PetscCall(GiveOrder(data, A->rmap->n, order));
    PetscCall(Analyse(F, A, kind));
    PetscFunctionReturn(0);
}

static PetscErrorCode Factorise(Mat F, Mat A, const MatFactorInfo* info)
{
    TOVBla* data = (TOVBla*)F->data;
    Mat points;
    MatInfo entries;
    const PetscScalar* value;
    const PetscBool shifted = (PetscBool)(info && (MatFactorShiftType)info->shifttype != MAT_SHIFT_NONE);
    int status;

    PetscFunctionBegin;
    F->factorerrortype = MAT_FACTOR_NOERROR;
    PetscCall(Points(F, A, &points));
    PetscCall(MatGetInfo(points, MAT_LOCAL, &entries));
    PetscCheck(entries.nz_used == (double)data->entries, PETSC_COMM_SELF, PETSC_ERR_ARG_WRONG,
               "tovbla: %g entries to factorise, %" PetscInt_FMT " analysed", entries.nz_used, data->entries);
    PetscCall(MatSeqAIJGetArrayRead(points, &value));
    status = bla_solver_factorise(data->solver, value);
    PetscCall(MatSeqAIJRestoreArrayRead(points, &value));
    if (status == BLA_SOLVER_OK) {
        PetscCall(PetscLogFlops(MatTOVBlaQuantity(F, "flops")));
        PetscCall(PetscInfo(F, "tovbla: factorised %" PetscInt_FMT " unknowns\n", A->rmap->n));
        PetscCall(MatTOVBlaJudge(F, A, shifted));
        PetscCall(MatTOVBlaKeepForChecks(F, points, shifted));
        PetscCall(MatTOVBlaFetchSchur(F));
    } else {
        PetscCall(MatTOVBlaFailed(F, A, status));
    }
    PetscFunctionReturn(0);
}

/* Half the work where PETSc knows that A is definite, as it does of BDDC's subdomains. */
static PetscErrorCode KindForLU(Mat A, int* kind)
{
    PetscBool known, symmetric, definite;

    PetscFunctionBegin;
    *kind = BLA_SOLVER_GENERAL;
    PetscCall(
        MatIsSymmetricKnown(A, &known, &symmetric)); /* some operations forget this, and not the other */
    if (!known || !symmetric)
        PetscFunctionReturn(0);
    PetscCall(MatIsSPDKnown(A, &known, &definite));
    if (known && definite)
        *kind = BLA_SOLVER_SYMMETRIC_UPPER;
    PetscFunctionReturn(0);
}

/* New values may have ended what was known. */
static PetscErrorCode FactoriseLU(Mat F, Mat A, const MatFactorInfo* info)
{
    int kind;

    PetscFunctionBegin;
    PetscCall(KindForLU(A, &kind));
    if (kind == BLA_SOLVER_GENERAL && ((TOVBla*)F->data)->kind != kind) {
        PetscCall(Analyse(F, A, kind));
        if (F->factorerrortype)
            PetscFunctionReturn(0);
    }
    PetscCall(Factorise(F, A, info));
    PetscFunctionReturn(0);
}

PetscErrorCode MatLUFactorSymbolic_TOVBla(Mat F, Mat A, IS row, IS column, const MatFactorInfo* info)
{
    int kind;

    PetscFunctionBegin;
    (void)row; /* one order for both: rows are exchanged by the solver, for large entries on the diagonal */
    (void)info;
    PetscCall(KindForLU(A, &kind));
    PetscCall(Symbolic(F, A, column, kind));
    F->ops->lufactornumeric = FactoriseLU;
    PetscFunctionReturn(0);
}

PetscErrorCode MatCholeskyFactorSymbolic_TOVBla(Mat F, Mat A, IS order, const MatFactorInfo* info)
{
    PetscFunctionBegin;
    (void)info;
    PetscCall(Symbolic(F, A, order, BLA_SOLVER_SYMMETRIC_UPPER));
    F->ops->choleskyfactornumeric = Factorise;
    PetscFunctionReturn(0);
}
