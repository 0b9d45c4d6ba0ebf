// SPDX-License-Identifier: BSD-3-Clause
// dgesv, complex.
#include "facade.h"

extern "C" decltype(blac_zgesv_) zgesv_;

BLA_EXPORT void blac_zgesv_(const int* n, const int* nrhs, blac_complex* a, const int* lda, int* ipiv,
                            blac_complex* b, const int* ldb, int* info)
{
    zgesv_(n, nrhs, a, lda, ipiv, b, ldb, info);
}
