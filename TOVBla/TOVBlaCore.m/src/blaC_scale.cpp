// SPDX-License-Identifier: BSD-3-Clause
// B := A·diag(d), A and B m×n.
#include "columns.h"
#include "tiers.h"

BLA_TIERS_VRA(blac_scale_,
              (const int* m, const int* n, const real* d, const real* a, const int* lda, real* b,
               const int* ldb),
              (m, n, d, a, lda, b, ldb))
{
    if (*n < 1 || *m < 1)
        return;
    scale_columns(*m, *n, a, *lda, d, b, *ldb);
}
