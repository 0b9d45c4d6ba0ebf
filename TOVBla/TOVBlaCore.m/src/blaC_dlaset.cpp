// SPDX-License-Identifier: BSD-3-Clause
// Sets the off-diagonal entries to alpha and the diagonal to beta.
#include "facade.h"

extern "C" void dlaset_(const char* uplo, const int* m, const int* n, const double* alpha, const double* beta,
                        double* a, const int* lda, std::size_t);

BLA_EXPORT void blac_dlaset_(const char* uplo, const int* m, const int* n, const double* alpha,
                             const double* beta, double* a, const int* lda)
{
    dlaset_(uplo, m, n, alpha, beta, a, lda, 1);
}
