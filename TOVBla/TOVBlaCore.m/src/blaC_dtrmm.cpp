// SPDX-License-Identifier: BSD-3-Clause
// B := alpha·op(A)·B or alpha·B·op(A), A triangular.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dtrmm_), 4> dtrmm_;

BLA_EXPORT void blac_dtrmm_(const char* side, const char* uplo, const char* transa, const char* diag,
                            const int* m, const int* n, const double* alpha, const double* a, const int* lda,
                            double* b, const int* ldb)
{
    dtrmm_(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb, 1, 1, 1, 1);
}
