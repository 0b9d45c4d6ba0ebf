// SPDX-License-Identifier: BSD-3-Clause
// A := A + B, A and B m×n.
#include "columns.h"
#include "tiers.h"

BLA_TIERS_VA(blac_addrectblock_,
             (const int* m, const int* n, real* a, const int* lda, const real* b, const int* ldb),
             (m, n, a, lda, b, ldb))
{
    if (*n < 1 || *m < 1)
        return;
    const int64_t rows = *m, columns = *n, a_step = *lda, b_step = *ldb;
    for_columns(rows, columns, a, a_step, b, b_step,
                [=](int64_t, real* to, const real* from, int64_t first, int64_t last) BLA_INLINED {
                    BLA_NO_OVERLAP
                    for (int64_t i = first; i < last; ++i)
                        to[i] = to[i] + from[i];
                });
}
