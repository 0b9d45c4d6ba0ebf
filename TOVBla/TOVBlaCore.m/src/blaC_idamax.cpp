// SPDX-License-Identifier: BSD-3-Clause
// Returns the first index, from 1, of the largest |x(i)|; 0 for n < 1.
#include "facade.h"

extern "C" decltype(blac_idamax_) idamax_;

BLA_EXPORT int blac_idamax_(const int* n, const double* x, const int* incx)
{
    return idamax_(n, x, incx);
}
