// SPDX-License-Identifier: BSD-3-Clause
// x := op(A)⁻¹·x, complex, A triangular.
#include "facade.h"

extern "C" WithLengths<decltype(blac_ztrsv_), 3> ztrsv_;

BLA_EXPORT void blac_ztrsv_(const char* uplo, const char* trans, const char* diag, const int* n,
                            const blac_complex* a, const int* lda, blac_complex* x, const int* incx)
{
    ztrsv_(uplo, trans, diag, n, a, lda, x, incx, 1, 1, 1);
}
