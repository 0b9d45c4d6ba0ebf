// SPDX-License-Identifier: BSD-3-Clause
// Inverse of a triangular matrix.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dtrtri_), 2> dtrtri_;

BLA_EXPORT void blac_dtrtri_(const char* uplo, const char* diag, const int* n, double* a, const int* lda,
                             int* info)
{
    dtrtri_(uplo, diag, n, a, lda, info, 1, 1);
}
