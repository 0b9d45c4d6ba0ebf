// SPDX-License-Identifier: BSD-3-Clause
// Returns the Euclidean norm of x.
#include "facade.h"

extern "C" decltype(blac_dnrm2_) dnrm2_;

BLA_EXPORT double blac_dnrm2_(const int* n, const double* x, const int* incx)
{
    return dnrm2_(n, x, incx);
}
