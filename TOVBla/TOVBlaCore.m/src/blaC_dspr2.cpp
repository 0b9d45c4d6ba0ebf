// SPDX-License-Identifier: BSD-3-Clause
// A := alpha·x·yᵀ + alpha·y·xᵀ + A, A symmetric, one triangle packed.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dspr2_), 1> dspr2_;

BLA_EXPORT void blac_dspr2_(const char* uplo, const int* n, const double* alpha, const double* x,
                            const int* incx, const double* y, const int* incy, double* ap)
{
    dspr2_(uplo, n, alpha, x, incx, y, incy, ap, 1);
}
