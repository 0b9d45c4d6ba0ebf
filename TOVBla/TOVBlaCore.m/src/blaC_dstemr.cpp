// SPDX-License-Identifier: BSD-3-Clause
// Selected eigenvalues and eigenvectors of a symmetric tridiagonal matrix; tryrac is a logical.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dstemr_), 2> dstemr_;

BLA_EXPORT void blac_dstemr_(const char* jobz, const char* range, const int* n, double* d, double* e,
                             const double* vl, const double* vu, const int* il, const int* iu, int* m,
                             double* w, double* z, const int* ldz, const int* nzc, int* isuppz, int* tryrac,
                             double* work, const int* lwork, int* iwork, const int* liwork, int* info)
{
    dstemr_(jobz, range, n, d, e, vl, vu, il, iu, m, w, z, ldz, nzc, isuppz, tryrac, work, lwork, iwork,
            liwork, info, 1, 1);
}
