// SPDX-License-Identifier: BSD-3-Clause
// Multiplies C by Q of dsytrd; a is changed during the call and restored.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dormtr_), 3> dormtr_;

BLA_EXPORT void blac_dormtr_(const char* side, const char* uplo, const char* trans, const int* m,
                             const int* n, double* a, const int* lda, const double* tau, double* c,
                             const int* ldc, double* work, const int* lwork, int* info)
{
    dormtr_(side, uplo, trans, m, n, a, lda, tau, c, ldc, work, lwork, info, 1, 1, 1);
}
