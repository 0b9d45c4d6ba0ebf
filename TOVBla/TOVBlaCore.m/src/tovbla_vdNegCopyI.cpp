// SPDX-License-Identifier: BSD-3-Clause
// y(k) := -x(k), k = 1..n, each vector with its own increment.
//
// The sign bit is flipped, that of a NaN too: 0 - x would do neither that nor turn 0 into -0.
#include "pattern.h"
#include "tiers.h"

BLA_TIERS_VA(tovbla_vdnegcopyi_, (const int* n, const real* x, const int* incx, real* y, const int* incy),
             (n, x, incx, y, incy))
{
    const int64_t count = *n, x_step = *incx, y_step = *incy;
    if (x_step == 1 && y_step == 1)
        for (int64_t k = 0; k < count; ++k)
            patterns(y)[k] = patterns(x)[k] ^ SignBit;
    else
        for (int64_t k = 0; k < count; ++k)
            patterns(y)[k * y_step] = patterns(x)[k * x_step] ^ SignBit;
}
