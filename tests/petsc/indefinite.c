/* SPDX-License-Identifier: BSD-3-Clause */
/* Indefinite matrices whose factors without exchanges of rows are poor ones: solutions that are right or
 * infinite, and numbers of eigenvalues that are right or not claimed. */
#include <petsc_tovbla.h>

static int failed;

static PetscErrorCode Judge(const char* what, PetscInt n, PetscBool good)
{
    PetscFunctionBegin;
    failed += !good;
    PetscCall(PetscPrintf(PETSC_COMM_SELF, "%s, %" PetscInt_FMT " unknowns: %s\n", what, n,
                          good ? "ok" : "FAILED"));
    PetscFunctionReturn(0);
}

static PetscErrorCode Set(Mat A, PetscInt i, PetscInt j, PetscScalar value)
{
    PetscFunctionBegin;
    PetscCall(MatSetValue(A, i, j, value, INSERT_VALUES));
    PetscCall(MatSetValue(A, j, i, value, INSERT_VALUES));
    PetscFunctionReturn(0);
}

/* (0 B; Bᵀ 0) with a random B of `diagonal`: m eigenvalues on each side of zero where B is regular. Or, with
 * `coupled` false, a random symmetric matrix with this diagonal. */
static PetscErrorCode Make(PetscInt m, PetscReal diagonal, PetscBool coupled, Mat* made)
{
    const PetscInt size = coupled ? m : 2 * m, behind = coupled ? m : 0;
    PetscRandom random;
    PetscReal value, where;

    PetscFunctionBegin;
    PetscCall(PetscRandomCreate(PETSC_COMM_SELF, &random));
    PetscCall(MatCreateSeqAIJ(PETSC_COMM_SELF, 2 * m, 2 * m, 2 * m, NULL, made));
    for (PetscInt i = 0; i < size; ++i) {
        PetscCall(Set(*made, i, behind + i, diagonal));
        for (PetscInt k = 0; k < 5; ++k) {
            PetscCall(PetscRandomGetValueReal(random, &value));
            PetscCall(PetscRandomGetValueReal(random, &where));
            const PetscInt j = (PetscInt)(where * (PetscReal)size) % size;
            if (j != i)
                PetscCall(Set(*made, i, behind + j, value));
        }
    }
    PetscCall(MatAssemblyBegin(*made, MAT_FINAL_ASSEMBLY));
    PetscCall(MatAssemblyEnd(*made, MAT_FINAL_ASSEMBLY));
    PetscCall(PetscRandomDestroy(&random));
    PetscFunctionReturn(0);
}

static PetscErrorCode Factor(Mat A, IS kept, Mat* F)
{
    PetscFunctionBegin;
    PetscCall(MatGetFactor(A, MATSOLVERTOVBLA, MAT_FACTOR_CHOLESKY, F));
    if (kept)
        PetscCall(MatFactorSetSchurIS(*F, kept));
    PetscCall(MatCholeskyFactorSymbolic(*F, A, NULL, NULL));
    PetscCall(MatCholeskyFactorNumeric(*F, A, NULL));
    PetscFunctionReturn(0);
}

/* |b - A·x| / (|A|·|x| + |b|), infinite where x is */
static PetscErrorCode Backward(Mat A, Mat F, PetscReal* error)
{
    Vec b, x;
    PetscReal sizeA, sizeX, sizeB, r;

    PetscFunctionBegin;
    PetscCall(MatCreateVecs(A, &x, &b));
    PetscCall(VecSetRandom(b, NULL));
    PetscCall(MatSolve(F, b, x));
    PetscCall(MatNorm(A, NORM_INFINITY, &sizeA));
    PetscCall(VecNorm(x, NORM_INFINITY, &sizeX));
    PetscCall(VecNorm(b, NORM_INFINITY, &sizeB));
    PetscCall(VecScale(b, -1.0));
    PetscCall(MatMultAdd(A, x, b, b));
    PetscCall(VecNorm(b, NORM_INFINITY, &r));
    *error = PetscIsInfOrNanReal(sizeX) ? sizeX : r / (sizeA * sizeX + sizeB);
    PetscCall(VecDestroy(&b));
    PetscCall(VecDestroy(&x));
    PetscFunctionReturn(0);
}

/* Zeros on the whole diagonal: most pivots are shifted, and each kind of eigenvalue is counted all the same;
 * where B is as good as singular, nothing is claimed that is not so. */
static PetscErrorCode Coupled(PetscInt m, PetscReal diagonal, PetscBool regular)
{
    Mat A, F;
    PetscInt negative, zero, positive;
    PetscReal error;

    PetscFunctionBegin;
    PetscCall(Make(m, diagonal, PETSC_TRUE, &A));
    PetscCall(Factor(A, NULL, &F));
    PetscCall(MatGetInertia(F, &negative, &zero, &positive));
    PetscCall(Judge("inertia", 2 * m,
                    (PetscBool)(negative <= m && positive <= m && negative + zero + positive == 2 * m)));
    if (regular) {
        PetscCall(Judge("no zero", 2 * m, (PetscBool)(zero == 0)));
        PetscCall(Backward(A, F, &error));
        PetscCall(Judge("solution", 2 * m, (PetscBool)(error <= 1e-12)));
    }
    PetscCall(MatDestroy(&F));
    PetscCall(MatDestroy(&A));
    PetscFunctionReturn(0);
}

/* Pivots of any size are taken, and nothing else is tried: a solution is right, or it is infinite. */
static PetscErrorCode Hopeless(void)
{
    const PetscInt first = 0;
    PetscInt infinite = 0;
    IS kept;

    PetscFunctionBegin;
    PetscCall(PetscOptionsSetValue(NULL, "-mat_tovbla_tolerance", "0"));
    PetscCall(ISCreateGeneral(PETSC_COMM_SELF, 1, &first, PETSC_COPY_VALUES, &kept));
    for (PetscInt m = 40; m < 60; m += 2) {
        Mat A, F;
        MatFactorError reason;
        PetscReal error;
        PetscCall(Make(m, 1e-18, PETSC_FALSE, &A));
        PetscCall(Factor(A, kept, &F));
        PetscCall(MatFactorGetError(F, &reason));
        PetscCall(Backward(A, F, &error));
        PetscCall(
            Judge("right or infinite", 2 * m, (PetscBool)(error <= 1e-12 || PetscIsInfOrNanReal(error))));
        infinite += reason == MAT_FACTOR_NOERROR && PetscIsInfOrNanReal(error);
        PetscCall(MatDestroy(&F));
        PetscCall(MatDestroy(&A));
    }
    PetscCall(Judge("some were infinite", infinite, (PetscBool)(infinite > 0)));
    PetscCall(ISDestroy(&kept));
    PetscCall(PetscOptionsClearValue(NULL, "-mat_tovbla_tolerance"));
    PetscFunctionReturn(0);
}

int main(int count, char** words)
{
    PetscCall(PetscInitialize(&count, &words, NULL, NULL));
    PetscCall(MatSolverTypeRegister_TOVBla());
    PetscCall(Coupled(12, 9.0, PETSC_TRUE));
    PetscCall(Coupled(50, 9.0, PETSC_TRUE));
    PetscCall(Coupled(300, 9.0, PETSC_TRUE));
    for (PetscInt m = 50; m <= 300; m += 25)
        PetscCall(Coupled(m, 1e-11, PETSC_FALSE));
    PetscCall(Hopeless());
    PetscCall(PetscFinalize());
    return failed != 0;
}
