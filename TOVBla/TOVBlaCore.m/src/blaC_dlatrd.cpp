// SPDX-License-Identifier: BSD-3-Clause
// One panel of dsytrd.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dlatrd_), 1> dlatrd_;

BLA_EXPORT void blac_dlatrd_(const char* uplo, const int* n, const int* nb, double* a, const int* lda,
                             double* e, double* tau, double* w, const int* ldw)
{
    dlatrd_(uplo, n, nb, a, lda, e, tau, w, ldw, 1);
}
