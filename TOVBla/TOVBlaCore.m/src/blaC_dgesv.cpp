// SPDX-License-Identifier: BSD-3-Clause
// Solves A·X = B by LU with partial pivoting.
#include "facade.h"

extern "C" decltype(blac_dgesv_) dgesv_;

BLA_EXPORT void blac_dgesv_(const int* n, const int* nrhs, double* a, const int* lda, int* ipiv, double* b,
                            const int* ldb, int* info)
{
    dgesv_(n, nrhs, a, lda, ipiv, b, ldb, info);
}
