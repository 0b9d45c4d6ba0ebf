// SPDX-License-Identifier: BSD-3-Clause
// C := beta·C + alpha·A·D·Aᵀ on the lower block trapezoid of C, in column blocks of width nb; D(l,l) =
// d(l,l).
//
// The diagonal blocks are formed in full, their upper triangles included.
#include "TOVBlaModule.h"

#include "lower_trapezoid.h"

BLA_EXPORT void blac_dsyrk_scaled2_(const int* nb, const int* n, const int* k, const double* alpha,
                                    const real* a, const int* lda, const double* beta, real* c,
                                    const int* ldc, const real* d, const int* ldd)
{
    const int64_t c_step = int64_t{*ldc} + 1;
    for_lower_trapezoid(n, nb, [&](int64_t j, const int* rows, const int* width) {
        blac_dgemm_scaled_("N", "T", rows, width, k, alpha, a + j, lda, a + j, lda, beta, c + j * c_step, ldc,
                           d, ldd);
    });
}
