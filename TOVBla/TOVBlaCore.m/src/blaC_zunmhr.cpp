// SPDX-License-Identifier: BSD-3-Clause
// Multiplies C by Q of zgehrd; a is changed during the call and restored.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zunmhr_), 2> zunmhr_;

BLA_EXPORT void blac_zunmhr_(const char* side, const char* trans, const int* m, const int* n, const int* ilo,
                             const int* ihi, blac_complex* a, const int* lda, const blac_complex* tau,
                             blac_complex* c, const int* ldc, blac_complex* work, const int* lwork, int* info)
{
    zunmhr_(side, trans, m, n, ilo, ihi, a, lda, tau, c, ldc, work, lwork, info, 1, 1);
}
