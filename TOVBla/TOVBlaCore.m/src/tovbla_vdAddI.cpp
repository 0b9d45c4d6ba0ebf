// SPDX-License-Identifier: BSD-3-Clause
// z(k) := x(k) + y(k), k = 1..n, each vector with its own increment.
#include "TOVBlaModule.h"

#include "real.h"

BLA_EXPORT void tovbla_vdaddi_(const int* n, const real* x, const int* incx, const real* y, const int* incy,
                               real* z, const int* incz)
{
    const int64_t count = *n, x_step = *incx, y_step = *incy, z_step = *incz;
    if (x_step == 1 && y_step == 1 && z_step == 1)
        for (int64_t k = 0; k < count; ++k)
            z[k] = x[k] + y[k];
    else
        for (int64_t k = 0; k < count; ++k)
            z[k * z_step] = x[k * x_step] + y[k * y_step];
}
