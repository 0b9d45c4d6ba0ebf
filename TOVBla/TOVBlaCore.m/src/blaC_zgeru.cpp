// SPDX-License-Identifier: BSD-3-Clause
// A := alpha·x·yᵀ + A, complex.
#include "facade.h"

extern "C" decltype(blac_zgeru_) zgeru_;

BLA_EXPORT void blac_zgeru_(const int* m, const int* n, const blac_complex* alpha, const blac_complex* x,
                            const int* incx, const blac_complex* y, const int* incy, blac_complex* a,
                            const int* lda)
{
    zgeru_(m, n, alpha, x, incx, y, incy, a, lda);
}
