/* SPDX-License-Identifier: BSD-3-Clause */
/* What was done: for -ksp_view, and for MatGetInfo(). */
#include "factor.h"

PetscErrorCode MatView_TOVBla(Mat F, PetscViewer viewer)
{
    static const char* const orderings[] = {"none", "METIS", "AMD", "as given"};
    PetscBool ascii;
    PetscViewerFormat format;

    PetscFunctionBegin;
    PetscCall(PetscObjectTypeCompare((PetscObject)viewer, PETSCVIEWERASCII, &ascii));
    if (!ascii)
        PetscFunctionReturn(0);
    PetscCall(PetscViewerGetFormat(viewer, &format));
    if (format != PETSC_VIEWER_ASCII_INFO && format != PETSC_VIEWER_ASCII_INFO_DETAIL)
        PetscFunctionReturn(0);
    PetscCall(PetscViewerASCIIPrintf(viewer, "tovbla: %s, order of elimination %s, %.0f threads\n",
                                     ((TOVBla*)F->data)->kind == BLA_SOLVER_GENERAL ? "L*D*U" : "L*D*L^T",
                                     orderings[(int)MatTOVBlaQuantity(F, "ordering_used")],
                                     MatTOVBlaQuantity(F, "threads_used")));
    PetscCall(PetscViewerASCIIPrintf(viewer,
                                     "  fronts %.0f, the largest of order %.0f; factor entries %.0f (fill "
                                     "%.3g); flops %.4g; memory %.0f bytes\n",
                                     MatTOVBlaQuantity(F, "fronts"), MatTOVBlaQuantity(F, "largest_front"),
                                     MatTOVBlaQuantity(F, "factor_entries"),
                                     MatTOVBlaQuantity(F, "factor_entries") /
                                         PetscMax(MatTOVBlaQuantity(F, "entries"), 1.0),
                                     MatTOVBlaQuantity(F, "flops"), MatTOVBlaQuantity(F, "memory")));
    PetscCall(PetscViewerASCIIPrintf(
        viewer, "  pivots: %.0f positive, %.0f negative, %.0f shifted, %.0f replaced\n",
        MatTOVBlaQuantity(F, "positive_pivots"), MatTOVBlaQuantity(F, "negative_pivots"),
        MatTOVBlaQuantity(F, "shifted_pivots"), MatTOVBlaQuantity(F, "replaced_pivots")));
    PetscFunctionReturn(0);
}

PetscErrorCode MatGetInfo_TOVBla(Mat F, MatInfoType type, MatInfo* info)
{
    PetscFunctionBegin;
    (void)type; /* there is one process */
    PetscCall(PetscMemzero(info, sizeof *info));
    info->block_size = 1.0;
    info->nz_allocated = info->nz_used = MatTOVBlaQuantity(F, "factor_entries");
    info->memory = MatTOVBlaQuantity(F, "memory");
    info->fill_ratio_needed = info->nz_used / PetscMax(MatTOVBlaQuantity(F, "entries"), 1.0);
    PetscFunctionReturn(0);
}
