// SPDX-License-Identifier: BSD-3-Clause
// Eigenvectors of a complex triangular matrix; t is changed during the call and restored, select holds
// logicals.
#include "facade.h"

extern "C" WithLengths<decltype(blac_ztrevc_), 2> ztrevc_;

BLA_EXPORT void blac_ztrevc_(const char* side, const char* howmny, const int* select, const int* n,
                             blac_complex* t, const int* ldt, blac_complex* vl, const int* ldvl,
                             blac_complex* vr, const int* ldvr, const int* mm, int* m, blac_complex* work,
                             double* rwork, int* info)
{
    ztrevc_(side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m, work, rwork, info, 1, 1);
}
