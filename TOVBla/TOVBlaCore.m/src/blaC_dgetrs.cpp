// SPDX-License-Identifier: BSD-3-Clause
// Solves op(A)·X = B from the factors of dgetrf.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dgetrs_), 1> dgetrs_;

BLA_EXPORT void blac_dgetrs_(const char* trans, const int* n, const int* nrhs, const double* a,
                             const int* lda, const int* ipiv, double* b, const int* ldb, int* info)
{
    dgetrs_(trans, n, nrhs, a, lda, ipiv, b, ldb, info, 1);
}
