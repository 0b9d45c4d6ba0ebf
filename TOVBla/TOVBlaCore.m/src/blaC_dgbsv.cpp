// SPDX-License-Identifier: BSD-3-Clause
// Solves A·X = B for a band matrix.
#include "facade.h"

extern "C" decltype(blac_dgbsv_) dgbsv_;

BLA_EXPORT void blac_dgbsv_(const int* n, const int* kl, const int* ku, const int* nrhs, double* ab,
                            const int* ldab, int* ipiv, double* b, const int* ldb, int* info)
{
    dgbsv_(n, kl, ku, nrhs, ab, ldab, ipiv, b, ldb, info);
}
