// SPDX-License-Identifier: BSD-3-Clause
// C := alpha·op(A)·op(B) + beta·C.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dgemm_), 2> dgemm_;

BLA_EXPORT void blac_dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                            const double* alpha, const double* a, const int* lda, const double* b,
                            const int* ldb, const double* beta, double* c, const int* ldc)
{
    dgemm_(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, 1, 1);
}
