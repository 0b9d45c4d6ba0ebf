// SPDX-License-Identifier: BSD-3-Clause
// y := a·x + b·y.
//
// An extension that OpenBLAS and BLIS have and the reference BLAS (3.11) has not. The symbol is weak, so that
// a library without it still loads; there the sum is formed here, with the BLAS convention for increments.
#include "facade.h"

extern "C" [[gnu::weak]] void daxpby_(const int* n, const double* a, const real* x, const int* incx,
                                      const double* b, real* y, const int* incy);

BLA_EXPORT void blac_daxpby_(const int* n, const double* a, const real* x, const int* incx, const double* b,
                             real* y, const int* incy)
{
    if (daxpby_) {
        daxpby_(n, a, x, incx, b, y, incy);
        return;
    }
    if (*n < 1)
        return;
    const int64_t count = *n, x_step = *incx, y_step = *incy;
    int64_t ix = x_step < 0 ? (1 - count) * x_step : 0;
    int64_t iy = y_step < 0 ? (1 - count) * y_step : 0;
    for (int64_t i = 0; i < count; ++i, ix += x_step, iy += y_step)
        y[iy] = *a * x[ix] + *b * y[iy];
}
