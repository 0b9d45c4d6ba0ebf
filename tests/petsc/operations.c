/* SPDX-License-Identifier: BSD-3-Clause */
/* What the factors of tovbla offer, each held against the matrix itself or against dense algebra. */
#include <petsc_tovbla.h>
#include <petscksp.h>

static int failed;

static PetscErrorCode Judge(const char* what, PetscReal error, PetscReal allowed)
{
    const PetscBool good = (PetscBool)(error <= allowed);

    PetscFunctionBegin;
    failed += !good;
    PetscCall(PetscPrintf(PETSC_COMM_SELF, "%s: %s (%g)\n", what, good ? "ok" : "FAILED", (double)error));
    PetscFunctionReturn(0);
}

/* A random matrix with a diagonal, symmetric or not; definite, or with signs in turn. */
static PetscErrorCode Random(PetscInt n, PetscBool symmetric, PetscBool definite, Mat* made)
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
static PetscErrorCode Factor(Mat A, MatFactorType type, IS kept, Mat* F)
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
static PetscErrorCode Solutions(const char* name, Mat given, Mat A, MatFactorType type)
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

/* A chain without supports: singular, but not where one end is kept; its Schur complement is zero. */
static PetscErrorCode SingularSchur(void)
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
        const PetscScalar spring[] = {1.0, -1.0, -1.0, 1.0};
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

/* A slender beam, of a condition number of 1e12: it is solved all the same. */
static PetscErrorCode Slender(void)
{
    const PetscInt n = 1500;
    Mat A, F;
    Vec b, x;
    PetscReal norm, size;

    PetscFunctionBegin;
    PetscCall(MatCreateSeqAIJ(PETSC_COMM_SELF, n, n, 5, NULL, &A));
    for (PetscInt i = 0; i < n; ++i)
        for (PetscInt j = PetscMax(i - 2, 0); j <= PetscMin(i + 2, n - 1); ++j)
            PetscCall(MatSetValue(A, i, j, i == j ? 6.0 : PetscAbs(i - j) == 1 ? -4.0 : 1.0, INSERT_VALUES));
    PetscCall(MatAssemblyBegin(A, MAT_FINAL_ASSEMBLY));
    PetscCall(MatAssemblyEnd(A, MAT_FINAL_ASSEMBLY));
    PetscCall(Factor(A, MAT_FACTOR_CHOLESKY, NULL, &F));
    PetscCall(MatCreateVecs(A, &x, &b));
    PetscCall(VecSet(b, 1.0));
    PetscCall(MatSolve(F, b, x));
    PetscCall(VecNorm(x, NORM_INFINITY, &size));
    PetscCall(VecScale(b, -1.0));
    PetscCall(MatMultAdd(A, x, b, b));
    PetscCall(VecNorm(b, NORM_INFINITY, &norm));
    PetscCall(Judge("a slender beam", norm / (16.0 * size), 1e-15));
    PetscCall(VecDestroy(&b));
    PetscCall(VecDestroy(&x));
    PetscCall(MatDestroy(&F));
    PetscCall(MatDestroy(&A));
    PetscFunctionReturn(0);
}

/* New values, the same pattern; nothing is analysed again, the answer is the new one. */
static PetscErrorCode NewValues(Mat A)
{
    Mat F;
    Vec b, x, y;
    PetscReal norm;

    PetscFunctionBegin;
    PetscCall(Factor(A, MAT_FACTOR_LU, NULL, &F));
    PetscCall(MatCreateVecs(A, &x, &b));
    PetscCall(VecDuplicate(x, &y));
    PetscCall(VecSetRandom(b, NULL));
    PetscCall(MatSolve(F, b, x));
    PetscCall(MatScale(A, 4.0));
    PetscCall(MatLUFactorNumeric(F, A, NULL));
    PetscCall(MatSolve(F, b, y));
    PetscCall(VecAXPY(y, -0.25, x));
    PetscCall(VecNorm(y, NORM_INFINITY, &norm));
    PetscCall(Judge("new values", norm, 1e-14));
    PetscCall(VecDestroy(&b));
    PetscCall(VecDestroy(&x));
    PetscCall(VecDestroy(&y));
    PetscCall(MatDestroy(&F));
    PetscFunctionReturn(0);
}

/* Definite as PETSc knows: LU takes one triangle, and both again where new values end that. */
static PetscErrorCode DefiniteLU(MatType type)
{
    Mat A, B, F;
    Vec b, x;
    MatInfo one, both;
    PetscReal norm;
    const PetscInt n = 90;

    PetscFunctionBegin;
    PetscCall(Random(n, PETSC_TRUE, PETSC_TRUE, &A));
    PetscCall(MatShift(A, 9.0));
    PetscCall(MatSetBlockSize(A, 3));
    PetscCall(MatConvert(A, type, MAT_INITIAL_MATRIX, &B));
    PetscCall(Factor(B, MAT_FACTOR_LU, NULL, &F));
    PetscCall(MatGetInfo(F, MAT_LOCAL, &both));
    PetscCall(MatDestroy(&F));
    PetscCall(MatSetOption(B, MAT_SPD, PETSC_TRUE));
    PetscCall(Solutions("LU of a definite matrix", B, A, MAT_FACTOR_LU));
    PetscCall(Factor(B, MAT_FACTOR_LU, NULL, &F));
    PetscCall(MatGetInfo(F, MAT_LOCAL, &one));
    PetscCall(Judge("its factor has one triangle", one.nz_used / both.nz_used, 0.6));

    PetscCall(MatCreateVecs(B, &x, &b));
    PetscCall(VecSetRandom(b, NULL));
    PetscCall(VecShift(b, 1.0));
    PetscCall(MatDiagonalScale(B, b, NULL));
    PetscCall(MatLUFactorNumeric(F, B, NULL));
    PetscCall(MatSolve(F, b, x));
    PetscCall(VecScale(b, -1.0));
    PetscCall(MatMultAdd(B, x, b, b));
    PetscCall(VecNorm(b, NORM_INFINITY, &norm));
    PetscCall(Judge("values that are symmetric no more", norm, 1e-12));
    PetscCall(MatGetInfo(F, MAT_LOCAL, &one));
    PetscCall(Judge("have both triangles", PetscAbsReal(one.nz_used / both.nz_used - 1.0), 0.01));
    PetscCall(VecDestroy(&b));
    PetscCall(VecDestroy(&x));
    PetscCall(MatDestroy(&F));
    PetscCall(MatDestroy(&B));
    PetscCall(MatDestroy(&A));
    PetscFunctionReturn(0);
}

int main(int count, char** words)
{
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
                    if (t == 0 && !f)
                        PetscCall(NewValues(A));
                    PetscCall(MatDestroy(&A));
                    PetscCall(MatDestroy(&B));
                }
    }
    PetscCall(SingularSchur());
    PetscCall(Slender());
    PetscCall(DefiniteLU(MATSEQAIJ));
    PetscCall(DefiniteLU(MATSEQBAIJ));
    PetscCall(PetscFinalize());
    return failed != 0;
}
