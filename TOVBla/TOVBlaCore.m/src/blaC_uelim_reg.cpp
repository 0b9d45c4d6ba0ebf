// SPDX-License-Identifier: BSD-3-Clause
// A + E = L·D·U in place, in panels of width nb, with regularised pivots: as blac_uelim_, but each diagonal
// block is eliminated by blac_uelim_small_reg_.
#include "TOVBlaModule.h"

#include "blas.h"
#include "panels.h"

BLA_EXPORT void blac_uelim_reg_(const int* n, const int* nb, real* a, const int* lda, real* d, real* dinv,
                                const real* tol, const int* negpiv, const real* reg, real* dcorr)
{
    if (0 < *n && *n <= *nb)
        return blac_uelim_small_reg_(n, a, lda, d, dinv, tol, negpiv, reg, dcorr);
    const Panels panels(*n, *nb);
    if (panels.full < 1)
        return blac_uelim_small_reg_(&panels.last, a, lda, d, dinv, tol, negpiv, reg, dcorr);
    const double one = 1.0, minus_one = -1.0;
    const int64_t width = *nb, step = int64_t{*lda} + 1;
    int m = *n;
    for (int q = 0; q < panels.full; ++q) {
        real *const below = a + width, *const right = a + width * *lda, *const behind = a + width * step;
        m -= *nb;
        blac_uelim_small_reg_(nb, a, lda, d, dinv, tol, negpiv, reg, dcorr);
        dtrsm_("R", "U", "N", "U", &m, nb, &one, a, lda, below, lda, 1, 1, 1, 1);
        dtrsm_("L", "L", "N", "N", nb, &m, &one, a, lda, right, lda, 1, 1, 1, 1);
        dgemm_("N", "N", &m, &m, nb, &minus_one, below, lda, right, lda, &one, behind, lda, 1, 1);
        a = behind;
        d += width;
        dinv += width;
        tol += width;
        negpiv += width;
        reg += width;
        dcorr += width;
    }
    blac_uelim_small_reg_(&panels.last, a, lda, d, dinv, tol, negpiv, reg, dcorr);
}
