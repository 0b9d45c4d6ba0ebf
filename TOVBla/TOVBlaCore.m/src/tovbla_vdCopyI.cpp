// SPDX-License-Identifier: BSD-3-Clause
// y(k) := x(k), k = 1..n, each vector with its own increment.
#include "TOVBlaModule.h"

#include "pattern.h"

BLA_EXPORT void tovbla_vdcopyi_(const int* n, const real* x, const int* incx, real* y, const int* incy)
{
    const int64_t count = *n, x_step = *incx, y_step = *incy;
    if (x_step == 1 && y_step == 1)
        for (int64_t k = 0; k < count; ++k)
            patterns(y)[k] = patterns(x)[k];
    else
        for (int64_t k = 0; k < count; ++k)
            patterns(y)[k * y_step] = patterns(x)[k * x_step];
}
