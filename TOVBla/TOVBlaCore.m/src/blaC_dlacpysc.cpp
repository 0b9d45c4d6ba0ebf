// SPDX-License-Identifier: BSD-3-Clause
// B := A·diag(s), A and B m×n.
#include "columns.h"
#include "tiers.h"

BLA_TIERS_VRA(blac_dlacpysc_,
              (const int* m, const int* n, const real* a, const int* lda, const real* s, real* b,
               const int* ldb),
              (m, n, a, lda, s, b, ldb))
{
    const int64_t rows = *m, columns = *n, a_step = *lda, b_step = *ldb;
    if (rows < 1)
        return; // s is not read either
    for_columns(rows, columns, b, b_step, a, a_step,
                [=](int64_t j, real* to, const real* from, int64_t first, int64_t last) BLA_INLINED {
                    const double factor = s[j];
                    BLA_NO_OVERLAP
                    for (int64_t i = first; i < last; ++i)
                        to[i] = from[i] * factor;
                });
}
