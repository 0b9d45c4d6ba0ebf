// SPDX-License-Identifier: BSD-3-Clause
// Solves op(A)·x = scale·b, A complex triangular, with scaling against overflow.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zlatrs_), 4> zlatrs_;

BLA_EXPORT void blac_zlatrs_(const char* uplo, const char* trans, const char* diag, const char* normin,
                             const int* n, const blac_complex* a, const int* lda, blac_complex* x,
                             double* scale, double* cnorm, int* info)
{
    zlatrs_(uplo, trans, diag, normin, n, a, lda, x, scale, cnorm, info, 1, 1, 1, 1);
}
