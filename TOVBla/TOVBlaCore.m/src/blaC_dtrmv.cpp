// SPDX-License-Identifier: BSD-3-Clause
// x := op(A)·x, A triangular.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dtrmv_), 3> dtrmv_;

BLA_EXPORT void blac_dtrmv_(const char* uplo, const char* trans, const char* diag, const int* n,
                            const double* a, const int* lda, double* x, const int* incx)
{
    dtrmv_(uplo, trans, diag, n, a, lda, x, incx, 1, 1, 1);
}
