// SPDX-License-Identifier: BSD-3-Clause
// Multiplies C by Q of a complex QR factorisation, unblocked; a is changed during the call and restored.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zunm2r_), 2> zunm2r_;

BLA_EXPORT void blac_zunm2r_(const char* side, const char* trans, const int* m, const int* n, const int* k,
                             blac_complex* a, const int* lda, const blac_complex* tau, blac_complex* c,
                             const int* ldc, blac_complex* work, int* info)
{
    zunm2r_(side, trans, m, n, k, a, lda, tau, c, ldc, work, info, 1, 1);
}
