// SPDX-License-Identifier: BSD-3-Clause
// Inverse of a packed triangular matrix.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dtptri_), 2> dtptri_;

BLA_EXPORT void blac_dtptri_(const char* uplo, const char* diag, const int* n, double* ap, int* info)
{
    dtptri_(uplo, diag, n, ap, info, 1, 1);
}
