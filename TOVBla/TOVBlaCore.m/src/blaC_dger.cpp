// SPDX-License-Identifier: BSD-3-Clause
// A := alpha·x·yᵀ + A, A general m × n.
#include "facade.h"

extern "C" decltype(blac_dger_) dger_;

BLA_EXPORT void blac_dger_(const int* m, const int* n, const double* alpha, const double* x, const int* incx,
                           const double* y, const int* incy, double* a, const int* lda)
{
    dger_(m, n, alpha, x, incx, y, incy, a, lda);
}
