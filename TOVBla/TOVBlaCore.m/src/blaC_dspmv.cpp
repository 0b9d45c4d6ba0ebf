// SPDX-License-Identifier: BSD-3-Clause
// y := alpha·A·x + beta·y, A symmetric, one triangle packed.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dspmv_), 1> dspmv_;

BLA_EXPORT void blac_dspmv_(const char* uplo, const int* n, const double* alpha, const double* ap,
                            const double* x, const int* incx, const double* beta, double* y, const int* incy)
{
    dspmv_(uplo, n, alpha, ap, x, incx, beta, y, incy, 1);
}
