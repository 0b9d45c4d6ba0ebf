/* SPDX-License-Identifier: BSD-3-Clause */
/* What depends on the values: new ones, those that PETSc knows to be definite, and ill-conditioned ones. */
#include "matrices.h"

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

/* New values, the same pattern; nothing is analysed again, the answer is the new one, also behind an error.
 */
static PetscErrorCode NewValues(Mat A)
{
    Mat F, zeros;
    MatFactorError error;
    PetscInt n;
    Vec b, x, y;
    PetscReal norm;

    PetscFunctionBegin;
    PetscCall(Factor(A, MAT_FACTOR_LU, NULL, &F));
    PetscCall(MatCreateVecs(A, &x, &b));
    PetscCall(VecDuplicate(x, &y));
    PetscCall(VecSetRandom(b, NULL));
    PetscCall(MatSolve(F, b, x));
    PetscCall(MatGetSize(A, &n, NULL));
    PetscCall(MatDuplicate(A, MAT_COPY_VALUES, &zeros));
    PetscCall(MatScale(zeros, 0.0));
    PetscCall(MatLUFactorNumeric(F, zeros, NULL));
    PetscCall(MatFactorGetError(F, &error));
    PetscCall(Judge("zeros are an error", error == MAT_FACTOR_NUMERIC_ZEROPIVOT || n == 0 ? 0.0 : 1.0, 0.0));
    PetscCall(MatDestroy(&zeros));
    PetscCall(MatScale(A, 4.0));
    PetscCall(MatLUFactorNumeric(F, A, NULL));
    PetscCall(MatFactorGetError(F, &error));
    PetscCall(Judge("which new values end", error, 0.0));
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
    static const PetscInt sizes[] = {0, 1, 24, 300};

    PetscCall(PetscInitialize(&count, &words, NULL, NULL));
    PetscCall(MatSolverTypeRegister_TOVBla());
    for (size_t k = 0; k < PETSC_STATIC_ARRAY_LENGTH(sizes); ++k)
        for (int definite = 0; definite < 2; ++definite) {
            Mat A;
            PetscCall(Random(sizes[k], PETSC_FALSE, (PetscBool)definite, &A));
            PetscCall(NewValues(A));
            PetscCall(MatDestroy(&A));
        }
    PetscCall(Slender());
    PetscCall(DefiniteLU(MATSEQAIJ));
    PetscCall(DefiniteLU(MATSEQBAIJ));
    PetscCall(PetscFinalize());
    return failed != 0;
}
