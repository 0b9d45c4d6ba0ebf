// SPDX-License-Identifier: BSD-3-Clause
// y(k) := x(k), k = 1..n, each vector with its own increment.
#include "TOVBlaModule.h"

#include "pattern.h"
#include "walk.h"

BLA_EXPORT void tovbla_vdcopyi_(const int* n, const real* x, const int* incx, real* y, const int* incy)
{
    if (*n < 1)
        return; // the increments are not read either
    walk(
        *n,
        [=](int64_t count, int64_t x_step, int64_t y_step) BLA_INLINED {
            for (int64_t k = 0; k < count; ++k)
                patterns(y)[k * y_step] = patterns(x)[k * x_step];
        },
        int64_t{*incx}, int64_t{*incy});
}
