// SPDX-License-Identifier: BSD-3-Clause
// Reduces a complex general matrix to Hessenberg form, unblocked.
#include "facade.h"

extern "C" decltype(blac_zgehd2_) zgehd2_;

BLA_EXPORT void blac_zgehd2_(const int* n, const int* ilo, const int* ihi, blac_complex* a, const int* lda,
                             blac_complex* tau, blac_complex* work, int* info)
{
    zgehd2_(n, ilo, ihi, a, lda, tau, work, info);
}
