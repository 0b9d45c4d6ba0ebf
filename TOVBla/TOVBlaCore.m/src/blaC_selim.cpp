// SPDX-License-Identifier: BSD-3-Clause
// A = L·D·Lᵀ in place, in panels of width nb: small elimination of the diagonal block, X := A21·L11⁻ᵀ =
// L21·D11, then A22 := A22 - X·D11⁻¹·Xᵀ on the lower block trapezoid.
#include "TOVBlaModule.h"

#include "blas.h"
#include "panels.h"

BLA_EXPORT void blac_selim_(const int* n, const int* nb, const double* tol, real* a, const int* lda, real* d,
                            real* dinv)
{
    if (0 < *n && *n <= *nb)
        return blac_selim_small_(n, a, lda, d, dinv, tol);
    const Panels panels(*n, *nb);
    if (panels.full < 1)
        return blac_selim_small_(&panels.last, a, lda, d, dinv, tol);
    const double one = 1.0, minus_one = -1.0;
    const int64_t width = *nb, step = int64_t{*lda} + 1;
    int m = *n;
    for (int q = 0; q < panels.full; ++q) {
        real* const below = a + width;
        m -= *nb;
        blac_selim_small_(nb, a, lda, d, dinv, tol);
        dtrsm_("R", "U", "N", "U", &m, nb, &one, a, lda, below, lda, 1, 1, 1, 1);
        blac_dsyrk_scaled_(nb, &m, nb, &minus_one, below, lda, below, lda, &one, a + width * step, lda, dinv);
        a += width * step;
        d += width;
        dinv += width;
    }
    blac_selim_small_(&panels.last, a, lda, d, dinv, tol);
}
