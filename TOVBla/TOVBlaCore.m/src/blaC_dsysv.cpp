// SPDX-License-Identifier: BSD-3-Clause
// Solves A·X = B, A symmetric indefinite, by pivoted LDLᵀ.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsysv_), 1> dsysv_;

BLA_EXPORT void blac_dsysv_(const char* uplo, const int* n, const int* nrhs, double* a, const int* lda,
                            int* ipiv, double* b, const int* ldb, double* work, const int* lwork, int* info)
{
    dsysv_(uplo, n, nrhs, a, lda, ipiv, b, ldb, work, lwork, info, 1);
}
