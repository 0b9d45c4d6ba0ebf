// SPDX-License-Identifier: BSD-3-Clause
// dsysv, complex symmetric (A = Aᵀ).
#include "facade.h"

extern "C" WithLengths<decltype(blac_zsysv_), 1> zsysv_;

BLA_EXPORT void blac_zsysv_(const char* uplo, const int* n, const int* nrhs, blac_complex* a, const int* lda,
                            int* ipiv, blac_complex* b, const int* ldb, blac_complex* work, const int* lwork,
                            int* info)
{
    zsysv_(uplo, n, nrhs, a, lda, ipiv, b, ldb, work, lwork, info, 1);
}
