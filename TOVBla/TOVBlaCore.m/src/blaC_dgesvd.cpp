// SPDX-License-Identifier: BSD-3-Clause
// A = U·diag(s)·Vᵀ.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dgesvd_), 2> dgesvd_;

BLA_EXPORT void blac_dgesvd_(const char* jobu, const char* jobvt, const int* m, const int* n, double* a,
                             const int* lda, double* s, double* u, const int* ldu, double* vt,
                             const int* ldvt, double* work, const int* lwork, int* info)
{
    dgesvd_(jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork, info, 1, 1);
}
