// SPDX-License-Identifier: BSD-3-Clause
// Plane rotation of complex vectors, real cosine and complex sine.
#include "facade.h"

extern "C" decltype(blac_zrot_) zrot_;

BLA_EXPORT void blac_zrot_(const int* n, blac_complex* cx, const int* incx, blac_complex* cy, const int* incy,
                           const double* c, const blac_complex* s)
{
    zrot_(n, cx, incx, cy, incy, c, s);
}
