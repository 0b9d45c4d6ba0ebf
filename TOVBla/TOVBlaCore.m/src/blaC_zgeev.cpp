// SPDX-License-Identifier: BSD-3-Clause
// Eigenvalues and eigenvectors of a complex general matrix.
#include "facade.h"

extern "C" WithLengths<decltype(blac_zgeev_), 2> zgeev_;

BLA_EXPORT void blac_zgeev_(const char* jobvl, const char* jobvr, const int* n, blac_complex* a,
                            const int* lda, blac_complex* w, blac_complex* vl, const int* ldvl,
                            blac_complex* vr, const int* ldvr, blac_complex* work, const int* lwork,
                            double* rwork, int* info)
{
    zgeev_(jobvl, jobvr, n, a, lda, w, vl, ldvl, vr, ldvr, work, lwork, rwork, info, 1, 1);
}
