// SPDX-License-Identifier: BSD-3-Clause
// d(i) := A(i,i), dinv(i) := 1/d(i); a tiny pivot, |A(i,i)| <= 1e-36 or NaN, gives d(i) = 1e36 and dinv(i) =
// 1e-36.
//
// One quotient serves both cases, 1/A(i,i) and 1e-36/1: the latter is exact, where 1/1e36 would round with
// the caller's rounding mode. For vectors all is written as selections; with `exceeds` the compiler makes
// none.
#include "pivot.h"
#include "tiers.h"

BLA_BODY void copy_pivots(int64_t order, const real* a, int64_t step, real* d, real* dinv)
{
    BLA_NO_OVERLAP
    for (int64_t i = 0; i < order; ++i) {
        const double value = a[i * step];
        const double positive = value > pivot::Tiny ? value : 1.0;
        const double divisor = -pivot::Tiny > value ? value : positive;
        d[i] = divisor == value ? value : pivot::Huge;
        dinv[i] = (divisor == value ? 1.0 : pivot::Tiny) / divisor;
    }
}

BLA_TIERS_VRA(blac_copydiag_, (const int* n, const real* a, const int* lda, real* d, real* dinv),
              (n, a, lda, d, dinv))
{
    const int64_t order = *n;
    if (order >= 4) // vectors
        return Tier::apart([](auto... all) BLA_INLINED { copy_pivots(all...); }, order, a, int64_t{*lda} + 1,
                           d, dinv);
    if (order < 1)
        return;
    const int64_t diagonal_step = int64_t{*lda} + 1;
    for (int64_t i = 0; i < order; ++i) {
        const double value = a[i * diagonal_step];
        const bool kept = exceeds(value, pivot::Tiny);
        d[i] = kept ? value : pivot::Huge;
        dinv[i] = kept ? 1.0 / value : pivot::Tiny;
    }
}
