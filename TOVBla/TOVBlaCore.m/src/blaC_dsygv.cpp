// SPDX-License-Identifier: BSD-3-Clause
// Eigenvalues and eigenvectors of A·x = λ·B·x and its kin, B positive definite.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsygv_), 2> dsygv_;

BLA_EXPORT void blac_dsygv_(const int* itype, const char* jobz, const char* uplo, const int* n, double* a,
                            const int* lda, double* b, const int* ldb, double* w, double* work,
                            const int* lwork, int* info)
{
    dsygv_(itype, jobz, uplo, n, a, lda, b, ldb, w, work, lwork, info, 1, 1);
}
