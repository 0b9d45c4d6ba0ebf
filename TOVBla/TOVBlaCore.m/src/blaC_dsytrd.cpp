// SPDX-License-Identifier: BSD-3-Clause
// Reduces a symmetric matrix to tridiagonal form.
#include "facade.h"

extern "C" void dsytrd_(const char* uplo, const int* n, double* a, const int* lda, double* d, double* e,
                        double* tau, double* work, const int* lwork, int* info, std::size_t);

BLA_EXPORT void blac_dsytrd_(const char* uplo, const int* n, double* a, const int* lda, double* d, double* e,
                             double* tau, double* work, const int* lwork, int* info)
{
    dsytrd_(uplo, n, a, lda, d, e, tau, work, lwork, info, 1);
}
