// SPDX-License-Identifier: BSD-3-Clause
// A⁻¹ from the factors of dgetrf.
#include "facade.h"

extern "C" decltype(blac_dgetri_) dgetri_;

BLA_EXPORT void blac_dgetri_(const int* n, double* a, const int* lda, const int* ipiv, double* work,
                             const int* lwork, int* info)
{
    dgetri_(n, a, lda, ipiv, work, lwork, info);
}
