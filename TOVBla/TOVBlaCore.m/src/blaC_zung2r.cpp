// SPDX-License-Identifier: BSD-3-Clause
// Q of a complex QR factorisation, formed, unblocked.
#include "facade.h"

extern "C" decltype(blac_zung2r_) zung2r_;

BLA_EXPORT void blac_zung2r_(const int* m, const int* n, const int* k, blac_complex* a, const int* lda,
                             const blac_complex* tau, blac_complex* work, int* info)
{
    zung2r_(m, n, k, a, lda, tau, work, info);
}
