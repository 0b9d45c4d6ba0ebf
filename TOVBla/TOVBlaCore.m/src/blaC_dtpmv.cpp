// SPDX-License-Identifier: BSD-3-Clause
// x := op(A)·x, A triangular, packed.
#include "facade.h"

extern "C" void dtpmv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* ap,
                       double* x, const int* incx, std::size_t, std::size_t, std::size_t);

BLA_EXPORT void blac_dtpmv_(const char* uplo, const char* trans, const char* diag, const int* n,
                            const double* ap, double* x, const int* incx)
{
    dtpmv_(uplo, trans, diag, n, ap, x, incx, 1, 1, 1);
}
