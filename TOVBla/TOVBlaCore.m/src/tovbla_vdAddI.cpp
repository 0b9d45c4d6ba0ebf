// SPDX-License-Identifier: BSD-3-Clause
// z(k) := x(k) + y(k), k = 1..n, each vector with its own increment.
#include "TOVBlaModule.h"

#include "real.h"
#include "walk.h"

BLA_EXPORT void tovbla_vdaddi_(const int* n, const real* x, const int* incx, const real* y, const int* incy,
                               real* z, const int* incz)
{
    if (*n < 1)
        return; // the increments are not read either
    walk(
        *n,
        [=](int64_t count, int64_t x_step, int64_t y_step, int64_t z_step) BLA_INLINED {
            for (int64_t k = 0; k < count; ++k)
                z[k * z_step] = x[k * x_step] + y[k * y_step];
        },
        int64_t{*incx}, int64_t{*incy}, int64_t{*incz});
}
