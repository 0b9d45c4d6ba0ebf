/* SPDX-License-Identifier: BSD-3-Clause */
/**
 * @file petsc_tovbla.h
 * The sparse direct solver as solver type `tovbla` of PETSc: LU and Cholesky of sequential matrices.
 *
 *     program -dll_append FOLDER/libpetsc_tovbla -pc_factor_mat_solver_type tovbla
 *
 * needs no line of code; a program that links the library calls this once, after PetscInitialize().
 */
#ifndef PETSC_TOVBLA_H
#define PETSC_TOVBLA_H

#include <petscmat.h>

#if defined(PETSC_USE_COMPLEX) || !defined(PETSC_USE_REAL_DOUBLE)
#    error "tovbla solves real systems in double precision: take a PETSc of such scalars"
#endif

/** The name, for PCFactorSetMatSolverType() and MatGetFactor(). */
#define MATSOLVERTOVBLA "tovbla"

/**
 * Makes the solver type known: LU and Cholesky of MATSEQAIJ, MATSEQBAIJ and MATSEQSBAIJ (Cholesky only).
 * Integers of PETSc may have 32 or 64 bits. PETSC_ERR_SUP where the PETSc of the process has other scalars or
 * integers than the one compiled against.
 */
PETSC_EXTERN PetscErrorCode MatSolverTypeRegister_TOVBla(void);

#endif
