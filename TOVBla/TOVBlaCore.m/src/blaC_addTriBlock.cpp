// SPDX-License-Identifier: BSD-3-Clause
// a(i,j) := a(i,j) + b(i,j) on the lower triangle with the diagonal, A and B of order n.
#include "tiers.h"

BLA_TIERS_VA(blac_addtriblock_, (const int* n, real* a, const int* lda, const real* b, const int* ldb),
             (n, a, lda, b, ldb))
{
    const int64_t order = *n, a_step = *lda, b_step = *ldb;
    for (int64_t j = 0; j < order; ++j)
        for (int64_t i = j; i < order; ++i)
            a[j * a_step + i] = a[j * a_step + i] + b[j * b_step + i];
}
