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
        *n,
        [=](int64_t count, int64_t step) BLA_INLINED {
            for (int64_t k = 0; k < count; ++k)
                patterns(x)[k * step] = value;
        },
        int64_t{*incx});
}
