/* SPDX-License-Identifier: BSD-3-Clause */
/* Solutions. A factor without exchanges of rows can be a poor one of an indefinite or general matrix; those
 * solutions are held against the matrix, improved where they must be, and infinite where that fails: a solver
 * above diverges then, and does not call a wrong answer converged. */
#include "factor.h"

#include <math.h>

/* |b - A·x| / (|A|·|x| + |b|) that rounding explains, and what a good factor stays far below */
static const PetscReal good = 1e-12;

/* After a factorisation: are its solutions to be checked? Then the values are needed. */
PetscErrorCode MatTOVBlaKeepForChecks(Mat F, Mat points, PetscBool shifted)
{
    TOVBla* data = (TOVBla*)F->data;
    const double n = (double)F->rmap->n, positive = MatTOVBlaQuantity(F, "positive_pivots");
    const PetscBool definite = (PetscBool)(F->factortype == MAT_FACTOR_CHOLESKY && positive == n);
    /* Who shifts wants a preconditioner, and knows that it is not the inverse. */
    const PetscBool asked = (PetscBool)(!shifted && MatTOVBlaChecks(F));

    PetscFunctionBegin;
    if (definite || !asked || F->factorerrortype || data->singularKept) {
        PetscCall(MatDestroy(&data->checked));
    } else if (data->checked) {
        PetscCall(MatCopy(points, data->checked, SAME_NONZERO_PATTERN));
    } else {
        PetscCall(MatDuplicate(points, MAT_COPY_VALUES, &data->checked));
    }
    if (data->checked) {
        PetscCall(MatNorm(data->checked, NORM_INFINITY, &data->size[0]));
        PetscCall(MatNorm(data->checked, NORM_1, &data->size[1]));
    }
    if (data->checked && !data->residual)
        PetscCall(MatCreateVecs(data->checked, &data->residual, NULL));
    PetscFunctionReturn(0);
}

/* r := b - A·x, and its size against that of the terms */
static PetscErrorCode Residual(TOVBla* data, int transposed, Vec b, Vec x, PetscReal* backward)
{
    PetscReal r, sizeX, sizeB;

    PetscFunctionBegin;
    if (transposed)
        PetscCall(MatMultTranspose(data->checked, x, data->residual));
    else
        PetscCall(MatMult(data->checked, x, data->residual));
    PetscCall(VecAYPX(data->residual, -1.0, b));
    PetscCall(VecNorm(data->residual, NORM_INFINITY, &r));
    PetscCall(VecNorm(x, NORM_INFINITY, &sizeX));
    PetscCall(VecNorm(b, NORM_INFINITY, &sizeB));
    *backward = r > 0.0 ? r / (data->size[transposed] * sizeX + sizeB) : r; /* not a number stays that */
    PetscFunctionReturn(0);
}

/* Steps of refinement as long as they halve the residual. */
static PetscErrorCode Refine(Mat F, int transposed, Vec b, Vec x, PetscReal* backward)
{
    TOVBla* data = (TOVBla*)F->data;
    PetscReal before = PETSC_MAX_REAL;
    PetscScalar* array;

    PetscFunctionBegin;
    PetscCall(Residual(data, transposed, b, x, backward));
    while (*backward > good && *backward < before / 2.0) {
        PetscCall(VecGetArray(data->residual, &array));
        TOVBlaCall(data->solver, bla_solver_solve(data->solver, transposed, 1, array, F->rmap->n));
        PetscCall(VecRestoreArray(data->residual, &array));
        PetscCall(VecAXPY(x, 1.0, data->residual));
        before = *backward;
        PetscCall(Residual(data, transposed, b, x, backward));
    }
    PetscFunctionReturn(0);
}

/* Where that does not do, what the solver knows beyond it, and where that fails, infinity. */
static PetscErrorCode Improve(Mat F, int transposed, Vec b, Vec x)
{
    TOVBla* data = (TOVBla*)F->data;
    const PetscInt n = F->rmap->n;
    PetscReal backward;
    const PetscScalar *value, *right;
    PetscScalar* array;

    PetscFunctionBegin;
    PetscCall(Refine(F, transposed, b, x, &backward));
    if (!(backward <= good) && !transposed) {
        PetscCall(MatSeqAIJGetArrayRead(data->checked, &value));
        PetscCall(VecGetArrayRead(b, &right));
        PetscCall(VecGetArray(x, &array));
        if (bla_solver_refine(data->solver, value, 1, right, n, array, n) == BLA_SOLVER_OK)
            PetscCall(PetscInfo(F, "tovbla: %s\n", bla_solver_verdict(data->solver)));
        PetscCall(VecRestoreArray(x, &array));
        PetscCall(VecRestoreArrayRead(b, &right));
        PetscCall(MatSeqAIJRestoreArrayRead(data->checked, &value));
        PetscCall(Residual(data, transposed, b, x, &backward));
    }
    if (!(backward <= good)) {
        PetscCall(PetscInfo(F, "tovbla: not solved, the backward error is %g\n", (double)backward));
        PetscCall(VecSetInf(x));
    }
    PetscFunctionReturn(0);
}

/* X := A⁻¹·B or A⁻ᵀ·B */
static PetscErrorCode Solve(Mat F, int transposed, PetscInt columns, const PetscScalar* b, PetscInt ldb,
                            PetscScalar* x, PetscInt ldx)
{
    TOVBla* data = (TOVBla*)F->data;
    const PetscInt n = F->rmap->n;
    const PetscBool solvable = (PetscBool)(!F->factorerrortype && !data->singularKept);

    PetscFunctionBegin;
    for (PetscInt j = 0; j < columns; ++j)
        for (PetscInt i = 0; i < n; ++i)
            x[i + (size_t)ldx * j] =
                solvable ? b[i + (size_t)ldb * j] : (PetscScalar)INFINITY; /* PETSC_INFINITY is finite */
    if (!solvable || n == 0)
        PetscFunctionReturn(0);
    TOVBlaCall(data->solver, bla_solver_solve(data->solver, transposed, (int32_t)columns, x, ldx));
    PetscCall(PetscLogFlops((data->kind == BLA_SOLVER_GENERAL ? 2.0 : 4.0) * columns *
                            MatTOVBlaQuantity(F, "factor_entries")));
    for (PetscInt j = 0; data->checked && j < columns; ++j) {
        Vec right, solution;
        PetscCall(VecCreateSeqWithArray(PETSC_COMM_SELF, 1, n, b + (size_t)ldb * j, &right));
        PetscCall(VecCreateSeqWithArray(PETSC_COMM_SELF, 1, n, x + (size_t)ldx * j, &solution));
        PetscCall(Improve(F, transposed, right, solution));
        PetscCall(VecDestroy(&right));
        PetscCall(VecDestroy(&solution));
    }
    PetscFunctionReturn(0);
}

static PetscErrorCode SolveVector(Mat F, int transposed, Vec b, Vec x)
{
    const PetscScalar* right;
    PetscScalar* solution;

    PetscFunctionBegin;
    PetscCall(VecGetArrayRead(b, &right));
    PetscCall(VecGetArray(x, &solution));
    PetscCall(Solve(F, transposed, 1, right, PetscMax(F->rmap->n, 1), solution, PetscMax(F->rmap->n, 1)));
    PetscCall(VecRestoreArray(x, &solution));
    PetscCall(VecRestoreArrayRead(b, &right));
    PetscFunctionReturn(0);
}

static PetscErrorCode SolveBlock(Mat F, int transposed, Mat B, Mat X)
{
    Mat right = B;
    const PetscScalar* b;
    PetscScalar* x;
    PetscInt ldb, ldx;
    PetscBool dense;

    PetscFunctionBegin;
    PetscCall(PetscObjectTypeCompareAny((PetscObject)B, &dense, MATSEQDENSE, MATMPIDENSE, ""));
    if (!dense)
        PetscCall(MatConvert(B, MATDENSE, MAT_INITIAL_MATRIX, &right));
    PetscCall(MatDenseGetLDA(right, &ldb));
    PetscCall(MatDenseGetLDA(X, &ldx));
    PetscCall(MatDenseGetArrayRead(right, &b));
    PetscCall(MatDenseGetArray(X, &x));
    PetscCall(Solve(F, transposed, B->cmap->N, b, ldb, x, ldx));
    PetscCall(MatDenseRestoreArray(X, &x));
    PetscCall(MatDenseRestoreArrayRead(right, &b));
    if (!dense)
        PetscCall(MatDestroy(&right));
    PetscFunctionReturn(0);
}

PetscErrorCode MatSolve_TOVBla(Mat F, Vec b, Vec x)
{
    return SolveVector(F, 0, b, x);
}

PetscErrorCode MatSolveTranspose_TOVBla(Mat F, Vec b, Vec x)
{
    return SolveVector(F, 1, b, x);
}

PetscErrorCode MatMatSolve_TOVBla(Mat F, Mat B, Mat X)
{
    return SolveBlock(F, 0, B, X);
}

PetscErrorCode MatMatSolveTranspose_TOVBla(Mat F, Mat B, Mat X)
{
    return SolveBlock(F, 1, B, X);
}
