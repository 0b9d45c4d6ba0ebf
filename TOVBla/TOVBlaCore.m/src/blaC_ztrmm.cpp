// SPDX-License-Identifier: BSD-3-Clause
// B := alpha·op(A)·B or alpha·B·op(A), complex, A triangular.
#include "facade.h"

extern "C" WithLengths<decltype(blac_ztrmm_), 4> ztrmm_;

BLA_EXPORT void blac_ztrmm_(const char* side, const char* uplo, const char* transa, const char* diag,
                            const int* m, const int* n, const blac_complex* alpha, const blac_complex* a,
                            const int* lda, blac_complex* b, const int* ldb)
{
    ztrmm_(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb, 1, 1, 1, 1);
}
