// SPDX-License-Identifier: BSD-3-Clause
// x := op(A)⁻¹·x, A triangular, packed.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dtpsv_), 3> dtpsv_;

BLA_EXPORT void blac_dtpsv_(const char* uplo, const char* trans, const char* diag, const int* n,
                            const double* ap, double* x, const int* incx)
{
    dtpsv_(uplo, trans, diag, n, ap, x, incx, 1, 1, 1);
}
