/* SPDX-License-Identifier: BSD-3-Clause */
/* -mat_tovbla_OPTION for every option of the solver, with its defaults but for the threads. */
#include "factor.h"

static const struct
{
    const char *key, *option, *help;
    PetscBool whole;
} numbers[] = {
    {"-mat_tovbla_threads", "threads", "Threads of a process, 0: one per processor", PETSC_TRUE},
    {"-mat_tovbla_tolerance", "tolerance", "Pivots of the scaled matrix that count as zero", PETSC_FALSE},
    {"-mat_tovbla_shift", "shift", "By how much such pivots are moved, 0: an error", PETSC_FALSE},
    {"-mat_tovbla_refinements", "refinements", "Most steps of refinement where a solution needs them",
     PETSC_TRUE},
    {"-mat_tovbla_panel_width", "panel_width", "Columns eliminated at once, 0: by the front", PETSC_TRUE},
    {"-mat_tovbla_memory_limit", "memory_limit", "Bytes that a factorisation may take, 0: no limit",
     PETSC_FALSE}};

/* "given": the one of -pc_factor_mat_ordering_type */
static const char* const orderings[] = {"choose", "metis", "amd", "given"};

PetscErrorCode MatTOVBlaSetFromOptions(Mat F)
{
    bla_solver* solver = ((TOVBla*)F->data)->solver;
    PetscInt ordering = 0;

    PetscFunctionBegin;
    TOVBlaCall(solver, bla_solver_set(solver, "threads", 1.0)); /* there are processes for the processors */
    PetscOptionsBegin(PetscObjectComm((PetscObject)F), ((PetscObject)F)->prefix, "tovbla options", "Mat");
    for (size_t k = 0; k < PETSC_STATIC_ARRAY_LENGTH(numbers); ++k) {
        double value;
        PetscInt whole;
        TOVBlaCall(solver, bla_solver_get(solver, numbers[k].option, &value));
        whole = (PetscInt)value;
        if (numbers[k].whole) {
            PetscCall(PetscOptionsInt(numbers[k].key, numbers[k].help, "None", whole, &whole, NULL));
            value = (double)whole;
        } else {
            PetscCall(PetscOptionsReal(numbers[k].key, numbers[k].help, "None", value, &value, NULL));
        }
        PetscCheck(bla_solver_set(solver, numbers[k].option, value) == BLA_SOLVER_OK, PETSC_COMM_SELF,
                   PETSC_ERR_ARG_OUTOFRANGE, "%s: %s", numbers[k].key, bla_solver_message(solver));
    }
    PetscCall(PetscOptionsEList("-mat_tovbla_ordering", "Order of elimination", "None", orderings,
                                PETSC_STATIC_ARRAY_LENGTH(orderings), orderings[ordering], &ordering, NULL));
    TOVBlaCall(solver, bla_solver_set(solver, "ordering", (double)ordering));
    PetscOptionsEnd();
    PetscFunctionReturn(0);
}
