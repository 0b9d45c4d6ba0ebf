// SPDX-License-Identifier: BSD-3-Clause
// x := a·x, x complex, a real.
#include "facade.h"

extern "C" decltype(blac_zdscal_) zdscal_;

BLA_EXPORT void blac_zdscal_(const int* n, const double* a, blac_complex* x, const int* incx)
{
    zdscal_(n, a, x, incx);
}
