// SPDX-License-Identifier: BSD-3-Clause
// x := op(A)·x, A triangular, packed.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dtpmv_), 3> dtpmv_;

BLA_EXPORT void blac_dtpmv_(const char* uplo, const char* trans, const char* diag, const int* n,
                            const double* ap, double* x, const int* incx)
{
    dtpmv_(uplo, trans, diag, n, ap, x, incx, 1, 1, 1);
}
