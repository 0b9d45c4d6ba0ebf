// SPDX-License-Identifier: BSD-3-Clause
// Inverse of a packed triangular matrix.
#include "facade.h"

extern "C" void dtptri_(const char* uplo, const char* diag, const int* n, double* ap, int* info, std::size_t,
                        std::size_t);

BLA_EXPORT void blac_dtptri_(const char* uplo, const char* diag, const int* n, double* ap, int* info)
{
    dtptri_(uplo, diag, n, ap, info, 1, 1);
}
