// SPDX-License-Identifier: BSD-3-Clause
// Eigenvalues w and, if asked, eigenvectors of a symmetric matrix.
#include "facade.h"

extern "C" void dsyev_(const char* jobz, const char* uplo, const int* n, double* a, const int* lda, double* w,
                       double* work, const int* lwork, int* info, std::size_t, std::size_t);

BLA_EXPORT void blac_dsyev_(const char* jobz, const char* uplo, const int* n, double* a, const int* lda,
                            double* w, double* work, const int* lwork, int* info)
{
    dsyev_(jobz, uplo, n, a, lda, w, work, lwork, info, 1, 1);
}
