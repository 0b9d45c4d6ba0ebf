/* SPDX-License-Identifier: BSD-3-Clause */
/* Makes the solver type known to PETSc, and makes its factors. */
#include "factor.h"

static PetscErrorCode MatFactorGetSolverType_TOVBla(Mat F, MatSolverType* type)
{
    (void)F;
    *type = MATSOLVERTOVBLA;
    return 0;
}

static PetscErrorCode MatDestroy_TOVBla(Mat F)
{
    TOVBla* data = (TOVBla*)F->data;

    PetscFunctionBegin;
    if (data) {
        bla_solver_destroy(data->solver);
        PetscCall(MatDestroy(&data->points));
        PetscCall(MatDestroy(&data->checked));
        PetscCall(VecDestroy(&data->residual));
        PetscCall(ISDestroy(&data->kept));
    }
    PetscCall(PetscFree(F->data));
    PetscCall(PetscObjectComposeFunction((PetscObject)F, "MatFactorGetSolverType_C", NULL));
    PetscCall(PetscObjectComposeFunction((PetscObject)F, "MatFactorSetSchurIS_C", NULL));
    PetscFunctionReturn(0);
}

static PetscErrorCode MatGetFactor_TOVBla(Mat A, MatFactorType type, Mat* F)
{
    Mat made;
    TOVBla* data;

    PetscFunctionBegin;
    PetscCheck(A->rmap->n == A->cmap->n, PETSC_COMM_SELF, PETSC_ERR_ARG_WRONG,
               "tovbla: the matrix has %" PetscInt_FMT " rows and %" PetscInt_FMT " columns", A->rmap->n,
               A->cmap->n);
    PetscCall(MatCreate(PetscObjectComm((PetscObject)A), &made));
    PetscCall(MatSetSizes(made, A->rmap->n, A->cmap->n, A->rmap->N, A->cmap->N));
    PetscCall(PetscStrallocpy(MATSOLVERTOVBLA, &((PetscObject)made)->type_name));
    PetscCall(MatSetUp(made));

    PetscCall(PetscNew(&data));
    made->data = data;
    made->ops->destroy = MatDestroy_TOVBla;
    made->ops->view = MatView_TOVBla;
    made->ops->getinfo = MatGetInfo_TOVBla;
    made->ops->solve = MatSolve_TOVBla;
    made->ops->solvetranspose = MatSolveTranspose_TOVBla;
    made->ops->matsolve = MatMatSolve_TOVBla;
    made->ops->matsolvetranspose = MatMatSolveTranspose_TOVBla;
    if (type == MAT_FACTOR_LU) {
        made->ops->lufactorsymbolic = MatLUFactorSymbolic_TOVBla;
    } else {
        made->ops->choleskyfactorsymbolic = MatCholeskyFactorSymbolic_TOVBla;
        made->ops->getinertia = MatGetInertia_TOVBla;
    }
    /* Without the first, views and callers take the factor for one of PETSc's own. */
    PetscCall(PetscObjectComposeFunction((PetscObject)made, "MatFactorGetSolverType_C",
                                         MatFactorGetSolverType_TOVBla));
    PetscCall(
        PetscObjectComposeFunction((PetscObject)made, "MatFactorSetSchurIS_C", MatFactorSetSchurIS_TOVBla));
    made->factortype = type;
    made->assembled = PETSC_TRUE; /* what -ksp_view asks for */
    made->preallocated = PETSC_TRUE;
    made->canuseordering = PETSC_TRUE;
    PetscCall(PetscFree(made->solvertype));
    PetscCall(PetscStrallocpy(MATSOLVERTOVBLA, &made->solvertype));
    PetscCall(PetscStrallocpy(MATORDERINGEXTERNAL, (char**)&made->preferredordering[type]));
    PetscCheck(bla_solver_create(&data->solver) == BLA_SOLVER_OK, PETSC_COMM_SELF, PETSC_ERR_MEM,
               "tovbla: there is not enough memory");
    *F = made;
    PetscFunctionReturn(0);
}

/* A process may run over another PETSc than the one compiled against: its symbols come first. */
static PetscErrorCode CheckFlavour(void)
{
    PetscDataType scalar;
    PetscBool found;
    size_t bytes;

    PetscFunctionBegin;
    PetscCall(PetscDataTypeFromString("scalar", &scalar, &found));
    PetscCheck(found && scalar == PETSC_SCALAR, PETSC_COMM_SELF, PETSC_ERR_SUP,
               "tovbla solves real systems in double precision; this PETSc has other scalars");
    PetscCall(PetscDataTypeGetSize(PETSC_INT, &bytes));
    PetscCheck(bytes == sizeof(PetscInt), PETSC_COMM_SELF, PETSC_ERR_SUP,
               "tovbla was compiled for a PETSc with integers of %zu bytes; this one has %zu",
               sizeof(PetscInt), bytes);
    PetscFunctionReturn(0);
}

PetscErrorCode MatSolverTypeRegister_TOVBla(void)
{
    static const struct
    {
        MatType matrix;
        MatFactorType factor;
    } served[] = {{MATSEQAIJ, MAT_FACTOR_LU},
                  {MATSEQAIJ, MAT_FACTOR_CHOLESKY},
                  {MATSEQBAIJ, MAT_FACTOR_LU},
                  {MATSEQBAIJ, MAT_FACTOR_CHOLESKY},
                  {MATSEQSBAIJ, MAT_FACTOR_CHOLESKY}};

    PetscFunctionBegin;
    PetscCall(CheckFlavour());
    PetscCall(MatInitializePackage()); /* else the first registration keeps PETSc's own types out */
    for (size_t k = 0; k < PETSC_STATIC_ARRAY_LENGTH(served); ++k)
        PetscCall(
            MatSolverTypeRegister(MATSOLVERTOVBLA, served[k].matrix, served[k].factor, MatGetFactor_TOVBla));
    PetscFunctionReturn(0);
}

/* What PETSc calls in a library that -dll_append names. */
PETSC_EXTERN PetscErrorCode PetscDLLibraryRegister_petsc_tovbla(void);
PetscErrorCode PetscDLLibraryRegister_petsc_tovbla(void)
{
    PetscFunctionBegin;
    PetscCall(MatSolverTypeRegister_TOVBla());
    PetscFunctionReturn(0);
}
