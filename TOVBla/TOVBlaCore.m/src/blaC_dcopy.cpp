// SPDX-License-Identifier: BSD-3-Clause
// y := x.
#include "facade.h"

extern "C" void dcopy_(const int* n, const double* x, const int* incx, double* y, const int* incy);

BLA_EXPORT void blac_dcopy_(const int* n, const double* x, const int* incx, double* y, const int* incy)
{
    dcopy_(n, x, incx, y, incy);
}
