// SPDX-License-Identifier: BSD-3-Clause
// x := a·x, complex.
#include "facade.h"

extern "C" decltype(blac_zscal_) zscal_;

BLA_EXPORT void blac_zscal_(const int* n, const blac_complex* a, blac_complex* x, const int* incx)
{
    zscal_(n, a, x, incx);
}
