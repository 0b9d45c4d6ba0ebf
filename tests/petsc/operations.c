/* SPDX-License-Identifier: BSD-3-Clause */
/* What the factors of tovbla offer, each held against the matrix itself or against dense algebra. */
#include "matrices.h"

/* Against a dense factorisation of the eliminated part; and the whole system is solved all the same. */
static PetscErrorCode Schur(const char* name, Mat A, MatFactorType type)
{
    const PetscInt kept[] = {7, 3, 11, 20, 0};
    IS inner, outer, sorted;
    Mat F, S, dense, eliminated, right, left, corner, solved, product;
    Vec b, x;
    PetscReal norm;
    PetscInt n;
    MatFactorSchurStatus status;
    MatFactorType kind;

    PetscFunctionBegin;
    PetscCall(MatGetSize(A, &n, NULL));
    PetscCall(ISCreateGeneral(PETSC_COMM_SELF, 5, kept, PETSC_COPY_VALUES, &outer));
    PetscCall(ISDuplicate(outer, &sorted));
    PetscCall(ISSort(sorted));
    PetscCall(ISComplement(sorted, 0, n, &inner));
    PetscCall(ISDestroy(&sorted));
    PetscCall(Factor(A, type, outer, &F));
    PetscCall(MatFactorGetSchurComplement(F, &S, &status));
    PetscCall(MatConvert(A, MATSEQDENSE, MAT_INITIAL_MATRIX, &dense));
    PetscCall(MatCreateSubMatrix(dense, inner, inner, MAT_INITIAL_MATRIX, &eliminated));
    PetscCall(MatCreateSubMatrix(dense, inner, outer, MAT_INITIAL_MATRIX, &right));
    PetscCall(MatCreateSubMatrix(dense, outer, inner, MAT_INITIAL_MATRIX, &left));
    PetscCall(MatCreateSubMatrix(dense, outer, outer, MAT_INITIAL_MATRIX, &corner));
    PetscCall(MatLUFactor(eliminated, NULL, NULL, NULL));
    PetscCall(MatDuplicate(right, MAT_DO_NOT_COPY_VALUES, &solved));
    PetscCall(MatMatSolve(eliminated, right, solved));
    PetscCall(MatMatMult(left, solved, MAT_INITIAL_MATRIX, PETSC_DEFAULT, &product));
    PetscCall(MatAXPY(product, 1.0, S, SAME_NONZERO_PATTERN));
    PetscCall(MatAXPY(product, -1.0, corner, SAME_NONZERO_PATTERN));
    PetscCall(MatNorm(product, NORM_FROBENIUS, &norm));
    PetscCall(Judge(name, norm, 1e-12));
    PetscCall(
        Judge("status of the Schur complement", status == MAT_FACTOR_SCHUR_UNFACTORED ? 0.0 : 1.0, 0.0));
    PetscCall(MatLUFactor(S, NULL, NULL, NULL)); /* as callers do, in place; the next factor gives it anew */
    PetscCall(MatFactorRestoreSchurComplement(F, &S, MAT_FACTOR_SCHUR_FACTORED));
    PetscCall((type == MAT_FACTOR_LU ? MatLUFactorNumeric : MatCholeskyFactorNumeric)(F, A, NULL));
    PetscCall(MatFactorGetSchurComplement(F, &S, &status));
    PetscCall(MatGetFactorType(S, &kind));
    PetscCall(Judge("the Schur complement is no factor",
                    kind == MAT_FACTOR_NONE && status == MAT_FACTOR_SCHUR_UNFACTORED ? 0.0 : 1.0, 0.0));
    PetscCall(MatFactorRestoreSchurComplement(F, &S, MAT_FACTOR_SCHUR_UNFACTORED));

    PetscCall(MatCreateVecs(A, &x, &b));
    PetscCall(VecSetRandom(b, NULL));
    PetscCall(MatSolve(F, b, x));
    PetscCall(VecScale(b, -1.0));
    PetscCall(MatMultAdd(A, x, b, b));
    PetscCall(VecNorm(b, NORM_INFINITY, &norm));
    PetscCall(Judge("the whole system beside a Schur complement", norm, 1e-12));
    PetscCall(VecDestroy(&x));
    PetscCall(VecDestroy(&b));
    Mat* const all[] = {&F, &dense, &eliminated, &right, &left, &corner, &solved, &product};
    for (size_t k = 0; k < PETSC_STATIC_ARRAY_LENGTH(all); ++k)
        PetscCall(MatDestroy(all[k]));
    PetscCall(ISDestroy(&inner));
    PetscCall(ISDestroy(&outer));
    PetscFunctionReturn(0);
}

/* A chain without supports, springs growing: singular, but not where one end is kept; its Schur complement is
 * zero, or what rounding leaves of it. */
static PetscErrorCode SingularSchur(PetscReal growth)
{
    const PetscInt n = 30, kept = 0;
    IS outer;
    Mat A, F, S;
    Vec b, x;
    MatFactorError error;
    PetscReal norm;

    PetscFunctionBegin;
    PetscCall(MatCreateSeqAIJ(PETSC_COMM_SELF, n, n, 3, NULL, &A));
    for (PetscInt i = 0; i < n - 1; ++i) {
        const PetscInt ends[] = {i, i + 1};
        const PetscScalar k = 1.0 + growth * (PetscReal)i, spring[] = {k, -k, -k, k};
        PetscCall(MatSetValues(A, 2, ends, 2, ends, spring, ADD_VALUES));
    }
    PetscCall(MatAssemblyBegin(A, MAT_FINAL_ASSEMBLY));
    PetscCall(MatAssemblyEnd(A, MAT_FINAL_ASSEMBLY));
    PetscCall(ISCreateGeneral(PETSC_COMM_SELF, 1, &kept, PETSC_COPY_VALUES, &outer));
    PetscCall(Factor(A, MAT_FACTOR_CHOLESKY, outer, &F));
    PetscCall(MatFactorGetError(F, &error));
    PetscCall(Judge("a floating structure can be condensed", error, 0.0));
    PetscCall(MatFactorGetSchurComplement(F, &S, NULL));
    PetscCall(MatNorm(S, NORM_FROBENIUS, &norm));
    PetscCall(Judge("its Schur complement", norm, 1e-13));
    PetscCall(MatFactorRestoreSchurComplement(F, &S, MAT_FACTOR_SCHUR_UNFACTORED));
    PetscCall(MatCreateVecs(A, &x, &b));
    PetscCall(VecSet(b, 1.0));
    PetscCall(MatSolve(F, b, x));
    PetscCall(VecNorm(x, NORM_INFINITY, &norm));
    PetscCall(Judge("and it has no solution", PetscIsInfOrNanReal(norm) ? 0.0 : 1.0, 0.0));
    PetscCall(VecDestroy(&b));
    PetscCall(VecDestroy(&x));
    PetscCall(MatDestroy(&F));
    PetscCall(MatDestroy(&A));
    PetscCall(ISDestroy(&outer));
    PetscFunctionReturn(0);
}

static PetscErrorCode Inertia(Mat A)
{
    Mat F;
    MatInfo info;
    PetscInt n, negative, zero, positive;

    PetscFunctionBegin;
    PetscCall(MatGetSize(A, &n, NULL));
    PetscCall(Factor(A, MAT_FACTOR_CHOLESKY, NULL, &F));
    PetscCall(MatGetInertia(F, &negative, &zero, &positive));
    PetscCall(
        Judge("inertia", PetscAbs(negative - (n + 2) / 3) + zero + PetscAbs(positive + negative - n), 0.0));
    PetscCall(MatGetInfo(F, MAT_LOCAL, &info));
    PetscCall(Judge("entries of the factor", info.nz_used >= n && info.memory > 0.0 ? 0.0 : 1.0, 0.0));
    PetscCall(MatDestroy(&F));
    PetscFunctionReturn(0);
}

int main(int count, char** words)
{
    const PetscReal growths[] = {0.0, 1.3, 1.4, 1.7}; /* rounding leaves nothing, then a small pivot */

    PetscCall(PetscInitialize(&count, &words, NULL, NULL));
    PetscCall(MatSolverTypeRegister_TOVBla());
    static const PetscInt sizes[] = {0, 1, 24, 60, 300};
    for (size_t k = 0; k < PETSC_STATIC_ARRAY_LENGTH(sizes); ++k) {
        static const MatType types[] = {MATSEQAIJ, MATSEQBAIJ, MATSEQSBAIJ};
        static const MatFactorType factors[] = {MAT_FACTOR_LU, MAT_FACTOR_CHOLESKY};
        for (int t = 0; t < 3; ++t)
            for (int f = t == 2; f < 2; ++f)
                for (int definite = 0; definite < 2; ++definite) {
                    Mat A, B;
                    char name[100];
                    PetscCall(Random(sizes[k], (PetscBool)f, (PetscBool)definite, &A));
                    if (t > 0 && sizes[k] > 1)
                        PetscCall(MatSetBlockSize(A, 3));
                    PetscCall(MatSetOption(A, MAT_SYMMETRIC, (PetscBool)f));
                    PetscCall(MatConvert(A, types[t], MAT_INITIAL_MATRIX, &B));
                    PetscCall(PetscSNPrintf(name, sizeof name, "%s %s%s %d", types[t], f ? "Cholesky" : "LU",
                                            definite ? "" : " indefinite", (int)sizes[k]));
                    PetscCall(Solutions(name, B, A, factors[f]));
                    if (t == 0 && sizes[k] >= 24)
                        PetscCall(
                            Schur(f ? "Schur complement Cholesky" : "Schur complement LU", A, factors[f]));
                    if (t == 0 && f && !definite)
                        PetscCall(Inertia(A));
                    PetscCall(MatDestroy(&A));
                    PetscCall(MatDestroy(&B));
                }
    }
    for (size_t k = 0; k < PETSC_STATIC_ARRAY_LENGTH(growths); ++k)
        PetscCall(SingularSchur(growths[k]));
    PetscCall(PetscFinalize());
    return failed != 0;
}
