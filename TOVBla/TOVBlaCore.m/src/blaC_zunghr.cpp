// SPDX-License-Identifier: BSD-3-Clause
// Q of zgehrd, formed.
#include "facade.h"

extern "C" decltype(blac_zunghr_) zunghr_;

BLA_EXPORT void blac_zunghr_(const int* n, const int* ilo, const int* ihi, blac_complex* a, const int* lda,
                             const blac_complex* tau, blac_complex* work, const int* lwork, int* info)
{
    zunghr_(n, ilo, ihi, a, lda, tau, work, lwork, info);
}
