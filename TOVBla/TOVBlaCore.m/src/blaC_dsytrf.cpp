// SPDX-License-Identifier: BSD-3-Clause
// Pivoted LDLᵀ of a symmetric matrix (1 × 1 and 2 × 2 pivots).
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsytrf_), 1> dsytrf_;

BLA_EXPORT void blac_dsytrf_(const char* uplo, const int* n, double* a, const int* lda, int* ipiv,
                             double* work, const int* lwork, int* info)
{
    dsytrf_(uplo, n, a, lda, ipiv, work, lwork, info, 1);
}
