// SPDX-License-Identifier: BSD-3-Clause
// y := a·x + y, complex.
#include "facade.h"

extern "C" decltype(blac_zaxpy_) zaxpy_;

BLA_EXPORT void blac_zaxpy_(const int* n, const blac_complex* a, const blac_complex* x, const int* incx,
                            blac_complex* y, const int* incy)
{
    zaxpy_(n, a, x, incx, y, incy);
}
