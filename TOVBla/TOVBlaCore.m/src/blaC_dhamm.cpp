// SPDX-License-Identifier: BSD-3-Clause
// C := beta·C + alpha·A·Bᵀ on the lower block trapezoid of C, in column blocks of width nb.
//
// The diagonal blocks are formed in full, their upper triangles included.
#include "TOVBlaModule.h"

#include "blas.h"
#include "lower_trapezoid.h"

BLA_EXPORT void blac_dhamm_(const int* nb, const int* n, const int* k, const double* alpha, const real* a,
                            const int* lda, const real* b, const int* ldb, const double* beta, real* c,
                            const int* ldc)
{
    const int64_t c_step = int64_t{*ldc} + 1;
    for_lower_trapezoid(n, nb, [&](int64_t j, const int* rows, const int* width) {
        dgemm_("N", "T", rows, width, k, alpha, a + j, lda, b + j, ldb, beta, c + j * c_step, ldc, 1, 1);
    });
}
