// SPDX-License-Identifier: BSD-3-Clause
// y := alpha·A·x + beta·y, A symmetric with k off-diagonals, in band storage.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsbmv_), 1> dsbmv_;

BLA_EXPORT void blac_dsbmv_(const char* uplo, const int* n, const int* k, const double* alpha,
                            const double* a, const int* lda, const double* x, const int* incx,
                            const double* beta, double* y, const int* incy)
{
    dsbmv_(uplo, n, k, alpha, a, lda, x, incx, beta, y, incy, 1);
}
