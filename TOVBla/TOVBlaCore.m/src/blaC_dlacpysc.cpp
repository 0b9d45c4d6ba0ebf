// SPDX-License-Identifier: BSD-3-Clause
// B := A·diag(s), A and B m×n.
#include "columns.h"
#include "tiers.h"

BLA_TIERS_VRA(blac_dlacpysc_,
              (const int* m, const int* n, const real* a, const int* lda, const real* s, real* b,
               const int* ldb),
              (m, n, a, lda, s, b, ldb))
{
    if (*n < 1 || *m < 1)
        return;
    scale_columns(*m, *n, a, *lda, s, b, *ldb);
}
