// SPDX-License-Identifier: BSD-3-Clause
// x := op(A)⁻¹·x, A triangular.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dtrsv_), 3> dtrsv_;

BLA_EXPORT void blac_dtrsv_(const char* uplo, const char* trans, const char* diag, const int* n,
                            const double* a, const int* lda, double* x, const int* incx)
{
    dtrsv_(uplo, trans, diag, n, a, lda, x, incx, 1, 1, 1);
}
