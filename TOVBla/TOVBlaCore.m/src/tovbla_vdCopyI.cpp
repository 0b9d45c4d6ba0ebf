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
        *n, [=](int64_t i, int64_t j) BLA_INLINED { patterns(y)[j] = patterns(x)[i]; }, int64_t{*incx},
        int64_t{*incy});
}
