// SPDX-License-Identifier: BSD-3-Clause
// dgetrs, complex.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zgetrs_), 1> zgetrs_;

BLA_EXPORT void blac_zgetrs_(const char* trans, const int* n, const int* nrhs, const blac_complex* a,
                             const int* lda, const int* ipiv, blac_complex* b, const int* ldb, int* info)
{
    zgetrs_(trans, n, nrhs, a, lda, ipiv, b, ldb, info, 1);
}
