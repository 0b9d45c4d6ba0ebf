// SPDX-License-Identifier: BSD-3-Clause
// Sum of the absolute values: returns Σ |x(i)|.
#include "facade.h"

extern "C" decltype(blac_dasum_) dasum_;

BLA_EXPORT double blac_dasum_(const int* n, const double* x, const int* incx)
{
    return dasum_(n, x, incx);
}
