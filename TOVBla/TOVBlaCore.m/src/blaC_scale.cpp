// SPDX-License-Identifier: BSD-3-Clause
// B := A·diag(d), A and B m×n.
#include "tiers.h"

BLA_TIERS_VRA(blac_scale_,
              (const int* m, const int* n, const real* d, const real* a, const int* lda, real* b,
               const int* ldb),
              (m, n, d, a, lda, b, ldb))
{
    const int64_t rows = *m, columns = *n, a_step = *lda, b_step = *ldb;
    if (rows < 1)
        return; // d is not read either
    for (int64_t j = 0; j < columns; ++j) {
        const double s = d[j];
        for (int64_t i = 0; i < rows; ++i)
            b[j * b_step + i] = a[j * a_step + i] * s;
    }
}
