// SPDX-License-Identifier: BSD-3-Clause
// y := alpha·A·x + beta·y, A symmetric, one triangle read.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsymv_), 1> dsymv_;

BLA_EXPORT void blac_dsymv_(const char* uplo, const int* n, const double* alpha, const double* a,
                            const int* lda, const double* x, const int* incx, const double* beta, double* y,
                            const int* incy)
{
    dsymv_(uplo, n, alpha, a, lda, x, incx, beta, y, incy, 1);
}
