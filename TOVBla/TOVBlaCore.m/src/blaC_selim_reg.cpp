// SPDX-License-Identifier: BSD-3-Clause
// A + E = L·D·Lᵀ in place, in panels of width nb, with regularised pivots: as blac_selim_, but each panel is
// eliminated by blac_selim_small_reg_ and solved through the facade.
#include "TOVBlaModule.h"

#include "facade_calls.h"
#include "panels.h"

BLA_EXPORT void blac_selim_reg_(const int* n, const int* nb, real* a, const int* lda, real* d, real* dinv,
                                const real* tol, const int* negpiv, const real* reg, real* dcorr)
{
    if (0 < *n && *n <= *nb)
        return blac_selim_small_reg_(n, a, lda, d, dinv, tol, negpiv, reg, dcorr);
    const Panels panels(*n, *nb);
    if (panels.full < 1)
        return blac_selim_small_reg_(&panels.last, a, lda, d, dinv, tol, negpiv, reg, dcorr);
    const double one = 1.0, minus_one = -1.0;
    const int64_t width = *nb, step = int64_t{*lda} + 1;
    int m = *n;
    for (int q = 0; q < panels.full; ++q) {
        real* const below = a + width;
        m -= *nb;
        blac_selim_small_reg_(nb, a, lda, d, dinv, tol, negpiv, reg, dcorr);
        facade_dtrsm("R", "U", "N", "U", &m, nb, &one, a, lda, below, lda, 1, 1, 1, 1);
        blac_dsyrk_scaled_(nb, &m, nb, &minus_one, below, lda, below, lda, &one, a + width * step, lda, dinv);
        a += width * step;
        d += width;
        dinv += width;
        tol += width;
        negpiv += width;
        reg += width;
        dcorr += width;
    }
    blac_selim_small_reg_(&panels.last, a, lda, d, dinv, tol, negpiv, reg, dcorr);
}
