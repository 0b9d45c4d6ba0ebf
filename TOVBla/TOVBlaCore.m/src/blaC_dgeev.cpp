// SPDX-License-Identifier: BSD-3-Clause
// Eigenvalues and eigenvectors of a general matrix.
#include "facade.h"

extern "C" void dgeev_(const char* jobvl, const char* jobvr, const int* n, double* a, const int* lda,
                       double* wr, double* wi, double* vl, const int* ldvl, double* vr, const int* ldvr,
                       double* work, const int* lwork, int* info, std::size_t, std::size_t);

BLA_EXPORT void blac_dgeev_(const char* jobvl, const char* jobvr, const int* n, double* a, const int* lda,
                            double* wr, double* wi, double* vl, const int* ldvl, double* vr, const int* ldvr,
                            double* work, const int* lwork, int* info)
{
    dgeev_(jobvl, jobvr, n, a, lda, wr, wi, vl, ldvl, vr, ldvr, work, lwork, info, 1, 1);
}
