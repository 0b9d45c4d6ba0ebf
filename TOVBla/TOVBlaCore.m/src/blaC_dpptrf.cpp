// SPDX-License-Identifier: BSD-3-Clause
// Cholesky factor of a packed positive definite matrix.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dpptrf_), 1> dpptrf_;

BLA_EXPORT void blac_dpptrf_(const char* uplo, const int* n, double* ap, int* info)
{
    dpptrf_(uplo, n, ap, info, 1);
}
