// SPDX-License-Identifier: BSD-3-Clause
// Returns xᵀ·y.
#include "facade.h"

extern "C" double ddot_(const int* n, const double* x, const int* incx, const double* y, const int* incy);

BLA_EXPORT double blac_ddot_(const int* n, const double* x, const int* incx, const double* y, const int* incy)
{
    return ddot_(n, x, incx, y, incy);
}
