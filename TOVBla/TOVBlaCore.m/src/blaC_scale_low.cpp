// SPDX-License-Identifier: BSD-3-Clause
// L := L·diag(d) on the strictly lower triangle. d(n) scales nothing and is never read.
#include "scale_column.h"
#include "tiers.h"

BLA_TIERS_VRA(blac_scale_low_, (const int* n, real* a, const int* lda, const real* d), (n, a, lda, d))
{
    if (*n < 1)
        return;
    const int64_t diagonal_step = int64_t{*lda} + 1;
    for (int64_t rows = int64_t{*n} - 1; rows > 0; --rows, a += diagonal_step, ++d)
        scale_column(rows, a + 1, *d);
}
