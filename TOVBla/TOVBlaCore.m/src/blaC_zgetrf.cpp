// SPDX-License-Identifier: BSD-3-Clause
// dgetrf, complex.
#include "facade.h"

extern "C" decltype(blac_zgetrf_) zgetrf_;

BLA_EXPORT void blac_zgetrf_(const int* m, const int* n, blac_complex* a, const int* lda, int* ipiv,
                             int* info)
{
    zgetrf_(m, n, a, lda, ipiv, info);
}
