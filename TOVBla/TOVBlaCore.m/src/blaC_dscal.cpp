// SPDX-License-Identifier: BSD-3-Clause
// x := a·x.
#include "facade.h"

extern "C" decltype(blac_dscal_) dscal_;

BLA_EXPORT void blac_dscal_(const int* n, const double* a, double* x, const int* incx)
{
    dscal_(n, a, x, incx);
}
