// SPDX-License-Identifier: BSD-3-Clause
// Eigenvalues and eigenvectors of A·x = λ·B·x and its kin, B positive definite.
#include "facade.h"

extern "C" void dsygv_(const int* itype, const char* jobz, const char* uplo, const int* n, double* a,
                       const int* lda, double* b, const int* ldb, double* w, double* work, const int* lwork,
                       int* info, std::size_t, std::size_t);

BLA_EXPORT void blac_dsygv_(const int* itype, const char* jobz, const char* uplo, const int* n, double* a,
                            const int* lda, double* b, const int* ldb, double* w, double* work,
                            const int* lwork, int* info)
{
    dsygv_(itype, jobz, uplo, n, a, lda, b, ldb, w, work, lwork, info, 1, 1);
}
