// SPDX-License-Identifier: BSD-3-Clause
// x := op(A)·x, complex, A triangular.
#include "facade.h"

extern "C" WithLengths<decltype(blac_ztrmv_), 3> ztrmv_;

BLA_EXPORT void blac_ztrmv_(const char* uplo, const char* trans, const char* diag, const int* n,
                            const blac_complex* a, const int* lda, blac_complex* x, const int* incx)
{
    ztrmv_(uplo, trans, diag, n, a, lda, x, incx, 1, 1, 1);
}
