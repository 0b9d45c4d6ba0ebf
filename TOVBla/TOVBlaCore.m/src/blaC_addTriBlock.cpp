// SPDX-License-Identifier: BSD-3-Clause
// a(i,j) := a(i,j) + b(i,j) on the lower triangle with the diagonal, A and B of order n.
#include "tiers.h"

BLA_TIERS_VA(blac_addtriblock_, (const int* n, real* a, const int* lda, const real* b, const int* ldb),
             (n, a, lda, b, ldb))
{
    if (*n < 1)
        return;
    const int64_t a_step = int64_t{*lda} + 1, b_step = int64_t{*ldb} + 1; // from diagonal to diagonal
    for (int64_t rows = *n; rows > 0; --rows, a += a_step, b += b_step) {
        BLA_NO_OVERLAP
        for (int64_t i = 0; i < rows; ++i)
            a[i] = a[i] + b[i];
    }
}
