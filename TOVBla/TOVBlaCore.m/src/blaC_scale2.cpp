// SPDX-License-Identifier: BSD-3-Clause
// A := diag(d)·A, A m×n: rows scaled in place.
#include "tiers.h"

BLA_TIERS_VRA(blac_scale2_, (const int* m, const int* n, real* a, const int* lda, const real* d),
              (m, n, a, lda, d))
{
    const int64_t rows = *m, columns = *n, a_step = *lda;
    for (int64_t j = 0; j < columns; ++j, a += a_step)
        BLA_NO_OVERLAP
    for (int64_t i = 0; i < rows; ++i)
        a[i] = a[i] * d[i];
}
