// SPDX-License-Identifier: BSD-3-Clause
// A⁻¹ from the factor of dpptrf.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dpptri_), 1> dpptri_;

BLA_EXPORT void blac_dpptri_(const char* uplo, const int* n, double* ap, int* info)
{
    dpptri_(uplo, n, ap, info, 1);
}
