// SPDX-License-Identifier: BSD-3-Clause
// dlacpy, complex.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zlacpy_), 1> zlacpy_;

BLA_EXPORT void blac_zlacpy_(const char* uplo, const int* m, const int* n, const blac_complex* a,
                             const int* lda, blac_complex* b, const int* ldb)
{
    zlacpy_(uplo, m, n, a, lda, b, ldb, 1);
}
