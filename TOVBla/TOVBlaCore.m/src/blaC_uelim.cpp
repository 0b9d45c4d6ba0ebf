// SPDX-License-Identifier: BSD-3-Clause
// A = L·D·U in place, in panels of width nb: small elimination of the diagonal block, X := A21·U11⁻¹ =
// L21·D11, Y := (L11·D11)⁻¹·A12 = U12, then A22 := A22 - X·Y.
#include "TOVBlaModule.h"

#include "blas.h"
#include "panels.h"

BLA_EXPORT void blac_uelim_(const int* n, const int* nb, const double* tol, real* a, const int* lda, real* d,
                            real* dinv)
{
    if (0 < *n && *n <= *nb)
        return blac_uelim_small_(n, a, lda, d, dinv, tol);
    const Panels panels(*n, *nb);
    if (panels.full < 1)
        return blac_uelim_small_(&panels.last, a, lda, d, dinv, tol);
    const double one = 1.0, minus_one = -1.0;
    const int64_t width = *nb, step = int64_t{*lda} + 1;
    int m = *n;
    for (int q = 0; q < panels.full; ++q) {
        real *const below = a + width, *const right = a + width * *lda, *const behind = a + width * step;
        m -= *nb;
        blac_uelim_small_(nb, a, lda, d, dinv, tol);
        dtrsm_("R", "U", "N", "U", &m, nb, &one, a, lda, below, lda, 1, 1, 1, 1);
        dtrsm_("L", "L", "N", "N", nb, &m, &one, a, lda, right, lda, 1, 1, 1, 1);
        dgemm_("N", "N", &m, &m, nb, &minus_one, below, lda, right, lda, &one, behind, lda, 1, 1);
        a = behind;
        d += width;
        dinv += width;
    }
    blac_uelim_small_(&panels.last, a, lda, d, dinv, tol);
}
