// SPDX-License-Identifier: BSD-3-Clause
// Exchanges x and y, complex.
#include "facade.h"

extern "C" decltype(blac_zswap_) zswap_;

BLA_EXPORT void blac_zswap_(const int* n, blac_complex* x, const int* incx, blac_complex* y, const int* incy)
{
    zswap_(n, x, incx, y, incy);
}
