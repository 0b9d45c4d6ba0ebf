// SPDX-License-Identifier: BSD-3-Clause
// Eigenvectors of a quasi-triangular matrix; select holds logicals.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dtrevc_), 2> dtrevc_;

BLA_EXPORT void blac_dtrevc_(const char* side, const char* howmny, int* select, const int* n, const double* t,
                             const int* ldt, double* vl, const int* ldvl, double* vr, const int* ldvr,
                             const int* mm, int* m, double* work, int* info)
{
    dtrevc_(side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m, work, info, 1, 1);
}
