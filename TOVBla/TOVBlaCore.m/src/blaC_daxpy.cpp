// SPDX-License-Identifier: BSD-3-Clause
// y := a·x + y.
#include "facade.h"

extern "C" decltype(blac_daxpy_) daxpy_;

BLA_EXPORT void blac_daxpy_(const int* n, const double* a, const double* x, const int* incx, double* y,
                            const int* incy)
{
    daxpy_(n, a, x, incx, y, incy);
}
