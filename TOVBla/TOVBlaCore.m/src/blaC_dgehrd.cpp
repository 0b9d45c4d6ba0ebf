// SPDX-License-Identifier: BSD-3-Clause
// Reduces a general matrix to Hessenberg form.
#include "facade.h"

extern "C" decltype(blac_dgehrd_) dgehrd_;

BLA_EXPORT void blac_dgehrd_(const int* n, const int* ilo, const int* ihi, double* a, const int* lda,
                             double* tau, double* work, const int* lwork, int* info)
{
    dgehrd_(n, ilo, ihi, a, lda, tau, work, lwork, info);
}
