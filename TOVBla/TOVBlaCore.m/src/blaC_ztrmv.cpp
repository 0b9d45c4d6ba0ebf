// SPDX-License-Identifier: BSD-3-Clause
// x := op(A)·x, complex, A triangular.
#include "facade.h"

extern "C" void ztrmv_(const char* uplo, const char* trans, const char* diag, const int* n,
                       const blac_complex* a, const int* lda, blac_complex* x, const int* incx, std::size_t,
                       std::size_t, std::size_t);

BLA_EXPORT void blac_ztrmv_(const char* uplo, const char* trans, const char* diag, const int* n,
                            const blac_complex* a, const int* lda, blac_complex* x, const int* incx)
{
    ztrmv_(uplo, trans, diag, n, a, lda, x, incx, 1, 1, 1);
}
