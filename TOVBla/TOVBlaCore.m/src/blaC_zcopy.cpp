// SPDX-License-Identifier: BSD-3-Clause
// y := x, complex.
#include "facade.h"

extern "C" decltype(blac_zcopy_) zcopy_;

BLA_EXPORT void blac_zcopy_(const int* n, const blac_complex* x, const int* incx, blac_complex* y,
                            const int* incy)
{
    zcopy_(n, x, incx, y, incy);
}
