// SPDX-License-Identifier: BSD-3-Clause
// C := beta·C + alpha·op(A)·D·op(B), D read off the diagonal of a matrix: D(l,l) = d(l,l).
#include "scaled_product.h"
#include "tiers.h"

BLA_TIERS_VRA(blac_dgemm_scaled_,
              (const char* transa, const char* transb, const int* m, const int* n, const int* k,
               const double* alpha, const real* a, const int* lda, const real* b, const int* ldb,
               const double* beta, real* c, const int* ldc, const real* d, const int* ldd),
              (transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, d, ldd))
{
    scaled_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, d, ldd);
}
