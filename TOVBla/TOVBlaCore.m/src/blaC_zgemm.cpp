// SPDX-License-Identifier: BSD-3-Clause
// C := alpha·op(A)·op(B) + beta·C, complex.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zgemm_), 2> zgemm_;

BLA_EXPORT void blac_zgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                            const blac_complex* alpha, const blac_complex* a, const int* lda,
                            const blac_complex* b, const int* ldb, const blac_complex* beta, blac_complex* c,
                            const int* ldc)
{
    zgemm_(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, 1, 1);
}
