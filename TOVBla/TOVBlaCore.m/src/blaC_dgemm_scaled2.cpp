// SPDX-License-Identifier: BSD-3-Clause
// C := beta·C + alpha·op(A)·D·op(B), D held as a vector: D(l,l) = d(l).
#include "scaled_product.h"
#include "tiers.h"

BLA_TIERS_VRA(blac_dgemm_scaled2_,
              (const char* transa, const char* transb, const int* m, const int* n, const int* k,
               const double* alpha, const real* a, const int* lda, const real* b, const int* ldb,
               const double* beta, real* c, const int* ldc, const real* d),
              (transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, d))
{
    scaled_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, d, nullptr);
}
