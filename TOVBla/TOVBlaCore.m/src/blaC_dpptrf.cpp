// SPDX-License-Identifier: BSD-3-Clause
// Cholesky factor of a packed positive definite matrix.
#include "facade.h"

extern "C" void dpptrf_(const char* uplo, const int* n, double* ap, int* info, std::size_t);

BLA_EXPORT void blac_dpptrf_(const char* uplo, const int* n, double* ap, int* info)
{
    dpptrf_(uplo, n, ap, info, 1);
}
