// SPDX-License-Identifier: BSD-3-Clause
// Reduces a complex general matrix to Hessenberg form.
#include "facade.h"

extern "C" decltype(blac_zgehrd_) zgehrd_;

BLA_EXPORT void blac_zgehrd_(const int* n, const int* ilo, const int* ihi, blac_complex* a, const int* lda,
                             blac_complex* tau, blac_complex* work, const int* lwork, int* info)
{
    zgehrd_(n, ilo, ihi, a, lda, tau, work, lwork, info);
}
