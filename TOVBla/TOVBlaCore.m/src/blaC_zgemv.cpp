// SPDX-License-Identifier: BSD-3-Clause
// y := alpha·op(A)·x + beta·y, complex, A general m × n.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zgemv_), 1> zgemv_;

BLA_EXPORT void blac_zgemv_(const char* trans, const int* m, const int* n, const blac_complex* alpha,
                            const blac_complex* a, const int* lda, const blac_complex* x, const int* incx,
                            const blac_complex* beta, blac_complex* y, const int* incy)
{
    zgemv_(trans, m, n, alpha, a, lda, x, incx, beta, y, incy, 1);
}
