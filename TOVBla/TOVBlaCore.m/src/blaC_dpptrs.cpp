// SPDX-License-Identifier: BSD-3-Clause
// Solves A·X = B from the factor of dpptrf.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dpptrs_), 1> dpptrs_;

BLA_EXPORT void blac_dpptrs_(const char* uplo, const int* n, const int* nrhs, const double* ap, double* b,
                             const int* ldb, int* info)
{
    dpptrs_(uplo, n, nrhs, ap, b, ldb, info, 1);
}
