// SPDX-License-Identifier: BSD-3-Clause
// X := diag(d)·X for the m×n matrix X that a holds transposed: the m columns of the n×m array are scaled.
#include "columns.h"
#include "tiers.h"

BLA_TIERS_VRA(blac_scale2t_, (const int* m, const int* n, real* a, const int* lda, const real* d),
              (m, n, a, lda, d))
{
    if (*m < 1 || *n < 1)
        return;
    scale_columns(*n, *m, a, *lda, d, a, *lda);
}
