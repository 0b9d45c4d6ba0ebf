// SPDX-License-Identifier: BSD-3-Clause
// x(k) := a, k = 1..n, with an increment.
#include "TOVBlaModule.h"

#include "pattern.h"

BLA_EXPORT void blac_dset_(const int* n, const real* a, real* x, const int* incx)
{
    const int64_t count = *n, step = *incx;
    if (count < 1)
        return; // a is not read either
    const pattern value = *patterns(a);
    if (step == 1)
        for (int64_t k = 0; k < count; ++k)
            patterns(x)[k] = value;
    else
        for (int64_t k = 0; k < count; ++k)
            patterns(x)[k * step] = value;
}
