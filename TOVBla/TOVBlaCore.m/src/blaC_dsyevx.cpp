// SPDX-License-Identifier: BSD-3-Clause
// Selected eigenvalues and eigenvectors of a symmetric matrix.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dsyevx_), 3> dsyevx_;

BLA_EXPORT void blac_dsyevx_(const char* jobz, const char* range, const char* uplo, const int* n, double* a,
                             const int* lda, const double* vl, const double* vu, const int* il, const int* iu,
                             const double* abstol, int* m, double* w, double* z, const int* ldz, double* work,
                             const int* lwork, int* iwork, int* ifail, int* info)
{
    dsyevx_(jobz, range, uplo, n, a, lda, vl, vu, il, iu, abstol, m, w, z, ldz, work, lwork, iwork, ifail,
            info, 1, 1, 1);
}
