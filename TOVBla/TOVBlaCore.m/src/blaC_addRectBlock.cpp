// SPDX-License-Identifier: BSD-3-Clause
// A := A + B, A and B m×n.
#include "tiers.h"

BLA_TIERS_VA(blac_addrectblock_,
             (const int* m, const int* n, real* a, const int* lda, const real* b, const int* ldb),
             (m, n, a, lda, b, ldb))
{
    const int64_t rows = *m, columns = *n, a_step = *lda, b_step = *ldb;
    for (int64_t j = 0; j < columns; ++j, a += a_step, b += b_step)
        BLA_NO_OVERLAP
    for (int64_t i = 0; i < rows; ++i)
        a[i] = a[i] + b[i];
}
