// SPDX-License-Identifier: BSD-3-Clause
// y := alpha·op(A)·x + beta·y, A general m × n.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dgemv_), 1> dgemv_;

BLA_EXPORT void blac_dgemv_(const char* trans, const int* m, const int* n, const double* alpha,
                            const double* a, const int* lda, const double* x, const int* incx,
                            const double* beta, double* y, const int* incy)
{
    dgemv_(trans, m, n, alpha, a, lda, x, incx, beta, y, incy, 1);
}
