// SPDX-License-Identifier: BSD-3-Clause
// L := L·diag(d) on the strictly lower triangle. d(n) scales nothing and is never read.
#include "tiers.h"

BLA_TIERS_VRA(blac_scale_low_, (const int* n, real* a, const int* lda, const real* d), (n, a, lda, d))
{
    const int64_t order = *n, a_step = *lda;
    for (int64_t j = 0; j + 1 < order; ++j) {
        const double s = d[j];
        for (int64_t i = j + 1; i < order; ++i)
            a[j * a_step + i] = a[j * a_step + i] * s;
    }
}
