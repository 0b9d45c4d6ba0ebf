// SPDX-License-Identifier: BSD-3-Clause
// y(k) := -x(k), k = 1..n, each vector with its own increment.
//
// The sign bit is flipped, that of a NaN too: 0 - x would do neither that nor turn 0 into -0.
#include "pattern.h"
#include "tiers.h"
#include "walk.h"

BLA_TIERS_VA(tovbla_vdnegcopyi_, (const int* n, const real* x, const int* incx, real* y, const int* incy),
             (n, x, incx, y, incy))
{
    if (*n < 1)
        return; // the increments are not read either
    walk(
        *n, [=](int64_t i, int64_t j) BLA_INLINED { patterns(y)[j] = patterns(x)[i] ^ SignBit; },
        int64_t{*incx}, int64_t{*incy});
}
