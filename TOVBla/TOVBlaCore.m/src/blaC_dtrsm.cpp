// SPDX-License-Identifier: BSD-3-Clause
// B := alpha·op(A)⁻¹·B or alpha·B·op(A)⁻¹, A triangular.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dtrsm_), 4> dtrsm_;

BLA_EXPORT void blac_dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag,
                            const int* m, const int* n, const double* alpha, const double* a, const int* lda,
                            double* b, const int* ldb)
{
    dtrsm_(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb, 1, 1, 1, 1);
}
