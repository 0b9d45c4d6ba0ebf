// SPDX-License-Identifier: BSD-3-Clause
// Sets the off-diagonal entries to alpha and the diagonal to beta.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dlaset_), 1> dlaset_;

BLA_EXPORT void blac_dlaset_(const char* uplo, const int* m, const int* n, const double* alpha,
                             const double* beta, double* a, const int* lda)
{
    dlaset_(uplo, m, n, alpha, beta, a, lda, 1);
}
