// SPDX-License-Identifier: BSD-3-Clause
// Cholesky factor of a symmetric positive definite matrix.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dpotrf_), 1> dpotrf_;

BLA_EXPORT void blac_dpotrf_(const char* uplo, const int* n, double* a, const int* lda, int* info)
{
    dpotrf_(uplo, n, a, lda, info, 1);
}
