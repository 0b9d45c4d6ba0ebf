// SPDX-License-Identifier: BSD-3-Clause
// Eigenvalues w and, if asked, eigenvectors of a symmetric matrix.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsyev_), 2> dsyev_;

BLA_EXPORT void blac_dsyev_(const char* jobz, const char* uplo, const int* n, double* a, const int* lda,
                            double* w, double* work, const int* lwork, int* info)
{
    dsyev_(jobz, uplo, n, a, lda, w, work, lwork, info, 1, 1);
}
