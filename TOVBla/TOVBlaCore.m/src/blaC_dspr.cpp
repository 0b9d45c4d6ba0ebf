// SPDX-License-Identifier: BSD-3-Clause
// A := alpha·x·xᵀ + A, A symmetric, one triangle packed.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dspr_), 1> dspr_;

BLA_EXPORT void blac_dspr_(const char* uplo, const int* n, const double* alpha, const double* x,
                           const int* incx, double* ap)
{
    dspr_(uplo, n, alpha, x, incx, ap, 1);
}
