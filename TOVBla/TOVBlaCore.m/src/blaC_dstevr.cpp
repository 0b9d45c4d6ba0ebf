// SPDX-License-Identifier: BSD-3-Clause
// Driver of dstemr.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dstevr_), 2> dstevr_;

BLA_EXPORT void blac_dstevr_(const char* jobz, const char* range, const int* n, double* d, double* e,
                             const double* vl, const double* vu, const int* il, const int* iu,
                             const double* abstol, int* m, double* w, double* z, const int* ldz, int* isuppz,
                             double* work, const int* lwork, int* iwork, const int* liwork, int* info)
{
    dstevr_(jobz, range, n, d, e, vl, vu, il, iu, abstol, m, w, z, ldz, isuppz, work, lwork, iwork, liwork,
            info, 1, 1);
}
