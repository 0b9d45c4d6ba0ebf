// SPDX-License-Identifier: BSD-3-Clause
// a(i,j) := a(i,j)·(1/a(j,j)) below the diagonal; a tiny pivot counts as infinite, its column is multiplied
// by +0.
//
// Both comparisons are strict, so that ±1e-36 is tiny, and both fail for a NaN, which is tiny too. The column
// is multiplied by the rounded reciprocal: dividing entry by entry would give other last bits.
#include "pivot.h"
#include "scale_column.h"
#include "tiers.h"

BLA_TIERS_VRA(blac_scale_low2_, (const int* n, real* a, const int* lda), (n, a, lda))
{
    if (*n < 1)
        return;
    const int64_t diagonal_step = int64_t{*lda} + 1;
    for (int64_t rows = int64_t{*n} - 1; rows > 0; --rows, a += diagonal_step) {
        const double pivot = *a;
        scale_column(rows, a + 1, exceeds(pivot, pivot::Tiny) ? 1.0 / pivot : 0.0);
    }
}
