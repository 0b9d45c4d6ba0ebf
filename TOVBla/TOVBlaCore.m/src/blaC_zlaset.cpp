// SPDX-License-Identifier: BSD-3-Clause
// dlaset, complex.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zlaset_), 1> zlaset_;

BLA_EXPORT void blac_zlaset_(const char* uplo, const int* m, const int* n, const blac_complex* alpha,
                             const blac_complex* beta, blac_complex* a, const int* lda)
{
    zlaset_(uplo, m, n, alpha, beta, a, lda, 1);
}
