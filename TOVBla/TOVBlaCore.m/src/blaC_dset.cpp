// SPDX-License-Identifier: BSD-3-Clause
// x(k) := a, k = 1..n, with an increment.
#include "TOVBlaModule.h"

#include "pattern.h"
#include "walk.h"

BLA_EXPORT void blac_dset_(const int* n, const real* a, real* x, const int* incx)
{
    if (*n < 1)
        return; // a is not read either
    const pattern value = *patterns(a);
    walk(
        *n, [=](int64_t k) BLA_INLINED { patterns(x)[k] = value; }, int64_t{*incx});
}
