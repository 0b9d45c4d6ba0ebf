/* SPDX-License-Identifier: BSD-3-Clause */
/* A grid's Laplacian on any number of processes, and what can go wrong with it: run by test_faults.py. The
 * program links the plug-in and registers it by its call. */
#include <petsc_tovbla.h>
#include <petscksp.h>

#include <signal.h>

static const char help[] = "-fault none|floating|zero_row|nan|kill\n";

/* The 5-point operator on m x m points, regular; floating: without supports, rows that add up to zero. */
static PetscErrorCode MakeMatrix(PetscInt m, PetscBool floating, Mat* made)
{
    Mat A;
    PetscInt first, last;

    PetscFunctionBegin;
    PetscCall(MatCreate(PETSC_COMM_WORLD, &A));
    PetscCall(MatSetSizes(A, PETSC_DECIDE, PETSC_DECIDE, m * m, m * m));
    PetscCall(MatSetFromOptions(A));
    PetscCall(MatSetUp(A));
    PetscCall(MatGetOwnershipRange(A, &first, &last));
    for (PetscInt row = first; row < last; ++row) {
        const PetscInt i = row / m, j = row % m;
        const PetscInt neighbours = (i > 0) + (i < m - 1) + (j > 0) + (j < m - 1);
        PetscCall(MatSetValue(A, row, row, floating ? neighbours : 4.0, INSERT_VALUES));
        if (i > 0)
            PetscCall(MatSetValue(A, row, row - m, -1.0, INSERT_VALUES));
        if (i < m - 1)
            PetscCall(MatSetValue(A, row, row + m, -1.0, INSERT_VALUES));
        if (j > 0)
            PetscCall(MatSetValue(A, row, row - 1, -1.0, INSERT_VALUES));
        if (j < m - 1)
            PetscCall(MatSetValue(A, row, row + 1, -1.0, INSERT_VALUES));
    }
    PetscCall(MatAssemblyBegin(A, MAT_FINAL_ASSEMBLY));
    PetscCall(MatAssemblyEnd(A, MAT_FINAL_ASSEMBLY));
    *made = A;
    PetscFunctionReturn(0);
}

/* Row and column 0, or one value of it, of the last process. */
static PetscErrorCode Spoil(Mat A, PetscScalar diagonal)
{
    PetscMPIInt rank, size;
    PetscInt first, row;

    PetscFunctionBegin;
    PetscCallMPI(MPI_Comm_rank(PETSC_COMM_WORLD, &rank));
    PetscCallMPI(MPI_Comm_size(PETSC_COMM_WORLD, &size));
    PetscCall(MatGetOwnershipRange(A, &first, NULL));
    row = first;
    PetscCall(MatSetOption(A, MAT_KEEP_NONZERO_PATTERN, PETSC_TRUE));
    PetscCall(MatZeroRowsColumns(A, rank == size - 1 ? 1 : 0, &row, diagonal, NULL, NULL));
    PetscFunctionReturn(0);
}

/* Solves and says how it went; the true residual, because a reason alone may be wrong. */
static PetscErrorCode Solve(KSP ksp, Mat A, Vec b, Vec x)
{
    KSPConvergedReason reason;
    const char* word;
    PetscInt steps;
    PetscReal norm;
    Vec r;

    PetscFunctionBegin;
    PetscCall(VecSet(x, 0.0));
    PetscCall(KSPSetOperators(ksp, A, A));
    PetscCall(KSPSolve(ksp, b, x));
    PetscCall(KSPGetConvergedReason(ksp, &reason));
    PetscCall(KSPGetConvergedReasonString(ksp, &word));
    PetscCall(KSPGetIterationNumber(ksp, &steps));
    PetscCall(VecDuplicate(b, &r));
    PetscCall(MatMult(A, x, r));
    PetscCall(VecAXPY(r, -1.0, b));
    PetscCall(VecNorm(r, NORM_2, &norm));
    PetscCall(PetscPrintf(PETSC_COMM_WORLD, "%s, %s\n", word,
                          reason < 0    ? "no answer"
                          : norm < 1e-8 ? "right"
                                        : "WRONG"));
    PetscCall(VecDestroy(&r));
    PetscFunctionReturn(0);
}

int main(int count, char** words)
{
    char fault[32] = "none";
    PetscInt m = 8;
    PetscMPIInt rank, size;
    PetscBool is_floating, is_nan, is_kill, is_zero;
    KSP ksp;
    Mat A;
    Vec b, x;

    PetscCall(PetscInitialize(&count, &words, NULL, help));
    PetscCall(MatSolverTypeRegister_TOVBla());
    PetscCall(PetscOptionsGetString(NULL, NULL, "-fault", fault, sizeof fault, NULL));
    PetscCall(PetscOptionsGetInt(NULL, NULL, "-m", &m, NULL));
    PetscCall(PetscStrcmp(fault, "floating", &is_floating));
    PetscCall(PetscStrcmp(fault, "nan", &is_nan));
    PetscCall(PetscStrcmp(fault, "kill", &is_kill));
    PetscCall(PetscStrcmp(fault, "zero_row", &is_zero));
    PetscCallMPI(MPI_Comm_rank(PETSC_COMM_WORLD, &rank));
    PetscCallMPI(MPI_Comm_size(PETSC_COMM_WORLD, &size));

    PetscCall(MakeMatrix(m, is_floating, &A));
    PetscCall(MatCreateVecs(A, &x, &b));
    PetscCall(VecSet(b, 1.0));
    PetscCall(KSPCreate(PETSC_COMM_WORLD, &ksp));
    PetscCall(KSPSetFromOptions(ksp));
    if (is_zero)
        PetscCall(Spoil(A, 0.0));
    if (is_nan)
        PetscCall(Spoil(A, (PetscScalar)NAN));
    if (is_kill && rank == size - 1) {
        PetscCall(KSPSetOperators(ksp, A, A));
        raise(SIGKILL);
    }
    PetscCall(Solve(ksp, A, b, x));
    if (is_zero || is_nan || is_floating) { /* values that can be factorised, with the same pattern */
        PetscCall(Spoil(A, 4.0));
        PetscCall(Solve(ksp, A, b, x));
    }
    PetscCall(KSPDestroy(&ksp));
    PetscCall(VecDestroy(&b));
    PetscCall(VecDestroy(&x));
    PetscCall(MatDestroy(&A));
    PetscCall(PetscFinalize());
    return 0;
}
