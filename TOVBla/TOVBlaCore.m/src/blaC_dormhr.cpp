// SPDX-License-Identifier: BSD-3-Clause
// Multiplies C by Q of dgehrd; a is changed during the call and restored.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dormhr_), 2> dormhr_;

BLA_EXPORT void blac_dormhr_(const char* side, const char* trans, const int* m, const int* n, const int* ilo,
                             const int* ihi, double* a, const int* lda, const double* tau, double* c,
                             const int* ldc, double* work, const int* lwork, int* info)
{
    dormhr_(side, trans, m, n, ilo, ihi, a, lda, tau, c, ldc, work, lwork, info, 1, 1);
}
