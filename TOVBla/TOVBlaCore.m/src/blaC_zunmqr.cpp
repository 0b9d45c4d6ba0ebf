// SPDX-License-Identifier: BSD-3-Clause
// Multiplies C by Q of a complex QR factorisation; a is changed during the call and restored.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zunmqr_), 2> zunmqr_;

BLA_EXPORT void blac_zunmqr_(const char* side, const char* trans, const int* m, const int* n, const int* k,
                             blac_complex* a, const int* lda, const blac_complex* tau, blac_complex* c,
                             const int* ldc, blac_complex* work, const int* lwork, int* info)
{
    zunmqr_(side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork, info, 1, 1);
}
