// SPDX-License-Identifier: BSD-3-Clause
// result := the single-precision reading of zdotu_, widened, with imaginary part 0.
//
// Unlike zdotc_, zdotu_ is called without a result slot and declared as float. That is the interface, not an
// oversight.
#include "facade.h"

extern "C" float zdotu_(const int* n, const blac_complex* zx, const int* incx, const blac_complex* zy,
                        const int* incy);

BLA_EXPORT void blac_zdotu_(blac_complex* result, const int* n, const blac_complex* zx, const int* incx,
                            const blac_complex* zy, const int* incy)
{
    *result = blac_complex(zdotu_(n, zx, incx, zy, incy), 0.0);
}
