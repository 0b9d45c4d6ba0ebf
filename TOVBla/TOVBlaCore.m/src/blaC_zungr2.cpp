// SPDX-License-Identifier: BSD-3-Clause
// Q of a complex RQ factorisation, formed, unblocked.
#include "facade.h"

extern "C" decltype(blac_zungr2_) zungr2_;

BLA_EXPORT void blac_zungr2_(const int* m, const int* n, const int* k, blac_complex* a, const int* lda,
                             const blac_complex* tau, blac_complex* work, int* info)
{
    zungr2_(m, n, k, a, lda, tau, work, info);
}
