// SPDX-License-Identifier: BSD-3-Clause
// C := alpha·A·Bᵀ + alpha·B·Aᵀ + beta·C or with AᵀB + BᵀA, one triangle of C.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsyr2k_), 2> dsyr2k_;

BLA_EXPORT void blac_dsyr2k_(const char* uplo, const char* trans, const int* n, const int* k,
                             const double* alpha, const double* a, const int* lda, const double* b,
                             const int* ldb, const double* beta, double* c, const int* ldc)
{
    dsyr2k_(uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc, 1, 1);
}
