// SPDX-License-Identifier: BSD-3-Clause
// C := alpha·A·Aᵀ + beta·C or alpha·Aᵀ·A + beta·C, one triangle of C.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsyrk_), 2> dsyrk_;

BLA_EXPORT void blac_dsyrk_(const char* uplo, const char* trans, const int* n, const int* k,
                            const double* alpha, const double* a, const int* lda, const double* beta,
                            double* c, const int* ldc)
{
    dsyrk_(uplo, trans, n, k, alpha, a, lda, beta, c, ldc, 1, 1);
}
