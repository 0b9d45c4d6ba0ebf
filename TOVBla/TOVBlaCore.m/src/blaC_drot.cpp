// SPDX-License-Identifier: BSD-3-Clause
// Plane rotation: x := c·x + s·y, y := c·y - s·x, with the old x in both.
#include "facade.h"

extern "C" decltype(blac_drot_) drot_;

BLA_EXPORT void blac_drot_(const int* n, double* x, const int* incx, double* y, const int* incy,
                           const double* c, const double* s)
{
    drot_(n, x, incx, y, incy, c, s);
}
