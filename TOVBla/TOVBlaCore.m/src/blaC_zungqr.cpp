// SPDX-License-Identifier: BSD-3-Clause
// Q of a complex QR factorisation, formed.
#include "facade.h"

extern "C" decltype(blac_zungqr_) zungqr_;

BLA_EXPORT void blac_zungqr_(const int* m, const int* n, const int* k, blac_complex* a, const int* lda,
                             const blac_complex* tau, blac_complex* work, const int* lwork, int* info)
{
    zungqr_(m, n, k, a, lda, tau, work, lwork, info);
}
