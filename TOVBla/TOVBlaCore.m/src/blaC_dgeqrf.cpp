// SPDX-License-Identifier: BSD-3-Clause
// A = Q·R.
#include "facade.h"

extern "C" decltype(blac_dgeqrf_) dgeqrf_;

BLA_EXPORT void blac_dgeqrf_(const int* m, const int* n, double* a, const int* lda, double* tau, double* work,
                             const int* lwork, int* info)
{
    dgeqrf_(m, n, a, lda, tau, work, lwork, info);
}
