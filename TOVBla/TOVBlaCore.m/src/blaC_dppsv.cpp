// SPDX-License-Identifier: BSD-3-Clause
// Solves A·X = B, A positive definite and packed, by Cholesky.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dppsv_), 1> dppsv_;

BLA_EXPORT void blac_dppsv_(const char* uplo, const int* n, const int* nrhs, double* ap, double* b,
                            const int* ldb, int* info)
{
    dppsv_(uplo, n, nrhs, ap, b, ldb, info, 1);
}
