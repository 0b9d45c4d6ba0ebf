// SPDX-License-Identifier: BSD-3-Clause
// Exchanges x and y.
#include "facade.h"

extern "C" decltype(blac_dswap_) dswap_;

BLA_EXPORT void blac_dswap_(const int* n, double* x, const int* incx, double* y, const int* incy)
{
    dswap_(n, x, incx, y, incy);
}
