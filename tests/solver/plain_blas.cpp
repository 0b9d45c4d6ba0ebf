// SPDX-License-Identifier: BSD-3-Clause
// The BLAS of plain loops, in which beta = 0 means that C is not read, as callers of a BLAS rely on.
#define dgemm_ product_by_loops
#include "../digest/plain_blas.cpp"
#undef dgemm_

extern "C" void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                       const double* alpha, const real* a, const int* lda, const real* b, const int* ldb,
                       const double* beta, real* c, const int* ldc, size_t, size_t)
{
    for (int64_t j = 0; j < *n && *beta == 0.0; ++j)
        for (int64_t i = 0; i < *m; ++i)
            c[i + j * *ldc] = 0.0;
    product_by_loops(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, 1, 1);
}
