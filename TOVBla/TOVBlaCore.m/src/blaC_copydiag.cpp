// SPDX-License-Identifier: BSD-3-Clause
// d(i) := A(i,i), dinv(i) := 1/d(i); a tiny pivot, |A(i,i)| <= 1e-36 or NaN, gives d(i) = 1e36 and dinv(i) =
// 1e-36.
//
// The 1e-36 is a constant: the quotient 1/1e36 would round with the caller's rounding mode. For vectors the
// two-sided strict test is written as two selections: with `exceeds` the compiler makes none.
#include "pivot.h"
#include "tiers.h"

BLA_BODY double select(double value, double kept, double replaced)
{
    const double positive = value > pivot::Tiny ? kept : replaced;
    return -pivot::Tiny > value ? kept : positive;
}

BLA_BODY void copy_pivots(int64_t order, const real* a, int64_t step, real* d, real* dinv)
{
    BLA_NO_OVERLAP
    for (int64_t i = 0; i < order; ++i) {
        const double value = a[i * step];
        const double p = select(value, value, pivot::Huge);
        d[i] = p;
        dinv[i] = select(value, 1.0 / p, pivot::Tiny);
    }
}

BLA_TIERS_VRA(blac_copydiag_, (const int* n, const real* a, const int* lda, real* d, real* dinv),
              (n, a, lda, d, dinv))
{
    const int64_t order = *n, diagonal_step = int64_t{*lda} + 1;
    if (order < 4) // not a vector
        for (int64_t i = 0; i < order; ++i) {
            const double value = a[i * diagonal_step];
            const bool kept = exceeds(value, pivot::Tiny);
            d[i] = kept ? value : pivot::Huge;
            dinv[i] = kept ? 1.0 / value : pivot::Tiny;
        }
    else
        Tier::apart([](auto... all) BLA_INLINED { copy_pivots(all...); }, order, a, diagonal_step, d, dinv);
}
