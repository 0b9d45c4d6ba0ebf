// SPDX-License-Identifier: BSD-3-Clause
// Q of dgeqrf, formed.
#include "facade.h"

extern "C" decltype(blac_dorgqr_) dorgqr_;

BLA_EXPORT void blac_dorgqr_(const int* m, const int* n, const int* k, double* a, const int* lda,
                             const double* tau, double* work, const int* lwork, int* info)
{
    dorgqr_(m, n, k, a, lda, tau, work, lwork, info);
}
