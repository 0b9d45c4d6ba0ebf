// SPDX-License-Identifier: BSD-3-Clause
// dlarfg, complex.
#include "facade.h"

extern "C" decltype(blac_zlarfg_) zlarfg_;

BLA_EXPORT void blac_zlarfg_(const int* n, blac_complex* alpha, blac_complex* x, const int* incx,
                             blac_complex* tau)
{
    zlarfg_(n, alpha, x, incx, tau);
}
