// SPDX-License-Identifier: BSD-3-Clause
// X := diag(d)·X for the m×n matrix X that a holds transposed: the m columns of the n×m array are scaled.
#include "columns.h"
#include "tiers.h"

BLA_TIERS_VRA(blac_scale2t_, (const int* m, const int* n, real* a, const int* lda, const real* d),
              (m, n, a, lda, d))
{
    const int64_t columns = *m, rows = *n, a_step = *lda;
    if (rows < 1)
        return; // d is not read either
    for_columns(rows, columns, a, a_step, a, a_step,
                [=](int64_t j, real* to, const real*, int64_t first, int64_t last) BLA_INLINED {
                    const double s = d[j];
                    for (int64_t i = first; i < last; ++i)
                        to[i] = to[i] * s;
                });
}
