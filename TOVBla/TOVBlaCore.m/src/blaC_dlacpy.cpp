// SPDX-License-Identifier: BSD-3-Clause
// B := A, all of it or one triangle.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dlacpy_), 1> dlacpy_;

BLA_EXPORT void blac_dlacpy_(const char* uplo, const int* m, const int* n, const double* a, const int* lda,
                             double* b, const int* ldb)
{
    dlacpy_(uplo, m, n, a, lda, b, ldb, 1);
}
