// SPDX-License-Identifier: BSD-3-Clause
// A := A + Bᵀ, A m×n and B n×m.
#include "tiers.h"
#include "transpose.h"

BLA_TIERS_VRA(blac_addrectblockt_,
              (const int* m, const int* n, real* a, const int* lda, const real* b, const int* ldb),
              (m, n, a, lda, b, ldb))
{
    if (*n < 1 || *m < 1)
        return;
    transpose<Tier, Store::Add>(*m, *n, b, *ldb, a, *lda);
}
