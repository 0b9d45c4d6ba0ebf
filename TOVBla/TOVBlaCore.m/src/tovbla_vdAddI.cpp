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
        *n, [=](int64_t i, int64_t j, int64_t k) BLA_INLINED { z[k] = x[i] + y[j]; }, int64_t{*incx},
        int64_t{*incy}, int64_t{*incz});
}
