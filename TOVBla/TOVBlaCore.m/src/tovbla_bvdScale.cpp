// SPDX-License-Identifier: BSD-3-Clause
// x(k) := x(k)·a, k = 1..n, with a 64-bit n.
#include "tiers.h"
#include "walk.h"

BLA_TIERS_VRA(tovbla_bvdscale_, (const int64_t* n, real* x, const real* a), (n, x, a))
{
    if (*n < 1)
        return; // a is not read either
    const double factor = *a;
    walk(
        *n, [=](int64_t k) BLA_INLINED { x[k] = x[k] * factor; }, Contiguous);
}
