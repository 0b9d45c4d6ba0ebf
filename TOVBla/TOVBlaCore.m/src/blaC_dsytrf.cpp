// SPDX-License-Identifier: BSD-3-Clause
// Pivoted LDLᵀ of a symmetric matrix (1 × 1 and 2 × 2 pivots).
#include "facade.h"

extern "C" void dsytrf_(const char* uplo, const int* n, double* a, const int* lda, int* ipiv, double* work,
                        const int* lwork, int* info, std::size_t);

BLA_EXPORT void blac_dsytrf_(const char* uplo, const int* n, double* a, const int* lda, int* ipiv,
                             double* work, const int* lwork, int* info)
{
    dsytrf_(uplo, n, a, lda, ipiv, work, lwork, info, 1);
}
