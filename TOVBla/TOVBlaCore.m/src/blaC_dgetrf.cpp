// SPDX-License-Identifier: BSD-3-Clause
// A = P·L·U of a general m × n matrix.
#include "facade.h"

extern "C" decltype(blac_dgetrf_) dgetrf_;

BLA_EXPORT void blac_dgetrf_(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info)
{
    dgetrf_(m, n, a, lda, ipiv, info);
}
