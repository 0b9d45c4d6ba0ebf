// SPDX-License-Identifier: BSD-3-Clause
// Balances a complex general matrix.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zgebal_), 1> zgebal_;

BLA_EXPORT void blac_zgebal_(const char* job, const int* n, blac_complex* a, const int* lda, int* ilo,
                             int* ihi, double* scale, int* info)
{
    zgebal_(job, n, a, lda, ilo, ihi, scale, info, 1);
}
