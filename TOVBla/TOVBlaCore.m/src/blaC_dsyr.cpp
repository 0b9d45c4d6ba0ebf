// SPDX-License-Identifier: BSD-3-Clause
// A := alpha·x·xᵀ + A, A symmetric, one triangle updated.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsyr_), 1> dsyr_;

BLA_EXPORT void blac_dsyr_(const char* uplo, const int* n, const double* alpha, const double* x,
                           const int* incx, double* a, const int* lda)
{
    dsyr_(uplo, n, alpha, x, incx, a, lda, 1);
}
