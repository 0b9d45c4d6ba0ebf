// SPDX-License-Identifier: BSD-3-Clause
// y := x.
#include "facade.h"

extern "C" decltype(blac_dcopy_) dcopy_;

BLA_EXPORT void blac_dcopy_(const int* n, const double* x, const int* incx, double* y, const int* incy)
{
    dcopy_(n, x, incx, y, incy);
}
