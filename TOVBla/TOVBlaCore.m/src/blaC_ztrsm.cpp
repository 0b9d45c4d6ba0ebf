// SPDX-License-Identifier: BSD-3-Clause
// B := alpha·op(A)⁻¹·B or alpha·B·op(A)⁻¹, complex, A triangular.
#include "facade.h"

extern "C" WithLengths<decltype(blac_ztrsm_), 4> ztrsm_;

BLA_EXPORT void blac_ztrsm_(const char* side, const char* uplo, const char* transa, const char* diag,
                            const int* m, const int* n, const blac_complex* alpha, const blac_complex* a,
                            const int* lda, blac_complex* b, const int* ldb)
{
    ztrsm_(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb, 1, 1, 1, 1);
}
