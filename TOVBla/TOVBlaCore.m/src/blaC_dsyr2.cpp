// SPDX-License-Identifier: BSD-3-Clause
// A := alpha·x·yᵀ + alpha·y·xᵀ + A, A symmetric, one triangle updated.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsyr2_), 1> dsyr2_;

BLA_EXPORT void blac_dsyr2_(const char* uplo, const int* n, const double* alpha, const double* x,
                            const int* incx, const double* y, const int* incy, double* a, const int* lda)
{
    dsyr2_(uplo, n, alpha, x, incx, y, incy, a, lda, 1);
}
