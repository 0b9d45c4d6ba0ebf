// SPDX-License-Identifier: BSD-3-Clause
// A := diag(d)·A, A m×n: rows scaled in place.
#include "columns.h"
#include "tiers.h"

BLA_TIERS_VRA(blac_scale2_, (const int* m, const int* n, real* a, const int* lda, const real* d),
              (m, n, a, lda, d))
{
    if (*n < 1 || *m < 1)
        return;
    const int64_t rows = *m, columns = *n, a_step = *lda;
    for_columns(rows, columns, a, a_step, a, a_step,
                [=](int64_t, real* to, const real*, int64_t first, int64_t last) BLA_INLINED {
                    BLA_NO_OVERLAP
                    for (int64_t i = first; i < last; ++i)
                        to[i] = to[i] * d[i];
                });
}
