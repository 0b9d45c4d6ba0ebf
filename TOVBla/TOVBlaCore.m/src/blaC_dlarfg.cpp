// SPDX-License-Identifier: BSD-3-Clause
// Generates an elementary reflector.
#include "facade.h"

extern "C" decltype(blac_dlarfg_) dlarfg_;

BLA_EXPORT void blac_dlarfg_(const int* n, double* alpha, double* x, const int* incx, double* tau)
{
    dlarfg_(n, alpha, x, incx, tau);
}
