// SPDX-License-Identifier: BSD-3-Clause
// Eigenvalues and eigenvectors of a general matrix.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dgeev_), 2> dgeev_;

BLA_EXPORT void blac_dgeev_(const char* jobvl, const char* jobvr, const int* n, double* a, const int* lda,
                            double* wr, double* wi, double* vl, const int* ldvl, double* vr, const int* ldvr,
                            double* work, const int* lwork, int* info)
{
    dgeev_(jobvl, jobvr, n, a, lda, wr, wi, vl, ldvl, vr, ldvr, work, lwork, info, 1, 1);
}
