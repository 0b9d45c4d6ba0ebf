/* SPDX-License-Identifier: BSD-3-Clause */
/* Random matrices, their factors by tovbla, and solutions held against the matrix. */
#ifndef TOVBLA_TESTS_PETSC_MATRICES_H
#define TOVBLA_TESTS_PETSC_MATRICES_H

#include <petsc_tovbla.h>
#include <petscksp.h>

static int failed;

static inline PetscErrorCode Judge(const char* what, PetscReal error, PetscReal allowed)
{
    const PetscBool good = (PetscBool)(error <= allowed);

    PetscFunctionBegin;
    failed += !good;
    PetscCall(PetscPrintf(PETSC_COMM_SELF, "%s: %s (%g)\n", what, good ? "ok" : "FAILED", (double)error));
    PetscFunctionReturn(0);
}

/* A random matrix with a diagonal, symmetric or not; definite, or with signs in turn. */
static inline PetscErrorCode Random(PetscInt n, PetscBool symmetric, PetscBool definite, Mat* made)
{
    PetscRandom random;
    PetscReal value, where;

    PetscFunctionBegin;
    PetscCall(PetscRandomCreate(PETSC_COMM_SELF, &random));
    PetscCall(MatCreateSeqAIJ(PETSC_COMM_SELF, n, n, n, NULL, made));
    for (PetscInt i = 0; i < n; ++i) {
        PetscCall(MatSetValue(*made, i, i, definite || i % 3 ? 9.0 : -9.0, INSERT_VALUES));
        for (PetscInt k = 0; k < 4; ++k) {
            PetscInt j;
            PetscCall(PetscRandomGetValueReal(random, &value));
            PetscCall(PetscRandomGetValueReal(random, &where));
            j = (PetscInt)(where * (PetscReal)n) % PetscMax(n, 1);
            if (j == i)
                continue;
            PetscCall(MatSetValue(*made, i, j, value, INSERT_VALUES));
            PetscCall(MatSetValue(*made, j, i, symmetric ? value : value / 2.0, INSERT_VALUES));
        }
    }
    PetscCall(MatAssemblyBegin(*made, MAT_FINAL_ASSEMBLY));
    PetscCall(MatAssemblyEnd(*made, MAT_FINAL_ASSEMBLY));
    PetscCall(PetscRandomDestroy(&random));
    PetscFunctionReturn(0);
}

/* NULL for orders and settings, as some callers hand them over. */
static inline PetscErrorCode Factor(Mat A, MatFactorType type, IS kept, Mat* F)
{
    PetscFunctionBegin;
    PetscCall(MatGetFactor(A, MATSOLVERTOVBLA, type, F));
    if (kept)
        PetscCall(MatFactorSetSchurIS(*F, kept));
    if (type == MAT_FACTOR_LU) {
        PetscCall(MatLUFactorSymbolic(*F, A, NULL, NULL, NULL));
        PetscCall(MatLUFactorNumeric(*F, A, NULL));
    } else {
        PetscCall(MatCholeskyFactorSymbolic(*F, A, NULL, NULL));
        PetscCall(MatCholeskyFactorNumeric(*F, A, NULL));
    }
    PetscFunctionReturn(0);
}

/* Of the given matrix, which is A in another format: vectors, transposed, and blocks whose columns are
 * farther apart than they are long. */
static inline PetscErrorCode Solutions(const char* name, Mat given, Mat A, MatFactorType type)
{
    Mat F, B, X, R;
    Vec b, x, r;
    PetscInt n;
    PetscReal norm;
    char what[100];
    PetscScalar *room, *place;
    const PetscInt columns = 5, gap = 3;

    PetscFunctionBegin;
    PetscCall(Factor(given, type, NULL, &F));
    PetscCall(MatGetSize(A, &n, NULL));
    PetscCall(MatCreateVecs(A, &x, &b));
    PetscCall(VecDuplicate(b, &r));
    PetscCall(VecSetRandom(b, NULL));
    for (int transposed = 0; transposed < 2; ++transposed) {
        PetscCall((transposed ? MatSolveTranspose : MatSolve)(F, b, x));
        PetscCall((transposed ? MatMultTranspose : MatMult)(A, x, r));
        PetscCall(VecAXPY(r, -1.0, b));
        PetscCall(VecNorm(r, NORM_INFINITY, &norm));
        PetscCall(PetscSNPrintf(what, sizeof what, "%s %s", name, transposed ? "transposed" : "plain"));
        PetscCall(Judge(what, norm, 1e-12));

        PetscCall(PetscMalloc2((n + gap) * columns, &room, (n + 2 * gap) * columns, &place));
        for (PetscInt k = 0; k < (n + 2 * gap) * columns; ++k)
            place[k] = 77.0;
        PetscCall(PetscArrayzero(room, (n + gap) * columns));
        PetscCall(MatCreateSeqDense(PETSC_COMM_SELF, n, columns, room, &B));
        PetscCall(MatDenseSetLDA(B, n + gap));
        PetscCall(MatSetRandom(B, NULL));
        PetscCall(MatCreateSeqDense(PETSC_COMM_SELF, n, columns, place, &X));
        PetscCall(MatDenseSetLDA(X, n + 2 * gap));
        PetscCall((transposed ? MatMatSolveTranspose : MatMatSolve)(F, B, X));
        PetscCall(
            (transposed ? MatTransposeMatMult : MatMatMult)(A, X, MAT_INITIAL_MATRIX, PETSC_DEFAULT, &R));
        PetscCall(MatAXPY(R, -1.0, B, SAME_NONZERO_PATTERN));
        PetscCall(MatNorm(R, NORM_FROBENIUS, &norm));
        for (PetscInt j = 0; j < columns; ++j)
            for (PetscInt i = n; i < n + 2 * gap; ++i)
                norm += PetscAbsScalar(place[i + j * (n + 2 * gap)] - 77.0);
        PetscCall(PetscSNPrintf(what, sizeof what, "%s block %s", name, transposed ? "transposed" : "plain"));
        PetscCall(Judge(what, norm, 1e-11));
        PetscCall(MatDestroy(&R));
        PetscCall(MatDestroy(&X));
        PetscCall(MatDestroy(&B));
        PetscCall(PetscFree2(room, place));
    }
    PetscCall(VecDestroy(&r));
    PetscCall(VecDestroy(&x));
    PetscCall(VecDestroy(&b));
    PetscCall(MatDestroy(&F));
    PetscFunctionReturn(0);
}

#endif
