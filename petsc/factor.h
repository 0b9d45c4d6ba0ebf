/* SPDX-License-Identifier: BSD-3-Clause */
/* What a factor matrix of PETSc holds when it is ours, and what the sources of this folder share. */
#ifndef TOVBLA_PETSC_FACTOR_H
#define TOVBLA_PETSC_FACTOR_H

#include "petsc_tovbla.h"

#include <TOVBlaSolver.h>
#include <petsc/private/matimpl.h>

typedef struct
{
    bla_solver* solver;
    int kind;               /* BLA_SOLVER_SYMMETRIC_UPPER, or BLA_SOLVER_GENERAL, as analysed */
    PetscInt entries;       /* those analysed; the values to factorise must be as many */
    Mat points;             /* of a blocked matrix: the same, entry by entry; else NULL */
    Mat checked;            /* what was factorised, where solutions must be held against it; else NULL */
    PetscReal size[2];      /* of `checked`: its norms, NORM_INFINITY and NORM_1 */
    Vec residual;           /* with `checked` */
    IS kept;                /* MatFactorSetSchurIS(); else NULL */
    PetscBool singularKept; /* the Schur complement is singular: it is given, but nothing can be solved */
} TOVBla;

/* options.c: reads -mat_tovbla_* under the factor's prefix */
PetscErrorCode MatTOVBlaSetFromOptions(Mat F);

/* factorise.c */
PetscErrorCode MatLUFactorSymbolic_TOVBla(Mat F, Mat A, IS row, IS column, const MatFactorInfo* info);
PetscErrorCode MatCholeskyFactorSymbolic_TOVBla(Mat F, Mat A, IS order, const MatFactorInfo* info);

/* verdict.c: what cannot be factorised becomes a MatFactorError, or an error where the user asked for that */
PetscErrorCode MatTOVBlaFailed(Mat F, Mat A, int status);
PetscErrorCode MatTOVBlaJudge(Mat F, Mat A, PetscBool shifted);

/* condition.c */
PetscErrorCode MatTOVBlaIsSingular(Mat F, Mat A, PetscReal* smallest, PetscBool* singular);

/* solve.c */
PetscErrorCode MatTOVBlaKeepForChecks(Mat F, Mat points, PetscBool shifted);
PetscErrorCode MatSolve_TOVBla(Mat F, Vec b, Vec x);
PetscErrorCode MatSolveTranspose_TOVBla(Mat F, Vec b, Vec x);
PetscErrorCode MatMatSolve_TOVBla(Mat F, Mat B, Mat X);
PetscErrorCode MatMatSolveTranspose_TOVBla(Mat F, Mat B, Mat X);

/* schur.c */
PetscErrorCode MatFactorSetSchurIS_TOVBla(Mat F, IS kept);
PetscErrorCode MatTOVBlaFetchSchur(Mat F);

/* view.c */
PetscErrorCode MatView_TOVBla(Mat F, PetscViewer viewer);
PetscErrorCode MatGetInfo_TOVBla(Mat F, MatInfoType type, MatInfo* info);

/* inertia.c */
PetscErrorCode MatGetInertia_TOVBla(Mat F, PetscInt* negative, PetscInt* zero, PetscInt* positive);

/* A quantity of the solver, 0 while it is not known. */
static inline double MatTOVBlaQuantity(Mat F, const char* name)
{
    double value = 0.0;
    return bla_solver_get(((TOVBla*)F->data)->solver, name, &value) == BLA_SOLVER_OK ? value : 0.0;
}

/* Is anything to be held against the matrix? Who shifts pivots knows that the factor is not that of A. */
static inline PetscBool MatTOVBlaChecks(Mat F)
{
    return (PetscBool)(MatTOVBlaQuantity(F, "refinements") > 0.0 && MatTOVBlaQuantity(F, "shift") == 0.0);
}

/* For calls that cannot fail but by a fault of ours. */
#define TOVBlaCall(solver, call)                                                                             \
    PetscCheck((call) == BLA_SOLVER_OK, PETSC_COMM_SELF, PETSC_ERR_LIB, "tovbla: %s",                        \
               bla_solver_message(solver))

#endif
