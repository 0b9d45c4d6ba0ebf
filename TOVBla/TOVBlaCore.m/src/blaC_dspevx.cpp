// SPDX-License-Identifier: BSD-3-Clause
// dsyevx for packed storage.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dspevx_), 3> dspevx_;

BLA_EXPORT void blac_dspevx_(const char* jobz, const char* range, const char* uplo, const int* n, double* ap,
                             const double* vl, const double* vu, const int* il, const int* iu,
                             const double* abstol, int* m, double* w, double* z, const int* ldz, double* work,
                             int* iwork, int* ifail, int* info)
{
    dspevx_(jobz, range, uplo, n, ap, vl, vu, il, iu, abstol, m, w, z, ldz, work, iwork, ifail, info, 1, 1,
            1);
}
