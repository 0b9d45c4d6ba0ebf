// SPDX-License-Identifier: BSD-3-Clause
// x(k) := a, k = 1..n.
#include "pattern.h"
#include "tiers.h"
#include "walk.h"

BLA_TIERS_VRA(tovbla_vdasn_, (const int* n, real* x, const real* a), (n, x, a))
{
    if (*n < 1)
        return; // a is not read either
    const pattern value = *patterns(a);
    walk(
        *n, [=](int64_t k) BLA_INLINED { patterns(x)[k] = value; }, Contiguous);
}
