// SPDX-License-Identifier: BSD-3-Clause
// B := A·diag(s), A and B m×n.
#include "tiers.h"

BLA_TIERS_VRA(blac_dlacpysc_,
              (const int* m, const int* n, const real* a, const int* lda, const real* s, real* b,
               const int* ldb),
              (m, n, a, lda, s, b, ldb))
{
    const int64_t rows = *m, columns = *n, a_step = *lda, b_step = *ldb;
    if (rows < 1)
        return; // s is not read either
    for (int64_t j = 0; j < columns; ++j, a += a_step, b += b_step) {
        const double factor = s[j];
        BLA_NO_OVERLAP
        for (int64_t i = 0; i < rows; ++i)
            b[i] = a[i] * factor;
    }
}
