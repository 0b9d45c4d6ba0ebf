// SPDX-License-Identifier: BSD-3-Clause
// Solves A·X = B from the factors of dsytrf.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsytrs_), 1> dsytrs_;

BLA_EXPORT void blac_dsytrs_(const char* uplo, const int* n, const int* nrhs, const double* a, const int* lda,
                             const int* ipiv, double* b, const int* ldb, int* info)
{
    dsytrs_(uplo, n, nrhs, a, lda, ipiv, b, ldb, info, 1);
}
