// SPDX-License-Identifier: BSD-3-Clause
// C := alpha·A·B + beta·C or alpha·B·A + beta·C, A symmetric.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsymm_), 2> dsymm_;

BLA_EXPORT void blac_dsymm_(const char* side, const char* uplo, const int* m, const int* n,
                            const double* alpha, const double* a, const int* lda, const double* b,
                            const int* ldb, const double* beta, double* c, const int* ldc)
{
    dsymm_(side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc, 1, 1);
}
