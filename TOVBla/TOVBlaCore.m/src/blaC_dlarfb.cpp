// SPDX-License-Identifier: BSD-3-Clause
// Applies a block reflector to C.
#include "facade.h"

extern "C" WithLengths<decltype(blac_dlarfb_), 4> dlarfb_;

BLA_EXPORT void blac_dlarfb_(const char* side, const char* trans, const char* direct, const char* storev,
                             const int* m, const int* n, const int* k, const double* v, const int* ldv,
                             const double* t, const int* ldt, double* c, const int* ldc, double* work,
                             const int* ldwork)
{
    dlarfb_(side, trans, direct, storev, m, n, k, v, ldv, t, ldt, c, ldc, work, ldwork, 1, 1, 1, 1);
}
