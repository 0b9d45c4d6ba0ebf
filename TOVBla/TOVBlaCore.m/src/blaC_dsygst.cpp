// SPDX-License-Identifier: BSD-3-Clause
// Reduces A·x = λ·B·x to standard form, with B factorised by dpotrf.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsygst_), 1> dsygst_;

BLA_EXPORT void blac_dsygst_(const int* itype, const char* uplo, const int* n, double* a, const int* lda,
                             const double* b, const int* ldb, int* info)
{
    dsygst_(itype, uplo, n, a, lda, b, ldb, info, 1);
}
