// SPDX-License-Identifier: BSD-3-Clause
// A := alpha·x·xᵀ + A, A symmetric, one triangle updated.
#include "facade.h"

extern "C" void dsyr_(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx,
                      double* a, const int* lda, std::size_t);

BLA_EXPORT void blac_dsyr_(const char* uplo, const int* n, const double* alpha, const double* x,
                           const int* incx, double* a, const int* lda)
{
    dsyr_(uplo, n, alpha, x, incx, a, lda, 1);
}
