// SPDX-License-Identifier: BSD-3-Clause
// B := Aᵀ, B m×n and A n×m.
#include "tiers.h"
#include "transpose.h"

BLA_TIERS_VA(blac_datcpy_,
             (const int* m, const int* n, const real* a, const int* lda, real* b, const int* ldb),
             (m, n, a, lda, b, ldb))
{
    if (*n < 1 || *m < 1)
        return;
    transpose<Tier, false>(*m, *n, a, *lda, b, *ldb);
}
