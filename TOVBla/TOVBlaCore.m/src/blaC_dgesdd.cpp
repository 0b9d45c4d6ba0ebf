// SPDX-License-Identifier: BSD-3-Clause
// A = U·diag(s)·Vᵀ, divide and conquer.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dgesdd_), 1> dgesdd_;

BLA_EXPORT void blac_dgesdd_(const char* jobz, const int* m, const int* n, double* a, const int* lda,
                             double* s, double* u, const int* ldu, double* vt, const int* ldvt, double* work,
                             const int* lwork, int* iwork, int* info)
{
    dgesdd_(jobz, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork, iwork, info, 1);
}
