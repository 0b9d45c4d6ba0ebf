// SPDX-License-Identifier: BSD-3-Clause
// Sum of the absolute values: returns Σ |x(i)|.
#include "facade.h"

extern "C" double dasum_(const int* n, const double* x, const int* incx);

BLA_EXPORT double blac_dasum_(const int* n, const double* x, const int* incx)
{
    return dasum_(n, x, incx);
}
