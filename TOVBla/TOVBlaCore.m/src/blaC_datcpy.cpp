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
    if (transpose_tiny<Tier, Store::Copy>(*m, *n, a, *lda, b, *ldb))
        return;
    Tier::apart([](auto... all) BLA_INLINED { copy_transposed<Tier>(all...); }, int64_t{*m}, int64_t{*n}, a,
                int64_t{*lda}, b, int64_t{*ldb});
}
