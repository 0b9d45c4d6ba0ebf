// SPDX-License-Identifier: BSD-3-Clause
// dlarfg, complex.
#include "facade.h"

extern "C" void zlarfg_(const int* n, blac_complex* alpha, blac_complex* x, const int* incx,
                        blac_complex* tau);

BLA_EXPORT void blac_zlarfg_(const int* n, blac_complex* alpha, blac_complex* x, const int* incx,
                             blac_complex* tau)
{
    zlarfg_(n, alpha, x, incx, tau);
}
