// SPDX-License-Identifier: BSD-3-Clause
// Inverse of a triangular matrix, unblocked.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dtrti2_), 2> dtrti2_;

BLA_EXPORT void blac_dtrti2_(const char* uplo, const char* diag, const int* n, double* a, const int* lda,
                             int* info)
{
    dtrti2_(uplo, diag, n, a, lda, info, 1, 1);
}
