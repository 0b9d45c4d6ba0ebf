// SPDX-License-Identifier: BSD-3-Clause
// Solves op(A)·X = B, A complex triangular, with a check for singularity.
#include "facade.h"

extern "C" WithLengths<decltype(blac_ztrtrs_), 3> ztrtrs_;

BLA_EXPORT void blac_ztrtrs_(const char* uplo, const char* trans, const char* diag, const int* n,
                             const int* nrhs, const blac_complex* a, const int* lda, blac_complex* b,
                             const int* ldb, int* info)
{
    ztrtrs_(uplo, trans, diag, n, nrhs, a, lda, b, ldb, info, 1, 1, 1);
}
