// SPDX-License-Identifier: BSD-3-Clause
// Returns xᵀ·y.
#include "facade.h"

extern "C" decltype(blac_ddot_) ddot_;

BLA_EXPORT double blac_ddot_(const int* n, const double* x, const int* incx, const double* y, const int* incy)
{
    return ddot_(n, x, incx, y, incy);
}
