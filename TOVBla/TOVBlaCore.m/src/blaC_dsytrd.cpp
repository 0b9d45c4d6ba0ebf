// SPDX-License-Identifier: BSD-3-Clause
// Reduces a symmetric matrix to tridiagonal form.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsytrd_), 1> dsytrd_;

BLA_EXPORT void blac_dsytrd_(const char* uplo, const int* n, double* a, const int* lda, double* d, double* e,
                             double* tau, double* work, const int* lwork, int* info)
{
    dsytrd_(uplo, n, a, lda, d, e, tau, work, lwork, info, 1);
}
