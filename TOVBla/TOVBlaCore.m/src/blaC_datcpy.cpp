// SPDX-License-Identifier: BSD-3-Clause
// B := Aᵀ, B m×n and A n×m.
#include "tiers.h"
#include "transpose_past_caches.h"

BLA_TIERS_VA(blac_datcpy_,
             (const int* m, const int* n, const real* a, const int* lda, real* b, const int* ldb),
             (m, n, a, lda, b, ldb))
{
    if (*n < 1 || *m < 1)
        return;
    const int64_t count = int64_t{*m} * *n;
    if (past_caches(count, b, *ldb))
        Tier::apart([](auto... all) BLA_INLINED { transpose_past_caches<Tier>(all...); }, int64_t{*m},
                    int64_t{*n}, a, int64_t{*lda}, b, int64_t{*ldb});
    else
        transpose<Tier, Store::Copy>(*m, *n, a, *lda, b, *ldb);
}
